// Edge post-processing, measuring: a threshold from the grey levels around edge pixels, the
// strongest responses per row and column of a rectangle or an ellipse, and the local grey range.
#include "qel/edge.h"

#include "core/directions.h"
#include "line/line_math.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace qel {
namespace {

constexpr int kLevels = 256;
constexpr int kWalkReads = 8;
constexpr int kExclusion = 10;     // the second response lies farther than this from the first
constexpr int kNone = -1;          // position of a line without a positive value
constexpr int kMaxRangeWidth = 4096;

inline const unsigned char* row_at(const unsigned char* image, int width, int y) {
    return image + static_cast<std::ptrdiff_t>(y) * width;
}

// ---- the two strongest responses along a line of samples ---------------------------------------

struct Strongest {
    int first, second;  // ascending
};

// Positions lo..hi of a line whose position i is line[i·step]: a, the first largest value scanning
// upwards (kNone when none is positive), and b, the first largest value met scanning down from hi
// among positions farther than 10 from a (a when none is positive there).
Strongest two_strongest(const unsigned char* line, std::ptrdiff_t step, int lo, int hi) {
    int a = kNone, best = 0;
    for (int i = lo; i <= hi; ++i)
        if (line[i * step] > best) best = line[i * step], a = i;
    int b = a;
    best = 0;
    for (int i = hi; i >= lo; --i)
        if ((i < a - kExclusion || i > a + kExclusion) && line[i * step] > best) best = line[i * step], b = i;
    return {std::min(a, b), std::max(a, b)};
}

// Row y over columns lo..hi, clipped to the image's columns.
void strongest_in_row(const unsigned char* grd, int width, int y, int lo, int hi, int* first, int* second) {
    const Strongest s = two_strongest(row_at(grd, width, y), 1, std::max(lo, 0), std::min(hi, width - 1));
    first[y] = s.first;
    second[y] = s.second;
}

// Column x over rows lo..hi, clipped at the top.
void strongest_in_column(const unsigned char* grd, int width, int x, int lo, int hi, int* first, int* second) {
    const Strongest s = two_strongest(grd + x, width, std::max(lo, 0), hi);
    first[x] = s.first;
    second[x] = s.second;
}

// Half chord of an ellipse at distance t from its centre along the axis of half length along,
// scaled to the other axis: sqrt(along² − t²)·(across/along).
double half_chord(int64_t along, int64_t t, int across) {
    return std::sqrt(static_cast<double>(along * along - t * t)) * (static_cast<double>(across) / along);
}

// ---- local range -------------------------------------------------------------------------------

// max − min of the column extremes over columns lo..hi.
inline unsigned char window_range(const unsigned char* colMin, const unsigned char* colMax, int lo, int hi) {
    unsigned char mn = 255, mx = 0;
    for (int x = lo; x <= hi; ++x) {
        mn = std::min(mn, colMin[x]);
        mx = std::max(mx, colMax[x]);
    }
    return static_cast<unsigned char>(mx - mn);
}

}  // namespace
}  // namespace qel

int QelGetThresholdByEdge(unsigned char* grey, unsigned char* edge, int width, int x0, int x1, int y0, int y1,
                          int mode) {
    // Counts are added to ranges of bins through their differences.
    int64_t diff[qel::kLevels + 1] = {};
    const int xLo = std::max(x0 + 1, 0), xHi = std::min(x1 - 1, width - 1);
    for (int y = std::max(y0 + 1, 0); y < y1; ++y)
        for (int x = xLo; x <= xHi; ++x) {
            if (qel::row_at(edge, width, y)[x] == 0) continue;
            const int c = qel::row_at(grey, width, y)[x];
            int lo = c, hi = c;
            // Each step adds the next direction to the last position, so the walk winds round up
            // and to the right of the pixel rather than visiting its neighbours; kept as it is.
            int u = x, v = y;
            for (int k = 0; k < qel::kWalkReads; ++k) {
                if (v >= 0 && u >= 0 && u < width) {
                    const int g = qel::row_at(grey, width, v)[u];
                    lo = std::min(lo, g);
                    hi = std::max(hi, g);
                }
                u += qel::kDx[k];
                v += qel::kDy[k];
            }
            const int from = mode == 2 ? c : lo, to = mode == 1 ? c : hi;
            ++diff[from];
            --diff[to + 1];
        }
    int best = 0;
    int64_t bestCount = 0, count = 0;
    for (int level = 0; level < qel::kLevels; ++level) {
        count += diff[level];
        if (count > bestCount) bestCount = count, best = level;
    }
    return best;
}

