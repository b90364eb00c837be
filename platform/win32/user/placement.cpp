#include "platform/win32/user/placement.h"

#include "platform/win32/kernel/last_error.h"
#include "platform/win32/user/activation.h"
#include "platform/win32/user/order.h"
#include "platform/win32/user/paint.h"
#include "platform/win32/user/window.h"
#include "winbase.h"

#include <algorithm>

namespace win32 {

namespace {

constexpr LONG kFarthest = 32767; // what a message's words hold, and a display's coordinates

LONG bounded_position(LONG value)
{
    return std::clamp(value, -kFarthest, kFarthest);
}

LONG bounded_extent(LONG value)
{
    return std::clamp(value, LONG{ 0 }, kFarthest);
}

LPARAM packed(LONG low, LONG high)
{
    return MAKELPARAM(static_cast<WORD>(low), static_cast<WORD>(high));
}

bool has_caption(DWORD style)
{
    return (style & WS_CAPTION) == WS_CAPTION;
}

// The client area within the window, never turned inside out.
RECT relative_client(const RECT& window, const RECT& client)
{
    const LONG left = std::clamp(client.left, window.left, window.right);
    const LONG top = std::clamp(client.top, window.top, window.bottom);
    return { left - window.left, top - window.top, std::clamp(client.right, left, window.right) - window.left,
             std::clamp(client.bottom, top, window.bottom) - window.top };
}

// What SetWindowPos is about to change.
struct Change {
    RECT old_rect;
    RECT old_client; // relative to the window
    RECT rect;
    RECT client;
    LRESULT redraw = 0; // WVR_ flags
    bool was_visible;
    bool moved;
    bool sized;

