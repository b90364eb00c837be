// CWinApp: the program. One object, made before main; its InitInstance makes the main window, and the program ends when
// that window is gone or the quit message is posted.
#pragma once

#include "thread.h"

#include <windows.h>

class CWinApp : public CWinThread {
    DECLARE_DYNAMIC(CWinApp)

    explicit CWinApp(LPCSTR lpszAppName = nullptr);
    ~CWinApp() override;

    virtual BOOL InitApplication() { return TRUE; } // before InitInstance; FALSE: the program ends
    BOOL InitInstance() override { return TRUE; }

    // Controls are drawn with depth as they are, so there is nothing to turn on.
    BOOL Enable3dControls() { return TRUE; }
    HCURSOR LoadStandardCursor(LPCSTR lpszCursorName) const { return ::LoadCursorA(nullptr, lpszCursorName); }

    LPCSTR m_pszAppName;             // as given to the constructor
    HINSTANCE m_hInstance = nullptr; // set when the program starts, like the two below
    LPCSTR m_lpCmdLine = nullptr;
    int m_nCmdShow = 0;

protected:
    DECLARE_MESSAGE_MAP()
};

CWinApp* AfxGetApp();
HINSTANCE AfxGetInstanceHandle();
HINSTANCE AfxGetResourceHandle(); // where resources are looked for: the program
void AfxPostQuitMessage(int nExitCode);

// The name of a window class with these properties, registered if it was not; null: the system refused. Valid until the
// thread's next call.
LPCSTR AfxRegisterWndClass(UINT nClassStyle, HCURSOR hCursor = nullptr, HBRUSH hbrBackground = nullptr,
                           HICON hIcon = nullptr);

// Prepares the thread for objects of the component model.
BOOL AfxOleInit();
// Prepares windows for controls of other makers. This system has none, so that it holds none either is all there is to
// do.
void AfxEnableControlContainer();

// Runs the program: InitApplication, InitInstance, the message loop, ExitInstance. The program's exit code. Called by
// the program's entry.
int AfxWinMain(HINSTANCE hInstance, HINSTANCE hPrevInstance, LPSTR lpCmdLine, int nCmdShow);
