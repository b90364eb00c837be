#include "tests/platform/win32/gdi/Pictures.h"

#include "platform/win32/gdi/raster.h"

#include <gtest/gtest.h>

#include <winbase.h>

using test::Picture;

namespace {

constexpr int kFar = 0x7FFFFFFF;

struct CopyCase {
    const char* why;
    const char* target;
    int x, y, width, height;
    const char* source;
    int source_x, source_y, source_width, source_height;
    const char* expected;
};

const CopyCase kCopyCases[] = {
    { "straight", ".....", 1, 0, 3, 1, "RGB", 0, 0, 3, 1, ".RGB." },
    { "a part", "...", 0, 0, 2, 1, "RGBW", 1, 0, 2, 1, "GB." },
    { "mirrored: the start pixel is included and it runs leftward", ".....", 3, 0, -3, 1, "RGB", 0, 0, 3, 1, ".BGR." },
    { "mirrored source", "...", 0, 0, 3, 1, "RGB", 2, 0, -3, 1, "BGR" },
    { "both mirrored is straight", "...", 2, 0, -3, 1, "RGB", 2, 0, -3, 1, "RGB" },
    { "upside down", "././.", 0, 2, 1, -3, "R/G/B", 0, 0, 1, 3, "B/G/R" },
    { "stretched evenly", "......", 0, 0, 6, 1, "RGB", 0, 0, 3, 1, "RRGGBB" },
    { "stretched unevenly: column (2i+1)*3/10", ".....", 0, 0, 5, 1, "RGB", 0, 0, 3, 1, "RRGBB" },
    { "shrunk: the middle column", "..", 0, 0, 2, 1, "RGBWYC", 0, 0, 6, 1, "GY" },
    { "stretched and mirrored", "....", 3, 0, -4, 1, "RG", 0, 0, 2, 1, "GGRR" },
    { "tall", "./././.", 0, 0, 1, 4, "R/G", 0, 0, 1, 2, "R/R/G/G" },
    { "outside the target", "...", -2, 0, 4, 1, "RGBW", 0, 0, 4, 1, "BW." },
    { "outside the source stays", "WWWW", 0, 0, 4, 1, "RG", -1, 0, 4, 1, "WRGW" },
    { "stretched from beyond the source", "WWWW", 0, 0, 4, 1, "RG", 1, 0, 2, 1, "GGWW" },
    { "nothing", "WW", 0, 0, 0, 1, "RG", 0, 0, 0, 1, "WW" },
    { "an extent of nothing in the source", "WW", 0, 0, 2, 1, "RG", 0, 0, 0, 1, "WW" },
    { "far away", "WW", kFar, 0, kFar, 1, "RG", 0, 0, kFar, 1, "WW" },
    { "the largest extents", "..", 0, 0, kFar, 1, "RG", 0, 0, kFar, 1, "RG" },
    { "the most negative extents", "..", 0, 0, -kFar - 1, 1, "RG", 0, 0, -kFar - 1, 1, "R." },
};

} // namespace

TEST(GdiCopy, PlacesPixels)
{
    for (const CopyCase& c : kCopyCases) {
        SCOPED_TRACE(c.why);
        const Picture source(c.source);
        const Picture target(c.target);
        EXPECT_TRUE(StretchBlt(target.dc(), c.x, c.y, c.width, c.height, source.dc(), c.source_x, c.source_y,
                               c.source_width, c.source_height, SRCCOPY));
        EXPECT_EQ(target.Letters(), c.expected);
    }
}

TEST(GdiCopy, SurvivesOverlap)
{
    struct Case {
        const char* why;
        int x, y, width, height, source_x, source_y;
        const char* expected;
    };
    const Case cases[] = {
        { "right", 1, 0, 3, 3, 0, 0, "RRGB/CCMY/WWab" },
        { "left", 0, 0, 3, 3, 1, 0, "GBWW/MYcc/abdd" },
        { "down", 0, 1, 4, 2, 0, 0, "RGBW/RGBW/CMYc" },
        { "up", 0, 0, 4, 2, 0, 1, "CMYc/Wabd/Wabd" },
        { "down and right", 1, 1, 3, 2, 0, 0, "RGBW/CRGB/WCMY" },
        { "up and left", 0, 0, 3, 2, 1, 1, "MYcW/abdc/Wabd" },
        { "mirrored onto itself", 3, 0, -4, 3, 0, 0, "WBGR/cYMC/dbaW" },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        const Picture picture("RGBW/CMYc/Wabd");
        EXPECT_TRUE(StretchBlt(picture.dc(), c.x, c.y, c.width, c.height, picture.dc(), c.source_x, c.source_y,
                               std::abs(c.width), c.height, SRCCOPY));
        EXPECT_EQ(picture.Letters(), c.expected);
    }
}

