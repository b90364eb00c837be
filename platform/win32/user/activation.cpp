#include "platform/win32/user/activation.h"

#include "platform/win32/kernel/last_error.h"
#include "platform/win32/user/menu_tracker.h"
#include "platform/win32/user/order.h"
#include "platform/win32/user/window.h"
#include "winbase.h"

#include <utility>

namespace win32 {

namespace {

std::atomic<HWND>& foreground()
{
    static std::atomic<HWND> window{ nullptr };
    return window;
}

InputState& my_input()
{
    return MessageQueue::current()->input();
}

WPARAM as_wparam(HWND window)
{
    return reinterpret_cast<WPARAM>(window);
}

LPARAM as_lparam(HWND window)
{
    return reinterpret_cast<LPARAM>(window);
}

bool is_mine(HWND window)
{
    const WindowPtr found = find_window(window);
    return found && found->queue && found->queue->is_mine();
}

bool may_be_active(HWND window)
{
    const WindowPtr found = find_window(window);
    if (!found || !found->queue || !found->queue->is_mine() || !is_top_level(*found))
        return false;
    const WindowLock lock = lock_windows();
    return (found->style & (WS_VISIBLE | WS_DISABLED)) == WS_VISIBLE && !found->going;
}

HWND top_of(HWND window)
{
    const WindowPtr found = find_window(window);
    if (!found)
        return nullptr;
    const WindowLock lock = lock_windows();
    return root_of(*found, lock).handle;
}

bool is_within(HWND ancestor, HWND window)
{
    return window && (window == ancestor || IsChild(ancestor, window));
}

// The window that takes over: the owner, else the topmost one of the thread.
HWND next_active(HWND leaving)
{
    std::vector<HWND> candidates;
    if (const WindowPtr found = find_window(leaving)) {
        const WindowLock lock = lock_windows();
        if (found->owner)
            candidates.push_back(found->owner->handle);
        const std::vector<HWND> all = top_level_windows(lock);
        candidates.insert(candidates.end(), all.begin(), all.end());
    }
    for (const HWND candidate : candidates) {
        const auto ex_style = static_cast<DWORD>(GetWindowLongA(candidate, GWL_EXSTYLE));
        if (candidate != leaving && may_be_active(candidate) && !(ex_style & WS_EX_NOACTIVATE))
            return candidate;
    }
    return nullptr;
}

// Whether the program comes to the front or leaves it.
void send_application_activation(HWND window, BOOL active)
{
    SendMessageA(window, WM_ACTIVATEAPP, static_cast<WPARAM>(active), 0);
}

// Tells the active window that it is active no more; `next` (or null) will be.
void deactivate(HWND next)
{
    InputState& input = my_input();
    const HWND old = input.active;
    if (!old)
        return;
    cancel_menu_of(old);
    SendMessageA(old, WM_NCACTIVATE, FALSE, as_lparam(next));
    SendMessageA(old, WM_ACTIVATE, WA_INACTIVE, as_lparam(next));
    if (my_input().active == old)
        my_input().active = nullptr;
}

void move_focus(HWND to)
{
    const HWND from = my_input().focus;
    if (from == to)
        return;
    my_input().focus = nullptr;
    if (from)
        SendMessageA(from, WM_KILLFOCUS, as_wparam(to), 0);
    if (!to || !is_mine(to) || my_input().focus)
        return; // gone, or a handler gave the focus away
    my_input().focus = to;
    SendMessageA(to, WM_SETFOCUS, as_wparam(from), 0);
}

} // namespace

bool make_active(HWND window, WPARAM reason)
{
    if (my_input().active == window) {
        foreground() = window;
        return true;
    }
    if (!may_be_active(window))
        return false;
    const HWND old = my_input().active;
    const bool from_outside = !old && !foreground().load();
    deactivate(window);
    if (!may_be_active(window))
        return false;
    my_input().active = window;
    foreground() = window;
    if (from_outside)
        send_application_activation(window, TRUE);
    SendMessageA(window, WM_NCACTIVATE, TRUE, as_lparam(old));
    SendMessageA(window, WM_ACTIVATE, reason, as_lparam(old));
    if (my_input().active == window && !is_within(window, my_input().focus))
        move_focus(nullptr); // a window whose procedure set none leaves the keys to nobody
    return my_input().active == window;
}

void lose_activation(HWND window)
{
    if (my_input().active != window)
        return;
    HWND expected = window;
    foreground().compare_exchange_strong(expected, nullptr);
    deactivate(nullptr);
    move_focus(nullptr);
    if (!foreground().load())
        send_application_activation(window, FALSE);
}

void withdraw_input(HWND window)
{
    cancel_menu_of(window);
    if (is_within(window, my_input().capture))
        ReleaseCapture();
    if (my_input().active == window) {
        const HWND next = next_active(window);
        if (next)
            SetActiveWindow(next);
        else
            lose_activation(window);
    }
    if (is_within(window, my_input().focus))
        move_focus(nullptr);
}

void forget_foreground(HWND window)
{
    HWND expected = window;
    foreground().compare_exchange_strong(expected, nullptr);
}

} // namespace win32

using namespace win32;

HWND SetActiveWindow(HWND window)
{
    const HWND before = my_input().active;
    if (!may_be_active(window))
        return fail(HWND{ nullptr }, ERROR_INVALID_WINDOW_HANDLE);
    if (const WindowPtr found = find_window(window))
        screen().activate(found->surface->id());
    come_to_front(window);
    make_active(window, WA_ACTIVE);
    return before;
}

HWND GetActiveWindow()
{
    return my_input().active;
}

BOOL SetForegroundWindow(HWND window)
{
    const WindowPtr found = require_window(window);
    if (!found)
        return FALSE;
    BOOL active = FALSE;
    run_on(found->queue, [&] {
        SetActiveWindow(window);
        active = GetActiveWindow() == window;
    });
    return active;
}

HWND GetForegroundWindow()
{
    return foreground();
}

HWND SetFocus(HWND window)
{
    const HWND before = my_input().focus;
    if (!window) {
        move_focus(nullptr);
        return before;
    }
    if (!is_mine(window) || !IsWindowEnabled(window))
        return fail(HWND{ nullptr }, ERROR_INVALID_PARAMETER);
    const HWND top = top_of(window);
    if (my_input().active != top && may_be_active(top)) {
        SetActiveWindow(top);
        if (!is_mine(window))
            return nullptr;
    }
    move_focus(window);
    return before;
}

HWND GetFocus()
{
    return my_input().focus;
}

HWND SetCapture(HWND window)
{
    const WindowPtr found = require_window(window);
    if (!found || !found->queue || !found->queue->is_mine())
        return nullptr;
    const HWND before = std::exchange(my_input().capture, window);
    if (before == window)
        return before;
    {
        const WindowLock lock = lock_windows();
        const auto surface = root_of(*found, lock).surface;
        if (surface)
            screen().capture(surface->id());
    }
    if (before)
        SendMessageA(before, WM_CAPTURECHANGED, 0, as_lparam(window));
    return before;
}

BOOL ReleaseCapture()
{
    const HWND before = std::exchange(my_input().capture, nullptr);
    if (!before)
        return TRUE;
    screen().release_capture();
    SendMessageA(before, WM_CAPTURECHANGED, 0, 0);
    return TRUE;
}

HWND GetCapture()
{
    return my_input().capture;
}
