// Threshold selection (Otsu, bright fraction, mean ± k deviations, difference-image noise level,
// valley search, k-means of grey levels) and binarisation. Every binarisation compares each pixel
// with its threshold in one loop, 32 or 16 pixels at a time where AVX2 or SSE2 is available.
#include "histogram/statistics.h"

#include "core/simd.h"
#include "core/simd_avx2.h"
#include "qel/histogram.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace qel {
namespace {

constexpr unsigned char kBackground = 0;
constexpr unsigned char kObject = 255;

#ifdef QEL_SIMD_AVX2
// threshold_span's whole 32-pixel steps for t < 256, after the first pixels up to a 32-byte
// boundary of dst (so that no store splits a cache line); returns how many pixels it did.
QEL_TARGET_AVX2 size_t threshold_avx2(const unsigned char* src, size_t count, int t, unsigned char low,
                                      unsigned char high, unsigned char* dst) {
    const __m256i tv = _mm256_set1_epi8(static_cast<char>(t));
    const __m256i lv = _mm256_set1_epi8(static_cast<char>(low));
    const __m256i hv = _mm256_set1_epi8(static_cast<char>(high));
    size_t i = (avx2::kLanes - reinterpret_cast<uintptr_t>(dst) % avx2::kLanes) % avx2::kLanes;
    if (count < i + avx2::kLanes) return 0;
    for (size_t k = 0; k < i; ++k) dst[k] = src[k] >= t ? high : low;
    for (; i + avx2::kLanes <= count; i += avx2::kLanes)
        avx2::store(dst + i, avx2::select(avx2::at_least(avx2::load(src + i), tv), hv, lv));
    return i;
}
#endif

// dst[i] = high where src[i] >= threshold, else low, for count pixels; src and dst may be the same
// buffer. A threshold of 0 or less makes every pixel high; one above 256 is a caller error and is
// treated as 256 (every pixel low).
void threshold_span(const unsigned char* src, size_t count, int threshold, unsigned char low, unsigned char high,
                    unsigned char* dst) {
    const int t = std::clamp(threshold, 0, kGreyLevels);
    size_t i = 0;
#ifdef QEL_SIMD_AVX2
    if (simd::avx2() && t < kGreyLevels) i = threshold_avx2(src, count, t, low, high, dst);
#endif
#ifdef QEL_SIMD_SSE2
    if (simd::sse2() && t < kGreyLevels) {
        const __m128i tv = _mm_set1_epi8(static_cast<char>(t));
        const __m128i lv = _mm_set1_epi8(static_cast<char>(low));
        const __m128i hv = _mm_set1_epi8(static_cast<char>(high));
        for (; i + simd::kLanes <= count; i += simd::kLanes)
            simd::store(dst + i, simd::select(simd::at_least(simd::load(src + i), tv), hv, lv));
    }
#endif
    for (; i < count; ++i) dst[i] = src[i] >= t ? high : low;
}

void binarise(const unsigned char* image, int width, int height, int threshold, unsigned char* out) {
    threshold_span(image, pixel_count(width, height), threshold, kBackground, kObject, out);
}

// Inside the rectangle x1..x2, y1..y2 (both ends included) only.
void binarise_rect(const unsigned char* image, int width, int x1, int x2, int y1, int y2, int threshold,
                   unsigned char* out) {
    if (x2 < x1) return;
    for (int y = y1; y <= y2; ++y) {
        const size_t row = static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x1);
        threshold_span(image + row, static_cast<size_t>(x2 - x1 + 1), threshold, kBackground, kObject, out + row);
    }
}

// Ratio kept within 0..1 (a NaN counts as 0).
double clamp_ratio(double ratio) { return !(ratio > 0.0) ? 0.0 : ratio > 1.0 ? 1.0 : ratio; }

// T for the brightest `ratio` (already clamped) of the pixels: walking down from 255, the first
// level at which MORE than area × ratio pixels have been passed (QelGetThresholdByRatio stops at
// ≥ instead); −1 when the walk runs out.
int ratio_threshold(const int* hist, int64_t area, double ratio) {
    return brightest_level_past(hist, static_cast<int64_t>(static_cast<double>(area) * ratio));
}

