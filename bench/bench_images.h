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

// A binary frame of `count` discs (255 on 0) with radii minRadius .. maxRadius − 1 at random centres,
// cut by the frame's edges; with ringEvery > 0, every ringEvery-th disc is a ring whose hole has half
// its radius. The same seed always gives the same frame.
inline std::vector<unsigned char> discs(int count, int minRadius, int maxRadius, unsigned seed, int ringEvery = 0) {
    std::mt19937 rng(seed);
    std::vector<unsigned char> img(static_cast<size_t>(kPixels), 0);
    for (int d = 0; d < count; ++d) {
        const int cx = static_cast<int>(rng() % kWidth);
        const int cy = static_cast<int>(rng() % kHeight);
        const int r = minRadius + static_cast<int>(rng() % static_cast<unsigned>(maxRadius - minRadius));
        const int hole = ringEvery > 0 && d % ringEvery == 0 ? r / 2 : 0;
        for (int y = cy - r; y <= cy + r; ++y)
            for (int x = cx - r; x <= cx + r; ++x) {
                const int d2 = (x - cx) * (x - cx) + (y - cy) * (y - cy);
                if (x >= 0 && y >= 0 && x < kWidth && y < kHeight && d2 <= r * r && d2 >= hole * hole)
                    img[static_cast<size_t>(y) * kWidth + x] = 255;
            }
    }
    return img;
}

// Reports the rate as pixels per second.
inline void set_pixels_processed(benchmark::State& state) {
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * kPixels);
}

}  // namespace bench

#endif
