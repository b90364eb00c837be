#include "platform/win32/user/hit_test.h"

#include "platform/win32/user/window.h"
#include "wingdi.h"

#include <cstddef>
#include <memory_resource>
#include <vector>

namespace win32 {

namespace {

bool covers(const Window& window, POINT point, Locked lock)
{
    const RECT rect = window_on_screen(window, lock);
    if (!PtInRect(&rect, point))
        return false;
    return !window.outline || window.outline->contains(point.x - rect.left, point.y - rect.top);
}

// The windows at the point, the one that answers first in front.
void collect_at(const Window& window, POINT point, std::pmr::vector<HWND>& found, Locked lock)
{
    const RECT client = client_on_screen(window, lock);
    if (PtInRect(&client, point)) {
        for (const Window* child : window.children) {
            if ((child->style & (WS_VISIBLE | WS_DISABLED)) == WS_VISIBLE && covers(*child, point, lock))
                collect_at(*child, point, found, lock);
        }
    }
    found.push_back(window.handle);
}

} // namespace

Hit hit_test(HWND top, POINT point)
{
    std::byte few[256]; // the heap comes for what is nested deeper: every move of the pointer asks
    std::pmr::monotonic_buffer_resource memory(few, sizeof few);
    std::pmr::vector<HWND> candidates(&memory);
    if (const WindowPtr window = find_window(top)) {
        const WindowLock lock = lock_windows();
        if (window->style & WS_DISABLED)
            return { top, HTERROR };
        collect_at(*window, point, candidates, lock);
    }
    const LPARAM position = MAKELPARAM(static_cast<WORD>(point.x), static_cast<WORD>(point.y));
    for (const HWND candidate : candidates) {
        if (!find_window(candidate))
            continue;
        const int code = static_cast<int>(SendMessageA(candidate, WM_NCHITTEST, 0, position));
        if (code != HTTRANSPARENT)
            return { candidate, code };
    }
    return { find_window(top) ? top : nullptr, HTNOWHERE };
}

} // namespace win32
