#include "tests/skinwnd/PaintModel.h"

#include <algorithm>

#include "look/GuiManager.h"
#include "skin/SkinFormat.h"

namespace test {

namespace {

constexpr std::uint32_t kLocked = 0x80000000; // a pixel that the clip keeps

int Pick(std::mt19937& random, int nLow, int nHigh)
{
    return std::uniform_int_distribution(nLow, nHigh)(random);
}

CRect Moved(const CRect& rc, int nRight, int nBottom) // an anchor's place in a window
{
    return rc + CPoint(rc.left < 0 ? nRight : 0, rc.top < 0 ? nBottom : 0);
}

} // namespace

void Pixels::FillRandomly(std::mt19937& random)
{
    std::generate(all.begin(), all.end(), [&] { return random() & 0xFFFFFF; });
}

void Pixels::Take(const CBitmap& bmp)
{
    BITMAPINFO info{ { sizeof(BITMAPINFOHEADER), cx, -cy, 1, 32, BI_RGB, 0, 0, 0, 0, 0 }, {} };
    const CClientDC screen(nullptr);
    ::GetDIBits(screen.m_hDC, static_cast<HBITMAP>(bmp.GetSafeHandle()), 0, static_cast<UINT>(cy), all.data(), &info,
                DIB_RGB_COLORS);
}

void Pixels::Draw(DWORD nLayout, const std::function<void(CDC&)>& draw)
{
    CBitmap bmp;
    bmp.Attach(NewBitmap());
    CDC dc;
    dc.CreateCompatibleDC(nullptr);
    const HGDIOBJ hOld = ::SelectObject(dc.GetSafeHdc(), bmp.GetSafeHandle());
    dc.SetLayout(nLayout);
    draw(dc);
    ::SelectObject(dc.GetSafeHdc(), hOld);
    Take(bmp);
}

RandomSkin::RandomSkin(std::mt19937& random, int nLargest) : m_image(64, 48)
{
    const auto pick = [&](int nLow, int nHigh) { return Pick(random, nLow, nHigh); };
    m_image.FillRandomly(random);
    m_bmpImage.Attach(m_image.NewBitmap());
    const int nPresence = pick(1, 10);
    for (int i = 0; i < PelkGUI::kFramePartCount; i++) {
        m_pPartPresent[i] = pick(0, 10) < nPresence;
        m_pPartMode[i] = pick(0, 1);
        m_pPartRect[i] = CRect(CPoint(pick(-3, 60), pick(-3, 45)), CSize(pick(1, nLargest), pick(1, nLargest)));
    }
    for (int i = 0; i < PelkGUI::kCaptionAnchorCount; i++) {
        m_pAnchorPresent[i] = pick(0, 1);
        m_pAnchorRect[i] = CRect(CPoint(pick(-50, 50), pick(-20, 20)), CSize(pick(0, 20), pick(0, 20)));
    }
    m_nHoverHit = pick(0, 4);
    m_nPressedHit = pick(0, 4);
    m_bCaption = pick(0, 1);
    m_bCaps = pick(0, 1);
    m_rcCaption = CRect(CPoint(pick(-90, 30), pick(-5, 9)), CSize(pick(-30, 90), pick(0, 30)));
    m_nAlign = pick(0, 2);
    m_crShadowColour = pick(0, 1) ? PelkGUI::kNoColour : random() & 0xFFFFFF;
    m_crOutlineColour = pick(0, 1) ? PelkGUI::kNoColour : random() & 0xFFFFFF;
    m_strTargets = pick(0, 3) ? "|GuiMDIFrameWnd|" : "|GuiMDIFrameWnd||Other|";
    m_nMirror = pick(0, 2);
    m_rcMirror = CRect(CPoint(pick(0, 5), pick(1, 5)), CSize(pick(0, 5), pick(1, 5)));
}

CRect ModelPainter::Part(int nPart) const
{
    return m_skin.m_pPartPresent[nPart] ? m_skin.m_pPartRect[nPart] : CRect();
}

// Pictures keep their orientation in mirrored places.
void ModelPainter::Put(Pixels& to, const CRect& rcPlace, const CRect& rcFrom, bool bFlip)
{
    const int nLeft = m_bMirrored ? to.cx - rcPlace.right : rcPlace.left;
    for (int y = 0; y < rcPlace.Height(); y++) {
        for (int x = 0; x < rcPlace.Width(); x++) {
            const int n = bFlip ? rcPlace.Width() - 1 - x : x;
            std::uint32_t* const pTo = to.At(nLeft + x, rcPlace.top + y);
            const std::uint32_t* const pFrom =
                m_skin.m_image.At(rcFrom.left + (2 * n + 1) * rcFrom.Width() / (2 * rcPlace.Width()),
                                  rcFrom.top + (2 * y + 1) * rcFrom.Height() / (2 * rcPlace.Height()));
            if (pTo && pFrom && !(*pTo & kLocked))
                *pTo = *pFrom;
        }
    }
}

void ModelPainter::Fill(Pixels& to, const CRect& rcRun, int nPart, int nMode)
{
    const CRect rc = Part(nPart);
    if (nMode == PelkGUI::PART_STRETCH) {
        Put(to, rcRun, rc);
        return;
    }
    for (int y = rcRun.top; y < rcRun.bottom; y += rc.Height()) {
        for (int x = rcRun.left; x < rcRun.right; x += rc.Width()) {
            const CSize size(std::min(rc.Width(), rcRun.right - x), std::min(rc.Height(), rcRun.bottom - y));
            Put(to, CRect(CPoint(x, y), size), CRect(rc.TopLeft(), size));
        }
    }
}

void ModelPainter::DrawFrame(Pixels& top, Pixels& rest, const CRect& rcFrame, bool bInner, bool bCaptionOnly,
                             int nActive)
{
    enum { TL, T, TM, TR, LT = 8, L, LM, LB, RT, R, RM, RB, BL, B, BM, BR };
    const auto inactive = [&](int n) { return n < LT && !bInner && nActive == 1 && m_skin.m_pPartPresent[n + 4]; };
    const auto index = [&](int n) { return n + (bInner ? (n < LT ? 20 : 16) : inactive(n) ? 4 : 0); };
    const auto part = [&](int n) { return Part(index(n)); };
    const auto has = [&](int n) { return m_skin.m_pPartPresent[index(n)] == 1; };
    const auto mode = [&](int n) { return m_skin.m_pPartMode[index(n)]; };
    const auto w = [&](int n) { return part(n).Width(); };
    const auto h = [&](int n) { return part(n).Height(); };
    const auto put = [&](Pixels& to, int n, int x, int y) { Put(to, CRect(CPoint(x, y), part(n).Size()), part(n)); };
    const CRect& F = rcFrame;
    const CRect room(F.left + w(TL), F.top + h(TL) + h(LT), F.right - w(TR), F.bottom - h(BL) - h(LB)); // top, left
    const CRect far(F.left + w(BL), F.top + h(TR) + h(RT), F.right - w(BR), F.bottom - h(BR) - h(RB));  // bottom, right
    const int xMiddle = F.left, yMiddle = F.top;

    put(top, TL, 0, 0);
    if (!bInner)
        DrawMirrorStrips(top, part(TL));
    put(top, TR, F.Width() - w(TR), 0);
    if (!bCaptionOnly) {
        put(rest, BL, 0, F.Height() - h(BL));
        put(rest, BR, F.Width() - w(BR), F.Height() - h(BR));
        put(rest, LT, 0, F.top + h(TL));
        put(rest, LB, 0, room.bottom);
        put(rest, RT, F.right - w(RT), F.top + h(TR));
        put(rest, RB, F.right - w(RB), far.bottom);
    }
    if (!bCaptionOnly && has(L) && room.top < room.bottom) {
        Fill(rest, CRect(0, room.top, w(L), room.bottom), index(L), mode(L));
        put(rest, LM, 0, yMiddle + (F.Height() - h(LM)) / 2);
    }
    if (has(T) && room.left < room.right) {
        Fill(top, CRect(room.left, 0, room.right, h(T)), index(T), mode(T));
        const CRect rcMiddle = inactive(T) ? Part(TM + 4) : Part(bInner ? TM + 20 : TM); // the edge's own
        Put(top, CRect(CPoint(xMiddle + (F.Width() - rcMiddle.Width()) / 2, 0), rcMiddle.Size()), rcMiddle);
    }
    if (!bCaptionOnly && has(R) && far.top < far.bottom) {
        Fill(rest, CRect(F.right - w(R), far.top, F.right, far.bottom), index(R), mode(R));
        put(rest, RM, F.right - w(RM), yMiddle + (F.Height() - h(RM)) / 2);
    }
    if (!bCaptionOnly && room.left < room.right) {
        if (has(B) && far.left < far.right)
            Fill(rest, CRect(far.left, F.bottom - h(B), far.right, F.bottom), index(B), mode(bInner ? T : B));
        if (has(B) || bInner)
            put(rest, BM, xMiddle + (F.Width() - w(BM)) / 2, F.bottom - h(BM));
    }
}

void ModelPainter::DrawMirrorStrips(Pixels& strip, const CRect& rcCorner)
{
    const CRect& rc = m_skin.m_rcMirror;
    const int numbers[] = { rc.left, rc.top, rc.Width(), rc.Height() };
    int nEnd = rcCorner.Width();
    for (int i = 0; i < m_skin.m_nMirror * 2 && m_bMirrored && m_skin.m_strTargets == "|GuiMDIFrameWnd|"; i += 2) {
        nEnd -= numbers[i];
        const int nWidth = numbers[i + 1];
        if (rcCorner.Width() > 0) // the strip begins one column further right than it is taken from
            Put(strip, CRect(nEnd - nWidth + 1, 0, nEnd + 1, rcCorner.Height()),
                CRect(CPoint(rcCorner.left + nEnd - nWidth, rcCorner.top), CSize(nWidth, rcCorner.Height())), true);
        nEnd -= nWidth;
    }
}

void ModelPainter::DrawButtons(Pixels& strip)
{
    for (int i = 1; i <= 4; i++) {
        const int nLook = m_skin.m_nHoverHit != i ? 0 : m_skin.m_nPressedHit == i ? 2 : 1;
        const CRect rcPart = Part(33 + 3 * i + nLook);
        if (!m_skin.m_pAnchorPresent[i] || rcPart.IsRectEmpty())
            continue;
        const CRect rcPlace(Moved(m_skin.m_pAnchorRect[i], strip.cx, m_nHeight).TopLeft(), rcPart.Size());
        Put(strip, rcPlace, rcPart, i == 4 && m_bMirrored && m_skin.m_pPartPresent[1]);
        for (int y = rcPlace.top; y < rcPlace.bottom; y++) {
            for (int x = rcPlace.left; x < rcPlace.right; x++) {
                if (std::uint32_t* const pPixel = strip.At(m_bMirrored ? strip.cx - 1 - x : x, y))
                    *pPixel |= kLocked;
            }
        }
    }
}

void ModelPainter::DrawText(CDC& dc, int cx, const CString& strText, int nActive) const
{
    const CRect& rc = m_skin.m_rcCaption;
    const int nRight = rc.right - rc.left;
    const CRect rcText(rc.left < 0 ? rc.left + cx : rc.left, rc.top, nRight < 0 ? nRight + cx : nRight, rc.bottom);
    const CSize size = dc.GetTextExtent(strText);
    const int positions[] = { rcText.left + 1, (rcText.left + rcText.right) / 2 - size.cx / 2,
                              rcText.right - size.cx - 1 };
    const int x = std::max(positions[m_skin.m_nAlign], positions[0]);
    const int y = (rcText.top + rcText.bottom) / 2 - size.cy / 2;
    const auto draw = [&](int dx, int dy, COLORREF cr) {
        dc.SetTextColor(cr);
        dc.ExtTextOut(x + dx, y + dy, ETO_CLIPPED, &rcText, strText, nullptr);
    };
    dc.SetBkMode(TRANSPARENT);
    if (m_skin.m_crShadowColour != PelkGUI::kNoColour)
        draw(1, 1, m_skin.m_crShadowColour);
    else if (m_skin.m_crOutlineColour != PelkGUI::kNoColour)
        for (const int i : { 0, 1, 2, 3, 5, 6, 7, 8 })
            draw(i % 3 - 1, i / 3 - 1, m_skin.m_crOutlineColour);
    draw(0, 0, nActive == 2 ? m_skin.m_crColour : m_skin.m_crInactiveColour);
}

void ModelPainter::Paint(Pixels& dc, bool bCaptionOnly, int nActive, const CString& strText, HICON hIcon)
{
    m_nHeight = dc.cy;
    Pixels strip(dc.cx, std::max({ Part(0).Height(), Part(1).Height(), Part(3).Height() })); // black
    DrawButtons(strip);
    DrawFrame(strip, dc, CRect(0, 0, dc.cx, dc.cy), false, bCaptionOnly, nActive);
    if (strip.cy == 0)
        return;
    Pixels lettered = strip;
    lettered.Draw(m_bMirrored ? LAYOUT_RTL : 0, [&](CDC& dcStrip) {
        const CRect rcIcon = Moved(m_skin.m_pAnchorRect[0], dc.cx, dc.cy);
        if (m_skin.m_pAnchorPresent[0] && hIcon)
            ::DrawIconEx(dcStrip.GetSafeHdc(), rcIcon.left, rcIcon.top, hIcon, 16, 16, 0, nullptr, DI_NORMAL);
        if (m_skin.m_bCaption)
            DrawText(dcStrip, dc.cx, strText, nActive);
    });
    for (int y = 0; y < std::min(strip.cy, dc.cy); y++) {
        for (int x = 0; x < strip.cx; x++)
            *dc.At(x, y) = (*strip.At(x, y) & kLocked ? *strip.At(x, y) : *lettered.At(x, y)) & 0xFFFFFF;
    }
}

} // namespace test
