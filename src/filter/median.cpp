// Rectangular median filters on a sliding 256-bin histogram.
//
// The window's histogram is kept together with its current median m and the number of window
// pixels below, equal to and above m. Sliding the window one step costs one histogram update per
// pixel that leaves or enters (2 × window height for a horizontal step), followed by a short walk
// over the bins between the old and the new median; the cost does not grow with the window width.
// All state lives on the call's stack, so both filters are reentrant.
#include "qel/filter.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

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
