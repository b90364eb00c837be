// Waiting on a condition with a deadline: the only way a test waits for something that another thread or process does.
#pragma once

#include <chrono>
#include <thread>

namespace test {

// True as soon as `condition()` is; false if it is not within the deadline, which only a broken program reaches.
template <class Condition>
[[nodiscard]] bool wait_until(Condition condition, std::chrono::milliseconds deadline = std::chrono::seconds(20))
{
    const auto end = std::chrono::steady_clock::now() + deadline;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= end)
            return condition();
        std::this_thread::yield();
    }
    return true;
}

} // namespace test
