// A person in front of the screen, told what to do in words.
#pragma once

#include "tests/platform/win32/user/user_support.h"

#include <string>
#include <vector>

namespace test {

// In the order in which they are said.
std::vector<std::string> words_of(const std::string& text);

class Person {
public:
    explicit Person(std::shared_ptr<win32::MemoryScreen> screen) : screen_(std::move(screen)) {}

    // A key: "down" "up" "left" "right" "home" "end" "enter" "escape" "alt" "f4" "f10" "space", or a letter; "hold:KEY"
    // and "leave:KEY" one half of it. The pointer: "at:X,Y" moves it, "press" and "release" the left button, "click"
    // and "rclick" all of a click.
    void act(const std::string& word);

private:
    std::shared_ptr<win32::MemoryScreen> screen_;
};

// Says the next word at each beat of a timer, so that it goes on while a window runs a loop of its own. "look" waits
// one beat. One at a time.
class Play {
public:
    Play(Person person, const std::string& text);
    ~Play();
    Play(const Play&) = delete;
    Play& operator=(const Play&) = delete;
    bool is_over() const { return words_.empty(); }

private:
    static void CALLBACK beat(HWND window, UINT message, UINT_PTR timer, DWORD time);

    static Play* current_;
    Person person_;
    std::vector<std::string> words_; // the next one last
    UINT_PTR timer_;
};

} // namespace test
