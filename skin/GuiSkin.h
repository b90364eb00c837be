// GuiSkin: the skin of the process. It reads a skin document, hands colours, command names, fonts and command images to
// GuiInterface and keeps the rest: strings, watermarks, window skins, the font files it brought in, and the dialogs'
// colours. The program applies its skin once at its start; windows find their window skin here, buttons their tips.
// Used by the user-interface thread alone.
#pragma once

#include <memory>

#include <afxtempl.h>
#include <afxwin.h>

#include "look/PelkGuiApi.h"
#include "xml/OvXML.h"

namespace PelkGUI {

class GuiSkinWindow;
class WindowSkinIndex;

class PELKGUI_API GuiSkin {
public:
    GuiSkin();
    GuiSkin(const GuiSkin&) = delete;
    GuiSkin& operator=(const GuiSkin&) = delete;
    virtual ~GuiSkin();

    // ---- Loading ----

    // Makes the program's resource of that number and type the skin, in place of the one before. One that cannot be
    // read leaves the default colours and whatever was read before it failed. Windows are not told.
    void Apply(UINT nID, CString strType);
    // Forgets the skin; the three colours stay. Window skins that were given out are gone.
    void Clear();
    // Add to the skin that is there. FALSE: there is no such resource, it is no skin, or it has an error that fails
    // (a command without a number, a strip that its image list refuses); what was read before the error stays.
    // A null module is the program. The text is that up to the first zero byte.
    BOOL LoadFromResource(HINSTANCE hModule, UINT nID, CString strType);
    // File names count from the base path, which stands before them as it is: a folder's ends with a separator.
    BOOL LoadFromString(const CString& strText, const CString& strBasePath);
    // The document stays the caller's; "region" elements leave it for the window skins.
    BOOL LoadFromXML(OvXMLElement* pRoot, const CString& strBasePath);

    // ---- Strings ----

    // The skin's string of that number, else the program's. FALSE: neither has it, and the result is empty.
    BOOL LoadStringA(CString& strResult, UINT nID) const;
    CString LoadStringA(UINT nID) const;
    void SetString(UINT nID, CString strText);
    // Chooses one of the alternatives that a text holds between bars, counted from 0. FALSE: one before it is empty, or
    // there are not as many. The text is then what lies behind the alternatives that were passed over, and has a bar at
    // its end; a window keeps its text.
    BOOL SelectCaption(CString& strCaption, int nIndex) const;
    BOOL SelectCaption(CWnd* pWnd, int nIndex) const;

    // ---- Pictures and windows ----

    // The watermark of that name, loaded anew; it is the caller's. Null: there is none. The second form puts it in
    // place of the one that the bitmap has. FALSE: there is none, and the bitmap is empty.
    HBITMAP GetWatermark(const char* pszTarget) const;
    BOOL GetWatermark(CBitmap* pBitmap, const char* pszTarget) const;
    // The first window skin of the document that has the name with the suffix (null: none) among its targets, or null.
    // It belongs to the skin.
    GuiSkinWindow* GetWindowSkin(const char* pszName, const char* pszSuffix) const;
    // The same by the window's class, else its base class, and so on; the root class has no skin.
    GuiSkinWindow* GetWindowSkin(CWnd* pWnd) const;

    // ---- Wrapped text ----

    // The place in the text, in bytes, where the writing direction changes: the word that holds a letter of the other
    // direction, without the space before it. 0: it does not change, or within the first word. *pDirection receives the
    // direction of the text's beginning, 0 from left to right or 1 from right to left; without any letter of a
    // direction it stays.
    int GetTextFlowChange(const char* pszText, int* pDirection) const;
    // Draws the text word by word in the context's font and colours, with a new line where a word would reach over the
    // rectangle's right edge; one that is wider than the rectangle does so. It begins at ptStart ((0, 0): the
    // rectangle's corner). Where the text runs against the layout, its words follow each other against its order. The
    // rectangle's top becomes the bottom of the last line; its own bottom is not asked. With nExclude every word is
    // drawn with its background, and its rectangle goes from what the context may draw in. A word of more than 8192
    // bytes is not drawn.
    void DrawWrappedText(CDC* pDC, CRect* pRect, const char* pszText, CPoint ptStart, int nExclude) const;

    CMap<UINT, UINT, CString, const CString&> m_mapStrings;
    CMap<CString, LPCSTR, CString, const CString&> m_mapWatermarks; // name to file
    CList<GuiSkinWindow*, GuiSkinWindow*> m_listWindowSkins;        // owned, in document order; GuiSkin alone adds
    COLORREF m_crDialogBack = 0;
    CBrush m_brDialog; // of m_crDialogBack
    // Of alternating rows.
    COLORREF m_crRow1 = 0;
    COLORREF m_crRow2 = 0;
    CList<CString, const CString&> m_listFontFiles; // added to the system, and removed with the skin

protected:
    // Readers of one section each. FALSE: the skin cannot be used; what was read until then stays.
    BOOL LoadStrings(OvXMLElement* pSection);
    BOOL LoadWatermarks(OvXMLElement* pSection, const CString& strBasePath);
    BOOL LoadWindowSkins(OvXMLElement* pSection, const CString& strBasePath);
    BOOL LoadColourScheme(OvXMLElement* pSection);
    BOOL LoadCommandMap(OvXMLElement* pSection);
    BOOL LoadFonts(OvXMLElement* pSection, const CString& strBasePath);
    BOOL LoadCommandImages(OvXMLElement* pSection, const CString& strBasePath);
    BOOL LoadCommandBitmap(OvXMLElement* pElement, const CString& strBasePath);
    BOOL LoadSystemImages(OvXMLElement* pSection, const CString& strBasePath);
    // The command that the attribute (null: "id") names, 0: none.
    UINT LookupCommandID(OvXMLElement* pElement, const char* pszAttribute) const;
    // The bitmap file, as a bitmap of the caller's; null: it is none.
    HBITMAP LoadBitmapA(CString& strPath) const;

    // An empty skin and an empty store with the default colours.
    void CreateDefault();
    // The brush of the dialogs' colour.
    void Finalise();

private:
    struct Section;
    static const Section kSections[];

    BOOL LoadManifest(OvXMLElement* pSection);
    void LoadFont(OvXMLElement* pElement);
    void ImportFont(const CString& strPath);
    BOOL LoadCommandIcon(OvXMLElement* pElement, const CString& strBasePath);
    void MapCommandImages(OvXMLElement* pElement, int nFirst, int nLast);
    void TakeSchemeColour(const CString& strName, COLORREF crColour);

    std::unique_ptr<WindowSkinIndex> m_pWindowSkinIndex; // over m_listWindowSkins
};

// The one skin: made while the program starts, destroyed at its end.
PELKGUI_API GuiSkin& GetGuiSkin();

} // namespace PelkGUI
