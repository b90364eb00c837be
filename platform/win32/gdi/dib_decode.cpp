#include "platform/win32/gdi/dib.h"

#include "wingdi.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace win32 {

namespace {

// The colours of indices; those that the palette does not hold are black.
using Colours = std::array<std::uint32_t, 256>;

Colours colours_of(const DibFormat& format)
{
    Colours colours{};
    const std::size_t count = std::min(format.palette.size() / format.palette_entry_size, colours.size());
    for (std::size_t i = 0; i < count; i++) {
        const std::byte* entry = format.palette.data() + i * format.palette_entry_size;
        colours[i] = std::to_integer<std::uint32_t>(entry[0]) | std::to_integer<std::uint32_t>(entry[1]) << 8 |
                     std::to_integer<std::uint32_t>(entry[2]) << 16;
    }
    return colours;
}

// One channel of a pixel, spread to 8 bits.
class Channel {
public:
    explicit Channel(DWORD mask) : mask_(mask), shift_(mask ? std::countr_zero(mask) : 0), largest_(mask >> shift_) {}
    std::uint32_t of(std::uint32_t pixel) const
    {
        const std::uint64_t value = (pixel & mask_) >> shift_;
        return largest_ ? static_cast<std::uint32_t>((value * 255 + largest_ / 2) / largest_) : 0;
    }

private:
    DWORD mask_;
    int shift_;
    std::uint64_t largest_;
};

// Where 32-bit pixels have red, green, blue and alpha here.
constexpr std::array<DWORD, 3> kPlainMasks = { 0xFF0000, 0x00FF00, 0x0000FF };
constexpr DWORD kPlainAlpha = 0xFF000000;

// Rows of pixels at known places.
class RowDecoder {
public:
    RowDecoder(const DibFormat& format, Alpha alpha)
        : format_(format), colours_(colours_of(format)), red_(format.masks[0]), green_(format.masks[1]),
          blue_(format.masks[2]), alpha_(alpha == Alpha::keep ? format.masks[3] : 0),
          is_plain_(std::equal(kPlainMasks.begin(), kPlainMasks.end(), format.masks.begin()) &&
                    (format.masks[3] == 0 || format.masks[3] == kPlainAlpha)),
          kept_(kWhite | (alpha == Alpha::keep ? format.masks[3] : 0))
    {}

    // As many whole pixels as `row` holds, at most a row's.
    void decode(Bytes row, std::uint32_t* out) const
    {
        const std::size_t held = row.size() * 8 / static_cast<std::size_t>(format_.bits);
        const int count = static_cast<int>(std::min(held, static_cast<std::size_t>(format_.width)));
        switch (format_.bits) {
        case 16:
            fields<std::uint16_t>(row, count, out);
            break;
        case 24:
            widen_pixels(row.data(), count, out);
            break;
        case 32:
            if (is_plain_)
                plain(row, count, out);
            else
                fields<std::uint32_t>(row, count, out);
            break;
        default:
            indices(row, count, out);
        }
    }

private:
    void indices(Bytes row, int count, std::uint32_t* out) const
    {
        const int in_a_byte = 8 / format_.bits;
        const unsigned mask = (1U << format_.bits) - 1;
        for (int x = 0; x < count; x++) {
            const auto byte = std::to_integer<unsigned>(row[static_cast<std::size_t>(x / in_a_byte)]);
            const int shift = (in_a_byte - 1 - x % in_a_byte) * format_.bits;
            out[x] = colours_[byte >> shift & mask];
        }
    }

    // Pixels as they are here, with the alpha that is kept.
    void plain(Bytes row, int count, std::uint32_t* out) const
    {
        std::memcpy(out, row.data(), static_cast<std::size_t>(count) * sizeof *out);
        for (int x = 0; kept_ != ~0U && x < count; x++)
            out[x] &= kept_;
    }

