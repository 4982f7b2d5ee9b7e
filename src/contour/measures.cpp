// Measures of a chain code: area and perimeter (trapezoid and pixel-exact), bounding boxes
// (upright and turned), centre, mean grey level along the chain, and the fit to a bar.
#include "qel/contour.h"

#include "contour/chain_walk.h"
#include "core/exact_math.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace {

using qel::chain_code;

// Pixel-exact area, counted column by column: what a chain point adds, by the code entering it
// [prev] and the code leaving it [cur]. Rows are offsets from the start row.
enum PointKind : unsigned char {
    kRunTop = 0,     // first pixel of a column run: subtracts its row
    kRunBottom = 1,  // last pixel of a column run: adds its row + 1
    kPassing = 2,    // adds nothing
    kWholeRun = 3,   // a run of one pixel: adds 1
};

constexpr unsigned char kPointKind[8][8] = {
    {1, 1, 1, 3, 3, 2, 2, 1},
    {1, 1, 1, 3, 3, 3, 2, 1},
    {2, 2, 2, 0, 0, 0, 0, 2},
    {2, 2, 2, 0, 0, 0, 0, 3},
    {3, 2, 2, 0, 0, 0, 0, 3},
    {3, 3, 2, 0, 0, 0, 0, 3},
    {1, 1, 1, 2, 2, 2, 2, 1},
    {1, 1, 1, 3, 2, 2, 2, 1},
};

// Even codes are unit steps, odd codes diagonal ones; the sum is rounded.
int chain_perimeter(const unsigned char* chain, int n) {
    int even = 0;
    int odd = 0;
    for (int i = 0; i < n; ++i) {
        if (chain_code(chain, i) % 2 == 0)
            ++even;
        else
            ++odd;
    }
    return static_cast<int>(even * 1.0 + odd * std::sqrt(2.0) + 0.5);
}

// Signed count of enclosed pixels: each column run contributes (bottom + 1) − top.
int enclosed_sum(const unsigned char* chain, int n) {
    int sum = 0;
    qel::walk_chain_turns(0, 0, chain, n, [&sum](int, int y, int prev, int cur) {
        switch (kPointKind[prev][cur]) {
            case kRunTop: sum -= y; break;
            case kRunBottom: sum += y + 1; break;
            case kWholeRun: sum += 1; break;
            default: break;
        }
    });
    return sum;
}

// Bar misfits start above any real misfit; the width output starts at the same value.
constexpr double kNoMisfit = 10000.0;
constexpr int kNoWidth = 10000;

constexpr double kPi = 3.1415926;
// Turned coordinates are in 10-bit fixed point.
constexpr int kRotationShift = 10;
constexpr double kRotationScale = 1 << kRotationShift;

}  // namespace

void QelAreaAndPerimeter(unsigned char* chain, int n, int* area, int* perimeter) {
    double signedArea = 0.0;  // trapezoid sum: each x step times the mean row of the step
    int y = 0;
    for (int i = 0; i < n; ++i) {
        const int k = chain_code(chain, i);
        signedArea += qel::kDx[k] * (y + qel::kDy[k] * 0.5);
        y += qel::kDy[k];
    }
    const int p = chain_perimeter(chain, n);
    *perimeter = p;
    // The integer half perimeter adds the boundary pixels' outer halves.
    *area = static_cast<int>(std::fabs(signedArea) + 0.5 + p / 2);
}

void QelRealAreaAndPerimeter(unsigned char* chain, int n, int* area, int* perimeter) {
    *area = std::abs(enclosed_sum(chain, n));
    *perimeter = chain_perimeter(chain, n);
}

int QelRealPixelsEnclosed(unsigned char* chain, int n) { return std::abs(enclosed_sum(chain, n)); }

