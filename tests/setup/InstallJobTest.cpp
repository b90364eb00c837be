// The install job against cabinets, disks and programs that behave badly: whatever happens, it goes on to the settings
// and the last page, and nothing is written outside its folder or left half made.
#include "tests/setup/InstallerOnScreen.h"
#include "tests/support/CabinetBuilder.h"
#include "tests/support/FailingFileSystem.h"
#include "tests/support/TestHome.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>

namespace {

namespace fs = std::filesystem;
using test::CabinetFile;
using test::ClientFolder;
using test::InstallerOnScreen;
using test::InstallRoot;
using test::PayloadCopy;
using test::ReadFile;

void WriteFile(const fs::path& path, const std::string& strBytes)
{
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << strBytes;
}

// Every file and folder below a folder, by its name from there.
std::vector<std::string> Tree(const fs::path& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(folder))
        names.push_back(entry.path().lexically_relative(folder).string());
    std::sort(names.begin(), names.end());
    return names;
}

DWORD StoredNumber(const char* pszKey, const char* pszName)
{
    HKEY hKey = nullptr;
    DWORD nNumber = 0xDEADBEEF;
    DWORD nSize = sizeof nNumber;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, pszKey, 0, KEY_QUERY_VALUE, &hKey) != ERROR_SUCCESS)
        return nNumber;
    (void)RegQueryValueExA(hKey, pszName, nullptr, nullptr, reinterpret_cast<BYTE*>(&nNumber), &nSize);
    RegCloseKey(hKey);
    return nNumber;
}

bool HasSettings()
{
    return StoredNumber("Software\\Dalvor\\Varnhal\\Tesk\\Connection", "ProxyUse") == 1;
}

// An installer at its ready page whose payload copy was replaced by another cabinet.
class ReadyWith {
public:
    explicit ReadyWith(const std::string& strCabinet)
    {
        m_installer.Tick();
        WriteFile(PayloadCopy(), strCabinet);
    }
    InstallerOnScreen* operator->() { return &m_installer; }

private:
    InstallerOnScreen m_installer;
};

const std::string kScript = "#!/bin/sh\n";

struct CabinetCase {
    const char* why;
    std::vector<CabinetFile> files;
    std::vector<std::string> treeBelowRoot; // besides "Update" and its content
};

const CabinetCase kCabinetCases[] = {
    { "no entries", {}, {} },
    { "folders are made along the path",
      { { "Tesk\\Data\\Fonts\\a.pfb", "a" }, { "b.txt", "b" } },
      { "Tesk", "Tesk/Data", "Tesk/Data/Fonts", "Tesk/Data/Fonts/a.pfb", "b.txt" } },
    { "names that climb out are left out",
      { { "..\\evil", "x" },
        { "Tesk\\..\\..\\evil", "x" },
        { "C:\\evil", "x" },
        { "\\evil", "x" },
        { "\\\\", "x" },
        { "Tesk\\good", "g" } },
      { "Tesk", "Tesk/good" } },
    { "a name too long for its buffer is left out",
      { { "Tesk\\" + std::string(200, 'n'), "x" }, { "Tesk\\good", "g" } },
      { "Tesk", "Tesk/good" } },
    { "of two with one name the later stays", { { "Tesk\\a", "1" }, { "Tesk\\a", "2" } }, { "Tesk", "Tesk/a" } },
    { "a file where a folder should be",
      { { "Tesk\\a", "1" }, { "Tesk\\a\\b", "2" }, { "Tesk\\c", "3" } },
      { "Tesk", "Tesk/a", "Tesk/c" } },
    { "a folder where a file should be",
      { { "Tesk\\a\\b", "1" }, { "Tesk\\a", "2" }, { "Tesk\\c", "3" } },
      { "Tesk", "Tesk/a", "Tesk/a/b", "Tesk/c" } },
    { "a second byte 0x5C separates for folder and file alike",
      { { "Tesk\\\xD5\x5C", "x" }, { "Tesk\\\xD5\x5C.txt", "y" } },
      { "Tesk", "Tesk/\xD5", "Tesk/\xD5/.txt" } },
};

