#include "setup/MeravSetupWnd.h"

#include "setup/PagePictures.h"

IMPLEMENT_DYNAMIC(MeravSetupWnd, CMiniFrameWnd)

BEGIN_MESSAGE_MAP(MeravSetupWnd, CMiniFrameWnd)
ON_WM_NCHITTEST()
ON_WM_CREATE()
ON_WM_CLOSE()
ON_WM_TIMER()
ON_COMMAND(10001, &MeravSetupWnd::OnInstall)
ON_COMMAND(10002, &MeravSetupWnd::OnExit)
ON_COMMAND(10003, &MeravSetupWnd::OnFinish)
ON_COMMAND(10004, &MeravSetupWnd::OnExit)
ON_COMMAND(10005, &MeravSetupWnd::OnToggleNoLaunch)
ON_COMMAND(10006, &MeravSetupWnd::OnToggleNoAutoStart)
ON_MESSAGE(WM_INSTALL_PROGRESS, &MeravSetupWnd::OnInstallProgress)
ON_WM_NCCALCSIZE()
ON_WM_NCPAINT()
ON_WM_NCACTIVATE()
ON_WM_ERASEBKGND()
ON_WM_PAINT()
ON_WM_MOUSEMOVE()
ON_WM_LBUTTONDOWN()
ON_WM_LBUTTONUP()
END_MESSAGE_MAP()

namespace {

constexpr UINT kTickMilliseconds = 200;
constexpr float kCheckingTicks = 13.0F; // 2.6 s in all; the last tick turns the page, so 12 squares are ever seen

} // namespace

MeravSetupWnd::MeravSetupWnd() = default;

BOOL MeravSetupWnd::PreCreateWindow(CREATESTRUCTA& cs)
{
    cs.dwExStyle |= WS_EX_TOPMOST | WS_EX_TOOLWINDOW;
    return CMiniFrameWnd::PreCreateWindow(cs);
}

int MeravSetupWnd::OnCreate(CREATESTRUCTA* pCreate)
{
    if (CFrameWnd::OnCreate(pCreate) == -1)
        return -1;
    m_hJobWnd = m_hWnd;
    SetTimer(INSTALL_TIMER_ID, kTickMilliseconds, nullptr);
    WritePayloadCabinet();
    if (m_bmpSkin.LoadBitmap(kPagePictures) && m_dcSkin.CreateCompatibleDC(nullptr))
        m_dcSkin.SelectObject(&m_bmpSkin);
    return 0;
}

int MeravSetupWnd::CenterAndShow()
{
    CRect rcWindow;
    GetWindowRect(&rcWindow);
    const int x = (GetSystemMetrics(SM_CXSCREEN) - rcWindow.Width()) / 2;
    const int y = (GetSystemMetrics(SM_CYSCREEN) - rcWindow.Height()) / 2;
    SetWindowPos(nullptr, x, y, rcWindow.Width(), rcWindow.Height(), SWP_SHOWWINDOW);
    return 1;
}

// The window goes, the worker may stay: whoever lets go last deletes the object.
void MeravSetupWnd::PostNcDestroy()
{
    ReleaseOwner();
}

void MeravSetupWnd::ReleaseOwner()
{
    if (--m_nOwners == 0)
        delete this;
}

LRESULT MeravSetupWnd::OnNcHitTest(CPoint point)
{
    const LRESULT nHit = CMiniFrameWnd::OnNcHitTest(point);
    return nHit >= HTLEFT && nHit <= HTBORDER ? HTCLIENT : nHit; // cannot be resized
}

void MeravSetupWnd::OnClose()
{
    CFrameWnd::OnClose(); // may delete this object
    AfxPostQuitMessage(0);
}

void MeravSetupWnd::OnExit()
{
    OnClose();
}

void MeravSetupWnd::OnFinish()
{
    if (!m_bNoAutoStart)
        RegisterAutoStart();
    if (!m_bNoLaunch)
        LaunchClient();
    OnClose();
}

void MeravSetupWnd::OnTimer(UINT_PTR nTimer)
{
    if (nTimer != INSTALL_TIMER_ID)
        return;
    if (m_nStage == kStageChecking) {
        m_fProgress = m_fProgress + 1.0F;
        if (m_fProgress == kCheckingTicks) {
            KillTimer(INSTALL_TIMER_ID);
            if (m_nError == 0) {
                m_nStage = kStageReady;
                m_fProgress = 0.0F;
                ShowButton(10001, TRUE);
                ShowButton(10002, TRUE);
            } else {
                m_bEnvOk = FALSE;
                ShowButton(10002, TRUE);
            }
        }
    }
    Invalidate(FALSE);
}

void MeravSetupWnd::OnToggleNoLaunch()
{
    m_bNoLaunch = !m_bNoLaunch;
    Invalidate(FALSE);
}

void MeravSetupWnd::OnToggleNoAutoStart()
{
    m_bNoAutoStart = !m_bNoAutoStart;
    Invalidate(FALSE);
}

