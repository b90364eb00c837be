// The message map's macros for single messages. Each calls the member of its name with the message's parts, as the
// declarations in wnd.h show; the handler may be the class's own or inherited.
#pragma once

#include "cmd_target.h"

#define AFX_POINT CPoint(lParam)
#define AFX_WINDOW(handle) CWnd::FromHandle(reinterpret_cast<HWND>(handle))
#define AFX_MENU(handle) CMenu::FromHandle(reinterpret_cast<HMENU>(handle))

#define ON_WM_CREATE() AFX_MESSAGE_RESULT(WM_CREATE, self->OnCreate(reinterpret_cast<LPCREATESTRUCTA>(lParam)))
#define ON_WM_NCCREATE() AFX_MESSAGE_RESULT(WM_NCCREATE, self->OnNcCreate(reinterpret_cast<LPCREATESTRUCTA>(lParam)))
#define ON_WM_DESTROY() AFX_MESSAGE_VOID(WM_DESTROY, self->OnDestroy())
#define ON_WM_NCDESTROY() AFX_MESSAGE_VOID(WM_NCDESTROY, self->OnNcDestroy())
#define ON_WM_CLOSE() AFX_MESSAGE_VOID(WM_CLOSE, self->OnClose())
#define ON_WM_QUERYENDSESSION() AFX_MESSAGE_RESULT(WM_QUERYENDSESSION, self->OnQueryEndSession())
#define ON_WM_ENDSESSION() AFX_MESSAGE_VOID(WM_ENDSESSION, self->OnEndSession(static_cast<BOOL>(wParam)))

#define ON_WM_MOVE() AFX_MESSAGE_VOID(WM_MOVE, self->OnMove(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)))
#define ON_WM_SIZE()                                                                                                   \
    AFX_MESSAGE_VOID(WM_SIZE, self->OnSize(static_cast<UINT>(wParam), GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)))
#define ON_WM_SHOWWINDOW()                                                                                             \
    AFX_MESSAGE_VOID(WM_SHOWWINDOW, self->OnShowWindow(static_cast<BOOL>(wParam), static_cast<UINT>(lParam)))
#define ON_WM_ENABLE() AFX_MESSAGE_VOID(WM_ENABLE, self->OnEnable(static_cast<BOOL>(wParam)))
#define ON_WM_ACTIVATE()                                                                                               \
    AFX_MESSAGE_VOID(WM_ACTIVATE, self->OnActivate(LOWORD(wParam), AFX_WINDOW(lParam), HIWORD(wParam)))
#define ON_WM_SETFOCUS() AFX_MESSAGE_VOID(WM_SETFOCUS, self->OnSetFocus(AFX_WINDOW(wParam)))
#define ON_WM_KILLFOCUS() AFX_MESSAGE_VOID(WM_KILLFOCUS, self->OnKillFocus(AFX_WINDOW(wParam)))
#define ON_WM_CAPTURECHANGED() AFX_MESSAGE_VOID(WM_CAPTURECHANGED, self->OnCaptureChanged(AFX_WINDOW(lParam)))
#define ON_WM_GETMINMAXINFO()                                                                                          \
    AFX_MESSAGE_VOID(WM_GETMINMAXINFO, self->OnGetMinMaxInfo(reinterpret_cast<MINMAXINFO*>(lParam)))
#define ON_WM_WINDOWPOSCHANGING()                                                                                      \
    AFX_MESSAGE_VOID(WM_WINDOWPOSCHANGING, self->OnWindowPosChanging(reinterpret_cast<WINDOWPOS*>(lParam)))
#define ON_WM_WINDOWPOSCHANGED()                                                                                       \
    AFX_MESSAGE_VOID(WM_WINDOWPOSCHANGED, self->OnWindowPosChanged(reinterpret_cast<WINDOWPOS*>(lParam)))

#define ON_WM_PAINT() AFX_MESSAGE_VOID(WM_PAINT, self->OnPaint())
#define ON_WM_ERASEBKGND()                                                                                             \
    AFX_MESSAGE_RESULT(WM_ERASEBKGND, self->OnEraseBkgnd(CDC::FromHandle(reinterpret_cast<HDC>(wParam))))
#define ON_WM_NCPAINT() AFX_MESSAGE_VOID(WM_NCPAINT, self->OnNcPaint())
#define ON_WM_NCACTIVATE() AFX_MESSAGE_RESULT(WM_NCACTIVATE, self->OnNcActivate(static_cast<BOOL>(wParam)))
#define ON_WM_NCCALCSIZE()                                                                                             \
    AFX_MESSAGE_VOID(WM_NCCALCSIZE,                                                                                    \
                     self->OnNcCalcSize(static_cast<BOOL>(wParam), reinterpret_cast<NCCALCSIZE_PARAMS*>(lParam)))
