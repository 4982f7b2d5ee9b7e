#include "histogram/histogram_test_helpers.h"

#include <qel.h>

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

namespace {

using namespace qel_test;

TEST(HistogramStatistics, BuildersAgreeWithCountingEveryPixel) {
    const int w = 37, h = 23;
    Bytes img = random_grey(w, h, 1), mask = random_levels(static_cast<size_t>(w * h), 2, 0, 1);
    std::vector<int> left(h), right(h);
    for (int y = 0; y < h; ++y)  // the right end is excluded; equal ends count nothing
        left[y] = y % 7, right[y] = y % 3 == 0 ? left[y] : w - y % 5;
    auto reference = [&](auto counted) {
        Hist r(256, 0);
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) r[img[static_cast<size_t>(y * w + x)]] += counted(x, y);
        return r;
    };
    auto inRect = [](int x, int y) { return x >= 3 && x <= 30 && y >= 2 && y <= 20; };
    Hist hist(256, -1);  // reused: each builder clears what the last one left
    QelGetHistogram(img.data(), w, h, hist.data());
    EXPECT_EQ(hist, reference([](int, int) { return true; }));
    EXPECT_EQ(std::accumulate(hist.begin(), hist.end(), 0), w * h);
    QelGetHistogramInRect(img.data(), w, 3, 30, 2, 20, hist.data());
    EXPECT_EQ(hist, reference(inRect));
    QelGetHistogramByMasked(img.data(), mask.data(), w, 3, 30, 2, 20, hist.data());
    EXPECT_EQ(hist, reference([&](int x, int y) { return inRect(x, y) && mask[static_cast<size_t>(y * w + x)]; }));
    QelGetHistogramByLimited(img.data(), w, 1, 21, left.data(), right.data(), hist.data());
    EXPECT_EQ(hist, reference([&](int x, int y) { return y >= 1 && y <= 21 && x >= left[y] && x < right[y]; }));
}

TEST(HistogramStatistics, MedianMostAndPeakWorkedValues) {
    // Median: the bin after the last one added is subtracted, so one pixel in bin 10 gives 11.
    EXPECT_EQ(QelGetMedianInHistogram(levels({{10, 5}}).data()), 10);
    EXPECT_EQ(QelGetMedianInHistogram(levels({{10, 2}}).data()), 10);
    EXPECT_EQ(QelGetMedianInHistogram(levels({{10, 1}}).data()), 11);
    EXPECT_EQ(QelGetMedianInHistogram(levels({{255, 2}}).data()), 255);
    EXPECT_EQ(QelGetMedianInHistogram(levels({{255, 1}}).data()), 255);  // stays a grey level
    EXPECT_EQ(QelGetMedianInHistogram(Hist(256, 0).data()), 0);
    int largest = -1;
    EXPECT_EQ(QelGetMostInHistogram(levels({{10, 5}, {20, 5}}).data(), &largest), 10);  // the first maximum
    EXPECT_EQ(largest, 5);
    EXPECT_EQ(QelGetMostInHistogram(Hist(256, 0).data(), &largest), 0);
    EXPECT_EQ(largest, 0);
    // Peak: the plateau centre rounded upward; an isolated peak gives p + 1.
    EXPECT_EQ(QelGetPeakInHistogram(levels({{10, 5}}).data()), 11);
    EXPECT_EQ(QelGetPeakInHistogram(levels({{30, 7}, {31, 7}}).data()), 31);
    double mean = -1, dev = -1;
    EXPECT_EQ(QelGetImageAvrAndDev(levels({{10, 5}}).data(), &mean, &dev), 5);
    EXPECT_EQ(mean, 10.0);
    EXPECT_EQ(dev, 0.0);
}

TEST(HistogramStatistics, RatioWalksFromBothEnds) {
    Hist h = levels({{20, 50}, {200, 50}});
    const struct { double ratio; int max, min; } cases[] = {{0.0, 200, 20}, {0.5, 20, 200}, {1.0, -1, 256}};
    for (const auto& c : cases) {
        EXPECT_EQ(QelGetMaxValueInHistogram(h.data(), c.ratio), c.max) << c.ratio;
        EXPECT_EQ(QelGetMinValueInHistogram(h.data(), c.ratio), c.min) << c.ratio;
    }
}

