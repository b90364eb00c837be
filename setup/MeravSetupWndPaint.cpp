// The setup window's client area: the page, the buttons, and what moves: busy squares, progress bar, texts.
#include "setup/MeravSetupWnd.h"

#include "assets/CarriedFont.h"
#include "skin/GuiSkin.h"
#include "skin/GuiSkinWindow.h"

#include <cmath>

namespace {

constexpr UINT kErrorText = 1; // string of the skin, with a place for the error's number
constexpr CRect kErrorPlace(128, 185, 428, 215);
constexpr COLORREF kErrorColour = RGB(255, 0, 0);
constexpr CRect kFilePlace(100, 240, 470, 254);
constexpr COLORREF kFileColour = RGB(102, 102, 102);

// The bar is made of copies of one column of the skin's image, below the four pages.
constexpr CPoint kBarPlace(30, 258);
constexpr CPoint kBarColumn(0, 1396);
constexpr int kBarHeight = 8;

BOOL CreateTextFont(CFont& font, const char* pszFace)
{
    constexpr int kHeight = 14; // of the cell
    return font.CreateFont(kHeight, 0, 0, 0, FW_BOLD, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                           CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH, pszFace);
}

void DrawTextIn(CDC& dc, const CString& strText, CRect rcPlace, COLORREF crText)
{
    constexpr const char* kFace = "\xCB\xCE\xCC\xE5"; // in the bytes of code page 936
    (void)LoadCarriedFont();                          // without it, the system's fonts have to do
    CFont font;
    if (!CreateTextFont(font, kFace))
        CreateTextFont(font, "Arial");
    CFont* const pOldFont = dc.SelectObject(&font);
    const int nOldMode = dc.SetBkMode(TRANSPARENT);
    const COLORREF crOld = dc.SetTextColor(crText);
    dc.DrawText(strText, strText.GetLength(), &rcPlace, DT_NOPREFIX);
    dc.SetTextColor(crOld);
    dc.SetBkMode(nOldMode);
    dc.SelectObject(pOldFont);
}

} // namespace

void MeravSetupWnd::Paint(CDC* pDC, CRect rcClient)
{
    if (!m_pSkinWindow)
        return;
    const int nStage = m_nStage; // the worker may turn the page meanwhile
    pDC->BitBlt(0, 0, m_rcBackground.Width(), m_rcBackground.Height(), &m_pSkinWindow->m_dcSkin, m_rcBackground.left,
                nStage * m_rcBackground.Height(), SRCCOPY);
    PaintButtons(pDC, rcClient);
    if (nStage == kStageChecking && m_bEnvOk)
        PaintBusySquares(*pDC);
    else if (nStage == kStageChecking)
        PaintError(*pDC);
    else if (nStage == kStageInstalling)
        PaintProgress(*pDC);
}

// A row of squares, one more with every tick. Their colour takes its own out of the page: blue on white.
void MeravSetupWnd::PaintBusySquares(CDC& dc) const
{
    constexpr COLORREF kSquareColour = RGB(204, 96, 1);
    constexpr CRect kFirstSquare(128, 175, 138, 185);
    constexpr int kDistance = 20;
    CBrush brush(kSquareColour);
    CPen pen(PS_SOLID, 1, kSquareColour);
    CBrush* const pOldBrush = dc.SelectObject(&brush);
    CPen* const pOldPen = dc.SelectObject(&pen);
    const int nOldMode = dc.SetROP2(R2_MASKNOTPEN);
    const float fTicks = m_fProgress;
    for (int i = 0; static_cast<float>(i) < fTicks; i++)
        dc.Rectangle(kFirstSquare + CPoint(kDistance * i, 0));
    dc.SetROP2(nOldMode);
    dc.SelectObject(pOldPen);
    dc.SelectObject(pOldBrush);
}

void MeravSetupWnd::PaintError(CDC& dc) const
{
    CString strText;
    strText.Format(PelkGUI::GetGuiSkin().LoadStringA(kErrorText), m_nError);
    DrawTextIn(dc, strText, kErrorPlace, kErrorColour);
}

// The bar has a copy of the column for every pixel of the progress, the last one begun: all at once, by one stretch.
void MeravSetupWnd::PaintProgress(CDC& dc) const
{
    const int cxBar = static_cast<int>(std::ceil(m_fProgress));
    dc.StretchBlt(kBarPlace.x, kBarPlace.y, cxBar, kBarHeight, &m_pSkinWindow->m_dcSkin, kBarColumn.x, kBarColumn.y, 1,
                  kBarHeight, SRCCOPY);
    DrawTextIn(dc, m_strCurrentFile, kFilePlace, kFileColour);
}
