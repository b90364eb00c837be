// What a device context may draw on.
#include "platform/win32/gdi/device_context.h"
#include "platform/win32/kernel/last_error.h"

#include <winbase.h>

using namespace win32;

namespace {

// The part of the clip that is the caller's own, in device coordinates. Without one, all that the context shows.
Region own_clip(const DeviceContext& context)
{
    if (context.state.clip)
        return *context.state.clip;
    return Region(RECT{ 0, 0, context.width(), context.height() });
}

int set_clip(DeviceContext& context, std::optional<Region> clip)
{
    context.state.clip = std::move(clip);
    context.clip_changed();
    return context.effective_clip().kind();
}

Region device_rect(const DeviceContext& context, int left, int top, int right, int bottom)
{
    const std::int64_t x1 = left < right ? left : right;
    const std::int64_t x2 = left < right ? right : left;
    const std::int64_t y1 = top < bottom ? top : bottom;
    const std::int64_t y2 = top < bottom ? bottom : top;
    Region region(context.target_rect(x1, y1, x2, y2));
    if (!region.offset(-context.origin().x, -context.origin().y))
        return Region();
    return region;
}

} // namespace

int SelectClipRgn(HDC dc, HRGN region)
{
    return ExtSelectClipRgn(dc, region, RGN_COPY);
}

int ExtSelectClipRgn(HDC dc, HRGN handle, int mode)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    if (!context)
        return ERROR;
    if (!handle)
        return mode == RGN_COPY ? set_clip(*context, std::nullopt) : fail(ERROR, ERROR_INVALID_PARAMETER);
    const std::shared_ptr<RegionObject> object = find<RegionObject>(handle);
    if (!object)
        return ERROR;

    Region operand = object->region;
    if (context->is_mirrored())
        operand.mirror(context->width());
    Region clip = own_clip(*context);
    switch (mode) {
    case RGN_COPY:
        clip = std::move(operand);
        break;
    case RGN_AND:
        clip.intersect(operand);
        break;
    case RGN_OR:
        clip.unite(operand);
        break;
    case RGN_XOR:
        clip.exclusive(operand);
        break;
    case RGN_DIFF:
        clip.subtract(operand);
        break;
    default:
        return fail(ERROR, ERROR_INVALID_PARAMETER);
    }
    return set_clip(*context, std::move(clip));
}

int IntersectClipRect(HDC dc, int left, int top, int right, int bottom)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    if (!context)
        return ERROR;
    Region clip = own_clip(*context);
    clip.intersect(device_rect(*context, left, top, right, bottom));
    return set_clip(*context, std::move(clip));
}

int ExcludeClipRect(HDC dc, int left, int top, int right, int bottom)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    if (!context)
        return ERROR;
    Region clip = own_clip(*context);
    clip.subtract(device_rect(*context, left, top, right, bottom));
    return set_clip(*context, std::move(clip));
}

int OffsetClipRgn(HDC dc, int x, int y)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    if (!context)
        return ERROR;
    Region clip = own_clip(*context);
    if (!clip.offset(context->is_mirrored() ? -clamp_coordinate(x) : x, y))
        return fail(ERROR, ERROR_INVALID_PARAMETER);
    return set_clip(*context, std::move(clip));
}

int GetClipBox(HDC dc, LPRECT box)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    if (!context || !box)
        return ERROR;
    const Region& clip = context->effective_clip();
    *box = clip.empty() ? RECT{} : context->logical_rect(clip.bounds());
    return clip.kind();
}

int GetClipRgn(HDC dc, HRGN handle)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    const std::shared_ptr<RegionObject> object = context ? find<RegionObject>(handle) : nullptr;
    if (!object)
        return -1;
    if (!context->state.clip)
        return 0;
    object->region = *context->state.clip;
    if (context->is_mirrored())
        object->region.mirror(context->width());
    return 1;
}

BOOL PtVisible(HDC dc, int x, int y)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    if (!context)
        return FALSE;
    const POINT point = context->target_point(x, y);
    return context->effective_clip().contains(point.x, point.y);
}

BOOL RectVisible(HDC dc, const RECT* rect)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    if (!context || !rect)
        return FALSE;
    const RECT normal = normal_rect(rect->left, rect->top, rect->right, rect->bottom);
    return context->effective_clip().touches(context->target_rect(normal));
}
