// Rectangles of frames: which pixels a copy keeps, which rectangles the camera copies refuse, and
// the loops that read a rectangle of a camera frame (as grey, as B, G, R, or pixel by pixel) or of an
// RGB image. The whole-frame conversions to RGB and grey run the same loops with the whole frame as
// the rectangle.
#ifndef QEL_SRC_COLOR_RECT_SAMPLING_H
#define QEL_SRC_COLOR_RECT_SAMPLING_H

#include "color/camera_layout.h"
#include "color/rgb.h"
#include "color/yuv.h"

#include <cstddef>
#include <cstring>

namespace qel {

// A rectangle x1..x2, y1..y2 with both ends included.
struct RectArea {
    int x1, x2, y1, y2;
    static RectArea whole(int width, int height) { return {0, width - 1, 0, height - 1}; }
    int width() const { return x2 - x1 + 1; }
    int height() const { return y2 - y1 + 1; }
    bool empty() const { return width() <= 0 || height() <= 0; }
};

// Which pixels of a rectangle a copy keeps: `cols` x `rows` pixels, `step` apart in both
// directions, starting at the rectangle's top-left corner.
struct Sampling {
    int step;
    int cols;
    int rows;

    static Sampling every_pixel(const RectArea& r) { return {1, r.width(), r.height()}; }
    // Whole 2 x 2 blocks only: an odd last column or row of the rectangle is dropped.
    static Sampling every_second(const RectArea& r) { return {2, r.width() / 2, r.height() / 2}; }
    // Pixels (x1 + 4i, y1 + 4j) up to (x2, y2).
    static Sampling every_fourth(const RectArea& r) { return {4, (r.width() + 3) / 4, (r.height() + 3) / 4}; }
};

// ---- which rectangles the camera copies refuse ----------------------------------------------------
// A refused copy returns false and writes nothing. The rules follow from how each format shares
// chroma, with a few irregularities that are intended (callers depend on them); those are marked.

inline bool is_odd(int v) { return v % 2 != 0; }
// x1 or the rectangle's width odd: its columns do not fall on whole chroma pairs.
inline bool columns_odd(const RectArea& r) { return is_odd(r.x1) || is_odd(r.width()); }
// y1 or the rectangle's height odd: its rows do not fall on whole 4:2:0 chroma rows.
inline bool rows_odd(const RectArea& r) { return is_odd(r.y1) || is_odd(r.height()); }

// refuses: the RGB, red and half red copies (and the semi-planar sub-frame);
// refuses_two_outputs: the copies to RGB and grey at once; refuses_quarter: the quarter RGB copies.
template <class Format>
struct RectRules;

// Both 4:2:0 formats: the rectangle must cover whole 2 x 2 chroma blocks, and the two-output and
// quarter copies check the frame's size as well.
struct ChromaBlockRules {
    static bool refuses(int /*width*/, int /*height*/, const RectArea& r) { return columns_odd(r) || rows_odd(r); }
    static bool refuses_two_outputs(int width, int height, const RectArea& r) {
        return is_odd(width) || is_odd(height) || columns_odd(r) || rows_odd(r);
    }
    static bool refuses_quarter(int width, int height, const RectArea& r) { return refuses_two_outputs(width, height, r); }
};
template <>
struct RectRules<Yuv420P> : ChromaBlockRules {};
template <>
struct RectRules<Yuv420SP> : ChromaBlockRules {};

// Every row has its own chroma, so rows are not checked; the frame width is.
template <>
struct RectRules<Yuv422P> {
    static bool refuses(int width, int /*height*/, const RectArea& r) { return is_odd(width) || columns_odd(r); }
    // Intended: an odd frame height is refused too, though rows never share chroma.
    static bool refuses_two_outputs(int width, int height, const RectArea& r) {
        return is_odd(width) || is_odd(height) || columns_odd(r);
    }
    // Intended: the rectangle's width and height must be whole multiples of 4, and x1 is checked
    // but y1 is not.
    static bool refuses_quarter(int width, int /*height*/, const RectArea& r) {
        return is_odd(width) || is_odd(r.x1) || r.width() % 4 != 0 || r.height() % 4 != 0;
    }
};

// Each row carries its own chroma, so only columns are checked (the red images refuse nothing).
template <>
struct RectRules<CbYCrY> {
    static bool refuses(int /*width*/, int /*height*/, const RectArea& r) { return columns_odd(r); }
    static bool refuses_two_outputs(int width, int height, const RectArea& r) { return refuses(width, height, r); }
    static bool refuses_quarter(int width, int height, const RectArea& r) { return refuses(width, height, r); }
};

// ---- reading a camera rectangle --------------------------------------------------------------------

// The Y samples of a rectangle, packed row after row.
template <class Layout>
void copy_luma(const Layout& frame, const RectArea& r, unsigned char* grey) {
    if (r.empty()) return;
    const int rw = r.width();
    if constexpr (Layout::Row::kLumaStep == 1) {
        if (r.x1 == 0 && rw == frame.lumaRowBytes) {  // whole rows of a luma plane: one copy
            std::memcpy(grey, frame.row(r.y1).luma, static_cast<size_t>(rw) * static_cast<size_t>(r.height()));
            return;
        }
    }
    for (int y = r.y1; y <= r.y2; ++y, grey += rw) {
        const typename Layout::Row row = frame.row(y);
        if constexpr (Layout::Row::kLumaStep == 1) {
            std::memcpy(grey, &row.luma_at(r.x1), static_cast<size_t>(rw));
        } else {
            for (int i = 0; i < rw; ++i) grey[i] = static_cast<unsigned char>(row.y(r.x1 + i));
        }
    }
}

// B, G, R of a rectangle whose x1 and width are even (every caller checks it): each column pair
// shares one U, V, so the chroma products are taken once per pair.
template <class Layout>
void copy_bgr(const Layout& frame, const RectArea& r, unsigned char* rgb) {
    if (r.empty()) return;
    const int firstPair = r.x1 / 2;
    const int endPair = firstPair + r.width() / 2;
    for (int y = r.y1; y <= r.y2; ++y) {
        const typename Layout::Row row = frame.row(y);
        for (int pair = firstPair; pair < endPair; ++pair, rgb += 2 * kBytesPerRgbPixel) {
            const ChromaTerms terms = chroma_terms(row.cb_at(pair), row.cr_at(pair));
            store_bgr_from_terms(row.luma_at(2 * pair), terms, rgb);
            store_bgr_from_terms(row.luma_at(2 * pair + 1), terms, rgb + kBytesPerRgbPixel);
        }
    }
}

// Writes the clamped B, G, R of a pixel (3 bytes).
struct PutBgr {
    template <class Row>
    int operator()(const Row& row, int x, unsigned char* out) const {
        store_bgr_from_yuv(row.y(x), row.u(x), row.v(x), out);
        return kBytesPerRgbPixel;
    }
};

// Writes only the clamped R of a pixel (1 byte); blue and green are not evaluated.
struct PutRed {
    template <class Row>
    int operator()(const Row& row, int x, unsigned char* out) const {
        *out = static_cast<unsigned char>(red_from_yuv(row.y(x), row.v(x)));
        return 1;
    }
};

// The loop behind the red images and the reduced copies: for each kept pixel, put(row, x, out)
// writes its bytes and returns how many it wrote; outputs are packed row after row. Returns the end
// of what it wrote.
template <class Layout, class Put>
unsigned char* sample_rect(const Layout& frame, const RectArea& r, Sampling s, unsigned char* out, Put put) {
    if (s.cols <= 0 || s.rows <= 0) return out;
    for (int j = 0, y = r.y1; j < s.rows; ++j, y += s.step) {
        const typename Layout::Row row = frame.row(y);
        for (int i = 0, x = r.x1; i < s.cols; ++i, x += s.step) out += put(row, x, out);
    }
    return out;
}

// ---- reading an RGB rectangle ------------------------------------------------------------------------

// Calls fn(pixel, k) for the k-th kept pixel of a rectangle of a width-wide RGB image, row by row.
template <class Fn>
void for_each_rgb_pixel(const unsigned char* image, int width, const RectArea& r, Sampling s, Fn fn) {
    if (s.cols <= 0 || s.rows <= 0) return;
    const std::ptrdiff_t pixelStep = static_cast<std::ptrdiff_t>(s.step) * kBytesPerRgbPixel;
    size_t k = 0;
    for (int j = 0, y = r.y1; j < s.rows; ++j, y += s.step) {
        const unsigned char* row = image + (static_cast<std::ptrdiff_t>(y) * width + r.x1) * kBytesPerRgbPixel;
        for (int i = 0; i < s.cols; ++i, ++k) fn(row + i * pixelStep, k);
    }
}

}  // namespace qel

#endif
