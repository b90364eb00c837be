// What window managers read of a surface and what they write back: the documented properties and messages (ICCCM,
// EWMH), and our own hands where no window manager is.
#include "platform/win32/screen/xcb_screen.h"

#include "platform/win32/screen/geometry.h"

#include <algorithm>
#include <climits>

#include <unistd.h>
#include <xcb/randr.h>

namespace win32 {

namespace {

// Of the ICCCM.
enum SizeHint : std::uint32_t { kHasPosition = 4, kHasSize = 8, kHasMinSize = 16, kHasMaxSize = 32, kHasGravity = 512 };
enum WindowState : std::uint32_t { kNormalState = 1, kIconicState = 3 };
constexpr std::uint32_t kHasInput = 1;
constexpr std::uint32_t kHasInitialState = 2;

// Of the EWMH.
enum StateAction : std::uint32_t { kRemoveState = 0, kAddState = 1 };
constexpr std::uint32_t kFromApplication = 1;

constexpr std::uint32_t kMostDesktops = 64; // of which we look for the current one

constexpr int kLargestIcon = 256; // pixels a side; a larger one might not fit in a request

struct SizeHints {
    std::uint32_t flags = 0;
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t min_width = 0;
    std::int32_t min_height = 0;
    std::int32_t max_width = 0;
    std::int32_t max_height = 0;
    std::int32_t increments_and_aspects[6] = {};
    std::int32_t base_width = 0;
    std::int32_t base_height = 0;
    std::uint32_t gravity = 0;
};
static_assert(sizeof(SizeHints) == std::size_t{ 18 } * 4);

std::string host_name()
{
    char name[HOST_NAME_MAX + 1] = {};
    return ::gethostname(name, sizeof name - 1) == 0 ? name : "";
}

// Each with its whole rectangle as work area.
std::vector<Monitor> listed_monitors(const Reply<xcb_randr_get_monitors_reply_t>& reply)
{
    std::vector<Monitor> found;
    if (!reply)
        return found;
    for (auto at = xcb_randr_get_monitors_monitors_iterator(reply.get()); at.rem > 0;
         xcb_randr_monitor_info_next(&at)) {
        const RECT bounds = moved({ 0, 0, at.data->width, at.data->height }, at.data->x, at.data->y);
        found.push_back({ bounds, bounds, at.data->primary != 0 });
    }
    return found;
}

// The first listed one stands in when the user chose none.
void put_primary_first(std::vector<Monitor>& monitors)
{
    const auto primary = std::find_if(monitors.begin(), monitors.end(), [](const Monitor& m) { return m.primary; });
    if (primary != monitors.end())
        std::rotate(monitors.begin(), primary, primary + 1);
    monitors.front().primary = true;
}

bool holds(const std::vector<std::uint32_t>& values, xcb_atom_t value)
{
    return std::find(values.begin(), values.end(), value) != values.end();
}

} // namespace

void XcbScreen::write_hints(SurfaceId id, const Surface& surface)
{
    const XcbConnection& x = *connection_;
    const SurfaceTraits& traits = surface.traits;
    x.set_text(id, XCB_ATOM_WM_NAME, x.atom(Atom::utf8_string), traits.title);
    x.set_text(id, x.atom(Atom::net_wm_name), x.atom(Atom::utf8_string), traits.title);
    const std::string& name = traits.class_name;
    x.set_text(id, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, name + '\0' + name + '\0'); // the instance and its class
    if (traits.owner != 0)
        x.set_numbers(id, XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW, std::span(&traits.owner, 1));
    else
        xcb_delete_property(server(), id, XCB_ATOM_WM_TRANSIENT_FOR);

    const xcb_atom_t normal = x.atom(Atom::net_wm_window_type_normal);
    const xcb_atom_t types[][2] = {
        { normal, normal },
        { x.atom(Atom::net_wm_window_type_utility), normal },
        { x.atom(Atom::net_wm_window_type_popup_menu), normal },
        { x.atom(Atom::net_wm_window_type_tooltip), normal },
    };
    x.set_atoms(id, x.atom(Atom::net_wm_window_type), types[static_cast<std::size_t>(traits.kind)]);

    const xcb_atom_t protocols[] = { x.atom(Atom::wm_delete_window), x.atom(Atom::net_wm_ping) };
    x.set_atoms(id, x.atom(Atom::wm_protocols), protocols);
    const auto process = static_cast<std::uint32_t>(::getpid());
    x.set_numbers(id, x.atom(Atom::net_wm_pid), XCB_ATOM_CARDINAL, std::span(&process, 1));
    x.set_text(id, XCB_ATOM_WM_CLIENT_MACHINE, XCB_ATOM_STRING, host_name()); // makes the process number mean something

    constexpr std::uint32_t kNoDecorations[] = { 2, 0, 0, 0, 0 };
    const xcb_atom_t motif = x.atom(Atom::motif_wm_hints);
    x.set_numbers(id, motif, motif, kNoDecorations);
    write_size_hints(id, surface, false);
}

// A window manager holds moves and sizes against these. The static gravity makes every position one of the surface
// itself, whether somebody put a frame around it or not.
void XcbScreen::write_size_hints(SurfaceId id, const Surface& surface, bool free_size)
{
    const SIZE size{ width_of(surface.bounds), height_of(surface.bounds) };
    const bool fixed = !surface.traits.resizable && !free_size;
    const SIZE min = fixed ? size : surface.traits.min_size;
    const SIZE max = fixed ? size : free_size ? SIZE{ 0, 0 } : surface.traits.max_size;
    SizeHints hints;
    hints.flags = kHasPosition | kHasSize | kHasGravity;
    hints.x = surface.bounds.left;
    hints.y = surface.bounds.top;
    hints.width = size.cx;
    hints.height = size.cy;
    hints.gravity = XCB_GRAVITY_STATIC;
    if (min.cx > 0 || min.cy > 0) {
        hints.flags |= kHasMinSize;
        hints.min_width = min.cx;
        hints.min_height = min.cy;
    }
    if (max.cx > 0 || max.cy > 0) {
        hints.flags |= kHasMaxSize;
        hints.max_width = max.cx > 0 ? max.cx : kMaxExtent;
        hints.max_height = max.cy > 0 ? max.cy : kMaxExtent;
    }
    xcb_change_property(server(), XCB_PROP_MODE_REPLACE, id, XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, 32,
                        sizeof hints / 4, &hints);
}

// The state that a surface is mapped with; afterwards only the window manager writes it.
void XcbScreen::write_state(SurfaceId id, const Surface& surface)
{
    const XcbConnection& x = *connection_;
    std::vector<xcb_atom_t> states;
    if (surface.traits.topmost)
        states.push_back(x.atom(Atom::net_wm_state_above));
    if (surface.traits.kind != SurfaceKind::window)
        states.push_back(x.atom(Atom::net_wm_state_skip_taskbar));
    if (surface.state == SurfaceState::maximised && !surface.restored) {
        states.push_back(x.atom(Atom::net_wm_state_maximized_horz));
        states.push_back(x.atom(Atom::net_wm_state_maximized_vert));
    }
    x.set_atoms(id, x.atom(Atom::net_wm_state), states);

    const std::uint32_t initial = surface.state == SurfaceState::minimised ? kIconicState : kNormalState;
    const std::uint32_t hints[9] = { kHasInput | kHasInitialState, 1, initial };
    x.set_numbers(id, XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS, hints);
    constexpr std::uint32_t kNoFocus = 0; // a user time of 0 asks the window manager to leave the focus where it is
    if (!surface.activate_when_mapped)
        x.set_numbers(id, x.atom(Atom::net_wm_user_time), XCB_ATOM_CARDINAL, std::span(&kNoFocus, 1));
    else
        xcb_delete_property(server(), id, x.atom(Atom::net_wm_user_time));
}

void XcbScreen::ask_state(SurfaceId id, bool on, Atom first, Atom second)
{
    const XcbConnection& x = *connection_;
    x.ask_window_manager(
        id, x.atom(Atom::net_wm_state),
        { on ? kAddState : kRemoveState, x.atom(first), first == second ? 0 : x.atom(second), kFromApplication, 0 });
}

void XcbScreen::set_icons(SurfaceId surface, std::span<const PixelView> sizes)
{
    const Turn turn(*this);
    if (!find(surface))
        return;
    std::vector<std::uint32_t> icons; // each with its extents before it
    for (const PixelView& icon : sizes) {
        if (icon.width <= 0 || icon.height <= 0 || icon.width > kLargestIcon || icon.height > kLargestIcon)
            continue;
        icons.push_back(static_cast<std::uint32_t>(icon.width));
        icons.push_back(static_cast<std::uint32_t>(icon.height));
        for (int y = 0; y < icon.height; y++) {
            const std::uint32_t* row = icon.pixels + static_cast<std::ptrdiff_t>(y) * icon.stride;
            icons.insert(icons.end(), row, row + icon.width);
        }
    }
    connection_->set_numbers(surface, connection_->atom(Atom::net_wm_icon), XCB_ATOM_CARDINAL, icons);
}

// Not before the server has mapped the window: it refuses the focus for one that is not seen.
void XcbScreen::take_focus(SurfaceId id)
{
    if (!is_managed(find(id)->traits.kind))
        return;
    const XcbConnection& x = *connection_;
    if (has_window_manager()) {
        x.ask_window_manager(id, x.atom(Atom::net_active_window), { kFromApplication, last_time_, 0, 0, 0 });
        return;
    }
    xcb_set_input_focus(server(), XCB_INPUT_FOCUS_PARENT, id, XCB_CURRENT_TIME);
}

// A window manager names a window of its own on the root, and the same on that window. One that was killed leaves the
// first behind, so the second is what counts; it is watched, since its end is the only notice.
bool XcbScreen::has_window_manager()
{
    if (window_manager_)
        return *window_manager_ != 0;
    const XcbConnection& x = *connection_;
    const xcb_atom_t check = x.atom(Atom::net_supporting_wm_check);
    window_manager_ = 0;
    const std::vector<std::uint32_t> named = x.take_numbers(x.ask_numbers(x.root(), check, 1));
    if (named.empty())
        return false;
    const std::uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_discard_reply(server(), xcb_change_window_attributes_checked(server(), named[0], XCB_CW_EVENT_MASK, &events)
                                    .sequence); // it may be gone
    if (x.take_numbers(x.ask_numbers(named[0], check, 1)) == named)
        window_manager_ = named[0];
    return *window_manager_ != 0;
}

void XcbScreen::set_state(SurfaceId surface, SurfaceState state)
{
    const Turn turn(*this);
    Surface* s = find(surface);
    if (!s || s->state == state)
        return;
    const XcbConnection& x = *connection_;
    if (state == SurfaceState::maximised)
        maximise(surface, *s);
    else if (state == SurfaceState::normal)
        restore(surface, *s);
    else if (!s->mapped)
        enter_state(surface, *s, state); // the hints say so when it is mapped
    else if (has_window_manager())
        x.ask_window_manager(surface, x.atom(Atom::wm_change_state), { kIconicState, 0, 0, 0, 0 });
    // else it stays: without a window manager nobody could bring it back
}

// Window managers refuse to maximise a window of a fixed size, and there may be none: then it is we who do it.
void XcbScreen::maximise(SurfaceId id, Surface& surface)
{
    if (surface.state == SurfaceState::minimised && surface.mapped)
        xcb_map_window(server(), id);
    if (surface.mapped && surface.traits.resizable && has_window_manager()) {
        write_size_hints(id, surface, true);
        ask_state(id, true, Atom::net_wm_state_maximized_horz, Atom::net_wm_state_maximized_vert);
        return;
    }
    if (!surface.restored)
        surface.restored = surface.bounds;
    put_at(id, surface, monitor_of(ask_monitors(), surface.bounds).work_area);
    enter_state(id, surface, SurfaceState::maximised);
    push({ .kind = EventKind::placed, .surface = id, .bounds = surface.bounds });
}

void XcbScreen::restore(SurfaceId id, Surface& surface)
{
    if (surface.state == SurfaceState::minimised && surface.mapped) {
        xcb_map_window(server(), id);
        take_focus(id);
        return; // the window manager says when it is done
    }
    if (surface.restored) {
        put_at(id, surface, *std::exchange(surface.restored, std::nullopt));
        enter_state(id, surface, SurfaceState::normal);
        push({ .kind = EventKind::placed, .surface = id, .bounds = surface.bounds });
    } else if (surface.mapped && surface.state == SurfaceState::maximised) {
        ask_state(id, false, Atom::net_wm_state_maximized_horz, Atom::net_wm_state_maximized_vert);
    } else {
        enter_state(id, surface, SurfaceState::normal);
    }
}

void XcbScreen::enter_state(SurfaceId id, Surface& surface, SurfaceState state)
{
    if (std::exchange(surface.state, state) != state)
        push({ .kind = EventKind::state, .surface = id, .state = state });
}

void XcbScreen::learn_state(SurfaceId id, Surface& surface)
{
    const XcbConnection& x = *connection_;
    const auto window_question = x.ask_numbers(id, x.atom(Atom::wm_state), 2);
    const auto net_question = x.ask_numbers(id, x.atom(Atom::net_wm_state), 64);
    const std::vector<std::uint32_t> window = x.take_numbers(window_question);
    const std::vector<std::uint32_t> net = x.take_numbers(net_question);
    if (window.empty() || (window[0] != kNormalState && window[0] != kIconicState))
        return; // withdrawn, or no window manager has written anything yet
    surface.filling_screen = holds(net, x.atom(Atom::net_wm_state_fullscreen));
    const bool minimised = window[0] == kIconicState || holds(net, x.atom(Atom::net_wm_state_hidden));
    const bool maximised = surface.restored || (holds(net, x.atom(Atom::net_wm_state_maximized_horz)) &&
                                                holds(net, x.atom(Atom::net_wm_state_maximized_vert)));
    enter_state(id, surface,
                minimised   ? SurfaceState::minimised
                : maximised ? SurfaceState::maximised
                            : SurfaceState::normal);
}

std::vector<Monitor> XcbScreen::monitors()
{
    const Turn turn(*this);
    return ask_monitors();
}

// Asked anew each time: window managers start, end and change their minds while we run.
std::vector<Monitor> XcbScreen::ask_monitors()
{
    const XcbConnection& x = *connection_;
    xcb_randr_get_monitors_cookie_t monitors_question{};
    if (x.has_randr()) {
        xcb_discard_reply(server(), xcb_randr_query_version(server(), 1, 5).sequence); // tells the server ours
        monitors_question = xcb_randr_get_monitors(server(), x.root(), 1);
    }
    const auto desktop_question = x.ask_numbers(x.root(), x.atom(Atom::net_current_desktop), 1);
    const auto areas_question = x.ask_numbers(x.root(), x.atom(Atom::net_workarea), 4 * kMostDesktops);

    const RECT whole{ 0, 0, root_size_.cx, root_size_.cy };
    std::vector<Monitor> found =
        x.has_randr() ? listed_monitors(take_reply(xcb_randr_get_monitors_reply, server(), monitors_question))
                      : std::vector<Monitor>();
    if (found.empty())
        found.push_back({ whole, whole, true });
    put_primary_first(found);

    // One work area a virtual desktop, over all monitors: what of it lies on a monitor is that monitor's.
    const std::vector<std::uint32_t> desktop = x.take_numbers(desktop_question);
    const std::vector<std::uint32_t> areas = x.take_numbers(areas_question);
    const std::size_t first = desktop.empty() ? 0 : std::size_t{ 4 } * desktop[0];
    if (areas.size() < 4 || first > areas.size() - 4)
        return found;
    const auto number = [](std::uint32_t value) { return static_cast<LONG>(value); };
    const RECT area = bounded({ number(areas[first]), number(areas[first + 1]), number(areas[first] + areas[first + 2]),
                                number(areas[first + 1] + areas[first + 3]) });
    for (Monitor& monitor : found) {
        if (const RECT shared = intersection(monitor.bounds, area); !is_empty(shared))
            monitor.work_area = shared;
    }
    return found;
}

} // namespace win32
