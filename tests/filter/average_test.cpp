#include <qel.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

Bytes random_bytes(size_t n, unsigned seed) {
    std::mt19937 rng(seed);
    Bytes v(n);
    for (auto& b : v) b = static_cast<unsigned char>(rng() & 0xFF);
    return v;
}

// Fixed-point mean of the window [xa, xb] × [ya, yb] of channel c, by brute force.
int window_mean(const Bytes& img, int w, int channels, int c, int xa, int xb, int ya, int yb) {
    uint32_t sum = 0;
    for (int y = ya; y <= yb; ++y) {
        for (int x = xa; x <= xb; ++x) sum += img[(y * w + x) * channels + c];
    }
    const uint32_t n = static_cast<uint32_t>((xb - xa + 1) * (yb - ya + 1));
    return static_cast<int>((static_cast<uint64_t>(sum) * (16777216u / n)) >> 24);
}

// The border-adaptive filter: window half sizes min(half, distance to either edge).
Bytes adaptive_reference(const Bytes& img, int w, int h, int channels, int hx, int hy) {
    Bytes out(img.size());
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            const int ax = std::min({hx, x, w - 1 - x});
            const int ay = std::min({hy, y, h - 1 - y});
            for (int c = 0; c < channels; ++c)
                out[(y * w + x) * channels + c] =
                    static_cast<unsigned char>(window_mean(img, w, channels, c, x - ax, x + ax, y - ay, y + ay));
        }
    }
    return out;
}

// The full-window filters: the window centre is clamped so that the window stays inside.
Bytes full_window_reference(const Bytes& img, int w, int h, int channels, int hx, int hy) {
    Bytes out(img.size());
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            const int cx = std::clamp(x, hx, w - 1 - hx);
            const int cy = std::clamp(y, hy, h - 1 - hy);
            for (int c = 0; c < channels; ++c)
                out[(y * w + x) * channels + c] =
                    static_cast<unsigned char>(window_mean(img, w, channels, c, cx - hx, cx + hx, cy - hy, cy + hy));
        }
    }
    return out;
}

TEST(AverageFilter, AllWhiteRowGives254InsideAnd255AtTheEnds) {
    const int w = 6, h = 2;
    const Bytes white(w * h, 255);
    Bytes plain(w * h), fast(w * h);
    QelGryAverageFilter(const_cast<unsigned char*>(white.data()), w, h, 1, 0, plain.data());
    ASSERT_TRUE(QelGryAverageFilterFast(const_cast<unsigned char*>(white.data()), w, h, 1, 0, fast.data()));
    const Bytes row = {255, 254, 254, 254, 254, 255};
    for (int y = 0; y < h; ++y) {
        EXPECT_EQ(Bytes(plain.begin() + y * w, plain.begin() + (y + 1) * w), row);
        EXPECT_EQ(Bytes(fast.begin() + y * w, fast.begin() + (y + 1) * w), row);
    }
}

TEST(AverageFilter, ZeroHalfSizesCopyTheImage) {
    const int w = 9, h = 7;
    Bytes src = random_bytes(w * h, 3), dst(w * h);
    QelGryAverageFilter(src.data(), w, h, 0, 0, dst.data());
    EXPECT_EQ(dst, src);
    Bytes rgb = random_bytes(w * h * 3, 4), rgbOut(w * h * 3);
    ASSERT_TRUE(QelRGBAverageFilterFast(rgb.data(), w, h, 0, 0, rgbOut.data()));
    EXPECT_EQ(rgbOut, rgb);
}

TEST(AverageFilter, WindowShrinksSymmetricallyAtTheBorderWorkedByHand) {
    // 5 × 3, halfX = 2, halfY = 1. Row 0 has a one-row window; (1,0) is the mean of columns 0..2.
    Bytes src = {10, 20, 30, 40, 50,  //
                 60, 70, 80, 90, 100,  //
                 0,  0,  0,  0,  0};
    Bytes dst(15);
    QelGryAverageFilter(src.data(), 5, 3, 2, 1, dst.data());
    EXPECT_EQ(dst[0], 10);      // corner: itself
    EXPECT_EQ(dst[1], 19);      // 60 / 3 → 19: the truncated reciprocal falls one below 20
    EXPECT_EQ(dst[2], 29);      // 150 / 5 → 29, again one below
    EXPECT_EQ(dst[3], 39);      // 120 / 3
    EXPECT_EQ(dst[4], 50);      // corner
    EXPECT_EQ(dst[5], 23);      // (0,1): column 0 over rows 0..2, 70 / 3
    EXPECT_EQ(dst[7], 36);      // (2,1): the whole image, 550 / 15 = 36.67
    EXPECT_EQ(dst[10], 0);      // bottom-left corner
}

