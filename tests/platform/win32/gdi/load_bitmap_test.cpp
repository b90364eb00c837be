#include "tests/platform/win32/gdi/DibBytes.h"
#include "tests/platform/win32/gdi/Pictures.h"
#include "tests/support/TestHome.h"

#include "platform/win32/gdi/bitmap.h"
#include "platform/win32/gdi/dib.h"
#include "platform/win32/kernel/program_resources.h"

#include <gtest/gtest.h>

#include <winbase.h>

#include <fstream>
#include <random>

using test::Bytes;
using test::InfoHeader;

namespace {

// The letters of a bitmap, "none" for null. Takes the bitmap.
std::string LettersOf(std::shared_ptr<win32::Bitmap> bitmap)
{
    if (!bitmap)
        return "none";
    const int width = bitmap->width();
    const int height = bitmap->height();
    const HBITMAP handle = win32::add<HBITMAP>(std::move(bitmap));
    const HDC dc = CreateCompatibleDC(nullptr);
    const HGDIOBJ previous = SelectObject(dc, handle);
    std::string letters = test::LettersOf(dc, width, height);
    SelectObject(dc, previous);
    DeleteDC(dc);
    DeleteObject(handle);
    return letters;
}

std::string Loaded(const Bytes& resource)
{
    return LettersOf(win32::bitmap_from_resource(resource, win32::Lifetime::passing));
}

Bytes With(Bytes header, std::initializer_list<int> tail)
{
    return header.U8(tail);
}

// Four colours: black, red, green, blue.
Bytes FourColours(Bytes header)
{
    return header.U32({ 0x000000, 0xFF0000, 0x00FF00, 0x0000FF });
}

Bytes LongHeader(std::int64_t size, std::int64_t width, std::int64_t height, unsigned bits, unsigned compression,
                 std::initializer_list<std::int64_t> masks)
{
    Bytes header;
    header.U32({ size, width, height }).U16({ 1, bits }).U32({ compression, 0, 0, 0, 0, 0 }).U32(masks);
    while (header.size() < static_cast<std::size_t>(size))
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
        { "8 bits", With(FourColours(InfoHeader(3, 1, 8, 0, 4)), { 1, 2, 3, 0 }), "RGB" },
        { "8 bits, an index beyond the palette is black", With(FourColours(InfoHeader(3, 1, 8, 0, 4)), { 1, 9, 3, 0 }),
          "R.B" },
        { "4 bits", With(FourColours(InfoHeader(3, 1, 4, 0, 4)), { 0x12, 0x30, 0, 0 }), "RGB" },
        { "1 bit", With(InfoHeader(9, 1, 1).U32({ 0x0000FF, 0xFF0000 }), { 0b10100000, 0x80, 0, 0 }), "RBRBBBBBR" },
        { "core header", core, "RG" },
        { "core palette of three bytes a colour", core_palette, "BR" },
        { "V4 with masks of its own",
          LongHeader(108, 1, 1, 32, BI_BITFIELDS, { 0xFF, 0xFF00, 0xFF0000, 0 }).U32({ 0xFF }), "R" },
        { "V5", LongHeader(124, 1, 1, 24, BI_RGB, {}).U32({ 0xFF00 }), "G" },
        { "missing rows are black", With(InfoHeader(1, 3, 24), { 0, 0, 255, 0 }), "././R" },
        { "a missing half of a row is black", With(InfoHeader(2, 1, 24), { 0, 0, 255, 0, 0 }), "R." },
        { "no pixels at all", InfoHeader(2, 1, 24), ".." },
        { "runs of 8 bits", With(FourColours(InfoHeader(4, 2, 8, BI_RLE8, 4)), { 3, 1, 0, 0, 2, 2, 0, 1 }),
          "GG../RRR." },
        { "literal indices are padded",
          With(FourColours(InfoHeader(4, 1, 8, BI_RLE8, 4)), { 0, 3, 1, 2, 3, 0, 1, 2, 0, 1 }), "RGBG" },
        { "a move", With(FourColours(InfoHeader(4, 2, 8, BI_RLE8, 4)), { 1, 1, 0, 2, 1, 1, 1, 3, 0, 1 }), "..B./R..." },
        { "a run past the row's end is cut", With(FourColours(InfoHeader(2, 1, 8, BI_RLE8, 4)), { 255, 1, 0, 1 }),
          "RR" },
        { "a move out of the picture", With(FourColours(InfoHeader(2, 1, 8, BI_RLE8, 4)), { 0, 2, 255, 255, 2, 1 }),
          ".." },
        { "runs that stop in the middle", With(FourColours(InfoHeader(4, 1, 8, BI_RLE8, 4)), { 2, 1, 0, 9, 2 }),
          "RRG." },
        { "runs of 4 bits alternate", With(FourColours(InfoHeader(4, 1, 4, BI_RLE4, 4)), { 4, 0x12, 0, 1 }), "RGRG" },
        { "literal nibbles", With(FourColours(InfoHeader(4, 1, 4, BI_RLE4, 4)), { 0, 3, 0x12, 0x30, 0, 1 }), "RGB." },
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

// Bytes that end where a page begins that must not be read would be better still; a vector of the exact size lets the
// sanitizer see it.
std::vector<std::byte> Exactly(std::span<const std::byte> bytes)
{
    return { bytes.begin(), bytes.end() };
}

} // namespace

TEST(GdiLoadBitmap, ReadsEveryForm)
{
    for (const DibCase& c : DibCases()) {
        SCOPED_TRACE(c.why);
        EXPECT_EQ(Loaded(c.dib), c.expected);
    }
}

TEST(GdiLoadBitmap, SurvivesCutsAndLies)
{
    std::mt19937 chance(20);
    for (const DibCase& c : DibCases()) {
        SCOPED_TRACE(c.why);
        const std::span<const std::byte> whole = c.dib;
        for (std::size_t length = 0; length <= whole.size(); length++)
            win32::bitmap_from_resource(Exactly(whole.first(length)), win32::Lifetime::passing);
        for (int i = 0; i < 200 && !whole.empty(); i++) {
            std::vector<std::byte> lie = Exactly(whole);
            lie[chance() % lie.size()] = static_cast<std::byte>(chance());
            lie[chance() % lie.size()] = static_cast<std::byte>(chance() % 2 ? 0xFF : 0x7F);
            const std::shared_ptr<win32::Bitmap> bitmap = win32::bitmap_from_resource(lie, win32::Lifetime::passing);
            EXPECT_TRUE(!bitmap || win32::is_bitmap_size(bitmap->width(), bitmap->height()));
        }
    }
}

TEST(GdiLoadBitmap, UsesResourcesInPlaceUntilDrawnInto)
{
    Bytes dib = InfoHeader(3, 2, 24);
    dib.U8({ 255, 0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0 }).U8({ 255, 255, 255, 0, 0, 0, 0, 255, 255, 0, 0, 0 });
    const std::shared_ptr<win32::Bitmap> bitmap = win32::bitmap_from_resource(dib, win32::Lifetime::permanent);
    ASSERT_NE(bitmap, nullptr);
    EXPECT_EQ(bitmap->row(0), nullptr) << "nothing is converted yet";

    const HBITMAP handle = win32::add<HBITMAP>(bitmap);
    const HDC dc = CreateCompatibleDC(nullptr);
    const HGDIOBJ previous = SelectObject(dc, handle);
    for (int i = 0; i < 40; i++) {
        const test::Picture target("...");
        BitBlt(target.dc(), 0, 0, 3, 1, dc, 0, 0, SRCCOPY);
        EXPECT_EQ(target.Letters(), "W.Y");
    }
    EXPECT_NE(bitmap->row(0), nullptr) << "copied often, so it is kept";
    EXPECT_EQ(bitmap->row(1), nullptr);
    SetPixel(dc, 0, 1, RGB(255, 0, 0));
    EXPECT_EQ(test::LettersOf(dc, 3, 2), "W.Y/RGR");
    SelectObject(dc, previous);
    DeleteDC(dc);
    DeleteObject(handle);
}

TEST(GdiLoadBitmap, LoadsFilesAndResources)
{
    const Bytes dib = With(InfoHeader(2, 1, 24), { 0, 0, 255, 0, 255, 0, 0, 0 });
    const test::TempDir folder;
    const std::string path = folder / "picture.bmp";
    const Bytes file = test::BitmapFile(dib, 40);
    const std::span<const std::byte> bytes = file;
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    const auto as_letters = [](HANDLE handle) {
        if (!handle)
            return std::string("none");
        std::string letters = LettersOf(win32::find<win32::Bitmap>(handle));
        DeleteObject(handle);
        return letters;
    };
    EXPECT_EQ(as_letters(LoadImageA(nullptr, path.c_str(), IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE)), "RG");
    EXPECT_EQ(as_letters(LoadImageA(nullptr, path.c_str(), IMAGE_BITMAP, 4, 2, LR_LOADFROMFILE)), "RRGG/RRGG");
    EXPECT_EQ(as_letters(LoadImageA(nullptr, "no such file", IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE)), "none");
    EXPECT_EQ(as_letters(LoadImageA(nullptr, folder.path().c_str(), IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE)), "none");

    Bytes resources;
    resources.U32({ 0, 32 }).U16({ 0xFFFF, 0, 0xFFFF, 0 }).U32({ 0, 0, 0, 0 });
    resources.U32({ static_cast<std::int64_t>(dib.size()), 32 })
        .U16({ 0xFFFF, 2, 0xFFFF, 131 })
        .U32({ 0, 0, 0, 0 })
        .Add(dib);
    const win32::ProgramResources before = win32::exchange_program_resources({ resources, false });
    EXPECT_EQ(as_letters(LoadBitmapA(nullptr, MAKEINTRESOURCEA(131))), "RG");
    EXPECT_EQ(as_letters(LoadBitmapA(nullptr, MAKEINTRESOURCEA(132))), "none");
    win32::exchange_program_resources(before);
}
