// Shen Jun edge detector: hand-worked smoothing and edges of steps, the integer members against the
// real-weighted ones, the point lists, and properties over random images.
#include <qel.h>

#include <gtest/gtest.h>

#include "draw/draw_test_helpers.h"
#include "support/test_images.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

namespace {

using Image = qel_test::Bytes;
using qel_test::GuardedImage;
using qel_test::random_grey;

// An image whose columns left of `step` are `left` and the others `right`.
Image vertical_step(int w, int h, int step, unsigned char left, unsigned char right) {
    Image img(static_cast<size_t>(w) * h);
    for (int i = 0; i < w * h; ++i) img[i] = i % w < step ? left : right;
    return img;
}

Image transpose(const Image& img, int w, int h) {
    Image t(img.size());
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) t[static_cast<size_t>(x) * h + y] = img[static_cast<size_t>(y) * w + x];
    return t;
}

struct Result {
    Image smooth, dst;
};

Result fast(Image src, int w, int h, int shift, int threshold) {
    Result r{Image(src.size()), Image(src.size(), 7)};
    QelShenJunEdgeFast(src.data(), r.smooth.data(), w, h, shift, threshold, r.dst.data());
    return r;
}

Result std_form(Image src, int w, int h, double a, int threshold) {
    Result r{Image(src.size()), Image(src.size(), 7)};
    QelShenJunEdgeStd(src.data(), r.smooth.data(), w, h, a, threshold, r.dst.data());
    return r;
}

Image fine(Image src, int w, int h, double a, int threshold, std::vector<double>* smooth = nullptr) {
    std::vector<double> m(src.size());
    Image dst(src.size(), 7);
    QelShenJunEdgeFine(src.data(), m.data(), w, h, a, threshold, dst.data());
    if (smooth != nullptr) *smooth = m;
    return dst;
}

// The columns marked in each interior row must be exactly `column`; the frame is 0.
void expect_marked_column(const Image& dst, int w, int h, int column) {
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            ASSERT_EQ(dst[y * w + x], y > 0 && y < h - 1 && x == column ? 255 : 0) << x << "," << y;
}

TEST(ShenJun, SmallStepSmoothedAndMarkedAsWorkedByHand) {
    // Rows 50 50 50 200 200 200, shift 1. Row passes give 62 74 99 148 171 181; the downward pass
    // blends with row 0 as it is, the upward pass then gives the rows below.
    const Image src = vertical_step(6, 3, 3, 50, 200);
    const Image smooth = {53, 57, 65, 183, 190, 193,  //
                          57, 65, 80, 167, 181, 187,  //
                          59, 68, 86, 161, 178, 185};
    const Result r = fast(src, 6, 3, 1, 100);
    EXPECT_EQ(r.smooth, smooth);
    EXPECT_EQ(r.dst, Image({0, 0, 0, 0, 0, 0, 0, 0, 0, 255, 0, 0, 0, 0, 0, 0, 0, 0}));
    // The step is 150: a threshold of 150 still marks it, one above marks nothing.
    EXPECT_EQ(fast(src, 6, 3, 1, 150).dst, r.dst);
    EXPECT_TRUE(qel_test::all_equal(fast(src, 6, 3, 1, 151).dst, 0));
}

TEST(ShenJun, StepsAreMarkedOnTheirBrighterSideByEveryMember) {
    const int w = 40, h = 21, step = 17;
    const Image rising = vertical_step(w, h, step, 50, 200), falling = vertical_step(w, h, step, 200, 50);
    for (int shift = 1; shift <= 3; ++shift) {
        SCOPED_TRACE(shift);
        expect_marked_column(fast(rising, w, h, shift, 100).dst, w, h, step);
        expect_marked_column(fast(falling, w, h, shift, 100).dst, w, h, step - 1);
        EXPECT_TRUE(qel_test::all_equal(fast(rising, w, h, shift, 151).dst, 0));
        // A horizontal step: the first bright row (transposing swaps the roles of rows and columns).
        const Image rows = transpose(rising, w, h);
        EXPECT_EQ(fast(rows, h, w, shift, 100).dst, transpose(fast(rising, w, h, shift, 100).dst, w, h));
    }
    for (double a : {0.7, 0.3, 0.1}) {
        SCOPED_TRACE(a);
        expect_marked_column(std_form(rising, w, h, a, 100).dst, w, h, step);
        expect_marked_column(fine(rising, w, h, a, 100), w, h, step);
        expect_marked_column(fine(falling, w, h, a, 100), w, h, step - 1);
        EXPECT_TRUE(qel_test::all_equal(fine(rising, w, h, a, 151), 0));
    }
}

