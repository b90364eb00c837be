// What painting takes from the heap: nothing. A window repaints for as long as it lives.
#include "tests/support/CountedHeap.h"
#include "tests/support/Picture.h"

#include <gtest/gtest.h>

#include <winbase.h>

#include <functional>

TEST(GdiPainters, TakeNothingFromTheHeap)
{
    const test::Picture from(40, 40);
    const test::Picture to(60, 60);
    const test::Picture mask(40, 40, 1);
    const HICON icon = test::IconOf(from.bitmap(), mask.bitmap());
    const RECT rect{ 3, 3, 50, 50 };
    ExcludeClipRect(to, 10, 10, 20, 20);
    struct Painter {
        const char* why;
        std::function<BOOL()> paint;
    };
    const Painter painters[] = {
        { "copy", [&] { return BitBlt(to, 1, 1, 40, 40, from, 0, 0, SRCCOPY); } },
        { "combine", [&] { return BitBlt(to, 1, 1, 40, 40, from, 0, 0, SRCINVERT); } },
        { "stretch", [&] { return StretchBlt(to, 0, 0, 60, 50, from, 0, 0, 40, 40, SRCCOPY); } },
        { "mirror", [&] { return StretchBlt(to, 39, 0, -40, 40, from, 0, 0, 40, 40, SRCCOPY); } },
        { "overlapping copy", [&] { return BitBlt(to, 5, 5, 40, 40, to, 0, 0, SRCCOPY); } },
        { "rectangle", [&] { return Rectangle(to, 2, 2, 55, 55); } },
        { "fill", [&] { return FillRect(to, &rect, static_cast<HBRUSH>(GetStockObject(GRAY_BRUSH))); } },
        { "pattern copy", [&] { return PatBlt(to, 0, 0, 60, 60, PATINVERT); } },
        { "icon", [&] { return DrawIconEx(to, 4, 4, icon, 0, 0, 0, nullptr, DI_NORMAL); } },
        { "line", [&] { return MoveToEx(to, 0, 0, nullptr) && LineTo(to, 50, 33); } },
    };
    for (const Painter& painter : painters) {
        EXPECT_TRUE(painter.paint()) << painter.why; // the first call may
        const std::size_t before = test::heap_allocations();
        for (int i = 0; i < 10; i++)
            painter.paint();
        EXPECT_EQ(test::heap_allocations(), before) << painter.why;
    }
    DestroyIcon(icon);
}
