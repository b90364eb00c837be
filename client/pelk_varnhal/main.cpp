// PelkVarnhal: the client. Shows a window with its version and whether its files are all there, until it is closed.
// Exit code 0; 1 when no window could be made.
#include "client/install/UserFolders.h"
#include "client/pelk_varnhal/ClientWnd.h"

#include <memory>

namespace {

class ClientApp : public CWinApp {
public:
    BOOL InitInstance() override
    {
        auto pWindow = std::make_unique<client::ClientWnd>(client::ProgramFolder());
        if (!pWindow->CreateAndShow(m_nCmdShow))
            return FALSE;
        m_pMainWnd = pWindow.release(); // deletes itself
        return TRUE;
    }
};

ClientApp theApp;

} // namespace
