// The portable transcendental functions: correctly rounded values worked out in high-precision
// arithmetic, the special points, sign symmetry, and agreement with the C library within an ulp.
#include <gtest/gtest.h>

#include "core/exact_math.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>

namespace {

using Fn = double (*)(double);
struct Named {
    const char* name;
    Fn exact;
    Fn library;
};
const Named kSin{"sin", qel::exact_sin, [](double v) { return std::sin(v); }};
const Named kCos{"cos", qel::exact_cos, [](double v) { return std::cos(v); }};
const Named kTan{"tan", qel::exact_tan, [](double v) { return std::tan(v); }};
const Named kAtan{"atan", qel::exact_atan, [](double v) { return std::atan(v); }};
const Named kExp{"exp", qel::exact_exp, [](double v) { return std::exp(v); }};
const Named kLog{"log", qel::exact_log, [](double v) { return std::log(v); }};

// Distance in ulps: doubles mapped to integers that count up through the representable values.
int64_t ordinal(double d) {
    int64_t i = 0;
    std::memcpy(&i, &d, sizeof i);
    return i < 0 ? INT64_MIN - i : i;
}
int64_t ulps(double a, double b) { return ordinal(a) > ordinal(b) ? ordinal(a) - ordinal(b) : ordinal(b) - ordinal(a); }

TEST(ExactMath, CorrectlyRoundedAtHardAndTypicalPoints) {
    // Expected values from 400-bit arithmetic, rounded to nearest.
    const struct {
        const Named& f;
        double x, expected;
    } cases[] = {
        {kSin, 0x1.921fb54442d18p+1, 0x1.1a62633145c07p-53},  // sin of the double nearest pi
        {kCos, 0x1.921fb54442d18p+0, 0x1.1a62633145c07p-54},
        {kTan, 0x1.921fb54442d18p-1, 0x1.fffffffffffffp-1},
        {kTan, 0x1.921fb54442d18p+0, 0x1.d02967c31cdb5p+53},
        {kCos, 0x1.921fb54442d18p-1, 0x1.6a09e667f3bcdp-1},
        {kSin, -3.0, -0x1.210386db6d55bp-3},
        {kSin, 355.0, -0x1.f9bd0307d1de3p-16},  // 355/113 is close to pi: heavy cancellation
        {kTan, -1e6, 0x1.7e9768ab734c0p-2},
        {kSin, 0x1.0000000400000p+29, -0x1.55185e2d58276p-3},  // first argument of the large reduction
        {kCos, 5.0e8, -0x1.eacfa519daddcp-1},
        {kSin, 1e22, -0x1.b453ab76bf397p-1},
        {kCos, 1e22, 0x1.0be2cef01c8f4p-1},
        {kSin, 1e300, -0x1.a2c16b010e385p-1},
        {kAtan, 1.0, 0x1.921fb54442d18p-1},
        {kAtan, -0.5, -0x1.dac670561bb4fp-2},
        {kAtan, 1e10, 0x1.921fb543d4de0p+0},
        {kAtan, 1e-5, 0x1.4f8b588e06854p-17},
        {kExp, 1.0, 0x1.5bf0a8b145769p+1},
        {kExp, -1.0, 0x1.78b56362cef38p-2},
        {kExp, 709.0, 0x1.d422d2be5dc9bp+1022},
        {kExp, -744.0, 0x0.0000000000002p-1022},
        {kExp, 1e-10, 0x1.000000006df38p+0},
        {kLog, 2.0, 0x1.62e42fefa39efp-1},
        {kLog, 10.0, 0x1.26bb1bbb55516p+1},
        {kLog, 1e-300, -0x1.5963447f87fb5p+9},
        {kLog, 0.9999999999, -0x1.b7ce00005e728p-34},
        {kLog, std::numeric_limits<double>::max(), 0x1.62e42fefa39efp+9},
    };
    for (const auto& c : cases) EXPECT_EQ(c.f.exact(c.x), c.expected) << c.f.name << "(" << c.x << ")";
}

TEST(ExactMath, SpecialPoints) {
    const double inf = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double halfPi = 0x1.921fb54442d18p+0;
    const struct {
        const Named& f;
        double x, expected;
    } cases[] = {
        {kSin, 0.0, 0.0},   {kSin, -0.0, -0.0},  {kCos, 0.0, 1.0},    {kCos, -0.0, 1.0},   {kTan, -0.0, -0.0},
        {kAtan, -0.0, -0.0}, {kAtan, inf, halfPi}, {kAtan, -inf, -halfPi}, {kAtan, 1e300, halfPi},
        {kExp, 0.0, 1.0},   {kExp, -0.0, 1.0},   {kExp, inf, inf},    {kExp, -inf, 0.0},   {kExp, 1000.0, inf},
        {kExp, -1000.0, 0.0}, {kLog, 1.0, 0.0},  {kLog, 0.0, -inf},   {kLog, -0.0, -inf},  {kLog, inf, inf},
        {kSin, 1e-300, 1e-300}, {kTan, -2e-9, -2e-9}, {kAtan, 5e-324, 5e-324}, {kCos, 1e-9, 1.0},
    };
    for (const auto& c : cases) {
        const double got = c.f.exact(c.x);
        EXPECT_EQ(got, c.expected) << c.f.name << "(" << c.x << ")";
        EXPECT_EQ(std::signbit(got), std::signbit(c.expected)) << c.f.name << "(" << c.x << ")";
    }
    for (const Named* f : {&kSin, &kCos, &kTan, &kAtan, &kExp, &kLog}) EXPECT_TRUE(std::isnan(f->exact(nan))) << f->name;
    for (const Named* f : {&kSin, &kCos, &kTan}) EXPECT_TRUE(std::isnan(f->exact(inf))) << f->name;
    EXPECT_TRUE(std::isnan(qel::exact_log(-1.0)));
}

TEST(ExactMath, OddAndEvenFunctionsAreExactlySymmetric) {
    std::mt19937_64 rng(7);
    std::uniform_real_distribution<double> exponent(-30, 80);
    for (int i = 0; i < 3000; ++i) {
        const double x = std::exp2(exponent(rng)) * (rng() % 2 ? 1.7 : 1.1);
        EXPECT_EQ(qel::exact_sin(-x), -qel::exact_sin(x)) << x;
        EXPECT_EQ(qel::exact_cos(-x), qel::exact_cos(x)) << x;
        EXPECT_EQ(qel::exact_tan(-x), -qel::exact_tan(x)) << x;
        EXPECT_EQ(qel::exact_atan(-x), -qel::exact_atan(x)) << x;
    }
}

// Correctly rounded results are within one ulp of a C library that is itself under an ulp, as
// glibc's are. Others need not be: MinGW-w64's sine is several ulps out beyond a few thousand
// radians, one of the differences these functions exist to remove.
TEST(ExactMath, WithinAnUlpOfTheCLibrary) {
#if !defined(__GLIBC__)
    GTEST_SKIP() << "the C library is not glibc";
#endif
    const struct {
        const Named& f;
        double lo, hi;
    } ranges[] = {
        {kSin, -7.0, 7.0},      {kSin, -1e5, 1e5},  {kCos, -7.0, 7.0}, {kCos, -1e5, 1e5},   {kTan, -4.0, 4.0},
        {kTan, -1e4, 1e4},      {kAtan, -3.0, 3.0}, {kAtan, -1e6, 1e6}, {kExp, -745.0, 709.0}, {kExp, -2.0, 2.0},
        {kLog, 0.25, 4.0},      {kLog, 1e-6, 1e12},
    };
    std::mt19937_64 rng(11);
    for (const auto& r : ranges) {
        std::uniform_real_distribution<double> pick(r.lo, r.hi);
        int64_t worst = 0;
        for (int i = 0; i < 5000; ++i) {
            const double x = pick(rng);
            const int64_t d = ulps(r.f.exact(x), r.f.library(x));
            if (d > worst) worst = d;
            if (d > 1) ADD_FAILURE() << r.f.name << "(" << x << "): " << d << " ulps";
        }
        EXPECT_LE(worst, 1) << r.f.name << " on [" << r.lo << ", " << r.hi << "]";
    }
}

}  // namespace
