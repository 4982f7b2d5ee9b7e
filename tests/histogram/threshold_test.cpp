#include "histogram/histogram_test_helpers.h"

#include <qel.h>

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

using namespace qel_test;

// Otsu as described, each candidate's classes summed afresh over lo .. hi − 1.
int referenceOtsu(const Hist& h) {
    int lo = 0, hi = 255;
    while (h[lo] == 0) ++lo;
    while (h[hi] == 0) --hi;
    double best = 0.0;
    int threshold = 0;
    for (int t = lo; t < hi; ++t) {
        double nB = 0, sB = 0, nF = 0, sF = 0;
        for (int i = lo; i < hi; ++i) (i <= t ? nB : nF) += h[i], (i <= t ? sB : sF) += double(i) * h[i];
        if (h[t] == 0 || nF == 0) continue;
        const double d = sB / nB - sF / nF, sigma = d * d * (nB / (nB + nF)) * (nF / (nB + nF));
        if (sigma > best) best = sigma, threshold = t;
    }
    return threshold;
}

int otsu(Hist h) { return QelGetOtsuThreshold(h.data(), 256); }

TEST(ThresholdSelection, OtsuLeavesOutTheLastNonEmptyBin) {
    EXPECT_EQ(otsu(levels({{40, 10}, {200, 10}})), 0);  // the only candidate has an empty foreground
    EXPECT_EQ(otsu(levels({{40, 10}, {100, 10}, {200, 10}})), 40);
    EXPECT_EQ(otsu(levels({{20, 30}, {30, 5}, {90, 10}, {100, 40}, {240, 1}})), 30);
    EXPECT_EQ(otsu(levels({{20, 30}, {30, 5}, {90, 10}, {100, 40}, {240, 100000}})), 30);
    EXPECT_EQ(otsu(Hist(256, 0)), 0);  // empty: no threshold
    std::mt19937 rng(11);
    for (int trial = 0; trial < 50; ++trial) {
        Hist h(256, 0);
        for (int i = 0; i < 2000; ++i) {
            const double v = (i % 2 ? 60.0 : 170.0) + std::normal_distribution<double>(0, 10 + trial)(rng);
            ++h[std::clamp(static_cast<int>(v), 0, 255)];
        }
        EXPECT_EQ(otsu(h), referenceOtsu(h)) << trial;
    }
}

TEST(ThresholdSelection, RatioLimitAndDifImageWorkedValues) {
    Hist h = levels({{10, 50}, {100, 50}});
    EXPECT_EQ(QelGetThresholdByRatio(h.data(), 0.0), 255);
    EXPECT_EQ(QelGetThresholdByRatio(h.data(), 0.5), 100);  // stops at ≥: acc = 50
    EXPECT_EQ(QelGetThresholdByRatio(h.data(), 1.0), 10);
    EXPECT_EQ(QelGetThresholdByRatio(h.data(), 1.5), -1);
    int lo = -1, hi = -1;  // mean 100, deviation 10; kept within 0..255
    QelGetThresholdLimit(levels({{90, 1}, {110, 1}}).data(), 2.5, &lo, &hi);
    EXPECT_EQ(std::make_pair(lo, hi), std::make_pair(75, 125));
    QelGetThresholdLimit(levels({{90, 1}, {110, 1}}).data(), 20.0, &lo, &hi);
    EXPECT_EQ(std::make_pair(lo, hi), std::make_pair(0, 255));
    // Three medians over 0.67: 3 × 2 / 0.67 = 8.96; half = 2 reached inside bin 3 (acc 1 → 4)
    // gives the median 3 − 2 / 3 and 10.45.
    EXPECT_EQ(QelGetDifImgThreshold(levels({{2, 2}, {4, 2}}).data()), 9);
    EXPECT_EQ(QelGetDifImgThreshold(levels({{1, 1}, {3, 3}}).data()), 10);
    EXPECT_EQ(QelGetDifImgThreshold(levels({{0, 9}}).data()), 0);
}

