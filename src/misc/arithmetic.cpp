// Pixel-wise image arithmetic: logic operations, absolute and clipped differences, running maxima
// and minima over a sequence of images, and the integral image.
#include "qel/misc.h"

#include "core/simd.h"
#include "core/simd_avx2.h"
#include "misc/arithmetic.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

size_t byte_count(int n) { return n > 0 ? static_cast<size_t>(n) : 0; }

#ifdef QEL_SIMD_AVX512
QEL_AVX512_BEGIN
// Word indices for the 32-column steps of running_sum_avx512. The 32 pixels sit as 16-bit words,
// four consecutive pixels per 64-bit quarter-lane: quarter h of 128-bit lane L holds pixels
// 16h + 4L .. 16h + 4L + 3, so that the in-lane word unpacks later give pixels 0..15 and 16..31 in
// order. A quarter's rank in pixel order is 4h + L.
struct RunningSumIndices {
    unsigned short load[32];       // word 8L + 4h + j takes byte 16h + 4L + j
    unsigned short carry[3][32];   // for distance 1, 2, 4 quarters: word 3 of the quarter that far back
    unsigned short total[32];      // the last pixel's word (rank 7, word 3), in the low word of each 32-bit lane
};

constexpr int quarter_word(int rank, int j) { return 8 * (rank % 4) + 4 * (rank / 4) + j; }

constexpr RunningSumIndices make_running_sum_indices() {
    RunningSumIndices t{};
    for (int rank = 0; rank < 8; ++rank)
        for (int j = 0; j < 4; ++j) {
            const int at = quarter_word(rank, j);
            t.load[at] = static_cast<unsigned short>(4 * rank + j);
            for (int step = 0; step < 3; ++step) {
                const int back = rank - (1 << step);
                t.carry[step][at] = static_cast<unsigned short>(back >= 0 ? quarter_word(back, 3) : 0);
            }
        }
    for (int k = 0; k < 32; ++k) t.total[k] = static_cast<unsigned short>(quarter_word(7, 3));
    return t;
}

alignas(64) constexpr RunningSumIndices kRunningSum = make_running_sum_indices();

// The words of the quarters whose rank is at least `distance` (the others take no carry).
constexpr __mmask32 carry_mask(int distance) {
    uint32_t m = 0;
    for (int rank = distance; rank < 8; ++rank)
        for (int j = 0; j < 4; ++j) m |= 1u << quarter_word(rank, j);
    return m;
}

// s[x .. x + 15] = sums plus the row above where there is one.
QEL_TARGET_AVX512 inline void add_above_and_store(const int* above, int* s, int x, __m512i sums) {
    _mm512_storeu_si512(s + x, above != nullptr ? _mm512_add_epi32(sums, _mm512_loadu_si512(above + x)) : sums);
}

// 32 columns a step (see add_running_sum). The 32 pixels' prefix sums are taken as 16-bit words (at
// most 32 · 255): within each quarter by two shifted adds, across the quarters by three carry
// permutes. The running total before the step is added in 32 bits, and each step's own total joins
// it by one add, so steps do not wait on each other's permutes.
QEL_TARGET_AVX512 int running_sum_avx512(const unsigned char* row, const int* above, int w, int* s,
                                         uint32_t& running) {
    const __m512i zero = _mm512_setzero_si512();
    __m512i carry = _mm512_set1_epi32(static_cast<int>(running));
    const __m512i load = _mm512_load_si512(kRunningSum.load);
    const __m512i total = _mm512_load_si512(kRunningSum.total);
    __m512i carryFrom[3];
    for (int step = 0; step < 3; ++step) carryFrom[step] = _mm512_load_si512(kRunningSum.carry[step]);
    int x = 0;
    for (; x + 32 <= w; x += 32) {
        const __m512i bytes = _mm512_castsi256_si512(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(row + x)));
        __m512i v = _mm512_maskz_permutexvar_epi8(0x5555555555555555ull, load, bytes);
        v = _mm512_add_epi16(v, _mm512_slli_epi64(v, 16));
        v = _mm512_add_epi16(v, _mm512_slli_epi64(v, 32));
        for (int step = 0; step < 3; ++step)
            v = _mm512_add_epi16(v, _mm512_maskz_permutexvar_epi16(carry_mask(1 << step), carryFrom[step], v));
        add_above_and_store(above, s, x, _mm512_add_epi32(_mm512_unpacklo_epi16(v, zero), carry));
        add_above_and_store(above, s, x + 16, _mm512_add_epi32(_mm512_unpackhi_epi16(v, zero), carry));
        carry = _mm512_add_epi32(carry, _mm512_maskz_permutexvar_epi16(0x55555555u, total, v));
    }
    running = static_cast<uint32_t>(_mm_cvtsi128_si32(_mm512_castsi512_si128(carry)));
    return x;
}
QEL_AVX512_END
#endif

