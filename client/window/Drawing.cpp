#include "client/window/Drawing.h"

#include "look/GuiInterface.h"
#include "skin/GuiSkin.h"

#include <algorithm>

namespace client {

using PelkGUI::GetGuiInterface;

CString Text(TextId nText)
{
    return PelkGUI::GetGuiSkin().LoadStringA(nText);
}

namespace {

std::u16string Wide(const std::string& strText)
{
    const int nBytes = static_cast<int>(strText.size());
    std::u16string strWide(
        static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, strText.data(), nBytes, nullptr, 0)), u'\0');
    MultiByteToWideChar(CP_UTF8, 0, strText.data(), nBytes, strWide.data(), static_cast<int>(strWide.size()));
    return strWide;
}

CString Narrow(const std::u16string& strWide)
{
    const int nUnits = static_cast<int>(strWide.size());
    const int nBytes = WideCharToMultiByte(CP_ACP, 0, strWide.data(), nUnits, nullptr, 0, nullptr, nullptr);
    std::string strText(static_cast<std::size_t>(nBytes), '\0');
    WideCharToMultiByte(CP_ACP, 0, strWide.data(), nUnits, strText.data(), nBytes, nullptr, nullptr);
    return strText.c_str();
}

// Font, colour and background of a context, until this goes.
class Selected {
public:
    Selected(CDC& dc, const Pen& pen)
        : m_dc(dc), m_pOldFont(dc.SelectObject(GetGuiInterface().GetFont(pen.pszFont))),
          m_crOld(dc.SetTextColor(Colour(pen.pszColour))), m_nOldMode(dc.SetBkMode(TRANSPARENT))
    {}
    ~Selected()
    {
        m_dc.SetBkMode(m_nOldMode);
        m_dc.SetTextColor(m_crOld);
        m_dc.SelectObject(m_pOldFont);
    }
    Selected(const Selected&) = delete;
    Selected& operator=(const Selected&) = delete;

private:
    CDC& m_dc;
    CFont* m_pOldFont;
    COLORREF m_crOld;
    int m_nOldMode;
};

void DrawSelected(CDC& dc, const CRect& rc, const CString& strText, UINT nAlign)
{
    CRect rcText = rc;
    dc.DrawText(strText, strText.GetLength(), &rcText, nAlign | DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
}

} // namespace

CString FromUtf8(const std::string& strText)
{
    return Narrow(Wide(strText));
}

COLORREF Colour(const char* pszColour)
{
    return GetGuiInterface().GetColor(pszColour);
}

int DrawLine(CDC& dc, const CRect& rc, const CString& strText, const Pen& pen, UINT nAlign)
{
    const Selected selected(dc, pen);
    DrawSelected(dc, rc, strText, nAlign);
    return dc.GetTextExtent(strText).cx;
}

int LineWidth(CDC& dc, const CString& strText, const Pen& pen)
{
    const Selected selected(dc, pen);
    return dc.GetTextExtent(strText).cx;
}

namespace {

constexpr bool IsLeadByte(char c)
{
    return (c & 0x80) != 0; // of code page 936
}

// Where the piece of text ends that a line may end behind: a character of two bytes, or a word with its spaces.
int EndOfPiece(const CString& strText, int nStart)
{
    const int nLength = strText.GetLength();
    if (IsLeadByte(strText[nStart]))
        return std::min(nStart + 2, nLength);
    int n = nStart;
    while (n < nLength && !IsLeadByte(strText[n]) && strText[n] != ' ')
        n++;
    while (n < nLength && strText[n] == ' ')
        n++;
    return n;
}

} // namespace

int DrawWrapped(CDC& dc, const CRect& rc, const CString& strText, const Pen& pen, int nLineHeight)
{
    const Selected selected(dc, pen);
    CRect rcLine(rc.left, rc.top, rc.right, rc.top);
    for (int nStart = 0; nStart < strText.GetLength();) {
        int nEnd = EndOfPiece(strText, nStart);
        while (nEnd < strText.GetLength()) {
            const int nNext = EndOfPiece(strText, nEnd);
            if (dc.GetTextExtent(strText.Mid(nStart, nNext - nStart)).cx > rc.Width())
                break;
            nEnd = nNext;
        }
        rcLine.top = rcLine.bottom;
        rcLine.bottom += nLineHeight;
        DrawSelected(dc, rcLine, strText.Mid(nStart, nEnd - nStart), DT_LEFT);
        nStart = nEnd;
    }
    return rcLine.bottom;
}

void DrawPath(CDC& dc, const CRect& rc, const std::string& strPath, const Pen& pen)
{
    const Selected selected(dc, pen);
    const std::u16string strWide = Wide(strPath);
    CString strShown = Narrow(strWide);
    // Its beginning and end tell most; the end gets the odd character.
    std::size_t nKept = strWide.size();
    while (nKept > 2 && dc.GetTextExtent(strShown).cx > rc.Width()) {
        nKept--;
        strShown =
            Narrow(strWide.substr(0, nKept / 2)) + "..." + Narrow(strWide.substr(strWide.size() - (nKept + 1) / 2));
    }
    DrawSelected(dc, rc, strShown, DT_LEFT);
}

void DrawProgress(CDC& dc, const CRect& rc, std::size_t nDone, std::size_t nAll)
{
    dc.FillSolidRect(rc, Colour("Client.Line"));
    const double fPart = nAll == 0 ? 0.0 : std::min(1.0, static_cast<double>(nDone) / static_cast<double>(nAll));
    const CRect rcBar(rc.left, rc.top, rc.left + static_cast<int>(fPart * rc.Width()), rc.bottom);
    if (rcBar.Width() > 0)
        dc.FillSolidRect(rcBar, Colour("Client.Bar"));
}

} // namespace client
