// Menus as data: what CreateMenu and its fellows build and the menu loop shows. Safe from any thread; whoever shows a
// menu works with a copy of its items.
#pragma once

#include "winuser.h"

#include <optional>
#include <string>
#include <vector>

namespace win32 {

struct MenuItem {
    UINT kind = MF_STRING; // or MF_SEPARATOR, MF_OWNERDRAW
    UINT state = 0;        // MF_GRAYED, MF_DISABLED, MF_CHECKED, MF_DEFAULT
    UINT id = 0;
    HMENU submenu = nullptr; // owned
    std::string text;        // code page
    ULONG_PTR data = 0;      // of an owner-drawn item

    bool is_separator() const { return kind == MF_SEPARATOR; }
    bool is_enabled() const { return !is_separator() && !(state & (MF_GRAYED | MF_DISABLED)); }
    // As WM_MENUSELECT tells it.
    UINT flags() const { return kind | state | (submenu ? MF_POPUP : 0); }
};

// None: there is no such menu (any more).
std::optional<std::vector<MenuItem>> menu_items(HMENU menu);

HMENU make_menu(std::vector<MenuItem> items);

// Sets MF_GRAYED of the commands that are listed. Others keep what they have.
struct Availability {
    UINT id;
    bool enabled;
};
void enable_items(HMENU menu, const std::vector<Availability>& items);

} // namespace win32
