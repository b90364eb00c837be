// Writes a file so that its place holds the old content or the new, whole, whatever stops us: the content grows in a
// file without a name in the same folder, is flushed, and takes the place in one step.
#pragma once

#include "platform/win32/kernel/process_end.h"
#include "platform/win32/kernel/unique_fd.h"

#include <cstddef>
#include <ctime>
#include <span>
#include <string>

#include <sys/types.h>

namespace win32 {

// Results are 0 or -errno. The object may move to another thread between calls. One that goes away without commit()
// leaves the place as it was and nothing beside it, and so does the end of the process.
class FileReplacement {
public:
    FileReplacement() = default;
    FileReplacement(FileReplacement&&) noexcept = default;
    FileReplacement& operator=(FileReplacement&& other) noexcept;
    ~FileReplacement() { discard(); }

    // Starts a file that shall stand at `path`, in a folder that exists; `mode` is cut by the umask. -EISDIR: a folder
    // stands there. A symbolic link in the place itself is replaced and never followed; links among the folders are the
    // user's own arrangement and are.
    int begin(const std::string& path, mode_t mode);

    int write(std::span<const std::byte> bytes);
    int set_time(const struct timespec& modified);

    // Flushes the content and puts it in its place. The folder's own entry is not flushed: see flush_folder.
    int commit();

private:
    int begin_named(mode_t mode);
    int put_in_place();
    int link_beside();
    void discard();

    UniqueFd descriptor_;
    std::string path_;
    std::string temporary_; // the name the content has for the moment; empty while it has none
    AtProcessEnd removal_;  // of a temporary name that stays for longer than a hold
};

// Makes the names in `folder` survive a power cut.
int flush_folder(const std::string& folder);

// Removes what replacements of processes that were killed left in `folder`; those of living ones stay.
void remove_abandoned_replacements(const std::string& folder);

// The folder part of a path: "." when it has none, "/" for the root's children.
std::string folder_of(const std::string& path);

} // namespace win32