void QelExtractTwoEdgePointPerCol(unsigned char* grd, int width, int minGap, int x0, int x1, int y0, int y1,
                                  int* firstRow, int* secondRow) {
    std::fill(firstRow, firstRow + std::max(width, 0), 0);
    std::fill(secondRow, secondRow + std::max(width, 0), 0);
    const int yLo = std::max(y0 + 1, 0);
    for (int x = std::max(x0, 0); x <= std::min(x1, width - 1); ++x) {
        auto at = [grd, width, x](int y) { return grd[static_cast<std::ptrdiff_t>(y) * width + x]; };
        // p starts at row 0, not at the first row scanned: an all-zero column reports row 0.
        int p = 0, best = 0;
        for (int y = yLo; y < y1; ++y)
            if (at(y) > best) best = at(y), p = y;
        int q = p;
        best = 0;
        for (int y = yLo; y < y1; ++y)
            if (std::abs(static_cast<int64_t>(y) - p) >= minGap && at(y) > best) best = at(y), q = y;
        firstRow[x] = std::min(p, q);
        secondRow[x] = std::max(p, q);
    }
}

void QelExtractEdgePointInRect(unsigned char* grd, int width, int x0, int y0, int x1, int y1, int* rowFirst,
                               int* rowSecond, int* colFirst, int* colSecond) {
    for (int y = std::max(y0, 0); y <= y1; ++y) qel::strongest_in_row(grd, width, y, x0, x1, rowFirst, rowSecond);
    for (int x = std::max(x0, 0); x <= std::min(x1, width - 1); ++x)
        qel::strongest_in_column(grd, width, x, y0, y1, colFirst, colSecond);
}

void QelExtractEdgePointInCircle(unsigned char* grd, int width, int cx, int cy, int rx, int ry, int* rowFirst,
                                 int* rowSecond, int* colFirst, int* colSecond) {
    for (int64_t y = std::max<int64_t>(static_cast<int64_t>(cy) - ry, 0); y <= static_cast<int64_t>(cy) + ry; ++y) {
        const double d = qel::half_chord(ry, y - cy, rx);
        qel::strongest_in_row(grd, width, static_cast<int>(y), qel::truncate_to_int(cx - d + 0.5),
                              qel::truncate_to_int(cx + d + 0.5), rowFirst, rowSecond);
    }
    const int64_t xEnd = std::min<int64_t>(static_cast<int64_t>(cx) + rx, width - 1);
    for (int64_t x = std::max<int64_t>(static_cast<int64_t>(cx) - rx, 0); x <= xEnd; ++x) {
        const double d = qel::half_chord(rx, x - cx, ry);
        qel::strongest_in_column(grd, width, static_cast<int>(x), qel::truncate_to_int(cy - d + 0.5),
                                 qel::truncate_to_int(cy + d + 0.5), colFirst, colSecond);
    }
}

bool QelEdgeTripeDetection(unsigned char* grey, int width, int height, int halfX, int halfY, unsigned char* dst,
                           int* histogram) {
    if (width > qel::kMaxRangeWidth) return false;
    std::fill(histogram, histogram + qel::kLevels, 0);
    if (width <= 0 || height <= 0) return true;
    std::fill(dst, dst + static_cast<size_t>(width) * static_cast<size_t>(height), static_cast<unsigned char>(255));
    const int hx = std::max(halfX, 0), hy = std::max(halfY, 0);
    unsigned char colMin[qel::kMaxRangeWidth], colMax[qel::kMaxRangeWidth];
    for (int y = 0; y < height; ++y) {
        // At the top the window is pushed down to keep 2·hy+1 rows; at the bottom it is clipped.
        const int r0 = std::max(0, y - hy);
        const int r1 = static_cast<int>(std::min<int64_t>(height - 1, static_cast<int64_t>(r0) + 2 * static_cast<int64_t>(hy)));
        for (int x = 0; x < width; ++x) {
            unsigned char mn = 255, mx = 0;
            for (int v = r0; v <= r1; ++v) {
                const unsigned char g = qel::row_at(grey, width, v)[x];
                mn = std::min(mn, g);
                mx = std::max(mx, g);
            }
            colMin[x] = mn;
            colMax[x] = mx;
        }
        unsigned char* out = dst + static_cast<std::ptrdiff_t>(y) * width;
        auto put = [&](int x, int64_t lo, int64_t hi) {
            const int clippedLo = static_cast<int>(std::max<int64_t>(lo, 0));
            const int clippedHi = static_cast<int>(std::min<int64_t>(hi, width - 1));
            out[x] = qel::window_range(colMin, colMax, clippedLo, clippedHi);
            ++histogram[out[x]];
        };
        for (int64_t x = hx; x <= static_cast<int64_t>(width) - hx - 2; ++x)
            put(static_cast<int>(x), x - hx, x + hx);
        for (int x = 0; x < std::min(hx, width); ++x) put(x, x, static_cast<int64_t>(x) + 2 * static_cast<int64_t>(hx));
        // Column width−1−hx is one-sided although a centred window would fit; kept so.
        for (int64_t x = width - 1; x >= std::max<int64_t>(static_cast<int64_t>(width) - 1 - hx, 0); --x)
            put(static_cast<int>(x), x - 2 * static_cast<int64_t>(hx), x);
    }
    return true;
}
