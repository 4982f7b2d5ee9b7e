// Split-and-merge on hand-built nested rectangles (an a × b rectangle's area is (a−1)(b−1) +
// (a−1) + (b−1) by the trapezoid rule) and on random images. Grey values are the caller's; the
// sweep thresholds 255 − v, so a region of grey g on a surround of grey s is object at levels
// 255 − s .. 254 − g and is recorded at the first of them swept, with level 255 − t.
#include <qel.h>

#include "contour/contour_images.h"
#include "support/test_images.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <map>
#include <random>
#include <vector>

namespace {

using contour_test::Image;
using qel_test::Bytes;

struct Region {
    int x, y, area, level, enclosingId, id, parentId, childArea;
};

// QelMergeSplit with an exact-size work buffer; the records in list order, the list freed.
std::vector<Region> segment(Image& img, int minArea, int minContrast, double splitRatio) {
    Bytes work(img.size() * 2);
    RegionStruct* list = QelMergeSplit(img.data(), work.data(), img.w, img.h, minArea, minContrast, splitRatio);
    std::vector<Region> out;
    for (RegionStruct* r = list; r != nullptr; r = r->next)
        out.push_back({r->x, r->y, r->area, r->level, r->enclosingId, r->id, r->parentId, r->childArea});
    QelFreeRegionStruct(list);
    return out;
}

int rect_area(int a, int b) { return (a - 1) * (b - 1) + (a - 1) + (b - 1); }

Image with_boxes(int w, int h, unsigned char background, std::vector<std::vector<int>> boxes) {
    Image img(w, h, background);
    for (const auto& b : boxes) img.box(b[0], b[1], b[2], b[3], static_cast<unsigned char>(b[4]));
    return img;
}

// Background 250; A = 32 × 22 of grey 150 holding two 8 × 8 squares of grey 20.
Image two_squares() { return with_boxes(40, 30, 250, {{4, 35, 4, 25, 150}, {8, 15, 8, 15, 20}, {20, 27, 8, 15, 20}}); }

TEST(SplitMerge, EmptyResultsAndTheImageLeftInverted) {
    for (unsigned char v : {0, 90, 255}) {  // uniform: nothing lies above the first level
        Image img(12, 9, v);
        EXPECT_TRUE(segment(img, 4, 0, 0.5).empty()) << int(v);
    }
    for (int contrast : {255, INT_MAX}) {  // no level to sweep
        Image img = two_squares();
        EXPECT_TRUE(segment(img, 4, contrast, 0.5).empty()) << contrast;
        Image expected = two_squares();
        for (auto& p : expected.px) p = static_cast<unsigned char>(255 - p);
        expected.box(0, 39, 0, 0, 0).box(0, 39, 29, 29, 0).box(0, 0, 0, 29, 0).box(39, 39, 0, 29, 0);
        EXPECT_EQ(img.px, expected.px);
    }
    Bytes grey(4, 7), work(8);
    EXPECT_EQ(QelMergeSplit(grey.data(), work.data(), 0, 4, 1, 0, 0.5), nullptr);
    EXPECT_EQ(grey, Bytes(4, 7));
    QelFreeRegionStruct(nullptr);
}

TEST(SplitMerge, ContinuationsKeepTheFirstRecord) {
    // A 10 × 10 square of 50 on 200 is object at levels 55..204: recorded once, at level 55.
    Image img = with_boxes(30, 30, 200, {{5, 14, 5, 14, 50}});
    auto r = segment(img, 16, 0, 0.5);
    ASSERT_EQ(r.size(), 1u);
    EXPECT_EQ(std::vector<int>({r[0].x, r[0].y, r[0].area, r[0].level, r[0].id, r[0].enclosingId, r[0].parentId}),
              std::vector<int>({5, 5, rect_area(10, 10), 200, 0, -1, -1}));
    // The sweep ends at 255 − minContrast: 55 still finds it, 54 does not.
    for (int contrast : {200, 201}) {
        img = with_boxes(30, 30, 200, {{5, 14, 5, 14, 50}});
        EXPECT_EQ(segment(img, 16, contrast, 0.5).size(), contrast == 200 ? 1u : 0u);
    }
    // A square inside a square: the inner one continues the outer, whose childArea becomes its area.
    img = with_boxes(30, 30, 250, {{5, 24, 5, 24, 155}, {10, 19, 10, 19, 55}});
    r = segment(img, 16, 0, 0.5);
    ASSERT_EQ(r.size(), 1u);
    EXPECT_EQ(r[0].area, rect_area(20, 20));
    EXPECT_EQ(r[0].childArea, rect_area(10, 10));
}

TEST(SplitMerge, TheFirstLevelIsPickedByCountingTheFrameToo) {
    // Inverted, a square of level 50 on 0. The histogram is taken before the frame is cleared: five
    // frame pixels of inverted level 40 outnumber sqrt(16) = 4 and start the sweep at 40, which
    // finds the square; four leave the start at 50, the square's own level, and nothing is found.
    for (int extra : {4, 5}) {
        Image img = with_boxes(30, 30, 255, {{5, 14, 5, 14, 205}, {0, extra - 1, 0, 0, 215}});
        const auto r = segment(img, 16, 0, 0.5);
        ASSERT_EQ(r.size(), extra == 4 ? 0u : 1u);
        if (extra == 5) {
            EXPECT_EQ(r[0].level, 215);
        }
    }
}

TEST(SplitMerge, SplitsWhenTheChildrenCoverMoreThanTheRatio) {
    const int a = rect_area(32, 22), b = rect_area(8, 8);
    const double cover = 2.0 * b / a;
    // At or below the ratio A (level 250) stays and both squares (level 150) become its children;
    // equal areas enter newest first, so the right square, traced later, leads.
    for (double ratio : {cover, 0.5}) {
        Image img = two_squares();
        const auto r = segment(img, 16, 0, ratio);
        ASSERT_EQ(r.size(), 3u);
        EXPECT_EQ(std::vector<int>({r[0].x, r[1].x, r[0].area, r[1].area, r[0].level, r[0].id - r[1].id}),
                  std::vector<int>({20, 8, b, b, 150, 1}));
        EXPECT_EQ(std::vector<int>({r[2].id, r[2].area, r[2].childArea, r[2].level}), std::vector<int>({0, a, a, 250}));
        EXPECT_EQ(r[0].parentId, 0);
        EXPECT_EQ(r[1].parentId, 0);
    }
    // Above it A is removed and the squares become roots.
    Image img = two_squares();
    const auto r = segment(img, 16, 0, std::nextafter(cover, 0.0));
    ASSERT_EQ(r.size(), 2u);
    EXPECT_EQ(r[0].parentId + r[1].parentId, -2);
}

TEST(SplitMerge, IslandsInRings) {
    // Ring (20 × 20 of 50 around a 12 × 12 hole) and island (4 × 4 of 50) of one level: the first
    // level becomes the tree with the enclosing region as parent.
    Image img = with_boxes(40, 40, 200, {{8, 27, 8, 27, 50}, {12, 23, 12, 23, 200}, {16, 19, 16, 19, 50}});
    auto r = segment(img, 9, 0, 0.5);
    ASSERT_EQ(r.size(), 2u);
    EXPECT_EQ(std::vector<int>({r[0].id, r[0].enclosingId, r[0].parentId, r[1].id, r[1].parentId}),
              std::vector<int>({1, 0, 0, 0, -1}));
    // The same inside a 34 × 34 region A found earlier: the island, enclosed by a region of its
    // level with the same parent, becomes A's child; the ring alone continues A.
    img = with_boxes(40, 40, 250, {{3, 36, 3, 36, 150}, {8, 27, 8, 27, 20}, {12, 23, 12, 23, 150}, {16, 19, 16, 19, 20}});
    r = segment(img, 9, 0, 0.0);
    ASSERT_EQ(r.size(), 2u);
    EXPECT_EQ(std::vector<int>({r[0].x, r[0].area, r[0].parentId, r[0].enclosingId}),
              std::vector<int>({16, rect_area(4, 4), 0, r[0].id - 1}));
    EXPECT_EQ(std::vector<int>({r[1].id, r[1].area, r[1].childArea}),
              std::vector<int>({0, rect_area(34, 34), rect_area(20, 20)}));
}

TEST(SplitMerge, LimitsMetExactly) {
    // A 10 × 10 square (area 99) is kept with minArea 99 and not with 100.
    for (int minArea : {99, 100}) {
        Image img = with_boxes(30, 30, 200, {{5, 14, 5, 14, 50}});
        EXPECT_EQ(segment(img, minArea, 0, 0.5).size(), minArea == 99 ? 1u : 0u) << minArea;
    }
    // With minArea 0 a contour needs more than 0 codes: a lone pixel (area 0, no codes) is no region.
    Image img = with_boxes(30, 30, 200, {{5, 14, 5, 14, 50}, {20, 20, 20, 20, 50}});
    const auto r = segment(img, 0, 0, 0.5);
    ASSERT_EQ(r.size(), 1u);
    EXPECT_EQ(r[0].area, rect_area(10, 10));
}

TEST(SplitMerge, AnEnclosingRegionOfIdOneCounts) {
    // The rings-and-islands case with A alone at the first level (id 0): five frame pixels one level
    // below A start the sweep there, so ring and island are found at the very next level, as ids 1
    // and 2, the island enclosed by region 1.
    Image img = with_boxes(40, 40, 255, {{3, 36, 3, 36, 150}, {8, 27, 8, 27, 149}, {12, 23, 12, 23, 150},
                                         {16, 19, 16, 19, 149}, {0, 4, 0, 0, 151}});
    const auto r = segment(img, 9, 0, 0.0);
    ASSERT_EQ(r.size(), 2u);
    EXPECT_EQ(std::vector<int>({r[0].x, r[0].area, r[0].parentId, r[0].enclosingId}),
              std::vector<int>({16, rect_area(4, 4), 0, 1}));
    EXPECT_EQ(std::vector<int>({r[1].id, r[1].area, r[1].childArea}),
              std::vector<int>({0, rect_area(34, 34), rect_area(20, 20)}));
}

TEST(SplitMerge, NewRegionsAdoptSmallerOnesWhoseParentDoesNotHoldThem) {
    // C (54 × 34 of 155) with a lake (16 × 16 of 250) holding an island S (6 × 6 of 55); inside C a
    // ring N (24 × 24 of 55) around the lake and a blob M (16 × 16 of 55). S is C's child from the
    // first level; N and M together cover between 0.3 and 0.5 of C.
    const auto lake = [] {
        return with_boxes(60, 40, 250, {{3, 56, 3, 36, 155}, {6, 29, 6, 29, 55}, {10, 25, 10, 25, 250},
                                        {15, 20, 15, 20, 55}, {35, 50, 10, 25, 55}});
    };
    // Split: C goes, S is left without a parent, and N, holding S, adopts it.
    Image img = lake();
    auto r = segment(img, 9, 0, 0.3);
    ASSERT_EQ(r.size(), 3u);
    EXPECT_EQ(std::vector<int>({r[0].area, r[0].id, r[1].area, r[2].area}),
              std::vector<int>({rect_area(6, 6), 1, rect_area(16, 16), rect_area(24, 24)}));
    EXPECT_EQ(std::vector<int>({r[0].parentId, r[1].parentId, r[2].parentId}), std::vector<int>({r[2].id, -1, -1}));
    // No split: C stays and, as it holds N, stays S's parent although N lies between them.
    img = lake();
    r = segment(img, 9, 0, 0.5);
    ASSERT_EQ(r.size(), 4u);
    EXPECT_EQ(r[3].area, rect_area(54, 34));
    for (int i = 0; i < 3; ++i) EXPECT_EQ(r[i].parentId, 0) << i;
}

TEST(SplitMerge, RandomImagesGiveConsistentTrees) {
    // Blocks of random grey, hostile sizes and limits. Ascending areas, unique ids, existing parents
    // not smaller than their children, limits kept, closed chains; the sanitizer checks the frees.
    static const int kStepX[8] = {1, 1, 0, -1, -1, -1, 0, 1}, kStepY[8] = {0, -1, -1, -1, 0, 1, 1, 1};
    const int cases[][5] = {{1, 1, 1, 0, 0},    {2, 3, 1, 1, 0},    {3, 3, 1, 0, -10},     {31, 17, 3, 4, 0},
                            {40, 30, 4, 9, 20}, {40, 30, 2, 0, INT_MIN}, {50, 40, 1, -7, 100}, {45, 33, 6, 16, -300}};
    std::mt19937 rng(3);
    for (const auto& c : cases)
        for (double ratio : {0.0, 0.3, 1.0}) {
            const int w = c[0], h = c[1], block = c[2];
            Image img(w, h);
            for (int by = 0; by < h; by += block)
                for (int bx = 0; bx < w; bx += block)
                    img.box(bx, std::min(bx + block, w) - 1, by, std::min(by + block, h) - 1,
                            static_cast<unsigned char>(rng() % 6 * 50));
            Bytes work(img.size() * 2);
            RegionStruct* list = QelMergeSplit(img.data(), work.data(), w, h, c[3], c[4], ratio);
            std::map<int, const RegionStruct*> byId;
            for (const RegionStruct* r = list; r != nullptr; r = r->next) {
                EXPECT_TRUE(byId.emplace(r->id, r).second) << "duplicate id " << r->id;
                EXPECT_TRUE(r->next == nullptr || r->area <= r->next->area);
                EXPECT_TRUE(r->area >= c[3] && r->level >= c[4] && r->level <= 254);
                int dx = 0, dy = 0;
                for (int i = 0; i < r->chainLength; ++i) dx += kStepX[r->chain[i]], dy += kStepY[r->chain[i]];
                EXPECT_TRUE(dx == 0 && dy == 0);
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

}  // namespace
