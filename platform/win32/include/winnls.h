// kernel: code pages, character case and classes.
//
// Narrow text is bytes of a code page. The process has one code page of its own (CP_ACP): 936 unless the environment
// variable ACP names another when the first of these functions is called. Any code page that glibc's iconv converts is
// known. All functions are safe from any thread.
#pragma once

#include "windef.h"

inline constexpr UINT CP_ACP = 0; // the process's own code page
inline constexpr UINT CP_UTF8 = 65001;

inline constexpr DWORD MB_PRECOMPOSED = 0x00000001;       // accepted; what we convert to is always precomposed
inline constexpr DWORD MB_ERR_INVALID_CHARS = 0x00000008; // an invalid sequence fails the call
inline constexpr DWORD WC_ERR_INVALID_CHARS = 0x00000080; // likewise a lone surrogate; for CP_UTF8 alone
inline constexpr DWORD WC_NO_BEST_FIT_CHARS = 0x00000400; // accepted; we never substitute a look-alike

UINT GetACP();

// Converts text to UTF-16. Returns the units written, or needed when `wide_size` is 0; a length of -1 means "up to and
// including the NUL". Fails with 0 and a last error: ERROR_INSUFFICIENT_BUFFER (the buffer then holds the beginning),
// ERROR_INVALID_PARAMETER (an unknown code page, a null or empty text, sizes below 0), ERROR_INVALID_FLAGS,
// ERROR_NO_UNICODE_TRANSLATION. Without MB_ERR_INVALID_CHARS an invalid sequence becomes U+FFFD: in UTF-8 one for every
// longest beginning of a sequence, in a double-byte page one for a byte that begins nothing or a pair that is none (an
// ASCII byte behind a lead byte stays itself).
int MultiByteToWideChar(UINT code_page, DWORD flags, LPCSTR text, int length, LPWSTR wide, int wide_size);

// Converts UTF-16 to text, with results like MultiByteToWideChar's. A character that the code page lacks becomes
// `default_char` (null: "?") and sets `*used_default`; a lone surrogate is such a character. For CP_UTF8 both must be
// null and a lone surrogate becomes U+FFFD, or fails the call with WC_ERR_INVALID_CHARS.
int WideCharToMultiByte(UINT code_page, DWORD flags, LPCWSTR wide, int wide_length, LPSTR text, int text_size,
                        LPCSTR default_char, BOOL* used_default);

// Whether a byte begins a two-byte character of the code page.
BOOL IsDBCSLeadByte(BYTE byte);
BOOL IsDBCSLeadByteEx(UINT code_page, BYTE byte);

// Change case in place, two-byte characters included; a character whose other case is missing in the code page or has
// another length stays. A "string" whose pointer value is below 0x10000 is a character, and so is the result.
LPSTR CharLowerA(LPSTR text);
LPSTR CharUpperA(LPSTR text);
// The same for `length` bytes, NULs included; return `length`.
DWORD CharLowerBuffA(LPSTR text, DWORD length);
DWORD CharUpperBuffA(LPSTR text, DWORD length);

// The next character, or `text` itself at its end; the character before `current`, or `start`.
LPSTR CharNextA(LPCSTR text);
LPSTR CharPrevA(LPCSTR start, LPCSTR current);

// The direction of each character of the text, one word for each unit of UTF-16 that it comes to (a character of two
// bytes has one, and types[i] need not belong to byte i). There must be room for as many words as the text has bytes. A
// length of -1 means "up to and including the NUL". FALSE: a type of information other than CT_CTYPE2, or no text. The
// locale makes no difference.
inline constexpr DWORD CT_CTYPE2 = 2;
inline constexpr WORD C2_LEFTTORIGHT = 1;
inline constexpr WORD C2_RIGHTTOLEFT = 2;
inline constexpr WORD C2_EUROPENUMBER = 3;
inline constexpr WORD C2_EUROPESEPARATOR = 4;
inline constexpr WORD C2_EUROPETERMINATOR = 5;
inline constexpr WORD C2_ARABICNUMBER = 6;
inline constexpr WORD C2_COMMONSEPARATOR = 7;
inline constexpr WORD C2_BLOCKSEPARATOR = 8;
inline constexpr WORD C2_SEGMENTSEPARATOR = 9;
inline constexpr WORD C2_WHITESPACE = 10;
inline constexpr WORD C2_OTHERNEUTRAL = 11;
BOOL GetStringTypeExA(LCID locale, DWORD info_type, LPCSTR text, int length, WORD* types);
