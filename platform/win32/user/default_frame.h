// The plain frame of a window that draws none itself: border, caption and close box.
#pragma once

#include "winuser.h"

namespace win32 {

// Which part of the window a point of the screen is in.
int frame_hit(HWND window, POINT point);
void paint_frame(HWND window, bool active);

} // namespace win32
