// Pixels as drawing sees them, and the operations between rows of them.
#pragma once

#include "windef.h"

#include <cstddef>
#include <cstdint>

namespace win32 {

// 0x00RRGGBB from 0x00BBGGRR and back.
constexpr std::uint32_t pixel_of(COLORREF colour)
{
    return ((colour & 0xFF) << 16) | (colour & 0xFF00) | ((colour >> 16) & 0xFF);
}
constexpr COLORREF colour_of(std::uint32_t pixel)
{
    return pixel_of(pixel);
}

inline constexpr std::uint32_t kWhite = 0xFFFFFF;
inline constexpr std::uint32_t kBlack = 0;

// `over` laid on `under` with a weight of `coverage` out of 255, each channel to the nearest; the top byte becomes 0.
// Red and blue are worked on together: a product and what rounding adds fit in their 16 bits.
constexpr std::uint32_t mix_pixels(std::uint32_t over, std::uint32_t under, std::uint32_t coverage)
{
    const auto divide = [](std::uint32_t sums) { // by 255, in both halves
        sums += 0x800080;
        return ((sums + ((sums >> 8) & 0xFF00FF)) >> 8) & 0xFF00FF;
    };
    const std::uint32_t rest = 255 - coverage;
    const std::uint32_t red_blue = divide((over & 0xFF00FF) * coverage + (under & 0xFF00FF) * rest);
    const std::uint32_t green = divide((over >> 8 & 0xFF) * coverage + (under >> 8 & 0xFF) * rest);
    return red_blue | green << 8;
}

// The same for `count` pixels that one colour is laid on, each with a weight of its own.
void mix_row(std::uint32_t over, std::uint32_t* under, const std::uint8_t* coverage, int count);

// A 1-bit picture shows a colour as white or black, whichever is nearer.
constexpr bool is_light(std::uint32_t pixel)
{
    const unsigned red = (pixel >> 16) & 0xFF;
    const unsigned green = (pixel >> 8) & 0xFF;
    const unsigned blue = pixel & 0xFF;
    return red * 299 + green * 587 + blue * 114 >= 127'500;
}

// Borrowed pixels: 32-bit ones in `colour`, or 1-bit ones in `mono`, one byte (0 or 1) each. The stride, in pixels,
// is negative where rows are kept bottom up.
struct Raster {
    std::uint32_t* colour = nullptr;
    std::uint8_t* mono = nullptr;
    int width = 0;
    int height = 0;
    std::ptrdiff_t stride = 0;

    bool is_mono() const { return mono != nullptr; }
    RECT bounds() const { return { 0, 0, width, height }; }
    std::uint32_t* colour_row(int y) const { return colour + y * stride; }
    std::uint8_t* mono_row(int y) const { return mono + y * stride; }

    // Any pixels as 32-bit ones, a 1-bit one as black or white.
    void read(int x, int y, int count, std::uint32_t* out) const;
    void write(int x, int y, int count, const std::uint32_t* pixels) const;
};

// One of the 256 bitwise operations between pattern, source and destination: bit (4p + 2s + d) of the code is the
// result for those three bits.
class RasterOp {
public:
    explicit constexpr RasterOp(DWORD operation) : code_(static_cast<std::uint8_t>(operation >> 16)) {}
    // From a mix mode, R2_BLACK to R2_WHITE, between pen (the pattern) and destination.
    static constexpr RasterOp from_mix(int mode)
    {
        const unsigned table = static_cast<unsigned>(mode - 1); // bit (2p + d)
        const unsigned low = table & 3;
        const unsigned high = table >> 2;
        return RasterOp(((low | low << 2 | high << 4 | high << 6) & 0xFF) << 16);
    }

    constexpr bool uses_pattern() const { return (code_ >> 4) != (code_ & 0xF); }
    constexpr bool uses_source() const { return ((code_ >> 2) & 0x33) != (code_ & 0x33); }
    constexpr bool uses_destination() const { return ((code_ >> 1) & 0x55) != (code_ & 0x55); }
    constexpr bool copies_source() const { return code_ == 0xCC; }
    constexpr bool copies_pattern() const { return code_ == 0xF0; }
    constexpr bool does_nothing() const { return code_ == 0xAA; }

    // Works on `count` pixels; operands that the operation does not use may be anything readable.
    void apply(std::uint32_t* destination, const std::uint32_t* source, const std::uint32_t* pattern, int count) const;

private:
    std::uint8_t code_;
};

// `rows` rows of `width` pixels of one colour.
void fill_pixels(std::uint32_t* first, std::ptrdiff_t stride, int width, int rows, std::uint32_t pixel);

// Pixels of three bytes (blue first) to 32-bit ones.
void widen_pixels(const std::byte* packed, int count, std::uint32_t* out);

// The width of the stack buffers that rows are worked on in.
inline constexpr int kChunk = 512;

} // namespace win32
