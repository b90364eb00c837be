// Which window of a tree a point of the screen is in, and which part of it.
#pragma once

#include "winuser.h"

namespace win32 {

struct Hit {
    HWND window = nullptr;
    int code = HTNOWHERE;
};

// Asks the windows of the tree beneath `top` (of the calling thread) with WM_NCHITTEST: the innermost visible and
// enabled one first; one that answers HTTRANSPARENT lets the next one beneath it answer. A disabled `top` is HTERROR.
Hit hit_test(HWND top, POINT point);

} // namespace win32
