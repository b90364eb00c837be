// Surfaces as windows of an X server, with any window manager or none. Requests go out without waiting for answers
// wherever the protocol allows; what the server refuses is logged and never ends the program.
//
// All calls are safe from any thread. A SurfaceId is the server's window id.
#pragma once

#include "platform/win32/kernel/unique_fd.h"
#include "platform/win32/screen/frame_buffer.h"
#include "platform/win32/screen/screen.h"
#include "platform/win32/screen/xcb_connection.h"
#include "platform/win32/screen/xcb_cursors.h"
#include "platform/win32/screen/xcb_keyboard.h"

#include <deque>
#include <map>
#include <mutex>

#include <xcb/shm.h>

namespace win32 {

class XcbScreen final : public Screen {
public:
    // Null when no server answers at `display` or it cannot show 24-bit colours.
    static std::shared_ptr<XcbScreen> open(const char* display);
    ~XcbScreen() override;

    SurfaceId create(const RECT& bounds, const SurfaceTraits& traits) override;
    void destroy(SurfaceId surface) override;
    void set_traits(SurfaceId surface, const SurfaceTraits& traits) override;
    void show(SurfaceId surface, bool visible, bool activate) override;
    void place(SurfaceId surface, const RECT& bounds) override;
    void set_state(SurfaceId surface, SurfaceState state) override;
    void raise(SurfaceId surface) override;
    void lower(SurfaceId surface) override;
    void activate(SurfaceId surface) override;
    void set_shape(SurfaceId surface, std::optional<std::span<const RECT>> rectangles) override;
    void set_icons(SurfaceId surface, std::span<const PixelView> sizes) override;
    PixelView pixels(SurfaceId surface) override;
    void present(SurfaceId surface, const RECT& damage) override;
    void set_cursor(SurfaceId surface, CursorShape shape) override;
    bool capture(SurfaceId surface) override;
    void release_capture() override;
    Pointer pointer() override;
    bool key_is_down(unsigned key) override;
    std::vector<Monitor> monitors() override;
    int descriptor() override;
    bool next_event(ScreenEvent& event) override;
    void flush() override;

    // Whether frames go through shared memory; the socket carries them otherwise.
    bool shares_memory() const;
    // From now on the socket carries frames, as it does where the server cannot map our memory.
    void stop_sharing_memory();

private:
    struct Surface {
        RECT bounds{};
        SurfaceTraits traits;
        SurfaceState state = SurfaceState::normal;
        std::optional<RECT> restored; // where it was before we maximised it ourselves
        bool visible = false;         // shown by its owner
        bool mapped = false;          // asked of the server: visible and not empty
        bool activate_when_mapped = false;
        bool drawn = false; // presented once at least
        bool reparented = false;
        bool filling_screen = false; // a window manager holds it there
        std::deque<RECT> awaited;    // our own placings that the server did not confirm yet
        RECT exposed{};
        FrameBuffer frame{ FrameBuffer::Memory::shared };
        xcb_shm_seg_t segment = 0; // the frame's memory, as the server knows it
        std::optional<CursorShape> cursor;
    };
    // Locks the screen. Waiting for a reply may bring events in behind the back of a thread that waits on the
    // descriptor; the end of the turn collects them and wakes it.
    class Turn {
    public:
        explicit Turn(XcbScreen& screen) : screen_(screen), lock_(screen.mutex_) {}
        ~Turn() { screen_.collect_events(); }
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;

    private:
        XcbScreen& screen_;
        std::lock_guard<std::mutex> lock_;
    };

    explicit XcbScreen(std::unique_ptr<XcbConnection> connection);
    static bool is_managed(SurfaceKind kind);
    bool watch_connection();
    Surface* find(SurfaceId id);
    Pointer ask_pointer();
    xcb_connection_t* server() const { return connection_->get(); }

    // xcb_screen.cpp: surfaces
    xcb_window_t create_window(const RECT& bounds);
    void write_kind(SurfaceId id, SurfaceKind kind);
    void update_mapping(SurfaceId id, Surface& surface);
    void stack(SurfaceId id, std::uint32_t mode);
    void raise_upper_layers(SurfaceId than);
    void put_at(SurfaceId id, Surface& surface, const RECT& bounds);
    void forget_placings(SurfaceId id);
    void grab_keyboard(SurfaceId id);
    void ungrab_keyboard();

    // xcb_present.cpp: pixels
    void resize_frame(Surface& surface);
    void put(SurfaceId id, Surface& surface, const RECT& damage);
    void put_shared(SurfaceId id, Surface& surface, const RECT& area);
    void put_through_socket(SurfaceId id, const Surface& surface, const RECT& area);
    bool attach(Surface& surface);
    void detach(Surface& surface);
    void share_no_memory();
    void wait_for_last_frame();

    // xcb_desktop.cpp: what window managers read and write
    void write_hints(SurfaceId id, const Surface& surface);
    void write_size_hints(SurfaceId id, const Surface& surface, bool free_size);
    void write_state(SurfaceId id, const Surface& surface);
    void ask_state(SurfaceId id, bool on, Atom first, Atom second);
    void take_focus(SurfaceId id);
    bool has_window_manager();
    void maximise(SurfaceId id, Surface& surface);
    void restore(SurfaceId id, Surface& surface);
    void enter_state(SurfaceId id, Surface& surface, SurfaceState state);
    void learn_state(SurfaceId id, Surface& surface);
    std::vector<Monitor> ask_monitors();

    // xcb_events.cpp
    void collect_events();
    void read_events();
    void handle(const xcb_generic_event_t& event);
    void handle_error(const xcb_generic_error_t& error);
    void handle_button(const xcb_button_press_event_t& event, bool down);
    void handle_motion(const xcb_motion_notify_event_t& event);
    void handle_crossing(const xcb_enter_notify_event_t& event, bool enters);
    void handle_key(const xcb_key_press_event_t& event, bool down);
    void handle_focus(const xcb_focus_in_event_t& event, bool in);
    void handle_configure(const xcb_configure_notify_event_t& event, bool synthetic);
    void handle_property(const xcb_property_notify_event_t& event);
    void handle_message(const xcb_client_message_event_t& event);
    void handle_map(SurfaceId id);
    void answer_exposures();
    void push(ScreenEvent event);
    void push(EventKind kind, SurfaceId id);
    void push_pointer(ScreenEvent event);
    template <class Event>
    ScreenEvent input(EventKind kind, const Event& event);
    std::uint32_t local_time(xcb_timestamp_t time);

    mutable std::mutex mutex_;
    std::unique_ptr<XcbConnection> connection_;
    XcbCursors cursors_;
    XcbKeyboard keyboard_;
    std::map<SurfaceId, Surface> surfaces_;
    SIZE root_size_;
    bool shares_memory_;
    std::optional<xcb_get_input_focus_cookie_t> frame_in_flight_;
    std::vector<std::uint32_t> band_;            // rows on their way through the socket
    std::optional<xcb_window_t> window_manager_; // its own window, 0: there is none; no value: not asked yet

    UniqueFd wake_;
    UniqueFd descriptor_; // readable when the connection or wake_ is
    std::deque<ScreenEvent> events_;
    bool woken_ = false;
    bool reported_loss_ = false;
    SurfaceId focused_ = 0;
    SurfaceId captured_ = 0;
    bool keyboard_grabbed_ = false;
    SurfaceId hovered_ = 0;
    bool left_while_held_ = false; // the pointer went out of the surface that holds it
    xcb_timestamp_t last_time_ = XCB_CURRENT_TIME;
    std::optional<std::uint32_t> clock_offset_;
    int errors_logged_ = 0;
};

} // namespace win32
