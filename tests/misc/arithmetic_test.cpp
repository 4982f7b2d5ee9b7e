#include <qel.h>

#include "support/test_images.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace {

using qel_test::Bytes;
using qel_test::random_bgr;
using qel_test::random_grey;

constexpr unsigned char kGuard = 0xA5;

// A buffer of n bytes followed by 16 guard bytes.
Bytes guarded(size_t n, unsigned char fill = 0) {
    Bytes b(n + 16, kGuard);
    std::fill(b.begin(), b.begin() + static_cast<std::ptrdiff_t>(n), fill);
    return b;
}

bool guard_intact(const Bytes& b, size_t n) {
    return std::all_of(b.begin() + static_cast<std::ptrdiff_t>(n), b.end(), [](unsigned char v) { return v == kGuard; });
}

tagRECT rect(int left, int top, int right, int bottom) { return tagRECT{left, top, right, bottom}; }

// Plain mean absolute difference of two equally sized pixel lists.
int mean_abs_diff(const Bytes& a, const Bytes& b) {
    int64_t s = 0;
    for (size_t i = 0; i < a.size(); ++i) s += std::abs(a[i] - b[i]);
    return static_cast<int>(s / static_cast<int64_t>(a.size()));
}

// ---- pixel-wise operations ---------------------------------------------------------------------

TEST(PixelwiseOps, LogicAndDifferencesMatchPerByteReference) {
    for (int n : {1, 7, 64, 1001}) {
        const Bytes a = qel_test::random_bytes(n, n);
        const Bytes b = qel_test::random_bytes(n, n + 1);
        using Op = void (*)(unsigned char*, unsigned char*, int, unsigned char*);
        using OpTo1 = void (*)(unsigned char*, unsigned char*, int);
        struct Case { Op toRes; OpTo1 to1; int (*ref)(int, int); };
        const Case cases[] = {
            {QelImg1AndImg2ToRes, QelImg1AndImg2To1, [](int x, int y) { return x & y; }},
            {QelImg1OrImg2ToRes, QelImg1OrImg2To1, [](int x, int y) { return x | y; }},
            {QelImg1XorImg2ToRes, QelImg1XorImg2To1, [](int x, int y) { return x ^ y; }},
        };
        for (const Case& c : cases) {
            Bytes aa = a, bb = b, res = guarded(n);
            c.toRes(aa.data(), bb.data(), n, res.data());
            Bytes inPlace = a;
            c.to1(inPlace.data(), bb.data(), n);
            for (int i = 0; i < n; ++i) ASSERT_EQ(res[i], c.ref(a[i], b[i])) << i;
            EXPECT_TRUE(guard_intact(res, n));
            EXPECT_EQ(Bytes(res.begin(), res.begin() + n), inPlace);
            EXPECT_EQ(aa, a);
            EXPECT_EQ(bb, b);
        }
    }
}

TEST(PixelwiseOps, SubtractionsClipAtZeroAndWriteTheNamedImage) {
    const int w = 13, h = 5;
    const Bytes a = random_grey(w, h, 1), b = random_grey(w, h, 2);
    Bytes d = a, s1 = a, s2a = a, s2b = b;
    Bytes bb = b;
    QelImg1Difference2To1(d.data(), bb.data(), w, h);
    QelImg1Substract2To1(s1.data(), bb.data(), w, h);
    QelImg1Substract2To2(s2a.data(), s2b.data(), w, h);
    EXPECT_EQ(s2a, a);  // the first image is only read
    for (int i = 0; i < w * h; ++i) {
        ASSERT_EQ(d[i], std::abs(a[i] - b[i]));
        ASSERT_EQ(s1[i], std::max(a[i] - b[i], 0));
        ASSERT_EQ(s2b[i], std::max(a[i] - b[i], 0));
    }
    // The RGB form covers exactly three bytes a pixel.
    const Bytes ca = random_bgr(w, h, 3), cb = random_bgr(w, h, 4);
    Bytes x = ca, y = cb, res = guarded(w * h * 3);
    QelImg1SubstractImg2(x.data(), y.data(), w, h, true, res.data());
    for (int i = 0; i < w * h * 3; ++i) ASSERT_EQ(res[i], std::max(ca[i] - cb[i], 0));
    EXPECT_TRUE(guard_intact(res, w * h * 3));
}

