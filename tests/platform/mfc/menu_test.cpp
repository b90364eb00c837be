#include "tests/platform/mfc/ScreenTest.h"

namespace {

enum Command : UINT { kHandled = 10, kGreyed, kChecked, kRenamed, kRadio, kUnhandled, kDeleting, kClosing, kEnding };

// Knows some commands, and does for others what a test asks for.
class MenuFrame : public CFrameWnd {
public:
    explicit MenuFrame(std::string& log) : m_log(log) {}
    ~MenuFrame() override { m_log += "gone "; }

protected:
    void OnHandled() { m_log += "handled "; }
    void OnEnding() { DestroyWindow(); }
    void OnUpdateGreyed(CCmdUI* pCmdUI) { pCmdUI->Enable(FALSE); }
    void OnUpdateChecked(CCmdUI* pCmdUI) { pCmdUI->SetCheck(pCmdUI->m_nIndex == 3); }
    void OnUpdateRadio(CCmdUI* pCmdUI) { pCmdUI->SetRadio(); }
    void OnUpdateRenamed(CCmdUI* pCmdUI)
    {
        pCmdUI->Enable(FALSE);
        pCmdUI->SetText("new name");
    }
    void OnUpdateDeleting(CCmdUI* pCmdUI) { pCmdUI->m_pMenu->DeleteMenu(pCmdUI->m_nIndex, MF_BYPOSITION); }
    void OnUpdateClosing(CCmdUI* pCmdUI)
    {
        m_log += "asked ";
        if (pCmdUI->m_pMenu)
            DestroyWindow();
    }
    DECLARE_MESSAGE_MAP()

private:
    std::string& m_log;
};

BEGIN_MESSAGE_MAP(MenuFrame, CFrameWnd)
ON_COMMAND(kHandled, &MenuFrame::OnHandled)
ON_COMMAND(kGreyed, &MenuFrame::OnHandled)
ON_COMMAND(kEnding, &MenuFrame::OnEnding)
ON_UPDATE_COMMAND_UI(kGreyed, &MenuFrame::OnUpdateGreyed)
ON_UPDATE_COMMAND_UI(kChecked, &MenuFrame::OnUpdateChecked)
ON_UPDATE_COMMAND_UI(kRadio, &MenuFrame::OnUpdateRadio)
ON_UPDATE_COMMAND_UI(kRenamed, &MenuFrame::OnUpdateRenamed)
ON_UPDATE_COMMAND_UI(kDeleting, &MenuFrame::OnUpdateDeleting)
ON_UPDATE_COMMAND_UI(kClosing, &MenuFrame::OnUpdateClosing)
END_MESSAGE_MAP()

class MenuTest : public test::ScreenTest {
protected:
    MenuTest() { NewFrame(); }
    ~MenuTest() override { CloseFrame(); }

    void NewFrame()
    {
        m_log.clear();
        m_pFrame = new MenuFrame(m_log);
        EXPECT_TRUE(m_pFrame->Create(nullptr, "frame", WS_POPUP | WS_VISIBLE, CRect(100, 100, 300, 300)));
        m_pFrame->SetActiveWindow();
    }
    void CloseFrame()
    {
        if (m_log.find("gone") == std::string::npos)
            m_pFrame->DestroyWindow();
    }

    MenuFrame* m_pFrame = nullptr;
};

struct ItemCase {
    const char* why;
    UINT nID;
    UINT nFlags;
    BOOL bAutoEnable;
    UINT nState; // of MF_GRAYED, MF_DISABLED and MF_CHECKED
    const char* pszText;
};

// Each stands at place 3 of a menu of its own.
const ItemCase kItems[] = {
    { "somebody handles it", kHandled, MF_GRAYED, TRUE, 0, "item" },
    { "nobody does", kUnhandled, 0, TRUE, MF_GRAYED | MF_DISABLED, "item" },
    { "nobody does, and that is the frame's business", kUnhandled, 0, FALSE, 0, "item" },
    { "the handler says no", kGreyed, 0, FALSE, MF_GRAYED | MF_DISABLED, "item" },
    { "checked, and nobody to run it", kChecked, 0, TRUE, MF_CHECKED | MF_GRAYED | MF_DISABLED, "item" },
    { "one of several", kRadio, 0, FALSE, MF_CHECKED, "item" },
    { "another text, the same state", kRenamed, MF_CHECKED, TRUE, MF_CHECKED | MF_GRAYED | MF_DISABLED, "new name" },
    { "a system command", SC_CLOSE, 0, TRUE, 0, "item" },
    { "a separator", 0, MF_SEPARATOR, TRUE, 0, "" },
    { "a submenu is asked for by its first command and left alone", kRenamed, MF_POPUP, TRUE, 0, "item" },
};

TEST_F(MenuTest, OpensWithTheStateOfItsCommands)
{
    for (const ItemCase& c : kItems) {
        SCOPED_TRACE(c.why);
        CMenu menu, sub;
        menu.CreatePopupMenu();
        sub.CreatePopupMenu();
        menu.AppendMenu(MF_STRING, kDeleting, "goes when it is asked for");
        for (int i = 0; i < 3; i++)
            menu.AppendMenu(MF_STRING, kHandled, "filler");
        sub.AppendMenu(MF_STRING, c.nID, "first");
        const UINT_PTR nSub = c.nFlags & MF_POPUP ? reinterpret_cast<UINT_PTR>(sub.Detach()) : 0;
        menu.AppendMenu(c.nFlags, nSub ? nSub : c.nID, "item");
        m_pFrame->m_bAutoMenuEnable = c.bAutoEnable;
        m_pFrame->SendMessage(WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(menu.m_hMenu), MAKELPARAM(0, TRUE));
        EXPECT_EQ(menu.GetMenuItemCount(), 5U) << "the system menu is none of its business";
        m_pFrame->SendMessage(WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(menu.m_hMenu), 0);
        ASSERT_EQ(menu.GetMenuItemCount(), 4U);
        EXPECT_EQ(menu.GetMenuState(3, MF_BYPOSITION) & (MF_GRAYED | MF_DISABLED | MF_CHECKED), c.nState);
        CString strText;
        menu.GetMenuString(3, strText, MF_BYPOSITION);
        EXPECT_STREQ(strText, c.pszText);
    }
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
    UINT nID;
    UINT nFlags;
    int nResult;
    const char* pszLog;
};

// The one item is chosen by keys; what comes of it is in the log once the queue is empty.
const TrackCase kTracks[] = {
    { "the choice is a command", kHandled, 0, TRUE, "handled " },
    { "a greyed item is no choice", kGreyed, TPM_RETURNCMD, 0, "" },
    { "the choice is the window's end", kEnding, 0, TRUE, "gone " },
    { "the window ends when the menu opens", kClosing, 0, 0, "asked gone " },
};

TEST_F(MenuTest, IsShownUntilSomethingIsChosen)
{
    for (const TrackCase& c : kTracks) {
        SCOPED_TRACE(c.why);
        CloseFrame();
        NewFrame();
        CMenu menu;
        menu.CreatePopupMenu();
        menu.AppendMenu(MF_STRING, c.nID, "item");
        Pump();
        for (const unsigned nKey : { VK_DOWN, VK_RETURN, VK_ESCAPE, VK_ESCAPE }) {
            m_pScreen->press_key(nKey);
            m_pScreen->release_key(nKey);
        }
        EXPECT_EQ(menu.TrackPopupMenu(c.nFlags, 150, 150, m_pFrame), c.nResult);
        Pump();
        EXPECT_EQ(m_log, c.pszLog);
    }
}

} // namespace
