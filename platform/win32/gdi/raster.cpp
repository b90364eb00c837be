#include "platform/win32/gdi/raster.h"

#include <cstring>
#include <cwchar>

namespace win32 {

void Raster::read(int x, int y, int count, std::uint32_t* out) const
{
    if (!is_mono()) {
        std::memcpy(out, colour_row(y) + x, static_cast<std::size_t>(count) * sizeof *out);
        return;
    }
    const std::uint8_t* bits = mono_row(y) + x;
    for (int i = 0; i < count; i++)
        out[i] = bits[i] ? kWhite : kBlack;
}

void Raster::write(int x, int y, int count, const std::uint32_t* pixels) const
{
    if (!is_mono()) {
        std::memcpy(colour_row(y) + x, pixels, static_cast<std::size_t>(count) * sizeof *pixels);
        return;
    }
    std::uint8_t* bits = mono_row(y) + x;
    for (int i = 0; i < count; i++)
        bits[i] = is_light(pixels[i]);
}

void RasterOp::apply(std::uint32_t* destination, const std::uint32_t* source, const std::uint32_t* pattern,
                     int count) const
{
    std::uint32_t results[8]; // the operation's truth table, each result spread over a pixel
    for (unsigned i = 0; i < 8; i++)
        results[i] = (code_ >> i) & 1 ? kWhite : 0;
    const auto choose = [](std::uint32_t if_clear, std::uint32_t if_set, std::uint32_t bits) {
        return if_clear ^ ((if_clear ^ if_set) & bits);
    };
    for (int i = 0; i < count; i++) {
        const std::uint32_t d = destination[i];
        const std::uint32_t s = source[i];
        const std::uint32_t without = choose(choose(results[0], results[1], d), choose(results[2], results[3], d), s);
        const std::uint32_t with = choose(choose(results[4], results[5], d), choose(results[6], results[7], d), s);
        destination[i] = choose(without, with, pattern[i]);
    }
}

void fill_pixels(std::uint32_t* first, std::ptrdiff_t stride, int width, int rows, std::uint32_t pixel)
{
    // The C library's fill uses the widest stores that the processor has.
    static_assert(sizeof(wchar_t) == sizeof(std::uint32_t));
    const auto fill = [pixel](std::uint32_t* pixels, std::size_t count) {
        std::wmemset(reinterpret_cast<wchar_t*>(pixels), static_cast<wchar_t>(pixel), count);
    };
    if (stride == width) {
        fill(first, static_cast<std::size_t>(width) * static_cast<std::size_t>(rows));
        return;
    }
    for (int y = 0; y < rows; y++)
        fill(first + y * stride, static_cast<std::size_t>(width));
}

void widen_pixels(const std::byte* packed, int count, std::uint32_t* out)
{
    int i = 0;
    for (; i + 1 < count; i++) { // four bytes a read; the last pixel has only three
        std::uint32_t four;
        std::memcpy(&four, packed + std::ptrdiff_t{ 3 } * i, sizeof four);
        out[i] = four & kWhite;
    }
    if (i < count) {
        const std::byte* last = packed + std::ptrdiff_t{ 3 } * i;
        out[i] = std::to_integer<std::uint32_t>(last[0]) | std::to_integer<std::uint32_t>(last[1]) << 8 |
                 std::to_integer<std::uint32_t>(last[2]) << 16;
    }
}

} // namespace win32
