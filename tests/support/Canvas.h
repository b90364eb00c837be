// A picture to draw on and to read as letters.
#pragma once

#include <string>

#include <afxwin.h>

namespace test {

// A memory context with a white picture of its own. Letters: R, G, B, W for white, '.' for black, '?' for the rest.
class Canvas : public CDC {
public:
    Canvas(int cx, int cy, DWORD nLayout = 0) : m_size(cx, cy)
    {
        CreateCompatibleDC(nullptr);
        m_bmp.CreateBitmap(cx, cy, 1, 32, nullptr);
        m_hOld = ::SelectObject(m_hDC, m_bmp.m_hObject);
        PatBlt(0, 0, cx, cy, WHITENESS);
        SetLayout(nLayout);
    }
    ~Canvas() override { ::SelectObject(m_hDC, m_hOld); }

    CBitmap& Bitmap() { return m_bmp; }
    // Gives the bitmap away, out of the context, with these letters in it.
    HBITMAP Finish(const char* pszRows)
    {
        Draw(pszRows);
        ::SelectObject(m_hDC, m_hOld);
        return static_cast<HBITMAP>(m_bmp.Detach());
    }
    // Rows are parted by '/'.
    void Draw(const char* pszRows)
    {
        for (CPoint pt; *pszRows; pszRows++) {
            if (*pszRows == '/') {
                pt = CPoint(0, pt.y + 1);
                continue;
            }
            SetPixel(pt.x++, pt.y, ColourOf(*pszRows));
        }
    }
    std::string Letters()
    {
        SetLayout(0);
        SelectClipRgn(nullptr);
        std::string strRows;
        for (int y = 0; y < m_size.cy; y++) {
            strRows += y > 0 ? "/" : "";
            for (int x = 0; x < m_size.cx; x++)
                strRows += LetterOf(GetPixel(x, y));
        }
        return strRows;
    }

private:
    static constexpr char kLetters[] = "RGBW.";
    static COLORREF ColourOf(char ch)
    {
        constexpr COLORREF kColours[] = { RGB(255, 0, 0), RGB(0, 255, 0), RGB(0, 0, 255), RGB(255, 255, 255), 0 };
        return kColours[std::string(kLetters).find(ch)];
    }
    static char LetterOf(COLORREF cr)
    {
        for (const char* psz = kLetters; *psz; psz++) {
            if (ColourOf(*psz) == cr)
                return *psz;
        }
        return '?';
    }

    CSize m_size;
    CBitmap m_bmp;
    HGDIOBJ m_hOld = nullptr;
};

} // namespace test
