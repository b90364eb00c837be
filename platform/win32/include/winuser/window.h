// user: window classes, windows, their place and order, who has activation, focus and capture.
#pragma once

#include "winuser/types.h"

// ---- Classes.

inline constexpr UINT CS_VREDRAW = 0x0001;
inline constexpr UINT CS_HREDRAW = 0x0002;
inline constexpr UINT CS_DBLCLKS = 0x0008;
inline constexpr UINT CS_OWNDC = 0x0020;   // accepted; every context is opened anew
inline constexpr UINT CS_CLASSDC = 0x0040; // likewise
inline constexpr UINT CS_PARENTDC = 0x0080;
inline constexpr UINT CS_NOCLOSE = 0x0200;
inline constexpr UINT CS_SAVEBITS = 0x0800;
inline constexpr UINT CS_GLOBALCLASS = 0x4000;

// 0 and ERROR_CLASS_ALREADY_EXISTS (1410) for a name that the instance has registered.
ATOM RegisterClassA(const WNDCLASSA* window_class);
ATOM RegisterClassExA(const WNDCLASSEXA* window_class);
// FALSE while a window of the class exists.
BOOL UnregisterClassA(LPCSTR class_name, HINSTANCE instance);
BOOL GetClassInfoA(HINSTANCE instance, LPCSTR class_name, WNDCLASSA* window_class);
BOOL GetClassInfoExA(HINSTANCE instance, LPCSTR class_name, WNDCLASSEXA* window_class);
int GetClassNameA(HWND window, LPSTR buffer, int size);

inline constexpr int GCL_STYLE = -26;
inline constexpr int GCLP_WNDPROC = -24;
inline constexpr int GCLP_HICONSM = -34;
inline constexpr int GCLP_HICON = -14;
inline constexpr int GCLP_HCURSOR = -12;
inline constexpr int GCLP_HBRBACKGROUND = -10;
ULONG_PTR GetClassLongPtrA(HWND window, int index);
ULONG_PTR SetClassLongPtrA(HWND window, int index, LONG_PTR value);

// ---- Windows.

inline constexpr DWORD WS_OVERLAPPED = 0x00000000;
inline constexpr DWORD WS_POPUP = 0x80000000;
inline constexpr DWORD WS_CHILD = 0x40000000;
inline constexpr DWORD WS_MINIMIZE = 0x20000000;
inline constexpr DWORD WS_VISIBLE = 0x10000000;
inline constexpr DWORD WS_DISABLED = 0x08000000;
inline constexpr DWORD WS_CLIPSIBLINGS = 0x04000000;
inline constexpr DWORD WS_CLIPCHILDREN = 0x02000000;
inline constexpr DWORD WS_MAXIMIZE = 0x01000000;
inline constexpr DWORD WS_CAPTION = 0x00C00000;
inline constexpr DWORD WS_BORDER = 0x00800000;
inline constexpr DWORD WS_DLGFRAME = 0x00400000;
inline constexpr DWORD WS_VSCROLL = 0x00200000;
inline constexpr DWORD WS_HSCROLL = 0x00100000;
inline constexpr DWORD WS_SYSMENU = 0x00080000;
inline constexpr DWORD WS_THICKFRAME = 0x00040000;
inline constexpr DWORD WS_GROUP = 0x00020000;
inline constexpr DWORD WS_TABSTOP = 0x00010000;
inline constexpr DWORD WS_MINIMIZEBOX = 0x00020000;
inline constexpr DWORD WS_MAXIMIZEBOX = 0x00010000;
inline constexpr DWORD WS_OVERLAPPEDWINDOW =
    WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MINIMIZEBOX | WS_MAXIMIZEBOX;
inline constexpr DWORD WS_POPUPWINDOW = WS_POPUP | WS_BORDER | WS_SYSMENU;

inline constexpr DWORD WS_EX_DLGMODALFRAME = 0x00000001;
inline constexpr DWORD WS_EX_NOPARENTNOTIFY = 0x00000004;
inline constexpr DWORD WS_EX_TOPMOST = 0x00000008;
inline constexpr DWORD WS_EX_TRANSPARENT = 0x00000020;
inline constexpr DWORD WS_EX_TOOLWINDOW = 0x00000080;
inline constexpr DWORD WS_EX_WINDOWEDGE = 0x00000100;
inline constexpr DWORD WS_EX_CLIENTEDGE = 0x00000200;
inline constexpr DWORD WS_EX_STATICEDGE = 0x00020000;
inline constexpr DWORD WS_EX_APPWINDOW = 0x00040000;
inline constexpr DWORD WS_EX_NOACTIVATE = 0x08000000;
inline constexpr DWORD WS_EX_LAYOUTRTL = 0x00400000;

