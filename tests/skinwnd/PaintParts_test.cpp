// Named parts and anchors.
#include "skin/GuiSkinWindow.h"

#include <gtest/gtest.h>

#include "tests/support/Canvas.h"

namespace {

using PelkGUI::GuiSkinWindow;

struct AnchorCase {
    const char* why;
    CRect rcAnchor;
    CRect rcReference;
    CRect rcExpected;
};

const AnchorCase kAnchorCases[] = {
    { "negative left counts from the right", { -30, 0, -10, 20 }, { 0, 0, 200, 100 }, { 170, 0, 190, 20 } },
    { "negative top counts from the bottom", { 0, -20, 16, -4 }, { 0, 0, 200, 100 }, { 0, 80, 16, 96 } },
    { "zero is an offset, not an edge", { 0, 0, 5, 5 }, { 7, 9, 107, 109 }, { 7, 9, 12, 14 } },
    { "both, of a reference elsewhere", { -5, -6, 5, 6 }, { 100, 50, 300, 80 }, { 295, 74, 305, 86 } },
    { "sums wrap",
      { 0x7FFFFFFF, -1, 0, 0 },
      { 1, 0, 5, -0x7FFFFFFF - 1 },
      { -0x7FFFFFFF - 1, 0x7FFFFFFF, 1, -0x7FFFFFFF - 1 } },
};

TEST(GuiSkinWindowAnchor, ResolvesAgainstTheReference)
{
    for (const AnchorCase& c : kAnchorCases) {
        SCOPED_TRACE(c.why);
        GuiSkinWindow skin;
        skin.m_mapAnchors.SetAt("anchor", new CRect(c.rcAnchor));
        CRect rcResult;
        EXPECT_TRUE(skin.GetAnchor("anchor", c.rcReference, rcResult));
        EXPECT_EQ(rcResult, c.rcExpected);
    }
}

} // namespace
