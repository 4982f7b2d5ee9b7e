#include <qel.h>

#include "support/test_images.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <random>
#include <type_traits>
#include <vector>

namespace {

using qel_test::Bytes;

struct Piece {
    std::vector<int> xs, ys;
};

// What a run hands out, copied.
struct Found {
    int count = 0;
    std::vector<Piece> pieces;
    std::vector<OVLA_LINE_SEGMENT> segments;
    bool hasLines = false;
};

Found collect(int count) {
    Found f;
    f.count = count;
    int* xs = nullptr;
    int* ys = nullptr;
    int n = 0;
    while (QelImgChainLines_GetNxtCodeLine(&xs, &ys, &n)) f.pieces.push_back({{xs, xs + n}, {ys, ys + n}});
    const OVLA_LINE_SEGMENT* s = QelImgChainLines_GetLines();
    f.hasLines = s != nullptr;
    if (s != nullptr) f.segments.assign(s, s + count);
    return f;
}

Found bin_run(Bytes& img, int w, int h, bool fit) { return collect(QelImgChainLines_DoBinImg(img.data(), w, h, fit)); }
Found gry_run(Bytes& img, int w, int h, bool fit) { return collect(QelImgChainLines_DoGryImg(img.data(), w, h, fit)); }

Bytes filled_rect(int w, int h, int x1, int x2, int y1, int y2, int value = 255, int background = 0) {
    Bytes img(static_cast<size_t>(w) * h, static_cast<unsigned char>(background));
    QelFillGryRect(img.data(), w, h, x1, x2, y1, y2, value);
    return img;
}

// The boundary the binary run traces: interior object pixels with a background 8-neighbour.
Bytes boundary(const Bytes& img, int w, int h) {
    Bytes out(img.size(), 0);
    for (int y = 1; y < h - 1; ++y)
        for (int x = 1; x < w - 1; ++x) {
            if (img[y * w + x] == 0) continue;
            for (int dy = -1; dy <= 1; ++dy)
                for (int dx = -1; dx <= 1; ++dx)
                    if (img[(y + dy) * w + x + dx] == 0) out[y * w + x] = 255;
        }
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

// Random discs of radius 6..20 and rectangles, some touching the frame.
Bytes random_shapes(int w, int h, unsigned seed) {
    std::mt19937 rng(seed);
    Bytes img(static_cast<size_t>(w) * h, 0);
    for (int s = 0; s < 8; ++s) {
        const int cx = static_cast<int>(rng() % w), cy = static_cast<int>(rng() % h);
        const int r = 6 + static_cast<int>(rng() % 15);
        if (s % 2 == 0) {
            QelFillGryRect(img.data(), w, h, cx - r, cx + r / 2, cy - r / 2, cy + r, 255);
            continue;
        }
        for (int y = std::max(cy - r, 0); y <= std::min(cy + r, h - 1); ++y)
            for (int x = std::max(cx - r, 0); x <= std::min(cx + r, w - 1); ++x)
                if ((x - cx) * (x - cx) + (y - cy) * (y - cy) <= r * r) img[y * w + x] = 255;
    }
    return img;
}

// ---- state rules ---------------------------------------------------------------------------------
// Each test runs in a process of its own, so this one meets the finder as the library built it.

TEST(ImgChainLinesState, CallsBeforeInitializeReturnTheirFailureValues) {
    Bytes img = filled_rect(40, 30, 5, 30, 5, 20);
    EXPECT_EQ(QelImgChainLines_DoBinImg(img.data(), 40, 30, true), 0);
    EXPECT_EQ(QelImgChainLines_DoGryImg(img.data(), 40, 30, false), 0);
    EXPECT_EQ(QelImgChainLines_GetLines(), nullptr);
    int* xs = nullptr;
    int* ys = nullptr;
    int n = -1;
    EXPECT_FALSE(QelImgChainLines_GetNxtCodeLine(&xs, &ys, &n));
    EXPECT_EQ(n, -1);
    Bytes out(6 * img.size(), 7);
    EXPECT_EQ(QelImgChainLines_Debug(out.data()), 0);
    EXPECT_TRUE(qel_test::all_equal(out, 7)) << "nothing written";
    EXPECT_FALSE(QelImgChainLines_Initialize(0, 30, 0.9, 1.5, 10, 20, 10)) << "no image buffer yet";
    EXPECT_EQ(QelImgChainLines_DoBinImg(img.data(), 40, 30, true), 0);
}

TEST(ImgChainLinesState, BuffersOnlyGrowAndLargerImagesAreRefused) {
    Bytes big = filled_rect(60, 50, 10, 49, 10, 39);
    ASSERT_TRUE(QelImgChainLines_Initialize(60, 50, 0.9, 1.5, 10, 20, 10));
    EXPECT_EQ(QelImgChainLines_DoBinImg(big.data(), 60, 50, true), 4);
    const OVLA_LINE_SEGMENT* lines = QelImgChainLines_GetLines();

    // Smaller sizes and fewer lines keep the buffers: the large image still fits.
    ASSERT_TRUE(QelImgChainLines_Initialize(20, 20, 0.9, 1.5, 10, 20, 5));
    EXPECT_EQ(QelImgChainLines_GetLines(), nullptr) << "initialising drops the results";
    EXPECT_EQ(QelImgChainLines_DoBinImg(big.data(), 60, 50, true), 4);
    EXPECT_EQ(QelImgChainLines_GetLines(), lines) << "same segment array";
    Bytes tall = filled_rect(50, 60, 10, 39, 10, 49);
    EXPECT_EQ(QelImgChainLines_DoBinImg(tall.data(), 50, 60, true), 4) << "the pixel count decides";

    // More pixels than ever initialised: refused, results empty.
    Bytes huge = filled_rect(61, 50, 10, 49, 10, 39);
    EXPECT_EQ(QelImgChainLines_DoBinImg(huge.data(), 61, 50, true), 0);
    EXPECT_EQ(QelImgChainLines_GetLines(), nullptr);
    int* xs = nullptr;
    int* ys = nullptr;
    int n = 0;
    EXPECT_FALSE(QelImgChainLines_GetNxtCodeLine(&xs, &ys, &n));
    Bytes out(6 * huge.size(), 7);
    EXPECT_EQ(QelImgChainLines_Debug(out.data()), 0);
    EXPECT_TRUE(qel_test::all_equal(out, 7));
    EXPECT_EQ(QelImgChainLines_DoBinImg(big.data(), 60, 2, true), 0) << "no interior";

    // Growing makes room.
    ASSERT_TRUE(QelImgChainLines_Initialize(61, 50, 0.9, 1.5, 10, 20, 5));
    EXPECT_EQ(QelImgChainLines_DoBinImg(huge.data(), 61, 50, true), 4);
    EXPECT_FALSE(QelImgChainLines_Initialize(1 << 16, 1 << 15, 0.9, 1.5, 10, 20, 5)) << "2 · pixels beyond int";
    EXPECT_EQ(QelImgChainLines_DoBinImg(huge.data(), 61, 50, true), 4) << "the old buffers stay";
}

TEST(ImgChainLinesState, ResultsStayValidUntilTheNextRun) {
    const int w = 80, h = 60;
    ASSERT_TRUE(QelImgChainLines_Initialize(w, h, 0.9, 1.5, 10, 20, 20));
    Bytes rect = filled_rect(w, h, 10, 69, 10, 49);
    const int count = QelImgChainLines_DoBinImg(rect.data(), w, h, true);
    ASSERT_EQ(count, 4);
    const OVLA_LINE_SEGMENT* lines = QelImgChainLines_GetLines();
    const std::vector<OVLA_LINE_SEGMENT> segments(lines, lines + count);
    int* xs = nullptr;
    int* ys = nullptr;
    int n = 0;
    ASSERT_TRUE(QelImgChainLines_GetNxtCodeLine(&xs, &ys, &n));
    const std::vector<int> firstXs(xs, xs + n), firstYs(ys, ys + n);

    // Handing out pieces, asking for the lines again and drawing the debug image change nothing.
    Found again = collect(count);
    Bytes out(6 * rect.size());
    EXPECT_EQ(QelImgChainLines_Debug(out.data()), 4);
    EXPECT_EQ(again.pieces.size(), 3u) << "the cursor had passed the first piece";
    EXPECT_EQ(QelImgChainLines_GetLines(), lines);
    for (int i = 0; i < count; ++i) {
        EXPECT_EQ(lines[i].x1, segments[static_cast<size_t>(i)].x1);
        EXPECT_EQ(lines[i].c, segments[static_cast<size_t>(i)].c);
    }
    EXPECT_EQ(std::vector<int>(xs, xs + n), firstXs);
    EXPECT_EQ(std::vector<int>(ys, ys + n), firstYs);

    // The next run replaces them: no lines without fitLines.
    Bytes small = filled_rect(w, h, 20, 35, 20, 45);
    const Found next = bin_run(small, w, h, false);
    EXPECT_FALSE(next.hasLines);
    EXPECT_EQ(next.pieces.size(), 4u);
    EXPECT_EQ(next.pieces[0].xs[0], 20);
}

// ---- the record ----------------------------------------------------------------------------------

TEST(ImgChainLinesRecord, SegmentIsFourIntsThenThreeDoubles) {
    EXPECT_EQ(sizeof(OVLA_LINE_SEGMENT), 40u);
    EXPECT_TRUE(std::is_standard_layout<OVLA_LINE_SEGMENT>::value);
    EXPECT_EQ(offsetof(OVLA_LINE_SEGMENT, x1), 0u);
    EXPECT_EQ(offsetof(OVLA_LINE_SEGMENT, y1), 4u);
    EXPECT_EQ(offsetof(OVLA_LINE_SEGMENT, x2), 8u);
    EXPECT_EQ(offsetof(OVLA_LINE_SEGMENT, y2), 12u);
    EXPECT_EQ(offsetof(OVLA_LINE_SEGMENT, a), 16u);
    EXPECT_EQ(offsetof(OVLA_LINE_SEGMENT, b), 24u);
    EXPECT_EQ(offsetof(OVLA_LINE_SEGMENT, c), 32u);
}

// ---- finding pieces and segments -----------------------------------------------------------------

TEST(ImgChainLines, FilledRectangleGivesItsFourSides) {
    const int w = 100, h = 80;
    ASSERT_TRUE(QelImgChainLines_Initialize(w, h, 0.9, 1.5, 10, 20, 100));
    Bytes img = filled_rect(w, h, 20, 79, 15, 59);
    const Found fit = bin_run(img, w, h, true);
    ASSERT_EQ(fit.count, 4);
    ASSERT_EQ(fit.pieces.size(), 4u);
    // Down the left side first, counter-clockwise on screen.
    EXPECT_TRUE(ends_at(fit.segments[0], 20, 15, 20, 59));
    EXPECT_TRUE(ends_at(fit.segments[1], 20, 59, 79, 59));
    EXPECT_TRUE(ends_at(fit.segments[2], 79, 59, 79, 15));
    EXPECT_TRUE(ends_at(fit.segments[3], 79, 15, 20, 15));
    // The fitted lines are the sides themselves, and each piece's points lie on its line.
    const double sides[4][2] = {{20, 40}, {50, 59}, {79, 40}, {50, 15}};
    for (size_t i = 0; i < 4; ++i) {
        EXPECT_NEAR(distance(fit.segments[i], sides[i][0], sides[i][1]), 0, 1e-9) << i;
        for (size_t j = 0; j < fit.pieces[i].xs.size(); ++j)
            EXPECT_LT(distance(fit.segments[i], fit.pieces[i].xs[j], fit.pieces[i].ys[j]), 2.0 / 3) << i;
    }

    // Without fitting: four pieces of code count + 1 points, each starting at a corner.
    const Found pieces = bin_run(img, w, h, false);
    EXPECT_FALSE(pieces.hasLines);
    ASSERT_EQ(pieces.count, 4);
    const int corners[4][2] = {{20, 15}, {20, 59}, {79, 59}, {79, 15}};
    for (size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(pieces.pieces[i].xs[0], corners[i][0]);
        EXPECT_EQ(pieces.pieces[i].ys[0], corners[i][1]);
        EXPECT_GE(pieces.pieces[i].xs.size(), 44u);
    }
}

TEST(ImgChainLines, GreyRectangleGivesItsFourSidesWithEitherEdgeOperator) {
    const int w = 90, h = 70;
    Bytes img = filled_rect(w, h, 15, 70, 12, 55, 200, 40);
    for (int edgeParameter : {20, 5}) {  // the integer operator from 8 on, the real one below
        ASSERT_TRUE(QelImgChainLines_Initialize(w, h, 0.9, 1.5, 10, edgeParameter, 100));
        const Found f = gry_run(img, w, h, true);
        ASSERT_EQ(f.count, 4) << edgeParameter;
        // The edges lie on the bright side of each step, so on the rectangle's own border.
        EXPECT_TRUE(ends_at(f.segments[0], 15, 12, 15, 55));
        EXPECT_TRUE(ends_at(f.segments[1], 15, 55, 70, 55));
        EXPECT_TRUE(ends_at(f.segments[2], 70, 55, 70, 12));
        EXPECT_TRUE(ends_at(f.segments[3], 70, 12, 15, 12));
    }
}

TEST(ImgChainLines, SecondStraightnessTestCutsAtCorners) {
    // With a lax chord ratio only the distance from the chord notices a corner: a tolerance of 1.5
    // pixels still cuts the rectangle into its four sides, a huge one lets windows run round corners.
    const int w = 100, h = 80;
    Bytes img = filled_rect(w, h, 20, 79, 15, 59);
    ASSERT_TRUE(QelImgChainLines_Initialize(w, h, 0.5, 1.5, 10, 20, 100));
    const Found tight = bin_run(img, w, h, true);
    ASSERT_EQ(tight.count, 4);
    EXPECT_TRUE(ends_at(tight.segments[0], 20, 15, 20, 59));
    EXPECT_TRUE(ends_at(tight.segments[2], 79, 59, 79, 15));
    ASSERT_TRUE(QelImgChainLines_Initialize(w, h, 0.5, 1000, 10, 20, 100));
    EXPECT_LT(bin_run(img, w, h, true).count, 4);

    // A circle: the smaller the tolerance, the more pieces.
    const int cw = 200, ch = 200;
    Bytes disc(static_cast<size_t>(cw) * ch, 0);
    for (int y = 0; y < ch; ++y)
        for (int x = 0; x < cw; ++x)
            if ((x - 100) * (x - 100) + (y - 100) * (y - 100) <= 80 * 80) disc[y * cw + x] = 255;
    int previous = 0;
    for (double tolerance : {4.0, 2.0, 1.0}) {
        ASSERT_TRUE(QelImgChainLines_Initialize(cw, ch, 0.9, tolerance, 10, 20, 100));
        const int n = QelImgChainLines_DoBinImg(disc.data(), cw, ch, false);
        EXPECT_GT(n, previous) << tolerance;
        previous = n;
    }
}

TEST(ImgChainLines, ThinLineGivesOnePieceNotOnePerSide) {
    // The chain of a one-pixel line runs out along it and back; the way back passes pixels already
    // used and is skipped.
    const int w = 80, h = 30;
    Bytes img = filled_rect(w, h, 10, 69, 15, 15);
    ASSERT_TRUE(QelImgChainLines_Initialize(w, h, 0.9, 1.5, 10, 20, 100));
    const Found f = bin_run(img, w, h, true);
    ASSERT_EQ(f.count, 1);
    EXPECT_EQ(f.segments[0].y1, 15);
    EXPECT_EQ(f.segments[0].y2, 15);
    EXPECT_LE(std::abs(f.segments[0].x2 - f.segments[0].x1), 59);
    EXPECT_GE(std::abs(f.segments[0].x2 - f.segments[0].x1), 50);
}

TEST(ImgChainLines, SettingsAreClampedAndLinesBeyondTheMaximumDropped) {
    const int w = 100, h = 80;
    Bytes img = filled_rect(w, h, 20, 79, 15, 59);
    ASSERT_TRUE(QelImgChainLines_Initialize(w, h, 0.9, 1.5, 10, 20, 2));
    EXPECT_EQ(QelImgChainLines_DoBinImg(img.data(), w, h, true), 2);
    ASSERT_TRUE(QelImgChainLines_Initialize(w, h, 0.9, 1.5, 10, 20, 0));
    EXPECT_EQ(QelImgChainLines_DoBinImg(img.data(), w, h, false), 0);

    // A 3 × 3 square has a chain of 8 codes: too short for 9, long enough for 6 and so for 0.
    Bytes square = filled_rect(20, 20, 5, 7, 5, 7);
    ASSERT_TRUE(QelImgChainLines_Initialize(20, 20, 0.1, 5, 9, 20, 10));
    EXPECT_EQ(QelImgChainLines_DoBinImg(square.data(), 20, 20, false), 0);
    ASSERT_TRUE(QelImgChainLines_Initialize(20, 20, 0.1, 5, 6, 20, 10));
    const int atSix = QelImgChainLines_DoBinImg(square.data(), 20, 20, false);
    EXPECT_GT(atSix, 0);
    ASSERT_TRUE(QelImgChainLines_Initialize(20, 20, 0.1, 5, 0, 20, 10));
    EXPECT_EQ(QelImgChainLines_DoBinImg(square.data(), 20, 20, false), atSix);

    // An edge parameter of 0 works as 1.
    Bytes photo = qel_test::random_grey(60, 50, 3);
    ASSERT_TRUE(QelImgChainLines_Initialize(60, 50, 0.9, 1.5, 10, 1, 500));
    const Found one = gry_run(photo, 60, 50, false);
    ASSERT_TRUE(QelImgChainLines_Initialize(60, 50, 0.9, 1.5, 10, 0, 500));
    const Found zero = gry_run(photo, 60, 50, false);
    EXPECT_EQ(zero.count, one.count);
    ASSERT_EQ(zero.pieces.size(), one.pieces.size());
    for (size_t i = 0; i < one.pieces.size(); ++i) EXPECT_EQ(zero.pieces[i].xs, one.pieces[i].xs);
}

TEST(ImgChainLines, PiecesFollowTheBoundaryOfRandomShapes) {
    const int w = 120, h = 90;
    ASSERT_TRUE(QelImgChainLines_Initialize(w, h, 0.9, 1.5, 10, 20, 500));
    for (unsigned seed = 1; seed <= 6; ++seed) {
        Bytes img = random_shapes(w, h, seed);
        const Bytes edges = boundary(img, w, h);
        for (bool fit : {false, true}) {
            const Found f = bin_run(img, w, h, fit);
            ASSERT_EQ(static_cast<int>(f.pieces.size()), f.count);
            EXPECT_GT(f.count, 0) << seed;
            for (size_t p = 0; p < f.pieces.size(); ++p) {
                const Piece& piece = f.pieces[p];
                ASSERT_GE(piece.xs.size(), fit ? 4u : 6u);
                double sum = 0;
                for (size_t i = 0; i < piece.xs.size(); ++i) {
                    const int x = piece.xs[i], y = piece.ys[i];
                    ASSERT_EQ(edges[y * w + x], 255) << "seed " << seed << " (" << x << ", " << y << ")";
                    if (i > 0) {  // consecutive chain points are 8-neighbours
                        EXPECT_LE(std::abs(x - piece.xs[i - 1]), 1);
                        EXPECT_LE(std::abs(y - piece.ys[i - 1]), 1);
                    }
                    if (fit) sum += distance(f.segments[p], x, y);
                }
                if (!fit) continue;
                const OVLA_LINE_SEGMENT& s = f.segments[p];
                EXPECT_LT(sum / static_cast<double>(piece.xs.size()), 1.5) << "points close to their line";
                for (int v : {s.x1, s.x2}) EXPECT_TRUE(v >= 0 && v < w);
                for (int v : {s.y1, s.y2}) EXPECT_TRUE(v >= 0 && v < h);
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
    const Found f = gry_run(img, w, h, true);
    EXPECT_GT(f.count, 50);
    Bytes out(6 * img.size());
    EXPECT_EQ(QelImgChainLines_Debug(out.data()), f.count);
    const unsigned char* edges = out.data() + img.size();  // panel 1: the Shen Jun edges
    for (const Piece& piece : f.pieces)
        for (size_t i = 0; i < piece.xs.size(); ++i) ASSERT_EQ(edges[piece.ys[i] * w + piece.xs[i]], 255);
    // Nearly every pixel of a drawn segment is an edge pixel or next to one.
    int onAll = 0, drawnAll = 0;
    for (const OVLA_LINE_SEGMENT& s : f.segments) {
        Bytes drawn(img.size(), 0);
        QelGryLine(drawn.data(), w, h, s.x1, s.y1, s.x2, s.y2, 255);
        int on = 0, all = 0;
        for (int y = 1; y < h - 1; ++y)
            for (int x = 1; x < w - 1; ++x) {
                if (drawn[y * w + x] == 0) continue;
                ++all;
                bool near = false;
                for (int dy = -1; dy <= 1; ++dy)
                    for (int dx = -1; dx <= 1; ++dx) near = near || edges[(y + dy) * w + x + dx] == 255;
                on += near ? 1 : 0;
            }
        EXPECT_GE(10 * on, 8 * all) << s.x1 << "," << s.y1 << " " << s.x2 << "," << s.y2;
        onAll += on;
        drawnAll += all;
    }
    EXPECT_GE(100 * onAll, 97 * drawnAll);
}

// ---- debug image ---------------------------------------------------------------------------------

TEST(ImgChainLinesDebug, PanelsOfARectangle) {
    const int w = 60, h = 50;
    const size_t size = static_cast<size_t>(w) * h;
    ASSERT_TRUE(QelImgChainLines_Initialize(w, h, 0.9, 1.5, 10, 20, 100));
    Bytes img = filled_rect(w, h, 10, 49, 10, 39, 252, 100);
    for (bool fit : {true, false}) {
        ASSERT_EQ(QelImgChainLines_DoGryImg(img.data(), w, h, fit), 4);
        Bytes out(6 * size, 7);
        EXPECT_EQ(QelImgChainLines_Debug(out.data()), 4);
        const Found f = collect(4);  // the debug image handed every piece out and rewound
        ASSERT_EQ(f.pieces.size(), 4u);
        auto panel = [&](int p) { return Bytes(out.begin() + p * size, out.begin() + (p + 1) * size); };
        EXPECT_EQ(panel(0), filled_rect(w, h, 10, 49, 10, 39, 250, 100)) << "above 250 becomes 250";
        Bytes edges(size), smooth(size);
        QelShenJunEdgeFast(img.data(), smooth.data(), w, h, 2, 20, edges.data());
        EXPECT_EQ(panel(1), edges);
        Bytes pieces(size, 0);
        for (const Piece& p : f.pieces)
            for (size_t i = 0; i < p.xs.size(); ++i) pieces[p.ys[i] * w + p.xs[i]] = 254;
        EXPECT_EQ(panel(2), pieces);
        Bytes rest = edges;
        for (size_t i = 0; i < size; ++i)
            if (pieces[i] != 0) rest[i] = 0;
        EXPECT_EQ(panel(3), rest);
        Bytes lines(size, 0), over = panel(0);
        for (const OVLA_LINE_SEGMENT& s : f.segments) {
            QelGryLine(lines.data(), w, h, s.x1, s.y1, s.x2, s.y2, 255);
            QelGryLine(over.data(), w, h, s.x1, s.y1, s.x2, s.y2, 255);
        }
        if (!fit)
            for (size_t i = 0; i < size; ++i)
                if (pieces[i] != 0) over[i] = 255;
        EXPECT_EQ(panel(4), lines);
        EXPECT_EQ(panel(5), over);
    }
}

TEST(ImgChainLinesDebug, ShowsThePiecesNotYetHandedOutThenRewinds) {
    const int w = 60, h = 50;
    const size_t size = static_cast<size_t>(w) * h;
    ASSERT_TRUE(QelImgChainLines_Initialize(w, h, 0.9, 1.5, 10, 20, 100));
    Bytes img = filled_rect(w, h, 10, 49, 10, 39);
    ASSERT_EQ(QelImgChainLines_DoBinImg(img.data(), w, h, false), 4);
    int* xs = nullptr;
    int* ys = nullptr;
    int n = 0;
    for (int i = 0; i < 3; ++i) ASSERT_TRUE(QelImgChainLines_GetNxtCodeLine(&xs, &ys, &n));
    Bytes out(6 * size);
    QelImgChainLines_Debug(out.data());
    const Found all = collect(4);
    ASSERT_EQ(all.pieces.size(), 4u) << "the debug image rewinds";
    EXPECT_EQ(std::make_pair(all.pieces[0].xs[0], all.pieces[0].ys[0]), std::make_pair(10, 10));
    Bytes fourth(size, 0);
    for (size_t i = 0; i < all.pieces[3].xs.size(); ++i) fourth[all.pieces[3].ys[i] * w + all.pieces[3].xs[i]] = 254;
    EXPECT_EQ(Bytes(out.begin() + 2 * size, out.begin() + 3 * size), fourth) << "only the fourth piece";
}

}  // namespace
