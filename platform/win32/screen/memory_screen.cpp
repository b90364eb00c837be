#include "platform/win32/screen/memory_screen.h"

#include <algorithm>

#include <sys/eventfd.h>

namespace win32 {

namespace {

constexpr RECT kDefaultMonitor{ 0, 0, 1024, 768 };

int layer_of(const SurfaceTraits& traits)
{
    if (traits.kind == SurfaceKind::menu || traits.kind == SurfaceKind::tool_tip)
        return 2;
    return traits.topmost ? 1 : 0;
}

} // namespace

MemoryScreen::MemoryScreen() : MemoryScreen({ { kDefaultMonitor, kDefaultMonitor, true } }) {}

MemoryScreen::MemoryScreen(std::vector<Monitor> monitors) : wake_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    cover_monitors(std::move(monitors));
    position_ = { picture_.width - 1, picture_.height - 1 };
}

SurfaceId MemoryScreen::create(const RECT& bounds, const SurfaceTraits& traits)
{
    const std::lock_guard lock(mutex_);
    Surface surface;
    surface.look.bounds = bounded(bounds);
    surface.look.traits = traits;
    const RECT& placed = surface.look.bounds;
    if (surface.frame.resize(width_of(placed), height_of(placed)) == FrameBuffer::Resized::refused)
        return 0;
    const SurfaceId id = ++last_id_;
    surfaces_.emplace(id, std::move(surface));
    stack_.push_back(id);
    sort_stack();
    return id;
}

void MemoryScreen::destroy(SurfaceId surface)
{
    const std::lock_guard lock(mutex_);
    alter(surface, [](Surface& s) { s.look.visible = false; });
    if (surfaces_.erase(surface) == 0)
        return;
    std::erase(stack_, surface);
    std::erase_if(events_, [surface](const ScreenEvent& event) { return event.surface == surface; });
    for (SurfaceId* role : { &focused_, &captured_, &pressed_, &hovered_ }) {
        if (*role == surface)
            *role = 0;
    }
    follow_pointer();
}

void MemoryScreen::set_traits(SurfaceId surface, const SurfaceTraits& traits)
{
    const std::lock_guard lock(mutex_);
    alter(surface, [&](Surface& s) {
        s.look.traits = traits;
        sort_stack();
    });
}

void MemoryScreen::show(SurfaceId surface, bool visible, bool activate)
{
    const std::lock_guard lock(mutex_);
    alter(surface, [&](Surface& s) {
        s.look.visible = visible;
        if (visible && activate)
            move_in_stack(surface, true);
    });
    if (visible && activate)
        move_focus(surface);
    if (!visible && captured_ == surface)
        captured_ = 0;
    if (!visible && focused_ == surface)
        move_focus(0);
    follow_pointer();
}

void MemoryScreen::place(SurfaceId surface, const RECT& bounds)
{
    const std::lock_guard lock(mutex_);
    std::erase_if(events_, [surface](const ScreenEvent& event) { // overruled before it was told
        return event.surface == surface && event.kind == EventKind::placed;
    });
    alter(surface, [&](Surface& s) {
        s.look.bounds = bounded(bounds);
        (void)s.frame.resize(width_of(s.look.bounds), height_of(s.look.bounds)); // refused: `pixels` says what there is
    });
    follow_pointer();
}

void MemoryScreen::set_state(SurfaceId surface, SurfaceState state)
{
    const std::lock_guard lock(mutex_);
    enter_state(surface, state);
}

void MemoryScreen::raise(SurfaceId surface)
{
    const std::lock_guard lock(mutex_);
    alter(surface, [&](Surface&) { move_in_stack(surface, true); });
    follow_pointer();
}

void MemoryScreen::lower(SurfaceId surface)
{
    const std::lock_guard lock(mutex_);
    alter(surface, [&](Surface&) { move_in_stack(surface, false); });
    follow_pointer();
}

void MemoryScreen::activate(SurfaceId surface)
{
    const std::lock_guard lock(mutex_);
    alter(surface, [&](Surface&) { move_in_stack(surface, true); });
    move_focus(surface);
    follow_pointer();
}

void MemoryScreen::set_shape(SurfaceId surface, std::optional<std::span<const RECT>> rectangles)
{
    const std::lock_guard lock(mutex_);
    alter(surface, [&](Surface& s) {
        s.shape.reset();
        if (rectangles)
            s.shape.emplace(rectangles->begin(), rectangles->end());
    });
    follow_pointer();
}

