#include "platform/win32/kernel/process_end.h"

#include "platform/win32/kernel/never_destroyed.h"
#include "winbase.h"

#include <cstdio>
#include <mutex>
#include <utility>

#include <unistd.h>

namespace win32 {

namespace {

std::mutex& mutex()
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

AtProcessEnd::~AtProcessEnd()
{
    if (!holds_)
        return;
    const std::lock_guard lock(mutex());
    functions().erase(place_);
}

AtProcessEnd at_process_end(std::function<void()> function)
{
    const std::lock_guard lock(mutex());
    AtProcessEnd promise;
    promise.place_ = AtProcessEnd::functions().insert(AtProcessEnd::functions().begin(), std::move(function));
    promise.holds_ = true;
    return promise;
}

void run_process_end()
{
    mutex().lock(); // and never unlocked: the threads that come here wait for the end
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
