// Private helpers of the image arithmetic family: the absolute byte difference every differencing
// function uses, and row addressing for images with one or three bytes a pixel.
#ifndef QEL_SRC_MISC_ARITHMETIC_H
#define QEL_SRC_MISC_ARITHMETIC_H

#include <cstddef>

namespace qel {

// |a − b| of two bytes.
inline int abs_diff(unsigned char a, unsigned char b) { return a > b ? a - b : b - a; }

// Bytes a pixel: 3 for BGR images, 1 for grey.
inline int bytes_per_pixel(bool isRGB) { return isRGB ? 3 : 1; }

// Number of bytes of a width × height image with the given bytes a pixel, 0 when either size is
// not positive.
inline size_t image_bytes(int width, int height, int bytesPerPixel) {
    if (width <= 0 || height <= 0) return 0;
    return static_cast<size_t>(width) * static_cast<size_t>(height) * static_cast<size_t>(bytesPerPixel);
}

}  // namespace qel

#endif
