#include "tests/platform/win32/user/user_support.h"

#include "tests/support/WaitUntil.h"

#include <algorithm>
#include <atomic>
#include <future>

namespace test {

namespace {

struct Name {
    UINT message;
    const char* name;
};
#define NAMED(message)                                                                                                 \
    {                                                                                                                  \
        WM_##message, #message                                                                                         \
    }
constexpr Name kNames[] = {
    NAMED(CREATE),        NAMED(DESTROY),
    NAMED(MOVE),          NAMED(SIZE),
    NAMED(ACTIVATE),      NAMED(SETFOCUS),
    NAMED(KILLFOCUS),     NAMED(ENABLE),
    NAMED(SETTEXT),       NAMED(PAINT),
    NAMED(CLOSE),         NAMED(ERASEBKGND),
    NAMED(SHOWWINDOW),    NAMED(ACTIVATEAPP),
    NAMED(CANCELMODE),    NAMED(SETCURSOR),
    NAMED(MOUSEACTIVATE), NAMED(GETMINMAXINFO),
    NAMED(NCCREATE),      NAMED(NCDESTROY),
    NAMED(NCCALCSIZE),    NAMED(NCHITTEST),
    NAMED(NCPAINT),       NAMED(NCACTIVATE),
    NAMED(NCMOUSEMOVE),   NAMED(NCLBUTTONDOWN),
    NAMED(NCLBUTTONUP),   NAMED(NCLBUTTONDBLCLK),
    NAMED(KEYDOWN),       NAMED(KEYUP),
    NAMED(CHAR),          NAMED(SYSKEYDOWN),
    NAMED(SYSKEYUP),      NAMED(SYSCHAR),
    NAMED(SYSCOMMAND),    NAMED(TIMER),
    NAMED(MOUSEMOVE),     NAMED(LBUTTONDOWN),
    NAMED(LBUTTONUP),     NAMED(LBUTTONDBLCLK),
    NAMED(RBUTTONDOWN),   NAMED(RBUTTONUP),
    NAMED(RBUTTONDBLCLK), NAMED(MOUSEWHEEL),
    NAMED(PARENTNOTIFY),  NAMED(CAPTURECHANGED),
    NAMED(MOVING),        NAMED(SIZING),
    NAMED(ENTERSIZEMOVE), NAMED(EXITSIZEMOVE),
    NAMED(MOUSELEAVE),    NAMED(WINDOWPOSCHANGED),
    NAMED(STYLECHANGED),  NAMED(WINDOWPOSCHANGING),
    NAMED(STYLECHANGING), NAMED(ENTERMENULOOP),
    NAMED(EXITMENULOOP),  NAMED(INITMENU),
    NAMED(INITMENUPOPUP), NAMED(UNINITMENUPOPUP),
    NAMED(MENUSELECT),    NAMED(COMMAND),
    NAMED(CONTEXTMENU),
};
#undef NAMED

const char* kClassName = "TestWindow";

} // namespace

std::string message_name(UINT message)
{
    const auto* found =
        std::find_if(std::begin(kNames), std::end(kNames), [message](const Name& n) { return n.message == message; });
    return found == std::end(kNames) ? std::to_string(message) : found->name;
}

void Journal::add(std::string entry)
{
    const std::lock_guard lock(mutex_);
    entries_.push_back(std::move(entry));
}

std::vector<std::string> Journal::take()
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
    const HWND made = CreateWindowExA(plan_.ex_style, class_name.c_str(), plan_.name, plan_.style, rect.left, rect.top,
                                      rect.right - rect.left, rect.bottom - rect.top, plan_.parent,
                                      reinterpret_cast<HMENU>(static_cast<INT_PTR>(plan_.id)), nullptr, this);
    handle_ = made;
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
        journal_.add(std::string(plan_.name) + " " + message_name(message));
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

void UserTest::run_until(const std::function<bool()>& condition)
{
    EXPECT_TRUE(wait_until([&] {
        run_queue();
        return condition();
    }));
}

win32::SurfaceId UserTest::surface_of(HWND window)
{
    RECT rect{};
    GetWindowRect(window, &rect);
    for (const win32::SurfaceId surface : screen_->stack()) {
        const RECT bounds = screen_->look(surface)->bounds;
        if (EqualRect(&bounds, &rect))
            return surface;
    }
    return 0;
}

LoopThread::LoopThread(std::function<void()> start)
{
    std::promise<DWORD> ready;
    std::future<DWORD> id = ready.get_future();
    thread_ = std::thread([&ready, begin = std::move(start)] {
        begin();
        MSG message;
        PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE);
        ready.set_value(GetCurrentThreadId());
        while (GetMessageA(&message, nullptr, 0, 0) > 0)
            DispatchMessageA(&message);
    });
    id_ = id.get();
}

LoopThread::~LoopThread()
{
    PostThreadMessageA(id_, WM_QUIT, 0, 0);
    thread_.join();
}

} // namespace test
