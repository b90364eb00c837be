#include "platform/win32/user/move_loop.h"

#include "platform/win32/user/capture_loop.h"
#include "platform/win32/user/default_frame.h"
#include "platform/win32/user/placement.h"
#include "platform/win32/user/window.h"

#include <algorithm>
#include <utility>

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
    const UINT stays = hit == HTCAPTION ? SWP_NOSIZE : 0;
    place_window({ window, nullptr, rect.left, rect.top, width_of(rect), height_of(rect),
                   SWP_NOZORDER | SWP_NOACTIVATE | stays },
                 MovedBy::program);
}

// A move without the button tells of a release that was lost.
bool is_release(const MSG& message)
{
    return message.message == WM_LBUTTONUP || (message.message == WM_MOUSEMOVE && !(message.wParam & MK_LBUTTON));
}

bool is_escape(const MSG& message)
{
    return message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE;
}

POINT difference(POINT a, POINT b)
{
    return { a.x - b.x, a.y - b.y };
}

// Runs `loop` between the two messages that tell of it, if the window may be moved and still lives then.
template <class Loop>
void move_window(HWND window, Loop loop)
{
    RECT start;
    if (IsZoomed(window) || IsIconic(window) || !GetWindowRect(window, &start))
        return;
    const MINMAXINFO limits = ask_size_limits(window);
    SendMessageA(window, WM_ENTERSIZEMOVE, 0, 0);
    if (!IsWindow(window))
        return;
    loop(start, limits);
    if (IsWindow(window))
        SendMessageA(window, WM_EXITSIZEMOVE, 0, 0);
}

// ---- By keys.

POINT step_of(WPARAM key)
{
    constexpr LONG kStep = 8; // pixels
    const LONG step = GetKeyState(VK_CONTROL) & 0x8000 ? 1 : kStep;
    switch (key) {
    case VK_LEFT:
        return { -step, 0 };
    case VK_RIGHT:
        return { step, 0 };
    case VK_UP:
        return { 0, -step };
    case VK_DOWN:
        return { 0, step };
    default:
        return {};
    }
}

// An arrow adds the edge that it points at, unless that edge or its opposite goes along already.
int with_edge(int hit, POINT step)
{
    const Edges now = edges_of(hit);
    const int x = now.left ? 0 : now.right ? 2 : step.x < 0 ? 0 : step.x > 0 ? 2 : 1;
    const int y = now.top ? 0 : now.bottom ? 2 : step.y < 0 ? 0 : step.y > 0 ? 2 : 1;
    constexpr int kHits[3][3] = { { HTTOPLEFT, HTTOP, HTTOPRIGHT },
                                  { HTLEFT, HTNOWHERE, HTRIGHT },
                                  { HTBOTTOMLEFT, HTBOTTOM, HTBOTTOMRIGHT } };
    return kHits[y][x];
}

// A window that follows arrows and pointer.
class KeyMove {
public:
    KeyMove(HWND window, int hit, const RECT& start, const MINMAXINFO& limits)
        : window_(window), hit_(hit), start_(start), limits_(limits)
    {
        GetCursorPos(&pointer_);
    }

    Turn handle(const MSG& message)
    {
        if (is_key_press(message.message))
            return handle_key(message.wParam);
        if (message.message == WM_LBUTTONDOWN || message.message == WM_RBUTTONDOWN)
            return Turn::done;
        if (message.message == WM_MOUSEMOVE && hit_ != HTNOWHERE)
            go_by(difference(message.pt, std::exchange(pointer_, message.pt)));
        return is_mouse_message(message.message) || is_key_message(message.message) ? Turn::taken : Turn::pass_on;
    }

private:
    Turn handle_key(WPARAM key)
    {
        if (key == VK_RETURN)
            return Turn::done;
        if (key == VK_ESCAPE) {
            put(window_, hit_ == HTNOWHERE ? HTCAPTION : hit_, start_);
            return Turn::done;
        }
        const POINT step = step_of(key);
        if (hit_ != HTCAPTION)
            hit_ = with_edge(hit_, step);
        if (step.x != 0 || step.y != 0)
            go_by(step);
        return Turn::taken;
    }

    void go_by(POINT step)
    {
        by_ = { by_.x + step.x, by_.y + step.y };
        put(window_, hit_, dragged(start_, hit_, by_, limits_));
    }

    const HWND window_;
    int hit_; // HTNOWHERE: no edge goes along yet
    const RECT start_;
    const MINMAXINFO limits_;
    POINT by_{};
    POINT pointer_{};
};

} // namespace

void drag_window(HWND window, int hit)
{
    if (!may_begin())
        return;
    const POINT pressed = MessageQueue::current()->input().message_position;
    move_window(window, [&](const RECT& start, const MINMAXINFO& limits) {
        while_captured(window, [&](const MSG& message) {
            if (is_escape(message)) {
                put(window, hit, start);
                return Turn::done;
            }
            if (!is_mouse_message(message.message))
                return Turn::pass_on;
            put(window, hit, dragged(start, hit, difference(message.pt, pressed), limits));
            return is_release(message) ? Turn::done : Turn::taken;
        });
    });
}

void move_by_keys(HWND window, ByKeys what)
{
    if (GetCapture() || !IsWindowVisible(window))
        return;
    move_window(window, [&](const RECT& start, const MINMAXINFO& limits) {
        SetCursor(LoadCursorA(nullptr, IDC_SIZEALL));
        KeyMove move(window, what == ByKeys::move ? HTCAPTION : HTNOWHERE, start, limits);
        while_captured(window, [&](const MSG& message) { return move.handle(message); });
        SetCursor(LoadCursorA(nullptr, IDC_ARROW));
    });
}

bool track_box(HWND window, int hit)
{
    // A quick click is over already, but its release is still to come.
    const bool pressed = (GetKeyState(VK_LBUTTON) & 0x8000) != 0;
    if (!pressed || GetCapture() || !is_box_enabled(window, hit))
        return false;
    bool released_over = false;
    press_box(window, hit);
    while_captured(window, [&](const MSG& message) {
        if (is_escape(message))
            return Turn::done;
        if (!is_mouse_message(message.message))
            return Turn::pass_on;
        const LPARAM point = MAKELPARAM(static_cast<WORD>(message.pt.x), static_cast<WORD>(message.pt.y));
        const bool over = SendMessageA(window, WM_NCHITTEST, 0, point) == hit;
        press_box(window, over ? hit : HTNOWHERE);
        released_over = over && is_release(message);
        return is_release(message) ? Turn::done : Turn::taken;
    });
    press_box(window, HTNOWHERE);
    return released_over;
}

} // namespace win32
