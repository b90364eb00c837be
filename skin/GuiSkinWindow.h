// GuiSkinWindow: one window skin, read from a "windowSkin" element of a skin: its pictures, the rectangles that are cut
// out of them (parts), the places in the window (anchors), the caption, the outline and the sizes. GuiSkin makes one an
// element and owns it until the skin is cleared; windows borrow it. Filled once by Parse, then only read. Used by the
// user-interface thread alone.
#pragma once

#include <afxtempl.h>
#include <afxwin.h>

#include "look/PelkGuiApi.h"
#include "xml/OvXML.h"

namespace PelkGUI {

// How a frame part fills its place.
inline constexpr int PART_TILE = 0;
inline constexpr int PART_STRETCH = 1;

// A colour that a skin did not give.
inline constexpr COLORREF kNoColour = 0xFFFFFFFF;

class PELKGUI_API GuiSkinWindow {
public:
    GuiSkinWindow();
    GuiSkinWindow(const GuiSkinWindow&) = delete;
    GuiSkinWindow& operator=(const GuiSkinWindow&) = delete;
    virtual ~GuiSkinWindow();

    // Reads the element; file names count from the base path, which stands before them as it is. TRUE: it has a main
    // image. FALSE: it has none, it is no "windowSkin", or an image could not be loaded, which ends the reading there;
    // what was read until then stays. A "region" element moves out of its document and is this object's afterwards.
    BOOL Parse(OvXMLElement* pElement, const CString& strBasePath);

    // Each name between two bars: "|A||B|".
    CString m_strTargets;
    CString m_strLanguage; // of the image that was accepted; empty: it named none

    CDC m_dcSkin;                   // the main image is selected into it while the window paints
    CBitmap m_bmpImage;             // the main image
    CBitmap m_bmpAlpha;             // how much of it covers what is below
    CBitmap m_bmpWatermark;         // the client area's pattern
    HBITMAP m_hOldBitmap = nullptr; // borrowed: what m_dcSkin held before the main image

    // Frame parts and caption anchors by their index in the format (SkinFormat.h). Owned arrays. A rectangle means
    // something only where the part or anchor is present.
    int* m_pPartPresent; // 1: present
    int* m_pPartMode;    // PART_TILE or PART_STRETCH
    CRect* m_pPartRect;  // in the main image
    int* m_pAnchorPresent;
    CRect* m_pAnchorRect; // in the window

    // Parts and anchors of any other name, case-sensitive. The rectangles are owned; null: there was no memory.
    CMap<CString, LPCSTR, CRect*, CRect*> m_mapParts;
    CMap<CString, LPCSTR, CRect*, CRect*> m_mapAnchors;

    CSize m_sizeMinimum;    // pixels
    CRect m_rcMaximiseCrop; // four numbers as written
    CRect m_rcResizeBorder; // widths of the sizing border at the left, top, right and bottom

    BOOL m_bCaption = FALSE; // the caption has a place
    BOOL m_bCaps = FALSE;    // and is drawn in capitals
    CRect m_rcCaption;
    CFont m_fontCaption;
    COLORREF m_crFill = kNoColour;
    COLORREF m_crColour = RGB(255, 255, 255);
    COLORREF m_crInactiveColour = RGB(128, 128, 128);
    COLORREF m_crShadowColour = kNoColour;
    COLORREF m_crOutlineColour = kNoColour;
    int m_nAlign = 0; // 0 left, 1 centre, 2 right

    OvXMLElement* m_pRegion = nullptr; // owned, in no document

    // The caption button under the mouse and the one being pressed: its caption anchor, 0 for none.
    int m_nHoverHit = 0;
    int m_nPressedHit = 0;

    int m_nMirror = 0; // the anchor that marks the mirror area: 0 none, 1 "Mirror", 2 "MirrorFull"
    CRect m_rcMirror;

protected:
    // Reads "rect" (x,y,width,height in pixels), else "point" (x,y), of a skin element. FALSE: it has neither, *pRect
    // is untouched. A number the text does not reach keeps what *pRect came with: short entries lean on the one before
    // them. Right and bottom are sums, which wrap; those of a point are 0.
    BOOL ParseRect(OvXMLElement* pElement, CRect* pRect);
    // Reads RRGGBB. FALSE: it is no colour, and crColour stays as it is.
    BOOL ParseColour(const CString& strText, COLORREF& crColour);

private:
    struct ChildReader;
    using RectMap = CMap<CString, LPCSTR, CRect*, CRect*>;
    static const ChildReader kChildReaders[];

    // Readers of one child each. FALSE: the window skin cannot be used.
    BOOL ParseTarget(OvXMLElement* pElement);
    BOOL ParseParts(OvXMLElement* pElement);
    BOOL ParseAnchors(OvXMLElement* pElement);
    BOOL ParseRegion(OvXMLElement* pElement);
    BOOL ParseCaption(OvXMLElement* pElement);
    BOOL ParseImage(OvXMLElement* pElement);
    BOOL ParseMaximiseCrop(OvXMLElement* pElement);
    BOOL ParseResizeBorder(OvXMLElement* pElement);
    BOOL ParseMinimumSize(OvXMLElement* pElement);

    void ParsePart(OvXMLElement* pElement);
    void ParseAnchor(OvXMLElement* pElement);
    void ParseFourNumbers(OvXMLElement* pElement, CRect& rc);
    void ParseCaptionFont(OvXMLElement* pElement, const CString& strFace);
    void ParseCaptionColours(OvXMLElement* pElement);
    void TakeSystemCaptionFont();
    CBitmap& ImageOfType(const CString& strType);
    static void Store(RectMap& map, const CString& strName, const CRect& rc);
    static void DeleteRects(RectMap& map);

    CString m_strBasePath; // of the Parse that is running
    CRect m_rcScratch;     // one for all parts and anchors of a Parse, so that short entries lean on the one before
};

} // namespace PelkGUI
