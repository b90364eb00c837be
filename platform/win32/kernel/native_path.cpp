#include "platform/win32/kernel/native_path.h"

#include "platform/win32/kernel/file_system.h"
#include "platform/win32/kernel/last_error.h"
#include "winbase.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace win32 {

DWORD native_path(LPCSTR text, std::string& path)
{
    if (!text || !*text)
        return ERROR_PATH_NOT_FOUND;
    const std::size_t length = ::strnlen(text, MAX_PATH);
    if (length >= static_cast<std::size_t>(MAX_PATH))
        return ERROR_FILENAME_EXCED_RANGE;
    path.assign(text, length);
    std::replace(path.begin(), path.end(), '\\', '/');
    return ERROR_SUCCESS;
}

DWORD error_for_path(int error, const std::string& path)
{
    if (std::abs(error) != ENOENT)
        return error_from_errno(error);
    const std::size_t name_end = path.find_last_not_of('/');
    const std::size_t slash = name_end == std::string::npos ? name_end : path.find_last_of('/', name_end);
    if (slash == std::string::npos || slash == 0)
        return ERROR_FILE_NOT_FOUND; // the current folder or the root stand above it
    struct stat info {};
    return file_system().status(path.substr(0, slash), info) == 0 ? ERROR_FILE_NOT_FOUND : ERROR_PATH_NOT_FOUND;
}

} // namespace win32
