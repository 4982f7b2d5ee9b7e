// Listing the contours of a 1920 x 1080 binary frame holding about a thousand blobs (discs, some
// with a hole), as a thresholded inspection image shows them.
#include <qel.h>

#include "bench_images.h"

#include <benchmark/benchmark.h>

#include <random>
#include <vector>

namespace {

constexpr int kBlobs = 1000;
constexpr int kMinRadius = 3;
constexpr int kMaxRadius = 20;

std::vector<unsigned char> blobs() {
    std::mt19937 rng(11);
    std::vector<unsigned char> img(static_cast<size_t>(bench::kPixels), 0);
    for (int b = 0; b < kBlobs; ++b) {
        const int cx = static_cast<int>(rng() % bench::kWidth);
        const int cy = static_cast<int>(rng() % bench::kHeight);
        const int r = kMinRadius + static_cast<int>(rng() % (kMaxRadius - kMinRadius));
        const int hole = (b % 3 == 0) ? r / 2 : 0;  // every third blob is a ring
        for (int y = cy - r; y <= cy + r; ++y)
            for (int x = cx - r; x <= cx + r; ++x) {
                const int d2 = (x - cx) * (x - cx) + (y - cy) * (y - cy);
                if (x >= 0 && y >= 0 && x < bench::kWidth && y < bench::kHeight && d2 <= r * r && d2 >= hole * hole)
                    img[static_cast<size_t>(y) * bench::kWidth + x] = 255;
            }
    }
    return img;
}

void BM_GetContours(benchmark::State& state) {
    const std::vector<unsigned char> src = blobs();
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
