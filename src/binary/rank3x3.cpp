// 3 × 3 rank filters on binary images: dilation and erosion (whole image and rectangle), the
// marking "ToColor" forms, the 3 × 3 majority, the small-white-detail keeper and the combined
// threshold-and-majority. The outer row and column of the image are never centres.
#include "qel/binary.h"
#include "qel/io.h"

#include "binary/neighbourhood.h"
#include "core/lut.h"
#include "core/simd.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <vector>

namespace qel {
namespace {

// The marker the ToColor filters write before turning every marker into the caller's colour.
constexpr unsigned char kMarker = 200;
// A majority needs this many object pixels among nine (or neighbours among eight).
constexpr int kMajority = 5;
// Neighbour sums of the small-white-detail filter: four white neighbours, and eight.
constexpr int kFourWhite = 4 * kObject;
constexpr int kEightWhite = 8 * kObject;

bool is_zero(unsigned char v) { return v == 0; }

// min(limit, v + 1) without overflowing when v is the largest int.
int next_within(int v, int limit) { return v < limit ? v + 1 : limit; }

// Dilation and erosion share one rule: a centre of the rule's kind (object or background) with at
// least one zero neighbour writes the rule's value into its 8 neighbours in out. Dilation spreads 255 from non-zero
// centres; erosion spreads 0 from zero centres, so a lone zero pixel (no zero neighbour) spreads
// nothing. The asymmetry is intended.
struct Spread {
    bool fromObject;
    unsigned char value;
};
constexpr Spread kDilate{true, kObject};
constexpr Spread kErode{false, kBackground};

void spread_3x3(const unsigned char* image, int width, int x0, int x1, int y0, int y1, Spread rule, unsigned char* out) {
    const NeighbourOffsets off(width);
    for_each_centre(image, width, x0, x1, y0, y1, [&](const unsigned char* p, int, int) {
        if ((*p != 0) != rule.fromObject) return;
        if (count_neighbours(p, off, is_zero) == 0) return;
        unsigned char* q = out + (p - image);
        for (int k = 0; k < kNeighbours; ++k) q[off[k]] = rule.value;
    });
}

#ifdef QEL_SIMD_SSE2
// The whole-image spread row by row on byte masks, with the same result as spread_3x3 over the
// whole interior. A centre spreads when it is interior, of the rule's kind and has a zero among its
// 8 neighbours; a pixel of out takes the rule's value when one of its 8 neighbours (not itself)
// spreads, and keeps its input value otherwise. Mask rows are padded by one byte on each side, so
// pixel x sits at index x + 1 and the pads stand for the columns outside the image.

// Spreading mask of interior row `mid` (rows above and below it given) into the padded row n.
void spreading_row(const unsigned char* above, const unsigned char* mid, const unsigned char* below, int width,
                   Spread rule, unsigned char* n) {
    int x = 1;
    for (; x + simd::kLanes + 1 <= width; x += simd::kLanes) {
        const unsigned char* a = above + x - 1;
        const unsigned char* m = mid + x - 1;
        const unsigned char* b = below + x - 1;
        __m128i zeroNear = _mm_or_si128(simd::is_zero(simd::load(a)), simd::is_zero(simd::load(a + 1)));
        zeroNear = _mm_or_si128(zeroNear, simd::is_zero(simd::load(a + 2)));
        zeroNear = _mm_or_si128(zeroNear, simd::is_zero(simd::load(m)));
        zeroNear = _mm_or_si128(zeroNear, simd::is_zero(simd::load(m + 2)));
        zeroNear = _mm_or_si128(zeroNear, simd::is_zero(simd::load(b)));
        zeroNear = _mm_or_si128(zeroNear, simd::is_zero(simd::load(b + 1)));
        zeroNear = _mm_or_si128(zeroNear, simd::is_zero(simd::load(b + 2)));
        const __m128i centreZero = simd::is_zero(simd::load(m + 1));
        const __m128i spreads =
            rule.fromObject ? _mm_andnot_si128(centreZero, zeroNear) : _mm_and_si128(centreZero, zeroNear);
        simd::store(n + x + 1, spreads);
    }
    for (; x < width - 1; ++x) {
        const bool zeroNear = above[x - 1] == 0 || above[x] == 0 || above[x + 1] == 0 || mid[x - 1] == 0 ||
                              mid[x + 1] == 0 || below[x - 1] == 0 || below[x] == 0 || below[x + 1] == 0;
        n[x + 1] = (mid[x] != 0) == rule.fromObject && zeroNear ? 0xFF : 0;
    }
}

// One output row from the padded spreading masks of the rows above, at and below it.
void spread_row(const unsigned char* nAbove, const unsigned char* nMid, const unsigned char* nBelow,
                const unsigned char* in, int width, Spread rule, unsigned char* out) {
    const __m128i value = _mm_set1_epi8(static_cast<char>(rule.value));
    int x = 0;
    for (; x + simd::kLanes <= width; x += simd::kLanes) {
        __m128i near = _mm_or_si128(simd::load(nAbove + x), simd::load(nAbove + x + 1));
        near = _mm_or_si128(near, simd::load(nAbove + x + 2));
        near = _mm_or_si128(near, simd::load(nMid + x));
        near = _mm_or_si128(near, simd::load(nMid + x + 2));
        near = _mm_or_si128(near, simd::load(nBelow + x));
        near = _mm_or_si128(near, simd::load(nBelow + x + 1));
        near = _mm_or_si128(near, simd::load(nBelow + x + 2));
        simd::store(out + x, simd::select(near, value, simd::load(in + x)));
    }
    for (; x < width; ++x) {
        const bool near = (nAbove[x] | nAbove[x + 1] | nAbove[x + 2] | nMid[x] | nMid[x + 2] | nBelow[x] |
                           nBelow[x + 1] | nBelow[x + 2]) != 0;
        out[x] = near ? rule.value : in[x];
    }
}

void spread_whole(const unsigned char* image, int width, int height, Spread rule, unsigned char* out) {
    if (width < 3 || height < 3) {  // no centres
        std::memcpy(out, image, static_cast<size_t>(std::max(width, 0)) * static_cast<size_t>(std::max(height, 0)));
        return;
    }
    const size_t padded = static_cast<size_t>(width) + 2;
    // Three rolling mask rows (row r in slot r % 3) and one row of zeros for outside the image and
    // for the top and bottom rows, which are never centres.
    std::vector<unsigned char> masks(4 * padded, 0);
    unsigned char* zeros = masks.data() + 3 * padded;
    const auto slot = [&](int r) { return masks.data() + static_cast<size_t>(r % 3) * padded; };
    const auto row = [&](const unsigned char* base, int r) { return base + static_cast<std::ptrdiff_t>(r) * width; };
    spreading_row(row(image, 0), row(image, 1), row(image, 2), width, rule, slot(1));
    for (int y = 0; y < height; ++y) {
        const int next = y + 1;
        if (next >= 2 && next <= height - 2)
            spreading_row(row(image, next - 1), row(image, next), row(image, next + 1), width, rule, slot(next));
        else if (next == height - 1)
            std::memset(slot(next), 0, padded);
        const unsigned char* above = y >= 1 ? slot(y - 1) : zeros;
        const unsigned char* below = next <= height - 1 ? slot(next) : zeros;
        spread_row(above, slot(y), below, row(image, y), width, rule,
                   out + static_cast<std::ptrdiff_t>(y) * width);
    }
}
#else
void spread_whole(const unsigned char* image, int width, int height, Spread rule, unsigned char* out) {
    std::memcpy(out, image, static_cast<size_t>(width) * static_cast<size_t>(height));
    spread_3x3(image, width, 1, width - 1, 1, height - 1, rule, out);
}
#endif

// The rectangle forms: only the rectangle (clipped to the image) is copied, and the centres run to
// one past its right and bottom edges. The bottom bound is width - 2, not height - 2 (intended);
// it is cut at height - 2 as well where it would take neighbours below the image.
void spread_in_rect(const unsigned char* image, int width, int height, int x1, int x2, int y1, int y2, Spread rule,
                    unsigned char* out) {
    const int left = std::max(x1, 0);
    const int right = std::min(x2, width - 1);
    for (int y = std::max(y1, 0); y <= std::min(y2, height - 1); ++y) {
        if (left > right) break;
        const std::ptrdiff_t at = static_cast<std::ptrdiff_t>(y) * width + left;
        std::memcpy(out + at, image + at, static_cast<size_t>(right - left + 1));
    }
    const int xEnd = next_within(x2, width - 2) + 1;
    const int yEnd = std::min(next_within(y2, width - 2), height - 2) + 1;
    spread_3x3(image, width, std::max(x1, 1), xEnd, std::max(y1, 1), yEnd, rule, out);
}

// 3 × 3 majority of the centres in the given range: 255 when at least 5 of the 8 neighbours are non-zero.
void majority_3x3(const unsigned char* image, int width, int x0, int x1, int y0, int y1, unsigned char* out) {
    const NeighbourOffsets off(width);
    for_each_centre(image, width, x0, x1, y0, y1, [&](const unsigned char* p, int, int) {
        out[p - image] = count_nonzero_neighbours(p, off) >= kMajority ? kObject : kBackground;
    });
}

// In place: every neighbour equal to `from` of a centre equal to `centre` becomes the marker;
// then every marker in the image (also one there before) becomes the colour.
void mark_to_color(unsigned char* image, int width, int height, unsigned char centre, unsigned char from, int color) {
    const NeighbourOffsets off(width);
    for_each_interior(image, width, height, [&](unsigned char* p, int, int) {
        if (*p != centre) return;
        for (int k = 0; k < kNeighbours; ++k)
            if (p[off[k]] == from) p[off[k]] = kMarker;
    });
    unsigned char lut[256];
    for (int v = 0; v < 256; ++v) lut[v] = static_cast<unsigned char>(v);
    lut[kMarker] = static_cast<unsigned char>(color);
    apply_lut(image, static_cast<size_t>(width) * static_cast<size_t>(height), lut, image);
}

}  // namespace
}  // namespace qel

