#include <qel.h>

#include "support/test_images.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using qel_test::Bytes;

struct Case {
    const char* name;
    void (*filter)(unsigned char*, int, int, unsigned char*);
    bool isMax;
    int reach;  // pixels either side
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

Bytes run(const Case& c, Bytes src, int width, int height) {
    Bytes dst(src.size(), 0x5A);
    c.filter(src.data(), width, height, dst.data());
    return dst;
}

// Extreme over the window clipped to the row (column).
Bytes brute_force(const Case& c, const Bytes& src, int width, int height) {
    Bytes out = src;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            for (int d = -c.reach; d <= c.reach; ++d) {
                const int xx = c.inRows ? x + d : x, yy = c.inRows ? y : y + d;
                if (xx < 0 || xx >= width || yy < 0 || yy >= height) continue;
                unsigned char& o = out[y * width + x];
                o = c.isMax ? std::max(o, src[yy * width + xx]) : std::min(o, src[yy * width + xx]);
            }
    return out;
}

TEST(MinMax, HandWorkedRowAndColumn) {
    EXPECT_EQ(run(kCases[0], {1, 5, 2, 0, 0, 9}, 6, 1), (Bytes{5, 5, 5, 2, 9, 9}));  // Max3xInRow
    EXPECT_EQ(run(kCases[7], {1, 5, 2, 0, 0, 9}, 1, 6), (Bytes{1, 0, 0, 0, 0, 0}));  // Min5xInCol
    EXPECT_EQ(run(kCases[0], {77}, 1, 1), Bytes{77});  // a one-pixel row is its own maximum
}

TEST(MinMax, AgreeWithBruteForceInAndOutOfPlaceAndKeepConstants) {
    // Widths 1 .. 6 put the clipped row ends next to (or over) each other.
    const int sizes[][2] = {{1, 7}, {7, 1}, {2, 2}, {3, 5}, {4, 3}, {5, 2}, {6, 1}, {37, 29}, {64, 3}};
    unsigned seed = 1;
    for (const Case& c : kCases)
        for (const auto& s : sizes) {
            SCOPED_TRACE(testing::Message() << c.name << " " << s[0] << "x" << s[1]);
            const Bytes src = qel_test::random_grey(s[0], s[1], seed++);
            const Bytes expected = brute_force(c, src, s[0], s[1]);
            EXPECT_EQ(run(c, src, s[0], s[1]), expected);
            Bytes inPlace = src;
            c.filter(inPlace.data(), s[0], s[1], inPlace.data());
            EXPECT_EQ(inPlace, expected);
            const Bytes constant(src.size(), 42);
            EXPECT_EQ(run(c, constant, s[0], s[1]), constant);
        }
}

}  // namespace
