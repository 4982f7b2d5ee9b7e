#include <qel.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace {

using Hist = std::vector<int>;

std::vector<unsigned char> randomImage(int width, int height, unsigned seed) {
    std::mt19937 rng(seed);
    std::uniform_int_distribution<int> level(0, 255);
    std::vector<unsigned char> img(static_cast<size_t>(width) * height);
    for (auto& p : img) p = static_cast<unsigned char>(level(rng));
    return img;
}

Hist oneBin(int level, int count) {
    Hist h(256, 0);
    h[level] = count;
    return h;
}

TEST(HistogramStatistics, BuildersAgreeWithCountingEveryPixel) {
    const int w = 37, h = 23;
    auto img = randomImage(w, h, 1);
    std::vector<unsigned char> mask = randomImage(w, h, 2);
    for (auto& m : mask) m = m < 128 ? 0 : m;
    std::vector<int> left(h), right(h);
    for (int y = 0; y < h; ++y) {
        left[y] = y % 7;
        right[y] = std::max(left[y], w - y % 5);  // right end excluded
    }
    Hist whole(256, -1), rect(256, -1), masked(256, -1), limited(256, -1);
    Hist refWhole(256, 0), refRect(256, 0), refMasked(256, 0), refLimited(256, 0);
    QelGetHistogram(img.data(), w, h, whole.data());
    QelGetHistogramInRect(img.data(), w, 3, 30, 2, 20, rect.data());
    QelGetHistogramByMasked(img.data(), mask.data(), w, 3, 30, 2, 20, masked.data());
    QelGetHistogramByLimited(img.data(), w, 1, 21, left.data(), right.data(), limited.data());
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const int v = img[static_cast<size_t>(y) * w + x];
            ++refWhole[v];
            const bool inRect = x >= 3 && x <= 30 && y >= 2 && y <= 20;
            if (inRect) ++refRect[v];
            if (inRect && mask[static_cast<size_t>(y) * w + x] != 0) ++refMasked[v];
            if (y >= 1 && y <= 21 && x >= left[y] && x < right[y]) ++refLimited[v];
        }
    EXPECT_EQ(whole, refWhole);
    EXPECT_EQ(rect, refRect);
    EXPECT_EQ(masked, refMasked);
    EXPECT_EQ(limited, refLimited);
    long total = 0;
    for (int c : whole) total += c;
    EXPECT_EQ(total, w * h);
}

TEST(HistogramStatistics, LimitedRowWithEqualEndsCountsNothing) {
    auto img = randomImage(8, 2, 3);
    int left[2] = {4, 0}, right[2] = {4, 0};
    Hist hist(256, 9);
    QelGetHistogramByLimited(img.data(), 8, 0, 1, left, right, hist.data());
    EXPECT_EQ(hist, Hist(256, 0));
}

TEST(HistogramStatistics, AllMassInOneBin) {
    Hist h = oneBin(10, 5);
    int largest = 0;
    double mean = -1, dev = -1;
    EXPECT_EQ(QelGetMedianInHistogram(h.data()), 10);
    EXPECT_EQ(QelGetMostInHistogram(h.data(), &largest), 10);
    EXPECT_EQ(largest, 5);
    EXPECT_EQ(QelGetPeakInHistogram(h.data()), 11);  // an isolated peak rounds upward
    EXPECT_EQ(QelGetImageAvrAndDev(h.data(), &mean, &dev), 5);
    EXPECT_EQ(mean, 10.0);
    EXPECT_EQ(dev, 0.0);
}

TEST(HistogramStatistics, MedianSubtractsTheBinAfterTheLastOneAdded) {
    EXPECT_EQ(QelGetMedianInHistogram(oneBin(10, 1).data()), 11);
    EXPECT_EQ(QelGetMedianInHistogram(oneBin(10, 2).data()), 10);
    EXPECT_EQ(QelGetMedianInHistogram(oneBin(255, 2).data()), 255);
    EXPECT_EQ(QelGetMedianInHistogram(Hist(256, 0).data()), 0);
}