// The valley form's result and threshold, as "found:T".
std::string valley(Hist h, int lowBound, int highBound) {
    int t = -1;
    const bool found = QelGetDifImgThreshold(h.data(), lowBound, highBound, &t);
    return std::to_string(found) + ":" + std::to_string(t);
}

TEST(ThresholdSelection, ValleyWalk) {
    // The first bin not above its nearest non-empty neighbours; the low bound is not used.
    EXPECT_EQ(valley(levels({{1, 5}, {2, 3}, {3, 4}, {4, 6}, {5, 2}, {6, 9}}), 100, 250), "1:2");
    EXPECT_EQ(valley(levels({{1, 5}, {2, 3}, {5, 4}}), 0, 250), "1:2");  // across empty bins above
    EXPECT_EQ(valley(levels({{1, 5}, {2, 3}, {3, 3}}), 0, 250), "1:2");  // an equal neighbour is not lower
    EXPECT_EQ(valley(levels({{1, 5}, {2, 3}}), 0, 250), "0:0");          // nothing above: passed over
    EXPECT_EQ(valley(levels({{1, 5}, {2, 3}, {9, 1}, {12, 4}}), 0, 250), "1:9");  // lower above: passed over
    Hist rising(256, 0);  // no valley up to 250, one beyond it
    for (int i = 1; i <= 250; ++i) rising[i] = i;
    rising[251] = 5;
    rising[252] = 6;
    EXPECT_EQ(valley(rising, 0, 1000), "0:0");
}

TEST(ThresholdSelection, Clustering) {
    double c[3] = {-1, -1, -1};
    EXPECT_FALSE(QelClusterHistogram(levels({{5, 1}, {9, 1}}).data(), 1, 0.01, c));
    EXPECT_EQ(c[0], -1);  // nothing written
    // Two levels for three clusters: k becomes 2, seeded at the most populated level; the third
    // centre is left as it was.
    EXPECT_TRUE(QelClusterHistogram(levels({{50, 5}, {200, 10}}).data(), 3, 0.01, c));
    EXPECT_TRUE(c[0] == 200 && c[1] == 50 && c[2] == -1);
    // Seeds 30 and 50. Pass 1: 10 moves centre 0 to 10 at once, 30 ties and goes to it (70 / 3),
    // 40 and 50 take centre 1 to 45. Pass 2 adds to those totals: 140 / 6 and 180 / 4, unchanged,
    // so it converges (totals cleared between passes would end at 10 and 37.5).
    EXPECT_TRUE(QelClusterHistogram(levels({{10, 1}, {30, 2}, {40, 1}, {50, 1}}).data(), 2, 0.01, c));
    EXPECT_DOUBLE_EQ(c[0], 70.0 / 3.0);
    EXPECT_EQ(c[1], 45.0);
    // A tolerance that is never met still ends, with centres among the levels.
    EXPECT_TRUE(QelClusterHistogram(levels({{10, 3}, {40, 1}, {90, 2}, {100, 5}, {180, 4}, {230, 1}}).data(), 3,
                                    -1.0, c));
    for (double x : c) EXPECT_TRUE(x >= 10 && x <= 230) << x;
}

TEST(Binarisation, RandomImagesGiveOnlyZeroOr255AndMatchTheRule) {
    const int w = 41, h = 29;
    for (int t : {-5, 0, 1, 77, 128, 255, 256, 1000}) {  // above 256 counts as 256
        SCOPED_TRACE(t);
        Bytes img = random_grey(w, h, 20 + t), out(img.size()), rect(img.size(), 9);
        img[0] = 127, img[1] = 128;  // with T = 128: 0 and 255
        QelThreshold(img.data(), w, h, t, out.data());
        QelThresholdInRect(img.data(), w, 4, 35, 3, 20, t, rect.data());
        EXPECT_TRUE(only_binary(out));
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                const size_t i = static_cast<size_t>(y) * w + x;
                EXPECT_EQ(out[i], img[i] >= t ? 255 : 0);
                EXPECT_EQ(rect[i], x >= 4 && x <= 35 && y >= 3 && y <= 20 ? out[i] : 9);
            }
        Bytes inPlace = img;
        QelThresholdInRect(inPlace.data(), w, 4, 35, 3, 20, t);
        for (size_t i = 0; i < img.size(); ++i) EXPECT_EQ(inPlace[i], rect[i] == 9 ? img[i] : rect[i]);
        QelThreshold(img.data(), w, h, t);
        EXPECT_EQ(img, out);
    }
    Bytes two = {10, 200};
    QelThreshold2V1V2(two.data(), 2, 1, 100, 300, 7);  // the values' low bytes
    EXPECT_EQ(two, (Bytes{44, 7}));
}

