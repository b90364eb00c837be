// A child process that is killed in the middle of its work.
#pragma once

#include "tests/support/WaitUntil.h"

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <new>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace test {

// Runs `work`, which never ends, in a child process, and kills that as soon as it has counted more than `steps`.
template <class Work>
void kill_after(int steps, Work work)
{
    void* const shared =
        ::mmap(nullptr, sizeof(std::atomic<int>), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    auto* const counted = new (shared) std::atomic<int>(0);
    const pid_t child = ::fork();
    if (child == 0)
        work(*counted);
    const bool reached = wait_until([&] { return *counted > steps; });
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    ::munmap(shared, sizeof(std::atomic<int>));
    if (!reached)
        std::abort(); // the child did nothing: there is nothing to test
}

} // namespace test
