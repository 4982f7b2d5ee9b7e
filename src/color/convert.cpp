// Whole-frame conversions between RGB (B, G, R bytes), grey and the four camera formats.
//
// Where each camera format keeps its samples is described once, in camera_layout.h. Camera frame to
// RGB or grey is the rectangle copy of the whole frame; RGB to a camera frame writes through the same
// layouts, one loop for all four: a horizontal pixel pair always shares chroma, and in the 4:2:0
// formats two rows do as well.
#include "qel/color.h"

#include "color/camera_layout.h"
#include "color/rect_sampling.h"
#include "color/rgb.h"
#include "color/yuv.h"
#include "core/simd.h"
#include "core/simd_avx2.h"

#include <algorithm>
#include <cstddef>
#include <type_traits>

namespace {

using qel::CbYCrY;
using qel::is_odd;
using qel::kBytesPerRgbPixel;
using qel::pixel_count;
using qel::RectArea;
using qel::Yuv420P;
using qel::Yuv420SP;
using qel::Yuv422P;

constexpr int kPixelsPerPair = 2;

#ifdef QEL_SIMD_SSE2
namespace simd = qel::simd;

constexpr int kBlock = 32;  // pixels per SSE2 step of the packed-pixel loops

// (sums >> shift) of two registers of four 32-bit sums, as eight 16-bit values. Arithmetic shifts,
// as in the scalar formulas; the results fit 16 bits.
__m128i shifted16(simd::Sums s, int shift) {
    const __m128i count = _mm_cvtsi32_si128(shift);
    return _mm_packs_epi32(_mm_sra_epi32(s.lo, count), _mm_sra_epi32(s.hi, count));
}

// Grey of the pixels of whole 32-pixel blocks; returns how many pixels it did.
size_t grey_blocks(const unsigned char* rgb, size_t count, unsigned char* grey) {
    const __m128i wBlueGreen = simd::weight_pair(qel::kGreyWeightBlue, qel::kGreyWeightGreen);
    const __m128i wRed = simd::weight_pair(qel::kGreyWeightRed, 0);
    const __m128i zero = _mm_setzero_si128();
    size_t i = 0;
    for (; i + kBlock <= count; i += kBlock) {
        __m128i v[6];
        for (int k = 0; k < 6; ++k) v[k] = simd::load(rgb + 3 * i + simd::kLanes * k);
        simd::deinterleave3(v);
        for (int half = 0; half < 2; ++half) {
            const __m128i b = v[half];
            const __m128i g = v[2 + half];
            const __m128i r = v[4 + half];
            const __m128i lo = shifted16(simd::weighted3(_mm_unpacklo_epi8(b, zero), _mm_unpacklo_epi8(g, zero),
                                                         _mm_unpacklo_epi8(r, zero), wBlueGreen, wRed),
                                         qel::kGreyShift);
            const __m128i hi = shifted16(simd::weighted3(_mm_unpackhi_epi8(b, zero), _mm_unpackhi_epi8(g, zero),
                                                         _mm_unpackhi_epi8(r, zero), wBlueGreen, wRed),
                                         qel::kGreyShift);
            simd::store(grey + i + simd::kLanes * half, _mm_packus_epi16(lo, hi));
        }
    }
    return i;
}

// U and V of 16 pixel pairs starting at pair i: a plane each (step 1) or interleaved pairs (step 2).
template <class Byte, int LumaStep>
void load_chroma(const qel::CameraRow<Byte, LumaStep, 1>& row, int i, __m128i& u, __m128i& v) {
    u = simd::load(row.cb + i);
    v = simd::load(row.cr + i);
}

template <class Byte, int LumaStep>
void load_chroma(const qel::CameraRow<Byte, LumaStep, 2>& row, int i, __m128i& u, __m128i& v) {
    const __m128i a = simd::load(row.cb + 2 * i);
    const __m128i b = simd::load(row.cb + 2 * i + simd::kLanes);
    u = simd::even_bytes(a, b);
    v = simd::odd_bytes(a, b);
}

// Packed pairs (Cb, Y, Cr, Y): the chroma bytes are the even bytes of the 64 bytes of 16 pairs.
template <class Byte>
void load_chroma(const qel::CameraRow<Byte, 2, 4>& row, int i, __m128i& u, __m128i& v) {
    const Byte* p = row.cb + 4 * i;
    const __m128i c0 = simd::even_bytes(simd::load(p), simd::load(p + simd::kLanes));
    const __m128i c1 = simd::even_bytes(simd::load(p + 2 * simd::kLanes), simd::load(p + 3 * simd::kLanes));
    u = simd::even_bytes(c0, c1);
    v = simd::odd_bytes(c0, c1);
}

// Y of 16 pixels from x: a plane, or every other byte of packed pairs.
template <class Byte, int ChromaStep>
__m128i load_luma(const qel::CameraRow<Byte, 1, ChromaStep>& row, int x) {
    return simd::load(row.luma + x);
}

// Packed pairs: the 32 bytes read start at the chroma byte before pixel x's Y (so they end at the
// last Y of the 16 pixels) and the Y samples are the odd bytes.
template <class Byte, int ChromaStep>
__m128i load_luma(const qel::CameraRow<Byte, 2, ChromaStep>& row, int x) {
    const Byte* p = row.luma + 2 * x - 1;
    return simd::odd_bytes(simd::load(p), simd::load(p + simd::kLanes));
}

// B, G, R of 8 pixels from their Y and chroma (U − 128, V − 128) as 16-bit lanes.
// The (Y, U) and (Y, V) lane pairs serve two formulas each; only green takes a third term.
void bgr8(__m128i y, __m128i cu, __m128i cv, __m128i& b, __m128i& g, __m128i& r) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i wBlue = simd::weight_pair(qel::kYuvOne, qel::kBlueFromU);
    const __m128i wGreen = simd::weight_pair(qel::kYuvOne, -qel::kGreenFromU);
    const __m128i wGreenV = simd::weight_pair(-qel::kGreenFromV, 0);
    const __m128i wRed = simd::weight_pair(qel::kYuvOne, qel::kRedFromV);
    const __m128i yu[2] = {_mm_unpacklo_epi16(y, cu), _mm_unpackhi_epi16(y, cu)};
    const __m128i yv[2] = {_mm_unpacklo_epi16(y, cv), _mm_unpackhi_epi16(y, cv)};
    const __m128i v0[2] = {_mm_unpacklo_epi16(cv, zero), _mm_unpackhi_epi16(cv, zero)};
    b = shifted16({_mm_madd_epi16(yu[0], wBlue), _mm_madd_epi16(yu[1], wBlue)}, qel::kYuvShift);
    g = shifted16({_mm_add_epi32(_mm_madd_epi16(yu[0], wGreen), _mm_madd_epi16(v0[0], wGreenV)),
                   _mm_add_epi32(_mm_madd_epi16(yu[1], wGreen), _mm_madd_epi16(v0[1], wGreenV))},
                  qel::kYuvShift);
    r = shifted16({_mm_madd_epi16(yv[0], wRed), _mm_madd_epi16(yv[1], wRed)}, qel::kYuvShift);
}

