// advapi: the registry, as far as a user's own hive goes. Results are error numbers (ERROR_SUCCESS is 0); the thread's
// last error is not touched. Safe from any thread.
#pragma once

#include "windef.h"

struct FILETIME;

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
// may do, whatever the old one could. Names are compared without regard to ASCII case; "\" separates them and never
// splits a two-byte character. ERROR_FILE_NOT_FOUND (2): there is no such key. A hive that another process keeps locked
// fails with ERROR_LOCK_VIOLATION (33) after two seconds at most, an unreadable one with ERROR_BADDB (1009).
LSTATUS WINAPI RegOpenKeyExA(HKEY key, LPCSTR sub_key, DWORD options, REGSAM access, PHKEY result);

// Opens a key with every right, making it and what is missing above it. `sub_key` has at most 255 bytes a component.
LSTATUS WINAPI RegCreateKeyA(HKEY key, LPCSTR sub_key, PHKEY result);

LSTATUS WINAPI RegCloseKey(HKEY key);

// Stores `size` bytes exactly, zero bytes and a missing terminator included. A null or empty name is the key's default
// value. Needs KEY_SET_VALUE. On failure the old value stands.
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
                             LPDWORD class_size, FILETIME* last_write);

LSTATUS WINAPI RegDeleteValueA(HKEY key, LPCSTR name);

// Removes a key and its values; one that has sub-keys stays: ERROR_ACCESS_DENIED (5).
LSTATUS WINAPI RegDeleteKeyA(HKEY key, LPCSTR sub_key);
