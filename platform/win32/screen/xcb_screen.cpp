#include "platform/win32/screen/xcb_screen.h"

#include "platform/win32/screen/geometry.h"
#include "platform/win32/screen/input.h"

#include <algorithm>

#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <xcb/shape.h>

namespace win32 {

namespace {

constexpr std::uint32_t kWindowEvents =
    XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE | XCB_EVENT_MASK_BUTTON_PRESS |
    XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_LEAVE_WINDOW |
    XCB_EVENT_MASK_POINTER_MOTION | XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY |
    XCB_EVENT_MASK_FOCUS_CHANGE | XCB_EVENT_MASK_PROPERTY_CHANGE;

constexpr std::uint16_t kPointerEvents = XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE |
                                         XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_LEAVE_WINDOW |
                                         XCB_EVENT_MASK_POINTER_MOTION;

// More than these, and the window manager has lost our wishes; the oldest are given up.
constexpr std::size_t kAwaitedKept = 1024;

// Another program's grab of a moment, a window manager's key binding say, is gone at the next try.
constexpr int kGrabAttempts = 3;

// The server has no window without extent; such a one stays unmapped.
std::uint32_t window_extent(LONG extent)
{
    return static_cast<std::uint32_t>(std::max<LONG>(extent, 1));
}

bool watch(int epoll, int descriptor)
{
    epoll_event event{};
    event.events = EPOLLIN;
    return ::epoll_ctl(epoll, EPOLL_CTL_ADD, descriptor, &event) == 0;
}

} // namespace

std::shared_ptr<XcbScreen> XcbScreen::open(const char* display)
{
    auto connection = XcbConnection::open(display);
    if (!connection)
        return nullptr;
    std::shared_ptr<XcbScreen> opened(new XcbScreen(std::move(connection)));
    return opened->watch_connection() ? opened : nullptr;
}

XcbScreen::XcbScreen(std::unique_ptr<XcbConnection> connection)
    : connection_(std::move(connection)), cursors_(*connection_), keyboard_(*connection_),
      root_size_(connection_->root_size()), shares_memory_(connection_->can_share_memory()),
      wake_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)), descriptor_(::epoll_create1(EPOLL_CLOEXEC))
{}

XcbScreen::~XcbScreen() = default;

bool XcbScreen::watch_connection()
{
    return watch(descriptor_.get(), wake_.get()) && watch(descriptor_.get(), xcb_get_file_descriptor(server()));
}

SurfaceId XcbScreen::create(const RECT& bounds, const SurfaceTraits& traits)
{
    const Turn turn(*this);
    Surface surface;
    surface.bounds = bounded(bounds);
    surface.traits = traits;
    const int width = width_of(surface.bounds);
    const int height = height_of(surface.bounds);
    if (connection_->lost() || surface.frame.resize(width, height) == FrameBuffer::Resized::refused)
        return 0;
    const SurfaceId id = create_window(surface.bounds);
    write_kind(id, traits.kind);
    write_hints(id, surface);
    surfaces_.emplace(id, std::move(surface));
    return id;
}

xcb_window_t XcbScreen::create_window(const RECT& bounds)
{
    const xcb_window_t window = xcb_generate_id(server());
    const Visual& visual = connection_->visual();
    xcb_create_window_value_list_t values{};
    values.background_pixmap = XCB_BACK_PIXMAP_NONE; // else the server would flash its own colour before our picture
    values.border_pixel = 0;
    values.bit_gravity = XCB_GRAVITY_NORTH_WEST;
    values.event_mask = kWindowEvents;
    values.colormap = visual.colormap;
    std::uint32_t mask = XCB_CW_BACK_PIXMAP | XCB_CW_BORDER_PIXEL | XCB_CW_BIT_GRAVITY | XCB_CW_EVENT_MASK;
    if (visual.colormap != 0)
        mask |= XCB_CW_COLORMAP;
    xcb_create_window_aux(server(), visual.depth, window, connection_->root(), static_cast<std::int16_t>(bounds.left),
                          static_cast<std::int16_t>(bounds.top),
                          static_cast<std::uint16_t>(window_extent(width_of(bounds))),
                          static_cast<std::uint16_t>(window_extent(height_of(bounds))), 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, visual.id, mask, &values);
    return window;
}

