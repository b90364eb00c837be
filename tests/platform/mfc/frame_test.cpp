#include <afxwin.h>

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr UINT kAsk = WM_APP + 1;
constexpr UINT kCloseCommand = 100;

// A frame that notes what happens to it and does in a handler what a test asks for.
class NotingFrame : public CFrameWnd {
public:
    explicit NotingFrame(std::string& log) : log_(log) {}
    ~NotingFrame() override { log_ += "deleted "; }

    std::function<void(NotingFrame&)> m_onPaint, m_onTimer, m_onCommand, m_onAsk;
    std::function<int()> m_onCreate;
    BOOL m_bCommandEnabled = TRUE;

    BOOL CreateFrame() { return Create(nullptr, "frame", WS_POPUP | WS_VISIBLE, CRect(0, 0, 40, 30)); }

protected:
    int OnCreate(LPCREATESTRUCTA pCreate)
    {
        log_ += "create ";
        if (CFrameWnd::OnCreate(pCreate) == -1)
            return -1;
        return m_onCreate ? m_onCreate() : 0;
    }
    void OnPaint()
    {
        log_ += "paint ";
        if (m_onPaint)
            return m_onPaint(*this);
        const CPaintDC dc(this);
    }
    void OnTimer(UINT_PTR nIDEvent)
    {
        log_ += "timer" + std::to_string(nIDEvent) + " ";
        if (m_onTimer)
            m_onTimer(*this);
    }
    void OnCloseCommand() { m_onCommand(*this); }
    void OnUpdateCloseCommand(CCmdUI* pCmdUI) { pCmdUI->Enable(m_bCommandEnabled); }
    LRESULT OnAsk(WPARAM wParam, LPARAM lParam)
    {
        if (m_onAsk)
            m_onAsk(*this);
        return static_cast<LRESULT>(wParam) + lParam; // touches nothing: the object may be gone
    }
    void OnDestroy()
    {
        log_ += "destroy ";
        CFrameWnd::OnDestroy();
    }
    void OnClose()
    {
        log_ += "close ";
        CFrameWnd::OnClose();
        AfxPostQuitMessage(0);
    }
    DECLARE_MESSAGE_MAP()

private:
    std::string& log_;
};

BEGIN_MESSAGE_MAP(NotingFrame, CFrameWnd)
ON_WM_CREATE()
ON_WM_PAINT()
ON_WM_TIMER()
ON_WM_DESTROY()
ON_WM_CLOSE()
ON_COMMAND(kCloseCommand, &NotingFrame::OnCloseCommand)
ON_UPDATE_COMMAND_UI(kCloseCommand, &NotingFrame::OnUpdateCloseCommand)
ON_MESSAGE(kAsk, &NotingFrame::OnAsk)
END_MESSAGE_MAP()

void Close(NotingFrame& frame)
{
    frame.SendMessage(WM_CLOSE);
}

class Program : public CWinApp {
public:
    std::function<BOOL(Program&)> m_init;
    std::string m_strLog;

    BOOL InitInstance() override { return m_init(*this); }
    int ExitInstance() override
    {
        m_strLog += "exit ";
        return CWinApp::ExitInstance();
    }
};

// Runs a program whose main window is prepared by `prepare` once it exists.
int RunProgram(Program& program, const std::function<void(NotingFrame&)>& prepare)
{
    program.m_init = [&](Program& self) -> BOOL {
        auto* const pFrame = new NotingFrame(self.m_strLog);
        if (!pFrame->CreateFrame())
            return FALSE;
        self.m_pMainWnd = pFrame;
        prepare(*pFrame);
        return TRUE;
    };
    return AfxWinMain(AfxGetInstanceHandle(), nullptr, nullptr, SW_SHOWNORMAL);
}

struct EndCase {
    const char* why;
    void (*prepare)(NotingFrame& frame);
};

