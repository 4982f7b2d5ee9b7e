// Run-length operations along rows (RLX) and columns (RLY).
#include <qel.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace {

using Image = std::vector<unsigned char>;

Image row_image(std::initializer_list<int> values) {
    Image img;
    for (int v : values) img.push_back(static_cast<unsigned char>(v));
    return img;
}

Image random_binary(int width, int height, unsigned seed, int percentWhite = 50) {
    std::mt19937 rng(seed);
    Image img(static_cast<size_t>(width) * height);
    for (auto& p : img) p = static_cast<int>(rng() % 100) < percentWhite ? 255 : 0;
    return img;
}

Image transpose(const Image& img, int width, int height) {
    Image t(img.size());
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) t[x * height + y] = img[y * width + x];
    return t;
}

// Clears the last column, so that no row run reaches the right edge and rows measure in full.
void clear_last_column_and_row(Image& img, int width, int height) {
    for (int y = 0; y < height; ++y) img[y * width + width - 1] = 0;
    std::fill_n(img.begin() + (height - 1) * width, width, 0);
}

TEST(RunLengthCounts, RowRunReachingTheRightEdgeIsOneShort) {
    const int w = 10;
    Image img(w, 0);
    std::fill(img.begin() + 3, img.end(), 255);  // white from column 3 to the right end
    std::vector<int> hist(w + 1, 0);
    QelRLXWhiteCount(img.data(), w, 1, hist.data(), w);
    EXPECT_EQ(hist[w - 4], 1);
    EXPECT_EQ(std::count(hist.begin(), hist.end(), 0), w);

    Image bright(img);
    std::replace(bright.begin(), bright.end(), 255, 230);
    int total = -1, shortest = -1, longest = -1, most = -1;
    EXPECT_EQ(QelRLXWhiteCount(bright.data(), w, 1, 0, w - 1, 0, 0, &total, &shortest, &longest, &most), 1);
    EXPECT_EQ(longest, w - 3);  // the statistics form measures in full
    EXPECT_EQ(shortest, w - 3);
    EXPECT_EQ(total, w - 3);
    EXPECT_EQ(most, 1);

    Image copy(img);
    QelRLXWhiteDeleteLong(copy.data(), w, 1, w - 5, 7);
    EXPECT_EQ(copy, row_image({0, 0, 0, 7, 7, 7, 7, 7, 7, 255}));  // the last pixel stays
}

TEST(RunLengthCounts, HistogramFormsAgreeWithMaximalRuns) {
    const int w = 17, h = 13, cap = 6;
    const Image img = random_binary(w, h, 1);
    std::vector<int> white(cap + 1, 0), black(cap + 1, 0), colWhite(cap + 1, 0), colBlack(cap + 1, 0);
    QelRLXWhiteCount(const_cast<unsigned char*>(img.data()), w, h, white.data(), cap);
    QelRLXBlackCount(const_cast<unsigned char*>(img.data()), w, h, black.data(), cap);
    QelRLYWhiteCount(const_cast<unsigned char*>(img.data()), w, h, colWhite.data(), cap);
    QelRLYBlackCount(const_cast<unsigned char*>(img.data()), w, h, colBlack.data(), cap);
    std::vector<int> rw(cap + 1, 0), rb(cap + 1, 0), cw(cap + 1, 0), cb(cap + 1, 0);
    for (int y = 0; y < h; ++y)
        for (int s = 0; s < w;) {
            int e = s;
            while (e < w && (img[y * w + e] != 0) == (img[y * w + s] != 0)) ++e;
            const int length = std::min(e, w - 1) - s;  // rows: a run at the edge is one short
            (img[y * w + s] != 0 ? rw : rb)[std::min(length, cap)]++;
            s = e;
        }
    for (int x = 0; x < w; ++x)
        for (int s = 0; s < h;) {
            int e = s;
            while (e < h && (img[e * w + x] != 0) == (img[s * w + x] != 0)) ++e;
            (img[s * w + x] != 0 ? cw : cb)[std::min(e - s, cap)]++;
            s = e;
        }
    EXPECT_EQ(white, rw);
    EXPECT_EQ(black, rb);
    EXPECT_EQ(colWhite, cw);
    EXPECT_EQ(colBlack, cb);
}

