// Painting a window's frame, its inner frame and its background.
#include "skin/GuiSkinWindow.h"

#include <algorithm>
#include <utility>

#include "look/GuiInterface.h"
#include "look/GuiManager.h"
#include "skin/WindowSkinPtr.h"
#include "skinwnd/FramePainter.h"
#include "skinwnd/Tiles.h"

namespace PelkGUI {

void GuiSkinWindow::Prepare(CDC* pDC)
{
    CreateSkinContext(pDC);
    if (!m_hOldBitmap)
        m_hOldBitmap = static_cast<HBITMAP>(::SelectObject(m_dcSkin.GetSafeHdc(), m_bmpImage.GetSafeHandle()));
    const GuiManager& manager = GetGuiManager();
    if (manager.m_bRightToLeft && manager.m_pfnSetLayout)
        manager.m_pfnSetLayout(m_dcSkin.GetSafeHdc(), LAYOUT_BITMAPORIENTATIONPRESERVED);
}

void GuiSkinWindow::CreateSkinContext(CDC* pDC)
{
    if (!m_dcSkin.GetSafeHdc())
        m_dcSkin.Attach(::CreateCompatibleDC(pDC ? pDC->GetSafeHdc() : nullptr));
}

// What FramePainter puts tiles together in; null: there is no memory.
CDC* GuiSkinWindow::TileContext()
{
    constexpr int kExtent = FramePainter::kPatchExtent;
    if (!m_bmpTiles.GetSafeHandle()) {
        if (!m_dcTiles.GetSafeHdc())
            m_dcTiles.CreateCompatibleDC(&m_dcSkin);
        if (!m_bmpTiles.CreateBitmap(kExtent, kExtent, 1, 32, nullptr))
            return nullptr;
        ::SelectObject(m_dcTiles.GetSafeHdc(), m_bmpTiles.GetSafeHandle());
    }
    m_dcTiles.SetLayout(m_dcSkin.GetLayout());
    return &m_dcTiles;
}

CSize GuiSkinWindow::ImageSize() const
{
    BITMAP image{};
    m_bmpImage.GetBitmap(&image);
    return { image.bmWidth, image.bmHeight };
}

namespace {

// Paint's nActive; 0 asks the system.
constexpr int kInactive = 1;
constexpr int kActive = 2;

bool IsActiveWindow(const CWnd& wnd)
{
    if (wnd.IsKindOf(RUNTIME_CLASS(CMDIChildWnd))) {
        const CMDIFrameWnd* const pFrame = static_cast<const CMDIChildWnd&>(wnd).GetMDIFrame();
        return pFrame && pFrame->MDIGetActive() == &wnd;
    }
    return wnd.GetSafeHwnd() && wnd.GetSafeHwnd() == ::GetForegroundWindow();
}

HICON IconOf(HWND hWnd)
{
    const LRESULT nSmall = ::SendMessageA(hWnd, WM_GETICON, ICON_SMALL, 0);
    return reinterpret_cast<HICON>(nSmall ? nSmall : ::SendMessageA(hWnd, WM_GETICON, ICON_BIG, 0));
}

} // namespace

void GuiSkinWindow::Paint(CWnd* pWnd, CDC& dc, int bCaptionOnly, int nActive)
{
    Prepare(&dc);
    CRect rcWindow;
    pWnd->GetWindowRect(&rcWindow);
    rcWindow = CRect(CPoint(), rcWindow.Size());
    if (nActive == 0)
        nActive = IsActiveWindow(*pWnd) ? kActive : kInactive;

    // Asking the window may draw elsewhere, so the shared buffer comes afterwards; it may also end the window, or this
    // object. The text's memory is kept from one painting to the next; meanwhile it is ours alone, should this window
    // be painted while it answers.
    const WindowSkinPtr pSelf(this);
    const HWND hWnd = pWnd->GetSafeHwnd();
    const bool bIcon = m_pAnchorPresent[CaptionAnchor::Icon] != 0;
    CString strCaption = std::move(m_strPaintedCaption);
    TakeCaption(*pWnd, strCaption);
    const HICON hIcon = bIcon ? IconOf(hWnd) : nullptr;
    if (!pSelf || !::IsWindow(hWnd))
        return;

    const int nCaptionHeight = GreatestHeight(*this, { FramePart::TopLeft, FramePart::Top, FramePart::TopRight });
    CSize sizeStrip(rcWindow.Width(), std::min(nCaptionHeight, rcWindow.Height())); // what is below does not show
    CDC& dcStrip = *GetGuiInterface().GetBuffer(dc, sizeStrip);
    const CSize sizeImage = ImageSize();
    // Nothing covers a button, nor one the other that came before it. To leave their places out would cut all that is
    // drawn to pieces; buttons that cover the whole of them can come last as well.
    const bool bButtonsLast = ButtonsCoverTheirPlaces(sizeImage);
    if (!bButtonsLast) {
        for (int nButton = CaptionAnchor::System; nButton <= CaptionAnchor::Close; nButton++)
            dcStrip.ExcludeClipRect(PaintCaptionButton(dcStrip, rcWindow, nButton));
    }
    PaintOuterFrame(dcStrip, dc, rcWindow, bCaptionOnly, nActive == kInactive, sizeImage);
    if (hIcon)
        PaintCaptionIcon(dcStrip, rcWindow, hIcon);
    if (m_bCaption && !strCaption.IsEmpty())
        PaintCaptionText(dcStrip, strCaption, rcWindow.Width(), nActive == kActive ? m_crColour : m_crInactiveColour);
    for (int nButton = CaptionAnchor::Close; bButtonsLast && nButton >= CaptionAnchor::System; nButton--)
        PaintCaptionButton(dcStrip, rcWindow, nButton);
    dc.BitBlt(0, 0, sizeStrip.cx, sizeStrip.cy, &dcStrip, 0, 0, SRCCOPY);
    dcStrip.SelectClipRgn(nullptr);
    dc.SetTextColor(0);
    m_strPaintedCaption = std::move(strCaption);
}

void GuiSkinWindow::PaintOuterFrame(CDC& dcStrip, CDC& dc, const CRect& rcWindow, int bCaptionOnly, bool bInactive,
                                    const CSize& sizeImage)
{
    using namespace FramePart;
    const auto inLook = [&](int nPart, int nInactivePart) {
        return bInactive && FindPart(*this, nInactivePart) ? nInactivePart : nPart;
    };
    FramePainter painter(*this, FramePainter::Frame::Outer, dcStrip, dc, rcWindow, sizeImage);
    const int nTopLeft = inLook(TopLeft, TopLeftIA);
    painter.DrawTopLeft(nTopLeft);
    PaintMirrorStrips(dcStrip, nTopLeft);
    painter.DrawTopRight(inLook(TopRight, TopRightIA));
    if (!bCaptionOnly) {
        painter.DrawOtherCorners();
        painter.DrawLeftEdge();
    }
    const int nTop = inLook(Top, TopIA);
    painter.DrawTopEdge(nTop, nTop == TopIA ? TopIAMiddle : TopMiddle);
    if (!bCaptionOnly) {
        painter.DrawRightEdge();
        painter.DrawBottomEdge();
    }
}

void GuiSkinWindow::PaintClient(CDC* pDC, const CRect& rcClient)
{
    PrepareOnce(pDC);
    FramePainter painter(*this, FramePainter::Frame::Inner, *pDC, *pDC, rcClient, ImageSize());
    painter.DrawTopLeft(FramePart::TopLeft);
    painter.DrawTopRight(FramePart::TopRight);
    painter.DrawOtherCorners();
    painter.DrawLeftEdge();
    painter.DrawTopEdge(FramePart::Top, FramePart::TopMiddle);
    painter.DrawRightEdge();
    painter.DrawBottomEdge();
}

BOOL GuiSkinWindow::OnEraseBkgnd(CWnd* pWnd, CDC* pDC)
{
    BITMAP info{};
    if (!m_bmpWatermark.GetSafeHandle() || !m_bmpWatermark.GetBitmap(&info))
        return FALSE;
    CreateSkinContext(pDC);
    const HGDIOBJ hOld = ::SelectObject(m_dcSkin.GetSafeHdc(), m_bmpWatermark.GetSafeHandle());
    if (!hOld)
        return FALSE;
    CRect rcClient;
    pWnd->GetClientRect(&rcClient);
    CRect rcClip;
    pDC->GetClipBox(&rcClip);
    const Tiles across(rcClient.left, rcClient.right, info.bmWidth, rcClip.left, rcClip.right);
    const Tiles down(rcClient.top, rcClient.bottom, info.bmHeight, rcClip.top, rcClip.bottom);
    for (std::int64_t y = down.First(); y < down.End(); y += info.bmHeight) {
        for (std::int64_t x = across.First(); x < across.End(); x += info.bmWidth)
            pDC->BitBlt(static_cast<int>(x), static_cast<int>(y), info.bmWidth, info.bmHeight, &m_dcSkin, 0, 0,
                        SRCCOPY);
    }
    ::SelectObject(m_dcSkin.GetSafeHdc(), hOld);
    return TRUE;
}

} // namespace PelkGUI
