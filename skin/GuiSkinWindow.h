// GuiSkinWindow: one window skin, read from a "windowSkin" element of a skin: its pictures, the rectangles that are cut
// out of them (parts), the places in the window (anchors), the caption, the outline and the sizes. GuiSkin makes one an
// element and owns it until the skin is cleared; windows borrow it (WindowSkinPtr), and it draws, measures and shapes
// them. Filled once by Parse; afterwards only its painting context and the state of the caption buttons change. Used by
// the user-interface thread alone.
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

    // ---- Painting. Window coordinates: pixels from the window's top left corner. ----

    // Makes m_dcSkin, once, compatible with the context (null: with the screen), with the main image selected into it.
    void Prepare(CDC* pDC);
    // Draws the frame into a context of the whole window: all of it, or with bCaptionOnly the caption strip alone.
    // nActive: 1 the inactive look, 2 the active one, 0 as the window is.
    void Paint(CWnd* pWnd, CDC& dc, int bCaptionOnly, int nActive);
    // Draws the inner frame, the "C" parts, into the client rectangle, whose origin is (0, 0).
    void PaintClient(CDC* pDC, const CRect& rcClient);
    // Covers the client area with the watermark. FALSE: there is none, and nothing is drawn.
    BOOL OnEraseBkgnd(CWnd* pWnd, CDC* pDC);

    // Named parts and anchors, by their exact name; frame parts and caption anchors are not among them. FALSE: there is
    // none, and rcResult stays. The second form of GetAnchor resolves: a negative left counts from the reference's
    // right edge, a negative top from its bottom, anything else from its left and top; the size stays.
    BOOL GetPart(const char* pszName, CRect& rcResult) const;
    BOOL GetAnchor(const char* pszName, CRect& rcResult) const;
    BOOL GetAnchor(const char* pszName, const CRect& rcReference, CRect& rcResult) const;

    // Copy a named part: to the destination's top left as much as the destination is large, or whole to the top left of
    // a named anchor. With bExclude the destination (the anchor's own rectangle) goes from what may be drawn in.
    // FALSE: there is no such part or anchor, and nothing is drawn.
    BOOL PaintPart(CDC* pDC, const CRect& rcDestination, const char* pszPart, int bExclude);
    BOOL PaintPartOnAnchor(CDC* pDC, const CRect& rcReference, const char* pszPart, const char* pszAnchor,
                           int bExclude);

    // Blends a rectangle of the main image over one of another bitmap, as opaque as the alpha image is blue there.
    // FALSE: the bitmap or the main image cannot be read.
    BOOL PreBlend(CBitmap* pBitmap, const CRect& rcDestination, const CRect& rcSource);

    // ---- Frame. What a window passes its non-client messages to. Screen coordinates. ----

    // Change a window rectangle to its client rectangle (bShrink) or back by the thickness of the frame parts;
    // CalcClientRect by that of the inner frame. bZoomed is not asked.
    void CalcWindowRect(RECT* pRect, int bShrink, int bZoomed);
    void CalcClientRect(RECT* pRect, int bShrink, int bZoomed);
    void OnNcCalcSize(CWnd* pWnd, int bCalcValidRects, NCCALCSIZE_PARAMS* pParams);
    void OnGetMinMaxInfo(MINMAXINFO* pInfo);
    // The hit code of a point of the screen. Without bResizable the edges do not size.
    UINT OnNcHitTest(CWnd* pWnd, CPoint point, int bResizable);
    void OnNcMouseMove(CWnd* pWnd, UINT nHitTest, CPoint point);
    // TRUE: a caption button took the press, and the window does nothing more.
    BOOL OnNcLButtonDown(CWnd* pWnd, UINT nHitTest, CPoint point);
    // Always FALSE, also when it posted the button's command; kept on purpose.
    BOOL OnNcLButtonUp(CWnd* pWnd, UINT nHitTest, CPoint point);
    // TRUE: the double click closes the window.
    BOOL OnNcLButtonDblClk(CWnd* pWnd, UINT nHitTest, CPoint point);
    void OnNcPaint(CWnd* pWnd);
    // Paints the state that is being entered. Always FALSE.
    BOOL OnNcActivate(CWnd* pWnd, BOOL bActive);
    void OnSetText(CWnd* pWnd);
    // Gives the window its outline, and a maximised one its place.
    void OnSize(CWnd* pWnd);

    // The size of the rectangle around all shapes of the outline, as they are written; 0 by 0 without any.
    CSize GetRegionSize() const;

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
    BOOL ParseRect(OvXMLElement* pElement, CRect* pRect) const;
    // Reads RRGGBB. FALSE: it is no colour, and crColour stays as it is.
    BOOL ParseColour(const CString& strText, COLORREF& crColour);

    // Resolves a caption anchor (0 to 4), which must be present, against the reference, as GetAnchor does.
    void ResolveAnchor(const CRect& rcReference, CRect& rcResult, int nAnchor) const;
    // Shapes the window by the "region" element, which must be there.
    void SelectRegion(CWnd* pWnd);

private:
    friend class FramePainter;
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

    // Painting, a chapter each.
    void CreateSkinContext(CDC* pDC);
    void PrepareOnce(CDC* pDC);
    CDC* TileContext();
    CSize ImageSize() const;
    void TakeCaption(const CWnd& wnd, CString& strCaption) const;
    void PaintOuterFrame(CDC& dcStrip, CDC& dc, const CRect& rcWindow, int bCaptionOnly, bool bInactive,
                         const CSize& sizeImage);
    const CRect* ButtonPart(int nButton) const;
    bool ButtonsCoverTheirPlaces(const CSize& sizeImage) const;
    CRect PaintCaptionButton(CDC& dcStrip, const CRect& rcWindow, int nButton);
    void PaintMirrorStrips(CDC& dcStrip, int nCornerPart);
    void PaintCaptionIcon(CDC& dcStrip, const CRect& rcWindow, HICON hIcon) const;
    void PaintCaptionText(CDC& dcStrip, const CString& strText, int cxWindow, COLORREF crText) const;

    CRect ShapeRect(OvXMLElement* pShape, const CSize& sizeWindow) const;

    CString m_strPaintedCaption; // the last one
    CBitmap m_bmpTiles;          // selected into m_dcTiles, which goes first
    CDC m_dcTiles;
    CString m_strBasePath; // of the Parse that is running
    CRect m_rcScratch;     // one for all parts and anchors of a Parse, so that short entries lean on the one before
};

} // namespace PelkGUI
