// What code above the seam relies on, run over both screens.
#include "tests/platform/win32/screen/stage.h"

#include <gtest/gtest.h>

#include <atomic>
#include <map>
#include <thread>

namespace win32 {
namespace {

using test::add_surface;
using test::kKeyA;
using test::MemoryStage;
using test::paint;
using test::Stage;
using test::traits_of;
using test::XStage;

constexpr std::uint32_t kRed = 0xC02030;
constexpr std::uint32_t kGreen = 0x20C030;
constexpr std::uint32_t kBlue = 0x2030C0;

const std::map<std::string, std::function<std::unique_ptr<Stage>()>> kStages = {
    { "Memory", [] { return std::make_unique<MemoryStage>(); } },
    { "X", [] { return std::make_unique<XStage>(); } },
    { "XWithoutSharedMemory", // a server that may not map our memory
      [] {
          auto stage = std::make_unique<XStage>();
          stage->screen().stop_sharing_memory();
          return stage;
      } },
};

class ScreenContract : public testing::TestWithParam<std::string> {
protected:
    const std::unique_ptr<Stage> stage_ = kStages.at(GetParam())();
    Stage& stage = *stage_;
    Screen& screen = stage.screen();
};
INSTANTIATE_TEST_SUITE_P(Screens, ScreenContract, testing::Values("Memory", "X", "XWithoutSharedMemory"),
                         [](const auto& stage) { return stage.param; });

TEST_P(ScreenContract, ShowsTheDamagedRectangleOnly)
{
    const SurfaceId surface = add_surface(screen, { 100, 50, 300, 150 }, kRed);
    stage.expect_pixel(100, 50, kRed);
    stage.expect_pixel(299, 149, kRed);
    const PixelView view = screen.pixels(surface);
    test::fill(view, kGreen);
    view.pixels[static_cast<std::ptrdiff_t>(15) * view.stride + 17] = kBlue;
    screen.present(surface, { 10, 10, 20, 20 });
    stage.expect_pixel(110, 60, kGreen);
    stage.expect_pixel(117, 65, kBlue);
    stage.expect_pixel(119, 69, kGreen);
    stage.expect_pixel(120, 69, kRed);
    stage.expect_pixel(109, 60, kRed);
}

TEST_P(ScreenContract, KeepsPixelsWhileItMovesAndGrows)
{
    const SurfaceId surface = add_surface(screen, { 100, 100, 200, 200 }, kRed);
    screen.place(surface, { 150, 120, 450, 420 });
    const PixelView view = screen.pixels(surface);
    ASSERT_EQ(view.width, 300);
    ASSERT_EQ(view.height, 300);
    EXPECT_EQ(view.pixels[static_cast<std::ptrdiff_t>(99) * view.stride + 99], kRed);
    EXPECT_EQ(view.pixels[static_cast<std::ptrdiff_t>(99) * view.stride + 100], 0U);
    stage.expect_pixel(150, 120, kRed);
    stage.expect_pixel(260, 120, 0);
    paint(screen, surface, kGreen);
    for (int y = 120; y < 420 && !HasFailure(); y++)
        stage.expect_pixel(449, y, kGreen);
}

TEST_P(ScreenContract, ShowsWhatIsUncoveredWithoutBeingAsked)
{
    const SurfaceId lower = add_surface(screen, { 100, 100, 200, 200 }, kRed);
    stage.expect_pixel(150, 150, kRed);
    const SurfaceId upper = add_surface(screen, { 120, 120, 180, 180 }, kGreen);
    stage.expect_pixel(150, 150, kGreen);
    screen.raise(lower);
    stage.expect_pixel(150, 150, kRed);
    screen.lower(lower);
    stage.expect_pixel(150, 150, kGreen);
    screen.destroy(upper);
    stage.expect_pixel(150, 150, kRed);
    screen.show(lower, false, false);
    screen.show(lower, true, true);
    stage.expect_pixel(150, 150, kRed);
}

TEST_P(ScreenContract, KeepsMenusAboveTopmostAboveOthers)
{
    const SurfaceId menu = add_surface(screen, { 0, 0, 60, 60 }, kBlue, traits_of(SurfaceKind::menu));
    add_surface(screen, { 0, 0, 120, 120 }, kGreen, traits_of(SurfaceKind::window, true));
    const SurfaceId plain = add_surface(screen, { 0, 0, 180, 180 }, kRed);
    screen.raise(plain);
    stage.expect_pixel(150, 150, kRed);
    stage.expect_pixel(90, 90, kGreen);
    stage.expect_pixel(30, 30, kBlue);
    add_surface(screen, { 0, 0, 30, 30 }, kGreen, traits_of(SurfaceKind::tool_tip));
    stage.expect_pixel(15, 15, kGreen);
    stage.move_pointer(15, 15); // falls through a tip
    EXPECT_EQ(stage.wait_for_move(15, 15).surface, menu);
}

TEST_P(ScreenContract, CutsSurfacesToTheirShape)
{
    const SurfaceId lower = add_surface(screen, { 0, 0, 200, 200 }, kRed);
    const SurfaceId upper = add_surface(screen, { 0, 0, 200, 200 }, kGreen);
    const RECT parts[] = { { 0, 0, 50, 50 }, { 100, 100, 500, 500 } };
    screen.set_shape(upper, std::span(parts));
    stage.expect_pixel(49, 49, kGreen);
    stage.expect_pixel(50, 50, kRed);
    stage.expect_pixel(199, 199, kGreen);
    stage.move_pointer(75, 75);
    EXPECT_EQ(stage.wait_for_move(75, 75).surface, lower);
    stage.move_pointer(25, 25);
    EXPECT_EQ(stage.wait_for_move(25, 25).surface, upper);
    screen.set_shape(upper, std::nullopt);
    stage.expect_pixel(75, 75, kGreen);
}

TEST_P(ScreenContract, TellsOfPointerButtonsAndWheel)
{
    const SurfaceId surface = add_surface(screen, { 100, 100, 200, 200 }, kRed);
    stage.expect_pixel(150, 150, kRed);
    stage.move_pointer(150, 160);
    EXPECT_EQ(stage.wait_for_move(150, 160).surface, surface);
    stage.press();
    const ScreenEvent down = stage.wait_for(EventKind::button_down);
    EXPECT_EQ(down.surface, surface);
    EXPECT_EQ(down.button, kLeftButton);
    EXPECT_EQ(down.buttons, kLeftButton);
    EXPECT_EQ(down.position.y, 160);
    EXPECT_EQ(screen.pointer().buttons, kLeftButton);
    EXPECT_TRUE(screen.key_is_down(1));

    stage.move_pointer(500, 500); // the press holds it
    const ScreenEvent outside = stage.wait_for_move(500, 500);
    EXPECT_EQ(outside.surface, surface);
    EXPECT_EQ(outside.buttons, kLeftButton);
    stage.release();
    const ScreenEvent up = stage.wait_for(EventKind::button_up);
    EXPECT_EQ(up.surface, surface);
    EXPECT_EQ(up.buttons, 0U);
    EXPECT_EQ(stage.wait_for(EventKind::pointer_leave).surface, surface);
    EXPECT_EQ(screen.pointer().position.x, 500);

    stage.move_pointer(110, 110);
    stage.turn_wheel_away();
    const ScreenEvent wheel = stage.wait_for(EventKind::wheel);
    EXPECT_EQ(wheel.surface, surface);
    EXPECT_EQ(wheel.amount, 120);
    stage.move_pointer(500, 500);
    EXPECT_EQ(stage.wait_for(EventKind::pointer_leave).surface, surface);
}

TEST_P(ScreenContract, CapturesThePointerUntilReleased)
{
    const SurfaceId left = add_surface(screen, { 0, 0, 100, 100 }, kRed);
    const SurfaceId right = add_surface(screen, { 100, 0, 200, 100 }, kGreen);
    stage.expect_pixel(150, 50, kGreen);
    EXPECT_FALSE(screen.capture(screen.create({ 0, 0, 9, 9 }, {}))) << "a hidden surface cannot";
    ASSERT_TRUE(screen.capture(left));
    stage.move_pointer(150, 50);
    EXPECT_EQ(stage.wait_for_move(150, 50).surface, left);
    stage.move_pointer(600, 600);
    EXPECT_EQ(stage.wait_for_move(600, 600).surface, left);
    stage.press();
    EXPECT_EQ(stage.wait_for(EventKind::button_down).surface, left);
    stage.release();
    EXPECT_EQ(stage.wait_for(EventKind::button_up).surface, left);
    screen.release_capture();
    (void)screen.pointer(); // its answer comes when the server has let go
    stage.move_pointer(151, 50);
    EXPECT_EQ(stage.wait_for_move(151, 50).surface, right);
}

TEST_P(ScreenContract, SendsKeysToTheActiveSurface)
{
    const SurfaceId first = add_surface(screen, { 0, 0, 100, 100 }, kRed);
    EXPECT_EQ(stage.wait_for(EventKind::focus_in).surface, first);
    const SurfaceId second = add_surface(screen, { 100, 0, 200, 100 }, kGreen);
    EXPECT_EQ(stage.wait_for(EventKind::focus_out).surface, first);
    EXPECT_EQ(stage.wait_for(EventKind::focus_in).surface, second);
    stage.type_a();
    const ScreenEvent down = stage.wait_for(EventKind::key_down);
    EXPECT_EQ(down.surface, second);
    EXPECT_EQ(down.key, kKeyA);
    EXPECT_EQ(down.text, "a");
    EXPECT_EQ(stage.wait_for(EventKind::key_up).key, kKeyA);
    screen.activate(first);
    EXPECT_EQ(stage.wait_for(EventKind::focus_in).surface, first);
    EXPECT_FALSE(screen.key_is_down(kKeyA));
}

TEST_P(ScreenContract, PassesOnTheWishToClose)
{
    const SurfaceId surface = add_surface(screen, { 0, 0, 100, 100 }, kRed);
    screen.flush();
    stage.expect_pixel(50, 50, kRed);
    stage.ask_to_close(surface);
    EXPECT_EQ(stage.wait_for(EventKind::close_request).surface, surface);
}

TEST_P(ScreenContract, MaximisesAndRestores)
{
    const RECT bounds{ 100, 100, 300, 250 };
    const SurfaceId surface = add_surface(screen, bounds, kRed);
    stage.expect_pixel(150, 150, kRed);
    const RECT work_area = screen.monitors().front().work_area;
    screen.set_state(surface, SurfaceState::maximised);
    EXPECT_EQ(stage.wait_for(EventKind::state).state, SurfaceState::maximised);
    EXPECT_EQ(stage.wait_for(EventKind::placed).bounds, work_area);
    EXPECT_EQ(screen.pixels(surface).width, width_of(work_area));
    paint(screen, surface, kGreen);
    stage.expect_pixel(work_area.right - 1, work_area.bottom - 1, kGreen);
    screen.set_state(surface, SurfaceState::normal);
    EXPECT_EQ(stage.wait_for(EventKind::state).state, SurfaceState::normal);
    EXPECT_EQ(stage.wait_for(EventKind::placed).bounds, bounds);
    stage.expect_pixel(150, 150, kGreen);
}

TEST_P(ScreenContract, TakesSurfacesOfAnyExtent)
{
    const SurfaceId empty = add_surface(screen, { 10, 10, 10, 10 }, kRed);
    EXPECT_EQ(screen.create({ 0, 0, 32000, 32000 }, {}), 0U);
    const SurfaceId huge = screen.create({ -100, -100, 15900, 15900 }, {});
    screen.show(huge, true, false);
    PixelView view = screen.pixels(huge);
    ASSERT_EQ(view.width, 16000);
    view.height = 868; // the screen's part: the rest stays untouched memory
    view.width = 1124;
    test::fill(view, kGreen);
    screen.present(huge, { 0, 0, 16000, 16000 });
    stage.expect_pixel(1023, 767, kGreen);
    screen.place(empty, { 10, 10, 20, 20 });
    screen.raise(empty);
    paint(screen, empty, kRed);
    stage.expect_pixel(15, 15, kRed);
    screen.place(empty, { 10, 10, 10, 20 });
    stage.expect_pixel(10, 15, kGreen);
}

// A menu has no focus, yet the pointer and the keys while it holds them, wherever the pointer is.
TEST_P(ScreenContract, GivesAMenuPointerAndKeys)
{
    const SurfaceId window = add_surface(screen, { 0, 0, 100, 100 }, kRed);
    stage.expect_pixel(50, 50, kRed);
    const SurfaceId menu = screen.create({ 50, 50, 80, 80 }, {});
    screen.set_traits(menu, traits_of(SurfaceKind::menu));
    screen.show(menu, true, false);
    paint(screen, menu, kGreen);
    stage.expect_pixel(60, 60, kGreen);
    ASSERT_TRUE(screen.capture(menu));
    stage.move_pointer(700, 600);
    stage.press();
    const ScreenEvent press = stage.wait_for(EventKind::button_down);
    EXPECT_EQ(press.surface, menu);
    EXPECT_EQ(press.position.x, 700);
    stage.release();
    stage.type_a();
    EXPECT_EQ(stage.wait_for(EventKind::key_down).surface, menu);
    EXPECT_EQ(stage.wait_for(EventKind::key_up).surface, menu);
    screen.release_capture();
    screen.show(menu, false, false);
    EXPECT_TRUE(stage.turn_until([&] { return stage.pixel_at(60, 60) == kRed; }));
    stage.type_a();
    EXPECT_EQ(stage.wait_for(EventKind::key_down).surface, window);
}

TEST_P(ScreenContract, EndsWithTheConnection)
{
    const SurfaceId surface = add_surface(screen, { 0, 0, 100, 100 }, kRed);
    stage.expect_pixel(50, 50, kRed);
    stage.lose_connection();
    paint(screen, surface, kGreen); // whoever draws on does no harm
    screen.place(surface, { 5, 5, 500, 500 });
    screen.set_state(surface, SurfaceState::maximised);
    EXPECT_FALSE(screen.monitors().empty());
    stage.wait_for(EventKind::disconnected);
    paint(screen, surface, kGreen);
    screen.destroy(surface);
    EXPECT_TRUE(test::take_events(screen).empty());
}

// Another thread's questions bring events in; the thread that waits for them must still hear of each.
TEST_P(ScreenContract, ServesManyThreads)
{
    const SurfaceId surface = add_surface(screen, { 0, 0, 600, 400 }, kRed);
    stage.expect_pixel(50, 50, kRed);
    stage.move_pointer(300, 30);
    (void)stage.pixel_at(0, 0); // the server has told us of it by now
    (void)screen.pointer();     // and it came in beside this answer
    pollfd fd{ screen.descriptor(), POLLIN, 0 };
    EXPECT_EQ(::poll(&fd, 1, 0), 1);
    stage.wait_for_move(300, 30);

    std::atomic<bool> done = false;
    std::thread worker([&] {
        while (!done) {
            (void)screen.pointer();
            screen.present(surface, { 0, 0, 20, 20 });
            screen.flush();
        }
    });
    for (int x = 1; x <= 200 && !HasFailure(); x++) {
        stage.move_pointer(x, 30);
        stage.wait_for_move(x, 30);
    }
    done = true;
    worker.join();
}

} // namespace
} // namespace win32
