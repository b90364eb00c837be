// What lies in the caption strip: buttons, icon and text, and the strips of the corner that a mirrored frame window
// turns back.
#include "skin/GuiSkinWindow.h"

#include <algorithm>

#include "look/GuiManager.h"
#include "skinwnd/FramePart.h"

namespace PelkGUI {

void GuiSkinWindow::TakeCaption(const CWnd& wnd, CString& strCaption) const
{
    if (!m_bCaption)
        return;
    const BOOL bCaps = m_bCaps;
    wnd.GetWindowText(strCaption); // may be the end of this object
    if (bCaps) {
        ::CharUpperA(strCaption.GetBuffer(strCaption.GetLength()));
        strCaption.ReleaseBuffer();
    }
}

// The part in which a button shows; null: it does not. One that is pressed while the mouse is elsewhere is at rest.
const CRect* GuiSkinWindow::ButtonPart(int nButton) const
{
    int nPart = FramePart::System + 3 * (nButton - CaptionAnchor::System);
    if (m_nHoverHit == nButton)
        nPart += m_nPressedHit == nButton ? 2 : 1;
    return m_pAnchorPresent[nButton] ? FindPart(*this, nPart) : nullptr;
}

bool GuiSkinWindow::ButtonsCoverTheirPlaces(const CSize& sizeImage) const
{
    for (int nButton = CaptionAnchor::System; nButton <= CaptionAnchor::Close; nButton++) {
        const CRect* const pPart = ButtonPart(nButton);
        if (pPart && !IsWithin(*pPart, sizeImage))
            return false;
    }
    return true;
}

// The button's place; empty if it does not show.
CRect GuiSkinWindow::PaintCaptionButton(CDC& dcStrip, const CRect& rcWindow, int nButton)
{
    const CRect* const pPart = ButtonPart(nButton);
    if (!pPart)
        return {};
    CRect rcButton;
    ResolveAnchor(rcWindow, rcButton, nButton);
    rcButton = CRect(rcButton.TopLeft(), pPart->Size());
    if (nButton == CaptionAnchor::Close && GetGuiManager().m_bRightToLeft && FindPart(*this, FramePart::Top))
        // Mirrored, and only this button: kept on purpose.
        dcStrip.StretchBlt(mfc::wrapping_subtract(rcButton.right, 1), rcButton.top,
                           mfc::wrapping_subtract(0, pPart->Width()), pPart->Height(), &m_dcSkin, pPart->left,
                           pPart->top, pPart->Width(), pPart->Height(), SRCCOPY);
    else
        dcStrip.BitBlt(rcButton.left, rcButton.top, pPart->Width(), pPart->Height(), &m_dcSkin, pPart->left, pPart->top,
                       SRCCOPY);
    return rcButton;
}

void GuiSkinWindow::PaintMirrorStrips(CDC& dcStrip, int nCornerPart)
{
    const CRect* const pPart = FindPart(*this, nCornerPart);
    if (!pPart || !GetGuiManager().m_bRightToLeft || m_nMirror == 0 || m_strTargets != "|GuiMDIFrameWnd|")
        return;
    // A strip that is `nWidth` wide and ends nGap pixels before the corner's right edge.
    const auto mirrorStrip = [&](int nGap, int nWidth) {
        const int x = mfc::wrapping_subtract(pPart->Width(), nGap);
        const int xSource = mfc::wrapping_subtract(mfc::wrapping_add(pPart->left, x), nWidth);
        dcStrip.StretchBlt(x, 0, mfc::wrapping_subtract(0, nWidth), pPart->Height(), &m_dcSkin, xSource, pPart->top,
                           nWidth, pPart->Height(), SRCCOPY);
    };
    // The anchor's four numbers are gaps and widths in turn, from the right.
    const int nFirstGap = m_rcMirror.left;
    const int nFirstWidth = m_rcMirror.top;
    mirrorStrip(nFirstGap, nFirstWidth);
    if (m_nMirror == 2)
        mirrorStrip(mfc::wrapping_add(mfc::wrapping_add(nFirstGap, nFirstWidth), m_rcMirror.Width()),
                    m_rcMirror.Height());
}

void GuiSkinWindow::PaintCaptionIcon(CDC& dcStrip, const CRect& rcWindow, HICON hIcon) const
{
    constexpr int kIconExtent = 16;
    CRect rcIcon;
    ResolveAnchor(rcWindow, rcIcon, CaptionAnchor::Icon);
    ::DrawIconEx(dcStrip.GetSafeHdc(), rcIcon.left, rcIcon.top, hIcon, kIconExtent, kIconExtent, 0, nullptr, DI_NORMAL);
}

namespace {

// A negative number counts from the window's right edge.
int FromEdge(int n, int cxWindow)
{
    return n < 0 ? mfc::wrapping_add(n, cxWindow) : n;
}

// Where caption text may show. The third number is the right edge itself, the fourth stays a height: kept on purpose.
CRect CaptionRect(const CRect& rcCaption, int cxWindow)
{
    return { FromEdge(rcCaption.left, cxWindow), rcCaption.top, FromEdge(rcCaption.Width(), cxWindow),
             rcCaption.bottom };
}

CPoint CaptionOrigin(const CRect& rcText, CSize size, int nAlign)
{
    const int nLeftmost = mfc::wrapping_add(rcText.left, 1);
    const CPoint ptCentred(rcText.CenterPoint() - CSize(size.cx / 2, size.cy / 2));
    int x = nLeftmost;
    if (nAlign == 1)
        x = std::max<int>(nLeftmost, ptCentred.x);
    else if (nAlign == 2)
        x = std::max(nLeftmost, mfc::wrapping_subtract(rcText.right, size.cx + 1));
    return { x, ptCentred.y };
}

} // namespace

void GuiSkinWindow::PaintCaptionText(CDC& dcStrip, const CString& strText, int cxWindow, COLORREF crText) const
{
    const HGDIOBJ hOldFont = ::SelectObject(dcStrip.GetSafeHdc(), m_fontCaption.GetSafeHandle());
    const CRect rcText = CaptionRect(m_rcCaption, cxWindow);
    const CPoint ptText = CaptionOrigin(rcText, dcStrip.GetTextExtent(strText), m_nAlign);
    const auto drawAt = [&](CSize offset) {
        const CPoint pt = ptText + offset;
        dcStrip.ExtTextOut(pt.x, pt.y, ETO_CLIPPED, &rcText, strText, nullptr);
    };
    dcStrip.SetBkMode(TRANSPARENT);
    if (m_crShadowColour != kNoColour) { // and no outline then
        dcStrip.SetTextColor(m_crShadowColour);
        drawAt({ 1, 1 });
    } else if (m_crOutlineColour != kNoColour) {
        constexpr CSize kNeighbours[] = { { -1, -1 }, { 0, -1 }, { 1, -1 }, { -1, 0 },
                                          { 1, 0 },   { -1, 1 }, { 0, 1 },  { 1, 1 } };
        dcStrip.SetTextColor(m_crOutlineColour);
        for (const CSize& offset : kNeighbours)
            drawAt(offset);
    }
    dcStrip.SetTextColor(crText);
    drawAt({ 0, 0 });
    if (hOldFont)
        ::SelectObject(dcStrip.GetSafeHdc(), hOldFont);
}

} // namespace PelkGUI
