// Run-length regions: RLX / RLY records collected in a rectangle, grown along stripes, drawn, and
// labelled into regions; capacities are never overrun.
#include <qel.h>

#include <gtest/gtest.h>

#include "support/test_images.h"

#include <algorithm>
#include <array>
#include <random>
#include <set>
#include <vector>

namespace {

using qel_test::Bytes;
using Record = std::array<int, 4>;  // line, begin, end, extra
using Records = std::vector<Record>;
constexpr int kUnset = -7;  // what the caller's records hold before a call

struct Image {
    int w, h;
    Bytes px;
    Image(int width, int height) : w(width), h(height), px(static_cast<size_t>(width * height), 0) {}
    Image& fill(int x1, int x2, int y1, int y2) {
        for (int y = y1; y <= y2; ++y)
            for (int x = x1; x <= x2; ++x) px[static_cast<size_t>(y * w + x)] = 255;
        return *this;
    }
    Image transposed() const {
        Image t(h, w);
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) t.px[static_cast<size_t>(x * h + y)] = px[static_cast<size_t>(y * w + x)];
        return t;
    }
};

Record to_run(const RLX& r) { return {r.row, r.xBegin, r.xEnd, r.extra}; }
Record to_run(const RLY& r) { return {r.col, r.yBegin, r.yEnd, r.extra}; }

// Calls f(records, capacity) on exactly `capacity` records plus 3 guards, all preset to kUnset;
// checks that no record past the first `written` (f's result, or `count` when given) changed, and
// returns the written ones. *result gets f's result.
template <class Rec, class F>
Records call(int capacity, F f, int* result = nullptr, int count = -1) {
    std::vector<Rec> buf(static_cast<size_t>(std::max(capacity, 0)) + 3, Rec{kUnset, kUnset, kUnset, kUnset});
    const int r = f(buf.data(), capacity);
    if (result != nullptr) *result = r;
    const int n = count >= 0 ? count : r;
    EXPECT_LE(n, std::max(capacity, 0));
    Records out;
    for (size_t i = 0; i < buf.size(); ++i) {
        const Record run = to_run(buf[i]);
        if (static_cast<int>(i) < n)
            out.push_back(run);
        else
            EXPECT_EQ(run, Record({kUnset, kUnset, kUnset, kUnset})) << "record " << i;
    }
    return out;
}

// A stripe 5 columns wide (10..14) on rows 1..7 of a 24 × 10 image, widened to 8..17 on row 8.
Image stripe() { return Image(24, 10).fill(10, 14, 1, 7).fill(8, 17, 8, 8); }

TEST(RunLengthRegions, GetTakesRunsCrossingTheRectangleWhole) {
    Image img = Image(12, 3).fill(0, 3, 0, 0).fill(5, 5, 0, 0).fill(7, 11, 0, 0).fill(2, 8, 2, 2);
    // Columns 3..7 reach out to 0 on the left and 11 on the right; row 1 is empty.
    const Records runs = call<RLX>(10, [&](RLX* out, int cap) {
        return QelRLXRegionsGet(img.px.data(), 12, 3, 3, 7, 0, 2, out, cap);
    });
    EXPECT_EQ(runs, Records({{0, 0, 3, kUnset}, {0, 5, 5, kUnset}, {0, 7, 11, kUnset}, {2, 2, 8, kUnset}}));
    // A rectangle reaching outside the image is clipped to it.
    EXPECT_EQ(call<RLX>(10, [&](RLX* out, int cap) { return QelRLXRegionsGet(img.px.data(), 12, 3, -5, 99, -2, 9, out, cap); }),
              runs);
    for (int cap : {0, 2})  // stops at the capacity
        EXPECT_EQ(call<RLX>(cap, [&](RLX* out, int c) { return QelRLXRegionsGet(img.px.data(), 12, 3, 3, 7, 0, 2, out, c); })
                      .size(),
                  static_cast<size_t>(cap));
}

