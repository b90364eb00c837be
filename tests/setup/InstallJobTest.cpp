// The install job against cabinets, disks and programs that behave badly: whatever happens, it goes on to the settings
// and the last page, and nothing is written outside its folder or left half made.
#include "tests/setup/InstallerOnScreen.h"
#include "tests/support/CabinetBuilder.h"
#include "tests/support/FailingFileSystem.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>

namespace {

namespace fs = std::filesystem;
using test::CabinetFile;
using test::ClientFolder;
using test::InstallRoot;

bool HasSettings()
{
    const std::string strKey = "Software\\Dalvor\\Varnhal\\Tesk\\";
    return test::StoredValue(strKey + "Connection", "ProxyUse", REG_DWORD) == std::string("\1\0\0\0", 4) &&
           test::StoredValue(strKey + "Version", "QDFVER", REG_SZ) == "0";
}

// An installer at its ready page.
struct ReadyInstaller : test::InstallerOnScreen {
    ReadyInstaller() { Tick(); }
};

struct CabinetCase {
    const char* why;
    std::string strCabinet;
    std::vector<std::string> treeBelowRoot; // besides "Update" and its content
};

const CabinetCase kCabinetCases[] = {
    { "empty", "", {} },
    { "cut", "MSCF", {} },
    { "not a cabinet", "not a cabinet at all, but long enough to hold the header of one", {} },
    { "no entries", test::stored_cabinet({}), {} },
    { "folders are made along the path",
      test::stored_cabinet({ { "Tesk\\Data\\Fonts\\a.pfb", "a" }, { "b.txt", "b" } }),
      { "Tesk", "Tesk/Data", "Tesk/Data/Fonts", "Tesk/Data/Fonts/a.pfb", "b.txt" } },
    { "names that climb out are left out",
      test::stored_cabinet({ { "..\\evil", "x" }, { "Tesk\\..\\..\\evil", "x" }, { "Tesk\\good", "g" } }),
      { "Tesk", "Tesk/good" } },
    { "a name too long for its buffer is left out, and its folder",
      test::stored_cabinet({ { "Tesk\\folder\\" + std::string(200, 'n'), "x" }, { "Tesk\\good", "g" } }),
      { "Tesk", "Tesk/good" } },
    { "a second byte 0x5C separates for folder and file alike",
      test::stored_cabinet({ { "Tesk\\\xD5\x5C", "x" }, { "Tesk\\\xD5\x5C.txt", "y" } }),
      { "Tesk", "Tesk/\xD5", "Tesk/\xD5/.txt" } },
};

TEST(InstallJob, TakesAnyCabinetToTheLastPage)
{
    for (const CabinetCase& c : kCabinetCases) {
        SCOPED_TRACE(c.why);
        const test::FreshHome home;
        ReadyInstaller installer;
        EXPECT_TRUE(installer.Install(c.strCabinet));
        EXPECT_TRUE(HasSettings());
        for (const UINT nCommand : { 10001, 10002, 10003, 10004, 10005, 10006 })
            EXPECT_EQ(installer.Shows(nCommand), nCommand >= 10003) << nCommand;
        std::vector<std::string> tree;
        for (const auto& entry : fs::recursive_directory_iterator(InstallRoot()))
            tree.push_back(entry.path().lexically_relative(InstallRoot()).string());
        std::sort(tree.begin(), tree.end());
        std::vector<std::string> expected = c.treeBelowRoot;
        expected.insert(expected.end(), { "Update", "Update/TeskSetup" });
        std::sort(expected.begin(), expected.end());
        EXPECT_EQ(tree, expected);
        EXPECT_FALSE(fs::exists(InstallRoot().parent_path() / "evil"));
    }
}

TEST(InstallJob, KeepsWholeFilesAndNoOthersWhenTheDiskFills)
{
    std::vector<CabinetFile> files;
    for (int i = 0; i < 20; i++)
        files.push_back({ "Tesk\\f" + std::to_string(i), std::string(1000, static_cast<char>('a' + i)) });
    ReadyInstaller installer;
    const std::string strCabinet = test::stored_cabinet(files);
    const test::WithFailingFileSystem disk;
    disk->fill_after(7500);
    const auto began = std::chrono::steady_clock::now();
    EXPECT_TRUE(installer.Install(strCabinet));
    EXPECT_GE(std::chrono::steady_clock::now() - began, std::chrono::milliseconds(20) * files.size())
        << "too fast for a person to follow";
    std::size_t nWhole = 0;
    for (const auto& entry : fs::directory_iterator(ClientFolder())) {
        const std::size_t nFile = std::stoul(entry.path().filename().string().substr(1));
        EXPECT_EQ(test::read_file(entry.path()), files[nFile].content) << entry.path();
        nWhole++;
    }
    EXPECT_EQ(nWhole, 7U);
}

// An installation whose configuration program is this.
std::string CabinetWith(const std::string& strProgram, std::uint16_t nAttributes = 0x60)
{
    return test::stored_cabinet({ { "Tesk\\SetupConfigure.exe", strProgram, nAttributes } });
}

TEST(InstallJob, DoesNotMindWhatTheConfigurationProgramDoes)
{
    const struct {
        const char* why;
        std::string strCabinet;
    } cases[] = {
        { "not executable", CabinetWith("#!/bin/sh\nexit 0\n", 0x20) },
        { "not a program", CabinetWith("\x7f"
                                       "ELF and nothing more") },
        { "crashes", CabinetWith("#!/bin/sh\nkill -SEGV $$\n") },
        { "fails", CabinetWith("#!/bin/sh\nexit 9\n") },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        ReadyInstaller installer;
        EXPECT_TRUE(installer.Install(c.strCabinet));
    }
}

TEST(InstallJob, RunsTheConfigurationProgramInItsFolderAndWaitsForIt)
{
    ReadyInstaller installer;
    EXPECT_TRUE(installer.Install(CabinetWith("#!/bin/sh\npwd > where && mv where done\n")));
    EXPECT_EQ(test::read_file(ClientFolder() / "done"), fs::canonical(ClientFolder()).string() + "\n");
}

TEST(InstallJob, LeavesAConfigurationProgramThatHangsAfterFiveSeconds)
{
    ReadyInstaller installer;
    const auto began = std::chrono::steady_clock::now();
    // The program says who it is, then hangs; the test ends it.
    EXPECT_TRUE(installer.Install(CabinetWith("#!/bin/sh\necho $$ > pid && exec sleep 600\n")));
    EXPECT_GE(std::chrono::steady_clock::now() - began, std::chrono::seconds(5));
    EXPECT_EQ(kill(std::stoi(test::read_file(ClientFolder() / "pid")), SIGKILL), 0) << "it still runs";
}

} // namespace
