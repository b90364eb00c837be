// user: menus.
//
// A menu is a list of items: commands with an id and a text, separators, submenus, and items that the owner draws.
// Menus belong to the process; any thread may build them. A text marks its letter with "&" ("&&" is one "&") and sets
// what follows a tab apart at the right.
#pragma once

#include "winuser/types.h"

inline constexpr UINT MF_BYCOMMAND = 0x0000;
inline constexpr UINT MF_BYPOSITION = 0x0400;
inline constexpr UINT MF_STRING = 0x0000;
inline constexpr UINT MF_ENABLED = 0x0000;
inline constexpr UINT MF_GRAYED = 0x0001;
inline constexpr UINT MF_DISABLED = 0x0002;
inline constexpr UINT MF_UNCHECKED = 0x0000;
inline constexpr UINT MF_CHECKED = 0x0008;
inline constexpr UINT MF_POPUP = 0x0010;
inline constexpr UINT MF_HILITE = 0x0080;
inline constexpr UINT MF_OWNERDRAW = 0x0100;
inline constexpr UINT MF_SEPARATOR = 0x0800;
inline constexpr UINT MF_DEFAULT = 0x1000;
inline constexpr UINT MF_SYSMENU = 0x2000;
inline constexpr UINT MF_MOUSESELECT = 0x8000;

HMENU CreateMenu();
HMENU CreatePopupMenu();
// With its submenus.
BOOL DestroyMenu(HMENU menu);
BOOL IsMenu(HMENU menu);

// `id` is the submenu with MF_POPUP, which the menu owns from now on; `text` is the item's data with MF_OWNERDRAW.
// FALSE: no such menu, another flag than those above, a submenu that holds the menu itself.
BOOL AppendMenuA(HMENU menu, UINT flags, UINT_PTR id, LPCSTR text);
// Before the item at `item`, or with that id in the menu or one of its submenus; at the end when there is none.
BOOL InsertMenuA(HMENU menu, UINT item, UINT flags, UINT_PTR id, LPCSTR text);
// A submenu that gives way to something else is destroyed.
BOOL ModifyMenuA(HMENU menu, UINT item, UINT flags, UINT_PTR id, LPCSTR text);
BOOL DeleteMenu(HMENU menu, UINT item, UINT flags); // a submenu is destroyed
BOOL RemoveMenu(HMENU menu, UINT item, UINT flags); // a submenu lives on

int GetMenuItemCount(HMENU menu);             // -1: no such menu
UINT GetMenuItemID(HMENU menu, int position); // 0xFFFFFFFF of a submenu and where no item is
HMENU GetSubMenu(HMENU menu, int position);   // null where none is
// The bytes copied, or without a buffer the text's length.
int GetMenuStringA(HMENU menu, UINT item, LPSTR buffer, int size, UINT flags);
// MF_ bits; of a submenu with its number of items in the second byte. 0xFFFFFFFF: no such item.
UINT GetMenuState(HMENU menu, UINT item, UINT flags);

// These two return the bits before, or 0xFFFFFFFF (-1): no such item.
DWORD CheckMenuItem(HMENU menu, UINT item, UINT check);
BOOL EnableMenuItem(HMENU menu, UINT item, UINT enable);
// 0xFFFFFFFF as the item: none is the default any more.
BOOL SetMenuDefaultItem(HMENU menu, UINT item, UINT by_position);

// The window's own copy of the system menu, in the language of the process's code page (Chinese or English); it is
// destroyed with the window. With `revert` the next call gives a fresh one, and the answer is null. Also null: a child
// window without WS_SYSMENU. Restore, Move, Size, Minimise and Maximise are enabled as the window's state and style
// allow, here and when the menu opens; Close is the program's.
HMENU GetSystemMenu(HWND window, BOOL revert);

inline constexpr UINT TPM_LEFTBUTTON = 0x0000;
inline constexpr UINT TPM_RIGHTBUTTON = 0x0002; // the right button chooses too
inline constexpr UINT TPM_LEFTALIGN = 0x0000;
inline constexpr UINT TPM_CENTERALIGN = 0x0004;
inline constexpr UINT TPM_RIGHTALIGN = 0x0008;
inline constexpr UINT TPM_TOPALIGN = 0x0000;
inline constexpr UINT TPM_VCENTERALIGN = 0x0010;
inline constexpr UINT TPM_BOTTOMALIGN = 0x0020;
inline constexpr UINT TPM_NONOTIFY = 0x0080; // the owner hears nothing, a choice is told by TPM_RETURNCMD only
inline constexpr UINT TPM_RETURNCMD = 0x0100;
inline constexpr UINT TPM_LAYOUTRTL = 0x8000;

// Shows the menu at a point of the screen, within the work area of its monitor, and handles messages until it closes:
// by a choice, by Escape, by a press outside (which nobody else gets), when the owner is destroyed, hidden or not
// active any more, when the capture goes elsewhere, by WM_CANCELMODE or EndMenu. The owner is a window of the calling
// thread.
//
// TRUE, or with TPM_RETURNCMD the id chosen; 0: nothing was chosen, or the menu could not be shown (another one is
// open, last error 1446). Without TPM_RETURNCMD a choice is posted as WM_COMMAND (from a system menu as WM_SYSCOMMAND).
// The owner hears WM_ENTERMENULOOP, WM_INITMENU, WM_INITMENUPOPUP, WM_MENUSELECT, WM_ENTERIDLE, WM_UNINITMENUPOPUP and
// WM_EXITMENULOOP. `reserved` and `rect` are not looked at.
BOOL TrackPopupMenu(HMENU menu, UINT flags, int x, int y, int reserved, HWND owner, const RECT* rect);
// Closes the menu that the calling thread shows. FALSE: it shows none.
BOOL EndMenu();

inline constexpr WPARAM MSGF_MENU = 2;

inline constexpr UINT ODT_MENU = 1;
inline constexpr UINT ODA_DRAWENTIRE = 0x0001;
inline constexpr UINT ODS_SELECTED = 0x0001;
inline constexpr UINT ODS_GRAYED = 0x0002;
inline constexpr UINT ODS_DISABLED = 0x0004;
inline constexpr UINT ODS_CHECKED = 0x0008;
