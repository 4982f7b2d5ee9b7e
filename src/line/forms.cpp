// Line forms and the conversions between them (ABC, KB, ThroTheta, two points), and the angles of
// lines to the x axis and between two lines.
#include "qel/line.h"

#include "line/line_math.h"
#include "core/exact_math.h"

#include <cmath>

namespace {

// QelTwoPoints2ThroTheta turns radians into degrees with this coarser pi; its theta values (and
// so QelABC2ThroTheta's) depend on it, e.g. the 45 degree diagonal gives 134, not 135.
constexpr double kCoarsePi = 3.14;

// An ABC line is converted through its points at x (or y) = −10 and +10.
constexpr double kAbcSampleOffset = 10.0;

// Points of a ThroTheta line are taken at x or y = 10 and 20.
constexpr double kThroThetaNear = 10.0;
constexpr double kThroThetaFar = 20.0;

double coarse_atan_degrees(double q) { return qel::exact_atan(q) * 180 / kCoarsePi; }

// Folds an atan-based angle of (−90, 90) into [0, 180).
double fold_negative(double degrees) { return degrees < 0 ? degrees + 180 : degrees; }

}  // namespace

void QelABCLine2KBLine(double a, double b, double c, int* flag, double* k, double* bOut) {
    if (std::fabs(a) > std::fabs(b)) {
        *flag = 1;
        *k = -b / a;
        *bOut = -c / a;
    } else {
        *flag = 0;
        *k = -a / b;
        *bOut = -c / b;
    }
}

void QelKBLine2ABCLine(int flag, double k, double b, double* a, double* bOut, double* c) {
    if (flag != 0) {  // x = k·y + b  →  x − k·y − b = 0
        *a = 1;
        *bOut = -k;
        *c = -b;
    } else {  // y = k·x + b  →  k·x − y + b = 0
        *a = k;
        *bOut = -1;
        *c = b;
    }
}

void QelLineKBEquation(int x1, int y1, int x2, int y2, int* flag, double* k, double* b) {
    // Differences in double: exact for any two ints, and 0/0 stays a floating NaN.
    const double dx = static_cast<double>(x2) - x1;
    const double dy = static_cast<double>(y2) - y1;
    if (std::fabs(dx) > std::fabs(dy)) {
        *flag = 0;
        *k = dy / dx;
        *b = y1 - *k * x1;
    } else {
        *flag = 1;
        *k = dx / dy;
        *b = x1 - *k * y1;
    }
}

void QelLineKBEquation(int x1, int y1, int x2, int y2, int* flag, double* k, double* b, double* angle) {
    QelLineKBEquation(x1, y1, x2, y2, flag, k, b);
    if (*flag == 0)
        *angle = fold_negative(qel::atan_degrees(*k));
    else
        *angle = 90 - qel::atan_degrees(*k);
}

double QelGetLineB(int flag, double k, int x, int y) {
    if (flag != 0) return x - y * k;
    return y - x * k;
}

double QelTwoPoints2ThroTheta(double x1, double y1, double x2, double y2, int* rho, int* theta) {
    const double dx = x2 - x1;
    const double dy = y2 - y1;
    const double length = std::sqrt(dx * dx + dy * dy);
    const double cross = x2 * y1 - x1 * y2;
    // rho takes its sign from dx·cross alone, so a vertical pair (dx = 0) always gets a negative rho.
    const double sign = dx * cross > 0 ? 1.0 : -1.0;
    *rho = qel::truncate_to_int(sign * std::fabs(cross) / length);
    double degrees;
    if (std::fabs(dx) > std::fabs(dy))
        degrees = coarse_atan_degrees(dy / dx) + 90;
    else if (dx * dy > 0)
        degrees = 180 - coarse_atan_degrees(dx / dy);
    else
        degrees = -coarse_atan_degrees(dx / dy);
    *theta = qel::truncate_to_int(degrees);
    return length;
}

void QelABC2ThroTheta(double a, double b, double c, int* rho, int* theta) {
    const double near = -kAbcSampleOffset;
    const double far = kAbcSampleOffset;
    if (std::fabs(b) > std::fabs(a))
        QelTwoPoints2ThroTheta(near, -(a * near + c) / b, far, -(a * far + c) / b, rho, theta);
    else
        QelTwoPoints2ThroTheta(-(b * near + c) / a, near, -(b * far + c) / a, far, rho, theta);
}

void QelThroTheta2ABC(int x0, int y0, int rho, int theta, double* a, double* b, double* c) {
    const double t = qel::radians(theta);
    const double cosT = qel::exact_cos(t);
    const double sinT = qel::exact_sin(t);
    double px1, py1, px2, py2;
    if (theta == 0 || theta == 180) {
        px1 = rho / cosT;
        py1 = kThroThetaNear;
        px2 = rho / cosT;
        py2 = kThroThetaFar;
    } else if (theta == 90) {
        px1 = kThroThetaNear;
        py1 = rho;
        px2 = kThroThetaFar;
        py2 = rho;
    } else {
        px1 = kThroThetaNear;
        py1 = (rho - kThroThetaNear * cosT) / sinT;
        px2 = (rho - kThroThetaNear * sinT) / cosT;
        py2 = kThroThetaNear;
    }
    const double X1 = px1 + x0;
    const double Y1 = py1 + y0;
    const double X2 = px2 + x0;
    const double Y2 = py2 + y0;
    *a = Y2 - Y1;
    *b = X1 - X2;
    *c = X2 * Y1 - X1 * Y2;
}

double Qel2PLineAngleDegree2AxisX(double x1, double y1, double x2, double y2) {
    const double dx = x1 - x2;
    const double dy = y1 - y2;
    if (std::fabs(dx) > std::fabs(dy)) return fold_negative(qel::atan_degrees(dy / dx));
    const double q = dy == 0 ? 0.0 : dx / dy;  // two equal points give 90
    return 90 - qel::atan_degrees(q);
}

double QelABCLineAngleDegree2AxisX(double a, double b, double c) {
    double degrees;
    if (std::fabs(b) > std::fabs(a))
        degrees = fold_negative(qel::atan_degrees(-a / b));
    else
        degrees = 90 - qel::atan_degrees(-b / a);
    // A tiny negative angle plus 180 can round to 180 itself; it is reported as 0.
    if (degrees >= 180) degrees -= 180;
    return degrees;
}

double QelABCLineIntersectAngleDegree(double a1, double b1, double c1, double a2, double b2, double c2) {
    if (std::fabs(a1 * b2 - a2 * b1) < qel::kParallelDeterminant) return 0;
    const double d = std::fabs(QelABCLineAngleDegree2AxisX(a1, b1, c1) - QelABCLineAngleDegree2AxisX(a2, b2, c2));
    return 180 - d > d ? d : 180 - d;
}
