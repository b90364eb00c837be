// The window's pages, buttons and ways out.
#include "tests/setup/InstallerOnScreen.h"
#include "tests/support/CabinetBuilder.h"
#include "tests/support/FailingFileSystem.h"
#include "tests/support/TestHome.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fstream>

#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;
using test::InstallerOnScreen;

const std::string kRunKey = "Software\\Microsoft\\Windows\\CurrentVersion\\Run";
const std::string kMarkerClient = "#!/bin/sh\n: > started\n"; // leaves a file in its folder

// The bytes of the auto-start value; empty when there is none.
std::string AutoStartValue()
{
    HKEY hKey = nullptr;
    char szValue[1024] = {};
    DWORD nSize = sizeof szValue;
    DWORD nType = 0;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, kRunKey.c_str(), 0, KEY_QUERY_VALUE, &hKey) != ERROR_SUCCESS)
        return {};
    const LONG nResult =
        RegQueryValueExA(hKey, "Merav Conferencing", nullptr, &nType, reinterpret_cast<BYTE*>(szValue), &nSize);
    RegCloseKey(hKey);
    return nResult == ERROR_SUCCESS && nType == REG_SZ ? std::string(szValue, nSize) : std::string();
}

// At the finished page of an installation that holds nothing but a client which says that it was started.
class Finished {
public:
    Finished()
    {
        const std::string strCabinet = test::stored_cabinet({ { "Tesk\\PelkVarnhal.exe", kMarkerClient, 0x60 } });
        m_installer.Tick();
        std::ofstream(test::PayloadCopy(), std::ios::binary) << strCabinet;
        EXPECT_TRUE(m_installer.Install());
    }
    InstallerOnScreen* operator->() { return &m_installer; }

    bool StartsClient()
    {
        return m_installer.PumpUntil([] { return fs::exists(test::ClientFolder() / "started"); });
    }

private:
    InstallerOnScreen m_installer;
};

TEST(MeravSetupWnd, ShowsCentredOnThePrimaryScreenAboveOtherWindows)
{
    InstallerOnScreen installer;
    RECT rc{};
    ::GetWindowRect(installer.Window(), &rc);
    EXPECT_EQ(CRect(rc), CRect((1024 - 510) / 2, (768 - 349) / 2, (1024 + 510) / 2, (768 - 349) / 2 + 349));
    const auto nExStyle = static_cast<DWORD>(::GetWindowLongA(installer.Window(), GWL_EXSTYLE));
    EXPECT_EQ(nExStyle & (WS_EX_TOPMOST | WS_EX_TOOLWINDOW), WS_EX_TOPMOST | WS_EX_TOOLWINDOW);
}

TEST(MeravSetupWnd, ChecksForThirteenTicksThenIsReady)
{
    InstallerOnScreen installer;
    for (int nTick = 1; nTick <= 12; nTick++) {
        const std::uint32_t nBefore = installer.Pixel({ 133 + 20 * (nTick - 1), 180 });
        installer.Tick(1);
        EXPECT_EQ(installer.Stage(), kStageChecking);
        EXPECT_NE(installer.Pixel({ 133 + 20 * (nTick - 1), 180 }), nBefore) << "square " << nTick;
    }
    EXPECT_FALSE(installer.Shows(10001) || installer.Shows(10002));
    installer.Tick(1);
    EXPECT_EQ(installer.Stage(), kStageReady);
    EXPECT_EQ(installer.Progress(), 0.0F);
    EXPECT_TRUE(installer.Shows(10001) && installer.Shows(10002));
    EXPECT_FALSE(installer.Shows(10003) || installer.Shows(10005));
}

struct ErrorCase {
    const char* why;
    int nError;
    void (*spoil)(test::FailingFileSystem&);
};

const ErrorCase kErrorCases[] = {
    { "the install root cannot be made", INSTALL_ERROR_FOLDERS,
      [](test::FailingFileSystem& disk) { disk.fail_all(test::FileCall::make_directory, EROFS); } },
    { "a file lies in the local data folder's place", INSTALL_ERROR_FOLDERS,
      [](test::FailingFileSystem&) {
          fs::remove_all(test::InstallRoot().parent_path());
          std::ofstream(test::InstallRoot().parent_path()) << "x";
      } },
    { "a file lies in the update folder's place", INSTALL_ERROR_PAYLOAD, // it exists, says the check
      [](test::FailingFileSystem&) {
          fs::create_directories(test::InstallRoot());
          std::ofstream(test::InstallRoot() / "Update") << "x";
      } },
    { "the payload cannot be created", INSTALL_ERROR_PAYLOAD,
      [](test::FailingFileSystem& disk) { disk.fail_all(test::FileCall::open, EACCES); } },
    { "the disk is full", INSTALL_ERROR_PAYLOAD, [](test::FailingFileSystem& disk) { disk.fill_after(1000000); } },
    { "a pipe lies in the payload's place and stays", INSTALL_ERROR_PAYLOAD,
      [](test::FailingFileSystem& disk) {
          fs::create_directories(test::PayloadCopy().parent_path());
          EXPECT_EQ(::mkfifo(test::PayloadCopy().c_str(), 0600), 0);
          disk.fail_all(test::FileCall::remove_file, EACCES);
      } },
    { "a folder lies in the payload's place", INSTALL_ERROR_PAYLOAD,
      [](test::FailingFileSystem&) { fs::create_directories(test::PayloadCopy() / "folder"); } },
};

