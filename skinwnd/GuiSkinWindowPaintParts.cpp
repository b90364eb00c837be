// Named parts and anchors: finding them, and painting one part.
#include "skin/GuiSkinWindow.h"

#include "skinwnd/FramePart.h"

namespace PelkGUI {

namespace {

// A name's rectangle; null: the map has none of that name.
const CRect* FindRect(const CMap<CString, LPCSTR, CRect*, CRect*>& map, const char* pszName)
{
    CRect* pRect = nullptr;
    map.Lookup(pszName, pRect);
    return pRect;
}

BOOL CopyFound(const CRect* pFound, CRect& rcResult)
{
    if (pFound)
        rcResult = *pFound;
    return pFound != nullptr;
}

} // namespace

BOOL GuiSkinWindow::GetPart(const char* pszName, CRect& rcResult) const
{
    return CopyFound(FindRect(m_mapParts, pszName), rcResult);
}

BOOL GuiSkinWindow::GetAnchor(const char* pszName, CRect& rcResult) const
{
    return CopyFound(FindRect(m_mapAnchors, pszName), rcResult);
}

BOOL GuiSkinWindow::GetAnchor(const char* pszName, const CRect& rcReference, CRect& rcResult) const
{
    const CRect* const pFound = FindRect(m_mapAnchors, pszName);
    if (pFound)
        rcResult = ResolvedAnchor(*pFound, rcReference);
    return pFound != nullptr;
}

void GuiSkinWindow::ResolveAnchor(const CRect& rcReference, CRect& rcResult, int nAnchor) const
{
    rcResult = ResolvedAnchor(m_pAnchorRect[nAnchor], rcReference);
}

void GuiSkinWindow::PrepareOnce(CDC* pDC)
{
    if (!m_hOldBitmap)
        Prepare(pDC);
}

BOOL GuiSkinWindow::PaintPart(CDC* pDC, const CRect& rcDestination, const char* pszPart, int bExclude)
{
    const CRect* const pPart = FindRect(m_mapParts, pszPart);
    if (!pPart)
        return FALSE;
    PrepareOnce(pDC);
    pDC->BitBlt(rcDestination.left, rcDestination.top, rcDestination.Width(), rcDestination.Height(), &m_dcSkin,
                pPart->left, pPart->top, SRCCOPY);
    if (bExclude)
        pDC->ExcludeClipRect(&rcDestination);
    return TRUE;
}

BOOL GuiSkinWindow::PaintPartOnAnchor(CDC* pDC, const CRect& rcReference, const char* pszPart, const char* pszAnchor,
                                      int bExclude)
{
    const CRect* const pPart = FindRect(m_mapParts, pszPart);
    CRect rcAnchor;
    if (!pPart || !GetAnchor(pszAnchor, rcReference, rcAnchor))
        return FALSE;
    PrepareOnce(pDC);
    pDC->BitBlt(rcAnchor.left, rcAnchor.top, pPart->Width(), pPart->Height(), &m_dcSkin, pPart->left, pPart->top,
                SRCCOPY);
    if (bExclude)
        pDC->ExcludeClipRect(&rcAnchor); // the anchor's own size, not the part's
    return TRUE;
}

} // namespace PelkGUI
