#include <qel.h>

#include "support/test_images.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace {

using qel_test::Bytes;

Bytes random_levels(int width, int height, unsigned seed, int levels) {
    Bytes img = qel_test::random_grey(width, height, seed);
    for (auto& p : img) p = static_cast<unsigned char>(p % levels);
    return img;
}

// Sorted values of rows top..bottom, columns left..right (all inside the image).
std::vector<int> sorted_window(const Bytes& img, int width, int left, int right, int top, int bottom) {
    std::vector<int> v;
    for (int y = top; y <= bottom; ++y)
        for (int x = left; x <= right; ++x) v.push_back(img[y * width + x]);
    std::sort(v.begin(), v.end());
    return v;
}

// Side-band mean of the fast filter: columns max(0, x−halfX)..x+halfX, not clipped on the right, so
// they run on into the next row, and past the buffer's end into the last row again.
int band_mean(const Bytes& img, int width, int height, int halfX, int halfY, int x, int y) {
    long sum = 0, n = 0;
    for (int r = std::max(0, y - halfY); r <= std::min(height - 1, y + halfY); ++r)
        for (int c = std::max(0, x - halfX); c <= x + halfX; ++c, ++n) {
            long i = static_cast<long>(r) * width + c;
            while (i >= static_cast<long>(img.size())) i -= width;
            sum += img[i];
        }
    return static_cast<int>(sum / n);
}

using Filter = void (*)(unsigned char*, int, int, int, int, unsigned char*);
constexpr Filter kFast = QelGryFastMedianFilter, kBoundary0 = QelGryImgMedianBoundary0;

Bytes run(Filter filter, Bytes src, int width, int height, int halfX, int halfY) {
    Bytes dst(src.size(), 0xAB);
    filter(src.data(), width, height, halfX, halfY, dst.data());
    return dst;
}

TEST(FastMedian, HandWorkedImages) {
    // Means in the bands; the last window reads one byte past the row: here the row's first pixel.
    EXPECT_EQ(run(kFast, {10, 20, 200, 30, 40}, 5, 1, 1, 0), (Bytes{15, 20, 30, 90, (30 + 40 + 10) / 3}));
    // The right band reads on into the next row, and past the buffer the last row again.
    EXPECT_EQ(run(kFast, {10, 20, 200, 30, 40, 60, 7, 7, 7, 7}, 5, 2, 1, 0),
              (Bytes{15, 20, 30, 90, (30 + 40 + 60) / 3, (60 + 7) / 2, 7, 7, 7, (7 + 7 + 60) / 3}));
    // halfX 0: the last column holds vertical means. Even windows: {1, 4} gives 4 afresh, and 4 is
    // kept for {2, 5}, which it still splits.
    EXPECT_EQ(run(kFast, {1, 2, 9, 4, 5, 6, 7, 8, 0}, 3, 3, 0, 1),
              (Bytes{4, 4, (9 + 6) / 2, 4, 5, (9 + 6 + 0) / 3, 7, 7, (6 + 0) / 2}));
    // Six pixels, rank 4: {10,20,30,40,50,60} gives 40; {20,30,40,55,60,65} would give 55 afresh,
    // but 40 still has fewer than 4 values on either side and is kept.
    EXPECT_EQ(run(kFast, {10, 20, 30, 55, 0, 50, 60, 40, 65, 0}, 5, 2, 1, 1),
              (Bytes{35, 40, 40, 190 / 6, 220 / 6, 35, 40, 40, 190 / 6, 220 / 6}));
}

