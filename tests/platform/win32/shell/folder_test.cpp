#include "tests/support/FailingFileSystem.h"
#include "tests/support/TestHome.h"

#include <shlobj.h>
#include <shlwapi.h>

#include <cerrno>
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

// What the call says, then what it wrote.
std::string folder(int id, BOOL create = FALSE)
{
    char path[MAX_PATH] = "untouched";
    const BOOL result = SHGetSpecialFolderPathA(nullptr, path, id, create);
    return (result ? "ok " : std::to_string(GetLastError()) + " ") + path;
}

bool is_folder(const std::string& path)
{
    return PathIsDirectoryA(path.c_str()) == static_cast<BOOL>(FILE_ATTRIBUTE_DIRECTORY);
}

// Each test has the environment of a new account.
class ShellFolder : public testing::Test {
protected:
    ShellFolder()
    {
        ::setenv("HOME", dir.path().c_str(), 1);
        ::unsetenv("XDG_DATA_HOME");
        ::unsetenv("XDG_CONFIG_HOME");
    }

    const test::TempDir dir;
    const std::string home = dir.path().string();
    const std::string share = home + "/.local/share";
};

TEST_F(ShellFolder, FollowsTheDesktopsRules)
{
    const std::string longest(static_cast<std::size_t>(MAX_PATH) - 1, 'a');
    const struct {
        const char* why;
        const char* variable;
        std::string value;
        int id;
        std::string result;
    } kCases[] = {
        { "the default", "XDG_DATA_HOME", "", CSIDL_LOCAL_APPDATA, "ok " + share },
        { "another place", "XDG_DATA_HOME", home + "/data", CSIDL_LOCAL_APPDATA, "ok " + home + "/data" },
        { "a separator at its end", "XDG_DATA_HOME", home + "/data//", CSIDL_LOCAL_APPDATA, "ok " + home + "/data" },
        { "a relative place counts as none", "XDG_DATA_HOME", "data", CSIDL_LOCAL_APPDATA, "ok " + share },
        { "a tilde is relative", "XDG_DATA_HOME", "~/data", CSIDL_LOCAL_APPDATA, "ok " + share },
        { "a place that would read as another", "XDG_DATA_HOME", home + "/a\\b", CSIDL_LOCAL_APPDATA, "3 /dev/null" },
        { "too long", "XDG_DATA_HOME", "/" + longest, CSIDL_LOCAL_APPDATA, "3 /dev/null" },
        { "settings", "XDG_CONFIG_HOME", "", CSIDL_APPDATA, "ok " + home + "/.config" },
        { "settings elsewhere", "XDG_CONFIG_HOME", home + "/set", CSIDL_APPDATA, "ok " + home + "/set" },
        { "the home", "XDG_DATA_HOME", "", CSIDL_PROFILE, "ok " + home },
        { "no such folder", "XDG_DATA_HOME", "", 99, "87 " },
    };
    for (const auto& c : kCases) {
        ::setenv(c.variable, c.value.c_str(), 1);
        EXPECT_EQ(folder(c.id), c.result) << c.why;
    }
}

TEST_F(ShellFolder, MakesWhatAlwaysExistsAndTheRestWhenAsked)
{
    EXPECT_EQ(folder(CSIDL_LOCAL_APPDATA), "ok " + share);
    EXPECT_TRUE(is_folder(share));
    struct stat info {};
    ASSERT_EQ(::stat((home + "/.local").c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0700u) << "for the user alone";

    EXPECT_EQ(folder(CSIDL_PROGRAMS), "2 " + share + "/applications");
    EXPECT_FALSE(is_folder(share + "/applications"));
    EXPECT_EQ(folder(CSIDL_PROGRAMS | CSIDL_FLAG_CREATE), "ok " + share + "/applications");
    EXPECT_TRUE(is_folder(share + "/applications"));
    EXPECT_EQ(folder(CSIDL_PROGRAMS), "ok " + share + "/applications");
}

// Whatever stands in the way, the path is told, and the caller's own first step below it fails too.
TEST_F(ShellFolder, TellsThePathEvenWhenItCannotBeMade)
{
    const struct {
        const char* why;
        void (*obstruct)(const std::string& local);
    } kCases[] = {
        { "a file in its place", [](const std::string& local) { test::write_file(local + "/share", "x"); } },
        { "a file above it", [](const std::string& local) { test::write_file(local, "x"); } },
        { "a link to nowhere",
          [](const std::string& local) {
              std::filesystem::create_directory(local);
              std::filesystem::create_symlink("none", local + "/share");
          } },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        c.obstruct(home + "/.local");
        EXPECT_EQ(folder(CSIDL_LOCAL_APPDATA), "3 " + share);
        EXPECT_FALSE(PathFileExistsA((share + "\\Varnhal").c_str()));
        EXPECT_FALSE(CreateDirectoryA((share + "\\Varnhal").c_str(), nullptr));
        std::filesystem::remove_all(home + "/.local");
    }
    const test::WithFailingFileSystem files;
    files->fill_after(0);
    EXPECT_EQ(folder(CSIDL_LOCAL_APPDATA), "112 " + share);
    files->fail_all(test::FileCall::make_directory, EACCES);
    EXPECT_EQ(folder(CSIDL_LOCAL_APPDATA), "5 " + share);
    EXPECT_FALSE(PathFileExistsA((home + "/.local").c_str()));
}

TEST_F(ShellFolder, FallsBackToTheAccountsHome)
{
    ::setenv("HOME", "relative", 1);
    EXPECT_EQ(folder(CSIDL_PROFILE).substr(0, 4), "ok /");
    EXPECT_EQ(SHGetSpecialFolderPathA(nullptr, nullptr, CSIDL_PROFILE, FALSE), FALSE);
}

TEST_F(ShellFolder, AnswersQuestionsAboutPaths)
{
    test::write_file(home + "/file", "x");
    EXPECT_TRUE(PathFileExistsA((home + "\\file").c_str()));
    EXPECT_TRUE(PathFileExistsA(home.c_str()));
    EXPECT_FALSE(PathFileExistsA((home + "\\none").c_str()));
    EXPECT_FALSE(PathFileExistsA(nullptr));
    EXPECT_TRUE(is_folder(home + "\\"));
    EXPECT_FALSE(PathIsDirectoryA((home + "\\file").c_str()));
    EXPECT_FALSE(PathIsDirectoryA((home + "\\none").c_str()));
}

} // namespace
