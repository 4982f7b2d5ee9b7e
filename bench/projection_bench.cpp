// Projections on the full-HD frame: grey and binary profiles, the colour profiles, and the bar
// charts drawn from them. Rates are pixels per second of the projected image.
#include <qel.h>

#include "bench_images.h"

#include <vector>

namespace {

using bench::kHeight;
using bench::kWidth;

void BM_GryImgPrjXY(benchmark::State& state) {
    std::vector<unsigned char> img = bench::frame();
    std::vector<int> prjX(kWidth), prjY(kHeight);
    for (auto _ : state) {
        QelGryImgPrjXY(img.data(), kWidth, kHeight, prjX.data(), prjY.data());
        benchmark::DoNotOptimize(prjX.data());
    }
    bench::set_pixels_processed(state);
}
BENCHMARK(BM_GryImgPrjXY);

void BM_BinImgPrjXYInRect(benchmark::State& state) {
    std::vector<unsigned char> img = bench::discs(400, 8, 60, 11);
    std::vector<int> prjX(kWidth), prjY(kHeight);
    for (auto _ : state) {
        QelBinImgPrjXYInRect(img.data(), kWidth, kHeight, 0, kWidth - 1, 0, kHeight - 1, prjX.data(), prjY.data());
        benchmark::DoNotOptimize(prjX.data());
    }
    bench::set_pixels_processed(state);
}
BENCHMARK(BM_BinImgPrjXYInRect);

void BM_RGBImgPrj2X_ThreeProfiles(benchmark::State& state) {
    std::vector<unsigned char> rgb = bench::frame(3);
    std::vector<int> r(kWidth), g(kWidth), b(kWidth);
    for (auto _ : state) {
        QelRGBImgPrj2X(rgb.data(), kWidth, kHeight, r.data(), g.data(), b.data());
        benchmark::DoNotOptimize(r.data());
    }
    bench::set_pixels_processed(state);
}
BENCHMARK(BM_RGBImgPrj2X_ThreeProfiles);

void BM_RGBImgPrj2X_Weighted(benchmark::State& state) {
    std::vector<unsigned char> rgb = bench::frame(3);
    std::vector<int> prj(kWidth);
    for (auto _ : state) {
        QelRGBImgPrj2X(rgb.data(), kWidth, kHeight, prj.data());
        benchmark::DoNotOptimize(prj.data());
    }
    bench::set_pixels_processed(state);
}
BENCHMARK(BM_RGBImgPrj2X_Weighted);

void BM_DrawPrjXAndY(benchmark::State& state) {
    std::vector<unsigned char> img = bench::frame();
    std::vector<int> prjX(kWidth), prjY(kHeight);
    QelGryImgPrjXY(img.data(), kWidth, kHeight, prjX.data(), prjY.data());
    std::vector<unsigned char> chart(static_cast<size_t>(bench::kPixels));
    for (auto _ : state) {
        QelDrawPrjX(chart.data(), kWidth, kHeight, prjX.data(), kWidth, 255);
        QelDrawPrjY(chart.data(), kWidth, kHeight, prjY.data(), kHeight, 128);
        benchmark::DoNotOptimize(chart.data());
    }
    bench::set_pixels_processed(state);
}
BENCHMARK(BM_DrawPrjXAndY);

}  // namespace
