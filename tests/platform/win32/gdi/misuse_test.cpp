// Calls in any order, with handles that are dead, null or of another kind, and numbers from all ends of their range:
// whatever comes, nothing breaks and nothing is left behind.
#include "tests/support/Picture.h"

#include "platform/win32/gdi/objects.h"

#include <gtest/gtest.h>

#include <winbase.h>

#include <algorithm>
#include <climits>
#include <functional>
#include <iterator>
#include <random>

namespace {

class Monkey {
public:
    // Begins with three contexts that can be drawn with.
    explicit Monkey(unsigned seed) : engine_(seed)
    {
        for (const UINT depth : { 32, 32, 1 }) {
            Add(CreateCompatibleDC(nullptr));
            Add(CreateBitmap(20, 20, 1, depth, nullptr));
            SelectObject(static_cast<HDC>(handles_[handles_.size() - 2]), handles_.back());
        }
    }

    void Play(int calls)
    {
        const std::function<void()> kMoves[] = {
            [&] { Add(CreateCompatibleDC(Any<HDC>())); },
            [&] { Add(CreateCompatibleDC(nullptr)); },
            [&] { Add(CreateCompatibleBitmap(Any<HDC>(), N(), N())); },
            [&] { Add(CreateBitmap(N(), N(), 1, Below(2) ? 1 : 32, nullptr)); },
            [&] { Add(CreateBitmap(20, 20, 1, 32, nullptr)); },
            [&] { Add(CreatePen(static_cast<int>(Below(7)), N(), Bits())); },
            [&] { Add(CreateSolidBrush(Bits())); },
            [&] { Add(CreatePatternBrush(Any<HBITMAP>())); },
            [&] { Add(CreateRectRgn(N(), N(), N(), N())); },
            [&] { Add(CreateRoundRectRgn(N(), N(), N(), N(), N(), N())); },
            [&] { Add(CreateFontA(N(), N(), N(), N(), N(), 1, 1, 1, 1, 0, 0, 0, 0, "\xCB\xCE\xCC")); },
            [&] { Add(GetStockObject(static_cast<int>(Below(20)))); },
            [&] { Add(test::IconOf(Any<HBITMAP>(), Any<HBITMAP>())); },
            [&] { Add(CopyIcon(Any<HICON>())); },
            [&] { DestroyIcon(Any<HICON>()); },
            [&] { DeleteObject(Any<HGDIOBJ>()); },
            [&] { DeleteDC(Any<HDC>()); },
            [&] { SelectObject(Any<HDC>(), Any<HGDIOBJ>()); },
            [&] { SelectObject(Any<HDC>(), Any<HGDIOBJ>()); },
            [&] { SaveDC(Any<HDC>()); },
            [&] { RestoreDC(Any<HDC>(), N()); },
            [&] { SetLayout(Any<HDC>(), Below(10)); },
            [&] { SetROP2(Any<HDC>(), static_cast<int>(Below(18))); },
            [&] { SetTextAlign(Any<HDC>(), Bits() & 0x11F); },
            [&] { SetWindowOrgEx(Any<HDC>(), N(), N(), nullptr); },
            [&] { SetViewportOrgEx(Any<HDC>(), N(), N(), nullptr); },
            [&] { OffsetViewportOrgEx(Any<HDC>(), N(), N(), nullptr); },
            [&] { CombineRgn(Any<HRGN>(), Any<HRGN>(), Any<HRGN>(), static_cast<int>(Below(7))); },
            [&] { OffsetRgn(Any<HRGN>(), N(), N()); },
            [&] { ExtSelectClipRgn(Any<HDC>(), Any<HRGN>(), static_cast<int>(Below(7))); },
            [&] { SelectClipRgn(Any<HDC>(), nullptr); },
            [&] { IntersectClipRect(Any<HDC>(), N(), N(), N(), N()); },
            [&] { ExcludeClipRect(Any<HDC>(), N(), N(), N(), N()); },
            [&] { OffsetClipRgn(Any<HDC>(), N(), N()); },
            [&] { BitBlt(Any<HDC>(), N(), N(), N(), N(), Any<HDC>(), N(), N(), Bits()); },
            [&] { StretchBlt(Any<HDC>(), N(), N(), N(), N(), Any<HDC>(), N(), N(), N(), N(), SRCCOPY); },
            [&] { StretchBlt(Any<HDC>(), N(), N(), N(), N(), Any<HDC>(), N(), N(), N(), N(), Bits()); },
            [&] { PatBlt(Any<HDC>(), N(), N(), N(), N(), Bits()); },
            [&] { Rectangle(Any<HDC>(), N(), N(), N(), N()); },
            [&] { MoveToEx(Any<HDC>(), N(), N(), nullptr); },
            [&] { LineTo(Any<HDC>(), N(), N()); },
            [&] { FillRgn(Any<HDC>(), Any<HRGN>(), Any<HBRUSH>()); },
            [&] { SetPixel(Any<HDC>(), N(), N(), Bits()); },
            [&] { GetPixel(Any<HDC>(), N(), N()); },
            [&] { DrawIconEx(Any<HDC>(), N(), N(), Any<HICON>(), N(), N(), 0, Any<HBRUSH>(), Below(12)); },
            [&] {
                WithRect({ N(), N(), N(), N() });
            },
            [&] {
                WithText({ N(), N(), N(), N() });
            },
            [&] { WithBits(); },
        };
        for (int i = 0; i < calls; i++)
            kMoves[Below(std::size(kMoves))]();
        DeleteAll();
    }

private:
    unsigned Below(std::size_t limit) { return static_cast<unsigned>(engine_() % limit); }
    DWORD Bits() { return static_cast<DWORD>(engine_()); }
    // Mostly a coordinate of a small picture.
    int N()
    {
        constexpr int kFar[] = { INT_MIN, INT_MIN + 1, -0x40000000, -65536, 65536, 0x3FFFFFFF, INT_MAX - 1, INT_MAX };
        return Below(4) ? static_cast<int>(Below(40)) - 10 : kFar[Below(std::size(kFar))];
    }

