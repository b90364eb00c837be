#include "skinwnd/FramePainter.h"

#include <cstdint>

#include "skinwnd/Tiles.h"

namespace PelkGUI {

namespace {

// Where something must start to end at nEnd.
int StartOf(int nEnd, int nExtent)
{
    return mfc::wrapping_subtract(nEnd, nExtent);
}

// Where something lies in the middle of a side; outside of it when it is larger.
int Centred(int nStart, int nRoom, int nExtent)
{
    return mfc::wrapping_add(nStart, mfc::wrapping_subtract(nRoom, nExtent) / 2);
}

} // namespace

FramePainter::FramePainter(GuiSkinWindow& skin, Frame frame, CDC& dcTop, CDC& dcRest, const CRect& rcFrame,
                           const CSize& sizeImage)
    : m_skin(skin), m_frame(frame), m_dcTop(dcTop), m_dcRest(dcRest), m_rcFrame(rcFrame), m_sizeImage(sizeImage),
      m_rcLeft(rcFrame), m_rcTop(rcFrame), m_rcRight(rcFrame), m_rcBottom(rcFrame)
{}

namespace {

// The part of the inner frame that stands for one of the outer frame. There are none for inactive windows.
constexpr int InnerPart(int nOuterPart)
{
    return nOuterPart < FramePart::TopLeftIA ? nOuterPart - FramePart::TopLeft + FramePart::CTopLeft
                                             : nOuterPart - FramePart::LeftTop + FramePart::CLeftTop;
}
static_assert(InnerPart(FramePart::TopRight) == FramePart::CTopRight);
static_assert(InnerPart(FramePart::BottomRight) == FramePart::CBottomRight);

} // namespace

const CRect* FramePainter::Find(int nOuterPart) const
{
    return FindPart(m_skin, m_frame == Frame::Outer ? nOuterPart : InnerPart(nOuterPart));
}

int FramePainter::ModeOf(int nOuterPart) const
{
    return m_skin.m_pPartMode[m_frame == Frame::Outer ? nOuterPart : InnerPart(nOuterPart)];
}

void FramePainter::Copy(CDC& dc, int x, int y, const CRect& rcPart)
{
    dc.BitBlt(x, y, rcPart.Width(), rcPart.Height(), &m_skin.m_dcSkin, rcPart.left, rcPart.top, SRCCOPY);
}

void FramePainter::DrawTopLeft(int nPart)
{
    if (const CRect* const pPart = Find(nPart)) {
        Copy(m_dcTop, 0, 0, *pPart);
        m_rcLeft.DeflateRect(0, pPart->Height(), 0, 0);
        m_rcTop.DeflateRect(pPart->Width(), 0, 0, 0);
    }
}

void FramePainter::DrawTopRight(int nPart)
{
    if (const CRect* const pPart = Find(nPart)) {
        Copy(m_dcTop, StartOf(m_rcFrame.Width(), pPart->Width()), 0, *pPart);
        m_rcTop.DeflateRect(0, 0, pPart->Width(), 0);
        m_rcRight.DeflateRect(0, pPart->Height(), 0, 0);
    }
}

void FramePainter::DrawOtherCorners()
{
    const int cx = m_rcFrame.Width();
    const int cy = m_rcFrame.Height();
    if (const CRect* const pPart = Find(FramePart::BottomLeft)) {
        Copy(m_dcRest, 0, StartOf(cy, pPart->Height()), *pPart);
        m_rcLeft.DeflateRect(0, 0, 0, pPart->Height());
        m_rcBottom.DeflateRect(pPart->Width(), 0, 0, 0);
    }
    if (const CRect* const pPart = Find(FramePart::BottomRight)) {
        Copy(m_dcRest, StartOf(cx, pPart->Width()), StartOf(cy, pPart->Height()), *pPart);
        m_rcRight.DeflateRect(0, 0, 0, pPart->Height());
        m_rcBottom.DeflateRect(0, 0, pPart->Width(), 0);
    }
    if (const CRect* const pPart = Find(FramePart::LeftTop)) {
        Copy(m_dcRest, 0, m_rcLeft.top, *pPart);
        m_rcLeft.DeflateRect(0, pPart->Height(), 0, 0);
    }
    if (const CRect* const pPart = Find(FramePart::LeftBottom)) {
        Copy(m_dcRest, 0, StartOf(m_rcLeft.bottom, pPart->Height()), *pPart);
        m_rcLeft.DeflateRect(0, 0, 0, pPart->Height());
    }
    if (const CRect* const pPart = Find(FramePart::RightTop)) {
        Copy(m_dcRest, StartOf(m_rcRight.right, pPart->Width()), m_rcRight.top, *pPart);
        m_rcRight.DeflateRect(0, pPart->Height(), 0, 0);
    }
    if (const CRect* const pPart = Find(FramePart::RightBottom)) {
        Copy(m_dcRest, StartOf(m_rcRight.right, pPart->Width()), StartOf(m_rcRight.bottom, pPart->Height()), *pPart);
        m_rcRight.DeflateRect(0, 0, 0, pPart->Height());
    }
}

void FramePainter::DrawLeftEdge()
{
    const CRect* const pPart = Find(FramePart::Left);
    if (!pPart || m_rcLeft.top >= m_rcLeft.bottom)
        return;
    FillColumn(m_dcRest, 0, m_rcLeft.top, m_rcLeft.bottom, *pPart, ModeOf(FramePart::Left));
    if (const CRect* const pMiddle = Find(FramePart::LeftMiddle))
        DrawMiddleDown(*pMiddle, 0);
}

void FramePainter::DrawTopEdge(int nPart, int nMiddlePart)
{
    const CRect* const pPart = Find(nPart);
    if (!pPart || m_rcTop.left >= m_rcTop.right)
        return;
    FillRow(m_dcTop, 0, m_rcTop.left, m_rcTop.right, *pPart, ModeOf(nPart));
    if (const CRect* const pMiddle = Find(nMiddlePart))
        DrawMiddleAcross(m_dcTop, *pMiddle, 0);
}

void FramePainter::DrawRightEdge()
{
    const CRect* const pPart = Find(FramePart::Right);
    if (!pPart || m_rcRight.top >= m_rcRight.bottom)
        return;
    FillColumn(m_dcRest, StartOf(m_rcFrame.right, pPart->Width()), m_rcRight.top, m_rcRight.bottom, *pPart,
               ModeOf(FramePart::Right));
    if (const CRect* const pMiddle = Find(FramePart::RightMiddle))
        DrawMiddleDown(*pMiddle, StartOf(m_rcFrame.right, pMiddle->Width()));
}

void FramePainter::DrawBottomEdge()
{
    if (m_rcTop.left >= m_rcTop.right)
        return; // the top edge's room, not the bottom's: kept on purpose
    const CRect* const pPart = Find(FramePart::Bottom);
    if (pPart) {
        // The inner frame's goes by the mode of "CTop": kept on purpose.
        const int nMode = ModeOf(m_frame == Frame::Outer ? FramePart::Bottom : FramePart::Top);
        FillRow(m_dcRest, StartOf(m_rcFrame.bottom, pPart->Height()), m_rcBottom.left, m_rcBottom.right, *pPart, nMode);
    }
    const CRect* const pMiddle = Find(FramePart::BottomMiddle);
    if (pMiddle && (pPart || m_frame == Frame::Inner))
        DrawMiddleAcross(m_dcRest, *pMiddle, StartOf(m_rcFrame.bottom, pMiddle->Height()));
}

void FramePainter::DrawMiddleAcross(CDC& dc, const CRect& rcPart, int y)
{
    Copy(dc, Centred(m_rcFrame.left, m_rcFrame.Width(), rcPart.Width()), y, rcPart);
}

void FramePainter::DrawMiddleDown(const CRect& rcPart, int x)
{
    Copy(m_dcRest, x, Centred(m_rcFrame.top, m_rcFrame.Height(), rcPart.Height()), rcPart);
}

// Fills [nLeft, nRight) of the row at y with the part, in pixels, if there is any room. Tiles begin at nLeft; the last
// one is cut to what is left of the run and shows the part's leading columns. A tile without a width draws nothing.
void FramePainter::FillRow(CDC& dc, int y, int nLeft, int nRight, const CRect& rcPart, int nMode)
{
    if (nLeft >= nRight)
        return;
    if (nMode == PART_STRETCH) {
        Stretch(dc, CRect(CPoint(nLeft, y), CSize(mfc::wrapping_subtract(nRight, nLeft), rcPart.Height())), rcPart);
        return;
    }
    if (GrowTiles(dc, CRect(nLeft, y, nRight, mfc::wrapping_add(y, rcPart.Height())), rcPart, CSize(1, 0)))
        return;
    CRect rcClip;
    dc.GetClipBox(&rcClip);
    const Tiles tiles(nLeft, nRight, rcPart.Width(), rcClip.left, rcClip.right);
    const Patch patch = PatchOf(rcPart, CSize(rcPart.Width(), 0), tiles.Count());
    int cx = 0;
    for (std::int64_t x = tiles.First(); x < tiles.End(); x += cx) {
        cx = tiles.Reach(x, patch.nTiles);
        dc.BitBlt(static_cast<int>(x), y, cx, rcPart.Height(), patch.pDC, patch.pt.x, patch.pt.y, SRCCOPY);
    }
}

// The same for [nTop, nBottom) of the column at x.
void FramePainter::FillColumn(CDC& dc, int x, int nTop, int nBottom, const CRect& rcPart, int nMode)
{
    if (nTop >= nBottom)
        return;
    if (nMode == PART_STRETCH) {
        Stretch(dc, CRect(CPoint(x, nTop), CSize(rcPart.Width(), mfc::wrapping_subtract(nBottom, nTop))), rcPart);
        return;
    }
    if (GrowTiles(dc, CRect(x, nTop, mfc::wrapping_add(x, rcPart.Width()), nBottom), rcPart, CSize(0, 1)))
        return;
    CRect rcClip;
    dc.GetClipBox(&rcClip);
    const Tiles tiles(nTop, nBottom, rcPart.Height(), rcClip.top, rcClip.bottom);
    const Patch patch = PatchOf(rcPart, CSize(0, rcPart.Height()), tiles.Count());
    int cy = 0;
    for (std::int64_t y = tiles.First(); y < tiles.End(); y += cy) {
        cy = tiles.Reach(y, patch.nTiles);
        dc.BitBlt(x, static_cast<int>(y), rcPart.Width(), cy, patch.pDC, patch.pt.x, patch.pt.y, SRCCOPY);
    }
}

// Draws one tile and copies what stands there next to it, each time twice as much. FALSE: not all of the run shows, so
// that it cannot be copied from; or it runs leftward, and as tiles are not mirrored, a cut one is not how another
// begins.
bool FramePainter::GrowTiles(CDC& dc, const CRect& rcRun, const CRect& rcPart, const CSize& sizeAlong)
{
    CRect rcClip;
    if (dc.GetLayout() != 0 || dc.GetClipBox(&rcClip) != SIMPLEREGION || (rcClip & rcRun) != rcRun ||
        !IsWithin(rcPart, m_sizeImage))
        return false;
    const auto lengthOf = [&](const CRect& rc) { return rc.Width() * sizeAlong.cx + rc.Height() * sizeAlong.cy; };
    const int nRun = lengthOf(rcRun);
    const auto copy = [&](int nDone, int nMore, CDC& dcFrom, CPoint ptFrom) {
        const int cx = sizeAlong.cx ? nMore : rcRun.Width();
        const int cy = sizeAlong.cy ? nMore : rcRun.Height();
        dc.BitBlt(rcRun.left + nDone * sizeAlong.cx, rcRun.top + nDone * sizeAlong.cy, cx, cy, &dcFrom, ptFrom.x,
                  ptFrom.y, SRCCOPY);
    };
    int nDone = std::min(nRun, lengthOf(rcPart));
    copy(0, nDone, m_skin.m_dcSkin, rcPart.TopLeft());
    for (; nDone < nRun; nDone *= 2)
        copy(nDone, std::min(nDone, nRun - nDone), dc, rcRun.TopLeft());
    return true;
}

FramePainter::Patch FramePainter::PatchOf(const CRect& rcPart, const CSize& sizeStep, std::int64_t nWanted)
{
    constexpr int kWorthwhile = 2; // tiles in a patch, and patches in a run
    const Patch single{ &m_skin.m_dcSkin, rcPart.TopLeft(), 1 };
    const int cx = rcPart.Width();
    const int cy = rcPart.Height();
    // What lies outside the image is not drawn, and a patch cannot say that of its pixels.
    if (!IsWithin(rcPart, m_sizeImage) || std::max(cx, cy) > kPatchExtent)
        return single;
    const int nTiles =
        static_cast<int>(std::min<std::int64_t>(nWanted / kWorthwhile, kPatchExtent / (sizeStep.cx + sizeStep.cy)));
    CDC* const pTileDC = nTiles < kWorthwhile ? nullptr : m_skin.TileContext();
    if (!pTileDC)
        return single;
    Copy(*pTileDC, 0, 0, rcPart);
    for (int nDone = 1; nDone < nTiles; nDone *= 2) {
        const int nMore = std::min(nDone, nTiles - nDone) - 1;
        pTileDC->BitBlt(nDone * sizeStep.cx, nDone * sizeStep.cy, cx + nMore * sizeStep.cx, cy + nMore * sizeStep.cy,
                        pTileDC, 0, 0, SRCCOPY);
    }
    return { pTileDC, CPoint(0, 0), nTiles };
}

void FramePainter::Stretch(CDC& dc, const CRect& rcRun, const CRect& rcPart)
{
    dc.SetStretchBltMode(COLORONCOLOR); // the skin's edge colours reach the screen unmixed
    dc.StretchBlt(rcRun.left, rcRun.top, rcRun.Width(), rcRun.Height(), &m_skin.m_dcSkin, rcPart.left, rcPart.top,
                  rcPart.Width(), rcPart.Height(), SRCCOPY);
}

} // namespace PelkGUI
