// Resizing: bilinear resampling in 16.16 fixed point and in double precision, reduction by block
// averages, by picking one pixel per block and by the block median, doubling by interpolation, and
// the adjustment of a rectangle to a width that is a multiple of 4.
#include "qel/geometry.h"
#include "qel/histogram.h"

#include "core/simd.h"
#include "core/simd_avx2.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

namespace qel {
namespace {

#ifdef QEL_SIMD_SSE2
namespace simd = qel::simd;
#endif

constexpr int kRgbChannels = 3;

// ---- bilinear, 16.16 fixed point ----------------------------------------------------------------

constexpr int kFixedShift = 16;
constexpr int32_t kFixedOne = 1 << kFixedShift;  // 65536
constexpr int32_t kFixedMask = kFixedOne - 1;

// Source distance between neighbouring output samples, 16.16: ((n − 1) << 16) / (outN − 1), so
// the first and the last samples land on the first and the last source pixel. A single output
// sample has no spacing; it stays at 0.
int64_t fixed_step(int n, int outN) {
    if (outN <= 1) return 0;
    return (static_cast<int64_t>(n - 1) << kFixedShift) / (outN - 1);
}

// Position along one axis of output sample k: whole source index and 16-bit fraction.
struct FixedPos {
    int index;
    int32_t frac;
};

inline FixedPos fixed_pos(int k, int64_t step) {
    const int64_t p = k * step;
    return {static_cast<int>(p >> kFixedShift), static_cast<int32_t>(p & kFixedMask)};
}

// Weighted mean of a and b with weight frac / 65536 on b, truncated.
inline int32_t fixed_lerp(int32_t a, int32_t b, int32_t frac) {
    return ((kFixedOne - frac) * a + frac * b) >> kFixedShift;
}

#ifdef QEL_SIMD_SSE2
// fixed_lerp of eight 16-bit lanes a, b (0..255) with 16-bit fractions f (0..65535), exactly:
// ((65536 − f)·a + f·b) >> 16 = a + ((f·(b − a)) >> 16), since 65536·a shifts out whole. The
// high half of the signed product reads f as f − 65536 when f ≥ 32768, which takes 65536·(b − a)
// off the product, that is (b − a) off its high half: it is added back there.
inline __m128i fixed_lerp8(__m128i a, __m128i b, __m128i f) {
    const __m128i d = _mm_sub_epi16(b, a);
    const __m128i high = _mm_add_epi16(_mm_mulhi_epi16(f, d), _mm_and_si128(_mm_srai_epi16(f, 15), d));
    return _mm_add_epi16(a, high);
}
#endif

// The Fast method on images of `Channels` interleaved bytes a pixel. Each output row blends two
// source rows interpolated along the row first; those row values are kept per call, so a source
// row shared by neighbouring output rows is interpolated once.
template <int Channels>
void bilinear_fast(const unsigned char* src, int width, int height, unsigned char* dst, int dstWidth,
                   int dstHeight) {
    if (width <= 0 || height <= 0 || dstWidth <= 0 || dstHeight <= 0) return;
    const int64_t stepX = fixed_step(width, dstWidth);
    const int64_t stepY = fixed_step(height, dstHeight);
    const size_t srcRow = static_cast<size_t>(width) * Channels;
    const size_t outRow = static_cast<size_t>(dstWidth) * Channels;

    // Column positions are non-decreasing, so the columns with a right neighbour come first.
    std::vector<FixedPos> columns(static_cast<size_t>(dstWidth));
    int inner = 0;
    for (int i = 0; i < dstWidth; ++i) {
        columns[static_cast<size_t>(i)] = fixed_pos(i, stepX);
        if (columns[static_cast<size_t>(i)].index + 1 < width) inner = i + 1;
    }
#ifdef QEL_SIMD_SSE2
    const bool fast = simd::sse2();
    // One-byte pixels: the columns' source indices and fractions as arrays, so that eight columns
    // are interpolated at once from their pixel pairs, each read as one 16-bit word (x86 is little
    // endian: the left pixel is the low byte).
    std::vector<int> indices;
    std::vector<uint16_t> fracs;
    if constexpr (Channels == 1) {
        indices.resize(static_cast<size_t>(inner));
        fracs.resize(static_cast<size_t>(inner));
        for (int i = 0; i < inner; ++i) {
            indices[static_cast<size_t>(i)] = columns[static_cast<size_t>(i)].index;
            fracs[static_cast<size_t>(i)] = static_cast<uint16_t>(columns[static_cast<size_t>(i)].frac);
        }
    }
#endif
    // Source row y interpolated at every output column; the last source column is taken as it is.
    auto along_row = [&](int y, int16_t* values) {
        const unsigned char* row = src + static_cast<size_t>(y) * srcRow;
        int16_t* v = values;
        int i = 0;
#ifdef QEL_SIMD_SSE2
        if (Channels == 1 && fast) {
            const auto pair = [row](int x) {
                uint16_t word;
                std::memcpy(&word, row + x, sizeof word);
                return static_cast<int>(word);
            };
            const __m128i low = _mm_set1_epi16(0x00FF);
            for (; i + 8 <= inner; i += 8, v += 8) {
                const int* x = indices.data() + i;
                __m128i pairs = _mm_cvtsi32_si128(pair(x[0]));
                pairs = _mm_insert_epi16(pairs, pair(x[1]), 1);
                pairs = _mm_insert_epi16(pairs, pair(x[2]), 2);
                pairs = _mm_insert_epi16(pairs, pair(x[3]), 3);
                pairs = _mm_insert_epi16(pairs, pair(x[4]), 4);
                pairs = _mm_insert_epi16(pairs, pair(x[5]), 5);
                pairs = _mm_insert_epi16(pairs, pair(x[6]), 6);
                pairs = _mm_insert_epi16(pairs, pair(x[7]), 7);
                const __m128i f = _mm_loadu_si128(reinterpret_cast<const __m128i*>(fracs.data() + i));
                _mm_storeu_si128(reinterpret_cast<__m128i*>(v),
                                 fixed_lerp8(_mm_and_si128(pairs, low), _mm_srli_epi16(pairs, 8), f));
            }
        }
#endif
        for (; i < inner; ++i, v += Channels) {
            const FixedPos px = columns[static_cast<size_t>(i)];
            const unsigned char* p = row + static_cast<size_t>(px.index) * Channels;
            for (int c = 0; c < Channels; ++c)
                v[c] = static_cast<int16_t>(fixed_lerp(p[c], p[c + Channels], px.frac));
        }
        for (i = inner; i < dstWidth; ++i, v += Channels) {
            const unsigned char* p = row + static_cast<size_t>(columns[static_cast<size_t>(i)].index) * Channels;
            for (int c = 0; c < Channels; ++c) v[c] = p[c];
        }
    };

    // Row values are 0..255 (a weighted mean of bytes), so 16 bits hold them.
    std::vector<int16_t> rowValues(2 * outRow);
    int16_t* upper = rowValues.data();
    int16_t* lower = upper + outRow;
    int upperRow = -1, lowerRow = -1;  // the source rows held in upper and lower
    for (int j = 0; j < dstHeight; ++j) {
        const FixedPos py = fixed_pos(j, stepY);
        unsigned char* out = dst + static_cast<size_t>(j) * outRow;
        if (upperRow != py.index) {
            if (lowerRow == py.index) {
                std::swap(upper, lower);
                std::swap(upperRow, lowerRow);
            } else {
                along_row(py.index, upper);
                upperRow = py.index;
            }
        }
        // The last source row has no row below: it is interpolated along the row only.
        if (py.index + 1 >= height) {
            for (size_t k = 0; k < outRow; ++k) out[k] = static_cast<unsigned char>(upper[k]);
            continue;
        }
        if (lowerRow != py.index + 1) {
            along_row(py.index + 1, lower);
            lowerRow = py.index + 1;
        }
        size_t k = 0;
#ifdef QEL_SIMD_SSE2
        const __m128i f = _mm_set1_epi16(static_cast<short>(py.frac));
        for (; fast && k + 16 <= outRow; k += 16) {
            const auto at = [](const int16_t* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); };
            const __m128i lo = fixed_lerp8(at(upper + k), at(lower + k), f);
            const __m128i hi = fixed_lerp8(at(upper + k + 8), at(lower + k + 8), f);
            _mm_storeu_si128(reinterpret_cast<__m128i*>(out + k), _mm_packus_epi16(lo, hi));
        }
#endif
        for (; k < outRow; ++k) out[k] = static_cast<unsigned char>(fixed_lerp(upper[k], lower[k], py.frac));
    }
}

// ---- bilinear, double precision -----------------------------------------------------------------

// Source distance between neighbouring output samples; 0 for a single sample.
double real_step(int n, int outN) {
    if (outN <= 1) return 0.0;
    return static_cast<double>(n - 1) / static_cast<double>(outN - 1);
}

void bilinear_std(const unsigned char* src, int width, int height, unsigned char* dst, int dstWidth, int dstHeight) {
    if (width <= 0 || height <= 0 || dstWidth <= 0 || dstHeight <= 0) return;
    const double sx = real_step(width, dstWidth);
    const double sy = real_step(height, dstHeight);
    // Interpolation along one source row at u; the last column is taken as it is.
    auto along_row = [width](const unsigned char* row, double u) {
        const int ix = static_cast<int>(u);
        const double a = row[ix];
        if (ix + 1 >= width) return a;
        const double b = row[ix + 1];
        return a * (static_cast<double>(ix + 1) - u) + b * (u - static_cast<double>(ix));
    };
    unsigned char* out = dst;
    for (int j = 0; j < dstHeight; ++j) {
        const double v = static_cast<double>(j) * sy;
        const int iy = static_cast<int>(v);
        const unsigned char* top = src + static_cast<size_t>(iy) * static_cast<size_t>(width);
        if (iy + 1 >= height) {
            // A row landing on the last source row is written from that row alone; the row below
            // it would only ever carry weight 0 and lies outside the image.
            for (int i = 0; i < dstWidth; ++i)
                *out++ = static_cast<unsigned char>(static_cast<int>(along_row(top, static_cast<double>(i) * sx)));
            continue;
        }
        const unsigned char* bottom = top + width;
        const double wTop = static_cast<double>(iy + 1) - v;
        const double wBottom = v - static_cast<double>(iy);
        for (int i = 0; i < dstWidth; ++i) {
            const double u = static_cast<double>(i) * sx;
            const double value = wTop * along_row(top, u) + wBottom * along_row(bottom, u);
            *out++ = static_cast<unsigned char>(static_cast<int>(value));
        }
    }
}

// ---- reduction ----------------------------------------------------------------------------------

// Reduces a `channels`-byte image by blocks of stepX × stepY pixels into (width/stepX) ×
// (height/stepY) pixels; each output byte is reduce(sum of the block's bytes of its channel).
template <class Reduce>
void shrink_by_block_sums(const unsigned char* src, int width, int height, int channels, int stepX, int stepY,
                          unsigned char* dst, Reduce reduce) {
    if (width <= 0 || height <= 0 || stepX <= 0 || stepY <= 0) return;
    const int outW = width / stepX;
    const int outH = height / stepY;
    const size_t srcRow = static_cast<size_t>(width) * static_cast<size_t>(channels);
    unsigned char* out = dst;
    for (int j = 0; j < outH; ++j) {
        const unsigned char* block = src + static_cast<size_t>(j) * static_cast<size_t>(stepY) * srcRow;
        for (int i = 0; i < outW; ++i) {
            const size_t x0 = static_cast<size_t>(i) * static_cast<size_t>(stepX) * static_cast<size_t>(channels);
            for (int c = 0; c < channels; ++c) {
                int64_t sum = 0;
                for (int dy = 0; dy < stepY; ++dy) {
                    const unsigned char* p = block + static_cast<size_t>(dy) * srcRow + x0 + c;
                    for (int dx = 0; dx < stepX; ++dx) sum += p[static_cast<size_t>(dx) * channels];
                }
                *out++ = static_cast<unsigned char>(reduce(sum));
            }
        }
    }
}

#ifdef QEL_SIMD_AVX2
// 32 means of 2 × 2 blocks a step from the rows top and bottom; returns how many it did of `count`.
// Each row's column pairs are summed by a multiply-add with ones, in 16 bits.
QEL_TARGET_AVX2 int shrink_2x2_avx2(const unsigned char* top, const unsigned char* bottom, int count,
                                    unsigned char* out) {
    const __m256i ones = _mm256_set1_epi8(1);
    int i = 0;
    for (; i + avx2::kLanes <= count; i += avx2::kLanes) {
        __m256i means[2];
        for (int h = 0; h < 2; ++h) {
            const int x = 2 * i + h * avx2::kLanes;
            const __m256i sum = _mm256_add_epi16(_mm256_maddubs_epi16(avx2::load(top + x), ones),
                                                 _mm256_maddubs_epi16(avx2::load(bottom + x), ones));
            means[h] = _mm256_srli_epi16(sum, 2);
        }
        // packus interleaves the lanes of the two halves: put the quarters back in order.
        avx2::store(out + i, _mm256_permute4x64_epi64(_mm256_packus_epi16(means[0], means[1]), 0xD8));
    }
    return i;
}
#endif

// (width/2) × (height/2) means of 2 × 2 blocks, (sum of four) >> 2: shrink_by_block_sums for blocks
// of 2 × 2 on grey images, 16 output pixels a step where SSE2 is available (32 with AVX2).
void shrink_2x2(const unsigned char* src, int width, int height, unsigned char* dst) {
    if (width <= 0 || height <= 0) return;
    const int outW = width / 2;
    const int outH = height / 2;
    for (int j = 0; j < outH; ++j) {
        const unsigned char* top = src + static_cast<size_t>(2 * j) * static_cast<size_t>(width);
        const unsigned char* bottom = top + width;
        unsigned char* out = dst + static_cast<size_t>(j) * static_cast<size_t>(outW);
        int i = 0;
#ifdef QEL_SIMD_AVX2
        if (simd::avx2()) i = shrink_2x2_avx2(top, bottom, outW, out);
#endif
#ifdef QEL_SIMD_SSE2
        const bool fast = simd::sse2();
        const __m128i low = _mm_set1_epi16(0x00FF);
        // The sum of a column pair of both rows, as eight 16-bit lanes from 16 bytes of each row.
        const auto sums = [&](int x) {
            const __m128i t = simd::load(top + x);
            const __m128i b = simd::load(bottom + x);
            const __m128i evens = _mm_add_epi16(_mm_and_si128(t, low), _mm_and_si128(b, low));
            const __m128i odds = _mm_add_epi16(_mm_srli_epi16(t, 8), _mm_srli_epi16(b, 8));
            return _mm_srli_epi16(_mm_add_epi16(evens, odds), 2);
        };
        for (; fast && i + simd::kLanes <= outW; i += simd::kLanes)
            simd::store(out + i, _mm_packus_epi16(sums(2 * i), sums(2 * i + simd::kLanes)));
#endif
        for (; i < outW; ++i)
            out[i] = static_cast<unsigned char>((top[2 * i] + top[2 * i + 1] + bottom[2 * i] + bottom[2 * i + 1]) >> 2);
    }
}

// Picks src(i·stepX, j·stepY) for the (width/stepX) × (height/stepY) output pixels.
void shrink_by_extract(const unsigned char* src, int width, int height, int stepX, int stepY, unsigned char* dst) {
    if (width <= 0 || height <= 0 || stepX <= 0 || stepY <= 0) return;
    const int outW = width / stepX;
    const int outH = height / stepY;
    unsigned char* out = dst;
    for (int j = 0; j < outH; ++j) {
        const unsigned char* row = src + static_cast<size_t>(j) * static_cast<size_t>(stepY) * width;
        for (int i = 0; i < outW; ++i) *out++ = row[static_cast<size_t>(i) * stepX];
    }
}

// The block sizes of the median reduction along one axis: n / outN, enlarged once to
// n / (outN − 1) when outN blocks of the first size leave source pixels over.
int median_block(int n, int outN) {
    int b = n / outN;
    if (b * outN < n) b = n / (outN - 1);  // outN is at least 2 here: n / 1 always covers n
    return b;
}

// ---- doubling -----------------------------------------------------------------------------------

// Doubles a `Channels`-byte image: even output pixels copy the source, odd ones average their
// neighbours (truncated), odd rows average the rows around them and the last row repeats the one
// above it.
template <int Channels>
void zoom_2x2(const unsigned char* src, int width, int height, unsigned char* dst) {
    if (width <= 0 || height <= 0) return;
    const size_t outRow = static_cast<size_t>(2) * width * Channels;
    for (int y = 0; y < height; ++y) {
        const unsigned char* p = src + static_cast<size_t>(y) * width * Channels;
        unsigned char* o = dst + static_cast<size_t>(2) * y * outRow;
        for (int x = 0; x + 1 < width; ++x) {
            for (int c = 0; c < Channels; ++c) {
                const int a = p[x * Channels + c];
                const int b = p[(x + 1) * Channels + c];
                o[2 * x * Channels + c] = static_cast<unsigned char>(a);
                o[(2 * x + 1) * Channels + c] = static_cast<unsigned char>((a + b) >> 1);
            }
        }
        // The last source pixel fills the last two output columns (with width 1, both of them).
        for (int c = 0; c < Channels; ++c) {
            const unsigned char last = p[(width - 1) * Channels + c];
            o[(2 * width - 2) * Channels + c] = last;
            o[(2 * width - 1) * Channels + c] = last;
        }
        if (y >= 1) {
            unsigned char* mid = o - outRow;
            const unsigned char* above = mid - outRow;
            for (size_t k = 0; k < outRow; ++k) mid[k] = static_cast<unsigned char>((above[k] + o[k]) >> 1);
        }
    }
    unsigned char* last = dst + (static_cast<size_t>(2) * height - 1) * outRow;
    std::memcpy(last, last - outRow, outRow);
}

}  // namespace
}  // namespace qel

