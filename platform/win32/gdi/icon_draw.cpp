// Drawing icons: the same copies that BitBlt makes, from an icon's mask and image.
#include "platform/win32/gdi/icon.h"
#include "platform/win32/gdi/pixel_copy.h"
#include "platform/win32/kernel/last_error.h"

#include <winbase.h>

#include <cstdlib>

using namespace win32;

namespace {

constexpr int kDefaultIconSize = 32;

// One layer of an icon, `first_row` rows down in its bitmap, drawn over the whole icon's place.
class IconPainter {
public:
    IconPainter(DeviceContext& context, const Icon& icon, int x, int y, int width, int height)
        : context_(context), icon_(icon), place_{ x, y, width, height, 0, 0, icon.width(), icon.height() }
    {}

    void draw(const Bitmap& bitmap, int first_row, RasterOp operation, Blend blend) const
    {
        CopyPlace place = place_;
        place.source_y = first_row;
        copy_pixels(Copy(context_, bitmap, place, operation, blend));
    }

    void normal() const
    {
        if (icon_.has_alpha) {
            draw(*icon_.colour, 0, RasterOp(SRCCOPY), Blend::by_alpha);
            return;
        }
        draw(*icon_.mask, 0, RasterOp(SRCAND), Blend::none);
        image(RasterOp(SRCINVERT));
    }

    void image(RasterOp operation) const
    {
        if (icon_.colour)
            draw(*icon_.colour, 0, operation, Blend::none);
        else
            draw(*icon_.mask, icon_.height(), operation, Blend::none);
    }

private:
    DeviceContext& context_;
    const Icon& icon_;
    CopyPlace place_;
};

} // namespace

BOOL DrawIconEx(HDC dc, int x, int y, HICON handle, int width, int height, UINT frame, HBRUSH brush, UINT flags)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    const std::shared_ptr<const Icon> icon = context ? find_icon(handle) : nullptr;
    if (!icon)
        return FALSE;
    const UINT parts = flags & DI_NORMAL;
    if (frame != 0 || parts == 0 || (flags & ~(DI_NORMAL | DI_DEFAULTSIZE)))
        return fail(FALSE, ERROR_INVALID_PARAMETER);
    if (width == 0)
        width = flags & DI_DEFAULTSIZE ? kDefaultIconSize : icon->width();
    if (height == 0)
        height = flags & DI_DEFAULTSIZE ? kDefaultIconSize : icon->height();
    if (brush) {
        const RECT rect{ x, y, clamp_coordinate(std::int64_t{ x } + width),
                         clamp_coordinate(std::int64_t{ y } + height) };
        if (!FillRect(dc, &rect, brush))
            return FALSE;
    }

    const IconPainter painter(*context, *icon, x, y, width, height);
    if (parts == DI_NORMAL)
        painter.normal();
    else if (parts == DI_IMAGE)
        painter.image(RasterOp(SRCCOPY));
    else
        painter.draw(*icon->mask, 0, RasterOp(SRCCOPY), Blend::none);
    return TRUE;
}
