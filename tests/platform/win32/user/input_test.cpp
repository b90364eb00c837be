// From the pointer and the keys to messages.
#include "tests/platform/win32/user/user_support.h"

#include "platform/win32/screen/memory_screen.h"

#include <algorithm>

namespace test {
namespace {

using Entries = std::vector<std::string>;
using win32::kLeftButton;

class Input : public UserTest {
protected:
    Input() { screen_->move_pointer({ 900, 700 }); }
};

Handler noting_point(POINT* point)
{
    return [=](HWND, WPARAM, LPARAM lparam) {
        *point = { GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam) };
        return std::nullopt;
    };
}

TEST_F(Input, ReachesTheClientAreaUnderThePointer)
{
    POINT point{};
    const TestWindow window(journal_, { .handlers = { { WM_LBUTTONDOWN, noting_point(&point) } } });
    ShowWindow(window.get(), SW_SHOWNA);
    journal_.take();
    screen_->move_pointer({ 30, 45 });
    screen_->move_pointer({ 31, 45 }); // only the newest of two waiting moves counts
    run_queue();
    journal_.keep_only({});
    screen_->press(kLeftButton);
    run_queue();
    EXPECT_EQ(journal_.take(), (Entries{ "w NCHITTEST", "w MOUSEACTIVATE", "w ACTIVATEAPP", "w NCACTIVATE",
                                         "w ACTIVATE", "w SETFOCUS", "w SETCURSOR", "w LBUTTONDOWN" }));
    EXPECT_EQ(point.x, 21);
    EXPECT_EQ(point.y, 25);
    EXPECT_TRUE(GetKeyState(VK_LBUTTON) & 0x8000);
    EXPECT_TRUE(GetAsyncKeyState(VK_LBUTTON) & 0x8000);
    screen_->release(kLeftButton);
    EXPECT_TRUE(GetKeyState(VK_LBUTTON) & 0x8000); // as of the last message
    EXPECT_FALSE(GetAsyncKeyState(VK_LBUTTON) & 0x8000);
    run_queue();
    EXPECT_FALSE(GetKeyState(VK_LBUTTON) & 0x8000);
    EXPECT_EQ(journal_.take(), (Entries{ "w NCHITTEST", "w SETCURSOR", "w LBUTTONUP" }));
}

TEST_F(Input, GoesToTheInnermostWindowThatTakesIt)
{
    const TestWindow parent(journal_, { .name = "parent" });
    const TestWindow child(
        journal_,
        { .name = "child", .style = WS_CHILD | WS_VISIBLE, .rect = { 10, 10, 60, 60 }, .parent = parent.get() });
    const TestWindow glass(journal_,
                           { .name = "glass",
                             .style = WS_CHILD | WS_VISIBLE,
                             .rect = { 20, 20, 60, 60 },
                             .parent = parent.get(),
                             .handlers = { { WM_NCHITTEST, [](HWND, WPARAM, LPARAM) { return HTTRANSPARENT; } } } });
    SetWindowPos(glass.get(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    ShowWindow(parent.get(), SW_SHOW);
    run_queue();
    journal_.keep_only({ WM_MOUSEMOVE });
    const auto hit_at = [&](POINT point) {
        screen_->move_pointer(point);
        run_queue();
        return journal_.take();
    };
    EXPECT_EQ(hit_at({ 15, 25 }), (Entries{ "parent MOUSEMOVE" }));
    EXPECT_EQ(hit_at({ 25, 35 }), (Entries{ "child MOUSEMOVE" }));
    EXPECT_EQ(hit_at({ 45, 55 }), (Entries{ "child MOUSEMOVE" }));
    EXPECT_EQ(WindowFromPoint({ 45, 55 }), child.get());
    EnableWindow(child.get(), FALSE);
    EXPECT_EQ(hit_at({ 46, 55 }), (Entries{ "parent MOUSEMOVE" }));
    EnableWindow(parent.get(), FALSE);
    EXPECT_EQ(hit_at({ 47, 55 }), Entries());
}

TEST_F(Input, BecomesNonClientMessagesOnTheFrame)
{
    POINT point{};
    const TestWindow window(
        journal_, { .style = WS_POPUP | WS_CAPTION, .handlers = { { WM_NCLBUTTONUP, noting_point(&point) } } });
    ShowWindow(window.get(), SW_SHOW);
    run_queue();
    journal_.keep_only({ WM_NCMOUSEMOVE, WM_NCLBUTTONDOWN, WM_NCLBUTTONUP, WM_NCLBUTTONDBLCLK, WM_MOUSEMOVE });
    screen_->click({ 40, 30 });
    screen_->click({ 40, 30 });
    run_queue();
    // The first release ends the drag that the first press began, however soon it came.
    EXPECT_EQ(journal_.take(),
              (Entries{ "w NCMOUSEMOVE", "w NCLBUTTONDOWN", "w NCMOUSEMOVE", "w NCLBUTTONDBLCLK", "w NCLBUTTONUP" }));
    EXPECT_EQ(point.x, 40);
    EXPECT_EQ(point.y, 30);
}

struct ClickCase {
    const char* why;
    UINT class_style;
    POINT second;
    int clicks;
    Entries expected;
};

TEST_F(Input, TellsDoubleClicksFromTwoClicks)
{
    const ClickCase kCases[] = {
        { "at the same place", CS_DBLCLKS, { 50, 50 }, 2, { "w LBUTTONDOWN", "w LBUTTONDBLCLK" } },
        { "the third is single again",
          CS_DBLCLKS,
          { 50, 50 },
          3,
          { "w LBUTTONDOWN", "w LBUTTONDBLCLK", "w LBUTTONDOWN" } },
        { "too far apart", CS_DBLCLKS, { 53, 50 }, 2, { "w LBUTTONDOWN", "w LBUTTONDOWN" } },
        { "a class that asks for none", 0, { 50, 50 }, 2, { "w LBUTTONDOWN", "w LBUTTONDOWN" } },
    };
    for (const ClickCase& c : kCases) {
        SCOPED_TRACE(c.why);
        const TestWindow window(journal_, { .class_style = c.class_style });
        ShowWindow(window.get(), SW_SHOW);
        run_queue();
        journal_.keep_only({ WM_LBUTTONDOWN, WM_LBUTTONDBLCLK });
        screen_->click({ 50, 50 });
        for (int i = 1; i < c.clicks; i++)
            screen_->click(c.second);
        run_queue();
        EXPECT_EQ(journal_.take(), c.expected);
    }
}

TEST_F(Input, GoesToTheWindowThatCapturesIt)
{
    POINT point{};
    const TestWindow window(journal_, { .handlers = { { WM_LBUTTONDOWN,
                                                        [](HWND handle, WPARAM, LPARAM) {
                                                            SetCapture(handle);
                                                            return std::nullopt;
                                                        } },
                                                      { WM_LBUTTONUP,
                                                        [](HWND, WPARAM, LPARAM) {
                                                            ReleaseCapture();
                                                            return std::nullopt;
                                                        } },
                                                      { WM_MOUSEMOVE, noting_point(&point) } } });
    const TestWindow other(journal_, { .name = "other", .rect = { 200, 200, 300, 300 } });
    ShowWindow(other.get(), SW_SHOW);
    ShowWindow(window.get(), SW_SHOW);
    screen_->move_pointer({ 50, 50 });
    run_queue();
    journal_.keep_only({ WM_MOUSEMOVE, WM_LBUTTONUP, WM_CAPTURECHANGED });
    screen_->press(kLeftButton);
    run_queue();
    EXPECT_EQ(GetCapture(), window.get());
    screen_->move_pointer({ 250, 5 });
    run_queue();
    EXPECT_EQ(point.x, 240);
    EXPECT_EQ(point.y, -15);
    screen_->release(kLeftButton);
    run_queue();
    EXPECT_EQ(GetCapture(), nullptr);
    screen_->move_pointer({ 250, 250 });
    run_queue();
    EXPECT_EQ(journal_.take(), (Entries{ "w MOUSEMOVE", "w LBUTTONUP", "w CAPTURECHANGED", "other MOUSEMOVE" }));
    SetCapture(window.get());
    ShowWindow(window.get(), SW_HIDE);
    EXPECT_EQ(GetCapture(), nullptr);
}

TEST_F(Input, EndsAPressOnAnInactiveWindowThatEatsIt)
{
    const TestWindow window(
        journal_, { .handlers = { { WM_MOUSEACTIVATE, [](HWND, WPARAM, LPARAM) { return MA_ACTIVATEANDEAT; } } } });
    ShowWindow(window.get(), SW_SHOWNA);
    run_queue();
    journal_.keep_only({ WM_LBUTTONDOWN, WM_ACTIVATE });
    screen_->click({ 50, 50 });
    run_queue();
    screen_->click({ 60, 60 });
    run_queue();
    EXPECT_EQ(journal_.take(), (Entries{ "w ACTIVATE", "w LBUTTONDOWN" }));
}

TEST_F(Input, TellsThatThePointerLeft)
{
    const TestWindow window(journal_, { .handlers = { { WM_MOUSEMOVE, [](HWND handle, WPARAM, LPARAM) {
                                                           TRACKMOUSEEVENT track{ sizeof(track), TME_LEAVE, handle, 0 };
                                                           EXPECT_TRUE(TrackMouseEvent(&track));
                                                           return 0;
                                                       } } } });
    ShowWindow(window.get(), SW_SHOW);
    run_queue();
    journal_.keep_only({ WM_MOUSEMOVE, WM_MOUSELEAVE });
    screen_->move_pointer({ 50, 50 });
    run_queue();
    screen_->move_pointer({ 500, 500 });
    run_queue();
    screen_->move_pointer({ 501, 500 });
    run_queue();
    EXPECT_EQ(journal_.take(), (Entries{ "w MOUSEMOVE", "w MOUSELEAVE" }));
}

struct CursorCase {
    const char* why;
    HCURSOR class_cursor;
    POINT point;
    win32::CursorShape expected;
};

TEST_F(Input, SetsTheCursor)
{
    const CursorCase kCases[] = {
        { "the class's over the client area", LoadCursorA(nullptr, IDC_HAND), { 60, 70 }, win32::CursorShape::hand },
        { "none of its own leaves it as it is", nullptr, { 60, 70 }, win32::CursorShape::arrow },
        { "an edge that sizes", LoadCursorA(nullptr, IDC_HAND), { 11, 60 }, win32::CursorShape::size_we },
        { "a corner that sizes", LoadCursorA(nullptr, IDC_HAND), { 109, 99 }, win32::CursorShape::size_nwse },
        { "the caption", LoadCursorA(nullptr, IDC_HAND), { 50, 30 }, win32::CursorShape::arrow },
    };
    for (const CursorCase& c : kCases) {
        SCOPED_TRACE(c.why);
        SetCursor(LoadCursorA(nullptr, IDC_ARROW));
        const TestWindow window(
            journal_,
            { .style = WS_POPUP | WS_CAPTION | WS_THICKFRAME, .rect = { 10, 20, 122, 100 }, .cursor = c.class_cursor });
        ShowWindow(window.get(), SW_SHOW);
        const POINT point = c.point.x == 109 ? POINT{ 121, 99 } : c.point;
        screen_->move_pointer(point);
        run_queue();
        EXPECT_EQ(screen_->look(surface_of(window.get()))->cursor, c.expected);
        screen_->move_pointer({ 900, 700 });
    }
}

TEST_F(Input, OfKeysGoesToTheFocus)
{
    std::string typed;
    const TestWindow window(journal_, { .handlers = { { WM_CHAR, [&](HWND, WPARAM character, LPARAM) {
                                                           typed += static_cast<char>(character);
                                                           return 0;
                                                       } } } });
    const TestWindow child(journal_, { .name = "child", .style = WS_CHILD | WS_VISIBLE, .parent = window.get() });
    ShowWindow(window.get(), SW_SHOW);
    run_queue();
    journal_.keep_only({ WM_KEYDOWN, WM_KEYUP, WM_SYSKEYDOWN, WM_SYSCOMMAND, WM_SETFOCUS, WM_KILLFOCUS });
    screen_->press_key('A', "a");
    screen_->press_key('Z', "\xE5\xAE\x89"); // two bytes in code page 936
    screen_->release_key('A');
    run_queue();
    EXPECT_EQ(typed, "a\xB0\xB2");
    EXPECT_TRUE(GetKeyState('Z') & 0x8000);
    EXPECT_EQ(SetFocus(child.get()), window.get());
    screen_->release_key('Z');
    run_queue();
    EXPECT_EQ(journal_.take(),
              (Entries{ "w KEYDOWN", "w KEYDOWN", "w KEYUP", "w KILLFOCUS", "child SETFOCUS", "child KEYUP" }));
    SetFocus(window.get());
    journal_.take();
    journal_.keep_only({ WM_SYSKEYDOWN, WM_SYSCOMMAND, WM_CLOSE });
    window.get();
    screen_->press_key(VK_MENU);
    screen_->press_key(VK_F4);
    run_queue();
    EXPECT_EQ(journal_.take(), (Entries{ "w SYSKEYDOWN", "w SYSKEYDOWN", "w SYSCOMMAND", "w CLOSE" }));
    EXPECT_FALSE(IsWindow(window.get()));
}

TEST_F(Input, MovesTheWindowByItsCaption)
{
    const TestWindow window(journal_, { .style = WS_POPUP | WS_CAPTION });
    ShowWindow(window.get(), SW_SHOW);
    run_queue();
    journal_.keep_only({ WM_ENTERSIZEMOVE, WM_EXITSIZEMOVE, WM_MOVE, WM_LBUTTONUP, WM_NCLBUTTONUP, WM_TIMER });
    screen_->move_pointer({ 50, 30 });
    screen_->press(kLeftButton);
    // The loop runs inside the press; the person goes on from a timer of its own.
    int step = 0;
    const_cast<TestWindow&>(window).on(WM_TIMER, [&](HWND handle, WPARAM, LPARAM) {
        step++;
        if (step == 1)
            screen_->move_pointer({ 57, 40 });
        if (step == 2) {
            RECT rect{};
            GetWindowRect(handle, &rect);
            EXPECT_EQ(rect.left, 17);
            EXPECT_EQ(rect.top, 30);
            screen_->move_pointer({ 40, 10 });
            screen_->release(kLeftButton);
            KillTimer(handle, 1);
        }
        return 0;
    });
    SetTimer(window.get(), 1, 10, nullptr);
    run_until([&] { return step >= 2 && GetCapture() == nullptr; });
    EXPECT_EQ(journal_.take(),
              (Entries{ "w ENTERSIZEMOVE", "w TIMER", "w MOVE", "w TIMER", "w MOVE", "w EXITSIZEMOVE" }));
    RECT rect{};
    GetWindowRect(window.get(), &rect);
    EXPECT_EQ(rect.left, 0);
    EXPECT_EQ(rect.top, 0);
    EXPECT_EQ(surface_of(window.get()) != 0, true);
}

TEST_F(Input, DoesNotMoveAWindowWithoutAHeldButtonOrAgainstACapture)
{
    const TestWindow window(journal_, { .style = WS_POPUP | WS_CAPTION });
    ShowWindow(window.get(), SW_SHOW);
    journal_.keep_only({ WM_ENTERSIZEMOVE });
    SendMessageA(window.get(), WM_NCLBUTTONDOWN, HTCAPTION, 0);
    screen_->move_pointer({ 50, 60 });
    screen_->press(kLeftButton);
    SetCapture(window.get());
    SendMessageA(window.get(), WM_NCLBUTTONDOWN, HTCAPTION, 0);
    EXPECT_EQ(journal_.take(), Entries());
    EXPECT_EQ(GetCapture(), window.get());
}

TEST_F(Input, FollowsTheDesktop)
{
    const TestWindow window(journal_, {});
    ShowWindow(window.get(), SW_SHOW);
    run_queue();
    const win32::SurfaceId surface = surface_of(window.get());
    journal_.keep_only({ WM_MOVE, WM_SIZE, WM_NCACTIVATE, WM_SYSCOMMAND, WM_CLOSE, WM_WINDOWPOSCHANGING });
    screen_->place_from_outside(surface, { 40, 50, 240, 250 });
    run_queue();
    EXPECT_EQ(journal_.take(), (Entries{ "w MOVE", "w SIZE" }));
    RECT rect{};
    GetClientRect(window.get(), &rect);
    EXPECT_EQ(rect.right, 200);
    screen_->focus(0);
    run_queue();
    EXPECT_EQ(GetActiveWindow(), nullptr);
    EXPECT_EQ(GetForegroundWindow(), nullptr);
    screen_->focus(surface);
    run_queue();
    EXPECT_EQ(GetActiveWindow(), window.get());
    EXPECT_EQ(journal_.take(), (Entries{ "w NCACTIVATE", "w NCACTIVATE" }));
    screen_->set_state_from_outside(surface, win32::SurfaceState::minimised);
    run_queue();
    EXPECT_TRUE(IsIconic(window.get()));
    screen_->set_state_from_outside(surface, win32::SurfaceState::normal);
    run_queue();
    EXPECT_FALSE(IsIconic(window.get()));
    journal_.take();
    screen_->request_close(surface);
    run_queue();
    EXPECT_EQ(journal_.take(), (Entries{ "w SYSCOMMAND", "w CLOSE", "w WINDOWPOSCHANGING" }));
    EXPECT_FALSE(IsWindow(window.get()));
}

} // namespace
} // namespace test
