// Resizing: bilinear resampling, reduction by averages, picks and medians, doubling, and the
// rectangle adjustment to a width that is a multiple of 4.
#include <qel.h>

#include <gtest/gtest.h>

#include "support/test_images.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace {

using qel_test::Bytes;
using Resize = void (*)(unsigned char*, int, int, unsigned char*, int, int);

// The fixed-point method pixel by pixel, straight from its formula.
Bytes fast_reference(const Bytes& src, int w, int h, int dw, int dh) {
    const int64_t sx = dw > 1 ? (int64_t{w - 1} << 16) / (dw - 1) : 0;
    const int64_t sy = dh > 1 ? (int64_t{h - 1} << 16) / (dh - 1) : 0;
    auto p = [&](int x, int y) { return int64_t{src[static_cast<size_t>(y * w + x)]}; };
    auto row = [&](int ix, int64_t fx, int y) {
        return ix + 1 < w ? ((65536 - fx) * p(ix, y) + fx * p(ix + 1, y)) >> 16 : p(ix, y);
    };
    Bytes out;
    for (int j = 0; j < dh; ++j)
        for (int i = 0; i < dw; ++i) {
            const int ix = static_cast<int>(i * sx >> 16), iy = static_cast<int>(j * sy >> 16);
            const int64_t fx = i * sx & 0xFFFF, fy = j * sy & 0xFFFF;
            const int64_t top = row(ix, fx, iy);
            out.push_back(static_cast<unsigned char>(iy + 1 < h ? ((65536 - fy) * top + fy * row(ix, fx, iy + 1)) >> 16
                                                                : top));
        }
    return out;
}

Bytes resized(Resize f, Bytes src, int w, int h, int dw, int dh, int channels = 1) {
    Bytes dst(static_cast<size_t>(dw * dh * channels) + 8, 77);  // 8 guard bytes
    f(src.data(), w, h, dst.data(), dw, dh);
    EXPECT_TRUE(std::all_of(dst.end() - 8, dst.end(), [](unsigned char b) { return b == 77; }));
    dst.resize(dst.size() - 8);
    return dst;
}

// Channel c of an image of n-byte pixels.
Bytes plane(const Bytes& img, int n, int c) {
    Bytes p;
    for (size_t i = static_cast<size_t>(c); i < img.size(); i += static_cast<size_t>(n)) p.push_back(img[i]);
    return p;
}

TEST(Bilinear, SameSizeIsTheIdentity) {
    for (int w : {1, 2, 5, 17})
        for (int h : {2, 3, 9}) {
            const Bytes g = qel_test::random_grey(w, h, static_cast<unsigned>(w * h)), c = qel_test::random_bgr(w, h, 5);
            EXPECT_EQ(resized(QelGryImgBilinearInterpolattionFast, g, w, h, w, h), g);
            EXPECT_EQ(resized(QelGryImgBilinearInterpolattionStd, g, w, h, w, h), g);
            EXPECT_EQ(resized(QelRgbImgBilinearInterpolattionFast, c, w, h, w, h, 3), c);
        }
}

TEST(Bilinear, TwoByTwoToThreeByThreeTruncatesMidpoints) {
    const Bytes expect = {0, 50, 100, 100, 138, 177, 200, 227, 255};
    EXPECT_EQ(resized(QelGryImgBilinearInterpolattionFast, {0, 100, 200, 255}, 2, 2, 3, 3), expect);
    EXPECT_EQ(resized(QelGryImgBilinearInterpolattionStd, {0, 100, 200, 255}, 2, 2, 3, 3), expect);
    // Fast truncates each row value before the vertical step (0 and 1 → 0); Std keeps 0.5 and 1.5.
    EXPECT_EQ(resized(QelGryImgBilinearInterpolattionFast, {0, 1, 1, 2}, 2, 2, 3, 3)[4], 0);
    EXPECT_EQ(resized(QelGryImgBilinearInterpolattionStd, {0, 1, 1, 2}, 2, 2, 3, 3)[4], 1);
    // A destination of one pixel samples the top-left source pixel.
    EXPECT_EQ(resized(QelGryImgBilinearInterpolattionFast, {9, 100, 200, 255}, 2, 2, 1, 1), Bytes{9});
    EXPECT_EQ(resized(QelGryImgBilinearInterpolattionStd, {9, 100, 200, 255}, 2, 2, 1, 1), Bytes{9});
}

