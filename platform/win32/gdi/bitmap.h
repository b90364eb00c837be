// Bitmaps: 32-bit or 1-bit pictures in memory.
#pragma once

#include "platform/win32/gdi/objects.h"
#include "platform/win32/gdi/raster.h"

#include <cstdlib>
#include <memory>
#include <vector>

namespace win32 {

inline constexpr std::int64_t kMaxPixels = std::int64_t{ 64 } << 20;

// True when a bitmap of that size can exist: 1 to kMaxPixels pixels.
constexpr bool is_bitmap_size(std::int64_t width, std::int64_t height)
{
    return width > 0 && height > 0 && width <= kMaxPixels && height <= kMaxPixels && width * height <= kMaxPixels;
}

// 24-bit rows that somebody else keeps for ever (the program's resources).
struct PackedRows {
    const std::byte* top = nullptr;
    std::ptrdiff_t stride = 0; // bytes, negative when the rows stand bottom up

    const std::byte* pixel(int x, int y) const { return top + y * stride + std::ptrdiff_t{ 3 } * x; }
};

class Bitmap : public GdiObject {
public:
    static constexpr DWORD kType = OBJ_BITMAP;

    // Black pixels, `depth` 1 or 32. Null: not a size of a bitmap, or no memory.
    static std::shared_ptr<Bitmap> create(int width, int height, int depth);
    // A 32-bit bitmap over `rows`, which must outlive it. They are not converted as a whole: a first page drawn at
    // start-up should cost the memory and time of that page only. Rows that are copied often are kept converted; once
    // drawn into, it is as any other.
    static std::shared_ptr<Bitmap> create_over(int width, int height, const PackedRows& rows);

    int width() const { return width_; }
    int height() const { return height_; }
    int depth() const { return mono_ ? 1 : 32; }
    void* section_bits() const { return is_section_ ? colour_.get() : nullptr; }

    // A 32-bit bitmap whose memory its owner may reach, in that order of rows.
    enum class Rows { top_down, bottom_up };
    static std::shared_ptr<Bitmap> create_section(int width, int height, Rows order);
    // A bitmap of its own with the same pixels. Null: no memory.
    std::shared_ptr<Bitmap> copy() const;

    // Whether all pixels are there in ordinary form, and those pixels.
    bool is_plain() const { return !packed_.top; }
    Raster plain_pixels() const
    {
        if (order_ == Rows::bottom_up)
            return { last_row(), nullptr, width_, height_, -std::ptrdiff_t{ width_ } };
        return { colour_.get(), mono_.get(), width_, height_, width_ };
    }
    // All pixels, to be read and written; makes them ordinary first.
    Raster raster()
    {
        if (!is_plain())
            unpack();
        return plain_pixels();
    }
    // The pixels of a row from x on, as Raster::read.
    void read(int x, int y, int count, std::uint32_t* out) const;
    // The pixels of a row if the bitmap has them in 32 bits; else null.
    const std::uint32_t* row(int y) const;
    // The same, of a bitmap over packed rows also; null for a 1-bit one.
    const std::uint32_t* kept_row(int y) const;

    int describe(std::span<std::byte> out) const override;

private:
    struct Free {
        void operator()(void* memory) const { std::free(memory); }
    };

    Bitmap(int width, int height) : GdiObject(kType), width_(width), height_(height) {}
    void keep_row(int y) const;
    void unpack();
    std::uint32_t* last_row() const { return colour_.get() + (height_ - 1) * std::ptrdiff_t{ width_ }; }

    const int width_;
    const int height_;
    // Zeroed memory that costs nothing until it is touched. For packed rows: filled as rows are kept.
    std::unique_ptr<std::uint32_t[], Free> colour_;
    std::unique_ptr<std::uint8_t[], Free> mono_;
    bool is_section_ = false;
    Rows order_ = Rows::top_down;
    mutable PackedRows packed_;               // no top: ordinary pixels
    mutable std::vector<std::uint8_t> reads_; // by row, how often a packed row was read
};

} // namespace win32
