// How thick a frame is, where a maximised window goes, and what is at each of its points.
#include "tests/skinwnd/SkinnedWindow.h"

#include "look/GuiManager.h"
#include "skinwnd/FramePart.h"

namespace {

using namespace test;
using PelkGUI::GuiSkinWindow;

struct NamedPart {
    int nPart;
    CRect rc;
};
struct ThicknessCase {
    const char* why;
    std::vector<NamedPart> parts; // of the outer frame; the inner one has them too, and nothing else changes
    CRect rcThickness;
};

namespace Part = PelkGUI::FramePart;

const ThicknessCase kThicknessCases[] = {
    { "no parts, no frame", {}, { 0, 0, 0, 0 } },
    { "each side its own",
      { { Part::Left, { 0, 0, 3, 99 } },
        { Part::Top, { 0, 5, 99, 27 } },
        { Part::Right, { 9, 0, 13, 99 } },
        { Part::Bottom, { 0, 0, 99, 5 } } },
      { 3, 22, 4, 5 } },
    { "the highest of three",
      { { Part::TopLeft, { 0, 0, 1, 7 } },
        { Part::Top, { 0, 0, 1, 9 } },
        { Part::TopRight, { 0, 0, 1, 8 } },
        { Part::BottomLeft, { 0, 0, 1, 1 } },
        { Part::Bottom, { 0, 0, 1, 2 } },
        { Part::BottomRight, { 0, 0, 1, 3 } } },
      { 0, 9, 0, 3 } },
    { "corners and ornaments of the sides do not count",
      { { Part::LeftTop, { 0, 0, 9, 9 } },
        { Part::LeftMiddle, { 0, 0, 9, 9 } },
        { Part::LeftBottom, { 0, 0, 9, 9 } },
        { Part::RightTop, { 0, 0, 9, 9 } },
        { Part::RightBottom, { 0, 0, 9, 9 } },
        { Part::TopMiddle, { 0, 0, 9, 9 } },
        { Part::BottomMiddle, { 0, 0, 9, 9 } } },
      { 0, 0, 0, 0 } },
    { "a part turned inside out has no thickness",
      { { Part::Left, { 0, 0, -3, 9 } },
        { Part::TopLeft, { 0, 0, 1, -7 } },
        { Part::TopRight, { 0, 0, 1, 2 } },
        { Part::Bottom, { 0, 0, 1, -1 } } },
      { 0, 2, 0, 0 } },
};

TEST(GuiSkinWindowFrame, IsAsThickAsItsParts)
{
    for (const ThicknessCase& c : kThicknessCases) {
        SCOPED_TRACE(c.why);
        GuiSkinWindow outer;
        GuiSkinWindow inner;
        for (const NamedPart& part : c.parts) {
            SetPart(outer, part.nPart, part.rc);
            SetPart(inner, part.nPart < Part::LeftTop ? part.nPart + 20 : part.nPart + 16, part.rc);
        }
        const CRect rcWindow(-10, 20, 300, 200);
        CRect rcClient = rcWindow;
        outer.CalcWindowRect(&rcClient, TRUE, TRUE);
        EXPECT_EQ(rcClient, CRect(-10 + c.rcThickness.left, 20 + c.rcThickness.top, 300 - c.rcThickness.right,
                                  200 - c.rcThickness.bottom));
        CRect rcInner = rcWindow;
        inner.CalcClientRect(&rcInner, TRUE, FALSE);
        EXPECT_EQ(rcInner, rcClient);
        outer.CalcWindowRect(&rcClient, FALSE, FALSE);
        inner.CalcClientRect(&rcInner, FALSE, TRUE);
        EXPECT_EQ(rcClient, rcWindow);
        EXPECT_EQ(rcInner, rcWindow);
    }
}

// A frame of 3, 22, 4 and 5 pixels.
void GiveFrame(GuiSkinWindow& skin)
{
    for (const NamedPart& part : kThicknessCases[1].parts)
        SetPart(skin, part.nPart, part.rc);
}

struct CropCase {
    const char* why;
    CRect rcCrop;
    CPoint ptPosition;
    CPoint ptSize;
};

// The work area is 1000 by 700 at 24,40.
const CropCase kCropCases[] = {
    { "the skin format's own: all frames but the top lie outside", { -1, 0, -1, -1 }, { -3, 0 }, { 1004, 705 } },
    { "all outside", { -1, -7, -1, -2 }, { -3, -22 }, { 1004, 705 } },
    { "nothing outside", { 0, 0, 0, 0 }, { 0, 0 }, { 1000, 700 } },
    { "as far as it says", { 1, 2, 3, 4 }, { -1, -2 }, { 1003, 704 } },
    { "beyond all bounds", { 0x7FFFFFFF, 0, 0x7FFFFFFF, 0 }, { -0x7FFFFFFF, 0 }, { -0x7FFFFFFF - 1 + 999, 700 } },
};

class FrameOnTwoMonitors : public SkinnedWindowTest {
protected:
    FrameOnTwoMonitors()
        : SkinnedWindowTest({ { { 0, 0, 1024, 768 }, { 24, 40, 1024, 740 }, true },
                              { { 1024, 0, 1824, 600 }, { 1024, 0, 1824, 570 }, false } })
    {}
};

TEST_F(FrameOnTwoMonitors, IsPlacedByItsCropsWhenMaximised)
{
    GuiSkinWindow skin;
    GiveFrame(skin);
    skin.m_sizeMinimum = { 150, 20 };
    for (const bool bMonitors : { true, false }) {
        PelkGUI::GetGuiManager().m_pfnGetMonitorInfo = bMonitors ? &::GetMonitorInfoA : nullptr;
        for (const CropCase& c : kCropCases) {
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

// "none", or the box of the window's region.
std::string RegionOf(HWND hWnd)
{
    CRgn rgn;
    rgn.CreateRectRgn(0, 0, 0, 0);
    CRect rc;
    if (::GetWindowRgn(hWnd, rgn) == ERROR)
        return "none";
    rgn.GetRgnBox(&rc);
    return std::to_string(rc.Width()) + " by " + std::to_string(rc.Height());
}

struct SizedCase {
    const char* why;
    DWORD dwState; // a style
    CRect rcWindow;
    CRect rcSized; // by OnSize
    const char* pszRegion;
};

const SizedCase kSizedCases[] = {
    { "a rectangle, one larger", 0, { 100, 90, 300, 220 }, { 100, 90, 300, 220 }, "201 by 131" },
    { "without any size", 0, { 100, 90, 100, 90 }, { 100, 90, 100, 90 }, "1 by 1" },
    { "maximised on the primary monitor", WS_MAXIMIZE, { 100, 90, 300, 220 }, { 24, 40, 1024, 740 }, "none" },
    { "on the other one it stays", WS_MAXIMIZE, { 1100, 90, 1300, 220 }, { 1100, 90, 1300, 220 }, "none" },
    { "minimised it is not touched", WS_MINIMIZE | WS_MAXIMIZE, { 100, 90, 300, 220 }, { 100, 90, 300, 220 }, "none" },
};

TEST_F(FrameOnTwoMonitors, SizesAndShapesByTheWindowsState)
{
    GuiSkinWindow skin;
    for (const SizedCase& c : kSizedCases) {
        SCOPED_TRACE(c.why);
        Open(WS_POPUP, c.rcWindow);
        m_pWnd->ModifyStyle(0, c.dwState);
        skin.OnSize(m_pWnd);
        CRect rc;
        m_pWnd->GetWindowRect(&rc);
        EXPECT_EQ(rc, c.rcSized);
        EXPECT_EQ(RegionOf(m_hWnd), c.pszRegion);
        m_pWnd->DestroyWindow();
    }
}

TEST_F(FrameOnTwoMonitors, TakesTheSkinsFrameWhenItIsApplied)
{
    ApplySkin("<parts><part name=\"Left\" rect=\"0,0,3,9\"/><part name=\"Top\" rect=\"0,0,9,20\"/></parts>"
              "<minimumSize width=\"150\" height=\"90\"/>");
    Open(WS_OVERLAPPEDWINDOW);
    m_pWnd->OnSkinChange();
    CRect rc;
    m_pWnd->GetClientRect(&rc);
    EXPECT_EQ(rc, CRect(0, 0, 197, 100));
    m_pWnd->SetWindowPos(nullptr, 0, 0, 10, 10, SWP_NOMOVE | SWP_NOZORDER);
    m_pWnd->GetClientRect(&rc);
    EXPECT_EQ(rc, CRect(0, 0, 147, 70));
}

struct HitCase {
    const char* why;
    CRect rcWindow;
    CRect rcBorder;
    std::vector<NamedPart> anchors; // by caption anchor
    DWORD dwStyle = 0;
    BOOL bResizable = TRUE;
    BOOL bRightToLeft = FALSE;
    BOOL bFrame = TRUE;
};

constexpr int kMost = 0x7FFFFFFF;
const std::vector<NamedPart> kAnchors = { { 0, { 2, 2, 18, 18 } },
                                          { 1, { 4, 4, 14, 14 } },
                                          { 2, { -40, 3, -30, 13 } },
                                          { 3, { -28, 3, -18, 13 } },
                                          { 4, { -20, 0, -2, 12 } } }; // covers a part of the one before

const HitCase kHitCases[] = {
    { "all there is", { 50, 40, 140, 110 }, { 4, 3, 5, 6 }, kAnchors },
    { "mirrored buttons, edges as they are", { 50, 40, 140, 110 }, { 4, 3, 5, 6 }, kAnchors, 0, TRUE, TRUE },
    { "maximised: no edges", { 50, 40, 140, 110 }, { 4, 3, 5, 6 }, kAnchors, WS_MAXIMIZE },
    { "not resizable", { 50, 40, 140, 110 }, { 4, 3, 5, 6 }, kAnchors, 0, FALSE },
    { "no border: the grip stays", { 50, 40, 140, 110 }, { 0, 0, 0, 0 }, {} },
    { "no frame, no border, not resizable: all client", { 50, 40, 140, 110 }, {}, {}, 0, FALSE, FALSE, FALSE },
    { "a border wider than the window: left and top win", { 50, 40, 140, 110 }, { 500, 500, 500, 500 }, {} },
    { "a border beyond all bounds", { 50, 40, 140, 110 }, { kMost, 2, kMost, kMost }, {} },
    { "a border less than nothing", { 50, 40, 140, 110 }, { -kMost, -1, -kMost - 1, -5 }, {} },
    { "a button as large as the world, one turned inside out",
      { 50, 40, 140, 110 },
      { 4, 3, 5, 6 },
      { { 2, { 30, 5, 20, 15 } }, { 4, { -1, 0, kMost, 9 } } } },
    { "a window of nothing", { 50, 40, 50, 40 }, { 4, 3, 5, 6 }, kAnchors },
    { "a window smaller than its frame", { 50, 40, 55, 52 }, { 1, 1, 1, 1 }, kAnchors },
};

// The rule in its plainest words, the frame being 3, 22, 4 and 5 pixels.
UINT ExpectedHit(const HitCase& c, const CRect& w, int x, int y)
{
    using Wide = long long;
    const UINT kButtonHits[] = { 0, HTSYSMENU, HTMINBUTTON, HTMAXBUTTON, HTCLOSE };
    for (const NamedPart& anchor : c.anchors) {
        const CRect& a = anchor.rc;
        const Wide dx = a.left < 0 ? w.right : w.left;
        const Wide dy = a.top < 0 ? w.bottom : w.top;
        const Wide xb = c.bRightToLeft ? Wide{ w.left } + w.right - x : x;
        const auto wrapped = [](Wide n) { return static_cast<int>(static_cast<unsigned long long>(n)); };
        if (anchor.nPart > 0 && xb >= wrapped(a.left + dx) && xb < wrapped(a.right + dx) && y >= wrapped(a.top + dy) &&
            y < wrapped(a.bottom + dy))
            return kButtonHits[anchor.nPart];
    }
    if (c.bResizable && !c.dwStyle) {
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
    const CRect f = c.bFrame ? CRect(3, 22, 4, 5) : CRect();
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
        for (const NamedPart& anchor : c.anchors)
            SetAnchor(skin, anchor.nPart, anchor.rc);
        skin.m_rcResizeBorder = c.rcBorder;
        PelkGUI::GetGuiManager().m_bRightToLeft = c.bRightToLeft;
        CRect rcWindow;
        m_pWnd->GetWindowRect(&rcWindow);
        int nWrong = 0;
        CPoint ptWrong;
        for (int y = rcPoints.top; y < rcPoints.bottom; y += nStep) {
            for (int x = rcPoints.left; x < rcPoints.right; x += nStep) {
                const bool bRight = skin.OnNcHitTest(m_pWnd, { x, y }, c.bResizable) == ExpectedHit(c, rcWindow, x, y);
                ptWrong = bRight ? ptWrong : CPoint(x, y);
                nWrong += bRight ? 0 : 1;
            }
        }
        EXPECT_EQ(nWrong, 0) << "the last one at " << ptWrong.x << "," << ptWrong.y << ": "
                             << skin.OnNcHitTest(m_pWnd, ptWrong, c.bResizable) << ", not "
                             << ExpectedHit(c, rcWindow, ptWrong.x, ptWrong.y);
    }
};

TEST_F(FrameHit, IsRightAtEveryPoint)
{
    for (const HitCase& c : kHitCases) {
        SCOPED_TRACE(c.why);
        Open(WS_POPUP, c.rcWindow);
        m_pWnd->ModifyStyle(0, c.dwStyle);
        CRect rcPoints = c.rcWindow;
        rcPoints.InflateRect(4, 4);
        ExpectHits(c, rcPoints, 1);
        m_pWnd->DestroyWindow();
    }
}

TEST_F(FrameHit, IsRightInTheLargestWindow)
{
    Open();
    Open(WS_CHILD, { -100, -100, 31900, 31900 }, m_pWnd); // no screen holds it, a window may
    HitCase c{ "", {}, { 4, 3, 5, 6 }, kAnchors };
    ExpectHits(c, { -200, -200, 32200, 32200 }, 97);
    c.bRightToLeft = TRUE;
    ExpectHits(c, { 31700, -200, 32200, 400 }, 7);
}

} // namespace
