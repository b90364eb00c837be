#include "tests/platform/win32/kernel/ansi_code_page.h"

#include <string>
#include <thread>

#include <gtest/gtest.h>
#include <windows.h>

namespace {

using std::string;
using std::u16string;

u16string decoded(UINT page, const string& text, DWORD flags = 0)
{
    u16string wide(text.size() * 4 + 4, u'#');
    const int length =
        MultiByteToWideChar(page, flags, text.data(), static_cast<int>(text.size()), wide.data(), int(wide.size()));
    EXPECT_EQ(MultiByteToWideChar(page, flags, text.data(), static_cast<int>(text.size()), nullptr, 0), length);
    wide.resize(length);
    return wide;
}

string encoded(UINT page, const u16string& wide, BOOL* used_default = nullptr, const char* default_char = nullptr)
{
    string text(wide.size() * 4 + 4, '#');
    const int length = WideCharToMultiByte(page, 0, wide.data(), static_cast<int>(wide.size()), text.data(),
                                           int(text.size()), default_char, used_default);
    EXPECT_EQ(WideCharToMultiByte(page, 0, wide.data(), static_cast<int>(wide.size()), nullptr, 0, default_char,
                                  used_default),
              length);
    text.resize(length);
    return text;
}

TEST(CodePage, ConvertsBothWays)
{
    const struct {
        const char* why;
        UINT page;
        string text;
        u16string wide;
    } kCases[] = {
        { "ASCII in any page", 936, "Setup 1.0", u"Setup 1.0" },
        { "CP_ACP is 936 here", CP_ACP, "\xd6\xd0\xce\xc4", u"中文" },
        { "ASCII on both sides of pairs", 936, "a\xb0\xb2z", u"a安z" },
        { "a pair whose second byte is an ASCII letter", 936, "\x81\x41", u"丄" },
        { "a single byte beyond ASCII", 936, "\x80", u"€" },
        { "zero bytes are characters", 936, string("a\0b", 3), u16string(u"a\0b", 3) },
        { "of two codes for it the page's own choice", 932, "\x81\xe0", u"≒" },
        { "another double-byte page", 932, "\x93\xfa\x96{\xb1", u"日本ｱ" },
        { "a single-byte page", 1252, "caf\xe9 \x80", u"café €" },
        { "a page that iconv knows by another name", 28605, "\xa4", u"€" },
        { "a page of longer characters", 54936, "\xd6\xd0\x81\x30\x81\x30\x95\x32\x82\x36", u"中\x80\U00020000" },
        { "UTF-8 of every length", CP_UTF8, "aé中\U0001F600", u"aé中\U0001F600" },
        { "the ends of UTF-8's ranges", CP_UTF8, "\u0080\u07ff\u0800\ud7ff\ue000\uffff\U00010000\U0010ffff",
          u"\u0080\u07ff\u0800\ud7ff\ue000\uffff\U00010000\U0010ffff" },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        EXPECT_EQ(decoded(c.page, c.text, MB_ERR_INVALID_CHARS), c.wide);
        EXPECT_EQ(encoded(c.page, c.wide), c.text);
    }
}

TEST(CodePage, ReplacesWhatIsInvalid)
{
    const struct {
        const char* why;
        UINT page;
        string text;
        u16string wide;
    } kCases[] = {
        { "a continuation byte alone", CP_UTF8, "a\x80z", u"a\xFFFDz" },
        { "an overlong form, each byte", CP_UTF8, "\xc0\xaf", u"\xFFFD\xFFFD" },
        { "an overlong form of three bytes", CP_UTF8, "\xe0\x9f\xbf", u"\xFFFD\xFFFD\xFFFD" },
        { "an encoded surrogate", CP_UTF8, "\xed\xa0\x80", u"\xFFFD\xFFFD\xFFFD" },
        { "beyond the last character", CP_UTF8, "\xf4\x90\x80\x80", u"\xFFFD\xFFFD\xFFFD\xFFFD" },
        { "a sequence cut off, once", CP_UTF8, "\xe4\xb8z", u"\xFFFDz" },
        { "a sequence cut off by the end", CP_UTF8, "\xf0\x9f\x98", u"\xFFFD" },
        { "a lead byte at the end", 936, "a\xd6", u"a\xFFFD" },
        { "an ASCII byte behind a stray lead byte stays", 936, "\xd6<a", u"\xFFFD<a" },
        { "a pair that is none", 936, "\xfe\xfe!", u"\xFFFD!" },
        { "a byte that begins nothing", 936, "\xff!", u"\xFFFD!" },
        { "in a page of longer characters", 54936, "\xff!", u"\xFFFD!" },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        EXPECT_EQ(decoded(c.page, c.text), c.wide);
        EXPECT_EQ(decoded(c.page, c.text, MB_ERR_INVALID_CHARS), u"");
        EXPECT_EQ(GetLastError(), ERROR_NO_UNICODE_TRANSLATION);
    }
}

TEST(CodePage, ReplacesWhatThePageLacks)
{
    const struct {
        const char* why;
        UINT page;
        u16string wide;
        const char* default_char;
        string text;
        BOOL used;
    } kCases[] = {
        { "nothing lacking", 936, u"中", nullptr, "\xd6\xd0", FALSE },
        { "a character of another script", 936, u"aשz", nullptr, "a?z", TRUE },
        { "a character beyond 16 bits, once", 936, u"\U0001F600", nullptr, "?", TRUE },
        { "a lone surrogate", 936, u"\xD83Dz", nullptr, "?z", TRUE },
        { "the caller's default", 1252, u"中é", "_", "_\xe9", TRUE },
        { "in a page of longer characters", 54936, u"\xD83Dz", nullptr, "?z", TRUE },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        BOOL used = -1;
        EXPECT_EQ(encoded(c.page, c.wide, &used, c.default_char), c.text);
        EXPECT_EQ(used, c.used);
    }
    EXPECT_EQ(encoded(CP_UTF8, u"\xDC00!"), "\xEF\xBF\xBD!");
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, u"\xDC00", 1, nullptr, 0, nullptr, nullptr), 0);
}

