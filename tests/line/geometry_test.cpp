#include <qel.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <random>
#include <tuple>

namespace {

using KB = std::tuple<int, double, double>;  // flag, k, b
using Triple = std::tuple<double, double, double>;
using Point = std::pair<double, double>;
using Polar = std::pair<int, int>;  // rho, theta
constexpr double kPi = 3.1415926;

KB kb_of_abc(double a, double b, double c) {
    KB l;
    QelABCLine2KBLine(a, b, c, &std::get<0>(l), &std::get<1>(l), &std::get<2>(l));
    return l;
}
Triple abc_of_kb(int flag, double k, double b) {
    Triple t;
    QelKBLine2ABCLine(flag, k, b, &std::get<0>(t), &std::get<1>(t), &std::get<2>(t));
    return t;
}
KB kb_of_points(int x1, int y1, int x2, int y2, double* angle = nullptr) {
    KB l;
    double unused;
    QelLineKBEquation(x1, y1, x2, y2, &std::get<0>(l), &std::get<1>(l), &std::get<2>(l), angle ? angle : &unused);
    return l;
}
Polar polar_of_points(double x1, double y1, double x2, double y2) {
    Polar p;
    QelTwoPoints2ThroTheta(x1, y1, x2, y2, &p.first, &p.second);
    return p;
}
Polar polar_of_abc(double a, double b, double c) {
    Polar p;
    QelABC2ThroTheta(a, b, c, &p.first, &p.second);
    return p;
}

TEST(LineForms, ConversionsByHand) {
    EXPECT_EQ(kb_of_abc(1, 2, -4), KB(0, -0.5, 2));
    EXPECT_EQ(kb_of_abc(4, 1, 6), KB(1, -0.25, -1.5));
    EXPECT_EQ(std::get<0>(kb_of_abc(3, -3, 1)), 0) << "ties go to flag 0";
    EXPECT_EQ(abc_of_kb(1, 0.5, 3), Triple(1, -0.5, -3));
    EXPECT_EQ(abc_of_kb(0, 2, -1), Triple(2, -1, -1));
    EXPECT_EQ(abc_of_kb(7, 0.5, 3), Triple(1, -0.5, -3)) << "any non-zero flag is x = k·y + b";
    EXPECT_EQ(QelGetLineB(0, 0.5, 4, 7), 5);
    EXPECT_EQ(QelGetLineB(1, 0.5, 4, 7), 0.5);

    double angle;
    EXPECT_EQ(kb_of_points(0, 5, 10, 0, &angle), KB(0, -0.5, 5));
    EXPECT_NEAR(angle, 180 + std::atan(-0.5) * 180 / kPi, 1e-12);
    EXPECT_EQ(kb_of_points(2, 1, 4, 9, &angle), KB(1, 0.25, 1.75));
    EXPECT_NEAR(angle, 75.96375629264102, 1e-12);
    EXPECT_EQ(std::get<0>(kb_of_points(3, 3, 7, 7)), 1) << "|dx| = |dy| takes flag 1";
    EXPECT_TRUE(std::isnan(std::get<1>(kb_of_points(4, 4, 4, 4)))) << "equal points divide 0 by 0";
}

TEST(LineForms, RoundTripsOnRandomLines) {
    std::mt19937 rng(11);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    std::uniform_int_distribution<int> coord(-300, 300);
    for (int i = 0; i < 500; ++i) {
        const KB in(i % 2, unit(rng) * 0.999, unit(rng) * 500);  // exact while |k| < 1
        const Triple abc = abc_of_kb(std::get<0>(in), std::get<1>(in), std::get<2>(in));
        EXPECT_EQ(kb_of_abc(std::get<0>(abc), std::get<1>(abc), std::get<2>(abc)), in);
        const int x1 = coord(rng), y1 = coord(rng), x2 = coord(rng), y2 = coord(rng);
        if (x1 == x2 && y1 == y2) continue;
        const auto [flag, k, b] = kb_of_points(x1, y1, x2, y2);
        EXPECT_LE(std::fabs(k), 1.0);
        EXPECT_NEAR(QelDistFromPoint2KBLine(x1, y1, flag, k, b) + QelDistFromPoint2KBLine(x2, y2, flag, k, b), 0, 1e-9);
        // A point one segment length off the line along the normal.
        EXPECT_NEAR(QelDistFromPoint3To2PLine(x1, y1, x2, y2, x1 + y2 - y1, y1 - (x2 - x1)),
                    QelDistBetweenPoint12(x1, y1, x2, y2), 1e-9);
    }
}

TEST(LineForms, ThroThetaUsesTheCoarsePiOneWayOnly) {
    int rho, theta;
    EXPECT_DOUBLE_EQ(QelTwoPoints2ThroTheta(0, 5, 10, 5, &rho, &theta), 10);
    EXPECT_EQ(Polar(rho, theta), Polar(5, 90));
    EXPECT_EQ(polar_of_points(5, 0, 5, 10), Polar(-5, 0)) << "dx = 0 always takes the negative sign";
    EXPECT_EQ(polar_of_points(0, 10, 10, 0), Polar(7, 45));
    EXPECT_EQ(polar_of_points(0, 0, 10, 10), Polar(0, 134));
    // atan(0.5773) is 29.998 degrees; with pi = 3.14 it becomes 30.013, so theta is 120, not 119.
    EXPECT_EQ(polar_of_points(0, 0, 10000, 5773).second, 120);
    EXPECT_EQ(polar_of_abc(0, 1, -5), Polar(5, 90));
    EXPECT_EQ(polar_of_abc(1, 0, -5), Polar(-5, 0));

    double a, b, c;
    QelThroTheta2ABC(3, 4, 7, 90, &a, &b, &c);  // y = 7 about (3, 4): points (13, 11), (23, 11)
    EXPECT_EQ(Triple(a, b, c), Triple(0, -10, 110));
    QelThroTheta2ABC(0, 0, 5, 0, &a, &b, &c);  // points (5, 10), (5, 20)
    EXPECT_EQ(Triple(a, b, c), Triple(10, 0, -50));
    // Random lines: their points, shifted by the origin, lie on the ABC line; back through the coarse
    // pi and truncation, rho and theta move by at most 1.
    std::mt19937 rng(5);
    std::uniform_int_distribution<int> rhoOf(-200, 200), thetaOf(1, 179), shift(-50, 50);
    for (int i = 0; i < 300; ++i) {
        const int r = rhoOf(rng), t = thetaOf(rng), x0 = shift(rng), y0 = shift(rng);
        const double ct = std::cos(t * kPi / 180), st = std::sin(t * kPi / 180);
        if (t == 90 || std::fabs(r - 10 * (ct + st)) < 1) continue;  // both points near (10, 10)
        QelThroTheta2ABC(x0, y0, r, t, &a, &b, &c);
        for (double s : {-40.0, 35.0}) {
            const double x = r * ct - s * st + x0, y = r * st + s * ct + y0;
            EXPECT_NEAR((a * x + b * y + c) / std::hypot(a, b), 0, 1e-6);
        }
        QelThroTheta2ABC(0, 0, r, t, &a, &b, &c);
        const Polar back = polar_of_abc(a, b, c);
        EXPECT_LE(std::abs(back.first - r) + std::abs(back.second - t), 2) << r << " " << t;
    }
}

TEST(LineAngles, ByHand) {
    EXPECT_EQ(Qel2PLineAngleDegree2AxisX(0, 0, 10, 0), 0);
    EXPECT_EQ(Qel2PLineAngleDegree2AxisX(3, 3, 3, 3), 90) << "equal points";
    EXPECT_NEAR(Qel2PLineAngleDegree2AxisX(0, 0, 10, 10), 44.99999923238274, 1e-12);  // pi = 3.1415926
    EXPECT_NEAR(Qel2PLineAngleDegree2AxisX(0, 0, 10, -2), 168.69006733305312, 1e-12);
    EXPECT_EQ(QelABCLineAngleDegree2AxisX(1, 0, 99), 90);
    EXPECT_NEAR(QelABCLineAngleDegree2AxisX(1, 1, 0), 135.00000076761725, 1e-12);
    EXPECT_EQ(QelABCLineAngleDegree2AxisX(1e-20, 1, 0), 0) << "−1e-20 degrees + 180 is 180, reported as 0";
    EXPECT_EQ(QelABCLineIntersectAngleDegree(1, 2, 3, 2, 4, 0), 0) << "parallel";
    EXPECT_EQ(QelABCLineIntersectAngleDegree(0, 1, 0, 1, 0, 5), 90);
    EXPECT_NEAR(QelABCLineIntersectAngleDegree(0, 1, 0, 1, 1, 0), 45, 1e-5);  // 135 apart folds to 45
}

TEST(LineIntersections, AllForms) {
    auto abc = [](double a1, double b1, double c1, double a2, double b2, double c2) {
        Point p{-1, -1};
        return QelPointOfIntersection(a1, b1, c1, a2, b2, c2, &p.first, &p.second) ? p : Point{-1, -1};
    };
    auto kb = [](int f1, double k1, double b1, int f2, double k2, double b2) {
        Point p{-1, -1};
        return QelPointOfIntersection(f1, k1, b1, f2, k2, b2, &p.first, &p.second) ? p : Point{-1, -1};
    };
    EXPECT_EQ(abc(1, 0, -5, 0, 1, -3), Point(5, 3));
    EXPECT_EQ(abc(1, 1, 3, 1, 1.000009, 0), Point(-1, -1)) << "determinant below 1e-5";
    EXPECT_EQ(kb(0, 0.5, 1, 0, -1, 4), Point(2, 2));
    EXPECT_EQ(kb(1, 0.5, 1, 1, -1, 4), Point(2, 2));
    const Point mixed = kb(1, 0.25, 2, 0, 0.5, 1);  // x = 0.25y + 2 meets y = 0.5x + 1 at (18/7, 16/7)
    EXPECT_NEAR(mixed.first, 18.0 / 7, 1e-12);
    EXPECT_NEAR(mixed.second, 16.0 / 7, 1e-12);
    EXPECT_EQ(kb(0, 0.5, 1, 1, 0.25, 2), mixed);
    EXPECT_EQ(kb(0, 0.3, 1, 0, 0.3, 4), Point(-1, -1));
    EXPECT_EQ(kb(0, 1, 1, 1, 1, 4), Point(-1, -1)) << "y = x + 1 and x = y + 4";
    std::mt19937 rng(8);  // random KB pairs meet where their ABC forms meet
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    for (int i = 0; i < 300; ++i) {
        const int f1 = i % 2, f2 = i / 2 % 2;
        const double k1 = unit(rng), b1 = unit(rng) * 100, k2 = unit(rng), b2 = unit(rng) * 100;
        const auto [a1, bb1, c1] = abc_of_kb(f1, k1, b1);
        const auto [a2, bb2, c2] = abc_of_kb(f2, k2, b2);
        if (std::fabs(a1 * bb2 - a2 * bb1) < 0.05) continue;
        const Point want = abc(a1, bb1, c1, a2, bb2, c2), got = kb(f1, k1, b1, f2, k2, b2);
        EXPECT_NEAR(got.first, want.first, 1e-6 * (1 + std::fabs(want.first)));
        EXPECT_NEAR(got.second, want.second, 1e-6 * (1 + std::fabs(want.second)));
    }

    double x = -1, y = -1;
    EXPECT_TRUE(QelPointOfIntersection(3, 90, 5, 0, &x, &y));  // |cos 90°| ≤ 1e-6: solved for x first
    EXPECT_NEAR(x, 5, 1e-6);
    EXPECT_NEAR(y, 3, 1e-6);
    EXPECT_FALSE(QelPointOfIntersection(5, 30, 9, 30, &x, &y));
    // 0 and 180 are parallel but not reported so: the determinant is sin(180°) ≈ 5e-8.
    EXPECT_TRUE(QelPointOfIntersection(5, 0, 3, 180, &x, &y));
    EXPECT_GT(std::fabs(y), 1e7);
    EXPECT_TRUE(QelGetHoughLinePointX(10, 60, 4, &x));
    EXPECT_NEAR(x, 13.0717964367351, 1e-9);
    x = -1;
    EXPECT_FALSE(QelGetHoughLinePointX(7, 90, 0, &x));
    EXPECT_EQ(x, -1);
}

TEST(LineDistances, ByHandAndSides) {
    EXPECT_EQ(QelDistBetweenPoint12(1, 1, 4, 5), 5);
    EXPECT_EQ(QelDistFromPoint2KBLine(3, 4, 0, 0, 0), 4);  // y = 0
    EXPECT_EQ(QelDistFromPoint2KBLine(5, 1, 1, 0, 2), 3);  // x = 2
    EXPECT_EQ(QelDistFromPoint3To2PLine(0, 0, 10, 0, 3, 4), 4);
    // x2·y1 = 60000·50000 wraps in 32 bits to −1294967296 while x1·y2 = 0: the distance of the
    // origin to the row y = 50000 comes out as 1294967296 / 60000, not 50000.
    EXPECT_NEAR(QelDistFromPoint3To2PLine(0, 50000, 60000, 50000, 0, 0), 1294967296.0 / 60000, 1e-6);
    EXPECT_EQ(QelWhichSideIsPoint3ToLine(0, 0, 10, 10, 5, 8), 1) << "below in image rows";
    EXPECT_EQ(QelWhichSideIsPoint3ToLine(0, 0, 10, 10, 5, 2), -1);
    EXPECT_EQ(QelWhichSideIsPoint3ToLine(0, 0, 3, 1, 6, 2), 0);  // slope 1/3 taken in real numbers
    EXPECT_EQ(QelWhichSideIsPoint3ToLine(0, 50000, 60000, 50000, 0, 0), -1) << "products in double";
    EXPECT_EQ(QelWhichSideIsPoint3ToLine(4, 0, 4, 9, 6, 0), 1);
    EXPECT_EQ(QelWhichSideIsPoint3ToLine(4, 0, 4, 9, 4, 50), 0);
}

TEST(LineOverlaps, IntervalsAndRectangles) {
    EXPECT_EQ(QelLineOverlapLen(0, 5, 5, 9), 1);
    EXPECT_EQ(QelLineOverlapLen(0, 4, 5, 9), 0);
    EXPECT_EQ(QelLineOverlapLen(9, 5, 5, 0), 1) << "ends in any order";
    EXPECT_EQ(QelLineOverlapLen(0, 1, 8, 9), 0) << "negative lengths become 0";
    int start = 7, end = 7;
    EXPECT_EQ(QelLineOverlapLen(10, 2, 6, 12, &start, &end), 5);
    EXPECT_EQ(Polar(start, end), Polar(6, 10));
    EXPECT_EQ(QelLineOverlapLen(0, 4, 5, 9, &start, &end), 0);
    EXPECT_EQ(Polar(start, end), Polar(0, 0));
    std::mt19937 rng(2);
    std::uniform_int_distribution<int> at(-20, 20);
    for (int i = 0; i < 500; ++i) {
        const int a1 = at(rng), a2 = at(rng), b1 = at(rng), b2 = at(rng);
        EXPECT_EQ(QelLineOverlapLen(a1, a2, b1, b2), QelLineOverlapLen(a1, a2, b1, b2, &start, &end));
    }
    const tagRECT r1{0, 0, 9, 9}, r2{5, 5, 14, 20}, column{3, 0, 3, 9}, far{20, 20, 30, 30};
    EXPECT_EQ(QelRectOverlapArea(r1, r2), 25);
    EXPECT_EQ(QelRectOverlapArea(column, r1), 10) << "left = right is one column";
    EXPECT_EQ(QelRectOverlapArea(r1, far), 0);
}

}  // namespace
