// The qel tool's comparison of two pictures: the difference image and its statistics.
#ifndef QEL_TOOL_COMPARE_H
#define QEL_TOOL_COMPARE_H

#include "image.h"

namespace cli {

struct Difference {
    Image image;             // grey, |a − b| per pixel; for colour the largest of the three channels'
    long long pixels = 0;    // width x height
    long long differing = 0; // pixels whose difference is above the tolerance
    int largest = 0;         // the largest difference, 0..255
    double mean = 0.0;       // the mean difference over all pixels
};

// Compares two pictures of the same size (QelDifferenceImg12 with its histogram). When either is in
// colour both are compared in colour (a grey picture's level standing for all three channels) and
// a pixel's difference is the largest of its channels'. Pixels differing by `tolerance` or less
// (0..255) count as equal. UsageError when the sizes differ; `nameA` and `nameB` name the
// pictures in that message.
Difference compare(const Image& a, const Image& b, int tolerance, const std::string& nameA, const std::string& nameB);

}  // namespace cli

#endif
