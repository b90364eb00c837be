// CWinThread: a thread with a message loop, or a worker that runs one function.
#pragma once

#include "cmd_target.h"

#include <windows.h>

class CWnd;

using AFX_THREADPROC = UINT (*)(LPVOID pParam);

class CWinThread : public CCmdTarget {
    DECLARE_DYNCREATE(CWinThread)

    CWinThread() = default;
    ~CWinThread() override;

    // Starts the thread. FALSE: it could not be. dwCreateFlags CREATE_SUSPENDED: ResumeThread lets it begin.
    BOOL CreateThread(DWORD dwCreateFlags = 0, UINT nStackSize = 0, LPSECURITY_ATTRIBUTES lpSecurityAttrs = nullptr);
    DWORD ResumeThread() { return ::ResumeThread(m_hThread); }

    // FALSE: the thread ends, with ExitInstance's answer.
    virtual BOOL InitInstance();
    // The message loop, to the quit message; ExitInstance's answer.
    virtual int Run();
    // The last thing a thread with a loop does: its exit code.
    virtual int ExitInstance();

    // Takes one message and dispatches it. FALSE: it was the quit message.
    virtual BOOL PumpMessage();
    // TRUE: the message was dealt with and goes no further. Asks the window and those it lies in, then the main window.
    virtual BOOL PreTranslateMessage(MSG* pMsg);
    // Called with 0, 1, 2, ... while the queue is empty, until it answers FALSE. 0 shows the state of commands.
    virtual BOOL OnIdle(LONG lCount);
    // Whether OnIdle is called again after the message.
    virtual BOOL IsIdleMessage(MSG* pMsg);
    virtual CWnd* GetMainWnd() { return m_pMainWnd; }
    virtual void Delete(); // at the thread's end; deletes an object that is to

    CWnd* m_pMainWnd = nullptr; // borrowed; null once its window is gone
    BOOL m_bAutoDelete = TRUE;  // the object goes with the thread
    HANDLE m_hThread = nullptr; // owned; null for the thread that the system started
    DWORD m_nThreadID = 0;
    MSG m_msgCur = {};
    LPVOID m_pThreadParams = nullptr;
    AFX_THREADPROC m_pfnThreadProc = nullptr; // a worker's function; null: a loop

protected:
    DECLARE_MESSAGE_MAP()

private:
    static DWORD WINAPI entry(LPVOID thread);

    UINT last_mouse_message_ = 0; // a pointer that stands still is no reason to be idle again
    POINT last_mouse_point_ = {};
};

// The calling thread's object; null for a thread that the framework does not know.
CWinThread* AfxGetThread();
CWnd* AfxGetMainWnd(); // of the calling thread

// Starts a worker. Null: the system refused. The object deletes itself when the function returns, so only a thread
// begun with CREATE_SUSPENDED has an object that is sure to be there. Priorities other than the normal one (0) are not
// told to the system.
CWinThread* AfxBeginThread(AFX_THREADPROC pfnThreadProc, LPVOID pParam, int nPriority = 0, UINT nStackSize = 0,
                           DWORD dwCreateFlags = 0, LPSECURITY_ATTRIBUTES lpSecurityAttrs = nullptr);
