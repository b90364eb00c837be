// The installer's window on a screen in memory, driven as a person drives it: ticks, clicks, looks.
#pragma once

#include "setup/MeravSetupWnd.h"

#include "platform/win32/screen/memory_screen.h"
#include "tests/setup/SkinPixel.h"
#include "tests/support/TestHome.h"

#include <functional>
#include <memory>

namespace test {

// Opens the fields that tests look at, and tells with its token whether the object lives.
class ProbedSetupWnd : public MeravSetupWnd {
public:
    using MeravSetupWnd::m_fProgress;
    using MeravSetupWnd::m_nError;
    using MeravSetupWnd::m_nStage;
    using MeravSetupWnd::m_strCurrentFile;

    const std::shared_ptr<const void> m_pLife = std::make_shared<int>();
};

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
    // Handles messages until the condition holds. FALSE: it did not within 20 s.
    [[nodiscard]] bool PumpUntil(const std::function<bool()>& condition);
    // From the ready page, whose payload copy another cabinet takes the place of, to the finished one.
    [[nodiscard]] bool Install(const std::string& strCabinet);
    void Close();

    // Only while it is open.
    ProbedSetupWnd* operator->() const { return m_pWindow; }
    HWND Window() const { return m_hWnd; }
    bool IsOpen() const { return ::IsWindow(m_hWnd); }
    int Stage() const { return IsOpen() ? m_pWindow->m_nStage.load() : -1; }
    bool Shows(UINT nCommand) const;
    bool IsAlive() const { return !m_pLife.expired(); }
    bool HasQuit() const { return m_bQuit; } // the message loop would have ended, with exit code 0

    // Mouse input, one event each: a move, or what the screen calls the left button's events.
    using MouseButtonEvent = void (win32::MemoryScreen::*)(win32::MouseButton);
    void Point(POINT ptWindow);
    void Do(MouseButtonEvent pEvent);
    // Turns to a page without what leads there.
    void ShowStage(int nStage);
    // What the job says before it copies a file.
    void ReportFile(const char* pszName, DWORD nBytes);
    // The part of the rectangle that looks unlike the skin's picture from there on; empty: it is that picture.
    CRect Difference(CRect rcWindow, CPoint ptSkin) const;
    // The window's pixel on the screen, 0x00RRGGBB.
    std::uint32_t Pixel(POINT ptWindow) const { return m_pScreen->pixel_at(OnScreen(ptWindow)); }

private:
    void Pump();
    POINT OnScreen(POINT ptWindow) const;

    const std::shared_ptr<win32::MemoryScreen> m_pScreen = std::make_shared<win32::MemoryScreen>();
    ProbedSetupWnd* m_pWindow = nullptr; // deletes itself
    HWND m_hWnd = nullptr;
    std::weak_ptr<const void> m_pLife; // the window object's
    bool m_bQuit = false;
};

// The bytes of a current user's value of that type; empty when there is none.
std::string StoredValue(const std::string& strKey, const char* pszName, DWORD nType);

// The folders of the home that HOME names now.
std::filesystem::path InstallRoot();
std::filesystem::path ClientFolder();
std::filesystem::path PayloadCopy();

inline constexpr POINT kInstallButton{ 340, 303 };
inline constexpr POINT kFinishButton{ 360, 308 }; // apart from it: two quick clicks there are a double click
inline constexpr POINT kExitButton{ 430, 303 };
inline constexpr POINT kLaunchBox{ 37, 152 };
inline constexpr POINT kAutoStartBox{ 37, 180 };

} // namespace test