inline constexpr int CW_USEDEFAULT = static_cast<int>(0x80000000);

// Order of messages: WM_GETMINMAXINFO (windows with a sizing frame and overlapped ones), WM_NCCREATE, WM_NCCALCSIZE,
// WM_CREATE, WM_SIZE, WM_MOVE, then those of showing. Null when the class is unknown, a handle is bad, the display
// refuses, WM_NCCREATE answers FALSE or WM_CREATE answers -1; the window is then gone. A window of more than 2^28
// pixels is refused; one that becomes that large later draws only in the part that it had before.
HWND CreateWindowExA(DWORD ex_style, LPCSTR class_name, LPCSTR name, DWORD style, int x, int y, int width, int height,
                     HWND parent, HMENU menu_or_id, HINSTANCE instance, LPVOID parameter);
// The window, its children and the windows it owns. FALSE on another thread than the window's.
BOOL DestroyWindow(HWND window);

inline constexpr int GWL_WNDPROC = -4;
inline constexpr int GWL_HINSTANCE = -6;
inline constexpr int GWL_HWNDPARENT = -8;
inline constexpr int GWL_ID = -12;
inline constexpr int GWL_STYLE = -16;
inline constexpr int GWL_EXSTYLE = -20;
inline constexpr int GWL_USERDATA = -21;
inline constexpr int GWLP_WNDPROC = GWL_WNDPROC;
inline constexpr int GWLP_HINSTANCE = GWL_HINSTANCE;
inline constexpr int GWLP_HWNDPARENT = GWL_HWNDPARENT; // sets the owner of a top-level window
inline constexpr int GWLP_ID = GWL_ID;
inline constexpr int GWLP_USERDATA = GWL_USERDATA;
LONG GetWindowLongA(HWND window, int index); // the low 32 bits
LONG SetWindowLongA(HWND window, int index, LONG value);
LONG_PTR GetWindowLongPtrA(HWND window, int index);
LONG_PTR SetWindowLongPtrA(HWND window, int index, LONG_PTR value);
LRESULT CallWindowProcA(WNDPROC procedure, HWND window, UINT message, WPARAM wparam, LPARAM lparam);
LRESULT DefWindowProcA(HWND window, UINT message, WPARAM wparam, LPARAM lparam);

BOOL SetWindowTextA(HWND window, LPCSTR text); // text in the process's code page
int GetWindowTextA(HWND window, LPSTR buffer, int size);
int GetWindowTextLengthA(HWND window);

inline constexpr UINT GW_HWNDFIRST = 0;
inline constexpr UINT GW_HWNDLAST = 1;
inline constexpr UINT GW_HWNDNEXT = 2;
inline constexpr UINT GW_HWNDPREV = 3;
inline constexpr UINT GW_OWNER = 4;
inline constexpr UINT GW_CHILD = 5;
inline constexpr UINT GA_PARENT = 1;
inline constexpr UINT GA_ROOT = 2;
inline constexpr UINT GA_ROOTOWNER = 3;
HWND GetParent(HWND window);              // a popup's owner
HWND SetParent(HWND window, HWND parent); // child windows, within one top-level window's thread
HWND GetWindow(HWND window, UINT command);
HWND GetTopWindow(HWND window);
HWND GetAncestor(HWND window, UINT flags);
HWND GetDlgItem(HWND window, int id);
int GetDlgCtrlID(HWND window);
HWND GetDesktopWindow();
HWND FindWindowA(LPCSTR class_name, LPCSTR name);
BOOL EnumChildWindows(HWND window, WNDENUMPROC procedure, LPARAM parameter);
BOOL EnumThreadWindows(DWORD thread, WNDENUMPROC procedure, LPARAM parameter);
BOOL IsWindow(HWND window);
BOOL IsWindowVisible(HWND window);
BOOL IsWindowEnabled(HWND window);
BOOL IsChild(HWND parent, HWND window);
BOOL IsIconic(HWND window);
BOOL IsZoomed(HWND window);
BOOL EnableWindow(HWND window, BOOL enable); // TRUE: it was disabled
// The creating thread, as GetCurrentThreadId names it there; `process` may be null.
DWORD GetWindowThreadProcessId(HWND window, LPDWORD process);

