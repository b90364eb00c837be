#include "tests/platform/win32/gdi/Pictures.h"
#include "tests/support/TestHome.h"

#include "platform/win32/gdi/text_engine.h"
#include "platform/win32/kernel/module_exports.h"

#include <gtest/gtest.h>

#include <winbase.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <thread>

using test::Picture;

namespace {

// The same two folders of faces on every machine.
const bool kFolders = [] {
    win32::set_font_folders({ "/usr/share/fonts/truetype/dejavu", "/usr/share/fonts/truetype/wqy" });
    return true;
}();

constexpr const char* kSong = "\xCB\xCE\xCC\xE5";    // 宋体
constexpr const char* kInstall = "\xB0\xB2\xD7\xB0"; // 安装

// A font selected into a context for as long as it lives.
class SelectedFont {
public:
    SelectedFont(HDC dc, int height, int weight, const char* face)
        : dc_(dc), font_(CreateFontA(height, 0, 0, 0, weight, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, face)),
          previous_(SelectObject(dc, font_))
    {}
    SelectedFont(const SelectedFont&) = delete;
    SelectedFont& operator=(const SelectedFont&) = delete;
    ~SelectedFont()
    {
        SelectObject(dc_, previous_);
        DeleteObject(font_);
    }

private:
    HDC dc_;
    HFONT font_;
    HGDIOBJ previous_;
};

SIZE Extent(HDC dc, const char* text)
{
    SIZE size{ -1, -1 };
    EXPECT_TRUE(GetTextExtentPoint32A(dc, text, static_cast<int>(std::strlen(text)), &size));
    return size;
}

// The columns and rows that are not black.
RECT Ink(const Picture& picture)
{
    BITMAP description{};
    GetObjectA(picture.bitmap(), sizeof description, &description);
    RECT ink{ description.bmWidth, description.bmHeight, 0, 0 };
    SaveDC(picture.dc());
    SelectClipRgn(picture.dc(), nullptr);
    SetLayout(picture.dc(), 0);
    for (int y = 0; y < description.bmHeight; y++) {
        for (int x = 0; x < description.bmWidth; x++) {
            if (GetPixel(picture.dc(), x, y) == 0)
                continue;
            ink = { std::min<LONG>(ink.left, x), std::min<LONG>(ink.top, y), std::max<LONG>(ink.right, x + 1),
                    std::max<LONG>(ink.bottom, y + 1) };
        }
    }
    RestoreDC(picture.dc(), -1);
    return ink;
}

void UseWhiteText(const Picture& picture)
{
    SetTextColor(picture.dc(), RGB(255, 255, 255));
    SetBkMode(picture.dc(), TRANSPARENT);
}

} // namespace

TEST(GdiText, MeasuresInWholePixels)
{
    struct Case {
        const char* why;
        int height;
        const char* face;
        const char* text;
        SIZE expected;
    };
    const Case cases[] = {
        { "em of 12, Latin face", -12, "Tahoma", "Setup", { 36, 15 } },
        { "em of 12, Chinese face", -12, kSong, "Setup", { 29, 16 } },
        { "Chinese characters are an em wide", -12, kSong, kInstall, { 24, 16 } },
        { "a cell of 14 is 14 high", 14, kSong, kInstall, { 22, 14 } },
        { "a face that is missing falls back", -12, "No Such Face", "Setup", { 36, 15 } },
        { "a face that ends within a character", -12, "0123456789012345678901234567890\xCB", "Setup", { 36, 15 } },
        { "no text", -12, "Tahoma", "", { 0, 15 } },
        { "height 0 is 16", 0, "Tahoma", "", { 0, 16 } },
        { "as much as a thousand", 10000, "Tahoma", "", { 0, 1000 } },
        { "one pixel", 1, "Tahoma", "", { 0, 1 } },
    };
    const Picture picture(1, 1);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        const SelectedFont font(picture.dc(), c.height, FW_NORMAL, c.face);
        const SIZE size = Extent(picture.dc(), c.text);
        EXPECT_EQ(size.cx, c.expected.cx);
        EXPECT_EQ(size.cy, c.expected.cy);
    }
}

