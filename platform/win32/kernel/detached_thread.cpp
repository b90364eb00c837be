#include "platform/win32/kernel/detached_thread.h"

#include <algorithm>
#include <climits>
#include <memory>

#include <pthread.h>
#include <unistd.h>

namespace win32 {

namespace {

using Body = std::function<void()>;

void* run(void* body)
{
    const std::unique_ptr<Body> owned(static_cast<Body*>(body));
    (*owned)();
    return nullptr;
}

// Rounded as the system wants it; a size that no system has keeps the call failing instead of wrapping round.
std::size_t whole_pages(std::size_t size)
{
    const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    const auto smallest = static_cast<std::size_t>(PTHREAD_STACK_MIN);
    return std::max(std::min(size, SIZE_MAX / 2) / page * page + page, smallest);
}

} // namespace

int start_detached_thread(std::size_t stack_size, Body body)
{
    pthread_attr_t attributes;
    if (const int error = ::pthread_attr_init(&attributes); error != 0)
        return error;
    (void)::pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED); // a valid state
    int error = stack_size == 0 ? 0 : ::pthread_attr_setstacksize(&attributes, whole_pages(stack_size));
    auto owned = std::make_unique<Body>(std::move(body));
    pthread_t thread;
    if (error == 0)
        error = ::pthread_create(&thread, &attributes, run, owned.get());
    if (error == 0)
        (void)owned.release(); // the thread's now
    (void)::pthread_attr_destroy(&attributes);
    return error;
}

} // namespace win32
