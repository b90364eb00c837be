// The calling thread's last error, and the one place that turns errno into it.
#pragma once

#include "windef.h"

namespace win32 {

// The documented error number for an errno value (ENOENT 2, EACCES 5, ENOSPC 112, EEXIST 183, ...).
DWORD error_from_errno(int error);

// Sets the thread's last error and gives `result` back, so that a guard reads `return fail(FALSE, ERROR_...)`.
void set_last_error(DWORD error);

template <class Result>
[[nodiscard]] Result fail(Result result, DWORD error)
{
    set_last_error(error);
    return result;
}

} // namespace win32
