#include "skinwnd/GuiSkinInterface.h"

#include <cstdint>
#include <cstdlib>

#include "look/GuiInterface.h"
#include "look/GuiManager.h"
#include "skin/GuiSkin.h"
#include "skin/GuiSkinWindow.h"

namespace PelkGUI {

namespace {

constexpr int kSnapPixels = 6;

// The anchor of that name, else the part; neither leaves the rectangle as it is.
void TakePlace(const GuiSkinWindow& skin, const char* pszName, CRect& rc)
{
    if (!skin.GetAnchor(pszName, rc))
        skin.GetPart(pszName, rc);
}

using Wide = std::int64_t; // positions come from anybody; their sums stay what they are

bool IsNear(Wide nFirst, Wide nSecond)
{
    return std::abs(nFirst - nSecond) < kSnapPixels;
}

// Where one edge or the other is near, the position moves. The far edge sees what the near one did.
void SnapWithin(int& nPosition, int nExtent, int nLow, int nHigh)
{
    if (IsNear(nPosition, nLow))
        nPosition = nLow;
    if (IsNear(Wide{ nPosition } + nExtent, nHigh))
        nPosition = static_cast<int>(Wide{ nHigh } - nExtent);
}

// The rule of systems that know one monitor only. Its bounds are inclusive, and near the low edge is whatever is near
// the screen's origin: both kept on purpose.
void SnapWithinOnlyMonitor(int& nPosition, int nExtent, int nLow, int nHigh)
{
    const Wide nFar = Wide{ nPosition } + nExtent;
    if (std::abs(Wide{ nPosition }) <= Wide{ nLow } + kSnapPixels)
        nPosition = nLow;
    else if (nFar >= Wide{ nHigh } - kSnapPixels && nFar <= Wide{ nHigh } + kSnapPixels)
        nPosition = static_cast<int>(Wide{ nHigh } - nExtent);
}

} // namespace

GuiSkinInterface::~GuiSkinInterface() = default;

void GuiSkinInterface::OnSkinChange()
{
    const std::weak_ptr<const void> life = Life();
    BeforeSkinChange();
    SkinChanging();
    if (!life.expired())
        AfterSkinChange();
}

void GuiSkinInterface::BeforeSkinChange()
{
    if (m_pOwner && !m_strName.IsEmpty())
        m_pSkinWindow = GetGuiSkin().GetWindowSkin(m_strName, nullptr);
    if (m_pOwner && !m_pSkinWindow)
        m_pSkinWindow = GetGuiSkin().GetWindowSkin(m_pOwner);
    if (!m_pSkinWindow)
        return;
    TakePlace(*m_pSkinWindow, "Background", m_rcBackground);
    TakePlace(*m_pSkinWindow, "Windowspos", m_rcWindowPos);
}

void GuiSkinInterface::AfterSkinChange()
{
    if (!m_pSkinWindow || !m_pOwner)
        return;
    const HWND hWnd = m_pOwner->GetSafeHwnd(); // the messages on the way may end the window
    m_pSkinWindow->OnSize(m_pOwner);
    ::SendMessageA(hWnd, WM_SIZE, 0, 0);
    ::InvalidateRect(hWnd, nullptr, TRUE);
}

void GuiSkinInterface::SkinChanging() {}

void GuiSkinInterface::MouseMoveStype(UINT /*nState*/, UINT /*nCommand*/) {}

CDC* GuiSkinInterface::BeforePaint(CDC* pDC, CRect rcClient)
{
    if (!m_pSkinWindow || !m_pOwner)
        return pDC;
    m_pSkinWindow->Prepare(pDC);
    GuiInterface& store = GetGuiInterface();
    CSize size = rcClient.Size();
    CDC* const pBuffer = store.GetBuffer(*pDC, size);
    store.DrawWatermark(pBuffer, &rcClient, &m_pSkinWindow->m_bmpWatermark, 0, 0);
    m_pSkinWindow->PaintClient(pBuffer, rcClient);
    return pBuffer;
}

void GuiSkinInterface::AfterPaint(CDC* pDC, CDC* pBuffer, CRect rcClient)
{
    if (m_pSkinWindow && m_pOwner)
        pDC->BitBlt(0, 0, rcClient.Width(), rcClient.Height(), pBuffer, 0, 0, SRCCOPY);
}

void GuiSkinInterface::Paint(CDC* /*pDC*/, CRect /*rcClient*/) {}

int GuiSkinInterface::EraseBkgnd(CDC* /*pDC*/)
{
    return TRUE;
}

HBRUSH GuiSkinInterface::CtlColor(HBRUSH hBrush, CDC* /*pDC*/, CWnd* /*pWnd*/, UINT /*nCtlColor*/)
{
    return hBrush;
}

void GuiSkinInterface::WindowPosChanging(WINDOWPOS* pPos)
{
    if (!m_pOwner)
        return;
    const GuiManager& manager = GetGuiManager();
    if (!manager.m_pfnGetMonitorInfo || !manager.m_pfnMonitorFromWindow) {
        CRect rcWork;
        ::SystemParametersInfoA(SPI_GETWORKAREA, 0, &rcWork, 0);
        SnapWithinOnlyMonitor(pPos->x, pPos->cx, rcWork.left, rcWork.right);
        SnapWithinOnlyMonitor(pPos->y, pPos->cy, rcWork.top, rcWork.bottom);
        return;
    }
    MONITORINFO info = {};
    info.cbSize = sizeof(info);
    manager.m_pfnGetMonitorInfo(manager.m_pfnMonitorFromWindow(m_pOwner->GetSafeHwnd(), MONITOR_DEFAULTTONEAREST),
                                &info);
    SnapWithin(pPos->x, pPos->cx, info.rcWork.left, info.rcWork.right);
    SnapWithin(pPos->y, pPos->cy, info.rcWork.top, info.rcWork.bottom);
}

void GuiSkinInterface::ReplaceMenu(CMenu* /*pMenu*/) {}

void GuiSkinInterface::InitMenuPopup(CMenu* /*pMenu*/, UINT /*nIndex*/, int /*bSysMenu*/) {}

} // namespace PelkGUI
