#include <qel.h>

#include "draw/draw_test_helpers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

using qel_test::add_column;
using qel_test::add_row;
using qel_test::Bytes;
using qel_test::changed;
using qel_test::Points;

Bytes blank(int w, int h) { return Bytes(static_cast<size_t>(w) * h, 0); }

Points abc(int w, int h, double a, double b, double c) {
    Bytes img = blank(w, h);
    QelDrawABCLineByColor(img.data(), w, h, a, b, c, 9);
    return changed(img, w, h);
}

TEST(ABCLine, WalksTheAxisOfTheLargerCoefficientAndRoundsByTruncation) {
    // |b| > |a|: by columns, y = truncate(x/2 + 0.5); row 3 in column 5 is outside.
    EXPECT_EQ(abc(6, 3, 1, -2, 0), (Points{{0, 0}, {1, 1}, {2, 1}, {3, 2}, {4, 2}}));
    // y = −0.7 rounds to truncate(−0.2) = 0, so the row just above the image lands on row 0.
    Points row0;
    EXPECT_EQ(abc(6, 3, 0, 1, 0.7), add_row(row0, 0, 0, 5));
    EXPECT_TRUE(abc(6, 3, 0, 1, 1.6).empty());
    // |a| = |b|: by rows, x = truncate(y + 1.2); by columns it would start at (0, 0).
    EXPECT_EQ(abc(6, 4, 1, -1, -0.7), (Points{{1, 0}, {2, 1}, {3, 2}, {4, 3}}));
    EXPECT_TRUE(abc(6, 4, 0, 0, -1).empty());
    EXPECT_TRUE(abc(6, 4, 0, 1e-300, 1).empty()) << "rows far beyond the int range";
    EXPECT_TRUE(abc(6, 4, 0, 1e-300, -1).empty());
    EXPECT_TRUE(abc(6, 4, 0, 1, std::nan("")).empty());
}

TEST(ABCLine, RangedFormOrdersAndClampsItsRange) {
    const int w = 8, h = 5;
    Bytes img = blank(w, h);
    QelDrawABCLineByColor(img.data(), w, h, 4, -3, 0, 0, 0, 1, -1, 9);  // row 1, columns 0..4
    Points expected;
    EXPECT_EQ(changed(img, w, h), add_row(expected, 1, 0, 4));
    img = blank(w, h);
    QelDrawABCLineByColor(img.data(), w, h, 20, 30, 0, 0, 0, 1, -1, 9);  // clamped to column 7 alone
    EXPECT_EQ(changed(img, w, h), (Points{{7, 1}}));
    img = blank(w, h);
    QelDrawABCLineByColor(img.data(), w, h, 0, 0, 10, 1, 1, 0, -2, 9);  // column 2, rows 1..4
    expected.clear();
    EXPECT_EQ(changed(img, w, h), add_column(expected, 2, 1, 4));
}

TEST(ABCLine, IncrementAccumulatesAndSaturates) {
    const int w = 4, h = 3;
    Bytes img = blank(w, h);
    img[w + 1] = 254;
    img[w + 2] = 255;
    img[w + 3] = 100;
    QelDrawABCLineByInc(img.data(), w, h, 0, 1, -1);
    QelDrawABCLineByInc(img.data(), w, h, 0, 1, -1);
    EXPECT_EQ(qel_test::row_of(img, w, 1), (Bytes{2, 255, 255, 102}));
    EXPECT_TRUE(qel_test::all_equal(qel_test::row_of(img, w, 0), 0));
    EXPECT_TRUE(qel_test::all_equal(qel_test::row_of(img, w, 2), 0));
}

TEST(KBLine, FlagPicksTheWalkedAxis) {
    Bytes img = blank(5, 3);
    QelDrawKBLine(img.data(), 5, 3, 0, 0.5, 0, 9);  // y = truncate(0.5·x + 0.5)
    const Points shallow{{0, 0}, {1, 1}, {2, 1}, {3, 2}, {4, 2}};
    EXPECT_EQ(changed(img, 5, 3), shallow);
    img = blank(5, 3);
    QelDrawKBLine(img.data(), 5, 3, 2, 0.5, 0, 9);  // any flag but 1 walks the columns
    EXPECT_EQ(changed(img, 5, 3), shallow);
    // x = truncate(3.5 − y): row 4 gives truncate(−0.5) = 0, row 5 gives −1 and is skipped.
    img = blank(5, 6);
    QelDrawKBLine(img.data(), 5, 6, 1, -1, 3, 9);
    EXPECT_EQ(changed(img, 5, 6), (Points{{3, 0}, {2, 1}, {1, 2}, {0, 3}, {0, 4}}));
}

