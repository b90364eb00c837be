// The main image over a window's picture through the alpha image, beside pixman with a mask that is ready for it.
#include <benchmark/benchmark.h>

#include <pixman.h>

#include "GallerySkin.h"

namespace {

using namespace bench;

constexpr int kWidth = 510;
constexpr int kHeight = 349;

void BM_BlendOurs(benchmark::State& state)
{
    GallerySkin skin(false);
    skin.m_bmpAlpha.CreateBitmap(kSheetWidth, kSheetHeight, 1, 32, Sheet().data());
    CBitmap bmp;
    bmp.CreateBitmap(kWidth, kHeight, 1, 32, Sheet().data());
    const CRect rc(0, 0, kWidth, kHeight);
    for (auto _ : state) {
        skin.PreBlend(&bmp, rc, rc);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_BlendOurs)->Name("blend_510x349/ours");

void BM_BlendPixman(benchmark::State& state)
{
    std::vector<std::uint32_t> above = Sheet();
    std::vector<std::uint32_t> below = Sheet();
    std::vector<std::uint8_t> weights;
    for (const std::uint32_t pixel : Sheet())
        weights.push_back(static_cast<std::uint8_t>(pixel));
    std::vector<std::uint32_t> packed((weights.size() + 3) / 4);
    std::copy(weights.begin(), weights.end(), reinterpret_cast<std::uint8_t*>(packed.data()));
    const auto image = [](pixman_format_code_t format, std::vector<std::uint32_t>& pixels, int stride) {
        return pixman_image_create_bits(format, kSheetWidth, kSheetHeight, pixels.data(), stride);
    };
    pixman_image_t* const source = image(PIXMAN_x8r8g8b8, above, kSheetWidth * 4);
    pixman_image_t* const mask = image(PIXMAN_a8, packed, kSheetWidth);
    pixman_image_t* const target = image(PIXMAN_x8r8g8b8, below, kSheetWidth * 4);
    for (auto _ : state) {
        pixman_image_composite32(PIXMAN_OP_OVER, source, mask, target, 0, 0, 0, 0, 0, 0, kWidth, kHeight);
        benchmark::ClobberMemory();
    }
    pixman_image_unref(source);
    pixman_image_unref(mask);
    pixman_image_unref(target);
}
BENCHMARK(BM_BlendPixman)->Name("blend_510x349/pixman");

} // namespace