// Every one of them destroys window and object while a handler of theirs runs.
const EndCase kEnds[] = {
    { "posted WM_CLOSE", [](NotingFrame& f) { f.PostMessage(WM_CLOSE); } },
    { "closed by a timer", [](NotingFrame& f) { f.m_onTimer = Close, f.SetTimer(1, 10, nullptr); } },
    { "closed while painting", [](NotingFrame& f) { f.m_onPaint = Close, f.Invalidate(); } },
    { "closed by a command", [](NotingFrame& f) { f.m_onCommand = Close, f.PostMessage(WM_COMMAND, kCloseCommand); } },
    { "closed by a message sent from a handler",
      [](NotingFrame& f) {
          f.m_onAsk = Close;
          f.m_onTimer = [](NotingFrame& self) { self.SendMessage(kAsk); };
          f.SetTimer(1, 10, nullptr);
      } },
    { "destroyed without WM_CLOSE",
      [](NotingFrame& f) { f.m_onAsk = [](NotingFrame& s) { s.DestroyWindow(); }, f.PostMessage(kAsk); } },
    { "deleted like any object",
      [](NotingFrame& f) { f.m_onAsk = [](NotingFrame& s) { delete &s; }, f.PostMessage(kAsk); } },
};

TEST(CFrameWnd, MayEndInsideItsHandlers)
{
    for (const EndCase& c : kEnds) {
        SCOPED_TRACE(c.why);
        Program program;
        EXPECT_EQ(RunProgram(program, c.prepare), 0);
        EXPECT_EQ(program.m_pMainWnd, nullptr);
        EXPECT_TRUE(program.m_strLog.ends_with("deleted exit ")) << program.m_strLog;
        EXPECT_EQ(program.m_strLog.find("deleted"), program.m_strLog.rfind("deleted"));
    }
}

TEST(CWinApp, GivesTheExitCodeOfTheQuitMessage)
{
    Program program;
    const int nExit = RunProgram(program, [](NotingFrame& frame) {
        frame.m_onAsk = [](NotingFrame&) { AfxPostQuitMessage(7); };
        frame.PostMessage(kAsk);
    });
    EXPECT_EQ(nExit, 7);
    ASSERT_NE(program.m_pMainWnd, nullptr) << "the window is still there";
    program.m_pMainWnd->DestroyWindow();
    MSG msg;
    EXPECT_TRUE(PeekMessageA(&msg, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE)) << "the main window's end asks again";
}

TEST(CWinApp, EndsWhenItsStartFails)
{
    Program program;
    program.m_init = [](Program& self) -> BOOL {
        auto* const pFrame = new NotingFrame(self.m_strLog);
        pFrame->CreateFrame();
        self.m_pMainWnd = pFrame;
        self.m_strLog.clear();
        return FALSE;
    };
    AfxWinMain(AfxGetInstanceHandle(), nullptr, nullptr, SW_SHOWNORMAL);
    EXPECT_EQ(program.m_strLog, "destroy deleted exit ");
    MSG msg;
    PeekMessageA(&msg, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE); // leave the thread's queue clean
}

TEST(CFrameWnd, StaysTheCallersWhenItCannotBeMade)
{
    std::string log;
    const auto pFrame = std::make_unique<NotingFrame>(log);
    EXPECT_FALSE(pFrame->Create("no such class", "frame", WS_POPUP, CRect(0, 0, 40, 30)));
    EXPECT_EQ(pFrame->m_hWnd, nullptr);
    pFrame->m_onCreate = [] { return -1; };
    EXPECT_FALSE(pFrame->CreateFrame());
    EXPECT_EQ(pFrame->m_hWnd, nullptr);
    EXPECT_EQ(log, "create destroy ");
    log.clear();
    pFrame->m_onCreate = []() -> int { AfxThrowMemoryException(); };
    EXPECT_FALSE(pFrame->CreateFrame()) << "an exception in OnCreate is a refusal";
    EXPECT_EQ(log, "create destroy ");
}

