#include <qel.h>

#include "draw/draw_test_helpers.h"
#include "support/test_images.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace {

using qel_test::Bytes;
using qel_test::GuardedImage;

// Quarter turn through one of the library's calls, into a guarded buffer that must stay intact.
using Turn = void (*)(unsigned char*, int, int, bool, unsigned char*);

Bytes turn(Turn f, Bytes src, int w, int h, bool flag, int B) {
    GuardedImage dst(h, w, B);
    f(src.data(), w, h, flag, dst.data());
    EXPECT_TRUE(dst.guards_intact());
    return Bytes(dst.data(), dst.data() + src.size());
}

Bytes rgb32_turn(Bytes src, int w, int h, bool clockwise) {
    GuardedImage dst(h, w, 4);
    QelRGB32Rotate90Degree(src.data(), w, h, clockwise, dst.data());
    EXPECT_TRUE(dst.guards_intact());
    return Bytes(dst.data(), dst.data() + src.size());
}

TEST(QuarterTurn, HandWorkedThreeByTwo) {
    // 1 2 3        CCS: 3 6     CS: 4 1
    // 4 5 6             2 5         5 2
    //                   1 4         6 3
    const Bytes src = {1, 2, 3, 4, 5, 6};
    EXPECT_EQ(turn(QelImgRotate90DegreeCCS, src, 3, 2, false, 1), (Bytes{3, 6, 2, 5, 1, 4}));
    EXPECT_EQ(turn(QelImgRotate90DegreeCS, src, 3, 2, false, 1), (Bytes{4, 1, 5, 2, 6, 3}));
}

TEST(QuarterTurn, PixelsLandWhereTheTurnSendsThem) {
    // Grey and RGB; widths and heights on both sides of the 16 × 16 blocks and their multiples.
    for (int B : {1, 3})
        for (int w = 1; w <= 40; ++w)
            for (int h : {1, 15, 16, 17, 33, 48}) {
                SCOPED_TRACE(testing::Message() << B << " bytes, " << w << " x " << h);
                const Bytes src = qel_test::random_bytes(static_cast<size_t>(w) * h * B, static_cast<unsigned>(w * 64 + h));
                const Bytes ccs = turn(QelImgRotate90DegreeCCS, src, w, h, B == 3, B);
                const Bytes cs = turn(QelImgRotate90DegreeCS, src, w, h, B == 3, B);
                const auto pixel = [&](const Bytes& img, int i) {
                    return Bytes(img.begin() + i * B, img.begin() + (i + 1) * B);
                };
                for (int y = 0; y < h; ++y)
                    for (int x = 0; x < w; ++x) {
                        const Bytes v = pixel(src, y * w + x);
                        ASSERT_EQ(pixel(ccs, (w - 1 - x) * h + y), v) << x << "," << y;
                        ASSERT_EQ(pixel(cs, x * h + (h - 1 - y)), v) << x << "," << y;
                    }
            }
}

TEST(HalfTurn, EveryByteCountFrom1To140IsReversed) {
    for (int n = 1; n <= 140; ++n) {
        const Bytes src = qel_test::random_bytes(static_cast<size_t>(n), static_cast<unsigned>(n));
        Bytes copy = src, out(src.size());
        QelReverseImg(copy.data(), n, 1, out.data());
        ASSERT_TRUE(std::equal(src.rbegin(), src.rend(), out.begin())) << n;
    }
}

