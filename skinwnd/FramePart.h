// The names of the skin format (kFramePartNames, kCaptionAnchorNames) as indexes into a window skin's arrays, and what
// painting and measuring ask of them.
#pragma once

#include <algorithm>
#include <initializer_list>

#include "skin/GuiSkinWindow.h"
#include "skin/SkinFormat.h"

namespace PelkGUI {

// FramePart::TopLeft and so on. "IA" is the look of a window that is not active.
namespace FramePart {
// clang-format off
enum : int {
    TopLeft, Top, TopMiddle, TopRight,
    TopLeftIA, TopIA, TopIAMiddle, TopRightIA,
    LeftTop, Left, LeftMiddle, LeftBottom,
    RightTop, Right, RightMiddle, RightBottom,
    BottomLeft, Bottom, BottomMiddle, BottomRight,
    CTopLeft, CTop, CTopMiddle, CTopRight,
    CLeftTop, CLeft, CLeftMiddle, CLeftBottom,
    CRightTop, CRight, CRightMiddle, CRightBottom,
    CBottomLeft, CBottom, CBottomMiddle, CBottomRight,
    System, SystemHover, SystemDown,
    Minimise, MinimiseHover, MinimiseDown,
    Maximise, MaximiseHover, MaximiseDown,
    Close, CloseHover, CloseDown,
};
// clang-format on
} // namespace FramePart
static_assert(FramePart::CloseDown + 1 == kFramePartCount);

// Caption buttons are numbered by their anchors; the icon is none.
namespace CaptionAnchor {
enum : int { Icon, System, Minimise, Maximise, Close };
} // namespace CaptionAnchor
static_assert(CaptionAnchor::Close + 1 == kCaptionAnchorCount);

// A frame part's rectangle in the main image; null: the skin has no such part.
inline const CRect* FindPart(const GuiSkinWindow& skin, int nPart)
{
    return skin.m_pPartPresent[nPart] == 1 ? &skin.m_pPartRect[nPart] : nullptr;
}

// Whether a part has pixels and all of them are in the main image: what is not there is not drawn.
inline bool IsWithin(const CRect& rcPart, const CSize& sizeImage)
{
    return rcPart.left >= 0 && rcPart.top >= 0 && rcPart.left < rcPart.right && rcPart.top < rcPart.bottom &&
           rcPart.right <= sizeImage.cx && rcPart.bottom <= sizeImage.cy;
}

// The greatest height among those of the parts that are present; 0 when none is, or none has a positive one.
inline int GreatestHeight(const GuiSkinWindow& skin, std::initializer_list<int> parts)
{
    int nHeight = 0;
    for (const int nPart : parts) {
        if (const CRect* const pPart = FindPart(skin, nPart))
            nHeight = std::max(nHeight, pPart->Height());
    }
    return nHeight;
}

// Where an anchor lies: a negative left counts from the reference's right edge, a negative top from its bottom,
// anything else from its left and top. The size stays.
inline CRect ResolvedAnchor(const CRect& rcAnchor, const CRect& rcReference)
{
    return rcAnchor + CPoint(rcAnchor.left < 0 ? rcReference.right : rcReference.left,
                             rcAnchor.top < 0 ? rcReference.bottom : rcReference.top);
}

} // namespace PelkGUI