TEST(CodePage, LengthsAndBuffers)
{
    char16_t wide[8] = u"#######";
    EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, "abc", -1, nullptr, 0), 4) << "-1 counts the NUL";
    EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, "abc", 2, wide, 8), 2) << "a length counts no NUL";
    EXPECT_EQ(u16string(wide, 3), u"ab#");
    EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, "xyz", 3, wide, 2), 0) << "too small";
    EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
    EXPECT_EQ(wide[2], u'#') << "and not overrun";

    char text[8] = "#######";
    EXPECT_EQ(WideCharToMultiByte(CP_ACP, 0, u"中文", -1, nullptr, 0, nullptr, nullptr), 5);
    EXPECT_EQ(WideCharToMultiByte(CP_ACP, 0, u"中文a", 3, text, 3, nullptr, nullptr), 0);
    EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
    EXPECT_EQ(string(text, 4), "\xd6\xd0##") << "no half character, and nothing behind it";
}

TEST(CodePage, RefusesWrongArguments)
{
    char16_t wide[4];
    char text[4] = "a";
    const struct {
        const char* why;
        int result;
        DWORD error;
    } kCases[] = {
        { "no text", MultiByteToWideChar(CP_ACP, 0, nullptr, 1, wide, 4), GetLastError() },
        { "a length of 0", MultiByteToWideChar(CP_ACP, 0, text, 0, wide, 4), GetLastError() },
        { "a length below -1", MultiByteToWideChar(CP_ACP, 0, text, -2, wide, 4), GetLastError() },
        { "a size below 0", MultiByteToWideChar(CP_ACP, 0, text, 1, wide, -1), GetLastError() },
        { "a size without a buffer", MultiByteToWideChar(CP_ACP, 0, text, 1, nullptr, 4), GetLastError() },
        { "an unknown page", MultiByteToWideChar(3, 0, text, 1, wide, 4), GetLastError() },
        { "UTF-16 is no page of narrow text", MultiByteToWideChar(1200, 0, text, 1, wide, 4), GetLastError() },
        { "a default for UTF-8", WideCharToMultiByte(CP_UTF8, 0, u"a", 1, text, 4, "?", nullptr), GetLastError() },
        { "an unknown page to encode", WideCharToMultiByte(3, 0, u"a", 1, text, 4, nullptr, nullptr), GetLastError() },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        EXPECT_EQ(c.result, 0);
        EXPECT_EQ(c.error, ERROR_INVALID_PARAMETER);
    }
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0x40, text, 1, wide, 4), 0);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_FLAGS);
    EXPECT_EQ(WideCharToMultiByte(936, WC_ERR_INVALID_CHARS, u"a", 1, text, 4, nullptr, nullptr), 0);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_FLAGS);
}

TEST(CodePage, OfTheProcessCanBeChanged)
{
    EXPECT_EQ(GetACP(), 936U);
    {
        const AnsiCodePage latin(1252);
        EXPECT_EQ(GetACP(), 1252U);
        EXPECT_EQ(decoded(CP_ACP, "\xe9"), u"é");
        EXPECT_FALSE(IsDBCSLeadByte(0xe9));
        EXPECT_EQ(win32::exchange_ansi_code_page(3), 1252U) << "an unknown page changes nothing";
        EXPECT_EQ(GetACP(), 1252U);
    }
    EXPECT_TRUE(IsDBCSLeadByte(0xe9));
    EXPECT_FALSE(IsDBCSLeadByte('a'));
    EXPECT_FALSE(IsDBCSLeadByte(0x80));
    EXPECT_FALSE(IsDBCSLeadByteEx(932, 0xb1));
    EXPECT_TRUE(IsDBCSLeadByteEx(932, 0x81));
}

// Every two-byte character of every East Asian page comes back as itself or as another code of the same character.
TEST(CodePage, RoundTripsWholePages)
{
    for (const UINT page : { 932U, 936U, 949U, 950U }) {
        SCOPED_TRACE(page);
        int pairs = 0;
        for (int code = 0x8140; code <= 0xfefe; code++) {
            const string text = { static_cast<char>(code >> 8), static_cast<char>(code & 0xff) };
            const u16string wide = decoded(page, text);
            if (wide.size() == 1 && wide[0] != 0xFFFD) {
                pairs++;
                ASSERT_EQ(decoded(page, encoded(page, wide)), wide) << code;
            }
        }
        EXPECT_GT(pairs, 7000);
    }
}

TEST(CodePage, ServesManyThreadsFromTheFirstCall)
{
    const auto decode = [] {
        for (const UINT page : { 1250U, 1251U, 950U, 54936U })
            EXPECT_EQ(decoded(page, "abc"), u"abc");
    };
    std::thread first(decode), second(decode);
    first.join();
    second.join();
}

} // namespace
