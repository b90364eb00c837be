// What painting takes from the heap once a window was painted: nothing. It is painted for as long as it lives.
#include <atomic>
#include <cstdlib>
#include <new>

#include <gtest/gtest.h>

#include "tests/skinwnd/PaintModel.h"

namespace {

std::atomic<std::size_t> g_nAllocations = 0;

} // namespace

// Out of line: where only some of them are inlined, the compiler sees memory of one kind given back as another.
[[gnu::noinline]] void* operator new(std::size_t nSize)
{
    g_nAllocations++;
    if (void* const pMemory = std::malloc(nSize ? nSize : 1))
        return pMemory;
    std::abort();
}

[[gnu::noinline]] void* operator new(std::size_t nSize, const std::nothrow_t&) noexcept
{
    g_nAllocations++;
    return std::malloc(nSize ? nSize : 1);
}

[[gnu::noinline]] void operator delete(void* pMemory) noexcept
{
    std::free(pMemory);
}

[[gnu::noinline]] void operator delete(void* pMemory, std::size_t) noexcept
{
    std::free(pMemory);
}

namespace {

TEST(GuiSkinWindowHeap, IsLeftAlone)
{
    CWnd wnd;
    wnd.CreateEx(0, AfxRegisterWndClass(0), "Caption", WS_POPUP, 0, 0, 400, 300, nullptr, nullptr);
    test::Pixels(400, 300).Draw(0, [&](CDC& dc) {
        for (unsigned nSeed = 0; nSeed < 30; nSeed++) {
            std::mt19937 random(nSeed);
            test::RandomSkin skin(random, 12);
            skin.m_bCaption = TRUE;
            skin.m_mapParts.SetAt("part", new CRect(0, 0, 9, 9));
            skin.m_mapAnchors.SetAt("anchor", new CRect(4, 4, 9, 9));
            const auto paintAll = [&] {
                skin.Paint(&wnd, dc, 0, 0);
                skin.Paint(&wnd, dc, 1, 1);
                skin.PaintClient(&dc, CRect(0, 0, 300, 200));
                skin.PaintPartOnAnchor(&dc, CRect(0, 0, 300, 200), "part", "anchor", 1);
            };
            paintAll();
            const std::size_t nBefore = g_nAllocations;
            paintAll();
            EXPECT_EQ(g_nAllocations, nBefore) << nSeed;
        }
    });
}

} // namespace
