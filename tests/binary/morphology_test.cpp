#include <qel.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

// A binary image with the given share (in percent) of 255 pixels.
Bytes random_binary(int w, int h, int percentWhite, unsigned seed) {
    std::mt19937 rng(seed);
    Bytes v(static_cast<size_t>(w) * h);
    for (auto& b : v) b = static_cast<int>(rng() % 100) < percentWhite ? 255 : 0;
    return v;
}

Bytes random_grey(int w, int h, unsigned seed) {
    std::mt19937 rng(seed);
    Bytes v(static_cast<size_t>(w) * h);
    for (auto& b : v) b = static_cast<unsigned char>(rng() & 0xFF);
    return v;
}

bool only_0_and_255(const Bytes& v) {
    return std::all_of(v.begin(), v.end(), [](unsigned char b) { return b == 0 || b == 255; });
}

struct Image {
    int w, h;
    Bytes px;
    Image(int width, int height, unsigned char fill = 0) : w(width), h(height), px(static_cast<size_t>(width) * height, fill) {}
    unsigned char& at(int x, int y) { return px[static_cast<size_t>(y) * w + x]; }
    unsigned char* data() { return px.data(); }
};

// ---- counting and centres -------------------------------------------------------------------

TEST(BinaryCount, CentroidOfEmptyImageReturnsZeroAndLeavesOutputs) {
    Image img(6, 4);
    int x = -7, y = -9;
    EXPECT_EQ(QelBinImgCentroid(img.data(), img.w, img.h, &x, &y), 0);
    EXPECT_EQ(x, -7);
    EXPECT_EQ(y, -9);
}

TEST(BinaryCount, CountsAndCentroidAgreeWithBruteForce) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        const int w = 5 + static_cast<int>(seed % 13), h = 3 + static_cast<int>(seed % 7);
        Bytes img = random_grey(w, h, seed);
        for (size_t i = 0; i < img.size(); i += 2) img[i] = 0;  // plenty of zeros
        long n = 0, sx = 0, sy = 0, equal = 0;
        const int value = img[img.size() / 2];
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                const unsigned char p = img[static_cast<size_t>(y) * w + x];
                if (p != 0) n += 1, sx += x, sy += y;
                equal += p == value;
            }
        int cx = -1, cy = -1;
        ASSERT_EQ(QelBinImgCentroid(img.data(), w, h, &cx, &cy), n);
        if (n > 0) {
            EXPECT_EQ(cx, sx / n);
            EXPECT_EQ(cy, sy / n);
        }
        EXPECT_EQ(QelPixelsInGryImg(img.data(), w, h, value), equal);

        // A rectangle sticking out on every side is clipped; the black ratio is not clipped.
        const int x1 = static_cast<int>(seed % 3) - 1, x2 = w - 2 + static_cast<int>(seed % 3);
        const int y1 = static_cast<int>(seed % 2) - 1, y2 = h - 1 + static_cast<int>(seed % 2);
        long white = 0, zeros = 0;
        for (int y = std::max(y1, 0); y <= std::min(y2, h - 1); ++y)
            for (int x = std::max(x1, 0); x <= std::min(x2, w - 1); ++x) white += img[static_cast<size_t>(y) * w + x] != 0;
        EXPECT_EQ(QelGetWhitePixelsNum(img.data(), w, h, x1, x2, y1, y2), white);
        for (int y = 1; y <= h - 2; ++y)
            for (int x = 1; x <= w - 2; ++x) zeros += img[static_cast<size_t>(y) * w + x] == 0;
        EXPECT_DOUBLE_EQ(QelGetBlackRatioInBinaryImg(img.data(), w, 1, w - 2, 1, h - 2),
                         zeros * 1.0 / ((w - 2) * (h - 2)));
    }
}

TEST(BinaryCount, SearchCenterXTakesTheMiddleOfTheMostVotedColumns) {
    // One run over columns 5..30: columns 6..29 get two votes each, the rest one.
    Image img(40, 3);
    for (int x = 5; x <= 30; ++x) img.at(x, 1) = 255;
    EXPECT_EQ(QelBinImgSearchCenterX(img.data(), img.w, img.h, 0, 39), (6 + 29) / 2);
    // Short runs (last − first ≤ 10) do not vote: all columns tie at 0 and the search spans x1..x2.
    Image shortRun(40, 3);
    for (int x = 5; x <= 15; ++x) shortRun.at(x, 1) = 255;
    EXPECT_EQ(QelBinImgSearchCenterX(shortRun.data(), 40, 3, 3, 20), (3 + 20) / 2);
}