TEST(InstallJob, TakesAnyCabinetToTheLastPage)
{
    for (const CabinetCase& c : kCabinetCases) {
        SCOPED_TRACE(c.why);
        const test::FreshHome home;
        ReadyWith installer(test::stored_cabinet(c.files));
        EXPECT_TRUE(installer->Install());
        EXPECT_TRUE(HasSettings());
        std::vector<std::string> expected = c.treeBelowRoot;
        expected.insert(expected.end(), { "Update", "Update/TeskSetup" });
        std::sort(expected.begin(), expected.end());
        EXPECT_EQ(Tree(InstallRoot()), expected);
        EXPECT_FALSE(fs::exists(InstallRoot().parent_path() / "evil"));
    }
}

TEST(InstallJob, GoesOnWithoutAReadableCabinet)
{
    for (const char* pszBytes : { "", "MSCF", "not a cabinet at all, but long enough to hold the header of one" }) {
        SCOPED_TRACE(pszBytes);
        ReadyWith installer(pszBytes);
        EXPECT_TRUE(installer->Install());
        EXPECT_TRUE(HasSettings());
        EXPECT_TRUE(installer->Shows(10003) && installer->Shows(10004) && installer->Shows(10005) &&
                    installer->Shows(10006));
        EXPECT_FALSE(installer->Shows(10001) || installer->Shows(10002));
    }
}

TEST(InstallJob, KeepsWholeFilesAndNoOthersWhenTheDiskFills)
{
    std::vector<CabinetFile> files;
    for (int i = 0; i < 20; i++)
        files.push_back({ "Tesk\\f" + std::to_string(i), std::string(1000, static_cast<char>('a' + i)) });
    ReadyWith installer(test::stored_cabinet(files));
    const test::WithFailingFileSystem disk;
    disk->fill_after(7500);
    EXPECT_TRUE(installer->Install());
    std::size_t nWhole = 0;
    for (const auto& entry : fs::directory_iterator(ClientFolder())) {
        const std::size_t nFile = std::stoul(entry.path().filename().string().substr(1));
        EXPECT_EQ(ReadFile(entry.path()), files[nFile].content) << entry.path();
        nWhole++;
    }
    EXPECT_EQ(nWhole, 7U);
}

struct ConfigureCase {
    const char* why;
    std::string strProgram;
    std::uint16_t nAttributes;
};

const ConfigureCase kConfigureCases[] = {
    { "not executable", kScript + "exit 0\n", 0x20 },
    { "not a program",
      "\x7F"
      "ELF and nothing more",
      0x60 },
    { "crashes", kScript + "kill -SEGV $$\n", 0x60 },
    { "fails", kScript + "exit 9\n", 0x60 },
};

TEST(InstallJob, DoesNotMindWhatTheConfigurationProgramDoes)
{
    for (const ConfigureCase& c : kConfigureCases) {
        SCOPED_TRACE(c.why);
        ReadyWith installer(test::stored_cabinet({ { "Tesk\\SetupConfigure.exe", c.strProgram, c.nAttributes } }));
        EXPECT_TRUE(installer->Install());
    }
}

TEST(InstallJob, RunsTheConfigurationProgramInItsFolderAndWaitsForIt)
{
    const std::string strProgram = kScript + "pwd > where && mv where done\n";
    ReadyWith installer(test::stored_cabinet({ { "Tesk\\SetupConfigure.exe", strProgram, 0x60 } }));
    EXPECT_TRUE(installer->Install());
    EXPECT_EQ(ReadFile(ClientFolder() / "done"), fs::canonical(ClientFolder()).string() + "\n");
}

TEST(InstallJob, LeavesAConfigurationProgramThatHangsAfterFiveSeconds)
{
    // The program says who it is, then hangs; the test ends it.
    const std::string strProgram = kScript + "echo $$ > pid && exec sleep 600\n";
    ReadyWith installer(test::stored_cabinet({ { "Tesk\\SetupConfigure.exe", strProgram, 0x60 } }));
    const auto began = std::chrono::steady_clock::now();
    EXPECT_TRUE(installer->Install());
    EXPECT_GE(std::chrono::steady_clock::now() - began, std::chrono::seconds(5));
    const int nPid = std::stoi(ReadFile(ClientFolder() / "pid"));
    EXPECT_EQ(kill(nPid, SIGKILL), 0) << "it still runs";
}

} // namespace
