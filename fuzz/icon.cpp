// Icon files of any bytes: an icon whose mask and image fit each other, or none.
#include "platform/win32/gdi/icon.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const win32::Bytes bytes(reinterpret_cast<const std::byte*>(data), size);
    for (const int wanted : { 0, 16, 48 }) {
        const std::shared_ptr<const win32::Icon> icon = win32::icon_from_file(bytes, wanted, wanted);
        if (!icon)
            continue;
        if (icon->width() != icon->colour->width() || icon->height() != icon->colour->height())
            std::abort();
    }
    return 0;
}
