// The menu that a thread shows: its popup windows, one for each submenu that is open, and the loop that takes the
// pointer and the keys while they are there. The first popup holds the capture; the keys stay with the owner.
#pragma once

#include "platform/win32/user/menu_face.h"

namespace win32 {

inline constexpr LPCSTR kMenuClassName = "#32768"; // as documented

class MenuTracker {
public:
    // `flags`: TPM_ flags.
    MenuTracker(HWND owner, UINT flags);
    ~MenuTracker();
    MenuTracker(const MenuTracker&) = delete;
    MenuTracker& operator=(const MenuTracker&) = delete;

    // The calling thread's; null: it shows no menu.
    static MenuTracker* current();

    enum class Begin { unselected, first_selected };
    // Shows the menu until it closes. The id chosen, 0: none was.
    UINT track(HMENU menu, POINT at, Begin begin);
    bool was_shown() const { return shown_; }
    // Ends the loop without a choice.
    void cancel();
    HWND owner() const { return owner_; }

    // What its windows get.
    LRESULT handle_window_message(HWND window, UINT message, WPARAM wparam, LPARAM lparam);

private:
    struct Popup {
        HMENU menu = nullptr;
        HWND window = nullptr;
        std::vector<MenuItem> items;
        MenuLayout layout;
        int selected = -1;
        LONG scrolled = 0; // pixels above the upper edge
    };
    enum class By { mouse, keys };

    bool open_root(POINT at);
    bool open_submenu(std::size_t of);
    bool open(HMENU menu, UINT position, const std::function<RECT(SIZE)>& place);
    void close_from(std::size_t first);
    void close_last();

    void loop();
    bool may_go_on() const;
    void handle(const MSG& message);
    void handle_mouse(const MSG& message);
    void handle_key(unsigned key);
    void move_selection(int step);
    void choose_by_letter(unsigned key);
    void step_in();
    void step_out();
    void scroll(std::size_t popup, LONG by);

    std::optional<std::size_t> popup_at(POINT point) const;
    int item_at(const Popup& popup, POINT point) const;
    void select(std::size_t popup, int item, By by);
    void select_way_to(std::size_t popup);
    void redraw_item(const Popup& popup, int item) const;
    void show_selected(std::size_t popup);
    // Opens the item's submenu, or ends with the item's id.
    void choose(std::size_t popup, By by);
    void follow_hover();

    void paint(const Popup& popup, HDC dc) const;
    SIZE measure_owner_drawn(const MenuItem& item) const;
    void draw_owner_drawn(HDC dc, const RECT& row, const MenuItem& item, HMENU menu, bool selected) const;

    LRESULT notify(UINT message, WPARAM wparam, LPARAM lparam) const;
    void tell_selection(const Popup& popup, By by) const;
    const Popup* find(HWND window) const;

    const HWND owner_;
    const UINT flags_;
    MenuFace face_;
    std::vector<Popup> popups_; // the first one in front
    HMENU root_ = nullptr;
    bool system_ = false; // the owner's system menu
    bool shown_ = false;
    bool ended_ = false;
    bool armed_ = false; // a release of the button chooses: the pointer has been on an item since the menu opened
    POINT last_point_{};
    UINT chosen_ = 0;
};

// A window is not there any more, or not the active one: a menu that the calling thread shows for it closes.
void cancel_menu_of(HWND window);

} // namespace win32
