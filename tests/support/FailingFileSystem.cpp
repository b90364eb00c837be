#include "tests/support/FailingFileSystem.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>

namespace test {

using Base = win32::FileSystem;

void FailingFileSystem::fill_after(std::size_t bytes)
{
    const std::lock_guard lock(mutex_);
    room_ = bytes;
}

void FailingFileSystem::fail_nth(FileCall call, int nth, int error)
{
    const std::lock_guard lock(mutex_);
    Plan& plan = plans_[call];
    plan.fails_at = plan.calls + nth;
    plan.error = error;
}

void FailingFileSystem::fail_all(FileCall call, int error)
{
    const std::lock_guard lock(mutex_);
    plans_[call].fails_always = true;
    plans_[call].error = error;
}

void FailingFileSystem::before(FileCall call, std::function<void()> hook)
{
    const std::lock_guard lock(mutex_);
    plans_[call].hook = std::move(hook);
}

int FailingFileSystem::calls(FileCall call) const
{
    const std::lock_guard lock(mutex_);
    const auto plan = plans_.find(call);
    return plan == plans_.end() ? 0 : plan->second.calls;
}

int FailingFileSystem::enter(FileCall call)
{
    std::function<void()> hook;
    {
        const std::lock_guard lock(mutex_);
        Plan& plan = plans_[call];
        plan.calls++;
        if (plan.fails_always || plan.calls == plan.fails_at)
            return -plan.error;
        hook = plan.hook;
    }
    if (hook)
        hook(); // outside the lock: it may wait for a thread that uses files
    return 0;
}

bool FailingFileSystem::is_full() const
{
    const std::lock_guard lock(mutex_);
    return room_ == std::size_t{ 0 };
}

int FailingFileSystem::open(const std::string& path, int flags, mode_t mode)
{
    if (const int error = enter(FileCall::open); error != 0)
        return error;
    struct stat info {};
    const bool makes = (flags & O_TMPFILE) == O_TMPFILE || ((flags & O_CREAT) && Base::status(path, info) != 0);
    return makes && is_full() ? -ENOSPC : Base::open(path, flags, mode);
}

int FailingFileSystem::write(int descriptor, std::span<const std::byte> bytes)
{
    if (const int error = enter(FileCall::write); error != 0)
        return error;
    std::size_t fitting = bytes.size();
    {
        const std::lock_guard lock(mutex_);
        if (room_) {
            fitting = std::min(fitting, *room_);
            *room_ -= fitting;
        }
    }
    const int error = Base::write(descriptor, bytes.first(fitting));
    return error == 0 && fitting < bytes.size() ? -ENOSPC : error;
}

int FailingFileSystem::sync(int descriptor)
{
    const int error = enter(FileCall::sync);
    return error != 0 ? error : Base::sync(descriptor);
}

int FailingFileSystem::rename(const std::string& from, const std::string& to)
{
    const int error = enter(FileCall::rename);
    return error != 0 ? error : Base::rename(from, to);
}

int FailingFileSystem::remove_file(const std::string& path)
{
    const int error = enter(FileCall::remove_file);
    return error != 0 ? error : Base::remove_file(path);
}

int FailingFileSystem::make_directory(const std::string& path, mode_t mode)
{
    if (const int error = enter(FileCall::make_directory); error != 0)
        return error;
    struct stat info {};
    return is_full() && Base::status(path, info) != 0 ? -ENOSPC : Base::make_directory(path, mode);
}

int FailingFileSystem::remove_directory(const std::string& path)
{
    const int error = enter(FileCall::remove_directory);
    return error != 0 ? error : Base::remove_directory(path);
}

int FailingFileSystem::status(const std::string& path, struct stat& info)
{
    const int error = enter(FileCall::status);
    return error != 0 ? error : Base::status(path, info);
}

int FailingFileSystem::change_mode(int descriptor, mode_t mode)
{
    const int error = enter(FileCall::change_mode);
    return error != 0 ? error : Base::change_mode(descriptor, mode);
}

int FailingFileSystem::change_time(int descriptor, const struct timespec& modified)
{
    const int error = enter(FileCall::change_time);
    return error != 0 ? error : Base::change_time(descriptor, modified);
}

int FailingFileSystem::link_descriptor(int descriptor, const std::string& path)
{
    const int error = enter(FileCall::link_descriptor);
    return error != 0 ? error : Base::link_descriptor(descriptor, path);
}

WithFailingFileSystem::WithFailingFileSystem()
    : files_(std::make_shared<FailingFileSystem>()), before_(win32::exchange_file_system(files_))
{}

WithFailingFileSystem::~WithFailingFileSystem()
{
    win32::exchange_file_system(before_);
}

} // namespace test