TEST(FastMedian, AgreesWithSortedWindowsAndBandMeansAndKeepsConstants) {
    const int width = 23, height = 17;
    for (int halfX : {0, 1, 3, 11, 14})  // 11 and more: no median column, means everywhere
        for (int halfY : {0, 1, 2, 4, 20}) {
            SCOPED_TRACE(testing::Message() << "halfX " << halfX << " halfY " << halfY);
            const Bytes src = random_levels(width, height, 100u + halfX * 10 + halfY, halfX == 3 ? 8 : 256);
            const Bytes out = run(kFast, src, width, height, halfX, halfY);
            EXPECT_EQ(run(kFast, Bytes(src.size(), 137), width, height, halfX, halfY), Bytes(src.size(), 137));
            for (int y = 0; y < height; ++y)
                for (int x = 0; x < width; ++x) {
                    const int got = out[y * width + x];
                    if (x < halfX || x > width - halfX - 2) {
                        ASSERT_EQ(got, band_mean(src, width, height, halfX, halfY, x, y)) << x << "," << y;
                        continue;
                    }
                    const auto v = sorted_window(src, width, x - halfX, x + halfX, std::max(0, y - halfY),
                                                 std::min(height - 1, y + halfY));
                    // Odd counts give the median; even ones (clipped top and bottom rows) a value
                    // between the two middle ones.
                    ASSERT_GE(got, v[(v.size() - 1) / 2]) << x << "," << y;
                    ASSERT_LE(got, v[v.size() / 2]) << x << "," << y;
                }
        }
}

TEST(MedianBoundary0, AgreesWithSortedWindowsInsideAZeroFrameAndKeepsConstants) {
    // Half sizes below 1 count as 1; a window larger than the image leaves it all 0, and one that
    // fits exactly (5 x 3 with halves 2, 1) gives a single median.
    const int sizes[][4] = {{29, 21, 1, 1}, {29, 21, 2, 3}, {29, 21, 5, 6}, {12, 9, 0, 0},
                            {12, 9, -3, 1}, {4, 9, 2, 1},   {9, 4, 1, 2},   {5, 3, 2, 1}};
    unsigned seed = 300;
    for (const auto [width, height, halfX, halfY] : sizes) {
        const int hx = std::max(1, halfX), hy = std::max(1, halfY), levels = seed % 2 ? 4 : 256;
        for (const Bytes& src : {random_levels(width, height, seed++, levels), Bytes(width * height, 137)}) {
            SCOPED_TRACE(testing::Message() << width << "x" << height << " halves " << halfX << "," << halfY);
            const Bytes out = run(kBoundary0, src, width, height, halfX, halfY);
            for (int y = 0; y < height; ++y)
                for (int x = 0; x < width; ++x) {
                    int expected = 0;
                    if (x >= hx && x < width - hx && y >= hy && y < height - hy) {
                        const auto v = sorted_window(src, width, x - hx, x + hx, y - hy, y + hy);
                        expected = v[v.size() / 2];
                    }
                    ASSERT_EQ(out[y * width + x], expected) << x << "," << y;
                }
        }
    }
}

// The 3 x 3 and 5 x 5 windows take their medians from sorting networks: check every small shape
// (including images narrower or lower than a window, which stay all 0), widths that leave odd
// tails after whole vectors, and images with many ties.
TEST(MedianBoundary0, SmallWindowsGiveTheSortedWindowMedianOnEveryShape) {
    std::vector<std::pair<int, int>> shapes;
    for (int w = 1; w <= 7; ++w)
        for (int h = 1; h <= 7; ++h) shapes.push_back({w, h});
    shapes.insert(shapes.end(), {{67, 13}, {40, 40}, {129, 6}});
    unsigned seed = 700;
    for (const auto& [width, height] : shapes)
        for (const int half : {0, 1, 2})
            for (const int levels : {3, 256}) {
                SCOPED_TRACE(testing::Message() << width << "x" << height << " half " << half << " levels " << levels);
                const int h = std::max(1, half);
                const Bytes src = random_levels(width, height, seed++, levels);
                const Bytes out = run(kBoundary0, src, width, height, half, half);
                for (int y = 0; y < height; ++y)
                    for (int x = 0; x < width; ++x) {
                        int expected = 0;
                        if (x >= h && x < width - h && y >= h && y < height - h)
                            expected = sorted_window(src, width, x - h, x + h, y - h, y + h)[(2 * h + 1) * (2 * h + 1) / 2];
                        ASSERT_EQ(out[y * width + x], expected) << x << "," << y;
                    }
            }
}

