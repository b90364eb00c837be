// How windows come and go.
#include "platform/win32/kernel/last_error.h"
#include "platform/win32/kernel/module_exports.h"
#include "platform/win32/user/activation.h"
#include "platform/win32/user/order.h"
#include "platform/win32/user/paint.h"
#include "platform/win32/user/placement.h"
#include "platform/win32/user/window.h"
#include "winbase.h"
#include "winuser.h"

#include <algorithm>

namespace {

using namespace win32;

constexpr DWORD kChildNeedsParent = 1406; // ERROR_TLW_WITH_WSCHILD
constexpr int kMostExtraBytes = 1 << 16;

// What programs look for at run time, since not every system has it.
const Export kExports[] = { exported("GetMonitorInfoA", GetMonitorInfoA), exported("MonitorFromRect", MonitorFromRect),
                            exported("MonitorFromWindow", MonitorFromWindow) };
const ModuleExports user32("user32.dll", kExports);

// What CW_USEDEFAULT means: three quarters of the work area, in its middle.
RECT default_place()
{
    RECT work{};
    SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0);
    const LONG width = width_of(work) * 3 / 4;
    const LONG height = height_of(work) * 3 / 4;
    const LONG left = work.left + (width_of(work) - width) / 2;
    const LONG top = work.top + (height_of(work) - height) / 2;
    return { left, top, left + width, top + height };
}

void fill_in_defaults(CREATESTRUCTA& create)
{
    const RECT place = default_place();
    const bool child = (create.style & static_cast<LONG>(WS_CHILD)) != 0;
    if (create.x == CW_USEDEFAULT) {
        create.x = child ? 0 : place.left;
        create.y = child ? 0 : place.top;
    }
    if (create.cx == CW_USEDEFAULT) {
        create.cx = child ? 0 : width_of(place);
        create.cy = child ? 0 : height_of(place);
    }
}

// What the style brings with it, as documented.
void complete_styles(DWORD& style, DWORD& ex_style)
{
    if (!(style & WS_CHILD)) {
        style |= WS_CLIPSIBLINGS;
        if (!(style & WS_POPUP))
            style |= WS_CAPTION;
    }
    if ((style & WS_CAPTION) == WS_CAPTION || (style & WS_THICKFRAME))
        ex_style |= WS_EX_WINDOWEDGE;
}

// A child's parent hears of it; of others nobody does.
void notify_parent(HWND window, UINT event)
{
    const WindowPtr found = find_window(window);
    HWND parent = nullptr;
    LONG_PTR id = 0;
    if (found) {
        const WindowLock lock = lock_windows();
        const bool silent = is_top_level(*found) || (found->ex_style & WS_EX_NOPARENTNOTIFY) || !found->parent;
        parent = silent ? nullptr : found->parent->handle;
        id = found->id;
    }
    if (parent)
        SendMessageA(parent, WM_PARENTNOTIFY, MAKELONG(static_cast<WORD>(event), static_cast<WORD>(id)),
                     reinterpret_cast<LPARAM>(window));
}

// Puts a window into the table and the tree: a child above nobody, as the tab order wants it; a top-level window above
// all of its layer, with a surface. Null when the display refuses.
WindowPtr add_window(const WindowPtr& window, const CREATESTRUCTA& create, const WindowPtr& parent)
{
    const bool child = (window->style & WS_CHILD) != 0;
    const RECT rect{ create.x, create.y, create.x + std::clamp(create.cx, 0, 32767),
                     create.y + std::clamp(create.cy, 0, 32767) };
    window->rect = rect;
    window->client = { 0, 0, width_of(rect), height_of(rect) };
    window->normal_rect = rect;
    if (!child) {
        const SurfaceId surface = screen().create(rect, {});
        if (surface == 0)
            return nullptr;
        window->surface = std::make_shared<TopSurface>(surface, window->queue);
    }
    const auto handle = windows().add(window);
    window->handle = reinterpret_cast<HWND>(handle);
    const WindowLock lock = lock_windows();
    window->parent = child ? parent.get() : &desktop();
    if (!child && parent)
        window->owner = &root_of(*parent, lock);
    window->parent->children.push_back(window.get());
    if (!child)
        reorder(*window, HWND_TOP, lock);
    return window;
}

void bound_size(const WindowPtr& window, CREATESTRUCTA& create)
{
    if (!is_size_bounded(window->style))
        return;
    const MINMAXINFO limits = ask_size_limits(window->handle);
    create.cx = std::max<int>(limits.ptMinTrackSize.x, std::min<int>(create.cx, limits.ptMaxTrackSize.x));
    create.cy = std::max<int>(limits.ptMinTrackSize.y, std::min<int>(create.cy, limits.ptMaxTrackSize.y));
    const RECT rect{ create.x, create.y, create.x + create.cx, create.y + create.cy };
    {
        const WindowLock lock = lock_windows();
        window->rect = rect;
        window->normal_rect = rect;
    }
    if (window->surface)
        screen().place(window->surface->id(), rect);
}

bool take_client_area(HWND handle)
{
    WindowPtr window = find_window(handle);
    if (!window)
        return false;
    RECT rect;
    {
        const WindowLock lock = lock_windows();
        rect = window->rect;
    }
    const RECT client = ask_client_area(handle, rect);
    window = find_window(handle);
    if (!window)
        return false;
    const WindowLock lock = lock_windows();
    window->client = client;
    return true;
}

