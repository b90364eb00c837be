// How thick a frame is, where a maximised window goes, and what is at each of its points.
#include "tests/skinwnd/SkinnedWindow.h"

#include <climits>
#include <random>

#include "look/GuiManager.h"
#include "skinwnd/FramePart.h"

namespace {

using namespace test;
using PelkGUI::GuiSkinWindow;

int Pick(std::mt19937& random, int nLow, int nHigh)
{
    return std::uniform_int_distribution(nLow, nHigh)(random);
}

// Parts with and without a size, some of them turned inside out.
TEST(GuiSkinWindowFrame, IsAsThickAsItsParts)
{
    using namespace PelkGUI::FramePart;
    std::mt19937 random(1);
    for (int i = 0; i < 500; i++) {
        GuiSkinWindow skin;
        for (int nPart = 0; nPart < PelkGUI::kFramePartCount; nPart++) {
            skin.m_pPartPresent[nPart] = Pick(random, 0, 1);
            skin.m_pPartRect[nPart] = CRect(CPoint(5, 6), CSize(Pick(random, -9, 9), Pick(random, -9, 9)));
        }
        const auto thickness = [&](int nPart, bool bAcross) {
            const CSize size = skin.m_pPartRect[nPart].Size();
            return skin.m_pPartPresent[nPart] ? std::max<int>(bAcross ? size.cy : size.cx, 0) : 0;
        };
        const auto left = [&](int nPart) { return thickness(nPart, false); };
        const auto top = [&](int nPart) { // and the two next to it, where there are corners
            return std::max({ thickness(nPart - 1, true), thickness(nPart, true), thickness(nPart + 2, true) });
        };
        CRect rc(-10, 20, 300, 200);
        skin.CalcWindowRect(&rc, TRUE, i % 2);
        EXPECT_EQ(rc, CRect(-10 + left(Left), 20 + top(Top), 300 - left(Right), 200 - top(Bottom)));
        skin.CalcWindowRect(&rc, FALSE, i % 2);
        EXPECT_EQ(rc, CRect(-10, 20, 300, 200));
        skin.CalcClientRect(&rc, TRUE, i % 2);
        EXPECT_EQ(rc, CRect(-10 + left(CLeft), 20 + top(CTop), 300 - left(CRight), 200 - top(CBottom)));
        skin.CalcClientRect(&rc, FALSE, i % 2);
        EXPECT_EQ(rc, CRect(-10, 20, 300, 200));
    }
}

// A frame of 3, 22, 4 and 5 pixels.
const CRect kFrame(3, 22, 4, 5);
void GiveFrame(GuiSkinWindow& skin)
{
    using namespace PelkGUI::FramePart;
    const std::pair<int, CRect> kParts[] = {
        { Left, { 0, 0, 3, 99 } }, { Top, { 0, 5, 99, 27 } }, { Right, { 9, 0, 13, 99 } }, { Bottom, { 0, 0, 99, 5 } }
    };
    for (const auto& [nPart, rc] : kParts) {
        skin.m_pPartPresent[nPart] = 1;
        skin.m_pPartRect[nPart] = rc;
    }
}

class FrameOnTwoMonitors : public SkinnedWindowTest {
protected:
    FrameOnTwoMonitors()
        : SkinnedWindowTest({ { { 0, 0, 1024, 768 }, { 24, 40, 1024, 740 }, true },
                              { { 1024, 0, 1824, 600 }, { 1024, 0, 1824, 570 }, false } })
    {}
};

TEST_F(FrameOnTwoMonitors, IsPlacedByItsCropsWhenMaximised)
{
    const struct {
        const char* why;
        CRect rcCrop;
        CPoint ptPosition;
        CPoint ptSize;
    } kCases[] = {
        // the work area is 1000 by 700 at 24,40
        { "the skin format's own: all frames but the top lie outside", { -1, 0, -1, -1 }, { -3, 0 }, { 1004, 705 } },
        { "all outside", { -1, -7, -1, -2 }, { -3, -22 }, { 1004, 705 } },
        { "nothing outside", { 0, 0, 0, 0 }, { 0, 0 }, { 1000, 700 } },
        { "as far as it says", { 1, 2, 3, 4 }, { -1, -2 }, { 1003, 704 } },
        { "beyond all bounds", { INT_MAX, 0, INT_MAX, 0 }, { -INT_MAX, 0 }, { INT_MIN + 999, 700 } },
    };
    GuiSkinWindow skin;
    GiveFrame(skin);
    skin.m_sizeMinimum = { 150, 20 };
    for (const bool bMonitors : { true, false }) {
        PelkGUI::GetGuiManager().m_pfnGetMonitorInfo = bMonitors ? &::GetMonitorInfoA : nullptr;
        for (const auto& c : kCases) {
            SCOPED_TRACE(c.why);
            skin.m_rcMaximiseCrop = c.rcCrop;
            MINMAXINFO info = { {}, {}, {}, { 100, 30 }, { 5, 6 } };
            skin.OnGetMinMaxInfo(&info);
            EXPECT_EQ(CPoint(info.ptMaxPosition), c.ptPosition);
            EXPECT_EQ(CPoint(info.ptMaxSize), c.ptSize);
            EXPECT_EQ(CPoint(info.ptMinTrackSize), CPoint(150, 30));
            EXPECT_EQ(CPoint(info.ptMaxTrackSize), CPoint(5, 6));
        }
    }
}

TEST_F(FrameOnTwoMonitors, SizesAndShapesByTheWindowsState)
{
    const struct {
        const char* why;
        DWORD dwState; // a style
        CRect rcWindow;
        CRect rcSized;   // by OnSize
        CSize sizeShape; // 7 by 8 before
    } kCases[] = {
        { "a rectangle, one larger", 0, { 100, 90, 300, 220 }, { 100, 90, 300, 220 }, { 201, 131 } },
        { "without any size", 0, { 100, 90, 100, 90 }, { 100, 90, 100, 90 }, { 1, 1 } },
        { "maximised on the primary monitor", WS_MAXIMIZE, { 100, 90, 300, 220 }, { 24, 40, 1024, 740 }, { 0, 0 } },
        { "on the other one it stays", WS_MAXIMIZE, { 1100, 90, 1300, 220 }, { 1100, 90, 1300, 220 }, { 0, 0 } },
        { "minimised it is not touched",
          WS_MINIMIZE | WS_MAXIMIZE,
          { 100, 90, 300, 220 },
          { 100, 90, 300, 220 },
          { 7, 8 } },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        Open(WS_POPUP, c.rcWindow);
        m_pWnd->SetWindowRgn(::CreateRectRgn(0, 0, 7, 8), FALSE);
        m_pWnd->ModifyStyle(0, c.dwState);
        GuiSkinWindow().OnSize(m_pWnd);
        CRect rc;
        m_pWnd->GetWindowRect(&rc);
        EXPECT_EQ(rc, c.rcSized);
        CRgn rgn;
        rgn.CreateRectRgn(0, 0, 0, 0); // what it stays without a shape
        m_pWnd->GetWindowRgn(rgn);
        rgn.GetRgnBox(&rc);
        EXPECT_EQ(rc.Size(), c.sizeShape);
        m_pWnd->DestroyWindow();
    }
}

struct HitCase {
    BOOL bFrame = TRUE;
    BOOL bResizable = TRUE;
    BOOL bMaximised = FALSE;
    BOOL bRightToLeft = FALSE;
    CRect rcBorder{ 4, 3, 5, 6 };
    // By button, from the system's on. The last one covers a part of the one before.
    std::vector<CRect> anchors{ { 4, 4, 14, 14 }, { -40, 3, -30, 13 }, { -28, 3, -18, 13 }, { -20, 0, -2, 12 } };
};

// The rule in its plainest words.
UINT ExpectedHit(const HitCase& c, const CRect& w, int x, int y)
{
    using Wide = long long;
    const auto wrapped = [](Wide n) { return static_cast<int>(static_cast<unsigned long long>(n)); };
    const UINT kButtonHits[] = { HTSYSMENU, HTMINBUTTON, HTMAXBUTTON, HTCLOSE };
    for (size_t i = 0; i < c.anchors.size(); i++) {
        const CRect& a = c.anchors[i];
        const Wide dx = a.left < 0 ? w.right : w.left;
        const Wide dy = a.top < 0 ? w.bottom : w.top;
        const Wide xb = c.bRightToLeft ? Wide{ w.left } + w.right - x : x;
        if (xb >= wrapped(a.left + dx) && xb < wrapped(a.right + dx) && y >= wrapped(a.top + dy) &&
            y < wrapped(a.bottom + dy))
            return kButtonHits[i];
    }
    if (c.bResizable && !c.bMaximised) {
        const int g = ::GetSystemMetrics(SM_CXSIZE);
        if (x >= w.right - g && y >= w.bottom - g)
            return HTBOTTOMRIGHT;
        const bool bTop = y < Wide{ w.top } + c.rcBorder.top;
        const bool bAboveBottom = y < Wide{ w.bottom } - c.rcBorder.bottom;
        if (x < Wide{ w.left } + c.rcBorder.left)
            return bTop ? HTTOPLEFT : bAboveBottom ? HTLEFT : HTBOTTOMLEFT;
        if (x >= Wide{ w.right } - c.rcBorder.right)
            return bTop ? HTTOPRIGHT : bAboveBottom ? HTRIGHT : HTBOTTOMRIGHT;
        if (bTop)
            return HTTOP;
        if (!bAboveBottom)
            return HTBOTTOM;
    }
    const CRect f = c.bFrame ? kFrame : CRect();
    if (y < w.top + f.top)
        return HTCAPTION;
    return x >= w.left + f.left && x < w.right - f.right && y < w.bottom - f.bottom ? HTCLIENT : HTBORDER;
}

class FrameHit : public SkinnedWindowTest {
protected:
    void ExpectHits(const HitCase& c, const CRect& rcPoints, int nStep)
    {
        GuiSkinWindow skin;
        if (c.bFrame)
            GiveFrame(skin);
        skin.m_pAnchorPresent[0] = 1; // the icon is no button
        skin.m_pAnchorRect[0] = CRect(2, 2, 18, 18);
        for (size_t i = 0; i < c.anchors.size(); i++) {
            skin.m_pAnchorPresent[i + 1] = 1;
            skin.m_pAnchorRect[i + 1] = c.anchors[i];
        }
        skin.m_rcResizeBorder = c.rcBorder;
        PelkGUI::GetGuiManager().m_bRightToLeft = c.bRightToLeft;
        m_pWnd->ModifyStyle(0, c.bMaximised ? WS_MAXIMIZE : 0);
        CRect rcWindow;
        m_pWnd->GetWindowRect(&rcWindow);
        for (int y = rcPoints.top; y < rcPoints.bottom; y += nStep) {
            for (int x = rcPoints.left; x < rcPoints.right; x += nStep)
                ASSERT_EQ(skin.OnNcHitTest(m_pWnd, { x, y }, c.bResizable), ExpectedHit(c, rcWindow, x, y))
                    << x << "," << y;
        }
    }
};

TEST_F(FrameHit, IsRightAtEveryPoint)
{
    const CRect kWindows[] = { { 50, 40, 140, 110 }, { 50, 40, 55, 52 }, { 50, 40, 50, 40 } };
    const int kBorders[] = { 0, 1, 4, 500, INT_MAX, -1, INT_MIN }; // wider than the window: left and top win
    const int kEdges[] = { -30, -1, 0, 2, 9, 40, INT_MAX };
    std::mt19937 random(1);
    const auto border = [&] { return kBorders[random() % 7]; };
    const auto edge = [&] { return kEdges[random() % 7]; };
    for (int i = 0; i < 60; i++) {
        SCOPED_TRACE(i);
        HitCase c{ random() % 4 != 0, random() % 4 != 0, random() % 4 == 0, random() % 2 != 0 };
        if (i % 2)
            c.rcBorder = CRect(border(), border(), border(), border());
        if (i % 3 == 0) // as large as the world, turned inside out
            std::generate(c.anchors.begin(), c.anchors.end(), [&] { return CRect(edge(), edge(), edge(), edge()); });
        c.anchors.resize(i % 5 ? 4 : random() % 4);
        CRect rcPoints = kWindows[i % 8 ? 0 : 1 + i % 3 / 2];
        Open(WS_POPUP, rcPoints);
        rcPoints.InflateRect(4, 4);
        ExpectHits(c, rcPoints, 1);
        m_pWnd->DestroyWindow();
    }
}

TEST_F(FrameHit, IsRightInTheLargestWindow)
{
    Open();
    Open(WS_CHILD, { -100, -100, 31900, 31900 }, m_pWnd); // no screen holds it, a window may
    HitCase c;
    ExpectHits(c, { -200, -200, 32200, 32200 }, 97);
    c.bRightToLeft = TRUE;
    ExpectHits(c, { 31700, -200, 32200, 400 }, 7);
}

} // namespace
