#include "tests/support/FailingFileSystem.h"
#include "tests/support/TestHome.h"

#include <windows.h>

#include <cerrno>
#include <fstream>
#include <string>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

class FolderTest : public testing::Test {
protected:
    FolderTest() { std::ofstream(dir / "file") << "x"; }
    ~FolderTest() override { SetCurrentDirectoryA("/"); }
    std::string in(const char* name) const { return dir.path().string() + "\\" + name; }

    test::TempDir dir;
};

TEST_F(FolderTest, MakesOneFolderUnderAnExistingOne)
{
    EXPECT_TRUE(CreateDirectoryA(in("made").c_str(), nullptr));
    EXPECT_EQ(GetFileAttributesA(in("made").c_str()), FILE_ATTRIBUTE_DIRECTORY);
    const struct {
        const char* name;
        DWORD error;
    } kCases[] = { { "made", ERROR_ALREADY_EXISTS },
                   { "file", ERROR_ALREADY_EXISTS },
                   { "none\\folder", ERROR_PATH_NOT_FOUND },
                   { "file\\folder", ERROR_PATH_NOT_FOUND } };
    for (const auto& c : kCases) {
        EXPECT_FALSE(CreateDirectoryA(in(c.name).c_str(), nullptr));
        EXPECT_EQ(GetLastError(), c.error) << c.name;
    }
    const test::WithFailingFileSystem files;
    files->fill_after(0);
    EXPECT_FALSE(CreateDirectoryA(in("made").c_str(), nullptr));
    EXPECT_EQ(GetLastError(), ERROR_ALREADY_EXISTS) << "a full disk does not hide what is there";
    EXPECT_FALSE(CreateDirectoryA(in("more").c_str(), nullptr));
    EXPECT_EQ(GetLastError(), ERROR_DISK_FULL);
}

TEST_F(FolderTest, RemovesEmptyFoldersOnly)
{
    CreateDirectoryA(in("a").c_str(), nullptr);
    CreateDirectoryA(in("a\\b").c_str(), nullptr);
    const struct {
        const char* name;
        DWORD error;
    } kCases[] = { { "a", ERROR_DIR_NOT_EMPTY },
                   { "file", ERROR_DIRECTORY },
                   { "file\\b", ERROR_PATH_NOT_FOUND },
                   { "none", ERROR_FILE_NOT_FOUND } };
    for (const auto& c : kCases) {
        EXPECT_FALSE(RemoveDirectoryA(in(c.name).c_str()));
        EXPECT_EQ(GetLastError(), c.error) << c.name;
    }
    EXPECT_TRUE(RemoveDirectoryA(in("a/b\\").c_str()));
    EXPECT_TRUE(RemoveDirectoryA(in("a").c_str()));
}

TEST_F(FolderTest, ShowsAttributes)
{
    EXPECT_EQ(GetFileAttributesA(in("file").c_str()), FILE_ATTRIBUTE_NORMAL);
    ::chmod((dir / "file").c_str(), 0444);
    EXPECT_EQ(GetFileAttributesA(in("file").c_str()), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(GetFileAttributesA(in("none").c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
}

TEST_F(FolderTest, EntersAFolderAndCountsRelativeTextsFromIt)
{
    ASSERT_TRUE(SetCurrentDirectoryA(in(".").c_str()));
    EXPECT_EQ(GetFileAttributesA("file"), FILE_ATTRIBUTE_NORMAL);
    EXPECT_FALSE(SetCurrentDirectoryA("file"));
    EXPECT_EQ(GetLastError(), ERROR_DIRECTORY);
    EXPECT_FALSE(SetCurrentDirectoryA("none"));
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);

    char path[MAX_PATH];
    const std::string expected = std::filesystem::canonical(dir.path()).string();
    const auto length = static_cast<DWORD>(expected.size());
    EXPECT_EQ(GetCurrentDirectoryA(MAX_PATH, path), length);
    EXPECT_EQ(path, expected);
    path[0] = '!';
    EXPECT_EQ(GetCurrentDirectoryA(length, path), length + 1) << "no room for the terminator";
    EXPECT_EQ(path[0], '!');
}

} // namespace
