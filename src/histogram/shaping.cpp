// Histogram shaping and peak finding: equalisation, matching to a target histogram, box and
// Gaussian smoothing of histograms, peak and valley marks, the two main peaks and the two-peak
// contrast test.
#include "histogram/statistics.h"

#include "core/lut.h"
#include "qel/histogram.h"
#include "core/exact_math.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

using qel::kGreyLevels;
constexpr int kMaxLevel = 255;
constexpr int kUnset = -10;          // interval bound not reached yet by the matching walk
constexpr int kWeightOne = 1024;     // Gaussian weights are fixed point with this unit
constexpr int kPeakMark = 100;
constexpr int kValleyMark = -100;

// Histogram of the image, widened so that the matching walk can add counts without overflow;
// returns the pixel count.
size_t wide_histogram(unsigned char* image, int width, int height, int64_t* wide) {
    int hist[kGreyLevels];
    const size_t n = qel::image_histogram(image, width, height, hist);
    for (int i = 0; i < kGreyLevels; ++i) wide[i] = hist[i];
    return n;
}

// Matching walk: gives each non-empty source level g the interval [start[g], end[g]] of target
// levels it fills. The walk is bounded by the non-empty ranges of both histograms: when their
// masses differ it stops where one side runs out, and the levels it never reached are put at the
// last non-empty target level. Returns false when either histogram is empty.
bool match_intervals(const int64_t* source, const int64_t* target, int* start, int* end) {
    for (int i = 0; i < kGreyLevels; ++i) start[i] = end[i] = kUnset;
    const int firstTarget = qel::first_non_empty(target);
    const int firstSource = qel::first_non_empty(source);
    if (firstTarget < 0 || firstSource < 0) return false;
    const int lastTarget = qel::last_non_empty(target);
    const int lastSource = qel::last_non_empty(source);

    int j = firstTarget;
    int g = firstSource;
    int64_t acc = source[g];
    start[g] = j;
    while (j <= lastTarget) {
        if (acc < target[j]) {
            // Target bin j needs more pixels: move on through the source levels.
            bool sourceUsedUp = false;
            while (acc < target[j]) {
                if (end[g] == kUnset) end[g] = j;
                if (g == lastSource) {
                    sourceUsedUp = true;
                    break;
                }
                ++g;
                start[g] = j;
                acc += source[g];
            }
            if (sourceUsedUp) break;
            acc -= target[j];
        } else {
            // Level g fills whole target bins: consume them.
            while (j <= lastTarget && target[j] <= acc) {
                acc -= target[j];
                ++j;
            }
            --j;
            end[g] = j;
        }
        ++j;
    }
    // The last source level always ends at the last target level, whatever the walk left there.
    end[lastSource] = lastTarget;
    for (int i = firstSource; i <= lastSource; ++i) {
        if (source[i] == 0) continue;
        if (start[i] == kUnset) start[i] = lastTarget;
        if (end[i] == kUnset) end[i] = lastTarget;
    }
    return true;
}

// Marks the extremes of one kind in the slope marks: `slope` is 1 for peaks, −1 for valleys. A
// slope of the kind opens the extreme and records its position; a 0 records the last flat
// position; any other mark on the far side of 0 closes it. The extreme lies at the last slope,
// or at the middle of the last slope and the last flat when the flat came later.
void mark_extremes(int* marks, int count, int slope, int label) {
    bool open = false;
    int lastSlope = 0;
    int lastFlat = 0;
    auto close = [&]() {
        const int at = lastFlat <= lastSlope ? lastSlope : (lastSlope + lastFlat) / 2;
        marks[at] = label;
        open = false;
    };
    for (int i = 0; i < count; ++i) {
        const int m = marks[i];
        if (m == 0) {
            lastFlat = i;
        } else if (m == slope) {
            open = true;
            lastSlope = i;
        } else if (slope > 0 ? m < 1 : m >= 0) {
            if (open) close();
        }
    }
    if (open) close();
}

}  // namespace

void QelHistogramEqualizeFast(unsigned char* image, int width, int height) {
    int hist[kGreyLevels];
    const size_t n = qel::image_histogram(image, width, height, hist);
    if (n == 0) return;
    unsigned char lut[kGreyLevels];
    int64_t running = 0;
    for (int i = 0; i < kGreyLevels; ++i) {
        running += hist[i];
        lut[i] = static_cast<unsigned char>(running * kMaxLevel / static_cast<int64_t>(n));
    }
    qel::apply_lut(image, n, lut, image);
}

