// The road of a message through a window's object.
#include "afxwin/app.h"
#include "afxwin/wnd.h"
#include "thread_state.h"
#include "wnd_proc.h"

#include "afx/exception.h"

#include <utility>
#include <vector>

BEGIN_MESSAGE_MAP(CWnd, CCmdTarget)
ON_WM_NCDESTROY()
END_MESSAGE_MAP()

namespace {

// While a message is handled it is the thread's last message; the one before it is again afterwards, as handlers send
// messages of their own.
class LastMessage {
public:
    explicit LastMessage(const MSG& message) : outer_(std::exchange(mfc::thread_state().last_message, message)) {}
    ~LastMessage() { mfc::thread_state().last_message = outer_; }
    LastMessage(const LastMessage&) = delete;
    LastMessage& operator=(const LastMessage&) = delete;

private:
    const MSG outer_;
};

// Exceptions of the framework end here: the system's functions that called us know nothing of them.
LRESULT result_after_exception(HWND window, UINT message)
{
    if (message == WM_PAINT)
        ::ValidateRect(window, nullptr); // else the same paint fails for ever
    return message == WM_CREATE ? -1 : 0;
}

bool is_first_message(UINT message)
{
    return message == WM_GETMINMAXINFO || message == WM_NCCREATE;
}

// Notes whether a command is enabled.
class EnabledProbe : public CCmdUI {
public:
    void Enable(BOOL bOn) override
    {
        m_bEnableChanged = TRUE;
        is_enabled = bOn != FALSE;
    }
    bool is_enabled = true;
};

} // namespace

LRESULT CALLBACK AfxWndProc(HWND hWnd, UINT nMsg, WPARAM wParam, LPARAM lParam)
{
    mfc::ThreadState& state = mfc::thread_state();
    CWnd* window = state.windows.permanent(hWnd);
    if (!window && state.creating && is_first_message(nMsg)) {
        window = std::exchange(state.creating, nullptr);
        window->attach_as(hWnd);
    }
    if (!window)
        return ::DefWindowProcA(hWnd, nMsg, wParam, lParam);

    const LastMessage last({ hWnd, nMsg, wParam, lParam, 0, {} });
    try {
        return window->WindowProc(nMsg, wParam, lParam);
    } catch (CException* e) {
        e->Delete();
        return result_after_exception(hWnd, nMsg);
    }
}

LRESULT CWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    LRESULT result = 0;
    if (OnWndMsg(message, wParam, lParam, &result))
        return result; // this object may be gone
    return DefWindowProc(message, wParam, lParam);
}

BOOL CWnd::OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* pResult)
{
    if (message == WM_COMMAND) {
        *pResult = 0;
        return OnCommand(wParam, lParam);
    }
    const AFX_MSGMAP_ENTRY* const entry = GetMessageMap()->find(message);
    if (!entry)
        return FALSE;
    *pResult = entry->pfnMessage(this, wParam, lParam);
    return TRUE;
}

LRESULT CWnd::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (super_)
        return ::CallWindowProcA(super_, m_hWnd, message, wParam, lParam);
    return ::DefWindowProcA(m_hWnd, message, wParam, lParam);
}

LRESULT CWnd::Default()
{
    const MSG last = mfc::thread_state().last_message;
    return DefWindowProc(last.message, last.wParam, last.lParam);
}

BOOL CWnd::OnCommand(WPARAM wParam, LPARAM lParam)
{
    const UINT id = LOWORD(wParam);
    if (id == 0)
        return FALSE;
    if (lParam != 0)
        return OnCmdMsg(id, HIWORD(wParam), nullptr, nullptr);
    const HWND window = m_hWnd;
    EnabledProbe probe; // a command may have been disabled since it was chosen
    probe.m_nID = id;
    OnCmdMsg(id, CN_UPDATE_COMMAND_UI, &probe, nullptr);
    if (!probe.is_enabled || FromHandlePermanent(window) != this)
        return TRUE; // disabled, or the question was this window's end
    return OnCmdMsg(id, CN_COMMAND, nullptr, nullptr);
}

BOOL CWnd::OnCmdMsg(UINT nID, int nCode, void* pExtra, AFX_CMDHANDLERINFO* pHandlerInfo)
{
    return CCmdTarget::OnCmdMsg(nID, nCode, pExtra, pHandlerInfo);
}

BOOL CWnd::PreTranslateMessage(MSG* pMsg)
{
    FilterToolTipMessage(pMsg);
    return FALSE;
}

namespace {

std::vector<HWND> children_of(HWND window)
{
    std::vector<HWND> children;
    for (HWND child = ::GetTopWindow(window); child; child = ::GetWindow(child, GW_HWNDNEXT))
        children.push_back(child);
    return children; // a copy: a message may destroy any of them
}

} // namespace

void CWnd::SendMessageToDescendants(UINT message, WPARAM wParam, LPARAM lParam, BOOL bDeep, BOOL bOnlyPerm)
{
    for (const HWND child : children_of(m_hWnd)) {
        if (!bOnlyPerm || FromHandlePermanent(child))
            ::SendMessageA(child, message, wParam, lParam);
        if (bDeep && ::IsWindow(child))
            FromHandle(child)->SendMessageToDescendants(message, wParam, lParam, bDeep, bOnlyPerm);
    }
}

void CWnd::UpdateDialogControls(CCmdTarget* pTarget, BOOL bDisableIfNoHndler)
{
    const HWND window = m_hWnd;
    for (const HWND child : children_of(window)) {
        if (!::IsWindow(window))
            return; // a handler destroyed it, and this object may be gone
        if (!::IsWindow(child))
            continue;
        CCmdUI state;
        state.m_pOther = FromHandle(child);
        state.m_nID = LOWORD(static_cast<UINT>(::GetDlgCtrlID(child)));
        // What this window itself answers comes first; the target may be another one.
        if (!CWnd::OnCmdMsg(state.m_nID, CN_UPDATE_COMMAND_UI, &state, nullptr))
            state.DoUpdate(pTarget, bDisableIfNoHndler);
    }
}
