// Drawing with the fonts, colours and texts of the skin. Fonts and colours are named as in client.xml; places are
// pixels of the client area. User-interface thread.
#pragma once

#include "client/window/Commands.h"

#include <afxwin.h>

#include <string>

namespace client {

inline constexpr int kGap = 14; // between what stands below each other

// As the texts want their numbers.
inline int AsInt(std::size_t n)
{
    return static_cast<int>(n);
}

CString Text(TextId nText);

// Text of the files' world, which is UTF-8, in the bytes of the code page.
CString FromUtf8(const std::string& strText);

COLORREF Colour(const char* pszColour);

struct Pen {
    const char* pszFont;
    const char* pszColour;
};

// One line in the middle of the rectangle's height. nAlign: DT_LEFT, DT_CENTER or DT_RIGHT. Returns its width.
int DrawLine(CDC& dc, const CRect& rc, const CString& strText, const Pen& pen, UINT nAlign = DT_LEFT);

int LineWidth(CDC& dc, const CString& strText, const Pen& pen);

// As many lines of nLineHeight as the rectangle's width makes it. A line ends before a character of two bytes or
// behind a space; a word that is wider than the rectangle is cut off. Returns the bottom of the last line.
int DrawWrapped(CDC& dc, const CRect& rc, const CString& strText, const Pen& pen, int nLineHeight);

// A path in one line; one that is too long loses its middle.
void DrawPath(CDC& dc, const CRect& rc, const std::string& strPath, const Pen& pen);

// A bar on a rail; the fraction is nDone of nAll.
void DrawProgress(CDC& dc, const CRect& rc, std::size_t nDone, std::size_t nAll);

} // namespace client
