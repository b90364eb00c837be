#include <algorithm>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "look/GuiManager.h"
#include "platform/win32/gdi/objects.h"
#include "tests/support/Canvas.h"
#include "xml/TextUtil.h"

using test::Canvas;

namespace {

using Pixels = std::vector<DWORD>; // with alpha, top row first

BITMAPINFO Description(CSize size)
{
    BITMAPINFO info{};
    info.bmiHeader = { sizeof(BITMAPINFOHEADER), size.cx, -size.cy, 1, 32, BI_RGB, 0, 0, 0, 0, 0 };
    return info;
}

HBITMAP BitmapOf(const Pixels& pixels, CSize size)
{
    const HBITMAP hBitmap = CreateBitmap(size.cx, size.cy, 1, 32, nullptr);
    const BITMAPINFO info = Description(size);
    EXPECT_EQ(SetDIBits(CClientDC(nullptr).m_hDC, hBitmap, 0, size.cy, pixels.data(), &info, DIB_RGB_COLORS), size.cy);
    return hBitmap;
}

Pixels PixelsOf(HBITMAP hBitmap, CSize size)
{
    Pixels pixels(static_cast<std::size_t>(size.cx * size.cy));
    BITMAPINFO info = Description(size);
    EXPECT_EQ(GetDIBits(CClientDC(nullptr).m_hDC, hBitmap, 0, size.cy, pixels.data(), &info, DIB_RGB_COLORS), size.cy);
    return pixels;
}

Pixels Mirrored(const Pixels& pixels, CSize size)
{
    Pixels result = pixels;
    for (int y = 0; y < size.cy; y++) {
        for (int x = 0; x < size.cx; x++)
            result[y * size.cx + x] = pixels[y * size.cx + size.cx - 1 - x];
    }
    return result;
}

Pixels RandomPixels(std::mt19937& random, CSize size, DWORD nMask)
{
    Pixels pixels(static_cast<std::size_t>(size.cx * size.cy));
    for (DWORD& pixel : pixels)
        pixel = static_cast<DWORD>(random()) & nMask;
    return pixels;
}

// The icon drawn over a pattern that shows what is transparent.
Pixels DrawnOver(HICON hIcon, CSize size, UINT nFlags)
{
    Canvas canvas(size.cx, size.cy);
    canvas.FillSolidRect(0, 0, size.cx, size.cy, RGB(10, 200, 90));
    EXPECT_TRUE(DrawIconEx(canvas.m_hDC, 0, 0, hIcon, 0, 0, 0, nullptr, nFlags));
    return PixelsOf(canvas.Bitmap(), size);
}

class Mirroring : public testing::Test {
protected:
    Mirroring()
    {
        PelkGUI::GetGuiManager().InitManager();
        GetStockObject(BLACK_PEN); // stock objects are made once
        DeleteDC(CreateCompatibleDC(nullptr));
        m_nBefore = win32::object_count();
    }
    ~Mirroring() override { EXPECT_EQ(win32::object_count(), m_nBefore) << "a leak"; }

    std::mt19937 random{ 20261124 };

private:
    std::size_t m_nBefore = 0;
};

constexpr CSize kSizes[] = { { 1, 1 }, { 2, 1 }, { 1, 5 }, { 3, 2 }, { 16, 16 }, { 31, 7 }, { 78, 30 } };

} // namespace

TEST_F(Mirroring, TurnsBitmapsLeftToRight)
{
    for (const CSize size : kSizes) {
        SCOPED_TRACE(size.cx);
        const Pixels pixels = RandomPixels(random, size, 0xFFFFFFFF);
        const HBITMAP hBitmap = BitmapOf(pixels, size);
        const HBITMAP hMirrored = CreateMirroredBitmap(hBitmap);
        EXPECT_EQ(PixelsOf(hMirrored, size), Mirrored(PixelsOf(hBitmap, size), size));
        EXPECT_TRUE(DeleteObject(hMirrored));
        EXPECT_TRUE(DeleteObject(hBitmap)) << "it is selected nowhere";
    }
}

