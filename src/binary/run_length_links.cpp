// Run-length operations that relate runs to each other: short runs kept when linked to long ones,
// run starts counted in a sliding window, the smaller of row and column run lengths, and
// horizontal structures built from short vertical runs.
#include "qel/binary.h"
#include "qel/io.h"

#include "binary/run_scan.h"
#include "core/lut.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <new>
#include <vector>

namespace qel {
namespace {

constexpr unsigned char kWhite = 255;
constexpr int kMaxLinkSteps = 250;     // link distances are stored in bytes, capped below 251
constexpr int kMaxRunMark = 255;       // row runs of 256 and more are marked 255
constexpr int kStackScratchRows = 1024;
constexpr int kScratchIntsPerRow = 5;  // two lists of (start, end) pairs and the length table

// Keeps short white runs that link, line to line, to a long run within fewer than L lines.
// `out` holds zeros on entry; values 1..L record the distance to the nearest long run seen.
void keep_linked_short_runs(unsigned char* image, int width, int height, const Lines& lines, int minLength,
                            int maxSteps, unsigned char* out) {
    if (width <= 0 || height <= 0) return;
    const int limit = std::min(maxSteps, kMaxLinkSteps);
    QelSetImageBoundary(image, width, height, 0);
    const RunBounds b = column_bounds(lines.length);  // the cleared frame ends every run first

    // One line against its already processed neighbour `ref`.
    auto link_line = [&](int i, int ref) {
        const unsigned char* line = lines.line(image, i);
        unsigned char* o = lines.line(out, i);
        const unsigned char* r = lines.line(out, ref);
        for_each_run(line, lines.step, b, is_white, [&](int s, int e) {
            if (e - s >= minLength) {
                fill_run(o, lines.step, s, e, 1);
                return;
            }
            int v = limit;
            for (int k = s; k < e; ++k) {
                if (r[k * lines.step] != 0) {
                    v = r[k * lines.step];
                    break;
                }
            }
            if (v < limit) fill_run(o, lines.step, s, e, static_cast<unsigned char>(v + 1));
        });
    };
    for (int i = 1; i < lines.count; ++i) link_line(i, i - 1);
    for (int i = lines.count - 2; i >= 0; --i) link_line(i, i + 1);

    unsigned char nonZeroToWhite[256];
    nonZeroToWhite[0] = 0;
    std::fill(nonZeroToWhite + 1, nonZeroToWhite + 256, kWhite);
    apply_lut(out, static_cast<size_t>(width) * static_cast<size_t>(height), nonZeroToWhite, out);
}

}  // namespace
}  // namespace qel

void QelRLXDeleteWhiteShort(unsigned char* image, int width, int height, int minLength, int maxSteps,
                            unsigned char* out) {
    qel::keep_linked_short_runs(image, width, height, qel::rows_of(width, height), minLength, maxSteps, out);
}

void QelRLYDeleteWhiteShort(unsigned char* image, int width, int height, int minLength, int maxSteps,
                            unsigned char* out) {
    qel::keep_linked_short_runs(image, width, height, qel::columns_of(width, height), minLength, maxSteps, out);
}

void QelBinImg01TimesByX(unsigned char* image, int* flags, int width, int height, int halfSize,
                         unsigned char* out) {
    if (width <= 0) return;
    const int64_t half = halfSize;
    const int r = static_cast<int>(std::max<int64_t>(0, ((half + 1) / 2 * 2 + 1) / 2));
    std::vector<int64_t> prefix(static_cast<size_t>(width) + 1, 0);
    for (int y = 0; y < height; ++y) {
        const unsigned char* row = image + static_cast<std::ptrdiff_t>(y) * width;
        unsigned char* outRow = out + static_cast<std::ptrdiff_t>(y) * width;
        // flags are only ever set, so run starts accumulate over the rows
        for (int x = 1; x < width; ++x) {
            if (row[x] != 0 && row[x - 1] == 0) flags[x] = 1;
        }
        for (int x = 0; x < width; ++x) prefix[x + 1] = prefix[x] + flags[x];
        // A centred window: growing by two flags a step from flag[0], full 2r+1 in the middle,
        // shrinking by two towards the end.
        for (int x = 0; x < width; ++x) {
            const int k = std::min({r, x, width - 1 - x});
            const uint64_t sum = static_cast<uint64_t>(prefix[x + k + 1] - prefix[x - k]);
            outRow[x] = static_cast<unsigned char>(sum & 0xFFu);
        }
    }
}

