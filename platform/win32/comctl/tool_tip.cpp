#include "platform/win32/comctl/tool_tip.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <utility>

namespace win32 {

namespace {

constexpr std::size_t kLongestText = 1024; // bytes; of more nobody could read the end in time
constexpr UINT kSizeWithoutParameter = offsetof(TOOLINFOA, lParam);

enum Timer : UINT_PTR { kRestTimer = 1, kPopTimer = 2, kWatchTimer = 3 };
constexpr UINT kWatchPeriod = 100; // milliseconds; no message tells that the pointer went to another program

std::string copied(LPCSTR text)
{
    return text ? std::string(text, ::strnlen(text, kLongestText)) : std::string();
}

bool is_press(UINT message)
{
    switch (message) {
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
    case WM_RBUTTONDOWN:
    case WM_RBUTTONDBLCLK:
    case WM_MBUTTONDOWN:
    case WM_MBUTTONDBLCLK:
    case WM_NCLBUTTONDOWN:
    case WM_NCLBUTTONDBLCLK:
    case WM_NCRBUTTONDOWN:
    case WM_NCRBUTTONDBLCLK:
    case WM_NCMBUTTONDOWN:
    case WM_NCMBUTTONDBLCLK:
    case WM_MOUSEWHEEL:
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
        return true;
    default:
        return false;
    }
}

} // namespace

RECT ToolTip::Tool::area() const
{
    RECT client{};
    if (flags & TTF_IDISHWND)
        GetClientRect(area_window(), &client);
    return flags & TTF_IDISHWND ? client : rect;
}

ToolTip::~ToolTip()
{
    if (font_)
        DeleteObject(font_);
}

// None: the structure is of another size.
std::optional<ToolTip::Tool> ToolTip::tool_from(const TOOLINFOA* info)
{
    if (!info || (info->cbSize != sizeof(TOOLINFOA) && info->cbSize != kSizeWithoutParameter))
        return std::nullopt;
    Tool tool{ info->hwnd, info->uId, info->uFlags, info->rect, std::nullopt, 0 };
    if (info->lpszText != LPSTR_TEXTCALLBACKA)
        tool.text = copied(info->lpszText);
    if (info->cbSize == sizeof(TOOLINFOA))
        tool.parameter = info->lParam;
    return tool;
}

std::vector<ToolTip::Tool>::iterator ToolTip::find(ToolKey key)
{
    return std::find_if(tools_.begin(), tools_.end(), [&](const Tool& tool) {
        return ToolKey{ tool.window, tool.id } == key;
    });
}

bool ToolTip::add(const TOOLINFOA* info)
{
    std::optional<Tool> tool = tool_from(info);
    if (!tool)
        return false;
    const auto known = find({ tool->window, tool->id });
    if (known == tools_.end())
        tools_.push_back(std::move(*tool));
    else
        *known = std::move(*tool);
    return true;
}

void ToolTip::remove(const TOOLINFOA* info)
{
    if (!tool_from(info))
        return;
    const ToolKey key{ info->hwnd, info->uId };
    if (const auto tool = find(key); tool != tools_.end())
        tools_.erase(tool);
    if (current_ == key) {
        hide(Phase::away);
        current_.reset();
    }
}

void ToolTip::move(const TOOLINFOA* info)
{
    if (!tool_from(info))
        return;
    if (const auto tool = find({ info->hwnd, info->uId }); tool != tools_.end())
        tool->rect = info->rect;
}

void ToolTip::set_text(const TOOLINFOA* info)
{
    std::optional<Tool> changed = tool_from(info);
    const auto tool = changed ? find({ info->hwnd, info->uId }) : tools_.end();
    if (tool == tools_.end())
        return;
    tool->text = std::move(changed->text);
    if (phase_ == Phase::shown && current_ == ToolKey{ info->hwnd, info->uId })
        show();
}

void ToolTip::enable(bool enabled)
{
    enabled_ = enabled;
    if (!enabled)
        hide(Phase::done);
}

void ToolTip::pop()
{
    if (phase_ == Phase::shown)
        hide(Phase::done);
}

void ToolTip::set_delay(WPARAM which, LPARAM milliseconds)
{
    const auto asked = static_cast<SHORT>(LOWORD(static_cast<ULONG_PTR>(milliseconds)));
    const Delays usual = usual_delays(GetDoubleClickTime());
    const auto set = [asked](UINT& delay, UINT otherwise) { delay = asked < 0 ? otherwise : static_cast<UINT>(asked); };
    switch (which) {
    case TTDT_AUTOMATIC:
        delays_ = asked < 0 ? usual : usual_delays(static_cast<UINT>(asked));
        break;
    case TTDT_RESHOW:
        set(delays_.reshow, usual.reshow);
        break;
    case TTDT_AUTOPOP:
        set(delays_.pop, usual.pop);
        break;
    case TTDT_INITIAL:
        set(delays_.initial, usual.initial);
        break;
    default:
        break;
    }
}

int ToolTip::set_max_width(int width)
{
    return std::exchange(max_width_, width);
}

void ToolTip::relay(const MSG* message)
{
    if (!message)
        return;
    if (message->message == WM_MOUSEMOVE || message->message == WM_NCMOUSEMOVE)
        follow_pointer(*message);
    else if (is_press(message->message) && phase_ != Phase::away)
        hide(Phase::done);
}

// The tool on top is the one added last.
const ToolTip::Tool* ToolTip::tool_at(HWND window, POINT point) const
{
    const auto found = std::find_if(tools_.rbegin(), tools_.rend(), [&](const Tool& tool) {
        const RECT area = tool.area();
        return tool.area_window() == window && PtInRect(&area, point);
    });
    return found == tools_.rend() ? nullptr : &*found;
}

void ToolTip::follow_pointer(const MSG& message)
{
    POINT on_screen{ GET_X_LPARAM(message.lParam), GET_Y_LPARAM(message.lParam) };
    if (message.message == WM_MOUSEMOVE)
        ClientToScreen(message.hwnd, &on_screen);
    POINT in_client = on_screen;
    ScreenToClient(message.hwnd, &in_client);
    const Tool* tool = tool_at(message.hwnd, in_client);
    const std::optional<ToolKey> now = tool ? std::optional(ToolKey{ tool->window, tool->id }) : std::nullopt;
    const bool moved = on_screen.x != rested_at_.x || on_screen.y != rested_at_.y;
    rested_at_ = on_screen;
    if (now != current_) {
        const UINT delay = phase_ == Phase::shown ? delays_.reshow : delays_.initial;
        hide(Phase::away);
        current_ = now;
        if (now && enabled_) {
            phase_ = Phase::resting;
            SetTimer(window_, kRestTimer, delay, nullptr);
        }
    } else if (phase_ == Phase::resting && moved) {
        SetTimer(window_, kRestTimer, delays_.initial, nullptr);
    }
}

void ToolTip::timer(UINT_PTR id)
{
    if (id == kRestTimer)
        return rest();
    if (phase_ != Phase::shown || !current_)
        return;
    const auto tool = find(*current_);
    const bool left = tool == tools_.end() || !is_over(*tool);
    if (left) {
        hide(Phase::away);
        current_.reset();
    } else if (id == kPopTimer || !may_show(*tool)) {
        hide(Phase::done);
    }
}

// The pointer rested for the time asked.
void ToolTip::rest()
{
    KillTimer(window_, kRestTimer);
    if (phase_ != Phase::resting || !current_)
        return;
    const auto tool = find(*current_);
    if (tool != tools_.end() && is_over(*tool)) {
        phase_ = Phase::done; // unless it can be shown
        show();
    } else {
        phase_ = Phase::away;
        current_.reset();
    }
}

bool ToolTip::is_over(const Tool& tool) const
{
    POINT point{};
    if (!IsWindowVisible(tool.area_window()) || !GetCursorPos(&point))
        return false;
    const HWND under = WindowFromPoint(point);
    if (under != tool.area_window() && under != window_ && !IsChild(tool.area_window(), under))
        return false;
    ScreenToClient(tool.area_window(), &point);
    const RECT area = tool.area();
    return PtInRect(&area, point);
}

bool ToolTip::may_show(const Tool& tool) const
{
    const bool always = (GetWindowLongA(window_, GWL_STYLE) & static_cast<LONG>(TTS_ALWAYSTIP)) != 0;
    return enabled_ && !closed_ && (always || GetAncestor(tool.area_window(), GA_ROOT) == GetActiveWindow());
}

// The text as it is drawn; asking for it may change everything here.
std::string ToolTip::text_of(Tool tool)
{
    if (!tool.text) {
        NMTTDISPINFOA asked{};
        asked.hdr = { window_, tool.id, TTN_NEEDTEXTA };
        asked.lpszText = asked.szText;
        asked.uFlags = tool.flags;
        asked.lParam = tool.parameter;
        SendMessageA(tool.window, WM_NOTIFY, tool.id, reinterpret_cast<LPARAM>(&asked));
        asked.szText[sizeof asked.szText - 1] = '\0';
        tool.text = copied(asked.lpszText && asked.lpszText != LPSTR_TEXTCALLBACKA ? asked.lpszText : asked.szText);
    }
    if (GetWindowLongA(window_, GWL_STYLE) & static_cast<LONG>(TTS_NOPREFIX))
        return *tool.text;
    std::string text; // of a run of & the first is left out; no character's second byte is one
    for (std::size_t i = 0; i < tool.text->size(); i++) {
        if ((*tool.text)[i] != '&' || (i > 0 && (*tool.text)[i - 1] == '&'))
            text += (*tool.text)[i];
    }
    return text;
}

void ToolTip::show()
{
    const auto tool = current_ ? find(*current_) : tools_.end();
    if (tool == tools_.end() || !may_show(*tool))
        return hide(Phase::done);
    const ToolKey key = *current_;
    const bool reads_rtl = (tool->flags & TTF_RTLREADING) != 0;
    std::string text = text_of(*tool);
    if (closed_ || current_ != key)
        return;
    if (text.empty())
        return hide(Phase::done);
    shown_text_ = std::move(text);
    reads_rtl_ = reads_rtl;
    SetWindowTextA(window_, shown_text_.c_str());
    phase_ = Phase::shown;
    place();
    SetTimer(window_, kPopTimer, delays_.pop, nullptr);
    SetTimer(window_, kWatchTimer, kWatchPeriod, nullptr);
}

void ToolTip::hide(Phase then)
{
    for (const UINT_PTR id : { kRestTimer, kPopTimer, kWatchTimer })
        KillTimer(window_, id);
    if (std::exchange(phase_, then) == Phase::shown && !closed_)
        ShowWindow(window_, SW_HIDE);
}

} // namespace win32
