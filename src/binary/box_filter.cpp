// Box-count filters on binary images: the fixed-window count filter with copied borders, and the
// masked adaptive filter whose window shrinks at the borders. Both keep one running sum per column
// over the window's rows and one running sum along the row, so the cost does not grow with the window.
#include "qel/binary.h"

#include "binary/neighbourhood.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace qel {
namespace {

// Widest image the masked filters accept: they refuse widths of 4095 and more.
constexpr int kMaskedFilterMaxWidth = 4094;
// Mean the last pixel of every row is compared with, whatever the threshold (intended).
constexpr int kLastColumnThreshold = 126;
// Mask bytes up to this value keep their pixel in the table-driven masked filter.
constexpr int kLastKeepingMaskValue = 128;

unsigned char* row_ptr(unsigned char* image, int width, int y) { return image + static_cast<std::ptrdiff_t>(y) * width; }

void add_row(unsigned int* columnSums, const unsigned char* row, int width) {
    for (int x = 0; x < width; ++x) columnSums[x] += row[x];
}

void subtract_row(unsigned int* columnSums, const unsigned char* row, int width) {
    for (int x = 0; x < width; ++x) columnSums[x] -= row[x];
}

unsigned char binarise(bool object) { return object ? kObject : kBackground; }

// One output row of the count filter: the window sum over columns 0..2·rx gives columns 0..rx,
// the sum then slides up to column width-rx-1, and the last rx columns repeat the last value.
// Sums are unsigned and wrap like the column sums they come from.
void count_filter_row(const unsigned int* columnSums, int width, int rx, unsigned int threshold,
                      unsigned char* out) {
    unsigned int sum = 0;
    for (int x = 0; x <= 2 * rx; ++x) sum += columnSums[x];
    unsigned char value = binarise(sum > threshold);
    std::memset(out, value, static_cast<size_t>(rx) + 1);
    for (int x = rx + 1; x <= width - rx - 1; ++x) {
        sum = sum - columnSums[x - rx - 1] + columnSums[x + rx];
        value = binarise(sum > threshold);
        out[x] = value;
    }
    std::memset(out + (width - rx), value, static_cast<size_t>(rx));
}

// The masked value of a pixel: image AND NOT mask.
struct MaskByComplement {
    unsigned char operator()(unsigned char pixel, unsigned char mask) const {
        return static_cast<unsigned char>(pixel & ~mask);
    }
};

// The masked value through a table: mask 0..128 keeps the pixel, 129..255 removes it.
struct MaskByTable {
    unsigned char keep[256]{};
    constexpr MaskByTable() {
        for (int m = 0; m < 256; ++m) keep[m] = m <= kLastKeepingMaskValue ? kObject : kBackground;
    }
    unsigned char operator()(unsigned char pixel, unsigned char mask) const {
        return static_cast<unsigned char>(pixel & keep[mask]);
    }
};

// The masked adaptive filter. The window around (x, y) has half sizes min(x, rx, width-1-x) and
// min(y, ry, height-1-y): it grows by two columns (rows) a step from the left (top) border, slides
// at full size, and shrinks by two a step towards the right (bottom) border, so it stays centred
// and inside the image. A pixel becomes 255 when the window's sum exceeds its pixel count times
// the threshold.
template <class Mask>
bool remove_mask_and_filter(const unsigned char* image, const unsigned char* mask, int width, int height, int rx,
                            int ry, int threshold, unsigned char* out, const Mask& masked) {
    if (width > kMaskedFilterMaxWidth) return false;
    if (width <= 0 || height <= 0) return true;
    // A window wider or taller than the image is cut to the largest that fits centred.
    rx = std::clamp(rx, 0, (width - 1) / 2);
    ry = std::clamp(ry, 0, (height - 1) / 2);

    std::vector<int64_t> columnSums(static_cast<size_t>(width), 0);
    auto addRow = [&](int y, int sign) {
        const std::ptrdiff_t base = static_cast<std::ptrdiff_t>(y) * width;
        for (int x = 0; x < width; ++x) columnSums[static_cast<size_t>(x)] += sign * masked(image[base + x], mask[base + x]);
    };

    int top = 0;
    int bottom = 0;
    addRow(0, +1);
    for (int y = 0; y < height; ++y) {
        const int64_t rows = bottom - top + 1;
        unsigned char* outRow = out + static_cast<std::ptrdiff_t>(y) * width;
        int left = 0;
        int right = 0;
        int64_t sum = columnSums[0];
        for (int x = 0; x < width; ++x) {
            const int half = std::min({x, rx, width - 1 - x});
            while (right < x + half) sum += columnSums[static_cast<size_t>(++right)];
            while (left < x - half) sum -= columnSums[static_cast<size_t>(left++)];
            const int64_t pixels = (2 * half + 1) * rows;
            const int level = x == width - 1 ? kLastColumnThreshold : threshold;
            outRow[x] = binarise(sum > pixels * level);
        }
        if (y < ry) {  // the window grows by two rows
            addRow(++bottom, +1);
            addRow(++bottom, +1);
        } else if (y < height - ry - 1) {  // it slides by one row
            addRow(++bottom, +1);
            addRow(top++, -1);
        } else if (y < height - 1) {  // it shrinks by two rows
            addRow(top++, -1);
            addRow(top++, -1);
        }
    }
    return true;
}

}  // namespace
}  // namespace qel

