// The Hough line finder: one accumulator over (theta, rho) built from a list of points, the
// strongest line taken by the transform and further lines taken one at a time, each far enough
// from every line taken before. The library holds one finder; the QelHoughLines_* functions act on it.
#include "qel/draw.h"
#include "qel/line.h"

#include "line/line_math.h"
#include "core/exact_math.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace qel {

namespace {

// Table entries are cos and sin scaled by 1024 and truncated; a vote shifts the sum back by 10.
constexpr double kTableScale = 1024.0;
constexpr int kTableShift = 10;
constexpr int kTableDegrees = 181;  // 0..180 inclusive

// The accumulator is sized for this many theta rows of the padded image's diagonal (+ 6) cells.
constexpr int kCapacityRows = 186;
constexpr double kCapacityDiagonalMargin = 6.0;
// Images are padded by this much on each axis when the accumulator is sized.
constexpr int kPadding = 5;
// A row holds the diagonal of the points' bounding box plus this many cells.
constexpr int kRhoMargin = 5;

constexpr int kMaxLines = 1024;
constexpr int kMinPoints = 2;
// A cell needs this many votes to be a line; a point's vote is 2 at its cell and 1 at each side.
constexpr int kMinPeakVotes = 3;
constexpr int kCentreVote = 2;

// Degrees at which the theta-mask transform starts looking for its lowest and highest marked theta.
constexpr int kMaskThetaMinStart = 360;
constexpr int kMaskThetaMaxStart = 0;

// Where the five outputs of a line go.
struct LineOutputs {
    double* a;
    double* b;
    double* c;
    int* rho;
    int* theta;
};

// The thetas of the accumulator's first and last rows.
struct ThetaSpan {
    int64_t min;
    int64_t max;
};

class QelHoughLines {
public:
    QelHoughLines();
    QelHoughLines(const QelHoughLines&) = delete;
    QelHoughLines& operator=(const QelHoughLines&) = delete;
    virtual ~QelHoughLines();

    bool Initialize(int width, int height);
    int HT(const int* x, const int* y, const int* theta, const bool* excluded, int n, int thetaTolerance,
           const LineOutputs& out);
    int HT(const int* x, const int* y, int n, int thetaFrom, int thetaTo, const LineOutputs& out);
    int HT(const int* x, const int* y, int n, const bool* thetaUsed, const LineOutputs& out);
    int GetNextLine(int minRhoDistance, int minThetaDistance, const LineOutputs& out);
    void Debug(unsigned char* image, int width, int height, int colour) const;

private:
    // The common transform. votes(i) tells whether point i votes; span() gives the thetas of the
    // first and last rows (called once, after the point count is checked); for_thetas(i, vote)
    // calls vote(t) for every theta t in 0..180 that point i votes for, each within the span.
    template <class Votes, class Span, class ForThetas>
    int transform(const int* x, const int* y, int n, Votes votes, Span span, ForThetas for_thetas,
                  const LineOutputs& out);
    // Takes cell (row, column) as the next line: stores it, converts it and writes the outputs.
    void take_line(int row, int column, const LineOutputs& out);
    bool suppressed(int row, int column, int minRhoDistance, int minThetaDistance) const;

