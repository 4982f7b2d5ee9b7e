// Split-and-merge segmentation on hand-built nested rectangles (areas by the trapezoid rule: an
// a × b pixel rectangle has area (a−1)(b−1) + (a−1) + (b−1)), and on random images whose trees are
// checked for consistency. Grey values below are the caller's; the sweep works on 255 − v.
#include <qel.h>

#include "contour/contour_images.h"
#include "support/test_images.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <map>
#include <random>
#include <set>
#include <vector>

namespace {

using contour_test::Image;
using qel_test::Bytes;

// A list as values, keyed by record: everything but the chain pointer and link.
struct Region {
    int x, y, chainLength, area, perimeter, level, enclosingId, id, parentId, childArea;
};

// Runs QelMergeSplit on img (left inverted, as the function leaves it) with an exact-size work
// buffer; returns the records in list order and frees the list.
std::vector<Region> segment(Image& img, int minArea, int minContrast, double splitRatio) {
    Bytes work(img.size() * 2);
    RegionStruct* list = QelMergeSplit(img.data(), work.data(), img.w, img.h, minArea, minContrast, splitRatio);
    std::vector<Region> out;
    for (RegionStruct* r = list; r != nullptr; r = r->next)
        out.push_back({r->x, r->y, r->chainLength, r->area, r->perimeter, r->level, r->enclosingId, r->id,
                       r->parentId, r->childArea});
    QelFreeRegionStruct(list);
    return out;
}

int rect_area(int a, int b) { return (a - 1) * (b - 1) + (a - 1) + (b - 1); }

// Background 250; A = 32 × 22 of grey 150 holding B and C, two 8 × 8 squares of grey 20.
Image two_squares_in_a_rectangle() {
    Image img(40, 30, 250);
    img.box(4, 35, 4, 25, 150).box(8, 15, 8, 15, 20).box(20, 27, 8, 15, 20);
    return img;
}

TEST(SplitMerge, NothingToSweep) {
    // Uniform images: the first level is the image's own level, above which nothing lies.
    for (unsigned char v : {0, 90, 255}) {
        Image img(12, 9, v);
        EXPECT_TRUE(segment(img, 4, 0, 0.5).empty()) << int(v);
    }
    // minContrast of 255 or more leaves no level.
    for (int contrast : {255, 256, INT_MAX}) {
        Image img = two_squares_in_a_rectangle();
        EXPECT_TRUE(segment(img, 4, contrast, 0.5).empty()) << contrast;
    }
    // Empty sizes touch nothing.
    Bytes grey(4, 7), work(8);
    EXPECT_EQ(QelMergeSplit(grey.data(), work.data(), 0, 4, 1, 0, 0.5), nullptr);
    EXPECT_EQ(QelMergeSplit(grey.data(), work.data(), 4, -1, 1, 0, 0.5), nullptr);
    EXPECT_EQ(grey, Bytes(4, 7));
    QelFreeRegionStruct(nullptr);
}

TEST(SplitMerge, LeavesTheImageInvertedWithAZeroFrame) {
    Image img = two_squares_in_a_rectangle();
    Image expected = img;
    for (auto& p : expected.px) p = static_cast<unsigned char>(255 - p);
    expected.box(0, 39, 0, 0, 0).box(0, 39, 29, 29, 0).box(0, 0, 0, 29, 0).box(39, 39, 0, 29, 0);
    segment(img, 16, 0, 0.5);
    EXPECT_EQ(img.px, expected.px);
}

TEST(SplitMerge, OneRegionKeepsItsFirstRecord) {
    // A 10 × 10 square of grey 50 on 200: found at levels 55..204 (inverted), recorded once, at
    // the first level; the later levels only continue it.
    Image img(30, 30, 200);
    img.box(5, 14, 5, 14, 50);
    const auto regions = segment(img, 16, 0, 0.5);
    ASSERT_EQ(regions.size(), 1u);
    const Region& r = regions[0];
    EXPECT_EQ(r.x, 5);
    EXPECT_EQ(r.y, 5);
    EXPECT_EQ(r.chainLength, 36);
    EXPECT_EQ(r.area, rect_area(10, 10));
    EXPECT_EQ(r.perimeter, 36);
    EXPECT_EQ(r.level, 255 - 55);
    EXPECT_EQ(r.id, 0);
    EXPECT_EQ(r.enclosingId, -1);
    EXPECT_EQ(r.parentId, -1);
    EXPECT_EQ(r.childArea, r.area);
    // The sweep stops at 255 − minContrast: it still finds the square when that is the first
    // level, 55, and nothing when it is 54.
    for (int contrast : {200, 201}) {
        Image again(30, 30, 200);
        again.box(5, 14, 5, 14, 50);
        EXPECT_EQ(segment(again, 16, contrast, 0.5).size(), contrast == 200 ? 1u : 0u);
    }
}

TEST(SplitMerge, AChainOfSingleChildrenCollapsesIntoOneRecord) {
    // A 20 × 20 square of 155 holding a 10 × 10 square of 55: the inner square continues the outer
    // one, so the outer record stays and its childArea becomes the inner square's area.
    Image img(30, 30, 250);
    img.box(5, 24, 5, 24, 155).box(10, 19, 10, 19, 55);
    const auto regions = segment(img, 16, 0, 0.5);
    ASSERT_EQ(regions.size(), 1u);
    EXPECT_EQ(regions[0].area, rect_area(20, 20));
    EXPECT_EQ(regions[0].childArea, rect_area(10, 10));
}

TEST(SplitMerge, SplitsWhenTheChildrenCoverMoreThanTheRatio) {
    const int a = rect_area(32, 22), b = rect_area(8, 8);
    const double cover = 2.0 * b / a;
    // Two children of A covering 2·63 / 703 of its area. At or below the ratio A stays and both
    // become its children; above, A is removed and both become roots.
    for (double ratio : {cover, 0.5}) {
        Image img = two_squares_in_a_rectangle();
        const auto regions = segment(img, 16, 0, ratio);
        ASSERT_EQ(regions.size(), 3u) << ratio;
        // Equal areas enter the tree newest first: C, traced after B, comes before it.
        EXPECT_EQ(regions[0].x, 20);
        EXPECT_EQ(regions[1].x, 8);
        EXPECT_EQ(regions[0].area, b);
        EXPECT_EQ(regions[1].area, b);
        EXPECT_EQ(regions[0].id, regions[1].id + 1);
        EXPECT_EQ(regions[0].level, 255 - 105);
        const Region& big = regions[2];
        EXPECT_EQ(big.id, 0);
        EXPECT_EQ(big.area, a);
        EXPECT_EQ(big.level, 255 - 5);
        EXPECT_EQ(big.childArea, a);  // never had a single child
        EXPECT_EQ(regions[0].parentId, 0);
        EXPECT_EQ(regions[1].parentId, 0);
    }
    Image img = two_squares_in_a_rectangle();
    const auto split = segment(img, 16, 0, std::nextafter(cover, 0.0));
    ASSERT_EQ(split.size(), 2u);
    EXPECT_EQ(split[0].parentId, -1);
    EXPECT_EQ(split[1].parentId, -1);
    EXPECT_EQ(split[0].area + split[1].area, 2 * b);
}

TEST(SplitMerge, AnIslandInARingOfOneLevel) {
    // Background 250, A (34 × 34 of 150) holding a ring R (20 × 20 of 20 around a 12 × 12 hole of
    // 150) with an island I (4 × 4 of 20) in the hole. R and I appear together inside A: I is
    // enclosed by R, so it is a region of its own, while R alone continues A.
    Image img(40, 40, 250);
    img.box(3, 36, 3, 36, 150).box(8, 27, 8, 27, 20).box(12, 23, 12, 23, 150).box(16, 19, 16, 19, 20);
    const auto regions = segment(img, 9, 0, 0.0);
    ASSERT_EQ(regions.size(), 2u);
    const Region& island = regions[0];
    const Region& outer = regions[1];
    EXPECT_EQ(outer.id, 0);
    EXPECT_EQ(outer.area, rect_area(34, 34));
    EXPECT_EQ(outer.childArea, rect_area(20, 20));  // R's outer contour, hole included
    EXPECT_EQ(island.x, 16);
    EXPECT_EQ(island.y, 16);
    EXPECT_EQ(island.area, rect_area(4, 4));
    EXPECT_EQ(island.level, 255 - 105);
    EXPECT_EQ(island.parentId, 0);
    // I was found together with R, so its enclosing region is R's record of that level (freed).
    EXPECT_EQ(island.enclosingId, island.id - 1);
}

TEST(SplitMerge, FirstLevelParentsAreTheEnclosingRegions) {
    // A ring with an island, both of one grey level: one level list, made the tree as it is.
    Image img(40, 40, 200);
    img.box(8, 27, 8, 27, 50).box(12, 23, 12, 23, 200).box(16, 19, 16, 19, 50);
    const auto regions = segment(img, 9, 0, 0.5);
    ASSERT_EQ(regions.size(), 2u);
    EXPECT_EQ(regions[1].id, 0);
    EXPECT_EQ(regions[1].enclosingId, -1);
    EXPECT_EQ(regions[0].id, 1);
    EXPECT_EQ(regions[0].enclosingId, 0);
    EXPECT_EQ(regions[0].parentId, 0);
}

// C1 (54 × 34 of 155) with a lake (16 × 16 of 250) holding an island S (6 × 6 of 55), and inside
// C1 a ring N (24 × 24 of 55) around the lake and a blob M (16 × 16 of 55).
Image lake_in_a_splitting_region() {
    Image img(60, 40, 250);
    img.box(3, 56, 3, 36, 155).box(6, 29, 6, 29, 55).box(10, 25, 10, 25, 250).box(15, 20, 15, 20, 55);
    img.box(35, 50, 10, 25, 55);
    return img;
}

TEST(SplitMerge, NewRegionsAdoptSmallerOnesWhoseParentDoesNotHoldThem) {
    const int c1 = rect_area(54, 34), n = rect_area(24, 24), m = rect_area(16, 16), s = rect_area(6, 6);
    ASSERT_GT(double(n + m) / c1, 0.3);
    ASSERT_LT(double(n + m) / c1, 0.5);
    // Split: C1 goes, S (its child) is left without a parent, and N, holding S, adopts it.
    Image img = lake_in_a_splitting_region();
    auto regions = segment(img, 9, 0, 0.3);
    ASSERT_EQ(regions.size(), 3u);
    EXPECT_EQ(regions[0].area, s);
    EXPECT_EQ(regions[0].id, 1);
    EXPECT_EQ(regions[1].area, m);
    EXPECT_EQ(regions[2].area, n);
    EXPECT_EQ(regions[0].parentId, regions[2].id);
    EXPECT_EQ(regions[1].parentId, -1);
    EXPECT_EQ(regions[2].parentId, -1);
    // No split: C1 stays and, holding N, stays S's parent although N lies between them.
    img = lake_in_a_splitting_region();
    regions = segment(img, 9, 0, 0.5);
    ASSERT_EQ(regions.size(), 4u);
    EXPECT_EQ(regions[3].area, c1);
    EXPECT_EQ(regions[3].id, 0);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(regions[i].parentId, 0) << i;
}

TEST(SplitMerge, TheSweepStartsWhereTheDarkestLevelsOutnumberTheRootOfMinArea) {
    // Inverted, the square is level 50 on 0. Levels 1..t count the frame too (the histogram comes
    // before the frame is cleared): with five frame pixels of inverted level 40, more than
    // sqrt(16) = 4, the sweep starts at 40 and finds the square; with four it starts at 50, the
    // square's own level, and finds nothing.
    for (int extra : {4, 5}) {
        Image img(30, 30, 255);
        img.box(5, 14, 5, 14, 205).box(0, extra - 1, 0, 0, 215);
        const auto regions = segment(img, 16, 0, 0.5);
        if (extra == 4) {
            EXPECT_TRUE(regions.empty());
        } else {
            ASSERT_EQ(regions.size(), 1u);
            EXPECT_EQ(regions[0].level, 255 - 40);
        }
    }
}

// A coarse random image: blocks of random grey, so that regions nest over many levels.
Image random_blocks(int w, int h, int block, unsigned seed) {
    std::mt19937 rng(seed);
    Image img(w, h);
    std::vector<unsigned char> levels((w / block + 1) * (h / block + 1));
    for (auto& v : levels) v = static_cast<unsigned char>(rng() % 6 * 50);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) img.at(x, y) = levels[(y / block) * (w / block + 1) + x / block];
    return img;
}

