// Arithmetic shared by the line families: the approximation of pi, degrees to radians, and the
// truncating conversion every line function uses to turn a real coordinate or angle into an int.
#ifndef QEL_SRC_LINE_LINE_MATH_H
#define QEL_SRC_LINE_LINE_MATH_H

#include "core/exact_math.h"

#include <climits>
#include <cmath>
#include <cstdint>

namespace qel {

// The line code's pi. QelTwoPoints2ThroTheta has its own, coarser one.
constexpr double kLinePi = 3.1415926;

// ABC lines whose determinant a1·b2 − a2·b1 is smaller than this in magnitude count as parallel.
constexpr double kParallelDeterminant = 1e-5;

// theta · pi / 180, in that order.
inline double radians(double theta) { return theta * kLinePi / 180; }

// atan(q) · 180 / pi, in that order.
inline double atan_degrees(double q) { return qel::exact_atan(q) * 180 / kLinePi; }

// Truncation toward zero. A value outside the int range, or NaN, gives INT_MIN, as the x86
// truncating conversion does; every range test of the line code then rejects it.
inline int truncate_to_int(double v) {
    if (!(v > static_cast<double>(INT_MIN) - 1.0 && v < static_cast<double>(INT_MAX) + 1.0)) return INT_MIN;
    return static_cast<int>(v);
}

// Rounding as the line code writes it: +0.5, then truncation toward zero (so -2.7 gives -2).
inline int round_half_up_truncated(double v) { return truncate_to_int(v + 0.5); }

// Product of two ints in 32-bit arithmetic, wrapping on overflow.
inline int32_t wrapping_product(int a, int b) {
    return static_cast<int32_t>(static_cast<uint32_t>(a) * static_cast<uint32_t>(b));
}

}  // namespace qel

#endif
