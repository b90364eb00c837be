#include "tests/platform/win32/gdi/DibBytes.h"
#include "tests/platform/win32/gdi/Pictures.h"

#include "platform/win32/gdi/icon.h"
#include "platform/win32/kernel/program_resources.h"

#include <gtest/gtest.h>

#include <winbase.h>

#include <random>

using test::Bytes;
using test::InfoHeader;
using test::Picture;

namespace {

// An icon file of these images, each two pixels wide unless the directory says otherwise.
struct Image {
    int width;
    int bits;
    Bytes dib;
};

Bytes IconFile(const std::vector<Image>& images)
{
    Bytes file;
    file.U16({ 0, 1, static_cast<unsigned>(images.size()) });
    std::size_t offset = 6 + 16 * images.size();
    for (const Image& image : images) {
        file.U8({ image.width, image.width, 0, 0 }).U16({ 1, static_cast<unsigned>(image.bits) });
        file.U32({ static_cast<std::int64_t>(image.dib.size()), static_cast<std::int64_t>(offset) });
        offset += image.dib.size();
    }
    for (const Image& image : images)
        file.Add(image.dib);
    return file;
}

// Two by two, 24 bits: red green / blue white; the mask lets what is below shine through at the green pixel.
Bytes MaskedImage()
{
    Bytes dib = InfoHeader(2, 4, 24);
    dib.U8({ 255, 0, 0, 255, 255, 255, 0, 0 }).U8({ 0, 0, 255, 0, 0, 0, 0, 0 }); // the masked pixel's colour is black
    dib.U8({ 0, 0, 0, 0 }).U8({ 0b0100'0000, 0, 0, 0 });
    return dib;
}

// Two by one, 32 bits: opaque red and green of half an opacity.
Bytes AlphaImage()
{
    Bytes dib = InfoHeader(2, 2, 32);
    dib.U8({ 0, 0, 255, 255, 0, 255, 0, 128 }).U8({ 0, 0, 0, 0 });
    return dib;
}

// The first mismatch is easier to read in letters than in handles.
std::string Drawn(HICON icon, const char* below, int width, int height, UINT flags)
{
    const Picture target(below);
    EXPECT_TRUE(DrawIconEx(target.dc(), 0, 0, icon, width, height, 0, nullptr, flags));
    return target.Letters();
}

} // namespace

TEST(GdiIcon, DrawsImageMaskAndBoth)
{
    const HICON icon = win32::add_icon(win32::icon_from_image(MaskedImage()));
    ASSERT_NE(icon, nullptr);
    EXPECT_EQ(Drawn(icon, "YY/YY", 0, 0, DI_NORMAL), "RY/BW");
    EXPECT_EQ(Drawn(icon, "YY/YY", 0, 0, DI_IMAGE), "R./BW");
    EXPECT_EQ(Drawn(icon, "YY/YY", 0, 0, DI_MASK), ".W/..");
    EXPECT_EQ(Drawn(icon, "YYYY/YYYY", 4, 2, DI_NORMAL), "RRYY/BBWW");
    const Picture mirrored("YYY/YYY");
    SetLayout(mirrored.dc(), LAYOUT_RTL);
    DrawIconEx(mirrored.dc(), 0, 0, icon, 0, 0, 0, nullptr, DI_NORMAL);
    EXPECT_EQ(mirrored.Letters(), "YYR/YWB");
    const Picture brushed("YY/YY");
    DrawIconEx(brushed.dc(), 0, 0, icon, 0, 0, 0, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)), DI_NORMAL);
    EXPECT_EQ(brushed.Letters(), "RW/BW");
    EXPECT_FALSE(DrawIconEx(brushed.dc(), 0, 0, icon, 0, 0, 1, nullptr, DI_NORMAL)) << "there is no second frame";
    EXPECT_TRUE(DestroyIcon(icon));
    EXPECT_FALSE(DrawIconEx(brushed.dc(), 0, 0, icon, 0, 0, 0, nullptr, DI_NORMAL));
    EXPECT_FALSE(DestroyIcon(icon));
}

TEST(GdiIcon, LaysAlphaOver)
{
    const HICON icon = win32::add_icon(win32::icon_from_image(AlphaImage()));
    const Picture target("WB");
    DrawIconEx(target.dc(), 0, 0, icon, 0, 0, 0, nullptr, DI_NORMAL);
    EXPECT_EQ(GetPixel(target.dc(), 0, 0), RGB(255, 0, 0));
    EXPECT_EQ(GetPixel(target.dc(), 1, 0), RGB(0, 128, 127));

    // The image alone carries the alpha on into an icon made of it.
    const Picture image("..");
    DrawIconEx(image.dc(), 0, 0, icon, 0, 0, 0, nullptr, DI_IMAGE);
    const HBITMAP mask = CreateBitmap(2, 1, 1, 1, nullptr);
    const ICONINFO info{ TRUE, 0, 0, mask, image.bitmap() };
    const HICON second = CreateIconIndirect(&info);
    DeleteObject(mask);
    const Picture again("WB");
    DrawIconEx(again.dc(), 0, 0, second, 0, 0, 0, nullptr, DI_NORMAL);
    EXPECT_EQ(GetPixel(again.dc(), 1, 0), RGB(0, 128, 127));
    DestroyIcon(icon);
    DestroyIcon(second);
}