// B, G, R of the whole 32-pixel blocks of a row from pixel `from`; returns where it stopped.
template <class Row>
int bgr_blocks(const Row& row, int from, int width, unsigned char* rgb) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i offset = _mm_set1_epi16(qel::kChromaOffset);
    int x = from;
    for (rgb += static_cast<std::ptrdiff_t>(x) * kBytesPerRgbPixel; x + kBlock <= width; x += kBlock, rgb += 3 * kBlock) {
        __m128i u;
        __m128i v;
        load_chroma(row, x / 2, u, v);
        __m128i planes[6];
        for (int half = 0; half < 2; ++half) {
            const __m128i y = load_luma(row, x + simd::kLanes * half);
            // each chroma sample serves two neighbouring pixels
            const __m128i uu = half == 0 ? _mm_unpacklo_epi8(u, u) : _mm_unpackhi_epi8(u, u);
            const __m128i vv = half == 0 ? _mm_unpacklo_epi8(v, v) : _mm_unpackhi_epi8(v, v);
            __m128i b[2];
            __m128i g[2];
            __m128i r[2];
            bgr8(_mm_unpacklo_epi8(y, zero), _mm_sub_epi16(_mm_unpacklo_epi8(uu, zero), offset),
                 _mm_sub_epi16(_mm_unpacklo_epi8(vv, zero), offset), b[0], g[0], r[0]);
            bgr8(_mm_unpackhi_epi8(y, zero), _mm_sub_epi16(_mm_unpackhi_epi8(uu, zero), offset),
                 _mm_sub_epi16(_mm_unpackhi_epi8(vv, zero), offset), b[1], g[1], r[1]);
            planes[half] = _mm_packus_epi16(b[0], b[1]);
            planes[2 + half] = _mm_packus_epi16(g[0], g[1]);
            planes[4 + half] = _mm_packus_epi16(r[0], r[1]);
        }
        simd::interleave3(planes);
        for (int k = 0; k < 6; ++k) simd::store(rgb + simd::kLanes * k, planes[k]);
    }
    return x;
}

// Y, and the chroma of each 2 × 2 block, of the whole 32-pixel blocks of two rows of a 4:2:0 frame
// with a luma plane, from pixel `from`; returns where it stopped.
template <int ChromaStep>
int camera_blocks_420(const unsigned char* const bgrRows[2],
                      const qel::CameraRow<unsigned char, 1, ChromaStep> rows[2], int from, int width) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i ones = _mm_set1_epi16(1);
    const __m128i offset = _mm_set1_epi16(qel::kChromaOffset);
    const __m128i wLumaBG = simd::weight_pair(qel::kLumaWeightBlue, qel::kLumaWeightGreen);
    const __m128i wLumaR = simd::weight_pair(qel::kLumaWeightRed, 0);
    const __m128i wUBG = simd::weight_pair(qel::kUWeightBlue, -qel::kUWeightGreen);
    const __m128i wUR = simd::weight_pair(-qel::kUWeightRed, 0);
    const __m128i wVBG = simd::weight_pair(-qel::kVWeightBlue, -qel::kVWeightGreen);
    const __m128i wVR = simd::weight_pair(qel::kVWeightRed, 0);
    int x = from;
    for (; x + kBlock <= width; x += kBlock) {
        __m128i uSum[4] = {zero, zero, zero, zero};  // per pixel column, both rows, 8 columns each
        __m128i vSum[4] = {zero, zero, zero, zero};
        for (int r = 0; r < 2; ++r) {
            __m128i v[6];
            for (int k = 0; k < 6; ++k) v[k] = simd::load(bgrRows[r] + 3 * x + simd::kLanes * k);
            simd::deinterleave3(v);
            for (int q = 0; q < 4; ++q) {  // quarters of eight pixels
                const __m128i b8 = v[q / 2];
                const __m128i g8 = v[2 + q / 2];
                const __m128i r8 = v[4 + q / 2];
                const __m128i b = q % 2 == 0 ? _mm_unpacklo_epi8(b8, zero) : _mm_unpackhi_epi8(b8, zero);
                const __m128i g = q % 2 == 0 ? _mm_unpacklo_epi8(g8, zero) : _mm_unpackhi_epi8(g8, zero);
                const __m128i red = q % 2 == 0 ? _mm_unpacklo_epi8(r8, zero) : _mm_unpackhi_epi8(r8, zero);
                const __m128i luma = shifted16(simd::weighted3(b, g, red, wLumaBG, wLumaR), qel::kYuvShift);
                _mm_storel_epi64(reinterpret_cast<__m128i*>(rows[r].luma + x + 8 * q), _mm_packus_epi16(luma, zero));
                const __m128i uPixel = shifted16(simd::weighted3(b, g, red, wUBG, wUR), qel::kYuvShift);
                const __m128i vPixel = shifted16(simd::weighted3(b, g, red, wVBG, wVR), qel::kYuvShift);
                uSum[q] = _mm_add_epi16(uSum[q], _mm_add_epi16(uPixel, offset));
                vSum[q] = _mm_add_epi16(vSum[q], _mm_add_epi16(vPixel, offset));
            }
        }
        // Sums of horizontal pairs, then the mean of four by a right shift of 2.
        __m128i u16[2];
        __m128i v16[2];
        for (int k = 0; k < 2; ++k) {
            u16[k] = _mm_packs_epi32(_mm_srai_epi32(_mm_madd_epi16(uSum[2 * k], ones), 2),
                                     _mm_srai_epi32(_mm_madd_epi16(uSum[2 * k + 1], ones), 2));
            v16[k] = _mm_packs_epi32(_mm_srai_epi32(_mm_madd_epi16(vSum[2 * k], ones), 2),
                                     _mm_srai_epi32(_mm_madd_epi16(vSum[2 * k + 1], ones), 2));
        }
        const __m128i u = _mm_packus_epi16(u16[0], u16[1]);
        const __m128i v = _mm_packus_epi16(v16[0], v16[1]);
        if constexpr (ChromaStep == 1) {
            simd::store(rows[0].cb + x / 2, u);
            simd::store(rows[0].cr + x / 2, v);
        } else {
            simd::store(rows[0].cb + x, _mm_unpacklo_epi8(u, v));
            simd::store(rows[0].cb + x + simd::kLanes, _mm_unpackhi_epi8(u, v));
        }
    }
    return x;
}
#endif

