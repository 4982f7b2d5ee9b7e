// Rectangular median filters on a sliding 256-bin histogram.
//
// The window's histogram is kept together with its current median m and the number of window
// pixels below, equal to and above m. Sliding the window one step costs one histogram update per
// pixel that leaves or enters (2 × window height for a horizontal step), followed by a short walk
// over the bins between the old and the new median; the cost does not grow with the window width.
// All state lives on the call (stack or per-call buffers), so both filters are reentrant.
// QelGryImgMedianBoundary0 always has an odd count and so the exact median, which lets it take
// faster exact routes: min/max sorting networks for the 3 × 3 and 5 × 5 windows (see "Small
// windows" below) and per-column histograms for the larger ones (see "Larger windows").
#include "qel/filter.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

// SSE2 counts 16 histogram bins in two instructions; elsewhere (or with QEL_NO_SIMD defined, which
// the tests use to check them) plain loops do the same.
#if !defined(QEL_NO_SIMD) && (defined(__SSE2__) || defined(_M_X64) || (defined(_M_IX86_FP) && _M_IX86_FP >= 2))
#define QEL_MEDIAN_SSE2 1
#include <emmintrin.h>
#endif

namespace qel {
namespace {

constexpr int kLevels = 256;

// Histogram of a window plus its median and the counts around it. `rank` is K = N/2 + 1, the
// count that the values up to and including the median must reach.
struct SlidingMedian {
    int hist[kLevels];
    int m = 0;
    int below = 0;
    int equal = 0;
    int above = 0;
    int rank = 1;

    void clear() { std::memset(hist, 0, sizeof hist); }

    // Histogram of `rows` rows of `cols` pixels starting at `p`, rows `stride` apart.
    void fill(const unsigned char* p, int cols, int rows, int stride) {
        for (int r = 0; r < rows; ++r, p += stride) {
            for (int c = 0; c < cols; ++c) ++hist[p[c]];
        }
    }

    // First search of a window of n pixels: m is the lowest value whose running count reaches K.
    void search(int n) {
        rank = n / 2 + 1;
        int running = 0;
        for (int v = 0; v < kLevels; ++v) {
            if (hist[v] == 0) continue;
            running += hist[v];
            if (running >= rank) {
                m = v;
                break;
            }
        }
        equal = hist[m];
        below = running - hist[m];
        above = n - running;
    }

    // A pixel leaving or entering is classified against the median held before the slide.
    void leave(int p) {
        --hist[p];
        above -= p > m;
        equal -= p == m;
        below -= p < m;
    }
    void enter(int q) {
        ++hist[q];
        above += q > m;
        equal += q == m;
        below += q < m;
    }

    // Moves m after a slide. The median stays while neither side holds K pixels; with an even
    // count this keeps a value that a fresh search might not choose (intended hysteresis: the
    // median does not flicker between the two middle values).
    void relocate() {
        if (below < rank && above < rank) return;
        if (below < rank) {
            walk(+1, above, below);  // too many above: walk up
        } else {
            walk(-1, below, above);  // too many below: walk down
        }
    }

    // Walks m in direction `dir` (+1 or −1) over non-empty bins until fewer than K pixels stay
    // `ahead` of it. At each bin reached, its pixels leave `ahead` and become `equal`, and the
    // previous `equal` pixels join `behind`.
    void walk(int dir, int& ahead, int& behind) {
        int v = m;
        for (;;) {
            do v += dir; while (hist[v] == 0);
            if (ahead - hist[v] < rank) break;
            ahead -= hist[v];
            behind += equal;
            equal = hist[v];
        }
        ahead -= hist[v];
        behind += equal;
        equal = hist[v];
        m = v;
    }

    // Horizontal step: column `out` leaves and column `in` enters, over `rows` rows from `top`.
    void slide_columns(const unsigned char* top, int out, int in, int rows, int stride) {
        for (int r = 0; r < rows; ++r, top += stride) {
            leave(top[out]);
            enter(top[in]);
        }
        relocate();
    }

