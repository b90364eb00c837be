#include "platform/win32/gdi/pixel_copy.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

namespace win32 {

std::pair<int, int> AxisMap::reachable(std::int64_t low, std::int64_t high, std::int64_t limit) const
{
    if (from.count == 0)
        return { 0, 0 };
    low = std::max(low, to.low());
    high = std::min(high, to.high());
    if (is_shift()) {
        low = std::max(low, -shift());
        high = std::min(high, limit - shift());
    } else {
        const auto outside = [&](std::int64_t position) {
            const std::int64_t source = source_of(position);
            return source < 0 || source >= limit;
        };
        while (low < high && outside(low))
            low++;
        while (low < high && outside(high - 1))
            high--;
    }
    return low < high ? std::pair{ static_cast<int>(low), static_cast<int>(high) } : std::pair{ 0, 0 };
}

namespace {

void move_to_target(Run& x, Run& y, const DeviceContext& context)
{
    x = x.moved(context.device_x(0));
    y = y.moved(context.device_y(0) + context.origin().y);
    if (context.is_mirrored())
        x = x.mirrored(context.width());
    x = x.moved(context.origin().x);
}

Raster raster_of(DeviceContext& context)
{
    const Bitmap* bitmap = context.source_bitmap();
    if (!bitmap)
        return context.target_raster();
    return bitmap->is_plain() ? bitmap->plain_pixels() : Raster{};
}

AxisMap columns_of(const CopyPlace& place)
{
    return { Run::of(place.x, place.width), Run::of(place.source_x, place.source_width) };
}

AxisMap rows_of(const CopyPlace& place)
{
    return { Run::of(place.y, place.height), Run::of(place.source_y, place.source_height) };
}

} // namespace

CopySource::CopySource(DeviceContext& context)
    : raster(raster_of(context)), is_mono(context.depth() == 1), background(pixel_of(context.state.background))
{
    if (const Bitmap* shown = context.source_bitmap(); shown && !shown->is_plain())
        bitmap = shown;
}

CopySource::CopySource(const Bitmap& picture) : bitmap(&picture), is_mono(picture.depth() == 1) {}

// One mirrored context flips what is copied, unless one of the two wants pictures to keep their orientation.
Copy::Copy(DeviceContext& to, DeviceContext& from, const CopyPlace& place, RasterOp code)
    : target{ to.canvas(), pixel_of(to.state.text_colour), pixel_of(to.state.background) }, source(from),
      columns(columns_of(place)), rows(rows_of(place)),
      paint(code.uses_pattern() ? Paint(to, *to.state.brush.get()) : Paint(to, COLORREF{ 0 })), operation(code),
      blend(Blend::none)
{
    move_to_target(columns.to, rows.to, to);
    move_to_target(columns.from, rows.from, from);
    if (to.is_mirrored() != from.is_mirrored() && (to.keeps_orientation() || from.keeps_orientation()))
        columns.to = columns.to.reversed();
    const std::uint32_t* const pixels = source.raster.colour;
    same_pixels = &to == &from || (pixels && pixels == target.canvas.raster.colour);
}

Copy::Copy(DeviceContext& to, const Bitmap& picture, const CopyPlace& place, RasterOp code, Blend how)
    : target{ to.canvas() }, source(picture), columns(columns_of(place)), rows(rows_of(place)),
      paint(to, COLORREF{ 0 }), operation(code), blend(how), same_pixels(false)
{
    move_to_target(columns.to, rows.to, to);
    if (to.is_mirrored() && to.keeps_orientation())
        columns.to = columns.to.reversed();
}

void CopySource::read(int x, int y, int count, std::uint32_t* out) const
{
    if (bitmap)
        bitmap->read(x, y, count, out);
    else
        raster.read(x - corner.x, y - corner.y, count, out);
}

const std::uint32_t* CopySource::row(int y) const
{
    return bitmap ? bitmap->kept_row(y) : raster.colour_row(y - corner.y) - corner.x;
}

namespace {

constexpr std::size_t bytes(int pixels)
{
    return static_cast<std::size_t>(pixels) * sizeof(std::uint32_t);
}

struct Rows {
    std::uint32_t* to;
    std::ptrdiff_t step; // pixels from one row to the next
    const std::uint32_t* from;
    std::ptrdiff_t from_step;
    int width;
    int count;
};

// Rows of one to two blocks: the first block, and the last one where that is not all.
template <int kBlock>
void copy_short_rows(Rows rows)
{
    const int rest = rows.width - kBlock;
    for (int i = 0; i < rows.count; i++, rows.to += rows.step, rows.from += rows.from_step) {
        std::memcpy(rows.to, rows.from, bytes(kBlock));
        if (rest != 0)
            std::memcpy(rows.to + rest, rows.from + rest, bytes(kBlock));
    }
}

// Short rows, as of tiles, are not worth a call each.
void copy_plain_rows(Rows rows, bool may_overlap)
{
    if (rows.width > 16 || rows.width < 4 || may_overlap) {
        for (int i = 0; i < rows.count; i++, rows.to += rows.step, rows.from += rows.from_step)
            std::memmove(rows.to, rows.from, bytes(rows.width));
    } else if (rows.width >= 8) {
        copy_short_rows<8>(rows);
    } else {
        copy_short_rows<4>(rows);
    }
}

} // namespace

bool copy_straight(DeviceContext& to, DeviceContext& from, const CopyPlace& place)
{
    if (to.is_mirrored() || from.is_mirrored() || place.width != place.source_width ||
        place.height != place.source_height || place.width <= 0 || place.height <= 0)
        return false;
    const Canvas canvas = to.canvas();
    const Raster source = raster_of(from);
    if (!canvas.raster.colour || !source.colour)
        return false;
    const std::int64_t x = to.device_x(place.x) + to.origin().x;
    const std::int64_t y = to.device_y(place.y) + to.origin().y;
    const std::int64_t dx = from.device_x(place.source_x) + from.origin().x - x;
    const std::int64_t dy = from.device_y(place.source_y) + from.origin().y - y;
    const RECT bounds = canvas.clip->bounds();
    const std::int64_t left = std::max({ x, -dx, std::int64_t{ bounds.left } });
    const std::int64_t top = std::max({ y, -dy, std::int64_t{ bounds.top } });
    const std::int64_t right = std::min({ x + place.width, source.width - dx, std::int64_t{ bounds.right } });
    const std::int64_t bottom = std::min({ y + place.height, source.height - dy, std::int64_t{ bounds.bottom } });
    if (left >= right || top >= bottom)
        return true;
    if (canvas.raster.colour == source.colour && std::abs(dx) < right - left && std::abs(dy) < bottom - top)
        return false;
    const RECT reach{ static_cast<LONG>(left), static_cast<LONG>(top), static_cast<LONG>(right),
                      static_cast<LONG>(bottom) };
    for (const RECT& box : canvas.clip->rectangles()) {
        const RECT part = intersection(box, reach);
        if (is_empty(part))
            continue;
        copy_plain_rows({ canvas.raster.colour_row(part.top) + part.left, canvas.raster.stride,
                          source.colour_row(static_cast<int>(part.top + dy)) + part.left + dx, source.stride,
                          part.right - part.left, part.bottom - part.top },
                        false);
    }
    canvas.changed(reach);
    return true;
}

namespace {

// Straight copies of 32-bit rows, from the end that an overlap leaves intact.
void copy_rows(const Copy& copy, const RECT& part)
{
    const Raster& raster = copy.target.canvas.raster;
    const int width = part.right - part.left;
    const int rows = part.bottom - part.top;
    const int x = static_cast<int>(part.left + copy.columns.shift());
    const int dy = static_cast<int>(copy.rows.shift());
    if (copy.source.bitmap) { // packed rows: no overlap with anything
        for (int y = part.top; y < part.bottom; y++)
            copy.source.read(x, y + dy, width, raster.colour_row(y) + part.left);
        return;
    }
    const bool upward = copy.same_pixels && dy < 0;
    const int first = upward ? part.bottom - 1 : part.top;
    const std::uint32_t* from = copy.source.row(first + dy) + x;
    const std::ptrdiff_t from_stride = copy.source.raster.stride;
    copy_plain_rows({ raster.colour_row(first) + part.left, upward ? -raster.stride : raster.stride, from,
                      upward ? -from_stride : from_stride, width, rows },
                    copy.same_pixels);
}

// Which source columns the `count` target columns from x on show; at most kChunk of them.
class ColumnMap {
public:
    ColumnMap(const AxisMap& map, int x, int count) : count_(count)
    {
        // As AxisMap::source_of says it, with one division for all: from one column to the next the numerator grows by
        // twice the source's count.
        const Run& from = map.from;
        const bool is_forward = map.to.step > 0;
        const std::int64_t first = is_forward ? x - map.to.start : map.to.start - (x + count - 1);
        const std::int64_t divisor = 2 * map.to.count;
        std::int64_t quotient = (2 * first + 1) * from.count / divisor;
        std::int64_t rest = (2 * first + 1) * from.count % divisor;
        const std::int64_t step = 2 * from.count / divisor;
        const std::int64_t rest_step = 2 * from.count % divisor;
        for (int i = 0; i < count; i++) {
            column(is_forward ? i : count - 1 - i) = static_cast<int>(from.start + quotient * from.step);
            quotient += step;
            rest += rest_step;
            if (rest >= divisor) {
                rest -= divisor;
                quotient++;
            }
        }
        is_reversed_ = map.to.count == from.count && is_forward != (from.step > 0);
        constexpr int kWide = 8; // pixels of one colour, on average, that are worth a fill
        if (map.to.count / kWide >= from.count)
            find_bands();
    }

