// Exact quarter turns of grey, RGB and 32-bit images, mirror flips, and the half turn.
#include "qel/geometry.h"

#include "core/simd.h"
#include "core/simd_avx2.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace qel {
namespace {

// Quarter turns walk the source in square tiles so that both the rows read and the columns
// written stay in cache.
constexpr int kTurnTile = 64;

enum class Turn { kCounterClockwise, kClockwise };

// Quarter turn of the source pixels x0 <= x < x1, y0 <= y < y1 of an image with B bytes a pixel.
// Counter-clockwise: source (x, y) goes to dst column y, row width−1−x; clockwise: to dst column
// height−1−y, row x. dst is height wide.
template <int B, Turn turn>
void quarter_turn_area(const unsigned char* src, int width, int height, int x0, int x1, int y0, int y1,
                       unsigned char* dst) {
    const ptrdiff_t srcStride = static_cast<ptrdiff_t>(width) * B;
    const ptrdiff_t dstStride = static_cast<ptrdiff_t>(height) * B;
    for (int ty = y0; ty < y1; ty += kTurnTile) {
        const int yEnd = std::min(y1, ty + kTurnTile);
        for (int tx = x0; tx < x1; tx += kTurnTile) {
            const int xEnd = std::min(x1, tx + kTurnTile);
            for (int x = tx; x < xEnd; ++x) {
                // One source column piece becomes one piece of a dst row.
                const unsigned char* in = src + static_cast<ptrdiff_t>(ty) * srcStride + static_cast<ptrdiff_t>(x) * B;
                unsigned char* out;
                ptrdiff_t step;
                if (turn == Turn::kCounterClockwise) {
                    out = dst + static_cast<ptrdiff_t>(width - 1 - x) * dstStride + static_cast<ptrdiff_t>(ty) * B;
                    step = B;
                } else {
                    out = dst + static_cast<ptrdiff_t>(x) * dstStride + static_cast<ptrdiff_t>(height - 1 - ty) * B;
                    step = -B;
                }
                for (int y = ty; y < yEnd; ++y, in += srcStride) {
                    std::memcpy(out, in, B);
                    if (y + 1 < yEnd) out += step;  // never form a pointer before the row
                }
            }
        }
    }
}

#ifdef QEL_SIMD_SSE2
constexpr int kBlock = 16;  // pixels of a transposed block side

// 16 × 16 byte transpose: four rounds of byte unpacks, each interleaving row k with row k + 8 of
// the round before (a perfect shuffle of the 256 bytes; four of them swap the row and column halves
// of each byte's index). Afterwards r[i] holds byte i of every row, in row order.
inline void transpose16(__m128i r[kBlock]) {
    for (int round = 0; round < 4; ++round) {
        __m128i t[kBlock];
        for (int k = 0; k < kBlock / 2; ++k) {
            t[2 * k] = _mm_unpacklo_epi8(r[k], r[k + kBlock / 2]);
            t[2 * k + 1] = _mm_unpackhi_epi8(r[k], r[k + kBlock / 2]);
        }
        for (int k = 0; k < kBlock; ++k) r[k] = t[k];
    }
}

// Where the block at (x0, y0) puts source column x0 + i: the dst row piece of 16 pixels. The block's
// rows are read bottom-up for a clockwise turn, so that a transposed row is already in dst order.
template <int B, Turn turn>
struct TurnBlock {
    const unsigned char* src;
    int width;
    int height;
    unsigned char* dst;

