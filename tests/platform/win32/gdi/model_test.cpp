// Random drawing and random regions against slow and obvious models of them.
#include "tests/support/Picture.h"

#include "platform/win32/gdi/raster.h"

#include <gtest/gtest.h>

#include <winbase.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <optional>
#include <random>
#include <vector>

using test::Picture;
using test::Selected;

namespace {

class Chance {
public:
    explicit Chance(unsigned seed) : engine_(seed) {}
    int Number(int from, int to) { return std::uniform_int_distribution<int>(from, to)(engine_); }
    COLORREF Colour() { return static_cast<COLORREF>(Number(0, 0xFFFFFF)); }
    // Of up to `most` pixels a side, about a picture of that size.
    RECT Rect(int width, int height, int most)
    {
        const int x = Number(-3, width);
        const int y = Number(-3, height);
        return { x, y, x + Number(0, most), y + Number(0, most) };
    }

private:
    std::mt19937 engine_;
};

bool Contains(const RECT& rect, int x, int y)
{
    return x >= rect.left && x < rect.right && y >= rect.top && y < rect.bottom;
}

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
        return b;
    }
}

// A picture as numbers, with what may be drawn and how its context places points.
struct Model {
    int width, height;
    std::vector<COLORREF> pixels;
    std::vector<bool> clip;
    DWORD layout = 0;
    POINT origin{};

    // Where the pixel of a logical point stands; nothing: outside.
    std::optional<std::size_t> At(int x, int y) const
    {
        x = layout & LAYOUT_RTL ? width - 1 - x - origin.x : x + origin.x;
        y += origin.y;
        if (!Contains({ 0, 0, width, height }, x, y))
            return std::nullopt;
        return static_cast<std::size_t>(y * width + x);
    }

    // By one of the 256 operations between the bits of pattern, source and destination.
    void Draw(int x, int y, DWORD operation, COLORREF pattern, COLORREF source)
    {
        const std::optional<std::size_t> at = At(x, y);
        if (!at || !clip[*at])
            return;
        COLORREF result = 0;
        for (int bit = 0; bit < 24; bit++) {
            const DWORD triple = (pattern >> bit & 1) << 2 | (source >> bit & 1) << 1 | (pixels[*at] >> bit & 1);
            result |= (operation >> 16 >> triple & 1) << bit;
        }
        pixels[*at] = result;
    }

    // With a rectangle in logical coordinates.
    void Clip(const RECT& rect, int mode)
    {
        std::vector<bool> operand(clip.size());
        for (int y = rect.top; y < rect.bottom; y++) {
            for (int x = rect.left; x < rect.right; x++) {
                if (const std::optional<std::size_t> at = At(x, y))
                    operand[*at] = true;
            }
        }
        for (std::size_t i = 0; i < clip.size(); i++)
            clip[i] = Combined(clip[i], operand[i], mode);
    }
};

struct Extent {
    int x, y, width, height;
    // Its i-th column: a negative extent runs leftward.
    int Column(int i) const { return width < 0 ? x - i : x + i; }
    int Row(int i) const { return height < 0 ? y - i : y + i; }
};

void StretchModel(Model& target, const Extent& to, const Model& source, const Extent& from, DWORD operation)
{
    const Model before = source;
    const bool is_turned = ((target.layout ^ source.layout) & LAYOUT_RTL) &&
                           ((target.layout | source.layout) & LAYOUT_BITMAPORIENTATIONPRESERVED);
    const int width = std::abs(to.width);
    const int height = std::abs(to.height);
    for (int j = 0; j < height && from.height != 0; j++) {
        for (int i = 0; i < width && from.width != 0; i++) {
            const auto at = before.At(from.Column((2 * i + 1) * std::abs(from.width) / (2 * width)),
                                      from.Row((2 * j + 1) * std::abs(from.height) / (2 * height)));
            if (at)
                target.Draw(to.Column(is_turned ? width - 1 - i : i), to.Row(j), operation, RGB(255, 255, 255),
                            before.pixels[*at]);
        }
    }
}

// A mix mode as an operation that the source has no part in.
DWORD OperationOf(int mix)
{
    DWORD operation = 0;
    for (unsigned triple = 0; triple < 8; triple++)
        operation |= (static_cast<DWORD>(mix - 1) >> (triple / 4 * 2 + triple % 2) & 1) << triple;
    return operation << 16;
}

// Two pictures and their models, drawn on at random.
class Duel {
public:
    Duel(unsigned seed, int width, int height) : chance_(seed), width_(width), height_(height)
    {
        for (int i = 0; i < 2; i++) {
            for (int y = 0; y < height; y++) {
                for (int x = 0; x < width; x++) {
                    models_[i].pixels.push_back(chance_.Colour());
                    SetPixel(pictures_[i], x, y, models_[i].pixels.back());
                }
            }
        }
    }

