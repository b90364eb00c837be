// Which versions of the system count as new.
#pragma once

#include <windows.h>

namespace PelkGUI {

// From 5.1 on: the versions that draw captions with round corners, unless a window says otherwise.
constexpr bool IsNewVersion(DWORD nMajor, DWORD nMinor)
{
    return nMajor > 5 || (nMajor == 5 && nMinor >= 1);
}

} // namespace PelkGUI
