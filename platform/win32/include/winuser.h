// user: windows, messages, timers, input, metrics, colours, monitors.
//
// A window belongs to the thread that created it; its procedure runs there. Calls that only ask, InvalidateRect,
// PostMessageA and SendMessageA may come from any thread; ShowWindow, SetWindowPos, UpdateWindow and their fellows may
// too and are carried out on the window's thread while the caller waits. Sizes and positions are pixels: of the screen
// for top-level windows, of the parent's client area for child windows.
#pragma once

#include "windef.h"
#include "wingdi.h"

using WNDPROC = LRESULT(CALLBACK*)(HWND, UINT, WPARAM, LPARAM);
using TIMERPROC = void(CALLBACK*)(HWND, UINT, UINT_PTR, DWORD);
using WNDENUMPROC = BOOL(CALLBACK*)(HWND, LPARAM);
using MONITORENUMPROC = BOOL(CALLBACK*)(HMONITOR, HDC, LPRECT, LPARAM);

constexpr int GET_X_LPARAM(LPARAM value)
{
    return static_cast<SHORT>(LOWORD(static_cast<ULONG_PTR>(value)));
}
constexpr int GET_Y_LPARAM(LPARAM value)
{
    return static_cast<SHORT>(HIWORD(static_cast<ULONG_PTR>(value)));
}
constexpr SHORT GET_WHEEL_DELTA_WPARAM(WPARAM value)
{
    return static_cast<SHORT>(HIWORD(value));
}

// ---- Structures.

struct MSG {
    HWND hwnd;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    DWORD time; // milliseconds, GetTickCount's clock
    POINT pt;   // the pointer on the screen
};
using LPMSG = MSG*;

struct WNDCLASSA {
    UINT style;
    WNDPROC lpfnWndProc;
    int cbClsExtra;
    int cbWndExtra; // bytes that GetWindowLongPtrA reaches at offsets from 0 on
    HINSTANCE hInstance;
    HICON hIcon;
    HCURSOR hCursor;
    HBRUSH hbrBackground; // borrowed until the class goes; or a COLOR_ number + 1
    LPCSTR lpszMenuName;
    LPCSTR lpszClassName;
};

struct WNDCLASSEXA {
    UINT cbSize;
    UINT style;
    WNDPROC lpfnWndProc;
    int cbClsExtra;
    int cbWndExtra;
    HINSTANCE hInstance;
    HICON hIcon;
    HCURSOR hCursor;
    HBRUSH hbrBackground;
    LPCSTR lpszMenuName;
    LPCSTR lpszClassName;
    HICON hIconSm;
};

struct CREATESTRUCTA {
    LPVOID lpCreateParams;
    HINSTANCE hInstance;
    HMENU hMenu;
    HWND hwndParent;
    int cy;
    int cx;
    int y;
    int x;
    LONG style;
    LPCSTR lpszName;
    LPCSTR lpszClass;
    DWORD dwExStyle;
};
using LPCREATESTRUCTA = CREATESTRUCTA*;

struct PAINTSTRUCT {
    HDC hdc;
    BOOL fErase; // the background was not erased
    RECT rcPaint;
    BOOL fRestore;
    BOOL fIncUpdate;
    BYTE rgbReserved[32];
};
using LPPAINTSTRUCT = PAINTSTRUCT*;

struct WINDOWPOS {
    HWND hwnd;
    HWND hwndInsertAfter;
    int x;
    int y;
    int cx;
    int cy;
    UINT flags;
};
using LPWINDOWPOS = WINDOWPOS*;

struct NCCALCSIZE_PARAMS {
    RECT rgrc[3];
    WINDOWPOS* lppos;
};

struct MINMAXINFO {
    POINT ptReserved;
    POINT ptMaxSize;
    POINT ptMaxPosition;
    POINT ptMinTrackSize;
    POINT ptMaxTrackSize;
};

struct STYLESTRUCT {
    DWORD styleOld;
    DWORD styleNew;
};

struct MONITORINFO {
    DWORD cbSize;
    RECT rcMonitor;
    RECT rcWork;
    DWORD dwFlags;
};
using LPMONITORINFO = MONITORINFO*;