void MemoryScreen::set_icons(SurfaceId surface, std::span<const PixelView> sizes)
{
    const std::lock_guard lock(mutex_);
    Surface* s = find(surface);
    if (!s)
        return;
    s->look.icons.clear();
    for (const PixelView& size : sizes) {
        Picture& icon = s->look.icons.emplace_back(Picture{ size.width, size.height, {} });
        for (int y = 0; y < size.height; y++) {
            const std::uint32_t* row = size.pixels + static_cast<std::ptrdiff_t>(y) * size.stride;
            icon.pixels.insert(icon.pixels.end(), row, row + size.width);
        }
    }
}

PixelView MemoryScreen::pixels(SurfaceId surface)
{
    const std::lock_guard lock(mutex_);
    const Surface* s = find(surface);
    return s ? s->frame.view() : PixelView{};
}

void MemoryScreen::set_cursor(SurfaceId surface, CursorShape shape)
{
    const std::lock_guard lock(mutex_);
    if (Surface* s = find(surface))
        s->look.cursor = shape;
}

std::vector<Monitor> MemoryScreen::monitors()
{
    const std::lock_guard lock(mutex_);
    return monitors_;
}

void MemoryScreen::place_from_outside(SurfaceId surface, const RECT& bounds)
{
    const std::lock_guard lock(mutex_);
    if (!find(surface))
        return;
    ScreenEvent event{ .kind = EventKind::placed, .surface = surface, .bounds = bounded(bounds) };
    alter(surface, [&](Surface& s) { s.look.bounds = event.bounds; });
    push(event); // the pixels follow when it is taken
    follow_pointer();
}

void MemoryScreen::set_state_from_outside(SurfaceId surface, SurfaceState state)
{
    set_state(surface, state);
}

void MemoryScreen::set_monitors(std::vector<Monitor> monitors)
{
    const std::lock_guard lock(mutex_);
    cover_monitors(std::move(monitors));
}

std::optional<MemoryScreen::Look> MemoryScreen::look(SurfaceId surface) const
{
    const std::lock_guard lock(mutex_);
    const Surface* s = find(surface);
    return s ? std::optional(s->look) : std::nullopt;
}

std::vector<SurfaceId> MemoryScreen::stack() const
{
    const std::lock_guard lock(mutex_);
    return stack_;
}

MemoryScreen::Surface* MemoryScreen::find(SurfaceId id)
{
    const auto it = surfaces_.find(id);
    return it == surfaces_.end() ? nullptr : &it->second;
}

const MemoryScreen::Surface* MemoryScreen::find(SurfaceId id) const
{
    return const_cast<MemoryScreen*>(this)->find(id);
}

template <class Change>
void MemoryScreen::alter(SurfaceId id, Change change)
{
    Surface* surface = find(id);
    if (!surface)
        return;
    const RECT before = on_display(*surface) ? surface->look.bounds : RECT{};
    change(*surface);
    repaint(before);
    if (on_display(*surface))
        repaint(surface->look.bounds);
}

void MemoryScreen::sort_stack()
{
    std::stable_sort(stack_.begin(), stack_.end(), [this](SurfaceId a, SurfaceId b) {
        return layer_of(surfaces_.at(a).look.traits) < layer_of(surfaces_.at(b).look.traits);
    });
}

void MemoryScreen::move_in_stack(SurfaceId id, bool to_top)
{
    std::erase(stack_, id);
    stack_.insert(to_top ? stack_.end() : stack_.begin(), id);
    sort_stack();
}

void MemoryScreen::enter_state(SurfaceId id, SurfaceState state)
{
    Surface* surface = find(id);
    if (!surface || surface->look.state == state)
        return;
    const RECT before = surface->look.bounds;
    alter(id, [&](Surface& s) {
        s.look.state = state;
        if (state == SurfaceState::maximised) {
            s.restored = s.restored.value_or(before);
            s.look.bounds = monitor_of(monitors_, before).work_area;
        } else if (state == SurfaceState::normal && s.restored) {
            s.look.bounds = *s.restored;
            s.restored.reset();
        }
    });
    push({ .kind = EventKind::state, .surface = id, .state = state });
    if (!same(before, surface->look.bounds))
        push({ .kind = EventKind::placed, .surface = id, .bounds = surface->look.bounds });
    if (state == SurfaceState::minimised && focused_ == id)
        move_focus(0);
    follow_pointer();
}

void MemoryScreen::cover_monitors(std::vector<Monitor> monitors)
{
    monitors_ = std::move(monitors);
    RECT all{};
    for (const Monitor& monitor : monitors_)
        all = hull(all, monitor.bounds);
    picture_.width = std::clamp<int>(all.right, 1, kMaxExtent);
    picture_.height = std::clamp<int>(all.bottom, 1, kMaxExtent);
    picture_.pixels.assign(static_cast<std::size_t>(picture_.width) * static_cast<std::size_t>(picture_.height),
                           kDesktopColour);
    repaint(whole());
}

} // namespace win32