void QelContourRect(int x0, int y0, unsigned char* chain, int n, int* left, int* right, int* top, int* bottom) {
    int l = x0, r = x0, t = y0, b = y0;
    // Only corners (where the direction changes) can be extreme; the closing point is the start.
    int i = 0;
    qel::walk_chain(x0, y0, chain, n - 1, [&](int x, int y) {
        const bool isCorner = i > 0 && chain_code(chain, i - 1) != chain_code(chain, i);
        ++i;
        if (!isCorner) return;
        if (x > r)
            r = x;
        else if (x < l)
            l = x;
        if (y > b)
            b = y;
        else if (y < t)
            t = y;
    });
    *left = l;
    *right = r;
    *top = t;
    *bottom = b;
}

void QelContourCenter(int x0, int y0, unsigned char* chain, int n, int* centerX, int* centerY) {
    if (n <= 0) {  // a lone pixel has no codes: its centre is itself
        *centerX = x0;
        *centerY = y0;
        return;
    }
    double sumX = 0.0;
    double sumY = 0.0;
    qel::walk_chain(x0, y0, chain, n - 1, [&](int x, int y) {
        sumX += x;
        sumY += y;
    });
    *centerX = static_cast<int>(sumX / n + 0.5);
    *centerY = static_cast<int>(sumY / n + 0.5);
}

void QelContourRotatedRect(int x0, int y0, unsigned char* chain, int n, double angle, int* minU, int* maxU,
                           int* minV, int* maxV) {
    const double radians = angle * kPi / 180;
    const int c = static_cast<int>(qel::exact_cos(radians) * kRotationScale);
    const int s = static_cast<int>(qel::exact_sin(radians) * kRotationScale);
    // Arithmetic right shifts: negative coordinates round toward minus infinity.
    const auto turnedU = [c, s](int x, int y) { return (x * c - y * s) >> kRotationShift; };
    const auto turnedV = [c, s](int x, int y) { return (x * s + y * c) >> kRotationShift; };
    int u0 = turnedU(x0, y0), u1 = u0;
    int v0 = turnedV(x0, y0), v1 = v0;
    qel::walk_chain(x0, y0, chain, n - 1, [&](int x, int y) {
        const int u = turnedU(x, y);
        const int v = turnedV(x, y);
        if (u < u0) u0 = u;
        if (u > u1) u1 = u;
        if (v < v0) v0 = v;
        if (v > v1) v1 = v;
    });
    *minU = u0;
    *maxU = u1;
    *minV = v0;
    *maxV = v1;
}

double QelContourGryAvr(unsigned char* image, int width, int x0, int y0, unsigned char* chain, int n) {
    if (n <= 0) return image[qel::pixel_index(x0, y0, width)];  // a lone pixel: its own value
    int64_t sum = 0;
    qel::walk_chain(x0, y0, chain, n, [&](int x, int y) { sum += image[qel::pixel_index(x, y, width)]; });
    // n + 1 pixels are summed (the start twice on a closed chain) but the divisor is n, as callers expect.
    return static_cast<double>(sum) / n;
}

double QelLineSimilarity(int area, int perimeter, int minWidth, int maxWidth, int* bestWidth, int* bestLength) {
    double best = kNoMisfit;
    *bestWidth = kNoWidth;
    for (int w = minWidth; w <= maxWidth; ++w) {
        const double length = perimeter / 2.0 - w;
        if (length < 1.0) break;
        const double barArea = w * length;
        const double smaller = barArea <= area ? barArea : area;
        const double misfit = std::fabs(area - barArea) / smaller;
        if (misfit < best) {
            best = misfit;
            *bestWidth = w;
            *bestLength = static_cast<int>(length + 0.5);
        }
    }
    return best;
}

double QelLineSimilarity(int x0, int y0, unsigned char* chain, int n, int minWidth, int maxWidth, int* bestWidth,
                         int* bestLength) {
    int area = 0;
    int perimeter = 0;
    QelAreaAndPerimeter(chain, n, &area, &perimeter);
    return QelLineSimilarity(area, perimeter, minWidth, maxWidth, bestWidth, bestLength);
}
