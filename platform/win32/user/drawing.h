// What frames and menus draw with.
#pragma once

#include "winuser.h"

#include <memory>
#include <type_traits>

namespace win32 {

struct GdiObjectDeleter {
    void operator()(HGDIOBJ object) const { DeleteObject(object); }
};
using FontOwner = std::unique_ptr<std::remove_pointer_t<HFONT>, GdiObjectDeleter>;

// Fills with a system colour, a COLOR_ number.
inline void fill(HDC dc, const RECT& rect, int colour)
{
    FillRect(dc, &rect, GetSysColorBrush(colour));
}

} // namespace win32
