// The surface of a top-level window: what its whole tree draws into, and what of it the screen has not seen yet.
// Drawing may come from any thread; presenting is the owner thread's.
#pragma once

#include "platform/win32/gdi/draw_target.h"

#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace win32 {

class MessageQueue;

class TopSurface final : public DrawTarget {
public:
    TopSurface(SurfaceId id, const std::shared_ptr<MessageQueue>& owner);

    SurfaceId id() const { return id_; }

    PixelView pixels() override;
    void damaged(const RECT& rect) override;

    // Shows what was drawn since the last time. False: nothing was.
    bool present();
    bool is_overdue() const;

    void set_cursor(CursorShape shape); // tells the screen only what is new

    // Gives the surface back to the screen; contexts that are still open draw nowhere from now on.
    void close();

private:
    using Clock = std::chrono::steady_clock;

    const SurfaceId id_;
    const std::weak_ptr<MessageQueue> owner_;
    const std::thread::id owner_thread_;
    std::optional<CursorShape> cursor_;

    mutable std::mutex mutex_; // guards what follows
    bool closed_ = false;
    std::optional<RECT> damage_;
    Clock::time_point damaged_since_;
};

} // namespace win32
