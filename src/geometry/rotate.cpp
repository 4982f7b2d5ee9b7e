// Rotation by an arbitrary angle: the whole-image rotation into a new buffer (1024ths), and the
// rotated-rectangle extractors (16.16) with bilinear or nearest, sheared samples.
//
// Along an output row every source position is linear in the column, so the columns whose samples
// lie inside the source form one run. Each row finds that run once and samples it without bounds
// tests; the columns before and after it take the outside rule (0, fill, or the nearest pixel).
#include "qel/geometry.h"

#include "geometry/transform_fixed.h"
#include "core/exact_math.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>

namespace qel {
namespace {

using transform::clamp_index;
using transform::floor_shift;
using transform::frac_bits;
using transform::intersect;
using transform::linear_span;
using transform::Span;
using transform::trunc_to_int;

// Each function has its own approximation of pi; they decide the truncated sines and cosines.
constexpr double kPiWholeImage = 3.1415926;
constexpr double kPiRectangle = 3.1415;
constexpr double kPiShear = 3.14159;

constexpr int kWholeImageBits = 10;  // sines and cosines in 1024ths
constexpr int64_t kWholeImageOne = int64_t{1} << kWholeImageBits;
constexpr int kRectBits = 16;  // 16.16 positions
constexpr int kRectOne = 1 << kRectBits;
constexpr int kShearBits = 12;  // the shear step in 4096ths
constexpr double kShearOne = 1 << kShearBits;

// Sheared rows start no further than this from column 0, so positions stay far from overflow;
// such a row lies wholly outside any image either way.
constexpr int64_t kMaxShearStart = int64_t{1} << 31;

// ---- bilinear samples ------------------------------------------------------------------------

// ((65536 − f)·a + f·b) >> 16 in 32 bits, with no rounding term; the sum is written as
// 65536·a + f·(b − a), the same integer with one multiplication.
inline int lerp16(int a, int b, int f) { return (a * kRectOne + f * (b - a)) >> kRectBits; }

// One bilinear pixel of B bytes from its four neighbours.
template <int B>
inline void blend(const unsigned char* p00, const unsigned char* p10, const unsigned char* p01,
                  const unsigned char* p11, int fx, int fy, unsigned char* out) {
    for (int ch = 0; ch < B; ++ch) {
        const int top = lerp16(p00[ch], p10[ch], fx);
        const int bottom = lerp16(p01[ch], p11[ch], fx);
        out[ch] = static_cast<unsigned char>(lerp16(top, bottom, fy));
    }
}

// A source image with B bytes a pixel.
template <int B>
struct Source {
    const unsigned char* px;
    int width;
    int height;

    const unsigned char* at(int64_t x, int64_t y) const {
        return px + (static_cast<ptrdiff_t>(y) * width + static_cast<ptrdiff_t>(x)) * B;
    }