void show_created(HWND window, DWORD style)
{
    if (style & WS_MINIMIZE)
        ShowWindow(window, SW_SHOWMINIMIZED);
    else if (style & WS_MAXIMIZE)
        ShowWindow(window, SW_SHOWMAXIMIZED);
    else if (style & WS_VISIBLE)
        ShowWindow(window, (style & WS_CHILD) ? SW_SHOWNA : SW_SHOW);
}

// Sends the messages of birth. False: the window must not live, or does not any more.
bool announce(HWND handle, CREATESTRUCTA& create)
{
    const auto parameter = reinterpret_cast<LPARAM>(&create);
    if (!SendMessageA(handle, WM_NCCREATE, 0, parameter)) {
        if (const WindowPtr window = find_window(handle)) {
            SendMessageA(handle, WM_NCDESTROY, 0, 0);
            remove_window(*window);
        }
        return false;
    }
    update_traits(handle);
    update_icons(handle);
    if (!take_client_area(handle))
        return false;
    if (SendMessageA(handle, WM_CREATE, 0, parameter) == -1) {
        DestroyWindow(handle);
        return false;
    }
    const WindowPtr window = find_window(handle);
    if (window && !window->placed_once) {
        send_size(handle);
        send_move(handle);
    }
    return find_window(handle) != nullptr;
}

// ---- Going.

std::vector<HWND> subtree_of(HWND window)
{
    const WindowPtr found = find_window(window);
    const WindowLock lock = lock_windows();
    return found ? subtree(*found, lock) : std::vector<HWND>();
}

void destroy_owned(const WindowPtr& window)
{
    std::vector<HWND> owned;
    {
        const WindowLock lock = lock_windows();
        owned = owned_by(*window, lock);
    }
    for (const HWND each : owned) {
        if (const WindowPtr found = find_window(each))
            run_on(found->queue, [each] { DestroyWindow(each); });
    }
}

void hide_for_good(HWND window)
{
    if (GetWindowLongA(window, GWL_STYLE) & static_cast<LONG>(WS_VISIBLE))
        place_window(
            { window, nullptr, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_HIDEWINDOW },
            MovedBy::program);
    withdraw_input(window);
}

} // namespace

HWND CreateWindowExA(DWORD ex_style, LPCSTR class_name, LPCSTR name, DWORD style, int x, int y, int width, int height,
                     HWND parent, HMENU menu_or_id, HINSTANCE instance, LPVOID parameter)
{
    if (!class_name)
        return fail(HWND{ nullptr }, ERROR_CANNOT_FIND_WND_CLASS);
    const WindowPtr parent_window = parent && parent != GetDesktopWindow() ? require_window(parent) : nullptr;
    if (parent && parent != GetDesktopWindow() && !parent_window)
        return nullptr;
    if ((style & WS_CHILD) && !parent_window)
        return fail(HWND{ nullptr }, kChildNeedsParent);
    if ((style & WS_CHILD) && !parent_window->queue->is_mine())
        return fail(HWND{ nullptr }, ERROR_ACCESS_DENIED);

    const auto window = std::make_shared<Window>();
    {
        const WindowLock lock = lock_windows();
        window->window_class = find_class(class_name, instance);
        if (window->window_class)
            window->procedure = window->window_class->info.lpfnWndProc;
    }
    if (!window->window_class)
        return fail(HWND{ nullptr }, ERROR_CANNOT_FIND_WND_CLASS);
    complete_styles(style, ex_style);
    window->queue = MessageQueue::current();
    window->style = style & ~(WS_VISIBLE | WS_MINIMIZE | WS_MAXIMIZE);
    window->ex_style = ex_style;
    window->instance = instance;
    window->id = (style & WS_CHILD) ? reinterpret_cast<LONG_PTR>(menu_or_id) : 0;
    window->extra.resize(static_cast<std::size_t>(std::min(window->window_class->info.cbWndExtra, kMostExtraBytes)));

    CREATESTRUCTA create{ parameter, instance,   menu_or_id, parent, height, width, y, x, static_cast<LONG>(style),
                          name,      class_name, ex_style };
    fill_in_defaults(create);
    if (!add_window(window, create, parent_window))
        return fail(HWND{ nullptr }, ERROR_NOT_ENOUGH_MEMORY);
    const HWND handle = window->handle;
    if (window->surface)
        window->queue->add_surface(window->surface);
    bound_size(window, create);
    if (!find_window(handle) || !announce(handle, create))
        return nullptr;
    notify_parent(handle, WM_CREATE);
    show_created(handle, style);
    return find_window(handle) ? handle : nullptr;
}

BOOL DestroyWindow(HWND handle)
{
    WindowPtr window = require_window(handle);
    if (!window)
        return FALSE;
    if (!window->queue || !window->queue->is_mine())
        return fail(FALSE, ERROR_ACCESS_DENIED);
    {
        const WindowLock lock = lock_windows();
        if (std::exchange(window->going, true))
            return fail(FALSE, ERROR_INVALID_WINDOW_HANDLE); // it is on its way already
    }
    notify_parent(handle, WM_DESTROY);
    destroy_owned(window);
    hide_for_good(handle);
    window.reset();
    // Parents hear of it first and go last.
    for (const HWND each : subtree_of(handle)) {
        if (find_window(each))
            SendMessageA(each, WM_DESTROY, 0, 0);
    }
    const std::vector<HWND> going = subtree_of(handle);
    for (auto each = going.rbegin(); each != going.rend(); ++each) {
        if (find_window(*each))
            SendMessageA(*each, WM_NCDESTROY, 0, 0);
        if (const WindowPtr left = find_window(*each))
            remove_window(*left);
    }
    return TRUE;
}
