// The one seam to the display. Above it a top-level window is a surface: a rectangle of the screen with pixels of its
// own, an order, a shape and input. XcbScreen puts surfaces on an X server, MemoryScreen composes them into a picture
// in memory and takes injected input; the code above is the same for both.
//
// All calls are safe from any thread. Positions are in screen pixels, the screen's top left corner is 0,0.
#pragma once

#include "windef.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace win32 {

// Pixels 0x00RRGGBB, top row first. `stride` is in pixels. Borrowed from whoever gave it.
struct PixelView {
    std::uint32_t* pixels = nullptr;
    int width = 0;
    int height = 0;
    int stride = 0;
};

using SurfaceId = std::uint32_t; // 0: none

// The last two are ours alone: no window manager moves, frames or lists them, they never take the focus, and they lie
// above all others. The pointer goes through a tip.
enum class SurfaceKind { window, tool_window, menu, tool_tip };
enum class SurfaceState { normal, minimised, maximised };

// What a surface is to the desktop; all of it can change later through set_traits, its kind while it is hidden.
struct SurfaceTraits {
    SurfaceKind kind = SurfaceKind::window;
    bool topmost = false;
    bool resizable = false;
    SurfaceId owner = 0;
    std::string title;      // UTF-8
    std::string class_name; // UTF-8: what the desktop groups windows by
    SIZE min_size{ 0, 0 };  // 0: no bound
    SIZE max_size{ 0, 0 };
};

enum class CursorShape { arrow, ibeam, wait, cross, hand, size_we, size_ns, size_nwse, size_nesw, size_all, no, none };

enum MouseButton : unsigned { kLeftButton = 1, kMiddleButton = 2, kRightButton = 4 };
enum Modifier : unsigned { kShift = 1, kControl = 2, kAlt = 4 };

enum class EventKind {
    pointer_move,
    pointer_leave,
    button_down, // `button`
    button_up,
    wheel,    // `amount`, 120 a notch, positive away from the user
    key_down, // `key` (a VK_ code), `text` (UTF-8, may be empty)
    key_up,
    placed, // position or size changed from outside: `bounds`
    state,  // minimised, maximised or back: `state`
    focus_in,
    focus_out,
    close_request,
    disconnected, // the display is gone; no event follows
};

struct ScreenEvent {
    EventKind kind{};
    SurfaceId surface = 0;
    POINT position{};       // of the pointer, on the screen
    unsigned buttons = 0;   // MouseButton bits held down after the event
    unsigned modifiers = 0; // Modifier bits
    unsigned button = 0;    // the MouseButton of button_down and button_up
    int amount = 0;
    unsigned key = 0;
    std::string text{};
    RECT bounds{};
    SurfaceState state = SurfaceState::normal;
    std::uint32_t time = 0; // milliseconds, same clock as GetTickCount
};

struct Monitor {
    RECT bounds{};
    RECT work_area{};
    bool primary = false;
};

struct Pointer {
    POINT position{};
    unsigned buttons = 0;
    unsigned modifiers = 0;
};

class Screen {
public:
    virtual ~Screen() = default;

    // A hidden surface; its pixels are black. 0 if the display refuses, or for more than 2^28 pixels. An extent beyond
    // 32767 pixels is cut to that, one of 0 or less is 0, here and in `place`; a surface without extent is not on the
    // display, even while it is shown.
    virtual SurfaceId create(const RECT& bounds, const SurfaceTraits& traits) = 0;
    virtual void destroy(SurfaceId surface) = 0;
    virtual void set_traits(SurfaceId surface, const SurfaceTraits& traits) = 0;
    virtual void show(SurfaceId surface, bool visible, bool activate) = 0;
    // Moves and sizes. Pixels that stay keep their content (top left corner fixed), new ones are black. A surface of
    // more than 2^28 pixels keeps those that it had.
    virtual void place(SurfaceId surface, const RECT& bounds) = 0;
    // A wish: what the desktop makes of it comes back as `state` and, when the rectangle changed, `placed`.
    virtual void set_state(SurfaceId surface, SurfaceState state) = 0;
    virtual void raise(SurfaceId surface) = 0;
    virtual void lower(SurfaceId surface) = 0;
    virtual void activate(SurfaceId surface) = 0;
    // The outline, as rectangles in surface coordinates, also for input; none: the whole rectangle.
    virtual void set_shape(SurfaceId surface, std::optional<std::span<const RECT>> rectangles) = 0;
    // One picture in several sizes, of pixels 0xAARRGGBB, copied; one of more than 256 a side is left out.
    virtual void set_icons(SurfaceId surface, std::span<const PixelView> sizes) = 0;

    // The surface's own pixels, valid until it is placed, destroyed, or next_event says that it was placed from
    // outside. Drawing shows on the display by `present`. Smaller than the surface when the system refused memory for a
    // larger one, empty for no surface.
    virtual PixelView pixels(SurfaceId surface) = 0;
    virtual void present(SurfaceId surface, const RECT& damage) = 0; // damage in surface coordinates

    virtual void set_cursor(SurfaceId surface, CursorShape shape) = 0;
    // Sends all pointer events to `surface` until released, wherever the pointer is. Without it the surface that took a
    // press has them until the last button is up. To a menu go all keys as well.
    virtual bool capture(SurfaceId surface) = 0;
    virtual void release_capture() = 0;
    virtual Pointer pointer() = 0;
    virtual bool key_is_down(unsigned key) = 0;
    virtual std::vector<Monitor> monitors() = 0; // the primary one first; never empty

    // Becomes readable when events may wait. Take all with next_event before waiting on it, since reading replies may
    // already have brought events in.
    virtual int descriptor() = 0;
    virtual bool next_event(ScreenEvent& event) = 0;
    virtual void flush() = 0;
};

// The process's screen, opened at the first call. SCREEN=memory selects the memory screen, else DISPLAY names the X
// server; without either, or when the server does not answer, a message goes to standard error and the process ends
// with code 1.
Screen& screen();

// Replaces the screen; for tests, while no window exists. Null: `screen` opens one anew.
void set_screen(std::shared_ptr<Screen> replacement);

} // namespace win32
