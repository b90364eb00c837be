// user: pointer, keys and cursors.
#pragma once

#include "winuser/types.h"

inline constexpr int VK_LBUTTON = 0x01;
inline constexpr int VK_RBUTTON = 0x02;
inline constexpr int VK_MBUTTON = 0x04;
inline constexpr int VK_BACK = 0x08;
inline constexpr int VK_TAB = 0x09;
inline constexpr int VK_RETURN = 0x0D;
inline constexpr int VK_SHIFT = 0x10;
inline constexpr int VK_CONTROL = 0x11;
inline constexpr int VK_MENU = 0x12;
inline constexpr int VK_ESCAPE = 0x1B;
inline constexpr int VK_SPACE = 0x20;
inline constexpr int VK_PRIOR = 0x21;
inline constexpr int VK_NEXT = 0x22;
inline constexpr int VK_END = 0x23;
inline constexpr int VK_HOME = 0x24;
inline constexpr int VK_LEFT = 0x25;
inline constexpr int VK_UP = 0x26;
inline constexpr int VK_RIGHT = 0x27;
inline constexpr int VK_DOWN = 0x28;
inline constexpr int VK_INSERT = 0x2D;
inline constexpr int VK_DELETE = 0x2E;
inline constexpr int VK_F1 = 0x70;
inline constexpr int VK_F4 = 0x73;
inline constexpr int VK_F5 = 0x74;
inline constexpr int VK_F10 = 0x79;

BOOL GetCursorPos(LPPOINT point);
SHORT GetKeyState(int key);      // as of the input message taken last
SHORT GetAsyncKeyState(int key); // now; only the top bit is told
UINT GetDoubleClickTime();       // 500 milliseconds

inline constexpr DWORD TME_LEAVE = 0x00000002;
inline constexpr DWORD TME_CANCEL = 0x80000000;
// WM_MOUSELEAVE once, when the pointer leaves the client area (TME_LEAVE). FALSE for other flags.
BOOL TrackMouseEvent(LPTRACKMOUSEEVENT track);

inline const LPCSTR IDC_ARROW = reinterpret_cast<LPCSTR>(ULONG_PTR{ 32512 });
inline const LPCSTR IDC_IBEAM = reinterpret_cast<LPCSTR>(ULONG_PTR{ 32513 });
inline const LPCSTR IDC_WAIT = reinterpret_cast<LPCSTR>(ULONG_PTR{ 32514 });
inline const LPCSTR IDC_CROSS = reinterpret_cast<LPCSTR>(ULONG_PTR{ 32515 });
inline const LPCSTR IDC_SIZENWSE = reinterpret_cast<LPCSTR>(ULONG_PTR{ 32642 });
inline const LPCSTR IDC_SIZENESW = reinterpret_cast<LPCSTR>(ULONG_PTR{ 32643 });
inline const LPCSTR IDC_SIZEWE = reinterpret_cast<LPCSTR>(ULONG_PTR{ 32644 });
inline const LPCSTR IDC_SIZENS = reinterpret_cast<LPCSTR>(ULONG_PTR{ 32645 });
inline const LPCSTR IDC_SIZEALL = reinterpret_cast<LPCSTR>(ULONG_PTR{ 32646 });
inline const LPCSTR IDC_NO = reinterpret_cast<LPCSTR>(ULONG_PTR{ 32648 });
inline const LPCSTR IDC_HAND = reinterpret_cast<LPCSTR>(ULONG_PTR{ 32649 });
HCURSOR LoadCursorA(HINSTANCE instance, LPCSTR name); // the system's cursors (a null instance); null for others
HCURSOR SetCursor(HCURSOR cursor);
HCURSOR GetCursor();
