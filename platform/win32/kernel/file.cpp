// Files: open, read, write, move about, flush, delete.
#include "platform/win32/kernel/file_system.h"
#include "platform/win32/kernel/kernel_object.h"
#include "platform/win32/kernel/last_error.h"
#include "platform/win32/kernel/native_path.h"
#include "platform/win32/kernel/program_resources.h"
#include "platform/win32/kernel/unique_fd.h"
#include "winbase.h"

#include <algorithm>
#include <cerrno>
#include <limits>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace win32 {

namespace {

class FileObject : public KernelObject {
public:
    explicit FileObject(UniqueFd descriptor) : descriptor_(std::move(descriptor)) {}
    int descriptor() const { return descriptor_.get(); }

private:
    const UniqueFd descriptor_;
};

constexpr DWORD kShareModes = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr mode_t kNewFileMode = 0666; // less what the user's mask takes away

// What a disposition asks of open(2): first of a new file, then, when one is there, of the old one.
struct DispositionRow {
    DWORD disposition;
    bool makes;
    bool takes_existing;
    bool truncates;
};

constexpr DispositionRow kDispositions[] = {
    { CREATE_NEW, true, false, false }, { CREATE_ALWAYS, true, true, true },      { OPEN_EXISTING, false, true, false },
    { OPEN_ALWAYS, true, true, false }, { TRUNCATE_EXISTING, false, true, true },
};

const DispositionRow* find_disposition(DWORD disposition)
{
    const auto* row = std::ranges::find(kDispositions, disposition, &DispositionRow::disposition);
    return row == std::end(kDispositions) ? nullptr : row;
}

int access_flags(DWORD access)
{
    const bool reads = access & GENERIC_READ;
    const bool writes = access & GENERIC_WRITE;
    const int how = reads && writes ? O_RDWR : writes ? O_WRONLY : O_RDONLY;
    return how | O_NOCTTY | O_NONBLOCK; // a pipe in a file's place must not make us wait
}

// Making and taking are two steps, so that the caller can learn which one it was; when others make or remove the file
// in between, the steps begin again.
constexpr int kOpenAttempts = 100;

struct Opened {
    int descriptor; // or -errno
    bool existed;
};

Opened open_as(const std::string& path, int access, const DispositionRow& how)
{
    // Not to wait for another end: the path may lead to a pipe.
    const int take_flags = access | (how.truncates ? O_TRUNC : 0) | O_NONBLOCK;
    int result = -ENOENT;
    for (int i = 0; i < kOpenAttempts; i++) {
        if (how.makes) {
            result = file_system().open(path, access | O_CREAT | O_EXCL, kNewFileMode);
            if (result != -EEXIST || !how.takes_existing)
                return { result, false };
        }
        result = file_system().open(path, take_flags, 0);
        if (result != -ENOENT || !how.makes)
            return { result, true };
    }
    return { result, false };
}

bool is_folder(int descriptor)
{
    struct stat info {};
    return ::fstat(descriptor, &info) == 0 && S_ISDIR(info.st_mode);
}

// Pieces small enough that the memory behind written resources stays small, large enough that calls cost nothing.
constexpr std::size_t kWritePiece = std::size_t{ 256 } * 1024;

// The bytes written before the failure, and -errno or 0.
struct Written {
    std::size_t count;
    int error;
};

Written write_in_pieces(int descriptor, std::span<const std::byte> bytes)
{
    for (std::size_t done = 0; done < bytes.size();) {
        const auto piece = bytes.subspan(done, std::min(kWritePiece, bytes.size() - done));
        if (const int error = file_system().write(descriptor, piece); error != 0)
            return { done, error };
        release_resource_pages(piece);
        done += piece.size();
    }
    return { bytes.size(), 0 };
}

std::optional<int> whence_of(DWORD method)
{
    switch (method) {
    case FILE_BEGIN:
        return SEEK_SET;
    case FILE_CURRENT:
        return SEEK_CUR;
    case FILE_END:
        return SEEK_END;
    default:
        return std::nullopt;
    }
}

// The new position, or nothing with the last error set.
std::optional<LONGLONG> seek(HANDLE handle, LONGLONG distance, DWORD method)
{
    const auto file = find_object<FileObject>(handle);
    const std::optional<int> whence = whence_of(method);
    if (!file || !whence) {
        set_last_error(file ? ERROR_INVALID_PARAMETER : ERROR_INVALID_HANDLE);
        return std::nullopt;
    }
    const off_t position = ::lseek(file->descriptor(), distance, *whence);
    if (position < 0) {
        set_last_error(errno == EINVAL ? ERROR_NEGATIVE_SEEK : error_from_errno(errno));
        return std::nullopt;
    }
    return position;
}

} // namespace

} // namespace win32

using namespace win32;

