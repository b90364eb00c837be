#include "tests/platform/win32/gdi/DibBytes.h"
#include "tests/support/Picture.h"
#include "tests/support/TestHome.h"

#include "platform/win32/gdi/bitmap.h"
#include "platform/win32/gdi/dib.h"

#include <gtest/gtest.h>

#include <winbase.h>

#include <fstream>

using test::Bytes;
using test::InfoHeader;
using test::Picture;

namespace {

// The letters of a bitmap, "none" for null. Takes the bitmap.
std::string LettersOf(HANDLE bitmap)
{
    return bitmap ? Picture(static_cast<HBITMAP>(bitmap)).Letters() : "none";
}

Bytes With(Bytes header, std::initializer_list<std::int64_t> tail)
{
    return header.U8(tail);
}

// Of pixels that are one of four colours: black, red, green, blue.
Bytes FourColours(int width, int height, int bits, int compression, std::initializer_list<std::int64_t> tail)
{
    return InfoHeader(width, height, bits, compression, 4).U32({ 0x000000, 0xFF0000, 0x00FF00, 0x0000FF }).U8(tail);
}

Bytes LongHeader(int size, int bits, int compression, std::initializer_list<std::int64_t> masks)
{
    Bytes header = Bytes().U32({ size, 1, 1 }).U16({ 1, bits }).U32({ compression, 0, 0, 0, 0, 0 }).U32(masks);
    while (header.size() < size)
        header.U8({ 0 });
    return header;
}

struct DibCase {
    const char* why;
    Bytes dib;
    const char* expected;
};

std::vector<DibCase> DibCases()
{
    Bytes core;
    core.U32({ 12 }).U16({ 2, 1, 1, 24 }).U8({ 0, 0, 255, 0, 255, 0, 0, 0 });
    Bytes core_palette;
    core_palette.U32({ 12 }).U16({ 2, 1, 1, 1 }).U8({ 255, 0, 0, 0, 0, 255, 0b0100'0000, 0, 0, 0 });
    const Bytes fields565 = InfoHeader(2, 1, 16, BI_BITFIELDS).U32({ 0xF800, 0x07E0, 0x001F }).U16({ 0xF800, 0x07E0 });
    return {
        { "24 bits, bottom row first", With(InfoHeader(1, 2, 24), { 0, 0, 255, 0, 0, 255, 0, 0 }), "G/R" },
        { "24 bits, top row first", With(InfoHeader(1, -2, 24), { 0, 0, 255, 0, 0, 255, 0, 0 }), "R/G" },
        { "32 bits, the top byte is nothing", With(InfoHeader(2, 1, 32), { 0, 0, 255, 99, 255, 255, 255, 0 }), "RW" },
        { "16 bits of five each", With(InfoHeader(2, 1, 16), { 0x00, 0x7C, 0x1F, 0x00 }), "RB" },
        { "16 bits by fields", fields565, "RG" },
        { "8 bits", FourColours(3, 1, 8, 0, { 1, 2, 3, 0 }), "RGB" },
        { "8 bits, an index beyond the palette is black", FourColours(3, 1, 8, 0, { 1, 9, 3, 0 }), "R.B" },
        { "4 bits", FourColours(3, 1, 4, 0, { 0x12, 0x30, 0, 0 }), "RGB" },
        { "1 bit", With(InfoHeader(9, 1, 1).U32({ 0x0000FF, 0xFF0000 }), { 0b10100000, 0x80, 0, 0 }), "RBRBBBBBR" },
        { "core header", core, "RG" },
        { "core palette of three bytes a colour", core_palette, "BR" },
        { "V4 with masks of its own", LongHeader(108, 32, BI_BITFIELDS, { 0xFF, 0xFF00, 0xFF0000, 0 }).U32({ 0xFF }),
          "R" },
        { "V5", LongHeader(124, 24, BI_RGB, {}).U32({ 0xFF00 }), "G" },
        { "missing rows are black", With(InfoHeader(1, 3, 24), { 0, 0, 255, 0 }), "././R" },
        { "a missing half of a row is black", With(InfoHeader(2, 1, 24), { 0, 0, 255, 0, 0 }), "R." },
        { "no pixels at all", InfoHeader(2, 1, 24), ".." },
        { "runs of 8 bits", FourColours(4, 2, 8, BI_RLE8, { 3, 1, 0, 0, 2, 2, 0, 1 }), "GG../RRR." },
        { "literal indices are padded", FourColours(4, 1, 8, BI_RLE8, { 0, 3, 1, 2, 3, 0, 1, 2, 0, 1 }), "RGBG" },
        { "a move", FourColours(4, 2, 8, BI_RLE8, { 1, 1, 0, 2, 1, 1, 1, 3, 0, 1 }), "..B./R..." },
        { "a run past the row's end is cut", FourColours(2, 1, 8, BI_RLE8, { 255, 1, 0, 1 }), "RR" },
        { "a move out of the picture", FourColours(2, 1, 8, BI_RLE8, { 0, 2, 255, 255, 2, 1 }), ".." },
        { "runs that stop in the middle", FourColours(4, 1, 8, BI_RLE8, { 2, 1, 0, 9, 2 }), "RRG." },
        { "runs of 4 bits alternate", FourColours(4, 1, 4, BI_RLE4, { 4, 0x12, 0, 1 }), "RGRG" },
        { "literal nibbles", FourColours(4, 1, 4, BI_RLE4, { 0, 3, 0x12, 0x30, 0, 1 }), "RGB." },
        { "nothing", {}, "none" },
        { "no width", InfoHeader(0, 1, 24), "none" },
        { "no height", InfoHeader(1, 0, 24), "none" },
        { "negative width", InfoHeader(-1, 1, 24), "none" },
        { "the most negative height", InfoHeader(1, 0x80000000, 24), "none" },
        { "a size that overflows", InfoHeader(0x7FFFFFFF, 0x7FFFFFFF, 32), "none" },
        { "a large picture of no data", InfoHeader(8192, 8192, 24), "none" },
        { "a depth that is none", InfoHeader(1, 1, 7), "none" },
        { "runs top row first", InfoHeader(1, -1, 8, BI_RLE8), "none" },
        { "a compression unknown", InfoHeader(1, 1, 24, 5), "none" },
        { "a header of an odd size", With(Bytes().U32({ 41 }), { 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0 }), "none" },
        { "more colours than indices", InfoHeader(1, 1, 4, 0, 17), "none" },
        { "masks with holes", InfoHeader(1, 1, 32, BI_BITFIELDS).U32({ 0xF0F0, 0xFF, 0xFF, 0 }), "none" },
        { "masks that are not there", InfoHeader(1, 1, 32, BI_BITFIELDS), "none" },
    };
}

} // namespace

TEST(GdiLoadBitmap, ReadsEveryForm)
{
    for (const DibCase& c : DibCases()) {
        const auto bitmap = win32::bitmap_from_resource(c.dib, win32::Lifetime::passing);
        EXPECT_EQ(LettersOf(win32::add<HBITMAP>(bitmap)), c.expected) << c.why;
    }
}

TEST(GdiLoadBitmap, SurvivesCutsAndLies)
{
    for (const DibCase& c : DibCases()) {
        SCOPED_TRACE(c.why);
        test::ReadCutsAndLies(c.dib, 200, [](win32::Bytes dib) {
            const std::shared_ptr<win32::Bitmap> bitmap = win32::bitmap_from_resource(dib, win32::Lifetime::passing);
            EXPECT_TRUE(!bitmap || win32::is_bitmap_size(bitmap->width(), bitmap->height()));
        });
    }
}

TEST(GdiLoadBitmap, UsesResourcesInPlaceUntilDrawnInto)
{
    const Bytes dib = InfoHeader(3, 2, 24)
                          .U8({ 255, 255, 255, 0, 0, 0, 0, 255, 255, 0, 0, 0 })
                          .U8({ 255, 0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0 });
    const std::shared_ptr<win32::Bitmap> bitmap = win32::bitmap_from_resource(dib, win32::Lifetime::permanent);
    ASSERT_NE(bitmap, nullptr);
    EXPECT_EQ(bitmap->row(0), nullptr) << "nothing is converted yet";

    const Picture picture(win32::add<HBITMAP>(bitmap));
    for (int i = 0; i < 40; i++) {
        const Picture target("...");
        BitBlt(target, 0, 0, 3, 1, picture, 0, 1, SRCCOPY);
        EXPECT_EQ(target.Letters(), "W.Y");
    }
    EXPECT_NE(bitmap->row(1), nullptr) << "copied often, so it is kept";
    EXPECT_EQ(bitmap->row(0), nullptr);
    SetPixel(picture, 0, 1, RGB(255, 0, 0));
    EXPECT_EQ(picture.Letters(), "BGR/R.Y");
}

TEST(GdiLoadBitmap, LoadsFilesAndResources)
{
    const Bytes header = InfoHeader(2, 1, 24);
    const Bytes pixels = Bytes().U8({ 0, 0, 255, 0, 255, 0, 0, 0 });
    Bytes file = Bytes().U8({ 'B', 'M' }).U32({ 0, 0, 14 + 44 }).Add(header);
    file.U8({ 9, 9, 9, 9 }).Add(pixels); // the offset says where they are
    const std::span<const std::byte> bytes = file;
    const test::TempDir folder;
    std::ofstream(folder / "picture.bmp", std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), file.size());
    const auto loaded = [&folder](const char* name, int width = 0, int height = 0) {
        return LettersOf(LoadImageA(nullptr, (folder / name).c_str(), IMAGE_BITMAP, width, height, LR_LOADFROMFILE));
    };
    EXPECT_EQ(loaded("picture.bmp"), "RG");
    EXPECT_EQ(loaded("picture.bmp", 4, 2), "RRGG/RRGG");
    EXPECT_EQ(loaded("no such file"), "none");
    EXPECT_EQ(loaded("."), "none") << "a folder";

    const test::WithResources resources({ Resource(2, 131, Bytes(header).Add(pixels)) });
    EXPECT_EQ(LettersOf(LoadBitmapA(nullptr, MAKEINTRESOURCEA(131))), "RG");
    EXPECT_EQ(LettersOf(LoadBitmapA(nullptr, MAKEINTRESOURCEA(132))), "none");
}
