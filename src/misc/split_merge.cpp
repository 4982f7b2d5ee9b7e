// Split-and-merge segmentation: a threshold swept up the grey levels of the inverted image, the
// large outer contours of each level made into region records, and the records of each level
// merged into the tree of the levels before it.
#include "qel/misc.h"

#include "qel/contour.h"
#include "qel/histogram.h"
#include "qel/io.h"

#include "contour/chain_record.h"
#include "contour/scan.h"
#include "contour/trace.h"
#include "core/lut.h"
#include "histogram/statistics.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>

// The record is twelve 32-bit fields in declaration order on 32-bit platforms; elsewhere the two
// pointers widen but the order stays.
static_assert(sizeof(int) == 4, "RegionStruct's integer fields are 32 bits");
static_assert(offsetof(RegionStruct, x) == 0 && offsetof(RegionStruct, y) == 4 &&
                  offsetof(RegionStruct, chainLength) == 8,
              "x, y and chainLength lead the record");
static_assert(offsetof(RegionStruct, chainLength) < offsetof(RegionStruct, chain) &&
                  offsetof(RegionStruct, chain) < offsetof(RegionStruct, area) &&
                  offsetof(RegionStruct, area) + 4 == offsetof(RegionStruct, perimeter) &&
                  offsetof(RegionStruct, perimeter) + 4 == offsetof(RegionStruct, level) &&
                  offsetof(RegionStruct, level) + 4 == offsetof(RegionStruct, enclosingId) &&
                  offsetof(RegionStruct, enclosingId) + 4 == offsetof(RegionStruct, id) &&
                  offsetof(RegionStruct, id) + 4 == offsetof(RegionStruct, parentId) &&
                  offsetof(RegionStruct, parentId) + 4 == offsetof(RegionStruct, childArea) &&
                  offsetof(RegionStruct, childArea) < offsetof(RegionStruct, next),
              "RegionStruct fields are laid out in order");
static_assert(sizeof(void*) != 4 || sizeof(RegionStruct) == 12 * 4, "twelve 32-bit fields on 32-bit platforms");

