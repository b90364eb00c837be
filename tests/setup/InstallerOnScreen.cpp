#include "tests/setup/InstallerOnScreen.h"

#include "look/GuiManager.h"
#include "skin/GuiSkin.h"
#include "tests/support/WaitUntil.h"

#include <cstdlib>

namespace test {

namespace {

// The framework wants an application object; the tests' own has no window of its own.
CWinApp theTestApp;

} // namespace

InstallerOnScreen::InstallerOnScreen()
{
    win32::set_screen(m_pScreen);
    PelkGUI::GetGuiManager().InitManager();
    PelkGUI::GetGuiSkin().Apply(130, "STID");
    m_pWindow = new ProbedSetupWnd;
    m_pLife = m_pWindow->m_pLife;
    const char* pszClass = AfxRegisterWndClass(CS_VREDRAW | CS_HREDRAW | CS_DBLCLKS);
    if (m_pWindow->Create(pszClass, "MeravSetupWnd", WS_POPUP | WS_CAPTION, CRect(0, 0, 510, 349), nullptr, 0) != 1)
        std::abort(); // nothing to test
    m_hWnd = m_pWindow->m_hWnd;
    // From here on the ticks are the test's: on a busy machine the real ones would come in between.
    if (!m_pWindow->KillTimer(INSTALL_TIMER_ID))
        std::abort(); // the window did not start it
    m_pWindow->CenterAndShow();
    Pump();
}

InstallerOnScreen::~InstallerOnScreen()
{
    Close();
    (void)PumpUntil([this] { return !IsAlive(); });
    win32::set_screen(nullptr);
}

void InstallerOnScreen::Pump()
{
    MSG msg;
    while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
        if (msg.message == WM_QUIT) {
            m_bQuit = msg.wParam == 0;
            return;
        }
        TranslateMessage(&msg);
        DispatchMessageA(&msg);
    }
}

bool InstallerOnScreen::PumpUntil(const std::function<bool()>& condition)
{
    return wait_until([&] {
        Pump();
        return condition();
    });
}

void InstallerOnScreen::Tick(int nTicks)
{
    for (int i = 0; i < nTicks; i++)
        ::SendMessageA(m_hWnd, WM_TIMER, INSTALL_TIMER_ID, 0);
    Pump();
}

bool InstallerOnScreen::Install(const std::string& strCabinet)
{
    write_file(PayloadCopy(), strCabinet);
    Click(kInstallButton);
    return PumpUntil([this] { return Stage() == kStageFinished; });
}

void InstallerOnScreen::Close()
{
    ::SendMessageA(m_hWnd, WM_CLOSE, 0, 0);
    Pump();
}

bool InstallerOnScreen::Shows(UINT nCommand) const
{
    const PelkGUI::GuiCmdButton* const pButton = m_pWindow->GetCmdButton(nCommand);
    return pButton && pButton->m_bVisible;
}

POINT InstallerOnScreen::OnScreen(POINT ptWindow) const
{
    ::ClientToScreen(m_hWnd, &ptWindow);
    return ptWindow;
}

void InstallerOnScreen::Click(POINT ptWindow)
{
    m_pScreen->click(OnScreen(ptWindow));
    Pump();
}

void InstallerOnScreen::Point(POINT ptWindow)
{
    m_pScreen->move_pointer(OnScreen(ptWindow));
    Pump();
}

void InstallerOnScreen::Do(MouseButtonEvent pEvent)
{
    (m_pScreen.get()->*pEvent)(win32::kLeftButton);
    Pump();
}

void InstallerOnScreen::ShowStage(int nStage)
{
    m_pWindow->m_nStage = nStage;
    m_pWindow->m_fProgress = 0.0F;
    m_pWindow->Invalidate(FALSE);
    Pump();
}

void InstallerOnScreen::ReportFile(const char* pszName, DWORD nBytes)
{
    FILE_IN_CABINET_INFO_A info{};
    info.NameInCabinet = pszName;
    info.FileSize = nBytes;
    m_pWindow->SendMessage(WM_INSTALL_PROGRESS, 0, reinterpret_cast<LPARAM>(&info));
    Pump();
}

CRect InstallerOnScreen::Difference(CRect rcWindow, CPoint ptSkin) const
{
    const auto picture = m_pScreen->picture();
    const CPoint ptOrigin = OnScreen({ 0, 0 });
    CRect rcDifference;
    for (int y = rcWindow.top; y < rcWindow.bottom; y++) {
        for (int x = rcWindow.left; x < rcWindow.right; x++) {
            if (picture.at(ptOrigin.x + x, ptOrigin.y + y) !=
                SkinPixel(ptSkin.x + x - rcWindow.left, ptSkin.y + y - rcWindow.top))
                rcDifference |= CRect(x, y, x + 1, y + 1);
        }
    }
    return rcDifference;
}

std::string StoredValue(const std::string& strKey, const char* pszName, DWORD nType)
{
    HKEY hKey = nullptr;
    char szValue[1024] = {};
    DWORD nSize = sizeof szValue, nFound = REG_NONE;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, strKey.c_str(), 0, KEY_QUERY_VALUE, &hKey) != ERROR_SUCCESS)
        return {};
    const LONG nResult = RegQueryValueExA(hKey, pszName, nullptr, &nFound, reinterpret_cast<BYTE*>(szValue), &nSize);
    RegCloseKey(hKey);
    return nResult == ERROR_SUCCESS && nFound == nType ? std::string(szValue, nSize) : std::string();
}

std::filesystem::path InstallRoot()
{
    return std::filesystem::path(std::getenv("XDG_DATA_HOME")) / "Varnhal";
}

std::filesystem::path ClientFolder()
{
    return InstallRoot() / "Tesk";
}

std::filesystem::path PayloadCopy()
{
    return InstallRoot() / "Update" / "TeskSetup";
}

} // namespace test
