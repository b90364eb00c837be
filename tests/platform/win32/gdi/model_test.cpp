// Random drawing against a slow and obvious model of it.
#include "tests/platform/win32/gdi/Pictures.h"

#include "platform/win32/gdi/raster.h"

#include <gtest/gtest.h>

#include <winbase.h>

#include <random>
#include <vector>

using test::Picture;

namespace {

constexpr int kWidth = 23;
constexpr int kHeight = 17;

// A picture as numbers, with what may be drawn and the layout of its context.
struct Model {
    std::vector<COLORREF> pixels = std::vector<COLORREF>(kWidth * kHeight);
    std::vector<bool> clip = std::vector<bool>(kWidth * kHeight, true);
    DWORD layout = 0;

    static bool IsInside(int x, int y) { return x >= 0 && x < kWidth && y >= 0 && y < kHeight; }
    static std::size_t At(int x, int y) { return static_cast<std::size_t>(y) * kWidth + static_cast<std::size_t>(x); }
    int Column(int x) const { return layout & LAYOUT_RTL ? kWidth - 1 - x : x; }
};

COLORREF Combine(DWORD operation, COLORREF pattern, COLORREF source, COLORREF destination)
{
    COLORREF result = 0;
    for (int bit = 0; bit < 24; bit++) {
        const DWORD triple = (pattern >> bit & 1) << 2 | (source >> bit & 1) << 1 | (destination >> bit & 1);
        result |= (operation >> 16 >> triple & 1) << bit;
    }
    return result;
}

struct Extent {
    int x, y, width, height;
};

void StretchModel(Model& target, const Extent& to, const Model& source, const Extent& from, DWORD operation,
                  COLORREF pattern)
{
    const std::vector<COLORREF> before = source.pixels;
    const bool one_is_mirrored = ((target.layout ^ source.layout) & LAYOUT_RTL) != 0;
    const bool keeps = ((target.layout | source.layout) & LAYOUT_BITMAPORIENTATIONPRESERVED) != 0;
    const int width = std::abs(to.width);
    const int height = std::abs(to.height);
    for (int j = 0; j < height; j++) {
        for (int i = 0; i < width; i++) {
            const int column = one_is_mirrored && keeps ? width - 1 - i : i;
            const int x = target.Column(to.x + (to.width < 0 ? -column : column));
            const int y = to.y + (to.height < 0 ? -j : j);
            const int i_source = (2 * i + 1) * std::abs(from.width) / (2 * width);
            const int j_source = (2 * j + 1) * std::abs(from.height) / (2 * height);
            const int x_source = source.Column(from.x + (from.width < 0 ? -i_source : i_source));
            const int y_source = from.y + (from.height < 0 ? -j_source : j_source);
            if (from.width == 0 || from.height == 0 || !Model::IsInside(x, y) || !Model::IsInside(x_source, y_source) ||
                !target.clip[Model::At(x, y)])
                continue;
            COLORREF& pixel = target.pixels[Model::At(x, y)];
            pixel = Combine(operation, pattern, before[Model::At(x_source, y_source)], pixel);
        }
    }
}

void ClipModel(Model& model, const RECT& rect, bool exclude)
{
    for (int y = 0; y < kHeight; y++) {
        for (int x = 0; x < kWidth; x++) {
            const int column = model.Column(x);
            const bool inside = column >= rect.left && column < rect.right && y >= rect.top && y < rect.bottom;
            if (inside == exclude)
                model.clip[Model::At(x, y)] = false;
        }
    }
}

void FillModel(Model& model, const RECT& rect, COLORREF colour, int mix)
{
    for (int y = rect.top; y < rect.bottom; y++) {
        for (int i = rect.left; i < rect.right; i++) {
            const int x = model.Column(i);
            if (!Model::IsInside(x, y) || !model.clip[Model::At(x, y)])
                continue;
            COLORREF& pixel = model.pixels[Model::At(x, y)];
            COLORREF result = 0;
            for (int bit = 0; bit < 24; bit++) {
                const int pair = static_cast<int>((colour >> bit & 1) << 1 | (pixel >> bit & 1));
                result |= static_cast<COLORREF>((mix - 1) >> pair & 1) << bit;
            }
            pixel = result;
        }
    }
}

// Two pictures and their models, drawn on at random.
class Duel {
public:
    explicit Duel(unsigned seed) : chance_(seed)
    {
        for (int i = 0; i < 2; i++) {
            for (int y = 0; y < kHeight; y++) {
                for (int x = 0; x < kWidth; x++) {
                    models_[i].pixels[Model::At(x, y)] = Colour();
                    SetPixel(pictures_[i].dc(), x, y, models_[i].pixels[Model::At(x, y)]);
                }
            }
        }
    }