struct MEASUREITEMSTRUCT {
    UINT CtlType;
    UINT CtlID;
    UINT itemID;
    UINT itemWidth; // pixels; the answer, like the height
    UINT itemHeight;
    ULONG_PTR itemData;
};
using LPMEASUREITEMSTRUCT = MEASUREITEMSTRUCT*;

struct DRAWITEMSTRUCT {
    UINT CtlType;
    UINT CtlID;
    UINT itemID;
    UINT itemAction;
    UINT itemState;
    HWND hwndItem;
    HDC hDC;
    RECT rcItem;
    ULONG_PTR itemData;
};
using LPDRAWITEMSTRUCT = DRAWITEMSTRUCT*;

struct TRACKMOUSEEVENT {
    DWORD cbSize;
    DWORD dwFlags;
    HWND hwndTrack;
    DWORD dwHoverTime;
};
using LPTRACKMOUSEEVENT = TRACKMOUSEEVENT*;

struct WINDOWPLACEMENT {
    UINT length;
    UINT flags;
    UINT showCmd;
    POINT ptMinPosition;
    POINT ptMaxPosition;
    RECT rcNormalPosition;
};

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
// refuses, WM_NCCREATE answers FALSE or WM_CREATE answers -1; the window is then gone.
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

// ---- Messages.