TEST(RunLengthRegions, GrowthFollowsTheStripeUntilItsWidthJumps) {
    Image img = stripe();
    auto grow = [&](auto fn, int start, int cap) {
        return call<RLX>(cap, [&](RLX* out, int c) { return fn(img.px.data(), 24, 10, start, 10, 14, out, c); });
    };
    // Records start at the black pixel left of the run and end at its last pixel; the width 6
    // (9..15) jumps to 11 on row 8 (2 × 5 >= 6), which stops the growth.
    Records down;
    for (int y = 3; y <= 7; ++y) down.push_back({y, 9, 14, kUnset});
    EXPECT_EQ(grow(QelRLXRegionsGrowByYInc, 3, 20), down);
    EXPECT_EQ(grow(QelRLXRegionsGrowByYInc, 3, 2), Records(down.begin(), down.begin() + 2));
    // Upwards: rows 5..1; row 0 is never examined, even when the stripe goes on there.
    img.fill(10, 14, 0, 0);
    const Records up = grow(QelRLXRegionsGrowByYDec, 5, 20);
    EXPECT_EQ(up.size(), 5u);
    EXPECT_EQ(up.back(), Record({1, 9, 14, kUnset}));
    EXPECT_TRUE(grow(QelRLXRegionsGrowByYDec, 0, 20).empty());
    // A run touching column 0 starts its record at 0. Widths 10 → 14 go on (2 × 4 < 10), a black
    // centre stops; 10 → 15 stops at once (2 × 5 >= 10).
    auto from_edge = [](Image im) {
        return call<RLX>(9, [&](RLX* out, int c) { return QelRLXRegionsGrowByYInc(im.px.data(), im.w, im.h, 0, 0, 9, out, c); });
    };
    EXPECT_EQ(from_edge(Image(30, 3).fill(0, 9, 0, 0).fill(0, 13, 1, 1)),
              Records({{0, 0, 9, kUnset}, {1, 0, 13, kUnset}}));
    EXPECT_EQ(from_edge(Image(30, 3).fill(0, 9, 0, 0).fill(0, 14, 1, 2)), Records({{0, 0, 9, kUnset}}));
}

TEST(RunLengthRegions, GetAndGrowExtendsTheRectangleBothWays) {
    Image img = stripe();
    const Records all = call<RLX>(30, [&](RLX* out, int c) {
        return QelRLXReginsGetAndGrow(img.px.data(), 24, 10, 12, 12, 3, 5, out, c);
    });
    // Rows 3..5 found, then 5..7 grown down (repeating 5), then 3..1 grown up (repeating 3).
    Records expect = {{3, 10, 14, kUnset}, {4, 10, 14, kUnset}, {5, 10, 14, kUnset}};
    for (int y : {5, 6, 7, 3, 2, 1}) expect.push_back({y, 9, 14, kUnset});
    EXPECT_EQ(all, expect);
    // A single record sits at index 0, which is never grown downwards.
    const Records one = call<RLX>(30, [&](RLX* out, int c) {
        return QelRLXReginsGetAndGrow(img.px.data(), 24, 10, 12, 12, 4, 4, out, c);
    });
    EXPECT_EQ(one.size(), 1u + 4u);  // row 4, then 4..1 upwards
    for (int cap = 0; cap <= 9; ++cap)
        EXPECT_EQ(call<RLX>(cap, [&](RLX* out, int c) {
                      return QelRLXReginsGetAndGrow(img.px.data(), 24, 10, 12, 12, 3, 5, out, c);
                  }),
                  Records(all.begin(), all.begin() + cap));
}

TEST(RunLengthRegions, ColumnTwinsMatchRowFormsOnTheTransposedImage) {
    for (unsigned seed = 1; seed <= 6; ++seed) {
        Image img(17, 13);
        const Bytes r = qel_test::random_grey(17, 13, seed);
        for (size_t i = 0; i < r.size(); ++i) img.px[i] = r[i] < 170 ? 255 : 0;
        img.fill(5, 9, 0, 12);  // a stripe for the growth to follow
        Image t = img.transposed();
        for (int cap : {3, 40}) {
            auto rows = [&](auto f, auto... a) {
                return call<RLX>(cap, [&](RLX* out, int c) { return f(img.px.data(), 17, 13, a..., out, c); });
            };
            auto cols = [&](auto f, auto... a) {
                return call<RLY>(cap, [&](RLY* out, int c) { return f(t.px.data(), 13, 17, a..., out, c); });
            };
            EXPECT_EQ(rows(QelRLXRegionsGet, 4, 11, 2, 9), cols(QelRLYRegionsGet, 2, 9, 4, 11));
            EXPECT_EQ(rows(QelRLXReginsGetAndGrow, 7, 7, 3, 8), cols(QelRLYReginsGetAndGrow, 3, 8, 7, 7));
            EXPECT_EQ(rows(QelRLXRegionsGrowByYInc, 2, 5, 9), cols(QelRLYRegionsGrowByXInc, 2, 5, 9));
            EXPECT_EQ(rows(QelRLXRegionsGrowByYDec, 11, 5, 9), cols(QelRLYRegionsGrowByXDec, 11, 5, 9));
        }
    }
}

