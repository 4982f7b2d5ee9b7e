// SIMD helpers for the fast paths of point operations and small filters, and the run-time choice
// between them.
//
// SSE2 is part of every x86-64 processor and of the 32-bit x86 builds (compiled with -msse2 or
// /arch:SSE2), so it is compiled in wherever it is available and QEL_NO_SIMD is not defined
// (QEL_SIMD_SSE2). AVX2 kernels (QEL_SIMD_AVX2, core/simd_avx2.h) are compiled beside them with GCC
// and clang on x86 through target attributes, and used only where the processor has AVX2; the few
// AVX-512 kernels (look-up tables and camera-frame conversions, built on byte permutes) likewise
// where it has AVX-512 VBMI and VNNI. Which
// set runs is chosen once per process at run time (simd::level()); every fast path sits beside a
// portable loop that gives the same bytes, used for the tails of rows, on other processors, with
// QEL_NO_SIMD, and when the environment variable QEL_SIMD asks for it (the tests run each path so).
#ifndef QEL_SRC_CORE_SIMD_H
#define QEL_SRC_CORE_SIMD_H

namespace qel {
namespace simd {

// The instruction sets of the fast paths, each including the ones before it. avx512 stands for
// AVX-512 F, BW, VBMI (byte permutes) and VNNI (multiply-adds into a sum), which every such
// processor has with AVX2.
enum class Level { portable = 0, sse2 = 1, avx2 = 2, avx512 = 3 };

// The set the fast paths use in this process, decided on first use (thread-safe) and fixed after:
// the best the build and the processor have, lowered by QEL_SIMD=portable|sse2|avx2|avx512 (a level
// the processor lacks, or an unknown name, is ignored).
Level level();

// Whether the SSE2 (AVX2, AVX-512) fast paths run.
inline bool sse2() { return level() >= Level::sse2; }
inline bool avx2() { return level() >= Level::avx2; }
inline bool avx512() { return level() >= Level::avx512; }

}  // namespace simd
}  // namespace qel

#if !defined(QEL_NO_SIMD) && (defined(__SSE2__) || defined(_M_X64) || (defined(_M_IX86_FP) && _M_IX86_FP >= 2))
#define QEL_SIMD_SSE2 1
#include <emmintrin.h>

namespace qel {
namespace simd {

constexpr int kLanes = 16;  // bytes in one register

inline __m128i load(const unsigned char* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
inline void store(unsigned char* p, __m128i v) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v); }

// 0xFF in the bytes of v that are >= t, else 0 (unsigned compare).
inline __m128i at_least(__m128i v, __m128i t) { return _mm_cmpeq_epi8(_mm_max_epu8(v, t), v); }

// 0xFF in the bytes of v that are 0, else 0.
inline __m128i is_zero(__m128i v) { return _mm_cmpeq_epi8(v, _mm_setzero_si128()); }

// Per byte |a − b| (unsigned): one of the two saturating differences is 0.
inline __m128i abs_diff(__m128i a, __m128i b) { return _mm_or_si128(_mm_subs_epu8(a, b), _mm_subs_epu8(b, a)); }

// Per byte: mask ? a : b.
inline __m128i select(__m128i mask, __m128i a, __m128i b) {
    return _mm_or_si128(_mm_and_si128(mask, a), _mm_andnot_si128(mask, b));
}

// The even bytes of a then b (16 bytes), and the odd bytes: splits interleaved byte pairs.
inline __m128i even_bytes(__m128i a, __m128i b) {
    const __m128i low = _mm_set1_epi16(0x00FF);
    return _mm_packus_epi16(_mm_and_si128(a, low), _mm_and_si128(b, low));
}
inline __m128i odd_bytes(__m128i a, __m128i b) { return _mm_packus_epi16(_mm_srli_epi16(a, 8), _mm_srli_epi16(b, 8)); }

// 32 packed B, G, R pixels (96 bytes in v[0..5]) to planes: v[0..1] blue, v[2..3] green,
// v[4..5] red. One round interleaves the first 48 bytes with the last 48 (a perfect shuffle,
// position p to 2p mod 95); five rounds move byte 3q + c to 32c + q.
inline void deinterleave3(__m128i v[6]) {
    for (int round = 0; round < 5; ++round) {
        const __m128i t[6] = {_mm_unpacklo_epi8(v[0], v[3]), _mm_unpackhi_epi8(v[0], v[3]),
                              _mm_unpacklo_epi8(v[1], v[4]), _mm_unpackhi_epi8(v[1], v[4]),
                              _mm_unpacklo_epi8(v[2], v[5]), _mm_unpackhi_epi8(v[2], v[5])};
        for (int k = 0; k < 6; ++k) v[k] = t[k];
    }
}

// The inverse of deinterleave3: planes (blue, blue, green, green, red, red) to 32 packed pixels.
// One round gathers the even bytes into the first half and the odd bytes into the second.
inline void interleave3(__m128i v[6]) {
    const __m128i low = _mm_set1_epi16(0x00FF);
    for (int round = 0; round < 5; ++round) {
        __m128i t[6];
        for (int k = 0; k < 3; ++k) {
            const __m128i a = v[2 * k];
            const __m128i b = v[2 * k + 1];
            t[k] = _mm_packus_epi16(_mm_and_si128(a, low), _mm_and_si128(b, low));
            t[k + 3] = _mm_packus_epi16(_mm_srli_epi16(a, 8), _mm_srli_epi16(b, 8));
        }
        for (int k = 0; k < 6; ++k) v[k] = t[k];
    }
}

// Weighted sums of 8 pixels in 32 bits: x·wx + y·wy + z·wz for the 16-bit lanes of x, y, z (0..255
// or signed values that keep the sums within int32), as two registers of four sums.
struct Sums {
    __m128i lo;
    __m128i hi;
};

inline Sums weighted3(__m128i x, __m128i y, __m128i z, __m128i wxy, __m128i wz0) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i lo = _mm_madd_epi16(_mm_unpacklo_epi16(z, zero), wz0);
    const __m128i hi = _mm_madd_epi16(_mm_unpackhi_epi16(z, zero), wz0);
    return {_mm_add_epi32(_mm_madd_epi16(_mm_unpacklo_epi16(x, y), wxy), lo),
            _mm_add_epi32(_mm_madd_epi16(_mm_unpackhi_epi16(x, y), wxy), hi)};
}

// Two 16-bit weights repeated, for _mm_madd_epi16 on (a, b) lane pairs.
inline __m128i weight_pair(int a, int b) {
    return _mm_set1_epi32(static_cast<int>((static_cast<unsigned>(b) << 16) | (static_cast<unsigned>(a) & 0xFFFFu)));
}

}  // namespace simd
}  // namespace qel

#endif
#endif
