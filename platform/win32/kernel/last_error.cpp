#include "platform/win32/kernel/last_error.h"

#include "winbase.h"

#include <cerrno>
#include <cstdlib>

namespace win32 {

namespace {

thread_local DWORD last_error = ERROR_SUCCESS;

struct ErrnoRow {
    int error;
    DWORD number;
};

constexpr ErrnoRow kErrnoTable[] = {
    { 0, ERROR_SUCCESS },
    { EACCES, ERROR_ACCESS_DENIED },
    { EBADF, ERROR_INVALID_HANDLE },
    { EBUSY, ERROR_SHARING_VIOLATION },
    { EDQUOT, ERROR_DISK_FULL },
    { EEXIST, ERROR_ALREADY_EXISTS },
    { EFBIG, ERROR_FILE_TOO_LARGE },
    { EINVAL, ERROR_INVALID_PARAMETER },
    { EIO, ERROR_IO_DEVICE },
    { EISDIR, ERROR_ACCESS_DENIED }, // a folder opened or removed as a file
    { ELIBBAD, ERROR_BAD_EXE_FORMAT },
    { ELOOP, ERROR_CANT_RESOLVE_FILENAME },
    { EMFILE, ERROR_TOO_MANY_OPEN_FILES },
    { ENAMETOOLONG, ERROR_FILENAME_EXCED_RANGE },
    { ENFILE, ERROR_TOO_MANY_OPEN_FILES },
    { ENODEV, ERROR_PATH_NOT_FOUND },
    { ENOENT, ERROR_FILE_NOT_FOUND },
    { ENOEXEC, ERROR_BAD_EXE_FORMAT },
    { ENOMEM, ERROR_NOT_ENOUGH_MEMORY },
    { ENOSPC, ERROR_DISK_FULL },
    { ENOTDIR, ERROR_PATH_NOT_FOUND }, // a file where a folder of the path should be
    { ENOTEMPTY, ERROR_DIR_NOT_EMPTY },
    { ENXIO, ERROR_FILE_NOT_FOUND },
    { EPERM, ERROR_ACCESS_DENIED },
    { EPIPE, ERROR_BROKEN_PIPE },
    { EROFS, ERROR_WRITE_PROTECT },
    { ETXTBSY, ERROR_SHARING_VIOLATION },
    { EXDEV, ERROR_NOT_SAME_DEVICE },
};

} // namespace

DWORD error_from_errno(int error)
{
    for (const ErrnoRow& row : kErrnoTable) {
        if (row.error == std::abs(error))
            return row.number;
    }
    return ERROR_GEN_FAILURE;
}

void set_last_error(DWORD error)
{
    last_error = error;
}

} // namespace win32

DWORD WINAPI GetLastError()
{
    return win32::last_error;
}

void WINAPI SetLastError(DWORD error)
{
    win32::set_last_error(error);
}
