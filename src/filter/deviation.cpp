// Local deviation measures of grey images: a noise estimate from a second-difference mask, and
// standard deviations per column, per row or per band of columns.
//
// Sums of pixels and of their squares are kept in 32-bit integers as the measures are defined:
// they wrap modulo 2^32 on very long lines and the wrapped values are the ones used. Everything is
// computed on the stack or in the caller's buffers, so all functions are reentrant.
#include "qel/filter.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace qel {
namespace {

// The noise mask [1 −2 1; −2 4 −2; 1 −2 1] has Σw² = 36: dividing r² by it gives a per-pixel variance.
constexpr int kNoiseMaskEnergy = 36;
constexpr unsigned kNoiseMapCeiling = 250;
constexpr double kDeviationScale = 100.0;

// Σp and Σp² of a line of pixels, both modulo 2^32.
struct Moments {
    uint32_t sum = 0;
    uint32_t squares = 0;

    void add(unsigned p) {
        sum += p;
        squares += p * p;
    }
    void add(const Moments& m) {
        sum += m.sum;
        squares += m.squares;
    }
};

// The 32-bit signed integer a wrapped sum stands for.
int32_t as_signed(uint32_t v) { return static_cast<int32_t>(v); }

// 100 × population deviation, truncated toward zero. A wrapped sum of squares can make the variance
// negative; the deviation is then NaN and is stored as INT_MIN, the value a truncating conversion of
// NaN gives on x86.
int deviation100(const Moments& m, int64_t n) {
    const double count = static_cast<double>(n);
    const double mean = static_cast<double>(as_signed(m.sum)) / count;
    const double deviation = std::sqrt(static_cast<double>(as_signed(m.squares)) / count - mean * mean);
    const double scaled = deviation * kDeviationScale;
    if (!(scaled > static_cast<double>(INT_MIN) - 1.0 && scaled < static_cast<double>(INT_MAX) + 1.0)) return INT_MIN;
    return static_cast<int>(scaled);
}

// n·Σp² − (Σp)² modulo 2^32: n² × variance, exact while it fits an int (n ≤ 363).
int deviation_squared(const Moments& m, int64_t n) {
    return as_signed(static_cast<uint32_t>(n) * m.squares - m.sum * m.sum);
}

Moments line_moments(const unsigned char* p, int count, ptrdiff_t step) {
    Moments m;
    for (int i = 0; i < count; ++i, p += step) m.add(*p);
    return m;
}

// Column profiles measure each column x0..x1 down rows y0..y1 and store out[x]; row profiles measure
// each row y0..y1 across columns x0..x1 and store out[y]. The rectangle is first cut to the image.
enum class Lines { Columns, Rows };

template <class Measure>
void deviation_profile(const unsigned char* src, int width, int height, int x0, int x1, int y0, int y1, Lines lines,
                       int* out, Measure measure) {
    x0 = std::max(x0, 0);
    y0 = std::max(y0, 0);
    x1 = std::min(x1, width - 1);
    y1 = std::min(y1, height - 1);
    if (x1 < x0 || y1 < y0) return;

    const bool columns = lines == Lines::Columns;
    const ptrdiff_t along = columns ? width : 1;   // from one pixel of a line to the next
    const ptrdiff_t across = columns ? 1 : width;  // from one line to the next
    const int first = columns ? x0 : y0;
    const int last = columns ? x1 : y1;
    const int n = columns ? y1 - y0 + 1 : x1 - x0 + 1;
    const unsigned char* line = src + static_cast<ptrdiff_t>(y0) * width + x0;
    for (int i = first; i <= last; ++i, line += across) out[i] = measure(line_moments(line, n, along), n);
}

void clear(int* out, int count) { std::fill(out, out + std::max(count, 0), 0); }

// The Dev100 profiles also zero every entry of out (width or height of them) that they do not measure.
void deviation100_profile(const unsigned char* src, int width, int height, int x0, int x1, int y0, int y1,
                          Lines lines, int* out) {
    clear(out, lines == Lines::Columns ? width : height);
    deviation_profile(src, width, height, x0, x1, y0, y1, lines, out, deviation100);
}

}  // namespace
}  // namespace qel

