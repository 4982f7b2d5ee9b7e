// Rectangle statistics: the mean absolute difference between two rectangles, rectangle means
// (grey, masked colour, centre against surround), robust extremes, the brightest block, a
// blockwise noise estimate and the bounding box of points.
#include "qel/misc.h"

#include "misc/arithmetic.h"

#include "core/reduce.h"
#include "histogram/statistics.h"
#include "qel/histogram.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

const unsigned char* byte_at(const unsigned char* image, int stride, int y, int x, int bytesPerPixel) {
    return image + static_cast<std::ptrdiff_t>(y) * stride + static_cast<std::ptrdiff_t>(x) * bytesPerPixel;
}

const unsigned char* row_at(const unsigned char* image, int width, int y) {
    return image + static_cast<std::ptrdiff_t>(y) * width;
}

// Σ of the grey pixels in columns x0..x1 of rows y0..y1.
int64_t rect_sum(const unsigned char* image, int width, int x0, int x1, int y0, int y1) {
    int64_t sum = 0;
    for (int y = y0; y <= y1; ++y) {
        const unsigned char* row = row_at(image, width, y);
        for (int x = x0; x <= x1; ++x) sum += row[x];
    }
    return sum;
}

int64_t rect_area(int x0, int x1, int y0, int y1) {
    if (x1 < x0 || y1 < y0) return 0;
    return static_cast<int64_t>(x1 - x0 + 1) * (y1 - y0 + 1);
}

// A bound of the ring's outer box: capped at limit, and 0 when that is below 1.
int outer_bound(int v, int limit) {
    const int capped = std::min(v, limit);
    return capped >= 1 ? capped : 0;
}

}  // namespace

int QelImgDifferenceInRect(unsigned char* img1, unsigned char* img2, bool isRGB, int width, tagRECT r1, tagRECT r2) {
    const int bpp = qel::bytes_per_pixel(isRGB);
    const int stride = width * bpp;
    // Rectangles are measured right − left by bottom − top: their last column and last row are
    // never compared (callers' results depend on it).
    const int cols1 = r1.right - r1.left;
    const int rows1 = r1.bottom - r1.top;
    const int cols2 = r2.right - r2.left;
    const int rows2 = r2.bottom - r2.top;
    if (cols1 <= 0 || rows1 <= 0) return 0;

    int64_t sum = 0;
    int64_t count = 0;
    if (cols1 == cols2 && rows1 == rows2) {
        const int rowBytes = cols1 * bpp;
        for (int j = 0; j < rows1; ++j) {
            const unsigned char* a = byte_at(img1, stride, r1.top + j, r1.left, bpp);
            const unsigned char* b = byte_at(img2, stride, r2.top + j, r2.left, bpp);
            for (int i = 0; i < rowBytes; ++i) sum += qel::abs_diff(a[i], b[i]);
            count += rowBytes;
        }
    } else {
        // The second rectangle is sampled at truncated multiples of its size over the first's.
        const double stepX = static_cast<double>(cols2) / cols1;
        const double stepY = static_cast<double>(rows2) / rows1;
        for (int j = 0; j < rows1; ++j) {
            const unsigned char* a = byte_at(img1, stride, r1.top + j, r1.left, bpp);
            const int y2 = r2.top + static_cast<int>(j * stepY);
            for (int i = 0; i < cols1; ++i) {
                const unsigned char* b = byte_at(img2, stride, y2, r2.left + static_cast<int>(i * stepX), bpp);
                for (int c = 0; c < bpp; ++c) sum += qel::abs_diff(a[i * bpp + c], b[c]);
            }
            count += static_cast<int64_t>(cols1) * bpp;
        }
    }
    return static_cast<int>(sum / count);
}

int QelCenterBlockMeanDif(unsigned char* img, int width, int height, int x0, int x1, int y0, int y1, int margin) {
    const int64_t inner = rect_sum(img, width, x0, x1, y0, y1);
    const int64_t innerArea = rect_area(x0, x1, y0, y1);
    if (innerArea == 0) return 0;
    const int ox0 = outer_bound(x0 - margin, width - 1);
    const int ox1 = outer_bound(x1 + margin, width - 1);
    const int oy0 = outer_bound(y0 - margin, height - 1);
    const int oy1 = outer_bound(y1 + margin, height - 1);
    const int64_t outer = rect_sum(img, width, ox0, ox1, oy0, oy1);
    const int64_t ringArea = rect_area(ox0, ox1, oy0, oy1) - innerArea;
    const int64_t ringMean = ringArea > 0 ? (outer - inner) / ringArea : 0;
    return static_cast<int>(inner / innerArea - ringMean);
}

int QelGryRectAvr(unsigned char* img, int width, int /*height*/, int x0, int x1, int y0, int y1) {
    const int64_t area = rect_area(x0, x1, y0, y1);
    if (area == 0) return 0;
    return static_cast<int>(rect_sum(img, width, x0, x1, y0, y1) / area);
}

