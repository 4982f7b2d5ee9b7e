#include <qel.h>

#include "support/test_images.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <utility>
#include <vector>

namespace {

using qel_test::Bytes;

struct Image {
    int w, h;
    Bytes px;
    Image(int width, int height, unsigned char fill = 0) : w(width), h(height), px(width * height, fill) {}
    unsigned char& at(int x, int y) { return px[y * w + x]; }
    unsigned char* data() { return px.data(); }
    Image& set(std::initializer_list<std::pair<int, int>> points, unsigned char v = 255) {
        for (const auto& [x, y] : points) at(x, y) = v;
        return *this;
    }
    Image& box(int x0, int x1, int y0, int y1, unsigned char v) {
        for (int y = y0; y <= y1; ++y)
            for (int x = x0; x <= x1; ++x) at(x, y) = v;
        return *this;
    }
};

// A w x h image whose pixels are 255 with the given chance in percent, else 0.
Bytes random_binary(int w, int h, int percentWhite, unsigned seed) {
    Bytes v = qel_test::random_grey(w, h, seed);
    for (auto& b : v) b = b * 100 < percentWhite * 256 ? 255 : 0;
    return v;
}

// Sum of columns x0..x1 of rows y0..y1.
int64_t window_sum(const Bytes& img, int w, int x0, int x1, int y0, int y1) {
    int64_t s = 0;
    for (int y = y0; y <= y1; ++y)
        for (int x = x0; x <= x1; ++x) s += img[y * w + x];
    return s;
}

// Number of pixels in the 3 x 3 window around (x, y), centre excluded, that are at least t.
int neighbours_at_least(const Bytes& img, int w, int x, int y, int t) {
    int n = 0;
    for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx) n += (dx || dy) && img[(y + dy) * w + x + dx] >= t;
    return n;
}

TEST(BinaryCount, HandWorkedCounts) {
    Image img(5, 3);
    img.set({{1, 0}, {0, 2}}, 3).set({{4, 0}}, 7).set({{2, 1}}, 9);
    int x = -7, y = -9;
    EXPECT_EQ(QelBinImgCentroid(img.data(), 5, 3, &x, &y), 4);
    EXPECT_EQ(x, 7 / 4);  // truncated
    EXPECT_EQ(y, 3 / 4);
    EXPECT_EQ(QelPixelsInGryImg(img.data(), 5, 3, 3), 2);
    EXPECT_EQ(QelGetWhitePixelsNum(img.data(), 5, 3, -1, 2, 1, 5), 2);  // clipped to columns 0..2, rows 1..2
    EXPECT_DOUBLE_EQ(QelGetBlackRatioInBinaryImg(img.data(), 5, 1, 3, 0, 1), 4.0 / 6);
    Image empty(6, 4);
    x = -7, y = -9;
    EXPECT_EQ(QelBinImgCentroid(empty.data(), 6, 4, &x, &y), 0);
    EXPECT_EQ(std::make_pair(x, y), std::make_pair(-7, -9)) << "outputs written for an empty image";
}

TEST(BinaryCount, SearchCenterXTakesTheMiddleOfTheMostVotedColumns) {
    // Runs vote +1 for each column c after their start and +1 for each before their end, when
    // end − start > 10: [5,30], [10,40] and [35,46] vote, [2,12] does not. Votes: 3 on 0..5, 4 on
    // 6..10, 5 on 11..29, 4 on 30..35, 5 on 36..39, 4 on 40..45, 3 on 46..49.
    Image img(50, 3);
    img.box(5, 30, 0, 0, 255).box(10, 40, 1, 1, 255).box(2, 12, 2, 2, 255).box(35, 46, 2, 2, 255);
    EXPECT_EQ(QelBinImgSearchCenterX(img.data(), 50, 3, 0, 49), (11 + 39) / 2);  // first to last maximum
    EXPECT_EQ(QelBinImgSearchCenterX(img.data(), 50, 3, 32, 49), (36 + 39) / 2);
    Image empty(50, 3);  // all columns tie at 0
    EXPECT_EQ(QelBinImgSearchCenterX(empty.data(), 50, 3, 3, 20), (3 + 20) / 2);
    Image wide(4097, 1, 255);
    EXPECT_EQ(QelBinImgSearchCenterX(wide.data(), wide.w, wide.h, 100, 200), 0);
}

