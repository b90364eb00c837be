// Time passed, and waiting for it to pass.
#include "winbase.h"

#include <cerrno>
#include <ctime>

#include <sched.h>
#include <unistd.h>

namespace {

constexpr long kNanosecondsPerSecond = 1'000'000'000;
constexpr long kNanosecondsPerMillisecond = 1'000'000;

struct timespec now()
{
    struct timespec time {};
    (void)::clock_gettime(CLOCK_MONOTONIC, &time); // this clock always exists
    return time;
}

} // namespace

void WINAPI Sleep(DWORD milliseconds)
{
    if (milliseconds == 0) {
        (void)::sched_yield(); // never fails here
        return;
    }
    while (milliseconds == INFINITE)
        (void)::pause(); // a signal only interrupts it
    struct timespec end = now();
    end.tv_sec += milliseconds / 1000;
    end.tv_nsec += static_cast<long>(milliseconds % 1000) * kNanosecondsPerMillisecond;
    if (end.tv_nsec >= kNanosecondsPerSecond) {
        end.tv_sec++;
        end.tv_nsec -= kNanosecondsPerSecond;
    }
    while (::clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &end, nullptr) == EINTR) {
    }
}

DWORD WINAPI GetTickCount()
{
    const struct timespec time = now();
    return static_cast<DWORD>(static_cast<ULONGLONG>(time.tv_sec) * 1000 +
                              static_cast<ULONGLONG>(time.tv_nsec / kNanosecondsPerMillisecond));
}
