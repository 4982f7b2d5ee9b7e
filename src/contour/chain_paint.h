// Marking the pixels a chain passes, within the limits a caller can vouch for.
#ifndef QEL_SRC_CONTOUR_CHAIN_PAINT_H
#define QEL_SRC_CONTOUR_CHAIN_PAINT_H

#include "contour/chain_walk.h"
#include "contour/trace.h"

namespace qel {

// Calls mark(pixel, i) on the start pixel (i = −1) and on the pixel reached after each code i,
// skipping pixels the bounds exclude.
template <class Bounds, class Mark>
void mark_chain_pixels(unsigned char* image, int width, int x, int y, const unsigned char* chain, int n,
                       Bounds bounds, Mark&& mark) {
    int i = -1;
    walk_chain(x, y, chain, n, [&](int px, int py) {
        const std::ptrdiff_t at = pixel_index(px, py, width);
        if (bounds.contains(at)) mark(image[at], i);
        ++i;
    });
}

// Sets the start pixel and the pixel after each code to colour (QelMarkChainByColor).
template <class Bounds>
void paint_chain(unsigned char* image, int width, int x, int y, const unsigned char* chain, int n, int colour,
                 Bounds bounds) {
    const unsigned char c = static_cast<unsigned char>(colour);
    mark_chain_pixels(image, width, x, y, chain, n, bounds, [c](unsigned char& pixel, int) { pixel = c; });
}

}  // namespace qel

#endif
