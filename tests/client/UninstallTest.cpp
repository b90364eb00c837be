// Uninstall removes what was installed, and nothing else.
#include "client/install/FileList.h"
#include "client/install/UserFolders.h"
#include "client/registry/RegistryKey.h"
#include "client/uninstall/Settings.h"
#include "tests/client/Programs.h"

#include <windows.h>
#include <winreg.h>

#include <gtest/gtest.h>

#include <set>

#include <sys/stat.h>

namespace {

using test::Home;
using test::Outcome;
using test::ReadFile;
using test::RunProgram;
using test::WriteFile;
namespace fs = std::filesystem;

// An installation of a few files, with its list and the installer's copy of the payload.
class Installation {
public:
    Installation()
    {
        WriteFile(Path("PelkVarnhal.exe"), "the client");
        WriteFile(Path("Data/Config.xml"), "<client/>");
        WriteFile(Path("Help/Deep/a.html"), "<p>a</p>");
        WriteFile(Path("Help/b.html"), "<p>b</p>");
        WriteFile(Path("Temp/null"), "");
        m_strProgram = m_home.Install(UNINSTALL, "Uninstall.exe");
        WriteFile(m_home.Root() / "Update/TeskSetup", "MSCF and so on");
        WriteList({});
    }

    // Writes the list of what is there now, and the lines given.
    void WriteList(const std::string& strMoreLines) const
    {
        std::vector<client::ListedFile> files;
        for (const auto& entry : fs::recursive_directory_iterator(m_home.Tesk())) {
            const std::string strName = entry.path().lexically_relative(m_home.Tesk()).string();
            if (entry.is_regular_file() && strName != client::kFileListName) {
                const std::string strBytes = ReadFile(entry.path());
                files.push_back({ client::Sha256(strBytes), strBytes.size(), strName });
            }
        }
        WriteFile(Path(client::kFileListName), client::FormatFileList(files) + strMoreLines);
    }

