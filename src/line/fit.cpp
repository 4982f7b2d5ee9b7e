// Least-squares line fitting to integer points: point arrays, a masked subset, the pixels of a chain
// code, and the two fits that mark outliers and fit again.
#include "qel/line.h"

#include "contour/chain_walk.h"
#include "line/line_math.h"

#include <cmath>
#include <cstdint>

namespace {

// A fitted line in KB form with its angle to the x axis in [0, 180).
struct LineFit {
    int flag;
    double k;
    double b;
    double angle;
};

void write_fit(const LineFit& fit, int* flag, double* k, double* b, double* angle) {
    *flag = fit.flag;
    *k = fit.k;
    *b = fit.b;
    *angle = fit.angle;
}

// The basic fit. `each_point(visit)` calls visit(x, y) once for every participating point, and is
// called twice: once for the means, once for the second moments. The means are sum / count with the
// sums kept in Sum: double for the single-pass fits, a 64-bit integer for the two-pass ones.
//
// Ties go to the flag-1 form x = k·y + b: a single point, or a vertical set, fits flag 1 (a single
// point with k = 0/0), and the exact diagonal fits flag 1 with k = 1.
template <class Sum, class EachPoint>
LineFit basic_fit(EachPoint&& each_point) {
    Sum sumX = 0;
    Sum sumY = 0;
    int count = 0;
    each_point([&](int x, int y) {
        sumX += x;
        sumY += y;
        ++count;
    });
    const double mx = static_cast<double>(sumX) / count;
    const double my = static_cast<double>(sumY) / count;

    double sxx = 0;
    double syy = 0;
    double sxy = 0;
    each_point([&](int x, int y) {
        const double dx = x - mx;
        const double dy = y - my;
        sxx += dx * dx;
        syy += dy * dy;
        sxy += dx * dy;
    });

    LineFit fit;
    if (sxx > syy) {
        fit.flag = 0;
        fit.k = sxy / sxx;
        fit.b = my - fit.k * mx;
        fit.angle = qel::atan_degrees(fit.k);
        if (fit.angle < 0) fit.angle += 180;
    } else {
        fit.flag = 1;
        fit.k = sxy / syy;
        fit.b = mx - fit.k * my;
        fit.angle = 90 - qel::atan_degrees(fit.k);
    }
    return fit;
}

// Distance of (x, y) from the fitted line along the fit's own axis, before normalisation:
// |k·x − y + b| for flag 0, |x − k·y − b| for flag 1.
double axis_residual(const LineFit& fit, int x, int y) {
    if (fit.flag == 0) return std::fabs(fit.k * x - y + fit.b);
    return std::fabs(x - fit.k * y - fit.b);
}

// The error outputs of the two single-pass fits over n points. The square root of k² + 1 (not
// k² + 1 itself) divides the mean of the squares: callers compare against these values.
template <class EachPoint>
void fit_errors(const LineFit& fit, int n, EachPoint&& each_point, double* meanError, double* maxError) {
    double maxR = 0;
    double sumR2 = 0;
    each_point([&](int x, int y) {
        const double r = axis_residual(fit, x, y);
        if (r > maxR) maxR = r;
        sumR2 += r * r;
    });
    const double norm = std::sqrt(fit.k * fit.k + 1);
    *meanError = std::sqrt(sumR2 / (n * norm));
    *maxError = maxR / norm;
}

// Visits the n points of parallel arrays whose index passes keep(i).
template <class Keep>
auto points_where(const int* x, const int* y, int n, Keep keep) {
    return [=](auto&& visit) {
        for (int i = 0; i < n; ++i)
            if (keep(i)) visit(x[i], y[i]);
    };
}

auto all_points(const int* x, const int* y, int n) {
    return points_where(x, y, n, [](int) { return true; });
}

// The two-pass fits need at least this many points.
constexpr int kTwoPassMinPoints = 3;

// Marks of QelFittingLineTwice: kept points get 1, rejected ones 100; the refit takes marks below 2.
constexpr int kMarkKept = 1;
constexpr int kMarkRejected = 100;
constexpr int kMarkRefitLimit = 2;

// QelFittingLineTwiceByMean weighs each residual as truncate(r · 100).
constexpr double kResidualWeightScale = 100;

}  // namespace

