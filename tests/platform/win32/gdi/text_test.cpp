#include "tests/support/Picture.h"
#include "tests/support/TestHome.h"

#include "platform/win32/gdi/text_engine.h"
#include "platform/win32/kernel/code_page.h"

#include <gtest/gtest.h>

#include <winbase.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>

using test::Picture;
using test::Selected;

namespace {

constexpr const char* kSong = "\xCB\xCE\xCC\xE5";    // 宋体
constexpr const char* kInstall = "\xB0\xB2\xD7\xB0"; // 安装
constexpr const char* kSans = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";

// The same two folders of faces on every machine.
const bool kFolders = [] {
    win32::set_font_folders({ "/usr/share/fonts/truetype/dejavu", "/usr/share/fonts/truetype/wqy" });
    return true;
}();

HFONT FontOf(int height, const char* face = "Tahoma", int weight = FW_NORMAL, DWORD underline = FALSE)
{
    return CreateFontA(height, 0, 0, 0, weight, 0, underline, 0, DEFAULT_CHARSET, 0, 0, 0, 0, face);
}

SIZE Extent(HDC dc, const char* text)
{
    SIZE size{ -1, -1 };
    EXPECT_TRUE(GetTextExtentPoint32A(dc, text, static_cast<int>(std::strlen(text)), &size));
    return size;
}

void Put(HDC dc, int x, int y, const char* text)
{
    EXPECT_TRUE(TextOutA(dc, x, y, text, static_cast<int>(std::strlen(text))));
}

void UseWhiteText(HDC dc)
{
    SetTextColor(dc, RGB(255, 255, 255));
    SetBkMode(dc, TRANSPARENT);
}

// The columns and rows that are not black.
RECT Ink(const Picture& picture)
{
    const std::vector<COLORREF> pixels = picture.Pixels();
    RECT ink{ INT_MAX, INT_MAX, 0, 0 };
    for (int i = 0; i < static_cast<int>(pixels.size()); i++) {
        if (pixels[static_cast<std::size_t>(i)] == 0)
            continue;
        const LONG x = i % picture.width(), y = i / picture.width();
        ink = { std::min(ink.left, x), std::min(ink.top, y), std::max(ink.right, x + 1), std::max(ink.bottom, y + 1) };
    }
    return ink;
}

} // namespace

TEST(GdiText, MeasuresInWholePixels)
{
    struct Case {
        const char* why;
        int height;
        const char* face;
        const char* text;
        LONG width, cell;
    };
    const Case cases[] = {
        { "em of 12, Latin face", -12, "Tahoma", "Setup", 36, 15 },
        { "em of 12, Chinese face", -12, kSong, "Setup", 29, 16 },
        { "Chinese characters are an em wide", -12, kSong, kInstall, 24, 16 },
        { "a cell of 14 is 14 high", 14, kSong, kInstall, 22, 14 },
        { "a face that is missing falls back", -12, "No Such Face", "Setup", 36, 15 },
        { "a face that ends within a character", -12, "0123456789012345678901234567890\xCB", "Setup", 36, 15 },
        { "no text", -12, "Tahoma", "", 0, 15 },
        { "height 0 is 16", 0, "Tahoma", "", 0, 16 },
        { "as much as a thousand", 10000, "Tahoma", "", 0, 1000 },
        { "one pixel", 1, "Tahoma", "", 0, 1 },
    };
    const Picture picture(1, 1);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        const Selected font(picture, FontOf(c.height, c.face));
        const SIZE size = Extent(picture, c.text);
        EXPECT_EQ(size.cx, c.width);
        EXPECT_EQ(size.cy, c.cell);
    }
}

TEST(GdiText, MeasuresTheSumOfItsParts)
{
    const Picture picture(1, 1);
    const Selected font(picture, FontOf(-13, "Tahoma", FW_BOLD));
    LONG sum = 0;
    std::string all;
    for (const char* word : { "Installing ", kInstall, " 12%", "AVAVA" }) {
        sum += Extent(picture, word).cx;
        all += word;
    }
    EXPECT_EQ(Extent(picture, all.c_str()).cx, sum);
}

