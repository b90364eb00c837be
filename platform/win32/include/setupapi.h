// setupapi: walking a cabinet, entry by entry, with a callback that says what becomes of each.
#pragma once

#include "windef.h"

using PSP_FILE_CALLBACK_A = UINT(CALLBACK*)(PVOID context, UINT notification, UINT_PTR param1, UINT_PTR param2);

// An entry as the cabinet announces it, before anything of it is read. The callback writes FullTargetName, and may
// write past its end when folder and name are too long together: room is kept behind the record, and such an entry is
// not copied.
struct FILE_IN_CABINET_INFO_A {
    LPCSTR NameInCabinet; // its bytes in the cabinet, "\" between folders
    DWORD FileSize;
    DWORD Win32Error; // unused on the way in
    WORD DosDate;
    WORD DosTime;
    WORD DosAttribs; // 0x40: may be executed
    CHAR FullTargetName[MAX_PATH];
};
using PFILE_IN_CABINET_INFO_A = FILE_IN_CABINET_INFO_A*;

// What became of an entry: Source is the cabinet's path, Win32Error is NO_ERROR or the reason why Target is what it
// was.
struct FILEPATHS_A {
    LPCSTR Target;
    LPCSTR Source;
    UINT Win32Error;
    DWORD Flags;
};
using PFILEPATHS_A = FILEPATHS_A*;

inline constexpr UINT SPFILENOTIFY_FILEINCABINET = 0x11;  // param1: FILE_IN_CABINET_INFO_A*; answered by FILEOP_...
inline constexpr UINT SPFILENOTIFY_NEEDNEWCABINET = 0x12; // never sent: a cabinet here is a single volume
inline constexpr UINT SPFILENOTIFY_FILEEXTRACTED = 0x13; // param1: const FILEPATHS_A*; answered by NO_ERROR or an error

inline constexpr UINT FILEOP_ABORT = 0;
inline constexpr UINT FILEOP_DOCOPY = 1;
inline constexpr UINT FILEOP_SKIP = 2;

// Announces every entry of the cabinet in the order of its data, copies those whose callback answers FILEOP_DOCOPY, and
// says after each what became of it. An entry is written beside its target and takes its place whole, with the time and
// the execute permission that the cabinet gives it; a failed copy leaves what was there. After NO_ERROR the bytes are
// written; they are flushed and put in place while the next entries are on their way, and all of them stand, safe from
// a power cut, when the walk returns.
//
// An entry whose name would leave the target's folder (a "..", a drive, a leading separator, an empty component) is not
// announced and not copied. Last errors of FALSE: the cabinet cannot be opened, ERROR_INVALID_DATA: it is none,
// ERROR_CANCELLED: the callback answered FILEOP_ABORT, the callback's own answer to SPFILENOTIFY_FILEEXTRACTED. After a
// walk to the end: ERROR_INVALID_NAME, some entries were refused; or the error of a file that was written and could not
// take its place.
BOOL WINAPI SetupIterateCabinetA(LPCSTR cabinet, DWORD reserved, PSP_FILE_CALLBACK_A callback, PVOID context);
