#include "platform/win32/screen/memory_screen.h"
#include "tests/platform/mfc/NotingFrame.h"

#include <memory>

namespace {

using test::kCommand;
using test::kUnhandled;
using test::NotingFrame;

constexpr UINT kQuestion = WM_APP + 5;

// The procedure of a class that the framework knows nothing of.
LRESULT CALLBACK PlainProc(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    return message == kQuestion ? 1000 : DefWindowProcA(hWnd, message, wParam, lParam);
}

LPCSTR PlainClass()
{
    WNDCLASSA window_class = {};
    window_class.lpfnWndProc = PlainProc;
    window_class.hInstance = AfxGetInstanceHandle();
    window_class.lpszClassName = "PlainClass";
    RegisterClassA(&window_class);
    return window_class.lpszClassName;
}

HWND MakePlainWindow()
{
    return CreateWindowExA(0, PlainClass(), "plain", WS_POPUP, 0, 0, 40, 30, nullptr, nullptr, AfxGetInstanceHandle(),
                           nullptr);
}

class Answering : public CWnd {
public:
    int m_nAsked = 0;
    int m_nGone = 0;

protected:
    LRESULT OnQuestion(WPARAM wParam, LPARAM)
    {
        m_nAsked++;
        SendMessage(WM_NULL); // must not become what Default goes on with
        return wParam == 1 ? Default() + 1 : 1;
    }
    void PostNcDestroy() override { m_nGone++; }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(Answering, CWnd)
ON_MESSAGE(kQuestion, &Answering::OnQuestion)
END_MESSAGE_MAP()

TEST(CWnd, SubclassesAWindowAndGivesItBack)
{
    const HWND hWnd = MakePlainWindow();
    Answering window;
    ASSERT_TRUE(window.SubclassWindow(hWnd));
    EXPECT_FALSE(window.SubclassWindow(hWnd)) << "an object has one window";
    EXPECT_EQ(window.SendMessage(kQuestion), 1);
    EXPECT_EQ(window.SendMessage(kQuestion, 1), 1001) << "the procedure before is asked by default";
    EXPECT_EQ(window.UnsubclassWindow(), hWnd);
    EXPECT_EQ(SendMessageA(hWnd, kQuestion, 0, 0), 1000);
    ASSERT_TRUE(window.SubclassWindow(hWnd));
    window.DestroyWindow();
    EXPECT_EQ(window.m_hWnd, nullptr);
    EXPECT_EQ(window.m_nGone, 1);
    const HWND hOther = MakePlainWindow();
    {
        Answering other;
        other.SubclassWindow(hOther);
    }
    EXPECT_FALSE(IsWindow(hOther)) << "it goes with its object";
}

TEST(CWnd, SubclassesWindowsOfForeignClassesItMakes)
{
    Answering window;
    ASSERT_TRUE(window.CreateEx(0, PlainClass(), "plain", WS_POPUP, CRect(0, 0, 40, 30), nullptr, 0));
    EXPECT_EQ(window.SendMessage(kQuestion, 1), 1001);
}

TEST(CWnd, AttachedOnlyOwnsTheWindow)
{
    const HWND hWnd = MakePlainWindow();
    {
        Answering window;
        ASSERT_TRUE(window.Attach(hWnd));
        EXPECT_EQ(window.SendMessage(kQuestion), 1000);
        EXPECT_EQ(CWnd::FromHandle(hWnd), &window);
        EXPECT_EQ(window.Detach(), hWnd);
        EXPECT_TRUE(IsWindow(hWnd));
        window.Attach(hWnd);
        window.DestroyWindow();
        EXPECT_EQ(window.m_hWnd, nullptr) << "it cannot hear of its window's end";
    }
}

TEST(TemporaryObjects, OwnNothingAndGoWhenTheThreadIsIdle)
{
    const HWND hWnd = MakePlainWindow();
    const HBRUSH hBrush = CreateSolidBrush(RGB(1, 2, 3));
    const HDC hDC = CreateCompatibleDC(nullptr);
    const HMENU hMenu = GetSystemMenu(hWnd, FALSE);
    EXPECT_EQ(CWnd::FromHandle(hWnd)->m_hWnd, hWnd);
    EXPECT_EQ(CWnd::FromHandle(hWnd), CWnd::FromHandle(hWnd));
    EXPECT_EQ(CWnd::FromHandlePermanent(hWnd), nullptr);
    EXPECT_EQ(CWnd::FromHandle(nullptr), nullptr);
    EXPECT_EQ(CBrush::FromHandle(hBrush), CBrush::FromHandle(hBrush));
    EXPECT_EQ(CGdiObject::FromHandle(hBrush)->m_hObject, hBrush);
    EXPECT_EQ(CDC::FromHandle(hDC)->m_hAttribDC, hDC);
    EXPECT_EQ(CMenu::FromHandle(hMenu)->m_hMenu, hMenu);
    CWinThread().OnIdle(1);
    EXPECT_TRUE(IsMenu(hMenu) && DestroyWindow(hWnd) && DeleteObject(hBrush) && DeleteDC(hDC));
}

TEST(CWnd, ReachesTheWindowsWithin)
{
    auto* const pFrame = new CFrameWnd;
    ASSERT_TRUE(pFrame->Create(nullptr, "frame", WS_POPUP, CRect(0, 0, 100, 100)));
    Answering child, grandchild;
    ASSERT_TRUE(child.Create(nullptr, "child", WS_VISIBLE, CRect(10, 10, 60, 60), pFrame, AFX_IDW_PANE_FIRST));
    ASSERT_TRUE(grandchild.Create(nullptr, "grandchild", WS_VISIBLE, CRect(0, 0, 5, 5), &child, 8));
    EXPECT_EQ(pFrame->GetDlgItem(AFX_IDW_PANE_FIRST), &child);
    EXPECT_EQ(child.GetParent(), pFrame);
    EXPECT_EQ(grandchild.GetTopLevelParent(), pFrame);

    pFrame->MoveWindow(CRect(0, 0, 120, 90));
    CRect rcChild, rcClient;
    child.GetWindowRect(&rcChild);
    pFrame->GetClientRect(&rcClient);
    pFrame->ScreenToClient(&rcChild);
    EXPECT_EQ(rcChild, rcClient);

    pFrame->SendMessageToDescendants(kQuestion, 0, 0, TRUE, TRUE);
    EXPECT_EQ(grandchild.m_nAsked, 1);
    pFrame->SendMessageToDescendants(WM_CLOSE, 0, 0, TRUE, TRUE);
    EXPECT_EQ(child.m_nGone, 1);
    EXPECT_EQ(grandchild.m_nGone, 1) << "went with its parent, in the middle of the walk";
    pFrame->DestroyWindow();
}

struct ControlCase {
    const char* why;
    UINT nID;
    NotingFrame::Update own;    // the window's answer
    NotingFrame::Update target; // of whoever is asked behind it
    BOOL bDisable;
    DWORD dwBefore;
    BOOL bEnabled;
};

void Allow(CCmdUI& state)
{
    state.Enable(TRUE);
}

void Refuse(CCmdUI& state)
{
    state.Enable(FALSE);
}

const ControlCase kControls[] = {
    { "somebody handles the command", kCommand, nullptr, nullptr, TRUE, WS_DISABLED, TRUE },
    { "nobody does", kUnhandled, nullptr, nullptr, TRUE, 0, FALSE },
    { "nobody does, and that is all right", kUnhandled, nullptr, nullptr, FALSE, 0, TRUE },
    { "the window passes it on, the target says no", kCommand, nullptr, Refuse, FALSE, 0, FALSE },
    { "the window has the first word", kCommand, Allow, Refuse, FALSE, WS_DISABLED, TRUE },
    { "no command", 0xFFFF, nullptr, nullptr, TRUE, 0, TRUE },
};

TEST(CWnd, EnablesControlsAsWindowAndTargetSay)
{
    for (const ControlCase& c : kControls) {
        SCOPED_TRACE(c.why);
        std::string log;
        auto* const pFrame = new NotingFrame(log);
        ASSERT_TRUE(pFrame->CreateFrame());
        CWnd control;
        ASSERT_TRUE(control.Create(nullptr, "", c.dwBefore, CRect(0, 0, 9, 9), pFrame, c.nID));
        NotingFrame target(log);
        pFrame->m_updates[c.nID] = c.own;
        target.m_updates[c.nID] = c.target;
        pFrame->UpdateDialogControls(&target, c.bDisable);
        EXPECT_EQ(control.IsWindowEnabled(), c.bEnabled);
        pFrame->DestroyWindow();
    }
}

TEST(CWnd, StopsAskingWhenAnAnswerWasItsEnd)
{
    std::string log;
    NotingFrame* pFrame = new NotingFrame(log);
    ASSERT_TRUE(pFrame->CreateFrame());
    pFrame->m_updates[kCommand] = [&](CCmdUI&) { pFrame->DestroyWindow(); };
    CWnd first, second;
    ASSERT_TRUE(first.Create(nullptr, "", 0, CRect(0, 0, 9, 9), pFrame, kCommand));
    ASSERT_TRUE(second.Create(nullptr, "", 0, CRect(9, 0, 18, 9), pFrame, kCommand));
    NotingFrame target(log);
    pFrame->UpdateDialogControls(&target, TRUE);
    EXPECT_TRUE(log.ends_with("destroy deleted ")) << log;

    pFrame = new NotingFrame(log);
    ASSERT_TRUE(pFrame->CreateFrame());
    auto pState = std::make_unique<CCmdUI>(); // the frame's own, say
    pState->m_nID = kCommand;
    pFrame->m_updates[kCommand] = [&](CCmdUI&) {
        pFrame->DestroyWindow();
        pState.reset();
    };
    EXPECT_TRUE(pState->DoUpdate(pFrame, TRUE));
}

struct CentreCase {
    const char* why;
    DWORD dwStyle;
    CRect rcOwner; // empty: none
    CSize size;
    CRect rcExpected; // as the screen of 1024 x 768 has it; of a child, in its parent
};

const CentreCase kCentres[] = {
    { "in the work area", WS_POPUP, {}, { 100, 50 }, { 462, 359, 562, 409 } },
    { "over its owner", WS_POPUP, { 100, 100, 300, 200 }, { 100, 50 }, { 150, 125, 250, 175 } },
    { "within the work area", WS_POPUP, { 900, 700, 1020, 760 }, { 400, 300 }, { 624, 468, 1024, 768 } },
    { "from its corner when it is too large", WS_POPUP, {}, { 2000, 50 }, { 0, 359, 2000, 409 } },
    { "in its parent", WS_CHILD, { 100, 100, 300, 200 }, { 100, 50 }, { 50, 25, 150, 75 } },
};

TEST(CWnd, CentresItself)
{
    win32::set_screen(std::make_shared<win32::MemoryScreen>(
        std::vector<win32::Monitor>{ { CRect(0, 0, 1024, 768), CRect(0, 0, 1024, 768), true } }));
    for (const CentreCase& c : kCentres) {
        SCOPED_TRACE(c.why);
        CWnd owner;
        ASSERT_TRUE(c.rcOwner.IsRectEmpty() ||
                    owner.CreateEx(0, nullptr, "owner", WS_POPUP | WS_VISIBLE, c.rcOwner, nullptr, 0));
        CWnd window;
        ASSERT_TRUE(window.CreateEx(0, nullptr, "window", c.dwStyle, CRect(CPoint(0, 0), c.size),
                                    owner.m_hWnd ? &owner : nullptr, 0));
        window.CenterWindow();
        CRect rect;
        window.GetWindowRect(&rect);
        const CPoint origin = c.dwStyle & WS_CHILD ? c.rcOwner.TopLeft() : CPoint(0, 0);
        EXPECT_EQ(rect, c.rcExpected + origin);
    }
}

} // namespace
