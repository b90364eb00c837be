#include "platform/win32/user/message_queue.h"

#include "platform/win32/user/input.h"
#include "platform/win32/user/top_surface.h"
#include "platform/win32/user/window.h"
#include "winbase.h"

#include <algorithm>
#include <map>
#include <utility>

namespace win32 {

namespace {

struct QueueTable {
    std::mutex mutex;
    std::map<DWORD, std::weak_ptr<MessageQueue>> by_thread;
};

QueueTable& queue_table()
{
    static QueueTable& table = *std::make_unique<QueueTable>().release();
    return table;
}

// For calls that a thread makes after it gave its queue up: destructors of static objects.
const std::shared_ptr<MessageQueue>& queue_after_end()
{
    static const auto& queue =
        *std::make_unique<std::shared_ptr<MessageQueue>>(std::make_shared<MessageQueue>()).release();
    return queue;
}

MSG message_of(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    return { window, message, wparam, lparam, GetTickCount(), {} };
}

} // namespace

bool MessageFilter::admits(UINT message) const
{
    return (first == 0 && last == 0) || (message >= first && message <= last);
}

bool MessageFilter::admits(HWND target, UINT message) const
{
    if (!admits(message))
        return false;
    if (!window)
        return true;
    if (window == reinterpret_cast<HWND>(-1))
        return !target;
    return target == window || IsChild(window, target);
}

// Closes the queue of a thread that ends.
struct MessageQueue::ThreadEnd {
    std::shared_ptr<MessageQueue> queue;

