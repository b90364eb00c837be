// The system menu of a window: Restore, Move, Size, Minimise, Maximise, Close.
#pragma once

#include "winuser.h"

namespace win32 {

bool is_system_menu(HWND owner, HMENU menu);
// Enables what the window's state and style allow.
void update_system_menu(HWND window);

// Whether its Close is there and enabled, so that Alt+F4, the close box and the desktop may ask the window to close.
bool may_close(HWND window);

// Opens it beneath the caption or at a point of the screen; what is chosen is posted as WM_SYSCOMMAND. Opened by keys,
// its first item is selected. False: nothing was chosen, or the window has no such menu.
enum class OpenedBy { keys, pointer };
bool open_system_menu(HWND window, OpenedBy by);
bool open_system_menu_at(HWND window, POINT point);

} // namespace win32
