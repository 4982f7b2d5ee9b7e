// The qel tool's geometric transforms: exact quarter turns, rotations of colour pictures channel by
// channel, rotation about a centre, flips, the four resizing methods and every size they refuse.
#include "common/geometry.h"
#include "tool/tool_images.h"

#include <qel.h>

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace {

using tool_test::at;
using tool_test::randomPicture;
using tool_test::refusal;

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

// ---- rotation ------------------------------------------------------------------------------------

TEST(Rotate, WholeQuarterTurnsAreExact) {
    for (int channels : {1, 3}) {
        const cli::Image img = randomPicture(7, 4, channels, 3);
        const cli::Image cw = cli::rotateImage(img, 90);
        ASSERT_EQ(cw.width, 4);
        ASSERT_EQ(cw.height, 7);
        for (int y = 0; y < 4; ++y)
            for (int x = 0; x < 7; ++x)
                for (int c = 0; c < channels; ++c) {
                    EXPECT_EQ(at(cw, 3 - y, x, c), at(img, x, y, c)) << "clockwise: the top row becomes the right column";
                }
        EXPECT_EQ(cli::rotateImage(img, -270).pixels, cw.pixels);
        EXPECT_EQ(cli::rotateImage(img, 450).pixels, cw.pixels);
        EXPECT_EQ(cli::rotateImage(img, 0).pixels, img.pixels);
        EXPECT_EQ(cli::rotateImage(img, 360).pixels, img.pixels);
        const cli::Image half = cli::rotateImage(img, 180);
        EXPECT_EQ(at(half, 6, 3, channels - 1), at(img, 0, 0, channels - 1));
        EXPECT_EQ(cli::rotateImage(cli::rotateImage(img, -90), 90).pixels, img.pixels);
    }
}

TEST(Rotate, OtherAnglesRotateEveryChannelAsTheLibraryRotatesGrey) {
    const cli::Image grey = randomPicture(31, 17, 1, 5);
    int w = 0;
    int h = 0;
    unsigned char* expected = QelRotateImgByCCS(const_cast<unsigned char*>(grey.pixels.data()), 31, 17, 30.0, &w, &h);
    ASSERT_NE(expected, nullptr);
    const cli::Image rotated = cli::rotateImage(grey, 30.0);
    EXPECT_EQ(rotated.width, w);
    EXPECT_EQ(rotated.height, h);
    EXPECT_EQ(rotated.pixels, std::vector<unsigned char>(expected, expected + w * h));
    delete[] expected;
    // A colour picture of three different planes: each plane turns on its own.
    std::vector<cli::Image> planes = {grey, randomPicture(31, 17, 1, 6), randomPicture(31, 17, 1, 7)};
    const cli::Image colour = cli::rotateImage(cli::joinChannels(planes), 30.0);
    ASSERT_EQ(colour.channels, 3);
    for (int c = 0; c < 3; ++c) EXPECT_EQ(cli::splitChannels(colour)[c].pixels, cli::rotateImage(planes[c], 30.0).pixels);
}

TEST(Rotate, RefusesAnglesThatAreNoNumberAndResultsTooLarge) {
    const cli::Image img = randomPicture(5, 5, 1, 1);
    EXPECT_TRUE(contains(refusal([&] { cli::rotateImage(img, std::nan("")); }), "finite"));
    EXPECT_TRUE(contains(refusal([&] { cli::rotateAbout(img, HUGE_VAL, 2, 2); }), "finite"));
    // 16384 x 16384 is 2^28 pixels: its diagonal box is not made, the picture itself is never read.
    cli::Image big;
    big.width = big.height = 16384;
    big.channels = 1;
    EXPECT_TRUE(contains(refusal([&] { cli::rotateImage(big, 45.0); }), "are not made"));
}

TEST(RotateAbout, NoTurnIsACopyAndAHalfTurnAboutTheMiddleIsExactInside) {
    for (int channels : {1, 3}) {
        const cli::Image img = randomPicture(9, 7, channels, 11);
        bool filled = true;
        EXPECT_EQ(cli::rotateAbout(img, 0.0, 4, 3, &filled).pixels, img.pixels) << "the last column and row are kept";
        EXPECT_FALSE(filled);
        // 180 degrees about (4, 3) maps (x, y) to (8 - x, 6 - y); the factors are truncated, so
        // the samples land a hair off the pixels, and each of the two interpolations truncates.
        const cli::Image half = cli::rotateAbout(img, 180.0, 4, 3, &filled);
        for (int y = 1; y < 6; ++y)
            for (int x = 1; x < 8; ++x) EXPECT_NEAR(at(half, x, y, 0), at(img, 8 - x, 6 - y, 0), 2) << x << "," << y;
    }
}

TEST(RotateAbout, CornersFromOutsideAreBlackAndTheCentreMustBeInside) {
    cli::Image white = cli::blankImage(40, 30, 3, 255);
    bool filled = false;
    const cli::Image turned = cli::rotateAbout(white, 30.0, 20, 15, &filled);
    EXPECT_TRUE(filled);
    EXPECT_EQ(at(turned, 0, 0, 2), 0);
    EXPECT_EQ(at(turned, 39, 29, 0), 0);
    EXPECT_EQ(at(turned, 20, 15, 1), 255);
    EXPECT_TRUE(contains(refusal([&] { cli::rotateAbout(white, 30.0, 40, 0); }), "lies outside the 40 x 30 picture"));
    EXPECT_TRUE(contains(refusal([&] { cli::rotateAbout(white, 30.0, 0, -1); }), "lies outside"));
}

// ---- flips ---------------------------------------------------------------------------------------

TEST(Flip, MirrorsRowsOrColumnsOfGreyAndColour) {
    for (int channels : {1, 3}) {
        const cli::Image img = randomPicture(5, 3, channels, 21);
        const cli::Image h = cli::flipImage(img, cli::FlipAxis::Horizontal);
        const cli::Image v = cli::flipImage(img, cli::FlipAxis::Vertical);
        for (int y = 0; y < 3; ++y)
            for (int x = 0; x < 5; ++x)
                for (int c = 0; c < channels; ++c) {
                    EXPECT_EQ(at(h, 4 - x, y, c), at(img, x, y, c));
                    EXPECT_EQ(at(v, x, 2 - y, c), at(img, x, y, c));
                }
        EXPECT_EQ(cli::flipImage(h, cli::FlipAxis::Horizontal).pixels, img.pixels);
    }
}

// ---- resizing ------------------------------------------------------------------------------------

const cli::ResizeMethodInfo& method(const char* name) { return cli::resizeMethodNamed(name); }

TEST(Resize, BilinearTwoByTwoToThreeByThreeTruncatesTheMidpoints) {
    cli::Image img = cli::blankImage(2, 2, 3);
    const int corners[4] = {0, 255, 100, 51};
    for (int i = 0; i < 4; ++i) img.pixels[static_cast<size_t>(3 * i + 1)] = static_cast<unsigned char>(corners[i]);
    const cli::Image big = cli::resizeImage(img, 3, 3, method("bilinear"));
    const int expected[9] = {0, 127, 255, 50, 101, 153, 100, 75, 51};
    for (int i = 0; i < 9; ++i) EXPECT_EQ(at(big, i % 3, i / 3, 1), expected[i]) << i;
    EXPECT_EQ(at(big, 1, 1, 0), 0);
}

TEST(Resize, BlockMethodsOnAHandWorkedPicture) {
    // 6 x 4 grey: value 10·x + y.
    cli::Image img = cli::blankImage(6, 4, 1);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 6; ++x) img.pixels[static_cast<size_t>(y * 6 + x)] = static_cast<unsigned char>(10 * x + y);
    const cli::Image avg = cli::resizeImage(img, 2, 2, method("average"));  // 3 x 2 blocks
    EXPECT_EQ(avg.pixels, (std::vector<unsigned char>{10, 40, 12, 42}));    // 10 + 0.5 truncated, ...
    const cli::Image pick = cli::resizeImage(img, 3, 2, method("pick"));    // step 2
    EXPECT_EQ(pick.pixels, (std::vector<unsigned char>{0, 20, 40, 2, 22, 42}));
    // 3 x 4 blocks of 12 levels: the library's histogram median takes the level after the sixth.
    const cli::Image med = cli::resizeImage(img, 2, 1, method("median"));
    EXPECT_EQ(med.pixels, (std::vector<unsigned char>{12, 42}));
    // Colour: averages and picks per channel.
    const cli::Image colour = randomPicture(8, 6, 3, 4);
    const cli::Image picked = cli::resizeImage(colour, 4, 2, method("pick"));
    EXPECT_EQ(at(picked, 3, 1, 2), at(colour, 6, 3, 2));
    const cli::Image mean = cli::resizeImage(colour, 4, 3, method("average"));
    EXPECT_EQ(at(mean, 1, 2, 0), (at(colour, 2, 4) + at(colour, 3, 4) + at(colour, 2, 5) + at(colour, 3, 5)) / 4);
}

