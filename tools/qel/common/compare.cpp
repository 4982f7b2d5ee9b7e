// The qel tool's comparison of two pictures.
#include "compare.h"

#include "binarise.h"
#include "cli.h"

#include <qel.h>

#include <string>

namespace cli {

Difference compare(const Image& a, const Image& b, int tolerance, const std::string& nameA, const std::string& nameB) {
    if (a.width != b.width || a.height != b.height)
        throw UsageError("'" + nameA + "' is " + std::to_string(a.width) + " x " + std::to_string(a.height) + " and '" +
                         nameB + "' " + std::to_string(b.width) + " x " + std::to_string(b.height) +
                         "; only pictures of one size are compared");
    const bool colour = !a.isGrey() || !b.isGrey();
    Image first = colour ? toColour(a) : a;
    Image second = colour ? toColour(b) : b;
    Difference d;
    d.image = blankImage(a.width, a.height, 1);
    int hist[kGreyLevels];
    QelDifferenceImg12(first.pixels.data(), second.pixels.data(), a.width, a.height, colour, d.image.pixels.data(), hist);
    d.pixels = static_cast<long long>(a.width) * a.height;
    long long total = 0;
    for (int level = 0; level < kGreyLevels; ++level) {
        total += static_cast<long long>(level) * hist[level];
        if (hist[level] > 0) d.largest = level;
        if (level > tolerance) d.differing += hist[level];
    }
    d.mean = d.pixels > 0 ? static_cast<double>(total) / static_cast<double>(d.pixels) : 0.0;
    return d;
}

}  // namespace cli
