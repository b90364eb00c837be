// The window's pages, buttons and ways out.
#include "tests/setup/InstallerOnScreen.h"
#include "tests/support/CabinetBuilder.h"
#include "tests/support/FailingFileSystem.h"

#include <gtest/gtest.h>

#include <cerrno>

#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;
using test::InstallerOnScreen;

constexpr const char* kRunKey = "Software\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr CRect kPage(0, 0, 510, 349);

// The auto-start value's bytes.
std::string AutoStartValue()
{
    return test::StoredValue(kRunKey, "Merav Conferencing", REG_SZ);
}

// At the finished page of an installation that holds nothing but a client which leaves a file in its folder.
struct FinishedInstaller : InstallerOnScreen {
    FinishedInstaller()
    {
        Tick();
        EXPECT_TRUE(Install(test::stored_cabinet({ { "Tesk\\PelkVarnhal.exe", "#!/bin/sh\n: > started\n", 0x60 } })));
    }
    bool StartsClient()
    {
        return PumpUntil([] { return fs::exists(test::ClientFolder() / "started"); });
    }
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
    constexpr std::uint32_t kSquare = 0x339FFE; // the page's white without the pen's colour
    InstallerOnScreen installer;
    EXPECT_TRUE(installer.Difference(kPage, { 0, 0 }).IsRectEmpty());
    for (int nTick = 1; nTick <= 12; nTick++) {
        installer.Tick(1);
        EXPECT_EQ(installer.Stage(), kStageChecking);
        EXPECT_EQ(installer.Difference(kPage, { 0, 0 }), CRect(128, 175, 118 + 20 * nTick, 185));
        EXPECT_EQ(installer.Pixel({ 108 + 20 * nTick, 175 }), kSquare);
        EXPECT_EQ(installer.Pixel({ 117 + 20 * nTick, 184 }), kSquare);
    }
    EXPECT_FALSE(installer.Shows(10001) || installer.Shows(10002));
    installer.Tick(1);
    EXPECT_EQ(installer.Stage(), kStageReady);
    EXPECT_EQ(installer->m_fProgress, 0.0F);
    EXPECT_TRUE(installer.Shows(10001) && installer.Shows(10002));
    EXPECT_FALSE(installer.Shows(10003) || installer.Shows(10005));
}

// A step of the mouse and what a button looks like after it, as a place in the skin's image.
struct LookStep {
    const char* why;
    InstallerOnScreen::MouseButtonEvent pMouse; // null: only moves
    POINT ptMouse;
    CRect rcButton;
    CPoint ptSkin;
};

constexpr CRect kLeftButton(302, 288, 380, 318);
constexpr CRect kRightButton(392, 288, 470, 318);
constexpr CRect kFirstBox(31, 146, 44, 159);
constexpr CRect kSecondBox(31, 174, 44, 187);
constexpr POINT kElsewhere{ 20, 100 };
constexpr POINT kNoDoubleClick{ 42, 157 }; // in the first box, too, but too far from its middle

constexpr LookStep kReadySteps[] = {
    { "install, hovered", nullptr, test::kInstallButton, kLeftButton, { 20, 1396 } },
    { "exit beside it is its page", nullptr, test::kInstallButton, kRightButton, { 392, 637 } },
    { "install, pressed", &win32::MemoryScreen::press, test::kInstallButton, kLeftButton, { 302, 637 } },
    { "left while pressed", nullptr, kElsewhere, kLeftButton, { 20, 1396 } },
    { "released elsewhere", &win32::MemoryScreen::release, kElsewhere, kLeftButton, { 302, 637 } },
    { "exit, hovered", nullptr, test::kExitButton, kRightButton, { 100, 1396 } },
};

