// The installer as a whole process: every way to end it, a neighbour, a locked registry, a running client, a kill.
#include "tests/setup/InstallerProcess.h"
#include "tests/setup/InstallerOnScreen.h"
#include "tests/support/CabinetBuilder.h"

#include <gtest/gtest.h>

#include <spawn.h>
#include <sqlite3.h>

#include <chrono>
#include <map>
#include <random>
#include <thread>

namespace {

namespace fs = std::filesystem;
using test::ClientFolder;
using test::InstallerProcess;
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

// A cabinet of one small program and nCount files that say which version they are.
std::string CabinetOf(const char* pszVersion, int nCount)
{
    std::vector<test::CabinetFile> files;
    for (int i = 0; i < nCount; i++)
        files.push_back(
            { "Tesk\\f" + std::to_string(i), pszVersion + std::string(20000, static_cast<char>('a' + i % 26)) });
    files.push_back({ "Tesk\\SetupConfigure.exe", "#!/bin/sh\nexit 0\n", 0x60 });
    return test::stored_cabinet(files);
}

std::string Saved(const char* pszName, const std::string& strBytes)
{
    std::string strPath = test::home() / pszName;
    test::write_file(strPath, strBytes);
    return strPath;
}

TEST(InstallerProcess, EndsWithZeroWhereverItsWindowIsClosed)
{
    const std::string strCabinet = Saved("slow.cab", CabinetOf("1", 40));
    for (const char* pszRoad : { "checking", "ready", "installing", "finished", "finish" }) {
        SCOPED_TRACE(pszRoad);
        const test::FreshHome home;
        EXPECT_EQ(InstallerProcess(pszRoad, strCabinet).Wait(), 0);
        for (const auto& [strName, strBytes] : FilesBelow(InstallRoot())) {
            const bool bWhole = strName == "Update/TeskSetup" || strName == "Tesk/SetupConfigure.exe" ||
                                (strName.starts_with("Tesk/f") && strBytes.size() == 20001);
            EXPECT_TRUE(bWhole) << strName << ": a file half made, or of nobody";
        }
    }
}

TEST(InstallerProcess, TwoAtOnceInOneHomeEndWellAndWhole)
{
    InstallerProcess first("finished");
    InstallerProcess second("finished");
    EXPECT_EQ(first.Wait(), 0);
    EXPECT_EQ(second.Wait(), 0);
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
    const std::string strOld = Saved("old.cab", test::stored_cabinet({ { "Tesk\\PelkVarnhal.exe", strSleep, 0x60 } }));
    const std::string strNew = Saved("new.cab", test::stored_cabinet({ { "Tesk\\PelkVarnhal.exe", "new", 0x60 } }));
    ASSERT_EQ(InstallerProcess("finished", strOld).Wait(), 0);
    const std::string strClient = (ClientFolder() / "PelkVarnhal.exe").string();
    pid_t nClient = 0;
    char szSeconds[] = "600";
    char* const arguments[] = { const_cast<char*>(strClient.c_str()), szSeconds, nullptr };
    ASSERT_EQ(posix_spawn(&nClient, strClient.c_str(), nullptr, nullptr, arguments, environ), 0);
    EXPECT_EQ(InstallerProcess("finished", strNew).Wait(), 0);
    EXPECT_EQ(read_file(strClient), "new");
    EXPECT_EQ(::kill(nClient, SIGKILL), 0) << "it still runs";
    ::waitpid(nClient, nullptr, 0);
}

TEST(InstallerProcess, IsNotHeldUpByALockedRegistry)
{
    const std::string strCabinet = Saved("some.cab", CabinetOf("1", 3));
    ASSERT_EQ(InstallerProcess("finish", strCabinet).Wait(), 0); // the hive is there
    const std::string strHive = std::string(std::getenv("XDG_CONFIG_HOME")) + "/registry/current-user.sqlite";
    sqlite3* pHive = nullptr;
    ASSERT_EQ(sqlite3_open(strHive.c_str(), &pHive), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(pHive, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    const auto began = std::chrono::steady_clock::now();
    EXPECT_EQ(InstallerProcess("finish", strCabinet).Wait(), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - began, std::chrono::seconds(30)) << "hangs";
    EXPECT_EQ(sqlite3_exec(pHive, "COMMIT", nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(pHive);
}

TEST(InstallerProcess, LeavesADamagedRegistryAsItIs)
{
    const std::string strCabinet = Saved("some.cab", CabinetOf("1", 3));
    const fs::path hive = fs::path(std::getenv("XDG_CONFIG_HOME")) / "registry" / "current-user.sqlite";
    const std::string strGarbage(5000, 'x');
    test::write_file(hive, strGarbage);
    EXPECT_EQ(InstallerProcess("finish", strCabinet).Wait(), 0);
    EXPECT_EQ(read_file(hive), strGarbage);
    EXPECT_TRUE(fs::exists(ClientFolder() / "f2"));
}

TEST(InstallerProcess, KilledAtAnyMomentLeavesEveryFileOldOrNew)
{
    constexpr int kFiles = 25;
    const std::string strOld = Saved("old.cab", CabinetOf("1", kFiles));
    const std::string strNew = Saved("new.cab", CabinetOf("2", kFiles));
    std::mt19937 random(20081101);
    std::uniform_int_distribution<int> microseconds(0, 550000);
    ASSERT_EQ(InstallerProcess("finished", strOld).Wait(), 0);
    for (int nKill = 0; nKill < 12; nKill++) {
        InstallerProcess process("finished", nKill % 2 ? strOld : strNew);
        ASSERT_TRUE(process.AwaitInstalling());
        // Not waiting for anything: the moment of the kill is what varies.
        std::this_thread::sleep_for(std::chrono::microseconds(microseconds(random)));
        process.Kill();
        for (int i = 0; i < kFiles; i++) {
            const std::string strFile = read_file(ClientFolder() / ("f" + std::to_string(i)));
            ASSERT_EQ(strFile.size(), 20001U) << "file " << i;
            EXPECT_TRUE(strFile[0] == '1' || strFile[0] == '2');
            EXPECT_EQ(strFile.find_first_not_of(static_cast<char>('a' + i % 26), 1), std::string::npos);
        }
    }
    EXPECT_EQ(InstallerProcess("finished", strNew).Wait(), 0);
    for (const auto& [strName, strBytes] : FilesBelow(ClientFolder())) {
        if (strName.starts_with("f"))
            EXPECT_EQ(strBytes[0], '2') << strName;
        else
            EXPECT_EQ(strName, "SetupConfigure.exe") << "left behind";
    }
}

} // namespace