    void Step()
    {
        const int target = Number(0, 1);
        switch (Number(0, 9)) {
        case 0:
            SetLayoutOf(target);
            break;
        case 1:
            Clip(target);
            break;
        case 2:
        case 3:
            Fill(target);
            break;
        default:
            Stretch(target, Number(0, 1));
        }
    }

    // How many pixels differ; the models of what may be drawn are not looked at.
    int Differences()
    {
        int wrong = 0;
        for (int i = 0; i < 2; i++) {
            const HDC dc = pictures_[i].dc();
            SaveDC(dc);
            SelectClipRgn(dc, nullptr);
            SetLayout(dc, 0);
            for (int y = 0; y < kHeight; y++) {
                for (int x = 0; x < kWidth; x++)
                    wrong += GetPixel(dc, x, y) != models_[i].pixels[Model::At(x, y)];
            }
            RestoreDC(dc, -1);
        }
        return wrong;
    }

private:
    int Number(int from, int to) { return std::uniform_int_distribution<int>(from, to)(chance_); }
    COLORREF Colour() { return static_cast<COLORREF>(Number(0, 0xFFFFFF)); }
    Extent SomeExtent()
    {
        return { Number(-4, kWidth + 4), Number(-4, kHeight + 4), Number(-kWidth, kWidth), Number(-kHeight, kHeight) };
    }

    void SetLayoutOf(int i)
    {
        const DWORD layouts[] = { 0, LAYOUT_RTL, LAYOUT_BITMAPORIENTATIONPRESERVED,
                                  LAYOUT_RTL | LAYOUT_BITMAPORIENTATIONPRESERVED };
        models_[i].layout = layouts[Number(0, 3)];
        SetLayout(pictures_[i].dc(), models_[i].layout);
    }

    void Clip(int i)
    {
        const HDC dc = pictures_[i].dc();
        if (Number(0, 3) == 0) {
            SelectClipRgn(dc, nullptr);
            models_[i].clip.assign(models_[i].clip.size(), true);
            return;
        }
        const int x = Number(-3, kWidth);
        const int y = Number(-3, kHeight);
        const RECT rect{ x, y, x + Number(0, kWidth), y + Number(0, kHeight) };
        const bool exclude = Number(0, 1) == 0;
        if (exclude)
            ExcludeClipRect(dc, rect.left, rect.top, rect.right, rect.bottom);
        else
            IntersectClipRect(dc, rect.left, rect.top, rect.right, rect.bottom);
        ClipModel(models_[i], rect, exclude);
    }