constexpr LookStep kFinishedSteps[] = {
    { "finish, hovered", nullptr, test::kFinishButton, kLeftButton, { 180, 1396 } },
    { "exit, hovered", nullptr, test::kExitButton, kRightButton, { 260, 1396 } },
    { "a box, hovered", nullptr, test::kLaunchBox, kFirstBox, { 350, 1396 } },
    { "a box, pressed", &win32::MemoryScreen::press, test::kLaunchBox, kFirstBox, { 31, 1193 } },
    { "switched off", &win32::MemoryScreen::release, test::kLaunchBox, kFirstBox, { 370, 1396 } },
    { "the other box, hovered", nullptr, test::kAutoStartBox, kSecondBox, { 350, 1396 } },
    { "pressed", &win32::MemoryScreen::press, test::kAutoStartBox, kSecondBox, { 31, 1221 } },
    { "switched off", &win32::MemoryScreen::release, test::kAutoStartBox, kSecondBox, { 370, 1396 } },
    { "the first one stays off", nullptr, test::kAutoStartBox, kFirstBox, { 370, 1396 } },
    { "pressed again", &win32::MemoryScreen::press, kNoDoubleClick, kFirstBox, { 370, 1396 } },
    { "switched on again", &win32::MemoryScreen::release, kNoDoubleClick, kFirstBox, { 350, 1396 } },
    { "as on the page", nullptr, kElsewhere, kFirstBox, { 31, 1193 } },
};

template <std::size_t nSteps>
void FollowLooks(InstallerOnScreen& installer, const LookStep (&steps)[nSteps])
{
    for (const LookStep& step : steps) {
        SCOPED_TRACE(step.why);
        installer.Point(step.ptMouse);
        if (step.pMouse)
            installer.Do(step.pMouse);
        EXPECT_TRUE(installer.Difference(step.rcButton, step.ptSkin).IsRectEmpty());
    }
}

TEST(MeravSetupWnd, LooksAsTheSkinSaysUnderTheMouse)
{
    InstallerOnScreen installer;
    installer.Tick();
    EXPECT_TRUE(installer.Difference(kPage, { 0, 349 }).IsRectEmpty()) << "at rest it is its page";
    FollowLooks(installer, kReadySteps);
    EXPECT_EQ(installer.Stage(), kStageReady); // the install button was released elsewhere
    FinishedInstaller finished;
    finished.Point(kElsewhere);
    EXPECT_TRUE(finished.Difference(kPage, { 0, 3 * 349 }).IsRectEmpty()) << "at rest it is its page";
    FollowLooks(finished, kFinishedSteps);
}

constexpr struct {
    const char* pszName;
    DWORD nBytes;
    const char* pszShown;
    int nColumns; // of the bar
} kProgressSteps[] = {
    { "Tesk\\Temp\\null", 0, "null", 0 },
    { "Tesk\\Data\\Config.xml", 5000000, "Config.xml", 111 }, // 110.5 are begun
    { "bare", 89947, "bare", 113 },
    { "Tesk\\x\\", 15000000, "", 444 },
};

TEST(MeravSetupWnd, GrowsItsBarByEachFileAndNamesTheFile)
{
    constexpr CRect kFileName(100, 240, 470, 254);
    InstallerOnScreen installer;
    installer.ShowStage(kStageInstalling);
    for (const auto& step : kProgressSteps) {
        SCOPED_TRACE(step.pszName);
        installer.ReportFile(step.pszName, step.nBytes);
        EXPECT_STREQ(installer->m_strCurrentFile, step.pszShown);
        const CRect rcText = installer.Difference(CRect(0, 0, 510, 258), { 0, 2 * 349 });
        EXPECT_EQ(rcText | kFileName, kFileName);
        EXPECT_EQ(rcText.IsRectEmpty(), *step.pszShown == '\0');
        const CRect rcBar = installer.Difference(CRect(0, 258, 510, 349), { 0, 2 * 349 + 258 });
        EXPECT_EQ(rcBar.IsRectEmpty() ? CRect(30, 258, 30, 266) : rcBar, CRect(30, 258, 30 + step.nColumns, 266));
    }
    EXPECT_NEAR(installer->m_fProgress, 444.0, 0.001);
    for (int y = 0; y < 8; y++)
        EXPECT_EQ(installer.Pixel({ 473, 258 + y }), test::SkinPixel(0, 1396 + y));
}

