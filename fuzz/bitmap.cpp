// Bitmap files and bitmap resources of any bytes: a picture within the documented bounds, or none.
#include "platform/win32/gdi/bitmap.h"
#include "platform/win32/gdi/dib.h"

#include <cstdint>
#include <cstdlib>
#include <vector>

namespace {

void Use(const std::shared_ptr<win32::Bitmap>& bitmap, std::size_t data_bytes)
{
    if (!bitmap)
        return;
    const auto pixels = static_cast<std::uint64_t>(bitmap->width()) * static_cast<std::uint64_t>(bitmap->height());
    if (!win32::is_plausible(pixels * 4, data_bytes))
        std::abort();
    std::vector<std::uint32_t> row(static_cast<std::size_t>(bitmap->width()));
    for (const int y : { 0, bitmap->height() / 2, bitmap->height() - 1 })
        bitmap->read(0, y, bitmap->width(), row.data());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const win32::Bytes bytes(reinterpret_cast<const std::byte*>(data), size);
    Use(win32::bitmap_from_file(bytes), size);
    Use(win32::bitmap_from_resource(bytes, win32::Lifetime::passing), size);
    Use(win32::bitmap_from_resource(bytes, win32::Lifetime::permanent), size);
    return 0;
}