#ifdef QEL_SIMD_AVX2
namespace avx2 = qel::avx2;

// The 16-bit pairs (B, G) and (R, 0) of 8 packed pixels at p as 32-bit lanes, lane 0 pixels 0-3
// and lane 1 pixels 4-7 (12 bytes of a 16-byte load each): multiply-adds of the two with weight
// pairs give any of the scalar weighted sums exactly in 32 bits. Reads 28 bytes.
QEL_TARGET_AVX2 inline void bgr_pairs8(const unsigned char* p, __m256i& bg, __m256i& r) {
    const __m256i blueGreen = _mm256_setr_epi8(0, -1, 1, -1, 3, -1, 4, -1, 6, -1, 7, -1, 9, -1, 10, -1,  //
                                               0, -1, 1, -1, 3, -1, 4, -1, 6, -1, 7, -1, 9, -1, 10, -1);
    const __m256i red = _mm256_setr_epi8(2, -1, -1, -1, 5, -1, -1, -1, 8, -1, -1, -1, 11, -1, -1, -1,  //
                                         2, -1, -1, -1, 5, -1, -1, -1, 8, -1, -1, -1, 11, -1, -1, -1);
    const __m256i v = _mm256_inserti128_si256(_mm256_castsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p))),
                                              _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 12)), 1);
    bg = _mm256_shuffle_epi8(v, blueGreen);
    r = _mm256_shuffle_epi8(v, red);
}

// (bg·wBG + r·wR) >> shift in 32-bit lanes.
QEL_TARGET_AVX2 inline __m256i weighted_sum(__m256i bg, __m256i r, __m256i wBG, __m256i wR, int shift) {
    return _mm256_srai_epi32(_mm256_add_epi32(_mm256_madd_epi16(bg, wBG), _mm256_madd_epi16(r, wR)), shift);
}

// 32 bytes from four registers of 32-bit values 0..255 whose lanes hold pixels 8k + 4j .. (register
// k, lane j), in pixel order: the packs leave dword d holding pixels 8(d % 4) + 4(d / 4) ...
QEL_TARGET_AVX2 inline __m256i bytes_in_order(const __m256i v[4]) {
    const __m256i bytes = _mm256_packus_epi16(_mm256_packs_epi32(v[0], v[1]), _mm256_packs_epi32(v[2], v[3]));
    return _mm256_permutevar8x32_epi32(bytes, _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7));
}

// Grey of 32-pixel blocks with AVX2, 8 pixels a register (bgr_pairs8). A block's last load reads
// 4 bytes past it, so the blocks stop two pixels short of the end. Returns how many pixels it did.
QEL_TARGET_AVX2 size_t grey_blocks_avx2(const unsigned char* rgb, size_t count, unsigned char* grey) {
    const __m256i wBlueGreen = avx2::weight_pair(qel::kGreyWeightBlue, qel::kGreyWeightGreen);
    const __m256i wRed = avx2::weight_pair(qel::kGreyWeightRed, 0);
    size_t i = 0;
    for (; i + kBlock + 2 <= count; i += kBlock) {
        __m256i sums[4];
        for (int k = 0; k < 4; ++k) {
            __m256i bg;
            __m256i r;
            bgr_pairs8(rgb + 3 * (i + 8 * k), bg, r);
            sums[k] = weighted_sum(bg, r, wBlueGreen, wRed, qel::kGreyShift);
        }
        avx2::store(grey + i, bytes_in_order(sums));
    }
    return i;
}

// Y, and the chroma of each 2 × 2 block, of 32-pixel blocks of two rows of a 4:2:0 frame with a
// luma plane (camera_blocks_420 with AVX2); returns how many pixels of each row it did. Like the
// grey blocks, they stop two pixels short of the row's end.
template <int ChromaStep>
QEL_TARGET_AVX2 int camera_blocks_420_avx2(const unsigned char* const bgrRows[2],
                                           const qel::CameraRow<unsigned char, 1, ChromaStep> rows[2], int from,
                                           int width) {
    const __m256i wLumaBG = avx2::weight_pair(qel::kLumaWeightBlue, qel::kLumaWeightGreen);
    const __m256i wLumaR = avx2::weight_pair(qel::kLumaWeightRed, 0);
    const __m256i wUBG = avx2::weight_pair(qel::kUWeightBlue, -qel::kUWeightGreen);
    const __m256i wUR = avx2::weight_pair(-qel::kUWeightRed, 0);
    const __m256i wVBG = avx2::weight_pair(-qel::kVWeightBlue, -qel::kVWeightGreen);
    const __m256i wVR = avx2::weight_pair(qel::kVWeightRed, 0);
    // Four offsets of 128, one per pixel of a block, added before the shift by 2.
    const __m256i offsets = _mm256_set1_epi32(4 * qel::kChromaOffset);
    // Words (pairs of chroma bytes) 0, 4, 1, 5, 2, 6, 3, 7 of each lane: see below.
    const __m256i words = _mm256_setr_epi8(0, 1, 8, 9, 2, 3, 10, 11, 4, 5, 12, 13, 6, 7, 14, 15,  //
                                           0, 1, 8, 9, 2, 3, 10, 11, 4, 5, 12, 13, 6, 7, 14, 15);
    int x = from;
    for (; x + kBlock + 2 <= width; x += kBlock) {
        __m256i uSum[4];  // per register k of 8 pixels, both rows
        __m256i vSum[4];
        for (int r = 0; r < 2; ++r) {
            __m256i luma[4];
            for (int k = 0; k < 4; ++k) {
                __m256i bg;
                __m256i red;
                bgr_pairs8(bgrRows[r] + 3 * (x + 8 * k), bg, red);
                luma[k] = weighted_sum(bg, red, wLumaBG, wLumaR, qel::kYuvShift);
                const __m256i u = weighted_sum(bg, red, wUBG, wUR, qel::kYuvShift);
                const __m256i v = weighted_sum(bg, red, wVBG, wVR, qel::kYuvShift);
                uSum[k] = r == 0 ? u : _mm256_add_epi32(uSum[k], u);
                vSum[k] = r == 0 ? v : _mm256_add_epi32(vSum[k], v);
            }
            avx2::store(rows[r].luma + x, bytes_in_order(luma));
        }
        // Horizontal pair sums: lane j of hadd(k, k + 1) holds blocks 4k + 2j, +1 and 4k + 4 + 2j, +1.
        __m256i means[2][2];
        for (int k = 0; k < 2; ++k) {
            means[0][k] = _mm256_srai_epi32(_mm256_add_epi32(_mm256_hadd_epi32(uSum[2 * k], uSum[2 * k + 1]), offsets), 2);
            means[1][k] = _mm256_srai_epi32(_mm256_add_epi32(_mm256_hadd_epi32(vSum[2 * k], vSum[2 * k + 1]), offsets), 2);
        }
        const __m256i u16 = _mm256_packs_epi32(means[0][0], means[0][1]);
        const __m256i v16 = _mm256_packs_epi32(means[1][0], means[1][1]);
        // Lane 0 holds the U block pairs (0, 1), (4, 5), (8, 9), (12, 13) then the same of V as
        // 16-bit words; lane 1 the pairs (2, 3), (6, 7), ...: gather U into lane 0 and V into lane
        // 1, then put the words in order.
        const __m256i uv = _mm256_shuffle_epi8(_mm256_permute4x64_epi64(_mm256_packus_epi16(u16, v16), 0xD8), words);
        const __m128i u = _mm256_castsi256_si128(uv);
        const __m128i v = _mm256_extracti128_si256(uv, 1);
        if constexpr (ChromaStep == 1) {
            _mm_storeu_si128(reinterpret_cast<__m128i*>(rows[0].cb + x / 2), u);
            _mm_storeu_si128(reinterpret_cast<__m128i*>(rows[0].cr + x / 2), v);
        } else {
            _mm_storeu_si128(reinterpret_cast<__m128i*>(rows[0].cb + x), _mm_unpacklo_epi8(u, v));
            _mm_storeu_si128(reinterpret_cast<__m128i*>(rows[0].cb + x + 16), _mm_unpackhi_epi8(u, v));
        }
    }
    return x;
}

