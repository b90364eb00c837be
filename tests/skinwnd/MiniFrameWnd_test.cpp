// The frame window: how it is made, who gets its messages, its hooks, and what may end in the middle of them.
#include "tests/skinwnd/SkinnedWindow.h"

#include <climits>

#include "look/GuiManager.h"
#include "skin/GuiSkin.h"
#include "tests/support/Canvas.h"
#include "tests/support/CountedHeap.h"

namespace {

using namespace test;
using PelkGUI::GuiMiniFrameWnd;

const char* const kSkin =
    "<parts><part name='Left' rect='0,0,3,9'/><part name='Top' rect='0,0,9,22'/><part name='CLeft' rect='18,0,1,1'/>"
    "<part name='Background' rect='1,2,3,4'/><part name='_7.Up' rect='1,0,9,9'/>"
    "<part name='_7.Hover' rect='20,0,9,9'/></parts><resizeBorder rect='0,0,0,0'/>"
    "<anchors><anchor name='_7' rect='10,10,20,20'/><anchor name='System' rect='5,5,10,10'/>"
    "<anchor name='Close' rect='-20,5,10,10'/><anchor name='Icon' rect='40,3,16,16'/></anchors>"
    "<caption rect='60,3,-60,18' caps='true'/><minimumSize width='150' height='90'/>";

class GuiMiniFrame : public SkinnedWindowTest {};

TEST_F(GuiMiniFrame, IsMadeOrNot)
{
    Open();
    const CRect rc(5, 6, 7, 0x28006); // a height of 0x28000
    for (unsigned i = 0; i < 8; i++) {
        const bool bExtended = i & 1;
        const DWORD dwStyle = i & 2 ? WS_CHILD : WS_POPUP;
        const BOOL nResult = i & 4 ? 1 : -1;
        const char* const pszClass = i & 4 ? AfxRegisterWndClass(CS_DBLCLKS) : "no such class";
        SCOPED_TRACE(i);
        auto* const pWnd = static_cast<GuiMiniFrameWnd*>(RUNTIME_CLASS(GuiMiniFrameWnd)->CreateObject());
        EXPECT_EQ(bExtended ? pWnd->CreateEx(0, pszClass, "Name", dwStyle, rc, m_pWnd, 3)
                            : pWnd->Create(pszClass, "Name", dwStyle, rc, m_pWnd, 3),
                  nResult);
        EXPECT_EQ(pWnd->m_pOwner, nResult > 0 ? pWnd : nullptr);
        EXPECT_EQ(pWnd->m_bChild, dwStyle == WS_CHILD);
        EXPECT_EQ(pWnd->m_strName, CString("Name"));
        EXPECT_EQ(pWnd->m_rcWindowPos, rc);
        EXPECT_EQ(pWnd->m_rcBackground, rc);
        EXPECT_EQ(pWnd->m_sizeKept, CSize(-0x8000, 2));
        nResult > 0 ? (void)pWnd->DestroyWindow() : delete static_cast<CObject*>(pWnd);
    }
}

TEST_F(GuiMiniFrame, FindsItsSkinByNameAndClass)
{
    ApplySkin(kSkin);
    Open();
    const auto foundBy = [&](const char* pszName) {
        m_pWnd->m_strName = pszName;
        m_pWnd->OnSkinChange();
        return static_cast<PelkGUI::GuiSkinWindow*>(m_pWnd->m_pSkinWindow);
    };
    PelkGUI::GuiSkinWindow* const pMain = foundBy("Main");
    ASSERT_NE(pMain, nullptr);
    EXPECT_EQ(m_pWnd->TakeJournal(), "laid out");
    EXPECT_TRUE(m_pWnd->GetUpdateRect(nullptr)) << "and drawn anew";
    EXPECT_EQ(m_pWnd->m_rcBackground, CRect(1, 2, 4, 6)) << "the part, for want of an anchor";
    EXPECT_EQ(m_pWnd->m_rcWindowPos, CRect(100, 100, 300, 220)) << "the skin has none";
    CRect rcClient;
    m_pWnd->GetClientRect(&rcClient);
    EXPECT_EQ(rcClient, CRect(0, 0, 197, 98)) << "in the skin's frame";
    MINMAXINFO limits = {};
    m_pWnd->SendMessage(WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits));
    EXPECT_EQ(limits.ptMinTrackSize.y, 90);
    EXPECT_EQ(foundBy(""), pMain) << "without a name it keeps what it has";
    EXPECT_EQ(foundBy("main"), nullptr) << "names have case, and a lost name drops the skin";
    EXPECT_EQ(foundBy(""), nullptr);
    ApplySkin(std::string(kSkin) + "<target window='GuiMiniFrameWnd'/>");
    EXPECT_NE(foundBy("main"), nullptr) << "by its class";
}

