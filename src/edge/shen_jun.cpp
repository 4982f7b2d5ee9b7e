// Shen Jun edge detector: a recursive exponential smoother run along rows and columns in both
// directions, and edges on the brighter side of each zero crossing of image − smoothed image.
// One smoothing loop and one edge scan serve all five members; they differ only in how a blend
// step rounds and in the type of the smoothed image.
#include "qel/edge.h"
#include "qel/io.h"

#include "line/line_math.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace qel {
namespace {

constexpr int kMinShift = 1;
constexpr int kMaxShift = 3;

static_assert((-3 >> 1) == -2, "the integer blend relies on an arithmetic right shift");

// prev + ((cur − prev) >> shift): the shift rounds toward minus infinity, so a rising run can stall
// up to 2^shift − 1 levels short of its target while a falling one reaches it.
struct ShiftBlend {
    int shift;
    unsigned char operator()(unsigned char prev, unsigned char cur) const {
        return static_cast<unsigned char>(prev + ((cur - prev) >> shift));
    }
};

// prev + (cur − prev)·a in double, truncated toward zero and kept as a byte. For 0 < a < 1 the
// result lies between prev and cur; otherwise the low byte of the truncation is kept.
struct RealByteBlend {
    double a;
    unsigned char operator()(unsigned char prev, unsigned char cur) const {
        const double v = prev + (cur - prev) * a;
        return static_cast<unsigned char>(static_cast<unsigned>(truncate_to_int(v)) & 0xFFu);
    }
};

// prev + (cur − prev)·a in double, without rounding.
struct RealBlend {
    double a;
    double operator()(double prev, double cur) const { return prev + (cur - prev) * a; }
};

// Forward then backward pass along `rows` consecutive rows (the first sample of each copied from
// src). Each row's recursion depends only on its own row of src, so several rows can run
// interleaved: the processor then overlaps their dependency chains.
template <int rows, class T, class Blend>
void row_passes(const unsigned char* src, T* smooth, std::ptrdiff_t w, int width, Blend blend) {
    for (int k = 0; k < rows; ++k) smooth[k * w] = src[k * w];
    for (int x = 1; x < width; ++x)
        for (int k = 0; k < rows; ++k) smooth[k * w + x] = blend(smooth[k * w + x - 1], src[k * w + x]);
    for (int x = width - 2; x >= 0; --x)
        for (int k = 0; k < rows; ++k) smooth[k * w + x] = blend(smooth[k * w + x + 1], smooth[k * w + x]);
}

// The smoothing, in the order the results depend on: row 0 copied; each later row filtered
// forward and backward along itself and then blended with the row above; finally every row from
// height−2 up to 0 blended with the row below. A row's own passes need nothing from other rows,
// so they are done for bands of rows ahead of the downward pass. The upward pass reads only the
// row below, already final, so its column order within a row does not matter.
template <class T, class Blend>
void smooth_image(const unsigned char* src, T* smooth, int width, int height, Blend blend) {
    constexpr int kBand = 4;
    const std::ptrdiff_t w = width;
    for (int x = 0; x < width; ++x) smooth[x] = src[x];
    for (int y0 = 1; y0 < height; y0 += kBand) {
        const int band = std::min(kBand, height - y0);
        if (band == kBand) {
            row_passes<kBand>(src + y0 * w, smooth + y0 * w, w, width, blend);
        } else {
            for (int y = y0; y < y0 + band; ++y) row_passes<1>(src + y * w, smooth + y * w, w, width, blend);
        }
        for (int y = y0; y < y0 + band; ++y) {
            T* m = smooth + y * w;
            const T* above = m - w;
            for (int x = 0; x < width; ++x) m[x] = blend(above[x], m[x]);
        }
    }
    for (int y = height - 2; y >= 0; --y) {
        T* m = smooth + y * w;
        const T* below = m + w;
        for (int x = 0; x < width; ++x) m[x] = blend(below[x], m[x]);
    }
}

// Decides the interior pixels row by row and calls visitRow(y, edges), edges[x] being 255 for an
// edge pixel and 0 otherwise (x = 1..width−2); a visit returning false ends the scan. Per pixel
// the rule reads the 8 neighbours; here it is taken from column summaries of each 3-row band, so
// that the loops vectorise:
// - crossing: some neighbour has src < smooth. The centre may join the OR, as it only matters
//   when src > smooth at the centre.
// - steep: some |src(centre) − src(neighbour)| ≥ threshold, i.e. centre − min or max − centre
//   reaches it. The centre may join min and max: its difference 0 reaches only a threshold ≤ 0,
//   which every neighbour reaches anyway.
template <class T, class VisitRow>
void scan_edges(const unsigned char* src, const T* smooth, int width, int height, int threshold,
                VisitRow visitRow) {
    if (width < 3) return;
    std::vector<unsigned char> below(static_cast<size_t>(width)), lo(below), hi(below), edges(below);
    for (int y = 1; y < height - 1; ++y) {
        const std::ptrdiff_t row = static_cast<std::ptrdiff_t>(y) * width;
        const unsigned char* s = src + row;
        const T* m = smooth + row;
        for (int x = 0; x < width; ++x) {
            const unsigned char a = s[x - width], b = s[x], c = s[x + width];
            below[x] = (a < m[x - width]) | (b < m[x]) | (c < m[x + width]);
            lo[x] = std::min(a, std::min(b, c));
            hi[x] = std::max(a, std::max(b, c));
        }
        for (int x = 1; x < width - 1; ++x) {
            const int centre = s[x];
            const int crossing = below[x - 1] | below[x] | below[x + 1];
            const int mn = std::min<int>({lo[x - 1], lo[x], lo[x + 1]});
            const int mx = std::max<int>({hi[x - 1], hi[x], hi[x + 1]});
            const int steep = (centre - mn >= threshold) | (mx - centre >= threshold);
            edges[x] = static_cast<unsigned char>(-((centre > m[x]) & crossing & steep));
        }
        if (!visitRow(y, edges.data())) return;
    }
}

// Copies the interior of one decided row into dst.
inline void put_row(unsigned char* dst, int width, int y, const unsigned char* edges) {
    std::copy(edges + 1, edges + width - 1, dst + static_cast<std::ptrdiff_t>(y) * width + 1);
}

// Smooths, then writes 255/0 for every interior pixel and a zero frame.
template <class T, class Blend>
void edge_image(const unsigned char* src, T* smooth, int width, int height, Blend blend, int threshold,
                unsigned char* dst) {
    if (width <= 0 || height <= 0) return;
    smooth_image(src, smooth, width, height, blend);
    scan_edges(src, smooth, width, height, threshold, [dst, width](int y, const unsigned char* edges) {
        put_row(dst, width, y, edges);
        return true;
    });
    QelSetImageBoundary(dst, width, height, 0);
}

ShiftBlend shift_blend(int shift) { return ShiftBlend{std::clamp(shift, kMinShift, kMaxShift)}; }

}  // namespace
}  // namespace qel

