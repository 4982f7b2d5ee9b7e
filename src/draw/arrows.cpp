// Arrows: the narrow arrows with a tail point and a length, the broad arrows filling a box, and
// the line-with-a-cross arrows, on grey and BGR images.
#include "qel/draw.h"

#include "draw/raster.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace {

using qel::draw::BgrPen;
using qel::draw::GreyPen;

// How far the sides of a broad arrow run towards the tip, and how far its bar reaches beyond the box.
constexpr int kBroadArrowSide = 10;
// The cross of the line-with-a-cross arrows keeps off the two outermost rows and columns.
constexpr int kArrowCrossMargin = 2;

// The four ways an arrow can point. Arrows are built in their own frame, `along` the arrow from
// tail to tip and `across` it, and `to_image` turns that frame into image coordinates.
enum class Heading { Down, Up, Left, Right };

bool is_vertical(Heading h) { return h == Heading::Down || h == Heading::Up; }

// Line between two points given in 64 bits; the line clamps them to the image anyway, so
// narrowing them first to the int range changes nothing.
template <class Pen>
void line64(const Pen& pen, int width, int height, int64_t x1, int64_t y1, int64_t x2, int64_t y2) {
    qel::draw::draw_line(pen, width, height, qel::draw::narrow_coordinate(x1), qel::draw::narrow_coordinate(y1),
                   qel::draw::narrow_coordinate(x2), qel::draw::narrow_coordinate(y2));
}

// Narrow arrow with its tail at (x, y): a shaft `length` long doubled on the right (up, down) or
// below (left, right), and a head from the tip back to the half-way point length/4 to each side,
// doubled one pixel further in.
template <class Pen>
void narrow_arrow(const Pen& pen, int width, int height, Heading heading, int x, int y, int length) {
    const int64_t sign = heading == Heading::Down || heading == Heading::Right ? 1 : -1;
    const auto draw = [&](int64_t along1, int64_t across1, int64_t along2, int64_t across2) {
        if (is_vertical(heading))
            line64(pen, width, height, x + across1, y + sign * along1, x + across2, y + sign * along2);
        else
            line64(pen, width, height, x + sign * along1, y + across1, x + sign * along2, y + across2);
    };
    const int64_t tip = length;
    const int64_t base = length / 2;
    const int64_t spread = length / 4;
    draw(0, 0, tip, 0);
    draw(0, 1, tip, 1);
    draw(tip, 0, base, -spread);
    draw(tip, 0, base, spread);
    draw(tip, 0, base, -spread + 1);
    draw(tip, 0, base, spread - 1);
}

// Broad arrow in the box x1..x2, y1..y2. The downward arrow is the model: base (x1, y1)–(x2, y1),
// sides from y1 to m = max(y1, y2 − 10), a bar at row m from max(x1 − 10, 0) to
// min(x2 + 10, width − 1), and head lines from the bar's ends to ((x1 + x2)/2, y2). Upward is
// that construction mirrored within the box (y → y1 + y2 − y), rightward is it with x and y
// exchanged, leftward is rightward mirrored within the box (x → x1 + x2 − x). Built here with
// u across the arrow and v along it, from the base row (or column) to the tip's.
void broad_arrow(unsigned char* img, int width, int height, Heading heading, int x1, int x2, int y1, int y2,
                 int grey) {
    if (width <= 0 || height <= 0) return;
    const GreyPen pen(img, width, grey);
    const bool vertical = is_vertical(heading);
    const bool forward = heading == Heading::Down || heading == Heading::Right;
    const int64_t u1 = vertical ? x1 : y1;
    const int64_t u2 = vertical ? x2 : y2;
    const int64_t first = vertical ? y1 : x1;
    const int64_t second = vertical ? y2 : x2;
    const int64_t base = forward ? first : second;
    const int64_t tip = forward ? second : first;
    const int64_t acrossSize = vertical ? width : height;
    const int64_t bar = forward ? std::max(base, tip - kBroadArrowSide) : std::min(base, tip + kBroadArrowSide);
    const int64_t barFrom = std::max<int64_t>(u1 - kBroadArrowSide, 0);
    const int64_t barTo = std::min<int64_t>(u2 + kBroadArrowSide, acrossSize - 1);
    const int64_t tipAcross = (u1 + u2) / 2;
    const auto draw = [&](int64_t ua, int64_t va, int64_t ub, int64_t vb) {
        if (vertical)
            line64(pen, width, height, ua, va, ub, vb);
        else
            line64(pen, width, height, va, ua, vb, ub);
    };
    draw(u1, base, u2, base);
    draw(u1, base, u1, bar);
    draw(u2, base, u2, bar);
    draw(barFrom, bar, barTo, bar);
    draw(barFrom, bar, tipAcross, tip);
    draw(barTo, bar, tipAcross, tip);
}