TEST(Bilinear, AgreesWithThePlainFormulaOnManySizes) {
    for (int w = 1; w <= 9; w += 2)
        for (int h = 1; h <= 7; h += 3)
            for (int dw : {1, 2, 4, 13})
                for (int dh : {1, 3, 8}) {
                    SCOPED_TRACE(testing::Message() << w << "x" << h << " -> " << dw << "x" << dh);
                    const Bytes g = qel_test::random_grey(w, h, static_cast<unsigned>(w + 10 * h));
                    const Bytes fast = resized(QelGryImgBilinearInterpolattionFast, g, w, h, dw, dh);
                    EXPECT_EQ(fast, fast_reference(g, w, h, dw, dh));
                    // Std differs only by the truncation of the row values and of the steps.
                    const Bytes std = resized(QelGryImgBilinearInterpolattionStd, g, w, h, dw, dh);
                    for (size_t k = 0; k < fast.size(); ++k) EXPECT_LE(std::abs(fast[k] - std[k]), 2) << k;
                    const Bytes c = qel_test::random_bgr(w, h, static_cast<unsigned>(w * h));
                    const Bytes rgb = resized(QelRgbImgBilinearInterpolattionFast, c, w, h, dw, dh, 3);
                    for (int ch = 0; ch < 3; ++ch) EXPECT_EQ(plane(rgb, 3, ch), fast_reference(plane(c, 3, ch), w, h, dw, dh));
                }
}

TEST(Bilinear, EveryOutputWidthAndTailAgreesWithThePlainFormula) {
    // Output widths 1..70 cover every tail of the 8- and 16-lane steps, from sources that shrink
    // and that grow, with fractions on both sides of one half.
    for (int dw = 1; dw <= 70; ++dw)
        for (int w : {dw / 2 + 1, dw + 3, 2 * dw + 1}) {
            SCOPED_TRACE(testing::Message() << w << " -> " << dw);
            const int h = 5, dh = 7;
            const Bytes g = qel_test::random_grey(w, h, static_cast<unsigned>(w * 7 + dw));
            ASSERT_EQ(resized(QelGryImgBilinearInterpolattionFast, g, w, h, dw, dh), fast_reference(g, w, h, dw, dh));
        }
}

TEST(Shrink, TwoByTwoMeansAtEveryWidth) {
    // Output widths 0..70: every tail of the 16- and 32-output steps.
    for (int w = 1; w <= 141; ++w)
        for (int h : {1, 2, 5}) {
            const Bytes g = qel_test::random_grey(w, h, static_cast<unsigned>(w * 3 + h));
            Bytes out(static_cast<size_t>(w / 2 * (h / 2)) + 1, 77);  // one guard byte
            QelShrinkGryImg2x2ByAvr(Bytes(g).data(), w, h, out.data());
            for (int j = 0; j < h / 2; ++j)
                for (int i = 0; i < w / 2; ++i) {
                    const auto at = [&](int x, int y) { return g[static_cast<size_t>(y * w + x)]; };
                    const int sum = at(2 * i, 2 * j) + at(2 * i + 1, 2 * j) + at(2 * i, 2 * j + 1) + at(2 * i + 1, 2 * j + 1);
                    ASSERT_EQ(out[static_cast<size_t>(j * (w / 2) + i)], sum >> 2) << w << "x" << h << " at " << i << "," << j;
                }
            EXPECT_EQ(out.back(), 77);
        }
}

