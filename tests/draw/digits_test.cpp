#include <qel.h>

#include "draw/draw_test_helpers.h"

#include <gtest/gtest.h>

#include <climits>
#include <random>
#include <string>

namespace {

using qel_test::Bytes;
using qel_test::changed;
using qel_test::Points;

struct Drawn {
    Bytes image;
    int pen;
};

Drawn grey_digits(int w, int h, int x, int y, int spacing, std::string text, unsigned char fill = 0) {
    Drawn d{Bytes(static_cast<size_t>(w) * h, fill), 0};
    d.pen = QelSetNumberString2GryImg(d.image.data(), w, h, x, y, spacing, 255, &text[0]);
    return d;
}

Drawn doubled_digits(int w, int h, int x, int y, int spacing, std::string text) {
    Drawn d{Bytes(static_cast<size_t>(w) * h, 77), 0};
    d.pen = QelSetNumberString20x16GryImg(d.image.data(), w, h, x, y, spacing, 10, 200, &text[0]);
    return d;
}

// Pixels of one digit drawn alone at (0, 0): its glyph (a grey digit needs an image 9 wide).
Points glyph(char digit) { return changed(grey_digits(9, 9, 0, 0, 0, std::string(1, digit)).image, 9, 9); }

Points shifted(const Points& p, int dx, int dy) {
    Points out;
    for (const auto& [x, y] : p) out.insert({x + dx, y + dy});
    return out;
}

TEST(Digits, GlyphsAreTenDistinctShapesWithAGapOnBothSides) {
    for (char a = '0'; a <= '9'; ++a) {
        const Points g = glyph(a);
        EXPECT_GE(g.size(), 12u) << a;
        for (const auto& [x, y] : g) EXPECT_TRUE(x >= 1 && x <= 6) << a << " at column " << x;
        for (char b = '0'; b < a; ++b) EXPECT_NE(g, glyph(b)) << a << " and " << b;
    }
}

TEST(Digits, LettersAreSkippedWithoutMovingThePen) {
    const Drawn mixed = grey_digits(60, 12, 2, 1, 3, "12a3");
    EXPECT_EQ(mixed.pen, 2 + 3 * (8 + 3));
    Points expected = shifted(glyph('1'), 2, 1);
    for (const auto& p : shifted(glyph('2'), 13, 1)) expected.insert(p);
    for (const auto& p : shifted(glyph('3'), 24, 1)) expected.insert(p);
    EXPECT_EQ(changed(mixed.image, 60, 12), expected);
    EXPECT_EQ(grey_digits(60, 12, 2, 1, 3, "x").pen, 2);
}

TEST(Digits, PenLimitsAtTheEdges) {
    // x = width − 9 leaves room for one digit; one column further draws nothing.
    const Drawn last = grey_digits(20, 12, 11, 0, 0, "77");
    EXPECT_EQ(last.pen, 19);
    EXPECT_EQ(changed(last.image, 20, 12), shifted(glyph('7'), 11, 0));
    const Drawn none = grey_digits(20, 12, 12, 0, 0, "7");
    EXPECT_EQ(none.pen, 12);
    EXPECT_TRUE(qel_test::all_equal(none.image, 0));
    // Negative starts count as 0, and the clamped x is what comes back when nothing fits.
    EXPECT_EQ(grey_digits(20, 12, -5, -7, 0, "3").image, grey_digits(20, 12, 0, 0, 0, "3").image);
    EXPECT_EQ(grey_digits(5, 12, -5, 0, 0, "3").pen, 0);
}

TEST(Digits, GreyGlyphsAreTransparentAndCutAtTheBottom) {
    const Drawn cut = grey_digits(10, 12, 1, 8, 0, "8", 100);  // rows 8..11: glyph rows 0..3
    Points top;
    for (const auto& [x, y] : glyph('8'))
        if (y < 4) top.insert({x + 1, y + 8});
    EXPECT_EQ(changed(cut.image, 10, 12, 1, 100), top);
    EXPECT_TRUE(qel_test::all_equal(grey_digits(10, 12, 1, 12, 0, "8", 100).image, 100));
}

TEST(Digits, RGBWritesItsBytesInArgumentOrderOnABlackCell) {
    const int w = 19, h = 20;
    Bytes img(static_cast<size_t>(w) * h * 3, 77);
    std::string text = "05";  // the pen stops at 11 > w − 9 before the 5
    EXPECT_EQ(QelSetNumberString2RGBImg(img.data(), w, h, 1, 9, 2, 10, 20, 30, &text[0]), 1 + 10);
    const Points ink = shifted(glyph('0'), 1, 9);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const Bytes px = qel_test::bgr_at(img, static_cast<size_t>(y) * w + x);
            if (x >= 1 && x <= 8 && y >= 9 && y <= 17)
                EXPECT_EQ(px, ink.count({x, y}) ? (Bytes{10, 20, 30}) : (Bytes{0, 0, 0})) << x << "," << y;
            else
                EXPECT_EQ(px, (Bytes{77, 77, 77})) << x << "," << y;
        }
    // y = 10 > h − 11: refused, where the grey form would still draw.
    Bytes untouched(img);
    EXPECT_EQ(QelSetNumberString2RGBImg(img.data(), w, h, 3, 10, 0, 1, 2, 3, &text[0]), 3);
    EXPECT_EQ(img, untouched);
}

