// DefWindowProcA: what a window does with the messages its own procedure leaves to us.
#include "platform/win32/user/default_frame.h"
#include "platform/win32/user/menu_tracker.h"
#include "platform/win32/user/move_loop.h"
#include "platform/win32/user/paint.h"
#include "platform/win32/user/placement.h"
#include "platform/win32/user/system_menu.h"
#include "platform/win32/user/window.h"
#include "winbase.h"
#include "wingdi.h"

#include <algorithm>
#include <cstring>

namespace {

using namespace win32;

constexpr WPARAM kCommandMask = 0xFFF0; // the low bits of a system command say how it was given

POINT point_of(LPARAM lparam)
{
    return { GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam) };
}

HWND parent_of_child(const WindowPtr& window)
{
    const WindowLock lock = lock_windows();
    return window->parent && !is_top_level(*window) ? window->parent->handle : nullptr;
}

// ---- Text.

void store_text(const WindowPtr& window, LPCSTR text)
{
    {
        const WindowLock lock = lock_windows();
        window->text = text ? text : "";
        if (window->style & WS_VISIBLE)
            invalidate(*window, Region(), RDW_INVALIDATE | RDW_FRAME | RDW_NOCHILDREN, lock);
    }
    update_traits(window->handle);
}

LRESULT copy_text(const WindowPtr& window, WPARAM size, LPARAM lparam)
{
    auto* const buffer = reinterpret_cast<LPSTR>(lparam);
    if (!buffer || size == 0)
        return 0;
    const WindowLock lock = lock_windows();
    const std::size_t length = std::min<std::size_t>(window->text.size(), size - 1);
    std::memcpy(buffer, window->text.data(), length);
    buffer[length] = '\0';
    return static_cast<LRESULT>(length);
}

LRESULT text_length(const WindowPtr& window)
{
    const WindowLock lock = lock_windows();
    return static_cast<LRESULT>(window->text.size());
}

// ---- Painting.

LRESULT erase(const WindowPtr& window, HDC dc)
{
    HBRUSH brush;
    RECT area;
    {
        const WindowLock lock = lock_windows();
        brush = background_of(*window->window_class);
        area = { 0, 0, width_of(window->client), height_of(window->client) };
    }
    if (!brush)
        return FALSE;
    FillRect(dc, &area, brush);
    return TRUE;
}

void paint_nothing(HWND window)
{
    PAINTSTRUCT paint;
    BeginPaint(window, &paint);
    EndPaint(window, &paint);
}

void allow_redraw(const WindowPtr& window, bool allow)
{
    const WindowLock lock = lock_windows();
    window->style = allow ? window->style | WS_VISIBLE : window->style & ~WS_VISIBLE;
}

// ---- Frame.

void inset_client(const WindowPtr& window, LPARAM lparam)
{
    auto* const rect = reinterpret_cast<RECT*>(lparam); // both forms of the message begin with it
    if (!rect)
        return;
    const WindowLock lock = lock_windows();
    const RECT frame = frame_thickness(window->style, window->ex_style, false);
    *rect = { rect->left + frame.left, rect->top + frame.top, rect->right - frame.right, rect->bottom - frame.bottom };
}

LPCSTR cursor_of_hit(int hit)
{
    switch (hit) {
    case HTLEFT:
    case HTRIGHT:
        return IDC_SIZEWE;
    case HTTOP:
    case HTBOTTOM:
        return IDC_SIZENS;
    case HTTOPLEFT:
    case HTBOTTOMRIGHT:
        return IDC_SIZENWSE;
    case HTTOPRIGHT:
    case HTBOTTOMLEFT:
        return IDC_SIZENESW;
    default:
        return IDC_ARROW;
    }
}

// A parent may set the cursor first, as documented; else over the client area it is the class's, if it has one.
LRESULT set_cursor(const WindowPtr& window, WPARAM wparam, LPARAM lparam)
{
    const HWND parent = parent_of_child(window);
    if (parent && SendMessageA(parent, WM_SETCURSOR, wparam, lparam))
        return TRUE;
    const int hit = GET_X_LPARAM(lparam);
    if (hit != HTCLIENT) {
        SetCursor(LoadCursorA(nullptr, cursor_of_hit(hit)));
        return FALSE;
    }
    const auto handle = reinterpret_cast<HWND>(wparam);
    if (const auto cursor = reinterpret_cast<HCURSOR>(GetClassLongPtrA(handle, GCLP_HCURSOR)))
        SetCursor(cursor);
    return FALSE;
}

LRESULT mouse_activate(const WindowPtr& window, WPARAM wparam, LPARAM lparam)
{
    const HWND parent = parent_of_child(window);
    const LRESULT answer = parent ? SendMessageA(parent, WM_MOUSEACTIVATE, wparam, lparam) : 0;
    return answer ? answer : MA_ACTIVATE;
}

WPARAM command_of_box(HWND window, int hit)
{
    switch (hit) {
    case HTMINBUTTON:
        return SC_MINIMIZE;
    case HTMAXBUTTON:
        return IsZoomed(window) ? SC_RESTORE : SC_MAXIMIZE;
    case HTCLOSE:
        return SC_CLOSE;
    default:
        return 0;
    }
}

