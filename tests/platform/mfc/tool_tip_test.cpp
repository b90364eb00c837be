#include "tests/platform/mfc/ScreenTest.h"

#include <commctrl.h>

#include <cstring>
#include <functional>
#include <map>

namespace {

constexpr UINT kDelay = 20; // milliseconds of rest

const CRect kFive(10, 10, 30, 30);
const CRect kSix(40, 10, 60, 30);
const CRect kControl(10, 40, 30, 60); // a child window

class ToolFrame : public CFrameWnd {
public:
    int OnToolHitTest(CPoint point, TOOLINFOA* pTI) const override
    {
        const int nID = kFive.PtInRect(point) ? 5 : kSix.PtInRect(point) ? 6 : 0;
        if (nID == 0)
            return CFrameWnd::OnToolHitTest(point, pTI);
        pTI->hwnd = m_hWnd;
        pTI->uId = static_cast<UINT_PTR>(nID);
        pTI->rect = nID == 5 ? kFive : kSix;
        pTI->lpszText = strdup(nID == 5 ? "five" : "six"); // a leak for the sanitizer unless it is freed
        return nID;
    }

protected:
    LRESULT OnNotify(WPARAM, LPARAM lParam)
    {
        auto* const pInfo = reinterpret_cast<NMTTDISPINFOA*>(lParam);
        if (pInfo->hdr.code == TTN_NEEDTEXTA)
            std::strcpy(pInfo->szText, "control");
        return 0;
    }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(ToolFrame, CFrameWnd)
ON_MESSAGE(WM_NOTIFY, &ToolFrame::OnNotify)
END_MESSAGE_MAP()

class ToolTipTest : public test::ScreenTest {
protected:
    ToolTipTest()
    {
        EXPECT_TRUE(m_pFrame->Create(nullptr, "frame", WS_POPUP | WS_VISIBLE, CRect(200, 200, 300, 300)));
        EXPECT_TRUE(m_control.Create(nullptr, "", WS_VISIBLE, kControl, m_pFrame, 9));
        EXPECT_TRUE(m_plain.CreateEx(0, nullptr, "", WS_POPUP | WS_VISIBLE, CRect(600, 600, 620, 620), nullptr, 0));
        m_program.m_pMainWnd = m_pFrame;
        m_pFrame->EnableToolTips();
        m_pFrame->SetActiveWindow();
        MoveTo({ 290, 290 });
        ::SendMessageA(Tip(), TTM_SETDELAYTIME, TTDT_AUTOMATIC, kDelay);
    }
    static HWND Tip() { return ::FindWindowA(TOOLTIPS_CLASSA, nullptr); }
    std::string Shown()
    {
        char text[100] = {};
        ::GetWindowTextA(Tip(), text, sizeof(text));
        return ::IsWindowVisible(Tip()) ? text : "";
    }
    // What is shown once every tip that is coming has come: a timer set behind theirs has run.
    std::string ShownAtLast()
    {
        static bool bOver;
        bOver = false;
        const UINT_PTR nTimer = ::SetTimer(nullptr, 0, 4 * kDelay, [](HWND, UINT, UINT_PTR, DWORD) { bOver = true; });
        EXPECT_TRUE(PumpUntil([] { return bOver; }));
        ::KillTimer(nullptr, nTimer);
        return Shown();
    }
    // A letter a step: a tool or place to move to, or what is done there.
    void Do(char step)
    {
        const CPoint tools(203, 203); // what the tools are counted from, and 3 pixels into them
        const std::map<char, CPoint> places = { { '5', tools + kFive.TopLeft() },
                                                { '6', tools + kSix.TopLeft() },
                                                { 'c', tools + kControl.TopLeft() },
                                                { '-', { 290, 290 } },
                                                { '=', { 610, 610 } },
                                                { 'o', { 500, 500 } } };
        const std::map<char, std::function<void()>> deeds = {
            { 'i', [&] { m_plain.SetActiveWindow(); } },
            { 'a', [&] { m_pFrame->SetActiveWindow(); } },
            { 'p', [&] { m_pScreen->press(win32::kLeftButton); } },
            { 'r', [&] { m_pScreen->release(win32::kLeftButton); } },
            { 'k', [&] { m_pScreen->press_key(VK_RETURN), m_pScreen->release_key(VK_RETURN); } },
            { 's', [&] { EXPECT_TRUE(PumpUntil([&] { return !Shown().empty(); })); } },
            { 'h', [&] { EXPECT_TRUE(PumpUntil([&] { return Shown().empty(); })); } },
            { 'x', [&] { m_pFrame->EnableToolTips(FALSE); } },
        };
        if (places.contains(step))
            return MoveTo(places.at(step));
        deeds.at(step)();
        Pump();
    }

    ToolFrame* const m_pFrame = new ToolFrame;
    CWnd m_control;
    CWnd m_plain; // has no tips
};

struct TipCase {
    const char* why;
    const char* pszSteps;
    const char* pszShown;
};

const TipCase kTips[] = {
    { "rests on a tool", "5", "five" },
    { "beside the tools", "-", "" },
    { "on to the next", "5s6", "six" },
    { "away from it", "5s-", "" },
    { "away and back", "5s-5", "five" },
    { "out of the window", "5soh", "" },
    { "out and back onto the same tool", "5so5", "five" },
    { "pressed before it came", "5pr", "" },
    { "pressed while it is shown", "5spr", "" },
    { "still on the tool after the press", "5spr5", "" },
    { "comes again after the pointer left", "5spr-5", "five" },
    { "on to the next after a press", "5spr6", "six" },
    { "moved with the button down", "5p6", "" },
    { "a key", "5sk", "" },
    { "the window is not active", "i5", "" },
    { "a child window is a tool", "c", "control" },
    { "no tips any more", "5sx", "" },
    { "over a window without tips and back, after a press", "5spr=5", "five" },
    { "no tips any more, elsewhere", "5sx6", "" },
};

TEST_F(ToolTipTest, ShowsWhatThePointerRestsOn)
{
    for (const TipCase& c : kTips) {
        SCOPED_TRACE(c.why);
        Do('-');
        Do('a');
        m_pFrame->EnableToolTips();
        for (const char* pStep = c.pszSteps; *pStep; pStep++)
            Do(*pStep);
        EXPECT_EQ(ShownAtLast(), c.pszShown);
        Do('r');
    }
    EXPECT_LE(::SendMessageA(Tip(), TTM_GETTOOLCOUNT, 0, 0), 1) << "old tools go";
}

TEST_F(ToolTipTest, FollowsThePointerToAnotherFrame)
{
    auto* const pOther = new ToolFrame;
    ASSERT_TRUE(pOther->Create(nullptr, "other", WS_POPUP | WS_VISIBLE, CRect(400, 400, 500, 500)));
    pOther->EnableToolTips();
    pOther->SetActiveWindow();
    MoveTo({ 415, 415 });
    EXPECT_EQ(::GetWindow(Tip(), GW_OWNER), pOther->m_hWnd);
    ::SendMessageA(Tip(), TTM_SETDELAYTIME, TTDT_AUTOMATIC, kDelay);
    MoveTo({ 416, 416 });
    EXPECT_EQ(ShownAtLast(), "five");
    pOther->DestroyWindow();
    EXPECT_EQ(Tip(), nullptr) << "the tip goes with its owner";
    m_pFrame->SetActiveWindow();
    Do('6');
    EXPECT_NE(Tip(), nullptr);
}

} // namespace
