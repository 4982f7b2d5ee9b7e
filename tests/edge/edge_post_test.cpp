// Edge post-processing: gap joining, crossing and fragment removal, weak-gradient removal,
// threshold choice, strongest positions per row and column, and the local grey range.
#include <qel.h>

#include <gtest/gtest.h>

#include "draw/draw_test_helpers.h"
#include "support/test_images.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

namespace {

using Image = qel_test::Bytes;
using qel_test::GuardedImage;
using qel_test::random_grey;

// A w × h image of `background` with the listed pixels (x, y) set to value.
Image with_pixels(int w, int h, std::initializer_list<std::pair<int, int>> points, unsigned char value,
                  unsigned char background = 0) {
    Image img(static_cast<size_t>(w) * h, background);
    for (auto [x, y] : points) img[y * w + x] = value;
    return img;
}

Image connected(Image edge, Image candidates, int w, int h, int gap) {
    QelConnectEdge(edge.data(), candidates.data(), w, h, gap);
    return edge;
}

TEST(ConnectEdge, BridgesAGapBetweenTwoEndsWithinTheShortenedWindow) {
    const int w = 12, h = 5;
    const Image edge = with_pixels(w, h, {{1, 2}, {2, 2}, {3, 2}, {4, 2}, {6, 2}, {7, 2}, {8, 2}, {9, 2}}, 255);
    Image expected = edge;
    for (int x : {1, 4, 6, 9}) expected[2 * w + x] = 200;
    expected[2 * w + 5] = 100;
    EXPECT_EQ(connected(edge, with_pixels(w, h, {{5, 2}}, 1), w, h, 2), expected);
    // No candidate: only the ends are marked.
    expected[2 * w + 5] = 0;
    EXPECT_EQ(connected(edge, Image(w * h, 0), w, h, 2), expected);

    // r = 2: the window is columns x−2..x+1 and rows y−2..y+1.
    const Image cand = with_pixels(9, 9, {{4, 4}}, 1);
    EXPECT_EQ(connected(with_pixels(9, 9, {{2, 4}, {5, 4}}, 255), cand, 9, 9, 3)[40], 100);
    EXPECT_EQ(connected(with_pixels(9, 9, {{3, 4}, {6, 4}}, 255), cand, 9, 9, 3)[40], 0);
    EXPECT_EQ(connected(with_pixels(9, 9, {{4, 2}, {4, 5}}, 255), cand, 9, 9, 3)[40], 100);
    EXPECT_EQ(connected(with_pixels(9, 9, {{4, 3}, {4, 6}}, 255), cand, 9, 9, 3)[40], 0);
    // Two ends on the same side never bracket the candidate.
    EXPECT_EQ(connected(with_pixels(9, 9, {{2, 2}, {3, 5}}, 255), cand, 9, 9, 3)[40], 0);
    EXPECT_EQ(connected(with_pixels(9, 9, {{2, 2}, {5, 5}}, 255), cand, 9, 9, 3)[40], 100);
    EXPECT_EQ(connected(with_pixels(9, 9, {{2, 2}, {5, 5}}, 255), cand, 9, 9, -2)[40], 0);  // r = 0
}

TEST(ConnectEdge, UsesAtMostAThousandEndsTheLastSlotTakingTheLatest) {
    // Ends above-left of the candidate (50, 50), then B below-right, then L below-left. B pairs with
    // the block; L pairs with nothing. Past 1000 ends L replaces B in the last slot.
    const int w = 100, h = 100, gap = 80;  // r = 41
    for (int side : {20, 36}) {            // 400 or 1296 block pixels
        Image edge(w * h, 0), cand(w * h, 0);
        for (int y = 10; y < 10 + side; ++y)
            for (int x = 10; x < 10 + side; ++x) edge[y * w + x] = 200;
        edge[60 * w + 60] = 255;
        edge[70 * w + 40] = 255;
        cand[50 * w + 50] = 1;
        EXPECT_EQ(connected(edge, cand, w, h, gap)[50 * w + 50], side == 20 ? 100 : 0) << side;
    }
}

// The bridging rule written with the collected list and a test of every pair.
Image reference_connect(Image e, const Image& cand, int w, int h, int gap) {
    const Image before = e;
    for (int y = 1; y < h - 1; ++y)
        for (int x = 1; x < w - 1; ++x) {
            int n = 0;
            for (int k = 0; k < 9; ++k) n += k != 4 && before[(y + k / 3 - 1) * w + x + k % 3 - 1] != 0;
            if (before[y * w + x] != 0 && n < 2) e[y * w + x] = 200;
        }
    const Image ends = e;
    const int r = gap / 2 + 1;
    for (int y = r; y < h - r; ++y)
        for (int x = r; x < w - r; ++x) {
            if (cand[y * w + x] == 0 || e[y * w + x] != 0) continue;
            std::vector<std::pair<int, int>> p;
            for (int v = y - r; v < y + r; ++v)
                for (int u = x - r; u < x + r; ++u)
                    if (ends[v * w + u] == 200) p.emplace_back(u, v);
            for (size_t i = 0; i < p.size(); ++i)
                for (size_t j = i + 1; j < p.size(); ++j)
                    if (std::min(p[i].first, p[j].first) <= x && x <= std::max(p[i].first, p[j].first) &&
                        std::min(p[i].second, p[j].second) <= y && y <= std::max(p[i].second, p[j].second))
                        e[y * w + x] = 100;
        }
    return e;
}

TEST(ConnectEdge, AgreesWithEveryPairTestOnRandomSparseEdges) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        const int w = 15 + static_cast<int>(seed % 7), h = 11 + static_cast<int>(seed % 5), gap = static_cast<int>(seed % 9);
        Image edge = random_grey(w, h, seed), cand = random_grey(w, h, seed + 100);
        for (auto& p : edge) p = p < 40 ? 255 : 0;
        for (auto& p : cand) p = p < 128;
        ASSERT_EQ(connected(edge, cand, w, h, gap), reference_connect(edge, cand, w, h, gap)) << seed;
    }
}

