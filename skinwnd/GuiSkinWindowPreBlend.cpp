// Laying the main image over another bitmap through the alpha image.
#include "skin/GuiSkinWindow.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>

#include "look/GuiManager.h"

namespace PelkGUI {

namespace {

// A bitmap's rows as 32-bit pixels, top row first, as far as they were asked for.
class PixelRows {
public:
    // FALSE: it is no bitmap.
    bool Describe(const CDC& dc, const CBitmap& bmp)
    {
        m_hBitmap = static_cast<HBITMAP>(bmp.GetSafeHandle());
        m_info.bmiHeader.biSize = sizeof(m_info.bmiHeader);
        if (!m_hBitmap || !::GetDIBits(dc.GetSafeHdc(), m_hBitmap, 0, 0, nullptr, &m_info, DIB_RGB_COLORS))
            return false;
        m_size = CSize(m_info.bmiHeader.biWidth, std::abs(m_info.bmiHeader.biHeight));
        m_info.bmiHeader.biHeight = -m_size.cy;
        m_info.bmiHeader.biBitCount = 32;
        m_info.bmiHeader.biCompression = BI_RGB;
        m_info.bmiHeader.biSizeImage = 0;
        return true;
    }
    CSize Size() const { return m_size; }
    bool IsOf(const CBitmap& bmp) const { return m_hBitmap == bmp.GetSafeHandle(); }

    // Makes room for so many rows. FALSE: there is no memory.
    bool Reserve(int nCount)
    {
        m_pixels.reset(new (std::nothrow) BYTE[static_cast<size_t>(nCount) * Stride()]);
        return m_pixels != nullptr;
    }
    // The rows from nFirst on, which the bitmap has, as many as there is room for at most.
    void Read(const CDC& dc, int nFirst, int nCount)
    {
        m_nFirst = static_cast<UINT>(nFirst);
        m_nCount = static_cast<UINT>(nCount);
        ::GetDIBits(dc.GetSafeHdc(), m_hBitmap, m_nFirst, m_nCount, m_pixels.get(), &m_info, DIB_RGB_COLORS);
    }
    void WriteBack(const CDC& dc) const
    {
        ::SetDIBits(dc.GetSafeHdc(), m_hBitmap, m_nFirst, m_nCount, m_pixels.get(), &m_info, DIB_RGB_COLORS);
    }
    // Row 0 is the first that was read.
    BYTE* Pixel(int x, int nRow)
    {
        return m_pixels.get() + static_cast<size_t>(nRow) * Stride() + static_cast<size_t>(x) * kPixelBytes;
    }

private:
    static constexpr size_t kPixelBytes = 4;
    size_t Stride() const { return static_cast<size_t>(m_size.cx) * kPixelBytes; }

