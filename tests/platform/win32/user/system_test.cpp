// Rectangles, metrics, monitors.
#include "tests/platform/win32/user/user_support.h"

#include <limits>

namespace test {
namespace {

struct RectCase {
    const char* why;
    BOOL (*operation)(LPRECT, const RECT*, const RECT*);
    RECT first;
    RECT second;
    BOOL result;
    RECT expected;
};

TEST(Rectangles, Combine)
{
    const RectCase kCases[] = {
        { "shared part", IntersectRect, { 0, 0, 10, 10 }, { 5, -5, 15, 5 }, TRUE, { 5, 0, 10, 5 } },
        { "neighbours share nothing", IntersectRect, { 0, 0, 10, 10 }, { 10, 0, 20, 10 }, FALSE, {} },
        { "an empty one shares nothing", IntersectRect, { 0, 0, 10, 10 }, { 5, 5, 5, 9 }, FALSE, {} },
        { "hull", UnionRect, { 0, 0, 1, 1 }, { 5, 5, 6, 6 }, TRUE, { 0, 0, 6, 6 } },
        { "an empty one adds nothing", UnionRect, { 0, 0, 1, 1 }, { 9, 9, 5, 5 }, TRUE, { 0, 0, 1, 1 } },
        { "nor is added to", UnionRect, { 9, 9, 5, 5 }, { 0, 0, 1, 1 }, TRUE, { 0, 0, 1, 1 } },
        { "two empty ones", UnionRect, {}, { 3, 3, 3, 3 }, FALSE, {} },
        { "an edge goes", SubtractRect, { 0, 0, 10, 10 }, { 6, -1, 20, 20 }, TRUE, { 0, 0, 6, 10 } },
        { "a corner stays", SubtractRect, { 0, 0, 10, 10 }, { 6, -1, 20, 5 }, TRUE, { 0, 0, 10, 10 } },
        { "all goes", SubtractRect, { 0, 0, 10, 10 }, { 0, 0, 10, 10 }, FALSE, {} },
    };
    for (const RectCase& c : kCases) {
        SCOPED_TRACE(c.why);
        RECT result{ 7, 7, 7, 7 };
        EXPECT_EQ(c.operation(&result, &c.first, &c.second), c.result);
        EXPECT_EQ(result, c.expected);
    }
}

TEST(Rectangles, WrapAtTheEndOfTheNumbers)
{
    constexpr LONG kMost = std::numeric_limits<LONG>::max();
    constexpr LONG kLeast = std::numeric_limits<LONG>::min();
    RECT rect{ kMost, 0, 0, kLeast };
    EXPECT_TRUE(OffsetRect(&rect, 1, -1));
    EXPECT_EQ(rect.left, kLeast);
    EXPECT_EQ(rect.bottom, kMost);
    EXPECT_TRUE(InflateRect(&rect, kLeast, kLeast));
    EXPECT_EQ(rect.left, 0);
    EXPECT_FALSE(OffsetRect(nullptr, 1, 1));
}

class System : public UserTest {};

TEST_F(System, KnowsItsMonitors)
{
    screen_->set_monitors(
        { { { 0, 0, 800, 600 }, { 0, 20, 800, 600 }, true }, { { 800, 0, 1000, 300 }, { 800, 0, 1000, 290 }, false } });
    EXPECT_EQ(GetSystemMetrics(SM_CXSCREEN), 800);
    EXPECT_EQ(GetSystemMetrics(SM_CXVIRTUALSCREEN), 1000);
    EXPECT_EQ(GetSystemMetrics(SM_CMONITORS), 2);
    EXPECT_EQ(GetSystemMetrics(-5), 0);
    RECT work{};
    EXPECT_TRUE(SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0));
    EXPECT_EQ(work.top, 20);