// The same over the whole image, or over the rectangle x1..x2, y1..y2 (ends included).
int image_ratio_threshold(unsigned char* image, int width, int height, double ratio) {
    int hist[kGreyLevels];
    QelGetHistogram(image, width, height, hist);
    return ratio_threshold(hist, static_cast<int64_t>(width) * height, ratio);
}

int rect_ratio_threshold(unsigned char* image, int width, int x1, int x2, int y1, int y2, double ratio) {
    int hist[kGreyLevels];
    QelGetHistogramInRect(image, width, x1, x2, y1, y2, hist);
    return ratio_threshold(hist, static_cast<int64_t>(x2 - x1 + 1) * static_cast<int64_t>(y2 - y1 + 1), ratio);
}

// A dark-image threshold of 0 would make every pixel an object; below half it becomes 1.
int apply_zero_rule(int threshold, bool belowHalf) { return (belowHalf && threshold == 0) ? 1 : threshold; }

// Median-based noise estimate of a difference image: three times the median over 0.67.
constexpr double kMedianToSigma = 0.67;
constexpr double kNoiseSigmas = 3.0;

// Valley search bounds: the low bound is raised to this but never used; the high bound is capped.
constexpr int kValleyLowBound = 8;
constexpr int kValleyHighBound = 250;

// k-means passes before giving up on convergence. Totals accumulate, so centres creep toward their
// limit: a tolerance of 0 may never be met and a negative one never is. A tolerance of 1e-6 takes
// some 16,000 passes on three-population histograms, well inside the limit.
constexpr int kMaxClusterPasses = 100000;

}  // namespace
}  // namespace qel

using qel::kGreyLevels;

// ---- threshold selection ------------------------------------------------------------------------

int QelGetOtsuThreshold(int* hist, int binCount) {
    const int lo = qel::first_non_empty(hist, binCount);
    if (lo < 0) return 0;  // an empty histogram has no threshold; 0 keeps every pixel
    const int hi = qel::last_non_empty(hist, binCount);

    // The last non-empty bin `hi` is deliberately left out of the totals and of the search.
    int64_t total = 0;
    int64_t totalSum = 0;
    for (int i = lo; i < hi; ++i) {
        total += hist[i];
        totalSum += static_cast<int64_t>(i) * hist[i];
    }
    int64_t nB = 0;
    int64_t sB = 0;
    int64_t nF = total;
    int64_t sF = totalSum;
    double best = 0.0;
    int threshold = 0;
    for (int t = lo; t < hi; ++t) {
        if (hist[t] == 0) continue;
        nB += hist[t];
        sB += static_cast<int64_t>(t) * hist[t];
        nF -= hist[t];
        sF -= static_cast<int64_t>(t) * hist[t];
        // With an empty foreground the variance is not a number, which never wins.
        if (nF == 0) continue;
        const double n = static_cast<double>(total);
        const double d =
            static_cast<double>(sB) / static_cast<double>(nB) - static_cast<double>(sF) / static_cast<double>(nF);
        const double sigma = d * d * (static_cast<double>(nB) / n) * (static_cast<double>(nF) / n);
        if (sigma > best) {
            best = sigma;
            threshold = t;
        }
    }
    return threshold;
}

int QelGetThresholdByRatio(int* hist, double ratio) {
    const int64_t k = qel::ratio_of_total(hist, ratio);
    int64_t acc = 0;
    for (int i = kGreyLevels - 1; i >= 0; --i) {
        acc += hist[i];
        if (acc >= k) return i;  // ≥ here, unlike the binarising forms
    }
    return -1;
}

void QelGetThresholdLimit(int* hist, double k, int* low, int* high) {
    double mean = 0.0;
    double deviation = 0.0;
    QelGetImageAvrAndDev(hist, &mean, &deviation);
    double lo = mean - k * deviation;
    if (lo < 0.0) lo = 0.0;
    double hi = mean + k * deviation;
    if (hi > 255.0) hi = 255.0;
    *low = static_cast<int>(lo);
    *high = static_cast<int>(hi);
}

