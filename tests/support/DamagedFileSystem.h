// The real file system with one fault.
#pragma once

#include "platform/win32/kernel/file_system.h"

#include <atomic>
#include <cerrno>
#include <memory>
#include <utility>

#include <fcntl.h>

namespace test {

class DamagedFileSystem : public win32::FileSystem {
public:
    int fail_at = -1;           // which change to the disk fails, counted from 0
    int fault = -ENOSPC;        // how
    bool stays_broken = false;  // and so does every later write
    bool nameless_files = true; // whether O_TMPFILE is known
    bool flushes = true;        // whether the disk is asked for anything
    std::atomic<int> changes = 0;

    int open(const std::string& path, int flags, mode_t mode) override
    {
        if (!nameless_files && (flags & O_TMPFILE) == O_TMPFILE)
            return -EOPNOTSUPP;
        return (flags & O_ACCMODE) == O_RDONLY
                   ? FileSystem::open(path, flags, mode)
                   : unless_faulty(false, [&] { return FileSystem::open(path, flags, mode); });
    }
    int write(int descriptor, std::span<const std::byte> bytes) override
    {
        return unless_faulty(true, [&] { return FileSystem::write(descriptor, bytes); });
    }
    int sync(int descriptor) override
    {
        return unless_faulty(true, [&] { return flushes ? FileSystem::sync(descriptor) : 0; });
    }
    int rename(const std::string& from, const std::string& to) override
    {
        return unless_faulty(false, [&] { return FileSystem::rename(from, to); });
    }
    int link_descriptor(int descriptor, const std::string& path) override
    {
        return unless_faulty(false, [&] { return FileSystem::link_descriptor(descriptor, path); });
    }

private:
    template <class Call>
    int unless_faulty(bool fills_the_disk, Call call)
    {
        const int change = changes++;
        const bool broken = stays_broken && fills_the_disk && fail_at >= 0 && change > fail_at;
        return change == fail_at || broken ? fault : call();
    }
};

// Puts a file system in the process's place for as long as it lives.
class FileSystemInPlace {
public:
    explicit FileSystemInPlace(std::shared_ptr<win32::FileSystem> other)
        : before_(win32::exchange_file_system(std::move(other)))
    {}
    ~FileSystemInPlace() { win32::exchange_file_system(std::move(before_)); }
    FileSystemInPlace(const FileSystemInPlace&) = delete;
    FileSystemInPlace& operator=(const FileSystemInPlace&) = delete;

private:
    std::shared_ptr<win32::FileSystem> before_;
};

} // namespace test