TEST(EdgeDeleteNoiseAndCrossPoints, RemovesCrowdedPixelsAndEvery128) {
    // A plus of arms 3 long: the centre and the four pixels next to it have 4 neighbours each.
    const int w = 11;
    Image edge(w * w, 0);
    for (int i = 2; i <= 8; ++i) edge[5 * w + i] = edge[i * w + 5] = 255;
    edge[1 * w + 9] = 128;  // a lone 128 goes too
    edge[0] = edge[w * w - 1] = 255;  // frame
    Image expected(w * w, 0);
    for (int i : {2, 3, 8, 7}) expected[5 * w + i] = expected[i * w + 5] = 255;
    Image out = edge;
    QelEdgeDeleteNoiseAndCrossPoints(out.data(), w, w, 2);
    EXPECT_EQ(out, expected);
    // Allowing 4 neighbours keeps the crossing.
    out = edge;
    QelEdgeDeleteNoiseAndCrossPoints(out.data(), w, w, 4);
    EXPECT_EQ(out[5 * w + 5], 255);
    EXPECT_EQ(out[1 * w + 9], 0);
}

TEST(EdgeDeleteNoiseByLength, KeepsOnlyLongFragmentsAsTheirOuterBoundary) {
    const int w = 20, h = 10;
    Image edge(w * h, 0);
    for (int x = 2; x <= 11; ++x) edge[2 * w + x] = 255;   // 18 codes
    for (int x = 14; x <= 16; ++x) edge[2 * w + x] = 255;  // 4 codes
    for (int y = 4; y <= 7; ++y)
        for (int x = 3; x <= 6; ++x) edge[y * w + x] = 255;  // a 4 × 4 block: 12 codes, interior dropped
    edge[8 * w + 12] = 30;                                 // below 50: not an edge
    edge[7 * w + 17] = 200;  // only 255 starts a trace: kept in the edge image, not in dst
    Image expected(w * h, 0), out(w * h, 7), traced = edge;
    for (int x = 2; x <= 11; ++x) expected[2 * w + x] = 255;
    for (int y = 4; y <= 7; ++y)
        for (int x = 3; x <= 6; ++x) expected[y * w + x] = (y == 4 || y == 7 || x == 3 || x == 6) ? 255 : 0;
    QelEdgeDeleteNoiseByLength(traced.data(), w, h, 10, out.data());
    EXPECT_EQ(out, expected);
    EXPECT_EQ(traced[7 * w + 17], 255);  // the edge image is left binarised at 50
    EXPECT_EQ(traced[8 * w + 12], 0);
    traced = edge;
    QelEdgeDeleteNoiseByLength(traced.data(), w, h, 13, out.data());
    EXPECT_EQ(std::count(out.begin(), out.end(), 255), 10);
}

