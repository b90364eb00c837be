#include "tests/support/TestHome.h"
#include "tests/xml/Trees.h"

#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>
#include <windows.h>

namespace {

using std::string;
using test::described;
using test::Tree;

Tree from_bytes(string& bytes, int strict = FALSE)
{
    return Tree(OvXMLElement::FromBytes(reinterpret_cast<unsigned char*>(bytes.data()), bytes.size(), strict));
}

TEST(OvXMLInput, ReadsBytes)
{
    const struct {
        const char* why;
        string bytes;
        const char* tree;
    } kCases[] = {
        { "UTF-8 becomes the code page's", "<a>\xe4\xb8\xad\xe6\x96\x87</a>", "a(\xd6\xd0\xce\xc4)" },
        { "its mark goes", "\xEF\xBB\xBF<a/>", "a" },
        { "a beginning of the mark stays", "\xEF\xBB<a/>", "null" },
        { "what the code page lacks", "<a>\xd7\xa9\xf0\x9f\x98\x80</a>", "a(?\?)" },
        { "what is no UTF-8", "<a>\xff</a>", "a(?)" },
        { "up to the first zero byte", string("<a>x</a\0></b>", 13), "a(x)" },
        { "nothing", "", "null" },
        { "the mark alone", "\xEF\xBB\xBF", "null" },
        { "UTF-16 ends at its first zero", string("\xFF\xFE<\0a\0/\0>\0", 10), "null" },
        { "a UTF-16 mark alone", "\xFF\xFE", "null" },
        { "one byte of a mark", "\xFE", "null" },
        { "as many bytes as units: four of eight", "\xFF\xFE<a/>????", "a" },
        { "swapped",
          "\xFE\xFF"
          "a<>/????",
          "a" },
        { "half a unit too many",
          "\xFE\xFF"
          "a<>/?????",
          "a" },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        string bytes = c.bytes;
        EXPECT_EQ(described(from_bytes(bytes)), c.tree);
    }
}

TEST(OvXMLInput, SwapsInTheCallersBufferAndNowhereElse)
{
    string bytes = "\xFE\xFF"
                   "1234567";
    EXPECT_EQ(from_bytes(bytes), nullptr);
    EXPECT_EQ(bytes, "\xFE\xFF"
                     "2143657");
    bytes = "\xFF\xFE"
            "123456";
    from_bytes(bytes);
    EXPECT_EQ(bytes, "\xFF\xFE"
                     "123456");
}

class Converted : public OvXMLElement {
public:
    using OvXMLElement::WideCharToString;
};

TEST(OvXMLInput, ConvertsToTheCodePage)
{
    unsigned char bytes[] = "\xe4\xb8\xadx\0y";
    EXPECT_EQ(Converted::WideCharToString(bytes, 6), "\xd6\xd0x");
    EXPECT_EQ(Converted::WideCharToString(bytes, 3), "\xd6\xd0");
    EXPECT_EQ(Converted::WideCharToString(bytes, 0), "");
}

string written(const char* name, const string& bytes)
{
    const string path = test::home() / name;
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
}

TEST(OvXMLInput, ReadsFiles)
{
    const string path = written("a.xml", "<?xml version=\"1.0\"?><a>x</a>");
    EXPECT_EQ(described(Tree(OvXMLElement::FromFile(path.c_str(), TRUE))), "a(x)");
    EXPECT_EQ(OvXMLElement::FromFile(written("b.xml", "<a/>").c_str(), TRUE), nullptr);

    const string missing = test::home() / "missing.xml";
    EXPECT_EQ(OvXMLElement::FromFile(missing.c_str(), FALSE), nullptr);
    EXPECT_EQ(std::filesystem::file_size(missing), 0U) << "it is there now";
    EXPECT_EQ(OvXMLElement::FromFile((test::home() / "no folder/a.xml").c_str(), FALSE), nullptr);
    EXPECT_EQ(OvXMLElement::FromFile(static_cast<void*>(INVALID_HANDLE_VALUE), FALSE), nullptr);
}

TEST(OvXMLInput, ReadsFilesUpToFourMebibytes)
{
    constexpr size_t kLargest = 4 * 1024 * 1024;
    const string text = "<a/>" + string(kLargest - 4, ' ');
    EXPECT_EQ(described(Tree(OvXMLElement::FromFile(written("largest.xml", text).c_str(), FALSE))), "a");
    EXPECT_EQ(OvXMLElement::FromFile(written("larger.xml", text + " ").c_str(), FALSE), nullptr);
}

TEST(OvXMLInput, ReadsHandlesFromWhereTheyStand)
{
    const string path = written("handle.xml", "skipped<a/>");
    const HANDLE file = CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    SetFilePointer(file, 7, nullptr, FILE_BEGIN);
    EXPECT_EQ(described(Tree(OvXMLElement::FromFile(file, FALSE))), "a");
    EXPECT_EQ(SetFilePointer(file, 0, nullptr, FILE_CURRENT), 11U) << "open, and where the reading ended";
    EXPECT_TRUE(CloseHandle(file));
}

} // namespace
