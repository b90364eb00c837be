#include "tests/support/Picture.h"

#include <gtest/gtest.h>

#include <winbase.h>

#include <vector>

namespace {

constexpr int kFar = 0x7FFFFFFF;

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

} // namespace

TEST(GdiRegion, CutsRoundCorners)
{
    const test::Picture picture("......../......../......../......../......../........");
    const Region round(CreateRoundRectRgn(0, 0, 8, 6, 4, 4));
    FillRgn(picture, round, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
    EXPECT_EQ(picture.Letters(), ".WWWWWW./WWWWWWWW/WWWWWWWW/WWWWWWWW/WWWWWWWW/.WWWWWW.");
    const Region square(CreateRoundRectRgn(0, 0, 3, 2, 0, 0));
    EXPECT_TRUE(EqualRgn(square, Region(CreateRectRgn(0, 0, 3, 2))));
    const Region corners_larger_than_all(CreateRoundRectRgn(0, 0, 8, 8, 100, -100));
    EXPECT_TRUE(EqualRgn(corners_larger_than_all, Region(CreateEllipticRgn(0, 0, 8, 8))));
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
    EXPECT_EQ(OffsetRgn(Region(CreateRectRgn(0, 0, kFar, 1)), 1, 0), ERROR);
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
