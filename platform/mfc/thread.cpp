#include "afxwin/thread.h"

#include "afxwin/app.h"
#include "afxwin/frame.h"
#include "thread_state.h"
#include "wnd_proc.h"

#include <algorithm>
#include <memory>
#include <vector>

IMPLEMENT_DYNCREATE(CWinThread, CCmdTarget)

BEGIN_MESSAGE_MAP(CWinThread, CCmdTarget)
END_MESSAGE_MAP()

CWinThread* AfxGetThread()
{
    return mfc::thread_state().thread;
}

CWnd* AfxGetMainWnd()
{
    CWinThread* const thread = AfxGetThread();
    return thread ? thread->GetMainWnd() : nullptr;
}

void mfc::forget_main_window(const CWnd* window)
{
    CWinThread* const thread = AfxGetThread();
    if (!thread || thread->m_pMainWnd != window)
        return;
    thread->m_pMainWnd = nullptr;
    AfxPostQuitMessage(0);
}

CWinThread* AfxBeginThread(AFX_THREADPROC pfnThreadProc, LPVOID pParam, int /*nPriority*/, UINT nStackSize,
                           DWORD dwCreateFlags, LPSECURITY_ATTRIBUTES lpSecurityAttrs)
{
    auto thread = std::make_unique<CWinThread>();
    thread->m_pfnThreadProc = pfnThreadProc;
    thread->m_pThreadParams = pParam;
    if (!thread->CreateThread(dwCreateFlags, nStackSize, lpSecurityAttrs))
        return nullptr;
    return thread.release(); // it is the thread's now
}

CWinThread::~CWinThread()
{
    if (m_hThread)
        ::CloseHandle(m_hThread);
    if (mfc::ThreadState& state = mfc::thread_state(); state.thread == this)
        state.thread = nullptr;
}

BOOL CWinThread::CreateThread(DWORD dwCreateFlags, UINT nStackSize, LPSECURITY_ATTRIBUTES lpSecurityAttrs)
{
    // Begun suspended, so that the fields are written before the thread can read them or delete the object.
    m_hThread = ::CreateThread(lpSecurityAttrs, nStackSize, &CWinThread::entry, this, CREATE_SUSPENDED, &m_nThreadID);
    if (!m_hThread)
        return FALSE;
    if (!(dwCreateFlags & CREATE_SUSPENDED))
        ResumeThread();
    return TRUE;
}

DWORD WINAPI CWinThread::entry(LPVOID thread)
{
    auto* const self = static_cast<CWinThread*>(thread);
    mfc::thread_state().thread = self;
    UINT code = 0;
    if (self->m_pfnThreadProc)
        code = self->m_pfnThreadProc(self->m_pThreadParams);
    else
        code = static_cast<UINT>(self->InitInstance() ? self->Run() : self->ExitInstance());
    self->Delete();
    return code;
}

void CWinThread::Delete()
{
    if (m_bAutoDelete)
        delete this;
}

BOOL CWinThread::InitInstance()
{
    return FALSE;
}

int CWinThread::ExitInstance()
{
    return static_cast<int>(m_msgCur.wParam); // the quit message's exit code
}

int CWinThread::Run()
{
    LONG idle_count = 0;
    bool may_idle = true;
    for (;;) {
        while (may_idle && !::PeekMessageA(&m_msgCur, nullptr, 0, 0, PM_NOREMOVE))
            may_idle = OnIdle(idle_count++);
        do {
            if (!PumpMessage())
                return ExitInstance();
            if (IsIdleMessage(&m_msgCur)) {
                may_idle = true;
                idle_count = 0;
            }
        } while (::PeekMessageA(&m_msgCur, nullptr, 0, 0, PM_NOREMOVE));
    }
}

BOOL CWinThread::PumpMessage()
{
    if (!::GetMessageA(&m_msgCur, nullptr, 0, 0))
        return FALSE;
    if (!PreTranslateMessage(&m_msgCur)) {
        ::TranslateMessage(&m_msgCur);
        ::DispatchMessageA(&m_msgCur);
    }
    return TRUE;
}

BOOL CWinThread::PreTranslateMessage(MSG* pMsg)
{
    const HWND main = m_pMainWnd ? m_pMainWnd->m_hWnd : nullptr;
    for (HWND window = pMsg->hwnd; window; window = ::GetParent(window)) {
        CWnd* const object = CWnd::FromHandlePermanent(window);
        if (object && object->PreTranslateMessage(pMsg))
            return TRUE;
        if (window == main)
            return FALSE;
    }
    return m_pMainWnd && m_pMainWnd->PreTranslateMessage(pMsg);
}

namespace {

// The main window and, behind it, the other frames that the thread shows.
std::vector<HWND> frames_shown(const CWnd* main)
{
    std::vector<HWND> frames;
    if (main && main->m_hWnd && main->IsWindowVisible())
        frames.push_back(main->m_hWnd);
    const auto add_frame = [](HWND window, LPARAM list) -> BOOL {
        const CWnd* const object = CWnd::FromHandlePermanent(window);
        if (object && object->IsKindOf(RUNTIME_CLASS(CFrameWnd)) && object->IsWindowVisible())
            reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
        return TRUE;
    };
    const bool has_main = !frames.empty();
    ::EnumThreadWindows(::GetCurrentThreadId(), add_frame, reinterpret_cast<LPARAM>(&frames));
    if (has_main)
        frames.erase(std::remove(frames.begin() + 1, frames.end(), frames.front()), frames.end());
    return frames;
}

} // namespace

BOOL CWinThread::OnIdle(LONG lCount)
{
    if (lCount <= 0) {
        for (const HWND window : frames_shown(m_pMainWnd)) {
            ::SendMessageA(window, WM_IDLEUPDATECMDUI, TRUE, 0);
            if (CWnd* const object = CWnd::FromHandlePermanent(window)) // the message may have closed it
                object->SendMessageToDescendants(WM_IDLEUPDATECMDUI, TRUE, 0, TRUE, TRUE);
        }
        return TRUE;
    }
    CWnd::DeleteTempMap();
    CMenu::DeleteTempMap();
    CDC::DeleteTempMap();
    CGdiObject::DeleteTempMap();
    return FALSE;
}

BOOL CWinThread::IsIdleMessage(MSG* pMsg)
{
    if (pMsg->message != WM_MOUSEMOVE && pMsg->message != WM_NCMOUSEMOVE)
        return pMsg->message != WM_PAINT;
    if (pMsg->message == last_mouse_message_ && CPoint(pMsg->pt) == last_mouse_point_)
        return FALSE;
    last_mouse_message_ = pMsg->message;
    last_mouse_point_ = pMsg->pt;
    return TRUE;
}
