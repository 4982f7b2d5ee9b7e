#include <qel.h>

#include "contour/contour_images.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using contour_test::Bytes;
using contour_test::Chain;
using contour_test::Image;
using contour_test::Mask;

int fill(Image& img, const contour_test::Contour& c, bool include, int boundary, int value) {
    return QelFillingContour(img.data(), img.w, c.x, c.y, const_cast<unsigned char*>(c.chain.data()),
                             static_cast<int>(c.chain.size()), include, boundary, value);
}

TEST(FillingContour, SquareAndHoleFillTowardsTheirInsides) {
    Image img(9, 9, 40);
    img.box(2, 6, 2, 6, 200);
    Image traced(9, 9);
    traced.box(2, 6, 2, 6).box(4, 5, 4, 4, 0);
    const auto list = contour_test::get_contours(traced);
    ASSERT_EQ(list.size(), 2u);

    Image inside = img;
    EXPECT_EQ(fill(inside, list[0], false, 128, 7), 1) << "counter-clockwise";
    Image whole = img;
    EXPECT_EQ(fill(whole, list[0], true, 128, 7), 1);
    for (int y = 0; y < 9; ++y)
        for (int x = 0; x < 9; ++x) {
            const bool box = x >= 2 && x <= 6 && y >= 2 && y <= 6;
            const bool rim = box && (x == 2 || x == 6 || y == 2 || y == 6);
            EXPECT_EQ(whole.at(x, y), box ? 7 : 40) << x << "," << y;
            EXPECT_EQ(inside.at(x, y), rim ? 200 : box ? 7 : 40) << x << "," << y;
        }

    // The hole is walked clockwise; filled without its boundary it becomes object again.
    Image ring = traced;
    EXPECT_EQ(fill(ring, list[1], false, 128, 255), -1);
    Image solid(9, 9);
    solid.box(2, 6, 2, 6);
    EXPECT_EQ(ring.px, solid.px);
    unsigned char none[1] = {0};
    EXPECT_EQ(QelFillingContour(ring.data(), ring.w, 4, 4, none, 0, true, 128, 9), 0);
    EXPECT_EQ(ring.px, solid.px) << "no codes, nothing filled";
    unsigned char open[2] = {0, 0};  // turns by 0: no inside to walk to
    EXPECT_EQ(QelFillingContour(ring.data(), ring.w, 1, 1, open, 2, true, 128, 9), 0);
    solid.at(1, 1) = solid.at(2, 1) = 9;
    EXPECT_EQ(ring.px, solid.px);
}

// Boundary 2 and fill 0 leave 3..7 free first, so base = 5 and the start marker is 1. A chain going
// twice round a square shows it: its right side, passed upwards twice, sums to base − 4 = 1 and so
// starts fill walks of its own (out of the square, on along the buffer to the next 2), while its
// left side, base + 4 = 9, starts none. With boundary 3 the base is 6 and nothing coincides.
TEST(FillingContour, MarkerValuesAreChosenFromTheFirstFiveFreeValues) {
    Chain twice;
    for (int round = 0; round < 2; ++round)
        for (unsigned char k : {6, 0, 2, 4})
            for (int i = 0; i < 3; ++i) twice.push_back(k);
    Image img(10, 6, 50);
    EXPECT_EQ(QelFillingContour(img.data(), img.w, 1, 1, twice.data(), 24, false, 2, 0), 2) << "two turns";
    Image expected(10, 6, 50);
    for (int x = 5; x <= 9; ++x) expected.at(x, 2) = expected.at(x, 3) = 0;
    expected.at(0, 3) = expected.at(2, 3) = expected.at(3, 3) = expected.at(0, 4) = 0;
    EXPECT_EQ(img.px, expected.px);

    Image other(10, 6, 50);
    QelFillingContour(other.data(), other.w, 1, 1, twice.data(), 24, false, 3, 0);
    EXPECT_EQ(other.px, Image(10, 6, 50).px) << "only the top and bottom rows, chain pixels all, are walked";
}

