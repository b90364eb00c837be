#include "xml/TextUtil.h"

#include <string>

#include <gtest/gtest.h>

#include "xml/FoldTable.h"

namespace {

using std::string;

TEST(TextSearch, IgnoresCase)
{
    const struct {
        const char* text;
        const char* pattern;
        int place; // -1: nowhere
    } kCases[] = {
        { "12PT", "pt", 2 },  { "12", "pt", -1 }, { "12pt", "", -1 },        { "", "pt", -1 },
        { "12p", "pt", -1 },  { "ppt", "PT", 1 }, { nullptr, "pt", -1 },     { "pt", nullptr, -1 },
        { "@[`{", "[", 1 },   { "@", "`", -1 },   { "\xd6\xd0", "\xd0", 1 }, { "\xc9", "\xe9", -1 },
        { "aaab", "aab", 1 },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.text ? c.text : "null");
        const char* found = _tcsistr(c.text, c.pattern);
        EXPECT_EQ(found ? found - c.text : -1, c.place);
    }
}

TEST(TextSearch, ComparesSoManyCharacters)
{
    const struct {
        const char* text;
        const char* pattern;
        unsigned count;
        int place;
    } kCases[] = {
        { "xxABCD", "abc", 3, 2 }, { "xxABCD", "abc", 5, -1 }, { "xxABCD", "abc", 0, -1 },
        { "xxABCD", "abx", 2, 2 }, { "xxAB", "abc", 3, -1 },   { "", "a", 1, -1 },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.pattern);
        const char* found = _tcsnistr(c.text, c.pattern, c.count);
        EXPECT_EQ(found ? found - c.text : -1, c.place);
    }
}

// Where the pattern is nearly found at every place, a search that begins anew each time would take hours.
TEST(TextSearch, IsLinear)
{
    const string text(4000000, 'a');
    const string pattern = string(1000000, 'A') + "b";
    EXPECT_EQ(_tcsistr(text.c_str(), pattern.c_str()), nullptr);
}

TEST(TextFold, HasItsEntries)
{
    const struct {
        unsigned code;
        unsigned folded;
    } kCases[] = {
        { 0, 0 },         { 'A', 'a' },     { 'Z', 'z' },     { '@', '@' },     { '[', '[' },     { 0x0141, 'A' },
        { 0x0130, 'i' },  { 0xFF01, '!' },  { 0xFF20, '@' },  { 0xFF21, 'a' },  { 0xFF3A, 'z' },  { 0xFF3B, '[' },
        { 0xFF41, 'a' },  { 0xFF5E, '~' },  { 0xFF5F, 0x5F }, { 0x32D0, 0xA2 }, { 0x32E3, 0xC8 }, { 0x32E4, 0xCA },
        { 0x32E8, 0xCE }, { 0x32E9, 0xCF }, { 0x32ED, 0xDB }, { 0x32EE, 0xDE }, { 0x32F2, 0xE2 }, { 0x32F3, 0xE3 },
        { 0x32F5, 0xE7 }, { 0x32F6, 0xE9 }, { 0x32FA, 0xED }, { 0x32FB, 0xEF }, { 0x32FC, 0xF0 }, { 0x32FE, 0xF2 },
        { 0x30FB, ' ' },  { 0xFF65, ' ' },  { 0xFF70, 0xFC }, { 0xFF9E, 0x99 }, { 0xFF9F, 0x9A },
    };
    for (const auto& c : kCases)
        EXPECT_EQ(kFoldTable[c.code], c.folded) << std::hex << c.code;
}

TEST(TextReplace, BeginsAgainAtTheFront)
{
    const struct {
        const char* text;
        const char* find;
        const char* with;
        const char* result;
    } kCases[] = {
        { "aXbXc", "X", "YY", "aYYbYYc" }, { "abc", "x", "y", "abc" },    { "aab", "ab", "b", "b" },
        { "xaabby", "ab", "", "xy" },      { "AbaB", "ab", "-", "AbaB" }, { "aaa", "aa", "b", "ba" },
        { "ab ab", "ab", nullptr, " " },   { "", "a", "b", "" },          { "aab", "ab", "ba", "baa" },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.text);
        CString text(c.text);
        Replace(text, c.find, c.with);
        EXPECT_EQ(text, c.result);
    }
    CString text("abc");
    Replace(text, "", "x");
    Replace(text, "b", "abc");
    EXPECT_EQ(text, "abc") << "what would never end does nothing";
}

TEST(TextSplit, KeepsPiecesAsTheyAre)
{
    const struct {
        const char* why;
        const char* text;
        const char* separator;
        int keep_leading_empty;
        int skip_blank;
        const char* pieces; // each in brackets
    } kCases[] = {
        { "empty pieces are dropped", "a||b", "|", 0, 0, "[a][b]" },
        { "an empty first piece", "|a", "|", 1, 0, "[][a]" },
        { "unless nobody wants it", "|a", "|", 0, 0, "[a]" },
        { "only the very first", "||a||", "|", 1, 1, "[][a]" },
        { "blank pieces", "a| |b", "|", 0, 0, "[a][ ][b]" },
        { "blank pieces skipped", "a|\t |b", "|", 0, 1, "[a][b]" },
        { "an empty separator", "x|y", "", 0, 0, "[x][y]" },
        { "no separator at all", "x|y", nullptr, 0, 0, "[x][y]" },
        { "nothing to split", "x", "", 0, 0, "[x]" },
        { "blanks around stay", " a |b ", "|", 0, 1, "[ a ][b ]" },
        { "a blank rest is dropped in any case", "a| ", "|", 0, 0, "[a]" },
        { "longer separators", "a--b-c--", "--", 0, 0, "[a][b-c]" },
        { "no text", "", "|", 1, 0, "" },
        { "a blank text", "  ", "|", 1, 0, "" },
        { "a blank first piece is no empty one", " |a", "|", 1, 1, "[a]" },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        CArray<CString, CString&> pieces;
        CString first("before");
        pieces.Add(first);
        Split(c.text, c.separator, pieces, c.keep_leading_empty, c.skip_blank);
        CString all;
        for (int i = 0; i < pieces.GetSize(); i++)
            all += "[" + pieces[i] + "]";
        EXPECT_EQ(all, CString("[before]") + c.pieces);
    }
}

} // namespace
