// The sections "commandImages" and "systemImages": pictures for the store's image lists. In a right-to-left layout all
// of them are mirrored.
#include "skin/GuiSkin.h"

#include <shellapi.h>

#include "look/GuiInterface.h"
#include "look/GuiManager.h"
#include "skin/SkinText.h"
#include "xml/TextUtil.h"

namespace PelkGUI {

namespace {

struct DestroyIcon {
    void operator()(HICON hIcon) const { ::DestroyIcon(hIcon); }
};
using UniqueIcon = std::unique_ptr<std::remove_pointer_t<HICON>, DestroyIcon>;

// The transparent colour.
COLORREF MaskOf(const OvXMLElement* pElement)
{
    COLORREF crMask = RGB(0, 255, 0);
    ToColourUnchecked(Value(pElement, "mask"), crMask);
    return crMask;
}

UniqueIcon LoadIconFile(const CString& strPath)
{
    HICON hIcon = nullptr;
    return UniqueIcon(::ExtractIconExA(strPath, 0, nullptr, &hIcon, 1) != 0 ? hIcon : nullptr);
}

UniqueIcon LoadModuleIcon(std::uintptr_t nModule, std::uintptr_t nID)
{
    constexpr int kIconSize = 16;
    const LPCSTR pszID = MAKEINTRESOURCEA(static_cast<WORD>(nID));
    return UniqueIcon(static_cast<HICON>(
        ::LoadImageA(reinterpret_cast<HINSTANCE>(nModule), pszID, IMAGE_ICON, kIconSize, kIconSize, LR_DEFAULTCOLOR)));
}

// Gives a bitmap its mirrored copy's picture where the layout asks for it.
void MirrorForLayout(CBitmap& bmp)
{
    if (!GetGuiManager().m_bRightToLeft)
        return;
    const HBITMAP hMirrored = CreateMirroredBitmap(bmp);
    bmp.DeleteObject();
    bmp.Attach(hMirrored);
}

} // namespace

BOOL GuiSkin::LoadCommandImages(OvXMLElement* pSection, const CString& strBasePath)
{
    for (POSITION pos = pSection->GetElementIterator(); pos;) {
        OvXMLElement* const pChild = pSection->GetNextElement(pos);
        if (pChild->IsNamed("icon")) {
            if (!LoadCommandIcon(pChild, strBasePath))
                return TRUE; // the section ends here, and does not fail
        } else if (pChild->IsNamed("bitmap") && !LoadCommandBitmap(pChild, strBasePath)) {
            return FALSE;
        }
    }
    return TRUE;
}

BOOL GuiSkin::LoadCommandIcon(OvXMLElement* pElement, const CString& strBasePath)
{
    const UINT nID = LookupCommandID(pElement, nullptr);
    if (nID == 0)
        return TRUE;
    const CString strPath = strBasePath + Value(pElement, "res") + Value(pElement, "path");
    UniqueIcon icon;
    if (const char* const pszDollar = FindInText(strPath, "$")) {
        std::uintptr_t nModule = 0;
        std::uintptr_t nResource = 0;
        // The module's number ends at the "$" by itself.
        if (!ToDecimal(strPath, nModule) || !ToDecimal(pszDollar + 1, nResource))
            return FALSE;
        icon = LoadModuleIcon(nModule, nResource);
    } else {
        icon = LoadIconFile(strPath);
    }
    if (!icon)
        return TRUE;
    if (GetGuiManager().m_bRightToLeft)
        icon.reset(CreateMirroredIcon(icon.get()));
    GetGuiInterface().AddIcon(nID, icon.get());
    return TRUE;
}

BOOL GuiSkin::LoadCommandBitmap(OvXMLElement* pElement, const CString& strBasePath)
{
    CString strPath = strBasePath + Value(pElement, "id") + Value(pElement, "path");
    CBitmap bmp;
    if (!bmp.Attach(LoadBitmapA(strPath)))
        return TRUE;
    MirrorForLayout(bmp);
    GuiInterface& store = GetGuiInterface();
    store.ConfirmImageList();
    const int nFirst = store.m_ilCommands.Add(&bmp, MaskOf(pElement));
    if (nFirst < 0)
        return FALSE;
    MapCommandImages(pElement, nFirst, store.m_ilCommands.GetImageCount() - 1);
    return TRUE;
}

// Gives the images nFirst to nLast to the commands that the children name. A mirrored strip is counted from its end.
void GuiSkin::MapCommandImages(OvXMLElement* pElement, int nFirst, int nLast)
{
    constexpr const char* kIDNames[] = { "id", "id1", "id2", "id3", "id4", "id5", "id6", "id7", "id8", "id9" };
    GuiInterface& store = GetGuiInterface();
    const BOOL bRightToLeft = GetGuiManager().m_bRightToLeft;
    int nRelative = 0;
    int nMirrored = nLast;
    for (POSITION pos = pElement->GetElementIterator(); pos;) {
        OvXMLElement* const pChild = pElement->GetNextElement(pos);
        if (!pChild->IsNamed("image"))
            continue;
        ToInteger(Value(pChild, "index"), nRelative);
        const int nImage = bRightToLeft ? nMirrored : mfc::wrapping_add(nFirst, nRelative);
        for (const char* const& pszName : kIDNames) {
            const UINT nID = LookupCommandID(pChild, pszName);
            if (nID != 0)
                store.m_mapCommandImages.SetAt(nID, nImage);
            else if (&pszName != kIDNames)
                break; // "id" alone may be missing
        }
        nRelative = mfc::wrapping_add(nRelative, 1);
        nMirrored = mfc::wrapping_subtract(nMirrored, 1);
    }
}

BOOL GuiSkin::LoadSystemImages(OvXMLElement* pSection, const CString& strBasePath)
{
    static constexpr struct {
        const char* pszName;
        int (GuiInterface::*pfnCreate)();
        CImageList GuiInterface::*pImages;
    } kLists[] = {
        { "arrow", &GuiInterface::CreateArrImages, &GuiInterface::m_ilArrows },
        { "list", &GuiInterface::CreateListImages, &GuiInterface::m_ilLists },
    };
    GuiInterface& store = GetGuiInterface();
    for (POSITION pos = pSection->GetElementIterator(); pos;) {
        OvXMLElement* const pChild = pSection->GetNextElement(pos);
        if (!pChild->IsNamed("bitmap"))
            continue;
        CString strPath = strBasePath + Value(pChild, "path");
        CBitmap bmp;
        if (!bmp.Attach(LoadBitmapA(strPath)))
            return TRUE; // the section ends here, and does not fail
        MirrorForLayout(bmp);
        const CString strName = Value(pChild, "name");
        for (const auto& list : kLists) {
            if (strName.CompareNoCase(list.pszName) != 0)
                continue;
            (store.*list.pfnCreate)();
            if ((store.*list.pImages).Add(&bmp, MaskOf(pChild)) < 0)
                return FALSE;
        }
    }
    return TRUE;
}

} // namespace PelkGUI
