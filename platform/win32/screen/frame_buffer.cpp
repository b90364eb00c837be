#include "platform/win32/screen/frame_buffer.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include <sys/mman.h>

namespace win32 {

namespace {

// Room for a window that is being dragged larger.
constexpr int kGranule = 64;
// Enough for any display; whatever paints a window paints all of it.
constexpr std::size_t kMostBytes = std::size_t{ 1 } << 30;

int rounded_up(int extent)
{
    return (extent + kGranule - 1) / kGranule * kGranule;
}

UniqueFd shared_memory(std::size_t bytes)
{
    UniqueFd descriptor(::memfd_create("surface", MFD_CLOEXEC));
    if (descriptor && ::ftruncate(descriptor.get(), static_cast<off_t>(bytes)) != 0)
        descriptor.reset();
    return descriptor;
}

Mapping map_memory(int descriptor, std::size_t bytes)
{
    const int kind = descriptor >= 0 ? MAP_SHARED : MAP_PRIVATE | MAP_ANONYMOUS;
    void* start = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, kind | MAP_NORESERVE, descriptor, 0);
    return start == MAP_FAILED ? Mapping() : Mapping(start, bytes);
}

} // namespace

Mapping::~Mapping()
{
    if (start_)
        ::munmap(start_, bytes_);
}

FrameBuffer::Resized FrameBuffer::resize(int width, int height)
{
    Resized result = Resized::in_place;
    if (width > stride_ || height > rows_) {
        result = move_to_larger(width, height);
        if (result == Resized::refused)
            return result;
    }
    // What is drawn on already and comes back into view; the rest of the new pixels is black as the system gave it.
    blacken(width_, 0, std::min(width, used_width_), std::min(height, used_height_));
    blacken(0, height_, std::min({ width, width_, used_width_ }), std::min(height, used_height_));
    width_ = width;
    height_ = height;
    used_width_ = std::max(used_width_, width);
    used_height_ = std::max(used_height_, height);
    return result;
}

FrameBuffer::Resized FrameBuffer::move_to_larger(int width, int height)
{
    const int stride = rounded_up(std::max({ width, stride_, 1 })); // of an empty surface with an extent on one side
    const int rows = rounded_up(std::max({ height, rows_, 1 }));
    const std::size_t bytes = std::size_t{ 4 } * static_cast<std::size_t>(stride) * static_cast<std::size_t>(rows);
    if (bytes > kMostBytes)
        return Resized::refused;
    UniqueFd descriptor;
    if (memory_ == Memory::shared)
        descriptor = shared_memory(bytes);
    Mapping mapping = map_memory(descriptor.get(), bytes);
    if (!mapping.start())
        return Resized::refused;

    const PixelView old = view();
    auto* pixels = static_cast<std::uint32_t*>(mapping.start());
    const int kept_width = std::min(width, old.width);
    for (int y = 0; y < std::min(height, old.height); y++) {
        std::memcpy(pixels + static_cast<std::ptrdiff_t>(y) * stride,
                    old.pixels + static_cast<std::ptrdiff_t>(y) * old.stride, static_cast<std::size_t>(kept_width) * 4);
    }
    descriptor_ = std::move(descriptor);
    mapping_ = std::move(mapping);
    stride_ = stride;
    rows_ = rows;
    width_ = used_width_ = kept_width;
    height_ = used_height_ = std::min(height, old.height);
    return Resized::moved;
}

void FrameBuffer::blacken(int left, int top, int right, int bottom)
{
    const PixelView memory = view();
    for (int y = top; y < bottom && left < right; y++) {
        std::uint32_t* row = memory.pixels + static_cast<std::ptrdiff_t>(y) * memory.stride;
        std::fill(row + left, row + right, 0);
    }
}

PixelView FrameBuffer::view() const
{
    return { static_cast<std::uint32_t*>(mapping_.start()), width_, height_, stride_ };
}

} // namespace win32
