// A device context: where drawing goes, what is selected, how coordinates map and what is clipped away.
//
// Three kinds of coordinates meet here. Logical ones are the caller's. Device ones are those less the window origin
// plus the viewport origin; a right-to-left context counts them from its right edge. Target ones are those of the
// pixels, the bitmap's or the window surface's, in which the context's top left corner is `origin`.
#pragma once

#include "platform/win32/gdi/bitmap.h"
#include "platform/win32/gdi/draw_target.h"
#include "platform/win32/gdi/font.h"
#include "platform/win32/gdi/objects.h"

#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace win32 {

// A selected object; counts as a selection of it while it stands.
template <class Object>
class Selection {
public:
    Selection() = default;
    Selection(HGDIOBJ handle, std::shared_ptr<Object> object) : handle_(handle), object_(std::move(object))
    {
        count(1);
    }
    Selection(const Selection& other) : handle_(other.handle_), object_(other.object_) { count(1); }
    Selection(Selection&& other) noexcept
        : handle_(std::exchange(other.handle_, nullptr)), object_(std::move(other.object_))
    {}
    Selection& operator=(Selection other) noexcept
    {
        std::swap(handle_, other.handle_);
        std::swap(object_, other.object_);
        return *this;
    }
    ~Selection() { count(-1); }

    HGDIOBJ handle() const { return handle_; }
    Object* get() const { return object_.get(); }
    Object* operator->() const { return object_.get(); }
    const std::shared_ptr<Object>& shared() const { return object_; }

private:
    void count(int by)
    {
        if (object_)
            object_->selections += by;
    }

    HGDIOBJ handle_ = nullptr;
    std::shared_ptr<Object> object_;
};

// All that SaveDC keeps.
struct DrawState {
    Selection<Bitmap> bitmap; // of a memory context
    Selection<Pen> pen;
    Selection<Brush> brush;
    Selection<Font> font;
    COLORREF text_colour = 0;
    COLORREF background = RGB(255, 255, 255);
    int background_mode = OPAQUE;
    int mix_mode = R2_COPYPEN;
    int stretch_mode = BLACKONWHITE;
    UINT text_align = TA_LEFT;
    DWORD layout = 0;
    POINT window_origin{};
    POINT viewport_origin{};
    POINT position{};           // where LineTo starts, logical
    std::optional<Region> clip; // counted from the context's top left corner in either layout
};

// The destination of one drawing call. Everything drawn must lie in `clip`.
struct Canvas {
    Raster raster;
    const Region* clip = nullptr; // target coordinates, within the raster
    DrawTarget* target = nullptr; // to be told of damage

    // Says that the pixels of `rect` (target coordinates) within the clip have changed.
    void changed(const RECT& rect) const;
};

class DeviceContext : public GdiObject {
public:
    DeviceContext() : GdiObject(OBJ_MEMDC) {}
    DeviceContext(DrawTarget& target, POINT origin, SIZE size, Region visible)
        : GdiObject(OBJ_DC), target_(&target), origin_(origin), size_(size), visible_(std::move(visible))
    {}

    bool is_memory() const { return !target_; }
    int width() const { return target_ ? size_.cx : state.bitmap->width(); }
    int height() const { return target_ ? size_.cy : state.bitmap->height(); }
    int depth() const { return target_ ? 32 : state.bitmap->depth(); }
    bool is_mirrored() const { return state.layout & LAYOUT_RTL; }
    bool keeps_orientation() const { return state.layout & LAYOUT_BITMAPORIENTATIONPRESERVED; }
    int describe(std::span<std::byte>) const override { return 0; }

    // Logical to device coordinates and on to target ones.
    std::int64_t device_x(std::int64_t x) const { return x - state.window_origin.x + state.viewport_origin.x; }
    std::int64_t device_y(std::int64_t y) const { return y - state.window_origin.y + state.viewport_origin.y; }
    // A rectangle whose logical corners are these, left < right and top < bottom, in target coordinates.
    RECT target_rect(std::int64_t left, std::int64_t top, std::int64_t right, std::int64_t bottom) const;
    RECT target_rect(const RECT& rect) const { return target_rect(rect.left, rect.top, rect.right, rect.bottom); }
    // The pixel of a logical point.
    POINT target_point(std::int64_t x, std::int64_t y) const;
    // The logical rectangle that shows as `target`.
    RECT logical_rect(const RECT& target) const;
    // Target coordinates of the context's top left corner.
    POINT origin() const { return origin_; }

    Canvas canvas();
    // What the context shows, as a copy's source: a bitmap or (null) the target's pixels.
    const Bitmap* source_bitmap() const { return target_ ? nullptr : state.bitmap.get(); }
    Raster target_raster();

    // What may be drawn, in target coordinates. A bitmap's size changes with what is selected alone.
    const Region& effective_clip() { return clip_is_fresh_ && is_memory() ? clip_ : fresh_clip(); }
    // To be called when state.clip, state.bitmap or the layout changed.
    void clip_changed() { clip_is_fresh_ = false; }

    int save();
    bool restore(int level);
    // Lets go of all that is selected; the context is of no more use.
    void release();
    // How many selections of this bitmap are this context's own, saved ones among them.
    int own_selections(const Bitmap& bitmap) const;

    DrawState state;

private:
    const Region& fresh_clip();

    DrawTarget* target_ = nullptr;
    POINT origin_{};
    SIZE size_{};
    Region visible_; // of a window, target coordinates
    std::vector<DrawState> saved_;

    Region clip_;
    RECT clip_bounds_{}; // of the raster that clip_ was made for
    bool clip_is_fresh_ = false;
};

// The context of a handle, or null with the last error ERROR_INVALID_HANDLE.
std::shared_ptr<DeviceContext> find_context(HDC dc);

} // namespace win32
