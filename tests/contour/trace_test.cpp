#include <qel.h>

#include "contour/contour_images.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

namespace {

using contour_test::Bytes;
using contour_test::Chain;
using contour_test::Image;

Chain trace(Image& img, int x, int y, bool outer, int maxCodes = 1000) {
    Chain c(static_cast<size_t>(maxCodes) + 4, 99);
    c.resize(static_cast<size_t>(QelTraceContour(img.data(), img.w, x, y, c.data(), maxCodes, outer)));
    return c;
}

TEST(TraceContour, ChainConventionOnHandBuiltShapes) {
    Image pixel(5, 5);
    pixel.at(2, 2) = 255;
    EXPECT_TRUE(trace(pixel, 2, 2, true).empty());
    Image marks(5, 5);
    marks.box(1, 3, 1, 3, 1).at(2, 2) = 254;  // every neighbour examined
    EXPECT_EQ(pixel.px, marks.px);

    Image seg(6, 5);
    seg.box(2, 3, 2, 2);
    EXPECT_EQ(trace(seg, 2, 2, true), (Chain{0, 4}));
    EXPECT_EQ(seg.at(3, 2), 254);
    EXPECT_EQ(seg.at(1, 2), 1) << "left of the start";
    Image sq(6, 6);
    sq.box(2, 3, 2, 3);
    EXPECT_EQ(trace(sq, 2, 2, true), (Chain{6, 0, 2, 4})) << "down first, counter-clockwise on screen";
    // Back along the foot of an L the inner corner is cut by a diagonal step.
    Image ell = Image::from({"......", ".##...", ".##...", ".####.", "......"});
    EXPECT_EQ(trace(ell, 1, 1, true), (Chain{6, 6, 0, 0, 0, 4, 3, 2, 4}));

    Image ring = Image::from({".....", ".###.", ".#.#.", ".###.", "....."});
    EXPECT_EQ(trace(ring, 1, 2, false), (Chain{1, 7, 5, 3})) << "a hole, from the pixel left of it";
    EXPECT_EQ(ring.at(2, 2), 1);
    EXPECT_EQ(ring.at(1, 1), 255) << "corners are not on the hole's boundary";
}

TEST(TraceContour, StartWithTwoBranchesIsLeftAgainAlongTheSecond) {
    Image v = Image::from({".......", ".#...#.", "..#.#..", "...#...", "......."});
    EXPECT_EQ(trace(v, 3, 3, true), (Chain{1, 1, 5, 5, 3, 3, 7, 7}));
    EXPECT_EQ(v.at(1, 1), 254);
}

TEST(TraceContour, LongChainsAreCutToMaximumMinusOneButWalkedToTheEnd) {
    Image sq(6, 6), again(6, 6), marked(6, 6);
    for (Image* img : {&sq, &again, &marked}) img->box(2, 3, 2, 3);
    Chain c(4, 99);
    EXPECT_EQ(QelTraceContour(sq.data(), sq.w, 2, 2, c.data(), 3, true), 2);
    EXPECT_EQ(c, (Chain{6, 0, 99, 99}));
    EXPECT_EQ(QelTraceContour(again.data(), again.w, 2, 2, c.data(), 0, true), 0);
    QelMarkContour(marked.data(), marked.w, 2, 2, true);
    EXPECT_EQ(again.px, sq.px) << "the same marks whatever the limit";
    EXPECT_EQ(marked.px, sq.px);
}

TEST(GetContours, SquareWithHoleGivesOuterThenHoleAndRestoresTheImage) {
    Image original(9, 9);
    original.box(2, 6, 2, 6).box(4, 5, 4, 4, 0);
    Image img = original;
    const auto list = contour_test::get_contours(img);
    ASSERT_EQ(list.size(), 2u);
    EXPECT_TRUE(list[0].outer);
    EXPECT_EQ((std::vector<int>{list[0].x, list[0].y, list[0].area}), (std::vector<int>{2, 2, 25}));
    EXPECT_EQ(list[0].chain.size(), 16u);
    EXPECT_FALSE(list[1].outer);
    EXPECT_EQ(std::make_pair(list[1].x, list[1].y), std::make_pair(3, 4)) << "one left of the first hole pixel";
    EXPECT_EQ(list[1].chain, (Chain{1, 0, 7, 5, 4, 3}));
    EXPECT_EQ(img.px, original.px) << "marks binarised away";

    // mode, minimum area, minimum length (the hole has 6 codes; the outer 16 codes, perimeter 16,
    // area 25): each minimum keeps a contour that reaches it exactly
    for (auto [minLength, minArea, mode, kept] : std::vector<std::tuple<int, int, int, size_t>>{
             {0, 0, 1, 1}, {0, 0, 2, 1}, {0, 26, 0, 0}, {0, 25, 0, 1}, {7, 0, 0, 1}, {6, 0, 0, 2}, {16, 0, 0, 1},
             {17, 0, 0, 0}}) {
        img = original;
        EXPECT_EQ(contour_test::get_contours(img, minLength, minArea, mode).size(), kept) << mode << minArea << minLength;
    }
}

TEST(GetContours, BorderIsClearedAndLonePixelsAreDropped) {
    Image img(8, 7);
    img.box(0, 2, 0, 2);  // loses row 0 and column 0
    img.at(5, 4) = 255;   // traced, but no codes
    const auto list = contour_test::get_contours(img);
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].chain, (Chain{6, 0, 2, 4}));
    EXPECT_EQ(std::make_pair(list[0].x, list[0].y), std::make_pair(1, 1));
    EXPECT_EQ(img.at(0, 1), 0);
    EXPECT_EQ(img.at(5, 4), 255);
    EXPECT_EQ(QelGetContours(img.data(), nullptr, 0, 0, 0, 0, 0), nullptr);
    QelFreeContours(nullptr);
}

