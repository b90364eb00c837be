#include "platform/win32/gdi/dib.h"

#include "platform/win32/gdi/bitmap.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace win32 {

namespace {

constexpr DWORD kCoreSize = 12;
constexpr DWORD kInfoSize = 40;
constexpr DWORD kRgbMasksSize = 52;  // with three masks
constexpr DWORD kRgbaMasksSize = 56; // with four
constexpr DWORD kPresentationSize = 64;
constexpr DWORD kV4Size = 108;
constexpr DWORD kV5Size = 124;
constexpr DWORD kHeaderSizes[] = { kInfoSize, kRgbMasksSize, kRgbaMasksSize, kPresentationSize, kV4Size, kV5Size };

template <class Value>
bool read_at(Bytes data, std::size_t offset, Value& value)
{
    if (offset > data.size() || data.size() - offset < sizeof value)
        return false;
    std::memcpy(&value, data.data() + offset, sizeof value);
    return true;
}

// The masks that BI_RGB means.
std::array<DWORD, 4> default_masks(int bits)
{
    if (bits == 16)
        return { 0x7C00, 0x03E0, 0x001F, 0 };
    return { 0xFF0000, 0x00FF00, 0x0000FF, 0xFF000000 };
}

bool is_contiguous(DWORD mask)
{
    const DWORD shifted = mask ? mask >> std::countr_zero(mask) : 0;
    return (shifted & (shifted + 1)) == 0;
}

// A depth and a compression that go together.
bool is_known(int bits, DWORD compression, bool is_top_down)
{
    switch (compression) {
    case BI_RGB:
        return bits == 1 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
    case BI_RLE8:
        return bits == 8 && !is_top_down;
    case BI_RLE4:
        return bits == 4 && !is_top_down;
    case BI_BITFIELDS:
        return bits == 16 || bits == 32;
    default:
        return false;
    }
}

std::optional<DibFormat> read_core_header(Bytes data)
{
    BITMAPCOREHEADER header;
    if (!read_at(data, 0, header) || header.bcPlanes != 1)
        return std::nullopt;
    DibFormat format;
    format.width = header.bcWidth;
    format.height = header.bcHeight;
    format.bits = header.bcBitCount;
    format.palette_entry_size = 3;
    if (!is_known(format.bits, BI_RGB, false) || !is_bitmap_size(format.width, format.height))
        return std::nullopt;
    format.masks = default_masks(format.bits);
    const std::size_t colours = format.bits <= 8 ? std::size_t{ 1 } << format.bits : 0;
    const std::size_t palette_size = std::min(colours * 3, data.size() - kCoreSize);
    format.palette = data.subspan(kCoreSize, palette_size);
    format.bits_offset = kCoreSize + palette_size;
    return format;
}

// Takes the masks of a BI_BITFIELDS header, which stand in it or follow it; `end` moves behind them.
bool read_masks(Bytes data, DWORD header_size, DibFormat& format, std::size_t& end)
{
    for (std::size_t i = 0; i < 3; i++) {
        if (!read_at(data, kInfoSize + 4 * i, format.masks[i]) || !is_contiguous(format.masks[i]))
            return false;
    }
    format.masks[3] = 0;
    if (header_size >= kRgbaMasksSize && header_size != kPresentationSize &&
        (!read_at(data, kRgbMasksSize, format.masks[3]) || !is_contiguous(format.masks[3])))
        return false;
    if (header_size == kInfoSize)
        end += 3 * sizeof(DWORD);
    return true;
}

} // namespace

std::optional<DibFormat> read_dib_header(Bytes data)
{
    BITMAPINFOHEADER header;
    DWORD header_size = 0;
    if (!read_at(data, 0, header_size))
        return std::nullopt;
    if (header_size == kCoreSize)
        return read_core_header(data);
    if (std::find(std::begin(kHeaderSizes), std::end(kHeaderSizes), header_size) == std::end(kHeaderSizes) ||
        data.size() < header_size || !read_at(data, 0, header) || header.biPlanes != 1)
        return std::nullopt;

    DibFormat format;
    format.is_top_down = header.biHeight < 0;
    const std::int64_t height = std::int64_t{ header.biHeight } * (format.is_top_down ? -1 : 1);
    if (!is_bitmap_size(header.biWidth, height) ||
        !is_known(header.biBitCount, header.biCompression, format.is_top_down))
        return std::nullopt;
    format.width = header.biWidth;
    format.height = static_cast<int>(height);
    format.bits = header.biBitCount;
    format.compression = header.biCompression;
    format.masks = default_masks(format.bits);

    std::size_t end = header_size;
    if (format.compression == BI_BITFIELDS && !read_masks(data, header_size, format, end))
        return std::nullopt;
    const std::size_t most = format.bits <= 8 ? std::size_t{ 1 } << format.bits : 256;
    std::size_t colours = header.biClrUsed;
    if (colours == 0 && format.bits <= 8)
        colours = most;
    if (colours > most || end > data.size())
        return std::nullopt;
    const std::size_t palette_size = std::min(colours * 4, data.size() - end);
    format.palette = data.subspan(end, palette_size);
    format.bits_offset = end + palette_size;
    return format;
}

} // namespace win32
