#include "tests/platform/win32/user/person.h"

#include <algorithm>
#include <cstdio>
#include <sstream>

namespace test {

namespace {

struct Key {
    const char* word;
    unsigned key;
};
constexpr Key kKeys[] = {
    { "down", VK_DOWN }, { "up", VK_UP },        { "left", VK_LEFT },       { "right", VK_RIGHT }, { "home", VK_HOME },
    { "end", VK_END },   { "enter", VK_RETURN }, { "escape", VK_ESCAPE },   { "alt", VK_MENU },    { "f4", VK_F4 },
    { "f10", VK_F10 },   { "space", VK_SPACE },  { "control", VK_CONTROL },
};

unsigned key_of(const std::string& word)
{
    const auto* found = std::find_if(std::begin(kKeys), std::end(kKeys), [&](const Key& k) { return word == k.word; });
    if (found != std::end(kKeys))
        return found->key;
    return word.size() == 1 ? static_cast<unsigned char>(word[0]) : 0;
}

} // namespace

std::vector<std::string> words_of(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

void Person::act(const std::string& word)
{
    const std::size_t colon = std::min(word.find(':'), word.size());
    const std::string verb = word.substr(0, colon);
    const std::string object = word.substr(std::min(colon + 1, word.size()));
    POINT point = screen_->pointer().position;
    if (verb == "at") {
        std::sscanf(object.c_str(), "%d,%d", &point.x, &point.y);
        screen_->move_pointer(point);
    } else if (verb == "press") {
        screen_->press(win32::kLeftButton);
    } else if (verb == "release") {
        screen_->release(win32::kLeftButton);
    } else if (verb == "click") {
        screen_->click(point);
    } else if (verb == "rclick") {
        screen_->click(point, win32::kRightButton);
    } else if (verb == "hold") {
        screen_->press_key(key_of(object));
    } else if (verb == "leave") {
        screen_->release_key(key_of(object));
    } else if (verb == "elsewhere") {
        screen_->focus(0);
    } else if (const unsigned key = key_of(word)) {
        screen_->press_key(key, word.size() == 1 ? word : "");
        screen_->release_key(key);
    } else {
        ADD_FAILURE() << "no such word: " << word;
    }
}

Play* Play::current_ = nullptr;

Play::Play(Person person, const std::string& text)
    : person_(std::move(person)), words_(words_of(text)), timer_(SetTimer(nullptr, 0, USER_TIMER_MINIMUM, beat))
{
    std::reverse(words_.begin(), words_.end());
    current_ = this;
}

Play::~Play()
{
    KillTimer(nullptr, timer_);
    current_ = nullptr;
}

void CALLBACK Play::beat(HWND, UINT, UINT_PTR, DWORD)
{
    if (current_->is_over())
        return;
    const std::string word = current_->words_.back();
    current_->words_.pop_back();
    if (word != "look")
        current_->person_.act(word);
}

} // namespace test
