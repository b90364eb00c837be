// Metrics and colours: the classic look, one table each.
#include "platform/win32/kernel/last_error.h"
#include "platform/win32/screen/geometry.h"
#include "platform/win32/user/input.h"
#include "winbase.h"
#include "wingdi.h"
#include "winuser.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>
#include <mutex>

namespace {

using namespace win32;

struct Metric {
    int index;
    int value;
};
constexpr Metric kMetrics[] = {
    { SM_CXVSCROLL, 16 },   { SM_CYHSCROLL, 16 },   { SM_CYCAPTION, 19 },   { SM_CXBORDER, 1 },
    { SM_CYBORDER, 1 },     { SM_CXFIXEDFRAME, 3 }, { SM_CYFIXEDFRAME, 3 }, { SM_CXICON, 32 },
    { SM_CYICON, 32 },      { SM_CXCURSOR, 32 },    { SM_CYCURSOR, 32 },    { SM_CYMENU, 19 },
    { SM_MOUSEPRESENT, 1 }, { SM_CXMIN, 112 },      { SM_CYMIN, 27 },       { SM_CXSIZE, 18 },
    { SM_CYSIZE, 18 },      { SM_CXFRAME, 4 },      { SM_CYFRAME, 4 },      { SM_CXMINTRACK, 112 },
    { SM_CYMINTRACK, 27 },  { SM_CXDOUBLECLK, 4 },  { SM_CYDOUBLECLK, 4 },  { SM_CMOUSEBUTTONS, 3 },
    { SM_CXEDGE, 2 },       { SM_CYEDGE, 2 },       { SM_CXSMICON, 16 },    { SM_CYSMICON, 16 },
    { SM_CYSMCAPTION, 16 }, { SM_CXSMSIZE, 12 },    { SM_CYSMSIZE, 15 },    { SM_CXMENUSIZE, 18 },
    { SM_CYMENUSIZE, 18 },  { SM_CXDRAG, 4 },       { SM_CYDRAG, 4 },       { SM_CXMENUCHECK, 13 },
    { SM_CYMENUCHECK, 13 },
};

constexpr COLORREF kColours[] = {
    RGB(212, 208, 200), // COLOR_SCROLLBAR
    RGB(58, 110, 165),  // COLOR_BACKGROUND
    RGB(10, 36, 106),   // COLOR_ACTIVECAPTION
    RGB(128, 128, 128), // COLOR_INACTIVECAPTION
    RGB(212, 208, 200), // COLOR_MENU
    RGB(255, 255, 255), // COLOR_WINDOW
    RGB(0, 0, 0),       // COLOR_WINDOWFRAME
    RGB(0, 0, 0),       // COLOR_MENUTEXT
    RGB(0, 0, 0),       // COLOR_WINDOWTEXT
    RGB(255, 255, 255), // COLOR_CAPTIONTEXT
    RGB(212, 208, 200), // COLOR_ACTIVEBORDER
    RGB(212, 208, 200), // COLOR_INACTIVEBORDER
    RGB(128, 128, 128), // COLOR_APPWORKSPACE
    RGB(10, 36, 106),   // COLOR_HIGHLIGHT
    RGB(255, 255, 255), // COLOR_HIGHLIGHTTEXT
    RGB(212, 208, 200), // COLOR_BTNFACE
    RGB(128, 128, 128), // COLOR_BTNSHADOW
    RGB(128, 128, 128), // COLOR_GRAYTEXT
    RGB(0, 0, 0),       // COLOR_BTNTEXT
    RGB(212, 208, 200), // COLOR_INACTIVECAPTIONTEXT
    RGB(255, 255, 255), // COLOR_BTNHIGHLIGHT
    RGB(64, 64, 64),    // COLOR_3DDKSHADOW
    RGB(212, 208, 200), // COLOR_3DLIGHT
    RGB(0, 0, 0),       // COLOR_INFOTEXT
    RGB(255, 255, 225), // COLOR_INFOBK
    RGB(181, 181, 181), // 25 has no name
    RGB(0, 0, 128),     // COLOR_HOTLIGHT
    RGB(166, 202, 240), // COLOR_GRADIENTACTIVECAPTION
    RGB(192, 192, 192), // COLOR_GRADIENTINACTIVECAPTION
    RGB(10, 36, 106),   // COLOR_MENUHILIGHT
    RGB(212, 208, 200), // COLOR_MENUBAR
};
static_assert(std::size(kColours) == COLOR_MENUBAR + 1);

RECT all_monitors(const std::vector<Monitor>& monitors)
{
    RECT all{};
    for (const Monitor& monitor : monitors)
        UnionRect(&all, &all, &monitor.bounds);
    return all;
}

// The metrics that depend on the display. -1: not one of them.
int display_metric(int index)
{
    constexpr int kTrackMargin = 12; // how much larger than the desktop a window may be dragged
    const std::vector<Monitor> monitors = ask_monitors();
    const Monitor& primary = monitors.front();
    switch (index) {
    case SM_CXSCREEN:
        return width_of(primary.bounds);
    case SM_CYSCREEN:
        return height_of(primary.bounds);
    case SM_CXFULLSCREEN:
        return width_of(primary.work_area);
    case SM_CYFULLSCREEN:
        return height_of(primary.work_area) - GetSystemMetrics(SM_CYCAPTION);
    case SM_CXMAXTRACK:
        return width_of(all_monitors(monitors)) + kTrackMargin;
    case SM_CYMAXTRACK:
        return height_of(all_monitors(monitors)) + kTrackMargin;
    case SM_CXMAXIMIZED:
        return width_of(primary.work_area) + 2 * GetSystemMetrics(SM_CXFRAME);
    case SM_CYMAXIMIZED:
        return height_of(primary.work_area) + 2 * GetSystemMetrics(SM_CYFRAME);
    case SM_XVIRTUALSCREEN:
        return all_monitors(monitors).left;
    case SM_YVIRTUALSCREEN:
        return all_monitors(monitors).top;
    case SM_CXVIRTUALSCREEN:
        return width_of(all_monitors(monitors));
    case SM_CYVIRTUALSCREEN:
        return height_of(all_monitors(monitors));
    case SM_CMONITORS:
        return static_cast<int>(monitors.size());
    default:
        return 0;
    }
}

LOGFONTA frame_font(LONG weight)
{
    constexpr LONG kEm = 11; // what fits the captions and menus above
    LOGFONTA font{};
    font.lfHeight = -kEm;
    font.lfWeight = weight;
    font.lfCharSet = DEFAULT_CHARSET;
    std::strcpy(font.lfFaceName, "Tahoma");
    return font;
}

NONCLIENTMETRICSA non_client_metrics()
{
    NONCLIENTMETRICSA metrics{};
    metrics.cbSize = sizeof(metrics);
    metrics.iBorderWidth = GetSystemMetrics(SM_CXBORDER);
    metrics.iScrollWidth = GetSystemMetrics(SM_CXVSCROLL);
    metrics.iScrollHeight = GetSystemMetrics(SM_CYHSCROLL);
    metrics.iCaptionWidth = GetSystemMetrics(SM_CXSIZE);
    metrics.iCaptionHeight = GetSystemMetrics(SM_CYSIZE);
    metrics.lfCaptionFont = frame_font(FW_BOLD);
    metrics.iSmCaptionWidth = GetSystemMetrics(SM_CXSMSIZE);
    metrics.iSmCaptionHeight = GetSystemMetrics(SM_CYSMSIZE);
    metrics.lfSmCaptionFont = frame_font(FW_BOLD);
    metrics.iMenuWidth = GetSystemMetrics(SM_CXMENUSIZE);
    metrics.iMenuHeight = GetSystemMetrics(SM_CYMENUSIZE);
    metrics.lfMenuFont = frame_font(FW_NORMAL);
    metrics.lfStatusFont = frame_font(FW_NORMAL);
    metrics.lfMessageFont = frame_font(FW_NORMAL);
    return metrics;
}

} // namespace