    void Step()
    {
        const int i = chance_.Number(0, 1);
        switch (chance_.Number(0, 9)) {
        case 0:
            MoveAndMirror(pictures_[i], models_[i]);
            break;
        case 1:
            Clip(pictures_[i], models_[i]);
            break;
        case 2:
        case 3:
            DrawRectangle(pictures_[i], models_[i]);
            break;
        default:
            Stretch(i, chance_.Number(0, 1));
        }
    }

    bool Agrees() const
    {
        return pictures_[0].Pixels() == models_[0].pixels && pictures_[1].Pixels() == models_[1].pixels;
    }

private:
    void MoveAndMirror(HDC dc, Model& model)
    {
        model.layout = static_cast<DWORD>(chance_.Number(0, 1) * LAYOUT_RTL) |
                       static_cast<DWORD>(chance_.Number(0, 1) * LAYOUT_BITMAPORIENTATIONPRESERVED);
        const POINT window{ chance_.Number(-3, 3), chance_.Number(-3, 3) };
        const POINT viewport{ chance_.Number(-3, 3), chance_.Number(-3, 3) };
        model.origin = { viewport.x - window.x, viewport.y - window.y };
        SetLayout(dc, model.layout);
        SetWindowOrgEx(dc, window.x, window.y, nullptr);
        SetViewportOrgEx(dc, viewport.x, viewport.y, nullptr);
    }

    void Clip(HDC dc, Model& model)
    {
        const RECT rect = chance_.Rect(width_, height_, chance_.Number(0, 1) == 0 ? 8 : width_);
        switch (chance_.Number(0, 5)) {
        case 0:
            SelectClipRgn(dc, nullptr);
            model.clip.assign(model.clip.size(), true);
            break;
        case 1:
            IntersectClipRect(dc, rect.left, rect.top, rect.right, rect.bottom);
            model.Clip(rect, RGN_AND);
            break;
        case 2:
        case 3:
            ExcludeClipRect(dc, rect.left, rect.top, rect.right, rect.bottom);
            model.Clip(rect, RGN_DIFF);
            break;
        default: // regions do not move with the origins
            const int mode = chance_.Number(RGN_AND, RGN_COPY);
            const HRGN region = CreateRectRgn(rect.left + model.origin.x, rect.top + model.origin.y,
                                              rect.right + model.origin.x, rect.bottom + model.origin.y);
            ExtSelectClipRgn(dc, region, mode);
            DeleteObject(region);
            model.Clip(rect, mode);
        }
    }

    void DrawRectangle(HDC dc, Model& model)
    {
        const RECT rect = chance_.Rect(width_, height_, 8);
        const COLORREF colours[] = { chance_.Colour(), chance_.Colour() };
        const int mix = chance_.Number(R2_BLACK, R2_WHITE);
        const Selected brush(dc, CreateSolidBrush(colours[0]));
        const Selected pen(dc, CreatePen(PS_SOLID, 1, colours[1]));
        SetROP2(dc, mix);
        Rectangle(dc, rect.left, rect.top, rect.right, rect.bottom);
        const RECT inside{ rect.left + 1, rect.top + 1, rect.right - 1, rect.bottom - 1 };
        for (int y = rect.top; y < rect.bottom; y++) {
            for (int x = rect.left; x < rect.right; x++)
                model.Draw(x, y, OperationOf(mix), colours[Contains(inside, x, y) ? 0 : 1], 0);
        }
    }

    void Stretch(int target, int source)
    {
        constexpr DWORD kOperations[] = { SRCCOPY,    SRCCOPY,   SRCCOPY,    SRCAND,   SRCPAINT, SRCINVERT,
                                          NOTSRCCOPY, MERGECOPY, MERGEPAINT, PATPAINT, SRCERASE };
        const DWORD operation = kOperations[chance_.Number(0, static_cast<int>(std::size(kOperations)) - 1)];
        const auto extent = [this] {
            const int margin = std::min(4, height_ / 4);
            return Extent{ chance_.Number(-margin, width_ + margin), chance_.Number(-margin, height_ + margin),
                           chance_.Number(-width_, width_), chance_.Number(-height_, height_) };
        };
        const Extent to = extent();
        Extent from = extent();
        if (chance_.Number(0, 3) != 0) // mirrored at most
            from.width = chance_.Number(0, 3) != 0 ? to.width : -to.width;
        if (chance_.Number(0, 3) != 0)
            from.height = chance_.Number(0, 3) != 0 ? to.height : -to.height;
        StretchBlt(pictures_[target], to.x, to.y, to.width, to.height, pictures_[source], from.x, from.y, from.width,
                   from.height, operation);
        StretchModel(models_[target], to, models_[source], from, operation);
    }