TEST(RunLengthCounts, StatisticsStartNeeds201ButContinuationOnly200) {
    Image img = row_image({200, 201, 200, 200, 0, 200, 250, 100, 255});
    const int w = static_cast<int>(img.size());
    int total, shortest, longest, most;
    EXPECT_EQ(QelRLXWhiteCount(img.data(), w, 1, 0, w - 1, 0, 0, &total, &shortest, &longest, &most), 3);
    EXPECT_EQ(total, 3 + 1 + 1);
    EXPECT_EQ(shortest, 1);
    EXPECT_EQ(longest, 3);
    EXPECT_EQ(most, 3);
    // cut at x2: the run at columns 1..3 measures 2 when x2 = 2
    EXPECT_EQ(QelRLXWhiteCount(img.data(), w, 1, 0, 2, 0, 0, &total, &shortest, &longest, &most), 1);
    EXPECT_EQ(longest, 2);
}

TEST(RunLengthCounts, ColumnStatisticsMirrorTheRowForm) {
    const int w = 12, h = 12;  // square, so that both forms start the shortest run at the same value
    Image img = random_binary(w, h, 2);
    for (auto& p : img) p = p ? 230 : 120;
    Image t = transpose(img, w, h);
    int a[4], b[4];
    const int rows = QelRLXWhiteCount(img.data(), w, h, 2, 9, 1, 10, &a[0], &a[1], &a[2], &a[3]);
    const int cols = QelRLYWhiteCount(t.data(), h, w, 1, 10, 2, 9, &b[0], &b[1], &b[2], &b[3]);
    EXPECT_EQ(rows, cols);
    EXPECT_TRUE(std::equal(a, a + 4, b));
    EXPECT_GT(rows, 0);
}

TEST(RunLengthDelete, ShortAndLongRowRunsOnAHandBuiltRow) {
    const Image row = row_image({0, 255, 0, 255, 255, 0, 255, 255, 255, 0, 255, 255, 255, 255, 0});
    const int w = static_cast<int>(row.size());
    Image img(row);
    QelRLXWhiteDeleteShort(img.data(), w, 1, 3, 0);
    EXPECT_EQ(img, row_image({0, 0, 0, 0, 0, 0, 255, 255, 255, 0, 255, 255, 255, 255, 0}));
    img = row;
    QelRLXWhiteDeleteLong(img.data(), w, 1, 3, 9);
    EXPECT_EQ(img, row_image({0, 255, 0, 255, 255, 0, 255, 255, 255, 0, 9, 9, 9, 9, 0}));
}

TEST(RunLengthDelete, BlackShortRunsAreLookedForFromColumnOne) {
    // The black run at column 0 is never seen; the one from column 11 ends at the last column.
    Image img = row_image({0, 255, 0, 255, 0, 0, 255, 0, 0, 0, 255, 0, 0});
    const int w = static_cast<int>(img.size());
    QelRLXBlackDeleteShort(img.data(), w, 1, 3, 128);
    EXPECT_EQ(img, row_image({0, 255, 128, 255, 128, 128, 255, 0, 0, 0, 255, 128, 0}));
}

TEST(RunLengthDelete, ColumnMinimumOneDeletesIsolatedPixels) {
    // One column: rows 2 and 7 are vertically isolated; row 0 is too but is never changed.
    Image col = {255, 0, 255, 0, 255, 255, 0, 255, 0};
    const int h = static_cast<int>(col.size());
    QelRLYWhiteDeleteShort(col.data(), 1, h, 1, 0);
    EXPECT_EQ(col, Image({255, 0, 0, 0, 255, 255, 0, 0, 0}));
    Image col2 = {255, 0, 255, 0, 255, 255, 0, 255, 0};
    QelRLYWhiteDeleteShort(col2.data(), 1, h, 2, 0);  // genuine runs shorter than 2, edges included
    EXPECT_EQ(col2, Image({0, 0, 0, 0, 255, 255, 0, 0, 0}));
}