TEST(HistogramStatistics, MedianOfOnePixelInTheTopBinStaysAGreyLevel) {
    EXPECT_EQ(QelGetMedianInHistogram(oneBin(255, 1).data()), 255);
}

TEST(HistogramStatistics, PeakOfATwoBinPlateauIsItsUpperBin) {
    Hist h(256, 0);
    h[30] = h[31] = 7;
    EXPECT_EQ(QelGetPeakInHistogram(h.data()), 31);
}

TEST(HistogramStatistics, MostOfAnEmptyHistogramIsBinZero) {
    int largest = -1;
    EXPECT_EQ(QelGetMostInHistogram(Hist(256, 0).data(), &largest), 0);
    EXPECT_EQ(largest, 0);
}

TEST(HistogramStatistics, RatioWalksFromBothEnds) {
    Hist h(256, 0);
    h[20] = 50;
    h[200] = 50;
    EXPECT_EQ(QelGetMaxValueInHistogram(h.data(), 0.0), 200);
    EXPECT_EQ(QelGetMaxValueInHistogram(h.data(), 1.0), -1);
    EXPECT_EQ(QelGetMaxValueInHistogram(h.data(), 0.6), 20);
    EXPECT_EQ(QelGetMinValueInHistogram(h.data(), 0.0), 20);
    EXPECT_EQ(QelGetMinValueInHistogram(h.data(), 0.5), 200);
    EXPECT_EQ(QelGetMinValueInHistogram(h.data(), 1.0), 256);
}

TEST(HistogramStatistics, MeanDeviationAndDifAgreeWithPixelSums) {
    const int w = 64, h = 48;
    auto img = randomImage(w, h, 4);
    double s = 0, sq = 0, ad = 0;
    for (unsigned char p : img) s += p;
    const double mean = s / img.size();
    for (unsigned char p : img) {
        sq += (p - mean) * (p - mean);
        ad += std::fabs(p - mean);
    }
    Hist hist(256);
    QelGetHistogram(img.data(), w, h, hist.data());
    double m = 0, dev = 0, dif = 0, m2 = 0, dev2 = 0, mf = 0, devf = 0;
    EXPECT_EQ(QelGetImageAvrAndDevAndDif(hist.data(), &m, &dev, &dif), w * h);
    EXPECT_EQ(QelGetImageAvrAndDev(img.data(), w, h, &m2, &dev2), w * h);
    EXPECT_EQ(QelGetImageAvrAndDevFast(hist.data(), &mf, &devf), w * h);
    EXPECT_NEAR(m, mean, 1e-9);
    EXPECT_NEAR(dev, std::sqrt(sq / img.size()), 1e-9);
    EXPECT_NEAR(dif, ad / img.size(), 1e-9);
    EXPECT_EQ(m2, m);
    EXPECT_EQ(dev2, dev);
    EXPECT_NEAR(mf, m, 1e-9);
    EXPECT_NEAR(devf, dev, 1e-6);
}

TEST(HistogramStatistics, EmptyHistogramOutputs) {
    Hist empty(256, 0);
    double m = 7, d = 7, a = 7;
    EXPECT_EQ(QelGetImageAvrAndDevAndDif(empty.data(), &m, &d, &a), 0);
    EXPECT_EQ(m, 7);  // nothing written
    EXPECT_EQ(d, 7);
    EXPECT_EQ(a, 7);
    EXPECT_EQ(QelGetImageAvrAndDevFast(empty.data(), &m, &d), 0);
    EXPECT_EQ(m, 7);  // the mean is left, the deviation zeroed
    EXPECT_EQ(d, 0.0);
    EXPECT_EQ(QelGetImageAvrAndDev(empty.data(), &m, &d), 0);
    EXPECT_EQ(m, 0.0);
    int im = 5, id = 5;
    QelGetImageAvrAndDif(empty.data(), &im, &id);
    EXPECT_EQ(im, 0);
    EXPECT_EQ(id, 0);
}