TEST_F(Mirroring, GivesBitmapsTheScreensFormat)
{
    const BYTE bits[] = { 0xB0, 0, 0x40, 0 }; // 1011, 0100
    const HBITMAP hBitmap = CreateBitmap(4, 2, 1, 1, bits);
    const HBITMAP hMirrored = CreateMirroredBitmap(hBitmap);
    BITMAP info{};
    GetObjectA(hMirrored, sizeof(info), &info);
    EXPECT_EQ(info.bmBitsPixel, 32);
    Pixels pixels = PixelsOf(hMirrored, CSize(4, 2));
    constexpr DWORD W = 0xFFFFFF;
    EXPECT_EQ(pixels, (Pixels{ W, W, 0, W, 0, 0, W, 0 }));
    DeleteObject(hBitmap);
    DeleteObject(hMirrored);

    void* pBits = nullptr;
    BITMAPINFO section = Description(CSize(2, 2));
    section.bmiHeader.biHeight = 2; // bottom up
    const HBITMAP hSection = CreateDIBSection(nullptr, &section, DIB_RGB_COLORS, &pBits, nullptr, 0);
    const DWORD rows[] = { 1, 2, 3, 4 };
    std::copy(std::begin(rows), std::end(rows), static_cast<DWORD*>(pBits));
    const HBITMAP hMirroredSection = CreateMirroredBitmap(hSection);
    EXPECT_EQ(PixelsOf(hMirroredSection, CSize(2, 2)), (Pixels{ 4, 3, 2, 1 }));
    DeleteObject(hSection);
    DeleteObject(hMirroredSection);
}

TEST_F(Mirroring, RefusesWhatIsNoBitmap)
{
    EXPECT_EQ(CreateMirroredBitmap(nullptr), nullptr);
    EXPECT_EQ(CreateMirroredBitmap(static_cast<HBITMAP>(GetStockObject(BLACK_PEN))), nullptr);
    Canvas holder(3, 3);
    EXPECT_EQ(CreateMirroredBitmap(holder.Bitmap()), nullptr) << "selected elsewhere";
    const HBITMAP hGone = CreateBitmap(1, 1, 1, 32, nullptr);
    DeleteObject(hGone);
    EXPECT_EQ(CreateMirroredBitmap(hGone), nullptr);
}

TEST_F(Mirroring, LeavesPicturesAsTheyAreWithoutLayouts)
{
    PelkGUI::GetGuiManager().m_pfnSetLayout = nullptr;
    const CSize size(3, 2);
    const HBITMAP hBitmap = BitmapOf(RandomPixels(random, size, 0xFFFFFF), size);
    const HBITMAP hCopy = CreateMirroredBitmap(hBitmap);
    EXPECT_EQ(PixelsOf(hCopy, size), PixelsOf(hBitmap, size));
    DeleteObject(hBitmap);
    DeleteObject(hCopy);
}

TEST_F(Mirroring, TurnsIconsWithTheirMasksAndAlpha)
{
    for (const DWORD nAlpha : { 0xFF000000U, 0U }) { // laid over by alpha, or by the mask
        for (const CSize size : kSizes) {
            SCOPED_TRACE(size.cx);
            const HBITMAP hImage = BitmapOf(RandomPixels(random, size, nAlpha | 0xFFFFFF), size);
            std::string strMask;
            const int nMaskBytes = (size.cx + 15) / 16 * 2 * size.cy;
            strMask.resize(static_cast<std::size_t>(nMaskBytes));
            for (char& ch : strMask)
                ch = static_cast<char>(random());
            const HBITMAP hMask = CreateBitmap(size.cx, size.cy, 1, 1, strMask.data());
            const ICONINFO info{ FALSE, 5, 7, hMask, hImage };
            const HICON hIcon = CreateIconIndirect(&info);
            const HICON hMirrored = CreateMirroredIcon(hIcon);
            for (const UINT nFlags : { DI_MASK, DI_IMAGE, DI_NORMAL })
                EXPECT_EQ(DrawnOver(hMirrored, size, nFlags), Mirrored(DrawnOver(hIcon, size, nFlags), size)) << nFlags;

            ICONINFO result{};
            EXPECT_TRUE(GetIconInfo(hMirrored, &result));
            EXPECT_FALSE(result.fIcon);
            EXPECT_EQ(result.xHotspot, 5U);
            EXPECT_EQ(result.yHotspot, 7U);
            EXPECT_EQ(PixelsOf(result.hbmColor, size), Mirrored(PixelsOf(hImage, size), size));
            for (const HBITMAP hBitmap : { hImage, hMask, result.hbmColor, result.hbmMask })
                EXPECT_TRUE(DeleteObject(hBitmap));
            EXPECT_TRUE(DestroyIcon(hIcon));
            EXPECT_TRUE(DestroyIcon(hMirrored));
        }
    }
}

TEST_F(Mirroring, RefusesWhatIsNoIconOfColours)
{
    EXPECT_EQ(CreateMirroredIcon(nullptr), nullptr);
    const HBITMAP hMask = CreateBitmap(4, 8, 1, 1, nullptr);
    const ICONINFO info{ TRUE, 0, 0, hMask, nullptr };
    const HICON hIcon = CreateIconIndirect(&info);
    ASSERT_NE(hIcon, nullptr);
    EXPECT_EQ(CreateMirroredIcon(hIcon), nullptr) << "it has no colours";
    DestroyIcon(hIcon);
    EXPECT_EQ(CreateMirroredIcon(hIcon), nullptr) << "it is gone";
    DeleteObject(hMask);
}
