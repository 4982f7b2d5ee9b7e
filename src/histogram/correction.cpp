// Grey-value corrections: inversion, remapping of the mark levels, 16-level stretch, brightness
// normalisation, gain profiles across rows and columns and per-row or per-column lighting
// correction. Each is a look-up table (one per image, row or column) applied to every pixel.
#include "histogram/statistics.h"

#include "core/lut.h"
#include "qel/histogram.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace {

using qel::kGreyLevels;
using qel::pixel_count;
constexpr int kMaxLevel = 255;
constexpr int kMarkFreeMax = 250;        // 251..255 are kept for coloured marks
constexpr int kFourBitMax = 15;
constexpr int kTenPercentDivisor = 10;   // running count × 10 > N marks the 10 % point
constexpr int kMaxLightLines = 4096;     // lighting correction refuses more lines than this
constexpr int kGainShift = 10;           // lighting gains are fixed point with unit 1024
constexpr int64_t kGainOne = int64_t{1} << kGainShift;

void apply_to_image(unsigned char* image, int width, int height, const unsigned char* lut) {
    qel::apply_lut(image, pixel_count(width, height), lut, image);
}

enum class Axis { Rows, Columns };

// Replaces every pixel through the table of its line (its row or its column); tables holds
// 256 entries per line, line after line.
void apply_line_tables(unsigned char* image, int width, int height, Axis axis,
                       const std::vector<unsigned char>& tables) {
    for (int y = 0; y < height; ++y) {
        unsigned char* row = image + static_cast<size_t>(y) * static_cast<size_t>(width);
        if (axis == Axis::Rows) {
            qel::apply_lut(row, static_cast<size_t>(width), &tables[static_cast<size_t>(y) * kGreyLevels], row);
        } else {
            const unsigned char* table = tables.data();
            for (int x = 0; x < width; ++x, table += kGreyLevels) row[x] = table[row[x]];
        }
    }
}

// Low byte of v truncated towards zero, as an integer store of a negative product would leave
// it. Values that are not finite give 0.
unsigned char low_byte_of_truncated(double v) {
    if (!std::isfinite(v)) return 0;
    double t = std::fmod(std::trunc(v), 256.0);
    if (t < 0) t += 256.0;
    return static_cast<unsigned char>(t);
}

// Gain table: g × factor, 255 when above 255, otherwise truncated (negative products keep their
// low byte: the gain profiles do not clamp at 0).
void fill_gain_table(double factor, unsigned char* lut) {
    for (int g = 0; g < kGreyLevels; ++g) {
        const double v = g * factor;
        lut[g] = v > kMaxLevel ? static_cast<unsigned char>(kMaxLevel) : low_byte_of_truncated(v);
    }
}

// Lighting correction along one axis: every line (row or column) is scaled so that its sum
// approaches the mean line sum; results stop at 250. Returns the integer mean grey level.
int light_correct(unsigned char* image, int width, int height, Axis axis) {
    const int lines = axis == Axis::Rows ? height : width;
    const int perLine = axis == Axis::Rows ? width : height;
    if (lines > kMaxLightLines) return 0;
    if (width <= 0 || height <= 0) return 0;

    std::vector<int64_t> sums(static_cast<size_t>(lines), 0);
    int64_t total = 0;
    for (int y = 0; y < height; ++y) {
        const unsigned char* row = image + static_cast<size_t>(y) * static_cast<size_t>(width);
        for (int x = 0; x < width; ++x) sums[static_cast<size_t>(axis == Axis::Rows ? y : x)] += row[x];
    }
    for (int64_t s : sums) total += s;
    const int64_t target = total / lines;

    std::vector<unsigned char> tables(static_cast<size_t>(lines) * kGreyLevels);
    for (int line = 0; line < lines; ++line) {
        const int64_t sum = sums[static_cast<size_t>(line)];
        // An all-black line cannot be brightened by a gain: it keeps gain 1 and stays black.
        const int64_t gain = sum == 0 ? kGainOne : target * kGainOne / sum;
        unsigned char* lut = &tables[static_cast<size_t>(line) * kGreyLevels];
        for (int g = 0; g < kGreyLevels; ++g) {
            const int64_t v = (g * gain) >> kGainShift;
            lut[g] = static_cast<unsigned char>(v > kMarkFreeMax ? kMarkFreeMax : v);
        }
    }
    apply_line_tables(image, width, height, axis, tables);
    return static_cast<int>(target / perLine);
}

}  // namespace

void QelInvertGryValue(unsigned char* image, int width, int height, unsigned char* out) {
    unsigned char lut[kGreyLevels];
    for (int g = 0; g < kGreyLevels; ++g) lut[g] = static_cast<unsigned char>(kMaxLevel - g);
    qel::apply_lut(image, pixel_count(width, height), lut, out);
}

void QelInvertGryValue(unsigned char* image, int width, int height) {
    QelInvertGryValue(image, width, height, image);
}

