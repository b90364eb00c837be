// Which window lies above which, on the list and on the screen.
#include "tests/platform/win32/user/user_support.h"

#include <algorithm>

namespace test {
namespace {

struct Windows4 {
    HWND a;
    HWND b;
    HWND c;
    HWND d;
};

struct OrderCase {
    const char* why;
    // Begins with "dcba", d owned by b, all shown.
    std::function<void(const Windows4&)> act;
    const char* expected; // topmost first
};

class Order : public UserTest {};

void put(HWND window, HWND after)
{
    SetWindowPos(window, after, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

TEST_F(Order, KeepsOwnedWindowsAboveTheirOwners)
{
    const OrderCase kCases[] = {
        { "as they came", [](const Windows4&) {}, "dcba" },
        { "to the top", [](const Windows4& w) { put(w.a, HWND_TOP); }, "adcb" },
        { "an owner takes what it owns along", [](const Windows4& w) { put(w.b, HWND_TOP); }, "dbca" },
        { "also from beneath another",
          [](const Windows4& w) {
              put(w.d, w.c);
              put(w.b, HWND_TOP);
          },
          "dbca" },
        { "to the bottom", [](const Windows4& w) { put(w.c, HWND_BOTTOM); }, "dbac" },
        { "beneath a certain one", [](const Windows4& w) { put(w.c, w.b); }, "dbca" },
        { "an owned window does not go beneath its owner", [](const Windows4& w) { put(w.d, w.b); }, "cdba" },
        { "to the bottom it takes its owner along", [](const Windows4& w) { put(w.d, HWND_BOTTOM); }, "cadb" },
        { "topmost, with what it owns",
          [](const Windows4& w) {
              put(w.b, HWND_TOPMOST);
              put(w.c, HWND_TOP);
          },
          "dbca" },
        { "and back among the others",
          [](const Windows4& w) {
              put(w.b, HWND_TOPMOST);
              put(w.d, HWND_NOTOPMOST);
              put(w.c, HWND_TOP);
          },
          "cdba" },
        { "the active window comes to the front", [](const Windows4& w) { SetActiveWindow(w.b); }, "dbca" },
        { "a new owner",
          [](const Windows4& w) {
              SetWindowLongPtrA(w.c, GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR>(w.a));
              put(w.a, HWND_TOP);
          },
          "cadb" },
        { "nobody owns his owner",
          [](const Windows4& w) {
              SetWindowLongPtrA(w.b, GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR>(w.d));
              put(w.b, HWND_TOP);
          },
          "dbca" },
    };
    for (const OrderCase& c : kCases) {
        SCOPED_TRACE(c.why);
        const TestWindow a(journal_, { .name = "a", .rect = { 0, 0, 100, 100 } });
        const TestWindow b(journal_, { .name = "b", .rect = { 10, 0, 100, 100 } });
        const TestWindow third(journal_, { .name = "c", .rect = { 20, 0, 100, 100 } });
        const TestWindow d(journal_, { .name = "d", .rect = { 30, 0, 100, 100 }, .parent = b.get() });
        const Windows4 windows{ a.get(), b.get(), third.get(), d.get() };
        for (const HWND each : { a.get(), b.get(), third.get(), d.get() })
            ShowWindow(each, SW_SHOWNOACTIVATE);
        c.act(windows);
        std::string listed;
        for (HWND at = GetWindow(a.get(), GW_HWNDFIRST); at; at = GetWindow(at, GW_HWNDNEXT)) {
            char name[8] = {};
            GetWindowTextA(at, name, sizeof(name));
            listed += name;
        }
        EXPECT_EQ(listed, c.expected);
        std::string seen;
        for (const win32::SurfaceId surface : screen_->stack())
            seen.insert(seen.begin(), "abcd"[screen_->look(surface)->bounds.left / 10]);
        EXPECT_EQ(seen, c.expected);
    }
}

} // namespace
} // namespace test
