#include <qel.h>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
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
    Points& add(int px, int py) {
        x.push_back(px);
        y.push_back(py);
        return *this;
    }
    // count points from (x0, y0) in steps of (dx, dy).
    Points& run(int x0, int y0, int dx, int dy, int count) {
        for (int i = 0; i < count; ++i) add(x0 + i * dx, y0 + i * dy);
        return *this;
    }
};

Points row(int y, int x1, int x2) { return Points().run(x1, y, 1, 0, x2 - x1 + 1); }

// Calls a finder function with the five outputs of a line and keeps its strength.
template <class Call>
Line line_of(Call call) {
    Line l;
    l.strength = call(&l.a, &l.b, &l.c, &l.rho, &l.theta);
    return l;
}

Line ht(Points p, int thetaFrom = 0, int thetaTo = 180) {
    return line_of([&](double* a, double* b, double* c, int* rho, int* theta) {
        return QelHoughLines_HT(p.x.data(), p.y.data(), p.n(), thetaFrom, thetaTo, a, b, c, rho, theta);
    });
}

Line ht_mask(Points p, std::vector<int> used) {
    bool mask[181] = {};
    for (int t : used) mask[t] = true;
    return line_of([&](double* a, double* b, double* c, int* rho, int* theta) {
        return QelHoughLines_HT(p.x.data(), p.y.data(), p.n(), mask, a, b, c, rho, theta);
    });
}

// Every point's theta is `theta`; the points at the `excluded` indices do not vote.
Line ht_per_point(Points p, int theta, int tolerance, std::vector<int> excluded) {
    std::vector<int> thetas(p.x.size(), theta);
    std::unique_ptr<bool[]> ex(new bool[p.x.size()]());
    for (int i : excluded) ex[static_cast<size_t>(i)] = true;
    return line_of([&](double* a, double* b, double* c, int* rho, int* t) {
        return QelHoughLines_HT(p.x.data(), p.y.data(), thetas.data(), ex.get(), p.n(), tolerance, a, b, c, rho, t);
    });
}

Line next(int dr, int dt) {
    return line_of([&](double* a, double* b, double* c, int* rho, int* theta) {
        return QelHoughLines_GetNextLine(dr, dt, a, b, c, rho, theta);
    });
}

// Runs first when the whole program runs in one process; under ctest every test has its own.
TEST(HoughLines, CallsBeforeInitializeFailAndDrawNothing) {
    EXPECT_EQ(ht(row(0, 0, 9)).polar(), std::make_tuple(0, -7, -7));
    EXPECT_EQ(next(1, 1).polar(), std::make_tuple(0, -7, -7));
    std::vector<unsigned char> image(100, 0);
    QelHoughLines_Debug(image.data(), 10, 10, 255);
    EXPECT_EQ(image, std::vector<unsigned char>(100, 0));
}

TEST(HoughLines, ThreeAdjacentPointsMeetInOneCellOnlyAtTheta90) {
    ASSERT_TRUE(QelHoughLines_Initialize(20, 20));
    const Points three = row(0, 0, 2);
    const Line l = ht(three);
    EXPECT_EQ(l.polar(), std::make_tuple(3, 0, 90)) << "6 votes at the centre cell";
    EXPECT_EQ(std::make_tuple(l.a, l.b, l.c), std::make_tuple(0.0, -10.0, 0.0));
    EXPECT_EQ(ht(row(0, 0, 0)).strength, 0) << "fewer than 2 points";

    // The last theta of a range or a mask gets a row but no votes.
    EXPECT_EQ(ht(three, 90, 90).strength, 0);
    EXPECT_EQ(ht(three, 0, 90).strength, 2) << "theta 90 unvoted: 5 votes at 89";
    EXPECT_EQ(ht(three, 90, 91).polar(), std::make_tuple(3, 0, 90));
    EXPECT_EQ(ht_mask(three, {90}).strength, 0);
    EXPECT_EQ(ht_mask(three, {}).strength, 0);
    EXPECT_EQ(ht_mask(three, {30, 90, 150}).polar(), std::make_tuple(3, 0, 90));

    EXPECT_EQ(ht_per_point(three, 90, 0, {}).polar(), std::make_tuple(3, 0, 90));
    EXPECT_EQ(ht_per_point(three, 90, 0, {1}).strength, 2) << "2 voters give 4 votes";
    EXPECT_EQ(ht_per_point(three, 90, 5, {0, 1, 2}).strength, 0);

    // The first point seeds the bounding box even when excluded: here the box outgrows the
    // accumulator. Excluded elsewhere, the same point changes nothing.
    EXPECT_EQ(ht_per_point(Points().add(1000, 1000).run(0, 5, 1, 0, 10), 90, 30, {0}).strength, 0);
    EXPECT_EQ(ht_per_point(row(5, 0, 9).add(1000, 1000), 90, 30, {10}).polar(), std::make_tuple(10, 5, 90));
}

