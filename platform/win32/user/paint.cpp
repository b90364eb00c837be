#include "platform/win32/user/paint.h"

#include "platform/win32/gdi/objects.h"
#include "platform/win32/kernel/last_error.h"
#include "winbase.h"
#include "wingdi.h"

#include <map>
#include <memory_resource>

namespace win32 {

namespace {

// ---- What is invalid.

RECT client_extent(const Window& window)
{
    return { 0, 0, width_of(window.client), height_of(window.client) };
}

void change_invalid(Window& window, const Region& region, UINT flags)
{
    if (flags & RDW_INVALIDATE) {
        Region added = region;
        added.intersect(Region(client_extent(window)));
        if (!added.empty()) {
            window.invalid.unite(added);
            window.erase |= (flags & RDW_ERASE) != 0;
        }
        window.frame_invalid |= (flags & RDW_FRAME) != 0;
    }
    if (flags & RDW_VALIDATE) {
        window.invalid.subtract(region);
        if (flags & RDW_NOERASE || window.invalid.empty())
            window.erase = false;
        if (flags & RDW_NOFRAME)
            window.frame_invalid = false;
    }
    if (flags & RDW_INTERNALPAINT)
        window.paint_asked = true;
    if (flags & RDW_NOINTERNALPAINT)
        window.paint_asked = false;
}

bool needs_client_paint(const Window& window)
{
    return window.paint_asked || !window.invalid.empty();
}

bool may_paint(const Window& window, const MessageFilter& filter, Locked lock)
{
    if (!needs_client_paint(window) || !filter.admits(WM_PAINT))
        return false;
    const WindowPtr wanted = find_window(filter.window);
    return !filter.window || wanted.get() == &window || (wanted && is_descendant(*wanted, window, lock));
}

// The first window of the tree, parents first, that needs painting.
Window* find_invalid(Window& window, const MessageQueue& queue, const MessageFilter& filter, Locked lock)
{
    if (!(window.style & WS_VISIBLE) || (window.style & WS_MINIMIZE))
        return nullptr;
    if (window.queue.get() == &queue && (window.frame_invalid || may_paint(window, filter, lock)))
        return &window;
    for (Window* child : window.children) {
        if (Window* found = find_invalid(*child, queue, filter, lock))
            return found;
    }
    return nullptr;
}

// The frame is the window's to draw; wParam 1 means all of it.
void send_frame_paint(HWND window)
{
    SendMessageA(window, WM_NCPAINT, 1, 0);
}

// ---- What a window shows of itself.

enum class Part { client, whole };

struct View {
    std::shared_ptr<TopSurface> surface;
    POINT origin{}; // of the part, in surface pixels
    SIZE size{};
    Region visible; // in surface pixels
};

RECT in_root(const Window& window, Part part, Locked lock)
{
    const POINT corner = origin_in_root(window, lock);
    const RECT whole{ corner.x, corner.y, corner.x + width_of(window.rect), corner.y + height_of(window.rect) };
    return part == Part::whole ? whole : moved(window.client, corner);
}

// What a window covers, outline and all, in surface pixels.
Region covered_by(const Window& window, Locked lock)
{
    const RECT whole = in_root(window, Part::whole, lock);
    Region area(whole);
    if (window.outline) {
        Region outline = *window.outline;
        outline.offset(whole.left, whole.top);
        area.intersect(outline);
    }
    return area;
}

void take_off_siblings_above(Region& visible, const Window& window, Locked lock)
{
    for (const Window* sibling : window.parent->children) {
        if (sibling == &window)
            return;
        if (sibling->style & WS_VISIBLE)
            visible.subtract(covered_by(*sibling, lock));
    }
}

View view_of(Window& window, Part part, Locked lock)
{
    const RECT area = in_root(window, part, lock);
    View view{ root_of(window, lock).surface,
               top_left(area),
               { width_of(area), height_of(area) },
               is_shown(window, lock) ? Region(area) : Region() };
    if (window.style & WS_CLIPCHILDREN) {
        for (const Window* child : window.children) {
            if (child->style & WS_VISIBLE)
                view.visible.subtract(covered_by(*child, lock));
        }
    }
    for (const Window* at = &window; at->parent && at->parent != &desktop(); at = at->parent) {
        if (at->outline)
            view.visible.intersect(covered_by(*at, lock));
        if (at->style & WS_CLIPSIBLINGS)
            take_off_siblings_above(view.visible, *at, lock);
        view.visible.intersect(Region(in_root(*at->parent, Part::client, lock)));
    }
    return view;
}

// ---- Open contexts.

// Stands for the screen where no window is: it has no pixels.
class NoPixels final : public DrawTarget {
public:
    PixelView pixels() override { return {}; }
    void damaged(const RECT&) override {}
};

struct OpenContext {
    HWND window;
    std::shared_ptr<DrawTarget> target; // kept while the context draws on it
};

struct OpenContexts {
    std::mutex mutex;
    std::pmr::unsynchronized_pool_resource memory; // painting takes nothing from the heap
    std::pmr::map<HDC, OpenContext> contexts{ &memory };
};

OpenContexts& open_contexts()
{
    static OpenContexts& open = *std::make_unique<OpenContexts>().release();
    return open;
}

HDC open_context(HWND window, const std::shared_ptr<DrawTarget>& target, POINT origin, SIZE size, const Region& visible)
{
    const HDC dc = open_window_dc(*target, origin, size, visible);
    if (dc) {
        OpenContexts& open = open_contexts();
        const std::lock_guard lock(open.mutex);
        open.contexts[dc] = { window, target };
    }
    return dc;
}

HDC open_view(HWND window, const View& view)
{
    return view.surface ? open_context(window, view.surface, view.origin, view.size, view.visible) : nullptr;
}

bool close_context(HDC dc)
{
    OpenContext closing;
    {
        OpenContexts& open = open_contexts();
        const std::lock_guard lock(open.mutex);
        const auto found = open.contexts.find(dc);
        if (found == open.contexts.end())
            return false;
        closing = std::move(found->second);
        open.contexts.erase(found);
    }
    return close_window_dc(dc) != FALSE;
}

HDC open_part(HWND window, Part part)
{
    if (!window || window == desktop().handle) {
        const RECT bounds = screen().monitors().front().bounds;
        return open_context(nullptr, std::make_shared<NoPixels>(), {}, { width_of(bounds), height_of(bounds) },
                            Region(bounds));
    }
    const WindowPtr found = require_window(window);
    if (!found)
        return nullptr;
    const WindowLock lock = lock_windows();
    return open_view(window, view_of(*found, part, lock));
}

} // namespace

void invalidate(Window& window, const Region& region, UINT flags, Locked lock)
{
    if (!is_shown(window, lock))
        return;
    change_invalid(window, region, flags);
    if (window.queue && (window.frame_invalid || needs_client_paint(window)))
        window.queue->want_paint();
    const bool children = (flags & RDW_ALLCHILDREN) || !((flags & RDW_NOCHILDREN) || (window.style & WS_CLIPCHILDREN));
    if (!children || !(flags & (RDW_INVALIDATE | RDW_VALIDATE)))
        return;
    for (Window* child : window.children) {
        if (!(child->style & WS_VISIBLE))
            continue;
        Region reached = region;
        reached.offset(-child->rect.left - child->client.left, -child->rect.top - child->client.top);
        invalidate(*child, reached, flags, lock);
    }
}

void invalidate_all(Window& window, Locked lock)
{
    invalidate(window, Region(client_extent(window)), RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN, lock);
}

void uncover(Window& parent, const RECT& area, Locked lock)
{
    invalidate(parent, Region(area), RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN, lock);
}

Taken take_paint(MessageQueue& queue, const MessageFilter& filter, UINT remove)
{
    if (!queue.take_paint_wish())
        return {};
    WindowLock lock = lock_windows();
    Window* found = nullptr;
    for (Window* top : desktop().children) {
        found = find_invalid(*top, queue, filter, lock);
        if (found)
            break;
    }
    const bool filtered = filter.window || !filter.admits(WM_PAINT);
    if (found || filtered)
        queue.keep_paint_wish(); // there may be more
    if (!found)
        return {};
    const HWND window = found->handle;
    if (std::exchange(found->frame_invalid, false)) {
        lock.unlock();
        send_frame_paint(window);
        return { std::nullopt, true };
    }
    if (remove & PM_REMOVE)
        found->paint_asked = false;
    return { MSG{ window, WM_PAINT, 0, 0, GetTickCount(), {} }, true };
}

void paint_now(HWND window)
{
    WindowPtr found = find_window(window);
    if (!found)
        return;
    WindowLock lock = lock_windows();
    if (!is_shown(*found, lock))
        return;
    const bool frame = std::exchange(found->frame_invalid, false);
    const bool client = needs_client_paint(*found);
    found->paint_asked = false;
    lock.unlock();
    if (frame)
        send_frame_paint(window);
    if (client)
        SendMessageA(window, WM_PAINT, 0, 0);
    found = find_window(window);
    if (!found)
        return;
    std::vector<HWND> children;
    {
        const WindowLock again = lock_windows();
        for (const Window* child : found->children)
            children.push_back(child->handle);
    }
    for (const HWND child : children)
        paint_now(child);
}

} // namespace win32

