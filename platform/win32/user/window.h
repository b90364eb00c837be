// A window, the tree of windows, and where things lie in it.
//
// One lock guards the tree and the windows' changing fields. It is never held while a procedure runs, so after every
// call out a window is looked up again by its handle. Functions that end in a `Locked` argument ask for the lock.
#pragma once

#include "platform/win32/gdi/region.h"
#include "platform/win32/kernel/handle_table.h"
#include "platform/win32/screen/geometry.h"
#include "platform/win32/user/message_queue.h"
#include "platform/win32/user/top_surface.h"
#include "platform/win32/user/window_class.h"
#include "winuser.h"

#include <atomic>
#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace win32 {

struct Window {
    HWND handle = nullptr;
    std::shared_ptr<MessageQueue> queue; // of the thread it belongs to; null: the desktop
    WindowClassPtr window_class;
    std::atomic<WNDPROC> procedure{ nullptr };
    std::shared_ptr<TopSurface> surface; // of a top-level window

    // Guarded by the window lock.
    DWORD style = 0;
    DWORD ex_style = 0;
    LONG_PTR user_data = 0;
    LONG_PTR id = 0;
    HINSTANCE instance = nullptr;
    HICON icon_small = nullptr;
    HICON icon_big = nullptr;
    HMENU system_menu = nullptr; // owned; made when somebody asks for it
    std::vector<std::byte> extra;
    std::string text;
    Window* parent = nullptr; // the desktop of a top-level window; null: not in the tree (any more)
    Window* owner = nullptr;
    std::vector<Window*> children; // topmost first
    RECT rect{};                   // in the parent's client area, on the screen for a top-level window
    RECT client{};                 // relative to the top left corner of `rect`
    SIZE smallest{};               // as WM_GETMINMAXINFO last answered; 0 by 0: it was not asked
    RECT normal_rect{};            // where it was before it was minimised or maximised
    std::optional<Region> outline; // window coordinates
    Region invalid;                // client coordinates
    bool erase = false;            // the invalid region's background is to be erased
    bool frame_invalid = false;
    bool paint_asked = false;    // WM_PAINT though nothing is invalid
    bool placed_once = false;    // WM_SIZE and WM_MOVE were sent
    bool going = false;          // DestroyWindow has begun
    int pressed_box = HTNOWHERE; // of the default frame: held down
    bool told_icons = false;     // the desktop has some of it
};
using WindowPtr = std::shared_ptr<Window>;

using WindowLock = std::unique_lock<std::mutex>;
[[nodiscard]] WindowLock lock_windows();
using Locked = const WindowLock&;

HandleTable<Window>& windows();
// Null: no such window.
WindowPtr find_window(HWND window);
// The same, leaving ERROR_INVALID_WINDOW_HANDLE.
WindowPtr require_window(HWND window);
Window& desktop();

LRESULT call_procedure(Window& window, UINT message, WPARAM wparam, LPARAM lparam);

// ---- The tree.

bool is_top_level(const Window& window);
Window& root_of(Window& window, Locked);
bool is_descendant(const Window& ancestor, const Window& window, Locked);
// It and all its ancestors are, and none is minimised.
bool is_shown(const Window& window, Locked);
// It and what lies in it, parents first.
std::vector<HWND> subtree(const Window& window, Locked);
std::vector<HWND> top_level_windows(Locked); // topmost first
std::vector<HWND> owned_by(const Window& window, Locked);
void unlink(Window& window, Locked);
// The window behind a surface, null if it is gone.
HWND window_of_surface(SurfaceId surface, Locked);

// ---- Where things lie.

constexpr RECT moved(const RECT& rect, POINT by)
{
    return { rect.left + by.x, rect.top + by.y, rect.right + by.x, rect.bottom + by.y };
}
constexpr POINT top_left(const RECT& rect)
{
    return { rect.left, rect.top };
}

// The corner of the window in pixels of its root's surface.
POINT origin_in_root(const Window& window, Locked);
RECT window_on_screen(const Window& window, Locked);
RECT client_on_screen(const Window& window, Locked);

// ---- Ends.

// Takes the windows of a thread that ended away, without messages: nobody is left to handle them.
void remove_windows_of(const MessageQueue& queue);
// Takes one window out of the tree and the table and gives its surface back. On its own thread.
void remove_window(Window& window);

} // namespace win32
