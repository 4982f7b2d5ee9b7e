// Private helpers of the histogram subsystem: the level counter every histogram builder uses and
// the total of a 256-bin histogram. The exported statistics themselves (mean, deviation, median,
// order statistics) are the public functions in statistics.cpp; other families call those.
#ifndef QEL_SRC_HISTOGRAM_STATISTICS_H
#define QEL_SRC_HISTOGRAM_STATISTICS_H

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace qel {

constexpr int kGreyLevels = 256;

// Counts grey levels into four interleaved sub-tables, so that runs of equal pixels do not stall on
// one counter, and adds them up at the end. Lives on the stack of one call (4 KiB).
class LevelCounter {
public:
    LevelCounter() { std::memset(counts_, 0, sizeof(counts_)); }

    void add(const unsigned char* pixels, size_t count) {
        size_t i = 0;
        for (; i + 4 <= count; i += 4) {
            ++counts_[0][pixels[i]];
            ++counts_[1][pixels[i + 1]];
            ++counts_[2][pixels[i + 2]];
            ++counts_[3][pixels[i + 3]];
        }
        for (; i < count; ++i) ++counts_[0][pixels[i]];
    }

    void add_one(unsigned char level) { ++counts_[0][level]; }

    // Writes the 256 totals to hist, replacing what was there.
    void store(int* hist) const {
        for (int v = 0; v < kGreyLevels; ++v)
            hist[v] = static_cast<int>(counts_[0][v] + counts_[1][v] + counts_[2][v] + counts_[3][v]);
    }

private:
    uint32_t counts_[4][kGreyLevels];
};

// Σ hist[i] over the 256 bins, in 64 bits.
inline int64_t histogram_total(const int* hist) {
    int64_t n = 0;
    for (int i = 0; i < kGreyLevels; ++i) n += hist[i];
    return n;
}

}  // namespace qel

#endif
