#include <qel.h>

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdlib>
#include <random>

namespace {

constexpr double kPi = 3.1415926;
double degrees(double radians) { return radians * 180 / kPi; }

struct KB {
    int flag = -1;
    double k = 0, b = 0;
};

KB kb_of_abc(double a, double b, double c) {
    KB l;
    QelABCLine2KBLine(a, b, c, &l.flag, &l.k, &l.b);
    return l;
}

// |a·x + b·y + c| / |(a, b)|: distance of a point to an ABC line.
double abc_distance(double a, double b, double c, double x, double y) {
    return std::fabs(a * x + b * y + c) / std::sqrt(a * a + b * b);
}

TEST(LineForms, ConversionsByHand) {
    KB l = kb_of_abc(1, 2, -4);  // |a| ≤ |b|: y = −0.5x + 2
    EXPECT_EQ(l.flag, 0);
    EXPECT_DOUBLE_EQ(l.k, -0.5);
    EXPECT_DOUBLE_EQ(l.b, 2);
    l = kb_of_abc(4, 1, 6);  // x = −0.25y − 1.5
    EXPECT_EQ(l.flag, 1);
    EXPECT_DOUBLE_EQ(l.k, -0.25);
    EXPECT_DOUBLE_EQ(l.b, -1.5);
    EXPECT_EQ(kb_of_abc(3, -3, 1).flag, 0) << "ties go to flag 0";

    double a, b, c;
    QelKBLine2ABCLine(1, 0.5, 3, &a, &b, &c);
    EXPECT_EQ(a, 1);
    EXPECT_EQ(b, -0.5);
    EXPECT_EQ(c, -3);
    QelKBLine2ABCLine(0, 2, -1, &a, &b, &c);
    EXPECT_EQ(a, 2);
    EXPECT_EQ(b, -1);
    EXPECT_EQ(c, -1);
    QelKBLine2ABCLine(7, 0.5, 3, &a, &b, &c);  // any non-zero flag is the x = k·y + b form
    EXPECT_EQ(a, 1);
    EXPECT_EQ(c, -3);

    EXPECT_EQ(QelGetLineB(0, 0.5, 4, 7), 5);  // y − x·k
    EXPECT_EQ(QelGetLineB(1, 0.5, 4, 7), 0.5);  // x − y·k
}

TEST(LineForms, KBEquationPicksTheFlagByTheLongerDifference) {
    int flag;
    double k, b, angle;
    QelLineKBEquation(0, 5, 10, 0, &flag, &k, &b, &angle);
    EXPECT_EQ(flag, 0);
    EXPECT_DOUBLE_EQ(k, -0.5);
    EXPECT_DOUBLE_EQ(b, 5);
    EXPECT_NEAR(angle, 180 + degrees(std::atan(-0.5)), 1e-12);  // 153.43
    QelLineKBEquation(2, 1, 4, 9, &flag, &k, &b, &angle);
    EXPECT_EQ(flag, 1);
    EXPECT_DOUBLE_EQ(k, 0.25);
    EXPECT_DOUBLE_EQ(b, 1.75);
    EXPECT_NEAR(angle, 75.96375629264102, 1e-12);
    QelLineKBEquation(3, 3, 7, 7, &flag, &k, &b);
    EXPECT_EQ(flag, 1) << "|dx| = |dy| takes the x = k·y + b form";
    QelLineKBEquation(4, 4, 4, 4, &flag, &k, &b);
    EXPECT_EQ(flag, 1);
    EXPECT_TRUE(std::isnan(k)) << "two equal points divide 0 by 0";
}

TEST(LineForms, RoundTripsOnRandomLines) {
    std::mt19937 rng(11);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    std::uniform_int_distribution<int> coord(-300, 300);
    for (int i = 0; i < 500; ++i) {
        // KB → ABC → KB is exact while |k| < 1.
        const KB in{i % 2, unit(rng) * 0.999, unit(rng) * 500};
        double a, b, c;
        QelKBLine2ABCLine(in.flag, in.k, in.b, &a, &b, &c);
        const KB out = kb_of_abc(a, b, c);
        EXPECT_EQ(out.flag, in.flag);
        EXPECT_EQ(out.k, in.k);
        EXPECT_EQ(out.b, in.b);
        // Both points lie on their KB line, and the produced |k| ≤ 1.
        const int x1 = coord(rng), y1 = coord(rng), x2 = coord(rng), y2 = coord(rng);
        if (x1 == x2 && y1 == y2) continue;
        KB two;
        QelLineKBEquation(x1, y1, x2, y2, &two.flag, &two.k, &two.b);
        EXPECT_LE(std::fabs(two.k), 1.0);
        EXPECT_NEAR(QelDistFromPoint2KBLine(x1, y1, two.flag, two.k, two.b), 0, 1e-9);
        EXPECT_NEAR(QelDistFromPoint2KBLine(x2, y2, two.flag, two.k, two.b), 0, 1e-9);
        EXPECT_NEAR(QelDistFromPoint3To2PLine(x1, y1, x2, y2, x1 + y2 - y1, y1 - (x2 - x1)),
                    QelDistBetweenPoint12(x1, y1, x2, y2), 1e-9)
            << "a point one segment length off the line along the normal";
    }
}

TEST(LineForms, TwoPointsToThroThetaUsesTheCoarsePi) {
    int rho = 99, theta = 99;
    EXPECT_DOUBLE_EQ(QelTwoPoints2ThroTheta(0, 5, 10, 5, &rho, &theta), 10);
    EXPECT_EQ(rho, 5);
    EXPECT_EQ(theta, 90);
    QelTwoPoints2ThroTheta(5, 0, 5, 10, &rho, &theta);
    EXPECT_EQ(theta, 0);
    EXPECT_EQ(rho, -5) << "dx = 0 always takes the negative sign";
    QelTwoPoints2ThroTheta(0, 10, 10, 0, &rho, &theta);  // x + y = 10: rho 7.07 at 45 degrees
    EXPECT_EQ(rho, 7);
    EXPECT_EQ(theta, 45);
    QelTwoPoints2ThroTheta(0, 0, 10, 10, &rho, &theta);
    EXPECT_EQ(theta, 134);
    // atan(0.5773) is 29.998 degrees; with pi = 3.14 it becomes 30.013, so theta is 120, not 119.
    QelTwoPoints2ThroTheta(0, 0, 10000, 5773, &rho, &theta);
    EXPECT_EQ(theta, 120);

    QelABC2ThroTheta(0, 1, -5, &rho, &theta);  // y = 5
    EXPECT_EQ(rho, 5);
    EXPECT_EQ(theta, 90);
    QelABC2ThroTheta(1, 0, -5, &rho, &theta);  // x = 5, through the vertical pair rule
    EXPECT_EQ(rho, -5);
    EXPECT_EQ(theta, 0);
}

TEST(LineForms, ThroThetaToABC) {
    double a, b, c;
    QelThroTheta2ABC(0, 0, 5, 0, &a, &b, &c);  // points (5, 10), (5, 20)
    EXPECT_NEAR(a, 10, 1e-12);
    EXPECT_NEAR(b, 0, 1e-12);
    EXPECT_NEAR(c, -50, 1e-12);
    QelThroTheta2ABC(3, 4, 7, 90, &a, &b, &c);  // y = 7 about (3, 4): points (13, 11), (23, 11)
    EXPECT_EQ(a, 0);
    EXPECT_EQ(b, -10);
    EXPECT_EQ(c, 110);
    // Random lines: points of the ThroTheta line, shifted by the origin, lie on the ABC line, and
    // back through the coarse pi and truncation rho and theta move by at most 1.
    std::mt19937 rng(5);
    std::uniform_int_distribution<int> rhoOf(-200, 200), thetaOf(1, 179), shift(-50, 50);
    for (int i = 0; i < 300; ++i) {
        const int rho = rhoOf(rng), theta = thetaOf(rng), x0 = shift(rng), y0 = shift(rng);
        if (theta == 90) continue;
        const double t = theta * kPi / 180;
        if (std::fabs(rho - 10 * (std::cos(t) + std::sin(t))) < 1) continue;  // both points near (10, 10)
        QelThroTheta2ABC(x0, y0, rho, theta, &a, &b, &c);
        for (double along : {-40.0, 0.0, 35.0}) {
            const double x = rho * std::cos(t) - along * std::sin(t), y = rho * std::sin(t) + along * std::cos(t);
            EXPECT_NEAR(abc_distance(a, b, c, x + x0, y + y0), 0, 1e-6);
        }
        int rho2, theta2;
        QelThroTheta2ABC(0, 0, rho, theta, &a, &b, &c);
        QelABC2ThroTheta(a, b, c, &rho2, &theta2);
        EXPECT_LE(std::abs(theta2 - theta), 1) << rho << " " << theta;
        EXPECT_LE(std::abs(rho2 - rho), 1) << rho << " " << theta;
    }
}

TEST(LineAngles, ByHand) {
    EXPECT_EQ(Qel2PLineAngleDegree2AxisX(0, 0, 10, 0), 0);
    EXPECT_EQ(Qel2PLineAngleDegree2AxisX(3, 0, 3, 10), 90);
    EXPECT_EQ(Qel2PLineAngleDegree2AxisX(3, 3, 3, 3), 90) << "equal points";
    EXPECT_NEAR(Qel2PLineAngleDegree2AxisX(0, 0, 10, 10), 44.99999923238274, 1e-12);  // pi = 3.1415926
    EXPECT_NEAR(Qel2PLineAngleDegree2AxisX(0, 10, 10, 0), 135.00000076761725, 1e-12);
    EXPECT_NEAR(Qel2PLineAngleDegree2AxisX(0, 0, 10, -2), 168.69006733305312, 1e-12);

    EXPECT_EQ(QelABCLineAngleDegree2AxisX(1, 0, 99), 90);
    EXPECT_NEAR(QelABCLineAngleDegree2AxisX(1, 1, 0), 135.00000076761725, 1e-12);
    EXPECT_EQ(QelABCLineAngleDegree2AxisX(0, 1, 3), 0);
    // −1e-20 degrees plus 180 is 180 in double; it is reported as 0.
    EXPECT_EQ(QelABCLineAngleDegree2AxisX(1e-20, 1, 0), 0);
    EXPECT_TRUE(std::isnan(QelABCLineAngleDegree2AxisX(0, 0, 1)));

    EXPECT_EQ(QelABCLineIntersectAngleDegree(1, 2, 3, 2, 4, 0), 0) << "parallel";
    EXPECT_EQ(QelABCLineIntersectAngleDegree(0, 1, 0, 1, 0, 5), 90);
    EXPECT_NEAR(QelABCLineIntersectAngleDegree(0, 1, 0, 1, 1, 0), 45, 1e-5);  // 135 apart folds to 45
    std::mt19937 rng(3);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    for (int i = 0; i < 200; ++i) {
        const double d = QelABCLineIntersectAngleDegree(unit(rng), unit(rng), 0, unit(rng), unit(rng), 0);
        EXPECT_GE(d, 0);
        EXPECT_LE(d, 90);
    }
}

TEST(LineIntersections, ABCAndKB) {
    double x = -1, y = -1;
    EXPECT_TRUE(QelPointOfIntersection(1.0, 0.0, -5.0, 0.0, 1.0, -3.0, &x, &y));
    EXPECT_EQ(x, 5);
    EXPECT_EQ(y, 3);
    x = y = -1;
    EXPECT_FALSE(QelPointOfIntersection(1.0, 2.0, 3.0, 2.0, 4.0, 0.0, &x, &y));
    EXPECT_FALSE(QelPointOfIntersection(1.0, 1.0, 3.0, 1.0, 1.000009, 0.0, &x, &y)) << "determinant below 1e-5";
    EXPECT_EQ(x, -1);
    EXPECT_EQ(y, -1);

    // y = 0.5x + 1 meets x = 0.25y + 2 at (18/7, 16/7), whichever comes first.
    EXPECT_TRUE(QelPointOfIntersection(0, 0.5, 1.0, 1, 0.25, 2.0, &x, &y));
    EXPECT_NEAR(x, 18.0 / 7, 1e-12);
    EXPECT_NEAR(y, 16.0 / 7, 1e-12);
    EXPECT_TRUE(QelPointOfIntersection(1, 0.25, 2.0, 0, 0.5, 1.0, &x, &y));
    EXPECT_NEAR(x, 18.0 / 7, 1e-12);
    EXPECT_NEAR(y, 16.0 / 7, 1e-12);
    EXPECT_TRUE(QelPointOfIntersection(0, 0.5, 1.0, 0, -1.0, 4.0, &x, &y));
    EXPECT_EQ(x, 2);
    EXPECT_EQ(y, 2);
    EXPECT_TRUE(QelPointOfIntersection(1, 0.5, 1.0, 1, -1.0, 4.0, &x, &y));
    EXPECT_EQ(x, 2);
    EXPECT_EQ(y, 2);
    x = y = -1;
    EXPECT_FALSE(QelPointOfIntersection(0, 0.3, 1.0, 0, 0.3, 4.0, &x, &y));
    EXPECT_FALSE(QelPointOfIntersection(1, 0.3, 1.0, 1, 0.3, 4.0, &x, &y));
    EXPECT_FALSE(QelPointOfIntersection(0, 1.0, 1.0, 1, 1.0, 4.0, &x, &y)) << "y = x + 1 and x = y + 4";
    EXPECT_EQ(x, -1);

    // Random KB pairs meet where their ABC forms meet.
    std::mt19937 rng(8);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    for (int i = 0; i < 300; ++i) {
        const KB l1{i % 2, unit(rng), unit(rng) * 100}, l2{(i / 2) % 2, unit(rng), unit(rng) * 100};
        double a1, b1, c1, a2, b2, c2, ax, ay;
        QelKBLine2ABCLine(l1.flag, l1.k, l1.b, &a1, &b1, &c1);
        QelKBLine2ABCLine(l2.flag, l2.k, l2.b, &a2, &b2, &c2);
        if (!QelPointOfIntersection(a1, b1, c1, a2, b2, c2, &ax, &ay) || std::fabs(a1 * b2 - a2 * b1) < 0.05) continue;
        ASSERT_TRUE(QelPointOfIntersection(l1.flag, l1.k, l1.b, l2.flag, l2.k, l2.b, &x, &y));
        EXPECT_NEAR(x, ax, 1e-6 * (1 + std::fabs(ax)));
        EXPECT_NEAR(y, ay, 1e-6 * (1 + std::fabs(ay)));
    }
}

TEST(LineIntersections, ThroThetaAndHoughPointX) {
    double x = -1, y = -1;
    EXPECT_TRUE(QelPointOfIntersection(5, 0, 3, 90, &x, &y));
    EXPECT_NEAR(x, 5, 1e-6);
    EXPECT_NEAR(y, 3, 1e-6);
    EXPECT_TRUE(QelPointOfIntersection(3, 90, 5, 0, &x, &y));  // |cos 90| ≤ 1e-6: solved for x first
    EXPECT_NEAR(x, 5, 1e-6);
    EXPECT_NEAR(y, 3, 1e-6);
    x = y = -1;
    EXPECT_FALSE(QelPointOfIntersection(5, 30, 9, 30, &x, &y));
    EXPECT_EQ(x, -1);
    // 0 and 180 are parallel but not reported so: the determinant is sin(180°) ≈ 5e-8.
    EXPECT_TRUE(QelPointOfIntersection(5, 0, 3, 180, &x, &y));
    EXPECT_GT(std::fabs(y), 1e7);

    EXPECT_TRUE(QelGetHoughLinePointX(10, 60, 4, &x));
    EXPECT_NEAR(x, 13.0717964367351, 1e-9);
    EXPECT_TRUE(QelGetHoughLinePointX(7, 0, 123, &x));
    EXPECT_EQ(x, 7);
    x = -1;
    EXPECT_FALSE(QelGetHoughLinePointX(7, 90, 0, &x));
    EXPECT_EQ(x, -1);
}

TEST(LineDistances, ByHandAndSides) {
    EXPECT_EQ(QelDistBetweenPoint12(1, 1, 4, 5), 5);
    EXPECT_EQ(QelDistFromPoint2KBLine(3, 4, 0, 0, 0), 4);  // y = 0
    EXPECT_EQ(QelDistFromPoint2KBLine(5, 1, 1, 0, 2), 3);  // x = 2
    EXPECT_NEAR(QelDistFromPoint2KBLine(0, 2, 0, 1, 0), std::sqrt(2.0), 1e-12);
    EXPECT_EQ(QelDistFromPoint3To2PLine(0, 0, 10, 0, 3, 4), 4);
    // x2·y1 = 60000·50000 wraps in 32 bits to −1294967296 while x1·y2 = 0: the distance of the
    // origin to the row y = 50000 comes out as 1294967296 / 60000, not 50000.
    EXPECT_NEAR(QelDistFromPoint3To2PLine(0, 50000, 60000, 50000, 0, 0), 1294967296.0 / 60000, 1e-6);

    EXPECT_EQ(QelWhichSideIsPoint3ToLine(0, 0, 10, 10, 5, 8), 1) << "below in image rows";
    EXPECT_EQ(QelWhichSideIsPoint3ToLine(0, 0, 10, 10, 5, 2), -1);
    EXPECT_EQ(QelWhichSideIsPoint3ToLine(0, 0, 10, 10, 5, 5), 0);
    EXPECT_EQ(QelWhichSideIsPoint3ToLine(0, 0, 3, 1, 6, 2), 0);  // slope 1/3 taken in real numbers
    // Products in double: the origin is above the row y = 50000 although x2·y1 would wrap in 32 bits.
    EXPECT_EQ(QelWhichSideIsPoint3ToLine(0, 50000, 60000, 50000, 0, 0), -1);
    EXPECT_EQ(QelWhichSideIsPoint3ToLine(4, 0, 4, 9, 6, 0), 1);
    EXPECT_EQ(QelWhichSideIsPoint3ToLine(4, 0, 4, 9, 2, 0), -1);
    EXPECT_EQ(QelWhichSideIsPoint3ToLine(4, 0, 4, 9, 4, 50), 0);
}

TEST(LineOverlaps, IntervalsAndRectangles) {
    EXPECT_EQ(QelLineOverlapLen(0, 5, 5, 9), 1);
    EXPECT_EQ(QelLineOverlapLen(0, 4, 5, 9), 0);
    EXPECT_EQ(QelLineOverlapLen(9, 5, 5, 0), 1) << "ends in any order";
    EXPECT_EQ(QelLineOverlapLen(0, 10, 4, 3), 2);
    EXPECT_EQ(QelLineOverlapLen(0, 1, 8, 9), 0) << "negative lengths become 0";
    int start = 7, end = 7;
    EXPECT_EQ(QelLineOverlapLen(10, 2, 6, 12, &start, &end), 5);
    EXPECT_EQ(start, 6);
    EXPECT_EQ(end, 10);
    EXPECT_EQ(QelLineOverlapLen(0, 4, 5, 9, &start, &end), 0);
    EXPECT_EQ(start, 0);
    EXPECT_EQ(end, 0);
    std::mt19937 rng(2);
    std::uniform_int_distribution<int> at(-20, 20);
    for (int i = 0; i < 500; ++i) {
        const int a1 = at(rng), a2 = at(rng), b1 = at(rng), b2 = at(rng);
        EXPECT_EQ(QelLineOverlapLen(a1, a2, b1, b2), QelLineOverlapLen(a1, a2, b1, b2, &start, &end));
    }
    const tagRECT r1{0, 0, 9, 9}, r2{5, 5, 14, 20}, line{3, 0, 3, 9}, far{20, 20, 30, 30};
    EXPECT_EQ(QelRectOverlapArea(r1, r2), 25);
    EXPECT_EQ(QelRectOverlapArea(line, r1), 10) << "left = right is one column";
    EXPECT_EQ(QelRectOverlapArea(r1, far), 0);
}

}  // namespace
