// Tells when one of some files changes: is written, replaced, made or removed. Sleeps in between.
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

#include "platform/win32/kernel/unique_fd.h"

namespace skinview {

class FileWatch {
public:
    // Calls the function on a thread of its own, once a burst of changes has come to rest.
    explicit FileWatch(std::function<void()> changed);
    ~FileWatch();
    FileWatch(const FileWatch&) = delete;
    FileWatch& operator=(const FileWatch&) = delete;

    // These files from now on; changes of files that stay watched are not missed meanwhile. A file whose folder is not
    // there is not watched.
    void Watch(const std::vector<std::filesystem::path>& files);

private:
    void Run();
    bool TakeEvents();

    const std::function<void()> m_changed;
    win32::UniqueFd m_changes; // inotify
    win32::UniqueFd m_stop;    // readable: the thread is to end
    std::mutex m_mutex;
    std::map<int, std::set<std::string>> m_names; // that matter, by the watch of their folder; under m_mutex
    std::thread m_thread;
};

} // namespace skinview
