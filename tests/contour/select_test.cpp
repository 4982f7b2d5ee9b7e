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

// A 2 x 2 square is traced once (area 3 by the trapezoid sum), then judged again at every later
// pixel that differs from its left neighbour, and drawn there: nine counts and nine copies.
TEST(SelectContours, ByAreaRecountsTheLastChainAtEveryChange) {
    Image img(6, 6), square(6, 6), out(6, 6), none(6, 6, 17), expected(6, 6);
    img.box(2, 3, 2, 3);
    square = img;
    Bytes work(img.size());
    EXPECT_EQ(QelSelectContoursByArea(img.data(), work.data(), 6, 6, 1, 3, 3, out.data()), 9);
    // The start (2, 2), then marks 1 or the frame after 254 or 1 at (4, 2), (5, 2), (1, 3), (2, 3),
    // (4, 3), (5, 3), (1, 4), (5, 4), each drawn from the pixel left of it (below 255).
    for (auto [x, y] : std::vector<std::pair<int, int>>{{2, 2}, {3, 2}, {4, 2}, {0, 3}, {1, 3}, {3, 3}, {4, 3}, {0, 4},
                                                        {4, 4}})
        expected.box(x, x + 1, y, y + 1);
    EXPECT_EQ(out.px, expected.px);
    EXPECT_EQ(img.px, square.px) << "binarised again";
    EXPECT_EQ(QelSelectContoursByArea(img.data(), work.data(), 6, 6, 1, 4, 100, none.data()), 0);
    EXPECT_EQ(none.px, Image(6, 6, 17).px) << "out is only drawn on";
}

TEST(SelectContours, ByPerimeterJudgesEachContourOnceFromItsStart) {
    // A 2 x 1 segment (perimeter 2), a 2 x 2 square (4), a ring (outer 8; hole 6, four diagonal
    // steps) and a lone pixel (perimeter 0, but fewer than 2 codes).
    Image scene(16, 7), hole(16, 7), expected(16, 7);
    scene.box(1, 2, 1, 1).box(4, 5, 1, 2).box(8, 10, 2, 4).box(9, 9, 3, 3, 0).at(13, 3) = 255;
    Bytes work(scene.size());
    for (auto [lo, hi, count] : std::vector<std::tuple<int, int, int>>{{0, 8, 4}, {3, 8, 3}, {6, 6, 1}}) {
        Image img = scene;
        hole = Image(16, 7);
        EXPECT_EQ(QelSelectContoursByPerimeter(img.data(), work.data(), 16, 7, 0, lo, hi, hole.data()), count);
        EXPECT_EQ(img.px, scene.px);
    }
    expected.at(8, 3) = expected.at(10, 3) = expected.at(9, 2) = expected.at(9, 4) = 255;
    EXPECT_EQ(hole.px, expected.px) << "the hole, drawn from the pixel left of it";
}

TEST(RemoveRegions, ObjectsAndHolesInRangeAreFilled) {
    // Objects: a 2 x 2 square (4 pixels), a 3 x 3 ring (9 enclosed, hole included), a 5 x 4 block
    // (20) and a lone pixel (no codes, nothing enclosed).
    Image objects(20, 8);
    objects.box(1, 2, 1, 2).box(5, 7, 1, 3).box(6, 6, 2, 2, 0).box(10, 14, 2, 5).at(17, 5) = 255;
    Image img = objects, out(20, 8);
    Bytes work(img.size() * 2);
    EXPECT_EQ(QelRemoveWhiteRegionsByArea(img.data(), work.data(), 20, 8, 4, 9, out.data()), 2);
    EXPECT_EQ(out.px, Image(objects).box(1, 2, 1, 2, 0).box(5, 7, 1, 3, 0).px);
    EXPECT_EQ(img.px, objects.px);

    // A hole's chain turns clockwise, so the pixels it encloses are the hole's own: 1 and 6 here.
    Image holes(16, 9);
    holes.box(1, 14, 1, 7).box(3, 3, 3, 3, 0).box(8, 9, 3, 5, 0);
    for (auto [lo, hi, filled] : std::vector<std::tuple<int, int, int>>{{1, 1, 1}, {2, 6, 1}, {1, 6, 2}, {7, 99, 0}}) {
        img = holes;
        out = Image(16, 9);
        EXPECT_EQ(QelRemoveBlackRegionsByArea(img.data(), work.data(), 16, 9, lo, hi, out.data()), filled);
        Image expected = holes;
        if (lo <= 1 && hi >= 1) expected.at(3, 3) = 255;
        if (lo <= 6 && hi >= 6) expected.box(8, 9, 3, 5);
        EXPECT_EQ(out.px, expected.px) << lo << ".." << hi;
    }
}

