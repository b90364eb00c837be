// Folders, the attributes of what lies in them, and the current one.
#include "platform/win32/kernel/file_system.h"
#include "platform/win32/kernel/last_error.h"
#include "platform/win32/kernel/native_path.h"
#include "winbase.h"

#include <cerrno>
#include <climits>
#include <cstring>

#include <sys/stat.h>
#include <unistd.h>

using namespace win32;

BOOL WINAPI CreateDirectoryA(LPCSTR name, LPSECURITY_ATTRIBUTES)
{
    std::string path;
    if (const DWORD error = native_path(name, path); error != ERROR_SUCCESS)
        return fail(FALSE, error);
    const int result = file_system().make_directory(path, 0777);
    if (result == -ENOENT)
        return fail(FALSE, ERROR_PATH_NOT_FOUND); // only a folder above it can be missing
    if (result != 0)
        return fail(FALSE, error_from_errno(result));
    return TRUE;
}

BOOL WINAPI RemoveDirectoryA(LPCSTR name)
{
    std::string path;
    if (const DWORD error = native_path(name, path); error != ERROR_SUCCESS)
        return fail(FALSE, error);
    const int result = file_system().remove_directory(path);
    if (result == -ENOTDIR) {
        struct stat info {}; // the last name itself is no folder, or one above it
        return fail(FALSE, file_system().status(path, info) == 0 ? ERROR_DIRECTORY : ERROR_PATH_NOT_FOUND);
    }
    if (result != 0)
        return fail(FALSE, error_for_path(result, path));
    return TRUE;
}

DWORD WINAPI GetFileAttributesA(LPCSTR name)
{
    std::string path;
    if (const DWORD error = native_path(name, path); error != ERROR_SUCCESS)
        return fail(INVALID_FILE_ATTRIBUTES, error);
    struct stat info {};
    if (const int error = file_system().status(path, info); error != 0)
        return fail(INVALID_FILE_ATTRIBUTES, error_for_path(error, path));
    const DWORD read_only = (info.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0 ? FILE_ATTRIBUTE_READONLY : 0;
    if (S_ISDIR(info.st_mode))
        return FILE_ATTRIBUTE_DIRECTORY | read_only;
    return read_only ? read_only : FILE_ATTRIBUTE_NORMAL;
}

BOOL WINAPI SetCurrentDirectoryA(LPCSTR name)
{
    std::string path;
    if (const DWORD error = native_path(name, path); error != ERROR_SUCCESS)
        return fail(FALSE, error);
    if (::chdir(path.c_str()) == 0)
        return TRUE;
    const int error = errno;
    struct stat info {};
    if (error == ENOTDIR && file_system().status(path, info) == 0)
        return fail(FALSE, ERROR_DIRECTORY);
    return fail(FALSE, error_for_path(error, path));
}

DWORD WINAPI GetCurrentDirectoryA(DWORD size, LPSTR buffer)
{
    char path[PATH_MAX];
    if (!::getcwd(path, sizeof path))
        return fail(DWORD{ 0 }, error_from_errno(errno));
    const auto length = static_cast<DWORD>(std::strlen(path));
    if (!buffer || size <= length)
        return length + 1;
    std::memcpy(buffer, path, length + 1);
    return length;
}
