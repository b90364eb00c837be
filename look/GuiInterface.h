// GuiInterface: the look-and-feel store of the process. It keeps the colours that painters ask for by name, the
// commands' names and images, fonts by name, and the one off-screen buffer that everything drawn off screen shares. The
// skin loader fills it; windows, buttons and painters read it. Used by the user-interface thread alone.
#pragma once

#include <afxcmn.h>
#include <afxtempl.h>
#include <afxwin.h>

#include "look/PelkGuiApi.h"

namespace PelkGUI {

class PELKGUI_API GuiInterface {
public:
    // Colours come from the system (mode 0); nothing else is there.
    GuiInterface();
    GuiInterface(const GuiInterface&) = delete;
    GuiInterface& operator=(const GuiInterface&) = delete;
    virtual ~GuiInterface();

    // ---- Colours. Names are case-sensitive. ----

    // Blends each channel, nWeight out of 255 (a fraction of 255, not a percentage): 0 gives crFirst, 255 crSecond. The
    // two shares are truncated before they are added, so a colour blended with itself may come out one lower. The top
    // byte of the result is 0.
    static COLORREF CalculateColour(COLORREF crFirst, COLORREF crSecond, int nWeight);
    // Sets the derived colours, "System.Back.Normal" to "Tooltip.Warnings", over whatever they were. Mode 0 first takes
    // the five "System.Base." colours from the system; any other leaves them as the skin set them.
    void CalculateColours(int nMode);
    // The system's window colour for an unknown name.
    COLORREF GetColor(CString strName) const;
    void SetColor(CString strName, COLORREF crColour);
    // To be called when the system's colours change. A skin's colours (a mode other than 0) survive it.
    void OnSysColourChange();
    // The background of dialogs, of the system's colours now; the store is not asked.
    static COLORREF GetDialogBkColor();

    // ---- The system ----

    // TRUE from version 5.1 on.
    static int IsNewWindows();
    // Gives the window (null: no window) its default theme, or switches visual styles off for it. FALSE: the system has
    // no themes, or refused.
    static int EnableTheme(CWnd* pWnd, int bEnable);

    // ---- Commands. Names are case-sensitive; a null name counts as empty. ----

    // Registers the name, in place of what it named before.
    void NameCommand(UINT nID, const char* pszName);
    // The command of that name; else the decimal number that the text begins with; else 0, which is no command.
    UINT NameToID(const char* pszName) const;
    // The index of the command's image, -1: it has none.
    int ImageForID(UINT nID) const;

    // Make sure that the list exists. FALSE: the system refused.
    int ConfirmImageList();
    int CreateArrImages();
    int CreateListImages();

    // Adds a copy of the icon, stretched to 18 by 18 pixels, as the command's image. An icon that cannot be added
    // leaves the command without an image.
    void AddIcon(UINT nID, HICON hIcon);
    // Lets nToID share the image of nFromID. Does nothing if there is none.
    void CopyIcon(UINT nFromID, UINT nToID);
    // A new icon of the command's image, which the caller destroys; null: it has none.
    HICON ExtractIconA(UINT nID) const;
    // Adds the program's bitmap resource as a strip of images of 18 by 18 pixels, crMask being transparent, and gives
    // them to the commands that the tool-bar resource of the same number lists: one image each in turn, none for a
    // separator (0). A list that is longer than its resource ends with it. FALSE: no such bitmap, or a strip narrower
    // than an image, and nothing is changed; or no such tool bar, and the images stay without commands.
    int AddImagesFromToolbar(UINT nResourceID, COLORREF crMask);

    // ---- Drawing ----

    // The off-screen buffer, at least `size` pixels large and without a clipping region. It belongs to the store and
    // stays selected as it is; copy out what you drew before anybody else asks. It is compatible with the `dc` that it
    // was first made for and has the layout of the one that is given, so that a right-to-left frame and a left-to-right
    // client area may share it. It never shrinks before Clear, and keeps what was drawn last until it grows: then all
    // of it is black. When there is no memory for the size it stays as it is.
    CDC* GetBuffer(CDC& dc, CSize& size);
    // Covers the rectangle with copies of the bitmap from its top left on, the origin moved left and up by the offsets.
    // Tiles at the edges are drawn whole, unless they lie above or left of the rectangle without touching it. The
    // bitmap is never mirrored. FALSE: a null, or a bitmap that is none or is selected elsewhere.
    int DrawWatermark(CDC* pDC, CRect* pRect, CBitmap* pBitmap, int nOffsetX, int nOffsetY) const;

    // ---- Fonts. Names are case-sensitive. ----

    // Takes the font over, and deletes the one that had the name before. A null font only does the latter.
    void AddFonts(CString strName, CFont* pFont);
    // The font of that name, never null; it belongs to the store. An unknown name is bound to a font of GuiManager's
    // default face and size from now on.
    CFont* GetFont(CString strName);

    // Empties the store, colours included: until CalculateColours runs they all read as the system's window colour.
    // Fonts that were given out, and the buffer, must not be in use. The colour mode stays.
    void Clear();

    // What the skin's readers fill. Commands may share an image.
    CMap<CString, LPCSTR, UINT, UINT> m_mapCommandNames;
    CMap<UINT, UINT, int, int> m_mapCommandImages;            // command to index in m_ilCommands
    CMap<CString, const CString&, CFont*, CFont*> m_mapFonts; // owned
    CMap<CString, const CString&, COLORREF, COLORREF> m_mapColours;
    CImageList m_ilCommands; // 18 by 18 pixels
    CImageList m_ilArrows;   // 9 by 6
    CImageList m_ilLists;    // 16 by 16

private:
    // Leaves the buffer as it is when there is no memory.
    void GrowBuffer(CDC& dc, int nWidth, int nHeight);
    void ReleaseBuffer();

    int m_nColourMode = 0;
    int m_nBufferWidth = 0;
    int m_nBufferHeight = 0;
    CDC m_dcBuffer;
    CBitmap m_bmpBuffer;
    HBITMAP m_hOldBitmap = nullptr; // borrowed: what m_dcBuffer held before m_bmpBuffer
};

// The one store: made while the program starts, destroyed at its end.
PELKGUI_API GuiInterface& GetGuiInterface();

} // namespace PelkGUI