TEST(HistogramStatistics, MeanDeviationAndDifAgreeWithPixelSums) {
    const int w = 64, h = 48;
    Bytes img = random_grey(w, h, 4);
    double s = 0, sq = 0, ad = 0;
    for (unsigned char p : img) s += p;
    const double mean = s / img.size();
    for (unsigned char p : img) sq += (p - mean) * (p - mean), ad += std::fabs(p - mean);
    Hist hist(256);
    QelGetHistogram(img.data(), w, h, hist.data());
    double m = 0, dev = 0, dif = 0, m2 = 0, dev2 = 0, mf = 0, devf = 0;
    EXPECT_EQ(QelGetImageAvrAndDevAndDif(hist.data(), &m, &dev, &dif), w * h);
    EXPECT_EQ(QelGetImageAvrAndDev(img.data(), w, h, &m2, &dev2), w * h);
    EXPECT_EQ(QelGetImageAvrAndDevFast(hist.data(), &mf, &devf), w * h);
    EXPECT_NEAR(m, mean, 1e-9);
    EXPECT_NEAR(dev, std::sqrt(sq / img.size()), 1e-9);
    EXPECT_NEAR(dif, ad / img.size(), 1e-9);
    EXPECT_TRUE(m2 == m && dev2 == dev);
    EXPECT_NEAR(mf, m, 1e-9);
    EXPECT_NEAR(devf, dev, 1e-6);
    int im = 0, id = 0;  // integers, truncated: mean 50 / 3, dif (6 + 2 × 4) / 3
    QelGetImageAvrAndDif(levels({{10, 1}, {20, 2}}).data(), &im, &id);
    EXPECT_EQ(std::make_pair(im, id), std::make_pair(16, 4));
}

TEST(HistogramStatistics, EmptyAndOverflowingHistograms) {
    Hist empty(256, 0);
    double m = 7, d = 7, a = 7;
    EXPECT_EQ(QelGetImageAvrAndDevAndDif(empty.data(), &m, &d, &a), 0);
    EXPECT_TRUE(m == 7 && d == 7 && a == 7);  // nothing written
    EXPECT_EQ(QelGetImageAvrAndDevFast(empty.data(), &m, &d), 0);
    EXPECT_TRUE(m == 7 && d == 0.0);  // the mean is left, the deviation zeroed
    EXPECT_EQ(QelGetImageAvrAndDev(empty.data(), &m, &d), 0);
    EXPECT_EQ(m, 0.0);
    int im = 5, id = 5;
    QelGetImageAvrAndDif(empty.data(), &im, &id);
    EXPECT_TRUE(im == 0 && id == 0);
    // The fast form's 32-bit squares wrap above 33,025 counts in bin 255.
    EXPECT_EQ(QelGetImageAvrAndDevFast(levels({{255, 33025}}).data(), &m, &d), 33025);
    EXPECT_EQ(d, 0.0);
    EXPECT_EQ(QelGetImageAvrAndDevFast(levels({{255, 40000}}).data(), &m, &d), 40000);
    EXPECT_TRUE(std::isnan(d));
}

TEST(HistogramStatistics, OrderIsAPermutationByFallingCountKeepingEqualCountsInBinOrder) {
    std::vector<int> order(256, -1);
    EXPECT_EQ(QelHistogramOrder(levels({{3, 4}, {7, 4}}).data(), order.data()), 2);
    EXPECT_TRUE(order[0] == 3 && order[1] == 7);
    Bytes img = random_grey(20, 20, 5);
    Hist h(256);
    QelGetHistogram(img.data(), 20, 20, h.data());
    EXPECT_EQ(QelHistogramOrder(h.data(), order.data()), 256 - std::count(h.begin(), h.end(), 0));
    for (int i = 1; i < 256; ++i) EXPECT_GE(h[order[i - 1]], h[order[i]]);
    std::sort(order.begin(), order.end());
    for (int i = 0; i < 256; ++i) EXPECT_EQ(order[i], i);
}

TEST(HistogramStatistics, DrawingHangsBarsFromTheTopRowAcrossTheWidth) {
    int hist[4] = {9, 0, 4, 1};  // largest 9, height 10: one row per count
    Bytes img(4 * 10, 7);
    QelDrawHistogram2Img(hist, 4, img.data(), 4, 10);
    for (int y = 0; y < 10; ++y)
        for (int x = 0; x < 4; ++x) EXPECT_EQ(img[y * 4 + x], y < hist[x] ? 255 : 0) << x << "," << y;
    Hist h(256);
    for (int i = 0; i < 256; ++i) h[i] = 1 + i % 5;  // every bin non-empty, largest 5
    Bytes plot(300 * 40, 7);
    QelDrawHistogram2Img(h.data(), 256, plot.data(), 300, 40);
    EXPECT_TRUE(only_binary(plot));
    for (int x = 0; x < 300; ++x) {
        EXPECT_EQ(plot[x], 255) << x;           // every column belongs to a non-empty bin
        EXPECT_EQ(plot[33 * 300 + x], 0) << x;  // the largest count, 5, gives 5 / (6 / 40) + 0.5 = 33 rows
    }
}

}  // namespace
