#include "skinwnd/GuiMiniFrameWnd.h"

#include "skin/GuiSkinWindow.h"

namespace PelkGUI {

IMPLEMENT_DYNCREATE(GuiMiniFrameWnd, CMiniFrameWnd)

BEGIN_MESSAGE_MAP(GuiMiniFrameWnd, CMiniFrameWnd)
ON_WM_GETMINMAXINFO()
ON_WM_SIZE()
ON_WM_NCLBUTTONDBLCLK()
ON_WM_NCCALCSIZE()
ON_WM_NCHITTEST()
ON_WM_NCPAINT()
ON_WM_NCACTIVATE()
ON_WM_NCMOUSEMOVE()
ON_WM_NCLBUTTONDOWN()
ON_WM_NCLBUTTONUP()
ON_WM_MOUSEMOVE()
ON_WM_LBUTTONDOWN()
ON_WM_LBUTTONUP()
ON_WM_TIMER()
ON_WM_WINDOWPOSCHANGING()
ON_WM_ENDSESSION()
ON_WM_MEASUREITEM()
ON_WM_DRAWITEM()
ON_WM_INITMENUPOPUP()
ON_WM_PAINT()
ON_WM_SETCURSOR()
ON_MESSAGE_VOID(WM_IDLEUPDATECMDUI, &GuiMiniFrameWnd::OnIdleUpdateCmdUI)
ON_WM_CAPTURECHANGED()
END_MESSAGE_MAP()

void GuiMiniFrameWnd::TakeCreation(LPCSTR lpWindowName, const CRect& rc)
{
    m_rcWindowPos = m_rcBackground = rc;
    m_strName = lpWindowName;
    const auto nHeight = static_cast<DWORD>(rc.Height());
    m_sizeKept = CSize(static_cast<SHORT>(LOWORD(nHeight)), static_cast<SHORT>(HIWORD(nHeight)));
}

BOOL GuiMiniFrameWnd::Create(LPCSTR lpClassName, LPCSTR lpWindowName, DWORD dwStyle, const RECT& rect, CWnd* pParentWnd,
                             UINT nID)
{
    TakeCreation(lpWindowName, rect);
    if (!(dwStyle & WS_CHILD))
        m_bChild = FALSE;
    if (!CMiniFrameWnd::Create(lpClassName, lpWindowName, dwStyle, rect, pParentWnd, nID))
        return -1;
    m_pOwner = this;
    return 1;
}

BOOL GuiMiniFrameWnd::CreateEx(DWORD dwExStyle, LPCSTR lpClassName, LPCSTR lpWindowName, DWORD dwStyle,
                               const RECT& rect, CWnd* pParentWnd, UINT nID)
{
    TakeCreation(lpWindowName, rect);
    m_bChild = (dwStyle & WS_CHILD) != 0;
    if (!CMiniFrameWnd::CreateEx(dwExStyle, lpClassName, lpWindowName, dwStyle, rect, pParentWnd, nID))
        return -1;
    m_pOwner = this;
    return 1;
}

BOOL GuiMiniFrameWnd::OnCmdMsg(UINT nID, int nCode, void* pExtra, AFX_CMDHANDLERINFO* pHandlerInfo)
{
    const std::weak_ptr<const void> life = Life();
    if (CFrameWnd::OnCmdMsg(nID, nCode, pExtra, pHandlerInfo))
        return TRUE;
    if (life.expired())
        return FALSE;
    CWnd* const pOwner = CWnd::FromHandle(reinterpret_cast<HWND>(::GetWindowLongPtrA(m_hWnd, GWLP_HWNDPARENT)));
    return pOwner && pOwner->OnCmdMsg(nID, nCode, pExtra, pHandlerInfo);
}

int GuiMiniFrameWnd::OnToolHitTest(CPoint point, TOOLINFOA* pTI) const
{
    const int nID = GuiSkinCmdInterface::OnToolHitTest(point, pTI);
    return nID > 0 ? nID : CWnd::OnToolHitTest(point, pTI);
}

GuiSkinWindow* GuiMiniFrameWnd::FrameSkin() const
{
    return m_bChild ? nullptr : static_cast<GuiSkinWindow*>(m_pSkinWindow);
}

void GuiMiniFrameWnd::OnGetMinMaxInfo(MINMAXINFO* pInfo)
{
    CMiniFrameWnd::OnGetMinMaxInfo(pInfo);
    if (GuiSkinWindow* const pSkin = FrameSkin())
        pSkin->OnGetMinMaxInfo(pInfo);
}

void GuiMiniFrameWnd::OnSize(UINT nType, int cx, int cy)
{
    const std::weak_ptr<const void> life = Life();
    if (m_pSkinWindow)
        m_pSkinWindow->OnSize(this);
    if (!life.expired())
        CFrameWnd::OnSize(nType, cx, cy);
}

void GuiMiniFrameWnd::OnNcLButtonDblClk(UINT nHitTest, CPoint point)
{
    GuiSkinWindow* const pSkin = FrameSkin();
    if (!pSkin || !pSkin->OnNcLButtonDblClk(this, nHitTest, point))
        Default();
}

// A child window's client area is all of it.
void GuiMiniFrameWnd::OnNcCalcSize(BOOL bCalcValidRects, NCCALCSIZE_PARAMS* pParams)
{
    if (GuiSkinWindow* const pSkin = FrameSkin())
        pSkin->OnNcCalcSize(this, bCalcValidRects, pParams);
    else if (!m_bChild)
        CMiniFrameWnd::OnNcCalcSize(bCalcValidRects, pParams);
}

UINT GuiMiniFrameWnd::OnNcHitTest(CPoint point)
{
    GuiSkinWindow* const pSkin = FrameSkin();
    return pSkin ? pSkin->OnNcHitTest(this, point, TRUE) : CMiniFrameWnd::OnNcHitTest(point);
}

void GuiMiniFrameWnd::OnNcPaint()
{
    if (GuiSkinWindow* const pSkin = FrameSkin())
        pSkin->OnNcPaint(this);
    else if (!m_bChild)
        CMiniFrameWnd::OnNcPaint();
}

BOOL GuiMiniFrameWnd::OnNcActivate(BOOL bActive)
{
    GuiSkinWindow* const pSkin = FrameSkin();
    if (!pSkin)
        return CMiniFrameWnd::OnNcActivate(bActive);
    pSkin->OnNcActivate(this, IsWindowEnabled() && (bActive || (m_nFlags & WF_STAYACTIVE)));
    return TRUE;
}

void GuiMiniFrameWnd::OnNcMouseMove(UINT nHitTest, CPoint point)
{
    if (m_bChild)
        return;
    const std::weak_ptr<const void> life = Life();
    if (m_pSkinWindow)
        m_pSkinWindow->OnNcMouseMove(this, nHitTest, point);
    if (!life.expired())
        Default();
}

void GuiMiniFrameWnd::OnNcLButtonDown(UINT nHitTest, CPoint point)
{
    if (m_bChild || (m_pSkinWindow && m_pSkinWindow->OnNcLButtonDown(this, nHitTest, point)))
        return; // this object may be gone
    CMiniFrameWnd::OnNcLButtonDown(nHitTest, point);
}

void GuiMiniFrameWnd::OnNcLButtonUp(UINT nHitTest, CPoint point)
{
    if (m_bChild)
        return;
    const std::weak_ptr<const void> life = Life();
    if (m_pSkinWindow && m_pSkinWindow->OnNcLButtonUp(this, nHitTest, point))
        return;
    if (!life.expired())
        Default();
}

void GuiMiniFrameWnd::OnMouseMove(UINT nFlags, CPoint point)
{
    const std::weak_ptr<const void> life = Life();
    GuiSkinCmdInterface::OnMouseMove(nFlags, point);
    if (!life.expired())
        CWnd::OnMouseMove(nFlags, point);
}

void GuiMiniFrameWnd::OnLButtonDown(UINT nFlags, CPoint point)
{
    const HWND hWnd = m_hWnd;
    GuiSkinCmdInterface::OnLButtonDown(nFlags, point); // may be the end of this object
    // In every case, and in client coordinates: kept on purpose.
    ::PostMessageA(hWnd, WM_NCLBUTTONDOWN, HTCAPTION,
                   MAKELPARAM(static_cast<WORD>(point.x), static_cast<WORD>(point.y)));
}

void GuiMiniFrameWnd::OnLButtonUp(UINT nFlags, CPoint point)
{
    GuiSkinCmdInterface::OnLButtonUp(nFlags, point); // may be the end of this object
}

void GuiMiniFrameWnd::OnTimer(UINT_PTR nIDEvent)
{
    GuiSkinCmdInterface::OnTimer(nIDEvent);
    Default();
}

void GuiMiniFrameWnd::OnWindowPosChanging(WINDOWPOS* /*pPos*/)
{
    Default();
}

void GuiMiniFrameWnd::OnMeasureItem(int nIDCtl, LPMEASUREITEMSTRUCT pItem)
{
    CWnd::OnMeasureItem(nIDCtl, pItem);
}

void GuiMiniFrameWnd::OnDrawItem(int nIDCtl, LPDRAWITEMSTRUCT pItem)
{
    CWnd::OnDrawItem(nIDCtl, pItem);
}

void GuiMiniFrameWnd::OnInitMenuPopup(CMenu* pMenu, UINT nIndex, BOOL bSysMenu)
{
    GuiSkinInterface::InitMenuPopup(pMenu, nIndex, bSysMenu); // not an override of it: kept on purpose
}

void GuiMiniFrameWnd::OnPaint()
{
    const std::weak_ptr<const void> life = Life();
    CPaintDC dc(this); // knows the window by its handle
    CRect rcClient;
    GetClientRect(&rcClient);
    CDC* const pBuffer = BeforePaint(&dc, rcClient);
    if (!life.expired())
        Paint(pBuffer, rcClient);
    if (!life.expired())
        AfterPaint(&dc, pBuffer, rcClient);
}

BOOL GuiMiniFrameWnd::OnSetCursor(CWnd* pWnd, UINT nHitTest, UINT message)
{
    if (pWnd != this || nHitTest != HTCLIENT)
        return CFrameWnd::OnSetCursor(pWnd, nHitTest, message);
    ::SetCursor(::LoadCursorA(nullptr, IDC_ARROW));
    return TRUE;
}

void GuiMiniFrameWnd::OnIdleUpdateCmdUI()
{
    const std::weak_ptr<const void> life = Life();
    UpdateCmdButtons();
    if (!life.expired())
        UpdateDialogControls(this, FALSE);
}

// Taken by another window, the mouse will not come back to finish the press.
void GuiMiniFrameWnd::OnCaptureChanged(CWnd* pWnd)
{
    if (pWnd != this)
        OnCaptureLost();
    CWnd::OnCaptureChanged(pWnd);
}

BOOL GuiMiniFrameWnd::OnEraseBkgnd(CDC* /*pDC*/)
{
    return TRUE;
}

} // namespace PelkGUI
