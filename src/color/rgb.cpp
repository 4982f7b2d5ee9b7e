// Channel planes of packed B, G, R pixels, out and in, with their fast paths: 64 pixels a step by
// two-register byte permutes with AVX-512 VBMI, 32 by in-lane byte shuffles with AVX2 (planes to
// pixels), 32 by five rounds of byte (un)packing with SSE2.
#include "color/rgb.h"

#include "core/simd.h"
#include "core/simd_avx2.h"

namespace qel {
namespace {

#ifdef QEL_SIMD_SSE2
constexpr int kBlock = 32;  // pixels per SSE2 step

size_t extract_sse2(const unsigned char* rgb, size_t from, size_t count, int channel, unsigned char* grey) {
    size_t i = from;
    for (; i + kBlock <= count; i += kBlock) {
        __m128i v[6];
        for (int k = 0; k < 6; ++k) v[k] = simd::load(rgb + kBytesPerRgbPixel * i + simd::kLanes * k);
        simd::deinterleave3(v);
        simd::store(grey + i, v[2 * channel]);
        simd::store(grey + i + simd::kLanes, v[2 * channel + 1]);
    }
    return i;
}

size_t interleave_sse2(const unsigned char* const planes[3], size_t from, size_t count, unsigned char* rgb) {
    size_t i = from;
    for (; i + kBlock <= count; i += kBlock) {
        __m128i v[6];
        for (int c = 0; c < 3; ++c) {
            v[2 * c] = simd::load(planes[c] + i);
            v[2 * c + 1] = simd::load(planes[c] + i + simd::kLanes);
        }
        simd::interleave3(v);
        for (int k = 0; k < 6; ++k) simd::store(rgb + kBytesPerRgbPixel * i + simd::kLanes * k, v[k]);
    }
    return i;
}
#endif

#ifdef QEL_SIMD_AVX2
constexpr avx2::Interleave3 kInOrder = avx2::make_interleave3([](int pixel) { return pixel; });

QEL_TARGET_AVX2 size_t interleave_avx2(const unsigned char* const planes[3], size_t from, size_t count,
                                       unsigned char* rgb) {
    const avx2::Interleave3Shuffles shuffles = avx2::load_interleave3(kInOrder);
    size_t i = from;
    for (; i + avx2::kLanes <= count; i += avx2::kLanes) {
        const __m256i v[3] = {avx2::load(planes[0] + i), avx2::load(planes[1] + i), avx2::load(planes[2] + i)};
        avx2::store_interleaved3(v, shuffles, rgb + kBytesPerRgbPixel * i);
    }
    return i;
}
#endif

#ifdef QEL_SIMD_AVX512
// Indices of the two permutes per 64-byte register of one channel: the first picks from a pair of
// registers, the second from (the first's result, a third register).
struct PlanePermutes {
    // Channel c of 64 pixels from their 192 bytes: byte k is byte 3k + c, in the first two
    // registers or the third.
    unsigned char extract[3][2][64];
};

constexpr PlanePermutes make_plane_permutes() {
    PlanePermutes t{};
    for (int c = 0; c < 3; ++c)
        for (int k = 0; k < 64; ++k) {
            const int at = 3 * k + c;
            t.extract[c][0][k] = static_cast<unsigned char>(at < 128 ? at : 0);
            t.extract[c][1][k] = static_cast<unsigned char>(at < 128 ? k : 64 + at - 128);
        }
    return t;
}

constexpr PlanePermutes kPlanePermutes = make_plane_permutes();
constexpr avx2::Interleave3x64 kInOrder64 = avx2::make_interleave3x64([](int pixel) { return pixel; });

QEL_TARGET_AVX512 size_t extract_avx512(const unsigned char* rgb, size_t count, int channel, unsigned char* grey) {
    const __m512i first = avx2::load64(kPlanePermutes.extract[channel][0]);
    const __m512i second = avx2::load64(kPlanePermutes.extract[channel][1]);
    size_t i = 0;
    for (; i + 64 <= count; i += 64) {
        const unsigned char* p = rgb + kBytesPerRgbPixel * i;
        const __m512i low = _mm512_permutex2var_epi8(avx2::load64(p), first, avx2::load64(p + 64));
        _mm512_storeu_si512(grey + i, _mm512_permutex2var_epi8(low, second, avx2::load64(p + 128)));
    }
    return i;
}

QEL_TARGET_AVX512 size_t interleave_avx512(const unsigned char* const planes[3], size_t count, unsigned char* rgb) {
    const avx2::Interleave3x64Indices interleave = avx2::load_interleave3x64(kInOrder64);
    size_t i = 0;
    for (; i + 64 <= count; i += 64) {
        const __m512i v[3] = {avx2::load64(planes[0] + i), avx2::load64(planes[1] + i), avx2::load64(planes[2] + i)};
        avx2::store_interleaved3x64(v, interleave, rgb + kBytesPerRgbPixel * i);
    }
    return i;
}
#endif

}  // namespace

void extract_channel(const unsigned char* rgb, size_t count, int channel, unsigned char* grey) {
    size_t i = 0;
    if (channel >= 0 && channel < kBytesPerRgbPixel) {
#ifdef QEL_SIMD_AVX512
        if (simd::avx512()) i = extract_avx512(rgb, count, channel, grey);
#endif
#ifdef QEL_SIMD_SSE2
        if (simd::sse2()) i = extract_sse2(rgb, i, count, channel, grey);
#endif
    }
    const unsigned char* p = rgb + kBytesPerRgbPixel * i + channel;
    for (; i < count; ++i, p += kBytesPerRgbPixel) grey[i] = *p;
}

void interleave_planes(const unsigned char* blue, const unsigned char* green, const unsigned char* red, size_t count,
                       unsigned char* rgb) {
    size_t i = 0;
#if defined(QEL_SIMD_AVX512) || defined(QEL_SIMD_SSE2)
    const unsigned char* const planes[3] = {blue, green, red};
#endif
#ifdef QEL_SIMD_AVX512
    if (simd::avx512()) i = interleave_avx512(planes, count, rgb);
#endif
#ifdef QEL_SIMD_AVX2
    if (simd::avx2()) i = interleave_avx2(planes, i, count, rgb);
#endif
#ifdef QEL_SIMD_SSE2
    if (simd::sse2()) i = interleave_sse2(planes, i, count, rgb);
#endif
    unsigned char* p = rgb + kBytesPerRgbPixel * i;
    for (; i < count; ++i, p += kBytesPerRgbPixel) {
        p[0] = blue[i];
        p[1] = green[i];
        p[2] = red[i];
    }
}

}  // namespace qel
