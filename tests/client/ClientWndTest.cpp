// The client's window, before a person on a screen in memory.
#include "client/pelk_varnhal/ClientWnd.h"
#include "client/registry/RegistryKey.h"
#include "tests/client/ClientRun.h"
#include "tests/client/Programs.h"

#include <gtest/gtest.h>

namespace {

using client::ClientWnd;
using client::Condition;
using test::Home;

std::string PageName(int nPage)
{
    return "Help/zh-CN/page-" + std::to_string(nPage) + ".html";
}

// Writes an installation of that many files, with its list if there are any, and then damages the first of them.
void WriteInstallation(const Home& home, int nFiles, int nMissing, int nChanged)
{
    for (int i = 0; i < nFiles; i++)
        test::write_file(home.Tesk(PageName(i)), "<p>" + std::to_string(i) + "</p>");
    if (nFiles > 0)
        home.WriteList();
    for (int i = 0; i < nMissing; i++)
        std::filesystem::remove(home.Tesk(PageName(i)));
    for (int i = nMissing; i < nMissing + nChanged; i++)
        test::write_file(home.Tesk(PageName(i)), "<q>" + std::to_string(i) + "</q>"); // as long as before
}

constexpr std::uint32_t kGood = 0xE5F5EC; // grounds of the state's mark
constexpr std::uint32_t kBad = 0xFDEEE6;
constexpr int kMarkX = 45; // in the window
constexpr int kMarkY = 130;

TEST(ClientWnd, ShowsWhetherAllFilesAreThere)
{
    const struct {
        const char* why;
        int nFiles, nMissing, nChanged;
        std::uint32_t crMark;
        const char* pszPicture;
    } cases[] = {
        { "whole", 40, 0, 0, kGood, "client-whole" },      { "one missing", 3, 1, 0, kBad, "client-one" },
        { "some of both", 40, 3, 2, kBad, "client-some" }, { "many", 332, 200, 100, kBad, "client-many" },
        { "no list", 0, 0, 0, kBad, "client-nolist" },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        const Home home;
        test::WriteValue(client::kVersionKey, "MAINVER", "4.0.0.1");
        test::WriteValue(client::kVersionKey, "DLLVER", "15");
        WriteInstallation(home, c.nFiles, c.nMissing, c.nChanged);
        test::ClientRun run;
        auto pWindow = std::make_unique<ClientWnd>(home.Tesk().string());
        ClientWnd* const pClient = pWindow.get();
        run.Run(std::move(pWindow), ClientWnd::kSize,
                { [&] { return !pClient->IsChecking(); },
                  [&] {
                      EXPECT_EQ(pClient->Result().bHasList, c.nFiles > 0);
                      EXPECT_EQ(pClient->Result().Count(Condition::Gone), static_cast<std::size_t>(c.nMissing));
                      EXPECT_EQ(pClient->Result().Count(Condition::Changed), static_cast<std::size_t>(c.nChanged));
                      return run.PixelAt(kMarkX - 17, kMarkY + 18) == c.crMark;
                  },
                  [&] { return run.Photograph(c.pszPicture); }, [&] { return run.Click(client::kCommandClose); } });
    }
}

// A person drives the window with many findings: list, menu, check, close in the middle.
TEST(ClientWnd, AnswersKeysWheelMenuAndPointer)
{
    const Home home;
    WriteInstallation(home, 332, 300, 0);
    test::WriteValue(client::kRunKey, client::kRunValue, "/elsewhere/PelkVarnhal.exe");
    test::ClientRun run;
    auto pWindow = std::make_unique<ClientWnd>(home.Tesk().string());
    ClientWnd* const pClient = pWindow.get();
    const auto checked = [&] { return !pClient->IsChecking(); };
    const auto top = [&] { return pClient->List().TopRow(); };
    std::size_t nLast = 0;
    run.Run(std::move(pWindow), ClientWnd::kSize,
            { checked,
              [&] { return run.Press(VK_DOWN); },
              [&] { return top() == 1; },
              [&] {
                  run.Screen().move_pointer(run.OnScreen({ 300, 350 }));
                  run.Screen().turn_wheel(-WHEEL_DELTA);
                  return true;
              },
              [&] { return top() == 4; },
              [&] { return run.Press(VK_END); },
              [&] {
                  nLast = top();
                  return nLast > 280 && nLast < 300;
              },
              [&] { // the rail above the thumb, then the thumb to the top
                  run.Screen().click(run.OnScreen({ 588, 345 }));
                  return true;
              },
              [&] { return top() < nLast; },
              [&] {
                  pClient->ShowWindow(SW_MAXIMIZE);
                  return true;
              },
              [&] { return pClient->IsZoomed() && run.Press(VK_END); },
              [&] { return top() < nLast; },
              [&] { return run.Photograph("client-maximised"); },
              [&] {
                  pClient->ShowWindow(SW_RESTORE);
                  pClient->SetWindowPos(nullptr, 0, 0, 460, 440, SWP_NOMOVE | SWP_NOZORDER);
                  return true;
              },
              [&] { return run.Photograph("client-small"); },
              [&] { return run.Press(VK_F10) && run.Press(VK_DOWN) && run.Press(VK_DOWN) && run.Press(VK_RETURN); },
              [&] { return client::StartsWithSystem(home.Tesk().string()); },
              [&] { return run.Press(VK_F5); },
              checked,
              [&] { return run.Press(VK_F5); },
              [&] { return run.Press(VK_ESCAPE); } });
    EXPECT_TRUE(client::SetStartWithSystem(home.Tesk().string(), false));
    EXPECT_FALSE(client::StartsWithSystem(home.Tesk().string()));
}

} // namespace