TEST(GdiText, MeasuresTheSumOfItsParts)
{
    const Picture picture(1, 1);
    const SelectedFont font(picture.dc(), -13, FW_BOLD, "Tahoma");
    const std::string words[] = { "Installing ", kInstall, " 12%", "AVAVA" };
    LONG sum = 0;
    std::string all;
    for (const std::string& word : words) {
        sum += Extent(picture.dc(), word.c_str()).cx;
        all += word;
    }
    EXPECT_EQ(Extent(picture.dc(), all.c_str()).cx, sum);
}

// What was measured is remembered, and forgotten when there is too much of it.
TEST(GdiText, MeasuresManyLinesAsOne)
{
    const Picture picture(1, 1);
    const SelectedFont font(picture.dc(), -13, FW_NORMAL, "Tahoma");
    for (int i = 0; i < 4000; i++) {
        const std::string text = std::to_string(i * 7919); // digits are of one width
        ASSERT_EQ(Extent(picture.dc(), text.c_str()).cx, 8 * static_cast<int>(text.size())) << text;
        ASSERT_EQ(Extent(picture.dc(), "Setup").cx, 37);
    }
}

TEST(GdiText, DrawsWithinWhatItMeasured)
{
    const char* const texts[] = { "Hxgy", kInstall, "Setup \xB0\xB2" };
    for (const char* text : texts) {
        for (const int weight : { FW_NORMAL, FW_BOLD }) {
            SCOPED_TRACE(text);
            const Picture picture(120, 40);
            UseWhiteText(picture);
            const SelectedFont font(picture.dc(), -16, weight, kSong);
            const SIZE size = Extent(picture.dc(), text);
            EXPECT_TRUE(TextOutA(picture.dc(), 10, 5, text, static_cast<int>(std::strlen(text))));
            const RECT ink = Ink(picture);
            EXPECT_LT(ink.left, ink.right);
            EXPECT_GE(ink.left, 9);
            EXPECT_LE(ink.right, 10 + size.cx + 1);
            EXPECT_GE(ink.right, 10 + size.cx - 4);
            EXPECT_GE(ink.top, 5);
            EXPECT_LE(ink.bottom, 5 + size.cy);
        }
    }
}

TEST(GdiText, DrawsBoldWhereTheFaceHasNone)
{
    const auto ink_of = [](int weight) {
        const Picture picture(60, 30);
        UseWhiteText(picture);
        const SelectedFont font(picture.dc(), -20, weight, kSong);
        TextOutA(picture.dc(), 2, 2, kInstall, 4);
        int sum = 0;
        for (int y = 0; y < 30; y++) {
            for (int x = 0; x < 60; x++)
                sum += GetRValue(GetPixel(picture.dc(), x, y));
        }
        return sum;
    };
    EXPECT_GT(ink_of(FW_BOLD), ink_of(FW_NORMAL) * 5 / 4);
}

TEST(GdiText, AlignsAndClips)
{
    struct Case {
        const char* why;
        UINT align;
        int x, y;
        RECT cell; // of "HH" in a font of 7 by 12
    };
    const Case cases[] = {
        { "left and top", TA_LEFT | TA_TOP, 20, 10, { 20, 10, 38, 25 } },
        { "right", TA_RIGHT, 60, 10, { 42, 10, 60, 25 } },
        { "center", TA_CENTER, 40, 10, { 31, 10, 49, 25 } },
        { "bottom", TA_BOTTOM, 20, 30, { 20, 15, 38, 30 } },
        { "baseline", TA_BASELINE, 20, 30, { 20, 18, 38, 33 } },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        const Picture picture(80, 40);
        SetTextColor(picture.dc(), 0);
        SetBkColor(picture.dc(), RGB(255, 255, 255)); // the opaque cell shows where the text is
        const SelectedFont font(picture.dc(), -12, FW_NORMAL, "Tahoma");
        SetTextAlign(picture.dc(), c.align);
        TextOutA(picture.dc(), c.x, c.y, "HH", 2);
        EXPECT_EQ(Ink(picture), c.cell);
        const RECT half{ 0, 0, c.cell.left + 5, 40 };
        const Picture clipped(80, 40);
        UseWhiteText(clipped);
        const SelectedFont again(clipped.dc(), -12, FW_NORMAL, "Tahoma");
        SetTextAlign(clipped.dc(), c.align);
        ExtTextOutA(clipped.dc(), c.x, c.y, ETO_CLIPPED, &half, "HH", 2, nullptr);
        EXPECT_LE(Ink(clipped).right, c.cell.left + 5);
        EXPECT_GT(Ink(clipped).right, c.cell.left);
    }
    const Picture picture(40, 20);
    const SelectedFont font(picture.dc(), -12, FW_NORMAL, "Tahoma");
    SetTextAlign(picture.dc(), TA_UPDATECP);
    MoveToEx(picture.dc(), 3, 4, nullptr);
    TextOutA(picture.dc(), 0, 0, "HH", 2);
    POINT position{};
    MoveToEx(picture.dc(), 0, 0, &position);
    EXPECT_EQ(position.x, 3 + 18);
}

