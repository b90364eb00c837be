// What copies, shapes and brushes put down; model_test.cpp tries random ones.
#include "tests/support/Picture.h"

#include <gtest/gtest.h>

#include <winbase.h>

#include <cstdlib>

using test::Picture;
using test::Selected;

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
    { "stretched unevenly: column (2i+1)*3/10", ".....", 0, 0, 5, 1, "RGB", 0, 0, 3, 1, "RRGBB" },
    { "shrunk: the middle column", "..", 0, 0, 2, 1, "RGBWYC", 0, 0, 6, 1, "GY" },
    { "stretched from beyond the source", "WWWW", 0, 0, 4, 1, "RG", 1, 0, 2, 1, "GGWW" },
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
        EXPECT_TRUE(StretchBlt(target, c.x, c.y, c.width, c.height, source, c.source_x, c.source_y, c.source_width,
                               c.source_height, SRCCOPY));
        EXPECT_EQ(target.Letters(), c.expected);
    }
}

TEST(GdiCopy, SurvivesOverlap)
{
    struct Case {
        const char* why;
        int hole; // a column that may not be drawn on
        int x, y, width, height, source_x, source_y;
        const char* expected;
    };
    const Case cases[] = {
        { "down and right", -1, 1, 1, 3, 2, 0, 0, "RGBWY/CRGBa/WCMYe" },
        { "up and left", -1, 0, 0, 3, 2, 1, 1, "MYcWY/abdca/Wabde" },
        { "mirrored onto itself", -1, 4, 0, -5, 3, 0, 0, "YWBGR/acYMC/edbaW" },
        { "right across a hole, behind which stands its source", 3, 2, 0, 3, 1, 0, 0, "RGRWB/CMYca/Wabde" },
        { "left across one", 1, 0, 0, 3, 1, 2, 0, "BGYWY/CMYca/Wabde" },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        const Picture picture("RGBWY/CMYca/Wabde");
        ExcludeClipRect(picture, c.hole, 0, c.hole + 1, 3);
        EXPECT_TRUE(StretchBlt(picture, c.x, c.y, c.width, c.height, picture, c.source_x, c.source_y, std::abs(c.width),
                               c.height, SRCCOPY));
        EXPECT_EQ(picture.Letters(), c.expected);
    }
}

TEST(GdiCopy, ConvertsBetweenDepths)
{
    const BYTE bits[] = { 0b1010'0000, 0 };
    const Picture mask(4, 1, 1, bits);
    const Picture target("....");
    SetTextColor(target, RGB(255, 0, 0));
    SetBkColor(target, RGB(0, 255, 0));
    BitBlt(target, 0, 0, 4, 1, mask, 0, 0, SRCCOPY);
    EXPECT_EQ(target.Letters(), "GRGR") << "clear bits are text, set ones background";

    const Picture colours("RGBG");
    SetBkColor(colours, RGB(0, 255, 0));
    BitBlt(mask, 0, 0, 4, 1, colours, 0, 0, SRCCOPY);
    EXPECT_EQ(mask.Letters(), ".W.W") << "the source's background colour sets a bit";
    for (int x = 0; x < 4; x++)
        SetPixel(mask, x, 0, test::ColourOf("YRCB"[x]));
    EXPECT_EQ(mask.Letters(), "W.W.") << "what is drawn becomes what is nearer";
}

TEST(GdiCopy, CombinesByEveryOperation)
{
    // Pattern, source and destination bits of the eight pixels are the eight triples.
    const Picture source("..WW..WW");
    for (DWORD code = 0; code < 256; code++) {
        const Picture target(".W.W.W.W");
        for (const int half : { 0, 4 }) {
            const Selected brush(target, CreateSolidBrush(half == 0 ? 0 : RGB(255, 255, 255)));
            BitBlt(target, half, 0, 4, 1, source, half, 0, code << 16);
        }
        std::string expected;
        for (DWORD triple = 0; triple < 8; triple++)
            expected += code >> triple & 1 ? 'W' : '.';
        EXPECT_EQ(target.Letters(), expected) << code;
    }
}

TEST(GdiShapes, DrawsRectangles)
{
    struct Case {
        const char* why;
        DWORD layout;
        int pen_style;
        RECT rect;
        const char* expected;
    };
    const Case cases[] = {
        { "border and inside", 0, PS_SOLID, { 1, 0, 5, 3 }, ".RRRR./.RGGR./.RRRR." },
        { "without a pen one pixel less", 0, PS_NULL, { 1, 0, 5, 3 }, ".GGG../.GGG../......" },
        { "and from right to left", LAYOUT_RTL, PS_NULL, { 1, 0, 5, 3 }, "..GGG./..GGG./......" },
        { "corners in any order", 0, PS_SOLID, { 5, 3, 1, 0 }, ".RRRR./.RGGR./.RRRR." },
        { "beyond all edges", 0, PS_SOLID, { -kFar - 1, -kFar - 1, kFar, kFar }, "GGGGGG/GGGGGG/GGGGGG" },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        const Picture picture("....../....../......");
        SetLayout(picture, c.layout);
        const Selected pen(picture, CreatePen(c.pen_style, 1, RGB(255, 0, 0)));
        const Selected brush(picture, CreateSolidBrush(RGB(0, 255, 0)));
        EXPECT_TRUE(Rectangle(picture, c.rect.left, c.rect.top, c.rect.right, c.rect.bottom));
        EXPECT_EQ(picture.Letters(), c.expected);
    }
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
        { "up", { 2, 2 }, { 2, -1 }, "..W../..W../..W.." },
        { "diagonal", { 0, 0 }, { 3, 3 }, "W..../.W.../..W.." },
        { "shallow", { 0, 0 }, { 4, 2 }, "W..../.WW../...W." },
        { "no length", { 2, 1 }, { 2, 1 }, "...../...../....." },
        { "from far away", { -kFar, 1 }, { kFar, 1 }, "...../WWWWW/....." },
        { "far and slanted", { -kFar, -kFar }, { kFar, kFar }, "W..../.W.../..W.." },
        { "and back", { kFar, kFar }, { -kFar, -kFar }, "W..../.W.../..W.." },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        const Picture picture("...../...../.....");
        SelectObject(picture, GetStockObject(WHITE_PEN));
        MoveToEx(picture, c.from.x, c.from.y, nullptr);
        LineTo(picture, c.to.x, c.to.y);
        EXPECT_EQ(picture.Letters(), c.expected);
        POINT end{};
        MoveToEx(picture, 0, 0, &end);
        EXPECT_TRUE(end.x == c.to.x && end.y == c.to.y) << "where the next line begins";
    }
}

TEST(GdiShapes, RepeatPatterns)
{
    const Picture tile("RG/BW");
    const BYTE bits[] = { 0b1000'0000, 0, 0b0100'0000, 0 };
    const Picture mono(2, 2, 1, bits);
    struct Case {
        const Picture& tile;
        const char* expected;
    };
    for (const Case& c : { Case{ tile, ".GRGR/.WBWB/.GRGR" }, Case{ mono, ".RGRG/.GRGR/.RGRG" } }) {
        const Picture picture("...../...../.....");
        SetTextColor(picture, RGB(255, 0, 0));
        SetBkColor(picture, RGB(0, 255, 0));
        const Selected brush(picture, CreatePatternBrush(c.tile.bitmap()));
        EXPECT_TRUE(PatBlt(picture, 4, 2, -4, -3, PATCOPY)) << "leftward and upward, its start included";
        EXPECT_EQ(picture.Letters(), c.expected);
    }
}
