#include "platform/win32/user/default_frame.h"

#include "platform/win32/user/paint.h"
#include "platform/win32/user/placement.h"
#include "platform/win32/user/system_menu.h"
#include "platform/win32/user/window.h"

#include <algorithm>
#include <utility>

namespace win32 {

namespace {

constexpr LONG kBoxMargin = 2; // between boxes and the caption's edges, in pixels
constexpr LONG kTitleMargin = 4;

// The icon that the window shows in its caption, if it shows one.
HICON caption_icon(const Window& window)
{
    if (!(window.style & WS_SYSMENU) || (window.ex_style & (WS_EX_TOOLWINDOW | WS_EX_DLGMODALFRAME)))
        return nullptr;
    const WNDCLASSEXA& fallback = window.window_class->info;
    for (const HICON icon : { window.icon_small, fallback.hIconSm, window.icon_big, fallback.hIcon }) {
        if (icon)
            return icon;
    }
    return nullptr;
}

// From the right: close, and when the style has one of them, maximise and minimise, apart from it.
void place_boxes(Frame& frame, const Window& window)
{
    if (!(window.style & WS_SYSMENU))
        return;
    const LONG height = height_of(frame.caption) - 2 * kBoxMargin - 1; // the caption's own line is below
    const LONG width = height + 2;
    RECT place{ frame.caption.right - kBoxMargin - width, frame.caption.top + kBoxMargin,
                frame.caption.right - kBoxMargin, frame.caption.top + kBoxMargin + height };
    frame.boxes[0] = { HTCLOSE, place, true };
    if ((window.style & (WS_MINIMIZEBOX | WS_MAXIMIZEBOX)) && !frame.small) {
        place = moved(place, { -width - kBoxMargin, 0 });
        frame.boxes[1] = { HTMAXBUTTON, place, (window.style & WS_MAXIMIZEBOX) != 0 };
        place = moved(place, { -width, 0 });
        frame.boxes[2] = { HTMINBUTTON, place, (window.style & WS_MINIMIZEBOX) != 0 };
    }
    frame.title.right = place.left;
}

void fill_caption(Frame& frame, const Window& window, LONG border, LONG top)
{
    frame.caption = { frame.window.left + border, frame.window.top + border, frame.window.right - border,
                      frame.window.top + top };
    frame.title = frame.caption;
    place_boxes(frame, window);
    frame.text = window.text;
    frame.picture = caption_icon(window);
    if (frame.picture) {
        const LONG size = GetSystemMetrics(SM_CXSMICON);
        const LONG y = frame.caption.top + (height_of(frame.caption) - size) / 2;
        frame.icon = { frame.caption.left + kBoxMargin, y, frame.caption.left + kBoxMargin + size, y + size };
        frame.title.left = frame.icon.right;
    }
    frame.title.left += kTitleMargin;
    frame.title.right = std::max(frame.title.right - kTitleMargin, frame.title.left);
}

// The edge or corner that a point on the sizing border drags; the corners are as long as a caption is high.
int sizing_hit(const Frame& frame, POINT point)
{
    const LONG corner = frame.border + GetSystemMetrics(SM_CYCAPTION);
    const auto zone = [](LONG at, LONG first, LONG last, LONG reach) {
        return at < first + reach ? 0 : at >= last - reach ? 2 : 1;
    };
    const int edge_x = zone(point.x, frame.window.left, frame.window.right, frame.border);
    const int edge_y = zone(point.y, frame.window.top, frame.window.bottom, frame.border);
    if (edge_x == 1 && edge_y == 1)
        return HTNOWHERE;
    const int x = edge_x != 1 ? edge_x : zone(point.x, frame.window.left, frame.window.right, corner);
    const int y = edge_y != 1 ? edge_y : zone(point.y, frame.window.top, frame.window.bottom, corner);
    constexpr int kHits[3][3] = { { HTTOPLEFT, HTTOP, HTTOPRIGHT },
                                  { HTLEFT, HTNOWHERE, HTRIGHT },
                                  { HTBOTTOMLEFT, HTBOTTOM, HTBOTTOMRIGHT } };
    return kHits[y][x];
}

} // namespace

Frame frame_of(HWND handle)
{
    Frame frame;
    const WindowPtr window = find_window(handle);
    if (!window)
        return frame;
    const bool closable = may_close(handle);
    const WindowLock lock = lock_windows();
    frame.window = window_on_screen(*window, lock);
    frame.client = client_on_screen(*window, lock);
    const DWORD style = window->style;
    const RECT thick = frame_thickness(style, window->ex_style, false);
    if ((style & WS_THICKFRAME) && !(style & (WS_MAXIMIZE | WS_MINIMIZE)))
        frame.border = thick.left;
    frame.captioned = (style & WS_CAPTION) == WS_CAPTION;
    frame.maximised = (style & WS_MAXIMIZE) != 0;
    frame.small = (window->ex_style & WS_EX_TOOLWINDOW) != 0;
    frame.pressed_box = window->pressed_box;
    if (frame.captioned)
        fill_caption(frame, *window, thick.left, thick.top);
    frame.boxes[0].enabled = frame.boxes[0].enabled && closable;
    return frame;
}

int frame_hit(HWND window, POINT point)
{
    const Frame frame = frame_of(window);
    if (!PtInRect(&frame.window, point))
        return HTNOWHERE;
    if (frame.border > 0) {
        if (const int sizing = sizing_hit(frame, point); sizing != HTNOWHERE)
            return sizing;
    }
    if (PtInRect(&frame.client, point))
        return HTCLIENT;
    for (const CaptionBox& box : frame.boxes) {
        if (PtInRect(&box.rect, point))
            return box.hit;
    }
    if (PtInRect(&frame.icon, point))
        return HTSYSMENU;
    return frame.captioned && point.y < frame.client.top ? HTCAPTION : HTBORDER;
}

bool is_box_enabled(HWND window, int hit)
{
    const Frame frame = frame_of(window);
    return std::any_of(std::begin(frame.boxes), std::end(frame.boxes),
                       [hit](const CaptionBox& box) { return box.hit == hit && box.enabled; });
}

void press_box(HWND handle, int hit)
{
    const WindowPtr window = find_window(handle);
    if (!window)
        return;
    const WindowLock lock = lock_windows();
    if (std::exchange(window->pressed_box, hit) != hit)
        invalidate(*window, Region(), RDW_INVALIDATE | RDW_FRAME | RDW_NOCHILDREN, lock);
}

} // namespace win32
