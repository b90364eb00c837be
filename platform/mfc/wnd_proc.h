// Between the window's object and the system.
#pragma once

#include <windows.h>

class CWnd;

// The procedure of every window whose object sees its messages.
LRESULT CALLBACK AfxWndProc(HWND hWnd, UINT nMsg, WPARAM wParam, LPARAM lParam);

namespace mfc {

// The window goes: its thread has no main window any more if it was that one, and the application's loop ends.
void forget_main_window(const CWnd* window);

} // namespace mfc
