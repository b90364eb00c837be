#include "tests/platform/win32/gdi/Pictures.h"

#include <gtest/gtest.h>

#include <winbase.h>

using test::Picture;

namespace {

constexpr int kFar = 0x7FFFFFFF;

void FillWhite(HDC dc)
{
    const RECT everything{ -kFar, -kFar, kFar, kFar };
    FillRect(dc, &everything, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
}

} // namespace

TEST(GdiClip, CutsWhatIsDrawn)
{
    const Picture picture("...../...../.....");
    EXPECT_EQ(IntersectClipRect(picture.dc(), 1, 0, 4, 3), SIMPLEREGION);
    EXPECT_EQ(ExcludeClipRect(picture.dc(), 2, 1, 3, 2), COMPLEXREGION);
    FillWhite(picture.dc());
    EXPECT_EQ(picture.Letters(), ".WWW./.W.W./.WWW.");
    EXPECT_TRUE(PtVisible(picture.dc(), 1, 1));
    EXPECT_FALSE(PtVisible(picture.dc(), 2, 1));
    EXPECT_EQ(GetPixel(picture.dc(), 2, 1), CLR_INVALID);
    const RECT hole{ 2, 1, 3, 2 };
    EXPECT_FALSE(RectVisible(picture.dc(), &hole));
    EXPECT_EQ(ExcludeClipRect(picture.dc(), -kFar, -kFar, kFar, kFar), NULLREGION);
    EXPECT_EQ(SelectClipRgn(picture.dc(), nullptr), SIMPLEREGION);
    RECT box{};
    GetClipBox(picture.dc(), &box);
    EXPECT_EQ(box, (RECT{ 0, 0, 5, 3 }));
}

TEST(GdiClip, TakesRegionsAsCopies)
{
    const Picture picture("...../.....");
    const HRGN region = CreateRectRgn(1, 0, 3, 9);
    EXPECT_EQ(SelectClipRgn(picture.dc(), region), SIMPLEREGION);
    SetRectRgn(region, 0, 0, 0, 0);
    EXPECT_EQ(GetClipRgn(picture.dc(), region), 1);
    RECT box{};
    GetRgnBox(region, &box);
    EXPECT_EQ(box, (RECT{ 1, 0, 3, 9 }));
    SetRectRgn(region, 2, 0, 5, 1);
    EXPECT_EQ(ExtSelectClipRgn(picture.dc(), region, RGN_OR), COMPLEXREGION);
    FillWhite(picture.dc());
    EXPECT_EQ(picture.Letters(), ".WWWW/.WW..");
    SelectClipRgn(picture.dc(), nullptr);
    EXPECT_EQ(GetClipRgn(picture.dc(), region), 0);
    DeleteObject(region);
    EXPECT_EQ(SelectClipRgn(picture.dc(), region), ERROR);
}

TEST(GdiClip, FollowsTheOrigins)
{
    const Picture picture("....../......");
    SetViewportOrgEx(picture.dc(), 2, 1, nullptr);
    IntersectClipRect(picture.dc(), 0, 0, 3, 1);
    RECT box{};
    GetClipBox(picture.dc(), &box);
    EXPECT_EQ(box, (RECT{ 0, 0, 3, 1 }));
    SetWindowOrgEx(picture.dc(), 1, 0, nullptr);
    SetPixel(picture.dc(), 1, 0, RGB(255, 0, 0));
    FillWhite(picture.dc());
    SetPixel(picture.dc(), 1, 0, RGB(255, 0, 0));
    EXPECT_EQ(picture.Letters(), "....../..RWW.");
    POINT point{ 1, 0 };
    LPtoDP(picture.dc(), &point, 1);
    EXPECT_EQ(point.x, 2);
    EXPECT_EQ(point.y, 1);
}

struct LayoutCase {
    const char* why;
    DWORD source_layout;
    DWORD target_layout;
    const char* expected; // of "RGB" copied from 0 to 1 in a picture of five
};

const LayoutCase kLayoutCases[] = {
    { "neither", 0, 0, ".RGB." },
    { "the target is mirrored", 0, LAYOUT_RTL, ".BGR." },
    { "the source is mirrored", LAYOUT_RTL, 0, ".BGR." },
    { "both", LAYOUT_RTL, LAYOUT_RTL, ".RGB." },
    { "the target keeps orientation", 0, LAYOUT_RTL | LAYOUT_BITMAPORIENTATIONPRESERVED, ".RGB." },
    { "the source keeps orientation", LAYOUT_BITMAPORIENTATIONPRESERVED, LAYOUT_RTL, ".RGB." },
    { "keeping orientation alone mirrors nothing", LAYOUT_BITMAPORIENTATIONPRESERVED, 0, ".RGB." },
    { "both, one keeps", LAYOUT_RTL | LAYOUT_BITMAPORIENTATIONPRESERVED, LAYOUT_RTL, ".RGB." },
};

TEST(GdiLayout, FlipsCopiesBetweenDifferentLayouts)
{
    for (const LayoutCase& c : kLayoutCases) {
        SCOPED_TRACE(c.why);
        const Picture source("RGB");
        const Picture target(".....");
        SetLayout(source.dc(), c.source_layout);
        SetLayout(target.dc(), c.target_layout);
        BitBlt(target.dc(), 1, 0, 3, 1, source.dc(), 0, 0, SRCCOPY);
        EXPECT_EQ(target.Letters(), c.expected);
    }
}

TEST(GdiLayout, MirrorsCoordinates)
{
    const Picture picture("...../.....");
    SetLayout(picture.dc(), LAYOUT_RTL);
    SetPixel(picture.dc(), 0, 0, RGB(255, 0, 0));
    EXPECT_EQ(GetPixel(picture.dc(), 0, 0), RGB(255, 0, 0));
    const RECT rect{ 1, 1, 3, 2 };
    FillRect(picture.dc(), &rect, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
    EXPECT_EQ(picture.Letters(), "....R/..WW.");
    IntersectClipRect(picture.dc(), 0, 0, 2, 1);
    RECT box{};
    GetClipBox(picture.dc(), &box);
    EXPECT_EQ(box, (RECT{ 0, 0, 2, 1 }));
    FillWhite(picture.dc());
    EXPECT_EQ(picture.Letters(), "...WW/..WW.");
    const HRGN region = CreateRectRgn(4, 0, 5, 2);
    SelectClipRgn(picture.dc(), region);
    DeleteObject(region);
    FillWhite(picture.dc());
    EXPECT_EQ(picture.Letters(), "W..WW/W.WW.");
}

TEST(GdiLayout, IsTakenOverByCompatibleContexts)
{
    const Picture picture(4, 1);
    EXPECT_EQ(SetLayout(picture.dc(), LAYOUT_RTL), 0U);
    const HDC compatible = CreateCompatibleDC(picture.dc());
    EXPECT_EQ(GetLayout(compatible), LAYOUT_RTL);
    EXPECT_EQ(SetLayout(compatible, 0x100), GDI_ERROR);
    DeleteDC(compatible);
    EXPECT_EQ(GetLayout(compatible), GDI_ERROR);
}

TEST(GdiBrush, RepeatsItsPattern)
{
    const Picture tile("RG/BW");
    const HBRUSH brush = CreatePatternBrush(tile.bitmap());
    const Picture picture("...../...../.....");
    const RECT rect{ 1, 0, 5, 3 };
    FillRect(picture.dc(), &rect, brush);
    EXPECT_EQ(picture.Letters(), ".GRGR/.WBWB/.GRGR");
    DeleteObject(brush);
}
