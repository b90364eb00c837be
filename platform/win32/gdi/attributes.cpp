// The attributes of a device context: colours, modes, origins, layout.
#include "platform/win32/gdi/device_context.h"
#include "platform/win32/kernel/last_error.h"

#include <winbase.h>

#include <utility>

using namespace win32;

namespace {

// Puts `value` into an attribute and gives back the one before; `failure` without a context.
template <class Value>
Value exchange_attribute(HDC dc, Value DrawState::*attribute, Value value, Value failure)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    return context ? std::exchange(context->state.*attribute, value) : failure;
}

template <class Value>
Value attribute_of(HDC dc, Value DrawState::*attribute, Value failure)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    return context ? context->state.*attribute : failure;
}

BOOL read_point(HDC dc, POINT DrawState::*attribute, LPPOINT out)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    if (!context || !out)
        return FALSE;
    *out = context->state.*attribute;
    return TRUE;
}

BOOL exchange_point(HDC dc, POINT DrawState::*attribute, POINT value, LPPOINT previous)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    if (!context)
        return FALSE;
    const POINT before = std::exchange(context->state.*attribute, value);
    if (previous)
        *previous = before;
    return TRUE;
}

} // namespace

int SetBkMode(HDC dc, int mode)
{
    if (mode != TRANSPARENT && mode != OPAQUE)
        return fail(0, ERROR_INVALID_PARAMETER);
    return exchange_attribute(dc, &DrawState::background_mode, mode, 0);
}

int GetBkMode(HDC dc)
{
    return attribute_of(dc, &DrawState::background_mode, 0);
}

int SetROP2(HDC dc, int mode)
{
    if (mode < R2_BLACK || mode > R2_WHITE)
        return fail(0, ERROR_INVALID_PARAMETER);
    return exchange_attribute(dc, &DrawState::mix_mode, mode, 0);
}

int GetROP2(HDC dc)
{
    return attribute_of(dc, &DrawState::mix_mode, 0);
}

COLORREF SetTextColor(HDC dc, COLORREF colour)
{
    return exchange_attribute(dc, &DrawState::text_colour, colour & 0xFFFFFF, CLR_INVALID);
}

COLORREF GetTextColor(HDC dc)
{
    return attribute_of(dc, &DrawState::text_colour, CLR_INVALID);
}

COLORREF SetBkColor(HDC dc, COLORREF colour)
{
    return exchange_attribute(dc, &DrawState::background, colour & 0xFFFFFF, CLR_INVALID);
}

COLORREF GetBkColor(HDC dc)
{
    return attribute_of(dc, &DrawState::background, CLR_INVALID);
}

int SetStretchBltMode(HDC dc, int mode)
{
    if (mode != BLACKONWHITE && mode != COLORONCOLOR)
        return fail(0, ERROR_INVALID_PARAMETER);
    return exchange_attribute(dc, &DrawState::stretch_mode, mode, 0);
}

int GetStretchBltMode(HDC dc)
{
    return attribute_of(dc, &DrawState::stretch_mode, 0);
}

UINT SetTextAlign(HDC dc, UINT align)
{
    constexpr UINT kAll = TA_UPDATECP | TA_CENTER | TA_BASELINE | TA_RTLREADING;
    if (align & ~kAll)
        return fail(UINT{ GDI_ERROR }, ERROR_INVALID_PARAMETER);
    return exchange_attribute(dc, &DrawState::text_align, align, UINT{ GDI_ERROR });
}

UINT GetTextAlign(HDC dc)
{
    return attribute_of(dc, &DrawState::text_align, UINT{ GDI_ERROR });
}

DWORD SetLayout(HDC dc, DWORD layout)
{
    if (layout & ~(LAYOUT_RTL | LAYOUT_BITMAPORIENTATIONPRESERVED))
        return fail(GDI_ERROR, ERROR_INVALID_PARAMETER);
    return exchange_attribute(dc, &DrawState::layout, layout, GDI_ERROR);
}

DWORD GetLayout(HDC dc)
{
    return attribute_of(dc, &DrawState::layout, GDI_ERROR);
}

BOOL SetWindowOrgEx(HDC dc, int x, int y, LPPOINT previous)
{
    return exchange_point(dc, &DrawState::window_origin, { x, y }, previous);
}

BOOL GetWindowOrgEx(HDC dc, LPPOINT origin)
{
    return read_point(dc, &DrawState::window_origin, origin);
}

BOOL SetViewportOrgEx(HDC dc, int x, int y, LPPOINT previous)
{
    return exchange_point(dc, &DrawState::viewport_origin, { x, y }, previous);
}

BOOL GetViewportOrgEx(HDC dc, LPPOINT origin)
{
    return read_point(dc, &DrawState::viewport_origin, origin);
}

BOOL OffsetViewportOrgEx(HDC dc, int x, int y, LPPOINT previous)
{
    POINT origin;
    if (!GetViewportOrgEx(dc, &origin))
        return FALSE;
    return SetViewportOrgEx(dc, clamp_coordinate(std::int64_t{ origin.x } + x),
                            clamp_coordinate(std::int64_t{ origin.y } + y), previous);
}

namespace {

// Moves points between logical and device coordinates; `direction` is 1 towards the device.
BOOL shift_points(HDC dc, LPPOINT points, int count, int direction)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    if (!context || !points || count < 0)
        return FALSE;
    const std::int64_t x = direction * context->device_x(0);
    const std::int64_t y = direction * context->device_y(0);
    for (POINT* point = points; point < points + count; point++)
        *point = { static_cast<LONG>(point->x + x), static_cast<LONG>(point->y + y) };
    return TRUE;
}

} // namespace

BOOL LPtoDP(HDC dc, LPPOINT points, int count)
{
    return shift_points(dc, points, count, 1);
}

BOOL DPtoLP(HDC dc, LPPOINT points, int count)
{
    return shift_points(dc, points, count, -1);
}

int GetDeviceCaps(HDC dc, int index)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    if (!context)
        return 0;
    switch (index) {
    case HORZRES:
        return context->width();
    case VERTRES:
        return context->height();
    case BITSPIXEL:
        return context->depth();
    case PLANES:
        return 1;
    case LOGPIXELSX:
    case LOGPIXELSY:
        return 96;
    default:
        return fail(0, ERROR_INVALID_PARAMETER);
    }
}
