// A thread's message queue: what was sent, posted and typed to its windows, its timers, and the sleep until there is
// something. Made when the thread first needs one; closed when the thread ends, which answers every sender with 0 and
// takes the thread's windows away.
//
// Queues, like the table of windows, are held by objects that are never destroyed: while the process ends, threads that
// still run find them alive.
#pragma once

#include "platform/win32/screen/screen.h"
#include "platform/win32/user/wake_word.h"
#include "winuser.h"

#include <atomic>
#include <bitset>
#include <deque>
#include <functional>
#include <memory>
#include <memory_resource>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace win32 {

class MessageQueue;
class TopSurface;

// Lives on the stack of the sender, which waits until it is answered.
struct SentMessage {
    HWND window = nullptr;
    UINT message = 0;
    WPARAM wparam = 0;
    LPARAM lparam = 0;
    const std::function<void()>* task = nullptr; // run instead of a window's procedure
    std::shared_ptr<MessageQueue> sender;
    LRESULT result = 0;
    std::atomic<bool> answered{ false };
};

// What GetMessageA and PeekMessageA let through.
struct MessageFilter {
    HWND window = nullptr; // null: all; -1: messages without a window
    UINT first = 0;
    UINT last = 0;

    bool admits(UINT message) const;
    bool admits(HWND target, UINT message) const;
};

// What only the thread itself touches: who has its input, and what the last messages said.
struct InputState {
    HWND active = nullptr;
    HWND focus = nullptr;
    HWND capture = nullptr;
    HWND leave_tracked = nullptr; // wants WM_MOUSELEAVE
    HCURSOR cursor = nullptr;
    HWND pointer_window = nullptr; // the top-level window that the pointer was over last
    std::bitset<256> keys;
    std::string key_text; // of the key message taken last, for TranslateMessage
    DWORD message_time = 0;
    POINT message_position{};
    struct Press {
        HWND window = nullptr;
        unsigned button = 0;
        DWORD time = 0;
        POINT position{};
    } last_press;
    struct Ready {
        MSG message;
        std::string text; // of a key
    };
    std::deque<Ready> ready; // input that became messages but was not taken yet
};

class MessageQueue {
public:
    using Clock = WakeWord::Clock;

    MessageQueue();

    // The calling thread's.
    static const std::shared_ptr<MessageQueue>& current();
    // Null: no such thread, or it has none.
    static std::shared_ptr<MessageQueue> of_thread(DWORD thread);

    DWORD thread() const { return thread_; }
    bool is_mine() const { return current().get() == this; }

    // ---- From any thread.

    // False: the thread has ended; the message is not taken.
    [[nodiscard]] bool send(SentMessage& sent);
    // False: the thread has ended, or its queue holds kMostPosted messages.
    [[nodiscard]] bool post(const MSG& message);
    void post_quit(int exit_code);
    void add_event(HWND window, const ScreenEvent& event);
    // Some window of the thread became invalid.
    void want_paint();
    void wake() { wake_.wake(); }

    // ---- The thread's own.

    // Answers what was sent to the window with 0 and drops everything else that names it.
    void forget_window(HWND window);
    // Handles one sent message; false: there is none.
    bool serve_sent();
    std::optional<MSG> take_posted(const MessageFilter& filter, UINT remove);
    std::optional<MSG> take_quit(UINT remove);
    struct WindowEvent {
        HWND window;
        ScreenEvent event;
    };
    std::optional<WindowEvent> take_event();
    // Whether to look for an invalid window; the next look is due after the next want_paint.
    bool take_paint_wish() { return paint_wanted_.exchange(false); }
    void keep_paint_wish() { paint_wanted_ = true; }
    std::optional<MSG> take_timer(const MessageFilter& filter, UINT remove);

    UINT_PTR set_timer(HWND window, UINT_PTR id, std::chrono::milliseconds period, TIMERPROC procedure);
    bool kill_timer(HWND window, UINT_PTR id);
    bool has_timer(HWND window, UINT_PTR id, TIMERPROC procedure) const;

    // Sleeps until there may be something to do. A thread with surfaces watches the screen too.
    void wait_for_work();
    // Sends and waits for the answer, serving what is sent to this thread meanwhile. 0 if `receiver` ends.
    LRESULT send_and_wait(MessageQueue& receiver, SentMessage& sent);

    void add_surface(std::shared_ptr<TopSurface> surface);
    void remove_surface(const TopSurface& surface);
    bool has_surfaces() const { return !surfaces_.empty(); }
    // Shows what was drawn since. False: nothing was.
    bool present();
    // The same when the oldest of it has waited for a frame's time: a flood of messages must not freeze the picture.
    void present_overdue();

    InputState& input() { return input_; }

    static constexpr std::size_t kMostPosted = 10000;

private:
    struct Timer {
        HWND window;
        UINT_PTR id;
        std::chrono::milliseconds period;
        Clock::time_point due;
        TIMERPROC procedure;
    };
    struct ThreadEnd;

    void close();
    static void answer(SentMessage& sent, LRESULT result);
    std::vector<Timer>::iterator find_timer(HWND window, UINT_PTR id);

    const DWORD thread_;
    WakeWord wake_;
    std::atomic<bool> paint_wanted_{ false };

    std::mutex mutex_; // guards what follows
    std::deque<SentMessage*> sent_;
    std::vector<SentMessage*> handled_;               // being handled, innermost last
    std::pmr::unsynchronized_pool_resource messages_; // a queue that runs takes nothing more from the heap
    std::pmr::deque<MSG> posted_{ &messages_ };
    std::pmr::deque<WindowEvent> events_{ &messages_ };
    std::optional<int> quit_;
    bool closed_ = false;

    std::vector<Timer> timers_; // from here on the thread's own
    UINT_PTR last_timer_id_ = 0;
    std::vector<std::shared_ptr<TopSurface>> surfaces_;
    InputState input_;
};

// Runs `task` on the queue's thread and returns when it is done; at once on that thread itself. False: the thread has
// ended and nothing ran.
bool run_on(const std::shared_ptr<MessageQueue>& queue, const std::function<void()>& task);

} // namespace win32
