#include <qel.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace {

using Image = std::vector<unsigned char>;
using Filter = void (*)(unsigned char*, int, int, unsigned char*);

struct Case {
    const char* name;
    Filter filter;
    bool isMax;
    int reach;     // pixels either side
    bool inRows;
};

const Case kCases[] = {
    {"Max3xInRow", QelGryImgMaxFilter3xInRow, true, 1, true},
    {"Min3xInRow", QelGryImgMinFilter3xInRow, false, 1, true},
    {"Max5xInRow", QelGryImgMaxFilter5xInRow, true, 2, true},
    {"Min5xInRow", QelGryImgMinFilter5xInRow, false, 2, true},
    {"Max3xInCol", QelGryImgMaxFilter3xInCol, true, 1, false},
    {"Min3xInCol", QelGryImgMinFilter3xInCol, false, 1, false},
    {"Max5xInCol", QelGryImgMaxFilter5xInCol, true, 2, false},
    {"Min5xInCol", QelGryImgMinFilter5xInCol, false, 2, false},
};

Image randomImage(int width, int height, unsigned seed) {
    std::mt19937 rng(seed);
    std::uniform_int_distribution<int> dist(0, 255);
    Image img(static_cast<size_t>(width) * height);
    for (auto& p : img) p = static_cast<unsigned char>(dist(rng));
    return img;
}

// Extreme over the clipped window along the filter's direction.
Image bruteForce(const Case& c, const Image& src, int width, int height) {
    Image out(src.size());
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            int best = c.isMax ? 0 : 255;
            for (int d = -c.reach; d <= c.reach; ++d) {
                const int xx = c.inRows ? x + d : x, yy = c.inRows ? y : y + d;
                if (xx < 0 || xx >= width || yy < 0 || yy >= height) continue;
                const int v = src[static_cast<size_t>(yy) * width + xx];
                best = c.isMax ? std::max(best, v) : std::min(best, v);
            }
            out[static_cast<size_t>(y) * width + x] = static_cast<unsigned char>(best);
        }
    return out;
}

Image run(const Case& c, Image src, int width, int height) {
    Image dst(src.size(), 0x5A);
    c.filter(src.data(), width, height, dst.data());
    return dst;
}

TEST(MinMax, HandRowExample) {
    Image row{1, 5, 2, 0, 0, 9};
    EXPECT_EQ(run(kCases[0], row, 6, 1), (Image{5, 5, 5, 2, 9, 9}));
    EXPECT_EQ(run(kCases[1], row, 6, 1), (Image{1, 1, 0, 0, 0, 0}));
    EXPECT_EQ(run(kCases[2], row, 6, 1), (Image{5, 5, 5, 9, 9, 9}));
    EXPECT_EQ(run(kCases[3], row, 6, 1), (Image{1, 0, 0, 0, 0, 0}));
    // The same values as a column.
    EXPECT_EQ(run(kCases[4], row, 1, 6), (Image{5, 5, 5, 2, 9, 9}));
    EXPECT_EQ(run(kCases[7], row, 1, 6), (Image{1, 0, 0, 0, 0, 0}));
}

TEST(MinMax, SinglePixelLineIsThePixelItself) {
    for (const Case& c : kCases) {
        EXPECT_EQ(run(c, {77}, 1, 1), Image{77}) << c.name;
        EXPECT_EQ(run(c, {3, 200, 9}, c.inRows ? 1 : 3, c.inRows ? 3 : 1), (Image{3, 200, 9})) << c.name;
    }
}

TEST(MinMax, AgreeWithClippedWindowsOnRandomImages) {
    const int sizes[][2] = {{1, 7}, {2, 2}, {3, 5}, {31, 17}, {64, 3}};
    unsigned seed = 1;
    for (const Case& c : kCases)
        for (const auto& s : sizes) {
            const Image src = randomImage(s[0], s[1], seed++);
            EXPECT_EQ(run(c, src, s[0], s[1]), bruteForce(c, src, s[0], s[1])) << c.name << " " << s[0] << "x" << s[1];
        }
}

TEST(MinMax, InPlaceGivesTheSameResultAsOutOfPlace) {
    const int width = 37, height = 29;
    const Image src = randomImage(width, height, 99);
    for (const Case& c : kCases) {
        Image inPlace = src;
        c.filter(inPlace.data(), width, height, inPlace.data());
        EXPECT_EQ(inPlace, run(c, src, width, height)) << c.name;
    }
}

TEST(MinMax, ConstantImageStaysConstant) {
    const Image src(static_cast<size_t>(13) * 11, 42);
    for (const Case& c : kCases) EXPECT_EQ(run(c, src, 13, 11), src) << c.name;
}

}  // namespace