TEST(Resize, RefusalsNameTheReasonAndTheSizesThatWork) {
    const cli::Image grey = randomPicture(512, 10, 1, 2);
    const cli::Image colour = randomPicture(10, 10, 3, 2);
    const auto why = [](const cli::Image& img, int w, int h, const char* m) {
        return refusal([&] { cli::resizeImage(img, w, h, method(m)); });
    };
    EXPECT_EQ(why(grey, 1000, 20, "bilinear"), "");
    for (const char* m : {"average", "pick", "median"}) EXPECT_TRUE(contains(why(grey, 513, 10, m), "only shrinks")) << m;
    EXPECT_TRUE(contains(why(grey, 200, 10, "average"), "512 columns give 256 (step 2) or 170 (step 3), not 200"));
    EXPECT_TRUE(contains(why(grey, 256, 4, "pick"), "10 rows give 5 (step 2) or 3 (step 3), not 4"));
    EXPECT_TRUE(contains(why(colour, 5, 5, "median"), "grey pictures only"));
    // Ten columns into six median blocks: blocks of 2 from column 0, the sixth at column 10.
    EXPECT_TRUE(contains(why(grey, 512, 6, "median"), "6 rows of 10: its last block would lie outside"));
    EXPECT_TRUE(contains(why(grey, 512, 6, "median"), "try 5 or 7"));
    EXPECT_EQ(why(grey, 512, 7, "median"), "");
    EXPECT_TRUE(contains(why(grey, 0, 4, "bilinear"), "at least 1 x 1"));
    EXPECT_TRUE(contains(why(grey, 20000, 20000, "bilinear"), "are not made"));
    EXPECT_TRUE(contains(refusal([] { cli::resizeMethodNamed("box"); }), "bilinear, average, pick or median"));
}

