// Drawing on the 1920 x 1080 frame: lines between random points (grey and RGB, shallow and steep
// mixed) and ellipses of growing radius, up to one much larger than the frame, whose columns
// outside the frame are skipped in runs.
#include <qel.h>

#include "bench_images.h"

#include <benchmark/benchmark.h>

#include <random>
#include <vector>

namespace {

constexpr int kLines = 1000;

struct Segment {
    int x1, y1, x2, y2;
};

std::vector<Segment> segments() {
    std::mt19937 rng(5);
    std::uniform_int_distribution<int> x(0, bench::kWidth - 1), y(0, bench::kHeight - 1);
    std::vector<Segment> s(kLines);
    for (auto& v : s) v = {x(rng), y(rng), x(rng), y(rng)};
    return s;
}

void BM_GryLine(benchmark::State& state) {
    std::vector<unsigned char> img = bench::frame();
    const std::vector<Segment> lines = segments();
    for (auto _ : state) {
        for (const Segment& s : lines)
            QelGryLine(img.data(), bench::kWidth, bench::kHeight, s.x1, s.y1, s.x2, s.y2, 255);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kLines);
}
BENCHMARK(BM_GryLine)->Unit(benchmark::kMicrosecond);

void BM_RGBLine(benchmark::State& state) {
    std::vector<unsigned char> img = bench::frame(3);
    const std::vector<Segment> lines = segments();
    for (auto _ : state) {
        for (const Segment& s : lines)
            QelRGBLine(img.data(), bench::kWidth, bench::kHeight, s.x1, s.y1, s.x2, s.y2, 255, 128, 0);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kLines);
}
BENCHMARK(BM_RGBLine)->Unit(benchmark::kMicrosecond);

void BM_DrawCircle(benchmark::State& state) {
    std::vector<unsigned char> img = bench::frame();
    const int r = static_cast<int>(state.range(0));
    for (auto _ : state) {
        QelDrawCircle(img.data(), bench::kWidth, bench::kHeight, bench::kWidth / 2, bench::kHeight / 2, r, r, 255);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_DrawCircle)->ArgName("radius")->Arg(10)->Arg(100)->Arg(500)->Arg(1000000)->Unit(benchmark::kMicrosecond);

}  // namespace
