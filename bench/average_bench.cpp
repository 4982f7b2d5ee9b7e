// Box filters on a 1920 × 1080 grey frame: the running sums keep the cost per pixel flat as the
// window grows.
#include <qel.h>

#include <benchmark/benchmark.h>

#include <random>
#include <vector>

namespace {

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;

std::vector<unsigned char> random_frame(size_t bytes) {
    std::mt19937 rng(1);
    std::vector<unsigned char> v(bytes);
    for (auto& b : v) b = static_cast<unsigned char>(rng());
    return v;
}

// Argument: the half size; the window is (2·half+1) × (2·half+1).
void BM_GryAverageFilterFast(benchmark::State& state) {
    const int half = static_cast<int>(state.range(0));
    std::vector<unsigned char> src = random_frame(size_t{kWidth} * kHeight), dst(src.size());
    for (auto _ : state) {
        benchmark::DoNotOptimize(QelGryAverageFilterFast(src.data(), kWidth, kHeight, half, half, dst.data()));
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kWidth * kHeight);
}
BENCHMARK(BM_GryAverageFilterFast)->Arg(1)->Arg(7)->Arg(15);

void BM_GryAverageFilter(benchmark::State& state) {
    const int half = static_cast<int>(state.range(0));
    std::vector<unsigned char> src = random_frame(size_t{kWidth} * kHeight), dst(src.size());
    for (auto _ : state) {
        QelGryAverageFilter(src.data(), kWidth, kHeight, half, half, dst.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kWidth * kHeight);
}
BENCHMARK(BM_GryAverageFilter)->Arg(1)->Arg(7)->Arg(15);

void BM_GryAverageFilterFastNonBoundary(benchmark::State& state) {
    const int half = static_cast<int>(state.range(0));
    std::vector<unsigned char> src = random_frame(size_t{kWidth} * kHeight), dst(src.size());
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            QelGryAverageFilterFastNonBoundary(src.data(), kWidth, kHeight, half, half, dst.data()));
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kWidth * kHeight);
}
BENCHMARK(BM_GryAverageFilterFastNonBoundary)->Arg(1)->Arg(7)->Arg(15);

void BM_RGBAverageFilterFast(benchmark::State& state) {
    const int half = static_cast<int>(state.range(0));
    std::vector<unsigned char> src = random_frame(size_t{kWidth} * kHeight * 3), dst(src.size());
    for (auto _ : state) {
        benchmark::DoNotOptimize(QelRGBAverageFilterFast(src.data(), kWidth, kHeight, half, half, dst.data()));
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kWidth * kHeight);
}
BENCHMARK(BM_RGBAverageFilterFast)->Arg(1)->Arg(15);

}  // namespace
