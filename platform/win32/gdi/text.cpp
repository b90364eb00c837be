// Measuring and drawing text.
#include "platform/win32/gdi/paint.h"
#include "platform/win32/kernel/last_error.h"

#include <winbase.h>

#include <algorithm>
#include <cstring>

using namespace win32;

namespace {

constexpr int kLongestText = 8192;

bool is_text(LPCSTR text, std::int64_t length)
{
    return length == 0 || (text && length > 0 && length <= kLongestText);
}

// A right-to-left context reads from the right, and TA_RTLREADING turns that round.
Reading reading_of(const DeviceContext& context)
{
    const bool is_reversed = (context.state.text_align & TA_RTLREADING) != 0;
    return context.is_mirrored() != is_reversed ? Reading::right_to_left : Reading::left_to_right;
}

struct Line {
    std::string_view utf8; // this thread's, until its next line
    Reading reading = Reading::left_to_right;
    FontMetrics metrics;
    int width = 0;
};

bool measure(DeviceContext& context, LPCSTR text, int length, Line& line)
{
    thread_local Utf8Converter converter;
    line.utf8 = converter.convert({ text, static_cast<std::size_t>(length) });
    line.reading = reading_of(context);
    return context.state.font->text_font().measure(line.utf8, line.reading, line.metrics, line.width);
}

// Where the line's cell lies, in logical coordinates, for text placed at (x, y).
RECT cell_of(const Line& line, UINT align, std::int64_t x, std::int64_t y)
{
    const UINT horizontal = align & TA_CENTER;
    if (horizontal == TA_CENTER)
        x -= line.width / 2;
    else if (horizontal == TA_RIGHT)
        x -= line.width;
    const UINT vertical = align & TA_BASELINE;
    if (vertical == TA_BASELINE)
        y -= line.metrics.ascent;
    else if (vertical == TA_BOTTOM)
        y -= line.metrics.height();
    return { clamp_coordinate(x), clamp_coordinate(y), clamp_coordinate(x + line.width),
             clamp_coordinate(y + line.metrics.height()) };
}

void blend_row(const Raster& raster, int x, int y, int count, const std::uint8_t* coverage, std::uint32_t colour)
{
    if (raster.is_mono()) {
        for (int i = 0; i < count; i++) {
            if (coverage[i] >= 128)
                raster.mono_row(y)[x + i] = colour != kBlack;
        }
        return;
    }
    mix_row(colour, raster.colour_row(y) + x, coverage, count);
}

// Lays the part of the mask within `area` over the canvas; `origin` is where the mask counts from.
void blend_mask(const Canvas& canvas, const TextMask& mask, POINT origin, const RECT& area, std::uint32_t colour)
{
    for (const RECT& box : canvas.clip->rectangles()) {
        const RECT part = intersection(box, area);
        for (int y = part.top; y < part.bottom && part.left < part.right; y++)
            blend_row(canvas.raster, part.left, y, part.right - part.left, mask.row(part.left - origin.x, y - origin.y),
                      colour);
    }
    canvas.changed(area);
}

// The lines below and through the text in its cell.
void draw_rules(const Canvas& canvas, const RECT& cell, const RECT& bounds, const FontMetrics& metrics,
                const LOGFONTA& font, const Paint& paint)
{
    const int thickness = std::max(1, metrics.em / 16);
    const auto rule = [&](int top) {
        paint_rect(canvas, intersection({ cell.left, top, cell.right, top + thickness }, bounds), paint,
                   RasterOp(PATCOPY));
    };
    const int baseline = cell.top + metrics.ascent;
    if (font.lfUnderline)
        rule(baseline + thickness);
    if (font.lfStrikeOut)
        rule(baseline - metrics.em / 3);
}

// Draws the line into its cell (target coordinates), nothing outside `bounds`.
bool draw_line(DeviceContext& context, const Canvas& canvas, const Line& line, const RECT& cell, const RECT& bounds)
{
    if (is_empty(bounds))
        return true;
    const POINT origin{ cell.left, cell.top + line.metrics.ascent };
    Font& font = *context.state.font.get();
    const std::shared_ptr<const TextMask> mask =
        font.text_font().mask(line.utf8, line.reading, moved(bounds, -origin.x, -origin.y));
    if (!mask)
        return false;
    const Paint paint(context, context.state.text_colour);
    if (const RECT area = intersection(moved(mask->ink, origin.x, origin.y), bounds); !is_empty(area))
        blend_mask(canvas, *mask, origin, area, paint.pixel());
    draw_rules(canvas, cell, bounds, line.metrics, font.description(), paint);
    return true;
}

} // namespace

