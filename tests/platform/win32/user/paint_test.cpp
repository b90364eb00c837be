// What is painted, where, when, and how often the screen is shown it.
#include "tests/platform/win32/user/user_support.h"

#include <random>

namespace test {
namespace {

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
    EXPECT_EQ(journal_.take(), "");
    show(window);
    EXPECT_EQ(journal_.take(), "NCPAINT PAINT ERASEBKGND");
    EXPECT_TRUE(unerased); // the class has no background
    EXPECT_EQ(seen({ 10, 20 }), kRed);
    EXPECT_EQ(seen({ 109, 99 }), kRed);

    const RECT first{ 10, 10, 20, 20 };
    const RECT second{ 30, 12, 40, 300 };
    const RECT both{ 10, 10, 40, 80 };
    InvalidateRect(window.get(), &first, FALSE);
    InvalidateRect(window.get(), &second, FALSE);
    RECT update{};
    EXPECT_TRUE(GetUpdateRect(window.get(), &update, FALSE));
    run_queue();
    EXPECT_EQ(journal_.take(), "PAINT");
    EXPECT_EQ(update, both);
    EXPECT_EQ(painted, both);

    InvalidateRect(window.get(), &first, TRUE);
    ValidateRect(window.get(), &first);
    run_queue();
    EXPECT_EQ(journal_.take(), "");
}

TEST_F(Painting, ErasesWithTheClassBrush)
{
    const TestWindow window(journal_, { .background = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1) });
    show(window);
    EXPECT_EQ(seen({ 50, 50 }), GetSysColor(COLOR_BTNFACE));
}

TEST_F(Painting, ShowsTheScreenOnceATurn)
{
    const TestWindow window(journal_, { .handlers = { { WM_PAINT, painter(kRed) } } });
    ShowWindow(window.get(), SW_SHOW);
    EXPECT_TRUE(UpdateWindow(window.get()));
    EXPECT_EQ(seen({ 50, 50 }), kRed) << "at once";
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
    EXPECT_EQ(presented.front().damage, (RECT{ 5, 7, 15, 8 }));
    EXPECT_EQ(seen({ 15, 27 }), kBlue);
    run_queue();
    EXPECT_TRUE(screen_->take_presented().empty());
}

TEST_F(Painting, ReachesTheScreenFromAnotherThread)
{
    const TestWindow window(journal_, { .handlers = { { WM_PAINT, painter(kRed) } } });
    show(window);
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

// A window as the test believes it to be.
struct Pane {
    std::unique_ptr<TestWindow> window;
    COLORREF colour = 0;
    RECT rect{}; // in its parent
    bool visible = true;
    std::optional<RECT> outline{};
    std::vector<Pane*> children{}; // the foremost first
};

const Pane& pane_at(const Pane& pane, POINT point)
{
    for (const Pane* child : pane.children) {
        const POINT within{ point.x - child->rect.left, point.y - child->rect.top };
        if (child->visible && PtInRect(&child->rect, point) && (!child->outline || PtInRect(&*child->outline, within)))
            return pane_at(*child, within);
    }
    return pane;
}

TEST_F(Painting, ShowsOfAnyTreeOfWindowsWhatLiesInFront)
{
    std::mt19937 random(7);
    const auto below = [&](LONG limit) { return static_cast<LONG>(random() % static_cast<unsigned>(limit)); };
    const auto any_rect = [&] {
        const POINT at{ below(80) - 10, below(60) - 10 };
        return RECT{ at.x, at.y, at.x + below(60), at.y + below(50) };
    };
    std::vector<Pane> panes(10);
    const auto make = [&](Pane& pane, Pane* parent, WindowPlan plan) {
        pane.colour = RGB(25 * (&pane - panes.data()), 100, 0);
        pane.rect = plan.rect;
        plan.handlers[WM_PAINT] = painter(pane.colour);
        pane.window = std::make_unique<TestWindow>(journal_, plan);
        if (parent)
            parent->children.push_back(&pane);
    };
    journal_.keep_only({ WM_CLOSE });
    make(panes[0], nullptr, { .style = WS_POPUP | WS_CLIPCHILDREN });
    for (std::size_t i = 1; i < panes.size(); i++) {
        Pane& parent = panes[(i - 1) / 3];
        make(panes[i], &parent,
             child_of(parent.window->get(), "", any_rect(), WS_CLIPSIBLINGS | (i % 2 ? WS_CLIPCHILDREN : 0)));
    }
    show(*panes[0].window);
    for (int turn = 0; turn < 150; turn++) {
        SCOPED_TRACE(turn);
        const std::size_t chosen = 1 + random() % (panes.size() - 1);
        Pane& pane = panes[chosen];
        const HWND window = pane.window->get();
        std::vector<Pane*>& siblings = panes[(chosen - 1) / 3].children;
        switch (random() % 6) {
        case 0:
            pane.rect = any_rect();
            MoveWindow(window, pane.rect.left, pane.rect.top, pane.rect.right - pane.rect.left,
                       pane.rect.bottom - pane.rect.top, TRUE);
            break;
        case 1:
            pane.visible = !pane.visible;
            ShowWindow(window, pane.visible ? SW_SHOWNA : SW_HIDE);
            break;
        case 2:
            std::erase(siblings, &pane);
            siblings.insert(siblings.begin(), &pane);
            SetWindowPos(window, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
            break;
        case 3:
            pane.outline = any_rect();
            SetWindowRgn(window, CreateRectRgnIndirect(&*pane.outline), TRUE);
            break;
        case 4:
            pane.outline.reset();
            SetWindowRgn(window, nullptr, TRUE);
            break;
        default:
            InvalidateRect(GetParent(window), nullptr, FALSE);
        }
        turn % 2 ? run_queue() : (void)UpdateWindow(panes[0].window->get());
        const auto picture = screen_->picture();
        int wrong = 0;
        for (int y = 0; y < 80; y++) {
            for (int x = 0; x < 100; x++)
                wrong +=
                    picture.at(10 + x, 20 + y) != GetRValue(pane_at(panes[0], { x, y }).colour) * 0x10000U + 0x6400;
        }
        ASSERT_EQ(wrong, 0);
        const POINT point{ below(100), below(80) };
        ASSERT_EQ(WindowFromPoint({ 10 + point.x, 20 + point.y }), pane_at(panes[0], point).window->get());
    }
}

TEST_F(Painting, AsksForWhatANewSizeUncovers)
{
    for (const UINT class_style : { 0U, CS_HREDRAW, CS_VREDRAW }) {
        SCOPED_TRACE(class_style);
        TestWindow window(journal_, { .class_style = class_style, .handlers = { { WM_PAINT, painter(kRed) } } });
        show(window);
        window.on(WM_PAINT, painter(kBlue));
        SetWindowPos(window.get(), nullptr, 0, 0, 120, 100, SWP_NOMOVE | SWP_NOZORDER);
        run_queue();
        EXPECT_EQ(seen({ 15, 25 }), class_style ? kBlue : kRed);
        EXPECT_EQ(seen({ 125, 25 }), kBlue);
        EXPECT_EQ(seen({ 15, 115 }), kBlue);
    }
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
    const TestWindow under(journal_, { .rect = { 0, 0, 200, 200 }, .handlers = { { WM_PAINT, painter(kRed) } } });
    const TestWindow window(journal_, { .handlers = { { WM_PAINT, painter(kBlue) } } });
    show(under);
    show(window);
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
