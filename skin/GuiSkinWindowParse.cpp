// Reading a "windowSkin" element.
#include "skin/GuiSkinWindow.h"

#include <new>

#include "look/GuiManager.h"
#include "skin/SkinFormat.h"
#include "skin/SkinText.h"

namespace PelkGUI {

namespace {

// Reads up to nCount numbers with a comma between each two, as far as they go.
void ReadIntegers(const char* psz, LONG* const (&pNumbers)[4], int nCount)
{
    for (int i = 0; i < nCount; i++) {
        if (i > 0 && *psz++ != ',')
            return;
        if (!ReadInteger(psz, *pNumbers[i]))
            return;
    }
}

// The bitmap that the element names, which the caller owns; null: it names none, or there is none.
HBITMAP LoadNamedBitmap(const OvXMLElement* pElement, const CString& strBasePath)
{
    const HINSTANCE hInstance = AfxGetInstanceHandle();
    const CString strPath = Value(pElement, "path");
    if (!strPath.IsEmpty())
        return static_cast<HBITMAP>(
            ::LoadImageA(hInstance, strBasePath + strPath, IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE));
    std::uintptr_t nID = 0;
    if (!ToDecimal(Value(pElement, "res"), nID))
        return nullptr;
    const LPCSTR pszID = MAKEINTRESOURCEA(static_cast<WORD>(nID));
    return static_cast<HBITMAP>(::LoadImageA(hInstance, pszID, IMAGE_BITMAP, 0, 0, LR_DEFAULTCOLOR));
}

} // namespace

// What a child's name means.
struct GuiSkinWindow::ChildReader {
    const char* pszName;
    BOOL (GuiSkinWindow::*pfnParse)(OvXMLElement* pElement);
};

const GuiSkinWindow::ChildReader GuiSkinWindow::kChildReaders[] = {
    { "target", &GuiSkinWindow::ParseTarget },
    { "parts", &GuiSkinWindow::ParseParts },
    { "anchors", &GuiSkinWindow::ParseAnchors },
    { "region", &GuiSkinWindow::ParseRegion },
    { "caption", &GuiSkinWindow::ParseCaption },
    { "image", &GuiSkinWindow::ParseImage },
    { "maximiseCrop", &GuiSkinWindow::ParseMaximiseCrop },
    { "resizeBorder", &GuiSkinWindow::ParseResizeBorder },
    { "minimumSize", &GuiSkinWindow::ParseMinimumSize },
};

BOOL GuiSkinWindow::Parse(OvXMLElement* pElement, const CString& strBasePath)
{
    if (!pElement || !pElement->IsNamed("windowSkin"))
        return FALSE;
    m_strBasePath = strBasePath;
    m_rcScratch.SetRectEmpty();
    for (POSITION pos = pElement->GetElementIterator(); pos;) {
        OvXMLElement* const pChild = pElement->GetNextElement(pos); // it may leave the document
        for (const ChildReader& reader : kChildReaders) {
            if (!pChild->IsNamed(reader.pszName))
                continue;
            if (!(this->*reader.pfnParse)(pChild))
                return FALSE;
            break;
        }
    }
    return m_bmpImage.GetSafeHandle() != nullptr;
}

BOOL GuiSkinWindow::ParseTarget(OvXMLElement* pElement)
{
    const CString strWindow = Value(pElement, "window");
    if (!strWindow.IsEmpty())
        m_strTargets += "|" + strWindow + "|";
    return TRUE;
}

BOOL GuiSkinWindow::ParseParts(OvXMLElement* pElement)
{
    for (POSITION pos = pElement->GetElementIterator(); pos;) {
        OvXMLElement* const pChild = pElement->GetNextElement(pos);
        if (pChild->IsNamed("part"))
            ParsePart(pChild);
    }
    return TRUE;
}

void GuiSkinWindow::ParsePart(OvXMLElement* pElement)
{
    if (!ParseRect(pElement, &m_rcScratch))
        return;
    // In the scratch rectangle itself: a later short entry leans on the corrected one.
    if (m_rcScratch.right == m_rcScratch.left)
        m_rcScratch.right = mfc::wrapping_add(m_rcScratch.right, 1);
    if (m_rcScratch.bottom == m_rcScratch.top)
        m_rcScratch.bottom = mfc::wrapping_add(m_rcScratch.bottom, 1);
    const CString strName = Value(pElement, "name");
    if (strName.IsEmpty())
        return;
    const int nPart = FindName(kFramePartNames, strName);
    if (nPart < 0) {
        Store(m_mapParts, strName, m_rcScratch);
        return;
    }
    m_pPartPresent[nPart] = 1;
    m_pPartMode[nPart] = Value(pElement, "mode").CompareNoCase("stretch") == 0 ? PART_STRETCH : PART_TILE;
    m_pPartRect[nPart] = m_rcScratch;
}

BOOL GuiSkinWindow::ParseAnchors(OvXMLElement* pElement)
{
    for (POSITION pos = pElement->GetElementIterator(); pos;) {
        OvXMLElement* const pChild = pElement->GetNextElement(pos);
        if (pChild->IsNamed("anchor"))
            ParseAnchor(pChild);
    }
    return TRUE;
}

void GuiSkinWindow::ParseAnchor(OvXMLElement* pElement)
{
    if (!ParseRect(pElement, &m_rcScratch))
        return;
    const CString strName = Value(pElement, "name"); // an empty name is a name
    const int nAnchor = FindName(kCaptionAnchorNames, strName);
    if (nAnchor >= 0) {
        m_pAnchorPresent[nAnchor] = 1;
        m_pAnchorRect[nAnchor] = m_rcScratch;
        return;
    }
    Store(m_mapAnchors, strName, m_rcScratch);
    constexpr const char* kMirrorNames[] = { "Mirror", "MirrorFull" };
    for (int i = 0; i < 2; i++) {
        if (strName == kMirrorNames[i]) {
            m_nMirror = i + 1;
            m_rcMirror = m_rcScratch;
        }
    }
}

// A name that is there keeps its rectangle, which takes the new value.
void GuiSkinWindow::Store(RectMap& map, const CString& strName, const CRect& rc)
{
    CRect* pRect = nullptr;
    if (map.Lookup(strName, pRect) && pRect)
        *pRect = rc;
    else
        map.SetAt(strName, new (std::nothrow) CRect(rc));
}

BOOL GuiSkinWindow::ParseRegion(OvXMLElement* pElement)
{
    delete m_pRegion;
    m_pRegion = pElement->Detach();
    return TRUE;
}

BOOL GuiSkinWindow::ParseCaption(OvXMLElement* pElement)
{
    m_bCaption = ParseRect(pElement, &m_rcCaption);
    const CString strFace = Value(pElement, "fontFace");
    if (!strFace.IsEmpty())
        ParseCaptionFont(pElement, strFace);
    ParseCaptionColours(pElement);
    m_bCaps = !Value(pElement, "caps").IsEmpty(); // "false" as well
    constexpr const char* kAlignments[] = { "left", "center", "right" };
    if (const int nAlign = FindName(kAlignments, Value(pElement, "align")); nAlign >= 0)
        m_nAlign = nAlign;
    if (m_bCaption && !m_fontCaption.GetSafeHandle())
        TakeSystemCaptionFont();
    return TRUE;
}

void GuiSkinWindow::ParseCaptionFont(OvXMLElement* pElement, const CString& strFace)
{
    const CString strSize = Value(pElement, "fontSize");
    const CString strWeight = Value(pElement, "fontWeight");
    int nSize = 13;
    int nWeight = FW_BOLD;
    ToInteger(strSize, nSize);
    if (strWeight.CompareNoCase("normal") == 0)
        nWeight = FW_NORMAL;
    else
        ToInteger(strWeight, nWeight); // "bold" is no number either

    LOGFONTA font{};
    font.lfHeight = nSize;
    font.lfWeight = nWeight;
    font.lfCharSet = DEFAULT_CHARSET;
    SetFaceName(font, strFace);
    if (HasInAnyCase(strSize, "pt")) {
        m_fontCaption.CreatePointFontIndirect(&font);
    } else {
        font.lfHeight = mfc::wrapping_subtract(0, nSize);
        m_fontCaption.CreateFontIndirect(&font);
    }
}

void GuiSkinWindow::ParseCaptionColours(OvXMLElement* pElement)
{
    static constexpr struct {
        const char* pszAttribute;
        COLORREF GuiSkinWindow::*pColour;
    } kColours[] = {
        { "colour", &GuiSkinWindow::m_crColour },
        { "inactiveColour", &GuiSkinWindow::m_crInactiveColour },
        { "fill", &GuiSkinWindow::m_crFill },
        { "fillColour", &GuiSkinWindow::m_crFill },
        { "shadowColour", &GuiSkinWindow::m_crShadowColour },
        { "outlineColour", &GuiSkinWindow::m_crOutlineColour },
    };
    for (const auto& colour : kColours)
        ParseColour(Value(pElement, colour.pszAttribute), this->*colour.pColour);
}

void GuiSkinWindow::TakeSystemCaptionFont()
{
    NONCLIENTMETRICSA metrics{};
    metrics.cbSize = sizeof(metrics);
    if (::SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0))
        m_fontCaption.CreateFontIndirect(&metrics.lfCaptionFont);
}