TEST(CFrameWnd, AnswersMessagesAndCommands)
{
    std::string log;
    auto* const pFrame = new NotingFrame(log);
    ASSERT_TRUE(pFrame->CreateFrame());
    EXPECT_EQ(CWnd::FromHandlePermanent(pFrame->m_hWnd), pFrame);
    EXPECT_EQ(pFrame->SendMessage(kAsk, 40, 2), 42);

    int nCommands = 0;
    pFrame->m_onCommand = [&](NotingFrame&) { nCommands++; };
    pFrame->SendMessage(WM_COMMAND, kCloseCommand);
    pFrame->m_bCommandEnabled = FALSE;
    pFrame->SendMessage(WM_COMMAND, kCloseCommand);
    EXPECT_EQ(nCommands, 1) << "a disabled command does not run";
    pFrame->m_bCommandEnabled = TRUE;
    pFrame->SendMessage(WM_COMMAND, kCloseCommand, reinterpret_cast<LPARAM>(pFrame->m_hWnd));
    pFrame->SendMessage(WM_COMMAND, kCloseCommand + 1);
    pFrame->SendMessage(WM_COMMAND, 0);
    EXPECT_EQ(nCommands, 2);
    pFrame->DestroyWindow();
    EXPECT_TRUE(log.ends_with("destroy deleted ")) << log;
}

TEST(CFrameWnd, ValidatesAPaintThatThrows)
{
    std::string log;
    auto* const pFrame = new NotingFrame(log);
    ASSERT_TRUE(pFrame->CreateFrame());
    pFrame->m_onPaint = [](NotingFrame&) { AfxThrowMemoryException(); };
    pFrame->Invalidate();
    pFrame->UpdateWindow();
    EXPECT_FALSE(pFrame->GetUpdateRect(nullptr));
    pFrame->DestroyWindow();
}

// What reaches the frames when the queue is empty, and what comes before dispatching.
class WatchingFrame : public CFrameWnd {
public:
    int m_nIdle = 0;
    BOOL m_bCloseWhenIdle = FALSE;
    BOOL PreTranslateMessage(MSG* pMsg) override { return pMsg->message == WM_APP + 1; }

protected:
    void OnIdleUpdate()
    {
        m_nIdle++;
        if (m_bCloseWhenIdle)
            DestroyWindow();
    }
    LRESULT OnNever(WPARAM, LPARAM)
    {
        ADD_FAILURE() << "the message was dealt with before";
        return 0;
    }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(WatchingFrame, CFrameWnd)
ON_MESSAGE_VOID(WM_IDLEUPDATECMDUI, &WatchingFrame::OnIdleUpdate)
ON_MESSAGE(WM_APP + 1, &WatchingFrame::OnNever)
END_MESSAGE_MAP()

// Counts how often the thread is idle, and posts what a test gives it at that time.
class CountingProgram : public CWinApp {
public:
    std::vector<UINT> m_messages;
    int m_nIdle = 0;

    BOOL OnIdle(LONG lCount) override
    {
        if (CWinApp::OnIdle(lCount))
            return TRUE;
        m_nIdle++;
        if (m_messages.empty()) {
            AfxPostQuitMessage(0);
            return FALSE;
        }
        m_pMainWnd->PostMessage(m_messages.back());
        m_messages.pop_back();
        return FALSE;
    }
};

TEST(CWinThread, UpdatesEveryShownFrameOnceForEachTurnOfWork)
{
    CountingProgram program;
    WatchingFrame* frames[3];
    for (WatchingFrame*& pFrame : frames) {
        pFrame = new WatchingFrame;
        ASSERT_TRUE(pFrame->Create(nullptr, "frame", WS_POPUP | WS_VISIBLE, CRect(0, 0, 40, 30)));
    }
    auto* const pChild = new WatchingFrame;
    ASSERT_TRUE(pChild->Create(nullptr, "child", WS_CHILD | WS_VISIBLE, CRect(0, 0, 9, 9), frames[1]));
    frames[2]->ShowWindow(SW_HIDE);
    MSG msg;
    while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE))
        DispatchMessageA(&msg);

    program.m_pMainWnd = frames[0];
    program.m_messages = { WM_APP + 1, WM_APP + 2 };
    program.Run();
    EXPECT_EQ(program.m_nIdle, 3) << "at first and after each of two messages";
    EXPECT_EQ(frames[0]->m_nIdle, 3);
    EXPECT_EQ(frames[1]->m_nIdle, 3);
    EXPECT_EQ(pChild->m_nIdle, 3);
    EXPECT_EQ(frames[2]->m_nIdle, 0) << "hidden";

    program.m_pMainWnd = nullptr;
    frames[0]->m_bCloseWhenIdle = TRUE;
    pChild->m_bCloseWhenIdle = TRUE;
    const HWND hChild = pChild->m_hWnd;
    program.OnIdle(0);
    EXPECT_FALSE(IsWindow(hChild));
    EXPECT_EQ(frames[1]->m_nIdle, 4) << "the frame before it is gone by now";
    frames[1]->DestroyWindow();
    frames[2]->DestroyWindow();
}