void QelGryImgBilinearInterpolattionFast(unsigned char* src, int width, int height, unsigned char* dst,
                                         int dstWidth, int dstHeight) {
    qel::bilinear_fast<1>(src, width, height, dst, dstWidth, dstHeight);
}

void QelGryImgBilinearInterpolattionStd(unsigned char* src, int width, int height, unsigned char* dst, int dstWidth,
                                        int dstHeight) {
    qel::bilinear_std(src, width, height, dst, dstWidth, dstHeight);
}

void QelRgbImgBilinearInterpolattionFast(unsigned char* src, int width, int height, unsigned char* dst,
                                         int dstWidth, int dstHeight) {
    qel::bilinear_fast<qel::kRgbChannels>(src, width, height, dst, dstWidth, dstHeight);
}

void QelShrinkGryImg2x2ByAvr(unsigned char* src, int width, int height, unsigned char* dst) {
    qel::shrink_2x2(src, width, height, dst);
}

void QelShrinkGryImg2x2ByExtract(unsigned char* src, int width, int height, unsigned char* dst, int* dstWidth,
                                 int* dstHeight) {
    qel::shrink_by_extract(src, width, height, 2, 2, dst);
    *dstWidth = width / 2;
    *dstHeight = height / 2;
}

void QelShrinkGryImg4x4ByAvr(unsigned char* src, int width, int height, unsigned char* dst, int* dstWidth,
                             int* dstHeight) {
    // A block of 255s sums to 4080, and 4080 >> 4 is 255 again.
    qel::shrink_by_block_sums(src, width, height, 1, 4, 4, dst, [](int64_t sum) { return sum >> 4; });
    *dstWidth = width / 4;
    *dstHeight = height / 4;
}

