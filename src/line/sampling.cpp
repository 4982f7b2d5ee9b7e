// Sampling a grey image along lines: counts along a two-point segment or an ABC line, the grey
// histogram of an ABC line, and matches along a rectangle's outline.
#include "qel/line.h"

#include "line/line_math.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace {

constexpr int kHistogramBins = 256;

unsigned char pixel_at(const unsigned char* image, int width, int x, int y) {
    return image[static_cast<std::ptrdiff_t>(y) * width + x];
}

// Calls visit(pixel) for each sample of the ABC line: one per column when |b| > |a|, else one per
// row, each position rounded (+0.5, truncation) and skipped when it falls outside the image.
template <typename Visit>
void for_each_abc_sample(const unsigned char* image, int width, int height, double a, double b, double c,
                         Visit visit) {
    if (std::fabs(b) > std::fabs(a)) {
        for (int x = 0; x < width; ++x) {
            const int y = qel::round_half_up_truncated(-(x * a + c) / b);
            if (y >= 0 && y < height) visit(pixel_at(image, width, x, y));
        }
    } else {
        for (int y = 0; y < height; ++y) {
            const int x = qel::round_half_up_truncated(-(y * b + c) / a);
            if (x >= 0 && x < width) visit(pixel_at(image, width, x, y));
        }
    }
}

}  // namespace

void QelPixelsOn2PLine(unsigned char* image, int width, int x1, int y1, int x2, int y2, int value,
                       int* equalCount, int* otherCount) {
    int equal = 0;
    int other = 0;
    const auto visit = [&](int x, int y) {
        if (pixel_at(image, width, x, y) == value)
            ++equal;
        else
            ++other;
    };
    const auto visitColumn = [&](int x, int yFrom, int yTo) {
        if (yFrom > yTo) std::swap(yFrom, yTo);
        for (int y = yFrom; y <= yTo; ++y) visit(x, y);
    };
    if (x1 == x2) {
        visitColumn(x1, y1, y2);
    } else if (y1 == y2) {
        for (int x = std::min(x1, x2); x <= std::max(x1, x2); ++x) visit(x, y1);
    } else {
        // Single precision throughout, as callers' counts depend on its rounding.
        const float k = static_cast<float>(y2 - y1) / static_cast<float>(x2 - x1);
        const float b = static_cast<float>(y2) - static_cast<float>(x2) * k;
        const bool firstIsLeft = x1 < x2;
        const int startX = firstIsLeft ? x1 : x2;
        const int endX = firstIsLeft ? x2 : x1;
        int prev = firstIsLeft ? y1 : y2;
        // The starting column itself is never visited: the walk begins one column further on.
        for (int x = startX + 1; x <= endX; ++x) {
            const float yReal = static_cast<float>(x) * k + b;
            const int y = qel::truncate_to_int(yReal);
            visitColumn(x, prev, y);
            prev = y;
        }
    }
    *equalCount = equal;
    *otherCount = other;
}

void QelPixlesOnABCLine(unsigned char* image, int width, int height, double a, double b, double c,
                        int* nonZeroCount, int* zeroCount) {
    int nonZero = 0;
    int zero = 0;
    for_each_abc_sample(image, width, height, a, b, c, [&](unsigned char p) {
        if (p != 0)
            ++nonZero;
        else
            ++zero;
    });
    *nonZeroCount = nonZero;
    *zeroCount = zero;
}

void QelABCLineHistogram(unsigned char* image, int width, int height, double a, double b, double c,
                         int* histogram) {
    for (int i = 0; i < kHistogramBins; ++i) histogram[i] = 0;
    for_each_abc_sample(image, width, height, a, b, c, [&](unsigned char p) { ++histogram[p]; });
}

int QelPixelsOnRect(unsigned char* image, int width, int height, int x1, int x2, int y1, int y2, int value) {
    // Only the near ends are raised to 0 and only the far ends lowered to the last pixel.
    if (x1 < 0) x1 = 0;
    if (y1 < 0) y1 = 0;
    if (x2 > width - 1) x2 = width - 1;
    if (y2 > height - 1) y2 = height - 1;
    int count = 0;
    const auto sample = [&](int x, int y) {
        if (x < 0 || x >= width || y < 0 || y >= height) return;  // an outline left outside the image
        if (pixel_at(image, width, x, y) == value) ++count;
    };
    // Corners are met by both passes, and a one-row (one-column) rectangle is met twice by its pass.
    for (int x = x1; x <= x2; ++x) {
        sample(x, y1);
        sample(x, y2);
    }
    for (int y = y1; y <= y2; ++y) {
        sample(x1, y);
        sample(x2, y);
    }
    return count;
}