// Y of 32 pixels from x and the U, V of their 16 pairs, as 16-bit lanes in pair order: pairs 0-7
// in lane 0 and 8-15 in lane 1. Y comes as the even pixels (the first of each pair, y[0]) and the
// odd ones (y[1]), so that each Y meets its own pair's chroma terms without repeating them.
struct Yuv32 {
    __m256i y[2];
    __m256i u;
    __m256i v;
};

// The low and high bytes of the 16 words at p: the even and odd Y samples, or U and V pairs.
QEL_TARGET_AVX2 inline void split_words(const unsigned char* p, __m256i& low, __m256i& high) {
    const __m256i v = avx2::load(p);
    low = _mm256_and_si256(v, _mm256_set1_epi16(0x00FF));
    high = _mm256_srli_epi16(v, 8);
}

// Planar chroma: 16 U and 16 V bytes.
template <class Byte>
QEL_TARGET_AVX2 inline Yuv32 load_yuv32(const qel::CameraRow<Byte, 1, 1>& row, int x) {
    Yuv32 s;
    split_words(row.luma + x, s.y[0], s.y[1]);
    s.u = _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(row.cb + x / 2)));
    s.v = _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(row.cr + x / 2)));
    return s;
}

// Interleaved U, V pairs: the 32 bytes as 16-bit lanes hold U low and V high.
template <class Byte>
QEL_TARGET_AVX2 inline Yuv32 load_yuv32(const qel::CameraRow<Byte, 1, 2>& row, int x) {
    Yuv32 s;
    split_words(row.luma + x, s.y[0], s.y[1]);
    split_words(row.cb + x, s.u, s.v);
    return s;
}

// Packed pairs (Cb, Y, Cr, Y): 64 bytes. The lanes of pairs 0-3 and 8-11 (and 4-7 and 12-15) are
// brought together; a byte shuffle takes four U then four V (or four first then four second Y) of
// each lane, and 64-bit unpacks sort them into pair order.
template <class Byte>
QEL_TARGET_AVX2 inline Yuv32 load_yuv32(const qel::CameraRow<Byte, 2, 4>& row, int x) {
    const __m256i p0 = avx2::load(row.cb + 2 * x);
    const __m256i p1 = avx2::load(row.cb + 2 * x + avx2::kLanes);
    const __m256i a = _mm256_permute2x128_si256(p0, p1, 0x20);
    const __m256i b = _mm256_permute2x128_si256(p0, p1, 0x31);
    const __m256i chroma = _mm256_setr_epi8(0, -1, 4, -1, 8, -1, 12, -1, 2, -1, 6, -1, 10, -1, 14, -1,  //
                                            0, -1, 4, -1, 8, -1, 12, -1, 2, -1, 6, -1, 10, -1, 14, -1);
    const __m256i luma = _mm256_setr_epi8(1, -1, 5, -1, 9, -1, 13, -1, 3, -1, 7, -1, 11, -1, 15, -1,  //
                                          1, -1, 5, -1, 9, -1, 13, -1, 3, -1, 7, -1, 11, -1, 15, -1);
    const __m256i ca = _mm256_shuffle_epi8(a, chroma);
    const __m256i cb = _mm256_shuffle_epi8(b, chroma);
    const __m256i ya = _mm256_shuffle_epi8(a, luma);
    const __m256i yb = _mm256_shuffle_epi8(b, luma);
    return {{_mm256_unpacklo_epi64(ya, yb), _mm256_unpackhi_epi64(ya, yb)},
            _mm256_unpacklo_epi64(ca, cb),
            _mm256_unpackhi_epi64(ca, cb)};
}

// The chroma terms of B, G and R for 16 pairs, (c·w) >> 14 as 16-bit lanes. Y·16384 is a whole
// multiple of 2^14, so (Y·16384 + t) >> 14 = Y + (t >> 14) exactly; for a single chroma product
// (c·w) >> 14 = (4c·w) >> 16, the high half of a 16-bit product (4c and w fit 16 bits). Green's two
// products are summed in 32 bits first.
struct ChromaTerms16 {
    __m256i blue;
    __m256i green;
    __m256i red;
};

