// Run-length counts, statistics, deletion by length and the long/short run extractors, along rows
// (RLX) and columns (RLY).
#include "qel/binary.h"

#include "binary/run_scan.h"

#include <algorithm>
#include <cstdint>

namespace qel {
namespace {

constexpr unsigned char kWhite = 255;
constexpr int kBrightStart = 201;     // a bright run starts at 201 or more ...
constexpr int kBrightContinue = 200;  // ... and continues at 200 or more; the asymmetry is intended

template <class InRun>
void count_runs(const unsigned char* image, const Lines& lines, InRun inRun, int* histogram, int cap) {
    if (cap < 0) return;
    const RunBounds b = bounds_for(lines);
    for (int i = 0; i < lines.count; ++i) {
        for_each_run(lines.line(image, i), lines.step, b, inRun,
                     [histogram, cap](int s, int e) { histogram[std::min(e - s, cap)] += 1; });
    }
}

// Deletion tests are strict: shorter means length < minimum, longer means length > maximum.
auto shorter_than(int minLength) {
    return [minLength](int length) { return length < minLength; };
}
auto longer_than(int maxLength) {
    return [maxLength](int length) { return length > maxLength; };
}

// Overwrites with `fill` every run for which doomed(length) holds.
template <class InRun, class Doomed>
void delete_runs(unsigned char* image, const Lines& lines, RunBounds b, InRun inRun, Doomed doomed,
                 unsigned char fill) {
    for (int i = 0; i < lines.count; ++i) {
        unsigned char* line = lines.line(image, i);
        for_each_run(line, lines.step, b, inRun, [&](int s, int e) {
            if (doomed(e - s)) fill_run(line, lines.step, s, e, fill);
        });
    }
}

// Statistics of bright runs on lines l0..l1 between positions p0..p1 (all inside the image).
int bright_run_statistics(const unsigned char* image, const Lines& lines, int l0, int l1, int p0, int p1,
                          int initialShortest, int* total, int* shortest, int* longest, int* mostRuns) {
    int64_t sum = 0;
    int runs = 0, low = initialShortest, high = 0, most = 0;
    for (int li = l0; li <= l1; ++li) {
        const unsigned char* line = lines.line(image, li);
        int inLine = 0;
        int i = p0;
        while (i <= p1) {
            if (line[i * lines.step] < kBrightStart) {
                ++i;
                continue;
            }
            const int s = i++;
            while (i <= p1 && line[i * lines.step] >= kBrightContinue) ++i;
            const int length = i - s;  // measured in full, also when cut at p1
            sum += length;
            low = std::min(low, length);
            high = std::max(high, length);
            ++inLine;
        }
        runs += inLine;
        most = std::max(most, inLine);
    }
    *total = static_cast<int>(sum);
    *shortest = low;
    *longest = high;
    *mostRuns = most;
    return runs;
}

}  // namespace
}  // namespace qel

using qel::columns_of;
using qel::rows_of;

void QelRLXWhiteCount(unsigned char* image, int width, int height, int* histogram, int cap) {
    qel::count_runs(image, rows_of(width, height), qel::is_white, histogram, cap);
}

void QelRLXBlackCount(unsigned char* image, int width, int height, int* histogram, int cap) {
    qel::count_runs(image, rows_of(width, height), qel::is_black, histogram, cap);
}

void QelRLYWhiteCount(unsigned char* image, int width, int height, int* histogram, int cap) {
    qel::count_runs(image, columns_of(width, height), qel::is_white, histogram, cap);
}

void QelRLYBlackCount(unsigned char* image, int width, int height, int* histogram, int cap) {
    qel::count_runs(image, columns_of(width, height), qel::is_black, histogram, cap);
}

int QelRLXWhiteCount(unsigned char* image, int width, int height, int x1, int x2, int y1, int y2,
                     int* total, int* shortest, int* longest, int* mostRuns) {
    return qel::bright_run_statistics(image, rows_of(width, height), std::max(y1, 0), std::min(y2, height - 1),
                                      std::max(x1, 0), std::min(x2, width - 1), width, total, shortest, longest,
                                      mostRuns);
}