TEST(RunLengthRegions, DrawWritesEachRecordClippedToTheImage) {
    Image img(6, 3), col(3, 6);
    RLX rx[] = {{0, -2, 1, 0}, {2, 4, 9, 0}, {5, 0, 5, 0}};  // the last row lies outside
    QelDrawRLXRegions(img.px.data(), 6, 3, rx, 3, 300);    // stored as 300 & 255
    EXPECT_EQ(img.px, Bytes({44, 44, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 44, 44}));
    RLY ry[] = {{0, -2, 1, 0}, {2, 4, 9, 0}, {5, 0, 5, 0}};
    QelDrawRLYRegions(col.px.data(), 3, 6, ry, 3, 300);
    EXPECT_EQ(col.transposed().px, img.px);
}

TEST(RunLengthRegions, HostileArgumentsStayInsideTheImageAndTheRecords) {
    // Record arrays of exactly the capacity and images of exactly their size, so that the address
    // sanitizer sees any overrun; rectangles, start lines and bounds reach far outside the image.
    std::mt19937 rng(11);
    auto any = [&](int lo, int hi) { return lo + static_cast<int>(rng() % static_cast<unsigned>(hi - lo + 1)); };
    for (int k = 0; k < 300; ++k) {
        const int w = any(1, 9), h = any(1, 9), cap = any(0, 12);
        Bytes img = qel_test::random_grey(w, h, static_cast<unsigned>(k));
        for (auto& p : img) p = p < 180 ? 255 : 0;
        std::vector<RLX> rx(static_cast<size_t>(cap));
        std::vector<RLY> ry(static_cast<size_t>(cap));
        const int a = any(-20, 20), b = any(-20, 20), c = any(-20, 20), d = any(-20, 20);
        for (int n : {QelRLXRegionsGet(img.data(), w, h, a, b, c, d, rx.data(), cap),
                      QelRLYRegionsGet(img.data(), w, h, a, b, c, d, ry.data(), cap),
                      QelRLXReginsGetAndGrow(img.data(), w, h, a, b, c, d, rx.data(), cap),
                      QelRLYReginsGetAndGrow(img.data(), w, h, a, b, c, d, ry.data(), cap),
                      QelRLXRegionsGrowByYInc(img.data(), w, h, a, b, c, rx.data(), cap),
                      QelRLXRegionsGrowByYDec(img.data(), w, h, a, b, c, rx.data(), cap),
                      QelRLYRegionsGrowByXInc(img.data(), w, h, a, b, c, ry.data(), cap),
                      QelRLYRegionsGrowByXDec(img.data(), w, h, a, b, c, ry.data(), cap)})
            EXPECT_TRUE(n >= 0 && n <= cap) << n;
        const int regions = QelRLXRegionsWithID(img.data(), w, h, any(-2, 3), any(-2, 3), rx.data(), cap);
        EXPECT_TRUE(regions >= 0 && regions <= cap) << regions;
        RLX bad[] = {{a, b, c, 0}, {d, -99, 99, 0}};
        RLY badY[] = {{a, b, c, 0}, {d, -99, 99, 0}};
        QelDrawRLXRegions(img.data(), w, h, bad, 2, 1);
        QelDrawRLYRegions(img.data(), w, h, badY, 2, 1);
    }
}

// ---- labelling ---------------------------------------------------------------------------------

// The labelling as first described: overlap by QelLineOverlapLen with every previous-row record,
// merges renumbering every record so far, numbers from a flag table, compaction at the end.
int with_id_reference(const Image& img, int top, int bottom, Records& out, int capacity) {
    std::vector<bool> used(1024, false);
    auto compact = [&] {
        int i = 0;
        for (; i < 1024; ++i) {
            if (used[static_cast<size_t>(i)]) continue;
            int j = i + 1;
            while (j < 1024 && !used[static_cast<size_t>(j)]) ++j;
            if (j == 1024) break;
            for (Record& r : out)
                if (r[3] == j) r[3] = i;
            used[static_cast<size_t>(i)] = true, used[static_cast<size_t>(j)] = false;
        }
        return i;
    };
    size_t prevBegin = 0, prevEnd = 0;
    for (int y = 0; y < img.h; ++y) {
        const int t = img.h > 1 ? (bottom - top) * y / (img.h - 1) + top : top;
        const size_t rowBegin = out.size();
        for (int x = 0; x < img.w;) {
            if (img.px[static_cast<size_t>(y * img.w + x)] == 0) {
                ++x;
                continue;
            }
            const int s = x;
            while (x < img.w && img.px[static_cast<size_t>(y * img.w + x)] != 0) ++x;
            if (x - s < t) continue;
            int number = -1;
            for (size_t k = prevBegin; k < prevEnd; ++k) {
                if (QelLineOverlapLen(s, x - 1, out[k][1], out[k][2]) == 0) continue;
                const int other = out[k][3];
                if (number < 0) {
                    number = other;
                } else if (other != number) {
                    for (Record& r : out)
                        if (r[3] == other) r[3] = number;
                    used[static_cast<size_t>(other)] = false;
                }
            }
            if (number < 0) {
                number = static_cast<int>(std::find(used.begin(), used.end(), false) - used.begin());
                if (number == 1024) return static_cast<int>(out.size());
                used[static_cast<size_t>(number)] = true;
            }
            out.push_back({y, s, x - 1, number});
            if (static_cast<int>(out.size()) == capacity) return compact();
        }
        prevBegin = rowBegin, prevEnd = out.size();
    }
    return compact();
}

