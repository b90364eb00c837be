#include "afxwin/mdi.h"

#include "afxwin/app.h"

#include <utility>

IMPLEMENT_DYNCREATE(CMDIFrameWnd, CFrameWnd)
IMPLEMENT_DYNCREATE(CMDIChildWnd, CFrameWnd)

BEGIN_MESSAGE_MAP(CMDIFrameWnd, CFrameWnd)
ON_WM_CREATE()
ON_WM_DESTROY()
ON_WM_NCACTIVATE()
END_MESSAGE_MAP()

BEGIN_MESSAGE_MAP(CMDIChildWnd, CFrameWnd)
ON_WM_NCPAINT()
ON_WM_NCACTIVATE()
END_MESSAGE_MAP()

// ---- The frame.

BOOL CMDIFrameWnd::PreCreateWindow(CREATESTRUCTA& cs)
{
    if (!CFrameWnd::PreCreateWindow(cs))
        return FALSE;
    cs.dwExStyle &= ~WS_EX_CLIENTEDGE; // the client window has it
    return TRUE;
}

int CMDIFrameWnd::OnCreate(LPCREATESTRUCTA lpCreateStruct)
{
    client_ = std::make_unique<CWnd>();
    const LPCSTR pszClass =
        AfxRegisterWndClass(CS_DBLCLKS, ::LoadCursorA(nullptr, IDC_ARROW), ::GetSysColorBrush(COLOR_APPWORKSPACE));
    if (!client_->CreateEx(WS_EX_CLIENTEDGE, pszClass, nullptr,
                           WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_CLIPSIBLINGS, CRect(0, 0, 0, 0), this,
                           AFX_IDW_PANE_FIRST))
        return -1;
    m_hWndMDIClient = client_->m_hWnd;
    return CFrameWnd::OnCreate(lpCreateStruct);
}

void CMDIFrameWnd::OnDestroy()
{
    active_ = nullptr; // the children go too, and none follows another
    CFrameWnd::OnDestroy();
}

CMDIChildWnd* CMDIFrameWnd::MDIGetActive(BOOL* pbMaximized) const
{
    if (pbMaximized)
        *pbMaximized = active_ && ::IsZoomed(active_);
    return static_cast<CMDIChildWnd*>(FromHandlePermanent(active_));
}

void CMDIFrameWnd::MDIActivate(CWnd* pWndActivate)
{
    if (pWndActivate->IsKindOf(RUNTIME_CLASS(CMDIChildWnd)) && ::GetParent(*pWndActivate) == m_hWndMDIClient)
        activate(*pWndActivate);
}

bool CMDIFrameWnd::is_drawn_active() const
{
    return IsWindowEnabled() && (::GetActiveWindow() == m_hWnd || (m_nFlags & WF_STAYACTIVE));
}

