// Box (mean) filters for grey and 24-bit RGB images: border-adaptive, full-window and
// one-dimensional.
//
// Every output is the fixed-point mean (windowSum × R) >> 24 with R = 2^24 / n truncated, so a value
// can fall one below the exact mean (three 255s give 254). Since windowSum ≤ 255·n and R ≤ 2^24 / n,
// the product never exceeds 255·2^24 and fits the 32 bits the means are defined in.
//
// Running sums make the cost per pixel independent of the window: per column, the sum of the rows
// inside the vertical window (each source row enters and leaves once), and along each row a window
// sum over those column sums (each column sum enters and leaves once per row).
//
// The column sums are per-call buffers and the Fast filters' reciprocal table is a constant built at
// compile time, so all filters here are reentrant and the unchecked ones have no width limit. The
// outputs are those of process-wide scratch and a lazily filled table, including the table's
// one-past-the-end entry used by the 127 × 127 window.
#include "qel/filter.h"

#include "core/fixed.h"
#include "core/simd.h"
#include "core/simd_avx2.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace qel {
namespace {

constexpr int kGreyChannels = 1;
constexpr int kRgbChannels = 3;

// Widest image the Fast and full-window filters accept (the size of their column-sum arrays).
constexpr int kMaxFastWidth = 4096;
// Largest window area the Fast filters accept: 127 × 127.
constexpr int kMaxFastArea = 16129;
// Last count with its own reciprocal in the table; the guard above admits one more.
constexpr int kLastTabledCount = 16128;

// Reciprocals 2^24 / n for n = 1 .. 16128, entry 0 a copy of entry 1, and one word past the table.
struct ReciprocalTable {
    int32_t r[kMaxFastArea + 1];
};

constexpr ReciprocalTable make_reciprocal_table() {
    ReciprocalTable t{};
    for (int n = 1; n <= kLastTabledCount; ++n) t.r[n] = reciprocal(n);
    t.r[0] = t.r[1];
    // Intended: the area check admits 127 × 127 = 16129, one past the table. That count reads the
    // word after the table, which holds 1 (the table's ready flag), so full 127 × 127 windows give
    // (sum × 1) >> 24 = 0 because sum ≤ 255·16129 < 2^24. Callers' results depend on it.
    t.r[kMaxFastArea] = 1;
    return t;
}

constexpr ReciprocalTable kReciprocalTable = make_reciprocal_table();

// The plain filters divide for every window size they meet.
struct DividedReciprocal {
    int32_t operator()(int64_t n) const { return n > kReciprocalOne ? 0 : reciprocal(static_cast<int32_t>(n)); }
};

// The Fast filters read the table; their area check keeps every count within it.
struct TabledReciprocal {
    int32_t operator()(int64_t n) const { return kReciprocalTable.r[n]; }
};

// Largest half size whose window (2·half+1) fits in `extent` pixels, for a half size already ≥ 0.
int fit_half(int half, int extent) { return std::min(half, (extent - 1) / 2); }

// Window area as the Fast filters check it, with negative half sizes counted as 0.
int64_t checked_area(int halfX, int halfY) {
    return (2 * static_cast<int64_t>(std::max(halfX, 0)) + 1) * (2 * static_cast<int64_t>(std::max(halfY, 0)) + 1);
}

size_t row_bytes(int width, int channels) { return static_cast<size_t>(width) * static_cast<size_t>(channels); }

// Writes the C means (s[c] × r) >> 24 of one pixel.
template <int C>
inline void put_mean(unsigned char* out, const uint32_t* s, int32_t r) {
    for (int c = 0; c < C; ++c) out[c] = static_cast<unsigned char>(mean_by_reciprocal(s[c], r));
}

// Column sums: sums[i] += row[i] for the `count` bytes of a row.
void add_row(uint32_t* sums, const unsigned char* row, size_t count) {
    for (size_t i = 0; i < count; ++i) sums[i] += row[i];
}

#ifdef QEL_SIMD_SSE2
namespace simd = qel::simd;

inline __m128i load4(const uint32_t* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
inline void store4(uint32_t* p, __m128i v) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v); }

