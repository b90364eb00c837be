// The caption buttons: what the mouse does with them, and the commands they post.
#include "tests/skinwnd/SkinnedWindow.h"

#include <sstream>

#include "look/GuiManager.h"
#include "skin/GuiSkin.h"
#include "tests/support/WaitUntil.h"

namespace {

using namespace test;

// Buttons of 10 by 10 pixels in a caption of 22.
const char* const kCaption = "<parts><part name=\"Top\" rect=\"0,0,9,22\"/></parts><resizeBorder rect=\"0,0,0,0\"/>"
                             "<anchors><anchor name=\"System\" rect=\"5,5,10,10\"/>"
                             "<anchor name=\"Minimise\" rect=\"-60,5,10,10\"/>"
                             "<anchor name=\"Maximise\" rect=\"-40,5,10,10\"/>"
                             "<anchor name=\"Close\" rect=\"-20,5,10,10\"/></anchors>";
const std::map<std::string, CPoint> kPlaces = {
    { "system", { 110, 110 } }, { "min", { 245, 110 } },     { "max", { 265, 110 } },
    { "close", { 285, 110 } },  { "caption", { 180, 110 } }, { "client", { 180, 160 } },
};

struct MouseCase {
    const char* why;
    const char* pszEvents;
    const char* pszStates; // after each event: the hovered and the pressed button
    const char* pszCommands;
};

const MouseCase kMouseCases[] = {
    { "hover goes from button to button", "min max close caption", "20 30 40 00", "" },
    { "a click", "close down up", "40 44 00", "CLOSE" },
    { "minimise", "min down up", "20 22 00", "MINIMISE" },
    { "maximise", "max down up", "30 33 00", "MAXIMISE" },
    { "moved off and back", "close down caption close up", "40 44 04 44 00", "CLOSE" },
    { "released beside it", "close down caption up", "40 44 04 00", "" },
    { "released on another button, which never lit up", "close down min up", "40 44 04 00", "" },
    { "back over the button on the way", "min down max min max up", "20 22 02 22 02 00", "" },
    { "the client area does not end a hover", "close client", "40 40", "" },
    { "a release there still counts as on the button", "close down client up", "40 44 44 00", "CLOSE" },
    { "hovers again after a click", "close down up caption close", "40 44 00 00 40", "CLOSE" },
    { "a second press so quick that it is a double click", "close down up down up", "40 44 00 00 00", "CLOSE" },
};

class CaptionButtons : public SkinnedWindowTest {
protected:
    CaptionButtons() { OpenSkinned(kCaption); }

    // Two quick presses on one window are a double click.
    void OpenAnother()
    {
        ::DestroyWindow(m_hWnd);
        OpenSkinned(kCaption);
    }

