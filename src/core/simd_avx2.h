// AVX2 (and AVX-512) helpers for the fast paths that the processor may run (see simd.h for the
// run-time choice).
//
// The kernels are compiled with __attribute__((target("avx2"))) in an ordinary build, so one
// library serves processors with and without AVX2; callers check simd::avx2() before entering one.
// GCC and clang (MinGW included) on x86; elsewhere QEL_SIMD_AVX2 stays undefined and the SSE2 or
// plain loops run.
#ifndef QEL_SRC_CORE_SIMD_AVX2_H
#define QEL_SRC_CORE_SIMD_AVX2_H

#include "core/simd.h"

#if defined(QEL_SIMD_SSE2) && defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__))
#define QEL_SIMD_AVX2 1
#define QEL_TARGET_AVX2 __attribute__((target("avx2")))
// GCC 12 takes the undefined register that many AVX-512 intrinsics pass on (casts, conversions,
// shifts, permutes) for an uninitialised variable; the AVX-512 kernels sit between these two.
#if defined(__GNUC__) && !defined(__clang__)
#define QEL_AVX512_BEGIN                                                                                \
    _Pragma("GCC diagnostic push") _Pragma("GCC diagnostic ignored \"-Wmaybe-uninitialized\"")       \
        _Pragma("GCC diagnostic ignored \"-Wuninitialized\"")
#define QEL_AVX512_END _Pragma("GCC diagnostic pop")
#else
#define QEL_AVX512_BEGIN
#define QEL_AVX512_END
#endif
// AVX-512 with byte permutes and VNNI, for the kernels that simd::avx512() admits.
#define QEL_SIMD_AVX512 1
#define QEL_TARGET_AVX512 __attribute__((target("avx2,avx512f,avx512bw,avx512vbmi,avx512vnni,popcnt")))
#include <immintrin.h>

namespace qel {
namespace avx2 {

constexpr int kLanes = 32;  // bytes in one register

QEL_TARGET_AVX2 inline __m256i load(const unsigned char* p) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
}
QEL_TARGET_AVX2 inline void store(unsigned char* p, __m256i v) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v);
}

// 0xFF in the bytes of v that are >= t, else 0 (unsigned compare).
QEL_TARGET_AVX2 inline __m256i at_least(__m256i v, __m256i t) {
    return _mm256_cmpeq_epi8(_mm256_max_epu8(v, t), v);
}

// Per byte |a − b| (unsigned).
QEL_TARGET_AVX2 inline __m256i abs_diff(__m256i a, __m256i b) {
    return _mm256_or_si256(_mm256_subs_epu8(a, b), _mm256_subs_epu8(b, a));
}

// Per byte: mask ? a : b.
QEL_TARGET_AVX2 inline __m256i select(__m256i mask, __m256i a, __m256i b) { return _mm256_blendv_epi8(b, a, mask); }

// Two 16-bit weights repeated, for _mm256_madd_epi16 on (a, b) lane pairs.
QEL_TARGET_AVX2 inline __m256i weight_pair(int a, int b) {
    return _mm256_set1_epi32(static_cast<int>((static_cast<unsigned>(b) << 16) | (static_cast<unsigned>(a) & 0xFFFFu)));
}

// Three planes of 32 pixels (16 per 128-bit lane) to 96 packed bytes, three per pixel, channel 0
// first. Byte k of a lane's output chunk j (j = 0, 1, 2) is byte 16j + k of the lane's 48 bytes,
// pixel p = (16j + k) / 3 of channel (16j + k) % 3, found in that channel's lane at position
// at(p): one shuffle per channel and chunk, -1 where another channel's byte goes.
struct Interleave3 {
    signed char masks[3][3][16];
};

template <class PositionOf>
constexpr Interleave3 make_interleave3(PositionOf at) {
    Interleave3 t{};
    for (int j = 0; j < 3; ++j)
        for (int c = 0; c < 3; ++c)
            for (int k = 0; k < 16; ++k)
                t.masks[j][c][k] = static_cast<signed char>((16 * j + k) % 3 == c ? at((16 * j + k) / 3) : -1);
    return t;
}

// The shuffles of a table, each repeated in both lanes.
struct Interleave3Shuffles {
    __m256i s[3][3];
};

QEL_TARGET_AVX2 inline Interleave3Shuffles load_interleave3(const Interleave3& t) {
    Interleave3Shuffles r;
    for (int j = 0; j < 3; ++j)
        for (int c = 0; c < 3; ++c)
            r.s[j][c] = _mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(t.masks[j][c])));
    return r;
}

QEL_TARGET_AVX2 inline void store_interleaved3(const __m256i planes[3], const Interleave3Shuffles& t,
                                               unsigned char* out) {
    __m256i chunk[3];
    for (int j = 0; j < 3; ++j)
        chunk[j] = _mm256_or_si256(_mm256_or_si256(_mm256_shuffle_epi8(planes[0], t.s[j][0]),
                                                   _mm256_shuffle_epi8(planes[1], t.s[j][1])),
                                   _mm256_shuffle_epi8(planes[2], t.s[j][2]));
    // Lane 0 of chunk[0..2] is bytes 0..47, lane 1 bytes 48..95.
    store(out, _mm256_permute2x128_si256(chunk[0], chunk[1], 0x20));
    store(out + 32, _mm256_permute2x128_si256(chunk[2], chunk[0], 0x30));
    store(out + 64, _mm256_permute2x128_si256(chunk[1], chunk[2], 0x31));
}

// AVX-512: three planes of 64 pixels to 192 packed bytes, channel 0 first. For output register j,
// one two-register byte permute places the bytes of channels 0 and 1, a second one adds those of
// channel 2 (keeping the rest); pixel p sits at byte at(p) of its plane.
struct Interleave3x64 {
    unsigned char first[3][64];
    unsigned char second[3][64];
};

template <class PositionOf>
constexpr Interleave3x64 make_interleave3x64(PositionOf at) {
    Interleave3x64 t{};
    for (int j = 0; j < 3; ++j)
        for (int k = 0; k < 64; ++k) {
            const int pixel = (64 * j + k) / 3;
            const int channel = (64 * j + k) % 3;
            t.first[j][k] = static_cast<unsigned char>(channel == 2 ? 0 : 64 * channel + at(pixel));
            t.second[j][k] = static_cast<unsigned char>(channel == 2 ? 64 + at(pixel) : k);
        }
    return t;
}

// 64 bytes from p (any alignment): pixels, or a table of permute indices.
QEL_TARGET_AVX512 inline __m512i load64(const unsigned char* p) { return _mm512_loadu_si512(p); }

struct Interleave3x64Indices {
    __m512i first[3];
    __m512i second[3];
};

QEL_TARGET_AVX512 inline Interleave3x64Indices load_interleave3x64(const Interleave3x64& t) {
    Interleave3x64Indices r;
    for (int j = 0; j < 3; ++j) {
        r.first[j] = load64(t.first[j]);
        r.second[j] = load64(t.second[j]);
    }
    return r;
}

QEL_TARGET_AVX512 inline void store_interleaved3x64(const __m512i planes[3], const Interleave3x64Indices& t,
                                                    unsigned char* out) {
    for (int j = 0; j < 3; ++j)
        _mm512_storeu_si512(out + 64 * j, _mm512_permutex2var_epi8(_mm512_permutex2var_epi8(planes[0], t.first[j], planes[1]),
                                                                   t.second[j], planes[2]));
}

}  // namespace avx2
}  // namespace qel

#endif
#endif
