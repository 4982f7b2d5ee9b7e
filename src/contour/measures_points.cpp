// Point tests on a chain code (on the contour, inside it, meeting a row or column) and the walks
// that count or look for pixel values along a chain over an image.
#include "qel/contour.h"

#include "contour/chain_walk.h"

namespace {

// Inside test by a signed count of crossings, tables indexed [prev][cur] by the codes entering
// and leaving a chain point.
//
// Crossing: a chain point on the tested row, at or right of the tested column, counts +1 where the
// chain passes the row going up and −1 where it passes going down.
constexpr int kRayCrossing[8][8] = {
    {0, 1, 1, 1, 1, 0, 0, 0},
    {0, 1, 1, 1, 1, 0, 0, 0},
    {0, 1, 1, 1, 1, 0, 0, 0},
    {0, 1, 1, 1, 1, 0, 0, 0},
    {-1, 0, 0, 0, 0, -1, -1, -1},
    {-1, 0, 0, 0, 0, -1, -1, -1},
    {-1, 0, 0, 0, 0, -1, -1, -1},
    {-1, 0, 0, 0, 0, -1, -1, -1},
};

// Coincidence: added when the chain point is the tested point itself, together with its crossing
// (the point is on its own ray), so that boundary points come out as included.
constexpr int kAtPoint[8][8] = {
    {0, 0, 0, 0, 0, 0, 0, 0},
    {0, 0, 0, 0, 0, 1, 0, 0},
    {0, 0, 0, 0, 0, 1, 1, 0},
    {0, 0, 0, 0, 0, 1, 1, 1},
    {1, 0, 0, 0, 0, 1, 1, 1},
    {1, 1, 0, 0, 0, 1, 1, 1},
    {1, 1, 1, 0, 0, 1, 1, 1},
    {1, 1, 1, 1, 0, 1, 1, 1},
};

// Number of visited pixels for which pred(value) holds: the pixels reached after each of the n
// codes, and the start pixel too when withStart is set.
template <class Pred>
int count_pixels(const unsigned char* image, int width, int x0, int y0, const unsigned char* chain, int n,
                 bool withStart, Pred&& pred) {
    int count = 0;
    bool isStart = true;
    qel::walk_chain(x0, y0, chain, n, [&](int x, int y) {
        if ((withStart || !isStart) && pred(image[qel::pixel_index(x, y, width)])) ++count;
        isStart = false;
    });
    return count;
}

}  // namespace

int QelContourPosPoints(int x0, int y0, unsigned char* chain, int n, int row) {
    int count = 0;
    bool isStart = true;
    qel::walk_chain(x0, y0, chain, n - 1, [&](int, int y) {
        if (!isStart && y == row) ++count;
        isStart = false;
    });
    return count;
}

bool QelIsPointOnContour(int x0, int y0, unsigned char* chain, int n, int x, int y) {
    return qel::any_point_after_step(x0, y0, chain, n, [x, y](int px, int py) { return px == x && py == y; });
}

bool QelIsHorizontalLineIntersectContour(int y0, unsigned char* chain, int n, int row) {
    return qel::any_point_after_step(0, y0, chain, n, [row](int, int py) { return py == row; });
}

bool QelIsVerticalLineIntersectContour(int x0, unsigned char* chain, int n, int column) {
    return qel::any_point_after_step(x0, 0, chain, n, [column](int px, int) { return px == column; });
}

bool QelIsVerticalLineIntersectContour(int x0, int y0, unsigned char* chain, int n, int* columnPerRow) {
    return qel::any_point_after_step(x0, y0, chain, n, [columnPerRow](int px, int py) {
        return columnPerRow[py] == px;
    });
}

int QelWhitePixlePassedByChain(unsigned char* image, int width, int x0, int y0, unsigned char* chain, int n) {
    // The start pixel is deliberately left out here and counted by QelPixelsPassedByChain.
    return count_pixels(image, width, x0, y0, chain, n, false, [](unsigned char v) { return v != 0; });
}

bool QelHasPixelsOnChain(unsigned char* image, int width, int x0, int y0, unsigned char* chain, int n, int value) {
    if (image[qel::pixel_index(x0, y0, width)] == value) return true;
    return qel::any_point_after_step(x0, y0, chain, n, [&](int x, int y) {
        return image[qel::pixel_index(x, y, width)] == value;
    });
}

int QelPixelsPassedByChain(unsigned char* image, int width, int x0, int y0, unsigned char* chain, int n, int value) {
    return count_pixels(image, width, x0, y0, chain, n, true, [value](unsigned char v) { return v == value; });
}

bool QelIsPointIncludedByChain(int x, int y, int x0, int y0, unsigned char* chain, int n) {
    int sum = 0;
    qel::walk_chain_turns(x0, y0, chain, n, [&](int px, int py, int prev, int cur) {
        const bool onRay = py == y && px - x >= 0;
        const bool atPoint = px == x && py == y;
        sum += (atPoint ? kAtPoint[prev][cur] : 0) + (onRay ? kRayCrossing[prev][cur] : 0);
    });
    return sum != 0;
}
