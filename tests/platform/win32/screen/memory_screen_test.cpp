#include "platform/win32/screen/memory_screen.h"

#include "tests/platform/win32/screen/screen_support.h"
#include "tests/support/TestHome.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <functional>
#include <limits>

#include <poll.h>

namespace win32 {
namespace {

using test::add_surface;
using test::take_events;

constexpr std::uint32_t kRed = 0xFF0000;
constexpr std::uint32_t kGreen = 0x00FF00;

// A small screen with two surfaces, whose picture is read as letters: '.' the desktop, 'r' and 'g' the surfaces, 'k'
// black.
struct SmallScreen {
    static constexpr int kWidth = 8;
    static constexpr int kHeight = 3;

    std::string painted() const
    {
        std::string letters;
        const MemoryScreen::Picture picture = screen.picture();
        for (int y = 0; y < kHeight; y++) {
            for (int x = 0; x < kWidth; x++) {
                const std::uint32_t pixel = picture.at(x, y);
                letters += pixel == kDesktopColour ? '.' : pixel == kRed ? 'r' : pixel == kGreen ? 'g' : 'k';
            }
            letters += '/';
        }
        return letters;
    }

    MemoryScreen screen{ { { { 0, 0, kWidth, kHeight }, { 0, 0, kWidth, kHeight - 1 }, true } } };
    const SurfaceId red = add_surface(screen, { 1, 0, 5, 2 }, kRed);
    const SurfaceId green = add_surface(screen, { 3, 1, 7, 3 }, kGreen);
};

struct StackCase {
    const char* why;
    std::function<void(MemoryScreen&, SurfaceId red, SurfaceId green)> change;
    const char* painted;
};

SurfaceTraits traits_of(SurfaceKind kind, bool topmost)
{
    SurfaceTraits traits;
    traits.kind = kind;
    traits.topmost = topmost;
    return traits;
}

const RECT kCorners[] = { { 0, 0, 1, 1 }, { 3, 1, 9, 9 } };

const StackCase kStackCases[] = {
    { "the later one is above", [](MemoryScreen&, SurfaceId, SurfaceId) {}, ".rrrr.../.rrgggg./...gggg./" },
    { "raised covers", [](MemoryScreen& s, SurfaceId red, SurfaceId) { s.raise(red); }, ".rrrr.../.rrrrgg./...gggg./" },
    { "lowered is covered", [](MemoryScreen& s, SurfaceId, SurfaceId green) { s.lower(green); },
      ".rrrr.../.rrrrgg./...gggg./" },
    { "topmost stays above a raised one",
      [](MemoryScreen& s, SurfaceId red, SurfaceId green) {
          s.set_traits(red, traits_of(SurfaceKind::window, true));
          s.raise(green);
      },
      ".rrrr.../.rrrrgg./...gggg./" },
    { "a menu is above topmost",
      [](MemoryScreen& s, SurfaceId red, SurfaceId green) {
          s.set_traits(green, traits_of(SurfaceKind::menu, false));
          s.set_traits(red, traits_of(SurfaceKind::window, true));
          s.raise(red);
      },
      ".rrrr.../.rrgggg./...gggg./" },
    { "hidden uncovers", [](MemoryScreen& s, SurfaceId, SurfaceId green) { s.show(green, false, false); },
      ".rrrr.../.rrrr.../......../" },
    { "minimised uncovers",
      [](MemoryScreen& s, SurfaceId, SurfaceId green) { s.set_state(green, SurfaceState::minimised); },
      ".rrrr.../.rrrr.../......../" },
    { "destroyed uncovers", [](MemoryScreen& s, SurfaceId red, SurfaceId) { s.destroy(red); },
      "......../...gggg./...gggg./" },
    { "moved, partly off the screen",
      [](MemoryScreen& s, SurfaceId red, SurfaceId) {
          s.place(red, { -2, -1, 2, 1 });
      },
      "rr....../...gggg./...gggg./" },
    { "larger: new pixels are black, the old ones stay",
      [](MemoryScreen& s, SurfaceId red, SurfaceId) {
          s.place(red, { 0, 0, 6, 3 });
      },
      "rrrrkk../rrrgggg./kkkgggg./" },
    { "smaller and larger again: what was cut off is black",
      [](MemoryScreen& s, SurfaceId red, SurfaceId) {
          s.place(red, { 1, 0, 2, 1 });
          s.place(red, { 1, 0, 5, 2 });
      },
      ".rkkk.../.kkgggg./...gggg./" },
    { "maximised fills the work area",
      [](MemoryScreen& s, SurfaceId, SurfaceId green) { s.set_state(green, SurfaceState::maximised); },
      "ggggkkkk/ggggkkkk/......../" },
    { "restored is where it was",
      [](MemoryScreen& s, SurfaceId, SurfaceId green) {
          s.set_state(green, SurfaceState::maximised);
          s.set_state(green, SurfaceState::minimised);
          s.set_state(green, SurfaceState::normal);
      },
      ".rrrr.../.rrgggg./...gggg./" },
    { "a shape lets the lower one through",
      [](MemoryScreen& s, SurfaceId, SurfaceId green) { s.set_shape(green, std::span(kCorners)); },
      ".rrrr.../.rrgr.../......g./" },
    { "without a shape it is whole again",
      [](MemoryScreen& s, SurfaceId, SurfaceId green) {
          s.set_shape(green, std::span(kCorners));
          s.set_shape(green, std::nullopt);
      },
      ".rrrr.../.rrgggg./...gggg./" },
};

TEST(MemoryScreen, ComposesItsSurfaces)
{
    for (const StackCase& c : kStackCases) {
        SCOPED_TRACE(c.why);
        SmallScreen small;
        c.change(small.screen, small.red, small.green);
        take_events(small.screen); // a surface placed from outside gets its pixels with the event
        EXPECT_EQ(small.painted(), c.painted);
    }
}

TEST(MemoryScreen, ShowsWhatWasPresentedAndNothingElse)
{
    SmallScreen small;
    test::fill(small.screen.pixels(small.red), kGreen);
    EXPECT_EQ(small.painted(), ".rrrr.../.rrgggg./...gggg./");
    small.screen.present(small.red, { 0, 0, 2, 1 });
    EXPECT_EQ(small.painted(), ".ggrr.../.rrgggg./...gggg./");

    const auto presented = small.screen.take_presented();
    ASSERT_EQ(presented.size(), 3U);
    EXPECT_EQ(presented.back().surface, small.red);
    EXPECT_EQ(presented.back().damage, (RECT{ 0, 0, 2, 1 }));

    test::fill(small.screen.pixels(small.green), kRed);
    small.screen.present(small.green, { -9, -9, 1, 99 }); // damage beyond the surface is cut off
    EXPECT_EQ(small.painted(), ".ggrr.../.rrrggg./...rggg./");
}

struct ExtentCase {
    const char* why;
    RECT bounds;
    RECT placed;
    bool whole = true; // has pixels for all of it
};

const ExtentCase kExtentCases[] = {
    { "empty", { 5, 5, 5, 5 }, { 5, 5, 5, 5 } },
    { "inside out", { 5, 5, -5, 1 }, { 5, 5, 5, 5 } },
    { "larger than any screen", { 0, 0, 16000, 16000 }, { 0, 0, 16000, 16000 } },
    { "larger than any memory", { 0, 0, 32000, 32000 }, { 0, 0, 32000, 32000 }, false },
    { "beyond the limit", { 1, 2, 40000, 3 }, { 1, 2, 32768, 3 } },
    { "at the ends of the numbers",
      { std::numeric_limits<LONG>::min(), 0, std::numeric_limits<LONG>::max(), 9 },
      { -32767, 0, 0, 9 } },
};

TEST(MemoryScreen, TakesEveryExtent)
{
    for (const ExtentCase& c : kExtentCases) {
        SCOPED_TRACE(c.why);
        MemoryScreen screen;
        const SurfaceId created = add_surface(screen, { 0, 0, 1, 1 }, kRed);
        screen.place(created, c.bounds);
        EXPECT_EQ(screen.look(created)->bounds, c.placed);
        const PixelView view = screen.pixels(created);
        EXPECT_EQ(view.width, c.whole ? width_of(c.placed) : 1);
        EXPECT_EQ(view.height, c.whole ? height_of(c.placed) : 1);
        screen.present(created, { 0, 0, view.width, view.height });
    }
}

// What happened, as a line: "r down; g move; ".
std::string story(SmallScreen& small)
{
    constexpr const char* kNames[] = { "move",   "leave", "down",  "up",   "wheel", "key", "keyup",
                                       "placed", "state", "focus", "blur", "close", "lost" };
    std::string line;
    for (const ScreenEvent& event : take_events(small.screen)) {
        line += event.surface == small.red ? "r " : event.surface == small.green ? "g " : "- ";
        line += kNames[static_cast<int>(event.kind)];
        line += "; ";
    }
    return line;
}

struct InputCase {
    const char* why;
    std::function<void(SmallScreen&)> act;
    const char* story;
};

const InputCase kInputCases[] = {
    { "the pointer crosses from one to the other",
      [](SmallScreen& s) {
          s.screen.move_pointer({ 1, 0 });
          s.screen.move_pointer({ 2, 0 });
          s.screen.move_pointer({ 3, 1 });
          s.screen.move_pointer({ 0, 0 });
      },
      "r move; r move; r leave; g move; g leave; " },
    { "a press holds the pointer until the last button is up",
      [](SmallScreen& s) {
          s.screen.move_pointer({ 1, 0 });
          s.screen.press(kLeftButton);
          s.screen.press(kRightButton);
          s.screen.move_pointer({ 6, 2 });
          s.screen.release(kLeftButton);
          s.screen.release(kRightButton);
      },
      "r move; r down; r down; r move; r up; r up; r leave; g move; " },
    { "the capture goes before position and press",
      [](SmallScreen& s) {
          s.screen.move_pointer({ 1, 0 });
          s.screen.capture(s.green);
          s.screen.press(kLeftButton);
          s.screen.release(kLeftButton);
          s.screen.turn_wheel(120);
          s.screen.release_capture();
      },
      "r move; r leave; g down; g up; g wheel; g leave; r move; " },
    { "a click on the desktop is nobody's",
      [](SmallScreen& s) {
          s.screen.click({ 0, 2 });
      },
      "" },
    { "the pointer falls through a shape",
      [](SmallScreen& s) {
          s.screen.set_shape(s.green, std::span(kCorners));
          s.screen.click({ 4, 1 });
          s.screen.move_pointer({ 3, 1 });
      },
      "r move; r down; r up; r leave; g move; " },
    { "and through a tool tip",
      [](SmallScreen& s) {
          s.screen.set_traits(s.green, traits_of(SurfaceKind::tool_tip, true));
          s.screen.move_pointer({ 4, 1 });
      },
      "r move; " },
    { "a surface that moves away leaves the pointer",
      [](SmallScreen& s) {
          s.screen.move_pointer({ 4, 1 });
          s.screen.place(s.green, { 6, 2, 8, 3 });
      },
      "g move; g leave; r move; " },
    { "keys go to the focus, which moves with activation",
      [](SmallScreen& s) {
          s.screen.press_key('A', "a");
          s.screen.activate(s.red);
          s.screen.release_key('A');
          s.screen.focus(0);
          s.screen.press_key('B', "b");
      },
      "g key; g blur; r focus; r keyup; r blur; " },
    { "hiding and minimising give the focus away",
      [](SmallScreen& s) {
          s.screen.show(s.green, false, false);
          s.screen.activate(s.red);
          s.screen.set_state(s.red, SurfaceState::minimised);
      },
      "g blur; r focus; r state; r blur; " },
    { "placed and closed from outside",
      [](SmallScreen& s) {
          s.screen.place_from_outside(s.red, { 0, 0, 2, 2 });
          s.screen.set_state_from_outside(s.green, SurfaceState::maximised);
          s.screen.request_close(s.red);
      },
      "r placed; g state; g placed; r close; " },
    { "one's own placing is no news",
      [](SmallScreen& s) {
          s.screen.place(s.red, { 0, 0, 2, 2 });
      },
      "" },
    { "nothing follows a lost connection, and nothing of a destroyed surface",
      [](SmallScreen& s) {
          s.screen.move_pointer({ 1, 0 });
          s.screen.request_close(s.green);
          s.screen.destroy(s.red);
          s.screen.disconnect();
          s.screen.disconnect();
          s.screen.request_close(s.green);
      },
      "g close; - lost; " },
};

TEST(MemoryScreen, SendsInputToItsSurface)
{
    for (const InputCase& c : kInputCases) {
        SCOPED_TRACE(c.why);
        SmallScreen small;
        take_events(small.screen);
        c.act(small);
        EXPECT_EQ(story(small), c.story);
    }
}

TEST(MemoryScreen, DescribesAnEventWhole)
{
    SmallScreen small;
    take_events(small.screen);
    small.screen.press_key(0x10);
    small.screen.move_pointer({ 3, 1 });
    small.screen.press(kRightButton);
    const std::vector<ScreenEvent> events = take_events(small.screen);
    ASSERT_EQ(events.size(), 3U);
    EXPECT_EQ(events[2].position.x, 3);
    EXPECT_EQ(events[2].position.y, 1);
    EXPECT_EQ(events[2].button, kRightButton);
    EXPECT_EQ(events[2].buttons, kRightButton);
    EXPECT_EQ(events[2].modifiers, kShift);
    EXPECT_TRUE(small.screen.key_is_down(0x10));
    EXPECT_EQ(small.screen.pointer().buttons, kRightButton);
}

TEST(MemoryScreen, WakesWhileEventsWait)
{
    SmallScreen small;
    const auto readable = [&] {
        pollfd fd{ small.screen.descriptor(), POLLIN, 0 };
        return ::poll(&fd, 1, 0) == 1;
    };
    take_events(small.screen);
    EXPECT_FALSE(readable());
    small.screen.request_close(small.red);
    small.screen.request_close(small.green);
    ScreenEvent event;
    ASSERT_TRUE(small.screen.next_event(event));
    EXPECT_TRUE(readable());
    ASSERT_TRUE(small.screen.next_event(event));
    EXPECT_FALSE(readable());
}

TEST(MemoryScreen, SavesItsPictureWhenItChanged)
{
    const std::string path = test::home() / "screen.png";
    ::setenv("SCREEN_PNG", path.c_str(), 1);
    set_screen(nullptr);
    Screen& opened = screen(); // SCREEN=memory is set for every test
    ::unsetenv("SCREEN_PNG");
    add_surface(opened, { 0, 0, 1024, 768 }, kRed);

    std::ifstream file(path, std::ios::binary);
    const std::string png{ std::istreambuf_iterator<char>(file), {} };
    ASSERT_GT(png.size(), 3U * 1024 * 768);
    EXPECT_EQ(png.substr(0, 8), "\x89PNG\r\n\x1A\n");
    EXPECT_EQ(png.substr(16, 8), std::string("\0\0\4\0\0\0\3\0", 8)); // 1024 x 768
    file.close();

    std::filesystem::remove(path);
    opened.flush();
    EXPECT_FALSE(std::filesystem::exists(path)) << "nothing changed, nothing to save";
    set_screen(nullptr);
}

TEST(ScreenDeathTest, EndsTheProgramWithoutAScreen)
{
    ::unsetenv("SCREEN");
    EXPECT_EXIT(screen(), testing::ExitedWithCode(1), "DISPLAY");
    ::setenv("DISPLAY", "/nowhere:77", 1);
    EXPECT_EXIT(screen(), testing::ExitedWithCode(1), "/nowhere:77");
    test::use_home(test::home().path());
}

} // namespace
} // namespace win32
