// Finding line segments on the edge chains of a 1920 x 1080 frame of about a thousand discs: the
// boundary of the binary frame, and the Shen Jun edges of a noisy grey version of it.
#include <qel.h>

#include "bench_images.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <vector>

namespace {

constexpr int kDiscs = 1000;
constexpr int kMinRadius = 5;
constexpr int kMaxRadius = 40;
constexpr double kStraightnessRatio = 0.9;
constexpr double kTolerance = 1.5;
constexpr int kMinChainLength = 10;
constexpr int kEdgeThreshold = 40;  // 8 or more: the integer edge operator
constexpr int kMaxLines = 100000;

void run(benchmark::State& state, std::vector<unsigned char>& img, bool grey) {
    if (!QelImgChainLines_Initialize(bench::kWidth, bench::kHeight, kStraightnessRatio, kTolerance, kMinChainLength,
                                     kEdgeThreshold, kMaxLines)) {
        state.SkipWithError("no buffers");
        return;
    }
    int lines = 0;
    for (auto _ : state) {
        lines = grey ? QelImgChainLines_DoGryImg(img.data(), bench::kWidth, bench::kHeight, true)
                     : QelImgChainLines_DoBinImg(img.data(), bench::kWidth, bench::kHeight, true);
        benchmark::DoNotOptimize(lines);
    }
    state.counters["lines"] = lines;
    bench::set_pixels_processed(state);
}

void BM_ChainLinesBinary(benchmark::State& state) {
    std::vector<unsigned char> img = bench::discs(kDiscs, kMinRadius, kMaxRadius, 7);
    run(state, img, false);
}
BENCHMARK(BM_ChainLinesBinary)->Unit(benchmark::kMillisecond);

void BM_ChainLinesGrey(benchmark::State& state) {
    // Discs at 170 on 50, each pixel plus up to 31 of the frame's noise.
    std::vector<unsigned char> img = bench::discs(kDiscs, kMinRadius, kMaxRadius, 7);
    const std::vector<unsigned char> noise = bench::frame();
    for (std::size_t i = 0; i < img.size(); ++i)
        img[i] = static_cast<unsigned char>((img[i] != 0 ? 170 : 50) + (noise[i] & 31));
    run(state, img, true);
}
BENCHMARK(BM_ChainLinesGrey)->Unit(benchmark::kMillisecond);

}  // namespace