int QelGetDifImgThreshold(int* hist) {
    const int64_t half = qel::rounded_half(qel::histogram_total(hist));
    int64_t acc = 0;
    const int i = qel::first_bin_reaching(hist, half, &acc);  // the median bin
    double m = i;
    if (acc > half && i > 0) {
        // Interpolate inside bin i; the denominator is that bin's count.
        const int64_t denominator = half - (acc - hist[i]) + (acc - half);
        m = i - static_cast<double>(acc - half) / static_cast<double>(denominator);
    }
    return static_cast<int>(qel::kNoiseSigmas * (m / qel::kMedianToSigma) + 0.5);
}

bool QelGetDifImgThreshold(int* hist, int lowBound, int highBound, int* threshold) {
    *threshold = 0;
    // The low bound is raised but then not used: the scan always starts at bin 1 (intended).
    lowBound = std::max(lowBound, qel::kValleyLowBound);
    (void)lowBound;
    const int high = std::min(highBound, qel::kValleyHighBound);
    for (int t = 1; t <= high; ++t) {
        if (hist[t] == 0) continue;
        int p = t - 1;  // nearest non-empty bin below, bin 0 excluded
        while (p > 0 && hist[p] == 0) --p;
        if (p == 0 || hist[t] > hist[p]) continue;
        // Nearest non-empty bin above. The walk this replaces advanced t instead of q and never
        // ended when bin t + 1 was empty; wherever it did end, q = t + 1 as here.
        int q = t + 1;
        while (q < kGreyLevels && hist[q] == 0) ++q;
        if (q == kGreyLevels) continue;
        if (hist[t] <= hist[q]) {
            *threshold = t;  // a valley: its nearest non-empty neighbours are not lower
            break;
        }
    }
    return *threshold >= 1;
}

bool QelClusterHistogram(int* hist, int k, double tolerance, double* centres) {
    if (k < 2) return false;
    int levels[kGreyLevels];
    int m = 0;
    for (int g = 0; g < kGreyLevels; ++g)
        if (hist[g] != 0) levels[m++] = g;
    if (m == 0) return true;  // no levels, no centres: nothing is written
    if (m < k) k = m;         // the remaining centre entries are left untouched

    // Seeds: the most populated level, then every (m / k)-th listed level after it, wrapping.
    // Without any positive count the first listed level seeds.
    int largest = 0;
    const int most = QelGetMostInHistogram(hist, &largest);
    int seed = largest > 0 ? static_cast<int>(std::find(levels, levels + m, most) - levels) : 0;
    double centre[kGreyLevels];
    double previous[kGreyLevels];
    int64_t count[kGreyLevels] = {};
    int64_t sum[kGreyLevels] = {};
    centre[0] = levels[seed];
    for (int j = 1; j < k; ++j) {
        seed = (seed + m / k) % m;
        centre[j] = levels[seed];
    }

    for (int pass = 0; pass < qel::kMaxClusterPasses; ++pass) {
        std::copy(centre, centre + k, previous);
        for (int l = 0; l < m; ++l) {
            const int g = levels[l];
            int nearest = 0;
            for (int j = 1; j < k; ++j)
                if (std::fabs(centre[j] - g) < std::fabs(centre[nearest] - g)) nearest = j;
            // Totals are never cleared between passes, and the centre moves at once, so later
            // levels of the same pass see it moved; both are part of the result.
            count[nearest] += hist[g];
            sum[nearest] += static_cast<int64_t>(hist[g]) * g;
            if (count[nearest] != 0)
                centre[nearest] = static_cast<double>(sum[nearest]) / static_cast<double>(count[nearest]);
        }
        bool converged = true;
        for (int j = 0; j < k && converged; ++j) {
            const double change = centre[j] == 0.0 ? previous[j] : std::fabs(centre[j] - previous[j]) / centre[j];
            converged = change <= tolerance;
        }
        if (converged) break;
    }
    std::copy(centre, centre + k, centres);
    return true;
}

// ---- binarisation -------------------------------------------------------------------------------