TEST(Shrink, WorkedBlocks) {
    // 5 × 3: the last column and row are ignored.
    Bytes src = {1, 2, 3, 4, 99, 5, 6, 7, 9, 99, 99, 99, 99, 99, 99}, dst(2, 0);
    QelShrinkGryImg2x2ByAvr(src.data(), 5, 3, dst.data());
    EXPECT_EQ(dst, Bytes({3, 5}));  // 14 >> 2, 23 >> 2
    Bytes ramp(16), one(1);
    for (int i = 0; i < 16; ++i) ramp[static_cast<size_t>(i)] = static_cast<unsigned char>(i);
    int dw = 0, dh = 0;
    QelShrinkGryImg4x4ByAvr(ramp.data(), 4, 4, one.data(), &dw, &dh);
    EXPECT_EQ(one[0], 7);  // 120 >> 4
    EXPECT_EQ(dw * 10 + dh, 11);
    Bytes white(6 * 5, 255);
    QelShrinkGryImg4x4ByAvr(white.data(), 6, 5, one.data(), &dw, &dh);
    EXPECT_EQ(one[0], 255);  // 4080 >> 4
    // Picks: steps 3 on 10 × 10 take columns and rows 0, 3, 6.
    Bytes ten(100), picked(9);
    for (int i = 0; i < 100; ++i) ten[static_cast<size_t>(i)] = static_cast<unsigned char>(i);
    QelShrinkGryImgByExtract(ten.data(), 10, 10, 3, 3, picked.data());
    EXPECT_EQ(picked, Bytes({0, 3, 6, 30, 33, 36, 60, 63, 66}));
    Bytes quarter(4);
    QelShrinkGryImg4x4ByExtract(ten.data(), 10, 10, quarter.data(), &dw, &dh);
    EXPECT_EQ(quarter, Bytes({0, 4, 40, 44}));
    Bytes half(25);
    QelShrinkGryImg2x2ByExtract(ten.data(), 10, 10, half.data(), &dw, &dh);
    EXPECT_EQ(dw * 10 + dh, 55);
    EXPECT_EQ(half, qel_test::crop(ten, 10, 1, 0, 0, 5, 5, 2));
    // Truncated mean: (1 + 2 + 2) / 3.
    Bytes row = {1, 2, 2, 7};
    QelShrinkImgByAvr(row.data(), false, 4, 1, 3, 1, one.data());
    EXPECT_EQ(one[0], 1);
}

TEST(Shrink, AverageFormsAgreeAndRgbWorksPerChannel) {
    for (int w : {2, 7, 12})
        for (int h : {2, 5, 8}) {
            const Bytes g = qel_test::random_grey(w, h, static_cast<unsigned>(w * 31 + h));
            Bytes a(static_cast<size_t>(w / 2 * (h / 2))), b(a.size());
            QelShrinkGryImg2x2ByAvr(Bytes(g).data(), w, h, a.data());
            QelShrinkImgByAvr(Bytes(g).data(), false, w, h, 2, 2, b.data());
            EXPECT_EQ(a, b);
            const Bytes c = qel_test::random_bgr(w, h, 9);
            Bytes rgb(static_cast<size_t>(w / 3 * (h / 2) * 3)), grey(rgb.size() / 3);
            QelShrinkImgByAvr(Bytes(c).data(), true, w, h, 3, 2, rgb.data());
            for (int ch = 0; ch < 3; ++ch) {
                QelShrinkImgByAvr(plane(c, 3, ch).data(), false, w, h, 3, 2, grey.data());
                EXPECT_EQ(plane(rgb, 3, ch), grey);
            }
        }
}

