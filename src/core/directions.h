// The eight direction codes shared by chain codes, neighbour walks and tracing:
// code k steps by (kDx[k], kDy[k]); 0 is east, 2 is up, counting counter-clockwise on screen.
#ifndef QEL_SRC_CORE_DIRECTIONS_H
#define QEL_SRC_CORE_DIRECTIONS_H

namespace qel {

constexpr int kDx[8] = {1, 1, 0, -1, -1, -1, 0, 1};
constexpr int kDy[8] = {0, -1, -1, -1, 0, 1, 1, 1};

// Offset in a width-wide buffer of the neighbour in direction k.
constexpr long neighbour_offset(int k, int width) { return static_cast<long>(kDy[k]) * width + kDx[k]; }

}  // namespace qel

#endif
