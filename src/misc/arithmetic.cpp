// Pixel-wise image arithmetic: logic operations, absolute and clipped differences, running maxima
// and minima over a sequence of images, and the integral image.
#include "qel/misc.h"

#include "misc/arithmetic.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

size_t byte_count(int n) { return n > 0 ? static_cast<size_t>(n) : 0; }

// out[i] := op(a[i], b[i]) for i < count. out may be a or b.
template <typename Op>
void combine(const unsigned char* a, const unsigned char* b, size_t count, unsigned char* out, Op op) {
    for (size_t i = 0; i < count; ++i) out[i] = static_cast<unsigned char>(op(a[i], b[i]));
}

int clipped_difference(unsigned char a, unsigned char b) { return a > b ? a - b : 0; }

// Writes the absolute difference image (grey, one byte a pixel, for either input); when hist is
// not null it also counts the values written (the caller clears it).
void difference_image(const unsigned char* a, const unsigned char* b, int w, int h, bool isRGB, unsigned char* res,
                      int* hist) {
    const size_t pixels = qel::image_bytes(w, h, 1);
    if (!isRGB) {
        combine(a, b, pixels, res, qel::abs_diff);
    } else {
        for (size_t i = 0; i < pixels; ++i, a += 3, b += 3) {
            const int d = std::max(qel::abs_diff(a[0], b[0]),
                                   std::max(qel::abs_diff(a[1], b[1]), qel::abs_diff(a[2], b[2])));
            res[i] = static_cast<unsigned char>(d);
        }
    }
    if (hist != nullptr)
        for (size_t i = 0; i < pixels; ++i) ++hist[res[i]];
}

}  // namespace

void QelImg1AndImg2To1(unsigned char* a, unsigned char* b, int n) {
    combine(a, b, byte_count(n), a, [](unsigned char x, unsigned char y) { return x & y; });
}

void QelImg1OrImg2To1(unsigned char* a, unsigned char* b, int n) {
    combine(a, b, byte_count(n), a, [](unsigned char x, unsigned char y) { return x | y; });
}

void QelImg1XorImg2To1(unsigned char* a, unsigned char* b, int n) {
    combine(a, b, byte_count(n), a, [](unsigned char x, unsigned char y) { return x ^ y; });
}

void QelImg1AndImg2ToRes(unsigned char* a, unsigned char* b, int n, unsigned char* res) {
    combine(a, b, byte_count(n), res, [](unsigned char x, unsigned char y) { return x & y; });
}

void QelImg1OrImg2ToRes(unsigned char* a, unsigned char* b, int n, unsigned char* res) {
    combine(a, b, byte_count(n), res, [](unsigned char x, unsigned char y) { return x | y; });
}

void QelImg1XorImg2ToRes(unsigned char* a, unsigned char* b, int n, unsigned char* res) {
    combine(a, b, byte_count(n), res, [](unsigned char x, unsigned char y) { return x ^ y; });
}

void QelImg1Difference2To1(unsigned char* a, unsigned char* b, int w, int h) {
    combine(a, b, qel::image_bytes(w, h, 1), a, qel::abs_diff);
}

void QelImg1Substract2To1(unsigned char* a, unsigned char* b, int w, int h) {
    combine(a, b, qel::image_bytes(w, h, 1), a, clipped_difference);
}

void QelImg1Substract2To2(unsigned char* a, unsigned char* b, int w, int h) {
    // The result goes into the second image; the first is only read.
    combine(a, b, qel::image_bytes(w, h, 1), b, clipped_difference);
}

void QelImg1SubstractImg2(unsigned char* a, unsigned char* b, int w, int h, bool isRGB, unsigned char* res) {
    combine(a, b, qel::image_bytes(w, h, qel::bytes_per_pixel(isRGB)), res, clipped_difference);
}

void QelDifferenceImg12(unsigned char* a, unsigned char* b, int w, int h, bool isRGB, unsigned char* res) {
    difference_image(a, b, w, h, isRGB, res, nullptr);
}

void QelDifferenceImg12(unsigned char* a, unsigned char* b, int w, int h, bool isRGB, unsigned char* res,
                        int* histogram) {
    std::memset(histogram, 0, 256 * sizeof(int));
    difference_image(a, b, w, h, isRGB, res, histogram);
}

void QelRemainMaxGry(unsigned char* img, int w, int h, bool isRGB, unsigned char* accMax) {
    combine(accMax, img, qel::image_bytes(w, h, qel::bytes_per_pixel(isRGB)), accMax,
            [](unsigned char x, unsigned char y) { return std::max(x, y); });
}

void QelRemainMinGry(unsigned char* img, int w, int h, bool isRGB, unsigned char* accMin) {
    combine(accMin, img, qel::image_bytes(w, h, qel::bytes_per_pixel(isRGB)), accMin,
            [](unsigned char x, unsigned char y) { return std::min(x, y); });
}

void QelRemainMaxMinGry(unsigned char* img, int w, int h, bool isRGB, unsigned char* accMax, unsigned char* accMin) {
    const size_t count = qel::image_bytes(w, h, qel::bytes_per_pixel(isRGB));
    for (size_t i = 0; i < count; ++i) {
        accMax[i] = std::max(accMax[i], img[i]);
        accMin[i] = std::min(accMin[i], img[i]);
    }
}

void QelDoSumGryImg(unsigned char* img, int w, int h, int* sum) {
    if (w <= 0 || h <= 0) return;
    // 32-bit sums that wrap on overflow, as unsigned arithmetic does; stored as int.
    auto store = [](uint32_t v) { return static_cast<int>(v); };
    auto load = [](int v) { return static_cast<uint32_t>(v); };
    uint32_t running = 0;
    for (int x = 0; x < w; ++x) {
        running += img[x];
        sum[x] = store(running);
    }
    for (int y = 1; y < h; ++y) {
        const unsigned char* row = img + static_cast<std::ptrdiff_t>(y) * w;
        int* s = sum + static_cast<std::ptrdiff_t>(y) * w;
        const int* above = s - w;
        s[0] = store(row[0] + load(above[0]));
        for (int x = 1; x < w; ++x) s[x] = store(load(s[x - 1]) + load(above[x]) - load(above[x - 1]) + row[x]);
    }
}
