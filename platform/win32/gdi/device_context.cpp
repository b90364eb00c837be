#include "platform/win32/gdi/device_context.h"

#include "platform/win32/kernel/last_error.h"
#include "platform/win32/kernel/never_destroyed.h"

#include <winbase.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <memory_resource>

namespace win32 {

void Canvas::changed(const RECT& rect) const
{
    if (!target)
        return;
    if (const RECT damage = intersection(rect, clip->bounds()); !is_empty(damage))
        target->damaged(damage);
}

RECT DeviceContext::target_rect(std::int64_t left, std::int64_t top, std::int64_t right, std::int64_t bottom) const
{
    std::int64_t x1 = device_x(left);
    std::int64_t x2 = device_x(right);
    if (is_mirrored()) {
        const std::int64_t mirrored = width() - x2;
        x2 = width() - x1;
        x1 = mirrored;
    }
    return { clamp_coordinate(x1 + origin_.x), clamp_coordinate(device_y(top) + origin_.y),
             clamp_coordinate(x2 + origin_.x), clamp_coordinate(device_y(bottom) + origin_.y) };
}

RECT DeviceContext::logical_rect(const RECT& target) const
{
    std::int64_t left = std::int64_t{ target.left } - origin_.x;
    std::int64_t right = std::int64_t{ target.right } - origin_.x;
    if (is_mirrored()) {
        const std::int64_t mirrored = width() - right;
        right = width() - left;
        left = mirrored;
    }
    return { clamp_coordinate(left - device_x(0)), clamp_coordinate(target.top - origin_.y - device_y(0)),
             clamp_coordinate(right - device_x(0)), clamp_coordinate(target.bottom - origin_.y - device_y(0)) };
}

POINT DeviceContext::target_point(std::int64_t x, std::int64_t y) const
{
    const RECT pixel = target_rect(x, y, x + 1, y + 1);
    return { pixel.left, pixel.top };
}

Raster DeviceContext::target_raster()
{
    if (!target_)
        return state.bitmap->raster();
    const PixelView view = target_->pixels();
    return { view.pixels, nullptr, view.width, view.height, view.stride };
}

Canvas DeviceContext::canvas()
{
    // In place: copying a raster that was just written, wider than it was written, waits for all writes before it.
    return { target_raster(), &effective_clip(), target_ };
}

const Region& DeviceContext::fresh_clip()
{
    RECT bounds{ 0, 0, width(), height() };
    if (target_) {
        const PixelView view = target_->pixels();
        bounds = { 0, 0, view.width, view.height };
    }
    const bool same_bounds = bounds.right == clip_bounds_.right && bounds.bottom == clip_bounds_.bottom;
    if (clip_is_fresh_ && same_bounds)
        return clip_;

    clip_ = Region(bounds);
    if (target_)
        clip_.intersect(visible_);
    if (state.clip) {
        Region clip = *state.clip;
        if (clip.offset(origin_.x, origin_.y))
            clip_.intersect(clip);
        else
            clip_ = Region();
    }
    clip_bounds_ = bounds;
    clip_is_fresh_ = true;
    return clip_;
}

int DeviceContext::save()
{
    saved_.push_back(state);
    return static_cast<int>(saved_.size());
}

bool DeviceContext::restore(int level)
{
    const auto depth = static_cast<int>(saved_.size());
    if (level == 0 || level > depth || level < -depth)
        return false;
    const auto index = static_cast<std::size_t>(level > 0 ? level - 1 : depth + level);
    state = std::move(saved_[index]);
    saved_.resize(index);
    clip_changed();
    return true;
}

void DeviceContext::release()
{
    state = {};
    saved_.clear();
}

int DeviceContext::own_selections(const Bitmap& bitmap) const
{
    const auto holds = [&bitmap](const DrawState& draw_state) { return draw_state.bitmap.get() == &bitmap; };
    return static_cast<int>(holds(state)) + static_cast<int>(std::count_if(saved_.begin(), saved_.end(), holds));
}

namespace {

// How many contexts were ever taken away: as long as it stands still, what a thread remembers holds.
std::atomic<std::uint64_t> contexts_removed = 0;

// The contexts a thread drew with last: most often a window's, a buffer and what is copied there. Spares the table's
// lock.
struct RecentContext {
    HDC handle = nullptr;
    std::uint64_t removed = 0;
    std::shared_ptr<DeviceContext> context;
};
struct RecentContexts {
    std::array<RecentContext, 4> entries;
    std::size_t oldest = 0;
    ~RecentContexts();
};
thread_local RecentContexts recent_contexts;

// At the end of the program its static objects draw when the thread's own are gone already.
thread_local bool has_no_recent_contexts = false;
RecentContexts::~RecentContexts()
{
    has_no_recent_contexts = true;
}

BOOL remove_context(HDC dc, DeviceContext& context)
{
    if (!remove_object(dc))
        return FALSE;
    contexts_removed++;
    context.release(); // a thread may remember it for a while
    return TRUE;
}

} // namespace

std::shared_ptr<DeviceContext> find_context(HDC dc)
{
    const std::uint64_t removed = contexts_removed.load();
    if (!has_no_recent_contexts) {
        for (const RecentContext& entry : recent_contexts.entries) {
            if (entry.handle == dc && entry.removed == removed && dc)
                return entry.context;
        }
    }
    std::shared_ptr<GdiObject> object = find_object(dc);
    if (!object || (object->type() != OBJ_DC && object->type() != OBJ_MEMDC))
        return fail(nullptr, ERROR_INVALID_HANDLE);
    auto context = std::static_pointer_cast<DeviceContext>(std::move(object));
    if (!has_no_recent_contexts) {
        RecentContexts& recent = recent_contexts;
        recent.entries[recent.oldest] = { dc, removed, context };
        recent.oldest = (recent.oldest + 1) % recent.entries.size();
    }
    return context;
}

namespace {

void select_defaults(DrawState& state)
{
    const auto select = []<class Object>(Selection<Object>& slot, HGDIOBJ handle) {
        slot = Selection<Object>(handle, find<Object>(handle));
    };
    select(state.pen, GetStockObject(BLACK_PEN));
    select(state.brush, GetStockObject(WHITE_BRUSH));
    select(state.font, GetStockObject(SYSTEM_FONT));
}

} // namespace

HDC open_window_dc(DrawTarget& target, POINT origin, SIZE size, const Region& visible)
{
    static NeverDestroyed<std::pmr::synchronized_pool_resource> memory; // each painting has its context
    const std::pmr::polymorphic_allocator<DeviceContext> allocator(&memory.get());
    auto context = std::allocate_shared<DeviceContext>(allocator, target, origin, size, visible);
    select_defaults(context->state);
    return add<HDC>(std::move(context));
}

BOOL close_window_dc(HDC dc)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    return context && !context->is_memory() && remove_context(dc, *context);
}

} // namespace win32

