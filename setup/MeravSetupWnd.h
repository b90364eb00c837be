// The installer's only window: 510 x 349 pixels, four pages (checking, ready, installing, finished), the install job
// and the settings after it.
//
// Threads: everything runs on the user-interface thread except RunInstallJob and what it calls, which run on one
// worker. What both touch (stage, progress, which buttons are shown) is atomic; the texts belong to the user-interface
// thread, but for the two folders, which are written before the worker starts. The window object belongs to the window
// (it deletes itself when the window is gone) and to the worker, whichever ends last.
#pragma once

#include "setup/CabinetExtractor.h"

#include <afxwin.h>

#include <array>
#include <atomic>
#include <string>

inline constexpr UINT_PTR INSTALL_TIMER_ID = 1000; // ticks every 200 ms on the checking page

// What m_nError holds; shown to the user when the checking page ends.
inline constexpr int INSTALL_ERROR_FOLDERS = 1001; // the install root or the update folder cannot be made
inline constexpr int INSTALL_ERROR_PAYLOAD = 1002; // the payload cabinet cannot be written

enum InstallStage : int { kStageChecking = 0, kStageReady = 1, kStageInstalling = 2, kStageFinished = 3 };

class MeravSetupWnd : public CMiniFrameWnd {
    DECLARE_DYNAMIC(MeravSetupWnd)

public:
    MeravSetupWnd();

    // Centres the window on the primary screen and shows it. Always 1.
    virtual int CenterAndShow();

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

    // Buttons are named by their command, 10001 to 10006; an unknown one is ignored. Safe from any thread.
    void ShowButton(UINT nCommand, BOOL bShow);
    BOOL IsButtonShown(UINT nCommand) const;

protected:
    BOOL PreCreateWindow(CREATESTRUCTA& cs) override;
    void PostNcDestroy() override;

    LRESULT OnNcHitTest(CPoint point);
    int OnCreate(CREATESTRUCTA* pCreate);
    void OnClose();
    void OnTimer(UINT_PTR nTimer);
    void OnInstall();
    void OnExit();
    void OnFinish();
    void OnToggleNoLaunch();
    void OnToggleNoAutoStart();
    LRESULT OnInstallProgress(WPARAM wParam, LPARAM lParam);
    void OnNcCalcSize(BOOL bCalcValidRects, NCCALCSIZE_PARAMS* pParams);
    void OnNcPaint();
    BOOL OnNcActivate(BOOL bActive);
    BOOL OnEraseBkgnd(CDC* pDC);
    void OnPaint();
    void OnMouseMove(UINT nFlags, CPoint point);
    void OnLButtonDown(UINT nFlags, CPoint point);
    void OnLButtonUp(UINT nFlags, CPoint point);
    DECLARE_MESSAGE_MAP()

    CabinetExtractor m_extractor;
    std::atomic<int> m_nStage{ kStageChecking };
    std::atomic<float> m_fProgress{
        0.0F
    };                            // checking: elapsed ticks, 1 to 13; installing: length of the bar in pixels, 0 to 444
    BOOL m_bNoLaunch = FALSE;     // the box "start the client now" is switched off
    BOOL m_bNoAutoStart = FALSE;  // the box "start the client with the system" is switched off
    int m_nError = 0;             // 0 or INSTALL_ERROR_...
    BOOL m_bEnvOk = TRUE;         // FALSE once the checking page ended with an error
    std::string m_strInstallRoot; // local data folder + "\Varnhal"
    std::string m_strUpdateDir;   // install root + "\Update"
    CString m_strCurrentFile;     // file being extracted, without its folders

private:
    static constexpr UINT kFirstButton = 10001;
    static constexpr UINT kButtonCount = 6;

    static UINT InstallThreadProc(LPVOID pWindow);

    UINT HitButton(CPoint point) const;
    void Paint(CDC& dc);
    void PaintButtons(CDC& dc);
    void PaintBusySquares(CDC& dc);
    void PaintProgressBar(CDC& dc);
    void ReleaseOwner();

    CBitmap m_bmpSkin;
    CDC m_dcSkin;
    HWND m_hJobWnd = nullptr;        // the window as the worker knows it; the framework's own handle changes on close
    std::atomic<int> m_nOwners{ 1 }; // the window, and the worker while it runs
    std::array<std::atomic<bool>, kButtonCount> m_abShown{};
    UINT m_nHovered = 0; // command of the button under the pointer, 0: none
    UINT m_nPressed = 0; // command of the button that the left mouse button went down on, 0: none
};
