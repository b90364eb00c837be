// The fixed names of the skin format, in its order: window skins keep what belongs to them in arrays by index, and
// painting and hit testing address them so. Names in a skin match without regard to the case of the letters A to Z.
#pragma once

#include <iterator>

#include <afx.h>

namespace PelkGUI {

// Parts of the frame. The outer frame is first; its "IA" names are the top edge of a window that is not active. The
// names with a "C" are a second frame within it. Behind them lie the caption buttons in their three looks.
inline constexpr const char* kFramePartNames[] = {
    "TopLeft",     "Top",           "TopMiddle",     "TopRight",     //
    "TopLeftIA",   "TopIA",         "TopIAMiddle",   "TopRightIA",   //
    "LeftTop",     "Left",          "LeftMiddle",    "LeftBottom",   //
    "RightTop",    "Right",         "RightMiddle",   "RightBottom",  //
    "BottomLeft",  "Bottom",        "BottomMiddle",  "BottomRight",  //
    "CTopLeft",    "CTop",          "CTopMiddle",    "CTopRight",    //
    "CLeftTop",    "CLeft",         "CLeftMiddle",   "CLeftBottom",  //
    "CRightTop",   "CRight",        "CRightMiddle",  "CRightBottom", //
    "CBottomLeft", "CBottom",       "CBottomMiddle", "CBottomRight", //
    "System",      "SystemHover",   "SystemDown",                    //
    "Minimise",    "MinimiseHover", "MinimiseDown",                  //
    "Maximise",    "MaximiseHover", "MaximiseDown",                  //
    "Close",       "CloseHover",    "CloseDown",
};
inline constexpr int kFramePartCount = 48;
static_assert(std::size(kFramePartNames) == kFramePartCount);

// Places of the caption. Caption buttons are numbered by them; "Icon" is no button.
inline constexpr const char* kCaptionAnchorNames[] = { "Icon", "System", "Minimise", "Maximise", "Close" };
inline constexpr int kCaptionAnchorCount = 5;
static_assert(std::size(kCaptionAnchorNames) == kCaptionAnchorCount);

// The index of the name in one of the tables above, -1: it is none of them.
template <size_t nCount>
int FindName(const char* const (&names)[nCount], const CString& strName)
{
    for (size_t i = 0; i < nCount; i++) {
        if (strName.CompareNoCase(names[i]) == 0)
            return static_cast<int>(i);
    }
    return -1;
}

} // namespace PelkGUI
