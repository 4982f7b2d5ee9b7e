// Local deviation measures: the noise estimate and the column, row and band deviations.
#include <qel.h>

#include <gtest/gtest.h>

#include "support/test_images.h"

#include <algorithm>
#include <climits>
#include <vector>

namespace {

using qel_test::Bytes;
using Ints = std::vector<int>;

TEST(NoiseDelta, WorkedByHandWithTheMapClampedAt250) {
    // A spike of 3 in a 5 × 5 image: r = 12 at the spike, −6 beside it, 3 on the diagonals.
    // Σr² = 144 + 4·36 + 4·9 = 324 and the divisor is 3·36·3 = 324, so the estimate is 1.
    Bytes src(25, 0), map(25, 99);
    src[12] = 3;
    EXPECT_DOUBLE_EQ(QelEstimateNoiseDelta(src.data(), 5, 5, map.data()), 1.0);
    EXPECT_EQ(Bytes(map.begin() + 6, map.begin() + 9), Bytes({0, 1, 0}));  // 9/36, 36/36, 9/36
    EXPECT_EQ(map[12], 4);                                                // 144/36
    src[12] = 255;
    QelEstimateNoiseDelta(src.data(), 5, 5, map.data());
    EXPECT_EQ(map[12], 250);  // r = 1020: 1020² / 36 = 28900, clamped
    Bytes flat(8, 200), untouched(8, 5);  // 4 × 2: no interior
    EXPECT_EQ(QelEstimateNoiseDelta(flat.data(), 4, 2, untouched.data()), 0.0);
    EXPECT_EQ(untouched, Bytes(8, 5));
}

TEST(Deviation, ConstantImagesMeasureZero) {
    const int n = 8;  // square, so that every profile has n entries
    Bytes src(n * n, 201), map(n * n, 99);
    EXPECT_EQ(QelEstimateNoiseDelta(src.data(), n, n, map.data()), 0.0);
    for (int i = 0; i < n * n; ++i)  // the outer ring of the map is not written
        EXPECT_EQ(map[i], i % n == 0 || i / n == 0 || i % n == n - 1 || i / n == n - 1 ? 99 : 0);
    using Profile = void (*)(unsigned char*, int, int, int, int, int, int, int*);
    for (Profile f : {QelGryImgColDev100, QelGryImgColDevDev, QelGryImgRowDev100, QelGryImgRowDevDev}) {
        Ints out(n, -1);
        f(src.data(), n, n, 0, n - 1, 0, n - 1, out.data());
        EXPECT_EQ(out, Ints(n, 0));
    }
    Ints bands(n, -1);
    QelGryImgColsDev100(src.data(), n, n, 3, bands.data());
    EXPECT_EQ(bands, Ints(n, 0));
}

TEST(Deviation, ProfilesWorkedByHand) {
    Bytes square = {0, 7, 255, 7};  // 2 × 2: column 0 is 0, 255; column 1 is constant
    Ints out(2, -1);
    QelGryImgColDevDev(square.data(), 2, 2, 0, 1, 0, 1, out.data());
    EXPECT_EQ(out, (Ints{65025, 0}));  // 2·65025 − 255²
    QelGryImgColDev100(square.data(), 2, 2, 0, 1, 0, 1, out.data());
    EXPECT_EQ(out, (Ints{12750, 0}));  // deviation 127.5
    // Rows of a 4 × 3 image measured over columns 1..3 of rows 1..2: Dev100 zeroes row 0, DevDev
    // leaves it. Row 1: 1, 2, 3 → variance 2/3 → 81.6…; row 2: 0, 0, 6 → variance 8 → 282.8…
    Bytes rows = {9, 9, 9, 9, /**/ 0, 1, 2, 3, /**/ 5, 0, 0, 6};
    Ints dev(3, -1), devDev(3, -1);
    QelGryImgRowDev100(rows.data(), 4, 3, 1, 3, 1, 2, dev.data());
    QelGryImgRowDevDev(rows.data(), 4, 3, 1, 3, 1, 2, devDev.data());
    EXPECT_EQ(dev, (Ints{0, 81, 282}));
    EXPECT_EQ(devDev, (Ints{-1, 3 * 14 - 36, 3 * 36 - 36}));
    // The rectangle is cut to the image; only out[0 .. height−1] belongs to the call.
    Bytes line = {0, 255, 0, 255};
    Ints cut(4, -1);
    QelGryImgRowDev100(line.data(), 4, 1, -5, 40, -2, 3, cut.data());
    EXPECT_EQ(cut, (Ints{12750, -1, -1, -1}));
}

TEST(Deviation, RowProfilesOfTheTransposedImageEqualTheColumnProfiles) {
    const int w = 13, h = 9;
    Bytes src = qel_test::random_grey(w, h, 3);
    Bytes transposed(w * h);
    for (int i = 0; i < w * h; ++i) transposed[(i % w) * h + i / w] = src[i];
    Ints cols(w), rows(w), colsDD(w, 0), rowsDD(w, 0);
    QelGryImgColDev100(src.data(), w, h, 2, 10, 1, 7, cols.data());
    QelGryImgRowDev100(transposed.data(), h, w, 1, 7, 2, 10, rows.data());
    QelGryImgColDevDev(src.data(), w, h, 2, 10, 1, 7, colsDD.data());
    QelGryImgRowDevDev(transposed.data(), h, w, 1, 7, 2, 10, rowsDD.data());
    EXPECT_EQ(cols, rows);
    EXPECT_EQ(colsDD, rowsDD);
    EXPECT_EQ(cols[0] | cols[1] | cols[11] | cols[12], 0);  // outside columns 2..10
    EXPECT_GT(*std::min_element(cols.begin() + 2, cols.begin() + 11), 0);
}

TEST(Deviation, BandsOverlapAtTheRightWhenTheWidthIsNotAMultiple) {
    // Width 10, bands of 4: columns 0..3, 4..7, then 6..9 (one row).
    Bytes src = {0, 0, 0, 0, 10, 10, 20, 20, 20, 20};
    Ints out(10, -1);
    QelGryImgColsDev100(src.data(), 10, 1, 4, out.data());
    // Band 0 constant; band 1 is 10, 10, 20, 20 (deviation 5); the tail band 6..9 is constant.
    EXPECT_EQ(out, (Ints{0, 0, 0, 0, 500, 500, 0, 0, 0, 0}));
    QelGryImgColsDev100(src.data(), 10, 1, 0, out.data());  // band width 0 clears the output
    EXPECT_EQ(out, Ints(10, 0));
}

TEST(Deviation, WrappedSumOfSquaresStoresIntMin) {
    // 33100 pixels of 255: Σp² exceeds INT_MAX, the variance comes out negative.
    Bytes src(33100, 255);
    Ints out(1, 0);
    QelGryImgColDev100(src.data(), 1, 33100, 0, 0, 0, 33099, out.data());
    EXPECT_EQ(out[0], INT_MIN);
}

}  // namespace