#ifdef QEL_SIMD_AVX2
// s[x .. x + 7] = sums plus the row above where there is one.
QEL_TARGET_AVX2 inline void add_above_and_store(const int* above, int* s, int x, __m256i sums) {
    if (above != nullptr) sums = _mm256_add_epi32(sums, _mm256_loadu_si256(reinterpret_cast<const __m256i*>(above + x)));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(s + x), sums);
}

// 16 columns a step (see add_running_sum): the prefix sums as 16-bit words, eight in each 128-bit
// lane by three shifted adds, the low lane's total (word 7, spread over the lane by a byte shuffle)
// then moved into the high lane; widened to 32 bits a lane at a time.
QEL_TARGET_AVX2 int running_sum_avx2(const unsigned char* row, const int* above, int x, int w, int* s,
                                     uint32_t& running) {
    const __m256i word7 = _mm256_set1_epi16(0x0F0E);  // bytes 14 and 15 of the lane into every word
    __m256i carry = _mm256_set1_epi32(static_cast<int>(running));
    for (; x + 16 <= w; x += 16) {
        __m256i v = _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(row + x)));
        v = _mm256_add_epi16(v, _mm256_slli_si256(v, 2));
        v = _mm256_add_epi16(v, _mm256_slli_si256(v, 4));
        v = _mm256_add_epi16(v, _mm256_slli_si256(v, 8));
        const __m256i lowTotal = _mm256_shuffle_epi8(v, word7);
        v = _mm256_add_epi16(v, _mm256_permute2x128_si256(lowTotal, lowTotal, 0x08));  // (0, low lane)
        const __m256i high = _mm256_cvtepu16_epi32(_mm256_extracti128_si256(v, 1));
        add_above_and_store(above, s, x, _mm256_add_epi32(_mm256_cvtepu16_epi32(_mm256_castsi256_si128(v)), carry));
        add_above_and_store(above, s, x + 8, _mm256_add_epi32(high, carry));
        carry = _mm256_add_epi32(carry, _mm256_permutevar8x32_epi32(high, _mm256_set1_epi32(7)));
    }
    running = static_cast<uint32_t>(_mm_cvtsi128_si32(_mm256_castsi256_si128(carry)));
    return x;
}
#endif

#ifdef QEL_SIMD_SSE2
// s[x .. x + 3] = sums plus the row above where there is one.
inline void add_above_and_store(const int* above, int* s, int x, __m128i sums) {
    if (above != nullptr) sums = _mm_add_epi32(sums, _mm_loadu_si128(reinterpret_cast<const __m128i*>(above + x)));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(s + x), sums);
}
#endif

