// The frame every benchmark works on: 1920 × 1080, grey or interleaved colour, and the pixel count
// that turns iterations into a pixel rate.
#ifndef QEL_BENCH_BENCH_IMAGES_H
#define QEL_BENCH_BENCH_IMAGES_H

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace bench {

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;
constexpr int64_t kPixels = static_cast<int64_t>(kWidth) * kHeight;

// A smooth diagonal ramp with noise in every channel: closer to camera images than pure noise, and
// the same bytes on every run.
inline std::vector<unsigned char> frame(int channels = 1) {
    std::mt19937 rng(2024);
    std::vector<unsigned char> img(static_cast<size_t>(kPixels) * static_cast<size_t>(channels));
    size_t i = 0;
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x)
            for (int c = 0; c < channels; ++c) img[i++] = static_cast<unsigned char>((x + y) / 12 + (rng() % 32));
    return img;
}

// Reports the rate as pixels per second.
inline void set_pixels_processed(benchmark::State& state) {
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * kPixels);
}

}  // namespace bench

#endif
