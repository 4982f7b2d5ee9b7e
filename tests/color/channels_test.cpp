#include <qel.h>

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

Bytes random_bytes(size_t n, unsigned seed) {
    std::mt19937 rng(seed);
    Bytes v(n);
    for (auto& b : v) b = static_cast<unsigned char>(rng() & 0xFF);
    return v;
}

Bytes row_of(const Bytes& image, int rowBytes, int y) {
    return Bytes(image.begin() + y * rowBytes, image.begin() + (y + 1) * rowBytes);
}

TEST(Channels, MaxOfThreeBytesPerPixel) {
    Bytes rgb = {10, 200, 30, 255, 0, 0, 1, 2, 3};
    Bytes grey(3);
    QelExtractMaxRGB2GryImg(rgb.data(), 3, 1, grey.data());
    EXPECT_EQ(grey, (Bytes{200, 255, 3}));
}

TEST(Channels, ExtractThenReplaceRestoresTheImage) {
    const int w = 7, h = 5;
    const Bytes original = random_bytes(w * h * 3, 1);
    for (int channel = 0; channel < 3; ++channel) {
        Bytes rgb = original;
        Bytes plane(w * h);
        QelExtractOneChannelFromRGB(rgb.data(), w, h, channel, plane.data());
        for (int i = 0; i < w * h; ++i) ASSERT_EQ(plane[i], original[i * 3 + channel]);

        Bytes zeros(w * h, 0);
        QelReplaceOneChannelInRGB(rgb.data(), w, h, channel, zeros.data());
        for (int i = 0; i < w * h * 3; ++i) ASSERT_EQ(rgb[i], i % 3 == channel ? 0 : original[i]);
        QelReplaceOneChannelInRGB(rgb.data(), w, h, channel, plane.data());
        EXPECT_EQ(rgb, original);
    }
}

TEST(Channels, OrWithBinaryMaskOnRedSetsOnlyMaskedRedBytes) {
    const int w = 4, h = 2;
    const Bytes original = random_bytes(w * h * 3, 2);
    Bytes rgb = original;
    Bytes mask = {255, 0, 0, 255, 0, 255, 0, 0};
    QelOROneChannelInRGB(rgb.data(), w, h, 2, mask.data());
    for (int i = 0; i < w * h; ++i) {
        EXPECT_EQ(rgb[i * 3 + 0], original[i * 3 + 0]);
        EXPECT_EQ(rgb[i * 3 + 1], original[i * 3 + 1]);
        EXPECT_EQ(rgb[i * 3 + 2], mask[i] ? 255 : original[i * 3 + 2]);
    }
}

TEST(Channels, OrIsBitwise) {
    Bytes rgb = {0x0F, 0x0F, 0x0F};
    Bytes grey = {0x30};
    QelOROneChannelInRGB(rgb.data(), 1, 1, 1, grey.data());
    EXPECT_EQ(rgb, (Bytes{0x0F, 0x3F, 0x0F}));
}

TEST(Channels, Gry2RGBTakesRedPlaneFirstAndStoresBlueFirst) {
    Bytes red = {1, 2}, green = {3, 4}, blue = {5, 6};
    Bytes rgb(6);
    QelGry2RGBImg(red.data(), green.data(), blue.data(), 2, 1, rgb.data());
    EXPECT_EQ(rgb, (Bytes{5, 3, 1, 6, 4, 2}));
}

TEST(Channels, SplittingIntoPlanesAndInterleavingIsARoundTrip) {
    const int w = 5, h = 3;
    const Bytes original = random_bytes(w * h * 3, 3);
    Bytes b(w * h), g(w * h), r(w * h), rgb(w * h * 3);
    Bytes src = original;
    QelExtractOneChannelFromRGB(src.data(), w, h, 0, b.data());
    QelExtractOneChannelFromRGB(src.data(), w, h, 1, g.data());
    QelExtractOneChannelFromRGB(src.data(), w, h, 2, r.data());
    QelGry2RGBImg(r.data(), g.data(), b.data(), w, h, rgb.data());
    EXPECT_EQ(rgb, original);
}

TEST(Fields, EvenFieldOfOddHeightHasTheExtraRow) {
    const int w = 3, h = 5;
    Bytes frame = random_bytes(w * h, 4);
    Bytes even(w * 3), odd(w * 2);
    int evenRows = 0, oddRows = 0;
    QelExtractOneField(frame.data(), w, h, false, false, even.data(), &evenRows);
    QelExtractOneField(frame.data(), w, h, false, true, odd.data(), &oddRows);
    EXPECT_EQ(evenRows, 3);
    EXPECT_EQ(oddRows, 2);
    for (int r = 0; r < 3; ++r) EXPECT_EQ(row_of(even, w, r), row_of(frame, w, 2 * r));
    for (int r = 0; r < 2; ++r) EXPECT_EQ(row_of(odd, w, r), row_of(frame, w, 2 * r + 1));
}

TEST(Fields, SplitPutsEvenRowsThenOddRows) {
    const int w = 2, h = 5;
    Bytes frame = random_bytes(w * h * 3, 5);
    Bytes out(frame.size());
    QelSplitOddEvenField(frame.data(), w, h, true, out.data());
    const int rowBytes = w * 3;
    const int order[] = {0, 2, 4, 1, 3};
    for (int r = 0; r < h; ++r) EXPECT_EQ(row_of(out, rowBytes, r), row_of(frame, rowBytes, order[r]));
}