void MeravSetupWnd::ShowButton(UINT nCommand, BOOL bShow)
{
    if (nCommand - kFirstButton < kButtonCount)
        m_abShown[nCommand - kFirstButton] = bShow != FALSE;
}

BOOL MeravSetupWnd::IsButtonShown(UINT nCommand) const
{
    return nCommand - kFirstButton < kButtonCount && m_abShown[nCommand - kFirstButton];
}

// The page picture is the whole window: no frame, no caption of the system's.
void MeravSetupWnd::OnNcCalcSize(BOOL, NCCALCSIZE_PARAMS*) {}

void MeravSetupWnd::OnNcPaint() {}

BOOL MeravSetupWnd::OnNcActivate(BOOL)
{
    return TRUE;
}

BOOL MeravSetupWnd::OnEraseBkgnd(CDC*)
{
    return TRUE; // every pixel is the page's
}

UINT MeravSetupWnd::HitButton(CPoint point) const
{
    for (const ButtonPlace& place : kButtonPlaces) {
        if (IsButtonShown(place.nCommand) && place.rcWindow.PtInRect(point))
            return place.nCommand;
    }
    return 0;
}

void MeravSetupWnd::OnMouseMove(UINT, CPoint point)
{
    if (const UINT nHit = HitButton(point); nHit != m_nHovered) {
        m_nHovered = nHit;
        Invalidate(FALSE);
    }
}

void MeravSetupWnd::OnLButtonDown(UINT, CPoint point)
{
    SetActiveWindow();
    SetFocus();
    if (const UINT nHit = HitButton(point)) {
        m_nHovered = m_nPressed = nHit;
        SetCapture();
        Invalidate(FALSE);
        return;
    }
    ClientToScreen(&point);
    SendMessage(WM_NCLBUTTONDOWN, HTCAPTION, MAKELPARAM(static_cast<WORD>(point.x), static_cast<WORD>(point.y)));
}

void MeravSetupWnd::OnLButtonUp(UINT, CPoint)
{
    if (m_nPressed == 0)
        return;
    const UINT nReleased = m_nPressed;
    m_nPressed = 0;
    Invalidate(FALSE);
    ReleaseCapture();
    if (nReleased == m_nHovered) {
        UpdateWindow();                        // the released picture first: the command may take its time
        SendMessage(WM_COMMAND, nReleased, 0); // may delete this object
    }
}

void MeravSetupWnd::OnPaint()
{
    CPaintDC dc(this);
    Paint(dc);
}

void MeravSetupWnd::Paint(CDC& dc)
{
    const int nStage = m_nStage;
    dc.BitBlt(0, 0, kPageWidth, kPageHeight, &m_dcSkin, 0, nStage * kPageHeight, SRCCOPY);
    PaintButtons(dc);
    if (nStage == kStageChecking && m_bEnvOk)
        PaintBusySquares(dc);
    if (nStage == kStageInstalling)
        PaintProgressBar(dc);
}

void MeravSetupWnd::PaintButtons(CDC& dc)
{
    for (const ButtonPlace& place : kButtonPlaces) {
        if (!IsButtonShown(place.nCommand))
            continue;
        const bool bSwitchedOff =
            (place.nCommand == 10005 && m_bNoLaunch) || (place.nCommand == 10006 && m_bNoAutoStart);
        const bool bOver = m_nHovered == place.nCommand;
        const bool bHover = bOver ? m_nPressed == 0 : m_nPressed == place.nCommand;
        const CPoint ptPicture = bSwitchedOff ? place.ptChecked : bHover ? place.ptHover : place.ptUp;
        dc.BitBlt(place.rcWindow.left, place.rcWindow.top, place.rcWindow.Width(), place.rcWindow.Height(), &m_dcSkin,
                  ptPicture.x, ptPicture.y, SRCCOPY);
    }
}

void MeravSetupWnd::PaintBusySquares(CDC& dc)
{
    constexpr COLORREF kSquareColour = RGB(204, 96, 1);
    CBrush brush(kSquareColour);
    CPen pen(PS_SOLID, 1, kSquareColour);
    CBrush* pOldBrush = dc.SelectObject(&brush);
    CPen* pOldPen = dc.SelectObject(&pen);
    const int nOldMode = dc.SetROP2(R2_MASKNOTPEN);
    const float fTicks = m_fProgress;
    for (int i = 0; static_cast<float>(i) < fTicks; i++)
        dc.Rectangle(128 + 20 * i, 175, 138 + 20 * i, 185);
    dc.SetROP2(nOldMode);
    dc.SelectObject(pOldPen);
    dc.SelectObject(pOldBrush);
}

void MeravSetupWnd::PaintProgressBar(CDC& dc)
{
    const float fLength = m_fProgress;
    for (int i = 0; static_cast<float>(i) < fLength; i++)
        dc.BitBlt(30 + i, 258, 1, 8, &m_dcSkin, 0, kStripTop, SRCCOPY);
}
