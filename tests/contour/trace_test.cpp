#include <qel.h>

#include "contour/contour_images.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using contour_test::Bytes;
using contour_test::Chain;
using contour_test::Image;
using contour_test::Mask;

constexpr int kDx[8] = {1, 1, 0, -1, -1, -1, 0, 1};
constexpr int kDy[8] = {0, -1, -1, -1, 0, 1, 1, 1};

Chain trace(Image& img, int x, int y, bool outer, int maxCodes = 1000) {
    Chain c(static_cast<size_t>(maxCodes) + 4, 99);
    c.resize(static_cast<size_t>(QelTraceContour(img.data(), img.w, x, y, c.data(), maxCodes, outer)));
    return c;
}

// ---- the chain convention on hand-built shapes --------------------------------------------------

TEST(TraceContour, LonePixelGivesNoCodesAndMarksEveryNeighbour) {
    Image img(5, 5);
    img.at(2, 2) = 255;
    EXPECT_TRUE(trace(img, 2, 2, true).empty());
    EXPECT_EQ(img.at(2, 2), 254);
    for (int y = 1; y <= 3; ++y)
        for (int x = 1; x <= 3; ++x)
            if (x != 2 || y != 2) {
                EXPECT_EQ(img.at(x, y), 1) << x << "," << y;
            }
    EXPECT_EQ(img.at(0, 0), 0) << "only neighbours are examined";
}

TEST(TraceContour, SegmentAndSquareAreWalkedDownFirstCounterClockwise) {
    Image seg(6, 5);
    seg.box(2, 3, 2, 2);
    EXPECT_EQ(trace(seg, 2, 2, true), (Chain{0, 4}));
    EXPECT_EQ(seg.at(2, 2), 254);
    EXPECT_EQ(seg.at(3, 2), 254);
    EXPECT_EQ(seg.at(1, 2), 1) << "left of the start";

    Image sq(6, 6);
    sq.box(2, 3, 2, 3);
    EXPECT_EQ(trace(sq, 2, 2, true), (Chain{6, 0, 2, 4}));
    Image ell = Image::from({"......", ".##...", ".##...", ".####.", "......"});
    // Back along the foot, the inner corner is cut by a diagonal step.
    EXPECT_EQ(trace(ell, 1, 1, true), (Chain{6, 6, 0, 0, 0, 4, 3, 2, 4}));
    Image diagonal = Image::from({".....", ".#...", "..#..", "...#.", "....."});
    EXPECT_EQ(trace(diagonal, 1, 1, true), (Chain{7, 7, 3, 3}));
}

TEST(TraceContour, HoleIsTracedFromTheObjectPixelLeftOfIt) {
    Image ring = Image::from({".....", ".###.", ".#.#.", ".###.", "....."});
    EXPECT_EQ(trace(ring, 1, 2, false), (Chain{1, 7, 5, 3}));
    EXPECT_EQ(ring.at(2, 2), 1) << "right of the start";
    for (int x : {1, 3}) EXPECT_EQ(ring.at(x, 2), 254);
    EXPECT_EQ(ring.at(1, 1), 255) << "corners are not on the hole's boundary";
}

TEST(TraceContour, StartWithTwoBranchesIsLeftAgainAlongTheSecond) {
    // A V whose two arms meet at the start: the walk comes back to the start from the first arm and
    // leaves it again along the second.
    Image v = Image::from({".......", ".#...#.", "..#.#..", "...#...", "......."});
    const Chain c = trace(v, 3, 3, true);
    EXPECT_EQ(c, (Chain{1, 1, 5, 5, 3, 3, 7, 7}));
    for (int x : {1, 5}) EXPECT_EQ(v.at(x, 1), 254);
}

TEST(TraceContour, LongChainsAreCutToMaximumMinusOneButWalkedToTheEnd) {
    Image sq(6, 6);
    sq.box(2, 3, 2, 3);
    Chain c(8, 99);
    EXPECT_EQ(QelTraceContour(sq.data(), sq.w, 2, 2, c.data(), 3, true), 2);
    EXPECT_EQ(c, (Chain{6, 0, 99, 99, 99, 99, 99, 99}));
    EXPECT_EQ(sq.at(3, 2), 254) << "the last pixel is still marked";
    Image again(6, 6);
    again.box(2, 3, 2, 3);
    EXPECT_EQ(QelTraceContour(again.data(), again.w, 2, 2, c.data(), 0, true), 0);
    EXPECT_EQ(again.px, sq.px) << "the same marks whatever the limit";
    Image marked(6, 6);
    marked.box(2, 3, 2, 3);
    QelMarkContour(marked.data(), marked.w, 2, 2, true);
    EXPECT_EQ(marked.px, sq.px);
}

