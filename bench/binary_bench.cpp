// Throughput of thinning and 3 × 3 dilation on 1920 x 1080 binary frames: filled discs (objects
// as a thresholded camera image shows them) and speckle noise (every pixel on an object edge).
#include <qel.h>

#include "bench_images.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace {

constexpr int kDiscs = 80;
constexpr int kMinRadius = 8;
constexpr int kMaxRadius = 60;

std::vector<unsigned char> discs() { return bench::discs(kDiscs, kMinRadius, kMaxRadius, 7); }

std::vector<unsigned char> speckle() {
    std::vector<unsigned char> img = bench::frame();
    for (auto& p : img) p = (p & 1) ? 255 : 0;
    return img;
}

std::vector<unsigned char> input(int64_t kind) { return kind == 0 ? discs() : speckle(); }

void BM_BinImgThin(benchmark::State& state) {
    std::vector<unsigned char> src = input(state.range(0));
    std::vector<unsigned char> work(src.size()), out(src.size());
    for (auto _ : state) {
        benchmark::DoNotOptimize(QelBinImgThin(src.data(), work.data(), bench::kWidth, bench::kHeight, out.data()));
        benchmark::ClobberMemory();
    }
    bench::set_pixels_processed(state);
}
BENCHMARK(BM_BinImgThin)->ArgName("speckle")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void BM_BinImgMaxFilter3x3(benchmark::State& state) {
    std::vector<unsigned char> src = input(state.range(0));
    std::vector<unsigned char> out(src.size());
    for (auto _ : state) {
        QelBinImgMaxFilter3x3(src.data(), bench::kWidth, bench::kHeight, out.data());
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    bench::set_pixels_processed(state);
}
BENCHMARK(BM_BinImgMaxFilter3x3)->ArgName("speckle")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
