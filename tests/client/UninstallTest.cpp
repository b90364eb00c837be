// Uninstall removes what was installed, and nothing else.
#include "client/install/FileList.h"
#include "client/install/UserFolders.h"
#include "client/registry/RegistryKey.h"
#include "client/uninstall/Settings.h"
#include "tests/client/Programs.h"

#include <gtest/gtest.h>

#include <set>

#include <sys/stat.h>

namespace {

using test::Home;
using test::Outcome;
using test::read_file;
using test::RunProgram;
using test::write_file;
namespace fs = std::filesystem;

// An installation of a few files, with its list and the installer's copy of the payload.
class Installation : public Home {
public:
    Installation()
    {
        write_file(Tesk("PelkVarnhal.exe"), "the client");
        write_file(Tesk("Data/Config.xml"), "<client/>");
        write_file(Tesk("Help/Deep/a.html"), "<p>a</p>");
        write_file(Tesk("Help/b.html"), "<p>b</p>");
        write_file(Tesk("Temp/null"), "");
        m_strProgram = Install(UNINSTALL, "Uninstall.exe");
        write_file(Root() / "Update/TeskSetup", "MSCF and so on");
        WriteList();
    }

    const std::string& Program() const { return m_strProgram; }
    Outcome Uninstall() const { return RunProgram(m_strProgram + " --yes"); }
    // Installs and runs the configuration program, too.
    void Configure() const
    {
        Install(SETUP_CONFIGURE, "SetupConfigure.exe");
        WriteList();
        EXPECT_EQ(RunProgram(Tesk("SetupConfigure.exe").string()).nExitCode, 0);
    }

private:
    std::string m_strProgram;
};

std::string LineFor(const std::string& strName, const std::string& strBytes)
{
    const std::string strList =
        client::FormatFileList(std::vector{ client::ListedFile{ client::Sha256(strBytes), strBytes.size(), strName } });
    return strList.substr(strList.find('\n') + 1);
}

TEST(Uninstall, LeavesNothingOfAnUntouchedInstallation)
{
    const Installation installation;
    const Outcome outcome = installation.Uninstall();
    EXPECT_EQ(outcome.nExitCode, 0);
    EXPECT_EQ(outcome.strOutput, "Removed 7 files.\n");
    EXPECT_FALSE(fs::exists(installation.Root()));
    EXPECT_TRUE(fs::exists(installation.Data()));
}

TEST(Uninstall, KeepsAndNamesWhatTheUserChangedOrAdded)
{
    const Installation installation;
    write_file(installation.Tesk("Data/Config.xml"), "<CLIENT/>"); // as long as before
    fs::remove(installation.Tesk("Help/b.html"));
    fs::create_symlink("Deep/a.html", installation.Tesk("Help/b.html"));
    fs::remove(installation.Tesk("PelkVarnhal.exe"));
    fs::create_directory(installation.Tesk("PelkVarnhal.exe"));
    write_file(installation.Tesk("Help/Deep/notes.txt"), "mine");
    fs::create_directory(installation.Tesk("Mine"));
    write_file(installation.Root() / "Update/other", "mine");
    write_file(installation.Root() / "Update/TeskSetup", "my notes");

    const Outcome outcome = installation.Uninstall();
    EXPECT_EQ(outcome.nExitCode, 0);
    std::string strExpected = "Removed 4 files.\n"
                              "Kept Tesk/Data/Config.xml: changed since it was installed\n"
                              "Kept Tesk/Help/Deep/notes.txt: not installed\n"
                              "Kept Tesk/Help/b.html: changed since it was installed\n"
                              "Kept Tesk/Mine: not installed\n"
                              "Kept Tesk/PelkVarnhal.exe: changed since it was installed\n"
                              "Kept Update/TeskSetup: not installed\n"
                              "Kept Update/other: not installed\n";
    for (std::size_t n = 0; (n = strExpected.find("Kept ", n)) != std::string::npos; n++)
        strExpected.insert(n + 5, installation.Root().string() + "/");
    EXPECT_EQ(outcome.strOutput, strExpected);
    EXPECT_EQ(read_file(installation.Tesk("Data/Config.xml")), "<CLIENT/>");
    EXPECT_EQ(read_file(installation.Tesk("Help/Deep/notes.txt")), "mine");
    EXPECT_FALSE(fs::exists(installation.Tesk("Help/Deep/a.html")));
    EXPECT_FALSE(fs::exists(installation.Tesk("Temp")));
    EXPECT_FALSE(fs::exists(installation.Program()));
    EXPECT_EQ(read_file(installation.Root() / "Update/TeskSetup"), "my notes");
}

TEST(Uninstall, DoesNothingWithAListThatIsNotItsOwn)
{
    const Installation installation;
    const fs::path list = installation.Tesk(client::kFileListName);
    write_file(installation.Root() / "victim", "victim");
    installation.WriteList(LineFor("../victim", "victim"));
    EXPECT_EQ(installation.Uninstall().nExitCode, 4) << "damaged";
    write_file(list, LineFor("Data/Config.xml", "<client/>"));
    EXPECT_EQ(installation.Uninstall().nExitCode, 4) << "another program's";
    fs::remove(list);
    EXPECT_EQ(installation.Uninstall().nExitCode, 4) << "none";
    installation.WriteList();
    fs::rename(list, installation.Tesk("Data/list"));
    fs::create_symlink("list", list);
    EXPECT_EQ(installation.Uninstall().nExitCode, 4) << "a link to it";
    EXPECT_TRUE(fs::exists(installation.Root() / "victim"));
    EXPECT_TRUE(fs::exists(installation.Tesk("Data/Config.xml")));
}

TEST(Uninstall, FollowsNoLinkOutOfItsFolder)
{
    const Installation installation;
    write_file(installation.Data() / "Elsewhere/victim", "victim");
    write_file(installation.Data() / "Elsewhere/TeskSetup", "MSCF victim");
    installation.WriteList(LineFor("Link/victim", "victim"));
    fs::create_directory_symlink(installation.Data() / "Elsewhere", installation.Tesk("Link"));
    fs::remove_all(installation.Root() / "Update");
    fs::create_directory_symlink(installation.Data() / "Elsewhere", installation.Root() / "Update");
    const Outcome outcome = installation.Uninstall();
    EXPECT_EQ(read_file(installation.Data() / "Elsewhere/victim"), "victim");
    EXPECT_EQ(read_file(installation.Data() / "Elsewhere/TeskSetup"), "MSCF victim");
    EXPECT_NE(outcome.strOutput.find("Kept " + installation.Tesk("Link").string() + ": not installed"),
              std::string::npos)
        << outcome.strOutput;
}

TEST(Uninstall, AsksFirst)
{
    const Installation installation;
    EXPECT_EQ(RunProgram(installation.Program()).nExitCode, 3) << "no terminal";
    ::setenv("DISPLAY", ":nowhere", 1);
    EXPECT_EQ(RunProgram(installation.Program()).nExitCode, 3) << "nor a display that answers";
    EXPECT_EQ(test::RunOnTerminal(installation.Program(), "n\n").nExitCode, 3) << "the terminal is asked instead";
    ::unsetenv("DISPLAY");
    EXPECT_EQ(RunProgram(installation.Program() + " --version").strOutput, "Uninstall " PROJECT_VERSION "\n");
    EXPECT_EQ(RunProgram(installation.Program() + " --force").nExitCode, 2);
    EXPECT_EQ(RunProgram(installation.Program() + " --yes --yes").nExitCode, 2);
    EXPECT_EQ(test::RunOnTerminal(installation.Program(), "n\n").nExitCode, 3);
    EXPECT_EQ(test::RunOnTerminal(installation.Program(), "\n").nExitCode, 3);
    EXPECT_TRUE(fs::exists(installation.Tesk("Data/Config.xml")));
    const Outcome outcome = test::RunOnTerminal(installation.Program(), "y\n");
    EXPECT_EQ(outcome.nExitCode, 0);
    EXPECT_NE(outcome.strOutput.find("Remove Merav Conferencing from " + installation.Tesk().string()),
              std::string::npos)
        << outcome.strOutput;
    EXPECT_FALSE(fs::exists(installation.Root()));
}

TEST(Uninstall, IsNotHeldUpByPipesAndGoesWithoutAHome)
{
    const Installation installation;
    const fs::path config = installation.Config() / "Varnhal/client.conf";
    const fs::path entry = installation.Data() / "applications/merav-conferencing.desktop";
    for (const fs::path& pipe : { config, entry }) {
        fs::create_directories(pipe.parent_path());
        ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    }
    ::unsetenv("XDG_CONFIG_HOME");
    ::unsetenv("HOME");
    Outcome outcome = installation.Uninstall();
    EXPECT_EQ(outcome.nExitCode, 1);
    EXPECT_NE(outcome.strOutput.find("HOME is not set"), std::string::npos) << outcome.strOutput;
    EXPECT_TRUE(fs::exists(config));
    EXPECT_FALSE(fs::exists(installation.Program()));

    const Installation another;
    fs::create_directories(another.Config() / "Varnhal");
    ASSERT_EQ(::mkfifo((another.Config() / "Varnhal/client.conf").c_str(), 0600), 0);
    EXPECT_EQ(another.Uninstall().nExitCode, 0);
    EXPECT_FALSE(fs::exists(another.Config() / "Varnhal"));
}

bool KeyExists(const char* pszKey)
{
    return client::RegistryKey(pszKey, KEY_QUERY_VALUE).Error() == ERROR_SUCCESS;
}

// Names of everything below the folder.
std::set<std::string> Below(const fs::path& folder)
{
    std::set<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(folder))
        names.insert(entry.path().lexically_relative(folder).string());
    return names;
}