TEST(AverageFilter, FastAndPlainAgreeOnRandomImagesAndWindows) {
    std::mt19937 rng(7);
    for (int trial = 0; trial < 40; ++trial) {
        const int w = 1 + static_cast<int>(rng() % 40), h = 1 + static_cast<int>(rng() % 30);
        const int hx = static_cast<int>(rng() % ((w + 1) / 2)), hy = static_cast<int>(rng() % ((h + 1) / 2));
        Bytes grey = random_bytes(w * h, trial), plain(w * h), fast(w * h);
        QelGryAverageFilter(grey.data(), w, h, hx, hy, plain.data());
        ASSERT_TRUE(QelGryAverageFilterFast(grey.data(), w, h, hx, hy, fast.data()));
        EXPECT_EQ(plain, adaptive_reference(grey, w, h, 1, hx, hy)) << w << "x" << h << " " << hx << "," << hy;
        EXPECT_EQ(fast, plain);

        Bytes rgb = random_bytes(w * h * 3, 100 + trial), rgbPlain(w * h * 3), rgbFast(w * h * 3);
        QelRGBAverageFilter(rgb.data(), w, h, hx, hy, rgbPlain.data());
        ASSERT_TRUE(QelRGBAverageFilterFast(rgb.data(), w, h, hx, hy, rgbFast.data()));
        EXPECT_EQ(rgbPlain, adaptive_reference(rgb, w, h, 3, hx, hy));
        EXPECT_EQ(rgbFast, rgbPlain);
    }
}

TEST(AverageFilter, FullWindowFiltersRepeatTheNearestFullWindow) {
    std::mt19937 rng(11);
    for (int trial = 0; trial < 30; ++trial) {
        const int w = 1 + static_cast<int>(rng() % 40), h = 1 + static_cast<int>(rng() % 30);
        const int hx = static_cast<int>(rng() % ((w + 1) / 2)), hy = static_cast<int>(rng() % ((h + 1) / 2));
        Bytes grey = random_bytes(w * h, trial), full(w * h), adaptive(w * h);
        ASSERT_TRUE(QelGryAverageFilterFastNonBoundary(grey.data(), w, h, hx, hy, full.data()));
        EXPECT_EQ(full, full_window_reference(grey, w, h, 1, hx, hy));
        // Where the window lies inside the image, the full-window and adaptive filters agree.
        QelGryAverageFilter(grey.data(), w, h, hx, hy, adaptive.data());
        for (int y = hy; y < h - hy; ++y)
            for (int x = hx; x < w - hx; ++x) ASSERT_EQ(full[y * w + x], adaptive[y * w + x]);

        Bytes rgb = random_bytes(w * h * 3, 50 + trial), rgbFull(w * h * 3);
        ASSERT_TRUE(QelRGBAverageFilterFastNonBoundary(rgb.data(), w, h, hx, hy, rgbFull.data()));
        EXPECT_EQ(rgbFull, full_window_reference(rgb, w, h, 3, hx, hy));

        Bytes byX(w * h), byY(w * h);
        QelGryAverageFilterByX(grey.data(), w, h, hx, byX.data());
        QelGryAverageFilterByY(grey.data(), w, h, hy, byY.data());
        EXPECT_EQ(byX, full_window_reference(grey, w, h, 1, hx, 0));
        EXPECT_EQ(byY, full_window_reference(grey, w, h, 1, 0, hy));
    }
}

TEST(AverageFilter, FullWindowTopRowsAreCopiesOfRowHalfY) {
    const int w = 12, h = 11, hy = 3;
    Bytes src = random_bytes(w * h, 21), full(w * h), byY(w * h);
    ASSERT_TRUE(QelGryAverageFilterFastNonBoundary(src.data(), w, h, 2, hy, full.data()));
    QelGryAverageFilterByY(src.data(), w, h, hy, byY.data());
    for (int y = 0; y < hy; ++y) {
        EXPECT_TRUE(std::equal(full.begin() + y * w, full.begin() + (y + 1) * w, full.begin() + hy * w));
        EXPECT_TRUE(std::equal(byY.begin() + y * w, byY.begin() + (y + 1) * w, byY.begin() + hy * w));
    }
}

TEST(AverageFilter, ConstantImagesStayConstantThroughEveryFilter) {
    const int w = 23, h = 17;
    for (unsigned char level : {0, 1, 128, 255}) {
        Bytes grey(w * h, level), rgb(w * h * 3, level);
        Bytes g(w * h), c(w * h * 3);
        // A power-of-two window count (1) is exact; other counts may fall one below the level.
        auto expect_level = [&](const Bytes& out) {
            for (unsigned char v : out) ASSERT_TRUE(v == level || v + 1 == level) << int(v) << " vs " << int(level);
        };
        QelGryAverageFilter(grey.data(), w, h, 3, 2, g.data());
        expect_level(g);
        ASSERT_TRUE(QelGryAverageFilterFast(grey.data(), w, h, 3, 2, g.data()));
        expect_level(g);
        ASSERT_TRUE(QelGryAverageFilterFastNonBoundary(grey.data(), w, h, 3, 2, g.data()));
        expect_level(g);
        QelGryAverageFilterByX(grey.data(), w, h, 4, g.data());
        expect_level(g);
        QelGryAverageFilterByY(grey.data(), w, h, 4, g.data());
        expect_level(g);
        QelRGBAverageFilter(rgb.data(), w, h, 3, 2, c.data());
        expect_level(c);
        ASSERT_TRUE(QelRGBAverageFilterFast(rgb.data(), w, h, 3, 2, c.data()));
        expect_level(c);
        ASSERT_TRUE(QelRGBAverageFilterFastNonBoundary(rgb.data(), w, h, 3, 2, c.data()));
        expect_level(c);
    }
}

