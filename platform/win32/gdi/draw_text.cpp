// DrawText: lines of text in a rectangle.
#include "platform/win32/gdi/device_context.h"
#include "platform/win32/kernel/last_error.h"

#include <winbase.h>
#include <winnls.h>

#include <algorithm>
#include <cstring>
#include <string_view>
#include <vector>

using namespace win32;

namespace {

constexpr int kLongestText = 8192;
constexpr UINT kKnownFormats = DT_CENTER | DT_RIGHT | DT_VCENTER | DT_BOTTOM | DT_WORDBREAK | DT_SINGLELINE |
                               DT_NOCLIP | DT_CALCRECT | DT_NOPREFIX | DT_RTLREADING;

// Puts back what drawing changes about a context.
class KeepState {
public:
    explicit KeepState(HDC dc) : dc_(dc) { SaveDC(dc); }
    KeepState(const KeepState&) = delete;
    KeepState& operator=(const KeepState&) = delete;
    ~KeepState() { RestoreDC(dc_, -1); }

private:
    HDC dc_;
};

// Takes the first line off `text`: up to CR, LF or both.
std::string_view take_line(std::string_view& text)
{
    const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
    const std::string_view line = text.substr(0, end);
    const bool has_both = text.substr(end, 2) == "\r\n";
    text.remove_prefix(std::min(text.size(), end + (has_both ? 2 : 1)));
    return line;
}

int width_of(HDC dc, std::string_view text)
{
    SIZE size{};
    GetTextExtentPoint32A(dc, text.data(), static_cast<int>(text.size()), &size);
    return size.cx;
}

// How much of `line` fits into `width`, cut behind a blank or on either side of a two-byte character; if nothing fits,
// up to the first such place.
std::size_t fitting(HDC dc, std::string_view line, int width)
{
    const auto fits = [&](std::size_t length) {
        const bool ends_blank = length > 0 && line[length - 1] == ' '; // may hang over
        return width_of(dc, line.substr(0, ends_blank ? length - 1 : length)) <= width;
    };
    if (fits(line.size()))
        return line.size();
    std::size_t best = 0;
    for (std::size_t at = 0; at < line.size();) {
        const bool is_pair = IsDBCSLeadByte(static_cast<BYTE>(line[at])) && at + 1 < line.size();
        const bool may_break_before = is_pair && at > 0;
        const std::size_t next = at + (is_pair ? 2 : 1);
        const bool may_break_behind = is_pair || line[at] == ' ';
        for (const std::size_t place : { may_break_before ? at : 0, may_break_behind ? next : 0 }) {
            if (place > best && best > 0 && !fits(place))
                return best;
            best = std::max(best, place);
        }
        at = next;
    }
    return best > 0 && best < line.size() ? best : line.size();
}

std::vector<std::string_view> lines_of(HDC dc, std::string_view text, int width, UINT format)
{
    std::vector<std::string_view> lines;
    if (format & DT_SINGLELINE)
        return { text };
    while (!text.empty()) {
        std::string_view line = take_line(text);
        do {
            const std::size_t length = format & DT_WORDBREAK ? fitting(dc, line, width) : line.size();
            lines.push_back(line.substr(0, length));
            line.remove_prefix(length);
        } while (!line.empty());
    }
    return lines;
}

int top_of(const RECT& rect, std::int64_t height, UINT format)
{
    if (!(format & DT_SINGLELINE))
        return rect.top;
    if (format & DT_VCENTER)
        return clamp_coordinate((std::int64_t{ rect.top } + rect.bottom - height) / 2);
    return format & DT_BOTTOM ? clamp_coordinate(rect.bottom - height) : rect.top;
}

} // namespace

int DrawTextA(HDC dc, LPCSTR text, int length, LPRECT rect, UINT format)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    if (!context)
        return 0;
    if (!text || !rect || length < -1 || (format & ~kKnownFormats) || !(format & DT_NOPREFIX))
        return fail(0, ERROR_INVALID_PARAMETER);
    const std::size_t size = length == -1 ? ::strnlen(text, kLongestText + 1) : static_cast<std::size_t>(length);
    if (size > kLongestText)
        return fail(0, ERROR_INVALID_PARAMETER);

    const KeepState keep(dc);
    context->state.text_align = TA_LEFT | TA_TOP | (format & DT_RTLREADING ? TA_RTLREADING : 0);
    FontMetrics metrics;
    int no_width = 0;
    if (!context->state.font->text_font().measure({}, Reading::left_to_right, metrics, no_width))
        return 0;
    const std::int64_t available = std::int64_t{ rect->right } - rect->left;
    const std::vector<std::string_view> lines = lines_of(
        dc, { text, size }, static_cast<int>(std::clamp<std::int64_t>(available, 0, kCoordinateLimit)), format);
    const std::int64_t height = static_cast<std::int64_t>(lines.size()) * metrics.height();

    if (format & DT_CALCRECT) {
        int widest = 0;
        for (const std::string_view line : lines)
            widest = std::max(widest, width_of(dc, line));
        rect->right = clamp_coordinate(std::int64_t{ rect->left } + widest);
        rect->bottom = clamp_coordinate(rect->top + height);
        return clamp_coordinate(height);
    }
    const UINT options = format & DT_NOCLIP ? 0 : ETO_CLIPPED;
    std::int64_t y = top_of(*rect, height, format);
    for (const std::string_view line : lines) {
        std::int64_t x = rect->left;
        if (format & DT_CENTER)
            x += (available - width_of(dc, line)) / 2;
        else if (format & DT_RIGHT)
            x += available - width_of(dc, line);
        ExtTextOutA(dc, clamp_coordinate(x), clamp_coordinate(y), options, rect, line.data(),
                    static_cast<UINT>(line.size()), nullptr);
        y += metrics.height();
    }
    return clamp_coordinate(height);
}
