// Shown and hidden, minimised, maximised and restored.
#include "platform/win32/user/activation.h"
#include "platform/win32/user/paint.h"
#include "platform/win32/user/placement.h"
#include "platform/win32/user/window.h"

namespace win32 {

namespace {

RECT maximised_rect(HWND window)
{
    const POINT corner = top_left(monitor_of_window(window).rcMonitor);
    const MINMAXINFO limits = ask_size_limits(window);
    const RECT on_monitor{ limits.ptMaxPosition.x, limits.ptMaxPosition.y, limits.ptMaxPosition.x + limits.ptMaxSize.x,
                           limits.ptMaxPosition.y + limits.ptMaxSize.y };
    return moved(on_monitor, corner);
}

// The style bits of a state; a minimised window remembers that it was maximised.
DWORD style_in_state(DWORD style, SurfaceState state)
{
    switch (state) {
    case SurfaceState::minimised:
        return style | WS_MINIMIZE;
    case SurfaceState::maximised:
        return (style & ~WS_MINIMIZE) | WS_MAXIMIZE;
    case SurfaceState::normal:
        break;
    }
    return style & ~(WS_MINIMIZE | WS_MAXIMIZE);
}

void minimise(HWND window, MovedBy moved_by)
{
    const WindowPtr found = find_window(window);
    if (!found)
        return;
    if (moved_by == MovedBy::program)
        screen().set_state(found->surface->id(), SurfaceState::minimised);
    send_size(window);
    withdraw_input(window);
}

void place_in_state(HWND window, const RECT& rect, MovedBy moved_by)
{
    place_window({ window, nullptr, rect.left, rect.top, width_of(rect), height_of(rect),
                   SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED | kStateChanged },
                 moved_by);
}

} // namespace

void enter_state(HWND handle, SurfaceState state, MovedBy moved_by)
{
    const WindowPtr window = find_window(handle);
    if (!window || !is_top_level(*window))
        return;
    const RECT maximised = state == SurfaceState::maximised ? maximised_rect(handle) : RECT{};
    DWORD before;
    RECT rect;
    {
        const WindowLock lock = lock_windows();
        before = window->style;
        if (style_in_state(before, state) == before)
            return;
        if (!(before & (WS_MINIMIZE | WS_MAXIMIZE)))
            window->normal_rect = window->rect;
        const bool back_to_maximised =
            state == SurfaceState::normal && (before & WS_MINIMIZE) && (before & WS_MAXIMIZE);
        window->style = back_to_maximised ? before & ~WS_MINIMIZE : style_in_state(before, state);
        rect = window->rect; // where the desktop moves it to comes as an event of its own
        if (moved_by == MovedBy::program && !back_to_maximised)
            rect = state == SurfaceState::maximised ? maximised : window->normal_rect;
    }
    if (state == SurfaceState::minimised) {
        minimise(handle, moved_by);
        return;
    }
    if ((before & WS_MINIMIZE) && moved_by == MovedBy::program)
        screen().set_state(window->surface->id(), SurfaceState::normal);
    place_in_state(handle, rect, moved_by);
    if (before & WS_MINIMIZE) {
        const WindowLock lock = lock_windows();
        invalidate_all(*window, lock);
    }
}

} // namespace win32

using namespace win32;

namespace {

void show_on_own_thread(HWND window, int command, bool was_visible)
{
    constexpr UINT kStay = SWP_NOMOVE | SWP_NOSIZE;
    if (command == SW_HIDE) {
        if (was_visible) {
            SendMessageA(window, WM_SHOWWINDOW, FALSE, 0);
            place_window({ window, nullptr, 0, 0, 0, 0, kStay | SWP_NOZORDER | SWP_NOACTIVATE | SWP_HIDEWINDOW },
                         MovedBy::program);
        }
        return;
    }
    if (!was_visible)
        SendMessageA(window, WM_SHOWWINDOW, TRUE, 0);
    UINT flags = kStay | SWP_SHOWWINDOW;
    switch (command) {
    case SW_SHOWMINIMIZED:
    case SW_MINIMIZE:
    case SW_SHOWMINNOACTIVE:
        enter_state(window, SurfaceState::minimised, MovedBy::program);
        flags |= SWP_NOACTIVATE | SWP_NOZORDER;
        break;
    case SW_SHOWMAXIMIZED:
        enter_state(window, SurfaceState::maximised, MovedBy::program);
        break;
    case SW_SHOWNOACTIVATE:
        flags |= SWP_NOACTIVATE | SWP_NOZORDER;
        [[fallthrough]];
    case SW_SHOWNORMAL:
    case SW_RESTORE:
    case SW_SHOWDEFAULT:
        enter_state(window, SurfaceState::normal, MovedBy::program);
        break;
    case SW_SHOWNA:
        flags |= SWP_NOACTIVATE | SWP_NOZORDER;
        break;
    default:
        break;
    }
    if (const WindowPtr found = find_window(window); found && !is_top_level(*found))
        flags |= SWP_NOACTIVATE | SWP_NOZORDER; // a child keeps its place among its siblings
    if (!was_visible || !(flags & SWP_NOACTIVATE))
        place_window({ window, nullptr, 0, 0, 0, 0, flags }, MovedBy::program);
}

} // namespace

BOOL ShowWindow(HWND window, int command)
{
    const WindowPtr found = require_window(window);
    if (!found)
        return FALSE;
    bool was_visible = false;
    run_on(found->queue, [&] {
        {
            const WindowLock lock = lock_windows();
            was_visible = (found->style & WS_VISIBLE) != 0;
        }
        show_on_own_thread(window, command, was_visible);
    });
    return was_visible;
}

BOOL GetWindowPlacement(HWND window, WINDOWPLACEMENT* placement)
{
    const WindowPtr found = require_window(window);
    if (!found || !placement)
        return FALSE;
    const WindowLock lock = lock_windows();
    const bool normal = !(found->style & (WS_MINIMIZE | WS_MAXIMIZE));
    *placement = {
        sizeof(WINDOWPLACEMENT), 0, SW_SHOWNORMAL, { -1, -1 }, { -1, -1 }, normal ? found->rect : found->normal_rect
    };
    if (found->style & WS_MINIMIZE)
        placement->showCmd = SW_SHOWMINIMIZED;
    else if (found->style & WS_MAXIMIZE)
        placement->showCmd = SW_SHOWMAXIMIZED;
    return TRUE;
}
