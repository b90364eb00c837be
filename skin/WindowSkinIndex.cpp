#include "skin/WindowSkinIndex.h"

#include "skin/GuiSkinWindow.h"
#include "skin/SkinText.h"

namespace PelkGUI {

void WindowSkinIndex::Add(GuiSkinWindow* pSkin)
{
    const char* pszBar = FindInText(pSkin->m_strTargets, "|");
    while (pszBar) {
        const char* const pszName = pszBar + 1;
        pszBar = FindInText(pszName, "|");
        if (pszBar) // also the empty name between the bars of two targets
            m_mapSkins.try_emplace(std::string(pszName, pszBar), pSkin);
    }
}

GuiSkinWindow* WindowSkinIndex::Find(std::string_view name) const
{
    const auto found = m_mapSkins.find(name);
    return found == m_mapSkins.end() ? nullptr : found->second;
}

} // namespace PelkGUI