int GetSystemMetrics(int index)
{
    const auto* metric =
        std::find_if(std::begin(kMetrics), std::end(kMetrics), [index](const Metric& m) { return m.index == index; });
    return metric != std::end(kMetrics) ? metric->value : display_metric(index);
}

COLORREF GetSysColor(int index)
{
    return index >= 0 && index < static_cast<int>(std::size(kColours)) ? kColours[index] : 0;
}

HBRUSH GetSysColorBrush(int index)
{
    static std::mutex& mutex = *std::make_unique<std::mutex>().release();
    static std::array<HBRUSH, std::size(kColours)> brushes{};
    if (index < 0 || index >= static_cast<int>(brushes.size()))
        return nullptr;
    const std::lock_guard lock(mutex);
    HBRUSH& brush = brushes[static_cast<std::size_t>(index)];
    if (!brush)
        brush = CreateSolidBrush(kColours[index]);
    return brush;
}

BOOL SystemParametersInfoA(UINT action, UINT, PVOID data, UINT)
{
    if (action == SPI_GETNONCLIENTMETRICS && data &&
        static_cast<NONCLIENTMETRICSA*>(data)->cbSize == sizeof(NONCLIENTMETRICSA)) {
        *static_cast<NONCLIENTMETRICSA*>(data) = non_client_metrics();
        return TRUE;
    }
    if (action != SPI_GETWORKAREA || !data)
        return fail(FALSE, ERROR_INVALID_PARAMETER);
    *static_cast<RECT*>(data) = ask_monitors().front().work_area;
    return TRUE;
}
