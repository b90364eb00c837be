// What the desktop is told of a window.
#include "platform/win32/gdi/icon.h"
#include "platform/win32/user/placement.h"
#include "platform/win32/user/window.h"
#include "winnls.h"

#include <algorithm>
#include <cerrno>
#include <string_view>

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

// A popup that never becomes active is no window manager's business: a menu, or a tip when the pointer goes through it.
SurfaceKind kind_of(const Window& window)
{
    if ((window.style & WS_POPUP) && (window.ex_style & WS_EX_NOACTIVATE))
        return window.ex_style & WS_EX_TRANSPARENT ? SurfaceKind::tool_tip : SurfaceKind::menu;
    return window.ex_style & WS_EX_TOOLWINDOW ? SurfaceKind::tool_window : SurfaceKind::window;
}

// By which a desktop groups windows and finds the program's entry: its file's name, whatever its window classes are.
std::string program_name()
{
    constexpr std::string_view kExecutable = ".exe";
    std::string name = program_invocation_short_name;
    if (name.size() > kExecutable.size() && std::string_view(name).ends_with(kExecutable))
        name.resize(name.size() - kExecutable.size());
    return name;
}

SurfaceTraits traits_now(const Window& window)
{
    SurfaceTraits traits;
    traits.kind = kind_of(window);
    traits.topmost = (window.ex_style & WS_EX_TOPMOST) != 0;
    traits.resizable = (window.style & WS_THICKFRAME) != 0;
    traits.min_size = window.smallest;
    traits.owner = window.owner && window.owner->surface ? window.owner->surface->id() : 0;
    traits.title = to_utf8(window.text);
    traits.class_name = program_name();
    return traits;
}

// The icon's pixels with their opacity, as desktops take them.
std::vector<std::uint32_t> argb_of(const Icon& icon)
{
    const int width = icon.width();
    const int height = icon.height();
    std::vector<std::uint32_t> argb(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    std::vector<std::uint32_t> mask(static_cast<std::size_t>(width));
    for (int y = 0; y < height; y++) {
        std::uint32_t* row = argb.data() + static_cast<std::ptrdiff_t>(y) * width;
        if (icon.colour)
            icon.colour->read(0, y, width, row);
        else
            icon.mask->read(0, height + y, width, row);
        if (icon.has_alpha)
            continue;
        icon.mask->read(0, y, width, mask.data());
        std::transform(row, row + width, mask.begin(), row, [](std::uint32_t pixel, std::uint32_t transparent) {
            return transparent != 0 ? 0 : pixel | 0xFF000000;
        });
    }
    return argb;
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

void update_icons(HWND window)
{
    const WindowPtr found = find_window(window);
    if (!found || !found->surface)
        return;
    std::vector<HICON> handles;
    {
        const WindowLock lock = lock_windows();
        const WNDCLASSEXA& fallback = found->window_class->info;
        handles = { found->icon_big ? found->icon_big : fallback.hIcon,
                    found->icon_small ? found->icon_small : fallback.hIconSm };
    }
    std::vector<std::vector<std::uint32_t>> pixels;
    std::vector<PixelView> sizes;
    for (const HICON handle : handles) {
        const std::shared_ptr<const Icon> icon = handle ? find_icon(handle) : nullptr;
        if (!icon)
            continue;
        pixels.push_back(argb_of(*icon));
        sizes.push_back({ pixels.back().data(), icon->width(), icon->height(), icon->width() });
    }
    if (!sizes.empty() || found->told_icons)
        screen().set_icons(found->surface->id(), sizes);
    found->told_icons = !sizes.empty();
}

} // namespace win32
