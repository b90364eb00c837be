// The plain frame: its parts, what presses on them do, and how it looks.
#include "tests/platform/win32/user/person.h"

namespace test {
namespace {

// 200 x 100 at 100,100; with a sizing frame the caption is 104..295 x 104..122.
constexpr RECT kPlace{ 100, 100, 300, 200 };

// 16 x 16 of red, the small icon of windows.
class RedIcon {
public:
    RedIcon()
    {
        const std::vector<DWORD> pixels(16 * 16, 0xFF0000);
        const std::vector<WORD> mask(16, 0);
        ICONINFO info{ TRUE, 0, 0, CreateBitmap(16, 16, 1, 1, mask.data()),
                       CreateBitmap(16, 16, 1, 32, pixels.data()) };
        icon_ = CreateIconIndirect(&info);
        DeleteObject(info.hbmMask);
        DeleteObject(info.hbmColor);
    }
    ~RedIcon() { DestroyIcon(icon_); }
    RedIcon(const RedIcon&) = delete;
    RedIcon& operator=(const RedIcon&) = delete;

    void give_to(HWND window) const { SendMessageA(window, WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(icon_)); }

private:
    HICON icon_;
};

class Frames : public UserTest {
protected:
    Frames() { screen_->move_pointer({ 900, 700 }); }

    void play(const std::string& words)
    {
        const Play play(Person(screen_), words + " look look");
        run_until([&] { return play.is_over() && GetCapture() == nullptr; });
    }

    win32::MemoryScreen::Picture picture()
    {
        run_queue();
        return screen_->picture();
    }

