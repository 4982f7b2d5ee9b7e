#include "histogram/histogram_test_helpers.h"

#include <qel.h>

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

using namespace qel_test;

void invert(unsigned char* image, int width, int height) { QelInvertGryValue(image, width, height); }

TEST(Remap, EveryLevelMapsAsDocumented) {
    const Bytes inverted = after(invert, every_level(), 16, 16);
    const Bytes freed = after(QelChange0and250PlusPixels, every_level(), 256, 1);
    const Bytes odd = after(QelSetOddPixelsTo255, every_level(), 128, 2);
    for (int g = 0; g < 256; ++g) {
        EXPECT_EQ(inverted[g], 255 - g);
        EXPECT_EQ(freed[g], g == 0 ? 1 : std::min(g, 250)) << g;  // 251..255 are kept for marks
        EXPECT_EQ(odd[g], g % 2 ? 255 : g);
    }
    Bytes img = every_level(), out(256);
    QelInvertGryValue(img.data(), 16, 16, out.data());  // into an output: the same, source untouched
    EXPECT_EQ(out, inverted);
    EXPECT_EQ(img, every_level());
    // Inside the rectangle the given value becomes 255 and every other 0; outside nothing changes.
    Bytes rect = {7, 7, 3, 7,
                  3, 7, 7, 3,
                  7, 3, 7, 7};
    QelSetPixelsTo255(rect.data(), 4, 1, 2, 0, 1, 7);
    EXPECT_EQ(rect, (Bytes{7, 255, 0, 7,
                           3, 255, 255, 3,
                           7, 3, 7, 7}));
    QelSetPixelsTo255(rect.data(), 4, 3, 3, 0, 2, 7);  // one column: x1 = x2
    EXPECT_EQ(rect, (Bytes{7, 255, 0, 255,
                           3, 255, 255, 0,
                           7, 3, 7, 255}));
}

TEST(FourBit, StretchesBetweenTheTenPercentPoints) {
    EXPECT_EQ(after(QelGryImg4Bit, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9}, 5, 2), (Bytes{0, 0, 2, 4, 6, 8, 10, 12, 15, 15}));
    // No spread between the 10 % points (19 pixels at 100, one at 50, or a flat image): a step.
    Bytes step(20, 100), stepped(20, 15);
    step[3] = 50, stepped[3] = 0;
    EXPECT_EQ(after(QelGryImg4Bit, step, 5, 4), stepped);
    EXPECT_EQ(after(QelGryImg4Bit, Bytes(9, 42), 3, 3), Bytes(9, 15));
    for (unsigned seed = 1; seed <= 5; ++seed) {
        const Bytes img = after(QelGryImg4Bit, random_grey(40, 30, seed), 40, 30);
        EXPECT_EQ(*std::max_element(img.begin(), img.end()), 15);  // only the levels 0..15, the top one used
    }
}

TEST(Normalize, WorkedByHand) {
    // mean 15, deviation sqrt(125) = 11 (truncated); (g − 15) × 10 / 11 + 100, truncated towards zero.
    EXPECT_EQ(after(QelGryImgNormalize, {0, 10, 20, 30}, 2, 2, 100, 10), (Bytes{87, 96, 104, 113}));
    EXPECT_EQ(after(QelGryImgNormalize, {0, 10, 20, 30}, 4, 1, 250, 100), (Bytes{114, 205, 255, 255}));  // ±45, ±136
    EXPECT_EQ(after(QelGryImgNormalize, {0, 10, 20, 30}, 4, 1, 5, 100), (Bytes{0, 0, 50, 141}));
    // Integer mean 3 (not 3.5) and deviation sqrt(12.5) = 3.54 truncated to 3.
    EXPECT_EQ(after(QelGryImgNormalize, {0, 7}, 2, 1, 100, 10), (Bytes{90, 113}));
    // A deviation below 1 counts as 1: a flat image takes the wanted mean, and with a true
    // deviation of 0.3 level 101 moves by the wanted deviation.
    EXPECT_EQ(after(QelGryImgNormalize, Bytes(6, 77), 3, 2, 40, 20), Bytes(6, 40));
    EXPECT_EQ(after(QelGryImgNormalize, {101, 100, 100, 100, 100, 100, 100, 100, 100, 100}, 10, 1, 50, 20),
              (Bytes{70, 50, 50, 50, 50, 50, 50, 50, 50, 50}));
}

