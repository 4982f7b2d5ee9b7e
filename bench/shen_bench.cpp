// Throughput of the Shen Jun edge detector on a 1920 x 1080 grey frame: the integer member (edge
// image only, and edge image plus point list) and the double-precision member.
#include <qel.h>

#include "bench_images.h"

#include <vector>

namespace {

using bench::kHeight;
using bench::kWidth;

constexpr int kThreshold = 20;

// Argument: the shift (1 smooths least, 3 most); the cost does not depend on it.
void BM_ShenJunEdgeFast(benchmark::State& state) {
    std::vector<unsigned char> src = bench::frame(), smooth(src.size()), dst(src.size());
    const int shift = static_cast<int>(state.range(0));
    for (auto _ : state) {
        QelShenJunEdgeFast(src.data(), smooth.data(), kWidth, kHeight, shift, kThreshold, dst.data());
        benchmark::DoNotOptimize(dst.data());
    }
    bench::set_pixels_processed(state);
}
BENCHMARK(BM_ShenJunEdgeFast)->Arg(1)->Arg(3)->Unit(benchmark::kMillisecond);

void BM_ShenJunEdgeFastWithPoints(benchmark::State& state) {
    std::vector<unsigned char> src = bench::frame(), smooth(src.size()), dst(src.size());
    std::vector<int> xs(src.size()), ys(src.size());
    for (auto _ : state) {
        const int n = QelShenJunEdgeFast(src.data(), smooth.data(), kWidth, kHeight, 2, kThreshold, xs.data(),
                                         ys.data(), static_cast<int>(xs.size()), dst.data());
        benchmark::DoNotOptimize(n);
    }
    bench::set_pixels_processed(state);
}
BENCHMARK(BM_ShenJunEdgeFastWithPoints)->Unit(benchmark::kMillisecond);

void BM_ShenJunEdgeFine(benchmark::State& state) {
    std::vector<unsigned char> src = bench::frame(), dst(src.size());
    std::vector<double> smooth(src.size());
    for (auto _ : state) {
        QelShenJunEdgeFine(src.data(), smooth.data(), kWidth, kHeight, 0.25, kThreshold, dst.data());
        benchmark::DoNotOptimize(dst.data());
    }
    bench::set_pixels_processed(state);
}
BENCHMARK(BM_ShenJunEdgeFine)->Unit(benchmark::kMillisecond);

}  // namespace
