#include <qel.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

Bytes random_bytes(size_t n, unsigned seed, int lo = 0, int hi = 255) {
    std::mt19937 rng(seed);
    std::uniform_int_distribution<int> level(lo, hi);
    Bytes v(n);
    for (auto& b : v) b = static_cast<unsigned char>(level(rng));
    return v;
}

Bytes all_levels() {
    Bytes v(256);
    for (int g = 0; g < 256; ++g) v[static_cast<size_t>(g)] = static_cast<unsigned char>(g);
    return v;
}

Bytes transpose(const Bytes& img, int width, int height) {
    Bytes t(img.size());
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) t[static_cast<size_t>(x * height + y)] = img[static_cast<size_t>(y * width + x)];
    return t;
}

// ---- remappings ------------------------------------------------------------------------------

TEST(Remap, InvertIntoOutputAndInPlace) {
    const Bytes img = all_levels();
    Bytes out(256), copy = img;
    QelInvertGryValue(const_cast<unsigned char*>(img.data()), 16, 16, out.data());
    for (int g = 0; g < 256; ++g) EXPECT_EQ(out[static_cast<size_t>(g)], 255 - g);
    QelInvertGryValue(copy.data(), 16, 16);
    EXPECT_EQ(copy, out);
    QelInvertGryValue(copy.data(), 16, 16);
    EXPECT_EQ(copy, img);
}

TEST(Remap, ZeroAndMarkLevelsAreFreed) {
    Bytes img = all_levels();
    QelChange0and250PlusPixels(img.data(), 256, 1);
    EXPECT_EQ(img[0], 1);
    for (int g = 1; g <= 250; ++g) EXPECT_EQ(img[static_cast<size_t>(g)], g);
    for (int g = 251; g <= 255; ++g) EXPECT_EQ(img[static_cast<size_t>(g)], 250);
}

TEST(Remap, OddLevelsBecomeWhite) {
    Bytes img = all_levels();
    QelSetOddPixelsTo255(img.data(), 128, 2);
    for (int g = 0; g < 256; ++g) EXPECT_EQ(img[static_cast<size_t>(g)], g % 2 ? 255 : g);
}

TEST(Remap, SetPixelsTo255BinarisesOnlyInsideTheRectangle) {
    Bytes img = {7, 7, 3, 7,
                 3, 7, 7, 3,
                 7, 3, 7, 7};
    QelSetPixelsTo255(img.data(), 4, 1, 2, 0, 1, 7);
    EXPECT_EQ(img, (Bytes{7, 255, 0, 7,
                          3, 255, 255, 3,
                          7, 3, 7, 7}));
}

// ---- 16 levels and normalisation -------------------------------------------------------------

TEST(FourBit, StretchesBetweenTheTenPercentPoints) {
    Bytes img = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    QelGryImg4Bit(img.data(), 5, 2);  // lo = 1, hi = 8
    EXPECT_EQ(img, (Bytes{0, 0, 2, 4, 6, 8, 10, 12, 15, 15}));
}

TEST(FourBit, OutputHasOnlySixteenLevels) {
    for (unsigned seed = 1; seed <= 5; ++seed) {
        Bytes img = random_bytes(40 * 30, seed);
        QelGryImg4Bit(img.data(), 40, 30);
        EXPECT_LE(*std::max_element(img.begin(), img.end()), 15);
        EXPECT_EQ(*std::max_element(img.begin(), img.end()), 15);
    }
}

TEST(FourBit, NoSpreadBetweenTheTenPercentPointsIsAStep) {
    // 19 pixels at 100, one at 50: lo = hi = 100.
    Bytes img(20, 100);
    img[3] = 50;
    QelGryImg4Bit(img.data(), 5, 4);
    for (size_t i = 0; i < img.size(); ++i) EXPECT_EQ(img[i], i == 3 ? 0 : 15);
    Bytes flat(9, 42);
    QelGryImg4Bit(flat.data(), 3, 3);
    EXPECT_EQ(flat, Bytes(9, 15));
}

TEST(Normalize, WorkedByHandWithTruncationTowardsZero) {
    // mean 15, deviation sqrt(125) = 11 (truncated); (g − 15) × 10 / 11 + 100.
    Bytes img = {0, 10, 20, 30};
    QelGryImgNormalize(img.data(), 2, 2, 100, 10);
    EXPECT_EQ(img, (Bytes{87, 96, 104, 113}));
}

TEST(Normalize, ClampsToTheByteRange) {
    Bytes img = {0, 10, 20, 30};
    QelGryImgNormalize(img.data(), 4, 1, 250, 100);  // offsets −136, −45, 45, 136
    EXPECT_EQ(img, (Bytes{114, 205, 255, 255}));
    Bytes low = {0, 10, 20, 30};
    QelGryImgNormalize(low.data(), 4, 1, 5, 100);
    EXPECT_EQ(low, (Bytes{0, 0, 50, 141}));
}