    int paddedWidth_ = 0;
    int paddedHeight_ = 0;
    int64_t allocatedArea_ = 0;  // (width + 5)·(height + 5) of the last growth; 0 when nothing is allocated
    int capacity_ = 0;           // int cells in accumulator_
    int* accumulator_ = nullptr;  // thetaRows_ rows of rhoColumns_ cells
    int cosTable_[kTableDegrees];
    int sinTable_[kTableDegrees];
    int peakColumns_[kMaxLines] = {};
    int peakRows_[kMaxLines] = {};
    int lineCount_ = 0;
    int centreX_ = 0;
    int centreY_ = 0;
    int thetaMin_ = 0;
    int rhoColumns_ = 0;
    int thetaRows_ = 0;
    double lastA_ = 0;  // the last line returned; a = b = 0 (nothing returned yet) draws nothing
    double lastB_ = 0;
    double lastC_ = 0;
    int lastRho_ = 0;
    int lastTheta_ = 0;
};

QelHoughLines::QelHoughLines() {
    for (int t = 0; t < kTableDegrees; ++t) {
        // Truncated, so sin 90 and cos 180 come out as 1023 and −1023, not ±1024.
        cosTable_[t] = static_cast<int>(qel::exact_cos(radians(t)) * kTableScale);
        sinTable_[t] = static_cast<int>(qel::exact_sin(radians(t)) * kTableScale);
    }
}

QelHoughLines::~QelHoughLines() { delete[] accumulator_; }

bool QelHoughLines::Initialize(int width, int height) {
    const int64_t paddedW = static_cast<int64_t>(width) + kPadding;
    const int64_t paddedH = static_cast<int64_t>(height) + kPadding;
    paddedWidth_ = static_cast<int>(paddedW);
    paddedHeight_ = static_cast<int>(paddedH);
    const int64_t area = paddedW * paddedH;
    if (area > allocatedArea_) {
        const double diagonal =
            std::sqrt(static_cast<double>(paddedW * paddedW) + static_cast<double>(paddedH * paddedH));
        const int64_t cells = static_cast<int64_t>(diagonal + kCapacityDiagonalMargin) * kCapacityRows;
        // A larger area need not have a longer diagonal; the accumulator never shrinks.
        if (cells > capacity_) {
            delete[] accumulator_;
            accumulator_ = cells <= INT_MAX ? new (std::nothrow) int[static_cast<size_t>(cells)] : nullptr;
            capacity_ = accumulator_ != nullptr ? static_cast<int>(cells) : 0;
        }
        allocatedArea_ = accumulator_ != nullptr ? area : 0;
    }
    std::fill(peakColumns_, peakColumns_ + kMaxLines, 0);
    std::fill(peakRows_, peakRows_ + kMaxLines, 0);
    lineCount_ = 0;
    return accumulator_ != nullptr;
}

template <class Votes, class Span, class ForThetas>
int QelHoughLines::transform(const int* x, const int* y, int n, Votes votes, Span span, ForThetas for_thetas,
                             const LineOutputs& out) {
    lineCount_ = 0;
    if (n < kMinPoints) return 0;

    // The first point seeds the box whether or not it votes.
    int minX = x[0], maxX = x[0], minY = y[0], maxY = y[0];
    for (int i = 0; i < n; ++i) {
        if (!votes(i)) continue;
        minX = std::min(minX, x[i]);
        maxX = std::max(maxX, x[i]);
        minY = std::min(minY, y[i]);
        maxY = std::max(maxY, y[i]);
    }
    const ThetaSpan thetas = span();
    const int64_t rows = thetas.max - thetas.min + 1;
    if (rows <= 0) return 0;  // no theta to vote for

    // Points are measured from the box centre. They are shifted as they are read, so the
    // caller's arrays are never written, on this path or any other.
    const int64_t cx = (static_cast<int64_t>(minX) + maxX) / 2;
    const int64_t cy = (static_cast<int64_t>(minY) + maxY) / 2;
    const double spanX = static_cast<double>(static_cast<int64_t>(maxX) - minX + 1);
    const double spanY = static_cast<double>(static_cast<int64_t>(maxY) - minY + 1);
    const int64_t columns = static_cast<int64_t>(std::sqrt(spanX * spanX + spanY * spanY)) + kRhoMargin;
    if (rows * columns > capacity_) return 0;  // a transform before Initialize always ends here

    const int rowCount = static_cast<int>(rows);
    const int rhoColumns = static_cast<int>(columns);
    const int64_t thetaMin = thetas.min;
    std::fill(accumulator_, accumulator_ + rows * columns, 0);

    // The box centre lies in the middle of a row, and a row is long enough that a vote and its two
    // sides always land inside it (|rho| stays within half the box diagonal).
    int* const middle = accumulator_ + rhoColumns / 2;
    for (int i = 0; i < n; ++i) {
        if (!votes(i)) continue;
        const int64_t px = x[i] - cx;
        const int64_t py = y[i] - cy;
        for_thetas(i, [&](int t) {
            // Arithmetic shift: rho is floored, not truncated, for negative sums.
            const int64_t rho = (px * cosTable_[t] + py * sinTable_[t]) >> kTableShift;
            int* const cell = middle + (t - thetaMin) * rhoColumns + rho;
            cell[-1] += 1;
            cell[0] += kCentreVote;
            cell[1] += 1;
        });
    }

    // The first cell strictly above every earlier one: ties keep the lowest row, then column.
    int best = 0;
    int64_t bestAt = 0;
    const int64_t cells = rows * columns;
    for (int64_t i = 0; i < cells; ++i)
        if (accumulator_[i] > best) {
            best = accumulator_[i];
            bestAt = i;
        }
    if (best < kMinPeakVotes) return 0;

    centreX_ = static_cast<int>(cx);
    centreY_ = static_cast<int>(cy);
    thetaMin_ = static_cast<int>(thetaMin);
    rhoColumns_ = rhoColumns;
    thetaRows_ = rowCount;
    take_line(static_cast<int>(bestAt / columns), static_cast<int>(bestAt % columns), out);
    return best / kCentreVote;
}

void QelHoughLines::take_line(int row, int column, const LineOutputs& out) {
    peakRows_[lineCount_] = row;
    peakColumns_[lineCount_] = column;
    ++lineCount_;
    QelThroTheta2ABC(centreX_, centreY_, column - rhoColumns_ / 2, row + thetaMin_, &lastA_, &lastB_, &lastC_);
    // Reported about the image origin, through the ABC form.
    QelABC2ThroTheta(lastA_, lastB_, lastC_, &lastRho_, &lastTheta_);
    *out.a = lastA_;
    *out.b = lastB_;
    *out.c = lastC_;
    *out.rho = lastRho_;
    *out.theta = lastTheta_;
}

int QelHoughLines::HT(const int* x, const int* y, const int* theta, const bool* excluded, int n, int thetaTolerance,
                      const LineOutputs& out) {
    const int64_t tolerance = thetaTolerance;
    const auto votes = [excluded](int i) { return !excluded[i]; };
    const auto span = [&] {
        bool any = false;
        int64_t lo = 0, hi = 0;
        for (int i = 0; i < n; ++i) {
            if (!votes(i)) continue;
            lo = any ? std::min(lo, theta[i] - tolerance) : theta[i] - tolerance;
            hi = any ? std::max(hi, theta[i] + tolerance) : theta[i] + tolerance;
            any = true;
        }
        if (!any) return ThetaSpan{0, -1};  // no point votes: no rows
        return ThetaSpan{std::max<int64_t>(lo, 0), std::min<int64_t>(hi, 179)};
    };
    const auto for_thetas = [&](int i, auto&& vote) {
        const int64_t from = std::max<int64_t>(theta[i] - tolerance, 0);
        const int64_t to = std::min<int64_t>(theta[i] + tolerance, 179);
        for (int64_t t = from; t <= to; ++t) vote(static_cast<int>(t));
    };
    return transform(x, y, n, votes, span, for_thetas, out);
}

int QelHoughLines::HT(const int* x, const int* y, int n, int thetaFrom, int thetaTo, const LineOutputs& out) {
    const auto span = [=] { return ThetaSpan{thetaFrom, thetaTo}; };
    // The last row, thetaTo itself, is counted in the rows but never voted for. Thetas outside the
    // tables (below 0, above 180) are not voted for either.
    const auto for_thetas = [=](int, auto&& vote) {
        const int to = std::min(thetaTo - 1, kTableDegrees - 1);
        for (int t = std::max(thetaFrom, 0); t <= to; ++t) vote(t);
    };
    return transform(x, y, n, [](int) { return true; }, span, for_thetas, out);
}

int QelHoughLines::HT(const int* x, const int* y, int n, const bool* thetaUsed, const LineOutputs& out) {
    int lo = kMaskThetaMinStart, hi = kMaskThetaMaxStart;
    const auto span = [&] {
        for (int t = 0; t < kTableDegrees; ++t)
            if (thetaUsed[t]) {
                lo = std::min(lo, t);
                hi = std::max(hi, t);
            }
        return ThetaSpan{lo, hi};
    };
    // As with a theta range, the last marked theta is counted in the rows but never voted for.
    const auto for_thetas = [&](int, auto&& vote) {
        for (int t = lo; t < hi; ++t)
            if (thetaUsed[t]) vote(t);
    };
    return transform(x, y, n, [](int) { return true; }, span, for_thetas, out);
}

bool QelHoughLines::suppressed(int row, int column, int minRhoDistance, int minThetaDistance) const {
    for (int j = 0; j < lineCount_; ++j)
        if (std::abs(column - peakColumns_[j]) < minRhoDistance && std::abs(row - peakRows_[j]) < minThetaDistance)
            return true;
    return false;
}

int QelHoughLines::GetNextLine(int minRhoDistance, int minThetaDistance, const LineOutputs& out) {
    if (lineCount_ == 0 || lineCount_ >= kMaxLines) return 0;
    *out.a = 0;
    *out.b = 0;
    *out.c = 0;
    *out.rho = 0;
    *out.theta = 0;
    // The accumulator is left as the transform built it; lines already taken are only skipped.
    int best = 0;
    int bestRow = 0, bestColumn = 0;
    const int* cell = accumulator_;
    for (int row = 0; row < thetaRows_; ++row)
        for (int column = 0; column < rhoColumns_; ++column, ++cell)
            if (*cell > best && !suppressed(row, column, minRhoDistance, minThetaDistance)) {
                best = *cell;
                bestRow = row;
                bestColumn = column;
            }
    if (best < kMinPeakVotes) return 0;
    take_line(bestRow, bestColumn, out);
    return best / kCentreVote;
}

void QelHoughLines::Debug(unsigned char* image, int width, int height, int colour) const {
    QelDrawABCLineByColor(image, width, height, lastA_, lastB_, lastC_, colour);
}

// Built when the library is loaded, destroyed (and its accumulator freed) when it is unloaded.
QelHoughLines g_houghLines;

}  // namespace

}  // namespace qel