    // Bilinear sample at a 16.16 position whose neighbourhood may leave the image: neighbours
    // outside are replaced by the nearest pixel inside (those of weight 0 then have no effect).
    void bilinear_clamped(int64_t X, int64_t Y, unsigned char* out) const {
        const int64_t ix = floor_shift(X, kRectBits);
        const int64_t iy = floor_shift(Y, kRectBits);
        const int64_t xa = clamp_index(ix, width), xb = clamp_index(ix + 1, width);
        const int64_t ya = clamp_index(iy, height), yb = clamp_index(iy + 1, height);
        blend<B>(at(xa, ya), at(xb, ya), at(xa, yb), at(xb, yb), frac_bits(X, kRectBits), frac_bits(Y, kRectBits), out);
    }
};

// Output row of a rectangle extractor: pixel i samples (X + i·c, Y + i·s). Pixels whose 2 × 2
// neighbourhood lies inside are interpolated directly; the others go to `outside(X, Y, out)`.
// Returns whether any pixel was outside.
template <int B, class Outside>
bool bilinear_row(const Source<B>& src, int64_t X, int64_t Y, int64_t c, int64_t s, unsigned char* out, int dstWidth,
                  const Outside& outside) {
    // ix in 0 .. width−2 and iy in 0 .. height−2: the neighbours ix+1 and iy+1 are inside too.
    const Span row{0, dstWidth - 1};
    const Span in = intersect(linear_span(c, X, int64_t{kRectOne} * (src.width - 1) - 1, row),
                              linear_span(s, Y, int64_t{kRectOne} * (src.height - 1) - 1, row));
    const int64_t first = in.empty() ? dstWidth : in.first;
    const int64_t last = in.empty() ? dstWidth - 1 : in.last;

    for (int64_t i = 0; i < first; ++i) outside(X + i * c, Y + i * s, out + i * B);
    const ptrdiff_t stride = static_cast<ptrdiff_t>(src.width) * B;
    int64_t x = X + first * c, y = Y + first * s;
    for (int64_t i = first; i <= last; ++i, x += c, y += s) {
        const unsigned char* p = src.at(x >> kRectBits, y >> kRectBits);  // both non-negative here
        blend<B>(p, p + B, p + stride, p + stride + B, frac_bits(x, kRectBits), frac_bits(y, kRectBits), out + i * B);
    }
    for (int64_t i = last + 1; i < dstWidth; ++i) outside(X + i * c, Y + i * s, out + i * B);
    return first > 0 || last < dstWidth - 1;
}

struct RectFactors {
    int64_t s;
    int64_t c;
};

// sin and cos of the extractors, in 65536ths, pi as 3.1415.
RectFactors rect_factors(double degrees) {
    const double radians = degrees * kPiRectangle / 180;
    return {trunc_to_int(qel::exact_sin(radians) * kRectOne), trunc_to_int(qel::exact_cos(radians) * kRectOne)};
}

// Runs every output row; `outside` handles the samples without a neighbourhood inside.
template <int B, class Outside>
bool extract_rect(const unsigned char* src, int width, int height, int x0, int y0, double degrees, unsigned char* dst,
                  int dstWidth, int dstHeight, const Outside& outside) {
    if (dstWidth <= 0 || dstHeight <= 0) return false;
    const RectFactors f = rect_factors(degrees);
    const Source<B> source{src, width, height};
    bool any = false;
    for (int j = 0; j < dstHeight; ++j) {
        const int64_t X = int64_t{x0} * kRectOne - j * f.s;
        const int64_t Y = int64_t{y0} * kRectOne + j * f.c;
        unsigned char* out = dst + static_cast<ptrdiff_t>(j) * dstWidth * B;
        any = bilinear_row(source, X, Y, f.c, f.s, out, dstWidth, outside) || any;
    }
    return any;
}

template <int B>
void extract_rect_nearest_inside(const unsigned char* src, int width, int height, int x0, int y0, double degrees,
                                 unsigned char* dst, int dstWidth, int dstHeight) {
    if (width <= 0 || height <= 0) return;
    const Source<B> source{src, width, height};
    extract_rect<B>(src, width, height, x0, y0, degrees, dst, dstWidth, dstHeight,
                    [&source](int64_t X, int64_t Y, unsigned char* out) { source.bilinear_clamped(X, Y, out); });
}

template <int B>
bool extract_rect_with_fill(const unsigned char* src, int width, int height, int x0, int y0, double degrees, int fill,
                            unsigned char* dst, int dstWidth, int dstHeight) {
    const auto value = static_cast<unsigned char>(fill);
    return extract_rect<B>(src, width, height, x0, y0, degrees, dst, dstWidth, dstHeight,
                           [value](int64_t, int64_t, unsigned char* out) { std::memset(out, value, B); });
}

}  // namespace
}  // namespace qel

using namespace qel;

unsigned char* QelRotateImgByCCS(unsigned char* src, int width, int height, double degrees, int* newWidth,
                                 int* newHeight) {
    const double theta = degrees * kPiWholeImage / 180;
    const int64_t c = trunc_to_int(qel::exact_cos(theta) * kWholeImageOne);
    const int64_t s = trunc_to_int(qel::exact_sin(theta) * kWholeImageOne);

    // Bounding box of the rotated corners. Corner (0, 0) stays put, so the box always holds the
    // origin and the starting values below never survive.
    int64_t minX = width > height ? width : height, minY = minX, maxX = 0, maxY = 0;
    const int64_t cornerX[4] = {0, int64_t{width} - 1, int64_t{width} - 1, 0};
    const int64_t cornerY[4] = {0, 0, int64_t{height} - 1, int64_t{height} - 1};
    for (int k = 0; k < 4; ++k) {
        const int64_t X = floor_shift(cornerX[k] * c - cornerY[k] * s, kWholeImageBits);
        const int64_t Y = floor_shift(cornerX[k] * s + cornerY[k] * c, kWholeImageBits);
        if (X < minX) minX = X;
        if (X > maxX) maxX = X;
        if (Y < minY) minY = Y;
        if (Y > maxY) maxY = Y;
    }
    const int64_t outWidth = maxX - minX + 1;
    const int64_t outHeight = maxY - minY + 1;
    if (outWidth > INT_MAX || outHeight > INT_MAX) {
        *newWidth = 0;
        *newHeight = 0;
        return nullptr;
    }
    *newWidth = static_cast<int>(outWidth);
    *newHeight = static_cast<int>(outHeight);
    if (static_cast<uint64_t>(outWidth) * static_cast<uint64_t>(outHeight) > static_cast<uint64_t>(PTRDIFF_MAX))
        return nullptr;
    const size_t bytes = static_cast<size_t>(outWidth) * static_cast<size_t>(outHeight);
    unsigned char* out = new (std::nothrow) unsigned char[bytes];
    if (out == nullptr) return nullptr;

    // Each output pixel takes the source pixel at the floor of its rotation back by −θ.
    const int64_t ci = trunc_to_int(qel::exact_cos(-theta) * kWholeImageOne);
    const int64_t si = trunc_to_int(qel::exact_sin(-theta) * kWholeImageOne);
    const Span columns{minX, maxX};
    for (int64_t Y = minY; Y <= maxY; ++Y) {
        unsigned char* row = out + static_cast<ptrdiff_t>(Y - minY) * outWidth;
        // sx = (X·ci + a) >> 10 and sy = (X·si + b) >> 10 are inside for one run of X.
        const int64_t a = -Y * si;
        const int64_t b = Y * ci;
        const Span in = intersect(linear_span(ci, a, kWholeImageOne * width - 1, columns),
                                  linear_span(si, b, kWholeImageOne * height - 1, columns));
        if (in.empty()) {
            std::memset(row, 0, static_cast<size_t>(outWidth));
            continue;
        }
        std::memset(row, 0, static_cast<size_t>(in.first - minX));
        int64_t u = in.first * ci + a, v = in.first * si + b;
        for (int64_t X = in.first; X <= in.last; ++X, u += ci, v += si)
            row[X - minX] = src[static_cast<ptrdiff_t>(v >> kWholeImageBits) * width + (u >> kWholeImageBits)];
        std::memset(row + (in.last - minX + 1), 0, static_cast<size_t>(maxX - in.last));
    }
    return out;
}

