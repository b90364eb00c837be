// Regions: an ellipse, a thousand rectangles united, two large ones combined.
#include "Peers.h"

#include <benchmark/benchmark.h>

#include <QPainterPath>
#include <QRegion>

namespace {

struct Place {
    int x, y;
};

std::vector<Place> Places()
{
    std::vector<Place> places;
    std::uint32_t state = 3;
    for (int i = 0; i < 1000; i++) {
        state = state * 1664525 + 1013904223;
        places.push_back({ static_cast<int>(state >> 8) % 500, static_cast<int>(state >> 20) % 340 });
    }
    return places;
}

void BM_EllipseOurs(benchmark::State& state)
{
    for (auto _ : state)
        DeleteObject(CreateEllipticRgn(0, 0, 510, 349));
}
BENCHMARK(BM_EllipseOurs)->Name("ellipse/ours");

void BM_EllipseQt(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(QRegion(0, 0, 510, 349, QRegion::Ellipse));
}
BENCHMARK(BM_EllipseQt)->Name("ellipse/qt5");

void BM_UniteOurs(benchmark::State& state)
{
    const std::vector<Place> places = Places();
    for (auto _ : state) {
        const HRGN all = CreateRectRgn(0, 0, 0, 0);
        const HRGN one = CreateRectRgn(0, 0, 0, 0);
        for (const Place& place : places) {
            SetRectRgn(one, place.x, place.y, place.x + 10, place.y + 10);
            CombineRgn(all, all, one, RGN_OR);
        }
        DeleteObject(one);
        DeleteObject(all);
    }
}
BENCHMARK(BM_UniteOurs)->Name("unite_1000/ours");

void BM_UnitePixman(benchmark::State& state)
{
    const std::vector<Place> places = Places();
    for (auto _ : state) {
        pixman_region32_t all;
        pixman_region32_init(&all);
        for (const Place& place : places)
            pixman_region32_union_rect(&all, &all, place.x, place.y, 10, 10);
        pixman_region32_fini(&all);
    }
}
BENCHMARK(BM_UnitePixman)->Name("unite_1000/pixman");

void BM_UniteCairo(benchmark::State& state)
{
    const std::vector<Place> places = Places();
    for (auto _ : state) {
        cairo_region_t* all = cairo_region_create();
        for (const Place& place : places) {
            const cairo_rectangle_int_t rect{ place.x, place.y, 10, 10 };
            cairo_region_union_rectangle(all, &rect);
        }
        cairo_region_destroy(all);
    }
}
BENCHMARK(BM_UniteCairo)->Name("unite_1000/cairo");

void BM_UniteQt(benchmark::State& state)
{
    const std::vector<Place> places = Places();
    for (auto _ : state) {
        QRegion all;
        for (const Place& place : places)
            all += QRect(place.x, place.y, 10, 10);
        benchmark::DoNotOptimize(all);
    }
}
BENCHMARK(BM_UniteQt)->Name("unite_1000/qt5");

void BM_CombineOurs(benchmark::State& state)
{
    const HRGN a = CreateEllipticRgn(0, 0, 510, 349);
    const HRGN b = CreateEllipticRgn(100, 50, 610, 399);
    const HRGN result = CreateRectRgn(0, 0, 0, 0);
    for (auto _ : state) {
        CombineRgn(result, a, b, RGN_DIFF);
        CombineRgn(result, a, b, RGN_XOR);
    }
    for (const HRGN region : { a, b, result })
        DeleteObject(region);
}
BENCHMARK(BM_CombineOurs)->Name("combine/ours");

void BM_CombineQt(benchmark::State& state)
{
    const QRegion a(0, 0, 510, 349, QRegion::Ellipse);
    const QRegion b(100, 50, 510, 349, QRegion::Ellipse);
    for (auto _ : state) {
        benchmark::DoNotOptimize(a.subtracted(b));
        benchmark::DoNotOptimize(a.xored(b));
    }
}
BENCHMARK(BM_CombineQt)->Name("combine/qt5");

} // namespace