BOOL GetTextMetricsA(HDC dc, TEXTMETRICA* metrics)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    Line line;
    if (!context || !metrics || !measure(*context, "x", 1, line))
        return FALSE;
    const LOGFONTA& font = context->state.font->description();
    *metrics = {};
    metrics->tmHeight = line.metrics.height();
    metrics->tmAscent = line.metrics.ascent;
    metrics->tmDescent = line.metrics.descent;
    metrics->tmInternalLeading = line.metrics.height() - line.metrics.em;
    metrics->tmAveCharWidth = line.width;
    metrics->tmMaxCharWidth = line.metrics.em;
    metrics->tmWeight = font.lfWeight ? font.lfWeight : FW_NORMAL;
    metrics->tmDigitizedAspectX = GetDeviceCaps(dc, LOGPIXELSX);
    metrics->tmDigitizedAspectY = GetDeviceCaps(dc, LOGPIXELSY);
    metrics->tmFirstChar = ' ';
    metrics->tmLastChar = 0xFF;
    metrics->tmDefaultChar = '?';
    metrics->tmBreakChar = ' ';
    metrics->tmItalic = font.lfItalic;
    metrics->tmUnderlined = font.lfUnderline;
    metrics->tmStruckOut = font.lfStrikeOut;
    metrics->tmPitchAndFamily = font.lfPitchAndFamily;
    metrics->tmCharSet = font.lfCharSet;
    return TRUE;
}

BOOL GetTextExtentPoint32A(HDC dc, LPCSTR text, int length, LPSIZE size)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    if (!context || !size || !is_text(text, length))
        return fail(FALSE, context ? ERROR_INVALID_PARAMETER : ERROR_INVALID_HANDLE);
    Line line;
    if (!measure(*context, text, length, line))
        return FALSE;
    *size = { line.width, line.metrics.height() };
    return TRUE;
}

BOOL TextOutA(HDC dc, int x, int y, LPCSTR text, int length)
{
    if (length < 0)
        return fail(FALSE, ERROR_INVALID_PARAMETER);
    return ExtTextOutA(dc, x, y, 0, nullptr, text, static_cast<UINT>(length), nullptr);
}

BOOL ExtTextOutA(HDC dc, int x, int y, UINT options, const RECT* rect, LPCSTR text, UINT length, const INT* spacing)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    if (!context)
        return FALSE;
    if ((options & ~(ETO_OPAQUE | ETO_CLIPPED)) || (options && !rect) || spacing || !is_text(text, length))
        return fail(FALSE, ERROR_INVALID_PARAMETER);
    const Canvas canvas = context->canvas();
    RECT bounds = canvas.clip->bounds();
    const Paint background(*context, context->state.background);
    if (options & ETO_OPAQUE)
        paint_rect(canvas, context->target_rect(*rect), background, RasterOp(PATCOPY));
    if (options & ETO_CLIPPED)
        bounds = intersection(bounds, context->target_rect(*rect));
    if (length == 0)
        return TRUE;

    Line line;
    if (!measure(*context, text, static_cast<int>(length), line))
        return FALSE;
    const UINT align = context->state.text_align;
    POINT& position = context->state.position;
    const bool updates = (align & TA_UPDATECP) != 0;
    const RECT logical = updates ? cell_of(line, align, position.x, position.y) : cell_of(line, align, x, y);
    if (updates && (align & TA_CENTER) == TA_LEFT)
        position.x = logical.right;
    if (updates && (align & TA_CENTER) == TA_RIGHT)
        position.x = logical.left;
    const RECT cell = context->target_rect(logical);
    if (context->state.background_mode == OPAQUE)
        paint_rect(canvas, intersection(cell, bounds), background, RasterOp(PATCOPY));
    return draw_line(*context, canvas, line, cell, bounds);
}
