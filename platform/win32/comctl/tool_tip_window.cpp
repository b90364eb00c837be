// The tool tip's window: its class, its place below the pointer, its picture.
#include "platform/win32/comctl/tool_tip.h"
#include "platform/win32/kernel/never_destroyed.h"

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>

namespace win32 {

namespace {

constexpr LONG kPaddingX = 6; // between the frame's outside and the text
constexpr LONG kPaddingY = 4;
constexpr LONG kBelowPointer = 20; // the pointer's picture is that high
constexpr LONG kAbovePointer = 4;

// Of all threads; each window's is used on its own.
class ToolTips {
public:
    void add(HWND window)
    {
        const std::lock_guard lock(mutex_);
        tips_[window] = std::make_shared<ToolTip>(window);
    }
    std::shared_ptr<ToolTip> find(HWND window)
    {
        const std::lock_guard lock(mutex_);
        const auto found = tips_.find(window);
        return found == tips_.end() ? nullptr : found->second;
    }
    void remove(HWND window)
    {
        const std::lock_guard lock(mutex_);
        tips_.erase(window);
    }

private:
    std::mutex mutex_;
    std::map<HWND, std::shared_ptr<ToolTip>> tips_;
};

ToolTips& tool_tips()
{
    static NeverDestroyed<ToolTips> tips;
    return tips.get();
}

// A context with the tip's font and colours.
class TextContext {
public:
    TextContext(HDC dc, HFONT font) : dc_(dc), previous_(SelectObject(dc, font))
    {
        SetBkMode(dc, TRANSPARENT);
        SetTextColor(dc, GetSysColor(COLOR_INFOTEXT));
    }
    TextContext(const TextContext&) = delete;
    TextContext& operator=(const TextContext&) = delete;
    ~TextContext() { SelectObject(dc_, previous_); }

private:
    HDC dc_;
    HGDIOBJ previous_;
};

HFONT create_font()
{
    NONCLIENTMETRICSA metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    return CreateFontIndirectA(&metrics.lfStatusFont);
}

// Halfway from the text's colour to the paper's: black on yellow would shout.
COLORREF frame_colour()
{
    const COLORREF text = GetSysColor(COLOR_INFOTEXT);
    const COLORREF back = GetSysColor(COLOR_INFOBK);
    return RGB((GetRValue(text) + GetRValue(back)) / 2, (GetGValue(text) + GetGValue(back)) / 2,
               (GetBValue(text) + GetBValue(back)) / 2);
}

RECT work_area_at(POINT point)
{
    MONITORINFO info{};
    info.cbSize = sizeof info;
    GetMonitorInfoA(MonitorFromPoint(point, MONITOR_DEFAULTTONEAREST), &info);
    return info.rcWork;
}

// Below the pointer, or above it where below there is no room; never beyond the area's left and upper edge.
RECT placed_at(POINT pointer, LONG width, LONG height, const RECT& area)
{
    const LONG left = std::max(area.left, std::min(pointer.x, area.right - width));
    LONG top = pointer.y + kBelowPointer;
    if (top + height > area.bottom)
        top = pointer.y - kAbovePointer - height;
    top = std::max(area.top, top);
    return { left, top, left + width, top + height };
}

// The default procedure for everything that is about the window and not about tips.
LRESULT handle_tip_message(ToolTip& tip, HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    const auto* info = reinterpret_cast<const TOOLINFOA*>(lparam);
    switch (message) {
    case TTM_ADDTOOLA:
        return tip.add(info);
    case TTM_DELTOOLA:
        tip.remove(info);
        return 0;
    case TTM_NEWTOOLRECTA:
        tip.move(info);
        return 0;
    case TTM_UPDATETIPTEXTA:
        tip.set_text(info);
        return 0;
    case TTM_GETTOOLCOUNT:
        return static_cast<LRESULT>(tip.tool_count());
    case TTM_RELAYEVENT:
        tip.relay(reinterpret_cast<const MSG*>(lparam));
        return 0;
    case TTM_ACTIVATE:
        tip.enable(wparam != 0);
        return 0;
    case TTM_POP:
        tip.pop();
        return 0;
    case TTM_SETDELAYTIME:
        tip.set_delay(wparam, lparam);
        return 0;
    case TTM_SETMAXTIPWIDTH:
        return tip.set_max_width(static_cast<int>(lparam));
    case WM_TIMER:
        tip.timer(wparam);
        return 0;
    case WM_ERASEBKGND:
        return TRUE; // painting covers all of it
    case WM_PAINT:
        tip.paint();
        return 0;
    case WM_NCHITTEST:
        return HTTRANSPARENT;
    case WM_MOUSEACTIVATE:
        return MA_NOACTIVATE;
    case WM_DESTROY:
        tip.close();
        break;
    default:
        break;
    }
    return DefWindowProcA(window, message, wparam, lparam);
}

LRESULT CALLBACK tip_procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    if (message == WM_NCCREATE) {
        // Whatever its maker asked for: in front of everything, without a frame, and never in the pointer's way.
        constexpr LONG kExtended = WS_EX_TOOLWINDOW | WS_EX_TOPMOST | WS_EX_NOACTIVATE | WS_EX_TRANSPARENT;
        SetWindowLongA(window, GWL_EXSTYLE, GetWindowLongA(window, GWL_EXSTYLE) | kExtended);
        const DWORD style = static_cast<DWORD>(GetWindowLongA(window, GWL_STYLE));
        SetWindowLongA(window, GWL_STYLE, static_cast<LONG>((style & ~(WS_CAPTION | WS_THICKFRAME)) | WS_POPUP));
        tool_tips().add(window);
    }
    const std::shared_ptr<ToolTip> tip = tool_tips().find(window); // it may be gone when the message is handled
    const LRESULT result = tip ? handle_tip_message(*tip, window, message, wparam, lparam)
                               : DefWindowProcA(window, message, wparam, lparam);
    if (message == WM_NCDESTROY)
        tool_tips().remove(window);
    return result;
}

} // namespace

