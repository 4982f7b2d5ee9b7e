#include <qel.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace {

using Hist = std::vector<int>;
using Bytes = std::vector<unsigned char>;

Bytes randomImage(int width, int height, unsigned seed) {
    std::mt19937 rng(seed);
    std::uniform_int_distribution<int> level(0, 255);
    Bytes img(static_cast<size_t>(width) * height);
    for (auto& p : img) p = static_cast<unsigned char>(level(rng));
    return img;
}

Hist levels(std::initializer_list<std::pair<int, int>> binsAndCounts) {
    Hist h(256, 0);
    for (auto [bin, count] : binsAndCounts) h[bin] = count;
    return h;
}

bool onlyBinary(const Bytes& img) {
    return std::all_of(img.begin(), img.end(), [](unsigned char p) { return p == 0 || p == 255; });
}

// Otsu as described, each candidate's classes summed afresh over lo .. hi − 1.
int referenceOtsu(const Hist& h) {
    int lo = 0, hi = 255;
    while (h[lo] == 0) ++lo;
    while (h[hi] == 0) --hi;
    double best = 0.0;
    int threshold = 0;
    for (int t = lo; t < hi; ++t) {
        if (h[t] == 0) continue;
        double nB = 0, sB = 0, nF = 0, sF = 0;
        for (int i = lo; i < hi; ++i) (i <= t ? nB : nF) += h[i], (i <= t ? sB : sF) += double(i) * h[i];
        if (nF == 0) continue;
        const double d = sB / nB - sF / nF;
        const double sigma = d * d * (nB / (nB + nF)) * (nF / (nB + nF));
        if (sigma > best) best = sigma, threshold = t;
    }
    return threshold;
}

TEST(ThresholdSelection, OtsuWithTwoLevelsIsZeroBecauseTheLastBinIsLeftOut) {
    EXPECT_EQ(QelGetOtsuThreshold(levels({{40, 10}, {200, 10}}).data(), 256), 0);
}

TEST(ThresholdSelection, OtsuWithThreeLevelsSplitsAfterTheFirst) {
    EXPECT_EQ(QelGetOtsuThreshold(levels({{40, 10}, {100, 10}, {200, 10}}).data(), 256), 40);
}

TEST(ThresholdSelection, OtsuIgnoresTheLastNonEmptyBin) {
    Hist h = levels({{20, 30}, {30, 5}, {90, 10}, {100, 40}, {240, 1}});
    const int t = QelGetOtsuThreshold(h.data(), 256);
    h[240] = 100000;
    EXPECT_EQ(QelGetOtsuThreshold(h.data(), 256), t);
    EXPECT_EQ(t, 30);
}

TEST(ThresholdSelection, OtsuOfAnEmptyHistogramIsZero) {
    EXPECT_EQ(QelGetOtsuThreshold(Hist(256, 0).data(), 256), 0);
}

TEST(ThresholdSelection, OtsuAgreesWithAFreshSumPerCandidate) {
    std::mt19937 rng(11);
    for (int trial = 0; trial < 50; ++trial) {
        Hist h(256, 0);
        for (int i = 0; i < 2000; ++i) {
            const double v = (i % 2 ? 60.0 : 170.0) + std::normal_distribution<double>(0, 10 + trial)(rng);
            ++h[std::clamp(static_cast<int>(v), 0, 255)];
        }
        EXPECT_EQ(QelGetOtsuThreshold(h.data(), 256), referenceOtsu(h)) << trial;
    }
}

TEST(ThresholdSelection, RatioOfHistogramStopsAtOrAbove) {
    Hist h = levels({{10, 50}, {100, 50}});
    EXPECT_EQ(QelGetThresholdByRatio(h.data(), 0.0), 255);
    EXPECT_EQ(QelGetThresholdByRatio(h.data(), 0.5), 100);  // acc = 50 ≥ 50
    EXPECT_EQ(QelGetThresholdByRatio(h.data(), 1.0), 10);
    EXPECT_EQ(QelGetThresholdByRatio(h.data(), 1.5), -1);
}

