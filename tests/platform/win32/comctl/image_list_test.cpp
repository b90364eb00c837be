#include <commctrl.h>
#include <windows.h>

#include <gtest/gtest.h>

#include <string>

namespace {

// A context with a white picture of its own.
class Canvas {
public:
    Canvas(int width, int height) : width_(width), dc_(CreateCompatibleDC(nullptr))
    {
        bitmap_ = CreateBitmap(width, height, 1, 32, nullptr);
        previous_ = SelectObject(dc_, bitmap_);
        PatBlt(dc_, 0, 0, width, height, WHITENESS);
    }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;
    ~Canvas()
    {
        SelectObject(dc_, previous_);
        DeleteDC(dc_);
        DeleteObject(bitmap_);
    }
    HDC dc() const { return dc_; }
    HBITMAP bitmap() const { return bitmap_; }

    // R, G, B, W for white, '?' for anything else.
    std::string Row(int y) const
    {
        std::string row;
        for (int x = 0; x < width_; x++) {
            const COLORREF colour = GetPixel(dc_, x, y);
            row += colour == RGB(255, 0, 0)       ? 'R'
                   : colour == RGB(0, 255, 0)     ? 'G'
                   : colour == RGB(0, 0, 255)     ? 'B'
                   : colour == RGB(255, 255, 255) ? 'W'
                                                  : '?';
        }
        return row;
    }
    void Set(const char* row)
    {
        for (int x = 0; row[x]; x++)
            SetPixel(dc_, x, 0, row[x] == 'R' ? RGB(255, 0, 0) : row[x] == 'G' ? RGB(0, 255, 0) : RGB(0, 0, 255));
    }

private:
    int width_;
    HDC dc_;
    HBITMAP bitmap_;
    HGDIOBJ previous_;
};

std::string Drawn(HIMAGELIST list, int index)
{
    const Canvas canvas(3, 1);
    EXPECT_TRUE(ImageList_Draw(list, index, canvas.dc(), 0, 0, ILD_NORMAL));
    return canvas.Row(0);
}

} // namespace

TEST(ImageList, CutsStripsByTheirMask)
{
    const HIMAGELIST list = ImageList_Create(3, 2, ILC_COLOR16 | ILC_MASK, 10, 4);
    Canvas strip(7, 1); // two pictures and a column too many
    strip.Set("RGBGGRB");
    EXPECT_EQ(ImageList_AddMasked(list, strip.bitmap(), RGB(0, 255, 0)), 0);
    EXPECT_EQ(ImageList_GetImageCount(list), 2);
    EXPECT_EQ(Drawn(list, 0), "RWB");
    EXPECT_EQ(Drawn(list, 1), "WWR");
    EXPECT_EQ(ImageList_AddMasked(list, strip.bitmap(), CLR_DEFAULT), 2);
    EXPECT_EQ(Drawn(list, 2), "WGB");
    const Canvas taller(3, 2);
    ImageList_Draw(list, 0, taller.dc(), 0, 0, ILD_TRANSPARENT);
    EXPECT_EQ(taller.Row(1), "WWW") << "the strip did not reach there";

    const Canvas narrow(2, 2);
    EXPECT_EQ(ImageList_AddMasked(list, narrow.bitmap(), 0), -1);
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
    Canvas picture(3, 1);
    picture.Set("RGB");
    EXPECT_EQ(ImageList_AddMasked(list, picture.bitmap(), RGB(0, 255, 0)), 0);
    const HICON icon = ImageList_GetIcon(list, 0, ILD_NORMAL);
    ASSERT_NE(icon, nullptr);
    EXPECT_EQ(ImageList_AddIcon(list, icon), 1);
    EXPECT_EQ(Drawn(list, 1), "RWB");
    EXPECT_EQ(ImageList_ReplaceIcon(list, 0, icon), 0);
    EXPECT_EQ(ImageList_ReplaceIcon(list, 5, icon), -1);
    EXPECT_EQ(ImageList_ReplaceIcon(list, -1, nullptr), -1);
    EXPECT_EQ(ImageList_GetImageCount(list), 2);
    EXPECT_EQ(ImageList_GetIcon(list, 2, ILD_NORMAL), nullptr);
    EXPECT_EQ(ImageList_GetIcon(list, -1, ILD_NORMAL), nullptr);
    EXPECT_TRUE(ImageList_Destroy(list));
    const Canvas target(3, 1);
    EXPECT_TRUE(DrawIconEx(target.dc(), 0, 0, icon, 0, 0, 0, nullptr, DI_NORMAL)) << "it outlives the list";
    EXPECT_EQ(target.Row(0), "RWB");
    EXPECT_TRUE(DestroyIcon(icon));

    const HIMAGELIST wide = ImageList_Create(6, 1, ILC_COLOR32 | ILC_MASK, 0, 0);
    const BYTE clear[2] = {};
    const HBITMAP mask = CreateBitmap(3, 1, 1, 1, clear);
    const ICONINFO info{ TRUE, 0, 0, mask, picture.bitmap() };
    const HICON small = CreateIconIndirect(&info);
    EXPECT_EQ(ImageList_AddIcon(wide, small), 0);
    const Canvas stretched(6, 1);
    ImageList_Draw(wide, 0, stretched.dc(), 0, 0, ILD_NORMAL);
    EXPECT_EQ(stretched.Row(0), "RRGGBB");
    DestroyIcon(small);
    DeleteObject(mask);
    ImageList_Destroy(wide);
}

TEST(ImageList, RefusesSizesAndFlagsThatAreNone)
{
    EXPECT_EQ(ImageList_Create(0, 18, ILC_COLOR16 | ILC_MASK, 1, 1), nullptr);
    EXPECT_EQ(ImageList_Create(18, -1, ILC_COLOR16 | ILC_MASK, 1, 1), nullptr);
    EXPECT_EQ(ImageList_Create(18, 100000, ILC_COLOR16 | ILC_MASK, 1, 1), nullptr);
    EXPECT_EQ(ImageList_Create(18, 18, ILC_COLOR16, 1, 1), nullptr);
    EXPECT_EQ(ImageList_Create(18, 18, 0x13 | ILC_MASK, 1, 1), nullptr);
}
