// Filling a traced contour, for the region functions that know the size of the image they fill.
#ifndef QEL_SRC_CONTOUR_FILL_H
#define QEL_SRC_CONTOUR_FILL_H

#include <cstddef>

namespace qel {

// QelFillingContour in a buffer of `size` bytes: pixels outside it are neither read nor written,
// and a fill walk stops at the buffer's ends.
int fill_contour_in_buffer(unsigned char* image, int width, std::ptrdiff_t size, int x, int y,
                           const unsigned char* chain, int n, bool includeContour, int boundaryValue, int fillValue);

}  // namespace qel

#endif
