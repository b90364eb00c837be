// Filling: the pixels of a brush or pen, laid over rectangles of a canvas.
#pragma once

#include "platform/win32/gdi/device_context.h"

namespace win32 {

// What a brush or pen puts on a context's pixels.
class Paint {
public:
    Paint(const DeviceContext& context, COLORREF colour);
    Paint(const DeviceContext& context, const Brush& brush); // lives no longer than the brush

    bool is_solid() const { return !pattern_; }
    std::uint32_t pixel() const { return pixel_; }
    void read(int x, int y, int count, std::uint32_t* out) const; // at target coordinates

private:
    std::uint32_t pixel_ = 0;
    const Bitmap* pattern_ = nullptr;
    POINT origin_{}; // where a tile of the pattern begins
    // What the clear and set bits of a 1-bit pattern show as.
    std::uint32_t clear_ = 0;
    std::uint32_t set_ = 0;
};

// Lays the paint over `rect` (target coordinates) within the canvas's clip, and reports the damage.
void paint_rect(const Canvas& canvas, const RECT& rect, const Paint& paint, RasterOp operation);

} // namespace win32
