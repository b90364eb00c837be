#include "platform/win32/user/order.h"

#include "platform/win32/user/placement.h"

#include <algorithm>

namespace win32 {

namespace {

bool is_in_top_layer(const Window* window)
{
    return (window->ex_style & WS_EX_TOPMOST) != 0;
}

// A window takes those that it owns into the top layer and out of it, and out of it also those that own it.
void change_layer(Window& window, bool top)
{
    for (Window* each : desktop().children) {
        if (each == &window || owns(window, *each) || (!top && owns(*each, window)))
            each->ex_style = top ? each->ex_style | WS_EX_TOPMOST : each->ex_style & ~WS_EX_TOPMOST;
    }
}

// Where among its siblings a window goes.
std::size_t place_among(const std::vector<Window*>& siblings, const Window& window, HWND after)
{
    const auto first_of_layer = [&] {
        return is_in_top_layer(&window) ? siblings.begin()
                                        : std::find_if_not(siblings.begin(), siblings.end(), is_in_top_layer);
    };
    if (after == HWND_BOTTOM)
        return siblings.size();
    const auto sibling =
        std::find_if(siblings.begin(), siblings.end(), [after](const Window* w) { return w->handle == after; });
    const auto at = sibling == siblings.end() ? first_of_layer() : std::max(sibling + 1, first_of_layer());
    return static_cast<std::size_t>(at - siblings.begin());
}

// Every window that lies below its owner goes right above it.
void lift_above_owners(std::vector<Window*>& siblings)
{
    for (auto at = siblings.begin(); at != siblings.end();) {
        const auto owner = std::find(siblings.begin(), at, (*at)->owner);
        if (owner == at) {
            ++at;
            continue;
        }
        std::rotate(owner, at, at + 1);
        at = owner + 1; // what the window owns may lie below it now
    }
}

// Visible windows of ours above `window` (itself included, if it is), lowest first; all, or those that it owns.
std::vector<SurfaceId> surfaces_above(const Window& window, bool owned_only)
{
    std::vector<SurfaceId> found;
    for (const Window* each : desktop().children) {
        if ((each->style & WS_VISIBLE) && each->surface && (each == &window || !owned_only || owns(window, *each)))
            found.push_back(each->surface->id());
        if (each == &window)
            break;
    }
    std::reverse(found.begin(), found.end());
    return found;
}

void raise(const std::vector<SurfaceId>& surfaces)
{
    for (const SurfaceId surface : surfaces)
        screen().raise(surface);
}

std::vector<HWND> whole_family(const Window& window)
{
    std::vector<HWND> found;
    for (const Window* each : desktop().children) {
        if (each == &window || owns(window, *each) || owns(*each, window))
            found.push_back(each->handle);
    }
    return found;
}

} // namespace

bool owns(const Window& owner, const Window& window)
{
    for (const Window* at = window.owner; at; at = at->owner) {
        if (at == &owner)
            return true;
    }
    return false;
}

bool reorder(Window& window, HWND after, Locked)
{
    if (!window.parent || window.handle == after)
        return false;
    if (after == HWND_TOPMOST || after == HWND_NOTOPMOST || after == HWND_BOTTOM)
        change_layer(window, after == HWND_TOPMOST);
    std::vector<Window*>& siblings = window.parent->children;
    const std::vector<Window*> before = siblings;
    std::erase(siblings, &window);
    const std::size_t at = place_among(siblings, window, after);
    siblings.insert(siblings.begin() + static_cast<std::ptrdiff_t>(at), &window);
    for (Window* owner = window.owner; owner && after == HWND_BOTTOM; owner = owner->owner) {
        std::erase(siblings, owner);
        siblings.push_back(owner);
    }
    if (is_top_level(window)) {
        std::stable_partition(siblings.begin(), siblings.end(), is_in_top_layer);
        lift_above_owners(siblings);
    }
    return siblings != before;
}

void reorder_surfaces(HWND handle, HWND after)
{
    const WindowPtr window = find_window(handle);
    if (!window)
        return;
    const bool to_edge = after == HWND_TOP || after == HWND_TOPMOST || after == HWND_NOTOPMOST;
    std::vector<SurfaceId> raised;
    std::vector<SurfaceId> lowered;
    std::vector<HWND> relayered;
    {
        const WindowLock lock = lock_windows();
        if (after == HWND_TOPMOST || after == HWND_NOTOPMOST || after == HWND_BOTTOM)
            relayered = whole_family(*window);
        if (after != HWND_BOTTOM)
            raised = surfaces_above(*window, to_edge);
        for (const Window* at = window.get(); at && after == HWND_BOTTOM; at = at->owner)
            lowered.push_back(at->surface->id()); // an owner goes below what it owns
    }
    for (const HWND each : relayered)
        update_traits(each);
    raise(raised);
    for (const SurfaceId surface : lowered)
        screen().lower(surface);
}

void come_to_front(HWND handle)
{
    const WindowPtr window = find_window(handle);
    if (!window)
        return;
    std::vector<SurfaceId> raised;
    {
        const WindowLock lock = lock_windows();
        reorder(*window, HWND_TOP, lock);
        raised = surfaces_above(*window, true);
    }
    if (!raised.empty())
        raised.erase(raised.begin()); // the desktop raises what it makes active
    raise(raised);
}

} // namespace win32