TEST(RemoveEdgePointsByGrd, ClearsInteriorEdgesBelowTheCentralDifferenceSum) {
    // Grey 10·x + 3·y: every interior gradient is 20 + 6 = 26.
    const int w = 6, h = 5;
    Image grey(w * h), edge(w * h, 255);
    for (int i = 0; i < w * h; ++i) grey[i] = static_cast<unsigned char>(10 * (i % w) + 3 * (i / w));
    Image kept = edge, cleared = edge;
    QelRemoveEdgePointsByGrd(grey.data(), kept.data(), w, h, 26);
    QelRemoveEdgePointsByGrd(grey.data(), cleared.data(), w, h, 27);
    EXPECT_EQ(kept, edge);
    for (int i = 0; i < w * h; ++i) {
        const bool frame = i % w == 0 || i / w == 0 || i % w == w - 1 || i / w == h - 1;
        EXPECT_EQ(cleared[i], frame ? 255 : 0) << i;
    }
}

TEST(GetThresholdByEdge, CountsTheWindingWalkPerModeWithinTheOpenRectangle) {
    const int w = 12, h = 10;
    // Edge pixel A at (4, 5), grey 100: the walk reads 140 at (row −3, column +1) and, last, 70
    // at (−1, −1); 0 and 255 sit on neighbours the walk never reads.
    Image grey(w * h, 100), edge(w * h, 0);
    grey[2 * w + 5] = 140;
    grey[4 * w + 3] = 70;
    grey[5 * w + 3] = 0;
    grey[6 * w + 5] = 255;
    edge[5 * w + 4] = 1;
    auto threshold = [&](int mode, int x0 = 0, int x1 = 11, int y0 = 0, int y1 = 9) {
        return QelGetThresholdByEdge(grey.data(), edge.data(), w, x0, x1, y0, y1, mode);
    };
    EXPECT_EQ(threshold(0), 70);   // bins 70..140, lowest first
    EXPECT_EQ(threshold(1), 70);   // 70..100
    EXPECT_EQ(threshold(2), 100);  // 100..140
    EXPECT_EQ(threshold(0, 4), 0);     // bounds are exclusive: nothing counted
    EXPECT_EQ(threshold(0, 0, 11, 5), 0);
    // A second edge pixel B at (9, 8), grey 140 over a 140 patch: bin 140 now holds 2 in modes 0, 2.
    for (int y = 5; y <= 8; ++y)
        for (int x = 8; x <= 11; ++x) grey[y * w + x] = 140;
    edge[8 * w + 9] = 1;
    EXPECT_EQ(threshold(0), 140);
    EXPECT_EQ(threshold(2), 140);
    EXPECT_EQ(threshold(1), 70);  // 70..100 and 140..140 do not meet
    // A walk leaving the top of the image reads only the rows inside it.
    EXPECT_EQ(QelGetThresholdByEdge(grey.data(), with_pixels(w, h, {{4, 1}}, 1).data(), w, 0, 11, -5, 9, 0), 100);
}

TEST(ExtractTwoEdgePointPerCol, FirstAndSecondStrongestRowsApartByTheGap) {
    const int w = 5, h = 13;
    Image grd(w * h, 0);
    const std::pair<int, int> column1[] = {{2, 50}, {4, 90}, {5, 80}, {9, 60}, {0, 255}, {12, 255}};
    for (auto [y, v] : column1) grd[y * w + 1] = static_cast<unsigned char>(v);
    grd[3 * w + 3] = grd[9 * w + 3] = 40;  // a tie: the first row wins
    std::vector<int> first(w, -9), second(w, -9);
    auto run = [&](int minGap, int x0, int x1) {
        QelExtractTwoEdgePointPerCol(grd.data(), w, minGap, x0, x1, 0, 12, first.data(), second.data());
    };
    run(3, 1, 3);
    EXPECT_EQ(first, std::vector<int>({0, 4, 0, 3, 0}));  // rows 0 and 12 lie outside; column 2 is all 0
    EXPECT_EQ(second, std::vector<int>({0, 9, 0, 9, 0}));
    run(1, 1, 1);
    EXPECT_EQ(second[1], 5);
    run(20, 1, 3);  // nothing far enough: q = p
    EXPECT_EQ(first, std::vector<int>({0, 4, 0, 3, 0}));
    EXPECT_EQ(second, std::vector<int>({0, 4, 0, 3, 0}));
}