TEST(Gain, ColumnGainRisesTowardsBothEdgesAndRowGainIsASignedRamp) {
    const Bytes random = random_grey(31, 9, 2);
    EXPECT_EQ(after(QelCorrectPixelsGryValueByCol, random, 31, 9, 1.0), random);  // gain 1 changes nothing
    Bytes img(100 * 2, 100);
    img[100] = 200;  // row 1, column 0
    img = after(QelCorrectPixelsGryValueByCol, img, 100, 2, 2.0);
    // Column 0: factor 2.0, column 25: 1.5, the centre 1.0, column 99: 1.98; 400 clamps to 255.
    EXPECT_EQ((Bytes{img[0], img[25], img[50], img[99], img[100]}), (Bytes{200, 150, 100, 198, 255}));
    img = after(QelCorrectPixelsGryValueByRow, Bytes(100 * 3, 100), 3, 100, 2.0);
    for (int x = 0; x < 3; ++x)  // row 0: factor 0.0, the centre row 1.0, row 99: 1.98
        EXPECT_EQ((Bytes{img[x], img[50 * 3 + x], img[99 * 3 + x]}), (Bytes{0, 100, 198}));
    EXPECT_EQ(after(QelCorrectPixelsGryValueByRow, {10, 20, 30}, 3, 1, 3.0), (Bytes{10, 20, 30}));  // one row: no ramp
    // Negative products keep their low byte: factor −1 stores −10 as 246, factor −0.96 stores −96
    // as 160; row 0's factor 3.0 clamps 300 to 255.
    EXPECT_EQ(after(QelCorrectPixelsGryValueByCol, Bytes(100, 10), 100, 1, -1.0)[0], 256 - 10);
    const Bytes rows = after(QelCorrectPixelsGryValueByRow, Bytes(100, 100), 1, 100, -1.0);
    EXPECT_EQ(rows[99], 256 - 96);
    EXPECT_EQ(rows[0], 255);
}

// A lighting correction's result and the corrected image.
std::pair<int, Bytes> lit(int (*correct)(unsigned char*, int, int), Bytes img, int width, int height) {
    const int mean = correct(img.data(), width, height);
    return {mean, img};
}

std::pair<int, Bytes> perCol(Bytes img, int width, int height) { return lit(QelLightCorretPerCol, img, width, height); }

Bytes transpose(const Bytes& img, int width, int height) {
    Bytes t(img.size());
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) t[size_t(x * height + y)] = img[size_t(y * width + x)];
    return t;
}

TEST(Lighting, LinesAreBroughtToTheMeanLineSum) {
    EXPECT_EQ(perCol({100, 50, 100, 50}, 2, 2), std::make_pair(75, Bytes{75, 75, 75, 75}));  // gains 768, 1536
    EXPECT_EQ(perCol({255, 240, 255, 10}, 2, 2), std::make_pair(190, Bytes{189, 250, 189, 15}));  // stop at 250
    EXPECT_EQ(perCol({100, 0, 100, 0}, 2, 2), std::make_pair(50, Bytes{50, 0, 50, 0}));  // a black column stays
    EXPECT_EQ(lit(QelLightCorretPerRow, Bytes(12, 0), 4, 3), std::make_pair(0, Bytes(12, 0)));
    // More than 4096 lines are refused: 0, image untouched.
    Bytes wide(4097 * 2, 200);
    wide[5] = 3;
    EXPECT_EQ(perCol(wide, 4097, 2), std::make_pair(0, wide));
    EXPECT_EQ(lit(QelLightCorretPerRow, wide, 2, 4097), std::make_pair(0, wide));
    EXPECT_EQ(perCol(Bytes(4096, 200), 4096, 1).first, 200);
    const int w = 23, h = 17;  // the row form is the column form transposed
    for (unsigned seed = 1; seed <= 4; ++seed) {
        const Bytes img = random_levels(static_cast<size_t>(w * h), seed, 1, 255);
        const auto [byRow, corrected] = lit(QelLightCorretPerRow, img, w, h);
        EXPECT_EQ(perCol(transpose(img, w, h), h, w), std::make_pair(byRow, transpose(corrected, w, h)));
        EXPECT_LE(*std::max_element(corrected.begin(), corrected.end()), 250);
    }
}

