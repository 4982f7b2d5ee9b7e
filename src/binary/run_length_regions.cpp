// Run-length regions: white regions described as arrays of run records, one per row (RLX) or per
// column (RLY), collected in a search rectangle, grown along a stripe, drawn, and labelled.
#include "qel/binary.h"
#include "qel/line.h"

#include "binary/run_scan.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

static_assert(sizeof(RLX) == 16, "RLX is four 32-bit ints");
static_assert(offsetof(RLX, row) == 0 && offsetof(RLX, xBegin) == 4 && offsetof(RLX, xEnd) == 8 &&
                  offsetof(RLX, extra) == 12,
              "RLX fields: row, xBegin, xEnd, extra");
static_assert(sizeof(RLY) == 16, "RLY is four 32-bit ints");
static_assert(offsetof(RLY, col) == 0 && offsetof(RLY, yBegin) == 4 && offsetof(RLY, yEnd) == 8 &&
                  offsetof(RLY, extra) == 12,
              "RLY fields: col, yBegin, yEnd, extra");

namespace qel {
namespace {

// The row and column records seen alike: the line (row or column) of the run and its first and
// last position along that line. `extra` is never touched through these.
inline int& line_of(RLX& r) { return r.row; }
inline int& line_of(RLY& r) { return r.col; }
inline int& begin_of(RLX& r) { return r.xBegin; }
inline int& begin_of(RLY& r) { return r.yBegin; }
inline int& end_of(RLX& r) { return r.xEnd; }
inline int& end_of(RLY& r) { return r.yEnd; }

template <class Rec>
void set_run(Rec& r, int line, int begin, int end) {
    line_of(r) = line;
    begin_of(r) = begin;
    end_of(r) = end;
}

inline int clamp_to(int64_t v, int lo, int hi) { return static_cast<int>(std::min<int64_t>(std::max<int64_t>(v, lo), hi)); }

// White runs of lines l1..l2 near positions p1..p2: on each line the span widens from p1 towards
// 0 and from p2 towards the line's end over white pixels, so runs crossing the rectangle's sides
// are taken whole; every run in the span gives a record.
template <class Rec>
int regions_get(const unsigned char* image, const Lines& lines, int p1, int p2, int l1, int l2, Rec* out,
                int capacity) {
    if (capacity <= 0 || lines.count <= 0 || lines.length <= 0) return 0;
    const int last = lines.length - 1;
    p1 = clamp_to(p1, 0, last);
    p2 = clamp_to(p2, 0, last);
    int n = 0;
    for (int l = std::max(l1, 0); l <= std::min(l2, lines.count - 1); ++l) {
        const unsigned char* line = lines.line(image, l);
        int a = p1;
        while (a > 0 && line[a * lines.step] != 0) --a;
        int b = p2;
        while (b != last && line[b * lines.step] != 0) ++b;
        // Runs are looked for in a..b and cut after b.
        int i = a;
        while (i <= b) {
            if (line[i * lines.step] == 0) {
                ++i;
                continue;
            }
            const int s = i;
            while (i <= b && line[i * lines.step] != 0) ++i;
            set_run(out[n], l, s, i - 1);
            if (++n == capacity) return n;
        }
    }
    return n;
}

// Follows a stripe from line `start` in direction dir (+1 or −1) while its width stays steady;
// lines below `first` are never examined. See QelRLXRegionsGrowByYInc.
template <class Rec>
int regions_grow(const unsigned char* image, const Lines& lines, int start, int begin, int end, int dir, int first,
                 Rec* out, int capacity) {
    if (capacity <= 0 || lines.length <= 0 || start < first || start >= lines.count) return 0;
    const int last = lines.length - 1;
    int64_t prev = static_cast<int64_t>(end) - begin + 1;
    int64_t lo = begin, hi = end;  // bounds of the previous line, as measured (black ends included)
    int n = 0;
    for (int l = start; l >= first && l < lines.count; l += dir) {
        const unsigned char* line = lines.line(image, l);
        // Bounds given by the caller may lie outside the line; the centre is kept inside it.
        const int c = clamp_to((lo + hi) >> 1, 0, last);
        int a = c;
        while (a > 0 && line[a * lines.step] != 0) --a;
        int b = c;
        while (b != last && line[b * lines.step] != 0) ++b;
        if (a == b) break;  // the centre pixel is black
        const int64_t w = b - a;
        const int64_t change = w > prev ? w - prev : prev - w;
        if (2 * change >= prev && w >= 3) break;  // the width jumped
        // The record starts at the black pixel left of the run (or at position 0) and ends at the
        // run's last pixel: the two ends are measured differently, and callers rely on it.
        set_run(out[n], l, a, b - 1);
        prev = w;
        lo = a;
        hi = b;
        if (++n == capacity) break;
    }
    return n;
}

// Collects the runs of the rectangle, then grows those on its last line onwards (index 0 excluded)
// and those on its first line backwards, appending the grown records behind.
template <class Rec>
int regions_get_and_grow(const unsigned char* image, const Lines& lines, int p1, int p2, int l1, int l2, Rec* out,
                         int capacity) {
    const int n = regions_get(image, lines, p1, p2, l1, l2, out, capacity);
    int total = n;
    // Only the records found in the rectangle are grown, never grown ones (a grown record repeats
    // its start line, and would otherwise be grown again).
    for (int i = n - 1; i > 0 && line_of(out[i]) == l2; --i)
        total += regions_grow(image, lines, line_of(out[i]), begin_of(out[i]), end_of(out[i]), +1, 0, out + total,
                              capacity - total);
    for (int i = 0; i < n && line_of(out[i]) == l1; ++i)
        total += regions_grow(image, lines, line_of(out[i]), begin_of(out[i]), end_of(out[i]), -1, 1, out + total,
                              capacity - total);
    return total;
}

template <class Rec>
void draw_regions(unsigned char* image, const Lines& lines, Rec* records, int count, int value) {
    if (lines.count <= 0 || lines.length <= 0) return;
    for (int k = 0; k < count; ++k) {
        Rec& r = records[k];
        if (line_of(r) < 0 || line_of(r) >= lines.count) continue;
        const int s = std::max(begin_of(r), 0);
        const int e = std::min(end_of(r), lines.length - 1);
        if (s <= e) fill_run(lines.line(image, line_of(r)), lines.step, s, e + 1, static_cast<unsigned char>(value));
    }
}

// ---- labelling ---------------------------------------------------------------------------------

constexpr int kRegionNumbers = 1024;

// Region numbers 0..1023 of QelRLXRegionsWithID. While labelling, each record's `extra` holds the
// group it was labelled with; merged groups point to the group they joined, and every group at the
// top of such a chain owns one number. A merge is then one link instead of renumbering every record
// so far, and finish() writes each record's current number, the same as renumbering as we go.
class RegionNumbers {
public:
    RegionNumbers() { std::fill(owner_, owner_ + kRegionNumbers, -1); }