TEST(ExtractEdgePointInRect, StrongestAndStrongestBeyondTenPerRowAndColumn) {
    const int w = 45, h = 6;
    Image grd(w * h, 0);
    const int peaks[][3] = {{0, 5, 100}, {0, 12, 90}, {0, 30, 95},   // row 0: 5, then 30 beyond 5 ± 10
                            {1, 20, 100}, {1, 25, 99}, {1, 40, 50},  // row 1: 20, then 40
                            {2, 8, 70}, {2, 30, 70}, {2, 40, 70},    // row 2: ties, b from the right
                            {3, 30, 70}, {3, 8, 60},                 // row 3: the second lies left
                            {4, 8, 70}, {4, 17, 60},                 // row 4: nothing beyond ± 10
                            {5, 30, 80}, {5, 20, 75}, {5, 40, 70}, {5, 19, 50}};  // row 5: 10 away is near, 11 not
    for (auto& p : peaks) grd[p[0] * w + p[1]] = static_cast<unsigned char>(p[2]);
    std::vector<int> rf(h, -9), rs(h, -9), cf(w, -9), cs(w, -9);
    QelExtractEdgePointInRect(grd.data(), w, 0, 0, w - 1, h - 1, rf.data(), rs.data(), cf.data(), cs.data());
    EXPECT_EQ(rf, std::vector<int>({5, 20, 8, 8, 8, 19}));
    EXPECT_EQ(rs, std::vector<int>({30, 40, 40, 30, 8, 30}));
    // Columns: 30 holds rows 0 (95), 2, 3 (70) and 5 (80), all within ±10 rows of 0; column 1 is empty.
    EXPECT_EQ(std::make_pair(cf[30], cs[30]), std::make_pair(0, 0));
    EXPECT_EQ(std::make_pair(cf[1], cs[1]), std::make_pair(-1, -1));
}

TEST(ExtractEdgePointInCircle, ScansTheRoundedChordsOfTheEllipse) {
    // Centre (10, 10), rx 6, ry 3. Row 12: d = √5·2 = 4.47, columns 6..14. Row 10: columns 4..16.
    // Column 13: d = √27·0.5 = 2.60, rows 7..13. Column 16: d = 0, row 10 only.
    const int w = 21, h = 21;
    Image grd(w * h, 0);
    grd[12 * w + 5] = 200;   // outside row 12's chord, inside column 5's (rows 8..12)
    grd[12 * w + 6] = 50;
    grd[10 * w + 4] = 80;
    grd[10 * w + 16] = 90;   // row 10: 4 and 16 are 12 apart
    grd[6 * w + 13] = 255;   // outside column 13's chord
    grd[13 * w + 13] = 60;
    grd[9 * w + 16] = 255;   // column 16 reads row 10 only
    std::vector<int> rf(h, -9), rs(h, -9), cf(w, -9), cs(w, -9);
    QelExtractEdgePointInCircle(grd.data(), w, 10, 10, 6, 3, rf.data(), rs.data(), cf.data(), cs.data());
    EXPECT_EQ(std::make_pair(rf[12], rs[12]), std::make_pair(6, 6));
    EXPECT_EQ(std::make_pair(rf[10], rs[10]), std::make_pair(4, 16));
    EXPECT_EQ(std::make_pair(cf[13], cs[13]), std::make_pair(13, 13));
    EXPECT_EQ(std::make_pair(cf[16], cs[16]), std::make_pair(10, 10));
    EXPECT_EQ(std::make_pair(cf[5], cs[5]), std::make_pair(12, 12));
    EXPECT_EQ(std::make_pair(rf[6], rs[6]), std::make_pair(-9, -9));  // rows outside the ellipse untouched
    EXPECT_EQ(std::make_pair(cf[3], cs[3]), std::make_pair(-9, -9));
    // ry = 0 leaves row 10 without a chord.
    QelExtractEdgePointInCircle(grd.data(), w, 10, 10, 6, 0, rf.data(), rs.data(), cf.data(), cs.data());
    EXPECT_EQ(std::make_pair(rf[10], rs[10]), std::make_pair(-1, -1));
    EXPECT_EQ(std::make_pair(cf[16], cs[16]), std::make_pair(10, 10));
}

