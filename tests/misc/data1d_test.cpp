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

TEST(Data1D, FiltersRepeatTheOuterFullWindowsAtTheEnds) {
    EXPECT_EQ(filtered(Qel1DAverageFilter, {1, 2, 3, 4, 5, 6, 7}, 1), (Ints{2, 2, 3, 4, 5, 6, 6}));
    EXPECT_EQ(filtered(Qel1DAverageFilter, {-1, -1, 0, 3}, -1), (Ints{0, 0, 0, 0}));  // −2/3 truncates to 0
    EXPECT_EQ(filtered(Qel1DAverageFilter, {4, -7, 100}, 0), (Ints{4, -7, 100}));   // half 0 copies
    EXPECT_EQ(filtered(QelBin1DMedianFilter, {1, 0, 1, 1, 0, 0, 0}, 1), (Ints{1, 1, 1, 1, 0, 0, 0}));
    EXPECT_EQ(filtered(Qel1DAverageFilter, {5, 6}, 1), (Ints{-99, -99}));  // shorter than the window
    EXPECT_EQ(filtered(QelBin1DMedianFilter, {1, 1, 1}, INT_MIN), (Ints{-99, -99, -99}));
    // Random data: output i is the window centred at clamp(i, half, n − 1 − half).
    std::mt19937 rng(7);
    for (int n = 1; n <= 30; ++n)
        for (int half = 0; 2 * half + 1 <= n; ++half) {
            Ints in(n), bits(n);
            for (int i = 0; i < n; ++i) in[i] = static_cast<int>(rng() % 2001) - 1000, bits[i] = rng() % 2;
            const Ints mean = filtered(Qel1DAverageFilter, in, half), major = filtered(QelBin1DMedianFilter, bits, half);
            for (int i = 0, m = 2 * half + 1; i < n; ++i) {
                const int c = std::clamp(i, half, n - 1 - half);
                int s = 0, b = 0;
                for (int k = c - half; k <= c + half; ++k) s += in[k], b += bits[k];
                ASSERT_EQ(mean[i], s / m) << n << " " << half << " " << i;
                ASSERT_EQ(major[i], 2 * b > m ? 1 : 0) << n << " " << half << " " << i;
            }
        }
}

TEST(Data1D, MeansSpreadsAndMaxima) {
    Ints d = {2, 4, 4, 4, 5, 5, 7, 9}, neg = {-5, -2, -9}, big = {INT_MAX, INT_MAX};
    double mean = -1, dev = -1, mean2 = -1, dev2 = -1, mad = -1;
    EXPECT_EQ(QelDataAvrAndDevAndReturnMax(d.data(), 8, &mean, &dev), 9);
    EXPECT_EQ(QelDataAvrAndDevAndReturnSum(d.data(), 8, &mean2, &dev2), 40);
    QelDataAvrAndDif(d.data(), 8, &mean2, &mad);
    EXPECT_EQ(Reals({mean, dev, mean2, dev2, mad}), Reals({5, 2, 5, 2, 1.5}));
    EXPECT_EQ(QelDataAvrAndDevAndReturnMax(neg.data(), 3, &mean, &dev), -2);  // the first element starts it
    EXPECT_EQ(QelDataMaxDataPos(neg.data(), 3), 1);
    EXPECT_EQ(QelDataMaxDataPos(d.data() + 2, 3), 2);  // 4, 4, 5
    EXPECT_EQ(QelDataMaxDataValue(neg.data(), 3), -2);
    EXPECT_EQ(QelDataAvrAndDevAndReturnSum(big.data(), 2, &mean, &dev), -2);  // wraps; the mean does not
    EXPECT_EQ(mean, double(INT_MAX));
    EXPECT_EQ(QelDataAvrAndDevAndReturnMax(nullptr, 0, &mean, &dev) + mean + dev, 0.0);
    EXPECT_EQ(QelDataMaxDataPos(nullptr, 0) + QelDataMaxDataValue(nullptr, -1), 0);
}

