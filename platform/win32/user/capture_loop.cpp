#include "platform/win32/user/capture_loop.h"

namespace win32 {

void while_captured(HWND window, const std::function<Turn(const MSG&)>& handle)
{
    SetCapture(window);
    while (GetCapture() == window) {
        MSG message;
        if (!GetMessageA(&message, nullptr, 0, 0)) {
            PostQuitMessage(static_cast<int>(message.wParam));
            break;
        }
        const Turn turn = handle(message);
        if (turn == Turn::done)
            break;
        if (turn == Turn::pass_on) {
            TranslateMessage(&message);
            DispatchMessageA(&message);
        }
    }
    if (GetCapture() == window)
        ReleaseCapture();
}

} // namespace win32