inline constexpr UINT WM_NULL = 0x0000;
inline constexpr UINT WM_CREATE = 0x0001;
inline constexpr UINT WM_DESTROY = 0x0002;
inline constexpr UINT WM_MOVE = 0x0003;
inline constexpr UINT WM_SIZE = 0x0005;
inline constexpr UINT WM_ACTIVATE = 0x0006;
inline constexpr UINT WM_SETFOCUS = 0x0007;
inline constexpr UINT WM_KILLFOCUS = 0x0008;
inline constexpr UINT WM_ENABLE = 0x000A;
inline constexpr UINT WM_SETREDRAW = 0x000B;
inline constexpr UINT WM_SETTEXT = 0x000C;
inline constexpr UINT WM_GETTEXT = 0x000D;
inline constexpr UINT WM_GETTEXTLENGTH = 0x000E;
inline constexpr UINT WM_PAINT = 0x000F;
inline constexpr UINT WM_CLOSE = 0x0010;
inline constexpr UINT WM_QUERYENDSESSION = 0x0011;
inline constexpr UINT WM_QUIT = 0x0012;
inline constexpr UINT WM_ERASEBKGND = 0x0014;
inline constexpr UINT WM_SYSCOLORCHANGE = 0x0015;
inline constexpr UINT WM_ENDSESSION = 0x0016;
inline constexpr UINT WM_SHOWWINDOW = 0x0018;
inline constexpr UINT WM_CTLCOLOR = 0x0019;
inline constexpr UINT WM_ACTIVATEAPP = 0x001C;
inline constexpr UINT WM_CANCELMODE = 0x001F;
inline constexpr UINT WM_SETCURSOR = 0x0020;
inline constexpr UINT WM_MOUSEACTIVATE = 0x0021;
inline constexpr UINT WM_CHILDACTIVATE = 0x0022;
inline constexpr UINT WM_GETMINMAXINFO = 0x0024;
inline constexpr UINT WM_DRAWITEM = 0x002B;
inline constexpr UINT WM_MEASUREITEM = 0x002C;
inline constexpr UINT WM_SETFONT = 0x0030;
inline constexpr UINT WM_GETFONT = 0x0031;
inline constexpr UINT WM_WINDOWPOSCHANGING = 0x0046;
inline constexpr UINT WM_WINDOWPOSCHANGED = 0x0047;
inline constexpr UINT WM_NOTIFY = 0x004E;
inline constexpr UINT WM_CONTEXTMENU = 0x007B;
inline constexpr UINT WM_STYLECHANGING = 0x007C;
inline constexpr UINT WM_STYLECHANGED = 0x007D;
inline constexpr UINT WM_GETICON = 0x007F;
inline constexpr UINT WM_SETICON = 0x0080;
inline constexpr UINT WM_NCCREATE = 0x0081;
inline constexpr UINT WM_NCDESTROY = 0x0082;
inline constexpr UINT WM_NCCALCSIZE = 0x0083;
inline constexpr UINT WM_NCHITTEST = 0x0084;
inline constexpr UINT WM_NCPAINT = 0x0085;
inline constexpr UINT WM_NCACTIVATE = 0x0086;
inline constexpr UINT WM_NCMOUSEMOVE = 0x00A0;
inline constexpr UINT WM_NCLBUTTONDOWN = 0x00A1;
inline constexpr UINT WM_NCLBUTTONUP = 0x00A2;
inline constexpr UINT WM_NCLBUTTONDBLCLK = 0x00A3;
inline constexpr UINT WM_NCRBUTTONDOWN = 0x00A4;
inline constexpr UINT WM_NCRBUTTONUP = 0x00A5;
inline constexpr UINT WM_NCRBUTTONDBLCLK = 0x00A6;
inline constexpr UINT WM_NCMBUTTONDOWN = 0x00A7;
inline constexpr UINT WM_NCMBUTTONUP = 0x00A8;
inline constexpr UINT WM_NCMBUTTONDBLCLK = 0x00A9;
inline constexpr UINT WM_KEYFIRST = 0x0100;
inline constexpr UINT WM_KEYDOWN = 0x0100;
inline constexpr UINT WM_KEYUP = 0x0101;
inline constexpr UINT WM_CHAR = 0x0102;
inline constexpr UINT WM_DEADCHAR = 0x0103;
inline constexpr UINT WM_SYSKEYDOWN = 0x0104;
inline constexpr UINT WM_SYSKEYUP = 0x0105;
inline constexpr UINT WM_SYSCHAR = 0x0106;
inline constexpr UINT WM_KEYLAST = 0x0109;
inline constexpr UINT WM_INITDIALOG = 0x0110;
inline constexpr UINT WM_COMMAND = 0x0111;
inline constexpr UINT WM_SYSCOMMAND = 0x0112;
inline constexpr UINT WM_TIMER = 0x0113;
inline constexpr UINT WM_HSCROLL = 0x0114;
inline constexpr UINT WM_VSCROLL = 0x0115;
inline constexpr UINT WM_INITMENU = 0x0116;
inline constexpr UINT WM_INITMENUPOPUP = 0x0117;
inline constexpr UINT WM_MENUSELECT = 0x011F;
inline constexpr UINT WM_ENTERIDLE = 0x0121;
inline constexpr UINT WM_MOUSEFIRST = 0x0200;
inline constexpr UINT WM_MOUSEMOVE = 0x0200;
inline constexpr UINT WM_LBUTTONDOWN = 0x0201;
inline constexpr UINT WM_LBUTTONUP = 0x0202;
inline constexpr UINT WM_LBUTTONDBLCLK = 0x0203;
inline constexpr UINT WM_RBUTTONDOWN = 0x0204;
inline constexpr UINT WM_RBUTTONUP = 0x0205;
inline constexpr UINT WM_RBUTTONDBLCLK = 0x0206;
inline constexpr UINT WM_MBUTTONDOWN = 0x0207;
inline constexpr UINT WM_MBUTTONUP = 0x0208;
inline constexpr UINT WM_MBUTTONDBLCLK = 0x0209;
inline constexpr UINT WM_MOUSEWHEEL = 0x020A;
inline constexpr UINT WM_MOUSELAST = 0x020A;
inline constexpr UINT WM_PARENTNOTIFY = 0x0210;
inline constexpr UINT WM_SIZING = 0x0214;
inline constexpr UINT WM_CAPTURECHANGED = 0x0215;
inline constexpr UINT WM_MOVING = 0x0216;
inline constexpr UINT WM_MDIACTIVATE = 0x0222;
inline constexpr UINT WM_ENTERSIZEMOVE = 0x0231;
inline constexpr UINT WM_EXITSIZEMOVE = 0x0232;
inline constexpr UINT WM_MOUSELEAVE = 0x02A3;
inline constexpr UINT WM_USER = 0x0400;
inline constexpr UINT WM_APP = 0x8000;

inline constexpr WPARAM SIZE_RESTORED = 0;
inline constexpr WPARAM SIZE_MINIMIZED = 1;
inline constexpr WPARAM SIZE_MAXIMIZED = 2;
inline constexpr WPARAM WA_INACTIVE = 0;
inline constexpr WPARAM WA_ACTIVE = 1;
inline constexpr WPARAM WA_CLICKACTIVE = 2;
inline constexpr LRESULT MA_ACTIVATE = 1;
inline constexpr LRESULT MA_ACTIVATEANDEAT = 2;
inline constexpr LRESULT MA_NOACTIVATE = 3;
inline constexpr LRESULT MA_NOACTIVATEANDEAT = 4;
inline constexpr LRESULT WVR_HREDRAW = 0x0100;
inline constexpr LRESULT WVR_VREDRAW = 0x0200;
inline constexpr LRESULT WVR_REDRAW = WVR_HREDRAW | WVR_VREDRAW;
inline constexpr WPARAM ICON_SMALL = 0;
inline constexpr WPARAM ICON_BIG = 1;