    // Vertical step: row `out` leaves and row `in` enters, `cols` pixels each.
    void slide_rows(const unsigned char* out, const unsigned char* in, int cols) {
        for (int c = 0; c < cols; ++c) {
            leave(out[c]);
            enter(in[c]);
        }
        relocate();
    }
};

// Source of the fast filter's side bands, whose windows are not clipped on the right: column c
// of row r (c may pass the row end) is the byte at r·width + c, i.e. the first pixels of the next
// row. Past the end of the buffer the last row is read again, as if it were repeated below the
// image, so that a constant image stays constant.
class FlatReader {
public:
    FlatReader(const unsigned char* src, int width, int height)
        : src_(src), width_(width), total_(static_cast<int64_t>(width) * height) {}

    unsigned char at(int row, int64_t col) const {
        const int64_t i = static_cast<int64_t>(row) * width_ + col;
        if (i < total_) return src_[i];
        return src_[total_ - width_ + (i - total_) % width_];
    }

    // Sum of column c over rows top .. bottom.
    int64_t column_sum(int top, int bottom, int64_t c) const {
        int64_t sum = 0;
        if (c < width_) {
            const unsigned char* p = src_ + static_cast<ptrdiff_t>(top) * width_ + c;
            for (int r = top; r <= bottom; ++r, p += width_) sum += *p;
        } else {
            for (int r = top; r <= bottom; ++r) sum += at(r, c);
        }
        return sum;
    }

private:
    const unsigned char* src_;
    int width_;
    int64_t total_;
};

// Truncated means for columns x0 .. x1 of one output row: the window of column x covers
// columns max(0, x−halfX) .. x+halfX of rows top .. bottom (clipped on the left only). A running
// sum of column sums slides along, so the cost per pixel does not grow with the window width.
void band_means(const FlatReader& reader, int top, int bottom, int halfX, int x0, int x1,
                unsigned char* out) {
    const int64_t rows = bottom - top + 1;
    int64_t lo = std::max(0, x0 - halfX);  // the running sum holds columns lo .. hi
    int64_t hi = lo - 1;
    int64_t sum = 0;
    for (int x = x0; x <= x1; ++x) {
        const int64_t wantLo = std::max(0, x - halfX);
        const int64_t wantHi = static_cast<int64_t>(x) + halfX;
        while (hi < wantHi) sum += reader.column_sum(top, bottom, ++hi);
        while (lo < wantLo) sum -= reader.column_sum(top, bottom, lo++);
        out[x] = static_cast<unsigned char>(sum / ((hi - lo + 1) * rows));
    }
}

// ---- Small windows: exact medians by min/max networks ----
//
// With an odd count the sliding histogram keeps the exact median, so the 3 × 3 and 5 × 5 windows
// can take it from a sorting network instead. Each output row first sorts every column of its
// window rows vertically (shared by all the windows that contain that column), then combines
// neighbouring columns per pixel. Only min and max are used and no pixel depends on another, so
// the compiler vectorises the loops across columns.

inline unsigned char lower(unsigned char a, unsigned char b) { return a < b ? a : b; }
inline unsigned char upper(unsigned char a, unsigned char b) { return a < b ? b : a; }

// Puts the smaller of a, b in a and the larger in b.
inline void order(unsigned char& a, unsigned char& b) {
    const unsigned char lo = lower(a, b);
    b = upper(a, b);
    a = lo;
}

inline unsigned char median3(unsigned char a, unsigned char b, unsigned char c) {
    return upper(lower(a, b), lower(upper(a, b), c));
}

// Sorts v[0..4] ascending with the 9-comparator network for five elements.
inline void sort5(unsigned char* v) {
    order(v[0], v[1]);
    order(v[3], v[4]);
    order(v[2], v[4]);
    order(v[2], v[3]);
    order(v[0], v[3]);
    order(v[0], v[2]);
    order(v[1], v[4]);
    order(v[1], v[3]);
    order(v[1], v[2]);
}

// Moves the minimum of w[0..n−1] to w[0] and the maximum to w[n−1]; the others keep their values
// between them in some order.
template <int kCount>
inline void extremes_to_ends(unsigned char* w) {
    for (int i = 1; i < kCount; ++i) order(w[0], w[i]);
    for (int i = 1; i < kCount - 1; ++i) order(w[i], w[kCount - 1]);
}

// 3 × 3: with each column sorted into lo ≤ mid ≤ hi, the median of the window is the median of
// (largest of the three lows, median of the three mids, smallest of the three highs).
void median_3x3(const unsigned char* src, int width, int height, unsigned char* dst) {
    std::vector<unsigned char> sorted(static_cast<size_t>(width) * 3);
    unsigned char* lo = sorted.data();
    unsigned char* mid = lo + width;
    unsigned char* hi = mid + width;
    for (int y = 1; y <= height - 2; ++y) {
        const unsigned char* a = src + static_cast<ptrdiff_t>(y - 1) * width;
        const unsigned char* b = a + width;
        const unsigned char* c = b + width;
        for (int x = 0; x < width; ++x) {
            const unsigned char l = lower(a[x], b[x]);
            const unsigned char h = upper(a[x], b[x]);
            lo[x] = lower(l, c[x]);
            mid[x] = upper(l, lower(h, c[x]));
            hi[x] = upper(h, c[x]);
        }
        unsigned char* out = dst + static_cast<ptrdiff_t>(y) * width;
        for (int x = 1; x <= width - 2; ++x) {
            const unsigned char maxLow = upper(upper(lo[x - 1], lo[x]), lo[x + 1]);
            const unsigned char midMid = median3(mid[x - 1], mid[x], mid[x + 1]);
            const unsigned char minHigh = lower(lower(hi[x - 1], hi[x]), hi[x + 1]);
            out[x] = median3(maxLow, midMid, minHigh);
        }
    }
}

// 5 × 5: with each column sorted, sorting the five values of each rank across the window's columns
// leaves a 5 × 5 table sorted along both directions, where entry (i, j) has at least (i+1)(j+1)
// entries at or below it and (5−i)(5−j) at or above it. Only 13 entries can be the 13th of 25
// (six are certainly lower, six certainly higher), so the median is the median of those 13:
// ranks 3-4 of the lowest rank row, 2-4 of the next, 1-3, 0-2 and 0-1 of the highest. The median
// of 13 is found by forgetful selection: of the values still in play, N/2 + 2 are loaded, their
// minimum and maximum cannot be the median and are dropped, and one more value is loaded.
void median_5x5(const unsigned char* src, int width, int height, unsigned char* dst) {
    constexpr int kSide = 5;
    std::vector<unsigned char> sorted(static_cast<size_t>(width) * kSide);
    unsigned char* rank[kSide];
    for (int i = 0; i < kSide; ++i) rank[i] = sorted.data() + static_cast<ptrdiff_t>(i) * width;
    for (int y = 2; y <= height - 3; ++y) {
        const unsigned char* top = src + static_cast<ptrdiff_t>(y - 2) * width;
        for (int x = 0; x < width; ++x) {
            unsigned char v[kSide];
            for (int i = 0; i < kSide; ++i) v[i] = top[static_cast<ptrdiff_t>(i) * width + x];
            sort5(v);
            for (int i = 0; i < kSide; ++i) rank[i][x] = v[i];
        }
        unsigned char* out = dst + static_cast<ptrdiff_t>(y) * width;
        for (int x = 2; x <= width - 3; ++x) {
            unsigned char r[kSide][kSide];
            for (int i = 0; i < kSide; ++i) {
                for (int j = 0; j < kSide; ++j) r[i][j] = rank[i][x - 2 + j];
                sort5(r[i]);
            }
            // The 13 candidates in loading order; the first eight start the selection.
            const unsigned char c[13] = {r[0][3], r[0][4], r[1][2], r[1][3], r[1][4], r[2][1], r[2][2],
                                         r[2][3], r[3][0], r[3][1], r[3][2], r[4][0], r[4][1]};
            unsigned char w[8];
            for (int i = 0; i < 8; ++i) w[i] = c[i];
            // Each round drops both ends of w[0..n−1], keeps w[1..n−2] and loads into w[0].
            extremes_to_ends<8>(w);
            w[0] = c[8];
            extremes_to_ends<7>(w);
            w[0] = c[9];
            extremes_to_ends<6>(w);
            w[0] = c[10];
            extremes_to_ends<5>(w);
            w[0] = c[11];
            extremes_to_ends<4>(w);
            w[0] = c[12];
            out[x] = median3(w[0], w[1], w[2]);
        }
    }
}


// ---- Larger windows: cumulative column histograms with a coarse level ----
//
// Every image column keeps the histogram of its 2·hy+1 pixels in the current band of rows; moving
// to the next output row costs each column one pixel out and one pixel in. The window histogram
// then slides right by adding the entering column's histogram and subtracting the leaving one's.
// Each histogram has two levels of 16 bins: coarse bins by value >> 4, and under each coarse bin
// 16 fine bins by value & 15. Both levels are kept cumulative (bin j counts the pixels in bins
// 0 .. j), so that every update and every search is one 16-lane operation without branches: the
// bin holding the K-th pixel is the number of bins whose cumulative count stays below K.
// Only the coarse level of the window follows every step. The fine bins under the median's coarse
// bin are brought up to date when needed, from the columns that changed since they were last used,
// or summed afresh when that costs less. Images change slowly, so the median usually stays under
// one or two coarse bins, and each pixel costs a few 16-lane additions however large the window.
// Counters are 16 bits wide, so this route takes windows of at most 65535 pixels.

constexpr int kLaneShift = 4;
constexpr int kLanes = 1 << kLaneShift;  // bins per level
constexpr int kLaneMask = kLanes - 1;
constexpr int kMaxLaneCount = 0xFFFF;

using Count = uint16_t;

// Sixteen counters at a time. Counts are unsigned and may wrap on the way; the true counts fit in
// 16 bits, so the wrapped sums come out exact.
#if defined(QEL_MEDIAN_SSE2)
inline __m128i load8(const Count* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
inline void store8(Count* p, __m128i v) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v); }

inline void add_lanes(Count* acc, const Count* in) {
    store8(acc, _mm_add_epi16(load8(acc), load8(in)));
    store8(acc + 8, _mm_add_epi16(load8(acc + 8), load8(in + 8)));
}
inline void sub_lanes(Count* acc, const Count* out) {
    store8(acc, _mm_sub_epi16(load8(acc), load8(out)));
    store8(acc + 8, _mm_sub_epi16(load8(acc + 8), load8(out + 8)));
}
inline void add_sub_lanes(Count* acc, const Count* in, const Count* out) {
    store8(acc, _mm_sub_epi16(_mm_add_epi16(load8(acc), load8(in)), load8(out)));
    store8(acc + 8, _mm_sub_epi16(_mm_add_epi16(load8(acc + 8), load8(in + 8)), load8(out + 8)));
}
// Number of bins of a cumulative histogram that hold fewer than `rank` pixels (1 .. 65535): the
// bin where the rank-th pixel lies. A lane has reached the rank when rank − count, saturated at 0,
// is 0.
inline int bins_below(const Count* cumulative, int rank) {
    // The same 16 bits as rank, as the signed lane type takes them.
    const __m128i r = _mm_set1_epi16(static_cast<short>(rank > 0x7FFF ? rank - 0x10000 : rank));
    const __m128i zero = _mm_setzero_si128();
    const __m128i reachedLo = _mm_cmpeq_epi16(_mm_subs_epu16(r, load8(cumulative)), zero);
    const __m128i reachedHi = _mm_cmpeq_epi16(_mm_subs_epu16(r, load8(cumulative + 8)), zero);
    const unsigned reached = static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(reachedLo, reachedHi)));
    // Cumulative counts never decrease, so the bins below the rank are the low bits that stay 0.
    // The last bin holds every pixel counted, so some bit is set.
