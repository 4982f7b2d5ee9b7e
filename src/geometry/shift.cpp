// Integer translations, the per-row horizontal shear, alignment of one image onto another by
// shifting, and pasting a small image into a large one.
#include "qel/geometry.h"
#include "qel/misc.h"

#include "geometry/transform_fixed.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace qel {
namespace {

using transform::clamp_index;
using transform::floor_shift;
using transform::frac_bits;
using transform::trunc_to_int;

constexpr int kShearBits = 12;  // per-row offsets in 4096ths
constexpr int kShearOne = 1 << kShearBits;
constexpr double kShearScale = kShearOne;

// The alignment search starts from the largest possible sum of byte differences over the window.
constexpr int64_t kMaxGreyDifference = 255;
constexpr int64_t kMaxRgbDifference = 765;

int bytes_per_pixel(bool isRGB) { return isRGB ? 3 : 1; }

int64_t magnitude(int v) { return v < 0 ? -int64_t{v} : int64_t{v}; }

// Row y of the per-row shear, given its offset `off` in 4096ths: writes the columns the design
// names (off < 1: (off >> 12) + 2 .. width−1, else 0 .. width − (off >> 12) − 2; the 2 is kept as
// is), clipped to the row. `sample(row, p)` gives the value at source position p in 4096ths.
template <class Sample>
void shear_row(const unsigned char* srcRow, int width, int64_t off, unsigned char* dstRow, const Sample& sample) {
    const int64_t whole = floor_shift(off, kShearBits);
    int64_t first = 0, last = width - 1;
    if (off < 1)
        first = whole + 2;
    else
        last = width - whole - 2;
    first = std::max<int64_t>(first, 0);
    last = std::min<int64_t>(last, width - 1);
    for (int64_t x = first; x <= last; ++x) dstRow[x] = sample(srcRow, x * kShearOne + off);
}

template <class Sample>
void shear_rows(const unsigned char* src, int width, int height, double shear, unsigned char* dst,
                const Sample& sample) {
    if (width <= 0 || height <= 0) return;
    const int64_t step = trunc_to_int(shear * kShearScale);
    for (int y = 0; y < height; ++y) {
        const ptrdiff_t at = static_cast<ptrdiff_t>(y) * width;
        shear_row(src + at, width, step * y, dst + at, sample);
    }
}

// Pastes with SB bytes a source pixel and DB a destination pixel (a grey byte fills all DB bytes).
template <int SB, int DB>
void paste(const unsigned char* small, int smallWidth, int smallHeight, unsigned char* big, int bigWidth, int bigHeight,
           int x0, int y0) {
    if (smallWidth <= 0 || smallHeight <= 0 || bigWidth <= 0 || bigHeight <= 0) return;
    const int64_t yFirst = std::max<int64_t>(y0, 0);
    const int64_t yLast = std::min<int64_t>(bigHeight - 1, int64_t{y0} + smallHeight - 1);
    const int64_t xFirst = std::max<int64_t>(x0, 0);
    const int64_t xLast = std::min<int64_t>(bigWidth - 1, int64_t{x0} + smallWidth - 1);
    if (xFirst > xLast) return;
    const size_t count = static_cast<size_t>(xLast - xFirst + 1);
    for (int64_t y = yFirst; y <= yLast; ++y) {
        const unsigned char* in = small + ((y - y0) * smallWidth + (xFirst - x0)) * SB;
        unsigned char* out = big + (y * bigWidth + xFirst) * DB;
        if (SB == DB) {
            std::memcpy(out, in, count * SB);
        } else {
            for (size_t i = 0; i < count; ++i) std::memset(out + i * DB, in[i], DB);
        }
    }
}

}  // namespace
}  // namespace qel

using namespace qel;

void QelImageShift(unsigned char* src, int width, int height, bool isRGB, int dx, int dy, unsigned char* dst) {
    if (width <= 0 || height <= 0) return;
    const size_t pixelBytes = static_cast<size_t>(bytes_per_pixel(isRGB));
    const size_t rowBytes = static_cast<size_t>(width) * pixelBytes;
    const size_t total = rowBytes * static_cast<size_t>(height);

    // Vertical: rows move as one block; the rows vacated in dst keep what dst held (callers rely on it).
    const size_t rows = static_cast<size_t>(std::min<int64_t>(magnitude(dy), height));
    const size_t moved = total - rows * rowBytes;
    if (dy >= 0)
        std::memmove(dst + rows * rowBytes, src, moved);
    else
        std::memmove(dst, src + rows * rowBytes, moved);

    // Horizontal: the whole strip in dst moves, kept rows included; the bytes that crossed from the
    // neighbouring row are the ones cleared.
    const size_t cols = static_cast<size_t>(std::min<int64_t>(magnitude(dx), width));
    if (cols == 0) return;
    const size_t shift = cols * pixelBytes;
    if (cols == static_cast<size_t>(width)) {
        std::memset(dst, 0, total);
        return;
    }
    if (dx > 0)
        std::memmove(dst + shift, dst, total - shift);
    else
        std::memmove(dst, dst + shift, total - shift);
    const size_t cleared = dx > 0 ? 0 : rowBytes - shift;
    for (size_t row = 0; row < total; row += rowBytes) std::memset(dst + row + cleared, 0, shift);
}

