// Skins of any bytes: the report on them and the loader must agree on which windows there are.
#include "look/GuiInterface.h"
#include "look/GuiManager.h"
#include "skin/GuiSkin.h"
#include "skin/GuiSkinWindow.h"
#include "tools/skinview/SkinReport.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <set>

namespace {

constexpr char kFolder[] = "fuzz/corpus/skin/";

// The targets of the window skins that the loader keeps. A bar in a name parts it in two, so such skins are not asked.
std::set<std::string> LoadedWindows(const std::string& strText)
{
    PelkGUI::GetGuiManager().m_strLanguage.Empty();
    PelkGUI::GetGuiManager().m_bRightToLeft = FALSE;
    PelkGUI::GuiSkin skin;
    std::set<std::string> windows;
    (void)skin.LoadFromString(CString(strText.data(), static_cast<int>(strText.size())), kFolder);
    for (POSITION pos = skin.m_listWindowSkins.GetHeadPosition(); pos;) {
        const std::string strTargets(skin.m_listWindowSkins.GetNext(pos)->m_strTargets);
        for (size_t nAt = 0; nAt < strTargets.size();) {
            const size_t nEnd = strTargets.find('|', nAt + 1);
            windows.insert(strTargets.substr(nAt + 1, nEnd - nAt - 1));
            nAt = nEnd + 1;
        }
    }
    return windows;
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
    const std::string strText(reinterpret_cast<const char*>(data), size);
    const skinview::SkinReport report = skinview::CheckSkin(strText, kFolder);
    for (const skinview::Finding& finding : report.findings) {
        if (TextOf(finding, "skin").empty())
            std::abort();
    }
    const std::set<std::string> reported(report.windows.begin(), report.windows.end());
    if (strText.find('|') == std::string::npos && strText.find('&') == std::string::npos &&
        reported != LoadedWindows(strText))
        std::abort();
    PelkGUI::GetGuiInterface().Clear();
    return 0;
}