    // A new group with the smallest free number; −1 when all numbers are in use.
    int open() {
        const int number = static_cast<int>(std::find(owner_, owner_ + kRegionNumbers, -1) - owner_);
        if (number == kRegionNumbers) return -1;
        const int g = static_cast<int>(parent_.size());
        parent_.push_back(g);
        number_.push_back(number);
        owner_[number] = g;
        return g;
    }

    int root(int g) {
        while (parent_[g] != g) {
            parent_[g] = parent_[parent_[g]];
            g = parent_[g];
        }
        return g;
    }

    int number_of(int g) { return number_[root(g)]; }

    // Every record of group `other` takes the number of group `into`; other's number becomes free.
    void merge(int other, int into) {
        const int r = root(other);
        owner_[number_[r]] = -1;
        parent_[r] = root(into);
    }

    // Closes the gaps: each free number i takes the next used number above it, until no used number
    // lies above a free one. Returns the count of numbers in use (1024 when none is free).
    int compact() {
        int i = 0;
        for (; i < kRegionNumbers; ++i) {
            if (owner_[i] >= 0) continue;
            int j = i + 1;
            while (j < kRegionNumbers && owner_[j] < 0) ++j;
            if (j == kRegionNumbers) break;
            number_[owner_[j]] = i;
            owner_[i] = owner_[j];
            owner_[j] = -1;
        }
        return i;
    }

