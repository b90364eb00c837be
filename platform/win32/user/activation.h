// Which window is active, has the focus and the capture.
#pragma once

#include "winuser.h"

namespace win32 {

// Makes a top-level window of the calling thread the active one and sends what goes with it. `reason` is WA_ACTIVE or
// WA_CLICKACTIVE. False: it cannot be (disabled, hidden, gone), or a handler had it otherwise.
bool make_active(HWND window, WPARAM reason);

// The thread's active window, if it is this one, is active no more: another program's is.
void lose_activation(HWND window);

// A window of the calling thread is hidden, disabled or going: it and what lies in it gives up capture and focus, and
// the activation passes on to the next window.
void withdraw_input(HWND window);

void forget_foreground(HWND window);

} // namespace win32
