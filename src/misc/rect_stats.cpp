// Rectangle statistics: the mean absolute difference between two rectangles, rectangle means
// (grey, masked colour, centre against surround), robust extremes, the brightest block, a
// blockwise noise estimate and the bounding box of points.
#include "qel/misc.h"

#include "misc/arithmetic.h"

#include <cstddef>
#include <cstdint>

namespace {

const unsigned char* byte_at(const unsigned char* image, int stride, int y, int x, int bytesPerPixel) {
    return image + static_cast<std::ptrdiff_t>(y) * stride + static_cast<std::ptrdiff_t>(x) * bytesPerPixel;
}

}  // namespace

int QelImgDifferenceInRect(unsigned char* img1, unsigned char* img2, bool isRGB, int width, tagRECT r1, tagRECT r2) {
    const int bpp = qel::bytes_per_pixel(isRGB);
    const int stride = width * bpp;
    // Rectangles are measured right − left by bottom − top: their last column and last row are
    // never compared (callers' results depend on it).
    const int cols1 = r1.right - r1.left;
    const int rows1 = r1.bottom - r1.top;
    const int cols2 = r2.right - r2.left;
    const int rows2 = r2.bottom - r2.top;
    if (cols1 <= 0 || rows1 <= 0) return 0;

    int64_t sum = 0;
    int64_t count = 0;
    if (cols1 == cols2 && rows1 == rows2) {
        const int rowBytes = cols1 * bpp;
        for (int j = 0; j < rows1; ++j) {
            const unsigned char* a = byte_at(img1, stride, r1.top + j, r1.left, bpp);
            const unsigned char* b = byte_at(img2, stride, r2.top + j, r2.left, bpp);
            for (int i = 0; i < rowBytes; ++i) sum += qel::abs_diff(a[i], b[i]);
            count += rowBytes;
        }
    } else {
        // The second rectangle is sampled at truncated multiples of its size over the first's.
        const double stepX = static_cast<double>(cols2) / cols1;
        const double stepY = static_cast<double>(rows2) / rows1;
        for (int j = 0; j < rows1; ++j) {
            const unsigned char* a = byte_at(img1, stride, r1.top + j, r1.left, bpp);
            const int y2 = r2.top + static_cast<int>(j * stepY);
            for (int i = 0; i < cols1; ++i) {
                const unsigned char* b = byte_at(img2, stride, y2, r2.left + static_cast<int>(i * stepX), bpp);
                for (int c = 0; c < bpp; ++c) sum += qel::abs_diff(a[i * bpp + c], b[c]);
            }
            count += static_cast<int64_t>(cols1) * bpp;
        }
    }
    return static_cast<int>(sum / count);
}
