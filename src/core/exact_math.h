// The library's transcendental functions: sine, cosine, tangent, arc tangent, exponential and
// natural logarithm, written in plain double arithmetic so that every platform computes the same
// bits. C libraries differ in the last bit of these functions (and an x87 or fused-multiply-add
// evaluation would differ again), which would make angles, rotation factors and line positions
// differ between builds. Each function works in double-double arithmetic (an unevaluated sum of
// two doubles, about 106 bits) and rounds once at the end, so its result is the correctly rounded
// value in all but vanishingly rare cases — the value a good C library returns as well.
//
// Every transcendental call of the library goes through these; sqrt, floor, fmod and the like are
// exact by IEEE rules and stay with the C library.
#ifndef QEL_SRC_CORE_EXACT_MATH_H
#define QEL_SRC_CORE_EXACT_MATH_H

namespace qel {

double exact_sin(double x);
double exact_cos(double x);
double exact_tan(double x);
double exact_atan(double x);
double exact_exp(double x);
double exact_log(double x);

}  // namespace qel

#endif  // QEL_SRC_CORE_EXACT_MATH_H
