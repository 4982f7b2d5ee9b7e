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

using NarrowGrey = void (*)(unsigned char*, int, int, int, int, int, int);
using NarrowRgb = void (*)(unsigned char*, int, int, int, int, int, int, int, int);
using Broad = void (*)(unsigned char*, int, int, int, int, int, int, int);

const NarrowGrey kDown = QelDrawDownArrow, kUp = QelDrawUpArrow, kLeft = QelDrawLeftArrow, kRight = QelDrawRightArrow;
const NarrowRgb kDownRgb = QelDrawDownArrow, kUpRgb = QelDrawUpArrow, kLeftRgb = QelDrawLeftArrow,
                kRightRgb = QelDrawRightArrow;
const Broad kBroadDown = QelDrawDownArrow, kBroadUp = QelDrawUpArrow, kBroadLeft = QelDrawLeftArrow,
            kBroadRight = QelDrawRightArrow;

Points narrow(NarrowGrey f, int x, int y, int length) {
    Bytes img(12 * 12, 0);
    f(img.data(), 12, 12, x, y, length, 255);
    return changed(img, 12, 12);
}

Points broad(Broad f, int w, int h, int x1, int x2, int y1, int y2) {
    Bytes img(static_cast<size_t>(w) * h, 0);
    f(img.data(), w, h, x1, x2, y1, y2, 255);
    return changed(img, w, h);
}

// Length 8: tip 8 away, head base 4 away, head points 2 to each side. Each head line skips its
// left end's column, so the points where it meets the head base are missing on one side.
TEST(NarrowArrow, ExactPixelsInEachDirection) {
    Points down;
    add_column(add_column(down, 5, 2, 10), 6, 2, 10);
    add(down, {{4, 6}, {4, 7}, {4, 8}, {7, 6}, {7, 7}, {7, 8}});
    EXPECT_EQ(narrow(kDown, 5, 2, 8), down);

    Points up;  // the downward arrow mirrored about row 6
    add_column(add_column(up, 5, 2, 10), 6, 2, 10);
    add(up, {{4, 4}, {4, 5}, {4, 6}, {7, 4}, {7, 5}, {7, 6}});
    EXPECT_EQ(narrow(kUp, 5, 10, 8), up);

    Points right;  // second shaft one row below; head walked by columns, so not a transposed copy
    add_row(add_row(right, 5, 2, 10), 6, 2, 10);
    add(right, {{7, 3}, {8, 3}, {7, 4}, {8, 4}, {9, 4}, {10, 4}, {7, 7}});
    EXPECT_EQ(narrow(kRight, 2, 5, 8), right);

    Points left;
    add_row(add_row(left, 5, 2, 10), 6, 2, 10);
    add(left, {{3, 4}, {4, 4}, {5, 3}, {5, 4}, {6, 3}, {6, 4}, {6, 7}});
    EXPECT_EQ(narrow(kLeft, 10, 5, 8), left);
}

TEST(NarrowArrow, ClampsToTheBorder) {
    // Tail on the last column: the second shaft is clamped onto the first; the head points beyond
    // the right border are moved onto it.
    const Points p = narrow(kDown, 11, 0, 20);
    for (const auto& [x, y] : p) EXPECT_TRUE(x >= 6 && x <= 11 && y >= 0 && y <= 11) << x << "," << y;
    // Length 0: everything is the tail point, except the inner head point x + 0/4 − 1, one column left.
    EXPECT_EQ(narrow(kDown, 11, 0, 0), (Points{{10, 0}, {11, 0}}));
}

TEST(NarrowArrow, RgbTwinsStoreBlueGreenRedAndMatchTheGreyArrow) {
    const NarrowGrey grey[] = {kDown, kUp, kLeft, kRight};
    const NarrowRgb rgb[] = {kDownRgb, kUpRgb, kLeftRgb, kRightRgb};
    std::mt19937 rng(3);
    std::uniform_int_distribution<int> coordinate(-10, 40), length(-40, 40);
    const int w = 29, h = 21;
    for (int i = 0; i < 200; ++i) {
        const int d = i % 4, x = coordinate(rng), y = coordinate(rng), n = length(rng);
        Bytes g(static_cast<size_t>(w) * h, 0), c(static_cast<size_t>(w) * h * 3, 0);
        grey[d](g.data(), w, h, x, y, n, 255);
        rgb[d](c.data(), w, h, x, y, n, 10, 20, 30);
        const Bytes on{30, 20, 10}, off{0, 0, 0};
        for (size_t p = 0; p < g.size(); ++p)
            ASSERT_EQ(qel_test::bgr_at(c, p), g[p] != 0 ? on : off)
                << "direction " << d << " at " << x << "," << y << " length " << n;
    }
}

