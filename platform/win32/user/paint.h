// What of the windows must be painted, and the contexts they are painted on.
#pragma once

#include "platform/win32/user/input.h"
#include "platform/win32/user/window.h"

namespace win32 {

// Adds a region in client coordinates to what must be painted, by RDW_ flags. Of a window that is not shown nothing is.
void invalidate(Window& window, const Region& region, UINT flags, Locked);
// The whole window with its frame and all that lies in it.
void invalidate_all(Window& window, Locked);
// Part of the parent's client area that a child showed before.
void uncover(Window& parent, const RECT& area, Locked);

// A WM_PAINT for a window of the thread. Frames that must be painted are sent WM_NCPAINT on the way.
Taken take_paint(MessageQueue& queue, const MessageFilter& filter, UINT remove);

// Paints the window and what lies in it now. On the window's thread.
void paint_now(HWND window);

} // namespace win32
