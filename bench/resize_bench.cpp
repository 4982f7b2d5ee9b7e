// Resizing a 1920 × 1080 frame: bilinear down to 1280 × 720 in fixed point and in double
// precision, and halving by 2 × 2 averages.
#include <qel.h>

#include "bench_images.h"

#include <vector>

namespace {

constexpr int kOutWidth = 1280;
constexpr int kOutHeight = 720;

// `Resize` takes (src, width, height, dst, dstWidth, dstHeight), on frames of `channels` bytes a pixel.
template <class Resize>
void BM_Bilinear(benchmark::State& state, int channels, Resize resize) {
    std::vector<unsigned char> src = bench::frame(channels);
    std::vector<unsigned char> dst(static_cast<size_t>(kOutWidth) * kOutHeight * static_cast<size_t>(channels));
    for (auto _ : state) {
        resize(src.data(), bench::kWidth, bench::kHeight, dst.data(), kOutWidth, kOutHeight);
        benchmark::DoNotOptimize(dst.data());
        benchmark::ClobberMemory();
    }
    bench::set_pixels_processed(state);
}
BENCHMARK_CAPTURE(BM_Bilinear, GryFast, 1, QelGryImgBilinearInterpolattionFast);
BENCHMARK_CAPTURE(BM_Bilinear, GryStd, 1, QelGryImgBilinearInterpolattionStd);
BENCHMARK_CAPTURE(BM_Bilinear, RgbFast, 3, QelRgbImgBilinearInterpolattionFast);

void BM_Shrink2x2ByAvr(benchmark::State& state) {
    std::vector<unsigned char> src = bench::frame(), dst(static_cast<size_t>(bench::kPixels / 4));
    for (auto _ : state) {
        QelShrinkGryImg2x2ByAvr(src.data(), bench::kWidth, bench::kHeight, dst.data());
        benchmark::DoNotOptimize(dst.data());
        benchmark::ClobberMemory();
    }
    bench::set_pixels_processed(state);
}
BENCHMARK(BM_Shrink2x2ByAvr);

}  // namespace
