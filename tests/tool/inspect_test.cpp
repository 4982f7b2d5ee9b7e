// The qel tool's object inspection: hand-worked measures, the threshold rules, dark objects, speck
// and area filters, the annotation, agreement with drawn discs, the bundled sample.
#include "common/cli.h"
#include "common/image.h"
#include "common/inspect.h"
#include "common/samples.h"
#include "common/text.h"
#include "tool/tool_images.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <random>
#include <string>
#include <vector>

namespace {

using tool_test::fillRect;

constexpr unsigned char kBackground = 50;

// Colour of the annotated picture at (x, y) as red, green, blue.
std::vector<int> rgbAt(const cli::Image& img, int x, int y) {
    const size_t i = 3 * static_cast<size_t>(y * img.width + x);
    return {img.pixels[i + 2], img.pixels[i + 1], img.pixels[i]};
}

// Two rectangles on a background of 50: A, 6 x 4 at 200; B, 6 x 7 at 180 with one pixel at 220.
cli::Image twoRectangles() {
    cli::Image img = cli::blankImage(20, 12, 1, kBackground);
    fillRect(img, 2, 7, 2, 5, 200);
    fillRect(img, 11, 16, 3, 9, 180);
    img.pixels[6 * 20 + 13] = 220;
    return img;
}

cli::InspectOptions given(int threshold, int minArea = 0) {
    cli::InspectOptions o;
    o.threshold = threshold;
    o.minArea = minArea;
    return o;
}

void expectBox(const cli::InspectObject& o, int left, int right, int top, int bottom) {
    EXPECT_EQ(o.left, left);
    EXPECT_EQ(o.right, right);
    EXPECT_EQ(o.top, top);
    EXPECT_EQ(o.bottom, bottom);
}

TEST(Inspect, RectanglesGiveTheirHandWorkedMeasures) {
    const cli::InspectResult r = cli::inspect(twoRectangles(), given(100));
    EXPECT_EQ(r.threshold, 100);
    EXPECT_EQ(r.thresholdReason, "given");
    ASSERT_EQ(r.objects.size(), 2u);
    const cli::InspectObject& a = r.objects[0];  // its boundary starts on an earlier row
    EXPECT_EQ(a.area, 24);
    EXPECT_EQ(a.perimeter, 16);  // 2 x (5 + 3) straight steps
    expectBox(a, 2, 7, 2, 5);
    EXPECT_EQ(a.centreX, 5);     // boundary mean 4.5, 3.5, rounded up
    EXPECT_EQ(a.centreY, 4);
    EXPECT_DOUBLE_EQ(a.meanGrey, 200.0);
    const cli::InspectObject& b = r.objects[1];
    EXPECT_EQ(b.area, 42);
    EXPECT_EQ(b.perimeter, 22);
    expectBox(b, 11, 16, 3, 9);
    EXPECT_EQ(b.centreX, 14);
    EXPECT_EQ(b.centreY, 6);
    EXPECT_DOUBLE_EQ(b.meanGrey, (41.0 * 180 + 220) / 42);
}

TEST(Inspect, AnnotationBoxesInRedAndCrossesInGreenOnAColourCopy) {
    const cli::Image img = twoRectangles();
    cli::InspectOptions o = given(100);
    o.numbers = false;  // the picture is too small for numbers that stay clear of the boxes
    const cli::InspectResult r = cli::inspect(img, o);
    ASSERT_EQ(r.annotated.channels, 3);
    ASSERT_EQ(r.annotated.width, 20);
    const std::vector<int> red = {255, 0, 0};
    const std::vector<int> green = {0, 255, 0};
    for (const auto& corner : {std::vector<int>{2, 2}, {7, 2}, {2, 5}, {7, 5}, {11, 9}, {16, 3}})
        EXPECT_EQ(rgbAt(r.annotated, corner[0], corner[1]), red) << corner[0] << "," << corner[1];
    EXPECT_EQ(rgbAt(r.annotated, 5, 4), green);
    EXPECT_EQ(rgbAt(r.annotated, 14, 8), green) << "the vertical arm reaches down from (14, 6)";
    EXPECT_EQ(rgbAt(r.annotated, 9, 4), green) << "the horizontal arm lies on the centre's row";
    EXPECT_EQ(rgbAt(r.annotated, 3, 3), (std::vector<int>{200, 200, 200}));
    EXPECT_EQ(rgbAt(r.annotated, 0, 11), (std::vector<int>{kBackground, kBackground, kBackground}));
}

// Counts the pixels of the 8 x 9 cell at (x, y) that are yellow; fails on any pixel neither yellow
// nor black.
int yellowInCell(const cli::Image& img, int x, int y) {
    int yellow = 0;
    for (int j = y; j < y + cli::kDigitHeight; ++j)
        for (int i = x; i < x + 8; ++i) {
            const std::vector<int> c = rgbAt(img, i, j);
            if (c == std::vector<int>{255, 255, 0}) {
                ++yellow;
            } else {
                EXPECT_EQ(c, (std::vector<int>{0, 0, 0})) << i << "," << j;
            }
        }
    return yellow;
}

TEST(Inspect, NumbersSitAboveTheBoxesOrBelowThemAtTheTop) {
    // Twelve squares: 1..11 in a row near the top edge, where numbers go below the boxes, and the
    // twelfth lower down, numbered above its box with two digits.
    cli::Image img = cli::blankImage(200, 60, 1, kBackground);
    for (int i = 0; i < 11; ++i) fillRect(img, 2 + 18 * i, 11 + 18 * i, 1, 10, 200);
    fillRect(img, 100, 119, 35, 54, 200);
    const cli::InspectResult r = cli::inspect(img, given(100));
    ASSERT_EQ(r.objects.size(), 12u);
    for (int i = 0; i < 11; ++i) {
        const cli::InspectObject& o = r.objects[static_cast<size_t>(i)];
        EXPECT_GT(yellowInCell(r.annotated, o.left, o.bottom + 2), 10) << "number " << i + 1;
    }
    const cli::InspectObject& last = r.objects[11];
    EXPECT_EQ(last.top, 35);
    EXPECT_GT(yellowInCell(r.annotated, last.left, 35 - 10), 10) << "the 1 of 12";
    EXPECT_GT(yellowInCell(r.annotated, last.left + 8, 35 - 10), 10) << "the 2 of 12";
    EXPECT_EQ(rgbAt(r.annotated, last.left + 16, 30), (std::vector<int>{kBackground, kBackground, kBackground}));
    // Without numbers those cells keep the picture.
    cli::InspectOptions plain = given(100);
    plain.numbers = false;
    EXPECT_EQ(rgbAt(cli::inspect(img, plain).annotated, last.left + 3, 30),
              (std::vector<int>{kBackground, kBackground, kBackground}));
}

TEST(Inspect, DarkObjectsOnAnInvertedPictureAreTheSameObjects) {
    const cli::InspectResult bright = cli::inspect(twoRectangles(), given(100));
    cli::Image inverted = twoRectangles();
    for (unsigned char& p : inverted.pixels) p = static_cast<unsigned char>(255 - p);
    cli::InspectOptions o = given(156);  // below 156 after inversion is 100 or more before
    o.dark = true;
    const cli::InspectResult dark = cli::inspect(inverted, o);
    ASSERT_EQ(dark.objects.size(), bright.objects.size());
    for (size_t i = 0; i < dark.objects.size(); ++i) {
        const cli::InspectObject& d = dark.objects[i];
        const cli::InspectObject& b = bright.objects[i];
        EXPECT_EQ(d.area, b.area);
        expectBox(d, b.left, b.right, b.top, b.bottom);
        EXPECT_DOUBLE_EQ(d.meanGrey, 255.0 - b.meanGrey);
    }
    // Without --dark the background is the object.
    const cli::InspectResult light = cli::inspect(inverted, given(156));
    ASSERT_EQ(light.objects.size(), 1u);
    EXPECT_EQ(light.objects[0].area, 18 * 10) << "everything inside the zeroed frame";
}

TEST(Inspect, MinimumAreaCountsEveryEnclosedPixel) {
    EXPECT_EQ(cli::inspect(twoRectangles(), given(100, 24)).objects.size(), 2u);
    const cli::InspectResult r = cli::inspect(twoRectangles(), given(100, 25));
    ASSERT_EQ(r.objects.size(), 1u);
    EXPECT_EQ(r.objects[0].area, 42);
    // A ring: its hole counts towards the area and the mean grey.
    cli::Image ring = cli::blankImage(12, 12, 1, 0);
    fillRect(ring, 2, 9, 2, 9, 255);
    fillRect(ring, 4, 7, 4, 7, 0);
    const cli::InspectResult rr = cli::inspect(ring, given(128, 64));
    ASSERT_EQ(rr.objects.size(), 1u);
    EXPECT_EQ(rr.objects[0].area, 64);
    EXPECT_DOUBLE_EQ(rr.objects[0].meanGrey, 255.0 * 48 / 64);
}

TEST(Inspect, SpecksAreRemovedBeforeTracing) {
    cli::Image img = cli::blankImage(16, 10, 1, 0);
    img.pixels[3 * 16 + 3] = 255;                             // a lone pixel
    img.pixels[6 * 16 + 8] = img.pixels[6 * 16 + 9] = 255;    // a domino: each pixel has one neighbour
    EXPECT_TRUE(cli::inspect(img, given(128)).objects.empty());
    fillRect(img, 11, 12, 2, 3, 255);  // a 2 x 2 square stays: three neighbours each
    const cli::InspectResult r = cli::inspect(img, given(128));
    ASSERT_EQ(r.objects.size(), 1u);
    EXPECT_EQ(r.objects[0].area, 4);
}

TEST(Inspect, ChosenThresholdFollowsTheToolsRule) {
    cli::Image mask = cli::blankImage(10, 10, 1, 0);
    fillRect(mask, 3, 6, 3, 6, 128);
    const cli::InspectResult r = cli::inspect(mask, cli::InspectOptions());
    EXPECT_EQ(r.threshold, 128);
    EXPECT_NE(r.thresholdReason.find("two grey levels"), std::string::npos) << r.thresholdReason;
    ASSERT_EQ(r.objects.size(), 0u) << "16 pixels is below the default minimum area";
    cli::InspectOptions all;
    all.minArea = 0;
    ASSERT_EQ(cli::inspect(mask, all).objects.size(), 1u);
    // Otsu lands on the background level here, so the next level present is taken.
    const cli::InspectResult otsu = cli::inspect(twoRectangles(), all);
    EXPECT_EQ(otsu.threshold, 180);
    EXPECT_NE(otsu.thresholdReason.find("50 alone is background"), std::string::npos) << otsu.thresholdReason;
    EXPECT_EQ(otsu.objects.size(), 2u);
}

TEST(Inspect, ColourInputGivesTheObjectsOfItsGrey) {
    const cli::Image grey = twoRectangles();
    const cli::Image colour = cli::toColour(grey);  // equal channels convert back to the same grey
    const cli::InspectResult g = cli::inspect(grey, given(100));
    const cli::InspectResult c = cli::inspect(colour, given(100));
    ASSERT_EQ(c.objects.size(), g.objects.size());
    for (size_t i = 0; i < c.objects.size(); ++i) EXPECT_DOUBLE_EQ(c.objects[i].meanGrey, g.objects[i].meanGrey);
    EXPECT_EQ(c.annotated.pixels, g.annotated.pixels);
}

TEST(Inspect, PicturesWithoutAnInteriorHaveNoObjects) {
    for (const auto& size : {std::vector<int>{1, 1}, {2, 7}, {9, 2}}) {
        const cli::InspectResult r = cli::inspect(cli::blankImage(size[0], size[1], 1, 255), cli::InspectOptions());
        EXPECT_TRUE(r.objects.empty());
        EXPECT_EQ(r.annotated.width, size[0]);
        EXPECT_EQ(r.annotated.pixels.size(), static_cast<size_t>(size[0] * size[1] * 3));
    }
}

// Random separate discs of random levels: each is found with its own pixel count, extent and level.
TEST(Inspect, RandomDiscsAreMeasuredExactly) {
    std::mt19937 rng(11);
    for (int trial = 0; trial < 20; ++trial) {
        cli::Image img = cli::blankImage(120, 90, 1, kBackground);
        struct Disc {
            int cx, cy, r, level, pixels = 0;
        };
        std::vector<Disc> discs;
        for (int cy = 12; cy < 90 - 12; cy += 24)
            for (int cx = 12; cx < 120 - 12; cx += 24)
                if (rng() % 3 != 0) discs.push_back({cx, cy, 3 + static_cast<int>(rng() % 8), 120 + static_cast<int>(rng() % 130)});
        for (Disc& d : discs)
            for (int y = d.cy - d.r; y <= d.cy + d.r; ++y)
                for (int x = d.cx - d.r; x <= d.cx + d.r; ++x)
                    if ((x - d.cx) * (x - d.cx) + (y - d.cy) * (y - d.cy) <= d.r * d.r) {
                        img.pixels[static_cast<size_t>(y * 120 + x)] = static_cast<unsigned char>(d.level);
                        ++d.pixels;
                    }
        const cli::InspectResult r = cli::inspect(img, given(100));
        ASSERT_EQ(r.objects.size(), discs.size()) << "trial " << trial;
        for (const cli::InspectObject& o : r.objects) {
            const int cx = (o.left + o.right) / 2;
            const int cy = (o.top + o.bottom) / 2;
            const Disc* match = nullptr;
            for (const Disc& d : discs)
                if (d.cx == cx && d.cy == cy) match = &d;
            ASSERT_NE(match, nullptr) << "an object centred at " << cx << "," << cy;
            EXPECT_EQ(o.area, match->pixels);
            expectBox(o, match->cx - match->r, match->cx + match->r, match->cy - match->r, match->cy + match->r);
            EXPECT_EQ(o.centreX, match->cx);
            EXPECT_EQ(o.centreY, match->cy);
            EXPECT_DOUBLE_EQ(o.meanGrey, match->level);
        }
    }
}

TEST(Inspect, TheBundledCoinsAreFound) {
    const cli::Image coins = cli::loadImage(cli::bundledSample("coins.bmp"));
    ASSERT_EQ(coins.width, 384);
    ASSERT_EQ(coins.height, 303);
    const cli::InspectResult r = cli::inspect(coins, cli::InspectOptions());
    EXPECT_EQ(r.thresholdReason, "Otsu");
    EXPECT_GE(r.objects.size(), 22u);
    EXPECT_LE(r.objects.size(), 26u);
    int coinSized = 0;  // the coins are 35 to 65 pixels across
    for (const cli::InspectObject& o : r.objects) coinSized += o.area >= 1000 && o.area <= 3500;
    EXPECT_GE(coinSized, 22);
}

TEST(Samples, AMissingSampleNamesThePlacesLookedIn) {
    try {
        (void)cli::bundledSample("no_such_sample.bmp");
        FAIL() << "no UsageError";
    } catch (const cli::UsageError& e) {
        const std::string message = e.what();
        EXPECT_NE(message.find("no_such_sample.bmp"), std::string::npos) << message;
        EXPECT_NE(message.find("samples"), std::string::npos) << message;
    }
}

}  // namespace