// The line from (x1, y1) to (x2, y2) and a cross at (x2, y2): `thickness` columns centred on x2
// over rows y2 − size..y2 + size and as many rows centred on y2 over columns x2 − size..x2 + size,
// each range kept off the two outermost rows or columns. Bars outside the image are skipped.
template <class Pen>
void line_with_cross(const Pen& pen, int width, int height, int x1, int y1, int x2, int y2, int64_t size,
                     int thickness) {
    if (width <= 0 || height <= 0) return;
    qel::draw::draw_line(pen, width, height, x1, y1, x2, y2);
    const int64_t top = std::max<int64_t>(y2 - size, kArrowCrossMargin);
    const int64_t bottom = std::min<int64_t>(y2 + size, height - 1 - kArrowCrossMargin);
    const int64_t left = std::max<int64_t>(x2 - size, kArrowCrossMargin);
    const int64_t right = std::min<int64_t>(x2 + size, width - 1 - kArrowCrossMargin);
    for (int64_t d = -(thickness / 2); d <= thickness / 2; ++d) {
        qel::draw::clipped_column(pen, width, height, x2 + d, top, bottom);
        qel::draw::clipped_row(pen, width, height, y2 + d, left, right);
    }
}

}  // namespace

void QelDrawDownArrow(unsigned char* img, int width, int height, int x, int y, int length, int grey) {
    narrow_arrow(GreyPen(img, width, grey), width, height, Heading::Down, x, y, length);
}
void QelDrawDownArrow(unsigned char* img, int width, int height, int x1, int x2, int y1, int y2, int grey) {
    broad_arrow(img, width, height, Heading::Down, x1, x2, y1, y2, grey);
}
void QelDrawDownArrow(unsigned char* img, int width, int height, int x, int y, int length, int R, int G, int B) {
    narrow_arrow(BgrPen(img, width, R, G, B), width, height, Heading::Down, x, y, length);
}

void QelDrawUpArrow(unsigned char* img, int width, int height, int x, int y, int length, int grey) {
    narrow_arrow(GreyPen(img, width, grey), width, height, Heading::Up, x, y, length);
}
void QelDrawUpArrow(unsigned char* img, int width, int height, int x1, int x2, int y1, int y2, int grey) {
    broad_arrow(img, width, height, Heading::Up, x1, x2, y1, y2, grey);
}
void QelDrawUpArrow(unsigned char* img, int width, int height, int x, int y, int length, int R, int G, int B) {
    narrow_arrow(BgrPen(img, width, R, G, B), width, height, Heading::Up, x, y, length);
}

void QelDrawLeftArrow(unsigned char* img, int width, int height, int x, int y, int length, int grey) {
    narrow_arrow(GreyPen(img, width, grey), width, height, Heading::Left, x, y, length);
}
void QelDrawLeftArrow(unsigned char* img, int width, int height, int x1, int x2, int y1, int y2, int grey) {
    broad_arrow(img, width, height, Heading::Left, x1, x2, y1, y2, grey);
}
void QelDrawLeftArrow(unsigned char* img, int width, int height, int x, int y, int length, int R, int G, int B) {
    narrow_arrow(BgrPen(img, width, R, G, B), width, height, Heading::Left, x, y, length);
}

void QelDrawRightArrow(unsigned char* img, int width, int height, int x, int y, int length, int grey) {
    narrow_arrow(GreyPen(img, width, grey), width, height, Heading::Right, x, y, length);
}
void QelDrawRightArrow(unsigned char* img, int width, int height, int x1, int x2, int y1, int y2, int grey) {
    broad_arrow(img, width, height, Heading::Right, x1, x2, y1, y2, grey);
}
void QelDrawRightArrow(unsigned char* img, int width, int height, int x, int y, int length, int R, int G, int B) {
    narrow_arrow(BgrPen(img, width, R, G, B), width, height, Heading::Right, x, y, length);
}

void QelGryImgDrawArrow(unsigned char* img, int width, int height, int x1, int y1, int x2, int y2, int grey) {
    // Half size of the cross from the length of the segment as given: truncate(length + 1)/5 + 2.
    const double dx = static_cast<double>(x2) - x1;
    const double dy = static_cast<double>(y2) - y1;
    const double length = std::sqrt(dx * dx + dy * dy);
    const int64_t size = static_cast<int64_t>(length + 1) / 5 + 2;
    line_with_cross(GreyPen(img, width, grey), width, height, x1, y1, x2, y2, size, 1);
}

void QelRGBImgDrawArrow(unsigned char* img, int width, int height, int x1, int y1, int x2, int y2, int size, int R,
                        int G, int B) {
    line_with_cross(BgrPen(img, width, R, G, B), width, height, x1, y1, x2, y2, size, 3);
}
