#include "platform/win32/setupapi/file_publisher.h"

#include <system_error>
#include <utility>

namespace win32 {

FilePublisher::FilePublisher()
{
    try {
        thread_ = std::thread(&FilePublisher::run, this);
    } catch (const std::system_error&) {
        // slower alone, and right
    }
}

FilePublisher::~FilePublisher()
{
    (void)finish(); // whoever wants the error has asked before
}

void FilePublisher::publish(FileReplacement file)
{
    if (!thread_.joinable()) {
        commit(file);
        return;
    }
    std::unique_lock lock(mutex_);
    room_.wait(lock, [&] { return waiting_.size() < kMostWaiting; });
    waiting_.push_back(std::move(file));
    lock.unlock(); // whoever is woken finds the door open
    work_.notify_one();
}

void FilePublisher::settle()
{
    std::unique_lock lock(mutex_);
    room_.wait(lock, [&] { return waiting_.empty() && !committing_; });
}

int FilePublisher::finish()
{
    {
        const std::lock_guard lock(mutex_);
        closed_ = true;
    }
    work_.notify_one();
    if (thread_.joinable())
        thread_.join();
    return error_;
}

void FilePublisher::run()
{
    std::unique_lock lock(mutex_);
    for (;;) {
        work_.wait(lock, [&] { return closed_ || !waiting_.empty(); });
        if (waiting_.empty())
            return;
        FileReplacement file = std::move(waiting_.front());
        waiting_.pop_front();
        committing_ = true;
        lock.unlock();
        room_.notify_one();
        commit(file);
        lock.lock();
        committing_ = false;
        room_.notify_one(); // settle() waits for this, publish() for the other; only the walk waits, in one of them
    }
}

void FilePublisher::commit(FileReplacement& file)
{
    if (const int result = file.commit(); result != 0 && error_ == 0)
        error_ = result;
}

} // namespace win32
