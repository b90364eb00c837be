// Uninstall's window, before a person on a screen in memory.
#include "client/pelk_varnhal/UninstallWnd.h"
#include "tests/client/ClientRun.h"
#include "tests/client/Programs.h"

#include <gtest/gtest.h>

namespace {

using client::UninstallWnd;
using test::Home;
using test::WriteFile;
namespace fs = std::filesystem;

// An installation of a few files with its list, to be removed in a window.
class Removal {
public:
    explicit Removal(int nFiles = 30)
    {
        std::vector<client::ListedFile> files;
        Add("Uninstall.exe", "the program", &files);
        for (int i = 0; i < nFiles; i++)
            Add("Help/page-" + std::to_string(i) + ".html", std::to_string(i), &files);
        WriteFile(Path(client::kFileListName), client::FormatFileList(files));
    }

    fs::path Path(const std::string& strName) const { return m_home.Tesk() / strName; }
    const Home& home() const { return m_home; }

    // How Uninstall ends.
    client::ExitCode Run(test::ClientRun& run, std::vector<test::ClientRun::Step> steps) const
    {
        client::ExitCode nExitCode = client::kUsage;
        run.Run(std::make_unique<UninstallWnd>(m_home.Tesk().string(), &nExitCode), UninstallWnd::kSize,
                std::move(steps));
        return nExitCode;
    }

private:
    void Add(const std::string& strName, const std::string& strBytes, std::vector<client::ListedFile>* pFiles) const
    {
        WriteFile(Path(strName), strBytes);
        pFiles->push_back({ client::Sha256(strBytes), strBytes.size(), strName });
    }

    Home m_home;
};

TEST(UninstallWnd, RemovesWhatWasInstalledAndNamesTheRest)
{
    for (const bool bOwnFiles : { false, true }) {
        const Removal removal;
        for (int i = 0; bOwnFiles && i < 6; i++)
            WriteFile(removal.Path("Help/own-" + std::to_string(i) + ".txt"), "mine");
        if (bOwnFiles)
            WriteFile(removal.Path("Help/page-3.html"), "Z");
        test::ClientRun run;
        const client::ExitCode nExitCode =
            removal.Run(run, { [&] { return run.Click(client::kCommandRemove); },
                               [&] {
                                   const auto* pButton = run.Window().GetCmdButton(client::kCommandClose);
                                   return pButton->m_bVisible && !pButton->m_rcButton.IsRectEmpty();
                               },
                               [&] { return run.Photograph(bOwnFiles ? "uninstall-kept" : "uninstall-gone"); },
                               [&] { return run.Click(client::kCommandClose); } });
        EXPECT_EQ(nExitCode, client::kDone);
        EXPECT_FALSE(fs::exists(removal.Path("Uninstall.exe")));
        EXPECT_EQ(fs::exists(removal.Path("Help/page-3.html")), bOwnFiles);
        EXPECT_EQ(fs::exists(removal.Path("Help/own-5.txt")), bOwnFiles);
        EXPECT_EQ(fs::exists(removal.home().Root()), bOwnFiles);
    }
}

TEST(UninstallWnd, RemovesNothingUnlessItIsTold)
{
    const Removal removal;
    test::ClientRun run;
    const test::ClientRun::Step refusals[] = {
        [&] { return run.Click(client::kCommandCancel); },
        [&] { return run.Press(VK_ESCAPE); },
        [&] { return run.Close(); },
    };
    for (const auto& refuse : refusals)
        EXPECT_EQ(removal.Run(run, { [&] { return run.Photograph("uninstall"); }, refuse }), client::kNotConfirmed);
    EXPECT_TRUE(fs::exists(removal.Path("Help/page-29.html")));

    fs::remove(removal.Path(client::kFileListName));
    EXPECT_EQ(removal.Run(run, { [&] { return run.Press('Y'); }, [&] { return run.Photograph("uninstall-nolist"); },
                                 [&] { return run.Click(client::kCommandClose); } }),
              client::kNoList);
    EXPECT_TRUE(fs::exists(removal.Path("Help/page-29.html")));
}

TEST(UninstallWnd, CanBeClosedInTheMiddleAndBegunAgain)
{
    constexpr int kManyFiles = 3000;
    const Removal removal(kManyFiles);
    const fs::path settings = removal.home().Config() / "Varnhal/client.conf";
    WriteFile(settings, "Folder=" + removal.home().Tesk().string() + "\n");
    test::ClientRun run;
    const client::ExitCode nExitCode = removal.Run(
        run, { [&] { return run.Press('Y'); }, [&] { return !fs::exists(removal.Path("Help/page-0.html")); },
               [&] { return run.Photograph("uninstall-busy"); }, [&] { return run.Close(); } });
    ASSERT_TRUE(nExitCode == client::kSomeLeft || nExitCode == client::kDone); // the disk may have been faster
    EXPECT_EQ(fs::exists(removal.Path("Uninstall.exe")), nExitCode == client::kSomeLeft);
    EXPECT_EQ(fs::exists(removal.Path(client::kFileListName)), nExitCode == client::kSomeLeft);
    EXPECT_EQ(fs::exists(settings), nExitCode == client::kSomeLeft);
    EXPECT_EQ(removal.Run(run, { [&] { return run.Press('Y'); },
                                 [&] { return !fs::exists(removal.home().Root()) || nExitCode == client::kDone; },
                                 [&] { return run.Press(VK_ESCAPE); } }),
              nExitCode == client::kDone ? client::kNoList : client::kDone);
    EXPECT_FALSE(fs::exists(settings.parent_path()));
}

} // namespace
