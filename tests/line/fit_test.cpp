#include <qel.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <tuple>
#include <vector>

namespace {

constexpr double kPi = 3.1415926;

struct Fit {
    int flag = -1;
    double k = -7, b = -7, angle = -7, meanError = -7, maxError = -7;
    auto kb() const { return std::make_tuple(flag, k, b); }
};

struct Points {
    std::vector<int> x, y;
    int n() const { return static_cast<int>(x.size()); }
    void add(int px, int py) {
        x.push_back(px);
        y.push_back(py);
    }
};

Points points(std::initializer_list<std::pair<int, int>> list) {
    Points p;
    for (auto [x, y] : list) p.add(x, y);
    return p;
}

Fit fit(Points p) {
    Fit f;
    QelFittingLine(p.x.data(), p.y.data(), p.n(), &f.flag, &f.k, &f.b, &f.angle, &f.meanError, &f.maxError);
    return f;
}

Fit fit_chain(int x0, int y0, std::vector<unsigned char> codes) {
    Fit f;
    QelFittingLine(x0, y0, codes.data(), static_cast<int>(codes.size()), &f.flag, &f.k, &f.b, &f.angle, &f.meanError,
                   &f.maxError);
    return f;
}

double degrees(double k) { return std::atan(k) * 180 / kPi; }

TEST(LineFitting, SmallSetsByHand) {
    const Fit diagonal = fit(points({{0, 0}, {1, 1}, {2, 2}}));
    EXPECT_EQ(diagonal.kb(), std::make_tuple(1, 1.0, 0.0)) << "Sxx = Syy goes to x = k·y + b";
    EXPECT_DOUBLE_EQ(diagonal.angle, 90 - degrees(1)) << "pi is 3.1415926, so not quite 45";
    EXPECT_EQ(diagonal.meanError, 0);
    EXPECT_EQ(diagonal.maxError, 0);

    const Fit row = fit(points({{0, 5}, {1, 5}, {2, 5}, {3, 5}}));
    EXPECT_EQ(row.kb(), std::make_tuple(0, 0.0, 5.0));
    EXPECT_EQ(row.angle, 0);
    const Fit column = fit(points({{3, 0}, {3, 1}, {3, 2}}));
    EXPECT_EQ(column.kb(), std::make_tuple(1, 0.0, 3.0));
    EXPECT_EQ(column.angle, 90);

    // y = 0.5·x + 1 with (3, 0) off it: means (3, 2), Sxx 20, Syy 10, Sxy 10; residuals 0.5 four
    // times and 2.
    const Fit off = fit(points({{0, 1}, {2, 2}, {4, 3}, {6, 4}, {3, 0}}));
    EXPECT_EQ(off.kb(), std::make_tuple(0, 0.5, 0.5));
    EXPECT_DOUBLE_EQ(off.angle, degrees(0.5));
    EXPECT_DOUBLE_EQ(off.meanError, std::sqrt(5 / (5 * std::sqrt(1.25)))) << "sqrt(k² + 1) in the divisor";
    EXPECT_DOUBLE_EQ(off.maxError, 2 / std::sqrt(1.25));

    const Fit falling = fit(points({{0, 1}, {1, 1}, {2, 0}, {3, 0}}));
    EXPECT_EQ(falling.flag, 0);
    EXPECT_DOUBLE_EQ(falling.k, -0.4);
    EXPECT_DOUBLE_EQ(falling.angle, 180 + degrees(-0.4)) << "negative angles fold into [0, 180)";
    const Fit steepFalling = fit(points({{2, 0}, {1, 2}, {0, 4}}));
    EXPECT_EQ(steepFalling.kb(), std::make_tuple(1, -0.5, 2.0));
    EXPECT_DOUBLE_EQ(steepFalling.angle, 90 + degrees(0.5));

    const Fit single = fit(points({{4, 4}}));
    EXPECT_EQ(single.flag, 1);
    EXPECT_TRUE(std::isnan(single.k)) << "a single point fits k = 0/0";
}

TEST(LineFitting, ChainSkipsItsLastCodeAndMatchesThePoints) {
    // (1, 1) then codes 0, 7, 0: the closing code 2 would reach (4, 1) and is not applied.
    EXPECT_EQ(fit_chain(1, 1, {0, 7, 0, 2}).kb(), fit(points({{1, 1}, {2, 1}, {3, 2}, {4, 2}})).kb());
    EXPECT_EQ(fit_chain(2, 5, {0, 0, 0, 2}).kb(), std::make_tuple(0, 0.0, 5.0));
    const Fit start = fit_chain(6, 2, {3});
    EXPECT_EQ(start.flag, 1);
    EXPECT_TRUE(std::isnan(start.k)) << "n = 1 fits the start point alone";

    std::mt19937 rng(3);
    for (int trial = 0; trial < 50; ++trial) {
        std::vector<unsigned char> codes(2 + rng() % 40);
        for (auto& c : codes) c = static_cast<unsigned char>(rng() % 8);
        Points p;
        std::vector<int> xs(codes.size()), ys(codes.size());
        QelChain2Points(40, 40, codes.data(), static_cast<int>(codes.size()), xs.data(), ys.data());
        for (size_t i = 0; i < codes.size(); ++i) p.add(xs[i], ys[i]);
        const Fit a = fit_chain(40, 40, codes), b = fit(p);
        if (std::isnan(b.k)) continue;
        EXPECT_EQ(std::make_tuple(a.kb(), a.angle, a.meanError, a.maxError),
                  std::make_tuple(b.kb(), b.angle, b.meanError, b.maxError));
    }
}

TEST(LineFitting, MaskedFitUsesOnlyTheMarkedPoints) {
    Points p = points({{0, 1}, {2, 2}, {4, 3}, {6, 4}, {3, 0}, {9, 9}});
    bool mask[6] = {true, true, true, true, false, false};
    Fit f;
    QelFittingLineMsk(p.x.data(), p.y.data(), mask, p.n(), &f.flag, &f.k, &f.b, &f.angle);
    EXPECT_EQ(f.kb(), std::make_tuple(0, 0.5, 1.0));
    EXPECT_DOUBLE_EQ(f.angle, degrees(0.5));
}

TEST(LineFitting, NoisyLinesFitWithinTolerance) {
    std::mt19937 rng(17);
    std::uniform_real_distribution<double> noise(-0.5, 0.5), slope(-0.9, 0.9);
    for (int trial = 0; trial < 40; ++trial) {
        const double k = slope(rng), b = 100 + 50 * noise(rng);
        const bool steep = trial % 2 == 1;  // steep lines are x = k·y + b
        Points p;
        for (int t = 0; t < 200; ++t) {
            const int along = t - 100;
            const int across = static_cast<int>(std::floor(k * along + b + noise(rng) + 0.5));
            steep ? p.add(across, along) : p.add(along, across);
        }
        const Fit f = fit(p);
        EXPECT_EQ(f.flag, steep ? 1 : 0);
        EXPECT_NEAR(f.k, k, 0.01);
        EXPECT_NEAR(f.b, b, 0.2);
        EXPECT_LT(f.maxError, 1.1);
        EXPECT_GT(f.meanError, 0);
        EXPECT_GE(f.angle, 0);
        EXPECT_LT(f.angle, 180);
    }
}

TEST(LineFitting, TwiceKeepsEveryPointOfARealFit) {
    Points p = points({{0, 1}, {2, 2}, {4, 3}, {6, 4}, {3, 0}});
    std::vector<int> marks(5, -1);
    Fit f;
    EXPECT_TRUE(QelFittingLineTwice(p.x.data(), p.y.data(), marks.data(), 5, &f.flag, &f.k, &f.b, &f.angle));
    EXPECT_EQ(f.kb(), std::make_tuple(0, 0.5, 0.5)) << "the first fit stands, outlier included";
    EXPECT_EQ(marks, std::vector<int>(5, 1));

    Fit untouched;
    EXPECT_FALSE(QelFittingLineTwice(p.x.data(), p.y.data(), marks.data(), 2, &untouched.flag, &untouched.k,
                                     &untouched.b, &untouched.angle));
    EXPECT_EQ(untouched.kb(), Fit().kb());

    Points same = points({{3, 3}, {3, 3}, {3, 3}});
    EXPECT_FALSE(QelFittingLineTwice(same.x.data(), same.y.data(), marks.data(), 3, &f.flag, &f.k, &f.b, &f.angle))
        << "a NaN fit keeps no point";
    EXPECT_EQ(marks, std::vector<int>({100, 100, 100, 1, 1}));
}

TEST(LineFitting, TwiceByMeanRejectsPointsAboveTheMeanResidual) {
    // First fit y = 0.5·x + 0.5; weights 50, 50, 50, 50, 200, threshold 400 / 5 = 80; the refit
    // over the four kept points is y = 0.5·x + 1.
    Points p = points({{0, 1}, {2, 2}, {4, 3}, {6, 4}, {3, 0}});
    std::vector<int> weights(5, -1);
    Fit f;
    EXPECT_TRUE(QelFittingLineTwiceByMean(p.x.data(), p.y.data(), weights.data(), 5, &f.flag, &f.k, &f.b, &f.angle));
    EXPECT_EQ(f.kb(), std::make_tuple(0, 0.5, 1.0));
    EXPECT_EQ(weights, std::vector<int>({50, 50, 50, 50, 200}));

    // Residuals 1, 1, 0, 1, 1 about y = 0.5·x + 1: only the middle point is at or below the mean.
    Points lone = points({{0, 0}, {0, 2}, {2, 2}, {4, 2}, {4, 4}});
    EXPECT_FALSE(
        QelFittingLineTwiceByMean(lone.x.data(), lone.y.data(), weights.data(), 5, &f.flag, &f.k, &f.b, &f.angle));
    EXPECT_EQ(f.kb(), std::make_tuple(0, 0.5, 1.0)) << "the first fit stays";
    EXPECT_EQ(weights, std::vector<int>({100, 100, 0, 100, 100}));

    Fit untouched;
    EXPECT_FALSE(QelFittingLineTwiceByMean(p.x.data(), p.y.data(), weights.data(), 2, &untouched.flag, &untouched.k,
                                           &untouched.b, &untouched.angle));
    EXPECT_EQ(untouched.kb(), Fit().kb());

    // Exact lines plus one point well off their middle: the refit is the exact line.
    std::mt19937 rng(5);
    for (int trial = 0; trial < 30; ++trial) {
        const int k = static_cast<int>(rng() % 5) - 2, b = static_cast<int>(rng() % 20);
        Points line;
        for (int t = 0; t < 20; ++t) trial % 2 ? line.add(k * t + b, t) : line.add(t, k * t + b);
        Points all = line;
        trial % 2 ? all.add(k * 10 + b + 10, 10) : all.add(10, k * 10 + b + 10);
        std::vector<int> w(all.x.size());
        ASSERT_TRUE(QelFittingLineTwiceByMean(all.x.data(), all.y.data(), w.data(), all.n(), &f.flag, &f.k, &f.b,
                                              &f.angle));
        const Fit exact = fit(line);
        EXPECT_EQ(f.flag, exact.flag);
        EXPECT_NEAR(f.k, exact.k, 1e-9);
        EXPECT_NEAR(f.b, exact.b, 1e-9);
        EXPECT_LT(*std::max_element(w.begin(), w.end() - 1), w.back());
    }
}

}  // namespace
