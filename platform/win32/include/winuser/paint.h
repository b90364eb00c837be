// user: what must be painted, and the contexts to paint on.
#pragma once

#include "winuser/types.h"

inline constexpr UINT RDW_INVALIDATE = 0x0001;
inline constexpr UINT RDW_INTERNALPAINT = 0x0002;
inline constexpr UINT RDW_ERASE = 0x0004;
inline constexpr UINT RDW_VALIDATE = 0x0008;
inline constexpr UINT RDW_NOINTERNALPAINT = 0x0010;
inline constexpr UINT RDW_NOERASE = 0x0020;
inline constexpr UINT RDW_NOCHILDREN = 0x0040;
inline constexpr UINT RDW_ALLCHILDREN = 0x0080;
inline constexpr UINT RDW_UPDATENOW = 0x0100;
inline constexpr UINT RDW_ERASENOW = 0x0200;
inline constexpr UINT RDW_FRAME = 0x0400;
inline constexpr UINT RDW_NOFRAME = 0x0800;

BOOL InvalidateRect(HWND window, const RECT* rect, BOOL erase);
BOOL InvalidateRgn(HWND window, HRGN region, BOOL erase);
BOOL ValidateRect(HWND window, const RECT* rect);
BOOL GetUpdateRect(HWND window, LPRECT rect, BOOL erase);
BOOL RedrawWindow(HWND window, const RECT* rect, HRGN region, UINT flags);
// Paints what is invalid, if anything is, and shows it: the picture is on its way to the screen at return.
BOOL UpdateWindow(HWND window);
HDC BeginPaint(HWND window, LPPAINTSTRUCT paint);
BOOL EndPaint(HWND window, const PAINTSTRUCT* paint);
HDC GetDC(HWND window); // null: a context with the screen's traits, whose drawing goes nowhere
HDC GetWindowDC(HWND window);
int ReleaseDC(HWND window, HDC dc);
HWND WindowFromDC(HDC dc);
