#include "tests/platform/win32/user/menu_play.h"

#include "platform/win32/user/menu_face.h"

#include <algorithm>

namespace test {

namespace {

BOOL CALLBACK add_popup(HWND window, LPARAM found)
{
    char name[16];
    GetClassNameA(window, name, sizeof(name));
    if (std::string(name) == "#32768")
        reinterpret_cast<std::vector<HWND>*>(found)->push_back(window);
    return TRUE;
}

} // namespace

std::vector<HWND> open_popups()
{
    std::vector<HWND> found;
    EnumThreadWindows(GetCurrentThreadId(), add_popup, reinterpret_cast<LPARAM>(&found));
    std::reverse(found.begin(), found.end());
    return found;
}

MenuTest::MenuTest()
{
    screen_->move_pointer({ 900, 700 });
    menu_ = make_menu();
}

MenuTest::~MenuTest()
{
    DestroyMenu(menu_);
}

HMENU MenuTest::make_menu()
{
    const HMENU menu = CreatePopupMenu();
    more_ = CreatePopupMenu();
    AppendMenuA(more_, MF_STRING, 11, "&One");
    AppendMenuA(more_, MF_STRING, 12, "&Two");
    AppendMenuA(menu, MF_STRING, 1, "&Open\tCtrl+O");
    AppendMenuA(menu, MF_STRING | MF_GRAYED, 2, "&Save");
    AppendMenuA(menu, MF_SEPARATOR, 0, nullptr);
    AppendMenuA(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(more_), "&More");
    AppendMenuA(menu, MF_STRING | MF_CHECKED, 4, "E&xit");
    AppendMenuA(menu, MF_STRING, 5, "E&xtra && more");
    return menu;
}

void MenuTest::play(TestWindow& owner, const std::string& words)
{
    words_ = words_of(words);
    std::reverse(words_.begin(), words_.end());
    left_open_ = false;
    owner.on(WM_ENTERIDLE, [this](HWND, WPARAM, LPARAM) { return go_on(); });
}

LRESULT MenuTest::go_on()
{
    const std::vector<HWND> popups = open_popups();
    place_ = popups.empty() ? place_ : rect_of(popups.front());
    if (!words_.empty() && words_.back() == "submenu") {
        if (popups.size() < 2)
            return 0; // the timer that opens it wakes the menu
        words_.pop_back();
    }
    if (words_.empty()) {
        left_open_ = true;
        EndMenu();
    } else {
        do_word(std::exchange(words_.back(), {}));
        words_.pop_back();
    }
    return 0;
}

void MenuTest::do_word(const std::string& word)
{
    Person person(screen_);
    const std::size_t colon = word.find(':');
    const std::string verb = word.substr(0, colon);
    if (verb == "outside") {
        person.act("at:120,110");
        person.act("press");
    } else if (verb == "edge") {
        screen_->move_pointer({ place_.left + 10, place_.top + 1 });
    } else if (colon == std::string::npos || verb == "at") {
        person.act(word);
    } else {
        point_at(word.substr(colon + 1));
        if (verb != "over")
            person.act(verb);
    }
}

void MenuTest::point_at(const std::string& item)
{
    const bool in_submenu = item.size() > 1;
    const std::vector<HWND> popups = open_popups();
    ASSERT_GT(popups.size(), in_submenu ? 1U : 0U);
    const RECT popup = rect_of(popups[in_submenu ? 1 : 0]);
    const auto items = *win32::menu_items(in_submenu ? more_ : menu_);
    const auto layout = win32::MenuFace().lay_out(items, [](const win32::MenuItem&) { return SIZE{ 50, 20 }; });
    const auto id = static_cast<UINT>(std::stoi(item));
    const auto found = std::find_if(items.begin(), items.end(), [id](const win32::MenuItem& i) {
        return (i.submenu ? 3 : i.id) == id && !i.is_separator();
    });
    const RECT& row = layout.items[static_cast<std::size_t>(found - items.begin())];
    screen_->move_pointer({ popup.left + 30, popup.top + (row.top + row.bottom) / 2 });
}

} // namespace test
