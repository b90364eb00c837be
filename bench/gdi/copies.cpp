// Copies, stretches, mirrors, tiles, fills and blends. Each row's name is "what/who".
#include "Peers.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>

using bench::Ours;
using bench::Theirs;

namespace {

constexpr int kWidth = 510;
constexpr int kPageHeight = 349;
constexpr int kPictureHeight = 1426;
constexpr int kPartWidth = 78;
constexpr int kPartHeight = 30;

struct Copy {
    int x, y, width, height, source_x, source_y, source_width, source_height;
};
constexpr Copy kPage = { 0, 0, kWidth, kPageHeight, 0, kPageHeight, kWidth, kPageHeight };
constexpr Copy kPart = { 100, 200, kPartWidth, kPartHeight, 10, 1396, kPartWidth, kPartHeight };
constexpr Copy kStretch = { 0, 0, kWidth, kPageHeight, 10, 1396, kPartWidth, kPartHeight };
constexpr Copy kMirror = { kWidth - 1, 0, -kWidth, kPageHeight, 0, 0, kWidth, kPageHeight };

void BM_Ours(benchmark::State& state, const Copy& c)
{
    const Ours target(kWidth, kPageHeight);
    const Ours source(kWidth, kPictureHeight);
    SetStretchBltMode(target.dc(), COLORONCOLOR);
    for (auto _ : state) {
        StretchBlt(target.dc(), c.x, c.y, c.width, c.height, source.dc(), c.source_x, c.source_y, c.source_width,
                   c.source_height, SRCCOPY);
        benchmark::ClobberMemory();
    }
}

void BM_Memcpy(benchmark::State& state, const Copy& c)
{
    Theirs target(kWidth, kPageHeight);
    Theirs source(kWidth, kPictureHeight);
    for (auto _ : state) {
        for (int y = 0; y < c.height; y++)
            std::memcpy(target.pixels() + (c.y + y) * kWidth + c.x,
                        source.pixels() + (c.source_y + y) * kWidth + c.source_x,
                        static_cast<std::size_t>(c.width) * 4);
        benchmark::ClobberMemory();
    }
}

void BM_Pixman(benchmark::State& state, const Copy& c)
{
    Theirs target(kWidth, kPageHeight);
    Theirs source(kWidth, kPictureHeight);
    const bool is_mirrored = c.width < 0;
    const int width = std::abs(c.width);
    if (c.width != c.source_width) {
        pixman_transform_t transform;
        pixman_transform_init_scale(&transform,
                                    pixman_double_to_fixed((is_mirrored ? -1.0 : 1.0) * c.source_width / width),
                                    pixman_double_to_fixed(1.0 * c.source_height / c.height));
        transform.matrix[0][2] = pixman_int_to_fixed(c.source_x + (is_mirrored ? c.source_width : 0));
        transform.matrix[1][2] = pixman_int_to_fixed(c.source_y);
        pixman_image_set_transform(source.pixman(), &transform);
        pixman_image_set_filter(source.pixman(), PIXMAN_FILTER_NEAREST, nullptr, 0);
        for (auto _ : state) {
            pixman_image_composite32(PIXMAN_OP_SRC, source.pixman(), nullptr, target.pixman(), 0, 0, 0, 0,
                                     is_mirrored ? 0 : c.x, c.y, width, c.height);
            benchmark::ClobberMemory();
        }
        return;
    }
    for (auto _ : state) {
        pixman_image_composite32(PIXMAN_OP_SRC, source.pixman(), nullptr, target.pixman(), c.source_x, c.source_y, 0, 0,
                                 c.x, c.y, width, c.height);
        benchmark::ClobberMemory();
    }
}

void BM_Cairo(benchmark::State& state, const Copy& c)
{
    Theirs target(kWidth, kPageHeight);
    Theirs source(kWidth, kPictureHeight);
    const bool is_mirrored = c.width < 0;
    const int width = std::abs(c.width);
    const int left = is_mirrored ? c.x - width + 1 : c.x;
    cairo_t* context = cairo_create(target.cairo());
    cairo_set_operator(context, CAIRO_OPERATOR_SOURCE);
    for (auto _ : state) {
        cairo_save(context);
        cairo_rectangle(context, left, c.y, width, c.height);
        cairo_clip(context);
        cairo_translate(context, is_mirrored ? left + width : left, c.y);
        cairo_scale(context, 1.0 * c.width / c.source_width, 1.0 * c.height / c.source_height);
        cairo_set_source_surface(context, source.cairo(), -c.source_x, -c.source_y);
        cairo_pattern_set_filter(cairo_get_source(context), CAIRO_FILTER_NEAREST);
        cairo_paint(context);
        cairo_restore(context);
        benchmark::ClobberMemory();
    }
    cairo_destroy(context);
}

void BM_Sdl(benchmark::State& state, const Copy& c) // has no mirror
{
    Theirs target(kWidth, kPageHeight);
    Theirs source(kWidth, kPictureHeight);
    const SDL_Rect from{ c.source_x, c.source_y, c.source_width, c.source_height };
    for (auto _ : state) {
        SDL_Rect to{ c.x, c.y, c.width, c.height };
        if (c.width == c.source_width && c.height == c.source_height)
            SDL_BlitSurface(source.sdl(), &from, target.sdl(), &to);
        else
            SDL_BlitScaled(source.sdl(), &from, target.sdl(), &to);
        benchmark::ClobberMemory();
    }
}

void BM_Qt(benchmark::State& state, const Copy& c)
{
    Theirs target(kWidth, kPageHeight);
    Theirs source(kWidth, kPictureHeight);
    QPainter painter(&target.qt());
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    const QRect from(c.source_x, c.source_y, c.source_width, c.source_height);
    for (auto _ : state) {
        if (c.width < 0) {
            painter.drawImage(c.x + c.width + 1, c.y, source.qt().copy(from).mirrored(true, false));
        } else {
            painter.drawImage(QRect(c.x, c.y, c.width, c.height), source.qt(), from);
        }
        benchmark::ClobberMemory();
    }
}

BENCHMARK_CAPTURE(BM_Ours, page, kPage)->Name("copy_page/ours");
BENCHMARK_CAPTURE(BM_Memcpy, page, kPage)->Name("copy_page/memcpy");
BENCHMARK_CAPTURE(BM_Pixman, page, kPage)->Name("copy_page/pixman");
BENCHMARK_CAPTURE(BM_Cairo, page, kPage)->Name("copy_page/cairo");
BENCHMARK_CAPTURE(BM_Sdl, page, kPage)->Name("copy_page/sdl2");
BENCHMARK_CAPTURE(BM_Qt, page, kPage)->Name("copy_page/qt5");
BENCHMARK_CAPTURE(BM_Ours, part, kPart)->Name("copy_part/ours");
BENCHMARK_CAPTURE(BM_Memcpy, part, kPart)->Name("copy_part/memcpy");
BENCHMARK_CAPTURE(BM_Pixman, part, kPart)->Name("copy_part/pixman");
BENCHMARK_CAPTURE(BM_Cairo, part, kPart)->Name("copy_part/cairo");
BENCHMARK_CAPTURE(BM_Sdl, part, kPart)->Name("copy_part/sdl2");
BENCHMARK_CAPTURE(BM_Qt, part, kPart)->Name("copy_part/qt5");
BENCHMARK_CAPTURE(BM_Ours, stretch, kStretch)->Name("stretch/ours");
BENCHMARK_CAPTURE(BM_Pixman, stretch, kStretch)->Name("stretch/pixman");
BENCHMARK_CAPTURE(BM_Cairo, stretch, kStretch)->Name("stretch/cairo");
BENCHMARK_CAPTURE(BM_Sdl, stretch, kStretch)->Name("stretch/sdl2");
BENCHMARK_CAPTURE(BM_Qt, stretch, kStretch)->Name("stretch/qt5");
BENCHMARK_CAPTURE(BM_Ours, mirror, kMirror)->Name("mirror/ours");
BENCHMARK_CAPTURE(BM_Pixman, mirror, kMirror)->Name("mirror/pixman");
BENCHMARK_CAPTURE(BM_Cairo, mirror, kMirror)->Name("mirror/cairo");
BENCHMARK_CAPTURE(BM_Qt, mirror, kMirror)->Name("mirror/qt5");

// A row of 510 x 30 from copies of 8 x 30, the last one cut.
constexpr int kTile = 8;

void BM_TileOurs(benchmark::State& state)
{
    const Ours target(kWidth, kPageHeight);
    const Ours source(kWidth, kPictureHeight);
    for (auto _ : state) {
        for (int x = 0; x < kWidth; x += kTile)
            BitBlt(target.dc(), x, 0, std::min(kTile, kWidth - x), kPartHeight, source.dc(), 10, 1396, SRCCOPY);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_TileOurs)->Name("tile/ours");

void BM_TilePixman(benchmark::State& state)
{
    Theirs target(kWidth, kPageHeight);
    Theirs source(kWidth, kPictureHeight);
    for (auto _ : state) {
        for (int x = 0; x < kWidth; x += kTile)
            pixman_image_composite32(PIXMAN_OP_SRC, source.pixman(), nullptr, target.pixman(), 10, 1396, 0, 0, x, 0,
                                     std::min(kTile, kWidth - x), kPartHeight);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_TilePixman)->Name("tile/pixman");

void BM_TileCairo(benchmark::State& state)
{
    Theirs target(kWidth, kPageHeight);
    Theirs source(kWidth, kPictureHeight);
    cairo_t* context = cairo_create(target.cairo());
    cairo_set_operator(context, CAIRO_OPERATOR_SOURCE);
    for (auto _ : state) {
        for (int x = 0; x < kWidth; x += kTile) {
            cairo_set_source_surface(context, source.cairo(), x - 10, -1396);
            cairo_rectangle(context, x, 0, std::min(kTile, kWidth - x), kPartHeight);
            cairo_fill(context);
        }
        benchmark::ClobberMemory();
    }
    cairo_destroy(context);
}
BENCHMARK(BM_TileCairo)->Name("tile/cairo");

void BM_TileSdl(benchmark::State& state)
{
    Theirs target(kWidth, kPageHeight);
    Theirs source(kWidth, kPictureHeight);
    for (auto _ : state) {
        for (int x = 0; x < kWidth; x += kTile) {
            const SDL_Rect from{ 10, 1396, std::min(kTile, kWidth - x), kPartHeight };
            SDL_Rect to{ x, 0, from.w, from.h };
            SDL_BlitSurface(source.sdl(), &from, target.sdl(), &to);
        }
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_TileSdl)->Name("tile/sdl2");

void BM_TileQt(benchmark::State& state)
{
    Theirs target(kWidth, kPageHeight);
    Theirs source(kWidth, kPictureHeight);
    QPainter painter(&target.qt());
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    for (auto _ : state) {
        for (int x = 0; x < kWidth; x += kTile)
            painter.drawImage(QPoint(x, 0), source.qt(), QRect(10, 1396, std::min(kTile, kWidth - x), kPartHeight));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_TileQt)->Name("tile/qt5");

void BM_FillOurs(benchmark::State& state)
{
    const Ours target(kWidth, kPageHeight);
    const HBRUSH brush = CreateSolidBrush(RGB(1, 2, 3));
    const RECT rect{ 0, 0, kWidth, kPageHeight };
    for (auto _ : state) {
        FillRect(target.dc(), &rect, brush);
        benchmark::ClobberMemory();
    }
    DeleteObject(brush);
}
BENCHMARK(BM_FillOurs)->Name("fill/ours");

void BM_FillPixman(benchmark::State& state)
{
    Theirs target(kWidth, kPageHeight);
    const pixman_color_t colour{ 0x0101, 0x0202, 0x0303, 0xFFFF };
    const pixman_box32_t box{ 0, 0, kWidth, kPageHeight };
    for (auto _ : state) {
        pixman_image_fill_boxes(PIXMAN_OP_SRC, target.pixman(), &colour, 1, &box);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_FillPixman)->Name("fill/pixman");

void BM_FillCairo(benchmark::State& state)
{
    Theirs target(kWidth, kPageHeight);
    cairo_t* context = cairo_create(target.cairo());
    cairo_set_source_rgb(context, 0.1, 0.2, 0.3);
    for (auto _ : state) {
        cairo_rectangle(context, 0, 0, kWidth, kPageHeight);
        cairo_fill(context);
        benchmark::ClobberMemory();
    }
    cairo_destroy(context);
}
BENCHMARK(BM_FillCairo)->Name("fill/cairo");

void BM_FillSdl(benchmark::State& state)
{
    Theirs target(kWidth, kPageHeight);
    for (auto _ : state) {
        SDL_FillRect(target.sdl(), nullptr, 0x010203);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_FillSdl)->Name("fill/sdl2");

void BM_FillQt(benchmark::State& state)
{
    Theirs target(kWidth, kPageHeight);
    QPainter painter(&target.qt());
    for (auto _ : state) {
        painter.fillRect(0, 0, kWidth, kPageHeight, QColor(1, 2, 3));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_FillQt)->Name("fill/qt5");

} // namespace
