// Monitors. A monitor's handle carries its place in the screen's list, the primary one first.
#include "platform/win32/kernel/last_error.h"
#include "platform/win32/user/input.h"
#include "winbase.h"
#include "winuser.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>

namespace {

using namespace win32;

constexpr std::uintptr_t kMonitorTag = std::uintptr_t{ 0x52 } << 47;

HMONITOR handle_of(std::size_t place)
{
    return reinterpret_cast<HMONITOR>(kMonitorTag | (place << 2));
}

std::int64_t shared_area(const RECT& first, const RECT& second)
{
    RECT shared;
    if (!IntersectRect(&shared, &first, &second))
        return 0;
    return (std::int64_t{ shared.right } - shared.left) * (std::int64_t{ shared.bottom } - shared.top);
}

// How far the rectangles lie apart, squared; 0 when they touch or overlap.
double distance(const RECT& first, const RECT& second)
{
    const double x =
        std::max({ 0.0, double{ 1.0 } * second.left - first.right, double{ 1.0 } * first.left - second.right });
    const double y =
        std::max({ 0.0, double{ 1.0 } * second.top - first.bottom, double{ 1.0 } * first.top - second.bottom });
    return x * x + y * y;
}

std::size_t nearest(const std::vector<Monitor>& monitors, const RECT& rect)
{
    const auto found = std::min_element(monitors.begin(), monitors.end(), [&](const Monitor& a, const Monitor& b) {
        return distance(a.bounds, rect) < distance(b.bounds, rect);
    });
    return static_cast<std::size_t>(found - monitors.begin());
}

// The monitor that shows most of the rectangle, else as `otherwise` says.
HMONITOR monitor_of(const RECT& rect, DWORD otherwise)
{
    const std::vector<Monitor> monitors = ask_monitors();
    const auto most = std::max_element(monitors.begin(), monitors.end(), [&](const Monitor& a, const Monitor& b) {
        return shared_area(a.bounds, rect) < shared_area(b.bounds, rect);
    });
    if (shared_area(most->bounds, rect) > 0)
        return handle_of(static_cast<std::size_t>(most - monitors.begin()));
    switch (otherwise) {
    case MONITOR_DEFAULTTOPRIMARY:
        return handle_of(0);
    case MONITOR_DEFAULTTONEAREST:
        return handle_of(nearest(monitors, rect));
    default:
        return nullptr;
    }
}

} // namespace

HMONITOR MonitorFromRect(LPCRECT rect, DWORD otherwise)
{
    return rect ? monitor_of(*rect, otherwise) : nullptr;
}

HMONITOR MonitorFromPoint(POINT point, DWORD otherwise)
{
    constexpr LONG kLast = std::numeric_limits<LONG>::max() - 1;
    const POINT corner{ std::min(point.x, kLast), std::min(point.y, kLast) };
    return monitor_of({ corner.x, corner.y, corner.x + 1, corner.y + 1 }, otherwise);
}

HMONITOR MonitorFromWindow(HWND window, DWORD otherwise)
{
    RECT rect{};
    if (window && GetWindowRect(window, &rect))
        return monitor_of(rect, otherwise);
    return otherwise == MONITOR_DEFAULTTONULL ? nullptr : handle_of(0);
}

BOOL GetMonitorInfoA(HMONITOR monitor, LPMONITORINFO info)
{
    if (!info || info->cbSize < sizeof(MONITORINFO))
        return fail(FALSE, ERROR_INVALID_PARAMETER);
    const std::vector<Monitor> monitors = ask_monitors();
    for (std::size_t i = 0; i < monitors.size(); i++) {
        if (handle_of(i) != monitor)
            continue;
        info->rcMonitor = monitors[i].bounds;
        info->rcWork = monitors[i].work_area;
        info->dwFlags = monitors[i].primary ? MONITORINFOF_PRIMARY : 0;
        return TRUE;
    }
    return fail(FALSE, ERROR_INVALID_HANDLE);
}

BOOL EnumDisplayMonitors(HDC dc, LPCRECT clip, MONITORENUMPROC procedure, LPARAM parameter)
{
    if (dc || !procedure)
        return fail(FALSE, ERROR_INVALID_PARAMETER);
    const std::vector<Monitor> monitors = ask_monitors();
    for (std::size_t i = 0; i < monitors.size(); i++) {
        RECT shown = monitors[i].bounds;
        if (clip && !IntersectRect(&shown, clip, &monitors[i].bounds))
            continue;
        if (!procedure(handle_of(i), nullptr, &shown, parameter))
            return FALSE;
    }
    return TRUE;
}
