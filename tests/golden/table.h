// The whole golden table: every covered exported function, families in header order.
#ifndef QEL_TESTS_GOLDEN_TABLE_ALL_H
#define QEL_TESTS_GOLDEN_TABLE_ALL_H

#include "golden/entries_binary.h"
#include "golden/entries_color.h"
#include "golden/entries_contour.h"
#include "golden/entries_draw.h"
#include "golden/entries_edge.h"
#include "golden/entries_filter.h"
#include "golden/entries_geometry.h"
#include "golden/entries_histogram.h"
#include "golden/entries_io.h"
#include "golden/entries_line.h"
#include "golden/entries_misc.h"

namespace golden {

// Image sizes every entry runs at: odd and even widths, none a multiple of the SIMD step.
struct Size {
    int width;
    int height;
};
inline const std::vector<Size>& sizes() {
    static const std::vector<Size> all = {{33, 25}, {64, 48}, {97, 71}};
    return all;
}

inline const std::vector<Entry>& table() {
    static const std::vector<Entry> all = [] {
        std::vector<Entry> t;
        add_binary(t);
        add_color(t);
        add_contour(t);
        add_draw(t);
        add_edge(t);
        add_filter(t);
        add_geometry(t);
        add_histogram(t);
        add_io(t);
        add_line(t);
        add_misc(t);
        return t;
    }();
    return all;
}

// The seed of an entry's inputs: its name and the size, so that inputs do not depend on the
// entries before it.
inline uint64_t seed_for(const char* name, Size size) {
    Digest d;
    d.add(name, std::strlen(name));
    d.add(&size.width, sizeof size.width);
    d.add(&size.height, sizeof size.height);
    return d.value();
}

}  // namespace golden

#endif  // QEL_TESTS_GOLDEN_TABLE_ALL_H