using namespace win32;

HDC CreateCompatibleDC(HDC dc)
{
    auto context = std::make_shared<DeviceContext>();
    if (dc) {
        const std::shared_ptr<DeviceContext> model = find_context(dc);
        if (!model)
            return nullptr;
        context->state.layout = model->state.layout;
    }
    select_defaults(context->state);
    context->state.bitmap = { stock_bitmap(), find<Bitmap>(stock_bitmap()) };
    return add<HDC>(std::move(context));
}

BOOL DeleteDC(HDC dc)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    if (!context)
        return FALSE;
    if (!context->is_memory())
        return fail(FALSE, ERROR_INVALID_HANDLE);
    return remove_context(dc, *context);
}

HBITMAP CreateCompatibleBitmap(HDC dc, int width, int height)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    if (!context)
        return nullptr;
    if (width == 0 || height == 0)
        return add<HBITMAP>(Bitmap::create(1, 1, 1));
    return add<HBITMAP>(Bitmap::create(width, height, context->depth()));
}

HBITMAP CreateBitmap(int width, int height, UINT planes, UINT bits_per_pixel, LPCVOID bits)
{
    if (planes != 1 || (bits_per_pixel != 1 && bits_per_pixel != 32))
        return fail(nullptr, ERROR_INVALID_PARAMETER);
    if (width == 0 || height == 0)
        return add<HBITMAP>(Bitmap::create(1, 1, 1));
    std::shared_ptr<Bitmap> bitmap = Bitmap::create(width, height, static_cast<int>(bits_per_pixel));
    if (!bitmap || !bits)
        return add<HBITMAP>(std::move(bitmap));

    const auto* bytes = static_cast<const std::uint8_t*>(bits);
    const Raster raster = bitmap->raster();
    if (bits_per_pixel == 32) {
        std::copy_n(bytes, static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4,
                    reinterpret_cast<std::uint8_t*>(raster.colour));
        return add<HBITMAP>(std::move(bitmap));
    }
    const std::ptrdiff_t stride = (std::ptrdiff_t{ width } + 15) / 16 * 2;
    for (int y = 0; y < height; y++) {
        for (int x = 0; x < width; x++)
            raster.mono_row(y)[x] = bytes[y * stride + x / 8] >> (7 - x % 8) & 1;
    }
    return add<HBITMAP>(std::move(bitmap));
}