// Hit codes are small signed numbers, also when a handler gives them as unsigned.
#define ON_WM_NCHITTEST() AFX_MESSAGE_RESULT(WM_NCHITTEST, static_cast<int>(self->OnNcHitTest(AFX_POINT)))
#define ON_WM_SETCURSOR()                                                                                              \
    AFX_MESSAGE_RESULT(WM_SETCURSOR, self->OnSetCursor(AFX_WINDOW(wParam), LOWORD(lParam), HIWORD(lParam)))

#define ON_WM_MEASUREITEM()                                                                                            \
    AFX_MESSAGE_VOID(WM_MEASUREITEM,                                                                                   \
                     self->OnMeasureItem(static_cast<int>(wParam), reinterpret_cast<MEASUREITEMSTRUCT*>(lParam)))
#define ON_WM_DRAWITEM()                                                                                               \
    AFX_MESSAGE_VOID(WM_DRAWITEM, self->OnDrawItem(static_cast<int>(wParam), reinterpret_cast<DRAWITEMSTRUCT*>(lParam)))
#define ON_WM_INITMENU() AFX_MESSAGE_VOID(WM_INITMENU, self->OnInitMenu(AFX_MENU(wParam)))
#define ON_WM_INITMENUPOPUP()                                                                                          \
    AFX_MESSAGE_VOID(WM_INITMENUPOPUP, self->OnInitMenuPopup(AFX_MENU(wParam), LOWORD(lParam), HIWORD(lParam)))
#define ON_WM_CONTEXTMENU() AFX_MESSAGE_VOID(WM_CONTEXTMENU, self->OnContextMenu(AFX_WINDOW(wParam), AFX_POINT))
#define ON_WM_MDIACTIVATE()                                                                                            \
    AFX_MESSAGE_VOID(WM_MDIACTIVATE, self->OnMDIActivate(reinterpret_cast<HWND>(lParam) == self->m_hWnd,               \
                                                         AFX_WINDOW(lParam), AFX_WINDOW(wParam)))
#define ON_WM_CANCELMODE() AFX_MESSAGE_VOID(WM_CANCELMODE, self->OnCancelMode())

#define AFX_NC_MOUSE(message, member) AFX_MESSAGE_VOID(message, self->member(static_cast<UINT>(wParam), AFX_POINT))
#define ON_WM_NCMOUSEMOVE() AFX_NC_MOUSE(WM_NCMOUSEMOVE, OnNcMouseMove)
#define ON_WM_NCLBUTTONDOWN() AFX_NC_MOUSE(WM_NCLBUTTONDOWN, OnNcLButtonDown)
#define ON_WM_NCLBUTTONUP() AFX_NC_MOUSE(WM_NCLBUTTONUP, OnNcLButtonUp)
#define ON_WM_NCLBUTTONDBLCLK() AFX_NC_MOUSE(WM_NCLBUTTONDBLCLK, OnNcLButtonDblClk)
#define ON_WM_MOUSEMOVE() AFX_NC_MOUSE(WM_MOUSEMOVE, OnMouseMove)
#define ON_WM_LBUTTONDOWN() AFX_NC_MOUSE(WM_LBUTTONDOWN, OnLButtonDown)
#define ON_WM_LBUTTONUP() AFX_NC_MOUSE(WM_LBUTTONUP, OnLButtonUp)
#define ON_WM_LBUTTONDBLCLK() AFX_NC_MOUSE(WM_LBUTTONDBLCLK, OnLButtonDblClk)
#define ON_WM_RBUTTONDOWN() AFX_NC_MOUSE(WM_RBUTTONDOWN, OnRButtonDown)
#define ON_WM_RBUTTONUP() AFX_NC_MOUSE(WM_RBUTTONUP, OnRButtonUp)

#define AFX_KEY(message, member)                                                                                       \
    AFX_MESSAGE_VOID(message, self->member(static_cast<UINT>(wParam), LOWORD(lParam), HIWORD(lParam)))
#define ON_WM_KEYDOWN() AFX_KEY(WM_KEYDOWN, OnKeyDown)
#define ON_WM_KEYUP() AFX_KEY(WM_KEYUP, OnKeyUp)
#define ON_WM_CHAR() AFX_KEY(WM_CHAR, OnChar)

#define ON_WM_TIMER() AFX_MESSAGE_VOID(WM_TIMER, self->OnTimer(wParam))
#define ON_WM_SYSCOMMAND() AFX_MESSAGE_VOID(WM_SYSCOMMAND, self->OnSysCommand(static_cast<UINT>(wParam), lParam))
