// The pages' bitmap as the installer will read it.
#include "tools/pictures/Pictures.h"

#include "tests/support/TestHome.h"

#include <set>

#include <gtest/gtest.h>

namespace {

std::uint32_t At(const std::string& strFile, std::size_t nAt, int nBytes)
{
    std::uint32_t nValue = 0;
    for (int i = nBytes - 1; i >= 0; --i)
        nValue = nValue << 8 | static_cast<unsigned char>(strFile.at(nAt + static_cast<std::size_t>(i)));
    return nValue;
}

// The bitmap that the build made, with the pixel at a place as 0xRRGGBB.
class Skin {
public:
    Skin() : m_strFile(test::read_file(SKIN_BITMAP)) {}

    const std::string& File() const { return m_strFile; }

    std::uint32_t Pixel(int x, int y) const
    {
        constexpr int kRowBytes = 1532; // 510 pixels of three bytes, rounded up to four
        return At(m_strFile, 54 + static_cast<std::size_t>((1425 - y) * kRowBytes + x * 3), 3);
    }

    // The pixels of a rectangle, to compare two looks of one thing.
    std::vector<std::uint32_t> Pixels(int x, int y, int cx, int cy) const
    {
        std::vector<std::uint32_t> pixels;
        pixels.reserve(static_cast<std::size_t>(cx) * static_cast<std::size_t>(cy));
        for (int i = 0; i < cx * cy; ++i)
            pixels.push_back(Pixel(x + i % cx, y + i / cx));
        return pixels;
    }

private:
    std::string m_strFile;
};

TEST(SkinBitmap, HasTheSizeAndFormThatTheSkinCutsFrom)
{
    const Skin skin;
    EXPECT_EQ(skin.File().substr(0, 2), "BM");
    EXPECT_EQ(At(skin.File(), 2, 4), skin.File().size());
    EXPECT_EQ(At(skin.File(), 18, 4), 510u);
    EXPECT_EQ(At(skin.File(), 22, 4), 1426u) << "from the foot up";
    EXPECT_EQ(At(skin.File(), 28, 2), 24u);
    EXPECT_EQ(skin.File().size(), 54u + 1532u * 1426u);
}

TEST(SkinBitmap, LeavesRoomForWhatTheInstallerDraws)
{
    const struct {
        const char* why;
        int x, y, cx, cy;
        std::uint32_t crGround;
    } rooms[] = {
        { "busy squares", 128, 175, 250, 10, 0xFFFFFF },
        { "the error text", 128, 185, 300, 30, 0xFFFFFF },
        { "the file's name", 100, 2 * 349 + 240, 370, 14, 0xFFFFFF },
        { "the bar", 30, 2 * 349 + 258, 444, 8, 0xE3EAF1 },
    };
    const Skin skin;
    for (const auto& room : rooms) {
        const auto pixels = skin.Pixels(room.x, room.y, room.cx, room.cy);
        EXPECT_EQ(std::set<std::uint32_t>(pixels.begin(), pixels.end()), std::set{ room.crGround }) << room.why;
    }
}

TEST(SkinBitmap, ShowsEveryButtonInTwoLooks)
{
    const struct {
        const char* why;
        int nPage, xPage, yPage, xHover, cx, cy;
    } looks[] = {
        { "install", 1, 302, 288, 20, 78, 30 },
        { "leave, when ready", 1, 392, 288, 100, 78, 30 },
        { "finish", 3, 302, 288, 180, 78, 30 },
        { "leave, when finished", 3, 392, 288, 260, 78, 30 },
        { "start now, hovered", 3, 31, 146, 350, 13, 13 },
        { "start now, off", 3, 31, 146, 370, 13, 13 },
        { "start with system, hovered", 3, 31, 174, 350, 13, 13 },
    };
    const Skin skin;
    for (const auto& look : looks) {
        const int yPage = look.nPage * 349 + look.yPage;
        EXPECT_NE(skin.Pixels(look.xPage, yPage, look.cx, look.cy), skin.Pixels(look.xHover, 1396, look.cx, look.cy))
            << look.why;
    }
    // A failed check shows the leave button on the first page, cut from the second: the ground must be one.
    EXPECT_EQ(skin.Pixel(391, 303), skin.Pixel(391, 349 + 303));
}

TEST(SkinBitmap, HasFourPagesAndABarColumn)
{
    const Skin skin;
    std::set<std::vector<std::uint32_t>> headings;
    for (int nPage = 0; nPage < 4; ++nPage)
        headings.insert(skin.Pixels(30, nPage * 349 + 50, 160, 30));
    EXPECT_EQ(headings.size(), 4u);
    for (int y = 0; y < 8; ++y)
        EXPECT_NE(skin.Pixel(0, 1396 + y), 0xE3EAF1u) << "the bar cannot be told from its ground in row " << y;
}

TEST(Icon, HoldsThreeSizes)
{
    const std::string strIcon = test::read_file(SETUP_ICON);
    ASSERT_EQ(At(strIcon, 4, 2), 3u);
    for (std::size_t i = 0; i < 3; ++i) {
        const std::size_t nImage = At(strIcon, 6 + 16 * i + 12, 4);
        const std::uint32_t nWidth = At(strIcon, 6 + 16 * i, 1);
        EXPECT_EQ(At(strIcon, nImage + 4, 4), nWidth);
        EXPECT_EQ(At(strIcon, nImage + 8, 4), 2 * nWidth) << "the mask counts";
        EXPECT_LE(nImage + At(strIcon, 6 + 16 * i + 8, 4), strIcon.size());
    }
}

TEST(Sheet, IsRefusedWhenAFileIsMissingOrNoSvg)
{
    const test::TempDir dir;
    const pictures::Sheet sheet{ "one", 10, { { 10, { "under", "over" } } } };
    const std::string strEmpty = "<svg xmlns=\"http://www.w3.org/2000/svg\"/>";
    test::write_file(dir / "under.svg", strEmpty);
    std::string strError;
    EXPECT_TRUE(pictures::DrawSheet(sheet, dir.path(), &strError).empty());
    test::write_file(dir / "over.svg", "<svg");
    EXPECT_TRUE(pictures::DrawSheet(sheet, dir.path(), &strError).empty());
    EXPECT_NE(strError.find("over.svg"), std::string::npos);
    test::write_file(dir / "over.svg", strEmpty);
    EXPECT_EQ(pictures::DrawSheet(sheet, dir.path(), &strError).size(), 1u);
}

} // namespace