TEST(CWinThread, IsIdleAgainOnlyWhenSomethingHappened)
{
    struct {
        const char* why;
        UINT message;
        POINT pt;
        BOOL bIdle;
    } const cases[] = {
        { "a timer", WM_TIMER, { 0, 0 }, TRUE },
        { "a paint changes nothing", WM_PAINT, { 0, 0 }, FALSE },
        { "the pointer comes", WM_MOUSEMOVE, { 5, 5 }, TRUE },
        { "the pointer stands still", WM_MOUSEMOVE, { 5, 5 }, FALSE },
        { "the pointer moves", WM_MOUSEMOVE, { 5, 6 }, TRUE },
        { "the pointer reaches the frame", WM_NCMOUSEMOVE, { 5, 6 }, TRUE },
    };
    CWinThread thread;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        MSG msg = { nullptr, c.message, 0, 0, 0, c.pt };
        EXPECT_EQ(thread.IsIdleMessage(&msg), c.bIdle);
    }
}

TEST(AfxRegisterWndClass, GivesOneClassForEachSetOfProperties)
{
    const CString strPlain = AfxRegisterWndClass(CS_DBLCLKS);
    const CString strBrush = AfxRegisterWndClass(CS_DBLCLKS, nullptr, GetSysColorBrush(COLOR_BTNFACE));
    EXPECT_EQ(strPlain, AfxRegisterWndClass(CS_DBLCLKS));
    EXPECT_NE(strPlain, strBrush);
    EXPECT_NE(strPlain, CString(AfxRegisterWndClass(0)));
    WNDCLASSA window_class = {};
    ASSERT_TRUE(GetClassInfoA(AfxGetInstanceHandle(), strBrush, &window_class));
    EXPECT_EQ(window_class.style, CS_DBLCLKS);
    EXPECT_EQ(window_class.hbrBackground, GetSysColorBrush(COLOR_BTNFACE));
}

TEST(CMiniFrameWnd, HasNoSunkenEdge)
{
    auto* const pFrame = new CMiniFrameWnd;
    ASSERT_TRUE(pFrame->Create(nullptr, "mini", WS_POPUP | WS_CAPTION, CRect(10, 20, 110, 80)));
    EXPECT_EQ(pFrame->GetExStyle() & WS_EX_CLIENTEDGE, 0U);
    CRect rect;
    pFrame->GetWindowRect(&rect);
    EXPECT_EQ(rect, CRect(10, 20, 110, 80));
    CString strText;
    pFrame->GetWindowText(strText);
    EXPECT_STREQ(strText, "mini");
    EXPECT_TRUE(pFrame->ModifyStyleEx(0, WS_EX_TOOLWINDOW, SWP_FRAMECHANGED));
    EXPECT_FALSE(pFrame->ModifyStyleEx(0, WS_EX_TOOLWINDOW));
    pFrame->DestroyWindow();
}

} // namespace
