// The Hough line finder on the 1920 x 1080 frame: a transform over 10 000 edge points (eight long
// lines and scattered noise) across all thetas, and ten further lines taken from its accumulator.
#include <qel.h>

#include "bench_images.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <vector>

namespace {

constexpr int kPoints = 10000;
constexpr int kLines = 8;
constexpr int kLinePoints = 800;  // per line; the rest is noise

struct EdgePoints {
    std::vector<int> x, y;
};

EdgePoints edge_points() {
    std::mt19937 rng(8);
    std::uniform_int_distribution<int> px(0, bench::kWidth - 1), py(0, bench::kHeight - 1);
    EdgePoints p;
    for (int l = 0; l < kLines; ++l) {
        // A line through a random point at a random angle, sampled where it lies inside the frame.
        const double angle = (rng() % 180) * 3.1415926 / 180;
        const double ox = px(rng), oy = py(rng);
        for (int i = 0, t = -kLinePoints; i < kLinePoints && t < 4 * kLinePoints; ++t) {
            const int x = static_cast<int>(ox + t * std::cos(angle));
            const int y = static_cast<int>(oy + t * std::sin(angle));
            if (x < 0 || y < 0 || x >= bench::kWidth || y >= bench::kHeight) continue;
            p.x.push_back(x);
            p.y.push_back(y);
            ++i;
        }
    }
    while (p.x.size() < static_cast<size_t>(kPoints)) {
        p.x.push_back(px(rng));
        p.y.push_back(py(rng));
    }
    return p;
}

void BM_HoughTransform(benchmark::State& state) {
    EdgePoints p = edge_points();
    QelHoughLines_Initialize(bench::kWidth, bench::kHeight);
    double a, b, c;
    int rho, theta;
    for (auto _ : state)
        benchmark::DoNotOptimize(QelHoughLines_HT(p.x.data(), p.y.data(), kPoints, 0, 180, &a, &b, &c, &rho, &theta));
    state.SetItemsProcessed(state.iterations() * kPoints);
}
BENCHMARK(BM_HoughTransform)->Unit(benchmark::kMillisecond);

void BM_HoughNextLines(benchmark::State& state) {
    EdgePoints p = edge_points();
    QelHoughLines_Initialize(bench::kWidth, bench::kHeight);
    double a, b, c;
    int rho, theta;
    for (auto _ : state) {
        state.PauseTiming();
        QelHoughLines_HT(p.x.data(), p.y.data(), kPoints, 0, 180, &a, &b, &c, &rho, &theta);
        state.ResumeTiming();
        for (int i = 0; i < 10; ++i)
            benchmark::DoNotOptimize(QelHoughLines_GetNextLine(10, 5, &a, &b, &c, &rho, &theta));
    }
}
BENCHMARK(BM_HoughNextLines)->Unit(benchmark::kMillisecond);

}  // namespace