using namespace win32;

BOOL RedrawWindow(HWND window, const RECT* rect, HRGN region, UINT flags)
{
    const WindowPtr found = window ? require_window(window) : find_window(desktop().handle);
    if (!found)
        return FALSE;
    {
        const WindowLock lock = lock_windows();
        if (found.get() == &desktop()) {
            for (Window* top : desktop().children)
                invalidate(*top, Region(client_extent(*top)), flags, lock);
        } else {
            const Region area = region ? region_of(region) : Region(rect ? *rect : client_extent(*found));
            invalidate(*found, area, flags, lock);
        }
    }
    if (flags & (RDW_UPDATENOW | RDW_ERASENOW)) {
        run_on(found->queue, [&] {
            paint_now(window);
            found->queue->present();
        });
    }
    return TRUE;
}

BOOL InvalidateRect(HWND window, const RECT* rect, BOOL erase)
{
    return RedrawWindow(window, rect, nullptr, RDW_INVALIDATE | (erase ? RDW_ERASE : 0));
}

BOOL InvalidateRgn(HWND window, HRGN region, BOOL erase)
{
    return RedrawWindow(window, nullptr, region, RDW_INVALIDATE | (erase ? RDW_ERASE : 0));
}

BOOL ValidateRect(HWND window, const RECT* rect)
{
    if (!window) // as documented: everything is painted anew
        return RedrawWindow(nullptr, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
    return RedrawWindow(window, rect, nullptr, RDW_VALIDATE | RDW_NOCHILDREN | (rect ? 0 : RDW_NOINTERNALPAINT));
}

BOOL UpdateWindow(HWND window)
{
    return RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW);
}