TEST(Resize, ScalesGiveRoundedSizesOrWholeSteps) {
    const cli::Image img = randomPicture(511, 300, 1, 8);
    const auto size = [&](double scale, const char* m) {
        int w = 0;
        int h = 0;
        cli::sizeForScale(img, scale, method(m), &w, &h);
        return std::vector<int>{w, h};
    };
    EXPECT_EQ(size(0.5, "bilinear"), (std::vector<int>{256, 150}));
    EXPECT_EQ(size(0.25, "median"), (std::vector<int>{128, 75}));
    EXPECT_EQ(size(0.5, "average"), (std::vector<int>{255, 150}));  // step 2: the last column is dropped
    EXPECT_EQ(size(0.333, "pick"), (std::vector<int>{170, 100}));   // taken as step 3
    for (double bad : {0.3, 0.0, -1.0, std::nan("")})
        EXPECT_FALSE(refusal([&] { size(bad, "average"); }).empty()) << bad;
    EXPECT_TRUE(contains(refusal([&] { size(0.001, "bilinear"); }), "at least 1 x 1"));
    EXPECT_TRUE(contains(refusal([&] { size(0.001, "pick"); }), "leaves nothing"));
    EXPECT_TRUE(contains(refusal([&] { size(1.5, "median"); }), "only shrinks"));
    EXPECT_TRUE(contains(refusal([&] { size(1e6, "bilinear"); }), "are not made"));
}

}  // namespace
