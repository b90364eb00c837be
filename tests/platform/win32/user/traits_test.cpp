// What the desktop is told of our windows.
#include "tests/platform/win32/user/user_support.h"

#include <cerrno>

namespace test {
namespace {

using win32::SurfaceKind;

class Traits : public UserTest {
protected:
    win32::MemoryScreen::Look look_of(const TestWindow& window) { return *screen_->look(surface_of(window.get())); }
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
    const TestWindow owner(journal_, { .rect = { 300, 300, 350, 350 } });
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        const TestWindow window(journal_, { .ex_style = c.ex_style });
        EXPECT_EQ(look_of(window).traits.kind, c.kind);
        EXPECT_EQ(look_of(window).traits.class_name, program_invocation_short_name);
        SetWindowLongPtrA(window.get(), GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR>(owner.get()));
        EXPECT_EQ(look_of(window).traits.owner, surface_of(owner.get()));
    }
}

TEST_F(Traits, HoldTheSmallestSizeThatWasNamedLast)
{
    TestWindow window(journal_, { .style = WS_POPUP | WS_THICKFRAME });
    window.on(WM_GETMINMAXINFO, [](HWND, WPARAM, LPARAM lparam) {
        reinterpret_cast<MINMAXINFO*>(lparam)->ptMinTrackSize = { 300, 250 };
        return 0;
    });
    EXPECT_EQ(look_of(window).traits.min_size.cx, GetSystemMetrics(SM_CXMINTRACK));
    SetWindowPos(window.get(), nullptr, 0, 0, 500, 500, 0);
    EXPECT_EQ(look_of(window).traits.min_size.cx, 300);
    EXPECT_EQ(look_of(window).traits.min_size.cy, 250);
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
    EXPECT_TRUE(look_of(window).icons.empty());
    SendMessageA(window.get(), WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(icon));
    SendMessageA(window.get(), WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(icon));
    ASSERT_EQ(look_of(window).icons.size(), 2U);
    EXPECT_EQ(look_of(window).icons[0].width, 2);
    EXPECT_EQ(look_of(window).icons[0].pixels, (std::vector<std::uint32_t>{ 0xFF102030, 0, 0xFF708090, 0 }));
    SendMessageA(window.get(), WM_SETICON, ICON_BIG, 0);
    SendMessageA(window.get(), WM_SETICON, ICON_SMALL, 0);
    EXPECT_TRUE(look_of(window).icons.empty());
    DestroyIcon(icon);
    DeleteObject(mask);
    DeleteObject(colour);
}

} // namespace
} // namespace test