// The low bytes of (s × r) >> 24 for four 32-bit sums, as four 32-bit lanes: the products are formed
// in 64 bits, even and odd lanes apart, as mean_by_reciprocal does.
inline __m128i means4(__m128i s, __m128i r) {
    const __m128i even = _mm_srli_epi64(_mm_mul_epu32(s, r), kReciprocalShift);
    const __m128i odd = _mm_srli_epi64(_mm_mul_epu32(_mm_srli_epi64(s, 32), r), kReciprocalShift);
    return _mm_and_si128(_mm_or_si128(even, _mm_slli_epi64(odd, 32)), _mm_set1_epi32(0xFF));
}
#endif

#ifdef QEL_SIMD_AVX2
QEL_TARGET_AVX2 inline __m256i load8(const uint32_t* p) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
}
QEL_TARGET_AVX2 inline void store8(uint32_t* p, __m256i v) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v); }

// slide_rows for the whole 16-column steps with AVX2; returns how many columns it did.
QEL_TARGET_AVX2 size_t slide_rows_avx2(uint32_t* sums, const unsigned char* entering, const unsigned char* leaving,
                                       size_t count) {
    size_t i = 0;
    for (; i + 16 <= count; i += 16) {
        const __m256i e = _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(entering + i)));
        const __m256i l = _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(leaving + i)));
        const __m256i d = _mm256_sub_epi16(e, l);
        store8(sums + i, _mm256_add_epi32(load8(sums + i), _mm256_cvtepi16_epi32(_mm256_castsi256_si128(d))));
        store8(sums + i + 8,
               _mm256_add_epi32(load8(sums + i + 8), _mm256_cvtepi16_epi32(_mm256_extracti128_si256(d, 1))));
    }
    return i;
}

// The middle of adaptive_row on one channel, 32 columns a step from column x while x + 32 ≤ end:
// the window sums of 8 columns are s plus the exclusive prefix sums of entering − leaving. The
// means (sum·r) >> 24 need only 32 bits here (the product never exceeds 255·2^24, see the top of
// the file), so one low multiply serves. Returns the next column; s and the column pointers follow.
QEL_TARGET_AVX2 int window_means_avx2(uint32_t& s, const uint32_t*& entering, const uint32_t*& leaving, int x,
                                      int end, int32_t r, unsigned char* out) {
    const __m256i rv = _mm256_set1_epi32(r);
    const __m256i last = _mm256_set1_epi32(7);
    __m256i sum = _mm256_set1_epi32(static_cast<int>(s));
    for (; x + 32 <= end; x += 32) {
        __m256i m[4];
        for (int k = 0; k < 4; ++k, entering += 8, leaving += 8) {
            const __m256i d = _mm256_sub_epi32(load8(entering), load8(leaving));
            __m256i p = _mm256_add_epi32(d, _mm256_slli_si256(d, 4));
            p = _mm256_add_epi32(p, _mm256_slli_si256(p, 8));  // prefix sums within each lane
            // lane 1 also takes lane 0's total
            const __m256i total0 = _mm256_shuffle_epi32(p, 0xFF);
            p = _mm256_add_epi32(p, _mm256_permute2x128_si256(total0, total0, 0x08));
            const __m256i window = _mm256_add_epi32(sum, _mm256_sub_epi32(p, d));
            m[k] = _mm256_srli_epi32(_mm256_mullo_epi32(window, rv), kReciprocalShift);
            sum = _mm256_add_epi32(sum, _mm256_permutevar8x32_epi32(p, last));
        }
        // The packs leave dword q holding columns 8(q % 4) + 4(q / 4) ..: put them in order.
        const __m256i bytes =
            _mm256_packus_epi16(_mm256_packus_epi32(m[0], m[1]), _mm256_packus_epi32(m[2], m[3]));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + x),
                            _mm256_permutevar8x32_epi32(bytes, _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7)));
    }
    s = static_cast<uint32_t>(_mm256_cvtsi256_si32(sum));
    return x;
}