namespace {

constexpr int kNoRegion = -1;
constexpr int kTopLevel = qel::kGreyLevels - 1;

// ---- records and lists ----------------------------------------------------------------------

// A record with its own copy of the n codes, or null when either allocation fails.
RegionStruct* new_region(int x, int y, const unsigned char* chain, int n, int area, int perimeter, int level,
                         int id) {
    unsigned char* codes = nullptr;
    RegionStruct* r = qel::new_record_with_chain<RegionStruct>(chain, n, &codes);
    if (r == nullptr) return nullptr;
    r->x = x;
    r->y = y;
    r->chainLength = n;
    r->chain = codes;
    r->area = area;
    r->perimeter = perimeter;
    r->level = level;
    r->enclosingId = kNoRegion;
    r->id = id;
    r->parentId = kNoRegion;
    r->childArea = area;
    r->next = nullptr;
    return r;
}

void free_region(RegionStruct* r) {
    delete[] r->chain;
    delete r;
}

// Puts r before the first record whose area is not smaller, so equal areas put the newest first.
void insert_by_area(RegionStruct** head, RegionStruct* r) {
    RegionStruct** at = head;
    while (*at != nullptr && (*at)->area < r->area) at = &(*at)->next;
    r->next = *at;
    *at = r;
}

RegionStruct* pop_front(RegionStruct** head) {
    RegionStruct* r = *head;
    *head = r->next;
    r->next = nullptr;
    return r;
}

// Moves every record of *from for which take(r) holds into *to, in area order.
template <class Take>
void move_if(RegionStruct** from, RegionStruct** to, Take take) {
    RegionStruct** at = from;
    while (*at != nullptr) {
        RegionStruct* r = *at;
        if (take(r)) {
            *at = r->next;
            insert_by_area(to, r);
        } else {
            at = &r->next;
        }
    }
}

RegionStruct* find_id(RegionStruct* list, int id) {
    for (RegionStruct* r = list; r != nullptr; r = r->next)
        if (r->id == id) return r;
    return nullptr;
}

// True when (x, y) is the region's start point or lies inside or on its contour.
bool holds_point(const RegionStruct* r, int x, int y) {
    return (r->x == x && r->y == y) || QelIsPointIncludedByChain(x, y, r->x, r->y, r->chain, r->chainLength);
}

// Id of the first record of list, in list order and other than r itself, whose area is not
// smaller than r's and which holds r's start point; kNoRegion when there is none. Lists run in
// ascending area, so this is the smallest such region.
int first_holder(const RegionStruct* list, const RegionStruct* r) {
    for (const RegionStruct* q = list; q != nullptr; q = q->next)
        if (q != r && q->area >= r->area && holds_point(q, r->x, r->y)) return q->id;
    return kNoRegion;
}

// ---- one level ------------------------------------------------------------------------------

struct Sweep {
    unsigned char* grey;  // inverted, with a zero frame
    unsigned char* binary;
    unsigned char* chain;
    int width;
    int height;
    int minCodes;  // a contour needs more codes than this
    int minArea;
    int nextId;
};

// The regions of level t, in ascending area: the outer contours of the pixels above t.
RegionStruct* level_regions(Sweep& sweep, int t) {
    const int width = sweep.width;
    // Pixels above t become 255, the rest 0; the grey frame is 0, so the binary frame is too.
    QelThreshold(sweep.grey, width, sweep.height, t + 1, sweep.binary);
    const int maxCodes = qel::whole_image_codes(width, sweep.height);
    RegionStruct* level = nullptr;
    qel::scan_boundary_starts(
        sweep.binary, width, qel::rows_below_first(width, sweep.height), qel::kContourStarts,
        [&](std::ptrdiff_t i, int x, int y, unsigned char, qel::Start start) {
            if (start == qel::Start::None) return;
            // Holes are traced too, so that their marks keep the scan from starting outer
            // contours on their far side.
            const int n = qel::trace_found(sweep.binary, width, i, start, sweep.chain, maxCodes);
            if (start != qel::Start::Outer || n <= sweep.minCodes) return;
            int area = 0;
            int perimeter = 0;
            QelAreaAndPerimeter(sweep.chain, n, &area, &perimeter);
            if (area < sweep.minArea) return;
            RegionStruct* r = new_region(x, y, sweep.chain, n, area, perimeter, kTopLevel - t, sweep.nextId);
            if (r == nullptr) return;
            ++sweep.nextId;
            insert_by_area(&level, r);
            r->enclosingId = first_holder(level, r);
        });
    return level;
}

// ---- merging a level into the tree ----------------------------------------------------------

// Gives every tree record whose parent is `from` the parent `to`.
void reparent(RegionStruct* tree, int from, int to) {
    for (RegionStruct* q = tree; q != nullptr; q = q->next)
        if (q->parentId == from) q->parentId = to;
}

// Puts r into the tree in area order and refreshes the parent links around it: r's parent is the
// smallest tree region holding its start; each smaller region whose start r holds takes r as its
// parent when it has none, or when its parent does not hold r's start.
void insert_into_tree(RegionStruct** tree, RegionStruct* r) {
    insert_by_area(tree, r);
    r->parentId = first_holder(*tree, r);
    for (RegionStruct* q = *tree; q != r; q = q->next) {
        if (!holds_point(r, q->x, q->y)) continue;
        const RegionStruct* parent = q->parentId == kNoRegion ? nullptr : find_id(*tree, q->parentId);
        if (parent == nullptr || !holds_point(parent, r->x, r->y)) q->parentId = r->id;
    }
}

// Merges the records of one level (ascending area) into the tree and frees those it does not
// keep. A tree region that continues as exactly one new region keeps its own record and only
// learns the new area; a region that breaks into several gets them all as new records, and is
// itself removed when they together cover more than splitRatio of its last child area.
void merge_level(RegionStruct** tree, RegionStruct* fresh, double splitRatio) {
    for (RegionStruct* r = fresh; r != nullptr; r = r->next) r->parentId = first_holder(*tree, r);

    RegionStruct* toInsert = nullptr;
    // Regions outside every tree region are new roots.
    move_if(&fresh, &toInsert, [](const RegionStruct* r) { return r->parentId == kNoRegion; });
    // A region inside another region of its level that lies in the same tree region is its own
    // region, not a continuation. Enclosing ids of a merged level are never 0 (id 0 is in the
    // tree), so "at least 1" means "has one".
    move_if(&fresh, &toInsert, [&](const RegionStruct* r) {
        if (r->enclosingId < 1) return false;
        const RegionStruct* enclosing = find_id(fresh, r->enclosingId);
        if (enclosing == nullptr) enclosing = find_id(toInsert, r->enclosingId);
        return enclosing != nullptr && enclosing->parentId == r->parentId;
    });

    RegionStruct** at = tree;
    while (*at != nullptr) {
        RegionStruct* region = *at;
        int children = 0;
        int64_t childArea = 0;
        for (const RegionStruct* r = fresh; r != nullptr; r = r->next)
            if (r->parentId == region->id) ++children, childArea += r->area;
        if (children > 1) {
            const int id = region->id;
            move_if(&fresh, &toInsert, [id](const RegionStruct* r) { return r->parentId == id; });
            if (static_cast<double>(childArea) / region->childArea > splitRatio) {
                *at = region->next;
                reparent(*tree, id, region->parentId);
                free_region(region);
                continue;
            }
        } else if (children == 1) {
            region->childArea = static_cast<int>(childArea);
        }
        at = &region->next;
    }

    while (toInsert != nullptr) insert_into_tree(tree, pop_front(&toInsert));
    QelFreeRegionStruct(fresh);
}

// The first level t ≥ 1 at which levels 1..t of the histogram hold more than minCount pixels;
// past the top level when they never do.
int first_level(const int* hist, int minCount) {
    int64_t count = 0;
    for (int t = 1; t <= kTopLevel; ++t) {
        count += hist[t];
        if (count > minCount) return t;
    }
    return kTopLevel + 1;
}

}  // namespace