// Every outer boundary of a random image, filled with its contour into an empty image, gives its
// object with the holes filled; every hole filled without its contour into the binary image closes
// it (and whatever lies inside it).
TEST(FillingContour, RoundTripsOnRandomImages) {
    size_t contours = 0;
    for (unsigned seed = 1; seed <= 40; ++seed) {
        Image img = seed % 4 == 0 ? contour_test::random_noise(19, 15, 50, seed)
                                  : contour_test::random_blobs(36, 28, seed);
        QelSetImageBoundary(img.data(), img.w, img.h, 0);
        const Image binary = img;
        const Mask object = contour_test::where(img, true);
        const auto list = contour_test::get_contours(img);
        contours += list.size();
        for (const auto& c : list) {
            Image out(img.w, img.h);
            Mask expected;
            if (c.outer) {
                EXPECT_EQ(fill(out, c, true, 128, 255), 1);
                const Mask component = contour_test::flood(object, img.w, img.h, {{c.x, c.y}}, 8);
                expected = contour_test::enclosed_by(component, img.w, img.h, 4);
                EXPECT_EQ(QelRealPixelsEnclosed(const_cast<unsigned char*>(c.chain.data()),
                                                static_cast<int>(c.chain.size())),
                          std::count(expected.begin(), expected.end(), 1));
            } else {
                out = binary;
                EXPECT_EQ(fill(out, c, false, 128, 255), -1);
                const Mask hole = contour_test::flood(contour_test::where(binary, false), img.w, img.h,
                                                      {{c.x + 1, c.y}}, 4);
                expected = contour_test::enclosed_by(hole, img.w, img.h, 8);
                for (size_t i = 0; i < expected.size(); ++i) expected[i] = expected[i] || object[i];
            }
            for (size_t i = 0; i < expected.size(); ++i)
                ASSERT_EQ(out.px[i], expected[i] ? 255 : 0)
                    << "seed " << seed << (c.outer ? " outer " : " hole ") << c.x << "," << c.y << " at " << i;
        }
    }
    EXPECT_GT(contours, 250u);
}

TEST(PastePixels, CopiesTheEnclosedPixelsOnly) {
    Image src(12, 10);
    src.box(2, 8, 2, 7).box(4, 5, 4, 5, 0).box(10, 10, 2, 7);  // a framed square and a bar beside it
    Image traced = src;
    const auto list = contour_test::get_contours(traced, 0, 0, 1);
    ASSERT_EQ(list.size(), 2u);
    const auto& square = list[0];
    Image out(12, 10, 33);
    EXPECT_EQ(QelPastePixels2ResImg(src.data(), src.w, square.x, square.y,
                                    const_cast<unsigned char*>(square.chain.data()),
                                    static_cast<int>(square.chain.size()), 128, 255, out.data(), -1),
              7 * 6);
    for (int y = 0; y < 10; ++y)
        for (int x = 0; x < 12; ++x) {
            const bool in = x >= 2 && x <= 8 && y >= 2 && y <= 7;
            EXPECT_EQ(out.at(x, y), in ? src.at(x, y) : 33) << x << "," << y;
        }
    Image painted(12, 10, 128);  // out may hold the boundary value
    EXPECT_EQ(QelPastePixels2ResImg(src.data(), src.w, square.x, square.y,
                                    const_cast<unsigned char*>(square.chain.data()),
                                    static_cast<int>(square.chain.size()), 128, 255, painted.data(), 9),
              42);
    EXPECT_EQ(painted.at(4, 4), 9);
    EXPECT_EQ(painted.at(9, 4), 128);
    EXPECT_EQ(QelPastePixels2ResImg(src.data(), src.w, 3, 3, nullptr, 0, 128, 255, painted.data(), 1), 0);
}

}  // namespace
