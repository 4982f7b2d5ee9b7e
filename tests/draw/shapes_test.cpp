#include <qel.h>

#include "draw/draw_test_helpers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>
#include <random>

namespace {

using qel_test::add;
using qel_test::add_column;
using qel_test::add_row;
using qel_test::Bytes;
using qel_test::changed;
using qel_test::Points;

Bytes circle(int w, int h, int cx, int cy, int rx, int ry) {
    Bytes img(static_cast<size_t>(w) * h, 0);
    QelDrawCircle(img.data(), w, h, cx, cy, rx, ry, 255);
    return img;
}

// The ellipse as described, one column after another with no shortcuts: chords by QelGryLine
// with their ends clamped to the int range first (the image is far smaller than that).
Bytes reference_circle(int w, int h, int cx, int cy, int rx, int ry) {
    Bytes img(static_cast<size_t>(w) * h, 0);
    const auto to_int = [](int64_t v) { return static_cast<int>(std::clamp<int64_t>(v, INT_MIN, INT_MAX)); };
    const auto chord = [&](int64_t x1, int64_t y1, int64_t x2, int64_t y2) {
        QelGryLine(img.data(), w, h, to_int(x1), to_int(y1), to_int(x2), to_int(y2), 255);
    };
    int64_t px = int64_t{cx} - rx, py = cy;
    for (int64_t x = px; x <= cx; ++x) {
        const int64_t d = x - cx;
        const double r = static_cast<double>(ry) / rx * std::sqrt(static_cast<double>(int64_t{rx} * rx - d * d));
        const int64_t y = static_cast<int64_t>(cy - r);
        const int64_t mx = 2 * int64_t{cx}, my = 2 * int64_t{cy};
        chord(px, py, x, y);
        chord(mx - px, py, mx - x, y);
        chord(px, my - py, x, my - y);
        chord(mx - px, my - py, mx - x, my - y);
        px = x;
        py = y;
    }
    return img;
}

TEST(Circle, SmallCircleExactPixels) {
    // Columns 3..5 give rows 5, truncate(5 − √3) = 3 and 3. Each chord between neighbouring
    // columns fills the right-hand column, so the left and right sides are not mirror images.
    Points expected{{3, 5}};
    add_column(add_column(expected, 4, 3, 7), 7, 3, 7);
    add(expected, {{5, 3}, {5, 7}, {6, 3}, {6, 7}});
    EXPECT_EQ(changed(circle(11, 11, 5, 5, 2, 2), 11, 11), expected);
}

TEST(Circle, SymmetricAboutTheCentreRowAndBoundedByTheHalfAxes) {
    const int w = 41, h = 41;
    for (int rx = 1; rx <= 15; ++rx)
        for (int ry = -15; ry <= 15; ry += 2) {
            const Bytes img = circle(w, h, 20, 20, rx, ry);
            const int ary = std::abs(ry);
            for (int y = 0; y < h; ++y)
                for (int x = 0; x < w; ++x) {
                    const bool on = img[y * w + x] != 0;
                    ASSERT_EQ(on, img[(40 - y) * w + x] != 0) << rx << "," << ry << " at " << x << "," << y;
                    if (on) {
                        ASSERT_TRUE(std::abs(x - 20) <= rx && std::abs(y - 20) <= ary) << rx << "," << ry;
                    }
                }
            for (const auto& [x, y] : Points{{20 - rx, 20}, {20 + rx, 20}, {20, 20 - ary}, {20, 20 + ary}})
                ASSERT_NE(img[y * w + x], 0) << "extreme point " << x << "," << y << " of " << rx << "," << ry;
        }
}

TEST(Circle, ZeroAndNegativeHalfWidth) {
    Points column;
    EXPECT_EQ(changed(circle(9, 12, 4, 6, 0, 3), 9, 12), add_column(column, 4, 3, 9));
    EXPECT_TRUE(changed(circle(9, 12, 4, 6, -2, 3), 9, 12).empty());
}

TEST(Circle, HugeEllipsesAgreeWithTheColumnByColumnReference) {
    std::mt19937 rng(9);
    std::uniform_int_distribution<int> centre(-400, 400), radius(0, 900);
    const int w = 33, h = 27;
    for (int i = 0; i < 150; ++i) {
        const int cx = centre(rng), cy = centre(rng), rx = radius(rng), ry = radius(rng) - 450;
        ASSERT_EQ(circle(w, h, cx, cy, rx, ry), reference_circle(w, h, cx, cy, rx, ry))
            << cx << "," << cy << " radii " << rx << "," << ry;
    }
    // Radii far beyond the int range of rx²: drawn quickly, on the border and inside only.
    const Bytes huge = circle(w, h, 16, 13, INT_MAX, INT_MAX);
    EXPECT_NE(huge[0], 0);
    EXPECT_EQ(huge[13 * w + 16], 0);
}

TEST(Polygon, ClosedOutlineShiftedByTheOffset) {
    int xs[] = {0, 4, 4}, ys[] = {0, 0, 4};
    Bytes img(10 * 10, 0);
    QelDrawPolygon(img.data(), 10, 10, xs, ys, 3, 1, 1, 255);
    // (1, 1)–(5, 1), (5, 1)–(5, 5) and the closing (5, 5)–(1, 1), whose column 1 is not written.
    Points expected;
    add_column(add_row(expected, 1, 1, 5), 5, 1, 5);
    add(expected, {{2, 2}, {3, 2}, {3, 3}, {4, 3}, {4, 4}});
    EXPECT_EQ(changed(img, 10, 10), expected);
}

TEST(Polygon, TwoPointsShiftTheSecondRowByDx) {
    int xs[] = {1, 1}, ys[] = {2, 4};
    Bytes img(12 * 12, 0);
    QelDrawPolygon(img.data(), 12, 12, xs, ys, 2, 5, 0, 255);  // (6, 2)–(6, 4 + 5)
    Points expected;
    EXPECT_EQ(changed(img, 12, 12), add_column(expected, 6, 2, 9));
    img.assign(12 * 12, 0);
    QelDrawPolygon(img.data(), 12, 12, xs, ys, 1, 0, 0, 255);
    QelDrawPolygon(img.data(), 12, 12, xs, ys, 0, 0, 0, 255);
    EXPECT_TRUE(qel_test::all_equal(img, 0));
}

}  // namespace
