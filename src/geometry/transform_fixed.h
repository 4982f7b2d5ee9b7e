// Fixed-point helpers of the rotation, shear and shift family: truncation of scaled doubles,
// floor splitting of signed positions, and the run of a row whose linear position stays in range.
#ifndef QEL_SRC_GEOMETRY_TRANSFORM_FIXED_H
#define QEL_SRC_GEOMETRY_TRANSFORM_FIXED_H

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>

namespace qel {
namespace transform {

// A double truncated toward zero to int. Values beyond the int range saturate and NaN gives 0,
// so extreme angles and shears cannot make the conversion undefined.
inline int trunc_to_int(double v) {
    if (std::isnan(v)) return 0;
    if (v >= 2147483647.0) return INT_MAX;
    if (v <= -2147483648.0) return INT_MIN;
    return static_cast<int>(v);
}

// v >> bits rounded toward minus infinity (an arithmetic shift), written so that it does not
// depend on how the compiler shifts negative values.
constexpr int64_t floor_shift(int64_t v, int bits) { return v >= 0 ? v >> bits : ~(~v >> bits); }

// The fractional part of a fixed-point value with `bits` fractional bits (always 0 .. 2^bits − 1).
constexpr int frac_bits(int64_t v, int bits) { return static_cast<int>(v & ((int64_t{1} << bits) - 1)); }

constexpr int64_t floor_div(int64_t a, int64_t b) {  // b > 0
    return a >= 0 ? a / b : -((-a + b - 1) / b);
}
constexpr int64_t ceil_div(int64_t a, int64_t b) {  // b > 0
    return a >= 0 ? (a + b - 1) / b : -(-a / b);
}

// Closed range of integers; empty when first > last.
struct Span {
    int64_t first;
    int64_t last;
    bool empty() const { return first > last; }
};

// The integers t in `range` for which 0 <= coef·t + offset <= limit. The positions along a row of
// every transform here are linear in the column, so "the sample lies inside the source" holds on
// exactly one run of columns, which this finds without testing each one.
inline Span linear_span(int64_t coef, int64_t offset, int64_t limit, Span range) {
    if (limit < 0) return {range.first, range.first - 1};
    if (coef == 0) return offset >= 0 && offset <= limit ? range : Span{range.first, range.first - 1};
    Span s = range;
    if (coef > 0) {
        s.first = std::max(s.first, ceil_div(-offset, coef));
        s.last = std::min(s.last, floor_div(limit - offset, coef));
    } else {
        s.first = std::max(s.first, ceil_div(offset - limit, -coef));
        s.last = std::min(s.last, floor_div(offset, -coef));
    }
    return s;
}

inline Span intersect(Span a, Span b) { return {std::max(a.first, b.first), std::min(a.last, b.last)}; }

// Index clamped to 0 .. size − 1 (size > 0): the nearest pixel inside for a position outside.
inline int64_t clamp_index(int64_t i, int size) { return std::clamp<int64_t>(i, 0, size - 1); }

}  // namespace transform
}  // namespace qel

#endif
