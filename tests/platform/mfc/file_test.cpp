#include "tests/platform/mfc/Throws.h"
#include "tests/support/TestHome.h"

#include <afx.h>

#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

// What both kinds of file promise.
void WriteSeekAndRead(CFile& file)
{
    char read[32] = {};
    file.Write("hello world", 11);
    EXPECT_EQ(file.GetLength(), 11U);
    EXPECT_EQ(file.Seek(-5, CFile::end), 6U);
    file.Write("W", 1);
    EXPECT_EQ(file.Seek(-1, CFile::current), 6U);
    EXPECT_EQ(file.Read(read, sizeof(read)), 5U);
    EXPECT_STREQ(read, "World");
    EXPECT_EQ(file.Read(read, sizeof(read)), 0U);
    EXPECT_TRUE(Throws<CFileException>([&] { file.Seek(-1, CFile::begin); })) << "there is nothing before the start";
    file.Seek(15, CFile::begin);
    file.Write("!", 1);
    file.SeekToBegin();
    EXPECT_EQ(file.Read(read, sizeof(read)), 16U);
    EXPECT_EQ(memcmp(read, "hello World\0\0\0\0!", 16), 0);
    EXPECT_EQ(file.SeekToEnd(), 16U);
}

TEST(CFile, WritesSeeksAndReads)
{
    const test::TempDir dir;
    CFile file((dir / "file").c_str(), CFile::modeReadWrite | CFile::modeCreate);
    WriteSeekAndRead(file);
    file.Close();
    EXPECT_TRUE(Throws<CFileException>([&] { file.Write("x", 1); }));
    file.Open((dir / "file").c_str(), CFile::modeReadWrite | CFile::modeCreate | CFile::modeNoTruncate);
    EXPECT_EQ(file.GetLength(), 16U);
    file.Open((dir / "file").c_str(), CFile::modeWrite | CFile::modeCreate);
    EXPECT_EQ(file.GetLength(), 0U);
}

TEST(CFile, SaysWhyItDoesNotOpen)
{
    const test::TempDir dir;
    struct {
        const char* why;
        std::string path;
        int nCause;
    } const cases[] = {
        { "not there", dir / "none", CFileException::fileNotFound },
        { "folder not there", dir / "none/file", CFileException::badPath },
        { "a folder", dir.path().string(), CFileException::accessDenied },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        CFile file;
        CFileException error;
        EXPECT_FALSE(file.Open(c.path.c_str(), CFile::modeRead, &error));
        EXPECT_EQ(error.m_cause, c.nCause);
        EXPECT_EQ(error.m_strFileName, c.path.c_str());
        EXPECT_TRUE(Throws<CFileException>([&] { const CFile thrown(c.path.c_str(), CFile::modeRead); }));
    }
}

TEST(CMemFile, WritesSeeksAndReads)
{
    CMemFile file(4);
    WriteSeekAndRead(file);
    BYTE* const bytes = file.Detach();
    EXPECT_EQ(memcmp(bytes, "hello", 5), 0);
    EXPECT_EQ(file.GetLength(), 0U);
    free(bytes);
}

TEST(CMemFile, KeepsToTheMemoryItWasGiven)
{
    BYTE given[4] = { 1, 2, 3, 4 };
    CMemFile file(given, sizeof(given));
    EXPECT_EQ(file.GetLength(), 4U);
    file.Seek(2, CFile::begin);
    EXPECT_TRUE(Throws<CMemoryException>([&] { file.Write("abc", 3); }));
    EXPECT_EQ(given[2], 3);
    file.Write("ab", 2);
    EXPECT_EQ(given[3], 'b');
    file.Seek(LLONG_MAX, CFile::begin);
    EXPECT_TRUE(Throws<CFileException>([&] { file.Write("a", 1); }));

    file.Attach(given, sizeof(given), 16);
    EXPECT_EQ(file.GetLength(), 0U);
    file.Write("123", 3);
    file.Write("456789", 6); // moves away
    EXPECT_EQ(given[3], 'b');
    char moved[10] = {};
    file.SeekToBegin();
    EXPECT_EQ(file.Read(moved, sizeof(moved)), 9U);
    EXPECT_STREQ(moved, "123456789");
}

} // namespace