// window_means_avx2 for three interleaved channels, 8 pixels (24 sums) a step from pixel x while
// x + 8 ≤ end and x + 10 ≤ width. The differences entering − leaving of the 24 sums are split into
// one register per channel (value 3p + c sits in lane (3p + c) mod 8 of register (3p + c) / 8: two
// blends and a permute), each channel's window sums taken as in the grey form, and the 24 means put
// back in B, G, R order as two 12-byte runs; each 16-byte store also writes 4 bytes of the next two
// pixels, which are written again after it.
QEL_TARGET_AVX2 int window_means3_avx2(uint32_t s[3], const uint32_t*& entering, const uint32_t*& leaving, int x,
                                       int end, int width, int32_t r, unsigned char* out) {
    const __m256i rv = _mm256_set1_epi32(r);
    const __m256i last = _mm256_set1_epi32(7);
    const __m256i inPixelOrder[3] = {_mm256_setr_epi32(0, 3, 6, 1, 4, 7, 2, 5), _mm256_setr_epi32(1, 4, 7, 2, 5, 0, 3, 6),
                                     _mm256_setr_epi32(2, 5, 0, 3, 6, 1, 4, 7)};
    // B, G, R bytes of four pixels (one 32-bit lane each) packed into the lane's first 12 bytes.
    const __m256i packBgr = _mm256_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1, 0, 1, 2, 4, 5, 6,
                                             8, 9, 10, 12, 13, 14, -1, -1, -1, -1);
    __m256i sum[3];
    for (int c = 0; c < 3; ++c) sum[c] = _mm256_set1_epi32(static_cast<int>(s[c]));
    for (; x + 8 <= end && x + 10 <= width; x += 8, entering += 24, leaving += 24) {
        __m256i d[3];
        for (int k = 0; k < 3; ++k) d[k] = _mm256_sub_epi32(load8(entering + 8 * k), load8(leaving + 8 * k));
        const __m256i channel[3] = {
            _mm256_blend_epi32(_mm256_blend_epi32(d[0], d[1], 0x92), d[2], 0x24),
            _mm256_blend_epi32(_mm256_blend_epi32(d[0], d[1], 0x24), d[2], 0x49),
            _mm256_blend_epi32(_mm256_blend_epi32(d[0], d[1], 0x49), d[2], 0x92)};
        __m256i m[3];
        for (int c = 0; c < 3; ++c) {
            const __m256i dc = _mm256_permutevar8x32_epi32(channel[c], inPixelOrder[c]);
            __m256i p = _mm256_add_epi32(dc, _mm256_slli_si256(dc, 4));
            p = _mm256_add_epi32(p, _mm256_slli_si256(p, 8));
            const __m256i total0 = _mm256_shuffle_epi32(p, 0xFF);
            p = _mm256_add_epi32(p, _mm256_permute2x128_si256(total0, total0, 0x08));
            const __m256i window = _mm256_add_epi32(sum[c], _mm256_sub_epi32(p, dc));
            m[c] = _mm256_srli_epi32(_mm256_mullo_epi32(window, rv), kReciprocalShift);
            sum[c] = _mm256_add_epi32(sum[c], _mm256_permutevar8x32_epi32(p, last));
        }
        const __m256i bgr = _mm256_shuffle_epi8(
            _mm256_or_si256(m[0], _mm256_or_si256(_mm256_slli_epi32(m[1], 8), _mm256_slli_epi32(m[2], 16))), packBgr);
        unsigned char* o = out + 3 * static_cast<std::ptrdiff_t>(x);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(o), _mm256_castsi256_si128(bgr));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(o + 12), _mm256_extracti128_si256(bgr, 1));
    }
    for (int c = 0; c < 3; ++c) s[c] = static_cast<uint32_t>(_mm256_cvtsi256_si32(sum[c]));
    return x;
}
#endif