double QelEstimateNoiseDelta(unsigned char* src, int width, int height, unsigned char* dst) {
    // With fewer than three rows or columns there is no interior pixel and the divisor is not positive.
    if (width < 3 || height < 3) return 0.0;
    const size_t w = static_cast<size_t>(width);
    uint32_t energy = 0;  // wraps on very large images; the wrapped value is the one used
    for (int y = 1; y < height - 1; ++y) {
        const unsigned char* above = src + (y - 1) * w;
        const unsigned char* here = above + w;
        const unsigned char* below = here + w;
        unsigned char* out = dst + y * w;
        for (size_t x = 1; x + 1 < w; ++x) {
            const int r = (above[x - 1] - 2 * above[x] + above[x + 1]) -
                          2 * (here[x - 1] - 2 * here[x] + here[x + 1]) +
                          (below[x - 1] - 2 * below[x] + below[x + 1]);
            const unsigned r2 = static_cast<unsigned>(r * r);
            energy += r2;
            out[x] = static_cast<unsigned char>(std::min(r2 / qel::kNoiseMaskEnergy, qel::kNoiseMapCeiling));
        }
    }
    return std::sqrt(energy / ((width - 2) * static_cast<double>(qel::kNoiseMaskEnergy) * (height - 2)));
}

void QelGryImgColDev100(unsigned char* src, int width, int height, int x0, int x1, int y0, int y1, int* out) {
    qel::deviation100_profile(src, width, height, x0, x1, y0, y1, qel::Lines::Columns, out);
}

void QelGryImgColDevDev(unsigned char* src, int width, int height, int x0, int x1, int y0, int y1, int* out) {
    qel::deviation_profile(src, width, height, x0, x1, y0, y1, qel::Lines::Columns, out, qel::deviation_squared);
}

void QelGryImgRowDev100(unsigned char* src, int width, int height, int x0, int x1, int y0, int y1, int* out) {
    qel::deviation100_profile(src, width, height, x0, x1, y0, y1, qel::Lines::Rows, out);
}

void QelGryImgRowDevDev(unsigned char* src, int width, int height, int x0, int x1, int y0, int y1, int* out) {
    qel::deviation_profile(src, width, height, x0, x1, y0, y1, qel::Lines::Rows, out, qel::deviation_squared);
}

void QelGryImgColsDev100(unsigned char* src, int width, int height, int bandWidth, int* out) {
    if (width <= 0) return;
    if (bandWidth < 1 || height <= 0) {
        qel::clear(out, width);
        return;
    }
    bandWidth = std::min(bandWidth, width);

    // Per-column moments over all rows, gathered row by row; the bands then add up their columns
    // (sums modulo 2^32 do not depend on the order of addition).
    std::vector<qel::Moments> columns(static_cast<size_t>(width));
    const unsigned char* row = src;
    for (int y = 0; y < height; ++y, row += width) {
        for (int x = 0; x < width; ++x) columns[x].add(row[x]);
    }
    const int64_t n = static_cast<int64_t>(height) * bandWidth;
    auto measure_band = [&](int start) {
        qel::Moments band;
        for (int x = start; x < start + bandWidth; ++x) band.add(columns[x]);
        const int value = qel::deviation100(band, n);
        std::fill(out + start, out + start + bandWidth, value);
    };

    const int bands = width / bandWidth;
    for (int b = 0; b < bands; ++b) measure_band(b * bandWidth);
    // Intended: a remainder narrower than a band is measured as the last bandWidth columns of the
    // image, overwriting the tail of the last whole band, so every value comes from a full band.
    if (bands * bandWidth < width) measure_band(width - bandWidth);
}
