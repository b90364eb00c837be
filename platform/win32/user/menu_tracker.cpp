#include "platform/win32/user/menu_tracker.h"

#include "platform/win32/kernel/last_error.h"
#include "platform/win32/user/capture_loop.h"
#include "platform/win32/user/system_menu.h"
#include "platform/win32/user/window.h"
#include "winbase.h"

#include <algorithm>
#include <utility>

namespace win32 {

namespace {

constexpr DWORD kMenuIsOpen = 1446; // ERROR_POPUP_ALREADY_ACTIVE
constexpr UINT_PTR kHoverTimer = 1;
constexpr UINT kHoverTime = 250; // milliseconds that the pointer rests on an item before its submenu opens
constexpr LONG kWheelStep = 48;  // pixels a notch

thread_local MenuTracker* current_tracker = nullptr;

bool is_repeated(const MSG& message)
{
    return (message.lParam >> 30 & 1) != 0;
}

} // namespace

MenuTracker::MenuTracker(HWND owner, UINT flags) : owner_(owner), flags_(flags)
{
    current_tracker = this;
}

MenuTracker::~MenuTracker()
{
    current_tracker = nullptr;
}

MenuTracker* MenuTracker::current()
{
    return current_tracker;
}

UINT MenuTracker::track(HMENU menu, POINT at, Begin begin)
{
    root_ = menu;
    system_ = is_system_menu(owner_, menu);
    GetCursorPos(&last_point_);
    notify(WM_ENTERMENULOOP, !system_, 0);
    if (system_)
        update_system_menu(owner_);
    notify(WM_INITMENU, reinterpret_cast<WPARAM>(menu), 0);
    shown_ = IsWindow(owner_) && !ended_ && open_root(at);
    if (shown_) {
        SetCapture(popups_.front().window);
        SetCursor(LoadCursorA(nullptr, IDC_ARROW));
        if (begin == Begin::first_selected)
            move_selection(1);
        loop();
    }
    ended_ = true;
    if (shown_ && !popups_.empty() && GetCapture() == popups_.front().window)
        ReleaseCapture();
    close_from(0);
    if (shown_)
        notify(WM_MENUSELECT, MAKEWPARAM(0, 0xFFFF), 0);
    notify(WM_EXITMENULOOP, !system_, 0);
    return chosen_;
}

void MenuTracker::cancel()
{
    if (std::exchange(ended_, true))
        return;
    chosen_ = 0;
    PostMessageA(nullptr, WM_NULL, 0, 0); // the loop may be waiting
}

// ---- The loop.

bool MenuTracker::may_go_on() const
{
    if (ended_ || popups_.empty() || !IsWindow(owner_))
        return false;
    for (const Popup& popup : popups_) {
        if (!IsWindow(popup.window))
            return false;
    }
    return GetCapture() == popups_.front().window;
}

void MenuTracker::loop()
{
    bool told_idle = false;
    while (may_go_on()) {
        MSG message;
        if (!PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (!std::exchange(told_idle, true)) {
                notify(WM_ENTERIDLE, MSGF_MENU, reinterpret_cast<LPARAM>(popups_.back().window));
                continue; // there may be something now
            }
            GetMessageA(&message, nullptr, 0, 0);
        }
        told_idle = false;
        if (message.message == WM_QUIT) {
            PostQuitMessage(static_cast<int>(message.wParam)); // the outer loop's to end by
            break;
        }
        handle(message);
    }
}

void MenuTracker::handle(const MSG& message)
{
    if (is_mouse_message(message.message) && message.hwnd == popups_.front().window) {
        handle_mouse(message);
    } else if (message.message == WM_MOUSEWHEEL) {
        if (const auto popup = popup_at(message.pt))
            scroll(*popup, -GET_WHEEL_DELTA_WPARAM(message.wParam) * kWheelStep / WHEEL_DELTA);
    } else if (is_key_press(message.message)) {
        const bool closes = message.wParam == VK_MENU || message.wParam == VK_F10;
        if (closes && !is_repeated(message))
            cancel();
        else
            handle_key(static_cast<unsigned>(message.wParam));
    } else if (!is_key_message(message.message)) {
        DispatchMessageA(&message);
    }
}

void MenuTracker::handle_mouse(const MSG& message)
{
    const auto popup = popup_at(message.pt);
    const int item = popup ? item_at(popups_[*popup], message.pt) : -1;
    const bool right = message.message == WM_RBUTTONUP;
    switch (message.message) {
    case WM_MOUSEMOVE:
        if (message.pt.x == last_point_.x && message.pt.y == last_point_.y)
            return; // the popup came, the pointer did not
        last_point_ = message.pt;
        if (popup)
            select(*popup, item, By::mouse);
        else if (!popups_.empty())
            select(popups_.size() - 1, -1, By::mouse);
        armed_ |= item >= 0;
        break;
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
    case WM_MBUTTONDOWN:
        if (!popup) {
            cancel();
            return;
        }
        select(*popup, item, By::mouse);
        armed_ = true;
        if (item >= 0 && may_go_on() && popups_[*popup].items[static_cast<std::size_t>(item)].submenu)
            choose(*popup, By::mouse);
        break;
    case WM_LBUTTONUP:
    case WM_RBUTTONUP:
        if (item >= 0 && armed_ && (!right || (flags_ & TPM_RIGHTBUTTON)))
            choose(*popup, By::mouse);
        break;
    default:
        break;
    }
}

void MenuTracker::handle_key(unsigned key)
{
    const bool mirrored = (flags_ & TPM_LAYOUTRTL) != 0;
    switch (key) {
    case VK_ESCAPE:
        if (popups_.size() > 1)
            close_last();
        else
            cancel();
        break;
    case VK_RETURN:
        if (popups_.back().selected >= 0)
            choose(popups_.size() - 1, By::keys);
        break;
    case VK_DOWN:
        move_selection(1);
        break;
    case VK_UP:
        move_selection(-1);
        break;
    case VK_HOME:
        popups_.back().selected = -1;
        move_selection(1);
        break;
    case VK_END:
        popups_.back().selected = 0;
        move_selection(-1);
        break;
    case VK_RIGHT:
    case VK_LEFT:
        if ((key == VK_RIGHT) != mirrored)
            step_in();
        else
            step_out();
        break;
    default:
        choose_by_letter(key);
        break;
    }
}

// ---- Selecting.

// To the next item that is no separator, round the ends.
void MenuTracker::move_selection(int step)
{
    const Popup& popup = popups_.back();
    const int count = static_cast<int>(popup.items.size());
    int at = popup.selected >= 0 ? popup.selected : (step > 0 ? -1 : count);
    for (int tried = 0; tried < count; tried++) {
        at = (at + step + count) % count;
        if (!popup.items[static_cast<std::size_t>(at)].is_separator()) {
            select(popups_.size() - 1, at, By::keys);
            return;
        }
    }
}

// The only item with that letter is chosen; of several the next one is selected.
void MenuTracker::choose_by_letter(unsigned key)
{
    const Popup& popup = popups_.back();
    const int count = static_cast<int>(popup.items.size());
    std::vector<int> found; // in the order in which they follow the selected one
    for (int i = 1; i <= count; i++) {
        const int at = (popup.selected + i) % count;
        const MenuItem& item = popup.items[static_cast<std::size_t>(at)];
        if (!item.is_separator() && key_of_item(item) == key)
            found.push_back(at);
    }
    if (found.empty())
        return;
    select(popups_.size() - 1, found.front(), By::keys);
    if (found.size() == 1 && may_go_on())
        choose(popups_.size() - 1, By::keys);
}

void MenuTracker::step_in()
{
    const Popup& popup = popups_.back();
    if (popup.selected >= 0 && popup.items[static_cast<std::size_t>(popup.selected)].submenu)
        choose(popups_.size() - 1, By::keys);
}

void MenuTracker::step_out()
{
    if (popups_.size() > 1)
        close_last();
}

void MenuTracker::select(std::size_t index, int item, By by)
{
    if (index >= popups_.size())
        return;
    Popup& popup = popups_[index];
    if (item >= 0 && popup.items[static_cast<std::size_t>(item)].is_separator())
        item = -1;
    const bool stays = popup.selected == item;
    const bool leads_on = index + 1 < popups_.size(); // to a submenu that is open
    if (leads_on && item < 0)
        return; // on its edge the pointer is on its way
    if (!stays) {
        redraw_item(popup, popup.selected);
        popup.selected = item;
        redraw_item(popup, item);
    }
    if (by == By::mouse)
        select_way_to(index);
    if (by == By::keys) {
        show_selected(index);
        close_from(index + 1);
    } else if (!stays || leads_on) {
        SetTimer(popups_.front().window, kHoverTimer, kHoverTime, nullptr);
    }
    if (!stays && index < popups_.size())
        tell_selection(popups_[index], by);
}

// On its way into a submenu the pointer may have touched other items of the menus before.
void MenuTracker::select_way_to(std::size_t index)
{
    for (std::size_t i = 0; i < index; i++) {
        Popup& popup = popups_[i];
        const auto way = std::find_if(popup.items.begin(), popup.items.end(),
                                      [&](const MenuItem& item) { return item.submenu == popups_[i + 1].menu; });
        const int item = way == popup.items.end() ? -1 : static_cast<int>(way - popup.items.begin());
        if (popup.selected == item)
            continue;
        redraw_item(popup, std::exchange(popup.selected, item));
        redraw_item(popup, item);
    }
}

// The pointer has rested: the submenu of the item it is on opens, others close.
void MenuTracker::follow_hover()
{
    KillTimer(popups_.front().window, kHoverTimer);
    const auto index = popup_at(last_point_);
    if (!index)
        return;
    const int item = item_at(popups_[*index], last_point_);
    if (item < 0 || item != popups_[*index].selected)
        return;
    const HMENU submenu = popups_[*index].items[static_cast<std::size_t>(item)].submenu;
    const bool is_open = *index + 1 < popups_.size() && popups_[*index + 1].menu == submenu;
    close_from(*index + (is_open ? 2 : 1));
    if (submenu && !is_open)
        open_submenu(*index);
}

void MenuTracker::choose(std::size_t index, By by)
{
    if (index >= popups_.size() || popups_[index].selected < 0)
        return;
    const Popup& popup = popups_[index];
    const auto position = static_cast<std::size_t>(popup.selected);
    const auto now = menu_items(popup.menu); // it may have changed since it was shown
    if (!now) {
        cancel();
        return;
    }
    if (position >= now->size() || !(*now)[position].is_enabled())
        return;
    const MenuItem& item = (*now)[position];
    if (!item.submenu) {
        chosen_ = item.id;
        ended_ = true;
        return;
    }
    if (index + 1 < popups_.size() && popups_[index + 1].menu == item.submenu)
        return; // it is open
    close_from(index + 1);
    if (open_submenu(index) && by == By::keys)
        move_selection(1);
}

// ---- What the owner hears.

LRESULT MenuTracker::notify(UINT message, WPARAM wparam, LPARAM lparam) const
{
    return (flags_ & TPM_NONOTIFY) || !IsWindow(owner_) ? 0 : SendMessageA(owner_, message, wparam, lparam);
}

void MenuTracker::tell_selection(const Popup& popup, By by) const
{
    if (popup.selected < 0) {
        notify(WM_MENUSELECT, 0, reinterpret_cast<LPARAM>(popup.menu));
        return;
    }
    const MenuItem& item = popup.items[static_cast<std::size_t>(popup.selected)];
    const UINT id = item.submenu ? static_cast<UINT>(popup.selected) : item.id;
    const UINT flags = item.flags() | MF_HILITE | (by == By::mouse ? MF_MOUSESELECT : 0) | (system_ ? MF_SYSMENU : 0);
    notify(WM_MENUSELECT, MAKEWPARAM(static_cast<WORD>(id), static_cast<WORD>(flags)),
           reinterpret_cast<LPARAM>(popup.menu));
}

LRESULT MenuTracker::handle_window_message(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    switch (message) {
    case WM_PAINT: {
        PAINTSTRUCT paint_struct;
        if (const Popup* found = find(window); BeginPaint(window, &paint_struct) && found) {
            const Popup popup = *found; // an owner that draws may end it
            paint(popup, paint_struct.hdc);
        }
        EndPaint(window, &paint_struct);
        return 0;
    }
    case WM_ERASEBKGND:
        return TRUE; // painting covers it
    case WM_MOUSEACTIVATE:
        return MA_NOACTIVATE;
    case WM_TIMER:
        if (may_go_on())
            follow_hover();
        return 0;
    case WM_CAPTURECHANGED:
    case WM_DESTROY:
        if (find(window))
            cancel();
        return 0;
    default:
        return DefWindowProcA(window, message, wparam, lparam);
    }
}

void cancel_menu_of(HWND window)
{
    MenuTracker* const tracker = MenuTracker::current();
    if (tracker && (tracker->owner() == window || IsChild(window, tracker->owner())))
        tracker->cancel();
}

} // namespace win32