TEST(PixelwiseOps, ColourDifferenceIsTheLargestChannelDifferenceInAGreyImage) {
    Bytes a = {10, 200, 30, 0, 0, 0};
    Bytes b = {20, 100, 35, 255, 1, 2};
    Bytes res = guarded(2);
    int hist[256];
    std::fill(hist, hist + 256, 99);
    QelDifferenceImg12(a.data(), b.data(), 2, 1, true, res.data(), hist);
    EXPECT_EQ(res[0], 100);
    EXPECT_EQ(res[1], 255);
    EXPECT_TRUE(guard_intact(res, 2));  // a grey result: one byte a pixel
    EXPECT_EQ(hist[100], 1);
    EXPECT_EQ(hist[255], 1);
    EXPECT_EQ(hist[0], 0);  // cleared first
}

TEST(PixelwiseOps, DifferenceWithItselfIsZeroAndCountedInBinZero) {
    const int w = 11, h = 7;
    for (bool isRGB : {false, true}) {
        Bytes img = isRGB ? random_bgr(w, h, 5) : random_grey(w, h, 5);
        Bytes res(w * h, 1);
        int hist[256];
        QelDifferenceImg12(img.data(), img.data(), w, h, isRGB, res.data(), hist);
        EXPECT_TRUE(qel_test::all_equal(res, 0));
        EXPECT_EQ(hist[0], w * h);
        // The overload without a histogram writes the same image.
        Bytes other = random_grey(w, h, 6);
        Bytes res1(w * h), res2(w * h);
        Bytes img2 = isRGB ? random_bgr(w, h, 6) : other;
        QelDifferenceImg12(img.data(), img2.data(), w, h, isRGB, res1.data());
        QelDifferenceImg12(img.data(), img2.data(), w, h, isRGB, res2.data(), hist);
        EXPECT_EQ(res1, res2);
        int64_t counted = 0;
        for (int v = 0; v < 256; ++v) counted += hist[v];
        EXPECT_EQ(counted, w * h);
    }
}

TEST(PixelwiseOps, RunningExtremesOverASequence) {
    const int w = 9, h = 4, n = w * h * 3;
    Bytes maxA(n, 0), minA(n, 255), maxB(n, 0), minB(n, 255);
    Bytes refMax(n, 0), refMin(n, 255);
    for (unsigned seed = 10; seed < 15; ++seed) {
        Bytes img = random_bgr(w, h, seed);
        QelRemainMaxGry(img.data(), w, h, true, maxA.data());
        QelRemainMinGry(img.data(), w, h, true, minA.data());
        QelRemainMaxMinGry(img.data(), w, h, true, maxB.data(), minB.data());
        for (int i = 0; i < n; ++i) {
            refMax[i] = std::max(refMax[i], img[i]);
            refMin[i] = std::min(refMin[i], img[i]);
        }
    }
    EXPECT_EQ(maxA, refMax);
    EXPECT_EQ(minA, refMin);
    EXPECT_EQ(maxB, refMax);
    EXPECT_EQ(minB, refMin);
    // Grey: only w × h bytes.
    Bytes acc = guarded(w * h, 0);
    Bytes img(w * h, 200);
    QelRemainMaxGry(img.data(), w, h, false, acc.data());
    EXPECT_TRUE(guard_intact(acc, w * h));
}

TEST(PixelwiseOps, IntegralImageMatchesRectangleSums) {
    for (int w = 1; w <= 6; ++w)
        for (int h = 1; h <= 4; ++h) {
            const Bytes img = random_grey(w, h, w * 10 + h);
            std::vector<int> sum(w * h, -1);
            QelDoSumGryImg(const_cast<unsigned char*>(img.data()), w, h, sum.data());
            for (int y = 0; y < h; ++y)
                for (int x = 0; x < w; ++x) {
                    int ref = 0;
                    for (int j = 0; j <= y; ++j)
                        for (int i = 0; i <= x; ++i) ref += img[j * w + i];
                    ASSERT_EQ(sum[y * w + x], ref) << w << "x" << h << " at " << x << "," << y;
                }
        }
    Bytes white(4 * 3, 255);
    std::vector<int> sum(12);
    QelDoSumGryImg(white.data(), 4, 3, sum.data());
    EXPECT_EQ(sum[11], 255 * 12);
    EXPECT_EQ(sum[1 * 4 + 2], 255 * 6);
}

// ---- mean absolute difference between rectangles -----------------------------------------------

