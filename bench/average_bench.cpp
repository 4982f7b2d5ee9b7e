// Box filters on a 1920 × 1080 frame: the running sums keep the cost per pixel flat as the window
// grows.
#include <qel.h>

#include "bench_images.h"

#include <vector>

namespace {

// Argument: the half size; the window is (2·half+1) × (2·half+1). `Filter` is any of the box
// filters taking (src, width, height, halfX, halfY, dst), on frames of `channels` bytes a pixel.
template <class Filter>
void BM_Box(benchmark::State& state, int channels, Filter filter) {
    const int half = static_cast<int>(state.range(0));
    std::vector<unsigned char> src = bench::frame(channels), dst(src.size());
    for (auto _ : state) {
        filter(src.data(), bench::kWidth, bench::kHeight, half, half, dst.data());
        benchmark::DoNotOptimize(dst.data());
        benchmark::ClobberMemory();
    }
    bench::set_pixels_processed(state);
}
BENCHMARK_CAPTURE(BM_Box, GryAverageFilterFast, 1, QelGryAverageFilterFast)->Arg(1)->Arg(7)->Arg(15);
BENCHMARK_CAPTURE(BM_Box, GryAverageFilter, 1, QelGryAverageFilter)->Arg(1)->Arg(7)->Arg(15);
BENCHMARK_CAPTURE(BM_Box, GryAverageFilterFastNonBoundary, 1, QelGryAverageFilterFastNonBoundary)
    ->Arg(1)->Arg(7)->Arg(15);
BENCHMARK_CAPTURE(BM_Box, RGBAverageFilterFast, 3, QelRGBAverageFilterFast)->Arg(1)->Arg(15);

}  // namespace
