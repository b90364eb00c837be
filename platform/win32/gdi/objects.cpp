#include "platform/win32/gdi/objects.h"

#include "platform/win32/gdi/bitmap.h"
#include "platform/win32/gdi/font.h"
#include "platform/win32/gdi/raster.h"
#include "platform/win32/kernel/handle_table.h"
#include "platform/win32/kernel/last_error.h"
#include "platform/win32/kernel/module_exports.h"
#include "platform/win32/kernel/never_destroyed.h"

#include <winbase.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace win32 {

namespace {

constexpr std::uint8_t kHandleTag = 0x20;

HandleTable<GdiObject>& objects()
{
    static NeverDestroyed<HandleTable<GdiObject>> table(kHandleTag);
    return table.get();
}

// What programs look for at run time, since not every system has it.
const Export kExports[] = { exported("SetLayout", SetLayout), exported("GetLayout", GetLayout),
                            exported("AddFontResourceExW", AddFontResourceExW) };
const ModuleExports gdi32("gdi32.dll", kExports);

std::uintptr_t bits_of(const void* handle)
{
    return reinterpret_cast<std::uintptr_t>(handle);
}

} // namespace

int GdiObject::describe(std::span<std::byte>) const
{
    return fail(0, ERROR_INVALID_HANDLE);
}

int copy_description(std::span<std::byte> out, std::span<const std::byte> description)
{
    if (!out.data())
        return static_cast<int>(description.size());
    const std::size_t length = std::min(out.size(), description.size());
    std::memcpy(out.data(), description.data(), length);
    return static_cast<int>(length);
}

int Pen::describe(std::span<std::byte> out) const
{
    LOGPEN description{};
    description.lopnStyle = static_cast<UINT>(style);
    description.lopnWidth.x = 1;
    description.lopnColor = colour;
    return copy_description(out, std::as_bytes(std::span(&description, 1)));
}

int Brush::describe(std::span<std::byte> out) const
{
    LOGBRUSH description{};
    description.lbStyle = style;
    description.lbColor = colour;
    return copy_description(out, std::as_bytes(std::span(&description, 1)));
}

HGDIOBJ add_object(std::shared_ptr<GdiObject> object)
{
    return object ? reinterpret_cast<HGDIOBJ>(objects().add(std::move(object))) : nullptr;
}

std::shared_ptr<GdiObject> find_object(const void* handle)
{
    std::shared_ptr<GdiObject> object = objects().find(bits_of(handle));
    if (!object)
        set_last_error(ERROR_INVALID_HANDLE);
    return object;
}

std::shared_ptr<GdiObject> remove_object(const void* handle)
{
    return objects().remove(bits_of(handle));
}

std::size_t object_count()
{
    return objects().all().size();
}

std::shared_ptr<GdiObject> find_of_type(const void* handle, DWORD type)
{
    std::shared_ptr<GdiObject> object = objects().find(bits_of(handle));
    if (!object || object->type() != type)
        return fail(nullptr, ERROR_INVALID_HANDLE);
    return object;
}

Region region_of(HRGN handle)
{
    const std::shared_ptr<RegionObject> object = find<RegionObject>(handle);
    return object ? object->region : Region();
}

