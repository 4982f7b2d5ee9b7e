#include <qel.h>

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <random>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;
using Ints = std::vector<int>;

TEST(NoiseDelta, ConstantImageHasNoNoiseAndLeavesTheRingUnwritten) {
    const int w = 8, h = 6;
    Bytes src(w * h, 137), map(w * h, 99);
    EXPECT_EQ(QelEstimateNoiseDelta(src.data(), w, h, map.data()), 0.0);
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            const bool ring = x == 0 || y == 0 || x == w - 1 || y == h - 1;
            EXPECT_EQ(map[y * w + x], ring ? 99 : 0);
        }
    }
}

TEST(NoiseDelta, SmallSpikeWorkedByHand) {
    // A spike of 3 in a 5 × 5 image: r = 12 at the spike, −6 beside it, 3 on the diagonals.
    // Σr² = 144 + 4·36 + 4·9 = 324 and the divisor is 3·36·3 = 324, so the estimate is 1.
    Bytes src(25, 0), map(25, 0);
    src[12] = 3;
    EXPECT_DOUBLE_EQ(QelEstimateNoiseDelta(src.data(), 5, 5, map.data()), 1.0);
    EXPECT_EQ(map[12], 4);  // 144 / 36
    EXPECT_EQ(map[7], 1);   // 36 / 36
    EXPECT_EQ(map[6], 0);   // 9 / 36
}

TEST(NoiseDelta, BrightSpikeClampsTheMapAt250) {
    Bytes src(25, 0), map(25, 0);
    src[12] = 255;  // r = 1020, 1020² / 36 = 28900
    QelEstimateNoiseDelta(src.data(), 5, 5, map.data());
    EXPECT_EQ(map[12], 250);
}

TEST(NoiseDelta, ImagesWithoutInteriorReturnZeroUntouched) {
    Bytes src(8, 200), map(8, 5);
    EXPECT_EQ(QelEstimateNoiseDelta(src.data(), 4, 2, map.data()), 0.0);
    EXPECT_EQ(map, Bytes(8, 5));
}

TEST(Deviation, ColumnOfZeroAnd255) {
    Bytes src = {0, 7, 255, 7};  // 2 × 2: column 0 is 0, 255; column 1 is constant
    Ints out(2, -1);
    QelGryImgColDevDev(src.data(), 2, 2, 0, 1, 0, 1, out.data());
    EXPECT_EQ(out, (Ints{65025, 0}));  // 2·65025 − 255²
    QelGryImgColDev100(src.data(), 2, 2, 0, 1, 0, 1, out.data());
    EXPECT_EQ(out, (Ints{12750, 0}));  // deviation 127.5
}

TEST(Deviation, RowProfileWorkedByHandAndZeroOutsideTheRange) {
    // Rows of a 4 × 3 image; measured over columns 1..3 of rows 1..2.
    Bytes src = {9, 9, 9, 9,  //
                 0, 1, 2, 3,  //
                 5, 0, 0, 6};
    Ints out(3, -1);
    QelGryImgRowDev100(src.data(), 4, 3, 1, 3, 1, 2, out.data());
    // Row 1: 1, 2, 3 → variance 2/3 → 81.6496…; row 2: 0, 0, 6 → variance 8 → 282.842…
    EXPECT_EQ(out, (Ints{0, 81, 282}));
    Ints dd(3, -1);
    QelGryImgRowDevDev(src.data(), 4, 3, 1, 3, 1, 2, dd.data());
    EXPECT_EQ(dd, (Ints{-1, 3 * 14 - 36, 3 * 36 - 36}));  // row 0 untouched
}