void QelCopyRectFromRotateCCS(unsigned char* src, int width, int height, int x0, int y0, double degrees,
                              unsigned char* dst, int dstWidth, int dstHeight) {
    extract_rect_nearest_inside<1>(src, width, height, x0, y0, degrees, dst, dstWidth, dstHeight);
}

bool QelCopyRectFromRotateCCS(unsigned char* src, int width, int height, int x0, int y0, double degrees, int fill,
                              unsigned char* dst, int dstWidth, int dstHeight) {
    return extract_rect_with_fill<1>(src, width, height, x0, y0, degrees, fill, dst, dstWidth, dstHeight);
}

void QelRgbCopyRectFromRotateCCS(unsigned char* src, int width, int height, int x0, int y0, double degrees,
                                 unsigned char* dst, int dstWidth, int dstHeight) {
    extract_rect_nearest_inside<3>(src, width, height, x0, y0, degrees, dst, dstWidth, dstHeight);
}

bool QelRgbCopyRectFromRotateCCS(unsigned char* src, int width, int height, int x0, int y0, double degrees, int fill,
                                 unsigned char* dst, int dstWidth, int dstHeight) {
    return extract_rect_with_fill<3>(src, width, height, x0, y0, degrees, fill, dst, dstWidth, dstHeight);
}

void QelCopyRectFromRotateAndShiftFast(unsigned char* src, int width, int height, int x0, int y0, double degrees,
                                       double shearDegrees, unsigned char* dst, int dstWidth, int dstHeight) {
    if (width <= 0 || height <= 0 || dstWidth <= 0 || dstHeight <= 0) return;
    // Angles past 90 are taken as their supplement turned the other way.
    const double theta = degrees <= 90 ? degrees : degrees - 180;
    const RectFactors f = rect_factors(theta);
    const double beta = (degrees > 90 ? 180 - degrees : -degrees) + shearDegrees;
    const double t = qel::exact_tan((beta - 90) * kPiShear / 180);
    const int64_t shearStep = trunc_to_int(-t * kShearOne);

    const Source<1> source{src, width, height};
    for (int j = 0; j < dstHeight; ++j) {
        // The + 1 is part of the design: every row starts one pixel along its line.
        const int64_t start = std::clamp(floor_shift(j * shearStep, kShearBits) + 1, -kMaxShearStart, kMaxShearStart);
        const int64_t X = int64_t{x0} * kRectOne - j * f.s;
        const int64_t Y = int64_t{y0} * kRectOne + j * f.c;
        unsigned char* out = dst + static_cast<ptrdiff_t>(j) * dstWidth;  // out[i − start] is pixel i

        const Span row{start, start + dstWidth - 1};
        const Span in = intersect(linear_span(f.c, X, int64_t{kRectOne} * width - 1, row),
                                  linear_span(f.s, Y, int64_t{kRectOne} * height - 1, row));
        const int64_t first = in.empty() ? row.last + 1 : in.first;
        const int64_t last = in.empty() ? row.last : in.last;
        auto nearest_clamped = [&](int64_t i) {
            out[i - start] = *source.at(clamp_index(floor_shift(X + i * f.c, kRectBits), width),
                                        clamp_index(floor_shift(Y + i * f.s, kRectBits), height));
        };
        for (int64_t i = row.first; i < first; ++i) nearest_clamped(i);
        for (int64_t i = first; i <= last; ++i)
            out[i - start] = *source.at((X + i * f.c) >> kRectBits, (Y + i * f.s) >> kRectBits);
        for (int64_t i = last + 1; i <= row.last; ++i) nearest_clamped(i);
    }
}
