// Rows of bitmaps in and out in device-independent form.
#include "platform/win32/gdi/bitmap.h"
#include "platform/win32/gdi/device_context.h"
#include "platform/win32/gdi/dib.h"
#include "platform/win32/kernel/last_error.h"

#include <winbase.h>

#include <algorithm>
#include <cstring>

using namespace win32;

namespace {

std::size_t row_bytes(int width, int bits)
{
    return (static_cast<std::size_t>(width) * static_cast<std::size_t>(bits) + 31) / 32 * 4;
}

void describe(const Bitmap& bitmap, BITMAPINFOHEADER& header)
{
    const DWORD size = header.biSize;
    header = {};
    header.biSize = size;
    header.biWidth = bitmap.width();
    header.biHeight = bitmap.height();
    header.biPlanes = 1;
    header.biBitCount = static_cast<WORD>(bitmap.depth());
    header.biCompression = BI_RGB;
    header.biSizeImage =
        static_cast<DWORD>(row_bytes(bitmap.width(), bitmap.depth()) * static_cast<std::size_t>(bitmap.height()));
}

// Writes 32-bit pixels as a row of 1, 24 or 32 bits.
void pack_pixels(const std::uint32_t* pixels, int x, int count, int bits, std::uint8_t* row)
{
    if (bits == 32) {
        std::memcpy(row + std::ptrdiff_t{ 4 } * x, pixels, static_cast<std::size_t>(count) * sizeof *pixels);
    } else if (bits == 24) {
        std::uint8_t* out = row + std::ptrdiff_t{ 3 } * x;
        for (int i = 0; i + 1 < count; i++, out += 3) // four bytes each; the next pixel covers the fourth
            std::memcpy(out, pixels + i, 4);
        std::memcpy(out, pixels + count - 1, 3);
    } else {
        for (int i = 0; i < count; i++) {
            const std::uint32_t pixel = pixels[i];
            const int column = x + i;
            const auto bit = static_cast<std::uint8_t>(0x80 >> column % 8);
            row[column / 8] =
                static_cast<std::uint8_t>(is_light(pixel) ? row[column / 8] | bit : row[column / 8] & ~bit);
        }
    }
}

void read_row(const Bitmap& bitmap, int y, int width, int bits, std::uint8_t* row)
{
    const int shown = std::min(width, bitmap.width());
    const std::size_t whole = static_cast<std::size_t>(shown) * static_cast<std::size_t>(bits) / 8;
    std::fill_n(row + whole, row_bytes(width, bits) - whole, std::uint8_t{ 0 });
    if (const std::uint32_t* pixels = bitmap.row(y)) {
        pack_pixels(pixels, 0, shown, bits, row);
        return;
    }
    std::uint32_t pixels[kChunk];
    for (int x = 0; x < shown; x += kChunk) {
        const int count = std::min(kChunk, shown - x);
        bitmap.read(x, y, count, pixels);
        pack_pixels(pixels, x, count, bits, row);
    }
}

bool is_writable_format(const BITMAPINFOHEADER& header)
{
    return (header.biBitCount == 1 || header.biBitCount == 24 || header.biBitCount == 32) &&
           header.biCompression == BI_RGB && header.biPlanes == 1 && header.biHeight != 0 &&
           is_bitmap_size(header.biWidth, std::abs(std::int64_t{ header.biHeight }));
}

// The row of the picture that row `index` of a DIB in memory stands for.
std::int64_t row_of(std::int64_t index, std::int64_t dib_height)
{
    return dib_height < 0 ? index : dib_height - 1 - index;
}

} // namespace

int GetDIBits(HDC dc, HBITMAP handle, UINT start, UINT lines, LPVOID bits, BITMAPINFO* info, UINT usage)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    const std::shared_ptr<Bitmap> bitmap = context ? find<Bitmap>(handle) : nullptr;
    if (!bitmap || !info || usage != DIB_RGB_COLORS || info->bmiHeader.biSize < sizeof(BITMAPINFOHEADER))
        return fail(0, ERROR_INVALID_PARAMETER);
    BITMAPINFOHEADER& header = info->bmiHeader;
    if (header.biBitCount == 0) {
        describe(*bitmap, header);
        return 1;
    }
    if (!is_writable_format(header))
        return fail(0, ERROR_INVALID_PARAMETER);
    const std::size_t stride = row_bytes(header.biWidth, header.biBitCount);
    header.biSizeImage =
        static_cast<DWORD>(stride * static_cast<std::size_t>(std::abs(std::int64_t{ header.biHeight })));
    if (header.biBitCount == 1) {
        info->bmiColors[0] = { 0, 0, 0, 0 };
        info->bmiColors[1] = { 255, 255, 255, 0 };
    }
    if (!bits)
        return 1;

    auto* row = static_cast<std::uint8_t*>(bits);
    int copied = 0;
    for (std::int64_t index = start; index < std::int64_t{ start } + lines; index++, row += stride) {
        const std::int64_t y = row_of(index, header.biHeight);
        if (index >= std::abs(std::int64_t{ header.biHeight }))
            break;
        if (y < 0 || y >= bitmap->height())
            continue;
        read_row(*bitmap, static_cast<int>(y), header.biWidth, header.biBitCount, row);
        copied++;
    }
    return copied;
}