    const RedIcon icon_;
};

int hit_at(const TestWindow& window, int x, int y)
{
    return static_cast<int>(
        SendMessageA(window.get(), WM_NCHITTEST, 0, MAKELPARAM(static_cast<WORD>(x), static_cast<WORD>(y))));
}

struct PartCase {
    const char* why;
    DWORD style;
    DWORD ex_style;
    // Of the caption's row, by letters: L sizing edge, C caption, I icon; N, X, Q: minimise, maximise, close.
    const char* row;
};

char letter_of(int hit)
{
    const std::map<int, char> letters{
        { HTCAPTION, 'C' }, { HTSYSMENU, 'I' }, { HTMINBUTTON, 'N' }, { HTMAXBUTTON, 'X' }, { HTCLOSE, 'Q' }
    };
    return letters.contains(hit) ? letters.at(hit) : 'L';
}

TEST_F(Frames, HaveThePartsOfTheirStyle)
{
    constexpr DWORD kCaption = WS_POPUP | WS_CAPTION;
    constexpr DWORD kBoth = kCaption | WS_SYSMENU | WS_MINIMIZEBOX | WS_MAXIMIZEBOX;
    const PartCase kCases[] = {
        { "a caption alone", kCaption, 0, "C" },
        { "close", kCaption | WS_SYSMENU, 0, "CICQC" },
        { "all boxes and sizing edges", kBoth | WS_THICKFRAME, 0, "LCICNXCQCL" },
        { "one of two shows both", kCaption | WS_SYSMENU | WS_MINIMIZEBOX, 0, "CICNXCQC" },
        { "a tool window has only close", kBoth, WS_EX_TOOLWINDOW, "CQC" },
        { "a dialog's frame has no icon", kBoth, WS_EX_DLGMODALFRAME, "CNXCQC" },
        { "boxes without a system menu are none", kCaption | WS_MINIMIZEBOX, 0, "C" },
    };
    for (const PartCase& c : kCases) {
        SCOPED_TRACE(c.why);
        const TestWindow window(journal_, { .style = c.style, .ex_style = c.ex_style, .rect = kPlace });
        icon_.give_to(window.get());
        std::string row;
        for (int x = kPlace.left; x < kPlace.right; x++) {
            const char letter = letter_of(hit_at(window, x, kPlace.top + 12));
            if (row.empty() || row.back() != letter)
                row += letter;
        }
        EXPECT_EQ(row, c.row);
    }
}

struct CommandCase {
    const char* why;
    const char* words;
    WPARAM expected; // 0: no command
    DWORD without = 0;
};

TEST_F(Frames, TurnPressesAndKeysIntoCommands)
{
    const CommandCase kCases[] = {
        { "close", "at:285,110 click", SC_CLOSE },
        { "maximise", "at:268,110 press release", SC_MAXIMIZE },
        { "minimise", "at:250,110 press release", SC_MINIMIZE },
        { "a box that the style greys", "at:250,110 press release", 0, WS_MINIMIZEBOX },
        { "released beside it", "at:285,110 press at:200,110 release", 0 },
        { "left and come back", "at:285,110 press at:200,160 at:286,111 release", SC_CLOSE },
        { "released on another", "at:285,110 press at:268,110 release", 0 },
        { "taken back by Escape", "at:285,110 press escape release", 0 },
        { "the other button", "at:285,110 rclick", 0 },
        { "a right click on the caption", "at:200,110 rclick", SC_MOUSEMENU },
        { "a right click inside", "at:200,160 rclick", 0 },
        { "a double click on the caption", "at:200,110 click click", SC_MAXIMIZE },
        { "without its box", "at:200,110 click click", 0, WS_MAXIMIZEBOX },
        { "Alt and Space", "hold:alt space leave:alt", SC_KEYMENU },
        { "Alt and F4", "hold:alt f4 leave:alt", SC_CLOSE },
        { "Space alone", "space", 0 },
        { "a click on the icon, and away from its menu", "at:112,112 click look escape", 0 },
        { "a second click on it", "at:112,112 click click", SC_CLOSE },
        { "a command of its menu", "at:112,112 click N", SC_MINIMIZE },
    };
    for (const CommandCase& c : kCases) {
        SCOPED_TRACE(c.why);
        std::vector<WPARAM> commands;
        TestWindow window(journal_, { .style = WS_OVERLAPPEDWINDOW & ~c.without, .rect = kPlace });
        window.on(WM_SYSCOMMAND, [&](HWND, WPARAM command, LPARAM) {
            if ((command & 0xFFF0) != SC_MOVE) // what a press on the caption begins with
                commands.push_back(command & 0xFFF0);
            return 0;
        });
        icon_.give_to(window.get());
        ShowWindow(window.get(), SW_SHOW);
        play(c.words);
        EXPECT_EQ(commands, c.expected ? std::vector{ c.expected } : std::vector<WPARAM>());
        screen_->move_pointer({ 900, 700 });
        run_queue();
    }
}

TEST_F(Frames, DoNotCloseWithoutTheMenusClose)
{
    std::vector<WPARAM> commands;
    TestWindow window(journal_, { .style = WS_OVERLAPPEDWINDOW, .rect = kPlace });
    window.on(WM_SYSCOMMAND, [&](HWND, WPARAM command, LPARAM) {
        commands.push_back(command);
        return 0;
    });
    ShowWindow(window.get(), SW_SHOW);
    const auto try_to_close = [&] {
        play("at:285,110 click hold:alt f4 leave:alt");
        screen_->request_close(surface_of(window.get()));
        run_queue();
        return std::exchange(commands, {});
    };
    EXPECT_EQ(try_to_close(), std::vector<WPARAM>(3, SC_CLOSE));
    EnableMenuItem(GetSystemMenu(window.get(), FALSE), SC_CLOSE, MF_GRAYED);
    EXPECT_EQ(try_to_close(), std::vector<WPARAM>());
    DeleteMenu(GetSystemMenu(window.get(), FALSE), SC_CLOSE, MF_BYCOMMAND);
    EXPECT_EQ(try_to_close(), std::vector<WPARAM>());
}

TEST_F(Frames, ShowABoxPressedWhileThePointerIsOnIt)
{
    std::vector<std::uint32_t> seen;
    TestWindow window(journal_, { .style = WS_OVERLAPPEDWINDOW, .rect = kPlace });
    window.on(WM_SYSCOMMAND, answering(0));
    show(window);
    window.on(WM_NCHITTEST, doing([&](HWND handle) {
                  UpdateWindow(handle);
                  seen.push_back(screen_->pixel_at({ 279, 107 }));
              }));
    play("at:285,110 press at:286,110 at:200,110 at:201,110 release");
    // Before the press, at it, pressed, leaving, away.
    const std::uint32_t face = 0xD4D0C8;
    const std::uint32_t shade = 0x808080;
    EXPECT_EQ(std::vector(seen.begin(), seen.begin() + 5),
              (std::vector<std::uint32_t>{ face, face, shade, shade, face }));
}

TEST_F(Frames, ShowTextIconAndActivity)
{
    TestWindow window(journal_, { .name = "first", .style = WS_OVERLAPPEDWINDOW, .rect = kPlace });
    ShowWindow(window.get(), SW_SHOW);
    const auto first = picture();
    SetWindowTextA(window.get(), "\xB0\xB2\xD7\xB0");
    const auto second = picture();
    EXPECT_NE(first.pixels, second.pixels);
    EXPECT_EQ(screen_->look(surface_of(window.get()))->traits.title, "\u5B89\u88C5");
    icon_.give_to(window.get());
    EXPECT_EQ(picture().at(110, 112), 0xFF0000U);
    EXPECT_EQ(picture().at(240, 106), 0x0A246AU);
    screen_->focus(0);
    EXPECT_EQ(picture().at(240, 106), 0x808080U);
    EXPECT_EQ(picture().at(100, 100), 0xD4D0C8U);
    const HDC dc = GetWindowDC(window.get());
    SetPixel(dc, 0, 0, RGB(0, 0, 255));
    ReleaseDC(window.get(), dc);
    EXPECT_EQ(picture().at(100, 100), 0x0000FFU);
    SetWindowTextA(window.get(), std::string(3000, '\xB0').c_str());
    const auto crowded = picture();
    for (int y = 104; y < 120; y++) {
        EXPECT_EQ(crowded.at(242, y), 0x808080U); // the text ends before the boxes
    }
}

struct MoveCase {
    const char* why;
    WPARAM command; // 0: none, the pointer begins
    const char* words;
    int steps; // that it goes at least
    RECT expected;
};

TEST_F(Frames, FollowPointerAndArrowKeys)
{
    const MoveCase kCases[] = {
        { "by the caption", 0, "at:200,110 press at:207,120 at:190,90 release", 3, { 90, 80, 290, 180 } },
        { "by an edge", 0, "at:298,150 press at:308,190 release", 2, { 100, 100, 310, 200 } },
        { "by a corner", 0, "at:101,101 press at:91,106 release", 2, { 90, 105, 300, 200 } },
        { "a drag taken back", 0, "at:200,110 press at:207,120 escape release", 2, { 100, 100, 300, 200 } },
        { "moved right and down", SC_MOVE, "right right down enter", 3, { 116, 108, 316, 208 } },
        { "by single pixels", SC_MOVE, "hold:control left up leave:control enter", 2, { 99, 99, 299, 199 } },
        { "taken back", SC_MOVE, "right down escape", 3, { 100, 100, 300, 200 } },
        { "with the pointer, to a click", SC_MOVE, "at:500,500 at:510,520 click", 2, { 210, 220, 410, 320 } },
        { "the right edge", SC_SIZE, "right right enter", 2, { 100, 100, 316, 200 } },
        { "the left edge, inward", SC_SIZE, "left right right enter", 3, { 108, 100, 300, 200 } },
        { "a corner", SC_SIZE, "left down enter", 2, { 92, 100, 300, 208 } },
        { "no smaller than the least",
          SC_SIZE,
          "down up up up up up up up up up up up enter",
          11,
          { 100, 100, 300, 127 } },
        { "size taken back", SC_SIZE, "right down escape", 3, { 100, 100, 300, 200 } },
        { "other keys change nothing", SC_SIZE, "home A enter", 0, { 100, 100, 300, 200 } },
    };
    for (const MoveCase& c : kCases) {
        SCOPED_TRACE(c.why);
        int steps = 0;
        TestWindow window(journal_, { .style = WS_OVERLAPPEDWINDOW, .rect = kPlace });
        window.on(WM_MOVING, doing([&](HWND) { steps++; }));
        window.on(WM_SIZING, doing([&](HWND) { steps++; }));
        show(window);
        screen_->move_pointer({ 400, 400 });
        run_queue();
        journal_.keep_only({ WM_ENTERSIZEMOVE, WM_EXITSIZEMOVE });
        PostMessageA(window.get(), WM_SYSCOMMAND, c.command, 0);
        play(c.words);
        EXPECT_EQ(journal_.take(), "ENTERSIZEMOVE EXITSIZEMOVE");
        EXPECT_EQ(rect_of(window.get()), c.expected);
        EXPECT_NE(surface_of(window.get()), 0) << "the surface is elsewhere";
        EXPECT_GE(steps, c.steps);
    }
}

} // namespace
} // namespace test
