#include "platform/win32/user/system_menu.h"

#include "platform/win32/kernel/last_error.h"
#include "platform/win32/user/menu_tracker.h"
#include "platform/win32/user/window.h"
#include "winbase.h"
#include "winnls.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace win32 {

namespace {

constexpr UINT kSimplifiedChinese = 936;

struct Entry {
    WPARAM command; // 0: a separator
    std::u16string_view english;
    std::u16string_view chinese;
};
constexpr Entry kEntries[] = {
    { SC_RESTORE, u"&Restore", u"还原(&R)" },
    { SC_MOVE, u"&Move", u"移动(&M)" },
    { SC_SIZE, u"&Size", u"大小(&S)" },
    { SC_MINIMIZE, u"Mi&nimize", u"最小化(&N)" },
    { SC_MAXIMIZE, u"Ma&ximize", u"最大化(&X)" },
    { 0, u"", u"" },
    { SC_CLOSE, u"&Close\tAlt+F4", u"关闭(&C)\tAlt+F4" },
};

std::string in_code_page(std::u16string_view text)
{
    std::string bytes(text.size() * 4, '\0');
    const int length = WideCharToMultiByte(CP_ACP, 0, text.data(), static_cast<int>(text.size()), bytes.data(),
                                           static_cast<int>(bytes.size()), nullptr, nullptr);
    bytes.resize(static_cast<std::size_t>(length));
    return bytes;
}

HMENU make_system_menu(bool closable)
{
    const bool chinese = GetACP() == kSimplifiedChinese;
    std::vector<MenuItem> items;
    for (const Entry& entry : kEntries) {
        MenuItem item;
        item.id = static_cast<UINT>(entry.command);
        if (entry.command == 0)
            item.kind = MF_SEPARATOR;
        else
            item.text = in_code_page(chinese ? entry.chinese : entry.english);
        if (entry.command == SC_CLOSE)
            item.state = MF_DEFAULT | (closable ? 0 : MF_GRAYED); // what a double click on the icon does
        items.push_back(std::move(item));
    }
    return make_menu(std::move(items));
}

bool may_have_system_menu(const Window& window)
{
    return is_top_level(window) || (window.style & WS_SYSMENU);
}

// Makes `fresh` the window's menu in place of `stale`, unless another thread was first or the window is gone. The menu
// that the window has then.
HMENU give_menu(Window& window, HMENU stale, HMENU fresh)
{
    HMENU kept = nullptr;
    {
        const WindowLock lock = lock_windows();
        if (window.parent && window.system_menu == stale)
            window.system_menu = fresh;
        kept = window.system_menu;
    }
    if (kept != fresh)
        DestroyMenu(fresh);
    return kept;
}

// Shows the menu, and posts what was chosen.
bool show(HWND window, POINT at, MenuTracker::Begin begin)
{
    const HMENU menu = GetSystemMenu(window, FALSE);
    if (!menu || MenuTracker::current() || !IsWindowVisible(window))
        return false;
    const bool mirrored = (GetWindowLongA(window, GWL_EXSTYLE) & static_cast<LONG>(WS_EX_LAYOUTRTL)) != 0;
    UINT chosen = 0;
    {
        MenuTracker tracker(window, mirrored ? TPM_LAYOUTRTL : 0);
        chosen = tracker.track(menu, at, begin);
    }
    if (chosen == 0)
        return false;
    PostMessageA(window, WM_SYSCOMMAND, chosen, MAKELPARAM(static_cast<WORD>(at.x), static_cast<WORD>(at.y)));
    return true;
}

} // namespace

bool is_system_menu(HWND owner, HMENU menu)
{
    const WindowPtr window = find_window(owner);
    const WindowLock lock = lock_windows();
    return window && menu && window->system_menu == menu;
}

void update_system_menu(HWND handle)
{
    const WindowPtr window = find_window(handle);
    if (!window)
        return;
    HMENU menu = nullptr;
    DWORD style = 0;
    {
        const WindowLock lock = lock_windows();
        menu = window->system_menu;
        style = window->style;
    }
    const bool minimised = (style & WS_MINIMIZE) != 0;
    const bool maximised = !minimised && (style & WS_MAXIMIZE);
    const bool normal = !minimised && !maximised;
    enable_items(menu, { { SC_RESTORE, !normal },
                         { SC_MOVE, normal },
                         { SC_SIZE, normal && (style & WS_THICKFRAME) },
                         { SC_MINIMIZE, !minimised && (style & WS_MINIMIZEBOX) },
                         { SC_MAXIMIZE, !maximised && (style & WS_MAXIMIZEBOX) } });
}

bool may_close(HWND handle)
{
    const WindowPtr window = find_window(handle);
    if (!window)
        return false;
    HMENU menu = nullptr;
    bool closable = false;
    {
        const WindowLock lock = lock_windows();
        menu = window->system_menu;
        closable = !(window->window_class->info.style & CS_NOCLOSE);
    }
    const auto items = menu_items(menu);
    return !items ? closable : std::any_of(items->begin(), items->end(), [](const MenuItem& item) {
        return item.id == SC_CLOSE && item.is_enabled();
    });
}

bool open_system_menu(HWND window, OpenedBy by)
{
    POINT corner{};
    if (GetWindowLongA(window, GWL_EXSTYLE) & static_cast<LONG>(WS_EX_LAYOUTRTL)) {
        RECT client{};
        GetClientRect(window, &client);
        corner.x = client.right;
    }
    const auto begin = by == OpenedBy::keys ? MenuTracker::Begin::first_selected : MenuTracker::Begin::unselected;
    return ClientToScreen(window, &corner) && show(window, corner, begin);
}

bool open_system_menu_at(HWND window, POINT point)
{
    return show(window, point, MenuTracker::Begin::unselected);
}

} // namespace win32

using namespace win32;

HMENU GetSystemMenu(HWND handle, BOOL revert)
{
    const WindowPtr window = require_window(handle);
    if (!window || !window->queue)
        return nullptr;
    HMENU menu = nullptr;
    bool closable = false;
    {
        const WindowLock lock = lock_windows();
        if (!may_have_system_menu(*window))
            return nullptr;
        menu = revert ? std::exchange(window->system_menu, nullptr) : window->system_menu;
        closable = !(window->window_class->info.style & CS_NOCLOSE);
    }
    if (revert) {
        if (menu)
            DestroyMenu(menu);
        return nullptr;
    }
    if (!IsMenu(menu))
        menu = give_menu(*window, menu, make_system_menu(closable));
    update_system_menu(handle);
    return menu;
}
