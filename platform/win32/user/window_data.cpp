// What a window is asked for: its numbers, its text, its relatives.
#include "platform/win32/kernel/last_error.h"
#include "platform/win32/user/activation.h"
#include "platform/win32/user/order.h"
#include "platform/win32/user/paint.h"
#include "platform/win32/user/placement.h"
#include "platform/win32/user/window.h"
#include "winbase.h"
#include "winuser.h"

#include <algorithm>
#include <cstring>

#include <strings.h>

namespace {

using namespace win32;

LONG_PTR exchange_style(HWND handle, DWORD Window::*field, WPARAM which, LONG_PTR value)
{
    WindowPtr window = find_window(handle);
    STYLESTRUCT styles{};
    {
        const WindowLock lock = lock_windows();
        styles = { (*window).*field, static_cast<DWORD>(value) };
    }
    SendMessageA(handle, WM_STYLECHANGING, which, reinterpret_cast<LPARAM>(&styles));
    window = find_window(handle);
    if (!window)
        return 0;
    {
        const WindowLock lock = lock_windows();
        (*window).*field = styles.styleNew;
    }
    update_traits(handle);
    SendMessageA(handle, WM_STYLECHANGED, which, reinterpret_cast<LPARAM>(&styles));
    return static_cast<LONG_PTR>(styles.styleOld);
}

LONG_PTR exchange_extra(Window& window, int offset, std::optional<LONG_PTR> value)
{
    const WindowLock lock = lock_windows();
    const std::size_t size = window.extra.size();
    if (offset < 0 || size < sizeof(LONG_PTR) || static_cast<std::size_t>(offset) > size - sizeof(LONG_PTR))
        return fail(LONG_PTR{ 0 }, ERROR_INVALID_PARAMETER);
    LONG_PTR before = 0;
    std::memcpy(&before, window.extra.data() + offset, sizeof(before));
    if (value)
        std::memcpy(window.extra.data() + offset, &*value, sizeof(*value));
    return before;
}

LONG_PTR set_owner(Window& window, HWND owner)
{
    const WindowPtr found = find_window(owner);
    WindowLock lock = lock_windows();
    const HWND before = window.owner ? window.owner->handle : nullptr;
    Window* root = found ? &root_of(*found, lock) : nullptr;
    if (root && (root == &window || owns(window, *root)))
        root = nullptr; // nobody owns himself
    window.owner = root;
    lock.unlock();
    update_traits(window.handle);
    return reinterpret_cast<LONG_PTR>(before);
}

HWND handle_of(const Window* window)
{
    return window && window != &desktop() ? window->handle : nullptr;
}

HWND parent_of(const Window& window)
{
    if (window.style & WS_CHILD)
        return handle_of(window.parent);
    return window.style & WS_POPUP ? handle_of(window.owner) : nullptr;
}

bool has_name(Window& window, LPCSTR class_name, LPCSTR name)
{
    return (!class_name || ::strcasecmp(window.window_class->name.c_str(), class_name) == 0) &&
           (!name || window.text == name);
}

BOOL enumerate(const std::vector<HWND>& found, WNDENUMPROC procedure, LPARAM parameter)
{
    for (const HWND window : found) {
        if (find_window(window) && !procedure(window, parameter))
            return FALSE;
    }
    return TRUE;
}

bool has_style(HWND window, DWORD bits)
{
    const WindowPtr found = require_window(window);
    if (!found)
        return false;
    const WindowLock lock = lock_windows();
    return (found->style & bits) != 0;
}

} // namespace

LONG_PTR GetWindowLongPtrA(HWND window, int index)
{
    const WindowPtr found = require_window(window);
    if (!found)
        return 0;
    if (index >= 0)
        return exchange_extra(*found, index, std::nullopt);
    const WindowLock lock = lock_windows();
    switch (index) {
    case GWLP_WNDPROC:
        return reinterpret_cast<LONG_PTR>(found->procedure.load());
    case GWLP_HINSTANCE:
        return reinterpret_cast<LONG_PTR>(found->instance);
    case GWLP_HWNDPARENT:
        return reinterpret_cast<LONG_PTR>(handle_of((found->style & WS_CHILD) ? found->parent : found->owner));
    case GWLP_ID:
        return found->id;
    case GWL_STYLE:
        return static_cast<LONG_PTR>(found->style);
    case GWL_EXSTYLE:
        return static_cast<LONG_PTR>(found->ex_style);
    case GWLP_USERDATA:
        return found->user_data;
    default:
        return fail(LONG_PTR{ 0 }, ERROR_INVALID_PARAMETER);
    }
}