TEST(BinaryCount, SearchCenterXAgreesWithPerColumnVoting) {
    for (unsigned seed = 1; seed <= 10; ++seed) {
        const int w = 60, h = 9;
        Bytes img = random_binary(w, h, 85, seed);
        const int x1 = static_cast<int>(seed), x2 = w - 1 - static_cast<int>(seed) * 2;
        std::vector<int> votes(w, 0);
        for (int y = 0; y < h; ++y) {
            for (int x = 0; x < w;) {
                if (!img[y * w + x]) { ++x; continue; }
                const int s = x;
                while (x < w && img[y * w + x]) ++x;
                const int e = x - 1;
                if (e - s > 10)
                    for (int c = x1; c <= x2; ++c) votes[c] += (s < c) + (e > c);
            }
        }
        const int best = *std::max_element(votes.begin() + x1, votes.begin() + x2 + 1);
        int begin = -1, end = -1;
        for (int c = x1; c <= x2; ++c)
            if (votes[c] == best) { if (begin < 0) begin = c; end = c; }
        EXPECT_EQ(QelBinImgSearchCenterX(img.data(), w, h, x1, x2), (begin + end) / 2) << "seed " << seed;
    }
}

TEST(BinaryCount, SearchCenterXRefusesWidthsOver4096) {
    Image img(4097, 1, 255);
    EXPECT_EQ(QelBinImgSearchCenterX(img.data(), img.w, img.h, 100, 200), 0);
}

// ---- point deletion -------------------------------------------------------------------------

TEST(BinaryPoints, IsolatedPointGoesButPairsAndBorderRowsStay) {
    Image img(8, 6);
    img.at(3, 2) = 255;                   // isolated: goes
    img.at(5, 3) = 255, img.at(6, 4) = 255;  // a diagonal pair: stays
    img.at(4, 0) = 255;                   // row 0 is never examined
    QelBinImgDeleteIsolatedPoints(img.data(), img.w, img.h);
    EXPECT_EQ(img.at(3, 2), 0);
    EXPECT_EQ(img.at(5, 3), 255);
    EXPECT_EQ(img.at(6, 4), 255);
    EXPECT_EQ(img.at(4, 0), 255);
}

TEST(BinaryPoints, IsolatedPointTestWrapsAroundTheRowEnds) {
    Image img(8, 6);
    // Column 0 of row 2 sees the last pixel of row 1 as its left neighbour, and column 7 of row 3
    // sees the first pixel of row 4 as its right neighbour: both are kept.
    img.at(0, 2) = 255, img.at(7, 1) = 255;
    img.at(7, 3) = 255, img.at(0, 4) = 255;
    // Column 0 of row 1 with nothing around (its upper-left neighbour lies before the buffer) goes.
    Image lone(8, 6);
    lone.at(0, 1) = 255;
    lone.at(7, 4) = 255;  // the last visited pixel: its lower-right neighbour lies after the buffer
    QelBinImgDeleteIsolatedPoints(img.data(), img.w, img.h);
    QelBinImgDeleteIsolatedPoints(lone.data(), lone.w, lone.h);
    EXPECT_EQ(img.at(0, 2), 255);
    EXPECT_EQ(img.at(7, 3), 255);
    EXPECT_EQ(lone.at(0, 1), 0);
    EXPECT_EQ(lone.at(7, 4), 0);
}

TEST(BinaryPoints, DeletionsBelowNAreSeenByLaterPixels) {
    // A horizontal pair: the first pixel has one like neighbour (< 2) and goes; the second then has
    // none and goes too.
    Image img(6, 5);
    img.at(2, 2) = 255, img.at(3, 2) = 255;
    QelBinImgDeletePointsLessThanN(img.data(), img.w, img.h, 255, 2);
    EXPECT_EQ(img.at(2, 2), 0);
    EXPECT_EQ(img.at(3, 2), 0);
    // With value 0 the deleted pixels become 255: a black pixel with 8 black neighbours (> 7)
    // turns white; one on the frame is not examined.
    Image black(5, 5, 0);
    QelBinImgDeletePointsMoreThanN(black.data(), black.w, black.h, 0, 7);
    EXPECT_EQ(black.at(1, 1), 255);  // first in raster order, sees 8 black neighbours
    EXPECT_EQ(black.at(2, 1), 0);    // now sees 7
    EXPECT_EQ(black.at(0, 0), 0);
}

