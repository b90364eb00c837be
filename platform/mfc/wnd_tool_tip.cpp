// Tool tips of a window: its virtual OnToolHitTest says what lies under the pointer, and one tip window of the thread
// shows it. The thread's messages pass here before they are dispatched.
#include "afxwin/wnd.h"
#include "thread_state.h"

#include <cstdlib>
#include <utility>

namespace {

using mfc::ToolTipState;

ToolTipState& tool_tips()
{
    return mfc::thread_state().tool_tips;
}

bool is_pointer_message(UINT message)
{
    switch (message) {
    case WM_MOUSEMOVE:
    case WM_NCMOUSEMOVE:
    case WM_LBUTTONUP:
    case WM_RBUTTONUP:
    case WM_MBUTTONUP:
        return true;
    default:
        return false;
    }
}

// What makes a tip go, and not come again before the pointer has left the tool.
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
        return true;
    default:
        return message >= WM_KEYFIRST && message <= WM_KEYLAST;
    }
}

bool is_a_button_down()
{
    return ::GetKeyState(VK_LBUTTON) < 0 || ::GetKeyState(VK_RBUTTON) < 0 || ::GetKeyState(VK_MBUTTON) < 0;
}

const CWnd* nearest_with_tips(HWND window)
{
    for (; window; window = ::GetParent(window)) {
        if (const CWnd* const object = CWnd::FromHandlePermanent(window); object && (object->m_nFlags & WF_TOOLTIPS))
            return object;
    }
    return nullptr;
}

// The thread's tip as a popup of `owner`, with which it goes; null: the system refused.
HWND tip_of(HWND owner)
{
    HWND& tip = tool_tips().tip;
    if (::IsWindow(tip) && ::GetWindow(tip, GW_OWNER) == owner)
        return tip;
    if (tip)
        ::DestroyWindow(tip);
    ::InitCommonControls();
    tip = ::CreateWindowExA(0, TOOLTIPS_CLASSA, nullptr, WS_POPUP | TTS_ALWAYSTIP, 0, 0, 0, 0, owner, nullptr, nullptr,
                            nullptr);
    return tip;
}

void send(HWND tip, UINT message, WPARAM wparam, const void* structure)
{
    ::SendMessageA(tip, message, wparam, reinterpret_cast<LPARAM>(structure));
}

// The pointer is on no tool of ours any more, and the tip learns of it.
void leave_tool()
{
    ToolTipState& state = tool_tips();
    if (std::exchange(state.hit_window, nullptr))
        send(state.tip, TTM_DELTOOLA, 0, &state.tool);
    state.hit = -1;
}

} // namespace

BOOL CWnd::EnableToolTips(BOOL bEnable)
{
    ToolTipState& state = tool_tips();
    if (bEnable) {
        state.are_used = true;
        m_nFlags |= WF_TOOLTIPS;
        return TRUE;
    }
    m_nFlags &= ~WF_TOOLTIPS;
    if (state.hit_window == m_hWnd)
        leave_tool();
    return TRUE;
}

void CWnd::FilterToolTipMessage(MSG* pMsg)
{
    ToolTipState& state = tool_tips();
    const bool from_pointer = is_pointer_message(pMsg->message);
    if (!state.are_used || !(from_pointer || is_press(pMsg->message)))
        return;
    const CWnd* const with_tips = nearest_with_tips(pMsg->hwnd);
    if (!with_tips && from_pointer)
        leave_tool();
    if (with_tips != this)
        return;
    if (!from_pointer)
        send(state.tip, TTM_RELAYEVENT, 0, pMsg);
    else if (!is_a_button_down())
        follow_pointer(*pMsg);
}

void CWnd::follow_pointer(const MSG& message)
{
    ToolTipState& state = tool_tips();
    const HWND top = ::GetAncestor(m_hWnd, GA_ROOT);
    const HWND tip = tip_of(top);
    CPoint point(message.pt);
    ScreenToClient(&point);
    TOOLINFOA tool = {};
    tool.cbSize = sizeof(tool);
    const int hit = OnToolHitTest(point, &tool);
    if (hit != state.hit || m_hWnd != state.hit_window) {
        if (hit != -1)
            send(tip, TTM_ADDTOOLA, 0, &tool);
        send(tip, TTM_ACTIVATE, hit != -1 && ::GetActiveWindow() == top, nullptr);
        send(tip, TTM_RELAYEVENT, 0, &message); // before the old tool goes, so that the tip moves on from it
        const bool is_the_same_tool = tool.hwnd == state.tool.hwnd && tool.uId == state.tool.uId;
        if (state.tool.cbSize != 0 && !is_the_same_tool)
            send(tip, TTM_DELTOOLA, 0, &state.tool);
        state.hit = hit;
        state.hit_window = m_hWnd;
        state.tool = tool;
        state.tool.lpszText = nullptr; // freed below
    } else if (hit != -1) {
        send(tip, TTM_RELAYEVENT, 0, &message);
    }
    if (tool.lpszText != LPSTR_TEXTCALLBACKA)
        std::free(tool.lpszText);
}

// A child window is a tool whose text its parent is asked for (TTN_NEEDTEXTA).
int CWnd::OnToolHitTest(CPoint point, TOOLINFOA* pTI) const
{
    ClientToScreen(&point);
    for (HWND child = ::GetTopWindow(m_hWnd); child; child = ::GetWindow(child, GW_HWNDNEXT)) {
        constexpr int kNoNumber = 0xFFFF;
        CRect place;
        ::GetWindowRect(child, &place);
        const int id = LOWORD(static_cast<UINT>(::GetDlgCtrlID(child)));
        if (id == kNoNumber || !::IsWindowVisible(child) || !place.PtInRect(point))
            continue;
        if (pTI) {
            pTI->hwnd = m_hWnd;
            pTI->uId = reinterpret_cast<UINT_PTR>(child);
            pTI->uFlags |= TTF_IDISHWND;
            pTI->lpszText = LPSTR_TEXTCALLBACKA;
        }
        return id;
    }
    return -1;
}
