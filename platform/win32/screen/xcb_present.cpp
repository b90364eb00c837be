// How frames reach the server: it maps the memory they are drawn in and copies the damaged rectangle from it, or the
// socket carries the rectangle when the server cannot. One frame buffer a surface, no copy on our side.
#include "platform/win32/screen/xcb_screen.h"

#include "platform/win32/screen/geometry.h"

#include <algorithm>

#include <fcntl.h>

namespace win32 {

namespace {

// What one request can hold on every server, less its own header; 32767 pixels, the longest row, still fit.
constexpr std::size_t kBandPixels = (std::size_t{ 256 } * 1024 - 64) / 4;
static_assert(kBandPixels > kMaxExtent);

} // namespace

void XcbScreen::present(SurfaceId surface, const RECT& damage)
{
    const Turn turn(*this);
    Surface* s = find(surface);
    if (!s)
        return;
    s->drawn = true;
    if (s->mapped)
        put(surface, *s, damage);
}

void XcbScreen::flush()
{
    const Turn turn(*this);
    xcb_flush(server());
}

bool XcbScreen::shares_memory() const
{
    const std::lock_guard lock(mutex_);
    return shares_memory_;
}

void XcbScreen::stop_sharing_memory()
{
    const Turn turn(*this);
    share_no_memory();
}

void XcbScreen::resize_frame(Surface& surface)
{
    if (surface.frame.resize(width_of(surface.bounds), height_of(surface.bounds)) == FrameBuffer::Resized::moved)
        detach(surface);
}

void XcbScreen::put(SurfaceId id, Surface& surface, const RECT& damage)
{
    const PixelView frame = surface.frame.view();
    RECT area = intersection(damage, { 0, 0, frame.width, frame.height });
    // Of a surface larger than the screen, what lies outside is never sent: nobody sees it, and it may be gigabytes.
    if (width_of(area) > root_size_.cx || height_of(area) > root_size_.cy)
        area = intersection(area,
                            moved({ 0, 0, root_size_.cx, root_size_.cy }, -surface.bounds.left, -surface.bounds.top));
    if (is_empty(area))
        return;
    if (shares_memory_ && attach(surface))
        put_shared(id, surface, area);
    else
        put_through_socket(id, surface, area);
}

void XcbScreen::put_shared(SurfaceId id, Surface& surface, const RECT& area)
{
    wait_for_last_frame();
    const PixelView frame = surface.frame.view();
    const auto total_height = static_cast<std::uint16_t>(frame.height);
    xcb_shm_put_image(server(), id, connection_->gc(id), static_cast<std::uint16_t>(frame.stride), total_height,
                      static_cast<std::uint16_t>(area.left), static_cast<std::uint16_t>(area.top),
                      static_cast<std::uint16_t>(width_of(area)), static_cast<std::uint16_t>(height_of(area)),
                      static_cast<std::int16_t>(area.left), static_cast<std::int16_t>(area.top),
                      connection_->visual().depth, XCB_IMAGE_FORMAT_Z_PIXMAP, 0, surface.segment, 0);
    frame_in_flight_ = xcb_get_input_focus(server()); // its answer means that the server has read the frame
}

// At most one frame is on its way: a server that is slower than we draw slows us down instead of collecting frames.
void XcbScreen::wait_for_last_frame()
{
    if (frame_in_flight_)
        (void)take_reply(xcb_get_input_focus_reply, server(), *frame_in_flight_); // only that it came counts
    frame_in_flight_.reset();
}

void XcbScreen::put_through_socket(SurfaceId id, const Surface& surface, const RECT& area)
{
    const PixelView frame = surface.frame.view();
    const auto width = static_cast<std::size_t>(width_of(area));
    const auto rows_a_band = static_cast<LONG>(kBandPixels / width);
    for (LONG top = area.top; top < area.bottom; top += rows_a_band) {
        const LONG bottom = std::min(top + rows_a_band, area.bottom);
        band_.clear();
        for (LONG y = top; y < bottom; y++) {
            const std::uint32_t* row = frame.pixels + static_cast<std::ptrdiff_t>(y) * frame.stride + area.left;
            band_.insert(band_.end(), row, row + width);
        }
        xcb_put_image(server(), XCB_IMAGE_FORMAT_Z_PIXMAP, id, connection_->gc(id), static_cast<std::uint16_t>(width),
                      static_cast<std::uint16_t>(bottom - top), static_cast<std::int16_t>(area.left),
                      static_cast<std::int16_t>(top), 0, connection_->visual().depth,
                      static_cast<std::uint32_t>(band_.size() * 4),
                      reinterpret_cast<const std::uint8_t*>(band_.data()));
    }
}

// Makes the frame's memory known to the server, without waiting for its word: a refusal comes as an error event, and
// the frames that were lost by it are sent again.
bool XcbScreen::attach(Surface& surface)
{
    if (surface.segment != 0)
        return true;
    const int given = ::fcntl(surface.frame.descriptor(), F_DUPFD_CLOEXEC, 0); // xcb closes it
    if (given < 0)
        return false;
    surface.segment = xcb_generate_id(server());
    xcb_shm_attach_fd(server(), surface.segment, given, 1); // the server only reads
    return true;
}

void XcbScreen::detach(Surface& surface)
{
    if (surface.segment != 0)
        xcb_shm_detach(server(), std::exchange(surface.segment, 0));
}

void XcbScreen::share_no_memory()
{
    if (!std::exchange(shares_memory_, false))
        return;
    for (auto& [id, surface] : surfaces_) {
        surface.segment = 0;
        if (surface.mapped && surface.drawn)
            put(id, surface, { 0, 0, width_of(surface.bounds), height_of(surface.bounds) });
    }
}

} // namespace win32
