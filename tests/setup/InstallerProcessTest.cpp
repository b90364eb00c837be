// The installer as a process of its own (setup_driver): every way to end it, a neighbour, a locked registry, a running
// client.
#include "tests/setup/InstallerOnScreen.h"
#include "tests/support/CabinetBuilder.h"

#include <gtest/gtest.h>

#include <spawn.h>
#include <sqlite3.h>
#include <sys/wait.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <map>

namespace {

namespace fs = std::filesystem;
using test::ClientFolder;
using test::InstallRoot;
using test::read_file;

std::map<std::string, std::string> FilesBelow(const fs::path& folder)
{
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file())
            files[entry.path().lexically_relative(folder).string()] = read_file(entry.path());
    }
    return files;
}

fs::path Hive()
{
    return fs::path(std::getenv("XDG_CONFIG_HOME")) / "registry/current-user.sqlite";
}

// A cabinet of one small program and nCount files.
std::string CabinetOf(int nCount)
{
    std::vector<test::CabinetFile> files;
    for (int i = 0; i < nCount; i++)
        files.push_back({ "Tesk\\f" + std::to_string(i), std::string(20000, static_cast<char>('a' + i % 26)) });
    files.push_back({ "Tesk\\SetupConfigure.exe", "#!/bin/sh\nexit 0\n", 0x60 });
    return test::stored_cabinet(files);
}

// Runs the installer to its end in the home that HOME names now, as the shell's command says; its exit code. The page
// to close the window at, or "finish"; a cabinet that takes the payload's place, or none.
int RunInstaller(const char* pszRoad, const std::string& strCabinet, const char* pszCommand = SETUP_DRIVER)
{
    const test::TempDir dir;
    test::write_file(dir / "cabinet", strCabinet);
    ::setenv("SETUP_ROAD", pszRoad, 1);
    ::setenv("SETUP_CABINET", strCabinet.empty() ? "" : (dir / "cabinet").c_str(), 1);
    return std::system(pszCommand);
}

TEST(InstallerProcess, EndsWithZeroWhereverItsWindowIsClosed)
{
    for (const char* pszRoad : { "checking", "ready", "installing", "finished", "finish" }) {
        SCOPED_TRACE(pszRoad);
        const test::FreshHome home;
        EXPECT_EQ(RunInstaller(pszRoad, CabinetOf(40)), 0);
        for (const auto& [strName, strBytes] : FilesBelow(InstallRoot())) {
            const bool bWhole = strName == "Update/TeskSetup" || strName == "Tesk/SetupConfigure.exe" ||
                                (strName.starts_with("Tesk/f") && strBytes.size() == 20000);
            EXPECT_TRUE(bWhole) << strName << ": a file half made, or of nobody";
        }
    }
}

TEST(InstallerProcess, TwoAtOnceInOneHomeEndWellAndWhole)
{
    EXPECT_EQ(RunInstaller("finished", "", SETUP_DRIVER " & " SETUP_DRIVER " && wait $!"), 0);
    const std::string strExpected = test::home() / "expected";
    const std::string strCommand =
        "cabextract -q -d '" + strExpected + "' '" + test::PayloadCopy().string() + "' >/dev/null";
    ASSERT_EQ(std::system(strCommand.c_str()), 0);
    const auto expected = FilesBelow(fs::path(strExpected) / "Tesk");
    const auto installed = FilesBelow(ClientFolder());
    EXPECT_EQ(installed.size(), 333U);
    EXPECT_TRUE(installed == expected);
}

TEST(InstallerProcess, ReplacesAClientThatRuns)
{
    const std::string strSleep = read_file("/bin/sleep");
    ASSERT_EQ(RunInstaller("finished", test::stored_cabinet({ { "Tesk\\PelkVarnhal.exe", strSleep, 0x60 } })), 0);
    const std::string strClient = (ClientFolder() / "PelkVarnhal.exe").string();
    pid_t nClient = 0;
    char szSeconds[] = "600";
    char* const arguments[] = { const_cast<char*>(strClient.c_str()), szSeconds, nullptr };
    ASSERT_EQ(posix_spawn(&nClient, strClient.c_str(), nullptr, nullptr, arguments, environ), 0);
    EXPECT_EQ(RunInstaller("finished", test::stored_cabinet({ { "Tesk\\PelkVarnhal.exe", "new", 0x60 } })), 0);
    EXPECT_EQ(read_file(strClient), "new");
    EXPECT_EQ(::kill(nClient, SIGKILL), 0) << "it still runs";
    ::waitpid(nClient, nullptr, 0);
}

TEST(InstallerProcess, IsNotHeldUpByALockedRegistry)
{
    ASSERT_EQ(RunInstaller("finish", CabinetOf(3)), 0); // the hive is there
    sqlite3* pHive = nullptr;
    ASSERT_EQ(sqlite3_open(Hive().c_str(), &pHive), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(pHive, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    const auto began = std::chrono::steady_clock::now();
    EXPECT_EQ(RunInstaller("finish", CabinetOf(3)), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - began, std::chrono::seconds(30)) << "hangs";
    EXPECT_EQ(sqlite3_exec(pHive, "COMMIT", nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(pHive);
}

TEST(InstallerProcess, LeavesADamagedRegistryAsItIs)
{
    const std::string strGarbage(5000, 'x');
    test::write_file(Hive(), strGarbage);
    EXPECT_EQ(RunInstaller("finish", CabinetOf(3)), 0);
    EXPECT_EQ(read_file(Hive()), strGarbage);
    EXPECT_TRUE(fs::exists(ClientFolder() / "f2"));
}

} // namespace