TEST(ShenJun, ConstantImageHasNoEdgesAndSmoothsToItself) {
    const Image flat(9 * 7, 123);
    for (int shift : {1, 2, 3}) {
        const Result r = fast(flat, 9, 7, shift, 0);
        EXPECT_EQ(r.smooth, flat);
        EXPECT_TRUE(qel_test::all_equal(r.dst, 0));
    }
    std::vector<double> m;
    EXPECT_TRUE(qel_test::all_equal(fine(flat, 9, 7, 0.37, 0, &m), 0));
    for (double v : m) EXPECT_EQ(v, 123.0);
}

TEST(ShenJun, ShiftIsClampedAndMatchesTheRealWeightTwoToTheMinusShift) {
    const int w = 37, h = 29;
    for (unsigned seed = 1; seed <= 4; ++seed) {
        const Image src = random_grey(w, h, seed);
        for (int shift = 1; shift <= 3; ++shift) {
            // prev + floor(d / 2^k) equals trunc(prev + d · 2^−k) for bytes: the same images.
            const Result f = fast(src, w, h, shift, 20), s = std_form(src, w, h, 1.0 / (1 << shift), 20);
            EXPECT_EQ(f.smooth, s.smooth);
            EXPECT_EQ(f.dst, s.dst);
        }
        EXPECT_EQ(fast(src, w, h, 0, 20).dst, fast(src, w, h, 1, 20).dst);
        EXPECT_EQ(fast(src, w, h, -5, 20).smooth, fast(src, w, h, 1, 20).smooth);
        EXPECT_EQ(fast(src, w, h, 7, 20).smooth, fast(src, w, h, 3, 20).smooth);
        EXPECT_EQ(fast(src, w, h, 7, 20).dst, fast(src, w, h, 3, 20).dst);
    }
}

// The smoothing written out once more, literally: the upward pass walks memory backwards.
std::vector<double> reference_fine_smooth(const Image& src, int w, int h, double a) {
    std::vector<double> m(src.begin(), src.end());
    auto blend = [a](double prev, double cur) { return prev + (cur - prev) * a; };
    for (int y = 1; y < h; ++y) {
        double* r = &m[static_cast<size_t>(y) * w];
        for (int x = 1; x < w; ++x) r[x] = blend(r[x - 1], r[x]);
        for (int x = w - 2; x >= 0; --x) r[x] = blend(r[x + 1], r[x]);
        for (int x = 0; x < w; ++x) r[x] = blend(r[x - w], r[x]);
    }
    for (long p = static_cast<long>(w) * (h - 1) - 1; p >= 0; --p) m[p] = blend(m[p + w], m[p]);
    return m;
}

// The edge rule read literally, pixel by pixel over the 8 neighbours.
template <class Smooth>
Image reference_edges(const Image& src, const Smooth& m, int w, int h, int threshold) {
    Image dst(src.size(), 0);
    for (int y = 1; y < h - 1; ++y)
        for (int x = 1; x < w - 1; ++x) {
            const int i = y * w + x;
            bool negative = false, steep = false;
            for (int k = 0; k < 9; ++k) {
                const int n = i + (k / 3 - 1) * w + k % 3 - 1;
                if (n == i) continue;
                negative = negative || src[n] < m[n];
                steep = steep || std::abs(src[i] - src[n]) >= threshold;
            }
            dst[i] = src[i] > m[i] && negative && steep ? 255 : 0;
        }
    return dst;
}

TEST(ShenJun, FineSmoothingAndEveryEdgeDecisionAgreeWithPlainReferences) {
    const int w = 31, h = 23;
    for (int threshold : {-5, 0, 1, 25, 90, 255}) {
        const Image src = random_grey(w, h, 9 + threshold);
        std::vector<double> m;
        const Image edges = fine(src, w, h, 0.4, threshold, &m);
        ASSERT_EQ(m, reference_fine_smooth(src, w, h, 0.4));
        EXPECT_EQ(edges, reference_edges(src, m, w, h, threshold)) << threshold;
        const Result r = fast(src, w, h, 2, threshold);
        EXPECT_EQ(r.dst, reference_edges(src, r.smooth, w, h, threshold)) << threshold;
    }
}

