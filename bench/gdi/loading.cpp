// A 24-bit bitmap of 510 x 1426 in memory, made into something that can be copied from.
#include "Peers.h"

#include "platform/win32/gdi/bitmap.h"
#include "platform/win32/gdi/dib.h"
#include "skin/GuiSkinWindow.h"

#include <benchmark/benchmark.h>

#include <cstring>

namespace {

constexpr int kWidth = 510;
constexpr int kHeight = 1426;
constexpr int kStride = (kWidth * 3 + 3) / 4 * 4;

// A bitmap file.
std::vector<std::byte> File()
{
    std::vector<std::byte> file(14 + 40 + static_cast<std::size_t>(kStride) * kHeight);
    BITMAPFILEHEADER file_header{ 0x4D42, static_cast<DWORD>(file.size()), 0, 0, 54 };
    BITMAPINFOHEADER header{ 40, kWidth, kHeight, 1, 24, BI_RGB, 0, 0, 0, 0, 0 };
    std::memcpy(file.data(), &file_header, sizeof file_header);
    std::memcpy(file.data() + sizeof file_header, &header, sizeof header);
    for (std::size_t i = 54; i < file.size(); i++)
        file[i] = static_cast<std::byte>(i * 7);
    return file;
}

void BM_LoadOurs(benchmark::State& state)
{
    const std::vector<std::byte> file = File();
    for (auto _ : state)
        benchmark::DoNotOptimize(win32::bitmap_from_file(file));
}
BENCHMARK(BM_LoadOurs)->Name("load/ours");

// As the program's resources are used: in place, with the first page copied out.
void BM_LoadInPlaceAndCopyPage(benchmark::State& state)
{
    const std::vector<std::byte> file = File();
    const bench::Ours target(kWidth, 349);
    for (auto _ : state) {
        const HBITMAP bitmap =
            win32::add<HBITMAP>(win32::bitmap_from_resource(std::span(file).subspan(14), win32::Lifetime::permanent));
        const HDC dc = CreateCompatibleDC(nullptr);
        const HGDIOBJ previous = SelectObject(dc, bitmap);
        BitBlt(target.dc(), 0, 0, kWidth, 349, dc, 0, 0, SRCCOPY);
        SelectObject(dc, previous);
        DeleteDC(dc);
        DeleteObject(bitmap);
    }
}
BENCHMARK(BM_LoadInPlaceAndCopyPage)->Name("load_and_copy_page/ours");

void BM_LoadPixman(benchmark::State& state)
{
    const std::vector<std::byte> file = File();
    for (auto _ : state) {
        pixman_image_t* packed = pixman_image_create_bits(
            PIXMAN_r8g8b8, kWidth, kHeight, reinterpret_cast<std::uint32_t*>(const_cast<std::byte*>(file.data() + 56)),
            kStride);
        pixman_image_t* image = pixman_image_create_bits(PIXMAN_x8r8g8b8, kWidth, kHeight, nullptr, 0);
        pixman_image_composite32(PIXMAN_OP_SRC, packed, nullptr, image, 0, 0, 0, 0, 0, 0, kWidth, kHeight - 1);
        pixman_image_unref(packed);
        pixman_image_unref(image);
    }
}
BENCHMARK(BM_LoadPixman)->Name("load/pixman");

void BM_LoadSdl(benchmark::State& state)
{
    const std::vector<std::byte> file = File();
    for (auto _ : state) {
        SDL_Surface* loaded = SDL_LoadBMP_RW(SDL_RWFromConstMem(file.data(), static_cast<int>(file.size())), 1);
        SDL_Surface* image = SDL_ConvertSurfaceFormat(loaded, SDL_PIXELFORMAT_RGB888, 0);
        SDL_FreeSurface(loaded);
        SDL_FreeSurface(image);
    }
}
BENCHMARK(BM_LoadSdl)->Name("load/sdl2");

void BM_LoadQt(benchmark::State& state)
{
    const std::vector<std::byte> file = File();
    for (auto _ : state)
        benchmark::DoNotOptimize(
            QImage::fromData(reinterpret_cast<const uchar*>(file.data()), static_cast<int>(file.size()), "BMP"));
}
BENCHMARK(BM_LoadQt)->Name("load/qt5");

constexpr int kBlendWidth = 300;
constexpr int kBlendHeight = 200;

// Lays a picture over another by a mask, as a skin does.
void BM_BlendOurs(benchmark::State& state)
{
    const std::vector<std::uint32_t> pixels = bench::Noise(kBlendWidth, kBlendHeight);
    PelkGUI::GuiSkinWindow skin;
    CBitmap below;
    for (CBitmap* bitmap : { &skin.m_bmpImage, &skin.m_bmpAlpha, &below })
        bitmap->CreateBitmap(kBlendWidth, kBlendHeight, 1, 32, pixels.data());
    const CRect all(0, 0, kBlendWidth, kBlendHeight);
    for (auto _ : state)
        skin.PreBlend(&below, all, all);
}
BENCHMARK(BM_BlendOurs)->Name("mask_blend/ours");

void BM_BlendPixman(benchmark::State& state)
{
    bench::Theirs target(kBlendWidth, kBlendHeight);
    bench::Theirs source(kBlendWidth, kBlendHeight);
    std::vector<std::uint32_t> alpha = bench::Noise(kBlendWidth, kBlendHeight);
    pixman_image_t* mask =
        pixman_image_create_bits(PIXMAN_a8, kBlendWidth, kBlendHeight, alpha.data(), (kBlendWidth + 3) / 4 * 4);
    for (auto _ : state)
        pixman_image_composite32(PIXMAN_OP_OVER, source.pixman(), mask, target.pixman(), 0, 0, 0, 0, 0, 0, kBlendWidth,
                                 kBlendHeight);
    pixman_image_unref(mask);
}
BENCHMARK(BM_BlendPixman)->Name("mask_blend/pixman");

void BM_BlendCairo(benchmark::State& state)
{
    bench::Theirs target(kBlendWidth, kBlendHeight);
    bench::Theirs source(kBlendWidth, kBlendHeight);
    std::vector<std::uint32_t> alpha = bench::Noise(kBlendWidth, kBlendHeight);
    cairo_surface_t* mask =
        cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(alpha.data()), CAIRO_FORMAT_A8,
                                            kBlendWidth, kBlendHeight, (kBlendWidth + 3) / 4 * 4);
    cairo_t* context = cairo_create(target.cairo());
    cairo_set_source_surface(context, source.cairo(), 0, 0);
    for (auto _ : state)
        cairo_mask_surface(context, mask, 0, 0);
    cairo_destroy(context);
    cairo_surface_destroy(mask);
}
BENCHMARK(BM_BlendCairo)->Name("mask_blend/cairo");

} // namespace
