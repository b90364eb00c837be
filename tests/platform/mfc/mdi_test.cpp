#include "tests/platform/mfc/ScreenTest.h"

namespace {

class Child : public CMDIChildWnd {
public:
    Child(std::string& log, char name) : m_log(log), m_name(name) {}
    ~Child() override { Note("gone"); }
    BOOL m_bDestroyWhenActivated = FALSE;

protected:
    void OnMDIActivate(BOOL bActivate, CWnd* /*pActivate*/, CWnd* /*pDeactivate*/)
    {
        Note(bActivate ? "on" : "off");
        if (bActivate && m_bDestroyWhenActivated)
            DestroyWindow();
    }
    BOOL OnNcActivate(BOOL bActive)
    {
        Note(bActive ? "lit" : "dim");
        return CMDIChildWnd::OnNcActivate(bActive);
    }
    void OnNumber(UINT nID) { Note(std::to_string(nID).c_str()); }
    DECLARE_MESSAGE_MAP()

private:
    void Note(const char* pszWhat) { m_log += std::string(1, m_name) + pszWhat + " "; }

    std::string& m_log;
    const char m_name;
};

BEGIN_MESSAGE_MAP(Child, CMDIChildWnd)
ON_WM_MDIACTIVATE()
ON_WM_NCACTIVATE()
ON_COMMAND_RANGE(1, 2, &Child::OnNumber)
END_MESSAGE_MAP()

class Frame : public CMDIFrameWnd {
public:
    explicit Frame(std::string& log) : m_log(log) {}

protected:
    void OnNumber(UINT nID) { m_log += "frame" + std::to_string(nID) + " "; }
    DECLARE_MESSAGE_MAP()

private:
    std::string& m_log;
};

BEGIN_MESSAGE_MAP(Frame, CMDIFrameWnd)
ON_COMMAND_RANGE(2, 3, &Frame::OnNumber)
END_MESSAGE_MAP()

class MdiTest : public test::ScreenTest {
protected:
    MdiTest()
    {
        EXPECT_TRUE(m_pFrame->Create(nullptr, "frame", WS_OVERLAPPEDWINDOW | WS_VISIBLE, CRect(100, 100, 500, 400)));
        m_program.m_pMainWnd = m_pFrame;
        m_pFrame->SetActiveWindow();
        Pump();
    }
    Child* NewChild(char name, const CRect& rect)
    {
        auto* const pChild = new Child(m_log, name);
        EXPECT_TRUE(pChild->Create(nullptr, "child", WS_CHILD | WS_VISIBLE | WS_OVERLAPPEDWINDOW, rect));
        return pChild;
    }
    std::string Log() { return std::exchange(m_log, ""); }

    Frame* const m_pFrame = new Frame(m_log);
};

TEST_F(MdiTest, HasOneActiveChildWhileItHasAny)
{
    EXPECT_EQ(m_pFrame->MDIGetActive(), nullptr);
    Child* const pA = NewChild('a', CRect(0, 0, 150, 150));
    EXPECT_EQ(Log(), "aon alit ");
    Child* const pB = NewChild('b', CFrameWnd::rectDefault);
    EXPECT_EQ(Log(), "adim aoff bon blit ");
    CRect rcB;
    pB->GetClientRect(&rcB);
    EXPECT_FALSE(rcB.IsRectEmpty()) << "a place is found for it";
    pB->SetWindowPos(nullptr, 150, 0, 150, 150, SWP_NOZORDER);
    EXPECT_EQ(m_pFrame->MDIGetActive(), pB);
    EXPECT_EQ(pA->GetMDIFrame(), m_pFrame);

    CRect rcA;
    pA->GetWindowRect(&rcA);
    Click(rcA.CenterPoint());
    EXPECT_EQ(Log(), "bdim boff aon alit ");
    EXPECT_EQ(::GetTopWindow(m_pFrame->m_hWndMDIClient), pA->m_hWnd);
    EXPECT_EQ(CWnd::GetFocus(), pA);
    Click(rcA.CenterPoint());
    EXPECT_EQ(Log(), "") << "it was active already";
    for (const WPARAM nCommand : { 1, 2, 3, 4 })
        m_pFrame->SendMessage(WM_COMMAND, nCommand);
    EXPECT_EQ(Log(), "a1 a2 frame3 ") << "it is asked before its frame";

    m_pFrame->SendMessage(WM_NCACTIVATE, FALSE);
    EXPECT_EQ(Log(), "adim ") << "with its frame";

    pA->SendMessage(WM_CLOSE);
    EXPECT_EQ(Log(), "adim aoff bon blit agone ");
    pB->ModifyStyle(0, WS_MAXIMIZE);
    BOOL bMaximized = FALSE;
    EXPECT_EQ(m_pFrame->MDIGetActive(&bMaximized), pB);
    EXPECT_TRUE(bMaximized);
    pB->MDIDestroy();
    EXPECT_EQ(m_pFrame->MDIGetActive(&bMaximized), nullptr);
    EXPECT_FALSE(bMaximized);
}

TEST_F(MdiTest, SurvivesChildrenThatEndWhenTheyAreActivated)
{
    Child* const pA = NewChild('a', CRect(0, 0, 150, 150));
    Child* const pB = NewChild('b', CRect(150, 0, 300, 150));
    pA->m_bDestroyWhenActivated = TRUE;
    Log();
    pA->MDIActivate();
    EXPECT_EQ(Log(), "bdim boff aon adim aoff bon blit agone ");
    EXPECT_EQ(m_pFrame->MDIGetActive(), pB);
    m_pFrame->DestroyWindow();
    EXPECT_EQ(Log(), "bdim bgone ") << "nobody is activated while the frame goes";
}

TEST_F(MdiTest, DrawsTheActiveChildAsActiveAlsoWhenItIsExposed)
{
    Child* const pA = NewChild('a', CRect(0, 0, 200, 150));
    Pump();
    CRect rcA;
    pA->GetWindowRect(&rcA);
    const CPoint caption(rcA.left + 100, rcA.top + 8); // behind the title
    const auto active = m_pScreen->pixel_at(caption);
    pA->RedrawWindow(nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME | RDW_UPDATENOW);
    Pump();
    EXPECT_EQ(m_pScreen->pixel_at(caption), active);
    NewChild('b', CRect(0, 150, 200, 250));
    pA->RedrawWindow(nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME | RDW_UPDATENOW);
    Pump();
    EXPECT_NE(m_pScreen->pixel_at(caption), active);
}

} // namespace