bool QelHoughLines_Initialize(int width, int height) { return qel::g_houghLines.Initialize(width, height); }

int QelHoughLines_HT(int* x, int* y, int* theta, bool* excluded, int n, int thetaTolerance, double* a, double* b,
                     double* c, int* rho, int* lineTheta) {
    return qel::g_houghLines.HT(x, y, theta, excluded, n, thetaTolerance, {a, b, c, rho, lineTheta});
}

int QelHoughLines_HT(int* x, int* y, int n, int thetaFrom, int thetaTo, double* a, double* b, double* c, int* rho,
                     int* lineTheta) {
    return qel::g_houghLines.HT(x, y, n, thetaFrom, thetaTo, {a, b, c, rho, lineTheta});
}

int QelHoughLines_HT(int* x, int* y, int n, bool* thetaUsed, double* a, double* b, double* c, int* rho,
                     int* lineTheta) {
    return qel::g_houghLines.HT(x, y, n, thetaUsed, {a, b, c, rho, lineTheta});
}

int QelHoughLines_GetNextLine(int minRhoDistance, int minThetaDistance, double* a, double* b, double* c, int* rho,
                              int* lineTheta) {
    return qel::g_houghLines.GetNextLine(minRhoDistance, minThetaDistance, {a, b, c, rho, lineTheta});
}

void QelHoughLines_Debug(unsigned char* image, int width, int height, int colour) {
    qel::g_houghLines.Debug(image, width, height, colour);
}