void QelShrinkGryImg4x4ByExtract(unsigned char* src, int width, int height, unsigned char* dst, int* dstWidth,
                                 int* dstHeight) {
    qel::shrink_by_extract(src, width, height, 4, 4, dst);
    *dstWidth = width / 4;
    *dstHeight = height / 4;
}

void QelShrinkGryImgByExtract(unsigned char* src, int width, int height, int stepX, int stepY, unsigned char* dst) {
    qel::shrink_by_extract(src, width, height, stepX, stepY, dst);
}

void QelShrinkGryImgByMedian(unsigned char* src, int width, int height, unsigned char* dst, int dstWidth,
                             int dstHeight) {
    if (width <= 0 || height <= 0 || dstWidth <= 0 || dstHeight <= 0) return;
    const int bw = qel::median_block(width, dstWidth);
    const int bh = qel::median_block(height, dstHeight);
    int hist[256];
    unsigned char* out = dst;
    for (int j = 0; j < dstHeight; ++j) {
        // Blocks are clipped at the image's edges; one lying wholly outside is empty, and the
        // median of an empty histogram is 0.
        const int64_t y0 = static_cast<int64_t>(j) * bh;
        const int y1 = static_cast<int>(std::min<int64_t>(y0 + bh, height)) - 1;
        for (int i = 0; i < dstWidth; ++i) {
            const int64_t x0 = static_cast<int64_t>(i) * bw;
            const int x1 = static_cast<int>(std::min<int64_t>(x0 + bw, width)) - 1;
            if (x0 > x1 || y0 > y1) {
                std::fill(hist, hist + 256, 0);
            } else {
                QelGetHistogramInRect(src, width, static_cast<int>(x0), x1, static_cast<int>(y0), y1, hist);
            }
            *out++ = static_cast<unsigned char>(QelGetMedianInHistogram(hist));
        }
    }
}

