#include <string>

#include <gtest/gtest.h>

#include "look/GuiInterface.h"
#include "platform/win32/gdi/objects.h"
#include "tests/support/Canvas.h"

using PelkGUI::GuiInterface;
using test::Canvas;

namespace {

// An icon of 2 by 2 pixels: the letters, 'W' being what is below.
HICON IconOf(const char* pszRows)
{
    CBitmap bmpImage;
    bmpImage.Attach(Canvas(2, 2).Finish(pszRows));
    CBitmap bmpMask;
    bmpMask.CreateBitmap(2, 2, 1, 1, nullptr);
    const ICONINFO info{ TRUE, 0, 0, bmpMask, bmpImage };
    return CreateIconIndirect(&info);
}

// The command's image, drawn over white: the letters at the corners and in the middle of 18 by 18 pixels.
std::string ImageOf(const GuiInterface& store, UINT nID)
{
    Canvas canvas(18, 18);
    const HICON hIcon = store.ExtractIconA(nID);
    EXPECT_TRUE(DrawIconEx(canvas.m_hDC, 0, 0, hIcon, 0, 0, 0, nullptr, DI_NORMAL));
    EXPECT_TRUE(DestroyIcon(hIcon));
    const std::string strRows = canvas.Letters();
    constexpr int kRow = 19;
    return { strRows[0], strRows[17], strRows[9 * kRow + 9], strRows[17 * kRow], strRows[17 * kRow + 17] };
}

CSize ImageSize(const CImageList& list)
{
    int cx = 0;
    int cy = 0;
    ImageList_GetIconSize(list.GetSafeHandle(), &cx, &cy);
    return { cx, cy };
}

struct NameCase {
    const char* pszName;
    UINT nID;
};

constexpr NameCase kNameCases[] = {
    { "x", 8 },     { "X", 0 },  { "y", 9 },  { "1234", 1234 }, { " \t42 and more", 42 },
    { "12", 77 },   { "", 0 },   { "-", 0 },  { "z12", 0 },     { "4294967295", 4294967295U },
    { nullptr, 0 }, { "x ", 0 }, { "08", 8 }, { "0x10", 0 },    { "\xB0\xB4", 11 },
};

} // namespace

TEST(GuiInterfaceCommands, HaveNamesOrNumbers)
{
    GuiInterface store;
    store.NameCommand(7, "x");
    store.NameCommand(8, "x");
    store.NameCommand(9, "y");
    store.NameCommand(77, "12");
    store.NameCommand(11, "\xB0\xB4");
    for (const NameCase& c : kNameCases) {
        SCOPED_TRACE(c.pszName ? c.pszName : "null");
        EXPECT_EQ(store.NameToID(c.pszName), c.nID);
    }
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
    EXPECT_EQ(store.ImageForID(9), 0);
    store.CopyIcon(6, 9);
    EXPECT_EQ(store.ImageForID(9), 0) << "6 has no image to share";
    EXPECT_EQ(store.ImageForID(6), -1);
    store.AddIcon(5, hIcon);
    EXPECT_EQ(store.ImageForID(5), 1);
    EXPECT_EQ(store.ImageForID(9), 0);
    EXPECT_TRUE(DestroyIcon(hIcon)) << "the caller kept it";
    EXPECT_EQ(ImageOf(store, 9), "RGRBR");

    EXPECT_EQ(store.ExtractIconA(6), nullptr);
    store.AddIcon(5, nullptr);
    EXPECT_EQ(store.ImageForID(5), -1);
    EXPECT_EQ(store.ExtractIconA(5), nullptr);
    store.CopyIcon(5, 9);
    EXPECT_EQ(store.ImageForID(9), -1) << "no image is shared as well";
}

TEST(GuiInterfaceCommands, HaveListsThatAreMadeOnce)
{
    GuiInterface store;
    EXPECT_TRUE(store.ConfirmImageList());
    EXPECT_TRUE(store.CreateArrImages());
    EXPECT_TRUE(store.CreateListImages());
    EXPECT_EQ(ImageSize(store.m_ilCommands), CSize(18, 18));
    EXPECT_EQ(ImageSize(store.m_ilArrows), CSize(9, 6));
    EXPECT_EQ(ImageSize(store.m_ilLists), CSize(16, 16));
    const HIMAGELIST hCommands = store.m_ilCommands.GetSafeHandle();
    EXPECT_TRUE(store.ConfirmImageList());
    EXPECT_EQ(store.m_ilCommands.GetSafeHandle(), hCommands);
}

namespace {

struct ToolBarCase {
    const char* why;
    UINT nResourceID;
    BOOL bDone;
    int nImages; // added to the list
    UINT nCommand;
    int nImage; // of the command, from the first image added; -1: none
};

constexpr ToolBarCase kToolBarCases[] = {
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

} // namespace

TEST(GuiInterfaceToolBar, GivesImagesToItsCommands)
{
    GetStockObject(BLACK_PEN); // stock objects are made once
    const std::size_t nBefore = win32::object_count();
    for (const ToolBarCase& c : kToolBarCases) {
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
    EXPECT_EQ(ImageOf(store, 100), "WRRWR") << "its left column is transparent";
    EXPECT_EQ(ImageOf(store, 101), "WBBWB");
}
