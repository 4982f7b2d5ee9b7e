// The qel tool's split-and-merge segmentation: a hand-built tree of nested rectangles, its bright
// twin, the contours drawn by depth, and pictures without regions.
#include "common/segment.h"
#include "tool/tool_images.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using tool_test::at;

// Background 250; A, 32 x 22 of grey 150 holding two 8 x 8 squares of grey 20.
cli::Image nested() {
    cli::Image img = cli::blankImage(40, 30, 1, 250);
    tool_test::fillRect(img, 4, 35, 4, 25, 150);
    tool_test::fillRect(img, 8, 15, 8, 15, 20);
    tool_test::fillRect(img, 20, 27, 8, 15, 20);
    return img;
}

cli::SegmentOptions options(bool bright) {
    cli::SegmentOptions o;
    o.minArea = 16;
    o.minContrast = 0;
    o.bright = bright;
    return o;
}

std::vector<int> box(const cli::Region& r) { return {r.left, r.right, r.top, r.bottom}; }

TEST(Segment, NestedRectanglesMakeATreeListedByArea) {
    const cli::SegmentResult r = cli::segment(nested(), options(false));
    ASSERT_EQ(r.regions.size(), 3u);
    const cli::Region& a = r.regions[2];
    EXPECT_EQ(box(a), (std::vector<int>{4, 35, 4, 25}));
    EXPECT_EQ(a.parent, -1);
    EXPECT_EQ(a.depth, 0);
    EXPECT_EQ(a.threshold, 250) << "A is what lies below the background's level";
    EXPECT_EQ(a.area, 31 * 21 + 31 + 21);
    EXPECT_EQ(std::vector<int>({a.x, a.y}), std::vector<int>({4, 4}));
    for (int i = 0; i < 2; ++i) {
        const cli::Region& s = r.regions[static_cast<size_t>(i)];
        EXPECT_EQ(s.parent, a.id);
        EXPECT_EQ(s.depth, 1);
        EXPECT_EQ(s.threshold, 150);
        EXPECT_EQ(s.top, 8);
    }
    EXPECT_EQ(r.regions[0].left + r.regions[1].left, 8 + 20);
    // Contours in the colours of their depths; inside and outside them the picture is kept.
    EXPECT_EQ(std::vector<int>({at(r.annotated, 4, 4, 2), at(r.annotated, 4, 4, 1), at(r.annotated, 4, 4, 0)}),
              std::vector<int>({255, 0, 0}));
    EXPECT_EQ(std::vector<int>({at(r.annotated, 15, 12, 2), at(r.annotated, 15, 12, 1)}), std::vector<int>({0, 255}));
    EXPECT_EQ(at(r.annotated, 11, 11, 1), 20);
    EXPECT_EQ(at(r.annotated, 1, 1, 0), 250);
}

TEST(Segment, BrightRegionsOfTheInvertedPictureAreTheSameTree) {
    const cli::SegmentResult dark = cli::segment(nested(), options(false));
    cli::Image inverted = nested();
    for (unsigned char& p : inverted.pixels) p = static_cast<unsigned char>(255 - p);
    const cli::SegmentResult bright = cli::segment(inverted, options(true));
    ASSERT_EQ(bright.regions.size(), dark.regions.size());
    for (size_t i = 0; i < dark.regions.size(); ++i) {
        EXPECT_EQ(box(bright.regions[i]), box(dark.regions[i]));
        EXPECT_EQ(bright.regions[i].depth, dark.regions[i].depth);
        EXPECT_EQ(bright.regions[i].threshold, 255 - dark.regions[i].threshold) << "brighter than 5, then 105";
    }
    // The dark sweep of the inverted picture finds the background ring alone, no rectangle.
    for (const cli::Region& g : cli::segment(inverted, options(false)).regions) EXPECT_LT(g.left, 4);
}

TEST(Segment, SplitsSmallAreasAndTinyPictures) {
    cli::SegmentOptions o = options(false);
    o.minArea = 100;  // the squares (63 pixels) are left out
    ASSERT_EQ(cli::segment(nested(), o).regions.size(), 1u);
    o = options(false);
    o.splitRatio = 0.1;  // the squares hold more than a tenth of A: A is replaced by them
    const cli::SegmentResult split = cli::segment(nested(), o);
    ASSERT_EQ(split.regions.size(), 2u);
    for (const cli::Region& g : split.regions) EXPECT_EQ(g.depth, 0);
    for (int w : {1, 2}) {
        const cli::SegmentResult r = cli::segment(cli::blankImage(w, 5, 3, 9), options(false));
        EXPECT_TRUE(r.regions.empty());
        EXPECT_EQ(r.annotated.pixels, cli::blankImage(w, 5, 3, 9).pixels);
    }
    EXPECT_TRUE(cli::segment(cli::blankImage(20, 20, 1, 128), options(false)).regions.empty()) << "uniform";
}

}  // namespace