TEST(NRegions, StrictTestAgainstTheSmallestOfTheNLargestAreas) {
    Image scene(16, 10), larger(16, 10), empty(16, 10);
    scene.box(1, 6, 1, 6).box(3, 4, 3, 4, 0).box(10, 12, 2, 4);  // the larger object has a hole
    larger = Image(scene).box(10, 12, 2, 4, 0);
    // N = 1 paints nothing; N = 2 the larger; N = 3 both (a held 0); a minimum length of 9 lists
    // only the larger object, so N = 3 paints it alone.
    for (auto [n, minLength, painted, expected] : std::vector<std::tuple<int, int, int, Bytes>>{
             {1, 0, 0, empty.px}, {2, 0, 1, larger.px}, {3, 0, 2, scene.px}, {0, 0, 0, empty.px}, {3, 9, 1, larger.px}}) {
        Image img = scene, out(16, 10, 99);
        EXPECT_EQ(Qel255NRegionsWithMaxArea(img.data(), 16, 10, n, minLength, out.data()), painted) << "N = " << n;
        EXPECT_EQ(out.px, expected) << "N = " << n;
        EXPECT_EQ(img.px, scene.px);
    }
}

TEST(RectWithMax, LargestObjectInsideTheRectangleAndItsFrame) {
    Image scene(20, 16);
    scene.box(2, 5, 2, 5).box(8, 11, 3, 6);  // equal: areas 16, perimeters 12; the first wins
    scene.box(13, 18, 8, 13);                // outside, crossed by the frame
    scene.box(6, 7, 8, 8);                   // on the rectangle's last row
    Bytes work(scene.size());
    tagRECT r{-1, -1, -1, -1};
    int cx = -1, cy = -1;
    auto largest = [&](auto fn, int x1, int x2, int y1, int y2, int step) {
        Image img = scene;
        const int v = fn(img.data(), work.data(), 20, 16, x1, x2, y1, y2, step, &r, &cx, &cy);
        return std::make_pair(v, img);
    };
    auto [area, img] = largest(Qel255RectWithMaxArea, 1, 12, 1, 8, 1);
    EXPECT_EQ(area, 16);
    EXPECT_EQ((std::vector<int>{r.left, r.top, r.right, r.bottom, cx, cy}), (std::vector<int>{2, 2, 5, 5, 4, 4}));
    // The frame one pixel outside stays, with the marks the bar left on it.
    Image expected = scene;
    expected.box(13, 13, 0, 9, 0).box(0, 13, 9, 9, 0).box(5, 8, 9, 9, 1);
    EXPECT_EQ(img.px, expected.px);
    EXPECT_EQ(largest(Qel255RectWithMaxPerimeter, 1, 12, 1, 8, 1).first, 12);
    // Columns 5..7, rows 5..10 hold only the bar on row 8: rows 5, 7, 9 miss it; a step of 0 is 1.
    r = {-1, -1, -1, -1};
    EXPECT_EQ(largest(Qel255RectWithMaxArea, 5, 7, 5, 10, 2).first, 0);
    EXPECT_EQ(r.left, -1) << "untouched when nothing is found";
    EXPECT_EQ(largest(Qel255RectWithMaxArea, 5, 7, 5, 10, 0).first, 2);
    // A rectangle larger than the image is clipped; the object cut by the image edge is the largest.
    EXPECT_EQ(largest(Qel255RectWithMaxArea, -5, 40, -5, 40, 1).first, 36);
}

TEST(DeleteShortContour, RemovesTheBoundaryOfShortObjectsOnly) {
    // A square (4 codes), a 4 x 4 block (12) and a ring (8; its hole's boundary is the same pixels).
    Image original(16, 8);
    original.box(1, 2, 1, 2).box(5, 8, 1, 4).box(11, 13, 2, 4).box(12, 12, 3, 3, 0);
    Image img = original, out(16, 8);
    Bytes work(img.size());
    QelDeleteShortContour(img.data(), work.data(), 16, 8, 8, out.data());
    Image expected = Image(original).box(1, 2, 1, 2, 0).box(11, 13, 2, 4, 0);
    EXPECT_EQ(out.px, expected.px);
    QelDeleteShortContour(img.data(), work.data(), 16, 8, 12, out.data());
    EXPECT_EQ(out.px, expected.box(5, 8, 1, 4, 0).box(6, 7, 2, 3).px) << "the interior stays";
    EXPECT_EQ(img.px, original.px);
}

