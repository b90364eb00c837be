#include "platform/win32/gdi/icon.h"
#include "platform/win32/gdi/load_file.h"
#include "platform/win32/kernel/last_error.h"

#include <winbase.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace win32 {

bool has_any_alpha(const Bitmap& bitmap)
{
    std::vector<std::uint32_t> row(static_cast<std::size_t>(bitmap.width()));
    for (int y = 0; y < bitmap.height(); y++) {
        bitmap.read(0, y, bitmap.width(), row.data());
        if (std::any_of(row.begin(), row.end(), [](std::uint32_t pixel) { return pixel >> 24 != 0; }))
            return true;
    }
    return false;
}

namespace {

// Directories of icons know 256 pixels a side. A small file that claims much more must cost neither memory nor time.
constexpr int kLargestExtent = 1024;

// The mask of an icon image: rows of 1 bit, bottom row first, after the colours. Bits that are missing are clear.
void read_mask(Bytes bits, const Raster& out)
{
    const std::size_t stride = (static_cast<std::size_t>(out.width) + 31) / 32 * 4;
    for (int y = 0; y < out.height; y++) {
        const std::size_t start = static_cast<std::size_t>(out.height - 1 - y) * stride;
        for (int x = 0; x < out.width; x++) {
            const std::size_t at = start + static_cast<std::size_t>(x / 8);
            if (at < bits.size())
                out.mono_row(y)[x] = std::to_integer<unsigned>(bits[at]) >> (7 - x % 8) & 1;
        }
    }
}

} // namespace

std::shared_ptr<const Icon> icon_from_image(Bytes image)
{
    std::optional<DibFormat> format = read_dib_header(image);
    if (!format || format->height < 2 || format->is_top_down ||
        (format->compression != BI_RGB && format->compression != BI_BITFIELDS))
        return fail(nullptr, ERROR_INVALID_DATA);
    format->height /= 2;
    if (format->width > kLargestExtent || format->height > kLargestExtent)
        return fail(nullptr, ERROR_INVALID_DATA);

    const Bytes bits = image.subspan(format->bits_offset);
    const std::shared_ptr<Bitmap> colour = Bitmap::create(format->width, format->height, 32);
    const std::shared_ptr<Bitmap> mask = Bitmap::create(format->width, format->height, 1);
    if (!colour || !mask)
        return nullptr;
    decode_dib(*format, bits, colour->raster(), format->bits == 32 ? Alpha::keep : Alpha::drop);
    const std::size_t colour_bytes = format->stride() * static_cast<std::size_t>(format->height);
    read_mask(bits.subspan(std::min(colour_bytes, bits.size())), mask->raster());

    auto icon = std::make_shared<Icon>();
    icon->hot_spot = { format->width / 2, format->height / 2 };
    icon->has_alpha = format->bits == 32 && has_any_alpha(*colour);
    icon->colour = colour;
    icon->mask = mask;
    return icon;
}

namespace {

// One entry of an icon directory; in a file `place` is the offset of the image, in a group its resource number.
struct Entry {
    int width;
    int height;
    int bits;
    DWORD size;
    DWORD place;
};

enum class Directory { file, group };

std::vector<Entry> read_directory(Bytes data, Directory kind)
{
    constexpr std::size_t kHeader = 6;
    const std::size_t entry_size = kind == Directory::file ? 16 : 14;
    std::vector<Entry> entries;
    WORD header[3]; // 0, 1 (icons), count
    if (data.size() < kHeader)
        return entries;
    std::memcpy(header, data.data(), sizeof header);
    if (header[0] != 0 || header[1] != 1)
        return entries;
    const std::size_t count = std::min<std::size_t>(header[2], (data.size() - kHeader) / entry_size);
    for (std::size_t i = 0; i < count; i++) {
        const std::byte* at = data.data() + kHeader + i * entry_size;
        const auto extent = [](std::byte value) { return value == std::byte{ 0 } ? 256 : std::to_integer<int>(value); };
        Entry entry{ extent(at[0]), extent(at[1]), 0, 0, 0 };
        WORD bits;
        std::memcpy(&bits, at + 6, sizeof bits);
        std::memcpy(&entry.size, at + 8, sizeof entry.size);
        std::memcpy(&entry.place, at + 12, kind == Directory::file ? 4 : 2);
        entry.bits = bits;
        entries.push_back(entry);
    }
    return entries;
}

// Nearest in size first (of two as near the larger, which loses less), of equal sizes the one with most colours.
void rank(std::vector<Entry>& entries, int width, int height)
{
    if (width <= 0 || height <= 0)
        return;
    const auto distance = [=](const Entry& entry) {
        return std::abs(std::int64_t{ entry.width } - width) + std::abs(std::int64_t{ entry.height } - height);
    };
    std::stable_sort(entries.begin(), entries.end(), [&](const Entry& a, const Entry& b) {
        if (distance(a) != distance(b))
            return distance(a) < distance(b);
        return a.width != b.width ? a.width > b.width : a.bits > b.bits;
    });
}

} // namespace

std::shared_ptr<const Icon> icon_from_file(Bytes file, int width, int height)
{
    std::vector<Entry> entries = read_directory(file, Directory::file);
    rank(entries, width, height);
    constexpr std::size_t kMostTried = 64; // entries may all name the same large image
    for (std::size_t i = 0; i < std::min(entries.size(), kMostTried); i++) {
        const Entry& entry = entries[i];
        if (entry.place >= file.size())
            continue;
        const Bytes rest = file.subspan(entry.place);
        if (auto icon = icon_from_image(rest.first(std::min<std::size_t>(entry.size, rest.size()))))
            return icon;
    }
    return fail(nullptr, ERROR_INVALID_DATA);
}

std::shared_ptr<const Icon> icon_from_resources(HINSTANCE module, LPCSTR name, int width, int height)
{
    std::vector<Entry> entries = read_directory(find_resource(module, name, RT_GROUP_ICON), Directory::group);
    rank(entries, width, height);
    for (const Entry& entry : entries) {
        const Bytes image = find_resource(module, MAKEINTRESOURCEA(entry.place), RT_ICON);
        if (auto icon = image.empty() ? nullptr : icon_from_image(image))
            return icon;
    }
    return nullptr;
}

} // namespace win32