void CMDIFrameWnd::activate(HWND child)
{
    if (child == active_)
        return;
    const HWND frame = m_hWnd;
    const HWND before = std::exchange(active_, child);
    const auto tell = [=](HWND window) {
        ::SendMessageA(window, WM_MDIACTIVATE, reinterpret_cast<WPARAM>(before), reinterpret_cast<LPARAM>(child));
    };
    if (before) {
        ::SendMessageA(before, WM_NCACTIVATE, FALSE, 0);
        tell(before);
    }
    // Any of these messages may destroy the child, or this frame and its object.
    const auto is_still_active = [=, this] { return FromHandlePermanent(frame) == this && active_ == child; };
    if (!child || !is_still_active())
        return;
    const bool is_frame_active = is_drawn_active();
    ::SetWindowPos(child, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    tell(child);
    if (is_still_active())
        ::SendMessageA(child, WM_NCACTIVATE, is_frame_active, 0);
    if (is_frame_active && is_still_active())
        ::SetFocus(child);
}

void CMDIFrameWnd::forget(HWND child)
{
    if (child != active_)
        return;
    HWND next = ::GetTopWindow(m_hWndMDIClient);
    while (next && (next == child || !(::GetWindowLongA(next, GWL_STYLE) & static_cast<LONG>(WS_VISIBLE)) ||
                    !FromHandlePermanent(next)))
        next = ::GetWindow(next, GW_HWNDNEXT);
    activate(next);
}

CRect CMDIFrameWnd::next_place()
{
    constexpr int kStepsBeforeTheCornerAgain = 8;
    CRect rcClient;
    ::GetClientRect(m_hWndMDIClient, &rcClient);
    const int step = ::GetSystemMetrics(SM_CYCAPTION) + ::GetSystemMetrics(SM_CYFRAME);
    const int offset = placed_++ % kStepsBeforeTheCornerAgain * step;
    return { offset, offset, offset + rcClient.Width() * 3 / 4, offset + rcClient.Height() * 3 / 4 };
}

BOOL CMDIFrameWnd::OnCmdMsg(UINT nID, int nCode, void* pExtra, AFX_CMDHANDLERINFO* pHandlerInfo)
{
    const HWND frame = m_hWnd;
    if (CMDIChildWnd* const pActive = MDIGetActive()) {
        if (pActive->OnCmdMsg(nID, nCode, pExtra, pHandlerInfo))
            return TRUE;
        if (FromHandlePermanent(frame) != this)
            return FALSE; // a handler that declined was this frame's end all the same
    }
    return CFrameWnd::OnCmdMsg(nID, nCode, pExtra, pHandlerInfo);
}

BOOL CMDIFrameWnd::OnNcActivate(BOOL bActive)
{
    const HWND frame = m_hWnd;
    if (active_)
        ::SendMessageA(active_, WM_NCACTIVATE, static_cast<WPARAM>(bActive), 0);
    return FromHandlePermanent(frame) == this ? CFrameWnd::OnNcActivate(bActive) : TRUE;
}

// ---- The children.

BOOL CMDIChildWnd::Create(LPCSTR lpszClassName, LPCSTR lpszWindowName, DWORD dwStyle, const RECT& rect,
                          CMDIFrameWnd* pParentWnd)
{
    if (CWnd* const pMain = AfxGetMainWnd(); !pParentWnd && pMain && pMain->IsKindOf(RUNTIME_CLASS(CMDIFrameWnd)))
        pParentWnd = static_cast<CMDIFrameWnd*>(pMain);
    if (!pParentWnd)
        return FALSE;
    const CRect rcPlace = rect.left == CW_USEDEFAULT ? pParentWnd->next_place() : CRect(rect);
    if (!CWnd::CreateEx(0, lpszClassName, lpszWindowName, dwStyle, rcPlace, pParentWnd->client_.get(), 0))
        return FALSE;
    if (dwStyle & WS_VISIBLE)
        pParentWnd->MDIActivate(this);
    return TRUE;
}

BOOL CMDIChildWnd::PreCreateWindow(CREATESTRUCTA& cs)
{
    cs.style |= static_cast<LONG>(WS_CHILD | WS_CLIPSIBLINGS);
    return CFrameWnd::PreCreateWindow(cs);
}

CMDIFrameWnd* CMDIChildWnd::GetMDIFrame() const
{
    return static_cast<CMDIFrameWnd*>(FromHandlePermanent(::GetParent(::GetParent(m_hWnd))));
}

BOOL CMDIChildWnd::PreTranslateMessage(MSG* pMsg)
{
    switch (pMsg->message) {
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
    case WM_MBUTTONDOWN:
    case WM_NCLBUTTONDOWN:
    case WM_NCRBUTTONDOWN:
    case WM_NCMBUTTONDOWN: {
        const HWND window = m_hWnd;
        MDIActivate();
        if (FromHandlePermanent(window) != this)
            return TRUE; // being made active was its end
        break;
    }
    default:
        break;
    }
    return CFrameWnd::PreTranslateMessage(pMsg);
}

LRESULT CMDIChildWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    // Seen here, so that the frame learns of it whatever a derived class does with the message.
    if (CMDIFrameWnd* const pFrame = message == WM_DESTROY ? GetMDIFrame() : nullptr)
        pFrame->forget(m_hWnd);
    return CFrameWnd::WindowProc(message, wParam, lParam);
}

// The system knows child windows as inactive ones, so it is told which look to draw.
void CMDIChildWnd::OnNcPaint()
{
    const CMDIFrameWnd* const pFrame = GetMDIFrame();
    const bool is_active = pFrame && pFrame->MDIGetActive() == this && pFrame->is_drawn_active();
    DefWindowProc(WM_NCACTIVATE, is_active, 0);
}

BOOL CMDIChildWnd::OnNcActivate(BOOL /*bActive*/)
{
    return static_cast<BOOL>(Default()); // the frame says whether; WF_STAYACTIVE is its own
}