    // Replaces the group held in each record's `extra` by its number.
    void finish(RLX* records, int n) {
        for (int k = 0; k < n; ++k) records[k].extra = number_of(records[k].extra);
    }

private:
    int owner_[kRegionNumbers];  // the group owning each number, −1 when the number is free
    std::vector<int> parent_;    // per group: the group it joined, itself at the top
    std::vector<int> number_;    // per top group: its number
};

// Minimum kept run length on row y: top + (bottom − top) × y / (height − 1), integer division; a
// single row uses the top value.
int min_run_length(int top, int bottom, int y, int height) {
    if (height <= 1) return top;
    return static_cast<int>((static_cast<int64_t>(bottom) - top) * y / (height - 1) + top);
}

int regions_with_id(const unsigned char* image, int width, int height, int minTop, int minBottom, RLX* out,
                    int capacity) {
    if (width <= 0 || height <= 0 || capacity <= 0) return 0;
    RegionNumbers numbers;
    int n = 0;
    int prevBegin = 0, prevEnd = 0;  // the previous row's records
    for (int y = 0; y < height; ++y) {
        const unsigned char* row = image + static_cast<size_t>(y) * width;
        const int minLength = min_run_length(minTop, minBottom, y, height);
        const int rowBegin = n;
        int k0 = prevBegin;  // previous-row records wholly left of the current run are passed
        int x = 0;
        while (x < width) {
            if (row[x] == 0) {
                ++x;
                continue;
            }
            const int s = x;
            while (x < width && row[x] != 0) ++x;  // a run may reach the row's last pixel
            const int e = x - 1;
            if (e - s + 1 < minLength) continue;
            // The previous row's records are disjoint and in column order, so the overlapping ones
            // are consecutive, and the first of them in record order gives the number.
            while (k0 < prevEnd && out[k0].xEnd < s) ++k0;
            int group = -1;
            for (int k = k0; k < prevEnd && out[k].xBegin <= e; ++k) {
                if (QelLineOverlapLen(s, e, out[k].xBegin, out[k].xEnd) == 0) continue;
                if (group < 0) {
                    group = out[k].extra;
                } else if (numbers.number_of(out[k].extra) != numbers.number_of(group)) {
                    numbers.merge(out[k].extra, group);
                }
            }
            if (group < 0) {
                group = numbers.open();
                if (group < 0) {  // no free number: the count of records, not of regions
                    numbers.finish(out, n);
                    return n;
                }
            }
            set_run(out[n], y, s, e);
            out[n].extra = group;
            if (++n == capacity) {
                const int regions = numbers.compact();
                numbers.finish(out, n);
                return regions;
            }
        }
        prevBegin = rowBegin;
        prevEnd = n;
    }
    const int regions = numbers.compact();
    numbers.finish(out, n);
    return regions;
}

}  // namespace
}  // namespace qel

int QelRLXRegionsGet(unsigned char* image, int width, int height, int x1, int x2, int y1, int y2, RLX* out,
                     int capacity) {
    return qel::regions_get(image, qel::rows_of(width, height), x1, x2, y1, y2, out, capacity);
}

int QelRLXRegionsGrowByYInc(unsigned char* image, int width, int height, int startRow, int xBegin, int xEnd,
                            RLX* out, int capacity) {
    return qel::regions_grow(image, qel::rows_of(width, height), startRow, xBegin, xEnd, +1, 0, out, capacity);
}

int QelRLXRegionsGrowByYDec(unsigned char* image, int width, int height, int startRow, int xBegin, int xEnd,
                            RLX* out, int capacity) {
    // Row 0 is never examined.
    return qel::regions_grow(image, qel::rows_of(width, height), startRow, xBegin, xEnd, -1, 1, out, capacity);
}

int QelRLXReginsGetAndGrow(unsigned char* image, int width, int height, int x1, int x2, int y1, int y2, RLX* out,
                           int capacity) {
    return qel::regions_get_and_grow(image, qel::rows_of(width, height), x1, x2, y1, y2, out, capacity);
}

void QelDrawRLXRegions(unsigned char* image, int width, int height, RLX* records, int count, int value) {
    qel::draw_regions(image, qel::rows_of(width, height), records, count, value);
}

int QelRLYRegionsGet(unsigned char* image, int width, int height, int x1, int x2, int y1, int y2, RLY* out,
                     int capacity) {
    return qel::regions_get(image, qel::columns_of(width, height), y1, y2, x1, x2, out, capacity);
}

int QelRLYRegionsGrowByXInc(unsigned char* image, int width, int height, int startCol, int yBegin, int yEnd,
                            RLY* out, int capacity) {
    return qel::regions_grow(image, qel::columns_of(width, height), startCol, yBegin, yEnd, +1, 0, out, capacity);
}

int QelRLYRegionsGrowByXDec(unsigned char* image, int width, int height, int startCol, int yBegin, int yEnd,
                            RLY* out, int capacity) {
    // Column 0 is never examined.
    return qel::regions_grow(image, qel::columns_of(width, height), startCol, yBegin, yEnd, -1, 1, out, capacity);
}

int QelRLYReginsGetAndGrow(unsigned char* image, int width, int height, int x1, int x2, int y1, int y2, RLY* out,
                           int capacity) {
    return qel::regions_get_and_grow(image, qel::columns_of(width, height), y1, y2, x1, x2, out, capacity);
}

void QelDrawRLYRegions(unsigned char* image, int width, int height, RLY* records, int count, int value) {
    qel::draw_regions(image, qel::columns_of(width, height), records, count, value);
}

int QelRLXRegionsWithID(unsigned char* image, int width, int height, int minTop, int minBottom, RLX* out,
                        int capacity) {
    return qel::regions_with_id(image, width, height, minTop, minBottom, out, capacity);
}