QEL_TARGET_AVX2 inline ChromaTerms16 chroma_terms(__m256i u, __m256i v) {
    const __m256i offset = _mm256_set1_epi16(qel::kChromaOffset);
    const __m256i cu = _mm256_sub_epi16(u, offset);
    const __m256i cv = _mm256_sub_epi16(v, offset);
    const __m256i wGreen = avx2::weight_pair(-qel::kGreenFromU, -qel::kGreenFromV);
    const __m256i gLo = _mm256_srai_epi32(_mm256_madd_epi16(_mm256_unpacklo_epi16(cu, cv), wGreen), qel::kYuvShift);
    const __m256i gHi = _mm256_srai_epi32(_mm256_madd_epi16(_mm256_unpackhi_epi16(cu, cv), wGreen), qel::kYuvShift);
    return {_mm256_mulhi_epi16(_mm256_slli_epi16(cu, 2), _mm256_set1_epi16(qel::kBlueFromU)),
            _mm256_packs_epi32(gLo, gHi),
            _mm256_mulhi_epi16(_mm256_slli_epi16(cv, 2), _mm256_set1_epi16(qel::kRedFromV))};
}

// Y + term for the even and odd pixels, packed (and so clamped to 0..255) into the 16 bytes of each
// lane: pixels 0, 2, .. 14 of the lane's 16, then 1, 3, .. 15.
QEL_TARGET_AVX2 inline __m256i plane(const __m256i y[2], __m256i term) {
    return _mm256_packus_epi16(_mm256_add_epi16(y[0], term), _mm256_add_epi16(y[1], term));
}

// Where the camera conversions' planes keep pixel p: per 16 pixels (a 128-bit lane), the 8 even
// pixels then the 8 odd ones.
constexpr int even_odd_position(int p) {
    const int q = p % 16;
    return 16 * (p / 16) + (q % 2 == 0 ? q / 2 : 8 + q / 2);
}

constexpr avx2::Interleave3 kEvenOddInterleave = avx2::make_interleave3(even_odd_position);

// B, G, R of the whole 32-pixel blocks of a row with AVX2; from pixel `from`; returns where it stopped. The
// planes of 32 pixels (lane 0: pixels 0 .. 15) are interleaved by byte shuffles, 16 pixels a lane.
template <class Row>
QEL_TARGET_AVX2 int bgr_blocks_avx2(const Row& row, int from, int width, unsigned char* rgb) {
    const avx2::Interleave3Shuffles shuffles = avx2::load_interleave3(kEvenOddInterleave);
    int x = from;
    for (rgb += static_cast<std::ptrdiff_t>(x) * kBytesPerRgbPixel; x + kBlock <= width; x += kBlock, rgb += 3 * kBlock) {
        const Yuv32 s = load_yuv32(row, x);
        const ChromaTerms16 t = chroma_terms(s.u, s.v);
        const __m256i planes[3] = {plane(s.y, t.blue), plane(s.y, t.green), plane(s.y, t.red)};
        avx2::store_interleaved3(planes, shuffles, rgb);
    }
    return x;
}

#ifdef QEL_SIMD_AVX512
QEL_AVX512_BEGIN

// Byte-permute indices for the 64-pixel steps, worked out at compile time.
struct Permutes64 {
    // Packed pairs (Cb, Y, Cr, Y) in two registers: byte 4k + c of pair k to byte 2k (the low byte
    // of word k), for c = 0 (Cb), 1 (first Y), 2 (Cr), 3 (second Y).
    unsigned char packed[4][64];
    // 32 packed B, G, R pixels (96 bytes in two registers) to 16-bit word pairs in 32-bit lanes,
    // lane k for pixel 2k + parity: (G, R) and (G, B).
    unsigned char greenRed[2][64];
    unsigned char greenBlue[2][64];
    // Byte 2 of each lane of two registers of 16 lanes, the first register's for the even bytes of
    // 32 and the second's for the odd ones (Y of even and odd pixels), or the first register's 16
    // then the second's (U then V).
    unsigned char interleavedByte2[64];
    unsigned char byte2[64];
};

constexpr Permutes64 make_permutes64() {
    Permutes64 t{};
    for (int c = 0; c < 4; ++c)
        for (int k = 0; k < 32; ++k) t.packed[c][2 * k] = static_cast<unsigned char>(4 * k + c);
    for (int parity = 0; parity < 2; ++parity)
        for (int k = 0; k < 16; ++k) {
            const int at = 3 * (2 * k + parity);  // the pixel's blue byte
            t.greenRed[parity][4 * k] = static_cast<unsigned char>(at + 1);
            t.greenRed[parity][4 * k + 2] = static_cast<unsigned char>(at + 2);
            t.greenBlue[parity][4 * k] = static_cast<unsigned char>(at + 1);
            t.greenBlue[parity][4 * k + 2] = static_cast<unsigned char>(at);
        }
    for (int k = 0; k < 16; ++k) {
        t.interleavedByte2[2 * k] = static_cast<unsigned char>(4 * k + 2);
        t.interleavedByte2[2 * k + 1] = static_cast<unsigned char>(64 + 4 * k + 2);
        t.byte2[k] = static_cast<unsigned char>(4 * k + 2);
        t.byte2[16 + k] = static_cast<unsigned char>(64 + 4 * k + 2);
    }
    return t;
}

alignas(64) constexpr Permutes64 kPermutes64 = make_permutes64();
constexpr avx2::Interleave3x64 kEvenOddInterleave64 = avx2::make_interleave3x64(even_odd_position);

// Two 16-bit weights repeated, for _mm512_madd_epi16 on (low, high) word pairs.
QEL_TARGET_AVX512 inline __m512i pair(int low, int high) {
    return _mm512_set1_epi32(static_cast<int>((static_cast<unsigned>(high) << 16) | (static_cast<unsigned>(low) & 0xFFFFu)));
}

// Y of the even and odd pixels, and U, V, of 32 pixel pairs as 16-bit words in pair order.
struct Yuv64 {
    __m512i y[2];
    __m512i u;
    __m512i v;
};

// The low and high bytes of the 32 words at p.
QEL_TARGET_AVX512 inline void split_words(const unsigned char* p, __m512i& low, __m512i& high) {
    const __m512i v = _mm512_loadu_si512(p);
    low = _mm512_and_si512(v, _mm512_set1_epi16(0x00FF));
    high = _mm512_srli_epi16(v, 8);
}

template <class Byte>
QEL_TARGET_AVX512 inline Yuv64 load_yuv64(const qel::CameraRow<Byte, 1, 1>& row, int x) {
    Yuv64 s;
    split_words(row.luma + x, s.y[0], s.y[1]);
    s.u = _mm512_cvtepu8_epi16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(row.cb + x / 2)));
    s.v = _mm512_cvtepu8_epi16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(row.cr + x / 2)));
    return s;
}

