// What may be drawn on. model_test.cpp tries random clips; here is what else is asked of them.
#include "tests/support/Picture.h"

#include <gtest/gtest.h>

#include <winbase.h>

using test::Picture;

namespace {

constexpr int kFar = 0x7FFFFFFF;

RECT ClipBox(HDC dc)
{
    RECT box{};
    GetClipBox(dc, &box);
    return box;
}

RECT Box(HRGN region)
{
    RECT box{};
    GetRgnBox(region, &box);
    return box;
}

} // namespace

TEST(GdiClip, CutsWhatIsDrawnAndAsked)
{
    const Picture picture("...../...../.....");
    EXPECT_EQ(IntersectClipRect(picture, 1, 0, 4, 3), SIMPLEREGION);
    EXPECT_EQ(ExcludeClipRect(picture, 2, 1, 3, 2), COMPLEXREGION);
    PatBlt(picture, -9, -9, 99, 99, WHITENESS);
    EXPECT_EQ(picture.Letters(), ".WWW./.W.W./.WWW.");
    EXPECT_TRUE(PtVisible(picture, 1, 1));
    EXPECT_FALSE(PtVisible(picture, 2, 1));
    EXPECT_EQ(GetPixel(picture, 2, 1), CLR_INVALID);
    const RECT hole{ 2, 1, 3, 2 };
    EXPECT_FALSE(RectVisible(picture, &hole));
    EXPECT_EQ(ExcludeClipRect(picture, -kFar, -kFar, kFar, kFar), NULLREGION);
    EXPECT_EQ(SelectClipRgn(picture, nullptr), SIMPLEREGION);
    EXPECT_EQ(ClipBox(picture), (RECT{ 0, 0, 5, 3 }));
}

TEST(GdiClip, TakesRegionsAsCopies)
{
    const Picture picture("...../.....");
    const HRGN region = CreateRectRgn(1, 0, 3, 9);
    EXPECT_EQ(SelectClipRgn(picture, region), SIMPLEREGION);
    SetRectRgn(region, 0, 0, 0, 0);
    EXPECT_EQ(ClipBox(picture), (RECT{ 1, 0, 3, 2 }));
    EXPECT_EQ(GetClipRgn(picture, region), 1);
    EXPECT_EQ(Box(region), (RECT{ 1, 0, 3, 9 }));
    SelectClipRgn(picture, nullptr);
    EXPECT_EQ(GetClipRgn(picture, region), 0);
    DeleteObject(region);
    EXPECT_EQ(SelectClipRgn(picture, region), ERROR);
}

TEST(GdiClip, CountsFromTheRightInAMirroredContext)
{
    const Picture picture(".....");
    SetLayout(picture, LAYOUT_RTL);
    IntersectClipRect(picture, 0, 0, 2, 1);
    EXPECT_EQ(ClipBox(picture), (RECT{ 0, 0, 2, 1 }));
    const HRGN region = CreateRectRgn(0, 0, 0, 0);
    EXPECT_EQ(GetClipRgn(picture, region), 1);
    EXPECT_EQ(Box(region), (RECT{ 0, 0, 2, 1 }));
    DeleteObject(region);
    OffsetClipRgn(picture, 1, 0);
    EXPECT_EQ(ClipBox(picture), (RECT{ 1, 0, 3, 1 }));
}

TEST(GdiClip, StaysWhenTheOriginsMove)
{
    const Picture picture("....../......");
    SetViewportOrgEx(picture, 2, 1, nullptr);
    IntersectClipRect(picture, 0, 0, 3, 1);
    SetWindowOrgEx(picture, 1, 0, nullptr);
    EXPECT_EQ(ClipBox(picture), (RECT{ 1, 0, 4, 1 }));
    POINT point{ 1, 0 };
    LPtoDP(picture, &point, 1);
    EXPECT_TRUE(point.x == 2 && point.y == 1);
}
