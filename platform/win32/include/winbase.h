// kernel: errors, files and folders, the program's resources, modules, threads, waits, processes, time, version.
//
// A failing call says why in the calling thread's last error. Path texts: `\` and `/` both separate, every other byte
// is the file system's; relative texts count from the process's current folder; a text of MAX_PATH bytes or more is
// refused with ERROR_FILENAME_EXCED_RANGE, a null or empty one with ERROR_PATH_NOT_FOUND.
#pragma once

#include "windef.h"

// ---- Errors ----

inline constexpr DWORD NO_ERROR = 0;
inline constexpr DWORD ERROR_SUCCESS = 0;
inline constexpr DWORD ERROR_INVALID_FUNCTION = 1;
inline constexpr DWORD ERROR_FILE_NOT_FOUND = 2;
inline constexpr DWORD ERROR_PATH_NOT_FOUND = 3;
inline constexpr DWORD ERROR_TOO_MANY_OPEN_FILES = 4;
inline constexpr DWORD ERROR_ACCESS_DENIED = 5;
inline constexpr DWORD ERROR_INVALID_HANDLE = 6;
inline constexpr DWORD ERROR_NOT_ENOUGH_MEMORY = 8;
inline constexpr DWORD ERROR_BAD_FORMAT = 11;
inline constexpr DWORD ERROR_INVALID_DATA = 13;
inline constexpr DWORD ERROR_OUTOFMEMORY = 14;
inline constexpr DWORD ERROR_NOT_SAME_DEVICE = 17;
inline constexpr DWORD ERROR_WRITE_PROTECT = 19;
inline constexpr DWORD ERROR_CRC = 23;
inline constexpr DWORD ERROR_WRITE_FAULT = 29;
inline constexpr DWORD ERROR_GEN_FAILURE = 31;
inline constexpr DWORD ERROR_SHARING_VIOLATION = 32;
inline constexpr DWORD ERROR_LOCK_VIOLATION = 33;
inline constexpr DWORD ERROR_NOT_SUPPORTED = 50;
inline constexpr DWORD ERROR_FILE_EXISTS = 80;
inline constexpr DWORD ERROR_INVALID_PARAMETER = 87;
inline constexpr DWORD ERROR_BROKEN_PIPE = 109;
inline constexpr DWORD ERROR_DISK_FULL = 112;
inline constexpr DWORD ERROR_INSUFFICIENT_BUFFER = 122;
inline constexpr DWORD ERROR_INVALID_NAME = 123;
inline constexpr DWORD ERROR_MOD_NOT_FOUND = 126;
inline constexpr DWORD ERROR_PROC_NOT_FOUND = 127;
inline constexpr DWORD ERROR_NEGATIVE_SEEK = 131;
inline constexpr DWORD ERROR_DIR_NOT_EMPTY = 145;
inline constexpr DWORD ERROR_BAD_PATHNAME = 161;
inline constexpr DWORD ERROR_BUSY = 170;
inline constexpr DWORD ERROR_ALREADY_EXISTS = 183;
inline constexpr DWORD ERROR_BAD_EXE_FORMAT = 193;
inline constexpr DWORD ERROR_FILENAME_EXCED_RANGE = 206;
inline constexpr DWORD ERROR_FILE_TOO_LARGE = 223;
inline constexpr DWORD ERROR_MORE_DATA = 234;
inline constexpr DWORD ERROR_NO_MORE_ITEMS = 259;
inline constexpr DWORD ERROR_DIRECTORY = 267;
inline constexpr DWORD ERROR_INVALID_FLAGS = 1004;
inline constexpr DWORD ERROR_BADDB = 1009;
inline constexpr DWORD ERROR_REGISTRY_IO_FAILED = 1016;
inline constexpr DWORD ERROR_KEY_DELETED = 1018;
inline constexpr DWORD ERROR_NO_UNICODE_TRANSLATION = 1113;
inline constexpr DWORD ERROR_IO_DEVICE = 1117;
inline constexpr DWORD ERROR_NO_ASSOCIATION = 1155;
inline constexpr DWORD ERROR_CANCELLED = 1223;
inline constexpr DWORD ERROR_INVALID_WINDOW_HANDLE = 1400;
inline constexpr DWORD ERROR_INVALID_MENU_HANDLE = 1401;
inline constexpr DWORD ERROR_CANNOT_FIND_WND_CLASS = 1407;
inline constexpr DWORD ERROR_CLASS_ALREADY_EXISTS = 1410;
inline constexpr DWORD ERROR_CLASS_DOES_NOT_EXIST = 1411;
inline constexpr DWORD ERROR_TIMEOUT = 1460;
inline constexpr DWORD ERROR_RESOURCE_DATA_NOT_FOUND = 1812;
inline constexpr DWORD ERROR_RESOURCE_TYPE_NOT_FOUND = 1813;
inline constexpr DWORD ERROR_RESOURCE_NAME_NOT_FOUND = 1814;
inline constexpr DWORD ERROR_CANT_RESOLVE_FILENAME = 1921;

inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT S_FALSE = 1;
inline constexpr HRESULT E_INVALIDARG = static_cast<HRESULT>(0x80070057);
inline constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005);

constexpr bool SUCCEEDED(HRESULT result)
{
    return result >= 0;
}
constexpr bool FAILED(HRESULT result)
{
    return result < 0;
}

DWORD WINAPI GetLastError();
void WINAPI SetLastError(DWORD error);

// ---- Handles ----

// A macro, as the types of resources are below: no constant expression may hold such a pointer, and a variable would be
// set up at start-up, in every source that sees it.
#define INVALID_HANDLE_VALUE (reinterpret_cast<HANDLE>(static_cast<LONG_PTR>(-1)))

// Of files, events, threads and processes. A thread or process runs on without its handle.
BOOL WINAPI CloseHandle(HANDLE object);

// ---- Files ----

struct SECURITY_ATTRIBUTES {
    DWORD nLength;
    LPVOID lpSecurityDescriptor;
    BOOL bInheritHandle;
};
using LPSECURITY_ATTRIBUTES = SECURITY_ATTRIBUTES*;
struct OVERLAPPED; // asynchronous access, which we do not offer: the pointer is always null
using LPOVERLAPPED = OVERLAPPED*;

union LARGE_INTEGER {
    struct Parts {
        DWORD LowPart;
        LONG HighPart;
    } u;
    LONGLONG QuadPart;
};
using PLARGE_INTEGER = LARGE_INTEGER*;

inline constexpr DWORD GENERIC_READ = 0x80000000;
inline constexpr DWORD GENERIC_WRITE = 0x40000000;
inline constexpr DWORD FILE_SHARE_READ = 1;
inline constexpr DWORD FILE_SHARE_WRITE = 2;
inline constexpr DWORD FILE_SHARE_DELETE = 4;
inline constexpr DWORD CREATE_NEW = 1;
inline constexpr DWORD CREATE_ALWAYS = 2;
inline constexpr DWORD OPEN_EXISTING = 3;
inline constexpr DWORD OPEN_ALWAYS = 4;
inline constexpr DWORD TRUNCATE_EXISTING = 5;
inline constexpr DWORD FILE_ATTRIBUTE_READONLY = 0x01;
inline constexpr DWORD FILE_ATTRIBUTE_DIRECTORY = 0x10;
inline constexpr DWORD FILE_ATTRIBUTE_ARCHIVE = 0x20;
inline constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x80;
inline constexpr DWORD FILE_BEGIN = 0;
inline constexpr DWORD FILE_CURRENT = 1;
inline constexpr DWORD FILE_END = 2;
inline constexpr DWORD INVALID_FILE_ATTRIBUTES = 0xFFFFFFFF;
inline constexpr DWORD INVALID_FILE_SIZE = 0xFFFFFFFF;
inline constexpr DWORD INVALID_SET_FILE_POINTER = 0xFFFFFFFF;

// Opens or makes a file; INVALID_HANDLE_VALUE on failure. CREATE_ALWAYS and OPEN_ALWAYS leave ERROR_ALREADY_EXISTS as
// the last error when the file was there before, else 0. A folder is refused with ERROR_ACCESS_DENIED.
// Share modes are checked and then not enforced: on this system an open file may always be opened, renamed and removed
// by others, and two installers at once must both end well. Security attributes, flags and the template have no
// meaning here.
HANDLE WINAPI CreateFileA(LPCSTR name, DWORD access, DWORD share_mode, LPSECURITY_ATTRIBUTES security,
                          DWORD disposition, DWORD flags_and_attributes, HANDLE template_file);