template <class Byte>
QEL_TARGET_AVX512 inline Yuv64 load_yuv64(const qel::CameraRow<Byte, 1, 2>& row, int x) {
    Yuv64 s;
    split_words(row.luma + x, s.y[0], s.y[1]);
    split_words(row.cb + x, s.u, s.v);
    return s;
}

template <class Byte>
QEL_TARGET_AVX512 inline Yuv64 load_yuv64(const qel::CameraRow<Byte, 2, 4>& row, int x) {
    const __m512i a = _mm512_loadu_si512(row.cb + 2 * x);
    const __m512i b = _mm512_loadu_si512(row.cb + 2 * x + 64);
    const __mmask64 lowBytes = 0x5555555555555555ull;
    __m512i w[4];
    for (int c = 0; c < 4; ++c)
        w[c] = _mm512_maskz_permutex2var_epi8(lowBytes, a, avx2::load64(kPermutes64.packed[c]), b);
    return {{w[1], w[3]}, w[0], w[2]};
}

// As chroma_terms, for 32 pairs.
QEL_TARGET_AVX512 inline void chroma_terms64(__m512i u, __m512i v, __m512i t[3]) {
    const __m512i offset = _mm512_set1_epi16(qel::kChromaOffset);
    const __m512i cu = _mm512_sub_epi16(u, offset);
    const __m512i cv = _mm512_sub_epi16(v, offset);
    const __m512i wGreen = pair(-qel::kGreenFromU, -qel::kGreenFromV);
    const __m512i gLo = _mm512_srai_epi32(_mm512_madd_epi16(_mm512_unpacklo_epi16(cu, cv), wGreen), qel::kYuvShift);
    const __m512i gHi = _mm512_srai_epi32(_mm512_madd_epi16(_mm512_unpackhi_epi16(cu, cv), wGreen), qel::kYuvShift);
    t[0] = _mm512_mulhi_epi16(_mm512_slli_epi16(cu, 2), _mm512_set1_epi16(qel::kBlueFromU));
    t[1] = _mm512_packs_epi32(gLo, gHi);
    t[2] = _mm512_mulhi_epi16(_mm512_slli_epi16(cv, 2), _mm512_set1_epi16(qel::kRedFromV));
}

// B, G, R of 64-pixel steps of a row from pixel `from`; returns where it stopped. Each channel's
// plane holds per 128-bit lane 16 pixels, the even ones then the odd ones; a two-register permute
// places the blue and green bytes of each 64 output bytes and a second one adds the red ones.
// (A merging one-register permute for red is slower on AMD's Zen 4.)
template <class Row>
QEL_TARGET_AVX512 int bgr_blocks_avx512(const Row& row, int from, int width, unsigned char* rgb) {
    const avx2::Interleave3x64Indices interleave = avx2::load_interleave3x64(kEvenOddInterleave64);
    int x = from;
    for (; x + 64 <= width; x += 64) {
        const Yuv64 s = load_yuv64(row, x);
        __m512i t[3];
        chroma_terms64(s.u, s.v, t);
        __m512i planes[3];
        for (int c = 0; c < 3; ++c)
            planes[c] = _mm512_packus_epi16(_mm512_add_epi16(s.y[0], t[c]), _mm512_add_epi16(s.y[1], t[c]));
        avx2::store_interleaved3x64(planes, interleave, rgb + static_cast<std::ptrdiff_t>(x) * kBytesPerRgbPixel);
    }
    return x;
}

// Grey of 32-pixel steps with AVX-512 (the sums as in camera_blocks_420_avx512, at 16 × the grey
// formula's scale so that the grey value is byte 2 of each lane); returns how many pixels it did.
QEL_TARGET_AVX512 size_t grey_blocks_avx512(const unsigned char* rgb, size_t count, unsigned char* grey) {
    const __m512i wGreenRed = pair(8 * qel::kGreyWeightGreen, 16 * qel::kGreyWeightRed);
    const __m512i wGreenBlue = pair(8 * qel::kGreyWeightGreen, 16 * qel::kGreyWeightBlue);
    __m512i greenRed[2];
    __m512i greenBlue[2];
    for (int parity = 0; parity < 2; ++parity) {
        greenRed[parity] = avx2::load64(kPermutes64.greenRed[parity]);
        greenBlue[parity] = avx2::load64(kPermutes64.greenBlue[parity]);
    }
    const __m512i greyBytes = avx2::load64(kPermutes64.interleavedByte2);
    const __mmask64 lowBytes = 0x5555555555555555ull;
    size_t i = 0;
    for (; i + 32 <= count; i += 32) {
        const unsigned char* p = rgb + 3 * i;
        const __m512i a = _mm512_loadu_si512(p);
        const __m512i b = _mm512_zextsi256_si512(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(p + 64)));
        __m512i sums[2];
        for (int parity = 0; parity < 2; ++parity) {
            const __m512i gr = _mm512_maskz_permutex2var_epi8(lowBytes, a, greenRed[parity], b);
            const __m512i gb = _mm512_maskz_permutex2var_epi8(lowBytes, a, greenBlue[parity], b);
            sums[parity] = _mm512_dpwssd_epi32(_mm512_madd_epi16(gr, wGreenRed), gb, wGreenBlue);
        }
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(grey + i),
                            _mm512_castsi512_si256(_mm512_permutex2var_epi8(sums[0], greyBytes, sums[1])));
    }
    return i;
}