// The boundary pixels are the object pixels with a background pixel above, below, left or right.
// Widths from 29 to 117 put boundary starts at every place of the 16- and 32-pixel scan steps.
TEST(MarkContours, MarksExactlyTheObjectPixelsNextToBackground) {
    for (unsigned seed = 1; seed <= 12; ++seed) {
        const int w = static_cast<int>(21 + 8 * seed);
        const Image img = seed % 2 ? contour_test::random_blobs(w, 29, seed) : contour_test::random_noise(w, 19, 55, seed);
        Image in = img, out(img.w, img.h, 77);
        QelMarkContours(in.data(), img.w, img.h, out.data());
        EXPECT_EQ(in.px, img.px) << "input untouched";
        auto background = [&](int x, int y) {
            return x <= 0 || y <= 0 || x >= img.w - 1 || y >= img.h - 1 || img.at(x, y) == 0;
        };
        for (int y = 0; y < img.h; ++y)
            for (int x = 0; x < img.w; ++x) {
                const bool edge = !background(x, y) && (background(x - 1, y) || background(x + 1, y) ||
                                                        background(x, y - 1) || background(x, y + 1));
                ASSERT_EQ(out.at(x, y), edge ? 255 : 0) << x << "," << y << " seed " << seed;
            }
    }
}

TEST(ChainPoints, ClosingCodeIsNotAppliedAndMaximaStartAtTheStart) {
    unsigned char chain[] = {6, 0, 2, 4};
    int xs[4] = {}, ys[4] = {}, mx = -1, my = -1;
    QelChain2Points(5, 7, chain, 4, xs, ys, &mx, &my);
    EXPECT_EQ(std::vector<int>(xs, xs + 4), (std::vector<int>{5, 5, 6, 6}));
    EXPECT_EQ(std::vector<int>(ys, ys + 4), (std::vector<int>{7, 8, 8, 7}));
    EXPECT_EQ(std::make_pair(mx, my), std::make_pair(6, 8));
    int one[2] = {-1, -1}, oneY[2] = {-1, -1};
    QelChain2Points(3, 4, chain, 1, one, oneY);
    EXPECT_EQ((std::vector<int>{one[0], oneY[0], one[1]}), (std::vector<int>{3, 4, -1})) << "only the start";
    unsigned char up[] = {2, 2, 6, 6};
    QelChain2Points(3, 4, up, 4, xs, ys, &mx, &my);
    EXPECT_EQ(std::make_pair(mx, my), std::make_pair(3, 4)) << "maxima count from the start";
    QelChain2Points(8, 9, chain, 0, one, oneY, &mx, &my);
    EXPECT_EQ((std::vector<int>{one[0], mx, my}), (std::vector<int>{3, 8, 9})) << "no codes, no points";
}

TEST(ChainMarks, ColourDashesAndIncrements) {
    unsigned char line[12] = {};
    Image img(14, 1), dashed(14, 1);
    QelMarkChainByColor(img.data(), img.w, 0, 0, line, 12, -1);
    Bytes painted(14, 255);
    painted[13] = 0;
    EXPECT_EQ(img.px, painted);
    // Start, then after codes 0..4 marked, 5..9 not, 10..11 marked.
    QelMarkChainByColor(dashed.data(), dashed.w, 0, 0, line, 12, 9, 12345);
    EXPECT_EQ(dashed.px, (Bytes{9, 9, 9, 9, 9, 9, 0, 0, 0, 0, 0, 9, 9, 0}));
    // The start wraps 255 -> 0 and is then passed once more; (1, 0) is passed twice; (2, 0) stays.
    Image inc(4, 1);
    inc.at(0, 0) = inc.at(2, 0) = 255;
    unsigned char outAndBack[] = {0, 0, 4, 4};
    QelMarkChainByInc(inc.data(), inc.w, 0, 0, outAndBack, 4);
    EXPECT_EQ(inc.px, (Bytes{1, 2, 255, 0}));
}

}  // namespace