    bool frame_asked(UINT flags) const { return sized || (flags & SWP_FRAMECHANGED); }
};

// Completes the place with what stays, and notes in its flags what does not change.
Change begin_change(const Window& window, WINDOWPOS& place)
{
    const RECT& now = window.rect;
    Change change{};
    if (place.flags & SWP_NOMOVE) {
        place.x = now.left;
        place.y = now.top;
    }
    if (place.flags & SWP_NOSIZE) {
        place.cx = width_of(now);
        place.cy = height_of(now);
    }
    place.x = bounded_position(place.x);
    place.y = bounded_position(place.y);
    place.cx = bounded_extent(place.cx);
    place.cy = bounded_extent(place.cy);
    change.old_rect = now;
    change.old_client = window.client;
    change.rect = { place.x, place.y, place.x + place.cx, place.y + place.cy };
    change.client = window.client;
    change.was_visible = (window.style & WS_VISIBLE) != 0;
    change.moved = change.rect.left != now.left || change.rect.top != now.top;
    change.sized = width_of(change.rect) != width_of(now) || height_of(change.rect) != height_of(now);
    if (!change.moved)
        place.flags |= SWP_NOMOVE;
    if (!change.sized)
        place.flags |= SWP_NOSIZE;
    if (change.was_visible)
        place.flags &= ~SWP_SHOWWINDOW;
    else
        place.flags &= ~SWP_HIDEWINDOW;
    return change;
}

// The window says where its client area will be.
void ask_new_client(HWND window, WINDOWPOS& place, Change& change)
{
    NCCALCSIZE_PARAMS params{};
    params.rgrc[0] = change.rect;
    params.rgrc[1] = change.old_rect;
    params.rgrc[2] = moved(change.old_client, top_left(change.old_rect));
    params.lppos = &place;
    change.redraw = SendMessageA(window, WM_NCCALCSIZE, TRUE, reinterpret_cast<LPARAM>(&params));
    change.client = relative_client(change.rect, params.rgrc[0]);
}

// ---- Painting what a change uncovers.

void invalidate_new_client(Window& window, const Change& change, Locked lock)
{
    const UINT style = window.window_class->info.style;
    const bool wider = width_of(change.client) != width_of(change.old_client);
    const bool higher = height_of(change.client) != height_of(change.old_client);
    const bool whole = (wider && ((style & CS_HREDRAW) || (change.redraw & WVR_HREDRAW))) ||
                       (higher && ((style & CS_VREDRAW) || (change.redraw & WVR_VREDRAW)));
    Region area(RECT{ 0, 0, width_of(change.client), height_of(change.client) });
    if (!whole)
        area.subtract(Region(RECT{ 0, 0, width_of(change.old_client), height_of(change.old_client) }));
    invalidate(window, area, RDW_INVALIDATE | RDW_ERASE, lock);
}

void invalidate_changed(Window& window, const Change& change, UINT flags, bool reordered, Locked lock)
{
    const bool visible = (window.style & WS_VISIBLE) != 0;
    const bool child = !is_top_level(window);
    const bool shown = visible && !change.was_visible;
    if (child && window.parent && change.was_visible && (change.moved || change.sized || reordered || !visible))
        uncover(*window.parent, change.old_rect, lock);
    if (!visible)
        return;
    const bool frame_moved = change.client.left != change.old_client.left || change.client.top != change.old_client.top;
    if (shown || frame_moved || (child && (change.moved || change.sized || reordered))) {
        invalidate_all(window, lock);
    } else if (change.frame_asked(flags)) {
        invalidate_new_client(window, change, lock);
        const RECT whole{ 0, 0, width_of(change.rect), height_of(change.rect) };
        if (!EqualRect(&whole, &change.client))
            invalidate(window, Region(), RDW_INVALIDATE | RDW_FRAME | RDW_NOCHILDREN, lock);
    }
}

// ---- Carrying it out.

void change_surface(const Window& window, const WINDOWPOS& place, const Change& change, MovedBy moved_by)
{
    if ((change.moved || change.sized) && moved_by == MovedBy::program)
        screen().place(window.surface->id(), change.rect);
    if (place.flags & SWP_SHOWWINDOW)
        screen().show(window.surface->id(), true, !(place.flags & SWP_NOACTIVATE));
    if (place.flags & SWP_HIDEWINDOW)
        screen().show(window.surface->id(), false, false);
}

// What a client area looks like to its window after the change.
UINT client_flags(const Change& change)
{
    const RECT before = moved(change.old_client, top_left(change.old_rect));
    const RECT after = moved(change.client, top_left(change.rect));
    UINT flags = 0;
    if (width_of(before) == width_of(after) && height_of(before) == height_of(after))
        flags |= kClientNotSized;
    if (before.left == after.left && before.top == after.top)
        flags |= kClientNotMoved;
    return flags;
}

bool changes_anything(UINT flags, bool reordered)
{
    constexpr UINT kStays = SWP_NOMOVE | SWP_NOSIZE;
    return reordered || (flags & kStays) != kStays ||
           (flags & (SWP_SHOWWINDOW | SWP_HIDEWINDOW | SWP_FRAMECHANGED | kStateChanged));
}

// A window manager that sizes the window by itself holds to it, too.
void tell_smallest_size(HWND handle, SIZE smallest)
{
    const WindowPtr window = find_window(handle);
    if (!window || !is_top_level(*window))
        return;
    {
        const WindowLock lock = lock_windows();
        if (window->smallest.cx == smallest.cx && window->smallest.cy == smallest.cy)
            return;
        window->smallest = smallest;
    }
    update_traits(handle);
}

} // namespace

RECT frame_thickness(DWORD style, DWORD ex_style, bool menu)
{
    int border = 0;
    if (style & WS_THICKFRAME)
        border = GetSystemMetrics(SM_CXFRAME);
    else if (has_caption(style) || (style & WS_DLGFRAME) || (ex_style & WS_EX_DLGMODALFRAME))
        border = GetSystemMetrics(SM_CXFIXEDFRAME);
    else if (style & WS_BORDER)
        border = GetSystemMetrics(SM_CXBORDER);
    if (ex_style & WS_EX_CLIENTEDGE)
        border += GetSystemMetrics(SM_CXEDGE);
    if (ex_style & WS_EX_STATICEDGE)
        border += GetSystemMetrics(SM_CXBORDER);
    int caption = 0;
    if (has_caption(style))
        caption = GetSystemMetrics(ex_style & WS_EX_TOOLWINDOW ? SM_CYSMCAPTION : SM_CYCAPTION);
    return { border, border + caption + (menu ? GetSystemMetrics(SM_CYMENU) : 0), border, border };
}

bool is_size_bounded(DWORD style)
{
    return (style & WS_THICKFRAME) || !(style & (WS_POPUP | WS_CHILD));
}

MONITORINFO monitor_of_window(HWND window)
{
    MONITORINFO info{};
    info.cbSize = sizeof(info);
    GetMonitorInfoA(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &info);
    return info;
}

MINMAXINFO ask_size_limits(HWND window)
{
    const MONITORINFO monitor = monitor_of_window(window);
    const RECT work = moved(monitor.rcWork, { -monitor.rcMonitor.left, -monitor.rcMonitor.top });
    const LONG border = frame_thickness(static_cast<DWORD>(GetWindowLongA(window, GWL_STYLE)), 0, false).left;
    MINMAXINFO limits{};
    limits.ptMaxPosition = { work.left - border, work.top - border };
    limits.ptMaxSize = { width_of(work) + 2 * border, height_of(work) + 2 * border };
    limits.ptMinTrackSize = { GetSystemMetrics(SM_CXMINTRACK), GetSystemMetrics(SM_CYMINTRACK) };
    limits.ptMaxTrackSize = { GetSystemMetrics(SM_CXMAXTRACK), GetSystemMetrics(SM_CYMAXTRACK) };
    SendMessageA(window, WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits));
    tell_smallest_size(window, { limits.ptMinTrackSize.x, limits.ptMinTrackSize.y });
    return limits;
}

