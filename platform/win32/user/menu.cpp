#include "platform/win32/user/menu.h"

#include "platform/win32/kernel/handle_table.h"
#include "platform/win32/kernel/last_error.h"
#include "platform/win32/kernel/never_destroyed.h"
#include "winbase.h"

#include <algorithm>
#include <cstring>

namespace win32 {

namespace {

constexpr std::uint8_t kMenuTag = 0x53;
constexpr UINT kNoItem = 0xFFFFFFFF;
constexpr std::size_t kMostItems = 0x10000;
constexpr UINT kKinds = MF_SEPARATOR | MF_OWNERDRAW;
constexpr UINT kStates = MF_GRAYED | MF_DISABLED | MF_CHECKED | MF_DEFAULT;
constexpr UINT kItemFlags = MF_BYPOSITION | MF_POPUP | MF_HILITE | kKinds | kStates;

struct Menu {
    std::vector<MenuItem> items; // guarded by the menu lock
};
using MenuPtr = std::shared_ptr<Menu>;
using MenuLock = std::unique_lock<std::mutex>;

MenuLock lock_menus()
{
    static NeverDestroyed<std::mutex> mutex;
    return MenuLock(mutex.get());
}

HandleTable<Menu>& menus()
{
    static NeverDestroyed<HandleTable<Menu>> table(kMenuTag);
    return table.get();
}

MenuPtr find_menu(HMENU menu)
{
    return menu ? menus().find(reinterpret_cast<std::uintptr_t>(menu)) : nullptr;
}

MenuPtr require_menu(HMENU menu)
{
    MenuPtr found = find_menu(menu);
    if (!found)
        set_last_error(ERROR_INVALID_HANDLE);
    return found;
}

// The menu and all below it, each once.
std::vector<HMENU> family(HMENU menu, const MenuLock&)
{
    std::vector<HMENU> found{ menu };
    for (std::size_t i = 0; i < found.size(); i++) {
        const MenuPtr next = find_menu(found[i]);
        if (!next)
            continue;
        for (const MenuItem& item : next->items) {
            if (item.submenu && std::find(found.begin(), found.end(), item.submenu) == found.end())
                found.push_back(item.submenu);
        }
    }
    return found;
}

struct Place {
    MenuPtr menu;
    std::size_t position = 0;

