// Sent, posted and timed messages, within a thread and between threads.
#include "tests/platform/win32/user/user_support.h"

#include "tests/support/WaitUntil.h"

#include <atomic>
#include <chrono>

#include <sys/resource.h>

namespace test {
namespace {

class Messages : public UserTest {
protected:
    // The next message, as "name" of the one that is taken; "none" when the queue is empty.
    std::string next(UINT first = 0, UINT last = 0)
    {
        MSG message;
        return PeekMessageA(&message, nullptr, first, last, PM_REMOVE) ? message_name(message.message) : "none";
    }
};

bool pass(int milliseconds)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    return wait_until([=] { return std::chrono::steady_clock::now() > end; });
}

TEST_F(Messages, ComeInTheirOrder)
{
    const TestWindow window(journal_, {});
    show(window);
    for (const UINT_PTR id : { 1, 2 })
        SetTimer(window.get(), id, 10, nullptr);
    ASSERT_TRUE(pass(11));
    InvalidateRect(window.get(), nullptr, FALSE);
    screen_->press_key('A');
    PostQuitMessage(3);
    PostMessageA(window.get(), WM_USER + 1, 0, 0);
    PostMessageA(window.get(), WM_USER + 2, 0, 0);
    MSG message;
    EXPECT_TRUE(GetMessageA(&message, nullptr, 0, 0));
    EXPECT_EQ(message.message, WM_USER + 1);
    EXPECT_EQ(next(WM_TIMER, WM_TIMER), "TIMER"); // a filter lets what it asks for pass
    EXPECT_EQ(next(), std::to_string(WM_USER + 2));
    EXPECT_FALSE(GetMessageA(&message, nullptr, 0, 0));
    EXPECT_EQ(message.message, WM_QUIT);
    EXPECT_EQ(message.wParam, 3U);
    EXPECT_EQ(next(), "KEYDOWN");
    EXPECT_EQ(next(), "PAINT");
    ValidateRect(window.get(), nullptr);
    EXPECT_EQ(next(), "TIMER");
    for (const UINT_PTR id : { 1, 2 })
        KillTimer(window.get(), id);
    EXPECT_EQ(next(), "none");
}

TEST_F(Messages, StayWhenTheyAreOnlyLookedAt)
{
    PostMessageA(nullptr, WM_USER, 4, 5);
    MSG message;
    for (int i = 0; i < 2; i++) {
        EXPECT_TRUE(PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE));
        EXPECT_EQ(message.wParam, 4U);
    }
    EXPECT_EQ(next(), std::to_string(WM_USER));
    EXPECT_EQ(next(), "none");
    const TestWindow window(journal_, {});
    show(window, SW_SHOWNA);
    RedrawWindow(window.get(), nullptr, nullptr, RDW_INTERNALPAINT);
    EXPECT_TRUE(PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE));
    EXPECT_EQ(next(), "PAINT");
    EXPECT_EQ(GetMessageA(&message, reinterpret_cast<HWND>(4), 0, 0), -1);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_WINDOW_HANDLE);
}

TEST_F(Messages, ArePostedToLimitAndGoWithTheirWindow)
{
    const TestWindow window(journal_, {});
    std::size_t posted = 0;
    while (PostMessageA(window.get(), WM_USER, 0, 0))
        posted++;
    EXPECT_EQ(posted, 10000U);
    DestroyWindow(window.get());
    EXPECT_EQ(next(), "none");
    EXPECT_FALSE(PostMessageA(window.get(), WM_USER, 0, 0));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_WINDOW_HANDLE);
}

unsigned timer_calls = 0;

void CALLBACK count_timer(HWND, UINT, UINT_PTR, DWORD)
{
    timer_calls++;
}

TEST_F(Messages, OfTimersAreCoalesced)
{
    const TestWindow window(journal_, {});
    journal_.keep_only({ WM_TIMER });
    EXPECT_EQ(SetTimer(window.get(), 9, 0, nullptr), 9U);
    EXPECT_EQ(SetTimer(window.get(), 9, 1, nullptr), 9U); // the same timer, whose period is at least 10
    ASSERT_TRUE(pass(55));
    MSG looked_at;
    EXPECT_TRUE(PeekMessageA(&looked_at, window.get(), WM_TIMER, WM_TIMER, PM_NOREMOVE)) << "a look takes nothing";
    run_queue();
    EXPECT_EQ(journal_.take(), "TIMER");
    run_until([&] { return !journal_.take().empty(); });
    EXPECT_TRUE(KillTimer(window.get(), 9));
    EXPECT_FALSE(KillTimer(window.get(), 9));

    const UINT_PTR id = SetTimer(nullptr, 0, 10, count_timer);
    EXPECT_NE(id, 0U);
    run_until([&] { return timer_calls > 0; });
    const MSG forged{ nullptr, WM_TIMER, id + 1, reinterpret_cast<LPARAM>(&count_timer), 0, {} };
    const unsigned calls = timer_calls;
    DispatchMessageA(&forged);
    EXPECT_EQ(timer_calls, calls);
    EXPECT_TRUE(KillTimer(nullptr, id));
}

