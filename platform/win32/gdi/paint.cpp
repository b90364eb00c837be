#include "platform/win32/gdi/paint.h"

#include <algorithm>

namespace win32 {

namespace {

std::uint32_t shown_pixel(const DeviceContext& context, COLORREF colour)
{
    const std::uint32_t pixel = pixel_of(colour);
    if (context.depth() == 32)
        return pixel;
    return is_light(pixel) ? kWhite : kBlack;
}

} // namespace

Paint::Paint(const DeviceContext& context, COLORREF colour) : pixel_(shown_pixel(context, colour)) {}

Paint::Paint(const DeviceContext& context, const Brush& brush) : Paint(context, brush.colour)
{
    pattern_ = brush.pattern.get();
    origin_ = context.origin();
    clear_ = shown_pixel(context, context.state.text_colour);
    set_ = shown_pixel(context, context.state.background);
}

void Paint::read(int x, int y, int count, std::uint32_t* out) const
{
    if (!pattern_) {
        std::fill_n(out, count, pixel_);
        return;
    }
    const auto wrap = [](int value, int extent) { return ((value % extent) + extent) % extent; };
    const int row = wrap(y - origin_.y, pattern_->height());
    for (int done = 0; done < count;) {
        const int column = wrap(x + done - origin_.x, pattern_->width());
        const int run = std::min(count - done, pattern_->width() - column);
        pattern_->read(column, row, run, out + done);
        done += run;
    }
    if (pattern_->depth() == 1) {
        for (int i = 0; i < count; i++)
            out[i] = out[i] == kBlack ? clear_ : set_;
    }
}

void paint_rect(const Canvas& canvas, const RECT& rect, const Paint& paint, RasterOp operation)
{
    if (operation.does_nothing())
        return;
    const Raster& raster = canvas.raster;
    std::uint32_t pattern[kChunk];
    std::uint32_t pixels[kChunk];
    for (const RECT& box : canvas.clip->rectangles()) {
        const RECT part = intersection(box, rect);
        if (is_empty(part))
            continue;
        if (operation.copies_pattern() && paint.is_solid() && !raster.is_mono()) {
            fill_pixels(raster.colour_row(part.top) + part.left, raster.stride, part.right - part.left,
                        part.bottom - part.top, paint.pixel());
            continue;
        }
        for (int x = part.left; x < part.right; x += kChunk) {
            const int count = std::min(kChunk, part.right - x);
            paint.read(x, part.top, count, pattern);
            for (int y = part.top; y < part.bottom; y++) {
                if (!paint.is_solid())
                    paint.read(x, y, count, pattern);
                raster.read(x, y, count, pixels);
                operation.apply(pixels, pixels, pattern, count);
                raster.write(x, y, count, pixels);
            }
        }
    }
    canvas.changed(rect);
}

} // namespace win32