TEST(ImgDifferenceInRect, LastRowAndColumnAreNotCompared) {
    // 4 × 4 grey images equal except in row 2 and column 2, the last row and column of r = (0,0)-(2,2).
    Bytes a(16, 100), b(16, 100);
    for (int i = 0; i < 4; ++i) {
        b[2 * 4 + i] = 0;
        b[i * 4 + 2] = 0;
    }
    EXPECT_EQ(QelImgDifferenceInRect(a.data(), b.data(), false, 4, rect(0, 0, 2, 2), rect(0, 0, 2, 2)), 0);
    b[1 * 4 + 1] = 60;  // inside: 40 over 4 bytes
    EXPECT_EQ(QelImgDifferenceInRect(a.data(), b.data(), false, 4, rect(0, 0, 2, 2), rect(0, 0, 2, 2)), 10);
    // Shifted second rectangle: r2 = (1,1)-(3,3) compares a(0..1, 0..1) with b(1..2, 1..2).
    EXPECT_EQ(QelImgDifferenceInRect(a.data(), b.data(), false, 4, rect(0, 0, 2, 2), rect(1, 1, 3, 3)),
              (40 + 100 + 100 + 100) / 4);
}

TEST(ImgDifferenceInRect, SameSizeRectanglesAgreeWithCrops) {
    const int w = 17, h = 12;
    for (bool isRGB : {false, true}) {
        const int bpp = isRGB ? 3 : 1;
        Bytes a = isRGB ? random_bgr(w, h, 20) : random_grey(w, h, 20);
        Bytes b = isRGB ? random_bgr(w, h, 21) : random_grey(w, h, 21);
        for (unsigned seed = 0; seed < 20; ++seed) {
            std::mt19937 rng(seed);
            const int cw = 1 + static_cast<int>(rng() % 8), ch = 1 + static_cast<int>(rng() % 6);
            const int x1 = static_cast<int>(rng() % (w - cw)), y1 = static_cast<int>(rng() % (h - ch));
            const int x2 = static_cast<int>(rng() % (w - cw)), y2 = static_cast<int>(rng() % (h - ch));
            const int expected = mean_abs_diff(qel_test::crop(a, w, bpp, x1, y1, cw, ch),
                                               qel_test::crop(b, w, bpp, x2, y2, cw, ch));
            EXPECT_EQ(QelImgDifferenceInRect(a.data(), b.data(), isRGB, w, rect(x1, y1, x1 + cw, y1 + ch),
                                             rect(x2, y2, x2 + cw, y2 + ch)),
                      expected);
        }
    }
}

TEST(ImgDifferenceInRect, LargerSecondRectangleIsSampledAtTruncatedSteps) {
    // r1 spans 2 × 2 pixels, r2 4 × 4: r2 is read at offsets 0 and 2 in each direction.
    const int w = 6, h = 6;
    Bytes a(w * h, 0);
    Bytes b(w * h, 0);
    b[0 * w + 0] = 8;
    b[0 * w + 2] = 16;
    b[2 * w + 0] = 24;
    b[2 * w + 2] = 32;
    b[1 * w + 1] = 255;  // between samples: never read
    EXPECT_EQ(QelImgDifferenceInRect(a.data(), b.data(), false, w, rect(3, 3, 5, 5), rect(0, 0, 4, 4)),
              (8 + 16 + 24 + 32) / 4);
    EXPECT_EQ(QelImgDifferenceInRect(a.data(), b.data(), false, w, rect(0, 0, 0, 3), rect(0, 0, 4, 4)), 0);
}

// ---- rectangle statistics ----------------------------------------------------------------------

TEST(RectStats, RectangleMeansTruncate) {
    Bytes img = {1, 2, 9, 9, 9, 9};  // 3 × 2
    EXPECT_EQ(QelGryRectAvr(img.data(), 3, 2, 0, 1, 0, 0), 1);  // 3 / 2
    EXPECT_EQ(QelGryRectAvr(img.data(), 3, 2, 0, 2, 0, 1), 39 / 6);
}

TEST(RectStats, CentreAgainstRingAndItsClampedBox) {
    Bytes img(5 * 5, 100);
    img[2 * 5 + 2] = 200;
    EXPECT_EQ(QelCenterBlockMeanDif(img.data(), 5, 5, 2, 2, 2, 2, 1), 100);
    // At the corner the outer box is clamped to the image: 3 × 3 box, ring of 8 pixels at 100.
    img[0] = 50;
    EXPECT_EQ(QelCenterBlockMeanDif(img.data(), 5, 5, 0, 0, 0, 0, 2), 50 - (100 * 7 + 200) / 8);
    // Margin 0 leaves no ring.
    EXPECT_EQ(QelCenterBlockMeanDif(img.data(), 5, 5, 2, 2, 2, 2, 0), 200);
}