TEST_F(Messages, FromAnotherThreadAreAnswered)
{
    HWND window = nullptr;
    std::atomic<DWORD> handled_on{ 0 };
    {
        const WindowElsewhere other(journal_, [&](HWND, WPARAM wparam, LPARAM lparam) {
            handled_on = GetCurrentThreadId();
            return static_cast<LRESULT>(wparam) * lparam;
        });
        window = other.get();
        EXPECT_EQ(SendMessageA(window, WM_USER, 6, 7), 42);
        EXPECT_EQ(handled_on, other.thread());
        EXPECT_EQ(GetWindowThreadProcessId(window, nullptr), other.thread());
        EXPECT_FALSE(DestroyWindow(window));
        EXPECT_EQ(SetTimer(window, 1, 10, nullptr), 0U);
        EXPECT_FALSE(ShowWindow(window, SW_SHOW)); // carried out over there
        EXPECT_TRUE(IsWindowVisible(window));
        EXPECT_EQ(GetActiveWindow(), nullptr);
        EXPECT_EQ(GetForegroundWindow(), window);
    }
    // The thread's end took the window along.
    EXPECT_FALSE(IsWindow(window));
    EXPECT_EQ(SendMessageA(window, WM_USER, 6, 7), 0);
    EXPECT_TRUE(screen_->stack().empty());
}

TEST_F(Messages, AreServedWhileTheThreadWaitsForAnAnswer)
{
    TestWindow mine(journal_, {});
    mine.on(WM_USER, [](HWND, WPARAM depth, LPARAM other) {
        return depth == 0 ? 1 : 1 + SendMessageA(reinterpret_cast<HWND>(other), WM_USER, depth - 1, 0);
    });
    const WindowElsewhere theirs(journal_, [&](HWND window, WPARAM depth, LPARAM) {
        return 10 + SendMessageA(mine.get(), WM_USER, depth, reinterpret_cast<LPARAM>(window));
    });
    EXPECT_EQ(SendMessageA(theirs.get(), WM_USER, 3, 0), 44);
}

TEST_F(Messages, ToAWindowThatGoesAreAnsweredWithZero)
{
    std::atomic<bool> busy{ false };
    std::atomic<bool> may_go{ false };
    const WindowElsewhere window(journal_, [&](HWND handle, WPARAM, LPARAM) {
        busy = true;
        EXPECT_TRUE(wait_until([&] { return may_go.load(); }));
        DestroyWindow(handle);
        return 1;
    });
    PostMessageA(window.get(), WM_USER, 0, 0);
    ASSERT_TRUE(wait_until([&] { return busy.load(); }));
    std::thread sender([&] { EXPECT_EQ(SendMessageA(window.get(), WM_USER, 1, 0), 0); });
    may_go = true;
    sender.join();
}

TEST_F(Messages, ToAThreadThatEndsAreAnsweredWithZero)
{
    std::unique_ptr<TestWindow> window;
    std::atomic<bool> made{ false };
    std::atomic<bool> may_end{ false };
    std::thread ending([&] {
        window = std::make_unique<TestWindow>(journal_, WindowPlan{});
        made = true;
        EXPECT_TRUE(wait_until([&] { return may_end.load(); }));
    });
    ASSERT_TRUE(wait_until([&] { return made.load(); }));
    std::thread sender([&] {
        may_end = true;
        EXPECT_EQ(SendMessageA(window->get(), WM_USER, 0, 0), 0);
    });
    sender.join();
    ending.join();
}

TEST_F(Messages, SurviveManyThreadsAtOnce)
{
    std::atomic<unsigned> sent{ 0 };
    std::atomic<unsigned> posted{ 0 };
    TestWindow window(journal_, { .handlers = { { WM_USER + 1, doing([&](HWND) { posted++; }) } } });
    window.on(WM_USER, [&](HWND, WPARAM, LPARAM) {
        sent++;
        return 5;
    });
    journal_.keep_only({ WM_CLOSE });
    ShowWindow(window.get(), SW_SHOW);
    constexpr unsigned kThreads = 4;
    constexpr unsigned kRounds = 300;
    std::atomic<unsigned> done{ 0 };
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < kThreads; i++) {
        threads.emplace_back([&, i] {
            for (unsigned round = 0; round < kRounds; round++) {
                EXPECT_EQ(SendMessageA(window.get(), WM_USER, 0, 0), 5);
                PostMessageA(window.get(), WM_USER + 1, 0, 0);
                InvalidateRect(window.get(), nullptr, FALSE);
                SetWindowPos(window.get(), nullptr, static_cast<int>(i), static_cast<int>(round), 50, 50, SWP_NOZORDER);
                RECT rect{};
                GetClientRect(window.get(), &rect);
            }
            done++;
            PostMessageA(window.get(), WM_NULL, 0, 0);
        });
    }
    run_until([&] { return done == kThreads; });
    for (std::thread& thread : threads)
        thread.join();
    run_queue();
    EXPECT_EQ(sent, kThreads * kRounds);
    EXPECT_EQ(posted, kThreads * kRounds);
}

TEST_F(Messages, DoNotWakeAThreadThatHasNone)
{
    const TestWindow window(journal_, { .handlers = { { WM_USER, doing([](HWND) { PostQuitMessage(0); }) } } });
    show(window);
    const auto switches = [] {
        rusage usage{};
        ::getrusage(RUSAGE_THREAD, &usage);
        return usage.ru_nvcsw;
    };
    std::thread waker([&] {
        ::usleep(100'000); // the idle time that is measured
        PostMessageA(window.get(), WM_USER, 0, 0);
    });
    const long before = switches();
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0))
        DispatchMessageA(&message);
    EXPECT_LE(switches() - before, 3);
    waker.join();
}

} // namespace
} // namespace test
