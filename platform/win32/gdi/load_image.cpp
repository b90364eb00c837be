// Bitmaps and icons from files and from the program's resources.
#include "platform/win32/gdi/bitmap.h"
#include "platform/win32/gdi/dib.h"
#include "platform/win32/gdi/icon.h"
#include "platform/win32/gdi/load_file.h"
#include "platform/win32/kernel/last_error.h"

#include <winbase.h>

#include <cstring>

namespace win32 {

std::shared_ptr<Bitmap> bitmap_from_dib(const DibFormat& format, Bytes bits, Lifetime lifetime)
{
    const auto pixels = static_cast<std::uint64_t>(format.width) * static_cast<std::uint64_t>(format.height);
    if (!is_plausible(pixels * sizeof(std::uint32_t), bits.size()))
        return fail(nullptr, ERROR_INVALID_DATA);
    const std::size_t stride = format.stride();
    const bool is_whole = bits.size() / stride >= static_cast<std::size_t>(format.height);
    if (lifetime == Lifetime::permanent && format.bits == 24 && is_whole) {
        const auto step = static_cast<std::ptrdiff_t>(stride);
        PackedRows rows{ bits.data(), step };
        if (!format.is_top_down)
            rows = { bits.data() + (format.height - 1) * step, -step };
        return Bitmap::create_over(format.width, format.height, rows);
    }
    std::shared_ptr<Bitmap> bitmap = Bitmap::create(format.width, format.height, 32);
    if (bitmap)
        decode_dib(format, bits, bitmap->raster(), Alpha::drop);
    return bitmap;
}

std::shared_ptr<Bitmap> bitmap_from_file(Bytes file)
{
    constexpr WORD kType = 0x4D42; // "BM"
    BITMAPFILEHEADER header;
    static_assert(sizeof header == 14);
    if (file.size() < sizeof header)
        return fail(nullptr, ERROR_INVALID_DATA);
    std::memcpy(&header, file.data(), sizeof header);
    const std::optional<DibFormat> format =
        header.bfType == kType ? read_dib_header(file.subspan(sizeof header)) : std::nullopt;
    if (!format)
        return fail(nullptr, ERROR_INVALID_DATA);
    std::size_t offset = header.bfOffBits;
    if (offset == 0)
        offset = sizeof header + format->bits_offset;
    if (offset < sizeof header || offset > file.size())
        return fail(nullptr, ERROR_INVALID_DATA);
    return bitmap_from_dib(*format, file.subspan(offset), Lifetime::passing);
}

std::shared_ptr<Bitmap> bitmap_from_resource(Bytes resource, Lifetime lifetime)
{
    const std::optional<DibFormat> format = read_dib_header(resource);
    if (!format)
        return fail(nullptr, ERROR_INVALID_DATA);
    return bitmap_from_dib(*format, resource.subspan(format->bits_offset), lifetime);
}

} // namespace win32

using namespace win32;

namespace {

std::shared_ptr<Bitmap> load_bitmap(HINSTANCE instance, LPCSTR name, UINT flags)
{
    if (flags & LR_LOADFROMFILE) {
        const std::optional<std::vector<std::byte>> file = load_file(name);
        return file ? bitmap_from_file(*file) : nullptr;
    }
    const Bytes resource = find_resource(instance, name, RT_BITMAP);
    return resource.empty() ? nullptr : bitmap_from_resource(resource, Lifetime::permanent);
}

// An extent of 0 keeps the bitmap's own.
std::shared_ptr<Bitmap> sized(std::shared_ptr<Bitmap> bitmap, int width, int height)
{
    const int new_width = width ? width : bitmap->width();
    const int new_height = height ? height : bitmap->height();
    if (new_width == bitmap->width() && new_height == bitmap->height())
        return bitmap;
    return stretched(*bitmap, new_width, new_height);
}

HICON load_icon(HINSTANCE instance, LPCSTR name, int width, int height, UINT flags)
{
    constexpr int kDefaultIconSize = 32;
    if (flags & LR_DEFAULTSIZE) {
        width = width ? width : kDefaultIconSize;
        height = height ? height : kDefaultIconSize;
    }
    std::shared_ptr<const Icon> icon;
    if (flags & LR_LOADFROMFILE) {
        const std::optional<std::vector<std::byte>> file = load_file(name);
        icon = file ? icon_from_file(*file, width, height) : nullptr;
    } else {
        icon = icon_from_resources(instance, name, width, height);
    }
    if (!icon)
        return nullptr;
    const int icon_width = width ? width : icon->width();
    const int icon_height = height ? height : icon->height();
    return add_icon(sized_icon(std::move(icon), icon_width, icon_height));
}

} // namespace

HBITMAP LoadBitmapA(HINSTANCE instance, LPCSTR name)
{
    return add<HBITMAP>(load_bitmap(instance, name, LR_DEFAULTCOLOR));
}

HANDLE LoadImageA(HINSTANCE instance, LPCSTR name, UINT type, int width, int height, UINT flags)
{
    if (type == IMAGE_ICON && !(flags & ~(LR_LOADFROMFILE | LR_DEFAULTSIZE)))
        return load_icon(instance, name, width, height, flags);
    if (type != IMAGE_BITMAP || (flags & ~LR_LOADFROMFILE))
        return fail(nullptr, ERROR_INVALID_PARAMETER);
    std::shared_ptr<Bitmap> bitmap = load_bitmap(instance, name, flags);
    return bitmap ? add<HBITMAP>(sized(std::move(bitmap), width, height)) : nullptr;
}
