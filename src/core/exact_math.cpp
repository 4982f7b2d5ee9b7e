// Portable sine, cosine, tangent, arc tangent, exponential and logarithm (see exact_math.h).
//
// Method: reduce the argument exactly (or to far more bits than a double holds), evaluate a
// series in double-double arithmetic, round once. Double-double products use Dekker's splitting,
// not a fused multiply-add, and the library is built without floating-point contraction, so every
// step is a plain IEEE double operation and gives the same bits everywhere.
#include "core/exact_math.h"

#include <cmath>
#include <cstdint>
#include <limits>

namespace qel {
namespace {

// An unevaluated sum hi + lo with |lo| ≤ half an ulp of hi.
struct DD {
    double hi;
    double lo;
};

// a + b exactly, given |a| ≥ |b| (or a = 0).
DD fast_two_sum(double a, double b) {
    const double s = a + b;
    return {s, b - (s - a)};
}

// a + b exactly, any order of magnitude.
DD two_sum(double a, double b) {
    const double s = a + b;
    const double bb = s - a;
    return {s, (a - (s - bb)) + (b - bb)};
}

// Dekker's split of a into two halves of at most 26 significant bits each.
void split(double a, double& hi, double& lo) {
    const double c = 134217729.0 * a;  // 2^27 + 1
    hi = c - (c - a);
    lo = a - hi;
}

// a · b exactly (barring overflow and underflow).
DD two_prod(double a, double b) {
    const double p = a * b;
    double ah = 0, al = 0, bh = 0, bl = 0;
    split(a, ah, al);
    split(b, bh, bl);
    return {p, ((ah * bh - p) + ah * bl + al * bh) + al * bl};
}

DD add(DD a, DD b) {
    DD s = two_sum(a.hi, b.hi);
    const DD t = two_sum(a.lo, b.lo);
    s = fast_two_sum(s.hi, s.lo + t.hi);
    return fast_two_sum(s.hi, s.lo + t.lo);
}

DD add(DD a, double b) {
    const DD s = two_sum(a.hi, b);
    return fast_two_sum(s.hi, s.lo + a.lo);
}

DD neg(DD a) { return {-a.hi, -a.lo}; }

DD mul(DD a, DD b) {
    const DD p = two_prod(a.hi, b.hi);
    return fast_two_sum(p.hi, p.lo + (a.hi * b.lo + a.lo * b.hi));
}

DD mul(DD a, double b) {
    const DD p = two_prod(a.hi, b);
    return fast_two_sum(p.hi, p.lo + a.lo * b);
}

// Long division: three quotient digits, each correcting the remainder of the one before.
DD div(DD a, DD b) {
    const double q1 = a.hi / b.hi;
    DD r = add(a, neg(mul(b, q1)));
    const double q2 = r.hi / b.hi;
    r = add(r, neg(mul(b, q2)));
    const double q3 = r.hi / b.hi;
    return add(fast_two_sum(q1, q2), q3);
}

DD div(DD a, double b) { return div(a, DD{b, 0.0}); }

// One Newton step from the correctly rounded double square root.
DD sqrt_dd(DD a) {
    const double s = std::sqrt(a.hi);
    const DD e = add(a, neg(two_prod(s, s)));
    return fast_two_sum(s, e.hi / (2.0 * s));
}

double round_dd(DD a) { return a.hi + a.lo; }

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kTiny = 0x1p-27;  // below this sin x, tan x and atan x round to x, cos x to 1

constexpr DD kPiOver2 = {0x1.921fb54442d18p+0, 0x1.1a62633145c07p-54};
constexpr DD kLn2 = {0x1.62e42fefa39efp-1, 0x1.abc9e3b39803fp-56};
constexpr double kTwoOverPi = 0x1.45f306dc9c883p-1;
constexpr double kLog2E = 0x1.71547652b82fep+0;
constexpr double kSqrtHalf = 0x1.6a09e667f3bcdp-1;

// pi/2 in pieces of 24 significant bits: k · piece is exact for |k| < 2^29.
constexpr double kPiOver2Pieces[] = {0x1.921fb4p+0,    0x1.4442d0p-24,  0x1.846988p-48, 0x1.8cc516p-72,
                                     0x1.01b838p-96,   0x1.a25204p-120, 0x1.382228p-145};
// ln 2 in pieces of 32 significant bits: k · piece is exact for |k| < 2^21.
constexpr double kLn2Pieces[] = {0x1.62e42feep-1, 0x1.a39ef356p-33, 0x1.93c76730p-65, 0x1.f97b578p-103};

// The binary digits of 2/pi, 24 at a time: 2/pi = sum of kTwoOverPiDigits[j] · 2^(−24(j + 1)).
// 56 digits reach far enough for the largest finite double.
constexpr uint32_t kTwoOverPiDigits[] = {
    0xA2F983, 0x6E4E44, 0x1529FC, 0x2757D1, 0xF534DD, 0xC0DB62, 0x95993C, 0x439041, 0xFE5163, 0xABDEBB,
    0xC561B7, 0x246E3A, 0x424DD2, 0xE00649, 0x2EEA09, 0xD1921C, 0xFE1DEB, 0x1CB129, 0xA73EE8, 0x8235F5,
    0x2EBB44, 0x84E99C, 0x7026B4, 0x5F7E41, 0x3991D6, 0x398353, 0x39F49C, 0x845F8B, 0xBDF928, 0x3B1FF8,
    0x97FFDE, 0x05980F, 0xEF2F11, 0x8B5A0A, 0x6D1F6D, 0x367ECF, 0x27CB09, 0xB74F46, 0x3F669E, 0x5FEA2D,
    0x7527BA, 0xC7EBE5, 0xF17B3D, 0x0739F7, 0x8A5292, 0xEA6BFB, 0x5FB11F, 0x8D5D08, 0x560330, 0x46FC7B,
    0x6BABF0, 0xCFBC20, 0x9AF436, 0x1DA9E3, 0x91615E, 0xE61B08};

// Reduction of a large finite a ≥ 2^29: a · 2/pi modulo 4 in integer arithmetic, from the digits
// of 2/pi that matter (the earlier ones only add multiples of 4, the later ones less than 2^−138).
// Returns the quadrant; r receives the remainder in [−pi/4, pi/4].
int reduce_large(double a, DD& r) {
    int exponent = 0;
    const double m = std::frexp(a, &exponent);
    const uint64_t mantissa = static_cast<uint64_t>(std::ldexp(m, 53));
    const int e = exponent - 53;  // a = mantissa · 2^e, e ≥ −23
    const uint64_t mDigits[3] = {mantissa & 0xFFFFFF, (mantissa >> 24) & 0xFFFFFF, mantissa >> 48};
    const int first = e >= 2 ? (e - 2) / 24 : 0;
    constexpr int kUsed = 9;
    // N = sum over i of mantissa · digit[first + i] · 2^(24(kUsed − 1 − i)), in base 2^24.
    uint64_t acc[kUsed + 3] = {};
    for (int i = 0; i < kUsed; ++i)
        for (int t = 0; t < 3; ++t) acc[kUsed - 1 - i + t] += mDigits[t] * kTwoOverPiDigits[first + i];
    for (int i = 0; i + 1 < kUsed + 3; ++i) {
        acc[i + 1] += acc[i] >> 24;
        acc[i] &= 0xFFFFFF;
    }
    // a · 2/pi ≡ N · 2^(w − 24(kUsed − 1)) (mod 4), w the weight of the first digit's product.
    const int w = e - 24 * (first + 1);
    const int point = 24 * (kUsed - 1) - w;  // bit of N that is the units bit of a · 2/pi
    auto bit = [&acc](int b) { return static_cast<int>((acc[b / 24] >> (b % 24)) & 1); };
    int quadrant = bit(point) + 2 * bit(point + 1);
    DD f = {0.0, 0.0};
    for (int i = point / 24; i >= 0; --i) {
        uint64_t d = acc[i];
        if (i == point / 24) d &= (uint64_t{1} << (point % 24)) - 1;
        f = add(f, std::ldexp(static_cast<double>(d), 24 * i - point));
    }
    if (f.hi >= 0.5) {
        f = add(f, -1.0);
        ++quadrant;
    }
    r = mul(f, kPiOver2);
    return quadrant & 3;
}

// x = n · pi/2 + r with |r| ≤ about pi/4; returns n modulo 4 (x finite).
int reduce_quadrant(double x, DD& r) {
    const double a = std::fabs(x);
    if (a <= 0.785398) {
        r = {x, 0.0};
        return 0;
    }
    if (a < 0x1p29) {
        const double k = std::floor(x * kTwoOverPi + 0.5);
        r = {x, 0.0};
        for (double piece : kPiOver2Pieces) r = add(r, -(k * piece));
        return static_cast<int>(static_cast<int64_t>(k) & 3);
    }
    int n = reduce_large(a, r);
    if (x < 0) {
        r = neg(r);
        n = (4 - n) & 3;
    }
    return n;
}

// Series coefficients in double-double, made once: (−1)^k/(2k+1)!, (−1)^k/(2k)!, 1/n!, and
// ±1/(2k+1).
constexpr int kSinCosTerms = 15;
constexpr int kExpTerms = 25;
constexpr int kOddTerms = 24;
struct Coefficients {
    DD sin[kSinCosTerms];
    DD cos[kSinCosTerms];
    DD exp[kExpTerms];
    DD atan[kOddTerms];
    DD atanh[kOddTerms];
};
const Coefficients& coefficients() {
    static const Coefficients c = [] {
        Coefficients t{};
        DD factorial = {1.0, 0.0};  // 1/n!
        for (int n = 0; n < 2 * kSinCosTerms; ++n) {
            if (n > 0) factorial = div(factorial, static_cast<double>(n));
            if (n < kExpTerms) t.exp[n] = factorial;
            const DD signedFactorial = (n / 2) % 2 == 0 ? factorial : neg(factorial);
            if (n % 2 == 0)
                t.cos[n / 2] = signedFactorial;
            else
                t.sin[n / 2] = signedFactorial;
        }
        for (int k = 0; k < kOddTerms; ++k) {
            t.atanh[k] = div(DD{1.0, 0.0}, static_cast<double>(2 * k + 1));
            t.atan[k] = k % 2 == 0 ? t.atanh[k] : neg(t.atanh[k]);
        }
        return t;
    }();
    return c;
}

// sum of c[k] z^k for k < n by Horner's rule. The terms from k = wide on are below 2^−48 of the
// sum for the arguments each caller passes, so they are summed in plain double; the rest in
// double-double.
DD series(const DD* c, int n, int wide, DD z) {
    double tail = c[n - 1].hi;
    for (int k = n - 2; k >= wide; --k) tail = c[k].hi + z.hi * tail;
    DD s = {tail, 0.0};
    for (int k = wide - 1; k >= 0; --k) s = add(c[k], mul(z, s));
    return s;
}

// |r| ≤ pi/4: r² ≤ 0.62, and r^16/17! < 2^−54, the last terms below 2^−100.
DD sin_series(DD r) { return mul(r, series(coefficients().sin, kSinCosTerms, 8, mul(r, r))); }
DD cos_series(DD r) { return series(coefficients().cos, kSinCosTerms, 8, mul(r, r)); }

}  // namespace

double exact_sin(double x) {
    if (!(std::fabs(x) < kInfinity)) return x - x;  // NaN for infinities and NaN
    if (std::fabs(x) < kTiny) return x;
    DD r;
    switch (reduce_quadrant(x, r)) {
        case 0: return round_dd(sin_series(r));
        case 1: return round_dd(cos_series(r));
        case 2: return -round_dd(sin_series(r));
        default: return -round_dd(cos_series(r));
    }
}

double exact_cos(double x) {
    if (!(std::fabs(x) < kInfinity)) return x - x;
    if (std::fabs(x) < kTiny) return 1.0;
    DD r;
    switch (reduce_quadrant(x, r)) {
        case 0: return round_dd(cos_series(r));
        case 1: return -round_dd(sin_series(r));
        case 2: return -round_dd(cos_series(r));
        default: return round_dd(sin_series(r));
    }
}

double exact_tan(double x) {
    if (!(std::fabs(x) < kInfinity)) return x - x;
    if (std::fabs(x) < kTiny) return x;
    DD r;
    const int n = reduce_quadrant(x, r);
    const DD s = sin_series(r);
    const DD c = cos_series(r);
    return n % 2 == 0 ? round_dd(div(s, c)) : -round_dd(div(c, s));
}

double exact_atan(double x) {
    if (x != x) return x;
    const double a = std::fabs(x);
    if (a < kTiny) return x;
    if (a > 0x1p66) return std::copysign(kPiOver2.hi, x);  // pi/2 − 1/a rounds to pi/2's double
    // atan a = pi/2 − atan(1/a) above 1; then three halvings atan t = 2 atan(t / (1 + √(1 + t²)))
    // bring t below tan(pi/32) < 0.1, where 17 terms of the series reach 2^−110 (t^14/15 < 2^−51).
    const bool inverted = a > 1.0;
    DD t = inverted ? div(DD{1.0, 0.0}, a) : DD{a, 0.0};
    for (int i = 0; i < 3; ++i) t = div(t, add(sqrt_dd(add(mul(t, t), 1.0)), 1.0));
    DD v = mul(mul(t, series(coefficients().atan, 17, 7, mul(t, t))), 8.0);
    if (inverted) v = add(kPiOver2, neg(v));
    const double result = round_dd(v);
    return x < 0 ? -result : result;
}

double exact_exp(double x) {
    if (x != x) return x;
    if (x > 710.0) return kInfinity;
    if (x < -746.0) return 0.0;
    // x = k ln 2 + r, |r| ≤ ln 2 / 2; e^r = sum of r^n/n! for n ≤ 24 (the rest < 2^−110).
    const double k = std::floor(x * kLog2E + 0.5);
    DD r = {x, 0.0};
    for (double piece : kLn2Pieces) r = add(r, -(k * piece));
    const DD e = series(coefficients().exp, kExpTerms, 13, r);  // r^13/13! < 2^−52
    // Results below the normal range are rounded twice (to 53 bits, then by ldexp).
    return std::ldexp(round_dd(e), static_cast<int>(k));
}

double exact_log(double x) {
    if (x != x) return x;
    if (x < 0.0) return std::numeric_limits<double>::quiet_NaN();
    if (x == 0.0) return -kInfinity;
    if (x == kInfinity) return x;
    // x = m · 2^e with √½ ≤ m < √2; ln m = 2 atanh s with s = (m − 1)/(m + 1), |s| < 0.172,
    // 2 s (1 + s²/3 + s⁴/5 + ...) with 22 terms below 2^−110.
    int e = 0;
    double m = std::frexp(x, &e);
    if (m < kSqrtHalf) {
        m *= 2.0;
        --e;
    }
    const DD s = div(DD{m - 1.0, 0.0}, two_sum(m, 1.0));
    const DD v = mul(mul(s, series(coefficients().atanh, 22, 9, mul(s, s))), 2.0);  // s^18/19 < 2^−50
    return round_dd(add(v, mul(kLn2, static_cast<double>(e))));
}

}  // namespace qel
