#include <string>

#include <gtest/gtest.h>

#include "look/GuiInterface.h"
#include "platform/win32/gdi/objects.h"
#include "tests/support/Picture.h"

using PelkGUI::GuiInterface;
using test::Picture;

namespace {

// Of 2 by 2 pixels.
HICON IconOf(const char* pszRows)
{
    return test::IconOf(Picture(pszRows).bitmap(), Picture(2, 2, 1).bitmap());
}

// The upper row of the command's image, 18 pixels, drawn over white.
std::string ImageOf(const GuiInterface& store, UINT nID)
{
    const Picture picture("WWWWWWWWWWWWWWWWWW");
    const HICON hIcon = store.ExtractIconA(nID);
    EXPECT_TRUE(DrawIconEx(picture, 0, 0, hIcon, 0, 0, 0, nullptr, DI_NORMAL));
    EXPECT_TRUE(DestroyIcon(hIcon));
    return picture.Letters();
}

} // namespace

TEST(GuiInterfaceCommands, HaveNamesOrNumbers)
{
    GuiInterface store;
    store.NameCommand(7, "x");
    store.NameCommand(8, "x");
    store.NameCommand(9, "y");
    store.NameCommand(77, "12");
    store.NameCommand(11, "\xB0\xB4");
    const struct {
        const char* pszName;
        UINT nID;
    } cases[] = {
        { "x", 8 },     { "X", 0 },  { "y", 9 },  { "1234", 1234 }, { " \t42 and more", 42 },
        { "12", 77 },   { "", 0 },   { "-", 0 },  { "z12", 0 },     { "4294967295", 4294967295U },
        { nullptr, 0 }, { "x ", 0 }, { "08", 8 }, { "0x10", 0 },    { "\xB0\xB4", 11 },
    };
    for (const auto& c : cases)
        EXPECT_EQ(store.NameToID(c.pszName), c.nID) << (c.pszName ? c.pszName : "null");
    store.NameCommand(5, nullptr);
    EXPECT_EQ(store.NameToID(""), 5U);
}

TEST(GuiInterfaceCommands, ShareImages)
{
    GuiInterface store;
    const HICON hIcon = IconOf("RG/BR");
    store.AddIcon(5, hIcon);
    EXPECT_EQ(store.ImageForID(5), 0);
    store.CopyIcon(5, 9);
    store.CopyIcon(6, 9);
    EXPECT_EQ(store.ImageForID(9), 0) << "6 has no image to share";
    EXPECT_EQ(store.ImageForID(6), -1);
    store.AddIcon(5, hIcon);
    EXPECT_EQ(store.ImageForID(5), 1);
    EXPECT_EQ(store.ImageForID(9), 0);
    EXPECT_TRUE(DestroyIcon(hIcon)) << "the caller kept it";
    EXPECT_EQ(ImageOf(store, 9), "RRRRRRRRRGGGGGGGGG");

    store.AddIcon(5, nullptr);
    EXPECT_EQ(store.ImageForID(5), -1);
    EXPECT_EQ(store.ExtractIconA(5), nullptr);
    store.CopyIcon(5, 9);
    EXPECT_EQ(store.ImageForID(9), -1) << "no image is shared as well";
}

TEST(GuiInterfaceCommands, HaveListsThatAreMadeOnce)
{
    GuiInterface store;
    const struct {
        int (GuiInterface::*pfnMake)();
        CImageList& list;
        CSize size;
    } cases[] = {
        { &GuiInterface::ConfirmImageList, store.m_ilCommands, { 18, 18 } },
        { &GuiInterface::CreateArrImages, store.m_ilArrows, { 9, 6 } },
        { &GuiInterface::CreateListImages, store.m_ilLists, { 16, 16 } },
    };
    for (const auto& c : cases) {
        EXPECT_TRUE((store.*c.pfnMake)());
        const HIMAGELIST hList = c.list.GetSafeHandle();
        EXPECT_TRUE((store.*c.pfnMake)());
        EXPECT_EQ(c.list.GetSafeHandle(), hList);
        int cx = 0;
        int cy = 0;
        EXPECT_TRUE(ImageList_GetIconSize(hList, &cx, &cy));
        EXPECT_EQ(CSize(cx, cy), c.size);
    }
}

TEST(GuiInterfaceToolBar, GivesImagesToItsCommands)
{
    const struct {
        const char* why;
        UINT nResourceID;
        BOOL bDone;
        int nImages; // added to the list
        UINT nCommand;
        int nImage; // of the command, from the first image added; -1: none
    } cases[] = {
        { "first item", 100, TRUE, 2, 100, 0 },
        { "the separator takes no image", 100, TRUE, 2, 101, 1 },
        { "it is no command", 100, TRUE, 2, 0, -1 },
        { "without a tool bar", 101, FALSE, 2, 100, -1 },
        { "more items claimed than there are", 102, TRUE, 2, 102, 0 },
        { "a header cut short", 103, FALSE, 2, 100, -1 },
        { "a strip narrower than an image", 104, FALSE, 0, 104, -1 },
        { "without a bitmap", 105, FALSE, 0, 105, -1 },
        { "no items, though one follows", 106, TRUE, 2, 106, -1 },
    };
    GetStockObject(BLACK_PEN); // stock objects are made once
    const std::size_t nBefore = win32::object_count();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        GuiInterface store;
        EXPECT_EQ(store.AddImagesFromToolbar(c.nResourceID, RGB(0, 255, 0)), c.bDone);
        EXPECT_EQ(store.m_ilCommands.GetImageCount(), c.nImages);
        EXPECT_EQ(store.ImageForID(c.nCommand), c.nImage);
    }
    EXPECT_EQ(win32::object_count(), nBefore);
}

TEST(GuiInterfaceToolBar, CountsOnFromTheImagesThatAreThere)
{
    GuiInterface store;
    const HICON hIcon = IconOf("RR/RR");
    store.AddIcon(101, hIcon);
    DestroyIcon(hIcon);
    EXPECT_TRUE(store.AddImagesFromToolbar(100, RGB(0, 255, 0)));
    EXPECT_EQ(store.ImageForID(100), 1);
    EXPECT_EQ(store.ImageForID(101), 2);
    EXPECT_EQ(ImageOf(store, 100), "WRRRRRRRRRRRRRRRRR") << "its left column is transparent";
    EXPECT_EQ(ImageOf(store, 101), "WBBBBBBBBBBBBBBBBB");
}
