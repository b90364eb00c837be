// The system menu: what it offers, how it opens, and what becomes of the choice.
#include "tests/platform/win32/user/menu_play.h"

#include "platform/win32/kernel/code_page.h"

namespace test {
namespace {

class SystemMenu : public MenuTest {};

struct StateCase {
    const char* why;
    DWORD style;
    int show;
    const char* enabled; // the letters of what may be chosen
};

TEST_F(SystemMenu, OffersWhatStateAndStyleAllow)
{
    const StateCase kCases[] = {
        { "all that a normal window may", WS_OVERLAPPEDWINDOW, SW_SHOW, "MSNXC" },
        { "a maximised one", WS_OVERLAPPEDWINDOW, SW_SHOWMAXIMIZED, "RNC" },
        { "a minimised one", WS_OVERLAPPEDWINDOW, SW_SHOWMINIMIZED, "RXC" },
        { "one without a sizing edge", WS_OVERLAPPEDWINDOW & ~WS_THICKFRAME, SW_SHOW, "MNXC" },
        { "one without boxes", WS_POPUP | WS_CAPTION, SW_SHOW, "MC" },
    };
    const std::pair<UINT, char> kEntries[] = { { SC_RESTORE, 'R' },  { SC_MOVE, 'M' },     { SC_SIZE, 'S' },
                                               { SC_MINIMIZE, 'N' }, { SC_MAXIMIZE, 'X' }, { SC_CLOSE, 'C' } };
    for (const StateCase& c : kCases) {
        SCOPED_TRACE(c.why);
        const TestWindow window(journal_, { .style = c.style });
        ShowWindow(window.get(), c.show);
        const HMENU menu = GetSystemMenu(window.get(), FALSE);
        std::string enabled;
        for (const auto& [command, letter] : kEntries)
            enabled += GetMenuState(menu, command, MF_BYCOMMAND) & MF_GRAYED ? "" : std::string(1, letter);
        EXPECT_EQ(enabled, c.enabled);
    }
}

TEST_F(SystemMenu, IsTheWindowsOwn)
{
    HMENU menu = nullptr;
    {
        const TestWindow window(journal_, { .style = WS_OVERLAPPEDWINDOW });
        const TestWindow child(journal_, { .style = WS_CHILD, .parent = window.get() });
        menu = GetSystemMenu(window.get(), FALSE);
        EXPECT_EQ(GetSystemMenu(window.get(), FALSE), menu);
        EXPECT_EQ(GetSystemMenu(child.get(), FALSE), nullptr);
        EXPECT_TRUE(DeleteMenu(menu, SC_CLOSE, MF_BYCOMMAND));
        EXPECT_EQ(EnableMenuItem(menu, SC_CLOSE, MF_GRAYED), -1);
        EXPECT_EQ(GetSystemMenu(window.get(), TRUE), nullptr);
        EXPECT_FALSE(IsMenu(menu));
        menu = GetSystemMenu(window.get(), FALSE);
        EXPECT_EQ(GetMenuItemCount(menu), 7);
        EXPECT_EQ(EnableMenuItem(menu, SC_CLOSE, MF_GRAYED), 0);
        GetSystemMenu(window.get(), FALSE);
        EXPECT_EQ(GetMenuState(menu, SC_CLOSE, MF_BYCOMMAND) & MF_GRAYED, MF_GRAYED); // Close is the program's
    }
    EXPECT_FALSE(IsMenu(menu));
}

struct OpeningCase {
    const char* why;
    const char* opens; // said before the menu is there
    const char* words;
    WPARAM expected;
    POINT corner; // of the menu
};

TEST_F(SystemMenu, OpensByKeyboardAndPointer)
{
    const OpeningCase kCases[] = {
        { "Alt and Space, beneath the caption", "hold:alt space leave:alt", "down enter", SC_MOVE, { 104, 123 } },
        { "a letter", "hold:alt space leave:alt", "X", SC_MAXIMIZE, { 104, 123 } },
        { "the way back", "hold:alt space leave:alt", "escape", 0, { 104, 123 } },
        { "a right click on the caption", "at:200,110 rclick", "C", SC_CLOSE, { 200, 110 } },
    };
    for (const OpeningCase& c : kCases) {
        SCOPED_TRACE(c.why);
        std::vector<WPARAM> commands;
        TestWindow window(journal_, { .style = WS_OVERLAPPEDWINDOW, .rect = { 100, 100, 400, 300 } });
        window.on(WM_SYSCOMMAND, [&](HWND, WPARAM command, LPARAM) -> std::optional<LRESULT> {
            if (command == SC_KEYMENU || command == SC_MOUSEMENU)
                return std::nullopt;
            commands.push_back(command);
            return 0;
        });
        show(window);
        play(window, c.words);
        for (const std::string& word : words_of(c.opens))
            Person(screen_).act(word);
        run_queue();
        EXPECT_EQ(commands, c.expected ? std::vector{ c.expected } : std::vector<WPARAM>());
        EXPECT_EQ((POINT{ place().left, place().top }), c.corner);
        EXPECT_EQ(words_left(), 0U);
        screen_->move_pointer({ 900, 700 });
        run_queue();
    }
}

TEST_F(SystemMenu, SpeaksTheCodePagesLanguage)
{
    const std::pair<UINT, const char*> kCases[] = { { 936, "\xB9\xD8\xB1\xD5(&C)\tAlt+F4" },
                                                    { 1252, "&Close\tAlt+F4" } };
    for (const auto& [code_page, close] : kCases) {
        const UINT before = win32::exchange_ansi_code_page(code_page);
        const TestWindow window(journal_, { .style = WS_OVERLAPPEDWINDOW });
        char text[32] = {};
        GetMenuStringA(GetSystemMenu(window.get(), FALSE), SC_CLOSE, text, sizeof(text), MF_BYCOMMAND);
        EXPECT_STREQ(text, close);
        win32::exchange_ansi_code_page(before);
    }
}

} // namespace
} // namespace test