// ---- 3 × 3 rank filters ---------------------------------------------------------------------

TEST(BinaryRank, DilationGrowsAWhitePointToItsSquare) {
    Image img(7, 7), out(7, 7, 9);
    img.at(3, 3) = 255;
    QelBinImgMaxFilter3x3(img.data(), img.w, img.h, out.data());
    for (int y = 0; y < 7; ++y)
        for (int x = 0; x < 7; ++x) EXPECT_EQ(out.at(x, y), (std::abs(x - 3) <= 1 && std::abs(y - 3) <= 1) ? 255 : 0);
}

TEST(BinaryRank, ErosionLeavesALoneBlackPixelButSpreadsAPair) {
    Image one(9, 9, 255), out(9, 9);
    one.at(4, 4) = 0;
    QelBinImgMinFilter3x3(one.data(), one.w, one.h, out.data());
    EXPECT_EQ(out.px, one.px);  // the mirror of dilation would have eroded its square

    Image pair(9, 9, 255);
    pair.at(4, 4) = 0, pair.at(5, 4) = 0;
    QelBinImgMinFilter3x3(pair.data(), pair.w, pair.h, out.data());
    for (int y = 0; y < 9; ++y)
        for (int x = 0; x < 9; ++x)
            EXPECT_EQ(out.at(x, y), (x >= 3 && x <= 6 && y >= 3 && y <= 5) ? 0 : 255) << x << "," << y;
}

TEST(BinaryRank, RectangleFormTakesItsRowBoundFromTheWidth) {
    // Width 6, height 12: centres stop at row width − 2 = 4 even though the rectangle goes lower.
    Image img(6, 12), out(6, 12, 7);
    img.at(2, 3) = 255;
    img.at(2, 8) = 255;
    QelBinImgMaxFilter3x3(img.data(), img.w, img.h, 0, 5, 0, 10, out.data());
    EXPECT_EQ(out.at(1, 4), 255);  // dilated around row 3
    EXPECT_EQ(out.at(2, 8), 255);  // copied
    EXPECT_EQ(out.at(1, 8), 0);    // not dilated around row 8
    EXPECT_EQ(out.at(0, 11), 7);   // outside the rectangle: untouched
    // A wide image: the width bound would pass the bottom row; centres stop at row height − 2.
    Image wide(20, 4, 255), wideOut(20, 4);
    wide.at(5, 2) = 0, wide.at(6, 2) = 0;
    QelBinImgMinFilter3x3(wide.data(), wide.w, wide.h, 0, 19, 0, 3, wideOut.data());
    EXPECT_EQ(wideOut.at(5, 3), 0);
    EXPECT_EQ(wideOut.at(5, 0), 255);
}

TEST(BinaryRank, ToColorRecoloursNewAndOldMarkers) {
    Image img(6, 6);
    img.at(2, 2) = 255;
    img.at(5, 5) = 200;  // a marker already there also takes the colour
    QelBinImgMaxFilter3x3ToColor(img.data(), img.w, img.h, 77);
    EXPECT_EQ(img.at(1, 1), 77);
    EXPECT_EQ(img.at(3, 3), 77);
    EXPECT_EQ(img.at(2, 2), 255);
    EXPECT_EQ(img.at(5, 5), 77);
    EXPECT_EQ(img.at(4, 4), 0);

    Image hole(6, 6, 255);
    hole.at(2, 2) = 0;
    QelBinImgMinFilter3x3ToColor(hole.data(), hole.w, hole.h, 5);
    EXPECT_EQ(hole.at(3, 1), 5);
    EXPECT_EQ(hole.at(2, 2), 0);
    EXPECT_EQ(hole.at(4, 4), 255);
}

