#include "tests/support/Picture.h"

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
    info.bmiHeader = { sizeof(BITMAPINFOHEADER), width, height, 1, static_cast<WORD>(bits), BI_RGB, 0, 0, 0, 0, 0 };
    return info;
}

} // namespace

TEST(GdiDibBits, DescribeTheBitmap)
{
    const Picture picture("RGB/WYC");
    BITMAPINFO info = Info(0, 0, 0);
    EXPECT_NE(GetDIBits(picture, picture.bitmap(), 0, 0, nullptr, &info, DIB_RGB_COLORS), 0);
    EXPECT_EQ(info.bmiHeader.biWidth, 3);
    EXPECT_EQ(info.bmiHeader.biHeight, 2);
    EXPECT_EQ(info.bmiHeader.biBitCount, 32);
    EXPECT_EQ(info.bmiHeader.biSizeImage, 24U);
    EXPECT_EQ(GetDIBits(picture, nullptr, 0, 0, nullptr, &info, DIB_RGB_COLORS), 0);
}

TEST(GdiDibBits, AreRowsInBothOrders)
{
    const Picture picture("RG/BW");
    std::vector<BYTE> rows(16, 0xEE);
    BITMAPINFO info = Info(2, -2, 24);
    EXPECT_EQ(GetDIBits(picture, picture.bitmap(), 0, 2, rows.data(), &info, DIB_RGB_COLORS), 2);
    EXPECT_EQ(rows, (std::vector<BYTE>{ 0, 0, 255, 0, 255, 0, 0, 0, 255, 0, 0, 255, 255, 255, 0, 0 }));
    info = Info(2, 2, 24);
    rows.assign(16, 0xEE);
    EXPECT_EQ(GetDIBits(picture, picture.bitmap(), 1, 5, rows.data(), &info, DIB_RGB_COLORS), 1);
    EXPECT_EQ(rows[2], 255) << "the second row from the bottom is the top one";
    EXPECT_EQ(rows[8], 0xEE);
}

TEST(GdiDibBits, SetTheRowsThatTheyHold)
{
    const std::string rows[] = { "RGB", "WYC", "M.R" };
    const Picture source("RGB/WYC/M.R");
    for (const int shape : { 24 * 3, 32 * 3, 24 * -3, 32 * -3 }) {
        for (int part = 0; part < 9; part++) {
            SCOPED_TRACE(testing::Message() << shape << ' ' << part);
            BITMAPINFO info = Info(3, shape < 0 ? -3 : 3, std::abs(shape) / 3);
            const int start = part / 3, lines = part % 3 + 1;
            const auto first = static_cast<UINT>(start), count = static_cast<UINT>(lines);
            std::vector<BYTE> bits(3 * 12);
            GetDIBits(source, source.bitmap(), first, count, bits.data(), &info, DIB_RGB_COLORS);
            const Picture target("aaa/aaa/aaa");
            const Picture smaller("aa/aa");
            for (const Picture* picture : { &target, &smaller })
                EXPECT_EQ(SetDIBits(*picture, picture->bitmap(), first, count, bits.data(), &info, DIB_RGB_COLORS),
                          std::min(lines, 3 - start));
            std::string expected[3];
            for (int y = 0; y < 3; y++) {
                const int index = shape < 0 ? y : 2 - y; // of the row, as it stands in the bits
                expected[y] = index >= start && index < start + lines ? rows[y] : "aaa";
            }
            EXPECT_EQ(target.Letters(), expected[0] + '/' + expected[1] + '/' + expected[2]);
            EXPECT_EQ(smaller.Letters(), expected[0].substr(0, 2) + '/' + expected[1].substr(0, 2));
        }
    }
}

TEST(GdiDibBits, ShareTheMemoryOfASection)
{
    for (const int height : { 2, -2 }) {
        SCOPED_TRACE(height);
        const BITMAPINFO info = Info(2, height, 32);
        void* bits = nullptr;
        const Picture section(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
        ASSERT_NE(bits, nullptr);
        const DWORD rows[] = { 0x00FF0000, 0x0000FF00, 0x000000FF, 0x00FFFFFF };
        std::memcpy(bits, rows, sizeof rows);
        EXPECT_EQ(section.Letters(), height < 0 ? "RG/BW" : "BW/RG");
        SetPixel(section, 0, 0, RGB(255, 255, 0));
        EXPECT_EQ(static_cast<DWORD*>(bits)[height < 0 ? 0 : 2], 0x00FFFF00U);
        DIBSECTION description{};
        EXPECT_EQ(GetObjectA(section.bitmap(), sizeof description, &description), static_cast<int>(sizeof description));
        EXPECT_EQ(description.dsBm.bmBits, bits);
        EXPECT_EQ(description.dsBmih.biHeight, height);
    }
    const BITMAPINFO eight = Info(2, 2, 8);
    void* bits = nullptr;
    EXPECT_EQ(CreateDIBSection(nullptr, &eight, DIB_RGB_COLORS, &bits, nullptr, 0), nullptr);
}