TEST(Data1D, MovingWindowMaxima) {
    double best = -1;
    int pos = -1;
    Ints flat(10, 10), comb = {5, 0, 5, 0, 5}, rise = {1, 2, 2, 1, 4, 3, 4, 3};
    EXPECT_TRUE(QelDataMaxAvrAndPosInMovingWindow(flat.data(), 10, 4, &best, &pos));
    EXPECT_EQ(best, 10.0);
    EXPECT_EQ(pos, 5);  // 0 + 4/2 + 6 ties / 2
    EXPECT_TRUE(QelDataMaxAvrAndPosInMovingWindow(comb.data(), 5, 1, &best, &pos));
    EXPECT_EQ(pos, 1);  // ties need not be adjacent: the middle lands on a 0
    EXPECT_TRUE(QelDataMaxAvrAndPosInMovingWindow(rise.data(), 8, 2, &best, &pos));
    EXPECT_EQ(best, 3.5);
    EXPECT_EQ(pos, 6);  // windows 4, 5, 6 sum to 7
    Reals step = {0, 0, 0, 3, 3, 3, 0}, r = {1, 4, 2, 8, 8, 3}, calm(5, 2.0);
    EXPECT_TRUE(QelDataMaxDevAndPosInMovingWindow(step.data(), 7, 2, &best, &pos));
    EXPECT_EQ(best, 1.5);  // sqrt(4.5 / 2), window 2 first
    EXPECT_EQ(pos, 3);
    EXPECT_TRUE(QelDataMaxDifAndPosInMovingWindow(r.data(), 6, 3, &best, &pos));
    EXPECT_EQ(best, 6.0);  // windows 1 and 2 span 6; the first wins
    EXPECT_EQ(pos, 2);
    EXPECT_TRUE(QelDataMaxDifAndPosInMovingWindow(calm.data(), 5, 3, &best, &pos));
    EXPECT_EQ(best + pos, 1.0);  // nothing beats 0: start 0 stands
    for (const auto& c : {Ints{0, 0}, Ints{3, 4}, Ints{5, 0}, Ints{5, -2}}) {
        best = -1, pos = -1;
        EXPECT_FALSE(QelDataMaxAvrAndPosInMovingWindow(flat.data(), c[0], c[1], &best, &pos));
        EXPECT_FALSE(QelDataMaxDevAndPosInMovingWindow(r.data(), c[0], c[1], &best, &pos));
        EXPECT_FALSE(QelDataMaxDifAndPosInMovingWindow(r.data(), c[0], c[1], &best, &pos));
        EXPECT_EQ(best + pos, 0.0);
    }
    // A window exactly as long as the data is the one window.
    EXPECT_TRUE(QelDataMaxAvrAndPosInMovingWindow(comb.data(), 5, 5, &best, &pos));
    EXPECT_EQ(std::make_pair(best, pos), std::make_pair(3.0, 2));
    Reals pair = {0, 2};
    EXPECT_TRUE(QelDataMaxDevAndPosInMovingWindow(pair.data(), 2, 2, &best, &pos));
    EXPECT_EQ(std::make_pair(best, pos), std::make_pair(1.0, 1));
    EXPECT_TRUE(QelDataMaxDifAndPosInMovingWindow(r.data(), 6, 6, &best, &pos));
    EXPECT_EQ(std::make_pair(best, pos), std::make_pair(7.0, 3));
}

// Resamples in, held in a buffer of exactly its size (the sanitizer build catches a read past it),
// to nOut values.
Ints resampled(Ints in, int nOut) {
    const int nIn = static_cast<int>(in.size());
    Ints out(nOut, -1);
    EXPECT_TRUE(QelDataLinearInterpolattion(in.data(), nIn, out.data(), nOut));
    return out;
}

TEST(Data1D, LinearInterpolation) {
    EXPECT_EQ(resampled({0, 10}, 3), (Ints{0, 5, 10}));
    EXPECT_EQ(resampled({0, 10}, 4), (Ints{0, 3, 6, 10}));  // truncated, not rounded
    EXPECT_EQ(resampled({0, 10, 20, 30, 40}, 3), (Ints{0, 20, 40}));
    EXPECT_EQ(resampled({7, -3, 5}, 3), (Ints{7, -3, 5}));
    EXPECT_EQ(resampled({4, 8}, 2), (Ints{4, 8}));  // the element past the data is not read
    // 49 · (1 / 49) falls just short of 1: the last of 50 outputs is trunc(9.999…) = 9.
    EXPECT_EQ(resampled({0, 10}, 50).back(), 9);
    Ints in = {1, 2, 3}, out = {-1, -1, -1};
    EXPECT_FALSE(QelDataLinearInterpolattion(in.data(), 1, out.data(), 3));
    EXPECT_FALSE(QelDataLinearInterpolattion(in.data(), 2, out.data(), 1));
    EXPECT_EQ(out, (Ints{-1, -1, -1}));
}

TEST(Data1D, PeaksAndDeletionByWeight) {
    // 9 at 7 (excluding 6..8); the 7s at 3..5, cut at 6, centred at 4; 5 at 1; 3 at 9 (its
    // exclusion clipped); then nothing is left and the rest stay 0.
    Reals d = {0, 5, 1, 7, 7, 7, 2, 9, 0, 3}, values(6, -1), plateau(5, 5.0), many(4097, 1.0);
    Ints pos(6, -1);
    EXPECT_TRUE(QelDataFindPeaks(d.data(), 10, 1, values.data(), pos.data(), 6));
    EXPECT_EQ(values, (Reals{9, 7, 5, 3, 0, 0}));
    EXPECT_EQ(pos, (Ints{7, 4, 1, 9, 0, 0}));
    // A plateau wider than the exclusion yields several peaks.
    EXPECT_TRUE(QelDataFindPeaks(plateau.data(), 5, 0, values.data(), pos.data(), 3));
    EXPECT_EQ(Ints(pos.begin(), pos.begin() + 3), (Ints{2, 0, 1}));
    EXPECT_FALSE(QelDataFindPeaks(many.data(), 4097, 1, values.data(), pos.data(), 6));  // zeroed all the same
    EXPECT_EQ(values, Reals(6, 0.0));
    EXPECT_EQ(pos, Ints(6, 0));
    EXPECT_TRUE(QelDataFindPeaks(many.data(), 4096, 1, values.data(), pos.data(), 1));
    EXPECT_EQ(pos[0], 2047);

    Ints v = {1, 2, 3, 4, 5}, w = {0, 5, 10, 5, 20};
    EXPECT_EQ(QelpDataDeleteByWeightReturnNum(v.data(), w.data(), 5, 5, 10), 3);
    EXPECT_EQ(v, (Ints{2, 3, 4, 0, 0}));
    EXPECT_EQ(w, (Ints{5, 10, 5, 0, 0}));
    EXPECT_EQ(QelpDataDeleteByWeightReturnNum(v.data(), w.data(), 5, 11, 19), 0);
    EXPECT_EQ(v, Ints(5, 0));
    EXPECT_EQ(w, Ints(5, 0));
}

}  // namespace
