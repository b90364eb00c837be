// Finds window skins by the names of their targets, however many there are.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

namespace PelkGUI {

class GuiSkinWindow;

class WindowSkinIndex {
public:
    // The window skin comes behind those that were added before: where they share a name, they are found.
    void Add(GuiSkinWindow* pSkin);
    // The first window skin in whose targets the name stands between two bars, or null. The name holds no bar.
    GuiSkinWindow* Find(std::string_view name) const;
    void Clear() { m_mapSkins.clear(); }

private:
    struct Hash {
        using is_transparent = void;
        size_t operator()(std::string_view name) const { return std::hash<std::string_view>()(name); }
    };

    std::unordered_map<std::string, GuiSkinWindow*, Hash, std::equal_to<>> m_mapSkins;
};

} // namespace PelkGUI
