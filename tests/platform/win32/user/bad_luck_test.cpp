// Windows that go at the wrong moment, have absurd sizes, or lose their display.
#include "tests/platform/win32/user/menu_play.h"

#include <chrono>
#include <set>

namespace test {
namespace {

class BadLuck : public MenuTest {};

// A life with a bit of everything.
void live(HWND window, Person person, const std::function<void(const std::function<bool()>&)>& run_until)
{
    ShowWindow(window, SW_SHOW);
    SetWindowTextA(window, "another");
    SetWindowPos(window, nullptr, 100, 100, 300, 200, SWP_NOZORDER);
    SetWindowLongA(window, GWL_STYLE, WS_VISIBLE | static_cast<LONG>(WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN));
    SetWindowRgn(window, CreateRectRgn(0, 0, 280, 190), TRUE);
    SetFocus(window);
    const UINT_PTR timer = SetTimer(window, 1, 10, nullptr);
    for (const char* quickly : { "elsewhere", "at:350,250 press release", "at:250,110 press at:255,115 release",
                                 "at:106,200 press at:95,200 release", "A", "at:350,260 rclick" }) {
        for (const std::string& word : words_of(quickly))
            person.act(word);
        run_until([] { return true; });
    }
    const auto ripe = std::chrono::steady_clock::now() + std::chrono::milliseconds(11);
    run_until([&] { return std::chrono::steady_clock::now() > ripe; }); // the timer fires
    KillTimer(window, timer);
    SetCapture(window);
    ReleaseCapture();
    EnableWindow(window, FALSE);
    EnableWindow(window, TRUE);
    TrackPopupMenu(GetSystemMenu(window, FALSE), TPM_RETURNCMD, 150, 150, 0, window, nullptr);
    ShowWindow(window, SW_SHOWMAXIMIZED);
    ShowWindow(window, SW_MINIMIZE);
    ShowWindow(window, SW_RESTORE);
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_UPDATENOW);
    run_until([] { return true; });
    SendMessageA(window, WM_CLOSE, 0, 0);
}

TEST_F(BadLuck, OfDestructionInAnyMessage)
{
    std::set<UINT> messages{ 0 };
    // The first life, which none of them ends, tells which there are.
    for (auto message = messages.begin(); message != messages.end(); ++message) {
        SCOPED_TRACE(message_name(*message));
        screen_->release(win32::kLeftButton); // the window before may have gone beneath a press
        screen_->move_pointer({ 900, 700 });
        bool destroyed = *message == 0;
        const auto meet = [&](HWND handle, UINT met) {
            messages.insert(*message == 0 ? met : 0);
            if (met == *message && !std::exchange(destroyed, true)) {
                DestroyWindow(handle);
                EndMenu();
            }
        };
        TestWindow window(journal_, { .style = WS_OVERLAPPEDWINDOW,
                                      .rect = { 50, 50, 250, 250 },
                                      .background = GetSysColorBrush(COLOR_WINDOW),
                                      .every = meet });
        play(window, ""); // ends the menu
        const HWND handle = window.get();
        const TestWindow child(journal_, child_of(handle, "child", { 10, 20, 110, 100 }));
        const TestWindow owned(journal_, { .name = "owned", .parent = handle });
        live(handle, Person(screen_), [this](const std::function<bool()>& condition) { run_until(condition); });
        EXPECT_TRUE(destroyed);
        EXPECT_FALSE(IsWindow(handle));
        EXPECT_FALSE(IsWindow(child.get()));
        EXPECT_EQ(IsWindow(owned.get()), !handle); // without an owner it is its own
        EXPECT_EQ(GetCapture(), nullptr);
        EXPECT_EQ(GetFocus(), nullptr);
        EXPECT_EQ(screen_->stack().size(), handle ? 0U : 1U);
    }
    EXPECT_GT(messages.size(), 50U);
}

struct ExtentCase {
    int width;
    int height;
    bool made;
};

TEST_F(BadLuck, OfAbsurdExtents)
{
    const ExtentCase kCases[] = {
        { 0, 0, true },          { 0, 50, true },     { -5, -5, true },        { 1, 1, true },
        { 32000, 20, true },     { 20, 32000, true }, { 32000, 32000, false }, { 0x7FFFFFFF, 0x7FFFFFFF, false },
        { 0x7FFFFFFF, 1, true },
    };
    for (const ExtentCase& c : kCases) {
        SCOPED_TRACE(c.width);
        SCOPED_TRACE(c.height);
        SetLastError(0);
        const TestWindow window(journal_, { .style = WS_POPUP | WS_CAPTION | WS_THICKFRAME | WS_SYSMENU,
                                            .rect = { 0, 0, c.width, c.height },
                                            .background = GetSysColorBrush(COLOR_WINDOW) });
        EXPECT_EQ(window.get() != nullptr, c.made);
        EXPECT_EQ(GetLastError(), c.made ? 0 : ERROR_NOT_ENOUGH_MEMORY);
        const TestWindow changed(journal_, { .rect = { 0, 0, 40, 30 }, .background = GetSysColorBrush(COLOR_WINDOW) });
        ShowWindow(changed.get(), SW_SHOW);
        ShowWindow(window.get(), SW_SHOW);
        EXPECT_TRUE(SetWindowPos(changed.get(), nullptr, -3, -3, c.width, c.height, SWP_NOZORDER));
        run_queue();
        const RECT expected{ -3, -3, std::clamp(c.width, 0, 32767) - 3, std::clamp(c.height, 0, 32767) - 3 };
        EXPECT_EQ(rect_of(changed.get()), expected);
        EXPECT_TRUE(SetWindowPos(changed.get(), nullptr, 0, 0, 40, 30, SWP_NOZORDER));
        run_queue();
        EXPECT_EQ(screen_->pixel_at({ 30, 20 }), 0xFFFFFFU);
    }
}

struct LoopCase {
    const char* why;
    WPARAM command;
    const char* words;
};

TEST_F(BadLuck, OfALostDisplayEndsEveryLoop)
{
    const LoopCase kCases[] = {
        { "a menu", SC_KEYMENU, "look" },
        { "moving by keys", SC_MOVE, "right" },
        { "a drag", SC_MOVE | HTCAPTION, "at:60,70" },
        { "none of ours", 0, "look" },
    };
    for (const LoopCase& c : kCases) {
        SCOPED_TRACE(c.why);
        EXPECT_EXIT(
            {
                TestWindow window(journal_, { .style = WS_OVERLAPPEDWINDOW, .rect = { 50, 50, 250, 250 } });
                ShowWindow(window.get(), SW_SHOW);
                screen_->move_pointer({ 60, 60 });
                screen_->press(win32::kLeftButton);
                window.on(WM_NCLBUTTONDOWN, answering(0));
                run_queue();
                const Play play(Person(screen_), c.words);
                window.on(WM_USER, doing([&](HWND) { screen_->disconnect(); }));
                SetTimer(window.get(), 5, 60,
                         [](HWND handle, UINT, UINT_PTR, DWORD) { SendMessageA(handle, WM_USER, 0, 0); });
                PostMessageA(window.get(), WM_SYSCOMMAND, c.command, c.command == SC_KEYMENU ? VK_SPACE : 0);
                MSG message;
                while (GetMessageA(&message, nullptr, 0, 0) > 0)
                    DispatchMessageA(&message);
                std::_Exit(static_cast<int>(message.wParam) + 10);
            },
            testing::ExitedWithCode(11), "display is lost");
    }
}

} // namespace
} // namespace test
