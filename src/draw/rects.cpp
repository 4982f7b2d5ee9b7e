// Rectangles: outlines, fills and recolouring of an outline, on grey and BGR images.
#include "qel/draw.h"

#include "draw/raster.h"

#include <algorithm>
#include <utility>

namespace {

using qel::draw::BgrPen;
using qel::draw::GreyPen;

// Outline of the rectangle after clamping every coordinate into the image and ordering each pair.
template <class Pen>
void outline(const Pen& pen, int width, int height, int x1, int x2, int y1, int y2) {
    if (width <= 0 || height <= 0) return;
    x1 = qel::draw::clamp_int(x1, 0, width - 1);
    x2 = qel::draw::clamp_int(x2, 0, width - 1);
    y1 = qel::draw::clamp_int(y1, 0, height - 1);
    y2 = qel::draw::clamp_int(y2, 0, height - 1);
    if (x1 > x2) std::swap(x1, x2);
    if (y1 > y2) std::swap(y1, y2);
    qel::draw::clipped_row(pen, width, height, y1, x1, x2);
    qel::draw::clipped_row(pen, width, height, y2, x1, x2);
    qel::draw::clipped_column(pen, width, height, x1, y1, y2);
    qel::draw::clipped_column(pen, width, height, x2, y1, y2);
}

// The fills and the recolouring only raise the low ends to 0 and lower the high ends to the last
// column or row; the pairs are not reordered, so an inverted range stays empty.
struct OneSidedClamp {
    int x1, x2, y1, y2;
    OneSidedClamp(int width, int height, int left, int right, int top, int bottom)
        : x1(std::max(left, 0)), x2(std::min(right, width - 1)), y1(std::max(top, 0)),
          y2(std::min(bottom, height - 1)) {}
};

template <class Pen>
void fill(const Pen& pen, int width, int height, int x1, int x2, int y1, int y2) {
    if (width <= 0 || height <= 0) return;
    const OneSidedClamp r(width, height, x1, x2, y1, y2);
    for (int y = r.y1; y <= r.y2; ++y) qel::draw::clipped_row(pen, width, height, y, r.x1, r.x2);
}

// Writes `to` where the pixel equals `from`.
struct RecolourPen {
    unsigned char* image;
    int width;
    int from;
    unsigned char to;
    void put(int x, int y) const {
        unsigned char* p = qel::draw::grey_at(image, width, x, y);
        if (*p == from) *p = to;
    }
};

}  // namespace

void QelDrawGryRect(unsigned char* img, int width, int height, int x1, int x2, int y1, int y2, int grey) {
    outline(GreyPen(img, width, grey), width, height, x1, x2, y1, y2);
}

void QelDrawRGBRect(unsigned char* img, int width, int height, int x1, int x2, int y1, int y2, int R, int G,
                    int B) {
    outline(BgrPen(img, width, R, G, B), width, height, x1, x2, y1, y2);
}

void QelDrawRect(unsigned char* img, int width, int height, bool isRGB, int x1, int x2, int y1, int y2, int R,
                 int G, int B, int grey) {
    if (isRGB)
        QelDrawRGBRect(img, width, height, x1, x2, y1, y2, R, G, B);
    else
        QelDrawGryRect(img, width, height, x1, x2, y1, y2, grey);
}

void QelFillGryRect(unsigned char* img, int width, int height, int x1, int x2, int y1, int y2, int grey) {
    fill(GreyPen(img, width, grey), width, height, x1, x2, y1, y2);
}

void QelFillRGBRect(unsigned char* img, int width, int height, int x1, int x2, int y1, int y2, int R, int G,
                    int B) {
    fill(BgrPen(img, width, R, G, B), width, height, x1, x2, y1, y2);
}

void QelChangeColorOnRect(unsigned char* img, int width, int height, int x1, int x2, int y1, int y2, int from,
                          int to) {
    if (width <= 0 || height <= 0) return;
    const OneSidedClamp r(width, height, x1, x2, y1, y2);
    const RecolourPen pen{img, width, from, static_cast<unsigned char>(to)};
    // A raised x1 or y1 may still lie beyond the image (and a lowered x2 or y2 before it): the
    // clipped walks skip those sides.
    qel::draw::clipped_row(pen, width, height, r.y1, r.x1, r.x2);
    qel::draw::clipped_row(pen, width, height, r.y2, r.x1, r.x2);
    qel::draw::clipped_column(pen, width, height, r.x1, r.y1, r.y2);
    qel::draw::clipped_column(pen, width, height, r.x2, r.y1, r.y2);
}
