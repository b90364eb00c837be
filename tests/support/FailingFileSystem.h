// A file system that fails when a test says so, and is the real one otherwise.
#pragma once

#include "platform/win32/kernel/file_system.h"

#include <functional>
#include <map>
#include <mutex>
#include <optional>

namespace test {

enum class FileCall {
    open,
    write,
    sync,
    rename,
    remove_file,
    make_directory,
    remove_directory,
    status,
    change_mode,
    change_time,
    link_descriptor,
};

// Everything may be set and asked while other threads use the file system.
class FailingFileSystem : public win32::FileSystem {
public:
    // The disk takes this many more bytes; the write that does not fit puts down what does and fails with ENOSPC, and
    // so does every new file and folder from then on.
    void fill_after(std::size_t bytes);
    // The `nth` call of this kind from now (1: the next one) fails with `error` and does nothing; later ones succeed.
    void fail_nth(FileCall call, int nth, int error);
    // Every call of this kind fails from now on.
    void fail_all(FileCall call, int error);
    // Runs before each call of this kind that succeeds: a slow disk, a signal to a thread, a kill.
    void before(FileCall call, std::function<void()> hook);

    // How often a kind was called.
    int calls(FileCall call) const;

    int open(const std::string& path, int flags, mode_t mode) override;
    int write(int descriptor, std::span<const std::byte> bytes) override;
    int sync(int descriptor) override;
    int rename(const std::string& from, const std::string& to) override;
    int remove_file(const std::string& path) override;
    int make_directory(const std::string& path, mode_t mode) override;
    int remove_directory(const std::string& path) override;
    int status(const std::string& path, struct stat& info) override;
    int change_mode(int descriptor, mode_t mode) override;
    int change_time(int descriptor, const struct timespec& modified) override;
    int link_descriptor(int descriptor, const std::string& path) override;

private:
    struct Plan {
        int calls = 0;
        int fails_at = 0; // in `calls`; 0: never
        bool fails_always = false;
        int error = 0;
        std::function<void()> hook;
    };

    // 0, or the -errno the call must fail with.
    int enter(FileCall call);
    bool is_full() const;

    mutable std::mutex mutex_;
    std::map<FileCall, Plan> plans_;
    std::optional<std::size_t> room_;
};

// Stands in for the process's file system while it lives.
class WithFailingFileSystem {
public:
    WithFailingFileSystem();
    ~WithFailingFileSystem();
    WithFailingFileSystem(const WithFailingFileSystem&) = delete;
    WithFailingFileSystem& operator=(const WithFailingFileSystem&) = delete;

    FailingFileSystem* operator->() const { return files_.get(); }

private:
    const std::shared_ptr<FailingFileSystem> files_;
    const std::shared_ptr<win32::FileSystem> before_;
};

} // namespace test
