// SetupConfigure writes a user's settings and menu entry.
#include "client/setup_configure/Configure.h"
#include "tests/client/Programs.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace {

using test::Home;
using test::Outcome;
using test::read_file;
using test::RunProgram;
using test::write_file;

TEST(SetupConfigure, WritesSettingsAndAMenuEntryThatTheDesktopAccepts)
{
    const Home home;
    const std::string strProgram = home.Install(SETUP_CONFIGURE, "SetupConfigure.exe");
    const Outcome run = RunProgram(strProgram);
    EXPECT_EQ(run.nExitCode, 0);
    EXPECT_EQ(run.strOutput, "");
    EXPECT_NE(read_file(home.Config() / "Varnhal/client.conf").find("\nFolder=" + home.Tesk().string() + "\n"),
              std::string::npos);
    const std::filesystem::path entry = home.Data() / "applications/merav-conferencing.desktop";
    EXPECT_NE(read_file(entry).find("\nTryExec=" + home.Tesk().string() + "/PelkVarnhal.exe\n"), std::string::npos);
    const Outcome validation = RunProgram("desktop-file-validate " + entry.string());
    EXPECT_EQ(validation.nExitCode, 0) << validation.strOutput;

    std::size_t nFiles = 0; // nothing else, no temporary
    for (const auto& file : std::filesystem::recursive_directory_iterator(home.Root().parent_path()))
        nFiles += file.is_regular_file();
    EXPECT_EQ(nFiles, 2u);
}

TEST(SetupConfigure, KeepsWhatTheUserChose)
{
    const std::string strFirst = client::ConfigText("/old", "autostart data", "");
    EXPECT_NE(strFirst.find("MuteOnJoin=yes\n"), std::string::npos);
    const std::string strSecond =
        client::ConfigText("/new", "", "# mine\nMuteOnJoin=no\nOwn=1\nFolder=/old\nTheme=dark");
    EXPECT_TRUE(strSecond.starts_with("# mine\nMuteOnJoin=no\nOwn=1\nTheme=dark\n")) << strSecond;
    EXPECT_TRUE(strSecond.ends_with("\nFolder=/new\n"));
    EXPECT_EQ(strSecond.find("/old"), std::string::npos);
    EXPECT_EQ(strSecond.find("MuteOnJoin=yes"), std::string::npos);
    EXPECT_EQ(client::ConfigText("/new", "config", strSecond), strSecond);
}

TEST(SetupConfigure, QuotesAnyFolderForTheDesktop)
{
    const struct {
        const char* pszFolder;
        const char* pszLine;
    } cases[] = {
        { "/a b", "\nExec=\"/a b/PelkVarnhal.exe\"\n" },
        { "/50%", "\nExec=\"/50%%/PelkVarnhal.exe\"\n" },
        { "/a\"b$c`d", "\nExec=\"/a\\\\\"b\\\\$c\\\\`d/PelkVarnhal.exe\"\n" },
        { "/a\\b", "\nTryExec=/a\\\\b/PelkVarnhal.exe\n" },
        { "/a\\b", "\nExec=\"/a\\\\\\\\b/PelkVarnhal.exe\"\n" },
    };
    const Home home;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.pszFolder);
        const std::string strEntry = client::MenuEntryText(c.pszFolder);
        EXPECT_NE(strEntry.find(c.pszLine), std::string::npos) << strEntry;
        const std::filesystem::path entry = home.Data() / "entry.desktop";
        write_file(entry, strEntry);
        EXPECT_EQ(RunProgram("desktop-file-validate " + entry.string()).strOutput, "");
    }
    EXPECT_EQ(client::MenuEntryText("/a\nExec=evil"), "");
}

TEST(SetupConfigure, SaysWhatItCannotDo)
{
    const Home home;
    const std::string strProgram = home.Install(SETUP_CONFIGURE, "SetupConfigure.exe");
    write_file(home.Config() / "Varnhal", "a file where the folder should be");
    Outcome run = RunProgram(strProgram);
    EXPECT_EQ(run.nExitCode, 1);
    EXPECT_NE(run.strOutput.find("/Varnhal: cannot be made"), std::string::npos) << run.strOutput;

    std::filesystem::remove(home.Config() / "Varnhal");
    std::filesystem::create_directories(home.Data() / "applications/merav-conferencing.desktop");
    run = RunProgram(strProgram);
    EXPECT_EQ(run.nExitCode, 1) << "a folder lies where the entry should be";
    std::filesystem::remove(home.Data() / "applications/merav-conferencing.desktop");
    EXPECT_TRUE(std::filesystem::is_empty(home.Data() / "applications")) << "its temporary is left";

    std::filesystem::remove(home.Config() / "Varnhal/client.conf");
    const std::string strHuge(100000, '#');
    write_file(home.Config() / "Varnhal/client.conf", strHuge);
    EXPECT_EQ(RunProgram(strProgram).nExitCode, 1) << "settings that cannot be read must stay";
    EXPECT_EQ(std::filesystem::file_size(home.Config() / "Varnhal/client.conf"), strHuge.size());

    std::filesystem::remove(home.Config() / "Varnhal/client.conf");
    ASSERT_EQ(::mkfifo((home.Config() / "Varnhal/client.conf").c_str(), 0600), 0);
    EXPECT_EQ(RunProgram(strProgram).nExitCode, 0) << "a pipe lies where the settings should be";

    ::unsetenv("HOME");
    ::unsetenv("XDG_CONFIG_HOME");
    run = RunProgram(strProgram);
    EXPECT_EQ(run.nExitCode, 1);
    EXPECT_NE(run.strOutput.find("HOME"), std::string::npos) << run.strOutput;
}

} // namespace