    void draw_row(const std::uint32_t* from, std::uint32_t* to) const
    {
        if (is_reversed_) {
            std::reverse_copy(from + columns_[0] - count_ + 1, from + columns_[0] + 1, to);
        } else if (bands_ > 0) {
            for (int i = 0; i < bands_; i++)
                to =
                    std::fill_n(to, lengths_[static_cast<std::size_t>(i)], from[columns_[static_cast<std::size_t>(i)]]);
        } else {
            for (int i = 0; i < count_; i++)
                to[i] = from[columns_[static_cast<std::size_t>(i)]];
        }
    }

private:
    int& column(int i) { return columns_[static_cast<std::size_t>(i)]; }
    // Makes of neighbours that show the same column one band.
    void find_bands()
    {
        for (int i = 0; i < count_; i++) {
            if (bands_ == 0 || column(bands_ - 1) != column(i)) {
                column(bands_) = column(i);
                lengths_[static_cast<std::size_t>(bands_++)] = 0;
            }
            lengths_[static_cast<std::size_t>(bands_ - 1)]++;
        }
    }

    int count_;
    std::array<int, kChunk> columns_; // by band, if there are any
    std::array<int, kChunk> lengths_;
    int bands_ = 0;
    bool is_reversed_ = false;
};

// Mirrored or stretched copies of 32-bit rows. Neighbours that show the same source row are made once.
void map_rows(const Copy& copy, const RECT& part)
{
    const Raster& raster = copy.target.canvas.raster;
    for (int x = part.left; x < part.right; x += kChunk) {
        const int count = std::min(kChunk, part.right - x);
        const ColumnMap columns(copy.columns, x, count);
        std::int64_t shown = -1;
        for (int y = part.top; y < part.bottom; y++) {
            std::uint32_t* to = raster.colour_row(y) + x;
            const std::int64_t source_y = copy.rows.source_of(y);
            if (source_y == shown) {
                std::memcpy(to, raster.colour_row(y - 1) + x, bytes(count));
                continue;
            }
            shown = source_y;
            columns.draw_row(copy.source.row(static_cast<int>(source_y)), to);
        }
    }
}

// A run of source pixels as they appear at target columns x to x + count, in the target's colours.
void fetch(const Copy& copy, int x, int source_y, int count, std::uint32_t* out)
{
    if (copy.columns.is_shift()) {
        copy.source.read(static_cast<int>(x + copy.columns.shift()), source_y, count, out);
    } else {
        for (int i = 0; i < count; i++)
            copy.source.read(static_cast<int>(copy.columns.source_of(x + i)), source_y, 1, out + i);
    }
    const bool to_mono = copy.target.canvas.raster.is_mono();
    if (copy.source.is_mono && !to_mono) {
        for (int i = 0; i < count; i++)
            out[i] = out[i] == kBlack ? copy.target.clear : copy.target.set;
    } else if (to_mono && !copy.source.is_mono) {
        for (int i = 0; i < count; i++)
            out[i] = (out[i] & kWhite) == copy.source.background ? kWhite : kBlack;
    }
}

void blend_by_alpha(std::uint32_t* below, const std::uint32_t* above, int count)
{
    for (int i = 0; i < count; i++)
        below[i] = mix_pixels(above[i], below[i], above[i] >> 24);
}

// Everything else: between depths, and by operations of two or three operands.
void combine_rows(const Copy& copy, const RECT& part)
{
    const Raster& raster = copy.target.canvas.raster;
    std::uint32_t from[kChunk];
    std::uint32_t pattern[kChunk];
    std::uint32_t pixels[kChunk];
    const bool upward = copy.same_pixels && copy.rows.is_shift() && copy.rows.shift() < 0;
    const bool leftward = copy.same_pixels && copy.columns.is_shift() && copy.columns.shift() < 0;
    const int chunks = (part.right - part.left + kChunk - 1) / kChunk;
    for (int row = 0; row < part.bottom - part.top; row++) {
        const int y = upward ? part.bottom - 1 - row : part.top + row;
        const int source_y = static_cast<int>(copy.rows.source_of(y));
        for (int i = 0; i < chunks; i++) {
            const int x = part.left + (leftward ? chunks - 1 - i : i) * kChunk;
            const int count = std::min(kChunk, part.right - x);
            fetch(copy, x, source_y, count, from);
            raster.read(x, y, count, pixels);
            if (copy.blend == Blend::by_alpha) {
                blend_by_alpha(pixels, from, count);
            } else {
                copy.paint.read(x, y, count, pattern);
                copy.operation.apply(pixels, from, pattern, count);
            }
            raster.write(x, y, count, pixels);
        }
    }
}

void copy_part(const Copy& copy, const RECT& part)
{
    const bool plain = copy.blend == Blend::none && copy.operation.copies_source() && !copy.source.is_mono &&
                       !copy.target.canvas.raster.is_mono();
    if (!plain)
        combine_rows(copy, part);
    else if (copy.columns.is_shift() && copy.rows.is_shift())
        copy_rows(copy, part);
    else
        map_rows(copy, part);
}

// The rectangles of the clip, so ordered that none is drawn over another's source.
template <class Draw>
void each_box(const Copy& copy, Draw draw)
{
    const std::span<const RECT> boxes = copy.target.canvas.clip->rectangles();
    const bool upward = copy.same_pixels && copy.rows.shift() < 0;
    const bool leftward = copy.same_pixels && copy.columns.shift() < 0;
    const std::size_t count = boxes.size();
    for (std::size_t first = 0; first < count;) {
        // A band of boxes that stand beside each other; bands from below when going upward.
        const std::size_t anchor = upward ? count - 1 - first : first;
        std::size_t length = 1;
        const auto at = [&](std::size_t i) -> const RECT& { return boxes[upward ? anchor - i : anchor + i]; };
        while (first + length < count && at(length).top == boxes[anchor].top)
            length++;
        for (std::size_t i = 0; i < length; i++) // `at` runs leftward exactly when it runs upward
            draw(at(leftward == upward ? i : length - 1 - i));
        first += length;
    }
}

// A copy of what the copy reads, for the case that it would write over it.
class Snapshot {
public:
    Snapshot(const CopySource& source, const RECT& area)
    {
        const int width = area.right - area.left;
        const int height = area.bottom - area.top;
        pixels_.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
        raster_ = { pixels_.data(), nullptr, width, height, width };
        for (int y = 0; y < height; y++)
            source.read(area.left, area.top + y, width, raster_.colour_row(y));
    }
    const Raster& raster() const { return raster_; }

private:
    std::vector<std::uint32_t> pixels_;
    Raster raster_;
};

RECT source_area(const Copy& copy, const RECT& reach)
{
    const RECT corners = normal_rect(copy.columns.source_of(reach.left), copy.rows.source_of(reach.top),
                                     copy.columns.source_of(reach.right - 1), copy.rows.source_of(reach.bottom - 1));
    return { corners.left, corners.top, corners.right + 1, corners.bottom + 1 };
}

void copy_reachable(const Copy& copy, const RECT& reach)
{
    each_box(copy, [&](const RECT& box) {
        if (const RECT part = intersection(box, reach); !is_empty(part))
            copy_part(copy, part);
    });
    copy.target.canvas.changed(reach);
}

} // namespace

void copy_pixels(const Copy& copy)
{
    if (copy.operation.does_nothing())
        return;
    const RECT bounds = copy.target.canvas.clip->bounds();
    const auto [left, right] = copy.columns.reachable(bounds.left, bounds.right, copy.source.width());
    const auto [top, bottom] = copy.rows.reachable(bounds.top, bounds.bottom, copy.source.height());
    const RECT reach{ left, top, right, bottom };
    if (is_empty(reach))
        return;
    if (!copy.same_pixels || (copy.columns.is_shift() && copy.rows.is_shift())) {
        copy_reachable(copy, reach);
        return;
    }
    const RECT area = source_area(copy, reach);
    const Snapshot snapshot(copy.source, area);
    Copy from_snapshot = copy;
    from_snapshot.source.bitmap = nullptr;
    from_snapshot.source.raster = snapshot.raster();
    from_snapshot.source.corner = { area.left, area.top };
    from_snapshot.same_pixels = false;
    copy_reachable(from_snapshot, reach);
}

} // namespace win32
