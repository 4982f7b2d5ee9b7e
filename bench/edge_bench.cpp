// Throughput of the Sobel gradient (and, for comparison, two other gradient members) on a
// 1920 x 1080 grey frame.
#include <qel.h>

#include "bench_images.h"

#include <vector>

namespace {

using bench::kHeight;
using bench::kWidth;

template <void (*Gradient)(unsigned char*, int, int, unsigned char*)>
void BM_Gradient(benchmark::State& state) {
    std::vector<unsigned char> src = bench::frame(), dst(src.size());
    for (auto _ : state) {
        Gradient(src.data(), kWidth, kHeight, dst.data());
        benchmark::DoNotOptimize(dst.data());
    }
    bench::set_pixels_processed(state);
}
BENCHMARK_TEMPLATE(BM_Gradient, QelGryImgSobel)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_Gradient, QelGryImgSobel90Just)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_Gradient, QelRobert)->Unit(benchmark::kMillisecond);

// Argument: the half size; the running box sums keep the cost flat as it grows.
void BM_GradientByPrewitt0(benchmark::State& state) {
    std::vector<unsigned char> src = bench::frame(), dst(src.size());
    const int half = static_cast<int>(state.range(0));
    for (auto _ : state) {
        QelGradientByPrewitt0(src.data(), kWidth, kHeight, half, half, dst.data());
        benchmark::DoNotOptimize(dst.data());
    }
    bench::set_pixels_processed(state);
}
BENCHMARK(BM_GradientByPrewitt0)->Arg(1)->Arg(15)->Unit(benchmark::kMillisecond);

}  // namespace
