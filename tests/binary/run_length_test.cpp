// Run-length operations along rows (RLX) and columns (RLY).
#include <qel.h>

#include <gtest/gtest.h>

#include "support/test_images.h"

#include <algorithm>
#include <vector>

namespace {

using Image = qel_test::Bytes;
using Hist = std::vector<int>;

// The deletions by length as one type: (image, width, height, length, fill).
using Delete = void (*)(unsigned char*, int, int, int, int);
void rlx_white_delete_long(unsigned char* image, int width, int height, int maxLength, int fill) {
    QelRLXWhiteDeleteLong(image, width, height, maxLength, static_cast<unsigned char>(fill));
}

Image transpose(const Image& img, int width, int height) {
    Image t(img.size());
    for (int i = 0; i < width * height; ++i) t[(i % width) * height + i / width] = img[i];
    return t;
}

TEST(RunLengthCounts, HistogramFormsOnAHandBuiltImage) {
    // Rows end a run at the right edge one pixel short (a lone pixel in the last column counts 0);
    // columns measure in full down to the bottom edge.
    Image img = {255, 255, 0,  //
                 0, 255, 255,  //
                 255, 0, 0};
    const struct {
        void (*count)(unsigned char*, int, int, int*, int);
        int cap;
        Hist expect;
    } forms[] = {{QelRLXWhiteCount, 3, {0, 2, 1, 0}}, {QelRLXBlackCount, 3, {1, 2, 0, 0}},
                 {QelRLYWhiteCount, 3, {0, 3, 1, 0}}, {QelRLYWhiteCount, 1, {0, 4}},
                 {QelRLYBlackCount, 3, {0, 4, 0, 0}}};
    for (const auto& f : forms) {
        Hist hist(f.cap + 1, 0);
        f.count(img.data(), 3, 3, hist.data(), f.cap);
        EXPECT_EQ(hist, f.expect) << &f - forms;
    }
}

TEST(RunLengthCounts, StatisticsStartAt201ContinueAt200AndMeasureInFull) {
    // Runs: 201 200 200 (200 only continues), 250, and 255 in the last column, which counts 1 here
    // where the histogram forms count 0.
    Image img = {200, 201, 200, 200, 0, 200, 250, 100, 255};
    const int w = static_cast<int>(img.size());
    int total, shortest, longest, most;
    EXPECT_EQ(QelRLXWhiteCount(img.data(), w, 1, 0, w - 1, 0, 0, &total, &shortest, &longest, &most), 3);
    EXPECT_EQ(Hist({total, shortest, longest, most}), Hist({3 + 1 + 1, 1, 3, 3}));
    // cut at x2: the run at columns 1..3 measures 2 when x2 = 2
    EXPECT_EQ(QelRLXWhiteCount(img.data(), w, 1, 0, 2, 0, 0, &total, &shortest, &longest, &most), 1);
    EXPECT_EQ(longest, 2);
    Image dark(4 * 7, 0);  // no runs: the column form's shortest stays at the width, as the row form's
    EXPECT_EQ(QelRLYWhiteCount(dark.data(), 4, 7, 0, 3, 0, 6, &total, &shortest, &longest, &most), 0);
    EXPECT_EQ(shortest, 4);
}

TEST(RunLengthDelete, HandBuiltLines) {
    const Image row = {0, 255, 0, 255, 255, 0, 255, 255, 255, 0, 255, 255, 255, 255, 0};
    const Image column = {255, 0, 255, 0, 255, 255, 0, 255, 0};
    const struct {
        Delete op;
        bool alongColumn;  // the line is one column of the image, else one row
        int length, fill;
        Image in, out;
    } cases[] = {
        {QelRLXWhiteDeleteShort, false, 3, 0, row, {0, 0, 0, 0, 0, 0, 255, 255, 255, 0, 255, 255, 255, 255, 0}},
        {rlx_white_delete_long, false, 3, 9, row, {0, 255, 0, 255, 255, 0, 255, 255, 255, 0, 9, 9, 9, 9, 0}},
        // a run reaching the right end is one short, and its last pixel stays
        {rlx_white_delete_long, false, 5, 7, {0, 0, 0, 255, 255, 255, 255, 255, 255, 255},
         {0, 0, 0, 7, 7, 7, 7, 7, 7, 255}},
        // black runs start from column 1 only (column 0 is not seen) and run to the last column at most
        {QelRLXBlackDeleteShort, false, 3, 128, {0, 255, 0, 255, 0, 0, 255, 0, 0, 0, 255, 0, 0},
         {0, 255, 128, 255, 128, 128, 255, 0, 0, 0, 255, 128, 0}},
        // minimum 1: vertically isolated pixels go (rows 2 and 7) although no run is shorter than 1;
        // row 0 is isolated too but is never changed
        {QelRLYWhiteDeleteShort, true, 1, 0, column, {255, 0, 0, 0, 255, 255, 0, 0, 0}},
        {QelRLYWhiteDeleteShort, true, 2, 0, column, {0, 0, 0, 0, 255, 255, 0, 0, 0}},
    };
    for (const auto& c : cases) {
        Image line = c.in;
        const int n = static_cast<int>(line.size());
        c.op(line.data(), c.alongColumn ? 1 : n, c.alongColumn ? n : 1, c.length, c.fill);
        EXPECT_EQ(line, c.out) << &c - cases;
    }
}

TEST(RunLength, ColumnTwinsMirrorRowFormsOnTransposedImages) {
    const int w = 15, h = 11;
    Image img = qel_test::random_grey(w, h, 3);  // about 65% white; no run reaches the right edge
    for (int i = 0; i < w * h; ++i) img[i] = i % w != w - 1 && img[i] < 166 ? 255 : 0;
    const Image t = transpose(img, w, h);
    int a[4], b[4];
    const int rowRuns = QelRLXWhiteCount(Image(img).data(), w, h, 2, 9, 1, 10, &a[0], &a[1], &a[2], &a[3]);
    EXPECT_EQ(QelRLYWhiteCount(Image(t).data(), h, w, 1, 10, 2, 9, &b[0], &b[1], &b[2], &b[3]), rowRuns);
    EXPECT_TRUE(std::equal(a, a + 4, b));
    EXPECT_GT(rowRuns, 0);
    const std::pair<Delete, Delete> twins[] = {{QelRLXWhiteDeleteShort, QelRLYWhiteDeleteShort},
                                               {rlx_white_delete_long, QelRLYWhiteDeleteLong}};
    for (int n : {2, 3, 4}) {
        SCOPED_TRACE(n);
        for (const auto& [rowForm, columnForm] : twins) {
            Image rows = img, cols = t;
            rowForm(rows.data(), w, h, n, 0);
            columnForm(cols.data(), h, w, n, 0);
            EXPECT_EQ(transpose(rows, w, h), cols);
        }
        Image rows = img, cols = t, rowsOut(w * h, 0), colsOut(w * h, 0);
        QelRLXDeleteWhiteShort(rows.data(), w, h, 2 * n, 3, rowsOut.data());
        QelRLYDeleteWhiteShort(cols.data(), h, w, 2 * n, 3, colsOut.data());
        EXPECT_EQ(transpose(rowsOut, w, h), colsOut);
        EXPECT_EQ(transpose(rows, w, h), cols);  // both cleared the same frame
        EXPECT_GT(std::count(rowsOut.begin(), rowsOut.end(), 255), 0);
    }
}

TEST(RunLengthExtract, LongRowRunsAndShortColumnRunsAddToOut) {
    const int w = 8, h = 5;
    Image img(w * h, 255), out(w * h, 0);
    // rows 1..3 hold runs over columns 1..6 (cut at column 7): length 6; required 4 + 4·y/4 = 5, 6, 7
    QelRLXWhiteLong(img.data(), w, h, 4, 8, out.data());
    for (int i = 0; i < w * h; ++i)
        EXPECT_EQ(out[i], i / w >= 1 && i / w <= 2 && i % w >= 1 && i % w <= 6 ? 255 : 0) << i;
    Image grey = {90, 100, 100, 10, 120, 130, 140, 150, 0}, column(9, 0);
    column[8] = 255;  // out is not cleared
    QelRLYWhiteShort(grey.data(), 1, 9, 100, 2, column.data());
    EXPECT_EQ(column, Image({0, 255, 255, 0, 0, 0, 0, 0, 255}));
}

TEST(RunLengthLinks, ShortRunsSurviveOnlyWithinTheStepLimit) {
    // A long run on row 1 and a one-pixel-wide vertical line below it down to row 298.
    const int w = 5, h = 300;
    Image base(w * h, 0);
    std::fill_n(base.begin() + w + 1, 3, 255);
    for (int y = 2; y <= 298; ++y) base[y * w + 2] = 255;
    auto last_kept_row = [&](int maxSteps) {
        Image img(base), out(w * h, 0);
        QelRLXDeleteWhiteShort(img.data(), w, h, 3, maxSteps, out.data());
        int last = 0;
        for (int y = 0; y < h; ++y) last = out[y * w + 2] == 255 ? y : last;
        return last;
    };
    EXPECT_EQ(last_kept_row(10), 10);
    EXPECT_EQ(last_kept_row(260), 250);
    EXPECT_EQ(last_kept_row(300), 250);  // steps are capped at 250
}

TEST(RunLengthLinks, RunStartsAccumulateInACentredWindow) {
    const int w = 8, h = 2;
    Image img = {0, 255, 0, 0, 255, 255, 0, 0,  // starts at 1 and 4
                 255, 0, 0, 0, 0, 0, 0, 255};   // start at 7; column 0 never counts
    std::vector<int> flags(w, 0);
    Image out(w * h, 99);
    QelBinImg01TimesByX(img.data(), flags.data(), w, h, 2, out.data());  // r = 1
    EXPECT_EQ(flags, std::vector<int>({0, 1, 0, 0, 1, 0, 0, 1}));
    EXPECT_EQ(out, Image({0, 1, 1, 1, 1, 1, 0, 0, /**/ 0, 1, 1, 1, 1, 1, 1, 1}));
}

TEST(RunLengthLinks, MarkMinOfRowAndColumnRuns) {
    Image img = {255, 255, 255, 0, 0,  //
                 0, 255, 0, 0, 255,    //
                 0, 255, 0, 255, 255,  //
                 0, 255, 0, 0, 0};
    QelBinImgMarkMinOfRLXandRLY(img.data(), 5, 4);
    // Row pass: 3 3 3 on row 0; runs at the right edge are one short, so row 1's last pixel stays
    // 255 and row 2's pair becomes 1, 255. Column pass: counts include the ending zero (column 0:
    // 2, column 4: 3) except at the bottom (column 1: 4).
    EXPECT_EQ(img, Image({2, 3, 2, 0, 0, /**/ 0, 1, 0, 0, 3, /**/ 0, 1, 0, 1, 3, /**/ 0, 1, 0, 0, 0}));
}

TEST(RunLengthLinks, HorizontalBandsOfShortVerticalRuns) {
    // A band of two-row runs over columns 2..7 (rows 3..4), a column too tall to count (column 9),
    // and a row of one-row runs over columns 0..5 that is marked only from column 1: column 0 is
    // never counted. Above 1023 rows the scratch lives on the heap, with the same result.
    const int w = 12;
    for (int h : {10, 1100}) {
        const int line = h - 4;
        Image grey(w * h, 0), work(w * h, 7), out(w * h, 0);
        for (int y = 3; y <= 4; ++y) std::fill_n(grey.begin() + y * w + 2, 6, 200);
        for (int y = 1; y <= 8; ++y) grey[y * w + 9] = 200;
        std::fill_n(grey.begin() + line * w, 6, 255);
        EXPECT_TRUE(QelRLYWhiteShortAndRLXWhiteLong(grey.data(), work.data(), w, h, 128, 3, 5, 5, out.data()));
        for (int i = 0; i < w * h; ++i) {
            const int x = i % w, y = i / w;
            const bool band = y >= 3 && y <= 4 && x >= 2 && x <= 7;
            ASSERT_EQ(out[i], band || (y == line && x >= 1 && x <= 5) ? 255 : 0) << h << ": " << x << "," << y;
            ASSERT_EQ(work[i], band || (y == line && x <= 5) ? 255 : 0) << h << ": " << x << "," << y;
        }
        std::fill(out.begin(), out.end(), 0);
        QelRLYWhiteShortAndRLXWhiteLong(grey.data(), work.data(), w, h, 128, 3, 7, 7, out.data());
        EXPECT_EQ(out, Image(w * h, 0));  // 6 and 5 columns < 7
    }
}

}  // namespace