// Who handles a message: the window skin or the system.
TEST_F(GuiMiniFrame, GivesItsFrameToTheSkinUnlessItIsAChild)
{
    const int nCaption = ::GetSystemMetrics(SM_CYCAPTION) + ::GetSystemMetrics(SM_CYFIXEDFRAME);
    const int nBorder = ::GetSystemMetrics(SM_CXFIXEDFRAME);
    const struct {
        const char* why;
        const char* pszName;
        BOOL bChild;
        CRect rcClient;
        UINT nCaptionHit;
        const char* pszJournal; // of presses on the caption and its buttons
    } kCases[] = {
        { "skinned", "Main", FALSE, { 103, 122, 300, 220 }, HTCLOSE, "laid out MOVE CLOSE CLOSE CLOSE" },
        { "plain",
          "",
          FALSE,
          { 100 + nBorder, 100 + nCaption, 300 - nBorder, 220 - nBorder },
          HTCAPTION,
          "MOVE CLOSE MOVE 284,108" },
        { "a child: the double click alone is the system's",
          "Main",
          TRUE,
          { 100, 100, 300, 220 },
          HTCLIENT,
          "laid out CLOSE" },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        ApplySkin(kSkin);
        Open(WS_POPUP | WS_CAPTION);
        m_pWnd->m_bChild = c.bChild;
        m_pWnd->m_strName = c.pszName;
        m_pWnd->OnSkinChange();
        NCCALCSIZE_PARAMS params = {};
        params.rgrc[0] = CRect(100, 100, 300, 220);
        m_pWnd->SendMessage(WM_NCCALCSIZE, TRUE, reinterpret_cast<LPARAM>(&params));
        EXPECT_EQ(CRect(params.rgrc[0]), c.rcClient);
        m_pScreen->click({ 284, 108 });
        EXPECT_EQ(m_pWnd->SendMessage(WM_NCHITTEST, 0, MAKELPARAM(280, 109)), static_cast<LRESULT>(c.nCaptionHit));
        m_pWnd->SendMessage(WM_NCLBUTTONDOWN, HTCAPTION, 0);
        m_pWnd->SendMessage(WM_NCLBUTTONDOWN, HTCLOSE, 0);
        m_pWnd->SendMessage(WM_NCLBUTTONUP, HTCLOSE, 0);
        m_pWnd->SendMessage(WM_NCLBUTTONDBLCLK, HTSYSMENU, 0);
        Run();
        EXPECT_EQ(m_pWnd->TakeJournal(), c.pszJournal);
        m_pWnd->DestroyWindow();
    }
}

TEST_F(GuiMiniFrame, LooksActiveWhenItIsOrIsMeantTo)
{
    const struct {
        const char* why;
        BOOL bActive, bEnabled;
        UINT nFlags;
        std::uint32_t colour;
    } kCases[] = {
        { "active", TRUE, TRUE, 0, 0x010064 },
        { "inactive", FALSE, TRUE, 0, 0x050064 },
        { "told to stay active", FALSE, TRUE, WF_STAYACTIVE, 0x010064 },
        { "disabled", TRUE, FALSE, WF_STAYACTIVE, 0x050064 },
    };
    OpenSkinned("<parts><part name='Top' rect='1,0,1,9'/><part name='TopIA' rect='5,0,1,9'/></parts>");
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        m_pWnd->EnableWindow(c.bEnabled);
        m_pWnd->m_nFlags = c.nFlags;
        EXPECT_TRUE(m_pWnd->SendMessage(WM_NCACTIVATE, static_cast<WPARAM>(c.bActive)));
        MoveTo({ 180, 160 }); // what was drawn is shown at the next turn
        EXPECT_EQ(PixelAt({ 150, 100 }), c.colour);
    }
    ::SetCursor(::LoadCursorA(nullptr, IDC_CROSS));
    EXPECT_TRUE(m_pWnd->SendMessage(WM_SETCURSOR, reinterpret_cast<WPARAM>(m_hWnd), HTCLIENT));
    EXPECT_EQ(::GetCursor(), ::LoadCursorA(nullptr, IDC_ARROW));
}

