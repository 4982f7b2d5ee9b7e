// The threshold the qel tool binarises with when the user names none.
#include "binarise.h"

#include <qel.h>

namespace cli {
namespace {
constexpr int kBrightHalf = 128;  // a one-level image from here up is all object
}  // namespace

ChosenThreshold chooseThreshold(const int hist[kGreyLevels]) {
    int lo = 0;
    while (lo < kGreyLevels - 1 && hist[lo] == 0) ++lo;
    int next = lo + 1;
    while (next < kGreyLevels && hist[next] == 0) ++next;
    const std::string l = std::to_string(lo);
    if (next == kGreyLevels) {
        if (lo >= kBrightHalf) return {lo, "one grey level, " + l + ": all object"};
        return {lo + 1, "one grey level, " + l + ": all background"};
    }
    int levels = 0;
    for (int i = lo; i < kGreyLevels; ++i) levels += hist[i] != 0;
    const std::string n = std::to_string(next);
    if (levels == 2) return {next, "two grey levels, " + l + " and " + n + ": the upper one is object"};

    // The library reads its histogram through a non-const pointer but does not change it.
    const int otsu = QelGetOtsuThreshold(const_cast<int*>(hist), kGreyLevels);
    if (otsu > lo) return {otsu, "Otsu"};
    return {next, "Otsu gives " + std::to_string(otsu) + ", which would make every pixel object; " + l +
                      " alone is background"};
}

}  // namespace cli
