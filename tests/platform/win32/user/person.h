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

// Says the next word at each beat of a timer of the window, so that it goes on while a loop of the window runs, and
// runs the queue until the last one has been done. "look" waits one beat.
class Play {
public:
    Play(TestWindow& window, Person person, const std::string& text);
    ~Play();
    Play(const Play&) = delete;
    Play& operator=(const Play&) = delete;
    bool is_over() const { return words_.empty(); }

private:
    HWND window_;
    UINT_PTR timer_ = 0;
    std::vector<std::string> words_; // the next one last
};

} // namespace test