    const Home& home() const { return m_home; }
    fs::path Path(const std::string& strName) const { return m_home.Tesk() / strName; }
    const std::string& Program() const { return m_strProgram; }
    Outcome Uninstall() const { return RunProgram(m_strProgram, { "--yes" }); }

private:
    Home m_home;
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
    EXPECT_FALSE(fs::exists(installation.home().Root()));
    EXPECT_TRUE(fs::exists(installation.home().Data()));
}

TEST(Uninstall, KeepsAndNamesWhatTheUserChangedOrAdded)
{
    const Installation installation;
    WriteFile(installation.Path("Data/Config.xml"), "<CLIENT/>"); // as long as before
    fs::remove(installation.Path("Help/b.html"));
    fs::create_symlink("Deep/a.html", installation.Path("Help/b.html"));
    fs::remove(installation.Path("PelkVarnhal.exe"));
    fs::create_directory(installation.Path("PelkVarnhal.exe"));
    WriteFile(installation.Path("Help/Deep/notes.txt"), "mine");
    fs::create_directory(installation.Path("Mine"));
    WriteFile(installation.home().Root() / "Update/other", "mine");

    const Outcome outcome = installation.Uninstall();
    EXPECT_EQ(outcome.nExitCode, 0);
    const std::string strTesk = installation.home().Tesk().string();
    EXPECT_EQ(outcome.strOutput, "Removed 4 files.\n"
                                 "Kept " +
                                     strTesk +
                                     "/Data/Config.xml: changed since it was installed\n"
                                     "Kept " +
                                     strTesk +
                                     "/Help/Deep/notes.txt: not installed\n"
                                     "Kept " +
                                     strTesk +
                                     "/Help/b.html: changed since it was installed\n"
                                     "Kept " +
                                     strTesk +
                                     "/Mine: not installed\n"
                                     "Kept " +
                                     strTesk +
                                     "/PelkVarnhal.exe: changed since it was installed\n"
                                     "Kept " +
                                     installation.home().Root().string() + "/Update/other: not installed\n");
    EXPECT_EQ(ReadFile(installation.Path("Data/Config.xml")), "<CLIENT/>");
    EXPECT_EQ(ReadFile(installation.Path("Help/Deep/notes.txt")), "mine");
    EXPECT_FALSE(fs::exists(installation.Path("Help/Deep/a.html")));
    EXPECT_FALSE(fs::exists(installation.Path("Temp")));
    EXPECT_FALSE(fs::exists(installation.Program()));
    EXPECT_FALSE(fs::exists(installation.home().Root() / "Update/TeskSetup"));
}

TEST(Uninstall, DoesNothingWithADamagedList)
{
    struct ListCase {
        const char* why;
        std::string strLines;
    };
    const ListCase cases[] = {
        { "a name climbs out", LineFor("../victim", "victim") },
        { "a name climbs out on the way", LineFor("Help/../../victim", "victim") },
        { "a name is absolute", LineFor("/tmp/victim", "victim") },
        { "cut", LineFor("Help/c.html", "c").substr(0, 70) },
        { "not a list", "rm -rf\n" },
    };
    for (const ListCase& c : cases) {
        SCOPED_TRACE(c.why);
        const Installation installation;
        WriteFile(installation.home().Root() / "victim", "victim");
        installation.WriteList(c.strLines);
        EXPECT_EQ(installation.Uninstall().nExitCode, 4);
        EXPECT_TRUE(fs::exists(installation.home().Root() / "victim"));
        EXPECT_TRUE(fs::exists(installation.Path("Data/Config.xml")));
    }
    const Installation installation;
    fs::remove(installation.Path(client::kFileListName));
    EXPECT_EQ(installation.Uninstall().nExitCode, 4) << "no list";
    WriteFile(installation.Path(client::kFileListName), LineFor("Data/Config.xml", "<client/>"));
    EXPECT_EQ(installation.Uninstall().nExitCode, 4) << "another program's list";
    fs::remove(installation.Path(client::kFileListName));
    fs::create_symlink("Config.xml", installation.Path(client::kFileListName));
    EXPECT_EQ(installation.Uninstall().nExitCode, 4) << "a link for a list";
    EXPECT_TRUE(fs::exists(installation.Path("Data/Config.xml")));
}

TEST(Uninstall, FollowsNoLinkOutOfItsFolder)
{
    const Installation installation;
    WriteFile(installation.home().Data() / "Elsewhere/victim", "victim");
    WriteFile(installation.home().Data() / "Elsewhere/TeskSetup", "MSCF victim");
    installation.WriteList(LineFor("Link/victim", "victim"));
    fs::create_directory_symlink(installation.home().Data() / "Elsewhere", installation.Path("Link"));
    fs::remove_all(installation.home().Root() / "Update");
    fs::create_directory_symlink(installation.home().Data() / "Elsewhere", installation.home().Root() / "Update");
    const Outcome outcome = installation.Uninstall();
    EXPECT_EQ(ReadFile(installation.home().Data() / "Elsewhere/victim"), "victim");
    EXPECT_EQ(ReadFile(installation.home().Data() / "Elsewhere/TeskSetup"), "MSCF victim");
    EXPECT_NE(outcome.strOutput.find("Kept " + installation.Path("Link").string() + ": not installed"),
              std::string::npos)
        << outcome.strOutput;
}

TEST(Uninstall, KeepsAPayloadCopyThatIsNone)
{
    const Installation installation;
    WriteFile(installation.home().Root() / "Update/TeskSetup", "my notes");
    EXPECT_EQ(installation.Uninstall().nExitCode, 0);
    EXPECT_EQ(ReadFile(installation.home().Root() / "Update/TeskSetup"), "my notes");
}

TEST(Uninstall, AsksFirst)
{
    const Installation installation;
    EXPECT_EQ(RunProgram(installation.Program()).nExitCode, 3) << "no terminal";
    ::setenv("DISPLAY", ":nowhere", 1);
    EXPECT_EQ(RunProgram(installation.Program()).nExitCode, 3) << "nor a program that could show the window";
    ::unsetenv("DISPLAY");
    EXPECT_EQ(RunProgram(installation.Program(), { "--force" }).nExitCode, 2);
    EXPECT_EQ(RunProgram(installation.Program(), { "--yes", "--yes" }).nExitCode, 2);
    EXPECT_EQ(test::RunOnTerminal(installation.Program(), "n\n").nExitCode, 3);
    EXPECT_EQ(test::RunOnTerminal(installation.Program(), "\n").nExitCode, 3);
    EXPECT_TRUE(fs::exists(installation.Path("Data/Config.xml")));
    const Outcome outcome = test::RunOnTerminal(installation.Program(), "y\n");
    EXPECT_EQ(outcome.nExitCode, 0);
    EXPECT_NE(outcome.strOutput.find("Remove Merav Conferencing from " + installation.home().Tesk().string()),
              std::string::npos)
        << outcome.strOutput;
    EXPECT_FALSE(fs::exists(installation.home().Root()));
}

TEST(Uninstall, IsNotHeldUpByPipesAndGoesWithoutAHome)
{
    const Installation installation;
    const fs::path config = installation.home().Config() / "Varnhal/client.conf";
    const fs::path entry = installation.home().Data() / "applications/merav-conferencing.desktop";
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
    fs::create_directories(another.home().Config() / "Varnhal");
    ASSERT_EQ(::mkfifo((another.home().Config() / "Varnhal/client.conf").c_str(), 0600), 0);
    EXPECT_EQ(another.Uninstall().nExitCode, 0);
    EXPECT_FALSE(fs::exists(another.home().Config() / "Varnhal"));
}

void WriteValue(const char* pszKey, const char* pszName, const std::string& strText)
{
    HKEY hKey = nullptr;
    ASSERT_EQ(RegCreateKeyA(HKEY_CURRENT_USER, pszKey, &hKey), ERROR_SUCCESS);
    EXPECT_EQ(RegSetValueExA(hKey, pszName, 0, REG_SZ, reinterpret_cast<const BYTE*>(strText.c_str()),
                             static_cast<DWORD>(strText.size() + 1)),
              ERROR_SUCCESS);
    RegCloseKey(hKey);
}

bool KeyExists(const char* pszKey)
{
    HKEY hKey = nullptr;
    const bool bExists = RegOpenKeyExA(HKEY_CURRENT_USER, pszKey, 0, KEY_QUERY_VALUE, &hKey) == ERROR_SUCCESS;
    if (bExists)
        RegCloseKey(hKey);
    return bExists;
}

bool AutoStarts()
{
    HKEY hKey = nullptr;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\Microsoft\\Windows\\CurrentVersion\\Run", 0, KEY_QUERY_VALUE,
                      &hKey) != ERROR_SUCCESS)
        return false;
    const LSTATUS nError = RegQueryValueExA(hKey, "Merav Conferencing", nullptr, nullptr, nullptr, nullptr);
    RegCloseKey(hKey);
    return nError == ERROR_SUCCESS;
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
    struct HomeCase {
        const char* why;
        std::vector<const char*> folders;
    };
    const HomeCase cases[] = {
        { "a new home", {} },
        { "a home in use", { ".config/other/folder", ".local/share/other", ".local/bin" } },
        { "empty folders were there before", { ".config/autostart", ".local/share/applications" } },
    };
    for (const HomeCase& c : cases) {
        SCOPED_TRACE(c.why);
        const Installation installation;
        const fs::path home = installation.home().Data().parent_path().parent_path();
        fs::remove_all(home / ".config");
        fs::remove_all(home / ".local/state");
        for (const char* pszFolder : c.folders)
            fs::create_directories(home / pszFolder);
        fs::rename(installation.home().Root(), home / "away");
        if (c.folders.empty())
            fs::remove_all(home / ".local");
        std::set<std::string> before = Below(home);
        std::erase_if(before, [](const std::string& strName) { return strName.starts_with("away"); });
        fs::create_directories(installation.home().Data());
        fs::rename(home / "away", installation.home().Root());
        WriteValue(client::kVersionKey, "MAINVER", "4.0.0.1"); // as the installer does before it runs SetupConfigure

        installation.home().Install(SETUP_CONFIGURE, "SetupConfigure.exe");
        installation.WriteList({});
        ASSERT_EQ(RunProgram(installation.Path("SetupConfigure.exe").string()).nExitCode, 0);
        WriteValue(client::kRunKey, client::kRunValue, installation.Path(client::kClientProgram).string());
        EXPECT_TRUE(fs::exists(home / ".config/autostart/Merav Conferencing.desktop"));
        EXPECT_EQ(installation.Uninstall().nExitCode, 0);
        EXPECT_EQ(Below(home), before);
    }
}

