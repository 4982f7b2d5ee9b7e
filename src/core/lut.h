// Look-up-table application: the one loop every point operation (thresholds, inversions,
// remappings, corrections) goes through.
#ifndef QEL_SRC_CORE_LUT_H
#define QEL_SRC_CORE_LUT_H

#include <cstddef>

namespace qel {

// dst[i] = lut[src[i]] for i < count. src and dst may be the same buffer.
void apply_lut(const unsigned char* src, size_t count, const unsigned char lut[256], unsigned char* dst);

// The same inside the rectangle x1..x2, y1..y2 (both ends included) of a width-wide grey image;
// pixels outside the rectangle are not touched.
void apply_lut_in_rect(const unsigned char* src, int width, int x1, int x2, int y1, int y2,
                       const unsigned char lut[256], unsigned char* dst);

}  // namespace qel

#endif
