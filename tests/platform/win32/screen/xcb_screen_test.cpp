// What only an X server has: window managers and their messages.
#include "tests/platform/win32/screen/stage.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <csignal>
#include <cstdlib>
#include <random>

#include <unistd.h>
#include <xcb/shape.h>

namespace win32 {
namespace {

using test::add_surface;
using test::paint;

constexpr std::uint32_t kRed = 0xC02030;
constexpr std::uint32_t kGreen = 0x20C030;
constexpr RECT kBounds{ 200, 150, 500, 350 };

TEST(XcbScreen, AnswersThePingOfAWindowManager)
{
    test::XStage stage;
    const SurfaceId surface = add_surface(stage.screen(), kBounds, kRed);
    stage.expect_pixel(200, 150, kRed);
    test::XPerson& person = stage.person();
    const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(person.connection(), person.root(), XCB_CW_EVENT_MASK, &events);
    person.send_protocol(surface, "_NET_WM_PING");
    EXPECT_TRUE(stage.turn_until([&] {
        const Reply<xcb_generic_event_t> event(xcb_poll_for_event(person.connection()));
        if (!event || (event->response_type & 0x7F) != XCB_CLIENT_MESSAGE)
            return false;
        const auto* message = reinterpret_cast<const xcb_client_message_event_t*>(event.get());
        return message->window == person.root() && message->data.data32[1] == 4711;
    }));
}

TEST(XcbScreen, TellsOnlyOfPlacingsThatOthersDid)
{
    test::XStage stage;
    const SurfaceId surface = add_surface(stage.screen(), kBounds, kRed);
    for (LONG x = 0; x < 40; x++)
        stage.screen().place(surface, moved(kBounds, x, x));
    stage.expect_pixel(239, 189, kRed);
    stage.person().move_window(surface, 10, 20);
    EXPECT_EQ(stage.wait_for(EventKind::placed).bounds, moved(kBounds, 10 - kBounds.left, 20 - kBounds.top));
    EXPECT_FALSE(stage.has(EventKind::placed));
}

TEST(XcbScreen, AsksToCloseAWindowThatOthersDestroyed)
{
    test::XStage stage;
    const SurfaceId surface = add_surface(stage.screen(), kBounds, kRed);
    stage.expect_pixel(200, 150, kRed);
    xcb_destroy_window(stage.person().connection(), surface);
    xcb_flush(stage.person().connection());
    EXPECT_EQ(stage.wait_for(EventKind::close_request).surface, surface);
}

TEST(XcbScreen, ReadsKeysAsTheirModifiersSay)
{
    test::XStage stage;
    add_surface(stage.screen(), kBounds, kRed);
    stage.wait_for(EventKind::focus_in);
    constexpr xcb_keysym_t kShiftKey = 0xFFE1, kControlKey = 0xFFE3, kCapsLock = 0xFFE5;
    const std::pair<xcb_keysym_t, const char*> held[] = {
        { kShiftKey, "A" }, { kControlKey, "" }, { kCapsLock, "A" }, { kShiftKey, "a" } // the lock stays
    };
    for (const auto& [modifier, text] : held) {
        stage.person().press_key(modifier);
        stage.wait_for(EventKind::key_down);
        stage.type_a();
        EXPECT_EQ(stage.wait_for(EventKind::key_down).text, text);
        stage.person().release_key(modifier);
    }
}

TEST(XcbScreen, TellsTheDesktopWhatASurfaceIs)
{
    test::XStage stage;
    test::XPerson& person = stage.person();
    const SurfaceId owner = add_surface(stage.screen(), kBounds, kRed);
    SurfaceTraits traits;
    traits.owner = owner;
    traits.kind = SurfaceKind::tool_window;
    traits.resizable = true;
    traits.min_size = { 100, 50 };
    const SurfaceId surface = add_surface(stage.screen(), kBounds, kRed, traits);
    std::uint32_t small[] = { 0xFF000001, 0x80000002 };
    std::uint32_t large[] = { 3, 0, 4, 0 };
    std::vector<std::uint32_t> too_large(257);
    const PixelView icons[] = { { small, 2, 1, 2 }, { too_large.data(), 257, 1, 257 }, { large, 1, 2, 2 } };
    stage.screen().set_icons(surface, icons);
    stage.screen().flush();
    const auto shows = [&](const char* property, const std::vector<std::uint32_t>& numbers) {
        EXPECT_TRUE(stage.turn_until([&] { return person.numbers(surface, property) == numbers; }))
            << property << " is " << testing::PrintToString(person.numbers(surface, property));
    };
    shows("_NET_WM_ICON", { 2, 1, 0xFF000001, 0x80000002, 1, 2, 3, 4 });
    shows("WM_TRANSIENT_FOR", { owner });
    shows("_NET_WM_PID", { static_cast<std::uint32_t>(::getpid()) });
    shows("_NET_WM_WINDOW_TYPE",
          { person.atom("_NET_WM_WINDOW_TYPE_UTILITY"), person.atom("_NET_WM_WINDOW_TYPE_NORMAL") });
    // Flags, place, size, least and largest size, and after what is of no use to us the static gravity.
    shows("WM_NORMAL_HINTS", { 0x21C, 200, 150, 300, 200, 100, 50, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 10 });
    traits.owner = 0;
    traits.resizable = false;
    stage.screen().set_traits(surface, traits);
    shows("WM_TRANSIENT_FOR", {});
    shows("WM_NORMAL_HINTS", { 0x23C, 200, 150, 300, 200, 300, 200, 300, 200, 0, 0, 0, 0, 0, 0, 0, 0, 10 });
}

// Two monitors side by side, of which the right one is the user's first, and a panel along the top.
TEST(XcbScreen, KnowsTheWorkAreaOfEachMonitor)
{
    test::XStage stage;
    xcb_connection_t* x = stage.person().connection();
    const xcb_window_t root = stage.person().root();
    const auto add_monitor = [&](const char* name, const char* place, const char* output) {
        const char* const arguments[] = { "xrandr", "--display", stage.server().display(), "--setmonitor", name, place,
                                          output,   nullptr };
        test::Program xrandr;
        EXPECT_TRUE(xrandr.start(arguments) && xrandr.wait() == 0) << name;
    };
    add_monitor("left", "512/130x768/200+0+0", "none");
    add_monitor("*right", "512/130x768/200+512+0", "screen");       // takes the place of the server's own
    const std::uint32_t areas[] = { 0, 0, 0, 0, 0, 30, 1000, 738 }; // of two virtual desktops
    const std::uint32_t desktop = 1;
    xcb_change_property(x, XCB_PROP_MODE_REPLACE, root, stage.person().atom("_NET_WORKAREA"), XCB_ATOM_CARDINAL, 32, 8,
                        areas);
    xcb_change_property(x, XCB_PROP_MODE_REPLACE, root, stage.person().atom("_NET_CURRENT_DESKTOP"), XCB_ATOM_CARDINAL,
                        32, 1, &desktop);
    xcb_flush(x);
    std::vector<Monitor> monitors;
    EXPECT_TRUE(stage.turn_until([&] {
        monitors = stage.screen().monitors();
        return monitors.size() == 2 && monitors[0].work_area.top == 30;
    }));
    ASSERT_EQ(monitors.size(), 2U);
    EXPECT_EQ(monitors[0].bounds, (RECT{ 512, 0, 1024, 768 }));
    EXPECT_EQ(monitors[0].work_area, (RECT{ 512, 30, 1000, 768 }));
    EXPECT_EQ(monitors[1].work_area, (RECT{ 0, 30, 512, 768 }));
}

HRGN random_region(std::mt19937& random)
{
    const auto number = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    const HRGN region = CreateRectRgn(0, 0, 0, 0);
    for (int i = 0; i < 8; i++) {
        const int left = number(300) - 20;
        const int top = number(200) - 20;
        const int right = left + number(150);
        const int bottom = top + number(150);
        const HRGN part =
            number(2) ? CreateEllipticRgn(left, top, right, bottom) : CreateRectRgn(left, top, right, bottom);
        constexpr int kModes[] = { RGN_OR, RGN_XOR, RGN_OR, RGN_DIFF };
        CombineRgn(region, region, part, kModes[number(4)]);
        DeleteObject(part);
    }
    return region;
}

// What the server has cut the window to.
HRGN shape_on_server(test::XPerson& person, xcb_window_t window)
{
    const auto cookie = xcb_shape_get_rectangles(person.connection(), window, XCB_SHAPE_SK_BOUNDING);
    const Reply<xcb_shape_get_rectangles_reply_t> reply(
        xcb_shape_get_rectangles_reply(person.connection(), cookie, nullptr));
    const HRGN shape = CreateRectRgn(0, 0, 0, 0);
    const xcb_rectangle_t* rectangles = xcb_shape_get_rectangles_rectangles(reply.get());
    for (int i = 0; i < xcb_shape_get_rectangles_rectangles_length(reply.get()); i++) {
        const xcb_rectangle_t& r = rectangles[i];
        const HRGN part = CreateRectRgn(r.x, r.y, r.x + r.width, r.y + r.height);
        CombineRgn(shape, shape, part, RGN_OR);
        DeleteObject(part);
    }
    return shape;
}

TEST(XcbScreen, HoldsTheRegionThatAWindowWasGiven)
{
    test::XStage stage;
    set_screen(stage.shared_screen());
    WNDCLASSA plain{};
    plain.lpfnWndProc = DefWindowProcA;
    plain.lpszClassName = "Shaped";
    RegisterClassA(&plain);
    const HWND window =
        CreateWindowExA(0, "Shaped", "", WS_POPUP | WS_VISIBLE, 100, 100, 260, 170, nullptr, nullptr, nullptr, nullptr);
    const Reply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(
        stage.person().connection(), xcb_query_tree(stage.person().connection(), stage.person().root()), nullptr));
    ASSERT_EQ(tree->children_len, 1U);
    const xcb_window_t surface = xcb_query_tree_children(tree.get())[0];
    std::mt19937 random(5);
    const HRGN given = CreateRectRgn(0, 0, 0, 0);
    const HRGN whole = CreateRectRgn(0, 0, 260, 170);
    for (int i = 0; i < 200 && !testing::Test::HasFailure(); i++) {
        const HRGN region = random_region(random);
        CombineRgn(given, region, whole, RGN_AND); // of what lies outside the window nobody can tell
        SetWindowRgn(window, region, FALSE);
        stage.screen().flush();
        EXPECT_TRUE(stage.turn_until([&] {
            const HRGN shape = shape_on_server(stage.person(), surface);
            CombineRgn(shape, shape, whole, RGN_AND);
            const bool same = EqualRgn(shape, given) != FALSE;
            DeleteObject(shape);
            return same;
        })) << "region "
            << i;
    }
    DeleteObject(given);
    DeleteObject(whole);
    DestroyWindow(window);
    set_screen(nullptr);
}

// openbox: it puts every window into a frame of its own, even one that asks for no decorations.
class WithWindowManager : public testing::Test {
protected:
    WithWindowManager()
    {
        ::setenv("DISPLAY", stage.server().display(), 1);
        const char* const arguments[] = { "openbox", "--sm-disable", nullptr };
        const bool started = window_manager.start(arguments);
        ::unsetenv("DISPLAY");
        if (!started || !stage.turn_until([this] { return stage.person().sees_window_manager(); }))
            std::abort(); // scripts/deps.sh installs it
    }