TEST(GdiCopy, SurvivesOverlapAcrossAHoleInTheClip)
{
    struct Case {
        const char* why;
        int x, source_x;
        const char* expected;
    };
    // Column 4 stays; what stands left of it is the source of what stands right of it, or the other way round.
    const Case cases[] = {
        { "right", 2, 0, "RGRGYWYC" },
        { "left", 0, 2, "BWYCYaaa" },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        const Picture picture(c.x == 2 ? "RGBWYCMa" : "RGBWYCaa");
        ExcludeClipRect(picture.dc(), 4, 0, 5, 1);
        BitBlt(picture.dc(), c.x, 0, 6, 1, picture.dc(), c.source_x, 0, SRCCOPY);
        EXPECT_EQ(picture.Letters(), c.expected);
    }
}

TEST(GdiCopy, ConvertsBetweenDepths)
{
    const BYTE bits[] = { 0b1010'0000, 0 };
    const HBITMAP mask = CreateBitmap(4, 1, 1, 1, bits);
    const HDC mask_dc = CreateCompatibleDC(nullptr);
    const HGDIOBJ previous = SelectObject(mask_dc, mask);
    Picture target("....");
    SetTextColor(target.dc(), RGB(255, 0, 0));
    SetBkColor(target.dc(), RGB(0, 255, 0));
    BitBlt(target.dc(), 0, 0, 4, 1, mask_dc, 0, 0, SRCCOPY);
    EXPECT_EQ(target.Letters(), "GRGR") << "clear bits are text, set ones background";

    Picture colours("RGBG");
    SetBkColor(colours.dc(), RGB(0, 255, 0));
    BitBlt(mask_dc, 0, 0, 4, 1, colours.dc(), 0, 0, SRCCOPY);
    EXPECT_EQ(test::LettersOf(mask_dc, 4, 1), ".W.W") << "the source's background colour sets a bit";
    SelectObject(mask_dc, previous);
    DeleteDC(mask_dc);
    DeleteObject(mask);
}

TEST(GdiCopy, CombinesByEveryOperation)
{
    // Pattern, source and destination bits of the eight pixels are the eight triples.
    const Picture source("..WW..WW");
    const HBRUSH brushes[] = { CreateSolidBrush(0), CreateSolidBrush(RGB(255, 255, 255)) };
    for (DWORD code = 0; code < 256; code++) {
        SCOPED_TRACE(code);
        const Picture target(".W.W.W.W");
        for (int half = 0; half < 2; half++) {
            const HGDIOBJ previous = SelectObject(target.dc(), brushes[half]);
            BitBlt(target.dc(), 4 * half, 0, 4, 1, source.dc(), 4 * half, 0, code << 16);
            SelectObject(target.dc(), previous);
        }
        std::string expected;
        for (DWORD triple = 0; triple < 8; triple++)
            expected += code >> triple & 1 ? 'W' : '.';
        EXPECT_EQ(target.Letters(), expected);
    }
    for (const HBRUSH brush : brushes)
        EXPECT_TRUE(DeleteObject(brush));
}

TEST(GdiCopy, MixesEveryWeightToTheNearest)
{
    int wrong = 0;
    for (std::uint32_t over = 0; over < 256; over++) {
        for (std::uint32_t under = 0; under < 256; under++) {
            for (std::uint32_t weight = 0; weight < 256; weight++) {
                const std::uint32_t nearest = (over * weight + under * (255 - weight) + 127) / 255;
                const std::uint32_t mixed = win32::mix_pixels(over * 0x010101, under * 0x010101, weight);
                wrong += mixed != nearest * 0x010101;
            }
        }
    }
    EXPECT_EQ(wrong, 0);
}

TEST(GdiShapes, DrawsRectangles)
{
    struct Case {
        const char* why;
        int pen_style;
        RECT rect;
        const char* expected;
    };
    const Case cases[] = {
        { "border and inside", PS_SOLID, { 1, 0, 5, 3 }, ".RRRR./.RGGR./.RRRR." },
        { "without a pen one pixel less", PS_NULL, { 1, 0, 5, 3 }, ".GGG../.GGG../......" },
        { "corners in any order", PS_SOLID, { 5, 3, 1, 0 }, ".RRRR./.RGGR./.RRRR." },
        { "thin", PS_SOLID, { 2, 0, 3, 3 }, "..R.../..R.../..R..." },
        { "flat", PS_SOLID, { 1, 1, 5, 2 }, "....../.RRRR./......" },
        { "empty", PS_SOLID, { 2, 1, 2, 3 }, "....../....../......" },
        { "beyond all edges", PS_SOLID, { -kFar - 1, -kFar - 1, kFar, kFar }, "GGGGGG/GGGGGG/GGGGGG" },
    };
    const HBRUSH green = CreateSolidBrush(RGB(0, 255, 0));
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        const HPEN pen = CreatePen(c.pen_style, 1, RGB(255, 0, 0));
        {
            const Picture picture("....../....../......");
            SelectObject(picture.dc(), pen);
            SelectObject(picture.dc(), green);
            EXPECT_TRUE(Rectangle(picture.dc(), c.rect.left, c.rect.top, c.rect.right, c.rect.bottom));
            EXPECT_EQ(picture.Letters(), c.expected);
        }
        EXPECT_TRUE(DeleteObject(pen));
    }
    EXPECT_TRUE(DeleteObject(green));
}

