// Histogram, binarisation and Otsu selection on a full-HD grey frame; rates are pixels per second.
#include <qel.h>

#include <benchmark/benchmark.h>

#include <random>
#include <vector>

namespace {

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;
constexpr int64_t kPixels = static_cast<int64_t>(kWidth) * kHeight;

// A smooth gradient with noise: runs of similar levels, as in camera images.
std::vector<unsigned char> frame() {
    std::mt19937 rng(7);
    std::uniform_int_distribution<int> noise(-12, 12);
    std::vector<unsigned char> img(static_cast<size_t>(kPixels));
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x) {
            const int v = (x * 200) / kWidth + (y * 40) / kHeight + noise(rng);
            img[static_cast<size_t>(y) * kWidth + x] = static_cast<unsigned char>(v < 0 ? 0 : v > 255 ? 255 : v);
        }
    return img;
}

void BM_GetHistogram(benchmark::State& state) {
    std::vector<unsigned char> img = frame();
    int hist[256];
    for (auto _ : state) {
        QelGetHistogram(img.data(), kWidth, kHeight, hist);
        benchmark::DoNotOptimize(hist);
    }
    state.SetItemsProcessed(state.iterations() * kPixels);
}
BENCHMARK(BM_GetHistogram);

void BM_Threshold(benchmark::State& state) {
    std::vector<unsigned char> img = frame();
    std::vector<unsigned char> out(img.size());
    for (auto _ : state) {
        QelThreshold(img.data(), kWidth, kHeight, 128, out.data());
        benchmark::DoNotOptimize(out.data());
    }
    state.SetItemsProcessed(state.iterations() * kPixels);
}
BENCHMARK(BM_Threshold);

// Otsu from the image: histogram plus selection, as a caller does it.
void BM_OtsuFromImage(benchmark::State& state) {
    std::vector<unsigned char> img = frame();
    int hist[256];
    for (auto _ : state) {
        QelGetHistogram(img.data(), kWidth, kHeight, hist);
        benchmark::DoNotOptimize(QelGetOtsuThreshold(hist, 256));
    }
    state.SetItemsProcessed(state.iterations() * kPixels);
}
BENCHMARK(BM_OtsuFromImage);

// The selection alone, on a ready histogram (rate still counted in the frame's pixels).
void BM_GetOtsuThreshold(benchmark::State& state) {
    std::vector<unsigned char> img = frame();
    int hist[256];
    QelGetHistogram(img.data(), kWidth, kHeight, hist);
    for (auto _ : state) benchmark::DoNotOptimize(QelGetOtsuThreshold(hist, 256));
    state.SetItemsProcessed(state.iterations() * kPixels);
}
BENCHMARK(BM_GetOtsuThreshold);

}  // namespace