TEST(GdiIcon, GivesItsBitmapsOut)
{
    const HICON icon = win32::add_icon(win32::icon_from_image(MaskedImage()));
    ICONINFO info{};
    ASSERT_TRUE(GetIconInfo(icon, &info));
    EXPECT_TRUE(info.fIcon);
    EXPECT_EQ(info.xHotspot, 1U);
    const HICON copy = CreateIconIndirect(&info);
    EXPECT_TRUE(DeleteObject(info.hbmMask));
    EXPECT_TRUE(DeleteObject(info.hbmColor));
    DestroyIcon(icon);
    EXPECT_EQ(Drawn(copy, "YY/YY", 0, 0, DI_NORMAL), "RY/BW");
    const HICON shared = CopyIcon(copy);
    DestroyIcon(copy);
    EXPECT_EQ(Drawn(shared, "YY/YY", 0, 0, DI_NORMAL), "RY/BW");
    DestroyIcon(shared);
    EXPECT_FALSE(GetIconInfo(shared, &info));
}

TEST(GdiIcon, WithoutColoursKeepsTheImageBelowTheMask)
{
    // Keep, invert, black, white: the four pairs of mask and image.
    const BYTE bits[] = { 0b1100'0000, 0, 0b0101'0000, 0 };
    const HBITMAP mask = CreateBitmap(4, 2, 1, 1, bits);
    const ICONINFO info{ TRUE, 0, 0, mask, nullptr };
    const HICON icon = CreateIconIndirect(&info);
    DeleteObject(mask);
    EXPECT_EQ(Drawn(icon, "YYYY", 0, 0, DI_NORMAL), "YB.W");
    ICONINFO out{};
    ASSERT_TRUE(GetIconInfo(icon, &out));
    EXPECT_EQ(out.hbmColor, nullptr);
    DeleteObject(out.hbmMask);
    DestroyIcon(icon);
}

TEST(GdiIcon, ChoosesTheNearestImageThatCanBeRead)
{
    const auto solid = [](int size, int red, int green, int blue) {
        Bytes dib = InfoHeader(size, 2 * size, 32);
        for (int i = 0; i < size * size; i++)
            dib.U8({ blue, green, red, 255 });
        for (int i = 0; i < size; i++)
            dib.U32({ 0 });
        return dib;
    };
    Bytes png;
    png.U8({ 0x89, 'P', 'N', 'G', 13, 10, 26, 10 });
    const Bytes file = IconFile({ { 16, 32, solid(16, 255, 0, 0) },
                                  { 32, 32, solid(32, 0, 255, 0) },
                                  { 48, 32, png },
                                  { 64, 32, solid(64, 0, 0, 255) } });
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
    std::mt19937 chance(5);
    const Bytes file = IconFile({ { 2, 24, MaskedImage() }, { 2, 32, AlphaImage() } });
    const std::span<const std::byte> whole = file;
    for (std::size_t length = 0; length <= whole.size(); length++)
        win32::icon_from_file(std::vector(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)), 16, 16);
    for (int i = 0; i < 1000; i++) {
        std::vector lie(whole.begin(), whole.end());
        for (int change = 0; change < 3; change++)
            lie[chance() % lie.size()] = static_cast<std::byte>(chance() % 3 ? chance() : 0xFF);
        const std::shared_ptr<const win32::Icon> icon = win32::icon_from_file(lie, 16, 16);
        EXPECT_TRUE(!icon || icon->height() == icon->colour->height());
    }
}

TEST(GdiIcon, LoadsSharedIconsOnce)
{
    const Bytes image = AlphaImage();
    Bytes group;
    group.U16({ 0, 1, 1 })
        .U8({ 2, 1, 0, 0 })
        .U16({ 1, 32 })
        .U32({ static_cast<std::int64_t>(image.size()) })
        .U16({ 7 });
    Bytes resources;
    const auto add = [&resources](unsigned type, unsigned name, const Bytes& data) {
        resources.U32({ static_cast<std::int64_t>(data.size()), 32 }).U16({ 0xFFFF, type, 0xFFFF, name });
        resources.U32({ 0, 0, 0, 0 }).Add(data);
        while (resources.size() % 4 != 0)
            resources.U8({ 0 });
    };
    add(0, 0, {});
    add(3, 7, image);
    add(14, 128, group);
    const win32::ProgramResources before = win32::exchange_program_resources({ resources, false });
    const HICON icon = LoadIconA(nullptr, MAKEINTRESOURCEA(128));
    EXPECT_NE(icon, nullptr);
    EXPECT_EQ(LoadIconA(nullptr, MAKEINTRESOURCEA(128)), icon);
    EXPECT_TRUE(DestroyIcon(icon)) << "it is shared and stays";
    ICONINFO info{};
    ASSERT_TRUE(GetIconInfo(icon, &info));
    BITMAP description{};
    GetObjectA(info.hbmColor, sizeof description, &description);
    EXPECT_EQ(description.bmWidth, 32);
    DeleteObject(info.hbmColor);
    DeleteObject(info.hbmMask);
    const auto small = static_cast<HICON>(LoadImageA(nullptr, MAKEINTRESOURCEA(128), IMAGE_ICON, 2, 1, 0));
    EXPECT_EQ(Drawn(small, "..", 0, 0, DI_IMAGE), "RG");
    EXPECT_TRUE(DestroyIcon(small));
    EXPECT_EQ(LoadIconA(nullptr, MAKEINTRESOURCEA(129)), nullptr);
    win32::exchange_program_resources(before);
}
