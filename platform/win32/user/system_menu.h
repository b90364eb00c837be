// The system menu of a window: Restore, Move, Size, Minimise, Maximise, Close.
#pragma once

#include "winuser.h"

namespace win32 {

bool is_system_menu(HWND owner, HMENU menu);
// Enables what the window's state and style allow.
void update_system_menu(HWND window);

// Opens it beneath the caption with its first item selected (by the keyboard), or at a point of the screen; what is
// chosen is sent as WM_SYSCOMMAND. Nothing happens for a window without one.
void open_system_menu(HWND window);
void open_system_menu_at(HWND window, POINT point);

} // namespace win32
