// The basic types of the Windows interface, as its documentation gives them: widths in bits are those of 32-bit Windows
// except where a value holds a pointer.
#pragma once

#include <cstddef>
#include <cstdint>

#define WINAPI
#define CALLBACK
#define APIENTRY

using BOOL = int;
using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using INT = int;
using UINT = unsigned int;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using USHORT = std::uint16_t;
using SHORT = std::int16_t;
using LONGLONG = std::int64_t;
using ULONGLONG = std::uint64_t;
using FLOAT = float;

using CHAR = char;
using UCHAR = unsigned char;
using WCHAR = char16_t; // UTF-16, whatever wchar_t is here
using LPSTR = char*;
using LPCSTR = const char*;
using LPWSTR = WCHAR*;
using LPCWSTR = const WCHAR*;

using LPVOID = void*;
using LPCVOID = const void*;
using LPBYTE = BYTE*;
using LPDWORD = DWORD*;
using PVOID = void*;

using INT_PTR = std::intptr_t;
using UINT_PTR = std::uintptr_t;
using LONG_PTR = std::intptr_t;
using ULONG_PTR = std::uintptr_t;
using DWORD_PTR = std::uintptr_t;
using SIZE_T = std::size_t;

using WPARAM = UINT_PTR;
using LPARAM = LONG_PTR;
using LRESULT = LONG_PTR;
using HRESULT = LONG;
using ATOM = WORD;
using COLORREF = DWORD; // 0x00BBGGRR
using LCID = DWORD;
using LANGID = WORD;

inline constexpr BOOL FALSE = 0;
inline constexpr BOOL TRUE = 1;
inline constexpr int MAX_PATH = 260;

// Every kind of handle is a type of its own, so that one cannot be passed for another.
#define DECLARE_HANDLE(name)                                                                                           \
    struct name##__;                                                                                                   \
    using name = name##__*

using HANDLE = void*;
using HGDIOBJ = void*;
using HGLOBAL = void*;
DECLARE_HANDLE(HINSTANCE);
using HMODULE = HINSTANCE;
DECLARE_HANDLE(HRSRC);
DECLARE_HANDLE(HKEY);
DECLARE_HANDLE(HWND);
DECLARE_HANDLE(HMENU);
DECLARE_HANDLE(HDC);
DECLARE_HANDLE(HBITMAP);
DECLARE_HANDLE(HBRUSH);
DECLARE_HANDLE(HPEN);
DECLARE_HANDLE(HFONT);
DECLARE_HANDLE(HRGN);
DECLARE_HANDLE(HPALETTE);
DECLARE_HANDLE(HICON);
using HCURSOR = HICON;
DECLARE_HANDLE(HMONITOR);
DECLARE_HANDLE(HHOOK);
DECLARE_HANDLE(HACCEL);
DECLARE_HANDLE(HTASK);

struct POINT {
    LONG x;
    LONG y;
};
using LPPOINT = POINT*;

struct SIZE {
    LONG cx;
    LONG cy;
};
using LPSIZE = SIZE*;

// right and bottom lie outside the rectangle.
struct RECT {
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};
using LPRECT = RECT*;
using LPCRECT = const RECT*;

constexpr WORD LOWORD(ULONG_PTR value)
{
    return static_cast<WORD>(value & 0xFFFF);
}
constexpr WORD HIWORD(ULONG_PTR value)
{
    return static_cast<WORD>((value >> 16) & 0xFFFF);
}
constexpr BYTE LOBYTE(ULONG_PTR value)
{
    return static_cast<BYTE>(value & 0xFF);
}
constexpr BYTE HIBYTE(ULONG_PTR value)
{
    return static_cast<BYTE>((value >> 8) & 0xFF);
}
constexpr WORD MAKEWORD(BYTE low, BYTE high)
{
    return static_cast<WORD>(low | (high << 8));
}
constexpr LONG MAKELONG(WORD low, WORD high)
{
    return static_cast<LONG>(low | (static_cast<DWORD>(high) << 16));
}
constexpr LPARAM MAKELPARAM(WORD low, WORD high)
{
    return static_cast<DWORD>(MAKELONG(low, high));
}
constexpr WPARAM MAKEWPARAM(WORD low, WORD high)
{
    return static_cast<DWORD>(MAKELONG(low, high));
}