void QelChange0and250PlusPixels(unsigned char* image, int width, int height) {
    unsigned char lut[kGreyLevels];
    for (int g = 0; g < kGreyLevels; ++g) lut[g] = static_cast<unsigned char>(g > kMarkFreeMax ? kMarkFreeMax : g);
    lut[0] = 1;
    apply_to_image(image, width, height, lut);
}

void QelSetOddPixelsTo255(unsigned char* image, int width, int height) {
    unsigned char lut[kGreyLevels];
    for (int g = 0; g < kGreyLevels; ++g) lut[g] = static_cast<unsigned char>(g % 2 != 0 ? kMaxLevel : g);
    apply_to_image(image, width, height, lut);
}

void QelSetPixelsTo255(unsigned char* image, int width, int x1, int x2, int y1, int y2, unsigned char value) {
    unsigned char lut[kGreyLevels] = {};
    lut[value] = kMaxLevel;
    qel::apply_lut_in_rect(image, width, x1, x2, y1, y2, lut, image);
}

void QelGryImg4Bit(unsigned char* image, int width, int height) {
    int hist[kGreyLevels];
    const size_t n = qel::image_histogram(image, width, height, hist);
    if (n == 0) return;
    // The 10 % points: the first levels, from either end, at which the running count × 10
    // exceeds N, i.e. at which more than N / 10 (integer division) pixels have been passed. The
    // walks always stop, as the whole count exceeds N / 10.
    const int64_t tenth = static_cast<int64_t>(n) / kTenPercentDivisor;
    const int lo = qel::darkest_level_past(hist, tenth);
    const int hi = qel::brightest_level_past(hist, tenth);

    unsigned char lut[kGreyLevels];
    for (int g = 0; g < kGreyLevels; ++g) {
        int v;
        if (g < lo) v = 0;
        else if (g > hi) v = kFourBitMax;          // the value at hi
        else if (hi == lo) v = kFourBitMax;        // no spread between the 10 % points: a step at lo
        else v = (g - lo) * kFourBitMax / (hi - lo);
        lut[g] = static_cast<unsigned char>(v);
    }
    qel::apply_lut(image, n, lut, image);
}

void QelGryImgNormalize(unsigned char* image, int width, int height, int wantedMean, int wantedDeviation) {
    int hist[kGreyLevels];
    const size_t n = qel::image_histogram(image, width, height, hist);
    if (n == 0) return;
    // Integer mean and the deviation about it, truncated: the table is built in whole numbers.
    const int64_t total = static_cast<int64_t>(n);
    const int64_t mean = qel::integer_mean(hist, total);
    int64_t squares = 0;
    for (int g = 0; g < kGreyLevels; ++g) squares += (g - mean) * (g - mean) * hist[g];
    int64_t dev = static_cast<int64_t>(std::sqrt(static_cast<double>(squares) / static_cast<double>(total)));
    // A deviation below 1 would divide by zero: it counts as 1, so a flat image takes the
    // wanted mean.
    if (dev == 0) dev = 1;

    unsigned char lut[kGreyLevels];
    for (int g = 0; g < kGreyLevels; ++g) {
        const int64_t v = (g - mean) * wantedDeviation / dev + wantedMean;  // division truncates towards zero
        lut[g] = static_cast<unsigned char>(v < 0 ? 0 : (v > kMaxLevel ? kMaxLevel : v));
    }
    qel::apply_lut(image, n, lut, image);
}

void QelCorrectPixelsGryValueByCol(unsigned char* image, int width, int height, double edgeGain) {
    if (pixel_count(width, height) == 0) return;
    const int centre = width / 2;
    std::vector<unsigned char> tables(static_cast<size_t>(width) * kGreyLevels);
    for (int x = 0; x < width; ++x) {
        const double factor = 1.0 + (edgeGain - 1.0) * 2.0 / width * std::abs(x - centre);
        fill_gain_table(factor, &tables[static_cast<size_t>(x) * kGreyLevels]);
    }
    apply_line_tables(image, width, height, Axis::Columns, tables);
}

void QelCorrectPixelsGryValueByRow(unsigned char* image, int width, int height, double edgeGain) {
    // The ramp divides by height / 2: images under two rows have no ramp and stay as they are.
    if (pixel_count(width, height) == 0 || height < 2) return;
    const int centre = height / 2;
    const double step = (edgeGain - 1.0) / centre;
    std::vector<unsigned char> tables(static_cast<size_t>(height) * kGreyLevels);
    for (int y = 0; y < height; ++y) {
        // Signed distance from the centre, unlike the column form: rows above the centre are
        // scaled by less than 1 when the gain is above 1. The asymmetry is intended.
        const double factor = (y - centre) * step + 1.0;
        fill_gain_table(factor, &tables[static_cast<size_t>(y) * kGreyLevels]);
    }
    apply_line_tables(image, width, height, Axis::Rows, tables);
}

int QelLightCorretPerCol(unsigned char* image, int width, int height) {
    return light_correct(image, width, height, Axis::Columns);
}

int QelLightCorretPerRow(unsigned char* image, int width, int height) {
    return light_correct(image, width, height, Axis::Rows);
}
