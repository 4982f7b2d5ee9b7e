// Growth: how the cost scales. Window filters run on one 1920 × 1080 frame with half sizes 1 .. 31
// and should report a flat time (fitted as O(1)); whole-image operations run on frames from
// 640 × 480 to 4096 × 3072 and should report a time linear in the pixel count (fitted as O(N)).
// Google Benchmark prints the fitted coefficient and its RMS error after each family: a large RMS
// means the growth does not follow the claimed shape.
#include <qel.h>

#include "bench_images.h"

#include <cstring>
#include <random>
#include <vector>

namespace {

// Noisy ramp of any size (grey or interleaved colour), the same bytes on every run.
std::vector<unsigned char> sized_frame(int width, int height, int channels = 1) {
    std::mt19937 rng(7);
    std::vector<unsigned char> img(static_cast<size_t>(width) * height * channels);
    size_t i = 0;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            for (int c = 0; c < channels; ++c) img[i++] = static_cast<unsigned char>((x + y) / 12 + (rng() % 32));
    return img;
}

// The frame sizes of the whole-image benchmarks: 0.3 to 12.6 megapixels.
void frame_sizes(benchmark::internal::Benchmark* b) {
    const int sizes[][2] = {{640, 480}, {1280, 960}, {1920, 1080}, {2560, 1920}, {4096, 3072}};
    for (const auto& s : sizes) b->Args({s[0], s[1]});
    b->Complexity(benchmark::oN);
}

// The half sizes of the window benchmarks: windows 3 × 3 to 63 × 63.
void half_sizes(benchmark::internal::Benchmark* b) {
    for (int half : {1, 3, 7, 15, 31}) b->Arg(half);
    b->Complexity(benchmark::o1);
}

// ---- Window filters: time flat in the window size ------------------------------------------------

template <class Filter>
void BM_Window(benchmark::State& state, Filter filter) {
    const int half = static_cast<int>(state.range(0));
    std::vector<unsigned char> src = bench::frame(), dst(src.size());
    for (auto _ : state) {
        filter(src.data(), half, dst.data());
        benchmark::DoNotOptimize(dst.data());
        benchmark::ClobberMemory();
    }
    state.SetComplexityN(half);
    bench::set_pixels_processed(state);
}
BENCHMARK_CAPTURE(BM_Window, GryAverageFilterFast,
                  [](unsigned char* s, int half, unsigned char* d) {
                      QelGryAverageFilterFast(s, bench::kWidth, bench::kHeight, half, half, d);
                  })
    ->Apply(half_sizes);
BENCHMARK_CAPTURE(BM_Window, GryAverageFilter,
                  [](unsigned char* s, int half, unsigned char* d) {
                      QelGryAverageFilter(s, bench::kWidth, bench::kHeight, half, half, d);
                  })
    ->Apply(half_sizes);
BENCHMARK_CAPTURE(BM_Window, GryImgMedianBoundary0,
                  [](unsigned char* s, int half, unsigned char* d) {
                      QelGryImgMedianBoundary0(s, bench::kWidth, bench::kHeight, half, half, d);
                  })
    ->Apply(half_sizes);
BENCHMARK_CAPTURE(BM_Window, BinImgFilter,
                  [](unsigned char* s, int half, unsigned char* d) {
                      QelBinImgFilter(s, bench::kWidth, bench::kHeight, half, half, 255u * 2u * half, d);
                  })
    ->Apply(half_sizes);

// ---- Whole-image operations: time linear in the pixel count --------------------------------------

// `op` receives (source, width, height, destination); the source holds `channels` bytes a pixel
// and the destination room for three bytes a pixel.
template <class Op>
void BM_Linear(benchmark::State& state, int channels, Op op) {
    const int width = static_cast<int>(state.range(0));
    const int height = static_cast<int>(state.range(1));
    std::vector<unsigned char> src = sized_frame(width, height, channels);
    std::vector<unsigned char> dst(static_cast<size_t>(width) * height * 3);
    for (auto _ : state) {
        op(src.data(), width, height, dst.data());
        benchmark::DoNotOptimize(dst.data());
        benchmark::ClobberMemory();
    }
    const int64_t pixels = static_cast<int64_t>(width) * height;
    state.SetComplexityN(pixels);
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * pixels);
}
BENCHMARK_CAPTURE(BM_Linear, Memcpy, 1,
                  [](unsigned char* s, int w, int h, unsigned char* d) {
                      std::memcpy(d, s, static_cast<size_t>(w) * h);
                  })
    ->Apply(frame_sizes);
