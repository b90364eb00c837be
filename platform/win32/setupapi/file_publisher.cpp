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
    changed_.wait(lock, [&] { return waiting_.size() < kMostWaiting; });
    waiting_.push_back(std::move(file));
    changed_.notify_all();
}

int FilePublisher::finish()
{
    {
        const std::lock_guard lock(mutex_);
        closed_ = true;
        changed_.notify_all();
    }
    if (thread_.joinable())
        thread_.join();
    return error_;
}

void FilePublisher::run()
{
    std::unique_lock lock(mutex_);
    for (;;) {
        changed_.wait(lock, [&] { return closed_ || !waiting_.empty(); });
        if (waiting_.empty())
            return;
        FileReplacement file = std::move(waiting_.front());
        waiting_.pop_front();
        changed_.notify_all();
        lock.unlock();
        commit(file);
        lock.lock();
    }
}

void FilePublisher::commit(FileReplacement& file)
{
    if (const int result = file.commit(); result != 0 && error_ == 0)
        error_ = result;
}

} // namespace win32
