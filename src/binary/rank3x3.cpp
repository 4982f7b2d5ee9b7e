// 3 × 3 rank filters on binary images: dilation and erosion (whole image and rectangle), the
// marking "ToColor" forms, the 3 × 3 majority, the small-white-detail keeper and the combined
// threshold-and-majority. The outer row and column of the image are never centres.
#include "qel/binary.h"
#include "qel/io.h"

#include "binary/neighbourhood.h"
#include "core/lut.h"
#include "core/simd.h"
#include "core/simd_avx2.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
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
// The whole-image spread on bit rows, with the same result as spread_3x3 over the whole interior.
// Bit x of word x / 64 stands for column x. A centre spreads when it is interior, of the rule's kind
// and has a zero among its 8 neighbours; a pixel of out takes the rule's value when one of its 8
// neighbours (not itself) spreads, and keeps its input value otherwise. Packing 64 pixels into a
// word makes the neighbourhood a few shifts and ORs, and lets stretches where nothing spreads be
// copied whole.
using Bits = uint64_t;
constexpr int kWordBits = 64;

// The bits of the column to the left (bit x holds column x − 1) and to the right (column x + 1).
// Every bit row has a clear word before and after it, so word k − 1 and k + 1 can always be read.
Bits from_left(const Bits* row, int k) { return (row[k] << 1) | (row[k - 1] >> (kWordBits - 1)); }
Bits from_right(const Bits* row, int k) { return (row[k] >> 1) | (row[k + 1] << (kWordBits - 1)); }

// Bit x set where row[x] is 0; bits past the width stay clear.
void zero_bits(const unsigned char* row, int width, Bits* bits) {
    for (int k = 0, x0 = 0; x0 < width; ++k, x0 += kWordBits) {
        Bits word = 0;
        if (x0 + kWordBits <= width) {
            for (int j = 0; j < kWordBits / simd::kLanes; ++j) {
                const unsigned lanes =
                    static_cast<unsigned>(_mm_movemask_epi8(simd::is_zero(simd::load(row + x0 + j * simd::kLanes))));
                word |= static_cast<Bits>(lanes) << (j * simd::kLanes);
            }
        } else {
            for (int x = x0; x < width; ++x) word |= static_cast<Bits>(row[x] == 0) << (x - x0);
        }
        bits[k] = word;
    }
}

// 0xFF in byte i where bit i of `lanes` (16 bits) is set.
__m128i bytes_of_bits(unsigned lanes) {
    const __m128i pattern = _mm_set_epi8(-128, 64, 32, 16, 8, 4, 2, 1, -128, 64, 32, 16, 8, 4, 2, 1);
    const __m128i low = _mm_set1_epi8(static_cast<char>(lanes & 0xFF));
    const __m128i high = _mm_set1_epi8(static_cast<char>(lanes >> 8));
    return _mm_cmpeq_epi8(_mm_and_si128(_mm_unpacklo_epi64(low, high), pattern), pattern);
}

// A bit row with its two horizontal neighbourhoods: `across` holds columns x − 1 .. x + 1 and
// `sides` columns x − 1 and x + 1, so that each row's shifts are done once for the three rows that
// use them.
struct BitRow {
    Bits* bits;
    Bits* across;
    Bits* sides;
    void spans(int words) const {
        for (int k = 0; k < words; ++k) {
            sides[k] = from_left(bits, k) | from_right(bits, k);
            across[k] = sides[k] | bits[k];
        }
    }
};

// out := in, with the rule's value at the columns whose bit is set in `near`.
void write_row(const unsigned char* in, const Bits* near, int width, unsigned char value, unsigned char* out) {
    const __m128i fill = _mm_set1_epi8(static_cast<char>(value));
    for (int k = 0, x0 = 0; x0 < width; ++k, x0 += kWordBits) {
        if (x0 + kWordBits > width) {
            for (int x = x0; x < width; ++x) out[x] = (near[k] >> (x - x0)) & 1 ? value : in[x];
        } else if (near[k] == 0) {
            for (int j = 0; j < kWordBits; j += simd::kLanes) simd::store(out + x0 + j, simd::load(in + x0 + j));
        } else if (near[k] == ~Bits{0}) {
            for (int j = 0; j < kWordBits; j += simd::kLanes) simd::store(out + x0 + j, fill);
        } else {
            for (int j = 0; j < kWordBits; j += simd::kLanes) {
                const unsigned lanes = static_cast<unsigned>(near[k] >> j) & 0xFFFFu;
                const __m128i v = simd::load(in + x0 + j);
                simd::store(out + x0 + j, lanes == 0 ? v : simd::select(bytes_of_bits(lanes), fill, v));
            }
        }
    }
}

