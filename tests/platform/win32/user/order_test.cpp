// Which window lies above which, on the list and on the screen.
#include "tests/platform/win32/user/person.h"

namespace test {
namespace {

class Order : public UserTest {};

void put(HWND window, HWND after)
{
    SetWindowPos(window, after, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

// "b^" b to the top, "b_" to the bottom, "b*" topmost, "b." no longer, "bc" beneath c, "b!" active, "b=c" owned by c.
void act(const std::map<char, HWND>& windows, const std::string& word)
{
    const std::map<char, HWND> places{
        { '^', HWND_TOP }, { '_', HWND_BOTTOM }, { '*', HWND_TOPMOST }, { '.', HWND_NOTOPMOST }
    };
    const HWND window = windows.at(word[0]);
    if (word[1] == '!')
        SetActiveWindow(window);
    else if (word[1] == '=')
        SetWindowLongPtrA(window, GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR>(windows.at(word[2])));
    else
        put(window, places.contains(word[1]) ? places.at(word[1]) : windows.at(word[1]));
}

struct OrderCase {
    const char* why;
    const char* words;    // said to "dcba", d owned by b, all shown
    const char* expected; // topmost first
};

TEST_F(Order, KeepsOwnedWindowsAboveTheirOwners)
{
    const OrderCase kCases[] = {
        { "as they came", "", "dcba" },
        { "to the top", "a^", "adcb" },
        { "an owner takes what it owns along", "b^", "dbca" },
        { "also from beneath another", "dc b^", "dbca" },
        { "to the bottom", "c_", "dbac" },
        { "beneath a certain one", "cb", "dbca" },
        { "an owned window does not go beneath its owner", "db", "cdba" },
        { "to the bottom it takes its owner along", "d_", "cadb" },
        { "topmost, with what it owns", "b* c^", "dbca" },
        { "and back among the others", "b* d. c^", "cdba" },
        { "the active window comes to the front", "b!", "dbca" },
        { "a new owner", "c=a a^", "cadb" },
        { "nobody owns his owner", "b=d b^", "dbca" },
    };
    for (const OrderCase& c : kCases) {
        SCOPED_TRACE(c.why);
        const TestWindow a(journal_, { .rect = { 0, 0, 100, 100 } });
        const TestWindow b(journal_, { .rect = { 10, 0, 100, 100 } });
        const TestWindow third(journal_, { .rect = { 20, 0, 100, 100 } });
        const TestWindow d(journal_, { .rect = { 30, 0, 100, 100 }, .parent = b.get() });
        const std::map<char, HWND> windows{
            { 'a', a.get() }, { 'b', b.get() }, { 'c', third.get() }, { 'd', d.get() }
        };
        for (const auto& [name, window] : windows)
            ShowWindow(window, SW_SHOWNOACTIVATE);
        for (const std::string& word : words_of(c.words))
            act(windows, word);
        std::string listed;
        for (HWND at = GetTopWindow(nullptr); at; at = GetWindow(at, GW_HWNDNEXT))
            listed += "abcd"[rect_of(at).left / 10];
        EXPECT_EQ(listed, c.expected);
        std::string seen;
        for (const win32::SurfaceId surface : screen_->stack())
            seen.insert(seen.begin(), "abcd"[screen_->look(surface)->bounds.left / 10]);
        EXPECT_EQ(seen, c.expected);
    }
}

TEST_F(Order, OfChildrenIsThatOfTheirBirth)
{
    const TestWindow parent(journal_, {});
    const TestWindow first(journal_, child_of(parent.get(), "first", {}));
    const TestWindow second(journal_, { .style = WS_CHILD, .parent = parent.get(), .id = 8 });
    EXPECT_EQ(GetWindow(parent.get(), GW_CHILD), first.get());
    EXPECT_EQ(GetWindow(first.get(), GW_HWNDNEXT), second.get());
    EXPECT_EQ(GetDlgItem(parent.get(), 8), second.get());
    put(second.get(), HWND_TOP);
    EXPECT_EQ(GetTopWindow(parent.get()), second.get());
    put(second.get(), first.get());
    EXPECT_EQ(GetWindow(second.get(), GW_HWNDPREV), first.get());
}

TEST_F(Order, TellsTheDesktopOfTheTopmost)
{
    const TestWindow topmost(journal_, { .ex_style = WS_EX_TOPMOST, .rect = { 0, 0, 7, 7 } });
    const TestWindow plain(journal_, {});
    EXPECT_EQ(GetTopWindow(nullptr), topmost.get());
    put(plain.get(), HWND_TOPMOST);
    EXPECT_EQ(GetTopWindow(nullptr), plain.get());
    EXPECT_TRUE(screen_->look(surface_of(plain.get()))->traits.topmost);
}

} // namespace
} // namespace test
