#include "platform/win32/screen/xcb_keyboard.h"

#include <algorithm>
#include <iterator>

namespace win32 {

namespace {

// Keys with consecutive names on both sides.
struct KeyRange {
    xcb_keysym_t first;
    xcb_keysym_t last;
    unsigned key;
};
constexpr KeyRange kKeyRanges[] = {
    { 0x0030, 0x0039, 0x30 },                           // digits
    { 0x0041, 0x005A, 0x41 },                           // letters
    { 0x0061, 0x007A, 0x41 }, { 0xFFBE, 0xFFD5, 0x70 }, // F1 to F24
    { 0xFFB0, 0xFFB9, 0x60 },                           // the keypad's digits
};

struct KeyName {
    xcb_keysym_t symbol;
    unsigned key;
};
constexpr KeyName kKeyNames[] = {
    { 0x0020, 0x20 }, // space
    { 0x0027, 0xDE }, // '
    { 0x002C, 0xBC }, // ,
    { 0x002D, 0xBD }, // -
    { 0x002E, 0xBE }, // .
    { 0x002F, 0xBF }, // the slash
    { 0x003B, 0xBA }, // ;
    { 0x003D, 0xBB }, // =
    { 0x005B, 0xDB }, // [
    { 0x005C, 0xDC }, // the backslash
    { 0x005D, 0xDD }, // ]
    { 0x0060, 0xC0 }, // `
    { 0xFE20, 0x09 }, // Tab with Shift
    { 0xFF08, 0x08 }, // BackSpace
    { 0xFF09, 0x09 }, // Tab
    { 0xFF0D, 0x0D }, // Return
    { 0xFF13, 0x13 }, // Pause
    { 0xFF14, 0x91 }, // Scroll Lock
    { 0xFF1B, 0x1B }, // Escape
    { 0xFF50, 0x24 }, // Home
    { 0xFF51, 0x25 }, // Left
    { 0xFF52, 0x26 }, // Up
    { 0xFF53, 0x27 }, // Right
    { 0xFF54, 0x28 }, // Down
    { 0xFF55, 0x21 }, // Page Up
    { 0xFF56, 0x22 }, // Page Down
    { 0xFF57, 0x23 }, // End
    { 0xFF61, 0x2C }, // Print
    { 0xFF63, 0x2D }, // Insert
    { 0xFF67, 0x5D }, // Menu
    { 0xFF7F, 0x90 }, // Num Lock
    { 0xFF8D, 0x0D }, // the keypad, as it is without Num Lock
    { 0xFF95, 0x24 }, { 0xFF96, 0x25 }, { 0xFF97, 0x26 }, { 0xFF98, 0x27 }, { 0xFF99, 0x28 }, { 0xFF9A, 0x21 },
    { 0xFF9B, 0x22 }, { 0xFF9C, 0x23 }, { 0xFF9D, 0x0C }, { 0xFF9E, 0x2D }, { 0xFF9F, 0x2E }, { 0xFFAA, 0x6A }, // *
    { 0xFFAB, 0x6B },                                                                                           // +
    { 0xFFAD, 0x6D },                                                                                           // -
    { 0xFFAE, 0x6E },                                                                                           // .
    { 0xFFAF, 0x6F },                                                       // the slash
    { 0xFFE1, 0x10 },                                                       // Shift, both
    { 0xFFE2, 0x10 }, { 0xFFE3, 0x11 },                                     // Control, both
    { 0xFFE4, 0x11 }, { 0xFFE5, 0x14 },                                     // Caps Lock
    { 0xFFE7, 0x12 },                                                       // Alt, by its four names
    { 0xFFE8, 0x12 }, { 0xFFE9, 0x12 }, { 0xFFEA, 0x12 }, { 0xFFEB, 0x5B }, // the desktop's own keys
    { 0xFFEC, 0x5C }, { 0xFFFF, 0x2E },                                     // Delete
};

// Keys whose text is a control character.
constexpr KeyName kControlTexts[] = {
    { 0xFF08, '\b' }, { 0xFF09, '\t' }, { 0xFF0D, '\r' }, { 0xFF8D, '\r' }, { 0xFF1B, 0x1B },
};

template <std::size_t Count>
unsigned look_up(const KeyName (&names)[Count], xcb_keysym_t symbol)
{
    const auto* found =
        std::find_if(std::begin(names), std::end(names), [symbol](const KeyName& n) { return n.symbol == symbol; });
    return found == std::end(names) ? 0 : found->key;
}

unsigned virtual_key(xcb_keysym_t symbol)
{
    for (const KeyRange& range : kKeyRanges) {
        if (symbol >= range.first && symbol <= range.last)
            return range.key + (symbol - range.first);
    }
    return look_up(kKeyNames, symbol);
}

// The character that the symbol stands for; 0 for none.
char32_t character(xcb_keysym_t symbol)
{
    constexpr xcb_keysym_t kUnicode = 0x01000000; // names above it are code points
    if ((symbol >= 0x20 && symbol <= 0x7E) || (symbol >= 0xA0 && symbol <= 0xFF))
        return symbol;
    if (symbol > kUnicode && symbol <= kUnicode + 0x10FFFF)
        return symbol - kUnicode;
    if (symbol >= 0xFFAA && symbol <= 0xFFB9) // the keypad's characters
        return symbol - 0xFF80;
    return look_up(kControlTexts, symbol);
}

std::string utf8(char32_t c)
{
    std::string text;
    const auto rest = [&text, c](unsigned shift) { text.push_back(static_cast<char>(0x80 | (c >> shift & 0x3F))); };
    if (c < 0x80) {
        text.push_back(static_cast<char>(c));
    } else if (c < 0x800) {
        text.push_back(static_cast<char>(0xC0 | c >> 6));
        rest(0);
    } else if (c < 0x10000) {
        text.push_back(static_cast<char>(0xE0 | c >> 12));
        rest(6);
        rest(0);
    } else {
        text.push_back(static_cast<char>(0xF0 | c >> 18));
        rest(12);
        rest(6);
        rest(0);
    }
    return text;
}

constexpr bool is_letter(xcb_keysym_t symbol)
{
    return (symbol >= 'a' && symbol <= 'z') || (symbol >= 0xE0 && symbol <= 0xFE);
}

} // namespace

unsigned XcbKeyboard::key_of(xcb_keycode_t code)
{
    return virtual_key(symbol(code, 0));
}

std::string XcbKeyboard::text_of(xcb_keycode_t code, std::uint16_t state)
{
    if ((state & (XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1)) != 0)
        return {};
    const bool third_level = (state & XCB_MOD_MASK_5) != 0;
    const std::size_t group = (state >> 13 & 1U) * 2; // where the server keeps the second layout
    const std::size_t base = third_level ? 4 : group;
    const bool shift = (state & XCB_MOD_MASK_SHIFT) != 0;
    const bool caps = (state & XCB_MOD_MASK_LOCK) != 0 && is_letter(symbol(code, base));
    const bool keypad = (state & XCB_MOD_MASK_2) != 0 && character(symbol(code, base + 1)) >= '*' &&
                        symbol(code, base + 1) >= 0xFFAA; // Num Lock
    const bool upper = shift != (caps || keypad);
    const xcb_keysym_t chosen = symbol(code, base + (upper ? 1 : 0));
    const char32_t typed = character(chosen != 0 ? chosen : symbol(code, base));
    return typed != 0 ? utf8(typed) : std::string();
}

bool XcbKeyboard::is_down(unsigned key)
{
    const auto reply = take_reply(xcb_query_keymap_reply, connection_.get(), xcb_query_keymap(connection_.get()));
    if (!reply)
        return false;
    for (unsigned code = 8; code < 256; code++) {
        const bool down = (reply->keys[code / 8] >> (code % 8) & 1) != 0;
        if (down && key_of(static_cast<xcb_keycode_t>(code)) == key)
            return true;
    }
    return false;
}

void XcbKeyboard::learn_mapping()
{
    const xcb_setup_t* setup = xcb_get_setup(connection_.get());
    first_code_ = setup->min_keycode;
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const auto cookie = xcb_get_keyboard_mapping(connection_.get(), first_code_, count);
    const auto reply = take_reply(xcb_get_keyboard_mapping_reply, connection_.get(), cookie);
    if (!reply)
        return;
    const xcb_keysym_t* first = xcb_get_keyboard_mapping_keysyms(reply.get());
    columns_ = reply->keysyms_per_keycode;
    symbols_.assign(first, first + xcb_get_keyboard_mapping_keysyms_length(reply.get()));
}

xcb_keysym_t XcbKeyboard::symbol(xcb_keycode_t code, std::size_t column)
{
    if (symbols_.empty())
        learn_mapping();
    const std::size_t at = static_cast<std::size_t>(code - first_code_) * columns_ + column;
    return code >= first_code_ && column < columns_ && at < symbols_.size() ? symbols_[at] : 0;
}

} // namespace win32
