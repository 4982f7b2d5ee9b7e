#include <qel.h>

#include <gtest/gtest.h>

#include <array>
#include <random>

namespace {

using Ends = std::array<int, 4>;  // x1, y1, x2, y2
constexpr Ends kUntouched{-7, -7, -7, -7};

Ends abc_ends(int w, int h, double a, double b, double c, bool expected) {
    Ends e = kUntouched;
    EXPECT_EQ(QelABCLineImgBoundary(w, h, a, b, c, &e[0], &e[1], &e[2], &e[3]), expected);
    return e;
}
Ends kb_ends(int w, int h, int flag, double k, double b, bool expected) {
    Ends e = kUntouched;
    EXPECT_EQ(QelKBLineImgBoundary(w, h, flag, k, b, &e[0], &e[1], &e[2], &e[3]), expected);
    return e;
}
Ends rect_ends(int w, int h, int l, int r, int t, int bo, int flag, double k, double b) {
    int xs[2], ys[2];
    EXPECT_TRUE(QelKBLineRectBoundary(w, h, l, r, t, bo, flag, k, b, xs, ys));
    return Ends{xs[0], ys[0], xs[1], ys[1]};
}
Ends hough_ends(int w, int h, int rho, int theta, bool expected) {
    int xs[2] = {-7, -7}, ys[2] = {-7, -7};
    EXPECT_EQ(QelHoughLineImgBoundary(w, h, rho, theta, xs, ys), expected);
    return Ends{xs[0], ys[0], xs[1], ys[1]};
}

TEST(LineClip, ABCLineScansColumnsOrRows) {
    // y = 0.5x − 2 in 20 × 10: at x = 2 the rounded row is truncate(−0.5) = 0, so it is accepted.
    EXPECT_EQ(abc_ends(20, 10, 0.5, -1, -2, true), (Ends{2, 0, 19, 8}));
    // Steep branch, no rounding: x = 0.5y + 3.9 gives column 3 on row 0 and 8 on row 9.
    EXPECT_EQ(abc_ends(20, 10, 1, -0.5, -3.9, true), (Ends{3, 0, 8, 9}));
    // The last column is excluded on the row scan: x = 19 is never found, x = 18 is.
    EXPECT_EQ(abc_ends(20, 10, 1, 0, -19, false), kUntouched);
    EXPECT_EQ(abc_ends(20, 10, 1, 0, -18, true), (Ends{18, 0, 18, 9}));
    EXPECT_EQ(abc_ends(20, 10, 0, 1, -100, false), kUntouched);
}

TEST(LineClip, KBLineKeepsTheTwoLeftmostBorderCrossings) {
    EXPECT_EQ(kb_ends(20, 10, 0, 0.5, 2, true), (Ends{0, 2, 14, 9}));  // left column, bottom row
    EXPECT_EQ(kb_ends(20, 10, 1, -0.25, 12, true), (Ends{9, 9, 12, 0}));  // sorted by x, truncated
    EXPECT_EQ(kb_ends(10, 10, 0, 1, 0, true), (Ends{0, 0, 0, 0})) << "top and left both give (0, 0)";
    EXPECT_EQ(kb_ends(20, 10, 0, 0.5, -9.5, true), (Ends{19, 0, 19, 0})) << "touches the corner only";
    EXPECT_EQ(kb_ends(10, 10, 0, 1, -10, false), kUntouched) << "passes (10, 0), just outside";
    // The last column and row are in, one past them out; crossings of equal x keep the top row first.
    EXPECT_EQ(kb_ends(10, 10, 1, 0, 9, true), (Ends{9, 0, 9, 9}));
    EXPECT_EQ(kb_ends(10, 10, 1, 0, 10, false), kUntouched);
    EXPECT_EQ(kb_ends(10, 10, 0, 0, 9, true), (Ends{0, 9, 9, 9}));
    EXPECT_EQ(kb_ends(10, 10, 0, 0, 10, false), kUntouched);
    // y = 0.1x − 1.9 meets the top row at x = 18.999999999999996. Computed through the line that
    // crossing's y would be −2e-16 and the crossing lost; it stays exactly on the row.
    EXPECT_EQ(kb_ends(100, 5, 0, 0.1, -1.9, true), (Ends{18, 0, 59, 4}));
}

TEST(LineClip, KBLineRectBoundaryRoundsAndClamps) {
    // y = 0.5x + 1.2 between columns 2 and 30 of a 20 × 10 image: (2, 2.2) and (30, 16.2), clamped.
    EXPECT_EQ(rect_ends(20, 10, 2, 30, 0, 0, 0, 0.5, 1.2), (Ends{2, 2, 19, 9}));
    // x = −0.5y + 3 between rows 1 and 4: x 2.5 rounds to 3, x 1 stays.
    EXPECT_EQ(rect_ends(20, 10, 0, 0, 1, 4, 1, -0.5, 3), (Ends{3, 1, 1, 4}));
    EXPECT_EQ(rect_ends(20, 10, 0, 19, 0, 9, 0, 0, -500), (Ends{0, 0, 19, 0})) << "clamped onto the border";
    // y = 19e300 is beyond the int range: it converts to INT_MIN and is clamped to 0, not to 9.
    EXPECT_EQ(rect_ends(20, 10, 0, 19, 0, 9, 0, 1e300, 0), (Ends{0, 0, 19, 0}));
    std::mt19937 rng(4);
    std::uniform_int_distribution<int> at(-30, 60);
    std::uniform_real_distribution<double> unit(-2.0, 2.0);
    for (int i = 0; i < 300; ++i) {
        const int l = at(rng), r = at(rng), t = at(rng), bo = at(rng), flag = i % 2;
        const double k = unit(rng), b = unit(rng) * 30;
        const Ends e = rect_ends(40, 30, l, r, t, bo, flag, k, b);
        Ends same;
        QelKBLineBeginEndPoint(40, 30, l, r, t, bo, flag, k, b, &same[0], &same[1], &same[2], &same[3]);
        EXPECT_EQ(same, e);
        EXPECT_TRUE(e[0] >= 0 && e[0] < 40 && e[2] >= 0 && e[2] < 40 && e[1] >= 0 && e[1] < 30 && e[3] >= 0 &&
                    e[3] < 30);
    }
}

TEST(LineClip, HoughLineSlotRule) {
    EXPECT_EQ(hough_ends(100, 80, 7, 90, true), (Ends{0, 7, 99, 7}));
    EXPECT_EQ(hough_ends(100, 80, -3, 0, true), (Ends{-3, 0, -3, 79})) << "rho is not checked";
    // y = x: left and right columns; with pi = 3.1415926 the right row is 98.99999, truncated.
    EXPECT_EQ(hough_ends(100, 100, 0, 135, true), (Ends{0, 0, 99, 98}));
    EXPECT_EQ(hough_ends(100, 100, 50, 20, true), (Ends{53, 0, 17, 99}));  // top, then bottom
    EXPECT_EQ(hough_ends(100, 100, 100, 45, true), (Ends{99, 42, 42, 99}));  // right, then bottom
    // Side crossings on the last row: x + y = 9.9 meets the left column at row 9 and the right at row
    // 0.9; −x + y = 1.41 meets them at rows 1 and 10 (of 11).
    EXPECT_EQ(hough_ends(10, 10, 7, 45, true), (Ends{0, 9, 9, 0}));
    EXPECT_EQ(hough_ends(10, 11, 1, 135, true), (Ends{0, 1, 9, 10}));
    // x + y = 14.1 crosses the left column at row 14 and the top row at column 14, but a top
    // crossing after a single side crossing is not taken, and the bottom crossing is outside.
    EXPECT_EQ(hough_ends(100, 100, 10, 45, false), (Ends{0, 14, 0, 0}));
    // One row high: after the top crossing slot 1 still holds 0 = height − 1: bottom refused.
    EXPECT_EQ(hough_ends(10, 1, 2, 45, false), (Ends{2, 0, 0, 0}));
    // theta 180 is not special: sin is 5e-8, so rho 0 gives row 0 of the left column, then the bottom.
    EXPECT_EQ(hough_ends(30, 20, 0, 180, true), (Ends{0, 0, 0, 19}));
}

}  // namespace
