#include <qel.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

namespace {

using Chain = std::vector<unsigned char>;

constexpr int kDx[8] = {1, 1, 0, -1, -1, -1, 0, 1};
constexpr int kDy[8] = {0, -1, -1, -1, 0, 1, 1, 1};

// Codes written as digits; spaces are only for reading.
Chain codes(const std::string& digits) {
    Chain c;
    for (char ch : digits)
        if (ch != ' ') c.push_back(static_cast<unsigned char>(ch - '0'));
    return c;
}

// An L: columns 0..1 of rows 0..3 and columns 2..4 of rows 2..3 (14 pixels), traced from (0, 0);
// the inner corner (1, 2) is cut by a diagonal step.
const Chain kL = codes("666 0000 2 44 3 2 4");

// A shape of one run of columns [left[y], right[y]] per row, each run sharing a column with the one
// above. trace() walks its outer boundary as the contour tracer does: from the top-left pixel,
// after a step in direction d the neighbours are tried from d − 1 (even d) or d − 2 (odd d)
// counter-clockwise, until the walk is back at the start.
struct Blob {
    std::vector<int> left, right;
    bool has(int x, int y) const {
        return y >= 0 && y < static_cast<int>(left.size()) && x >= left[y] && x <= right[y];
    }
    int pixels() const {
        int n = 0;
        for (size_t y = 0; y < left.size(); ++y) n += right[y] - left[y] + 1;
        return n;
    }
    Chain trace() const {
        Chain c;
        int x = left[0], y = 0, d = 7;
        for (;;) {
            const int first = d % 2 == 0 ? (d + 7) % 8 : (d + 6) % 8;
            int k = -1;
            for (int j = 0; j < 7 && k < 0; ++j)
                if (has(x + kDx[(first + j) % 8], y + kDy[(first + j) % 8])) k = (first + j) % 8;
            if (k < 0) return c;
            c.push_back(static_cast<unsigned char>(k));
            x += kDx[k];
            y += kDy[k];
            d = k;
            if (x == left[0] && y == 0) return c;
        }
    }
};

Blob rectangle(int w, int h) { return Blob{std::vector<int>(h, 0), std::vector<int>(h, w - 1)}; }

const Blob kLShape{{0, 0, 0, 0}, {1, 1, 4, 4}};

Blob random_blob(std::mt19937& rng) {
    Blob b;
    const int rows = 1 + static_cast<int>(rng() % 7);
    for (int y = 0; y < rows; ++y) {
        int l = static_cast<int>(rng() % 8), r = l + static_cast<int>(rng() % 6);
        if (y > 0) {  // keep a shared column with the run above
            l = std::min(l, b.right[y - 1]);
            r = std::max(r, b.left[y - 1]);
        }
        b.left.push_back(l);
        b.right.push_back(r);
    }
    return b;
}

// Rectangles up to 5 x 5, the L and random blobs.
std::vector<Blob> shapes() {
    std::vector<Blob> all;
    for (int w = 1; w <= 5; ++w)
        for (int h = 1; h <= 5; ++h) all.push_back(rectangle(w, h));
    all.push_back(kLShape);
    std::mt19937 rng(7);
    for (int t = 0; t < 300; ++t) all.push_back(random_blob(rng));
    return all;
}

TEST(ChainMeasures, AreaAndPerimeterHandValues) {
    int area = -1, perimeter = -1;
    QelAreaAndPerimeter(nullptr, 0, &area, &perimeter);
    EXPECT_EQ(area, 0);
    EXPECT_EQ(perimeter, 0);
    struct Case { Chain chain; int area, perimeter, realArea; };
    // A plus of five pixels is traced by four diagonal steps; 4√2 rounds to 6.
    for (const Case& c : {Case{codes("04"), 1, 2, 2}, Case{codes("6024"), 3, 4, 4}, Case{codes("5713"), 5, 6, 5},
                          Case{kL, 13, 13, 14}}) {
        Chain chain = c.chain;
        const int n = static_cast<int>(chain.size());
        QelAreaAndPerimeter(chain.data(), n, &area, &perimeter);
        EXPECT_EQ(area, c.area);
        EXPECT_EQ(perimeter, c.perimeter);
        QelRealAreaAndPerimeter(chain.data(), n, &area, &perimeter);
        EXPECT_EQ(area, c.realArea);
        EXPECT_EQ(perimeter, c.perimeter);
        EXPECT_EQ(QelRealPixelsEnclosed(chain.data(), n), c.realArea);
    }
    // Bytes are read modulo 8: the 2 x 2 square written with codes 14, 8, 10, 12.
    Chain high = {14, 8, 10, 12};
    QelAreaAndPerimeter(high.data(), 4, &area, &perimeter);
    EXPECT_EQ(area, 3);
    EXPECT_EQ(perimeter, 4);
    EXPECT_EQ(QelRealPixelsEnclosed(high.data(), 4), 4);
}

TEST(ChainMeasures, TracedShapesEncloseTheirPixelsBoxesAndPoints) {
    EXPECT_EQ(rectangle(2, 3).trace(), codes("66 0 22 4"));
    EXPECT_EQ(kLShape.trace(), kL);
    for (const Blob& b : shapes()) {
        Chain c = b.trace();
        const int n = static_cast<int>(c.size());
        const int rows = static_cast<int>(b.left.size());
        // A lone pixel has no codes: it encloses nothing, not even itself.
        ASSERT_EQ(QelRealPixelsEnclosed(c.data(), n), n == 0 ? 0 : b.pixels());
        int l = 0, r = 0, top = 0, bottom = 0;
        QelContourRect(b.left[0], 0, c.data(), n, &l, &r, &top, &bottom);
        EXPECT_EQ(l, *std::min_element(b.left.begin(), b.left.end()));
        EXPECT_EQ(r, *std::max_element(b.right.begin(), b.right.end()));
        EXPECT_EQ(top, 0);
        EXPECT_EQ(bottom, rows - 1);
        for (int y = -2; y < rows + 2; ++y)
            for (int x = -2; x < r + 3; ++x)
                ASSERT_EQ(QelIsPointIncludedByChain(x, y, b.left[0], 0, c.data(), n), n > 0 && b.has(x, y))
                    << "point " << x << "," << y << " of " << n << " codes";
    }
}

TEST(ChainMeasures, RectAndCenterOfAnL) {
    Chain c = kL;
    const int n = static_cast<int>(c.size());
    int l = 0, r = 0, t = 0, b = 0;
    QelContourRect(10, 20, c.data(), n, &l, &r, &t, &b);
    EXPECT_EQ((std::vector<int>{l, r, t, b}), (std::vector<int>{10, 14, 20, 23}));
    int cx = 0, cy = 0;
    QelContourCenter(10, 20, c.data(), n, &cx, &cy);  // sums 151 and 285 over 13 points
    EXPECT_EQ(cx, 12);
    EXPECT_EQ(cy, 22);
    QelContourCenter(10, 20, c.data(), 1, &cx, &cy);
    EXPECT_EQ(cx, 10);
    EXPECT_EQ(cy, 20);
    QelContourCenter(-3, 4, c.data(), 0, &cx, &cy);
    EXPECT_EQ(cx, -3);
    EXPECT_EQ(cy, 4);
    // Only corners count: a straight open chain never moves the box off its start.
    Chain straight = codes("000");
    QelContourRect(5, 5, straight.data(), 3, &l, &r, &t, &b);
    EXPECT_EQ((std::vector<int>{l, r, t, b}), (std::vector<int>{5, 5, 5, 5}));
}

TEST(ChainPointTests, AHoleChainIncludesOnlyTheHole) {
    // The boundary around the hole (1, 1), (2, 1) of a 4 x 3 ring, traced clockwise on screen from
    // the pixel left of the hole.
    Chain hole = codes("107543");
    for (int y = -1; y <= 3; ++y)
        for (int x = -1; x <= 4; ++x)
            EXPECT_EQ(QelIsPointIncludedByChain(x, y, 0, 1, hole.data(), 6), y == 1 && (x == 1 || x == 2)) << x << "," << y;
}

TEST(ChainMeasures, RotatedRectAtZeroAndNinetyDegrees) {
    Chain c = kL;
    const int n = static_cast<int>(c.size());
    int u0 = 0, u1 = 0, v0 = 0, v1 = 0;
    QelContourRotatedRect(10, 20, c.data(), n, 0.0, &u0, &u1, &v0, &v1);
    EXPECT_EQ((std::vector<int>{u0, u1, v0, v1}), (std::vector<int>{10, 14, 20, 23}));
    // At 90 degrees the cosine truncates to 0 and the sine to 1023: u = ⌊−1023·y / 1024⌋,
    // v = ⌊1023·x / 1024⌋, so x = 10..14 gives v = 9..13.
    QelContourRotatedRect(10, 20, c.data(), n, 90.0, &u0, &u1, &v0, &v1);
    EXPECT_EQ((std::vector<int>{u0, u1, v0, v1}), (std::vector<int>{-23, -20, 9, 13}));
}

TEST(ChainPointTests, PointsRowsAndColumnsMetAfterASteps) {
    Chain c = kL;
    const int n = static_cast<int>(c.size());
    EXPECT_EQ(QelContourPosPoints(0, 0, c.data(), n, 3), 5);
    EXPECT_EQ(QelContourPosPoints(0, 0, c.data(), n, 0), 1);  // (1, 0); the start is not counted
    EXPECT_TRUE(QelIsPointOnContour(0, 0, c.data(), n, 1, 1));
    EXPECT_FALSE(QelIsPointOnContour(0, 0, c.data(), n, 1, 2));  // the cut inner corner
    EXPECT_TRUE(QelIsPointOnContour(0, 0, c.data(), n, 0, 0));   // met after the closing code
    EXPECT_FALSE(QelIsPointOnContour(0, 0, c.data(), n - 1, 0, 0));
    EXPECT_TRUE(QelIsHorizontalLineIntersectContour(0, c.data(), n, 3));
    EXPECT_FALSE(QelIsHorizontalLineIntersectContour(0, c.data(), n, 4));
    EXPECT_TRUE(QelIsVerticalLineIntersectContour(0, c.data(), n, 4));
    EXPECT_FALSE(QelIsVerticalLineIntersectContour(0, c.data(), n, 5));
    int columns[4] = {1, 9, 9, 9};
    EXPECT_TRUE(QelIsVerticalLineIntersectContour(0, 0, c.data(), n, columns));
    columns[0] = 0;  // only the start pixel lies on it
    EXPECT_TRUE(QelIsVerticalLineIntersectContour(0, 0, c.data(), n, columns));
    EXPECT_FALSE(QelIsVerticalLineIntersectContour(0, 0, c.data(), n - 1, columns));
}

TEST(ChainWalks, PixelCountsOverAnImage) {
    unsigned char row[5] = {255, 255, 7, 255, 0};
    Chain east = codes("0000");
    // The start pixel counts in one walk and not in the other.
    EXPECT_EQ(QelWhitePixlePassedByChain(row, 5, 0, 0, east.data(), 2), 2);
    EXPECT_EQ(QelPixelsPassedByChain(row, 5, 0, 0, east.data(), 2, 255), 2);
    EXPECT_EQ(QelWhitePixlePassedByChain(row, 5, 0, 0, east.data(), 4), 3);
    EXPECT_EQ(QelPixelsPassedByChain(row, 5, 0, 0, east.data(), 4, 255), 3);
    EXPECT_EQ(QelPixelsPassedByChain(row, 5, 1, 0, east.data(), 1, 255), 1);
    EXPECT_EQ(QelWhitePixlePassedByChain(row, 5, 1, 0, east.data(), 0), 0);
    EXPECT_TRUE(QelHasPixelsOnChain(row, 5, 2, 0, east.data(), 0, 7));  // the start pixel alone
    EXPECT_TRUE(QelHasPixelsOnChain(row, 5, 0, 0, east.data(), 4, 0));
    EXPECT_FALSE(QelHasPixelsOnChain(row, 5, 0, 0, east.data(), 3, 0));
    EXPECT_FALSE(QelHasPixelsOnChain(row, 5, 0, 0, east.data(), 4, 9));
    // A closed 2 x 2 square in a 4 x 4 image: the walk ends on its start pixel.
    std::vector<unsigned char> image(16, 0);
    image[5] = 10, image[9] = 20, image[10] = 30, image[6] = 40;
    Chain square = codes("6024");
    EXPECT_EQ(QelWhitePixlePassedByChain(image.data(), 4, 1, 1, square.data(), 4), 4);
    EXPECT_EQ(QelPixelsPassedByChain(image.data(), 4, 1, 1, square.data(), 4, 10), 2);
    // Five values summed (the start twice) over a divisor of four.
    EXPECT_DOUBLE_EQ(QelContourGryAvr(image.data(), 4, 1, 1, square.data(), 4), 110 / 4.0);
    EXPECT_DOUBLE_EQ(QelContourGryAvr(image.data(), 4, 2, 2, square.data(), 0), 30.0);
}

TEST(ChainMeasures, LineSimilarityFindsTheBestBar) {
    int w = -1, len = -1;
    EXPECT_DOUBLE_EQ(QelLineSimilarity(20, 24, 1, 3, &w, &len), 0.0);
    EXPECT_EQ(w, 2);
    EXPECT_EQ(len, 10);
    EXPECT_DOUBLE_EQ(QelLineSimilarity(20, 24, 1, 1, &w, &len), 9.0 / 11);
    EXPECT_EQ(len, 11);
    EXPECT_DOUBLE_EQ(QelLineSimilarity(20, 24, 3, 3, &w, &len), 7.0 / 20);
    len = -5;
    EXPECT_DOUBLE_EQ(QelLineSimilarity(20, 24, 4, 3, &w, &len), 10000.0);
    EXPECT_EQ(w, 10000);
    EXPECT_EQ(len, -5);
    // The 2 x 2 square (area 3, perimeter 4): width 1 leaves length 1, width 2 stops the loop.
    Chain square = codes("6024");
    EXPECT_DOUBLE_EQ(QelLineSimilarity(99, -99, square.data(), 4, 1, 3, &w, &len), 2.0);
    EXPECT_EQ(w, 1);
    EXPECT_EQ(len, 1);
}

}  // namespace
