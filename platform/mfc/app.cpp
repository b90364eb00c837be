#include "afxwin/app.h"

#include "afxwin/wnd.h"
#include "thread_state.h"
#include "wnd_proc.h"

#include <objbase.h>

#include <cinttypes>
#include <cstdio>

IMPLEMENT_DYNAMIC(CWinApp, CWinThread)

BEGIN_MESSAGE_MAP(CWinApp, CWinThread)
END_MESSAGE_MAP()

namespace {

constinit CWinApp* application = nullptr; // borrowed: the program's one object

} // namespace

CWinApp* AfxGetApp()
{
    return application;
}

CWinApp::CWinApp(LPCSTR lpszAppName) : m_pszAppName(lpszAppName)
{
    application = this;
    mfc::thread_state().thread = this;
    m_nThreadID = ::GetCurrentThreadId();
    m_bAutoDelete = FALSE;
}

CWinApp::~CWinApp()
{
    if (application == this)
        application = nullptr;
}

HINSTANCE AfxGetInstanceHandle()
{
    return ::GetModuleHandleA(nullptr);
}

HINSTANCE AfxGetResourceHandle()
{
    return AfxGetInstanceHandle();
}

void AfxPostQuitMessage(int nExitCode)
{
    ::PostQuitMessage(nExitCode);
}

LPCSTR AfxRegisterWndClass(UINT nClassStyle, HCURSOR hCursor, HBRUSH hbrBackground, HICON hIcon)
{
    char(&name)[96] = mfc::thread_state().class_name;
    const auto number = [](const void* handle) { return reinterpret_cast<std::uintptr_t>(handle); };
    const HINSTANCE instance = AfxGetInstanceHandle();
    if (!hCursor && !hbrBackground && !hIcon)
        std::snprintf(name, sizeof(name), "Afx:%" PRIxPTR ":%x", number(instance), nClassStyle);
    else
        std::snprintf(name, sizeof(name), "Afx:%" PRIxPTR ":%x:%" PRIxPTR ":%" PRIxPTR ":%" PRIxPTR, number(instance),
                      nClassStyle, number(hCursor), number(hbrBackground), number(hIcon));

    WNDCLASSA window_class = {};
    if (::GetClassInfoA(instance, name, &window_class))
        return name;
    window_class = { nClassStyle, &AfxWndProc, 0, 0, instance, hIcon, hCursor, hbrBackground, nullptr, name };
    return ::RegisterClassA(&window_class) ? name : nullptr;
}

BOOL AfxOleInit()
{
    return SUCCEEDED(::CoInitialize(nullptr));
}

void AfxEnableControlContainer() {}

int AfxWinMain(HINSTANCE hInstance, HINSTANCE /*hPrevInstance*/, LPSTR lpCmdLine, int nCmdShow)
{
    CWinApp* const app = AfxGetApp();
    if (!app)
        return -1;
    app->m_hInstance = hInstance;
    app->m_lpCmdLine = lpCmdLine;
    app->m_nCmdShow = nCmdShow;
    if (!app->InitApplication())
        return -1;
    if (app->InitInstance())
        return app->Run();
    if (app->m_pMainWnd)
        app->m_pMainWnd->DestroyWindow();
    return app->ExitInstance();
}
