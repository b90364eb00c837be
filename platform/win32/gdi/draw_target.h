// What windows give to drawing: pixels that a device context can be opened on. `user` implements it per top-level
// window and opens contexts for GetDC, GetWindowDC and BeginPaint; everything drawn is reported as damage, which the
// window presents once per turn of its message loop.
#pragma once

#include "windef.h"

#include "platform/win32/gdi/region.h"
#include "platform/win32/screen/screen.h"

namespace win32 {

class DrawTarget {
public:
    virtual ~DrawTarget() = default;
    virtual PixelView pixels() = 0;             // asked anew for every drawing call: a resize may move them
    virtual void damaged(const RECT& rect) = 0; // in target pixels, within the target
};

// A device context on `target` (which must outlive it) whose point 0,0 is `origin` and which draws only within
// `visible`; all in target pixels.
HDC open_window_dc(DrawTarget& target, POINT origin, SIZE size, const Region& visible);

// Closes a context that open_window_dc made. FALSE for any other.
BOOL close_window_dc(HDC dc);

} // namespace win32
