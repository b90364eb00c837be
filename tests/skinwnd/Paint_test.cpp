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

    // A new layout asks for a new buffer, whose pixels are black.
    static void SetMirrored(bool bMirrored)
    {
        GetGuiManager().m_bRightToLeft = bMirrored;
        GetGuiInterface().Clear();
    }

    CWnd m_wnd;
};

TEST_F(GuiSkinWindowPaint, DrawsWhatTheModelDraws)
{
    for (unsigned nSeed = 0; nSeed < 600; nSeed++) {
        SCOPED_TRACE(nSeed);
        std::mt19937 random(nSeed);
        RandomSkin skin(random, nSeed % 3 ? 12 : 40);
        const bool bMirrored = random() % 2;
        const bool bCaptionOnly = random() % 4 == 0;
        const int nActive = 1 + static_cast<int>(random() % 2);
        SetMirrored(bMirrored);
        Pixels painted(1 + static_cast<int>(random() % 120), 1 + static_cast<int>(random() % 90));
        painted.FillRandomly(random);
        Pixels expected = painted;
        m_wnd.SetWindowPos(nullptr, 5, 5, painted.cx, painted.cy, 0);
        painted.Draw(bMirrored ? LAYOUT_RTL : 0, [&](CDC& dc) { skin.Paint(&m_wnd, dc, bCaptionOnly, nActive); });
        ModelPainter(skin, bMirrored)
            .Paint(expected, bCaptionOnly, nActive, skin.m_bCaps ? "AA \xc4\xe3" : "Aa \xc4\xe3", nullptr);
        ASSERT_TRUE(painted.all == expected.all);
    }
}

TEST_F(GuiSkinWindowPaint, DrawsTheInnerFrameThatTheModelDraws)
{
    for (unsigned nSeed = 0; nSeed < 600; nSeed++) {
        SCOPED_TRACE(nSeed);
        std::mt19937 random(nSeed);
        RandomSkin skin(random, nSeed % 3 ? 12 : 40);
        const bool bMirrored = random() % 2;
        SetMirrored(bMirrored);
        Pixels painted(1 + static_cast<int>(random() % 120), 1 + static_cast<int>(random() % 90));
        painted.FillRandomly(random);
        Pixels expected = painted;
        const CRect rcClient(CPoint(0, 0), CSize(painted.cx, painted.cy));
        painted.Draw(bMirrored ? LAYOUT_RTL : 0, [&](CDC& dc) { skin.PaintClient(&dc, rcClient); });
        ModelPainter(skin, bMirrored).DrawFrame(expected, expected, rcClient, true, false, 2);
        ASSERT_TRUE(painted.all == expected.all);
    }
}

} // namespace
