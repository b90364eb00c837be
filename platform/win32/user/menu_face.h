// How a menu looks: where its items lie, and drawing them. Knows nothing of windows and input.
#pragma once

#include "platform/win32/user/drawing.h"
#include "platform/win32/user/menu.h"

#include <functional>

namespace win32 {

// An item's text taken apart.
struct ItemText {
    std::string label;                 // without marks
    std::string shortcut;              // what stands at the right
    std::optional<std::size_t> letter; // the marked byte of the label
};
ItemText take_apart(const std::string& text);

// The key that chooses the item: its marked letter in upper case, as key codes are, else the first letter. 0: none.
unsigned key_of_item(const MenuItem& item);

// In the menu's own pixels, as if all of it were seen.
struct MenuLayout {
    SIZE size{};
    std::vector<RECT> items;

    // The item at a height; -1: none.
    int item_at(LONG y) const;
};

class MenuFace {
public:
    using Measure = std::function<SIZE(const MenuItem&)>; // an item that its owner draws
    using Draw = std::function<void(HDC, const RECT&, const MenuItem&, bool selected)>;

    MenuFace();

    MenuLayout lay_out(const std::vector<MenuItem>& items, const Measure& measure) const;
    // Draws what is seen of the menu when `scrolled` pixels of it are above the edge of a window of `size`.
    void draw(HDC dc, SIZE size, LONG scrolled, const MenuLayout& layout, const std::vector<MenuItem>& items,
              int selected, const Draw& draw) const;

private:
    HFONT font_of(const MenuItem& item) const;
    void draw_item(HDC dc, const RECT& row, const MenuItem& item, bool selected) const;
    void draw_text(HDC dc, const RECT& row, const MenuItem& item, int colour) const;

    FontOwner plain_;
    FontOwner bold_; // of a default item
    LONG text_height_ = 0;
    LONG ascent_ = 0;
};

} // namespace win32
