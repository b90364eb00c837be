#include <climits>

#include <gtest/gtest.h>

#include "look/GuiInterface.h"
#include "look/GuiManager.h"
#include "platform/win32/gdi/objects.h"
#include "tests/support/Canvas.h"
#include "tests/support/Picture.h"

using PelkGUI::GuiInterface;
using PelkGUI::GuiManager;
using test::Canvas;

namespace {

HBITMAP BitmapOf(const CDC* pDC)
{
    return static_cast<HBITMAP>(GetCurrentObject(pDC->m_hDC, OBJ_BITMAP));
}

CSize SizeOf(const CDC* pDC)
{
    BITMAP info{};
    GetObjectA(BitmapOf(pDC), sizeof(info), &info);
    return { info.bmWidth, info.bmHeight };
}

CDC* BufferOf(GuiInterface& store, CDC& dc, CSize size)
{
    return store.GetBuffer(dc, size);
}

} // namespace

TEST(GuiInterfaceBuffer, GrowsAndNeverShrinks)
{
    GuiInterface store;
    Canvas screen(4, 4);
    EXPECT_EQ(BufferOf(store, screen, CSize(0, 0))->GetSafeHdc(), nullptr) << "nothing was asked for yet";
    CDC* const pBuffer = BufferOf(store, screen, CSize(100, 50));
    EXPECT_EQ(SizeOf(pBuffer), CSize(100, 50));
    pBuffer->SetPixel(99, 49, RGB(255, 0, 0));
    pBuffer->IntersectClipRect(0, 0, 1, 1);

    EXPECT_EQ(BufferOf(store, screen, CSize(100, 50)), pBuffer);
    EXPECT_EQ(pBuffer->GetPixel(99, 49), RGB(255, 0, 0)) << "kept, and no longer clipped";
    pBuffer->IntersectClipRect(0, 0, 1, 1);
    EXPECT_EQ(BufferOf(store, screen, CSize(80, 60)), pBuffer);
    EXPECT_EQ(SizeOf(pBuffer), CSize(100, 60));
    EXPECT_EQ(pBuffer->GetPixel(99, 49), 0U) << "grown: black, and not clipped";

    pBuffer->SetPixel(7, 7, RGB(0, 0, 255));
    for (const CSize size : { CSize(90, 40), CSize(-5, 0), CSize(1000000, 1000000) }) // there is no such memory
        EXPECT_EQ(BufferOf(store, screen, size), pBuffer);
    EXPECT_EQ(SizeOf(pBuffer), CSize(100, 60));
    EXPECT_EQ(pBuffer->GetPixel(7, 7), RGB(0, 0, 255)) << "no new bitmap";
    BufferOf(store, screen, CSize(101, 10));
    EXPECT_EQ(SizeOf(pBuffer), CSize(101, 60));
    store.Clear();
    EXPECT_EQ(SizeOf(BufferOf(store, screen, CSize(5, 6))), CSize(5, 6));
}

TEST(GuiInterfaceBuffer, HasTheLayoutOfWhoAsks)
{
    GuiInterface store;
    Canvas mirrored(4, 4, LAYOUT_RTL);
    Canvas straight(4, 4);
    EXPECT_EQ(BufferOf(store, mirrored, CSize(9, 9))->GetLayout(), LAYOUT_RTL);
    EXPECT_EQ(BufferOf(store, straight, CSize(3, 3))->GetLayout(), 0U);
    EXPECT_EQ(BufferOf(store, mirrored, CSize(3, 3))->GetLayout(), LAYOUT_RTL);
}

