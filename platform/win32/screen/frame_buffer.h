// The pixels of one surface. The memory only grows, so that sizing a window back and forth allocates nothing, and pages
// that nobody drew on are never touched: a surface costs what is drawn, not what it spans.
#pragma once

#include "platform/win32/kernel/unique_fd.h"
#include "platform/win32/screen/screen.h"

#include <cstddef>
#include <utility>

namespace win32 {

// Owns a memory mapping.
class Mapping {
public:
    Mapping() = default;
    Mapping(void* start, std::size_t bytes) : start_(start), bytes_(bytes) {}
    Mapping(Mapping&& other) noexcept
        : start_(std::exchange(other.start_, nullptr)), bytes_(std::exchange(other.bytes_, 0))
    {}
    Mapping& operator=(Mapping&& other) noexcept
    {
        std::swap(start_, other.start_);
        std::swap(bytes_, other.bytes_);
        return *this;
    }
    ~Mapping();

    void* start() const { return start_; }
    std::size_t bytes() const { return bytes_; }

private:
    void* start_ = nullptr;
    std::size_t bytes_ = 0;
};

class FrameBuffer {
public:
    enum class Memory { own, shared }; // shared: behind a descriptor that an X server can map
    enum class Resized { in_place, moved, refused };

    explicit FrameBuffer(Memory memory) : memory_(memory) {}

    // Extents within 0 and kMaxExtent. Pixels that stay keep their content, new ones are black. `moved`: the memory is
    // another one, with another descriptor. `refused`: the system gives no memory, and nothing changed.
    Resized resize(int width, int height);

    PixelView view() const;
    // Of shared memory, owned by the buffer; -1 when there is none.
    int descriptor() const { return descriptor_.get(); }

private:
    Resized move_to_larger(int width, int height);
    void blacken(int left, int top, int right, int bottom);

    Memory memory_;
    UniqueFd descriptor_;
    Mapping mapping_;
    int width_ = 0;
    int height_ = 0;
    int stride_ = 0; // pixels a row
    int rows_ = 0;
    int used_width_ = 0; // pixels beyond these two were never drawn on and are black
    int used_height_ = 0;
};

} // namespace win32