void QelHistogramEqualizeStandard(unsigned char* image, int width, int height) {
    int64_t source[kGreyLevels];
    const size_t n = wide_histogram(image, width, height, source);
    if (n == 0) return;
    int levels = 0;
    for (int i = 0; i < kGreyLevels; ++i) levels += source[i] != 0 ? 1 : 0;

    // Flat target: the first `levels` bins share the pixels equally (integer division, so the
    // target can hold up to levels − 1 pixels fewer than the image).
    int64_t target[kGreyLevels] = {};
    for (int i = 0; i < levels; ++i) target[i] = static_cast<int64_t>(n) / levels;

    int start[kGreyLevels];
    int end[kGreyLevels];
    if (!match_intervals(source, target, start, end)) return;
    const double scale = 255.0 / levels;
    unsigned char lut[kGreyLevels] = {};
    for (int g = 0; g < kGreyLevels; ++g)
        if (source[g] != 0) lut[g] = static_cast<unsigned char>(static_cast<int>((start[g] + end[g]) / 2.0 * scale));
    qel::apply_lut(image, n, lut, image);
}

void QelHistogramNormalization(unsigned char* image, int width, int height, int* targetHist) {
    int64_t source[kGreyLevels];
    const size_t n = wide_histogram(image, width, height, source);
    if (n == 0) return;
    int64_t target[kGreyLevels];
    // Negative target counts are meaningless; they count as empty.
    for (int i = 0; i < kGreyLevels; ++i) target[i] = targetHist[i] > 0 ? targetHist[i] : 0;

    int start[kGreyLevels];
    int end[kGreyLevels];
    if (!match_intervals(source, target, start, end)) return;
    unsigned char lut[kGreyLevels] = {};
    for (int g = 0; g < kGreyLevels; ++g)
        if (source[g] != 0) lut[g] = static_cast<unsigned char>((start[g] + end[g]) / 2);
    qel::apply_lut(image, n, lut, image);
}

void QelHistogramAverageSmooth(int* hist, int radius, int* smoothed) {
    if (radius < 0) radius = 0;
    // Prefix sums: the cost does not grow with the radius.
    int64_t prefix[kGreyLevels + 1];
    prefix[0] = 0;
    for (int i = 0; i < kGreyLevels; ++i) prefix[i + 1] = prefix[i] + hist[i];
    for (int j = 0; j < kGreyLevels; ++j) {
        // The window is clipped at both ends and the divisor shrinks with it.
        const int lo = j - radius < 0 ? 0 : j - radius;
        const int hi = radius > kMaxLevel - j ? kMaxLevel : j + radius;
        smoothed[j] = static_cast<int>((prefix[hi + 1] - prefix[lo]) / (hi - lo + 1));
    }
}

int QelHistogramGaussianSmooth(int* hist, int /*reserved*/, double sigma, double smallestWeight, int* smoothed) {
    const int first = qel::first_non_empty(hist);
    const int last = qel::last_non_empty(hist);
    if (first < 0) {  // empty histogram: copied as it is
        for (int i = 0; i < kGreyLevels; ++i) smoothed[i] = hist[i];
        return 0;
    }
    for (int i = 0; i <= first; ++i) smoothed[i] = hist[i];
    for (int i = kMaxLevel; i >= last; --i) smoothed[i] = hist[i];

    // Fixed-point weights w(d) until the Gaussian falls below the smallest weight.
    int weight[kGreyLevels];
    weight[0] = kWeightOne;
    int taps = 1;  // number of weights including w(0)
    const double twoSigmaSquared = 2.0 * (sigma * sigma);
    for (int d = 1; d < kGreyLevels; ++d) {
        const double g = twoSigmaSquared == 0.0 ? 0.0 : qel::exact_exp(-static_cast<double>(d * d) / twoSigmaSquared);
        if (!(g >= smallestWeight)) break;
        weight[d] = static_cast<int>(g * kWeightOne + 0.5);
        ++taps;
    }
    // The inner divisor counts each side's weights once only, although the sum takes both sides:
    // inner bins come out larger than their neighbourhood's mass. Callers depend on this scaling.
    int64_t oneSidedDivisor = kWeightOne;
    for (int d = 1; d < taps; ++d) oneSidedDivisor += weight[d];

    const int lo = first - taps > 0 ? first - taps : 0;
    const int hi = last + taps < kMaxLevel ? last + taps : kMaxLevel;
    const int length = hi - lo + 1;
    const int* h = hist + lo;
    int* out = smoothed + lo;
    for (int i = 0; i < length; ++i) {
        int64_t sum = static_cast<int64_t>(h[i]) * kWeightOne;
        int64_t usedWeights = kWeightOne;
        for (int d = 1; d < taps; ++d) {
            if (i - d >= 0) {
                sum += static_cast<int64_t>(h[i - d]) * weight[d];
                usedWeights += weight[d];
            }
            if (i + d < length) {
                sum += static_cast<int64_t>(h[i + d]) * weight[d];
                usedWeights += weight[d];
            }
        }
        const bool inner = i >= taps && i <= length - taps - 1;
        out[i] = static_cast<int>(sum / (inner ? oneSidedDivisor : usedWeights));
    }
    return last - first;
}