TEST(GuiInterfaceWatermark, CoversTheRectangleWithTiles)
{
    constexpr char kNothing[] = "WWWWWWW/WWWWWWW/WWWWWWW/WWWWWWW";
    const struct {
        const char* why;
        CRect rc;
        CSize offset;
        const char* pszRows; // a picture of 7 by 4; the tile is "RG/BB"
    } cases[] = {
        { "tiles at the edge are drawn whole", { 1, 1, 4, 3 }, { 0, 0 }, "WWWWWWW/WRGRGWW/WBBBBWW/WWWWWWW" },
        { "the offset moves the origin left", { 1, 1, 4, 2 }, { 1, 0 }, "WWWWWWW/RGRGWWW/BBBBWWW/WWWWWWW" },
        { "a tile that touches the left edge is drawn", { 2, 0, 3, 1 }, { 2, 0 }, "RGRGWWW/BBBBWWW/WWWWWWW/WWWWWWW" },
        { "and one that touches the top", { 0, 2, 1, 3 }, { 0, 2 }, "RGWWWWW/BBWWWWW/RGWWWWW/BBWWWWW" },
        { "tiles before them are not", { 4, 2, 6, 3 }, { 101, 100 }, "WWWRGRG/WWWBBBB/WWWRGRG/WWWBBBB" },
        { "a negative offset moves to the right", { 0, 0, 7, 1 }, { -3, 0 }, "WWWRGRG/WWWBBBB/WWWWWWW/WWWWWWW" },
        { "nothing in one that lies the wrong way round", { 5, 3, 1, 1 }, { 0, 0 }, kNothing },
        { "as large as numbers go",
          { INT_MIN, INT_MIN, INT_MAX, INT_MAX },
          { 0, 0 },
          "RGRGRGR/BBBBBBB/RGRGRGR/BBBBBBB" },
        { "offsets as large as numbers go", { 0, 0, 3, 1 }, { INT_MIN, INT_MAX }, kNothing },
        { "offsets to the other end", { 0, 0, 1, 2 }, { INT_MAX, INT_MIN }, kNothing },
        { "from the far left", { 0, 0, 1, 1 }, { INT_MAX, 0 }, "GWWWWWW/BWWWWWW/WWWWWWW/WWWWWWW" },
    };
    GuiManager& manager = PelkGUI::GetGuiManager();
    manager.InitManager();
    const GuiInterface store;
    CBitmap bmpTile;
    bmpTile.Attach(Canvas(2, 2).Finish("RG/BB"));
    for (const BOOL bRightToLeft : { TRUE, FALSE }) { // of the skin; this is about the context's
        manager.m_bRightToLeft = bRightToLeft;
        for (const auto& c : cases) {
            SCOPED_TRACE(c.why);
            Canvas canvas(7, 4);
            CRect rc = c.rc;
            EXPECT_TRUE(store.DrawWatermark(&canvas, &rc, &bmpTile, c.offset.cx, c.offset.cy));
            EXPECT_EQ(canvas.Letters(), c.pszRows);
        }
        CRect rc(0, 0, 3, 1);
        Canvas mirrored(7, 2, LAYOUT_RTL);
        EXPECT_TRUE(store.DrawWatermark(&mirrored, &rc, &bmpTile, 0, 0));
        EXPECT_EQ(mirrored.Letters(), "WWWRGRG/WWWBBBB") << "places are mirrored, pictures are not";
    }
    Canvas clipped(7, 4);
    clipped.IntersectClipRect(2, 1, 6, 3);
    CRect rc(0, 0, 7, 4);
    EXPECT_TRUE(store.DrawWatermark(&clipped, &rc, &bmpTile, 1, 0));
    EXPECT_EQ(clipped.Letters(), "WWWWWWW/WWBBBBW/WWGRGRW/WWWWWWW");
}

TEST(GuiInterfaceWatermark, RefusesWhatIsNone)
{
    const GuiInterface store;
    Canvas canvas(2, 1);
    CRect rc(0, 0, 2, 1);
    CBitmap bmp;
    EXPECT_FALSE(store.DrawWatermark(&canvas, &rc, &bmp, 0, 0));
    EXPECT_FALSE(store.DrawWatermark(&canvas, &rc, nullptr, 0, 0));
    Canvas other(2, 1);
    EXPECT_FALSE(store.DrawWatermark(&canvas, &rc, &other.Bitmap(), 0, 0)) << "selected elsewhere";
    bmp.Attach(Canvas(2, 1).Finish("RG"));
    EXPECT_FALSE(store.DrawWatermark(nullptr, &rc, &bmp, 0, 0));
    EXPECT_FALSE(store.DrawWatermark(&canvas, nullptr, &bmp, 0, 0));
    DeleteObject(bmp.m_hObject);
    EXPECT_FALSE(store.DrawWatermark(&canvas, &rc, &bmp, 0, 0)) << "its handle is gone";
    EXPECT_EQ(canvas.Letters(), "WW");
}

