// Windows that are no rectangles.
#include "platform/win32/gdi/objects.h"
#include "platform/win32/user/paint.h"
#include "platform/win32/user/placement.h"
#include "platform/win32/user/window.h"
#include "wingdi.h"

#include <optional>
#include <utility>

namespace {

using namespace win32;

void take_outline(Window& window, HRGN region, bool redraw)
{
    std::optional<Region> outline;
    if (region) {
        outline = region_of(region);
        DeleteObject(region); // the window's since the call, and it has a copy
    }
    if (window.surface)
        screen().set_shape(window.surface->id(), outline ? std::optional(outline->rectangles()) : std::nullopt);
    const WindowLock lock = lock_windows();
    window.outline = std::move(outline);
    if (!redraw)
        return;
    if (!is_top_level(window) && window.parent)
        uncover(*window.parent, window.rect, lock);
    invalidate_all(window, lock);
}

} // namespace

int SetWindowRgn(HWND window, HRGN region, BOOL redraw)
{
    RECT box;
    const WindowPtr found = require_window(window);
    if (!found || (region && GetRgnBox(region, &box) == ERROR))
        return 0;
    run_on(found->queue, [&] {
        take_outline(*found, region, redraw != FALSE);
        // A window with another outline is asked for its frame anew.
        constexpr UINT kNothingElse = SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE;
        place_window({ window, nullptr, 0, 0, 0, 0, kNothingElse | SWP_FRAMECHANGED | (redraw ? 0 : SWP_NOREDRAW) },
                     MovedBy::program);
    });
    return 1;
}

int GetWindowRgn(HWND window, HRGN region)
{
    const WindowPtr found = require_window(window);
    if (!found)
        return ERROR;
    const WindowLock lock = lock_windows();
    const std::shared_ptr<RegionObject> copy = find<RegionObject>(region);
    if (!found->outline || !copy)
        return ERROR;
    copy->region = *found->outline;
    return copy->region.kind();
}
