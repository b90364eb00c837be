// Which window lies above which. Topmost windows lie above all others, and a window above the one that owns it.
#pragma once

#include "platform/win32/user/window.h"

namespace win32 {

// Whether `window` is one of those that `owner` owns, at first or at second hand. The lock is held.
bool owns(const Window& owner, const Window& window);

// Puts a window among its siblings, as SetWindowPos names the place, and takes the windows it owns along, to the bottom
// also those that own it. True: the order is another one now.
bool reorder(Window& window, HWND after, Locked);

// The same of what the screen shows. Between two windows of ours it can only be done by raising all that lie above.
void reorder_surfaces(HWND window, HWND after);

// What becoming active does to a window and those it owns.
void come_to_front(HWND window);

} // namespace win32
