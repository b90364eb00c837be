// Random window skins, and an obvious painter of them on plain pixels.
#pragma once

#include <cstdint>
#include <functional>
#include <random>
#include <vector>

#include <afxwin.h>

#include "skin/GuiSkinWindow.h"

namespace test {

struct Pixels {
    Pixels(int width, int height) : cx(width), cy(height), all(static_cast<size_t>(width) * static_cast<size_t>(height))
    {}
    std::uint32_t* At(std::int64_t x, std::int64_t y) // null outside
    {
        return x < 0 || x >= cx || y < 0 || y >= cy ? nullptr : &all[static_cast<size_t>(y * cx + x)];
    }
    void FillRandomly(std::mt19937& random);
    HBITMAP NewBitmap() const { return ::CreateBitmap(cx, cy, 1, 32, all.data()); }
    void Take(const CBitmap& bmp); // of this size
    // What the function draws on them.
    void Draw(DWORD nLayout, const std::function<void(CDC&)>& draw);

    int cx;
    int cy;
    std::vector<std::uint32_t> all;
};

class RandomSkin : public PelkGUI::GuiSkinWindow {
public:
    // Parts of up to nLargest pixels, some of them partly outside the image.
    RandomSkin(std::mt19937& random, int nLargest);

    Pixels m_image;
};

class ModelPainter {
public:
    ModelPainter(RandomSkin& skin, bool bMirrored) : m_skin(skin), m_bMirrored(bMirrored) {}

    void Paint(Pixels& dc, bool bCaptionOnly, int nActive, const CString& strText, HICON hIcon);
    // With the same pixels for both, and the inner parts: the inner frame.
    void DrawFrame(Pixels& top, Pixels& rest, const CRect& rcFrame, bool bInner, bool bCaptionOnly, int nActive);

private:
    CRect Part(int nPart) const;
    void Put(Pixels& to, const CRect& rcPlace, const CRect& rcFrom, bool bFlip = false);
    void Fill(Pixels& to, const CRect& rcRun, int nPart, int nMode);
    void DrawButtons(Pixels& strip);
    void DrawMirrorStrips(Pixels& strip, const CRect& rcCorner);
    void DrawText(CDC& dc, int cx, const CString& strText, int nActive) const;

    RandomSkin& m_skin;
    const bool m_bMirrored;
    int m_nHeight = 0;
};

} // namespace test