    HBITMAP m_hBitmap = nullptr; // borrowed
    BITMAPINFO m_info{};
    CSize m_size;
    UINT m_nFirst = 0;
    UINT m_nCount = 0;
    std::unique_ptr<BYTE[]> m_pixels;
};

// Along one axis: which of the steps 0, 1, 2, ... lie within every picture.
class Steps {
public:
    explicit Steps(int nCount) : m_nEnd(nCount) {}
    // Step 0 is at nStart of a picture that is so large.
    void LimitTo(int nStart, int nExtent)
    {
        m_nFirst = std::max(m_nFirst, -std::int64_t{ nStart });
        m_nEnd = std::min(m_nEnd, std::int64_t{ nExtent } - nStart);
    }
    int First() const { return static_cast<int>(m_nFirst); }
    int Count() const { return static_cast<int>(m_nEnd - m_nFirst); }
    bool IsEmpty() const { return m_nFirst >= m_nEnd; }

private:
    std::int64_t m_nFirst = 0;
    std::int64_t m_nEnd;
};

// Lays pixels over others: each as opaque, out of 255, as the mask is blue there. Quotients are rounded down; the byte
// beside the colours stays. In two plain loops, which compilers turn into vectors.
void BlendRow(BYTE* pBelow, const BYTE* pAbove, const BYTE* pMask, int nCount)
{
    constexpr int kPixels = 256;
    BYTE weights[kPixels * 4];
    for (; nCount > 0; nCount -= kPixels, pBelow += sizeof weights, pAbove += sizeof weights, pMask += sizeof weights) {
        const int nPixels = std::min(nCount, kPixels);
        for (int i = 0; i < nPixels; i++) {
            DWORD nMask = 0;
            std::memcpy(&nMask, pMask + i * 4, sizeof nMask);
            nMask &= 0xFF;
            nMask |= nMask << 8 | nMask << 16;
            std::memcpy(weights + i * 4, &nMask, sizeof nMask);
        }
        for (int i = 0; i < nPixels * 4; i++) {
            // Divided by 255, exactly, for all sums up to 255 * 255.
            const auto nSum = static_cast<WORD>(pAbove[i] * weights[i] + pBelow[i] * (255 - weights[i]));
            pBelow[i] = static_cast<BYTE>(static_cast<WORD>(nSum + 1 + (nSum >> 8)) >> 8);
        }
    }
}

struct Pictures {
    PixelRows image;
    PixelRows below;
    PixelRows mask;
};

// Blends `nCount` rows; the mask reaches over the first nMasked of them.
void BlendBand(const CDC& dc, Pictures& pictures, CPoint ptTo, CPoint ptFrom, int nColumns, int nCount, int nMasked)
{
    pictures.below.Read(dc, ptTo.y, nCount);
    pictures.image.Read(dc, ptFrom.y, nCount);
    if (nMasked > 0)
        pictures.mask.Read(dc, ptFrom.y, nMasked);
    for (int k = 0; k < nCount; k++) {
        BYTE* const pTo = pictures.below.Pixel(ptTo.x, k);
        const BYTE* const pFrom = pictures.image.Pixel(ptFrom.x, k);
        if (k < nMasked)
            BlendRow(pTo, pFrom, pictures.mask.Pixel(ptFrom.x, k), nColumns);
        else
            std::memcpy(pTo, pFrom, static_cast<size_t>(nColumns) * 4);
    }
    pictures.below.WriteBack(dc);
}

} // namespace

// Rows and columns that lie outside one of the pictures are passed over; the mask may end before the image does at the
// bottom, where the image covers wholly, but not at the right.
BOOL GuiSkinWindow::PreBlend(CBitmap* pBitmap, const CRect& rcDestination, const CRect& rcSource)
{
    CClientDC dcScreen(nullptr);
    const GuiManager& manager = GetGuiManager();
    if (manager.m_bRightToLeft && manager.m_pfnSetLayout)
        manager.m_pfnSetLayout(dcScreen.GetSafeHdc(), LAYOUT_BITMAPORIENTATIONPRESERVED);
    Pictures pictures;
    auto& [image, below, mask] = pictures;
    if (!pBitmap || !image.Describe(dcScreen, m_bmpImage) || !below.Describe(dcScreen, *pBitmap))
        return FALSE;
    const bool bHasMask = mask.Describe(dcScreen, m_bmpAlpha);

    Steps columns(std::min(rcSource.Width(), rcDestination.Width()));
    columns.LimitTo(rcDestination.left, below.Size().cx);
    columns.LimitTo(rcSource.left, image.Size().cx);
    if (bHasMask)
        columns.LimitTo(rcSource.left, mask.Size().cx);
    Steps rows(std::min(rcSource.Height(), rcDestination.Height()));
    rows.LimitTo(rcDestination.top, below.Size().cy);
    rows.LimitTo(rcSource.top, image.Size().cy);
    if (columns.IsEmpty() || rows.IsEmpty())
        return TRUE;

    const CPoint ptTo(rcDestination.TopLeft() + CSize(columns.First(), rows.First()));
    const CPoint ptFrom(rcSource.TopLeft() + CSize(columns.First(), rows.First()));
    const int nMaskedRows = bHasMask ? std::clamp<int>(mask.Size().cy - ptFrom.y, 0, rows.Count()) : 0;
    // A few rows at a time; all at once where what is written could be read again.
    constexpr int kBand = 16;
    const bool bOnItself = image.IsOf(*pBitmap) || mask.IsOf(*pBitmap);
    const int nBand = bOnItself ? rows.Count() : std::min(kBand, rows.Count());
    if (!below.Reserve(nBand) || !image.Reserve(nBand) || (bHasMask && !mask.Reserve(nBand)))
        return FALSE;
    for (int nRow = 0; nRow < rows.Count(); nRow += nBand) {
        const int nCount = std::min(nBand, rows.Count() - nRow);
        const CSize down(0, nRow);
        BlendBand(dcScreen, pictures, ptTo + down, ptFrom + down, columns.Count(), nCount,
                  std::clamp(nMaskedRows - nRow, 0, nCount));
    }
    return TRUE;
}

} // namespace PelkGUI
