#include "tests/platform/mfc/NotingFrame.h"
#include "tests/platform/mfc/ScreenTest.h"

namespace {

using test::kCommand;
using test::kUnhandled;
using test::NotingFrame;

constexpr UINT kDeleting = kUnhandled + 1;

class MenuTest : public test::ScreenTest {
protected:
    ~MenuTest() override { CloseFrame(); }

    NotingFrame& NewFrame()
    {
        CloseFrame();
        m_pFrame = new NotingFrame(m_log);
        EXPECT_TRUE(m_pFrame->CreateFrame());
        m_pFrame->SetActiveWindow();
        Pump();
        m_log.clear();
        return *m_pFrame;
    }
    void CloseFrame()
    {
        if (m_pFrame && m_log.find("deleted") == std::string::npos)
            m_pFrame->DestroyWindow();
    }

    NotingFrame* m_pFrame = nullptr;
};

void Refuse(CCmdUI& state)
{
    state.Enable(FALSE);
}

void Rename(CCmdUI& state)
{
    state.Enable(FALSE);
    state.SetText("new name");
}

struct ItemCase {
    const char* why;
    UINT nID;
    NotingFrame::Update update;
    UINT nFlags;
    BOOL bAutoEnable;
    UINT nState; // of MF_GRAYED, MF_DISABLED and MF_CHECKED
    const char* pszText;
};

constexpr UINT kGreyed = MF_GRAYED | MF_DISABLED;

// Each stands at place 3 of a menu of its own.
const ItemCase kItems[] = {
    { "somebody handles it", kCommand, nullptr, MF_GRAYED, TRUE, 0, "item" },
    { "nobody does", kUnhandled, nullptr, 0, TRUE, kGreyed, "item" },
    { "nobody does, and that is the frame's business", kUnhandled, nullptr, 0, FALSE, 0, "item" },
    { "its state is asked for first", kCommand, Refuse, 0, FALSE, kGreyed, "item" },
    { "checked, and nobody to run it", kUnhandled, [](CCmdUI& state) { state.SetCheck(state.m_nIndex == 3); }, 0, TRUE,
      MF_CHECKED | kGreyed, "item" },
    { "one of several", kUnhandled, [](CCmdUI& state) { state.SetRadio(); }, 0, FALSE, MF_CHECKED, "item" },
    { "another text, the same state", kCommand, Rename, MF_CHECKED, TRUE, MF_CHECKED | kGreyed, "new name" },
    { "a system command", SC_CLOSE, nullptr, 0, TRUE, 0, "item" },
    { "a separator", 0, nullptr, MF_SEPARATOR, TRUE, 0, "" },
    { "a submenu is asked for by its first command and left alone", kCommand, Rename, MF_POPUP, TRUE, 0, "item" },
};

TEST_F(MenuTest, OpensWithTheStateOfItsCommands)
{
    NotingFrame& frame = NewFrame();
    frame.m_updates[kDeleting] = [](CCmdUI& state) { state.m_pMenu->DeleteMenu(state.m_nIndex, MF_BYPOSITION); };
    for (const ItemCase& c : kItems) {
        SCOPED_TRACE(c.why);
        CMenu menu, sub;
        menu.CreatePopupMenu();
        sub.CreatePopupMenu();
        menu.AppendMenu(MF_STRING, kDeleting, "goes when it is asked for");
        for (int i = 0; i < 3; i++)
            menu.AppendMenu(MF_STRING, kCommand, "filler");
        sub.AppendMenu(MF_STRING, c.nID, "first");
        const UINT_PTR nSub = c.nFlags & MF_POPUP ? reinterpret_cast<UINT_PTR>(sub.Detach()) : 0;
        menu.AppendMenu(c.nFlags, nSub ? nSub : c.nID, "item");
        frame.m_updates[kCommand] = frame.m_updates[kUnhandled] = c.update;
        frame.m_bAutoMenuEnable = c.bAutoEnable;
        frame.SendMessage(WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(menu.m_hMenu), MAKELPARAM(0, TRUE));
        EXPECT_EQ(menu.GetMenuItemCount(), 5U) << "the system menu is none of its business";
        frame.SendMessage(WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(menu.m_hMenu), 0);
        ASSERT_EQ(menu.GetMenuItemCount(), 4U);
        EXPECT_EQ(menu.GetMenuState(3, MF_BYPOSITION) & (kGreyed | MF_CHECKED), c.nState);
        CString strText;
        menu.GetMenuString(3, strText, MF_BYPOSITION);
        EXPECT_STREQ(strText, c.pszText);
    }
    EXPECT_EQ(m_log, "") << "asking for its state runs no command";
}

TEST(CMenu, OwnsItsMenu)
{
    auto pMenu = std::make_unique<CMenu>();
    ASSERT_TRUE(pMenu->CreateMenu());
    EXPECT_FALSE(pMenu->CreatePopupMenu()) << "it has one";
    const HMENU hMenu = pMenu->m_hMenu;
    EXPECT_EQ(CMenu::FromHandle(hMenu), pMenu.get());
    pMenu.reset();
    EXPECT_FALSE(IsMenu(hMenu));
}

struct TrackCase {
    const char* why;
    NotingFrame::Update update;
    NotingFrame::Deed deed;
    UINT nFlags;
    int nResult;
    const char* pszLog;
};

// The one item is chosen by keys; what comes of it is in the log once the queue is empty.
const TrackCase kTracks[] = {
    { "the choice is a command", nullptr, [](NotingFrame&) {}, 0, TRUE, "command " },
    { "a greyed item is no choice", Refuse, [](NotingFrame&) {}, TPM_RETURNCMD, 0, "" },
    { "the choice is the window's end", nullptr, [](NotingFrame& frame) { frame.DestroyWindow(); }, 0, TRUE,
      "command destroy deleted " },
    { "the window ends when the menu opens", [](CCmdUI&) { CWnd::GetActiveWindow()->DestroyWindow(); },
      [](NotingFrame&) {}, 0, 0, "destroy deleted " },
};

TEST_F(MenuTest, IsShownUntilSomethingIsChosen)
{
    for (const TrackCase& c : kTracks) {
        SCOPED_TRACE(c.why);
        NotingFrame& frame = NewFrame();
        frame.m_updates[kCommand] = c.update;
        frame.m_deeds[WM_COMMAND] = c.deed;
        CMenu menu;
        menu.CreatePopupMenu();
        menu.AppendMenu(MF_STRING, kCommand, "item");
        for (const unsigned nKey : { VK_DOWN, VK_RETURN, VK_ESCAPE, VK_ESCAPE }) {
            m_pScreen->press_key(nKey);
            m_pScreen->release_key(nKey);
        }
        EXPECT_EQ(menu.TrackPopupMenu(c.nFlags, 150, 150, &frame), c.nResult);
        Pump();
        EXPECT_EQ(m_log, c.pszLog);
    }
}

} // namespace
