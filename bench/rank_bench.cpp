// Throughput of the median and the 3-wide minimum/maximum filters on a 1920 x 1080 grey frame.
#include <qel.h>

#include <benchmark/benchmark.h>

#include <random>
#include <vector>

namespace {

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;

std::vector<unsigned char> frame() {
    std::mt19937 rng(2024);
    std::vector<unsigned char> img(static_cast<size_t>(kWidth) * kHeight);
    // A smooth gradient with noise: closer to camera images than pure noise.
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x)
            img[static_cast<size_t>(y) * kWidth + x] = static_cast<unsigned char>((x + y) / 12 + (rng() % 32));
    return img;
}

void setPixels(benchmark::State& state) {
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * kWidth * kHeight);
}

void BM_MedianBoundary0(benchmark::State& state) {
    std::vector<unsigned char> src = frame();
    std::vector<unsigned char> dst(src.size());
    const int half = static_cast<int>(state.range(0));
    for (auto _ : state) {
        QelGryImgMedianBoundary0(src.data(), kWidth, kHeight, half, half, dst.data());
        benchmark::DoNotOptimize(dst.data());
    }
    setPixels(state);
}
BENCHMARK(BM_MedianBoundary0)->Arg(1)->Arg(7)->Arg(15)->Unit(benchmark::kMillisecond);

template <void (*Filter)(unsigned char*, int, int, unsigned char*)>
void BM_MinMax(benchmark::State& state) {
    std::vector<unsigned char> src = frame();
    std::vector<unsigned char> dst(src.size());
    for (auto _ : state) {
        Filter(src.data(), kWidth, kHeight, dst.data());
        benchmark::DoNotOptimize(dst.data());
    }
    setPixels(state);
}
BENCHMARK(BM_MinMax<QelGryImgMaxFilter3xInRow>)->Name("Max3xInRow")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MinMax<QelGryImgMinFilter3xInRow>)->Name("Min3xInRow")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MinMax<QelGryImgMaxFilter3xInCol>)->Name("Max3xInCol")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MinMax<QelGryImgMinFilter3xInCol>)->Name("Min3xInCol")->Unit(benchmark::kMillisecond);

}  // namespace
