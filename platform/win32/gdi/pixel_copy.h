// Copying pixels from one place to another: straight, mirrored, stretched, between depths, by any raster operation.
#pragma once

#include "platform/win32/gdi/paint.h"

namespace win32 {

// Pixels along one axis: `count` of them from `start` on, each a `step` of 1 or -1 further.
struct Run {
    std::int64_t start = 0;
    int step = 1;
    std::int64_t count = 0;

    // From an extent as callers write it: a negative one runs backwards, its start included.
    static Run of(std::int64_t start, std::int64_t extent)
    {
        return extent < 0 ? Run{ start, -1, -extent } : Run{ start, 1, extent };
    }
    std::int64_t low() const { return step > 0 ? start : start - count + 1; }
    std::int64_t high() const { return low() + count; } // outside
    // As seen from the other edge of a picture that is `width` wide.
    Run mirrored(std::int64_t width) const { return { width - 1 - start, -step, count }; }
    // The same pixels from the other end on.
    Run reversed() const { return { start + step * (count - 1), -step, count }; }
    Run moved(std::int64_t by) const { return { start + by, step, count }; }
};

// Which source pixel each destination pixel of an axis shows: the i-th of n the ((2i+1)*m/(2n))-th of m.
class AxisMap {
public:
    AxisMap(const Run& to, const Run& from) : to_(to), from_(from) {}

    // No filtering, no scaling, same direction.
    bool is_shift() const { return to_.count == from_.count && to_.step == from_.step; }
    std::int64_t shift() const { return from_.low() - to_.low(); }

    std::int64_t source_of(std::int64_t position) const
    {
        const std::int64_t i = (position - to_.start) * to_.step;
        const std::int64_t j = to_.count == from_.count ? i : (2 * i + 1) * from_.count / (2 * to_.count);
        return from_.start + j * from_.step;
    }
    // The positions within [low, high) that are of the run and whose source lies within [0, limit).
    std::pair<int, int> reachable(std::int64_t low, std::int64_t high, std::int64_t limit) const;

private:
    Run to_;
    Run from_;
};

// Where the extents of a copy lie, per axis: logical coordinates to begin with, target ones once mapped.
struct Placement {
    Run to_x;
    Run to_y;
    Run from_x;
    Run from_y;

    // Between two contexts, or from a picture of its own into one. One mirrored context flips what is copied, unless
    // one of the two wants pictures to keep their orientation.
    void map(const DeviceContext& target, const DeviceContext& source);
    void map(const DeviceContext& target);
};

// What a copy reads: a bitmap over packed rows, or ordinary pixels.
struct CopySource {
    const Bitmap* bitmap = nullptr;
    Raster raster;  // without a bitmap
    POINT corner{}; // where the raster's first pixel stands
    bool is_mono = false;
    std::uint32_t background = kWhite; // a 1-bit destination shows this colour as white

    int width() const { return bitmap ? bitmap->width() : raster.width; }
    int height() const { return bitmap ? bitmap->height() : raster.height; }
    void read(int x, int y, int count, std::uint32_t* out) const;
    // A row of 32-bit pixels by its column 0. A packed row is kept converted from then on.
    const std::uint32_t* row(int y) const;
};

struct CopyTarget {
    Canvas canvas;
    std::uint32_t clear = kBlack; // what clear and set bits of a 1-bit source show as
    std::uint32_t set = kWhite;
};

// Whether a source is laid over by its alpha, whatever the operation.
enum class Blend { none, by_alpha };

struct Copy {
    CopyTarget target;
    CopySource source;
    AxisMap columns;
    AxisMap rows;
    Paint paint;
    RasterOp operation;
    Blend blend = Blend::none;
    bool same_pixels = false; // source and target are the same picture and may overlap
};

// Copies within the target's clip and reports the damage. Takes nothing from the heap, except where a copy within one
// picture is stretched or mirrored.
void copy_pixels(const Copy& copy);

} // namespace win32