    const RECT across{ 700, 0, 950, 100 };
    const HMONITOR second = MonitorFromRect(&across, MONITOR_DEFAULTTONULL);
    MONITORINFO info{ sizeof(info), {}, {}, 0 };
    EXPECT_TRUE(GetMonitorInfoA(second, &info));
    EXPECT_EQ(info.rcWork.bottom, 290);
    EXPECT_FALSE(info.dwFlags & MONITORINFOF_PRIMARY);
    const POINT outside{ 1200, 10 };
    EXPECT_EQ(MonitorFromPoint(outside, MONITOR_DEFAULTTONEAREST), second);
    EXPECT_EQ(MonitorFromPoint(outside, MONITOR_DEFAULTTONULL), nullptr);
    EXPECT_NE(MonitorFromPoint(outside, MONITOR_DEFAULTTOPRIMARY), second);
    EXPECT_FALSE(GetMonitorInfoA(nullptr, &info));
    EXPECT_EQ(MonitorFromWindow(nullptr, MONITOR_DEFAULTTOPRIMARY), MonitorFromPoint({ 0, 0 }, MONITOR_DEFAULTTONULL));
}

TEST_F(System, OffersTheMonitorsAtRunTime)
{
    const HMODULE user32 = LoadLibraryA("User32.dll");
    for (const char* name : { "MonitorFromWindow", "GetMonitorInfoA" })
        EXPECT_NE(GetProcAddress(user32, name), nullptr) << name;
    const auto from_rect = reinterpret_cast<decltype(&MonitorFromRect)>(GetProcAddress(user32, "MonitorFromRect"));
    ASSERT_NE(from_rect, nullptr);
    const RECT corner{ 0, 0, 1, 1 };
    EXPECT_EQ(from_rect(&corner, MONITOR_DEFAULTTONULL), MonitorFromWindow(nullptr, MONITOR_DEFAULTTOPRIMARY));
    EXPECT_EQ(GetProcAddress(user32, "SetLayeredWindowAttributes"), nullptr) << "windows of ours have no layers";
}

TEST_F(System, MakesFramesAsThickAsTheirStyle)
{
    const struct {
        DWORD style;
        DWORD ex_style;
        BOOL menu;
        RECT expected;
    } kCases[] = {
        { WS_POPUP | WS_BORDER, 0, FALSE, { -1, -1, 101, 101 } },
        { WS_POPUP | WS_CAPTION, WS_EX_TOOLWINDOW, FALSE, { -3, -19, 103, 103 } },
        { WS_OVERLAPPEDWINDOW, 0, TRUE, { -4, -42, 104, 104 } },
        { WS_CHILD, WS_EX_CLIENTEDGE, FALSE, { -2, -2, 102, 102 } },
    };
    for (const auto& c : kCases) {
        RECT rect{ 0, 0, 100, 100 };
        EXPECT_TRUE(AdjustWindowRectEx(&rect, c.style, c.menu, c.ex_style));
        EXPECT_EQ(rect, c.expected);
    }
    NONCLIENTMETRICSA metrics{};
    EXPECT_FALSE(SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0)) << "without its size";
    metrics.cbSize = sizeof metrics;
    EXPECT_TRUE(SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0));
    EXPECT_STREQ(metrics.lfCaptionFont.lfFaceName, "Tahoma");
}

TEST_F(System, MapsPointsBetweenWindows)
{
    const TestWindow parent(journal_, { .name = "parent", .style = WS_POPUP | WS_CAPTION });
    const TestWindow child(
        journal_, { .name = "child", .style = WS_CHILD | WS_BORDER, .rect = { 5, 6, 25, 26 }, .parent = parent.get() });
    POINT points[] = { { 0, 0 }, { 10, 10 } };
    MapWindowPoints(child.get(), nullptr, points, 2);
    EXPECT_EQ(points[0], (POINT{ 10 + 3 + 5 + 1, 20 + 22 + 6 + 1 }));
    EXPECT_EQ(points[1], (POINT{ 29, 59 }));
    ScreenToClient(parent.get(), &points[0]);
    EXPECT_EQ(points[0], (POINT{ 6, 7 }));
    EXPECT_EQ(ChildWindowFromPoint(parent.get(), { 6, 7 }), child.get());
    EXPECT_EQ(ChildWindowFromPoint(parent.get(), { 4, 7 }), parent.get());
    EXPECT_EQ(ChildWindowFromPoint(parent.get(), { -1, 7 }), nullptr);
}

} // namespace
} // namespace test
