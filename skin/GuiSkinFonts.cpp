// The "fonts" section: fonts by name, and font files that live as long as the skin.
#include "skin/GuiSkin.h"

#include <cstring>
#include <string>

#include "look/GuiInterface.h"
#include "look/GuiManager.h"
#include "skin/SkinText.h"

namespace PelkGUI {

namespace {

// The number of faces added; 0: the system has no such function, or refused.
int AddPrivateFont(const CString& strPath)
{
    using AddFontFunction = int(WINAPI*)(LPCWSTR pszPath, DWORD dwFlags, PVOID pReserved);
    const HMODULE hGdi32 = ::LoadLibraryA("gdi32");
    if (!hGdi32)
        return 0;
    const auto pfnAddFont = reinterpret_cast<AddFontFunction>(::GetProcAddress(hGdi32, "AddFontResourceExW"));
    // The bytes go as they are where units of two bytes are read: kept on purpose. The copy ends with enough zeroes.
    const int nLength = strPath.GetLength();
    std::u16string path(static_cast<size_t>(nLength) / 2 + 2, u'\0');
    std::memcpy(path.data(), static_cast<LPCSTR>(strPath), static_cast<size_t>(nLength));
    const int nFaces = pfnAddFont ? pfnAddFont(path.c_str(), FR_PRIVATE, nullptr) : 0;
    ::FreeLibrary(hGdi32);
    return nFaces;
}

} // namespace

BOOL GuiSkin::LoadFonts(OvXMLElement* pSection, const CString& strBasePath)
{
    for (POSITION pos = pSection->GetElementIterator(); pos;) {
        OvXMLElement* const pChild = pSection->GetNextElement(pos);
        if (pChild->IsNamed("font"))
            LoadFont(pChild);
        else if (pChild->IsNamed("import"))
            ImportFont(strBasePath + Value(pChild, "path"));
    }
    return TRUE;
}

void GuiSkin::LoadFont(OvXMLElement* pElement)
{
    const GuiManager& manager = GetGuiManager();
    const CString strLanguage = Value(pElement, "language");
    if (!strLanguage.IsEmpty() && !IsSameText(strLanguage, manager.m_strLanguage))
        return;
    int nHeight = manager.m_nDefaultFontSize;
    int nOrientation = 0;
    int nEscapement = 0;
    ToInteger(Value(pElement, "size"), nHeight);
    ToInteger(Value(pElement, "orient"), nOrientation);
    ToInteger(Value(pElement, "escpm"), nEscapement);

    LOGFONTA font{};
    // The cell's height, or the character's.
    const bool bCell = Value(pElement, "ltype").CompareNoCase("lfont") == 0;
    font.lfHeight = bCell ? nHeight : mfc::wrapping_subtract(0, nHeight);
    font.lfWeight = Value(pElement, "weight").CompareNoCase("bold") == 0 ? FW_BOLD : FW_NORMAL; // no other word
    font.lfEscapement = nEscapement;
    font.lfOrientation = nOrientation;
    font.lfCharSet = DEFAULT_CHARSET;
    SetFaceName(font, Value(pElement, "face"));
    auto pFont = std::make_unique<CFont>();
    pFont->CreateFontIndirect(&font);
    GetGuiInterface().AddFonts(Value(pElement, "name"), pFont.release());
}

void GuiSkin::ImportFont(const CString& strPath)
{
    if (AddPrivateFont(strPath) != 0 || ::AddFontResourceA(strPath) != 0)
        m_listFontFiles.AddTail(strPath);
}

} // namespace PelkGUI