TEST(HoughLines, BoundsAtEquality) {
    // A failed Initialize drops the accumulator, so the next one is sized exactly: a padded 17x17
    // image has a diagonal of 24.04, giving (24 + 6)·186 = 5580 cells.
    EXPECT_FALSE(QelHoughLines_Initialize(2000000000, 2000000000));
    ASSERT_TRUE(QelHoughLines_Initialize(12, 12));
    // 25 points in a row make rows of 25 + 5 cells, 26 points rows of 31 and 27 points rows of 32.
    EXPECT_EQ(ht(row(0, 0, 24), 0, 185).strength, 25) << "186 rows of 30 fill the accumulator";
    EXPECT_EQ(ht(row(0, 0, 24), 0, 186).strength, 0) << "187 rows of 30 do not fit";
    EXPECT_EQ(ht_per_point(row(0, 0, 25), 90, 90, {}).strength, 26) << "thetas 0..179 capped: 180 rows of 31";
    EXPECT_EQ(ht_per_point(row(0, 0, 26), 90, 90, {}).strength, 0) << "180 rows of 32";

    ASSERT_TRUE(QelHoughLines_Initialize(20, 20));
    const Points column = Points().run(5, 0, 0, 1, 10);
    EXPECT_EQ(ht(column, 180, 181).strength, 10) << "theta 180 is voted for";
    EXPECT_EQ(ht(column, 181, 182).strength, 0) << "theta 181 is off the tables";
    EXPECT_EQ(ht_per_point(column, 0, 0, {}).polar(), std::make_tuple(10, -5, 0)) << "theta 0, no tolerance";

    // Two points a rho apart at one theta: 3 votes, the least a line needs; 2 apart give 2.
    EXPECT_EQ(ht(row(0, 0, 1), 0, 1).polar(), std::make_tuple(1, 0, 0)) << "two points are enough";
    EXPECT_EQ(ht(Points().add(0, 0).add(2, 0), 0, 1).strength, 0);

    // A pair of points at x = 0 (4 votes) and single points at x = 5 and 6 (3 votes at either).
    ASSERT_EQ(ht(Points().run(0, 0, 0, 1, 2).add(5, 0).add(6, 0), 0, 1).polar(), std::make_tuple(2, 0, 0));
    EXPECT_EQ(next(1, 1).polar(), std::make_tuple(1, -5, 0));
    EXPECT_EQ(next(1, 1).polar(), std::make_tuple(1, -6, 0));
    EXPECT_EQ(next(1, 1).strength, 0) << "2 votes left at most";

    // Pairs at x = 0, 3 and 6 tie at 4 votes, three columns apart: ties go to the lowest column,
    // and a distance of exactly 3 does not suppress. (Vertical lines come out with rho < 0.)
    const Points pairs = Points().run(0, 0, 0, 1, 2).run(3, 0, 0, 1, 2).run(6, 0, 0, 1, 2);
    ASSERT_EQ(ht(pairs, 0, 1).polar(), std::make_tuple(2, 0, 0));
    EXPECT_EQ(next(3, 1).polar(), std::make_tuple(2, -3, 0));
    ht(pairs, 0, 1);
    EXPECT_EQ(next(4, 1).polar(), std::make_tuple(2, -6, 0));
}

TEST(HoughLines, FindsSyntheticLines) {
    constexpr int kSize = 200;
    ASSERT_TRUE(QelHoughLines_Initialize(kSize, kSize));
    std::mt19937 rng(9);
    for (int tried = 0; tried < 40;) {
        // The line x·cos + y·sin = rho, one point per column (or row) inside the image.
        const int theta = static_cast<int>(rng() % 180);
        const double rho = static_cast<double>(rng() % 140) + 30 * std::cos(theta * kPi / 90);
        const double c = std::cos(theta * kPi / 180), s = std::sin(theta * kPi / 180);
        const bool byColumn = std::fabs(s) > std::fabs(c);
        Points p;
        for (int t = 0; t < kSize; ++t) {
            const int v = static_cast<int>(std::floor((byColumn ? (rho - t * c) / s : (rho - t * s) / c) + 0.5));
            if (v >= 0 && v < kSize) byColumn ? p.add(t, v) : p.add(v, t);
        }
        if (p.n() < 80) continue;
        ++tried;
        const Points given = p;
        const Line l = ht(p);
        EXPECT_EQ(std::make_pair(p.x, p.y), std::make_pair(given.x, given.y));
        EXPECT_GE(l.strength, p.n() / 3);
        EXPECT_LE(l.strength, p.n());
        const double found = std::fmod(std::atan2(l.b, l.a) * 180 / kPi + 360, 180);  // the normal's angle
        EXPECT_LE(std::min(std::fabs(found - theta), 180 - std::fabs(found - theta)), 1.5) << theta;
        int close = 0;
        for (int i = 0; i < p.n(); ++i)
            close += std::fabs(l.a * p.x[i] + l.b * p.y[i] + l.c) <= 1.5 * std::hypot(l.a, l.b);
        EXPECT_GE(close, p.n() * 9 / 10) << "theta " << theta << " rho " << rho;
        int rhoFound = 0, thetaFound = 0;
        QelABC2ThroTheta(l.a, l.b, l.c, &rhoFound, &thetaFound);
        EXPECT_EQ(std::make_pair(l.rho, l.theta), std::make_pair(rhoFound, thetaFound));
    }
}

