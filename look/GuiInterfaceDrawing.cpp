// The off-screen buffer and the tiling of watermarks.
#include "look/GuiInterface.h"

#include <algorithm>
#include <cstdint>

#include "look/GuiManager.h"

namespace PelkGUI {

CDC* GuiInterface::GetBuffer(CDC& dc, CSize& size)
{
    if (size.cx > m_nBufferWidth || size.cy > m_nBufferHeight)
        GrowBuffer(dc, std::max<int>(m_nBufferWidth, size.cx), std::max<int>(m_nBufferHeight, size.cy));
    m_dcBuffer.SelectClipRgn(nullptr);
    m_dcBuffer.SetLayout(dc.GetLayout()); // what is copied between contexts of two layouts would be flipped
    return &m_dcBuffer;
}

void GuiInterface::GrowBuffer(CDC& dc, int nWidth, int nHeight)
{
    if (!m_dcBuffer.GetSafeHdc() && !m_dcBuffer.CreateCompatibleDC(&dc))
        return;
    CBitmap bmp; // its pixels are black
    if (!bmp.CreateCompatibleBitmap(&dc, nWidth, nHeight))
        return;
    const HGDIOBJ hOld = ::SelectObject(m_dcBuffer.GetSafeHdc(), bmp.GetSafeHandle());
    if (!m_bmpBuffer.DeleteObject())
        m_hOldBitmap = static_cast<HBITMAP>(hOld); // the first: the context's own
    m_bmpBuffer.Attach(bmp.Detach());
    m_nBufferWidth = nWidth;
    m_nBufferHeight = nHeight;
}

void GuiInterface::ReleaseBuffer()
{
    m_nBufferWidth = 0;
    m_nBufferHeight = 0;
    if (m_bmpBuffer.GetSafeHandle())
        ::SelectObject(m_dcBuffer.GetSafeHdc(), m_hOldBitmap);
    m_dcBuffer.DeleteDC();
    m_bmpBuffer.DeleteObject();
}

namespace {

// Where the tiles lie along one axis: at nFirst, nFirst + nExtent, ... before nEnd.
struct TileRun {
    std::int64_t nFirst;
    std::int64_t nEnd;
    std::int64_t nExtent;

    // Tiles from nOrigin on that reach nStart, edge included, and begin before nEnd; of these the ones that show
    // between nClipStart and nClipEnd, as a huge rectangle must not take long.
    TileRun(std::int64_t nOrigin, std::int64_t nTile, int nStart, int nStop, int nClipStart, int nClipStop)
        : nFirst(nOrigin), nEnd(std::min(nStop, nClipStop)), nExtent(nTile)
    {
        const std::int64_t nLowest = std::max(nStart - nTile, nClipStart - nTile + 1);
        if (nFirst < nLowest)
            nFirst += (nLowest - nFirst + nExtent - 1) / nExtent * nExtent;
    }
};

} // namespace

int GuiInterface::DrawWatermark(CDC* pDC, CRect* pRect, CBitmap* pBitmap, int nOffsetX, int nOffsetY) const
{
    BITMAP info{};
    if (!pDC || !pRect || !pBitmap || !pBitmap->GetSafeHandle() || !pBitmap->GetBitmap(&info))
        return FALSE;
    CDC dcTile;
    dcTile.CreateCompatibleDC(pDC);
    const GuiManager& manager = GetGuiManager();
    if (manager.m_bRightToLeft && manager.m_pfnSetLayout)
        manager.m_pfnSetLayout(dcTile.GetSafeHdc(), LAYOUT_BITMAPORIENTATIONPRESERVED);
    const HGDIOBJ hOld = ::SelectObject(dcTile.GetSafeHdc(), pBitmap->GetSafeHandle());
    if (!hOld)
        return FALSE;
    CRect rcClip;
    pDC->GetClipBox(&rcClip);
    const TileRun across(std::int64_t{ pRect->left } - nOffsetX, info.bmWidth, pRect->left, pRect->right, rcClip.left,
                         rcClip.right);
    const TileRun down(std::int64_t{ pRect->top } - nOffsetY, info.bmHeight, pRect->top, pRect->bottom, rcClip.top,
                       rcClip.bottom);
    for (std::int64_t y = down.nFirst; y < down.nEnd; y += down.nExtent) {
        for (std::int64_t x = across.nFirst; x < across.nEnd; x += across.nExtent)
            pDC->BitBlt(static_cast<int>(x), static_cast<int>(y), info.bmWidth, info.bmHeight, &dcTile, 0, 0, SRCCOPY);
    }
    ::SelectObject(dcTile.GetSafeHdc(), hOld);
    return TRUE;
}

} // namespace PelkGUI
