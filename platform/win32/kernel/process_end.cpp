#include "platform/win32/kernel/process_end.h"

#include "platform/win32/kernel/never_destroyed.h"
#include "winbase.h"

#include <atomic>
#include <cstdio>
#include <mutex>
#include <shared_mutex>
#include <utility>

#include <unistd.h>

namespace win32 {

namespace {

// Set first when the process ends, so that new holds cannot keep the end waiting for ever.
std::atomic<bool> is_ending = false;
thread_local int holds_of_this_thread = 0;

std::shared_mutex& hold_mutex()
{
    static NeverDestroyed<std::shared_mutex> instance;
    return instance.get();
}

std::mutex& functions_mutex()
{
    static NeverDestroyed<std::mutex> instance;
    return instance.get();
}

// Another thread may sit in a write to standard output; then its text is lost rather than the end of the process.
void flush_standard_output()
{
    if (::ftrylockfile(stdout) != 0)
        return;
    (void)::fflush_unlocked(stdout); // nobody is left to tell
    ::funlockfile(stdout);
}

} // namespace

ProcessEndHold::ProcessEndHold()
{
    if (holds_of_this_thread++ > 0)
        return;
    while (is_ending)
        (void)::pause(); // until it has ended
    hold_mutex().lock_shared();
}

ProcessEndHold::~ProcessEndHold()
{
    if (--holds_of_this_thread == 0)
        hold_mutex().unlock_shared();
}

AtProcessEnd::Functions& AtProcessEnd::functions()
{
    static NeverDestroyed<Functions> instance;
    return instance.get();
}

AtProcessEnd::AtProcessEnd(AtProcessEnd&& other) noexcept
    : place_(other.place_), holds_(std::exchange(other.holds_, false))
{}

AtProcessEnd& AtProcessEnd::operator=(AtProcessEnd&& other) noexcept
{
    std::swap(place_, other.place_);
    std::swap(holds_, other.holds_);
    return *this;
}

void AtProcessEnd::give_back()
{
    if (!std::exchange(holds_, false))
        return;
    const std::lock_guard lock(functions_mutex());
    functions().erase(place_);
}

AtProcessEnd at_process_end(std::function<void()> function)
{
    const std::lock_guard lock(functions_mutex());
    AtProcessEnd promise;
    promise.place_ = AtProcessEnd::functions().insert(AtProcessEnd::functions().begin(), std::move(function));
    promise.holds_ = true;
    return promise;
}

void run_process_end()
{
    is_ending = true;
    hold_mutex().lock(); // neither is ever unlocked: threads that come here wait for the end
    functions_mutex().lock();
    for (const auto& function : AtProcessEnd::functions())
        function();
}

} // namespace win32

void WINAPI ExitProcess(UINT exit_code)
{
    win32::run_process_end();
    win32::flush_standard_output();
    ::_exit(static_cast<int>(exit_code));
}