// One row enters the vertical window and one leaves, in a single pass (16 columns a step where
// SSE2 is available: the byte differences widened to 32 bits with their sign, added modulo 2^32
// as the unsigned sums are).
void slide_rows(uint32_t* sums, const unsigned char* entering, const unsigned char* leaving, size_t count) {
    size_t i = 0;
#ifdef QEL_SIMD_AVX2
    if (simd::avx2()) i = slide_rows_avx2(sums, entering, leaving, count);
#endif
#ifdef QEL_SIMD_SSE2
    const __m128i zero = _mm_setzero_si128();
    for (; simd::sse2() && i + simd::kLanes <= count; i += simd::kLanes) {
        const __m128i e = simd::load(entering + i);
        const __m128i l = simd::load(leaving + i);
        const __m128i d16[2] = {_mm_sub_epi16(_mm_unpacklo_epi8(e, zero), _mm_unpacklo_epi8(l, zero)),
                                _mm_sub_epi16(_mm_unpackhi_epi8(e, zero), _mm_unpackhi_epi8(l, zero))};
        for (int k = 0; k < 4; ++k) {
            const __m128i d = k % 2 == 0 ? _mm_unpacklo_epi16(d16[k / 2], d16[k / 2])
                                         : _mm_unpackhi_epi16(d16[k / 2], d16[k / 2]);
            uint32_t* p = sums + i + 4 * k;
            store4(p, _mm_add_epi32(load4(p), _mm_srai_epi32(d, 16)));
        }
    }
#endif
    for (; i < count; ++i) sums[i] = sums[i] + entering[i] - leaving[i];
}

// Two rows enter (or, with `leave`, leave) the vertical window together.
void add_two_rows(uint32_t* sums, const unsigned char* a, const unsigned char* b, size_t count) {
    for (size_t i = 0; i < count; ++i) sums[i] += static_cast<uint32_t>(a[i] + b[i]);
}
void remove_two_rows(uint32_t* sums, const unsigned char* a, const unsigned char* b, size_t count) {
    for (size_t i = 0; i < count; ++i) sums[i] -= static_cast<uint32_t>(a[i] + b[i]);
}

// One output row of the border-adaptive filter from the column sums of v rows. The window holds
// 2·min(hx, x, width−1−x)+1 columns: it grows by two columns per step across the left band, slides
// through the middle and shrinks by two per step across the right band, so the last column is
// averaged over itself alone. Requires width ≥ 2·hx+1.
template <int C, class Recip>
void adaptive_row(const uint32_t* col, int width, int hx, int v, Recip recip, unsigned char* out) {
    uint32_t s[C];
    for (int c = 0; c < C; ++c) s[c] = col[c];
    int64_t count = v;
    const int64_t step = 2 * static_cast<int64_t>(v);
    int x = 0;

    const uint32_t* entering = col + C;  // column 2x+1
    for (; x < hx; ++x) {
        put_mean<C>(out + x * C, s, recip(count));
        for (int c = 0; c < C; ++c) s[c] += entering[c] + entering[C + c];
        entering += 2 * C;
        count += step;
    }

    const int32_t r = recip(count);  // full width: (2·hx+1)·v
    const uint32_t* leaving = col;   // column x−hx
#ifdef QEL_SIMD_AVX2
    if constexpr (C == 3) {
        if (simd::avx2()) x = window_means3_avx2(s, entering, leaving, x, width - hx - 1, width, r, out);
    }
#endif
#ifdef QEL_SIMD_SSE2
    if (C == 1 && simd::sse2()) {
#ifdef QEL_SIMD_AVX2
        if (simd::avx2()) x = window_means_avx2(s[0], entering, leaving, x, width - hx - 1, r, out);
#endif
        // 16 columns a step: the window sums of columns x .. x+3 are s plus the running sums of the
        // differences entering − leaving before each of them.
        // The running sum stays in all four lanes of a register.
        const __m128i rv = _mm_set1_epi32(r);
        __m128i sum = _mm_set1_epi32(static_cast<int>(s[0]));
        for (; x + simd::kLanes <= width - hx - 1; x += simd::kLanes) {
            __m128i m[4];
            for (int k = 0; k < 4; ++k, entering += 4, leaving += 4) {
                __m128i p = _mm_sub_epi32(load4(entering), load4(leaving));
                p = _mm_add_epi32(p, _mm_slli_si128(p, 4));
                p = _mm_add_epi32(p, _mm_slli_si128(p, 8));  // p[j] = d0 + .. + dj
                m[k] = means4(_mm_add_epi32(sum, _mm_slli_si128(p, 4)), rv);
                sum = _mm_add_epi32(sum, _mm_shuffle_epi32(p, 0xFF));
            }
            simd::store(out + x, _mm_packus_epi16(_mm_packs_epi32(m[0], m[1]), _mm_packs_epi32(m[2], m[3])));
        }
        s[0] = static_cast<uint32_t>(_mm_cvtsi128_si32(sum));
    }
#endif
    for (; x <= width - hx - 2; ++x) {
        put_mean<C>(out + x * C, s, r);
        for (int c = 0; c < C; ++c) s[c] = s[c] + entering[c] - leaving[c];
        entering += C;
        leaving += C;
    }

    for (; x < width; ++x) {
        put_mean<C>(out + x * C, s, recip(count));
        if (x == width - 1) break;  // nothing follows the last column; its two sums would lie past the row
        for (int c = 0; c < C; ++c) s[c] -= leaving[c] + leaving[C + c];
        leaving += 2 * C;
        count -= step;
    }
}