BOOL GetUpdateRect(HWND window, LPRECT rect, BOOL erase)
{
    const WindowPtr found = require_window(window);
    if (!found)
        return FALSE;
    RECT box;
    bool erases = false;
    {
        const WindowLock lock = lock_windows();
        box = found->invalid.bounds();
        erases = erase && std::exchange(found->erase, false);
    }
    if (erases) {
        if (const HDC dc = GetDC(window)) {
            SendMessageA(window, WM_ERASEBKGND, reinterpret_cast<WPARAM>(dc), 0);
            ReleaseDC(window, dc);
        }
    }
    if (rect)
        *rect = box;
    return !IsRectEmpty(&box);
}

HDC BeginPaint(HWND window, LPPAINTSTRUCT paint)
{
    WindowPtr found = require_window(window);
    if (!found || !paint || !found->queue)
        return nullptr;
    *paint = {};
    WindowLock lock = lock_windows();
    if (std::exchange(found->frame_invalid, false) && is_shown(*found, lock)) {
        lock.unlock();
        send_frame_paint(window);
        lock.lock();
    }
    View view = view_of(*found, Part::client, lock);
    Region update = std::exchange(found->invalid, Region());
    const bool erase = std::exchange(found->erase, false);
    found->paint_asked = false;
    update.offset(view.origin.x, view.origin.y);
    view.visible.intersect(update);
    lock.unlock();

    paint->hdc = open_view(window, view);
    if (!paint->hdc)
        return nullptr;
    const POINT back{ -view.origin.x, -view.origin.y };
    const RECT box = view.visible.bounds();
    paint->rcPaint = IsRectEmpty(&box) ? RECT{} : moved(box, back);
    if (erase)
        paint->fErase = !SendMessageA(window, WM_ERASEBKGND, reinterpret_cast<WPARAM>(paint->hdc), 0);
    return paint->hdc;
}

BOOL EndPaint(HWND window, const PAINTSTRUCT* paint)
{
    if (!paint || !paint->hdc)
        return FALSE;
    return ReleaseDC(window, paint->hdc) != 0;
}

HDC GetDC(HWND window)
{
    return open_part(window, Part::client);
}

HDC GetWindowDC(HWND window)
{
    return open_part(window, Part::whole);
}

int ReleaseDC(HWND, HDC dc)
{
    return close_context(dc) ? 1 : 0;
}

HWND WindowFromDC(HDC dc)
{
    OpenContexts& open = open_contexts();
    const std::lock_guard lock(open.mutex);
    const auto found = open.contexts.find(dc);
    return found == open.contexts.end() ? nullptr : found->second.window;
}
