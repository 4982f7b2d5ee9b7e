// The two frame setters that filters, edge operators and the contour tracer use to set a
// one-pixel frame around an image.
#include "qel/io.h"

#include <cstddef>
#include <cstring>

namespace {

constexpr int kBytesPerRgbPixel = 3;

// Writes the value into the first `width` bytes of the top and bottom rows and into bytes 0 and
// width - 1 of every row, rows being rowBytes apart. For grey images that is the whole frame.
void set_frame(unsigned char* image, int width, int height, size_t rowBytes, int value) {
    if (width <= 0 || height <= 0) return;
    const unsigned char v = static_cast<unsigned char>(value);
    const size_t w = static_cast<size_t>(width);
    std::memset(image, v, w);
    std::memset(image + (static_cast<size_t>(height) - 1) * rowBytes, v, w);
    unsigned char* row = image;
    for (int y = 0; y < height; ++y, row += rowBytes) {
        row[0] = v;
        row[w - 1] = v;
    }
}

}  // namespace

void QelSetImageBoundary(unsigned char* image, int width, int height, int value) {
    set_frame(image, width, height, static_cast<size_t>(width), value);
}

// A partial frame, intended: only the first `width` bytes (a third) of the top and bottom rows,
// and bytes 0 and width - 1 (not the last pixel) of every row.
void QelSetRGBImageBoundary(unsigned char* image, int width, int height, int value) {
    set_frame(image, width, height, static_cast<size_t>(width) * kBytesPerRgbPixel, value);
}
