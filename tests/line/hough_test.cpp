#include <qel.h>

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <tuple>
#include <vector>

namespace {

constexpr double kPi = 3.1415926;

struct Line {
    int strength = -1;
    double a = -7, b = -7, c = -7;
    int rho = -7, theta = -7;
    auto polar() const { return std::make_tuple(strength, rho, theta); }
};

struct Points {
    std::vector<int> x, y;
    int n() const { return static_cast<int>(x.size()); }
    void add(int px, int py) {
        x.push_back(px);
        y.push_back(py);
    }
    void add(const Points& p) {
        for (int i = 0; i < p.n(); ++i) add(p.x[i], p.y[i]);
    }
};

Points row(int y, int x1, int x2) {
    Points p;
    for (int x = x1; x <= x2; ++x) p.add(x, y);
    return p;
}

Points column(int x, int y1, int y2) {
    Points p;
    for (int y = y1; y <= y2; ++y) p.add(x, y);
    return p;
}

Line ht(Points p, int thetaFrom = 0, int thetaTo = 180) {
    Line l;
    l.strength = QelHoughLines_HT(p.x.data(), p.y.data(), p.n(), thetaFrom, thetaTo, &l.a, &l.b, &l.c, &l.rho, &l.theta);
    return l;
}

Line ht_mask(Points p, std::vector<int> used) {
    bool mask[181] = {};
    for (int t : used) mask[t] = true;
    Line l;
    l.strength = QelHoughLines_HT(p.x.data(), p.y.data(), p.n(), mask, &l.a, &l.b, &l.c, &l.rho, &l.theta);
    return l;
}

Line ht_per_point(Points p, std::vector<int> thetas, std::vector<char> excluded, int tolerance) {
    bool ex[64] = {};
    for (size_t i = 0; i < excluded.size(); ++i) ex[i] = excluded[i] != 0;
    Line l;
    l.strength = QelHoughLines_HT(p.x.data(), p.y.data(), thetas.data(), ex, p.n(), tolerance, &l.a, &l.b, &l.c,
                                  &l.rho, &l.theta);
    return l;
}

Line next(int dr, int dt) {
    Line l;
    l.strength = QelHoughLines_GetNextLine(dr, dt, &l.a, &l.b, &l.c, &l.rho, &l.theta);
    return l;
}

const Line kUntouched;

// Runs first when the whole program runs in one process; under ctest every test has its own.
TEST(HoughLines, CallsBeforeInitializeFailAndDrawNothing) {
    const Line l = ht(row(0, 0, 9));
    EXPECT_EQ(l.strength, 0);
    EXPECT_EQ(std::make_tuple(l.a, l.rho), std::make_tuple(kUntouched.a, kUntouched.rho));
    EXPECT_EQ(next(1, 1).polar(), std::make_tuple(0, -7, -7));
    std::vector<unsigned char> image(100, 0);
    QelHoughLines_Debug(image.data(), 10, 10, 255);
    EXPECT_EQ(image, std::vector<unsigned char>(100, 0));
}

TEST(HoughLines, ThreeAdjacentPointsMeetInOneCellOnlyAtTheta90) {
    ASSERT_TRUE(QelHoughLines_Initialize(20, 20));
    const Line l = ht(row(0, 0, 2));
    EXPECT_EQ(l.polar(), std::make_tuple(3, 0, 90)) << "6 votes at the centre cell";
    EXPECT_EQ(std::make_tuple(l.a, l.b, l.c), std::make_tuple(0.0, -10.0, 0.0));

    // The last theta of a range or a mask gets a row but no votes.
    EXPECT_EQ(ht(row(0, 0, 2), 90, 90).strength, 0);
    EXPECT_EQ(ht(row(0, 0, 2), 0, 90).strength, 2) << "theta 90 unvoted: 5 votes at 89";
    EXPECT_EQ(ht(row(0, 0, 2), 90, 91).polar(), std::make_tuple(3, 0, 90));
    EXPECT_EQ(ht_mask(row(0, 0, 2), {90}).strength, 0);
    EXPECT_EQ(ht_mask(row(0, 0, 2), {}).strength, 0);
    EXPECT_EQ(ht_mask(row(0, 0, 2), {30, 90, 150}).polar(), std::make_tuple(3, 0, 90));

    EXPECT_EQ(ht_per_point(row(0, 0, 2), {90, 90, 90}, {0, 0, 0}, 0).polar(), std::make_tuple(3, 0, 90));
    EXPECT_EQ(ht_per_point(row(0, 0, 2), {90, 90, 90}, {0, 1, 0}, 0).strength, 2) << "2 voters give 4 votes";
    EXPECT_EQ(ht_per_point(row(0, 0, 2), {90, 90, 90}, {1, 1, 1}, 5).strength, 0);
    EXPECT_EQ(ht(row(0, 0, 0)).strength, 0) << "fewer than 2 points";
}

TEST(HoughLines, ExcludedFirstPointStillSeedsTheBoundingBox) {
    ASSERT_TRUE(QelHoughLines_Initialize(40, 40));
    Points p;
    p.add(1000, 1000);
    p.add(row(5, 0, 9));
    std::vector<int> thetas(static_cast<size_t>(p.n()), 90);
    std::vector<char> lastExcluded(static_cast<size_t>(p.n()), 0), firstExcluded = lastExcluded;
    firstExcluded[0] = 1;
    EXPECT_EQ(ht_per_point(p, thetas, firstExcluded, 30).strength, 0) << "the box spans (0, 5)-(1000, 1000)";
    std::swap(p.x[0], p.x.back());
    std::swap(p.y[0], p.y.back());
    lastExcluded.back() = 1;
    EXPECT_EQ(ht_per_point(p, thetas, lastExcluded, 30).polar(), std::make_tuple(10, 5, 90));
}

// Points of the line x·cos + y·sin = rho inside a size × size image, one per column or row.
Points digital_line(double rho, int theta, int size) {
    const double c = std::cos(theta * kPi / 180), s = std::sin(theta * kPi / 180);
    Points p;
    for (int t = 0; t < size; ++t) {
        const bool byColumn = std::fabs(s) > std::fabs(c);
        const double other = byColumn ? (rho - t * c) / s : (rho - t * s) / c;
        const int v = static_cast<int>(std::floor(other + 0.5));
        if (v < 0 || v >= size) continue;
        byColumn ? p.add(t, v) : p.add(v, t);
    }
    return p;
}

TEST(HoughLines, FindsSyntheticLines) {
    constexpr int kSize = 200;
    ASSERT_TRUE(QelHoughLines_Initialize(kSize, kSize));
    std::mt19937 rng(9);
    int tried = 0;
    while (tried < 40) {
        const int theta = static_cast<int>(rng() % 180);
        const double rho = static_cast<double>(rng() % 140) + 30 * std::cos(theta * kPi / 90);
        Points p = digital_line(rho, theta, kSize);
        if (p.n() < 80) continue;
        ++tried;
        std::vector<int> x0 = p.x, y0 = p.y;
        const Line l = ht(p);
        EXPECT_EQ(p.x, x0);
        EXPECT_EQ(p.y, y0);
        EXPECT_GE(l.strength, p.n() / 3);
        EXPECT_LE(l.strength, p.n());
        const double found = std::fmod(std::atan2(l.b, l.a) * 180 / kPi + 360, 180);  // the normal's angle
        const double off = std::fabs(found - theta);
        EXPECT_LE(std::min(off, 180 - off), 1.5) << "theta " << theta;
        int close = 0;
        for (int i = 0; i < p.n(); ++i)
            close += std::fabs(l.a * p.x[i] + l.b * p.y[i] + l.c) / std::hypot(l.a, l.b) <= 1.5;
        EXPECT_GE(close, p.n() * 9 / 10) << "theta " << theta << " rho " << rho;
        int rhoFound = 0, thetaFound = 0;
        QelABC2ThroTheta(l.a, l.b, l.c, &rhoFound, &thetaFound);
        EXPECT_EQ(std::make_pair(l.rho, l.theta), std::make_pair(rhoFound, thetaFound));
    }
}

TEST(HoughLines, NextLineSuppressesLinesNearThoseTaken) {
    ASSERT_TRUE(QelHoughLines_Initialize(200, 200));
    Points lines = row(50, 0, 99);
    lines.add(row(53, 0, 79));        // near the first: 3 rho columns away, same theta
    lines.add(column(20, 100, 159));  // far from both
    EXPECT_EQ(ht(lines).polar(), std::make_tuple(100, 50, 90));
    // The vertical line: the two-point conversion gives it a negative rho.
    EXPECT_EQ(next(10, 10).polar(), std::make_tuple(64, -20, 0));
    for (int i = 0; i < 3; ++i) {
        const Line l = next(10, 10);
        EXPECT_FALSE(l.rho == 53 && l.theta == 90) << "the near line is never returned";
    }
    ht(lines);
    EXPECT_EQ(next(1, 1).polar(), std::make_tuple(80, 53, 90)) << "only the exact cell is suppressed";

    // A line alone: with only its own cell suppressed, the next line is the cell one degree off
    // (reported as 88 through the two-point conversion).
    EXPECT_EQ(ht(row(50, 0, 99)).polar(), std::make_tuple(100, 50, 90));
    EXPECT_EQ(next(1, 1).polar(), std::make_tuple(75, 50, 88));

    // Nothing left: the outputs are zeroed.
    ht(row(0, 0, 2));
    const Line none = next(1000, 1000);
    EXPECT_EQ(std::make_tuple(none.strength, none.a, none.b, none.c, none.rho, none.theta),
              std::make_tuple(0, 0.0, 0.0, 0.0, 0, 0));
}

TEST(HoughLines, NextLineStopsAfter1024Lines) {
    ASSERT_TRUE(QelHoughLines_Initialize(60, 60));
    std::mt19937 rng(4);
    Points p;
    for (int i = 0; i < 300; ++i) p.add(static_cast<int>(rng() % 60), static_cast<int>(rng() % 60));
    ASSERT_GT(ht(p).strength, 0);
    int taken = 1;
    int previous = 1 << 30;
    for (Line l = next(1, 1); l.strength > 0; l = next(1, 1)) {
        EXPECT_LE(l.strength, previous) << "lines come strongest first";
        previous = l.strength;
        ++taken;
    }
    EXPECT_EQ(taken, 1024);
    EXPECT_EQ(next(1, 1).polar(), std::make_tuple(0, -7, -7)) << "outputs untouched once full";
}

TEST(HoughLines, StateRules) {
    // A point set larger than initialised is refused, the arrays as given and no line to follow.
    // (Sizes here exceed those of the other tests, which may have run before in this process.)
    ASSERT_TRUE(QelHoughLines_Initialize(50, 50));
    Points far = row(0, 0, 199);
    far.add(3000, 3000);
    const Points given = far;
    ASSERT_GT(ht(row(5, 0, 9)).strength, 0);
    EXPECT_EQ(ht(far).strength, 0);
    EXPECT_EQ(std::make_pair(far.x, far.y), std::make_pair(given.x, given.y));
    EXPECT_EQ(next(1, 1).strength, 0) << "a failed transform leaves no line to follow";

    // Buffers only grow: a smaller size keeps the larger accumulator, and so does a size of larger
    // area but shorter diagonal.
    Points big = row(0, 0, 199);
    big.add(column(0, 1, 199));
    ASSERT_TRUE(QelHoughLines_Initialize(300, 300));
    ASSERT_TRUE(QelHoughLines_Initialize(10, 10));
    EXPECT_EQ(ht(big).strength, 200);
    ASSERT_TRUE(QelHoughLines_Initialize(5000, 20));
    ASSERT_TRUE(QelHoughLines_Initialize(400, 400));
    EXPECT_EQ(ht(row(3, 0, 4999)).polar(), std::make_tuple(5000, 3, 90));

    // Results stay valid until the next call on the finder: a transform's lines come out the same
    // after another transform, a failed next line and drawing in between, and the last line
    // returned is what Debug draws.
    Points lines = row(50, 0, 99);
    lines.add(column(20, 100, 159));
    const Line first = ht(lines);
    const Line second = next(5, 5);
    ht(big);
    EXPECT_EQ(ht(lines).polar(), first.polar());
    next(1000, 1000);
    std::vector<unsigned char> drawn(200 * 200, 0), expected = drawn;
    QelHoughLines_Debug(drawn.data(), 200, 200, 9);
    QelDrawABCLineByColor(expected.data(), 200, 200, first.a, first.b, first.c, 9);
    EXPECT_EQ(drawn, expected) << "a failed next line does not replace the last line";
    EXPECT_EQ(next(5, 5).polar(), second.polar());

    // An accumulator that cannot be had: Initialize fails and so does every transform.
    EXPECT_FALSE(QelHoughLines_Initialize(2000000000, 2000000000));
    EXPECT_EQ(ht(row(5, 0, 9)).strength, 0);
    EXPECT_TRUE(QelHoughLines_Initialize(20, 20));
    EXPECT_EQ(ht(row(5, 0, 9)).polar(), std::make_tuple(10, 5, 90));
}

TEST(HoughLines, RandomPointSetsStayInBoundsAndKeepTheirArrays) {
    std::mt19937 rng(12);
    for (int trial = 0; trial < 60; ++trial) {
        const int w = 1 + static_cast<int>(rng() % 120), h = 1 + static_cast<int>(rng() % 120);
        ASSERT_TRUE(QelHoughLines_Initialize(w, h));
        Points p;
        const int n = static_cast<int>(rng() % 200);
        const int x0 = static_cast<int>(rng() % 2000) - 1000, y0 = static_cast<int>(rng() % 2000) - 1000;
        for (int i = 0; i < n; ++i) p.add(x0 + static_cast<int>(rng() % w), y0 + static_cast<int>(rng() % h));
        const Points given = p;
        const int from = static_cast<int>(rng() % 181), to = from + static_cast<int>(rng() % (182 - from));
        const Line l = ht(p, from, to);
        EXPECT_GE(l.strength, 0);
        EXPECT_LE(l.strength, n);
        EXPECT_EQ(std::make_pair(p.x, p.y), std::make_pair(given.x, given.y));
        for (int i = 0; i < 10 && next(static_cast<int>(rng() % 4), static_cast<int>(rng() % 4)).strength > 0; ++i) {
        }
    }
}

}  // namespace
