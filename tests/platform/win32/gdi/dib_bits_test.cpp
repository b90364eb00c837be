#include "tests/platform/win32/gdi/Pictures.h"

#include <gtest/gtest.h>

#include <winbase.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

using test::Picture;

namespace {

BITMAPINFO Info(int width, int height, int bits)
{
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = static_cast<WORD>(bits);
    return info;
}

} // namespace

TEST(GdiDibBits, DescribesTheBitmap)
{
    const Picture picture("RGB/WYC");
    BITMAPINFO info = Info(0, 0, 0);
    EXPECT_NE(GetDIBits(picture.dc(), picture.bitmap(), 0, 0, nullptr, &info, DIB_RGB_COLORS), 0);
    EXPECT_EQ(info.bmiHeader.biWidth, 3);
    EXPECT_EQ(info.bmiHeader.biHeight, 2);
    EXPECT_EQ(info.bmiHeader.biBitCount, 32);
    EXPECT_EQ(info.bmiHeader.biSizeImage, 24U);
    EXPECT_EQ(GetDIBits(picture.dc(), nullptr, 0, 0, nullptr, &info, DIB_RGB_COLORS), 0);
}

TEST(GdiDibBits, GivesRowsInBothOrders)
{
    const Picture picture("RG/BW");
    std::vector<BYTE> rows(16, 0xEE);
    BITMAPINFO info = Info(2, -2, 24);
    EXPECT_EQ(GetDIBits(picture.dc(), picture.bitmap(), 0, 2, rows.data(), &info, DIB_RGB_COLORS), 2);
    EXPECT_EQ(rows, (std::vector<BYTE>{ 0, 0, 255, 0, 255, 0, 0, 0, 255, 0, 0, 255, 255, 255, 0, 0 }));
    info = Info(2, 2, 24);
    rows.assign(16, 0xEE);
    EXPECT_EQ(GetDIBits(picture.dc(), picture.bitmap(), 1, 5, rows.data(), &info, DIB_RGB_COLORS), 1);
    EXPECT_EQ(rows[2], 255) << "the second row from the bottom is the top one";
    EXPECT_EQ(rows[8], 0xEE);
}

TEST(GdiDibBits, SetsWhatItGave)
{
    const Picture source("RGB/WYC/M.R");
    for (const int bits : { 24, 32 }) {
        for (const int height : { 3, -3 }) {
            SCOPED_TRACE(bits * height);
            std::vector<BYTE> rows(3 * 12);
            BITMAPINFO info = Info(3, height, bits);
            GetDIBits(source.dc(), source.bitmap(), 0, 3, rows.data(), &info, DIB_RGB_COLORS);
            const Picture target("aaa/aaa/aaa");
            EXPECT_EQ(SetDIBits(target.dc(), target.bitmap(), 0, 3, rows.data(), &info, DIB_RGB_COLORS), 3);
            EXPECT_EQ(target.Letters(), source.Letters());
            const Picture smaller("aa/aa");
            SetDIBits(smaller.dc(), smaller.bitmap(), 0, 3, rows.data(), &info, DIB_RGB_COLORS);
            EXPECT_EQ(smaller.Letters(), "RG/WY");
        }
    }
}

TEST(GdiDibBits, SetsSomeOfTheRows)
{
    const std::string rows[] = { "RGB", "WYC", "M.R" };
    const Picture source("RGB/WYC/M.R");
    for (const int height : { 3, -3 }) {
        for (int start = 0; start < 3; start++) {
            for (int lines = 1; lines <= 3; lines++) {
                SCOPED_TRACE(testing::Message() << height << ' ' << start << ' ' << lines);
                std::vector<BYTE> bits(3 * 12);
                BITMAPINFO info = Info(3, height, 24);
                const auto first = static_cast<UINT>(start);
                const auto count = static_cast<UINT>(lines);
                GetDIBits(source.dc(), source.bitmap(), first, count, bits.data(), &info, DIB_RGB_COLORS);
                const Picture target("aaa/aaa/aaa");
                EXPECT_EQ(SetDIBits(target.dc(), target.bitmap(), first, count, bits.data(), &info, DIB_RGB_COLORS),
                          std::min(lines, 3 - start));
                std::string expected;
                for (int y = 0; y < 3; y++) {
                    const int index = height < 0 ? y : 2 - y; // of the row, as it stands in the bits
                    expected += (y ? "/" : "") + (index >= start && index < start + lines ? rows[y] : "aaa");
                }
                EXPECT_EQ(target.Letters(), expected);
            }
        }
    }
}

TEST(GdiDibBits, SharesTheMemoryOfASection)
{
    for (const int height : { 2, -2 }) {
        SCOPED_TRACE(height);
        const BITMAPINFO info = Info(2, height, 32);
        void* bits = nullptr;
        const HBITMAP section = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        ASSERT_NE(section, nullptr);
        const DWORD rows[] = { 0x00FF0000, 0x0000FF00, 0x000000FF, 0x00FFFFFF };
        std::memcpy(bits, rows, sizeof rows);
        const HDC dc = CreateCompatibleDC(nullptr);
        const HGDIOBJ previous = SelectObject(dc, section);
        EXPECT_EQ(test::LettersOf(dc, 2, 2), height < 0 ? "RG/BW" : "BW/RG");
        SetPixel(dc, 0, 0, RGB(255, 255, 0));
        EXPECT_EQ(static_cast<DWORD*>(bits)[height < 0 ? 0 : 2], 0x00FFFF00U);
        DIBSECTION description{};
        EXPECT_EQ(GetObjectA(section, sizeof description, &description), static_cast<int>(sizeof description));
        EXPECT_EQ(description.dsBm.bmBits, bits);
        EXPECT_EQ(description.dsBmih.biHeight, height);
        SelectObject(dc, previous);
        DeleteDC(dc);
        DeleteObject(section);
    }
    const BITMAPINFO eight = Info(2, 2, 8);
    void* bits = nullptr;
    EXPECT_EQ(CreateDIBSection(nullptr, &eight, DIB_RGB_COLORS, &bits, nullptr, 0), nullptr);
}
