// BitBlt and StretchBlt: from coordinates of two contexts to a copy of pixels.
#include "platform/win32/gdi/pixel_copy.h"
#include "platform/win32/kernel/last_error.h"

#include <winbase.h>

using namespace win32;

namespace {

// Where the extents of a call lie in both contexts' pixels, per axis.
struct Placement {
    Run to_x;
    Run to_y;
    Run from_x;
    Run from_y;
};

void place(Placement& placement, const DeviceContext& target, const DeviceContext& source)
{
    const auto move = [](Run& x, Run& y, const DeviceContext& context) {
        x = x.moved(context.device_x(0));
        y = y.moved(context.device_y(0) + context.origin().y);
        if (context.is_mirrored())
            x = x.mirrored(context.width());
        x = x.moved(context.origin().x);
    };
    move(placement.to_x, placement.to_y, target);
    move(placement.from_x, placement.from_y, source);
    // One mirrored context flips the picture, unless one of them wants pictures to keep their orientation.
    if (target.is_mirrored() != source.is_mirrored() && (target.keeps_orientation() || source.keeps_orientation()))
        placement.to_x = placement.to_x.reversed();
}

CopySource source_of(DeviceContext& context)
{
    CopySource source;
    source.bitmap = context.source_bitmap();
    if (!source.bitmap)
        source.raster = context.target_raster();
    source.is_mono = context.depth() == 1;
    source.background = pixel_of(context.state.background);
    return source;
}

BOOL copy_between(HDC to_dc, HDC from_dc, Placement placement, DWORD code)
{
    const std::shared_ptr<DeviceContext> target = find_context(to_dc);
    const std::shared_ptr<DeviceContext> source = target ? find_context(from_dc) : nullptr;
    if (!source)
        return FALSE;
    const RasterOp operation(code);
    if (operation.uses_pattern() && target->state.brush->style == BS_NULL)
        return TRUE;
    place(placement, *target, *source);

    CopyTarget to{ target->canvas(), pixel_of(target->state.text_colour), pixel_of(target->state.background) };
    const CopySource from = source_of(*source);
    const bool same_pixels =
        target == source || (!from.bitmap && from.raster.colour && from.raster.colour == to.canvas.raster.colour);
    copy_pixels({ to, from, AxisMap(placement.to_x, placement.from_x), AxisMap(placement.to_y, placement.from_y),
                  Paint(*target, *target->state.brush.get()), operation, same_pixels });
    return TRUE;
}

} // namespace

BOOL BitBlt(HDC dc, int x, int y, int width, int height, HDC source, int source_x, int source_y, DWORD operation)
{
    return StretchBlt(dc, x, y, width, height, source, source_x, source_y, width, height, operation);
}

BOOL StretchBlt(HDC dc, int x, int y, int width, int height, HDC source, int source_x, int source_y, int source_width,
                int source_height, DWORD operation)
{
    if (!RasterOp(operation).uses_source())
        return PatBlt(dc, x, y, width, height, operation);
    return copy_between(
        dc, source,
        { Run::of(x, width), Run::of(y, height), Run::of(source_x, source_width), Run::of(source_y, source_height) },
        operation);
}