void QelShenJunEdgeFast(unsigned char* src, unsigned char* smooth, int width, int height, int shift, int threshold,
                        unsigned char* dst) {
    qel::edge_image(src, smooth, width, height, qel::shift_blend(shift), threshold, dst);
}

// The count is compared after storing, so maxCount ≤ 0 still stores the first point; the member
// with an edge image below tests before storing. The two differ on purpose.
int QelShenJunEdgeFast(unsigned char* src, unsigned char* smooth, int width, int height, int shift, int threshold,
                       int* xs, int* ys, int maxCount) {
    if (width <= 0 || height <= 0) return 0;
    qel::smooth_image(src, smooth, width, height, qel::shift_blend(shift));
    int count = 0;
    qel::scan_edges(src, smooth, width, height, threshold, [&](int y, const unsigned char* edges) {
        for (int x = 1; x < width - 1; ++x) {
            if (edges[x] == 0) continue;
            xs[count] = x;
            ys[count] = y;
            if (++count >= maxCount) return false;
        }
        return true;
    });
    return count;
}

int QelShenJunEdgeFast(unsigned char* src, unsigned char* smooth, int width, int height, int shift, int threshold,
                       int* xs, int* ys, int maxCount, unsigned char* dst) {
    if (width <= 0 || height <= 0) return 0;
    qel::smooth_image(src, smooth, width, height, qel::shift_blend(shift));
    int count = 0;
    qel::scan_edges(src, smooth, width, height, threshold, [&](int y, const unsigned char* edges) {
        qel::put_row(dst, width, y, edges);
        for (int x = 1; x < width - 1 && count < maxCount; ++x) {
            if (edges[x] == 0) continue;
            xs[count] = x;
            ys[count] = y;
            ++count;
        }
        return true;
    });
    QelSetImageBoundary(dst, width, height, 0);
    return count;
}

void QelShenJunEdgeStd(unsigned char* src, unsigned char* smooth, int width, int height, double a, int threshold,
                       unsigned char* dst) {
    qel::edge_image(src, smooth, width, height, qel::RealByteBlend{a}, threshold, dst);
}

void QelShenJunEdgeFine(unsigned char* src, double* smooth, int width, int height, double a, int threshold,
                        unsigned char* dst) {
    qel::edge_image(src, smooth, width, height, qel::RealBlend{a}, threshold, dst);
}
