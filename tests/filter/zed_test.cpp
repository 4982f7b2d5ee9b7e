#include <qel.h>

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace {

using Image = std::vector<unsigned char>;

// 3 x 3 image: centre c, neighbours given in reading order (8 values).
Image neighbourhood(unsigned char c, const std::vector<unsigned char>& n) {
    return {n[0], n[1], n[2], n[3], c, n[4], n[5], n[6], n[7]};
}

int zedCentre(const Image& src, int threshold) {
    Image in = src;
    Image dst(9, 0x33);
    QelGryZedFilter(in.data(), 3, 3, threshold, dst.data());
    return dst[4];
}

TEST(Zed, ResultWrapsPast255) {
    // Eight pulls of 3·4 − 5 = 7: 250 + (56 >> 3) = 257, stored as 1.
    EXPECT_EQ(zedCentre(neighbourhood(250, std::vector<unsigned char>(8, 255)), 4), 1);
    // The mirror case below 0: 5 among eight 0s pulls by 5 − 12 = −7 each: 5 − 7 = −2, stored as 254.
    EXPECT_EQ(zedCentre(neighbourhood(5, std::vector<unsigned char>(8, 0)), 4), 254);
}

TEST(Zed, PullsFadeBetweenThresholdAndThreeTimesIt) {
    // T = 3: 102 pulls +2 (full), 105 pulls +(9 − 5) = +4, 95 pulls −4, 110 is past 3T and ignored;
    // together with four more +4 pulls the sum is 2 + 4 − 4 + 16 = 18, and 18 >> 3 = 2.
    EXPECT_EQ(zedCentre(neighbourhood(100, {102, 105, 95, 110, 105, 105, 105, 105}), 3), 102);
}

TEST(Zed, NegativeSumsShiftArithmetically) {
    // A single pull of −1 gives −1 >> 3 = −1 (not 0 as a division would).
    EXPECT_EQ(zedCentre(neighbourhood(100, {99, 100, 100, 100, 100, 100, 100, 100}), 3), 99);
}

TEST(Zed, ZeroThresholdCopiesTheInteriorAndLeavesTheRingUntouched) {
    const int width = 9, height = 7;
    std::mt19937 rng(4);
    Image src(static_cast<size_t>(width) * height);
    for (auto& p : src) p = static_cast<unsigned char>(rng() & 0xFF);
    Image dst(src.size(), 0x33);
    QelGryZedFilter(src.data(), width, height, 0, dst.data());
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const bool ring = x == 0 || y == 0 || x == width - 1 || y == height - 1;
            EXPECT_EQ(dst[static_cast<size_t>(y) * width + x], ring ? 0x33 : src[static_cast<size_t>(y) * width + x]);
        }
}

TEST(Zed, ConstantImageKeepsItsInterior) {
    Image src(5 * 4, 180);
    Image dst(src.size(), 0);
    QelGryZedFilter(src.data(), 5, 4, 10, dst.data());
    for (int y = 1; y < 3; ++y)
        for (int x = 1; x < 4; ++x) EXPECT_EQ(dst[static_cast<size_t>(y) * 5 + x], 180);
}

}  // namespace
