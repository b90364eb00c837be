// The installer's only window: 510 x 349 pixels, four pages (checking, ready, installing, finished), the install job
// and the settings after it. Its pictures and the places of its buttons come from the window skin "MeravSetupWnd".
//
// Threads: everything runs on the user-interface thread except RunInstallJob and what it calls, which run on one
// worker. What both touch (stage, progress, the buttons' flags) is atomic; the texts belong to the user-interface
// thread, but for the two folders, which are written before the worker starts. The window object belongs to the window
// (it deletes itself when the window is gone) and to the worker, whichever ends last.
#pragma once

#include "setup/CabinetExtractor.h"

#include "skinwnd/GuiMiniFrameWnd.h"

#include <afxwin.h>

#include <atomic>
#include <initializer_list>
#include <string>

inline constexpr UINT_PTR INSTALL_TIMER_ID = 1000; // ticks every 200 ms on the checking page

// What m_nError holds; shown to the user when the checking page ends.
inline constexpr int INSTALL_ERROR_FOLDERS = 1001; // the install root or the update folder cannot be made
inline constexpr int INSTALL_ERROR_PAYLOAD = 1002; // the payload cabinet cannot be written

enum InstallStage : int { kStageChecking = 0, kStageReady = 1, kStageInstalling = 2, kStageFinished = 3 };

class MeravSetupWnd : public PelkGUI::GuiMiniFrameWnd {
    DECLARE_DYNAMIC(MeravSetupWnd)

public:
    MeravSetupWnd();

    // Makes the install root and the update folder in the user's local data and writes the embedded payload cabinet to
    // "<update folder>\TeskSetup". Failure is kept in m_nError (INSTALL_ERROR_...).
    void WritePayloadCabinet();

    // Worker thread: extracts the payload, writes the settings, runs the configuration program and turns to the last
    // page. No failure stops it: what could not be done is left out.
    void RunInstallJob();

    // The client's connection and version defaults in the registry; values that cannot be written are left out.
    void WriteConnectionAndVersionDefaults();

    // Runs the client's configuration program in its folder and waits for it, at most 5 s.
    void RunSetupConfigure();

    // Has the client started with the system.
    void RegisterAutoStart();

    // Starts the client.
    void LaunchClient();

    // Makes the buttons, one for each anchor of the window skin whose name begins with "_", all of them hidden.
    void SkinChanging() override;
    // Draws the page of the stage and what moves on it.
    void Paint(CDC* pDC, CRect rcClient) override;

    // Takes the skin, centres the window on the primary screen and shows it. Always 1.
    virtual int CenterAndShow();

protected:
    BOOL PreCreateWindow(CREATESTRUCTA& cs) override;
    void PostNcDestroy() override;

    UINT OnNcHitTest(CPoint point);
    int OnCreate(CREATESTRUCTA* pCreate);
    void OnSize(UINT nType, int cx, int cy);
    void OnClose();
    void OnTimer(UINT_PTR nTimer);
    void OnInstall();
    void OnExit();
    void OnFinish();
    void OnToggleNoLaunch();
    void OnToggleNoAutoStart();
    LRESULT OnInstallProgress(WPARAM wParam, LPARAM lParam);
    DECLARE_MESSAGE_MAP()

    CabinetExtractor m_extractor;
    std::atomic<int> m_nStage{ kStageChecking };
    // Checking: elapsed ticks, 1 to 13; installing: length of the bar in pixels, 0 to 444.
    std::atomic<float> m_fProgress{ 0.0F };
    BOOL m_bNoLaunch = FALSE;     // the box "start the client now" is switched off
    BOOL m_bNoAutoStart = FALSE;  // the box "start the client with the system" is switched off
    int m_nError = 0;             // 0 or INSTALL_ERROR_...
    BOOL m_bEnvOk = TRUE;         // FALSE once the checking page ended with an error
    std::string m_strInstallRoot; // local data folder + "\Varnhal"
    std::string m_strUpdateDir;   // install root + "\Update"
    CString m_strCurrentFile;     // file being extracted, without its folders

private:
    static UINT InstallThreadProc(LPVOID pWindow);

    void ShowButtons(std::initializer_list<UINT> commands, BOOL bShow);
    void PaintBusySquares(CDC& dc) const;
    void PaintError(CDC& dc) const;
    void PaintProgress(CDC& dc) const;
    void ReleaseOwner();

    HWND m_hJobWnd = nullptr;        // the window as the worker knows it; the framework's own handle changes on close
    std::atomic<int> m_nOwners{ 1 }; // the window, and the worker while it runs
};
