#include "platform/win32/screen/geometry.h"

namespace win32 {

const Monitor& monitor_of(const std::vector<Monitor>& monitors, const RECT& rect)
{
    const auto area_on = [&rect](const Monitor& monitor) {
        const RECT shared = intersection(monitor.bounds, rect);
        return is_empty(shared) ? 0 : std::int64_t{ width_of(shared) } * height_of(shared);
    };
    return *std::max_element(monitors.begin(), monitors.end(),
                             [&](const Monitor& a, const Monitor& b) { return area_on(a) < area_on(b); });
}

std::vector<RECT> without(const std::vector<RECT>& rectangles, const RECT& cutter)
{
    std::vector<RECT> left;
    const auto keep = [&left](const RECT& piece) {
        if (!is_empty(piece))
            left.push_back(piece);
    };
    for (const RECT& rect : rectangles) {
        const RECT hole = intersection(rect, cutter);
        if (is_empty(hole)) {
            left.push_back(rect);
            continue;
        }
        keep({ rect.left, rect.top, rect.right, hole.top });
        keep({ rect.left, hole.top, hole.left, hole.bottom });
        keep({ hole.right, hole.top, rect.right, hole.bottom });
        keep({ rect.left, hole.bottom, rect.right, rect.bottom });
    }
    return left;
}

} // namespace win32
