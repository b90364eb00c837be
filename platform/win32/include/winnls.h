// kernel: code pages, character case and classes.
#pragma once

#include "windef.h"
