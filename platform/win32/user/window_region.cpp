#include "platform/win32/user/window_region.h"

#include "wingdi.h"

#include <utility>

namespace win32 {

WindowRegion::WindowRegion() : WindowRegion(RECT{}) {}

WindowRegion::WindowRegion(const RECT& rect) : handle_(CreateRectRgnIndirect(&rect)) {}

WindowRegion::WindowRegion(HRGN other) : WindowRegion()
{
    CombineRgn(handle_, other, nullptr, RGN_COPY);
}

WindowRegion& WindowRegion::operator=(WindowRegion other) noexcept
{
    std::swap(handle_, other.handle_);
    return *this;
}

WindowRegion::~WindowRegion()
{
    if (handle_)
        DeleteObject(handle_);
}

void WindowRegion::unite(const WindowRegion& other)
{
    CombineRgn(handle_, handle_, other.handle_, RGN_OR);
}

void WindowRegion::subtract(const WindowRegion& other)
{
    CombineRgn(handle_, handle_, other.handle_, RGN_DIFF);
}

void WindowRegion::intersect(const WindowRegion& other)
{
    CombineRgn(handle_, handle_, other.handle_, RGN_AND);
}

void WindowRegion::offset(int x, int y)
{
    OffsetRgn(handle_, x, y);
}

bool WindowRegion::empty() const
{
    const RECT bounds = box();
    return bounds.left >= bounds.right || bounds.top >= bounds.bottom;
}

RECT WindowRegion::box() const
{
    RECT bounds{};
    GetRgnBox(handle_, &bounds);
    return bounds;
}

HRGN WindowRegion::release()
{
    return std::exchange(handle_, nullptr);
}

} // namespace win32
