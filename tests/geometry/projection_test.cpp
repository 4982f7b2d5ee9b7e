// Exact-size buffers throughout: the sanitizer build catches any entry written past them.
#include <qel.h>

#include "support/test_images.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace {

using qel_test::Bytes;
using Ints = std::vector<int>;

TEST(Projection, AllOnesImage) {
    Bytes img(4 * 3, 1);
    Ints px(4), py(3);
    QelGryImgPrjXY(img.data(), 4, 3, px.data(), py.data());
    EXPECT_EQ(px, (Ints{3, 3, 3, 3}));
    EXPECT_EQ(py, (Ints{4, 4, 4}));
}

TEST(Projection, ProfilesEqualPlainSumsOverRandomImagesAndRectangles) {
    std::mt19937 rng(7);
    for (int w = 1; w <= 9; ++w)
        for (int h = 1; h <= 6; ++h) {
            Bytes img = qel_test::random_grey(w, h, w * 31 + h);
            for (auto& v : img) v = v < 80 ? 0 : v;  // zeros for the binary counts
            const int x0 = static_cast<int>(rng() % w), x1 = x0 + static_cast<int>(rng() % (w - x0));
            const int y0 = static_cast<int>(rng() % h), y1 = y0 + static_cast<int>(rng() % (h - y0));
            Ints ax(w, 9), ay(h, 9), rx(w, 9), ry(h, 9), bx(w, 5), by(h, 5);
            Ints refAx(w), refAy(h), refRx(w), refRy(h), refBx(w, 5), refBy(h, 5);
            for (int x = x0; x <= x1; ++x) refBx[x] = 0;  // only the rectangle's entries are cleared
            for (int y = y0; y <= y1; ++y) refBy[y] = 0;
            for (int y = 0; y < h; ++y)
                for (int x = 0; x < w; ++x) {
                    const int v = img[y * w + x];
                    refAx[x] += v, refAy[y] += v;
                    if (x < x0 || x > x1 || y < y0 || y > y1) continue;
                    refRx[x] += v, refRy[y] += v, refBx[x] += v != 0, refBy[y] += v != 0;
                }
            QelGryImgPrjXY(img.data(), w, h, ax.data(), ay.data());
            QelGryImgPrjXYInRect(img.data(), w, h, x0, x1, y0, y1, rx.data(), ry.data());
            QelBinImgPrjXYInRect(img.data(), w, h, x0, x1, y0, y1, bx.data(), by.data());
            ASSERT_EQ(ax, refAx);
            ASSERT_EQ(ay, refAy);
            ASSERT_EQ(rx, refRx);
            ASSERT_EQ(ry, refRy);
            ASSERT_EQ(bx, refBx);
            ASSERT_EQ(by, refBy);
        }
}

TEST(Projection, ColourProfilesPerChannelAndWeighted) {
    for (int w = 1; w <= 7; ++w) {
        Bytes rgb = qel_test::random_bgr(w, 5, w);
        Ints r(w), g(w), b(w), weighted(w), s(3 * w);
        for (size_t i = 0; i < rgb.size(); ++i) s[i / 3 % w * 3 + i % 3] += rgb[i];
        QelRGBImgPrj2X(rgb.data(), w, 5, r.data(), g.data(), b.data());
        QelRGBImgPrj2X(rgb.data(), w, 5, weighted.data());
        for (int x = 0; x < w; ++x) {
            ASSERT_EQ(Ints({b[x], g[x], r[x]}), Ints(s.begin() + 3 * x, s.begin() + 3 * x + 3));
            ASSERT_EQ(weighted[x], (s[3 * x] + s[3 * x + 1] + 2 * s[3 * x + 2]) >> 2);
        }
    }
    Bytes red = {0, 0, 255};
    Ints one(1);
    QelRGBImgPrj2X(red.data(), 1, 1, one.data());
    EXPECT_EQ(one[0], 127);
}

