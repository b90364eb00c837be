// Icons as programs hold and draw them.
#include "platform/win32/gdi/icon.h"
#include "platform/win32/gdi/load_file.h"
#include "platform/win32/gdi/pixel_copy.h"
#include "platform/win32/kernel/handle_table.h"
#include "platform/win32/kernel/last_error.h"
#include "platform/win32/kernel/never_destroyed.h"

#include <winbase.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <string>

namespace win32 {

namespace {

constexpr std::uint8_t kIconTag = 0x21;
constexpr int kDefaultIconSize = 32;

HandleTable<const Icon>& icons()
{
    static NeverDestroyed<HandleTable<const Icon>> table(kIconTag);
    return table.get();
}

// The icons that LoadIconA handed out, by resource name; they stay for ever.
class SharedIcons {
public:
    HICON find(const std::string& name)
    {
        const std::lock_guard lock(mutex_);
        const auto found = handles_.find(name);
        return found == handles_.end() ? nullptr : found->second;
    }
    // The handle that `name` has from now on: another thread may have been first.
    HICON add(const std::string& name, const std::shared_ptr<const Icon>& icon)
    {
        const std::lock_guard lock(mutex_);
        HICON& handle = handles_[name];
        if (!handle)
            handle = add_icon(icon);
        return handle;
    }
    bool contains(HICON handle)
    {
        const std::lock_guard lock(mutex_);
        return std::any_of(handles_.begin(), handles_.end(),
                           [handle](const auto& entry) { return entry.second == handle; });
    }

private:
    std::mutex mutex_;
    std::map<std::string, HICON> handles_;
};

SharedIcons& shared_icons()
{
    static NeverDestroyed<SharedIcons> shared;
    return shared.get();
}

} // namespace

HICON add_icon(std::shared_ptr<const Icon> icon)
{
    return icon ? reinterpret_cast<HICON>(icons().add(std::move(icon))) : nullptr;
}

std::shared_ptr<const Icon> find_icon(HICON handle)
{
    std::shared_ptr<const Icon> icon = icons().find(reinterpret_cast<std::uintptr_t>(handle));
    if (!icon)
        set_last_error(ERROR_INVALID_HANDLE);
    return icon;
}

std::shared_ptr<Bitmap> stretched(const Bitmap& bitmap, int width, int height)
{
    std::shared_ptr<Bitmap> result = Bitmap::create(width, height, bitmap.depth());
    if (!result)
        return nullptr;
    const Raster to = result->raster();
    const AxisMap columns{ { 0, 1, width }, { 0, 1, bitmap.width() } };
    const AxisMap rows{ { 0, 1, height }, { 0, 1, bitmap.height() } };
    for (int y = 0; y < height; y++) {
        for (int x = 0; x < width; x++) {
            std::uint32_t pixel;
            bitmap.read(static_cast<int>(columns.source_of(x)), static_cast<int>(rows.source_of(y)), 1, &pixel);
            to.write(x, y, 1, &pixel);
        }
    }
    return result;
}

std::shared_ptr<const Icon> sized_icon(std::shared_ptr<const Icon> icon, int width, int height)
{
    if (!icon || (icon->width() == width && icon->height() == height))
        return icon;
    auto result = std::make_shared<Icon>(*icon);
    result->mask = stretched(*icon->mask, width, icon->colour ? height : 2 * height);
    if (icon->colour)
        result->colour = stretched(*icon->colour, width, height);
    if (!result->mask || (icon->colour && !result->colour))
        return nullptr;
    result->hot_spot = { width / 2, height / 2 };
    return result;
}

} // namespace win32

using namespace win32;

