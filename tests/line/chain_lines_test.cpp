#include <qel.h>

#include "support/test_images.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <random>
#include <tuple>
#include <type_traits>
#include <vector>

namespace {

using qel_test::Bytes;

struct Piece {
    std::vector<int> xs, ys;
};

// What a run hands out, copied: the pieces from the cursor on, and the segments when there are any.
struct Found {
    int count = 0;
    std::vector<Piece> pieces;
    std::vector<OVLA_LINE_SEGMENT> segments;
    bool hasLines = false;
};

Found collect(int count) {
    Found f;
    f.count = count;
    int *xs = nullptr, *ys = nullptr, n = 0;
    while (QelImgChainLines_GetNxtCodeLine(&xs, &ys, &n)) f.pieces.push_back({{xs, xs + n}, {ys, ys + n}});
    const OVLA_LINE_SEGMENT* s = QelImgChainLines_GetLines();
    f.hasLines = s != nullptr;
    if (s != nullptr) f.segments.assign(s, s + count);
    return f;
}

Found bin_run(Bytes& img, int w, int h, bool fit) { return collect(QelImgChainLines_DoBinImg(img.data(), w, h, fit)); }

Bytes filled_rect(int w, int h, int x1, int x2, int y1, int y2, int value = 255, int background = 0) {
    Bytes img(static_cast<size_t>(w) * h, static_cast<unsigned char>(background));
    QelFillGryRect(img.data(), w, h, x1, x2, y1, y2, value);
    return img;
}

Bytes pixels_of(const std::vector<Piece>& pieces, int w, size_t size, unsigned char value) {
    Bytes out(size, 0);
    for (const Piece& p : pieces)
        for (size_t i = 0; i < p.xs.size(); ++i) out[p.ys[i] * w + p.xs[i]] = value;
    return out;
}

double distance(const OVLA_LINE_SEGMENT& s, double x, double y) {
    return std::fabs(s.a * x + s.b * y + s.c) / std::sqrt(s.a * s.a + s.b * s.b);
}

// Both ends within one pixel of (ax, ay) and (bx, by), in either order.
bool ends_at(const OVLA_LINE_SEGMENT& s, int ax, int ay, int bx, int by) {
    auto near = [](int x, int y, int px, int py) { return std::abs(x - px) <= 1 && std::abs(y - py) <= 1; };
    return (near(s.x1, s.y1, ax, ay) && near(s.x2, s.y2, bx, by)) ||
           (near(s.x1, s.y1, bx, by) && near(s.x2, s.y2, ax, ay));
}

// The segments of the 100 × 80 rectangle 20..79 × 15..59 are its sides, walked down the left first.
void expect_rectangle_sides(const Found& f) {
    ASSERT_EQ(f.count, 4);
    EXPECT_TRUE(ends_at(f.segments[0], 20, 15, 20, 59));
    EXPECT_TRUE(ends_at(f.segments[1], 20, 59, 79, 59));
    EXPECT_TRUE(ends_at(f.segments[2], 79, 59, 79, 15));
    EXPECT_TRUE(ends_at(f.segments[3], 79, 15, 20, 15));
}

// ---- state rules: each test runs in a process of its own, so this one meets a new finder ----------

TEST(ImgChainLinesState, CallsBeforeInitializeReturnTheirFailureValues) {
    Bytes img = filled_rect(40, 30, 5, 30, 5, 20);
    EXPECT_EQ(QelImgChainLines_DoBinImg(img.data(), 40, 30, true), 0);
    EXPECT_EQ(QelImgChainLines_DoGryImg(img.data(), 40, 30, false), 0);
    EXPECT_EQ(QelImgChainLines_GetLines(), nullptr);
    int *xs = nullptr, *ys = nullptr, n = -1;
    EXPECT_FALSE(QelImgChainLines_GetNxtCodeLine(&xs, &ys, &n));
    EXPECT_EQ(n, -1);
    Bytes out(6 * img.size(), 7);
    EXPECT_EQ(QelImgChainLines_Debug(out.data()), 0);
    EXPECT_TRUE(qel_test::all_equal(out, 7)) << "nothing written";
    EXPECT_FALSE(QelImgChainLines_Initialize(0, 30, 0.9, 1.5, 10, 20, 10)) << "still no image buffer";
    EXPECT_EQ(QelImgChainLines_DoBinImg(img.data(), 40, 30, true), 0);
}

TEST(ImgChainLinesState, BuffersOnlyGrowAndLargerImagesAreRefused) {
    Bytes big = filled_rect(60, 50, 10, 49, 10, 39), tall = filled_rect(50, 60, 10, 39, 10, 49);
    ASSERT_TRUE(QelImgChainLines_Initialize(60, 50, 0.9, 1.5, 10, 20, 10));
    EXPECT_EQ(QelImgChainLines_DoBinImg(big.data(), 60, 50, true), 4);
    const OVLA_LINE_SEGMENT* lines = QelImgChainLines_GetLines();
    ASSERT_TRUE(QelImgChainLines_Initialize(20, 20, 0.9, 1.5, 10, 20, 5));
    EXPECT_EQ(QelImgChainLines_GetLines(), nullptr) << "initialising drops the results";
    EXPECT_EQ(QelImgChainLines_DoBinImg(big.data(), 60, 50, true), 4) << "the buffers kept their size";
    EXPECT_EQ(QelImgChainLines_GetLines(), lines);
    EXPECT_EQ(QelImgChainLines_DoBinImg(tall.data(), 50, 60, true), 4) << "the pixel count decides";

    Bytes huge = filled_rect(61, 50, 10, 49, 10, 39);
    EXPECT_EQ(QelImgChainLines_DoBinImg(huge.data(), 61, 50, true), 0);
    const Found refused = collect(0);
    EXPECT_FALSE(refused.hasLines);
    EXPECT_TRUE(refused.pieces.empty());
    Bytes out(6 * huge.size(), 7);
    EXPECT_EQ(QelImgChainLines_Debug(out.data()), 0);
    EXPECT_TRUE(qel_test::all_equal(out, 7));
    EXPECT_EQ(QelImgChainLines_DoBinImg(big.data(), 60, 2, true), 0) << "no interior";
    // Three pixels a side is the least that runs: its debug panels are written.
    for (auto [w, h, runs] : {std::tuple{60, 2, false}, {2, 60, false}, {60, 3, true}, {3, 60, true}}) {
        std::fill(out.begin(), out.end(), 7);
        EXPECT_EQ(QelImgChainLines_DoBinImg(big.data(), w, h, true), 0);
        QelImgChainLines_Debug(out.data());
        EXPECT_EQ(!qel_test::all_equal(out, 7), runs) << w << " x " << h;
    }

    ASSERT_TRUE(QelImgChainLines_Initialize(61, 50, 0.9, 1.5, 10, 20, 5));
    EXPECT_EQ(QelImgChainLines_DoBinImg(huge.data(), 61, 50, true), 4);
    EXPECT_FALSE(QelImgChainLines_Initialize(1 << 16, 1 << 15, 0.9, 1.5, 10, 20, 5)) << "2 · pixels beyond int";
    EXPECT_EQ(QelImgChainLines_DoBinImg(huge.data(), 61, 50, true), 4) << "the old buffers stay";
}

TEST(ImgChainLinesState, ResultsStayValidUntilTheNextRun) {
    const int w = 100, h = 80;
    ASSERT_TRUE(QelImgChainLines_Initialize(w, h, 0.9, 1.5, 10, 20, 20));
    Bytes rect = filled_rect(w, h, 20, 79, 15, 59);
    ASSERT_EQ(QelImgChainLines_DoBinImg(rect.data(), w, h, true), 4);
    const OVLA_LINE_SEGMENT* lines = QelImgChainLines_GetLines();
    int *xs = nullptr, *ys = nullptr, n = 0;
    ASSERT_TRUE(QelImgChainLines_GetNxtCodeLine(&xs, &ys, &n));
    const Bytes pieceBefore = pixels_of({{{xs, xs + n}, {ys, ys + n}}}, w, rect.size(), 1);
    const Found rest = collect(4);
    EXPECT_EQ(rest.pieces.size(), 3u) << "the cursor had passed the first piece";
    Bytes out(6 * rect.size());
    EXPECT_EQ(QelImgChainLines_Debug(out.data()), 4);
    // Handing out pieces and drawing the debug image leave the segments and points where they were.
    EXPECT_EQ(QelImgChainLines_GetLines(), lines);
    expect_rectangle_sides(collect(4));
    EXPECT_EQ(pixels_of({{{xs, xs + n}, {ys, ys + n}}}, w, rect.size(), 1), pieceBefore);

    Bytes small = filled_rect(w, h, 30, 45, 20, 45);
    const Found next = bin_run(small, w, h, false);
    EXPECT_FALSE(next.hasLines) << "no lines without fitLines";
    ASSERT_EQ(next.pieces.size(), 4u);
    EXPECT_EQ(next.pieces[0].xs[0], 30);
}

TEST(ImgChainLinesRecord, SegmentIsFourIntsThenThreeDoubles) {
    EXPECT_EQ(sizeof(OVLA_LINE_SEGMENT), 40u);
    EXPECT_TRUE(std::is_standard_layout<OVLA_LINE_SEGMENT>::value);
    const size_t offsets[] = {offsetof(OVLA_LINE_SEGMENT, x1), offsetof(OVLA_LINE_SEGMENT, y1),
                              offsetof(OVLA_LINE_SEGMENT, x2), offsetof(OVLA_LINE_SEGMENT, y2),
                              offsetof(OVLA_LINE_SEGMENT, a),  offsetof(OVLA_LINE_SEGMENT, b),
                              offsetof(OVLA_LINE_SEGMENT, c)};
    EXPECT_EQ(std::vector<size_t>(offsets, offsets + 7), (std::vector<size_t>{0, 4, 8, 12, 16, 24, 32}));
}

// ---- pieces and segments -------------------------------------------------------------------------

TEST(ImgChainLines, RectangleGivesItsFourSidesFromBinaryAndGreyImages) {
    const int w = 100, h = 80;
    ASSERT_TRUE(QelImgChainLines_Initialize(w, h, 0.9, 1.5, 10, 20, 100));
    Bytes img = filled_rect(w, h, 20, 79, 15, 59);
    const Found fit = bin_run(img, w, h, true);
    expect_rectangle_sides(fit);
    for (size_t i = 0; i < fit.pieces.size(); ++i)
        for (size_t j = 0; j < fit.pieces[i].xs.size(); ++j)
            EXPECT_LT(distance(fit.segments[i], fit.pieces[i].xs[j], fit.pieces[i].ys[j]), 2.0 / 3) << i;

    const Found pieces = bin_run(img, w, h, false);
    ASSERT_EQ(pieces.count, 4);
    const int corners[4][2] = {{20, 15}, {20, 59}, {79, 59}, {79, 15}};
    for (size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(pieces.pieces[i].xs[0], corners[i][0]);
        EXPECT_EQ(pieces.pieces[i].ys[0], corners[i][1]);
    }

    // Shen Jun edges lie on the bright side of each step, so on the rectangle's own border; the
    // integer operator works from an edge parameter of 8 on, the real one below.
    Bytes grey = filled_rect(w, h, 20, 79, 15, 59, 200, 40);
    for (int edgeParameter : {20, 5}) {
        ASSERT_TRUE(QelImgChainLines_Initialize(w, h, 0.9, 1.5, 10, edgeParameter, 100));
        expect_rectangle_sides(collect(QelImgChainLines_DoGryImg(grey.data(), w, h, true)));
    }
}

TEST(ImgChainLines, FrameTwoPixelsWideGivesItsOuterAndInnerSides) {
    // Every frame pixel is on the boundary, so the inner ring is left for a hole trace.
    Bytes img = filled_rect(100, 80, 20, 79, 15, 59);
    QelFillGryRect(img.data(), 100, 80, 22, 77, 17, 57, 0);
    ASSERT_TRUE(QelImgChainLines_Initialize(100, 80, 0.9, 1.5, 10, 20, 100));
    Found f = bin_run(img, 100, 80, true);
    ASSERT_EQ(f.count, 8);
    f.count = 4;
    expect_rectangle_sides(f);
    EXPECT_TRUE(ends_at(f.segments[4], 21, 16, 21, 58));
    EXPECT_TRUE(ends_at(f.segments[5], 21, 58, 78, 58));
    EXPECT_TRUE(ends_at(f.segments[6], 78, 58, 78, 16));
    EXPECT_TRUE(ends_at(f.segments[7], 78, 16, 21, 16));
    for (const Piece& p : f.pieces)
        for (size_t i = 0; i < p.xs.size(); ++i) EXPECT_EQ(img[p.ys[i] * 100 + p.xs[i]], 255);
}

TEST(ImgChainLines, SecondStraightnessTestCutsAtCorners) {
    // With a lax chord ratio only the distance from the chord notices a corner: 1.5 pixels cuts the
    // rectangle into its sides, a huge tolerance lets windows run round corners.
    const int w = 100, h = 80;
    Bytes img = filled_rect(w, h, 20, 79, 15, 59);
    ASSERT_TRUE(QelImgChainLines_Initialize(w, h, 0.5, 1.5, 10, 20, 100));
    expect_rectangle_sides(bin_run(img, w, h, true));
    ASSERT_TRUE(QelImgChainLines_Initialize(w, h, 0.5, 1000, 10, 20, 100));
    EXPECT_LT(QelImgChainLines_DoBinImg(img.data(), w, h, true), 4);

    // A disc of radius 80: the smaller the tolerance, the more pieces.
    Bytes disc(200 * 200, 0);
    for (int y = 0; y < 200; ++y)
        for (int x = 0; x < 200; ++x)
            if ((x - 100) * (x - 100) + (y - 100) * (y - 100) <= 80 * 80) disc[y * 200 + x] = 255;
    int previous = 0;
    for (double tolerance : {4.0, 2.0, 1.0}) {
        ASSERT_TRUE(QelImgChainLines_Initialize(200, 200, 0.9, tolerance, 10, 20, 100));
        const int n = QelImgChainLines_DoBinImg(disc.data(), 200, 200, false);
        EXPECT_GT(n, previous) << tolerance;
        previous = n;
    }
}

TEST(ImgChainLines, ThinLineGivesOnePieceNotOnePerSide) {
    // The chain of a one-pixel line runs along it and back; the way back is over used pixels.
    Bytes img = filled_rect(80, 30, 10, 69, 15, 15);
    ASSERT_TRUE(QelImgChainLines_Initialize(80, 30, 0.9, 1.5, 10, 20, 100));
    const Found f = bin_run(img, 80, 30, true);
    ASSERT_EQ(f.count, 1);
    EXPECT_EQ(f.segments[0].y1, 15);
    EXPECT_EQ(f.segments[0].y2, 15);
    EXPECT_GE(std::abs(f.segments[0].x2 - f.segments[0].x1), 50);
}

TEST(ImgChainLines, SettingsAreClampedAndLinesBeyondTheMaximumDropped) {
    Bytes img = filled_rect(100, 80, 20, 79, 15, 59);
    ASSERT_TRUE(QelImgChainLines_Initialize(100, 80, 0.9, 1.5, 10, 20, 2));
    EXPECT_EQ(QelImgChainLines_DoBinImg(img.data(), 100, 80, true), 2);
    ASSERT_TRUE(QelImgChainLines_Initialize(100, 80, 0.9, 1.5, 10, 20, -3));
    EXPECT_EQ(QelImgChainLines_DoBinImg(img.data(), 100, 80, false), 0);

    // A 3 × 3 square has a chain of 8 codes: too short for 9, long enough for 6 and so for 0.
    Bytes square = filled_rect(20, 20, 5, 7, 5, 7);
    std::vector<int> found;
    for (int minLength : {9, 6, 0}) {
        ASSERT_TRUE(QelImgChainLines_Initialize(20, 20, 0.1, 5, minLength, 20, 10));
        found.push_back(QelImgChainLines_DoBinImg(square.data(), 20, 20, false));
    }
    EXPECT_EQ(found, (std::vector<int>{0, 1, 1}));

    // An edge parameter of 0 works as 1: on a plateau of 100 between 0 and 255 a threshold of 0 would
    // also mark the plateau's middle column.
    Bytes plateau(40 * 30);
    for (size_t i = 0; i < plateau.size(); ++i) plateau[i] = i % 40 < 10 ? 0 : i % 40 < 15 ? 100 : 255;
    for (int edgeParameter : {1, 0}) {
        ASSERT_TRUE(QelImgChainLines_Initialize(40, 30, 0.9, 1.5, 10, edgeParameter, 100));
        EXPECT_EQ(QelImgChainLines_DoGryImg(plateau.data(), 40, 30, false), 2) << edgeParameter;
    }
    // Below 8 the real operator (a = 0.25) makes the edge map.
    Bytes noise = qel_test::random_grey(60, 50, 3), edges(noise.size()), out(6 * noise.size());
    std::vector<double> smooth(noise.size());
    QelShenJunEdgeFine(noise.data(), smooth.data(), 60, 50, 0.25, 7, edges.data());
    ASSERT_TRUE(QelImgChainLines_Initialize(60, 50, 0.9, 1.5, 10, 7, 500));
    EXPECT_GT(QelImgChainLines_DoGryImg(noise.data(), 60, 50, false), 0);
    QelImgChainLines_Debug(out.data());
    EXPECT_EQ(Bytes(out.begin() + noise.size(), out.begin() + 2 * noise.size()), edges);
    // From 8 on the integer operator (shift 2) makes it.
    Bytes smoothBytes(noise.size());
    QelShenJunEdgeFast(noise.data(), smoothBytes.data(), 60, 50, 2, 8, edges.data());
    ASSERT_TRUE(QelImgChainLines_Initialize(60, 50, 0.9, 1.5, 10, 8, 500));
    QelImgChainLines_DoGryImg(noise.data(), 60, 50, false);
    QelImgChainLines_Debug(out.data());
    EXPECT_EQ(Bytes(out.begin() + noise.size(), out.begin() + 2 * noise.size()), edges);
}

TEST(ImgChainLines, PiecesFollowTheBoundaryOfRandomShapes) {
    const int w = 120, h = 90;
    ASSERT_TRUE(QelImgChainLines_Initialize(w, h, 0.9, 1.5, 10, 20, 500));
    std::mt19937 rng(4);
    for (int round = 0; round < 6; ++round) {
        Bytes img(static_cast<size_t>(w) * h, 0);  // rectangles, some cut by the frame
        for (int s = 0; s < 6; ++s) {
            const int x = static_cast<int>(rng() % w) - 10, y = static_cast<int>(rng() % h) - 10;
            const int dx = 8 + static_cast<int>(rng() % 30), dy = 8 + static_cast<int>(rng() % 30);
            QelFillGryRect(img.data(), w, h, x, x + dx, y, y + dy, 255);
        }
        Bytes edges(img.size(), 0);  // object pixels inside the frame with a background neighbour
        for (int y = 1; y < h - 1; ++y)
            for (int x = 1; x < w - 1; ++x)
                for (int d = 0; d < 9 && img[y * w + x] != 0; ++d) {
                    if (img[(y + d / 3 - 1) * w + x + d % 3 - 1] == 0) edges[y * w + x] = 255;
                }
        for (bool fit : {false, true}) {
            const Found f = bin_run(img, w, h, fit);
            ASSERT_EQ(static_cast<int>(f.pieces.size()), f.count);
            for (size_t p = 0; p < f.pieces.size(); ++p) {
                const Piece& piece = f.pieces[p];
                double sum = 0;
                for (size_t i = 0; i < piece.xs.size(); ++i) {
                    const int x = piece.xs[i], y = piece.ys[i];
                    ASSERT_EQ(edges[y * w + x], 255) << round << " (" << x << ", " << y << ")";
                    if (fit) sum += distance(f.segments[p], x, y);
                }
                if (fit) {
                    EXPECT_LT(sum / static_cast<double>(piece.xs.size()), 1.0) << "points close to their line";
                }
            }
        }
    }
}

TEST(ImgChainLines, PhotographSegmentsLieOnItsEdges) {
    int w = 0, h = 0;
    unsigned char* coins = QelRead8BitBmpFile2Img(QEL_SAMPLES_DIR "/coins.bmp", &w, &h);
    ASSERT_NE(coins, nullptr);
    Bytes img(coins, coins + w * h);
    delete[] coins;
    ASSERT_TRUE(QelImgChainLines_Initialize(w, h, 0.9, 1.5, 10, 20, 1000));
    const int count = QelImgChainLines_DoGryImg(img.data(), w, h, true);
    EXPECT_GT(count, 50);
    Bytes out(6 * img.size());
    EXPECT_EQ(QelImgChainLines_Debug(out.data()), count);
    const Found f = collect(count);
    const unsigned char* edges = out.data() + img.size();  // panel 1: the Shen Jun edges
    for (const Piece& piece : f.pieces)
        for (size_t i = 0; i < piece.xs.size(); ++i) ASSERT_EQ(edges[piece.ys[i] * w + piece.xs[i]], 255);
    // Nearly every pixel of the drawn segments is an edge pixel or next to one.
    const Bytes drawn(out.begin() + 4 * img.size(), out.begin() + 5 * img.size());  // panel 4
    int near = 0, all = 0;
    for (int y = 1; y < h - 1; ++y)
        for (int x = 1; x < w - 1; ++x) {
            if (drawn[y * w + x] == 0) continue;
            ++all;
            bool hit = false;
            for (int d = 0; d < 9; ++d) hit = hit || edges[(y + d / 3 - 1) * w + x + d % 3 - 1] == 255;
            near += hit ? 1 : 0;
        }
    EXPECT_GT(all, 1000);
    EXPECT_GE(100 * near, 97 * all);
}

// ---- debug image ---------------------------------------------------------------------------------

TEST(ImgChainLinesDebug, SixPanelsOfARectangle) {
    const int w = 60, h = 50;
    const size_t size = static_cast<size_t>(w) * h;
    ASSERT_TRUE(QelImgChainLines_Initialize(w, h, 0.9, 1.5, 10, 20, 100));
    Bytes img = filled_rect(w, h, 10, 49, 10, 39, 252, 100);
    for (bool fit : {true, false}) {
        ASSERT_EQ(QelImgChainLines_DoGryImg(img.data(), w, h, fit), 4);
        Bytes out(6 * size, 7);
        EXPECT_EQ(QelImgChainLines_Debug(out.data()), 4);
        const Found f = collect(4);  // the debug image handed every piece out, then rewound
        ASSERT_EQ(f.pieces.size(), 4u);
        auto panel = [&](int p) { return Bytes(out.begin() + p * size, out.begin() + (p + 1) * size); };
        EXPECT_EQ(panel(0), filled_rect(w, h, 10, 49, 10, 39, 250, 100)) << "above 250 becomes 250";
        Bytes edges(size), smooth(size);
        QelShenJunEdgeFast(img.data(), smooth.data(), w, h, 2, 20, edges.data());
        EXPECT_EQ(panel(1), edges);
        const Bytes pieces = pixels_of(f.pieces, w, size, 254);
        EXPECT_EQ(panel(2), pieces);
        Bytes rest = edges, lines(size, 0), over = panel(0);
        for (const OVLA_LINE_SEGMENT& s : f.segments) {
            QelGryLine(lines.data(), w, h, s.x1, s.y1, s.x2, s.y2, 255);
            QelGryLine(over.data(), w, h, s.x1, s.y1, s.x2, s.y2, 255);
        }
        for (size_t i = 0; i < size; ++i) {
            if (pieces[i] != 0) rest[i] = 0;
            if (pieces[i] != 0 && !fit) over[i] = 255;
        }
        EXPECT_EQ(panel(3), rest);
        EXPECT_EQ(panel(4), lines);
        EXPECT_EQ(panel(5), over);
    }

    // Pieces already handed out are not shown.
    Bytes out(6 * size);
    QelImgChainLines_Debug(out.data());
    int *xs = nullptr, *ys = nullptr, n = 0;
    for (int i = 0; i < 3; ++i) ASSERT_TRUE(QelImgChainLines_GetNxtCodeLine(&xs, &ys, &n));
    QelImgChainLines_Debug(out.data());
    const Found all = collect(4);
    ASSERT_EQ(all.pieces.size(), 4u);
    EXPECT_EQ(Bytes(out.begin() + 2 * size, out.begin() + 3 * size), pixels_of({all.pieces[3]}, w, size, 254));
}

}  // namespace
