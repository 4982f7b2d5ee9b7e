// One-dimensional data utilities on hand-worked sequences, with exact-size arrays so that the
// sanitizer build catches any element read or written past them.
#include <qel.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <random>
#include <vector>

namespace {

using Ints = std::vector<int>;
using Reals = std::vector<double>;

Ints filtered(void (*filter)(int*, int, int, int*), Ints in, int half) {
    Ints out(in.size(), -99);
    filter(in.data(), static_cast<int>(in.size()), half, out.data());
    return out;
}

TEST(Data1DFilters, HandWorkedWindows) {
    // Means of full windows divided as integers (toward zero), the ends repeating the first and
    // the last full window.
    EXPECT_EQ(filtered(Qel1DAverageFilter, {1, 2, 3, 4, 5, 6, 7}, 1), (Ints{2, 2, 3, 4, 5, 6, 6}));
    EXPECT_EQ(filtered(Qel1DAverageFilter, {0, 0, 1, 1, 1, 5}, 1), (Ints{0, 0, 0, 1, 2, 2}));
    EXPECT_EQ(filtered(Qel1DAverageFilter, {-1, -1, 0, 3}, 1), (Ints{0, 0, 0, 0}));
    EXPECT_EQ(filtered(Qel1DAverageFilter, {9, 1, 2, 3, 4}, 2), (Ints{3, 3, 3, 3, 3}));
    EXPECT_EQ(filtered(Qel1DAverageFilter, {4, -7, 100, 3}, 0), (Ints{4, -7, 100, 3}));  // half 0 copies
    EXPECT_EQ(filtered(Qel1DAverageFilter, {1, 2, 3, 4, 5, 6, 7}, -1), (Ints{2, 2, 3, 4, 5, 6, 6}));
    // Majority: 1 when more than half of the window is 1.
    EXPECT_EQ(filtered(QelBin1DMedianFilter, {1, 0, 1, 1, 0, 0, 0}, 1), (Ints{1, 1, 1, 1, 0, 0, 0}));
    EXPECT_EQ(filtered(QelBin1DMedianFilter, {0, 1, 0, 1, 1}, 2), (Ints{1, 1, 1, 1, 1}));
    // Data shorter than the window: nothing written.
    EXPECT_EQ(filtered(Qel1DAverageFilter, {5, 6}, 1), (Ints{-99, -99}));
    EXPECT_EQ(filtered(QelBin1DMedianFilter, {1, 1, 1, 1}, INT_MIN), (Ints{-99, -99, -99, -99}));
    EXPECT_EQ(filtered(Qel1DAverageFilter, {}, 0), Ints{});
}

TEST(Data1DFilters, AgreeWithClampedCentredWindows) {
    // Every output is the window centred at i moved inside the data: centre clamp(i, h, n−1−h).
    std::mt19937 rng(7);
    for (int n = 1; n <= 40; ++n)
        for (int half = 0; 2 * half + 1 <= n; ++half) {
            Ints in(n), bits(n);
            for (int i = 0; i < n; ++i) in[i] = static_cast<int>(rng() % 2001) - 1000, bits[i] = rng() % 2;
            const Ints mean = filtered(Qel1DAverageFilter, in, half), major = filtered(QelBin1DMedianFilter, bits, half);
            const int m = 2 * half + 1;
            for (int i = 0; i < n; ++i) {
                const int c = std::clamp(i, half, n - 1 - half);
                int s = 0, b = 0;
                for (int k = c - half; k <= c + half; ++k) s += in[k], b += bits[k];
                ASSERT_EQ(mean[i], s / m) << n << " " << half << " " << i;
                ASSERT_EQ(major[i], 2 * b > m ? 1 : 0) << n << " " << half << " " << i;
            }
        }
}

TEST(Data1DStatistics, MeansSpreadsAndMaxima) {
    Ints d = {2, 4, 4, 4, 5, 5, 7, 9};
    double mean = -1, dev = -1;
    EXPECT_EQ(QelDataAvrAndDevAndReturnMax(d.data(), 8, &mean, &dev), 9);
    EXPECT_DOUBLE_EQ(mean, 5.0);
    EXPECT_DOUBLE_EQ(dev, 2.0);
    mean = dev = -1;
    EXPECT_EQ(QelDataAvrAndDevAndReturnSum(d.data(), 8, &mean, &dev), 40);
    EXPECT_DOUBLE_EQ(mean, 5.0);
    EXPECT_DOUBLE_EQ(dev, 2.0);
    QelDataAvrAndDif(d.data(), 8, &mean, &dev);
    EXPECT_DOUBLE_EQ(mean, 5.0);
    EXPECT_DOUBLE_EQ(dev, 1.5);  // (3 + 1 + 1 + 1 + 0 + 0 + 2 + 4) / 8

    // The first element starts the maximum, so all-negative data gives its largest value.
    Ints neg = {-5, -2, -9};
    EXPECT_EQ(QelDataAvrAndDevAndReturnMax(neg.data(), 3, &mean, &dev), -2);
    Ints ties = {3, 7, 1, 7};
    EXPECT_EQ(QelDataMaxDataPos(ties.data(), 4), 1);
    EXPECT_EQ(QelDataMaxDataValue(ties.data(), 4), 7);
    EXPECT_EQ(QelDataMaxDataPos(neg.data(), 3), 1);

    // Sums past 32 bits: the mean from the exact sum, the returned sum wrapped.
    Ints big = {INT_MAX, INT_MAX};
    EXPECT_EQ(QelDataAvrAndDevAndReturnSum(big.data(), 2, &mean, &dev), -2);
    EXPECT_DOUBLE_EQ(mean, INT_MAX);
    EXPECT_DOUBLE_EQ(dev, 0.0);

    // No data: zeros, nothing read.
    EXPECT_EQ(QelDataAvrAndDevAndReturnMax(nullptr, 0, &mean, &dev), 0);
    EXPECT_EQ(mean + dev, 0.0);
    EXPECT_EQ(QelDataAvrAndDevAndReturnSum(nullptr, -3, &mean, &dev), 0);
    QelDataAvrAndDif(nullptr, 0, &mean, &dev);
    EXPECT_EQ(mean + dev, 0.0);
    EXPECT_EQ(QelDataMaxDataPos(nullptr, 0), 0);
    EXPECT_EQ(QelDataMaxDataValue(nullptr, 0), 0);
}

TEST(Data1DWindows, MovingWindowMaxima) {
    double best = -1;
    int pos = -1;
    // A constant array reports the middle of its run of equal windows: 0 + 4/2 + 6/2.
    Ints flat(10, 10);
    EXPECT_TRUE(QelDataMaxAvrAndPosInMovingWindow(flat.data(), 10, 4, &best, &pos));
    EXPECT_DOUBLE_EQ(best, 10.0);
    EXPECT_EQ(pos, 5);
    // Ties need not be adjacent: windows 0, 2 and 4 tie, so the middle falls on a 0.
    Ints comb = {5, 0, 5, 0, 5};
    EXPECT_TRUE(QelDataMaxAvrAndPosInMovingWindow(comb.data(), 5, 1, &best, &pos));
    EXPECT_EQ(pos, 1);
    EXPECT_EQ(comb[pos], 0);
    // A strictly larger window resets the count; the mean is not truncated.
    Ints rise = {1, 2, 2, 1, 4, 3, 4, 3};
    EXPECT_TRUE(QelDataMaxAvrAndPosInMovingWindow(rise.data(), 8, 2, &best, &pos));
    EXPECT_DOUBLE_EQ(best, 3.5);
    EXPECT_EQ(pos, 4 + 1 + 1);  // windows at 4, 5 and 6 sum to 7

    Reals step = {0, 0, 0, 3, 3, 3, 0};
    EXPECT_TRUE(QelDataMaxDevAndPosInMovingWindow(step.data(), 7, 2, &best, &pos));
    EXPECT_DOUBLE_EQ(best, 1.5);  // sqrt(4.5 / 2), first at window 2
    EXPECT_EQ(pos, 3);
    Reals r = {1, 4, 2, 8, 8, 3};
    EXPECT_TRUE(QelDataMaxDifAndPosInMovingWindow(r.data(), 6, 3, &best, &pos));
    EXPECT_DOUBLE_EQ(best, 6.0);  // windows 1 and 2 both span 6: the first wins
    EXPECT_EQ(pos, 2);
    // Flat data: no window beats 0, so start 0 stands.
    Reals calm(5, 2.0);
    EXPECT_TRUE(QelDataMaxDifAndPosInMovingWindow(calm.data(), 5, 3, &best, &pos));
    EXPECT_EQ(best, 0.0);
    EXPECT_EQ(pos, 1);
    EXPECT_TRUE(QelDataMaxDevAndPosInMovingWindow(calm.data(), 5, 4, &best, &pos));
    EXPECT_EQ(pos, 2);

    // Refusals: no data, a window longer than the data, an empty window; outputs 0.
    const int refused[][2] = {{0, 0}, {0, 1}, {3, 4}, {5, 0}, {5, -2}};
    for (const auto& c : refused) {
        best = -1, pos = -1;
        EXPECT_FALSE(QelDataMaxAvrAndPosInMovingWindow(flat.data(), c[0], c[1], &best, &pos));
        EXPECT_EQ(best + pos, 0.0);
        best = -1, pos = -1;
        EXPECT_FALSE(QelDataMaxDevAndPosInMovingWindow(r.data(), c[0], c[1], &best, &pos));
        EXPECT_EQ(best + pos, 0.0);
        best = -1, pos = -1;
        EXPECT_FALSE(QelDataMaxDifAndPosInMovingWindow(r.data(), c[0], c[1], &best, &pos));
        EXPECT_EQ(best + pos, 0.0);
    }
}

// Resamples in (given one element past its data, as the contract asks) to nOut values.
Ints resampled(Ints in, int nOut, int pastEnd = 12345) {
    const int nIn = static_cast<int>(in.size());
    in.push_back(pastEnd);
    Ints out(nOut, -1);
    EXPECT_TRUE(QelDataLinearInterpolattion(in.data(), nIn, out.data(), nOut));
    return out;
}

TEST(Data1DResampling, LinearInterpolation) {
    EXPECT_EQ(resampled({0, 10}, 3), (Ints{0, 5, 10}));
    EXPECT_EQ(resampled({0, 10, 20, 30, 40}, 3), (Ints{0, 20, 40}));
    EXPECT_EQ(resampled({0, 10}, 4), (Ints{0, 3, 6, 10}));  // truncated, not rounded
    EXPECT_EQ(resampled({7, -3, 5}, 3), (Ints{7, -3, 5}));
    EXPECT_EQ(resampled({0, 9, 3}, 2), (Ints{0, 3}));
    // The element past the data is read with weight 0 at the last output.
    EXPECT_EQ(resampled({4, 8}, 2, INT_MIN), resampled({4, 8}, 2, INT_MAX));
    // Positions are i · step in doubles: 49 · (1 / 49) falls just short of 1, so the last of 50
    // outputs from (0, 10) is trunc(9.999…) = 9, not 10.
    EXPECT_EQ(resampled({0, 10}, 50).back(), 9);
    // Fewer than two values on either side: false, nothing written.
    Ints in = {1, 2, 3}, out = {-1, -1, -1};
    EXPECT_FALSE(QelDataLinearInterpolattion(in.data(), 1, out.data(), 3));
    EXPECT_FALSE(QelDataLinearInterpolattion(in.data(), 2, out.data(), 1));
    EXPECT_EQ(out, (Ints{-1, -1, -1}));
}

TEST(Data1DPeaks, HighestFirstAndApart) {
    Reals d = {0, 5, 1, 7, 7, 7, 2, 9, 0, 3};
    Reals values(6, -1);
    Ints pos(6, -1);
    EXPECT_TRUE(QelDataFindPeaks(d.data(), 10, 1, values.data(), pos.data(), 6));
    // 9 at 7 (excludes 6..8); the run of 7s at 3..5, cut by the exclusion at 6, centred at 4; 5 at 1;
    // 3 at 9, its exclusion clipped at the end; then every sample is excluded and the rest stay 0.
    EXPECT_EQ(values, (Reals{9, 7, 5, 3, 0, 0}));
    EXPECT_EQ(pos, (Ints{7, 4, 1, 9, 0, 0}));

    // A run longer than the exclusion window yields several peaks from the same plateau.
    Reals plateau(5, 5.0);
    Reals v3(3);
    Ints p3(3);
    EXPECT_TRUE(QelDataFindPeaks(plateau.data(), 5, 0, v3.data(), p3.data(), 3));
    EXPECT_EQ(p3, (Ints{2, 0, 1}));
    EXPECT_EQ(v3, (Reals{5, 5, 5}));

    // More than 4096 samples: false, the outputs zeroed all the same.
    Reals many(4097, 1.0);
    values.assign(6, -1), pos.assign(6, -1);
    EXPECT_FALSE(QelDataFindPeaks(many.data(), 4097, 1, values.data(), pos.data(), 6));
    EXPECT_EQ(values, Reals(6, 0.0));
    EXPECT_EQ(pos, Ints(6, 0));
    EXPECT_TRUE(QelDataFindPeaks(many.data(), 4096, 5000, values.data(), pos.data(), 2));
    EXPECT_EQ(pos[0], 2047);  // the whole plateau, its middle; the exclusion covers everything
    EXPECT_EQ(values[1], 0.0);
}

TEST(Data1DDeletion, KeepsPairsInTheWeightRange) {
    Ints values = {1, 2, 3, 4, 5}, weights = {0, 5, 10, 5, 20};
    EXPECT_EQ(QelpDataDeleteByWeightReturnNum(values.data(), weights.data(), 5, 5, 10), 3);
    EXPECT_EQ(values, (Ints{2, 3, 4, 0, 0}));
    EXPECT_EQ(weights, (Ints{5, 10, 5, 0, 0}));
    EXPECT_EQ(QelpDataDeleteByWeightReturnNum(values.data(), weights.data(), 5, 11, 19), 0);
    EXPECT_EQ(values, Ints(5, 0));
    EXPECT_EQ(weights, Ints(5, 0));
}

}  // namespace
