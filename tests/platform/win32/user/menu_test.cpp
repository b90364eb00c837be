// Menus: built, shown, and used by pointer and keys.
#include "tests/platform/win32/user/menu_play.h"

#include <array>

namespace test {
namespace {

using Entries = std::vector<std::string>;
using win32::kLeftButton;

class Menus : public MenuTest {
protected:
    Menus() : owner_(journal_, { .style = WS_POPUP, .rect = { 100, 100, 400, 300 } })
    {
        ShowWindow(owner_.get(), SW_SHOW);
        run_queue();
    }

    BOOL track(UINT flags = TPM_RETURNCMD, POINT at = { 150, 150 })
    {
        return TrackPopupMenu(menu_, flags, at.x, at.y, 0, owner_.get(), nullptr);
    }

    TestWindow owner_;
};

struct SequenceCase {
    const char* why;
    const char* words;
    UINT expected;
    bool open = false; // it is still there when all was done
};

const SequenceCase kSequences[] = {
    { "the first item by keys", "down enter", 1 },
    { "up begins at the end", "up enter", 5 },
    { "a disabled item cannot be chosen", "down down enter", 0, true },
    { "separators are passed over, round the end", "end down up up enter", 4 },
    { "home goes to the first", "end home enter", 1 },
    { "into a submenu", "down down down right enter", 11 },
    { "Enter opens one too", "down down down enter down enter", 12 },
    { "out of it again", "M left down enter", 4 },
    { "Escape closes the submenu first", "M escape", 0, true },
    { "and then the menu", "M escape escape", 0 },
    { "a letter chooses", "O", 1 },
    { "a letter of a submenu", "M T", 12 },
    { "a letter that two items have selects", "X", 0, true },
    { "the next of them at each press", "X X enter", 5 },
    { "round to the first of them", "X X X enter", 4 },
    { "a letter that none has", "Q", 0, true },
    { "a disabled item's letter", "S", 0, true },
    { "Alt leaves", "down alt", 0 },
    { "F10 leaves", "down f10", 0 },
    { "click", "click:4", 4 },
    { "press, drag, release", "press:1 over:4 release:5", 5 },
    { "a release chooses after the pointer was on an item", "over:1 release:1", 1 },
    { "a release beside the menu leaves it open", "over:1 outside", 0 },
    { "a disabled item ignores clicks", "click:2", 0, true },
    { "the edge is no item", "over:1 edge click:1", 1 },
    { "a click on a submenu's item opens it", "click:3 submenu click:12", 12 },
    { "resting on it does", "over:3 submenu click:11", 11 },
    { "the press that opens it may end in it", "press:3 submenu release:12", 12 },
    { "keys after the pointer", "over:4 down enter", 5 },
    { "a press outside", "outside", 0 },
};

TEST_F(Menus, AreUsedByPointerAndKeys)
{
    for (const SequenceCase& c : kSequences) {
        SCOPED_TRACE(c.why);
        play(owner_, c.words);
        EXPECT_EQ(track(), static_cast<BOOL>(c.expected));
        EXPECT_EQ(left_open(), c.open);
        EXPECT_EQ(words_left(), 0U);
        EXPECT_TRUE(open_popups().empty());
        EXPECT_EQ(GetCapture(), nullptr);
        EXPECT_EQ(screen_->capture_holder(), 0U);
        screen_->release(kLeftButton);
        screen_->move_pointer({ 900, 700 });
        run_queue();
    }
}

TEST_F(Menus, TellTheirOwnerWhatHappens)
{
    journal_.keep_only({ WM_ENTERMENULOOP, WM_EXITMENULOOP, WM_INITMENU, WM_INITMENUPOPUP, WM_UNINITMENUPOPUP,
                         WM_MENUSELECT, WM_COMMAND, WM_CAPTURECHANGED, WM_ACTIVATE, WM_KEYDOWN });
    std::vector<std::array<UINT, 2>> selected;
    owner_.on(WM_MENUSELECT, [&](HWND, WPARAM wparam, LPARAM) {
        selected.push_back({ LOWORD(wparam), HIWORD(wparam) });
        return 0;
    });
    WPARAM command = 0;
    owner_.on(WM_COMMAND, [&](HWND, WPARAM wparam, LPARAM) {
        command = wparam;
        return 0;
    });
    play(owner_, "M down enter");
    EXPECT_TRUE(track(0));
    run_queue();
    EXPECT_EQ(journal_.take(), (Entries{ "w ENTERMENULOOP", "w INITMENU", "w INITMENUPOPUP", "w MENUSELECT",
                                         "w INITMENUPOPUP", "w MENUSELECT", "w MENUSELECT", "w UNINITMENUPOPUP",
                                         "w UNINITMENUPOPUP", "w MENUSELECT", "w EXITMENULOOP", "w COMMAND" }));
    EXPECT_EQ(command, 12U);
    EXPECT_EQ(selected, (std::vector<std::array<UINT, 2>>{
                            { 3, MF_POPUP | MF_HILITE }, { 11, MF_HILITE }, { 12, MF_HILITE }, { 0, 0xFFFF } }));
}

TEST_F(Menus, SwallowThePressThatDismissesThem)
{
    journal_.keep_only({ WM_LBUTTONDOWN, WM_LBUTTONUP, WM_MOUSEACTIVATE });
    owner_.on(WM_ENTERIDLE, [&](HWND, WPARAM, LPARAM) {
        screen_->move_pointer({ 120, 110 });
        screen_->press(kLeftButton);
        return 0;
    });
    EXPECT_FALSE(track());
    POINT point{};
    GetCursorPos(&point);
    EXPECT_EQ(point.x, 120);
    EXPECT_EQ(point.y, 110);
    run_queue();
    EXPECT_EQ(journal_.take(), Entries());
}

struct EndCase {
    const char* why;
    std::function<void(HWND owner, HMENU menu)> act;
};

TEST_F(Menus, CloseWhenTheirWorldEnds)
{
    const EndCase kCases[] = {
        { "the owner is destroyed", [](HWND owner, HMENU) { DestroyWindow(owner); } },
        { "the owner is hidden", [](HWND owner, HMENU) { ShowWindow(owner, SW_HIDE); } },
        { "the owner is disabled", [](HWND owner, HMENU) { EnableWindow(owner, FALSE); } },
        { "the capture goes elsewhere", [](HWND owner, HMENU) { SetCapture(owner); } },
        { "the capture is released", [](HWND, HMENU) { ReleaseCapture(); } },
        { "another program comes to the front", [this](HWND, HMENU) { screen_->focus(0); } },
        { "the menu's window is destroyed", [](HWND, HMENU) { DestroyWindow(open_popups().front()); } },
        { "another thread destroys the owner by a message",
          [](HWND owner, HMENU) { std::thread([owner] { SendMessageA(owner, WM_CLOSE, 0, 0); }).detach(); } },
        { "the menu is destroyed and an item chosen",
          [this](HWND, HMENU menu) {
              DestroyMenu(menu);
              screen_->press_key('O');
          } },
        { "the loop is told to quit", [](HWND, HMENU) { PostQuitMessage(3); } },
    };
    for (const EndCase& c : kCases) {
        SCOPED_TRACE(c.why);
        DestroyMenu(menu_);
        menu_ = make_menu();
        bool done = false;
        const TestWindow owner(journal_,
                               { .name = "dying", .handlers = { { WM_ENTERIDLE, [&](HWND handle, WPARAM, LPARAM) {
                                                                     if (!std::exchange(done, true))
                                                                         c.act(handle, menu_);
                                                                     return 0;
                                                                 } } } });
        ShowWindow(owner.get(), SW_SHOW);
        run_queue();
        EXPECT_EQ(TrackPopupMenu(menu_, TPM_RETURNCMD, 50, 50, 0, owner.get(), nullptr), 0);
        EXPECT_TRUE(done);
        EXPECT_TRUE(open_popups().empty());
        ReleaseCapture();
        run_queue();
    }
}

TEST_F(Menus, AreShownOneAtATime)
{
    BOOL second = TRUE;
    DWORD error = 0;
    owner_.on(WM_ENTERIDLE, [&](HWND handle, WPARAM, LPARAM) {
        second = TrackPopupMenu(menu_, TPM_RETURNCMD, 0, 0, 0, handle, nullptr);
        error = GetLastError();
        EndMenu();
        return 0;
    });
    EXPECT_FALSE(track());
    EXPECT_FALSE(second);
    EXPECT_EQ(error, 1446U);
    EXPECT_FALSE(EndMenu());
}

} // namespace
} // namespace test
