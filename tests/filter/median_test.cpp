#include <qel.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <vector>

namespace {

using Image = std::vector<unsigned char>;

Image randomImage(int width, int height, unsigned seed, int levels = 256) {
    std::mt19937 rng(seed);
    std::uniform_int_distribution<int> dist(0, levels - 1);
    Image img(static_cast<size_t>(width) * height);
    for (auto& p : img) p = static_cast<unsigned char>(dist(rng));
    return img;
}

// Window values of rows top..bottom, columns left..right (all inside the image), sorted.
std::vector<int> sortedWindow(const Image& img, int width, int left, int right, int top, int bottom) {
    std::vector<int> v;
    for (int y = top; y <= bottom; ++y)
        for (int x = left; x <= right; ++x) v.push_back(img[static_cast<size_t>(y) * width + x]);
    std::sort(v.begin(), v.end());
    return v;
}

// Byte at row r, column c of a width-wide image where c may pass the row end: the next row's
// first pixels, and the last row again past the end of the buffer.
int flatPixel(const Image& img, int width, int r, int c) {
    long i = static_cast<long>(r) * width + c;
    const long total = static_cast<long>(img.size());
    while (i >= total) i -= width;
    return img[static_cast<size_t>(i)];
}

int bandMean(const Image& img, int width, int height, int halfX, int halfY, int x, int y) {
    const int top = std::max(0, y - halfY), bottom = std::min(height - 1, y + halfY);
    long sum = 0, n = 0;
    for (int r = top; r <= bottom; ++r)
        for (int c = std::max(0, x - halfX); c <= x + halfX; ++c, ++n) sum += flatPixel(img, width, r, c);
    return static_cast<int>(sum / n);
}

Image fastMedian(Image src, int width, int height, int halfX, int halfY) {
    Image dst(src.size(), 0xAB);
    QelGryFastMedianFilter(src.data(), width, height, halfX, halfY, dst.data());
    return dst;
}

Image median0(Image src, int width, int height, int halfX, int halfY) {
    Image dst(src.size(), 0xAB);
    QelGryImgMedianBoundary0(src.data(), width, height, halfX, halfY, dst.data());
    return dst;
}

TEST(FastMedian, FiveRowExampleUsesMeansInTheBands) {
    // The last window reads one byte past the row; in a one-row image that is the row's first pixel.
    const Image out = fastMedian({10, 20, 200, 30, 40}, 5, 1, 1, 0);
    EXPECT_EQ(out, (Image{15, 20, 30, 90, (30 + 40 + 10) / 3}));
}

TEST(FastMedian, RightBandReadsTheFirstPixelOfTheNextRow) {
    const Image out = fastMedian({10, 20, 200, 30, 40, 60, 7, 7, 7, 7}, 5, 2, 1, 0);
    EXPECT_EQ(out[4], (30 + 40 + 60) / 3);
    EXPECT_EQ(out[9], (7 + 7 + 60) / 3);  // last row: past the buffer the last row is read again
}

TEST(FastMedian, ZeroHalfWidthPutsTheVerticalMeanInTheLastColumn) {
    const Image src{1, 2, 9, 4, 5, 6, 7, 8, 0};  // 3 x 3
    const Image out = fastMedian(src, 3, 3, 0, 1);
    EXPECT_EQ(out[0], 4);  // {1, 4}: a fresh search on an even count takes the upper middle value
    EXPECT_EQ(out[1], 4);  // {2, 5}: 4 still splits the window and is kept, though no pixel has it
    EXPECT_EQ(out[4], 5);           // median of {2, 5, 8}
    EXPECT_EQ(out[2], (9 + 6) / 2);  // means in the last column
    EXPECT_EQ(out[5], (9 + 6 + 0) / 3);
    EXPECT_EQ(out[8], (6 + 0) / 2);
}

TEST(FastMedian, KeepsItsValueOnEvenWindowsWhileItStillSplitsThem) {
    // 5 x 2 image, 3 x 3 window clipped to both rows: 6 pixels, rank 4. The first window
    // {10,20,30,40,50,60} gives 40; the next {20,30,40,55,60,65} would give 55 afresh, but 40
    // still has fewer than 4 values on either side and is kept.
    const Image src{10, 20, 30, 55, 0,  //
                    50, 60, 40, 65, 0};
    const Image out = fastMedian(src, 5, 2, 1, 1);
    for (int y = 0; y < 2; ++y) {
        EXPECT_EQ(out[y * 5 + 1], 40);
        EXPECT_EQ(out[y * 5 + 2], 40);
    }
}

TEST(FastMedian, AgreesWithSortedWindowsAndMeansOnRandomImages) {
    const int width = 23, height = 17;
    for (int halfX : {0, 1, 3})
        for (int halfY : {0, 1, 2, 4}) {
            const Image src = randomImage(width, height, 100u + halfX * 10 + halfY, halfX == 3 ? 8 : 256);
            const Image out = fastMedian(src, width, height, halfX, halfY);
            for (int y = 0; y < height; ++y) {
                const int top = std::max(0, y - halfY), bottom = std::min(height - 1, y + halfY);
                for (int x = 0; x < width; ++x) {
                    const int got = out[static_cast<size_t>(y) * width + x];
                    if (x < halfX || x > width - halfX - 2) {
                        ASSERT_EQ(got, bandMean(src, width, height, halfX, halfY, x, y)) << x << "," << y;
                        continue;
                    }
                    const auto v = sortedWindow(src, width, x - halfX, x + halfX, top, bottom);
                    if (v.size() % 2 == 1) {
                        ASSERT_EQ(got, v[v.size() / 2]) << x << "," << y;
                    } else {  // even count: somewhere between the two middle values
                        ASSERT_GE(got, v[v.size() / 2 - 1]) << x << "," << y;
                        ASSERT_LE(got, v[v.size() / 2]) << x << "," << y;
                    }
                }
            }
        }
}

TEST(FastMedian, WindowAsWideAsTheImageGivesMeansEverywhere) {
    const int width = 6, height = 4;
    const Image src = randomImage(width, height, 7);
    for (int halfX : {3, 5, 9}) {
        const Image out = fastMedian(src, width, height, halfX, 1);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                ASSERT_EQ(out[static_cast<size_t>(y) * width + x], bandMean(src, width, height, halfX, 1, x, y));
    }
}

TEST(MedianBoundary0, AgreesWithSortedWindowsAndLeavesAZeroFrame) {
    const int width = 29, height = 21;
    for (int halfX : {1, 2, 5})
        for (int halfY : {1, 3, 6}) {
            const Image src = randomImage(width, height, 300u + halfX * 10 + halfY, halfY == 3 ? 4 : 256);
            const Image out = median0(src, width, height, halfX, halfY);
            for (int y = 0; y < height; ++y)
                for (int x = 0; x < width; ++x) {
                    const int got = out[static_cast<size_t>(y) * width + x];
                    if (x < halfX || x >= width - halfX || y < halfY || y >= height - halfY) {
                        ASSERT_EQ(got, 0) << x << "," << y;
                    } else {
                        const auto v = sortedWindow(src, width, x - halfX, x + halfX, y - halfY, y + halfY);
                        ASSERT_EQ(got, v[v.size() / 2]) << x << "," << y;
                    }
                }
        }
}

TEST(MedianBoundary0, HalfSizesBelowOneCountAsOne) {
    const Image src = randomImage(12, 9, 5);
    const Image reference = median0(src, 12, 9, 1, 1);
    EXPECT_EQ(median0(src, 12, 9, 0, 0), reference);
    EXPECT_EQ(median0(src, 12, 9, -3, 1), reference);
}

TEST(MedianBoundary0, ImageSmallerThanTheWindowComesOutAllZero) {
    const Image src(4 * 9, 200);
    EXPECT_EQ(median0(src, 4, 9, 2, 1), Image(src.size(), 0));
    EXPECT_EQ(median0(src, 9, 4, 1, 2), Image(src.size(), 0));
    Image fits(5 * 3, 0);  // the window fits exactly: one output pixel
    fits[7] = 200;
    EXPECT_EQ(median0(Image(5 * 3, 200), 5, 3, 2, 1), fits);
}

TEST(Median, ConstantImageStaysConstantIncludingTheBands) {
    const int width = 15, height = 11;
    const Image src(static_cast<size_t>(width) * height, 137);
    for (int halfX : {0, 1, 4, 7, 20})
        for (int halfY : {0, 2, 12}) EXPECT_EQ(fastMedian(src, width, height, halfX, halfY), src);
    const Image out = median0(src, width, height, 2, 3);
    for (int y = 3; y < height - 3; ++y)
        for (int x = 2; x < width - 2; ++x) EXPECT_EQ(out[static_cast<size_t>(y) * width + x], 137);
}

}  // namespace
