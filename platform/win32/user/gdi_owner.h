// Owners of drawing objects that a function makes for itself.
#pragma once

#include "wingdi.h"

#include <memory>
#include <type_traits>

namespace win32 {

struct GdiObjectDeleter {
    void operator()(HGDIOBJ object) const { DeleteObject(object); }
};
using FontOwner = std::unique_ptr<std::remove_pointer_t<HFONT>, GdiObjectDeleter>;

} // namespace win32