void QelBinImgMaxFilter3x3(unsigned char* image, int width, int height, unsigned char* out) {
    qel::spread_whole(image, width, height, qel::kDilate, out);
}

void QelBinImgMaxFilter3x3(unsigned char* image, int width, int height, int x1, int x2, int y1, int y2,
                           unsigned char* out) {
    qel::spread_in_rect(image, width, height, x1, x2, y1, y2, qel::kDilate, out);
}

void QelBinImgMinFilter3x3(unsigned char* image, int width, int height, unsigned char* out) {
    qel::spread_whole(image, width, height, qel::kErode, out);
}

void QelBinImgMinFilter3x3(unsigned char* image, int width, int height, int x1, int x2, int y1, int y2,
                           unsigned char* out) {
    qel::spread_in_rect(image, width, height, x1, x2, y1, y2, qel::kErode, out);
}

void QelBinImgMedFilter3x3(unsigned char* image, int width, int height, unsigned char* out) {
    QelSetImageBoundary(out, width, height, 0);
    qel::majority_3x3(image, width, 1, width - 1, 1, height - 1, out);
}

void QelBinImgMedFilter3x3(unsigned char* image, int width, int height, int x1, int x2, int y1, int y2,
                           unsigned char* out) {
    qel::majority_3x3(image, width, std::max(x1, 1), qel::next_within(x2, width - 1), std::max(y1, 1),
                      qel::next_within(y2, height - 1), out);
}