#ifdef QEL_SIMD_AVX2
// zero_bits and write_row with 32 bytes a step.
QEL_TARGET_AVX2 void zero_bits_avx2(const unsigned char* row, int width, Bits* bits) {
    const __m256i zero = _mm256_setzero_si256();
    for (int k = 0, x0 = 0; x0 < width; ++k, x0 += kWordBits) {
        if (x0 + kWordBits <= width) {
            // (no lambda here: it would not inherit the target attribute)
            const __m256i low = _mm256_cmpeq_epi8(avx2::load(row + x0), zero);
            const __m256i high = _mm256_cmpeq_epi8(avx2::load(row + x0 + avx2::kLanes), zero);
            bits[k] = static_cast<Bits>(static_cast<uint32_t>(_mm256_movemask_epi8(low))) |
                      (static_cast<Bits>(static_cast<uint32_t>(_mm256_movemask_epi8(high))) << avx2::kLanes);
        } else {
            Bits word = 0;
            for (int x = x0; x < width; ++x) word |= static_cast<Bits>(row[x] == 0) << (x - x0);
            bits[k] = word;
        }
    }
}

// 0xFF in byte i where bit i of `lanes` (32 bits) is set: byte i takes byte i / 8 of the lanes and
// keeps its own bit.
QEL_TARGET_AVX2 __m256i bytes_of_bits_avx2(uint32_t lanes) {
    const __m256i spread = _mm256_setr_epi8(0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 1, 1, 1, 1, 2, 2, 2, 2, 2, 2, 2, 2, 3, 3,
                                            3, 3, 3, 3, 3, 3);
    const __m256i pattern = _mm256_set1_epi64x(static_cast<long long>(0x8040201008040201ull));
    const __m256i v = _mm256_shuffle_epi8(_mm256_set1_epi32(static_cast<int>(lanes)), spread);
    return _mm256_cmpeq_epi8(_mm256_and_si256(v, pattern), pattern);
}

QEL_TARGET_AVX2 void write_row_avx2(const unsigned char* in, const Bits* near, int width, unsigned char value,
                                    unsigned char* out) {
    const __m256i fill = _mm256_set1_epi8(static_cast<char>(value));
    for (int k = 0, x0 = 0; x0 < width; ++k, x0 += kWordBits) {
        if (x0 + kWordBits > width) {
            for (int x = x0; x < width; ++x) out[x] = (near[k] >> (x - x0)) & 1 ? value : in[x];
            continue;
        }
        for (int j = 0; j < kWordBits; j += avx2::kLanes) {
            const uint32_t lanes = static_cast<uint32_t>(near[k] >> j);
            const __m256i v = avx2::load(in + x0 + j);
            avx2::store(out + x0 + j, lanes == 0 ? v : lanes == ~0u ? fill : avx2::select(bytes_of_bits_avx2(lanes), fill, v));
        }
    }
}
#endif

template <class ZeroBits, class WriteRow>
void spread_bit_rows(const unsigned char* image, int width, int height, Spread rule, unsigned char* out,
                     ZeroBits zeroBits, WriteRow writeRow) {
    if (width < 3 || height < 3) {  // no centres
        std::memcpy(out, image, static_cast<size_t>(std::max(width, 0)) * static_cast<size_t>(std::max(height, 0)));
        return;
    }
    const int words = (width + kWordBits - 1) / kWordBits;
    const size_t span = static_cast<size_t>(words) + 2;  // with the clear word at each end
    // Rolling bit rows (row r in slot r % 3) of zero pixels and of spreading centres, a row of no
    // bits for the top and bottom rows (never centres), the interior columns 1 .. width − 2 and the
    // output's neighbour bits.
    std::vector<Bits> store(23 * span, 0);
    const auto slot = [&](int k) { return store.data() + static_cast<size_t>(k) * span + 1; };
    const auto bitRow = [&](int k) { return BitRow{slot(3 * k), slot(3 * k + 1), slot(3 * k + 2)}; };
    const BitRow none = bitRow(6);
    Bits* interior = slot(21);
    Bits* near = slot(22);
    const auto zeroRow = [&](int r) { return bitRow(r % 3); };
    const auto spreadRow = [&](int r) { return r >= 1 && r <= height - 2 ? bitRow(3 + r % 3) : none; };
    const auto row = [&](const unsigned char* base, int r) { return base + static_cast<std::ptrdiff_t>(r) * width; };
    for (int x = 1; x < width - 1; ++x) interior[x / kWordBits] |= Bits{1} << (x % kWordBits);

    const auto zeros = [&](int r) {
        const BitRow z = zeroRow(r);
        zeroBits(row(image, r), width, z.bits);
        z.spans(words);
    };
    // Spreading bits of centre row r from the zero bits of rows r − 1 .. r + 1.
    const auto spreading = [&](int r) {
        const BitRow a = zeroRow(r - 1);
        const BitRow m = zeroRow(r);
        const BitRow b = zeroRow(r + 1);
        const BitRow s = spreadRow(r);
        for (int k = 0; k < words; ++k) {
            const Bits kind = rule.fromObject ? ~m.bits[k] : m.bits[k];
            s.bits[k] = kind & interior[k] & (a.across[k] | b.across[k] | m.sides[k]);
        }
        s.spans(words);
    };
    zeros(0);
    zeros(1);
    zeros(2);
    spreading(1);
    for (int y = 0; y < height; ++y) {
        // Centre row y + 1 needs image row y + 2; its zero bits replace those of row y − 1.
        if (y + 1 >= 2 && y + 1 <= height - 2) {
            zeros(y + 2);
            spreading(y + 1);
        }
        const BitRow above = y >= 2 ? spreadRow(y - 1) : none;
        const BitRow mid = spreadRow(y);
        const BitRow below = spreadRow(y + 1);
        for (int k = 0; k < words; ++k) near[k] = above.across[k] | below.across[k] | mid.sides[k];
        writeRow(row(image, y), near, width, rule.value, out + static_cast<std::ptrdiff_t>(y) * width);
    }
}

