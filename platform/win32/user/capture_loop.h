// The loop that a window runs while it holds the capture: dragged, sized, or with a box of its caption held down.
#pragma once

#include "winuser.h"

#include <functional>

namespace win32 {

enum class Turn {
    pass_on, // the message goes its way
    taken,
    done, // the loop ends
};

// Gives every message to `handle` until it is done, the capture goes elsewhere, or the thread is told to quit; that
// is left to the outer loop to end by.
void while_captured(HWND window, const std::function<Turn(const MSG&)>& handle);

constexpr bool is_mouse_message(UINT message)
{
    return message >= WM_MOUSEFIRST && message <= WM_MOUSELAST;
}
constexpr bool is_key_message(UINT message)
{
    return message >= WM_KEYFIRST && message <= WM_KEYLAST;
}
constexpr bool is_key_press(UINT message)
{
    return message == WM_KEYDOWN || message == WM_SYSKEYDOWN;
}

} // namespace win32
