// Clipping lines to the image or to a rectangle: the border points of ABC, KB and ThroTheta lines.
#include "qel/line.h"

#include "line/line_math.h"
#include "core/exact_math.h"

#include <cmath>
#include <utility>

namespace {

// First index i of from, from + step, ... (stopping before past) whose position(i) lies in
// [0, limit); stores i and the position. Returns whether one was found.
template <typename Position>
bool first_inside(int from, int past, int step, int limit, Position position, int* index, int* value) {
    for (int i = from; i != past; i += step) {
        const int p = position(i);
        if (p >= 0 && p < limit) {
            *index = i;
            *value = p;
            return true;
        }
    }
    return false;
}

int clamp_to(int v, int last) {
    if (v < 0) v = 0;
    if (v > last) v = last;
    return v;
}

// The two rectangle ends of a KB line, rounded and clamped to the image.
void kb_rect_ends(int width, int height, int left, int right, int top, int bottom, int flag, double k, double b,
                  int xs[2], int ys[2]) {
    double px[2], py[2];
    if (flag == 0) {  // y = k·x + b, cut by the columns left and right
        px[0] = left;
        px[1] = right;
        py[0] = k * left + b;
        py[1] = k * right + b;
    } else {  // x = k·y + b, cut by the rows top and bottom
        py[0] = top;
        py[1] = bottom;
        px[0] = k * top + b;
        px[1] = k * bottom + b;
    }
    for (int i = 0; i < 2; ++i) {
        xs[i] = clamp_to(qel::round_half_up_truncated(px[i]), width - 1);
        ys[i] = clamp_to(qel::round_half_up_truncated(py[i]), height - 1);
    }
}

}  // namespace

bool QelABCLineImgBoundary(int width, int height, double a, double b, double c, int* x1, int* y1, int* x2,
                           int* y2) {
    bool foundFirst, foundSecond;
    if (std::fabs(b) > std::fabs(a)) {  // closer to horizontal: one row per column, rounded
        const auto rowAt = [&](int x) { return qel::round_half_up_truncated(-(a * x + c) / b); };
        foundFirst = first_inside(0, width, 1, height, rowAt, x1, y1);
        foundSecond = first_inside(width - 1, -1, -1, height, rowAt, x2, y2);
    } else {
        // Closer to vertical: one column per row, truncated without rounding, and the last column
        // is outside the accepted range; callers see x = width − 1 rejected.
        const auto columnAt = [&](int y) { return qel::truncate_to_int(-(b * y + c) / a); };
        foundFirst = first_inside(0, height, 1, width - 1, columnAt, y1, x1);
        foundSecond = first_inside(height - 1, -1, -1, width - 1, columnAt, y2, x2);
    }
    return foundFirst && foundSecond;
}

bool QelKBLineImgBoundary(int width, int height, int flag, double k, double b, int* x1, int* y1, int* x2,
                          int* y2) {
    // Top row, bottom row, left column, right column, each a KB line with k = 0. A row is passed as
    // the first line and a column as the second, so that the KB intersection puts every crossing
    // exactly on its border line instead of recomputing that coordinate through the line.
    struct Border {
        bool isRow;
        double at;
    };
    const Border borders[4] = {{true, 0.0}, {true, height - 1.0}, {false, 0.0}, {false, width - 1.0}};
    double xs[4], ys[4];
    int n = 0;
    for (const Border& border : borders) {
        double x, y;
        const bool meets = border.isRow ? QelPointOfIntersection(0, 0.0, border.at, flag, k, b, &x, &y)
                                        : QelPointOfIntersection(flag, k, b, 1, 0.0, border.at, &x, &y);
        if (meets && x >= 0 && x < width && y >= 0 && y < height) {
            xs[n] = x;
            ys[n] = y;
            ++n;
        }
    }
    if (n < 2) return false;
    // Exchange sort by x; equal x keep their border order.
    for (int i = 0; i < n; ++i)
        for (int j = i + 1; j < n; ++j)
            if (xs[i] > xs[j]) {
                std::swap(xs[i], xs[j]);
                std::swap(ys[i], ys[j]);
            }
    *x1 = qel::truncate_to_int(xs[0]);
    *y1 = qel::truncate_to_int(ys[0]);
    *x2 = qel::truncate_to_int(xs[1]);
    *y2 = qel::truncate_to_int(ys[1]);
    return true;
}

bool QelKBLineRectBoundary(int width, int height, int left, int right, int top, int bottom, int flag, double k,
                           double b, int* xs, int* ys) {
    kb_rect_ends(width, height, left, right, top, bottom, flag, k, b, xs, ys);
    return true;
}

void QelKBLineBeginEndPoint(int width, int height, int left, int right, int top, int bottom, int flag, double k,
                            double b, int* x1, int* y1, int* x2, int* y2) {
    int xs[2], ys[2];
    kb_rect_ends(width, height, left, right, top, bottom, flag, k, b, xs, ys);
    *x1 = xs[0];
    *y1 = ys[0];
    *x2 = xs[1];
    *y2 = ys[1];
}

bool QelHoughLineImgBoundary(int width, int height, int rho, int theta, int* xs, int* ys) {
    xs[0] = xs[1] = 0;
    ys[0] = ys[1] = 0;
    if (theta == 90) {  // horizontal, taken as it is
        xs[1] = width - 1;
        ys[0] = ys[1] = rho;
        return true;
    }
    if (theta == 0) {  // vertical, taken as it is
        xs[0] = xs[1] = rho;
        ys[1] = height - 1;
        return true;
    }
    const double t = qel::radians(theta);
    const double c = qel::exact_cos(t);
    const double s = qel::exact_sin(t);
    int n = 0;
    const auto keep = [&](int x, int y) {
        xs[n] = x;
        ys[n] = y;
        ++n;
    };
    const int leftY = qel::truncate_to_int(rho / s);
    if (leftY >= 0 && leftY <= height - 1) keep(0, leftY);
    const int rightY = qel::truncate_to_int((rho - (width - 1) * c) / s);
    if (rightY >= 0 && rightY <= height - 1) keep(width - 1, rightY);
    if (n < 2) {
        // Slot 1 still holds its initial 0 after a single side crossing, so the top crossing is
        // taken only when nothing was kept; callers rely on this rule as it stands.
        const int topX = qel::truncate_to_int(rho / c);
        if (topX >= 0 && topX < width && (n == 0 || ys[1] != 0)) keep(topX, 0);
    }
    if (n < 2) {
        const int bottomX = qel::truncate_to_int((rho - (height - 1) * s) / c);
        if (bottomX < 0 || bottomX >= width) return false;
        if (n > 0 && ys[1] == height - 1) return false;
        keep(bottomX, height - 1);
    }
    return n == 2;
}
