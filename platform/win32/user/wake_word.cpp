#include "platform/win32/user/wake_word.h"

#include <algorithm>

#include <linux/futex.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace win32 {

namespace {

timespec left_until(WakeWord::Clock::time_point deadline)
{
    const auto left = std::max(deadline - WakeWord::Clock::now(), WakeWord::Clock::duration::zero());
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(left);
    return { seconds.count(), std::chrono::duration_cast<std::chrono::nanoseconds>(left - seconds).count() };
}

void futex(std::atomic<std::uint32_t>& word, int operation, std::uint32_t value, const timespec* timeout)
{
    static_assert(sizeof(word) == sizeof(std::uint32_t));
    ::syscall(SYS_futex, &word, operation, value, timeout, nullptr, 0);
}

} // namespace

void WakeWord::wake()
{
    switch (state_.exchange(kSignalled, std::memory_order_acq_rel)) {
    case kOnWord:
        futex(state_, FUTEX_WAKE_PRIVATE, 1, nullptr);
        break;
    case kPolling:
        ::eventfd_write(event_.get(), 1);
        break;
    default:
        break;
    }
}

void WakeWord::sleep(int watched, std::optional<Clock::time_point> deadline)
{
    if (watched >= 0 && !event_)
        event_.reset(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    // Without an eventfd (no descriptors left) the word alone is watched; the program is lost then anyway.
    const State mode = watched >= 0 && event_ ? kPolling : kOnWord;
    std::uint32_t awake = kAwake;
    if (state_.compare_exchange_strong(awake, mode, std::memory_order_acq_rel)) {
        if (mode == kOnWord)
            wait_on_word(deadline);
        else
            poll(watched, deadline);
    }
    state_.exchange(kAwake, std::memory_order_acq_rel);
}

void WakeWord::wait_on_word(std::optional<Clock::time_point> deadline)
{
    const timespec left = deadline ? left_until(*deadline) : timespec{};
    futex(state_, FUTEX_WAIT_PRIVATE, kOnWord, deadline ? &left : nullptr);
}

void WakeWord::poll(int watched, std::optional<Clock::time_point> deadline)
{
    pollfd descriptors[] = { { event_.get(), POLLIN, 0 }, { watched, POLLIN, 0 } };
    const timespec left = deadline ? left_until(*deadline) : timespec{};
    const int ready = ::ppoll(descriptors, std::size(descriptors), deadline ? &left : nullptr, nullptr);
    if (ready > 0 && descriptors[0].revents != 0) {
        eventfd_t count = 0;
        ::eventfd_read(event_.get(), &count);
    }
}

} // namespace win32
