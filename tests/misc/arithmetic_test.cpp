// Exact-size buffers throughout: the sanitizer build catches any byte written past them.
#include <qel.h>

#include "support/test_images.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <utility>
#include <vector>

namespace {

using qel_test::Bytes;
using qel_test::random_bgr;
using qel_test::random_grey;

tagRECT rect(int left, int top, int right, int bottom) { return tagRECT{left, top, right, bottom}; }

// Checks r[i] == ref(a[i], b[i]) for every byte of r.
template <typename Ref>
void expect_bytes(const Bytes& r, const Bytes& a, const Bytes& b, Ref ref, const char* what) {
    for (size_t i = 0; i < r.size(); ++i) ASSERT_EQ(r[i], ref(a[i], b[i])) << what << " byte " << i;
}

// Every width 1..70 (all tails of the 16-byte steps), one to three rows.
void check_pixelwise_ops(int w, int h) {
    SCOPED_TRACE(testing::Message() << w << "x" << h);
    const int n = w * h * 3;
    const auto andOp = [](int x, int y) { return x & y; };
    const auto orOp = [](int x, int y) { return x | y; };
    const auto xorOp = [](int x, int y) { return x ^ y; };
    const auto subOp = [](int x, int y) { return std::max(x - y, 0); };
    Bytes a = random_bgr(w, h, 1), b = random_bgr(w, h, 2), r(n), x;
    QelImg1AndImg2ToRes(a.data(), b.data(), n, r.data()), expect_bytes(r, a, b, andOp, "and");
    QelImg1OrImg2ToRes(a.data(), b.data(), n, r.data()), expect_bytes(r, a, b, orOp, "or");
    QelImg1XorImg2ToRes(a.data(), b.data(), n, r.data()), expect_bytes(r, a, b, xorOp, "xor");
    QelImg1AndImg2To1((x = a).data(), b.data(), n), expect_bytes(x, a, b, andOp, "and in place");
    QelImg1OrImg2To1((x = a).data(), b.data(), n), expect_bytes(x, a, b, orOp, "or in place");
    QelImg1XorImg2To1((x = a).data(), b.data(), n), expect_bytes(x, a, b, xorOp, "xor in place");
    QelImg1SubstractImg2(a.data(), b.data(), w, h, true, r.data()), expect_bytes(r, a, b, subOp, "subtract BGR");
    QelRemainMaxGry(a.data(), w, h, true, (x = b).data());
    expect_bytes(x, a, b, [](int p, int q) { return std::max(p, q); }, "running max");
    Bytes mx = b, mn = b;
    QelRemainMaxMinGry(a.data(), w, h, true, mx.data(), mn.data());
    EXPECT_EQ(mx, x);
    QelRemainMinGry(a.data(), w, h, true, (x = b).data());
    expect_bytes(x, a, b, [](int p, int q) { return std::min(p, q); }, "running min");
    EXPECT_EQ(mn, x);

    Bytes ga = random_grey(w, h, 3), gb = random_grey(w, h, 4), y;
    QelImg1Difference2To1((x = ga).data(), gb.data(), w, h);
    expect_bytes(x, ga, gb, [](int p, int q) { return std::abs(p - q); }, "difference");
    QelImg1Substract2To1((x = ga).data(), gb.data(), w, h), expect_bytes(x, ga, gb, subOp, "subtract into a");
    QelImg1Substract2To2((x = ga).data(), (y = gb).data(), w, h), expect_bytes(y, ga, gb, subOp, "subtract into b");
    EXPECT_EQ(x, ga);  // the first image is only read
}

TEST(PixelwiseOps, AgreeWithPerByteReferences) {
    for (int w = 1; w <= 70; ++w) check_pixelwise_ops(w, 1 + w % 3);
}

TEST(PixelwiseOps, EveryOutputAlignmentAndLength) {
    // The wide steps start where the output reaches a 32-byte boundary: every offset of the
    // buffers, lengths around one and two steps; the byte after the output stays untouched.
    Bytes a = qel_test::random_bytes(200, 5), b = qel_test::random_bytes(200, 6);
    for (int offset = 0; offset < 32; ++offset)
        for (int n : {1, 31, 32, 33, 63, 64, 65, 100, 130}) {
            Bytes r(200, 7);
            QelImg1XorImg2ToRes(a.data() + offset, b.data() + offset, n, r.data() + offset);
            for (int i = 0; i < n; ++i) ASSERT_EQ(r[offset + i], a[offset + i] ^ b[offset + i]) << offset << " " << n;
            ASSERT_EQ(r[offset + n], 7) << offset << " " << n;
        }
}

TEST(PixelwiseOps, DifferenceImageAgreesWithPerPixelReference) {
    for (int w = 1; w <= 70; ++w)
        for (bool isRGB : {false, true}) {
            const int h = 1 + w % 3, bpp = isRGB ? 3 : 1;
            Bytes a = qel_test::random_bytes(w * h * bpp, w), b = qel_test::random_bytes(w * h * bpp, w + 100);
            Bytes res(w * h);
            QelDifferenceImg12(a.data(), b.data(), w, h, isRGB, res.data());
            for (int i = 0; i < w * h; ++i) {
                int d = 0;
                for (int c = 0; c < bpp; ++c) d = std::max(d, std::abs(a[i * bpp + c] - b[i * bpp + c]));
                ASSERT_EQ(res[i], d) << w << "x" << h << (isRGB ? " BGR" : " grey") << " pixel " << i;
            }
        }
}

TEST(PixelwiseOps, DifferenceImageAndItsHistogram) {
    // BGR: one grey byte a pixel, the largest of the three channel differences.
    Bytes a = {10, 200, 30, 0, 0, 0}, b = {20, 100, 35, 255, 1, 2}, res(2);
    int hist[256];
    std::fill(hist, hist + 256, 99);
    QelDifferenceImg12(a.data(), b.data(), 2, 1, true, res.data(), hist);
    EXPECT_EQ(res, (Bytes{100, 255}));
    EXPECT_EQ(hist[100] + hist[255], 2);
    EXPECT_EQ(hist[0], 0);  // cleared first
    // An image with itself: all 0, and w × h in bin 0.
    for (bool isRGB : {false, true}) {
        Bytes img = isRGB ? random_bgr(11, 7, 5) : random_grey(11, 7, 5), same(77, 1);
        QelDifferenceImg12(img.data(), img.data(), 11, 7, isRGB, same.data(), hist);
        EXPECT_TRUE(qel_test::all_equal(same, 0));
        EXPECT_EQ(hist[0], 77);
    }
}

// Widths up to 80 take the 32- and 16-column steps and every tail.
TEST(PixelwiseOps, IntegralImageMatchesDirectSums) {
    for (int w = 1; w <= 80; ++w)
        for (int h = 1; h <= 3; ++h) {
            Bytes img = random_grey(w, h, w * 10 + h);
            std::vector<int> sum(w * h);
            QelDoSumGryImg(img.data(), w, h, sum.data());
            for (int y = 0; y < h; ++y)
                for (int x = 0; x < w; ++x) {
                    int ref = 0;
                    for (int j = 0; j <= y; ++j)
                        for (int i = 0; i <= x; ++i) ref += img[j * w + i];
                    ASSERT_EQ(sum[y * w + x], ref) << w << "x" << h << " at " << x << "," << y;
                }
        }
}

TEST(ImgDifferenceInRect, LastRowAndColumnAreNotCompared) {
    Bytes a(16, 100), b(16, 100);  // 4 × 4, differing only in row 2 and column 2
    for (int i = 0; i < 4; ++i) b[2 * 4 + i] = b[i * 4 + 2] = 0;
    EXPECT_EQ(QelImgDifferenceInRect(a.data(), b.data(), false, 4, rect(0, 0, 2, 2), rect(0, 0, 2, 2)), 0);
    b[1 * 4 + 1] = 60;  // 40 over 4 bytes
    EXPECT_EQ(QelImgDifferenceInRect(a.data(), b.data(), false, 4, rect(0, 0, 2, 2), rect(0, 0, 2, 2)), 10);
    EXPECT_EQ(QelImgDifferenceInRect(a.data(), b.data(), false, 4, rect(0, 0, 2, 2), rect(1, 1, 3, 3)), 340 / 4);
    EXPECT_EQ(QelImgDifferenceInRect(a.data(), b.data(), false, 4, rect(1, 1, 1, 3), rect(0, 0, 2, 2)), 0);  // empty
}

TEST(ImgDifferenceInRect, SameSizeRectanglesAgreeWithCrops) {
    const int w = 17, h = 12;
    std::mt19937 rng(3);
    for (int bpp : {1, 3}) {
        Bytes a = qel_test::random_bytes(w * h * bpp, 20), b = qel_test::random_bytes(w * h * bpp, 21);
        for (int k = 0; k < 20; ++k) {
            const int cw = 1 + static_cast<int>(rng() % 8), ch = 1 + static_cast<int>(rng() % 6);
            const int x1 = static_cast<int>(rng() % (w - cw)), y1 = static_cast<int>(rng() % (h - ch));
            const int x2 = static_cast<int>(rng() % (w - cw)), y2 = static_cast<int>(rng() % (h - ch));
            const Bytes ca = qel_test::crop(a, w, bpp, x1, y1, cw, ch), cb = qel_test::crop(b, w, bpp, x2, y2, cw, ch);
            int64_t s = 0;
            for (size_t i = 0; i < ca.size(); ++i) s += std::abs(ca[i] - cb[i]);
            EXPECT_EQ(QelImgDifferenceInRect(a.data(), b.data(), bpp == 3, w, rect(x1, y1, x1 + cw, y1 + ch),
                                             rect(x2, y2, x2 + cw, y2 + ch)),
                      s / static_cast<int64_t>(ca.size()));
        }
    }
}

TEST(ImgDifferenceInRect, LargerSecondRectangleIsSampledAtTruncatedSteps) {
    Bytes a(36, 0), b(36, 0);  // 6 × 6; r1 spans 2 × 2 pixels, r2 4 × 4: read at offsets 0 and 2
    b[0] = 8, b[2] = 16, b[12] = 24, b[14] = 32, b[7] = 255;  // (1, 1) lies between samples
    EXPECT_EQ(QelImgDifferenceInRect(a.data(), b.data(), false, 6, rect(3, 3, 5, 5), rect(0, 0, 4, 4)), 80 / 4);
}

TEST(RectStats, MeansAndCentreAgainstRing) {
    Bytes row = {1, 2, 9, 9, 9, 9};  // 3 × 2
    EXPECT_EQ(QelGryRectAvr(row.data(), 3, 2, 0, 1, 0, 0), 1);
    EXPECT_EQ(QelGryRectAvr(row.data(), 3, 2, 0, 2, 0, 1), 39 / 6);
    Bytes img(25, 100);
    img[12] = 200;
    EXPECT_EQ(QelCenterBlockMeanDif(img.data(), 5, 5, 2, 2, 2, 2, 1), 100);
    img[0] = 50;  // at the corner the outer box is clamped to 3 × 3: a ring of 8
    EXPECT_EQ(QelCenterBlockMeanDif(img.data(), 5, 5, 0, 0, 0, 0, 2), 50 - (100 * 7 + 200) / 8);
    EXPECT_EQ(QelCenterBlockMeanDif(img.data(), 5, 5, 2, 2, 2, 2, 0), 200);  // no ring
}

TEST(RectStats, RobustMinMaxPassesOverTheRatioAtEachEnd) {
    Bytes img = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    const std::vector<std::pair<double, std::pair<int, int>>> cases = {
        {0.0, {0, 9}}, {0.2, {2, 7}}, {1.0, {256, 0}}};  // k = 0, 2, and the whole area
    for (const auto& [ratio, expected] : cases) {
        int lo = -1, hi = -1;
        QelGryMinMaxInRect(img.data(), 10, 0, 9, 0, 0, ratio, &lo, &hi);
        EXPECT_EQ(std::make_pair(lo, hi), expected) << ratio;
    }
}

TEST(RectStats, ExtremesWithoutAPassAreTheRectanglesMinimumAndMaximum) {
    for (int w = 1; w <= 70; ++w) {
        SCOPED_TRACE(w);
        const int h = 3;
        const Bytes img = random_grey(w, h, static_cast<unsigned>(w));
        const int x0 = w / 3, x1 = w - 1, y0 = 1, y1 = 2;
        int lo = 255, hi = 0;
        for (int y = y0; y <= y1; ++y)
            for (int x = x0; x <= x1; ++x) {
                lo = std::min<int>(lo, img[y * w + x]);
                hi = std::max<int>(hi, img[y * w + x]);
            }
        for (double ratio : {0.0, 1e-9}) {  // both pass over k = 0 pixels
            int gotLo = -1, gotHi = -1;
            QelGryMinMaxInRect(const_cast<unsigned char*>(img.data()), w, x0, x1, y0, y1, ratio, &gotLo, &gotHi);
            EXPECT_EQ(std::make_pair(gotLo, gotHi), std::make_pair(lo, hi)) << ratio;
        }
    }
}

TEST(RectStats, PointsBoundingBox) {
    int xs[] = {5, -2, 7, 3}, ys[] = {4, 9, -1, 0}, box[4] = {};
    QelPointsRect(xs, ys, 4, &box[0], &box[1], &box[2], &box[3]);
    EXPECT_EQ(std::vector<int>(box, box + 4), (std::vector<int>{-2, 7, -1, 9}));
}

// Every block position the search tries, by direct sums.
double brightest_reference(const Bytes& img, int w, int h, int bw, int bh, int* cx, int* cy) {
    int64_t best = 0;
    *cx = w / 2, *cy = h / 2;
    for (int y = 0; y < h - bh; ++y)
        for (int x = 0; x < std::max(1, w - bw); ++x) {
            int64_t s = 0;
            for (int j = 0; j < bh; ++j)
                for (int i = 0; i < bw; ++i) s += img[(y + j) * w + x + i];
            if (s > best) best = s, *cx = x + bw / 2, *cy = y + bh / 2;
        }
    return static_cast<double>(best) / (bw * bh);
}

TEST(MaxBrightRect, NeverTriesTheLastRowOrColumn) {
    Bytes img(6 * 4, 0);  // a bright 2 × 2 block at the last possible column, rows 0..1
    img[4] = img[5] = img[10] = img[11] = 200;
    int cx = -1, cy = -1;
    EXPECT_DOUBLE_EQ(QelMaxBrightRect(img.data(), 6, 4, 2, 2, &cx, &cy), 100.0);  // half of it, at x = 3
    EXPECT_EQ(std::make_pair(cx, cy), std::make_pair(4, 1));
    EXPECT_EQ(QelMaxBrightRect(img.data(), 6, 4, 2, 4, &cx, &cy), 0.0);  // blockH = height: no row tried
    EXPECT_EQ(std::make_pair(cx, cy), std::make_pair(3, 2));
}

TEST(MaxBrightRect, AgreesWithDirectBlockSums) {
    for (unsigned seed = 0; seed < 40; ++seed) {
        std::mt19937 rng(seed);
        const int w = 1 + static_cast<int>(rng() % 12), h = 1 + static_cast<int>(rng() % 10);
        const int bw = 1 + static_cast<int>(rng() % w), bh = 1 + static_cast<int>(rng() % h);
        Bytes img = random_grey(w, h, seed);
        int cx = 0, cy = 0, rx = 0, ry = 0;
        const double ref = brightest_reference(img, w, h, bw, bh, &rx, &ry);  // bw = w tries column 0 only
        EXPECT_DOUBLE_EQ(QelMaxBrightRect(img.data(), w, h, bw, bh, &cx, &cy), ref);
        EXPECT_EQ(std::make_pair(cx, cy), std::make_pair(rx, ry));
    }
}

TEST(EstimateImgStdev, MedianOfBlockDeviationsOverMaskedPixels) {
    const int w = 32, h = 24;
    Bytes img(w * h), mask(w * h, 1), none(w * h, 0);
    for (int i = 0; i < w * h; ++i) img[i] = (i % w) >= w / 4 ? 100 : (i % w + i / w) % 2 ? 110 : 90;
    EXPECT_EQ(QelEstimateImgStdev(img.data(), mask.data(), w, h, 4, 4), 0);  // the flat three quarters outvote
    for (int i = 0; i < w * h; ++i) mask[i] = (i % w) < w / 4;  // the checkerboard only: deviation 10
    EXPECT_EQ(QelEstimateImgStdev(img.data(), mask.data(), w, h, 4, 4), 10);
    EXPECT_EQ(QelEstimateImgStdev(img.data(), none.data(), w, h, 4, 4), 0);  // no votes
}

TEST(RGBRectAvr, CountedPixelsTakeTheRowsColoursInOrder) {
    const int w = 4, h = 2;  // rectangle columns 1..3, rows 0..1; pixel i is B 10+i, G 100+i, R 200+i
    Bytes rgb(w * h * 3), mask(w * h, 0);
    const int base[3] = {10, 100, 200};
    for (int i = 0; i < w * h * 3; ++i) rgb[i] = static_cast<unsigned char>(base[i % 3] + i / 3);
    mask[3] = 255;  // the last pixel of row 0's part takes the colour of pixel (1, 0)
    int r = -1, g = -1, b = -1;
    QelRGBRectAvr(rgb.data(), mask.data(), w, h, 1, 3, 0, 1, &r, &g, &b);
    EXPECT_EQ(std::vector<int>({r, g, b}), std::vector<int>({201, 101, 11}));
    mask[6] = mask[7] = 255, mask[5] = 254;  // row 1: pixels 5 and 6 are taken; 254 does not count
    QelGetRGBRectAvr(rgb.data(), mask.data(), w, h, 1, 3, 0, 1, &r, &g, &b);
    EXPECT_EQ(std::vector<int>({r, g, b}), std::vector<int>({612 / 3, 312 / 3, 42 / 3}));
    std::fill(mask.begin(), mask.end(), 0);
    QelRGBRectAvr(rgb.data(), mask.data(), w, h, 0, 3, 0, 1, &r, &g, &b);
    EXPECT_EQ(std::vector<int>({r, g, b}), std::vector<int>({0, 0, 0}));
}

TEST(RectStats, BoundsAtEquality) {
    // A ring whose outer box starts at column 1 keeps column 1 (only a start below 1 becomes 0):
    // centre 10 against the ring 40, 40.
    Bytes row = {100, 40, 10, 40};
    EXPECT_EQ(QelCenterBlockMeanDif(row.data(), 4, 1, 2, 2, 0, 0, 1), -30);
    // Rectangles of no rows or no columns compare nothing.
    Bytes grey = random_grey(8, 8, 9);
    EXPECT_EQ(QelImgDifferenceInRect(grey.data(), grey.data(), false, 8, {2, 3, 6, 3}, {2, 3, 6, 3}), 0);
    EXPECT_EQ(QelImgDifferenceInRect(grey.data(), grey.data(), false, 8, {2, 3, 2, 7}, {2, 3, 2, 7}), 0);
    // A uniform image: every block ties, and the first one tried (top left) is kept.
    Bytes flat(36, 100);
    int cx = -1, cy = -1;
    EXPECT_EQ(QelMaxBrightRect(flat.data(), 6, 6, 2, 2, &cx, &cy), 100.0);
    EXPECT_EQ(std::make_pair(cx, cy), std::make_pair(1, 1));
    for (auto [bw, bh] : {std::pair{0, 2}, {2, 0}}) {
        EXPECT_EQ(QelMaxBrightRect(flat.data(), 6, 6, bw, bh, &cx, &cy), 0.0);
        EXPECT_EQ(std::make_pair(cx, cy), std::make_pair(3, 3));
    }
    // One point is its own box.
    int x = 4, y = -2, box[4] = {-7, -7, -7, -7};
    QelPointsRect(&x, &y, 1, &box[0], &box[1], &box[2], &box[3]);
    EXPECT_EQ(std::vector<int>(box, box + 4), (std::vector<int>{4, 4, -2, -2}));
}

}  // namespace