// Border-adaptive box filter over C interleaved channels. The vertical window grows by two rows per
// output row at the top, slides through the middle and shrinks by two rows at the bottom, exactly as
// the horizontal window does along each row.
template <int C, class Recip>
void adaptive_box(const unsigned char* src, int width, int height, int halfX, int halfY, unsigned char* dst,
                  Recip recip) {
    if (width <= 0 || height <= 0) return;
    const int hx = fit_half(std::max(halfX, 0), width);
    const int hy = fit_half(std::max(halfY, 0), height);
    const size_t stride = row_bytes(width, C);
    auto row = [&](int y) { return src + static_cast<size_t>(y) * stride; };

    std::vector<uint32_t> col(row_bytes(width, C), 0);
    add_row(col.data(), row(0), stride);
    int v = 1;
    int nextIn = 1;
    int nextOut = 0;
    for (int y = 0; y < height; ++y) {
        adaptive_row<C>(col.data(), width, hx, v, recip, dst + static_cast<size_t>(y) * stride);
        if (y < hy) {
            add_two_rows(col.data(), row(nextIn), row(nextIn + 1), stride);
            nextIn += 2;
            v += 2;
        } else if (y < height - hy - 1) {
            slide_rows(col.data(), row(nextIn), row(nextOut), stride);
            ++nextIn;
            ++nextOut;
        } else if (y < height - 1) {
            remove_two_rows(col.data(), row(nextOut), row(nextOut + 1), stride);
            nextOut += 2;
            v -= 2;
        }
    }
}

// One output row of a full-window filter from per-column sums `sums` (column sums, or the source row
// itself when the window is one row high). Columns hx .. width−1−hx get the mean of their window;
// the first hx columns repeat the first value, the last hx the last one. Requires width ≥ 2·hx+1.
template <int C, class T>
void full_window_row(const T* sums, int width, int hx, int32_t r, unsigned char* out) {
    uint32_t s[C] = {};
    for (int k = 0; k <= 2 * hx; ++k) {
        for (int c = 0; c < C; ++c) s[c] += sums[k * C + c];
    }
    unsigned char first[C];
    put_mean<C>(first, s, r);
    for (int x = 0; x <= hx; ++x) std::memcpy(out + x * C, first, C);

    const T* entering = sums + (2 * hx + 1) * C;  // column x+hx
    const T* leaving = sums;                      // column x−hx−1
    int x = hx + 1;
    for (; x <= width - hx - 1; ++x) {
        for (int c = 0; c < C; ++c) s[c] = s[c] + entering[c] - leaving[c];
        put_mean<C>(out + x * C, s, r);
        entering += C;
        leaving += C;
    }
    const unsigned char* last = out + (x - 1) * C;
    for (; x < width; ++x) std::memcpy(out + x * C, last, C);
}

