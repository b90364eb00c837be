#include "look/GuiInterface.h"

#include "look/GuiManager.h"
#include "look/WindowsVersion.h"

namespace PelkGUI {

namespace {

// Made before main, and earlier for a static object that asks earlier.
[[maybe_unused]] const GuiInterface& theInterface = GetGuiInterface();

} // namespace

GuiInterface::GuiInterface()
{
    CalculateColours(0);
}

GuiInterface::~GuiInterface()
{
    Clear();
}

int GuiInterface::IsNewWindows()
{
    OSVERSIONINFOA info{};
    info.dwOSVersionInfoSize = sizeof(info);
    return ::GetVersionExA(&info) && IsNewVersion(info.dwMajorVersion, info.dwMinorVersion);
}

int GuiInterface::EnableTheme(CWnd* pWnd, int bEnable)
{
    using SetWindowThemeFunction = HRESULT(WINAPI*)(HWND, LPCWSTR pszApplication, LPCWSTR pszClasses);
    const HMODULE hTheme = ::LoadLibraryA("UxTheme.dll");
    if (!hTheme)
        return FALSE;
    BOOL bDone = FALSE;
    if (const auto pfn = reinterpret_cast<SetWindowThemeFunction>(::GetProcAddress(hTheme, "SetWindowTheme"))) {
        // A theme of a name that none has is no theme; nulls are the window's own.
        const LPCWSTR pszNoTheme = bEnable ? nullptr : u" ";
        bDone = pfn(pWnd ? pWnd->m_hWnd : nullptr, pszNoTheme, pszNoTheme) >= 0;
    }
    ::FreeLibrary(hTheme);
    return bDone;
}

void GuiInterface::AddFonts(CString strName, CFont* pFont)
{
    CFont* pOld = nullptr;
    m_mapFonts.Lookup(strName, pOld);
    if (pFont)
        m_mapFonts.SetAt(strName, pFont);
    else
        m_mapFonts.RemoveKey(strName);
    if (pOld != pFont)
        delete pOld;
}

CFont* GuiInterface::GetFont(CString strName)
{
    CFont* pFont = nullptr;
    if (m_mapFonts.Lookup(strName, pFont))
        return pFont;
    const GuiManager& manager = GetGuiManager();
    pFont = new CFont;
    pFont->CreateFont(-manager.m_nDefaultFontSize, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                      OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH,
                      manager.m_strDefaultFontFace);
    m_mapFonts.SetAt(strName, pFont);
    return pFont;
}

void GuiInterface::Clear()
{
    for (CImageList* pList : { &m_ilCommands, &m_ilArrows, &m_ilLists })
        pList->DeleteImageList();
    ReleaseBuffer();
    for (POSITION pos = m_mapFonts.GetStartPosition(); pos;) {
        CString strName;
        CFont* pFont = nullptr;
        m_mapFonts.GetNextAssoc(pos, strName, pFont);
        delete pFont;
    }
    m_mapFonts.RemoveAll();
    m_mapColours.RemoveAll();
    m_mapCommandImages.RemoveAll();
    m_mapCommandNames.RemoveAll();
}

GuiInterface& GetGuiInterface()
{
    static GuiInterface store;
    return store;
}

} // namespace PelkGUI
