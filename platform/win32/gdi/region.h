// A set of pixels as a list of rectangles, ordered by rows. Used for regions that programs hold and for clipping.
#pragma once

#include "platform/win32/screen/geometry.h"
#include "windef.h"

#include <cstdint>
#include <span>

#include <pixman.h>

namespace win32 {

// Device coordinates are kept this small, so that sums of a few of them cannot overflow.
inline constexpr int kCoordinateLimit = 1 << 27;

constexpr int clamp_coordinate(std::int64_t value)
{
    return static_cast<int>(value < -kCoordinateLimit  ? -kCoordinateLimit
                            : value > kCoordinateLimit ? kCoordinateLimit
                                                       : value);
}

// A rectangle from any two opposite corners, its coordinates clamped.
constexpr RECT normal_rect(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2)
{
    return { clamp_coordinate(x1 < x2 ? x1 : x2), clamp_coordinate(y1 < y2 ? y1 : y2),
             clamp_coordinate(x1 < x2 ? x2 : x1), clamp_coordinate(y1 < y2 ? y2 : y1) };
}

class Region {
public:
    Region() { pixman_region32_init(&region_); }
    explicit Region(const RECT& rect); // empty unless left < right and top < bottom
    explicit Region(std::span<const RECT> rects);
    Region(const Region& other);
    Region(Region&& other) noexcept;
    Region& operator=(const Region& other);
    Region& operator=(Region&& other) noexcept;
    ~Region()
    {
        if (has_list())
            keep_list();
    }

    // The ellipse within `rect`: the pixels whose centre lies in it.
    static Region ellipse(const RECT& rect);
    // `rect` with corners cut to quarters of an ellipse of that width and height.
    static Region round_rectangle(const RECT& rect, int width, int height);

    // False: no memory; the region is then empty.
    bool unite(const Region& other) { return set_union(*this, other); }
    bool intersect(const Region& other) { return set_intersection(*this, other); }
    bool subtract(const Region& other) { return set_difference(*this, other); }
    bool exclusive(const Region& other);
    // Becomes what two regions, of which it may be one, make together.
    bool set_union(const Region& a, const Region& b);
    bool set_intersection(const Region& a, const Region& b);
    bool set_difference(const Region& a, const Region& b);
    // False, and unchanged: it would leave the coordinate range.
    bool offset(int x, int y);
    // Mirrors the x axis of a picture that is `width` wide.
    void mirror(int width);

    bool empty() const { return !pixman_region32_not_empty(&mutable_region()); }
    RECT bounds() const;
    std::span<const RECT> rectangles() const;
    bool contains(int x, int y) const;
    bool touches(const RECT& rect) const;
    bool operator==(const Region& other) const;
    int kind() const; // NULLREGION, SIMPLEREGION, COMPLEXREGION

private:
    // A single rectangle needs none.
    bool has_list() const { return region_.data && region_.data->size > 0; }
    void keep_list(); // for another region; this one is no more
    template <class Operation>
    bool become(Operation operation, const Region& a, const Region& b, bool wants_list);

    // pixman asks for a changeable region even where it only reads.
    pixman_region32_t& mutable_region() const { return const_cast<pixman_region32_t&>(region_); }

    pixman_region32_t region_;
};

} // namespace win32
