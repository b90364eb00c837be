#include "platform/win32/screen/memory_screen.h"

#include "platform/win32/screen/input.h"

#include <algorithm>

#include <sys/eventfd.h>

namespace win32 {

namespace {

// The documented virtual key codes of the three modifiers.
struct ModifierKey {
    unsigned key;
    Modifier bit;
};
constexpr ModifierKey kModifierKeys[] = { { 0x10, kShift }, { 0x11, kControl }, { 0x12, kAlt } };

} // namespace

bool MemoryScreen::capture(SurfaceId surface)
{
    const std::lock_guard lock(mutex_);
    const Surface* s = find(surface);
    if (!s || !on_display(*s))
        return false;
    captured_ = surface;
    return true;
}

void MemoryScreen::release_capture()
{
    const std::lock_guard lock(mutex_);
    captured_ = 0;
    follow_pointer();
}

Pointer MemoryScreen::pointer()
{
    const std::lock_guard lock(mutex_);
    return { position_, buttons_, modifiers() };
}

bool MemoryScreen::key_is_down(unsigned key)
{
    const std::lock_guard lock(mutex_);
    return keys_.contains(key) || (buttons_ & button_of_key(key)) != 0;
}

int MemoryScreen::descriptor()
{
    return wake_.get();
}

bool MemoryScreen::next_event(ScreenEvent& event)
{
    const std::lock_guard lock(mutex_);
    const bool found = !events_.empty();
    if (found) {
        event = std::move(events_.front());
        events_.pop_front();
    }
    if (events_.empty()) {
        eventfd_t ignored = 0; // only that it is read counts: the descriptor rests until the next event
        (void)::eventfd_read(wake_.get(), &ignored);
    }
    if (Surface* s = found && event.kind == EventKind::placed ? find(event.surface) : nullptr) {
        (void)s->frame.resize(width_of(event.bounds), height_of(event.bounds));
        if (on_display(*s))
            repaint(s->look.bounds);
    }
    return found;
}

void MemoryScreen::move_pointer(POINT position)
{
    const std::lock_guard lock(mutex_);
    position_ = { std::clamp<LONG>(position.x, 0, picture_.width - 1),
                  std::clamp<LONG>(position.y, 0, picture_.height - 1) };
    push_pointer(EventKind::pointer_move, pointer_target());
}

void MemoryScreen::press(MouseButton button)
{
    const std::lock_guard lock(mutex_);
    if (buttons_ == 0)
        pressed_ = hit(position_);
    buttons_ |= button;
    push_pointer(EventKind::button_down, pointer_target(), button);
}

void MemoryScreen::release(MouseButton button)
{
    const std::lock_guard lock(mutex_);
    const SurfaceId target = pointer_target();
    buttons_ &= ~static_cast<unsigned>(button);
    push_pointer(EventKind::button_up, target, button);
    if (buttons_ == 0)
        pressed_ = 0;
    follow_pointer();
}

void MemoryScreen::click(POINT position, MouseButton button)
{
    move_pointer(position);
    press(button);
    release(button);
}

void MemoryScreen::turn_wheel(int amount)
{
    const std::lock_guard lock(mutex_);
    push_pointer(EventKind::wheel, pointer_target(), 0, amount);
}

void MemoryScreen::press_key(unsigned key, const std::string& text)
{
    const std::lock_guard lock(mutex_);
    keys_.insert(key);
    push({ .kind = EventKind::key_down, .surface = key_target(), .key = key, .text = text });
}

void MemoryScreen::release_key(unsigned key)
{
    const std::lock_guard lock(mutex_);
    keys_.erase(key);
    push({ .kind = EventKind::key_up, .surface = key_target(), .key = key });
}

void MemoryScreen::request_close(SurfaceId surface)
{
    const std::lock_guard lock(mutex_);
    push(EventKind::close_request, surface);
}

void MemoryScreen::focus(SurfaceId surface)
{
    const std::lock_guard lock(mutex_);
    move_focus(surface);
}

void MemoryScreen::disconnect()
{
    const std::lock_guard lock(mutex_);
    if (!std::exchange(connected_, false))
        return;
    events_.push_back({ .kind = EventKind::disconnected, .time = tick_now() });
    (void)::eventfd_write(wake_.get(), 1);
}

SurfaceId MemoryScreen::surface_at(POINT position) const
{
    const std::lock_guard lock(mutex_);
    return hit(position);
}

SurfaceId MemoryScreen::focused() const
{
    const std::lock_guard lock(mutex_);
    return focused_;
}

SurfaceId MemoryScreen::capture_holder() const
{
    const std::lock_guard lock(mutex_);
    return captured_;
}

// Events of no surface are nobody's, and none comes after the connection is lost.
void MemoryScreen::push(ScreenEvent event)
{
    if (!connected_ || !find(event.surface))
        return;
    event.position = position_;
    event.buttons = buttons_;
    event.modifiers = modifiers();
    event.time = tick_now();
    events_.push_back(std::move(event));
    (void)::eventfd_write(wake_.get(), 1);
}

void MemoryScreen::push(EventKind kind, SurfaceId id)
{
    push({ .kind = kind, .surface = id });
}

// The surface that had the pointer's events before hears that it has left.
void MemoryScreen::push_pointer(EventKind kind, SurfaceId id, unsigned button, int amount)
{
    if (const SurfaceId before = std::exchange(hovered_, id); before != id)
        push(EventKind::pointer_leave, before);
    push({ .kind = kind, .surface = id, .button = button, .amount = amount });
}

void MemoryScreen::move_focus(SurfaceId id)
{
    if (id == focused_ || (id != 0 && !find(id)))
        return;
    push(EventKind::focus_out, std::exchange(focused_, id));
    push(EventKind::focus_in, id);
}

SurfaceId MemoryScreen::hit(POINT position) const
{
    for (auto id = stack_.rbegin(); id != stack_.rend(); ++id) {
        const Surface& surface = surfaces_.at(*id);
        if (!on_display(surface) || surface.look.traits.kind == SurfaceKind::tool_tip) // the pointer goes through tips
            continue;
        const std::vector<RECT> parts = outline(surface);
        if (std::any_of(parts.begin(), parts.end(), [&](const RECT& part) { return contains(part, position); }))
            return *id;
    }
    return 0;
}

SurfaceId MemoryScreen::pointer_target() const
{
    if (captured_ != 0)
        return captured_;
    return buttons_ != 0 ? pressed_ : hit(position_);
}

// A menu that holds the pointer has the keys, too.
SurfaceId MemoryScreen::key_target() const
{
    const Surface* holder = find(captured_);
    return holder && holder->look.traits.kind == SurfaceKind::menu ? captured_ : focused_;
}

// Tells the surfaces when the pointer is over another one than before, whichever of them moved.
void MemoryScreen::follow_pointer()
{
    if (const SurfaceId target = pointer_target(); target != hovered_)
        push_pointer(EventKind::pointer_move, target);
}

unsigned MemoryScreen::modifiers() const
{
    unsigned bits = 0;
    for (const ModifierKey& modifier : kModifierKeys) {
        if (keys_.contains(modifier.key))
            bits |= modifier.bit;
    }
    return bits;
}

} // namespace win32
