// Starting programs.
#pragma once

#include "windows.h"

inline constexpr ULONG SEE_MASK_DEFAULT = 0;
inline constexpr ULONG SEE_MASK_NOCLOSEPROCESS = 0x40;

// What hInstApp says of a failure; above 32 the program was started.
inline constexpr int SE_ERR_FNF = 2;
inline constexpr int SE_ERR_PNF = 3;
inline constexpr int SE_ERR_ACCESSDENIED = 5;
inline constexpr int SE_ERR_OOM = 8;
inline constexpr int SE_ERR_SHARE = 26;
inline constexpr int SE_ERR_NOASSOC = 31;

struct SHELLEXECUTEINFOA {
    DWORD cbSize; // sizeof this structure: 60 where pointers have 32 bits
    ULONG fMask;
    HWND hwnd;
    LPCSTR lpVerb;
    LPCSTR lpFile;
    LPCSTR lpParameters;
    LPCSTR lpDirectory;
    int nShow;
    HINSTANCE hInstApp;
    LPVOID lpIDList;
    LPCSTR lpClass;
    HKEY hkeyClass;
    DWORD dwHotKey;
    union {
        HANDLE hIcon;
        HANDLE hMonitor;
    };
    HANDLE hProcess;
};

// Starts the program `lpFile` in a session of its own: it has none of our descriptors (its standard ones are
// /dev/null), default signal handling, our environment, and outlives us. With SEE_MASK_NOCLOSEPROCESS hProcess receives
// a handle that the caller closes. No path is searched and no shell is involved: a file that is missing or not an
// executable is an error in the last error and in hInstApp. The verb is null or "open"; parameters are divided at
// blanks, "quoted text" stays together.
BOOL WINAPI ShellExecuteExA(SHELLEXECUTEINFOA* info);

// Icons of a file: of an icon file its one icon, which has index 0. Writes at most `count` handles, which the caller
// destroys, to each of `large` (32 pixels) and `small` (16); either may be null. Returns how many icons were written to
// each, or, for the index -1, how many the file holds. 0: it is no icon file, or has no such icon.
UINT WINAPI ExtractIconExA(LPCSTR path, int index, HICON* large, HICON* small, UINT count);