LONG_PTR SetWindowLongPtrA(HWND window, int index, LONG_PTR value)
{
    const WindowPtr found = require_window(window);
    if (!found)
        return 0;
    if (index >= 0)
        return exchange_extra(*found, index, value);
    if (index == GWL_STYLE)
        return exchange_style(window, &Window::style, static_cast<WPARAM>(GWL_STYLE), value);
    if (index == GWL_EXSTYLE)
        return exchange_style(window, &Window::ex_style, static_cast<WPARAM>(GWL_EXSTYLE), value);
    if (index == GWLP_HWNDPARENT)
        return set_owner(*found, reinterpret_cast<HWND>(value));
    const WindowLock lock = lock_windows();
    switch (index) {
    case GWLP_WNDPROC:
        return reinterpret_cast<LONG_PTR>(found->procedure.exchange(reinterpret_cast<WNDPROC>(value)));
    case GWLP_HINSTANCE:
        return reinterpret_cast<LONG_PTR>(std::exchange(found->instance, reinterpret_cast<HINSTANCE>(value)));
    case GWLP_ID:
        return std::exchange(found->id, value);
    case GWLP_USERDATA:
        return std::exchange(found->user_data, value);
    default:
        return fail(LONG_PTR{ 0 }, ERROR_INVALID_PARAMETER);
    }
}

LONG GetWindowLongA(HWND window, int index)
{
    return static_cast<LONG>(GetWindowLongPtrA(window, index));
}

LONG SetWindowLongA(HWND window, int index, LONG value)
{
    return static_cast<LONG>(SetWindowLongPtrA(window, index, value));
}

BOOL SetWindowTextA(HWND window, LPCSTR text)
{
    if (!require_window(window))
        return FALSE;
    return static_cast<BOOL>(SendMessageA(window, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text)));
}

int GetWindowTextA(HWND window, LPSTR buffer, int size)
{
    if (!require_window(window) || !buffer || size <= 0)
        return 0;
    *buffer = '\0';
    return static_cast<int>(
        SendMessageA(window, WM_GETTEXT, static_cast<WPARAM>(size), reinterpret_cast<LPARAM>(buffer)));
}

int GetWindowTextLengthA(HWND window)
{
    return require_window(window) ? static_cast<int>(SendMessageA(window, WM_GETTEXTLENGTH, 0, 0)) : 0;
}

HWND GetParent(HWND window)
{
    const WindowPtr found = require_window(window);
    if (!found)
        return nullptr;
    const WindowLock lock = lock_windows();
    return parent_of(*found);
}

HWND SetParent(HWND window, HWND parent)
{
    const WindowPtr found = require_window(window);
    const WindowPtr target = require_window(parent);
    if (!found || !target)
        return nullptr;
    if (!found->queue || found->queue != target->queue || is_top_level(*found))
        return fail(HWND{ nullptr }, ERROR_INVALID_PARAMETER);
    const WindowLock lock = lock_windows();
    if (target == found || is_descendant(*found, *target, lock) || !found->parent)
        return fail(HWND{ nullptr }, ERROR_INVALID_PARAMETER);
    const HWND before = found->parent->handle;
    if (found->style & WS_VISIBLE)
        uncover(*found->parent, found->rect, lock);
    std::erase(found->parent->children, found.get());
    found->parent = target.get();
    target->children.insert(target->children.begin(), found.get());
    invalidate_all(*found, lock);
    return before;
}

HWND GetWindow(HWND window, UINT command)
{
    const WindowPtr found = require_window(window);
    if (!found)
        return nullptr;
    const WindowLock lock = lock_windows();
    if (command == GW_CHILD)
        return found->children.empty() ? nullptr : found->children.front()->handle;
    if (command == GW_OWNER)
        return handle_of(found->owner);
    if (!found->parent)
        return nullptr;
    const std::vector<Window*>& siblings = found->parent->children;
    const auto at = std::find(siblings.begin(), siblings.end(), found.get());
    switch (command) {
    case GW_HWNDFIRST:
        return siblings.front()->handle;
    case GW_HWNDLAST:
        return siblings.back()->handle;
    case GW_HWNDNEXT:
        return at + 1 == siblings.end() ? nullptr : (*(at + 1))->handle;
    case GW_HWNDPREV:
        return at == siblings.begin() ? nullptr : (*(at - 1))->handle;
    default:
        return fail(HWND{ nullptr }, ERROR_INVALID_PARAMETER);
    }
}

