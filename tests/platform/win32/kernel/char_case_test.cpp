#include "tests/platform/win32/kernel/ansi_code_page.h"

#include <string>

#include <gtest/gtest.h>
#include <windows.h>

namespace {

using std::string;

TEST(CharCase, ChangesTextInPlace)
{
    const struct {
        const char* why;
        UINT page;
        string upper;
        string lower;
    } kCases[] = {
        { "ASCII letters and nothing beside them", 936, "AZ@[09", "az@[09" },
        { "full-width and Cyrillic pairs", 936, "\xa3\xc1\xa7\xa1", "\xa3\xe1\xa7\xd1" },
        { "the second byte of a pair is no letter", 936,
          "\x81\x41"
          "B",
          "\x81\x41"
          "b" },
        { "single bytes beyond ASCII", 1252, "\xc9\xd6\xd7", "\xe9\xf6\xd7" },
        { "of another alphabet", 1251, "\xcf", "\xef" },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        const AnsiCodePage page(c.page);
        string text = c.upper;
        EXPECT_EQ(CharLowerA(text.data()), text.data());
        EXPECT_EQ(text, c.lower);
        EXPECT_EQ(CharUpperA(text.data()), text.data());
        EXPECT_EQ(text, c.upper);
    }
}

TEST(CharCase, KeepsWhatHasNoPartner)
{
    string cut = "A\xa3"; // a lead byte alone
    CharLowerA(cut.data());
    EXPECT_EQ(cut, "a\xa3");

    const AnsiCodePage latin(1252);
    string text = "\xff\xdf\xb5"; // an upper y with diaeresis is there, an upper sharp s and an upper mu are not
    CharUpperA(text.data());
    EXPECT_EQ(text, "\x9f\xdf\xb5");
}

TEST(CharCase, ChangesBuffersWithZeroBytes)
{
    string text("A\0B C", 5);
    EXPECT_EQ(CharLowerBuffA(text.data(), 3), 3U);
    EXPECT_EQ(text, string("a\0b C", 5));
    EXPECT_EQ(CharUpperBuffA(text.data(), 1), 1U);
    EXPECT_EQ(text, string("A\0b C", 5));
}

TEST(CharCase, ChangesACharacterInAPointersPlace)
{
    EXPECT_EQ(CharLowerA(reinterpret_cast<LPSTR>('Q')), reinterpret_cast<LPSTR>('q'));
    EXPECT_EQ(CharUpperA(reinterpret_cast<LPSTR>('q')), reinterpret_cast<LPSTR>('Q'));
    EXPECT_EQ(CharLowerA(nullptr), nullptr);
}

TEST(CharStep, CountsPairsAsOne)
{
    const char* text = "a\xd6\xd0"
                       "b\xd6";
    const char* stops[] = { text, text + 1, text + 3, text + 4, text + 5 };
    for (int i = 0; i < 4; i++) {
        EXPECT_EQ(CharNextA(stops[i]), stops[i + 1]) << i;
        EXPECT_EQ(CharPrevA(text, stops[i + 1]), stops[i]) << i;
    }
    EXPECT_EQ(CharNextA(text + 5), text + 5) << "stays at the end";
    EXPECT_EQ(CharPrevA(text, text), text) << "stays at the start";
    EXPECT_EQ(CharPrevA(text, text + 2), text + 1) << "from inside a pair to its beginning";
}

} // namespace
