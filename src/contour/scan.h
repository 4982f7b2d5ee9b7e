// The row scan that finds where boundaries start: every contour function walks the image the same
// way, differing only in the rows and columns it covers and in how dark the left neighbour of an
// outer start must be.
#ifndef QEL_SRC_CONTOUR_SCAN_H
#define QEL_SRC_CONTOUR_SCAN_H

#include "contour/trace.h"
#include "core/simd.h"
#include "core/simd_avx2.h"

#include <cstddef>

namespace qel {

enum class Start { None, Outer, Hole };

// Rows firstRow, firstRow + rowStep, … up to lastRow and columns firstColumn..lastColumn. Rows
// start at 1, so every pixel scanned has a left neighbour in the buffer (for column 0, the last
// pixel of the row above).
struct ScanArea {
    int firstRow;
    int lastRow;
    int rowStep;
    int firstColumn;
    int lastColumn;
};

// Rows 1..height − 1, all columns.
inline ScanArea rows_below_first(int width, int height) { return {1, height - 1, 1, 0, width - 1}; }

// What starts a boundary at a pixel c whose left neighbour p differs from it: an outer boundary
// when c is 255 and p is below outerLeftBelow (untraced background, or background the tracer has
// examined), a hole when c is 0 and p is 251 or more (an object pixel, traced or not).
struct StartRule {
    int outerLeftBelow;
};

constexpr StartRule kContourStarts{10};
constexpr StartRule kSelectionStarts{2};

inline Start start_at(unsigned char c, unsigned char p, StartRule rule) {
    if (c == 255 && p < rule.outerLeftBelow) return Start::Outer;
    if (c == 0 && p >= 251) return Start::Hole;
    return Start::None;
}

// How many of the count pixels from p on equal their left neighbour before the first that does
// not (count when all do): most of a binary image is runs, skipped 32 or 16 pixels a step.
#ifdef QEL_SIMD_AVX2
QEL_TARGET_AVX2 inline int equal_to_left_avx2(const unsigned char* p, int count) {
    int k = 0;
    for (; k + avx2::kLanes <= count; k += avx2::kLanes) {
        const __m256i same = _mm256_cmpeq_epi8(avx2::load(p + k), avx2::load(p + k - 1));
        const unsigned differ = ~static_cast<unsigned>(_mm256_movemask_epi8(same));
        if (differ != 0) return k + __builtin_ctz(differ);
    }
    return k;
}
#endif

inline int equal_to_left(const unsigned char* p, int count, simd::Level level) {
    int k = 0;
#ifdef QEL_SIMD_AVX2
    if (level >= simd::Level::avx2) k = equal_to_left_avx2(p, count);
#endif
#ifdef QEL_SIMD_SSE2
    if (level >= simd::Level::sse2) {
        for (; k + simd::kLanes <= count; k += simd::kLanes) {
            const unsigned differ =
                ~static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(simd::load(p + k), simd::load(p + k - 1)))) &
                0xFFFFu;
            if (differ == 0) continue;
            while (p[k] == p[k - 1]) ++k;  // stops within these 16 pixels
            return k;
        }
    }
#endif
    while (k < count && p[k] == p[k - 1]) ++k;
    return k;
}

// Calls visit(i, x, y, c, start) at every scanned pixel whose value c differs from its left
// neighbour's, i being the pixel's index; start says which boundary, if any, begins there. The
// visitor traces it (an outer boundary from i, a hole from i − 1); c is the value read before.
template <class Visit>
void scan_boundary_starts(unsigned char* image, int width, ScanArea area, StartRule rule, Visit&& visit) {
    const int step = area.rowStep < 1 ? 1 : area.rowStep;
    const simd::Level level = simd::level();
    for (int y = area.firstRow; y <= area.lastRow; y += step) {
        const std::ptrdiff_t row = static_cast<std::ptrdiff_t>(y) * width;
        for (int x = area.firstColumn; x <= area.lastColumn; ++x) {
            // The run is measured on the image as it is now: visits mark pixels ahead of x.
            x += equal_to_left(image + row + x, area.lastColumn - x + 1, level);
            if (x > area.lastColumn) break;
            const std::ptrdiff_t i = row + x;
            const unsigned char c = image[i];
            const unsigned char p = image[i - 1];
            if (c != p) visit(i, x, y, c, start_at(c, p, rule));
        }
    }
}

// Traces the boundary a scan found at pixel i: an outer one from i, a hole from the object pixel
// left of i. Returns the number of codes stored in chain (null: none).
template <class Bounds = AnywhereInImage>
int trace_found(unsigned char* image, int width, std::ptrdiff_t i, Start start, unsigned char* chain, int maxCodes,
                Bounds bounds = {}) {
    const bool outer = start == Start::Outer;
    return trace_boundary(image, width, outer ? i : i - 1, outer, chain, maxCodes, bounds);
}

}  // namespace qel

#endif
