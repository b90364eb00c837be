#include "tests/platform/win32/gdi/Pictures.h"

#include <gtest/gtest.h>

#include <winbase.h>

#include <array>
#include <random>
#include <vector>

namespace {

constexpr int kFar = 0x7FFFFFFF;
constexpr int kSize = 24;

// The pixels of a region as rows of letters.
std::string Letters(HRGN region, int width, int height)
{
    std::string letters;
    for (int y = 0; y < height; y++) {
        if (y > 0)
            letters += '/';
        for (int x = 0; x < width; x++)
            letters += PtInRegion(region, x, y) ? 'W' : '.';
    }
    return letters;
}

class Region {
public:
    explicit Region(HRGN handle) : handle_(handle) {}
    Region(const Region&) = delete;
    Region& operator=(const Region&) = delete;
    ~Region() { DeleteObject(handle_); }
    operator HRGN() const { return handle_; }

private:
    HRGN handle_;
};

// The slow and obvious region: a bit for each pixel.
struct Grid {
    std::array<bool, kSize * kSize> bits{};
    bool& at(int x, int y) { return bits[static_cast<std::size_t>(y) * kSize + static_cast<std::size_t>(x)]; }
    void Fill(const RECT& rect)
    {
        for (int y = std::max(0, rect.top); y < std::min<int>(kSize, rect.bottom); y++) {
            for (int x = std::max(0, rect.left); x < std::min<int>(kSize, rect.right); x++)
                at(x, y) = true;
        }
    }
};

bool Combined(bool a, bool b, int mode)
{
    switch (mode) {
    case RGN_AND:
        return a && b;
    case RGN_OR:
        return a || b;
    case RGN_XOR:
        return a != b;
    case RGN_DIFF:
        return a && !b;
    default:
        return a;
    }
}

} // namespace

TEST(GdiRegion, HasTheShapesOfItsCurves)
{
    const Region circle(CreateEllipticRgn(0, 0, 8, 8));
    EXPECT_EQ(Letters(circle, 8, 8), "..WWWW../.WWWWWW./WWWWWWWW/WWWWWWWW/WWWWWWWW/WWWWWWWW/.WWWWWW./..WWWW..");
    const Region odd(CreateEllipticRgn(1, 0, 8, 5));
    EXPECT_EQ(Letters(odd, 8, 5), "..WWWWW./.WWWWWWW/.WWWWWWW/.WWWWWWW/..WWWWW.");
    const Region round(CreateRoundRectRgn(0, 0, 8, 6, 4, 4));
    EXPECT_EQ(Letters(round, 8, 6), ".WWWWWW./WWWWWWWW/WWWWWWWW/WWWWWWWW/WWWWWWWW/.WWWWWW.");
    const Region square(CreateRoundRectRgn(0, 0, 3, 2, 0, 0));
    EXPECT_EQ(Letters(square, 3, 2), "WWW/WWW");
    const Region corners_larger_than_all(CreateRoundRectRgn(0, 0, 8, 8, 100, -100));
    EXPECT_TRUE(EqualRgn(corners_larger_than_all, circle));
}

TEST(GdiRegion, KeepsTheCentresWithinAnEllipse)
{
    for (std::int64_t width = 1; width <= 40; width++) {
        for (std::int64_t height = 1; height <= 40; height++) {
            const Region ellipse(CreateEllipticRgn(0, 0, static_cast<int>(width), static_cast<int>(height)));
            int wrong = 0;
            for (std::int64_t y = 0; y < height; y++) {
                for (std::int64_t x = 0; x < width; x++) {
                    const std::int64_t dx = (2 * x + 1 - width) * height;
                    const std::int64_t dy = (2 * y + 1 - height) * width;
                    const bool inside = dx * dx + dy * dy <= width * width * height * height;
                    wrong += inside != (PtInRegion(ellipse, static_cast<int>(x), static_cast<int>(y)) != 0);
                }
            }
            EXPECT_EQ(wrong, 0) << width << " by " << height;
        }
    }
}

