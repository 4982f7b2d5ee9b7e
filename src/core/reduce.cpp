#include "core/reduce.h"

#include "core/simd.h"
#include "core/simd_avx2.h"

#include <algorithm>
#include <cstdint>

namespace qel {
namespace {

// Byte counters in a register count to 255 at most: blocks of 255 steps are summed before then.
constexpr size_t kStepsPerSum = 255;

#ifdef QEL_SIMD_SSE2
// Counts 16 bytes a step: each equal byte subtracts −1 from its lane counter, and psadbw adds up
// the lanes. Returns the count of the bytes before `done`.
size_t count_equal_sse2(const unsigned char* p, size_t n, unsigned char value, size_t& done) {
    const __m128i v = _mm_set1_epi8(static_cast<char>(value));
    const __m128i zero = _mm_setzero_si128();
    size_t total = 0;
    size_t i = 0;
    while (i + simd::kLanes <= n) {
        __m128i counters = zero;
        for (size_t s = 0; s < kStepsPerSum && i + simd::kLanes <= n; ++s, i += simd::kLanes)
            counters = _mm_sub_epi8(counters, _mm_cmpeq_epi8(simd::load(p + i), v));
        const __m128i sums = _mm_sad_epu8(counters, zero);
        total += static_cast<size_t>(_mm_cvtsi128_si32(sums)) +
                 static_cast<size_t>(_mm_cvtsi128_si32(_mm_unpackhi_epi64(sums, sums)));
    }
    done = i;
    return total;
}

void fold_min_max_sse2(const unsigned char* p, size_t n, int& lo, int& hi, size_t& done) {
    size_t i = 0;
    if (n >= simd::kLanes) {
        __m128i low = simd::load(p);
        __m128i high = low;
        for (i = simd::kLanes; i + simd::kLanes <= n; i += simd::kLanes) {
            const __m128i x = simd::load(p + i);
            low = _mm_min_epu8(low, x);
            high = _mm_max_epu8(high, x);
        }
        alignas(16) unsigned char l[simd::kLanes];
        alignas(16) unsigned char h[simd::kLanes];
        _mm_store_si128(reinterpret_cast<__m128i*>(l), low);
        _mm_store_si128(reinterpret_cast<__m128i*>(h), high);
        for (int k = 0; k < simd::kLanes; ++k) {
            lo = std::min(lo, static_cast<int>(l[k]));
            hi = std::max(hi, static_cast<int>(h[k]));
        }
    }
    done = i;
}
#endif

#ifdef QEL_SIMD_AVX2
QEL_TARGET_AVX2 size_t count_equal_avx2(const unsigned char* p, size_t n, unsigned char value, size_t& done) {
    const __m256i v = _mm256_set1_epi8(static_cast<char>(value));
    const __m256i zero = _mm256_setzero_si256();
    size_t total = 0;
    size_t i = 0;
    while (i + avx2::kLanes <= n) {
        __m256i counters = zero;
        for (size_t s = 0; s < kStepsPerSum && i + avx2::kLanes <= n; ++s, i += avx2::kLanes)
            counters = _mm256_sub_epi8(counters, _mm256_cmpeq_epi8(avx2::load(p + i), v));
        alignas(32) uint64_t sums[4];
        _mm256_store_si256(reinterpret_cast<__m256i*>(sums), _mm256_sad_epu8(counters, zero));
        total += static_cast<size_t>(sums[0] + sums[1] + sums[2] + sums[3]);
    }
    done = i;
    return total;
}
#endif

#ifdef QEL_SIMD_AVX512
// 64 bytes a step: the equality mask's set bits counted by popcnt.
QEL_TARGET_AVX512 size_t count_equal_avx512(const unsigned char* p, size_t n, unsigned char value, size_t& done) {
    const __m512i v = _mm512_set1_epi8(static_cast<char>(value));
    size_t total = 0;
    size_t i = 0;
    for (; i + 64 <= n; i += 64)
        total += static_cast<size_t>(__builtin_popcountll(_mm512_cmpeq_epi8_mask(_mm512_loadu_si512(p + i), v)));
    done = i;
    return total;
}
#endif

}  // namespace

size_t count_equal(const unsigned char* p, size_t n, unsigned char value) {
    size_t total = 0;
    size_t i = 0;
#ifdef QEL_SIMD_AVX512
    if (simd::avx512()) total = count_equal_avx512(p, n, value, i);
#endif
#ifdef QEL_SIMD_AVX2
    if (simd::avx2() && i == 0) total = count_equal_avx2(p, n, value, i);
#endif
#ifdef QEL_SIMD_SSE2
    if (simd::sse2() && i == 0) total = count_equal_sse2(p, n, value, i);
#endif
    for (; i < n; ++i) total += p[i] == value ? 1 : 0;
    return total;
}

void fold_min_max(const unsigned char* p, size_t n, int& lo, int& hi) {
    size_t i = 0;
#ifdef QEL_SIMD_SSE2
    if (simd::sse2()) fold_min_max_sse2(p, n, lo, hi, i);
#endif
    for (; i < n; ++i) {
        lo = std::min(lo, static_cast<int>(p[i]));
        hi = std::max(hi, static_cast<int>(p[i]));
    }
}

}  // namespace qel
