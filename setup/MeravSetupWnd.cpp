#include "setup/MeravSetupWnd.h"

#include "skin/GuiSkinWindow.h"

#include <new>

IMPLEMENT_DYNAMIC(MeravSetupWnd, PelkGUI::GuiMiniFrameWnd)

BEGIN_MESSAGE_MAP(MeravSetupWnd, PelkGUI::GuiMiniFrameWnd)
ON_WM_NCHITTEST()
ON_WM_CREATE()
ON_WM_SIZE()
ON_WM_CLOSE()
ON_WM_TIMER()
ON_COMMAND(10001, &MeravSetupWnd::OnInstall)
ON_COMMAND(10002, &MeravSetupWnd::OnExit)
ON_COMMAND(10003, &MeravSetupWnd::OnFinish)
ON_COMMAND(10004, &MeravSetupWnd::OnExit)
ON_COMMAND(10005, &MeravSetupWnd::OnToggleNoLaunch)
ON_COMMAND(10006, &MeravSetupWnd::OnToggleNoAutoStart)
ON_MESSAGE(WM_INSTALL_PROGRESS, &MeravSetupWnd::OnInstallProgress)
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
    return 0;
}

int MeravSetupWnd::CenterAndShow()
{
    OnSkinChange();
    const int x = (GetSystemMetrics(SM_CXSCREEN) - m_rcWindowPos.Width()) / 2;
    const int y = (GetSystemMetrics(SM_CYSCREEN) - m_rcWindowPos.Height()) / 2;
    SetWindowPos(nullptr, x, y, m_rcWindowPos.Width(), m_rcWindowPos.Height(), SWP_SHOWWINDOW);
    return 1;
}

void MeravSetupWnd::SkinChanging()
{
    if (!m_pSkinWindow)
        return;
    for (POSITION pos = m_pSkinWindow->m_mapAnchors.GetStartPosition(); pos;) {
        CString strName;
        CRect* pAnchor = nullptr;
        m_pSkinWindow->m_mapAnchors.GetNextAssoc(pos, strName, pAnchor);
        if (strName.Left(1) != "_")
            continue;
        if (auto* const pButton = new (std::nothrow) PelkGUI::GuiCmdButton(strName))
            m_listButtons.AddTail(pButton);
    }
    ShowButtons({ 10001, 10002, 10003, 10004, 10005, 10006 }, FALSE);
}

void MeravSetupWnd::ShowButtons(std::initializer_list<UINT> commands, BOOL bShow)
{
    for (const UINT nCommand : commands)
        ShowButton(nCommand, bShow);
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

void MeravSetupWnd::OnSize(UINT nType, int cx, int cy)
{
    PelkGUI::GuiMiniFrameWnd::OnSize(nType, cx, cy);
}

UINT MeravSetupWnd::OnNcHitTest(CPoint point)
{
    const UINT nHit = PelkGUI::GuiMiniFrameWnd::OnNcHitTest(point);
    return nHit >= HTLEFT && nHit <= HTBORDER ? HTCLIENT : nHit; // cannot be resized
}

// The frame's timers are not served: a hover ends when the mouse moves off the button, not by the hover timer.
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
                ShowButtons({ 10001, 10002 }, TRUE);
            } else {
                m_bEnvOk = FALSE;
                ShowButtons({ 10002 }, TRUE);
            }
        }
    }
    Invalidate(FALSE);
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

void MeravSetupWnd::OnToggleNoLaunch()
{
    m_bNoLaunch = !m_bNoLaunch;
    CheckButton(10005, m_bNoLaunch);
    Invalidate(FALSE);
}

void MeravSetupWnd::OnToggleNoAutoStart()
{
    m_bNoAutoStart = !m_bNoAutoStart;
    CheckButton(10006, m_bNoAutoStart);
    Invalidate(FALSE);
}
