#include "tests/platform/win32/user/user_support.h"

#include "tests/support/WaitUntil.h"

#include <algorithm>
#include <atomic>
#include <future>
#include <sstream>

namespace test {

namespace {

// The documented numbers.
constexpr const char* kNames =
    "1 CREATE 2 DESTROY 3 MOVE 5 SIZE 6 ACTIVATE 7 SETFOCUS 8 KILLFOCUS F PAINT 10 CLOSE 14 ERASEBKGND 18 SHOWWINDOW "
    "1C ACTIVATEAPP 20 SETCURSOR 21 MOUSEACTIVATE 46 WINDOWPOSCHANGING 47 WINDOWPOSCHANGED 81 NCCREATE 82 NCDESTROY "
    "83 NCCALCSIZE 84 NCHITTEST 85 NCPAINT 86 NCACTIVATE A0 NCMOUSEMOVE A1 NCLBUTTONDOWN A2 NCLBUTTONUP "
    "A3 NCLBUTTONDBLCLK 100 KEYDOWN 101 KEYUP 104 SYSKEYDOWN 111 COMMAND 112 SYSCOMMAND 113 TIMER 116 INITMENU "
    "117 INITMENUPOPUP 11F MENUSELECT 125 UNINITMENUPOPUP 200 MOUSEMOVE 201 LBUTTONDOWN 202 LBUTTONUP "
    "203 LBUTTONDBLCLK 210 PARENTNOTIFY 211 ENTERMENULOOP 212 EXITMENULOOP 215 CAPTURECHANGED 231 ENTERSIZEMOVE "
    "232 EXITSIZEMOVE 2A3 MOUSELEAVE";

std::map<UINT, std::string> names_of_messages()
{
    std::map<UINT, std::string> names;
    std::istringstream stream(kNames);
    UINT message = 0;
    for (std::string name; stream >> std::hex >> message >> name;)
        names[message] = name;
    return names;
}

const char* kClassName = "TestWindow";

} // namespace

std::string message_name(UINT message)
{
    static const std::map<UINT, std::string> names = names_of_messages();
    const auto found = names.find(message);
    return found == names.end() ? std::to_string(message) : found->second;
}

RECT rect_of(HWND window)
{
    RECT rect{};
    GetWindowRect(window, &rect);
    return rect;
}

Handler answering(LRESULT result)
{
    return [=](HWND, WPARAM, LPARAM) { return result; };
}

Handler doing(std::function<void(HWND)> action)
{
    return [action = std::move(action)](HWND window, WPARAM, LPARAM) {
        action(window);
        return std::nullopt;
    };
}

WindowPlan child_of(HWND parent, const char* name, RECT rect, DWORD more_style)
{
    return { .name = name, .style = WS_CHILD | WS_VISIBLE | more_style, .rect = rect, .parent = parent };
}

void Journal::add(const std::string& entry)
{
    const std::lock_guard lock(mutex_);
    entries_ += (entries_.empty() ? "" : " ") + entry;
}

std::string Journal::take()
{
    const std::lock_guard lock(mutex_);
    return std::exchange(entries_, {});
}

void Journal::keep_only(std::initializer_list<UINT> messages)
{
    take(); // what came before is not asked for
    kept_ = messages;
}

bool Journal::keeps(UINT message) const
{
    return kept_.empty() || std::find(kept_.begin(), kept_.end(), message) != kept_.end();
}

TestWindow::TestWindow(Journal& journal, WindowPlan plan) : journal_(journal), plan_(std::move(plan))
{
    static std::atomic<unsigned> count{ 0 };
    const std::string class_name = kClassName + std::to_string(++count);
    WNDCLASSA window_class{};
    window_class.style = plan_.class_style;
    window_class.lpfnWndProc = procedure;
    window_class.cbWndExtra = 2 * sizeof(LONG_PTR);
    window_class.hbrBackground = plan_.background;
    window_class.hCursor = plan_.cursor;
    window_class.lpszClassName = class_name.c_str();
    RegisterClassA(&window_class);
    const RECT& rect = plan_.rect;
    handle_ = CreateWindowExA(plan_.ex_style, class_name.c_str(), plan_.name, plan_.style, rect.left, rect.top,
                              rect.right - rect.left, rect.bottom - rect.top, plan_.parent,
                              reinterpret_cast<HMENU>(static_cast<INT_PTR>(plan_.id)), nullptr, this);
}

TestWindow::~TestWindow()
{
    silent_ = true;
    DestroyWindow(handle_);
}

LRESULT CALLBACK TestWindow::procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    if (message == WM_GETMINMAXINFO && !GetWindowLongPtrA(window, GWLP_USERDATA))
        return 0; // comes before the window knows its owner
    if (message == WM_NCCREATE)
        SetWindowLongPtrA(window, GWLP_USERDATA,
                          reinterpret_cast<LONG_PTR>(reinterpret_cast<CREATESTRUCTA*>(lparam)->lpCreateParams));
    return reinterpret_cast<TestWindow*>(GetWindowLongPtrA(window, GWLP_USERDATA))
        ->handle(window, message, wparam, lparam);
}

LRESULT TestWindow::handle(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    if (!silent_ && journal_.keeps(message))
        journal_.add(plan_.name + std::string(*plan_.name ? ":" : "") + message_name(message));
    if (plan_.every && !silent_)
        plan_.every(window, message);
    if (const auto handler = plan_.handlers.find(message); handler != plan_.handlers.end()) {
        const Handler run = handler->second; // it may replace itself
        if (const auto answer = run(window, wparam, lparam))
            return *answer;
    }
    return DefWindowProcA(window, message, wparam, lparam);
}

UserTest::UserTest() : screen_(std::make_shared<win32::MemoryScreen>())
{
    win32::set_screen(screen_);
}

UserTest::~UserTest()
{
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
    }
    win32::set_screen(nullptr);
}

void UserTest::run_queue()
{
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
}

void UserTest::show(const TestWindow& window, int command)
{
    ShowWindow(window.get(), command);
    run_queue();
}

void UserTest::run_until(const std::function<bool()>& condition)
{
    EXPECT_TRUE(wait_until([&] {
        run_queue();
        return condition();
    }));
}

win32::SurfaceId UserTest::surface_of(HWND window)
{
    for (const win32::SurfaceId surface : screen_->stack()) {
        if (screen_->look(surface)->bounds == rect_of(window))
            return surface;
    }
    return 0;
}

WindowElsewhere::WindowElsewhere(Journal& journal, Handler at_user)
{
    std::promise<DWORD> ready;
    thread_ = std::thread([&] {
        window_ = std::make_unique<TestWindow>(journal, WindowPlan{ .handlers = { { WM_USER, std::move(at_user) } } });
        ready.set_value(GetCurrentThreadId());
        MSG message;
        while (GetMessageA(&message, nullptr, 0, 0) > 0)
            DispatchMessageA(&message);
    });
    id_ = ready.get_future().get();
}

WindowElsewhere::~WindowElsewhere()
{
    PostThreadMessageA(id_, WM_QUIT, 0, 0);
    thread_.join();
}

} // namespace test