TEST(GuiInterfaceFonts, AreKeptByName)
{
    GuiInterface store;
    auto* const pFirst = new CFont;
    pFirst->CreateFont(20, 0, 0, 0, 700, 0, 0, 0, 1, 0, 0, 0, 0, "Sans");
    const HGDIOBJ hFirst = pFirst->m_hObject;
    store.AddFonts("Caption", pFirst);
    store.AddFonts("Caption", pFirst);
    EXPECT_EQ(store.GetFont("Caption"), pFirst);
    EXPECT_NE(store.GetFont("caption"), pFirst);
    auto* const pSecond = new CFont;
    store.AddFonts("Caption", pSecond);
    EXPECT_EQ(GetObjectType(hFirst), 0U) << "the first is gone";
    EXPECT_EQ(store.GetFont("Caption"), pSecond) << "even without a handle";
    store.AddFonts("Caption", nullptr);
    EXPECT_NE(store.GetFont("Caption")->GetSafeHandle(), nullptr) << "a default one";
}

TEST(GuiInterfaceFonts, HaveADefault)
{
    GuiInterface store;
    GuiManager& manager = PelkGUI::GetGuiManager();
    CFont* const pFont = store.GetFont("unknown");
    LOGFONTA description{};
    ASSERT_EQ(pFont->GetLogFont(&description), static_cast<int>(sizeof(description)));
    EXPECT_TRUE(description.lfHeight == -11 && description.lfWidth == 0 && description.lfWeight == 400);
    EXPECT_EQ(description.lfCharSet, 1);
    EXPECT_FALSE(description.lfItalic || description.lfUnderline || description.lfStrikeOut);
    EXPECT_STREQ(description.lfFaceName, "Tahoma");

    manager.m_nDefaultFontSize = 20;
    EXPECT_EQ(store.GetFont("unknown"), pFont) << "bound for good";
    manager.m_strDefaultFontFace = "a face of more than thirty-one bytes";
    store.GetFont("other")->GetLogFont(&description);
    EXPECT_EQ(description.lfHeight, -20);
    EXPECT_STREQ(description.lfFaceName, "a face of more than thirty-one ");
    manager.m_nDefaultFontSize = 11;
    manager.m_strDefaultFontFace = "Tahoma";
}

TEST(GuiInterfaceClear, GivesEverythingBack)
{
    GuiInterface store;
    Canvas screen(4, 4);
    const HICON hIcon = test::IconOf(screen.Bitmap(), screen.Bitmap());
    GetStockObject(BLACK_PEN); // stock objects are made once
    const std::size_t nBefore = win32::object_count();
    for (int i = 0; i < 3; i++) {
        BufferOf(store, screen, CSize(10 * i, 10));
        store.GetFont("one");
        store.GetFont("two");
        store.AddIcon(5, hIcon);
        store.CreateArrImages();
        store.CreateListImages();
        store.NameCommand(7, "x");
        CRect rc(0, 0, 4, 4);
        CBitmap bmpTile;
        bmpTile.Attach(Canvas(2, 2).Finish("RG/BB"));
        store.DrawWatermark(&screen, &rc, &bmpTile, 0, 0);
        EXPECT_GT(win32::object_count(), nBefore);
        store.Clear();
    }
    EXPECT_EQ(win32::object_count(), nBefore);
    EXPECT_EQ(store.ImageForID(5), -1);
    EXPECT_EQ(store.NameToID("x"), 0U);
    for (const CImageList* pList : { &store.m_ilCommands, &store.m_ilArrows, &store.m_ilLists })
        EXPECT_EQ(pList->GetSafeHandle(), nullptr);
    store.Clear();
    DestroyIcon(hIcon);
}
