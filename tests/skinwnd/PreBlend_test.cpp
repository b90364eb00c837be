#include <algorithm>
#include <climits>

#include <gtest/gtest.h>

#include "tests/skinwnd/PaintModel.h"

namespace {

using namespace test;

// Row by row and colour by colour, as one would say it.
void BlendPlainly(Pixels& below, Pixels& image, Pixels* pMask, const CRect& rcTo, const CRect& rcFrom)
{
    for (std::int64_t k = 0; k < std::min(rcTo.Height(), rcFrom.Height()); k++) {
        for (std::int64_t j = 0; j < std::min(rcTo.Width(), rcFrom.Width()); j++) {
            std::uint32_t* const pTo = below.At(rcTo.left + j, rcTo.top + k);
            const std::uint32_t* const pFrom = image.At(rcFrom.left + j, rcFrom.top + k);
            if (!pTo || !pFrom || (pMask && rcFrom.left + j >= pMask->cx))
                continue;
            const bool bMasked = pMask && rcFrom.top + k < pMask->cy;
            const unsigned nWeight = bMasked ? *pMask->At(rcFrom.left + j, rcFrom.top + k) & 0xFF : 255;
            std::uint32_t nResult = 0;
            for (int nShift = 0; nShift < 24; nShift += 8) {
                const unsigned nSum = (*pFrom >> nShift & 0xFF) * nWeight + (*pTo >> nShift & 0xFF) * (255 - nWeight);
                nResult |= nSum / 255 << nShift;
            }
            *pTo = nResult;
        }
    }
}

// Blends and expects what the plain way gives.
void ExpectBlended(Pixels below, Pixels image, Pixels* pMask, const CRect& rcTo, const CRect& rcFrom)
{
    PelkGUI::GuiSkinWindow skin;
    skin.m_bmpImage.Attach(image.NewBitmap());
    if (pMask)
        skin.m_bmpAlpha.Attach(pMask->NewBitmap());
    CBitmap bmp;
    bmp.Attach(below.NewBitmap());
    ASSERT_TRUE(skin.PreBlend(&bmp, rcTo, rcFrom));
    Pixels blended(below.cx, below.cy);
    blended.Take(bmp);
    BlendPlainly(below, image, pMask, rcTo, rcFrom);
    ASSERT_TRUE(blended.all == below.all);
}

TEST(GuiSkinWindowPreBlend, EveryWeightOfEveryColour)
{
    Pixels below(256, 256);
    Pixels image(256, 256);
    Pixels mask(256, 256);
    for (unsigned nBelow = 0; nBelow < 256; nBelow += 15) {
        for (unsigned i = 0; i < 256 * 256; i++) {
            below.all[i] = nBelow << 16 | (255 - nBelow) << 8 | nBelow / 2;
            image.all[i] = (i >> 8) * 0x10101;
            mask.all[i] = (i & 0xFF) | 0xABCD00; // blue counts
        }
        ExpectBlended(below, image, &mask, CRect(0, 0, 256, 256), CRect(0, 0, 256, 256));
    }
}

TEST(GuiSkinWindowPreBlend, PicturesOfAnySizeAndPlace)
{
    const int kExtremes[] = { INT_MIN, INT_MAX, -1, 0 };
    for (unsigned nSeed = 0; nSeed < 2000; nSeed++) {
        SCOPED_TRACE(nSeed);
        std::mt19937 random(nSeed);
        const auto pick = [&](int nLow, int nHigh) { return std::uniform_int_distribution(nLow, nHigh)(random); };
        const auto rect = [&] { return CRect(CPoint(pick(-9, 20), pick(-9, 20)), CSize(pick(-2, 40), pick(-2, 40))); };
        const auto picture = [&] {
            Pixels pixels(pick(1, 40), pick(1, 40));
            pixels.FillRandomly(random);
            return pixels;
        };
        Pixels mask = picture();
        CRect rcTo = rect();
        CRect rcFrom = rect();
        if (nSeed % 5 == 0)
            (nSeed % 2 ? rcTo : rcFrom).OffsetRect(kExtremes[nSeed % 3], kExtremes[nSeed % 4]);
        ExpectBlended(picture(), picture(), nSeed % 4 ? &mask : nullptr, rcTo, rcFrom);
    }
}

// The image over itself, a row further down: every row becomes what the one above it was before.
TEST(GuiSkinWindowPreBlend, ReadsBeforeItWritesOverItself)
{
    constexpr int kRows = 40;
    Pixels image(1, kRows);
    for (unsigned y = 0; y < kRows; y++)
        image.all[y] = y + 1;
    PelkGUI::GuiSkinWindow skin;
    skin.m_bmpImage.Attach(image.NewBitmap());
    EXPECT_TRUE(skin.PreBlend(&skin.m_bmpImage, CRect(0, 1, 1, kRows), CRect(0, 0, 1, kRows)));
    image.Take(skin.m_bmpImage);
    for (unsigned y = 0; y < kRows; y++)
        EXPECT_EQ(image.all[y], std::max(y, 1U));
}

TEST(GuiSkinWindowPreBlend, AsksForBothPictures)
{
    PelkGUI::GuiSkinWindow skin;
    CBitmap bmp;
    bmp.Attach(Pixels(1, 1).NewBitmap());
    EXPECT_FALSE(skin.PreBlend(&bmp, CRect(), CRect()));
    skin.m_bmpImage.Attach(Pixels(1, 1).NewBitmap());
    EXPECT_FALSE(skin.PreBlend(nullptr, CRect(), CRect()));
}

} // namespace
