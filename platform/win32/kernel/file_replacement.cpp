#include "platform/win32/kernel/file_replacement.h"

#include "platform/win32/kernel/file_system.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <string_view>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/stat.h>

namespace win32 {

namespace {

// A temporary's name is this and kDigits hexadecimal ones. Its writer holds a lock on it, so one that nobody has locked
// belongs to nobody.
constexpr std::string_view kTemporaryPrefix = ".unpack-";
constexpr std::size_t kDigits = 16;
constexpr int kAttempts = 100;

std::string temporary_in(const std::string& folder)
{
    std::uint64_t random = 0;
    if (::getrandom(&random, sizeof random, 0) != sizeof random)
        random = reinterpret_cast<std::uintptr_t>(&random) ^
                 static_cast<std::uint64_t>(::getpid()); // a taken name is tried again
    std::string name(kTemporaryPrefix);
    for (std::size_t i = 0; i < kDigits; i++, random >>= 4)
        name += "0123456789abcdef"[random & 15];
    return folder + '/' + name;
}

bool is_temporary(std::string_view name)
{
    return name.size() == kTemporaryPrefix.size() + kDigits &&
           name.substr(0, kTemporaryPrefix.size()) == kTemporaryPrefix;
}

bool lock(int descriptor)
{
    return ::flock(descriptor, LOCK_EX | LOCK_NB) == 0;
}

} // namespace

std::string folder_of(const std::string& path)
{
    const std::size_t slash = path.find_last_of('/');
    if (slash == std::string::npos)
        return ".";
    return path.substr(0, std::max<std::size_t>(slash, 1));
}

FileReplacement& FileReplacement::operator=(FileReplacement&& other) noexcept
{
    if (this != &other) {
        discard();
        descriptor_ = std::move(other.descriptor_);
        path_ = std::move(other.path_);
        temporary_ = std::exchange(other.temporary_, {});
        removal_ = std::move(other.removal_);
    }
    return *this;
}

int FileReplacement::begin(const std::string& path, mode_t mode)
{
    discard();
    path_ = path;
    struct stat standing {};
    if (path.empty() || path.back() == '/')
        return -EISDIR;
    if (file_system().status(path, standing) == 0 && S_ISDIR(standing.st_mode))
        return -EISDIR;
    const int descriptor = file_system().open(folder_of(path), O_TMPFILE | O_WRONLY, mode);
    if (descriptor == -EOPNOTSUPP || descriptor == -EISDIR) // what file systems answer that have no nameless files
        return begin_named(mode);
    if (descriptor < 0)
        return descriptor;
    descriptor_.reset(descriptor);
    return 0;
}

int FileReplacement::begin_named(mode_t mode)
{
    for (int attempt = 0; attempt < kAttempts; attempt++) {
        const std::string name = temporary_in(folder_of(path_));
        const ProcessEndHold hold;
        const int descriptor = file_system().open(name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, mode);
        if (descriptor == -EEXIST)
            continue;
        if (descriptor < 0)
            return descriptor;
        descriptor_.reset(descriptor);
        temporary_ = name;
        removal_ = at_process_end([name] { (void)file_system().remove_file(name); }); // as discard() does
        struct stat info {};
        if (lock(descriptor) && ::fstat(descriptor, &info) == 0 && info.st_nlink > 0)
            return 0;
        discard(); // somebody took it for abandoned before the lock was ours
    }
    return -EEXIST;
}

int FileReplacement::write(std::span<const std::byte> bytes)
{
    return file_system().write(descriptor_.get(), bytes);
}

int FileReplacement::set_time(const struct timespec& modified)
{
    return file_system().change_time(descriptor_.get(), modified);
}

int FileReplacement::commit()
{
    int result = file_system().sync(descriptor_.get());
    const ProcessEndHold hold; // a name beside the place lives no longer than this
    if (result == 0)
        result = put_in_place();
    discard();
    return result;
}

int FileReplacement::put_in_place()
{
    if (temporary_.empty()) {
        const int linked = file_system().link_descriptor(descriptor_.get(), path_);
        if (linked != -EEXIST)
            return linked;
        if (const int beside = link_beside(); beside != 0)
            return beside;
    }
    const int renamed = file_system().rename(temporary_, path_);
    if (renamed == 0) {
        temporary_.clear();
        removal_.give_back();
    }
    return renamed;
}

// Gives the content a name beside the place, from where it can be renamed over what stands there.
int FileReplacement::link_beside()
{
    lock(descriptor_.get()); // before it has a name that somebody could take for abandoned
    for (int attempt = 0; attempt < kAttempts; attempt++) {
        std::string name = temporary_in(folder_of(path_));
        const int linked = file_system().link_descriptor(descriptor_.get(), name);
        if (linked == -EEXIST)
            continue;
        if (linked == 0)
            temporary_ = std::move(name);
        return linked;
    }
    return -EEXIST;
}

void FileReplacement::discard()
{
    if (temporary_.empty()) {
        descriptor_.reset();
        return;
    }
    const ProcessEndHold hold;
    (void)file_system().remove_file(temporary_); // nothing more can be done about it; the next installation will
    temporary_.clear();
    removal_.give_back();
    descriptor_.reset();
}

int flush_folder(const std::string& folder)
{
    const int opened = file_system().open(folder, O_RDONLY | O_DIRECTORY, 0);
    if (opened < 0)
        return opened;
    const UniqueFd descriptor(opened);
    return file_system().sync(descriptor.get());
}

void remove_abandoned_replacements(const std::string& folder)
{
    DIR* listing = ::opendir(folder.c_str());
    if (!listing)
        return;
    while (const dirent* entry = ::readdir(listing)) {
        if (!is_temporary(entry->d_name))
            continue;
        const std::string path = folder + '/' + entry->d_name;
        const UniqueFd descriptor(file_system().open(path, O_WRONLY | O_NOFOLLOW | O_NONBLOCK, 0));
        if (descriptor && lock(descriptor.get()))
            (void)file_system().remove_file(path);
    }
    ::closedir(listing);
}

} // namespace win32