inline constexpr WPARAM SC_SIZE = 0xF000;
inline constexpr WPARAM SC_MOVE = 0xF010;
inline constexpr WPARAM SC_MINIMIZE = 0xF020;
inline constexpr WPARAM SC_MAXIMIZE = 0xF030;
inline constexpr WPARAM SC_CLOSE = 0xF060;
inline constexpr WPARAM SC_MOUSEMENU = 0xF090;
inline constexpr WPARAM SC_KEYMENU = 0xF100;
inline constexpr WPARAM SC_RESTORE = 0xF120;

inline constexpr int HTERROR = -2;
inline constexpr int HTTRANSPARENT = -1;
inline constexpr int HTNOWHERE = 0;
inline constexpr int HTCLIENT = 1;
inline constexpr int HTCAPTION = 2;
inline constexpr int HTSYSMENU = 3;
inline constexpr int HTGROWBOX = 4;
inline constexpr int HTMENU = 5;
inline constexpr int HTMINBUTTON = 8;
inline constexpr int HTMAXBUTTON = 9;
inline constexpr int HTLEFT = 10;
inline constexpr int HTRIGHT = 11;
inline constexpr int HTTOP = 12;
inline constexpr int HTTOPLEFT = 13;
inline constexpr int HTTOPRIGHT = 14;
inline constexpr int HTBOTTOM = 15;
inline constexpr int HTBOTTOMLEFT = 16;
inline constexpr int HTBOTTOMRIGHT = 17;
inline constexpr int HTBORDER = 18;
inline constexpr int HTCLOSE = 20;

inline constexpr WPARAM MK_LBUTTON = 0x0001;
inline constexpr WPARAM MK_RBUTTON = 0x0002;
inline constexpr WPARAM MK_SHIFT = 0x0004;
inline constexpr WPARAM MK_CONTROL = 0x0008;
inline constexpr WPARAM MK_MBUTTON = 0x0010;
inline constexpr int WHEEL_DELTA = 120;

inline constexpr UINT PM_NOREMOVE = 0x0000;
inline constexpr UINT PM_REMOVE = 0x0001;

