// advapi: the registry, as far as a user's own hive goes. Results are error numbers (ERROR_SUCCESS is 0); the thread's
// last error is not touched. Safe from any thread.
#pragma once

#include "windef.h"

// 100 ns since 1601.
struct FILETIME {
    DWORD dwLowDateTime;
    DWORD dwHighDateTime;
};
using PFILETIME = FILETIME*;

using LSTATUS = LONG;
using REGSAM = DWORD;
using PHKEY = HKEY*;

// The one root there is. It lives in $XDG_CONFIG_HOME/registry/current-user.sqlite (else $HOME/.config/...), which the
// first call opens or makes.
inline const HKEY HKEY_CURRENT_USER = reinterpret_cast<HKEY>(static_cast<LONG_PTR>(static_cast<LONG>(0x80000001U)));

inline constexpr REGSAM KEY_QUERY_VALUE = 0x0001;
inline constexpr REGSAM KEY_SET_VALUE = 0x0002;
inline constexpr REGSAM KEY_CREATE_SUB_KEY = 0x0004;
inline constexpr REGSAM KEY_ENUMERATE_SUB_KEYS = 0x0008;
inline constexpr REGSAM KEY_READ = 0x20019;
inline constexpr REGSAM KEY_WRITE = 0x20006;
inline constexpr REGSAM KEY_ALL_ACCESS = 0xF003F;

inline constexpr DWORD REG_NONE = 0;
inline constexpr DWORD REG_SZ = 1;
inline constexpr DWORD REG_EXPAND_SZ = 2;
inline constexpr DWORD REG_BINARY = 3;
inline constexpr DWORD REG_DWORD = 4;
inline constexpr DWORD REG_MULTI_SZ = 7;

// Opens an existing key below `key`; a null or empty `sub_key` opens `key` itself anew. `access` is what the new handle
// may do, whatever the old one could. Names are compared without regard to case; "\" separates them and never splits a
// two-byte character. `options` is 0.
//
// Results of this and all the others: ERROR_FILE_NOT_FOUND (2), no such key or value; ERROR_ACCESS_DENIED (5), a right
// that the handle lacks or a hive that may not be written; ERROR_INVALID_HANDLE (6); ERROR_LOCK_VIOLATION (33), another
// process keeps the hive locked: found out after two seconds once, and almost at once by the calls that follow until a
// write succeeds again; ERROR_INVALID_PARAMETER (87); ERROR_DISK_FULL (112); ERROR_BAD_PATHNAME (161), an empty
// component or one of more than 255 bytes; ERROR_BADDB (1009), a hive that is none of ours, which is left alone;
// ERROR_REGISTRY_IO_FAILED (1016); ERROR_KEY_DELETED (1018), the handle's key is gone.
LSTATUS WINAPI RegOpenKeyExA(HKEY key, LPCSTR sub_key, DWORD options, REGSAM access, PHKEY result);

// Opens a key with every right, making it and what is missing above it.
LSTATUS WINAPI RegCreateKeyA(HKEY key, LPCSTR sub_key, PHKEY result);

LSTATUS WINAPI RegCloseKey(HKEY key);

// Stores `size` bytes exactly, zero bytes and a missing terminator included. A null or empty name is the key's default
// value. Needs KEY_SET_VALUE. On failure the old value stands.
//
// A REG_SZ value under "Software\Microsoft\Windows\CurrentVersion\Run" is a command that the desktop starts with the
// session: it is stored together with an entry in $XDG_CONFIG_HOME/autostart, and goes with it.
LSTATUS WINAPI RegSetValueExA(HKEY key, LPCSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD size);

// *size holds the buffer's bytes on entry and the value's on return. A null `data` asks for the size alone; a buffer
// too small is left alone and gives ERROR_MORE_DATA (234). Needs KEY_QUERY_VALUE.
LSTATUS WINAPI RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD size);

// The value at `index` in the order of the names. *name_size holds the buffer's characters with the terminator on entry
// and the name's without it on return; `data` and `size` as in RegQueryValueExA. ERROR_NO_MORE_ITEMS (259) at the end.
LSTATUS WINAPI RegEnumValueA(HKEY key, DWORD index, LPSTR name, LPDWORD name_size, LPDWORD reserved, LPDWORD type,
                             LPBYTE data, LPDWORD size);

// The sub-key at `index` in the order of the names, one component as it was first written. Keys have no class text.
// Needs KEY_ENUMERATE_SUB_KEYS.
LSTATUS WINAPI RegEnumKeyExA(HKEY key, DWORD index, LPSTR name, LPDWORD name_size, LPDWORD reserved, LPSTR class_name,
                             LPDWORD class_size, PFILETIME last_write);

LSTATUS WINAPI RegDeleteValueA(HKEY key, LPCSTR name);

// Removes a key and its values; one that has sub-keys stays: ERROR_ACCESS_DENIED (5).
LSTATUS WINAPI RegDeleteKeyA(HKEY key, LPCSTR sub_key);
