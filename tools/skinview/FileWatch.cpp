#include "tools/skinview/FileWatch.h"

#include <cerrno>
#include <cstdint>

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace skinview {

FileWatch::FileWatch(std::function<void()> changed)
    : m_changed(std::move(changed)), m_changes(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)),
      m_stop(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    if (m_changes && m_stop)
        m_thread = std::thread([this] { Run(); });
}

FileWatch::~FileWatch()
{
    if (!m_thread.joinable())
        return;
    const std::uint64_t nOne = 1;
    while (::write(m_stop.get(), &nOne, sizeof(nOne)) < 0 && errno == EINTR) // a counter of 0 takes it
        continue;
    m_thread.join();
}

// Folders are watched: a file that another one of its name replaces would take a watch of its own with it.
void FileWatch::Watch(const std::vector<std::filesystem::path>& files)
{
    constexpr std::uint32_t kEvents = IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE;
    const std::lock_guard lock(m_mutex);
    m_names.clear();
    for (const std::filesystem::path& file : files) {
        const std::filesystem::path folder = file.has_parent_path() ? file.parent_path() : ".";
        // A folder that is watched already keeps its number.
        if (const int nWatch = ::inotify_add_watch(m_changes.get(), folder.c_str(), kEvents); nWatch >= 0)
            m_names[nWatch].insert(file.filename());
    }
}

// Takes all events that wait. True: one of them is of a file that matters.
bool FileWatch::TakeEvents()
{
    alignas(inotify_event) char buffer[16384];
    const std::lock_guard lock(m_mutex);
    bool bMatters = false;
    for (ssize_t nRead = 0; (nRead = ::read(m_changes.get(), buffer, sizeof(buffer))) > 0;) {
        for (ssize_t nAt = 0; nAt < nRead;) {
            const auto* const pEvent = reinterpret_cast<const inotify_event*>(buffer + nAt);
            const auto found = m_names.find(pEvent->wd);
            bMatters |= (pEvent->mask & IN_Q_OVERFLOW) != 0 ||
                        (pEvent->len > 0 && found != m_names.end() && found->second.contains(pEvent->name));
            nAt += static_cast<ssize_t>(sizeof(inotify_event)) + pEvent->len;
        }
    }
    return bMatters;
}

void FileWatch::Run()
{
    constexpr int kRest = 50; // milliseconds without a change: a program that saves several files is done
    pollfd waits[] = { { m_changes.get(), POLLIN, 0 }, { m_stop.get(), POLLIN, 0 } };
    bool bChanged = false;
    for (;;) {
        const int nReady = ::poll(waits, std::size(waits), bChanged ? kRest : -1);
        if ((nReady < 0 && errno != EINTR) || waits[1].revents != 0)
            return;
        if (nReady > 0)
            bChanged |= TakeEvents();
        else if (nReady == 0 && std::exchange(bChanged, false))
            m_changed();
    }
}

} // namespace skinview
