// The boundary tracer's entry points and the marking of every boundary of an image.
#include "qel/contour.h"
#include "qel/io.h"

#include "contour/chain_walk.h"
#include "contour/scan.h"
#include "contour/trace.h"

#include <cstddef>
#include <cstring>

int QelTraceContour(unsigned char* image, int width, int x, int y, unsigned char* chain, int maxCodes, bool outer) {
    return qel::trace_boundary(image, width, qel::pixel_index(x, y, width), outer, chain, maxCodes,
                               qel::AnywhereInImage{});
}

void QelMarkContour(unsigned char* image, int width, int x, int y, bool outer) {
    qel::trace_boundary(image, width, qel::pixel_index(x, y, width), outer, nullptr, 0, qel::AnywhereInImage{});
}

void QelMarkContours(unsigned char* image, int width, int height, unsigned char* out) {
    if (width <= 0 || height <= 0) return;
    const std::size_t size = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    std::memcpy(out, image, size);
    QelSetImageBoundary(out, width, height, 0);
    // Comparing with the left pixel as it was read, before a trace started from it, finds the same
    // starts: such a trace only turns that pixel from 255 to 254, or (the pixel after a hole's start)
    // from 0 to 1, and neither changes whether the next pixel starts a boundary.
    qel::scan_boundary_starts(out, width, qel::rows_below_first(width, height), qel::kContourStarts,
                              [&](std::ptrdiff_t i, int, int, unsigned char, qel::Start start) {
                                  if (start != qel::Start::None) qel::trace_found(out, width, i, start, nullptr, 0);
                              });
    for (std::size_t i = 0; i < size; ++i) out[i] = out[i] == qel::kTracedMark ? 255 : 0;
}