TEST(ShenJun, PointListsFollowTheEdgeImageWithTheirOwnCountRules) {
    const int w = 33, h = 27, shift = 2, threshold = 30;
    const Image src = random_grey(w, h, 5);
    const Image edges = fast(src, w, h, shift, threshold).dst;
    std::vector<int> allX, allY;
    for (int i = 0; i < w * h; ++i)
        if (edges[i] == 255) allX.push_back(i % w), allY.push_back(i / w);
    const int total = static_cast<int>(allX.size());
    ASSERT_GT(total, 10);

    auto list_only = [&](Image img, int maxCount, std::vector<int>& xs, std::vector<int>& ys) {
        Image m(img.size());
        return QelShenJunEdgeFast(img.data(), m.data(), w, h, shift, threshold, xs.data(), ys.data(), maxCount);
    };
    auto with_image = [&](Image img, int maxCount, std::vector<int>& xs, std::vector<int>& ys, Image& dst) {
        Image m(img.size());
        return QelShenJunEdgeFast(img.data(), m.data(), w, h, shift, threshold, xs.data(), ys.data(), maxCount,
                                  dst.data());
    };
    for (int maxCount : {-1, 0, 1, 5, total, total + 3}) {
        SCOPED_TRACE(maxCount);
        std::vector<int> xs(total + 4, -9), ys(total + 4, -9), xs2(xs), ys2(ys);
        // Without an edge image the count is tested after storing: never fewer than one point.
        const int stored = std::min(std::max(maxCount, 1), total);
        EXPECT_EQ(list_only(src, maxCount, xs, ys), stored);
        // With an edge image it is tested before storing, and the image is always complete.
        Image dst(src.size(), 7);
        const int stored2 = std::min(std::max(maxCount, 0), total);
        EXPECT_EQ(with_image(src, maxCount, xs2, ys2, dst), stored2);
        EXPECT_EQ(dst, edges);
        for (int i = 0; i < total + 4; ++i) {
            EXPECT_EQ(xs[i], i < stored ? allX[i] : -9);
            EXPECT_EQ(ys[i], i < stored ? allY[i] : -9);
            EXPECT_EQ(xs2[i], i < stored2 ? allX[i] : -9);
            EXPECT_EQ(ys2[i], i < stored2 ? allY[i] : -9);
        }
    }
    std::vector<int> xs(1, -9), ys(1, -9);
    EXPECT_EQ(list_only(Image(w * h, 80), 0, xs, ys), 0);  // no edge at all
    EXPECT_EQ(xs[0], -9);
}

TEST(ShenJun, RandomImagesGiveBinaryEdgesOnThePositiveSideAndStayInTheirBuffers) {
    for (unsigned seed = 1; seed <= 12; ++seed) {
        const int w = 1 + static_cast<int>(seed * 7 % 23), h = 1 + static_cast<int>(seed * 5 % 19);
        const int threshold = static_cast<int>(seed * 13 % 60);
        Image src = random_grey(w, h, seed);
        GuardedImage m(w, h, 1), dst(w, h, 1, 7), m2(w, h, 1), dst2(w, h, 1, 7);
        std::vector<int> xs(w * h), ys(w * h);
        QelShenJunEdgeFast(src.data(), m.data(), w, h, static_cast<int>(seed % 4), threshold, dst.data());
        QelShenJunEdgeFast(src.data(), m2.data(), w, h, 2, threshold, xs.data(), ys.data(), w * h, dst2.data());
        QelShenJunEdgeStd(src.data(), m2.data(), w, h, 0.3, threshold, dst2.data());
        std::vector<double> fineSmooth(w * h);
        QelShenJunEdgeFine(src.data(), fineSmooth.data(), w, h, 0.3, threshold, dst2.data());
        EXPECT_TRUE(m.guards_intact() && dst.guards_intact() && m2.guards_intact() && dst2.guards_intact());
        for (int i = 0; i < w * h; ++i) {
            const int x = i % w, y = i / w;
            ASSERT_TRUE(dst2.data()[i] == 0 || dst2.data()[i] == 255);
            if (dst.data()[i] == 0) continue;
            ASSERT_EQ(dst.data()[i], 255);
            ASSERT_TRUE(x > 0 && y > 0 && x < w - 1 && y < h - 1) << x << "," << y;
            EXPECT_GT(src[i], m.data()[i]);
        }
    }
}

TEST(ShenJun, RealWeightOutsideTheUnitRangeKeepsLowBytes) {
    // a = 2 on rows (0, 100), (0, 100). Row 1: forward 0 + 100·2 = 200, backward
    // 200 + (0 − 200)·2 = −200 (low byte 56), downward 0 + 56·2 = 112 and 100 + 100·2 = 300 (44).
    // Row 0, upward: 112 + (0 − 112)·2 = −112 (144) and 44 + (100 − 44)·2 = 156.
    const Image src = {0, 100, 0, 100};
    EXPECT_EQ(std_form(src, 2, 2, 2.0, 0).smooth, Image({144, 156, 112, 44}));
    // NaN blends truncate to INT_MIN, whose low byte is 0.
    EXPECT_EQ(std_form(src, 2, 2, std::nan(""), 0).smooth, Image(4, 0));
}

}  // namespace
