// The growing-window majority filter: a box majority whose half sizes grow linearly from the top
// row to the bottom, for images whose objects look larger nearer the camera.
#include "qel/binary.h"

#include "binary/neighbourhood.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace qel {
namespace {

// A window is object when its mean exceeds this level.
constexpr int kMajorityLevel = 127;

// Half sizes beyond this fit no image; they are reported as too large instead of being converted.
constexpr double kHalfSizeLimit = 1 << 29;

// Half size for row y: round(r0 × ((scale − 1) × y / height + 1)), rounding by +0.5 and truncation
// toward zero. False when the value is out of int range (or not a number): no window for the row.
bool grown_half_size(int r0, double scale, int y, int height, int* half) {
    const double v = r0 * ((scale - 1.0) * y / height + 1.0) + 0.5;
    if (!(v > -kHalfSizeLimit && v < kHalfSizeLimit)) return false;
    *half = static_cast<int>(v);
    return true;
}

// Sum of count pixels read along the buffer from linear index `from`, in the direction `step`
// (+1 or −1). Indices outside the buffer's `total` pixels count as 0.
int64_t sum_along_buffer(const unsigned char* image, std::ptrdiff_t total, std::ptrdiff_t from, int count, int step) {
    int64_t sum = 0;
    for (int k = 0; k < count; ++k) {
        const std::ptrdiff_t i = from + static_cast<std::ptrdiff_t>(k) * step;
        if (i >= 0 && i < total) sum += image[i];
    }
    return sum;
}

}  // namespace
}  // namespace qel

void QelBinImgMedFilter(unsigned char* image, int width, int height, int rx0, int ry0, double xScale,
                        double yScale, unsigned char* out) {
    if (width <= 0 || height <= 0) return;
    const std::ptrdiff_t total = static_cast<std::ptrdiff_t>(width) * height;
    std::vector<int64_t> columnSums(static_cast<size_t>(width));
    for (int y = 0; y < height; ++y) {
        int rx = 0;
        int ry = 0;
        if (!qel::grown_half_size(rx0, xScale, y, height, &rx) || !qel::grown_half_size(ry0, yScale, y, height, &ry))
            continue;
        if (rx < 0 || ry < 0) continue;  // no window: the row is left as it is
        if ((rx < 1 && ry < 1) || 2 * rx + 1 > width) continue;
        const int span = 2 * rx + 1;

        // The window's rows: shifted down at the top and up at the bottom, never shrunk.
        int top = y - ry;
        int bottom = y + ry;
        if (y < ry) {
            top = y;
            bottom = std::min(y + 2 * ry, height - 1);
        } else if (y + ry > height - 1) {
            top = std::max(y - 2 * ry, 0);
            bottom = y;
        }
        const int64_t rows = bottom - top + 1;

        std::fill(columnSums.begin(), columnSums.end(), 0);
        for (int r = top; r <= bottom; ++r) {
            const unsigned char* row = image + static_cast<std::ptrdiff_t>(r) * width;
            for (int x = 0; x < width; ++x) columnSums[static_cast<size_t>(x)] += row[x];
        }

        const std::ptrdiff_t rowStart = static_cast<std::ptrdiff_t>(y) * width;
        unsigned char* outRow = out + rowStart;
        const int64_t bandLimit = rows * qel::kMajorityLevel * span;
        int64_t sum = 0;
        for (int x = 0; x < span - 1; ++x) sum += columnSums[static_cast<size_t>(x)];
        for (int x = rx; x <= width - 2 - rx; ++x) {
            sum += columnSums[static_cast<size_t>(x + rx)];
            outRow[x] = sum > bandLimit ? qel::kObject : qel::kBackground;
            sum -= columnSums[static_cast<size_t>(x - rx)];
        }

        // The first and last rx columns (and the last column when rx is 0) use row y alone, with the
        // window shifted to start or end at the pixel, read along the buffer.
        const int64_t lineLimit = static_cast<int64_t>(qel::kMajorityLevel) * span;
        for (int x = 0; x < rx; ++x) {
            const int64_t s = qel::sum_along_buffer(image, total, rowStart + x, span, +1);
            outRow[x] = s > lineLimit ? qel::kObject : qel::kBackground;
        }
        for (int x = width - 1 - rx; x < width; ++x) {
            const int64_t s = qel::sum_along_buffer(image, total, rowStart + x, span, -1);
            outRow[x] = s > lineLimit ? qel::kObject : qel::kBackground;
        }
    }
}
