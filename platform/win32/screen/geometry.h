// Rectangle sums for surfaces. Coordinates that came in through `bounded` never overflow in them.
#pragma once

#include "platform/win32/screen/screen.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace win32 {

// What the X protocol can name: positions are 16 bits with a sign, and pictures no wider than a position reaches.
inline constexpr LONG kMaxExtent = 32767;

constexpr LONG width_of(const RECT& rect)
{
    return rect.right - rect.left;
}
constexpr LONG height_of(const RECT& rect)
{
    return rect.bottom - rect.top;
}
constexpr bool is_empty(const RECT& rect)
{
    return rect.right <= rect.left || rect.bottom <= rect.top;
}
constexpr bool contains(const RECT& rect, POINT point)
{
    return point.x >= rect.left && point.x < rect.right && point.y >= rect.top && point.y < rect.bottom;
}
constexpr bool same(const RECT& a, const RECT& b)
{
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}
constexpr RECT moved(const RECT& rect, LONG x, LONG y)
{
    return { rect.left + x, rect.top + y, rect.right + x, rect.bottom + y };
}
// Empty when they do not meet.
constexpr RECT intersection(const RECT& a, const RECT& b)
{
    return { std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
             std::min(a.bottom, b.bottom) };
}
// The smallest rectangle around both; an empty one counts for nothing.
constexpr RECT hull(const RECT& a, const RECT& b)
{
    if (is_empty(a))
        return b;
    if (is_empty(b))
        return a;
    return { std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
             std::max(a.bottom, b.bottom) };
}

// The rectangle with a position and extents that every screen can take: a wish beyond them is cut to the nearest that
// can be, a negative extent is 0.
constexpr RECT bounded(const RECT& rect)
{
    const auto extent = [](LONG from, LONG to) {
        return static_cast<LONG>(std::clamp<std::int64_t>(std::int64_t{ to } - from, 0, kMaxExtent));
    };
    const LONG left = std::clamp<LONG>(rect.left, -kMaxExtent, kMaxExtent);
    const LONG top = std::clamp<LONG>(rect.top, -kMaxExtent, kMaxExtent);
    return { left, top, left + extent(rect.left, rect.right), top + extent(rect.top, rect.bottom) };
}

// The monitor that holds most of the rectangle; the first one when none does.
const Monitor& monitor_of(const std::vector<Monitor>& monitors, const RECT& rect);

// What of `rectangles` lies outside `cutter`.
std::vector<RECT> without(const std::vector<RECT>& rectangles, const RECT& cutter);

} // namespace win32