TEST(Normalize, DeviationBelowOneCountsAsOne) {
    Bytes flat(6, 77);
    QelGryImgNormalize(flat.data(), 3, 2, 40, 20);
    EXPECT_EQ(flat, Bytes(6, 40));
    // Mean 100, true deviation 0.3: taken as 1, so 101 moves by the wanted deviation.
    Bytes nearly(10, 100);
    nearly[0] = 101;
    QelGryImgNormalize(nearly.data(), 10, 1, 50, 20);
    EXPECT_EQ(nearly[0], 70);
    EXPECT_EQ(nearly[1], 50);
}

// ---- gain profiles ---------------------------------------------------------------------------

TEST(Gain, ColumnGainOfOneChangesNothing) {
    const Bytes before = random_bytes(31 * 9, 2);
    Bytes img = before;
    QelCorrectPixelsGryValueByCol(img.data(), 31, 9, 1.0);
    EXPECT_EQ(img, before);
}

TEST(Gain, ColumnGainRisesTowardsBothEdges) {
    Bytes img(100 * 2, 100);
    img[100] = 200;  // row 1, column 0
    QelCorrectPixelsGryValueByCol(img.data(), 100, 2, 2.0);
    EXPECT_EQ(img[0], 200);    // column 0: factor 2.0
    EXPECT_EQ(img[25], 150);   // factor 1.5
    EXPECT_EQ(img[50], 100);   // centre: factor 1.0
    EXPECT_EQ(img[99], 198);   // factor 1.98
    EXPECT_EQ(img[100], 255);  // 400 clamps to 255
}

TEST(Gain, NegativeProductsKeepTheirLowByte) {
    Bytes img(100, 10);
    QelCorrectPixelsGryValueByCol(img.data(), 100, 1, -1.0);
    EXPECT_EQ(img[0], 256 - 10);  // factor −1: −10 stored as its low byte
    Bytes rows(100, 100);
    QelCorrectPixelsGryValueByRow(rows.data(), 1, 100, -1.0);
    EXPECT_EQ(rows[99], 256 - 96);  // factor −0.96
    EXPECT_EQ(rows[0], 255);        // factor 3.0: 300 clamps
}

TEST(Gain, RowRampIsSignedFromTopToBottom) {
    Bytes img(100 * 3, 100);
    QelCorrectPixelsGryValueByRow(img.data(), 3, 100, 2.0);
    for (int x = 0; x < 3; ++x) {
        EXPECT_EQ(img[static_cast<size_t>(x)], 0);                // row 0: factor 0.0
        EXPECT_EQ(img[static_cast<size_t>(50 * 3 + x)], 100);     // centre row: 1.0
        EXPECT_EQ(img[static_cast<size_t>(99 * 3 + x)], 198);     // row 99: 1.98
    }
}

TEST(Gain, SingleRowImageHasNoRowRamp) {
    Bytes img = {10, 20, 30};
    QelCorrectPixelsGryValueByRow(img.data(), 3, 1, 3.0);
    EXPECT_EQ(img, (Bytes{10, 20, 30}));
}

// ---- lighting correction ---------------------------------------------------------------------

TEST(Lighting, ColumnsAreBroughtToTheMeanColumnSum) {
    Bytes img = {100, 50,
                 100, 50};
    EXPECT_EQ(QelLightCorretPerCol(img.data(), 2, 2), 75);
    EXPECT_EQ(img, (Bytes{75, 75, 75, 75}));  // gains 768 and 1536 (÷1024)
}

TEST(Lighting, BrightenedPixelsStopAt250) {
    Bytes img = {255, 240,
                 255, 10};
    EXPECT_EQ(QelLightCorretPerCol(img.data(), 2, 2), 190);
    EXPECT_EQ(img, (Bytes{189, 250, 189, 15}));
}

TEST(Lighting, AllBlackColumnStaysBlack) {
    Bytes img = {100, 0,
                 100, 0};
    EXPECT_EQ(QelLightCorretPerCol(img.data(), 2, 2), 50);
    EXPECT_EQ(img, (Bytes{50, 0, 50, 0}));
    Bytes black(12, 0);
    EXPECT_EQ(QelLightCorretPerRow(black.data(), 4, 3), 0);
    EXPECT_EQ(black, Bytes(12, 0));
}

TEST(Lighting, RefusesMoreThan4096Lines) {
    Bytes wide(4097 * 2, 200);
    wide[5] = 3;
    const Bytes before = wide;
    EXPECT_EQ(QelLightCorretPerCol(wide.data(), 4097, 2), 0);
    EXPECT_EQ(wide, before);
    EXPECT_EQ(QelLightCorretPerRow(wide.data(), 2, 4097), 0);
    EXPECT_EQ(wide, before);
    Bytes edge(4096, 200);
    EXPECT_EQ(QelLightCorretPerCol(edge.data(), 4096, 1), 200);
}