#if defined(__GNUC__)
    return __builtin_ctz(reached);
#else
    int below = 0;
    while (!(reached >> below & 1u)) ++below;
    return below;
#endif
}
#else
inline void add_lanes(Count* acc, const Count* in) {
    for (int j = 0; j < kLanes; ++j) acc[j] = static_cast<Count>(acc[j] + in[j]);
}
inline void sub_lanes(Count* acc, const Count* out) {
    for (int j = 0; j < kLanes; ++j) acc[j] = static_cast<Count>(acc[j] - out[j]);
}
inline void add_sub_lanes(Count* acc, const Count* in, const Count* out) {
    for (int j = 0; j < kLanes; ++j) acc[j] = static_cast<Count>(acc[j] + in[j] - out[j]);
}
inline int bins_below(const Count* cumulative, int rank) {
    int n = 0;
    for (int j = 0; j < kLanes; ++j) n += cumulative[j] < rank;
    return n;
}
#endif

// Row `bin` is the cumulative histogram of one pixel in bin `bin`: 0 before it, 1 from it on.
struct Steps {
    Count row[kLanes][kLanes]{};
    constexpr Steps() {
        for (int bin = 0; bin < kLanes; ++bin)
            for (int j = bin; j < kLanes; ++j) row[bin][j] = 1;
    }
};
constexpr Steps kSteps{};

