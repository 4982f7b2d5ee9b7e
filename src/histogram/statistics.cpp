// Histogram statistics: histograms of whole images and regions, mean and deviation, order
// statistics by ratio, median, most frequent and peak level, bins ordered by count.
#include "histogram/statistics.h"

#include "qel/histogram.h"

#include <cmath>
#include <cstdint>
#include <utility>

namespace qel {
namespace {

size_t at(int x, int y, int width) {
    return static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x);
}

// Mean and population deviation (and, on request, the mean absolute difference) of a histogram,
// in two passes: the mean first, then the spread about it. Nothing is written when n = 0.
struct Moments {
    int64_t n = 0;
    double mean = 0.0;
    double deviation = 0.0;
    double dif = 0.0;
};

Moments moments(const int* hist) {
    Moments m;
    double s = 0.0;
    for (int i = 0; i < kGreyLevels; ++i) {
        m.n += hist[i];
        s += static_cast<double>(static_cast<int64_t>(i) * hist[i]);  // each term is an integer first
    }
    if (m.n == 0) return m;
    const double n = static_cast<double>(m.n);
    m.mean = s / n;
    double squares = 0.0;
    double absolute = 0.0;
    for (int i = 0; i < kGreyLevels; ++i) {
        if (hist[i] == 0) continue;
        const double d = i - m.mean;
        squares += d * d * hist[i];
        absolute += std::fabs(d) * hist[i];
    }
    m.deviation = std::sqrt(squares / n);
    m.dif = absolute / n;
    return m;
}

// Histogram of rows y1..y2, columns x1..x2 of a width-wide image, plus a per-pixel condition.
template <typename Keep>
void count_rect(const unsigned char* image, int width, int x1, int x2, int y1, int y2, int* hist, Keep keep) {
    LevelCounter counter;
    for (int y = y1; y <= y2; ++y) {
        const unsigned char* row = image + at(0, y, width);
        for (int x = x1; x <= x2; ++x)
            if (keep(at(x, y, width))) counter.add_one(row[x]);
    }
    counter.store(hist);
}

}  // namespace
}  // namespace qel

using qel::kGreyLevels;

// ---- histogram builders ----------------------------------------------------------------------

void QelGetHistogram(unsigned char* image, int width, int height, int* hist) {
    qel::LevelCounter counter;
    if (width > 0 && height > 0) counter.add(image, static_cast<size_t>(width) * static_cast<size_t>(height));
    counter.store(hist);
}

void QelGetHistogramInRect(unsigned char* image, int width, int x1, int x2, int y1, int y2, int* hist) {
    qel::LevelCounter counter;
    if (x2 >= x1) {
        const size_t count = static_cast<size_t>(x2 - x1 + 1);
        for (int y = y1; y <= y2; ++y) counter.add(image + qel::at(x1, y, width), count);
    }
    counter.store(hist);
}

void QelGetHistogramByMasked(unsigned char* image, unsigned char* mask, int width, int x1, int x2, int y1, int y2,
                             int* hist) {
    qel::count_rect(image, width, x1, x2, y1, y2, hist, [mask](size_t i) { return mask[i] != 0; });
}

void QelGetHistogramByLimited(unsigned char* image, int width, int y1, int y2, int* left, int* right, int* hist) {
    qel::LevelCounter counter;
    for (int y = y1; y <= y2; ++y) {
        // The right end is excluded: a row with left[y] = right[y] contributes nothing.
        if (right[y] > left[y])
            counter.add(image + qel::at(left[y], y, width), static_cast<size_t>(right[y] - left[y]));
    }
    counter.store(hist);
}

// ---- mean, deviation, mean absolute difference -------------------------------------------------

int QelGetImageAvrAndDev(unsigned char* image, int width, int height, double* mean, double* deviation) {
    int hist[kGreyLevels];
    QelGetHistogram(image, width, height, hist);
    return QelGetImageAvrAndDev(hist, mean, deviation);
}

int QelGetImageAvrAndDev(int* hist, double* mean, double* deviation) {
    const qel::Moments m = qel::moments(hist);
    *mean = m.mean;  // both 0.0 for an empty histogram
    *deviation = m.deviation;
    return static_cast<int>(m.n);
}

int QelGetImageAvrAndDevAndDif(int* hist, double* mean, double* deviation, double* dif) {
    const qel::Moments m = qel::moments(hist);
    if (m.n == 0) return 0;  // an empty histogram leaves all three outputs as they were
    *mean = m.mean;
    *deviation = m.deviation;
    *dif = m.dif;
    return static_cast<int>(m.n);
}