void QelShrinkImgByAvr(unsigned char* src, bool isRGB, int width, int height, int stepX, int stepY,
                       unsigned char* dst) {
    if (stepX <= 0 || stepY <= 0) return;
    const int64_t count = static_cast<int64_t>(stepX) * stepY;
    qel::shrink_by_block_sums(src, width, height, isRGB ? qel::kRgbChannels : 1, stepX, stepY, dst,
                              [count](int64_t sum) { return sum / count; });
}

void QelZoomGryImg2x2(unsigned char* src, int width, int height, unsigned char* dst) {
    qel::zoom_2x2<1>(src, width, height, dst);
}

void QelZoomRGBImg2x2(unsigned char* src, int width, int height, unsigned char* dst) {
    qel::zoom_2x2<qel::kRgbChannels>(src, width, height, dst);
}

void QelRectResizeX4(int imageWidth, int /*spare*/, int maxWidth, int maxHeight, int* left, int* right, int* top,
                     int* bottom) {
    int w = *right - *left + 1;
    if (w % 4 != 0) {
        w = std::min(w, maxWidth);
        w -= ((w % 4) + 4) % 4;  // down to a multiple of 4 (toward minus infinity)
        // The centre is (left + right) >> 1, rounded down; the row centre below uses / 2 instead.
        const int c = static_cast<int>((static_cast<int64_t>(*left) + *right) >> 1);
        // In the right half of the image the extra column goes to the left of the centre.
        if (2 * static_cast<int64_t>(c) >= imageWidth) {
            *right = c + w / 2 - 1;
            *left = c - w / 2;
        } else {
            *right = c + w / 2;
            *left = c - w / 2 + 1;
        }
    }
    const int h = *bottom - *top + 1;
    if (h >= maxHeight - 2) {
        const int c = (*top + *bottom) / 2;
        *top = c - (maxHeight - 2) / 2;
        *bottom = c + (maxHeight - 2) / 2;
    }
}
