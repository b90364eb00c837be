// The client's window, before a person on a screen in memory.
#include "client/pelk_varnhal/ClientWnd.h"
#include "client/install/FileList.h"
#include "client/pelk_varnhal/Installation.h"
#include "platform/win32/screen/memory_screen.h"
#include "tests/client/Programs.h"

#include <functional>

#include <winreg.h>

#include <gtest/gtest.h>

namespace {

using test::Home;
using test::WriteFile;

void WriteInstallation(const Home& home)
{
    WriteFile(home.Tesk() / "Data/Config.xml", "<client/>");
    WriteFile(
        home.Tesk() / client::kFileListName,
        client::FormatFileList(std::vector{ client::ListedFile{ client::Sha256("<client/>"), 9, "Data/Config.xml" } }));
}

// The program: one window, before which a person does one thing.
class ClientRun : public CWinApp {
public:
    // The program's exit code.
    int Run(const std::string& strFolder, std::function<void(HWND)> person)
    {
        m_strFolder = strFolder;
        m_person = std::move(person);
        return AfxWinMain(AfxGetInstanceHandle(), nullptr, nullptr, SW_SHOWNORMAL);
    }

    BOOL InitInstance() override
    {
        auto* pWindow = new client::ClientWnd(m_strFolder);
        m_pMainWnd = pWindow;
        EXPECT_TRUE(pWindow->CreateAndShow(SW_SHOWNORMAL));
        m_person(pWindow->m_hWnd);
        return TRUE;
    }

private:
    using CWinApp::Run;
    std::string m_strFolder;
    std::function<void(HWND)> m_person;
};

ClientRun theApp;

std::shared_ptr<win32::MemoryScreen> NewScreen()
{
    auto screen = std::make_shared<win32::MemoryScreen>();
    win32::set_screen(screen);
    return screen;
}

std::uint32_t PixelOf(const win32::MemoryScreen& screen, HWND hWnd, int x, int y)
{
    RECT rcWindow{};
    ::GetWindowRect(hWnd, &rcWindow);
    return screen.pixel_at({ rcWindow.left + x, rcWindow.top + y }) & 0xFFFFFF;
}

TEST(ClientWnd, ShowsThatAllFilesAreThereUntilItsButtonIsClicked)
{
    const Home home;
    WriteInstallation(home);
    const auto screen = NewScreen();
    const int nExitCode = theApp.Run(home.Tesk().string(), [&](HWND hWnd) {
        EXPECT_EQ(PixelOf(*screen, hWnd, 98, 163), 0x339FFEu);
        EXPECT_EQ(PixelOf(*screen, hWnd, 419, 299), 0xF4F7FAu) << "the picture fills the window";
        RECT rcWindow{};
        ::GetWindowRect(hWnd, &rcWindow);
        screen->click({ rcWindow.left + 350, rcWindow.top + 265 });
    });
    EXPECT_EQ(nExitCode, 0);
}

TEST(ClientWnd, ShowsThatFilesAreMissingAndClosesOnEscape)
{
    const Home home;
    const auto screen = NewScreen();
    const int nExitCode = theApp.Run(home.Tesk().string(), [&](HWND hWnd) {
        EXPECT_EQ(PixelOf(*screen, hWnd, 98, 163), 0xCC6001u);
        screen->press_key(VK_ESCAPE);
        screen->release_key(VK_ESCAPE);
    });
    EXPECT_EQ(nExitCode, 0);
}

TEST(ClientWnd, ClosesWhenTheDesktopAsks)
{
    const Home home;
    const auto screen = NewScreen();
    const int nExitCode =
        theApp.Run(home.Tesk().string(), [&](HWND) { screen->request_close(screen->stack().back()); });
    EXPECT_EQ(nExitCode, 0);
}

TEST(Installation, IsCompleteWhenEveryFileHasItsSize)
{
    const Home home;
    EXPECT_FALSE(client::IsComplete(home.Tesk().string())) << "no list";
    WriteInstallation(home);
    EXPECT_TRUE(client::IsComplete(home.Tesk().string()));
    WriteFile(home.Tesk() / "Data/Config.xml", "<client/");
    EXPECT_FALSE(client::IsComplete(home.Tesk().string())) << "cut";
    std::filesystem::remove(home.Tesk() / "Data/Config.xml");
    EXPECT_FALSE(client::IsComplete(home.Tesk().string())) << "missing";
    WriteFile(home.Tesk() / client::kFileListName, "");
    EXPECT_FALSE(client::IsComplete(home.Tesk().string())) << "an empty list";
}

} // namespace
