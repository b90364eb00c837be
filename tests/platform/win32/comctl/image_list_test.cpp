#include "tests/support/Picture.h"

#include <commctrl.h>
#include <windows.h>

#include <gtest/gtest.h>

#include <string>

using test::Picture;

namespace {

// The picture drawn over white.
std::string Drawn(HIMAGELIST list, int index, int width = 3, int height = 1)
{
    const Picture target(width, height);
    PatBlt(target, 0, 0, width, height, WHITENESS);
    EXPECT_TRUE(ImageList_Draw(list, index, target, 0, 0, ILD_NORMAL));
    return target.Letters();
}

} // namespace

TEST(ImageList, CutsStripsByTheirMask)
{
    const HIMAGELIST list = ImageList_Create(3, 2, ILC_COLOR16 | ILC_MASK, 10, 4);
    const Picture strip("RGBGGRB"); // two pictures and a column too many
    EXPECT_EQ(ImageList_AddMasked(list, strip.bitmap(), RGB(0, 255, 0)), 0);
    EXPECT_EQ(ImageList_GetImageCount(list), 2);
    EXPECT_EQ(Drawn(list, 0, 3, 2), "RWB/WWW") << "the strip did not reach down there";
    EXPECT_EQ(Drawn(list, 1), "WWR");
    EXPECT_EQ(ImageList_AddMasked(list, strip.bitmap(), CLR_DEFAULT), 2);
    EXPECT_EQ(Drawn(list, 2), "WGB");

    EXPECT_EQ(ImageList_AddMasked(list, Picture(2, 2).bitmap(), 0), -1);
    EXPECT_EQ(ImageList_AddMasked(list, nullptr, 0), -1);
    EXPECT_EQ(ImageList_GetImageCount(list), 4);
    EXPECT_TRUE(ImageList_Remove(list, 0));
    EXPECT_EQ(Drawn(list, 0), "WWR");
    EXPECT_FALSE(ImageList_Remove(list, 3));
    EXPECT_TRUE(ImageList_Remove(list, -1));
    EXPECT_EQ(ImageList_GetImageCount(list), 0);
    EXPECT_TRUE(ImageList_Destroy(list));
    EXPECT_FALSE(ImageList_Destroy(list));
    EXPECT_EQ(ImageList_AddMasked(list, strip.bitmap(), 0), -1);
}

TEST(ImageList, TakesIconsInAndGivesThemOut)
{
    const HIMAGELIST list = ImageList_Create(3, 1, ILC_COLOR24 | ILC_MASK, 2, 2);
    const HICON small = test::IconOf(Picture("B").bitmap(), Picture(1, 1, 1).bitmap());
    ImageList_AddMasked(list, Picture("RGB").bitmap(), RGB(0, 255, 0));
    const HICON icon = ImageList_GetIcon(list, 0, ILD_NORMAL);
    ASSERT_NE(icon, nullptr);
    EXPECT_EQ(ImageList_AddIcon(list, icon), 1);
    EXPECT_EQ(ImageList_ReplaceIcon(list, 0, small), 0);
    EXPECT_EQ(Drawn(list, 0), "BBB") << "stretched";
    EXPECT_EQ(Drawn(list, 1), "RWB");
    EXPECT_EQ(ImageList_ReplaceIcon(list, 5, icon), -1);
    EXPECT_EQ(ImageList_ReplaceIcon(list, -1, nullptr), -1);
    EXPECT_EQ(ImageList_GetImageCount(list), 2);
    EXPECT_EQ(ImageList_GetIcon(list, 2, ILD_NORMAL), nullptr);
    EXPECT_EQ(ImageList_GetIcon(list, -1, ILD_NORMAL), nullptr);
    EXPECT_TRUE(ImageList_Destroy(list));
    const Picture target("WWW");
    EXPECT_TRUE(DrawIconEx(target, 0, 0, icon, 0, 0, 0, nullptr, DI_NORMAL)) << "it outlives the list";
    EXPECT_EQ(target.Letters(), "RWB");
    EXPECT_TRUE(DestroyIcon(icon));
    EXPECT_TRUE(DestroyIcon(small));
}

TEST(ImageList, RefusesSizesAndFlagsThatAreNone)
{
    EXPECT_EQ(ImageList_Create(0, 18, ILC_COLOR16 | ILC_MASK, 1, 1), nullptr);
    EXPECT_EQ(ImageList_Create(18, -1, ILC_COLOR16 | ILC_MASK, 1, 1), nullptr);
    EXPECT_EQ(ImageList_Create(18, 100000, ILC_COLOR16 | ILC_MASK, 1, 1), nullptr);
    EXPECT_EQ(ImageList_Create(18, 18, ILC_COLOR16, 1, 1), nullptr);
    EXPECT_EQ(ImageList_Create(18, 18, 0x13 | ILC_MASK, 1, 1), nullptr);
    const HIMAGELIST huge = ImageList_Create(4096, 4096, ILC_COLOR32 | ILC_MASK, 1, 1);
    EXPECT_EQ(ImageList_AddMasked(huge, Picture(8192, 1).bitmap(), 0), -1) << "a flat strip claims all the memory";
    ImageList_Destroy(huge);
}
