// Image lists. Each picture is an icon: an image of 32 bits and a mask, never changed once made, so that icons taken
// out share it.
#include "commctrl.h"

#include "platform/win32/gdi/icon.h"
#include "platform/win32/kernel/handle_table.h"
#include "platform/win32/kernel/last_error.h"
#include "platform/win32/kernel/never_destroyed.h"

#include <winbase.h>

#include <algorithm>
#include <vector>

using namespace win32;

namespace {

constexpr std::uint8_t kImageListTag = 0x22;
constexpr int kLargestExtent = 4096;
// What all pictures of a list may have: a strip that is one pixel high must not claim the memory.
constexpr std::int64_t kMostPixels = 16 << 20;

using Picture = std::shared_ptr<const Icon>;

struct ImageList {
    int width = 0;
    int height = 0;
    std::vector<Picture> pictures;

    bool has(int index) const { return index >= 0 && index < static_cast<int>(pictures.size()); }
    bool has_room_for(int count) const
    {
        return (static_cast<std::int64_t>(pictures.size()) + count) * width * height <= kMostPixels;
    }
};

HandleTable<ImageList>& image_lists()
{
    static NeverDestroyed<HandleTable<ImageList>> table(kImageListTag);
    return table.get();
}

std::shared_ptr<ImageList> find_list(HIMAGELIST handle)
{
    std::shared_ptr<ImageList> list = image_lists().find(reinterpret_cast<std::uintptr_t>(handle));
    if (!list)
        set_last_error(ERROR_INVALID_HANDLE);
    return list;
}

// The picture in the bitmap from column `left` on.
Picture cut_picture(const Bitmap& bitmap, int left, int width, int height, std::uint32_t transparent)
{
    const std::shared_ptr<Bitmap> colour = Bitmap::create(width, height, 32);
    const std::shared_ptr<Bitmap> mask = Bitmap::create(width, height, 1);
    if (!colour || !mask)
        return nullptr;
    const Raster colours = colour->raster();
    const Raster bits = mask->raster();
    for (int y = 0; y < height; y++) {
        if (y >= bitmap.height()) {
            std::fill_n(bits.mono_row(y), width, std::uint8_t{ 1 });
            continue;
        }
        std::uint32_t* row = colours.colour_row(y);
        bitmap.read(left, y, width, row);
        for (int x = 0; x < width; x++) {
            row[x] &= kWhite; // no alpha: the mask decides
            bits.mono_row(y)[x] = row[x] == transparent;
            if (row[x] == transparent)
                row[x] = kBlack;
        }
    }
    auto picture = std::make_shared<Icon>();
    picture->hot_spot = { width / 2, height / 2 };
    picture->colour = colour;
    picture->mask = mask;
    return picture;
}

} // namespace

HIMAGELIST ImageList_Create(int width, int height, UINT flags, int initial, int grow)
{
    const UINT depth = flags & ~ILC_MASK;
    if (width <= 0 || height <= 0 || width > kLargestExtent || height > kLargestExtent || !(flags & ILC_MASK) ||
        (depth != ILC_COLOR16 && depth != ILC_COLOR24 && depth != ILC_COLOR32) || initial < 0 || grow < 0)
        return fail(nullptr, ERROR_INVALID_PARAMETER);
    auto list = std::make_shared<ImageList>();
    list->width = width;
    list->height = height;
    return reinterpret_cast<HIMAGELIST>(image_lists().add(std::move(list)));
}

BOOL ImageList_Destroy(HIMAGELIST list)
{
    return image_lists().remove(reinterpret_cast<std::uintptr_t>(list)) ? TRUE : fail(FALSE, ERROR_INVALID_HANDLE);
}

int ImageList_GetImageCount(HIMAGELIST handle)
{
    const std::shared_ptr<ImageList> list = find_list(handle);
    return list ? static_cast<int>(list->pictures.size()) : 0;
}

BOOL ImageList_GetIconSize(HIMAGELIST handle, int* width, int* height)
{
    const std::shared_ptr<ImageList> list = find_list(handle);
    if (!list || !width || !height)
        return FALSE;
    *width = list->width;
    *height = list->height;
    return TRUE;
}

int ImageList_AddMasked(HIMAGELIST handle, HBITMAP bitmap_handle, COLORREF mask)
{
    const std::shared_ptr<ImageList> list = find_list(handle);
    const std::shared_ptr<Bitmap> bitmap = list ? find<Bitmap>(bitmap_handle) : nullptr;
    if (!bitmap)
        return -1;
    std::uint32_t transparent = pixel_of(mask);
    if (mask == CLR_DEFAULT) {
        bitmap->read(0, 0, 1, &transparent);
        transparent &= kWhite;
    }
    const int count = bitmap->width() / list->width;
    if (count == 0)
        return fail(-1, ERROR_INVALID_PARAMETER);
    if (!list->has_room_for(count))
        return fail(-1, ERROR_NOT_ENOUGH_MEMORY);
    std::vector<Picture> pictures;
    for (int i = 0; i < count; i++) {
        Picture picture = cut_picture(*bitmap, i * list->width, list->width, list->height, transparent);
        if (!picture)
            return -1;
        pictures.push_back(std::move(picture));
    }
    const int first = static_cast<int>(list->pictures.size());
    list->pictures.insert(list->pictures.end(), pictures.begin(), pictures.end());
    return first;
}

int ImageList_ReplaceIcon(HIMAGELIST handle, int index, HICON icon)
{
    const std::shared_ptr<ImageList> list = find_list(handle);
    if (!list || (index != -1 && !list->has(index)))
        return list ? fail(-1, ERROR_INVALID_PARAMETER) : -1;
    Picture picture = sized_icon(find_icon(icon), list->width, list->height);
    if (!picture)
        return -1;
    if (index == -1 && !list->has_room_for(1))
        return fail(-1, ERROR_NOT_ENOUGH_MEMORY);
    if (index == -1) {
        list->pictures.push_back(std::move(picture));
        return static_cast<int>(list->pictures.size()) - 1;
    }
    list->pictures[static_cast<std::size_t>(index)] = std::move(picture);
    return index;
}

HICON ImageList_GetIcon(HIMAGELIST handle, int index, UINT style)
{
    const std::shared_ptr<ImageList> list = find_list(handle);
    if (!list || !list->has(index) || (style & ~ILD_TRANSPARENT))
        return list ? fail(nullptr, ERROR_INVALID_PARAMETER) : nullptr;
    return add_icon(list->pictures[static_cast<std::size_t>(index)]);
}

BOOL ImageList_Remove(HIMAGELIST handle, int index)
{
    const std::shared_ptr<ImageList> list = find_list(handle);
    if (!list || (index != -1 && !list->has(index)))
        return list ? fail(FALSE, ERROR_INVALID_PARAMETER) : FALSE;
    if (index == -1)
        list->pictures.clear();
    else
        list->pictures.erase(list->pictures.begin() + index);
    return TRUE;
}

BOOL ImageList_Draw(HIMAGELIST list, int index, HDC dc, int x, int y, UINT style)
{
    const HICON icon = ImageList_GetIcon(list, index, style);
    if (!icon)
        return FALSE;
    const BOOL done = DrawIconEx(dc, x, y, icon, 0, 0, 0, nullptr, DI_NORMAL);
    DestroyIcon(icon);
    return done;
}
