// Reading a skin document: its sections, and those of them that need no files.
#include "skin/GuiSkin.h"

#include "look/GuiInterface.h"
#include "look/GuiManager.h"
#include "skin/GuiSkinWindow.h"
#include "skin/SkinText.h"
#include "skin/WindowSkinIndex.h"

namespace PelkGUI {

namespace {

// The text with a line feed for every "\n" that is written as two characters.
CString WithLineFeeds(const CString& strText)
{
    constexpr char kWritten[] = "\\n";
    const char* psz = strText;
    const char* pszFound = FindInText(psz, kWritten);
    if (!pszFound)
        return strText;
    CString strResult;
    for (; pszFound; pszFound = FindInText(psz, kWritten)) {
        strResult += CString(psz, static_cast<int>(pszFound - psz));
        strResult += '\n';
        psz = pszFound + 2;
    }
    return strResult + psz;
}

} // namespace

// What a section's name means. One of the two readers is null.
struct GuiSkin::Section {
    const char* pszName;
    BOOL (GuiSkin::*pfnLoad)(OvXMLElement* pSection);
    BOOL (GuiSkin::*pfnLoadFiles)(OvXMLElement* pSection, const CString& strBasePath);
};

const GuiSkin::Section GuiSkin::kSections[] = {
    { "manifest", &GuiSkin::LoadManifest, nullptr },
    { "commandMap", &GuiSkin::LoadCommandMap, nullptr },
    { "strings", &GuiSkin::LoadStrings, nullptr },
    { "commandTips", &GuiSkin::LoadStrings, nullptr },
    { "colourScheme", &GuiSkin::LoadColourScheme, nullptr },
    { "fonts", nullptr, &GuiSkin::LoadFonts },
    { "commandImages", nullptr, &GuiSkin::LoadCommandImages },
    { "systemImages", nullptr, &GuiSkin::LoadSystemImages },
    { "watermarks", nullptr, &GuiSkin::LoadWatermarks },
    { "windowSkins", nullptr, &GuiSkin::LoadWindowSkins },
};

void GuiSkin::Apply(UINT nID, CString strType)
{
    CreateDefault();
    (void)LoadFromResource(nullptr, nID, strType); // what could be read is the skin
    Finalise();
}

BOOL GuiSkin::LoadFromResource(HINSTANCE hModule, UINT nID, CString strType)
{
    const HMODULE hFrom = hModule ? hModule : ::GetModuleHandleA(nullptr);
    const HRSRC hFound = ::FindResourceA(hFrom, MAKEINTRESOURCEA(static_cast<WORD>(nID)), strType);
    const void* const pBytes = hFound ? ::LockResource(::LoadResource(hFrom, hFound)) : nullptr;
    if (!pBytes)
        return FALSE;
    const CString strText(static_cast<LPCSTR>(pBytes), static_cast<int>(::SizeofResource(hFrom, hFound)));
    CString strBasePath;
    strBasePath.Format("%lu$", static_cast<unsigned long>(reinterpret_cast<ULONG_PTR>(hFrom)));
    return LoadFromString(strText, strBasePath);
}

BOOL GuiSkin::LoadFromString(const CString& strText, const CString& strBasePath)
{
    const std::unique_ptr<OvXMLElement> pRoot(OvXMLElement::FromString(strText, TRUE));
    return pRoot && LoadFromXML(pRoot.get(), strBasePath);
}

BOOL GuiSkin::LoadFromXML(OvXMLElement* pRoot, const CString& strBasePath)
{
    if (!pRoot || !pRoot->IsNamed("skin") || pRoot->GetElementCount() == 0)
        return FALSE;
    for (POSITION pos = pRoot->GetElementIterator(); pos;) {
        OvXMLElement* const pSection = pRoot->GetNextElement(pos);
        for (const Section& section : kSections) {
            if (!pSection->IsNamed(section.pszName))
                continue;
            const BOOL bLoaded = section.pfnLoad ? (this->*section.pfnLoad)(pSection)
                                                 : (this->*section.pfnLoadFiles)(pSection, strBasePath);
            if (!bLoaded)
                return FALSE;
            break;
        }
    }
    return TRUE;
}

// Language and direction stay as they are until another manifest of this type, also when a new skin is applied.
BOOL GuiSkin::LoadManifest(OvXMLElement* pSection)
{
    if (Value(pSection, "type").CompareNoCase("language") != 0)
        return TRUE;
    GuiManager& manager = GetGuiManager();
    manager.m_strLanguage = pSection->GetAttributeValue("language", "en");
    manager.m_bRightToLeft = pSection->GetAttributeValue("dir", "ltr") == "rtl";
    return TRUE;
}

UINT GuiSkin::LookupCommandID(OvXMLElement* pElement, const char* pszAttribute) const
{
    const CString strValue = Value(pElement, pszAttribute ? pszAttribute : "id");
    if (strValue[0] < '0' || strValue[0] > '9')
        return GetGuiInterface().NameToID(strValue);
    std::uintptr_t nID = 0;
    ToDecimal(strValue, nID);
    return static_cast<UINT>(nID);
}

BOOL GuiSkin::LoadCommandMap(OvXMLElement* pSection)
{
    for (POSITION pos = pSection->GetElementIterator(); pos;) {
        OvXMLElement* const pChild = pSection->GetNextElement(pos);
        if (!pChild->IsNamed("command"))
            continue;
        std::uintptr_t nCode = 0;
        if (!ToDecimal(Value(pChild, "code"), nCode))
            return FALSE;
        GetGuiInterface().NameCommand(static_cast<UINT>(nCode), Value(pChild, "id"));
    }
    return TRUE;
}

BOOL GuiSkin::LoadStrings(OvXMLElement* pSection)
{
    for (POSITION pos = pSection->GetElementIterator(); pos;) {
        OvXMLElement* const pChild = pSection->GetNextElement(pos);
        const bool bString = pChild->IsNamed("string");
        if (!bString && !pChild->IsNamed("tip"))
            continue;
        const UINT nID = LookupCommandID(pChild, nullptr);
        if (nID == 0)
            continue;
        if (bString) {
            SetString(nID, WithLineFeeds(Value(pChild, "value")));
            continue;
        }
        const CString strTip = Value(pChild, "tip");
        const CString strMessage = Value(pChild, "message");
        SetString(nID, strTip.IsEmpty() ? strMessage : strMessage + "\n" + strTip);
    }
    return TRUE;
}

BOOL GuiSkin::LoadColourScheme(OvXMLElement* pSection)
{
    GuiInterface& store = GetGuiInterface();
    store.SetColor("Dialog.Back", m_crDialogBack);
    store.SetColor("Schema.Row1", m_crRow1);
    store.SetColor("Schema.Row2", m_crRow2);
    bool bSystem = false;  // a colour of the system's was among them
    bool bDerived = false; // and the derived ones were calculated
    for (POSITION pos = pSection->GetElementIterator(); pos;) {
        OvXMLElement* const pChild = pSection->GetNextElement(pos);
        COLORREF crColour = 0;
        if (!pChild->IsNamed("colour") || !ToColourUnchecked(Value(pChild, "value"), crColour))
            continue;
        const CString strName = Value(pChild, "name");
        if (COLORREF crBefore = 0; store.m_mapColours.Lookup(strName, crBefore)) {
            if (FindInText(strName, "System.")) {
                bSystem = true;
                // The first derived colour of the skin: the others come from the base colours read so far.
                if (!bDerived && !FindInText(strName, ".Base.")) {
                    bDerived = true;
                    store.CalculateColours(TRUE);
                }
            }
            TakeSchemeColour(strName, crColour);
        }
        store.SetColor(strName, crColour);
    }
    if (bSystem && !bDerived)
        store.CalculateColours(TRUE);
    return TRUE;
}

// The colours that the skin itself keeps.
void GuiSkin::TakeSchemeColour(const CString& strName, COLORREF crColour)
{
    static constexpr struct {
        const char* pszName;
        COLORREF GuiSkin::*pColour;
    } kColours[] = {
        { "Dialog.Back", &GuiSkin::m_crDialogBack },
        { "Schema.Row1", &GuiSkin::m_crRow1 },
        { "Schema.Row2", &GuiSkin::m_crRow2 },
    };
    for (const auto& colour : kColours) {
        if (FindInText(strName, colour.pszName))
            this->*colour.pColour = crColour;
    }
}

BOOL GuiSkin::LoadWatermarks(OvXMLElement* pSection, const CString& strBasePath)
{
    for (POSITION pos = pSection->GetElementIterator(); pos;) {
        OvXMLElement* const pChild = pSection->GetNextElement(pos);
        if (!pChild->IsNamed("watermark"))
            continue;
        const CString strTarget = Value(pChild, "target");
        const CString strPath = Value(pChild, "path");
        if (!strTarget.IsEmpty() && !strPath.IsEmpty())
            m_mapWatermarks.SetAt(strTarget, strBasePath + strPath);
    }
    return TRUE;
}

BOOL GuiSkin::LoadWindowSkins(OvXMLElement* pSection, const CString& strBasePath)
{
    for (POSITION pos = pSection->GetElementIterator(); pos;) {
        OvXMLElement* const pChild = pSection->GetNextElement(pos);
        if (!pChild->IsNamed("windowSkin"))
            continue;
        auto pSkin = std::make_unique<GuiSkinWindow>();
        if (!pSkin->Parse(pChild, strBasePath))
            continue;
        m_pWindowSkinIndex->Add(pSkin.get());
        m_listWindowSkins.AddTail(pSkin.release());
    }
    return TRUE;
}

} // namespace PelkGUI