TEST(SplitMerge, RandomImagesGiveConsistentTrees) {
    // Ascending areas, unique ids, parents that exist and are not smaller, records within the
    // limits asked for, closed chains. The sanitizer build checks that every record is freed.
    struct Case {
        int w, h, block, minArea, minContrast;
        double ratio;
    };
    const Case cases[] = {{1, 1, 1, 0, 0, 0.5},    {2, 3, 1, 1, 0, 0.5},       {3, 3, 1, 0, -10, 0.0},
                          {31, 17, 3, 4, 0, 0.2},  {40, 30, 4, 9, 20, 0.5},   {40, 30, 2, 0, INT_MIN, 1.0},
                          {64, 48, 5, 25, 0, 0.1}, {50, 40, 1, -7, 100, 0.3}, {45, 33, 6, 16, -300, 0.0}};
    unsigned seed = 1;
    for (const Case& c : cases) {
        for (int rep = 0; rep < 3; ++rep, ++seed) {
            Image img = random_blocks(c.w, c.h, c.block, seed);
            Bytes work(img.size() * 2);
            RegionStruct* list = QelMergeSplit(img.data(), work.data(), c.w, c.h, c.minArea, c.minContrast, c.ratio);
            std::map<int, const RegionStruct*> byId;
            for (const RegionStruct* r = list; r != nullptr; r = r->next) {
                EXPECT_TRUE(byId.emplace(r->id, r).second) << "duplicate id " << r->id;
                if (r->next != nullptr) EXPECT_LE(r->area, r->next->area);
                EXPECT_GE(r->area, c.minArea);
                EXPECT_GE(r->level, c.minContrast);
                EXPECT_LE(r->level, 254);
                static const int kStepX[8] = {1, 1, 0, -1, -1, -1, 0, 1};
                static const int kStepY[8] = {0, -1, -1, -1, 0, 1, 1, 1};
                int dx = 0, dy = 0;
                for (int i = 0; i < r->chainLength; ++i) dx += kStepX[r->chain[i]], dy += kStepY[r->chain[i]];
                EXPECT_EQ(dx, 0);
                EXPECT_EQ(dy, 0);
            }
            for (const auto& [id, r] : byId) {
                if (r->parentId == -1) continue;
                const auto parent = byId.find(r->parentId);
                ASSERT_NE(parent, byId.end()) << "record " << id << " has a missing parent";
                EXPECT_GE(parent->second->area, r->area);
            }
            QelFreeRegionStruct(list);
        }
    }
}

}  // namespace
