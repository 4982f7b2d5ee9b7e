#include <qel.h>

#include <gtest/gtest.h>

#include "support/test_images.h"

namespace {

using qel_test::Bytes;
using qel_test::random_bgr;
using qel_test::random_grey;
using qel_test::row_of;

TEST(Channels, MaxOfThreeBytesPerPixel) {
    Bytes rgb = {10, 200, 30, 255, 0, 0, 1, 2, 3};
    Bytes grey(3);
    QelExtractMaxRGB2GryImg(rgb.data(), 3, 1, grey.data());
    EXPECT_EQ(grey, (Bytes{200, 255, 3}));
}

// Every pixel count from 1 to 420 passes through the 64- and 32-pixel steps and their tails.
TEST(Channels, ExtractReplaceAndInterleaveAreRoundTripsAtEveryWidth) {
    for (int w = 1; w <= 140; ++w)
        for (int h : {1, 3}) {
            SCOPED_TRACE(testing::Message() << w << " x " << h);
            const int n = w * h;
            const Bytes original = random_bgr(w, h, static_cast<unsigned>(n));
            Bytes planes[3];
            for (int channel = 0; channel < 3; ++channel) {
                Bytes rgb = original;
                Bytes& plane = planes[channel];
                plane.resize(n);
                QelExtractOneChannelFromRGB(rgb.data(), w, h, channel, plane.data());
                for (int i = 0; i < n; ++i) ASSERT_EQ(plane[i], original[i * 3 + channel]) << i;
                Bytes selected(n);
                QelSelectRGB2Gry(rgb.data(), w, h, channel, selected.data());
                ASSERT_EQ(selected, plane);

                Bytes zeros(n, 0);
                QelReplaceOneChannelInRGB(rgb.data(), w, h, channel, zeros.data());
                for (int i = 0; i < n * 3; ++i) ASSERT_EQ(rgb[i], i % 3 == channel ? 0 : original[i]);
                QelReplaceOneChannelInRGB(rgb.data(), w, h, channel, plane.data());
                ASSERT_EQ(rgb, original);
            }
            Bytes rgb(n * 3);
            QelGry2RGBImg(planes[2].data(), planes[1].data(), planes[0].data(), w, h, rgb.data());
            ASSERT_EQ(rgb, original);
        }
}

TEST(Channels, OrWithBinaryMaskOnRedSetsOnlyMaskedRedBytesAndIsBitwise) {
    const int w = 4, h = 2;
    const Bytes original = random_bgr(w, h, 2);
    Bytes rgb = original;
    Bytes mask = {255, 0, 0, 255, 0, 255, 0, 0};
    QelOROneChannelInRGB(rgb.data(), w, h, 2, mask.data());
    for (int i = 0; i < w * h; ++i) {
        EXPECT_EQ(rgb[i * 3 + 0], original[i * 3 + 0]);
        EXPECT_EQ(rgb[i * 3 + 1], original[i * 3 + 1]);
        EXPECT_EQ(rgb[i * 3 + 2], mask[i] ? 255 : original[i * 3 + 2]);
    }
    Bytes pixel = {0x0F, 0x0F, 0x0F};
    Bytes grey = {0x30};
    QelOROneChannelInRGB(pixel.data(), 1, 1, 1, grey.data());
    EXPECT_EQ(pixel, (Bytes{0x0F, 0x3F, 0x0F}));
}

TEST(Channels, Gry2RGBTakesRedPlaneFirstAndStoresBlueFirst) {
    Bytes red = {1, 2}, green = {3, 4}, blue = {5, 6};
    Bytes rgb(6);
    QelGry2RGBImg(red.data(), green.data(), blue.data(), 2, 1, rgb.data());
    EXPECT_EQ(rgb, (Bytes{5, 3, 1, 6, 4, 2}));
}

TEST(Fields, EvenFieldOfOddHeightHasTheExtraRowAndSplitPutsEvenRowsFirst) {
    const int w = 3, h = 5;
    Bytes frame = random_grey(w, h, 4);
    Bytes even(w * 3), odd(w * 2);
    int evenRows = 0, oddRows = 0;
    QelExtractOneField(frame.data(), w, h, false, false, even.data(), &evenRows);
    QelExtractOneField(frame.data(), w, h, false, true, odd.data(), &oddRows);
    EXPECT_EQ(evenRows, 3);
    EXPECT_EQ(oddRows, 2);
    for (int r = 0; r < 3; ++r) EXPECT_EQ(row_of(even, w, r), row_of(frame, w, 2 * r));
    for (int r = 0; r < 2; ++r) EXPECT_EQ(row_of(odd, w, r), row_of(frame, w, 2 * r + 1));

    // Splitting puts the even rows, then the odd rows (RGB rows here).
    const int rowBytes = 2 * 3;
    frame = random_bgr(2, h, 5);
    Bytes out(frame.size());
    QelSplitOddEvenField(frame.data(), 2, h, true, out.data());
    const int order[] = {0, 2, 4, 1, 3};
    for (int r = 0; r < h; ++r) EXPECT_EQ(row_of(out, rowBytes, r), row_of(frame, rowBytes, order[r]));
}

TEST(Fields, SplitThenMergeWithoutShiftRestoresAGreyFrame) {
    for (int h : {6, 7}) {
        const int w = 9;
        const Bytes frame = random_grey(w, h, 6 + h);
        Bytes fields(frame.size());
        Bytes src = frame;
        QelSplitOddEvenField(src.data(), w, h, false, fields.data());
        const int evenRows = (h + 1) / 2, oddRows = h / 2;
        Bytes merged(frame.size(), 0);
        int mergedRows = 0;
        QelMergeOddEvenField(fields.data() + evenRows * w, fields.data(), oddRows, evenRows, w, false, 0,
                             merged.data(), &mergedRows);
        EXPECT_EQ(mergedRows, h);
        EXPECT_EQ(merged, frame);
    }
}

// Field B fills frame rows 0, 2, ...; field A rows 1, 3, ... moved sideways. Pixels a shift leaves
// unwritten keep the value the frame held.
TEST(Fields, MergeShiftsFieldAAndLeavesUncoveredPixelsAlone) {
    struct Case {
        const char* what;
        Bytes a, b;
        int rowsA, rowsB, width;
        bool rgb;
        int shift;
        unsigned char fill;
        Bytes expected;
    };
    const Case cases[] = {
        {"positive shift: the first pixels of odd rows stay", {1, 2, 3, 4, 5, 6, 7, 8, 9, 10},
         {21, 22, 23, 24, 25, 26, 27, 28, 29, 30}, 2, 2, 5, false, 2, 99,
         {21, 22, 23, 24, 25, 99, 99, 1, 2, 3, 26, 27, 28, 29, 30, 99, 99, 6, 7, 8}},
        {"negative shift: the last pixels of odd rows stay", {1, 2, 3, 4}, {5, 6, 7, 8}, 1, 1, 4, false, -1, 99,
         {5, 6, 7, 8, 2, 3, 4, 99}},
        {"RGB positive shift moves whole pixels", {1, 2, 3, 4, 5, 6}, {7, 8, 9, 10, 11, 12}, 1, 1, 2, true, 1, 99,
         {7, 8, 9, 10, 11, 12, 99, 99, 99, 1, 2, 3}},
        // Intended: with shift 0 an RGB row of A lands width = 2 bytes (not 6) into frame row 2a,
        // over the end of B's row and the start of frame row 2a + 1.
        {"RGB shift 0 places A rows width bytes into the even row", {100, 101, 102, 103, 104, 105, 106, 107, 108,
         109, 110, 111}, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}, 2, 2, 2, true, 0, 250,
         {0, 1, 100, 101, 102, 103, 104, 105, 250, 250, 250, 250, 6, 7, 106, 107, 108, 109, 110, 111, 250, 250, 250, 250}},
        // The A row from pixel 1 on (6 bytes) lands width = 3 bytes into frame row 0, intended.
        {"RGB negative shift drops leading pixels of A", {1, 2, 3, 4, 5, 6, 7, 8, 9}, Bytes(9, 0), 1, 1, 3, true, -1,
         250, {0, 0, 0, 4, 5, 6, 7, 8, 9, 250, 250, 250, 250, 250, 250, 250, 250, 250}},
        // A rows 1 and 2 would land on frame rows 3 and 5 of a 4-row frame.
        {"nothing is written past the combined rows", {1, 2, 3, 4, 5, 6}, {7, 8}, 3, 1, 2, false, 0, 99,
         {7, 8, 1, 2, 99, 99, 3, 4}},
        {"a shift of a whole row writes nothing of A", {1, 2}, {3, 4}, 1, 1, 2, false, 2, 99, {3, 4, 99, 99}},
        {"a shift of more than a row writes nothing of A", {1, 2}, {3, 4}, 1, 1, 2, false, -5, 99, {3, 4, 99, 99}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Bytes a = c.a, b = c.b;
        Bytes frame(c.expected.size(), c.fill);
        int rows = 0;
        QelMergeOddEvenField(a.data(), b.data(), c.rowsA, c.rowsB, c.width, c.rgb, c.shift, frame.data(), &rows);
        EXPECT_EQ(rows, c.rowsA + c.rowsB);
        EXPECT_EQ(frame, c.expected);
    }
}

}  // namespace
