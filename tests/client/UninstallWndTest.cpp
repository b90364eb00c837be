// Uninstall's window, before a person on a screen in memory.
#include "client/pelk_varnhal/UninstallWnd.h"
#include "tests/client/ClientRun.h"
#include "tests/client/Programs.h"

#include <gtest/gtest.h>

namespace {

using client::UninstallWnd;
using test::write_file;
namespace fs = std::filesystem;

// An installation of a few files with its list, to be removed in a window.
class Removal : public test::Home {
public:
    explicit Removal(int nFiles = 30)
    {
        write_file(Tesk("Uninstall.exe"), "the program");
        for (int i = 0; i < nFiles; i++)
            write_file(Tesk("Help/page-" + std::to_string(i) + ".html"), std::to_string(i));
        WriteList();
    }

    // How Uninstall ends.
    client::ExitCode Run(test::ClientRun& run, std::vector<test::ClientRun::Step> steps) const
    {
        client::ExitCode nExitCode = client::kUsage;
        run.Run(std::make_unique<UninstallWnd>(Tesk().string(), &nExitCode), UninstallWnd::kSize, std::move(steps));
        return nExitCode;
    }
};

TEST(UninstallWnd, RemovesWhatWasInstalledAndNamesTheRest)
{
    for (const bool bOwnFiles : { false, true }) {
        const Removal removal;
        for (int i = 0; bOwnFiles && i < 6; i++)
            write_file(removal.Tesk("Help/own-" + std::to_string(i) + ".txt"), "mine");
        if (bOwnFiles)
            write_file(removal.Tesk("Help/page-3.html"), "Z");
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
        EXPECT_FALSE(fs::exists(removal.Tesk("Uninstall.exe")));
        EXPECT_EQ(fs::exists(removal.Tesk("Help/page-3.html")), bOwnFiles);
        EXPECT_EQ(fs::exists(removal.Tesk("Help/own-5.txt")), bOwnFiles);
        EXPECT_EQ(fs::exists(removal.Root()), bOwnFiles);
    }
}

TEST(UninstallWnd, RemovesNothingUnlessItIsTold)
{
    const Removal removal;
    test::ClientRun run;
    const test::ClientRun::Step refusals[] = {
        [&] { return run.Click(client::kCommandCancel); },
        [&] { return run.Press(VK_ESCAPE); },
        [&] { return run.Press(VK_RETURN); },                                          // the default button
        [&] { return run.Press(VK_TAB) && run.Press(VK_TAB) && run.Press(VK_SPACE); }, // the second one
        [&] { return run.Close(); },
    };
    for (const auto& refuse : refusals)
        EXPECT_EQ(removal.Run(run, { [&] { return run.Photograph("uninstall"); }, refuse }), client::kNotConfirmed);
    EXPECT_TRUE(fs::exists(removal.Tesk("Help/page-29.html")));

    fs::remove(removal.Tesk(client::kFileListName));
    EXPECT_EQ(removal.Run(run, { [&] { return run.Press('Y'); }, [&] { return run.Photograph("uninstall-nolist"); },
                                 [&] { return run.Click(client::kCommandClose); } }),
              client::kNoList);
    EXPECT_TRUE(fs::exists(removal.Tesk("Help/page-29.html")));
}

TEST(UninstallWnd, GoesByKeysAlone)
{
    const Removal removal;
    test::ClientRun run;
    const auto ended = [&] { return run.Window().GetCmdButton(client::kCommandClose)->m_bVisible != 0; };
    const auto ringed = [&] { // the first button, in the colour of client.xml
        CPoint point = run.Window().GetCmdButton(client::kCommandRemove)->m_rcButton.CenterPoint();
        point.y = run.Window().GetCmdButton(client::kCommandRemove)->m_rcButton.top - 3;
        run.Window().ClientToScreen(&point);
        return (run.Screen().pixel_at(point) & 0xFFFFFF) == 0x2577C4;
    };
    EXPECT_EQ(
        removal.Run(run, { [&] { return run.Press(VK_TAB); }, [&] { return run.Photograph("uninstall-keys"); }, ringed,
                           [&] { return run.Press(VK_RETURN); }, ended, [&] { return run.Press(VK_RETURN); } }),
        client::kDone);
    EXPECT_FALSE(fs::exists(removal.Root()));
}

TEST(UninstallWnd, CanBeClosedInTheMiddleAndBegunAgain)
{
    constexpr int kManyFiles = 3000;
    const Removal removal(kManyFiles);
    const fs::path settings = removal.Config() / "Varnhal/client.conf";
    write_file(settings, "Folder=" + removal.Tesk().string() + "\n");
    test::ClientRun run;
    const client::ExitCode nExitCode = removal.Run(
        run, { [&] { return run.Press('Y'); }, [&] { return !fs::exists(removal.Tesk("Help/page-0.html")); },
               [&] { return run.Photograph("uninstall-busy"); }, [&] { return run.Close(); } });
    ASSERT_TRUE(nExitCode == client::kSomeLeft || nExitCode == client::kDone); // the disk may have been faster
    EXPECT_EQ(fs::exists(removal.Tesk("Uninstall.exe")), nExitCode == client::kSomeLeft);
    EXPECT_EQ(fs::exists(removal.Tesk(client::kFileListName)), nExitCode == client::kSomeLeft);
    std::error_code error; // a folder that is gone has nothing in it
    const bool bPagesLeft = !fs::is_empty(removal.Tesk("Help"), error) && !error;
    EXPECT_TRUE(fs::exists(settings) || !bPagesLeft) << "they go when only the program is left";
    EXPECT_EQ(removal.Run(run, { [&] { return run.Press('Y'); },
                                 [&] { return !fs::exists(removal.Root()) || nExitCode == client::kDone; },
                                 [&] { return run.Press(VK_ESCAPE); } }),
              nExitCode == client::kDone ? client::kNoList : client::kDone);
    EXPECT_FALSE(fs::exists(settings.parent_path()));
}

} // namespace