void QelShiftXPerRowFast(unsigned char* src, int width, int height, double shear, unsigned char* dst) {
    shear_rows(src, width, height, shear, dst, [width](const unsigned char* row, int64_t p) {
        return row[clamp_index(floor_shift(p, kShearBits), width)];
    });
}

void QelShiftXPerRowFine(unsigned char* src, int width, int height, double shear, unsigned char* dst) {
    shear_rows(src, width, height, shear, dst, [width](const unsigned char* row, int64_t p) {
        const int64_t ix = floor_shift(p, kShearBits);
        const int f = frac_bits(p, kShearBits);
        const int left = row[clamp_index(ix, width)];
        const int right = row[clamp_index(ix + 1, width)];
        return static_cast<unsigned char>(((kShearOne - f) * left + f * right) >> kShearBits);
    });
}

int QelShiftImg2BasedImg1(unsigned char* img1, unsigned char* img2, unsigned char* dst, int width, int height,
                          bool isRGB, int maxDx, int maxDy, tagRECT rect, int* bestDx, int* bestDy) {
    // The window keeps maxDx columns and maxDy rows clear of the image's sides, so every shifted
    // copy of it stays inside.
    const int64_t top = std::max<int64_t>(maxDy, rect.top);
    const int64_t bottom = std::min<int64_t>(rect.bottom, int64_t{height} - maxDy - 1);
    const int64_t left = std::max<int64_t>(maxDx, rect.left);
    const int64_t right = std::min<int64_t>(rect.right, int64_t{width} - maxDx - 1);
    const int64_t rows = bottom - top + 1;
    const int64_t cols = right - left + 1;
    const bool emptyWindow = rows <= 0 || cols <= 0;

    int best = 0;
    *bestDx = 0;
    *bestDy = 0;
    if (!emptyWindow) {
        const int64_t pixels =
            std::min<int64_t>(std::min<int64_t>(rows, INT_MAX) * std::min<int64_t>(cols, INT_MAX), INT_MAX);
        best = static_cast<int>(std::min<int64_t>(pixels * (isRGB ? kMaxRgbDifference : kMaxGreyDifference), INT_MAX));
        const tagRECT window{static_cast<int32_t>(left), static_cast<int32_t>(top), static_cast<int32_t>(right),
                             static_cast<int32_t>(bottom)};
        // dx outer, dy inner; a later shift must be strictly better to win.
        for (int dx = -maxDx; dx <= maxDx; ++dx)
            for (int dy = -maxDy; dy <= maxDy; ++dy) {
                const tagRECT moved{window.left + dx, window.top + dy, window.right + dx, window.bottom + dy};
                const int d = QelImgDifferenceInRect(img1, img2, isRGB, width, window, moved);
                if (d < best) {
                    best = d;
                    *bestDx = dx;
                    *bestDy = dy;
                }
            }
    }

    if (width > 0 && height > 0)
        std::memcpy(
            dst, img1,
            static_cast<size_t>(width) * static_cast<size_t>(height) * static_cast<size_t>(bytes_per_pixel(isRGB)));
    QelImageShift(img2, width, height, isRGB, -*bestDx, -*bestDy, dst);
    return best;
}

void QelPasteGryImg2ResImg(unsigned char* smallImg, int smallWidth, int smallHeight, unsigned char* bigImg,
                           int bigWidth, int bigHeight, int x0, int y0) {
    paste<1, 1>(smallImg, smallWidth, smallHeight, bigImg, bigWidth, bigHeight, x0, y0);
}

void QelPasteGryImg2RGBImg(unsigned char* smallImg, int smallWidth, int smallHeight, unsigned char* bigImg,
                           int bigWidth, int bigHeight, int x0, int y0) {
    paste<1, 3>(smallImg, smallWidth, smallHeight, bigImg, bigWidth, bigHeight, x0, y0);
}

void QelPasteRGBImg2ResImg(unsigned char* smallImg, int smallWidth, int smallHeight, unsigned char* bigImg,
                           int bigWidth, int bigHeight, int x0, int y0) {
    paste<3, 3>(smallImg, smallWidth, smallHeight, bigImg, bigWidth, bigHeight, x0, y0);
}
