// Flushes finished files and puts them in their places on a thread of its own: the disk's answer to a flush comes while
// the next entry is announced, and costs the walk nothing.
#pragma once

#include "platform/win32/kernel/file_replacement.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <thread>

namespace win32 {

// Used from one thread. Files take their places in the order they came in.
class FilePublisher {
public:
    FilePublisher();
    ~FilePublisher();
    FilePublisher(const FilePublisher&) = delete;
    FilePublisher& operator=(const FilePublisher&) = delete;

    // Takes a written file. Waits while kMostWaiting others wait, so that a slow disk holds the walk back instead of
    // letting it run away from what is safe.
    void publish(FileReplacement file);

    // Waits until the files that were taken are in their places.
    void settle();

    // Waits until every file is in its place and takes no more; 0, or the -errno of the first that could not be put
    // there.
    int finish();

    static constexpr std::size_t kMostWaiting = 16;

private:
    void run();
    void commit(FileReplacement& file);

    std::mutex mutex_;
    std::condition_variable work_; // for the thread: something waits, or nothing will any more
    std::condition_variable room_; // for the walk: one fewer waits, or all are in their places
    std::deque<FileReplacement> waiting_;
    bool committing_ = false;
    bool closed_ = false;
    int error_ = 0;
    std::thread thread_; // none when the system gave us no thread: then publish() does the work itself
};

} // namespace win32