HANDLE WINAPI CreateFileA(LPCSTR name, DWORD access, DWORD share_mode, LPSECURITY_ATTRIBUTES, DWORD disposition, DWORD,
                          HANDLE)
{
    std::string path;
    if (const DWORD error = native_path(name, path); error != ERROR_SUCCESS)
        return fail(INVALID_HANDLE_VALUE, error);
    const DispositionRow* how = find_disposition(disposition);
    if (!how || (share_mode & ~kShareModes) != 0)
        return fail(INVALID_HANDLE_VALUE, ERROR_INVALID_PARAMETER);
    if (how->truncates && !(access & GENERIC_WRITE) && !how->makes)
        return fail(INVALID_HANDLE_VALUE, ERROR_INVALID_PARAMETER);

    const Opened opened = open_as(path, access_flags(access), *how);
    if (opened.descriptor < 0) {
        const DWORD error = error_for_path(opened.descriptor, path);
        return fail(INVALID_HANDLE_VALUE,
                    disposition == CREATE_NEW && error == ERROR_ALREADY_EXISTS ? ERROR_FILE_EXISTS : error);
    }
    UniqueFd descriptor(opened.descriptor);
    if (is_folder(descriptor.get()))
        return fail(INVALID_HANDLE_VALUE, ERROR_ACCESS_DENIED);
    set_last_error(how->makes && opened.existed ? ERROR_ALREADY_EXISTS : ERROR_SUCCESS);
    return open_handle(std::make_shared<FileObject>(std::move(descriptor)));
}

BOOL WINAPI ReadFile(HANDLE file, LPVOID buffer, DWORD size, LPDWORD read, LPOVERLAPPED overlapped)
{
    if (read)
        *read = 0;
    const auto object = find_object<FileObject>(file);
    if (!object)
        return fail(FALSE, ERROR_INVALID_HANDLE);
    if (!read || overlapped || (!buffer && size != 0))
        return fail(FALSE, ERROR_INVALID_PARAMETER);
    while (*read < size) {
        const ssize_t count = ::read(object->descriptor(), static_cast<char*>(buffer) + *read, size - *read);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return fail(FALSE, errno == EBADF ? ERROR_ACCESS_DENIED : error_from_errno(errno));
        if (count == 0)
            break;
        *read += static_cast<DWORD>(count);
    }
    return TRUE;
}

BOOL WINAPI WriteFile(HANDLE file, LPCVOID buffer, DWORD size, LPDWORD written, LPOVERLAPPED overlapped)
{
    if (written)
        *written = 0;
    const auto object = find_object<FileObject>(file);
    if (!object)
        return fail(FALSE, ERROR_INVALID_HANDLE);
    if (!written || overlapped || (!buffer && size != 0))
        return fail(FALSE, ERROR_INVALID_PARAMETER);
    const Written result =
        write_in_pieces(object->descriptor(), { static_cast<const std::byte*>(buffer), std::size_t{ size } });
    *written = static_cast<DWORD>(result.count);
    if (result.error != 0) // the handle is good, so EBADF says that it was not opened for writing
        return fail(FALSE, result.error == -EBADF ? ERROR_ACCESS_DENIED : error_from_errno(result.error));
    return TRUE;
}

DWORD WINAPI SetFilePointer(HANDLE file, LONG distance, LONG* distance_high, DWORD method)
{
    const LONGLONG whole =
        distance_high ? static_cast<LONGLONG>((static_cast<ULONGLONG>(static_cast<DWORD>(*distance_high)) << 32) |
                                              static_cast<DWORD>(distance))
                      : distance;
    const std::optional<LONGLONG> position = seek(file, whole, method);
    if (!position)
        return INVALID_SET_FILE_POINTER;
    if (distance_high)
        *distance_high = static_cast<LONG>(*position >> 32);
    else if (*position > std::numeric_limits<DWORD>::max())
        return fail(INVALID_SET_FILE_POINTER, ERROR_INVALID_PARAMETER);
    set_last_error(ERROR_SUCCESS); // 0xFFFFFFFF may be a position
    return static_cast<DWORD>(*position);
}

BOOL WINAPI SetFilePointerEx(HANDLE file, LARGE_INTEGER distance, PLARGE_INTEGER new_position, DWORD method)
{
    const std::optional<LONGLONG> position = seek(file, distance.QuadPart, method);
    if (!position)
        return FALSE;
    if (new_position)
        new_position->QuadPart = *position;
    return TRUE;
}

DWORD WINAPI GetFileSize(HANDLE file, LPDWORD size_high)
{
    const auto object = find_object<FileObject>(file);
    if (!object)
        return fail(INVALID_FILE_SIZE, ERROR_INVALID_HANDLE);
    struct stat info {};
    if (::fstat(object->descriptor(), &info) != 0)
        return fail(INVALID_FILE_SIZE, error_from_errno(errno));
    if (size_high)
        *size_high = static_cast<DWORD>(static_cast<ULONGLONG>(info.st_size) >> 32);
    set_last_error(ERROR_SUCCESS); // 0xFFFFFFFF may be a size
    return static_cast<DWORD>(info.st_size);
}

BOOL WINAPI FlushFileBuffers(HANDLE file)
{
    const auto object = find_object<FileObject>(file);
    if (!object)
        return fail(FALSE, ERROR_INVALID_HANDLE);
    if (const int error = file_system().sync(object->descriptor()); error != 0)
        return fail(FALSE, error_from_errno(error));
    return TRUE;
}

BOOL WINAPI DeleteFileA(LPCSTR name)
{
    std::string path;
    if (const DWORD error = native_path(name, path); error != ERROR_SUCCESS)
        return fail(FALSE, error);
    if (const int error = file_system().remove_file(path); error != 0)
        return fail(FALSE, error_for_path(error, path));
    return TRUE;
}