TEST(RunLengthDelete, ColumnTwinsMirrorRowFormsOnTransposedImages) {
    const int w = 15, h = 11;
    Image img = random_binary(w, h, 3, 65);
    clear_last_column_and_row(img, w, h);
    for (int length : {2, 3, 4}) {
        Image rows(img), cols = transpose(img, w, h);
        QelRLXWhiteDeleteShort(rows.data(), w, h, length, 0);
        QelRLYWhiteDeleteShort(cols.data(), h, w, length, 0);
        EXPECT_EQ(transpose(rows, w, h), cols) << length;
        rows = img;
        cols = transpose(img, w, h);
        QelRLXWhiteDeleteLong(rows.data(), w, h, length, 0);
        QelRLYWhiteDeleteLong(cols.data(), h, w, length, 0);
        EXPECT_EQ(transpose(rows, w, h), cols) << length;
    }
}

TEST(RunLengthExtract, LongRowRunsWithARequiredLengthThatGrowsDownTheImage) {
    const int w = 8, h = 5;
    Image img(w * h, 255), out(w * h, 0);
    // rows 1..3 hold runs over columns 1..6 (cut at column 7): length 6
    QelRLXWhiteLong(img.data(), w, h, 4, 8, out.data());  // required 4 + 4·y/4 = 5, 6, 7
    for (int x = 0; x < w; ++x) {
        const bool inRun = x >= 1 && x <= 6;
        EXPECT_EQ(out[1 * w + x], inRun ? 255 : 0);
        EXPECT_EQ(out[2 * w + x], inRun ? 255 : 0);
        EXPECT_EQ(out[3 * w + x], 0);
        EXPECT_EQ(out[0 * w + x], 0);
    }
}

TEST(RunLengthExtract, ShortBrightColumnRunsAddToOut) {
    Image grey = {90, 100, 100, 10, 120, 130, 140, 150, 0};
    const int h = static_cast<int>(grey.size());
    Image out(h, 0);
    out[8] = 255;  // out is not cleared
    QelRLYWhiteShort(grey.data(), 1, h, 100, 2, out.data());
    EXPECT_EQ(out, Image({0, 255, 255, 0, 0, 0, 0, 0, 255}));
}

TEST(RunLengthLinks, ShortRunsSurviveOnlyWithinTheStepLimit) {
    // A long run on row 1 and a one-pixel-wide vertical line below it down to row 298.
    const int w = 5, h = 300;
    Image base(w * h, 0);
    for (int x = 1; x <= 3; ++x) base[1 * w + x] = 255;
    for (int y = 2; y <= 298; ++y) base[y * w + 2] = 255;
    auto kept_rows = [&](int maxSteps) {
        Image img(base), out(w * h, 0);
        QelRLXDeleteWhiteShort(img.data(), w, h, 3, maxSteps, out.data());
        int last = 0;
        for (int y = 0; y < h; ++y)
            if (out[y * w + 2] == 255) last = y;
        return last;
    };
    EXPECT_EQ(kept_rows(10), 10);
    EXPECT_EQ(kept_rows(260), 250);
    EXPECT_EQ(kept_rows(300), 250);  // steps are capped at 250
}

TEST(RunLengthLinks, ColumnTwinMirrorsTheRowForm) {
    const int w = 21, h = 16;
    const Image img = random_binary(w, h, 4, 45);
    Image rows(img), cols = transpose(img, w, h), outRows(w * h, 0), outCols(w * h, 0);
    QelRLXDeleteWhiteShort(rows.data(), w, h, 4, 3, outRows.data());
    QelRLYDeleteWhiteShort(cols.data(), h, w, 4, 3, outCols.data());
    EXPECT_EQ(transpose(outRows, w, h), outCols);
    EXPECT_EQ(transpose(rows, w, h), cols);  // both cleared the same frame
    EXPECT_TRUE(std::all_of(outRows.begin(), outRows.end(), [](unsigned char p) { return p == 0 || p == 255; }));
    EXPECT_GT(std::count(outRows.begin(), outRows.end(), 255), 0);
}