    ~ThreadEnd();
};

namespace {

thread_local bool thread_ended = false;

} // namespace

MessageQueue::ThreadEnd::~ThreadEnd()
{
    if (queue)
        queue->close();
    thread_ended = true;
}

MessageQueue::MessageQueue() : thread_(GetCurrentThreadId()) {}

const std::shared_ptr<MessageQueue>& MessageQueue::current()
{
    if (thread_ended)
        return queue_after_end();
    thread_local ThreadEnd end;
    if (!end.queue) {
        end.queue = std::make_shared<MessageQueue>();
        QueueTable& table = queue_table();
        const std::lock_guard lock(table.mutex);
        table.by_thread[end.queue->thread()] = end.queue;
    }
    return end.queue;
}

std::shared_ptr<MessageQueue> MessageQueue::of_thread(DWORD thread)
{
    QueueTable& table = queue_table();
    const std::lock_guard lock(table.mutex);
    const auto found = table.by_thread.find(thread);
    return found == table.by_thread.end() ? nullptr : found->second.lock();
}

bool MessageQueue::send(SentMessage& sent)
{
    {
        const std::lock_guard lock(mutex_);
        if (closed_)
            return false;
        sent_.push_back(&sent);
    }
    wake_.wake();
    return true;
}

bool MessageQueue::post(const MSG& message)
{
    {
        const std::lock_guard lock(mutex_);
        if (closed_ || posted_.size() >= kMostPosted)
            return false;
        posted_.push_back(message);
    }
    wake_.wake();
    return true;
}

void MessageQueue::post_quit(int exit_code)
{
    {
        const std::lock_guard lock(mutex_);
        quit_ = exit_code;
    }
    wake_.wake();
}

void MessageQueue::add_event(HWND window, const ScreenEvent& event)
{
    {
        const std::lock_guard lock(mutex_);
        // Of several moves that wait only the newest counts.
        const bool supersedes = event.kind == EventKind::pointer_move && !events_.empty() &&
                                events_.back().event.kind == EventKind::pointer_move &&
                                events_.back().window == window && events_.back().event.buttons == event.buttons &&
                                events_.back().event.modifiers == event.modifiers;
        if (supersedes)
            events_.back().event = event;
        else
            events_.push_back({ window, event });
    }
    wake_.wake();
}

void MessageQueue::want_paint()
{
    if (!paint_wanted_.exchange(true))
        wake_.wake();
}

void MessageQueue::answer(SentMessage& sent, LRESULT result)
{
    const std::shared_ptr<MessageQueue> sender = std::move(sent.sender);
    sent.result = result;
    sent.answered.store(true, std::memory_order_release);
    sender->wake(); // `sent` may be gone by now
}

void MessageQueue::forget_window(HWND window)
{
    std::vector<SentMessage*> unanswered;
    {
        const std::lock_guard lock(mutex_);
        const auto kept = std::stable_partition(sent_.begin(), sent_.end(),
                                                [window](const SentMessage* sent) { return sent->window != window; });
        unanswered.assign(kept, sent_.end());
        sent_.erase(kept, sent_.end());
        std::erase_if(posted_, [window](const MSG& message) { return message.hwnd == window; });
        std::erase_if(events_, [window](const WindowEvent& event) { return event.window == window; });
    }
    for (SentMessage* sent : unanswered)
        answer(*sent, 0);
    std::erase_if(timers_, [window](const Timer& timer) { return timer.window == window; });
    std::erase_if(input_.ready, [window](const InputState::Ready& ready) { return ready.message.hwnd == window; });
    for (HWND* role : { &input_.active, &input_.focus, &input_.capture, &input_.leave_tracked, &input_.pointer_window,
                        &input_.last_press.window }) {
        if (*role == window)
            *role = nullptr;
    }
}

bool MessageQueue::serve_sent()
{
    SentMessage* sent = nullptr;
    {
        const std::lock_guard lock(mutex_);
        if (sent_.empty())
            return false;
        sent = sent_.front();
        sent_.pop_front();
        handled_.push_back(sent);
    }
    LRESULT result = 0;
    if (sent->task)
        (*sent->task)();
    else if (const WindowPtr window = find_window(sent->window))
        result = call_procedure(*window, sent->message, sent->wparam, sent->lparam);
    {
        const std::lock_guard lock(mutex_);
        std::erase(handled_, sent);
    }
    answer(*sent, result);
    return true;
}

std::optional<MSG> MessageQueue::take_posted(const MessageFilter& filter, UINT remove)
{
    const std::lock_guard lock(mutex_);
    const auto found = std::find_if(posted_.begin(), posted_.end(), [&filter](const MSG& message) {
        return filter.admits(message.hwnd, message.message);
    });
    if (found == posted_.end())
        return std::nullopt;
    const MSG message = *found;
    if (remove & PM_REMOVE)
        posted_.erase(found);
    return message;
}

std::optional<MSG> MessageQueue::take_quit(UINT remove)
{
    const std::lock_guard lock(mutex_);
    if (!quit_ || !posted_.empty())
        return std::nullopt;
    const int exit_code = *quit_;
    if (remove & PM_REMOVE)
        quit_.reset();
    return message_of(nullptr, WM_QUIT, static_cast<WPARAM>(exit_code), 0);
}

std::optional<MessageQueue::WindowEvent> MessageQueue::take_event()
{
    const std::lock_guard lock(mutex_);
    if (events_.empty())
        return std::nullopt;
    WindowEvent event = std::move(events_.front());
    events_.pop_front();
    return event;
}

// A timer that is late fires once and then keeps its rhythm: the beats it missed are not made up for.
std::optional<MSG> MessageQueue::take_timer(const MessageFilter& filter, UINT remove)
{
    const Clock::time_point now = Clock::now();
    Timer* earliest = nullptr;
    for (Timer& timer : timers_) {
        if (timer.due <= now && filter.admits(timer.window, WM_TIMER) && (!earliest || timer.due < earliest->due))
            earliest = &timer;
    }
    if (!earliest)
        return std::nullopt;
    if (remove & PM_REMOVE)
        earliest->due += ((now - earliest->due) / earliest->period + 1) * earliest->period;
    return message_of(earliest->window, WM_TIMER, earliest->id, reinterpret_cast<LPARAM>(earliest->procedure));
}

std::vector<MessageQueue::Timer>::iterator MessageQueue::find_timer(HWND window, UINT_PTR id)
{
    return std::find_if(timers_.begin(), timers_.end(),
                        [=](const Timer& timer) { return timer.window == window && timer.id == id; });
}

UINT_PTR MessageQueue::set_timer(HWND window, UINT_PTR id, std::chrono::milliseconds period, TIMERPROC procedure)
{
    auto timer = find_timer(window, id);
    if (timer == timers_.end()) {
        // A timer without a window gets a number of ours.
        const UINT_PTR new_id = window ? id : ++last_timer_id_;
        timer = timers_.insert(timers_.end(), { window, new_id, {}, {}, nullptr });
    }
    timer->period = period;
    timer->due = Clock::now() + period;
    timer->procedure = procedure;
    return window && id == 0 ? 1 : timer->id; // success is never 0
}

bool MessageQueue::kill_timer(HWND window, UINT_PTR id)
{
    const auto timer = find_timer(window, id);
    if (timer == timers_.end())
        return false;
    timers_.erase(timer);
    return true;
}

bool MessageQueue::has_timer(HWND window, UINT_PTR id, TIMERPROC procedure) const
{
    return std::any_of(timers_.begin(), timers_.end(), [=](const Timer& timer) {
        return timer.window == window && timer.id == id && timer.procedure == procedure;
    });
}

void MessageQueue::wait_for_work()
{
    std::optional<Clock::time_point> deadline;
    for (const Timer& timer : timers_)
        deadline = deadline ? std::min(*deadline, timer.due) : timer.due;
    wake_.sleep(has_surfaces() && !display_is_lost() ? screen().descriptor() : -1, deadline);
}

LRESULT MessageQueue::send_and_wait(MessageQueue& receiver, SentMessage& sent)
{
    sent.sender = current();
    if (!receiver.send(sent))
        return 0;
    present();
    while (!sent.answered.load(std::memory_order_acquire)) {
        if (!serve_sent())
            wake_.sleep(-1, std::nullopt);
    }
    return sent.result;
}

void MessageQueue::add_surface(std::shared_ptr<TopSurface> surface)
{
    surfaces_.push_back(std::move(surface));
}

void MessageQueue::remove_surface(const TopSurface& surface)
{
    std::erase_if(surfaces_, [&surface](const auto& held) { return held.get() == &surface; });
}

bool MessageQueue::present()
{
    bool any = false;
    for (const auto& surface : surfaces_)
        any |= surface->present();
    if (any)
        screen().flush();
    return any;
}

void MessageQueue::present_overdue()
{
    const bool overdue =
        std::any_of(surfaces_.begin(), surfaces_.end(), [](const auto& surface) { return surface->is_overdue(); });
    if (overdue)
        present();
}

void MessageQueue::close()
{
    {
        QueueTable& table = queue_table();
        const std::lock_guard lock(table.mutex);
        table.by_thread.erase(thread_);
    }
    remove_windows_of(*this);
    std::vector<SentMessage*> unanswered;
    {
        const std::lock_guard lock(mutex_);
        closed_ = true;
        unanswered.assign(sent_.begin(), sent_.end());
        unanswered.insert(unanswered.end(), handled_.begin(), handled_.end());
        sent_.clear();
        handled_.clear();
        posted_.clear();
        events_.clear();
    }
    for (SentMessage* sent : unanswered)
        answer(*sent, 0);
}

bool run_on(const std::shared_ptr<MessageQueue>& queue, const std::function<void()>& task)
{
    const std::shared_ptr<MessageQueue>& mine = MessageQueue::current();
    if (queue == mine) {
        task();
        return true;
    }
    if (!queue)
        return false;
    SentMessage sent;
    sent.task = &task;
    bool ran = false;
    const std::function<void()> noted = [&] {
        task();
        ran = true;
    };
    sent.task = &noted;
    mine->send_and_wait(*queue, sent);
    return ran;
}

} // namespace win32
