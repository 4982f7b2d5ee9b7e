// Edge-preserving smoothing: each interior pixel is pulled toward those of its 8 neighbours whose
// grey level is close to its own, and left alone by neighbours across an edge.
#include "qel/filter.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace qel {
namespace {

constexpr int kLevels = 256;
constexpr int kDiffOffset = kLevels - 1;             // index of difference n − c = 0
constexpr int kDiffCount = 2 * kLevels - 1;          // differences −255 .. 255
constexpr int kPullShift = 3;                        // the summed pull is divided by 8
constexpr int kFadeFactor = 3;                       // pulls fade to 0 at 3·threshold

// Pull of a neighbour n on a centre c as a function of n − c alone:
//   |n−c| ≤ T       : n − c (full pull);
//   T < |n−c| ≤ 3T  : ±(3T − |n−c|), toward the neighbour, fading linearly to 0 at 3T;
//   |n−c| > 3T      : 0.
int pull(int diff, int64_t threshold) {
    const int64_t d = std::abs(diff);
    const int64_t fadeEnd = kFadeFactor * threshold;
    if (d <= threshold) return diff;
    if (d <= fadeEnd) return static_cast<int>(diff > 0 ? fadeEnd - d : d - fadeEnd);
    return 0;
}

}  // namespace
}  // namespace qel

void QelGryZedFilter(unsigned char* src, int width, int height, int threshold, unsigned char* dst) {
    if (width < 3 || height < 3) return;  // no interior pixel
    // The pull depends only on the difference n − c, so it is tabulated once per call.
    int pullOf[qel::kDiffCount];
    for (int i = 0; i < qel::kDiffCount; ++i) pullOf[i] = qel::pull(i - qel::kDiffOffset, threshold);

    const ptrdiff_t w = width;
    for (int y = 1; y < height - 1; ++y) {
        const unsigned char* above = src + (y - 1) * w;
        const unsigned char* row = src + y * w;
        const unsigned char* below = src + (y + 1) * w;
        unsigned char* out = dst + y * w;
        for (int x = 1; x < width - 1; ++x) {
            const int* t = pullOf + qel::kDiffOffset - row[x];
            const int acc = t[row[x + 1]] + t[above[x + 1]] + t[above[x]] + t[above[x - 1]] +
                            t[row[x - 1]] + t[below[x - 1]] + t[below[x]] + t[below[x + 1]];
            // Arithmetic shift of a signed sum, stored as the low byte without clamping: results
            // outside 0..255 wrap (intended; 250 among eight 255s with threshold 4 gives 1).
            out[x] = static_cast<unsigned char>(row[x] + (acc >> qel::kPullShift));
        }
    }
}
