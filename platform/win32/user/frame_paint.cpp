// How the plain frame looks.
#include "platform/win32/screen/geometry.h"
#include "platform/win32/user/default_frame.h"
#include "platform/win32/user/drawing.h"
#include "platform/win32/user/window.h"
#include "wingdi.h"
#include "winnls.h"

#include <algorithm>

namespace win32 {

namespace {

// ---- The title.

std::u16string to_wide(const std::string& text)
{
    const int size = static_cast<int>(std::min<std::size_t>(text.size(), 1024)); // more no caption shows
    std::u16string wide(static_cast<std::size_t>(size), u'\0');
    wide.resize(static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide.data(), size)));
    return wide;
}

std::string to_bytes(std::u16string_view wide)
{
    std::string bytes(wide.size() * 4, '\0');
    bytes.resize(
        static_cast<std::size_t>(WideCharToMultiByte(CP_ACP, 0, wide.data(), static_cast<int>(wide.size()),
                                                     bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr)));
    return bytes;
}

LONG width_of_text(HDC dc, const std::string& text)
{
    SIZE size{};
    GetTextExtentPoint32A(dc, text.data(), static_cast<int>(text.size()), &size);
    return size.cx;
}

// The whole text, or as much of it as fits with three dots behind.
std::string fitted(HDC dc, const std::string& text, LONG width)
{
    if (width_of_text(dc, text) <= width)
        return text;
    const std::u16string wide = to_wide(text);
    std::size_t fits = 0; // characters, and one that does not fit
    std::size_t too_many = wide.size() + 1;
    const auto cut = [&](std::size_t length) { return to_bytes(std::u16string_view(wide).substr(0, length)) + "..."; };
    while (too_many - fits > 1) {
        const std::size_t middle = (fits + too_many) / 2;
        (width_of_text(dc, cut(middle)) <= width ? fits : too_many) = middle;
    }
    return cut(fits);
}

void paint_title(HDC dc, const Frame& frame, bool active)
{
    if (frame.text.empty() || is_empty(frame.title))
        return;
    NONCLIENTMETRICSA metrics{};
    metrics.cbSize = sizeof(metrics);
    SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, 0, &metrics, 0);
    const FontOwner font(CreateFontIndirectA(frame.small ? &metrics.lfSmCaptionFont : &metrics.lfCaptionFont));
    const HGDIOBJ before = SelectObject(dc, font.get());
    TEXTMETRICA text_metrics{};
    GetTextMetricsA(dc, &text_metrics);
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, GetSysColor(active ? COLOR_CAPTIONTEXT : COLOR_INACTIVECAPTIONTEXT));
    const std::string shown = fitted(dc, frame.text, width_of(frame.title));
    const LONG y = frame.title.top + (height_of(frame.title) - text_metrics.tmHeight) / 2;
    TextOutA(dc, frame.title.left, y, shown.data(), static_cast<int>(shown.size()));
    SelectObject(dc, before);
}

// ---- The boxes.

void draw_cross(HDC dc, const RECT& glyph, int colour)
{
    for (LONG i = 0; i < height_of(glyph); i++) {
        const LONG y = glyph.top + i;
        fill(dc, { glyph.left + i, y, glyph.left + i + 2, y + 1 }, colour);
        fill(dc, { glyph.right - i - 2, y, glyph.right - i, y + 1 }, colour);
    }
}

// A window: an outline with a thick upper edge.
void draw_window(HDC dc, const RECT& rect, int colour)
{
    FrameRect(dc, &rect, GetSysColorBrush(colour));
    fill(dc, { rect.left, rect.top, rect.right, rect.top + 2 }, colour);
}

void draw_glyph(HDC dc, const CaptionBox& box, bool maximised, int face)
{
    const LONG size = height_of(box.rect) / 2 + 1;
    const LONG left = box.rect.left + (width_of(box.rect) - size) / 2;
    const LONG top = box.rect.top + (height_of(box.rect) - size) / 2;
    const RECT glyph{ left, top, left + size, top + size };
    const int colour = box.enabled ? COLOR_BTNTEXT : COLOR_GRAYTEXT;
    switch (box.hit) {
    case HTCLOSE:
        draw_cross(dc, { left, top, left + size, top + size - 1 }, colour);
        break;
    case HTMINBUTTON:
        fill(dc, { left, glyph.bottom - 2, glyph.right - 1, glyph.bottom }, colour);
        break;
    default:
        if (!maximised) {
            draw_window(dc, glyph, colour);
            break;
        }
        draw_window(dc, { left + 2, top, glyph.right, glyph.bottom - 2 }, colour);
        fill(dc, { left, top + 3, glyph.right - 2, glyph.bottom }, face);
        draw_window(dc, { left, top + 3, glyph.right - 2, glyph.bottom }, colour);
        break;
    }
}

void paint_box(HDC dc, const CaptionBox& box, const Frame& frame)
{
    const bool pressed = frame.pressed_box == box.hit;
    const int face = pressed ? COLOR_BTNSHADOW : COLOR_3DFACE;
    fill(dc, box.rect, face);
    draw_glyph(dc, box, frame.maximised, face);
}

} // namespace

void paint_frame(HWND window, bool active)
{
    Frame frame = frame_of(window);
    if (EqualRect(&frame.window, &frame.client))
        return;
    const HDC dc = GetWindowDC(window);
    if (!dc)
        return;
    const POINT back{ -frame.window.left, -frame.window.top };
    for (RECT* part : { &frame.window, &frame.client, &frame.caption, &frame.icon, &frame.title, &frame.boxes[0].rect,
                        &frame.boxes[1].rect, &frame.boxes[2].rect })
        *part = moved(*part, back);
    ExcludeClipRect(dc, frame.client.left, frame.client.top, frame.client.right, frame.client.bottom);
    fill(dc, frame.window, COLOR_3DFACE);
    if (frame.captioned) {
        fill(dc, frame.caption, active ? COLOR_ACTIVECAPTION : COLOR_INACTIVECAPTION);
        paint_title(dc, frame, active);
        if (frame.picture)
            DrawIconEx(dc, frame.icon.left, frame.icon.top, frame.picture, width_of(frame.icon), height_of(frame.icon),
                       0, nullptr, DI_NORMAL);
        for (const CaptionBox& box : frame.boxes) {
            if (box.hit != HTNOWHERE)
                paint_box(dc, box, frame);
        }
    }
    ReleaseDC(window, dc);
}

} // namespace win32
