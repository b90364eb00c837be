// Windows that are no rectangles.
#include "platform/win32/user/paint.h"
#include "platform/win32/user/placement.h"
#include "platform/win32/user/window.h"
#include "wingdi.h"

#include <span>

namespace {

using namespace win32;

void shape_surface(const TopSurface& surface, HRGN region)
{
    if (!region) {
        screen().set_shape(surface.id(), std::nullopt);
        return;
    }
    std::vector<std::byte> bytes(GetRegionData(region, 0, nullptr));
    auto* const data = reinterpret_cast<RGNDATA*>(bytes.data());
    if (GetRegionData(region, static_cast<DWORD>(bytes.size()), data) == 0)
        return;
    const auto* const first = reinterpret_cast<const RECT*>(data->Buffer);
    screen().set_shape(surface.id(), std::span(first, data->rdh.nCount));
}

void take_outline(Window& window, HRGN region, bool redraw)
{
    if (window.surface)
        shape_surface(*window.surface, region);
    const WindowLock lock = lock_windows();
    window.outline = region ? std::optional<WindowRegion>(WindowRegion(region)) : std::nullopt;
    if (region)
        DeleteObject(region); // the window's since the call, and it has a copy
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
    return found->outline ? CombineRgn(region, found->outline->get(), nullptr, RGN_COPY) : ERROR;
}
