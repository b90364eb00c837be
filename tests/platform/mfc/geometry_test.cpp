#include <afxwin.h>

#include <gtest/gtest.h>

#include <climits>

namespace {

TEST(CRect, Computes)
{
    const CRect rect(10, 20, 40, 80);
    CRect rcDeflated(rect);
    rcDeflated.DeflateRect(1, 2, 3, 4);
    CRect rcInflated(rect);
    rcInflated.InflateRect(CSize(5, 6));
    CRect rcNormal(40, 80, 10, 20); // turned about
    rcNormal.NormalizeRect();
    struct {
        const char* why;
        CRect rcComputed;
        CRect rcExpected;
    } const cases[] = {
        { "moved by a point", rect + CPoint(1, -2), { 11, 18, 41, 78 } },
        { "moved back by a size", rect - CSize(1, -2), { 9, 22, 39, 82 } },
        { "deflated by four", rcDeflated, { 11, 22, 37, 76 } },
        { "inflated by two", rcInflated, { 5, 14, 45, 86 } },
        { "put right", rcNormal, rect },
        { "from place and size", CRect(CPoint(1, 2), CSize(3, 4)), { 1, 2, 4, 6 } },
        { "from two corners", CRect(CPoint(1, 2), CPoint(3, 4)), { 1, 2, 3, 4 } },
        { "sums wrap", CRect(INT_MAX, 0, 0, 0) + CPoint(1, 0), { INT_MIN, 0, 1, 0 } },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        EXPECT_EQ(c.rcComputed, c.rcExpected);
    }
    EXPECT_EQ(CPoint(MAKELPARAM(0xFFFF, 7)), CPoint(-1, 7)) << "halves have signs";
    EXPECT_EQ(rect.Size(), CSize(30, 60));
    EXPECT_EQ(rect.CenterPoint(), CPoint(25, 50));
    EXPECT_EQ(CRect(INT_MIN, 0, INT_MAX, 0).Width(), -1) << "a width that 32 bits cannot hold wraps";
    EXPECT_TRUE(rect.PtInRect(CPoint(10, 79)));
    EXPECT_FALSE(rect.PtInRect(CPoint(40, 20)) || rect.PtInRect(CPoint(10, 80)));
    EXPECT_TRUE(CRect(5, 5, 5, 9).IsRectEmpty());
    EXPECT_FALSE(CRect(5, 5, 5, 9).IsRectNull());
}

} // namespace
