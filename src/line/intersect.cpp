// Intersections of two lines in the ABC, KB and ThroTheta forms, the x of a ThroTheta line on a
// row, and distances and sides of points relative to lines.
#include "qel/line.h"

#include "line/line_math.h"
#include "core/exact_math.h"

#include <cmath>
#include <cstdint>

namespace {

// The ThroTheta intersection solves for x first when the first line's cosine is at most this.
constexpr double kThroThetaZeroCosine = 1e-6;
// QelGetHoughLinePointX refuses lines whose cosine is at most this (horizontal lines).
constexpr double kHoughZeroCosine = 1e-5;

}  // namespace

bool QelPointOfIntersection(double a1, double b1, double c1, double a2, double b2, double c2, double* x,
                            double* y) {
    const double det = a1 * b2 - a2 * b1;
    if (std::fabs(det) < qel::kParallelDeterminant) return false;
    *y = -(a1 * c2 - a2 * c1) / det;
    *x = -(b2 * c1 - b1 * c2) / det;
    return true;
}

bool QelPointOfIntersection(int flag1, double k1, double b1, int flag2, double k2, double b2, double* x,
                            double* y) {
    const bool vertical1 = flag1 != 0;  // x = k·y + b
    const bool vertical2 = flag2 != 0;
    // Parallel only on exact equality: nearly parallel lines meet far away.
    if (vertical1 == vertical2) {
        if (k1 == k2) return false;
    } else if (k1 * k2 == 1) {
        return false;
    }
    if (vertical1 && vertical2) {
        *y = (b2 - b1) / (k1 - k2);
        *x = k2 * *y + b2;
    } else if (vertical1) {
        *y = (k2 * b1 + b2) / (1 - k1 * k2);
        *x = k1 * *y + b1;
    } else if (vertical2) {
        *y = (k1 * b2 + b1) / (1 - k1 * k2);
        *x = k2 * *y + b2;
    } else {
        *x = (b1 - b2) / (k2 - k1);
        *y = k1 * *x + b1;
    }
    return true;
}

bool QelPointOfIntersection(int rho1, int theta1, int rho2, int theta2, double* x, double* y) {
    // Only equal degrees count as parallel; 0 and 180 pass and meet "at infinity".
    if (theta1 == theta2) return false;
    const double c1 = qel::exact_cos(qel::radians(theta1));
    const double s1 = qel::exact_sin(qel::radians(theta1));
    const double c2 = qel::exact_cos(qel::radians(theta2));
    const double s2 = qel::exact_sin(qel::radians(theta2));
    if (std::fabs(c1) > kThroThetaZeroCosine) {
        *y = (rho2 * c1 - rho1 * c2) / (s2 * c1 - s1 * c2);
        *x = (rho1 - *y * s1) / c1;
    } else {
        *x = (rho2 * s1 - rho1 * s2) / (c2 * s1 - c1 * s2);
        *y = (rho1 - *x * c1) / s1;
    }
    return true;
}

bool QelGetHoughLinePointX(int rho, int theta, int y, double* x) {
    const double t = qel::radians(theta);
    const double c = qel::exact_cos(t);
    if (std::fabs(c) <= kHoughZeroCosine) return false;
    *x = (rho - y * qel::exact_sin(t)) / c;
    return true;
}

double QelDistBetweenPoint12(double x1, double y1, double x2, double y2) {
    const double dx = x1 - x2;
    const double dy = y1 - y2;
    return std::sqrt(dx * dx + dy * dy);
}

double QelDistFromPoint2KBLine(int x, int y, int flag, double k, double b) {
    const double norm = std::sqrt(k * k + 1);
    if (flag != 0) return std::fabs(x - k * y - b) / norm;
    return std::fabs(k * x - y + b) / norm;
}

double QelDistFromPoint3To2PLine(int x1, int y1, int x2, int y2, int x3, int y3) {
    const double dx = static_cast<double>(x2) - x1;
    const double dy = static_cast<double>(y2) - y1;
    // The two cross products are 32-bit integer products: they wrap for coordinates beyond ±46340.
    const int32_t p21 = qel::wrapping_product(x2, y1);
    const int32_t p12 = qel::wrapping_product(x1, y2);
    const double numerator = x3 * dy - y3 * dx + p21 - p12;
    return std::fabs(numerator) / std::sqrt(dy * dy + dx * dx);
}

int QelWhichSideIsPoint3ToLine(int x1, int y1, int x2, int y2, int x3, int y3) {
    double d;
    if (x2 != x1) {
        const double dx = static_cast<double>(x2) - x1;
        const double slope = (static_cast<double>(y2) - y1) / dx;
        const double intercept = (static_cast<double>(x2) * y1 - static_cast<double>(x1) * y2) / dx;
        d = y3 - (slope * x3 + intercept);
    } else {
        d = static_cast<double>(x3) - x2;
    }
    return d > 0 ? 1 : (d < 0 ? -1 : 0);
}
