// What is painted, where, when, and how often the screen is shown it.
#include "tests/platform/win32/user/user_support.h"

namespace test {
namespace {

using Entries = std::vector<std::string>;

constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr COLORREF kBlue = RGB(0, 0, 255);

// Fills everything that BeginPaint lets it, and notes rcPaint.
Handler painter(COLORREF colour, RECT* painted = nullptr, BOOL* unerased = nullptr)
{
    return [=](HWND window, WPARAM, LPARAM) {
        PAINTSTRUCT paint;
        const HDC dc = BeginPaint(window, &paint);
        if (painted)
            *painted = paint.rcPaint;
        if (unerased)
            *unerased = paint.fErase;
        const RECT everything{ -1000, -1000, 1000, 1000 };
        const HBRUSH brush = CreateSolidBrush(colour);
        FillRect(dc, &everything, brush);
        DeleteObject(brush);
        EndPaint(window, &paint);
        return 0;
    };
}

class Painting : public UserTest {
protected:
    COLORREF seen(POINT point)
    {
        const std::uint32_t pixel = screen_->pixel_at(point);
        return RGB(pixel >> 16, pixel >> 8, pixel);
    }
};

TEST_F(Painting, AsksOnceForWhatIsInvalid)
{
    RECT painted{};
    BOOL unerased = FALSE;
    const TestWindow window(journal_, { .handlers = { { WM_PAINT, painter(kRed, &painted, &unerased) } } });
    journal_.keep_only({ WM_PAINT, WM_ERASEBKGND, WM_NCPAINT });
    InvalidateRect(window.get(), nullptr, TRUE); // hidden: nothing to paint
    run_queue();
    EXPECT_EQ(journal_.take(), Entries());
    ShowWindow(window.get(), SW_SHOW);
    run_queue();
    EXPECT_EQ(journal_.take(), (Entries{ "w NCPAINT", "w PAINT", "w ERASEBKGND" }));
    EXPECT_TRUE(unerased); // the class has no background
    EXPECT_EQ(seen({ 10, 20 }), kRed);
    EXPECT_EQ(seen({ 109, 99 }), kRed);

    const RECT first{ 10, 10, 20, 20 };
    const RECT second{ 30, 12, 40, 300 };
    InvalidateRect(window.get(), &first, FALSE);
    InvalidateRect(window.get(), &second, FALSE);
    RECT update{};
    EXPECT_TRUE(GetUpdateRect(window.get(), &update, FALSE));
    run_queue();
    EXPECT_EQ(journal_.take(), (Entries{ "w PAINT" }));
    const RECT both{ 10, 10, 40, 80 };
    EXPECT_TRUE(EqualRect(&update, &both));
    EXPECT_TRUE(EqualRect(&painted, &both));

    InvalidateRect(window.get(), &first, TRUE);
    ValidateRect(window.get(), &first);
    run_queue();
    EXPECT_EQ(journal_.take(), Entries());
}

TEST_F(Painting, ErasesWithTheClassBrush)
{
    const TestWindow window(journal_, { .background = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1) });
    ShowWindow(window.get(), SW_SHOW);
    run_queue();
    EXPECT_EQ(seen({ 50, 50 }), GetSysColor(COLOR_BTNFACE));
}

TEST_F(Painting, ShowsTheScreenOnceATurn)
{
    const TestWindow window(journal_, { .handlers = { { WM_PAINT, painter(kRed) } } });
    ShowWindow(window.get(), SW_SHOW);
    run_queue();
    screen_->take_presented();
    const HDC dc = GetDC(window.get());
    for (int i = 0; i < 10; i++)
        SetPixel(dc, 5 + i, 7, kBlue);
    ReleaseDC(window.get(), dc);
    EXPECT_NE(seen({ 15, 27 }), kBlue);
    EXPECT_TRUE(screen_->take_presented().empty());
    run_queue();
    const auto presented = screen_->take_presented();
    ASSERT_EQ(presented.size(), 1U);
    const RECT damage{ 5, 7, 15, 8 };
    EXPECT_TRUE(EqualRect(&presented.front().damage, &damage));
    EXPECT_EQ(seen({ 15, 27 }), kBlue);
    run_queue();
    EXPECT_TRUE(screen_->take_presented().empty());
}

TEST_F(Painting, IsOnTheScreenAfterUpdateWindow)
{
    const TestWindow window(journal_, { .handlers = { { WM_PAINT, painter(kRed) } } });
    ShowWindow(window.get(), SW_SHOW);
    EXPECT_TRUE(UpdateWindow(window.get()));
    EXPECT_EQ(seen({ 50, 50 }), kRed);
}

TEST_F(Painting, ReachesTheScreenFromAnotherThread)
{
    const TestWindow window(journal_, { .handlers = { { WM_PAINT, painter(kRed) } } });
    ShowWindow(window.get(), SW_SHOW);
    run_queue();
    std::thread worker([&] {
        const HDC dc = GetDC(window.get());
        SetPixel(dc, 1, 1, kBlue);
        ReleaseDC(window.get(), dc);
        InvalidateRect(window.get(), nullptr, FALSE);
        UpdateWindow(window.get()); // carried out over here
        PostMessageA(window.get(), WM_USER, 0, 0);
    });
    MSG message{};
    while (message.message != WM_USER && GetMessageA(&message, nullptr, 0, 0))
        DispatchMessageA(&message);
    worker.join();
    run_queue();
    EXPECT_EQ(seen({ 11, 21 }), kRed);
}

struct ClipCase {
    const char* why;
    DWORD parent_style;
    DWORD child_style;
    COLORREF in_child;
};

TEST_F(Painting, StaysWithinWhatTheWindowShows)
{
    const ClipCase kCases[] = {
        { "the child paints over its parent", WS_POPUP, WS_CHILD | WS_VISIBLE, kBlue },
        { "a parent that clips its children leaves them alone", WS_POPUP | WS_CLIPCHILDREN, WS_CHILD | WS_VISIBLE,
          kBlue },
        { "a hidden child shows the parent", WS_POPUP | WS_CLIPCHILDREN, WS_CHILD, kRed },
    };
    for (const ClipCase& c : kCases) {
        SCOPED_TRACE(c.why);
        RECT painted{};
        const TestWindow parent(
            journal_, { .name = "parent", .style = c.parent_style, .handlers = { { WM_PAINT, painter(kRed) } } });
        const TestWindow child(journal_, { .name = "child",
                                           .style = c.child_style,
                                           .rect = { 80, 60, 200, 200 },
                                           .parent = parent.get(),
                                           .handlers = { { WM_PAINT, painter(kBlue, &painted) } } });
        ShowWindow(parent.get(), SW_SHOW);
        run_queue();
        EXPECT_EQ(seen({ 89, 79 }), kRed);
        EXPECT_EQ(seen({ 90, 80 }), c.in_child);
        EXPECT_EQ(seen({ 109, 99 }), c.in_child);

        // Where it was shows its parent again.
        SetWindowPos(child.get(), nullptr, 0, 0, 10, 10, SWP_NOZORDER);
        run_queue();
        EXPECT_EQ(seen({ 95, 85 }), kRed);
        EXPECT_EQ(seen({ 15, 25 }), c.in_child);
    }
}

TEST_F(Painting, RespectsSiblingsThatClip)
{
    const DWORD style = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS;
    const TestWindow parent(journal_, { .name = "parent", .handlers = { { WM_PAINT, painter(0) } } });
    const TestWindow above(journal_, { .name = "above",
                                       .style = style,
                                       .rect = { 0, 0, 20, 20 },
                                       .parent = parent.get(),
                                       .handlers = { { WM_PAINT, painter(kRed) } } });
    const TestWindow below(journal_, { .name = "below",
                                       .style = style,
                                       .rect = { 10, 10, 30, 30 },
                                       .parent = parent.get(),
                                       .handlers = { { WM_PAINT, painter(kBlue) } } });
    ShowWindow(parent.get(), SW_SHOW);
    run_queue();
    EXPECT_EQ(seen({ 10 + 15, 20 + 15 }), kRed);
    EXPECT_EQ(seen({ 10 + 25, 20 + 25 }), kBlue);
    SetWindowPos(below.get(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    run_queue();
    EXPECT_EQ(seen({ 10 + 15, 20 + 15 }), kBlue);
}

struct SizeCase {
    const char* why;
    UINT class_style;
    RECT expected; // of the paint after growing by 20 pixels each way
};

TEST_F(Painting, AsksForWhatANewSizeUncovers)
{
    const SizeCase kCases[] = {
        { "only the new edges", 0, { 0, 0, 120, 100 } },
        { "all of it", CS_HREDRAW | CS_VREDRAW, { 0, 0, 120, 100 } },
    };
    for (const SizeCase& c : kCases) {
        SCOPED_TRACE(c.why);
        const TestWindow window(journal_,
                                { .class_style = c.class_style, .handlers = { { WM_PAINT, painter(kRed) } } });
        ShowWindow(window.get(), SW_SHOW);
        run_queue();
        const TestWindow* painted = &window;
        const_cast<TestWindow*>(painted)->on(WM_PAINT, painter(kBlue));
        SetWindowPos(window.get(), nullptr, 0, 0, 120, 100, SWP_NOMOVE | SWP_NOZORDER);
        run_queue();
        EXPECT_EQ(seen({ 15, 25 }), c.class_style ? kBlue : kRed);
        EXPECT_EQ(seen({ 125, 25 }), kBlue);
        EXPECT_EQ(seen({ 15, 115 }), kBlue);
    }
}

TEST_F(Painting, DrawsAPlainFrame)
{
    const TestWindow window(
        journal_, { .style = WS_POPUP | WS_CAPTION | WS_SYSMENU, .handlers = { { WM_PAINT, painter(kRed) } } });
    ShowWindow(window.get(), SW_SHOW);
    run_queue();
    EXPECT_EQ(seen({ 10, 20 }), GetSysColor(COLOR_3DFACE));
    EXPECT_EQ(seen({ 10 + 4, 20 + 4 }), GetSysColor(COLOR_ACTIVECAPTION));
    EXPECT_EQ(seen({ 10 + 3, 20 + 22 }), kRed);
    screen_->focus(0);
    run_queue();
    EXPECT_EQ(seen({ 10 + 4, 20 + 4 }), GetSysColor(COLOR_INACTIVECAPTION));
    const HDC dc = GetWindowDC(window.get());
    SetPixel(dc, 0, 0, kBlue);
    ReleaseDC(window.get(), dc);
    run_queue();
    EXPECT_EQ(seen({ 10, 20 }), kBlue);
}

TEST_F(Painting, TakesWindowsOfAnySize)
{
    const SIZE kSizes[] = { { 0, 0 }, { 1, 32'000 }, { 32'000, 32'000 }, { 2'000'000'000, 1 }, { 100, 80 } };
    const TestWindow window(journal_, { .handlers = { { WM_PAINT, painter(kRed) } } });
    ShowWindow(window.get(), SW_SHOW);
    for (const SIZE& size : kSizes) {
        SCOPED_TRACE(testing::Message() << size.cx << 'x' << size.cy);
        EXPECT_TRUE(SetWindowPos(window.get(), nullptr, 10, 20, size.cx, size.cy, SWP_NOZORDER));
        InvalidateRect(window.get(), nullptr, FALSE);
        run_queue();
    }
    EXPECT_EQ(seen({ 109, 99 }), kRed);
}

TEST_F(Painting, OnAWindowThatIsGoneDrawsNothing)
{
    HDC dc = nullptr;
    {
        const TestWindow window(journal_, {});
        ShowWindow(window.get(), SW_SHOW);
        dc = GetDC(window.get());
        EXPECT_EQ(WindowFromDC(dc), window.get());
    }
    SetPixel(dc, 1, 1, kRed);
    EXPECT_EQ(ReleaseDC(nullptr, dc), 1);
    EXPECT_EQ(ReleaseDC(nullptr, dc), 0);
}

TEST_F(Painting, FollowsTheWindowsOutline)
{
    const TestWindow under(
        journal_, { .name = "under", .rect = { 0, 0, 200, 200 }, .handlers = { { WM_PAINT, painter(kRed) } } });
    const TestWindow window(journal_, { .handlers = { { WM_PAINT, painter(kBlue) } } });
    ShowWindow(under.get(), SW_SHOW);
    ShowWindow(window.get(), SW_SHOW);
    SetWindowRgn(window.get(), CreateRectRgn(50, 0, 100, 80), TRUE);
    run_queue();
    EXPECT_EQ(seen({ 10 + 49, 50 }), kRed);
    EXPECT_EQ(seen({ 10 + 50, 50 }), kBlue);
    SetWindowRgn(window.get(), nullptr, TRUE);
    run_queue();
    EXPECT_EQ(seen({ 10 + 49, 50 }), kBlue);
}

} // namespace
} // namespace test
