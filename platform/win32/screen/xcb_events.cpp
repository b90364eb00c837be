#include "platform/win32/screen/xcb_screen.h"

#include "platform/win32/screen/geometry.h"
#include "platform/win32/screen/input.h"

#include <algorithm>
#include <cstdio>

#include <sys/eventfd.h>
#include <xcb/shm.h>

namespace win32 {

namespace {

constexpr int kWheelNotch = 120;
constexpr int kErrorsLogged = 20; // then silence: a fault that repeats says nothing new
constexpr std::uint8_t kFromProgram = 0x80;
constexpr std::uint32_t kOldestEvent = 10'000; // milliseconds; beyond it the server's clock was set anew

template <class Event>
const Event& as(const xcb_generic_event_t& event)
{
    return reinterpret_cast<const Event&>(event);
}

} // namespace

int XcbScreen::descriptor()
{
    return descriptor_.get();
}

bool XcbScreen::next_event(ScreenEvent& event)
{
    const std::lock_guard lock(mutex_);
    if (events_.empty())
        read_events();
    const bool found = !events_.empty();
    if (found) {
        event = std::move(events_.front());
        events_.pop_front();
    }
    if (events_.empty() && std::exchange(woken_, false)) {
        eventfd_t ignored = 0; // only that it is read counts: the descriptor rests until the next event
        (void)::eventfd_read(wake_.get(), &ignored);
    }
    if (Surface* s = found && event.kind == EventKind::placed ? find(event.surface) : nullptr)
        resize_frame(*s);
    return found;
}

// Everything that has arrived at once, so that only the newest of many pointer positions is told, and all that was
// uncovered is drawn once.
void XcbScreen::read_events()
{
    for (Reply<xcb_generic_event_t> event(xcb_poll_for_event(server())); event;
         event.reset(xcb_poll_for_event(server())))
        handle(*event);
    answer_exposures();
    if (connection_->lost() && !std::exchange(reported_loss_, true))
        events_.push_back({ .kind = EventKind::disconnected, .time = tick_now() });
    xcb_flush(server());
}

// What came in beside a reply. The descriptor does not speak of it any more, so we wake whoever waits.
void XcbScreen::collect_events()
{
    for (Reply<xcb_generic_event_t> event(xcb_poll_for_queued_event(server())); event;
         event.reset(xcb_poll_for_queued_event(server())))
        handle(*event);
    answer_exposures();
    if (!events_.empty() && !std::exchange(woken_, true))
        (void)::eventfd_write(wake_.get(), 1);
}

void XcbScreen::handle(const xcb_generic_event_t& event)
{
    switch (event.response_type & ~kFromProgram) {
    case 0:
        return handle_error(as<xcb_generic_error_t>(event));
    case XCB_MOTION_NOTIFY:
        return handle_motion(as<xcb_motion_notify_event_t>(event));
    case XCB_BUTTON_PRESS:
        return handle_button(as<xcb_button_press_event_t>(event), true);
    case XCB_BUTTON_RELEASE:
        return handle_button(as<xcb_button_press_event_t>(event), false);
    case XCB_KEY_PRESS:
        return handle_key(as<xcb_key_press_event_t>(event), true);
    case XCB_KEY_RELEASE:
        return handle_key(as<xcb_key_press_event_t>(event), false);
    case XCB_ENTER_NOTIFY:
        return handle_crossing(as<xcb_enter_notify_event_t>(event), true);
    case XCB_LEAVE_NOTIFY:
        return handle_crossing(as<xcb_enter_notify_event_t>(event), false);
    case XCB_FOCUS_IN:
        return handle_focus(as<xcb_focus_in_event_t>(event), true);
    case XCB_FOCUS_OUT:
        return handle_focus(as<xcb_focus_in_event_t>(event), false);
    case XCB_EXPOSE: {
        const auto& expose = as<xcb_expose_event_t>(event);
        if (Surface* s = find(expose.window))
            s->exposed = hull(s->exposed, moved({ 0, 0, expose.width, expose.height }, expose.x, expose.y));
        return;
    }
    case XCB_MAP_NOTIFY:
        return handle_map(as<xcb_map_notify_event_t>(event).window);
    case XCB_REPARENT_NOTIFY:
        if (Surface* s = find(as<xcb_reparent_notify_event_t>(event).window))
            s->reparented = as<xcb_reparent_notify_event_t>(event).parent != connection_->root();
        return;
    case XCB_CONFIGURE_NOTIFY:
        return handle_configure(as<xcb_configure_notify_event_t>(event), (event.response_type & kFromProgram) != 0);
    case XCB_PROPERTY_NOTIFY:
        return handle_property(as<xcb_property_notify_event_t>(event));
    case XCB_DESTROY_NOTIFY: {
        const xcb_window_t gone = as<xcb_destroy_notify_event_t>(event).window;
        if (window_manager_ == gone)
            window_manager_.reset();
        if (find(gone))
            push(EventKind::close_request, gone); // by somebody else: nobody could ever close it otherwise
        return;
    }
    case XCB_CLIENT_MESSAGE:
        return handle_message(as<xcb_client_message_event_t>(event));
    case XCB_MAPPING_NOTIFY:
        return keyboard_.forget_mapping();
    default:
        return; // nothing that we asked for
    }
}

// A refused request costs what it asked for and nothing more. That the server cannot map our memory is no fault: it
// may run on another machine.
void XcbScreen::handle_error(const xcb_generic_error_t& error)
{
    if (error.major_code != 0 && error.major_code == connection_->shm_opcode()) {
        if (error.minor_code == XCB_SHM_ATTACH_FD)
            share_no_memory();
        if (!shares_memory_)
            return;
    }
    if (errors_logged_ < kErrorsLogged) {
        errors_logged_++;
        std::fprintf(stderr, "X server: error %u of request %u.%u on 0x%x\n", error.error_code, error.major_code,
                     error.minor_code, error.resource_id);
    }
}

void XcbScreen::answer_exposures()
{
    for (auto& [id, surface] : surfaces_) {
        const RECT exposed = std::exchange(surface.exposed, RECT{});
        if (surface.drawn && surface.mapped && !is_empty(exposed))
            put(id, surface, exposed);
    }
}

template <class Event>
ScreenEvent XcbScreen::input(EventKind kind, const Event& event)
{
    last_time_ = event.time;
    return { .kind = kind,
             .surface = event.event,
             .position = { event.root_x, event.root_y },
             .buttons = buttons_in(event.state),
             .modifiers = modifiers_in(event.state),
             .time = local_time(event.time) };
}

void XcbScreen::handle_button(const xcb_button_press_event_t& event, bool down)
{
    constexpr unsigned kButtons[] = { 0, kLeftButton, kMiddleButton, kRightButton };
    constexpr xcb_button_t kWheelUp = 4;
    constexpr xcb_button_t kWheelDown = 5;
    if (event.detail == kWheelUp || event.detail == kWheelDown) {
        ScreenEvent wheel = input(EventKind::wheel, event);
        wheel.amount = event.detail == kWheelUp ? kWheelNotch : -kWheelNotch;
        if (down)
            push_pointer(std::move(wheel));
        return;
    }
    if (event.detail >= std::size(kButtons))
        return;
    ScreenEvent button = input(down ? EventKind::button_down : EventKind::button_up, event);
    button.button = kButtons[event.detail];
    button.buttons = down ? button.buttons | button.button : button.buttons & ~button.button;
    const bool released = button.buttons == 0;
    push_pointer(std::move(button));
    if (released && captured_ == 0 && std::exchange(left_while_held_, false))
        push(EventKind::pointer_leave, std::exchange(hovered_, 0));
}

void XcbScreen::handle_motion(const xcb_motion_notify_event_t& event)
{
    push_pointer(input(EventKind::pointer_move, event));
}

// Coming into a surface is its first motion. Out of the one that holds the pointer it does not go before the last
// button is up.
void XcbScreen::handle_crossing(const xcb_enter_notify_event_t& event, bool enters)
{
    if (event.mode == XCB_NOTIFY_MODE_GRAB || event.detail == XCB_NOTIFY_DETAIL_INFERIOR)
        return; // somebody took the pointer, it did not move
    const bool held = captured_ != 0 || (buttons_in(event.state) != 0 && event.mode == XCB_NOTIFY_MODE_NORMAL);
    left_while_held_ = held && !enters;
    if (enters)
        push_pointer(input(EventKind::pointer_move, event));
    else if (!held && hovered_ == event.event) {
        hovered_ = 0;
        push(input(EventKind::pointer_leave, event));
    }
}

void XcbScreen::handle_key(const xcb_key_press_event_t& event, bool down)
{
    ScreenEvent key = input(down ? EventKind::key_down : EventKind::key_up, event);
    key.key = keyboard_.key_of(event.detail);
    if (down)
        key.text = keyboard_.text_of(event.detail, event.state);
    // A key that is held comes as release and press at one moment; it is down all the time.
    if (down && !events_.empty() && events_.back().kind == EventKind::key_up && events_.back().key == key.key &&
        events_.back().time == key.time)
        events_.pop_back();
    push(std::move(key));
}

// Grabs move the focus for a moment without meaning it, except that it may arrive while somebody holds one; the
// pointer's place is no focus either.
void XcbScreen::handle_focus(const xcb_focus_in_event_t& event, bool in)
{
    const bool meant =
        (event.mode == XCB_NOTIFY_MODE_NORMAL || event.mode == XCB_NOTIFY_MODE_WHILE_GRABBED) &&
        (event.detail == XCB_NOTIFY_DETAIL_ANCESTOR || event.detail == XCB_NOTIFY_DETAIL_VIRTUAL ||
         event.detail == XCB_NOTIFY_DETAIL_NONLINEAR || event.detail == XCB_NOTIFY_DETAIL_NONLINEAR_VIRTUAL);
    if (!meant || (focused_ == event.event) == in)
        return;
    focused_ = in ? event.event : 0;
    push(in ? EventKind::focus_in : EventKind::focus_out, event.event);
}

// Inside a window manager's frame the server's own word on the position counts from the frame; the window manager
// sends the true one along. What we asked for ourselves is no news.
void XcbScreen::handle_configure(const xcb_configure_notify_event_t& event, bool synthetic)
{
    if (event.window == connection_->root()) {
        root_size_ = { event.width, event.height };
        return;
    }
    Surface* s = find(event.window);
    if (!s || is_empty(s->bounds))
        return;
    const bool framed = s->reparented && !synthetic;
    const LONG left = framed ? s->bounds.left : event.x;
    const LONG top = framed ? s->bounds.top : event.y;
    const RECT placed{ left, top, left + event.width, top + event.height };
    const auto asked =
        std::find_if(s->awaited.begin(), s->awaited.end(), [&](const RECT& rect) { return same(rect, placed); });
    if (asked != s->awaited.end()) {
        s->awaited.erase(s->awaited.begin(), asked + 1);
        return;
    }
    if (same(placed, s->bounds))
        return;
    s->awaited.clear();
    s->bounds = placed;
    push({ .kind = EventKind::placed, .surface = event.window, .bounds = placed });
}

void XcbScreen::handle_property(const xcb_property_notify_event_t& event)
{
    const XcbConnection& x = *connection_;
    if (event.window == x.root()) {
        if (event.atom == x.atom(Atom::net_supporting_wm_check))
            window_manager_.reset();
        return;
    }
    Surface* s = find(event.window);
    if (s && s->mapped && (event.atom == x.atom(Atom::wm_state) || event.atom == x.atom(Atom::net_wm_state)))
        learn_state(event.window, *s);
}

void XcbScreen::handle_message(const xcb_client_message_event_t& event)
{
    const XcbConnection& x = *connection_;
    if (event.type != x.atom(Atom::wm_protocols) || event.format != 32)
        return;
    if (event.data.data32[0] == x.atom(Atom::wm_delete_window))
        push(EventKind::close_request, event.window);
    if (event.data.data32[0] == x.atom(Atom::net_wm_ping)) { // or it takes us for hanging
        xcb_client_message_event_t answer = event;
        answer.response_type = XCB_CLIENT_MESSAGE;
        answer.window = x.root();
        xcb_send_event(server(), 0, x.root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                       reinterpret_cast<const char*>(&answer));
    }
}

void XcbScreen::handle_map(SurfaceId id)
{
    Surface* s = find(id);
    if (s && s->mapped && std::exchange(s->activate_when_mapped, false))
        take_focus(id);
}

void XcbScreen::push(ScreenEvent event)
{
    if (!find(event.surface))
        return;
    if (event.time == 0)
        event.time = tick_now();
    events_.push_back(std::move(event));
}

void XcbScreen::push(EventKind kind, SurfaceId id)
{
    push({ .kind = kind, .surface = id });
}

// The surface that had the pointer's events before hears that it has left. Of motions that nobody has read yet only the
// newest is kept.
void XcbScreen::push_pointer(ScreenEvent event)
{
    if (const SurfaceId before = std::exchange(hovered_, event.surface); before != event.surface)
        push(EventKind::pointer_leave, before);
    if (event.kind == EventKind::pointer_move && !events_.empty() && events_.back().kind == event.kind &&
        events_.back().surface == event.surface)
        events_.pop_back();
    push(std::move(event));
}

// The server's clock as ours. They are the same one where both run on one machine; else the distance is taken at the
// first event and again when it cannot be right any more.
std::uint32_t XcbScreen::local_time(xcb_timestamp_t time)
{
    const std::uint32_t here = tick_now();
    if (!clock_offset_ || here - (time + *clock_offset_) > kOldestEvent)
        clock_offset_ = here - time;
    return time + *clock_offset_;
}

} // namespace win32