void QelBinImgMaxFilter3x3ToColor(unsigned char* image, int width, int height, int color) {
    qel::mark_to_color(image, width, height, qel::kObject, qel::kBackground, color);
}

void QelBinImgMinFilter3x3ToColor(unsigned char* image, int width, int height, int color) {
    qel::mark_to_color(image, width, height, qel::kBackground, qel::kObject, color);
}

void QelBinImgLittleWhitePixelsMed3x3Filter(unsigned char* image, int width, int height, unsigned char* out) {
    std::memset(out, 0, static_cast<size_t>(width) * static_cast<size_t>(height));
    const qel::NeighbourOffsets off(width);
    // Centres keep two pixels from the border so that a neighbour's own neighbours are inside.
    qel::for_each_centre(image, width, 2, width - 2, 2, height - 2, [&](unsigned char* p, int, int) {
        if (*p == 0) return;
        unsigned char* o = out + (p - image);
        const int s = qel::neighbour_sum(p, off);
        if (s >= qel::kFourWhite) *o = qel::kObject;
        if (s >= qel::kEightWhite) return;
        for (int k = 0; k < qel::kNeighbours; ++k) {
            const unsigned char* q = p + off[k];
            if (*q == 0 && qel::neighbour_sum(q, off) >= qel::kFourWhite) o[off[k]] = qel::kObject;
        }
    });
}

int QelThresholdAndMedFilter3x3(unsigned char* image, int width, int height, int threshold, unsigned char* out) {
    if (width <= 0) return 0;
    const qel::NeighbourOffsets off(width);
    for (int y = 1; y < height - 1; ++y) {
        unsigned char* row = out + static_cast<std::ptrdiff_t>(y) * width;
        row[0] = qel::kBackground;
        row[width - 1] = qel::kBackground;
    }
    int objects = 0;
    qel::for_each_interior(image, width, height, [&](unsigned char* p, int, int) {
        unsigned char& o = out[p - image];
        if (*p < threshold) {
            o = qel::kBackground;
            return;
        }
        // The centre counts as one of the nine.
        const int count = 1 + qel::count_neighbours(p, off, [threshold](unsigned char v) { return v >= threshold; });
        o = count >= qel::kMajority ? qel::kObject : qel::kBackground;
        objects += o == qel::kObject ? 1 : 0;
    });
    return objects;
}