BOOL GuiSkinWindow::ParseImage(OvXMLElement* pElement)
{
    const CString strLanguage = Value(pElement, "language");
    if (!strLanguage.IsEmpty()) {
        if (!IsSameText(strLanguage, GetGuiManager().m_strLanguage))
            return TRUE;
        m_strLanguage = strLanguage;
    }
    const HBITMAP hBitmap = LoadNamedBitmap(pElement, m_strBasePath);
    if (!hBitmap)
        return FALSE;
    CBitmap& bmp = ImageOfType(Value(pElement, "type"));
    bmp.DeleteObject();
    bmp.Attach(hBitmap);
    return TRUE;
}

CBitmap& GuiSkinWindow::ImageOfType(const CString& strType)
{
    if (strType.CompareNoCase("watermark") == 0 || strType.CompareNoCase("water") == 0)
        return m_bmpWatermark;
    return strType.CompareNoCase("alpha") == 0 ? m_bmpAlpha : m_bmpImage;
}

BOOL GuiSkinWindow::ParseMaximiseCrop(OvXMLElement* pElement)
{
    ParseFourNumbers(pElement, m_rcMaximiseCrop);
    return TRUE;
}

BOOL GuiSkinWindow::ParseResizeBorder(OvXMLElement* pElement)
{
    ParseFourNumbers(pElement, m_rcResizeBorder);
    return TRUE;
}