// Y, and the chroma of each 2 × 2 block, of 32-pixel steps of two rows of a 4:2:0 frame with a luma
// plane, from pixel `from`; returns where it stopped.
//
// Each weighted sum is taken at 4 × its scale, so that its result is the high 16-bit word of a
// 32-bit lane and needs no shift: floor(4s / 2^16) = floor(s / 2^14) = s >> 14. Y (0..254) is then
// byte 2 of the lane; 4 · 9617 does not fit 16 bits, so green is weighted half in each of Y's two
// multiply-adds. U's 4 · 8192 · B and V's 4 · 8192 · R are shifts, and the other two products of
// each one multiply-add, which the processor adds to the shifted value (AVX-512 VNNI). The four U
// (V) of a block are summed in 16-bit lanes, which leaves the high words the exact sums, shifted
// right by 2 there, and + 128 flips bit 7 of the byte taken.
template <int ChromaStep>
QEL_TARGET_AVX512 int camera_blocks_420_avx512(const unsigned char* const bgrRows[2],
                                               const qel::CameraRow<unsigned char, 1, ChromaStep> rows[2], int from,
                                               int width) {
    const __m512i wYGreenRed = pair(2 * qel::kLumaWeightGreen, 4 * qel::kLumaWeightRed);
    const __m512i wYGreenBlue = pair(2 * qel::kLumaWeightGreen, 4 * qel::kLumaWeightBlue);
    const __m512i wUGreenRed = pair(-4 * qel::kUWeightGreen, -4 * qel::kUWeightRed);
    const __m512i wVGreenBlue = pair(-4 * qel::kVWeightGreen, -4 * qel::kVWeightBlue);
    const __m512i highWords = _mm512_set1_epi32(static_cast<int>(0xFFFF0000u));
    const __m512i offset = _mm512_set1_epi32(2 * qel::kChromaOffset << 16);
    __m512i greenRed[2];
    __m512i greenBlue[2];
    for (int parity = 0; parity < 2; ++parity) {
        greenRed[parity] = avx2::load64(kPermutes64.greenRed[parity]);
        greenBlue[parity] = avx2::load64(kPermutes64.greenBlue[parity]);
    }
    const __m512i lumaBytes = avx2::load64(kPermutes64.interleavedByte2);
    const __m512i chromaBytes = avx2::load64(ChromaStep == 1 ? kPermutes64.byte2 : kPermutes64.interleavedByte2);
    const __mmask64 lowBytes = 0x5555555555555555ull;
    int x = from;
    for (; x + 32 <= width; x += 32) {
        __m512i u[4];  // per row and parity
        __m512i v[4];
        for (int r = 0; r < 2; ++r) {
            const unsigned char* p = bgrRows[r] + 3 * x;
            const __m512i a = _mm512_loadu_si512(p);
            const __m512i b = _mm512_zextsi256_si512(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(p + 64)));
            __m512i luma[2];
            for (int parity = 0; parity < 2; ++parity) {
                const __m512i gr = _mm512_maskz_permutex2var_epi8(lowBytes, a, greenRed[parity], b);
                const __m512i gb = _mm512_maskz_permutex2var_epi8(lowBytes, a, greenBlue[parity], b);
                luma[parity] = _mm512_dpwssd_epi32(_mm512_madd_epi16(gr, wYGreenRed), gb, wYGreenBlue);
                // 4 · 8192 · B (R), plus 128 in the high word: (B << 16 | 256 << 16) >> 1.
                const __m512i blue = _mm512_srli_epi32(_mm512_ternarylogic_epi32(gb, highWords, offset, 0xEA), 1);
                const __m512i red = _mm512_srli_epi32(_mm512_ternarylogic_epi32(gr, highWords, offset, 0xEA), 1);
                u[2 * r + parity] = _mm512_dpwssd_epi32(blue, gr, wUGreenRed);
                v[2 * r + parity] = _mm512_dpwssd_epi32(red, gb, wVGreenBlue);
            }
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(rows[r].luma + x),
                                _mm512_castsi512_si256(_mm512_permutex2var_epi8(luma[0], lumaBytes, luma[1])));
        }
        const __m512i uSum = _mm512_add_epi16(_mm512_add_epi16(u[0], u[1]), _mm512_add_epi16(u[2], u[3]));
        const __m512i vSum = _mm512_add_epi16(_mm512_add_epi16(v[0], v[1]), _mm512_add_epi16(v[2], v[3]));
        const __m512i chroma =
            _mm512_permutex2var_epi8(_mm512_srai_epi16(uSum, 2), chromaBytes, _mm512_srai_epi16(vSum, 2));
        if constexpr (ChromaStep == 1) {
            _mm_storeu_si128(reinterpret_cast<__m128i*>(rows[0].cb + x / 2), _mm512_castsi512_si128(chroma));
            _mm_storeu_si128(reinterpret_cast<__m128i*>(rows[0].cr + x / 2), _mm512_extracti32x4_epi32(chroma, 1));
        } else {
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(rows[0].cb + x), _mm512_castsi512_si256(chroma));
        }
    }
    return x;
}

QEL_AVX512_END
#endif
#endif

#ifdef QEL_SIMD_SSE2
// The pixels of each row that camera_blocks_420 (or its AVX2 form) did; 0 with the plain loops.
template <int ChromaStep>
int fast_blocks_420(const unsigned char* const bgrRows[2], const qel::CameraRow<unsigned char, 1, ChromaStep> rows[2],
                    int width) {
    int done = 0;
#ifdef QEL_SIMD_AVX512
    if (qel::simd::avx512()) done = camera_blocks_420_avx512(bgrRows, rows, done, width);
#endif
#ifdef QEL_SIMD_AVX2
    if (qel::simd::avx2()) return camera_blocks_420_avx2(bgrRows, rows, done, width);
#endif
    return qel::simd::sse2() ? camera_blocks_420(bgrRows, rows, done, width) : done;
}
#endif

// Camera frame to B, G, R; width must be even, and height even where two rows share chroma. Rows
// go 32 pixels a step where SSE2 is available and are finished with the plain loop.
template <class Format>
void camera_to_bgr(const unsigned char* frame, int width, int height, unsigned char* rgb) {
    const auto layout = Format::layout(frame, width, height);
#ifdef QEL_SIMD_SSE2
    if (qel::simd::sse2()) {
        const std::ptrdiff_t rgbRowBytes = static_cast<std::ptrdiff_t>(width) * kBytesPerRgbPixel;
        for (int y = 0; y < height; ++y, rgb += rgbRowBytes) {
            int done = 0;
#ifdef QEL_SIMD_AVX512
            if (qel::simd::avx512()) done = bgr_blocks_avx512(layout.row(y), done, width, rgb);
#endif
#ifdef QEL_SIMD_AVX2
            if (qel::simd::avx2())
                done = bgr_blocks_avx2(layout.row(y), done, width, rgb);
            else
#endif
                done = bgr_blocks(layout.row(y), done, width, rgb);
            qel::copy_bgr(layout, RectArea{done, width - 1, y, y}, rgb + done * kBytesPerRgbPixel);
        }
        return;
    }
#endif
    qel::copy_bgr(layout, RectArea::whole(width, height), rgb);
}

template <class Format>
void camera_to_grey(const unsigned char* frame, int width, int height, unsigned char* grey) {
    qel::copy_luma(Format::layout(frame, width, height), RectArea::whole(width, height), grey);
}