TEST(BinaryPoints, IsolatedPointsGoAndNeighboursWrapAcrossRowEnds) {
    // Row 0 is never examined; (0,1) and (7,5), the first and last pixels visited, and (3,2) are
    // alone. Column 7's right neighbour is column 0 of the row below, and the other way round for
    // the left neighbour, so (7,3) and (0,4) keep each other; so does a diagonal pair.
    Image img(8, 7);
    img.set({{4, 0}, {0, 1}, {3, 2}, {7, 3}, {0, 4}, {4, 4}, {5, 5}, {7, 5}});
    QelBinImgDeleteIsolatedPoints(img.data(), img.w, img.h);
    EXPECT_EQ(img.px, Image(8, 7).set({{4, 0}, {7, 3}, {0, 4}, {4, 4}, {5, 5}}).px);
}

TEST(BinaryPoints, LikeNeighbourDeletionsAreSeenByLaterPixels) {
    // A horizontal pair with n = 2: the first has one like neighbour and goes, then the second has none.
    Image pair(6, 5);
    pair.set({{2, 2}, {3, 2}});
    QelBinImgDeletePointsLessThanN(pair.data(), pair.w, pair.h, 255, 2);
    EXPECT_EQ(pair.px, Image(6, 5).px);
    // Value 0 turns into 255: (1,1) sees 8 black neighbours (> 7) and turns, then (2,1) sees only 7
    // and stays, (3,1) 8 again, and so on; the frame is not examined.
    Image black(5, 5);
    QelBinImgDeletePointsMoreThanN(black.data(), black.w, black.h, 0, 7);
    EXPECT_EQ(black.px, Image(5, 5).set({{1, 1}, {3, 1}, {1, 3}, {3, 3}}).px);
}

TEST(BinaryRank, DilationGrowsAPointButErosionNeedsTwoBlackPixels) {
    Image point(7, 7), out(7, 7, 9);
    QelBinImgMaxFilter3x3(point.set({{3, 3}}).data(), 7, 7, out.data());
    EXPECT_EQ(out.px, Image(7, 7).box(2, 4, 2, 4, 255).px);
    // A lone black pixel has no black neighbour and spreads nothing; a pair erodes both squares.
    Image lone(9, 9, 255), pair(9, 9, 255), eroded(9, 9);
    QelBinImgMinFilter3x3(lone.set({{4, 4}}, 0).data(), 9, 9, eroded.data());
    EXPECT_EQ(eroded.px, lone.px);
    QelBinImgMinFilter3x3(pair.set({{4, 4}, {5, 4}}, 0).data(), 9, 9, eroded.data());
    EXPECT_EQ(eroded.px, Image(9, 9, 255).box(3, 6, 3, 5, 0).px);
}

TEST(BinaryRank, RectangleFormTakesItsRowBoundFromTheWidth) {
    // Width 6, height 12: centres stop at row width − 2 = 4 although the rectangle goes lower.
    Image img(6, 12), out(6, 12, 7);
    QelBinImgMaxFilter3x3(img.set({{2, 3}, {2, 8}}).data(), img.w, img.h, 0, 5, 0, 10, out.data());
    EXPECT_EQ(out.px, Image(6, 12, 7).box(0, 5, 0, 10, 0).box(1, 3, 2, 4, 255).set({{2, 8}}).px);
    // Wide image: the width bound would pass the last row, so centres stop at row height − 2.
    Image wide(20, 4, 255), wideOut(20, 4);
    QelBinImgMinFilter3x3(wide.set({{5, 2}, {6, 2}}, 0).data(), wide.w, wide.h, 0, 19, 0, 3, wideOut.data());
    EXPECT_EQ(wideOut.px, Image(20, 4, 255).box(4, 7, 1, 3, 0).px);
}

TEST(BinaryRank, ToColorRecoloursNewAndOldMarkers) {
    Image img(6, 6);  // a 200 already in the image takes the colour too
    QelBinImgMaxFilter3x3ToColor(img.set({{2, 2}}).set({{5, 5}}, 200).data(), 6, 6, 77);
    EXPECT_EQ(img.px, Image(6, 6).box(1, 3, 1, 3, 77).set({{2, 2}}).set({{5, 5}}, 77).px);
    Image hole(6, 6, 255);
    QelBinImgMinFilter3x3ToColor(hole.set({{2, 2}}, 0).data(), 6, 6, 5);
    EXPECT_EQ(hole.px, Image(6, 6, 255).box(1, 3, 1, 3, 5).set({{2, 2}}, 0).px);
}

