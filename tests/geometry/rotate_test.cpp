#include <qel.h>

#include "draw/draw_test_helpers.h"
#include "support/test_images.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <random>

namespace {

using qel_test::Bytes;
using qel_test::GuardedImage;

int64_t floor_div(int64_t a, int64_t b) { return a / b - ((a % b != 0) && ((a < 0) != (b < 0))); }

struct Rotated {
    int width = -1, height = -1;
    Bytes px;
};

Rotated rotate(Bytes src, int w, int h, double degrees) {
    Rotated r;
    std::unique_ptr<unsigned char[]> out(QelRotateImgByCCS(src.data(), w, h, degrees, &r.width, &r.height));
    if (out) r.px.assign(out.get(), out.get() + static_cast<size_t>(r.width) * r.height);
    return r;
}

// The whole-image rotation as described: corners, box, then every output pixel by itself.
Rotated reference_rotate(const Bytes& src, int w, int h, double degrees) {
    const double theta = degrees * 3.1415926 / 180;
    const int64_t c = static_cast<int>(std::cos(theta) * 1024), s = static_cast<int>(std::sin(theta) * 1024);
    const int64_t ci = static_cast<int>(std::cos(-theta) * 1024), si = static_cast<int>(std::sin(-theta) * 1024);
    int64_t minX = std::max(w, h), minY = minX, maxX = 0, maxY = 0;
    for (auto [x, y] : {std::pair<int64_t, int64_t>{0, 0}, {w - 1, 0}, {w - 1, h - 1}, {0, h - 1}}) {
        minX = std::min(minX, floor_div(x * c - y * s, 1024));
        maxX = std::max(maxX, floor_div(x * c - y * s, 1024));
        minY = std::min(minY, floor_div(x * s + y * c, 1024));
        maxY = std::max(maxY, floor_div(x * s + y * c, 1024));
    }
    Rotated r{static_cast<int>(maxX - minX + 1), static_cast<int>(maxY - minY + 1), {}};
    for (int64_t Y = minY; Y <= maxY; ++Y)
        for (int64_t X = minX; X <= maxX; ++X) {
            const int64_t sx = floor_div(X * ci - Y * si, 1024), sy = floor_div(X * si + Y * ci, 1024);
            r.px.push_back(sx >= 0 && sx < w && sy >= 0 && sy < h ? src[sy * w + sx] : 0);
        }
    return r;
}

// The rectangle extractors as described, one pixel at a time with 64-bit positions. fill < 0 is
// the form without fill, whose neighbours outside the source take the nearest pixel inside.
Bytes reference_rect(const Bytes& src, int w, int h, int B, int x0, int y0, double degrees, int fill, int dw, int dh,
                     bool* outside = nullptr) {
    const double r = degrees * 3.1415 / 180;
    const int64_t s = static_cast<int>(std::sin(r) * 65536), c = static_cast<int>(std::cos(r) * 65536);
    auto px = [&](int64_t x, int64_t y, int ch) -> int {
        return src[(std::clamp<int64_t>(y, 0, h - 1) * w + std::clamp<int64_t>(x, 0, w - 1)) * B + ch];
    };
    Bytes out;
    if (outside) *outside = false;
    for (int64_t j = 0; j < dh; ++j)
        for (int64_t i = 0; i < dw; ++i) {
            const int64_t X = x0 * int64_t{65536} + i * c - j * s, Y = y0 * int64_t{65536} + i * s + j * c;
            const int64_t ix = floor_div(X, 65536), iy = floor_div(Y, 65536);
            const int fx = static_cast<int>(X - ix * 65536), fy = static_cast<int>(Y - iy * 65536);
            const bool in = iy >= 0 && iy + 1 <= h - 1 && ix >= 0 && ix + 1 <= w - 1;
            for (int ch = 0; ch < B; ++ch) {
                if (fill >= 0 && !in) {
                    out.push_back(static_cast<unsigned char>(fill));
                    continue;
                }
                const int top = ((65536 - fx) * px(ix, iy, ch) + fx * px(ix + 1, iy, ch)) >> 16;
                const int bottom = ((65536 - fx) * px(ix, iy + 1, ch) + fx * px(ix + 1, iy + 1, ch)) >> 16;
                out.push_back(static_cast<unsigned char>(((65536 - fy) * top + fy * bottom) >> 16));
            }
            if (outside && !in) *outside = true;
        }
    return out;
}

// QelCopyRectFromRotateAndShiftFast as described, one pixel at a time, nearest pixel inside for
// samples outside.
Bytes reference_sheared(const Bytes& src, int w, int h, int x0, int y0, double degrees, double shear, int dw, int dh) {
    const double theta = degrees <= 90 ? degrees : degrees - 180;
    const double r = theta * 3.1415 / 180;
    const int64_t s = static_cast<int>(std::sin(r) * 65536), c = static_cast<int>(std::cos(r) * 65536);
    const double beta = (degrees > 90 ? 180 - degrees : -degrees) + shear;
    const int64_t k = static_cast<int>(-std::tan((beta - 90) * 3.14159 / 180) * 4096);
    Bytes out;
    for (int64_t j = 0; j < dh; ++j) {
        const int64_t start = floor_div(j * k, 4096) + 1;
        for (int64_t i = start; i < start + dw; ++i) {
            const int64_t sx = floor_div(x0 * int64_t{65536} + i * c - j * s, 65536);
            const int64_t sy = floor_div(y0 * int64_t{65536} + i * s + j * c, 65536);
            out.push_back(src[std::clamp<int64_t>(sy, 0, h - 1) * w + std::clamp<int64_t>(sx, 0, w - 1)]);
        }
    }
    return out;
}

Bytes turned_clockwise(Bytes src, int w, int h) {
    Bytes dst(src.size());
    QelImgRotate90DegreeCS(src.data(), w, h, false, dst.data());
    return dst;
}

Bytes turned_counter_clockwise(Bytes src, int w, int h) {
    Bytes dst(src.size());
    QelImgRotate90DegreeCCS(src.data(), w, h, false, dst.data());
    return dst;
}

TEST(RotateImage, ZeroDegreesIsACopy) {
    const Bytes src = qel_test::random_grey(37, 23, 1);
    const Rotated r = rotate(src, 37, 23, 0);
    EXPECT_EQ(r.width, 37);
    EXPECT_EQ(r.height, 23);
    EXPECT_EQ(r.px, src);
}

TEST(RotateImage, NinetyDegreesIsTheClockwiseTurnOffByTheTruncatedSine) {
    // c = 0 and s = 1023: the box is 50 × 99, and output (col, row) samples source
    // (floor(row·1023/1024), floor((49 − col)·1023/1024)), i.e. the exact clockwise turn moved one
    // pixel down and left, with the first row and the last column repeated (source columns 98, 99
    // and row 49 are never reached).
    const int w = 100, h = 50;
    const Bytes src = qel_test::random_grey(w, h, 2);
    const Rotated r = rotate(src, w, h, 90);
    ASSERT_EQ(r.width, 50);
    ASSERT_EQ(r.height, 99);
    const Bytes cs = turned_clockwise(src, w, h);  // 50 wide, 100 high
    for (int row = 0; row < 99; ++row)
        for (int col = 0; col < 50; ++col)
            ASSERT_EQ(r.px[row * 50 + col], cs[std::max(row - 1, 0) * 50 + std::min(col + 1, 49)]) << col << "," << row;
    for (int row = 1; row < 99; ++row) EXPECT_EQ(r.px[row * 50 + 49], src[row - 1]) << "top row in the right column";
}

TEST(RotateImage, MinusNinetyDegreesIsNotTheMirrorOfNinety) {
    // c = 0, s = −1023: the box is 49 × 100 (not 50 × 99), output (col, row) samples source
    // (floor((99 − row)·1023/1024), floor(col·1023/1024)); source rows 48 and 49 are never reached.
    const int w = 100, h = 50;
    const Bytes src = qel_test::random_grey(w, h, 3);
    const Rotated r = rotate(src, w, h, -90);
    ASSERT_EQ(r.width, 49);
    ASSERT_EQ(r.height, 100);
    const Bytes ccs = turned_counter_clockwise(src, w, h);  // 50 wide, 100 high
    for (int row = 0; row < 100; ++row)
        for (int col = 0; col < 49; ++col)
            ASSERT_EQ(r.px[row * 49 + col], ccs[std::min(row + 1, 99) * 50 + std::max(col - 1, 0)])
                << col << "," << row;
}

TEST(RotateImage, AgreesWithThePlainConstructionOnRandomArguments) {
    std::mt19937 rng(4);
    for (int trial = 0; trial < 300; ++trial) {
        const int w = 1 + static_cast<int>(rng() % 40), h = 1 + static_cast<int>(rng() % 40);
        const double degrees = std::uniform_real_distribution<double>(-400, 400)(rng);
        const Bytes src = qel_test::random_grey(w, h, trial);
        const Rotated got = rotate(src, w, h, trial % 10 == 0 ? 90.0 * (trial / 10) : degrees);
        const Rotated want = reference_rotate(src, w, h, trial % 10 == 0 ? 90.0 * (trial / 10) : degrees);
        ASSERT_EQ(got.width, want.width) << trial;
        ASSERT_EQ(got.height, want.height) << trial;
        ASSERT_EQ(got.px, want.px) << trial;
    }
}

TEST(RotateImage, NonFiniteAnglesGiveOnePixel) {
    const Bytes src = qel_test::random_grey(5, 4, 5);
    const Rotated r = rotate(src, 5, 4, std::nan(""));  // sine and cosine become 0
    EXPECT_EQ(r.width, 1);
    EXPECT_EQ(r.height, 1);
    EXPECT_EQ(r.px, Bytes{src[0]});
}

TEST(RotateRect, ZeroDegreesCopiesTheTopLeftBlockExactly) {
    const Bytes src = qel_test::random_grey(12, 9, 6);
    Bytes copy = src, dst(12 * 9);
    QelCopyRectFromRotateCCS(copy.data(), 12, 9, 0, 0, 0.0, dst.data(), 12, 9);  // column 12 has weight 0
    EXPECT_EQ(dst, src);
    Bytes block(5 * 4);
    QelCopyRectFromRotateCCS(copy.data(), 12, 9, 3, 2, 0.0, block.data(), 5, 4);
    EXPECT_EQ(block, qel_test::crop(src, 12, 1, 3, 2, 5, 4));
}

TEST(RotateRect, HandWorkedSampleAtNinetyDegrees) {
    // At 90° with pi as 3.1415: sin = 65535/65536, cos = 3/65536. Output (1, 0) sits at
    // fx = 3, fy = 65535 above the 2 × 2 block {0, 255; 100, 200}: top = (3·255) >> 16 = 0,
    // bottom = (65533·100 + 3·200) >> 16 = 100, out = (1·0 + 65535·100) >> 16 = 99.
    Bytes src = {0, 255, 100, 200};
    Bytes dst(2, 7);
    QelCopyRectFromRotateCCS(src.data(), 2, 2, 0, 0, 90.0, dst.data(), 2, 1);
    EXPECT_EQ(dst[0], 0);
    EXPECT_EQ(dst[1], 99);
}

TEST(RotateRect, FillOnlyWhenANeighbourLeavesTheSource) {
    const Bytes src = qel_test::random_grey(10, 10, 7);
    Bytes copy = src, dst(10 * 9);
    EXPECT_FALSE(QelCopyRectFromRotateCCS(copy.data(), 10, 10, 0, 0, 0.0, 300, dst.data(), 9, 9));
    EXPECT_EQ(Bytes(dst.begin(), dst.begin() + 81), qel_test::crop(src, 10, 1, 0, 0, 9, 9));
    // Column 9 needs column 10 too, even at weight 0; the fill is stored as its low byte.
    EXPECT_TRUE(QelCopyRectFromRotateCCS(copy.data(), 10, 10, 0, 0, 0.0, 300, dst.data(), 10, 9));
    for (int y = 0; y < 9; ++y) {
        EXPECT_EQ(dst[y * 10 + 9], 300 & 0xFF);
        EXPECT_EQ(dst[y * 10 + 8], src[y * 10 + 8]);
    }
}

TEST(RotateRect, ShearedRowsStartOnePixelAlongTheirLine) {
    // degrees 0 and shear 90 mean no shear: row j is source row y0 + j from column x0 + 1 (the + 1).
    const Bytes src = qel_test::random_grey(30, 20, 9);
    Bytes copy = src, dst(6 * 4);
    QelCopyRectFromRotateAndShiftFast(copy.data(), 30, 20, 5, 7, 0.0, 90.0, dst.data(), 6, 4);
    EXPECT_EQ(dst, qel_test::crop(src, 30, 1, 6, 7, 6, 4));
    // Shear 135: trunc(−4096·tan 45°) = −4095, so row j ≥ 1 starts at column x0 + 1 − j.
    QelCopyRectFromRotateAndShiftFast(copy.data(), 30, 20, 5, 7, 0.0, 135.0, dst.data(), 6, 4);
    for (int j = 0; j < 4; ++j)
        EXPECT_EQ(qel_test::row_of(dst, 6, j), qel_test::crop(src, 30, 1, 6 - (j > 0 ? j : 0), 7 + j, 6, 1)) << j;
}

TEST(RotateRect, RandomArgumentsAgreeWithThePlainConstructionAndStayInBounds) {
    std::mt19937 rng(10);
    auto pick = [&rng](int lo, int hi) { return lo + static_cast<int>(rng() % static_cast<unsigned>(hi - lo + 1)); };
    for (int trial = 0; trial < 400; ++trial) {
        const int w = pick(1, 24), h = pick(1, 24), dw = pick(1, 16), dh = pick(1, 16);
        const int x0 = pick(-30, 50), y0 = pick(-30, 50);
        // Every fifth angle is 0, where positions fall exactly on pixels and the last column's
        // neighbour (of weight 0) decides the fill.
        const double degrees = trial % 5 == 0 ? 0.0 : std::uniform_real_distribution<double>(-360, 360)(rng);
        const int B = trial % 2 ? 3 : 1;
        Bytes src = qel_test::random_bytes(static_cast<size_t>(w) * h * B, trial);  // exact size for the sanitizers

        GuardedImage plain(dw, dh, B), filled(dw, dh, B);
        bool outside = false;
        const Bytes want = reference_rect(src, w, h, B, x0, y0, degrees, 17, dw, dh, &outside);
        bool got;
        if (B == 1) {
            QelCopyRectFromRotateCCS(src.data(), w, h, x0, y0, degrees, plain.data(), dw, dh);
            got = QelCopyRectFromRotateCCS(src.data(), w, h, x0, y0, degrees, 17, filled.data(), dw, dh);
        } else {
            QelRgbCopyRectFromRotateCCS(src.data(), w, h, x0, y0, degrees, plain.data(), dw, dh);
            got = QelRgbCopyRectFromRotateCCS(src.data(), w, h, x0, y0, degrees, 17, filled.data(), dw, dh);
        }
        const size_t n = static_cast<size_t>(dw) * dh * B;
        ASSERT_EQ(got, outside) << trial;
        ASSERT_EQ(Bytes(filled.data(), filled.data() + n), want) << trial;
        ASSERT_EQ(Bytes(plain.data(), plain.data() + n), reference_rect(src, w, h, B, x0, y0, degrees, -1, dw, dh))
            << trial;

        GuardedImage sheared(dw, dh, 1);
        const double shear = std::uniform_real_distribution<double>(-180, 270)(rng);
        Bytes grey(src.begin(), src.begin() + static_cast<ptrdiff_t>(w) * h);
        QelCopyRectFromRotateAndShiftFast(grey.data(), w, h, x0, y0, degrees, shear, sheared.data(), dw, dh);
        ASSERT_EQ(Bytes(sheared.data(), sheared.data() + static_cast<size_t>(dw) * dh),
                  reference_sheared(grey, w, h, x0, y0, degrees, shear, dw, dh))
            << trial;
        ASSERT_TRUE(plain.guards_intact() && filled.guards_intact() && sheared.guards_intact()) << trial;
    }
}

TEST(RotateRect, EmptySourceIsNotRead) {
    GuardedImage dst(4, 3, 1, 42);
    unsigned char none = 0;
    QelCopyRectFromRotateCCS(&none, 0, 5, 0, 0, 10.0, dst.data(), 4, 3);
    QelCopyRectFromRotateAndShiftFast(&none, 5, 0, 0, 0, 10.0, 100.0, dst.data(), 4, 3);
    EXPECT_EQ(Bytes(dst.data(), dst.data() + 12), Bytes(12, 42));
    EXPECT_TRUE(QelCopyRectFromRotateCCS(&none, 0, 5, 0, 0, 10.0, 8, dst.data(), 4, 3));
    EXPECT_EQ(Bytes(dst.data(), dst.data() + 12), Bytes(12, 8));
    EXPECT_TRUE(dst.guards_intact());
}

}  // namespace