TEST(Binarisation, RatioWorkedValues) {
    Bytes bright(100, 255), dark(100, 0), out(100, 9);
    EXPECT_EQ(QelThresholdByRatio(bright.data(), 10, 10, 0.1), 255);  // acc = 100 > 10 at once
    EXPECT_TRUE(all_equal(bright, 255));
    EXPECT_EQ(QelThresholdByRatio(dark.data(), 10, 10, 0.2), 1);  // T 0 raised to 1 below half
    EXPECT_TRUE(all_equal(dark, 0));
    EXPECT_EQ(QelThresholdByRatio(dark.data(), 10, 10, 0.7, out.data()), 0);  // no zero rule from half up
    EXPECT_TRUE(all_equal(out, 255));
    for (double ratio : {1.0, 7.0}) {  // acc = n never exceeds k = n; the ratio is clamped to 1
        Bytes img = random_grey(10, 10, 30);
        EXPECT_EQ(QelThresholdByRatio(img.data(), 10, 10, ratio), -1) << ratio;
        EXPECT_TRUE(all_equal(img, 255));
    }
    // In a rectangle: 16 pixels, zero rule; outside it nothing changes.
    Bytes img(64, 0);
    img[0] = 50;
    img[2 * 8 + 3] = 200;
    EXPECT_EQ(QelThresholdByRatio(img.data(), 8, 2, 5, 1, 4, 0.2), 1);
    for (size_t i = 0; i < img.size(); ++i) EXPECT_EQ(img[i], i == 2 * 8 + 3 ? 255 : i == 0 ? 50 : 0) << i;
    // The rectangle form with a minimum returns T as found (3), QelThresholdByRatioAndMiniT the
    // raised value (5); neither applies the zero rule.
    Bytes threes(16, 3);
    EXPECT_EQ(QelThresholdByRatio(threes.data(), 4, 0, 3, 0, 3, 0.2, 5, out.data()), 3);
    EXPECT_TRUE(std::all_of(out.begin(), out.begin() + 16, [](unsigned char p) { return p == 0; }));
    EXPECT_EQ(QelThresholdByRatioAndMiniT(threes.data(), 4, 4, 0.2, 5), 5);
    EXPECT_TRUE(all_equal(threes, 0));
    EXPECT_EQ(QelThresholdByRatioAndMiniT(dark.data(), 4, 4, 0.2, -3), 0);
    EXPECT_TRUE(std::all_of(dark.begin(), dark.begin() + 16, [](unsigned char p) { return p == 255; }));
}

TEST(Binarisation, OneColumnRectanglesAreBinarisedAndNothingBesideThem) {
    // Column 2, rows 1..3 of a 5 x 5 image of 100s with 200 at (2, 2): threshold 150 gives one 255
    // between two 0s; the ratio forms find T = 200 (one of three pixels is more than 0.2 of 3).
    const int w = 5;
    Bytes img(25, 100);
    img[2 * w + 2] = 200;
    Bytes expected = img;
    expected[1 * w + 2] = expected[3 * w + 2] = 0;
    expected[2 * w + 2] = 255;
    Bytes out = img, inPlace = img, ratio = img, ratioOut = img;
    QelThresholdInRect(img.data(), w, 2, 2, 1, 3, 150, out.data());
    QelThresholdInRect(inPlace.data(), w, 2, 2, 1, 3, 150);
    EXPECT_EQ(QelThresholdByRatio(ratio.data(), w, 2, 2, 1, 3, 0.2), 200);
    EXPECT_EQ(QelThresholdByRatio(img.data(), w, 2, 2, 1, 3, 0.2, 0, ratioOut.data()), 200);
    for (const Bytes* result : {&out, &inPlace, &ratio, &ratioOut}) EXPECT_EQ(*result, expected);
}

