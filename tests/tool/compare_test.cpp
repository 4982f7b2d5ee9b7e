// The qel tool's picture comparison: hand-worked statistics, colour against grey, tolerance, and
// the refusal of pictures of different sizes.
#include "common/compare.h"
#include "tool/tool_images.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using tool_test::randomPicture;

cli::Image greyOf(int width, int height, std::vector<unsigned char> pixels) {
    cli::Image img = cli::blankImage(width, height, 1);
    img.pixels = std::move(pixels);
    return img;
}

TEST(Compare, GreyStatisticsWorkedByHand) {
    const cli::Image a = greyOf(2, 2, {10, 200, 0, 255});
    const cli::Image b = greyOf(2, 2, {20, 200, 255, 0});
    const cli::Difference d = cli::compare(a, b, 0, "a", "b");
    EXPECT_EQ(d.image.pixels, (std::vector<unsigned char>{10, 0, 255, 255}));
    EXPECT_EQ(d.pixels, 4);
    EXPECT_EQ(d.differing, 3);
    EXPECT_EQ(d.largest, 255);
    EXPECT_DOUBLE_EQ(d.mean, 520.0 / 4);
    // Up to the tolerance a pixel counts as equal; the statistics of the values stay.
    const cli::Difference t = cli::compare(a, b, 10, "a", "b");
    EXPECT_EQ(t.differing, 2);
    EXPECT_DOUBLE_EQ(t.mean, d.mean);
    EXPECT_EQ(cli::compare(a, b, 255, "a", "b").differing, 0);
}

TEST(Compare, ColourTakesTheLargestChannelAndGreyStandsForAllThree) {
    cli::Image colour = cli::blankImage(2, 1, 3, 100);
    colour.pixels[2] = 130;  // red of the first pixel
    colour.pixels[3] = 90;   // blue of the second
    const cli::Image grey = greyOf(2, 1, {100, 100});
    const cli::Difference d = cli::compare(grey, colour, 0, "g", "c");
    EXPECT_EQ(d.image.channels, 1);
    EXPECT_EQ(d.image.pixels, (std::vector<unsigned char>{30, 10}));
    EXPECT_EQ(d.differing, 2);
    EXPECT_EQ(cli::compare(colour, grey, 0, "c", "g").image.pixels, d.image.pixels) << "symmetric";
}

TEST(Compare, RandomPicturesAgreeWithThemselvesAndSymmetrically) {
    for (int channels : {1, 3}) {
        const cli::Image a = randomPicture(37, 23, channels, 1);
        const cli::Image b = randomPicture(37, 23, channels, 2);
        const cli::Difference same = cli::compare(a, a, 0, "a", "a");
        EXPECT_EQ(same.differing, 0);
        EXPECT_EQ(same.largest, 0);
        EXPECT_EQ(same.mean, 0.0);
        const cli::Difference ab = cli::compare(a, b, 0, "a", "b");
        const cli::Difference ba = cli::compare(b, a, 0, "b", "a");
        EXPECT_EQ(ab.image.pixels, ba.image.pixels);
        int largest = 0;
        for (unsigned char v : ab.image.pixels) largest = std::max(largest, static_cast<int>(v));
        EXPECT_EQ(ab.largest, largest);
    }
}

TEST(Compare, PicturesOfDifferentSizesAreRefusedByName) {
    const std::string why = tool_test::refusal(
        [] { cli::compare(cli::blankImage(4, 3, 1), cli::blankImage(3, 4, 1), 0, "one.png", "two.bmp"); });
    EXPECT_EQ(why, "'one.png' is 4 x 3 and 'two.bmp' 3 x 4; only pictures of one size are compared");
}

}  // namespace