TEST(Shrink, MedianBlocksAreEnlargedOnceAndClipped) {
    // 10 wide into 4: 10/4 = 2 leaves columns over, so blocks are 10/3 = 3 wide and the last one
    // is column 9 alone. Each block holds one level, and two or more equal pixels give that level.
    Bytes src(40), dst(8);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 10; ++x) src[static_cast<size_t>(y * 10 + x)] = static_cast<unsigned char>(10 * (x / 3) + 100 * (y / 2));
    QelShrinkGryImgByMedian(src.data(), 10, 4, dst.data(), 4, 2);
    EXPECT_EQ(dst, Bytes({0, 10, 20, 30, 100, 110, 120, 130}));
    // 10 into 6: blocks 2 wide, the sixth lies past the image and is empty (median 0).
    Bytes white(20, 200), six(6, 9);
    QelShrinkGryImgByMedian(white.data(), 10, 2, six.data(), 6, 1);
    EXPECT_EQ(six, Bytes({200, 200, 200, 200, 200, 0}));
    // Random blocks agree with the library median of each block's histogram.
    const Bytes g = qel_test::random_grey(13, 11, 4);
    Bytes out(12);
    QelShrinkGryImgByMedian(Bytes(g).data(), 13, 11, out.data(), 4, 3);  // blocks 4 × 5 (13/3, 11/2)
    for (int j = 0; j < 3; ++j)
        for (int i = 0; i < 4; ++i) {
            std::vector<int> hist(256, 0);
            for (int y = 5 * j; y < std::min(5 * j + 5, 11); ++y)
                for (int x = 4 * i; x < std::min(4 * i + 4, 13); ++x) ++hist[g[static_cast<size_t>(y * 13 + x)]];
            EXPECT_EQ(out[static_cast<size_t>(j * 4 + i)], QelGetMedianInHistogram(hist.data()));
        }
}

TEST(Zoom, WorkedRowsAndRgbPerChannel) {
    Bytes row = {0, 255}, out(8);
    QelZoomGryImg2x2(row.data(), 2, 1, out.data());
    EXPECT_EQ(out, Bytes({0, 127, 255, 255, 0, 127, 255, 255}));
    Bytes sq = {0, 100, 200, 50}, big(16);
    QelZoomGryImg2x2(sq.data(), 2, 2, big.data());
    EXPECT_EQ(big, Bytes({0, 50, 100, 100, 100, 87, 75, 75, 200, 125, 50, 50, 200, 125, 50, 50}));
    Bytes one = {42}, two(4);
    QelZoomGryImg2x2(one.data(), 1, 1, two.data());
    EXPECT_EQ(two, Bytes(4, 42));
    const Bytes c = qel_test::random_bgr(5, 4, 2);
    Bytes rgb(5 * 4 * 4 * 3), grey(5 * 4 * 4);
    QelZoomRGBImg2x2(Bytes(c).data(), 5, 4, rgb.data());
    for (int ch = 0; ch < 3; ++ch) {
        QelZoomGryImg2x2(plane(c, 3, ch).data(), 5, 4, grey.data());
        EXPECT_EQ(plane(rgb, 3, ch), grey);
    }
}

TEST(RectResizeX4, WidthAroundTheCentreAndHeightAroundTheMiddle) {
    auto adjust = [](int imageWidth, int maxWidth, int maxHeight, std::vector<int> r) {
        QelRectResizeX4(imageWidth, -1, maxWidth, maxHeight, &r[0], &r[1], &r[2], &r[3]);
        return r;
    };
    using R = std::vector<int>;
    EXPECT_EQ(adjust(100, 100, 100, {10, 20, 0, 9}), R({12, 19, 0, 9}));  // width 11 -> 8, left half
    EXPECT_EQ(adjust(20, 100, 100, {10, 20, 0, 9}), R({11, 18, 0, 9}));   // right half: one more on the left
    EXPECT_EQ(adjust(20, 10, 100, {0, 20, 0, 9}), R({6, 13, 0, 9}));      // min(21, 10) -> 8
    EXPECT_EQ(adjust(20, 10, 100, {0, 7, 0, 9}), R({0, 7, 0, 9}));        // a multiple of 4 stays
    // Width centre (−5 + 0) >> 1 = −3 rounds down; height centre (−3 + 0) / 2 = −1 toward zero.
    EXPECT_EQ(adjust(0, 100, 4, {-5, 0, -3, 0}), R({-4, -1, -2, 0}));
    EXPECT_EQ(adjust(100, 100, 12, {0, 3, 0, 9}), R({0, 3, -1, 9}));     // 10 >= 12 − 2
    EXPECT_EQ(adjust(100, 100, 13, {0, 3, 0, 9}), R({0, 3, 0, 9}));
}

}  // namespace
