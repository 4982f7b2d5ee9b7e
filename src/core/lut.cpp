#include "core/lut.h"

namespace qel {

void apply_lut(const unsigned char* src, size_t count, const unsigned char lut[256], unsigned char* dst) {
    for (size_t i = 0; i < count; ++i) dst[i] = lut[src[i]];
}

void apply_lut_in_rect(const unsigned char* src, int width, int x1, int x2, int y1, int y2,
                       const unsigned char lut[256], unsigned char* dst) {
    if (x2 < x1) return;
    for (int y = y1; y <= y2; ++y) {
        const size_t row = static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x1);
        apply_lut(src + row, static_cast<size_t>(x2 - x1 + 1), lut, dst + row);
    }
}

}  // namespace qel
