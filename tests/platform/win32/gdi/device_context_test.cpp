#include "tests/platform/win32/gdi/Pictures.h"

#include <gtest/gtest.h>

#include <winbase.h>

using test::Picture;
using test::Surface;

TEST(GdiObjects, RefusesWhatIsSelectedElsewhere)
{
    Picture picture(4, 4);
    const HDC other = CreateCompatibleDC(nullptr);
    EXPECT_EQ(SelectObject(other, picture.bitmap()), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_BUSY);
    EXPECT_EQ(SelectObject(picture.dc(), picture.bitmap()), picture.bitmap());
    EXPECT_FALSE(DeleteObject(picture.bitmap()));

    const HPEN pen = CreatePen(PS_SOLID, 1, RGB(1, 2, 3));
    const HGDIOBJ stock_pen = SelectObject(other, pen);
    SaveDC(other);
    SelectObject(other, stock_pen);
    EXPECT_FALSE(DeleteObject(pen)) << "the saved state holds it";
    EXPECT_TRUE(RestoreDC(other, -1));
    EXPECT_EQ(GetCurrentObject(other, OBJ_PEN), pen);
    EXPECT_TRUE(DeleteDC(other));
    EXPECT_TRUE(DeleteObject(pen));
    EXPECT_FALSE(DeleteObject(pen));
}

TEST(GdiObjects, RefusesDeadAndForeignHandles)
{
    const HDC dc = CreateCompatibleDC(nullptr);
    const HBRUSH brush = CreateSolidBrush(RGB(9, 9, 9));
    EXPECT_TRUE(DeleteDC(dc));
    EXPECT_FALSE(Rectangle(dc, 0, 0, 5, 5));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    EXPECT_EQ(GetObjectType(dc), 0U);
    EXPECT_EQ(GetObjectType(brush), static_cast<DWORD>(OBJ_BRUSH));
    EXPECT_FALSE(BitBlt(reinterpret_cast<HDC>(brush), 0, 0, 1, 1, nullptr, 0, 0, SRCCOPY));
    EXPECT_EQ(SelectObject(nullptr, brush), nullptr);
    EXPECT_TRUE(DeleteObject(brush));
    EXPECT_EQ(CreateCompatibleBitmap(nullptr, 4, 4), nullptr);
}

TEST(GdiObjects, KeepsStockObjects)
{
    const HGDIOBJ white = GetStockObject(WHITE_BRUSH);
    EXPECT_TRUE(DeleteObject(white));
    EXPECT_EQ(GetObjectType(white), static_cast<DWORD>(OBJ_BRUSH));
    EXPECT_EQ(GetStockObject(-1), nullptr);
    EXPECT_EQ(GetStockObject(1000), nullptr);
}

TEST(GdiObjects, DescribesThemselves)
{
    Picture picture(5, 3);
    BITMAP bitmap{};
    EXPECT_EQ(GetObjectA(picture.bitmap(), 0, nullptr), static_cast<int>(sizeof bitmap));
    EXPECT_EQ(GetObjectA(picture.bitmap(), sizeof bitmap, &bitmap), static_cast<int>(sizeof bitmap));
    EXPECT_EQ(bitmap.bmWidth, 5);
    EXPECT_EQ(bitmap.bmHeight, 3);
    EXPECT_EQ(bitmap.bmWidthBytes, 20);
    EXPECT_EQ(bitmap.bmBitsPixel, 32);

    const HBITMAP mask = CreateBitmap(17, 3, 1, 1, nullptr);
    EXPECT_EQ(GetObjectA(mask, sizeof bitmap, &bitmap), static_cast<int>(sizeof bitmap));
    EXPECT_EQ(bitmap.bmWidthBytes, 4);
    EXPECT_EQ(bitmap.bmBitsPixel, 1);
    LONG type_and_width[2]{ -1, -1 };
    EXPECT_EQ(GetObjectA(mask, sizeof type_and_width, type_and_width), static_cast<int>(sizeof type_and_width));
    EXPECT_EQ(type_and_width[1], 17) << "a short buffer takes the beginning";
    DeleteObject(mask);
}

