// Rectangles, lines and single pixels.
#include "platform/win32/gdi/paint.h"
#include "platform/win32/kernel/last_error.h"

#include <winbase.h>

#include <algorithm>
#include <array>
#include <cstdlib>

using namespace win32;

namespace {

constexpr RasterOp kCopyPattern(PATCOPY);

// The four sides of a frame one pixel wide along the inside of `rect`, no pixel twice.
std::array<RECT, 4> frame_sides(const RECT& rect)
{
    const LONG inner_top = rect.top + 1;
    const LONG inner_bottom = rect.bottom - 1;
    const LONG left_end = rect.left + 1;
    const LONG right_start = rect.right - 1 > left_end ? rect.right - 1 : left_end;
    return { RECT{ rect.left, rect.top, rect.right, inner_top },
             RECT{ rect.left, inner_bottom > inner_top ? inner_bottom : inner_top, rect.right, rect.bottom },
             RECT{ rect.left, inner_top, left_end, inner_bottom },
             RECT{ right_start, inner_top, rect.right, inner_bottom } };
}

RECT target_of(const DeviceContext& context, int left, int top, int right, int bottom)
{
    return context.target_rect(left < right ? left : right, top < bottom ? top : bottom, left < right ? right : left,
                               top < bottom ? bottom : top);
}

} // namespace

BOOL Rectangle(HDC dc, int left, int top, int right, int bottom)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    if (!context)
        return FALSE;
    RECT rect = target_of(*context, left, top, right, bottom);
    if (is_empty(rect))
        return TRUE;
    const Canvas canvas = context->canvas();
    const RasterOp operation = RasterOp::from_mix(context->state.mix_mode);

    RECT inside{ rect.left + 1, rect.top + 1, rect.right - 1, rect.bottom - 1 };
    if (context->state.pen->style == PS_NULL) {
        // Without a pen the right and lower edge, where it would run, are not the brush's either.
        inside = { rect.left, rect.top, rect.right - 1, rect.bottom - 1 };
        if (context->is_mirrored())
            inside = { rect.left + 1, rect.top, rect.right, rect.bottom - 1 };
    } else {
        const Paint pen(*context, context->state.pen->colour);
        for (const RECT& side : frame_sides(rect))
            paint_rect(canvas, side, pen, operation);
    }
    if (context->state.brush->style != BS_NULL)
        paint_rect(canvas, inside, Paint(*context, *context->state.brush.get()), operation);
    return TRUE;
}

int FillRect(HDC dc, const RECT* rect, HBRUSH handle)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    const std::shared_ptr<Brush> brush = context ? find<Brush>(handle) : nullptr;
    if (!brush || !rect)
        return 0;
    if (brush->style != BS_NULL)
        paint_rect(context->canvas(), context->target_rect(*rect), Paint(*context, *brush), kCopyPattern);
    return 1;
}

int FrameRect(HDC dc, const RECT* rect, HBRUSH handle)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    const std::shared_ptr<Brush> brush = context ? find<Brush>(handle) : nullptr;
    if (!brush || !rect || is_empty(*rect))
        return 0;
    if (brush->style == BS_NULL)
        return 1;
    const Canvas canvas = context->canvas();
    const Paint paint(*context, *brush);
    for (const RECT& side : frame_sides(context->target_rect(*rect)))
        paint_rect(canvas, side, paint, kCopyPattern);
    return 1;
}

BOOL InvertRect(HDC dc, const RECT* rect)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    if (!context || !rect)
        return FALSE;
    paint_rect(context->canvas(), context->target_rect(*rect), Paint(*context, 0), RasterOp(DSTINVERT));
    return TRUE;
}

BOOL FillRgn(HDC dc, HRGN region_handle, HBRUSH brush_handle)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    const std::shared_ptr<RegionObject> region = context ? find<RegionObject>(region_handle) : nullptr;
    const std::shared_ptr<Brush> brush = region ? find<Brush>(brush_handle) : nullptr;
    if (!brush)
        return FALSE;
    if (brush->style == BS_NULL)
        return TRUE;
    const Canvas canvas = context->canvas();
    const Paint paint(*context, *brush);
    for (const RECT& rect : region->region.rectangles())
        paint_rect(canvas, context->target_rect(rect), paint, kCopyPattern);
    return TRUE;
}

BOOL PatBlt(HDC dc, int x, int y, int width, int height, DWORD code)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    if (!context)
        return FALSE;
    const RasterOp operation(code);
    if (operation.uses_source())
        return fail(FALSE, ERROR_INVALID_PARAMETER);
    const Brush& brush = *context->state.brush.get();
    if (operation.uses_pattern() && brush.style == BS_NULL)
        return TRUE;
    // A negative extent runs leftward or upward, its start included.
    const std::int64_t left = width < 0 ? std::int64_t{ x } + width + 1 : x;
    const std::int64_t top = height < 0 ? std::int64_t{ y } + height + 1 : y;
    const RECT rect =
        context->target_rect(left, top, left + std::abs(std::int64_t{ width }), top + std::abs(std::int64_t{ height }));
    paint_rect(context->canvas(), rect, Paint(*context, brush), operation);
    return TRUE;
}