RECT ask_client_area(HWND window, const RECT& rect)
{
    RECT client = rect;
    SendMessageA(window, WM_NCCALCSIZE, FALSE, reinterpret_cast<LPARAM>(&client));
    return relative_client(rect, client);
}

bool place_window(WINDOWPOS place, MovedBy moved_by)
{
    const HWND handle = place.hwnd;
    if (!(place.flags & SWP_NOSENDCHANGING) && moved_by == MovedBy::program)
        SendMessageA(handle, WM_WINDOWPOSCHANGING, 0, reinterpret_cast<LPARAM>(&place));
    WindowPtr window = find_window(handle);
    if (!window)
        return false;
    WindowLock lock = lock_windows();
    Change change = begin_change(*window, place);
    lock.unlock();
    if (change.frame_asked(place.flags)) {
        ask_new_client(handle, place, change);
        window = find_window(handle);
        if (!window)
            return false;
    }

    lock.lock();
    window->rect = change.rect;
    window->client = change.client;
    window->invalid.intersect(Region(RECT{ 0, 0, width_of(change.client), height_of(change.client) }));
    if (place.flags & SWP_SHOWWINDOW)
        window->style |= WS_VISIBLE;
    if (place.flags & SWP_HIDEWINDOW)
        window->style &= ~WS_VISIBLE;
    const bool reordered = !(place.flags & SWP_NOZORDER) && reorder(*window, place.hwndInsertAfter, lock);
    lock.unlock();

    if (is_top_level(*window)) {
        change_surface(*window, place, change, moved_by);
        if (!(place.flags & SWP_NOZORDER))
            reorder_surfaces(handle, place.hwndInsertAfter);
    }
    if (!(place.flags & SWP_NOREDRAW)) {
        lock.lock();
        invalidate_changed(*window, change, place.flags, reordered, lock);
        lock.unlock();
    }
    if (place.flags & SWP_HIDEWINDOW)
        withdraw_input(handle);
    else if (!(place.flags & SWP_NOACTIVATE) && is_top_level(*window) && IsWindowVisible(handle))
        SetActiveWindow(handle);
    if (!find_window(handle))
        return false;
    if (changes_anything(place.flags, reordered)) {
        place.flags |= client_flags(change);
        SendMessageA(handle, WM_WINDOWPOSCHANGED, 0, reinterpret_cast<LPARAM>(&place));
    }
    return true;
}

void send_size(HWND window)
{
    const WindowPtr found = find_window(window);
    if (!found)
        return;
    WPARAM kind = SIZE_RESTORED;
    LPARAM extent = 0;
    {
        const WindowLock lock = lock_windows();
        found->placed_once = true;
        if (found->style & WS_MINIMIZE)
            kind = SIZE_MINIMIZED;
        else if (found->style & WS_MAXIMIZE)
            kind = SIZE_MAXIMIZED;
        if (kind != SIZE_MINIMIZED)
            extent = packed(width_of(found->client), height_of(found->client));
    }
    SendMessageA(window, WM_SIZE, kind, extent);
}

void send_move(HWND window)
{
    const WindowPtr found = find_window(window);
    if (!found)
        return;
    LPARAM corner;
    {
        const WindowLock lock = lock_windows();
        corner = packed(found->rect.left + found->client.left, found->rect.top + found->client.top);
    }
    SendMessageA(window, WM_MOVE, 0, corner);
}

} // namespace win32

using namespace win32;

BOOL SetWindowPos(HWND window, HWND insert_after, int x, int y, int width, int height, UINT flags)
{
    constexpr UINT kFlags = 0x07FF;
    const WindowPtr found = require_window(window);
    if (!found)
        return FALSE;
    bool placed = false;
    run_on(found->queue, [&] {
        placed = place_window({ window, insert_after, x, y, width, height, flags & kFlags }, MovedBy::program);
    });
    return placed;
}

BOOL MoveWindow(HWND window, int x, int y, int width, int height, BOOL repaint)
{
    return SetWindowPos(window, nullptr, x, y, width, height,
                        SWP_NOZORDER | SWP_NOACTIVATE | (repaint ? 0 : SWP_NOREDRAW));
}

BOOL BringWindowToTop(HWND window)
{
    return SetWindowPos(window, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
}

BOOL AdjustWindowRectEx(LPRECT rect, DWORD style, BOOL menu, DWORD ex_style)
{
    if (!rect)
        return fail(FALSE, ERROR_INVALID_PARAMETER);
    const RECT frame = frame_thickness(style, ex_style, menu != FALSE);
    *rect = { rect->left - frame.left, rect->top - frame.top, rect->right + frame.right, rect->bottom + frame.bottom };
    return TRUE;
}

BOOL AdjustWindowRect(LPRECT rect, DWORD style, BOOL menu)
{
    return AdjustWindowRectEx(rect, style, menu, 0);
}