TEST(HoughLines, NextLineSuppressesLinesNearThoseTaken) {
    ASSERT_TRUE(QelHoughLines_Initialize(200, 200));
    // A row of 100 points, a row of 80 three pixels below it, and a column of 60 far from both.
    const Points lines = row(50, 0, 99).run(0, 53, 1, 0, 80).run(20, 100, 0, 1, 60);
    EXPECT_EQ(ht(lines).polar(), std::make_tuple(100, 50, 90));
    EXPECT_EQ(next(10, 10).polar(), std::make_tuple(64, -20, 0)) << "the column; a vertical line gets rho < 0";
    for (int i = 0; i < 3; ++i) EXPECT_NE(next(10, 10).polar(), std::make_tuple(80, 53, 90));
    ht(lines);
    EXPECT_EQ(next(1, 1).polar(), std::make_tuple(80, 53, 90)) << "only the exact cell is suppressed";

    // A line alone: with only its own cell suppressed, the next line is the cell one degree off
    // (reported as 88 through the two-point conversion).
    EXPECT_EQ(ht(row(50, 0, 99)).polar(), std::make_tuple(100, 50, 90));
    EXPECT_EQ(next(1, 1).polar(), std::make_tuple(75, 50, 88));

    ht(row(0, 0, 2));
    const Line none = next(1000, 1000);
    EXPECT_EQ(std::make_tuple(none.strength, none.a, none.b, none.c, none.rho, none.theta),
              std::make_tuple(0, 0.0, 0.0, 0.0, 0, 0))
        << "nothing left: outputs zeroed";
}

TEST(HoughLines, NextLineStopsAfter1024Lines) {
    ASSERT_TRUE(QelHoughLines_Initialize(60, 60));
    std::mt19937 rng(4);
    Points p;
    for (int i = 0; i < 300; ++i) p.add(static_cast<int>(rng() % 60), static_cast<int>(rng() % 60));
    ASSERT_GT(ht(p).strength, 0);
    int taken = 1;
    for (int previous = 1 << 30, s; (s = next(1, 1).strength) > 0; previous = s, ++taken)
        EXPECT_LE(s, previous) << "lines come strongest first";
    EXPECT_EQ(taken, 1024);
    EXPECT_EQ(next(1, 1).polar(), std::make_tuple(0, -7, -7)) << "outputs untouched once full";
}

TEST(HoughLines, StateRules) {
    // A point set larger than initialised is refused, the arrays as given and no line to follow.
    // (Sizes here exceed those of the other tests, which may have run before in this process.)
    ASSERT_TRUE(QelHoughLines_Initialize(50, 50));
    Points far = row(0, 0, 199).add(3000, 3000);
    const Points given = far;
    ASSERT_GT(ht(row(5, 0, 9)).strength, 0);
    EXPECT_EQ(ht(far).strength, 0);
    EXPECT_EQ(std::make_pair(far.x, far.y), std::make_pair(given.x, given.y));
    EXPECT_EQ(next(1, 1).strength, 0) << "a failed transform leaves no line to follow";

    // Buffers only grow: a smaller size keeps the larger accumulator, and so does a size of larger
    // area but shorter diagonal.
    const Points corner = row(0, 0, 199).run(0, 1, 0, 1, 199);
    ASSERT_TRUE(QelHoughLines_Initialize(300, 300));
    ASSERT_TRUE(QelHoughLines_Initialize(10, 10));
    EXPECT_EQ(ht(corner).strength, 200);
    ASSERT_TRUE(QelHoughLines_Initialize(5000, 20));
    ASSERT_TRUE(QelHoughLines_Initialize(400, 400));
    EXPECT_EQ(ht(row(3, 0, 4999)).polar(), std::make_tuple(5000, 3, 90));

    // Results stay valid until the next call on the finder: a transform's lines come out the same
    // after another transform, a failed next line and drawing in between, and the last line
    // returned is what Debug draws.
    const Points lines = row(50, 0, 99).run(20, 100, 0, 1, 60);
    const Line first = ht(lines), second = next(5, 5);
    ht(corner);
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
        const int n = static_cast<int>(rng() % 200);
        const int x0 = static_cast<int>(rng() % 2000) - 1000, y0 = static_cast<int>(rng() % 2000) - 1000;
        Points p;
        for (int i = 0; i < n; ++i) p.add(x0 + static_cast<int>(rng() % w), y0 + static_cast<int>(rng() % h));
        const Points given = p;
        const int from = static_cast<int>(rng() % 181), to = from + static_cast<int>(rng() % (182 - from));
        const Line l = ht(p, from, to);
        EXPECT_LE(l.strength, n);
        EXPECT_EQ(std::make_pair(p.x, p.y), std::make_pair(given.x, given.y));
        for (int i = 0; i < 10 && next(1 + i % 3, 1 + i % 4).strength > 0; ++i) {
        }
    }
}

}  // namespace