TEST(MarkMaxAreaHole, DrawsTheLargestHoleAndKeepsTheMarks) {
    // The object fills the whole image, edges included (no frame is cleared); holes of 1 and 4.
    Image img(12, 10, 255);
    img.box(2, 2, 2, 2, 0).box(6, 7, 4, 5, 0);
    Bytes work(img.size() * 4);
    EXPECT_EQ(QelMarkMaxAreaHoleContour(img.data(), work.data(), 12, 10, 100), 4);
    Image expected(12, 10, 255);
    expected.box(1, 3, 2, 2, 254).box(2, 2, 1, 3, 254).box(2, 2, 2, 2, 1);  // trace marks stay
    expected.box(5, 8, 4, 5, 100).box(6, 7, 3, 6, 100).box(6, 7, 4, 5, 1);
    EXPECT_EQ(img.px, expected.px);
    // A band across the bottom, touching three edges, has no hole: 0 and nothing drawn.
    Image band(10, 8);
    band.box(0, 9, 5, 7);
    EXPECT_EQ(QelMarkMaxAreaHoleContour(band.data(), work.data(), 10, 8, 100), 0);
    EXPECT_EQ(std::count(band.px.begin(), band.px.end(), 100), 0);
}

TEST(MarkMaxAreaHole, OfTwoEqualHolesTheFirstFoundIsDrawn) {
    Image img(12, 10, 255);
    img.box(2, 3, 2, 3, 0).box(7, 8, 6, 7, 0);  // two 2 x 2 holes
    Bytes work(img.size() * 4);
    EXPECT_EQ(QelMarkMaxAreaHoleContour(img.data(), work.data(), 12, 10, 100), 4);
    EXPECT_EQ(img.at(1, 2), 100);  // left of the upper hole, which the scan reaches first
    EXPECT_NE(img.at(6, 6), 100);
}

// Objects touching every edge, in images down to 1 x 1: every scan stays inside the image (the
// sanitizer builds check it) and hands back a binary image with a zero frame.
TEST(RegionScans, ObjectsOnTheFrameAreSafeAtEverySize) {
    for (const auto& size : std::vector<std::pair<int, int>>{{1, 1}, {2, 2}, {3, 3}, {5, 4}, {4, 9}, {17, 13}})
        for (int percent : {100, 70, 40}) {
            const int w = size.first, h = size.second;  // named copies: lambdas below capture them
            const Image src = contour_test::random_noise(w, h, percent, static_cast<unsigned>(w * 100 + h + percent));
            Bytes work(src.size() * 4);
            Image out(w, h);
            tagRECT r{};
            int cx = 0, cy = 0;
            auto run = [&](auto&& call) {
                Image img = src;
                call(img.data());
                for (int y = 0; y < h; ++y)
                    for (int x = 0; x < w; ++x) {
                        const bool frame = x == 0 || y == 0 || x == w - 1 || y == h - 1;
                        ASSERT_TRUE(img.at(x, y) == 0 || (!frame && img.at(x, y) == 255)) << w << "x" << h;
                    }
            };
            unsigned char* o = out.data();
            run([&](unsigned char* p) { QelSelectContoursByArea(p, work.data(), w, h, 1, 0, 1 << 20, o); });
            run([&](unsigned char* p) { QelSelectContoursByPerimeter(p, work.data(), w, h, 1, 0, 99, o); });
            run([&](unsigned char* p) { QelRemoveWhiteRegionsByArea(p, work.data(), w, h, 0, 99, o); });
            run([&](unsigned char* p) { QelRemoveBlackRegionsByArea(p, work.data(), w, h, 0, 99, o); });
            run([&](unsigned char* p) { Qel255NRegionsWithMaxArea(p, w, h, 3, 0, o); });
            run([&](unsigned char* p) { QelDeleteShortContour(p, work.data(), w, h, 99, o); });
            run([&](unsigned char* p) { Qel255RectWithMaxArea(p, work.data(), w, h, 0, w - 1, 0, h - 1, 1, &r, &cx, &cy); });
            Image marked = src;
            const int area = QelMarkMaxAreaHoleContour(marked.data(), work.data(), w, h, 100);
            EXPECT_TRUE(area >= 0 && area <= w * h);
        }
}

}  // namespace
