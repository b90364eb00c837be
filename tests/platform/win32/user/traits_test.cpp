// What the desktop is told of our windows.
#include "tests/platform/win32/user/user_support.h"

#include <cerrno>
#include <cstring>
#include <optional>

namespace {

using test::TestWindow;
using test::WindowPlan;
using win32::SurfaceKind;

class Traits : public test::UserTest {
protected:
    win32::MemoryScreen::Look LookOf(const TestWindow& window) { return *screen_->look(surface_of(window.get())); }
};

TEST_F(Traits, SayWhoseBusinessAWindowIs)
{
    const struct {
        const char* why;
        DWORD ex_style;
        SurfaceKind kind;
    } kCases[] = {
        { "a window", 0, SurfaceKind::window },
        { "a tool window", WS_EX_TOOLWINDOW, SurfaceKind::tool_window },
        { "never active: a menu", WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, SurfaceKind::menu },
        { "nor clicked: a tip", WS_EX_NOACTIVATE | WS_EX_TRANSPARENT, SurfaceKind::tool_tip },
    };
    WindowPlan owning;
    owning.rect = { 300, 300, 350, 350 };
    const TestWindow owner(journal_, owning);
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        WindowPlan plan;
        plan.ex_style = c.ex_style;
        const TestWindow window(journal_, plan);
        EXPECT_EQ(LookOf(window).traits.kind, c.kind);
        EXPECT_EQ(LookOf(window).traits.class_name, program_invocation_short_name);
        SetWindowLongPtrA(window.get(), GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR>(owner.get()));
        EXPECT_EQ(LookOf(window).traits.owner, surface_of(owner.get()));
    }
}

TEST_F(Traits, HoldTheSmallestSizeThatWasNamedLast)
{
    const POINT smallest{ 300, 250 };
    WindowPlan plan;
    plan.style = WS_POPUP | WS_THICKFRAME;
    plan.handlers[WM_GETMINMAXINFO] = [smallest](HWND, WPARAM, LPARAM lparam) -> std::optional<LRESULT> {
        reinterpret_cast<MINMAXINFO*>(lparam)->ptMinTrackSize = smallest;
        return 0;
    };
    const TestWindow window(journal_, plan);
    EXPECT_EQ(LookOf(window).traits.min_size.cx, GetSystemMetrics(SM_CXMINTRACK))
        << "asked before it knows its handlers";
    SetWindowPos(window.get(), nullptr, 0, 0, 500, 500, 0);
    EXPECT_EQ(LookOf(window).traits.min_size.cx, 300);
    EXPECT_EQ(LookOf(window).traits.min_size.cy, 250);
}

TEST_F(Traits, HoldTheIconsOfAWindow)
{
    DWORD colours[] = { 0x00102030, 0x00405060, 0x00708090, 0x00000000 };
    BYTE bits[] = { 0x40, 0, 0x40, 0 }; // the second column is not there
    const HBITMAP mask = CreateBitmap(2, 2, 1, 1, bits);
    const HBITMAP colour = CreateBitmap(2, 2, 1, 32, colours);
    const ICONINFO info{ TRUE, 0, 0, mask, colour };
    const HICON icon = CreateIconIndirect(&info);
    const TestWindow window(journal_, {});
    EXPECT_TRUE(LookOf(window).icons.empty());
    SendMessageA(window.get(), WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(icon));
    SendMessageA(window.get(), WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(icon));
    ASSERT_EQ(LookOf(window).icons.size(), 2U);
    EXPECT_EQ(LookOf(window).icons[0].width, 2);
    EXPECT_EQ(LookOf(window).icons[0].pixels, (std::vector<std::uint32_t>{ 0xFF102030, 0, 0xFF708090, 0 }));
    SendMessageA(window.get(), WM_SETICON, ICON_BIG, 0);
    SendMessageA(window.get(), WM_SETICON, ICON_SMALL, 0);
    EXPECT_TRUE(LookOf(window).icons.empty());
    DestroyIcon(icon);
    DeleteObject(mask);
    DeleteObject(colour);
}

} // namespace