// s[x] = above[x] (0 without a row above) + row[0] + .. + row[x], wrapping in 32 bits. Each
// instruction set takes over the running total where the wider one stopped; with SSE2, eight
// columns a step: the prefix sum as 16-bit words by three shifted adds, widened to 32 bits, plus the
// running total carried in every lane.
void add_running_sum(const unsigned char* row, const int* above, int w, int* s) {
    int x = 0;
    uint32_t running = 0;
#ifdef QEL_SIMD_AVX512
    if (qel::simd::avx512()) x = running_sum_avx512(row, above, w, s, running);
#endif
#ifdef QEL_SIMD_AVX2
    if (qel::simd::avx2()) x = running_sum_avx2(row, above, x, w, s, running);
#endif
#ifdef QEL_SIMD_SSE2
    if (qel::simd::sse2()) {
        const __m128i zero = _mm_setzero_si128();
        __m128i carry = _mm_set1_epi32(static_cast<int>(running));
        for (; x + 16 <= w; x += 16) {
            const __m128i bytes = qel::simd::load(row + x);
            for (int half = 0; half < 2; ++half) {
                // Eight prefix sums as 16-bit words (at most 8 · 255), by three shifted adds.
                __m128i v = half == 0 ? _mm_unpacklo_epi8(bytes, zero) : _mm_unpackhi_epi8(bytes, zero);
                v = _mm_add_epi16(v, _mm_slli_si128(v, 2));
                v = _mm_add_epi16(v, _mm_slli_si128(v, 4));
                v = _mm_add_epi16(v, _mm_slli_si128(v, 8));
                const __m128i high = _mm_unpackhi_epi16(v, zero);
                const int at = x + 8 * half;
                add_above_and_store(above, s, at, _mm_add_epi32(_mm_unpacklo_epi16(v, zero), carry));
                add_above_and_store(above, s, at + 4, _mm_add_epi32(high, carry));
                carry = _mm_add_epi32(carry, _mm_shuffle_epi32(high, 0xFF));
            }
        }
        running = static_cast<uint32_t>(_mm_cvtsi128_si32(carry));
    }
#endif
    for (; x < w; ++x) {
        running += row[x];
        s[x] = static_cast<int>(running + (above != nullptr ? static_cast<uint32_t>(above[x]) : 0u));
    }
}

// The byte operations of this file, each with its plain form and, where SSE2 (AVX2) is available,
// the same operation on 16 (32) bytes at once.
#if defined(QEL_SIMD_AVX2)
#define QEL_BYTE_OP(name, scalar, vector, vector256)                                                     \
    struct name {                                                                                       \
        int operator()(unsigned char x, unsigned char y) const { return scalar; }                        \
        __m128i operator()(__m128i x, __m128i y) const { return vector; }                                \
        QEL_TARGET_AVX2 __m256i operator()(__m256i x, __m256i y) const { return vector256; }             \
    };
#elif defined(QEL_SIMD_SSE2)
#define QEL_BYTE_OP(name, scalar, vector, vector256)                                                     \
    struct name {                                                                                       \
        int operator()(unsigned char x, unsigned char y) const { return scalar; }                        \
        __m128i operator()(__m128i x, __m128i y) const { return vector; }                                \
    };
#else
#define QEL_BYTE_OP(name, scalar, vector, vector256)                                                     \
    struct name {                                                                                       \
        int operator()(unsigned char x, unsigned char y) const { return scalar; }                        \
    };
#endif
QEL_BYTE_OP(AndOp, x & y, _mm_and_si128(x, y), _mm256_and_si256(x, y))
QEL_BYTE_OP(OrOp, x | y, _mm_or_si128(x, y), _mm256_or_si256(x, y))
QEL_BYTE_OP(XorOp, x ^ y, _mm_xor_si128(x, y), _mm256_xor_si256(x, y))
QEL_BYTE_OP(AbsDiffOp, qel::abs_diff(x, y), qel::simd::abs_diff(x, y), qel::avx2::abs_diff(x, y))
QEL_BYTE_OP(ClippedDiffOp, x > y ? x - y : 0, _mm_subs_epu8(x, y), _mm256_subs_epu8(x, y))
QEL_BYTE_OP(MaxOp, std::max(x, y), _mm_max_epu8(x, y), _mm256_max_epu8(x, y))
QEL_BYTE_OP(MinOp, std::min(x, y), _mm_min_epu8(x, y), _mm256_min_epu8(x, y))
#undef QEL_BYTE_OP

