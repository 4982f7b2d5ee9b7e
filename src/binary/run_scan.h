// Walking runs along the rows or the columns of an image: the one loop the run-length family
// shares between its row (RLX) and column (RLY) twins.
#ifndef QEL_SRC_BINARY_RUN_SCAN_H
#define QEL_SRC_BINARY_RUN_SCAN_H

#include <cstddef>

namespace qel {

// The lines of a width × height image seen as rows or as columns: `count` lines of `length`
// pixels, `lineStep` bytes from one line's first pixel to the next, `step` bytes between pixels.
struct Lines {
    int count;
    int length;
    std::ptrdiff_t lineStep;
    std::ptrdiff_t step;
    bool rows;

    template <class T>
    T* line(T* image, int i) const { return image + i * lineStep; }
};

inline Lines rows_of(int width, int height) { return {height, width, width, 1, true}; }
inline Lines columns_of(int width, int height) { return {width, height, 1, width, false}; }

// Where a walk looks for runs along a line of n pixels: starts are searched in [first, startEnd)
// and a run is cut at `limit`, the index that ends it when no pixel of the other kind does.
struct RunBounds {
    int first;
    int startEnd;
    int limit;
};

// Rows end their last run one pixel short: the row's last pixel ends it and is not part of it.
inline RunBounds row_bounds(int n) { return {0, n, n - 1}; }
// Columns measure the last run in full.
inline RunBounds column_bounds(int n) { return {0, n, n}; }
// Starts searched in 1..n−2 only, and a run cut at n−1: neither end pixel of the line is in a run.
inline RunBounds inner_bounds(int n) { return {1, n - 1, n - 1}; }
inline RunBounds bounds_for(const Lines& lines) {
    return lines.rows ? row_bounds(lines.length) : column_bounds(lines.length);
}

// Calls onRun(s, e) for every run [s, e) along one line: s is the first index in
// [first, startEnd) whose pixel satisfies inRun, e the first later index whose pixel does not, or
// `limit`. The walk resumes at e + 1, after the pixel that ended the run.
template <class InRun, class OnRun>
inline void for_each_run(const unsigned char* line, std::ptrdiff_t step, RunBounds b, InRun inRun, OnRun onRun) {
    int i = b.first;
    while (i < b.startEnd) {
        if (!inRun(line[i * step])) {
            ++i;
            continue;
        }
        const int s = i;
        while (i < b.limit && inRun(line[i * step])) ++i;
        onRun(s, i);
        i += 1;
    }
}

// Writes `value` over pixels [s, e) of a line.
inline void fill_run(unsigned char* line, std::ptrdiff_t step, int s, int e, unsigned char value) {
    for (int i = s; i < e; ++i) line[i * step] = value;
}

inline bool is_white(unsigned char p) { return p != 0; }
inline bool is_black(unsigned char p) { return p == 0; }
// Bright pixels: grey level at or above `threshold`.
inline auto at_least(int threshold) {
    return [threshold](unsigned char p) { return p >= threshold; };
}

}  // namespace qel

#endif