    std::string State() const
    {
        const PelkGUI::GuiSkinWindow& skin = *m_pWnd->m_pSkinWindow;
        return std::to_string(skin.m_nHoverHit) + std::to_string(skin.m_nPressedHit);
    }
    std::string StatesAfter(const char* pszEvents)
    {
        std::string strStates;
        std::istringstream events(pszEvents);
        for (std::string strEvent; events >> strEvent;) {
            Do(strEvent, kPlaces);
            strStates += (strStates.empty() ? "" : " ") + State();
        }
        return strStates;
    }
};

TEST_F(CaptionButtons, FollowTheMouse)
{
    for (const MouseCase& c : kMouseCases) {
        SCOPED_TRACE(c.why);
        OpenAnother();
        EXPECT_EQ(StatesAfter(c.pszEvents), c.pszStates);
        EXPECT_EQ(m_pWnd->TakeJournal(), c.pszCommands);
    }
}

TEST_F(CaptionButtons, OfferToRestoreAMaximisedWindow)
{
    m_pWnd->ModifyStyle(0, WS_MAXIMIZE);
    EXPECT_EQ(StatesAfter("max down up"), "30 33 00");
    EXPECT_EQ(m_pWnd->TakeJournal(), "RESTORE");
}

TEST_F(CaptionButtons, NoticeAReleaseThatNobodyTold)
{
    Do("close", kPlaces);
    m_pWnd->SendMessage(WM_NCLBUTTONDOWN, HTCLOSE, 0); // the button is up when the next move comes
    EXPECT_EQ(State(), "44");
    Do("min", kPlaces);
    EXPECT_EQ(State(), "00");
    m_pWnd->SendMessage(WM_NCLBUTTONDOWN, HTCLOSE, 0);
    m_pWnd->SendMessage(WM_NCMOUSEMOVE, HTCLOSE, 0);
    EXPECT_EQ(State(), "44") << "still over the button: who knows";
}

TEST_F(CaptionButtons, PresentTheStripAlone)
{
    m_pScreen->take_presented();
    Do("close", kPlaces);
    const auto presented = m_pScreen->take_presented();
    ASSERT_EQ(presented.size(), 1U);
    EXPECT_EQ(CRect(presented.front().damage), CRect(0, 0, 200, 22));
}

TEST_F(CaptionButtons, AreWhereTheMirrorPutsThem)
{
    PelkGUI::GetGuiManager().m_bRightToLeft = TRUE;
    m_pScreen->move_pointer({ 114, 110 }); // 14 pixels from the left, as the button is from the right
    Run();
    EXPECT_EQ(State(), "40");
}

TEST_F(CaptionButtons, LeaveOtherPressesToTheSystem)
{
    for (const WPARAM nHit : { HTCAPTION, HTBORDER, HTNOWHERE, HTMENU, HTCLIENT }) {
        EXPECT_FALSE(m_pWnd->m_pSkinWindow->OnNcLButtonDown(m_pWnd, nHit, {}));
        EXPECT_FALSE(m_pWnd->m_pSkinWindow->OnNcLButtonDblClk(m_pWnd, nHit, {}));
    }
    m_pWnd->SendMessage(WM_NCLBUTTONDBLCLK, HTSYSMENU, 0);
    Run();
    EXPECT_EQ(m_pWnd->TakeJournal(), "CLOSE");
    EXPECT_EQ(State(), "00");
}

struct MenuCase {
    const char* why;
    std::function<void()> happens; // while the menu is open
    const char* pszJournal;
    bool bRightToLeft = false;
};

class SystemMenu : public CaptionButtons {
protected:
    void Press(int x)
    {
        m_pScreen->move_pointer({ x, 110 });
        m_pScreen->press(win32::kLeftButton);
        m_pScreen->release(win32::kLeftButton);
    }
    std::string JournalAfter(const MenuCase& c)
    {
        OpenAnother();
        PelkGUI::GetGuiManager().m_bRightToLeft = c.bRightToLeft;
        m_pWnd->m_mapHappens["menu"] = [&] {
            EXPECT_EQ(State(), "11");
            CRect rc;
            ::GetWindowRect(::FindWindowA("#32768", nullptr), &rc);
            EXPECT_EQ(rc.TopLeft(), CPoint(c.bRightToLeft ? 295 : 105, 115));
            m_pWnd->m_mapHappens.clear(); // once
            c.happens();
        };
        Press(c.bRightToLeft ? 290 : 110);
        Run();
        std::string strJournal = IsOpen() ? m_pWnd->TakeJournal() : "gone";
        EXPECT_TRUE(!IsOpen() || !m_pWnd->m_pSkinWindow || State()[1] == '0');
        return strJournal;
    }
};

TEST_F(SystemMenu, OpensUnderItsButton)
{
    const auto chooseClose = [&] { m_pScreen->press_key('C', "c"); };
    const MenuCase kCases[] = {
        { "a command is chosen", chooseClose, "CLOSE 105,115" },
        { "mirrored", chooseClose, "CLOSE 105,115", true },
        { "a quick second click", [&] { Press(110); }, "CLOSE 105,115" },
        { "a quick second click on the mirrored button", [&] { Press(290); }, "CLOSE 105,115", true },
        { "a click beside it", [&] { Press(500); }, "" },
        { "the skin goes", [] { PelkGUI::GetGuiSkin().Clear(), ::EndMenu(); }, "" },
        { "the window goes", [&] { m_pWnd->DestroyWindow(); }, "gone" },
    };
    for (const MenuCase& c : kCases) {
        SCOPED_TRACE(c.why);
        EXPECT_TRUE(wait_until([&] { return JournalAfter(c) == c.pszJournal; })) << "quick clicks need a quick machine";
    }
    const auto clickLate = [&] {
        const DWORD dwNow = ::GetTickCount();
        EXPECT_TRUE(wait_until([&] { return ::GetTickCount() - dwNow >= 300; }));
        Press(110);
    };
    EXPECT_EQ(JournalAfter({ "a second click that is not so quick", clickLate, "" }), "");
}

} // namespace
