#include "platform/win32/user/window.h"

#include "platform/win32/kernel/last_error.h"
#include "platform/win32/user/activation.h"
#include "winbase.h"

#include <algorithm>
#include <utility>

namespace win32 {

namespace {

constexpr std::uint8_t kWindowTag = 0x50;

std::mutex& window_mutex()
{
    static std::mutex& mutex = *std::make_unique<std::mutex>().release();
    return mutex;
}

void collect(const Window& window, std::vector<HWND>& found)
{
    found.push_back(window.handle);
    for (const Window* child : window.children)
        collect(*child, found);
}

} // namespace

WindowLock lock_windows()
{
    return WindowLock(window_mutex());
}

HandleTable<Window>& windows()
{
    static HandleTable<Window>& table = *std::make_unique<HandleTable<Window>>(kWindowTag).release();
    return table;
}

WindowPtr find_window(HWND window)
{
    return window ? windows().find(reinterpret_cast<std::uintptr_t>(window)) : nullptr;
}

WindowPtr require_window(HWND window)
{
    WindowPtr found = find_window(window);
    if (!found)
        set_last_error(ERROR_INVALID_WINDOW_HANDLE);
    return found;
}

Window& desktop()
{
    static Window& window = [&]() -> Window& {
        const auto made = std::make_shared<Window>();
        made->window_class = std::make_shared<WindowClass>();
        made->window_class->name = "#32769";
        made->procedure = DefWindowProcA;
        made->style = WS_VISIBLE | WS_POPUP | WS_CLIPCHILDREN;
        made->handle = reinterpret_cast<HWND>(windows().add(made)); // the table keeps it for good
        return *made;
    }();
    return window;
}

LRESULT call_procedure(Window& window, UINT message, WPARAM wparam, LPARAM lparam)
{
    const WNDPROC procedure = window.procedure.load(std::memory_order_acquire);
    return procedure ? procedure(window.handle, message, wparam, lparam) : 0;
}

bool is_top_level(const Window& window)
{
    return window.surface != nullptr;
}

Window& root_of(Window& window, Locked)
{
    Window* root = &window;
    while (root->parent && root->parent != &desktop())
        root = root->parent;
    return *root;
}

bool is_descendant(const Window& ancestor, const Window& window, Locked)
{
    for (const Window* at = window.parent; at; at = at->parent) {
        if (at == &ancestor)
            return true;
    }
    return false;
}

bool is_shown(const Window& window, Locked)
{
    for (const Window* at = &window; at != &desktop(); at = at->parent) {
        if (!at || !(at->style & WS_VISIBLE) || (at->style & WS_MINIMIZE))
            return false;
    }
    return true;
}

std::vector<HWND> subtree(const Window& window, Locked)
{
    std::vector<HWND> found;
    collect(window, found);
    return found;
}

std::vector<HWND> top_level_windows(Locked)
{
    std::vector<HWND> found;
    for (const Window* window : desktop().children)
        found.push_back(window->handle);
    return found;
}

std::vector<HWND> owned_by(const Window& window, Locked)
{
    std::vector<HWND> found;
    for (const Window* candidate : desktop().children) {
        if (candidate->owner == &window)
            found.push_back(candidate->handle);
    }
    return found;
}

void unlink(Window& window, Locked)
{
    if (window.parent)
        std::erase(window.parent->children, &window);
    window.parent = nullptr;
    window.owner = nullptr;
    for (Window* candidate : desktop().children) {
        if (candidate->owner == &window)
            candidate->owner = nullptr;
    }
}

HWND window_of_surface(SurfaceId surface, Locked)
{
    for (const Window* window : desktop().children) {
        if (window->surface && window->surface->id() == surface)
            return window->handle;
    }
    return nullptr;
}

POINT origin_in_root(const Window& window, Locked)
{
    POINT origin{};
    for (const Window* at = &window; at->parent && at->parent != &desktop(); at = at->parent) {
        origin.x += at->rect.left + at->parent->client.left;
        origin.y += at->rect.top + at->parent->client.top;
    }
    return origin;
}

RECT window_on_screen(const Window& window, Locked lock)
{
    if (&window == &desktop())
        return screen().monitors().front().bounds;
    POINT corner = origin_in_root(window, lock);
    const Window& root = root_of(const_cast<Window&>(window), lock);
    corner.x += root.rect.left;
    corner.y += root.rect.top;
    return { corner.x, corner.y, corner.x + width_of(window.rect), corner.y + height_of(window.rect) };
}

RECT client_on_screen(const Window& window, Locked lock)
{
    const RECT whole = window_on_screen(window, lock);
    return &window == &desktop() ? whole : moved(window.client, top_left(whole));
}

void remove_window(Window& window)
{
    WindowPtr kept; // until its fields are given up
    HMENU system_menu = nullptr;
    {
        const WindowLock lock = lock_windows();
        for (Window* child : window.children)
            child->parent = nullptr; // of another thread, which takes it away itself
        window.children.clear();
        unlink(window, lock);
        system_menu = std::exchange(window.system_menu, nullptr);
        kept = windows().remove(reinterpret_cast<std::uintptr_t>(window.handle));
    }
    if (!kept)
        return;
    if (window.surface) {
        window.queue->remove_surface(*window.surface);
        window.surface->close();
    }
    if (system_menu)
        DestroyMenu(system_menu);
    window.queue->forget_window(window.handle);
    forget_foreground(window.handle);
}

void remove_windows_of(const MessageQueue& queue)
{
    for (const auto& [handle, window] : windows().all()) {
        if (window->queue.get() == &queue)
            remove_window(*window);
    }
}

} // namespace win32