    test::XStage stage;
    test::Program window_manager;
    XcbScreen& screen = stage.screen();
};

TEST_F(WithWindowManager, ShowsTheSurfaceBareWhereItWasAsked)
{
    const SurfaceId surface = add_surface(screen, kBounds, kRed);
    EXPECT_EQ(stage.wait_for(EventKind::focus_in).surface, surface);
    const auto expect_bare_at = [&](LONG left, LONG top) {
        stage.expect_pixel(left, top, kRed);
        stage.expect_pixel(left + 299, top + 199, kRed);
        EXPECT_NE(stage.pixel_at(left - 1, top - 1), kRed);
        EXPECT_EQ(stage.pixel_at(left - 1, top - 1), stage.pixel_at(1000, 20)) << "nobody's frame is around it";
    };
    expect_bare_at(200, 150);
    screen.place(surface, moved(kBounds, 60, 30));
    expect_bare_at(260, 180);
    stage.person().move_window(surface, 50, 60); // the window manager does it, and says where in the screen
    EXPECT_EQ(stage.wait_for(EventKind::placed).bounds, moved(kBounds, 50 - 200, 60 - 150));
    expect_bare_at(50, 60);
    EXPECT_FALSE(stage.has(EventKind::placed));
}

TEST_F(WithWindowManager, MinimisesMaximisesAndRestores)
{
    for (const bool resizable : { true, false }) {
        SCOPED_TRACE(resizable ? "resizable" : "of a fixed size");
        SurfaceTraits traits;
        traits.resizable = resizable;
        const SurfaceId surface = add_surface(screen, kBounds, kRed, traits);
        stage.wait_for(EventKind::focus_in);
        stage.expect_pixel(200, 150, kRed);

        screen.set_state(surface, SurfaceState::minimised);
        EXPECT_EQ(stage.wait_for(EventKind::state).state, SurfaceState::minimised);
        screen.set_state(surface, SurfaceState::normal);
        EXPECT_EQ(stage.wait_for(EventKind::state).state, SurfaceState::normal);
        stage.expect_pixel(200, 150, kRed);

        const RECT work_area = screen.monitors().front().work_area;
        screen.set_state(surface, SurfaceState::maximised);
        EXPECT_TRUE(stage.turn_until([&] { return screen.pixels(surface).width == width_of(work_area); }));
        EXPECT_EQ(stage.wait_for(EventKind::state).state, SurfaceState::maximised);
        paint(screen, surface, kGreen);
        stage.expect_pixel(work_area.right - 1, work_area.bottom - 1, kGreen);
        screen.set_state(surface, SurfaceState::normal);
        EXPECT_EQ(stage.wait_for(EventKind::state).state, SurfaceState::normal);
        EXPECT_TRUE(stage.turn_until([&] { return screen.pixels(surface).width == width_of(kBounds); }));
        stage.expect_pixel(200, 150, kGreen);
        screen.destroy(surface);
        stage.events.clear();
    }
}

TEST_F(WithWindowManager, OutlivesIt)
{
    const SurfaceId first = add_surface(screen, kBounds, kRed);
    EXPECT_EQ(stage.wait_for(EventKind::focus_in).surface, first);
    window_manager.end(SIGKILL);
    stage.expect_pixel(200, 150, kRed);
    const SurfaceId second = add_surface(screen, { 0, 0, 50, 50 }, kGreen);
    EXPECT_EQ(stage.wait_for(EventKind::focus_in).surface, second); // by our own hand now
    screen.activate(first);
    EXPECT_EQ(stage.wait_for(EventKind::focus_in).surface, first);
    for (const ScreenEvent& event : stage.events)
        EXPECT_NE(event.kind, EventKind::state) << "a frame that is gone minimises nothing";
}

} // namespace
} // namespace win32
