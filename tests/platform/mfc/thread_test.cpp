#include "tests/support/WaitUntil.h"

#include <afxwin.h>

#include <gtest/gtest.h>

#include <atomic>
#include <string>

namespace {

constexpr UINT kProgress = WM_APP + 3;

struct Job {
    HWND hWnd;
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
    for (;;)
        SendMessageA(static_cast<HWND>(pParam), kProgress, 0, 0);
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
    LRESULT OnEnough(WPARAM, LPARAM)
    {
        CFrameWnd::OnClose();
        AfxPostQuitMessage(0);
        return 0;
    }
    DECLARE_MESSAGE_MAP()

private:
    int& m_nSum;
};

BEGIN_MESSAGE_MAP(ProgressFrame, CFrameWnd)
ON_MESSAGE(kProgress, &ProgressFrame::OnProgress)
ON_MESSAGE(kProgress + 1, &ProgressFrame::OnEnough)
END_MESSAGE_MAP()

class WorkingProgram : public CWinApp {
public:
    AFX_THREADPROC m_pfnWork = SendProgress;
    int m_nSum = 0;
    Job m_job;

    BOOL InitInstance() override
    {
        auto* const pFrame = new ProgressFrame(m_nSum);
        if (!pFrame->Create(nullptr, "frame", WS_POPUP | WS_VISIBLE, CRect(0, 0, 40, 30)))
            return FALSE;
        m_pMainWnd = pFrame;
        m_job.hWnd = pFrame->m_hWnd;
        void* const pParam = m_pfnWork == SendProgress ? static_cast<void*>(&m_job) : m_job.hWnd;
        if (m_pfnWork != SendProgress)
            pFrame->PostMessage(kProgress + 1);
        return AfxBeginThread(m_pfnWork, pParam) != nullptr;
    }
};

TEST(AfxBeginThread, RunsAWorkerThatTalksToTheWindow)
{
    WorkingProgram program;
    EXPECT_EQ(AfxWinMain(AfxGetInstanceHandle(), nullptr, nullptr, SW_SHOWNORMAL), 0);
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
            WorkingProgram program;
            program.m_pfnWork = SendForEver;
            ExitProcess(static_cast<UINT>(AfxWinMain(AfxGetInstanceHandle(), nullptr, nullptr, SW_SHOWNORMAL)));
        },
        testing::ExitedWithCode(0), "^$");
}

} // namespace