struct SizeCase {
    const char* why;
    int width;
    int height;
    bool exists;
};

const SizeCase kSizeCases[] = {
    { "one pixel", 1, 1, true },
    { "nothing: one 1-bit pixel", 0, 7, true },
    { "negative", -1, 5, false },
    { "a product beyond 32 bits", 65536, 65537, false },
    { "as large as numbers go", 0x7FFFFFFF, 0x7FFFFFFF, false },
    { "more than the bound", (64 << 20) + 1, 1, false },
};

TEST(GdiObjects, BoundsTheSizeOfBitmaps)
{
    Picture picture(1, 1);
    for (const SizeCase& c : kSizeCases) {
        SCOPED_TRACE(c.why);
        const HBITMAP bitmap = CreateCompatibleBitmap(picture.dc(), c.width, c.height);
        EXPECT_EQ(bitmap != nullptr, c.exists);
        EXPECT_EQ(DeleteObject(bitmap), c.exists);
    }
}

TEST(GdiContext, GivesNewBitmapsTheDepthOfTheOldOnes)
{
    const HDC fresh = CreateCompatibleDC(nullptr);
    EXPECT_EQ(GetDeviceCaps(fresh, BITSPIXEL), 1);
    const HBITMAP mask = CreateCompatibleBitmap(fresh, 8, 8);
    BITMAP description{};
    GetObjectA(mask, sizeof description, &description);
    EXPECT_EQ(description.bmBitsPixel, 1);
    DeleteObject(mask);
    DeleteDC(fresh);
}

TEST(GdiContext, RestoresWhatItSaved)
{
    Picture picture(4, 4);
    EXPECT_EQ(SetTextColor(picture.dc(), RGB(1, 1, 1)), 0U);
    EXPECT_EQ(SaveDC(picture.dc()), 1);
    SetTextColor(picture.dc(), RGB(2, 2, 2));
    IntersectClipRect(picture.dc(), 1, 1, 2, 2);
    EXPECT_EQ(SaveDC(picture.dc()), 2);
    SetROP2(picture.dc(), R2_NOT);
    EXPECT_FALSE(RestoreDC(picture.dc(), 3));
    EXPECT_FALSE(RestoreDC(picture.dc(), -3));
    EXPECT_TRUE(RestoreDC(picture.dc(), 1));
    EXPECT_EQ(GetTextColor(picture.dc()), RGB(1, 1, 1));
    EXPECT_EQ(GetROP2(picture.dc()), R2_COPYPEN);
    RECT box{};
    EXPECT_EQ(GetClipBox(picture.dc(), &box), SIMPLEREGION);
    EXPECT_EQ(box, (RECT{ 0, 0, 4, 4 }));
    EXPECT_FALSE(RestoreDC(picture.dc(), -1));
}

TEST(GdiWindowContext, DrawsAtItsOriginWithinWhatIsVisible)
{
    Surface surface(6, 4);
    const HDC dc = win32::open_window_dc(surface, { 2, 1 }, { 4, 3 }, win32::Region(RECT{ 1, 1, 5, 3 }));
    const RECT everything{ -100, -100, 100, 100 };
    const HBRUSH red = CreateSolidBrush(RGB(255, 0, 0));
    FillRect(dc, &everything, red);
    EXPECT_EQ(SetPixel(dc, 0, 0, RGB(0, 0, 255)), RGB(0, 0, 255));
    EXPECT_EQ(SetPixel(dc, 3, 0, RGB(0, 0, 255)), CLR_INVALID) << "outside the visible region";
    EXPECT_EQ(surface.Letters(), "....../.RBRR./.RRRR./......");
    ASSERT_EQ(surface.damage.size(), 2U);
    EXPECT_EQ(surface.damage[0], (RECT{ 1, 1, 5, 3 }));
    EXPECT_EQ(surface.damage[1], (RECT{ 2, 1, 3, 2 }));
    EXPECT_FALSE(DeleteDC(dc)) << "it goes back to whoever opened it";
    EXPECT_TRUE(win32::close_window_dc(dc));
    EXPECT_FALSE(win32::close_window_dc(dc));
    EXPECT_TRUE(DeleteObject(red));
}
