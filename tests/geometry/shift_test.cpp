#include <qel.h>

#include "draw/draw_test_helpers.h"
#include "support/test_images.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>

namespace {

using qel_test::Bytes;
using qel_test::GuardedImage;

Bytes contents(GuardedImage& img, size_t n) { return Bytes(img.data(), img.data() + n); }

// QelImageShift pixel by pixel: rows move by dy, rows left without a source keep `old`, then
// every row (kept ones included) moves by dx with 0 where nothing arrives.
Bytes reference_shift(const Bytes& src, const Bytes& old, int w, int h, int B, int dx, int dy) {
    Bytes out(src.size());
    auto vertical = [&](int x, int y, int ch) {
        const int sy = y - dy;
        const Bytes& from = sy >= 0 && sy < h ? src : old;
        return from[(static_cast<size_t>(sy >= 0 && sy < h ? sy : y) * w + x) * B + ch];
    };
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            for (int ch = 0; ch < B; ++ch) {
                const int sx = x - dx;
                out[(static_cast<size_t>(y) * w + x) * B + ch] = sx >= 0 && sx < w ? vertical(sx, y, ch) : 0;
            }
    return out;
}

// The per-row shear pixel by pixel: the design's columns clipped to the row, nearest source pixel
// of the row for positions outside it; dst starts as `old`.
Bytes reference_shear(const Bytes& src, Bytes out, int w, int h, double shear, bool fine) {
    const int64_t step = static_cast<int>(shear * 4096);
    for (int64_t y = 0; y < h; ++y) {
        const int64_t off = step * y, whole = off >= 0 ? off / 4096 : -((-off + 4095) / 4096);
        const int64_t first = off < 1 ? whole + 2 : 0, last = off < 1 ? w - 1 : w - whole - 2;
        auto px = [&](int64_t x) { return src[y * w + std::clamp<int64_t>(x, 0, w - 1)]; };
        for (int64_t x = std::max<int64_t>(first, 0); x <= std::min<int64_t>(last, w - 1); ++x) {
            const int64_t p = x * 4096 + off, ix = whole + x, f = p - ix * 4096;
            out[y * w + x] = static_cast<unsigned char>(fine ? ((4096 - f) * px(ix) + f * px(ix + 1)) >> 12 : px(ix));
        }
    }
    return out;
}

TEST(ImageShift, TwoColumnsRightClearsTheFirstTwo) {
    Bytes src = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10}, dst(10, 99);
    QelImageShift(src.data(), 5, 2, false, 2, 0, dst.data());
    EXPECT_EQ(dst, (Bytes{0, 0, 1, 2, 3, 0, 0, 6, 7, 8}));
}

TEST(ImageShift, VacatedRowsKeepDstAndMoveWithTheStrip) {
    // dy = 1 keeps dst's row 0 (70 71 72), which then moves one pixel left with the rest.
    Bytes src = {1, 2, 3, 4, 5, 6, 7, 8, 9}, dst = {70, 71, 72, 0, 0, 0, 0, 0, 0};
    QelImageShift(src.data(), 3, 3, false, -1, 1, dst.data());
    EXPECT_EQ(dst, (Bytes{71, 72, 0, 2, 3, 0, 5, 6, 0}));
}

TEST(ImageShift, RandomShiftsMatchThePixelRuleAndStayInBounds) {
    std::mt19937 rng(1);
    for (int trial = 0; trial < 300; ++trial) {
        const int w = 1 + static_cast<int>(rng() % 12), h = 1 + static_cast<int>(rng() % 12), B = trial % 2 ? 3 : 1;
        const int dx = static_cast<int>(rng() % (2 * w + 5)) - w - 2,
                  dy = static_cast<int>(rng() % (2 * h + 5)) - h - 2;
        const size_t n = static_cast<size_t>(w) * h * B;
        Bytes src = qel_test::random_bytes(n, trial), old = qel_test::random_bytes(n, trial + 1000);
        GuardedImage dst(w, h, B);
        std::copy(old.begin(), old.end(), dst.data());
        QelImageShift(src.data(), w, h, B == 3, dx, dy, dst.data());
        ASSERT_TRUE(dst.guards_intact()) << trial;
        ASSERT_EQ(contents(dst, n), reference_shift(src, old, w, h, B, dx, dy)) << trial << ": " << dx << "," << dy;
        Bytes inPlace = src;  // src may be dst: the kept rows are then src's own
        QelImageShift(inPlace.data(), w, h, B == 3, dx, dy, inPlace.data());
        ASSERT_EQ(inPlace, reference_shift(src, src, w, h, B, dx, dy)) << trial;
    }
}

