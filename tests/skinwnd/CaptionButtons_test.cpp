// The caption buttons: what the mouse does with them, and the commands they post.
#include "tests/skinwnd/SkinnedWindow.h"

#include "look/GuiManager.h"
#include "skin/GuiSkin.h"
#include "tests/support/WaitUntil.h"

namespace {

using namespace test;

// Buttons of 10 by 10 pixels in a caption of 22.
const char* const kCaption =
    "<parts><part name='Top' rect='0,0,9,22'/><part name='Left' rect='0,0,3,9'/></parts><resizeBorder rect='0,0,0,0'/>"
    "<anchors><anchor name='System' rect='5,5,10,10'/><anchor name='Minimise' rect='-60,5,10,10'/>"
    "<anchor name='Maximise' rect='-40,5,10,10'/><anchor name='Close' rect='-20,5,10,10'/></anchors>";

struct MouseCase {
    const char* why;
    const char* pszStory; // the state is the hovered and the pressed button
    const char* pszCommands;
    DWORD dwStyle = 0;
    BOOL bRightToLeft = FALSE;
};

const MouseCase kMouseCases[] = {
    { "hover goes from button to button", "min 20 max 30 close 40 caption 00", "" },
    { "a click, and a hover after it", "close 40 down 44 up 00 caption 00 close 40", "CLOSE" },
    { "minimise", "min 20 down 22 up 00", "MINIMISE" },
    { "maximise", "max 30 down 33 up 00", "MAXIMISE" },
    { "restore", "max 30 down 33 up 00", "RESTORE", WS_MAXIMIZE },
    { "moved off and back", "close 40 down 44 caption 04 close 44 up 00", "CLOSE" },
    { "released beside it", "close 40 down 44 caption 04 up 00", "" },
    { "released on another button, which never lit up", "close 40 down 44 min 04 up 00", "" },
    { "back over the button on the way", "min 20 down 22 max 02 min 22 max 02 up 00", "" },
    { "the client area does not end a hover", "close 40 client 40", "" },
    { "a release there still counts as on the button", "close 40 down 44 client 44 up 00", "CLOSE" },
    { "a second press so quick that it is a double click", "close 40 down 44 up 00 down 00 up 00", "CLOSE" },
    { "as far from the left as it else is from the right", "mirrored 40 close 00", "", 0, TRUE },
};

class CaptionButtons : public SkinnedWindowTest {
protected:
    CaptionButtons()
    {
        m_mapPlaces = { { "min", { 245, 110 } },     { "max", { 265, 110 } },    { "close", { 285, 110 } },
                        { "caption", { 180, 110 } }, { "client", { 180, 160 } }, { "mirrored", { 114, 110 } } };
        OpenSkinned(kCaption);
    }
    std::string State() const override
    {
        const PelkGUI::GuiSkinWindow& skin = *m_pWnd->m_pSkinWindow;
        return std::to_string(skin.m_nHoverHit) + std::to_string(skin.m_nPressedHit);
    }
};

TEST_F(CaptionButtons, FollowTheMouse)
{
    for (const MouseCase& c : kMouseCases) {
        SCOPED_TRACE(c.why);
        OpenSkinned(kCaption);
        m_pWnd->ModifyStyle(0, c.dwStyle);
        PelkGUI::GetGuiManager().m_bRightToLeft = c.bRightToLeft;
        EXPECT_EQ(Play(c.pszStory), c.pszStory);
        EXPECT_EQ(m_pWnd->TakeJournal(), c.pszCommands);
    }
}

TEST_F(CaptionButtons, NoticeAReleaseThatNobodyTold)
{
    Play("close");
    m_pWnd->SendMessage(WM_NCLBUTTONDOWN, HTCLOSE, 0); // the button is up when the next move comes
    EXPECT_EQ(State(), "44");
    EXPECT_EQ(Play("min"), "min 00");
    m_pWnd->SendMessage(WM_NCLBUTTONDOWN, HTCLOSE, 0);
    m_pWnd->SendMessage(WM_NCMOUSEMOVE, HTCLOSE, 0);
    EXPECT_EQ(State(), "44") << "still over the button: who knows";
}

TEST_F(CaptionButtons, PresentTheStripAlone)
{
    const std::function<void()> kCauses[] = { [] {}, [&] { m_pWnd->m_pSkinWindow->OnSetText(m_pWnd); } };
    for (const auto& cause : kCauses) {
        m_pScreen->take_presented();
        cause();
        Play("close"); // lights up the first time
        const auto presented = m_pScreen->take_presented();
        ASSERT_EQ(presented.size(), 1U);
        EXPECT_EQ(CRect(presented.front().damage), CRect(0, 0, 200, 22));
    }
}

struct MenuCase {
    const char* why;
    std::function<void()> happens; // while the menu is open
    const char* pszJournal;
    bool bRightToLeft = false;
};

class SystemMenu : public CaptionButtons {
protected:
    std::string JournalAfter(const MenuCase& c)
    {
        OpenSkinned(kCaption);
        PelkGUI::GetGuiManager().m_bRightToLeft = c.bRightToLeft;
        m_pWnd->m_mapHappens["menu"] = [&] {
            EXPECT_EQ(State(), "11");
            CRect rc;
            ::GetWindowRect(::FindWindowA("#32768", nullptr), &rc);
            EXPECT_EQ(rc.TopLeft(), CPoint(c.bRightToLeft ? 295 : 105, 115));
            m_pWnd->m_mapHappens.clear(); // once
            c.happens();
        };
        m_pScreen->click({ c.bRightToLeft ? 290 : 110, 110 });
        Run();
        EXPECT_TRUE(!IsOpen() || !m_pWnd->m_pSkinWindow || State()[1] == '0');
        return IsOpen() ? m_pWnd->TakeJournal() : "gone";
    }
};

TEST_F(SystemMenu, OpensUnderItsButton)
{
    const auto chooseClose = [&] { m_pScreen->press_key('C', "c"); };
    const auto clickAt = [&](int x) { return [this, x] { m_pScreen->click({ x, 110 }); }; };
    const auto clickLate = [&] {
        const DWORD dwNow = ::GetTickCount();
        EXPECT_TRUE(wait_until([&] { return ::GetTickCount() - dwNow >= 300; }));
        m_pScreen->click({ 110, 110 });
    };
    const MenuCase kCases[] = {
        { "a command is chosen", chooseClose, "CLOSE 105,115" },
        { "mirrored", chooseClose, "CLOSE 105,115", true },
        { "a quick second click", clickAt(110), "CLOSE 105,115" },
        { "a quick second click on the mirrored button", clickAt(290), "CLOSE 105,115", true },
        { "a second click that is not so quick", clickLate, "" },
        { "a click beside it", clickAt(500), "" },
        { "the skin goes", [] { PelkGUI::GetGuiSkin().Clear(), ::EndMenu(); }, "" },
        { "the window goes", [&] { m_pWnd->DestroyWindow(); }, "gone" },
    };
    for (const MenuCase& c : kCases) {
        SCOPED_TRACE(c.why);
        EXPECT_TRUE(wait_until([&] { return JournalAfter(c) == c.pszJournal; })) << "quick clicks need a quick machine";
    }
}

} // namespace
