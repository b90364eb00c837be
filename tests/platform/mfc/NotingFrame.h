// A program and its main window, which note what happens to them and do what a test asks for.
#pragma once

#include <afxwin.h>

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>
#include <utility>

namespace test {

constexpr UINT kAsk = WM_APP + 1;
constexpr UINT kSwallowed = WM_APP + 2;
constexpr UINT kCommand = 100; // is handled
constexpr UINT kUnhandled = 101;

// A frame that notes what happens to it and does at a message what a test asks for, its own end perhaps.
class NotingFrame : public CFrameWnd {
public:
    using Deed = std::function<void(NotingFrame&)>;
    using Update = std::function<void(CCmdUI&)>;

    explicit NotingFrame(std::string& log) : m_log(log) {}
    ~NotingFrame() override { m_log += "deleted "; }

    BOOL CreateFrame() { return Create(nullptr, "frame", WS_POPUP | WS_VISIBLE, CRect(0, 0, 40, 30)); }
    BOOL PreTranslateMessage(MSG* pMsg) override { return pMsg->message == kSwallowed; }

    std::map<UINT, Deed> m_deeds;     // by message
    std::map<UINT, Update> m_updates; // of the commands' states, by command
    int m_nCreated = 0;               // OnCreate's answer
    int m_nIdle = 0;

protected:
    int OnCreate(LPCREATESTRUCTA pCreate)
    {
        if (CFrameWnd::OnCreate(pCreate) == -1)
            return -1;
        Do(WM_CREATE, "create ");
        return m_nCreated;
    }
    void OnPaint()
    {
        if (!Do(WM_PAINT, ""))
            const CPaintDC dc(this);
    }
    void OnTimer(UINT_PTR) { Do(WM_TIMER, "timer "); }
    void OnChosen() { Do(WM_COMMAND, "command "); }
    void OnUpdate(CCmdUI* pCmdUI)
    {
        const auto found = m_updates.find(pCmdUI->m_nID);
        if (found == m_updates.end() || !found->second)
            return pCmdUI->ContinueRouting();
        const Update update = found->second;
        update(*pCmdUI);
    }
    LRESULT OnAsk(WPARAM wParam, LPARAM lParam)
    {
        Do(kAsk, "asked ");
        return static_cast<LRESULT>(wParam) + lParam;
    }
    LRESULT OnSwallowed(WPARAM, LPARAM)
    {
        ADD_FAILURE() << "the message was dealt with before";
        return 0;
    }
    void OnIdleUpdate()
    {
        m_nIdle++;
        Do(WM_IDLEUPDATECMDUI, "");
    }
    void OnDestroy()
    {
        m_log += "destroy ";
        CFrameWnd::OnDestroy();
    }
    void OnClose()
    {
        m_log += "close ";
        CFrameWnd::OnClose();
        AfxPostQuitMessage(0);
    }
    DECLARE_MESSAGE_MAP()

private:
    // False: nothing is to be done. Afterwards the object may be gone.
    bool Do(UINT message, const char* pszNoted)
    {
        m_log += pszNoted;
        const auto found = m_deeds.find(message);
        if (found == m_deeds.end())
            return false;
        const Deed deed = found->second;
        deed(*this);
        return true;
    }

    std::string& m_log;
};

// A program with a main window, which `prepare` makes ready and says whether to run.
class Program : public CWinApp {
public:
    explicit Program(std::function<BOOL(NotingFrame&)> prepare) : m_prepare(std::move(prepare)) {}
    ~Program() override
    {
        MSG msg;
        PeekMessageA(&msg, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE); // leave the thread's queue clean
    }
    int RunAsMain() { return AfxWinMain(AfxGetInstanceHandle(), nullptr, nullptr, SW_SHOWNORMAL); }

    std::string m_strLog;

protected:
    BOOL InitInstance() override
    {
        auto* const pFrame = new NotingFrame(m_strLog);
        EXPECT_TRUE(pFrame->CreateFrame());
        m_pMainWnd = pFrame;
        return m_prepare(*pFrame);
    }
    int ExitInstance() override
    {
        m_strLog += "exit ";
        return CWinApp::ExitInstance();
    }

private:
    const std::function<BOOL(NotingFrame&)> m_prepare;
};

} // namespace test
