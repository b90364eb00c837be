#include "tests/platform/mfc/Throws.h"

#include <afx.h>

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <thread>
#include <vector>

namespace {

std::string Text(const CString& str)
{
    return { str, static_cast<size_t>(str.GetLength()) };
}

struct EditCase {
    const char* why;
    const char* pszText;
    void (*edit)(CString& str);
    std::string expected;
};

const EditCase kEditCases[] = {
    { "assignment from its own middle", "abcdef", [](CString& s) { s = static_cast<LPCSTR>(s) + 2; }, "cdef" },
    { "null text is empty", "abc", [](CString& s) { s = static_cast<LPCSTR>(nullptr); }, "" },
    { "append itself", "abc", [](CString& s) { s += s; }, "abcabc" },
    { "append its own tail", "abc", [](CString& s) { s += static_cast<LPCSTR>(s) + 1; }, "abcbc" },
    { "SetAt past the end does nothing", "abc", [](CString& s) { s.SetAt(3, 'x'), s.SetAt(-1, 'x'); }, "abc" },
    { "SetAt", "abc", [](CString& s) { s.SetAt(1, 'x'); }, "axc" },
    { "upper leaves other bytes alone", "az\xe9@[`{", [](CString& s) { s.MakeUpper(); }, "AZ\xe9@[`{" },
    { "lower", "AZ\xc9@[`{", [](CString& s) { s.MakeLower(); }, "az\xc9@[`{" },
    { "reverse", "abc", [](CString& s) { s.MakeReverse(); }, "cba" },
    { "trim white space", " \t\v\f\r\na b \n", [](CString& s) { s.Trim(); }, "a b" },
    { "trim nothing but space", " \t ", [](CString& s) { s.Trim(); }, "" },
    { "trim left only", " a ", [](CString& s) { s.TrimLeft(); }, "a " },
    { "trim right only", " a ", [](CString& s) { s.TrimRight(); }, " a" },
    { "trim right of nothing else", "  ", [](CString& s) { s.TrimRight(); }, "" },
    { "trim a byte", "xxaxx", [](CString& s) { s.TrimLeft('x').TrimRight('x'); }, "a" },
    { "trim a set", "xyaxb", [](CString& s) { s.Trim("xyb"); }, "a" },
    { "replace is not searched again", "aaa", [](CString& s) { EXPECT_EQ(s.Replace("a", "aa"), 3); }, "aaaaaa" },
    { "replace does not overlap", "aaaaa", [](CString& s) { EXPECT_EQ(s.Replace("aa", "b"), 2); }, "bba" },
    { "replace with nothing", "a-b-", [](CString& s) { EXPECT_EQ(s.Replace("-", nullptr), 2); }, "ab" },
    { "replace nothing", "abc", [](CString& s) { EXPECT_EQ(s.Replace("", "x"), 0); }, "abc" },
    { "replace a byte", "a-b-", [](CString& s) { EXPECT_EQ(s.Replace('-', '+'), 2); }, "a+b+" },
    { "replace a string by itself", "ab", [](CString& s) { EXPECT_EQ(s.Replace(s, s + s), 1); }, "abab" },
    { "remove", "a-b-", [](CString& s) { EXPECT_EQ(s.Remove('-'), 2); }, "ab" },
    { "insert before the start", "bc", [](CString& s) { EXPECT_EQ(s.Insert(-5, 'a'), 3); }, "abc" },
    { "insert past the end", "ab", [](CString& s) { EXPECT_EQ(s.Insert(INT_MAX, "cd"), 4); }, "abcd" },
    { "insert itself", "ab", [](CString& s) { EXPECT_EQ(s.Insert(1, s), 4); }, "aabb" },
    { "delete", "abcd", [](CString& s) { EXPECT_EQ(s.Delete(1, 2), 2); }, "ad" },
    { "delete more than there is", "abcd", [](CString& s) { EXPECT_EQ(s.Delete(2, INT_MAX), 2); }, "ab" },
    { "delete outside", "abcd", [](CString& s) { EXPECT_EQ(s.Delete(4), 4); }, "abcd" },
    { "format with itself", "ab", [](CString& s) { s.Format("%s-%d", static_cast<LPCSTR>(s), -7); }, "ab--7" },
    { "format longer than a first guess", "", [](CString& s) { s.Format("%300d", 1); }, std::string(299, ' ') + "1" },
    { "a buffer filled to its last byte", "", [](CString& s) { memset(s.GetBuffer(4), 'x', 5), s.ReleaseBuffer(); },
      "xxxx" },
    { "a release beyond the buffer", "abc", [](CString& s) { s.GetBuffer(3), s.ReleaseBuffer(INT_MAX); }, "abc" },
    { "a shorter text in the buffer", "abc", [](CString& s) { strcpy(s.GetBuffer(9), "x"), s.ReleaseBuffer(); }, "x" },
    { "an extra buffer given back", "abc", [](CString& s) { s.GetBuffer(99), s.FreeExtra(), s += 'd'; }, "abcd" },
    { "one byte", "abc", [](CString& s) { s = 'x'; }, "x" },
};

TEST(CString, Edits)
{
    for (const EditCase& c : kEditCases) {
        SCOPED_TRACE(c.why);
        CString strAlone(c.pszText);
        c.edit(strAlone);
        EXPECT_EQ(Text(strAlone), c.expected);
        EXPECT_EQ(static_cast<LPCSTR>(strAlone)[strAlone.GetLength()], '\0');

        const CString strWitness(c.pszText);
        CString strSharing(strWitness);
        c.edit(strSharing);
        EXPECT_EQ(Text(strSharing), c.expected) << "when it shares its buffer";
        EXPECT_EQ(Text(strWitness), c.pszText) << "the other holder of the buffer changed";
    }
}

TEST(CString, TakesPartsWithinItsBounds)
{
    struct {
        const char* why;
        CString strPart;
        const char* pszExpected;
    } const cases[] = {
        { "mid", CString("abcdef").Mid(2, 3), "cde" },
        { "mid to the end", CString("abcdef").Mid(4), "ef" },
        { "mid from before the start", CString("abc").Mid(-2, 2), "ab" },
        { "mid past the end", CString("abc").Mid(3, 1), "" },
        { "mid whose end overflows", CString("abc").Mid(1, INT_MAX), "bc" },
        { "negative count", CString("abc").Mid(1, -1), "" },
        { "left", CString("abc").Left(2), "ab" },
        { "left of more", CString("abc").Left(9), "abc" },
        { "right", CString("abc").Right(2), "bc" },
        { "right of less than nothing", CString("abc").Right(INT_MIN), "" },
        { "up to a byte of a set", CString("tip. more").SpanExcluding(".,"), "tip" },
        { "the whole without any", CString("tip").SpanExcluding("."), "tip" },
        { "repeated byte", CString('x', 3), "xxx" },
        { "repeated less than never", CString('x', -1), "" },
        { "string + byte", CString("a") + 'b', "ab" },
        { "byte + string", 'a' + CString("b"), "ab" },
        { "text + string + null", "a" + CString("b") + static_cast<LPCSTR>(nullptr), "ab" },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        EXPECT_EQ(Text(c.strPart), c.pszExpected);
    }
    const CString str("abc");
    EXPECT_EQ(str[2], 'c');
    EXPECT_EQ(str[3], '\0');
    EXPECT_EQ(str.GetAt(-1), '\0');
}

TEST(CString, Finds)
{
    const CString str("abcabc");
    const std::pair<int, int> found[] = { { str.Find('c', 3), 5 },     { str.Find('c', 6), -1 },
                                          { str.Find("bc", -9), 1 },   { str.Find("bc", 2), 4 },
                                          { str.Find("", 6), 6 },      { str.Find("", 7), -1 },
                                          { str.ReverseFind('c'), 5 }, { str.ReverseFind('x'), -1 },
                                          { str.FindOneOf("xcb"), 1 }, { str.FindOneOf("x"), -1 },
                                          { CString().Find('a'), -1 }, { str.Find(static_cast<LPCSTR>(nullptr)), -1 } };
    for (const auto& [nFound, nExpected] : found)
        EXPECT_EQ(nFound, nExpected);
}

TEST(CString, ComparesBytesUnsigned)
{
    const CString str("b\x80");
    EXPECT_GT(str.Compare("bz"), 0);
    EXPECT_LT(str.Compare("c"), 0);
    EXPECT_GT(str.Compare("b"), 0);
    EXPECT_EQ(str.CompareNoCase("B\x80"), 0);
    EXPECT_GT(CString("A").CompareNoCase("_"), 0) << "letters are folded down, so they lie above '_'";
    EXPECT_NE(str.CompareNoCase("b\xa0"), 0);
    EXPECT_TRUE(str == "b\x80" && "b\x80" == str && str != "b" && "a" < str && str < "c" && str >= CString(str));
    EXPECT_TRUE(CString() == static_cast<LPCSTR>(nullptr));
    EXPECT_FALSE(CString("a\0b", 3) == CString("a\0c", 3)) << "a '\\0' is a byte like any other between strings";
}

TEST(CString, SharesItsBufferUntilWritten)
{
    CString str("abc");
    CString strCopy(str);
    EXPECT_EQ(static_cast<LPCSTR>(str), static_cast<LPCSTR>(strCopy));
    strCopy.MakeLower(); // changes nothing
    EXPECT_EQ(static_cast<LPCSTR>(str), static_cast<LPCSTR>(strCopy));
    strCopy += 'd';
    EXPECT_NE(static_cast<LPCSTR>(str), static_cast<LPCSTR>(strCopy));
    EXPECT_EQ(static_cast<LPCSTR>(CString()), static_cast<LPCSTR>(CString("")))
        << "the empty text is allocated nowhere";
    const CString strMoved(std::move(str));
    EXPECT_EQ(Text(strMoved), "abc");
}

TEST(CString, TooLongThrowsAndChangesNothing)
{
    CString str("abc");
    EXPECT_TRUE(Throws<CMemoryException>([&] { str.GetBuffer(INT_MAX); }));
    EXPECT_EQ(Text(str), "abc");
}

TEST(CString, LoadsTextsOfTheProgram)
{
    CString str("before");
    EXPECT_TRUE(str.LoadString(1));
    EXPECT_STREQ(str, "\xbc\xec\xb2\xe2 %d");
    EXPECT_TRUE(str.LoadString(2));
    EXPECT_EQ(str.GetLength(), 300) << "longer than a first guess";
    EXPECT_TRUE(str.LoadString(3));
    EXPECT_EQ(str.GetLength(), 255) << "a character across the end of the first guess";
    EXPECT_STREQ(str.Right(2), "\xbc\xec");
    EXPECT_FALSE(str.LoadString(99));
    EXPECT_TRUE(str.IsEmpty());
}

TEST(CString, IsSafeBetweenThreadsThatShareABuffer)
{
    const CString strShared("shared text");
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int i = 0; i < 4; i++) {
        threads.emplace_back([strMine = strShared, i]() mutable {
            for (int turn = 0; turn < 1000; turn++) {
                CString strCopy(strMine);
                strCopy.SetAt(0, static_cast<char>('a' + i));
                ASSERT_EQ(strCopy[0], 'a' + i);
                strMine = CString(strCopy).Left(turn % 8) + strMine.Mid(turn % 8);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(Text(strShared), "shared text");
}

} // namespace