Records with_id(const Image& img, int top, int bottom, int capacity, int* result) {
    Records expect;
    const int r = with_id_reference(img, top, bottom, expect, capacity);
    const Records got = call<RLX>(
        capacity, [&](RLX* out, int c) { return QelRLXRegionsWithID(Bytes(img.px).data(), img.w, img.h, top, bottom, out, c); },
        result, static_cast<int>(expect.size()));
    EXPECT_EQ(*result, r);
    EXPECT_EQ(got, expect);
    return got;
}

TEST(RunLengthRegions, LabelsMergeTheArmsOfAUAndCompactTheNumbers) {
    // Row 0 numbers the arms A (0) and B (1) of a U and a bar D (2); the U's base on row 4 merges
    // B into A and frees 1, which compaction gives to D.
    Image u = Image(20, 8).fill(0, 1, 0, 4).fill(4, 5, 0, 4).fill(0, 5, 4, 4).fill(9, 10, 0, 7);
    int regions = 0;
    for (const Record& r : with_id(u, 1, 1, 100, &regions)) EXPECT_EQ(r[3], r[1] < 9 ? 0 : 1) << r[0];
    EXPECT_EQ(regions, 2);
    // A blob C appearing after the merge takes the freed 1 and D keeps 2.
    Image c = u;
    c.fill(14, 16, 6, 7);
    for (const Record& r : with_id(c, 1, 1, 100, &regions)) EXPECT_EQ(r[3], r[1] < 9 ? 0 : r[1] < 14 ? 2 : 1) << r[0];
    EXPECT_EQ(regions, 3);
    // Minimum lengths y + 1 on row y: the arms and D keep rows 0, 1 only, C none, and the base on
    // row 4 (length 6) no longer touches a kept run above, so it is a fourth region.
    with_id(c, 1, 8, 100, &regions);
    EXPECT_EQ(regions, 4);
}

TEST(RunLengthRegions, LabelsOnRandomImagesAgreeWithThePlainLabellingAtEveryCapacity) {
    for (unsigned seed = 1; seed <= 8; ++seed) {
        Image img(23, 19);
        const Bytes r = qel_test::random_grey(23, 19, seed);
        for (size_t i = 0; i < r.size(); ++i) img.px[i] = r[i] < 120 + 10 * seed ? 255 : 0;
        int regions = 0, cut = 0;
        const Records all = with_id(img, 1, 1, 1000, &regions);
        // Numbers run 0..regions−1 without gaps, and runs touching on neighbouring rows share one.
        std::set<int> numbers;
        for (const Record& up : all) {
            numbers.insert(up[3]);
            for (const Record& down : all) {
                if (down[0] == up[0] + 1 && QelLineOverlapLen(up[1], up[2], down[1], down[2]) != 0) {
                    EXPECT_EQ(up[3], down[3]);
                }
            }
        }
        EXPECT_EQ(static_cast<int>(numbers.size()), regions);
        EXPECT_EQ(*numbers.rbegin(), regions - 1);
        for (int cap : {1, 17, static_cast<int>(all.size()) - 1}) with_id(img, 2, 5, cap, &cut);
        EXPECT_TRUE(call<RLX>(0, [&](RLX* out, int c) { return QelRLXRegionsWithID(img.px.data(), 23, 19, 1, 1, out, c); },
                              &cut).empty());
        EXPECT_EQ(cut, 0);
    }
}

TEST(RunLengthRegions, LabelsReturnTheRecordCountWhenNumbersRunOut) {
    // Row 0: 1000 single pixels; row 1: the same 1000 (keeping their numbers) and 30 more to the
    // right, of which only 24 find a free number.
    Image img(2 * 1030, 2);
    for (int i = 0; i < 1030; ++i) {
        if (i < 1000) img.fill(2 * i, 2 * i, 0, 0);
        img.fill(2 * i, 2 * i, 1, 1);
    }
    int result = 0;
    with_id(img, 1, 1, 4000, &result);
    EXPECT_EQ(result, 1000 + 1000 + 24);
    Image full(2 * 1024, 1);
    for (int i = 0; i < 1024; ++i) full.fill(2 * i, 2 * i, 0, 0);
    with_id(full, 1, 1, 4000, &result);
    EXPECT_EQ(result, 1024);  // every number in use
}

}  // namespace