void QelBinImgFilter(unsigned char* image, int width, int height, int rx, int ry, unsigned int* columnSums,
                     unsigned int threshold, unsigned char* out) {
    // The window must fit in the image: otherwise the sums would reach past its rows and columns.
    if (width <= 0 || height <= 0 || rx < 0 || ry < 0 || rx > (width - 1) / 2 || ry > (height - 1) / 2) return;
    std::fill(columnSums, columnSums + width, 0u);
    for (int y = 0; y < 2 * ry; ++y) qel::add_row(columnSums, qel::row_ptr(image, width, y), width);
    for (int y = ry; y <= height - ry - 1; ++y) {
        qel::add_row(columnSums, qel::row_ptr(image, width, y + ry), width);
        qel::count_filter_row(columnSums, width, rx, threshold, qel::row_ptr(out, width, y));
        qel::subtract_row(columnSums, qel::row_ptr(image, width, y - ry), width);
    }
    // The rows the window cannot reach copy the nearest computed row.
    const size_t rowBytes = static_cast<size_t>(width);
    for (int y = 0; y < ry; ++y) std::memcpy(qel::row_ptr(out, width, y), qel::row_ptr(out, width, ry), rowBytes);
    for (int y = height - ry; y < height; ++y)
        std::memcpy(qel::row_ptr(out, width, y), qel::row_ptr(out, width, height - 1 - ry), rowBytes);
}

bool QelBinImgFilter(unsigned char* image, int width, int height, int rx, int ry, unsigned int threshold,
                     unsigned char* out) {
    std::vector<unsigned int> columnSums(static_cast<size_t>(std::max(width, 1)));
    QelBinImgFilter(image, width, height, rx, ry, columnSums.data(), threshold, out);
    return true;
}

bool QelBinImgRemoveMskAndFilter(unsigned char* image, unsigned char* mask, int width, int height, int rx, int ry,
                                 int threshold, unsigned char* out) {
    return qel::remove_mask_and_filter(image, mask, width, height, rx, ry, threshold, out, qel::MaskByComplement{});
}

bool QelBinImgRemoveMskAndFilterUseLUT(unsigned char* image, unsigned char* mask, int width, int height, int rx,
                                       int ry, int threshold, unsigned char* out) {
    static constexpr qel::MaskByTable kTable{};
    return qel::remove_mask_and_filter(image, mask, width, height, rx, ry, threshold, out, kTable);
}