TEST(Deviation, RowAndColumnProfilesAreTransposes) {
    const int w = 13, h = 9;
    std::mt19937 rng(3);
    Bytes src(w * h), transposed(w * h);
    for (auto& p : src) p = static_cast<unsigned char>(rng());
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) transposed[x * h + y] = src[y * w + x];
    Ints cols(w), rows(w), colsDD(w, 0), rowsDD(w, 0);
    QelGryImgColDev100(src.data(), w, h, 2, 10, 1, 7, cols.data());
    QelGryImgRowDev100(transposed.data(), h, w, 1, 7, 2, 10, rows.data());
    EXPECT_EQ(cols, rows);
    QelGryImgColDevDev(src.data(), w, h, 2, 10, 1, 7, colsDD.data());
    QelGryImgRowDevDev(transposed.data(), h, w, 1, 7, 2, 10, rowsDD.data());
    EXPECT_EQ(colsDD, rowsDD);
    // Against a direct computation: n·Σp² − (Σp)² over rows 1..7.
    for (int x = 2; x <= 10; ++x) {
        long long s = 0, q = 0;
        for (int y = 1; y <= 7; ++y) {
            s += src[y * w + x];
            q += src[y * w + x] * src[y * w + x];
        }
        EXPECT_EQ(colsDD[x], 7 * q - s * s);
        const double mean = double(s) / 7;
        EXPECT_EQ(cols[x], static_cast<int>(std::sqrt(double(q) / 7 - mean * mean) * 100.0));
    }
    EXPECT_EQ(cols[0], 0);
    EXPECT_EQ(cols[12], 0);
}

TEST(Deviation, ConstantImagesHaveZeroDeviation) {
    const int w = 10, h = 6;
    Bytes src(w * h, 201);
    Ints a(w, -1), b(h, -1), c(w, -1), d(w, -1);
    QelGryImgColDev100(src.data(), w, h, 0, w - 1, 0, h - 1, a.data());
    QelGryImgRowDev100(src.data(), w, h, 0, w - 1, 0, h - 1, b.data());
    QelGryImgColDevDev(src.data(), w, h, 0, w - 1, 0, h - 1, c.data());
    QelGryImgColsDev100(src.data(), w, h, 3, d.data());
    EXPECT_EQ(a, Ints(w, 0));
    EXPECT_EQ(b, Ints(h, 0));
    EXPECT_EQ(c, Ints(w, 0));
    EXPECT_EQ(d, Ints(w, 0));
}

TEST(Deviation, BandsOverlapAtTheRightWhenTheWidthIsNotAMultiple) {
    // Width 10, bands of 4: columns 0..3, 4..7, then 6..9. Column value = x, one row.
    Bytes src = {0, 0, 0, 0, 10, 10, 20, 20, 20, 20};
    Ints out(10, -1);
    QelGryImgColsDev100(src.data(), 10, 1, 4, out.data());
    // Band 0 constant; band 1 is 10, 10, 20, 20 (deviation 5); the tail band 6..9 is constant.
    EXPECT_EQ(out, (Ints{0, 0, 0, 0, 500, 500, 0, 0, 0, 0}));
}

TEST(Deviation, WrappedSumOfSquaresStoresIntMin) {
    // 33100 pixels of 255: Σp² exceeds INT_MAX, the variance comes out negative.
    const int w = 1, h = 33100;
    Bytes src(h, 255);
    Ints out(1, 0);
    QelGryImgColDev100(src.data(), w, h, 0, 0, 0, h - 1, out.data());
    EXPECT_EQ(out[0], INT_MIN);
}

TEST(Deviation, RectangleIsCutToTheImage) {
    Bytes src = {0, 255, 0, 255};  // 4 × 1
    Ints out(4, -1);
    QelGryImgRowDev100(src.data(), 4, 1, -5, 40, -2, 3, out.data());
    EXPECT_EQ(out, (Ints{12750, -1, -1, -1}));  // only out[0 .. height−1] belongs to the call
}

TEST(Deviation, ZeroBandWidthClearsTheOutput) {
    Bytes src(12, 3);
    Ints out(4, 7);
    QelGryImgColsDev100(src.data(), 4, 3, 0, out.data());
    EXPECT_EQ(out, Ints(4, 0));
}

}  // namespace