TEST(GdiShapes, MixesPenAndPictureByEveryMode)
{
    // The four pixels are the pairs of pen and picture bits.
    const char* const expected[] = { "....", "W...", ".W..", "WW..", "..W.", "W.W.", ".WW.", "WWW.",
                                     "...W", "W..W", ".W.W", "WW.W", "..WW", "W.WW", ".WWW", "WWWW" };
    for (int mode = R2_BLACK; mode <= R2_WHITE; mode++) {
        SCOPED_TRACE(mode);
        const Picture picture(".W.W");
        SetROP2(picture.dc(), mode);
        SelectObject(picture.dc(), GetStockObject(BLACK_PEN));
        Rectangle(picture.dc(), 0, 0, 2, 1);
        SelectObject(picture.dc(), GetStockObject(WHITE_PEN));
        Rectangle(picture.dc(), 2, 0, 4, 1);
        EXPECT_EQ(picture.Letters(), expected[mode - 1]);
    }
    const Picture busy("WWWW");
    SetROP2(busy.dc(), R2_MASKNOTPEN);
    const HBRUSH orange = CreateSolidBrush(RGB(204, 96, 1));
    SelectObject(busy.dc(), orange);
    SelectObject(busy.dc(), GetStockObject(NULL_PEN));
    Rectangle(busy.dc(), 0, -1, 3, 2);
    EXPECT_EQ(GetPixel(busy.dc(), 1, 0), RGB(51, 159, 254));
    SelectObject(busy.dc(), GetStockObject(WHITE_BRUSH));
    EXPECT_TRUE(DeleteObject(orange));
}

TEST(GdiShapes, DrawsLinesWithoutTheirLastPoint)
{
    struct Case {
        const char* why;
        POINT from, to;
        const char* expected;
    };
    const Case cases[] = {
        { "right", { 1, 1 }, { 4, 1 }, "...../.WWW./....." },
        { "left", { 3, 1 }, { 0, 1 }, "...../.WWW./....." },
        { "down", { 2, 0 }, { 2, 3 }, "..W../..W../..W.." },
        { "diagonal", { 0, 0 }, { 3, 3 }, "W..../.W.../..W.." },
        { "shallow", { 0, 0 }, { 4, 2 }, "W..../.WW../...W." },
        { "no length", { 2, 1 }, { 2, 1 }, "...../...../....." },
        { "from far away", { -kFar, 1 }, { kFar, 1 }, "...../WWWWW/....." },
        { "far and slanted", { -kFar, -kFar }, { kFar, kFar }, "W..../.W.../..W.." },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        const Picture picture("...../...../.....");
        SelectObject(picture.dc(), GetStockObject(WHITE_PEN));
        MoveToEx(picture.dc(), c.from.x, c.from.y, nullptr);
        LineTo(picture.dc(), c.to.x, c.to.y);
        EXPECT_EQ(picture.Letters(), c.expected);
    }
}
