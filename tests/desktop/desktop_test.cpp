#include "tests/desktop/faces.h"

#include <gtest/gtest.h>

namespace test {
namespace {

class OnDesktop : public testing::TestWithParam<Pair> {
protected:
    OnDesktop() { desktop.open(face); }
    // Whatever else is tested: the server refused nothing, and the program lives or ended well.
    ~OnDesktop() override
    {
        EXPECT_EQ(desktop.said(), expected_words_);
        EXPECT_EQ(desktop.program().exit_code().value_or(expected_end_), expected_end_);
    }

    void expect(const char* what, const std::function<bool()>& condition)
    {
        EXPECT_TRUE(desktop.sees(condition)) << what << "; the window is at " << desktop.bounds();
    }
    void expect_bounds(const Rect& rect)
    {
        EXPECT_TRUE(desktop.sees([&] { return desktop.bounds() == rect; }))
            << "at " << desktop.bounds() << ", not " << rect;
        expect("it is drawn from end to end", [&] { return desktop.shows(face); });
    }

    Rect maximised() const
    {
        const Rect area = desktop.work_area();
        const int over = manager.overhangs ? face.overhang : 0;
        return { area.left - over, area.top - over, area.width + 2 * over, area.height + 2 * over };
    }

    const WindowManager& manager = GetParam().first;
    const Face& face = GetParam().second;
    Desktop desktop{ manager };
    int expected_end_ = 0;
    std::string expected_words_;
};

TEST_P(OnDesktop, MovesByItsCaption)
{
    const Rect before = desktop.bounds();
    desktop.drag(face.caption, 80, 40);
    expect_bounds(manager.places ? Rect{ before.left + 80, before.top + 40, before.width, before.height } : before);
    desktop.drag(face.caption, -160, -80);
    expect_bounds(manager.places ? Rect{ before.left - 80, before.top - 40, before.width, before.height } : before);
}

TEST_P(OnDesktop, SizesByItsEdges)
{
    const Rect before = desktop.bounds();
    desktop.drag({ -2, 150 }, 80, 0);
    Rect now = before;
    now.width += manager.places ? 80 : 0;
    expect_bounds(now);
    desktop.drag({ 150, 1 }, 0, -40);
    now.top -= manager.places ? 40 : 0;
    now.height += manager.places ? 40 : 0;
    expect_bounds(now);
    desktop.drag({ -4, -4 }, -160, -80);
    now.width -= manager.places ? 160 : 0;
    now.height -= manager.places ? 80 : 0;
    expect_bounds(now);
}

TEST_P(OnDesktop, MinimisesAndComesBack)
{
    const Rect before = desktop.bounds();
    desktop.click(face.minimise);
    if (manager.minimises)
        expect("it is an icon", [&] { return desktop.is_minimised(); });
    desktop.activate(desktop.window());
    expect("it is back", [&] { return desktop.is_viewable(desktop.window()); });
    expect("it is active", [&] { return desktop.focus() == desktop.window(); });
    expect_bounds(before);
}

TEST_P(OnDesktop, MaximisesAndComesBack)
{
    const Rect before = desktop.bounds();
    for (const bool by_double_click : { false, true }) {
        SCOPED_TRACE(by_double_click ? "double click" : "box");
        const Point place = by_double_click ? face.caption : face.maximise;
        desktop.move_to(place);
        desktop.hand(by_double_click ? "click --repeat 2 1" : "click 1");
        expect_bounds(manager.maximises ? maximised() : before);
        desktop.move_to(place);
        desktop.hand(by_double_click ? "click --repeat 2 1" : "click 1");
        expect_bounds(before);
    }
}

TEST_P(OnDesktop, ClosesByItsBox)
{
    desktop.click(face.close);
    expect("the program has ended", [&] { return desktop.program().exit_code() == 0; });
}

TEST_P(OnDesktop, OpensItsSystemMenu)
{
    const auto is_open = [&] { return desktop.popups().size() == 1; };
    const auto is_closed = [&] { return desktop.popups().empty(); };
    desktop.click(face.system);
    expect("a menu opened by the mouse", is_open);
    const Rect menu = desktop.bounds_of(desktop.popups().at(0));
    EXPECT_GT(menu.width, 50);
    EXPECT_GT(menu.height, 50);
    desktop.move_to(face.client); // on the button still, a quick end of the menu is meant to close the window
    desktop.hand("key Escape");
    expect("Escape closed it", is_closed);
    const auto open_by_keys = [&] {
        if (manager.takes_alt_space) // and shows a menu of its own: then it is the mouse again, beside a double click
            desktop.click({ face.system.x + 5, face.system.y });
        else
            desktop.hand("key alt+space");
    };
    open_by_keys();
    expect("a menu opened once more", is_open);
    desktop.hand("mousemove 1000 750 click 1");
    expect("a click beside our windows closed it", is_closed);
    EXPECT_FALSE(desktop.program().exit_code());
    open_by_keys();
    expect("a menu a third time", is_open);
    desktop.hand("key Up"); // round the end, to the last entry
    desktop.hand("key Return");
    expect("its close entry closed the window", [&] { return desktop.program().exit_code() == 0; });
}

TEST_P(OnDesktop, ClosesByASecondClickOnItsSystemButton)
{
    desktop.move_to(face.system);
    desktop.hand("click --repeat 2 --delay 60 1");
    expect("the program has ended", [&] { return desktop.program().exit_code() == 0; });
}

TEST_P(OnDesktop, ShowsItsToolTip)
{
    desktop.move_to(face.tip);
    expect("a tip", [&] { return desktop.popups().size() == 1; });
    const Rect tip = desktop.bounds_of(desktop.popups().at(0));
    const Point pointer = desktop.on_screen(face.tip);
    EXPECT_TRUE(tip.top > pointer.y && tip.top < pointer.y + 40 && tip.left == pointer.x) << tip;
    expect("its paper", [&] { return desktop.pixel_on_screen({ tip.left + 2, tip.top + 2 }) == 0xFFFFE1; });
    EXPECT_EQ(desktop.focus(), desktop.window());
    desktop.hand("click 1");
    expect("a press hides it", [&] { return desktop.popups().empty(); });
}

TEST_P(OnDesktop, ShowsWhetherItIsActive)
{
    expect("it is active at first", [&] { return desktop.pixel(face.caption) == face.active_colour; });
    const xcb_window_t other = desktop.add_other_window({ 700, 500, 100, 100 });
    expect("the other window is there", [&] { return desktop.is_viewable(other); });
    desktop.activate(other);
    expect("the other one is active", [&] { return desktop.focus() == other; });
    expect("the caption shows it", [&] { return desktop.pixel(face.caption) == face.inactive_colour; });
    desktop.click(face.caption);
    expect("a click makes it active", [&] { return desktop.focus() == desktop.window(); });
    expect("and the caption shows it", [&] { return desktop.pixel(face.caption) == face.active_colour; });
}

TEST_P(OnDesktop, IsDrawnAgainWhenUncovered)
{
    expect_bounds(desktop.bounds());
    const xcb_window_t cover = desktop.add_other_window(desktop.bounds(), false);
    expect("it is covered", [&] { return desktop.pixel(face.client) == 0x303060; });
    desktop.remove_other_window(cover);
    expect_bounds(desktop.bounds());
}

TEST_P(OnDesktop, LetsClicksThroughWhereItIsNot)
{
    if (!manager.shapes)
        GTEST_SKIP() << "it puts a frame without shape behind a tile";
    Rect around = desktop.bounds();
    around = { around.left - 30, around.top - 30, around.width + 60, around.height + 60 };
    const xcb_window_t beneath = desktop.add_other_window(around);
    expect("another window is there", [&] { return desktop.is_viewable(beneath); });
    const auto come_to_front = [&] {
        desktop.activate(desktop.window());
        expect("ours is in front", [&] { return desktop.focus() == desktop.window() && desktop.shows(face); });
        expect("the other one is seen where ours is not", [&] { return desktop.pixel(face.cut) == 0x303060; });
    };
    come_to_front();
    desktop.click(face.cut);
    expect("it is clicked there", [&] { return desktop.clicks_on(beneath) == 1; });
    come_to_front();
    desktop.click(face.client);
    desktop.click(face.cut);
    expect("and nowhere else", [&] { return desktop.clicks_on(beneath) == 2; });
    EXPECT_EQ(desktop.clicks_on(beneath), 2);
}

TEST_P(OnDesktop, EndsWithTheScreen)
{
    desktop.end_server();
    expect("the program ends by itself", [&] { return desktop.program().exit_code().has_value(); });
    expected_end_ = 1;
    expected_words_ = "The connection to the display is lost.\n";
}

INSTANTIATE_TEST_SUITE_P(Managers, OnDesktop, testing::ValuesIn(all_pairs()),
                         [](const auto& each) { return name_of(each.param); });

} // namespace
} // namespace test
