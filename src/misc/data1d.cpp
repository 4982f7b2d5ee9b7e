// One-dimensional data utilities: moving-window filters and maxima, mean and spread, peak picking,
// resampling and deletion by weight, over caller-owned arrays of int or double.
#include "qel/misc.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

// Peak picking keeps one exclusion flag per sample in a table of this size on the stack.
constexpr int kMaxPeakSamples = 4096;

// The filters' common sliding sum over windows of m = 2·|half| + 1 samples: out[i] =
// result(sum of in[i − half .. i + half], m) where the window fits, and the ends repeat the first
// and the last full window. Nothing is written when n < m.
template <class Result>
void sliding_window_filter(const int* in, int n, int half, int* out, Result result) {
    const int64_t reach = std::llabs(static_cast<int64_t>(half));
    if (n < 2 * reach + 1) return;
    const int h = static_cast<int>(reach);
    const int m = 2 * h + 1;
    int64_t sum = 0;
    for (int i = 0; i < m; ++i) sum += in[i];
    int value = result(sum, m);
    for (int i = 0; i <= h; ++i) out[i] = value;
    int i = h + 1;
    for (; i < n - h; ++i) {
        sum = sum - in[i - h - 1] + in[i + h];
        value = result(sum, m);
        out[i] = value;
    }
    for (; i < n; ++i) out[i] = value;
}

int64_t sum_of(const int* data, int n) {
    int64_t sum = 0;
    for (int i = 0; i < n; ++i) sum += data[i];
    return sum;
}

// sqrt(Σ(v − mean)² / n).
double deviation_about(const int* data, int n, double mean) {
    double squares = 0.0;
    for (int i = 0; i < n; ++i) {
        const double d = data[i] - mean;
        squares += d * d;
    }
    return std::sqrt(squares / n);
}

// The moving-window maxima refuse empty data, windows longer than the data and windows below one
// sample, with both outputs 0.
bool refuse_window(int n, int w, double* best, int* pos) {
    if (n != 0 && n >= w && w >= 1) return false;
    *best = 0.0;
    *pos = 0;
    return true;
}

}  // namespace

void Qel1DAverageFilter(int* in, int n, int half, int* out) {
    sliding_window_filter(in, n, half, out, [](int64_t sum, int m) { return static_cast<int>(sum / m); });
}

void QelBin1DMedianFilter(int* in, int n, int half, int* out) {
    sliding_window_filter(in, n, half, out, [](int64_t sum, int m) { return 2 * sum > m ? 1 : 0; });
}

int QelDataAvrAndDevAndReturnMax(int* data, int n, double* mean, double* dev) {
    if (n <= 0) {
        *mean = 0.0;
        *dev = 0.0;
        return 0;
    }
    int largest = data[0];
    double sum = 0.0;
    for (int i = 0; i < n; ++i) {
        sum += data[i];
        largest = std::max(largest, data[i]);
    }
    *mean = sum / n;
    *dev = deviation_about(data, n, *mean);
    return largest;
}

int QelDataAvrAndDevAndReturnSum(int* data, int n, double* mean, double* dev) {
    if (n <= 0) {
        *mean = 0.0;
        *dev = 0.0;
        return 0;
    }
    const int64_t sum = sum_of(data, n);
    *mean = static_cast<double>(sum) / n;
    *dev = deviation_about(data, n, *mean);
    // The sum is returned as a 32-bit integer: a total past its range wraps.
    return static_cast<int>(static_cast<uint32_t>(sum));
}

void QelDataAvrAndDif(int* data, int n, double* mean, double* meanAbsDev) {
    if (n <= 0) {
        *mean = 0.0;
        *meanAbsDev = 0.0;
        return;
    }
    *mean = static_cast<double>(sum_of(data, n)) / n;
    double deviations = 0.0;
    for (int i = 0; i < n; ++i) deviations += std::fabs(data[i] - *mean);
    *meanAbsDev = deviations / n;
}

int QelDataMaxDataPos(int* data, int n) {
    if (n <= 0) return 0;
    return static_cast<int>(std::max_element(data, data + n) - data);
}

int QelDataMaxDataValue(int* data, int n) {
    if (n <= 0) return 0;
    return *std::max_element(data, data + n);
}

