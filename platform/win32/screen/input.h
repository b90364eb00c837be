// What both screens know of input.
#pragma once

#include "platform/win32/screen/screen.h"

#include <chrono>

namespace win32 {

// The button that a virtual key code stands for; 0 for the keys of the keyboard.
constexpr unsigned button_of_key(unsigned key)
{
    constexpr unsigned kButtons[] = { 0, kLeftButton, kRightButton, 0, kMiddleButton };
    return key < std::size(kButtons) ? kButtons[key] : 0;
}

// Milliseconds of the clock that events carry.
inline std::uint32_t tick_now()
{
    using namespace std::chrono;
    return static_cast<std::uint32_t>(duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

} // namespace win32