TEST(Uninstall, LeavesTheHomeAsTheInstallationFoundIt)
{
    const struct {
        const char* why;
        std::vector<const char*> folders;
    } cases[] = {
        { "a new home", {} },
        { "a home in use", { ".config/other/folder", ".local/share/other", ".local/bin" } },
        { "empty folders were there before", { ".config/autostart", ".local/share/applications" } },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        const Installation installation;
        const fs::path& home = installation.Path();
        fs::remove_all(home / ".config");
        fs::remove_all(home / ".local/state");
        for (const char* pszFolder : c.folders)
            fs::create_directories(home / pszFolder);
        fs::rename(installation.Root(), home / "away");
        if (c.folders.empty())
            fs::remove_all(home / ".local");
        std::set<std::string> before = Below(home);
        std::erase_if(before, [](const std::string& strName) { return strName.starts_with("away"); });
        fs::create_directories(installation.Data());
        fs::rename(home / "away", installation.Root());
        test::WriteValue(client::kVersionKey, "MAINVER", "4.0.0.1"); // as the installer does before the next step
        installation.Configure();
        test::WriteValue(client::kRunKey, client::kRunValue, installation.Tesk(client::kClientProgram).string());
        EXPECT_TRUE(fs::exists(home / ".config/autostart/Merav Conferencing.desktop"));
        EXPECT_EQ(installation.Uninstall().nExitCode, 0);
        EXPECT_EQ(Below(home), before);
    }
}

