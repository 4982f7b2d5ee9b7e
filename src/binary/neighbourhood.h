// The 3 × 3 neighbourhood as the binary morphology family sees it: an 8-entry offset table in
// direction-code order, the counts and sums over the 8 neighbours, and the loop over centres.
#ifndef QEL_SRC_BINARY_NEIGHBOURHOOD_H
#define QEL_SRC_BINARY_NEIGHBOURHOOD_H

#include "core/directions.h"

#include <cstddef>

namespace qel {

constexpr int kNeighbours = 8;
constexpr unsigned char kObject = 255;
constexpr unsigned char kBackground = 0;

// Offsets of the 8 neighbours of a pixel in a width-wide image, computed once per call; entry k
// is the neighbour in direction code k (east first, counter-clockwise).
class NeighbourOffsets {
public:
    explicit NeighbourOffsets(int width) {
        for (int k = 0; k < kNeighbours; ++k) offset_[k] = neighbour_offset(k, width);
    }
    std::ptrdiff_t operator[](int k) const { return offset_[k]; }

private:
    std::ptrdiff_t offset_[kNeighbours];
};

// Number of neighbours of *p whose value satisfies pred.
template <class Pred>
inline int count_neighbours(const unsigned char* p, const NeighbourOffsets& off, Pred pred) {
    int n = 0;
    for (int k = 0; k < kNeighbours; ++k) n += pred(p[off[k]]) ? 1 : 0;
    return n;
}

inline int count_nonzero_neighbours(const unsigned char* p, const NeighbourOffsets& off) {
    return count_neighbours(p, off, [](unsigned char v) { return v != 0; });
}

// Sum of the neighbours' raw values (centre excluded).
inline int neighbour_sum(const unsigned char* p, const NeighbourOffsets& off) {
    int s = 0;
    for (int k = 0; k < kNeighbours; ++k) s += p[off[k]];
    return s;
}

// Bit k is set when neighbour k is non-zero.
inline unsigned neighbour_pattern(const unsigned char* p, const NeighbourOffsets& off) {
    unsigned bits = 0;
    for (int k = 0; k < kNeighbours; ++k) bits |= (p[off[k]] != 0 ? 1u : 0u) << k;
    return bits;
}

inline bool bit(unsigned pattern, int k) { return ((pattern >> k) & 1u) != 0; }

// Number of 0 → 1 steps met walking the neighbours once around in direction order (k − 1 → k for
// k = 1..7, then 7 → 0): how many separate object arcs touch the centre.
constexpr int object_arcs(unsigned pattern) {
    int a = 0;
    for (int k = 1; k < kNeighbours; ++k)
        a += (((pattern >> (k - 1)) & 1u) == 0 && ((pattern >> k) & 1u) != 0) ? 1 : 0;
    a += ((pattern >> 7) & 1u) == 0 && (pattern & 1u) != 0 ? 1 : 0;
    return a;
}

// Direction codes of the four 4-neighbours.
constexpr int kEast = 0;
constexpr int kNorth = 2;
constexpr int kWest = 4;
constexpr int kSouth = 6;

// Calls f(p, x, y) for every centre x0 <= x < x1, y0 <= y < y1 of a width-wide image, in raster order.
template <class Pixel, class F>
inline void for_each_centre(Pixel* image, int width, int x0, int x1, int y0, int y1, F f) {
    for (int y = y0; y < y1; ++y) {
        Pixel* row = image + static_cast<std::ptrdiff_t>(y) * width;
        for (int x = x0; x < x1; ++x) f(row + x, x, y);
    }
}

// The same over the interior: every pixel whose 8 neighbours lie inside the image.
template <class Pixel, class F>
inline void for_each_interior(Pixel* image, int width, int height, F f) {
    for_each_centre(image, width, 1, width - 1, 1, height - 1, f);
}

}  // namespace qel

#endif
