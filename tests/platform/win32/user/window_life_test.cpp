// How windows come and go, and in which order they hear of it.
#include "tests/platform/win32/user/user_support.h"

namespace test {
namespace {

class Windows : public UserTest {};

TEST_F(Windows, AreBornInTheDocumentedOrder)
{
    const TestWindow window(journal_, {});
    EXPECT_EQ(journal_.take(), "NCCREATE NCCALCSIZE CREATE SIZE MOVE");
    ShowWindow(window.get(), SW_SHOW);
    EXPECT_EQ(journal_.take(),
              "SHOWWINDOW WINDOWPOSCHANGING ACTIVATEAPP NCACTIVATE ACTIVATE SETFOCUS WINDOWPOSCHANGED");
    EXPECT_EQ(GetActiveWindow(), window.get());
    EXPECT_EQ(GetFocus(), window.get());
    EXPECT_TRUE(screen_->look(surface_of(window.get()))->visible);
    ShowWindow(window.get(), SW_HIDE);
    EXPECT_EQ(journal_.take(),
              "SHOWWINDOW WINDOWPOSCHANGING NCACTIVATE ACTIVATE KILLFOCUS ACTIVATEAPP WINDOWPOSCHANGED");
    EXPECT_EQ(GetActiveWindow(), nullptr);
}

struct RefusalCase {
    UINT message;
    LRESULT answer;
    const char* expected;
};

TEST_F(Windows, DoNotLiveWhenTheyRefuseBirth)
{
    const RefusalCase kCases[] = {
        { WM_NCCREATE, FALSE, "NCCREATE NCDESTROY" },
        { WM_CREATE, -1, "NCCREATE NCCALCSIZE CREATE DESTROY NCDESTROY" },
    };
    for (const RefusalCase& c : kCases) {
        SCOPED_TRACE(message_name(c.message));
        const TestWindow window(journal_, { .handlers = { { c.message, answering(c.answer) } } });
        EXPECT_EQ(window.get(), nullptr);
        EXPECT_EQ(journal_.take(), c.expected);
        EXPECT_TRUE(screen_->stack().empty());
    }
}

TEST_F(Windows, GoWithTheirChildrenAndTheWindowsTheyOwn)
{
    const TestWindow owner(journal_, { .name = "owner" });
    const TestWindow owned(journal_, { .name = "owned", .parent = owner.get() });
    const TestWindow child(journal_, child_of(owner.get(), "child", { 0, 0, 9, 9 }));
    const TestWindow inner(journal_, child_of(child.get(), "inner", { 0, 0, 9, 9 }));
    EXPECT_NE(journal_.take().find("child:CREATE child:SIZE child:MOVE owner:PARENTNOTIFY"), std::string::npos);
    journal_.keep_only({ WM_DESTROY, WM_NCDESTROY });
    EXPECT_EQ(GetParent(owned.get()), owner.get());
    EXPECT_TRUE(DestroyWindow(owner.get()));
    EXPECT_EQ(journal_.take(), "owned:DESTROY owned:NCDESTROY owner:DESTROY child:DESTROY inner:DESTROY "
                               "inner:NCDESTROY child:NCDESTROY owner:NCDESTROY");
    for (const HWND gone : { owner.get(), owned.get(), child.get(), inner.get() })
        EXPECT_FALSE(IsWindow(gone));
    EXPECT_TRUE(screen_->stack().empty());
    EXPECT_FALSE(DestroyWindow(owner.get()));
}

TEST_F(Windows, LeaveTheirActivityToTheirOwner)
{
    const TestWindow owner(journal_, {});
    const TestWindow owned(journal_, { .parent = owner.get() });
    const TestWindow other(journal_, {});
    for (const TestWindow* each : { &owner, &other, &owned })
        show(*each);
    SetWindowPos(other.get(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    DestroyWindow(owned.get());
    EXPECT_EQ(GetActiveWindow(), owner.get());
}

struct PlaceCase {
    const char* why;
    RECT place; // left, top, width, height
    UINT flags;
    const char* expected;
    RECT expected_rect;
};

TEST_F(Windows, HearWhatSetWindowPosChanges)
{
    constexpr UINT kStay = SWP_NOMOVE | SWP_NOSIZE;
    const PlaceCase kCases[] = {
        { "moved", { 5, 6, 0, 0 }, SWP_NOSIZE, "WINDOWPOSCHANGING WINDOWPOSCHANGED MOVE", { 5, 6, 105, 86 } },
        { "both", { 1, 2, 3, 4 }, 0, "WINDOWPOSCHANGING NCCALCSIZE WINDOWPOSCHANGED MOVE SIZE", { 1, 2, 4, 6 } },
        { "nothing", { 10, 20, 100, 80 }, 0, "WINDOWPOSCHANGING", { 10, 20, 110, 100 } },
        { "frame",
          {},
          kStay | SWP_FRAMECHANGED,
          "WINDOWPOSCHANGING NCCALCSIZE WINDOWPOSCHANGED",
          { 10, 20, 110, 100 } },
        { "not asked before",
          { 5, 6, 0, 0 },
          SWP_NOSIZE | SWP_NOSENDCHANGING,
          "WINDOWPOSCHANGED MOVE",
          { 5, 6, 105, 86 } },
        { "a negative size is none",
          { 0, 0, -7, 5 },
          SWP_NOMOVE,
          "WINDOWPOSCHANGING NCCALCSIZE WINDOWPOSCHANGED SIZE",
          { 10, 20, 10, 25 } },
        { "shown", {}, kStay | SWP_SHOWWINDOW, "WINDOWPOSCHANGING WINDOWPOSCHANGED", { 10, 20, 110, 100 } },
    };
    for (const PlaceCase& c : kCases) {
        SCOPED_TRACE(c.why);
        const TestWindow window(journal_, {});
        journal_.take();
        EXPECT_TRUE(SetWindowPos(window.get(), nullptr, c.place.left, c.place.top, c.place.right, c.place.bottom,
                                 c.flags | SWP_NOZORDER | SWP_NOACTIVATE));
        EXPECT_EQ(journal_.take(), c.expected);
        EXPECT_EQ(rect_of(window.get()), c.expected_rect);
        EXPECT_NE(surface_of(window.get()), 0) << "the surface is elsewhere";
    }
}

TEST_F(Windows, RememberWhatTheyAreGiven)
{
    const TestWindow window(journal_, { .name = "\xB0\xB2\xD7\xB0" }); // two characters of code page 936
    EXPECT_EQ(screen_->look(surface_of(window.get()))->traits.title, "\xE5\xAE\x89\xE8\xA3\x85");
    char text[16];
    EXPECT_EQ(GetWindowTextA(window.get(), text, 3), 2);
    EXPECT_STREQ(text, "\xB0\xB2");
    EXPECT_EQ(GetWindowTextLengthA(window.get()), 4);
    SetWindowTextA(window.get(), "Setup");
    EXPECT_EQ(screen_->look(surface_of(window.get()))->traits.title, "Setup");
    EXPECT_EQ(FindWindowA(nullptr, "Setup"), window.get());

    EXPECT_EQ(SetWindowLongPtrA(window.get(), sizeof(LONG_PTR), 5), 0);
    EXPECT_EQ(GetWindowLongPtrA(window.get(), sizeof(LONG_PTR)), 5);
    EXPECT_EQ(SetWindowLongPtrA(window.get(), 2 * sizeof(LONG_PTR) - 1, 5), 0);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(GetWindowLongPtrA(reinterpret_cast<HWND>(4), GWL_STYLE), 0);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_WINDOW_HANDLE);
}

LRESULT CALLBACK answer_7(HWND, UINT, WPARAM, LPARAM)
{
    return 7;
}

TEST_F(Windows, NeedARegisteredClassAndAParent)
{
    const auto create = [](LPCSTR class_name, DWORD style) {
        return CreateWindowExA(0, class_name, "", style, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
    };
    WNDCLASSA window_class{};
    window_class.lpfnWndProc = DefWindowProcA;
    window_class.lpszClassName = "Plain";
    EXPECT_NE(RegisterClassA(&window_class), 0);
    EXPECT_EQ(RegisterClassA(&window_class), 0);
    EXPECT_EQ(GetLastError(), ERROR_CLASS_ALREADY_EXISTS);
    EXPECT_EQ(create("Unknown", WS_POPUP), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_CANNOT_FIND_WND_CLASS);
    EXPECT_EQ(create("plain", WS_CHILD), nullptr);
    const HWND window = create("PLAIN", WS_POPUP);
    ASSERT_NE(window, nullptr);
    const LONG_PTR before = SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&answer_7));
    EXPECT_EQ(before, reinterpret_cast<LONG_PTR>(&DefWindowProcA));
    EXPECT_EQ(SendMessageA(window, WM_USER, 0, 0), 7);
    SetWindowLongPtrA(window, GWLP_WNDPROC, before);
    EXPECT_FALSE(UnregisterClassA("Plain", nullptr));
    DestroyWindow(window);
    EXPECT_TRUE(UnregisterClassA("Plain", nullptr));
}

TEST_F(Windows, MinimiseMaximiseAndComeBack)
{
    const TestWindow window(journal_, {});
    ShowWindow(window.get(), SW_SHOW);
    MoveWindow(window.get(), 11, 22, 100, 80, TRUE);
    journal_.keep_only({ WM_SIZE });
    const auto command = [&](WPARAM which) { SendMessageA(window.get(), WM_SYSCOMMAND, which, 0); };
    command(SC_MINIMIZE);
    EXPECT_TRUE(IsIconic(window.get()));
    EXPECT_EQ(screen_->look(surface_of(window.get()))->state, win32::SurfaceState::minimised);
    command(SC_RESTORE);
    EXPECT_FALSE(IsIconic(window.get()));
    command(SC_MAXIMIZE);
    EXPECT_TRUE(IsZoomed(window.get()));
    RECT work{};
    SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0);
    EXPECT_EQ(rect_of(window.get()), work);
    command(SC_RESTORE);
    EXPECT_EQ(rect_of(window.get()), (RECT{ 11, 22, 111, 102 }));
    EXPECT_EQ(journal_.take(), "SIZE SIZE SIZE SIZE");
}

struct MonitorCase {
    const char* why;
    RECT place;
    RECT maximised;
};

TEST_F(Windows, AreMaximisedOnTheirMonitor)
{
    const MonitorCase kCases[] = {
        { "the primary one, beneath its panel", { 10, 40, 200, 200 }, { -4, 26, 804, 604 } },
        { "the one that shows most of it", { 790, 40, 1000, 200 }, { 796, -4, 1804, 704 } },
    };
    screen_->set_monitors(
        { { { 0, 0, 800, 600 }, { 0, 30, 800, 600 }, true }, { { 800, 0, 1800, 700 }, { 800, 0, 1800, 700 }, false } });
    for (const MonitorCase& c : kCases) {
        SCOPED_TRACE(c.why);
        const TestWindow window(journal_, { .style = WS_OVERLAPPEDWINDOW, .rect = c.place });
        ShowWindow(window.get(), SW_SHOWMAXIMIZED);
        EXPECT_EQ(rect_of(window.get()), c.maximised);
        ShowWindow(window.get(), SW_MINIMIZE);
        EXPECT_FALSE(IsZoomed(window.get()));
        ShowWindow(window.get(), SW_RESTORE);
        EXPECT_TRUE(IsZoomed(window.get())); // back to what it was
    }
}

} // namespace
} // namespace test