// The fast filter keeps the sliding histogram for every window; where its window is square and
// unclipped, its median must match the sorting networks exactly.
TEST(MedianBoundary0, SmallWindowsAgreeWithTheSlidingHistogram) {
    const int width = 83, height = 31;
    for (const int half : {1, 2})
        for (const int levels : {2, 16, 256}) {
            SCOPED_TRACE(testing::Message() << "half " << half << " levels " << levels);
            const Bytes src = random_levels(width, height, 900u + half * 10 + levels, levels);
            const Bytes networks = run(kBoundary0, src, width, height, half, half);
            const Bytes histogram = run(kFast, src, width, height, half, half);
            for (int y = half; y < height - half; ++y)
                for (int x = half; x <= width - half - 2; ++x)  // the fast filter's median columns
                    ASSERT_EQ(networks[y * width + x], histogram[y * width + x]) << x << "," << y;
        }
}

// Windows larger than 5 x 5 take per-column histograms: hold them against sorted windows on noise,
// on three grey levels (many ties) and on a noisy ramp (a median that drifts across bins), including
// images exactly as large as the window or one pixel larger.
TEST(MedianBoundary0, LargerWindowsGiveTheSortedWindowMedian) {
    const int cases[][4] = {{40, 30, 3, 3},  {7, 7, 3, 3},   {8, 7, 3, 3},   {7, 8, 3, 3},  {45, 33, 4, 2},
                            {9, 5, 4, 2},    {10, 6, 4, 2},  {61, 47, 7, 7}, {15, 15, 7, 7}, {16, 17, 7, 7},
                            {23, 19, 11, 9}, {41, 3, 20, 1}, {3, 41, 1, 20}, {70, 9, 2, 3}};
    unsigned seed = 1100;
    for (const auto [width, height, halfX, halfY] : cases) {
        Bytes ramp = random_levels(width, height, seed++, 24);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) ramp[y * width + x] = static_cast<unsigned char>(ramp[y * width + x] + 3 * x + y);
        for (const Bytes& src : {random_levels(width, height, seed++, 256), random_levels(width, height, seed++, 3), ramp}) {
            SCOPED_TRACE(testing::Message() << width << "x" << height << " halves " << halfX << "," << halfY);
            const Bytes out = run(kBoundary0, src, width, height, halfX, halfY);
            for (int y = 0; y < height; ++y)
                for (int x = 0; x < width; ++x) {
                    int expected = 0;
                    if (x >= halfX && x < width - halfX && y >= halfY && y < height - halfY) {
                        const auto v = sorted_window(src, width, x - halfX, x + halfX, y - halfY, y + halfY);
                        expected = v[v.size() / 2];
                    }
                    ASSERT_EQ(out[y * width + x], expected) << x << "," << y;
                }
        }
    }
}

// Per-column histograms count in 16 bits: a 257 x 255 window (65535 pixels) is the largest they
// take, a 257 x 257 one slides the plain histogram instead. Both give the median of the whole image.
TEST(MedianBoundary0, WindowsAsLargeAsTheImageOnEitherSideOfTheSixteenBitCount) {
    for (const int height : {255, 257}) {
        const int width = 257;
        const Bytes src = random_levels(width, height, 1200u + height, 256);
        const Bytes out = run(kBoundary0, src, width, height, width / 2, height / 2);
        const auto v = sorted_window(src, width, 0, width - 1, 0, height - 1);
        Bytes expected(src.size(), 0);
        expected[(height / 2) * width + width / 2] = static_cast<unsigned char>(v[v.size() / 2]);
        EXPECT_EQ(out, expected) << "height " << height;
    }
}

}  // namespace