TEST(ThresholdSelection, LimitIsMeanPlusMinusKDeviationsWithinGreyRange) {
    Hist h = levels({{90, 1}, {110, 1}});  // mean 100, deviation 10
    int lo = -1, hi = -1;
    QelGetThresholdLimit(h.data(), 2.5, &lo, &hi);
    EXPECT_EQ(lo, 75);
    EXPECT_EQ(hi, 125);
    QelGetThresholdLimit(h.data(), 20.0, &lo, &hi);
    EXPECT_EQ(lo, 0);
    EXPECT_EQ(hi, 255);
}

TEST(ThresholdSelection, DifImageThresholdIsThreeMediansOverPointSixSeven) {
    EXPECT_EQ(QelGetDifImgThreshold(levels({{2, 2}, {4, 2}}).data()), 9);  // 3 × 2 / 0.67 = 8.96
    // half = 2 is reached inside bin 3 (acc 1 → 4): median 3 − 2 / 3, giving 10.45
    EXPECT_EQ(QelGetDifImgThreshold(levels({{1, 1}, {3, 3}}).data()), 10);
    EXPECT_EQ(QelGetDifImgThreshold(levels({{0, 9}}).data()), 0);
}

TEST(ThresholdSelection, ValleyIsTheFirstBinNotAboveItsNeighbours) {
    Hist h(256, 0);
    const int counts[] = {0, 5, 3, 4, 6, 2, 9};
    std::copy(std::begin(counts), std::end(counts), h.begin());
    int t = -1;
    EXPECT_TRUE(QelGetDifImgThreshold(h.data(), 100, 250, &t));  // the low bound is not used
    EXPECT_EQ(t, 2);
}

TEST(ThresholdSelection, ValleyBeforeAnEmptyBinUsesTheNearestNonEmptyBinAbove) {
    int t = -1;
    EXPECT_TRUE(QelGetDifImgThreshold(levels({{1, 5}, {2, 3}, {5, 4}}).data(), 0, 250, &t));
    EXPECT_EQ(t, 2);
    // Nothing non-empty above the candidate: passed over, no valley.
    EXPECT_FALSE(QelGetDifImgThreshold(levels({{1, 5}, {2, 3}}).data(), 0, 250, &t));
    EXPECT_EQ(t, 0);
    // A candidate whose upper neighbour is lower is passed over; the search goes on.
    EXPECT_TRUE(QelGetDifImgThreshold(levels({{1, 5}, {2, 3}, {9, 1}, {12, 4}}).data(), 0, 250, &t));
    EXPECT_EQ(t, 9);
}

TEST(ThresholdSelection, ValleySearchStopsAt250) {
    Hist h(256, 0);
    for (int i = 1; i <= 250; ++i) h[i] = i;  // rising: no valley
    h[251] = 5;
    h[252] = 6;
    int t = -1;
    EXPECT_FALSE(QelGetDifImgThreshold(h.data(), 0, 1000, &t));
    EXPECT_EQ(t, 0);
}

TEST(ThresholdSelection, ClusteringRefusesFewerThanTwoClusters) {
    double centres[2] = {-1, -1};
    EXPECT_FALSE(QelClusterHistogram(levels({{5, 1}, {9, 1}}).data(), 1, 0.01, centres));
    EXPECT_EQ(centres[0], -1);
}

TEST(ThresholdSelection, ClusteringWithFewerLevelsThanClustersLeavesTheRest) {
    double centres[3] = {-1, -1, -1};
    EXPECT_TRUE(QelClusterHistogram(levels({{50, 5}, {200, 10}}).data(), 3, 0.01, centres));
    EXPECT_EQ(centres[0], 200);  // seeded at the most populated level
    EXPECT_EQ(centres[1], 50);
    EXPECT_EQ(centres[2], -1);
}

