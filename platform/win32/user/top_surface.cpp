#include "platform/win32/user/top_surface.h"

#include "platform/win32/user/message_queue.h"

namespace win32 {

namespace {

// The longest that a drawn picture waits while its thread is busy with messages: a frame of a common display.
constexpr std::chrono::milliseconds kFrameTime(16);

} // namespace

TopSurface::TopSurface(SurfaceId id, const std::shared_ptr<MessageQueue>& owner)
    : id_(id), owner_(owner), owner_thread_(std::this_thread::get_id())
{}

PixelView TopSurface::pixels()
{
    {
        const std::lock_guard lock(mutex_);
        if (closed_)
            return {};
    }
    return screen().pixels(id_);
}

void TopSurface::damaged(const RECT& rect)
{
    {
        const std::lock_guard lock(mutex_);
        if (closed_ || IsRectEmpty(&rect))
            return;
        if (damage_) {
            UnionRect(&*damage_, &*damage_, &rect);
        } else {
            damage_ = rect;
            damaged_since_ = Clock::now();
        }
    }
    if (std::this_thread::get_id() != owner_thread_) {
        if (const auto owner = owner_.lock())
            owner->wake();
    }
}

bool TopSurface::present()
{
    RECT damage;
    {
        const std::lock_guard lock(mutex_);
        if (closed_ || !damage_)
            return false;
        damage = *damage_;
        damage_.reset();
    }
    screen().present(id_, damage);
    return true;
}

bool TopSurface::is_overdue() const
{
    const std::lock_guard lock(mutex_);
    return damage_ && Clock::now() - damaged_since_ >= kFrameTime;
}

void TopSurface::set_cursor(CursorShape shape)
{
    if (cursor_ == shape)
        return;
    cursor_ = shape;
    screen().set_cursor(id_, shape);
}

void TopSurface::close()
{
    {
        const std::lock_guard lock(mutex_);
        if (closed_)
            return;
        closed_ = true;
        damage_.reset();
    }
    screen().destroy(id_);
}

} // namespace win32