// A second press on the icon, which closes the menu, closes the window when it comes as quickly as a double click.
void open_menu_of_icon(HWND window, LPARAM lparam)
{
    const auto first_press = static_cast<DWORD>(GetMessageTime());
    const bool chosen = open_system_menu(window, OpenedBy::pointer);
    const auto second_press = static_cast<DWORD>(GetMessageTime());
    const bool pressed = (GetKeyState(VK_LBUTTON) & 0x8000) != 0;
    if (chosen || !pressed || second_press - first_press > GetDoubleClickTime())
        return;
    POINT point;
    GetCursorPos(&point);
    const LPARAM place = MAKELPARAM(static_cast<WORD>(point.x), static_cast<WORD>(point.y));
    if (SendMessageA(window, WM_NCHITTEST, 0, place) == HTSYSMENU)
        PostMessageA(window, WM_SYSCOMMAND, SC_CLOSE, lparam);
}

void press_frame(HWND window, int hit, LPARAM lparam)
{
    if (hit == HTCAPTION)
        SendMessageA(window, WM_SYSCOMMAND, SC_MOVE | HTCAPTION, lparam);
    else if (hit >= HTLEFT && hit <= HTBOTTOMRIGHT)
        SendMessageA(window, WM_SYSCOMMAND, SC_SIZE | static_cast<WPARAM>(hit - HTLEFT + 1), lparam);
    else if (hit == HTSYSMENU)
        open_menu_of_icon(window, lparam);
    else if (const WPARAM command = command_of_box(window, hit); command != 0 && track_box(window, hit))
        SendMessageA(window, WM_SYSCOMMAND, command, lparam);
}

void double_click_frame(HWND window, int hit, LPARAM lparam)
{
    const auto style = static_cast<DWORD>(GetWindowLongA(window, GWL_STYLE));
    if (hit == HTCAPTION && (style & WS_MAXIMIZEBOX) && !(style & WS_CHILD))
        SendMessageA(window, WM_SYSCOMMAND, (style & WS_MAXIMIZE) ? SC_RESTORE : SC_MAXIMIZE, lparam);
    else if (hit == HTSYSMENU)
        SendMessageA(window, WM_SYSCOMMAND, SC_CLOSE, lparam);
}

void system_command(HWND window, WPARAM command, LPARAM lparam)
{
    const auto edge = static_cast<int>(command & ~kCommandMask);
    switch (command & kCommandMask) {
    case SC_MOVE:
        if (edge == HTCAPTION)
            drag_window(window, HTCAPTION);
        else
            move_by_keys(window, ByKeys::move);
        break;
    case SC_SIZE:
        if (edge >= 1 && edge <= 8)
            drag_window(window, HTLEFT + edge - 1);
        else
            move_by_keys(window, ByKeys::size);
        break;
    case SC_MINIMIZE:
        ShowWindow(window, SW_MINIMIZE);
        break;
    case SC_MAXIMIZE:
        ShowWindow(window, SW_MAXIMIZE);
        break;
    case SC_RESTORE:
        ShowWindow(window, SW_RESTORE);
        break;
    case SC_CLOSE:
        SendMessageA(window, WM_CLOSE, 0, 0);
        break;
    case SC_KEYMENU:
        if (lparam == VK_SPACE)
            open_system_menu(window, OpenedBy::keys);
        break;
    case SC_MOUSEMENU:
        open_system_menu_at(window, point_of(lparam));
        break;
    default:
        break;
    }
}

// Alt+F4 and Alt+Space, of the window that the key's window lies in.
void press_system_key(HWND window, WPARAM key)
{
    const HWND top = GetAncestor(window, GA_ROOT);
    if (!(GetKeyState(VK_MENU) & 0x8000))
        return;
    if (key == VK_F4 && may_close(top))
        PostMessageA(top, WM_SYSCOMMAND, SC_CLOSE, 0);
    else if (key == VK_SPACE)
        PostMessageA(top, WM_SYSCOMMAND, SC_KEYMENU, VK_SPACE);
}

LPARAM on_screen(HWND window, LPARAM lparam)
{
    POINT point = point_of(lparam);
    ClientToScreen(window, &point);
    return MAKELPARAM(static_cast<WORD>(point.x), static_cast<WORD>(point.y));
}

// A child leaves it to its parent; a top-level window has a menu for its caption only.
void open_context_menu(const WindowPtr& window, WPARAM wparam, LPARAM lparam)
{
    if (const HWND parent = parent_of_child(window)) {
        SendMessageA(parent, WM_CONTEXTMENU, wparam, lparam);
        return;
    }
    const LRESULT hit = SendMessageA(window->handle, WM_NCHITTEST, 0, lparam);
    if (hit == HTCAPTION || hit == HTSYSMENU)
        SendMessageA(window->handle, WM_SYSCOMMAND, SC_MOUSEMENU, lparam);
}

// ---- Place.