    Chance chance_;
    const int width_;
    const int height_;
    Picture pictures_[2]{ Picture(width_, height_), Picture(width_, height_) };
    const std::vector<bool> all_ = std::vector<bool>(static_cast<std::size_t>(width_ * height_), true);
    Model models_[2]{ { width_, height_, {}, all_ }, { width_, height_, {}, all_ } };
};

} // namespace

TEST(GdiModel, AgreesWithRandomDrawing)
{
    struct Case {
        unsigned duels;
        int width, height;
    };
    for (const Case& c : { Case{ 60, 23, 17 }, Case{ 12, 1100, 2 } }) { // rows are worked on 512 pixels at a time
        for (unsigned seed = 0; seed < c.duels; seed++) {
            Duel duel(seed, c.width, c.height);
            for (int step = 0; step < 40; step++) {
                duel.Step();
                ASSERT_TRUE(duel.Agrees()) << c.width << " wide, seed " << seed << ", step " << step;
            }
        }
    }
}

TEST(GdiModel, AgreesWithRandomRegions)
{
    constexpr int kSize = 24;
    const HRGN region = CreateRectRgn(0, 0, 0, 0);
    const HRGN moved = CreateRectRgn(0, 0, 1, 1);
    for (unsigned seed = 0; seed < 60; seed++) {
        Chance chance(seed);
        SetRectRgn(region, 0, 0, 0, 0);
        Model grid{ kSize, kSize, {}, std::vector<bool>(kSize * kSize) };
        for (int step = 0; step < 12; step++) {
            const int x = chance.Number(0, kSize);
            const int y = chance.Number(0, kSize);
            const RECT rect{ x, y, chance.Number(x, kSize), chance.Number(y, kSize) };
            const int mode = step < 3 ? RGN_OR : chance.Number(RGN_AND, RGN_DIFF);
            const HRGN operand = CreateRectRgnIndirect(&rect);
            const int kind = CombineRgn(region, region, operand, mode);
            DeleteObject(operand);
            grid.Clip(rect, mode);
            std::vector<bool> bits;
            for (int i = 0; i < kSize * kSize; i++)
                bits.push_back(PtInRegion(region, i % kSize, i / kSize) != 0);
            ASSERT_EQ(bits, grid.clip) << "seed " << seed << ", step " << step;
            EXPECT_EQ(kind == NULLREGION, std::find(bits.begin(), bits.end(), true) == bits.end());
        }
        // Moved there and back it is itself; moved away it is another.
        CombineRgn(moved, region, nullptr, RGN_COPY);
        EXPECT_TRUE(EqualRgn(moved, region));
        OffsetRgn(moved, 5, -3);
        RECT box{};
        RECT moved_box{};
        const bool is_empty = GetRgnBox(region, &box) == NULLREGION;
        GetRgnBox(moved, &moved_box);
        EXPECT_EQ(EqualRgn(moved, region) != 0, is_empty);
        EXPECT_EQ(moved_box.left - box.left, is_empty ? 0 : 5);
        OffsetRgn(moved, -5, 3);
        EXPECT_TRUE(EqualRgn(moved, region));
    }
    DeleteObject(region);
    DeleteObject(moved);
}

// Every weight of every two values in each channel, by rows of any length: four pixels at a time and the rest one by
// one.
TEST(GdiModel, MixesEveryWeightToTheNearest)
{
    constexpr std::size_t kRow = 259;
    for (std::uint32_t over = 0; over < 256; over++) {
        const std::uint32_t pixel = over | (255 - over) << 8 | (over ^ 0x5A) << 16;
        for (std::uint32_t weight = 0; weight < 256; weight++) {
            std::uint32_t row[kRow];
            std::uint8_t coverage[kRow];
            std::uint32_t expected[kRow];
            for (std::uint32_t i = 0; i < kRow; i++) {
                const std::uint32_t under = (i + over + weight) % 256;
                row[i] = under * 0x010101;
                coverage[i] = static_cast<std::uint8_t>(i % 7 == over % 7 ? 0 : weight);
                expected[i] = 0;
                for (int shift = 0; shift < 24; shift += 8)
                    expected[i] |= ((pixel >> shift & 255) * coverage[i] + under * (255 - coverage[i]) + 127) / 255
                                   << shift;
            }
            win32::mix_row(pixel, row, coverage, kRow);
            ASSERT_TRUE(std::equal(row, row + kRow, expected)) << over << ' ' << weight;
        }
    }
}