BENCHMARK_CAPTURE(BM_Linear, Threshold, 1,
                  [](unsigned char* s, int w, int h, unsigned char* d) { QelThreshold(s, w, h, 100, d); })
    ->Apply(frame_sizes);
BENCHMARK_CAPTURE(BM_Linear, RGB2Gry, 3,
                  [](unsigned char* s, int w, int h, unsigned char* d) { QelRGB2Gry(s, w, h, d); })
    ->Apply(frame_sizes);
BENCHMARK_CAPTURE(BM_Linear, RGB2YUV420P, 3,
                  [](unsigned char* s, int w, int h, unsigned char* d) { QelRGB2YUV420P(s, w, h, d); })
    ->Apply(frame_sizes);
BENCHMARK_CAPTURE(BM_Linear, HistogramOtsu, 1,
                  [](unsigned char* s, int w, int h, unsigned char*) {
                      int hist[256];
                      QelGetHistogram(s, w, h, hist);
                      benchmark::DoNotOptimize(QelGetOtsuThreshold(hist, 256));
                  })
    ->Apply(frame_sizes);
BENCHMARK_CAPTURE(BM_Linear, GryImgSobel, 1,
                  [](unsigned char* s, int w, int h, unsigned char* d) { QelGryImgSobel(s, w, h, d); })
    ->Apply(frame_sizes);
BENCHMARK_CAPTURE(BM_Linear, GryAverageFilterFast7, 1,
                  [](unsigned char* s, int w, int h, unsigned char* d) { QelGryAverageFilterFast(s, w, h, 7, 7, d); })
    ->Apply(frame_sizes);
BENCHMARK_CAPTURE(BM_Linear, GryImgMedianBoundary0_3, 1,
                  [](unsigned char* s, int w, int h, unsigned char* d) { QelGryImgMedianBoundary0(s, w, h, 3, 3, d); })
    ->Apply(frame_sizes);
BENCHMARK_CAPTURE(BM_Linear, BinImgMaxFilter3x3, 1,
                  [](unsigned char* s, int w, int h, unsigned char* d) {
                      QelThreshold(s, w, h, 100, d);
                      QelBinImgMaxFilter3x3(d, w, h, d + static_cast<size_t>(w) * h);
                  })
    ->Apply(frame_sizes);
BENCHMARK_CAPTURE(BM_Linear, DifferenceImg12, 1,
                  [](unsigned char* s, int w, int h, unsigned char* d) {
                      // The second image is the (zeroed) far end of the destination buffer.
                      QelDifferenceImg12(s, d + static_cast<size_t>(w) * h, w, h, false, d);
                  })
    ->Apply(frame_sizes);
BENCHMARK_CAPTURE(BM_Linear, FlipVertical, 1,
                  [](unsigned char* s, int w, int h, unsigned char* d) { QelFlipVertical(s, w, h, false, d); })
    ->Apply(frame_sizes);
BENCHMARK_CAPTURE(BM_Linear, ImgRotate90DegreeCS, 1,
                  [](unsigned char* s, int w, int h, unsigned char* d) { QelImgRotate90DegreeCS(s, w, h, false, d); })
    ->Apply(frame_sizes);
BENCHMARK_CAPTURE(BM_Linear, ShrinkGryImg2x2ByAvr, 1,
                  [](unsigned char* s, int w, int h, unsigned char* d) { QelShrinkGryImg2x2ByAvr(s, w, h, d); })
    ->Apply(frame_sizes);
BENCHMARK_CAPTURE(BM_Linear, BilinearHalfSize, 1,
                  [](unsigned char* s, int w, int h, unsigned char* d) {
                      QelGryImgBilinearInterpolattionFast(s, w, h, d, w / 2, h / 2);
                  })
    ->Apply(frame_sizes);

}  // namespace