TEST_F(GuiMiniFrame, PassesItsCommandsToItsOwner)
{
    SkinnedWnd* const pOwner = Open();
    Open(WS_POPUP, { 0, 0, 9, 9 }, pOwner);
    m_pWnd->SendMessage(WM_COMMAND, 7, 0);
    EXPECT_EQ(m_pWnd->TakeJournal(), "command 7");
    m_pWnd->m_nHandledFrom = 50;
    m_pWnd->SendMessage(WM_COMMAND, 7, 0);
    EXPECT_EQ(m_pWnd->TakeJournal(), "");
    EXPECT_EQ(pOwner->TakeJournal(), "command 7");
}

TEST_F(GuiMiniFrame, DrawsOnTheSkinsBackground)
{
    OpenSkinned(kSkin, { "_7" });
    m_pWnd->m_pSkinWindow->m_bmpWatermark.Attach(Canvas(1, 1).Finish("G"));
    MoveTo({ 115, 135 });
    EXPECT_EQ(PixelAt({ 113, 132 }), 0x140064U) << "the button, hovered";
    EXPECT_EQ(PixelAt({ 101, 150 }), 0x010564U) << "the frame";
    EXPECT_EQ(PixelAt({ 103, 150 }), 0x120064U) << "the inner frame";
    EXPECT_EQ(PixelAt({ 180, 150 }), 0x00FF00U) << "the watermark";
    PelkGUI::GetGuiSkin().Clear();
    EXPECT_EQ(m_pWnd->m_pSkinWindow, nullptr);
    EXPECT_EQ(m_pWnd->HitTestButtons({ 15, 15 }, TRUE), nullptr);
    m_pWnd->m_mapHappens["paint"] = [&] { m_pWnd->Write("painted"); };
    m_pWnd->Invalidate();
    Run();
    EXPECT_EQ(m_pWnd->TakeJournal(), "hover 1 7 painted") << "drawn straight to the window";
}

TEST_F(GuiMiniFrame, SurvivesEndsInTheMiddle)
{
    const std::map<std::string, std::function<void()>> kEnds = {
        { "the window goes", [&] { m_pWnd->DestroyWindow(); } },
        { "the skin goes", [] { PelkGUI::GetGuiSkin().Clear(); } },
        { "the skin is replaced", [&] { ApplySkin(kSkin); } },
        { "the buttons go", [&] { m_pWnd->DeleteButtons(); } },
    };
    const char* const kMoments[] = { "paint", "hover", "command", "update", "changing", "text length", "text", "icon" };
    unsigned nBefore = 0; // such moments to come
    for (unsigned i = 0; i < std::size(kMoments) * 6; i++) {
        for (const auto& c : kEnds) {
            const char* const pszWhen = kMoments[i / 6];
            SCOPED_TRACE(c.first + " at " + pszWhen + " after " + std::to_string(i % 6));
            OpenSkinned(kSkin, { "_7", "_8" });
            m_pWnd->m_mapHappens[pszWhen] = [&] { nBefore-- == 0 ? c.second() : (void)0; };
            nBefore = i % 6;
            for (const POINT pt : { POINT{ 284, 108 }, POINT{ 115, 135 }, POINT{ 250, 200 } }) {
                m_pScreen->click(pt);
                Run();
                ::SendMessageA(m_hWnd, WM_IDLEUPDATECMDUI, TRUE, 0);
                ::InvalidateRect(m_hWnd, nullptr, TRUE);
                Run();
            }
            IsOpen() ? m_pWnd->OnSkinChange() : (void)0;
            EXPECT_EQ(IsOpen(), nBefore < 6 || c.first != "the window goes");
            EXPECT_TRUE(nBefore > 6 || i % 6 > 0) << "there was one";
            nBefore = INT_MAX;
        }
    }
}

class KeptWnd : public SkinnedWnd {
    void PostNcDestroy() override {}
};

TEST_F(GuiMiniFrame, StartsNoTimerWithoutItsWindow)
{
    ApplySkin(kSkin);
    KeptWnd wnd;
    ASSERT_EQ(wnd.Create(AfxRegisterWndClass(0), "Main", WS_POPUP, { 100, 100, 300, 220 }), 1);
    wnd.m_aButtons = { "_7" };
    wnd.OnSkinChange();
    wnd.ShowWindow(SW_SHOW);
    Run();
    wnd.m_mapHappens["hover"] = [&] { wnd.DestroyWindow(); };
    MoveTo({ 115, 135 });
    EXPECT_EQ(wnd.GetSafeHwnd(), nullptr);
    EXPECT_FALSE(wnd.m_bHoverTimer);
}