bool QelDataMaxAvrAndPosInMovingWindow(int* data, int n, int w, double* maxMean, int* pos) {
    if (refuse_window(n, w, maxMean, pos)) return false;
    int64_t sum = sum_of(data, w);
    int64_t best = sum;
    int bestStart = 0;
    // Every later window of the best sum counts as a tie, next to the best or not.
    int ties = 0;
    for (int start = 1; start <= n - w; ++start) {
        sum = sum - data[start - 1] + data[start + w - 1];
        if (sum > best) {
            best = sum;
            bestStart = start;
            ties = 0;
        } else if (sum == best) {
            ++ties;
        }
    }
    *maxMean = static_cast<double>(best) / w;
    *pos = bestStart + w / 2 + ties / 2;
    return true;
}

bool QelDataMaxDevAndPosInMovingWindow(double* data, int n, int w, double* maxDev, int* pos) {
    if (refuse_window(n, w, maxDev, pos)) return false;
    double sum = 0.0;
    for (int i = 0; i < w; ++i) sum += data[i];
    double best = 0.0;
    int bestStart = 0;
    for (int start = 0; start <= n - w; ++start) {
        if (start > 0) sum = sum - data[start - 1] + data[start + w - 1];
        const double mean = sum / w;
        double squares = 0.0;
        for (int i = start; i < start + w; ++i) {
            const double d = data[i] - mean;
            squares += d * d;
        }
        if (squares > best) {
            best = squares;
            bestStart = start;
        }
    }
    *maxDev = std::sqrt(best / w);
    *pos = bestStart + w / 2;
    return true;
}

bool QelDataMaxDifAndPosInMovingWindow(double* data, int n, int w, double* maxRange, int* pos) {
    if (refuse_window(n, w, maxRange, pos)) return false;
    double best = 0.0;
    int bestStart = 0;
    for (int start = 0; start <= n - w; ++start) {
        const auto extremes = std::minmax_element(data + start, data + start + w);
        const double range = *extremes.second - *extremes.first;
        if (range > best) {
            best = range;
            bestStart = start;
        }
    }
    *maxRange = best;
    *pos = bestStart + w / 2;
    return true;
}

bool QelDataLinearInterpolattion(int* in, int nIn, int* out, int nOut) {
    if (nIn < 2 || nOut < 2) return false;
    if (nIn == nOut) std::memcpy(out, in, static_cast<size_t>(nIn) * sizeof(int));
    const double step = static_cast<double>(nIn - 1) / (nOut - 1);
    for (int i = 0; i < nOut; ++i) {
        const double t = i * step;
        const int j = std::min(static_cast<int>(t), nIn - 1);
        const double f = t - j;
        // At the last output j is nIn − 1 and the formula's right neighbour lies one past the
        // data, with weight 0 (or next to it where the step rounds up); it is taken as 0 rather
        // than read.
        const int right = j + 1 < nIn ? in[j + 1] : 0;
        out[i] = static_cast<int>(right * f + (1 - f) * in[j]);
    }
    return true;
}

bool QelDataFindPeaks(double* data, int n, int half, double* peakValues, int* peakPos, int maxPeaks) {
    for (int p = 0; p < maxPeaks; ++p) {
        peakValues[p] = 0.0;
        peakPos[p] = 0;
    }
    if (n > kMaxPeakSamples) return false;
    bool excluded[kMaxPeakSamples] = {};
    for (int p = 0; p < maxPeaks; ++p) {
        int top = -1;
        double value = 0.0;
        for (int i = 0; i < n; ++i)
            if (!excluded[i] && (top < 0 || data[i] > value)) top = i, value = data[i];
        if (top < 0) break;  // every sample is excluded: the remaining peaks stay 0
        int right = top;
        while (right + 1 < n && !excluded[right + 1] && data[right + 1] == value) ++right;
        int left = top;
        while (left > 0 && !excluded[left - 1] && data[left - 1] == value) --left;
        const int at = (right + left) / 2;
        peakValues[p] = value;
        peakPos[p] = at;
        const int64_t from = std::max<int64_t>(static_cast<int64_t>(at) - half, 0);
        const int64_t to = std::min<int64_t>(static_cast<int64_t>(at) + half, n - 1);
        for (int64_t i = from; i <= to; ++i) excluded[i] = true;
    }
    return true;
}

int QelpDataDeleteByWeightReturnNum(int* values, int* weights, int n, int minWeight, int maxWeight) {
    int kept = 0;
    for (int i = 0; i < n; ++i) {
        if (weights[i] < minWeight || weights[i] > maxWeight) continue;
        values[kept] = values[i];
        weights[kept] = weights[i];
        ++kept;
    }
    for (int i = kept; i < n; ++i) {
        values[i] = 0;
        weights[i] = 0;
    }
    return kept;
}