// What was measured is remembered, and forgotten when there is too much of it.
TEST(GdiText, MeasuresManyLinesAsOne)
{
    const Picture picture(1, 1);
    const Selected font(picture, FontOf(-13));
    for (int i = 0; i < 4000; i++) {
        const std::string text = std::to_string(i * 7919); // digits are of one width
        ASSERT_EQ(Extent(picture, text.c_str()).cx, 8 * static_cast<int>(text.size())) << text;
        ASSERT_EQ(Extent(picture, "Setup").cx, 37);
    }
}

TEST(GdiText, DrawsWithinWhatItMeasured)
{
    for (const char* text : { "Hxgy", kInstall, "Setup \xB0\xB2" }) {
        int ink_of_weight[2] = {};
        for (const bool is_bold : { false, true }) { // these Chinese faces have no bold of their own
            SCOPED_TRACE(text);
            const Picture picture(120, 40);
            UseWhiteText(picture);
            const Selected font(picture, FontOf(-16, kSong, is_bold ? FW_BOLD : FW_NORMAL));
            Put(picture, 10, 5, text);
            const SIZE size = Extent(picture, text);
            const RECT ink = Ink(picture);
            EXPECT_TRUE(ink.left >= 9 && ink.top >= 5 && ink.bottom <= 5 + size.cy) << ink;
            EXPECT_TRUE(ink.right >= 10 + size.cx - 4 && ink.right <= 10 + size.cx + 1) << ink;
            for (const COLORREF colour : picture.Pixels())
                ink_of_weight[is_bold] += GetRValue(colour);
        }
        EXPECT_GT(ink_of_weight[1], ink_of_weight[0] * 5 / 4);
    }
}

TEST(GdiText, StandsWhereItIsPut)
{
    const auto aligned = [](UINT align, int x, int y) {
        return [=](HDC dc) {
            SetTextAlign(dc, align);
            Put(dc, x, y, "HH");
        };
    };
    const auto in_box = [](UINT format) {
        return [=](HDC dc) {
            RECT rect{ 10, 5, 70, 35 };
            EXPECT_EQ(DrawTextA(dc, "HH", 2, &rect, format | DT_NOPREFIX), 15);
        };
    };
    const struct {
        const char* why;
        std::function<void(HDC)> draw;
        RECT cell;
    } cases[] = {
        { "left and top", aligned(TA_LEFT | TA_TOP, 20, 10), { 20, 10, 38, 25 } },
        { "right", aligned(TA_RIGHT, 60, 10), { 42, 10, 60, 25 } },
        { "center", aligned(TA_CENTER, 40, 10), { 31, 10, 49, 25 } },
        { "bottom", aligned(TA_BOTTOM, 20, 30), { 20, 15, 38, 30 } },
        { "baseline", aligned(TA_BASELINE, 20, 30), { 20, 18, 38, 33 } },
        { "left and top of a box", in_box(0), { 10, 5, 28, 20 } },
        { "its right", in_box(DT_RIGHT), { 52, 5, 70, 20 } },
        { "its middle", in_box(DT_CENTER | DT_VCENTER | DT_SINGLELINE), { 31, 12, 49, 27 } },
        { "its bottom", in_box(DT_BOTTOM | DT_SINGLELINE), { 10, 20, 28, 35 } },
        { "where the last text ended",
          [&](HDC dc) {
              MoveToEx(dc, 3, 4, nullptr);
              aligned(TA_UPDATECP, 0, 0)(dc);
              aligned(TA_UPDATECP, 0, 0)(dc);
          },
          { 3, 4, 3 + 2 * 18, 19 } },
        { "clipped, the glyphs alone",
          [](HDC dc) {
              const RECT half{ 0, 0, 23, 40 };
              UseWhiteText(dc);
              ExtTextOutA(dc, 20, 10, ETO_CLIPPED, &half, "HH", 2, nullptr);
          },
          { 21, 13, 23, 22 } },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        const Picture picture(80, 40);
        SetTextColor(picture, RGB(0, 0, 0));
        SetBkColor(picture, RGB(255, 255, 255)); // the opaque cell shows where the text is
        const Selected font(picture, FontOf(-12));
        c.draw(picture);
        EXPECT_EQ(Ink(picture), c.cell);
    }
}

