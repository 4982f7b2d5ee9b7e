// What the drawing functions share: pens that write one pixel of a grey or BGR image, the basic
// line, bars clipped to the image, and the guarded arithmetic that keeps hostile coordinates from
// overflowing or leaving the buffer.
#ifndef QEL_SRC_DRAW_RASTER_H
#define QEL_SRC_DRAW_RASTER_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace qel::draw {

// Index of pixel (x, y) in a width-wide image, and its byte in a grey image.
inline std::ptrdiff_t pixel_index(int width, int x, int y) { return static_cast<std::ptrdiff_t>(y) * width + x; }
inline unsigned char* grey_at(unsigned char* image, int width, int x, int y) {
    return image + pixel_index(width, x, y);
}

// A pen stores one value into pixel (x, y); callers guarantee the pixel is inside the image.
// Values are stored as their low byte, as an assignment to an unsigned char would.
struct GreyPen {
    unsigned char* image;
    int width;
    unsigned char value;

    GreyPen(unsigned char* img, int w, int grey) : image(img), width(w), value(static_cast<unsigned char>(grey)) {}
    void put(int x, int y) const { *grey_at(image, width, x, y) = value; }
};

// Colours arrive as red, green, blue and are stored blue, green, red.
struct BgrPen {
    unsigned char* image;
    int width;
    unsigned char blue, green, red;

    BgrPen(unsigned char* img, int w, int r, int g, int b)
        : image(img), width(w), blue(static_cast<unsigned char>(b)), green(static_cast<unsigned char>(g)),
          red(static_cast<unsigned char>(r)) {}
    void put(int x, int y) const {
        unsigned char* p = image + pixel_index(width, x, y) * 3;
        p[0] = blue;
        p[1] = green;
        p[2] = red;
    }
};

inline int clamp_int(int v, int lo, int hi) { return std::max(lo, std::min(v, hi)); }

// a + b, saturated to the int range instead of overflowing. Drawing moves points outside the image
// to its border, so a saturated coordinate lands exactly where the true sum would.
inline int sat_add(int a, int b) {
    const int64_t s = static_cast<int64_t>(a) + b;
    return static_cast<int>(std::max<int64_t>(std::numeric_limits<int>::min(),
                                              std::min<int64_t>(s, std::numeric_limits<int>::max())));
}
inline int sat_sub(int a, int b) {
    const int64_t s = static_cast<int64_t>(a) - b;
    return static_cast<int>(std::max<int64_t>(std::numeric_limits<int>::min(),
                                              std::min<int64_t>(s, std::numeric_limits<int>::max())));
}

// A 64-bit coordinate narrowed to int without changing which border it is clamped to.
inline int narrow_coordinate(int64_t v) {
    return static_cast<int>(std::max<int64_t>(std::numeric_limits<int>::min(),
                                              std::min<int64_t>(v, std::numeric_limits<int>::max())));
}

// truncate(v) when it lies in 0..limit−1, stored to *index; false otherwise (NaN and values beyond
// the int range included, which a plain conversion would leave undefined).
inline bool truncated_index(double v, int limit, int* index) {
    if (limit <= 0 || !(v > -1.0 && v < static_cast<double>(limit))) return false;
    *index = static_cast<int>(v);
    return true;
}

// Row y, columns from..to (inclusive; nothing when from > to), skipping what lies outside the image.
template <class Pen>
void clipped_row(const Pen& pen, int width, int height, int64_t y, int64_t from, int64_t to) {
    if (y < 0 || y >= height) return;
    from = std::max<int64_t>(from, 0);
    to = std::min<int64_t>(to, width - 1);
    for (int64_t x = from; x <= to; ++x) pen.put(static_cast<int>(x), static_cast<int>(y));
}

// Column x, rows from..to (inclusive; nothing when from > to), skipping what lies outside the image.
template <class Pen>
void clipped_column(const Pen& pen, int width, int height, int64_t x, int64_t from, int64_t to) {
    if (x < 0 || x >= width) return;
    from = std::max<int64_t>(from, 0);
    to = std::min<int64_t>(to, height - 1);
    for (int64_t y = from; y <= to; ++y) pen.put(static_cast<int>(x), static_cast<int>(y));
}

// The line every other drawing builds on. End points outside the image are moved to its border
// (clamped, not clipped). A vertical or horizontal line fills its column or row between the ends.
// Any other line is walked column by column in single precision, y = truncate(k·x + b), filling
// each column from the previous row to the new one; the column of the left end is not written
// (the first pixel drawn is in the next column), which callers' results depend on.
template <class Pen>
void draw_line(const Pen& pen, int width, int height, int x1, int y1, int x2, int y2) {
    if (width <= 0 || height <= 0) return;
    x1 = clamp_int(x1, 0, width - 1);
    x2 = clamp_int(x2, 0, width - 1);
    y1 = clamp_int(y1, 0, height - 1);
    y2 = clamp_int(y2, 0, height - 1);
    if (x1 == x2) {
        clipped_column(pen, width, height, x1, std::min(y1, y2), std::max(y1, y2));
        return;
    }
    if (y1 == y2) {
        clipped_row(pen, width, height, y1, std::min(x1, x2), std::max(x1, x2));
        return;
    }
    // Single precision on purpose: the rows chosen depend on float rounding.
    const float k = static_cast<float>(y2 - y1) / static_cast<float>(x2 - x1);
    const float b = static_cast<float>(y2) - k * static_cast<float>(x2);
    const int left = std::min(x1, x2);
    const int right = std::max(x1, x2);
    int previous = x1 < x2 ? y1 : y2;
    for (int x = left + 1; x <= right; ++x) {
        const float fy = k * static_cast<float>(x) + b;
        // On very large images float rounding could put the row a little outside the image.
        int y = 0;
        if (!truncated_index(fy, height, &y)) y = fy < 0.0f ? 0 : height - 1;
        const int from = std::min(previous, y);
        const int to = std::max(previous, y);
        for (int r = from; r <= to; ++r) pen.put(x, r);
        previous = y;
    }
}

}  // namespace qel::draw

#endif