// ---- noise: the generator is seeded from the clock, so only properties are checked ----------

Bytes noisy(const Bytes& img, double amount, unsigned type) {
    Bytes out = img;
    Ostrum2008AddNoise(out.data(), static_cast<int>(out.size()), amount, type);
    return out;
}

TEST(Noise, AmountZeroAndUnknownTypesChangeNothing) {
    const Bytes img = random_grey(500, 1, 1);
    for (unsigned type : {0u, 1u, 2u, 3u, 4u}) EXPECT_EQ(noisy(img, 0.0, type), img) << type;
    EXPECT_EQ(noisy(img, 50.0, 5), img);
}

TEST(Noise, GaussianUniformAndRayleighStayInTheImagesOwnRange) {
    const Bytes img = random_levels(4000, 2, 40, 200);
    const unsigned char lo = *std::min_element(img.begin(), img.end()), hi = *std::max_element(img.begin(), img.end());
    for (unsigned type : {0u, 1u, 4u}) {
        const Bytes out = noisy(img, 80.0, type);
        EXPECT_TRUE(std::all_of(out.begin(), out.end(), [&](unsigned char p) { return p >= lo && p <= hi; }));
        EXPECT_NE(out, img) << type;
    }
    auto largestMove = [&](double amount) {
        const Bytes out = noisy(img, amount, 1);
        int largest = 0;
        for (size_t i = 0; i < img.size(); ++i) largest = std::max(largest, std::abs(out[i] - img[i]));
        return largest;
    };
    EXPECT_LE(largestMove(6.0), 6);  // uniform noise moves at most the amount
    const int percent = largestMove(-10.0);  // a percentage of the range 40..200: 16
    EXPECT_TRUE(percent > 10 && percent <= 16) << percent;
}

TEST(Noise, SaltAndPepperUsesTheRangeEnds) {
    const Bytes img = random_levels(2000, 4, 30, 220);
    const unsigned char lo = *std::min_element(img.begin(), img.end()), hi = *std::max_element(img.begin(), img.end());
    auto isEnd = [&](unsigned char p) { return p == lo || p == hi; };
    const Bytes all = noisy(img, 101.0, 2);  // above 100 % every pixel is hit
    EXPECT_TRUE(std::all_of(all.begin(), all.end(), isEnd));
    const Bytes some = noisy(img, 10.0, 2);
    int hit = 0;
    for (size_t i = 0; i < img.size(); ++i) {
        EXPECT_TRUE(some[i] == img[i] || isEnd(some[i]));
        hit += some[i] != img[i];
    }
    EXPECT_TRUE(hit > 0 && hit < 1000) << hit;
    EXPECT_TRUE(only_binary(noisy(Bytes(1000, 90), 101.0, 2)));  // no range: black and white
}

TEST(Noise, PoissonKeepsBlackAndStoresLowBytes) {
    EXPECT_TRUE(all_equal(noisy(Bytes(300, 0), 1.0, 3), 0));
    // Bright pixels: p + sqrt(p) × n, unclamped and wrapped to a byte; some land above 255.
    const Bytes bright = noisy(Bytes(3000, 250), 1.0, 3);
    EXPECT_GT(std::count_if(bright.begin(), bright.end(), [](unsigned char p) { return p < 150; }), 0);
}

}  // namespace
