#include "platform/win32/kernel/waitable.h"

#include "platform/win32/kernel/last_error.h"
#include "platform/win32/kernel/never_destroyed.h"
#include "winbase.h"

#include <algorithm>
#include <chrono>
#include <mutex>
#include <optional>
#include <vector>

#include <poll.h>
#include <sys/eventfd.h>

namespace win32 {

namespace {

using Clock = std::chrono::steady_clock;

std::mutex& wait_mutex()
{
    static NeverDestroyed<std::mutex> instance;
    return instance.get();
}

// Sleeps until one of the descriptors is readable or the deadline has come. False: the deadline has come.
bool poll_until(std::vector<struct pollfd>& descriptors, std::optional<Clock::time_point> deadline)
{
    struct timespec left {};
    if (deadline) {
        const auto time = std::chrono::duration_cast<std::chrono::nanoseconds>(*deadline - Clock::now());
        if (time.count() <= 0)
            return false;
        left = { static_cast<time_t>(time.count() / 1'000'000'000), static_cast<long>(time.count() % 1'000'000'000) };
    }
    (void)::ppoll(descriptors.data(), descriptors.size(), deadline ? &left : nullptr,
                  nullptr); // the caller looks again
    return true;
}

} // namespace

Waitable::Waitable(Reset reset) : reset_(reset), descriptor_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

void Waitable::set()
{
    const std::lock_guard lock(wait_mutex());
    if (!std::exchange(signalled_, true))
        (void)::eventfd_write(descriptor_.get(), 1); // the counter was 0, so it has room
}

void Waitable::reset()
{
    const std::lock_guard lock(wait_mutex());
    reset_locked();
}

void Waitable::take()
{
    if (reset_ == Reset::automatic)
        reset_locked();
}

void Waitable::reset_locked()
{
    eventfd_t count;
    if (std::exchange(signalled_, false))
        (void)::eventfd_read(descriptor_.get(), &count); // the counter was 1, so it is there to be read
}

DWORD wait_for(std::span<const std::shared_ptr<Waitable>> objects, bool all, DWORD timeout)
{
    const auto is_signalled = [](const std::shared_ptr<Waitable>& object) { return object->signalled_; };
    std::optional<Clock::time_point> deadline;
    if (timeout != INFINITE)
        deadline = Clock::now() + std::chrono::milliseconds(timeout);

    std::vector<struct pollfd> missing;
    do {
        const std::lock_guard lock(wait_mutex());
        const auto first = std::ranges::find_if(objects, is_signalled);
        if (!all && first != objects.end()) {
            (*first)->take();
            return WAIT_OBJECT_0 + static_cast<DWORD>(first - objects.begin());
        }
        if (all && std::ranges::all_of(objects, is_signalled)) {
            std::ranges::for_each(objects, [](const std::shared_ptr<Waitable>& object) { object->take(); });
            return WAIT_OBJECT_0;
        }
        missing.clear();
        for (const std::shared_ptr<Waitable>& object : objects) {
            if (!object->signalled_)
                missing.push_back({ object->descriptor(), POLLIN, 0 });
        }
    } while (poll_until(missing, deadline));
    return WAIT_TIMEOUT;
}

} // namespace win32

using namespace win32;

DWORD WINAPI WaitForSingleObject(HANDLE object, DWORD timeout)
{
    return WaitForMultipleObjects(1, &object, FALSE, timeout);
}

DWORD WINAPI WaitForMultipleObjects(DWORD count, const HANDLE* objects, BOOL wait_all, DWORD timeout)
{
    if (count == 0 || count > MAXIMUM_WAIT_OBJECTS || !objects)
        return fail(WAIT_FAILED, ERROR_INVALID_PARAMETER);
    std::vector<std::shared_ptr<Waitable>> waitables;
    waitables.reserve(count);
    for (const HANDLE handle : std::span(objects, count)) {
        std::shared_ptr<Waitable> waitable = find_object<Waitable>(handle);
        if (!waitable)
            return fail(WAIT_FAILED, ERROR_INVALID_HANDLE);
        if (wait_all && std::ranges::find(waitables, waitable) != waitables.end())
            return fail(WAIT_FAILED, ERROR_INVALID_PARAMETER); // its one signal cannot be taken twice
        waitables.push_back(std::move(waitable));
    }
    return wait_for(waitables, wait_all, timeout);
}
