#include "platform/win32/screen/memory_screen.h"

#include "platform/win32/screen/png_writer.h"

#include <algorithm>

namespace win32 {

void MemoryScreen::present(SurfaceId surface, const RECT& damage)
{
    const std::lock_guard lock(mutex_);
    const Surface* s = find(surface);
    if (!s)
        return;
    present_count_++;
    presented_.push_back({ surface, damage });
    if (presented_.size() > kPresentedKept)
        presented_.pop_front();
    if (!on_display(*s))
        return;
    const RECT& bounds = s->look.bounds;
    const RECT own{ 0, 0, width_of(bounds), height_of(bounds) };
    const RECT area = moved(intersection(damage, own), bounds.left, bounds.top);
    for_each_visible({ area }, [&](const Surface* shown, const RECT& piece) {
        if (shown == s) // what others drew and did not present yet stays unseen
            paint(shown, piece);
    });
}

void MemoryScreen::flush()
{
    const std::lock_guard lock(mutex_);
    if (picture_path_.empty() || !std::exchange(picture_changed_, false))
        return;
    (void)save_png(picture_path_, { picture_.pixels.data(), picture_.width, picture_.height, picture_.width });
}

MemoryScreen::Picture MemoryScreen::picture() const
{
    const std::lock_guard lock(mutex_);
    return picture_;
}

std::uint32_t MemoryScreen::pixel_at(POINT position) const
{
    const std::lock_guard lock(mutex_);
    return contains(whole(), position) ? picture_.at(position.x, position.y) : 0;
}

bool MemoryScreen::save_picture(const std::string& path) const
{
    Picture copy = picture();
    return save_png(path, { copy.pixels.data(), copy.width, copy.height, copy.width });
}

void MemoryScreen::save_picture_at_flush(std::string path)
{
    const std::lock_guard lock(mutex_);
    picture_path_ = std::move(path);
}

std::size_t MemoryScreen::present_count() const
{
    const std::lock_guard lock(mutex_);
    return present_count_;
}

std::deque<MemoryScreen::Presented> MemoryScreen::take_presented()
{
    const std::lock_guard lock(mutex_);
    return std::exchange(presented_, {});
}

template <class Piece>
void MemoryScreen::for_each_visible(std::vector<RECT> area, Piece piece) const
{
    for (RECT& rect : area)
        rect = intersection(rect, whole());
    std::erase_if(area, is_empty);
    for (auto id = stack_.rbegin(); id != stack_.rend() && !area.empty(); ++id) {
        const Surface& surface = surfaces_.at(*id);
        if (!on_display(surface))
            continue;
        for (const RECT& part : outline(surface)) {
            for (const RECT& rect : area) {
                if (const RECT shown = intersection(rect, part); !is_empty(shown))
                    piece(&surface, shown);
            }
            area = without(area, part);
        }
    }
    for (const RECT& rect : area)
        piece(nullptr, rect);
}

void MemoryScreen::repaint(const RECT& area)
{
    for_each_visible({ area }, [this](const Surface* surface, const RECT& piece) { paint(surface, piece); });
}

void MemoryScreen::paint(const Surface* surface, const RECT& rect)
{
    picture_changed_ = true;
    for (LONG y = rect.top; y < rect.bottom; y++) {
        std::uint32_t* row = picture_.pixels.data() + static_cast<std::ptrdiff_t>(y) * picture_.width;
        if (!surface) {
            std::fill(row + rect.left, row + rect.right, kDesktopColour);
            continue;
        }
        std::fill(row + rect.left, row + rect.right, 0); // a frame that has not grown with its surface yet
        const PixelView frame = surface->frame.view();
        const LONG frame_y = y - surface->look.bounds.top;
        const LONG frame_x = rect.left - surface->look.bounds.left;
        const LONG count = std::min<LONG>(width_of(rect), frame.width - frame_x);
        if (frame_y < frame.height && count > 0) {
            const std::uint32_t* from = frame.pixels + static_cast<std::ptrdiff_t>(frame_y) * frame.stride + frame_x;
            std::transform(from, from + count, row + rect.left, [](std::uint32_t p) { return p & 0x00FFFFFF; });
        }
    }
}

bool MemoryScreen::on_display(const Surface& surface)
{
    return surface.look.visible && surface.look.state != SurfaceState::minimised && !is_empty(surface.look.bounds);
}

std::vector<RECT> MemoryScreen::outline(const Surface& surface)
{
    const RECT& bounds = surface.look.bounds;
    if (!surface.shape)
        return { bounds };
    std::vector<RECT> parts;
    for (const RECT& rect : *surface.shape) {
        const RECT part =
            moved(intersection(rect, { 0, 0, width_of(bounds), height_of(bounds) }), bounds.left, bounds.top);
        if (!is_empty(part))
            parts.push_back(part);
    }
    return parts;
}

} // namespace win32