TEST(RectStats, RobustMinMaxPassesOverTheRatioAtEachEnd) {
    Bytes img = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    int lo = -1, hi = -1;
    QelGryMinMaxInRect(img.data(), 10, 0, 9, 0, 0, 0.0, &lo, &hi);
    EXPECT_EQ(lo, 0);
    EXPECT_EQ(hi, 9);
    QelGryMinMaxInRect(img.data(), 10, 0, 9, 0, 0, 0.2, &lo, &hi);  // k = 2
    EXPECT_EQ(lo, 2);
    EXPECT_EQ(hi, 7);
    QelGryMinMaxInRect(img.data(), 10, 2, 5, 0, 0, 0.0, &lo, &hi);
    EXPECT_EQ(lo, 2);
    EXPECT_EQ(hi, 5);
    QelGryMinMaxInRect(img.data(), 10, 0, 9, 0, 0, 1.0, &lo, &hi);  // k = area: the walks run out
    EXPECT_EQ(lo, 256);
    EXPECT_EQ(hi, 0);
}

// Plain reference: every block position the search tries, by direct sums.
double brightest_reference(const Bytes& img, int w, int h, int bw, int bh, int* cx, int* cy) {
    int64_t best = 0;
    *cx = w / 2;
    *cy = h / 2;
    if (h < bh || w < bw) return 0;
    for (int y = 0; y < h - bh; ++y)
        for (int x = 0; x < std::max(1, w - bw); ++x) {
            int64_t s = 0;
            for (int j = 0; j < bh; ++j)
                for (int i = 0; i < bw; ++i) s += img[(y + j) * w + x + i];
            if (s > best) {
                best = s;
                *cx = x + bw / 2;
                *cy = y + bh / 2;
            }
        }
    return static_cast<double>(best) / (bw * bh);
}

TEST(MaxBrightRect, FindsTheBrightestBlockButNeverTheLastRowOrColumn) {
    Bytes img(6 * 4, 0);
    for (int y = 1; y <= 2; ++y)
        for (int x = 2; x <= 3; ++x) img[y * 6 + x] = 255;
    int cx = -1, cy = -1;
    EXPECT_DOUBLE_EQ(QelMaxBrightRect(img.data(), 6, 4, 2, 2, &cx, &cy), 255.0);
    EXPECT_EQ(cx, 3);
    EXPECT_EQ(cy, 2);
    // A bright block in the last possible column (x = 4) is not tried; the best tried overlaps half.
    Bytes edge(6 * 4, 0);
    for (int y = 0; y <= 1; ++y)
        for (int x = 4; x <= 5; ++x) edge[y * 6 + x] = 200;
    EXPECT_DOUBLE_EQ(QelMaxBrightRect(edge.data(), 6, 4, 2, 2, &cx, &cy), 100.0);
    EXPECT_EQ(cx, 4);
    EXPECT_EQ(cy, 1);
}

TEST(MaxBrightRect, FullHeightOrWidthBlocks) {
    Bytes img = random_grey(8, 5, 3);
    int cx = -1, cy = -1;
    EXPECT_EQ(QelMaxBrightRect(img.data(), 8, 5, 2, 5, &cx, &cy), 0.0);  // no top row tried
    EXPECT_EQ(cx, 4);
    EXPECT_EQ(cy, 2);
    EXPECT_EQ(QelMaxBrightRect(img.data(), 8, 5, 2, 6, &cx, &cy), 0.0);
    // blockW = width: only the block at column 0 of each row.
    int rx = 0, ry = 0;
    EXPECT_DOUBLE_EQ(QelMaxBrightRect(img.data(), 8, 5, 8, 2, &cx, &cy), brightest_reference(img, 8, 5, 8, 2, &rx, &ry));
    EXPECT_EQ(cx, 4);
    EXPECT_EQ(cy, ry);
}

