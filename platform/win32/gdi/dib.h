// Device-independent bitmaps as they stand in files, resources and programs' buffers: bytes to be distrusted.
#pragma once

#include "platform/win32/gdi/raster.h"

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>

namespace win32 {

class Bitmap;

using Bytes = std::span<const std::byte>;

// What a header says, checked: the numbers can be multiplied and the palette lies within its data.
struct DibFormat {
    int width = 0;  // positive
    int height = 0; // positive
    bool is_top_down = false;
    int bits = 0; // 1, 4, 8, 16, 24 or 32 a pixel
    DWORD compression = 0;
    std::array<DWORD, 4> masks{}; // red, green, blue, alpha of 16 and 32 bits
    Bytes palette;
    std::size_t palette_entry_size = 4;
    std::size_t bits_offset = 0; // where the pixels begin when they follow the palette at once

    std::size_t stride() const // bytes of a row, a multiple of 4
    {
        return (static_cast<std::size_t>(width) * static_cast<std::size_t>(bits) + 31) / 32 * 4;
    }
};

// Reads a header of any documented size with what follows it. Nothing: it is none, or the picture would be larger than
// a bitmap may be.
std::optional<DibFormat> read_dib_header(Bytes data);

// Converts to 32-bit pixels, which must be black before; those that the bits do not reach stay so. The top byte becomes
// the alpha of formats that have one if `with_alpha`, else 0.
enum class Alpha { drop, keep };
void decode_dib(const DibFormat& format, Bytes bits, const Raster& out, Alpha alpha);

// A 32-bit bitmap of a DIB whose pixels are `bits`. Null: too large for its data, or no memory. Bits that stay where
// they are for ever may be used in place.
enum class Lifetime { passing, permanent };
std::shared_ptr<Bitmap> bitmap_from_dib(const DibFormat& format, Bytes bits, Lifetime lifetime);

// The same from a whole bitmap file, or from a resource (a file without its first header).
std::shared_ptr<Bitmap> bitmap_from_file(Bytes file);
std::shared_ptr<Bitmap> bitmap_from_resource(Bytes resource, Lifetime lifetime);

// Whether data of that length may ask for so many bytes of picture: a small file must not claim the memory.
constexpr bool is_plausible(std::uint64_t picture_bytes, std::size_t data_bytes)
{
    constexpr std::uint64_t kLargestOfSmallFile = std::uint64_t{ 64 } << 20;
    return picture_bytes <= kLargestOfSmallFile || picture_bytes / 64 <= data_bytes;
}

} // namespace win32
