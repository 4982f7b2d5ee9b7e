// The qel tool's line finding: the library's two line finders run on a picture's Shen Jun edges,
// their lines given in one form for printing and drawing.
#ifndef QEL_TOOL_LINES_H
#define QEL_TOOL_LINES_H

#include "image.h"

#include <vector>

namespace cli {

constexpr int kMaxHoughLines = 1024;  // the Hough finder hands out at most this many lines a transform

struct FoundLine {
    int x1 = 0, y1 = 0, x2 = 0, y2 = 0;  // end points
    double a = 0.0, b = 0.0, c = 0.0;    // a·x + b·y + c = 0, scaled so that a² + b² = 1
    int strength = 0;                    // Hough: points voting for the line at its centre
    int rho = 0, theta = 0;              // Hough: x·cos(theta) + y·sin(theta) = rho, theta in degrees
};

// The `count` strongest Hough lines (at most kMaxHoughLines) through the Shen Jun edge points of a
// grey image (integer operator, weight 1/4, grey step edgeThreshold), strongest first, each at least
// 10 pixels of rho or 10 degrees from those before. A line's ends are where it meets the image
// border; a line for which none are found is left out. edgePoints receives the number of edge
// points. The grey image must be at least 3 x 3.
std::vector<FoundLine> houghLines(const Image& grey, int count, int edgeThreshold, int* edgePoints);

// The straight pieces, at least minLength pixels long, of the Shen Jun edge chains of a grey image,
// each with its fitted line and its ends on that line. edgeThreshold is the finder's edge
// parameter: 8 and more selects the integer operator, below 8 the real one.
std::vector<FoundLine> chainLines(const Image& grey, int minLength, int edgeThreshold);

}  // namespace cli

#endif
