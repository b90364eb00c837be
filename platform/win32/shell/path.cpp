#include "shlwapi.h"

BOOL WINAPI PathFileExistsA(LPCSTR path)
{
    return GetFileAttributesA(path) != INVALID_FILE_ATTRIBUTES;
}

BOOL WINAPI PathIsDirectoryA(LPCSTR path)
{
    const DWORD attributes = GetFileAttributesA(path);
    return attributes == INVALID_FILE_ATTRIBUTES ? FALSE : static_cast<BOOL>(attributes & FILE_ATTRIBUTE_DIRECTORY);
}
