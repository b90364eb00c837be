#include "tests/platform/mfc/NotingFrame.h"

#include <vector>

namespace {

using namespace test;

void Close(NotingFrame& frame)
{
    frame.SendMessage(WM_CLOSE);
}

struct EndCase {
    const char* why;
    void (*prepare)(NotingFrame& frame);
};

// Every one of them destroys window and object while a handler of theirs runs.
const EndCase kEnds[] = {
    { "posted WM_CLOSE", [](NotingFrame& f) { f.PostMessage(WM_CLOSE); } },
    { "closed while painting", [](NotingFrame& f) { f.m_deeds[WM_PAINT] = Close, f.Invalidate(); } },
    { "closed by a command",
      [](NotingFrame& f) { f.m_deeds[WM_COMMAND] = Close, f.PostMessage(WM_COMMAND, kCommand); } },
    { "closed by a message sent from a handler",
      [](NotingFrame& f) {
          f.m_deeds[kAsk] = Close;
          f.m_deeds[WM_TIMER] = [](NotingFrame& self) { self.SendMessage(kAsk); };
          f.SetTimer(1, 10, nullptr);
      } },
    { "destroyed without WM_CLOSE",
      [](NotingFrame& f) { f.m_deeds[kAsk] = [](NotingFrame& s) { s.DestroyWindow(); }, f.PostMessage(kAsk); } },
    { "deleted like any object",
      [](NotingFrame& f) { f.m_deeds[kAsk] = [](NotingFrame& s) { delete &s; }, f.PostMessage(kAsk); } },
};

TEST(CFrameWnd, MayEndInsideItsHandlers)
{
    for (const EndCase& c : kEnds) {
        SCOPED_TRACE(c.why);
        Program program([&](NotingFrame& frame) { return c.prepare(frame), TRUE; });
        EXPECT_EQ(program.RunAsMain(), 0);
        EXPECT_EQ(program.m_pMainWnd, nullptr);
        EXPECT_TRUE(program.m_strLog.ends_with("deleted exit ")) << program.m_strLog;
        EXPECT_EQ(program.m_strLog.find("deleted"), program.m_strLog.rfind("deleted"));
    }
}

TEST(CWinApp, GivesTheExitCodeOfTheQuitMessage)
{
    Program program([](NotingFrame& frame) {
        frame.m_deeds[kAsk] = [](NotingFrame&) { AfxPostQuitMessage(7); };
        return frame.PostMessage(kAsk);
    });
    EXPECT_EQ(program.RunAsMain(), 7);
    ASSERT_NE(program.m_pMainWnd, nullptr) << "the window is still there";
    program.m_pMainWnd->DestroyWindow();
    MSG msg;
    EXPECT_TRUE(PeekMessageA(&msg, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE)) << "the main window's end asks again";
}

TEST(CWinApp, EndsWhenItsStartFails)
{
    Program program([](NotingFrame&) { return FALSE; });
    program.RunAsMain();
    EXPECT_TRUE(program.m_strLog.ends_with("destroy deleted exit ")) << program.m_strLog;
}

TEST(CFrameWnd, StaysTheCallersWhenItCannotBeMade)
{
    std::string log;
    NotingFrame frame(log);
    EXPECT_FALSE(frame.Create("no such class", "frame", WS_POPUP, CRect(0, 0, 40, 30)));
    frame.m_nCreated = -1;
    EXPECT_FALSE(frame.CreateFrame());
    EXPECT_EQ(log, "create destroy ");
    frame.m_deeds[WM_CREATE] = [](NotingFrame&) { AfxThrowMemoryException(); };
    EXPECT_FALSE(frame.CreateFrame()) << "an exception in OnCreate is a refusal";
    EXPECT_EQ(log, "create destroy create destroy ");
    EXPECT_EQ(frame.m_hWnd, nullptr);
}

TEST(CFrameWnd, AnswersMessagesAndCommands)
{
    std::string log;
    auto* const pFrame = new NotingFrame(log);
    ASSERT_TRUE(pFrame->CreateFrame());
    EXPECT_EQ(CWnd::FromHandlePermanent(pFrame->m_hWnd), pFrame);
    EXPECT_EQ(pFrame->SendMessage(kAsk, 40, 2), 42);

    log.clear();
    pFrame->SendMessage(WM_COMMAND, kCommand);
    pFrame->m_updates[kCommand] = [](CCmdUI& state) { state.Enable(FALSE); };
    pFrame->SendMessage(WM_COMMAND, kCommand);
    EXPECT_EQ(log, "command ") << "a disabled command does not run";
    pFrame->SendMessage(WM_COMMAND, kCommand, reinterpret_cast<LPARAM>(pFrame->m_hWnd));
    pFrame->SendMessage(WM_COMMAND, kUnhandled);
    pFrame->SendMessage(WM_COMMAND, 0);
    EXPECT_EQ(log, "command command ") << "a control's notification is no command that could be disabled";

    pFrame->m_deeds[WM_PAINT] = [](NotingFrame&) { AfxThrowMemoryException(); };
    pFrame->Invalidate();
    pFrame->UpdateWindow();
    EXPECT_FALSE(pFrame->GetUpdateRect(nullptr)) << "a paint that throws is not tried for ever";
    pFrame->DestroyWindow();
    EXPECT_TRUE(log.ends_with("destroy deleted ")) << log;
}

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
    std::string log;
    NotingFrame* frames[4];
    for (NotingFrame*& pFrame : frames)
        pFrame = new NotingFrame(log);
    NotingFrame* const pChild = frames[3];
    for (int i = 0; i < 3; i++)
        ASSERT_TRUE(frames[i]->CreateFrame());
    ASSERT_TRUE(pChild->Create(nullptr, "child", WS_CHILD | WS_VISIBLE, CRect(0, 0, 9, 9), frames[1]));
    frames[2]->ShowWindow(SW_HIDE);
    MSG msg;
    while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE))
        DispatchMessageA(&msg);

    program.m_pMainWnd = frames[0];
    program.m_messages = { kSwallowed, kSwallowed + 1 };
    program.Run();
    EXPECT_EQ(program.m_nIdle, 3) << "at first and after each of two messages";
    for (const int shown : { 0, 1, 3 })
        EXPECT_EQ(frames[shown]->m_nIdle, 3);
    EXPECT_EQ(frames[2]->m_nIdle, 0) << "hidden";

    program.m_pMainWnd = nullptr;
    for (NotingFrame* const pEnding : { frames[0], pChild })
        pEnding->m_deeds[WM_IDLEUPDATECMDUI] = [](NotingFrame& frame) { frame.DestroyWindow(); };
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