TEST(ThresholdSelection, ClusterCentresMoveWithinAPass) {
    // Seeds 30 and 10; level 20 ties and goes to centre 0, which then moves to 20.
    double centres[2] = {};
    EXPECT_TRUE(QelClusterHistogram(levels({{10, 1}, {20, 1}, {30, 2}}).data(), 2, 0.01, centres));
    EXPECT_DOUBLE_EQ(centres[0], 160.0 / 6.0);  // totals of two passes
    EXPECT_EQ(centres[1], 10.0);
}

TEST(ThresholdSelection, ClusteringThatNeverMeetsItsToleranceStillReturns) {
    Hist h = levels({{10, 3}, {40, 1}, {90, 2}, {100, 5}, {180, 4}, {230, 1}});
    double centres[3] = {};
    EXPECT_TRUE(QelClusterHistogram(h.data(), 3, -1.0, centres));
    for (double c : centres) EXPECT_TRUE(c >= 10 && c <= 230);
}

TEST(Binarisation, ThresholdIsGreaterOrEqual) {
    Bytes img = {0, 127, 128, 255};
    Bytes out(4, 7);
    QelThreshold(img.data(), 4, 1, 128, out.data());
    EXPECT_EQ(out, (Bytes{0, 0, 255, 255}));
    QelThreshold(img.data(), 2, 2, 0);
    EXPECT_EQ(img, Bytes(4, 255));
    QelThreshold(img.data(), 4, 1, 256);
    EXPECT_EQ(img, Bytes(4, 0));
    img.assign(4, 255);
    QelThreshold(img.data(), 4, 1, 1000);  // above 256 counts as 256
    EXPECT_EQ(img, Bytes(4, 0));
}

TEST(Binarisation, TwoValuesTakeTheLowByte) {
    Bytes img = {10, 200};
    QelThreshold2V1V2(img.data(), 2, 1, 100, 300, 7);
    EXPECT_EQ(img, (Bytes{44, 7}));
}

TEST(Binarisation, RandomImagesGiveOnlyZeroOr255AndMatchTheRule) {
    const int w = 41, h = 29;
    for (int t : {-5, 0, 1, 77, 200, 255, 256}) {
        Bytes img = randomImage(w, h, 20 + t), out(img.size()), rect(img.size(), 9);
        QelThreshold(img.data(), w, h, t, out.data());
        QelThresholdInRect(img.data(), w, 4, 35, 3, 20, t, rect.data());
        ASSERT_TRUE(onlyBinary(out));
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                const size_t i = static_cast<size_t>(y) * w + x;
                const int expected = img[i] >= t ? 255 : 0;
                EXPECT_EQ(out[i], expected);
                const bool inside = x >= 4 && x <= 35 && y >= 3 && y <= 20;
                EXPECT_EQ(rect[i], inside ? expected : 9);
            }
        Bytes inPlace = img;
        QelThresholdInRect(inPlace.data(), w, 4, 35, 3, 20, t);
        for (size_t i = 0; i < img.size(); ++i) EXPECT_EQ(inPlace[i], rect[i] == 9 ? img[i] : rect[i]);
        QelThreshold(img.data(), w, h, t);
        EXPECT_EQ(img, out);
    }
}

TEST(Binarisation, RatioOnABrightImage) {
    Bytes img(100, 255);
    EXPECT_EQ(QelThresholdByRatio(img.data(), 10, 10, 0.1), 255);
    EXPECT_EQ(img, Bytes(100, 255));
}

TEST(Binarisation, RatioZeroRuleOnADarkImage) {
    Bytes img(100, 0);
    EXPECT_EQ(QelThresholdByRatio(img.data(), 10, 10, 0.2), 1);
    EXPECT_EQ(img, Bytes(100, 0));
    Bytes out(100, 9);
    EXPECT_EQ(QelThresholdByRatio(img.data(), 10, 10, 0.7, out.data()), 0);  // no zero rule at 0.5 or above
    EXPECT_EQ(out, Bytes(100, 255));
}

