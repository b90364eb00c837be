// The installer's window on a screen in memory, driven as a person drives it: ticks, clicks, looks. Each test owns one.
#pragma once

#include "setup/MeravSetupWnd.h"

#include "platform/win32/screen/memory_screen.h"
#include "tests/setup/SkinPixel.h"

#include <filesystem>
#include <functional>
#include <memory>

namespace test {

class InstallerOnScreen {
public:
    // Creates the window (which writes the payload) and shows it, in the home that HOME names now.
    InstallerOnScreen();
    // Closes the window if it is still there and waits for the worker.
    ~InstallerOnScreen();

    // The checking page's 13 ticks, without their time.
    void Tick(int nTicks = 13);
    // A click of the left mouse button at a place of the window.
    void Click(POINT ptWindow);
    // Handles messages until the condition holds. FALSE: it did not within 30 s.
    [[nodiscard]] bool PumpUntil(const std::function<bool()>& condition);
    // From the ready page to the finished one.
    [[nodiscard]] bool Install();
    void Close();

    // What the window holds; -1 once it is gone.
    int Stage() const;
    int Error() const;
    float Progress() const;
    std::string CurrentFile() const;
    bool Shows(UINT nCommand) const;
    bool IsOpen() const { return m_pWindow != nullptr; }
    bool IsJobRunning() const;
    HWND Window() const;
    // Mouse input, one event each.
    void Point(POINT ptWindow);
    void Press();
    void Release();
    // Turns to a page without what leads there.
    void ShowStage(int nStage);
    // What the job says before it copies a file.
    void ReportFile(const char* pszName, DWORD nBytes);
    // The part of the rectangle that looks unlike the skin's picture from there on; empty: it is that picture.
    CRect Difference(CRect rcWindow, CPoint ptSkin) const;
    // The window's pixel on the screen, 0x00RRGGBB.
    std::uint32_t Pixel(POINT ptWindow) const;
    bool HasQuit() const { return m_bQuit; } // the message loop would have ended, with exit code 0

    win32::MemoryScreen& Screen() { return *m_pScreen; }

private:
    class Probe;
    void Pump();

    std::shared_ptr<win32::MemoryScreen> m_pScreen;
    Probe* m_pWindow = nullptr;                 // deletes itself
    std::shared_ptr<std::atomic<int>> m_pAlive; // 1 while the window object lives
    bool m_bQuit = false;
};

std::string ReadFile(const std::filesystem::path& path);

// The folders of the home that HOME names now.
std::filesystem::path InstallRoot();
std::filesystem::path ClientFolder();
std::filesystem::path PayloadCopy();

inline constexpr POINT kInstallButton{ 340, 303 };
inline constexpr POINT kFinishButton{ 360,
                                      308 }; // apart from the install button: two quick clicks there are a double click
inline constexpr POINT kExitButton{ 430, 303 };
inline constexpr POINT kLaunchBox{ 37, 152 };
inline constexpr POINT kAutoStartBox{ 37, 180 };

} // namespace test
