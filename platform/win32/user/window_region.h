// A region that owns its handle: the set of pixels that must be painted, or that a window shows.
#pragma once

#include "windef.h"

namespace win32 {

class WindowRegion {
public:
    WindowRegion(); // empty
    explicit WindowRegion(const RECT& rect);
    explicit WindowRegion(HRGN other); // a copy
    WindowRegion(const WindowRegion& other) : WindowRegion(other.handle_) {}
    WindowRegion(WindowRegion&& other) noexcept : handle_(other.release()) {}
    WindowRegion& operator=(WindowRegion other) noexcept;
    ~WindowRegion();

    void unite(const WindowRegion& other);
    void subtract(const WindowRegion& other);
    void intersect(const WindowRegion& other);
    void offset(int x, int y);

    bool empty() const;
    RECT box() const;
    HRGN get() const { return handle_; }
    [[nodiscard]] HRGN release();

private:
    HRGN handle_;
};

} // namespace win32