// Lengths of the bars in a chart: painted pixels from the bottom of each column (vertical) or from
// the left of each row; the chart must hold nothing else.
Ints bars(const Bytes& img, int w, int h, bool vertical) {
    Ints out;
    size_t painted = 0;
    for (int i = 0; i < (vertical ? w : h); ++i) {
        int n = 0;
        while (n < (vertical ? h : w) && img[vertical ? (h - 1 - n) * w + i : i * w + n] != 0) ++n;
        out.push_back(n);
        painted += n;
    }
    EXPECT_EQ(painted, img.size() - std::count(img.begin(), img.end(), 0)) << "pixels outside the bars";
    return out;
}

using Draw = void (*)(unsigned char*, int, int, int*, int, int);

Ints chart(Draw draw, int w, int h, Ints prj, int n, bool vertical) {
    Bytes img(w * h, 0);
    draw(img.data(), w, h, prj.data(), n, 255);
    return bars(img, w, h, vertical);
}

TEST(DrawPrj, ColumnBars) {
    Draw drawX = QelDrawPrjX, drawX0 = QelDrawPrjXMinV0;
    EXPECT_EQ(chart(drawX, 5, 6, {40, 40, 40, 40, 40}, 5, true), Ints(5, 0));  // constant: nothing
    EXPECT_EQ(chart(drawX, 3, 10, {0, 8, 4}, 3, true), (Ints{0, 8, 4}));      // scale (8 + 2) / 10
    EXPECT_EQ(chart(drawX, 2, 10, {0, 100}, 2, true), (Ints{0, 9}));          // 10 pixels, but never row 0
    EXPECT_EQ(chart(drawX, 2, 10, {0, 8, 98}, 3, true), (Ints{0, 1}));        // an undrawn entry scales
    EXPECT_EQ(chart(drawX, 2, 10, {5, 8}, 2, true), (Ints{0, 6}));
    EXPECT_EQ(chart(drawX0, 2, 10, {5, 8}, 2, true), (Ints{5, 8}));           // minimum fixed at 0
    Bytes img(4 * 10, 0);
    Ints prj = {1000, 0, 8, -500};
    QelDrawPrjX(img.data(), 4, 10, prj.data(), 1, 2, 0x1C8);  // scaled on entries 1..2; low byte drawn
    EXPECT_EQ(bars(img, 4, 10, true), (Ints{0, 0, 8, 0}));
    EXPECT_EQ(img[9 * 4 + 2], 0xC8);
}

TEST(DrawPrj, RowBars) {
    Draw drawY = QelDrawPrjY, drawY0 = QelDrawPrjYMinV0;
    EXPECT_EQ(chart(drawY, 10, 2, {0, 8, 1000}, 3, false), (Ints{0, 8}));  // the third entry is ignored
    EXPECT_EQ(chart(drawY, 10, 2, {0, 100}, 2, false), (Ints{0, 9}));      // never the last column
    EXPECT_EQ(chart(drawY0, 10, 2, {5, 8}, 2, false), (Ints{5, 8}));
}

TEST(DrawPrj, RandomProfilesKeepTheirBounds) {
    for (unsigned seed = 0; seed < 40; ++seed) {
        std::mt19937 rng(seed);
        const int w = 1 + static_cast<int>(rng() % 12), h = 1 + static_cast<int>(rng() % 12);
        const int n = static_cast<int>(rng() % 16);
        Ints prj(std::max(n, 1));
        for (int& v : prj) v = static_cast<int>(rng() % 2001) - 1000;
        for (Draw draw : {Draw(QelDrawPrjX), Draw(QelDrawPrjXMinV0)}) {
            const Ints b = chart(draw, w, h, prj, n, true);
            for (int x = 0; x < w; ++x) ASSERT_LE(b[x], x < n ? h - 1 : 0);
        }
        for (Draw draw : {Draw(QelDrawPrjY), Draw(QelDrawPrjYMinV0)}) {
            const Ints b = chart(draw, w, h, prj, n, false);
            for (int y = 0; y < h; ++y) ASSERT_LE(b[y], y < n ? w - 1 : 0);
        }
    }
}

}  // namespace