void QelBinImgMarkMinOfRLXandRLY(unsigned char* image, int width, int height) {
    const qel::Lines rows = qel::rows_of(width, height);
    for (int y = 0; y < height; ++y) {
        unsigned char* row = rows.line(image, y);
        // a run reaching the right edge is one short and keeps its last pixel
        qel::for_each_run(row, 1, qel::row_bounds(width), qel::is_white, [row](int s, int e) {
            qel::fill_run(row, 1, s, e, static_cast<unsigned char>(std::min(e - s, qel::kMaxRunMark)));
        });
    }
    const qel::Lines columns = qel::columns_of(width, height);
    for (int x = 0; x < width; ++x) {
        unsigned char* column = columns.line(image, x);
        qel::for_each_run(column, columns.step, qel::column_bounds(height), qel::is_white, [&](int s, int e) {
            // the zero pixel that ends the run is counted too, except at the bottom edge
            const int count = e - s + (e < height ? 1 : 0);
            for (int i = s; i < e; ++i) {
                unsigned char& p = column[i * columns.step];
                if (count < p) p = static_cast<unsigned char>(count);
            }
        });
    }
}

bool QelRLYWhiteShortAndRLXWhiteLong(unsigned char* grey, unsigned char* work, int width, int height,
                                     int threshold, int maxVertical, int minTop, int minBottom,
                                     unsigned char* out) {
    if (width <= 0 || height <= 0) return true;
    std::array<int, qel::kScratchIntsPerRow*(qel::kStackScratchRows - 1)> stackScratch;
    std::unique_ptr<int[]> heapScratch;
    int* scratch = stackScratch.data();
    if (height >= qel::kStackScratchRows) {
        heapScratch.reset(new (std::nothrow) int[static_cast<size_t>(qel::kScratchIntsPerRow) * height]);
        if (!heapScratch) return false;
        scratch = heapScratch.get();
    }
    int* previous = scratch;                 // (start, end) pairs of the previous column's runs
    int* current = scratch + 2 * height;     // the same for the column being scanned
    int* required = scratch + 4 * height;    // horizontal length needed on each row
    for (int y = 0; y < height; ++y) {
        required[y] = static_cast<int>(minTop + static_cast<int64_t>(minBottom - minTop) * y / height);
    }
    std::fill_n(work, static_cast<size_t>(width) * static_cast<size_t>(height), 0);

    const qel::Lines columns = qel::columns_of(width, height);
    int previousCount = 0;
    for (int x = 0; x < width; ++x) {
        int currentCount = 0;
        if (x < width - 1) {  // the last column is never scanned
            unsigned char* workColumn = columns.line(work, x);
            qel::for_each_run(columns.line(grey, x), columns.step, qel::column_bounds(height),
                              qel::at_least(threshold), [&](int s, int e) {
                                  if (e - s > maxVertical) return;
                                  qel::fill_run(workColumn, columns.step, s, e, qel::kWhite);
                                  current[2 * currentCount] = s;
                                  current[2 * currentCount + 1] = e;
                                  ++currentCount;
                              });
        }
        // Where a run of the previous column is not continued here, the row segment of short
        // runs ending in column x−1 is measured; column 0 is never counted.
        for (int i = 0; i < previousCount; ++i) {
            const int yEnd = std::min(previous[2 * i + 1], height - 1);
            for (int y = std::max(previous[2 * i], 1); y < yEnd; ++y) {
                const unsigned char* workRow = work + static_cast<std::ptrdiff_t>(y) * width;
                if (workRow[x] != 0) continue;
                int length = 0;
                for (int c = x - 1; c >= 1 && workRow[c] != 0; --c) ++length;
                if (length >= required[y]) {
                    std::fill(out + static_cast<std::ptrdiff_t>(y) * width + x - length,
                              out + static_cast<std::ptrdiff_t>(y) * width + x, qel::kWhite);
                }
            }
        }
        std::swap(previous, current);
        previousCount = currentCount;
    }
    return true;
}