    void Fill(int i)
    {
        const HDC dc = pictures_[i].dc();
        const COLORREF pen_colour = Colour();
        const COLORREF brush_colour = Colour();
        const int mix = Number(R2_BLACK, R2_WHITE);
        const int x = Number(-3, kWidth);
        const int y = Number(-3, kHeight);
        const RECT rect{ x, y, x + Number(0, 8), y + Number(0, 8) };
        const HPEN pen = CreatePen(PS_SOLID, 1, pen_colour);
        const HBRUSH brush = CreateSolidBrush(brush_colour);
        const HGDIOBJ old_pen = SelectObject(dc, pen);
        const HGDIOBJ old_brush = SelectObject(dc, brush);
        SetROP2(dc, mix);
        Rectangle(dc, rect.left, rect.top, rect.right, rect.bottom);
        SelectObject(dc, old_pen);
        SelectObject(dc, old_brush);
        DeleteObject(pen);
        DeleteObject(brush);
        const RECT inside{ rect.left + 1, rect.top + 1, rect.right - 1, rect.bottom - 1 };
        Model framed = models_[i];
        FillModel(framed, rect, pen_colour, mix);
        FillModel(models_[i], inside, brush_colour, mix);
        for (int py = rect.top; py < rect.bottom; py++) { // the frame is the rectangle less its inside
            for (int px = rect.left; px < rect.right; px++) {
                const bool is_inside = px >= inside.left && px < inside.right && py >= inside.top && py < inside.bottom;
                const int column = models_[i].Column(px);
                if (!is_inside && Model::IsInside(column, py))
                    models_[i].pixels[Model::At(column, py)] = framed.pixels[Model::At(column, py)];
            }
        }
    }

    void Stretch(int target, int source)
    {
        const DWORD operations[] = { SRCCOPY,    SRCCOPY,   SRCCOPY,    SRCAND,   SRCPAINT, SRCINVERT,
                                     NOTSRCCOPY, MERGECOPY, MERGEPAINT, PATPAINT, SRCERASE };
        const DWORD operation = operations[Number(0, static_cast<int>(std::size(operations)) - 1)];
        const Extent to = SomeExtent();
        Extent from = SomeExtent();
        if (Number(0, 1) == 0) {
            from.width = to.width;
            from.height = to.height;
        }
        StretchBlt(pictures_[target].dc(), to.x, to.y, to.width, to.height, pictures_[source].dc(), from.x, from.y,
                   from.width, from.height, operation);
        StretchModel(models_[target], to, models_[source], from, operation, RGB(255, 255, 255));
    }

    std::mt19937 chance_;
    Picture pictures_[2]{ Picture(kWidth, kHeight), Picture(kWidth, kHeight) };
    Model models_[2];
};

} // namespace

TEST(GdiModel, AgreesWithRandomDrawing)
{
    for (unsigned seed = 0; seed < 60; seed++) {
        Duel duel(seed);
        for (int step = 0; step < 40; step++) {
            duel.Step();
            ASSERT_EQ(duel.Differences(), 0) << "seed " << seed << ", step " << step;
        }
    }
}

// Rows of any length, four pixels at a time and the rest one by one, against the rule for a pixel.
TEST(GdiModel, MixesRowsAsPixels)
{
    std::mt19937 chance(7);
    for (int count = 0; count < 2000; count++) {
        std::vector<std::uint32_t> under(static_cast<std::size_t>(count % 40));
        std::vector<std::uint8_t> coverage(under.size());
        const auto over = static_cast<std::uint32_t>(chance()) & win32::kWhite;
        std::vector<std::uint32_t> expected;
        for (std::size_t i = 0; i < under.size(); i++) {
            under[i] = static_cast<std::uint32_t>(chance()) & win32::kWhite;
            coverage[i] = chance() % 3 ? static_cast<std::uint8_t>(chance()) : chance() % 2 ? 255 : 0;
            std::uint32_t mixed = 0;
            for (int shift = 0; shift < 24; shift += 8) {
                const std::uint32_t sum =
                    (over >> shift & 255) * coverage[i] + (under[i] >> shift & 255) * (255 - coverage[i]);
                mixed |= (2 * sum + 255) / 510 << shift; // to the nearest
            }
            expected.push_back(mixed);
        }
        win32::mix_row(over, under.data(), coverage.data(), static_cast<int>(under.size()));
        ASSERT_EQ(under, expected);
    }
}
