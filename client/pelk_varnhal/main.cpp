// PelkVarnhal [--uninstall | --version]
// The client. Shows a window with its versions and settings and whether its files are as they were installed, until it
// is closed. With --uninstall, which Uninstall passes, the window is Uninstall's: it asks, and then removes the client.
// With --version there is no window: it tells the program's version.
//
// Exit code 0, and 1 when no window could be made; with --uninstall those of Uninstall (client/uninstall/main.cpp).
#include "client/install/UserFolders.h"
#include "client/pelk_varnhal/ClientWnd.h"
#include "client/pelk_varnhal/UninstallWnd.h"
#include "version/Version.h"

#include <cstdio>
#include <memory>
#include <string_view>

namespace {

using namespace client;

class ClientApp : public CWinApp {
public:
    BOOL InitInstance() override
    {
        if (m_lpCmdLine == std::string_view("--version")) {
            std::printf("PelkVarnhal %s\n", kProgramVersion);
            std::fflush(stdout);
            return FALSE;
        }
        LoadSkin();
        if (m_lpCmdLine != std::string_view(kUninstallOption)) {
            m_nExitCode = kDone;
            return Show(std::make_unique<ClientWnd>(ProgramFolder()), ClientWnd::kSize);
        }
        return Show(std::make_unique<UninstallWnd>(ProgramFolder(), &m_nExitCode), UninstallWnd::kSize);
    }

    int ExitInstance() override
    {
        CWinApp::ExitInstance();
        return m_nExitCode;
    }

private:
    BOOL Show(std::unique_ptr<SkinnedWnd> pWindow, CSize size)
    {
        if (!pWindow->CreateAndShow(size, m_nCmdShow)) {
            m_nExitCode = kSomeLeft;
            return FALSE;
        }
        m_pMainWnd = pWindow.release(); // deletes itself
        return TRUE;
    }

    ExitCode m_nExitCode = kDone;
};

ClientApp theApp;

} // namespace
