// The windows that a menu is shown in.
#include "platform/win32/user/menu_tracker.h"

#include "platform/win32/screen/geometry.h"
#include "platform/win32/user/window.h"
#include "wingdi.h"

#include <algorithm>

namespace win32 {

namespace {

constexpr LONG kOverlap = 3; // of a submenu and the menu it hangs from, in pixels

LRESULT CALLBACK popup_procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    MenuTracker* const tracker = MenuTracker::current();
    return tracker ? tracker->handle_window_message(window, message, wparam, lparam)
                   : DefWindowProcA(window, message, wparam, lparam);
}

LPCSTR popup_class()
{
    static const ATOM atom = [] {
        WNDCLASSEXA popup{};
        popup.cbSize = sizeof(popup);
        popup.style = CS_SAVEBITS | CS_GLOBALCLASS;
        popup.lpfnWndProc = popup_procedure;
        popup.hCursor = LoadCursorA(nullptr, IDC_ARROW);
        popup.lpszClassName = kMenuClassName;
        return RegisterClassExA(&popup);
    }();
    return reinterpret_cast<LPCSTR>(static_cast<ULONG_PTR>(atom));
}

RECT work_area_at(POINT point)
{
    MONITORINFO info{};
    info.cbSize = sizeof(info);
    GetMonitorInfoA(MonitorFromPoint(point, MONITOR_DEFAULTTONEAREST), &info);
    return info.rcWork;
}

// [at, at + extent) brought into [first, last), its beginning before its end.
LONG brought_within(LONG at, LONG extent, LONG first, LONG last)
{
    return std::max(first, std::min(at, last - extent));
}

RECT rect_at(LONG x, LONG y, SIZE size)
{
    return { x, y, x + size.cx, y + size.cy };
}

// Aligned to the point; one that would cross the lower edge of the work area goes upward from it.
RECT place_root(POINT at, SIZE size, UINT flags, const RECT& work)
{
    const bool mirrored = (flags & TPM_LAYOUTRTL) != 0;
    LONG x = at.x;
    LONG y = at.y;
    if (flags & TPM_CENTERALIGN)
        x -= size.cx / 2;
    else if (((flags & TPM_RIGHTALIGN) != 0) != mirrored)
        x -= size.cx;
    const bool fits_above_only = y + size.cy > work.bottom && y - size.cy >= work.top;
    if (flags & TPM_VCENTERALIGN)
        y -= size.cy / 2;
    else if ((flags & TPM_BOTTOMALIGN) || fits_above_only)
        y -= size.cy;
    return rect_at(brought_within(x, size.cx, work.left, work.right), brought_within(y, size.cy, work.top, work.bottom),
                   size);
}

// Beside the item, on the other side where there is no room.
RECT place_beside(const RECT& menu, const RECT& item, SIZE size, bool mirrored, const RECT& work)
{
    const LONG right = menu.right - kOverlap;
    const LONG left = menu.left + kOverlap - size.cx;
    const bool fits_right = right + size.cx <= work.right;
    const bool fits_left = left >= work.left;
    const bool goes_left = mirrored ? fits_left || !fits_right : !fits_right && fits_left;
    return rect_at(brought_within(goes_left ? left : right, size.cx, work.left, work.right),
                   brought_within(item.top - kOverlap, size.cy, work.top, work.bottom), size);
}

SIZE bounded_by(SIZE size, const RECT& work)
{
    return { std::min(size.cx, width_of(work)), std::min(size.cy, height_of(work)) };
}

} // namespace

bool MenuTracker::open_root(POINT at)
{
    const RECT work = work_area_at(at);
    return open(root_, 0, [&](SIZE size) { return place_root(at, bounded_by(size, work), flags_, work); });
}

bool MenuTracker::open_submenu(std::size_t of)
{
    if (of + 1 != popups_.size() || popups_[of].selected < 0 || !may_go_on())
        return false;
    const Popup& popup = popups_[of];
    const auto position = static_cast<std::size_t>(popup.selected);
    RECT menu{};
    GetWindowRect(popup.window, &menu);
    const RECT item = moved(popup.layout.items[position], { menu.left, menu.top - popup.scrolled });
    const RECT work = work_area_at(top_left(item));
    return open(popup.items[position].submenu, static_cast<UINT>(position), [&](SIZE size) {
        return place_beside(menu, item, bounded_by(size, work), (flags_ & TPM_LAYOUTRTL) != 0, work);
    });
}

// The owner may change the menu, or end it all, before it is shown. False: it is not shown.
bool MenuTracker::open(HMENU menu, UINT position, const std::function<RECT(SIZE)>& place)
{
    notify(WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(menu), MAKELPARAM(static_cast<WORD>(position), system_ ? 1 : 0));
    auto items = menu_items(menu);
    if (ended_ || !IsWindow(owner_) || !items || items->empty())
        return false;
    Popup popup;
    popup.menu = menu;
    popup.items = std::move(*items);
    popup.layout = face_.lay_out(popup.items, [this](const MenuItem& item) { return measure_owner_drawn(item); });
    const RECT rect = place(popup.layout.size);
    popup.window =
        CreateWindowExA(WS_EX_TOOLWINDOW | WS_EX_TOPMOST | WS_EX_NOACTIVATE, popup_class(), nullptr, WS_POPUP,
                        rect.left, rect.top, width_of(rect), height_of(rect), owner_, nullptr, nullptr, nullptr);
    if (!popup.window)
        return false;
    const HWND window = popup.window;
    popups_.push_back(std::move(popup));
    ShowWindow(window, SW_SHOWNOACTIVATE);
    return true;
}

