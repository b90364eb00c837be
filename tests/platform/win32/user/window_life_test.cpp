// How windows come and go, and in which order they hear of it.
#include "tests/platform/win32/user/user_support.h"

namespace test {
namespace {

using Entries = std::vector<std::string>;

class Windows : public UserTest {};

TEST_F(Windows, AreBornInTheDocumentedOrder)
{
    const TestWindow window(journal_, {});
    EXPECT_EQ(journal_.take(), (Entries{ "w NCCREATE", "w NCCALCSIZE", "w CREATE", "w SIZE", "w MOVE" }));
    ShowWindow(window.get(), SW_SHOW);
    EXPECT_EQ(journal_.take(), (Entries{ "w SHOWWINDOW", "w WINDOWPOSCHANGING", "w ACTIVATEAPP", "w NCACTIVATE",
                                         "w ACTIVATE", "w SETFOCUS", "w WINDOWPOSCHANGED" }));
    EXPECT_EQ(GetActiveWindow(), window.get());
    EXPECT_EQ(GetFocus(), window.get());
    EXPECT_TRUE(screen_->look(surface_of(window.get()))->visible);
    ShowWindow(window.get(), SW_HIDE);
    EXPECT_EQ(journal_.take(), (Entries{ "w SHOWWINDOW", "w WINDOWPOSCHANGING", "w NCACTIVATE", "w ACTIVATE",
                                         "w KILLFOCUS", "w ACTIVATEAPP", "w WINDOWPOSCHANGED" }));
    EXPECT_EQ(GetActiveWindow(), nullptr);
}

struct RefusalCase {
    const char* why;
    UINT message;
    LRESULT answer;
    Entries expected;
};

TEST_F(Windows, DoNotLiveWhenTheyRefuseBirth)
{
    const RefusalCase kCases[] = {
        { "WM_NCCREATE answers FALSE", WM_NCCREATE, FALSE, { "w NCCREATE", "w NCDESTROY" } },
        { "WM_CREATE answers -1",
          WM_CREATE,
          -1,
          { "w NCCREATE", "w NCCALCSIZE", "w CREATE", "w DESTROY", "w NCDESTROY" } },
    };
    for (const RefusalCase& c : kCases) {
        SCOPED_TRACE(c.why);
        HWND seen = nullptr;
        const TestWindow window(journal_, { .handlers = { { c.message, [&](HWND handle, WPARAM, LPARAM) {
                                                               seen = handle;
                                                               return c.answer;
                                                           } } } });
        EXPECT_EQ(window.get(), nullptr);
        EXPECT_EQ(journal_.take(), c.expected);
        EXPECT_FALSE(IsWindow(seen));
        EXPECT_TRUE(screen_->stack().empty());
    }
}

TEST_F(Windows, GoWithTheirChildrenAndTheWindowsTheyOwn)
{
    const TestWindow owner(journal_, { .name = "owner" });
    const TestWindow owned(journal_, { .name = "owned", .parent = owner.get() });
    const TestWindow child(journal_, { .name = "child", .style = WS_CHILD, .parent = owner.get() });
    const TestWindow inner(journal_, { .name = "inner", .style = WS_CHILD, .parent = child.get() });
    journal_.take();
    journal_.keep_only({ WM_DESTROY, WM_NCDESTROY });
    EXPECT_EQ(GetParent(owned.get()), owner.get());
    EXPECT_TRUE(DestroyWindow(owner.get()));
    EXPECT_EQ(journal_.take(), (Entries{ "owned DESTROY", "owned NCDESTROY", "owner DESTROY", "child DESTROY",
                                         "inner DESTROY", "inner NCDESTROY", "child NCDESTROY", "owner NCDESTROY" }));
    for (const HWND gone : { owner.get(), owned.get(), child.get(), inner.get() })
        EXPECT_FALSE(IsWindow(gone));
    EXPECT_TRUE(screen_->stack().empty());
    EXPECT_FALSE(DestroyWindow(owner.get()));
}

struct PlaceCase {
    const char* why;
    RECT place;
    HWND after;
    UINT flags;
    Entries expected;
    RECT expected_rect;
};

TEST_F(Windows, HearWhatSetWindowPosChanges)
{
    constexpr UINT kQuiet = SWP_NOZORDER | SWP_NOACTIVATE;
    const PlaceCase kCases[] = {
        { "moved",
          { 5, 6, 0, 0 },
          HWND_TOP,
          SWP_NOSIZE | kQuiet,
          { "w WINDOWPOSCHANGING", "w WINDOWPOSCHANGED", "w MOVE" },
          { 5, 6, 105, 86 } },
        { "sized",
          { 0, 0, 50, 60 },
          HWND_TOP,
          SWP_NOMOVE | kQuiet,
          { "w WINDOWPOSCHANGING", "w NCCALCSIZE", "w WINDOWPOSCHANGED", "w SIZE" },
          { 10, 20, 60, 80 } },
        { "both",
          { 1, 2, 3, 4 },
          HWND_TOP,
          kQuiet,
          { "w WINDOWPOSCHANGING", "w NCCALCSIZE", "w WINDOWPOSCHANGED", "w MOVE", "w SIZE" },
          { 1, 2, 4, 6 } },
        { "nothing", { 10, 20, 100, 80 }, HWND_TOP, kQuiet, { "w WINDOWPOSCHANGING" }, { 10, 20, 110, 100 } },
        { "frame",
          {},
          HWND_TOP,
          SWP_NOMOVE | SWP_NOSIZE | SWP_FRAMECHANGED | kQuiet,
          { "w WINDOWPOSCHANGING", "w NCCALCSIZE", "w WINDOWPOSCHANGED" },
          { 10, 20, 110, 100 } },
        { "not asked before",
          { 5, 6, 0, 0 },
          HWND_TOP,
          SWP_NOSIZE | SWP_NOSENDCHANGING | kQuiet,
          { "w WINDOWPOSCHANGED", "w MOVE" },
          { 5, 6, 105, 86 } },
        { "a negative size is none",
          { 0, 0, -7, 5 },
          HWND_TOP,
          SWP_NOMOVE | kQuiet,
          { "w WINDOWPOSCHANGING", "w NCCALCSIZE", "w WINDOWPOSCHANGED", "w SIZE" },
          { 10, 20, 10, 25 } },
        { "shown without activation",
          {},
          HWND_TOP,
          SWP_NOMOVE | SWP_NOSIZE | SWP_SHOWWINDOW | kQuiet,
          { "w WINDOWPOSCHANGING", "w WINDOWPOSCHANGED" },
          { 10, 20, 110, 100 } },
    };
    for (const PlaceCase& c : kCases) {
        SCOPED_TRACE(c.why);
        const TestWindow window(journal_, {});
        journal_.keep_only({});
        journal_.take();
        EXPECT_TRUE(
            SetWindowPos(window.get(), c.after, c.place.left, c.place.top, c.place.right, c.place.bottom, c.flags));
        EXPECT_EQ(journal_.take(), c.expected);
        RECT rect{};
        GetWindowRect(window.get(), &rect);
        EXPECT_TRUE(EqualRect(&rect, &c.expected_rect))
            << rect.left << ',' << rect.top << ',' << rect.right << ',' << rect.bottom;
        EXPECT_NE(surface_of(window.get()), 0) << "the surface is elsewhere";
    }
}

TEST_F(Windows, KeepTheirOrder)
{
    const TestWindow parent(journal_, { .name = "parent" });
    const TestWindow first(journal_, { .name = "first", .style = WS_CHILD, .parent = parent.get(), .id = 7 });
    const TestWindow second(journal_, { .name = "second", .style = WS_CHILD, .parent = parent.get(), .id = 8 });
    EXPECT_EQ(GetWindow(parent.get(), GW_CHILD), first.get());
    EXPECT_EQ(GetWindow(first.get(), GW_HWNDNEXT), second.get());
    EXPECT_EQ(GetDlgItem(parent.get(), 8), second.get());
    SetWindowPos(second.get(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    EXPECT_EQ(GetTopWindow(parent.get()), second.get());
    SetWindowPos(second.get(), first.get(), 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    EXPECT_EQ(GetWindow(second.get(), GW_HWNDPREV), first.get());

    const TestWindow topmost(journal_, { .name = "topmost", .ex_style = WS_EX_TOPMOST, .rect = { 0, 0, 7, 7 } });
    const TestWindow plain(journal_, { .name = "plain", .rect = { 0, 0, 9, 9 } });
    EXPECT_EQ(GetTopWindow(nullptr), topmost.get());
    SetWindowPos(plain.get(), HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    EXPECT_EQ(GetTopWindow(nullptr), plain.get());
    EXPECT_TRUE(GetWindowLongA(plain.get(), GWL_EXSTYLE) & WS_EX_TOPMOST);
    EXPECT_TRUE(screen_->look(surface_of(plain.get()))->traits.topmost);
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

TEST_F(Windows, AreSubclassedByTheirProcedure)
{
    const TestWindow window(journal_, {});
    const auto before =
        reinterpret_cast<WNDPROC>(SetWindowLongPtrA(window.get(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&answer_7)));
    EXPECT_EQ(SendMessageA(window.get(), WM_USER, 0, 0), 7);
    EXPECT_EQ(CallWindowProcA(before, window.get(), WM_USER, 0, 0), 0);
    SetWindowLongPtrA(window.get(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(before));
}

TEST_F(Windows, NeedARegisteredClassAndAParent)
{
    WNDCLASSA window_class{};
    window_class.lpfnWndProc = answer_7;
    window_class.lpszClassName = "Plain";
    EXPECT_NE(RegisterClassA(&window_class), 0);
    EXPECT_EQ(RegisterClassA(&window_class), 0);
    EXPECT_EQ(GetLastError(), ERROR_CLASS_ALREADY_EXISTS);
    EXPECT_EQ(CreateWindowExA(0, "Unknown", "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_CANNOT_FIND_WND_CLASS);
    EXPECT_EQ(CreateWindowExA(0, "plain", "", WS_CHILD, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr), nullptr);
    const HWND window = CreateWindowExA(0, "PLAIN", "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
    EXPECT_NE(window, nullptr);
    EXPECT_FALSE(UnregisterClassA("Plain", nullptr));
    DestroyWindow(window);
    EXPECT_TRUE(UnregisterClassA("Plain", nullptr));
}

TEST_F(Windows, MinimiseMaximiseAndComeBack)
{
    const TestWindow window(journal_, {});
    ShowWindow(window.get(), SW_SHOW);
    journal_.take();
    journal_.keep_only({ WM_SIZE });
    SendMessageA(window.get(), WM_SYSCOMMAND, SC_MINIMIZE, 0);
    EXPECT_TRUE(IsIconic(window.get()));
    EXPECT_EQ(screen_->look(surface_of(window.get()))->state, win32::SurfaceState::minimised);
    SendMessageA(window.get(), WM_SYSCOMMAND, SC_RESTORE, 0);
    EXPECT_FALSE(IsIconic(window.get()));
    SendMessageA(window.get(), WM_SYSCOMMAND, SC_MAXIMIZE, 0);
    EXPECT_TRUE(IsZoomed(window.get()));
    RECT rect{};
    RECT work{};
    GetWindowRect(window.get(), &rect);
    SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0);
    EXPECT_TRUE(EqualRect(&rect, &work));
    SendMessageA(window.get(), WM_SYSCOMMAND, SC_RESTORE, 0);
    GetWindowRect(window.get(), &rect);
    const RECT before{ 10, 20, 110, 100 };
    EXPECT_TRUE(EqualRect(&rect, &before));
    EXPECT_EQ(journal_.take(), (Entries{ "w SIZE", "w SIZE", "w SIZE", "w SIZE" }));
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
        RECT rect{};
        GetWindowRect(window.get(), &rect);
        EXPECT_TRUE(EqualRect(&rect, &c.maximised))
            << rect.left << ',' << rect.top << ',' << rect.right << ',' << rect.bottom;
        ShowWindow(window.get(), SW_MINIMIZE);
        EXPECT_FALSE(IsZoomed(window.get()));
        ShowWindow(window.get(), SW_RESTORE);
        EXPECT_TRUE(IsZoomed(window.get())); // back to what it was
    }
}

} // namespace
} // namespace test