    void Add(HGDIOBJ handle) { handles_.push_back(handle); }
    // One of the last handles, of which some are dead by now, or none.
    template <class Handle>
    Handle Any()
    {
        const HGDIOBJ strange[] = { nullptr, reinterpret_cast<HGDIOBJ>(0x1234) };
        const std::size_t count = std::min<std::size_t>(handles_.size(), 24);
        const std::size_t back = Below(count + 2);
        return static_cast<Handle>(back < count ? handles_[handles_.size() - 1 - back] : strange[back - count]);
    }
    void DeleteAll()
    {
        for (int round = 0; round < 2; round++) { // what is selected goes after its context
            for (const HGDIOBJ handle : handles_)
                static_cast<void>(DeleteObject(handle) || DestroyIcon(static_cast<HICON>(handle)));
        }
    }

    void WithRect(RECT rect)
    {
        FillRect(Any<HDC>(), &rect, Any<HBRUSH>());
        FrameRect(Any<HDC>(), &rect, Any<HBRUSH>());
        InvertRect(Any<HDC>(), &rect);
        RectVisible(Any<HDC>(), &rect);
        RectInRegion(Any<HRGN>(), &rect);
        GetClipBox(Any<HDC>(), &rect);
        GetRgnBox(Any<HRGN>(), &rect);
    }
    void WithText(RECT rect)
    {
        constexpr char kText[] = "a \xB0\xB2\xD7";
        const RECT clip = rect;
        ExtTextOutA(Any<HDC>(), N(), N(), Bits() & 6, &clip, kText, Below(sizeof kText), nullptr);
        DrawTextA(Any<HDC>(), kText, -1, &rect, DT_NOPREFIX | (Bits() & 0x53F));
        TEXTMETRICA metrics;
        GetTextMetricsA(Any<HDC>(), &metrics);
    }
    void WithBits()
    {
        constexpr WORD kDepths[] = { 1, 8, 24, 32 };
        struct {
            BITMAPINFOHEADER header;
            RGBQUAD colours[256];
        } info{};
        info.header = { sizeof info.header, 24, Below(2) ? 24 : -24, 1, kDepths[Below(4)], 0, 0, 0, 0, 0, 0 };
        std::vector<std::byte> bits(24 * 24 * 4);
        auto* whole = reinterpret_cast<BITMAPINFO*>(&info);
        GetDIBits(Any<HDC>(), Any<HBITMAP>(), Below(30), Below(24), bits.data(), whole, 0);
        SetDIBits(Any<HDC>(), Any<HBITMAP>(), Below(30), Below(24), bits.data(), whole, 0);
        char description[200];
        GetObjectA(Any<HGDIOBJ>(), static_cast<int>(Below(sizeof description)), description);
    }

    std::mt19937 engine_;
    std::vector<HGDIOBJ> handles_;
};

} // namespace

TEST(GdiMisuse, BreaksNothing)
{
    Monkey(0).Play(100); // what stays once it was used: stock objects
    const std::size_t before = win32::object_count();
    for (unsigned seed = 1; seed <= 400; seed++) {
        SCOPED_TRACE(seed);
        Monkey(seed).Play(200);
        EXPECT_EQ(win32::object_count(), before);
    }
}
