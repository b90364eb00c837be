#include "tests/support/WaitUntil.h"

#include <afxwin.h>

#include <gtest/gtest.h>

#include <atomic>
#include <string>

namespace {

constexpr UINT kProgress = WM_APP + 3;

struct Job {
    HWND hWnd = nullptr;
    std::atomic<int> nSent = 0;
};

UINT SendProgress(LPVOID pParam)
{
    auto* const pJob = static_cast<Job*>(pParam);
    for (int i = 0; i < 100; i++)
        pJob->nSent += static_cast<int>(SendMessageA(pJob->hWnd, kProgress, static_cast<WPARAM>(i), 0));
    PostMessageA(pJob->hWnd, WM_CLOSE, 0, 0);
    return 0;
}

UINT SendForEver(LPVOID pParam)
{
    PostMessageA(static_cast<Job*>(pParam)->hWnd, WM_CLOSE, 0, 0);
    for (;;)
        SendMessageA(static_cast<Job*>(pParam)->hWnd, kProgress, 0, 0);
}

class ProgressFrame : public CFrameWnd {
public:
    explicit ProgressFrame(int& nSum) : m_nSum(nSum) {}

protected:
    LRESULT OnProgress(WPARAM wParam, LPARAM)
    {
        m_nSum += static_cast<int>(wParam);
        Invalidate(FALSE);
        return 1;
    }
    DECLARE_MESSAGE_MAP()

private:
    int& m_nSum;
};

BEGIN_MESSAGE_MAP(ProgressFrame, CFrameWnd)
ON_MESSAGE(kProgress, &ProgressFrame::OnProgress)
END_MESSAGE_MAP()

// Ends with its window, which the work closes.
class WorkingProgram : public CWinApp {
public:
    explicit WorkingProgram(AFX_THREADPROC pfnWork) : m_pfnWork(pfnWork) {}
    int RunAsMain() { return AfxWinMain(AfxGetInstanceHandle(), nullptr, nullptr, SW_SHOWNORMAL); }

    int m_nSum = 0;
    Job m_job;

protected:
    BOOL InitInstance() override
    {
        m_pMainWnd = new ProgressFrame(m_nSum);
        EXPECT_TRUE(m_pMainWnd->CreateEx(0, nullptr, "frame", WS_POPUP | WS_VISIBLE, CRect(0, 0, 40, 30), nullptr, 0));
        m_job.hWnd = m_pMainWnd->m_hWnd;
        return AfxBeginThread(m_pfnWork, &m_job) != nullptr;
    }

private:
    const AFX_THREADPROC m_pfnWork;
};

TEST(AfxBeginThread, RunsAWorkerThatTalksToTheWindow)
{
    WorkingProgram program(SendProgress);
    EXPECT_EQ(program.RunAsMain(), 0);
    EXPECT_EQ(program.m_job.nSent, 100);
    EXPECT_EQ(program.m_nSum, 99 * 100 / 2);
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