// Median of every full window, written to rows hy .. height−hy−1, columns hx .. width−hx−1. The
// window must fit in the image and hold at most kMaxLaneCount pixels.
void median_by_columns(const unsigned char* src, int width, int height, int hx, int hy,
                       unsigned char* dst) {
    const int windowCols = 2 * hx + 1;
    const int windowRows = 2 * hy + 1;
    const int rank = windowCols * windowRows / 2 + 1;  // the count is odd: the K-th is the median
    const size_t cols = static_cast<size_t>(width);
    // Coarse histogram of column x at x·16: one column's coarse bins are contiguous.
    std::vector<Count> coarse(cols * kLanes, 0);
    // Fine bins under coarse bin b of column x at (b·width + x)·16: those that one coarse bin
    // needs are contiguous along the row.
    std::vector<Count> fine(cols * kLevels, 0);
    const auto coarse_of = [&](int x) { return coarse.data() + static_cast<size_t>(x) * kLanes; };
    const auto fine_of = [&](int b, int x) { return fine.data() + (static_cast<size_t>(b) * cols + x) * kLanes; };
    const auto enter = [&](int x, int v) {
        add_lanes(coarse_of(x), kSteps.row[v >> kLaneShift]);
        add_lanes(fine_of(v >> kLaneShift, x), kSteps.row[v & kLaneMask]);
    };
    const auto leave = [&](int x, int v) {
        sub_lanes(coarse_of(x), kSteps.row[v >> kLaneShift]);
        sub_lanes(fine_of(v >> kLaneShift, x), kSteps.row[v & kLaneMask]);
    };
    for (int r = 0; r < windowRows; ++r) {
        const unsigned char* row = src + static_cast<ptrdiff_t>(r) * width;
        for (int x = 0; x < width; ++x) enter(x, row[x]);
    }

    // The window's cumulative coarse histogram after one leading 0, so that coarseAfterZero[b]
    // counts the pixels in the coarse bins before b (windowCoarse[b] those up to b).
    Count coarseAfterZero[1 + kLanes] = {};
    Count* windowCoarse = coarseAfterZero + 1;
    Count windowFine[kLanes][kLanes];
    int fineAt[kLanes];  // the window column at which windowFine[b] was last brought up to date
    for (int y = hy; y <= height - hy - 1; ++y) {
        if (y > hy) {
            const unsigned char* leaving = src + static_cast<ptrdiff_t>(y - hy - 1) * width;
            const unsigned char* entering = src + static_cast<ptrdiff_t>(y + hy) * width;
            for (int x = 0; x < width; ++x) {
                leave(x, leaving[x]);
                enter(x, entering[x]);
            }
        }
        std::fill(windowCoarse, windowCoarse + kLanes, Count{0});
        for (int x = 0; x < windowCols; ++x) add_lanes(windowCoarse, coarse_of(x));
        std::fill(fineAt, fineAt + kLanes, -1);  // no fine bins are valid at the row start

        unsigned char* out = dst + static_cast<ptrdiff_t>(y) * width;
        for (int x = hx; x <= width - hx - 1; ++x) {
            if (x > hx) add_sub_lanes(windowCoarse, coarse_of(x + hx), coarse_of(x - hx - 1));
            const int b = bins_below(windowCoarse, rank);
            const int below = coarseAfterZero[b];  // pixels in the coarse bins before b

            Count* seg = windowFine[b];
            const int at = fineAt[b];
            if (at < 0 || 2 * (x - at) >= windowCols) {
                // Sum the window's columns afresh: cheaper than replaying the steps since `at`.
                std::fill(seg, seg + kLanes, Count{0});
                for (int c = x - hx; c <= x + hx; ++c) add_lanes(seg, fine_of(b, c));
            } else {
                for (int c = at + 1; c <= x; ++c) add_sub_lanes(seg, fine_of(b, c + hx), fine_of(b, c - hx - 1));
            }
            fineAt[b] = x;
            const int j = bins_below(seg, rank - below);
            out[x] = static_cast<unsigned char>((b << kLaneShift) + j);
        }
    }
}

}  // namespace
}  // namespace qel

