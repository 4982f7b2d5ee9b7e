#include <qel.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <tuple>
#include <vector>

namespace {

using PointList = std::vector<std::pair<int, int>>;

struct Fit {
    int flag = -1;
    double k = -7, b = -7, angle = -7, meanError = -7, maxError = -7;
    int result = -1;  // of the two-pass fits
    auto kb() const { return std::make_tuple(flag, k, b); }
};

// Fits the points with `fitter(x, y, n, &fit)`; x and y are the caller's arrays.
template <class Fitter>
Fit fit_with(const PointList& points, Fitter fitter) {
    std::vector<int> x, y;
    for (auto [px, py] : points) x.push_back(px), y.push_back(py);
    Fit f;
    fitter(x.data(), y.data(), static_cast<int>(points.size()), f);
    return f;
}

Fit fit(const PointList& points) {
    return fit_with(points, [](int* x, int* y, int n, Fit& f) {
        QelFittingLine(x, y, n, &f.flag, &f.k, &f.b, &f.angle, &f.meanError, &f.maxError);
    });
}

Fit fit_chain(int x0, int y0, std::vector<unsigned char> codes) {
    Fit f;
    QelFittingLine(x0, y0, codes.data(), static_cast<int>(codes.size()), &f.flag, &f.k, &f.b, &f.angle, &f.meanError,
                   &f.maxError);
    return f;
}

double degrees(double k) { return std::atan(k) * 180 / 3.1415926; }

// y = 0.5·x + 1 with (3, 0) off it: means (3, 2), Sxx 20, Syy 10, Sxy 10, so y = 0.5·x + 0.5 with
// residuals 0.5 (four times) and 2. Without (3, 0): y = 0.5·x + 1.
const PointList kOffLine = {{0, 1}, {2, 2}, {4, 3}, {6, 4}, {3, 0}};

TEST(LineFitting, SmallSetsByHand) {
    const struct {
        PointList points;
        int flag;
        double k, b, angle;
    } cases[] = {
        {{{0, 0}, {1, 1}, {2, 2}}, 1, 1, 0, 90 - degrees(1)},  // Sxx = Syy takes flag 1; pi is 3.1415926
        {{{0, 5}, {1, 5}, {2, 5}, {3, 5}}, 0, 0, 5, 0},
        {{{3, 0}, {3, 1}, {3, 2}}, 1, 0, 3, 90},
        {kOffLine, 0, 0.5, 0.5, degrees(0.5)},
        {{{0, 1}, {1, 1}, {2, 0}, {3, 0}}, 0, -0.4, 0.5 + 0.4 * 1.5, 180 + degrees(-0.4)},  // folded into [0, 180)
        {{{2, 0}, {1, 2}, {0, 4}}, 1, -0.5, 2, 90 + degrees(0.5)},
    };
    for (const auto& c : cases) {
        const Fit f = fit(c.points);
        EXPECT_EQ(f.kb(), std::make_tuple(c.flag, c.k, c.b));
        EXPECT_DOUBLE_EQ(f.angle, c.angle);
    }
    const Fit off = fit(kOffLine);
    EXPECT_DOUBLE_EQ(off.meanError, std::sqrt(5 / (5 * std::sqrt(1.25)))) << "sqrt(k² + 1) in the divisor";
    EXPECT_DOUBLE_EQ(off.maxError, 2 / std::sqrt(1.25));

    const Fit single = fit({{4, 4}});
    EXPECT_EQ(single.flag, 1);
    EXPECT_TRUE(std::isnan(single.k)) << "a single point fits k = 0/0";
    bool mask[] = {true, true, true, true, false};
    const Fit masked = fit_with(kOffLine, [&](int* x, int* y, int n, Fit& f) {
        QelFittingLineMsk(x, y, mask, n, &f.flag, &f.k, &f.b, &f.angle);
    });
    EXPECT_EQ(masked.kb(), std::make_tuple(0, 0.5, 1.0));
}

TEST(LineFitting, ChainSkipsItsLastCode) {
    // (1, 1) then codes 0, 7, 0: the closing code 2 would reach (4, 1) and is not applied.
    const Fit chain = fit_chain(1, 1, {0, 7, 0, 2}), points = fit({{1, 1}, {2, 1}, {3, 2}, {4, 2}});
    EXPECT_EQ(std::make_tuple(chain.kb(), chain.angle, chain.meanError, chain.maxError),
              std::make_tuple(points.kb(), points.angle, points.meanError, points.maxError));
    EXPECT_TRUE(std::isnan(fit_chain(6, 2, {3}).k)) << "n = 1 fits the start point alone";
}

TEST(LineFitting, NoisyLinesFitWithinTolerance) {
    std::mt19937 rng(17);
    std::uniform_real_distribution<double> noise(-0.5, 0.5), slope(-0.9, 0.9);
    for (int trial = 0; trial < 40; ++trial) {
        const double k = slope(rng), b = 100 + 50 * noise(rng);
        const bool steep = trial % 2 == 1;  // steep lines are x = k·y + b
        PointList points;
        for (int along = -100; along < 100; ++along) {
            const int across = static_cast<int>(std::floor(k * along + b + noise(rng) + 0.5));
            points.push_back(steep ? std::make_pair(across, along) : std::make_pair(along, across));
        }
        const Fit f = fit(points);
        EXPECT_EQ(f.flag, steep ? 1 : 0);
        EXPECT_NEAR(f.k, k, 0.01);
        EXPECT_NEAR(f.b, b, 0.2);
        EXPECT_LT(f.maxError, 1.1);
    }
}

TEST(LineFitting, TwiceKeepsEveryPointOfARealFit) {
    std::vector<int> marks(5, -1);
    const auto twice = [&marks](int* x, int* y, int n, Fit& f) {
        f.result = QelFittingLineTwice(x, y, marks.data(), n, &f.flag, &f.k, &f.b, &f.angle);
    };
    const Fit f = fit_with(kOffLine, twice);
    EXPECT_EQ(std::make_tuple(f.result, f.kb()), std::make_tuple(1, std::make_tuple(0, 0.5, 0.5)))
        << "true, with the first fit, outlier included";
    EXPECT_EQ(marks, std::vector<int>(5, 1));

    const Fit two = fit_with({{0, 1}, {2, 2}}, twice);
    EXPECT_EQ(std::make_tuple(two.result, two.kb()), std::make_tuple(0, Fit().kb())) << "n < 3: outputs untouched";
    const Fit same = fit_with({{3, 3}, {3, 3}, {3, 3}}, twice);
    EXPECT_EQ(same.result, 0) << "false: a NaN fit keeps no point";
    EXPECT_EQ(marks, std::vector<int>({100, 100, 100, 1, 1}));
}

TEST(LineFitting, TwiceByMeanRejectsPointsAboveTheMeanResidual) {
    std::vector<int> weights;
    const auto byMean = [&weights](int* x, int* y, int n, Fit& f) {
        weights.assign(static_cast<size_t>(n), -1);
        f.result = QelFittingLineTwiceByMean(x, y, weights.data(), n, &f.flag, &f.k, &f.b, &f.angle);
    };
    // Weights 50, 50, 50, 50, 200, threshold 400 / 5 = 80: the refit leaves out (3, 0).
    Fit f = fit_with(kOffLine, byMean);
    EXPECT_EQ(std::make_tuple(f.result, f.kb()), std::make_tuple(1, std::make_tuple(0, 0.5, 1.0)));
    EXPECT_EQ(weights, std::vector<int>({50, 50, 50, 50, 200}));

    // Residuals 1, 1, 0, 1, 1 about y = 0.5·x + 1: one point kept, false with the first fit.
    f = fit_with({{0, 0}, {0, 2}, {2, 2}, {4, 2}, {4, 4}}, byMean);
    EXPECT_EQ(std::make_tuple(f.result, f.kb()), std::make_tuple(0, std::make_tuple(0, 0.5, 1.0)));
    EXPECT_EQ(weights, std::vector<int>({100, 100, 0, 100, 100}));
    f = fit_with({{0, 1}, {2, 2}}, byMean);
    EXPECT_EQ(std::make_tuple(f.result, f.kb()), std::make_tuple(0, Fit().kb())) << "n < 3: outputs untouched";
    // Three points on y = 1: every weight 0, equal to the mean, so all are kept.
    f = fit_with({{0, 1}, {1, 1}, {2, 1}}, byMean);
    EXPECT_EQ(std::make_tuple(f.result, f.kb()), std::make_tuple(1, std::make_tuple(0, 0.0, 1.0)));
    // About y = 1/3 the weights are 33, 33, 66, threshold 44: two points kept, enough for the refit.
    f = fit_with({{0, 0}, {2, 0}, {1, 1}}, byMean);
    EXPECT_EQ(std::make_tuple(f.result, f.kb()), std::make_tuple(1, std::make_tuple(0, 0.0, 0.0)));
    EXPECT_EQ(weights, std::vector<int>({33, 33, 66}));

    // Exact lines plus one point well off their middle: the refit is the exact line.
    std::mt19937 rng(5);
    for (int trial = 0; trial < 30; ++trial) {
        const int k = static_cast<int>(rng() % 5) - 2, b = static_cast<int>(rng() % 20);
        const bool steep = trial % 2 == 1;
        PointList line;
        for (int t = 0; t < 20; ++t)
            line.push_back(steep ? std::make_pair(k * t + b, t) : std::make_pair(t, k * t + b));
        PointList all = line;
        all.push_back(steep ? std::make_pair(k * 10 + b + 10, 10) : std::make_pair(10, k * 10 + b + 10));
        f = fit_with(all, byMean);
        const Fit exact = fit(line);
        EXPECT_EQ(f.flag, exact.flag);
        EXPECT_NEAR(f.k, exact.k, 1e-9);
        EXPECT_NEAR(f.b, exact.b, 1e-9);
        EXPECT_LT(*std::max_element(weights.begin(), weights.end() - 1), weights.back());
    }
}

}  // namespace
