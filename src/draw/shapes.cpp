// Ellipses drawn by chords and polygons, on grey images.
#include "qel/draw.h"

#include "draw/raster.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace {

// A point in 64 bits: mirror images of far-away points may leave the int range.
struct Point64 {
    int64_t x, y;
};

void chord(const qel::draw::GreyPen& pen, int width, int height, Point64 a, Point64 b) {
    qel::draw::draw_line(pen, width, height, qel::draw::narrow_coordinate(a.x), qel::draw::narrow_coordinate(a.y),
                   qel::draw::narrow_coordinate(b.x), qel::draw::narrow_coordinate(b.y));
}

// The chord from a to b and its mirror images about column cx and row cy.
void four_chords(const qel::draw::GreyPen& pen, int width, int height, int64_t cx, int64_t cy, Point64 a, Point64 b) {
    chord(pen, width, height, a, b);
    chord(pen, width, height, {2 * cx - a.x, a.y}, {2 * cx - b.x, b.y});
    chord(pen, width, height, {a.x, 2 * cy - a.y}, {b.x, 2 * cy - b.y});
    chord(pen, width, height, {2 * cx - a.x, 2 * cy - a.y}, {2 * cx - b.x, 2 * cy - b.y});
}

// Row of the ellipse's upper left quarter in column x: truncate(cy − (ry/rx)·sqrt(rx² − (x − cx)²)).
// The square root's argument is formed in 64 bits (rx² overflows an int for large radii) and the
// row is limited to ±2^62 before truncation, far outside any image, so it stays defined.
int64_t quarter_row(int64_t x, int64_t cx, int64_t cy, int64_t rx, double ratio) {
    const int64_t d = x - cx;
    const double root = std::sqrt(static_cast<double>(rx * rx - d * d));
    const double y = static_cast<double>(cy) - ratio * root;
    constexpr double kLimit = 4611686018427387904.0;  // 2^62
    return static_cast<int64_t>(std::max(-kLimit, std::min(y, kLimit)));
}

}  // namespace

void QelDrawCircle(unsigned char* img, int width, int height, int cx, int cy, int rx, int ry, int grey) {
    if (width <= 0 || height <= 0 || rx < 0) return;
    const qel::draw::GreyPen pen(img, width, grey);
    const int64_t cx64 = cx;
    const int64_t cy64 = cy;
    if (rx == 0) {
        // No width: the chord from the centre to the top (cx, cy − ry) and its mirror image.
        four_chords(pen, width, height, cx64, cy64, {cx64, cy64}, {cx64, cy64 - ry});
        return;
    }
    const double ratio = static_cast<double>(ry) / rx;
    // A column matters only if it, or its mirror image about cx, lies inside the image. Outside
    // those, each chord and its mirror images fall on one border column each, where consecutive
    // chords join into one run of rows: such stretches are drawn as one chord from their first
    // column to their last (the rows move monotonically along the quarter), which keeps huge
    // radii cheap and gives the same pixels.
    const int64_t mirrorFrom = 2 * cx64 - (width - 1);  // columns whose mirror image is inside
    const int64_t mirrorTo = 2 * cx64;
    const auto inside = [&](int64_t x) {
        return (x >= 0 && x <= width - 1) || (x >= mirrorFrom && x <= mirrorTo);
    };
    Point64 previous{cx64 - rx, cy64};
    for (int64_t x = cx64 - rx; x <= cx64;) {
        const Point64 point{x, quarter_row(x, cx64, cy64, rx, ratio)};
        four_chords(pen, width, height, cx64, cy64, previous, point);
        previous = point;
        int64_t next = x + 1;
        if (!inside(x) && next <= cx64 && !inside(next)) {
            // Jump to the last column before the next one that matters (or to cx).
            int64_t last = cx64;
            if (x < 0) last = std::min<int64_t>(last, -1);
            if (x < mirrorFrom) last = std::min(last, mirrorFrom - 1);
            next = std::max(next, last);
        }
        x = next;
    }
}

void QelDrawPolygon(unsigned char* img, int width, int height, int* xs, int* ys, int n, int dx, int dy, int grey) {
    if (n < 2) return;
    const auto point_x = [&](int i) { return qel::draw::sat_add(xs[i], dx); };
    const auto point_y = [&](int i) { return qel::draw::sat_add(ys[i], dy); };
    if (n == 2) {
        // The second end's row is shifted by dx, not dy: kept as built.
        QelGryLine(img, width, height, point_x(0), point_y(0), point_x(1), qel::draw::sat_add(ys[1], dx), grey);
        return;
    }
    for (int i = 0; i + 1 < n; ++i)
        QelGryLine(img, width, height, point_x(i), point_y(i), point_x(i + 1), point_y(i + 1), grey);
    QelGryLine(img, width, height, point_x(n - 1), point_y(n - 1), point_x(0), point_y(0), grey);
}
