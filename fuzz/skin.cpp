// Skins of any bytes: loaded whole or refused, asked for all they can give, and forgotten.
#include "look/GuiInterface.h"
#include "look/GuiManager.h"
#include "skin/GuiSkin.h"
#include "skin/GuiSkinWindow.h"

#include <cstdint>
#include <cstdlib>

namespace {

using PelkGUI::GetGuiInterface;
using PelkGUI::GuiSkin;
using PelkGUI::GuiSkinWindow;

class Skin : public GuiSkin {
public:
    Skin() { CreateDefault(); }
};

void LookUp(const GuiSkin& skin, const GuiSkinWindow* pWindow)
{
    if (!pWindow->m_bmpImage.GetSafeHandle())
        std::abort();
    const CString strTarget = pWindow->m_strTargets.Mid(1).SpanExcluding("|");
    (void)skin.GetWindowSkin(strTarget, "");
    (void)skin.GetWindowSkin(pWindow->m_strTargets, nullptr);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    ::setenv("SCREEN", "memory", 1);
    PelkGUI::GetGuiManager().InitManager();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const CString strText(reinterpret_cast<const char*>(data), static_cast<int>(size));
    PelkGUI::GetGuiManager().m_strLanguage.Empty();
    PelkGUI::GetGuiManager().m_bRightToLeft = FALSE;
    Skin skin;
    (void)skin.LoadFromString(strText, "fuzz/corpus/skin/");
    for (POSITION pos = skin.m_listWindowSkins.GetHeadPosition(); pos;)
        LookUp(skin, skin.m_listWindowSkins.GetNext(pos));
    for (POSITION pos = skin.m_mapStrings.GetStartPosition(); pos;) {
        UINT nID = 0;
        CString strString;
        skin.m_mapStrings.GetNextAssoc(pos, nID, strString);
        if (skin.LoadStringA(nID) != strString)
            std::abort();
        int nDirection = 0;
        if (skin.GetTextFlowChange(strString, &nDirection) > strString.GetLength())
            std::abort();
        while (skin.SelectCaption(strString, 1)) {
        }
    }
    GetGuiInterface().Clear();
    return 0;
}