TEST(BinaryRank, MajorityCountsNeighboursAndClearsTheFrame) {
    Image img(5, 5, 255), out(5, 5, 9);
    img.at(2, 2) = 0;
    img.at(1, 1) = 0, img.at(2, 1) = 0, img.at(3, 1) = 0, img.at(1, 2) = 0;
    QelBinImgMedFilter3x3(img.data(), img.w, img.h, out.data());
    EXPECT_EQ(out.at(0, 0), 0);
    EXPECT_EQ(out.at(4, 2), 0);
    EXPECT_EQ(out.at(3, 2), 255);  // 5 white neighbours; the black centre does not count
    EXPECT_EQ(out.at(2, 2), 0);    // 4 white neighbours

    const Bytes r = random_binary(23, 17, 50, 3);
    Bytes o(r.size(), 9);
    QelBinImgMedFilter3x3(const_cast<unsigned char*>(r.data()), 23, 17, o.data());
    EXPECT_TRUE(only_0_and_255(o));
}

TEST(BinaryRank, ThresholdAndMajorityCountsItsObjects) {
    const int w = 19, h = 13;
    Bytes img = random_grey(w, h, 5);
    Bytes out(img.size(), 77);
    const int objects = QelThresholdAndMedFilter3x3(img.data(), w, h, 128, out.data());
    EXPECT_EQ(objects, std::count(out.begin(), out.end(), 255));
    for (int x = 0; x < w; ++x) EXPECT_EQ(out[x], 77);  // row 0 not written
    for (int y = 1; y < h - 1; ++y) EXPECT_EQ(out[y * w], 0);
    for (int y = 1; y < h - 1; ++y)
        for (int x = 1; x < w - 1; ++x) {
            int n = 0;
            for (int dy = -1; dy <= 1; ++dy)
                for (int dx = -1; dx <= 1; ++dx) n += img[(y + dy) * w + x + dx] >= 128;
            EXPECT_EQ(out[y * w + x], (img[y * w + x] >= 128 && n >= 5) ? 255 : 0);
        }
}

TEST(BinaryRank, LittleWhiteFilterFillsTheGapBetweenFourPoints) {
    Image img(9, 9), out(9, 9, 9);
    img.at(3, 3) = 255, img.at(5, 3) = 255, img.at(3, 5) = 255, img.at(5, 5) = 255;
    QelBinImgLittleWhitePixelsMed3x3Filter(img.data(), img.w, img.h, out.data());
    // The black pixel between them has four white neighbours; the points themselves have none.
    EXPECT_EQ(out.at(4, 4), 255);
    EXPECT_EQ(std::count(out.px.begin(), out.px.end(), 255), 1);
}

// ---- box-count filters ----------------------------------------------------------------------

TEST(BinaryBox, CountFilterAgreesWithWindowSumsAndCopiesBorders) {
    const int w = 21, h = 15, rx = 2, ry = 1;
    const Bytes img = random_binary(w, h, 50, 8);
    const unsigned threshold = 255 * 7;
    Bytes out(img.size(), 9);
    EXPECT_TRUE(QelBinImgFilter(const_cast<unsigned char*>(img.data()), w, h, rx, ry, threshold, out.data()));
    auto expected = [&](int x, int y) {
        x = std::clamp(x, rx, w - 1 - rx);
        y = std::clamp(y, ry, h - 1 - ry);
        unsigned s = 0;
        for (int j = -ry; j <= ry; ++j)
            for (int i = -rx; i <= rx; ++i) s += img[(y + j) * w + x + i];
        return s > threshold ? 255 : 0;
    };
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) ASSERT_EQ(out[y * w + x], expected(x, y)) << x << "," << y;
}

// Reference for the masked filter: a centred window shrunk at the borders, mean compared with the
// threshold, 126 in the last column.
Bytes masked_reference(const Bytes& img, const Bytes& mask, int w, int h, int rx, int ry, int t, bool lut) {
    Bytes out(img.size());
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const int hx = std::min({x, rx, w - 1 - x}), hy = std::min({y, ry, h - 1 - y});
            long s = 0;
            for (int j = y - hy; j <= y + hy; ++j)
                for (int i = x - hx; i <= x + hx; ++i) {
                    const int m = mask[j * w + i];
                    s += img[j * w + i] & (lut ? (m <= 128 ? 255 : 0) : (~m & 255));
                }
            const long count = static_cast<long>(2 * hx + 1) * (2 * hy + 1);
            out[y * w + x] = s > count * (x == w - 1 ? 126 : t) ? 255 : 0;
        }
    return out;
}