void QelGryFastMedianFilter(unsigned char* src, int width, int height, int halfX, int halfY,
                            unsigned char* dst) {
    if (width <= 0 || height <= 0) return;
    halfX = std::max(0, halfX);
    halfY = std::min(std::max(0, halfY), height);  // taller windows are clipped to the image anyway
    const qel::FlatReader reader(src, width, height);
    qel::SlidingMedian med;
    // A window at least as wide as the image leaves no median column: the two side bands
    // (which then overlap) cover the whole row with means.
    const bool allMeans = halfX >= width / 2;  // 2·halfX+1 >= width

    for (int y = 0; y < height; ++y) {
        // The window is clipped vertically, never horizontally.
        const int top = std::max(0, y - halfY);
        const int bottom = std::min(height - 1, y + halfY);
        const int rows = bottom - top + 1;
        unsigned char* out = dst + static_cast<ptrdiff_t>(y) * width;
        if (allMeans) {
            qel::band_means(reader, top, bottom, halfX, 0, width - 1, out);
            continue;
        }
        const int windowCols = 2 * halfX + 1;
        const unsigned char* topRow = src + static_cast<ptrdiff_t>(top) * width;
        // The histogram is rebuilt for every row: there is no vertical sliding.
        med.clear();
        med.fill(topRow, windowCols, rows, width);
        med.search(windowCols * rows);
        out[halfX] = static_cast<unsigned char>(med.m);
        // Column width−halfX−1 would also get a median here, but the right band overwrites it.
        for (int x = halfX + 1; x <= width - halfX - 2; ++x) {
            med.slide_columns(topRow, x - halfX - 1, x + halfX, rows, width);
            out[x] = static_cast<unsigned char>(med.m);
        }
        // Side bands: halfX columns on the left, halfX+1 on the right (intended asymmetry); the
        // right band's windows run past the row end.
        qel::band_means(reader, top, bottom, halfX, 0, halfX - 1, out);
        qel::band_means(reader, top, bottom, halfX, width - halfX - 1, width - 1, out);
    }
}