namespace {

HGDIOBJ select_bitmap(DeviceContext& context, HGDIOBJ handle, std::shared_ptr<Bitmap> bitmap)
{
    if (!context.is_memory())
        return fail(nullptr, ERROR_INVALID_HANDLE);
    Selection<Bitmap> selection(handle, std::move(bitmap));
    // Counted first and looked at afterwards, so that two threads cannot both get the bitmap.
    if (!selection->is_stock && selection->selections.load() != context.own_selections(*selection.get()) + 1)
        return fail(nullptr, ERROR_BUSY);
    const HGDIOBJ previous = context.state.bitmap.handle();
    context.state.bitmap = std::move(selection);
    context.clip_changed();
    return previous;
}

template <class Object>
HGDIOBJ select_into(Selection<Object>& slot, HGDIOBJ handle, std::shared_ptr<GdiObject> object)
{
    const HGDIOBJ previous = slot.handle();
    slot = Selection<Object>(handle, std::static_pointer_cast<Object>(std::move(object)));
    return previous;
}

} // namespace

HGDIOBJ SelectObject(HDC dc, HGDIOBJ handle)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    std::shared_ptr<GdiObject> object = context ? find_object(handle) : nullptr;
    if (!object)
        return nullptr;
    switch (object->type()) {
    case OBJ_BITMAP:
        return select_bitmap(*context, handle, std::static_pointer_cast<Bitmap>(std::move(object)));
    case OBJ_PEN:
        return select_into(context->state.pen, handle, std::move(object));
    case OBJ_BRUSH:
        return select_into(context->state.brush, handle, std::move(object));
    case OBJ_FONT:
        return select_into(context->state.font, handle, std::move(object));
    case OBJ_REGION:
        return reinterpret_cast<HGDIOBJ>(static_cast<std::intptr_t>(SelectClipRgn(dc, static_cast<HRGN>(handle))));
    default:
        return fail(nullptr, ERROR_INVALID_HANDLE);
    }
}

HGDIOBJ GetCurrentObject(HDC dc, UINT type)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    if (!context)
        return nullptr;
    switch (type) {
    case OBJ_BITMAP:
        return context->state.bitmap.handle();
    case OBJ_PEN:
        return context->state.pen.handle();
    case OBJ_BRUSH:
        return context->state.brush.handle();
    case OBJ_FONT:
        return context->state.font.handle();
    default:
        return fail(nullptr, ERROR_INVALID_PARAMETER);
    }
}

int SaveDC(HDC dc)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    return context ? context->save() : 0;
}

BOOL RestoreDC(HDC dc, int level)
{
    const std::shared_ptr<DeviceContext> context = find_context(dc);
    return context && context->restore(level);
}

BOOL GdiFlush()
{
    return TRUE; // drawing lands in the pixels at once
}
