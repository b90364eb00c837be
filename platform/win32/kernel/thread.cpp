#include "platform/win32/kernel/detached_thread.h"
#include "platform/win32/kernel/last_error.h"
#include "platform/win32/kernel/waitable.h"
#include "winbase.h"

#include <atomic>
#include <condition_variable>
#include <mutex>

#include <unistd.h>

namespace win32 {

namespace {

class ThreadObject : public Waitable {
public:
    explicit ThreadObject(bool suspended) : Waitable(Reset::manual), suspended_(suspended) {}

    DWORD exit_code() const { return exit_code_; }

    // The thread's own life: says who it is, waits to be let go, works, and is signalled.
    void run(LPTHREAD_START_ROUTINE start, LPVOID parameter)
    {
        {
            std::unique_lock lock(mutex_);
            id_ = GetCurrentThreadId();
            changed_.notify_all();
            changed_.wait(lock, [this] { return !suspended_; });
        }
        exit_code_ = start(parameter);
        set();
    }

    // Whether it was suspended until now.
    bool resume()
    {
        const std::lock_guard lock(mutex_);
        changed_.notify_all();
        return std::exchange(suspended_, false);
    }

    DWORD wait_for_id()
    {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return id_ != 0; });
        return id_;
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool suspended_;
    DWORD id_ = 0;
    std::atomic<DWORD> exit_code_ = STILL_ACTIVE;
};

} // namespace

} // namespace win32

using namespace win32;

HANDLE WINAPI CreateThread(LPSECURITY_ATTRIBUTES, SIZE_T stack_size, LPTHREAD_START_ROUTINE start, LPVOID parameter,
                           DWORD flags, LPDWORD thread_id)
{
    if (!start || (flags & ~CREATE_SUSPENDED) != 0)
        return fail(HANDLE{}, ERROR_INVALID_PARAMETER);
    const auto thread = std::make_shared<ThreadObject>((flags & CREATE_SUSPENDED) != 0);
    if (!thread->is_valid())
        return fail(HANDLE{}, ERROR_TOO_MANY_OPEN_FILES);
    if (start_detached_thread(stack_size, [thread, start, parameter] { thread->run(start, parameter); }) != 0)
        return fail(HANDLE{}, ERROR_NOT_ENOUGH_MEMORY);
    if (thread_id)
        *thread_id = thread->wait_for_id();
    return open_handle(thread);
}

DWORD WINAPI ResumeThread(HANDLE thread)
{
    const auto object = find_object<ThreadObject>(thread);
    if (!object)
        return fail(static_cast<DWORD>(-1), ERROR_INVALID_HANDLE);
    return object->resume() ? 1 : 0;
}

BOOL WINAPI GetExitCodeThread(HANDLE thread, LPDWORD exit_code)
{
    const auto object = find_object<ThreadObject>(thread);
    if (!object || !exit_code)
        return fail(FALSE, object ? ERROR_INVALID_PARAMETER : ERROR_INVALID_HANDLE);
    *exit_code = object->exit_code();
    return TRUE;
}

DWORD WINAPI GetCurrentThreadId()
{
    static thread_local const auto id = static_cast<DWORD>(::gettid());
    return id;
}
