#include "platform/win32/user/window_class.h"

#include "platform/win32/kernel/last_error.h"
#include "platform/win32/user/window.h"
#include "winbase.h"

#include <algorithm>
#include <cstring>
#include <type_traits>

#include <strings.h>

namespace win32 {

namespace {

constexpr ATOM kFirstAtom = 0xC000; // where the documentation has the numbers of named atoms begin

struct ClassTable {
    std::vector<WindowClassPtr> classes;
    ATOM last_atom = kFirstAtom;
};

ClassTable& class_table()
{
    static ClassTable& table = *std::make_unique<ClassTable>().release();
    return table;
}

bool is_atom(LPCSTR name)
{
    return reinterpret_cast<ULONG_PTR>(name) < 0x10000;
}

bool is_named(const WindowClass& window_class, LPCSTR name)
{
    return is_atom(name) ? window_class.atom == reinterpret_cast<ULONG_PTR>(name)
                         : ::strcasecmp(window_class.name.c_str(), name) == 0;
}

bool in_use(const WindowClass& window_class)
{
    const auto all = windows().all();
    return std::any_of(all.begin(), all.end(),
                       [&](const auto& entry) { return entry.second->window_class.get() == &window_class; });
}

// A field as the number it is, before it takes the value.
template <class Field>
ULONG_PTR exchange_field(Field& field, std::optional<LONG_PTR> value)
{
    const Field before = field;
    if constexpr (std::is_pointer_v<Field>) {
        if (value)
            field = reinterpret_cast<Field>(*value);
        return reinterpret_cast<ULONG_PTR>(before);
    } else {
        if (value)
            field = static_cast<Field>(*value);
        return before;
    }
}

ULONG_PTR exchange_class_field(HWND window, int index, std::optional<LONG_PTR> value)
{
    const WindowPtr found = require_window(window);
    if (!found)
        return 0;
    const WindowLock lock = lock_windows();
    WNDCLASSEXA& info = found->window_class->info;
    switch (index) {
    case GCL_STYLE:
        return exchange_field(info.style, value);
    case GCLP_WNDPROC:
        return exchange_field(info.lpfnWndProc, value);
    case GCLP_HICON:
        return exchange_field(info.hIcon, value);
    case GCLP_HICONSM:
        return exchange_field(info.hIconSm, value);
    case GCLP_HCURSOR:
        return exchange_field(info.hCursor, value);
    case GCLP_HBRBACKGROUND:
        return exchange_field(info.hbrBackground, value);
    default:
        return fail(ULONG_PTR{ 0 }, ERROR_INVALID_PARAMETER);
    }
}

} // namespace

WindowClassPtr find_class(LPCSTR name, HINSTANCE instance)
{
    WindowClassPtr best;
    for (const WindowClassPtr& candidate : class_table().classes) {
        if (!is_named(*candidate, name))
            continue;
        if (candidate->info.hInstance == instance)
            return candidate;
        if (!best || (candidate->info.style & CS_GLOBALCLASS))
            best = candidate;
    }
    return best;
}

HBRUSH background_of(const WindowClass& window_class)
{
    const auto number = reinterpret_cast<ULONG_PTR>(window_class.info.hbrBackground);
    if (number == 0)
        return nullptr;
    return number <= COLOR_MENUBAR + 1 ? GetSysColorBrush(static_cast<int>(number) - 1)
                                       : window_class.info.hbrBackground;
}

} // namespace win32

using namespace win32;

ATOM RegisterClassExA(const WNDCLASSEXA* window_class)
{
    if (!window_class || !window_class->lpszClassName || is_atom(window_class->lpszClassName) ||
        !*window_class->lpszClassName || !window_class->lpfnWndProc || window_class->cbWndExtra < 0)
        return fail(ATOM{ 0 }, ERROR_INVALID_PARAMETER);
    const WindowLock lock = lock_windows();
    ClassTable& table = class_table();
    for (const WindowClassPtr& known : table.classes) {
        if (known->info.hInstance == window_class->hInstance && is_named(*known, window_class->lpszClassName))
            return fail(ATOM{ 0 }, ERROR_CLASS_ALREADY_EXISTS);
    }
    if (table.last_atom == 0xFFFF)
        return fail(ATOM{ 0 }, ERROR_NOT_ENOUGH_MEMORY);
    const auto added = std::make_shared<WindowClass>();
    added->info = *window_class;
    added->name = window_class->lpszClassName;
    added->info.lpszClassName = added->name.c_str();
    added->atom = ++table.last_atom;
    table.classes.push_back(added);
    return added->atom;
}

ATOM RegisterClassA(const WNDCLASSA* window_class)
{
    if (!window_class)
        return fail(ATOM{ 0 }, ERROR_INVALID_PARAMETER);
    const WNDCLASSEXA extended{ sizeof(WNDCLASSEXA),        window_class->style,         window_class->lpfnWndProc,
                                window_class->cbClsExtra,   window_class->cbWndExtra,    window_class->hInstance,
                                window_class->hIcon,        window_class->hCursor,       window_class->hbrBackground,
                                window_class->lpszMenuName, window_class->lpszClassName, nullptr };
    return RegisterClassExA(&extended);
}

BOOL UnregisterClassA(LPCSTR class_name, HINSTANCE instance)
{
    const WindowLock lock = lock_windows();
    const WindowClassPtr found = class_name ? find_class(class_name, instance) : nullptr;
    if (!found || found->info.hInstance != instance || in_use(*found))
        return fail(FALSE, ERROR_CLASS_DOES_NOT_EXIST);
    std::erase(class_table().classes, found);
    return TRUE;
}

BOOL GetClassInfoExA(HINSTANCE instance, LPCSTR class_name, WNDCLASSEXA* window_class)
{
    if (!class_name || !window_class)
        return fail(FALSE, ERROR_INVALID_PARAMETER);
    const WindowLock lock = lock_windows();
    const WindowClassPtr found = find_class(class_name, instance);
    if (!found)
        return fail(FALSE, ERROR_CLASS_DOES_NOT_EXIST);
    *window_class = found->info;
    return TRUE;
}

BOOL GetClassInfoA(HINSTANCE instance, LPCSTR class_name, WNDCLASSA* window_class)
{
    WNDCLASSEXA extended{};
    if (!window_class)
        return fail(FALSE, ERROR_INVALID_PARAMETER);
    if (!GetClassInfoExA(instance, class_name, &extended))
        return FALSE;
    *window_class = { extended.style,        extended.lpfnWndProc,  extended.cbClsExtra, extended.cbWndExtra,
                      extended.hInstance,    extended.hIcon,        extended.hCursor,    extended.hbrBackground,
                      extended.lpszMenuName, extended.lpszClassName };
    return TRUE;
}

int GetClassNameA(HWND window, LPSTR buffer, int size)
{
    const WindowPtr found = require_window(window);
    if (!found || !buffer || size <= 0)
        return 0;
    const std::string& name = found->window_class->name;
    const std::size_t length = std::min(name.size(), static_cast<std::size_t>(size - 1));
    std::memcpy(buffer, name.data(), length);
    buffer[length] = '\0';
    return static_cast<int>(length);
}

ULONG_PTR GetClassLongPtrA(HWND window, int index)
{
    return exchange_class_field(window, index, std::nullopt);
}

ULONG_PTR SetClassLongPtrA(HWND window, int index, LONG_PTR value)
{
    return exchange_class_field(window, index, value);
}