TEST(MaxBrightRect, AgreesWithDirectBlockSums) {
    for (unsigned seed = 0; seed < 40; ++seed) {
        std::mt19937 rng(seed);
        const int w = 1 + static_cast<int>(rng() % 12), h = 1 + static_cast<int>(rng() % 10);
        const int bw = 1 + static_cast<int>(rng() % w), bh = 1 + static_cast<int>(rng() % h);
        const Bytes img = random_grey(w, h, seed);
        int cx = 0, cy = 0, rx = 0, ry = 0;
        const double ref = brightest_reference(img, w, h, bw, bh, &rx, &ry);
        EXPECT_DOUBLE_EQ(QelMaxBrightRect(const_cast<unsigned char*>(img.data()), w, h, bw, bh, &cx, &cy), ref);
        EXPECT_EQ(cx, rx);
        EXPECT_EQ(cy, ry);
    }
}

TEST(EstimateImgStdev, MedianOfBlockDeviationsOverMaskedPixels) {
    const int w = 32, h = 24;
    // A checkerboard of 90 and 110 has deviation 10 in every block.
    Bytes img(w * h), mask(w * h, 1);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) img[y * w + x] = (x + y) % 2 ? 110 : 90;
    EXPECT_EQ(QelEstimateImgStdev(img.data(), mask.data(), w, h, 8, 8), 10);
    // Flat right half, masked out: only the checkerboard counts. Unmasked, the flat half dominates.
    for (int y = 0; y < h; ++y)
        for (int x = w / 2; x < w; ++x) {
            img[y * w + x] = 100;
            mask[y * w + x] = 0;
        }
    EXPECT_EQ(QelEstimateImgStdev(img.data(), mask.data(), w, h, 4, 4), 10);
    Bytes flatMask(w * h, 1);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w / 2 - 4; ++x) flatMask[y * w + x] = 0;
    EXPECT_EQ(QelEstimateImgStdev(img.data(), flatMask.data(), w, h, 4, 4), 0);
    // Nothing masked: no block votes and the median of the empty histogram is 0.
    Bytes none(w * h, 0);
    EXPECT_EQ(QelEstimateImgStdev(img.data(), none.data(), w, h, 4, 4), 0);
}

TEST(RectStats, PointsBoundingBox) {
    int xs[] = {5, -2, 7, 3}, ys[] = {4, 9, -1, 0};
    int a = 0, b = 0, c = 0, d = 0;
    QelPointsRect(xs, ys, 4, &a, &b, &c, &d);
    EXPECT_EQ(a, -2);
    EXPECT_EQ(b, 7);
    EXPECT_EQ(c, -1);
    EXPECT_EQ(d, 9);
    QelPointsRect(xs, ys, 1, &a, &b, &c, &d);
    EXPECT_EQ(a, 5);
    EXPECT_EQ(b, 5);
    EXPECT_EQ(c, 4);
    EXPECT_EQ(d, 4);
}

TEST(RGBRectAvr, CountedPixelsTakeTheRowsColoursInOrder) {
    // 4 × 2 BGR image; rectangle columns 1..3, rows 0..1.
    const int w = 4, h = 2;
    Bytes rgb(w * h * 3);
    for (int i = 0; i < w * h; ++i) {
        rgb[i * 3 + 0] = static_cast<unsigned char>(10 + i);   // B
        rgb[i * 3 + 1] = static_cast<unsigned char>(100 + i);  // G
        rgb[i * 3 + 2] = static_cast<unsigned char>(200 + i);  // R
    }
    Bytes mask(w * h, 0);
    mask[0 * w + 3] = 255;  // last pixel of row 0's part: takes pixel (1, 0)
    int r = -1, g = -1, b = -1;
    QelRGBRectAvr(rgb.data(), mask.data(), w, h, 1, 3, 0, 1, &r, &g, &b);
    EXPECT_EQ(r, 201);
    EXPECT_EQ(g, 101);
    EXPECT_EQ(b, 11);
    // Two counted pixels in row 1 take pixels (1, 1) and (2, 1): indices 5 and 6.
    mask[1 * w + 2] = 255;
    mask[1 * w + 3] = 255;
    mask[1 * w + 1] = 254;  // only 255 counts
    QelGetRGBRectAvr(rgb.data(), mask.data(), w, h, 1, 3, 0, 1, &r, &g, &b);
    EXPECT_EQ(r, (201 + 205 + 206) / 3);
    EXPECT_EQ(g, (101 + 105 + 106) / 3);
    EXPECT_EQ(b, (11 + 15 + 16) / 3);
    Bytes none(w * h, 0);
    QelRGBRectAvr(rgb.data(), none.data(), w, h, 0, 3, 0, 1, &r, &g, &b);
    EXPECT_EQ(r, 0);
    EXPECT_EQ(g, 0);
    EXPECT_EQ(b, 0);
}

}  // namespace
