#include "platform/win32/kernel/file_system.h"

#include "platform/win32/kernel/never_destroyed.h"
#include "platform/win32/kernel/process_begin.h"

#include <cerrno>
#include <cstdio>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace win32 {

namespace {

int result_of(int returned)
{
    return returned < 0 ? -errno : returned;
}

// Stands beside what every program's files go through, so that no program is linked without it.
[[gnu::constructor]] void before_main()
{
    prepare_process();
}

std::shared_ptr<FileSystem>& replacement()
{
    static NeverDestroyed<std::shared_ptr<FileSystem>> instance;
    return instance.get();
}

} // namespace

int FileSystem::open(const std::string& path, int flags, mode_t mode)
{
    return result_of(::open(path.c_str(), flags | O_CLOEXEC, mode));
}

int FileSystem::write(int descriptor, std::span<const std::byte> bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return -errno;
        if (written == 0)
            return -ENOSPC; // a device that takes nothing more
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return 0;
}

int FileSystem::sync(int descriptor)
{
    return result_of(::fsync(descriptor));
}

int FileSystem::rename(const std::string& from, const std::string& to)
{
    return result_of(::rename(from.c_str(), to.c_str()));
}

int FileSystem::remove_file(const std::string& path)
{
    return result_of(::unlink(path.c_str()));
}

int FileSystem::make_directory(const std::string& path, mode_t mode)
{
    return result_of(::mkdir(path.c_str(), mode));
}

int FileSystem::remove_directory(const std::string& path)
{
    return result_of(::rmdir(path.c_str()));
}

int FileSystem::status(const std::string& path, struct stat& info)
{
    return result_of(::stat(path.c_str(), &info));
}

int FileSystem::change_mode(int descriptor, mode_t mode)
{
    return result_of(::fchmod(descriptor, mode));
}

int FileSystem::change_time(int descriptor, const struct timespec& modified)
{
    const struct timespec times[2] = { { 0, UTIME_OMIT }, modified };
    return result_of(::futimens(descriptor, times));
}

int FileSystem::link_descriptor(int descriptor, const std::string& path)
{
    // the file has no name yet: the way to it leads through the descriptor's own entry
    char source[32];
    (void)std::snprintf(source, sizeof source, "/proc/self/fd/%d", descriptor); // always fits
    return result_of(::linkat(AT_FDCWD, source, AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW));
}

FileSystem& file_system()
{
    static NeverDestroyed<FileSystem> real;
    FileSystem* const other = replacement().get();
    return other ? *other : real.get();
}

std::shared_ptr<FileSystem> exchange_file_system(std::shared_ptr<FileSystem> other)
{
    return std::exchange(replacement(), std::move(other));
}

} // namespace win32
