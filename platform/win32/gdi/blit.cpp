// BitBlt and StretchBlt: from coordinates of two contexts to a copy of pixels.
#include "platform/win32/gdi/pixel_copy.h"
#include "platform/win32/kernel/last_error.h"

#include <winbase.h>

using namespace win32;

namespace {

CopySource source_of(DeviceContext& context)
{
    CopySource source;
    const Bitmap* bitmap = context.source_bitmap();
    if (!bitmap)
        source.raster = context.target_raster();
    else if (bitmap->is_plain())
        source.raster = bitmap->plain_pixels();
    else
        source.bitmap = bitmap;
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
    placement.map(*target, *source);

    CopyTarget to{ target->canvas(), pixel_of(target->state.text_colour), pixel_of(target->state.background) };
    const CopySource from = source_of(*source);
    const bool same_pixels =
        target == source || (!from.bitmap && from.raster.colour && from.raster.colour == to.canvas.raster.colour);
    copy_pixels({ to, from, AxisMap(placement.to_x, placement.from_x), AxisMap(placement.to_y, placement.from_y),
                  Paint(*target, *target->state.brush.get()), operation, Blend::none, same_pixels });
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
