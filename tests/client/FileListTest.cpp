// The list of files is read whole or not at all.
#include "client/install/FileList.h"

#include <gtest/gtest.h>

namespace {

using client::FormatFileList;
using client::ParseFileList;

const std::string kHash(64, 'a');

TEST(FileList, ComesBackAsItWasWritten)
{
    const std::vector<client::ListedFile> files = { { client::Sha256(""), 0, "Temp/null" },
                                                    { client::Sha256("x"), 9'999'999'999, "a b.txt" } };
    const auto read = ParseFileList(FormatFileList(files));
    ASSERT_TRUE(read.has_value());
    ASSERT_EQ(read->size(), 2u);
    EXPECT_EQ((*read)[0].strName, "Temp/null");
    EXPECT_EQ((*read)[0].strSha256, "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ((*read)[1].strName, "a b.txt");
    EXPECT_EQ((*read)[1].nSize, 9'999'999'999u);
}

TEST(FileList, IsRefusedWhenCutInsideALine)
{
    const std::string strLine = kHash + "          1 Data/Config.xml\n";
    ASSERT_TRUE(ParseFileList(strLine).has_value());
    for (std::size_t n = 1; n < strLine.size(); ++n)
        EXPECT_FALSE(ParseFileList(strLine.substr(0, n)).has_value()) << n;
}

const struct {
    const char* why;
    std::string strLine;
} kBadLines[] = {
    { "no name", kHash + "          1 \n" },
    { "a hash with a capital", std::string(63, 'a') + "A          1 a\n" },
    { "a short hash", std::string(63, 'a') + "          1 a\n" },
    { "no size", kHash + "            a\n" },
    { "a negative size", kHash + "         -1 a\n" },
    { "a size with a blank in it", kHash + "        1 2 a\n" },
    { "a size that is no number", kHash + "       0x10 a\n" },
    { "climbs out", kHash + "          1 ../a\n" },
    { "climbs out on the way", kHash + "          1 a/../../b\n" },
    { "absolute", kHash + "          1 /etc/passwd\n" },
    { "an empty folder name", kHash + "          1 a//b\n" },
    { "a folder", kHash + "          1 a/\n" },
    { "stands still", kHash + "          1 ./a\n" },
    { "a backslash", kHash + "          1 a\\..\\b\n" },
    { "a drive", kHash + "          1 C:a\n" },
    { "a zero byte", kHash + "          1 a" + std::string(1, '\0') + "b\n" },
    { "twice the same", kHash + "          1 a\n" + kHash + "          2 a\n" },
    { "one bad line among good ones", kHash + "          1 a\nhello\n" + kHash + "          1 b\n" },
    { "more than a list is long", std::string(client::kMaxFileListBytes, '#') + "\n" },
};

TEST(FileList, RefusesALine)
{
    for (const auto& c : kBadLines)
        EXPECT_FALSE(ParseFileList(c.strLine).has_value()) << c.why;
}

} // namespace
