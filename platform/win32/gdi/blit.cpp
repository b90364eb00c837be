// BitBlt and StretchBlt: from coordinates of two contexts to a copy of pixels.
#include "platform/win32/gdi/pixel_copy.h"
#include "platform/win32/kernel/last_error.h"

#include <winbase.h>

using namespace win32;

BOOL BitBlt(HDC dc, int x, int y, int width, int height, HDC source, int source_x, int source_y, DWORD operation)
{
    return StretchBlt(dc, x, y, width, height, source, source_x, source_y, width, height, operation);
}

BOOL StretchBlt(HDC dc, int x, int y, int width, int height, HDC source, int source_x, int source_y, int source_width,
                int source_height, DWORD operation)
{
    const RasterOp code(operation);
    if (!code.uses_source())
        return PatBlt(dc, x, y, width, height, operation);
    const std::shared_ptr<DeviceContext> to = find_context(dc);
    const std::shared_ptr<DeviceContext> from = to ? find_context(source) : nullptr;
    if (!from)
        return FALSE;
    if (code.uses_pattern() && to->state.brush->style == BS_NULL)
        return TRUE;
    const CopyPlace place{ x, y, width, height, source_x, source_y, source_width, source_height };
    if (!code.copies_source() || !copy_straight(*to, *from, place))
        copy_pixels(Copy(*to, *from, place, code));
    return TRUE;
}