TEST(EdgeTripeDetection, RangesOverPushedAndOneSidedWindowsWithTheirHistogram) {
    std::vector<int> hist(256, -1);
    // One row: 10 50 20 90 30 40, halfX 1. Column 4 is one-sided (2..4 gives 70, centred would give 60).
    Image row = {10, 50, 20, 90, 30, 40}, dst(6, 7);
    EXPECT_TRUE(QelEdgeTripeDetection(row.data(), 6, 1, 1, 1, dst.data(), hist.data()));
    EXPECT_EQ(dst, Image({40, 40, 70, 70, 70, 60}));
    EXPECT_EQ(hist[40] + hist[70] + hist[60], 6);
    EXPECT_EQ(hist[70], 3);
    // The same values down a column, halfY 1: windows pushed down at the top, clipped at the bottom.
    Image col(3 * 6), dcol(3 * 6);
    for (int i = 0; i < 18; ++i) col[i] = row[i / 3];
    QelEdgeTripeDetection(col.data(), 3, 6, 0, 1, dcol.data(), hist.data());
    for (int y = 0; y < 6; ++y) EXPECT_EQ(dcol[y * 3 + 1], Image({40, 40, 70, 70, 60, 10})[y]) << y;
    EXPECT_EQ(std::accumulate(hist.begin(), hist.end(), 0), 18);
    // Width 3 with halfX 2: both one-sided bands cover the row, five values counted a row.
    GuardedImage out(3, 4, 1);
    const Image g = random_grey(3, 4, 8);
    QelEdgeTripeDetection(Image(g).data(), 3, 4, 2, 1, out.data(), hist.data());
    EXPECT_TRUE(out.guards_intact());
    EXPECT_EQ(std::accumulate(hist.begin(), hist.end(), 0), 20);
    // Too wide: refused, nothing written.
    Image wide(4097, 9);
    std::vector<int> untouched(256, -1);
    EXPECT_FALSE(QelEdgeTripeDetection(wide.data(), 4097, 1, 1, 1, wide.data(), untouched.data()));
    EXPECT_EQ(untouched, std::vector<int>(256, -1));
    EXPECT_TRUE(qel_test::all_equal(wide, 9));
}

TEST(EdgePost, RandomImagesStayInTheirBuffersAndKeepTheirValueSets) {
    for (unsigned seed = 1; seed <= 10; ++seed) {
        const int w = 2 + static_cast<int>(seed * 7 % 19), h = 2 + static_cast<int>(seed * 3 % 17);
        const Image grey = random_grey(w, h, seed);
        GuardedImage edge(w, h, 1), cross(w, h, 1), dst(w, h, 1), range(w, h, 1), cand(w, h, 1, 1);
        const Image e = random_grey(w, h, seed + 50);
        for (int i = 0; i < w * h; ++i) edge.data()[i] = cross.data()[i] = e[i] < 90 ? 255 : 0;
        QelConnectEdge(edge.data(), cand.data(), w, h, static_cast<int>(seed % 7));
        QelEdgeDeleteNoiseAndCrossPoints(cross.data(), w, h, 2);
        QelEdgeDeleteNoiseByLength(cross.data(), w, h, 4, dst.data());
        std::vector<int> hist(256);
        QelEdgeTripeDetection(Image(grey).data(), w, h, static_cast<int>(seed % 4), static_cast<int>(seed % 3),
                              range.data(), hist.data());
        EXPECT_TRUE(edge.guards_intact() && cross.guards_intact() && dst.guards_intact() && range.guards_intact());
        // Rectangles and ellipses reaching past the top, left and right are clipped (exact-size
        // arrays, so a sanitizer build sees any stray index).
        Image g = grey;
        std::vector<int> rf(h), rs(h), cf(w), cs(w);
        const int t = QelGetThresholdByEdge(g.data(), edge.data(), w, -3, w + 3, -4, h - 1, static_cast<int>(seed % 3));
        EXPECT_TRUE(t >= 0 && t <= 255);
        QelExtractTwoEdgePointPerCol(g.data(), w, 2, -3, w + 3, -4, h - 1, cf.data(), cs.data());
        QelExtractEdgePointInRect(g.data(), w, -3, -4, w + 3, h - 1, rf.data(), rs.data(), cf.data(), cs.data());
        QelExtractEdgePointInCircle(g.data(), w, w / 2, h - 1 - h / 2, w, h / 2, rf.data(), rs.data(), cf.data(),
                                    cs.data());
        for (int x = 0; x < w; ++x) ASSERT_TRUE(cf[x] <= cs[x] && cf[x] >= -1 && cs[x] < h);
        for (int i = 0; i < w * h; ++i) {
            ASSERT_TRUE(edge.data()[i] == 0 || edge.data()[i] == 100 || edge.data()[i] == 200 || edge.data()[i] == 255);
            ASSERT_TRUE(dst.data()[i] == 0 || dst.data()[i] == 255);
            ASSERT_TRUE(cross.data()[i] == 0 || cross.data()[i] == 255);
        }
    }
}

}  // namespace
