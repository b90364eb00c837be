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
struct AxisMap {
    Run to;
    Run from;

    // No filtering, no scaling, same direction.
    bool is_shift() const { return to.count == from.count && to.step == from.step; }
    std::int64_t shift() const { return from.low() - to.low(); }

    std::int64_t source_of(std::int64_t position) const
    {
        const std::int64_t i = (position - to.start) * to.step;
        const std::int64_t j = to.count == from.count ? i : (2 * i + 1) * from.count / (2 * to.count);
        return from.start + j * from.step;
    }
    // The positions within [low, high) that are of the run and whose source lies within [0, limit).
    std::pair<int, int> reachable(std::int64_t low, std::int64_t high, std::int64_t limit) const;
};

// What a copy reads: a bitmap over packed rows, or ordinary pixels.
struct CopySource {
    explicit CopySource(DeviceContext& context);
    explicit CopySource(const Bitmap& picture);

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

// From where to where, as callers write it: in logical coordinates of each side.
struct CopyPlace {
    int x;
    int y;
    int width;
    int height;
    int source_x;
    int source_y;
    int source_width;
    int source_height;
};

// Made where it stays, and passed by reference: copying rasters that were just written, wider than they were written,
// waits for all writes before them.
struct Copy {
    // From one context to another by the target's brush, or a picture as it is.
    Copy(DeviceContext& to, DeviceContext& from, const CopyPlace& place, RasterOp code);
    Copy(DeviceContext& to, const Bitmap& picture, const CopyPlace& place, RasterOp code, Blend how);

    CopyTarget target;
    CopySource source;
    AxisMap columns;
    AxisMap rows;
    Paint paint;
    RasterOp operation;
    Blend blend;
    bool same_pixels; // source and target are the same picture and may overlap
};

// What most copies are, done on a shorter way: 32-bit pixels as they are, to another place that does not overlap with
// the first, both contexts counting from the left. False: nothing was done.
bool copy_straight(DeviceContext& to, DeviceContext& from, const CopyPlace& place);

// Copies within the target's clip and reports the damage. Takes nothing from the heap, except where a copy within one
// picture is stretched or mirrored.
void copy_pixels(const Copy& copy);

} // namespace win32
