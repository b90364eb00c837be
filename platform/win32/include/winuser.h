// user: windows, messages, timers, input.
#pragma once

#include "windef.h"
