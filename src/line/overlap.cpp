// Overlaps of inclusive integer intervals and of rectangles.
#include "qel/line.h"

#include <algorithm>

namespace {

struct Interval {
    int lo, hi;
};

Interval sorted(int a, int b) { return a <= b ? Interval{a, b} : Interval{b, a}; }

int length(Interval i) { return i.hi - i.lo + 1; }

}  // namespace

int QelLineOverlapLen(int a1, int a2, int b1, int b2) {
    const Interval a = sorted(a1, a2);
    const Interval b = sorted(b1, b2);
    const Interval hull{std::min(a.lo, b.lo), std::max(a.hi, b.hi)};
    const int overlap = length(a) + length(b) - length(hull);
    return overlap < 1 ? 0 : overlap;
}

int QelLineOverlapLen(int a1, int a2, int b1, int b2, int* start, int* end) {
    *start = 0;
    *end = 0;
    const Interval a = sorted(a1, a2);
    const Interval b = sorted(b1, b2);
    if (a.hi < b.lo || b.hi < a.lo) return 0;
    *start = std::max(a.lo, b.lo);
    *end = std::min(a.hi, b.hi);
    return *end - *start + 1;
}

int QelRectOverlapArea(tagRECT rect1, tagRECT rect2) {
    int start = 0;
    int end = 0;
    const int columns = QelLineOverlapLen(rect1.left, rect1.right, rect2.left, rect2.right, &start, &end);
    const int rows = QelLineOverlapLen(rect1.top, rect1.bottom, rect2.top, rect2.bottom, &start, &end);
    return columns * rows;
}