namespace {

constexpr int kStockCount = DEFAULT_GUI_FONT + 1;

template <class Object, class... Arguments>
HGDIOBJ make_stock(Arguments... arguments)
{
    auto object = std::make_shared<Object>(arguments...);
    object->is_stock = true;
    return add_object(std::move(object));
}

LOGFONTA font_description(LONG height, LONG weight, std::string_view face)
{
    LOGFONTA description{};
    description.lfHeight = height;
    description.lfWeight = weight;
    description.lfCharSet = DEFAULT_CHARSET;
    face.copy(description.lfFaceName, LF_FACESIZE - 1);
    return description;
}

std::array<HGDIOBJ, kStockCount> make_stock_objects()
{
    std::array<HGDIOBJ, kStockCount> stock{};
    stock[WHITE_BRUSH] = make_stock<Brush>(BS_SOLID, RGB(255, 255, 255));
    stock[LTGRAY_BRUSH] = make_stock<Brush>(BS_SOLID, RGB(192, 192, 192));
    stock[GRAY_BRUSH] = make_stock<Brush>(BS_SOLID, RGB(128, 128, 128));
    stock[DKGRAY_BRUSH] = make_stock<Brush>(BS_SOLID, RGB(64, 64, 64));
    stock[BLACK_BRUSH] = make_stock<Brush>(BS_SOLID, RGB(0, 0, 0));
    stock[NULL_BRUSH] = make_stock<Brush>(BS_NULL, RGB(0, 0, 0));
    stock[WHITE_PEN] = make_stock<Pen>(PS_SOLID, RGB(255, 255, 255));
    stock[BLACK_PEN] = make_stock<Pen>(PS_SOLID, RGB(0, 0, 0));
    stock[NULL_PEN] = make_stock<Pen>(PS_NULL, RGB(0, 0, 0));
    stock[SYSTEM_FONT] = make_stock<Font>(font_description(16, FW_BOLD, "System"));
    stock[DEFAULT_GUI_FONT] = make_stock<Font>(font_description(-11, FW_NORMAL, "MS Shell Dlg"));
    return stock;
}

} // namespace

HGDIOBJ stock_bitmap()
{
    static const HGDIOBJ handle = [] {
        auto bitmap = Bitmap::create(1, 1, 1);
        bitmap->is_stock = true;
        return add_object(std::move(bitmap));
    }();
    return handle;
}

} // namespace win32

using namespace win32;

HGDIOBJ GetStockObject(int index)
{
    static const std::array<HGDIOBJ, kStockCount> stock = make_stock_objects();
    return index >= 0 && index < kStockCount ? stock[static_cast<std::size_t>(index)] : nullptr;
}

BOOL DeleteObject(HGDIOBJ handle)
{
    const std::shared_ptr<GdiObject> object = find_object(handle);
    if (!object)
        return FALSE;
    if (object->is_stock)
        return TRUE;
    if (object->type() == OBJ_DC || object->type() == OBJ_MEMDC)
        return DeleteDC(static_cast<HDC>(handle));
    if (object->selections.load() > 0)
        return fail(FALSE, ERROR_BUSY);
    return remove_object(handle) != nullptr;
}

DWORD GetObjectType(HGDIOBJ handle)
{
    const std::shared_ptr<GdiObject> object = find_object(handle);
    return object ? object->type() : 0;
}

int GetObjectA(HGDIOBJ handle, int size, LPVOID buffer)
{
    const std::shared_ptr<GdiObject> object = find_object(handle);
    if (!object)
        return 0;
    if (!buffer)
        return object->describe({});
    if (size <= 0)
        return fail(0, ERROR_INVALID_PARAMETER);
    return object->describe({ static_cast<std::byte*>(buffer), static_cast<std::size_t>(size) });
}

HPEN CreatePen(int style, int width, COLORREF colour)
{
    if (style == PS_NULL)
        return add<HPEN>(std::make_shared<Pen>(style, colour));
    if (style != PS_SOLID || width < 0 || width > 1)
        return fail(nullptr, ERROR_INVALID_PARAMETER);
    return add<HPEN>(std::make_shared<Pen>(style, colour & 0xFFFFFF));
}

HBRUSH CreateSolidBrush(COLORREF colour)
{
    return add<HBRUSH>(std::make_shared<Brush>(BS_SOLID, colour & 0xFFFFFF));
}

HBRUSH CreatePatternBrush(HBITMAP handle)
{
    const std::shared_ptr<Bitmap> source = find<Bitmap>(handle);
    if (!source)
        return nullptr;
    std::shared_ptr<Bitmap> tile = source->copy();
    return tile ? add<HBRUSH>(std::make_shared<Brush>(BS_PATTERN, 0, std::move(tile))) : nullptr;
}
