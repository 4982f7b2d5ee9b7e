// Counting object pixels and finding centres: the centroid, counts in rectangles, the share of
// background pixels and the column centre found by run votes.
#include "qel/binary.h"

#include "binary/run_scan.h"
#include "core/reduce.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

// Widest image the column centre search accepts.
constexpr int kMaxSearchWidth = 4096;
// A row run votes only when its last and first columns differ by more than this.
constexpr int kMinVotingRunSpan = 10;

const unsigned char* row_of(const unsigned char* image, int width, int y) {
    return image + static_cast<std::ptrdiff_t>(y) * width;
}

}  // namespace

int QelBinImgCentroid(unsigned char* image, int width, int height, int* x, int* y) {
    int n = 0;
    int64_t sumX = 0;
    int64_t sumY = 0;
    for (int r = 0; r < height; ++r) {
        const unsigned char* row = row_of(image, width, r);
        for (int c = 0; c < width; ++c) {
            if (row[c] == 0) continue;
            ++n;
            sumX += c;
            sumY += r;
        }
    }
    if (n == 0) return 0;
    *x = static_cast<int>(sumX / n);
    *y = static_cast<int>(sumY / n);
    return n;
}

int QelGetWhitePixelsNum(unsigned char* image, int width, int height, int x1, int x2, int y1, int y2) {
    const int left = std::max(x1, 0);
    const int right = std::min(width - 1, x2);
    const int top = std::max(y1, 0);
    const int bottom = std::min(height - 1, y2);
    if (right < left || bottom < top) return 0;
    const size_t span = static_cast<size_t>(right - left + 1);
    const size_t rows = static_cast<size_t>(bottom - top + 1);
    if (span == static_cast<size_t>(width))  // whole rows: one stretch of memory
        return static_cast<int>(span * rows - qel::count_equal(row_of(image, width, top), span * rows, 0));
    size_t n = 0;
    for (int r = top; r <= bottom; ++r) n += span - qel::count_equal(row_of(image, width, r) + left, span, 0);
    return static_cast<int>(n);
}

double QelGetBlackRatioInBinaryImg(unsigned char* image, int width, int x1, int x2, int y1, int y2) {
    int zeros = 0;
    if (x2 >= x1)
        for (int r = y1; r <= y2; ++r)
            zeros += static_cast<int>(qel::count_equal(row_of(image, width, r) + x1, static_cast<size_t>(x2 - x1 + 1), 0));
    const int area = (x2 - x1 + 1) * (y2 - y1 + 1);
    return zeros * 1.0 / area;
}

int QelPixelsInGryImg(unsigned char* image, int width, int height, int value) {
    const size_t n = static_cast<size_t>(width) * static_cast<size_t>(height);
    if (value < 0 || value > 255) return 0;  // no byte equals it
    return static_cast<int>(qel::count_equal(image, n, static_cast<unsigned char>(value)));
}

int QelBinImgSearchCenterX(unsigned char* image, int width, int height, int x1, int x2) {
    if (width > kMaxSearchWidth || x1 > x2) return 0;
    // Votes per column c = x1..x2, kept as differences: a run [s, e] adds one to every c > s and
    // one to every c < e, so each run costs two range updates instead of a pass over x1..x2.
    const int span = x2 - x1 + 1;
    std::vector<int> delta(static_cast<size_t>(span) + 1, 0);
    auto addRange = [&](int from, int to) {  // columns from..to, clipped to x1..x2
        from = std::max(from, x1);
        to = std::min(to, x2);
        if (from > to) return;
        delta[static_cast<size_t>(from - x1)] += 1;
        delta[static_cast<size_t>(to - x1) + 1] -= 1;
    };
    const qel::Lines rows = qel::rows_of(width, height);
    for (int r = 0; r < rows.count; ++r) {
        qel::for_each_run(rows.line(image, r), rows.step, qel::column_bounds(rows.length), qel::is_white,
                          [&](int s, int end) {
                              const int e = end - 1;
                              if (e - s <= kMinVotingRunSpan) return;
                              addRange(s + 1, x2);
                              addRange(x1, e - 1);
                          });
    }
    // The first column with the most votes begins the plateau, the last one with that count ends it.
    int best = -1;
    int beginX = x1;
    int endX = x1;
    int votes = 0;
    for (int c = x1; c <= x2; ++c) {
        votes += delta[static_cast<size_t>(c - x1)];
        if (votes > best) {
            best = votes;
            beginX = c;
            endX = c;
        } else if (votes == best) {
            endX = c;
        }
    }
    return (beginX + endX) / 2;
}
