// The file system calls that a full disk, a missing permission or a kill can hit. Everything in the floor that changes
// the disk goes through here; tests put a failing one in its place.
#pragma once

#include <cstddef>
#include <ctime>
#include <memory>
#include <span>
#include <string>

#include <sys/stat.h>
#include <sys/types.h>

namespace win32 {

// Paths are bytes of the file system ('/' separates). Every call returns 0 (or what it says) on success and -errno on
// failure. The base class is the real thing.
class FileSystem {
public:
    virtual ~FileSystem() = default;

    // open(2) with O_CLOEXEC added; a descriptor that the caller owns.
    virtual int open(const std::string& path, int flags, mode_t mode);
    // Writes all of `bytes` or fails; how much of it reached the file is then unknown.
    virtual int write(int descriptor, std::span<const std::byte> bytes);
    virtual int sync(int descriptor);
    virtual int rename(const std::string& from, const std::string& to);
    virtual int remove_file(const std::string& path);
    virtual int make_directory(const std::string& path, mode_t mode);
    virtual int remove_directory(const std::string& path);
    virtual int status(const std::string& path, struct stat& info);
    virtual int change_mode(int descriptor, mode_t mode);
    virtual int change_time(int descriptor, const struct timespec& modified);
    // Gives an open unnamed file (O_TMPFILE) a name; fails with -EEXIST when the name is taken.
    virtual int link_descriptor(int descriptor, const std::string& path);
};

// The process's file system; never null.
FileSystem& file_system();

// Puts another one in its place and returns the one before; null stands for the real one. For tests; not while another
// thread uses files.
std::shared_ptr<FileSystem> exchange_file_system(std::shared_ptr<FileSystem> other);

} // namespace win32
