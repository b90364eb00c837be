#include "platform/win32/gdi/region.h"

#include "wingdi.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <type_traits>
#include <vector>

namespace win32 {

// pixman's boxes and RECTs are the same four numbers, right and bottom outside.
static_assert(sizeof(pixman_box32_t) == sizeof(RECT) && offsetof(pixman_box32_t, x2) == offsetof(RECT, right) &&
              offsetof(pixman_box32_t, y1) == offsetof(RECT, top));
static_assert(std::is_same_v<LONG, std::int32_t>);

namespace {

// The memory of lists of rectangles that regions of this thread let go of. Clipping makes and drops a few with every
// painting, and painting should take nothing from the heap.
struct SpareLists {
    static constexpr std::size_t kMost = 6;
    static constexpr long kLongest = 256; // rectangles; longer ones are not worth keeping

    std::array<pixman_region32_data_t*, kMost> lists{};
    std::size_t count = 0;
    bool is_closed = false; // the thread ends
};
thread_local constinit SpareLists spare_lists;

struct SpareListsCloser {
    bool is_on_watch = false;
    ~SpareListsCloser()
    {
        while (spare_lists.count > 0)
            std::free(spare_lists.lists[--spare_lists.count]);
        spare_lists.is_closed = true;
    }
};
thread_local SpareListsCloser spare_lists_closer;

// Gives an empty region room for rectangles that it is about to receive.
void lend_list(pixman_region32_t& region)
{
    if (spare_lists.count == 0)
        return;
    region.data = spare_lists.lists[--spare_lists.count];
    region.data->numRects = 0;
}

} // namespace

void Region::keep_list()
{
    if (spare_lists.is_closed || spare_lists.count == SpareLists::kMost || region_.data->size > SpareLists::kLongest) {
        pixman_region32_fini(&region_);
        return;
    }
    spare_lists_closer.is_on_watch = true; // it stands from its first use on
    spare_lists.lists[spare_lists.count++] = region_.data;
}

Region::Region(const RECT& rect)
{
    if (is_empty(rect)) {
        pixman_region32_init(&region_);
        return;
    }
    const auto box = std::bit_cast<pixman_box32_t>(rect);
    pixman_region32_init_with_extents(&region_, &box);
}

Region::Region(std::span<const RECT> rects)
{
    pixman_region32_init_rects(&region_, reinterpret_cast<const pixman_box32_t*>(rects.data()),
                               static_cast<int>(rects.size()));
}

Region::Region(const Region& other)
{
    pixman_region32_init(&region_);
    if (other.has_list())
        lend_list(region_);
    pixman_region32_copy(&region_, &other.mutable_region());
}

Region::Region(Region&& other) noexcept : region_(other.region_)
{
    pixman_region32_init(&other.region_);
}

Region& Region::operator=(const Region& other)
{
    pixman_region32_copy(&region_, &other.mutable_region());
    return *this;
}

Region& Region::operator=(Region&& other) noexcept
{
    std::swap(region_, other.region_);
    return *this;
}

namespace {

// How many pixels from the left edge the first pixel lies whose centre is in the ellipse of `width` by `height`, in the
// row `row` below the top. All distances are doubled so that centres are whole: the pixel's (2x+1-w, 2y+1-h).
int ellipse_inset(int row, int width, int height)
{
    const double dy = (2.0 * row + 1.0 - height) / height;
    const double reach = 1.0 - dy * dy;
    if (reach <= 0)
        return width / 2;
    const double half = width * std::sqrt(reach) / 2.0; // of the chord through the centres of the row
    const int inset = static_cast<int>(std::ceil(width / 2.0 - half - 0.5));
    return std::clamp(inset, 0, width / 2);
}

// Rows with the same inset become one rectangle.
class Bands {
public:
    void add(int left, int right, int y)
    {
        if (!rects_.empty() && rects_.back().left == left && rects_.back().right == right && rects_.back().bottom == y)
            rects_.back().bottom = y + 1;
        else
            rects_.push_back({ left, y, right, y + 1 });
    }
    void add_block(const RECT& rect)
    {
        if (!is_empty(rect))
            rects_.push_back(rect);
    }
    Region region() const { return Region(std::span(rects_)); }

private:
    std::vector<RECT> rects_;
};

} // namespace

Region Region::ellipse(const RECT& rect)
{
    return round_rectangle(rect, rect.right - rect.left, rect.bottom - rect.top);
}

Region Region::round_rectangle(const RECT& rect, int width, int height)
{
    if (is_empty(rect))
        return Region();
    const int corner_width = std::clamp(width, 0, rect.right - rect.left);
    const int corner_height = std::clamp(height, 0, rect.bottom - rect.top);
    if (corner_width == 0 || corner_height == 0)
        return Region(rect);

    Bands bands;
    const int upper = (corner_height + 1) / 2; // rows of the upper corners; the middle row of an odd height among them
    const int lower = corner_height - upper;
    for (int row = 0; row < upper; row++) {
        const int inset = ellipse_inset(row, corner_width, corner_height);
        bands.add(rect.left + inset, rect.right - inset, rect.top + row);
    }
    bands.add_block({ rect.left, rect.top + upper, rect.right, rect.bottom - lower });
    for (int row = 0; row < lower; row++) {
        const int inset = ellipse_inset(lower - 1 - row, corner_width, corner_height);
        bands.add(rect.left + inset, rect.right - inset, rect.bottom - lower + row);
    }
    return bands.region();
}

// By one of pixman's operations, whose result cannot take the place of an operand without new memory. It frees a list
// that it has no use for, so none is lent where the result is a rectangle in most cases.
template <class Operation>
bool Region::become(Operation operation, const Region& a, const Region& b, bool wants_list)
{
    Region result;
    if (wants_list)
        lend_list(result.region_);
    const bool is_done = operation(&result.region_, &a.mutable_region(), &b.mutable_region());
    std::swap(region_, result.region_);
    return is_done;
}

bool Region::set_union(const Region& a, const Region& b)
{
    return become(pixman_region32_union, a, b, a.has_list() || b.has_list());
}

bool Region::set_intersection(const Region& a, const Region& b)
{
    return become(pixman_region32_intersect, a, b, a.has_list() || b.has_list());
}

bool Region::set_difference(const Region& a, const Region& b)
{
    return become(pixman_region32_subtract, a, b, !is_empty(intersection(a.bounds(), b.bounds())));
}

bool Region::exclusive(const Region& other)
{
    Region both(*this);
    return both.intersect(other) && unite(other) && subtract(both);
}

bool Region::offset(int x, int y)
{
    const RECT box = bounds();
    const auto fits = [](std::int64_t value) { return value >= -kCoordinateLimit && value <= kCoordinateLimit; };
    if (!empty() && (!fits(std::int64_t{ box.left } + x) || !fits(std::int64_t{ box.right } + x) ||
                     !fits(std::int64_t{ box.top } + y) || !fits(std::int64_t{ box.bottom } + y)))
        return false;
    if (!empty())
        pixman_region32_translate(&region_, x, y);
    return true;
}

void Region::mirror(int width)
{
    std::vector<RECT> mirrored;
    for (const RECT& rect : rectangles())
        mirrored.push_back({ clamp_coordinate(std::int64_t{ width } - rect.right), rect.top,
                             clamp_coordinate(std::int64_t{ width } - rect.left), rect.bottom });
    *this = Region(std::span<const RECT>(mirrored));
}

RECT Region::bounds() const
{
    return empty() ? RECT{} : std::bit_cast<RECT>(*pixman_region32_extents(&mutable_region()));
}

std::span<const RECT> Region::rectangles() const
{
    int count = 0;
    const pixman_box32_t* boxes = pixman_region32_rectangles(&mutable_region(), &count);
    return { reinterpret_cast<const RECT*>(boxes), static_cast<std::size_t>(count) };
}

bool Region::contains(int x, int y) const
{
    return pixman_region32_contains_point(&mutable_region(), x, y, nullptr);
}

bool Region::touches(const RECT& rect) const
{
    if (is_empty(rect))
        return false;
    auto box = std::bit_cast<pixman_box32_t>(rect);
    return pixman_region32_contains_rectangle(&mutable_region(), &box) != PIXMAN_REGION_OUT;
}

bool Region::operator==(const Region& other) const
{
    return pixman_region32_equal(&mutable_region(), &other.mutable_region());
}

int Region::kind() const
{
    if (empty())
        return NULLREGION;
    return pixman_region32_n_rects(&mutable_region()) == 1 ? SIMPLEREGION : COMPLEXREGION;
}

} // namespace win32
