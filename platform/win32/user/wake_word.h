// How a message queue's thread sleeps. While it waits for messages alone it sleeps on the word itself (a futex); while
// it also watches a descriptor it polls that one and an eventfd. Whoever wakes a thread that is awake makes no system
// call.
#pragma once

#include "platform/win32/kernel/unique_fd.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <optional>

namespace win32 {

class WakeWord {
public:
    using Clock = std::chrono::steady_clock;

    WakeWord() = default;
    WakeWord(const WakeWord&) = delete;
    WakeWord& operator=(const WakeWord&) = delete;

    // From any thread: ends the sleep, or the next one before it begins.
    void wake();

    // The owner's: sleeps until `wake`, the deadline, or until `watched` (-1: none) is readable. May return early, so
    // the caller looks again.
    void sleep(int watched, std::optional<Clock::time_point> deadline);

private:
    enum State : std::uint32_t { kAwake, kSignalled, kOnWord, kPolling };

    void wait_on_word(std::optional<Clock::time_point> deadline);
    void poll(int watched, std::optional<Clock::time_point> deadline);

    std::atomic<std::uint32_t> state_{ kAwake };
    UniqueFd event_; // made before the first poll
};

} // namespace win32
