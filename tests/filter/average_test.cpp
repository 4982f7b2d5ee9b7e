// Average (box) filters: border-adaptive, table-driven, full-window and one-dimensional.
#include <qel.h>

#include <gtest/gtest.h>

#include "support/test_images.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <vector>

namespace {

using qel_test::Bytes;
using qel_test::random_bytes;
using Filter = void (*)(unsigned char* src, int width, int height, int halfX, int halfY, unsigned char* dst);

// Brute force: each pixel is the fixed-point mean (sum × (2^24 / n)) >> 24 of a window with half
// sizes hx, hy (already fitted to the image). The border-adaptive filters shrink the window to
// min(half, distance to either edge); the full-window ones move its centre inside instead.
Bytes reference(const Bytes& img, int w, int h, int channels, int hx, int hy, bool adaptive) {
    Bytes out(img.size());
    for (int i = 0; i < w * h * channels; ++i) {
        const int x = i / channels % w, y = i / channels / w, c = i % channels;
        const int ax = adaptive ? std::min({hx, x, w - 1 - x}) : hx;
        const int ay = adaptive ? std::min({hy, y, h - 1 - y}) : hy;
        const int cx = std::clamp(x, ax, w - 1 - ax), cy = std::clamp(y, ay, h - 1 - ay);
        uint32_t sum = 0;
        for (int v = cy - ay; v <= cy + ay; ++v)
            for (int u = cx - ax; u <= cx + ax; ++u) sum += img[(v * w + u) * channels + c];
        out[i] = static_cast<unsigned char>((uint64_t{sum} * (16777216u / ((2 * ax + 1) * (2 * ay + 1)))) >> 24);
    }
    return out;
}

Bytes run(Filter f, Bytes src, int w, int h, int hx, int hy) {
    Bytes dst(src.size(), 0);
    f(src.data(), w, h, hx, hy, dst.data());
    return dst;
}

// A Fast or full-window filter as a plain one that must accept every call made here.
template <bool (*Checked)(unsigned char*, int, int, int, int, unsigned char*)>
void accepted(unsigned char* s, int w, int h, int hx, int hy, unsigned char* d) {
    ASSERT_TRUE(Checked(s, w, h, hx, hy, d));
}
constexpr Filter grey_fast = accepted<QelGryAverageFilterFast>, rgb_fast = accepted<QelRGBAverageFilterFast>;
constexpr Filter grey_full = accepted<QelGryAverageFilterFastNonBoundary>;
constexpr Filter rgb_full = accepted<QelRGBAverageFilterFastNonBoundary>;
void by_x(unsigned char* s, int w, int h, int hx, int, unsigned char* d) { QelGryAverageFilterByX(s, w, h, hx, d); }
void by_y(unsigned char* s, int w, int h, int, int hy, unsigned char* d) { QelGryAverageFilterByY(s, w, h, hy, d); }

TEST(AverageFilter, WorkedByHand) {
    // All 255 with halfX = 1, halfY = 0: three-pixel windows give 254 (the reciprocal is truncated),
    // the one-pixel windows at both ends 255.
    for (Filter f : {QelGryAverageFilter, grey_fast})
        EXPECT_EQ(run(f, Bytes(6, 255), 6, 1, 1, 0), Bytes({255, 254, 254, 254, 254, 255}));
    // 5 × 3, halfX = 2, halfY = 1: row 0 has a one-row window; (1, 0) is the mean of columns 0..2.
    const Bytes src = {10, 20, 30, 40, 50, 60, 70, 80, 90, 100, 0, 0, 0, 0, 0};
    const Bytes out = run(QelGryAverageFilter, src, 5, 3, 2, 1);
    EXPECT_EQ(Bytes(out.begin(), out.begin() + 5), Bytes({10, 19, 29, 39, 50}));  // 60/3 → 19, 150/5 → 29
    EXPECT_EQ(out[5], 23);                                                       // column 0 over rows 0..2, 70/3
    EXPECT_EQ(out[7], 36);                                                       // the whole image, 550/15
    EXPECT_EQ(out[10], 0);
    // Zero half sizes copy the image.
    const Bytes rgb = random_bytes(9 * 7 * 3, 4);
    EXPECT_EQ(run(QelGryAverageFilter, rgb, 27, 7, 0, 0), rgb);  // the same bytes as a 27 × 7 grey image
    EXPECT_EQ(run(rgb_fast, rgb, 9, 7, 0, 0), rgb);
}

// Random sizes and half sizes, including windows larger than the image (cut to the largest that
// fits) and negative half sizes (0 in the two-dimensional filters, |half| in ByX and ByY).
TEST(AverageFilter, AllFiltersMatchTheReferenceAndFastMatchesPlain) {
    std::mt19937 rng(7);
    for (int trial = 0; trial < 40; ++trial) {
        const int w = 1 + static_cast<int>(rng() % 40), h = 1 + static_cast<int>(rng() % 30);
        const int hx = static_cast<int>(rng() % (w + 4)) - 2, hy = static_cast<int>(rng() % (h + 4)) - 2;
        SCOPED_TRACE(testing::Message() << w << "x" << h << " half " << hx << "," << hy);
        const int fx = std::min(std::max(hx, 0), (w - 1) / 2), fy = std::min(std::max(hy, 0), (h - 1) / 2);
        const Bytes grey = random_bytes(w * h, trial), rgb = random_bytes(w * h * 3, 100 + trial);
        const Bytes plain = run(QelGryAverageFilter, grey, w, h, hx, hy);
        EXPECT_EQ(plain, reference(grey, w, h, 1, fx, fy, true));
        EXPECT_EQ(run(grey_fast, grey, w, h, hx, hy), plain);
        const Bytes rgbPlain = run(QelRGBAverageFilter, rgb, w, h, hx, hy);
        EXPECT_EQ(rgbPlain, reference(rgb, w, h, 3, fx, fy, true));
        EXPECT_EQ(run(rgb_fast, rgb, w, h, hx, hy), rgbPlain);
        EXPECT_EQ(run(grey_full, grey, w, h, hx, hy), reference(grey, w, h, 1, fx, fy, false));
        EXPECT_EQ(run(rgb_full, rgb, w, h, hx, hy), reference(rgb, w, h, 3, fx, fy, false));
        const int ax = std::min(std::abs(hx), (w - 1) / 2), ay = std::min(std::abs(hy), (h - 1) / 2);
        EXPECT_EQ(run(by_x, grey, w, h, hx, 0), reference(grey, w, h, 1, ax, 0, false));
        EXPECT_EQ(run(by_y, grey, w, h, 0, hy), reference(grey, w, h, 1, 0, ay, false));
    }
}

TEST(AverageFilter, ConstantImagesStayConstantThroughEveryFilter) {
    const int w = 23, h = 17;
    const struct {
        Filter f;
        int channels;
    } filters[] = {{QelGryAverageFilter, 1}, {grey_fast, 1}, {grey_full, 1}, {by_x, 1}, {by_y, 1},
                   {QelRGBAverageFilter, 3}, {rgb_fast, 3},  {rgb_full, 3}};
    for (unsigned char level : {0, 1, 128, 255})
        for (const auto& f : filters) {
            // A window count of 1 is exact; other counts may fall one below the level.
            for (unsigned char v : run(f.f, Bytes(w * h * f.channels, level), w, h, 3, 2))
                ASSERT_TRUE(v == level || v + 1 == level) << int(v) << " vs " << int(level) << " in " << &f - filters;
        }
}

TEST(AverageFilter, FastFiltersRefuseWideImagesAndLargeWindowsWithoutWriting) {
    Bytes src(4097 * 3, 9), dst(4097 * 3 * 3, 77);
    EXPECT_FALSE(QelGryAverageFilterFast(src.data(), 4097, 2, 0, 0, dst.data()));
    EXPECT_FALSE(QelGryAverageFilterFastNonBoundary(src.data(), 4097, 2, 0, 0, dst.data()));
    EXPECT_FALSE(QelRGBAverageFilterFastNonBoundary(dst.data(), 4097, 2, 0, 0, src.data()));
    EXPECT_FALSE(QelGryAverageFilterFast(src.data(), 8, 8, 63, 64, dst.data()));  // 127 × 129 = 16383
    EXPECT_FALSE(QelRGBAverageFilterFast(src.data(), 8, 8, 64, 63, dst.data()));
    EXPECT_EQ(dst, Bytes(dst.size(), 77));
    // The unchecked filter has no width limit.
    QelGryAverageFilter(src.data(), 4097, 3, 1, 1, dst.data());
    EXPECT_EQ(dst[4097 + 4095], 8);  // nine 9s: 81 × (2^24 / 9) >> 24 = 8
    EXPECT_EQ(dst[4096], 9);         // top-right corner: a one-pixel window
}

TEST(AverageFilter, FullWindowsOf127By127ComeOutZeroInTheFastFilters) {
    const int w = 129, h = 130;
    const Bytes grey = random_bytes(w * h, 5), fast = run(grey_fast, grey, w, h, 63, 63),
                plain = run(QelGryAverageFilter, grey, w, h, 63, 63);
    for (int i = 0; i < w * h; ++i) {
        const int x = i % w, y = i / w;
        if (x >= 63 && x <= w - 64 && y >= 63 && y <= h - 64) {  // the 3 × 4 full windows
            EXPECT_EQ(fast[i], 0);
            EXPECT_GT(plain[i], 100);  // the plain filter divides: a real mean near 127
        } else {
            ASSERT_EQ(fast[i], plain[i]) << x << "," << y;
        }
    }
    const Bytes rgbFast = run(rgb_fast, random_bytes(w * h * 3, 6), w, h, 63, 63);
    EXPECT_EQ(Bytes(rgbFast.begin() + (64 * w + 64) * 3, rgbFast.begin() + (64 * w + 65) * 3), Bytes(3, 0));
}

TEST(AverageFilter, EveryWidthAndTailMatchesTheReference) {
    // Widths 1..70 and 140..160 put every tail of the 16-column (grey) and 8-pixel (BGR) steps after
    // the running sums, and the widest ones take those steps with 127-wide windows.
    std::vector<int> widths;
    for (int w = 1; w <= 70; ++w) widths.push_back(w);
    for (int w = 140; w <= 160; w += 5) widths.push_back(w);
    for (int w : widths)
        for (int half : {0, 1, 2, 7, 63}) {
            const int h = 6, fx = std::min(half, (w - 1) / 2), fy = std::min(half, (h - 1) / 2);
            SCOPED_TRACE(testing::Message() << w << " half " << half);
            const Bytes grey = random_bytes(w * h, static_cast<unsigned>(w + half));
            const Bytes plain = run(QelGryAverageFilter, grey, w, h, half, half);
            ASSERT_EQ(plain, reference(grey, w, h, 1, fx, fy, true));
            ASSERT_EQ(run(grey_fast, grey, w, h, half, half), plain);  // 127 wide but only 5 high here
            ASSERT_EQ(run(grey_full, grey, w, h, half, half), reference(grey, w, h, 1, fx, fy, false));
            const Bytes rgb = random_bytes(w * h * 3, static_cast<unsigned>(1000 + w + half));
            const Bytes rgbPlain = run(QelRGBAverageFilter, rgb, w, h, half, half);
            ASSERT_EQ(rgbPlain, reference(rgb, w, h, 3, fx, fy, true));
            ASSERT_EQ(run(rgb_fast, rgb, w, h, half, half), rgbPlain);
        }
}

}  // namespace