// B, G, R to a camera frame; width must be even, and height even where two rows share chroma. The
// chroma of a block is the mean, by right shift, of its pixels' U and V, each already offset by 128
// and already truncated.
template <class Format>
void bgr_to_camera(const unsigned char* rgb, int width, int height, unsigned char* frame) {
    const auto layout = Format::layout(frame, width, height);
    using Layout = std::decay_t<decltype(layout)>;
    using Row = typename Layout::Row;
    constexpr int rowsPerChroma = 1 << Layout::kChromaRowShift;
    constexpr int meanShift = 1 + Layout::kChromaRowShift;  // 2 or 4 pixels share one U, V
    const int pairs = width / kPixelsPerPair;
    const std::ptrdiff_t rgbRowBytes = static_cast<std::ptrdiff_t>(width) * kBytesPerRgbPixel;
    for (int cy = 0; cy < height / rowsPerChroma; ++cy) {
        Row rows[rowsPerChroma];
        const unsigned char* rgbRows[rowsPerChroma];
        for (int r = 0; r < rowsPerChroma; ++r) {
            rows[r] = layout.row(cy * rowsPerChroma + r);
            rgbRows[r] = rgb + (cy * rowsPerChroma + r) * rgbRowBytes;
        }
        int first = 0;
#ifdef QEL_SIMD_SSE2
        if constexpr (rowsPerChroma == 2 && Row::kLumaStep == 1)
            first = fast_blocks_420(rgbRows, rows, width) / 2;
#endif
        for (int i = first; i < pairs; ++i) {
            int uSum = 0;
            int vSum = 0;
            for (int r = 0; r < rowsPerChroma; ++r) {
                for (int k = 0; k < kPixelsPerPair; ++k) {
                    const int x = kPixelsPerPair * i + k;
                    const unsigned char* px = rgbRows[r] + x * kBytesPerRgbPixel;
                    rows[r].luma_at(x) = static_cast<unsigned char>(qel::luma_from_bgr(px[0], px[1], px[2]));
                    uSum += qel::u_from_bgr(px[0], px[1], px[2]);
                    vSum += qel::v_from_bgr(px[0], px[1], px[2]);
                }
            }
            rows[0].cb_at(i) = static_cast<unsigned char>(uSum >> meanShift);
            rows[0].cr_at(i) = static_cast<unsigned char>(vSum >> meanShift);
        }
    }
}

}  // namespace

void QelRGB2Gry(unsigned char* rgb, int width, int height, unsigned char* grey) {
    size_t done = 0;
#ifdef QEL_SIMD_SSE2
    // (each narrower set also where the wider one found the image too small for one block)
#ifdef QEL_SIMD_AVX512
    if (qel::simd::avx512()) done = grey_blocks_avx512(rgb, pixel_count(width, height), grey);
#endif
#ifdef QEL_SIMD_AVX2
    if (qel::simd::avx2() && done == 0) done = grey_blocks_avx2(rgb, pixel_count(width, height), grey);
#endif
    if (qel::simd::sse2() && done == 0) done = grey_blocks(rgb, pixel_count(width, height), grey);
#endif
    qel::grey_from_each_pixel(rgb + done * kBytesPerRgbPixel, pixel_count(width, height) - done, grey + done,
                              [](int b, int g, int r) { return qel::grey_from_bgr(b, g, r); });
}

void QelRGB2GryInvert(unsigned char* rgb, int width, int height, unsigned char* grey) {
    qel::grey_from_each_pixel(rgb, pixel_count(width, height), grey,
                              [](int b, int g, int r) { return 255 - qel::grey_from_bgr(b, g, r); });
}

void QelRGBsDif2Gry(unsigned char* rgb, int width, int height, unsigned char* grey) {
    qel::grey_from_each_pixel(rgb, pixel_count(width, height), grey,
                              [](int b, int g, int r) { return std::max({b, g, r}) - std::min({b, g, r}); });
}

// The same as QelExtractOneChannelFromRGB.
void QelSelectRGB2Gry(unsigned char* rgb, int width, int height, int channel, unsigned char* grey) {
    qel::extract_channel(rgb, pixel_count(width, height), channel, grey);
}

void QelCbYCrY2Gry(unsigned char* frame, int width, int height, unsigned char* grey) {
    camera_to_grey<CbYCrY>(frame, width, height, grey);
}

void QelYUV420P2Gry(unsigned char* frame, int width, int height, unsigned char* grey) {
    camera_to_grey<Yuv420P>(frame, width, height, grey);
}

void QelYUV420SP2Gry(unsigned char* frame, int width, int height, unsigned char* grey) {
    camera_to_grey<Yuv420SP>(frame, width, height, grey);
}

void QelYUV422P2Gry(unsigned char* frame, int width, int height, unsigned char* grey) {
    camera_to_grey<Yuv422P>(frame, width, height, grey);
}

bool QelCbYCrY2RGB(unsigned char* frame, int width, int height, unsigned char* rgb) {
    if (is_odd(width)) return false;
    camera_to_bgr<CbYCrY>(frame, width, height, rgb);
    return true;
}

bool QelYUV420P2RGB(unsigned char* frame, int width, int height, unsigned char* rgb) {
    if (is_odd(width) || is_odd(height)) return false;
    camera_to_bgr<Yuv420P>(frame, width, height, rgb);
    return true;
}

bool QelYUV420SP2RGB(unsigned char* frame, int width, int height, unsigned char* rgb) {
    if (is_odd(width) || is_odd(height)) return false;
    camera_to_bgr<Yuv420SP>(frame, width, height, rgb);
    return true;
}

bool QelYUV422P2RGB(unsigned char* frame, int width, int height, unsigned char* rgb) {
    // An odd height is accepted here though QelRGB2YUV422P refuses it: intended.
    if (is_odd(width)) return false;
    camera_to_bgr<Yuv422P>(frame, width, height, rgb);
    return true;
}

bool QelRGB2CbYCrY(unsigned char* rgb, int width, int height, unsigned char* frame) {
    if (is_odd(width)) return false;
    bgr_to_camera<CbYCrY>(rgb, width, height, frame);
    return true;
}

bool QelRGB2YUV420P(unsigned char* rgb, int width, int height, unsigned char* frame) {
    if (is_odd(width) || is_odd(height)) return false;
    bgr_to_camera<Yuv420P>(rgb, width, height, frame);
    return true;
}

bool QelRGB2YUV420SP(unsigned char* rgb, int width, int height, unsigned char* frame) {
    if (is_odd(width) || is_odd(height)) return false;
    bgr_to_camera<Yuv420SP>(rgb, width, height, frame);
    return true;
}

bool QelRGB2YUV422P(unsigned char* rgb, int width, int height, unsigned char* frame) {
    // Stricter than QelYUV422P2RGB, which accepts an odd height: intended.
    if (is_odd(width) || is_odd(height)) return false;
    bgr_to_camera<Yuv422P>(rgb, width, height, frame);
    return true;
}
