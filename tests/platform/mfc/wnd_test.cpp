#include <afxwin.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

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
    int m_nGone = 0;

protected:
    LRESULT OnQuestion(WPARAM wParam, LPARAM) { return wParam == 1 ? Default() + 1 : 1; }
    void PostNcDestroy() override { m_nGone++; }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(Answering, CWnd)
ON_MESSAGE(kQuestion, &Answering::OnQuestion)
END_MESSAGE_MAP()

TEST(CWnd, SubclassesAWindowAndGivesItBack)
{
    const HWND hWnd = MakePlainWindow();
    ASSERT_TRUE(hWnd);
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
}

TEST(CWnd, SubclassesWindowsOfForeignClassesItMakes)
{
    Answering window;
    ASSERT_TRUE(window.CreateEx(0, PlainClass(), "plain", WS_POPUP, CRect(0, 0, 40, 30), nullptr, 0));
    EXPECT_EQ(window.SendMessage(kQuestion, 1), 1001);
}

TEST(CWnd, AttachedOnlyOwnsTheWindow)
{
    HWND hWnd = MakePlainWindow();
    {
        Answering window;
        ASSERT_TRUE(window.Attach(hWnd));
        EXPECT_EQ(window.SendMessage(kQuestion), 1000);
        EXPECT_EQ(CWnd::FromHandle(hWnd), &window);
        EXPECT_EQ(window.Detach(), hWnd);
        EXPECT_TRUE(IsWindow(hWnd));
        window.Attach(hWnd);
    }
    EXPECT_FALSE(IsWindow(hWnd)) << "it goes with its object";
}

TEST(CWnd, HasTemporaryObjectsUntilIdle)
{
    const HWND hWnd = MakePlainWindow();
    CWnd* const pTemporary = CWnd::FromHandle(hWnd);
    EXPECT_EQ(pTemporary->m_hWnd, hWnd);
    EXPECT_EQ(CWnd::FromHandle(hWnd), pTemporary);
    EXPECT_EQ(CWnd::FromHandlePermanent(hWnd), nullptr);
    EXPECT_EQ(CWnd::FromHandle(nullptr), nullptr);
    CWnd::DeleteTempMap();
    EXPECT_TRUE(IsWindow(hWnd)) << "a temporary object owns nothing";
    DestroyWindow(hWnd);
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

    pFrame->RecalcLayout();
    CRect rcChild, rcClient;
    child.GetWindowRect(&rcChild);
    pFrame->GetClientRect(&rcClient);
    pFrame->ScreenToClient(&rcChild);
    EXPECT_EQ(rcChild, rcClient);

    pFrame->SendMessageToDescendants(WM_CLOSE, 0, 0, TRUE, TRUE);
    EXPECT_EQ(child.m_nGone, 1);
    EXPECT_EQ(grandchild.m_nGone, 1) << "went with its parent, in the middle of the walk";
    pFrame->DestroyWindow();
}

class CommandOwner : public CCmdTarget {
protected:
    void OnNothing() {}
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(CommandOwner, CCmdTarget)
ON_COMMAND(21, &CommandOwner::OnNothing)
END_MESSAGE_MAP()

TEST(CWnd, EnablesControlsWhoseCommandSomebodyHandles)
{
    auto* const pFrame = new CFrameWnd;
    ASSERT_TRUE(pFrame->Create(nullptr, "frame", WS_POPUP, CRect(0, 0, 100, 100)));
    CWnd handled, unhandled;
    ASSERT_TRUE(handled.Create(nullptr, "", WS_DISABLED, CRect(0, 0, 9, 9), pFrame, 21));
    ASSERT_TRUE(unhandled.Create(nullptr, "", 0, CRect(9, 0, 18, 9), pFrame, 22));
    CommandOwner owner;
    pFrame->UpdateDialogControls(&owner, TRUE);
    EXPECT_TRUE(handled.IsWindowEnabled());
    EXPECT_FALSE(unhandled.IsWindowEnabled());
    pFrame->DestroyWindow();
}

TEST(CWnd, PutsItselfAway)
{
    const HWND hWnd = MakePlainWindow();
    {
        Answering window;
        window.SubclassWindow(hWnd);
    }
    EXPECT_FALSE(IsWindow(hWnd));
}

} // namespace
