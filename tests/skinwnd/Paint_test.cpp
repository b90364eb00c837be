#include "tests/skinwnd/PaintModel.h"

#include <gtest/gtest.h>

#include "look/GuiInterface.h"
#include "look/GuiManager.h"

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

    CWnd m_wnd;
};

TEST_F(GuiSkinWindowPaint, DrawsWhatTheModelDraws)
{
    const HICON hIcon = NewIcon();
    for (unsigned nSeed = 0; nSeed < 600; nSeed++) {
        SCOPED_TRACE(nSeed);
        std::mt19937 random(nSeed);
        RandomSkin skin(random, nSeed % 3 ? 12 : 40);
        const bool bMirrored = random() % 2;
        const bool bCaptionOnly = random() % 4 == 0;
        const int nActive = 1 + static_cast<int>(random() % 2);
        SetMirrored(!bMirrored); // a painting before, the other way round, leaves nothing behind
        Pixels(99, 60).Draw(LayoutNow(), [&](CDC& dc) { skin.Paint(&m_wnd, dc, 0, 1); });
        SetMirrored(bMirrored);
        Pixels painted(1 + static_cast<int>(random() % 120), 1 + static_cast<int>(random() % 90));
        painted.FillRandomly(random);
        Pixels expected = painted;
        m_wnd.SetWindowPos(nullptr, 5, 5, painted.cx, painted.cy, 0);
        m_wnd.SetIcon(nSeed % 3 == 1 ? hIcon : nullptr, FALSE); // the big one serves where there is no small one
        m_wnd.SetIcon(nSeed % 3 == 2 ? hIcon : nullptr, TRUE);
        painted.Draw(LayoutNow(), [&](CDC& dc) { skin.Paint(&m_wnd, dc, bCaptionOnly, nActive); });
        ModelPainter(skin, bMirrored)
            .Paint(expected, bCaptionOnly, nActive, skin.m_bCaps ? "AA \xc4\xe3" : "Aa \xc4\xe3",
                   nSeed % 3 ? hIcon : nullptr);
        ASSERT_TRUE(painted.all == expected.all);
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
        const bool bMirrored = random() % 2;
        SetMirrored(!bMirrored); // a painting before, the other way round, leaves nothing behind
        Pixels(99, 60).Draw(LayoutNow(), [&](CDC& dc) { skin.Paint(&m_wnd, dc, 0, 1); });
        SetMirrored(bMirrored);
        Pixels painted(1 + static_cast<int>(random() % 120), 1 + static_cast<int>(random() % 90));
        painted.FillRandomly(random);
        Pixels expected = painted;
        const CRect rcClient(CPoint(0, 0), CSize(painted.cx, painted.cy));
        painted.Draw(LayoutNow(), [&](CDC& dc) {
            skin.Prepare(&dc); // as the windows' hooks do
            skin.PaintClient(&dc, rcClient);
        });
        ModelPainter(skin, bMirrored).DrawFrame(expected, expected, rcClient, true, false, 2);
        ASSERT_TRUE(painted.all == expected.all);
    }
}

TEST_F(GuiSkinWindowPaint, AsksTheSystemWhichWindowIsActive)
{
    std::mt19937 random(1);
    RandomSkin skin(random, 4);
    skin.m_pPartPresent[0] = 1;
    skin.m_pPartPresent[4] = 1;
    skin.m_pPartRect[0] = CRect(0, 0, 1, 1);
    skin.m_pPartRect[4] = CRect(1, 0, 2, 1);
    std::fill_n(skin.m_pAnchorPresent, 5, 0);
    skin.m_bCaption = FALSE;
    const auto isPaintedActive = [&](CWnd& wnd) {
        Pixels painted(9, 9);
        painted.Draw(0, [&](CDC& dc) { skin.Paint(&wnd, dc, 1, 0); });
        return painted.all[0] == skin.m_image.all[0];
    };
    EXPECT_FALSE(isPaintedActive(m_wnd));
    m_wnd.ShowWindow(SW_SHOW);
    EXPECT_TRUE(isPaintedActive(m_wnd));

    auto* const pFrame = new CMDIFrameWnd; // the framework deletes windows of frames
    ASSERT_TRUE(pFrame->Create(nullptr, "frame"));
    auto* const pFirst = new CMDIChildWnd;
    auto* const pSecond = new CMDIChildWnd;
    ASSERT_TRUE(pFirst->Create(nullptr, "first", WS_CHILD | WS_VISIBLE, CRect(0, 0, 9, 9), pFrame));
    ASSERT_TRUE(pSecond->Create(nullptr, "second", WS_CHILD | WS_VISIBLE, CRect(0, 0, 9, 9), pFrame));
    EXPECT_FALSE(isPaintedActive(*pFirst));
    EXPECT_TRUE(isPaintedActive(*pSecond)); // of its frame, whatever is in front
    pFrame->DestroyWindow();
}

} // namespace