// ---- the contour list --------------------------------------------------------------------------

TEST(GetContours, SquareWithHoleGivesOuterThenHoleAndRestoresTheImage) {
    Image img(9, 9);
    img.box(2, 6, 2, 6).box(4, 5, 4, 4, 0);
    Image original = img;
    const auto list = contour_test::get_contours(img);
    ASSERT_EQ(list.size(), 2u);
    EXPECT_TRUE(list[0].outer);
    EXPECT_EQ(std::make_pair(list[0].x, list[0].y), std::make_pair(2, 2));
    EXPECT_EQ(list[0].chain.size(), 16u);
    EXPECT_EQ(list[0].area, 25);
    EXPECT_FALSE(list[1].outer);
    EXPECT_EQ(std::make_pair(list[1].x, list[1].y), std::make_pair(3, 4)) << "one left of the first hole pixel";
    for (const auto& c : list) {
        int area = -1, perimeter = -1;
        QelRealAreaAndPerimeter(const_cast<unsigned char*>(c.chain.data()), static_cast<int>(c.chain.size()), &area,
                                &perimeter);
        EXPECT_EQ(c.area, area);
        EXPECT_EQ(c.perimeter, perimeter);
    }
    EXPECT_EQ(img.px, original.px) << "marks binarised away";

    Image again = original;
    const auto holes = contour_test::get_contours(again, 0, 0, 2);
    ASSERT_EQ(holes.size(), 1u);
    EXPECT_FALSE(holes[0].outer);
    Image outer = original;
    EXPECT_EQ(contour_test::get_contours(outer, 0, 0, 1).size(), 1u);
    Image big = original;
    EXPECT_EQ(contour_test::get_contours(big, 0, 26).size(), 0u) << "minimum area";
    Image longer = original;
    EXPECT_EQ(contour_test::get_contours(longer, 7).size(), 1u) << "the 6-code hole is too short";
}

TEST(GetContours, BorderIsClearedAndLonePixelsAreDropped) {
    Image img(8, 7);
    img.box(0, 2, 0, 2);  // loses row 0 and column 0
    img.at(5, 4) = 255;   // traced, but no codes
    const auto list = contour_test::get_contours(img);
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].chain, (Chain{6, 0, 2, 4}));
    EXPECT_EQ(std::make_pair(list[0].x, list[0].y), std::make_pair(1, 1));
    for (int x = 0; x < img.w; ++x) EXPECT_EQ(img.at(x, 0), 0);
    EXPECT_EQ(img.at(5, 4), 255);
    EXPECT_EQ(QelGetContours(img.data(), nullptr, 0, 0, 0, 0, 0), nullptr);
    QelFreeContours(nullptr);
}

// One record per object of two or more pixels and one per hole, each chain closing on its start and
// visiting only boundary pixels, in scan order of the start pixels; on random images.
TEST(GetContours, RandomImagesGiveOneClosedChainPerBoundary) {
    for (unsigned seed = 1; seed <= 30; ++seed) {
        Image img = seed % 3 == 0 ? contour_test::random_noise(23, 17, 45, seed) : contour_test::random_blobs(40, 30, seed);
        QelSetImageBoundary(img.data(), img.w, img.h, 0);
        const Mask object = contour_test::where(img, true);
        const Mask background = contour_test::where(img, false);
        const auto list = contour_test::get_contours(img);
        int outers = 0, holes = 0;
        long previous = -1;
        for (const auto& c : list) {
            (c.outer ? outers : holes)++;
            const long at = static_cast<long>(c.y) * img.w + c.x + (c.outer ? 0 : 1);
            EXPECT_GT(at, previous) << "scan order, seed " << seed;
            previous = at;
            int x = c.x, y = c.y;
            for (unsigned char k : c.chain) {
                x += kDx[k];
                y += kDy[k];
                ASSERT_TRUE(object[static_cast<size_t>(y) * img.w + x]) << "seed " << seed;
            }
            EXPECT_EQ(std::make_pair(x, y), std::make_pair(c.x, c.y)) << "closed, seed " << seed;
        }
        EXPECT_EQ(outers, contour_test::count_regions(object, img.w, img.h, 8, 2, false)) << "seed " << seed;
        EXPECT_EQ(holes, contour_test::count_regions(background, img.w, img.h, 4, 1, true)) << "seed " << seed;
    }
}