    MenuItem& item() const { return menu->items[position]; }
};

// By position in the menu itself, else by id in it and its submenus, its own items first. None: no such item.
std::optional<Place> find_item(HMENU menu, UINT item, UINT flags, const MenuLock& lock)
{
    if (flags & MF_BYPOSITION) {
        const MenuPtr found = find_menu(menu);
        return found && item < found->items.size() ? std::optional<Place>({ found, item }) : std::nullopt;
    }
    for (const HMENU each : family(menu, lock)) {
        const MenuPtr found = find_menu(each);
        for (std::size_t i = 0; found && i < found->items.size(); i++) {
            const MenuItem& candidate = found->items[i];
            if (!candidate.submenu && !candidate.is_separator() && candidate.id == item)
                return Place{ found, i };
        }
    }
    return std::nullopt;
}

std::optional<Place> require_item(HMENU menu, UINT item, UINT flags, const MenuLock& lock)
{
    auto found = find_item(menu, item, flags, lock);
    if (!found)
        set_last_error(find_menu(menu) ? ERROR_INVALID_PARAMETER : ERROR_INVALID_HANDLE);
    return found;
}

// None: the flags or the submenu will not do.
std::optional<MenuItem> item_of(UINT flags, UINT_PTR id, LPCSTR text)
{
    if ((flags & ~kItemFlags) || (flags & kKinds) == kKinds)
        return std::nullopt;
    MenuItem item;
    item.kind = flags & kKinds;
    item.state = flags & kStates;
    if (flags & MF_POPUP) {
        item.submenu = reinterpret_cast<HMENU>(id);
        if (!find_menu(item.submenu))
            return std::nullopt;
    } else {
        item.id = static_cast<UINT>(id);
    }
    if (item.kind == MF_OWNERDRAW)
        item.data = reinterpret_cast<ULONG_PTR>(text);
    else if (item.kind == MF_STRING && text)
        item.text = text;
    return item;
}

bool holds(HMENU outer, HMENU inner, const MenuLock& lock)
{
    const std::vector<HMENU> below = family(outer, lock);
    return std::find(below.begin(), below.end(), inner) != below.end();
}

bool may_take(HMENU menu, const MenuItem& item, const MenuLock& lock)
{
    return !item.submenu || !holds(item.submenu, menu, lock);
}

void destroy_family(HMENU menu, const MenuLock& lock)
{
    for (const HMENU each : family(menu, lock))
        menus().remove(reinterpret_cast<std::uintptr_t>(each));
}

DWORD exchange_state(HMENU menu, UINT item, UINT flags, UINT bits)
{
    const MenuLock lock = lock_menus();
    const auto found = require_item(menu, item, flags, lock);
    if (!found)
        return kNoItem;
    UINT& state = found->item().state;
    const UINT before = state & bits;
    state = (state & ~bits) | (flags & bits);
    return before;
}

} // namespace

std::optional<std::vector<MenuItem>> menu_items(HMENU menu)
{
    const MenuLock lock = lock_menus();
    const MenuPtr found = find_menu(menu);
    return found ? std::optional(found->items) : std::nullopt;
}

HMENU make_menu(std::vector<MenuItem> items)
{
    const auto menu = std::make_shared<Menu>();
    menu->items = std::move(items);
    return reinterpret_cast<HMENU>(menus().add(menu));
}

void enable_items(HMENU menu, const std::vector<Availability>& items)
{
    const MenuLock lock = lock_menus();
    for (const Availability& each : items) {
        if (const auto found = find_item(menu, each.id, MF_BYCOMMAND, lock))
            found->item().state = (found->item().state & ~(MF_GRAYED | MF_DISABLED)) | (each.enabled ? 0 : MF_GRAYED);
    }
}

} // namespace win32

using namespace win32;

HMENU CreateMenu()
{
    return make_menu({});
}

HMENU CreatePopupMenu()
{
    return make_menu({});
}

BOOL DestroyMenu(HMENU menu)
{
    const MenuLock lock = lock_menus();
    if (!require_menu(menu))
        return FALSE;
    destroy_family(menu, lock);
    return TRUE;
}

BOOL IsMenu(HMENU menu)
{
    return find_menu(menu) != nullptr;
}

BOOL InsertMenuA(HMENU menu, UINT position, UINT flags, UINT_PTR id, LPCSTR text)
{
    const MenuLock lock = lock_menus();
    const MenuPtr found = require_menu(menu);
    if (!found)
        return FALSE;
    const auto item = item_of(flags, id, text);
    if (!item || !may_take(menu, *item, lock))
        return fail(FALSE, ERROR_INVALID_PARAMETER);
    const Place place = find_item(menu, position, flags, lock).value_or(Place{ found, found->items.size() });
    if (place.menu->items.size() >= kMostItems)
        return fail(FALSE, ERROR_NOT_ENOUGH_MEMORY);
    place.menu->items.insert(place.menu->items.begin() + static_cast<std::ptrdiff_t>(place.position), *item);
    return TRUE;
}

BOOL AppendMenuA(HMENU menu, UINT flags, UINT_PTR id, LPCSTR text)
{
    return InsertMenuA(menu, kNoItem, flags | MF_BYPOSITION, id, text);
}

