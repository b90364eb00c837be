#include "tests/support/Picture.h"

#include "platform/win32/gdi/draw_target.h"

#include <gtest/gtest.h>

#include <winbase.h>

using test::Picture;
using test::Selected;

TEST(GdiObjects, RefuseToBeSelectedTwice)
{
    const Picture picture(4, 4);
    const HDC other = CreateCompatibleDC(nullptr);
    EXPECT_EQ(SelectObject(other, picture.bitmap()), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_BUSY);
    SaveDC(picture);
    EXPECT_EQ(SelectObject(picture, picture.bitmap()), picture.bitmap());
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

TEST(GdiObjects, AreKnownByTheirHandlesOnly)
{
    const HDC dc = CreateCompatibleDC(nullptr);
    const HBRUSH brush = CreateSolidBrush(RGB(9, 9, 9));
    Rectangle(dc, 0, 0, 1, 1); // it is remembered
    EXPECT_TRUE(DeleteDC(dc));
    EXPECT_FALSE(Rectangle(dc, 0, 0, 5, 5));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    EXPECT_EQ(GetObjectType(dc), 0U);
    EXPECT_FALSE(BitBlt(reinterpret_cast<HDC>(brush), 0, 0, 1, 1, nullptr, 0, 0, SRCCOPY));
    EXPECT_EQ(SelectObject(nullptr, brush), nullptr);
    EXPECT_TRUE(DeleteObject(brush));
    EXPECT_EQ(CreateCompatibleBitmap(nullptr, 4, 4), nullptr);

    const HGDIOBJ white = GetStockObject(WHITE_BRUSH);
    EXPECT_TRUE(DeleteObject(white));
    EXPECT_EQ(GetObjectType(white), static_cast<DWORD>(OBJ_BRUSH)) << "it stays";
    EXPECT_EQ(GetStockObject(-1), nullptr);
    EXPECT_EQ(GetStockObject(1000), nullptr);
}

TEST(GdiObjects, DescribeThemselves)
{
    struct Case {
        UINT depth;
        LONG row_bytes;
    };
    for (const Case& c : { Case{ 32, 68 }, Case{ 1, 4 } }) {
        const Picture picture(17, 3, c.depth);
        BITMAP bitmap{};
        EXPECT_EQ(GetObjectA(picture.bitmap(), 0, nullptr), static_cast<int>(sizeof bitmap));
        EXPECT_EQ(GetObjectA(picture.bitmap(), sizeof bitmap, &bitmap), static_cast<int>(sizeof bitmap));
        EXPECT_TRUE(bitmap.bmWidth == 17 && bitmap.bmHeight == 3 && bitmap.bmBitsPixel == c.depth);
        EXPECT_EQ(bitmap.bmWidthBytes, c.row_bytes);
        LONG type_and_width[2]{ -1, -1 };
        EXPECT_EQ(GetObjectA(picture.bitmap(), sizeof type_and_width, type_and_width),
                  static_cast<int>(sizeof type_and_width));
        EXPECT_EQ(type_and_width[1], 17) << "a short buffer takes the beginning";
    }
}

TEST(GdiObjects, BoundTheSizeOfBitmaps)
{
    struct Case {
        const char* why;
        int width, height;
        BOOL exists;
    };
    const Case cases[] = {
        { "nothing: one 1-bit pixel", 0, 7, TRUE },
        { "negative", -1, 5, FALSE },
        { "a product beyond 32 bits", 65536, 65537, FALSE },
        { "as large as numbers go", 0x7FFFFFFF, 0x7FFFFFFF, FALSE },
        { "more than the bound", (64 << 20) + 1, 1, FALSE },
    };
    const Picture picture(1, 1);
    for (const Case& c : cases)
        EXPECT_EQ(DeleteObject(CreateCompatibleBitmap(picture, c.width, c.height)), c.exists) << c.why;
}

TEST(GdiContext, HandsDepthAndLayoutOn)
{
    const Picture picture(4, 1);
    EXPECT_EQ(SetLayout(picture, LAYOUT_RTL), 0U);
    const HDC compatible = CreateCompatibleDC(picture);
    EXPECT_EQ(GetLayout(compatible), LAYOUT_RTL);
    EXPECT_EQ(SetLayout(compatible, 0x100), GDI_ERROR);
    EXPECT_EQ(GetDeviceCaps(compatible, BITSPIXEL), 1) << "before a bitmap is selected";
    const HBITMAP mask = CreateCompatibleBitmap(compatible, 8, 8);
    BITMAP description{};
    GetObjectA(mask, sizeof description, &description);
    EXPECT_EQ(description.bmBitsPixel, 1);
    DeleteObject(mask);
    DeleteDC(compatible);
    EXPECT_EQ(GetLayout(compatible), GDI_ERROR);
}

TEST(GdiContext, RestoresWhatItSaved)
{
    const Picture picture(4, 4);
    EXPECT_EQ(SetTextColor(picture, RGB(1, 1, 1)), 0U);
    EXPECT_EQ(SaveDC(picture), 1);
    SetTextColor(picture, RGB(2, 2, 2));
    IntersectClipRect(picture, 1, 1, 2, 2);
    EXPECT_EQ(SaveDC(picture), 2);
    SetROP2(picture, R2_NOT);
    EXPECT_FALSE(RestoreDC(picture, 3));
    EXPECT_FALSE(RestoreDC(picture, -3));
    EXPECT_TRUE(RestoreDC(picture, 1));
    EXPECT_EQ(GetTextColor(picture), RGB(1, 1, 1));
    EXPECT_EQ(GetROP2(picture), R2_COPYPEN);
    RECT box{};
    EXPECT_EQ(GetClipBox(picture, &box), SIMPLEREGION);
    EXPECT_EQ(box, (RECT{ 0, 0, 4, 4 }));
    EXPECT_FALSE(RestoreDC(picture, -1));
}

namespace {

// The pixels of a window, remembering what was reported as changed.
class Surface : public win32::DrawTarget {
public:
    explicit Surface(void* pixels) : pixels_(static_cast<std::uint32_t*>(pixels)) {}
    win32::PixelView pixels() override { return { pixels_, 6, 4, 6 }; }
    void damaged(const RECT& rect) override { damage.push_back(rect); }

    std::vector<RECT> damage;

private:
    std::uint32_t* pixels_;
};

} // namespace

TEST(GdiWindowContext, DrawsAtItsOriginWithinWhatIsVisible)
{
    BITMAPINFO info{};
    info.bmiHeader = { sizeof(BITMAPINFOHEADER), 6, -4, 1, 32, BI_RGB, 0, 0, 0, 0, 0 };
    void* pixels = nullptr;
    const Picture screen(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &pixels, nullptr, 0));
    Surface surface(pixels);
    const HDC dc = win32::open_window_dc(surface, { 2, 1 }, { 4, 3 }, win32::Region(RECT{ 1, 1, 5, 3 }));
    const RECT everything{ -100, -100, 100, 100 };
    {
        const Selected red(dc, CreateSolidBrush(RGB(255, 0, 0)));
        FillRect(dc, &everything, static_cast<HBRUSH>(GetCurrentObject(dc, OBJ_BRUSH)));
    }
    EXPECT_EQ(SetPixel(dc, 0, 0, RGB(0, 0, 255)), RGB(0, 0, 255));
    EXPECT_EQ(SetPixel(dc, 3, 0, RGB(0, 0, 255)), CLR_INVALID) << "outside the visible region";
    EXPECT_EQ(screen.Letters(), "....../.RBRR./.RRRR./......");
    IntersectClipRect(dc, 1, 0, 2, 9);
    BitBlt(dc, 0, 0, 4, 3, dc, -1, 0, SRCCOPY);
    EXPECT_EQ(screen.Letters(), "....../.RBBR./.RRRR./......");
    EXPECT_EQ(surface.damage, (std::vector<RECT>{ { 1, 1, 5, 3 }, { 2, 1, 3, 2 }, { 3, 1, 4, 3 } }));
    EXPECT_FALSE(DeleteDC(dc)) << "it goes back to whoever opened it";
    EXPECT_TRUE(win32::close_window_dc(dc));
    EXPECT_FALSE(win32::close_window_dc(dc));
}
