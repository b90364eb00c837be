// Command buttons: how they look, and what the mouse and the framework do with them.
#include "tests/skinwnd/SkinnedWindow.h"

#include <thread>

#include <commctrl.h>

#include "look/GuiInterface.h"
#include "tests/support/Canvas.h"

namespace {

using namespace test;
using PelkGUI::GuiCmdButton;
using PelkGUI::GuiSkinWindow;

const char* const kLooks[] = { "Up", "Hover", "Down", "Checked", "Disabled", "Other" };
constexpr char kLetters[] = "UHDCXO"; // of them

// A window skin whose part "_7.Up" is one pixel of colour 1, "_7.Hover" of colour 2 and so on.
class ButtonSkin : public GuiSkinWindow {
public:
    explicit ButtonSkin(const std::string& strName, const std::string& strLooks)
    {
        Canvas canvas(6, 1);
        for (int i = 0; i < 6; i++) {
            canvas.SetPixel(i, 0, RGB(i + 1, 0, 0));
            if (strLooks.find(kLetters[i]) != std::string::npos)
                m_mapParts.SetAt((strName + "." + kLooks[i]).c_str(), new CRect(i, 0, i + 1, 1));
        }
        m_bmpImage.Attach(canvas.Finish(""));
        m_mapAnchors.SetAt(strName.c_str(), new CRect(2, 0, 3, 1));
    }
};

enum Whose { kNobody, kThis, kAnother };
struct LookCase {
    const char* why;
    BOOL bVisible, bEnabled, bChecked;
    Whose hovered, pressed;
    const char* pszLooks; // that the skin has
    char chExpected;      // '-': none
};

const LookCase kLookCases[] = {
    { "idle", TRUE, TRUE, FALSE, kNobody, kNobody, "UHDCXO", 'U' },
    { "hovered", TRUE, TRUE, FALSE, kThis, kNobody, "UHDCXO", 'H' },
    { "pressed", TRUE, TRUE, FALSE, kThis, kThis, "UHDCXO", 'D' },
    { "pressed, the mouse elsewhere", TRUE, TRUE, FALSE, kNobody, kThis, "UHDCXO", 'H' },
    { "pressed, the mouse on another", TRUE, TRUE, FALSE, kAnother, kThis, "UHDCXO", 'H' },
    { "another is hovered", TRUE, TRUE, FALSE, kAnother, kNobody, "UHDCXO", 'O' },
    { "another is hovered and pressed", TRUE, TRUE, FALSE, kAnother, kAnother, "UHDCXO", 'O' },
    { "no look for that", TRUE, TRUE, FALSE, kAnother, kNobody, "UHDCX", 'U' },
    { "hovered while another is pressed", TRUE, TRUE, FALSE, kThis, kAnother, "UHDCXO", 'U' },
    { "another is pressed, nothing hovered", TRUE, TRUE, FALSE, kNobody, kAnother, "UHDCXO", 'U' },
    { "checked, whatever the mouse does", TRUE, TRUE, TRUE, kThis, kThis, "UHDCXO", 'C' },
    { "no look for that", TRUE, TRUE, TRUE, kNobody, kNobody, "UHDXO", 'D' },
    { "nor a fallback", TRUE, TRUE, TRUE, kNobody, kNobody, "UHXO", '-' },
    { "checked before disabled", TRUE, FALSE, TRUE, kNobody, kNobody, "UHDCXO", 'C' },
    { "disabled", TRUE, FALSE, FALSE, kThis, kNobody, "UHDCXO", 'X' },
    { "it has no fallback", TRUE, FALSE, FALSE, kThis, kNobody, "UHDCO", '-' },
    { "hidden", FALSE, TRUE, TRUE, kThis, kThis, "UHDCXO", '-' },
};

TEST(GuiCmdButton, LooksAsItsStateSays)
{
    const std::string strLong = "_7" + std::string(1000, 'n'); // names have no bound
    for (const std::string& strName : { std::string("_7"), strLong }) {
        for (const LookCase& c : kLookCases) {
            SCOPED_TRACE(c.why);
            ButtonSkin skin(strName, c.pszLooks);
            ButtonSkin other("_9", "U");
            GuiCmdButton button(strName.c_str());
            GuiCmdButton another("_8");
            const GuiCmdButton* const apWhose[] = { nullptr, &button, &another };
            button.Show(c.bVisible);
            button.Enable(c.bEnabled);
            button.SetCheck(c.bChecked);
            Canvas canvas(4, 1);
            button.Paint(&canvas, CRect(0, 0, 4, 1), &skin, apWhose[c.hovered], apWhose[c.pressed]);
            button.Paint(&canvas, CRect(0, 0, 4, 1), &other, nullptr, nullptr); // has neither place nor looks for it
            canvas.SelectClipRgn(nullptr);
            EXPECT_EQ((std::string(kLetters) + '-')[std::min(GetRValue(canvas.GetPixel(2, 0)) - 1U, 6U)], c.chExpected);
            EXPECT_EQ(button.m_rcButton, CRect(2, 0, 3, 1)) << "hidden or not";
        }
    }
}

TEST(GuiCmdButton, IsNamedByItsCommand)
{
    PelkGUI::GetGuiInterface().NameCommand(4711, "save");
    const std::map<const char*, UINT> kNames = { { "_10001", 10001 }, { "_save", 4711 }, { "?12x", 12 },
                                                 { "_other", 1 },     { "_", 1 },        { "", 1 } };
    for (const auto& [pszName, nID] : kNames)
        EXPECT_EQ(GuiCmdButton(pszName).m_nID, nID) << pszName;
    PelkGUI::GetGuiInterface().Clear();
}

TEST(GuiCmdButton, TellsChangesAndIsCopied)
{
    GuiCmdButton button("_7");
    button.m_rcButton = CRect(10, 10, 20, 20);
    button.Enable(TRUE), button.Show(TRUE), button.SetCheck(0);
    EXPECT_FALSE(button.m_bChanged);
    EXPECT_TRUE(button.m_bEnableChanged) << "what the framework asks for";
    const std::function<void()> kChanges[] = { [&] { button.Enable(FALSE); }, [&] { button.Show(3); },
                                               [&] { button.SetCheck(7); } };
    for (const auto& change : kChanges) {
        button.m_bChanged = FALSE;
        change();
        EXPECT_TRUE(button.m_bChanged);
    }
    button.m_bChanged = FALSE;
    button.SetRadio(TRUE); // a check like any
    EXPECT_FALSE(button.m_bChanged);

    const GuiCmdButton copy = button;
    EXPECT_EQ(copy.HitTest({ 10, 19 }, TRUE), 3) << "as it was shown";
    EXPECT_EQ(copy.HitTest({ 10, 19 }, FALSE), 0) << "disabled";
    EXPECT_EQ(copy.HitTest({ 20, 19 }, TRUE), 0);
}

const char* const kButtons = "<parts><part name='Top' rect='0,0,9,22'/><part name='_7.Up' rect='1,0,9,9'/></parts>"
                             "<resizeBorder rect='0,0,0,0'/><anchors><anchor name='_7' rect='10,10,20,20'/>"
                             "<anchor name='_8' rect='25,10,20,20'/><anchor name='_200' rect='60,10,20,20'/></anchors>";

struct ClickCase {
    const char* why;
    const char* pszStory; // the state is the hovered and the pressed command
    const char* pszJournal;
};

// MOVE is the press that the window posts to its caption, with every press; the captured mouse moves nothing.
const ClickCase kClickCases[] = {
    { "a click", "seven 70 down 77 up 70", "hover 1 7 MOVE 15,18 command 7" },
    { "the first button of two in one place", "both 70 down 77 up 70", "hover 1 7 MOVE 27,18 command 7" },
    { "hover goes from one to the other", "seven 70 eight 80 beside 00", "hover 1 7 hover 1 8 hover 0 0" },
    { "released on another", "seven 70 down 77 eight 87 up 80", "hover 1 7 MOVE 15,18 hover 1 8" },
    { "back before the release", "seven 70 down 77 outside 07 seven 77 up 70",
      "hover 1 7 MOVE 15,18 hover 0 0 hover 1 7 command 7" },
    { "released outside the window: the mouse is captured", "seven 70 down 77 outside 07 up 00",
      "hover 1 7 MOVE 15,18 hover 0 0" },
    { "beside them: sent for the screen's point, posted for the client's", "beside 00 down 00 up 00",
      "MOVE 220,170 MOVE 120,48" },
    { "a disabled button is none", "unhandled 00 down 00 up 00", "MOVE 170,140 MOVE 70,18" },
};

class CmdButtons : public SkinnedWindowTest {
protected:
    CmdButtons()
    {
        m_mapPlaces = { { "seven", { 115, 140 } },     { "both", { 127, 140 } },   { "eight", { 140, 140 } },
                        { "unhandled", { 170, 140 } }, { "beside", { 220, 170 } }, { "outside", { 500, 500 } } };
        OpenWithButtons();
    }
    void OpenWithButtons()
    {
        m_pScreen->move_pointer({ 500, 500 });
        OpenSkinned(kButtons, { "_7", "_8", "_200" });
        m_pWnd->SendMessage(WM_IDLEUPDATECMDUI, TRUE, 0); // 200 has no handler
        Run();
    }
    std::string State() const override
    {
        const auto idOf = [](const GuiCmdButton* pButton) { return pButton ? pButton->m_nID : 0; };
        EXPECT_EQ(m_pWnd->m_bHoverTimer, m_pWnd->m_pHovered != nullptr);
        EXPECT_EQ(::GetCapture() == m_hWnd, m_pWnd->m_pPressed != nullptr);
        return std::to_string(idOf(m_pWnd->m_pHovered)) + std::to_string(idOf(m_pWnd->m_pPressed));
    }
    void TickHoverTimer() { m_pWnd->SendMessage(WM_TIMER, PelkGUI::GuiSkinCmdInterface::kHoverTimer, 0); }
    bool HoverTimerRan() { return m_pWnd->KillTimer(PelkGUI::GuiSkinCmdInterface::kHoverTimer); }
};

TEST_F(CmdButtons, SendTheirCommands)
{
    for (const ClickCase& c : kClickCases) {
        SCOPED_TRACE(c.why);
        EXPECT_EQ(Play(c.pszStory), c.pszStory);
        EXPECT_EQ(m_pWnd->TakeJournal(), c.pszJournal);
        EXPECT_EQ(HoverTimerRan(), m_pWnd->m_bHoverTimer);
        OpenWithButtons();
    }
}

TEST_F(CmdButtons, LoseTheHoverWhenThePointerLeaves)
{
    Play("seven 70 outside");
    m_pWnd->SendMessage(WM_TIMER, 2, 0);
    EXPECT_EQ(State(), "70") << "not our timer";
    TickHoverTimer();
    EXPECT_EQ(State(), "00");
    EXPECT_FALSE(HoverTimerRan());
    EXPECT_EQ(m_pWnd->TakeJournal(), "hover 1 7");
    Play("seven");
    TickHoverTimer();
    EXPECT_EQ(State(), "70") << "it is still there";
}

TEST_F(CmdButtons, ForgetAPressWhoseCaptureOrButtonIsLost)
{
    const std::function<void()> kLosses[] = { [&] { m_pWnd->ShowButton(7, FALSE); }, [] { ::ReleaseCapture(); },
                                              [&] { m_pWnd->SendMessage(WM_CANCELMODE); } };
    for (const auto& lose : kLosses) {
        OpenWithButtons();
        EXPECT_EQ(Play("seven 70 down 77"), "seven 70 down 77");
        lose();
        Play("up - outside");
        EXPECT_EQ(State()[1], '0');
        EXPECT_EQ(m_pWnd->TakeJournal().find("command"), std::string::npos);
    }
}

TEST_F(CmdButtons, AreEnabledByTheirHandlers)
{
    const auto enabled = [&] { return static_cast<BOOL>(m_pWnd->GetCmdButton(7)->m_bEnabled); };
    EXPECT_TRUE(enabled());
    EXPECT_FALSE(m_pWnd->GetCmdButton(200)->m_bEnabled);
    m_pWnd->EnableButton(7, FALSE);
    m_pWnd->EnableButton(12345, TRUE); // nobody's
    m_pWnd->UpdateWindow();
    m_pWnd->UpdateCmdButtons();
    EXPECT_TRUE(enabled());
    EXPECT_TRUE(m_pWnd->GetUpdateRect(nullptr)) << "drawn anew";
    m_pWnd->UpdateWindow();
    m_pWnd->UpdateCmdButtons();
    EXPECT_FALSE(m_pWnd->GetUpdateRect(nullptr)) << "nothing has changed";
}

TEST_F(CmdButtons, HaveTips)
{
    m_pWnd->m_listButtons.AddTail(new GuiCmdButton("_9")); // without a string, and never painted
    static_cast<GuiCmdButton*>(m_pWnd->m_listButtons.GetTail())->m_rcButton = CRect(90, 10, 110, 30);
    const struct {
        const char* why;
        CPoint point;
        int nID;
        const char* pszTip;
    } kCases[] = {
        { "what is behind the line feed", { 12, 12 }, 7, "Tip. Of" },
        { "else the first sentence", { 40, 12 }, 8, "First" },
        { "without a string no tip, but a tool", { 95, 12 }, 9, nullptr },
        { "no button", { 0, 0 }, -1, nullptr },
        { "a disabled one is none", { 65, 12 }, -1, nullptr },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        TOOLINFOA info = {};
        info.uFlags = TTF_IDISHWND | 0x100U; // one of theirs and one of the caller's
        EXPECT_EQ(m_pWnd->OnToolHitTest(c.point, &info), c.nID);
        EXPECT_STREQ(info.lpszText, c.pszTip);
        EXPECT_EQ(info.uFlags, c.nID > 0 ? 0x100U : 0x100U | TTF_IDISHWND);
        EXPECT_EQ(info.hwnd, c.nID > 0 ? m_hWnd : nullptr);
        EXPECT_EQ(CRect(info.rect).PtInRect(c.point), c.nID > 0);
        ::free(info.lpszText);
    }
    const PelkGUI::GuiSkinCmdInterface& buttons = *m_pWnd;
    EXPECT_EQ(buttons.OnToolHitTest({ 0, 0 }, nullptr), 0);
    EXPECT_EQ(buttons.OnToolHitTest({ 12, 12 }, nullptr), 7);
}

TEST_F(CmdButtons, MayBeShownFromAnyThread)
{
    std::thread worker([&] {
        for (int i = 1; i <= 20000; i++) {
            m_pWnd->ShowButton(7, i % 2);
            m_pWnd->CheckButton(8, i % 2);
        }
    });
    for (int i = 0; i < 200; i++) {
        Play("seven - eight");
        m_pWnd->SendMessage(WM_IDLEUPDATECMDUI, TRUE, 0);
        m_pWnd->Invalidate(FALSE);
        Run();
    }
    worker.join();
    EXPECT_FALSE(m_pWnd->GetCmdButton(7)->m_bVisible);
    EXPECT_FALSE(m_pWnd->GetCmdButton(8)->m_bChecked);
    m_pWnd->ShowButton(7, TRUE);
    m_pWnd->Invalidate(FALSE);
    Run();
    EXPECT_EQ(PixelAt({ 110, 132 }), 0x010064U) << "the part of the skin";
}

} // namespace