TEST(QuarterTurn, TurnsComposeOnLargeImagesOfEveryPixelSize) {
    // Sizes across the 64-pixel tiles, including ragged last tiles.
    for (auto [w, h] : {std::pair{130, 67}, std::pair{1, 200}, std::pair{77, 1}}) {
        for (int B : {1, 3}) {
            const Bytes src = qel_test::random_bytes(static_cast<size_t>(w) * h * B, w + B);
            const bool rgb = B == 3;
            const Bytes ccs = turn(QelImgRotate90DegreeCCS, src, w, h, rgb, B);
            EXPECT_EQ(turn(QelImgRotate90DegreeCS, ccs, h, w, rgb, B), src) << "CS undoes CCS";
            const Bytes half = turn(QelImgRotate90DegreeCCS, ccs, h, w, rgb, B);
            const Bytes three = turn(QelImgRotate90DegreeCCS, half, w, h, rgb, B);
            EXPECT_EQ(three, turn(QelImgRotate90DegreeCS, src, w, h, rgb, B)) << "three CCS are one CS";
            if (B == 1) {
                Bytes reversed(src.size());
                Bytes copy = src;
                QelReverseImg(copy.data(), w, h, reversed.data());
                EXPECT_EQ(half, reversed) << "two quarter turns are the half turn";
            } else {
                for (size_t p = 0; p < src.size(); p += 3)  // pixels keep their byte order
                    ASSERT_TRUE(std::equal(src.begin() + p, src.begin() + p + 3, half.end() - p - 3));
            }
        }
        const Bytes src4 = qel_test::random_bytes(static_cast<size_t>(w) * h * 4, w);
        const Bytes cw = rgb32_turn(src4, w, h, true);
        EXPECT_EQ(rgb32_turn(cw, h, w, false), src4);
        // Clockwise moves (x, y) to column h−1−y of row x, all four bytes.
        EXPECT_EQ(0, std::memcmp(&cw[(static_cast<size_t>(w - 1) * h + (h - 1)) * 4], &src4[(w - 1) * 4], 4));
    }
}

TEST(Flip, HorizontalMirrorsEachRowAndTwiceRestores) {
    Bytes img = {1, 2, 3, 4, 5, 6, 7, 8};
    QelFlipHorizontal(img.data(), 4, 2);
    EXPECT_EQ(img, (Bytes{4, 3, 2, 1, 8, 7, 6, 5}));
    const Bytes src = qel_test::random_grey(33, 17, 1);
    img = src;
    QelFlipHorizontal(img.data(), 33, 17);
    QelFlipHorizontal(img.data(), 33, 17);
    EXPECT_EQ(img, src);
    // Widths 1..140: every middle left between the 32-byte pieces taken from both ends.
    for (int w = 1; w <= 140; ++w) {
        const Bytes row = qel_test::random_bytes(static_cast<size_t>(2 * w), static_cast<unsigned>(w));
        Bytes flipped = row;
        QelFlipHorizontal(flipped.data(), w, 2);
        for (int y = 0; y < 2; ++y)
            for (int x = 0; x < w; ++x)
                ASSERT_EQ(flipped[static_cast<size_t>(y * w + x)], row[static_cast<size_t>(y * w + w - 1 - x)]) << w;
    }
}

TEST(Flip, VerticalCopyAndInPlaceAgreeAndTwiceRestore) {
    // Rows of 5 to 150 bytes: short rows, and every tail and alignment of the 32-byte row copies.
    for (int h : {1, 6, 7}) {
        for (bool rgb : {false, true}) {
          for (int w : {5, 11, 21, 32, 33, 50}) {
            const int B = rgb ? 3 : 1;
            const Bytes src = qel_test::random_bytes(static_cast<size_t>(w) * h * B, h);
            Bytes copy = src;
            GuardedImage dst(w, h, B);
            QelFlipVertical(copy.data(), w, h, rgb, dst.data());
            ASSERT_TRUE(dst.guards_intact());
            const Bytes flipped(dst.data(), dst.data() + src.size());
            for (int y = 0; y < h; ++y)
                EXPECT_EQ(qel_test::row_of(flipped, w * B, h - 1 - y), qel_test::row_of(src, w * B, y));
            QelFlipVertical(copy.data(), w, h, rgb);
            EXPECT_EQ(copy, flipped);
            QelFlipVertical(copy.data(), w, h, rgb);
            EXPECT_EQ(copy, src);
          }
        }
    }
}

TEST(Flip, ReverseIsBothFlipsAndTwiceRestores) {
    const Bytes src = qel_test::random_grey(19, 11, 3);
    Bytes copy = src, once(src.size()), twice(src.size());
    QelReverseImg(copy.data(), 19, 11, once.data());
    QelReverseImg(once.data(), 19, 11, twice.data());
    EXPECT_EQ(twice, src);
    QelFlipHorizontal(copy.data(), 19, 11);
    QelFlipVertical(copy.data(), 19, 11, false);
    EXPECT_EQ(once, copy);
}

}  // namespace
