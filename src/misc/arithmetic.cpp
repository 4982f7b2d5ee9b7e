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
    // 32-bit sums that wrap on overflow, as unsigned arithmetic does; stored as int.
    auto store = [](uint32_t v) { return static_cast<int>(v); };
    auto load = [](int v) { return static_cast<uint32_t>(v); };
    uint32_t running = 0;
    for (int x = 0; x < w; ++x) {
        running += img[x];
        sum[x] = store(running);
    }
    for (int y = 1; y < h; ++y) {
        const unsigned char* row = img + static_cast<std::ptrdiff_t>(y) * w;
        int* s = sum + static_cast<std::ptrdiff_t>(y) * w;
        const int* above = s - w;
        s[0] = store(row[0] + load(above[0]));
        for (int x = 1; x < w; ++x) s[x] = store(load(s[x - 1]) + load(above[x]) - load(above[x - 1]) + row[x]);
    }
}
