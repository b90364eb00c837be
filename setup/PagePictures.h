// Where the window's pictures lie in bitmap 131, in pixels: four pages on top of each other, and below them a strip
// with the looks that no page shows.
#pragma once

#include <afxwin.h>

inline constexpr UINT kPagePictures = 131; // bitmap resource
inline constexpr int kPageWidth = 510;
inline constexpr int kPageHeight = 349;
inline constexpr int kStripTop = 4 * kPageHeight;

// A button: where it stands in the window and where its looks lie in the bitmap. At rest and pressed it is its page.
struct ButtonPlace {
    UINT nCommand;
    CRect rcWindow;
    CPoint ptUp;
    CPoint ptHover;
    CPoint ptChecked; // check boxes: the empty box
};

constexpr ButtonPlace PushButton(UINT nCommand, int nPage, int x, int xHover)
{
    return {
        nCommand, CRect(x, 288, x + 78, 318), CPoint(x, nPage * kPageHeight + 288), CPoint(xHover, kStripTop), {}
    };
}

constexpr ButtonPlace CheckBox(UINT nCommand, int y)
{
    return { nCommand, CRect(31, y, 44, y + 13), CPoint(31, 3 * kPageHeight + y), CPoint(350, kStripTop),
             CPoint(370, kStripTop) };
}

inline constexpr ButtonPlace kButtonPlaces[] = {
    PushButton(10001, 1, 302, 20),  PushButton(10002, 1, 392, 100), PushButton(10003, 3, 302, 180),
    PushButton(10004, 3, 392, 260), CheckBox(10005, 146),           CheckBox(10006, 174),
};
