// Zhang–Suen parallel thinning with a final staircase clean-up.
#include "qel/binary.h"
#include "qel/io.h"

#include "binary/neighbourhood.h"
#include "core/lut.h"

#include <cstddef>
#include <cstring>
#include <vector>

namespace qel {
namespace {

// Thinning works on 0/1 pixels and turns the skeleton back into 255 at the end.
constexpr unsigned char kThinObject = 1;
// A deletable pixel has between 2 and 6 object neighbours ...
constexpr int kMinNeighbours = 2;
constexpr int kMaxNeighbours = 6;
// ... and touches exactly one object arc; the clean-up removes corners touching two.
constexpr int kDeletableArcs = 1;
constexpr int kStaircaseArcs = 2;

constexpr int object_count(unsigned pattern) {
    int n = 0;
    for (int k = 0; k < kNeighbours; ++k) n += ((pattern >> k) & 1u) != 0 ? 1 : 0;
    return n;
}

constexpr bool both_zero_products(unsigned p, int a, int b, int c, int d, int e, int f) {
    const bool first = ((p >> a) & (p >> b) & (p >> c) & 1u) != 0;
    const bool second = ((p >> d) & (p >> e) & (p >> f) & 1u) != 0;
    return !first && !second;
}

// Deletion decision of each sub-iteration for each of the 256 neighbour patterns (bit k set when
// neighbour k is an object pixel). The first sub-iteration needs N·E·S = 0 and E·S·W = 0, the
// second N·E·W = 0 and N·S·W = 0.
struct DeletionTables {
    bool first[256]{};
    bool second[256]{};
    constexpr DeletionTables() {
        for (unsigned p = 0; p < 256; ++p) {
            const int b = object_count(p);
            const bool candidate = b >= kMinNeighbours && b <= kMaxNeighbours && object_arcs(p) == kDeletableArcs;
            first[p] = candidate && both_zero_products(p, kNorth, kEast, kSouth, kEast, kSouth, kWest);
            second[p] = candidate && both_zero_products(p, kNorth, kEast, kWest, kNorth, kSouth, kWest);
        }
    }
};
constexpr DeletionTables kDeletion{};

// Only object pixels with a background neighbour can be deleted (a deletable pixel has at most 6
// object neighbours), so each sub-iteration examines just those: the boundary list. Deletions only
// add background, so a boundary pixel stays one; the object neighbours of deleted pixels join it.
struct Boundary {
    std::vector<std::ptrdiff_t> pixels;  // indices of listed object pixels, in no particular order
    std::vector<unsigned char> listed;   // per pixel: already in the list
    std::vector<std::ptrdiff_t> doomed;  // deletions of the current sub-iteration
};

constexpr unsigned kAllNeighbours = 0xFF;

// One sub-iteration: every decision is taken on out as it stood before the sub-iteration
// (deletions are collected first and applied afterwards, which is what deciding from a snapshot
// copy gives, in any visiting order). Returns whether anything was deleted.
bool thinning_step(Boundary& b, const NeighbourOffsets& off, const bool deletable[256], unsigned char* out) {
    b.doomed.clear();
    size_t kept = 0;
    for (const std::ptrdiff_t i : b.pixels) {
        if (deletable[neighbour_pattern(out + i, off)]) b.doomed.push_back(i);
        else b.pixels[kept++] = i;
    }
    b.pixels.resize(kept);
    for (const std::ptrdiff_t i : b.doomed) out[i] = kBackground;
    // Object pixels are interior (the frame is 0), so their neighbours are inside the image.
    for (const std::ptrdiff_t i : b.doomed) {
        for (int k = 0; k < kNeighbours; ++k) {
            const std::ptrdiff_t j = i + off[k];
            if (out[j] == 0 || b.listed[static_cast<size_t>(j)]) continue;
            b.listed[static_cast<size_t>(j)] = 1;
            b.pixels.push_back(j);
        }
    }
    return !b.doomed.empty();
}

// In place, raster order: an object pixel touching two object arcs with an object pixel among
// its horizontal 4-neighbours and one among its vertical 4-neighbours is a staircase corner and goes.
void remove_staircases(unsigned char* image, int width, int height) {
    const NeighbourOffsets off(width);
    for_each_interior(image, width, height, [&](unsigned char* p, int, int) {
        if (*p == 0) return;
        const unsigned pattern = neighbour_pattern(p, off);
        if (object_arcs(pattern) != kStaircaseArcs) return;
        const bool horizontal = bit(pattern, kEast) || bit(pattern, kWest);
        const bool vertical = bit(pattern, kNorth) || bit(pattern, kSouth);
        if (horizontal && vertical) *p = kBackground;
    });
}

void make_lut(unsigned char lut[256], unsigned char zero, unsigned char nonZero) {
    lut[0] = zero;
    for (int v = 1; v < 256; ++v) lut[v] = nonZero;
}

}  // namespace
}  // namespace qel

int QelBinImgThin(unsigned char* image, unsigned char* work, int width, int height, unsigned char* out) {
    const size_t n = static_cast<size_t>(width) * static_cast<size_t>(height);
    unsigned char lut[256];
    std::memcpy(work, image, n);
    QelSetImageBoundary(work, width, height, 0);
    qel::make_lut(lut, 0, qel::kThinObject);
    qel::apply_lut(work, n, lut, work);
    std::memcpy(out, work, n);

    const qel::NeighbourOffsets off(width);
    qel::Boundary boundary;
    boundary.listed.assign(n, 0);
    qel::for_each_interior(out, width, height, [&](const unsigned char* p, int, int) {
        if (*p == 0 || qel::neighbour_pattern(p, off) == qel::kAllNeighbours) return;
        boundary.listed[static_cast<size_t>(p - out)] = 1;
        boundary.pixels.push_back(p - out);
    });

    int passes = 0;
    bool deleted = true;
    while (deleted) {
        ++passes;
        deleted = qel::thinning_step(boundary, off, qel::kDeletion.first, out);
        deleted = qel::thinning_step(boundary, off, qel::kDeletion.second, out) || deleted;
    }
    // work ends as the last sub-iteration's snapshot: the 0/1 skeleton before the clean-up.
    std::memcpy(work, out, n);

    qel::make_lut(lut, 0, qel::kObject);
    qel::apply_lut(out, n, lut, out);
    qel::remove_staircases(out, width, height);
    return passes;
}