// The registry is the process's own: the one test that fills it and looks at it afterwards.
TEST(Uninstall, RemovesItsOwnSettingsAndNoOthers)
{
    constexpr char kRunKey[] = "Software\\Microsoft\\Windows\\CurrentVersion\\Run";
    const Installation installation;
    const Home& home = installation.home();
    installation.home().Install(SETUP_CONFIGURE, "SetupConfigure.exe");
    installation.WriteList({});
    ASSERT_EQ(RunProgram(installation.Path("SetupConfigure.exe").string()).nExitCode, 0);
    WriteValue("Software\\Dalvor\\Varnhal\\Tesk\\Connection", "ProxyHost", "");
    WriteValue("Software\\Dalvor\\Varnhal\\Tesk\\Version", "MAINVER", "4.0.0.1");
    WriteValue("Software\\Other", "Value", "mine");
    WriteValue(kRunKey, "Merav Conferencing", "/elsewhere\\Varnhal\\Tesk\\PelkVarnhal.exe");
    WriteFile(home.Config() / "Varnhal/own.txt", "mine");

    client::Report report;
    client::RemoveSettings("/elsewhere/Varnhal/Tesk", &report);
    EXPECT_TRUE(KeyExists("Software\\Dalvor\\Varnhal\\Tesk\\Version")) << "those of another client";
    EXPECT_TRUE(fs::exists(home.Config() / "Varnhal/client.conf"));

    const std::string strMenuEntry = (home.Data() / "applications/merav-conferencing.desktop").string();
    EXPECT_TRUE(fs::exists(strMenuEntry));
    WriteValue(kRunKey, "Merav Conferencing", home.Data().string() + "\\Varnhal\\Tesk\\PelkVarnhal.exe");
    WriteValue("Software\\Dalvor", "Own", "mine");
    const Outcome outcome = installation.Uninstall();
    EXPECT_EQ(outcome.nExitCode, 0) << outcome.strOutput;
    EXPECT_FALSE(AutoStarts());
    EXPECT_FALSE(KeyExists("Software\\Dalvor\\Varnhal"));
    EXPECT_TRUE(KeyExists("Software\\Dalvor")) << "has a value of the user's";
    EXPECT_TRUE(KeyExists("Software\\Other"));
    EXPECT_FALSE(fs::exists(strMenuEntry));
    EXPECT_FALSE(fs::exists(home.Config() / "Varnhal/client.conf"));
    EXPECT_EQ(ReadFile(home.Config() / "Varnhal/own.txt"), "mine");
    EXPECT_NE(outcome.strOutput.find("Kept " + (home.Config() / "Varnhal/own.txt").string()), std::string::npos);

    EXPECT_TRUE(fs::exists(home.Config() / "registry")) << "others have something in it";
    EXPECT_EQ(RegDeleteKeyA(HKEY_CURRENT_USER, "Software\\Dalvor"), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteKeyA(HKEY_CURRENT_USER, "Software\\Other"), ERROR_SUCCESS);
    client::RemoveSettings(home.Tesk().string(), &report);
    EXPECT_FALSE(fs::exists(home.Config() / "registry")) << "nobody has";
}

} // namespace
