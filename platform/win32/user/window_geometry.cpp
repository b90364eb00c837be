// Where windows are, and which one is at a point.
#include "platform/win32/kernel/last_error.h"
#include "platform/win32/user/hit_test.h"
#include "platform/win32/user/window.h"
#include "winbase.h"
#include "winuser.h"

#include <algorithm>

namespace {

using namespace win32;

// The corner of the client area on the screen; 0,0 of the desktop, and of no window at all.
bool client_origin(HWND window, POINT& origin)
{
    origin = {};
    if (!window)
        return true;
    const WindowPtr found = require_window(window);
    if (!found)
        return false;
    if (found.get() == &desktop())
        return true;
    const WindowLock lock = lock_windows();
    origin = top_left(client_on_screen(*found, lock));
    return true;
}

POINT shifted(POINT point, POINT by, int sign)
{
    return { static_cast<LONG>(static_cast<ULONG>(point.x) + static_cast<ULONG>(sign * by.x)),
             static_cast<LONG>(static_cast<ULONG>(point.y) + static_cast<ULONG>(sign * by.y)) };
}

} // namespace

BOOL GetWindowRect(HWND window, LPRECT rect)
{
    const WindowPtr found = require_window(window);
    if (!found || !rect)
        return FALSE;
    const WindowLock lock = lock_windows();
    *rect = window_on_screen(*found, lock);
    return TRUE;
}

BOOL GetClientRect(HWND window, LPRECT rect)
{
    const WindowPtr found = require_window(window);
    if (!found || !rect)
        return FALSE;
    const WindowLock lock = lock_windows();
    const RECT area = client_on_screen(*found, lock);
    *rect = found->style & WS_MINIMIZE ? RECT{} : RECT{ 0, 0, width_of(area), height_of(area) };
    return TRUE;
}

BOOL ClientToScreen(HWND window, LPPOINT point)
{
    POINT origin;
    if (!window || !point || !client_origin(window, origin))
        return FALSE;
    *point = shifted(*point, origin, 1);
    return TRUE;
}

BOOL ScreenToClient(HWND window, LPPOINT point)
{
    POINT origin;
    if (!window || !point || !client_origin(window, origin))
        return FALSE;
    *point = shifted(*point, origin, -1);
    return TRUE;
}

int MapWindowPoints(HWND from, HWND to, LPPOINT points, UINT count)
{
    POINT source;
    POINT target;
    if (!client_origin(from, source) || !client_origin(to, target))
        return 0;
    const POINT by{ source.x - target.x, source.y - target.y };
    for (UINT i = 0; points && i < count; i++)
        points[i] = shifted(points[i], by, 1);
    return MAKELONG(static_cast<WORD>(by.x), static_cast<WORD>(by.y));
}

HWND WindowFromPoint(POINT point)
{
    HWND top = nullptr;
    {
        const WindowLock lock = lock_windows();
        for (const Window* window : desktop().children) {
            if ((window->style & WS_VISIBLE) && !(window->style & WS_MINIMIZE) && PtInRect(&window->rect, point)) {
                top = window->handle;
                break;
            }
        }
    }
    return top ? hit_test(top, point).window : nullptr;
}

// Hidden and disabled children count; the window itself when no child is there, null outside it.
HWND ChildWindowFromPoint(HWND window, POINT point)
{
    const WindowPtr found = require_window(window);
    if (!found)
        return nullptr;
    const WindowLock lock = lock_windows();
    const RECT area{ 0, 0, width_of(found->client), height_of(found->client) };
    if (!PtInRect(&area, point))
        return nullptr;
    for (const Window* child : found->children) {
        if (PtInRect(&child->rect, point))
            return child->handle;
    }
    return window;
}
