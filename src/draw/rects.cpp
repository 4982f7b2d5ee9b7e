// Rectangles: outlines, fills and recolouring of an outline, on grey and BGR images.
#include "qel/draw.h"

#include "draw/raster.h"

#include <utility>

namespace {

using qel::BgrPen;
using qel::GreyPen;

// Outline of the rectangle after clamping every coordinate into the image and ordering each pair.
template <class Pen>
void outline(const Pen& pen, int width, int height, int x1, int x2, int y1, int y2) {
    if (width <= 0 || height <= 0) return;
    x1 = qel::clamp_int(x1, 0, width - 1);
    x2 = qel::clamp_int(x2, 0, width - 1);
    y1 = qel::clamp_int(y1, 0, height - 1);
    y2 = qel::clamp_int(y2, 0, height - 1);
    if (x1 > x2) std::swap(x1, x2);
    if (y1 > y2) std::swap(y1, y2);
    qel::clipped_row(pen, width, height, y1, x1, x2);
    qel::clipped_row(pen, width, height, y2, x1, x2);
    qel::clipped_column(pen, width, height, x1, y1, y2);
    qel::clipped_column(pen, width, height, x2, y1, y2);
}

}  // namespace

void QelDrawGryRect(unsigned char* img, int width, int height, int x1, int x2, int y1, int y2, int grey) {
    outline(GreyPen(img, width, grey), width, height, x1, x2, y1, y2);
}
