#include <qel.h>

#include "draw/draw_test_helpers.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using qel_test::add;
using qel_test::add_column;
using qel_test::add_row;
using qel_test::Bytes;
using qel_test::changed;
using qel_test::Points;

Points grey_line(int w, int h, int x1, int y1, int x2, int y2) {
    Bytes img(static_cast<size_t>(w) * h, 0);
    QelGryLine(img.data(), w, h, x1, y1, x2, y2, 255);
    return changed(img, w, h);
}

TEST(GryLine, StraightLinesFillBothEnds) {
    Points row;
    EXPECT_EQ(grey_line(6, 4, 0, 0, 3, 0), add_row(row, 0, 0, 3));
    EXPECT_EQ(grey_line(6, 4, 3, 0, 0, 0), row);
    Points column;
    EXPECT_EQ(grey_line(6, 4, 2, 3, 2, 1), add_column(column, 2, 1, 3));
    EXPECT_EQ(grey_line(6, 4, 4, 2, 4, 2), (Points{{4, 2}}));
}

TEST(GryLine, SlopedLinesSkipTheColumnOfTheLeftEnd) {
    // Each column is filled from the previous row to the new one, both included, so the diagonal
    // also writes the previous row of each column; (0, 0) itself is not written.
    const Points diagonal = grey_line(6, 4, 0, 0, 3, 3);
    EXPECT_EQ(diagonal, (Points{{1, 0}, {1, 1}, {2, 1}, {2, 2}, {3, 2}, {3, 3}}));
    EXPECT_EQ(diagonal.count({0, 0}), 0u);
    // Shallow: k = 0.5, rows 0, 1, 1, 2 in columns 1..4, each column filled from the previous row.
    const Points shallow{{1, 0}, {2, 0}, {2, 1}, {3, 1}, {4, 1}, {4, 2}};
    EXPECT_EQ(grey_line(6, 4, 0, 0, 4, 2), shallow);
    EXPECT_EQ(grey_line(6, 4, 4, 2, 0, 0), shallow) << "reversed ends";
    // Steep: the whole run lands in the one column after the left end.
    Points steep;
    EXPECT_EQ(grey_line(6, 4, 1, 0, 2, 3), add_column(steep, 2, 0, 3));
    // Rising to the right: k = −1, b = 3.
    EXPECT_EQ(grey_line(6, 4, 0, 3, 3, 0), (Points{{1, 3}, {1, 2}, {2, 2}, {2, 1}, {3, 1}, {3, 0}}));
}

TEST(GryLine, SlopeIsSinglePrecision) {
    // k = −29/7 in float is −4.1428571; k·7 rounds to exactly −29 in float, so b = 32 and column 7
    // ends on row 3. In double, k·7 + b comes out just below 3 and the column would reach row 2.
    Points expected;
    const int rows[8] = {32, 27, 23, 19, 15, 11, 7, 3};
    for (int x = 1; x <= 7; ++x) add_column(expected, x, rows[x], rows[x - 1]);
    EXPECT_EQ(grey_line(10, 40, 0, 32, 7, 3), expected);
}

TEST(GryLine, EndsOutsideAreMovedToTheBorder) {
    Points row;
    EXPECT_EQ(grey_line(6, 4, -5, 1, 3, 1), add_row(row, 1, 0, 3));
    Points column;
    EXPECT_EQ(grey_line(6, 4, 2, -10, 2, 100), add_column(column, 2, 0, 3));
    // (−10, −10)–(10, 10) becomes (0, 0)–(5, 3): k = 0.6 and b = 0, rows 0, 1, 1, 2, 3.
    Points clamped;
    add(clamped, {{1, 0}, {2, 0}, {2, 1}, {3, 1}, {4, 1}, {4, 2}, {5, 2}, {5, 3}});
    EXPECT_EQ(grey_line(6, 4, -10, -10, 10, 10), clamped);
    EXPECT_EQ(grey_line(6, 4, INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX), clamped);
}

TEST(GryLine, RgbTwinStoresBlueGreenRedAndMatchesTheGreyLine) {
    std::mt19937 rng(7);
    std::uniform_int_distribution<int> coordinate(-8, 40);
    const int w = 31, h = 23;
    for (int i = 0; i < 200; ++i) {
        const int x1 = coordinate(rng), y1 = coordinate(rng), x2 = coordinate(rng), y2 = coordinate(rng);
        Bytes grey(static_cast<size_t>(w) * h, 0);
        Bytes bgr(static_cast<size_t>(w) * h * 3, 0);
        QelGryLine(grey.data(), w, h, x1, y1, x2, y2, 255);
        QelRGBLine(bgr.data(), w, h, x1, y1, x2, y2, 10, 20, 30);
        const Bytes on{30, 20, 10}, off{0, 0, 0};
        for (size_t p = 0; p < grey.size(); ++p)
            ASSERT_EQ(qel_test::bgr_at(bgr, p), grey[p] != 0 ? on : off) << "pixel " << p << " of line " << i;
    }
}

TEST(GryLine, StoresTheLowByteAndLeavesEmptyImagesAlone) {
    Bytes img(4, 0);
    QelGryLine(img.data(), 4, 1, 0, 0, 3, 0, 256 + 7);
    EXPECT_TRUE(qel_test::all_equal(img, 7));
    QelGryLine(img.data(), 0, 1, 0, 0, 3, 0, 1);
    QelGryLine(img.data(), 4, -1, 0, 0, 3, 0, 1);
    EXPECT_TRUE(qel_test::all_equal(img, 7));
}

}  // namespace
