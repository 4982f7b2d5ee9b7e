#include "histogram/histogram_test_helpers.h"

#include <qel.h>

#include <gtest/gtest.h>

#include <random>
#include <tuple>

namespace {

using namespace qel_test;

// Checks that an in-place operation mapped each level to one new level, keeping their order:
// sorted by (old, new), the new levels never fall and change only where the old ones do.
void expect_monotone_level_map(const Bytes& before, const Bytes& after) {
    std::vector<std::pair<int, int>> pairs;
    for (size_t i = 0; i < before.size(); ++i) pairs.emplace_back(before[i], after[i]);
    std::sort(pairs.begin(), pairs.end());
    for (size_t i = 1; i < pairs.size(); ++i) {
        const auto &previous = pairs[i - 1], &current = pairs[i];
        EXPECT_GE(current.second, previous.second) << "level " << current.first;
        EXPECT_TRUE(current.first > previous.first || current.second == previous.second) << "level " << current.first;
    }
}

TEST(Equalize, WorkedByHand) {
    EXPECT_EQ(after(QelHistogramEqualizeFast, {10, 20, 10, 20, 20, 10}, 3, 2), (Bytes{127, 255, 127, 255, 255, 127}));
    // A level that moves on to the next target bin ends its interval there: 20 spans bins 1..2 and
    // 30 spans 2..3; the value is (start + end) / 2 × 255 / 4, truncated.
    EXPECT_EQ(after(QelHistogramEqualizeStandard, {10, 20, 30, 40}, 2, 2), (Bytes{0, 95, 159, 191}));
    EXPECT_EQ(after(QelHistogramEqualizeStandard, Bytes(12, 77), 4, 3), Bytes(12, 0));  // one level
    // The flat target holds 3 × 1 pixels, one fewer than the image: level 2 is never reached and
    // joins the last target bin, as level 1 does.
    EXPECT_EQ(after(QelHistogramEqualizeStandard, {0, 0, 1, 2}, 4, 1), (Bytes{42, 42, 170, 170}));
    // Matching: level 0 fills target bin 100 and runs on over the empty bins up to 199. An empty
    // target leaves the image alone.
    EXPECT_EQ(after(QelHistogramNormalization, {0, 255, 0, 255}, 2, 2, levels({{100, 2}, {200, 2}}).data()),
              (Bytes{149, 200, 149, 200}));
    EXPECT_EQ(after(QelHistogramNormalization, {1, 2, 3, 4}, 2, 2, Hist(256, 0).data()), (Bytes{1, 2, 3, 4}));
    // A target holding more than the image: the walk stops when the source runs out, and the last
    // source level ends at the last target level (255 spans 20..30, not 20..29).
    EXPECT_EQ(after(QelHistogramNormalization, {0, 255}, 2, 1, levels({{10, 1}, {20, 1}, {30, 5}}).data()),
              (Bytes{14, 25}));
}

TEST(Equalize, RandomImagesMapLevelsMonotonically) {
    Hist tooMuch = levels({{60, 1000}, {90, 1000}});  // far more than the image holds
    for (unsigned seed = 1; seed <= 10; ++seed) {
        SCOPED_TRACE(seed);
        const int w = 5 + static_cast<int>(seed) * 3, h = 7;
        const Bytes img = random_levels(static_cast<size_t>(w * h), seed, 30, 40 + static_cast<int>(seed) * 20);
        const Bytes fast = after(QelHistogramEqualizeFast, img, w, h);
        const Bytes standard = after(QelHistogramEqualizeStandard, img, w, h);
        const Bytes matched = after(QelHistogramNormalization, img, w, h, tooMuch.data());
        for (const Bytes* out : {&fast, &standard, &matched}) expect_monotone_level_map(img, *out);
        EXPECT_EQ(*std::max_element(fast.begin(), fast.end()), 255);  // the brightest level takes the whole count
        const auto [lo, hi] = std::minmax_element(matched.begin(), matched.end());
        EXPECT_TRUE(*lo >= 60 && *hi <= 90);  // mismatched mass stays in the target range
    }
    Bytes img = random_grey(64, 64, 3);  // every level present, matched to its own histogram
    std::copy_n(every_level().begin(), 256, img.begin());
    Hist own(256);
    QelGetHistogram(img.data(), 64, 64, own.data());
    EXPECT_EQ(after(QelHistogramNormalization, img, 64, 64, own.data()), img);
}

TEST(Smooth, AverageShrinksTheWindowAndDivisorAtTheEnds) {
    std::mt19937 rng(9);
    Hist hist(256), out(256);
    for (int& h : hist) h = static_cast<int>(rng() % 5000);
    hist[0] = 7, hist[1] = 4, hist[254] = 9, hist[255] = 2;
    QelHistogramAverageSmooth(hist.data(), 1, out.data());
    EXPECT_EQ(std::make_pair(out[0], out[255]), std::make_pair((7 + 4) / 2, (9 + 2) / 2));
    for (int radius : {0, 1, 3, 40, 300}) {
        QelHistogramAverageSmooth(hist.data(), radius, out.data());
        for (int j = 0; j < 256; ++j) {
            long long sum = 0, n = 0;
            for (int i = std::max(j - radius, 0); i <= std::min(j + radius, 255); ++i) sum += hist[i], ++n;
            ASSERT_EQ(out[j], sum / n) << "radius " << radius << " bin " << j;
        }
    }
}

TEST(Smooth, GaussianWorkedByHand) {
    // sigma 1, smallest weight 0.1: weights 1024, 621, 139 (K = 3). Inner bins divide by one side
    // of the weights, 1784; edge bins by the weights they use.
    Hist out(256, -1);
    EXPECT_EQ(QelHistogramGaussianSmooth(levels({{100, 1000}}).data(), 0, 1.0, 0.1, out.data()), 0);
    Hist expected(256, 0);
    expected[100] = 1000 * 1024 / 1784;                                        // 573
    expected[99] = expected[101] = 1000 * 621 / (1024 + 2 * 621 + 2 * 139);  // 244
    expected[98] = expected[102] = 1000 * 139 / (1024 + 2 * 621 + 139);      // 57
    EXPECT_EQ(out, expected);
    Hist run(256, 0);  // a flat run comes out larger than itself: 100 × (1024 + 2 × 760) / 1784
    std::fill(run.begin() + 50, run.begin() + 201, 100);
    EXPECT_EQ(QelHistogramGaussianSmooth(run.data(), 0, 1.0, 0.1, out.data()), 150);
    EXPECT_EQ(std::make_pair(out[125], out[30]), std::make_pair(142, 0));  // 30 lies outside: copied
    Hist empty(256, 0);
    EXPECT_EQ(QelHistogramGaussianSmooth(empty.data(), 0, 2.0, 0.01, out.data()), 0);
    EXPECT_EQ(out, empty);  // an empty histogram is copied
}

Hist marks(Hist hist) {
    Hist m(hist.size());
    QelSetPeakTo100ValleyTo_100(hist.data(), static_cast<int>(hist.size()), m.data());
    return m;
}

std::pair<int, int> twoPeaks(Hist hist, int minDistance) {
    std::pair<int, int> peaks{-7, -7};
    QelFindTwoPeaks(hist.data(), minDistance, &peaks.first, &peaks.second);
    return peaks;
}

TEST(Peaks, WorkedHistograms) {
    // Rise ends at 2, plateau ends at 4: peak at 3; the fall still open at the end closes at 6.
    EXPECT_EQ(marks({0, 5, 10, 10, 10, 3, 0}), (Hist{-100, 1, 1, 100, 0, -1, -100}));
    EXPECT_EQ(marks({9, 5, 5}), (Hist{100, -100, 0}));  // bin 0 is compared with bin 1
    const Hist three = levels({{50, 100}, {60, 90}, {200, 80}});
    EXPECT_EQ(twoPeaks(three, 30), std::make_pair(50, 200));
    EXPECT_EQ(twoPeaks(three, 5), std::make_pair(50, 60));
    EXPECT_EQ(twoPeaks(levels({{77, 12}}), 10), std::make_pair(77, 77));       // one peak is both
    EXPECT_EQ(twoPeaks(levels({{40, 9}, {90, 9}}), 10), std::make_pair(40, 90));  // the first of equal peaks
    EXPECT_EQ(twoPeaks(Hist(256, 0), 10), std::make_pair(-7, -7));             // none: nothing written
}

// QelIsHighContrastImg's result, dark peak, bright peak and depth.
std::tuple<bool, int, int, double> contrast(Hist hist, int split, int window, int minDistance, double minDepth) {
    int dark = -1, bright = -1;
    double depth = -1;
    const bool r = QelIsHighContrastImg(hist.data(), split, window, minDistance, minDepth, &dark, &bright, &depth);
    return {r, dark, bright, depth};
}

TEST(Contrast, WorkedHistograms) {
    Hist floor(256, 0);  // two spikes over a flat floor
    std::fill(floor.begin() + 51, floor.begin() + 200, 10);
    floor[50] = floor[200] = 100;
    const double chord = 200 * 0.5 * 151, mass = 200 + 149 * 10;
    EXPECT_EQ(contrast(floor, 128, 1, 100, 1.0), std::make_tuple(true, 50, 200, (chord - mass) / mass));
    EXPECT_FALSE(std::get<0>(contrast(floor, 128, 1, 100, 10.0)));
    // Peaks too close: false with depth 0.
    EXPECT_EQ(contrast(levels({{100, 50}, {140, 50}}), 120, 0, 60, 0.0), std::make_tuple(false, 100, 140, 0.0));
    // Window 3: s[254] gets no mean and counts 0, so the bright peak is 253, not 254; on the dark
    // side s[19..21] tie and the highest wins.
    EXPECT_EQ(contrast(levels({{20, 600}, {254, 900}, {255, 30}}), 128, 3, 300, 0.0),
              std::make_tuple(false, 21, 253, 0.0));
    // Equal maxima: the dark side keeps the higher position, the bright side the lower.
    EXPECT_EQ(contrast(levels({{10, 40}, {30, 40}, {150, 40}, {220, 40}}), 100, 0, 200, 0.0),
              std::make_tuple(false, 30, 150, 0.0));
    // No mass between the peaks: no depth, not contrast.
    EXPECT_EQ(contrast(Hist(256, 0), 128, 5, 0, -1.0), std::make_tuple(false, 0, 0, 0.0));
}

}  // namespace
