#include <qel.h>

#include "draw/draw_test_helpers.h"

#include <gtest/gtest.h>

namespace {

using qel_test::add_column;
using qel_test::add_row;
using qel_test::Bytes;
using qel_test::changed;
using qel_test::Points;

constexpr int kW = 10, kH = 6;

Points outline(int x1, int x2, int y1, int y2, int x3, int x4, int y3, int y4) {
    Points p;
    add_row(add_row(p, y1, x1, x2), y2, x1, x2);
    return add_column(add_column(p, x3, y3, y4), x4, y3, y4);
}

TEST(Rect, OutlineClampsAndOrdersEachPair) {
    // x1 = 8, x2 = −3 → 0..8; y1 = 12, y2 = 2 → 2..5.
    const Points expected = outline(0, 8, 2, 5, 0, 8, 2, 5);
    Bytes grey(kW * kH, 0);
    QelDrawGryRect(grey.data(), kW, kH, 8, -3, 12, 2, 255);
    EXPECT_EQ(changed(grey, kW, kH), expected);
    Bytes bgr(kW * kH * 3, 0);
    QelDrawRGBRect(bgr.data(), kW, kH, 8, -3, 12, 2, 1, 2, 3);
    EXPECT_EQ(changed(bgr, kW, kH, 3), expected);
    EXPECT_EQ(qel_test::bgr_at(bgr, 2 * kW + 4), (Bytes{3, 2, 1}));
}

TEST(Rect, DrawRectPicksTheImageKind) {
    Bytes grey(kW * kH, 0), bgr(kW * kH * 3, 0);
    QelDrawRect(grey.data(), kW, kH, false, 1, 3, 1, 2, 1, 2, 3, 77);
    QelDrawRect(bgr.data(), kW, kH, true, 1, 3, 1, 2, 1, 2, 3, 77);
    const Points expected = outline(1, 3, 1, 2, 1, 3, 1, 2);
    EXPECT_EQ(changed(grey, kW, kH), expected);
    EXPECT_EQ(grey[kW + 1], 77);
    EXPECT_EQ(changed(bgr, kW, kH, 3), expected);
    EXPECT_EQ(qel_test::bgr_at(bgr, kW + 1), (Bytes{3, 2, 1}));
}

TEST(Rect, FillsClampOneSidedAndDoNotReorder) {
    Bytes grey(kW * kH, 0);
    QelFillGryRect(grey.data(), kW, kH, -3, 20, 1, 2, 5);
    Points rows;
    EXPECT_EQ(changed(grey, kW, kH), add_row(add_row(rows, 1, 0, 9), 2, 0, 9));
    grey.assign(kW * kH, 0);
    QelFillGryRect(grey.data(), kW, kH, 5, 2, 1, 3, 5);
    QelFillGryRect(grey.data(), kW, kH, 1, 3, 4, 2, 5);
    QelFillGryRect(grey.data(), kW, kH, 12, 20, 0, 5, 5);
    EXPECT_TRUE(qel_test::all_equal(grey, 0)) << "inverted or off-image ranges fill nothing";
    Bytes bgr(kW * kH * 3, 0);
    QelFillRGBRect(bgr.data(), kW, kH, 8, 12, -1, 0, 1, 2, 3);
    EXPECT_EQ(changed(bgr, kW, kH, 3), (Points{{8, 0}, {9, 0}}));
    EXPECT_EQ(qel_test::bgr_at(bgr, 9), (Bytes{3, 2, 1}));
}

Points recoloured(int x1, int x2, int y1, int y2) {
    Bytes img(kW * kH, 7);
    img[1 * kW + 3] = 3;  // not equal to `from`: stays
    QelChangeColorOnRect(img.data(), kW, kH, x1, x2, y1, y2, 7, 9);
    EXPECT_EQ(img[1 * kW + 3], 3);
    for (unsigned char v : img) EXPECT_TRUE(v == 7 || v == 9 || v == 3);
    return changed(img, kW, kH, 1, 7);
}

TEST(Rect, ChangeColorOnTheOutlineOnly) {
    Points expected = outline(2, 5, 1, 4, 2, 5, 1, 4);
    EXPECT_EQ(recoloured(2, 5, 1, 4), expected);  // (3, 1) holds 3 and counts as changed here
    // Inverted columns: the top and bottom are empty, the two sides still run over rows 1..3.
    expected.clear();
    add_column(add_column(expected, 5, 1, 3), 2, 1, 3);
    expected.insert({3, 1});
    EXPECT_EQ(recoloured(5, 2, 1, 3), expected);
    // x1 = 12 is only raised, never lowered: its side lies outside and is skipped.
    expected.clear();
    add_column(expected, 9, 1, 3);
    expected.insert({3, 1});
    EXPECT_EQ(recoloured(12, 20, 1, 3), expected);
    expected = outline(0, 9, 0, 5, 0, 9, 0, 5);
    expected.insert({3, 1});
    EXPECT_EQ(recoloured(-5, 30, -5, 30), expected);
}

}  // namespace
