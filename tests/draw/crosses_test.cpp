#include <qel.h>

#include "draw/draw_test_helpers.h"

#include <gtest/gtest.h>

#include <climits>
#include <random>

namespace {

using qel_test::add_column;
using qel_test::add_row;
using qel_test::Bytes;
using qel_test::changed;
using qel_test::Points;

Points grey_cross(int w, int h, int x, int y, int size) {
    Bytes img(static_cast<size_t>(w) * h, 0);
    QelDrawGryCross(img.data(), w, h, x, y, size, 200);
    return changed(img, w, h);
}

TEST(GryCross, BarsKeepOffTheFrame) {
    Points centre;
    add_row(add_column(centre, 5, 3, 7), 5, 3, 7);
    EXPECT_EQ(grey_cross(12, 12, 5, 5, 2), centre);
    // Centre (0, 0) is moved to (1, 1); the bars start at row and column 2.
    Points corner;
    add_row(add_column(corner, 1, 2, 6), 1, 2, 6);
    EXPECT_EQ(grey_cross(10, 10, 0, 0, 5), corner);
}

TEST(GryCross, NeverTouchesTheOutermostRowsAndColumns) {
    std::mt19937 rng(5);
    std::uniform_int_distribution<int> coordinate(-5, 25), size(-3, 30);
    for (int i = 0; i < 300; ++i) {
        const int w = 3 + i % 17, h = 3 + i % 13;
        const int x = i % 50 == 0 ? INT_MIN : coordinate(rng), y = coordinate(rng);
        const int s = i % 40 == 0 ? INT_MAX : size(rng);
        for (const auto& [px, py] : grey_cross(w, h, x, y, s))
            ASSERT_TRUE(px > 0 && px < w - 1 && py > 0 && py < h - 1) << px << "," << py << " in " << w << "x" << h;
    }
}

TEST(GryCrossShadow, ShadowIsTheRingAroundTheCross) {
    const int w = 12, h = 12;
    Bytes img(w * h, 100);
    QelDrawGryCrossShadow(img.data(), w, h, 5, 5, 2, 200);
    Points cross;
    add_row(add_column(cross, 5, 3, 7), 5, 3, 7);
    Points ring;  // 4-neighbours of the cross outside it
    for (const auto& [x, y] : cross)
        for (const auto& n : Points{{x - 1, y}, {x + 1, y}, {x, y - 1}, {x, y + 1}})
            if (!cross.count(n)) ring.insert(n);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const int expected = cross.count({x, y}) ? 200 : ring.count({x, y}) ? 0 : 100;
            EXPECT_EQ(img[y * w + x], expected) << x << "," << y;
        }
    // In the corner every shifted centre is clamped onto the cross's own: no shadow is left.
    Bytes corner(w * h, 0), plain(w * h, 0);
    QelDrawGryCrossShadow(corner.data(), w, h, 0, 0, 4, 200);
    QelDrawGryCross(plain.data(), w, h, 0, 0, 4, 200);
    EXPECT_EQ(corner, plain);
}

TEST(RGBCross, HorizontalBarUsesXAsItsRow) {
    const int w = 50, h = 60;
    Bytes img(w * h * 3, 0);
    QelDrawRGBCross(img.data(), w, h, 10, 40, 6, 1, 2, 3);
    Points expected;
    add_column(add_row(expected, 10, 7, 13), 10, 37, 43);
    EXPECT_EQ(changed(img, w, h, 3), expected);
    EXPECT_EQ(qel_test::bgr_at(img, 40 * w + 10), (Bytes{3, 2, 1}));
    // Row x beyond the last row: that bar is skipped; the column bar is clamped to the image.
    Bytes low(50 * 20 * 3, 0);
    QelDrawRGBCross(low.data(), 50, 20, 30, 18, 8, 1, 2, 3);
    expected.clear();
    EXPECT_EQ(changed(low, 50, 20, 3), add_column(expected, 30, 14, 19));
}

}  // namespace