// The shortest run starts at width here too, exactly as in the row form.
int QelRLYWhiteCount(unsigned char* image, int width, int height, int x1, int x2, int y1, int y2,
                     int* total, int* shortest, int* longest, int* mostRuns) {
    return qel::bright_run_statistics(image, columns_of(width, height), std::max(x1, 0), std::min(x2, width - 1),
                                      std::max(y1, 0), std::min(y2, height - 1), width, total, shortest, longest,
                                      mostRuns);
}

void QelRLXWhiteDeleteShort(unsigned char* image, int width, int height, int minLength, int fill) {
    qel::delete_runs(image, rows_of(width, height), qel::row_bounds(width), qel::is_white,
                     qel::shorter_than(minLength), static_cast<unsigned char>(fill));
}

void QelRLXWhiteDeleteLong(unsigned char* image, int width, int height, int maxLength, unsigned char fill) {
    qel::delete_runs(image, rows_of(width, height), qel::row_bounds(width), qel::is_white,
                     qel::longer_than(maxLength), fill);
}

// Black runs are looked for only from column 1 to width−2; column 0 never starts one and the last
// column only ends one.
void QelRLXBlackDeleteShort(unsigned char* image, int width, int height, int minLength, int fill) {
    qel::delete_runs(image, rows_of(width, height), qel::inner_bounds(width), qel::is_black,
                     qel::shorter_than(minLength), static_cast<unsigned char>(fill));
}

void QelRLYWhiteDeleteShort(unsigned char* image, int width, int height, int minLength, int fill) {
    // Below 2 no run is short, yet single vertically isolated pixels go: callers rely on it.
    if (minLength < 2) {
        QelRLYWhiteDeleteIsolated(image, width, height, fill);
        return;
    }
    qel::delete_runs(image, columns_of(width, height), qel::column_bounds(height), qel::is_white,
                     qel::shorter_than(minLength), static_cast<unsigned char>(fill));
}

void QelRLYWhiteDeleteLong(unsigned char* image, int width, int height, int maxLength, int fill) {
    qel::delete_runs(image, columns_of(width, height), qel::column_bounds(height), qel::is_white,
                     qel::longer_than(maxLength), static_cast<unsigned char>(fill));
}

void QelRLYWhiteDeleteIsolated(unsigned char* image, int width, int height, int fill) {
    const unsigned char value = static_cast<unsigned char>(fill);
    for (int y = 1; y < height - 1; ++y) {
        unsigned char* row = image + static_cast<std::ptrdiff_t>(y) * width;
        const unsigned char* up = row - width;
        const unsigned char* down = row + width;
        for (int x = 0; x < width; ++x) {
            if (row[x] != 0 && up[x] == 0 && down[x] == 0) row[x] = value;
        }
    }
}

void QelRLXWhiteLong(unsigned char* image, int width, int height, int minTop, int minBottom, unsigned char* out) {
    const qel::RunBounds inner = qel::inner_bounds(width);  // searched in columns 1..width−2, cut at width−1
    for (int y = 1; y < height - 1; ++y) {
        const int64_t required = minTop + static_cast<int64_t>(minBottom - minTop) * y / (height - 1);
        const std::ptrdiff_t offset = static_cast<std::ptrdiff_t>(y) * width;
        unsigned char* outRow = out + offset;
        qel::for_each_run(image + offset, 1, inner, qel::is_white, [=](int s, int e) {
            if (e - s >= required) qel::fill_run(outRow, 1, s, e, qel::kWhite);
        });
    }
}

void QelRLYWhiteShort(unsigned char* grey, int width, int height, int threshold, int maxLength, unsigned char* out) {
    const qel::Lines columns = columns_of(width, height);
    const qel::RunBounds b = qel::column_bounds(height);
    for (int x = 0; x < width; ++x) {
        unsigned char* outColumn = columns.line(out, x);
        qel::for_each_run(columns.line(grey, x), columns.step, b, qel::at_least(threshold), [&](int s, int e) {
            if (e - s <= maxLength) qel::fill_run(outColumn, columns.step, s, e, qel::kWhite);
        });
    }
}