int QelGetImageAvrAndDevFast(int* hist, double* mean, double* deviation) {
    // One pass with 32-bit sums, as this form has always had: each term i·h[i] and i·i·h[i] is a
    // 32-bit integer, so counts above 33,025 in bin 255 wrap. The wrap is computed in unsigned
    // arithmetic so that it is defined.
    uint32_t n = 0;
    uint32_t sum = 0;
    double squares = 0.0;
    for (int i = 0; i < kGreyLevels; ++i) {
        const uint32_t h = static_cast<uint32_t>(hist[i]);
        const uint32_t level = static_cast<uint32_t>(i);
        n += h;
        sum += level * h;
        squares += static_cast<int32_t>(level * level * h);
    }
    const int count = static_cast<int32_t>(n);
    if (count == 0) {
        *deviation = 0.0;  // the mean is left unwritten
        return 0;
    }
    const double m = static_cast<double>(static_cast<int32_t>(sum)) / count;
    *mean = m;
    *deviation = std::sqrt(squares / count - m * m);
    return count;
}

void QelGetImageAvrAndDif(int* hist, int* mean, int* dif) {
    const int64_t n = qel::histogram_total(hist);
    if (n == 0) {  // would divide by zero; an empty histogram gives 0 and 0
        *mean = 0;
        *dif = 0;
        return;
    }
    const int64_t m = qel::integer_mean(hist, n);
    int64_t spread = 0;
    for (int i = 0; i < kGreyLevels; ++i) {
        if (i < m) spread += (m - i) * hist[i];
        else if (i > m) spread += (i - m) * hist[i];
    }
    *mean = static_cast<int>(m);
    *dif = static_cast<int>(spread / n);
}

// ---- order statistics -------------------------------------------------------------------------

// k = n × ratio, truncated; the walk from the bright (or dark) end stops once it has passed more
// than k counts.
int QelGetMaxValueInHistogram(int* hist, double ratio) {
    return qel::brightest_level_past(hist, qel::ratio_of_total(hist, ratio));
}

int QelGetMinValueInHistogram(int* hist, double ratio) {
    return qel::darkest_level_past(hist, qel::ratio_of_total(hist, ratio));
}

int QelGetMedianInHistogram(int* hist) {
    const int64_t half = qel::rounded_half(qel::histogram_total(hist));
    if (half <= 0) return 0;  // an empty histogram
    int64_t sum = 0;
    int m = qel::first_bin_reaching(hist, half, &sum) + 1;  // one past the last bin added
    // The correction subtracts the count of bin m, the bin AFTER the last one added; results
    // depend on it (one pixel in bin 10 gives 11). Past bin 255 that count is taken as 0.
    const int64_t next = m < kGreyLevels ? hist[m] : 0;
    const int64_t below = sum - next;
    if (half - below < sum - half) m -= 1;
    // Only a single pixel in bin 255 reaches 256; keep the result a grey level.
    return m < kGreyLevels ? m : kGreyLevels - 1;
}

int QelGetMostInHistogram(int* hist, int* largestCount) {
    int most = 0;
    int best = 0;  // strict test: the first of equal maxima wins; all-zero gives bin 0
    for (int i = 0; i < kGreyLevels; ++i) {
        if (hist[i] > best) {
            best = hist[i];
            most = i;
        }
    }
    *largestCount = best;
    return most;
}

int QelGetPeakInHistogram(int* hist) {
    int largest = 0;
    const int p = QelGetMostInHistogram(hist, &largest);
    int e = p + 1;  // first bin after the plateau of equal counts
    while (e < kGreyLevels && hist[e] == hist[p]) ++e;
    // Rounded upward on purpose: an isolated peak at p gives p + 1.
    return static_cast<int>((p + e) / 2.0 + 0.5);
}

int QelHistogramOrder(int* hist, int* order) {
    int counts[kGreyLevels];
    int nonEmpty = 0;
    for (int i = 0; i < kGreyLevels; ++i) {
        order[i] = i;
        counts[i] = hist[i];
        if (hist[i] != 0) ++nonEmpty;
    }
    // Exchange sort: this exchange order defines where equal counts end up, so it is kept.
    for (int i = 0; i < kGreyLevels; ++i) {
        for (int j = i + 1; j < kGreyLevels; ++j) {
            if (counts[j] > counts[i]) {
                std::swap(counts[i], counts[j]);
                std::swap(order[i], order[j]);
            }
        }
    }
    return nonEmpty;
}