// ---- Place and order.

inline constexpr UINT SWP_NOSIZE = 0x0001;
inline constexpr UINT SWP_NOMOVE = 0x0002;
inline constexpr UINT SWP_NOZORDER = 0x0004;
inline constexpr UINT SWP_NOREDRAW = 0x0008;
inline constexpr UINT SWP_NOACTIVATE = 0x0010;
inline constexpr UINT SWP_FRAMECHANGED = 0x0020;
inline constexpr UINT SWP_DRAWFRAME = SWP_FRAMECHANGED;
inline constexpr UINT SWP_SHOWWINDOW = 0x0040;
inline constexpr UINT SWP_HIDEWINDOW = 0x0080;
inline constexpr UINT SWP_NOCOPYBITS = 0x0100;
inline constexpr UINT SWP_NOOWNERZORDER = 0x0200;
inline constexpr UINT SWP_NOREPOSITION = SWP_NOOWNERZORDER;
inline constexpr UINT SWP_NOSENDCHANGING = 0x0400;

inline const HWND HWND_TOP = nullptr;
inline const HWND HWND_BOTTOM = reinterpret_cast<HWND>(1);
inline const HWND HWND_TOPMOST = reinterpret_cast<HWND>(-1);
inline const HWND HWND_NOTOPMOST = reinterpret_cast<HWND>(-2);
inline const HWND HWND_BROADCAST =
    reinterpret_cast<HWND>(0xFFFF); // PostMessageA and SendMessageA: all top-level windows

BOOL SetWindowPos(HWND window, HWND insert_after, int x, int y, int width, int height, UINT flags);
BOOL MoveWindow(HWND window, int x, int y, int width, int height, BOOL repaint);
BOOL BringWindowToTop(HWND window);

inline constexpr int SW_HIDE = 0;
inline constexpr int SW_SHOWNORMAL = 1;
inline constexpr int SW_NORMAL = SW_SHOWNORMAL;
inline constexpr int SW_SHOWMINIMIZED = 2;
inline constexpr int SW_SHOWMAXIMIZED = 3;
inline constexpr int SW_MAXIMIZE = SW_SHOWMAXIMIZED;
inline constexpr int SW_SHOWNOACTIVATE = 4;
inline constexpr int SW_SHOW = 5;
inline constexpr int SW_MINIMIZE = 6;
inline constexpr int SW_SHOWMINNOACTIVE = 7;
inline constexpr int SW_SHOWNA = 8;
inline constexpr int SW_RESTORE = 9;
inline constexpr int SW_SHOWDEFAULT = 10;
BOOL ShowWindow(HWND window, int command); // TRUE: it was visible
BOOL GetWindowPlacement(HWND window, WINDOWPLACEMENT* placement);

BOOL GetWindowRect(HWND window, LPRECT rect);
BOOL GetClientRect(HWND window, LPRECT rect);
BOOL ClientToScreen(HWND window, LPPOINT point);
BOOL ScreenToClient(HWND window, LPPOINT point);
// From the client area of `from` to that of `to` (null: the screen); the offset, x in the low word. Two points that are
// a rectangle stay one.
int MapWindowPoints(HWND from, HWND to, LPPOINT points, UINT count);
BOOL AdjustWindowRect(LPRECT rect, DWORD style, BOOL menu);
BOOL AdjustWindowRectEx(LPRECT rect, DWORD style, BOOL menu, DWORD ex_style);
HWND WindowFromPoint(POINT point);
HWND ChildWindowFromPoint(HWND window, POINT point);

// The window's outline in window coordinates, null for the whole rectangle; the window owns the region from now on.
int SetWindowRgn(HWND window, HRGN region, BOOL redraw);
int GetWindowRgn(HWND window, HRGN region);

// ---- Activation, focus, capture.

HWND SetActiveWindow(HWND window);
HWND GetActiveWindow();
BOOL SetForegroundWindow(HWND window);
HWND GetForegroundWindow();
HWND SetFocus(HWND window);
HWND GetFocus();
HWND SetCapture(HWND window);
BOOL ReleaseCapture();
HWND GetCapture();