TEST(GdiText, ReadsFromTheRight)
{
    // Latin, Hebrew and Arabic, each with a mark at its end that moves to the other side of the letters.
    for (const auto& [code_page, text] :
         { std::pair(936U, "ab!"), std::pair(1255U, "\xF9\xEC\xE5\xED!"), std::pair(1256U, "\xE3\xD1\xCD\xC8\xC7!") }) {
        SCOPED_TRACE(code_page);
        const UINT before = win32::exchange_ansi_code_page(code_page);
        const HFONT font = FontOf(-16); // one for all, which remembers lines of both directions
        // The columns of the text, each by its ink, from the first that has any.
        const auto columns = [&, said = text](UINT align, DWORD layout, RECT place) {
            const Picture picture(100, 30);
            UseWhiteText(picture);
            SetLayout(picture, layout);
            SetTextAlign(picture, align);
            SelectObject(picture, font);
            Put(picture, 4, 2, said);
            const std::vector<COLORREF> pixels = picture.Pixels();
            const RECT ink = Ink(picture);
            EXPECT_TRUE(ink.left >= place.left && ink.right <= place.right) << ink;
            std::vector<int> sums(100);
            for (std::size_t i = 0; i < pixels.size(); i++)
                sums[(i + 100 - static_cast<std::size_t>(ink.left)) % 100] += GetRValue(pixels[i]);
            return sums;
        };
        const RECT at_left{ 4, 0, 50, 30 };
        const RECT at_right{ 50, 0, 96, 30 };
        const std::vector<int> from_left = columns(TA_LEFT, 0, at_left);
        const std::vector<int> from_right = columns(TA_RTLREADING, 0, at_left);
        EXPECT_NE(from_left, from_right);
        EXPECT_EQ(from_right, columns(TA_LEFT, LAYOUT_RTL, at_right));
        EXPECT_EQ(from_left, columns(TA_RTLREADING, LAYOUT_RTL, at_right)) << "turned round twice";
        DeleteObject(font);
        win32::exchange_ansi_code_page(before);
    }
}

TEST(GdiText, UnderlinesBelowTheBaseline)
{
    const Picture picture(40, 30);
    UseWhiteText(picture);
    const Selected font(picture, FontOf(-16, "Tahoma", FW_NORMAL, TRUE));
    SetTextAlign(picture, TA_BASELINE);
    Put(picture, 2, 20, "HH");
    EXPECT_EQ(Ink(picture).bottom, 22);
}

TEST(GdiText, RefusesWhatItCannotDo)
{
    const Picture picture(10, 10);
    const INT spacing[] = { 5 };
    SIZE size{};
    EXPECT_FALSE(ExtTextOutA(picture, 0, 0, 0, nullptr, "x", 1, spacing));
    EXPECT_FALSE(ExtTextOutA(picture, 0, 0, ETO_CLIPPED, nullptr, "x", 1, nullptr));
    EXPECT_FALSE(TextOutA(picture, 0, 0, "x", -1));
    EXPECT_FALSE(TextOutA(picture, 0, 0, nullptr, 3));
    EXPECT_FALSE(GetTextExtentPoint32A(picture, "x", 9000, &size));
    EXPECT_EQ(DrawTextA(picture, "x", -1, nullptr, DT_NOPREFIX), 0);
    RECT rect{ 0, 0, 10, 10 };
    EXPECT_EQ(DrawTextA(picture, "x", -1, &rect, DT_LEFT), 0) << "prefixes are not offered";
}