TEST(AverageFilter, FastFiltersRefuseWideImagesAndLargeWindowsWithoutWriting) {
    Bytes src(4097 * 3, 9), dst(4097 * 3 * 3, 77);
    EXPECT_FALSE(QelGryAverageFilterFast(src.data(), 4097, 2, 0, 0, dst.data()));
    EXPECT_FALSE(QelGryAverageFilterFastNonBoundary(src.data(), 4097, 2, 0, 0, dst.data()));
    EXPECT_FALSE(QelRGBAverageFilterFastNonBoundary(dst.data(), 4097, 2, 0, 0, src.data()));
    EXPECT_FALSE(QelGryAverageFilterFast(src.data(), 8, 8, 63, 64, dst.data()));  // 127 × 129 = 16383
    EXPECT_FALSE(QelRGBAverageFilterFast(src.data(), 8, 8, 64, 63, dst.data()));
    EXPECT_TRUE(std::all_of(dst.begin(), dst.end(), [](unsigned char v) { return v == 77; }));
    // The unchecked filter has no width limit.
    QelGryAverageFilter(src.data(), 4097, 3, 1, 1, dst.data());
    EXPECT_EQ(dst[4097 + 4095], 8);  // nine 9s: 81 × (2^24 / 9) >> 24 = 8
    EXPECT_EQ(dst[4096], 9);         // top-right corner: a one-pixel window
}

TEST(AverageFilter, FullWindowsOf127By127ComeOutZeroInTheFastFilters) {
    const int w = 129, h = 130;
    Bytes grey = random_bytes(w * h, 5), fast(w * h), plain(w * h);
    ASSERT_TRUE(QelGryAverageFilterFast(grey.data(), w, h, 63, 63, fast.data()));
    QelGryAverageFilter(grey.data(), w, h, 63, 63, plain.data());
    int zeros = 0;
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            const bool full = x >= 63 && x <= w - 64 && y >= 63 && y <= h - 64;
            if (full) {
                EXPECT_EQ(fast[y * w + x], 0);
                EXPECT_GT(plain[y * w + x], 100);  // the plain filter divides: a real mean near 127
                ++zeros;
            } else {
                ASSERT_EQ(fast[y * w + x], plain[y * w + x]) << x << "," << y;
            }
        }
    }
    EXPECT_EQ(zeros, 3 * 4);

    Bytes rgb = random_bytes(w * h * 3, 6), rgbFast(w * h * 3);
    ASSERT_TRUE(QelRGBAverageFilterFast(rgb.data(), w, h, 63, 63, rgbFast.data()));
    for (int c = 0; c < 3; ++c) EXPECT_EQ(rgbFast[(64 * w + 64) * 3 + c], 0);
}

TEST(AverageFilter, WindowsLargerThanTheImageAreCutToFit) {
    const int w = 5, h = 4;
    Bytes src = random_bytes(w * h, 8), dst(w * h), fitted(w * h);
    QelGryAverageFilter(src.data(), w, h, 10, 10, dst.data());
    QelGryAverageFilter(src.data(), w, h, 2, 1, fitted.data());
    EXPECT_EQ(dst, fitted);
    ASSERT_TRUE(QelGryAverageFilterFastNonBoundary(src.data(), w, h, 10, 10, dst.data()));
    EXPECT_EQ(dst, full_window_reference(src, w, h, 1, 2, 1));
    QelGryAverageFilterByX(src.data(), w, h, 9, dst.data());
    EXPECT_EQ(dst, full_window_reference(src, w, h, 1, 2, 0));
}

TEST(AverageFilter, NegativeHalfSizes) {
    const int w = 7, h = 5;
    Bytes src = random_bytes(w * h, 9), dst(w * h), expected(w * h);
    QelGryAverageFilter(src.data(), w, h, -3, -1, dst.data());
    EXPECT_EQ(dst, src);  // counted as 0
    QelGryAverageFilterByX(src.data(), w, h, -2, dst.data());
    QelGryAverageFilterByX(src.data(), w, h, 2, expected.data());
    EXPECT_EQ(dst, expected);  // counted as their absolute value: n = |2·half| + 1
}

}  // namespace
