// advapi: the registry.
#pragma once

#include "windef.h"