TEST(Binarisation, RatioOneFindsNoThreshold) {
    Bytes img = randomImage(10, 10, 30);
    EXPECT_EQ(QelThresholdByRatio(img.data(), 10, 10, 1.0), -1);
    EXPECT_EQ(img, Bytes(100, 255));
    img = randomImage(10, 10, 31);
    EXPECT_EQ(QelThresholdByRatio(img.data(), 10, 10, 7.0), -1);  // ratio clamped to 1
}

TEST(Binarisation, RatioInRectTouchesOnlyTheRectangle) {
    Bytes img(64, 0);
    img[2 * 8 + 3] = 200;
    Bytes before = img;
    EXPECT_EQ(QelThresholdByRatio(img.data(), 8, 2, 5, 1, 4, 0.2), 1);  // 16 pixels, zero rule
    for (size_t i = 0; i < img.size(); ++i) {
        const int x = static_cast<int>(i % 8), y = static_cast<int>(i / 8);
        const bool inside = x >= 2 && x <= 5 && y >= 1 && y <= 4;
        EXPECT_EQ(img[i], inside ? (before[i] >= 1 ? 255 : 0) : before[i]);
    }
}

TEST(Binarisation, MinimumFormsReturnDifferentValues) {
    Bytes img(16, 3), out(16, 9);
    // T found is 3 (acc 16 > 3 at once); the applied value is raised to 5.
    EXPECT_EQ(QelThresholdByRatio(img.data(), 4, 0, 3, 0, 3, 0.2, 5, out.data()), 3);
    EXPECT_EQ(out, Bytes(16, 0));
    EXPECT_EQ(QelThresholdByRatioAndMiniT(img.data(), 4, 4, 0.2, 5), 5);
    EXPECT_EQ(img, Bytes(16, 0));
    Bytes dark(16, 0);
    EXPECT_EQ(QelThresholdByRatioAndMiniT(dark.data(), 4, 4, 0.2, -3), 0);  // no zero rule
    EXPECT_EQ(dark, Bytes(16, 255));
}

TEST(Binarisation, PercentUsesTheSameWalk) {
    Bytes dark(100, 0);
    QelThresholdByPercent(dark.data(), 10, 10, 20);
    EXPECT_EQ(dark, Bytes(100, 0));  // T 0 raised to 1
    QelThresholdByPercent(dark.data(), 10, 10, 60);
    EXPECT_EQ(dark, Bytes(100, 255));
    Bytes img(100);
    for (int i = 0; i < 100; ++i) img[i] = static_cast<unsigned char>(i);
    QelThresholdByPercent(img.data(), 10, 10, 25);  // more than 25 passed at level 74
    for (int i = 0; i < 100; ++i) EXPECT_EQ(img[i], i >= 74 ? 255 : 0) << i;
}

TEST(Binarisation, ShrinkReportsTruncatedSizeButWritesFullRows) {
    Bytes img(5 * 4);
    for (int i = 0; i < 20; ++i) img[i] = static_cast<unsigned char>(i * 10);
    Bytes out(8, 9);
    int ow = 0, oh = 0;
    QelThresholdAndShrink(img.data(), 5, 4, 50, 2, out.data(), &ow, &oh);
    EXPECT_EQ(ow, 2);
    EXPECT_EQ(oh, 2);
    // Rows 0 and 2, columns 0, 2, 4: levels 0 20 40 | 100 120 140.
    EXPECT_EQ(out, (Bytes{0, 0, 0, 255, 255, 255, 9, 9}));
}

TEST(Binarisation, ShrinkByOneIsAFullCopy) {
    Bytes img = randomImage(7, 5, 40), out(35), ref(35);
    int ow = 0, oh = 0;
    QelThresholdAndShrink(img.data(), 7, 5, 90, 1, out.data(), &ow, &oh);
    QelThreshold(img.data(), 7, 5, 90, ref.data());
    EXPECT_EQ(ow, 7);
    EXPECT_EQ(oh, 5);
    EXPECT_EQ(out, ref);
}

}  // namespace