    template <class Pixel>
    void fields(Bytes row, int count, std::uint32_t* out) const
    {
        for (int x = 0; x < count; x++) {
            Pixel pixel;
            std::memcpy(&pixel, row.data() + static_cast<std::size_t>(x) * sizeof pixel, sizeof pixel);
            out[x] = alpha_.of(pixel) << 24 | red_.of(pixel) << 16 | green_.of(pixel) << 8 | blue_.of(pixel);
        }
    }

    const DibFormat& format_;
    Colours colours_;
    Channel red_;
    Channel green_;
    Channel blue_;
    Channel alpha_;
    bool is_plain_;
    std::uint32_t kept_;
};

// Run-lengths of 4 or 8 bits: pairs of a count and an index (or two), and after a count of 0 an escape.
class RunDecoder {
public:
    RunDecoder(const DibFormat& format, Bytes bits, const Raster& out)
        : colours_(colours_of(format)), bits_(bits), out_(out), nibbles_(format.compression == BI_RLE4)
    {}

    void decode()
    {
        while (y_ < out_.height && bits_.size() - at_ >= 2) {
            const unsigned count = next();
            const unsigned value = next();
            if (count > 0)
                run(count, value);
            else if (!escape(value))
                return;
        }
    }

private:
    unsigned next() { return std::to_integer<unsigned>(bits_[at_++]); }

    void put(unsigned index)
    {
        if (x_ < out_.width)
            out_.colour_row(out_.height - 1 - y_)[x_++] = colours_[index];
    }

    void run(unsigned count, unsigned value)
    {
        for (unsigned i = 0; i < count; i++)
            put(nibbles_ ? (i % 2 ? value & 0xF : value >> 4) : value);
    }

    // False: the picture ends here.
    bool escape(unsigned code)
    {
        constexpr unsigned kEndOfLine = 0;
        constexpr unsigned kEndOfBitmap = 1;
        constexpr unsigned kMove = 2;
        switch (code) {
        case kEndOfLine:
            x_ = 0;
            y_++;
            return true;
        case kEndOfBitmap:
            return false;
        case kMove:
            if (bits_.size() - at_ < 2)
                return false;
            x_ = std::min(out_.width, x_ + static_cast<int>(next()));
            y_ += static_cast<int>(next());
            return true;
        default:
            return literal(code);
        }
    }

    // `count` indices as they are, padded to two bytes.
    bool literal(unsigned count)
    {
        const std::size_t length = nibbles_ ? (count + 1) / 2 : count;
        const Bytes indices = bits_.subspan(at_, std::min(length, bits_.size() - at_));
        for (unsigned i = 0; i < count && i / (nibbles_ ? 2 : 1) < indices.size(); i++) {
            const auto byte = std::to_integer<unsigned>(indices[nibbles_ ? i / 2 : i]);
            put(nibbles_ ? (i % 2 ? byte & 0xF : byte >> 4) : byte);
        }
        const std::size_t padded = (length + 1) & ~std::size_t{ 1 };
        if (bits_.size() - at_ < padded)
            return false;
        at_ += padded;
        return true;
    }

    Colours colours_;
    Bytes bits_;
    const Raster& out_;
    bool nibbles_;
    std::size_t at_ = 0;
    int x_ = 0;
    int y_ = 0; // from the bottom
};

} // namespace

void decode_dib(const DibFormat& format, Bytes bits, const Raster& out, Alpha alpha)
{
    if (format.compression == BI_RLE4 || format.compression == BI_RLE8) {
        RunDecoder(format, bits, out).decode();
        return;
    }
    const RowDecoder decoder(format, alpha);
    const std::size_t stride = format.stride();
    for (int i = 0; i < format.height; i++) {
        const std::size_t start = static_cast<std::size_t>(i) * stride;
        if (start >= bits.size())
            return;
        const Bytes row = bits.subspan(start, std::min(stride, bits.size() - start));
        decoder.decode(row, out.colour_row(format.is_top_down ? i : format.height - 1 - i));
    }
}

} // namespace win32
