#include <qel.h>

#include <gtest/gtest.h>

#include <random>

namespace {

struct Ends {
    int x1 = -7, y1 = -7, x2 = -7, y2 = -7;
    bool operator==(const Ends& o) const { return x1 == o.x1 && y1 == o.y1 && x2 == o.x2 && y2 == o.y2; }
};

std::ostream& operator<<(std::ostream& os, const Ends& e) {
    return os << "(" << e.x1 << ", " << e.y1 << ")-(" << e.x2 << ", " << e.y2 << ")";
}

bool abc_ends(int w, int h, double a, double b, double c, Ends* e) {
    return QelABCLineImgBoundary(w, h, a, b, c, &e->x1, &e->y1, &e->x2, &e->y2);
}

bool kb_ends(int w, int h, int flag, double k, double b, Ends* e) {
    return QelKBLineImgBoundary(w, h, flag, k, b, &e->x1, &e->y1, &e->x2, &e->y2);
}

bool hough_ends(int w, int h, int rho, int theta, Ends* e) {
    int xs[2] = {-7, -7}, ys[2] = {-7, -7};
    const bool ok = QelHoughLineImgBoundary(w, h, rho, theta, xs, ys);
    *e = Ends{xs[0], ys[0], xs[1], ys[1]};
    return ok;
}

TEST(LineClip, ABCLineScansColumnsOrRows) {
    Ends e;
    // y = 0.5x − 2 in 20 × 10: at x = 2 the rounded row is truncate(−0.5) = 0, so it is accepted.
    EXPECT_TRUE(abc_ends(20, 10, 0.5, -1, -2, &e));
    EXPECT_EQ(e, (Ends{2, 0, 19, 8}));
    // Steep branch, no rounding: x = 0.5y + 3.9 gives column 3 on row 0 and 8 on row 9.
    EXPECT_TRUE(abc_ends(20, 10, 1, -0.5, -3.9, &e));
    EXPECT_EQ(e, (Ends{3, 0, 8, 9}));
    // The last column is excluded on the row scan: x = 19 is never found, x = 18 is.
    Ends untouched;
    EXPECT_FALSE(abc_ends(20, 10, 1, 0, -19, &untouched));
    EXPECT_EQ(untouched, Ends{});
    EXPECT_TRUE(abc_ends(20, 10, 1, 0, -18, &e));
    EXPECT_EQ(e, (Ends{18, 0, 18, 9}));
    EXPECT_FALSE(abc_ends(20, 10, 0, 1, -100, &untouched)) << "row 100 is below the image";
    EXPECT_EQ(untouched, Ends{});
}

TEST(LineClip, KBLineKeepsTheTwoLeftmostBorderCrossings) {
    Ends e;
    // y = 0.5x + 2 in 20 × 10 crosses the bottom row at x = 14 and the left column at y = 2.
    EXPECT_TRUE(kb_ends(20, 10, 0, 0.5, 2, &e));
    EXPECT_EQ(e, (Ends{0, 2, 14, 9}));
    // x = −0.25y + 12: top (12, 0), bottom (9.75, 9); sorted by x and truncated.
    EXPECT_TRUE(kb_ends(20, 10, 1, -0.25, 12, &e));
    EXPECT_EQ(e, (Ends{9, 9, 12, 0}));
    // Through the corner (0, 0): top and left both give it, ahead of (9, 9).
    EXPECT_TRUE(kb_ends(10, 10, 0, 1, 0, &e));
    EXPECT_EQ(e, (Ends{0, 0, 0, 0}));
    Ends untouched;
    EXPECT_FALSE(kb_ends(20, 10, 0, 0, 50, &untouched));
    EXPECT_FALSE(kb_ends(10, 10, 0, 1, -10, &untouched)) << "passes (10, 0), just outside";
    EXPECT_EQ(untouched, Ends{});
    EXPECT_TRUE(kb_ends(20, 10, 0, 0.5, -9.5, &e)) << "touches only the corner (19, 0), found twice";
    EXPECT_EQ(e, (Ends{19, 0, 19, 0}));
    // y = 0.1x − 1.9 meets the top row at x = 18.999999999999996. Computed through the line,
    // that crossing's y would be −2e-16 and the crossing lost; it stays exactly on the row.
    EXPECT_TRUE(kb_ends(100, 5, 0, 0.1, -1.9, &e));
    EXPECT_EQ(e, (Ends{18, 0, 59, 4}));
}

TEST(LineClip, KBLineRectBoundaryRoundsAndClamps) {
    int xs[2], ys[2];
    // y = 0.5x + 1.2 between columns 2 and 30 of a 20 × 10 image.
    EXPECT_TRUE(QelKBLineRectBoundary(20, 10, 2, 30, 0, 0, 0, 0.5, 1.2, xs, ys));
    EXPECT_EQ((Ends{xs[0], ys[0], xs[1], ys[1]}), (Ends{2, 2, 19, 9}));
    // x = −0.5y + 3 between rows 1 and 4: x 2.5 rounds to 3, x 1 stays.
    EXPECT_TRUE(QelKBLineRectBoundary(20, 10, 0, 0, 1, 4, 1, -0.5, 3, xs, ys));
    EXPECT_EQ((Ends{xs[0], ys[0], xs[1], ys[1]}), (Ends{3, 1, 1, 4}));
    // A line far outside still gives two points, clamped onto the border.
    EXPECT_TRUE(QelKBLineRectBoundary(20, 10, 0, 19, 0, 9, 0, 0, -500, xs, ys));
    EXPECT_EQ((Ends{xs[0], ys[0], xs[1], ys[1]}), (Ends{0, 0, 19, 0}));
    // y = 19e300 is beyond the int range: it converts to INT_MIN and is clamped to 0, not to 9.
    EXPECT_TRUE(QelKBLineRectBoundary(20, 10, 0, 19, 0, 9, 0, 1e300, 0, xs, ys));
    EXPECT_EQ((Ends{xs[0], ys[0], xs[1], ys[1]}), (Ends{0, 0, 19, 0}));

    std::mt19937 rng(4);
    std::uniform_int_distribution<int> at(-30, 60);
    std::uniform_real_distribution<double> unit(-2.0, 2.0);
    for (int i = 0; i < 300; ++i) {
        const int l = at(rng), r = at(rng), t = at(rng), bo = at(rng), flag = i % 2;
        const double k = unit(rng), b = unit(rng) * 30;
        Ends e;
        QelKBLineRectBoundary(40, 30, l, r, t, bo, flag, k, b, xs, ys);
        QelKBLineBeginEndPoint(40, 30, l, r, t, bo, flag, k, b, &e.x1, &e.y1, &e.x2, &e.y2);
        EXPECT_EQ(e, (Ends{xs[0], ys[0], xs[1], ys[1]}));
        for (int j = 0; j < 2; ++j) {
            EXPECT_TRUE(xs[j] >= 0 && xs[j] < 40 && ys[j] >= 0 && ys[j] < 30);
        }
    }
}

TEST(LineClip, HoughLineSlotRule) {
    Ends e;
    EXPECT_TRUE(hough_ends(100, 80, 7, 90, &e));
    EXPECT_EQ(e, (Ends{0, 7, 99, 7}));
    EXPECT_TRUE(hough_ends(100, 80, -3, 0, &e)) << "rho is not checked";
    EXPECT_EQ(e, (Ends{-3, 0, -3, 79}));
    // y = x: left and right columns; with pi = 3.1415926 the right row is 98.99999, truncated.
    EXPECT_TRUE(hough_ends(100, 100, 0, 135, &e));
    EXPECT_EQ(e, (Ends{0, 0, 99, 98}));
    EXPECT_TRUE(hough_ends(100, 100, 50, 20, &e));  // top then bottom
    EXPECT_EQ(e, (Ends{53, 0, 17, 99}));
    EXPECT_TRUE(hough_ends(100, 100, 100, 45, &e));  // right column then bottom row
    EXPECT_EQ(e, (Ends{99, 42, 42, 99}));
    // x + y = 14.1 crosses the left column at row 14 and the top row at column 14, but a top
    // crossing after a single side crossing is not taken, and the bottom crossing is outside.
    EXPECT_FALSE(hough_ends(100, 100, 10, 45, &e));
    EXPECT_EQ(e, (Ends{0, 14, 0, 0}));
    // One row high: after the top crossing, slot 1 still holds 0 = height − 1, so the bottom
    // crossing is refused.
    EXPECT_FALSE(hough_ends(10, 1, 2, 45, &e));
    EXPECT_EQ(e, (Ends{2, 0, 0, 0}));
    // theta 180 is not special: sin is 5e-8, so rho 0 gives the left column's row 0 and then the
    // bottom crossing.
    EXPECT_TRUE(hough_ends(30, 20, 0, 180, &e));
    EXPECT_EQ(e, (Ends{0, 0, 0, 19}));
}

}  // namespace