HICON LoadIconA(HINSTANCE instance, LPCSTR name)
{
    if (!name)
        return fail(nullptr, ERROR_INVALID_PARAMETER);
    const std::string key =
        IS_INTRESOURCE(name) ? '#' + std::to_string(reinterpret_cast<std::uintptr_t>(name)) : std::string(name);
    if (const HICON known = shared_icons().find(key))
        return known;
    std::shared_ptr<const Icon> icon = icon_from_resources(instance, name, kDefaultIconSize, kDefaultIconSize);
    return icon ? shared_icons().add(key, sized_icon(std::move(icon), kDefaultIconSize, kDefaultIconSize)) : nullptr;
}

namespace {

// A 1-bit copy of a mask that may have colours, cut or filled with clear bits to that size.
std::shared_ptr<Bitmap> mask_copy(const Bitmap& source, int width, int height)
{
    std::shared_ptr<Bitmap> mask = Bitmap::create(width, height, 1);
    if (!mask)
        return nullptr;
    const Raster raster = mask->raster();
    std::vector<std::uint32_t> row(static_cast<std::size_t>(source.width()));
    for (int y = 0; y < std::min(height, source.height()); y++) {
        source.read(0, y, source.width(), row.data());
        raster.write(0, y, std::min(width, source.width()), row.data());
    }
    return mask;
}

} // namespace

HICON CreateIconIndirect(const ICONINFO* info)
{
    if (!info)
        return fail(nullptr, ERROR_INVALID_PARAMETER);
    const std::shared_ptr<Bitmap> mask = find<Bitmap>(info->hbmMask);
    const std::shared_ptr<Bitmap> colour = info->hbmColor ? find<Bitmap>(info->hbmColor) : nullptr;
    if (!mask || (info->hbmColor && !colour) || (!colour && mask->height() < 2))
        return fail(nullptr, ERROR_INVALID_PARAMETER);

    auto icon = std::make_shared<Icon>();
    icon->is_icon = info->fIcon;
    const Bitmap& measure = colour ? *colour : *mask;
    icon->mask = mask_copy(*mask, measure.width(), colour ? measure.height() : measure.height() / 2 * 2);
    if (colour) {
        icon->colour = colour->depth() == 32 ? colour->copy() : nullptr;
        if (!icon->colour) {
            std::shared_ptr<Bitmap> widened = Bitmap::create(colour->width(), colour->height(), 32);
            for (int y = 0; widened && y < colour->height(); y++)
                colour->read(0, y, colour->width(), widened->raster().colour_row(y));
            icon->colour = std::move(widened);
        }
    }
    if (!icon->mask || (colour && !icon->colour))
        return nullptr;
    icon->has_alpha = colour && colour->depth() == 32 && has_any_alpha(*colour);
    icon->hot_spot = { static_cast<LONG>(info->xHotspot), static_cast<LONG>(info->yHotspot) };
    if (icon->is_icon)
        icon->hot_spot = { icon->width() / 2, icon->height() / 2 };
    return add_icon(std::move(icon));
}

BOOL GetIconInfo(HICON handle, ICONINFO* info)
{
    const std::shared_ptr<const Icon> icon = find_icon(handle);
    if (!icon || !info)
        return FALSE;
    std::shared_ptr<Bitmap> mask = icon->mask->copy();
    std::shared_ptr<Bitmap> colour = icon->colour ? icon->colour->copy() : nullptr;
    if (!mask || (icon->colour && !colour))
        return FALSE;
    info->fIcon = icon->is_icon;
    info->xHotspot = static_cast<DWORD>(icon->hot_spot.x);
    info->yHotspot = static_cast<DWORD>(icon->hot_spot.y);
    info->hbmMask = add<HBITMAP>(std::move(mask));
    info->hbmColor = add<HBITMAP>(std::move(colour));
    return TRUE;
}

HICON CopyIcon(HICON icon)
{
    return add_icon(find_icon(icon));
}

BOOL DestroyIcon(HICON handle)
{
    if (shared_icons().contains(handle))
        return TRUE;
    return icons().remove(reinterpret_cast<std::uintptr_t>(handle)) ? TRUE : fail(FALSE, ERROR_INVALID_HANDLE);
}