// Box x1 = x2 = 12, 12 pixels long: the head lines have slope ±1, so each column of a head line
// holds the previous row and the new one.
TEST(BroadArrow, DownAndUpAreMirrorImagesWithinTheBox) {
    Points down;
    add_column(down, 12, 0, 2);        // base (a point) and the sides down to m = max(0, 12 − 10) = 2
    add_row(down, 2, 2, 22);           // bar from 12 − 10 to 12 + 10
    for (int x = 3; x <= 12; ++x) add_column(down, x, x - 1, x);        // (2, 2) to the tip (12, 12)
    for (int x = 13; x <= 22; ++x) add_column(down, x, 24 - x, 25 - x);  // (22, 2) to the tip
    EXPECT_EQ(broad(kBroadDown, 30, 25, 12, 12, 0, 12), down);

    Points up;
    for (const auto& [x, y] : down) up.insert({x, 12 - y});
    EXPECT_EQ(broad(kBroadUp, 30, 25, 12, 12, 0, 12), up);
}

TEST(BroadArrow, RightAndLeftExchangeXAndY) {
    Points right;
    add_row(right, 12, 0, 2);          // base (0, 12) and the sides right to m = max(0, 12 − 10) = 2
    add_column(right, 2, 2, 22);       // bar in column 2, rows 12 − 10 .. 12 + 10
    for (int x = 3; x <= 12; ++x) add_column(add_column(right, x, x - 1, x), x, 24 - x, 25 - x);
    EXPECT_EQ(broad(kBroadRight, 30, 25, 0, 12, 12, 12), right);

    // Box x1 = 12, x2 = 24: base in column 24, sides left to m = min(24, 12 + 10) = 22, tip (12, 12).
    Points left;
    add_row(left, 12, 22, 24);
    add_column(left, 22, 2, 22);
    for (int x = 13; x <= 22; ++x) add_column(add_column(left, x, 24 - x, 25 - x), x, x - 1, x);
    EXPECT_EQ(broad(kBroadLeft, 30, 25, 12, 24, 12, 12), left);
}

TEST(BroadArrow, ShortBoxAndClampedBar) {
    // Box 2..4 × 1..5 in a 10 × 8 image: m = max(1, 5 − 10) = 1, the bar runs over columns
    // max(2 − 10, 0) = 0 .. min(4 + 10, 9) = 9, the head lines (0, 1)–(3, 5) (k = 4/3) and
    // (9, 1)–(3, 5) (k = −2/3) in single precision.
    Points expected;
    add_row(expected, 1, 0, 9);
    add(expected, {{1, 2}, {2, 2}, {2, 3}, {3, 3}, {3, 4}, {3, 5}});
    add(expected, {{4, 4}, {4, 5}, {5, 3}, {5, 4}, {6, 3}, {7, 2}, {7, 3}, {8, 2}});
    EXPECT_EQ(broad(kBroadDown, 10, 8, 2, 4, 1, 5), expected);
}

TEST(LineWithCross, GreyCrossSizeFollowsTheLength) {
    const int w = 20, h = 20;
    Bytes img(w * h, 0);
    QelGryImgDrawArrow(img.data(), w, h, 2, 10, 10, 10, 255);  // length 8: s = 9/5 + 2 = 3
    Points expected;
    add_column(add_row(expected, 10, 2, 13), 10, 7, 13);
    EXPECT_EQ(changed(img, w, h), expected);

    img.assign(w * h, 0);
    QelGryImgDrawArrow(img.data(), w, h, 18, 0, 18, 18, 255);  // s = 19/5 + 2 = 5, bars stop at 17
    expected.clear();
    add_row(add_column(expected, 18, 0, 18), 18, 13, 17);
    EXPECT_EQ(changed(img, w, h), expected);

    img.assign(w * h, 0);
    QelGryImgDrawArrow(img.data(), w, h, 5, 5, 30, 5, 255);  // end outside: cross skipped/empty
    expected.clear();
    EXPECT_EQ(changed(img, w, h), add_row(expected, 5, 5, 19));
}

TEST(LineWithCross, RgbCrossIsThreePixelsThick) {
    const int w = 20, h = 20;
    Bytes img(w * h * 3, 0);
    QelRGBImgDrawArrow(img.data(), w, h, 2, 10, 10, 10, 2, 1, 2, 3);
    Points expected;
    add_row(expected, 10, 2, 10);
    for (int d = -1; d <= 1; ++d) add_row(add_column(expected, 10 + d, 8, 12), 10 + d, 8, 12);
    EXPECT_EQ(changed(img, w, h, 3), expected);
    EXPECT_EQ(qel_test::bgr_at(img, 8 * w + 9), (Bytes{3, 2, 1}));

    // Near the corner the outer bars reach row and column 0; the ranges still start at 2.
    img.assign(w * h * 3, 0);
    QelRGBImgDrawArrow(img.data(), w, h, 1, 1, 1, 1, 4, 1, 2, 3);
    expected.clear();
    for (int d = -1; d <= 1; ++d) add_row(add_column(expected, 1 + d, 2, 5), 1 + d, 2, 5);
    expected.insert({1, 1});  // the line, a single point
    EXPECT_EQ(changed(img, w, h, 3), expected);
}

}  // namespace