// The 3 × 3 majority and the threshold-and-majority against neighbour counts, pixel by pixel.
void check_majority_filters(int w, int h, unsigned seed) {
    const int t = 128;
    const Bytes grey = qel_test::random_grey(w, h, seed), binary = random_binary(w, h, 50, seed + 1);
    Bytes med(grey.size(), 9), thr(grey.size(), 77);
    QelBinImgMedFilter3x3(const_cast<unsigned char*>(binary.data()), w, h, med.data());
    const int objects = QelThresholdAndMedFilter3x3(const_cast<unsigned char*>(grey.data()), w, h, t, thr.data());
    EXPECT_EQ(objects, std::count(thr.begin(), thr.end(), 255));
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            SCOPED_TRACE(testing::Message() << x << "," << y);
            const bool frameRow = y == 0 || y == h - 1, frame = frameRow || x == 0 || x == w - 1;
            // Non-zero neighbours only, centre excluded: 255 from 5 of 8.
            EXPECT_EQ(med[y * w + x], !frame && neighbours_at_least(binary, w, x, y, 1) >= 5 ? 255 : 0);
            // The centre must reach t and counts as one of the nine; rows 0 and h−1 are not written.
            const bool object = !frame && grey[y * w + x] >= t && 1 + neighbours_at_least(grey, w, x, y, t) >= 5;
            EXPECT_EQ(thr[y * w + x], frameRow ? 77 : object ? 255 : 0);
        }
}

// Widths 1..70 take the 16- and 32-centre steps and every tail.
TEST(BinaryRank, MajorityFiltersAgreeWithNeighbourCounts) {
    for (int w = 1; w <= 70; ++w)
        for (int h : {4, 13}) {
            SCOPED_TRACE(testing::Message() << w << " x " << h);
            check_majority_filters(w, h, static_cast<unsigned>(w * 100 + h));
        }
}

TEST(BinaryCount, CountsInRectanglesAgreeWithPixelByPixelCounts) {
    for (int w = 1; w <= 70; ++w) {
        SCOPED_TRACE(w);
        const int h = 3;
        Bytes img = random_binary(w, h, 50, static_cast<unsigned>(w));
        img[0] = 7;  // one pixel neither 0 nor 255
        int nonZero = 0, sevens = 0;
        for (unsigned char v : img) {
            nonZero += v != 0 ? 1 : 0;
            sevens += v == 7 ? 1 : 0;
        }
        EXPECT_EQ(QelGetWhitePixelsNum(img.data(), w, h, 0, w - 1, 0, h - 1), nonZero);
        EXPECT_EQ(QelPixelsInGryImg(img.data(), w, h, 7), sevens);
        EXPECT_EQ(QelPixelsInGryImg(img.data(), w, h, 0), w * h - nonZero);
        EXPECT_EQ(QelPixelsInGryImg(img.data(), w, h, 256), 0);  // no byte is 256
        EXPECT_DOUBLE_EQ(QelGetBlackRatioInBinaryImg(img.data(), w, 0, w - 1, 0, h - 1),
                         (w * h - nonZero) * 1.0 / (w * h));
        // Columns 1..w−1 of row 1 only.
        int inRow = 0;
        for (int x = 1; x < w; ++x) inRow += img[w + x] != 0 ? 1 : 0;
        EXPECT_EQ(QelGetWhitePixelsNum(img.data(), w, h, 1, w - 1, 1, 1), inRow);
    }
}

TEST(BinaryRank, LittleWhiteFilterFillsTheGapBetweenFourPoints) {
    // The black pixel between them has four white neighbours; the points themselves have none.
    Image img(9, 9), out(9, 9, 9);
    QelBinImgLittleWhitePixelsMed3x3Filter(img.set({{3, 3}, {5, 3}, {3, 5}, {5, 5}}).data(), 9, 9, out.data());
    EXPECT_EQ(out.px, Image(9, 9).set({{4, 4}}).px);
}