#ifdef QEL_SIMD_AVX2
// op on the whole 32-byte steps of count bytes; returns how many it did.
template <typename Op>
QEL_TARGET_AVX2 size_t combine_avx2(const unsigned char* a, const unsigned char* b, size_t count, unsigned char* out,
                                    Op op) {
    // The first bytes one by one up to a 32-byte boundary of out, so that no store splits a cache
    // line (the loads may).
    size_t i = 0;
    const size_t head = (qel::avx2::kLanes - reinterpret_cast<uintptr_t>(out) % qel::avx2::kLanes) % qel::avx2::kLanes;
    if (count < head + qel::avx2::kLanes) return 0;
    for (; i < head; ++i) out[i] = static_cast<unsigned char>(op(a[i], b[i]));
    for (; i + qel::avx2::kLanes <= count; i += qel::avx2::kLanes)
        qel::avx2::store(out + i, op(qel::avx2::load(a + i), qel::avx2::load(b + i)));
    return i;
}
#endif

// out[i] := op(a[i], b[i]) for i < count, 32 or 16 bytes a step where AVX2 or SSE2 is available and
// byte by byte for the rest. out may be a or b (each step reads its bytes before writing them).
template <typename Op>
void combine(const unsigned char* a, const unsigned char* b, size_t count, unsigned char* out, Op op) {
    size_t i = 0;
#ifdef QEL_SIMD_AVX2
    if (qel::simd::avx2()) i = combine_avx2(a, b, count, out, op);
#endif
#ifdef QEL_SIMD_SSE2
    if (qel::simd::sse2())
        for (; i + qel::simd::kLanes <= count; i += qel::simd::kLanes)
            qel::simd::store(out + i, op(qel::simd::load(a + i), qel::simd::load(b + i)));
#endif
    for (; i < count; ++i) out[i] = static_cast<unsigned char>(op(a[i], b[i]));
}

// res[i] := the largest of the three channel differences of BGR pixel i, for i < pixels.
void bgr_difference(const unsigned char* a, const unsigned char* b, size_t pixels, unsigned char* res) {
    size_t i = 0;
#ifdef QEL_SIMD_SSE2
    // 32 pixels a step: the 96 byte differences split into the three channel planes.
    for (; qel::simd::sse2() && i + 32 <= pixels; i += 32, a += 96, b += 96) {
        __m128i d[6];
        for (int k = 0; k < 6; ++k)
            d[k] = qel::simd::abs_diff(qel::simd::load(a + 16 * k), qel::simd::load(b + 16 * k));
        qel::simd::deinterleave3(d);
        qel::simd::store(res + i, _mm_max_epu8(d[0], _mm_max_epu8(d[2], d[4])));
        qel::simd::store(res + i + 16, _mm_max_epu8(d[1], _mm_max_epu8(d[3], d[5])));
    }
#endif
    for (; i < pixels; ++i, a += 3, b += 3) {
        const int d =
            std::max(qel::abs_diff(a[0], b[0]), std::max(qel::abs_diff(a[1], b[1]), qel::abs_diff(a[2], b[2])));
        res[i] = static_cast<unsigned char>(d);
    }
}

// Writes the absolute difference image (grey, one byte a pixel, for either input); when hist is
// not null it also counts the values written (the caller clears it).
void difference_image(const unsigned char* a, const unsigned char* b, int w, int h, bool isRGB, unsigned char* res,
                      int* hist) {
    const size_t pixels = qel::image_bytes(w, h, 1);
    if (!isRGB)
        combine(a, b, pixels, res, AbsDiffOp());
    else
        bgr_difference(a, b, pixels, res);
    if (hist != nullptr)
        for (size_t i = 0; i < pixels; ++i) ++hist[res[i]];
}

}  // namespace

