// Every drawing function with hostile arguments (coordinates, sizes and radii at the ends of the
// int range, doubles that are huge, infinite or NaN, tiny and empty images) must stay inside the
// image: the guard bytes around it never change. Run under the sanitizers this also shows that no
// int overflows and no out-of-range conversion happens.
#include <qel.h>

#include "draw/draw_test_helpers.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <random>

namespace {

using qel_test::GuardedImage;

class Hostile {
public:
    explicit Hostile(unsigned seed) : rng_(seed) {}

    int coordinate() {
        static const int kEdges[] = {INT_MIN, INT_MIN + 1, -1000000, -1, 0, 1, 1000000, INT_MAX - 1, INT_MAX};
        if (rng_() % 3 == 0) return kEdges[rng_() % (sizeof kEdges / sizeof kEdges[0])];
        return static_cast<int>(rng_() % 41) - 15;
    }
    double real() {
        static const double kEdges[] = {1e300, -1e300, 1e-300, 0.0, std::numeric_limits<double>::infinity(),
                                        -std::numeric_limits<double>::infinity(),
                                        std::numeric_limits<double>::quiet_NaN(), 3e9, -3e9};
        if (rng_() % 3 == 0) return kEdges[rng_() % (sizeof kEdges / sizeof kEdges[0])];
        return std::uniform_real_distribution<double>(-400.0, 400.0)(rng_);
    }
    int side() { return static_cast<int>(rng_() % 16) - 2; }  // −2..13: empty, thin and small images
    bool coin() { return rng_() % 2 == 0; }

private:
    std::mt19937 rng_;
};

TEST(DrawHostile, NothingIsWrittenOutsideTheImage) {
    Hostile a(2024);
    for (int i = 0; i < 3000; ++i) {
        const int w = a.side(), h = a.side();
        GuardedImage grey(w, h, 1), bgr(w, h, 3);
        unsigned char* g = grey.data();
        unsigned char* c = bgr.data();
        const auto v = [&] { return a.coordinate(); };
        const auto r = [&] { return a.real(); };
        QelGryLine(g, w, h, v(), v(), v(), v(), v());
        QelRGBLine(c, w, h, v(), v(), v(), v(), v(), v(), v());
        QelDrawABCLineByColor(g, w, h, r(), r(), r(), v());
        QelDrawABCLineByColor(g, w, h, v(), v(), v(), v(), r(), r(), r(), v());
        QelDrawABCLineByInc(g, w, h, r(), r(), r());
        QelDrawKBLine(g, w, h, v(), r(), r(), v());
        QelDrawKBLine(c, w, h, v(), r(), r(), v(), v(), v());
        QelDrawHoughLine(g, w, h, v(), v(), 7);
        QelDrawDegreeLine(g, w, h, v(), v(), r(), v());
        QelDrawDownArrow(g, w, h, v(), v(), v(), v());
        QelDrawDownArrow(g, w, h, v(), v(), v(), v(), v());
        QelDrawDownArrow(c, w, h, v(), v(), v(), v(), v(), v());
        QelDrawUpArrow(g, w, h, v(), v(), v(), v());
        QelDrawUpArrow(g, w, h, v(), v(), v(), v(), v());
        QelDrawUpArrow(c, w, h, v(), v(), v(), v(), v(), v());
        QelDrawLeftArrow(g, w, h, v(), v(), v(), v());
        QelDrawLeftArrow(g, w, h, v(), v(), v(), v(), v());
        QelDrawLeftArrow(c, w, h, v(), v(), v(), v(), v(), v());
        QelDrawRightArrow(g, w, h, v(), v(), v(), v());
        QelDrawRightArrow(g, w, h, v(), v(), v(), v(), v());
        QelDrawRightArrow(c, w, h, v(), v(), v(), v(), v(), v());
        QelGryImgDrawArrow(g, w, h, v(), v(), v(), v(), v());
        QelRGBImgDrawArrow(c, w, h, v(), v(), v(), v(), v(), v(), v(), v());
        QelDrawGryCross(g, w, h, v(), v(), v(), 9);
        QelDrawGryCrossShadow(g, w, h, v(), v(), v(), 9);
        QelDrawRGBCross(c, w, h, v(), v(), v(), v(), v(), v());
        QelDrawGryRect(g, w, h, v(), v(), v(), v(), v());
        QelDrawRGBRect(c, w, h, v(), v(), v(), v(), v(), v(), v());
        const bool isRGB = a.coin();
        QelDrawRect(isRGB ? c : g, w, h, isRGB, v(), v(), v(), v(), v(), v(), v(), v());
        QelFillGryRect(g, w, h, v(), v(), v(), v(), v());
        QelFillRGBRect(c, w, h, v(), v(), v(), v(), v(), v(), v());
        QelChangeColorOnRect(g, w, h, v(), v(), v(), v(), v(), v());
        QelDrawCircle(g, w, h, v(), v(), v(), v(), v());
        int xs[5], ys[5];
        for (int k = 0; k < 5; ++k) xs[k] = v(), ys[k] = v();
        QelDrawPolygon(g, w, h, xs, ys, i % 6, v(), v(), v());
        ASSERT_TRUE(grey.guards_intact()) << "grey image " << w << "x" << h << ", round " << i;
        ASSERT_TRUE(bgr.guards_intact()) << "RGB image " << w << "x" << h << ", round " << i;
    }
}

}  // namespace
