#include "tests/platform/win32/gdi/DibBytes.h"
#include "tests/support/Picture.h"

#include "platform/win32/gdi/icon.h"

#include <gtest/gtest.h>

#include <winbase.h>

using test::Bytes;
using test::IconOf;
using test::InfoHeader;
using test::Picture;

namespace {

// Two by two, 24 bits: red green / blue white; the mask lets what is below shine through at the green pixel.
const Bytes kMaskedImage = InfoHeader(2, 4, 24)
                               .U8({ 255, 0, 0, 255, 255, 255, 0, 0, 0, 0, 255, 0, 0, 0, 0, 0 }) // black, not green
                               .U8({ 0, 0, 0, 0, 0b0100'0000, 0, 0, 0 });
// Two by one, 32 bits: opaque red and green of half an opacity.
const Bytes kAlphaImage = InfoHeader(2, 2, 32).U8({ 0, 0, 255, 255, 0, 255, 0, 128, 0, 0, 0, 0 });

struct Image {
    int width; // and height, as the directory says
    Bytes dib;
};

Bytes IconFile(const std::vector<Image>& images)
{
    Bytes file = Bytes().U16({ 0, 1, static_cast<std::int64_t>(images.size()) });
    std::int64_t offset = 6 + 16 * static_cast<std::int64_t>(images.size());
    for (const Image& image : images) {
        file.U8({ image.width, image.width, 0, 0 }).U16({ 1, 32 }).U32({ image.dib.size(), offset });
        offset += image.dib.size();
    }
    for (const Image& image : images)
        file.Add(image.dib);
    return file;
}

// The picture `below` with the icon drawn on it; 0 by 0: in its own size.
std::string Drawn(HICON icon, const char* below, UINT flags = DI_NORMAL, int width = 0, int height = 0,
                  HBRUSH brush = nullptr, DWORD layout = 0)
{
    const Picture target(below);
    SetLayout(target, layout);
    EXPECT_TRUE(DrawIconEx(target, 0, 0, icon, width, height, 0, brush, flags));
    return target.Letters();
}

} // namespace

TEST(GdiIcon, DrawsImageMaskAndBoth)
{
    const HICON icon = win32::add_icon(win32::icon_from_image(kMaskedImage));
    EXPECT_EQ(Drawn(icon, "YY/YY"), "RY/BW");
    EXPECT_EQ(Drawn(icon, "YY/YY", DI_IMAGE), "R./BW");
    EXPECT_EQ(Drawn(icon, "YY/YY", DI_MASK), ".W/..");
    EXPECT_EQ(Drawn(icon, "YYYY/YYYY", DI_NORMAL, 4, 2), "RRYY/BBWW");
    EXPECT_EQ(Drawn(icon, "YYY/YYY", DI_NORMAL, 0, 0, nullptr, LAYOUT_RTL), "YYR/YWB");
    const auto white = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
    EXPECT_EQ(Drawn(icon, "YY/YY", DI_NORMAL, 0, 0, white), "RW/BW");
    const Picture picture(2, 2);
    EXPECT_FALSE(DrawIconEx(picture, 0, 0, icon, 0, 0, 1, nullptr, DI_NORMAL)) << "there is no second frame";
    EXPECT_TRUE(DestroyIcon(icon));
    EXPECT_FALSE(DrawIconEx(picture, 0, 0, icon, 0, 0, 0, nullptr, DI_NORMAL));
    EXPECT_FALSE(DestroyIcon(icon));
}

TEST(GdiIcon, LaysAlphaOver)
{
    const HICON icon = win32::add_icon(win32::icon_from_image(kAlphaImage));
    // The image alone carries the alpha on into an icon made of it.
    const Picture image("..");
    DrawIconEx(image, 0, 0, icon, 0, 0, 0, nullptr, DI_IMAGE);
    const Picture mask(2, 1, 1);
    const HICON second = IconOf(image.bitmap(), mask.bitmap());
    for (const HICON each : { icon, second }) {
        const Picture target("WB");
        DrawIconEx(target, 0, 0, each, 0, 0, 0, nullptr, DI_NORMAL);
        EXPECT_EQ(target.Pixels(), (std::vector<COLORREF>{ RGB(255, 0, 0), RGB(0, 128, 127) }));
        DestroyIcon(each);
    }
}

TEST(GdiIcon, GivesItsBitmapsOut)
{
    const HICON icon = win32::add_icon(win32::icon_from_image(kMaskedImage));
    ICONINFO info{};
    ASSERT_TRUE(GetIconInfo(icon, &info));
    EXPECT_TRUE(info.fIcon);
    EXPECT_EQ(info.xHotspot, 1U);
    const HICON copy = CreateIconIndirect(&info);
    EXPECT_TRUE(DeleteObject(info.hbmMask));
    EXPECT_TRUE(DeleteObject(info.hbmColor));
    DestroyIcon(icon);
    EXPECT_EQ(Drawn(copy, "YY/YY"), "RY/BW");
    const HICON shared = CopyIcon(copy);
    DestroyIcon(copy);
    EXPECT_EQ(Drawn(shared, "YY/YY"), "RY/BW");
    DestroyIcon(shared);
    EXPECT_FALSE(GetIconInfo(shared, &info));
}

TEST(GdiIcon, WithoutColoursKeepsTheImageBelowTheMask)
{
    // Keep, invert, black, white: the four pairs of mask and image.
    const BYTE bits[] = { 0b1100'0000, 0, 0b0101'0000, 0 };
    const Picture mask(4, 2, 1, bits);
    const HICON icon = IconOf(nullptr, mask.bitmap());
    EXPECT_EQ(Drawn(icon, "YYYY"), "YB.W");
    const HICON wide = win32::add_icon(win32::sized_icon(win32::find_icon(icon), 8, 1));
    EXPECT_EQ(Drawn(wide, "YYYYYYYY"), "YYBB..WW");
    DestroyIcon(wide);
    ICONINFO out{};
    ASSERT_TRUE(GetIconInfo(icon, &out));
    EXPECT_EQ(out.hbmColor, nullptr);
    DeleteObject(out.hbmMask);
    DestroyIcon(icon);
}

TEST(GdiIcon, ChoosesTheNearestImageThatCanBeRead)
{
    const auto solid = [](int size, std::int64_t pixel) {
        Bytes dib = InfoHeader(size, 2 * size, 32);
        for (int i = 0; i < size * size; i++)
            dib.U32({ pixel });
        return Image{ size, dib };
    };
    const Image png{ 48, Bytes().U8({ 0x89, 'P', 'N', 'G', 13, 10, 26, 10 }) };
    const Bytes file = IconFile({ solid(16, 0xFFFF0000), solid(32, 0xFF00FF00), png, solid(64, 0xFF0000FF) });
    struct Case {
        int size;
        std::uint32_t pixel;
    };
    for (const Case& c : { Case{ 16, 0xFFFF0000 }, Case{ 20, 0xFFFF0000 }, Case{ 24, 0xFF00FF00 },
                           Case{ 48, 0xFF0000FF }, Case{ 256, 0xFF0000FF }, Case{ 0, 0xFFFF0000 } }) {
        SCOPED_TRACE(c.size);
        const std::shared_ptr<const win32::Icon> icon = win32::icon_from_file(file, c.size, c.size);
        ASSERT_NE(icon, nullptr);
        std::uint32_t pixel = 0;
        icon->colour->read(0, 0, 1, &pixel);
        EXPECT_EQ(pixel, c.pixel);
    }
}

TEST(GdiIcon, SurvivesCutsAndLies)
{
    EXPECT_NE(win32::icon_from_image(InfoHeader(1024, 2, 32)), nullptr);
    EXPECT_EQ(win32::icon_from_image(InfoHeader(1025, 2, 32)), nullptr) << "no icon is as large";
    EXPECT_EQ(win32::icon_from_image(InfoHeader(1, 2 * 1025, 1)), nullptr);
    test::ReadCutsAndLies(IconFile({ { 2, kMaskedImage }, { 2, kAlphaImage } }), 1000, [](win32::Bytes file) {
        const std::shared_ptr<const win32::Icon> icon = win32::icon_from_file(file, 16, 16);
        EXPECT_TRUE(!icon || icon->height() == icon->colour->height());
    });
}

TEST(GdiIcon, LoadsSharedIconsOnce)
{
    Bytes group = Bytes().U16({ 0, 1, 1 }).U8({ 2, 1, 0, 0 }).U16({ 1, 32 }).U32({ kAlphaImage.size() }).U16({ 7 });
    const test::WithResources resources({ Resource(3, 7, kAlphaImage), Resource(14, 128, group) });
    const HICON icon = LoadIconA(nullptr, MAKEINTRESOURCEA(128));
    EXPECT_NE(icon, nullptr);
    EXPECT_EQ(LoadIconA(nullptr, MAKEINTRESOURCEA(128)), icon);
    EXPECT_TRUE(DestroyIcon(icon)) << "it is shared and stays";
    EXPECT_EQ(win32::find_icon(icon)->width(), 32);
    const auto small = static_cast<HICON>(LoadImageA(nullptr, MAKEINTRESOURCEA(128), IMAGE_ICON, 2, 1, 0));
    EXPECT_EQ(Drawn(small, "..", DI_IMAGE), "RG");
    EXPECT_TRUE(DestroyIcon(small));
    EXPECT_EQ(LoadIconA(nullptr, MAKEINTRESOURCEA(129)), nullptr);
}