COLORREF SetPixel(HDC dc, int x, int y, COLORREF colour)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    if (!context)
        return CLR_INVALID;
    const POINT point = context->target_point(x, y);
    const Canvas canvas = context->canvas();
    if (!canvas.clip->contains(point.x, point.y))
        return CLR_INVALID;
    const Paint paint(*context, colour & 0xFFFFFF);
    paint_rect(canvas, { point.x, point.y, point.x + 1, point.y + 1 }, paint, kCopyPattern);
    return colour_of(paint.pixel());
}

COLORREF GetPixel(HDC dc, int x, int y)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    if (!context)
        return CLR_INVALID;
    const POINT point = context->target_point(x, y);
    if (!context->effective_clip().contains(point.x, point.y))
        return CLR_INVALID;
    std::uint32_t pixel;
    if (const Bitmap* bitmap = context->source_bitmap())
        bitmap->read(point.x, point.y, 1, &pixel);
    else
        context->target_raster().read(point.x, point.y, 1, &pixel);
    return colour_of(pixel & kWhite);
}

BOOL MoveToEx(HDC dc, int x, int y, LPPOINT previous)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    if (!context)
        return FALSE;
    if (previous)
        *previous = context->state.position;
    context->state.position = { x, y };
    return TRUE;
}

namespace {

// The pixels from `from` to `to`, the last one left out, in runs along the longer axis.
class LineWalk {
public:
    LineWalk(POINT from, POINT to)
        : from_(from), dx_(std::int64_t{ to.x } - from.x), dy_(std::int64_t{ to.y } - from.y),
          length_(std::max(std::abs(dx_), std::abs(dy_)))
    {}

    std::int64_t length() const { return length_; }
    POINT at(std::int64_t step) const { return { from_.x + part(dx_, step), from_.y + part(dy_, step) }; }
    bool is_straight() const { return dx_ == 0 || dy_ == 0; }

private:
    // delta * step / length to the nearest whole number, halves rounded away from the start.
    int part(std::int64_t delta, std::int64_t step) const
    {
        const std::int64_t distance = (2 * std::abs(delta) * step + length_) / (2 * length_);
        return static_cast<int>(delta < 0 ? -distance : distance);
    }

    POINT from_;
    std::int64_t dx_;
    std::int64_t dy_;
    std::int64_t length_;
};

void draw_straight(const Canvas& canvas, POINT from, POINT to, const Paint& paint, RasterOp operation)
{
    RECT rect{ from.x, from.y, to.x, to.y };
    if (from.x == to.x)
        rect = { from.x, to.y < from.y ? to.y + 1 : from.y, from.x + 1, to.y < from.y ? from.y + 1 : to.y };
    else
        rect = { to.x < from.x ? to.x + 1 : from.x, from.y, to.x < from.x ? from.x + 1 : to.x, from.y + 1 };
    paint_rect(canvas, rect, paint, operation);
}

// The steps of the line that may lie in `bounds`, so that a line of any length costs no more than the picture's size.
std::pair<std::int64_t, std::int64_t> visible_steps(const LineWalk& line, const RECT& bounds)
{
    const POINT start = line.at(0);
    const POINT end = line.at(line.length());
    std::int64_t first = 0;
    std::int64_t last = line.length();
    const auto limit = [&](std::int64_t from, std::int64_t to, std::int64_t low, std::int64_t high) {
        if (std::abs(to - from) != line.length())
            return; // not the longer axis: it moves less than a pixel a step
        if (to > from) {
            first = std::max(first, low - from);
            last = std::min(last, high - from);
        } else {
            first = std::max(first, from - high + 1);
            last = std::min(last, from - low + 1);
        }
    };
    limit(start.x, end.x, bounds.left, bounds.right);
    limit(start.y, end.y, bounds.top, bounds.bottom);
    return { first, last };
}

} // namespace

BOOL LineTo(HDC dc, int x, int y)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    if (!context)
        return FALSE;
    const POINT from = context->target_point(context->state.position.x, context->state.position.y);
    const POINT to = context->target_point(x, y);
    context->state.position = { x, y };
    const LineWalk line(from, to);
    if (context->state.pen->style == PS_NULL || line.length() == 0)
        return TRUE;

    const Canvas canvas = context->canvas();
    const Paint paint(*context, context->state.pen->colour);
    const RasterOp operation = RasterOp::from_mix(context->state.mix_mode);
    if (line.is_straight()) {
        draw_straight(canvas, from, to, paint, operation);
        return TRUE;
    }
    const auto [first, last] = visible_steps(line, canvas.clip->bounds());
    for (std::int64_t step = first; step < last; step++) {
        const POINT point = line.at(step);
        paint_rect(canvas, { point.x, point.y, point.x + 1, point.y + 1 }, paint, operation);
    }
    return TRUE;
}