    int row_read(int y0, int k) const { return turn == Turn::kClockwise ? y0 + kBlock - 1 - k : y0 + k; }
    const unsigned char* source(int x0, int y) const {
        return src + (static_cast<ptrdiff_t>(y) * width + x0) * B;
    }
    unsigned char* target(int x, int y0) const {
        const ptrdiff_t row = turn == Turn::kClockwise ? x : width - 1 - x;
        const ptrdiff_t column = turn == Turn::kClockwise ? height - y0 - kBlock : y0;
        return dst + (row * height + column) * B;
    }
};

// Grey blocks: one transpose.
template <Turn turn>
void turn_grey_block(const TurnBlock<1, turn>& b, int x0, int y0) {
    __m128i r[kBlock];
    for (int k = 0; k < kBlock; ++k) r[k] = simd::load(b.source(x0, b.row_read(y0, k)));
    transpose16(r);
    for (int i = 0; i < kBlock; ++i) simd::store(b.target(x0 + i, y0), r[i]);
}

#ifdef QEL_SIMD_AVX2
// Three-byte blocks: the 48 bytes of each row are transposed as three 16 × 16 byte blocks, so that
// byte q of every row (pixel q / 3, channel q % 3) is one register; byte shuffles then interleave
// each pixel's three channel registers into its 48-byte dst row piece.
template <Turn turn>
QEL_TARGET_AVX2 void turn_rgb_block(const TurnBlock<3, turn>& b, int x0, int y0, const __m128i shuffle[3][3]) {
    __m128i r[3][kBlock];
    for (int k = 0; k < kBlock; ++k) {
        const unsigned char* p = b.source(x0, b.row_read(y0, k));
        for (int c = 0; c < 3; ++c) r[c][k] = simd::load(p + simd::kLanes * c);
    }
    for (int c = 0; c < 3; ++c) transpose16(r[c]);
    for (int i = 0; i < kBlock; ++i) {
        const __m128i* channel[3] = {&r[(3 * i) / kBlock][(3 * i) % kBlock],
                                     &r[(3 * i + 1) / kBlock][(3 * i + 1) % kBlock],
                                     &r[(3 * i + 2) / kBlock][(3 * i + 2) % kBlock]};
        unsigned char* out = b.target(x0 + i, y0);
        for (int j = 0; j < 3; ++j)
            simd::store(out + simd::kLanes * j,
                        _mm_or_si128(_mm_or_si128(_mm_shuffle_epi8(*channel[0], shuffle[j][0]),
                                                  _mm_shuffle_epi8(*channel[1], shuffle[j][1])),
                                     _mm_shuffle_epi8(*channel[2], shuffle[j][2])));
    }
}

template <Turn turn>
QEL_TARGET_AVX2 void turn_rgb_blocks(const TurnBlock<3, turn>& b, int blocksX, int blocksY) {
    // Byte k of output register j is byte 16j + k of the 48: row (16j + k) / 3 of channel
    // (16j + k) % 3; -1 where another channel's byte goes.
    __m128i shuffle[3][3];
    for (int j = 0; j < 3; ++j)
        for (int c = 0; c < 3; ++c) {
            alignas(16) signed char mask[16];
            for (int k = 0; k < 16; ++k)
                mask[k] = static_cast<signed char>((16 * j + k) % 3 == c ? (16 * j + k) / 3 : -1);
            shuffle[j][c] = _mm_load_si128(reinterpret_cast<const __m128i*>(mask));
        }
    // Tiles of 4 × 4 blocks, so that each dst row piece written is 192 bytes: whole cache lines.
    constexpr int kTileBlocks = kTurnTile / kBlock;
    for (int ty = 0; ty < blocksY; ty += kTileBlocks)
        for (int tx = 0; tx < blocksX; tx += kTileBlocks)
            for (int bx = tx; bx < std::min(blocksX, tx + kTileBlocks); ++bx)
                for (int by = ty; by < std::min(blocksY, ty + kTileBlocks); ++by)
                    turn_rgb_block(b, bx * kBlock, by * kBlock, shuffle);
}
#endif

// Whole 16 × 16 blocks by SIMD where there is a kernel for B-byte pixels (grey with SSE2, RGB with
// AVX2); returns false where there is none. The right and bottom strips are left to the caller.
template <int B, Turn turn>
bool quarter_turn_blocks(const unsigned char* src, int width, int height, unsigned char* dst) {
    const TurnBlock<B, turn> b{src, width, height, dst};
    const int blocksX = width / kBlock;
    const int blocksY = height / kBlock;
    if constexpr (B == 1) {
        if (!simd::sse2()) return false;
        for (int by = 0; by < blocksY; ++by)
            for (int bx = 0; bx < blocksX; ++bx) turn_grey_block(b, bx * kBlock, by * kBlock);
        return true;
    }
#ifdef QEL_SIMD_AVX2
    if constexpr (B == 3) {
        if (!simd::avx2()) return false;
        turn_rgb_blocks(b, blocksX, blocksY);
        return true;
    }
#endif
    return false;
}
#endif

// Grey (and, with AVX2, RGB) turns take whole 16 × 16 blocks by SIMD and the right and bottom
// strips by the tiled loop.
template <int B, Turn turn>
void quarter_turn(const unsigned char* src, int width, int height, unsigned char* dst) {
    if (width <= 0 || height <= 0) return;
#ifdef QEL_SIMD_SSE2
    if (quarter_turn_blocks<B, turn>(src, width, height, dst)) {
        const int blockedX = width / kBlock * kBlock;
        quarter_turn_area<B, turn>(src, width, height, blockedX, width, 0, height, dst);
        quarter_turn_area<B, turn>(src, width, height, 0, blockedX, height / kBlock * kBlock, height, dst);
        return;
    }
#endif
    quarter_turn_area<B, turn>(src, width, height, 0, width, 0, height, dst);
}

template <int B>
void quarter_turn(const unsigned char* src, int width, int height, bool clockwise, unsigned char* dst) {
    if (clockwise)
        quarter_turn<B, Turn::kClockwise>(src, width, height, dst);
    else
        quarter_turn<B, Turn::kCounterClockwise>(src, width, height, dst);
}

void grey_or_rgb_turn(const unsigned char* src, int width, int height, bool isRGB, bool clockwise, unsigned char* dst) {
    if (isRGB)
        quarter_turn<3>(src, width, height, clockwise, dst);
    else
        quarter_turn<1>(src, width, height, clockwise, dst);
}

size_t row_bytes(int width, bool isRGB) { return static_cast<size_t>(width) * (isRGB ? 3 : 1); }

#ifdef QEL_SIMD_AVX2
// Reverses the outer 32-byte pieces of a row pair by pair, from both ends inwards (each byte
// reversed within its 128-bit lane, then the lanes swapped); returns how many bytes of each end it
// did. The middle is left to the caller.
// The 32 bytes of v in reverse order.
QEL_TARGET_AVX2 inline __m256i reversed32(__m256i v) {
    const __m256i backwards = _mm256_setr_epi8(15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0,  //
                                               15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0);
    return _mm256_permute4x64_epi64(_mm256_shuffle_epi8(v, backwards), 0x4E);
}

QEL_TARGET_AVX2 int reverse_row_ends_avx2(unsigned char* row, int width) {
    int done = 0;
    for (; 2 * (done + avx2::kLanes) <= width; done += avx2::kLanes) {
        unsigned char* left = row + done;
        unsigned char* right = row + width - done - avx2::kLanes;
        const __m256i a = avx2::load(left);
        const __m256i b = avx2::load(right);
        avx2::store(left, reversed32(b));
        avx2::store(right, reversed32(a));
    }
    return done;
}

// dst[n − 1 − k] = src[k] for the first k of whole 32-byte steps; returns how many bytes it did.
QEL_TARGET_AVX2 size_t reverse_copy_avx2(const unsigned char* src, size_t n, unsigned char* dst) {
    size_t done = 0;
    for (; done + avx2::kLanes <= n; done += avx2::kLanes)
        avx2::store(dst + n - done - avx2::kLanes, reversed32(avx2::load(src + done)));
    return done;
}
#endif

#ifdef QEL_SIMD_AVX2
// One row of at least 32 bytes copied 32 bytes a step, the last step ending at the row's end
// (overlapping the one before): no call per row, which costs as much as the copy for image rows.
// Every load of a step comes before its store, so a row may be copied onto itself.
QEL_TARGET_AVX2 void copy_row_avx2(const unsigned char* from, size_t count, unsigned char* to) {
    // The first and last 32 bytes are loaded before anything is stored; the steps between start at
    // a 32-byte boundary of `to`, so that none of their stores splits a cache line.
    const __m256i first = avx2::load(from);
    const __m256i last = avx2::load(from + count - avx2::kLanes);
    size_t i = avx2::kLanes - reinterpret_cast<uintptr_t>(to) % avx2::kLanes;
    for (; i + avx2::kLanes < count; i += avx2::kLanes) avx2::store(to + i, avx2::load(from + i));
    avx2::store(to, first);
    avx2::store(to + count - avx2::kLanes, last);
}
#endif

// memmove of one row (to and from are the same row or do not overlap).
void copy_row(const unsigned char* from, size_t count, unsigned char* to) {
#ifdef QEL_SIMD_AVX2
    if (count >= static_cast<size_t>(avx2::kLanes) && simd::avx2()) {
        copy_row_avx2(from, count, to);
        return;
    }
#endif
    std::memmove(to, from, count);
}

// A row reversed in place: 32-byte pieces from both ends with AVX2, the middle byte by byte.
void reverse_row(unsigned char* row, int width) {
    int done = 0;
#ifdef QEL_SIMD_AVX2
    if (simd::avx2()) done = reverse_row_ends_avx2(row, width);
#endif
    std::reverse(row + done, row + width - done);
}

}  // namespace
}  // namespace qel

