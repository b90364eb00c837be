// Calls in any order, with handles that are dead, null or of another kind, and numbers from all ends of their range:
// whatever comes, nothing breaks and nothing is left behind.
#include "tests/support/Picture.h"

#include "platform/win32/gdi/objects.h"

#include <gtest/gtest.h>

#include <winbase.h>

#include <climits>
#include <functional>
#include <iterator>
#include <random>

namespace {

// Picks arguments.
class Chance {
public:
    explicit Chance(unsigned seed) : engine_(seed) {}

    unsigned Below(std::size_t limit) { return static_cast<unsigned>(engine_() % limit); }
    template <class Values>
    auto Of(const Values& values)
    {
        return values[Below(std::size(values))];
    }
    // Mostly a coordinate of a small picture.
    int Number()
    {
        constexpr int kFar[] = { INT_MIN, INT_MIN + 1, -0x40000000, -65536, 65536, 0x3FFFFFFF, INT_MAX - 1, INT_MAX };
        return Below(4) ? static_cast<int>(Below(40)) - 10 : Of(kFar);
    }
    RECT Rect() { return { Number(), Number(), Number(), Number() }; }
    DWORD Bits() { return static_cast<DWORD>(engine_()); }

private:
    std::mt19937 engine_;
};

// Handles of every kind, of which some are dead by now.
class Handles {
public:
    explicit Handles(Chance& chance) : chance_(chance), handles_{ nullptr, reinterpret_cast<HGDIOBJ>(0x1234) } {}

    void Add(HGDIOBJ handle)
    {
        if (handles_.size() < kMost) {
            handles_.push_back(handle);
            return;
        }
        std::swap(handle, handles_[2 + chance_.Below(kMost - 2)]);
        if (!Delete(handle))
            selected_.push_back(handle);
    }
    template <class Handle>
    Handle Any()
    {
        return static_cast<Handle>(chance_.Of(handles_));
    }
    // Contexts go first: what is selected cannot be deleted.
    void DeleteAll()
    {
        handles_.insert(handles_.end(), selected_.begin(), selected_.end());
        for (int round = 0; round < 2; round++) {
            for (const HGDIOBJ handle : handles_)
                Delete(handle);
        }
    }

private:
    static constexpr std::size_t kMost = 24;
    static bool Delete(HGDIOBJ handle) { return DeleteObject(handle) || DestroyIcon(static_cast<HICON>(handle)); }

    Chance& chance_;
    std::vector<HGDIOBJ> handles_;
    std::vector<HGDIOBJ> selected_; // could not be deleted yet
};

class Monkey {
public:
    // Begins with three contexts that can be drawn with.
    explicit Monkey(unsigned seed) : chance_(seed), handles_(chance_)
    {
        for (const int depth : { 32, 32, 1 }) {
            const HDC dc = CreateCompatibleDC(nullptr);
            const HBITMAP bitmap = CreateBitmap(20, 20, 1, static_cast<UINT>(depth), nullptr);
            SelectObject(dc, bitmap);
            handles_.Add(dc);
            handles_.Add(bitmap);
        }
    }