TEST(GdiRegion, AgreesWithAGridOfBits)
{
    std::mt19937 chance(7);
    const auto number = [&chance](int from, int to) { return std::uniform_int_distribution<int>(from, to)(chance); };
    for (int round = 0; round < 60; round++) {
        const Region region(CreateRectRgn(0, 0, 0, 0));
        Grid grid;
        for (int step = 0; step < 12; step++) {
            SCOPED_TRACE(round * 100 + step);
            const int x = number(0, kSize);
            const int y = number(0, kSize);
            const RECT rect{ x, y, x + number(0, kSize - x), y + number(0, kSize - y) };
            const Region operand(CreateRectRgnIndirect(&rect));
            Grid operand_grid;
            operand_grid.Fill(rect);
            const int mode = number(RGN_AND, RGN_COPY);
            const int kind = CombineRgn(region, region, operand, step < 3 ? RGN_OR : mode);
            bool any = false;
            for (std::size_t i = 0; i < grid.bits.size(); i++) {
                grid.bits[i] = Combined(grid.bits[i], operand_grid.bits[i], step < 3 ? RGN_OR : mode);
                any = any || grid.bits[i];
            }
            EXPECT_EQ(kind == NULLREGION, !any);
            int wrong = 0;
            for (int py = 0; py < kSize; py++) {
                for (int px = 0; px < kSize; px++)
                    wrong += grid.at(px, py) != (PtInRegion(region, px, py) != 0);
            }
            EXPECT_EQ(wrong, 0);
        }
        // Moved there and back it is itself; moved away it is another.
        const Region moved(CreateRectRgn(0, 0, 1, 1));
        CombineRgn(moved, region, nullptr, RGN_COPY);
        EXPECT_TRUE(EqualRgn(moved, region));
        OffsetRgn(moved, 5, -3);
        RECT box{};
        RECT moved_box{};
        const int kind = GetRgnBox(region, &box);
        GetRgnBox(moved, &moved_box);
        EXPECT_EQ(EqualRgn(moved, region) != 0, kind == NULLREGION);
        EXPECT_EQ(moved_box.left - box.left, kind == NULLREGION ? 0 : 5);
        OffsetRgn(moved, -5, 3);
        EXPECT_TRUE(EqualRgn(moved, region));
    }
}

TEST(GdiRegion, AnswersForPointsAndRectangles)
{
    const Region hole(CreateRectRgn(0, 0, 10, 10));
    const Region inner(CreateRectRgn(3, 3, 7, 7));
    EXPECT_EQ(CombineRgn(hole, hole, inner, RGN_DIFF), COMPLEXREGION);
    const RECT within_hole{ 4, 4, 6, 6 };
    const RECT over_edge{ 6, 6, 8, 8 };
    EXPECT_FALSE(RectInRegion(hole, &within_hole));
    EXPECT_TRUE(RectInRegion(hole, &over_edge));

    const DWORD size = GetRegionData(hole, 0, nullptr);
    std::vector<std::byte> buffer(size);
    auto* data = reinterpret_cast<RGNDATA*>(buffer.data());
    EXPECT_EQ(GetRegionData(hole, size - 1, data), 0U);
    EXPECT_EQ(GetRegionData(hole, size, data), size);
    EXPECT_EQ(data->rdh.nCount, 4U);
    EXPECT_EQ(data->rdh.rcBound, (RECT{ 0, 0, 10, 10 }));
    EXPECT_EQ(*reinterpret_cast<const RECT*>(data->Buffer), (RECT{ 0, 0, 10, 3 }));
}

TEST(GdiRegion, TakesAnyNumber)
{
    const Region all(CreateRectRgn(-kFar - 1, -kFar - 1, kFar, kFar));
    EXPECT_TRUE(PtInRegion(all, 0, 0));
    EXPECT_EQ(OffsetRgn(all, kFar, kFar), ERROR) << "it would leave the range";
    EXPECT_EQ(CreateEllipticRgn(0, 0, kFar, kFar), nullptr) << "a row each would be too many";
    EXPECT_EQ(CreateRoundRectRgn(-kFar, 0, kFar, 10, 5, 5), nullptr);
    const Region turned(CreateRectRgn(5, 6, 1, 2));
    RECT box{};
    EXPECT_EQ(GetRgnBox(turned, &box), SIMPLEREGION);
    EXPECT_EQ(box, (RECT{ 1, 2, 5, 6 }));
    EXPECT_EQ(CombineRgn(turned, turned, nullptr, RGN_OR), ERROR);
    EXPECT_EQ(CombineRgn(nullptr, turned, turned, RGN_OR), ERROR);
    EXPECT_EQ(CombineRgn(turned, turned, turned, 77), ERROR);
    EXPECT_TRUE(SetRectRgn(turned, 0, 0, 0, 0));
    EXPECT_EQ(GetRgnBox(turned, &box), NULLREGION);
}