void QelGryMinMaxInRect(unsigned char* img, int width, int x0, int x1, int y0, int y1, double ratio, int* lo,
                        int* hi) {
    // Where no pixel is to be passed over (k = 0: ratio 0, or too small to count one pixel), the
    // walks stop at the darkest and the brightest pixel present: a plain minimum and maximum.
    const int64_t area = x1 >= x0 && y1 >= y0 ? static_cast<int64_t>(x1 - x0 + 1) * (y1 - y0 + 1) : 0;
    if (area > 0 && static_cast<int64_t>(static_cast<double>(area) * ratio) == 0) {
        *lo = 255;
        *hi = 0;
        for (int y = y0; y <= y1; ++y)
            qel::fold_min_max(row_at(img, width, y) + x0, static_cast<size_t>(x1 - x0 + 1), *lo, *hi);
        return;
    }
    int hist[qel::kGreyLevels];
    QelGetHistogramInRect(img, width, x0, x1, y0, y1, hist);
    const int64_t k = qel::ratio_of_total(hist, ratio);
    *lo = qel::darkest_level_past(hist, k);
    // The downward walk stops at level 0 whether or not it got past k there.
    *hi = std::max(0, qel::brightest_level_past(hist, k));
}

double QelMaxBrightRect(unsigned char* img, int width, int height, int blockW, int blockH, int* cx, int* cy) {
    *cx = width / 2;
    *cy = height / 2;
    if (height < blockH || width < blockW || blockW <= 0 || blockH <= 0) return 0.0;

    // Column sums over the block's rows, slid down one row at a time.
    std::vector<int64_t> column(static_cast<size_t>(width), 0);
    for (int y = 0; y < blockH - 1; ++y) {
        const unsigned char* row = row_at(img, width, y);
        for (int x = 0; x < width; ++x) column[x] += row[x];
    }
    int64_t best = 0;
    // The last possible top row (height − blockH) and left column (width − blockW) are never
    // tried; callers' results depend on it.
    for (int y = 0; y < height - blockH; ++y) {
        const unsigned char* bottom = row_at(img, width, y + blockH - 1);
        for (int x = 0; x < width; ++x) column[x] += bottom[x];

        int64_t sum = 0;
        for (int x = 0; x < blockW; ++x) sum += column[x];
        int64_t rowBest = sum;
        int rowCentre = blockW / 2;
        for (int x = 1; x < width - blockW; ++x) {
            sum += column[x - 1 + blockW] - column[x - 1];
            if (sum > rowBest) {
                rowBest = sum;
                rowCentre = x + blockW / 2;
            }
        }
        if (rowBest > best) {
            best = rowBest;
            *cx = rowCentre;
            *cy = y + blockH / 2;
        }

        const unsigned char* top = row_at(img, width, y);
        for (int x = 0; x < width; ++x) column[x] -= top[x];
    }
    return static_cast<double>(best) / (blockW * blockH);
}

int QelEstimateImgStdev(unsigned char* img, unsigned char* mask, int width, int height, int blockW, int blockH) {
    int votes[qel::kGreyLevels] = {};
    if (blockW > 0 && blockH > 0) {
        const int blockArea = blockW * blockH;
        // Steps of half a block; blocks of one pixel step by one.
        const int stepX = std::max(1, blockW / 2);
        const int stepY = std::max(1, blockH / 2);
        int hist[qel::kGreyLevels];
        for (int y = 0; y < height; y += stepY) {
            // A block spans blockH + 1 rows and blockW + 1 columns, clipped to the image.
            const int yEnd = std::min(height - 1, y + blockH);
            for (int x = 0; x < width; x += stepX) {
                const int xEnd = std::min(width - 1, x + blockW);
                QelGetHistogramByMasked(img, mask, width, x, xEnd, y, yEnd, hist);
                const int64_t cnt = qel::histogram_total(hist);
                if (3 * cnt <= blockArea) continue;
                double mean = 0.0;
                double deviation = 0.0;
                QelGetImageAvrAndDev(hist, &mean, &deviation);
                votes[static_cast<int>(deviation + 0.5)] += static_cast<int>(4 * cnt / blockArea);
            }
        }
    }
    return QelGetMedianInHistogram(votes);
}

void QelPointsRect(int* xs, int* ys, int n, int* minX, int* maxX, int* minY, int* maxY) {
    if (n < 1) return;
    const auto [xLo, xHi] = std::minmax_element(xs, xs + n);
    const auto [yLo, yHi] = std::minmax_element(ys, ys + n);
    *minX = *xLo;
    *maxX = *xHi;
    *minY = *yLo;
    *maxY = *yHi;
}

void QelRGBRectAvr(unsigned char* rgb, unsigned char* mask, int width, int /*height*/, int x0, int x1, int y0,
                   int y1, int* r, int* g, int* b) {
    int64_t sum[3] = {0, 0, 0};
    int64_t count = 0;
    for (int y = y0; y <= y1; ++y) {
        const unsigned char* m = row_at(mask, width, y);
        // The colour pointer moves on only when a counted mask pixel is met, so the k-th counted
        // pixel of a row takes the colour of the rectangle row's k-th pixel, not its own.
        // Callers' results depend on it.
        const unsigned char* colour = byte_at(rgb, width * 3, y, x0, 3);
        for (int x = x0; x <= x1; ++x) {
            if (m[x] != 255) continue;
            for (int c = 0; c < 3; ++c) sum[c] += colour[c];
            colour += 3;
            ++count;
        }
    }
    if (count == 0) {
        *r = *g = *b = 0;
        return;
    }
    *b = static_cast<int>(sum[0] / count);
    *g = static_cast<int>(sum[1] / count);
    *r = static_cast<int>(sum[2] / count);
}

void QelGetRGBRectAvr(unsigned char* rgb, unsigned char* mask, int width, int height, int x0, int x1, int y0, int y1,
                      int* r, int* g, int* b) {
    QelRGBRectAvr(rgb, mask, width, height, x0, x1, y0, y1, r, g, b);
}
