#include "tests/support/TestHome.h"
#include "tests/support/TextCases.h"
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

TEST(OvXMLInput, ReadsBytes)
{
    const test::TextCase kCases[] = {
        { "UTF-8 becomes the code page's", "<a>\xe4\xb8\xad\xe6\x96\x87</a>", "a(\xd6\xd0\xce\xc4)" },
        { "its mark goes", "\xEF\xBB\xBF<a/>", "a" },
        { "a beginning of the mark stays", "\xEF\xBB<a/>", "null" },
        { "what the code page lacks, what is no UTF-8", "<a>\xd7\xa9\xf0\x9f\x98\x80\xff</a>", "a(?\?\?)" },
        { "up to the first zero byte", string("<a>\xe4\xb8\xad</a\0></b>", 15), "a(\xd6\xd0)" },
        { "nothing", "", "null" },
        { "the mark alone", "\xEF\xBB\xBF", "null" },
        { "UTF-16 ends at its first zero", string("\xFF\xFE<\0a\0/\0>\0", 10), "null" },
        { "a UTF-16 mark alone", "\xFF\xFE", "null" },
        { "one byte of a mark", "\xFE", "null" },
        { "as many bytes as units: four of eight", "\xFF\xFE<a/>????", "a" },
        { "swapped, half a unit too many", "\376\377a<>/1234567", "a, and \376\377<a/>2143657" },
    };
    test::expect_each(kCases, [](const string& text) { // the tree, and the bytes if they were changed
        string bytes = text;
        auto* const data = reinterpret_cast<unsigned char*>(bytes.data());
        const string tree = described(Tree(OvXMLElement::FromBytes(data, bytes.size(), FALSE)));
        return tree + (bytes == text ? "" : ", and " + bytes);
    });
}

struct Converted : OvXMLElement {
    using OvXMLElement::WideCharToString;
};

TEST(OvXMLInput, ConvertsUpToTheFirstZeroByte)
{
    unsigned char bytes[] = "\xe4\xb8\xadx\0y";
    EXPECT_EQ(Converted::WideCharToString(bytes, 6), "\xd6\xd0x");
}

string written(const char* name, const string& bytes)
{
    const string path = test::home() / name;
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
}

TEST(OvXMLInput, ReadsFiles)
{
    const auto read = [](const string& path) { return described(Tree(OvXMLElement::FromFile(path.c_str(), TRUE))); };
    const string document = "<?xml version=\"1.0\"?><a>x</a>";
    EXPECT_EQ(read(written("a.xml", document)), "a(x)");
    EXPECT_EQ(read(written("b.xml", "<a/>")), "null");
    const string missing = test::home() / "missing.xml";
    EXPECT_EQ(read(missing), "null");
    EXPECT_EQ(std::filesystem::file_size(missing), 0U) << "it is there now";
    EXPECT_EQ(read(test::home() / "no folder/a.xml"), "null");
    EXPECT_EQ(OvXMLElement::FromFile(static_cast<void*>(INVALID_HANDLE_VALUE), FALSE), nullptr);
    const string largest = document + string(4 * 1024 * 1024 - document.size(), ' ');
    EXPECT_EQ(read(written("largest.xml", largest)), "a(x)");
    EXPECT_EQ(read(written("larger.xml", largest + " ")), "null");
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