void QelFittingLine(int* x, int* y, int n, int* flag, double* k, double* b, double* angle, double* meanError,
                    double* maxError) {
    const auto points = all_points(x, y, n);
    const LineFit fit = basic_fit<double>(points);
    write_fit(fit, flag, k, b, angle);
    fit_errors(fit, n, points, meanError, maxError);
}

void QelFittingLine(int x0, int y0, unsigned char* codes, int n, int* flag, double* k, double* b, double* angle,
                    double* meanError, double* maxError) {
    // The start point and the points after each of the first n − 1 codes: the last code, which
    // closes a contour, is not applied. The chain is walked afresh for every pass.
    const auto points = [=](auto&& visit) {
        if (n > 0) qel::walk_chain(x0, y0, codes, n - 1, visit);
    };
    const LineFit fit = basic_fit<double>(points);
    write_fit(fit, flag, k, b, angle);
    fit_errors(fit, n, points, meanError, maxError);
}

void QelFittingLineMsk(int* x, int* y, bool* mask, int n, int* flag, double* k, double* b, double* angle) {
    write_fit(basic_fit<double>(points_where(x, y, n, [mask](int i) { return mask[i]; })), flag, k, b, angle);
}

bool QelFittingLineTwice(int* x, int* y, int* marks, int n, int* flag, double* k, double* b, double* angle) {
    if (n < kTwoPassMinPoints) return false;
    const LineFit first = basic_fit<int64_t>(all_points(x, y, n));
    write_fit(first, flag, k, b, angle);

    // The residual is taken in the flag-1 form whatever the fit's flag, and a point is kept when
    // s > r or s > −r. Since s ≥ 1 one of the two always holds for a real fit, so every point is
    // kept; only a fit with k = NaN (all points equal) rejects them all.
    const double s = std::sqrt(first.k * first.k + 1);
    int kept = 0;
    for (int i = 0; i < n; ++i) {
        const double r = x[i] - first.k * y[i] - first.b;
        if (s > r || s > -r) {
            marks[i] = kMarkKept;
            ++kept;
        } else {
            marks[i] = kMarkRejected;
        }
    }
    const int64_t m = kept;
    if (2 * m < n) return false;
    if (3 * m > 2 * static_cast<int64_t>(n) + 2) return true;  // nearly all kept: the first fit stands
    write_fit(basic_fit<int64_t>(points_where(x, y, n, [marks](int i) { return marks[i] < kMarkRefitLimit; })),
              flag, k, b, angle);
    return true;
}

bool QelFittingLineTwiceByMean(int* x, int* y, int* weights, int n, int* flag, double* k, double* b,
                               double* angle) {
    if (n < kTwoPassMinPoints) return false;
    const LineFit first = basic_fit<int64_t>(all_points(x, y, n));
    write_fit(first, flag, k, b, angle);

    int64_t sum = 0;
    for (int i = 0; i < n; ++i) {
        weights[i] = qel::truncate_to_int(axis_residual(first, x[i], y[i]) * kResidualWeightScale);
        sum += weights[i];
    }
    const int64_t threshold = sum / n;  // integer division, truncating
    const auto keep = [weights, threshold](int i) { return weights[i] <= threshold; };
    int kept = 0;
    for (int i = 0; i < n; ++i)
        if (keep(i)) ++kept;
    if (kept < 2) return false;  // the first fit stays in the outputs
    write_fit(basic_fit<int64_t>(points_where(x, y, n, keep)), flag, k, b, angle);
    return true;
}
