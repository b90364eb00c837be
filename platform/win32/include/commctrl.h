// comctl: image lists, rows of small pictures of one size with masks. A list belongs to one thread at a time.
#pragma once

#include "wingdi.h"

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