void QelGryImgMedianBoundary0(unsigned char* src, int width, int height, int halfX, int halfY,
                              unsigned char* dst) {
    if (width <= 0 || height <= 0) return;
    // Half sizes below 1 are raised to 1, so the window count is always odd.
    const int hx = std::max(1, halfX);
    const int hy = std::max(1, halfY);
    std::memset(dst, 0, static_cast<size_t>(width) * static_cast<size_t>(height));
    if (hx > (width - 1) / 2 || hy > (height - 1) / 2) return;  // no window fits: all 0
    // The smallest windows take the exact median from a sorting network, the others from column
    // histograms, and windows too large for their 16-bit counters slide the histogram. All give
    // the true median of an odd count.
    if (hx == 1 && hy == 1) {
        qel::median_3x3(src, width, height, dst);
        return;
    }
    if (hx == 2 && hy == 2) {
        qel::median_5x5(src, width, height, dst);
        return;
    }

    if (static_cast<int64_t>(2 * hx + 1) * (2 * hy + 1) <= qel::kMaxLaneCount) {
        qel::median_by_columns(src, width, height, hx, hy, dst);
        return;
    }

    const int windowCols = 2 * hx + 1;
    const int windowRows = 2 * hy + 1;
    qel::SlidingMedian med;
    med.clear();
    med.fill(src, windowCols, windowRows, width);
    med.search(windowCols * windowRows);

    qel::SlidingMedian rowStart;
    for (int y = hy; y <= height - hy - 1; ++y) {
        // Keep the window at the row start; the next row starts from it by one downward step.
        rowStart = med;
        const unsigned char* topRow = src + static_cast<ptrdiff_t>(y - hy) * width;
        unsigned char* out = dst + static_cast<ptrdiff_t>(y) * width;
        for (int x = hx; x <= width - hx - 1; ++x) {
            out[x] = static_cast<unsigned char>(med.m);
            if (x < width - hx - 1) med.slide_columns(topRow, x - hx, x + hx + 1, windowRows, width);
        }
        med = rowStart;
        if (y < height - hy - 1) {
            med.slide_rows(topRow, src + static_cast<ptrdiff_t>(y + hy + 1) * width, windowCols);
        }
    }
}
