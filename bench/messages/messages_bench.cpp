// A message to another thread and back, beside the plainest thing that could do it: two eventfds and poll.
#include <windows.h>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <future>
#include <thread>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace {

constexpr UINT kStop = WM_APP + 1;

LRESULT CALLBACK answer(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    switch (message) {
    case WM_APP:
        return static_cast<LRESULT>(wparam) + 1;
    case kStop:
        DestroyWindow(window);
        PostQuitMessage(0);
        return 0;
    default:
        return DefWindowProcA(window, message, wparam, lparam);
    }
}

// The receiver owns a window on the screen, so its loop watches the screen as well.
void serve_messages(std::promise<HWND> made)
{
    WNDCLASSA window_class{};
    window_class.lpfnWndProc = answer;
    window_class.lpszClassName = "Receiver";
    RegisterClassA(&window_class);
    made.set_value(
        CreateWindowExA(0, "Receiver", "", WS_POPUP | WS_VISIBLE, 0, 0, 100, 100, nullptr, nullptr, nullptr, nullptr));
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0))
        DispatchMessageA(&message);
}

void send_message(benchmark::State& state)
{
    std::promise<HWND> made;
    std::future<HWND> window = made.get_future();
    std::thread receiver(serve_messages, std::move(made));
    const HWND target = window.get();
    for (auto _ : state)
        benchmark::DoNotOptimize(SendMessageA(target, WM_APP, 1, 0));
    PostMessageA(target, kStop, 0, 0);
    receiver.join();
}
BENCHMARK(send_message)->UseRealTime();

void post(int descriptor)
{
    const eventfd_t one = 1;
    (void)!::write(descriptor, &one, sizeof(one));
}

bool wait_for(int descriptor, int also_watched)
{
    pollfd watched[] = { { descriptor, POLLIN, 0 }, { also_watched, POLLIN, 0 } };
    ::poll(watched, 2, -1);
    eventfd_t count = 0;
    (void)!::read(descriptor, &count, sizeof(count));
    return count == 1;
}

void eventfd_pair(benchmark::State& state)
{
    const int there = ::eventfd(0, EFD_CLOEXEC);
    const int back = ::eventfd(0, EFD_CLOEXEC);
    const int never = ::eventfd(0, EFD_CLOEXEC);
    std::thread receiver([=] {
        while (wait_for(there, never))
            post(back);
    });
    for (auto _ : state) {
        post(there);
        benchmark::DoNotOptimize(wait_for(back, never));
    }
    const eventfd_t end = 2;
    (void)!::write(there, &end, sizeof(end));
    receiver.join();
    for (const int descriptor : { there, back, never })
        ::close(descriptor);
}
BENCHMARK(eventfd_pair)->UseRealTime();

void send_message_within_a_thread(benchmark::State& state)
{
    WNDCLASSA window_class{};
    window_class.lpfnWndProc = answer;
    window_class.lpszClassName = "Neighbour";
    RegisterClassA(&window_class);
    const HWND window =
        CreateWindowExA(0, "Neighbour", "", WS_POPUP, 0, 0, 100, 100, nullptr, nullptr, nullptr, nullptr);
    for (auto _ : state)
        benchmark::DoNotOptimize(SendMessageA(window, WM_APP, 1, 0));
    DestroyWindow(window);
}
BENCHMARK(send_message_within_a_thread);

} // namespace

int main(int argc, char** argv)
{
    ::setenv("SCREEN", "memory", 0);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