#ifdef QEL_SIMD_AVX2
// The whole spread compiled for AVX2: flatten inlines the bit-row loops too, which the compiler
// then vectorises four words at a time.
__attribute__((target("avx2"), flatten)) void spread_bit_rows_avx2(const unsigned char* image, int width, int height,
                                                                  Spread rule, unsigned char* out) {
    spread_bit_rows(image, width, height, rule, out, zero_bits_avx2, write_row_avx2);
}
#endif
#endif

void spread_whole(const unsigned char* image, int width, int height, Spread rule, unsigned char* out) {
#ifdef QEL_SIMD_AVX2
    if (simd::avx2()) {
        spread_bit_rows_avx2(image, width, height, rule, out);
        return;
    }
#endif
#ifdef QEL_SIMD_SSE2
    if (simd::sse2()) {
        spread_bit_rows(image, width, height, rule, out, zero_bits, write_row);
        return;
    }
#endif
    std::memcpy(out, image, static_cast<size_t>(std::max(width, 0)) * static_cast<size_t>(std::max(height, 0)));
    spread_3x3(image, width, 1, width - 1, 1, height - 1, rule, out);
}

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

#ifdef QEL_SIMD_SSE2
// The majority of centres x .. x + 15 (or + 31) of one row, whose neighbours lie in the image: each
// zero neighbour subtracts the −1 of its equality mask, and fewer than 9 − kMajority zeros among
// the 8 make 255 (the compare's all-ones), else 0.
constexpr int kMostZeros = kNeighbours - kMajority;  // 3

int majority_row_sse2(const unsigned char* row, int width, int x, int x1, unsigned char* out) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i limit = _mm_set1_epi8(kMostZeros + 1);
    for (; x + simd::kLanes <= x1; x += simd::kLanes) {
        const unsigned char* p = row + x;
        const unsigned char* neighbours[kNeighbours] = {p - width - 1, p - width, p - width + 1, p - 1,
                                                        p + 1,         p + width - 1, p + width, p + width + 1};
        __m128i zeros = zero;
        for (const unsigned char* q : neighbours) zeros = _mm_sub_epi8(zeros, _mm_cmpeq_epi8(simd::load(q), zero));
        simd::store(out + x, _mm_cmpgt_epi8(limit, zeros));
    }
    return x;
}
#endif

#ifdef QEL_SIMD_AVX2
QEL_TARGET_AVX2 int majority_row_avx2(const unsigned char* row, int width, int x, int x1, unsigned char* out) {
    const __m256i zero = _mm256_setzero_si256();
    const __m256i limit = _mm256_set1_epi8(kMostZeros + 1);
    for (; x + avx2::kLanes <= x1; x += avx2::kLanes) {
        const unsigned char* p = row + x;
        const unsigned char* neighbours[kNeighbours] = {p - width - 1, p - width, p - width + 1, p - 1,
                                                        p + 1,         p + width - 1, p + width, p + width + 1};
        __m256i zeros = zero;
        for (const unsigned char* q : neighbours)
            zeros = _mm256_sub_epi8(zeros, _mm256_cmpeq_epi8(avx2::load(q), zero));
        avx2::store(out + x, _mm256_cmpgt_epi8(limit, zeros));
    }
    return x;
}
#endif

// 3 × 3 majority of the centres x0 <= x < x1, y0 <= y < y1: 255 when at least 5 of the 8 neighbours
// are non-zero. Rows go 32 (16) centres a step where AVX2 (SSE2) is available.
void majority_3x3(const unsigned char* image, int width, int x0, int x1, int y0, int y1, unsigned char* out) {
    const NeighbourOffsets off(width);
    for (int y = y0; y < y1; ++y) {
        const std::ptrdiff_t rowStart = static_cast<std::ptrdiff_t>(y) * width;
        int x = x0;
#ifdef QEL_SIMD_AVX2
        if (simd::avx2()) x = majority_row_avx2(image + rowStart, width, x, x1, out + rowStart);
#endif
#ifdef QEL_SIMD_SSE2
        if (simd::sse2()) x = majority_row_sse2(image + rowStart, width, x, x1, out + rowStart);
#endif
        for (; x < x1; ++x)
            out[rowStart + x] = count_nonzero_neighbours(image + rowStart + x, off) >= kMajority ? kObject : kBackground;
    }
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
