// What drawing handles stand for, and the table that maps one to the other.
#pragma once

#include "wingdi.h"

#include "platform/win32/gdi/region.h"

#include <atomic>
#include <cstddef>
#include <memory>
#include <span>

namespace win32 {

class GdiObject {
public:
    explicit GdiObject(DWORD type) : type_(type) {}
    virtual ~GdiObject() = default;
    GdiObject(const GdiObject&) = delete;
    GdiObject& operator=(const GdiObject&) = delete;

    virtual DWORD type() const { return type_; } // OBJ_
    // Writes the description of GetObjectA into `out` (cut to its size; null data: nothing) and returns its length.
    virtual int describe(std::span<std::byte> out) const;

    bool is_stock = false;
    std::atomic<int> selections = 0; // contexts that hold it

private:
    const DWORD type_;
};

// Copies the description as far as `out` takes it and returns the bytes copied, or those needed when out has no data.
int copy_description(std::span<std::byte> out, std::span<const std::byte> description);

struct Pen : GdiObject {
    static constexpr DWORD kType = OBJ_PEN;
    Pen(int pen_style, COLORREF pen_colour) : GdiObject(kType), style(pen_style), colour(pen_colour) {}
    int describe(std::span<std::byte> out) const override;

    const int style; // PS_SOLID or PS_NULL
    const COLORREF colour;
};

class Bitmap;

struct Brush : GdiObject {
    static constexpr DWORD kType = OBJ_BRUSH;
    Brush(UINT brush_style, COLORREF brush_colour, std::shared_ptr<const Bitmap> tile = nullptr)
        : GdiObject(kType), style(brush_style), colour(brush_colour), pattern(std::move(tile))
    {}
    int describe(std::span<std::byte> out) const override;

    const UINT style; // BS_SOLID, BS_NULL or BS_PATTERN
    const COLORREF colour;
    const std::shared_ptr<const Bitmap> pattern;
};

struct RegionObject : GdiObject {
    static constexpr DWORD kType = OBJ_REGION;
    explicit RegionObject(Region content) : GdiObject(kType), region(std::move(content)) {}

    Region region;
};

// Hands out a handle; it lives until DeleteObject or DeleteDC.
HGDIOBJ add_object(std::shared_ptr<GdiObject> object);
// The object of a handle, or null with the last error ERROR_INVALID_HANDLE.
std::shared_ptr<GdiObject> find_object(const void* handle);
// Takes the handle away. Null if there was none.
std::shared_ptr<GdiObject> remove_object(const void* handle);

// How many handles are out, stock objects included: what leaks shows here.
std::size_t object_count();

// As find_object, for one type of object only.
template <class Object>
std::shared_ptr<Object> find(const void* handle);

// The stock bitmap of one 1-bit pixel that a memory context starts with.
HGDIOBJ stock_bitmap();

template <class Handle>
Handle add(std::shared_ptr<GdiObject> object)
{
    return static_cast<Handle>(add_object(std::move(object)));
}

std::shared_ptr<GdiObject> find_of_type(const void* handle, DWORD type);

// A copy; empty where the handle is none of a region.
Region region_of(HRGN handle);

template <class Object>
std::shared_ptr<Object> find(const void* handle)
{
    return std::static_pointer_cast<Object>(find_of_type(handle, Object::kType));
}

} // namespace win32
