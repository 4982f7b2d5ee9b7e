#include <gtest/gtest.h>

#include <qel.h>

#include <vector>

namespace {

TEST(FrameSetters, GreyFrameCoversTheOuterRowsAndColumns) {
    // Single rows and columns are all frame.
    for (auto [w, h] : {std::pair{5, 4}, std::pair{6, 1}, std::pair{1, 6}}) {
        std::vector<unsigned char> img(w * h, 9);
        QelSetImageBoundary(img.data(), w, h, 200);
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                const bool frame = x == 0 || y == 0 || x == w - 1 || y == h - 1;
                EXPECT_EQ(img[y * w + x], frame ? 200 : 9) << w << "x" << h << " at " << x << "," << y;
            }
    }
}

TEST(FrameSetters, RgbFrameIsPartialByDesign) {
    const int w = 4, h = 3, row = w * 3;
    std::vector<unsigned char> img(row * h, 9);
    QelSetRGBImageBoundary(img.data(), w, h, 1);
    std::vector<unsigned char> expected(row * h, 9);
    for (int i = 0; i < w; ++i) expected[i] = expected[(h - 1) * row + i] = 1;  // first width bytes only
    for (int y = 0; y < h; ++y) expected[y * row] = expected[y * row + w - 1] = 1;  // bytes 0 and width - 1
    EXPECT_EQ(img, expected);
    // The last two thirds of the top row keep their value.
    for (int i = w; i < row; ++i) EXPECT_EQ(img[i], 9);
}

}  // namespace