namespace {

// The bytes of a header that a caller hands over with all that must follow it.
Bytes header_bytes(const BITMAPINFO& info)
{
    const BITMAPINFOHEADER& header = info.bmiHeader;
    std::size_t size = header.biSize;
    if (size >= sizeof header) {
        if (header.biCompression == BI_BITFIELDS && size == sizeof header)
            size += 3 * sizeof(DWORD);
        const std::size_t colours =
            header.biClrUsed ? header.biClrUsed : (header.biBitCount <= 8 ? std::size_t{ 1 } << header.biBitCount : 0);
        size += std::min<std::size_t>(colours, 256) * sizeof(RGBQUAD);
    } else {
        BITMAPCOREHEADER core;
        std::memcpy(&core, &info, sizeof core);
        size += core.bcBitCount <= 8 ? (std::size_t{ 3 } << core.bcBitCount) : 0;
    }
    return { reinterpret_cast<const std::byte*>(&info), size };
}

} // namespace

int SetDIBits(HDC dc, HBITMAP handle, UINT start, UINT lines, LPCVOID bits, const BITMAPINFO* info, UINT usage)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    const std::shared_ptr<Bitmap> bitmap = context ? find<Bitmap>(handle) : nullptr;
    if (!bitmap || !bits || !info || usage != DIB_RGB_COLORS)
        return fail(0, ERROR_INVALID_PARAMETER);
    std::optional<DibFormat> format = read_dib_header(header_bytes(*info));
    if (!format || start >= static_cast<UINT>(format->height))
        return fail(0, ERROR_INVALID_PARAMETER);

    const bool is_run_length = format->compression == BI_RLE4 || format->compression == BI_RLE8;
    const int dib_height = format->height;
    if (is_run_length) {
        start = 0; // runs are read from their beginning only
        lines = static_cast<UINT>(dib_height);
    }
    format->height = static_cast<int>(std::min(lines, static_cast<UINT>(dib_height) - start));
    if (format->height == 0)
        return 0;
    const std::size_t length =
        is_run_length ? info->bmiHeader.biSizeImage : format->stride() * static_cast<std::size_t>(format->height);
    const Bytes pixels{ static_cast<const std::byte*>(bits), length };
    // Where the rows' picture begins in the bitmap.
    const std::int64_t top = format->is_top_down ? start : std::int64_t{ dib_height } - start - format->height;
    const Raster to = bitmap->raster();
    if (!to.is_mono() && format->width <= to.width && top + format->height <= to.height && !is_run_length) {
        decode_dib(*format, pixels,
                   { to.colour_row(static_cast<int>(top)), nullptr, format->width, format->height, to.stride },
                   Alpha::keep);
        return format->height;
    }
    const std::shared_ptr<Bitmap> rows = Bitmap::create(format->width, format->height, 32);
    if (!rows)
        return 0;
    const Raster from = rows->raster();
    decode_dib(*format, pixels, from, Alpha::keep);
    const int width = std::min(from.width, to.width);
    for (int i = 0; i < format->height && top + i < to.height; i++)
        to.write(0, static_cast<int>(top + i), width, from.colour_row(i));
    return format->height;
}

HBITMAP CreateDIBSection(HDC, const BITMAPINFO* info, UINT usage, LPVOID* bits, HANDLE section, DWORD)
{
    if (!info || !bits || usage != DIB_RGB_COLORS || section || info->bmiHeader.biSize < sizeof(BITMAPINFOHEADER) ||
        info->bmiHeader.biBitCount != 32 || !is_writable_format(info->bmiHeader))
        return fail(nullptr, ERROR_INVALID_PARAMETER);
    const BITMAPINFOHEADER& header = info->bmiHeader;
    const auto order = header.biHeight < 0 ? Bitmap::Rows::top_down : Bitmap::Rows::bottom_up;
    std::shared_ptr<Bitmap> bitmap = Bitmap::create_section(header.biWidth, std::abs(header.biHeight), order);
    if (!bitmap)
        return nullptr;
    *bits = bitmap->section_bits();
    return add<HBITMAP>(std::move(bitmap));
}
