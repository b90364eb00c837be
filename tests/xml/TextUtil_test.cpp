#include "xml/TextUtil.h"

#include <string>

#include <gtest/gtest.h>

#include "xml/FoldTable.h"

namespace {

using std::string;

int PlaceIn(const char* pszText, const char* pszFound)
{
    return pszFound ? static_cast<int>(pszFound - pszText) : -1;
}

TEST(TextSearch, IgnoresCase)
{
    const struct {
        const char* text;
        const char* pattern;
        int place; // -1: nowhere
    } kCases[] = {
        { "12PT", "pt", 2 }, { "12", "pt", -1 }, { "12pt", "", -1 },     { "", "pt", -1 },
        { "ppt", "PT", 1 },  { "@[`{", "{", 3 }, { nullptr, "pt", -1 },  { "pt", nullptr, -1 },
        { "@", "`", -1 },    { "[", "{", -1 },   { "\xc9", "\xe9", -1 }, { "\xd6\xd0", "\xd0", 1 },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.text ? c.text : "null");
        EXPECT_EQ(PlaceIn(c.text, _tcsistr(c.text, c.pattern)), c.place);
    }
    // Where the pattern is nearly found at every place, a search that begins anew each time would take hours.
    const string text(4000000, 'a');
    EXPECT_EQ(_tcsistr(text.c_str(), (string(1000000, 'A') + "b").c_str()), nullptr);

    const char* const pszText = "xxABCD";
    EXPECT_EQ(PlaceIn(pszText, _tcsnistr(pszText, "abx", 2)), 2) << "so many characters count";
    EXPECT_EQ(_tcsnistr(pszText, "abx", 3), nullptr);
    EXPECT_EQ(_tcsnistr(pszText, "abc", 5), nullptr) << "more than there are";
    EXPECT_EQ(_tcsnistr(pszText, "abc", 0), nullptr);
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
        { "aXbXc", "X", "YY", "aYYbYYc" },
        { "aab", "ab", "b", "b" },
        { "aaa", "aa", "b", "ba" },
        { "xaabby", "ab", "", "xy" },
        { "ab ab", "ab", nullptr, " " },
        { "aab", "ab", "ba", "baa" },
        { "AbaB", "ab", "-", "AbaB" },
        { "", "a", "b", "" },
        // what would never end does nothing
        { "abc", "", "x", "abc" },
        { "abc", "b", "abc", "abc" },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.text);
        CString text(c.text);
        Replace(text, c.find, c.with);
        EXPECT_EQ(text, c.result);
    }
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
        { "an empty first piece, no other", "||a||", "|", 1, 1, "[][a]" },
        { "unless nobody wants it", "|a||b", "|", 0, 0, "[a][b]" },
        { "a blank first piece is no empty one", " |a", "|", 1, 1, "[a]" },
        { "blank pieces, and what stands around others", "a| | b ", "|", 0, 0, "[a][ ][ b ]" },
        { "blank pieces skipped", "a|\t | b ", "|", 0, 1, "[a][ b ]" },
        { "a blank rest is dropped in any case", "a| ", "|", 0, 0, "[a]" },
        { "an empty separator", "x|y", "", 0, 0, "[x][y]" },
        { "no separator at all", "x|y", nullptr, 0, 0, "[x][y]" },
        { "longer separators", "a--b-c--", "--", 0, 0, "[a][b-c]" },
        { "no text", "", "|", 1, 0, "" },
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