TEST(BinaryBox, CountFilterAgreesWithWindowSumsAndCopiesBorders) {
    const int w = 21, h = 15, rx = 2, ry = 1;
    const unsigned threshold = 255 * 7;
    Bytes img = random_binary(w, h, 50, 8), out(img.size(), 9);
    EXPECT_TRUE(QelBinImgFilter(img.data(), w, h, rx, ry, threshold, out.data()));
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const int cx = std::clamp(x, rx, w - 1 - rx), cy = std::clamp(y, ry, h - 1 - ry);
            const int64_t s = window_sum(img, w, cx - rx, cx + rx, cy - ry, cy + ry);
            ASSERT_EQ(out[y * w + x], s > threshold ? 255 : 0) << x << "," << y;
        }
}

TEST(BinaryBox, MaskedFiltersShrinkTheWindowAndUse126InTheLastColumn) {
    const int w = 17, h = 12, rx = 3, ry = 2;
    for (int t : {40, 126, 200})
        for (bool lut : {false, true}) {
            SCOPED_TRACE(testing::Message() << "threshold " << t << (lut ? " LUT" : ""));
            Bytes img = random_binary(w, h, 55, t), mask = qel_test::random_grey(w, h, t + 1), out(img.size());
            for (auto& m : mask) m = m < 60 ? 255 : m < 120 ? 129 : m < 180 ? 128 : 0;
            auto filter = lut ? QelBinImgRemoveMskAndFilterUseLUT : QelBinImgRemoveMskAndFilter;
            ASSERT_TRUE(filter(img.data(), mask.data(), w, h, rx, ry, t, out.data()));
            Bytes masked = img;  // the LUT form keeps pixels under mask values up to 128
            for (size_t i = 0; i < img.size(); ++i) masked[i] &= lut ? (mask[i] <= 128 ? 255 : 0) : ~mask[i];
            for (int y = 0; y < h; ++y)
                for (int x = 0; x < w; ++x) {
                    const int hx = std::min({x, rx, w - 1 - x}), hy = std::min({y, ry, h - 1 - y});
                    const int64_t s = window_sum(masked, w, x - hx, x + hx, y - hy, y + hy);
                    const long pixels = (2 * hx + 1) * (2 * hy + 1);
                    ASSERT_EQ(out[y * w + x], s > pixels * (x == w - 1 ? 126 : t) ? 255 : 0) << x << "," << y;
                }
        }
}

TEST(BinaryBox, MaskedFiltersLeaveAWindowMeanExactlyAtTheThresholdOff) {
    // Threshold 85, 3-wide windows: one object pixel of three gives a mean of exactly 85 (off), two
    // give 170 (on). Three equal rows change every count and pixel total alike. Column 0 sees only
    // itself, masked by 129: removed by the table-driven form, 255 & ~129 = 126 (on) in the other.
    const int w = 8, h = 3;
    Bytes row = {255, 0, 0, 0, 255, 255, 0, 0}, img, mask(w * h, 0);
    for (int y = 0; y < h; ++y) img.insert(img.end(), row.begin(), row.end());
    mask[0] = mask[8] = mask[16] = 129;
    for (bool lut : {false, true}) {
        Bytes out(img.size(), 9);
        auto filter = lut ? QelBinImgRemoveMskAndFilterUseLUT : QelBinImgRemoveMskAndFilter;
        ASSERT_TRUE(filter(img.data(), mask.data(), w, h, 1, 1, 85, out.data()));
        // Columns 3 and 6 sum exactly 255 over 3 pixels; columns 4 and 5 sum 510.
        const Bytes expected = {static_cast<unsigned char>(lut ? 0 : 255), 0, 0, 0, 255, 255, 0, 0};
        for (int y = 0; y < h; ++y) EXPECT_EQ(qel_test::row_of(out, w, y), expected) << y << (lut ? " LUT" : "");
    }
}

TEST(BinaryBox, MaskedFiltersRefuseWidth4095) {
    Image img(4095, 1, 255), mask(4095, 1), out(4095, 1, 9);
    EXPECT_FALSE(QelBinImgRemoveMskAndFilter(img.data(), mask.data(), img.w, img.h, 1, 1, 100, out.data()));
    EXPECT_FALSE(QelBinImgRemoveMskAndFilterUseLUT(img.data(), mask.data(), img.w, img.h, 1, 1, 100, out.data()));
    EXPECT_EQ(out.px, Image(4095, 1, 9).px);
    EXPECT_TRUE(QelBinImgRemoveMskAndFilter(img.data(), mask.data(), 4094, 1, 1, 1, 100, out.data()));
}

