// Listing the contours of a 1920 x 1080 binary frame holding about a thousand blobs (discs, some
// with a hole), as a thresholded inspection image shows them.
#include <qel.h>

#include "bench_images.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace {

constexpr int kBlobs = 1000;
constexpr int kMinRadius = 3;
constexpr int kMaxRadius = 20;

void BM_GetContours(benchmark::State& state) {
    // Every third blob is a ring.
    const std::vector<unsigned char> src = bench::discs(kBlobs, kMinRadius, kMaxRadius, 11, 3);
    std::vector<unsigned char> img(src.size()), chain(src.size());
    int64_t contours = 0;
    for (auto _ : state) {
        state.PauseTiming();
        img = src;
        state.ResumeTiming();
        QEL_CONTOUR_STRUCT* list = QelGetContours(img.data(), chain.data(), bench::kWidth, bench::kHeight, 0, 0, 0);
        contours = 0;
        for (QEL_CONTOUR_STRUCT* c = list; c != nullptr; c = c->next) ++contours;
        QelFreeContours(list);
    }
    state.counters["contours"] = static_cast<double>(contours);
    bench::set_pixels_processed(state);
}
BENCHMARK(BM_GetContours)->Unit(benchmark::kMillisecond);

}  // namespace
