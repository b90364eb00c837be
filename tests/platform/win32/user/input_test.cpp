// From the pointer and the keys to messages.
#include "tests/platform/win32/user/user_support.h"

namespace test {
namespace {

using win32::kLeftButton;

class Input : public UserTest {
protected:
    Input() { screen_->move_pointer({ 900, 700 }); }

    // What the windows hear of a move there.
    std::string heard_at(POINT point)
    {
        screen_->move_pointer(point);
        run_queue();
        return journal_.take();
    }
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
    journal_.keep_only({ WM_MOUSEMOVE });
    screen_->move_pointer({ 30, 45 });
    EXPECT_EQ(heard_at({ 31, 45 }), "MOUSEMOVE") << "only the newest of two waiting moves counts";
    journal_.keep_only({});
    screen_->press(kLeftButton);
    run_queue();
    EXPECT_EQ(journal_.take(),
              "NCHITTEST MOUSEACTIVATE ACTIVATEAPP NCACTIVATE ACTIVATE SETFOCUS SETCURSOR LBUTTONDOWN");
    EXPECT_EQ(point, (POINT{ 21, 25 }));
    EXPECT_TRUE(GetKeyState(VK_LBUTTON) & GetAsyncKeyState(VK_LBUTTON) & 0x8000);
    screen_->release(kLeftButton);
    EXPECT_TRUE(GetKeyState(VK_LBUTTON) & 0x8000); // as of the last message
    EXPECT_FALSE(GetAsyncKeyState(VK_LBUTTON) & 0x8000);
    run_queue();
    EXPECT_FALSE(GetKeyState(VK_LBUTTON) & 0x8000);
    EXPECT_EQ(journal_.take(), "NCHITTEST SETCURSOR LBUTTONUP");
}

TEST_F(Input, GoesToTheInnermostWindowThatTakesIt)
{
    const TestWindow parent(journal_, { .name = "parent" });
    const TestWindow child(journal_, child_of(parent.get(), "child", { 10, 10, 60, 60 }));
    TestWindow glass(journal_, child_of(parent.get(), "glass", { 20, 20, 60, 60 }));
    glass.on(WM_NCHITTEST, answering(HTTRANSPARENT));
    SetWindowPos(glass.get(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    show(parent);
    journal_.keep_only({ WM_MOUSEMOVE });
    EXPECT_EQ(heard_at({ 15, 25 }), "parent:MOUSEMOVE");
    EXPECT_EQ(heard_at({ 25, 35 }), "child:MOUSEMOVE");
    EXPECT_EQ(heard_at({ 45, 55 }), "child:MOUSEMOVE");
    EXPECT_EQ(WindowFromPoint({ 45, 55 }), child.get());
    SetWindowRgn(child.get(), CreateRectRgn(0, 0, 20, 20), TRUE);
    EXPECT_EQ(heard_at({ 46, 55 }), "parent:MOUSEMOVE") << "beside the child's outline";
    EXPECT_EQ(heard_at({ 25, 35 }), "child:MOUSEMOVE");
    EnableWindow(child.get(), FALSE);
    EXPECT_EQ(heard_at({ 26, 35 }), "parent:MOUSEMOVE");
    EnableWindow(parent.get(), FALSE);
    EXPECT_EQ(heard_at({ 47, 55 }), "");
}

TEST_F(Input, BecomesNonClientMessagesOnTheFrame)
{
    POINT point{};
    const TestWindow window(
        journal_, { .style = WS_POPUP | WS_CAPTION, .handlers = { { WM_NCLBUTTONUP, noting_point(&point) } } });
    show(window);
    journal_.keep_only({ WM_NCMOUSEMOVE, WM_NCLBUTTONDOWN, WM_NCLBUTTONUP, WM_NCLBUTTONDBLCLK, WM_MOUSEMOVE });
    screen_->click({ 40, 30 });
    screen_->click({ 40, 30 });
    run_queue();
    // The first release ends the drag that the first press began, however soon it came.
    EXPECT_EQ(journal_.take(), "NCMOUSEMOVE NCLBUTTONDOWN NCMOUSEMOVE NCLBUTTONDBLCLK NCLBUTTONUP");
    EXPECT_EQ(point, (POINT{ 40, 30 }));
}

struct ClickCase {
    const char* why;
    UINT class_style;
    POINT second;
    int clicks;
    const char* expected;
};

TEST_F(Input, TellsDoubleClicksFromTwoClicks)
{
    const ClickCase kCases[] = {
        { "the third is single again", CS_DBLCLKS, { 50, 50 }, 3, "LBUTTONDOWN LBUTTONDBLCLK LBUTTONDOWN" },
        { "too far apart", CS_DBLCLKS, { 53, 50 }, 2, "LBUTTONDOWN LBUTTONDOWN" },
        { "a class that asks for none", 0, { 50, 50 }, 2, "LBUTTONDOWN LBUTTONDOWN" },
    };
    for (const ClickCase& c : kCases) {
        SCOPED_TRACE(c.why);
        const TestWindow window(journal_, { .class_style = c.class_style });
        show(window);
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
    const TestWindow window(journal_, { .name = "w",
                                        .handlers = { { WM_LBUTTONDOWN, doing(SetCapture) },
                                                      { WM_LBUTTONUP, doing([](HWND) { ReleaseCapture(); }) },
                                                      { WM_MOUSEMOVE, noting_point(&point) } } });
    const TestWindow other(journal_, { .name = "other", .rect = { 200, 200, 300, 300 } });
    show(other);
    show(window);
    heard_at({ 50, 50 });
    journal_.keep_only({ WM_MOUSEMOVE, WM_LBUTTONUP, WM_CAPTURECHANGED });
    screen_->press(kLeftButton);
    run_queue();
    EXPECT_EQ(GetCapture(), window.get());
    EXPECT_EQ(heard_at({ 250, 5 }), "w:MOUSEMOVE");
    EXPECT_EQ(point, (POINT{ 240, -15 }));
    screen_->release(kLeftButton);
    EXPECT_EQ(heard_at({ 250, 250 }), "w:LBUTTONUP w:CAPTURECHANGED other:MOUSEMOVE");
    EXPECT_EQ(GetCapture(), nullptr);
    SetCapture(window.get());
    SetCapture(other.get());
    EXPECT_EQ(journal_.take(), "w:CAPTURECHANGED");
    ShowWindow(other.get(), SW_HIDE);
    EXPECT_EQ(GetCapture(), nullptr);
}

TEST_F(Input, EndsAPressOnAnInactiveWindowThatEatsIt)
{
    const TestWindow window(journal_, { .handlers = { { WM_MOUSEACTIVATE, answering(MA_ACTIVATEANDEAT) } } });
    show(window, SW_SHOWNA);
    journal_.keep_only({ WM_LBUTTONDOWN, WM_ACTIVATE });
    screen_->click({ 50, 50 });
    run_queue();
    screen_->click({ 60, 60 });
    run_queue();
    EXPECT_EQ(journal_.take(), "ACTIVATE LBUTTONDOWN");
}

TEST_F(Input, TellsThatThePointerLeft)
{
    const TestWindow window(journal_,
                            { .handlers = { { WM_MOUSEMOVE, doing([](HWND handle) {
                                                  TRACKMOUSEEVENT track{ sizeof(track), TME_LEAVE, handle, 0 };
                                                  EXPECT_TRUE(TrackMouseEvent(&track));
                                              }) } } });
    show(window);
    journal_.keep_only({ WM_MOUSEMOVE, WM_MOUSELEAVE });
    EXPECT_EQ(heard_at({ 50, 50 }), "MOUSEMOVE");
    EXPECT_EQ(heard_at({ 500, 500 }), "MOUSELEAVE");
    EXPECT_EQ(heard_at({ 501, 500 }), "");
}

struct CursorCase {
    const char* why;
    LPCSTR class_cursor;
    POINT point;
    win32::CursorShape expected;
};

TEST_F(Input, SetsTheCursor)
{
    const CursorCase kCases[] = {
        { "the class's over the client area", IDC_HAND, { 60, 70 }, win32::CursorShape::hand },
        { "none of its own leaves it as it is", nullptr, { 60, 70 }, win32::CursorShape::arrow },
        { "an edge that sizes", IDC_HAND, { 11, 60 }, win32::CursorShape::size_we },
        { "a corner that sizes", IDC_HAND, { 121, 99 }, win32::CursorShape::size_nwse },
        { "the caption", IDC_HAND, { 50, 30 }, win32::CursorShape::arrow },
    };
    for (const CursorCase& c : kCases) {
        SCOPED_TRACE(c.why);
        SetCursor(LoadCursorA(nullptr, IDC_ARROW));
        const TestWindow window(journal_, { .style = WS_POPUP | WS_CAPTION | WS_THICKFRAME,
                                            .rect = { 10, 20, 122, 100 },
                                            .cursor = LoadCursorA(nullptr, c.class_cursor) });
        ShowWindow(window.get(), SW_SHOW);
        heard_at(c.point);
        EXPECT_EQ(screen_->look(surface_of(window.get()))->cursor, c.expected);
        heard_at({ 900, 700 });
    }
}

TEST_F(Input, OfKeysGoesToTheFocus)
{
    std::string typed;
    const TestWindow window(journal_, { .handlers = { { WM_CHAR, [&](HWND, WPARAM character, LPARAM) {
                                                           typed += static_cast<char>(character);
                                                           return 0;
                                                       } } } });
    const TestWindow child(journal_, child_of(window.get(), "child", { 0, 0, 9, 9 }));
    show(window);
    journal_.keep_only({ WM_KEYDOWN, WM_KEYUP, WM_SETFOCUS, WM_KILLFOCUS });
    screen_->press_key('A', "a");
    screen_->press_key('Z', "\xE5\xAE\x89"); // two bytes in code page 936
    screen_->release_key('A');
    run_queue();
    EXPECT_EQ(typed, "a\xB0\xB2");
    EXPECT_TRUE(GetKeyState('Z') & 0x8000);
    EXPECT_EQ(SetFocus(child.get()), window.get());
    screen_->release_key('Z');
    run_queue();
    EXPECT_EQ(journal_.take(), "KEYDOWN KEYDOWN KEYUP KILLFOCUS child:SETFOCUS child:KEYUP");
    SetFocus(window.get());
    journal_.keep_only({ WM_SYSKEYDOWN, WM_SYSCOMMAND, WM_CLOSE });
    screen_->press_key(VK_MENU);
    screen_->press_key(VK_F4);
    run_queue();
    EXPECT_EQ(journal_.take(), "SYSKEYDOWN SYSKEYDOWN SYSCOMMAND CLOSE");
    EXPECT_FALSE(IsWindow(window.get()));
}

TEST_F(Input, DoesNotMoveAWindowWithoutAHeldButtonOrAgainstACapture)
{
    const TestWindow window(journal_, { .style = WS_POPUP | WS_CAPTION });
    ShowWindow(window.get(), SW_SHOW);
    journal_.keep_only({ WM_ENTERSIZEMOVE });
    SendMessageA(window.get(), WM_NCLBUTTONDOWN, HTCAPTION, 0);
    screen_->move_pointer({ 50, 60 });
    screen_->press(kLeftButton);
    run_queue();
    SetCapture(window.get());
    SendMessageA(window.get(), WM_NCLBUTTONDOWN, HTCAPTION, 0);
    EXPECT_EQ(journal_.take(), "");
    EXPECT_EQ(GetCapture(), window.get());
}

TEST_F(Input, FollowsTheDesktop)
{
    const TestWindow window(journal_, {});
    show(window);
    const win32::SurfaceId surface = surface_of(window.get());
    journal_.keep_only({ WM_MOVE, WM_SIZE, WM_NCACTIVATE, WM_SYSCOMMAND, WM_CLOSE, WM_WINDOWPOSCHANGING });
    screen_->place_from_outside(surface, { 40, 50, 240, 250 });
    run_queue();
    EXPECT_EQ(journal_.take(), "MOVE SIZE");
    EXPECT_EQ(rect_of(window.get()), (RECT{ 40, 50, 240, 250 }));
    screen_->press_key('A');
    run_queue();
    screen_->focus(0);
    run_queue();
    EXPECT_EQ(GetActiveWindow(), nullptr);
    EXPECT_EQ(GetForegroundWindow(), nullptr);
    screen_->focus(surface);
    run_queue();
    EXPECT_EQ(GetActiveWindow(), window.get());
    EXPECT_FALSE(GetKeyState('A') & 0x8000) << "who was away knows no keys";
    EXPECT_EQ(journal_.take(), "NCACTIVATE NCACTIVATE");
    screen_->set_state_from_outside(surface, win32::SurfaceState::minimised);
    run_queue();
    EXPECT_TRUE(IsIconic(window.get()));
    screen_->set_state_from_outside(surface, win32::SurfaceState::normal);
    run_queue();
    EXPECT_FALSE(IsIconic(window.get()));
    journal_.take();
    screen_->request_close(surface);
    run_queue();
    EXPECT_EQ(journal_.take(), "SYSCOMMAND CLOSE WINDOWPOSCHANGING");
    EXPECT_FALSE(IsWindow(window.get()));
}

} // namespace
} // namespace test