// Whether the window manager has a say, which counts from the next mapping on, and whether the pointer sees the
// surface.
void XcbScreen::write_kind(SurfaceId id, SurfaceKind kind)
{
    const std::uint32_t unmanaged = is_managed(kind) ? 0 : 1;
    xcb_change_window_attributes(server(), id, XCB_CW_OVERRIDE_REDIRECT, &unmanaged);
    if (!connection_->has_shape())
        return;
    if (kind == SurfaceKind::tool_tip)
        xcb_shape_rectangles(server(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, 0, id, 0, 0, 0, nullptr);
    else
        xcb_shape_mask(server(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, id, 0, 0, XCB_PIXMAP_NONE);
}

void XcbScreen::destroy(SurfaceId surface)
{
    const Turn turn(*this);
    Surface* s = find(surface);
    if (!s)
        return;
    detach(*s);
    xcb_destroy_window(server(), surface);
    surfaces_.erase(surface);
    std::erase_if(events_, [surface](const ScreenEvent& event) { return event.surface == surface; });
    for (SurfaceId* role : { &focused_, &captured_, &hovered_ }) {
        if (*role == surface)
            *role = 0;
    }
}

void XcbScreen::set_traits(SurfaceId surface, const SurfaceTraits& traits)
{
    const Turn turn(*this);
    Surface* s = find(surface);
    if (!s)
        return;
    const SurfaceTraits before = std::exchange(s->traits, traits);
    if (before.kind != traits.kind)
        write_kind(surface, traits.kind);
    write_hints(surface, *s);
    if (!s->mapped || before.topmost == traits.topmost)
        return;
    if (has_window_manager())
        ask_state(surface, traits.topmost, Atom::net_wm_state_above, Atom::net_wm_state_above);
    else if (traits.topmost)
        stack(surface, XCB_STACK_MODE_ABOVE);
}

void XcbScreen::show(SurfaceId surface, bool visible, bool activate)
{
    const Turn turn(*this);
    Surface* s = find(surface);
    if (!s)
        return;
    const bool was_mapped = s->mapped;
    s->visible = visible;
    s->activate_when_mapped = visible && activate && !was_mapped;
    if (visible && activate)
        stack(surface, XCB_STACK_MODE_ABOVE);
    update_mapping(surface, *s);
    if (was_mapped && s->mapped && activate)
        take_focus(surface);
    if (!visible && captured_ == surface)
        captured_ = 0; // the server ends the grabs of a window that is not seen
}

void XcbScreen::update_mapping(SurfaceId id, Surface& surface)
{
    const bool wanted = surface.visible && !is_empty(surface.bounds);
    if (wanted == surface.mapped)
        return;
    surface.mapped = wanted;
    if (wanted) {
        write_state(id, surface);
        xcb_map_window(server(), id);
        raise_upper_layers(id);
        return;
    }
    xcb_unmap_window(server(), id);
    if (!is_managed(surface.traits.kind))
        return;
    // To a window manager that holds the window as an icon, unmapping says nothing: it must be told.
    xcb_unmap_notify_event_t withdrawn{};
    withdrawn.response_type = XCB_UNMAP_NOTIFY;
    withdrawn.event = connection_->root();
    withdrawn.window = id;
    xcb_send_event(server(), 0, connection_->root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&withdrawn));
}

void XcbScreen::place(SurfaceId surface, const RECT& bounds)
{
    const Turn turn(*this);
    if (Surface* s = find(surface))
        put_at(surface, *s, bounded(bounds));
}

void XcbScreen::put_at(SurfaceId id, Surface& surface, const RECT& bounds)
{
    if (same(surface.bounds, bounds))
        return;
    const bool resized = width_of(surface.bounds) != width_of(bounds) || height_of(surface.bounds) != height_of(bounds);
    surface.bounds = bounds;
    forget_placings(id);
    if (resized)
        resize_frame(surface);
    if (std::exchange(surface.filling_screen, false)) // some take a window as large as the screen for one that must be
        ask_state(id, false, Atom::net_wm_state_fullscreen, Atom::net_wm_state_fullscreen);
    write_size_hints(id, surface, false); // before the request: a window manager holds it against them
    const std::uint32_t values[] = { static_cast<std::uint32_t>(bounds.left), static_cast<std::uint32_t>(bounds.top),
                                     window_extent(width_of(bounds)), window_extent(height_of(bounds)) };
    xcb_configure_window(server(), id,
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                         values);
    surface.awaited.push_back(bounds);
    if (surface.awaited.size() > kAwaitedKept)
        surface.awaited.pop_front();
    update_mapping(id, surface);
}

// What came from outside and was not told yet is overruled.
void XcbScreen::forget_placings(SurfaceId id)
{
    std::erase_if(events_,
                  [id](const ScreenEvent& event) { return event.surface == id && event.kind == EventKind::placed; });
}

void XcbScreen::raise(SurfaceId surface)
{
    const Turn turn(*this);
    stack(surface, XCB_STACK_MODE_ABOVE);
}

void XcbScreen::lower(SurfaceId surface)
{
    const Turn turn(*this);
    stack(surface, XCB_STACK_MODE_BELOW);
}

void XcbScreen::stack(SurfaceId id, std::uint32_t mode)
{
    if (!find(id))
        return;
    xcb_configure_window(server(), id, XCB_CONFIG_WINDOW_STACK_MODE, &mode);
    if (mode == XCB_STACK_MODE_ABOVE)
        raise_upper_layers(id);
}

// Without a window manager nobody but us keeps topmost surfaces and menus above the others.
void XcbScreen::raise_upper_layers(SurfaceId than)
{
    const auto layer_of = [](const Surface& surface) {
        return !is_managed(surface.traits.kind) ? 2 : surface.traits.topmost ? 1 : 0;
    };
    const int own_layer = layer_of(surfaces_.at(than));
    constexpr std::uint32_t kAbove = XCB_STACK_MODE_ABOVE;
    for (int layer = own_layer + 1; layer <= 2; layer++) {
        for (const auto& [id, surface] : surfaces_) {
            if (surface.mapped && layer_of(surface) == layer)
                xcb_configure_window(server(), id, XCB_CONFIG_WINDOW_STACK_MODE, &kAbove);
        }
    }
}

void XcbScreen::activate(SurfaceId surface)
{
    const Turn turn(*this);
    Surface* s = find(surface);
    if (!s)
        return;
    stack(surface, XCB_STACK_MODE_ABOVE);
    if (s->mapped)
        take_focus(surface);
    else
        s->activate_when_mapped = true;
}

void XcbScreen::set_shape(SurfaceId surface, std::optional<std::span<const RECT>> rectangles)
{
    const Turn turn(*this);
    const Surface* s = find(surface);
    if (!s || !connection_->has_shape())
        return;
    if (!rectangles) {
        xcb_shape_mask(server(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, surface, 0, 0, XCB_PIXMAP_NONE);
        return;
    }
    std::vector<xcb_rectangle_t> parts;
    parts.reserve(rectangles->size());
    for (const RECT& rect : *rectangles) {
        const RECT part = intersection(rect, { 0, 0, kMaxExtent, kMaxExtent });
        if (!is_empty(part))
            parts.push_back({ static_cast<std::int16_t>(part.left), static_cast<std::int16_t>(part.top),
                              static_cast<std::uint16_t>(width_of(part)),
                              static_cast<std::uint16_t>(height_of(part)) });
    }
    xcb_shape_rectangles(server(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, XCB_CLIP_ORDERING_UNSORTED, surface, 0, 0,
                         static_cast<std::uint32_t>(parts.size()), parts.data());
}

PixelView XcbScreen::pixels(SurfaceId surface)
{
    const Turn turn(*this);
    const Surface* s = find(surface);
    return s ? s->frame.view() : PixelView{};
}

void XcbScreen::set_cursor(SurfaceId surface, CursorShape shape)
{
    const Turn turn(*this);
    Surface* s = find(surface);
    if (!s || s->cursor == shape) // it is set at every motion of the pointer
        return;
    s->cursor = shape;
    const xcb_cursor_t cursor = cursors_.get(shape);
    xcb_change_window_attributes(server(), surface, XCB_CW_CURSOR, &cursor);
}

bool XcbScreen::capture(SurfaceId surface)
{
    const Turn turn(*this);
    const Surface* s = find(surface);
    if (!s || !s->mapped)
        return false;
    for (int attempt = 0; attempt < kGrabAttempts; attempt++) {
        const auto cookie = xcb_grab_pointer(server(), 0, surface, kPointerEvents, XCB_GRAB_MODE_ASYNC,
                                             XCB_GRAB_MODE_ASYNC, XCB_WINDOW_NONE, XCB_CURSOR_NONE, XCB_CURRENT_TIME);
        const auto reply = take_reply(xcb_grab_pointer_reply, server(), cookie);
        if (reply && reply->status == XCB_GRAB_STATUS_SUCCESS) {
            captured_ = surface;
            if (s->traits.kind == SurfaceKind::menu) // it has no focus, and no other program's shortcut may disturb it
                grab_keyboard(surface);
            return true;
        }
    }
    return false;
}

void XcbScreen::release_capture()
{
    const Turn turn(*this);
    if (std::exchange(captured_, 0) != 0)
        xcb_ungrab_pointer(server(), XCB_CURRENT_TIME);
    ungrab_keyboard();
}

// Without waiting for the answer: refused, the keys go where the focus is, which is a window of ours most likely.
void XcbScreen::grab_keyboard(SurfaceId id)
{
    xcb_discard_reply(
        server(),
        xcb_grab_keyboard(server(), 0, id, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC).sequence);
    keyboard_grabbed_ = true;
}

void XcbScreen::ungrab_keyboard()
{
    if (std::exchange(keyboard_grabbed_, false))
        xcb_ungrab_keyboard(server(), XCB_CURRENT_TIME);
}

Pointer XcbScreen::pointer()
{
    const Turn turn(*this);
    return ask_pointer();
}

bool XcbScreen::key_is_down(unsigned key)
{
    const Turn turn(*this);
    const unsigned button = button_of_key(key);
    return button != 0 ? (ask_pointer().buttons & button) != 0 : keyboard_.is_down(key);
}

Pointer XcbScreen::ask_pointer()
{
    const auto cookie = xcb_query_pointer(server(), connection_->root());
    const auto reply = take_reply(xcb_query_pointer_reply, server(), cookie);
    if (!reply)
        return {};
    return { { reply->root_x, reply->root_y }, buttons_in(reply->mask), modifiers_in(reply->mask) };
}

// Whether the surface is the window manager's business; menus and tool tips are ours alone.
bool XcbScreen::is_managed(SurfaceKind kind)
{
    return kind == SurfaceKind::window || kind == SurfaceKind::tool_window;
}

XcbScreen::Surface* XcbScreen::find(SurfaceId id)
{
    const auto it = surfaces_.find(id);
    return it == surfaces_.end() ? nullptr : &it->second;
}

} // namespace win32