TEST(Lighting, RowFormIsTheColumnFormTransposed) {
    const int w = 23, h = 17;
    for (unsigned seed = 1; seed <= 4; ++seed) {
        Bytes img = random_bytes(static_cast<size_t>(w * h), seed, 1, 255);
        Bytes t = transpose(img, w, h);
        const int byRow = QelLightCorretPerRow(img.data(), w, h);
        const int byCol = QelLightCorretPerCol(t.data(), h, w);
        EXPECT_EQ(byRow, byCol);
        EXPECT_EQ(transpose(img, w, h), t);
        EXPECT_LE(*std::max_element(img.begin(), img.end()), 250);
    }
}

// ---- noise -----------------------------------------------------------------------------------

struct Range {
    int lo, hi;
};
Range range_of(const Bytes& img) {
    auto [lo, hi] = std::minmax_element(img.begin(), img.end());
    return {*lo, *hi};
}

TEST(Noise, AmountZeroAndUnknownTypesChangeNothing) {
    const Bytes before = random_bytes(500, 1);
    for (unsigned type : {0u, 1u, 2u, 3u, 4u}) {
        Bytes img = before;
        Ostrum2008AddNoise(img.data(), 500, 0.0, type);
        EXPECT_EQ(img, before) << "type " << type;
    }
    Bytes img = before;
    Ostrum2008AddNoise(img.data(), 500, 50.0, 5);
    EXPECT_EQ(img, before);
}

TEST(Noise, GaussianUniformAndRayleighStayInTheImagesOwnRange) {
    const Bytes before = random_bytes(4000, 2, 40, 200);
    const Range r = range_of(before);
    for (unsigned type : {0u, 1u, 4u}) {
        Bytes img = before;
        Ostrum2008AddNoise(img.data(), 4000, 80.0, type);
        const Range after = range_of(img);
        EXPECT_GE(after.lo, r.lo) << "type " << type;
        EXPECT_LE(after.hi, r.hi) << "type " << type;
        EXPECT_NE(img, before) << "type " << type;
    }
}

TEST(Noise, UniformMovesAtMostTheAmount) {
    const Bytes before = random_bytes(3000, 3, 40, 200);
    Bytes img = before;
    Ostrum2008AddNoise(img.data(), 3000, 6.0, 1);
    for (size_t i = 0; i < img.size(); ++i) EXPECT_LE(std::abs(img[i] - before[i]), 6);
    // A negative amount is a percentage of the range 40..200: −10 means 16.
    img = before;
    Ostrum2008AddNoise(img.data(), 3000, -10.0, 1);
    int largest = 0;
    for (size_t i = 0; i < img.size(); ++i) largest = std::max(largest, std::abs(img[i] - before[i]));
    EXPECT_LE(largest, 16);
    EXPECT_GT(largest, 6);
}

TEST(Noise, SaltAndPepperUsesTheRangeEnds) {
    const Bytes before = random_bytes(2000, 4, 30, 220);
    const Range r = range_of(before);
    Bytes img = before;
    Ostrum2008AddNoise(img.data(), 2000, 100.0, 2);  // every pixel hit
    for (unsigned char p : img) EXPECT_TRUE(p == r.lo || p == r.hi);
    img = before;
    Ostrum2008AddNoise(img.data(), 2000, 10.0, 2);
    int hit = 0;
    for (size_t i = 0; i < img.size(); ++i) {
        if (img[i] == before[i]) continue;
        EXPECT_TRUE(img[i] == r.lo || img[i] == r.hi);
        ++hit;
    }
    EXPECT_GT(hit, 0);
    EXPECT_LT(hit, 1000);
}

TEST(Noise, SaltAndPepperOnAFlatImageUsesBlackAndWhite) {
    Bytes img(1000, 90);
    Ostrum2008AddNoise(img.data(), 1000, 100.0, 2);
    for (unsigned char p : img) EXPECT_TRUE(p == 0 || p == 255);
}

TEST(Noise, PoissonKeepsBlackAndStoresLowBytes) {
    Bytes img(300, 0);
    Ostrum2008AddNoise(img.data(), 300, 1.0, 3);
    EXPECT_EQ(img, Bytes(300, 0));
    // Bright pixels: p + sqrt(p) × n, unclamped and wrapped to a byte; some land above 255.
    Bytes bright(3000, 250);
    Ostrum2008AddNoise(bright.data(), 3000, 1.0, 3);
    const auto wrapped = std::count_if(bright.begin(), bright.end(), [](unsigned char p) { return p < 150; });
    EXPECT_GT(wrapped, 0);
}

}  // namespace
