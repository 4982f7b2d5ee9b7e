// Helpers shared by the histogram tests: histograms written as (level, count) pairs, an image of
// every grey level, random images within a grey range, in-place operations run on a copy.
#ifndef QEL_TESTS_HISTOGRAM_HISTOGRAM_TEST_HELPERS_H
#define QEL_TESTS_HISTOGRAM_HISTOGRAM_TEST_HELPERS_H

#include "support/test_images.h"

#include <algorithm>
#include <initializer_list>
#include <utility>
#include <vector>

namespace qel_test {

using Hist = std::vector<int>;

// 256 bins, empty except the listed (level, count) pairs.
inline Hist levels(std::initializer_list<std::pair<int, int>> binsAndCounts) {
    Hist h(256, 0);
    for (auto [bin, count] : binsAndCounts) h[static_cast<size_t>(bin)] = count;
    return h;
}

// The 256 grey levels in rising order.
inline Bytes every_level() {
    Bytes v(256);
    for (int g = 0; g < 256; ++g) v[static_cast<size_t>(g)] = static_cast<unsigned char>(g);
    return v;
}

// n random levels within lo..hi.
inline Bytes random_levels(size_t n, unsigned seed, int lo = 0, int hi = 255) {
    Bytes v = random_bytes(n, seed);
    for (auto& b : v) b = static_cast<unsigned char>(lo + b % (hi - lo + 1));
    return v;
}

inline bool only_binary(const Bytes& img) {
    return std::all_of(img.begin(), img.end(), [](unsigned char p) { return p == 0 || p == 255; });
}

// The image after the in-place operation op(pixels, width, height, args...) on a copy of it.
template <typename Op, typename... Args>
Bytes after(Op op, Bytes img, int width, int height, Args... args) {
    op(img.data(), width, height, args...);
    return img;
}

}  // namespace qel_test

#endif
