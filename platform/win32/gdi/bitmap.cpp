#include "platform/win32/gdi/bitmap.h"

#include "platform/win32/kernel/last_error.h"

#include <winbase.h>

#include <cstring>

namespace win32 {

namespace {

// A packed row is converted anew for each copy until it was copied this often; then it is worth its memory.
constexpr std::uint8_t kReadsBeforeKept = 16;

template <class Pixel, class Owner>
bool allocate(Owner& owner, int width, int height)
{
    owner.reset(static_cast<Pixel*>(std::calloc(static_cast<std::size_t>(width) * static_cast<std::size_t>(height),
                                                sizeof(Pixel)))); // NOLINT(bugprone-*): the owner frees it
    return owner != nullptr;
}

} // namespace

std::shared_ptr<Bitmap> Bitmap::create(int width, int height, int depth)
{
    if (!is_bitmap_size(width, height))
        return fail(nullptr, ERROR_INVALID_PARAMETER);
    std::shared_ptr<Bitmap> bitmap(new Bitmap(width, height));
    const bool allocated = depth == 1 ? allocate<std::uint8_t>(bitmap->mono_, width, height)
                                      : allocate<std::uint32_t>(bitmap->colour_, width, height);
    if (!allocated)
        return fail(nullptr, ERROR_NOT_ENOUGH_MEMORY);
    return bitmap;
}

std::shared_ptr<Bitmap> Bitmap::create_over(int width, int height, const PackedRows& rows)
{
    std::shared_ptr<Bitmap> bitmap = create(width, height, 32);
    if (!bitmap)
        return nullptr;
    bitmap->packed_ = rows;
    bitmap->reads_.resize(static_cast<std::size_t>(height));
    return bitmap;
}

std::shared_ptr<Bitmap> Bitmap::create_section(int width, int height, Rows order)
{
    std::shared_ptr<Bitmap> bitmap = create(width, height, 32);
    if (!bitmap)
        return nullptr;
    bitmap->is_section_ = true;
    bitmap->order_ = order;
    return bitmap;
}

std::shared_ptr<Bitmap> Bitmap::copy() const
{
    std::shared_ptr<Bitmap> bitmap = create(width_, height_, depth());
    if (!bitmap)
        return nullptr;
    const std::size_t count = static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_);
    if (mono_) {
        std::memcpy(bitmap->mono_.get(), mono_.get(), count);
        return bitmap;
    }
    for (int y = 0; y < height_; y++)
        read(0, y, width_, bitmap->raster().colour_row(y));
    return bitmap;
}

void Bitmap::unpack()
{
    for (int y = 0; y < height_; y++)
        keep_row(y);
    packed_ = {};
    reads_ = {};
}

void Bitmap::keep_row(int y) const
{
    std::uint8_t& reads = reads_[static_cast<std::size_t>(y)];
    if (reads < kReadsBeforeKept)
        widen_pixels(packed_.pixel(0, y), width_, plain_pixels().colour_row(y));
    reads = kReadsBeforeKept;
}

const std::uint32_t* Bitmap::row(int y) const
{
    if (mono_ || (packed_.top && reads_[static_cast<std::size_t>(y)] < kReadsBeforeKept))
        return nullptr;
    return plain_pixels().colour_row(y);
}

const std::uint32_t* Bitmap::kept_row(int y) const
{
    if (packed_.top)
        keep_row(y);
    return row(y);
}

void Bitmap::read(int x, int y, int count, std::uint32_t* out) const
{
    if (mono_) {
        plain_pixels().read(x, y, count, out);
        return;
    }
    if (const std::uint32_t* kept = row(y)) {
        std::memcpy(out, kept + x, static_cast<std::size_t>(count) * sizeof *out);
        return;
    }
    widen_pixels(packed_.pixel(x, y), count, out);
    std::uint8_t& reads = reads_[static_cast<std::size_t>(y)];
    if (reads + 1 == kReadsBeforeKept)
        keep_row(y);
    else
        reads++;
}

int Bitmap::describe(std::span<std::byte> out) const
{
    DIBSECTION description{};
    BITMAP& bitmap = description.dsBm;
    bitmap.bmWidth = width_;
    bitmap.bmHeight = height_;
    bitmap.bmWidthBytes = mono_ ? (width_ + 15) / 16 * 2 : width_ * 4;
    bitmap.bmPlanes = 1;
    bitmap.bmBitsPixel = static_cast<WORD>(depth());
    bitmap.bmBits = section_bits();
    if (!is_section_ || (out.data() && out.size() < sizeof description))
        return copy_description(out, std::as_bytes(std::span(&bitmap, 1)));
    description.dsBmih.biSize = sizeof(BITMAPINFOHEADER);
    description.dsBmih.biWidth = width_;
    description.dsBmih.biHeight = order_ == Rows::top_down ? -height_ : height_;
    description.dsBmih.biPlanes = 1;
    description.dsBmih.biBitCount = 32;
    return copy_description(out, std::as_bytes(std::span(&description, 1)));
}

} // namespace win32
