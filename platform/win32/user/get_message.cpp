// Taking messages out of the queue, and handing them to windows.
#include "platform/win32/kernel/last_error.h"
#include "platform/win32/user/input.h"
#include "platform/win32/user/paint.h"
#include "platform/win32/user/window.h"
#include "winbase.h"
#include "winnls.h"
#include "winuser.h"

#include <algorithm>
#include <array>

namespace {

using namespace win32;

// The first message that the filter admits: sent ones are served on the way, then come posted ones, WM_QUIT, input,
// painting, timers.
std::optional<MSG> look(MessageQueue& queue, const MessageFilter& filter, UINT remove)
{
    for (;;) {
        while (queue.serve_sent()) {
        }
        if (auto message = queue.take_posted(filter, remove))
            return message;
        if (auto message = queue.take_quit(remove))
            return message;
        if (queue.has_surfaces())
            drain_screen();
        const Taken input = take_input(queue, filter, remove);
        if (input.message)
            return input.message;
        if (input.progress)
            continue; // what was handled may have sent and posted
        const Taken paint = take_paint(queue, filter, remove);
        if (paint.message)
            return paint.message;
        if (paint.progress)
            continue;
        return queue.take_timer(filter, remove);
    }
}

bool is_pointer_message(UINT message)
{
    return (message >= WM_MOUSEFIRST && message <= WM_MOUSELAST) ||
           (message >= WM_NCMOUSEMOVE && message <= WM_NCMBUTTONDBLCLK);
}

// Every message says where the pointer was when the input before it was made.
void note(MessageQueue& queue, MSG& message)
{
    InputState& input = queue.input();
    if (!is_pointer_message(message.message))
        message.pt = input.message_position;
    input.message_position = message.pt;
    input.message_time = message.time;
}

bool names_window(HWND filter)
{
    return !filter || filter == reinterpret_cast<HWND>(-1) || find_window(filter);
}

bool is_key_message(UINT message)
{
    return message == WM_KEYDOWN || message == WM_SYSKEYDOWN;
}

// The text of a key in the process's code page.
std::string to_code_page(const std::string& utf8)
{
    std::array<WCHAR, 64> wide{};
    std::array<char, 128> bytes{};
    const int units = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), wide.data(),
                                          static_cast<int>(wide.size()));
    const int length = WideCharToMultiByte(CP_ACP, 0, wide.data(), units, bytes.data(), static_cast<int>(bytes.size()),
                                           nullptr, nullptr);
    return std::string(bytes.data(), static_cast<std::size_t>(length));
}

} // namespace

BOOL GetMessageA(LPMSG message, HWND window, UINT first, UINT last)
{
    if (!message)
        return fail(-1, ERROR_INVALID_PARAMETER);
    const std::shared_ptr<MessageQueue> queue = MessageQueue::current();
    const MessageFilter filter{ window, first, last };
    for (;;) {
        if (!names_window(window))
            return fail(-1, ERROR_INVALID_WINDOW_HANDLE); // also when it goes while the call waits
        queue->present_overdue();
        if (const auto found = look(*queue, filter, PM_REMOVE)) {
            *message = *found;
            note(*queue, *message);
            return message->message != WM_QUIT;
        }
        if (queue->present())
            continue; // the screen may have read events while it showed the picture
        if (queue->has_surfaces())
            screen().flush();
        queue->wait_for_work();
    }
}

BOOL PeekMessageA(LPMSG message, HWND window, UINT first, UINT last, UINT remove)
{
    if (!message)
        return fail(FALSE, ERROR_INVALID_PARAMETER);
    const std::shared_ptr<MessageQueue> queue = MessageQueue::current();
    queue->present_overdue();
    const auto found = look(*queue, { window, first, last }, remove);
    if (!found) {
        queue->present();
        return FALSE;
    }
    *message = *found;
    note(*queue, *message);
    return TRUE;
}

BOOL WaitMessage()
{
    const std::shared_ptr<MessageQueue> queue = MessageQueue::current();
    while (!look(*queue, {}, PM_NOREMOVE)) {
        if (queue->present())
            continue;
        if (queue->has_surfaces())
            screen().flush();
        queue->wait_for_work();
    }
    return TRUE;
}

BOOL TranslateMessage(const MSG* message)
{
    if (!message || !is_key_message(message->message))
        return FALSE;
    const std::shared_ptr<MessageQueue>& queue = MessageQueue::current();
    const UINT character = message->message == WM_KEYDOWN ? WM_CHAR : WM_SYSCHAR;
    for (const char byte : to_code_page(std::exchange(queue->input().key_text, {}))) {
        const MSG posted{ message->hwnd,   character,     static_cast<unsigned char>(byte),
                          message->lParam, message->time, message->pt };
        (void)queue->post(posted); // a full queue loses keys, as documented of every post
    }
    return TRUE;
}

LRESULT DispatchMessageA(const MSG* message)
{
    if (!message)
        return 0;
    if (message->message == WM_TIMER && message->lParam != 0) {
        const auto procedure = reinterpret_cast<TIMERPROC>(message->lParam);
        // Only what SetTimer was given is called: a number that somebody posted is not.
        if (MessageQueue::current()->has_timer(message->hwnd, message->wParam, procedure))
            procedure(message->hwnd, WM_TIMER, message->wParam, GetTickCount());
        return 0;
    }
    const WindowPtr window = find_window(message->hwnd);
    if (!window || !window->queue || !window->queue->is_mine())
        return 0;
    return call_procedure(*window, message->message, message->wParam, message->lParam);
}

DWORD GetMessagePos()
{
    const POINT position = MessageQueue::current()->input().message_position;
    return static_cast<DWORD>(MAKELONG(static_cast<WORD>(position.x), static_cast<WORD>(position.y)));
}

LONG GetMessageTime()
{
    return static_cast<LONG>(MessageQueue::current()->input().message_time);
}

UINT_PTR SetTimer(HWND window, UINT_PTR id, UINT period, TIMERPROC procedure)
{
    const std::shared_ptr<MessageQueue>& queue = MessageQueue::current();
    if (window) {
        const WindowPtr found = require_window(window);
        if (!found)
            return 0;
        if (found->queue != queue)
            return fail(UINT_PTR{ 0 }, ERROR_ACCESS_DENIED);
    }
    const UINT bounded = std::clamp(period, USER_TIMER_MINIMUM, USER_TIMER_MAXIMUM);
    return queue->set_timer(window, id, std::chrono::milliseconds(bounded), procedure);
}

BOOL KillTimer(HWND window, UINT_PTR id)
{
    return MessageQueue::current()->kill_timer(window, id) ? TRUE : fail(FALSE, ERROR_INVALID_PARAMETER);
}