void QelSetPeakTo100ValleyTo_100(int* hist, int count, int* marks) {
    if (count <= 0) return;
    // Bin 0 is compared with bin 1 (with itself when there is only one bin).
    int prev = hist[count > 1 ? 1 : 0];
    for (int i = 0; i < count; ++i) {
        marks[i] = hist[i] > prev ? 1 : (hist[i] < prev ? -1 : 0);
        prev = hist[i];
    }
    mark_extremes(marks, count, 1, kPeakMark);
    mark_extremes(marks, count, -1, kValleyMark);
}

void QelFindTwoPeaks(int* hist, int minDistance, int* firstPeak, int* secondPeak) {
    int marks[kGreyLevels];
    QelSetPeakTo100ValleyTo_100(hist, kGreyLevels, marks);
    int first = -1;
    int best = 0;
    for (int i = 0; i < kGreyLevels; ++i) {
        if (marks[i] == kPeakMark && hist[i] > best) {
            best = hist[i];
            first = i;
        }
    }
    if (first < 0) return;
    int second = first;
    best = 0;
    for (int i = 0; i < kGreyLevels; ++i) {
        if (marks[i] == kPeakMark && std::abs(i - first) >= minDistance && hist[i] > best) {
            best = hist[i];
            second = i;
        }
    }
    *firstPeak = first;
    *secondPeak = second;
}

bool QelIsHighContrastImg(int* hist, int splitLevel, int window, int minPeakDistance, double minDepth,
                          int* darkPeak, int* brightPeak, double* depth) {
    *darkPeak = 0;
    *brightPeak = 0;
    *depth = 0.0;
    if (window < 0) window = 0;
    if (splitLevel < 0) splitLevel = 0;
    if (splitLevel > kMaxLevel) splitLevel = kMaxLevel;
    const int n = (window / 2) * 2 + 1;  // the window made odd
    const int half = n / 2;

    int64_t s[kGreyLevels] = {};
    for (int i = 0; i < half && i < kGreyLevels; ++i) s[i] = hist[i];
    for (int i = kGreyLevels - half < 0 ? 0 : kGreyLevels - half; i < kGreyLevels; ++i) s[i] = hist[i];
    // The sliding mean stops one position early: s[255 − half] gets no mean and stays 0.
    int64_t running = 0;
    for (int i = 0; i < n - 1 && i < kGreyLevels; ++i) running += hist[i];
    for (int i = 0; i <= kMaxLevel - n; ++i) {
        running += hist[i + n - 1];
        s[i + half] = running / n;
        running -= hist[i];
    }

    int dark = 0;
    int64_t best = 0;
    for (int i = splitLevel; i >= 1; --i) {  // bin 0 is not examined
        if (s[i] > best) {
            best = s[i];
            dark = i;
        }
    }
    int bright = 0;
    best = 0;
    for (int i = splitLevel; i <= kMaxLevel; ++i) {
        if (s[i] > best) {
            best = s[i];
            bright = i;
        }
    }
    *darkPeak = dark;
    *brightPeak = bright;
    if (bright - dark < minPeakDistance) return false;

    double mass = 0.0;
    for (int i = dark; i <= bright; ++i) mass += static_cast<double>(s[i]);
    if (mass == 0.0) return false;  // nothing between the peaks: no depth to measure
    const double chord = static_cast<double>(s[dark] + s[bright]) * 0.5 * (bright - dark + 1);
    *depth = (chord - mass) / mass;
    return *depth >= minDepth;
}