TEST(BinaryBox, MaskedFiltersShrinkTheWindowAndUse126InTheLastColumn) {
    const int w = 17, h = 12;
    for (int t : {40, 126, 200}) {
        const Bytes img = random_binary(w, h, 55, static_cast<unsigned>(t));
        Bytes mask = random_grey(w, h, static_cast<unsigned>(t) + 1);
        for (auto& m : mask) m = m < 60 ? 255 : m < 120 ? 129 : m < 180 ? 128 : 0;
        Bytes out(img.size());
        Bytes in = img;
        ASSERT_TRUE(QelBinImgRemoveMskAndFilter(in.data(), mask.data(), w, h, 3, 2, t, out.data()));
        EXPECT_EQ(out, masked_reference(img, mask, w, h, 3, 2, t, false)) << "threshold " << t;
        ASSERT_TRUE(QelBinImgRemoveMskAndFilterUseLUT(in.data(), mask.data(), w, h, 3, 2, t, out.data()));
        EXPECT_EQ(out, masked_reference(img, mask, w, h, 3, 2, t, true)) << "threshold " << t;
    }
}

TEST(BinaryBox, MaskedFilterRefusesWidth4095) {
    Image img(4095, 1, 255), mask(4095, 1), out(4095, 1, 9);
    EXPECT_FALSE(QelBinImgRemoveMskAndFilter(img.data(), mask.data(), img.w, img.h, 1, 1, 100, out.data()));
    EXPECT_FALSE(QelBinImgRemoveMskAndFilterUseLUT(img.data(), mask.data(), img.w, img.h, 1, 1, 100, out.data()));
    EXPECT_EQ(out.px, Bytes(4095, 9));
    Image narrower(4094, 1, 255), narrowerMask(4094, 1), narrowerOut(4094, 1);
    EXPECT_TRUE(QelBinImgRemoveMskAndFilter(narrower.data(), narrowerMask.data(), 4094, 1, 1, 1, 100, narrowerOut.data()));
}

// ---- growing-window majority ----------------------------------------------------------------

TEST(BinaryMajority, RowWindowShiftsAtTheEndsAndSkipsRowsWithoutAWindow) {
    // rx0 = 1, ry0 = 0, no growth: a 3-wide majority along each row (mean above 127: two of three).
    Image img(6, 2), out(6, 2, 9);
    const unsigned char row[6] = {255, 255, 0, 0, 255, 0};
    for (int x = 0; x < 6; ++x) img.at(x, 0) = img.at(x, 1) = row[x];
    QelBinImgMedFilter(img.data(), img.w, img.h, 1, 0, 1.0, 1.0, out.data());
    // x = 0 uses columns 0..2; x = 1..3 centred; x = 4, 5 use columns x−2..x.
    const unsigned char expected[6] = {255, 255, 0, 0, 0, 0};
    for (int x = 0; x < 6; ++x) EXPECT_EQ(out.at(x, 0), expected[x]) << x;
    // Both half sizes 0: nothing written.
    Image untouched(6, 2, 9);
    QelBinImgMedFilter(img.data(), img.w, img.h, 0, 0, 1.0, 1.0, untouched.data());
    EXPECT_EQ(untouched.px, Bytes(12, 9));
}

TEST(BinaryMajority, WindowGrowsDownTheImage) {
    // rx0 = 1 with x scale 17: row y has rx = round(1 × (16·y/8 + 1)), so 1 in row 0 and 5 in row
    // 2, where a 2·5+1 window no longer fits 9 columns and the row is left alone.
    const int w = 9, h = 8;
    Image img(w, h, 255), out(w, h, 9);
    QelBinImgMedFilter(img.data(), w, h, 1, 0, 17.0, 1.0, out.data());
    for (int x = 0; x < w; ++x) EXPECT_EQ(out.at(x, 0), 255);  // rx = 1
    for (int x = 0; x < w; ++x) EXPECT_EQ(out.at(x, 2), 9);    // rx = round(1 × (16·2/8 + 1)) = 5: too wide
}

// ---- holes ----------------------------------------------------------------------------------

