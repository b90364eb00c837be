// What a skin holds, and how it is asked.
#include "skin/GuiSkin.h"

#include "look/GuiInterface.h"
#include "skin/GuiSkinWindow.h"
#include "skin/SkinText.h"
#include "skin/WindowSkinIndex.h"

namespace PelkGUI {

namespace {

// Made before main, and earlier for a static object that asks earlier.
[[maybe_unused]] const GuiSkin& theSkin = GetGuiSkin();

} // namespace

GuiSkin& GetGuiSkin()
{
    static GuiSkin skin;
    return skin;
}

GuiSkin::GuiSkin() : m_pWindowSkinIndex(std::make_unique<WindowSkinIndex>()) {}

GuiSkin::~GuiSkin()
{
    Clear();
}

void GuiSkin::Clear()
{
    m_pWindowSkinIndex->Clear();
    for (POSITION pos = m_listWindowSkins.GetHeadPosition(); pos;)
        delete m_listWindowSkins.GetNext(pos);
    for (POSITION pos = m_listFontFiles.GetHeadPosition(); pos;)
        ::RemoveFontResourceA(m_listFontFiles.GetNext(pos));
    m_mapStrings.RemoveAll();
    m_mapWatermarks.RemoveAll();
    m_listWindowSkins.RemoveAll();
    m_listFontFiles.RemoveAll();
    m_brDialog.DeleteObject();
}

void GuiSkin::CreateDefault()
{
    Clear();
    GuiInterface& store = GetGuiInterface();
    store.Clear();
    store.CalculateColours(FALSE);
    m_crDialogBack = GuiInterface::GetDialogBkColor();
    m_crRow1 = RGB(245, 245, 255);
    m_crRow2 = RGB(214, 223, 247);
}

void GuiSkin::Finalise()
{
    m_brDialog.CreateSolidBrush(m_crDialogBack);
}

BOOL GuiSkin::LoadStringA(CString& strResult, UINT nID) const
{
    return m_mapStrings.Lookup(nID, strResult) || strResult.LoadString(nID);
}

CString GuiSkin::LoadStringA(UINT nID) const
{
    CString strText;
    LoadStringA(strText, nID);
    return strText;
}

void GuiSkin::SetString(UINT nID, CString strText)
{
    m_mapStrings.SetAt(nID, strText);
}

BOOL GuiSkin::SelectCaption(CString& strCaption, int nIndex) const
{
    const CString strAll = strCaption;
    const char* pszPiece = strAll;
    for (int i = 0;; i++) {
        const char* const pszBar = FindInText(pszPiece, "|");
        const CString strPiece = pszBar ? CString(pszPiece, static_cast<int>(pszBar - pszPiece)) : CString(pszPiece);
        if (i == nIndex && !strPiece.IsEmpty()) {
            strCaption = strPiece;
            return TRUE;
        }
        if (strPiece.IsEmpty() || !pszBar) {
            // The end of the text counts as a bar, and stands at the end of what remains.
            strCaption = pszBar ? CString(pszBar + 1) + "|" : CString();
            return FALSE;
        }
        pszPiece = pszBar + 1;
    }
}

BOOL GuiSkin::SelectCaption(CWnd* pWnd, int nIndex) const
{
    CString strCaption;
    pWnd->GetWindowText(strCaption);
    if (!SelectCaption(strCaption, nIndex))
        return FALSE;
    pWnd->SetWindowText(strCaption);
    return TRUE;
}

HBITMAP GuiSkin::GetWatermark(const char* pszTarget) const
{
    CString strPath;
    return m_mapWatermarks.Lookup(pszTarget, strPath) ? LoadBitmapA(strPath) : nullptr;
}

BOOL GuiSkin::GetWatermark(CBitmap* pBitmap, const char* pszTarget) const
{
    pBitmap->DeleteObject();
    return pBitmap->Attach(GetWatermark(pszTarget));
}

HBITMAP GuiSkin::LoadBitmapA(CString& strPath) const
{
    return static_cast<HBITMAP>(::LoadImageA(AfxGetInstanceHandle(), strPath, IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE));
}

GuiSkinWindow* GuiSkin::GetWindowSkin(const char* pszName, const char* pszSuffix) const
{
    std::string name = pszName ? pszName : "";
    name += pszSuffix ? pszSuffix : "";
    if (!FindInText(name.c_str(), "|"))
        return m_pWindowSkinIndex->Find(name);
    // A name with bars matches across the bars between targets.
    const std::string key = "|" + name + "|";
    for (POSITION pos = m_listWindowSkins.GetHeadPosition(); pos;) {
        GuiSkinWindow* const pSkin = m_listWindowSkins.GetNext(pos);
        if (FindInText(pSkin->m_strTargets, key.c_str()))
            return pSkin;
    }
    return nullptr;
}

GuiSkinWindow* GuiSkin::GetWindowSkin(CWnd* pWnd) const
{
    const CRuntimeClass* pClass = pWnd ? pWnd->GetRuntimeClass() : nullptr;
    for (; pClass && pClass->m_pfnGetBaseClass; pClass = pClass->m_pfnGetBaseClass()) {
        if (GuiSkinWindow* const pSkin = GetWindowSkin(pClass->m_lpszClassName, nullptr))
            return pSkin;
    }
    return nullptr;
}

} // namespace PelkGUI