TEST(RunLengthLinks, RunStartsAccumulateInACentredWindow) {
    const int w = 8, h = 2;
    Image img = {0, 255, 0, 0, 255, 255, 0, 0,   // starts at 1 and 4
                 255, 0, 0, 0, 0, 0, 0, 255};    // start at 7; column 0 never counts
    std::vector<int> flags(w, 0);
    Image out(w * h, 99);
    QelBinImg01TimesByX(img.data(), flags.data(), w, h, 2, out.data());  // r = 1
    EXPECT_EQ(flags, std::vector<int>({0, 1, 0, 0, 1, 0, 0, 1}));
    EXPECT_EQ(Image(out.begin(), out.begin() + w), Image({0, 1, 1, 1, 1, 1, 0, 0}));
    EXPECT_EQ(Image(out.begin() + w, out.end()), Image({0, 1, 1, 1, 1, 1, 1, 1}));
}

TEST(RunLengthLinks, MarkMinOfRowAndColumnRuns) {
    const int w = 5, h = 4;
    Image img = {255, 255, 255, 0, 0,
                 0,   255, 0,   0, 255,
                 0,   255, 0,   255, 255,
                 0,   255, 0,   0,   0};
    QelBinImgMarkMinOfRLXandRLY(img.data(), w, h);
    // Row pass: 3 3 3 on row 0; runs at the right edge are one short, so row 1's last pixel stays
    // 255 and row 2's pair becomes 1, 255. Column pass: counts include the ending zero (column 0:
    // 2, column 4: 3) except at the bottom (column 1: 4).
    const Image expect = {2, 3, 2, 0, 0,
                          0, 1, 0, 0, 3,
                          0, 1, 0, 1, 3,
                          0, 1, 0, 0, 0};
    EXPECT_EQ(img, expect);
}

TEST(RunLengthLinks, HorizontalBandOfShortVerticalRuns) {
    const int w = 12, h = 10;
    Image grey(w * h, 0), work(w * h, 7);
    for (int y = 3; y <= 4; ++y)
        for (int x = 2; x <= 7; ++x) grey[y * w + x] = 200;
    for (int y = 1; y <= 8; ++y) grey[y * w + 9] = 200;  // too tall to count
    Image out(w * h, 0);
    EXPECT_TRUE(QelRLYWhiteShortAndRLXWhiteLong(grey.data(), work.data(), w, h, 128, 3, 6, 6, out.data()));
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const bool band = y >= 3 && y <= 4 && x >= 2 && x <= 7;
            EXPECT_EQ(out[y * w + x], band ? 255 : 0) << x << "," << y;
            EXPECT_EQ(work[y * w + x], band ? 255 : 0);
        }
    std::fill(out.begin(), out.end(), 0);
    QelRLYWhiteShortAndRLXWhiteLong(grey.data(), work.data(), w, h, 128, 3, 7, 7, out.data());
    EXPECT_EQ(std::count(out.begin(), out.end(), 255), 0);  // 6 columns < 7
}

TEST(RunLengthLinks, BandNeverCountsColumnZero) {
    const int w = 10, h = 6;
    Image grey(w * h, 0), work(w * h), out(w * h, 0);
    for (int x = 0; x <= 5; ++x) grey[2 * w + x] = 255;
    EXPECT_TRUE(QelRLYWhiteShortAndRLXWhiteLong(grey.data(), work.data(), w, h, 128, 1, 5, 5, out.data()));
    for (int x = 0; x < w; ++x) EXPECT_EQ(out[2 * w + x], x >= 1 && x <= 5 ? 255 : 0) << x;
}

TEST(RunLengthLinks, TallImagesUseHeapScratchWithTheSameResult) {
    const int w = 6, h = 1100;
    Image grey(w * h, 0), work(w * h), out(w * h, 0);
    for (int x = 1; x <= 4; ++x) grey[1050 * w + x] = 255;
    EXPECT_TRUE(QelRLYWhiteShortAndRLXWhiteLong(grey.data(), work.data(), w, h, 128, 2, 4, 4, out.data()));
    EXPECT_EQ(std::count(out.begin(), out.end(), 255), 4);
    EXPECT_EQ(out[1050 * w + 1], 255);
}

}  // namespace
