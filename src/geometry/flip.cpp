// Exact quarter turns of grey, RGB and 32-bit images, mirror flips, and the half turn.
#include "qel/geometry.h"

#include "core/simd.h"

#include <algorithm>
#include <cstddef>
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
constexpr int kBlock = 16;  // grey pixels of a transposed block side

// 16 × 16 transpose of grey blocks: four rounds of byte unpacks, each interleaving row k with row
// k + 8 of the round before (a perfect shuffle of the 256 bytes; four of them swap the row and
// column halves of each byte's index). The rows are taken bottom-up for a clockwise turn, so that
// each transposed row is already a dst row piece in order.
template <Turn turn>
void quarter_turn_blocks(const unsigned char* src, int width, int height, int blocksX, int blocksY,
                         unsigned char* dst) {
    for (int by = 0; by < blocksY; ++by) {
        const int y0 = by * kBlock;
        for (int bx = 0; bx < blocksX; ++bx) {
            const int x0 = bx * kBlock;
            __m128i r[kBlock];
            for (int k = 0; k < kBlock; ++k) {
                const int y = turn == Turn::kClockwise ? y0 + kBlock - 1 - k : y0 + k;
                r[k] = simd::load(src + static_cast<ptrdiff_t>(y) * width + x0);
            }
            for (int round = 0; round < 4; ++round) {
                __m128i t[kBlock];
                for (int k = 0; k < kBlock / 2; ++k) {
                    t[2 * k] = _mm_unpacklo_epi8(r[k], r[k + kBlock / 2]);
                    t[2 * k + 1] = _mm_unpackhi_epi8(r[k], r[k + kBlock / 2]);
                }
                for (int k = 0; k < kBlock; ++k) r[k] = t[k];
            }
            // r[i] now holds source column x0 + i.
            for (int i = 0; i < kBlock; ++i) {
                const int x = x0 + i;
                unsigned char* out = turn == Turn::kClockwise
                                         ? dst + static_cast<ptrdiff_t>(x) * height + (height - y0 - kBlock)
                                         : dst + static_cast<ptrdiff_t>(width - 1 - x) * height + y0;
                simd::store(out, r[i]);
            }
        }
    }
}
#endif

// Grey turns take whole 16 × 16 blocks by SSE2 and the right and bottom strips by the plain loop.
template <int B, Turn turn>
void quarter_turn(const unsigned char* src, int width, int height, unsigned char* dst) {
    if (width <= 0 || height <= 0) return;
#ifdef QEL_SIMD_SSE2
    if (B == 1 && simd::sse2()) {
        const int blocksX = width / kBlock;
        const int blocksY = height / kBlock;
        quarter_turn_blocks<turn>(src, width, height, blocksX, blocksY, dst);
        quarter_turn_area<B, turn>(src, width, height, blocksX * kBlock, width, 0, height, dst);
        quarter_turn_area<B, turn>(src, width, height, 0, blocksX * kBlock, blocksY * kBlock, height, dst);
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
    for (int y = 0; y < height; ++y) {
        unsigned char* row = img + static_cast<ptrdiff_t>(y) * width;
        std::reverse(row, row + width);
    }
}

void QelFlipVertical(unsigned char* src, int width, int height, bool isRGB, unsigned char* dst) {
    if (width <= 0 || height <= 0) return;
    const size_t rowBytes = row_bytes(width, isRGB);
    for (int y = 0; y < height; ++y)
        std::memmove(dst + static_cast<size_t>(height - 1 - y) * rowBytes, src + static_cast<size_t>(y) * rowBytes,
                     rowBytes);
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
    std::reverse_copy(src, src + n, dst);
}
