// Sending and posting.
#include "platform/win32/kernel/last_error.h"
#include "platform/win32/user/window.h"
#include "winbase.h"
#include "winuser.h"

#include <algorithm>

namespace {

using namespace win32;

// What the documentation answers when a queue is full (1816, ERROR_NOT_ENOUGH_QUOTA).
constexpr DWORD kQueueFull = 1816;
constexpr DWORD kNoSuchThread = 1444; // ERROR_INVALID_THREAD_ID

std::vector<HWND> all_top_level_windows()
{
    const WindowLock lock = lock_windows();
    return top_level_windows(lock);
}

BOOL post_to(MessageQueue& queue, HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    const MSG posted{ window, message, wparam, lparam, GetTickCount(), {} };
    return queue.post(posted) ? TRUE : fail(FALSE, kQueueFull);
}

struct RegisteredMessages {
    std::mutex mutex;
    std::vector<std::string> names;
};

} // namespace

LRESULT SendMessageA(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    if (window == HWND_BROADCAST) {
        for (const HWND each : all_top_level_windows())
            SendMessageA(each, message, wparam, lparam);
        return 1;
    }
    const WindowPtr found = require_window(window);
    if (!found)
        return 0;
    const std::shared_ptr<MessageQueue>& mine = MessageQueue::current();
    if (found->queue == mine || !found->queue)
        return call_procedure(*found, message, wparam, lparam);
    SentMessage sent;
    sent.window = window;
    sent.message = message;
    sent.wparam = wparam;
    sent.lparam = lparam;
    return mine->send_and_wait(*found->queue, sent);
}

BOOL PostMessageA(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    if (!window)
        return post_to(*MessageQueue::current(), nullptr, message, wparam, lparam);
    if (window == HWND_BROADCAST) {
        for (const HWND each : all_top_level_windows())
            PostMessageA(each, message, wparam, lparam);
        return TRUE;
    }
    const WindowPtr found = require_window(window);
    if (!found || !found->queue)
        return FALSE;
    return post_to(*found->queue, window, message, wparam, lparam);
}

BOOL PostThreadMessageA(DWORD thread, UINT message, WPARAM wparam, LPARAM lparam)
{
    const std::shared_ptr<MessageQueue> queue = MessageQueue::of_thread(thread);
    return queue ? post_to(*queue, nullptr, message, wparam, lparam) : fail(FALSE, kNoSuchThread);
}

void PostQuitMessage(int exit_code)
{
    MessageQueue::current()->post_quit(exit_code);
}

LRESULT CallWindowProcA(WNDPROC procedure, HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    return procedure ? procedure(window, message, wparam, lparam) : 0;
}

UINT RegisterWindowMessageA(LPCSTR name)
{
    constexpr UINT kFirst = 0xC000;
    constexpr std::size_t kMost = 0x4000;
    static RegisteredMessages& registered = *std::make_unique<RegisteredMessages>().release();
    if (!name || !*name)
        return fail(0U, ERROR_INVALID_PARAMETER);
    const std::lock_guard lock(registered.mutex);
    auto& names = registered.names;
    auto found = std::find(names.begin(), names.end(), name);
    if (found == names.end()) {
        if (names.size() == kMost)
            return fail(0U, ERROR_NOT_ENOUGH_MEMORY);
        found = names.insert(names.end(), name);
    }
    return kFirst + static_cast<UINT>(found - names.begin());
}