// ---- marking every boundary --------------------------------------------------------------------

// Boundary pixels are the object pixels with a background pixel above, below, left or right.
TEST(MarkContours, MarksExactlyTheObjectPixelsNextToBackground) {
    for (unsigned seed = 1; seed <= 12; ++seed) {
        Image img = seed % 2 ? contour_test::random_blobs(37, 29, seed) : contour_test::random_noise(21, 19, 55, seed);
        const Image original = img;
        Image out(img.w, img.h, 77);
        QelMarkContours(img.data(), img.w, img.h, out.data());
        EXPECT_EQ(img.px, original.px) << "input untouched";
        for (int y = 0; y < img.h; ++y)
            for (int x = 0; x < img.w; ++x) {
                bool edge = false;
                if (x > 0 && y > 0 && x < img.w - 1 && y < img.h - 1 && img.at(x, y) != 0)
                    for (int k = 0; k < 8; k += 2) {
                        const int nx = x + kDx[k], ny = y + kDy[k];
                        const bool frame = nx == 0 || ny == 0 || nx == img.w - 1 || ny == img.h - 1;
                        edge = edge || frame || img.at(nx, ny) == 0;
                    }
                ASSERT_EQ(out.at(x, y), edge ? 255 : 0) << x << "," << y << " seed " << seed;
            }
    }
}

// ---- chains to points and marks ------------------------------------------------------------------

TEST(ChainPoints, ClosingCodeIsNotAppliedAndMaximaStartAtTheStart) {
    unsigned char chain[] = {6, 0, 2, 4};
    int xs[4] = {}, ys[4] = {};
    int mx = -1, my = -1;
    QelChain2Points(5, 7, chain, 4, xs, ys, &mx, &my);
    EXPECT_EQ(std::vector<int>(xs, xs + 4), (std::vector<int>{5, 5, 6, 6}));
    EXPECT_EQ(std::vector<int>(ys, ys + 4), (std::vector<int>{7, 8, 8, 7}));
    EXPECT_EQ(std::make_pair(mx, my), std::make_pair(6, 8));
    int one[2] = {-1, -1}, oneY[2] = {-1, -1};
    QelChain2Points(3, 4, chain, 1, one, oneY);
    EXPECT_EQ(std::make_pair(one[0], oneY[0]), std::make_pair(3, 4));
    EXPECT_EQ(one[1], -1) << "n = 1 writes only the start point";
    unsigned char up[] = {2, 2, 6, 6};
    QelChain2Points(3, 4, up, 4, xs, ys, &mx, &my);
    EXPECT_EQ(std::make_pair(mx, my), std::make_pair(3, 4)) << "maxima count from the start";
    one[0] = -1;
    QelChain2Points(8, 9, chain, 0, one, oneY, &mx, &my);
    EXPECT_EQ(one[0], -1) << "no codes, no points";
    EXPECT_EQ(std::make_pair(mx, my), std::make_pair(8, 9));
}

TEST(ChainMarks, ColourDashesAndIncrements) {
    unsigned char line[12];
    for (auto& k : line) k = 0;
    Image img(14, 1);
    QelMarkChainByColor(img.data(), img.w, 0, 0, line, 12, -1);
    Bytes painted(14, 255);
    painted[13] = 0;
    EXPECT_EQ(img.px, painted);
    Image dashed(14, 1);
    QelMarkChainByColor(dashed.data(), dashed.w, 0, 0, line, 12, 9, 12345);
    // Start, then after codes 0..4 marked, 5..9 not, 10..11 marked.
    const Bytes dashes{9, 9, 9, 9, 9, 9, 0, 0, 0, 0, 0, 9, 9, 0};
    EXPECT_EQ(dashed.px, dashes);

    Image inc(4, 1);
    inc.at(0, 0) = 255;
    inc.at(2, 0) = 255;
    unsigned char outAndBack[] = {0, 0, 4, 4};
    QelMarkChainByInc(inc.data(), inc.w, 0, 0, outAndBack, 4);
    // The start wraps 255 -> 0 and is then passed once more; (1, 0) is passed twice; (2, 0) stays.
    EXPECT_EQ(inc.px, (Bytes{1, 2, 255, 0}));
}

}  // namespace
