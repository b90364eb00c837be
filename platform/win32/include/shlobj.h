// The user's folders.
#pragma once

#include "windows.h"

inline constexpr int CSIDL_PROGRAMS = 2;       // menu entries: "applications" in the local data folder
inline constexpr int CSIDL_APPDATA = 26;       // $XDG_CONFIG_HOME, else $HOME/.config
inline constexpr int CSIDL_LOCAL_APPDATA = 28; // $XDG_DATA_HOME, else $HOME/.local/share
inline constexpr int CSIDL_PROFILE = 40;       // $HOME
inline constexpr int CSIDL_FLAG_CREATE = 0x8000;

// Copies the folder's path into a buffer of MAX_PATH bytes. The two data folders always exist where this interface
// comes from, so they are made when they are missing; the others with `create` or CSIDL_FLAG_CREATE.
//
// FALSE: there is no such folder id (the buffer then holds an empty text), or the folder is missing and could not be
// made; its path is filled in all the same, so a caller that goes on fails at its first own step. When no usable path
// exists at all (no home, too long, a `\` in it) the text is "/dev/null", under which nothing can be made.
BOOL WINAPI SHGetSpecialFolderPathA(HWND owner, LPSTR path, int folder, BOOL create);
