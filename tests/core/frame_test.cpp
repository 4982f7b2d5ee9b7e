#include <gtest/gtest.h>

#include <qel.h>

#include <vector>

namespace {

TEST(FrameSetters, GreyFrameCoversTheOuterRowsAndColumns) {
    const int w = 5, h = 4;
    std::vector<unsigned char> img(w * h, 9);
    QelSetImageBoundary(img.data(), w, h, 200);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const bool frame = x == 0 || y == 0 || x == w - 1 || y == h - 1;
            EXPECT_EQ(img[y * w + x], frame ? 200 : 9) << x << "," << y;
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

TEST(FrameSetters, SingleRowAndColumnImagesAreAllFrame) {
    std::vector<unsigned char> row(6, 0), column(6, 0);
    QelSetImageBoundary(row.data(), 6, 1, 7);
    QelSetImageBoundary(column.data(), 1, 6, 7);
    EXPECT_EQ(row, std::vector<unsigned char>(6, 7));
    EXPECT_EQ(column, std::vector<unsigned char>(6, 7));
}

}  // namespace