class SnappingWnd : public SkinnedWindowTest {
protected:
    SnappingWnd() : SkinnedWindowTest({ { { 0, 0, 1024, 768 }, { 20, 30, 1000, 700 }, true } }) {}
};

TEST_F(SnappingWnd, IsDrawnToTheEdges)
{
    const struct {
        const char* why;
        bool bMonitors; // the system knows several
        CRect rcMoved;
        CPoint ptSnapped;
    } kCases[] = {
        { "near the low edges", true, { 25, 25, 125, 125 }, { 20, 30 } },
        { "not near enough", true, { 26, 24, 126, 124 }, { 26, 24 } },
        { "near the high edges", true, { 905, 595, 1005, 695 }, { 900, 600 } },
        { "near both: the high one has the last word", true, { 22, 32, 1004, 702 }, { 18, 30 } },
        { "far beyond all bounds", true, { INT_MIN, INT_MAX, -INT_MAX, INT_MAX }, { INT_MIN, INT_MAX } },
        { "with bounds included", false, { 26, -36, 126, 64 }, { 20, 30 } },
        { "the middle is free", false, { 27, 37, 127, 137 }, { 27, 37 } },
        { "near the high edges, bounds included", false, { 906, 594, 1006, 694 }, { 900, 600 } },
        { "the low edge first", false, { 26, 36, 1000, 700 }, { 20, 30 } },
    };
    Open();
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        PelkGUI::GetGuiManager().m_pfnGetMonitorInfo = c.bMonitors ? &::GetMonitorInfoA : nullptr;
        const CRect& rc = c.rcMoved;
        WINDOWPOS pos = { nullptr, nullptr, rc.left, rc.top, rc.Width(), rc.Height(), 0 };
        m_pWnd->WindowPosChanging(&pos);
        EXPECT_EQ(CPoint(pos.x, pos.y), c.ptSnapped);
    }
}

struct Painting {
    const char* why;
    std::function<void()> paint;
};

// The whole way, from the message to the window's surface.
TEST_F(GuiMiniFrame, PaintsWithoutTheHeapAfterTheFirstTime)
{
    OpenSkinned("<parts><part name='Left' rect='0,0,3,9'/><part name='Top' rect='0,0,9,22'/>"
                "<part name='Close' rect='0,0,9,9'/><part name='CloseHover' rect='9,9,9,9'/>"
                "<part name='_7.Up' rect='1,0,9,9'/><part name='_7.Hover' rect='20,0,9,9'/></parts>"
                "<anchors><anchor name='_7' rect='10,10,20,20'/><anchor name='Close' rect='-20,5,10,10'/></anchors>"
                "<caption rect='30,3,-60,18'/>"
                "<region><shape type='roundRect' rect='0,0,-1,-1' size='12,12'/></region>",
                { "_7" });
    const auto paintClient = [&] { m_pWnd->SendMessage(WM_PAINT); };
    const Painting kPaintings[] = {
        { "the client area", [&] { m_pWnd->Invalidate(FALSE), paintClient(); } },
        { "the frame", [&] { m_pWnd->SendMessage(WM_NCPAINT, 1); } },
        { "the caption", [&] { m_pWnd->SendMessage(WM_NCACTIVATE, TRUE); } },
        { "a caption button and the caption beside it under the pointer",
          [&] {
              m_pWnd->SendMessage(WM_NCMOUSEMOVE, HTCLOSE, MAKELPARAM(285, 109));
              m_pWnd->SendMessage(WM_NCMOUSEMOVE, HTCAPTION, MAKELPARAM(200, 109));
              m_pWnd->SendMessage(WM_NCMOUSEMOVE, HTCAPTION, MAKELPARAM(201, 109));
          } },
        { "a button and the client area beside it under the pointer",
          [&] {
              for (const LPARAM nPlace : { MAKELPARAM(17, 18), MAKELPARAM(90, 90) }) {
                  m_pWnd->SendMessage(WM_MOUSEMOVE, 0, nPlace), paintClient();
                  m_pWnd->TakeJournal(); // before it is too long for its own memory
              }
          } },
    };
    for (const Painting& painting : kPaintings) {
        painting.paint();
        painting.paint();
        const std::size_t nBefore = heap_allocations();
        painting.paint();
        EXPECT_EQ(heap_allocations(), nBefore) << painting.why;
    }
}

} // namespace