void QelImg1AndImg2To1(unsigned char* a, unsigned char* b, int n) {
    combine(a, b, byte_count(n), a, AndOp());
}

void QelImg1OrImg2To1(unsigned char* a, unsigned char* b, int n) {
    combine(a, b, byte_count(n), a, OrOp());
}

void QelImg1XorImg2To1(unsigned char* a, unsigned char* b, int n) {
    combine(a, b, byte_count(n), a, XorOp());
}

void QelImg1AndImg2ToRes(unsigned char* a, unsigned char* b, int n, unsigned char* res) {
    combine(a, b, byte_count(n), res, AndOp());
}

void QelImg1OrImg2ToRes(unsigned char* a, unsigned char* b, int n, unsigned char* res) {
    combine(a, b, byte_count(n), res, OrOp());
}

void QelImg1XorImg2ToRes(unsigned char* a, unsigned char* b, int n, unsigned char* res) {
    combine(a, b, byte_count(n), res, XorOp());
}

void QelImg1Difference2To1(unsigned char* a, unsigned char* b, int w, int h) {
    combine(a, b, qel::image_bytes(w, h, 1), a, AbsDiffOp());
}

void QelImg1Substract2To1(unsigned char* a, unsigned char* b, int w, int h) {
    combine(a, b, qel::image_bytes(w, h, 1), a, ClippedDiffOp());
}

void QelImg1Substract2To2(unsigned char* a, unsigned char* b, int w, int h) {
    // The result goes into the second image; the first is only read.
    combine(a, b, qel::image_bytes(w, h, 1), b, ClippedDiffOp());
}

void QelImg1SubstractImg2(unsigned char* a, unsigned char* b, int w, int h, bool isRGB, unsigned char* res) {
    combine(a, b, qel::image_bytes(w, h, qel::bytes_per_pixel(isRGB)), res, ClippedDiffOp());
}

void QelDifferenceImg12(unsigned char* a, unsigned char* b, int w, int h, bool isRGB, unsigned char* res) {
    difference_image(a, b, w, h, isRGB, res, nullptr);
}

void QelDifferenceImg12(unsigned char* a, unsigned char* b, int w, int h, bool isRGB, unsigned char* res,
                        int* histogram) {
    std::memset(histogram, 0, 256 * sizeof(int));
    difference_image(a, b, w, h, isRGB, res, histogram);
}

void QelRemainMaxGry(unsigned char* img, int w, int h, bool isRGB, unsigned char* accMax) {
    combine(accMax, img, qel::image_bytes(w, h, qel::bytes_per_pixel(isRGB)), accMax, MaxOp());
}

void QelRemainMinGry(unsigned char* img, int w, int h, bool isRGB, unsigned char* accMin) {
    combine(accMin, img, qel::image_bytes(w, h, qel::bytes_per_pixel(isRGB)), accMin, MinOp());
}

void QelRemainMaxMinGry(unsigned char* img, int w, int h, bool isRGB, unsigned char* accMax, unsigned char* accMin) {
    const size_t count = qel::image_bytes(w, h, qel::bytes_per_pixel(isRGB));
    combine(accMax, img, count, accMax, MaxOp());
    combine(accMin, img, count, accMin, MinOp());
}

void QelDoSumGryImg(unsigned char* img, int w, int h, int* sum) {
    if (w <= 0 || h <= 0) return;
    // 32-bit sums that wrap on overflow, as unsigned arithmetic does; stored as int. Each row is
    // the row above plus the running sum of the row's own pixels: s[x] − above[x] grows by img[x]
    // from one column to the next, so the usual s[x − 1] + above[x] − above[x − 1] + img[x] gives
    // the same bits, and the running sum does not wait on the row above.
    for (int y = 0; y < h; ++y) {
        const unsigned char* row = img + static_cast<std::ptrdiff_t>(y) * w;
        int* s = sum + static_cast<std::ptrdiff_t>(y) * w;
        add_running_sum(row, y > 0 ? s - w : nullptr, w, s);
    }
}