TEST(BinaryHoles, FillsFromTheNearestPixelRightLeftDownUp) {
    Image img(7, 5), mask(7, 5, 255), out(7, 5);
    mask.at(6, 4) = 0;
    img.at(6, 4) = 200;  // masked off: out is 0 there
    img.at(5, 2) = 10;   // two to the right of (3,2)
    img.at(1, 2) = 20;   // two to the left: the right one comes first
    img.at(3, 4) = 30;   // two below
    QelFillHolesByNearNeighbor(img.data(), mask.data(), img.w, img.h, 3, out.data());
    EXPECT_EQ(out.at(3, 2), 10);
    EXPECT_EQ(out.at(6, 4), 0);
    EXPECT_EQ(out.at(1, 2), 20);  // non-zero pixels are copied
    EXPECT_EQ(out.at(3, 3), 30);  // directly below
    // Maximum distance 1: (3,2) finds nothing.
    QelFillHolesByNearNeighbor(img.data(), mask.data(), img.w, img.h, 1, out.data());
    EXPECT_EQ(out.at(3, 2), 0);
}

TEST(BinaryHoles, LeftLookWrapsIntoTheRowAboveAndRowZeroIsNoSourceFromAbove) {
    Image img(4, 3), mask(4, 3, 255), out(4, 3);
    img.at(3, 0) = 50;  // the last pixel of row 0 is one to the "left" of (0,1)
    QelFillHolesByNearNeighbor(img.data(), mask.data(), img.w, img.h, 1, out.data());
    EXPECT_EQ(out.at(0, 1), 50);
    Image top(4, 3), topOut(4, 3);
    top.at(2, 0) = 60;  // straight above (2,1) but in row 0
    QelFillHolesByNearNeighbor(top.data(), mask.data(), 4, 3, 1, topOut.data());
    EXPECT_EQ(topOut.at(2, 1), 0);
    EXPECT_EQ(topOut.at(3, 0), 60);  // row 0 still fills from its left
}

// ---- largest erosion size -------------------------------------------------------------------

TEST(BinaryErosionSize, EmptyImageGivesZeroAndSizeMinusOne) {
    Image img(8, 8), work(8, 8), result(8, 8);
    int size = 5;
    EXPECT_EQ(QelGetMaxSizeofMinFilter(img.data(), work.data(), result.data(), 8, 8, &size), 0);
    EXPECT_EQ(size, -1);
}

TEST(BinaryErosionSize, ThinLineStopsAtOnceWithDistanceOne) {
    Image img(12, 5), work(12, 5), result(12, 5);
    for (int x = 2; x <= 9; ++x) img.at(x, 2) = 255;
    int size = 0;
    EXPECT_EQ(QelGetMaxSizeofMinFilter(img.data(), work.data(), result.data(), 12, 5, &size), 1);
    EXPECT_EQ(size, 1);
    EXPECT_EQ(result.at(5, 2), 1);  // the column distance replaced the row distance
}

TEST(BinaryErosionSize, SmallSquareErodesOnceToItsCentre) {
    // A 3 × 3 square: distances 1 except 2 at the centre; median 1, so one 3 × 3 erosion leaves the
    // centre, whose largest distance is 1. total = 1 + 1, size = 2·1 + 1.
    int hist[256] = {0};
    hist[1] = 8, hist[2] = 1;
    ASSERT_EQ(std::max(QelGetMedianInHistogram(hist), 1), 1);
    Image img(9, 9), work(9, 9), result(9, 9);
    for (int y = 3; y <= 5; ++y)
        for (int x = 3; x <= 5; ++x) img.at(x, y) = 255;
    int size = 0;
    EXPECT_EQ(QelGetMaxSizeofMinFilter(img.data(), work.data(), result.data(), 9, 9, &size), 2);
    EXPECT_EQ(size, 3);
}

TEST(BinaryErosionSize, EndsOnAnImageThatNoErosionChanges) {
    // All white: no zero pixel to erode from, so every round would be the same.
    Image img(10, 10, 255), work(10, 10), result(10, 10);
    int size = 0;
    const int total = QelGetMaxSizeofMinFilter(img.data(), work.data(), result.data(), 10, 10, &size);
    // Distances min(row, column) of a 10 × 10 square: median 2, largest 5; the 5 × 5 erosion
    // keeps every pixel (the border rows and columns copy the computed ones), so the loop ends.
    EXPECT_EQ(total, 2 + 5);
    EXPECT_EQ(size, 2 * 2 + 5);
}

}  // namespace