TEST(KBLine, RgbTwinStoresBlueGreenRed) {
    Bytes bgr(5 * 3 * 3, 0);
    QelDrawKBLine(bgr.data(), 5, 3, 0, 0.5, 0, 1, 2, 3);
    EXPECT_EQ(changed(bgr, 5, 3, 3), (Points{{0, 0}, {1, 1}, {2, 1}, {3, 2}, {4, 2}}));
    EXPECT_EQ(qel_test::bgr_at(bgr, 1 * 5 + 2), (Bytes{3, 2, 1}));  // pixel (2, 1)
}

TEST(HoughLine, PiApproximationAndAxisChoice) {
    Bytes img = blank(6, 4);
    // theta 90: cos(90° with pi 3.1415926) is 2.7e-8, so past column 0 the row 2 line truncates to row 1.
    QelDrawHoughLine(img.data(), 6, 4, 2, 90, 7);
    Points expected{{0, 2}};
    EXPECT_EQ(changed(img, 6, 4), add_row(expected, 1, 1, 5));
    img = blank(6, 4);
    QelDrawHoughLine(img.data(), 6, 4, 3, 0, 7);  // x = 3
    expected.clear();
    EXPECT_EQ(changed(img, 6, 4), add_column(expected, 3, 0, 3));
    img = blank(6, 4);
    QelDrawHoughLine(img.data(), 6, 4, -3, 180, 7);  // x·(−1) = −3
    EXPECT_EQ(changed(img, 6, 4), expected);
    // theta 125 walks columns (y = truncate(0.70·x), columns 0..14 of a 40 × 10 image); theta 126
    // walks rows (x = truncate(1.38·y), one pixel for each of the 10 rows).
    const int w = 40, h = 10;
    for (int theta : {125, 126}) {
        img = blank(w, h);
        QelDrawHoughLine(img.data(), w, h, 0, theta, 7);
        const Points p = changed(img, w, h);
        EXPECT_EQ(p.size(), theta == 125 ? 15u : 10u) << theta;
        std::set<int> walked;
        for (const auto& [x, y] : p) walked.insert(theta == 125 ? x : y);
        EXPECT_EQ(walked.size(), p.size()) << "one pixel per walked column or row, theta " << theta;
    }
}

Points degree(int w, int h, int x0, int y0, double degrees) {
    Bytes img = blank(w, h);
    QelDrawDegreeLine(img.data(), w, h, x0, y0, degrees, 9);
    return changed(img, w, h);
}

TEST(DegreeLine, AxisLinesLeaveOutTheFirstRowOrColumnAndThePoint) {
    EXPECT_EQ(degree(7, 6, 3, 2, 90), (Points{{3, 1}, {3, 3}, {3, 4}, {3, 5}}));
    EXPECT_EQ(degree(7, 6, 3, 2, 0), (Points{{1, 2}, {2, 2}, {4, 2}, {5, 2}, {6, 2}}));
    // The angle is not reduced: 270 and 450 are nearly vertical by columns and draw nothing.
    EXPECT_TRUE(degree(7, 6, 3, 2, 270).empty());
    EXPECT_TRUE(degree(7, 6, 3, 2, 450).empty());
    // A point above the image: the downward walk starts at row −2, so row 0 is drawn.
    Points column;
    EXPECT_EQ(degree(7, 6, 3, -3, 90), add_column(column, 3, 0, 5));
}

TEST(DegreeLine, FortyFiveDegreesFallsOneColumnShortBelowThePoint) {
    // t = tan(45° with pi 3.1415926) = 0.99999997: below (3, 3) x = truncate(3 + (y − 3)·t) is one
    // column short, above it the truncation of values just over y keeps x = y.
    EXPECT_EQ(degree(8, 8, 3, 3, 45), (Points{{3, 4}, {4, 5}, {5, 6}, {6, 7}, {2, 2}, {1, 1}}));
}

TEST(DegreeLine, EarlyEndsNeverDropAPixel) {
    // Reference: every row (or column) of both halves evaluated, no early end.
    std::mt19937 rng(11);
    std::uniform_int_distribution<int> point(-30, 60);
    std::uniform_real_distribution<double> angle(-200, 400);
    const int w = 37, h = 29;
    for (int i = 0; i < 300; ++i) {
        const int x0 = point(rng), y0 = point(rng);
        const double deg = angle(rng);
        const bool byRows = deg >= 45 && deg <= 135;
        const double t = byRows ? std::tan((90 - deg) * 3.1415926 / 180) : std::tan(deg * 3.1415926 / 180);
        Points expected;
        const int along = byRows ? h : w, across = byRows ? w : h, s0 = byRows ? y0 : x0, p0 = byRows ? x0 : y0;
        for (int s = 0; s < along; ++s) {
            if (s == s0 || (s < s0 && s < 1)) continue;
            const double v = s * t + p0 - s0 * t;
            if (v > -1 && v < across) expected.insert(byRows ? std::make_pair(static_cast<int>(v), s)
                                                             : std::make_pair(s, static_cast<int>(v)));
        }
        ASSERT_EQ(degree(w, h, x0, y0, deg), expected) << x0 << "," << y0 << " at " << deg;
    }
}

}  // namespace