HWND GetTopWindow(HWND window)
{
    return GetWindow(window ? window : GetDesktopWindow(), GW_CHILD);
}

HWND GetAncestor(HWND window, UINT flags)
{
    const WindowPtr found = require_window(window);
    if (!found)
        return nullptr;
    const WindowLock lock = lock_windows();
    if (flags == GA_PARENT)
        return found->parent ? found->parent->handle : nullptr;
    const Window* root = &root_of(*found, lock);
    while (flags == GA_ROOTOWNER && root->owner)
        root = root->owner;
    return root->handle;
}

HWND GetDlgItem(HWND window, int id)
{
    const WindowPtr found = require_window(window);
    if (!found)
        return nullptr;
    const WindowLock lock = lock_windows();
    for (const Window* child : found->children) {
        if (child->id == id)
            return child->handle;
    }
    return nullptr;
}

int GetDlgCtrlID(HWND window)
{
    return static_cast<int>(GetWindowLongPtrA(window, GWLP_ID));
}

HWND GetDesktopWindow()
{
    return desktop().handle;
}

HWND FindWindowA(LPCSTR class_name, LPCSTR name)
{
    const WindowLock lock = lock_windows();
    for (Window* window : desktop().children) {
        if (has_name(*window, class_name, name))
            return window->handle;
    }
    return nullptr;
}

BOOL EnumChildWindows(HWND window, WNDENUMPROC procedure, LPARAM parameter)
{
    const WindowPtr found = require_window(window);
    if (!found || !procedure)
        return FALSE;
    std::vector<HWND> below;
    {
        const WindowLock lock = lock_windows();
        below = subtree(*found, lock);
    }
    below.erase(below.begin()); // itself
    return enumerate(below, procedure, parameter);
}

BOOL EnumThreadWindows(DWORD thread, WNDENUMPROC procedure, LPARAM parameter)
{
    std::vector<HWND> found;
    {
        const WindowLock lock = lock_windows();
        for (const Window* window : desktop().children) {
            if (window->queue->thread() == thread)
                found.push_back(window->handle);
        }
    }
    return procedure && !found.empty() && enumerate(found, procedure, parameter);
}

BOOL IsWindow(HWND window)
{
    return find_window(window) != nullptr;
}

BOOL IsWindowVisible(HWND window)
{
    const WindowPtr found = require_window(window);
    if (!found)
        return FALSE;
    const WindowLock lock = lock_windows();
    for (const Window* at = found.get(); at != &desktop(); at = at->parent) {
        if (!at || !(at->style & WS_VISIBLE))
            return FALSE;
    }
    return TRUE;
}

BOOL IsWindowEnabled(HWND window)
{
    return require_window(window) && !has_style(window, WS_DISABLED);
}

BOOL IsChild(HWND parent, HWND window)
{
    const WindowPtr above = find_window(parent);
    const WindowPtr below = find_window(window);
    if (!above || !below)
        return FALSE;
    const WindowLock lock = lock_windows();
    return is_descendant(*above, *below, lock);
}

BOOL IsIconic(HWND window)
{
    return has_style(window, WS_MINIMIZE);
}

BOOL IsZoomed(HWND window)
{
    return has_style(window, WS_MAXIMIZE) && !has_style(window, WS_MINIMIZE);
}

BOOL EnableWindow(HWND window, BOOL enable)
{
    const WindowPtr found = require_window(window);
    if (!found)
        return FALSE;
    bool was_disabled = false;
    run_on(found->queue, [&] {
        {
            const WindowLock lock = lock_windows();
            was_disabled = (found->style & WS_DISABLED) != 0;
            found->style = enable ? found->style & ~WS_DISABLED : found->style | WS_DISABLED;
        }
        if (was_disabled == !enable)
            return;
        if (!enable) {
            SendMessageA(window, WM_CANCELMODE, 0, 0);
            if (GetFocus() == window)
                SetFocus(nullptr);
        }
        SendMessageA(window, WM_ENABLE, static_cast<WPARAM>(enable != FALSE), 0);
    });
    return was_disabled;
}

DWORD GetWindowThreadProcessId(HWND window, LPDWORD process)
{
    const WindowPtr found = require_window(window);
    if (!found || !found->queue)
        return 0;
    if (process)
        *process = GetCurrentProcessId();
    return found->queue->thread();
}
