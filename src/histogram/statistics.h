// Private helpers of the histogram subsystem: the level counter every histogram builder uses, and
// the walks over a 256-bin histogram that several families share (total, non-empty range,
// cumulative walks from either end, integer mean). The exported statistics themselves (mean,
// deviation, median, order statistics) are the public functions in statistics.cpp.
#ifndef QEL_SRC_HISTOGRAM_STATISTICS_H
#define QEL_SRC_HISTOGRAM_STATISTICS_H

#include "qel/histogram.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace qel {

constexpr int kGreyLevels = 256;

// Counts grey levels into eight interleaved sub-tables, so that runs of equal pixels do not stall on
// one counter, and adds them up at the end. Pixels are read eight at a time as one 64-bit word and
// taken apart by shifts (the order of the counts does not matter, so the byte order does not
// either). Lives on the stack of one call (8 KiB).
class LevelCounter {
public:
    LevelCounter() { std::memset(counts_, 0, sizeof(counts_)); }

    void add(const unsigned char* pixels, size_t count) {
        size_t i = 0;
        for (; i + 2 * kTables <= count; i += 2 * kTables) {
            uint64_t words[2];
            std::memcpy(words, pixels + i, sizeof words);
            for (uint64_t w : words)
                for (int t = 0; t < kTables; ++t) ++counts_[t][(w >> (8 * t)) & 0xFF];
        }
        for (; i < count; ++i) ++counts_[0][pixels[i]];
    }

    void add_one(unsigned char level) { ++counts_[0][level]; }

    // Writes the 256 totals to hist, replacing what was there.
    void store(int* hist) const {
        for (int v = 0; v < kGreyLevels; ++v) {
            uint32_t total = 0;
            for (int t = 0; t < kTables; ++t) total += counts_[t][v];
            hist[v] = static_cast<int>(total);
        }
    }

private:
    static constexpr int kTables = 8;  // one per byte of a 64-bit word
    uint32_t counts_[kTables][kGreyLevels];
};

// width × height, or 0 when either is not positive.
inline size_t pixel_count(int width, int height) {
    if (width <= 0 || height <= 0) return 0;
    return static_cast<size_t>(width) * static_cast<size_t>(height);
}

// Histogram of a whole image; returns its pixel count (0 for an empty image, whose histogram is
// all zero).
inline size_t image_histogram(unsigned char* image, int width, int height, int* hist) {
    QelGetHistogram(image, width, height, hist);
    return pixel_count(width, height);
}

// Σ hist[i] over the 256 bins, in 64 bits.
inline int64_t histogram_total(const int* hist) {
    int64_t n = 0;
    for (int i = 0; i < kGreyLevels; ++i) n += hist[i];
    return n;
}

// The histogram total × ratio, truncated: the count the ratio walks pass over.
inline int64_t ratio_of_total(const int* hist, double ratio) {
    return static_cast<int64_t>(static_cast<double>(histogram_total(hist)) * ratio);
}

// The first and the last non-empty bin among the first `bins`; −1 when all are empty.
template <typename Count>
int first_non_empty(const Count* hist, int bins = kGreyLevels) {
    for (int i = 0; i < bins; ++i)
        if (hist[i] != 0) return i;
    return -1;
}

template <typename Count>
int last_non_empty(const Count* hist, int bins = kGreyLevels) {
    for (int i = bins - 1; i >= 0; --i)
        if (hist[i] != 0) return i;
    return -1;
}

// Walking down from bin 255, the first level at which MORE than k counts have been passed;
// −1 when the walk runs out.
inline int brightest_level_past(const int* hist, int64_t k) {
    int64_t acc = 0;
    for (int i = kGreyLevels - 1; i >= 0; --i) {
        acc += hist[i];
        if (acc > k) return i;
    }
    return -1;
}

// Walking up from bin 0, the first level at which MORE than k counts have been passed; 256 when
// the walk runs out.
inline int darkest_level_past(const int* hist, int64_t k) {
    int64_t acc = 0;
    for (int i = 0; i < kGreyLevels; ++i) {
        acc += hist[i];
        if (acc > k) return i;
    }
    return kGreyLevels;
}

// Half of a count as the median walks take it: n / 2.0 + 0.5, truncated.
inline int64_t rounded_half(int64_t n) { return static_cast<int64_t>(static_cast<double>(n) / 2.0 + 0.5); }

// Walking up from bin 0, the first bin at which the running count reaches `target`, with that
// running count; 255 and the full total when it never does.
inline int first_bin_reaching(const int* hist, int64_t target, int64_t* running) {
    int64_t acc = 0;
    int i = 0;
    for (; i < kGreyLevels; ++i) {
        acc += hist[i];
        if (acc >= target) break;
    }
    *running = acc;
    return i < kGreyLevels ? i : kGreyLevels - 1;
}

// Σ i × hist[i] / n in integers (the division truncates); n is the histogram total and must not
// be 0.
inline int64_t integer_mean(const int* hist, int64_t n) {
    int64_t s = 0;
    for (int i = 0; i < kGreyLevels; ++i) s += static_cast<int64_t>(i) * hist[i];
    return s / n;
}

}  // namespace qel

#endif