BOOL ModifyMenuA(HMENU menu, UINT position, UINT flags, UINT_PTR id, LPCSTR text)
{
    const MenuLock lock = lock_menus();
    const auto found = require_item(menu, position, flags, lock);
    if (!found)
        return FALSE;
    auto item = item_of(flags, id, text);
    if (!item || !may_take(menu, *item, lock))
        return fail(FALSE, ERROR_INVALID_PARAMETER);
    std::swap(found->item(), *item);
    if (item->submenu && item->submenu != found->item().submenu)
        destroy_family(item->submenu, lock);
    return TRUE;
}

namespace {

BOOL take_out(HMENU menu, UINT position, UINT flags, bool destroy)
{
    const MenuLock lock = lock_menus();
    const auto found = require_item(menu, position, flags, lock);
    if (!found)
        return FALSE;
    const HMENU submenu = found->item().submenu;
    found->menu->items.erase(found->menu->items.begin() + static_cast<std::ptrdiff_t>(found->position));
    if (submenu && destroy)
        destroy_family(submenu, lock);
    return TRUE;
}

} // namespace

BOOL DeleteMenu(HMENU menu, UINT item, UINT flags)
{
    return take_out(menu, item, flags, true);
}

BOOL RemoveMenu(HMENU menu, UINT item, UINT flags)
{
    return take_out(menu, item, flags, false);
}

int GetMenuItemCount(HMENU menu)
{
    const MenuLock lock = lock_menus();
    const MenuPtr found = require_menu(menu);
    return found ? static_cast<int>(found->items.size()) : -1;
}

UINT GetMenuItemID(HMENU menu, int position)
{
    const MenuLock lock = lock_menus();
    const auto found = require_item(menu, static_cast<UINT>(position), MF_BYPOSITION, lock);
    return found && !found->item().submenu ? found->item().id : kNoItem;
}

HMENU GetSubMenu(HMENU menu, int position)
{
    const MenuLock lock = lock_menus();
    const auto found = require_item(menu, static_cast<UINT>(position), MF_BYPOSITION, lock);
    return found ? found->item().submenu : nullptr;
}

int GetMenuStringA(HMENU menu, UINT item, LPSTR buffer, int size, UINT flags)
{
    const MenuLock lock = lock_menus();
    const auto found = require_item(menu, item, flags, lock);
    if (!found || (buffer && size <= 0))
        return 0;
    const std::string& text = found->item().text;
    if (!buffer)
        return static_cast<int>(text.size());
    const std::size_t length = std::min(text.size(), static_cast<std::size_t>(size - 1));
    std::memcpy(buffer, text.data(), length);
    buffer[length] = '\0';
    return static_cast<int>(length);
}

UINT GetMenuState(HMENU menu, UINT item, UINT flags)
{
    const MenuLock lock = lock_menus();
    const auto found = require_item(menu, item, flags, lock);
    if (!found)
        return kNoItem;
    const MenuPtr submenu = find_menu(found->item().submenu);
    const UINT count = submenu ? static_cast<UINT>(std::min<std::size_t>(submenu->items.size(), 0xFF)) << 8 : 0;
    return found->item().flags() | count;
}

DWORD CheckMenuItem(HMENU menu, UINT item, UINT check)
{
    return exchange_state(menu, item, check, MF_CHECKED);
}

BOOL EnableMenuItem(HMENU menu, UINT item, UINT enable)
{
    return static_cast<BOOL>(exchange_state(menu, item, enable, MF_GRAYED | MF_DISABLED));
}

BOOL SetMenuDefaultItem(HMENU menu, UINT item, UINT by_position)
{
    const MenuLock lock = lock_menus();
    const MenuPtr found = require_menu(menu);
    if (!found)
        return FALSE;
    const UINT flags = by_position ? MF_BYPOSITION : MF_BYCOMMAND;
    const auto chosen = item == kNoItem ? std::nullopt : require_item(menu, item, flags, lock);
    if (item != kNoItem && !chosen)
        return FALSE;
    for (MenuItem& each : found->items)
        each.state &= ~MF_DEFAULT;
    if (chosen)
        chosen->item().state |= MF_DEFAULT;
    return TRUE;
}
