// Questions about paths.
#pragma once

#include "windows.h"

// Whether a file or folder is there.
BOOL WINAPI PathFileExistsA(LPCSTR path);
// FILE_ATTRIBUTE_DIRECTORY when it is a folder, else FALSE.
BOOL WINAPI PathIsDirectoryA(LPCSTR path);
