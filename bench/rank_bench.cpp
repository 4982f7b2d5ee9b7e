// Throughput of the median and the 3-wide minimum/maximum filters on a 1920 x 1080 grey frame.
#include <qel.h>

#include "bench_images.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace {

void BM_MedianBoundary0(benchmark::State& state) {
    std::vector<unsigned char> src = bench::frame();
    std::vector<unsigned char> dst(src.size());
    const int half = static_cast<int>(state.range(0));
    for (auto _ : state) {
        QelGryImgMedianBoundary0(src.data(), bench::kWidth, bench::kHeight, half, half, dst.data());
        benchmark::DoNotOptimize(dst.data());
    }
    bench::set_pixels_processed(state);
}
BENCHMARK(BM_MedianBoundary0)->Arg(1)->Arg(2)->Arg(3)->Arg(7)->Arg(15)->Unit(benchmark::kMillisecond);

template <void (*Filter)(unsigned char*, int, int, unsigned char*)>
void BM_MinMax(benchmark::State& state) {
    std::vector<unsigned char> src = bench::frame();
    std::vector<unsigned char> dst(src.size());
    for (auto _ : state) {
        Filter(src.data(), bench::kWidth, bench::kHeight, dst.data());
        benchmark::DoNotOptimize(dst.data());
    }
    bench::set_pixels_processed(state);
}
BENCHMARK(BM_MinMax<QelGryImgMaxFilter3xInRow>)->Name("Max3xInRow")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MinMax<QelGryImgMinFilter3xInRow>)->Name("Min3xInRow")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MinMax<QelGryImgMaxFilter3xInCol>)->Name("Max3xInCol")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MinMax<QelGryImgMinFilter3xInCol>)->Name("Min3xInCol")->Unit(benchmark::kMillisecond);

}  // namespace
