// Projections: per-column and per-row sums of grey, binary and colour images, and their display as
// bar charts drawn into a grey image.
#include "qel/geometry.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

const unsigned char* row_at(const unsigned char* image, int width, int y) {
    return image + static_cast<std::ptrdiff_t>(y) * width;
}

void clear(int* values, int count) {
    if (count > 0) std::memset(values, 0, static_cast<size_t>(count) * sizeof(int));
}

// Adds columns x0..x1 of rows y0..y1 into prjX[x0..x1] and prjY[y0..y1], each pixel counted as
// value(pixel).
template <typename Value>
void accumulate(const unsigned char* img, int width, int x0, int x1, int y0, int y1, int* prjX, int* prjY,
                Value value) {
    for (int y = y0; y <= y1; ++y) {
        const unsigned char* row = row_at(img, width, y);
        int rowSum = 0;
        for (int x = x0; x <= x1; ++x) {
            const int v = value(row[x]);
            prjX[x] += v;
            rowSum += v;
        }
        prjY[y] += rowSum;
    }
}

int grey(unsigned char v) { return v; }

// Scale of a bar chart: a profile value v becomes a bar of trunc((v − lo) / scale + 0.5) pixels,
// scale = (hi − lo + 2.0) / length. The + 2.0 keeps the longest bar one or two pixels short of
// the full length.
struct BarScale {
    int64_t lo;
    double scale;
    // Bars that would be negative draw nothing; they are returned as 0 so that no value out of
    // int range is ever converted.
    int bar(int v) const {
        const double length = static_cast<double>(v - lo) / scale + 0.5;
        return length > 0.0 ? static_cast<int>(length) : 0;
    }
};

// lo and hi of values[first..last]: the minimum starting from width · height · 255 and the
// maximum starting from 0; with fixLowAtZero the minimum is 0 instead.
BarScale bar_scale(const int* values, int first, int last, int width, int height, int length, bool fixLowAtZero) {
    int64_t lo = static_cast<int64_t>(width) * height * 255;
    int64_t hi = 0;
    for (int i = first; i <= last; ++i) {
        lo = std::min<int64_t>(lo, values[i]);
        hi = std::max<int64_t>(hi, values[i]);
    }
    if (fixLowAtZero) lo = 0;
    return BarScale{lo, (static_cast<double>(hi - lo) + 2.0) / length};
}

// Paints, for each column x in xFirst..xLast, a bar of bars.bar(prj[x]) pixels from the bottom
// row up. Bars stop short of row 0: at most height − 1 pixels.
void draw_columns(unsigned char* img, int width, int height, const int* prj, int xFirst, int xLast,
                  const BarScale& bars, int colour) {
    const unsigned char value = static_cast<unsigned char>(colour);
    for (int x = xFirst; x <= xLast; ++x) {
        const int bar = std::min(bars.bar(prj[x]), height - 1);
        for (int k = 0; k < bar; ++k) img[static_cast<std::ptrdiff_t>(height - 1 - k) * width + x] = value;
    }
}

void draw_prj_x(unsigned char* img, int width, int height, int* prj, int n, int colour, bool fixLowAtZero) {
    if (width <= 0 || height <= 0) return;
    // lo and hi come from all n entries, but only min(n, width) columns are drawn.
    const BarScale bars = bar_scale(prj, 0, n - 1, width, height, height, fixLowAtZero);
    draw_columns(img, width, height, prj, 0, std::min(n, width) - 1, bars, colour);
}

void draw_prj_y(unsigned char* img, int width, int height, int* prj, int n, int colour, bool fixLowAtZero) {
    if (width <= 0 || height <= 0) return;
    // Unlike the column chart, both the scale and the bars cover min(height, n) entries.
    const int m = std::min(height, n);
    const BarScale bars = bar_scale(prj, 0, m - 1, width, height, width, fixLowAtZero);
    const unsigned char value = static_cast<unsigned char>(colour);
    for (int y = 0; y < m; ++y) {
        // Bars stop short of the last column: at most width − 1 pixels.
        const int bar = std::min(width - 1, bars.bar(prj[y]));
        if (bar > 0) std::memset(img + static_cast<std::ptrdiff_t>(y) * width, value, static_cast<size_t>(bar));
    }
}

}  // namespace

void QelGryImgPrjXY(unsigned char* img, int width, int height, int* prjX, int* prjY) {
    clear(prjX, width);
    clear(prjY, height);
    accumulate(img, width, 0, width - 1, 0, height - 1, prjX, prjY, grey);
}

void QelGryImgPrjXYInRect(unsigned char* img, int width, int height, int x0, int x1, int y0, int y1, int* prjX,
                          int* prjY) {
    clear(prjX, width);
    clear(prjY, height);
    accumulate(img, width, x0, x1, y0, y1, prjX, prjY, grey);
}

void QelBinImgPrjXYInRect(unsigned char* img, int width, int /*height*/, int x0, int x1, int y0, int y1, int* prjX,
                          int* prjY) {
    // Only the rectangle's own entries are cleared; the rest of both profiles is left as it was.
    if (x1 >= x0) clear(prjX + x0, x1 - x0 + 1);
    if (y1 >= y0) clear(prjY + y0, y1 - y0 + 1);
    accumulate(img, width, x0, x1, y0, y1, prjX, prjY, [](unsigned char v) { return v != 0 ? 1 : 0; });
}

void QelRGBImgPrj2X(unsigned char* rgb, int width, int height, int* prjR, int* prjG, int* prjB) {
    clear(prjR, width);
    clear(prjG, width);
    clear(prjB, width);
    for (int y = 0; y < height; ++y) {
        const unsigned char* p = rgb + static_cast<std::ptrdiff_t>(y) * width * 3;
        for (int x = 0; x < width; ++x, p += 3) {
            prjB[x] += p[0];
            prjG[x] += p[1];
            prjR[x] += p[2];
        }
    }
}

void QelRGBImgPrj2X(unsigned char* rgb, int width, int height, int* prj) {
    clear(prj, width);
    for (int y = 0; y < height; ++y) {
        const unsigned char* p = rgb + static_cast<std::ptrdiff_t>(y) * width * 3;
        for (int x = 0; x < width; ++x, p += 3) prj[x] += p[0] + p[1] + 2 * p[2];
    }
    for (int x = 0; x < width; ++x) prj[x] >>= 2;
}

void QelDrawPrjX(unsigned char* img, int width, int height, int* prj, int n, int colour) {
    draw_prj_x(img, width, height, prj, n, colour, false);
}

void QelDrawPrjX(unsigned char* img, int width, int height, int* prj, int x0, int x1, int colour) {
    if (width <= 0 || height <= 0) return;
    const BarScale bars = bar_scale(prj, x0, x1, width, height, height, false);
    draw_columns(img, width, height, prj, std::max(x0, 0), std::min(x1, width - 1), bars, colour);
}

void QelDrawPrjXMinV0(unsigned char* img, int width, int height, int* prj, int n, int colour) {
    draw_prj_x(img, width, height, prj, n, colour, true);
}

void QelDrawPrjY(unsigned char* img, int width, int height, int* prj, int n, int colour) {
    draw_prj_y(img, width, height, prj, n, colour, false);
}

void QelDrawPrjYMinV0(unsigned char* img, int width, int height, int* prj, int n, int colour) {
    draw_prj_y(img, width, height, prj, n, colour, true);
}
