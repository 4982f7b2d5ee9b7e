#include "core/lut.h"

#include "core/simd.h"
#include "core/simd_avx2.h"

#include <cstdint>

namespace qel {
namespace {

#ifdef QEL_SIMD_AVX512
// 64 pixels a step: one two-register byte permute looks up the low 128 entries and one the high
// 128 (each by the low 7 bits of the pixel), and bit 7 chooses between them. The first pixels go
// one by one up to a 64-byte boundary of dst, so that no store splits a cache line. Returns how
// many pixels it did. Each step reads its bytes before writing them, so src may be dst.
QEL_TARGET_AVX512 size_t apply_lut_avx512(const unsigned char* src, size_t count, const unsigned char lut[256],
                                          unsigned char* dst) {
    const __m512i t0 = _mm512_loadu_si512(lut);
    const __m512i t1 = _mm512_loadu_si512(lut + 64);
    const __m512i t2 = _mm512_loadu_si512(lut + 128);
    const __m512i t3 = _mm512_loadu_si512(lut + 192);
    size_t i = (64 - reinterpret_cast<uintptr_t>(dst) % 64) % 64;
    if (count < i + 64) return 0;
    for (size_t k = 0; k < i; ++k) dst[k] = lut[src[k]];
    for (; i + 64 <= count; i += 64) {
        const __m512i x = _mm512_loadu_si512(src + i);
        const __m512i low = _mm512_permutex2var_epi8(t0, x, t1);
        const __m512i high = _mm512_permutex2var_epi8(t2, x, t3);
        _mm512_storeu_si512(dst + i, _mm512_mask_blend_epi8(_mm512_movepi8_mask(x), low, high));
    }
    return i;
}
#endif

}  // namespace

void apply_lut(const unsigned char* src, size_t count, const unsigned char lut[256], unsigned char* dst) {
    size_t i = 0;
#ifdef QEL_SIMD_AVX512
    if (simd::avx512()) i = apply_lut_avx512(src, count, lut, dst);
#endif
    for (; i < count; ++i) dst[i] = lut[src[i]];
}

void apply_lut_in_rect(const unsigned char* src, int width, int x1, int x2, int y1, int y2,
                       const unsigned char lut[256], unsigned char* dst) {
    if (x2 < x1) return;
    for (int y = y1; y <= y2; ++y) {
        const size_t row = static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x1);
        apply_lut(src + row, static_cast<size_t>(x2 - x1 + 1), lut, dst + row);
    }
}

}  // namespace qel
