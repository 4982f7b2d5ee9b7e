// Drawing a histogram as bars into a grey image.
#include "qel/histogram.h"

#include <algorithm>
#include <cstring>

namespace {
constexpr unsigned char kBar = 255;
}

void QelDrawHistogram2Img(int* hist, int binCount, unsigned char* image, int width, int height) {
    if (width <= 0 || height <= 0) return;
    std::memset(image, 0, static_cast<size_t>(width) * static_cast<size_t>(height));
    if (binCount <= 0) return;

    int largest = 0;
    for (int i = 0; i < binCount; ++i) largest = std::max(largest, hist[i]);
    const double sy = (largest + 1.0) / height;                   // counts per row
    const double sx = static_cast<double>(binCount) / width;      // bins per column

    for (int i = 0; i < binCount; ++i) {
        const int bar = std::min(static_cast<int>(hist[i] / sy + 0.5), height);
        // Columns are clamped to the image: rounding can put the last edge a column past it.
        const int from = std::max(static_cast<int>(i / sx + 0.5), 0);
        const int to = std::min(static_cast<int>((i + 1) / sx + 0.5), width);
        // Bars hang from the top row downwards; that orientation is intended.
        for (int y = 0; y < bar; ++y) {
            unsigned char* row = image + static_cast<size_t>(y) * static_cast<size_t>(width);
            for (int x = from; x < to; ++x) row[x] = kBar;
        }
    }
}
