#include "platform/win32/user/default_frame.h"

#include "platform/win32/user/placement.h"
#include "platform/win32/user/window.h"
#include "wingdi.h"

namespace win32 {

namespace {

// Where the parts of a frame are, on the screen; empty ones are not there.
struct Frame {
    RECT window;
    RECT client;
    RECT caption;
    RECT close_box;
    LONG border; // width of the edge that sizes the window; 0: none does
    bool captioned;
};

Frame frame_of(HWND handle)
{
    Frame frame{};
    const WindowPtr window = find_window(handle);
    if (!window)
        return frame;
    const WindowLock lock = lock_windows();
    frame.window = window_on_screen(*window, lock);
    frame.client = client_on_screen(*window, lock);
    const DWORD style = window->style;
    const RECT thick = frame_thickness(style, window->ex_style, false);
    if ((style & WS_THICKFRAME) && !(style & (WS_MAXIMIZE | WS_MINIMIZE)))
        frame.border = thick.left;
    frame.captioned = (style & WS_CAPTION) == WS_CAPTION;
    if (!frame.captioned)
        return frame;
    frame.caption = { frame.window.left + thick.left, frame.window.top + thick.left, frame.window.right - thick.right,
                      frame.window.top + thick.top };
    if (style & WS_SYSMENU) {
        const LONG size = height_of(frame.caption) - 5; // two pixels above, two below and the caption's own line
        frame.close_box = { frame.caption.right - size - 2, frame.caption.top + 2, frame.caption.right - 2,
                            frame.caption.top + 2 + size };
    }
    return frame;
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

void fill(HDC dc, const RECT& rect, int colour)
{
    FillRect(dc, &rect, GetSysColorBrush(colour));
}

void paint_close_box(HDC dc, const RECT& box)
{
    fill(dc, box, COLOR_3DFACE);
    const LONG arm = width_of(box) / 4;
    for (LONG i = arm; i < width_of(box) - arm; i++) {
        const RECT falling{ box.left + i, box.top + i, box.left + i + 1, box.top + i + 1 };
        const RECT rising{ box.left + i, box.bottom - 1 - i, box.left + i + 1, box.bottom - i };
        fill(dc, falling, COLOR_BTNTEXT);
        fill(dc, rising, COLOR_BTNTEXT);
    }
}

} // namespace

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
    if (PtInRect(&frame.close_box, point))
        return HTCLOSE;
    return frame.captioned && point.y < frame.client.top ? HTCAPTION : HTBORDER;
}

void paint_frame(HWND window, bool active)
{
    const Frame frame = frame_of(window);
    if (EqualRect(&frame.window, &frame.client))
        return;
    const HDC dc = GetWindowDC(window);
    if (!dc)
        return;
    const POINT back{ -frame.window.left, -frame.window.top };
    const RECT client = moved(frame.client, back);
    ExcludeClipRect(dc, client.left, client.top, client.right, client.bottom);
    fill(dc, moved(frame.window, back), COLOR_3DFACE);
    if (frame.captioned)
        fill(dc, moved(frame.caption, back), active ? COLOR_ACTIVECAPTION : COLOR_INACTIVECAPTION);
    if (!IsRectEmpty(&frame.close_box))
        paint_close_box(dc, moved(frame.close_box, back));
    ReleaseDC(window, dc);
}

} // namespace win32
