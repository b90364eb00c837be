#include "tests/platform/mfc/NotingFrame.h"
#include "tests/support/WaitUntil.h"

#include <atomic>

namespace {

using namespace test;

struct Job {
    HWND hWnd = nullptr;
    int nAnswers = 0; // added up
};

UINT SendProgress(LPVOID pParam)
{
    auto* const pJob = static_cast<Job*>(pParam);
    for (int i = 0; i < 100; i++)
        pJob->nAnswers += static_cast<int>(SendMessageA(pJob->hWnd, kAsk, static_cast<WPARAM>(i), 1));
    PostMessageA(pJob->hWnd, WM_CLOSE, 0, 0);
    return 0;
}

UINT SendForEver(LPVOID pParam)
{
    const HWND hWnd = static_cast<Job*>(pParam)->hWnd;
    PostMessageA(hWnd, WM_CLOSE, 0, 0);
    for (;;)
        SendMessageA(hWnd, kAsk, 0, 0);
}

// A program that ends with its window, which the work closes.
class WorkingProgram : public Program {
public:
    explicit WorkingProgram(AFX_THREADPROC pfnWork)
        : Program([=, this](NotingFrame& frame) {
              frame.m_deeds[kAsk] = [](NotingFrame& self) { self.Invalidate(FALSE); };
              m_job.hWnd = frame.m_hWnd;
              return AfxBeginThread(pfnWork, &m_job) != nullptr;
          })
    {}
    Job m_job;
};

TEST(AfxBeginThread, RunsAWorkerThatTalksToTheWindow)
{
    WorkingProgram program(SendProgress);
    EXPECT_EQ(program.RunAsMain(), 0);
    EXPECT_EQ(program.m_job.nAnswers, 99 * 100 / 2 + 100);
}

TEST(AfxBeginThread, GivesAnObjectThatIsThereUntilItIsResumed)
{
    static std::atomic<CWinThread*> pSeen = nullptr;
    CWinThread* const pThread = AfxBeginThread(
        [](LPVOID) -> UINT {
            pSeen = AfxGetThread();
            return 5;
        },
        nullptr, 0, 0, CREATE_SUSPENDED);
    ASSERT_NE(pThread, nullptr);
    EXPECT_EQ(pSeen, nullptr);
    pThread->m_bAutoDelete = FALSE;
    pThread->ResumeThread();
    EXPECT_EQ(WaitForSingleObject(pThread->m_hThread, 20000), WAIT_OBJECT_0);
    EXPECT_EQ(pSeen, pThread);
    DWORD nCode = 0;
    EXPECT_TRUE(GetExitCodeThread(pThread->m_hThread, &nCode));
    EXPECT_EQ(nCode, 5U);
    delete pThread;
}

class LoopThread : public CWinThread {
public:
    static std::atomic<int> nEnded;
    BOOL InitInstance() override
    {
        AfxPostQuitMessage(9);
        return TRUE;
    }
    int ExitInstance() override
    {
        nEnded = CWinThread::ExitInstance();
        return nEnded;
    }
};

std::atomic<int> LoopThread::nEnded = 0;

TEST(CWinThread, RunsALoopOfItsOwn)
{
    auto* const pThread = new LoopThread;
    ASSERT_TRUE(pThread->CreateThread());
    EXPECT_TRUE(test::wait_until([] { return LoopThread::nEnded == 9; }));
}

TEST(ExitProcess, EndsAProgramWhoseWorkerStillRuns)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            WorkingProgram program(SendForEver);
            ExitProcess(static_cast<UINT>(program.RunAsMain()));
        },
        testing::ExitedWithCode(0), "^$");
}

} // namespace
