// Lines given by an equation: the ABC form (set or accumulate), the KB form, the Hough
// (rho, theta) form and a line through a point at an angle in degrees.
#include "qel/draw.h"

#include "draw/raster.h"
#include "core/exact_math.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace {

using qel::draw::truncated_index;

constexpr double kPi = 3.1415926;
// Hough angles from 45 to 125 degrees (inclusive) are walked by columns, all others by rows.
constexpr int kHoughColumnThetaMin = 45;
constexpr int kHoughColumnThetaMax = 125;
// Angles from 45 to 135 degrees (inclusive) are walked by rows in QelDrawDegreeLine.
constexpr double kDegreeRowMin = 45.0;
constexpr double kDegreeRowMax = 135.0;

// Adds 1 to a grey pixel, saturating at 255.
struct IncrementPen {
    unsigned char* image;
    int width;
    void put(int x, int y) const {
        unsigned char* p = qel::draw::grey_at(image, width, x, y);
        if (*p < 255) ++*p;
    }
};

// The ABC line over columns xFrom..xTo (|b| > |a|) or rows yFrom..yTo (otherwise); the caller
// has already ordered and clamped both ranges into the image.
template <class Pen>
void abc_line(const Pen& pen, int width, int height, int xFrom, int xTo, int yFrom, int yTo, double a, double b,
              double c) {
    if (std::fabs(b) > std::fabs(a)) {
        for (int x = xFrom; x <= xTo; ++x) {
            int y = 0;
            if (truncated_index(-(a * x + c) / b + 0.5, height, &y)) pen.put(x, y);
        }
    } else if (a != 0.0) {  // a = b = 0 describes no line
        for (int y = yFrom; y <= yTo; ++y) {
            int x = 0;
            if (truncated_index(-(b * y + c) / a + 0.5, width, &x)) pen.put(x, y);
        }
    }
}

template <class Pen>
void kb_line(const Pen& pen, int width, int height, int flag, double k, double b) {
    if (flag == 1) {
        for (int y = 0; y < height; ++y) {
            int x = 0;
            if (truncated_index(k * y + b + 0.5, width, &x)) pen.put(x, y);
        }
    } else {
        for (int x = 0; x < width; ++x) {
            int y = 0;
            if (truncated_index(k * x + b + 0.5, height, &y)) pen.put(x, y);
        }
    }
}

// One half of a degree line: walks s from `from` by `step` (±1) while it has not passed `to`; the
// coordinate across the walk is truncate(s·t + p0 − s0·t), added up in that order, and put(s, p)
// draws it when it lies in 0..across − 1. Once the line has left the image in the direction it
// travels it cannot come back, so the walk ends there.
template <class Put>
void degree_half(Put put, int64_t from, int64_t to, int64_t step, double t, int s0, int p0, int across) {
    const bool rising = (t > 0.0) == (step > 0);  // moving towards larger p
    for (int64_t s = from; step > 0 ? s <= to : s >= to; s += step) {
        const double v = static_cast<double>(s) * t + p0 - s0 * t;
        int p = 0;
        if (truncated_index(v, across, &p))
            put(static_cast<int>(s), p);
        else if (t == 0.0 || (rising ? v >= across : v <= -1.0))
            break;
    }
}

// Both halves of a degree line walked along an axis `along` pixels long from the point's
// coordinate s0: away from it to the last pixel, then back towards 1 (pixel 0 is never drawn).
// The walks are limited to the image; outside it they would draw nothing.
template <class Put>
void degree_line(Put put, int along, int across, int s0, int p0, double t) {
    degree_half(put, std::max<int64_t>(int64_t{s0} + 1, 0), along - 1, 1, t, s0, p0, across);
    degree_half(put, std::min<int64_t>(int64_t{s0} - 1, along - 1), 1, -1, t, s0, p0, across);
}

}  // namespace

void QelDrawABCLineByColor(unsigned char* img, int width, int height, double a, double b, double c, int grey) {
    abc_line(qel::draw::GreyPen(img, width, grey), width, height, 0, width - 1, 0, height - 1, a, b, c);
}

void QelDrawABCLineByColor(unsigned char* img, int width, int height, int xFrom, int xTo, int yFrom, int yTo,
                           double a, double b, double c, int grey) {
    if (width <= 0 || height <= 0) return;
    const int x1 = qel::draw::clamp_int(std::min(xFrom, xTo), 0, width - 1);
    const int x2 = qel::draw::clamp_int(std::max(xFrom, xTo), 0, width - 1);
    const int y1 = qel::draw::clamp_int(std::min(yFrom, yTo), 0, height - 1);
    const int y2 = qel::draw::clamp_int(std::max(yFrom, yTo), 0, height - 1);
    abc_line(qel::draw::GreyPen(img, width, grey), width, height, x1, x2, y1, y2, a, b, c);
}

void QelDrawABCLineByInc(unsigned char* img, int width, int height, double a, double b, double c) {
    abc_line(IncrementPen{img, width}, width, height, 0, width - 1, 0, height - 1, a, b, c);
}

void QelDrawKBLine(unsigned char* img, int width, int height, int flag, double k, double b, int grey) {
    kb_line(qel::draw::GreyPen(img, width, grey), width, height, flag, k, b);
}

void QelDrawKBLine(unsigned char* img, int width, int height, int flag, double k, double b, int R, int G, int B) {
    kb_line(qel::draw::BgrPen(img, width, R, G, B), width, height, flag, k, b);
}

void QelDrawHoughLine(unsigned char* img, int width, int height, int rho, int theta, unsigned char grey) {
    const qel::draw::GreyPen pen(img, width, grey);
    const double angle = theta * kPi / 180;
    const double cosine = qel::exact_cos(angle);
    const double sine = qel::exact_sin(angle);
    if (theta >= kHoughColumnThetaMin && theta <= kHoughColumnThetaMax) {
        for (int x = 0; x < width; ++x) {
            int y = 0;
            if (truncated_index((rho - x * cosine) / sine, height, &y)) pen.put(x, y);
        }
    } else {
        for (int y = 0; y < height; ++y) {
            int x = 0;
            if (truncated_index((rho - y * sine) / cosine, width, &x)) pen.put(x, y);
        }
    }
}

void QelDrawDegreeLine(unsigned char* img, int width, int height, int x0, int y0, double degrees, int grey) {
    if (width <= 0 || height <= 0) return;
    const qel::draw::GreyPen pen(img, width, grey);
    if (degrees >= kDegreeRowMin && degrees <= kDegreeRowMax) {
        // Steep: by rows, x = truncate(y·t + x0 − y0·t).
        const double t = qel::exact_tan((90 - degrees) * kPi / 180);
        degree_line([&pen](int y, int x) { pen.put(x, y); }, height, width, y0, x0, t);
    } else {
        // Shallow (and any angle outside 45..135, as given): by columns, y = truncate(x·t + y0 − x0·t).
        const double t = qel::exact_tan(degrees * kPi / 180);
        degree_line([&pen](int x, int y) { pen.put(x, y); }, width, height, x0, y0, t);
    }
}
