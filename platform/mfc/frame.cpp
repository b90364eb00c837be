#include "afxwin/frame.h"

#include "afxwin/app.h"
#include "target_life.h"

IMPLEMENT_DYNCREATE(CFrameWnd, CWnd)
IMPLEMENT_DYNCREATE(CMiniFrameWnd, CFrameWnd)

BEGIN_MESSAGE_MAP(CFrameWnd, CWnd)
ON_WM_CREATE()
ON_WM_CLOSE()
ON_WM_ENDSESSION()
ON_WM_SIZE()
ON_WM_NCACTIVATE()
ON_WM_INITMENUPOPUP()
END_MESSAGE_MAP()

BEGIN_MESSAGE_MAP(CMiniFrameWnd, CFrameWnd)
END_MESSAGE_MAP()

const CRect CFrameWnd::rectDefault(CW_USEDEFAULT, CW_USEDEFAULT, 0, 0);

BOOL CFrameWnd::Create(LPCSTR lpszClassName, LPCSTR lpszWindowName, DWORD dwStyle, const RECT& rect, CWnd* pParentWnd)
{
    return CWnd::CreateEx(0, lpszClassName, lpszWindowName, dwStyle, rect, pParentWnd, 0);
}

BOOL CFrameWnd::PreCreateWindow(CREATESTRUCTA& cs)
{
    cs.dwExStyle |= WS_EX_CLIENTEDGE;
    return CWnd::PreCreateWindow(cs);
}

void CFrameWnd::RecalcLayout(BOOL /*bNotify*/)
{
    CRect rectClient;
    GetClientRect(&rectClient);
    if (CWnd* const pPane = GetDlgItem(AFX_IDW_PANE_FIRST))
        pPane->SetWindowPos(nullptr, 0, 0, rectClient.Width(), rectClient.Height(), SWP_NOZORDER | SWP_NOACTIVATE);
}

BOOL CFrameWnd::OnCmdMsg(UINT nID, int nCode, void* pExtra, AFX_CMDHANDLERINFO* pHandlerInfo)
{
    if (CWnd::OnCmdMsg(nID, nCode, pExtra, pHandlerInfo))
        return TRUE;
    CWinApp* const pApp = AfxGetApp();
    return pApp && pApp->OnCmdMsg(nID, nCode, pExtra, pHandlerInfo);
}

int CFrameWnd::OnCreate(LPCREATESTRUCTA lpCreateStruct)
{
    if (CWnd::OnCreate(lpCreateStruct) == -1)
        return -1;
    RecalcLayout();
    return 0;
}

void CFrameWnd::OnClose()
{
    DestroyWindow();
}

void CFrameWnd::OnEndSession(BOOL bEnding)
{
    CWinApp* const pApp = AfxGetApp();
    if (bEnding && pApp && pApp->m_pMainWnd == this)
        pApp->ExitInstance(); // the system ends the process when this returns
}

void CFrameWnd::OnSize(UINT nType, int cx, int cy)
{
    CWnd::OnSize(nType, cx, cy);
    if (nType != SIZE_MINIMIZED)
        RecalcLayout();
}

BOOL CFrameWnd::OnNcActivate(BOOL bActive)
{
    const BOOL bDrawnActive = IsWindowEnabled() && (bActive || (m_nFlags & WF_STAYACTIVE));
    return static_cast<BOOL>(DefWindowProc(WM_NCACTIVATE, static_cast<WPARAM>(bDrawnActive), 0));
}

void CFrameWnd::OnInitMenuPopup(CMenu* pPopupMenu, UINT /*nIndex*/, BOOL bSysMenu)
{
    constexpr UINT kSubMenu = 0xFFFFFFFF;
    constexpr UINT kFirstSystemCommand = 0xF000;
    if (bSysMenu || !pPopupMenu)
        return;
    const mfc::TargetLife life(*this);
    CCmdUI state;
    state.m_pMenu = pPopupMenu;
    // A handler may add and take away items.
    for (state.m_nIndex = 0; state.m_nIndex < (state.m_nIndexMax = pPopupMenu->GetMenuItemCount()); state.m_nIndex++) {
        state.m_nID = pPopupMenu->GetMenuItemID(static_cast<int>(state.m_nIndex));
        state.m_pSubMenu = nullptr;
        if (state.m_nID == kSubMenu) {
            state.m_pSubMenu = pPopupMenu->GetSubMenu(static_cast<int>(state.m_nIndex));
            state.m_nID = state.m_pSubMenu ? state.m_pSubMenu->GetMenuItemID(0) : 0;
        }
        const BOOL bDisable = m_bAutoMenuEnable && !state.m_pSubMenu && state.m_nID < kFirstSystemCommand;
        state.DoUpdate(this, bDisable);
        if (life.is_over() || !::IsMenu(*pPopupMenu))
            return;
    }
}

BOOL CMiniFrameWnd::Create(LPCSTR lpClassName, LPCSTR lpWindowName, DWORD dwStyle, const RECT& rect, CWnd* pParentWnd,
                           UINT nID)
{
    return CWnd::CreateEx(0, lpClassName, lpWindowName, dwStyle, rect, pParentWnd, nID);
}

BOOL CMiniFrameWnd::CreateEx(DWORD dwExStyle, LPCSTR lpClassName, LPCSTR lpWindowName, DWORD dwStyle, const RECT& rect,
                             CWnd* pParentWnd, UINT nID)
{
    return CWnd::CreateEx(dwExStyle, lpClassName, lpWindowName, dwStyle, rect, pParentWnd, nID);
}

BOOL CMiniFrameWnd::PreCreateWindow(CREATESTRUCTA& cs)
{
    if (!CFrameWnd::PreCreateWindow(cs))
        return FALSE;
    cs.dwExStyle &= ~WS_EX_CLIENTEDGE;
    return TRUE;
}
