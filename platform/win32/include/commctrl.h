// comctl: image lists, rows of small pictures of one size with masks, and tool tips. A list belongs to one thread at a
// time, a tip to the thread of its window.
#pragma once

#include "wingdi.h"
#include "winuser.h"

DECLARE_HANDLE(HIMAGELIST);

inline constexpr UINT ILC_MASK = 0x01;
inline constexpr UINT ILC_COLOR16 = 0x10;
inline constexpr UINT ILC_COLOR24 = 0x18;
inline constexpr UINT ILC_COLOR32 = 0x20;
inline constexpr UINT ILD_NORMAL = 0;
inline constexpr UINT ILD_TRANSPARENT = 1;
inline constexpr COLORREF CLR_DEFAULT = 0xFF000000;

// `width` and `height` of each picture, at most 4096. Whatever depth is asked for, pictures keep all their colours (and
// icons their alpha): ILC_COLOR16 saved memory once. ILC_MASK must be given. `initial` and `grow` are how many pictures
// to make room for. Null: a size or flag that is none.
HIMAGELIST ImageList_Create(int width, int height, UINT flags, int initial, int grow);
BOOL ImageList_Destroy(HIMAGELIST list);
int ImageList_GetImageCount(HIMAGELIST list);
BOOL ImageList_GetIconSize(HIMAGELIST list, int* width, int* height);
// Cuts the bitmap into as many pictures as its width holds and adds them; pixels of the colour `mask` (CLR_DEFAULT: of
// the bitmap's first pixel) are left out, and so is what a lower bitmap does not reach. The index of the first, or -1.
int ImageList_AddMasked(HIMAGELIST list, HBITMAP bitmap, COLORREF mask);
// Puts a copy of the icon, stretched to the list's size, in place of a picture, or adds it (index -1). Its index, or
// -1.
int ImageList_ReplaceIcon(HIMAGELIST list, int index, HICON icon);
inline int ImageList_AddIcon(HIMAGELIST list, HICON icon)
{
    return ImageList_ReplaceIcon(list, -1, icon);
}
// A new icon, which the caller destroys; null: no such picture, or a style other than the two above.
HICON ImageList_GetIcon(HIMAGELIST list, int index, UINT style);
// Removes one picture, or all (index -1); those behind it move up.
BOOL ImageList_Remove(HIMAGELIST list, int index);
BOOL ImageList_Draw(HIMAGELIST list, int index, HDC dc, int x, int y, UINT style);

// ---- Tool tips: a window of TOOLTIPS_CLASSA, which InitCommonControls registers, made as a popup of the window that
// its tools lie in. A tool is an area with a text. Whoever owns them relays the input messages of their windows; once
// the pointer rests on a tool, its text appears below the pointer, until the pointer leaves the tool, a button or key
// is pressed, or five seconds have passed; it then comes again only after the pointer has left the tool. The tip lies
// within the work area, never takes the focus, and the pointer goes through it.

inline constexpr char TOOLTIPS_CLASSA[] = "tooltips_class32";
void InitCommonControls();

inline constexpr DWORD TTS_ALWAYSTIP = 0x01; // also while the tool's window is not active
inline constexpr DWORD TTS_NOPREFIX = 0x02;  // else the first & of a run is left out of the text

inline constexpr UINT TTF_IDISHWND =
    0x0001; // the tool is the window that its id is the handle of, its whole client area
inline constexpr UINT TTF_RTLREADING = 0x0004;

// As the text of a tool: asked for by TTN_NEEDTEXTA each time it is to be shown.
inline const LPSTR LPSTR_TEXTCALLBACKA = reinterpret_cast<LPSTR>(INT_PTR{ -1 });

struct TOOLINFOA {
    UINT cbSize; // of the structure, with or without its last field
    UINT uFlags; // TTF_ bits; others are ignored
    HWND hwnd;   // the window that the tool lies in, which is asked for its text
    UINT_PTR uId;
    RECT rect;       // in the client area of `hwnd`
    HINSTANCE hinst; // not used
    LPSTR lpszText;  // in the process's code page, copied; its line breaks count
    LPARAM lParam;
};
using LPTOOLINFOA = TOOLINFOA*;

// What the lParam of every WM_NOTIFY points to.
struct NMHDR {
    HWND hwndFrom;
    UINT_PTR idFrom;
    UINT code;
};

// What WM_NOTIFY brings with TTN_NEEDTEXTA: the answer is the pointer, or the buffer when that is null.
struct NMTTDISPINFOA {
    NMHDR hdr;
    LPSTR lpszText;
    char szText[80];
    HINSTANCE hinst;
    UINT uFlags;
    LPARAM lParam; // of the tool
};

inline constexpr UINT TTN_GETDISPINFOA = static_cast<UINT>(-520);
inline constexpr UINT TTN_NEEDTEXTA = TTN_GETDISPINFOA;

inline constexpr UINT TTM_ACTIVATE = WM_USER + 1;     // wParam: whether tips are shown at all
inline constexpr UINT TTM_SETDELAYTIME = WM_USER + 3; // wParam: a TTDT_ number; lParam: milliseconds, -1 the usual
inline constexpr UINT TTM_ADDTOOLA = WM_USER + 4;     // lParam, here and below: a TOOLINFOA; replaces one of that id
inline constexpr UINT TTM_DELTOOLA = WM_USER + 5;     // by window and id
inline constexpr UINT TTM_NEWTOOLRECTA = WM_USER + 6; // likewise
inline constexpr UINT TTM_RELAYEVENT = WM_USER + 7;   // lParam: a MSG
inline constexpr UINT TTM_UPDATETIPTEXTA = WM_USER + 12;
inline constexpr UINT TTM_GETTOOLCOUNT = WM_USER + 13;
inline constexpr UINT TTM_SETMAXTIPWIDTH = WM_USER + 24; // lParam: pixels at which lines wrap, -1 none; the one before
inline constexpr UINT TTM_POP = WM_USER + 28;            // hides the tip that is shown

inline constexpr WPARAM TTDT_AUTOMATIC = 0; // the time of rest; the others follow in their usual proportion
inline constexpr WPARAM TTDT_RESHOW = 1;    // of rest on the next tool while a tip is shown
inline constexpr WPARAM TTDT_AUTOPOP = 2;   // that a tip is shown
inline constexpr WPARAM TTDT_INITIAL = 3;   // of rest: 500 milliseconds
