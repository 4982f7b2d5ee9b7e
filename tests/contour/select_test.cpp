#include <qel.h>

#include "contour/contour_images.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>
#include <utility>
#include <vector>

namespace {

using contour_test::Bytes;
using contour_test::Image;

// ---- selecting by area and perimeter -----------------------------------------------------------

// A 2 x 2 square is traced once (area 3 by the trapezoid sum), then judged again at every later
// pixel that differs from its left neighbour, and drawn there: nine counts and nine copies.
TEST(SelectContours, ByAreaRecountsTheLastChainAtEveryChange) {
    Image img(6, 6);
    img.box(2, 3, 2, 3);
    Bytes work(img.size());
    Image out(6, 6);
    EXPECT_EQ(QelSelectContoursByArea(img.data(), work.data(), 6, 6, 1, 3, 3, out.data()), 9);
    // Changes: the start (2, 2); then marks 1 or the frame after 254 or 1 at (4, 2), (5, 2), (1, 3),
    // (2, 3), (4, 3), (5, 3), (1, 4), (5, 4); drawn from the pixel left of each (below 255).
    Image expected(6, 6);
    for (auto [x, y] : std::vector<std::pair<int, int>>{{2, 2}, {3, 2}, {4, 2}, {0, 3}, {1, 3}, {3, 3}, {4, 3}, {0, 4},
                                                        {4, 4}})
        expected.box(x, x + 1, y, y + 1);
    EXPECT_EQ(out.px, expected.px);
    Image square(6, 6);
    square.box(2, 3, 2, 3);
    EXPECT_EQ(img.px, square.px) << "binarised again";

    Image none(6, 6, 17);
    EXPECT_EQ(QelSelectContoursByArea(img.data(), work.data(), 6, 6, 1, 4, 100, none.data()), 0);
    EXPECT_EQ(none.px, Image(6, 6, 17).px) << "out is only drawn on";

    // A tall bar's chain drawn from the last rows would run past the image: those pixels are skipped.
    Image bar(8, 7);
    bar.box(2, 3, 1, 5);
    Bytes work2(bar.size());
    Image out2(8, 7);
    EXPECT_GT(QelSelectContoursByArea(bar.data(), work2.data(), 8, 7, 1, 0, 1000, out2.data()), 9);
}

TEST(SelectContours, ByPerimeterJudgesEachContourOnceFromItsStart) {
    // A 2 x 1 segment (perimeter 2), a 2 x 2 square (4), a ring (outer 8, hole 6 by four diagonal
    // steps) and a lone pixel (no codes).
    auto scene = [] {
        Image img(16, 7);
        img.box(1, 2, 1, 1).box(4, 5, 1, 2).box(8, 10, 2, 4).box(9, 9, 3, 3, 0);
        img.at(13, 3) = 255;
        return img;
    };
    Bytes work(16 * 7);
    Image img = scene();
    Image out(16, 7);
    EXPECT_EQ(QelSelectContoursByPerimeter(img.data(), work.data(), 16, 7, 1, 2, 8, out.data()), 4);
    img = scene();
    EXPECT_EQ(QelSelectContoursByPerimeter(img.data(), work.data(), 16, 7, 1, 3, 8, out.data()), 3);
    img = scene();
    Image hole(16, 7);
    EXPECT_EQ(QelSelectContoursByPerimeter(img.data(), work.data(), 16, 7, 0, 6, 6, hole.data()), 1);
    Image expected(16, 7);
    expected.at(8, 3) = expected.at(10, 3) = expected.at(9, 2) = expected.at(9, 4) = 255;
    EXPECT_EQ(hole.px, expected.px);
    EXPECT_EQ(img.px, scene().px);
}

// ---- removing regions by size ------------------------------------------------------------------

TEST(RemoveRegions, WhiteObjectsInRangeAreFilledWithZero) {
    // A 2 x 2 square (4 pixels), a 3 x 3 ring (9 pixels enclosed, its hole included), a 5 x 4
    // block (20) and a lone pixel (no codes, nothing enclosed).
    Image img(20, 8);
    img.box(1, 2, 1, 2).box(5, 7, 1, 3).box(6, 6, 2, 2, 0).box(10, 14, 2, 5);
    img.at(17, 5) = 255;
    const Image original = img;
    Bytes work(img.size());
    Image out(20, 8);
    EXPECT_EQ(QelRemoveWhiteRegionsByArea(img.data(), work.data(), 20, 8, 4, 9, out.data()), 2);
    Image expected = original;
    expected.box(1, 2, 1, 2, 0).box(5, 7, 1, 3, 0);
    EXPECT_EQ(out.px, expected.px);
    EXPECT_EQ(img.px, original.px);
}

TEST(RemoveRegions, BlackHolesInRangeAreFilled) {
    // A hole's chain turns clockwise, so the pixels it encloses are the hole's own: 1 and 6 here.
    auto scene = [] {
        Image img(16, 9);
        img.box(1, 14, 1, 7).box(3, 3, 3, 3, 0).box(8, 9, 3, 5, 0);
        return img;
    };
    Bytes work(16 * 9);
    for (auto [lo, hi, filled] : std::vector<std::tuple<int, int, int>>{{1, 1, 1}, {2, 6, 1}, {1, 6, 2}, {7, 99, 0}}) {
        Image img = scene();
        Image out(16, 9);
        EXPECT_EQ(QelRemoveBlackRegionsByArea(img.data(), work.data(), 16, 9, lo, hi, out.data()), filled);
        Image expected = scene();
        if (lo <= 1 && hi >= 1) expected.at(3, 3) = 255;
        if (lo <= 6 && hi >= 6) expected.box(8, 9, 3, 5);
        EXPECT_EQ(out.px, expected.px) << lo << ".." << hi;
    }
}

// ---- keeping the largest regions -----------------------------------------------------------------

TEST(NRegions, StrictTestAgainstTheSmallestOfTheNLargestAreas) {
    auto scene = [] {
        Image img(16, 10);
        img.box(1, 6, 1, 6).box(3, 4, 3, 4, 0);  // the larger object, with a hole
        img.box(10, 12, 2, 4);                   // the smaller
        return img;
    };
    Image larger = scene();
    larger.box(10, 12, 2, 4, 0);
    for (auto [n, painted, expected] : std::vector<std::tuple<int, int, Bytes>>{
             {1, 0, Image(16, 10).px}, {2, 1, larger.px}, {3, 2, scene().px}, {0, 0, Image(16, 10).px}}) {
        Image img = scene();
        Image out(16, 10, 99);
        EXPECT_EQ(Qel255NRegionsWithMaxArea(img.data(), 16, 10, n, 0, out.data()), painted) << "N = " << n;
        EXPECT_EQ(out.px, expected) << "N = " << n;
        EXPECT_EQ(img.px, scene().px);
    }
    // A minimum length leaves the small object out of the list altogether.
    Image img = scene();
    Image out(16, 10);
    EXPECT_EQ(Qel255NRegionsWithMaxArea(img.data(), 16, 10, 3, 9, out.data()), 1);
    EXPECT_EQ(out.px, larger.px);
}

// ---- the largest region in a rectangle -------------------------------------------------------------

TEST(RectWithMax, LargestObjectInsideTheRectangleAndItsFrame) {
    auto scene = [] {
        Image img(20, 16);
        img.box(2, 4, 2, 4);      // area 9, perimeter 8
        img.box(8, 11, 3, 6);     // area 16, perimeter 12
        img.box(13, 18, 8, 13);   // outside, but crossed by the frame
        img.box(6, 7, 8, 8);      // on row 8 only
        return img;
    };
    Bytes work(20 * 16);
    Image img = scene();
    tagRECT r{-1, -1, -1, -1};
    int cx = -1, cy = -1;
    EXPECT_EQ(Qel255RectWithMaxArea(img.data(), work.data(), 20, 16, 1, 12, 1, 8, 1, &r, &cx, &cy), 16);
    EXPECT_EQ((std::vector<int>{r.left, r.top, r.right, r.bottom}), (std::vector<int>{8, 3, 11, 6}));
    EXPECT_EQ(std::make_pair(cx, cy), std::make_pair(10, 5));  // 9.5 and 4.5 rounded up
    // The frame one pixel outside the rectangle stays, and so do the marks the bar on the
    // rectangle's last row left on it.
    Image expected = scene();
    for (int y = 0; y <= 9; ++y) expected.at(13, y) = 0;
    for (int x = 0; x <= 13; ++x) expected.at(x, 9) = x >= 5 && x <= 8 ? 1 : 0;
    EXPECT_EQ(img.px, expected.px);

    img = scene();
    EXPECT_EQ(Qel255RectWithMaxPerimeter(img.data(), work.data(), 20, 16, 1, 12, 1, 8, 1, &r, &cx, &cy), 12);
    // The bar on row 8 is the only object in columns 5..7, rows 5..10; rows 5, 7 and 9 miss it.
    img = scene();
    r = {-1, -1, -1, -1};
    EXPECT_EQ(Qel255RectWithMaxArea(img.data(), work.data(), 20, 16, 5, 7, 5, 10, 2, &r, &cx, &cy), 0);
    EXPECT_EQ(r.left, -1) << "untouched when nothing is found";
    img = scene();
    EXPECT_EQ(Qel255RectWithMaxArea(img.data(), work.data(), 20, 16, 5, 7, 5, 10, 1, &r, &cx, &cy), 2);
    img = scene();
    EXPECT_EQ(Qel255RectWithMaxArea(img.data(), work.data(), 20, 16, 5, 7, 5, 10, 0, &r, &cx, &cy), 2)
        << "a step of 0 counts as 1";
    // A rectangle larger than the image is clipped; the object cut by the image edge is the largest.
    img = scene();
    EXPECT_EQ(Qel255RectWithMaxArea(img.data(), work.data(), 20, 16, -5, 40, -5, 40, 1, &r, &cx, &cy), 36);
    EXPECT_EQ((std::vector<int>{r.left, r.top, r.right, r.bottom}), (std::vector<int>{13, 8, 18, 13}));
}

// ---- deleting short contours and marking the largest hole ----------------------------------------

TEST(DeleteShortContour, RemovesTheBoundaryOfShortObjectsOnly) {
    Image img(16, 8);
    img.box(1, 2, 1, 2).box(5, 8, 1, 4).box(11, 13, 2, 4).box(12, 12, 3, 3, 0);
    const Image original = img;
    Bytes work(img.size());
    Image out(16, 8);
    QelDeleteShortContour(img.data(), work.data(), 16, 8, 8, out.data());
    // The square (4 codes) and the ring's outer boundary (8) go; the 4 x 4 block (12) stays, and the
    // ring's hole boundary is the same pixels, so the ring goes entirely.
    Image expected = original;
    expected.box(1, 2, 1, 2, 0).box(11, 13, 2, 4, 0);
    EXPECT_EQ(out.px, expected.px);
    img = original;
    QelDeleteShortContour(img.data(), work.data(), 16, 8, 12, out.data());
    expected.box(5, 8, 1, 4, 0).box(6, 7, 2, 3);  // its interior stays
    EXPECT_EQ(out.px, expected.px);
    EXPECT_EQ(img.px, original.px);
}

TEST(MarkMaxAreaHole, DrawsTheLargestHoleAndKeepsTheMarks) {
    // The object fills the whole image, edges included: no frame is cleared here. The holes have 1
    // and 4 pixels.
    Image img(12, 10, 255);
    img.box(2, 2, 2, 2, 0).box(6, 7, 4, 5, 0);
    Bytes work(img.size() * 4);
    EXPECT_EQ(QelMarkMaxAreaHoleContour(img.data(), work.data(), 12, 10, 100), 4);
    for (auto [x, y] : std::vector<std::pair<int, int>>{{5, 4}, {5, 5}, {8, 4}, {8, 5}, {6, 3}, {7, 3}, {6, 6}, {7, 6}})
        EXPECT_EQ(img.at(x, y), 100) << x << "," << y;
    EXPECT_EQ(img.at(2, 1), 254) << "the small hole's boundary keeps its trace mark";
    EXPECT_EQ(img.at(6, 4), 1);
    EXPECT_EQ(img.at(0, 0), 255);
    EXPECT_EQ(std::count(img.px.begin(), img.px.end(), 100), 8);

    // A band across the bottom, touching three edges, has no hole: 0 and nothing drawn.
    Image band(10, 8);
    band.box(0, 9, 5, 7);
    EXPECT_EQ(QelMarkMaxAreaHoleContour(band.data(), work.data(), 10, 8, 100), 0);
    EXPECT_EQ(std::count(band.px.begin(), band.px.end(), 100), 0);
    EXPECT_EQ(band.at(0, 5), 254);
}

// Objects touching every edge, in images down to 1 x 1: every scan stays inside the image (the
// sanitizer builds check it) and hands back a binary image with a zero frame.
TEST(RegionScans, ObjectsOnTheFrameAreSafeAtEverySize) {
    for (auto [w, h] : std::vector<std::pair<int, int>>{{1, 1}, {2, 2}, {3, 3}, {5, 4}, {4, 9}, {17, 13}})
        for (int percent : {100, 70, 40}) {
            const Image src = contour_test::random_noise(w, h, percent, static_cast<unsigned>(w * 100 + h + percent));
            Bytes work(src.size() * 4);
            Image out(w, h);
            tagRECT r{};
            int cx = 0, cy = 0;
            auto run = [&](auto&& call) {
                Image img = src;
                call(img);
                for (int y = 0; y < h; ++y)
                    for (int x = 0; x < w; ++x) {
                        const unsigned char v = img.at(x, y);
                        const bool frame = x == 0 || y == 0 || x == w - 1 || y == h - 1;
                        ASSERT_TRUE(frame ? v == 0 : v == 0 || v == 255) << w << "x" << h << " at " << x << "," << y;
                    }
            };
            run([&](Image& img) { QelSelectContoursByArea(img.data(), work.data(), w, h, 1, 0, 1 << 20, out.data()); });
            run([&](Image& img) { QelSelectContoursByPerimeter(img.data(), work.data(), w, h, 1, 0, 99, out.data()); });
            run([&](Image& img) { QelRemoveWhiteRegionsByArea(img.data(), work.data(), w, h, 0, 99, out.data()); });
            run([&](Image& img) { QelRemoveBlackRegionsByArea(img.data(), work.data(), w, h, 0, 99, out.data()); });
            run([&](Image& img) { Qel255NRegionsWithMaxArea(img.data(), w, h, 3, 0, out.data()); });
            run([&](Image& img) { QelDeleteShortContour(img.data(), work.data(), w, h, 99, out.data()); });
            run([&](Image& img) {
                Qel255RectWithMaxArea(img.data(), work.data(), w, h, 0, w - 1, 0, h - 1, 1, &r, &cx, &cy);
            });
            Image marked = src;
            const int area = QelMarkMaxAreaHoleContour(marked.data(), work.data(), w, h, 100);
            EXPECT_GE(area, 0);
            EXPECT_LE(area, w * h);
        }
}

}  // namespace