TEST(Digits, DoubledDigitsPaintTwoByTwoBlocks) {
    const Points g = glyph('4');
    const Drawn d = doubled_digits(40, 30, 3, 2, 5, "4");
    EXPECT_EQ(d.pen, 3 + 16 + 5);
    for (int y = 0; y < 30; ++y)
        for (int x = 0; x < 40; ++x) {
            const bool inCell = x >= 3 && x < 19 && y >= 2 && y < 20;
            const int expected = !inCell ? 77 : g.count({(x - 3) / 2, (y - 2) / 2}) ? 200 : 10;
            ASSERT_EQ(d.image[static_cast<size_t>(y) * 40 + x], expected) << x << "," << y;
        }
    // The RGB form lays out the same blocks, colours stored blue, green, red.
    Bytes bgr(40 * 30 * 3, 77);
    std::string text = "4";
    EXPECT_EQ(QelSetNumberString20x16RGBImg(bgr.data(), 40, 30, 3, 2, 5, 1, 2, 3, 4, 5, 6, &text[0]), 24);
    for (size_t p = 0; p < d.image.size(); ++p) {
        const Bytes expected = d.image[p] == 200 ? Bytes{6, 5, 4} : d.image[p] == 10 ? Bytes{3, 2, 1} : Bytes{77, 77, 77};
        ASSERT_EQ(qel_test::bgr_at(bgr, p), expected) << p;
    }
}

TEST(Digits, DoubledLimits) {
    EXPECT_NE(doubled_digits(40, 30, 23, 9, 0, "1").image, Bytes(40 * 30, 77));  // x = w − 17, y = h − 21
    EXPECT_EQ(doubled_digits(40, 30, 24, 9, 0, "1").pen, 24);
    EXPECT_EQ(doubled_digits(40, 30, 23, 10, 0, "1").image, Bytes(40 * 30, 77));
    EXPECT_EQ(doubled_digits(40, 30, 0, 0, 0, "111").pen, 32);  // digits at 0 and 16; 32 > 23 stops the pen
}

// Logo: every run of the mark is drawn whole or not at all, and only inside the image.
Points logo_at(int w, int h, int x, int y) {
    Bytes img(static_cast<size_t>(w) * h, 0);
    QelSetPrivateLogo(img.data(), w, h, false, x, y);
    for (unsigned char v : img) EXPECT_TRUE(v == 0 || v == 250);
    return changed(img, w, h);
}

using LogoRun = std::pair<int, std::pair<int, int>>;  // row, first and last column
std::set<LogoRun> runs_of(const Points& p) {
    std::set<LogoRun> runs;
    for (const auto& [x, y] : p)
        if (!p.count({x - 1, y})) {
            int last = x;
            while (p.count({last + 1, y})) ++last;
            runs.insert({y, {x, last}});
        }
    return runs;
}

TEST(Logo, EightyTwoRunsDrawnWholeOrNotAtAll) {
    const std::set<LogoRun> full = runs_of(logo_at(35, 20, 0, 0));
    EXPECT_EQ(full.size(), 82u);
    Bytes bgr(35 * 20 * 3, 0);
    QelSetPrivateLogo(bgr.data(), 35, 20, true, 0, 0);
    EXPECT_EQ(qel_test::bgr_at(bgr, 1), (Bytes{0, 0, 250}));
    EXPECT_EQ(runs_of(changed(bgr, 35, 20, 3)), full);
    std::mt19937 rng(11);
    for (int i = 0; i < 200; ++i) {
        const int x = static_cast<int>(rng() % 50) - 25, y = static_cast<int>(rng() % 34) - 17;
        std::set<LogoRun> expected;
        for (const auto& [row, cols] : full)
            if (row + y >= 0 && row + y < 16 && cols.first + x >= 0 && cols.second + x < 30)
                expected.insert({row + y, {cols.first + x, cols.second + x}});
        ASSERT_EQ(runs_of(logo_at(30, 16, x, y)), expected) << x << "," << y;
    }
}

TEST(Digits, NothingIsWrittenOutsideTheImage) {
    std::mt19937 rng(5);
    const int edges[] = {INT_MIN, -40, -9, -1, 0, 1, 7, 9, 17, 21, 40, INT_MAX};
    auto v = [&] { return rng() % 3 ? static_cast<int>(rng() % 60) - 20 : edges[rng() % 12]; };
    std::string text = "0123456789x9";
    for (int i = 0; i < 3000; ++i) {
        const int w = static_cast<int>(rng() % 40) - 2, h = static_cast<int>(rng() % 40) - 2;
        qel_test::GuardedImage grey(w, h, 1), bgr(w, h, 3);
        QelSetNumberString2GryImg(grey.data(), w, h, v(), v(), v(), 9, &text[0]);
        QelSetNumberString2RGBImg(bgr.data(), w, h, v(), v(), v(), 1, 2, 3, &text[0]);
        QelSetNumberString20x16GryImg(grey.data(), w, h, v(), v(), v(), 1, 2, &text[0]);
        QelSetNumberString20x16RGBImg(bgr.data(), w, h, v(), v(), v(), 1, 2, 3, 4, 5, 6, &text[0]);
        QelSetPrivateLogo(grey.data(), w, h, false, v(), v());
        QelSetPrivateLogo(bgr.data(), w, h, true, v(), v());
        ASSERT_TRUE(grey.guards_intact() && bgr.guards_intact()) << w << "x" << h << ", round " << i;
    }
}

}  // namespace
