// Menus: built, shown, and used by pointer and keys.
#include "tests/platform/win32/user/menu_play.h"

#include <array>

namespace test {
namespace {

using win32::kLeftButton;

class Menus : public MenuTest {
protected:
    Menus() : owner_(journal_, { .style = WS_POPUP, .rect = { 100, 100, 400, 300 } }) { show(owner_); }
    // A menu without items instead of the usual one.
    void begin_menu()
    {
        DestroyMenu(menu_);
        menu_ = CreatePopupMenu();
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
    { "a release beside the menu leaves it open", "press:1 at:120,110 release", 0, true },
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
    journal_.keep_only({ WM_LBUTTONDOWN, WM_MOUSEACTIVATE, WM_KEYDOWN, WM_CHAR });
    for (const SequenceCase& c : kSequences) {
        SCOPED_TRACE(c.why);
        play(owner_, c.words);
        EXPECT_EQ(track(), static_cast<BOOL>(c.expected));
        EXPECT_EQ(left_open(), c.open);
        EXPECT_EQ(words_left(), 0U);
        EXPECT_TRUE(open_popups().empty());
        EXPECT_EQ(GetCapture(), nullptr);
        EXPECT_EQ(screen_->capture_holder(), 0U);
        run_queue();
        EXPECT_EQ(journal_.take(), "") << "the menu swallows what it is used by";
        screen_->release(kLeftButton);
        screen_->move_pointer({ 900, 700 });
        run_queue();
    }
}

TEST_F(Menus, TellTheirOwnerWhatHappens)
{
    journal_.keep_only({ WM_ENTERMENULOOP, WM_EXITMENULOOP, WM_INITMENU, WM_INITMENUPOPUP, WM_UNINITMENUPOPUP,
                         WM_MENUSELECT, WM_COMMAND, WM_CAPTURECHANGED, WM_ACTIVATE, WM_KEYDOWN });
    using Selections = std::vector<std::array<UINT, 2>>; // id and flags
    Selections selected;
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
    EXPECT_EQ(journal_.take(), "ENTERMENULOOP INITMENU INITMENUPOPUP MENUSELECT INITMENUPOPUP MENUSELECT MENUSELECT "
                               "UNINITMENUPOPUP UNINITMENUPOPUP MENUSELECT EXITMENULOOP COMMAND");
    EXPECT_EQ(command, 12U);
    EXPECT_EQ(selected,
              (Selections{ { 3, MF_POPUP | MF_HILITE }, { 11, MF_HILITE }, { 12, MF_HILITE }, { 0, 0xFFFF } }));
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
        { "another one is asked for in vain, and it is told to end",
          [](HWND owner, HMENU menu) {
              EXPECT_FALSE(TrackPopupMenu(menu, TPM_RETURNCMD, 0, 0, 0, owner, nullptr));
              EXPECT_EQ(GetLastError(), 1446U);
              EXPECT_TRUE(EndMenu());
          } },
    };
    for (const EndCase& c : kCases) {
        SCOPED_TRACE(c.why);
        DestroyMenu(menu_);
        menu_ = make_menu();
        bool done = false;
        const TestWindow owner(journal_, { .handlers = { { WM_ENTERIDLE, doing([&](HWND handle) {
                                                               if (!std::exchange(done, true))
                                                                   c.act(handle, menu_);
                                                           }) } } });
        show(owner);
        EXPECT_EQ(TrackPopupMenu(menu_, TPM_RETURNCMD, 50, 50, 0, owner.get(), nullptr), 0);
        EXPECT_TRUE(done);
        EXPECT_TRUE(open_popups().empty());
        EXPECT_FALSE(EndMenu());
        ReleaseCapture();
        run_queue();
    }
}

struct PlaceCase {
    const char* why;
    UINT flags;
    POINT at;
    POINT corner; // of a menu of 200 x 106
};

TEST_F(Menus, StayWithinTheWorkArea)
{
    const PlaceCase kCases[] = {
        { "at the point", TPM_LEFTALIGN, { 300, 300 }, { 300, 300 } },
        { "aligned to its right", TPM_RIGHTALIGN, { 300, 300 }, { 100, 300 } },
        { "its middle at the point", TPM_CENTERALIGN | TPM_VCENTERALIGN, { 300, 300 }, { 200, 247 } },
        { "above the point", TPM_BOTTOMALIGN, { 300, 300 }, { 300, 194 } },
        { "read from the right it lies left of the point", TPM_LAYOUTRTL, { 300, 300 }, { 100, 300 } },
        { "and the other way round", TPM_LAYOUTRTL | TPM_RIGHTALIGN, { 300, 300 }, { 300, 300 } },
        { "moved in from the right edge", TPM_LEFTALIGN, { 1000, 300 }, { 824, 300 } },
        { "upward from the lower edge", TPM_LEFTALIGN, { 300, 700 }, { 300, 594 } },
        { "in from the upper left", TPM_RIGHTALIGN | TPM_BOTTOMALIGN, { 50, 60 }, { 0, 30 } },
        { "from outside of all monitors", TPM_LEFTALIGN, { -500, 5000 }, { 0, 634 } },
    };
    begin_menu();
    AppendMenuA(menu_, MF_OWNERDRAW, 1, nullptr);
    owner_.on(WM_MEASUREITEM, [](HWND, WPARAM, LPARAM item) {
        reinterpret_cast<MEASUREITEMSTRUCT*>(item)->itemWidth = 200 - 50; // beside the two columns and the edges
        reinterpret_cast<MEASUREITEMSTRUCT*>(item)->itemHeight = 100;
        return TRUE;
    });
    screen_->set_monitors({ { { 0, 0, 1024, 768 }, { 0, 30, 1024, 740 }, true } });
    for (const PlaceCase& c : kCases) {
        SCOPED_TRACE(c.why);
        play(owner_, "");
        track(TPM_RETURNCMD | c.flags, c.at);
        EXPECT_EQ(place(), (RECT{ c.corner.x, c.corner.y, c.corner.x + 200, c.corner.y + 106 }));
    }
}

TEST_F(Menus, ScrollWhenTheyAreHigherThanTheWorkArea)
{
    begin_menu();
    for (UINT id = 1; id <= 90; id++)
        AppendMenuA(menu_, MF_STRING, id, std::to_string(id).c_str());
    play(owner_, "end up enter");
    EXPECT_EQ(track(), 89);
    EXPECT_TRUE(place().top == 0 && place().bottom == 768) << place();
    play(owner_, "end at:170,750 click"); // the last item is seen at the lower edge
    EXPECT_EQ(track(), 90);
}

TEST_F(Menus, LetTheirOwnerDraw)
{
    constexpr COLORREF kColours[] = { RGB(0, 200, 0), RGB(200, 0, 0) };
    ModifyMenuA(menu_, 1, MF_BYCOMMAND | MF_OWNERDRAW | MF_CHECKED, 1, reinterpret_cast<LPCSTR>(77));
    owner_.on(WM_MEASUREITEM, [](HWND, WPARAM, LPARAM item) {
        EXPECT_EQ(reinterpret_cast<MEASUREITEMSTRUCT*>(item)->itemData, 77U);
        reinterpret_cast<MEASUREITEMSTRUCT*>(item)->itemHeight = 40;
        return TRUE;
    });
    owner_.on(WM_DRAWITEM, [&](HWND, WPARAM, LPARAM item) {
        const auto& draw = *reinterpret_cast<DRAWITEMSTRUCT*>(item);
        EXPECT_EQ(draw.itemID, 1U);
        EXPECT_EQ(draw.itemData, 77U);
        EXPECT_TRUE(draw.itemState & ODS_CHECKED);
        const HBRUSH brush = CreateSolidBrush(kColours[draw.itemState & ODS_SELECTED]);
        FillRect(draw.hDC, &draw.rcItem, brush);
        DeleteObject(brush);
        return TRUE;
    });
    std::vector<std::uint32_t> seen;
    owner_.on(WM_ENTERIDLE, [&](HWND, WPARAM, LPARAM) {
        seen.push_back(screen_->pixel_at({ 160, 160 }));
        screen_->press_key(seen.size() < 2 ? VK_DOWN : VK_ESCAPE);
        return 0;
    });
    EXPECT_FALSE(track());
    EXPECT_EQ(seen, (std::vector<std::uint32_t>{ 0x00C800, 0xC80000 }));
}

TEST_F(Menus, AreMirroredWhenReadFromTheRight)
{
    win32::MemoryScreen::Picture pictures[2];
    RECT rects[2];
    for (const UINT mirrored : { 0U, 1U }) {
        owner_.on(WM_ENTERIDLE, doing([&](HWND) {
                      pictures[mirrored] = screen_->picture();
                      rects[mirrored] = rect_of(open_popups().front());
                      EndMenu();
                  }));
        track(TPM_RETURNCMD | (mirrored ? TPM_LAYOUTRTL : 0), { 500, 300 });
    }
    // The check mark's and the submenu arrow's columns change sides.
    const auto ink = [&](UINT mirrored, LONG first, LONG last) {
        const RECT& rect = rects[mirrored];
        int pixels = 0;
        for (LONG y = rect.top; y < rect.bottom; y++) {
            for (LONG column = first; column < last; column++) {
                const LONG x = mirrored ? rect.right - 1 - column : rect.left + column;
                pixels += pictures[mirrored].at(static_cast<int>(x), static_cast<int>(y)) == 0;
            }
        }
        return pixels;
    };
    const LONG width = rects[0].right - rects[0].left;
    EXPECT_GT(ink(0, 2, 26), 10);
    EXPECT_EQ(ink(0, 2, 26), ink(1, 2, 26));
    EXPECT_GT(ink(0, width - 22, width - 2), 5);
    EXPECT_EQ(ink(0, width - 22, width - 2), ink(1, width - 22, width - 2));
}

} // namespace
} // namespace test
