// The frame of a skinned window: how thick it is, where its edges and caption buttons are, and what they do.
#include "skin/GuiSkinWindow.h"

#include <algorithm>
#include <cstdint>

#include "look/GuiInterface.h"
#include "look/GuiManager.h"
#include "skin/WindowSkinPtr.h"
#include "skinwnd/FramePart.h"

namespace PelkGUI {

namespace {

// A second click on the system button that closes the menu so soon closes the window.
constexpr DWORD kQuickCloseMilliseconds = 300;

constexpr int kNoButton = 0; // else a CaptionAnchor

// By caption button.
constexpr UINT kButtonHits[] = { HTNOWHERE, HTSYSMENU, HTMINBUTTON, HTMAXBUTTON, HTCLOSE };
static_assert(std::size(kButtonHits) == kCaptionAnchorCount);

int ButtonOfHit(UINT nHitTest)
{
    const UINT* const pFound = std::find(kButtonHits + CaptionAnchor::System, std::end(kButtonHits), nHitTest);
    return pFound == std::end(kButtonHits) ? kNoButton : static_cast<int>(pFound - kButtonHits);
}

int Width(const CRect* pPart)
{
    return pPart ? std::max(pPart->Width(), 0) : 0;
}

// The thickness of the outer frame at each side, or of the inner one. Corners count above and below alone.
CRect FrameThickness(const GuiSkinWindow& skin)
{
    using namespace FramePart;
    return { Width(FindPart(skin, Left)), GreatestHeight(skin, { TopLeft, Top, TopRight }),
             Width(FindPart(skin, Right)), GreatestHeight(skin, { BottomLeft, Bottom, BottomRight }) };
}

CRect ClientFrameThickness(const GuiSkinWindow& skin)
{
    using namespace FramePart;
    return { Width(FindPart(skin, CLeft)), GreatestHeight(skin, { CTopLeft, CTop, CTopRight }),
             Width(FindPart(skin, CRight)), GreatestHeight(skin, { CBottomLeft, CBottom, CBottomRight }) };
}

void MoveEdges(const CRect& rcThickness, RECT* pRect, int bShrink)
{
    CRect rc(*pRect);
    if (bShrink)
        rc.DeflateRect(rcThickness.left, rcThickness.top, rcThickness.right, rcThickness.bottom);
    else
        rc.InflateRect(rcThickness.left, rcThickness.top, rcThickness.right, rcThickness.bottom);
    *pRect = rc;
}

// The place as far from the window's right edge as x is from its left; wraps.
int MirroredX(const CRect& rcWindow, int x)
{
    return static_cast<int>(static_cast<unsigned>(rcWindow.left) + static_cast<unsigned>(rcWindow.right) -
                            static_cast<unsigned>(x));
}

// The sizing hit code of a point, 0 away from all edges. Borders are as a skin gives them, so the sums are kept wide.
UINT HitSizingEdge(const CRect& rcWindow, CPoint point, const CRect& rcBorder)
{
    const std::int64_t x = point.x;
    const std::int64_t y = point.y;
    const int nGrip = ::GetSystemMetrics(SM_CXSIZE); // in both directions
    if (x + nGrip >= rcWindow.right && y + nGrip >= rcWindow.bottom)
        return HTBOTTOMRIGHT;

    static constexpr UINT kHits[3][3] = {
        { HTTOPLEFT, HTTOP, HTTOPRIGHT },
        { HTLEFT, 0, HTRIGHT },
        { HTBOTTOMLEFT, HTBOTTOM, HTBOTTOMRIGHT },
    };
    const int nColumn = x - rcBorder.left < rcWindow.left ? 0 : x + rcBorder.right >= rcWindow.right ? 2 : 1;
    const int nRow = y - rcBorder.top < rcWindow.top ? 0 : y + rcBorder.bottom >= rcWindow.bottom ? 2 : 1;
    return kHits[nRow][nColumn];
}

void PaintFrame(GuiSkinWindow& skin, CWnd* pWnd, int bCaptionOnly, int nActive)
{
    CWindowDC dc(pWnd);
    const GuiManager& manager = GetGuiManager();
    if (manager.m_bRightToLeft && manager.m_pfnSetLayout)
        manager.m_pfnSetLayout(dc.GetSafeHdc(), LAYOUT_RTL);
    skin.Paint(pWnd, dc, bCaptionOnly, nActive);
}

void PaintCaption(GuiSkinWindow& skin, CWnd* pWnd)
{
    PaintFrame(skin, pWnd, 1, 0);
}

// Shows the system menu under its button and posts what was chosen, or the close command for a quick second click on
// the button. While the menu is open everything may end, the window skin and the window included.
void RunSystemMenu(GuiSkinWindow& skin, CWnd* pWnd, const CRect& rcWindow, const CRect& rcButton)
{
    const WindowSkinPtr pSkin(&skin);
    const HWND hWnd = pWnd->GetSafeHwnd();
    const HMENU hMenu = ::GetSystemMenu(hWnd, FALSE);
    PaintCaption(skin, pWnd); // the button is down
    const DWORD dwShown = ::GetTickCount();
    const int x = GetGuiManager().m_bRightToLeft ? MirroredX(rcWindow, rcButton.left) : rcButton.left;
    const BOOL nCommand =
        hMenu ? ::TrackPopupMenu(hMenu, TPM_RETURNCMD, x, rcButton.bottom, 0, hWnd, nullptr) : FALSE; // none
    if (pSkin)
        pSkin->m_nPressedHit = pSkin->m_nHoverHit = kNoButton;
    if (!::IsWindow(hWnd))
        return;

    const LPARAM nPlace = MAKELPARAM(static_cast<WORD>(rcButton.left), static_cast<WORD>(rcButton.bottom));
    if (nCommand != 0) {
        ::PostMessageA(hWnd, WM_SYSCOMMAND, static_cast<WPARAM>(nCommand), nPlace);
        return;
    }
    CPoint ptCursor;
    ::GetCursorPos(&ptCursor);
    if (hMenu && pSkin && ::GetTickCount() - dwShown < kQuickCloseMilliseconds &&
        pSkin->OnNcHitTest(CWnd::FromHandle(hWnd), ptCursor, FALSE) == HTSYSMENU)
        ::PostMessageA(hWnd, WM_SYSCOMMAND, SC_CLOSE, nPlace);
}

MONITORINFO InfoOfMonitor(HWND hWnd, DWORD dwOtherwise)
{
    const GuiManager& manager = GetGuiManager();
    MONITORINFO info = {};
    info.cbSize = sizeof(info);
    const HMONITOR hMonitor =
        manager.m_pfnMonitorFromWindow ? manager.m_pfnMonitorFromWindow(hWnd, dwOtherwise) : nullptr;
    manager.m_pfnGetMonitorInfo(hMonitor, &info);
    return info;
}

CRect PrimaryWorkArea()
{
    CRect rcWork;
    ::SystemParametersInfoA(SPI_GETWORKAREA, 0, &rcWork, 0);
    return rcWork;
}

// Of the monitor that the program's main window is on.
CRect WorkAreaOfMainWindow()
{
    if (!GetGuiManager().m_pfnGetMonitorInfo)
        return PrimaryWorkArea();
    CWinThread* const pThread = AfxGetThread();
    CWnd* const pMainWnd = pThread ? pThread->GetMainWnd() : nullptr;
    return InfoOfMonitor(pMainWnd ? pMainWnd->GetSafeHwnd() : nullptr, MONITOR_DEFAULTTOPRIMARY).rcWork;
}

// A maximised window on the primary monitor fills the work area exactly, whatever its frame would hide.
void FillWorkArea(HWND hWnd)
{
    if (!GetGuiManager().m_pfnGetMonitorInfo)
        return;
    const CRect rcWork = PrimaryWorkArea();
    if (InfoOfMonitor(hWnd, MONITOR_DEFAULTTONEAREST).dwFlags & MONITORINFOF_PRIMARY)
        ::SetWindowPos(hWnd, nullptr, rcWork.left, rcWork.top, rcWork.Width(), rcWork.Height(), 0);
}

} // namespace

void GuiSkinWindow::CalcWindowRect(RECT* pRect, int bShrink, int /*bZoomed*/)
{
    MoveEdges(FrameThickness(*this), pRect, bShrink);
}

void GuiSkinWindow::CalcClientRect(RECT* pRect, int bShrink, int /*bZoomed*/)
{
    MoveEdges(ClientFrameThickness(*this), pRect, bShrink);
}

void GuiSkinWindow::OnNcCalcSize(CWnd* pWnd, int /*bCalcValidRects*/, NCCALCSIZE_PARAMS* pParams)
{
    CalcWindowRect(&pParams->rgrc[0], TRUE, pWnd->IsZoomed());
}

void GuiSkinWindow::OnGetMinMaxInfo(MINMAXINFO* pInfo)
{
    CRect rcWork = WorkAreaOfMainWindow();
    rcWork -= rcWork.TopLeft();
    CRect rcFrame = rcWork;
    CalcWindowRect(&rcFrame, FALSE, TRUE);

    const CRect& rcCrop = m_rcMaximiseCrop;
    pInfo->ptMaxPosition.x = rcCrop.left < 0 ? rcFrame.left : -rcCrop.left;
    pInfo->ptMaxPosition.y = rcCrop.top < 0 ? rcFrame.top : -rcCrop.top;
    // The right and bottom edges, not the width and height: kept on purpose.
    const CPoint ptCropped = rcWork.BottomRight() + CPoint(rcCrop.right, rcCrop.bottom);
    pInfo->ptMaxSize.x = rcCrop.right < 0 ? rcFrame.right : ptCropped.x;
    pInfo->ptMaxSize.y = rcCrop.bottom < 0 ? rcFrame.bottom : ptCropped.y;

    pInfo->ptMinTrackSize.x = std::max(pInfo->ptMinTrackSize.x, m_sizeMinimum.cx);
    pInfo->ptMinTrackSize.y = std::max(pInfo->ptMinTrackSize.y, m_sizeMinimum.cy);
}

UINT GuiSkinWindow::OnNcHitTest(CWnd* pWnd, CPoint point, int bResizable)
{
    CRect rcWindow;
    pWnd->GetWindowRect(&rcWindow);
    CPoint ptButton = point;
    if (GetGuiManager().m_bRightToLeft) // the buttons are mirrored in the window, its edges are not
        ptButton.x = MirroredX(rcWindow, point.x);
    for (int i = CaptionAnchor::System; i < kCaptionAnchorCount; i++) {
        if (!m_pAnchorPresent[i])
            continue;
        CRect rcButton;
        ResolveAnchor(rcWindow, rcButton, i);
        if (rcButton.PtInRect(ptButton))
            return kButtonHits[i];
    }
    if (bResizable && !pWnd->IsZoomed()) {
        if (const UINT nEdge = HitSizingEdge(rcWindow, point, m_rcResizeBorder))
            return nEdge;
    }
    NCCALCSIZE_PARAMS params = {};
    params.rgrc[0] = rcWindow;
    OnNcCalcSize(pWnd, FALSE, &params);
    if (point.y < params.rgrc[0].top)
        return HTCAPTION;
    return CRect(params.rgrc[0]).PtInRect(point) ? HTCLIENT : HTBORDER;
}

void GuiSkinWindow::OnNcMouseMove(CWnd* pWnd, UINT nHitTest, CPoint /*point*/)
{
    int nButton = ButtonOfHit(nHitTest);
    if (m_nPressedHit != kNoButton && m_nPressedHit != nButton) {
        if (::GetAsyncKeyState(VK_LBUTTON) >= 0)
            m_nPressedHit = kNoButton; // released where nobody told us
        nButton = kNoButton;           // while one button is held no other lights up
    }
    if (nButton == m_nHoverHit)
        return;
    m_nHoverHit = nButton;
    PaintCaption(*this, pWnd);
}

BOOL GuiSkinWindow::OnNcLButtonDown(CWnd* pWnd, UINT nHitTest, CPoint /*point*/)
{
    const int nButton = ButtonOfHit(nHitTest);
    if (nButton == kNoButton)
        return FALSE;
    const WindowSkinPtr pSelf(this);
    const HWND hWnd = pWnd->GetSafeHwnd();
    m_nPressedHit = m_nHoverHit = nButton;
    if (nButton == CaptionAnchor::System) {
        CRect rcWindow;
        CRect rcButton;
        pWnd->GetWindowRect(&rcWindow);
        ResolveAnchor(rcWindow, rcButton, CaptionAnchor::System);
        RunSystemMenu(*this, pWnd, rcWindow, rcButton);
    }
    if (pSelf && ::IsWindow(hWnd))
        PaintCaption(*this, CWnd::FromHandle(hWnd));
    return TRUE;
}

BOOL GuiSkinWindow::OnNcLButtonUp(CWnd* pWnd, UINT /*nHitTest*/, CPoint /*point*/)
{
    if (m_nPressedHit == kNoButton)
        return FALSE;
    if (m_nPressedHit == m_nHoverHit) {
        switch (m_nPressedHit) {
        case CaptionAnchor::Minimise:
            pWnd->PostMessage(WM_SYSCOMMAND, SC_MINIMIZE);
            break;
        case CaptionAnchor::Maximise:
            pWnd->PostMessage(WM_SYSCOMMAND, pWnd->IsZoomed() ? SC_RESTORE : SC_MAXIMIZE);
            break;
        case CaptionAnchor::Close:
            pWnd->PostMessage(WM_SYSCOMMAND, SC_CLOSE);
            break;
        default:
            break;
        }
    }
    m_nHoverHit = m_nPressedHit = kNoButton;
    PaintCaption(*this, pWnd);
    return FALSE; // also after a command: kept on purpose
}

BOOL GuiSkinWindow::OnNcLButtonDblClk(CWnd* pWnd, UINT nHitTest, CPoint /*point*/)
{
    if (nHitTest != HTSYSMENU)
        return FALSE;
    pWnd->PostMessage(WM_SYSCOMMAND, SC_CLOSE);
    return TRUE;
}

void GuiSkinWindow::OnNcPaint(CWnd* pWnd)
{
    PaintFrame(*this, pWnd, 0, 0);
}

BOOL GuiSkinWindow::OnNcActivate(CWnd* pWnd, BOOL bActive)
{
    PaintFrame(*this, pWnd, 1, bActive ? 2 : 1);
    return FALSE;
}

void GuiSkinWindow::OnSetText(CWnd* pWnd)
{
    PaintCaption(*this, pWnd);
}

void GuiSkinWindow::OnSize(CWnd* pWnd)
{
    const HWND hWnd = pWnd->GetSafeHwnd();
    if (::IsIconic(hWnd))
        return;
    if (::IsZoomed(hWnd)) {
        FillWorkArea(hWnd);
        ::SetWindowRgn(hWnd, nullptr, TRUE);
    } else if (m_pRegion) {
        SelectRegion(pWnd);
    } else if (GuiInterface::IsNewWindows()) {
        CRect rc;
        pWnd->GetWindowRect(&rc);
        rc -= rc.TopLeft();
        rc.InflateRect(0, 0, 1, 1);
        ::SetWindowRgn(hWnd, ::CreateRectRgnIndirect(&rc), TRUE);
    }
}

} // namespace PelkGUI
