#include "platform/win32/user/move_loop.h"

#include "platform/win32/user/placement.h"
#include "platform/win32/user/window.h"

#include <algorithm>

namespace win32 {

namespace {

// As the messages tell it: a quick hand has let go before we see its press, and what it did in between still counts.
bool may_begin()
{
    return GetKeyState(VK_LBUTTON) < 0 && !GetCapture();
}

struct Edges {
    bool left;
    bool top;
    bool right;
    bool bottom;
};

Edges edges_of(int hit)
{
    return { hit == HTLEFT || hit == HTTOPLEFT || hit == HTBOTTOMLEFT,
             hit == HTTOP || hit == HTTOPLEFT || hit == HTTOPRIGHT,
             hit == HTRIGHT || hit == HTTOPRIGHT || hit == HTBOTTOMRIGHT,
             hit == HTBOTTOM || hit == HTBOTTOMLEFT || hit == HTBOTTOMRIGHT };
}

// The rectangle that follows the pointer: all of it for a caption, else its edges as far as the size limits let them.
RECT dragged(const RECT& start, int hit, POINT by, const MINMAXINFO& limits)
{
    if (hit == HTCAPTION)
        return moved(start, by);
    const Edges edges = edges_of(hit);
    RECT rect = start;
    const auto width = [&](LONG wanted) {
        return std::max(limits.ptMinTrackSize.x, std::min(wanted, limits.ptMaxTrackSize.x));
    };
    const auto height = [&](LONG wanted) {
        return std::max(limits.ptMinTrackSize.y, std::min(wanted, limits.ptMaxTrackSize.y));
    };
    if (edges.left)
        rect.left = start.right - width(width_of(start) - by.x);
    if (edges.right)
        rect.right = start.left + width(width_of(start) + by.x);
    if (edges.top)
        rect.top = start.bottom - height(height_of(start) - by.y);
    if (edges.bottom)
        rect.bottom = start.top + height(height_of(start) + by.y);
    return rect;
}

void put(HWND window, int hit, RECT rect)
{
    // The numbers that WM_SIZING gives edges are their hit codes counted from HTLEFT, starting at 1.
    const UINT message = hit == HTCAPTION ? WM_MOVING : WM_SIZING;
    const auto edge = static_cast<WPARAM>(hit == HTCAPTION ? 0 : hit - HTLEFT + 1);
    SendMessageA(window, message, edge, reinterpret_cast<LPARAM>(&rect));
    place_window(
        { window, nullptr, rect.left, rect.top, width_of(rect), height_of(rect), SWP_NOZORDER | SWP_NOACTIVATE },
        MovedBy::program);
}

bool is_mouse_message(UINT message)
{
    return message >= WM_MOUSEFIRST && message <= WM_MOUSELAST;
}

// Takes messages while `window` holds the capture; `follow` sees where the pointer is and `cancel` that Escape was
// pressed. Everything that is not the pointer's goes its way. True: it ended with the button's release.
template <class Follow, class Cancel>
bool while_held(HWND window, Follow follow, Cancel cancel)
{
    SetCapture(window);
    bool released = false;
    while (!released && GetCapture() == window) {
        MSG message;
        if (!GetMessageA(&message, nullptr, 0, 0)) {
            PostQuitMessage(static_cast<int>(message.wParam)); // the outer loop's to end by
            break;
        }
        if (message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE) {
            cancel();
            break;
        }
        if (!is_mouse_message(message.message)) {
            TranslateMessage(&message);
            DispatchMessageA(&message);
            continue;
        }
        follow(message.pt);
        // A move without the button tells of a release that was lost.
        released =
            message.message == WM_LBUTTONUP || (message.message == WM_MOUSEMOVE && !(message.wParam & MK_LBUTTON));
    }
    if (GetCapture() == window)
        ReleaseCapture();
    return released;
}

} // namespace

void drag_window(HWND window, int hit)
{
    RECT start;
    if (!may_begin() || IsZoomed(window) || !GetWindowRect(window, &start))
        return;
    const MINMAXINFO limits = hit == HTCAPTION ? MINMAXINFO{} : ask_size_limits(window);
    const POINT pressed = MessageQueue::current()->input().message_position;
    SendMessageA(window, WM_ENTERSIZEMOVE, 0, 0);
    if (!IsWindow(window))
        return;
    while_held(
        window,
        [&](POINT now) {
            put(window, hit, dragged(start, hit, { now.x - pressed.x, now.y - pressed.y }, limits));
        },
        [&] { put(window, hit, start); });
    if (IsWindow(window))
        SendMessageA(window, WM_EXITSIZEMOVE, 0, 0);
}

bool track_close_box(HWND window)
{
    if (!may_begin())
        return false;
    bool over = false;
    const bool released = while_held(
        window,
        [&](POINT now) {
            over = SendMessageA(window, WM_NCHITTEST, 0,
                                MAKELPARAM(static_cast<WORD>(now.x), static_cast<WORD>(now.y))) == HTCLOSE;
        },
        [] {});
    return released && over;
}

} // namespace win32