TEST(GdiText, ReadsFromTheRight)
{
    // An exclamation mark after Hebrew stands at the left when the line is read from the right.
    const auto first_ink = [](UINT align, DWORD layout, const char* text) {
        const Picture picture(80, 30);
        UseWhiteText(picture);
        SetLayout(picture.dc(), layout);
        SetTextAlign(picture.dc(), align);
        const SelectedFont font(picture.dc(), -16, FW_NORMAL, "Tahoma");
        TextOutA(picture.dc(), 4, 2, text, static_cast<int>(std::strlen(text)));
        return Ink(picture);
    };
    const RECT left = first_ink(TA_LEFT, 0, "ab!");
    const RECT turned = first_ink(TA_LEFT | TA_RTLREADING, 0, "ab!");
    EXPECT_NE(left, turned) << "the mark moves to the other side of the letters";
    const RECT mirrored = first_ink(TA_LEFT, LAYOUT_RTL, "ab!");
    EXPECT_GT(mirrored.left, 40) << "placed from the right edge";
    EXPECT_LE(mirrored.right, 76);
    const RECT both = first_ink(TA_LEFT | TA_RTLREADING, LAYOUT_RTL, "ab!");
    EXPECT_EQ(both.right - both.left, left.right - left.left) << "turned round twice: letters first";
}

TEST(GdiText, RefusesWhatItCannotDo)
{
    const Picture picture(10, 10);
    const INT spacing[] = { 5 };
    SIZE size{};
    EXPECT_FALSE(ExtTextOutA(picture.dc(), 0, 0, 0, nullptr, "x", 1, spacing));
    EXPECT_FALSE(ExtTextOutA(picture.dc(), 0, 0, ETO_CLIPPED, nullptr, "x", 1, nullptr));
    EXPECT_FALSE(TextOutA(picture.dc(), 0, 0, "x", -1));
    EXPECT_FALSE(TextOutA(picture.dc(), 0, 0, nullptr, 3));
    EXPECT_FALSE(GetTextExtentPoint32A(picture.dc(), "x", 9000, &size));
    EXPECT_EQ(DrawTextA(picture.dc(), "x", -1, nullptr, DT_NOPREFIX), 0);
    RECT rect{ 0, 0, 10, 10 };
    EXPECT_EQ(DrawTextA(picture.dc(), "x", -1, &rect, DT_LEFT), 0) << "prefixes are not offered";
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
        { "one line", "HHHH", 0, 200, { 0, 0, 36, 15 } },
        { "broken by hand", "HH\r\nHHHH\nH", 0, 200, { 0, 0, 36, 45 } },
        { "a break at the end", "HH\n", 0, 200, { 0, 0, 18, 15 } },
        { "words", "HH HH HH", DT_WORDBREAK, 45, { 0, 0, 44, 30 } },
        { "a word that is too wide", "HHHHH HH", DT_WORDBREAK, 20, { 0, 0, 49, 30 } },
        { "single line keeps breaks as blanks", "HH\nHH", DT_SINGLELINE, 200, { 0, 0, 40, 15 } },
        { "nothing", "", 0, 200, { 0, 0, 0, 0 } },
    };
    const Picture picture(10, 10);
    const SelectedFont font(picture.dc(), -12, FW_NORMAL, "Tahoma");
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        RECT rect{ 0, 0, c.width, 100 };
        EXPECT_EQ(DrawTextA(picture.dc(), c.text, -1, &rect, c.format | DT_NOPREFIX | DT_CALCRECT), c.expected.bottom);
        EXPECT_EQ(rect, c.expected);
    }
}

