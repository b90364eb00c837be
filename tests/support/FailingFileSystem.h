// The real file system with the faults that a test asks for. Set them before another thread uses files.
#pragma once

#include "platform/win32/kernel/file_system.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <functional>
#include <memory>

#include <fcntl.h>

namespace test {

// The calls that change the disk.
enum class FileCall { open, write, sync, rename, remove_file, make_directory, link_descriptor };

class FailingFileSystem : public win32::FileSystem {
public:
    // The errno that a call fails with instead of being made, or 0. Asked on the caller's thread.
    std::function<int(FileCall)> fault = [](FileCall) { return 0; };
    bool nameless_files = true; // whether O_TMPFILE is known
    bool flushes = true;        // whether a flush reaches the disk

    void fail_all(FileCall failing, int error)
    {
        fault = [=](FileCall call) { return call == failing ? error : 0; };
    }
    // The disk takes this many more bytes; the write that does not fit puts down what does and fails, and so does every
    // new file and folder from then on.
    void fill_after(std::size_t bytes) { room_ = bytes; }

    int open(const std::string& path, int flags, mode_t mode) override
    {
        const bool nameless = (flags & O_TMPFILE) == O_TMPFILE;
        if (nameless && !nameless_files)
            return -EOPNOTSUPP;
        if ((flags & O_ACCMODE) == O_RDONLY)
            return FileSystem::open(path, flags, mode);
        const bool makes = nameless || ((flags & O_CREAT) && !exists(path));
        return unless_faulty(FileCall::open, makes, [&] { return FileSystem::open(path, flags, mode); });
    }
    int write(int descriptor, std::span<const std::byte> bytes) override
    {
        return unless_faulty(FileCall::write, false, [&] {
            const std::size_t fitting = take_room(bytes.size());
            const int error = FileSystem::write(descriptor, bytes.first(fitting));
            return error == 0 && fitting < bytes.size() ? -ENOSPC : error;
        });
    }
    int sync(int descriptor) override
    {
        return unless_faulty(FileCall::sync, false, [&] { return flushes ? FileSystem::sync(descriptor) : 0; });
    }
    int rename(const std::string& from, const std::string& to) override
    {
        return unless_faulty(FileCall::rename, false, [&] { return FileSystem::rename(from, to); });
    }
    int remove_file(const std::string& path) override
    {
        return unless_faulty(FileCall::remove_file, false, [&] { return FileSystem::remove_file(path); });
    }
    int make_directory(const std::string& path, mode_t mode) override
    {
        return unless_faulty(FileCall::make_directory, !exists(path),
                             [&] { return FileSystem::make_directory(path, mode); });
    }
    int link_descriptor(int descriptor, const std::string& path) override
    {
        return unless_faulty(FileCall::link_descriptor, false,
                             [&] { return FileSystem::link_descriptor(descriptor, path); });
    }

private:
    template <class Call>
    int unless_faulty(FileCall kind, bool needs_room, Call call)
    {
        if (const int error = fault(kind); error != 0)
            return -error;
        return needs_room && room_ == 0 ? -ENOSPC : call();
    }
    std::size_t take_room(std::size_t bytes)
    {
        std::size_t room = room_;
        while (!room_.compare_exchange_weak(room, room - std::min(bytes, room))) {
        }
        return std::min(bytes, room);
    }
    bool exists(const std::string& path)
    {
        struct stat info {};
        return FileSystem::status(path, info) == 0;
    }

    std::atomic<std::size_t> room_ = SIZE_MAX;
};

// Stands in for the process's file system while it lives.
class WithFailingFileSystem {
public:
    WithFailingFileSystem() = default;
    ~WithFailingFileSystem() { win32::exchange_file_system(before_); }
    WithFailingFileSystem(const WithFailingFileSystem&) = delete;
    WithFailingFileSystem& operator=(const WithFailingFileSystem&) = delete;

    FailingFileSystem* operator->() const { return files_.get(); }
    FailingFileSystem& operator*() const { return *files_; }

private:
    const std::shared_ptr<FailingFileSystem> files_ = std::make_shared<FailingFileSystem>();
    const std::shared_ptr<win32::FileSystem> before_ = win32::exchange_file_system(files_);
};

// For tests with thousands of files that no power cut threatens.
class WithoutFlushes : public WithFailingFileSystem {
public:
    WithoutFlushes() { (*this)->flushes = false; }
};

} // namespace test
