// The largest erosion an image's objects survive, found by alternating a run-distance map with
// erosions by the map's median distance.
#include "qel/binary.h"
#include "qel/histogram.h"

#include "binary/neighbourhood.h"
#include "binary/run_scan.h"

#include <algorithm>
#include <cstring>

namespace qel {
namespace {

constexpr int kLevels = 256;
// Distances are stored in a byte; 255 and more are written as 254.
constexpr int kMaxStoredDistance = 254;
// Rounds go on while the largest distance is at least this.
constexpr int kMinDistanceToErode = 2;

// Distance of position i of the run [s, e] to the nearer run end, counting the end pixel as 1:
// the first half (up to the midpoint, inclusive) from s, the rest from e.
int run_distance(int i, int s, int e) {
    const int m = (s + e) / 2;
    const int d = i <= m ? i - s + 1 : e - i + 1;
    return std::min(d, kMaxStoredDistance);
}

// Writes the row distances of every object pixel into map and counts them in hist, then lowers
// each to its column distance where that is smaller, moving its count in hist.
void distance_map(unsigned char* map, int width, int height, int* hist) {
    const Lines rows = rows_of(width, height);
    for (int r = 0; r < rows.count; ++r) {
        unsigned char* line = rows.line(map, r);
        for_each_run(line, rows.step, column_bounds(rows.length), is_white, [&](int s, int end) {
            for (int i = s; i < end; ++i) {
                const int d = run_distance(i, s, end - 1);
                line[i] = static_cast<unsigned char>(d);
                hist[d] += 1;
            }
        });
    }
    const Lines columns = columns_of(width, height);
    for (int c = 0; c < columns.count; ++c) {
        unsigned char* line = columns.line(map, c);
        for_each_run(line, columns.step, column_bounds(columns.length), is_white, [&](int s, int end) {
            for (int i = s; i < end; ++i) {
                unsigned char& stored = line[i * columns.step];
                const int d = run_distance(i, s, end - 1);
                if (d >= stored) continue;
                hist[stored] -= 1;
                hist[d] += 1;
                stored = static_cast<unsigned char>(d);
            }
        });
    }
}

int highest_non_empty_bin(const int* hist) {
    for (int v = kLevels - 1; v >= 1; --v)
        if (hist[v] != 0) return v;
    return 0;
}

}  // namespace
}  // namespace qel

int QelGetMaxSizeofMinFilter(unsigned char* image, unsigned char* work, unsigned char* result, int width, int height,
                             int* size) {
    const size_t n = static_cast<size_t>(width) * static_cast<size_t>(height);
    int total = 0;
    *size = 0;
    std::memcpy(result, image, n);
    int hist[qel::kLevels];
    int maxd = 0;
    for (;;) {
        std::fill(hist, hist + qel::kLevels, 0);
        std::memcpy(work, result, n);
        qel::distance_map(result, width, height, hist);
        maxd = qel::highest_non_empty_bin(hist);
        if (maxd < qel::kMinDistanceToErode) break;
        const int med = std::max(QelGetMedianInHistogram(hist), 1);
        total += med;
        *size += 2 * med;
        if (med < 2) {
            QelBinImgMinFilter3x3(work, width, height, result);
        } else if (2 * med + 1 > width || 2 * med + 1 > height) {
            // No (2·med+1)² square fits in the image, so no pixel can have a white one: all go.
            std::memset(result, 0, n);
        } else {
            // A pixel survives only when its whole (2·med+1)² square is white.
            const unsigned int side = 2u * static_cast<unsigned int>(med) + 1u;
            QelBinImgFilter(work, width, height, med, med, (side * side - 1u) * qel::kObject, result);
        }
        // An erosion that changes nothing would make every later round the same as this one: the
        // loop could never end, so it ends here.
        if (std::memcmp(work, result, n) == 0) break;
    }
    if (maxd >= 1) {
        total += maxd;
        *size += maxd;
    } else {
        *size -= 1;
    }
    return total;
}
