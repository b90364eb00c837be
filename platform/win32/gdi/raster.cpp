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

namespace {

// Four pixels at once: their channels as bytes, or half of them as numbers of 16 bits.
using Channels = std::uint8_t __attribute__((vector_size(16)));
using Wide = std::uint16_t __attribute__((vector_size(16)));
using Four = std::uint32_t __attribute__((vector_size(16)));
constexpr int kLanes = 4;

Wide lower(Channels c)
{
    return reinterpret_cast<Wide>(
        __builtin_shufflevector(c, Channels{}, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23));
}

Wide upper(Channels c)
{
    return reinterpret_cast<Wide>(
        __builtin_shufflevector(c, Channels{}, 8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29, 14, 30, 15, 31));
}

// As mix_pixels has it; no sum of it exceeds 16 bits.
Wide mix(Wide over, Wide under, Wide coverage)
{
    const Wide sums = over * coverage + under * (255 - coverage) + 128;
    return (sums + (sums >> 8)) >> 8;
}

void mix_four(Channels over, std::uint32_t* pixels, std::uint32_t four_weights)
{
    // Each weight four times, by doubling twice.
    auto weights = reinterpret_cast<Channels>(Four{ four_weights });
    weights = __builtin_shufflevector(weights, weights, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23);
    const auto pairs = reinterpret_cast<Wide>(weights);
    weights = reinterpret_cast<Channels>(__builtin_shufflevector(pairs, pairs, 0, 8, 1, 9, 2, 10, 3, 11));
    Channels under;
    std::memcpy(&under, pixels, sizeof under);
    const auto low = reinterpret_cast<Channels>(mix(lower(over), lower(under), lower(weights)));
    const auto high = reinterpret_cast<Channels>(mix(upper(over), upper(under), upper(weights)));
    constexpr std::uint8_t kAll = 0xFF;
    const Channels colours = { kAll, kAll, kAll, 0, kAll, kAll, kAll, 0, kAll, kAll, kAll, 0, kAll, kAll, kAll, 0 };
    const Channels mixed =
        colours & __builtin_shufflevector(low, high, 0, 2, 4, 6, 8, 10, 12, 14, 16, 18, 20, 22, 24, 26, 28, 30);
    std::memcpy(pixels, &mixed, sizeof mixed);
}

} // namespace

void mix_row(std::uint32_t over, std::uint32_t* under, const std::uint8_t* coverage, int count)
{
    const auto channels = reinterpret_cast<Channels>(Four{ over, over, over, over });
    int i = 0;
    for (; i + kLanes <= count; i += kLanes) {
        std::uint32_t weights;
        std::memcpy(&weights, coverage + i, sizeof weights);
        if (weights != 0) // most of a line of text is empty
            mix_four(channels, under + i, weights);
    }
    for (; i < count; i++)
        under[i] = mix_pixels(over, under[i], coverage[i]);
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
