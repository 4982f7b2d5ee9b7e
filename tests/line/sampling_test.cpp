#include <qel.h>

#include "support/test_images.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <utility>
#include <vector>

namespace {

using qel_test::Bytes;
using Visits = std::map<std::pair<int, int>, int>;  // (x, y) -> number of samples

// A 16 x 16 image whose 256 pixels all differ (value y·16 + x), so that counting matches of each
// value in turn shows exactly which pixels a walk visits, and how often.
constexpr int kSide = 16;
Bytes distinct_image() {
    Bytes img(kSide * kSide);
    for (int i = 0; i < kSide * kSide; ++i) img[i] = static_cast<unsigned char>(i);
    return img;
}

Visits segment_visits(int x1, int y1, int x2, int y2) {
    Bytes img = distinct_image();
    Visits visits;
    int total = -1;
    for (int v = 0; v < kSide * kSide; ++v) {
        int equal = -1, other = -1;
        QelPixelsOn2PLine(img.data(), kSide, x1, y1, x2, y2, v, &equal, &other);
        if (equal > 0) visits[{v % kSide, v / kSide}] = equal;
        if (total >= 0) {
            EXPECT_EQ(equal + other, total) << "every walk visits the same pixels";
        }
        total = equal + other;
    }
    return visits;
}

Visits once(std::initializer_list<std::pair<int, int>> points) {
    Visits v;
    for (const auto& p : points) v[p] = 1;
    return v;
}

TEST(LineSampling, TwoPointLineVisitsExactPixels) {
    EXPECT_EQ(segment_visits(0, 0, 3, 0), once({{0, 0}, {1, 0}, {2, 0}, {3, 0}}));
    EXPECT_EQ(segment_visits(5, 9, 5, 7), once({{5, 7}, {5, 8}, {5, 9}}));
    // Diagonal: the start column is never visited, each later column from the previous row.
    const Visits diagonal = once({{1, 0}, {1, 1}, {2, 1}, {2, 2}, {3, 2}, {3, 3}});
    EXPECT_EQ(segment_visits(0, 0, 3, 3), diagonal);
    EXPECT_EQ(segment_visits(3, 3, 0, 0), diagonal) << "the walk always starts at the smaller x";
    // Steep: one vertical run in the second column, the first column untouched.
    EXPECT_EQ(segment_visits(1, 0, 2, 5), once({{2, 0}, {2, 1}, {2, 2}, {2, 3}, {2, 4}, {2, 5}}));
    // Single precision: k = −1/3 and b = 7/3 in float put column 4 at 1.0000001, row 1; in double it
    // would be 0.99999999999999978, row 0.
    EXPECT_EQ(segment_visits(1, 2, 4, 1), once({{2, 1}, {2, 2}, {3, 1}, {4, 1}}));

    // Random segments: columns after the start column are each visited once or more, nothing else.
    std::mt19937 rng(9);
    std::uniform_int_distribution<int> at(0, kSide - 1);
    for (int i = 0; i < 25; ++i) {
        const int x1 = at(rng), y1 = at(rng), x2 = at(rng), y2 = at(rng);
        if (x1 == x2 || y1 == y2) continue;
        const Visits v = segment_visits(x1, y1, x2, y2);
        std::vector<int> perColumn(kSide, 0);
        for (const auto& [p, n] : v) perColumn[p.first] += n;
        for (int x = 0; x < kSide; ++x) {
            const bool walked = x > std::min(x1, x2) && x <= std::max(x1, x2);
            EXPECT_EQ(perColumn[x] > 0, walked) << x;
        }
    }
}

TEST(LineSampling, ABCLineSamplesOncePerColumnOrRow) {
    const int w = 12, h = 9;
    Bytes img = qel_test::random_grey(w, h, 17);
    for (int i = 0; i < w * h; i += 3) img[i] = 0;
    // Counts from the histogram of the same samples: (non-zero, zero); checks both functions agree.
    auto counts = [&](double a, double b, double c) {
        std::vector<int> hist(256, 77);
        QelABCLineHistogram(img.data(), w, h, a, b, c, hist.data());
        int nonZero = -1, zero = -1, samples = 0;
        QelPixlesOnABCLine(img.data(), w, h, a, b, c, &nonZero, &zero);
        for (int n : hist) samples += n;
        EXPECT_EQ(zero, hist[0]);
        EXPECT_EQ(nonZero + zero, samples);
        return std::make_pair(nonZero, zero);
    };
    auto zeros = [&](int x0, int x1, int y0, int y1) {
        int n = 0;
        for (int y = y0; y <= y1; ++y)
            for (int x = x0; x <= x1; ++x) n += img[y * w + x] == 0;
        return n;
    };
    EXPECT_EQ(counts(0, 1, -5), std::make_pair(w - zeros(0, w - 1, 5, 5), zeros(0, w - 1, 5, 5)));  // row 5
    EXPECT_EQ(counts(1, 0, -5), std::make_pair(h - zeros(5, 5, 0, h - 1), zeros(5, 5, 0, h - 1)));  // column 5
    // y = −0.6 rounds to truncate(−0.1) = 0: row 0 is sampled.
    EXPECT_EQ(counts(0, 1, 0.6), std::make_pair(w - zeros(0, w - 1, 0, 0), zeros(0, w - 1, 0, 0)));
    // x = y + 6 by rows: columns 6..14, of which 12..14 fall outside.
    const auto [nonZero, zero] = counts(1, -1, -6);
    EXPECT_EQ(nonZero + zero, 6);
    EXPECT_EQ(counts(0, 0, 1), std::make_pair(0, 0)) << "a = b = 0 samples nothing";
    std::vector<int> hist(256, 77), expected(256, 0);
    QelABCLineHistogram(img.data(), w, h, 0, 1, -5, hist.data());
    for (int x = 0; x < w; ++x) ++expected[img[5 * w + x]];
    EXPECT_EQ(hist, expected);
}

TEST(LineSampling, RectOutlineCountsCornersTwice) {
    const int w = 6, h = 5;
    Bytes white(w * h, 255);
    EXPECT_EQ(QelPixelsOnRect(white.data(), w, h, 1, 3, 1, 3, 255), 12);
    EXPECT_EQ(QelPixelsOnRect(white.data(), w, h, 1, 4, 2, 2, 255), 10) << "one row: 4 twice, then its 2 ends";
    EXPECT_EQ(QelPixelsOnRect(white.data(), w, h, -3, 20, -3, 20, 255), 2 * w + 2 * h);
    EXPECT_EQ(QelPixelsOnRect(white.data(), w, h, 1, 3, 1, 3, 256), 0);
    // Only the far ends are lowered: x1 = 7 stays outside, and only column x2 = 5 is sampled.
    EXPECT_EQ(QelPixelsOnRect(white.data(), w, h, 7, 9, 0, 4, 255), 5);
    Bytes img(w * h, 0);
    img[1 * w + 1] = 9;  // a corner
    img[2 * w + 3] = 9;  // a side pixel
    img[2 * w + 2] = 9;  // inside, never sampled
    EXPECT_EQ(QelPixelsOnRect(img.data(), w, h, 1, 3, 1, 3, 9), 3);
}

}  // namespace
