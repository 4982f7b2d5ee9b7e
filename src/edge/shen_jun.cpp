// Shen Jun edge detector: a recursive exponential smoother run along rows and columns in both
// directions, and edges on the brighter side of each zero crossing of image − smoothed image.
// One smoothing loop and one edge scan serve all five members; they differ only in how a blend
// step rounds and in the type of the smoothed image.
#include "qel/edge.h"
#include "qel/io.h"

#include "core/directions.h"
#include "line/line_math.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>

namespace qel {
namespace {

constexpr unsigned char kEdge = 255;
constexpr int kMinShift = 1;
constexpr int kMaxShift = 3;

static_assert((-3 >> 1) == -2, "the integer blend relies on an arithmetic right shift");

// prev + ((cur − prev) >> shift): the shift rounds toward minus infinity, so a rising run stalls
// one level short of its target while a falling one reaches it.
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

// The smoothing, in the order the results depend on: row 0 copied; each later row filtered
// forward and backward along itself and then blended with the row above; finally every row from
// height−2 up to 0 blended with the row below. The upward pass reads only the row below, already
// final, so its column order within a row does not matter.
template <class T, class Blend>
void smooth_image(const unsigned char* src, T* smooth, int width, int height, Blend blend) {
    const std::ptrdiff_t w = width;
    for (int x = 0; x < width; ++x) smooth[x] = src[x];
    for (int y = 1; y < height; ++y) {
        const unsigned char* s = src + y * w;
        T* m = smooth + y * w;
        const T* above = m - w;
        m[0] = s[0];
        for (int x = 1; x < width; ++x) m[x] = blend(m[x - 1], s[x]);
        for (int x = width - 2; x >= 0; --x) m[x] = blend(m[x + 1], m[x]);
        for (int x = 0; x < width; ++x) m[x] = blend(above[x], m[x]);
    }
    for (int y = height - 2; y >= 0; --y) {
        T* m = smooth + y * w;
        const T* below = m + w;
        for (int x = 0; x < width; ++x) m[x] = blend(below[x], m[x]);
    }
}

// Decides every interior pixel in scan order and calls visit(x, y, isEdge); a visit returning
// false ends the scan.
template <class T, class Visit>
void scan_edges(const unsigned char* src, const T* smooth, int width, int height, int threshold, Visit visit) {
    long off[8];
    for (int k = 0; k < 8; ++k) off[k] = neighbour_offset(k, width);
    for (int y = 1; y < height - 1; ++y) {
        const std::ptrdiff_t row = static_cast<std::ptrdiff_t>(y) * width;
        for (int x = 1; x < width - 1; ++x) {
            const std::ptrdiff_t i = row + x;
            const int c = src[i];
            bool edge = false;
            if (c > smooth[i]) {
                // A neighbour with src == smooth counts as positive: only src < smooth is a crossing.
                const bool crossing = std::any_of(off, off + 8, [&](long o) { return src[i + o] < smooth[i + o]; });
                edge = crossing &&
                       std::any_of(off, off + 8, [&](long o) { return std::abs(c - src[i + o]) >= threshold; });
            }
            if (!visit(x, y, edge)) return;
        }
    }
}

// Smooths, then writes 255/0 for every interior pixel and a zero frame.
template <class T, class Blend>
void edge_image(const unsigned char* src, T* smooth, int width, int height, Blend blend, int threshold,
                unsigned char* dst) {
    if (width <= 0 || height <= 0) return;
    smooth_image(src, smooth, width, height, blend);
    scan_edges(src, smooth, width, height, threshold, [dst, width](int x, int y, bool edge) {
        dst[static_cast<std::ptrdiff_t>(y) * width + x] = edge ? kEdge : 0;
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
    qel::scan_edges(src, smooth, width, height, threshold, [&](int x, int y, bool edge) {
        if (!edge) return true;
        xs[count] = x;
        ys[count] = y;
        ++count;
        return count < maxCount;
    });
    return count;
}

int QelShenJunEdgeFast(unsigned char* src, unsigned char* smooth, int width, int height, int shift, int threshold,
                       int* xs, int* ys, int maxCount, unsigned char* dst) {
    if (width <= 0 || height <= 0) return 0;
    qel::smooth_image(src, smooth, width, height, qel::shift_blend(shift));
    int count = 0;
    qel::scan_edges(src, smooth, width, height, threshold, [&](int x, int y, bool edge) {
        dst[static_cast<std::ptrdiff_t>(y) * width + x] = edge ? qel::kEdge : 0;
        if (edge && count < maxCount) {
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