TEST(Binarisation, PercentUsesTheSameWalk) {
    EXPECT_TRUE(all_equal(after(QelThresholdByPercent, Bytes(100, 0), 10, 10, 20), 0));  // T 0 raised to 1
    EXPECT_TRUE(all_equal(after(QelThresholdByPercent, Bytes(100, 0), 10, 10, 60), 255));
    Bytes ramp = every_level();
    ramp.resize(100);
    ramp = after(QelThresholdByPercent, ramp, 10, 10, 25);
    for (int i = 0; i < 100; ++i) EXPECT_EQ(ramp[i], i >= 74 ? 255 : 0) << i;  // more than 25 passed at 74
}

TEST(Binarisation, ShrinkReportsTruncatedSizeButWritesFullRows) {
    Bytes img(5 * 4), out(8, 9);
    for (int i = 0; i < 20; ++i) img[i] = static_cast<unsigned char>(i * 10);
    int ow = 0, oh = 0;
    QelThresholdAndShrink(img.data(), 5, 4, 50, 2, out.data(), &ow, &oh);
    EXPECT_EQ(std::make_pair(ow, oh), std::make_pair(2, 2));
    EXPECT_EQ(out, (Bytes{0, 0, 0, 255, 255, 255, 9, 9}));  // rows 0 and 2, columns 0, 2, 4
    Bytes random = random_grey(7, 5, 40), copy(35), ref(35);  // a step below 2 is a full copy
    QelThresholdAndShrink(random.data(), 7, 5, 90, 1, copy.data(), &ow, &oh);
    QelThreshold(random.data(), 7, 5, 90, ref.data());
    EXPECT_EQ(std::make_pair(ow, oh), std::make_pair(7, 5));
    EXPECT_EQ(copy, ref);
}

}  // namespace

TEST(Binarisation, EveryWidthAndTailFollowsTheRule) {
    // Widths 1..70 cover every tail of the 16- and 32-pixel steps; thresholds at and past the ends.
    for (int w = 1; w <= 70; ++w)
        for (int t : {-1, 0, 1, 128, 255, 256}) {
            SCOPED_TRACE(testing::Message() << w << " T " << t);
            const int h = 3;
            Bytes img = random_grey(w, h, static_cast<unsigned>(w * 7 + t + 1)), out(img.size(), 9);
            QelThreshold(img.data(), w, h, t, out.data());
            Bytes twoLevels = img;
            QelThreshold2V1V2(twoLevels.data(), w, h, t, 5, 250);
            for (size_t i = 0; i < img.size(); ++i) {
                ASSERT_EQ(out[i], img[i] >= t ? 255 : 0);
                ASSERT_EQ(twoLevels[i], img[i] >= t ? 250 : 5);
            }
        }
}

TEST(Binarisation, EveryOutputAlignment) {
    // The 32-pixel steps start where the output reaches a 32-byte boundary: every offset.
    Bytes img = qel_test::random_bytes(200, 3);
    for (int offset = 0; offset < 32; ++offset)
        for (int n : {1, 31, 32, 33, 63, 64, 65, 130}) {
            Bytes out(200, 9);
            QelThreshold(img.data() + offset, n, 1, 100, out.data() + offset);
            for (int i = 0; i < n; ++i)
                ASSERT_EQ(out[offset + i], img[offset + i] >= 100 ? 255 : 0) << offset << " " << n;
            ASSERT_EQ(out[offset + n], 9) << offset << " " << n;
        }
}