TEST(Fields, SplitThenMergeWithoutShiftRestoresAGreyFrame) {
    for (int h : {6, 7}) {
        const int w = 9;
        const Bytes frame = random_bytes(w * h, 6 + h);
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

TEST(Fields, PositiveShiftLeavesTheFirstPixelsOfOddRowsUnwritten) {
    const int w = 5;
    Bytes a = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
    Bytes b = {21, 22, 23, 24, 25, 26, 27, 28, 29, 30};
    Bytes frame(w * 4, 99);
    int rows = 0;
    QelMergeOddEvenField(a.data(), b.data(), 2, 2, w, false, 2, frame.data(), &rows);
    EXPECT_EQ(rows, 4);
    EXPECT_EQ(frame, (Bytes{21, 22, 23, 24, 25, 99, 99, 1, 2, 3, 26, 27, 28, 29, 30, 99, 99, 6, 7, 8}));
}

TEST(Fields, NegativeShiftLeavesTheLastPixelsOfOddRowsUnwritten) {
    const int w = 4;
    Bytes a = {1, 2, 3, 4};
    Bytes b = {5, 6, 7, 8};
    Bytes frame(w * 2, 99);
    int rows = 0;
    QelMergeOddEvenField(a.data(), b.data(), 1, 1, w, false, -1, frame.data(), &rows);
    EXPECT_EQ(frame, (Bytes{5, 6, 7, 8, 2, 3, 4, 99}));
}

TEST(Fields, RgbPositiveShiftPlacesWholePixelsOnTheOddRow) {
    const int w = 2;
    Bytes a = {1, 2, 3, 4, 5, 6};
    Bytes b = {7, 8, 9, 10, 11, 12};
    Bytes frame(w * 3 * 2, 99);
    int rows = 0;
    QelMergeOddEvenField(a.data(), b.data(), 1, 1, w, true, 1, frame.data(), &rows);
    EXPECT_EQ(frame, (Bytes{7, 8, 9, 10, 11, 12, 99, 99, 99, 1, 2, 3}));
}

TEST(Fields, RgbShiftZeroPlacesFieldARowsWidthBytesIntoTheEvenRow) {
    // width 4: RGB rows are 12 bytes, and each A row starts 4 bytes into frame row 2a, covering the
    // end of field B's row and the first 4 bytes of frame row 2a + 1.
    const int w = 4, rowBytes = w * 3;
    Bytes a(2 * rowBytes), b(2 * rowBytes);
    for (int i = 0; i < 2 * rowBytes; ++i) {
        a[i] = static_cast<unsigned char>(100 + i);
        b[i] = static_cast<unsigned char>(i);
    }
    Bytes frame(4 * rowBytes, 250);
    int rows = 0;
    QelMergeOddEvenField(a.data(), b.data(), 2, 2, w, true, 0, frame.data(), &rows);
    EXPECT_EQ(rows, 4);
    for (int pairStart = 0, r = 0; r < 2; ++r, pairStart += 2 * rowBytes) {
        for (int i = 0; i < w; ++i) EXPECT_EQ(frame[pairStart + i], b[r * rowBytes + i]);
        for (int i = 0; i < rowBytes; ++i) EXPECT_EQ(frame[pairStart + w + i], a[r * rowBytes + i]);
        for (int i = w + rowBytes; i < 2 * rowBytes; ++i) EXPECT_EQ(frame[pairStart + i], 250);
    }
}

TEST(Fields, RgbNegativeShiftDropsLeadingPixelsOfFieldA) {
    const int w = 3;
    Bytes a = {1, 2, 3, 4, 5, 6, 7, 8, 9};
    Bytes b(9, 0);
    Bytes frame(18, 250);
    int rows = 0;
    QelMergeOddEvenField(a.data(), b.data(), 1, 1, w, true, -1, frame.data(), &rows);
    // A row from pixel 1 on (6 bytes) lands 3 bytes into frame row 0
    EXPECT_EQ(frame, (Bytes{0, 0, 0, 4, 5, 6, 7, 8, 9, 250, 250, 250, 250, 250, 250, 250, 250, 250}));
}

TEST(Fields, MergeNeverWritesPastTheCombinedRows) {
    // Three A rows and one B row: A rows 1 and 2 would land on frame rows 3 and 5 of a 4-row frame.
    const int w = 2;
    Bytes a = {1, 2, 3, 4, 5, 6};
    Bytes b = {7, 8};
    Bytes frame(w * 4, 99);
    int rows = 0;
    QelMergeOddEvenField(a.data(), b.data(), 3, 1, w, false, 0, frame.data(), &rows);
    EXPECT_EQ(rows, 4);
    EXPECT_EQ(frame, (Bytes{7, 8, 1, 2, 99, 99, 3, 4}));
}

TEST(Fields, ShiftOfAWholeRowWritesNothingOfFieldA) {
    Bytes a = {1, 2}, b = {3, 4};
    Bytes frame(4, 99);
    int rows = 0;
    QelMergeOddEvenField(a.data(), b.data(), 1, 1, 2, false, 2, frame.data(), &rows);
    EXPECT_EQ(frame, (Bytes{3, 4, 99, 99}));
    QelMergeOddEvenField(a.data(), b.data(), 1, 1, 2, false, -5, frame.data(), &rows);
    EXPECT_EQ(frame, (Bytes{3, 4, 99, 99}));
}

}  // namespace
