// From the path texts of the interface to paths of the file system.
#pragma once

#include "windef.h"

#include <string>

namespace win32 {

// The file system's path for a path text: `\` becomes `/`, every other byte stays as it is.
//
// Every byte 0x5C separates, also where code page 936 would see the second byte of a character: the user's folders are
// UTF-8 here, in which any byte may stand before a separator, and callers that build folders along a path split it at
// that very byte. A file lands where its folders were made, whatever its name's encoding.
//
// ERROR_SUCCESS and `path`; or, `path` untouched, ERROR_PATH_NOT_FOUND for null or empty text and
// ERROR_FILENAME_EXCED_RANGE for one of MAX_PATH bytes or more.
[[nodiscard]] DWORD native_path(LPCSTR text, std::string& path);

// The error number of a call that failed with `error` on `path`. Tells a missing file (2) from a missing folder above
// it (3), which errno does not.
DWORD error_for_path(int error, const std::string& path);

} // namespace win32
