// Crosses: the grey cross kept off the image frame, its shadowed form, and the RGB cross.
#include "qel/draw.h"

#include "draw/raster.h"

#include <algorithm>
#include <cstdint>

namespace {

// The grey cross's bars keep off the two outermost rows and columns on each side.
constexpr int kCrossBarMargin = 2;

void grey_cross(unsigned char* img, int width, int height, int x, int y, int size, unsigned char grey) {
    if (width <= 0 || height <= 0) return;
    const qel::draw::GreyPen pen(img, width, grey);
    // The centre is kept off the outermost row and column (on images narrower than 3 pixels this
    // can still leave it outside, and then its bar is skipped).
    x = std::min(std::max(x, 1), width - 2);
    y = std::min(std::max(y, 1), height - 2);
    qel::draw::clipped_column(pen, width, height, x, std::max<int64_t>(int64_t{y} - size, kCrossBarMargin),
                        std::min<int64_t>(int64_t{y} + size, height - 1 - kCrossBarMargin));
    qel::draw::clipped_row(pen, width, height, y, std::max<int64_t>(int64_t{x} - size, kCrossBarMargin),
                     std::min<int64_t>(int64_t{x} + size, width - 1 - kCrossBarMargin));
}

}  // namespace

void QelDrawGryCross(unsigned char* img, int width, int height, int x, int y, int size, unsigned char grey) {
    grey_cross(img, width, height, x, y, size, grey);
}

void QelDrawGryCrossShadow(unsigned char* img, int width, int height, int x, int y, int size,
                           unsigned char grey) {
    grey_cross(img, width, height, qel::draw::sat_sub(x, 1), y, size, 0);
    grey_cross(img, width, height, x, qel::draw::sat_sub(y, 1), size, 0);
    grey_cross(img, width, height, qel::draw::sat_add(x, 1), y, size, 0);
    grey_cross(img, width, height, x, qel::draw::sat_add(y, 1), size, 0);
    grey_cross(img, width, height, x, y, size, grey);
}

void QelDrawRGBCross(unsigned char* img, int width, int height, int x, int y, int size, int R, int G, int B) {
    if (width <= 0 || height <= 0) return;
    const qel::draw::BgrPen pen(img, width, R, G, B);
    const int half = size / 2;
    // The horizontal bar lies in row x, not row y: callers see it there and it is kept.
    qel::draw::clipped_row(pen, width, height, x, std::max<int64_t>(int64_t{x} - half, 0),
                     std::min<int64_t>(int64_t{x} + half, width - 1));
    qel::draw::clipped_column(pen, width, height, x, std::max<int64_t>(int64_t{y} - half, 0),
                        std::min<int64_t>(int64_t{y} + half, height - 1));
}