// Sent messages are served before posted ones, then come input, painting and timers; WM_QUIT follows the posted ones.
// 0: WM_QUIT was taken; else 1. When the display is lost, WM_QUIT comes with exit code 1.
BOOL GetMessageA(LPMSG message, HWND window, UINT first, UINT last);
BOOL PeekMessageA(LPMSG message, HWND window, UINT first, UINT last, UINT remove);
BOOL WaitMessage(); // until something stands in the queue that was not there at the last look
BOOL TranslateMessage(const MSG* message);
LRESULT DispatchMessageA(const MSG* message);
void PostQuitMessage(int exit_code);
BOOL PostMessageA(HWND window, UINT message, WPARAM wparam, LPARAM lparam); // a null window: the calling thread
BOOL PostThreadMessageA(DWORD thread, UINT message, WPARAM wparam, LPARAM lparam);
// On another thread's window: waits for the answer and serves messages sent to the caller's windows meanwhile. 0 when
// the window is gone, or goes before it answers.
LRESULT SendMessageA(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
DWORD GetMessagePos();
LONG GetMessageTime();
UINT RegisterWindowMessageA(LPCSTR name);

inline constexpr UINT USER_TIMER_MINIMUM = 10;
inline constexpr UINT USER_TIMER_MAXIMUM = 0x7FFFFFFF;
// Milliseconds, brought within the two bounds. The window (or null) must belong to the calling thread.
UINT_PTR SetTimer(HWND window, UINT_PTR id, UINT period, TIMERPROC procedure);
BOOL KillTimer(HWND window, UINT_PTR id);

// ---- Painting.

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

// ---- Pointer and keys.

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

// ---- The system.

inline constexpr int SM_CXSCREEN = 0;
inline constexpr int SM_CYSCREEN = 1;
inline constexpr int SM_CXVSCROLL = 2;
inline constexpr int SM_CYHSCROLL = 3;
inline constexpr int SM_CYCAPTION = 4;
inline constexpr int SM_CXBORDER = 5;
inline constexpr int SM_CYBORDER = 6;
inline constexpr int SM_CXFIXEDFRAME = 7;
inline constexpr int SM_CYFIXEDFRAME = 8;
inline constexpr int SM_CXDLGFRAME = SM_CXFIXEDFRAME;
inline constexpr int SM_CYDLGFRAME = SM_CYFIXEDFRAME;
inline constexpr int SM_CXICON = 11;
inline constexpr int SM_CYICON = 12;
inline constexpr int SM_CXCURSOR = 13;
inline constexpr int SM_CYCURSOR = 14;
inline constexpr int SM_CYMENU = 15;
inline constexpr int SM_CXFULLSCREEN = 16;
inline constexpr int SM_CYFULLSCREEN = 17;
inline constexpr int SM_MOUSEPRESENT = 19;
inline constexpr int SM_CXMIN = 28;
inline constexpr int SM_CYMIN = 29;
inline constexpr int SM_CXSIZE = 30;
inline constexpr int SM_CYSIZE = 31;
inline constexpr int SM_CXFRAME = 32;
inline constexpr int SM_CYFRAME = 33;
inline constexpr int SM_CXSIZEFRAME = SM_CXFRAME;
inline constexpr int SM_CYSIZEFRAME = SM_CYFRAME;
inline constexpr int SM_CXMINTRACK = 34;
inline constexpr int SM_CYMINTRACK = 35;
inline constexpr int SM_CXDOUBLECLK = 36;
inline constexpr int SM_CYDOUBLECLK = 37;
inline constexpr int SM_CMOUSEBUTTONS = 43;
inline constexpr int SM_CXEDGE = 45;
inline constexpr int SM_CYEDGE = 46;
inline constexpr int SM_CXSMICON = 49;
inline constexpr int SM_CYSMICON = 50;
inline constexpr int SM_CYSMCAPTION = 51;
inline constexpr int SM_CXSMSIZE = 52;
inline constexpr int SM_CYSMSIZE = 53;
inline constexpr int SM_CXMENUSIZE = 54;
inline constexpr int SM_CYMENUSIZE = 55;
inline constexpr int SM_CXMAXTRACK = 59;
inline constexpr int SM_CYMAXTRACK = 60;
inline constexpr int SM_CXMAXIMIZED = 61;
inline constexpr int SM_CYMAXIMIZED = 62;
inline constexpr int SM_CXDRAG = 68;
inline constexpr int SM_CYDRAG = 69;
inline constexpr int SM_CXMENUCHECK = 71;
inline constexpr int SM_CYMENUCHECK = 72;
inline constexpr int SM_XVIRTUALSCREEN = 76;
inline constexpr int SM_YVIRTUALSCREEN = 77;
inline constexpr int SM_CXVIRTUALSCREEN = 78;
inline constexpr int SM_CYVIRTUALSCREEN = 79;
inline constexpr int SM_CMONITORS = 80;
int GetSystemMetrics(int index); // pixels; 0 for an unknown index

inline constexpr int COLOR_SCROLLBAR = 0;
inline constexpr int COLOR_BACKGROUND = 1;
inline constexpr int COLOR_DESKTOP = COLOR_BACKGROUND;
inline constexpr int COLOR_ACTIVECAPTION = 2;
inline constexpr int COLOR_INACTIVECAPTION = 3;
inline constexpr int COLOR_MENU = 4;
inline constexpr int COLOR_WINDOW = 5;
inline constexpr int COLOR_WINDOWFRAME = 6;
inline constexpr int COLOR_MENUTEXT = 7;
inline constexpr int COLOR_WINDOWTEXT = 8;
inline constexpr int COLOR_CAPTIONTEXT = 9;
inline constexpr int COLOR_ACTIVEBORDER = 10;
inline constexpr int COLOR_INACTIVEBORDER = 11;
inline constexpr int COLOR_APPWORKSPACE = 12;
inline constexpr int COLOR_HIGHLIGHT = 13;
inline constexpr int COLOR_HIGHLIGHTTEXT = 14;
inline constexpr int COLOR_BTNFACE = 15;
inline constexpr int COLOR_3DFACE = COLOR_BTNFACE;
inline constexpr int COLOR_BTNSHADOW = 16;
inline constexpr int COLOR_3DSHADOW = COLOR_BTNSHADOW;
inline constexpr int COLOR_GRAYTEXT = 17;
inline constexpr int COLOR_BTNTEXT = 18;
inline constexpr int COLOR_INACTIVECAPTIONTEXT = 19;
inline constexpr int COLOR_BTNHIGHLIGHT = 20;
inline constexpr int COLOR_3DHIGHLIGHT = COLOR_BTNHIGHLIGHT;
inline constexpr int COLOR_3DHILIGHT = COLOR_BTNHIGHLIGHT;
inline constexpr int COLOR_3DDKSHADOW = 21;
inline constexpr int COLOR_3DLIGHT = 22;
inline constexpr int COLOR_INFOTEXT = 23;
inline constexpr int COLOR_INFOBK = 24;
inline constexpr int COLOR_HOTLIGHT = 26;
inline constexpr int COLOR_GRADIENTACTIVECAPTION = 27;
inline constexpr int COLOR_GRADIENTINACTIVECAPTION = 28;
inline constexpr int COLOR_MENUHILIGHT = 29;
inline constexpr int COLOR_MENUBAR = 30;
COLORREF GetSysColor(int index);    // 0 for an unknown index
HBRUSH GetSysColorBrush(int index); // the system's; null for an unknown index

// Sizes and fonts of window frames, captions, menus and message boxes.
struct NONCLIENTMETRICSA {
    UINT cbSize; // of this structure, set by the caller
    int iBorderWidth;
    int iScrollWidth;
    int iScrollHeight;
    int iCaptionWidth;
    int iCaptionHeight;
    LOGFONTA lfCaptionFont;
    int iSmCaptionWidth;
    int iSmCaptionHeight;
    LOGFONTA lfSmCaptionFont;
    int iMenuWidth;
    int iMenuHeight;
    LOGFONTA lfMenuFont;
    LOGFONTA lfStatusFont;
    LOGFONTA lfMessageFont;
};
static_assert(sizeof(NONCLIENTMETRICSA) == 340);

inline constexpr UINT SPI_GETNONCLIENTMETRICS = 0x0029;                           // a NONCLIENTMETRICSA
inline constexpr UINT SPI_GETWORKAREA = 0x0030;                                   // a RECT: of the primary monitor
BOOL SystemParametersInfoA(UINT action, UINT parameter, PVOID data, UINT change); // FALSE for any other action

inline constexpr DWORD MONITOR_DEFAULTTONULL = 0;
inline constexpr DWORD MONITOR_DEFAULTTOPRIMARY = 1;
inline constexpr DWORD MONITOR_DEFAULTTONEAREST = 2;
inline constexpr DWORD MONITORINFOF_PRIMARY = 1;
HMONITOR MonitorFromWindow(HWND window, DWORD otherwise);
HMONITOR MonitorFromRect(LPCRECT rect, DWORD otherwise);
HMONITOR MonitorFromPoint(POINT point, DWORD otherwise);
BOOL GetMonitorInfoA(HMONITOR monitor, LPMONITORINFO info);
BOOL EnumDisplayMonitors(HDC dc, LPCRECT clip, MONITORENUMPROC procedure, LPARAM parameter); // `dc` must be null

// ---- Rectangles. A null pointer gives FALSE.

BOOL SetRect(LPRECT rect, int left, int top, int right, int bottom);
BOOL SetRectEmpty(LPRECT rect);
BOOL CopyRect(LPRECT destination, const RECT* source);
BOOL InflateRect(LPRECT rect, int dx, int dy);
BOOL OffsetRect(LPRECT rect, int dx, int dy);
BOOL IntersectRect(LPRECT destination, const RECT* first, const RECT* second);
BOOL UnionRect(LPRECT destination, const RECT* first, const RECT* second);
BOOL SubtractRect(LPRECT destination, const RECT* first, const RECT* second);
BOOL PtInRect(const RECT* rect, POINT point);
BOOL IsRectEmpty(const RECT* rect);
BOOL EqualRect(const RECT* first, const RECT* second);