TEST(Uninstall, RemovesItsOwnSettingsAndNoOthers)
{
    const Installation installation;
    installation.Configure();
    test::WriteValue(client::kConnectionKey, "ProxyHost", "");
    test::WriteValue(client::kVersionKey, "MAINVER", "4.0.0.1");
    test::WriteValue("Software\\Other", "Value", "mine");
    test::WriteValue(client::kRunKey, client::kRunValue, "/elsewhere\\Varnhal\\Tesk\\PelkVarnhal.exe");
    write_file(installation.Config() / "Varnhal/own.txt", "mine");

    client::Report report;
    client::RemoveSettings("/elsewhere/Varnhal/Tesk", &report);
    EXPECT_TRUE(KeyExists(client::kVersionKey)) << "those of another client";
    EXPECT_TRUE(fs::exists(installation.Config() / "Varnhal/client.conf"));

    const std::string strMenuEntry = (installation.Data() / "applications/merav-conferencing.desktop").string();
    EXPECT_TRUE(fs::exists(strMenuEntry));
    test::WriteValue(client::kRunKey, client::kRunValue,
                     installation.Data().string() + "\\Varnhal\\Tesk\\PelkVarnhal.exe");
    test::WriteValue("Software\\Dalvor", "Own", "mine");
    const Outcome outcome = installation.Uninstall();
    EXPECT_EQ(outcome.nExitCode, 0) << outcome.strOutput;
    EXPECT_FALSE(client::RegistryKey(client::kRunKey, KEY_QUERY_VALUE).Text(client::kRunValue));
    EXPECT_FALSE(KeyExists("Software\\Dalvor\\Varnhal"));
    EXPECT_TRUE(KeyExists("Software\\Dalvor")) << "has a value of the user's";
    EXPECT_TRUE(KeyExists("Software\\Other"));
    EXPECT_FALSE(fs::exists(strMenuEntry));
    EXPECT_FALSE(fs::exists(installation.Config() / "Varnhal/client.conf"));
    EXPECT_EQ(read_file(installation.Config() / "Varnhal/own.txt"), "mine");
    EXPECT_NE(outcome.strOutput.find("Kept " + (installation.Config() / "Varnhal/own.txt").string()),
              std::string::npos);

    EXPECT_TRUE(fs::exists(installation.Config() / "registry")) << "others have something in it";
    EXPECT_EQ(RegDeleteKeyA(HKEY_CURRENT_USER, "Software\\Dalvor"), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteKeyA(HKEY_CURRENT_USER, "Software\\Other"), ERROR_SUCCESS);
    client::RemoveSettings(installation.Tesk().string(), &report);
    EXPECT_FALSE(fs::exists(installation.Config() / "registry")) << "nobody has";
}

} // namespace
