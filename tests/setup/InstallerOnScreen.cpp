#include "tests/setup/InstallerOnScreen.h"

#include "look/GuiManager.h"
#include "skin/GuiSkin.h"

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <thread>

namespace test {

namespace {

// The framework wants an application object; the tests' own has no window of its own.
CWinApp theTestApp;

constexpr std::chrono::seconds kDeadline(30);

} // namespace

// Opens the fields that tests look at, and says when the object is gone.
class InstallerOnScreen::Probe : public MeravSetupWnd {
public:
    explicit Probe(std::shared_ptr<std::atomic<int>> pAlive) : m_pAlive(std::move(pAlive)) { *m_pAlive = 1; }
    ~Probe() override { *m_pAlive = 0; }

    using MeravSetupWnd::m_fProgress;
    using MeravSetupWnd::m_nError;
    using MeravSetupWnd::m_nStage;
    using MeravSetupWnd::m_strCurrentFile;

    InstallerOnScreen* m_pOwner = nullptr;

protected:
    void PostNcDestroy() override
    {
        if (m_pOwner)
            m_pOwner->m_pWindow = nullptr;
        MeravSetupWnd::PostNcDestroy();
    }

private:
    std::shared_ptr<std::atomic<int>> m_pAlive;
};

InstallerOnScreen::InstallerOnScreen()
    : m_pScreen(std::make_shared<win32::MemoryScreen>()), m_pAlive(std::make_shared<std::atomic<int>>(0))
{
    win32::set_screen(m_pScreen);
    PelkGUI::GetGuiManager().InitManager();
    PelkGUI::GetGuiSkin().Apply(130, "STID");
    m_pWindow = new Probe(m_pAlive);
    m_pWindow->m_pOwner = this;
    const char* pszClass = AfxRegisterWndClass(CS_VREDRAW | CS_HREDRAW | CS_DBLCLKS);
    if (m_pWindow->Create(pszClass, "MeravSetupWnd", WS_POPUP | WS_CAPTION, CRect(0, 0, 510, 349), nullptr, 0) != 1)
        std::abort(); // nothing to test
    // From here on the ticks are the test's: on a busy machine the real ones would come in between.
    if (!m_pWindow->KillTimer(INSTALL_TIMER_ID))
        std::abort(); // the window did not start it
    m_pWindow->CenterAndShow();
    Pump();
}

InstallerOnScreen::~InstallerOnScreen()
{
    Close();
    (void)PumpUntil([this] { return *m_pAlive == 0; });
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
    const auto end = std::chrono::steady_clock::now() + kDeadline;
    for (;;) {
        Pump();
        if (condition())
            return true;
        if (std::chrono::steady_clock::now() >= end)
            return false;
        std::this_thread::yield();
    }
}

void InstallerOnScreen::Tick(int nTicks)
{
    for (int i = 0; i < nTicks && m_pWindow; i++)
        m_pWindow->SendMessage(WM_TIMER, INSTALL_TIMER_ID, 0);
    Pump();
}

void InstallerOnScreen::Click(POINT ptWindow)
{
    ::ClientToScreen(m_pWindow->m_hWnd, &ptWindow);
    m_pScreen->click(ptWindow);
    Pump();
}

bool InstallerOnScreen::Install()
{
    Click(kInstallButton);
    return PumpUntil([this] { return Stage() == kStageFinished; });
}

void InstallerOnScreen::Close()
{
    if (m_pWindow)
        m_pWindow->SendMessage(WM_CLOSE);
    Pump();
}

int InstallerOnScreen::Stage() const
{
    return m_pWindow ? m_pWindow->m_nStage.load() : -1;
}

int InstallerOnScreen::Error() const
{
    return m_pWindow ? m_pWindow->m_nError : -1;
}

float InstallerOnScreen::Progress() const
{
    return m_pWindow ? m_pWindow->m_fProgress.load() : -1.0F;
}

std::string InstallerOnScreen::CurrentFile() const
{
    return m_pWindow ? std::string(m_pWindow->m_strCurrentFile) : std::string();
}

bool InstallerOnScreen::Shows(UINT nCommand) const
{
    const PelkGUI::GuiCmdButton* const pButton = m_pWindow ? m_pWindow->GetCmdButton(nCommand) : nullptr;
    return pButton && pButton->m_bVisible;
}

bool InstallerOnScreen::IsJobRunning() const
{
    return *m_pAlive != 0 && !m_pWindow;
}

HWND InstallerOnScreen::Window() const
{
    return m_pWindow ? m_pWindow->m_hWnd : nullptr;
}

std::uint32_t InstallerOnScreen::Pixel(POINT ptWindow) const
{
    ::ClientToScreen(m_pWindow->m_hWnd, &ptWindow);
    return m_pScreen->pixel_at(ptWindow);
}

void InstallerOnScreen::Point(POINT ptWindow)
{
    ::ClientToScreen(m_pWindow->m_hWnd, &ptWindow);
    m_pScreen->move_pointer(ptWindow);
    Pump();
}

void InstallerOnScreen::Press()
{
    m_pScreen->press(win32::kLeftButton);
    Pump();
}

void InstallerOnScreen::Release()
{
    m_pScreen->release(win32::kLeftButton);
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
    CPoint ptOrigin;
    ::ClientToScreen(m_pWindow->m_hWnd, &ptOrigin);
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

std::string ReadFile(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return { std::istreambuf_iterator<char>(file), {} };
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
