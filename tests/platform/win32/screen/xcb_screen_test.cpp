// What only an X server has: window managers and their messages.
#include "tests/platform/win32/screen/stage.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>

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
