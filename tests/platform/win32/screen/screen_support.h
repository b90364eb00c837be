// What the tests of both screens share.
#pragma once

#include "platform/win32/screen/geometry.h"
#include "platform/win32/screen/screen.h"

#include <algorithm>
#include <ostream>
#include <vector>

inline bool operator==(const RECT& a, const RECT& b)
{
    return win32::same(a, b);
}
inline std::ostream& operator<<(std::ostream& out, const RECT& r)
{
    return out << r.left << ',' << r.top << ' ' << r.right << ',' << r.bottom;
}

namespace test {

inline void fill(const win32::PixelView& view, std::uint32_t colour)
{
    for (int y = 0; y < view.height; y++)
        std::fill_n(view.pixels + static_cast<std::ptrdiff_t>(y) * view.stride, view.width, colour);
}

// Draws the surface in one colour and presents it.
inline void paint(win32::Screen& screen, win32::SurfaceId surface, std::uint32_t colour)
{
    const win32::PixelView view = screen.pixels(surface);
    fill(view, colour);
    screen.present(surface, { 0, 0, view.width, view.height });
    screen.flush();
}

inline win32::SurfaceTraits traits_of(win32::SurfaceKind kind, bool topmost = false)
{
    win32::SurfaceTraits traits;
    traits.kind = kind;
    traits.topmost = topmost;
    return traits;
}

// A shown surface of one colour.
inline win32::SurfaceId add_surface(win32::Screen& screen, const RECT& bounds, std::uint32_t colour,
                                    const win32::SurfaceTraits& traits = {})
{
    const win32::SurfaceId surface = screen.create(bounds, traits);
    screen.show(surface, true, true);
    paint(screen, surface, colour);
    return surface;
}

// All that wait now.
inline std::vector<win32::ScreenEvent> take_events(win32::Screen& screen)
{
    std::vector<win32::ScreenEvent> events;
    for (win32::ScreenEvent event; screen.next_event(event);)
        events.push_back(event);
    return events;
}

} // namespace test
