#include <qel.h>

#include "support/test_images.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace {

using qel_test::Bytes;

// The filtered centre of a 3 x 3 image, neighbours in reading order.
int zed_centre(unsigned char c, const Bytes& n, int threshold) {
    Bytes src{n[0], n[1], n[2], n[3], c, n[4], n[5], n[6], n[7]}, dst(9, 0x33);
    QelGryZedFilter(src.data(), 3, 3, threshold, dst.data());
    return dst[4];
}

TEST(Zed, HandWorkedCentresIncludingWrapAndArithmeticShift) {
    // Eight pulls of 3·4 − 5 = 7: 250 + 56/8 = 257 wraps to 1; below 0, 5 − 7 = −2 wraps to 254.
    EXPECT_EQ(zed_centre(250, Bytes(8, 255), 4), 1);
    EXPECT_EQ(zed_centre(5, Bytes(8, 0), 4), 254);
    // T = 3: 102 pulls +2 (full), 105 +(9 − 5) = +4, 95 −4, 110 is past 3T; four more +4: 18 >> 3 = 2.
    EXPECT_EQ(zed_centre(100, {102, 105, 95, 110, 105, 105, 105, 105}, 3), 102);
    // A single pull of −1 gives −1 >> 3 = −1, not 0 as a division would.
    EXPECT_EQ(zed_centre(100, {99, 100, 100, 100, 100, 100, 100, 100}, 3), 99);
}

TEST(Zed, NeighboursExactlyAtTheThresholdPullInFullAndOneBeyondFades) {
    // T = 4: eight neighbours 4 away pull 4 each (32 / 8 = 4); 5 away they pull 12 − 5 = 7 each;
    // exactly 3T = 12 away they pull nothing.
    const std::vector<std::pair<int, int>> offsetAndChange = {{4, 4}, {-4, -4}, {5, 7}, {-5, -7}, {12, 0}, {-12, 0}};
    for (const auto& [offset, change] : offsetAndChange)
        EXPECT_EQ(zed_centre(100, Bytes(8, static_cast<unsigned char>(100 + offset)), 4), 100 + change) << offset;
}

TEST(Zed, ZeroThresholdOrConstantImageCopiesTheInteriorAndLeavesTheRing) {
    const int width = 9, height = 7;
    const std::vector<std::pair<Bytes, int>> inputs = {{qel_test::random_grey(width, height, 4), 0},
                                                       {Bytes(width * height, 180), 10}};
    for (const auto& [image, threshold] : inputs) {
        SCOPED_TRACE(threshold);
        Bytes src = image, dst(src.size(), 0x33);
        QelGryZedFilter(src.data(), width, height, threshold, dst.data());
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                const bool ring = x == 0 || y == 0 || x == width - 1 || y == height - 1;
                EXPECT_EQ(dst[y * width + x], ring ? 0x33 : src[y * width + x]);
            }
    }
}

}  // namespace
