#include <qel.h>

#include "support/test_images.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <random>
#include <vector>

namespace {

using qel_test::Bytes;

// An int profile of n entries with kGuard sentinel entries on each side.
class Profile {
public:
    static constexpr int kGuard = 8;
    static constexpr int kSentinel = -777;
    explicit Profile(int n, int fill = kSentinel) : n_(n), v_(n + 2 * kGuard, kSentinel) {
        std::fill(v_.begin() + kGuard, v_.begin() + kGuard + n, fill);
    }
    int* data() { return v_.data() + kGuard; }
    int operator[](int i) const { return v_[kGuard + i]; }
    bool guards_intact() const {
        for (int i = 0; i < kGuard; ++i)
            if (v_[i] != kSentinel || v_[kGuard + n_ + i] != kSentinel) return false;
        return true;
    }

private:
    int n_;
    std::vector<int> v_;
};

// A grey canvas with the drawing helpers' view: pixel (x, y).
struct Canvas {
    int w, h;
    Bytes px;
    Canvas(int width, int height) : w(width), h(height), px(width * height, 0) {}
    unsigned char at(int x, int y) const { return px[y * w + x]; }
    // Number of painted pixels in column x (rows counted from the bottom must be contiguous).
    int column_bar(int x) const {
        int n = 0;
        while (n < h && at(x, h - 1 - n) != 0) ++n;
        return n;
    }
    int row_bar(int y) const {
        int n = 0;
        while (n < w && at(n, y) != 0) ++n;
        return n;
    }
    int painted() const { return static_cast<int>(px.size() - std::count(px.begin(), px.end(), 0)); }
};

std::vector<int> column_bars(const Canvas& c) {
    std::vector<int> bars;
    for (int x = 0; x < c.w; ++x) bars.push_back(c.column_bar(x));
    return bars;
}

std::vector<int> row_bars(const Canvas& c) {
    std::vector<int> bars;
    for (int y = 0; y < c.h; ++y) bars.push_back(c.row_bar(y));
    return bars;
}

// ---- profiles ----------------------------------------------------------------------------------

TEST(Projection, AllOnesImage) {
    Bytes img(4 * 3, 1);
    Profile px(4), py(3);
    QelGryImgPrjXY(img.data(), 4, 3, px.data(), py.data());
    for (int x = 0; x < 4; ++x) EXPECT_EQ(px[x], 3);
    for (int y = 0; y < 3; ++y) EXPECT_EQ(py[y], 4);
    EXPECT_TRUE(px.guards_intact());
    EXPECT_TRUE(py.guards_intact());
}

TEST(Projection, ProfilesEqualPlainSumsOverRandomImagesAndRectangles) {
    std::mt19937 rng(7);
    for (int w = 1; w <= 9; ++w)
        for (int h = 1; h <= 6; ++h) {
            Bytes img = qel_test::random_grey(w, h, w * 31 + h);
            for (auto& v : img)
                if (v < 80) v = 0;  // some zero pixels for the binary counts
            const int x0 = static_cast<int>(rng() % w), x1 = x0 + static_cast<int>(rng() % (w - x0));
            const int y0 = static_cast<int>(rng() % h), y1 = y0 + static_cast<int>(rng() % (h - y0));
            Profile ax(w), ay(h), rx(w), ry(h), bx(w, 5), by(h, 5);
            QelGryImgPrjXY(img.data(), w, h, ax.data(), ay.data());
            QelGryImgPrjXYInRect(img.data(), w, h, x0, x1, y0, y1, rx.data(), ry.data());
            QelBinImgPrjXYInRect(img.data(), w, h, x0, x1, y0, y1, bx.data(), by.data());
            for (int x = 0; x < w; ++x) {
                int all = 0, inRect = 0, count = 0;
                for (int y = 0; y < h; ++y) {
                    const int v = img[y * w + x];
                    all += v;
                    if (x >= x0 && x <= x1 && y >= y0 && y <= y1) {
                        inRect += v;
                        count += v != 0;
                    }
                }
                ASSERT_EQ(ax[x], all);
                ASSERT_EQ(rx[x], inRect);  // zero outside the rectangle's columns
                // Entries outside the rectangle are left as they were.
                ASSERT_EQ(bx[x], x >= x0 && x <= x1 ? count : 5);
            }
            for (int y = 0; y < h; ++y) {
                int all = 0, inRect = 0, count = 0;
                for (int x = 0; x < w; ++x) {
                    const int v = img[y * w + x];
                    all += v;
                    if (x >= x0 && x <= x1 && y >= y0 && y <= y1) {
                        inRect += v;
                        count += v != 0;
                    }
                }
                ASSERT_EQ(ay[y], all);
                ASSERT_EQ(ry[y], inRect);
                ASSERT_EQ(by[y], y >= y0 && y <= y1 ? count : 5);
            }
            for (const Profile* p : {&ax, &ay, &rx, &ry, &bx, &by}) ASSERT_TRUE(p->guards_intact());
        }
}

TEST(Projection, ColourProfilesPerChannelAndWeighted) {
    for (int w = 1; w <= 7; ++w) {
        const int h = 5;
        const Bytes rgb = qel_test::random_bgr(w, h, w);
        Profile r(w), g(w), b(w), weighted(w);
        QelRGBImgPrj2X(const_cast<unsigned char*>(rgb.data()), w, h, r.data(), g.data(), b.data());
        QelRGBImgPrj2X(const_cast<unsigned char*>(rgb.data()), w, h, weighted.data());
        for (int x = 0; x < w; ++x) {
            int s[3] = {0, 0, 0};
            for (int y = 0; y < h; ++y)
                for (int c = 0; c < 3; ++c) s[c] += rgb[(y * w + x) * 3 + c];
            ASSERT_EQ(b[x], s[0]);
            ASSERT_EQ(g[x], s[1]);
            ASSERT_EQ(r[x], s[2]);
            ASSERT_EQ(weighted[x], (s[0] + s[1] + 2 * s[2]) >> 2);
        }
        for (const Profile* p : {&r, &g, &b, &weighted}) ASSERT_TRUE(p->guards_intact());
    }
    Bytes red = {0, 0, 255};
    Profile one(1);
    QelRGBImgPrj2X(red.data(), 1, 1, one.data());
    EXPECT_EQ(one[0], 127);
}

// ---- bar charts --------------------------------------------------------------------------------

TEST(DrawPrj, ConstantProfileDrawsNothing) {
    Canvas c(5, 6);
    int prj[] = {40, 40, 40, 40, 40};
    QelDrawPrjX(c.px.data(), c.w, c.h, prj, 5, 255);
    QelDrawPrjY(c.px.data(), c.w, c.h, prj, 5, 255);
    EXPECT_EQ(c.painted(), 0);
}

TEST(DrawPrj, ColumnBarsScaleOnMinAndMaxAndStopShortOfRowZero) {
    Canvas c(3, 10);
    int prj[] = {0, 8, 4};  // scale (8 − 0 + 2) / 10 = 1
    QelDrawPrjX(c.px.data(), c.w, c.h, prj, 3, 0x1C8);  // low byte 0xC8 is drawn
    EXPECT_EQ(column_bars(c), (std::vector<int>{0, 8, 4}));
    EXPECT_EQ(c.at(1, 9), 0xC8);
    EXPECT_EQ(c.painted(), 12);
    Canvas tall(2, 10);
    int big[] = {0, 100};  // 100 / 10.2 + 0.5 gives 10: clipped to 9, row 0 untouched
    QelDrawPrjX(tall.px.data(), tall.w, tall.h, big, 2, 255);
    EXPECT_EQ(tall.column_bar(1), 9);
    EXPECT_EQ(tall.at(1, 0), 0);
}

TEST(DrawPrj, ColumnScaleUsesAllEntriesButDrawsOnlyTheImagesColumns) {
    Canvas c(2, 10);
    int prj[] = {0, 8, 98};  // the third entry sets the scale (100 / 10 = 10) though it is not drawn
    QelDrawPrjX(c.px.data(), c.w, c.h, prj, 3, 255);
    EXPECT_EQ(column_bars(c), (std::vector<int>{0, 1}));
    // Minimum fixed at 0: scale (8 + 2) / 10 = 1, bars are the values.
    Canvas m(2, 10);
    int raised[] = {5, 8};
    QelDrawPrjXMinV0(m.px.data(), m.w, m.h, raised, 2, 255);
    EXPECT_EQ(column_bars(m), (std::vector<int>{5, 8}));
    Canvas plain(2, 10);
    QelDrawPrjX(plain.px.data(), plain.w, plain.h, raised, 2, 255);  // scale 5 / 10: bars 0 and 6
    EXPECT_EQ(column_bars(plain), (std::vector<int>{0, 6}));
}

TEST(DrawPrj, ColumnRangeIsScaledOnItsOwnEntries) {
    Canvas c(4, 10);
    int prj[] = {1000, 0, 8, -500};
    QelDrawPrjX(c.px.data(), c.w, c.h, prj, 1, 2, 255);
    EXPECT_EQ(column_bars(c), (std::vector<int>{0, 0, 8, 0}));
    // A range running past the image draws only the image's columns.
    Canvas d(3, 10);
    int wide[] = {0, 0, 4, 8};
    QelDrawPrjX(d.px.data(), d.w, d.h, wide, 2, 3, 255);  // scale on 4 and 8: (4 + 2) / 10
    EXPECT_EQ(column_bars(d), (std::vector<int>{0, 0, 0}));
    EXPECT_EQ(d.painted(), 0);
}

TEST(DrawPrj, RowBarsCoverMinOfHeightAndNAndStopShortOfTheLastColumn) {
    Canvas c(10, 2);
    int prj[] = {0, 8, 1000};  // only two rows: the third entry neither scales nor draws
    QelDrawPrjY(c.px.data(), c.w, c.h, prj, 3, 255);
    EXPECT_EQ(row_bars(c), (std::vector<int>{0, 8}));
    Canvas wide(10, 2);
    int big[] = {0, 100};
    QelDrawPrjY(wide.px.data(), wide.w, wide.h, big, 2, 255);
    EXPECT_EQ(wide.row_bar(1), 9);
    EXPECT_EQ(wide.at(9, 1), 0);
    Canvas m(10, 2);
    int raised[] = {5, 8};
    QelDrawPrjYMinV0(m.px.data(), m.w, m.h, raised, 2, 255);
    EXPECT_EQ(row_bars(m), (std::vector<int>{5, 8}));
}

TEST(DrawPrj, RandomProfilesPaintOnlyBarsInsideTheImage) {
    for (unsigned seed = 0; seed < 40; ++seed) {
        std::mt19937 rng(seed);
        const int w = 1 + static_cast<int>(rng() % 12), h = 1 + static_cast<int>(rng() % 12);
        const int n = static_cast<int>(rng() % 16);
        std::vector<int> prj(n + 1);
        for (int& v : prj) v = static_cast<int>(rng() % 2001) - 1000;
        const size_t size = static_cast<size_t>(w * h);
        Bytes columns(size + 32, 0), rows(size + 32, 0);
        QelDrawPrjX(columns.data(), w, h, prj.data(), n, 255);
        QelDrawPrjXMinV0(columns.data(), w, h, prj.data(), n, 255);
        QelDrawPrjY(rows.data(), w, h, prj.data(), n, 255);
        QelDrawPrjYMinV0(rows.data(), w, h, prj.data(), n, 255);
        for (size_t i = size; i < size + 32; ++i) ASSERT_EQ(columns[i] | rows[i], 0);
        for (int x = 0; x < w; ++x) ASSERT_EQ(columns[x], 0) << "row 0 is never reached";
        for (int y = 0; y < h; ++y) ASSERT_EQ(rows[y * w + w - 1], 0) << "the last column is never reached";
        // Column bars cover at most min(n, width) columns, row bars min(n, height) rows.
        for (int y = 0; y < h; ++y)
            for (int x = std::min(n, w); x < w; ++x) ASSERT_EQ(columns[y * w + x], 0);
        for (int y = std::min(n, h); y < h; ++y)
            for (int x = 0; x < w; ++x) ASSERT_EQ(rows[y * w + x], 0);
    }
}

}  // namespace