void bound_new_size(HWND window, WINDOWPOS& place)
{
    if ((place.flags & SWP_NOSIZE) || !is_size_bounded(static_cast<DWORD>(GetWindowLongA(window, GWL_STYLE))) ||
        IsZoomed(window))
        return;
    const MINMAXINFO limits = ask_size_limits(window);
    place.cx = std::max<int>(limits.ptMinTrackSize.x, std::min<int>(place.cx, limits.ptMaxTrackSize.x));
    place.cy = std::max<int>(limits.ptMinTrackSize.y, std::min<int>(place.cy, limits.ptMaxTrackSize.y));
}

void tell_place(HWND window, const WINDOWPOS& place)
{
    const UINT flags = place.flags; // the message's record may be gone after the first one
    if (!(flags & kClientNotMoved))
        send_move(window);
    if (!(flags & kClientNotSized) || (flags & kStateChanged))
        send_size(window);
}

LRESULT exchange_icon(const WindowPtr& window, WPARAM which, std::optional<LPARAM> icon)
{
    WindowLock lock = lock_windows();
    HICON& kept = which == ICON_SMALL ? window->icon_small : window->icon_big;
    const HICON before = kept;
    if (icon)
        kept = reinterpret_cast<HICON>(*icon);
    const bool changed = kept != before;
    if (changed)
        invalidate(*window, Region(), RDW_INVALIDATE | RDW_FRAME | RDW_NOCHILDREN, lock);
    lock.unlock();
    if (changed)
        update_icons(window->handle);
    return reinterpret_cast<LRESULT>(before);
}

void take_name(const WindowPtr& window, LPARAM lparam)
{
    if (const auto* create = reinterpret_cast<const CREATESTRUCTA*>(lparam)) {
        const WindowLock lock = lock_windows();
        window->text = create->lpszName ? create->lpszName : "";
    }
}

} // namespace

LRESULT DefWindowProcA(HWND handle, UINT message, WPARAM wparam, LPARAM lparam)
{
    const WindowPtr window = find_window(handle);
    if (!window || !window->queue)
        return 0;
    switch (message) {
    case WM_NCCREATE:
        take_name(window, lparam);
        return TRUE;
    case WM_NCCALCSIZE:
        inset_client(window, lparam);
        return 0;
    case WM_NCHITTEST:
        return frame_hit(handle, point_of(lparam));
    case WM_NCPAINT:
        paint_frame(handle, GetActiveWindow() == handle);
        return 0;
    case WM_NCACTIVATE:
        if (IsWindowVisible(handle))
            paint_frame(handle, wparam != FALSE);
        return TRUE;
    case WM_NCLBUTTONDOWN:
        press_frame(handle, static_cast<int>(wparam), lparam);
        return 0;
    case WM_NCLBUTTONDBLCLK:
        double_click_frame(handle, static_cast<int>(wparam), lparam);
        return 0;
    case WM_SYSCOMMAND:
        system_command(handle, wparam, lparam);
        return 0;
    case WM_SYSKEYDOWN:
        press_system_key(handle, wparam);
        return 0;
    case WM_NCRBUTTONUP:
        if (wparam == HTCAPTION || wparam == HTSYSMENU)
            SendMessageA(handle, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(handle), lparam);
        return 0;
    case WM_RBUTTONUP:
        SendMessageA(handle, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(handle), on_screen(handle, lparam));
        return 0;
    case WM_CONTEXTMENU:
        open_context_menu(window, wparam, lparam);
        return 0;
    case WM_CLOSE:
        DestroyWindow(handle);
        return 0;
    case WM_QUERYENDSESSION:
        return TRUE;
    case WM_ERASEBKGND:
        return erase(window, reinterpret_cast<HDC>(wparam));
    case WM_PAINT:
        paint_nothing(handle);
        return 0;
    case WM_SETREDRAW:
        allow_redraw(window, wparam != FALSE);
        return 0;
    case WM_SETCURSOR:
        return set_cursor(window, wparam, lparam);
    case WM_MOUSEACTIVATE:
        return mouse_activate(window, wparam, lparam);
    case WM_MOUSEWHEEL:
        if (const HWND parent = parent_of_child(window))
            SendMessageA(parent, message, wparam, lparam);
        return 0;
    case WM_ACTIVATE:
        if (LOWORD(wparam) != WA_INACTIVE && !IsIconic(handle))
            SetFocus(handle);
        return 0;
    case WM_CANCELMODE:
        cancel_menu_of(handle);
        if (GetCapture() == handle)
            ReleaseCapture();
        return 0;
    case WM_WINDOWPOSCHANGING:
        bound_new_size(handle, *reinterpret_cast<WINDOWPOS*>(lparam));
        return 0;
    case WM_WINDOWPOSCHANGED:
        tell_place(handle, *reinterpret_cast<const WINDOWPOS*>(lparam));
        return 0;
    case WM_SETTEXT:
        store_text(window, reinterpret_cast<LPCSTR>(lparam));
        return TRUE;
    case WM_GETTEXT:
        return copy_text(window, wparam, lparam);
    case WM_GETTEXTLENGTH:
        return text_length(window);
    case WM_SETICON:
        return exchange_icon(window, wparam, lparam);
    case WM_GETICON:
        return exchange_icon(window, wparam, std::nullopt);
    default:
        return 0;
    }
}