TEST(BinaryMajority, RowWindowShiftsAtTheEndsGrowsDownAndSkipsRowsWithoutAWindow) {
    // rx0 = 1, ry0 = 0, no growth: a 3-wide majority along each row (mean above 127: two of three).
    // x = 0 uses columns 0..2, x = 1..3 are centred, x = 4 and 5 use columns x−2..x.
    Image img(6, 2), out(6, 2, 9);
    img.set({{0, 0}, {1, 0}, {4, 0}, {0, 1}, {1, 1}, {4, 1}});
    QelBinImgMedFilter(img.data(), img.w, img.h, 1, 0, 1.0, 1.0, out.data());
    EXPECT_EQ(out.px, Image(6, 2).set({{0, 0}, {1, 0}, {0, 1}, {1, 1}}).px);
    Image untouched(6, 2, 9);  // both half sizes 0: nothing written
    QelBinImgMedFilter(img.data(), img.w, img.h, 0, 0, 1.0, 1.0, untouched.data());
    EXPECT_EQ(untouched.px, Image(6, 2, 9).px);
    // x scale 17 on 8 rows: rx = round(1 × (16·y/8 + 1)) is 1 in row 0, 3 in row 1 and 5 in row 2,
    // where a 2·5+1 window no longer fits 9 columns: that row and all below are left alone.
    Image white(9, 8, 255), grown(9, 8, 9);
    QelBinImgMedFilter(white.data(), 9, 8, 1, 0, 17.0, 1.0, grown.data());
    EXPECT_EQ(grown.px, Image(9, 8, 9).box(0, 8, 0, 1, 255).px);  // row 1 has rx = 3
}

TEST(BinaryHoles, FillsFromTheNearestPixelRightLeftDownUp) {
    Image img(7, 5), mask(7, 5, 255), out(7, 5);
    mask.at(6, 4) = 0;   // masked off: 0 whatever the image holds
    img.at(6, 4) = 200;
    img.at(5, 2) = 10;   // two right of (3,2)
    img.at(1, 2) = 20;   // two left: the right one comes first
    img.at(3, 4) = 30;   // one below (3,3)
    img.at(6, 0) = 40;   // the last pixel of row 0 is one "left" of (0,1): the look wraps across the row start
    img.at(2, 0) = 50;   // straight above (2,1), but row 0 is never a source from above
    QelFillHolesByNearNeighbor(img.data(), mask.data(), img.w, img.h, 3, out.data());
    EXPECT_EQ(out.at(3, 2), 10);
    EXPECT_EQ(out.at(6, 4), 0);
    EXPECT_EQ(out.at(1, 2), 20);  // object pixels are copied
    EXPECT_EQ(out.at(3, 3), 30);
    QelFillHolesByNearNeighbor(img.data(), mask.data(), img.w, img.h, 1, out.data());
    EXPECT_EQ(out.at(3, 2), 0);   // nothing within distance 1
    EXPECT_EQ(out.at(0, 1), 40);
    EXPECT_EQ(out.at(2, 1), 0);
    EXPECT_EQ(out.at(3, 0), 50);  // row 0 itself fills from its left
}

TEST(BinaryErosionSize, HandWorkedTotalsAndSizes) {
    int size = 5;
    Image result(12, 5);
    auto total = [&](Image img) {
        Image work(img.w, img.h);
        result = Image(img.w, img.h);
        return QelGetMaxSizeofMinFilter(img.data(), work.data(), result.data(), img.w, img.h, &size);
    };
    EXPECT_EQ(total(Image(8, 8)), 0);  // empty: nothing to erode
    EXPECT_EQ(size, -1);
    EXPECT_EQ(total(Image(12, 5).box(2, 9, 2, 2, 255)), 1);  // one-pixel line: largest distance 1 at once
    EXPECT_EQ(size, 1);
    EXPECT_EQ(result.at(5, 2), 1) << "the column distance replaces the row distance";
    // 3 x 3 square: distances 1 except 2 at the centre; median 1, one 3 x 3 erosion leaves the centre.
    EXPECT_EQ(total(Image(9, 9).box(3, 5, 3, 5, 255)), 1 + 1);
    EXPECT_EQ(size, 2 * 1 + 1);
    // All white: distances min(row, column) to the border, median 2, largest 5; the 5 x 5 erosion
    // keeps every pixel (borders copy the computed rows), so the loop ends instead of repeating.
    EXPECT_EQ(total(Image(10, 10, 255)), 2 + 5);
    EXPECT_EQ(size, 2 * 2 + 5);
}

}  // namespace

