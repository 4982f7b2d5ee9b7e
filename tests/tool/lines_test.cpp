// The qel tool's line finding: the sides of a bright rectangle found by the Hough transform and by
// the chain finder, in the tool's scaled equation form.
#include "common/image.h"
#include "common/lines.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <vector>

namespace {

// A 100 x 80 picture at 40 with a rectangle at 200 over columns 20..69 and rows 15..54.
constexpr int kLeft = 20, kRight = 69, kTop = 15, kBottom = 54;

cli::Image rectangle() {
    cli::Image img;
    img.width = 100;
    img.height = 80;
    img.channels = 1;
    img.pixels.assign(100 * 80, 40);
    for (int y = kTop; y <= kBottom; ++y)
        for (int x = kLeft; x <= kRight; ++x) img.pixels[static_cast<size_t>(y * 100 + x)] = 200;
    return img;
}

// Which side of the rectangle a line lies along (within a pixel over its whole extent), or -1.
// 0 left, 1 right, 2 top, 3 bottom.
int sideOf(const cli::FoundLine& l) {
    const double sides[4][2] = {{kLeft, 0}, {kRight, 0}, {kTop, 1}, {kBottom, 1}};
    for (int s = 0; s < 4; ++s) {
        const bool vertical = sides[s][1] == 0;
        if (vertical ? std::fabs(l.b) > 1e-9 : std::fabs(l.a) > 1e-9) continue;
        const double at = vertical ? -l.c / l.a : -l.c / l.b;
        if (std::fabs(at - sides[s][0]) <= 1.0) return s;
    }
    return -1;
}

TEST(Lines, HoughFindsTheFourSidesStrongestFirst) {
    int edgePoints = 0;
    const std::vector<cli::FoundLine> lines = cli::houghLines(rectangle(), 4, 20, &edgePoints);
    EXPECT_GE(edgePoints, 2 * (50 + 40) - 4) << "the brighter side of each step, one pixel wide";
    ASSERT_EQ(lines.size(), 4u);
    std::vector<int> seen(4, 0);
    for (size_t i = 0; i < lines.size(); ++i) {
        const cli::FoundLine& l = lines[i];
        EXPECT_NEAR(l.a * l.a + l.b * l.b, 1.0, 1e-12);
        const int side = sideOf(l);
        ASSERT_GE(side, 0) << i << ": " << l.a << " x + " << l.b << " y + " << l.c;
        ++seen[static_cast<size_t>(side)];
        EXPECT_EQ(l.theta, side < 2 ? 0 : 90);
        EXPECT_GE(l.strength, (side < 2 ? kBottom - kTop : kRight - kLeft) - 2);
        if (i > 0) {
            EXPECT_LE(l.strength, lines[i - 1].strength);
        }
        // Ends on the image border.
        const bool onBorder = (l.x1 == 0 || l.y1 == 0) && (l.x2 == 99 || l.y2 == 79);
        EXPECT_TRUE(onBorder) << l.x1 << "," << l.y1 << " " << l.x2 << "," << l.y2;
    }
    EXPECT_EQ(seen, std::vector<int>(4, 1));
    EXPECT_EQ(cli::houghLines(rectangle(), 2, 20, &edgePoints).size(), 2u) << "--count is kept";
}

TEST(Lines, HoughOnAFlatPictureFindsNothing) {
    cli::Image flat = rectangle();
    flat.pixels.assign(flat.pixels.size(), 90);
    int edgePoints = -1;
    EXPECT_TRUE(cli::houghLines(flat, 10, 20, &edgePoints).empty());
    EXPECT_EQ(edgePoints, 0);
}

TEST(Lines, ChainPiecesLieAlongTheSidesWithTheirEndsOnThem) {
    const std::vector<cli::FoundLine> lines = cli::chainLines(rectangle(), 20, 20);
    ASSERT_GE(lines.size(), 4u);
    std::vector<int> seen(4, 0);
    for (const cli::FoundLine& l : lines) {
        EXPECT_NEAR(l.a * l.a + l.b * l.b, 1.0, 1e-9);
        const int side = sideOf(l);
        ASSERT_GE(side, 0) << l.a << " x + " << l.b << " y + " << l.c;
        seen[static_cast<size_t>(side)] = 1;
        for (const auto& end : {std::vector<int>{l.x1, l.y1}, {l.x2, l.y2}}) {
            EXPECT_LE(std::fabs(l.a * end[0] + l.b * end[1] + l.c), 1.0);
            EXPECT_GE(end[0], kLeft - 1);
            EXPECT_LE(end[0], kRight + 1);
            EXPECT_GE(end[1], kTop - 1);
            EXPECT_LE(end[1], kBottom + 1);
        }
    }
    EXPECT_EQ(seen, std::vector<int>(4, 1)) << "every side is found";
    EXPECT_TRUE(cli::chainLines(rectangle(), 200, 20).empty()) << "no side is 200 pixels long";
}

}  // namespace
