#include "setup/SetupApp.h"

#include "setup/MeravSetupWnd.h"

#include "look/GuiManager.h"
#include "skin/GuiSkin.h"

#include <objbase.h>

#include <new>

BEGIN_MESSAGE_MAP(SetupApp, CWinApp)
END_MESSAGE_MAP()

namespace {

SetupApp theApp;

constexpr UINT kSkin = 130; // resource "STID"
constexpr CRect kWindowRect(0, 0, 510, 349);

} // namespace

SetupApp::SetupApp() : CWinApp(nullptr) {}

BOOL SetupApp::InitInstance()
{
    // None of these is worth stopping for.
    (void)AfxOleInit();
    (void)CoInitialize(nullptr);
    (void)Enable3dControls();
    AfxEnableControlContainer();
    PelkGUI::GetGuiManager().InitManager();
    PelkGUI::GetGuiSkin().Apply(kSkin, "STID");

    auto* pWindow = new (std::nothrow) MeravSetupWnd;
    if (!pWindow)
        return FALSE;
    const char* pszClass =
        AfxRegisterWndClass(CS_VREDRAW | CS_HREDRAW | CS_DBLCLKS, nullptr, GetSysColorBrush(COLOR_BTNFACE), nullptr);
    if (pWindow->Create(pszClass, "MeravSetupWnd", WS_POPUP | WS_CAPTION, kWindowRect, nullptr, 0) == -1)
        return FALSE;
    m_pMainWnd = pWindow;
    return pWindow->CenterAndShow() != 0;
}

int SetupApp::ExitInstance()
{
    return CWinApp::ExitInstance();
}