using namespace win32;

BOOL TrackPopupMenu(HMENU menu, UINT flags, int x, int y, int, HWND owner, const RECT*)
{
    if (!IsMenu(menu))
        return fail(FALSE, ERROR_INVALID_HANDLE);
    const WindowPtr window = require_window(owner);
    if (!window)
        return FALSE;
    if (!window->queue || !window->queue->is_mine())
        return fail(FALSE, ERROR_ACCESS_DENIED);
    if (MenuTracker::current())
        return fail(FALSE, kMenuIsOpen);
    const bool system = is_system_menu(owner, menu);
    bool shown = false;
    UINT chosen = 0;
    {
        MenuTracker tracker(owner, flags);
        chosen = tracker.track(menu, { x, y }, MenuTracker::Begin::unselected);
        shown = tracker.was_shown();
    }
    if (flags & TPM_RETURNCMD)
        return static_cast<BOOL>(chosen);
    if (chosen != 0 && !(flags & TPM_NONOTIFY))
        PostMessageA(owner, system ? WM_SYSCOMMAND : WM_COMMAND, chosen, 0);
    return shown;
}

BOOL EndMenu()
{
    MenuTracker* const tracker = MenuTracker::current();
    if (tracker)
        tracker->cancel();
    return tracker != nullptr;
}