TEST(GdiDrawText, PlacesTextInItsRectangle)
{
    struct Case {
        const char* why;
        UINT format;
        RECT expected;
    };
    const Case cases[] = {
        { "left and top", 0, { 10, 5, 28, 20 } },
        { "right", DT_RIGHT, { 52, 5, 70, 20 } },
        { "the middle", DT_CENTER | DT_VCENTER | DT_SINGLELINE, { 31, 12, 49, 27 } },
        { "bottom", DT_BOTTOM | DT_SINGLELINE, { 10, 20, 28, 35 } },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        const Picture picture(80, 40);
        SetBkColor(picture.dc(), RGB(255, 255, 255));
        const SelectedFont font(picture.dc(), -12, FW_NORMAL, "Tahoma");
        RECT rect{ 10, 5, 70, 35 };
        EXPECT_EQ(DrawTextA(picture.dc(), "HH", 2, &rect, c.format | DT_NOPREFIX), 15);
        EXPECT_EQ(Ink(picture), c.expected);
    }
}

TEST(GdiFonts, AddsAndRemovesPrivateFiles)
{
    const Picture picture(10, 10);
    const SelectedFont font(picture.dc(), -12, FW_NORMAL, "DejaVu Serif");
    const test::TempDir folder;
    const std::string path = folder / "private.ttf";
    std::filesystem::copy_file("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf", path);
    EXPECT_EQ(AddFontResourceExA(path.c_str(), FR_PRIVATE, nullptr), 1);
    EXPECT_EQ(Extent(picture.dc(), "Setup").cy, 15);
    EXPECT_TRUE(RemoveFontResourceA(path.c_str()));
    EXPECT_FALSE(RemoveFontResourceA(path.c_str()));
    EXPECT_EQ(AddFontResourceA((folder / "missing.ttf").c_str()), 0);

    std::string lie = folder / "lie.ttf";
    std::ofstream(lie) << "no font at all";
    EXPECT_EQ(AddFontResourceA(lie.c_str()), 0);
    // The bytes of a narrow path where a wide one is expected name no file.
    alignas(2) char narrow[MAX_PATH * 2] = "skins/private.ttf";
    EXPECT_EQ(AddFontResourceExW(reinterpret_cast<LPCWSTR>(narrow), FR_PRIVATE, nullptr), 0);

    std::ifstream file("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf", std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    DWORD faces = 0;
    EXPECT_NE(AddFontMemResourceEx(bytes.data(), static_cast<DWORD>(bytes.size()), nullptr, &faces), nullptr);
    EXPECT_EQ(faces, 1U);
    EXPECT_EQ(AddFontMemResourceEx(lie.data(), static_cast<DWORD>(lie.size()), nullptr, &faces), nullptr);
    EXPECT_EQ(faces, 0U);
}

TEST(GdiFonts, DescribesItself)
{
    const HFONT font = CreateFontA(-11, 0, 0, 0, FW_BOLD, TRUE, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0,
                                   "a face of very many more than thirty-one bytes");
    LOGFONTA description{};
    EXPECT_EQ(GetObjectA(font, sizeof description, &description), static_cast<int>(sizeof description));
    EXPECT_EQ(description.lfHeight, -11);
    EXPECT_EQ(description.lfWeight, FW_BOLD);
    EXPECT_STREQ(description.lfFaceName, "a face of very many more than t");
    EXPECT_TRUE(DeleteObject(font));
}

TEST(GdiFonts, AnswersAtRunTime)
{
    const HMODULE gdi32 = LoadLibraryA("gdi32");
    EXPECT_NE(GetProcAddress(gdi32, "SetLayout"), nullptr);
    EXPECT_NE(GetProcAddress(gdi32, "AddFontResourceExW"), nullptr);
    EXPECT_EQ(GetProcAddress(gdi32, "BitBlt"), nullptr) << "only what not every system has";
    FreeLibrary(gdi32);
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
                const SelectedFont font(picture.dc(), -10 - i, FW_NORMAL, turn % 2 ? kSong : "Tahoma");
                TextOutA(picture.dc(), 1, 1, kInstall, 4);
                PatBlt(picture.dc(), 0, 0, 100, 30, BLACKNESS);
                TextOutA(picture.dc(), 1, 1, "Setup", 5);
            }
            EXPECT_LT(Ink(picture).left, Ink(picture).right);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}
