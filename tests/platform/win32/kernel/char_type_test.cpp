#include "tests/platform/win32/kernel/ansi_code_page.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <windows.h>

namespace {

using std::string;
using Types = std::vector<WORD>;

Types types_of(const string& text)
{
    Types types(text.size(), 0xFFFF); // what is not written stays
    EXPECT_TRUE(GetStringTypeExA(0, CT_CTYPE2, text.data(), static_cast<int>(text.size()), types.data()));
    return types;
}

TEST(CharType, TellsDirections)
{
    const struct {
        const char* why;
        UINT page;
        string text;
        Types types;
    } kCases[] = {
        { "ASCII",
          936,
          "aZ0 ,+$!\t\n",
          { C2_LEFTTORIGHT, C2_LEFTTORIGHT, C2_EUROPENUMBER, C2_WHITESPACE, C2_COMMONSEPARATOR, C2_EUROPESEPARATOR,
            C2_EUROPETERMINATOR, C2_OTHERNEUTRAL, C2_SEGMENTSEPARATOR, C2_BLOCKSEPARATOR } },
        { "two bytes have one word",
          936,
          "\xd6\xd0"
          "a",
          { C2_LEFTTORIGHT, C2_LEFTTORIGHT, 0xFFFF } },
        { "an ideographic space", 936, "\xa1\xa1", { C2_WHITESPACE, 0xFFFF } },
        { "what is no character", 936, "\xff", { C2_OTHERNEUTRAL } },
        { "Hebrew", 1255, "\xe0\xfa-", { C2_RIGHTTOLEFT, C2_RIGHTTOLEFT, C2_EUROPESEPARATOR } },
        { "Arabic", 1256, "\xc7\xc8\xa1", { C2_RIGHTTOLEFT, C2_RIGHTTOLEFT, C2_COMMONSEPARATOR } },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        const AnsiCodePage page(c.page);
        EXPECT_EQ(types_of(c.text), c.types);
    }
}

TEST(CharType, RefusesOtherQuestions)
{
    WORD types[2] = {};
    EXPECT_TRUE(GetStringTypeExA(0, CT_CTYPE2, "a", -1, types)) << "with its NUL";
    EXPECT_EQ(types[1], C2_OTHERNEUTRAL);
    EXPECT_FALSE(GetStringTypeExA(0, 1, "a", 1, types));
    EXPECT_EQ(GetLastError(), DWORD{ ERROR_INVALID_FLAGS });
    EXPECT_FALSE(GetStringTypeExA(0, CT_CTYPE2, "a", 1, nullptr));
    EXPECT_FALSE(GetStringTypeExA(0, CT_CTYPE2, "", 0, types));
}

} // namespace
