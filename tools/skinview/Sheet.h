// Everything of a window skin on one labelled picture: whole windows in both looks and both layouts, every part of the
// frame, every button in every look, the other parts and pictures, colours and fonts.
#pragma once

#include "tools/skinview/Studio.h"

namespace skinview {

struct SheetWindow {
    std::string strLabel;
    Picture picture;
};

// The sheet of the window skin, whose skin is the process's. The windows head it.
Picture DrawSheet(PelkGUI::GuiSkinWindow& skin, const std::string& strTitle, const std::vector<SheetWindow>& windows);

} // namespace skinview