TEST(ShiftXPerRow, ZeroShearLeavesTheFirstTwoColumns) {
    Bytes src = qel_test::random_grey(6, 3, 2), dst(18, 77);
    for (auto f : {QelShiftXPerRowFast, QelShiftXPerRowFine}) {
        std::fill(dst.begin(), dst.end(), 77);
        f(src.data(), 6, 3, 0.0, dst.data());
        for (int y = 0; y < 3; ++y)
            EXPECT_EQ(qel_test::row_of(dst, 6, y),
                      (Bytes{77, 77, src[y * 6 + 2], src[y * 6 + 3], src[y * 6 + 4], src[y * 6 + 5]}));
    }
}

TEST(ShiftXPerRow, HalfPixelShearHandWorked) {
    // shear 0.5: row 1 is offset by 2048/4096 (columns 0..3), row 2 by a whole pixel (columns 0..2).
    Bytes src = {0, 0, 0, 0, 0, 10, 20, 31, 40, 50, 1, 2, 3, 4, 5}, fast(15, 9), fine(15, 9);
    QelShiftXPerRowFast(src.data(), 5, 3, 0.5, fast.data());
    QelShiftXPerRowFine(src.data(), 5, 3, 0.5, fine.data());
    EXPECT_EQ(qel_test::row_of(fast, 5, 1), (Bytes{10, 20, 31, 40, 9}));
    EXPECT_EQ(qel_test::row_of(fine, 5, 1), (Bytes{15, 25, 35, 45, 9}));  // (a + b) >> 1, truncated
    EXPECT_EQ(qel_test::row_of(fast, 5, 2), (Bytes{2, 3, 4, 9, 9}));
    EXPECT_EQ(qel_test::row_of(fine, 5, 2), (Bytes{2, 3, 4, 9, 9}));
    EXPECT_EQ(qel_test::row_of(fast, 5, 0), (Bytes{9, 9, 0, 0, 0})) << "offset 0 is below 1";
}

TEST(ShiftXPerRow, StrongNegativeShearStaysInItsRow) {
    // shear −0.25, row 12: off = −12288, so the design names columns −1 .. 5 and source columns
    // −3 .. 2; column −1 is not written (it would be row 11's last pixel) and sources below 0 read
    // column 0.
    const int w = 6, h = 13;
    Bytes src = qel_test::random_grey(w, h, 3);
    GuardedImage dst(w, h, 1, 200);
    QelShiftXPerRowFast(src.data(), w, h, -0.25, dst.data());
    const Bytes out = contents(dst, w * h);
    const unsigned char* r12 = &src[12 * w];
    EXPECT_EQ(qel_test::row_of(out, w, 12), (Bytes{r12[0], r12[0], r12[0], r12[0], r12[1], r12[2]}));
    EXPECT_EQ(out[11 * w + 5], src[11 * w + 2]) << "row 11 keeps its own last pixel";
    EXPECT_TRUE(dst.guards_intact());
}

TEST(ShiftXPerRow, RandomShearsMatchThePixelRuleAndStayInBounds) {
    std::mt19937 rng(4);
    for (int trial = 0; trial < 200; ++trial) {
        const int w = 1 + static_cast<int>(rng() % 20), h = 1 + static_cast<int>(rng() % 20);
        const double shear = std::uniform_real_distribution<double>(-3, 3)(rng);
        Bytes src = qel_test::random_grey(w, h, trial);
        for (bool fine : {false, true}) {
            GuardedImage dst(w, h, 1, 123);
            (fine ? QelShiftXPerRowFine : QelShiftXPerRowFast)(src.data(), w, h, shear, dst.data());
            ASSERT_TRUE(dst.guards_intact()) << trial;
            ASSERT_EQ(contents(dst, static_cast<size_t>(w) * h),
                      reference_shear(src, Bytes(w * h, 123), w, h, shear, fine))
                << trial << " shear " << shear << (fine ? " fine" : " fast");
        }
    }
}

TEST(ShiftImg2BasedImg1, RecoversAKnownShift) {
    // img2(x, y) = img1(x − 3, y + 2): img2's window moved by (3, −2) matches img1's exactly.
    for (int B : {1, 3}) {
        const int w = 40, h = 30;
        const Bytes img1 = qel_test::random_bytes(static_cast<size_t>(w) * h * B, 5 + B);
        Bytes img2(img1.size(), 0);
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x)
                if (x - 3 >= 0 && y + 2 < h)
                    std::copy_n(&img1[(static_cast<size_t>(y + 2) * w + x - 3) * B], B,
                                &img2[(static_cast<size_t>(y) * w + x) * B]);
        Bytes a = img1, b = img2;
        GuardedImage dst(w, h, B);
        int dx = 99, dy = 99;
        EXPECT_EQ(QelShiftImg2BasedImg1(a.data(), b.data(), dst.data(), w, h, B == 3, 5, 4, tagRECT{0, 0, w - 1, h - 1},
                                        &dx, &dy),
                  0);
        EXPECT_EQ(dx, 3);
        EXPECT_EQ(dy, -2);
        // img2 moved by (−3, +2): img1 again, except that rows 0 and 1 are img1's own rows moved left
        // with the strip, and the last three columns are 0.
        const Bytes out = contents(dst, img1.size());
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x)
                for (int ch = 0; ch < B; ++ch) {
                    const int want = x >= w - 3 ? 0 : img1[(static_cast<size_t>(y) * w + x + (y < 2 ? 3 : 0)) * B + ch];
                    ASSERT_EQ(out[(static_cast<size_t>(y) * w + x) * B + ch], want) << x << "," << y;
                }
        EXPECT_TRUE(dst.guards_intact());
    }
}