// TRUE with 0 bytes read at the end of the file.
BOOL WINAPI ReadFile(HANDLE file, LPVOID buffer, DWORD size, LPDWORD read, LPOVERLAPPED overlapped);
// Writes all or fails. On failure *written says how many bytes are known to have gone before it. A buffer that lies in
// the program's resources is written without staying in memory.
BOOL WINAPI WriteFile(HANDLE file, LPCVOID buffer, DWORD size, LPDWORD written, LPOVERLAPPED overlapped);
DWORD WINAPI SetFilePointer(HANDLE file, LONG distance, LONG* distance_high, DWORD method);
BOOL WINAPI SetFilePointerEx(HANDLE file, LARGE_INTEGER distance, PLARGE_INTEGER new_position, DWORD method);
DWORD WINAPI GetFileSize(HANDLE file, LPDWORD size_high);
BOOL WINAPI FlushFileBuffers(HANDLE file);
BOOL WINAPI DeleteFileA(LPCSTR name);

// ---- Folders ----

BOOL WINAPI CreateDirectoryA(LPCSTR name, LPSECURITY_ATTRIBUTES security);
BOOL WINAPI RemoveDirectoryA(LPCSTR name);
// FILE_ATTRIBUTE_DIRECTORY or, for everything else, FILE_ATTRIBUTE_NORMAL; FILE_ATTRIBUTE_READONLY when nobody has
// the permission to write it (then alone).
DWORD WINAPI GetFileAttributesA(LPCSTR name);
BOOL WINAPI SetCurrentDirectoryA(LPCSTR name);
// The length without the terminator; a buffer that is too small is left alone and the result is the size it needs.
DWORD WINAPI GetCurrentDirectoryA(DWORD size, LPSTR buffer);

// ---- Modules ----

// To be cast to what the function is. Its result is void, the one type from which compilers let such a cast pass.
using FARPROC = void(WINAPI*)();

// The program itself for a null name, else a library that LoadLibraryA would find; never to be freed.
HMODULE WINAPI GetModuleHandleA(LPCSTR name);
// Copies the path of the program's file. A buffer that is too small gets what fits, terminated, the result is `size`
// and the last error ERROR_INSUFFICIENT_BUFFER.
DWORD WINAPI GetModuleFileNameA(HMODULE module, LPSTR buffer, DWORD size);
// The floor's own libraries by their Windows names ("User32.dll", case and ".dll" as you like): what the floor offers
// for asking at run time and nothing else. No file is ever loaded.
HMODULE WINAPI LoadLibraryA(LPCSTR name);
BOOL WINAPI FreeLibrary(HMODULE module);
FARPROC WINAPI GetProcAddress(HMODULE module, LPCSTR name);

// ---- Resources ----

// An integer resource name in place of a text.
inline LPSTR MAKEINTRESOURCEA(ULONG_PTR id)
{
    return reinterpret_cast<LPSTR>(static_cast<ULONG_PTR>(static_cast<WORD>(id)));
}
inline bool IS_INTRESOURCE(LPCSTR name)
{
    return (reinterpret_cast<ULONG_PTR>(name) >> 16) == 0;
}

#define RT_CURSOR MAKEINTRESOURCEA(1)
#define RT_BITMAP MAKEINTRESOURCEA(2)
#define RT_ICON MAKEINTRESOURCEA(3)
#define RT_STRING MAKEINTRESOURCEA(6)
#define RT_RCDATA MAKEINTRESOURCEA(10)
#define RT_GROUP_ICON MAKEINTRESOURCEA(14)

// Only the program itself (null or GetModuleHandleA(nullptr)) has resources. Texts match whatever their case; "#130" is
// the integer 130. Of several languages the first in the script is taken. Nothing is copied: the bytes of a locked
// resource stay valid and unchanged as long as the program runs.
HRSRC WINAPI FindResourceA(HMODULE module, LPCSTR name, LPCSTR type);
HGLOBAL WINAPI LoadResource(HMODULE module, HRSRC resource);
LPVOID WINAPI LockResource(HGLOBAL data);
DWORD WINAPI SizeofResource(HMODULE module, HRSRC resource);
// Copies a text of the string table in the process's code page, cut to what fits between two characters; the number of
// bytes without the terminator, 0 when there is no such text.
int WINAPI LoadStringA(HINSTANCE instance, UINT id, LPSTR buffer, int size);

