// Windows that write down what happens to them, on a screen in memory.
#pragma once

#include "platform/win32/screen/memory_screen.h"

#include <windows.h>

#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

// Rectangles and points are compared and printed as they are.
inline bool operator==(const RECT& a, const RECT& b)
{
    return EqualRect(&a, &b) != FALSE;
}
inline bool operator==(const POINT& a, const POINT& b)
{
    return a.x == b.x && a.y == b.y;
}
inline std::ostream& operator<<(std::ostream& out, const RECT& rect)
{
    return out << rect.left << ',' << rect.top << ',' << rect.right << ',' << rect.bottom;
}
inline std::ostream& operator<<(std::ostream& out, const POINT& point)
{
    return out << point.x << ',' << point.y;
}

namespace test {

// The message's name without WM_, its number if it has none here.
std::string message_name(UINT message);

RECT rect_of(HWND window); // on the screen

using Handler = std::function<std::optional<LRESULT>(HWND, WPARAM, LPARAM)>;

Handler answering(LRESULT result);
// Does it and leaves the rest to the default procedure.
Handler doing(std::function<void(HWND)> action);

// What the windows of a test got, in order; safe from any thread.
class Journal {
public:
    void add(const std::string& entry);
    // The entries in a line, with blanks between them.
    std::string take();
    // Only the entries of these messages are kept; all are when it is empty.
    void keep_only(std::initializer_list<UINT> messages);
    bool keeps(UINT message) const;

private:
    std::mutex mutex_;
    std::string entries_;
    std::vector<UINT> kept_;
};

struct WindowPlan {
    const char* name = ""; // in the journal too
    DWORD style = WS_POPUP;
    DWORD ex_style = 0;
    RECT rect{ 10, 20, 110, 100 };
    HWND parent = nullptr;
    int id = 0;
    UINT class_style = 0;
    HBRUSH background = nullptr;
    HCURSOR cursor = nullptr;
    // Run before the default procedure; an answer keeps it from running.
    std::map<UINT, Handler> handlers = {};
    std::function<void(HWND, UINT)> every = nullptr; // run at each message, before its handler
};

// A visible child.
WindowPlan child_of(HWND parent, const char* name, RECT rect, DWORD more_style = 0);

// A window whose every message goes to the journal as "name:MESSAGE", or "MESSAGE" if it has no name. Destroyed with
// its owner if it still is.
class TestWindow {
public:
    TestWindow(Journal& journal, WindowPlan plan);
    ~TestWindow();
    TestWindow(const TestWindow&) = delete;
    TestWindow& operator=(const TestWindow&) = delete;

    HWND get() const { return handle_; }
    void on(UINT message, Handler handler) { plan_.handlers[message] = std::move(handler); }

private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
    LRESULT handle(HWND window, UINT message, WPARAM wparam, LPARAM lparam);

    Journal& journal_;
    WindowPlan plan_;
    bool silent_ = false; // its end is nobody's business
    HWND handle_ = nullptr;
};

class UserTest : public testing::Test {
protected:
    UserTest();
    ~UserTest() override;

    // Handles everything that is in the queue now, paints included.
    void run_queue();
    // Shows the window and handles what comes of it.
    void show(const TestWindow& window, int command = SW_SHOW);
    // Runs the loop until the condition holds; fails the test when it does not in time.
    void run_until(const std::function<bool()>& condition);

    win32::SurfaceId surface_of(HWND window);

    std::shared_ptr<win32::MemoryScreen> screen_;
    Journal journal_;
};

// A window of another thread, whose loop ends with it.
class WindowElsewhere {
public:
    WindowElsewhere(Journal& journal, Handler at_user); // what it does at WM_USER
    ~WindowElsewhere();

    HWND get() const { return window_->get(); }
    DWORD thread() const { return id_; }

private:
    std::unique_ptr<TestWindow> window_; // goes with the thread at the latest
    DWORD id_ = 0;
    std::thread thread_;
};

} // namespace test
