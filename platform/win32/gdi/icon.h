// Icons: an image, a mask, and what reads them from files and resources.
#pragma once

#include "platform/win32/gdi/bitmap.h"
#include "platform/win32/gdi/dib.h"

namespace win32 {

// Never changes once made, so that handles can share it.
struct Icon {
    bool is_icon = true; // else a cursor
    POINT hot_spot{};
    // 1-bit. Without a colour image it is twice as high: the mask, and below it the image.
    std::shared_ptr<const Bitmap> mask;
    std::shared_ptr<const Bitmap> colour; // 32-bit or null
    bool has_alpha = false;

    int width() const { return mask->width(); }
    int height() const { return colour ? mask->height() : mask->height() / 2; }
};

// One image as it stands in icon files and icon resources: a DIB of twice the height, colours then mask. Null: it is
// none (or a PNG picture), or has more than 1024 pixels a side.
std::shared_ptr<const Icon> icon_from_image(Bytes image);

// The image of an icon file, or of the program's icon group, that is nearest to that size (an extent of 0 asks for the
// first). Null: none can be read.
std::shared_ptr<const Icon> icon_from_file(Bytes file, int width, int height);
std::shared_ptr<const Icon> icon_from_resources(HINSTANCE module, LPCSTR name, int width, int height);

// The icon stretched to that size, or itself.
std::shared_ptr<const Icon> sized_icon(std::shared_ptr<const Icon> icon, int width, int height);

bool has_any_alpha(const Bitmap& bitmap);

// Stretches without filtering.
std::shared_ptr<Bitmap> stretched(const Bitmap& bitmap, int width, int height);

HICON add_icon(std::shared_ptr<const Icon> icon);
std::shared_ptr<const Icon> find_icon(HICON handle);

} // namespace win32
