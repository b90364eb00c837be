#include <algorithm>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "look/GuiManager.h"
#include "platform/win32/gdi/objects.h"
#include "tests/support/Canvas.h"
#include "xml/TextUtil.h"

namespace {

using Pixels = std::vector<DWORD>; // with alpha, top row first

BITMAPINFO Description(CSize size)
{
    BITMAPINFO info{};
    info.bmiHeader = { sizeof(BITMAPINFOHEADER), size.cx, -size.cy, 1, 32, BI_RGB, 0, 0, 0, 0, 0 };
    return info;
}

Pixels PixelsOf(HBITMAP hBitmap, CSize size)
{
    Pixels pixels(static_cast<std::size_t>(size.cx * size.cy));
    BITMAPINFO info = Description(size);
    EXPECT_EQ(GetDIBits(CClientDC(nullptr).m_hDC, hBitmap, 0, size.cy, pixels.data(), &info, DIB_RGB_COLORS), size.cy);
    return pixels;
}

Pixels Mirrored(Pixels pixels, CSize size)
{
    for (auto row = pixels.begin(); row != pixels.end(); row += size.cx)
        std::reverse(row, row + size.cx);
    return pixels;
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

    HBITMAP RandomBitmap(CSize size, DWORD nMask)
    {
        Pixels pixels(static_cast<std::size_t>(size.cx * size.cy));
        for (DWORD& pixel : pixels)
            pixel = static_cast<DWORD>(m_random()) & nMask;
        const HBITMAP hBitmap = CreateBitmap(size.cx, size.cy, 1, 32, nullptr);
        const BITMAPINFO info = Description(size);
        SetDIBits(CClientDC(nullptr).m_hDC, hBitmap, 0, size.cy, pixels.data(), &info, DIB_RGB_COLORS);
        return hBitmap;
    }
    HBITMAP RandomMask(CSize size)
    {
        std::vector<WORD> rows(static_cast<std::size_t>((size.cx + 15) / 16 * size.cy));
        for (WORD& bits : rows)
            bits = static_cast<WORD>(m_random());
        return CreateBitmap(size.cx, size.cy, 1, 1, rows.data());
    }

private:
    std::mt19937 m_random{ 20261124 };
    std::size_t m_nBefore = 0;
};

constexpr CSize kSizes[] = { { 1, 1 }, { 2, 1 }, { 1, 5 }, { 3, 2 }, { 16, 16 }, { 31, 7 }, { 78, 30 } };

} // namespace

TEST_F(Mirroring, TurnsBitmapsLeftToRight)
{
    const auto pfnSetLayout = PelkGUI::GetGuiManager().m_pfnSetLayout;
    for (const CSize size : kSizes) {
        SCOPED_TRACE(size.cx);
        for (const HBITMAP hBitmap : { RandomBitmap(size, 0xFFFFFFFF), RandomMask(size) }) {
            const HBITMAP hMirrored = CreateMirroredBitmap(hBitmap);
            EXPECT_EQ(PixelsOf(hMirrored, size), Mirrored(PixelsOf(hBitmap, size), size));
            BITMAP info{};
            GetObjectA(hMirrored, sizeof(info), &info);
            EXPECT_EQ(info.bmBitsPixel, 32) << "as the screen has them";
            PelkGUI::GetGuiManager().m_pfnSetLayout = nullptr;
            const HBITMAP hCopy = CreateMirroredBitmap(hBitmap);
            EXPECT_EQ(PixelsOf(hCopy, size), PixelsOf(hBitmap, size)) << "without layouts";
            PelkGUI::GetGuiManager().m_pfnSetLayout = pfnSetLayout;
            for (const HBITMAP hDone : { hBitmap, hMirrored, hCopy })
                EXPECT_TRUE(DeleteObject(hDone)) << "it is selected nowhere";
        }
    }
}

TEST_F(Mirroring, TurnsIconsWithTheirMasksAndAlpha)
{
    for (const DWORD nAlpha : { 0xFF000000U, 0U }) { // laid over by alpha, or by the mask
        for (const CSize size : kSizes) {
            SCOPED_TRACE(size.cx);
            const HBITMAP hImage = RandomBitmap(size, nAlpha | 0xFFFFFF);
            const HBITMAP hMask = RandomMask(size);
            const ICONINFO info{ FALSE, 5, 7, hMask, hImage };
            const HICON hIcon = CreateIconIndirect(&info);
            const HICON hMirrored = CreateMirroredIcon(hIcon);
            ICONINFO result{};
            EXPECT_TRUE(GetIconInfo(hMirrored, &result));
            EXPECT_FALSE(result.fIcon);
            EXPECT_EQ(CPoint(result.xHotspot, result.yHotspot), CPoint(5, 7));
            EXPECT_EQ(PixelsOf(result.hbmColor, size), Mirrored(PixelsOf(hImage, size), size));
            EXPECT_EQ(PixelsOf(result.hbmMask, size), Mirrored(PixelsOf(hMask, size), size));
            for (const HBITMAP hBitmap : { hImage, hMask, result.hbmColor, result.hbmMask })
                EXPECT_TRUE(DeleteObject(hBitmap));
            EXPECT_TRUE(DestroyIcon(hIcon));
            EXPECT_TRUE(DestroyIcon(hMirrored));
        }
    }
}

TEST_F(Mirroring, RefusesWhatIsNoPicture)
{
    EXPECT_EQ(CreateMirroredBitmap(nullptr), nullptr);
    EXPECT_EQ(CreateMirroredBitmap(static_cast<HBITMAP>(GetStockObject(BLACK_PEN))), nullptr);
    test::Canvas holder(3, 3);
    EXPECT_EQ(CreateMirroredBitmap(holder.Bitmap()), nullptr) << "selected elsewhere";

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