// ---- Threads and waits ----

inline constexpr DWORD INFINITE = 0xFFFFFFFF;
inline constexpr DWORD WAIT_OBJECT_0 = 0;
inline constexpr DWORD WAIT_TIMEOUT = 258;
inline constexpr DWORD WAIT_FAILED = 0xFFFFFFFF;
inline constexpr DWORD MAXIMUM_WAIT_OBJECTS = 64;
inline constexpr DWORD STILL_ACTIVE = 259;
inline constexpr DWORD CREATE_SUSPENDED = 4;

using LPTHREAD_START_ROUTINE = DWORD(WINAPI*)(LPVOID);

// `stack_size` in bytes, 0 for the system's default. CREATE_SUSPENDED is the only flag.
HANDLE WINAPI CreateThread(LPSECURITY_ATTRIBUTES security, SIZE_T stack_size, LPTHREAD_START_ROUTINE start,
                           LPVOID parameter, DWORD flags, LPDWORD thread_id);
// Lets a thread made with CREATE_SUSPENDED begin; the suspend count before (1, or 0 when it already ran), or -1.
DWORD WINAPI ResumeThread(HANDLE thread);
BOOL WINAPI GetExitCodeThread(HANDLE thread, LPDWORD exit_code);
DWORD WINAPI GetCurrentThreadId();

// Within the program only: a name is refused with ERROR_NOT_SUPPORTED.
HANDLE WINAPI CreateEventA(LPSECURITY_ATTRIBUTES security, BOOL manual_reset, BOOL initial_state, LPCSTR name);
BOOL WINAPI SetEvent(HANDLE event);
BOOL WINAPI ResetEvent(HANDLE event);

// Events, threads (signalled once they ended) and processes (likewise); milliseconds.
DWORD WINAPI WaitForSingleObject(HANDLE object, DWORD timeout);
DWORD WINAPI WaitForMultipleObjects(DWORD count, const HANDLE* objects, BOOL wait_all, DWORD timeout);

// ---- Processes ----

DWORD WINAPI GetCurrentProcessId();
// STILL_ACTIVE while it runs; then its exit status, or 128 + n when signal n ended it.
BOOL WINAPI GetExitCodeProcess(HANDLE process, LPDWORD exit_code);
// Ends it at once; its exit code is then `exit_code`.
BOOL WINAPI TerminateProcess(HANDLE process, UINT exit_code);
// Ends the program whatever its other threads do: temporaries are removed, standard output is flushed, and no static
// object is destroyed under a thread that still runs.
[[noreturn]] void WINAPI ExitProcess(UINT exit_code);

// ---- Time and version ----

// Milliseconds; 0 gives the rest of the turn away.
void WINAPI Sleep(DWORD milliseconds);
// Milliseconds since the system started, modulo 2^32.
DWORD WINAPI GetTickCount();

inline constexpr DWORD VER_PLATFORM_WIN32_NT = 2;

struct OSVERSIONINFOA {
    DWORD dwOSVersionInfoSize;
    DWORD dwMajorVersion;
    DWORD dwMinorVersion;
    DWORD dwBuildNumber;
    DWORD dwPlatformId;
    CHAR szCSDVersion[128];
};
using LPOSVERSIONINFOA = OSVERSIONINFOA*;

// Always 5.1, build 2600, of the NT platform: the newest Windows whose interface the floor speaks.
BOOL WINAPI GetVersionExA(LPOSVERSIONINFOA version);

// ---- Text and numbers ----

// Null when either is null; the buffer must hold the text.
LPSTR WINAPI lstrcpyA(LPSTR to, LPCSTR from);
int WINAPI lstrlenA(LPCSTR text);
// number * numerator / denominator in 64 bits, rounded half away from zero; -1 when it has no 32-bit answer.
int WINAPI MulDiv(int number, int numerator, int denominator);
