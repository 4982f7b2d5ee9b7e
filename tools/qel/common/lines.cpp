// The qel tool's line finding through the library's Hough and chain-line finders.
#include "lines.h"

#include "cli.h"

#include <qel.h>

#include <cmath>
#include <cstddef>

namespace cli {

namespace {

constexpr int kShenShift = 2;  // Shen Jun weight 1/4 of the new sample, as the chain finder's own
// Hough: every theta 0..179 votes (the range's upper end gets no votes), and lines taken must
// differ from every earlier one by this many pixels of rho or degrees of theta.
constexpr int kThetaFrom = 0;
constexpr int kThetaTo = 180;
constexpr int kMinRhoDistance = 10;
constexpr int kMinThetaDistance = 10;
// Chain finder: a window is straight while its chord exceeds this share of its arc length and no
// point lies farther from the chord than the tolerance, in pixels.
constexpr double kStraightness = 0.9;
constexpr double kChordTolerance = 1.5;
constexpr int kMaxSegments = 4096;

void setEquation(FoundLine& line, double a, double b, double c) {
    const double norm = std::sqrt(a * a + b * b);
    line.a = norm > 0.0 ? a / norm : a;
    line.b = norm > 0.0 ? b / norm : b;
    line.c = norm > 0.0 ? c / norm : c;
}

// The library reads its images through non-const pointers without changing them.
unsigned char* pixelsOf(const Image& grey) { return const_cast<unsigned char*>(grey.pixels.data()); }

}  // namespace

std::vector<FoundLine> houghLines(const Image& grey, int count, int edgeThreshold, int* edgePoints) {
    const int w = grey.width;
    const int h = grey.height;
    const size_t pixels = static_cast<size_t>(w) * static_cast<size_t>(h);
    std::vector<unsigned char> smooth(pixels);
    std::vector<int> xs(pixels);
    std::vector<int> ys(pixels);
    const int n = QelShenJunEdgeFast(pixelsOf(grey), smooth.data(), w, h, kShenShift, edgeThreshold, xs.data(),
                                     ys.data(), static_cast<int>(pixels));
    *edgePoints = n;
    if (!QelHoughLines_Initialize(w, h)) throw Failure("no memory for the Hough accumulator");
    std::vector<FoundLine> lines;
    double a = 0.0, b = 0.0, c = 0.0;
    int rho = 0, theta = 0;
    int strength = QelHoughLines_HT(xs.data(), ys.data(), n, kThetaFrom, kThetaTo, &a, &b, &c, &rho, &theta);
    while (strength > 0 && static_cast<int>(lines.size()) < count) {
        FoundLine line;
        if (QelABCLineImgBoundary(w, h, a, b, c, &line.x1, &line.y1, &line.x2, &line.y2)) {
            setEquation(line, a, b, c);
            line.strength = strength;
            line.rho = rho;
            line.theta = theta;
            lines.push_back(line);
        }
        strength = QelHoughLines_GetNextLine(kMinRhoDistance, kMinThetaDistance, &a, &b, &c, &rho, &theta);
    }
    return lines;
}

std::vector<FoundLine> chainLines(const Image& grey, int minLength, int edgeThreshold) {
    if (!QelImgChainLines_Initialize(grey.width, grey.height, kStraightness, kChordTolerance, minLength, edgeThreshold,
                                     kMaxSegments))
        throw Failure("no memory for the chain-line finder");
    const int n = QelImgChainLines_DoGryImg(pixelsOf(grey), grey.width, grey.height, true);
    const OVLA_LINE_SEGMENT* segments = QelImgChainLines_GetLines();
    std::vector<FoundLine> lines;
    for (int i = 0; segments != nullptr && i < n; ++i) {
        FoundLine line;
        line.x1 = segments[i].x1;
        line.y1 = segments[i].y1;
        line.x2 = segments[i].x2;
        line.y2 = segments[i].y2;
        setEquation(line, segments[i].a, segments[i].b, segments[i].c);
        lines.push_back(line);
    }
    return lines;
}

}  // namespace cli
