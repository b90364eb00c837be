#include "platform/win32/screen/memory_screen.h"

#include "tests/platform/win32/screen/screen_support.h"
#include "tests/support/TestHome.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <functional>
#include <limits>
#include <map>
#include <sstream>

#include <poll.h>

namespace win32 {
namespace {

using test::add_surface;
using test::take_events;
using test::traits_of;

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
    // Does what a text says, one deed after the other: "raise r", "place g 6 2 8 3", "move 1 0".
    void act(const std::string& text);
    // What happened meanwhile, as a line: "r down; g move; ".
    std::string story();

    MemoryScreen screen{ { { { 0, 0, kWidth, kHeight }, { 0, 0, kWidth, kHeight - 1 }, true } } };
    const SurfaceId red = add_surface(screen, { 1, 0, 5, 2 }, kRed);
    const SurfaceId green = add_surface(screen, { 3, 1, 7, 3 }, kGreen);
};

void SmallScreen::act(const std::string& text)
{
    std::istringstream words(text);
    const auto surface = [&] {
        std::string name;
        words >> name;
        return name == "r" ? red : name == "g" ? green : SurfaceId{ 0 };
    };
    const auto number = [&] {
        LONG n = 0;
        words >> n;
        return n;
    };
    const auto rect = [&] {
        const LONG left = number(), top = number(), right = number();
        return RECT{ left, top, right, number() };
    };
    const auto point = [&] {
        const LONG x = number();
        return POINT{ x, number() };
    };
    const auto enter = [&](SurfaceState state) { screen.set_state(surface(), state); };
    const auto become = [&](const SurfaceTraits& traits) { screen.set_traits(surface(), traits); };
    static constexpr RECT kCorners[] = { { 0, 0, 1, 1 }, { 3, 1, 9, 9 } };
    const std::map<std::string, std::function<void()>> deeds = {
        { "raise", [&] { screen.raise(surface()); } },
        { "lower", [&] { screen.lower(surface()); } },
        { "topmost", [&] { become(traits_of(SurfaceKind::window, true)); } },
        { "menu", [&] { become(traits_of(SurfaceKind::menu)); } },
        { "tip", [&] { become(traits_of(SurfaceKind::tool_tip)); } },
        { "hide", [&] { screen.show(surface(), false, false); } },
        { "minimise", [&] { enter(SurfaceState::minimised); } },
        { "maximise", [&] { enter(SurfaceState::maximised); } },
        { "restore", [&] { enter(SurfaceState::normal); } },
        { "destroy", [&] { screen.destroy(surface()); } },
        { "place",
          [&] {
              const SurfaceId id = surface();
              screen.place(id, rect());
          } },
        { "corners", [&] { screen.set_shape(surface(), std::span(kCorners)); } },
        { "whole", [&] { screen.set_shape(surface(), std::nullopt); } },
        { "activate", [&] { screen.activate(surface()); } },
        { "capture", [&] { screen.capture(surface()); } },
        { "let", [&] { screen.release_capture(); } },
        // The person, and the desktop.
        { "move", [&] { screen.move_pointer(point()); } },
        { "click", [&] { screen.click(point()); } },
        { "down", [&] { screen.press(kLeftButton); } },
        { "up", [&] { screen.release(kLeftButton); } },
        { "down2", [&] { screen.press(kRightButton); } },
        { "up2", [&] { screen.release(kRightButton); } },
        { "wheel", [&] { screen.turn_wheel(120); } },
        { "key", [&] { screen.press_key('A', "a"); } },
        { "keyup", [&] { screen.release_key('A'); } },
        { "focus", [&] { screen.focus(surface()); } },
        { "outplace",
          [&] {
              const SurfaceId id = surface();
              screen.place_from_outside(id, rect());
          } },
        { "outmaximise", [&] { screen.set_state_from_outside(surface(), SurfaceState::maximised); } },
        { "close", [&] { screen.request_close(surface()); } },
        { "disconnect", [&] { screen.disconnect(); } },
    };
    for (std::string deed; words >> deed;)
        deeds.at(deed)();
}

std::string SmallScreen::story()
{
    constexpr const char* kNames[] = { "move",   "leave", "down",  "up",   "wheel", "key", "keyup",
                                       "placed", "state", "focus", "blur", "close", "lost" };
    std::string line;
    for (const ScreenEvent& event : take_events(screen)) {
        line += event.surface == red ? "r " : event.surface == green ? "g " : "- ";
        line += kNames[static_cast<int>(event.kind)];
        line += "; ";
    }
    return line;
}

struct DeedCase {
    const char* why;
    const char* deeds;
    const char* result;
};

const DeedCase kStackCases[] = {
    { "the later one is above", "", ".rrrr.../.rrgggg./...gggg./" },
    { "raised covers", "raise r", ".rrrr.../.rrrrgg./...gggg./" },
    { "lowered is covered", "lower g", ".rrrr.../.rrrrgg./...gggg./" },
    { "topmost comes to the top", "topmost r", ".rrrr.../.rrrrgg./...gggg./" },
    { "topmost stays above a raised one", "topmost r raise g", ".rrrr.../.rrrrgg./...gggg./" },
    { "a menu is above topmost", "menu g topmost r raise r", ".rrrr.../.rrgggg./...gggg./" },
    { "hidden uncovers", "hide g", ".rrrr.../.rrrr.../......../" },
    { "minimised uncovers", "minimise g", ".rrrr.../.rrrr.../......../" },
    { "destroyed uncovers", "destroy r", "......../...gggg./...gggg./" },
    { "moved, partly off the screen", "place r -2 -1 2 1", "rr....../...gggg./...gggg./" },
    { "larger: new pixels are black, the old ones stay", "place r 0 0 6 3", "rrrrkk../rrrgggg./kkkgggg./" },
    { "from outside, too, before it has pixels for it", "outplace r 0 0 6 3", "rrrrkk../rrrgggg./kkkgggg./" },
    { "what was cut off is black when it comes back", "place r 1 0 2 1 place r 1 0 5 2",
      ".rkkk.../.kkgggg./...gggg./" },
    { "maximised fills the work area", "maximise g", "ggggkkkk/ggggkkkk/......../" },
    { "restored is where it was", "maximise g minimise g restore g", ".rrrr.../.rrgggg./...gggg./" },
    { "from an icon, too", "maximise g minimise g maximise g restore g", ".rrrr.../.rrgggg./...gggg./" },
    { "a shape lets the lower one through", "corners g", ".rrrr.../.rrgr.../......g./" },
    { "without a shape it is whole again", "corners g whole g", ".rrrr.../.rrgggg./...gggg./" },
};

TEST(MemoryScreen, ComposesItsSurfaces)
{
    for (const DeedCase& c : kStackCases) {
        SCOPED_TRACE(c.why);
        SmallScreen small;
        small.act(c.deeds);
        EXPECT_EQ(small.painted(), c.result);
        take_events(small.screen); // a surface placed from outside gets its pixels with the event
        EXPECT_EQ(small.painted(), c.result);
    }
}

const DeedCase kInputCases[] = {
    { "the pointer crosses from one to the other", "move 1 0 move 2 0 move 3 1 move 0 0",
      "r move; r move; r leave; g move; g leave; " },
    { "a press holds the pointer until the last button is up", "move 1 0 down move 6 2 down2 up up2",
      "r move; r down; r move; r down; r up; r up; r leave; g move; " },
    { "the capture goes before position and press", "move 1 0 capture g down up wheel let",
      "r move; r leave; g down; g up; g wheel; g leave; r move; " },
    { "a click on the desktop is nobody's", "click 0 2", "" },
    { "the pointer falls through a shape", "corners g click 4 1 move 3 1", "r move; r down; r up; r leave; g move; " },
    { "and through a tool tip", "tip g move 4 1", "r move; " },
    { "a surface that moves away leaves the pointer", "move 4 1 place g 6 2 8 3", "g move; g leave; r move; " },
    { "keys go to the focus, which moves with activation", "key activate r keyup focus - key",
      "g key; g blur; r focus; r keyup; r blur; " },
    { "hiding and minimising give the focus away", "hide g key activate r minimise r key",
      "g blur; r focus; r state; r blur; " },
    { "placed and closed from outside", "outplace r 0 0 2 2 outmaximise g close r",
      "r placed; g state; g placed; r close; " },
    { "one's own placing is no news, and overrules that from outside", "outplace r 0 0 2 2 place r 0 0 2 2", "" },
    { "nothing follows a lost connection, and nothing of a destroyed surface",
      "move 1 0 close g destroy r disconnect disconnect close g", "g close; - lost; " },
};

TEST(MemoryScreen, SendsInputToItsSurface)
{
    for (const DeedCase& c : kInputCases) {
        SCOPED_TRACE(c.why);
        SmallScreen small;
        take_events(small.screen);
        small.act(c.deeds);
        EXPECT_EQ(small.story(), c.result);
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
    small.screen.present(small.red, { 2, 1, 3, 2 }); // the green one lies over that
    EXPECT_EQ(small.painted(), ".ggrr.../.rrgggg./...gggg./");
    small.screen.present(small.green, { -9, -9, 1, 99 }); // damage beyond the surface is cut off
    EXPECT_EQ(small.painted(), ".ggrr.../.rrrggg./...rggg./");
}

TEST(MemoryScreen, TakesEveryExtent)
{
    constexpr LONG kLeast = std::numeric_limits<LONG>::min();
    constexpr LONG kMost = std::numeric_limits<LONG>::max();
    const struct {
        const char* why;
        RECT bounds;
        RECT placed;
        bool whole = true; // has pixels for all of it
    } cases[] = {
        { "empty", { 5, 5, 5, 5 }, { 5, 5, 5, 5 } },
        { "inside out", { 5, 5, -5, 1 }, { 5, 5, 5, 5 } },
        { "larger than any screen", { 0, 0, 16000, 16000 }, { 0, 0, 16000, 16000 } },
        { "larger than any memory", { 0, 0, 32000, 32000 }, { 0, 0, 32000, 32000 }, false },
        { "beyond the limit", { 1, 2, 40000, 3 }, { 1, 2, 32768, 3 } },
        { "at the ends of the numbers", { kLeast, 0, kMost, 9 }, { -32767, 0, 0, 9 } },
    };
    for (const auto& c : cases) {
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
    EXPECT_EQ(png.substr(png.size() - 8), "IEND\xAE\x42\x60\x82") << "its checksum as it is in every picture";
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
