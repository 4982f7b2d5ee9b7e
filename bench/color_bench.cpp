// Whole-frame colour conversions on a full-HD frame; rates are pixels per second.
#include <qel.h>

#include <benchmark/benchmark.h>

#include <random>
#include <vector>

namespace {

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;
constexpr int64_t kPixels = static_cast<int64_t>(kWidth) * kHeight;

std::vector<unsigned char> random_bytes(size_t n) {
    std::mt19937 rng(7);
    std::vector<unsigned char> b(n);
    for (auto& x : b) x = static_cast<unsigned char>(rng());
    return b;
}

void BM_RGB2Gry(benchmark::State& state) {
    std::vector<unsigned char> rgb = random_bytes(static_cast<size_t>(kPixels) * 3);
    std::vector<unsigned char> grey(static_cast<size_t>(kPixels));
    for (auto _ : state) {
        QelRGB2Gry(rgb.data(), kWidth, kHeight, grey.data());
        benchmark::DoNotOptimize(grey.data());
    }
    state.SetItemsProcessed(state.iterations() * kPixels);
}
BENCHMARK(BM_RGB2Gry);

void BM_YUV420P2RGB(benchmark::State& state) {
    std::vector<unsigned char> frame = random_bytes(static_cast<size_t>(kPixels) * 3 / 2);
    std::vector<unsigned char> rgb(static_cast<size_t>(kPixels) * 3);
    for (auto _ : state) {
        benchmark::DoNotOptimize(QelYUV420P2RGB(frame.data(), kWidth, kHeight, rgb.data()));
        benchmark::DoNotOptimize(rgb.data());
    }
    state.SetItemsProcessed(state.iterations() * kPixels);
}
BENCHMARK(BM_YUV420P2RGB);

void BM_RGB2YUV420P(benchmark::State& state) {
    std::vector<unsigned char> rgb = random_bytes(static_cast<size_t>(kPixels) * 3);
    std::vector<unsigned char> frame(static_cast<size_t>(kPixels) * 3 / 2);
    for (auto _ : state) {
        benchmark::DoNotOptimize(QelRGB2YUV420P(rgb.data(), kWidth, kHeight, frame.data()));
        benchmark::DoNotOptimize(frame.data());
    }
    state.SetItemsProcessed(state.iterations() * kPixels);
}
BENCHMARK(BM_RGB2YUV420P);

}  // namespace
