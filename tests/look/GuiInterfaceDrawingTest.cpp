#include <climits>
#include <iterator>

#include <gtest/gtest.h>

#include "look/GuiInterface.h"
#include "look/GuiManager.h"
#include "platform/win32/gdi/objects.h"
#include "tests/support/Canvas.h"

using PelkGUI::GuiInterface;
using test::Canvas;

namespace {

HGDIOBJ BitmapOf(const CDC* pDC)
{
    return GetCurrentObject(pDC->m_hDC, OBJ_BITMAP);
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

    const HGDIOBJ hBitmap = BitmapOf(pBuffer);
    BufferOf(store, screen, CSize(90, 40));
    BufferOf(store, screen, CSize(-5, 0));
    EXPECT_EQ(BitmapOf(pBuffer), hBitmap) << "no new bitmap";

    pBuffer->SetPixel(7, 7, RGB(0, 0, 255));
    EXPECT_EQ(BufferOf(store, screen, CSize(1000000, 1000000)), pBuffer) << "there is no such memory";
    EXPECT_EQ(SizeOf(pBuffer), CSize(100, 60));
    EXPECT_EQ(pBuffer->GetPixel(7, 7), RGB(0, 0, 255));
    BufferOf(store, screen, CSize(101, 10));
    EXPECT_EQ(SizeOf(pBuffer), CSize(101, 60));
}

TEST(GuiInterfaceBuffer, IsMadeAnewAfterClear)
{
    GuiInterface store;
    Canvas screen(4, 4, LAYOUT_RTL);
    EXPECT_EQ(BufferOf(store, screen, CSize(0, 0))->GetSafeHdc(), nullptr) << "nothing was asked for yet";
    EXPECT_EQ(BufferOf(store, screen, CSize(9, 9))->GetLayout(), LAYOUT_RTL);
    Canvas other(4, 4);
    EXPECT_EQ(BufferOf(store, other, CSize(3, 3))->GetLayout(), 0U) << "of who asks";
    EXPECT_EQ(BufferOf(store, screen, CSize(3, 3))->GetLayout(), LAYOUT_RTL);
    store.Clear();
    screen.SetLayout(0);
    CDC* const pBuffer = BufferOf(store, screen, CSize(5, 6));
    EXPECT_EQ(SizeOf(pBuffer), CSize(5, 6));
    EXPECT_EQ(pBuffer->GetLayout(), 0U);
}

namespace {

struct TileCase {
    const char* why;
    CRect rc;
    CSize offset;
    const char* pszRows; // a picture of 7 by 4; the tile is "RG/BB"
};

const TileCase kTileCases[] = {
    { "tiles at the edge are drawn whole", CRect(1, 1, 4, 3), CSize(0, 0), "WWWWWWW/WRGRGWW/WBBBBWW/WWWWWWW" },
    { "the offset moves the origin left", CRect(1, 1, 4, 2), CSize(1, 0), "WWWWWWW/RGRGWWW/BBBBWWW/WWWWWWW" },
    { "and up", CRect(2, 1, 3, 2), CSize(0, 1), "WWRGWWW/WWBBWWW/WWWWWWW/WWWWWWW" },
    { "a tile that touches the left edge is drawn", CRect(2, 0, 3, 1), CSize(2, 0), "RGRGWWW/BBBBWWW/WWWWWWW/WWWWWWW" },
    { "and one that touches the top", CRect(0, 2, 1, 3), CSize(0, 2), "RGWWWWW/BBWWWWW/RGWWWWW/BBWWWWW" },
    { "tiles before them are not", CRect(4, 2, 6, 3), CSize(101, 100), "WWWRGRG/WWWBBBB/WWWRGRG/WWWBBBB" },
    { "a negative offset moves to the right", CRect(0, 0, 7, 1), CSize(-3, 0), "WWWRGRG/WWWBBBB/WWWWWWW/WWWWWWW" },
    { "nothing in an empty rectangle", CRect(3, 0, 3, 4), CSize(0, 0), "WWWWWWW/WWWWWWW/WWWWWWW/WWWWWWW" },
    { "nothing in one that lies the wrong way round", CRect(5, 3, 1, 1), CSize(0, 0),
      "WWWWWWW/WWWWWWW/WWWWWWW/WWWWWWW" },
    { "a rectangle as large as numbers go", CRect(INT_MIN, INT_MIN, INT_MAX, INT_MAX), CSize(0, 0),
      "RGRGRGR/BBBBBBB/RGRGRGR/BBBBBBB" },
    { "offsets as large as numbers go", CRect(0, 0, 3, 1), CSize(INT_MIN, INT_MAX), "WWWWWWW/WWWWWWW/WWWWWWW/WWWWWWW" },
    { "offsets to the other end", CRect(0, 0, 1, 2), CSize(INT_MAX, INT_MIN), "WWWWWWW/WWWWWWW/WWWWWWW/WWWWWWW" },
    { "from the far left", CRect(0, 0, 1, 1), CSize(INT_MAX, 0), "GWWWWWW/BWWWWWW/WWWWWWW/WWWWWWW" },
};

} // namespace

TEST(GuiInterfaceWatermark, CoversTheRectangleWithTiles)
{
    const GuiInterface store;
    CBitmap bmpTile;
    bmpTile.Attach(Canvas(2, 2).Finish("RG/BB"));
    for (const TileCase& c : kTileCases) {
        SCOPED_TRACE(c.why);
        Canvas canvas(7, 4);
        CRect rc = c.rc;
        EXPECT_TRUE(store.DrawWatermark(&canvas, &rc, &bmpTile, c.offset.cx, c.offset.cy));
        EXPECT_EQ(canvas.Letters(), c.pszRows);
    }
    Canvas clipped(7, 4);
    clipped.IntersectClipRect(2, 1, 6, 3);
    CRect rc(0, 0, 7, 4);
    EXPECT_TRUE(store.DrawWatermark(&clipped, &rc, &bmpTile, 1, 0));
    EXPECT_EQ(clipped.Letters(), "WWWWWWW/WWBBBBW/WWGRGRW/WWWWWWW");
}

TEST(GuiInterfaceWatermark, StaysUnmirroredFromRightToLeft)
{
    const GuiInterface store;
    PelkGUI::GuiManager& manager = PelkGUI::GetGuiManager();
    manager.InitManager();
    manager.m_bRightToLeft = TRUE;
    CBitmap bmpTile;
    bmpTile.Attach(Canvas(2, 1).Finish("RG"));
    CRect rc(0, 0, 3, 1);
    Canvas mirrored(7, 1, LAYOUT_RTL);
    EXPECT_TRUE(store.DrawWatermark(&mirrored, &rc, &bmpTile, 0, 0));
    EXPECT_EQ(mirrored.Letters(), "WWWRGRG") << "places are mirrored, pictures are not";
    Canvas straight(7, 1);
    EXPECT_TRUE(store.DrawWatermark(&straight, &rc, &bmpTile, 0, 0));
    EXPECT_EQ(straight.Letters(), "RGRGWWW");
    manager.m_bRightToLeft = FALSE;
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
    EXPECT_EQ(canvas.Letters(), "WW");
    DeleteObject(bmp.m_hObject);
    EXPECT_FALSE(store.DrawWatermark(&canvas, &rc, &bmp, 0, 0)) << "its handle is gone";
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
    EXPECT_NE(store.GetFont("Caption"), nullptr);
}

TEST(GuiInterfaceFonts, HaveADefault)
{
    GuiInterface store;
    PelkGUI::GuiManager& manager = PelkGUI::GetGuiManager();
    CFont* const pFont = store.GetFont("unknown");
    LOGFONTA description{};
    ASSERT_EQ(pFont->GetLogFont(&description), static_cast<int>(sizeof(description)));
    EXPECT_EQ(description.lfHeight, -11);
    EXPECT_EQ(description.lfWidth, 0);
    EXPECT_EQ(description.lfWeight, 400);
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
    const HBITMAP hIcon = Canvas(18, 18).Finish("R");
    const ICONINFO info{ TRUE, 0, 0, hIcon, hIcon };
    const HICON icon = CreateIconIndirect(&info);
    GetStockObject(BLACK_PEN); // stock objects are made once
    const std::size_t nBefore = win32::object_count();
    for (int i = 0; i < 3; i++) {
        BufferOf(store, screen, CSize(10 * i, 10));
        store.GetFont("one");
        store.GetFont("two");
        store.AddIcon(5, icon);
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
    EXPECT_EQ(store.GetColor("Tooltip.Warnings"), GetSysColor(COLOR_WINDOW));
    for (const CImageList* pList : { &store.m_ilCommands, &store.m_ilArrows, &store.m_ilLists })
        EXPECT_EQ(pList->GetSafeHandle(), nullptr);
    store.Clear();
    DestroyIcon(icon);
    DeleteObject(hIcon);
}
