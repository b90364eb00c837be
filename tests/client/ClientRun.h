// The client's windows in a program of their own, before a person on a screen in memory.
#pragma once

#include "client/window/SkinnedWnd.h"
#include "platform/win32/screen/memory_screen.h"

#include <functional>
#include <memory>
#include <string>

namespace test {

class ClientRun {
public:
    ClientRun(); // makes the screen
    ~ClientRun();

    // Shows the window and lets the program run until it is closed. The steps are what the person does: whenever the
    // program has nothing left to do, the next one is tried, again and again until it is true.
    using Step = std::function<bool()>;
    void Run(std::unique_ptr<client::SkinnedWnd> pWindow, CSize size, std::vector<Step> steps);

    // In the window that is shown; pixels of its own.
    bool Click(client::Command nCommand); // false: there is no such button at the moment
    bool Press(UINT nKey);
    bool Close(); // as the desktop asks
    std::uint32_t PixelAt(int x, int y) const;
    POINT OnScreen(CPoint point) const;
    client::SkinnedWnd& Window() const { return *m_pWindow; }
    win32::MemoryScreen& Screen() { return *m_pScreen; }

    // Always true. Where the variable PICTURES names a folder, the window is saved there under that name.
    bool Photograph(const char* pszName);

private:
    std::shared_ptr<win32::MemoryScreen> m_pScreen;
    client::SkinnedWnd* m_pWindow = nullptr; // its own
};

} // namespace test