TEST(ShiftImg2BasedImg1, FirstMinimumWinsAndEmptySearchesKeepImg2) {
    Bytes flat1(20 * 10, 50), flat2(20 * 10, 50), dst(20 * 10);
    int dx = 0, dy = 0;
    EXPECT_EQ(QelShiftImg2BasedImg1(flat1.data(), flat2.data(), dst.data(), 20, 10, false, 2, 1, tagRECT{0, 0, 19, 9},
                                    &dx, &dy),
              0);
    EXPECT_EQ(std::make_pair(dx, dy), std::make_pair(-2, -1)) << "every shift ties; the first tried is kept";
    Bytes img1 = qel_test::random_grey(20, 10, 6), img2 = qel_test::random_grey(20, 10, 7);
    // A one-row window measures 0 everywhere (the difference leaves out its last row).
    EXPECT_EQ(QelShiftImg2BasedImg1(img1.data(), img2.data(), dst.data(), 20, 10, false, 2, 1, tagRECT{0, 4, 19, 4},
                                    &dx, &dy),
              0);
    EXPECT_EQ(std::make_pair(dx, dy), std::make_pair(-2, -1));

    // The window 5..14 × 3..6 shrunk by 6 rows each side is empty: nothing is tried.
    EXPECT_EQ(QelShiftImg2BasedImg1(img1.data(), img2.data(), dst.data(), 20, 10, false, 1, 6, tagRECT{5, 3, 14, 6},
                                    &dx, &dy),
              0);
    EXPECT_EQ(std::make_pair(dx, dy), std::make_pair(0, 0));
    EXPECT_EQ(dst, img2);
    // Negative limits try no shift either and return the starting value 3 rows · 4 columns · 255.
    EXPECT_EQ(QelShiftImg2BasedImg1(img1.data(), img2.data(), dst.data(), 20, 10, false, -1, -1, tagRECT{2, 2, 5, 4},
                                    &dx, &dy),
              3 * 4 * 255);
    EXPECT_EQ(dst, img2);
}

TEST(Paste, ClipsRightBottomAndSkipsLeftTop) {
    const Bytes small = qel_test::random_grey(10, 10, 8);
    Bytes smallCopy = small;
    GuardedImage big(100, 100, 1, 7);
    QelPasteGryImg2ResImg(smallCopy.data(), 10, 10, big.data(), 100, 100, 95, 95);
    Bytes want(100 * 100, 7);
    for (int y = 95; y < 100; ++y)
        for (int x = 95; x < 100; ++x) want[y * 100 + x] = small[(y - 95) * 10 + x - 95];
    EXPECT_EQ(contents(big, want.size()), want) << "only the 5 × 5 corner is written";
    EXPECT_TRUE(big.guards_intact());

    // Negative origins: the part above and left of the image is dropped, the rest stays in place.
    GuardedImage left(8, 6, 1, 7);
    QelPasteGryImg2ResImg(smallCopy.data(), 10, 10, left.data(), 8, 6, -3, -2);
    want.assign(48, 7);
    for (int y = 0; y < 6; ++y)
        for (int x = 0; x < 7; ++x) want[y * 8 + x] = small[(y + 2) * 10 + x + 3];
    EXPECT_EQ(contents(left, 48), want);
    EXPECT_TRUE(left.guards_intact());
}

TEST(Paste, GreyIntoRgbFillsAllThreeBytesAndRgbCopiesPixels) {
    Bytes grey = {10, 20, 30, 40}, rgb = qel_test::random_bgr(2, 2, 9);
    GuardedImage big(3, 3, 3, 1);
    QelPasteGryImg2RGBImg(grey.data(), 2, 2, big.data(), 3, 3, 1, 1);
    EXPECT_EQ(contents(big, 27),
              (Bytes{1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 10, 10, 10, 20, 20, 20, 1, 1, 1, 30, 30, 30, 40, 40, 40}));
    QelPasteRGBImg2ResImg(rgb.data(), 2, 2, big.data(), 3, 3, 2, 0);
    const Bytes out = contents(big, 27);
    EXPECT_EQ(Bytes(out.begin() + 6, out.begin() + 9), Bytes(rgb.begin(), rgb.begin() + 3));
    EXPECT_EQ(Bytes(out.begin() + 15, out.begin() + 18), Bytes(rgb.begin() + 6, rgb.begin() + 9));
    EXPECT_EQ(out[12], 10) << "the column beyond the right edge is dropped, nothing else moves";
    EXPECT_TRUE(big.guards_intact());
}

}  // namespace
