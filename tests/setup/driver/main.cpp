// The installer as a process of its own, on a screen in memory, with a thread that plays the person: for tests that
// close it or run two at once. Usage:
//     SETUP_ROAD=<where to stop> SETUP_CABINET=<file or nothing> setup_driver
// The road goes from "checking" over "ready", "installing" and "finished" to "finish"; the window is closed at the
// named page, and "finish" clicks the last page's button. A cabinet takes the place of the payload's copy before the
// installation starts.
#include "platform/win32/screen/memory_screen.h"
#include "tests/setup/SkinPixel.h"
#include "tests/support/WaitUntil.h"

#include <afxwin.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>

// Closing in the middle ends the process beside its worker, on purpose: the threads it leaves are no fault.
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_options()
{
    return "report_thread_leaks=0";
}

namespace {

std::shared_ptr<win32::MemoryScreen> g_pScreen;

bool ShowsPage(HWND hWnd, int nPage)
{
    constexpr int kTitleRow = 66;
    RECT rc{};
    ::GetWindowRect(hWnd, &rc);
    for (int x = 20; x < 300; x++) {
        if (g_pScreen->pixel_at({ rc.left + x, rc.top + kTitleRow }) != test::SkinPixel(x, nPage * 349 + kTitleRow))
            return false;
    }
    return true;
}

template <class Condition>
void Await(Condition condition)
{
    if (!test::wait_until(condition, std::chrono::seconds(120)))
        std::_Exit(3); // a page that does not come must not keep the tests waiting
}

void Click(HWND hWnd, POINT pt)
{
    RECT rc{};
    ::GetWindowRect(hWnd, &rc);
    g_pScreen->click({ rc.left + pt.x, rc.top + pt.y });
}

void PlayThePerson()
{
    const std::string strRoad = std::getenv("SETUP_ROAD"), strCabinet = std::getenv("SETUP_CABINET");
    HWND hWnd = nullptr;
    Await([&] { return (hWnd = FindWindowA(nullptr, "MeravSetupWnd")) != nullptr; });
    const char* const pages[] = { "checking", "ready", "installing", "finished" };
    for (int nPage = 0; nPage < 4; nPage++) {
        Await([&] { return ShowsPage(hWnd, nPage); });
        if (strRoad == pages[nPage]) {
            ::PostMessageA(hWnd, WM_CLOSE, 0, 0);
            return;
        }
        for (int i = 0; nPage == 0 && i < 13; i++)
            ::PostMessageA(hWnd, WM_TIMER, 1000, 0);
        if (nPage == 1 && !strCabinet.empty())
            std::filesystem::copy_file(strCabinet,
                                       std::filesystem::path(std::getenv("XDG_DATA_HOME")) / "Varnhal/Update/TeskSetup",
                                       std::filesystem::copy_options::overwrite_existing);
        if (nPage == 1)
            Click(hWnd, { 340, 303 });
    }
    Click(hWnd, { 360, 308 });
}

// Stands before the application object's own start: the screen must be there when the first window is made.
const bool g_bStarted = [] {
    g_pScreen = std::make_shared<win32::MemoryScreen>();
    win32::set_screen(g_pScreen);
    std::thread(PlayThePerson).detach();
    return true;
}();

} // namespace