TEST(MeravSetupWnd, OffersOnlyTheExitAfterAFailedCheck)
{
    for (const ErrorCase& c : kErrorCases) {
        SCOPED_TRACE(c.why);
        const test::FreshHome home;
        const test::WithFailingFileSystem disk;
        c.spoil(*disk.operator->());
        InstallerOnScreen installer;
        EXPECT_EQ(installer.Error(), c.nError);
        installer.Tick(12);
        EXPECT_FALSE(installer.Shows(10002));
        installer.Tick(1);
        EXPECT_EQ(installer.Stage(), kStageChecking);
        EXPECT_TRUE(installer.Shows(10002));
        EXPECT_FALSE(installer.Shows(10001));
        installer.Click(test::kExitButton);
        EXPECT_TRUE(installer.HasQuit());
    }
}

TEST(MeravSetupWnd, AcceptsAnInstallationThatIsThere)
{
    fs::create_directories(test::PayloadCopy().parent_path());
    std::ofstream(test::PayloadCopy()) << "an older one";
    InstallerOnScreen installer;
    EXPECT_EQ(installer.Error(), 0);
    EXPECT_GT(fs::file_size(test::PayloadCopy()), 1000000U);
}

TEST(MeravSetupWnd, TakesAClickOnlyWhereItWasPressed)
{
    InstallerOnScreen installer;
    installer.Tick();
    RECT rc{};
    ::GetWindowRect(installer.Window(), &rc);
    auto at = [&](POINT pt) { return POINT{ rc.left + pt.x, rc.top + pt.y }; };
    installer.Screen().move_pointer(at(test::kExitButton));
    installer.Screen().press(win32::kLeftButton);
    installer.Screen().move_pointer(at({ 20, 100 }));
    installer.Screen().release(win32::kLeftButton);
    installer.Tick(0);
    EXPECT_TRUE(installer.IsOpen());
    installer.Click(
        { test::kExitButton.x + 20, test::kExitButton.y }); // elsewhere: not the second half of a double click
    EXPECT_FALSE(installer.IsOpen());
    EXPECT_TRUE(installer.HasQuit());
}

struct FinishCase {
    const char* why;
    std::vector<POINT> clicks; // on the finished page
    bool bStarted;
    bool bAutoStart;
};

const FinishCase kFinishCases[] = {
    { "both boxes are on at first", { test::kFinishButton }, true, true },
    { "exit applies nothing", { test::kExitButton }, false, false },
    { "a click switches the start off", { test::kLaunchBox, test::kFinishButton }, false, true },
    { "a click switches the auto-start off", { test::kAutoStartBox, test::kFinishButton }, true, false },
    { "a second click switches it on again",
      { test::kAutoStartBox, { 33, 176 }, test::kLaunchBox, test::kFinishButton },
      false,
      true },
};

TEST(MeravSetupWnd, AppliesTheOptionsOfTheLastPage)
{
    for (const FinishCase& c : kFinishCases) {
        SCOPED_TRACE(c.why);
        const test::FreshHome home;
        const std::string strClient = (test::InstallRoot().parent_path().string() + "\\Varnhal\\Tesk\\PelkVarnhal.exe");
        Finished installer;
        for (const POINT& pt : c.clicks)
            installer->Click(pt);
        EXPECT_TRUE(installer->HasQuit());
        EXPECT_EQ(AutoStartValue(), c.bAutoStart ? strClient + '\0' : std::string());
        if (c.bStarted)
            EXPECT_TRUE(installer.StartsClient());
        else
            EXPECT_FALSE(fs::exists(test::ClientFolder() / "started"));
    }
}

TEST(MeravSetupWnd, StartsTheClientEvenIfTheAutoStartCannotBeWritten)
{
    Finished installer;
    HKEY hSoftware = nullptr;
    ASSERT_EQ(
        RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\Microsoft\\Windows\\CurrentVersion", 0, KEY_ALL_ACCESS, &hSoftware),
        ERROR_SUCCESS);
    ASSERT_EQ(RegDeleteKeyA(hSoftware, "Run"), ERROR_SUCCESS);
    RegCloseKey(hSoftware);
    installer->Click(test::kFinishButton);
    EXPECT_TRUE(installer.StartsClient());
    EXPECT_EQ(AutoStartValue(), "");
}

TEST(MeravSetupWnd, CanBeClosedWhileItInstalls)
{
    std::vector<test::CabinetFile> files;
    for (int i = 0; i < 30; i++)
        files.push_back({ "Tesk\\f" + std::to_string(i), "content" });
    InstallerOnScreen installer;
    installer.Tick();
    std::ofstream(test::PayloadCopy(), std::ios::binary) << test::stored_cabinet(files);
    installer.Click(test::kInstallButton);
    EXPECT_TRUE(installer.PumpUntil([] { return fs::exists(test::ClientFolder() / "f3"); }));
    installer.Close();
    EXPECT_FALSE(installer.IsOpen());
    EXPECT_TRUE(installer.HasQuit());
    // The worker goes on with a window that is gone, and the object lives until it is done.
    EXPECT_TRUE(installer.PumpUntil([&] { return !installer.IsJobRunning(); }));
    EXPECT_TRUE(fs::exists(test::ClientFolder() / "f29"));
}

} // namespace
