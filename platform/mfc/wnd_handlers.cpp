// The default treatment of messages: the system's.
#include "afxwin/wnd.h"

int CWnd::OnCreate(LPCREATESTRUCTA /*lpCreateStruct*/)
{
    return static_cast<int>(Default());
}

BOOL CWnd::OnNcCreate(LPCREATESTRUCTA /*lpCreateStruct*/)
{
    return static_cast<BOOL>(Default());
}

void CWnd::OnDestroy()
{
    Default();
}

void CWnd::OnClose()
{
    Default();
}

BOOL CWnd::OnQueryEndSession()
{
    return static_cast<BOOL>(Default());
}

void CWnd::OnEndSession(BOOL /*bEnding*/)
{
    Default();
}

void CWnd::OnMove(int /*x*/, int /*y*/)
{
    Default();
}

void CWnd::OnSize(UINT /*nType*/, int /*cx*/, int /*cy*/)
{
    Default();
}

void CWnd::OnShowWindow(BOOL /*bShow*/, UINT /*nStatus*/)
{
    Default();
}

void CWnd::OnEnable(BOOL /*bEnable*/)
{
    Default();
}

void CWnd::OnActivate(UINT /*nState*/, CWnd* /*pWndOther*/, BOOL /*bMinimized*/)
{
    Default();
}

void CWnd::OnSetFocus(CWnd* /*pOldWnd*/)
{
    Default();
}

void CWnd::OnKillFocus(CWnd* /*pNewWnd*/)
{
    Default();
}

void CWnd::OnCaptureChanged(CWnd* /*pWnd*/)
{
    Default();
}

void CWnd::OnGetMinMaxInfo(MINMAXINFO* /*lpMMI*/)
{
    Default();
}

void CWnd::OnWindowPosChanging(WINDOWPOS* /*lpwndpos*/)
{
    Default();
}

void CWnd::OnWindowPosChanged(WINDOWPOS* /*lpwndpos*/)
{
    Default();
}

void CWnd::OnPaint()
{
    Default();
}

BOOL CWnd::OnEraseBkgnd(CDC* /*pDC*/)
{
    return static_cast<BOOL>(Default());
}

void CWnd::OnNcPaint()
{
    Default();
}

BOOL CWnd::OnNcActivate(BOOL /*bActive*/)
{
    return static_cast<BOOL>(Default());
}

void CWnd::OnNcCalcSize(BOOL /*bCalcValidRects*/, NCCALCSIZE_PARAMS* /*lpncsp*/)
{
    Default();
}

UINT CWnd::OnNcHitTest(CPoint /*point*/)
{
    return static_cast<UINT>(Default());
}

BOOL CWnd::OnSetCursor(CWnd* /*pWnd*/, UINT /*nHitTest*/, UINT /*message*/)
{
    return static_cast<BOOL>(Default());
}

void CWnd::OnNcMouseMove(UINT /*nHitTest*/, CPoint /*point*/)
{
    Default();
}

void CWnd::OnNcLButtonDown(UINT /*nHitTest*/, CPoint /*point*/)
{
    Default();
}

void CWnd::OnNcLButtonUp(UINT /*nHitTest*/, CPoint /*point*/)
{
    Default();
}

void CWnd::OnNcLButtonDblClk(UINT /*nHitTest*/, CPoint /*point*/)
{
    Default();
}

void CWnd::OnMouseMove(UINT /*nFlags*/, CPoint /*point*/)
{
    Default();
}

void CWnd::OnLButtonDown(UINT /*nFlags*/, CPoint /*point*/)
{
    Default();
}

void CWnd::OnLButtonUp(UINT /*nFlags*/, CPoint /*point*/)
{
    Default();
}

void CWnd::OnLButtonDblClk(UINT /*nFlags*/, CPoint /*point*/)
{
    Default();
}

void CWnd::OnRButtonDown(UINT /*nFlags*/, CPoint /*point*/)
{
    Default();
}

void CWnd::OnRButtonUp(UINT /*nFlags*/, CPoint /*point*/)
{
    Default();
}

void CWnd::OnKeyDown(UINT /*nChar*/, UINT /*nRepCnt*/, UINT /*nFlags*/)
{
    Default();
}

void CWnd::OnKeyUp(UINT /*nChar*/, UINT /*nRepCnt*/, UINT /*nFlags*/)
{
    Default();
}

void CWnd::OnChar(UINT /*nChar*/, UINT /*nRepCnt*/, UINT /*nFlags*/)
{
    Default();
}

void CWnd::OnMeasureItem(int /*nIDCtl*/, LPMEASUREITEMSTRUCT /*lpMeasureItemStruct*/)
{
    Default();
}

void CWnd::OnDrawItem(int /*nIDCtl*/, LPDRAWITEMSTRUCT /*lpDrawItemStruct*/)
{
    Default();
}

void CWnd::OnInitMenu(CMenu* /*pMenu*/)
{
    Default();
}

void CWnd::OnInitMenuPopup(CMenu* /*pPopupMenu*/, UINT /*nIndex*/, BOOL /*bSysMenu*/)
{
    Default();
}

void CWnd::OnContextMenu(CWnd* /*pWnd*/, CPoint /*pos*/)
{
    Default();
}

void CWnd::OnCancelMode()
{
    Default();
}

void CWnd::OnMDIActivate(BOOL /*bActivate*/, CWnd* /*pActivateWnd*/, CWnd* /*pDeactivateWnd*/)
{
    Default();
}

void CWnd::OnTimer(UINT_PTR /*nIDEvent*/)
{
    Default();
}

void CWnd::OnSysCommand(UINT /*nID*/, LPARAM /*lParam*/)
{
    Default();
}