TEST(GdiDrawText, FitsLines)
{
    struct Case {
        const char* why;
        const char* text;
        UINT format;
        int width;
        RECT expected;
    };
    const Case cases[] = {
        { "broken by hand", "HH\r\nHHHH\nH", 0, 200, { 0, 0, 36, 45 } },
        { "a break at the end", "HH\n", 0, 200, { 0, 0, 18, 15 } },
        { "words, the last one's blank hanging over", "HH HH HH", DT_WORDBREAK, 41, { 0, 0, 44, 30 } },
        { "a word that is too wide", "HHHHH HH", DT_WORDBREAK, 20, { 0, 0, 49, 30 } },
        { "single line keeps breaks as blanks", "HH\nHH", DT_SINGLELINE, 200, { 0, 0, 40, 15 } },
        { "nothing", "", 0, 200, { 0, 0, 0, 0 } },
    };
    const Picture picture(10, 10);
    const Selected font(picture, FontOf(-12));
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        RECT rect{ 0, 0, c.width, 100 };
        EXPECT_EQ(DrawTextA(picture, c.text, -1, &rect, c.format | DT_NOPREFIX | DT_CALCRECT), c.expected.bottom);
        EXPECT_EQ(rect, c.expected);
    }
}

TEST(GdiFonts, AddsAndRemovesPrivateFiles)
{
    const Picture picture(10, 10);
    const Selected font(picture, FontOf(-12, "DejaVu Serif"));
    const test::TempDir folder;
    const std::string path = folder / "private.ttf";
    std::filesystem::copy_file(kSans, path);
    EXPECT_EQ(AddFontResourceExA(path.c_str(), FR_PRIVATE, nullptr), 1);
    EXPECT_EQ(Extent(picture, "Setup").cy, 15);
    EXPECT_TRUE(RemoveFontResourceA(path.c_str()));
    EXPECT_FALSE(RemoveFontResourceA(path.c_str()));
    EXPECT_EQ(AddFontResourceA((folder / "missing.ttf").c_str()), 0);

    std::string lie = folder / "lie.ttf";
    std::ofstream(lie) << "no font at all";
    EXPECT_EQ(AddFontResourceA(lie.c_str()), 0);
    // The bytes of a narrow path where a wide one is expected name no file.
    alignas(2) char narrow[MAX_PATH * 2] = "skins/private.ttf";
    EXPECT_EQ(AddFontResourceExW(reinterpret_cast<LPCWSTR>(narrow), FR_PRIVATE, nullptr), 0);

    std::ifstream file(kSans, std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    DWORD faces = 0;
    EXPECT_NE(AddFontMemResourceEx(bytes.data(), static_cast<DWORD>(bytes.size()), nullptr, &faces), nullptr);
    EXPECT_EQ(faces, 1U);
    EXPECT_EQ(AddFontMemResourceEx(lie.data(), static_cast<DWORD>(lie.size()), nullptr, &faces), nullptr);
    EXPECT_EQ(faces, 0U);
}

TEST(GdiFonts, DescribeThemselves)
{
    const HFONT font = FontOf(-11, "a face of very many more than thirty-one bytes", FW_BOLD);
    LOGFONTA description{};
    EXPECT_EQ(GetObjectA(font, sizeof description, &description), static_cast<int>(sizeof description));
    EXPECT_EQ(description.lfHeight, -11);
    EXPECT_EQ(description.lfWeight, FW_BOLD);
    EXPECT_STREQ(description.lfFaceName, "a face of very many more than t");
    EXPECT_TRUE(DeleteObject(font));
}

TEST(GdiText, DrawsOnSeveralThreads)
{
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int i = 0; i < 4; i++) {
        threads.emplace_back([i] {
            const Picture picture(100, 30);
            UseWhiteText(picture);
            for (int turn = 0; turn < 25; turn++) {
                const Selected font(picture, FontOf(-10 - i, turn % 2 ? kSong : "Tahoma"));
                Put(picture, 1, 1, kInstall);
                PatBlt(picture, 0, 0, 100, 30, BLACKNESS);
                Put(picture, 1, 1, "Setup");
            }
            EXPECT_LT(Ink(picture).left, Ink(picture).right);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}
