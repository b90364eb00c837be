// GuiManager: what is global to the skin library and no resource. It holds the entry points that not every system
// offers, the language and writing direction of the skin, and the default font. The program calls InitManager before it
// applies a skin or makes a window; the skin loader writes language and direction; everything that draws reads them.
// Used by the user-interface thread alone.
#pragma once

#include <afxwin.h>

#include "look/PelkGuiApi.h"

namespace PelkGUI {

class PELKGUI_API GuiManager {
public:
    using SetLayeredWindowAttributesFunction = BOOL(WINAPI*)(HWND hWnd, COLORREF crKey, BYTE nAlpha, DWORD dwFlags);
    using GetMonitorInfoFunction = BOOL(WINAPI*)(HMONITOR hMonitor, LPMONITORINFO pInfo);
    using MonitorFromRectFunction = HMONITOR(WINAPI*)(LPCRECT pRect, DWORD dwOtherwise);
    using MonitorFromWindowFunction = HMONITOR(WINAPI*)(HWND hWnd, DWORD dwOtherwise);
    using SetLayoutFunction = DWORD(WINAPI*)(HDC hDC, DWORD dwLayout);

    GuiManager() = default;
    GuiManager(const GuiManager&) = delete;
    GuiManager& operator=(const GuiManager&) = delete;
    virtual ~GuiManager() = default;

    // Fills the entry points below; what the system lacks becomes null. Always 1.
    int InitManager();
    // Frees the libraries that InitManager loaded. Handles and entry points stay as they are and are not to be used
    // afterwards. Always 1.
    int ExitManager();

    // Entry points. Null: the system has none, so test before calling.
    SetLayeredWindowAttributesFunction m_pfnSetLayeredWindowAttributes = nullptr;
    GetMonitorInfoFunction m_pfnGetMonitorInfo = nullptr; // there: so are the other functions for monitors
    MonitorFromRectFunction m_pfnMonitorFromRect = nullptr;
    MonitorFromWindowFunction m_pfnMonitorFromWindow = nullptr;
    SetLayoutFunction m_pfnSetLayout = nullptr;

    BOOL m_bRightToLeft = FALSE; // of the skin: pictures are mirrored, watermarks are not
    // Fields without a name or a reader are kept for the shape of the class.
    DWORD m_dwKept1 = 0;
    DWORD m_dwKept2 = 0;
    BOOL m_bKept1 = TRUE;
    BOOL m_bKept2 = TRUE;
    BOOL m_bKept3 = TRUE;
    int m_nDefaultFontSize = 11; // height of the em in pixels
    CString m_strDefaultFontFace = "Tahoma";
    CString m_strKept1;
    CString m_strKept2;
    CString m_strLanguage; // of the skin, compared ignoring case; fonts and images of another language are left out
    DWORD m_dwKept3 = 0;

    // Owned from InitManager to ExitManager; null: not loaded.
    HMODULE m_hUser32 = nullptr;
    HMODULE m_hGdi32 = nullptr;
};

// The one manager: made while the program starts, destroyed at its end.
PELKGUI_API GuiManager& GetGuiManager();

} // namespace PelkGUI