RegionStruct* QelMergeSplit(unsigned char* grey, unsigned char* work, int width, int height, int minArea,
                            int minContrast, double splitRatio) {
    if (width <= 0 || height <= 0) return nullptr;
    const std::size_t pixels = qel::pixel_count(width, height);

    // The image stays inverted, with a zero frame, on return: callers see what was segmented.
    unsigned char invert[qel::kGreyLevels];
    for (int v = 0; v < qel::kGreyLevels; ++v) invert[v] = static_cast<unsigned char>(kTopLevel - v);
    qel::apply_lut(grey, pixels, invert, grey);
    int hist[qel::kGreyLevels];
    QelGetHistogram(grey, width, height, hist);

    // The same s bounds the contour length and, oddly, the pixel count that picks the first level.
    const int s = minArea > 0 ? static_cast<int>(std::sqrt(static_cast<double>(minArea))) : 0;
    const int first = first_level(hist, s);
    // Levels above 255 binarise to nothing, so the sweep stops there.
    const int64_t lastWanted = static_cast<int64_t>(kTopLevel) - minContrast;
    const int last = lastWanted > kTopLevel ? kTopLevel : static_cast<int>(lastWanted);

    QelSetImageBoundary(grey, width, height, 0);

    Sweep sweep{grey, work, work + pixels, width, height, s, minArea, 0};
    RegionStruct* tree = nullptr;
    for (int t = first; t <= last; ++t) {
        RegionStruct* level = level_regions(sweep, t);
        if (level == nullptr) continue;
        if (tree == nullptr) {
            tree = level;
            for (RegionStruct* r = tree; r != nullptr; r = r->next) r->parentId = r->enclosingId;
        } else {
            merge_level(&tree, level, splitRatio);
        }
    }
    return tree;
}

void QelFreeRegionStruct(RegionStruct* list) {
    while (list != nullptr) {
        RegionStruct* next = list->next;
        free_region(list);
        list = next;
    }
}