TEST(HistogramStatistics, FastFormWrapsItsSquaresAbove33025CountsInBin255) {
    double m = 0, d = 0;
    EXPECT_EQ(QelGetImageAvrAndDevFast(oneBin(255, 33025).data(), &m, &d), 33025);
    EXPECT_EQ(d, 0.0);
    EXPECT_EQ(QelGetImageAvrAndDevFast(oneBin(255, 40000).data(), &m, &d), 40000);
    EXPECT_TRUE(std::isnan(d));  // the wrapped sum of squares is negative
}

TEST(HistogramStatistics, IntegerMeanAndDifTruncate) {
    Hist h(256, 0);
    h[10] = 1;
    h[20] = 2;  // mean 50 / 3 = 16, dif (6 + 2 × 4) / 3 = 4
    int mean = 0, dif = 0;
    QelGetImageAvrAndDif(h.data(), &mean, &dif);
    EXPECT_EQ(mean, 16);
    EXPECT_EQ(dif, 4);
}

TEST(HistogramStatistics, OrderKeepsEqualCountsInBinOrder) {
    Hist h(256, 0);
    h[3] = h[7] = 4;
    std::vector<int> order(256, -1);
    EXPECT_EQ(QelHistogramOrder(h.data(), order.data()), 2);
    EXPECT_EQ(order[0], 3);
    EXPECT_EQ(order[1], 7);
}

TEST(HistogramStatistics, OrderIsAPermutationByFallingCount) {
    auto img = randomImage(20, 20, 5);
    Hist h(256);
    QelGetHistogram(img.data(), 20, 20, h.data());
    std::vector<int> order(256);
    const int nonEmpty = QelHistogramOrder(h.data(), order.data());
    EXPECT_EQ(nonEmpty, 256 - std::count(h.begin(), h.end(), 0));
    for (int i = 1; i < 256; ++i) EXPECT_GE(h[order[i - 1]], h[order[i]]);
    std::vector<int> sorted = order;
    std::sort(sorted.begin(), sorted.end());
    for (int i = 0; i < 256; ++i) EXPECT_EQ(sorted[i], i);
}

TEST(HistogramStatistics, DrawingHangsBarsFromTheTopRow) {
    int hist[4] = {9, 0, 4, 1};  // largest 9, height 10: one row per count
    std::vector<unsigned char> img(4 * 10, 7);
    QelDrawHistogram2Img(hist, 4, img.data(), 4, 10);
    for (int y = 0; y < 10; ++y) {
        EXPECT_EQ(img[y * 4 + 0], y < 9 ? 255 : 0) << y;
        EXPECT_EQ(img[y * 4 + 1], 0) << y;
        EXPECT_EQ(img[y * 4 + 2], y < 4 ? 255 : 0) << y;
        EXPECT_EQ(img[y * 4 + 3], y < 1 ? 255 : 0) << y;
    }
}

TEST(HistogramStatistics, DrawingSpreadsBinsOverTheWidth) {
    Hist h(256);
    for (int i = 0; i < 256; ++i) h[i] = 1 + i % 5;  // every bin non-empty, largest 5
    std::vector<unsigned char> plot(300 * 40, 7);
    QelDrawHistogram2Img(h.data(), 256, plot.data(), 300, 40);
    for (unsigned char p : plot) ASSERT_TRUE(p == 0 || p == 255);
    for (int x = 0; x < 300; ++x) {
        EXPECT_EQ(plot[x], 255) << x;              // every column belongs to a non-empty bin
        EXPECT_EQ(plot[33 * 300 + x], 0) << x;  // the largest count, 5, gives 5 / (6 / 40) + 0.5 = 33 rows
    }
}

}  // namespace
