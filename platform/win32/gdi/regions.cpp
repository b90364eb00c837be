// Regions as programs hold them.
#include "platform/win32/gdi/objects.h"
#include "platform/win32/kernel/last_error.h"

#include <winbase.h>

#include <cstring>

using namespace win32;

namespace {

// Curved outlines keep a rectangle for most of their rows.
constexpr std::int64_t kMaxCurvedExtent = 32767;

HRGN add_region(Region region)
{
    return add<HRGN>(std::make_shared<RegionObject>(std::move(region)));
}

bool is_curvable(const RECT& rect)
{
    return std::int64_t{ rect.right } - rect.left <= kMaxCurvedExtent &&
           std::int64_t{ rect.bottom } - rect.top <= kMaxCurvedExtent;
}

} // namespace

HRGN CreateRectRgn(int left, int top, int right, int bottom)
{
    return add_region(Region(normal_rect(left, top, right, bottom)));
}

HRGN CreateRectRgnIndirect(const RECT* rect)
{
    if (!rect)
        return fail(nullptr, ERROR_INVALID_PARAMETER);
    return CreateRectRgn(rect->left, rect->top, rect->right, rect->bottom);
}

HRGN CreateEllipticRgn(int left, int top, int right, int bottom)
{
    const RECT rect = normal_rect(left, top, right, bottom);
    if (!is_curvable(rect))
        return fail(nullptr, ERROR_INVALID_PARAMETER);
    return add_region(Region::ellipse(rect));
}

HRGN CreateEllipticRgnIndirect(const RECT* rect)
{
    if (!rect)
        return fail(nullptr, ERROR_INVALID_PARAMETER);
    return CreateEllipticRgn(rect->left, rect->top, rect->right, rect->bottom);
}

HRGN CreateRoundRectRgn(int left, int top, int right, int bottom, int width, int height)
{
    const RECT rect = normal_rect(left, top, right, bottom);
    if (!is_curvable(rect))
        return fail(nullptr, ERROR_INVALID_PARAMETER);
    const auto extent = [](int value) { return value < 0 ? clamp_coordinate(-std::int64_t{ value }) : value; };
    return add_region(Region::round_rectangle(rect, extent(width), extent(height)));
}

BOOL SetRectRgn(HRGN handle, int left, int top, int right, int bottom)
{
    const std::shared_ptr<RegionObject> object = find<RegionObject>(handle);
    if (!object)
        return FALSE;
    object->region = Region(normal_rect(left, top, right, bottom));
    return TRUE;
}

int CombineRgn(HRGN destination, HRGN first, HRGN second, int mode)
{
    const std::shared_ptr<RegionObject> result = find<RegionObject>(destination);
    const std::shared_ptr<RegionObject> a = find<RegionObject>(first);
    const std::shared_ptr<RegionObject> b = mode == RGN_COPY ? a : find<RegionObject>(second);
    if (!result || !a || !b)
        return ERROR;

    bool done = true;
    switch (mode) {
    case RGN_AND:
        done = result->region.set_intersection(a->region, b->region);
        break;
    case RGN_OR:
        done = result->region.set_union(a->region, b->region);
        break;
    case RGN_XOR: {
        Region region = a->region;
        done = region.exclusive(b->region);
        result->region = std::move(region);
        break;
    }
    case RGN_DIFF:
        done = result->region.set_difference(a->region, b->region);
        break;
    case RGN_COPY:
        result->region = a->region;
        break;
    default:
        return fail(ERROR, ERROR_INVALID_PARAMETER);
    }
    return done ? result->region.kind() : fail(ERROR, ERROR_NOT_ENOUGH_MEMORY);
}

int OffsetRgn(HRGN handle, int x, int y)
{
    const std::shared_ptr<RegionObject> object = find<RegionObject>(handle);
    if (!object)
        return ERROR;
    return object->region.offset(x, y) ? object->region.kind() : fail(ERROR, ERROR_INVALID_PARAMETER);
}

BOOL EqualRgn(HRGN first, HRGN second)
{
    const std::shared_ptr<RegionObject> a = find<RegionObject>(first);
    const std::shared_ptr<RegionObject> b = find<RegionObject>(second);
    return a && b && a->region == b->region;
}

BOOL PtInRegion(HRGN handle, int x, int y)
{
    const std::shared_ptr<RegionObject> object = find<RegionObject>(handle);
    return object && object->region.contains(x, y);
}

BOOL RectInRegion(HRGN handle, const RECT* rect)
{
    const std::shared_ptr<RegionObject> object = find<RegionObject>(handle);
    return object && rect && object->region.touches(normal_rect(rect->left, rect->top, rect->right, rect->bottom));
}

int GetRgnBox(HRGN handle, LPRECT box)
{
    const std::shared_ptr<RegionObject> object = find<RegionObject>(handle);
    if (!object || !box)
        return ERROR;
    *box = object->region.bounds();
    return object->region.kind();
}

DWORD GetRegionData(HRGN handle, DWORD size, RGNDATA* data)
{
    const std::shared_ptr<RegionObject> object = find<RegionObject>(handle);
    if (!object)
        return 0;
    const std::span<const RECT> rects = object->region.rectangles();
    const std::size_t needed = sizeof(RGNDATAHEADER) + rects.size_bytes();
    if (!data)
        return static_cast<DWORD>(needed);
    if (size < needed)
        return fail(DWORD{ 0 }, ERROR_INSUFFICIENT_BUFFER);
    data->rdh = { sizeof(RGNDATAHEADER), RDH_RECTANGLES, static_cast<DWORD>(rects.size()),
                  static_cast<DWORD>(rects.size_bytes()), object->region.bounds() };
    if (!rects.empty())
        std::memcpy(data->Buffer, rects.data(), rects.size_bytes());
    return static_cast<DWORD>(needed);
}
