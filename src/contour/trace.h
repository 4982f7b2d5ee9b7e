// The boundary tracer behind every contour function, and the limits it may look within.
#ifndef QEL_SRC_CONTOUR_TRACE_H
#define QEL_SRC_CONTOUR_TRACE_H

#include "core/directions.h"

#include <climits>
#include <cstddef>

namespace qel {

// Marks left by the tracer: boundary pixels become 254 and examined background becomes 1. Any
// value of 2 or more is object to the tracer (untraced 255 and traced 254 alike).
constexpr unsigned char kTracedMark = 254;
constexpr unsigned char kExaminedMark = 1;
constexpr unsigned char kLowestObjectValue = 2;
// Binarising at this threshold returns a traced image to 0 and 255.
constexpr int kUnmarkThreshold = 50;

// Where the tracer may look. Images whose frame is background keep every boundary one pixel
// inside, so the scans that zero the frame first look anywhere; a scan over an image whose frame
// may hold objects treats pixels outside the buffer as background and leaves them alone.
struct AnywhereInImage {
    bool contains(std::ptrdiff_t) const { return true; }
};
struct InsideBuffer {
    std::ptrdiff_t size;
    bool contains(std::ptrdiff_t i) const { return i >= 0 && i < size; }
};

// The chain limit the scans pass: width × height codes (saturated at INT_MAX).
inline int whole_image_codes(int width, int height) {
    const long long n = static_cast<long long>(width) * height;
    return n > INT_MAX ? INT_MAX : n < 0 ? 0 : static_cast<int>(n);
}

// Traces one boundary from the pixel at index start (see QelTraceContour) and returns the number
// of codes stored: at most maxCodes − 1, none when chain is null.
template <class Bounds>
int trace_boundary(unsigned char* image, int width, std::ptrdiff_t start, bool outer, unsigned char* chain,
                   int maxCodes, Bounds bounds) {
    // First neighbour to examine after a step in direction d: one turn clockwise of straight back
    // past the two (even d) or one (odd d) neighbours the previous pixel has already examined.
    static constexpr int kFirstLook[8] = {7, 7, 1, 1, 3, 3, 5, 5};
    std::ptrdiff_t offset[8];
    for (int k = 0; k < 8; ++k) offset[k] = neighbour_offset(k, width);

    const int storable = chain != nullptr ? maxCodes - 1 : 0;
    int stored = 0;
    auto record = [&](int k) {
        if (stored < storable) chain[stored++] = static_cast<unsigned char>(k);
    };
    // Examines the neighbours of pixel p from direction k on, while fewer than 7 have been
    // examined counting from `examined`; returns the first object neighbour's direction, or −1.
    // Background neighbours examined are marked.
    auto search = [&](std::ptrdiff_t p, int k, int examined) {
        for (; examined < 7; ++examined, k = (k + 1) & 7) {
            const std::ptrdiff_t q = p + offset[k];
            if (!bounds.contains(q)) continue;
            if (image[q] >= kLowestObjectValue) return k;
            image[q] = kExaminedMark;
        }
        return -1;
    };

    // An outer boundary starts with background on the left (west) and is searched from south-west;
    // a hole's with background on the right (east), searched from north-east. The direction after
    // which the search at the start began is where a return to the start counts from.
    const std::ptrdiff_t behind = outer ? start - 1 : start + 1;
    if (bounds.contains(behind)) image[behind] = kExaminedMark;
    int direction = outer ? 7 : 3;
    const int closing = outer ? 5 : 1;

    std::ptrdiff_t current = start;
    for (;;) {
        image[current] = kTracedMark;
        int k = search(current, kFirstLook[direction], 0);
        if (k < 0) break;
        record(k);
        std::ptrdiff_t next = current + offset[k];
        if (next == start) {
            // Back at the start: go on only along a branch the start has not yet been left by,
            // i.e. one of its neighbours after the way back, before the search would wrap round to
            // where it first began.
            const int back = (k + 4) & 7;
            const int passed = (back - closing) & 7;
            k = search(start, (back + 1) & 7, passed + 1);
            if (k < 0) break;
            record(k);
            next = start + offset[k];
        }
        direction = k;
        current = next;
    }
    return stored;
}

}  // namespace qel

#endif