    void Play(int calls)
    {
        const std::function<void()> kMoves[] = {
            [&] { handles_.Add(CreateCompatibleDC(Any<HDC>())); },
            [&] { handles_.Add(CreateCompatibleDC(nullptr)); },
            [&] { handles_.Add(CreateCompatibleBitmap(Any<HDC>(), N(), N())); },
            [&] { handles_.Add(CreateBitmap(N(), N(), 1, chance_.Below(2) ? 1 : 32, nullptr)); },
            [&] { handles_.Add(CreateBitmap(20, 20, 1, 32, nullptr)); },
            [&] { handles_.Add(CreatePen(static_cast<int>(chance_.Below(7)), N(), chance_.Bits())); },
            [&] { handles_.Add(CreateSolidBrush(chance_.Bits())); },
            [&] { handles_.Add(CreatePatternBrush(Any<HBITMAP>())); },
            [&] { handles_.Add(CreateRectRgn(N(), N(), N(), N())); },
            [&] { handles_.Add(CreateRoundRectRgn(N(), N(), N(), N(), N(), N())); },
            [&] { handles_.Add(CreateFontA(N(), N(), N(), N(), N(), 1, 1, 1, 1, 0, 0, 0, 0, "\xCB\xCE\xCC")); },
            [&] { handles_.Add(GetStockObject(static_cast<int>(chance_.Below(20)))); },
            [&] {
                const ICONINFO info{ TRUE, chance_.Bits(), chance_.Bits(), Any<HBITMAP>(), Any<HBITMAP>() };
                handles_.Add(CreateIconIndirect(&info));
            },
            [&] { handles_.Add(CopyIcon(Any<HICON>())); },
            [&] { DestroyIcon(Any<HICON>()); },
            [&] { DeleteObject(Any<HGDIOBJ>()); },
            [&] { DeleteDC(Any<HDC>()); },
            [&] { SelectObject(Any<HDC>(), Any<HGDIOBJ>()); },
            [&] { SelectObject(Any<HDC>(), Any<HGDIOBJ>()); },
            [&] { SaveDC(Any<HDC>()); },
            [&] { RestoreDC(Any<HDC>(), N()); },
            [&] { SetLayout(Any<HDC>(), chance_.Below(10)); },
            [&] { SetROP2(Any<HDC>(), static_cast<int>(chance_.Below(18))); },
            [&] { SetTextAlign(Any<HDC>(), chance_.Bits() & 0x11F); },
            [&] { SetWindowOrgEx(Any<HDC>(), N(), N(), nullptr); },
            [&] { SetViewportOrgEx(Any<HDC>(), N(), N(), nullptr); },
            [&] { OffsetViewportOrgEx(Any<HDC>(), N(), N(), nullptr); },
            [&] { CombineRgn(Any<HRGN>(), Any<HRGN>(), Any<HRGN>(), static_cast<int>(chance_.Below(7))); },
            [&] { OffsetRgn(Any<HRGN>(), N(), N()); },
            [&] { ExtSelectClipRgn(Any<HDC>(), Any<HRGN>(), static_cast<int>(chance_.Below(7))); },
            [&] { SelectClipRgn(Any<HDC>(), nullptr); },
            [&] { IntersectClipRect(Any<HDC>(), N(), N(), N(), N()); },
            [&] { ExcludeClipRect(Any<HDC>(), N(), N(), N(), N()); },
            [&] { OffsetClipRgn(Any<HDC>(), N(), N()); },
            [&] { BitBlt(Any<HDC>(), N(), N(), N(), N(), Any<HDC>(), N(), N(), chance_.Bits()); },
            [&] { StretchBlt(Any<HDC>(), N(), N(), N(), N(), Any<HDC>(), N(), N(), N(), N(), SRCCOPY); },
            [&] { StretchBlt(Any<HDC>(), N(), N(), N(), N(), Any<HDC>(), N(), N(), N(), N(), chance_.Bits()); },
            [&] { PatBlt(Any<HDC>(), N(), N(), N(), N(), chance_.Bits()); },
            [&] { Rectangle(Any<HDC>(), N(), N(), N(), N()); },
            [&] { MoveToEx(Any<HDC>(), N(), N(), nullptr); },
            [&] { LineTo(Any<HDC>(), N(), N()); },
            [&] { FillRgn(Any<HDC>(), Any<HRGN>(), Any<HBRUSH>()); },
            [&] { SetPixel(Any<HDC>(), N(), N(), chance_.Bits()); },
            [&] { GetPixel(Any<HDC>(), N(), N()); },
            [&] { DrawIconEx(Any<HDC>(), N(), N(), Any<HICON>(), N(), N(), 0, Any<HBRUSH>(), chance_.Below(12)); },
            [&] { WithRect(chance_.Rect()); },
            [&] { WithText(chance_.Rect()); },
            [&] { WithBits(); },
        };
        for (int i = 0; i < calls; i++)
            chance_.Of(kMoves)();
        handles_.DeleteAll();
    }

private:
    template <class Handle>
    Handle Any()
    {
        return handles_.Any<Handle>();
    }
    int N() { return chance_.Number(); }

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
        ExtTextOutA(Any<HDC>(), N(), N(), chance_.Bits() & 6, &clip, kText, chance_.Below(sizeof kText), nullptr);
        DrawTextA(Any<HDC>(), kText, -1, &rect, DT_NOPREFIX | (chance_.Bits() & 0x53F));
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
        info.header = { sizeof info.header, 24, chance_.Below(2) ? 24 : -24, 1, chance_.Of(kDepths), 0, 0, 0, 0, 0, 0 };
        std::vector<std::byte> bits(24 * 24 * 4);
        auto* whole = reinterpret_cast<BITMAPINFO*>(&info);
        GetDIBits(Any<HDC>(), Any<HBITMAP>(), chance_.Below(30), chance_.Below(24), bits.data(), whole, 0);
        SetDIBits(Any<HDC>(), Any<HBITMAP>(), chance_.Below(30), chance_.Below(24), bits.data(), whole, 0);
        char description[200];
        GetObjectA(Any<HGDIOBJ>(), static_cast<int>(chance_.Below(sizeof description)), description);
    }

    Chance chance_;
    Handles handles_;
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
