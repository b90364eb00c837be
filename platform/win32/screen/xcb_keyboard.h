// From the X server's key codes to virtual keys and the text they type.
#pragma once

#include "platform/win32/screen/xcb_connection.h"

#include <cstdint>
#include <string>
#include <vector>

namespace win32 {

// What the server's state mask says of the three mouse buttons and of the modifiers.
constexpr unsigned buttons_in(unsigned state)
{
    return state >> 8 & (kLeftButton | kMiddleButton | kRightButton); // the server's bits stand in our order
}
constexpr unsigned modifiers_in(unsigned state)
{
    return ((state & XCB_MOD_MASK_SHIFT) != 0 ? kShift : 0U) | ((state & XCB_MOD_MASK_CONTROL) != 0 ? kControl : 0U) |
           ((state & XCB_MOD_MASK_1) != 0 ? kAlt : 0U);
}

class XcbKeyboard {
public:
    explicit XcbKeyboard(XcbConnection& connection) : connection_(connection) {}

    // The VK_ code of the key, whatever modifiers are held; 0 for one that has none.
    unsigned key_of(xcb_keycode_t code);
    // What the key types with the modifiers in `state`, UTF-8. Empty for keys that type nothing, for combinations with
    // Control or Alt, and for characters that the server names by an old name outside Latin-1.
    std::string text_of(xcb_keycode_t code, std::uint16_t state);
    bool is_down(unsigned key); // asks the server

    void forget_mapping() { symbols_.clear(); } // the server has another one

private:
    void learn_mapping();
    xcb_keysym_t symbol(xcb_keycode_t code, std::size_t column);

    XcbConnection& connection_;
    xcb_keycode_t first_code_ = 0;
    std::size_t columns_ = 0;
    std::vector<xcb_keysym_t> symbols_;
};

} // namespace win32
