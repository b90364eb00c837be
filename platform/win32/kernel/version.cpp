#include "platform/win32/kernel/last_error.h"
#include "winbase.h"

BOOL WINAPI GetVersionExA(LPOSVERSIONINFOA version)
{
    if (!version)
        return win32::fail(FALSE, ERROR_INVALID_PARAMETER);
    if (version->dwOSVersionInfoSize != sizeof(OSVERSIONINFOA))
        return win32::fail(FALSE, ERROR_INSUFFICIENT_BUFFER);
    *version = { sizeof(OSVERSIONINFOA), 5, 1, 2600, VER_PLATFORM_WIN32_NT, {} };
    return TRUE;
}
