#include <qel.h>

#include "contour/contour_images.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

using contour_test::Chain;
using contour_test::Image;
using contour_test::Mask;

int fill(Image& img, const contour_test::Contour& c, bool include, int boundary, int value) {
    return QelFillingContour(img.data(), img.w, c.x, c.y, const_cast<unsigned char*>(c.chain.data()),
                             static_cast<int>(c.chain.size()), include, boundary, value);
}

TEST(FillingContour, SquareAndHoleFillTowardsTheirInsides) {
    Image traced(9, 9);
    traced.box(2, 6, 2, 6).box(4, 5, 4, 4, 0);
    const auto list = contour_test::get_contours(traced);
    ASSERT_EQ(list.size(), 2u);
    Image grey(9, 9, 40), whole(9, 9, 40), inside(9, 9, 40);
    grey.box(2, 6, 2, 6, 200);
    whole = inside = grey;
    EXPECT_EQ(fill(whole, list[0], true, 128, 7), 1) << "counter-clockwise";
    EXPECT_EQ(fill(inside, list[0], false, 128, 7), 1);
    Image expected(9, 9, 40);
    EXPECT_EQ(whole.px, expected.box(2, 6, 2, 6, 7).px);
    EXPECT_EQ(inside.px, expected.box(2, 6, 2, 6, 200).box(3, 5, 3, 5, 7).px) << "contour restored";

    Image ring = traced, solid(9, 9);
    solid.box(2, 6, 2, 6);
    EXPECT_EQ(fill(ring, list[1], false, 128, 255), -1) << "a hole turns clockwise";
    EXPECT_EQ(ring.px, solid.px);
    unsigned char open[2] = {0, 0};  // no codes; then no turn: no inside to walk to
    EXPECT_EQ(QelFillingContour(ring.data(), ring.w, 1, 1, open, 0, true, 128, 9), 0);
    EXPECT_EQ(QelFillingContour(ring.data(), ring.w, 1, 1, open, 2, true, 128, 9), 0);
    EXPECT_EQ(ring.px, solid.box(1, 2, 1, 1, 9).px);
}

// Boundary 2 and fill 0 leave 3..7 free first, so base = 5 and the start marker is 1. A chain going
// twice round a square shows it: its right side, passed upwards twice, sums to base − 4 = 1 and so
// starts fill walks of its own (out of the square, on along the buffer to the next 2), while its
// left side, base + 4 = 9, starts none. With boundary 3 the base is 6 and nothing coincides.
TEST(FillingContour, MarkerValuesAreChosenFromTheFirstFiveFreeValues) {
    Chain twice;
    for (int round = 0; round < 2; ++round)
        for (unsigned char k : {6, 0, 2, 4}) twice.insert(twice.end(), 3, k);
    Image img(10, 6, 50), other(10, 6, 50), expected(10, 6, 50);
    EXPECT_EQ(QelFillingContour(img.data(), img.w, 1, 1, twice.data(), 24, false, 2, 0), 2) << "two turns";
    expected.box(5, 9, 2, 3, 0).box(0, 0, 3, 4, 0).box(2, 3, 3, 3, 0);
    EXPECT_EQ(img.px, expected.px);
    QelFillingContour(other.data(), other.w, 1, 1, twice.data(), 24, false, 3, 0);
    EXPECT_EQ(other.px, Image(10, 6, 50).px) << "only contour pixels walked over, all restored";
}

// Every outer boundary of a random image, filled with its contour into an empty image, gives its
// object with the holes filled, and there is one per object of two pixels or more; every hole,
// filled without its contour into the binary image, closes (with whatever lies inside it).
TEST(FillingContour, RoundTripsOnRandomImages) {
    size_t contours = 0;
    for (unsigned seed = 1; seed <= 40; ++seed) {
        Image img = seed % 4 == 0 ? contour_test::random_noise(19, 15, 50, seed) : contour_test::random_blobs(36, 28, seed);
        QelSetImageBoundary(img.data(), img.w, img.h, 0);
        const Image binary = img;
        const Mask object = contour_test::where(img, true);
        Mask listed(object.size(), 0);
        const auto list = contour_test::get_contours(img);
        contours += list.size();
        for (const auto& c : list) {
            Image out = c.outer ? Image(img.w, img.h) : binary;
            Mask expected;
            if (c.outer) {
                EXPECT_EQ(fill(out, c, true, 128, 255), 1);
                const Mask component = contour_test::flood(object, img.w, img.h, {{c.x, c.y}}, 8);
                expected = contour_test::enclosed_by(component, img.w, img.h, 4);
                for (size_t i = 0; i < listed.size(); ++i) {
                    ASSERT_FALSE(component[i] && listed[i]) << "object listed twice, seed " << seed;
                    listed[i] = listed[i] || component[i];
                }
            } else {
                EXPECT_EQ(fill(out, c, false, 128, 255), -1);
                const Mask hole =
                    contour_test::flood(contour_test::where(binary, false), img.w, img.h, {{c.x + 1, c.y}}, 4);
                expected = contour_test::enclosed_by(hole, img.w, img.h, 8);
                for (size_t i = 0; i < expected.size(); ++i) expected[i] = expected[i] || object[i];
            }
            for (size_t i = 0; i < expected.size(); ++i)
                ASSERT_EQ(out.px[i], expected[i] ? 255 : 0) << "seed " << seed << " contour at " << c.x << "," << c.y;
        }
        for (int i = 0; i < img.w * img.h; ++i)
            if (object[i] && !listed[i]) {  // only lone pixels have no record
                const Mask lone = contour_test::flood(object, img.w, img.h, {{i % img.w, i / img.w}}, 8);
                ASSERT_EQ(std::count(lone.begin(), lone.end(), 1), 1) << "object missed, seed " << seed;
            }
    }
    EXPECT_GT(contours, 250u);
}

TEST(PastePixels, CopiesTheEnclosedPixelsOnly) {
    Image src(12, 10);
    src.box(2, 8, 2, 7).box(4, 5, 4, 5, 0).box(10, 10, 2, 7);  // a framed square and a bar beside it
    Image traced = src;
    const auto square = contour_test::get_contours(traced, 0, 0, 1).at(0);
    auto paste = [&](Image& out, int value) {
        return QelPastePixels2ResImg(src.data(), src.w, square.x, square.y,
                                     const_cast<unsigned char*>(square.chain.data()),
                                     static_cast<int>(square.chain.size()), 128, 255, out.data(), value);
    };
    Image out(12, 10, 33), painted(12, 10, 128);  // out may hold the boundary value
    EXPECT_EQ(paste(out, -1), 7 * 6);
    Image expected(12, 10, 33);
    EXPECT_EQ(out.px, expected.box(2, 8, 2, 7, 255).box(4, 5, 4, 5, 0).px);
    EXPECT_EQ(paste(painted, 9), 42);
    EXPECT_EQ(painted.px, Image(12, 10, 128).box(2, 8, 2, 7, 9).px);
    EXPECT_EQ(QelPastePixels2ResImg(src.data(), src.w, 3, 3, nullptr, 0, 128, 255, painted.data(), 1), 0);
}

}  // namespace
