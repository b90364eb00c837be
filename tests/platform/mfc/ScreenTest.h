// A program with its windows on a screen in memory, and a person in front of it.
#pragma once

#include "platform/win32/screen/memory_screen.h"
#include "tests/support/WaitUntil.h"

#include <afxwin.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace test {

class ScreenTest : public testing::Test {
protected:
    ScreenTest() { win32::set_screen(m_pScreen); }
    ~ScreenTest() override
    {
        if (m_program.m_pMainWnd)
            m_program.m_pMainWnd->DestroyWindow();
        MSG msg;
        PeekMessageA(&msg, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE); // what the main window's end asks for
    }

    // Handles all that is in the queue, as the program's loop does, and then is idle once.
    void Pump()
    {
        MSG msg;
        while (PeekMessageA(&msg, nullptr, 0, 0, PM_NOREMOVE)) {
            if (!m_program.PumpMessage())
                return;
        }
        for (LONG nIdle = 0; m_program.OnIdle(nIdle); nIdle++) {
        }
    }
    template <class Condition>
    bool PumpUntil(Condition condition)
    {
        return wait_until([&] {
            Pump();
            return condition();
        });
    }
    void MoveTo(CPoint point)
    {
        m_pScreen->move_pointer(point);
        Pump();
    }
    void Click(CPoint point)
    {
        m_pScreen->click(point);
        Pump();
    }

    const std::shared_ptr<win32::MemoryScreen> m_pScreen = std::make_shared<win32::MemoryScreen>();
    CWinApp m_program;
    std::string m_log; // of what the windows meet
};

} // namespace test