// The sums are taken back, so that the numbers are those of the text: also where there is no text.
void GuiSkinWindow::ParseFourNumbers(OvXMLElement* pElement, CRect& rc)
{
    ParseRect(pElement, &rc);
    rc.right = rc.Width();
    rc.bottom = rc.Height();
}

BOOL GuiSkinWindow::ParseMinimumSize(OvXMLElement* pElement)
{
    ToInteger(Value(pElement, "width"), m_sizeMinimum.cx);
    ToInteger(Value(pElement, "height"), m_sizeMinimum.cy);
    return TRUE;
}

BOOL GuiSkinWindow::ParseRect(OvXMLElement* pElement, CRect* pRect) const
{
    LONG* const pNumbers[] = { &pRect->left, &pRect->top, &pRect->right, &pRect->bottom };
    if (const CString strRect = Value(pElement, "rect"); !strRect.IsEmpty()) {
        ReadIntegers(strRect, pNumbers, 4);
        pRect->right = mfc::wrapping_add(pRect->right, pRect->left);
        pRect->bottom = mfc::wrapping_add(pRect->bottom, pRect->top);
        return TRUE;
    }
    if (const CString strPoint = Value(pElement, "point"); !strPoint.IsEmpty()) {
        ReadIntegers(strPoint, pNumbers, 2);
        pRect->right = 0;
        pRect->bottom = 0;
        return TRUE;
    }
    return FALSE;
}

BOOL GuiSkinWindow::ParseColour(const CString& strText, COLORREF& crColour)
{
    return ToColour(strText, crColour);
}

} // namespace PelkGUI
