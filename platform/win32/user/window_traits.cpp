// What the desktop is told of a window.
#include "platform/win32/user/placement.h"
#include "platform/win32/user/window.h"
#include "winnls.h"

#include <algorithm>

namespace win32 {

namespace {

std::string to_utf8(const std::string& text)
{
    if (text.empty())
        return {};
    const int size = static_cast<int>(std::min<std::size_t>(text.size(), 1024)); // more no title bar shows
    std::u16string wide(static_cast<std::size_t>(size), u'\0');
    const int units = MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide.data(), size);
    std::string utf8(static_cast<std::size_t>(units) * 3, '\0');
    const int length = WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, utf8.data(), static_cast<int>(utf8.size()),
                                           nullptr, nullptr);
    utf8.resize(static_cast<std::size_t>(length));
    return utf8;
}

SurfaceTraits traits_now(const Window& window)
{
    SurfaceTraits traits;
    traits.kind = window.ex_style & WS_EX_TOOLWINDOW ? SurfaceKind::tool_window : SurfaceKind::window;
    traits.topmost = (window.ex_style & WS_EX_TOPMOST) != 0;
    traits.resizable = (window.style & WS_THICKFRAME) != 0;
    traits.owner = window.owner && window.owner->surface ? window.owner->surface->id() : 0;
    traits.title = to_utf8(window.text);
    traits.class_name = to_utf8(window.window_class->name);
    return traits;
}

} // namespace

SurfaceTraits traits_of(HWND window)
{
    const WindowPtr found = find_window(window);
    const WindowLock lock = lock_windows();
    return found ? traits_now(*found) : SurfaceTraits{};
}

void update_traits(HWND window)
{
    const WindowPtr found = find_window(window);
    if (found && found->surface)
        screen().set_traits(found->surface->id(), traits_of(window));
}

} // namespace win32