// Full-window box filter over C interleaved channels, with hx, hy ≥ 0 already fitted to the image.
// Rows hy .. height−1−hy are filtered; the top and bottom hy rows copy the nearest filtered row.
template <int C>
void full_window_box(const unsigned char* src, int width, int height, int hx, int hy, unsigned char* dst) {
    if (width <= 0 || height <= 0) return;
    const size_t stride = row_bytes(width, C);
    const int32_t r = DividedReciprocal()((2 * static_cast<int64_t>(hx) + 1) * (2 * static_cast<int64_t>(hy) + 1));
    auto row = [&](const unsigned char* image, int y) { return image + static_cast<size_t>(y) * stride; };
    auto out_row = [&](int y) { return dst + static_cast<size_t>(y) * stride; };

    if (hy == 0) {
        // One row high: the source row is its own column sums.
        for (int y = 0; y < height; ++y) full_window_row<C>(row(src, y), width, hx, r, out_row(y));
        return;
    }

    std::vector<uint32_t> col(stride, 0);
    for (int y = 0; y <= 2 * hy; ++y) add_row(col.data(), row(src, y), stride);
    for (int y = hy; y <= height - hy - 1; ++y) {
        full_window_row<C>(col.data(), width, hx, r, out_row(y));
        if (y < height - hy - 1) slide_rows(col.data(), row(src, y + hy + 1), row(src, y - hy), stride);
    }
    for (int y = 0; y < hy; ++y) std::memcpy(out_row(y), out_row(hy), stride);
    for (int y = height - hy; y < height; ++y) std::memcpy(out_row(y), out_row(height - 1 - hy), stride);
}

template <int C>
bool fast_box(const unsigned char* src, int width, int height, int halfX, int halfY, unsigned char* dst) {
    if (width > kMaxFastWidth || checked_area(halfX, halfY) > kMaxFastArea) return false;
    adaptive_box<C>(src, width, height, halfX, halfY, dst, TabledReciprocal());
    return true;
}

template <int C>
bool fast_full_window_box(const unsigned char* src, int width, int height, int halfX, int halfY,
                          unsigned char* dst) {
    if (width > kMaxFastWidth) return false;
    if (width <= 0 || height <= 0) return true;
    full_window_box<C>(src, width, height, fit_half(std::max(halfX, 0), width), fit_half(std::max(halfY, 0), height),
                       dst);
    return true;
}

// The one-dimensional filters take n = |2·half|+1, so a negative half size acts as its absolute value.
int absolute_half(int half, int extent) {
    const int64_t magnitude = std::llabs(static_cast<long long>(half));
    return static_cast<int>(std::min<int64_t>(magnitude, (extent - 1) / 2));
}

}  // namespace
}  // namespace qel

void QelGryAverageFilter(unsigned char* src, int width, int height, int halfX, int halfY, unsigned char* dst) {
    qel::adaptive_box<qel::kGreyChannels>(src, width, height, halfX, halfY, dst, qel::DividedReciprocal());
}

bool QelGryAverageFilterFast(unsigned char* src, int width, int height, int halfX, int halfY, unsigned char* dst) {
    return qel::fast_box<qel::kGreyChannels>(src, width, height, halfX, halfY, dst);
}

bool QelGryAverageFilterFastNonBoundary(unsigned char* src, int width, int height, int halfX, int halfY,
                                        unsigned char* dst) {
    return qel::fast_full_window_box<qel::kGreyChannels>(src, width, height, halfX, halfY, dst);
}

void QelGryAverageFilterByX(unsigned char* src, int width, int height, int halfX, unsigned char* dst) {
    if (width <= 0 || height <= 0) return;
    qel::full_window_box<qel::kGreyChannels>(src, width, height, qel::absolute_half(halfX, width), 0, dst);
}

void QelGryAverageFilterByY(unsigned char* src, int width, int height, int halfY, unsigned char* dst) {
    if (width <= 0 || height <= 0) return;
    qel::full_window_box<qel::kGreyChannels>(src, width, height, 0, qel::absolute_half(halfY, height), dst);
}

void QelRGBAverageFilter(unsigned char* src, int width, int height, int halfX, int halfY, unsigned char* dst) {
    qel::adaptive_box<qel::kRgbChannels>(src, width, height, halfX, halfY, dst, qel::DividedReciprocal());
}

bool QelRGBAverageFilterFast(unsigned char* src, int width, int height, int halfX, int halfY, unsigned char* dst) {
    return qel::fast_box<qel::kRgbChannels>(src, width, height, halfX, halfY, dst);
}

bool QelRGBAverageFilterFastNonBoundary(unsigned char* src, int width, int height, int halfX, int halfY,
                                        unsigned char* dst) {
    return qel::fast_full_window_box<qel::kRgbChannels>(src, width, height, halfX, halfY, dst);
}
