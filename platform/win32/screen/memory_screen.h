// A screen in memory: composes all surfaces into one picture and takes its input from whoever plays the person in front
// of it. Tests and SCREEN=memory use it. What it does with stacking, shapes, pointer and focus is what an X server
// without a window manager would do, except that activating a surface always works.
//
// All calls are safe from any thread.
#pragma once

#include "platform/win32/kernel/unique_fd.h"
#include "platform/win32/screen/frame_buffer.h"
#include "platform/win32/screen/geometry.h"
#include "platform/win32/screen/screen.h"

#include <cstddef>
#include <deque>
#include <map>
#include <mutex>
#include <set>

namespace win32 {

inline constexpr std::uint32_t kDesktopColour = 0x00336699; // where no surface is

class MemoryScreen final : public Screen {
public:
    // The monitors lie right of and below 0,0. The pointer starts in the lower right corner, out of the way.
    MemoryScreen();
    explicit MemoryScreen(std::vector<Monitor> monitors);

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

    // What a person does. The pointer's events go to the surface that holds the capture, else to the one that took the
    // press, else to the topmost one whose shape holds the point; keys go to the focused surface.
    void move_pointer(POINT position);
    void press(MouseButton button);
    void release(MouseButton button);
    void click(POINT position, MouseButton button = kLeftButton); // move, press, release
    void turn_wheel(int amount);
    void press_key(unsigned key, const std::string& text = {});
    void release_key(unsigned key);

    // What the desktop around us does.
    void request_close(SurfaceId surface);
    void focus(SurfaceId surface); // 0: another program's window
    void place_from_outside(SurfaceId surface, const RECT& bounds);
    void set_state_from_outside(SurfaceId surface, SurfaceState state);
    void set_monitors(std::vector<Monitor> monitors);
    void disconnect();

    // What there is to see.
    struct Picture {
        int width = 0;
        int height = 0;
        std::vector<std::uint32_t> pixels;

        std::uint32_t at(int x, int y) const { return *(pixels.data() + static_cast<std::ptrdiff_t>(y) * width + x); }
    };
    Picture picture() const;
    std::uint32_t pixel_at(POINT position) const;
    bool save_picture(const std::string& path) const;
    // From now on `flush` saves the picture there whenever it has changed.
    void save_picture_at_flush(std::string path);

    struct Presented {
        SurfaceId surface = 0;
        RECT damage{};
    };
    std::size_t present_count() const;
    // The latest ones since the last call, oldest first, at most kPresentedKept.
    std::deque<Presented> take_presented();
    static constexpr std::size_t kPresentedKept = 1024;

    struct Look {
        RECT bounds{};
        bool visible = false;
        SurfaceState state = SurfaceState::normal;
        CursorShape cursor = CursorShape::arrow;
        SurfaceTraits traits;
        std::vector<Picture> icons;
    };
    std::optional<Look> look(SurfaceId surface) const; // none: no such surface
    std::vector<SurfaceId> stack() const;              // all surfaces, lowest first
    SurfaceId surface_at(POINT position) const;        // the one that a click would reach
    SurfaceId focused() const;
    SurfaceId capture_holder() const;

private:
    struct Surface {
        Look look;
        std::optional<RECT> restored; // where it was before it was maximised
        std::optional<std::vector<RECT>> shape;
        FrameBuffer frame{ FrameBuffer::Memory::own };
    };
    // Painting walks the stack from the top and asks which surface shows in which piece; null: the desktop.
    template <class Piece>
    void for_each_visible(std::vector<RECT> area, Piece piece) const;
    void paint(const Surface* surface, const RECT& rect);
    void repaint(const RECT& area);
    static bool on_display(const Surface& surface);
    static std::vector<RECT> outline(const Surface& surface); // on the screen
    RECT whole() const { return { 0, 0, picture_.width, picture_.height }; }

    // Runs `change` on the surface and repaints where it was and where it is.
    template <class Change>
    void alter(SurfaceId id, Change change);
    Surface* find(SurfaceId id);
    const Surface* find(SurfaceId id) const;
    void sort_stack();
    void move_in_stack(SurfaceId id, bool to_top);
    void enter_state(SurfaceId id, SurfaceState state);
    void cover_monitors(std::vector<Monitor> monitors);

    void push(ScreenEvent event);
    void push(EventKind kind, SurfaceId id);
    void push_pointer(EventKind kind, SurfaceId id, unsigned button = 0, int amount = 0);
    void move_focus(SurfaceId id);
    SurfaceId hit(POINT position) const;
    SurfaceId pointer_target() const;
    SurfaceId key_target() const;
    void follow_pointer();
    unsigned modifiers() const;

    mutable std::mutex mutex_;
    std::map<SurfaceId, Surface> surfaces_;
    std::vector<SurfaceId> stack_; // lowest first
    SurfaceId last_id_ = 0;
    std::vector<Monitor> monitors_;
    Picture picture_;
    std::string picture_path_;
    bool picture_changed_ = true;
    std::size_t present_count_ = 0;
    std::deque<Presented> presented_;

    POINT position_{};
    unsigned buttons_ = 0;
    std::set<unsigned> keys_;
    SurfaceId focused_ = 0;
    SurfaceId captured_ = 0;
    SurfaceId pressed_ = 0; // took the press, has the pointer until the last button is up
    SurfaceId hovered_ = 0; // last told where the pointer is
    bool connected_ = true;
    UniqueFd wake_;
    std::deque<ScreenEvent> events_;
};

} // namespace win32