const struct {
    const char* why;
    int nError;
    void (*spoil)(test::FailingFileSystem&);
} kErrorCases[] = {
    { "the install root cannot be made", INSTALL_ERROR_FOLDERS,
      [](test::FailingFileSystem& disk) { disk.fail_all(test::FileCall::make_directory, EROFS); } },
    { "only the update folder cannot be made", INSTALL_ERROR_FOLDERS,
      [](test::FailingFileSystem& disk) {
          disk.fault = [nMade = 0](test::FileCall call) mutable {
              return call == test::FileCall::make_directory && ++nMade == 2 ? EROFS : 0;
          };
      } },
    { "a file lies in the local data folder's place", INSTALL_ERROR_FOLDERS,
      [](test::FailingFileSystem&) {
          fs::remove_all(test::InstallRoot().parent_path());
          test::write_file(test::InstallRoot().parent_path(), "x");
      } },
    { "a file lies in the update folder's place", INSTALL_ERROR_PAYLOAD, // it exists, says the check
      [](test::FailingFileSystem&) { test::write_file(test::InstallRoot() / "Update", "x"); } },
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

constexpr CRect kErrorText(128, 185, 428, 215);

int CountPixels(const InstallerOnScreen& installer, CRect rc, std::uint32_t nColour)
{
    int nCount = 0;
    for (int y = rc.top; y < rc.bottom; y++) {
        for (int x = rc.left; x < rc.right; x++)
            nCount += installer.Pixel({ x, y }) == nColour;
    }
    return nCount;
}

TEST(MeravSetupWnd, OffersOnlyTheExitAfterAFailedCheck)
{
    for (const auto& c : kErrorCases) {
        SCOPED_TRACE(c.why);
        const test::FreshHome home;
        const test::WithFailingFileSystem disk;
        c.spoil(*disk);
        InstallerOnScreen installer;
        EXPECT_EQ(installer->m_nError, c.nError);
        installer.Tick(12);
        EXPECT_FALSE(installer.Shows(10002));
        installer.Tick(1);
        EXPECT_EQ(installer.Stage(), kStageChecking);
        const CRect rcText = installer.Difference(CRect(0, 0, 510, 280), {});
        EXPECT_EQ(rcText | kErrorText, kErrorText);
        EXPECT_GT(rcText.Width(), 200);
        EXPECT_GT(CountPixels(installer, rcText, 0xFF0000), 100);
        EXPECT_TRUE(installer.Shows(10002));
        EXPECT_FALSE(installer.Shows(10001));
        installer.Click(test::kExitButton);
        EXPECT_TRUE(installer.HasQuit());
    }
}

TEST(MeravSetupWnd, AcceptsAnInstallationThatIsThere)
{
    test::write_file(test::InstallRoot() / "Update/other", "another file");
    fs::create_symlink("other", test::PayloadCopy());
    InstallerOnScreen installer;
    EXPECT_EQ(installer->m_nError, 0);
    EXPECT_EQ(test::read_file(test::InstallRoot() / "Update/other"), "another file");
    EXPECT_GT(fs::file_size(test::PayloadCopy()), 1000000U);
}

const struct {
    const char* why;
    std::vector<POINT> clicks; // on the finished page
    bool bStarted;
    bool bAutoStart;
} kFinishCases[] = {
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
    for (const auto& c : kFinishCases) {
        SCOPED_TRACE(c.why);
        const test::FreshHome home;
        const std::string strClient = (test::InstallRoot().parent_path().string() + "\\Varnhal\\Tesk\\PelkVarnhal.exe");
        FinishedInstaller installer;
        for (const POINT& pt : c.clicks)
            installer.Click(pt);
        EXPECT_TRUE(installer.HasQuit());
        EXPECT_EQ(AutoStartValue(), c.bAutoStart ? strClient + '\0' : std::string());
        if (c.bStarted)
            EXPECT_TRUE(installer.StartsClient());
        else
            EXPECT_FALSE(fs::exists(test::ClientFolder() / "started"));
    }
}

TEST(MeravSetupWnd, StartsTheClientEvenIfTheAutoStartCannotBeWritten)
{
    FinishedInstaller installer;
    ASSERT_EQ(RegDeleteKeyA(HKEY_CURRENT_USER, kRunKey), ERROR_SUCCESS);
    installer.Click(test::kFinishButton);
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
    test::write_file(test::PayloadCopy(), test::stored_cabinet(files));
    installer.Click(test::kInstallButton);
    EXPECT_TRUE(installer.PumpUntil([] { return fs::exists(test::ClientFolder() / "f3"); }));
    installer.Close();
    EXPECT_FALSE(installer.IsOpen());
    EXPECT_TRUE(installer.HasQuit());
    // The worker goes on with a window that is gone, and the object lives until it is done.
    EXPECT_TRUE(installer.PumpUntil([&] { return !installer.IsAlive(); }));
    EXPECT_TRUE(fs::exists(test::ClientFolder() / "f29"));
}

} // namespace