// The 3 × 3 spread as stated, centre by centre: an interior centre of the rule's kind (non-zero for
// dilation, zero for erosion) with a zero among its 8 neighbours writes the value into all 8.
Bytes spread_reference(const Bytes& img, int w, int h, bool fromObject, unsigned char value) {
    Bytes out = img;
    for (int y = 1; y < h - 1; ++y)
        for (int x = 1; x < w - 1; ++x) {
            if ((img[y * w + x] != 0) != fromObject) continue;
            bool zeroNear = false;
            for (int dy = -1; dy <= 1; ++dy)
                for (int dx = -1; dx <= 1; ++dx)
                    if ((dx || dy) && img[(y + dy) * w + x + dx] == 0) zeroNear = true;
            if (!zeroNear) continue;
            for (int dy = -1; dy <= 1; ++dy)
                for (int dx = -1; dx <= 1; ++dx)
                    if (dx || dy) out[(y + dy) * w + x + dx] = value;
        }
    return out;
}

TEST(BinaryRank3x3, WholeImageSpreadMatchesTheCentreByCentreRuleAtEveryWidth) {
    // Widths 1..70 cover every tail of the 16- and 32-pixel steps, the wider ones several 64-pixel
    // words; values other than 0 and 255 show which pixels keep their input. Odd heights have many
    // zeros, even ones few, so that whole 32-pixel halves of a word are kept or filled too.
    std::vector<int> widths = {127, 128, 129, 191, 200};
    for (int w = 1; w <= 70; ++w) widths.push_back(w);
    for (int w : widths)
        for (int h : {1, 2, 3, 4, 7, 8}) {
            SCOPED_TRACE(testing::Message() << w << " x " << h);
            Bytes img = qel_test::random_bytes(static_cast<size_t>(w) * h, static_cast<unsigned>(w * 31 + h));
            const int zeros = h % 2 == 1 ? 100 : 4;
            for (unsigned char& v : img) v = v < zeros ? 0 : v < 200 ? 255 : v;
            Bytes dilated(img.size(), 1), eroded(img.size(), 1);
            QelBinImgMaxFilter3x3(img.data(), w, h, dilated.data());
            QelBinImgMinFilter3x3(img.data(), w, h, eroded.data());
            ASSERT_EQ(dilated, spread_reference(img, w, h, true, 255));
            ASSERT_EQ(eroded, spread_reference(img, w, h, false, 0));
        }
}

TEST(BinaryRank3x3, WholeImageSpreadOfSparseBlobsAcrossWordEdges) {
    // Few zeros among white (and few whites among black): long stretches where nothing spreads,
    // and widths around 64 and 128 pixels.
    for (int w : {63, 64, 65, 127, 128, 129, 200})
        for (unsigned seed = 0; seed < 4; ++seed) {
            SCOPED_TRACE(testing::Message() << w << " seed " << seed);
            const int h = 9;
            Bytes img = qel_test::random_bytes(static_cast<size_t>(w) * h, seed + static_cast<unsigned>(w));
            const bool darkOnWhite = seed % 2 == 0;
            for (unsigned char& v : img) v = (v < 8) == darkOnWhite ? 0 : v < 128 ? 255 : v;
            Bytes dilated(img.size(), 1), eroded(img.size(), 1);
            QelBinImgMaxFilter3x3(img.data(), w, h, dilated.data());
            QelBinImgMinFilter3x3(img.data(), w, h, eroded.data());
            ASSERT_EQ(dilated, spread_reference(img, w, h, true, 255));
            ASSERT_EQ(eroded, spread_reference(img, w, h, false, 0));
        }
}
