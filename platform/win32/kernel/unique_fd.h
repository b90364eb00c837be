// Owns a file descriptor.
#pragma once

#include <utility>

#include <unistd.h>

namespace win32 {

class UniqueFd {
public:
    UniqueFd() = default;
    explicit UniqueFd(int descriptor) : descriptor_(descriptor) {}
    UniqueFd(UniqueFd&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    UniqueFd& operator=(UniqueFd&& other) noexcept
    {
        if (this != &other)
            reset(std::exchange(other.descriptor_, -1));
        return *this;
    }
    ~UniqueFd() { reset(); }

    int get() const { return descriptor_; }
    explicit operator bool() const { return descriptor_ >= 0; }
    [[nodiscard]] int release() { return std::exchange(descriptor_, -1); }
    void reset(int descriptor = -1)
    {
        if (const int old = std::exchange(descriptor_, descriptor); old >= 0)
            ::close(old);
    }

private:
    int descriptor_ = -1;
};

} // namespace win32