void QelThreshold(unsigned char* image, int width, int height, int threshold, unsigned char* out) {
    qel::binarise(image, width, height, threshold, out);
}

void QelThreshold(unsigned char* image, int width, int height, int threshold) {
    qel::binarise(image, width, height, threshold, image);
}

void QelThreshold2V1V2(unsigned char* image, int width, int height, int threshold, int lowValue, int highValue) {
    qel::threshold_span(image, qel::pixel_count(width, height), threshold, static_cast<unsigned char>(lowValue & 0xFF),
                        static_cast<unsigned char>(highValue & 0xFF), image);
}

void QelThresholdInRect(unsigned char* image, int width, int x1, int x2, int y1, int y2, int threshold,
                        unsigned char* out) {
    qel::binarise_rect(image, width, x1, x2, y1, y2, threshold, out);
}

void QelThresholdInRect(unsigned char* image, int width, int x1, int x2, int y1, int y2, int threshold) {
    qel::binarise_rect(image, width, x1, x2, y1, y2, threshold, image);
}

void QelThresholdByPercent(unsigned char* image, int width, int height, int percent) {
    int hist[kGreyLevels];
    QelGetHistogram(image, width, height, hist);
    const int64_t k = static_cast<int64_t>(width) * height * percent / 100;
    const int threshold = qel::apply_zero_rule(qel::brightest_level_past(hist, k), percent < 50);
    qel::binarise(image, width, height, threshold, image);
}

int QelThresholdByRatio(unsigned char* image, int width, int height, double ratio) {
    return QelThresholdByRatio(image, width, height, ratio, image);
}

int QelThresholdByRatio(unsigned char* image, int width, int height, double ratio, unsigned char* out) {
    ratio = qel::clamp_ratio(ratio);
    const int threshold =
        qel::apply_zero_rule(qel::image_ratio_threshold(image, width, height, ratio), ratio < 0.5);
    qel::binarise(image, width, height, threshold, out);
    return threshold;
}

int QelThresholdByRatio(unsigned char* image, int width, int x1, int x2, int y1, int y2, double ratio) {
    ratio = qel::clamp_ratio(ratio);
    const int threshold =
        qel::apply_zero_rule(qel::rect_ratio_threshold(image, width, x1, x2, y1, y2, ratio), ratio < 0.5);
    qel::binarise_rect(image, width, x1, x2, y1, y2, threshold, image);
    return threshold;
}

int QelThresholdByRatio(unsigned char* image, int width, int x1, int x2, int y1, int y2, double ratio,
                        int minThreshold, unsigned char* out) {
    const int threshold = qel::rect_ratio_threshold(image, width, x1, x2, y1, y2, qel::clamp_ratio(ratio));
    qel::binarise_rect(image, width, x1, x2, y1, y2, std::max(threshold, minThreshold), out);
    return threshold;  // as found, before raising to the minimum (QelThresholdByRatioAndMiniT differs)
}

int QelThresholdByRatioAndMiniT(unsigned char* image, int width, int height, double ratio, int minThreshold) {
    const int threshold =
        std::max(qel::image_ratio_threshold(image, width, height, qel::clamp_ratio(ratio)), minThreshold);
    qel::binarise(image, width, height, threshold, image);
    return threshold;  // the raised value
}

void QelThresholdAndShrink(unsigned char* image, int width, int height, int threshold, int step, unsigned char* out,
                           int* outWidth, int* outHeight) {
    if (step < 2) {
        *outWidth = width;
        *outHeight = height;
        qel::binarise(image, width, height, threshold, out);
        return;
    }
    // Every step-th pixel of every step-th row, rows packed one after another. The reported size
    // is truncated while each row holds ⌈width / step⌉ bytes: that mismatch is intended.
    *outWidth = width / step;
    *outHeight = height / step;
    size_t written = 0;
    for (int y = 0; y < height; y += step) {
        const unsigned char* row = image + static_cast<size_t>(y) * static_cast<size_t>(width);
        for (int x = 0; x < width; x += step) out[written++] = row[x];
    }
    qel::threshold_span(out, written, threshold, qel::kBackground, qel::kObject, out);
}
