// The calling thread's last error, and the one place that turns errno into it.
#pragma once

#include "windef.h"

namespace win32 {

// The documented error number for an errno value (ENOENT 2, EACCES 5, ENOSPC 112, EEXIST 183, ...). Takes either sign,
// so that a result of FileSystem fits as it is.
DWORD error_from_errno(int error);

void set_last_error(DWORD error);

// Sets the thread's last error and gives `result` back, so that a guard reads `return fail(FALSE, ERROR_...)`.
template <class Result>
[[nodiscard]] Result fail(Result result, DWORD error)
{
    set_last_error(error);
    return result;
}

} // namespace win32