void MenuTracker::close_from(std::size_t first)
{
    while (popups_.size() > first)
        close_last();
}

void MenuTracker::close_last()
{
    const Popup popup = std::move(popups_.back());
    popups_.pop_back();
    DestroyWindow(popup.window);
    notify(WM_UNINITMENUPOPUP, reinterpret_cast<WPARAM>(popup.menu), MAKELPARAM(0, system_ ? MF_SYSMENU : 0));
}

const MenuTracker::Popup* MenuTracker::find(HWND window) const
{
    const auto found =
        std::find_if(popups_.begin(), popups_.end(), [window](const Popup& popup) { return popup.window == window; });
    return found == popups_.end() ? nullptr : &*found;
}

// ---- Where things are.

std::optional<std::size_t> MenuTracker::popup_at(POINT point) const
{
    for (std::size_t i = popups_.size(); i-- > 0;) {
        RECT rect{};
        if (GetWindowRect(popups_[i].window, &rect) && PtInRect(&rect, point))
            return i;
    }
    return std::nullopt;
}

int MenuTracker::item_at(const Popup& popup, POINT point) const
{
    RECT rect{};
    GetWindowRect(popup.window, &rect);
    return popup.layout.item_at(point.y - rect.top + popup.scrolled);
}

void MenuTracker::redraw_item(const Popup& popup, int item) const
{
    if (item < 0)
        return;
    RECT row = popup.layout.items[static_cast<std::size_t>(item)];
    OffsetRect(&row, 0, -popup.scrolled);
    InvalidateRect(popup.window, &row, FALSE);
}

void MenuTracker::scroll(std::size_t index, LONG by)
{
    Popup& popup = popups_[index];
    RECT rect{};
    GetClientRect(popup.window, &rect);
    const LONG wanted =
        std::clamp(popup.scrolled + by, LONG{ 0 }, std::max(popup.layout.size.cy - rect.bottom, LONG{ 0 }));
    if (std::exchange(popup.scrolled, wanted) != wanted)
        InvalidateRect(popup.window, nullptr, FALSE);
}

void MenuTracker::show_selected(std::size_t index)
{
    const Popup& popup = popups_[index];
    if (popup.selected < 0)
        return;
    RECT rect{};
    GetClientRect(popup.window, &rect);
    const RECT& row = popup.layout.items[static_cast<std::size_t>(popup.selected)];
    const LONG above = popup.scrolled - row.top;
    const LONG below = row.bottom - (popup.scrolled + rect.bottom);
    if (above > 0)
        scroll(index, -above);
    else if (below > 0)
        scroll(index, below);
}

// ---- Drawing.

void MenuTracker::paint(const Popup& popup, HDC dc) const
{
    RECT rect{};
    GetClientRect(popup.window, &rect);
    if (flags_ & TPM_LAYOUTRTL)
        SetLayout(dc, LAYOUT_RTL);
    const HMENU menu = popup.menu;
    face_.draw(dc, { rect.right, rect.bottom }, popup.scrolled, popup.layout, popup.items, popup.selected,
               [&](HDC target, const RECT& row, const MenuItem& item, bool selected) {
                   draw_owner_drawn(target, row, item, menu, selected);
               });
}

SIZE MenuTracker::measure_owner_drawn(const MenuItem& item) const
{
    MEASUREITEMSTRUCT measure{ ODT_MENU, 0, item.id, 0, 0, item.data };
    notify(WM_MEASUREITEM, 0, reinterpret_cast<LPARAM>(&measure));
    constexpr UINT kMost = 0x7FFF;
    return { static_cast<LONG>(std::min(measure.itemWidth, kMost)),
             static_cast<LONG>(std::min(measure.itemHeight, kMost)) };
}

void MenuTracker::draw_owner_drawn(HDC dc, const RECT& row, const MenuItem& item, HMENU menu, bool selected) const
{
    UINT state = selected ? ODS_SELECTED : 0;
    state |= item.state & MF_GRAYED ? ODS_GRAYED : 0;
    state |= item.state & MF_DISABLED ? ODS_DISABLED : 0;
    state |= item.state & MF_CHECKED ? ODS_CHECKED : 0;
    DRAWITEMSTRUCT draw{
        ODT_MENU, 0, item.id, ODA_DRAWENTIRE, state, reinterpret_cast<HWND>(menu), dc, row, item.data
    };
    const int saved = SaveDC(dc);
    notify(WM_DRAWITEM, 0, reinterpret_cast<LPARAM>(&draw));
    RestoreDC(dc, saved);
}

} // namespace win32
