// A person in front of an open menu, who does the next thing whenever the menu has nothing left to do.
#pragma once

#include "tests/platform/win32/user/person.h"

namespace test {

// The windows that the open menu is shown in, the first one first.
std::vector<HWND> open_popups();

class MenuTest : public UserTest {
protected:
    MenuTest();
    ~MenuTest() override;

    // Says one word at each WM_ENTERIDLE of `owner` and then, if the menu is still open, ends it. Beside what a Person
    // knows: "over:N" "press:N" "release:N" "click:N" at the item with that id (3: the submenu's), "edge" on the menu's
    // edge, "outside" a press beside it; "submenu" waits for one.
    void play(TestWindow& owner, const std::string& words);
    bool left_open() const { return left_open_; }
    const RECT& place() const { return place_; } // of the menu when it was idle last
    std::size_t words_left() const { return words_.size(); }

    HMENU make_menu();

    HMENU menu_ = nullptr;
    HMENU more_ = nullptr; // its submenu

private:
    LRESULT go_on();
    void do_word(const std::string& word);
    void point_at(const std::string& item);

    std::vector<std::string> words_; // the next one last
    bool left_open_ = false;
    RECT place_{};
};

} // namespace test