UINT ToolTip::format() const
{
    return DT_NOPREFIX | DT_WORDBREAK | (reads_rtl_ ? DT_RTLREADING | DT_RIGHT : DT_LEFT);
}

// The text's rectangle when its lines wrap at `widest` pixels.
RECT ToolTip::measure(LONG widest)
{
    if (!font_)
        font_ = create_font();
    RECT text{ 0, 0, widest, 0 };
    const HDC dc = GetDC(window_);
    {
        const TextContext context(dc, font_);
        DrawTextA(dc, shown_text_.data(), static_cast<int>(shown_text_.size()), &text, format() | DT_CALCRECT);
    }
    ReleaseDC(window_, dc);
    return text;
}

void ToolTip::place()
{
    POINT pointer{};
    GetCursorPos(&pointer);
    const RECT area = work_area_at(pointer);
    const LONG room = std::max<LONG>(area.right - area.left - 2 * kPaddingX, 1);
    const RECT text = measure(max_width_ > 0 ? std::min<LONG>(room, max_width_) : room);
    const LONG width = std::min(text.right - text.left, room) + 2 * kPaddingX;
    const LONG height = text.bottom - text.top + 2 * kPaddingY;
    const RECT rect = placed_at(pointer, width, height, area);
    SetWindowPos(window_, HWND_TOPMOST, rect.left, rect.top, width, height, SWP_NOACTIVATE | SWP_SHOWWINDOW);
    InvalidateRect(window_, nullptr, FALSE);
    UpdateWindow(window_);
}

void ToolTip::paint()
{
    PAINTSTRUCT painting;
    const HDC dc = BeginPaint(window_, &painting);
    RECT client{};
    GetClientRect(window_, &client);
    FillRect(dc, &client, GetSysColorBrush(COLOR_INFOBK));
    const HBRUSH frame = CreateSolidBrush(frame_colour());
    FrameRect(dc, &client, frame);
    DeleteObject(frame);
    RECT text{ client.left + kPaddingX, client.top + kPaddingY, client.right - kPaddingX, client.bottom - kPaddingY };
    if (font_) {
        const TextContext context(dc, font_);
        DrawTextA(dc, shown_text_.data(), static_cast<int>(shown_text_.size()), &text, format());
    }
    EndPaint(window_, &painting);
}

} // namespace win32

void InitCommonControls()
{
    WNDCLASSA tips{};
    tips.style = CS_GLOBALCLASS | CS_DBLCLKS | CS_SAVEBITS;
    tips.lpfnWndProc = win32::tip_procedure;
    tips.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    tips.lpszClassName = TOOLTIPS_CLASSA;
    RegisterClassA(&tips); // refused when it is known already
}