using namespace qel;

void QelImgRotate90DegreeCCS(unsigned char* src, int width, int height, bool isRGB, unsigned char* dst) {
    grey_or_rgb_turn(src, width, height, isRGB, false, dst);
}

void QelImgRotate90DegreeCS(unsigned char* src, int width, int height, bool isRGB, unsigned char* dst) {
    grey_or_rgb_turn(src, width, height, isRGB, true, dst);
}

void QelRGB32Rotate90Degree(unsigned char* src, int width, int height, bool clockwise, unsigned char* dst) {
    quarter_turn<4>(src, width, height, clockwise, dst);
}

void QelFlipHorizontal(unsigned char* img, int width, int height) {
    if (width <= 0 || height <= 0) return;
    for (int y = 0; y < height; ++y) qel::reverse_row(img + static_cast<ptrdiff_t>(y) * width, width);
}

void QelFlipVertical(unsigned char* src, int width, int height, bool isRGB, unsigned char* dst) {
    if (width <= 0 || height <= 0) return;
    const size_t rowBytes = row_bytes(width, isRGB);
    for (int y = 0; y < height; ++y)
        qel::copy_row(src + static_cast<size_t>(y) * rowBytes, rowBytes,
                      dst + static_cast<size_t>(height - 1 - y) * rowBytes);
}

void QelFlipVertical(unsigned char* img, int width, int height, bool isRGB) {
    if (width <= 0 || height <= 0) return;
    const size_t rowBytes = row_bytes(width, isRGB);
    for (int top = 0, bottom = height - 1; top < bottom; ++top, --bottom) {
        unsigned char* a = img + static_cast<size_t>(top) * rowBytes;
        std::swap_ranges(a, a + rowBytes, img + static_cast<size_t>(bottom) * rowBytes);
    }
}

void QelReverseImg(unsigned char* src, int width, int height, unsigned char* dst) {
    if (width <= 0 || height <= 0) return;
    const size_t n = static_cast<size_t>(width) * static_cast<size_t>(height);
    size_t done = 0;
#ifdef QEL_SIMD_AVX2
    if (qel::simd::avx2()) done = qel::reverse_copy_avx2(src, n, dst);
#endif
    std::reverse_copy(src + done, src + n, dst);
}
