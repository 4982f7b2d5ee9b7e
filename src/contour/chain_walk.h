// Walking a chain code: a start pixel plus one direction code per step. Every measure, point test
// and chain walk over an image goes through these helpers, so each step is taken the same way.
#ifndef QEL_SRC_CONTOUR_CHAIN_WALK_H
#define QEL_SRC_CONTOUR_CHAIN_WALK_H

#include "core/directions.h"

#include <cstddef>

namespace qel {

// Code i of a chain. Only the low three bits are used, so a stray byte above 7 cannot index past
// the direction tables.
inline int chain_code(const unsigned char* chain, int i) { return chain[i] & 7; }

// Calls visit(x, y) on the start point (x0, y0) and then on the point reached after each of the
// first `steps` codes: steps + 1 calls, or only the start point when steps <= 0.
template <class Visit>
inline void walk_chain(int x0, int y0, const unsigned char* chain, int steps, Visit&& visit) {
    int x = x0;
    int y = y0;
    visit(x, y);
    for (int i = 0; i < steps; ++i) {
        const int k = chain_code(chain, i);
        x += kDx[k];
        y += kDy[k];
        visit(x, y);
    }
}

// True as soon as pred(x, y) holds for a point reached after one of the first `steps` codes. The
// start point is not tested as such; a closed chain meets it again after its last code.
template <class Pred>
inline bool any_point_after_step(int x0, int y0, const unsigned char* chain, int steps, Pred&& pred) {
    int x = x0;
    int y = y0;
    for (int i = 0; i < steps; ++i) {
        const int k = chain_code(chain, i);
        x += kDx[k];
        y += kDy[k];
        if (pred(x, y)) return true;
    }
    return false;
}

// Calls visit(x, y, prev, cur) on each of the n points of a closed chain: point 0 is the start,
// point i + 1 the point after code i; cur is the code leaving the point and prev the code that
// entered it (for the start point, the chain's last code). Nothing is visited when n <= 0.
template <class Visit>
inline void walk_chain_turns(int x0, int y0, const unsigned char* chain, int n, Visit&& visit) {
    if (n <= 0) return;
    int x = x0;
    int y = y0;
    int prev = chain_code(chain, n - 1);
    for (int i = 0; i < n; ++i) {
        const int cur = chain_code(chain, i);
        visit(x, y, prev, cur);
        x += kDx[cur];
        y += kDy[cur];
        prev = cur;
    }
}

// Index of pixel (x, y) in a width-wide image.
inline std::ptrdiff_t pixel_index(int x, int y, int width) {
    return static_cast<std::ptrdiff_t>(y) * width + x;
}

}  // namespace qel

#endif
