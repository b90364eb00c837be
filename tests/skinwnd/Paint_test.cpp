#include "tests/skinwnd/PaintModel.h"

#include <gtest/gtest.h>

#include "look/GuiInterface.h"
#include "look/GuiManager.h"
#include "tests/support/CountedHeap.h"

namespace {

using namespace test;
using PelkGUI::GetGuiInterface;
using PelkGUI::GetGuiManager;

class GuiSkinWindowPaint : public testing::Test {
protected:
    GuiSkinWindowPaint()
    {
        GetGuiManager().InitManager();
        m_wnd.CreateEx(0, AfxRegisterWndClass(0), "Aa \xc4\xe3", WS_POPUP, 5, 5, 10, 10, nullptr, nullptr);
    }
    ~GuiSkinWindowPaint() override { SetMirrored(false); }

    // An icon of 20 by 20 pixels, some of them clear.
    static HICON NewIcon()
    {
        std::mt19937 random(1);
        Pixels picture(20, 20);
        picture.FillRandomly(random);
        CBitmap bmp;
        bmp.Attach(picture.NewBitmap());
        CBitmap bmpMask;
        bmpMask.CreateBitmap(20, 20, 1, 1, picture.all.data());
        const ICONINFO info{ TRUE, 0, 0, bmpMask, bmp };
        return ::CreateIconIndirect(&info);
    }

    // A new layout asks for a new buffer, whose pixels are black.
    static void SetMirrored(bool bMirrored)
    {
        GetGuiManager().m_bRightToLeft = bMirrored;
        GetGuiInterface().Clear();
    }
    static DWORD LayoutNow() { return GetGuiManager().m_bRightToLeft ? LAYOUT_RTL : 0; }

    // Pixels of some size, painted on by the function and, a copy of them, by the model.
    template <class Paint, class Model>
    void Compare(std::mt19937& random, RandomSkin& skin, Paint paint, Model model)
    {
        const bool bMirrored = random() % 2;
        SetMirrored(!bMirrored); // a painting before, the other way round, leaves nothing behind
        Pixels(99, 60).Draw(LayoutNow(), [&](CDC& dc) { skin.Paint(&m_wnd, dc, 0, 1); });
        SetMirrored(bMirrored);
        Pixels painted(1 + static_cast<int>(random() % 120), 1 + static_cast<int>(random() % 90));
        painted.FillRandomly(random);
        Pixels expected = painted;
        m_wnd.SetWindowPos(nullptr, 5, 5, painted.cx, painted.cy, 0);
        painted.Draw(LayoutNow(), paint);
        ModelPainter painter(skin, bMirrored);
        model(painter, expected);
        ASSERT_TRUE(painted.all == expected.all);
    }

    CWnd m_wnd;
};

TEST_F(GuiSkinWindowPaint, DrawsWhatTheModelDraws)
{
    const HICON hIcon = NewIcon();
    for (unsigned nSeed = 0; nSeed < 600; nSeed++) {
        SCOPED_TRACE(nSeed);
        std::mt19937 random(nSeed);
        RandomSkin skin(random, nSeed % 3 ? 12 : 40);
        const bool bCaptionOnly = random() % 4 == 0;
        const int nActive = 1 + static_cast<int>(random() % 2);
        m_wnd.SetIcon(nSeed % 3 == 1 ? hIcon : nullptr, FALSE); // the big one serves where there is no small one
        m_wnd.SetIcon(nSeed % 3 == 2 ? hIcon : nullptr, TRUE);
        const char* const pszText = skin.m_bCaps ? "AA \xc4\xe3" : "Aa \xc4\xe3";
        Compare(
            random, skin, [&](CDC& dc) { skin.Paint(&m_wnd, dc, bCaptionOnly, nActive); },
            [&](ModelPainter& model, Pixels& pixels) {
                model.Paint(pixels, bCaptionOnly, nActive, pszText, nSeed % 3 ? hIcon : nullptr);
            });
        ASSERT_FALSE(HasFailure());
    }
    m_wnd.SetIcon(nullptr, FALSE);
    m_wnd.SetIcon(nullptr, TRUE);
    ::DestroyIcon(hIcon);
}

TEST_F(GuiSkinWindowPaint, DrawsTheInnerFrameThatTheModelDraws)
{
    for (unsigned nSeed = 0; nSeed < 600; nSeed++) {
        SCOPED_TRACE(nSeed);
        std::mt19937 random(nSeed);
        RandomSkin skin(random, nSeed % 3 ? 12 : 40);
        CRect rcClient;
        Compare(
            random, skin,
            [&](CDC& dc) {
                skin.Prepare(&dc); // as the windows' hooks do
                m_wnd.GetClientRect(&rcClient);
                skin.PaintClient(&dc, rcClient);
            },
            [&](ModelPainter& model, Pixels& pixels) { model.DrawFrame(pixels, pixels, rcClient, true, false, 2); });
        ASSERT_FALSE(HasFailure());
    }
}

// A window is painted for as long as it lives.
TEST_F(GuiSkinWindowPaint, TakesNothingFromTheHeapAfterTheFirstTime)
{
    m_wnd.SetWindowPos(nullptr, 0, 0, 400, 300, 0);
    Pixels(400, 300).Draw(0, [&](CDC& dc) {
        for (unsigned nSeed = 0; nSeed < 30; nSeed++) {
            std::mt19937 random(nSeed);
            RandomSkin skin(random, 12);
            skin.m_bCaption = TRUE;
            skin.m_mapParts.SetAt("part", new CRect(0, 0, 9, 9));
            skin.m_mapAnchors.SetAt("anchor", new CRect(4, 4, 9, 9));
            const auto paintAll = [&] {
                skin.Paint(&m_wnd, dc, 0, 0);
                skin.Paint(&m_wnd, dc, 1, 1);
                skin.PaintClient(&dc, CRect(0, 0, 300, 200));
                skin.PaintPartOnAnchor(&dc, CRect(0, 0, 300, 200), "part", "anchor", 1);
            };
            paintAll();
            paintAll(); // the first one left a place out, so that tiles are put together elsewhere
            const std::size_t nBefore = heap_allocations();
            paintAll();
            EXPECT_EQ(heap_allocations(), nBefore) << nSeed;
        }
    });
}

} // namespace
